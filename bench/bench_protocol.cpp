// The protocol engine against the device simulator at the line's real pace: a statistics run of
// 80 blocks and a full read with a 2,000-event archive. For each, the wall time is set against
// the floor the protocol itself imposes (30 ms of silence after every reply plus the reply's
// time on a 115200-baud line). Prints figures; asserts nothing.
//
// Usage: bench_protocol [repeats]; the simulator is KIRANTO_SIM or the one built beside it.

#include "protocol/uki.h"
#include "settings/ukisettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QVector>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr double kSilenceMs = 30.0;
constexpr double kLineBytesPerSecond = 11520.0; // 115200 baud, 8N1
constexpr int kArchiveEvents = 2000;
constexpr int kStatsTcust = 32; // 32 × 5 / 2 = 80 blocks
constexpr int kWaitMs = 300000;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

struct Run
{
    double wallMs = 0;
    double floorMs = 0;
    int commands = 0;
    qint64 replyBytes = 0;
    bool success = false;
    // A reply that does not end with its "OK" line: a stall of more than 30 ms on a loaded
    // machine ended the exchange early. Such a run is reported but not counted.
    bool cut = false;
    // Where the time of one command goes, milliseconds averaged over the commands, from the
    // simulator's transcript and the link's completion lines.
    double deviceMs = 0; // command written to first reply byte (the device's own turnaround)
    double wireMs = 0;   // first to last reply byte
    double linkMs = 0;   // last reply byte to the end of the exchange (30 ms and the timer tick)
    double engineMs = 0; // end of the exchange to the next command written
    double ratio() const { return floorMs > 0 ? wallMs / floorMs : 0; }
    // The same with the device's turnaround, which is not ours to spend, added to the floor.
    double ratioBeyondDevice() const
    {
        const double floor = floorMs + deviceMs * commands;
        return floor > 0 ? wallMs / floor : 0;
    }
};

struct Event
{
    double seconds;
    QByteArray what;
};

QVector<Event> readTranscript(const QString &path, int from)
{
    QVector<Event> events;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return events;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (int i = from; i < lines.size(); ++i) {
        const QByteArray &line = lines.at(i);
        const int space = line.indexOf(' ');
        if (space > 0)
            events.append({line.left(space).toDouble(), line.mid(space + 1)});
    }
    return events;
}

int transcriptLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().count('\n');
}

// Where the time of each command goes. The transcript stamps the command once the device has
// seen 5 ms of silence after it, then the first and the last reply byte; the link's completion
// lines give each exchange's time from the write to the end of the exchange, in whole ms.
void analyse(const QVector<Event> &events, const QVector<double> &exchangeMs, Run &run)
{
    constexpr double commandSilenceMs = 5.0;
    QVector<double> commandAt;
    QVector<double> replyStart;
    QVector<double> replyEnd;
    for (const Event &event : events) {
        if (event.what.startsWith("cmd "))
            commandAt.append(event.seconds * 1000.0 - commandSilenceMs);
        else if (event.what == "reply-start")
            replyStart.append(event.seconds * 1000.0);
        else if (event.what.startsWith("reply-end"))
            replyEnd.append(event.seconds * 1000.0);
    }
    const int n = std::min(
            {commandAt.size(), replyStart.size(), replyEnd.size(), exchangeMs.size()});
    if (n < 2)
        return;
    double device = 0;
    double wire = 0;
    double exchange = 0;
    for (int i = 0; i < n; ++i) {
        device += replyStart.at(i) - commandAt.at(i);
        wire += replyEnd.at(i) - replyStart.at(i);
        exchange += exchangeMs.at(i);
    }
    run.deviceMs = device / n;
    run.wireMs = wire / n;
    run.linkMs = (exchange - device - wire) / n;
    // Command to command, less the exchange itself, over the commands that have a successor.
    double cycles = 0;
    for (int i = 0; i + 1 < n; ++i)
        cycles += commandAt.at(i + 1) - commandAt.at(i) - exchangeMs.at(i);
    run.engineMs = cycles / (n - 1);
}

class Bench
{
public:
    Bench()
    {
        QObject::connect(&m_uki, &Uki::logMessage, [this](const QString &message) {
            if (message.startsWith(QLatin1String("rxData "))) {
                m_replies.append(message.mid(7));
                return;
            }
            const QRegularExpressionMatch match = m_exchangeLine.match(message);
            if (match.hasMatch())
                m_exchangeMs.append(match.captured(1).toDouble());
        });
    }

