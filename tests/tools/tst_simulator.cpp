// The device simulator seen from the far end of its line, as the tool sees it: every command's
// reply, the state it keeps, its pacing and its faults. The tables here are written from the
// device's documented formats, independently of the simulator's own.

#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTime>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

struct Reply
{
    QByteArray bytes;
    qint64 firstByteMs = -1; // after the command was written
    qint64 lastByteMs = -1;
    qint64 maxGapMs = 0; // longest silence between two reads inside the reply
    int firstReadSize = 0;
    bool lineGone = false; // the far end closed the line
};

// A simulator process with its line opened in raw mode from this side.
class Device
{
public:
    Device() = default;
    ~Device() { stop(); }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    bool start(const QStringList &arguments, QString linkPath = QString())
    {
        if (linkPath.isEmpty())
            linkPath = m_dir.filePath(QStringLiteral("ttyKIRANTO"));
        m_link = linkPath;
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty()) {
            qWarning("KIRANTO_SIM is not set");
            return false;
        }
        m_process.setProgram(program);
        m_process.setArguments(
                QStringList{QStringLiteral("--link"), m_link, QStringLiteral("--exit-with-parent")}
                + arguments);
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(5000))
                return false;
        }
        if (m_process.readLine().trimmed() != m_link.toLocal8Bit())
            return false;
        return openLine();
    }

    bool openLine()
    {
        closeLine();
        m_fd = ::open(QFile::encodeName(m_link).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (m_fd < 0)
            return false;
        termios tio{};
        tcgetattr(m_fd, &tio);
        cfmakeraw(&tio);
        cfsetispeed(&tio, B115200);
        cfsetospeed(&tio, B115200);
        return tcsetattr(m_fd, TCSANOW, &tio) == 0;
    }

    void closeLine()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
    }

    void stop(int signal = SIGTERM)
    {
        closeLine();
        if (m_process.state() != QProcess::NotRunning) {
            ::kill(pid_t(m_process.processId()), signal);
            if (!m_process.waitForFinished(5000)) {
                m_process.kill();
                m_process.waitForFinished(5000);
            }
        }
    }

    bool send(const QByteArray &command)
    {
        return ::write(m_fd, command.constData(), size_t(command.size())) == command.size();
    }

    // Writes the command bare, like the tool, and collects the reply. Stops at silenceMs of
    // silence, at the line's end, or (stopAtEnd) once the reply ends with "OK" or is a refusal.
    Reply exchange(const QByteArray &command,
                   int silenceMs = 300,
                   bool stopAtEnd = true,
                   int limitMs = 20000)
    {
        Reply reply;
        tcflush(m_fd, TCIOFLUSH);
        QElapsedTimer clock;
        clock.start();
        if (!send(command))
            return reply;
        collect(&reply, clock, silenceMs, stopAtEnd, limitMs);
        return reply;
    }

    // Adds to the reply until silenceMs of silence, the line's end, the reply's end
    // (stopAtEnd) or limitMs on the clock.
    void collect(Reply *reply,
                 const QElapsedTimer &clock,
                 int silenceMs,
                 bool stopAtEnd,
                 int limitMs = 20000)
    {
        while (clock.elapsed() < limitMs) {
            pollfd fd{m_fd, POLLIN, 0};
            const int ready = ::poll(&fd, 1, silenceMs);
            if (ready == 0)
                return;
            if (ready < 0) {
                if (errno == EINTR)
                    continue;
                return;
            }
            char buffer[4096];
            const ssize_t n = ::read(m_fd, buffer, sizeof(buffer));
            if (n <= 0) {
                if (n < 0 && errno == EAGAIN)
                    continue;
                reply->lineGone = true;
                return;
            }
            const qint64 now = clock.elapsed();
            if (reply->firstByteMs < 0) {
                reply->firstByteMs = now;
                reply->firstReadSize = int(n);
            } else {
                reply->maxGapMs = std::max(reply->maxGapMs, now - reply->lastByteMs);
            }
            reply->lastByteMs = now;
            reply->bytes.append(buffer, int(n));
            if (stopAtEnd && (reply->bytes.endsWith("OK\r\n") || reply->bytes == "Unrecognize\r\n"))
                return;
        }
    }

    QList<QByteArray> lines(const QByteArray &command)
    {
        const Reply reply = exchange(command);
        QList<QByteArray> result = reply.bytes.split('\n');
        if (!result.isEmpty() && result.last().isEmpty())
            result.removeLast();
        for (QByteArray &line : result) {
            if (line.endsWith('\r'))
                line.chop(1);
        }
        return result;
    }

    QProcess &process() { return m_process; }
    QString link() const { return m_link; }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_link;
    int m_fd = -1;
};

