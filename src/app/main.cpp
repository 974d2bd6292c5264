#include "app/application.h"
#include "ui/mainwindow.h"

#include <memory>

int main(int argc, char *argv[])
{
    Application app(argc, argv);
    // The window goes before the application object.
    auto window = std::make_unique<MainWindow>();
    window->setWindowTitle(MainWindow::tr("KIRANTO-Link"));
    window->show();
    const int result = app.exec();
    window.reset();
    return result;
}
