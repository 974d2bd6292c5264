// Parses an archive dump of 100,000 events and switches the archive filter through every class.
// Prints figures; asserts nothing.

#include "models/archivedata.h"
#include "models/archivefilterproxy.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTextStream>
#include <QVector>

#include <sys/resource.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr int eventCount = 100000;
constexpr int repeats = 5;

// A dump as the device sends it: header, then events some minutes apart over about a year,
// with the type mix of a working monitor (mostly periodic records).
QString buildDump()
{
    const char *const types[] = {
            "ET_GENERAL_RESISTANCE",
            "ET_GENERAL_RESISTANCE",
            "ET_GENERAL_RESISTANCE",
            "ET_GENERAL_RESISTANCE",
            "ET_SODC_PARAM",
            "ET_FEED_PARAM",
            "ET_EVENT_RES_REDUCTION",
            "ET_EVENT_DISCH_ON",
            "ET_EVENT_DISCH_OFF",
            "ET_EVENT_OVER_T_ON",
            "ET_EVENT_FALL_Tail_ON",
            "ET_EVENT_IMS_POW_OFF",
            "ET_EVENT_IMS_POW_ON",
            "ET_EVENT_IMS_LOC_LOST",
            "ET_EVENT_IMS_CT_FAULT",
            "ET_EVENT_IMS_POW_OFF_",
    };
    constexpr int typeCount = int(sizeof(types) / sizeof(types[0]));
    QString dump = QStringLiteral("Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\t"
                                  "Value-5\tValue-6\tValue-7\tValue-8\r\n");
    dump.reserve(eventCount * 72);
    QDateTime stamp(QDate(2020, 4, 5), QTime(0, 0));
    for (int i = 1; i <= eventCount; ++i) {
        stamp = stamp.addSecs(300 + (i * 37) % 120);
        const QString date = stamp.toString(QStringLiteral("dd.MM.yy"));
        const QString time = stamp.toString(QStringLiteral("hh:mm:ss"));
        const char *type = types[(i * 7) % typeCount];
        QString values;
        if (qstrcmp(type, "ET_EVENT_IMS_CT_FAULT") == 0) {
            values = QStringLiteral("1111111100000000\t1111011100000000\t1111111100000000\t"
                                    "1111111100000000");
        } else if (qstrcmp(type, "ET_FEED_PARAM") == 0) {
            values = QStringLiteral("%1\t%2\t%3\t%4\t%5\t0\t%6\t%7")
                             .arg(i % 1000)
                             .arg(i % 50)
                             .arg(i % 700)
                             .arg(i % 32)
                             .arg(i % 16 + 1)
                             .arg(date, time);
        } else {
            values = QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\t0\t0")
                             .arg(i % 999)
                             .arg(i % 500)
                             .arg(i % 777)
                             .arg(2200 + i % 100)
                             .arg(i % 230)
                             .arg(i % 210);
        }
        dump += QStringLiteral("%1\t%2\t%3\t%4\t%5\r\n")
                        .arg(i)
                        .arg(date, time, QLatin1String(type), values);
    }
    return dump;
}

QStringList splitDump(const QString &dump)
{
    return dump.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
}

double ms(qint64 nanoseconds)
{
    return double(nanoseconds) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    const QString dump = buildDump();
    out << "dump: " << eventCount << " events, " << dump.size() << " characters\n";

    qint64 splitBest = std::numeric_limits<qint64>::max();
    QStringList lines;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        lines = splitDump(dump);
        splitBest = std::min(splitBest, timer.nsecsElapsed());
    }

    qint64 parseBest = std::numeric_limits<qint64>::max();
    std::unique_ptr<ArchiveData> archive;
    for (int i = 0; i < repeats; ++i) {
        archive.reset();
        QElapsedTimer timer;
        timer.start();
        archive = std::make_unique<ArchiveData>(lines);
        parseBest = std::min(parseBest, timer.nsecsElapsed());
    }

    out << "events kept: " << archive->rowCount() << '\n';
    out << QStringLiteral("split into lines: %1 ms (best of %2)\n")
                    .arg(ms(splitBest), 0, 'f', 2)
                    .arg(repeats);
    out << QStringLiteral("parse into ArchiveData: %1 ms (best of %2)\n")
                    .arg(ms(parseBest), 0, 'f', 2)
                    .arg(repeats);

    // For comparison: the same dates read one by one through QDateTime::fromString.
    QVector<QPair<QString, QString>> stamps;
    stamps.reserve(lines.size());
    for (const QString &line : qAsConst(lines)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        stamps.append({fields.value(1), fields.value(2)});
    }
    QElapsedTimer dateTimer;
    dateTimer.start();
    quint64 sum = 0;
    for (const auto &stamp : qAsConst(stamps))
        sum += ArchiveData::timeFromText(stamp.first, stamp.second);
    const qint64 dateElapsed = dateTimer.nsecsElapsed();
    quint64 parsedSum = 0;
    for (const ArchiveEvent &event : archive->events())
        parsedSum += event.time;
    out << QStringLiteral(
                   "dates through QDateTime::fromString alone: %1 ms (%2 the parsed times)\n")
                    .arg(ms(dateElapsed), 0, 'f', 2)
                    .arg(sum == parsedSum ? QStringLiteral("same as")
                                          : QStringLiteral("DIFFERENT from"));

    ArchiveFilterProxy proxy;
    proxy.setSourceModel(archive.get());
    for (quint32 filterClass = 1; filterClass <= 8; ++filterClass) {
        QElapsedTimer timer;
        timer.start();
        proxy.setFilterClass(filterClass);
        const int rows = proxy.rowCount(); // the proxy maps its rows lazily
        const qint64 elapsed = timer.nsecsElapsed();
        out << QStringLiteral("filter class %1: %2 ms, %3 rows\n")
                        .arg(filterClass)
                        .arg(ms(elapsed), 0, 'f', 2)
                        .arg(rows);
    }
    QElapsedTimer timer;
    timer.start();
    proxy.setFilterClass(0);
    const int rows = proxy.rowCount();
    out << QStringLiteral("filter class 0: %1 ms, %2 rows\n")
                    .arg(ms(timer.nsecsElapsed()), 0, 'f', 2)
                    .arg(rows);

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    out << "peak memory (ru_maxrss): " << usage.ru_maxrss / 1024.0 << " MiB\n";
    // Last line, for scripts: parse time over split time of the same dump.
    out << QStringLiteral("archive-parse-ratio: %1\n")
                    .arg(double(parseBest) / double(splitBest), 0, 'f', 2);
    return 0;
}