QByteArray settingValue(const QList<QByteArray> &lines, const QByteArray &key)
{
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() == 2 && fields.at(0) == key)
            return fields.at(1);
    }
    return QByteArray();
}

QByteArray findRow(const QList<QByteArray> &lines, const QByteArray &prefix)
{
    for (const QByteArray &line : lines) {
        if (line.startsWith(prefix))
            return line;
    }
    return QByteArray();
}

} // namespace

class tst_Simulator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void refused_data();
    void refused();
    void stateAcrossRuns();
    void stateOfAnotherVariantRefused();
    void pacing();
    void faults_data();
    void faults();
    void faultLeavesStateAlone_data();
    void faultLeavesStateAlone();
    void faultOnlyForPrefix();
    void faultFileChangedAtRunTime();
    void floodStopsAtNextCommand();
    void hangup();
    void transcript();
    void stopSignalRemovesLink_data();
    void stopSignalRemovesLink();
};

void tst_Simulator::initTestCase()
{
    QVERIFY2(!qgetenv("KIRANTO_SIM").isEmpty(),
             "KIRANTO_SIM must name the kiranto-sim executable (ctest sets it)");
}

void tst_Simulator::refused_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("unknown word") << "uki-kiranto" << QByteArray("bogus");
    QTest::newRow("terminator appended") << "uki-kiranto" << QByteArray("get_cfg\r\n");
    QTest::newRow("upper case") << "uki-kiranto" << QByteArray("CFG");
    QTest::newRow("unknown key") << "uki-kiranto" << QByteArray("set_cfg_Foo_1");
    QTest::newRow("key case differs") << "uki-kiranto" << QByteArray("set_cfg_Lang_1");
    QTest::newRow("UKPS key on the monitor") << "uki-kiranto" << QByteArray("set_cfg_Urbrk_1");
    QTest::newRow("monitor key on UKPS") << "ukps-ks" << QByteArray("set_cfg_Averaging_1");
    QTest::newRow("value not a number") << "uki-kiranto" << QByteArray("set_cfg_Tcust_x");
    QTest::newRow("value too large") << "uki-kiranto" << QByteArray("set_cfg_Tcust_2147483648");
    QTest::newRow("save 0") << "uki-kiranto" << QByteArray("set_cfg_save_0");
}

void tst_Simulator::refused()
{
    QFETCH(QString, variant);
    QFETCH(QByteArray, command);
    Device device;
    QVERIFY(device.start({"--variant", variant}));
    QCOMPARE(device.exchange(command).bytes, QByteArray("Unrecognize\r\n"));
}

void tst_Simulator::stateAcrossRuns()
{
    QTemporaryDir dir;
    const QString state = dir.filePath("state.json");
    {
        Device device;
        QVERIFY(device.start({"--state", state}));
        QCOMPARE(device.exchange("set_cfg_RisoM3s1_77").bytes, QByteArray("OK\r\n"));
        QCOMPARE(device.exchange("set_cfg_save_1").bytes, QByteArray("OK\r\n"));
        QCOMPARE(device.exchange("set_cfg_RisoM3s2_11").bytes, QByteArray("OK\r\n"));
        QCOMPARE(device.exchange("set_cust_2_5_15_60_333").bytes, QByteArray("OK\r\n"));
        QCOMPARE(device.exchange("set_cust_1_1_0_0_0").bytes, QByteArray("OK\r\n"));
        QCOMPARE(device.exchange("set_corr_5_7_123_65436").bytes, QByteArray("OK\r\n"));
    }
    QVERIFY(QFile::exists(state));
    Device device;
    QVERIFY(device.start({"--state", state}));
    const QList<QByteArray> settings = device.lines("get_cfg");
    QCOMPARE(settingValue(settings, "RisoM3s1"), QByteArray("77"));
    // Never saved: lost with the power.
    QCOMPARE(settingValue(settings, "RisoM3s2"), QByteArray("30"));
    const QList<QByteArray> custom = device.lines("get_cust");
    QCOMPARE(findRow(custom, "2\t5\t"), QByteArray("2\t5\t333\t15\t60"));
    QCOMPARE(findRow(custom, "1\t1\t"), QByteArray("1\t1\tOFF"));
    QCOMPARE(findRow(device.lines("corr"), "5\t7\t"), QByteArray("5\t7\t123\t-100"));
}

