#include "app/application.h"

#include <QMainWindow>

int main(int argc, char *argv[])
{
    Application app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QObject::tr("KIRANTO-Link"));
    window.show();
    return app.exec();
}
