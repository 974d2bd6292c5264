#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include <functional>

// The process-wide message handler: every debug, info, warning, critical and fatal message of the
// program goes into one text file per day, "KIRANTO-Link-yyyy-MM-dd.log", in the log folder.
// The file is opened for appending and closed again for every message; a message that cannot be
// written is dropped silently. The handler takes no lock and may run in any thread.
class Log
{
public:
    using FolderSource = std::function<QString()>;
    using Clock = std::function<QDateTime()>;

    // Installs the handler; folder() is asked for the log folder at every message (it may create
    // the folder). The handler installed before is kept (previousHandler()) but never called.
    static void install(FolderSource folder);
    static QtMessageHandler previousHandler();

    // Replaces the system clock, which gives both the file's date and the entry's time.
    // An empty function restores the system clock.
    static void setClock(Clock clock);

    // "KIRANTO-Link-2026-11-14.log" for 14 November 2026.
    static QString fileName(const QDate &date);
    // One entry without its line end: time, " - ", tag and message; a fatal message carries its
    // origin "(file, line, function)" right after the text. An unknown type gives time and " - ".
    static QString entry(QtMsgType type,
                         const QMessageLogContext &context,
                         const QString &message,
                         const QTime &time);

    // The handler itself; aborts the process on a fatal message.
    static void messageHandler(QtMsgType type,
                               const QMessageLogContext &context,
                               const QString &message);
};