void tst_Simulator::stateOfAnotherVariantRefused()
{
    QTemporaryDir dir;
    const QString state = dir.filePath("state.json");
    {
        Device device;
        QVERIFY(device.start({"--state", state}));
        QCOMPARE(device.exchange("set_cfg_save_1").bytes, QByteArray("OK\r\n"));
    }
    QProcess process;
    process.start(QString::fromLocal8Bit(qgetenv("KIRANTO_SIM")),
                  {"--link", dir.filePath("tty"), "--variant", "ukps-ab", "--state", state});
    QVERIFY(process.waitForFinished(5000));
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().contains("uki-kiranto"));
    QVERIFY(!QFile::exists(dir.filePath("tty")));
}

// The only timing asserted here is an average over a 35 KB transfer, with 10 % either side:
// the line may not run faster than 115200 baud and must not crawl.
void tst_Simulator::pacing()
{
    Device device;
    QVERIFY(device.start({}));
    const Reply reply = device.exchange("dump", 500);
    QVERIFY(reply.bytes.endsWith("OK\r\n"));
    QVERIFY(reply.bytes.size() > 20000);
    const double seconds = double(reply.lastByteMs - reply.firstByteMs) / 1000.0;
    const double rate = double(reply.bytes.size() - reply.firstReadSize) / seconds;
    qInfo("dump: %d bytes in %.3f s = %.0f bytes/s; first byte after %lld ms, longest gap %lld ms",
          int(reply.bytes.size()),
          seconds,
          rate,
          reply.firstByteMs,
          reply.maxGapMs);
    QVERIFY2(rate > 11520 * 0.9 && rate < 11520 * 1.1, QByteArray::number(rate));
}

void tst_Simulator::faults_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("silence") << "silence" << QByteArray("get_cfg");
    QTest::newRow("reject") << "reject" << QByteArray("get_cfg");
    QTest::newRow("slow first byte") << "slow" << QByteArray("get_cfg");
    QTest::newRow("gap in a long reply") << "gap" << QByteArray("get_cfg");
    QTest::newRow("gap in OK") << "gap" << QByteArray("set_cfg_Tcust_10");
    QTest::newRow("garbage") << "garbage" << QByteArray("cfg");
    QTest::newRow("flood") << "flood" << QByteArray("cfg");
}

void tst_Simulator::faults()
{
    QFETCH(QString, mode);
    QFETCH(QByteArray, command);
    QByteArray normal;
    {
        Device device;
        QVERIFY(device.start({}));
        normal = device.exchange(command).bytes;
    }
    Device device;
    QVERIFY(device.start({"--fault", mode}));
    const Reply reply = device.exchange(command, 200, false, 2000);
    if (mode == "silence") {
        QVERIFY(reply.bytes.isEmpty());
    } else if (mode == "reject") {
        QCOMPARE(reply.bytes, QByteArray("Unrecognize\r\n"));
    } else if (mode == "slow") {
        QCOMPARE(reply.bytes, normal);
        QVERIFY2(reply.firstByteMs >= 75, QByteArray::number(reply.firstByteMs));
    } else if (mode == "gap") {
        QCOMPARE(reply.bytes, normal);
        QVERIFY2(reply.maxGapMs >= 45, QByteArray::number(reply.maxGapMs));
    } else if (mode == "garbage") {
        QVERIFY(reply.bytes.contains('\0'));
        QVERIFY(!reply.bytes.contains("OK\r\n"));
        QVERIFY(!reply.bytes.startsWith("Unrecognize"));
    } else if (mode == "flood") {
        // The reply over and over, never a silence of 200 ms.
        QVERIFY2(reply.lastByteMs > 1900, QByteArray::number(reply.lastByteMs));
        QVERIFY(reply.bytes.size() >= 4 * normal.size());
        QVERIFY(reply.bytes.startsWith(normal + normal + normal));
    }
}

void tst_Simulator::faultLeavesStateAlone_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("silence") << "silence" << QByteArray("5\t2\tOFF");
    QTest::newRow("reject") << "reject" << QByteArray("5\t2\tOFF");
    QTest::newRow("garbage") << "garbage" << QByteArray("5\t2\tOFF");
    QTest::newRow("slow still acts") << "slow" << QByteArray("5\t2\t200\t10\t45");
    QTest::newRow("gap still acts") << "gap" << QByteArray("5\t2\t200\t10\t45");
}

void tst_Simulator::faultLeavesStateAlone()
{
    QFETCH(QString, mode);
    QFETCH(QByteArray, row);
    Device device;
    QVERIFY(device.start({"--fault", mode + ":set_cust"}));
    device.exchange("set_cust_5_2_10_45_200", 200, false, 2000);
    QCOMPARE(findRow(device.lines("get_cust"), "5\t2\t"), row);
}

