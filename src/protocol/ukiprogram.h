#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// One command of a program and the reply lines it got (empty until answered).
struct UkiCommand
{
    QString command;
    QStringList response;
};

// A sequence of commands that the engine sends one after the other over one link.
struct UkiProgram
{
    enum Type : int { Write = 0, ReadData = 1, ReadStatistics = 2 };

    qint32 type = Write;
    qint32 reserved = 0;
    bool success = false;
    QVector<UkiCommand> commands;

    void addCommand(const QString &command) { commands.append(UkiCommand{command, {}}); }
};
