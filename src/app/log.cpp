#include "log.h"

#include <QDir>
#include <QFile>

#include <cstdlib>

namespace {

Log::FolderSource s_folder;
Log::Clock s_clock;
QtMessageHandler s_previous = nullptr;

QDateTime now()
{
    return s_clock ? s_clock() : QDateTime::currentDateTime();
}

QLatin1String tag(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QLatin1String("[DEBUG]: ");
    case QtInfoMsg:
        return QLatin1String("[INFO]: ");
    case QtWarningMsg:
        return QLatin1String("[WARNING]: ");
    case QtCriticalMsg:
        return QLatin1String("[CRITICAL]: ");
    case QtFatalMsg:
        return QLatin1String("[FATAL]: ");
    }
    return QLatin1String();
}

bool known(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
    case QtInfoMsg:
    case QtWarningMsg:
    case QtCriticalMsg:
    case QtFatalMsg:
        return true;
    }
    return false;
}

} // namespace

void Log::install(FolderSource folder)
{
    s_folder = std::move(folder);
    s_previous = qInstallMessageHandler(&Log::messageHandler);
}

QtMessageHandler Log::previousHandler()
{
    return s_previous;
}

void Log::setClock(Clock source)
{
    s_clock = std::move(source);
}

QString Log::fileName(const QDate &date)
{
    return QStringLiteral("KIRANTO-Link-%1.log").arg(date.toString(QStringLiteral("yyyy-MM-dd")));
}

QString Log::entry(QtMsgType type,
                   const QMessageLogContext &context,
                   const QString &message,
                   const QTime &time)
{
    QString text = time.toString(QStringLiteral("HH:mm:ss:zzz")) + QLatin1String(" - ");
    if (!known(type))
        return text;
    text += tag(type) + message;
    if (type == QtFatalMsg) {
        text += QStringLiteral("(%1, %2, %3)")
                        .arg(QString::fromUtf8(context.file),
                             QString::number(context.line),
                             QString::fromUtf8(context.function));
    }
    return text;
}

void Log::messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QDateTime stamp = now();
    const QString folder = s_folder ? s_folder() : QString();
    QFile file(QDir(folder).absoluteFilePath(fileName(stamp.date())));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return;
    // UTF-8 whatever the locale. The file buffers what is written until it is closed.
    file.write(entry(type, context, message, stamp.time()).toUtf8());
    // A fatal entry ends the process here, without its line end and without a flush.
    if (type == QtFatalMsg)
        std::abort();
    file.write("\n");
    file.close();
}