    bool startSimulator()
    {
        stopSimulator();
        QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty())
            program = QStringLiteral(KIRANTO_SIM_PATH);
        m_link = m_dir.filePath(QStringLiteral("ttyKIRANTO"));
        m_log = m_dir.filePath(QStringLiteral("transcript.log"));
        m_sim.setProgram(program);
        m_sim.setArguments({QStringLiteral("--link"),
                            m_link,
                            QStringLiteral("--log"),
                            m_log,
                            QStringLiteral("--archive-size"),
                            QString::number(kArchiveEvents)});
        m_sim.start();
        if (!m_sim.waitForStarted(10000))
            return false;
        while (!m_sim.canReadLine()) {
            if (!m_sim.waitForReadyRead(10000))
                return false;
        }
        if (m_sim.readLine().trimmed() != m_link.toLocal8Bit())
            return false;
        m_uki.setPortName(m_link);
        return true;
    }

    ~Bench() { stopSimulator(); }

    void stopSimulator()
    {
        if (m_sim.state() == QProcess::NotRunning)
            return;
        m_sim.terminate();
        m_sim.waitForFinished(10000);
    }

    Run measure(const std::function<bool(Uki &)> &request)
    {
        Run run;
        m_replies.clear();
        m_exchangeMs.clear();
        const int mark = transcriptLines(m_log);
        QEventLoop loop;
        const auto connection = QObject::connect(&m_uki, &Uki::programDone, [&](bool success) {
            run.success = success;
            loop.quit();
        });
        QTimer::singleShot(kWaitMs, &loop, &QEventLoop::quit);
        QElapsedTimer clock;
        clock.start();
        if (!request(m_uki))
            return run;
        loop.exec();
        run.wallMs = double(clock.nsecsElapsed()) / 1e6;
        QObject::disconnect(connection);

        // The reply as the engine received it, its "\r\n" line ends turned into "\n".
        for (const QString &reply : qAsConst(m_replies)) {
            const qint64 bytes = reply.size() + reply.count(QLatin1Char('\n'));
            if (!reply.endsWith(QLatin1String("OK\n")))
                run.cut = true;
            run.replyBytes += bytes;
            run.floorMs += kSilenceMs + double(bytes) * 1000.0 / kLineBytesPerSecond;
        }
        run.commands = m_replies.size();
        // Let the transcript settle, then read where the time went.
        QEventLoop pause;
        QTimer::singleShot(200, &pause, &QEventLoop::quit);
        pause.exec();
        analyse(readTranscript(m_log, mark), m_exchangeMs, run);
        return run;
    }

    Uki &uki() { return m_uki; }
    QString link() const { return m_link; }

private:
    QTemporaryDir m_dir;
    QString m_link;
    QString m_log;
    QProcess m_sim;
    Uki m_uki;
    QStringList m_replies;
    QVector<double> m_exchangeMs;
    const QRegularExpression m_exchangeLine{
            QStringLiteral("^Отработали команду: .*Время выполнения (\\d+) мс$")};
};

void print(const char *name, const QVector<Run> &runs)
{
    for (const Run &run : runs) {
        out() << name
              << QStringLiteral(": %1, %2 commands, %3 reply bytes, wall %4 ms, floor %5 ms, "
                                "ratio %6\n    per command: device turnaround %7 ms, reply on the "
                                "wire %8 ms, link until the end of the exchange %9 ms, engine "
                                "until the next command %10 ms; ratio with the device's turnaround "
                                "in the floor %11")
                         .arg(run.cut       ? QStringLiteral("reply cut, not counted")
                              : run.success ? QStringLiteral("ok")
                                            : QStringLiteral("FAILED"))
                         .arg(run.commands)
                         .arg(run.replyBytes)
                         .arg(run.wallMs, 0, 'f', 1)
                         .arg(run.floorMs, 0, 'f', 1)
                         .arg(run.ratio(), 0, 'f', 3)
                         .arg(run.deviceMs, 0, 'f', 2)
                         .arg(run.wireMs, 0, 'f', 2)
                         .arg(run.linkMs, 0, 'f', 2)
                         .arg(run.engineMs, 0, 'f', 2)
                         .arg(run.ratioBeyondDevice(), 0, 'f', 3)
              << '\n';
    }
    out().flush();
}