void tst_Simulator::faultOnlyForPrefix()
{
    Device device;
    QVERIFY(device.start({"--fault", "reject:get_cu", "--fault", "silence:set_corr_5"}));
    QCOMPARE(device.exchange("get_cust").bytes, QByteArray("Unrecognize\r\n"));
    QVERIFY(device.exchange("get_cfg").bytes.endsWith("\r\nOK\r\n"));
    QVERIFY(device.exchange("set_corr_5_1_100_0").bytes.isEmpty());
    QCOMPARE(device.exchange("set_corr_1_1_100_0").bytes, QByteArray("OK\r\n"));
}

void tst_Simulator::faultFileChangedAtRunTime()
{
    Device device;
    const QString rules = device.filePath("faults.txt");
    QVERIFY(device.start({"--fault-file", rules}));
    QVERIFY(device.exchange("cfg").bytes.endsWith("OK\r\n"));
    {
        QFile file(rules);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("# the next cfg is refused\nreject:cfg\n");
    }
    QCOMPARE(device.exchange("cfg").bytes, QByteArray("Unrecognize\r\n"));
    QVERIFY(device.exchange("get_cfg").bytes.endsWith("OK\r\n"));
    QVERIFY(QFile::remove(rules));
    QVERIFY(device.exchange("cfg").bytes.endsWith("OK\r\n"));
}

void tst_Simulator::floodStopsAtNextCommand()
{
    Device device;
    QVERIFY(device.start({"--fault", "flood:get_cfg"}));
    const QByteArray cfg = device.exchange("cfg").bytes;
    QVERIFY(cfg.endsWith("OK\r\n"));
    const Reply flood = device.exchange("get_cfg", 200, false, 500);
    QVERIFY(flood.bytes.size() >= 2000);
    // The next command ends the flood; the device then answers it.
    QVERIFY(device.send("cfg"));
    Reply tail;
    QElapsedTimer clock;
    clock.start();
    device.collect(&tail, clock, 300, false, 5000);
    QVERIFY2(tail.bytes.endsWith(cfg), tail.bytes.right(60));
}

void tst_Simulator::hangup()
{
    Device device;
    QVERIFY(device.start({"--fault", "hangup:get_cfg", "--log", device.filePath("log")}));
    QCOMPARE(device.exchange("cfg").bytes.right(4), QByteArray("OK\r\n"));
    const Reply reply = device.exchange("get_cfg", 2000, false);
    QVERIFY(reply.lineGone);
    QVERIFY(!reply.bytes.isEmpty());
    QVERIFY(reply.bytes.size() < 273);
    QVERIFY(reply.bytes.startsWith("AddrUki\t1\r\n"));
    QVERIFY(device.process().waitForFinished(5000));
    QCOMPARE(device.process().exitCode(), 0);
    QVERIFY(!QFileInfo::exists(device.link()));
    QFile log(device.filePath("log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains(" hangup\n"));
}

void tst_Simulator::transcript()
{
    Device device;
    const QString path = device.filePath("transcript.log");
    QVERIFY(device.start({"--log", path, "--fault", "reject:corr"}));
    const QByteArray settings = device.exchange("get_cfg").bytes;
    device.exchange("corr");
    device.stop();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    QStringList events;
    double previous = 0;
    for (const QByteArray &line : lines) {
        const int space = line.indexOf(' ');
        bool ok = false;
        const double stamp = line.left(space).toDouble(&ok);
        QVERIFY2(ok && stamp >= previous, line);
        QVERIFY(QRegularExpression("^\\d+\\.\\d{6}$").match(QString(line.left(space))).hasMatch());
        previous = stamp;
        events << QString::fromLatin1(line.mid(space + 1));
    }
    QCOMPARE(events.size(), 9);
    QVERIFY(events.at(0).startsWith("ready uki-kiranto /dev/pts/"));
    QCOMPARE(events.mid(1),
             QStringList({"cmd get_cfg",
                          "reply-start",
                          QString("reply-end %1").arg(settings.size()),
                          "cmd corr",
                          "fault reject",
                          "reply-start",
                          "reply-end 13",
                          "stop signal 15"}));
}

void tst_Simulator::stopSignalRemovesLink_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << int(SIGTERM);
    QTest::newRow("SIGINT") << int(SIGINT);
}

void tst_Simulator::stopSignalRemovesLink()
{
    QFETCH(int, signal);
    Device device;
    QVERIFY(device.start({}));
    QVERIFY(QFileInfo(device.link()).isSymLink());
    device.stop(signal);
    QCOMPARE(device.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(device.process().exitCode(), 0);
    QVERIFY(!QFileInfo(device.link()).isSymLink());
}

QTEST_GUILESS_MAIN(tst_Simulator)
#include "tst_simulator.moc"
