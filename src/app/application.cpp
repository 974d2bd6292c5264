#include "application.h"

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("KIRANTO-Link"));
    setApplicationVersion(QStringLiteral("1.00"));
    setApplicationDisplayName(QStringLiteral("KIRANTO-Link"));
    setOrganizationName(QStringLiteral("Marvolet"));
}
