// The yardstick for the start-up benchmark: an empty QMainWindow, built like the tool.
// Prints "shown" once the window has been shown and the event loop has run, then quits.

#include <QApplication>
#include <QMainWindow>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("KIRANTO-Link"));
    window.show();
    QTimer::singleShot(0, &app, [&app] {
        std::fputs("shown\n", stdout);
        std::fflush(stdout);
        app.quit();
    });
    return app.exec();
}
