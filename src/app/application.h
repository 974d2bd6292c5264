#pragma once

#include <QApplication>

// The program's application object: identity, folders, log and translation.
class Application : public QApplication
{
    Q_OBJECT
public:
    Application(int &argc, char **argv);
};