// A plain script on the same line: each command written bare, its reply taken until 30 ms of
// silence after its last byte (50 ms before the first), the next command at once. Wall time in
// milliseconds; 0 when the port did not open or a reply was missing.
double scriptMs(const QString &link, const QStringList &commands)
{
    QSerialPort port(link);
    if (!port.open(QIODevice::ReadWrite))
        return 0;
    QElapsedTimer wall;
    wall.start();
    for (const QString &command : commands) {
        port.write(command.toLatin1());
        QByteArray reply;
        QElapsedTimer quiet;
        quiet.start();
        for (qint64 left = 50; left > 0; left = (reply.isEmpty() ? 50 : 30) - quiet.elapsed()) {
            if (port.waitForReadyRead(int(left))) {
                reply += port.readAll();
                quiet.restart();
            }
        }
        if (reply.isEmpty())
            return 0;
    }
    return double(wall.elapsed());
}

// The median run by ratio; a loaded machine makes single runs noisy.
Run median(QVector<Run> runs)
{
    std::sort(runs.begin(), runs.end(), [](const Run &a, const Run &b) {
        return a.ratio() < b.ratio();
    });
    return runs.at(runs.size() / 2);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // The engine's developer diagnostics would interleave with the figures.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type != QtDebugMsg)
            fprintf(stderr, "%s\n", qPrintable(message));
    });
    const int repeats = argc > 1 ? std::max(1, atoi(argv[1])) : 3;

    Bench bench;
    if (!bench.startSimulator()) {
        fprintf(stderr, "bench_protocol: kiranto-sim did not start\n");
        return 2;
    }
    UkiSettings settings;
    settings.setValue(UkiSettings::Tcust, kStatsTcust);
    bench.uki().setSettings(settings);

    QVector<Run> stats;
    QVector<Run> read;
    QVector<Run> all[2];
    const std::function<bool(Uki &)> requests[2] = {
            [](Uki &uki) { return uki.readStats(5, 2, 1); },
            [](Uki &uki) { return uki.readData(31); },
    };
    int attempts = 0;
    while ((stats.size() < repeats || read.size() < repeats) && attempts++ < 4 * repeats) {
        for (int kind = 0; kind < 2; ++kind) {
            const Run run = bench.measure(requests[kind]);
            all[kind].append(run);
            if (!run.cut) {
                (kind == 0 ? stats : read).append(run);
                continue;
            }
            // The rest of the reply is still on its way: start over on a fresh line.
            if (!bench.startSimulator()) {
                fprintf(stderr, "bench_protocol: kiranto-sim did not restart\n");
                return 2;
            }
        }
    }
    if (stats.isEmpty() || read.isEmpty()) {
        fprintf(stderr, "bench_protocol: every run was cut\n");
        return 1;
    }
    print("readStats(5, 2, 1), 80 blocks", all[0]);
    print("readData(31), 2000-event archive", all[1]);

    const Run s = median(stats);
    const Run r = median(read);
    out() << QStringLiteral("median ratios: statistics %1, full read %2")
                     .arg(s.ratio(), 0, 'f', 3)
                     .arg(r.ratio(), 0, 'f', 3)
          << '\n';
    const bool ok = s.success && r.success && s.commands == 80 && r.commands == 5;
    out() << QStringLiteral("protocol-overhead-ratio: %1")
                     .arg(ok ? std::max(s.ratio(), r.ratio()) : 99.0, 0, 'f', 2)
          << '\n';
    // The engine against that script, for the same 80 commands, median of as many runs.
    QStringList commands;
    for (int block = 0; block < 80; ++block)
        commands << QStringLiteral("srch_stats_1_5_2_%1").arg(block);
    QVector<double> script;
    for (int run = 0; run < repeats; ++run)
        script << scriptMs(bench.link(), commands);
    std::sort(script.begin(), script.end());
    const double scriptMedian = script.at(script.size() / 2);
    out() << QStringLiteral("script, same 80 commands: %1 ms; engine %2 ms")
                     .arg(scriptMedian, 0, 'f', 0)
                     .arg(s.wallMs, 0, 'f', 0)
          << '\n';
    out() << QStringLiteral("protocol-vs-script: %1")
                     .arg(scriptMedian > 0 ? s.wallMs / scriptMedian : 99.0, 0, 'f', 2)
          << '\n';
    out().flush();
    return ok && scriptMedian > 0 ? 0 : 1;
}
