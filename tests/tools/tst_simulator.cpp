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

struct Range
{
    const char *key;
    qint64 min;
    qint64 max;
};

// Accepted ranges of the insulation monitor's settings, in the device's order.
const QVector<Range> ukiRanges = {
        {"AddrUki", 0, 31},   {"NumUki", 0, 32},        {"RisoM3s1", 1, 999}, {"RisoM3s2", 1, 999},
        {"RisoLoc", 10, 990}, {"TimeMto", 0, 60},       {"Tcust", 0, 120},    {"TimeM3s", 0, 5},
        {"Riso420", 2, 999},  {"Flags", 0, 2147483647}, {"Urelay", 1, 300},   {"Uminus", 0, 300},
        {"MbAddr", 1, 247},   {"MbBaud", 0, 7},         {"MbParity", 0, 2},   {"CapSopt", 0, 900},
        {"ModeDef", 0, 5},    {"Bright", 0, 1000},      {"Contrast", 0, 100}, {"Tbridge", 0, 2},
        {"lang", 0, 1},       {"Averaging", 0, 50},     {"ModeInput", 0, 2},
};

// Accepted ranges of the UKPS settings in text order: FRisoP and FRisoN right after FRippleI.
const QVector<Range> ukpsRanges = {
        {"AddrUki", 0, 31},       {"NumUki", 0, 32},        {"RisoM3s1", 1, 999},
        {"RisoM3s2", 1, 999},     {"RisoLoc", 10, 990},     {"TimeMto", 24, 44},
        {"Tcust", 0, 120},        {"TimeM3s", 0, 5},        {"Riso420", 2, 999},
        {"Flags", 0, 2147483647}, {"Urelay", 1, 300},       {"MbAddr", 1, 247},
        {"MbBaud", 0, 7},         {"MbParity", 0, 2},       {"CapSopt", 0, 60},
        {"ModeDef", 0, 5},        {"Bright", 0, 1000},      {"Contrast", 0, 100},
        {"Tbridge", 0, 2},        {"lang", 0, 1},           {"FRiso1", 0, 5},
        {"FRiso2", 0, 5},         {"FUdis", 0, 5},          {"FUminus", 0, 5},
        {"FFail", 0, 5},          {"FBrwire", 0, 5},        {"FDisch", 0, 5},
        {"FOver", 0, 5},          {"FFall", 0, 5},          {"FRippleU", 0, 5},
        {"FRippleI", 0, 5},       {"FRisoP", 0, 5},         {"FRisoN", 0, 5},
        {"FSymmetry", 0, 5},      {"FOverTemp", 0, 5},      {"FFallTemp", 0, 5},
        {"FOverTail", 0, 5},      {"FFallTail", 0, 5},      {"Cstart", 0, 1},
        {"NumShunt", 1, 14},      {"UMin", 0, 300},         {"UMax", 0, 300},
        {"IDischMin", -9999, -2}, {"IChargeMin", 10, 9999}, {"Uripple", 10, 300},
        {"Iripple", 10, 2000},    {"NumElemAb", 1, 120},    {"DeltaSym", 1, 100},
        {"OverTemp", 20, 100},    {"FallTemp", -20, 20},    {"OverTail", 10, 60},
        {"FallTail", 5, 40},      {"OverDly", 1, 120},      {"FallDly", 1, 120},
        {"BrwireDly", 1, 600},    {"DischDly", 1, 600},     {"RippleUDly", 1, 120},
        {"RippleIDly", 1, 120},   {"TempDly", 1, 120},      {"FUnsch", 0, 5},
        {"UnschDly", 0, 120},     {"Uminus", 0, 135},       {"Urbrk", 0, 30000},
};

const QStringList eventIdentifiers = {
        "ET_GENERAL_RESISTANCE",
        "ET_EVENT_IMS_LOC_DUP_ADDR",
        "ET_EVENT_IMS_CT_FAULT",
        "ET_EVENT_IMS_CTLOC_FAULT",
        "ET_EVENT_IMS_LOC_LOST",
        "ET_EVENT_IMS_UKI_LOST",
        "ET_EVENT_IMS_UKI_ADCONF",
        "ET_EVENT_IMS_UKI_ADOUT",
        "ET_EVENT_IMS_LOC_ADOUT",
        "ET_SODC_PARAM",
        "ET_FEED_PARAM",
        "ET_EVENT_IMS_CT_OVER",
        "ET_EVENT_IMS_POW_OFF_",
        "ET_EVENT_IMS_POW_ON_",
        "ET_EVENT_IMS_LOC_ADSAME",
        "ET_EVENT_RES_REDUCTION",
        "ET_EVENT_RES_REDUCTION_CRIT",
        "ET_EVENT_DISBALANCE_VOLTAGE",
        "ET_EVENT_NO_TMOST",
        "ET_EVENT_FAIL_ON",
        "ET_EVENT_BRWIRE_ON",
        "ET_EVENT_DISCH_ON",
        "ET_EVENT_OVER_ON",
        "ET_EVENT_FALL_ON",
        "ET_EVENT_RIPPLEU_ON",
        "ET_EVENT_RIPPLEI_ON",
        "ET_EVENT_IMS_POW_OFF",
        "ET_EVENT_IMS_POW_ON",
        "ET_EVENT_SYMMETRY_ON",
        "ET_EVENT_OVER_T_ON",
        "ET_EVENT_FALL_T_ON",
        "ET_EVENT_OVER_Tail_ON",
        "ET_EVENT_FALL_Tail_ON",
        "ET_EVENT_SYMMETRY_OFF",
        "ET_EVENT_OVER_T_OFF",
        "ET_EVENT_FALL_T_OFF",
        "ET_EVENT_OVER_Tail_OFF",
        "ET_EVENT_FALL_Tail_OFF",
        "ET_EVENT_FAIL_OFF",
        "ET_EVENT_BRWIRE_OFF",
        "ET_EVENT_DISCH_OFF",
        "ET_EVENT_OVER_OFF",
        "ET_EVENT_FALL_OFF",
        "ET_EVENT_RIPPLEU_OFF",
        "ET_EVENT_RIPPLEI_OFF",
        "ET_EVENT_UMINIMUM_VOLTAGE",
        "ET_EVENT_IMS_UKI_NOMULTI",
        "ET_DEBUG",
        "ET_FEED_COMPLEX",
};

const QByteArray mask16 = "^[01]{16}$";

bool isMask(const QByteArray &text)
{
    return QRegularExpression(QString::fromLatin1(mask16))
            .match(QString::fromLatin1(text))
            .hasMatch();
}

// CT state letter of one channel, from the documented rule.
QChar ctLetter(const QList<QByteArray> &row, int i)
{
    if (row.at(2).at(i) != '1')
        return QLatin1Char('X');
    if (row.at(3).at(i) != '1')
        return QChar(0x0418); // И
    if (row.at(4).at(i) != '1')
        return QChar(0x0438); // и
    if (row.at(5).at(i) == '1')
        return QChar(0x0417); // З
    return QChar(0x041e);     // О
}

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
    void versionsList_data();
    void versionsList();
    void settings_data();
    void settings();
    void customChannels_data();
    void customChannels();
    void corrections_data();
    void corrections();
    void archive_data();
    void archive();
    void statistics_data();
    void statistics();
    void statisticsDeterministic();
    void refused_data();
    void refused();
    void settingsPendingUntilSaved();
    void customChannelWrite_data();
    void customChannelWrite();
    void correctionWrite_data();
    void correctionWrite();
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

void tst_Simulator::versionsList_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QByteArray>("majors");
    QTest::addColumn<QList<int>>("locators");
    QTest::newRow("uki-kiranto") << "uki-kiranto"
                                 << "" << QByteArray("89") << QList<int>{1, 2, 5};
    QTest::newRow("uki-kiranto firmware 8") << "uki-kiranto"
                                            << "8.1.0" << QByteArray("8") << QList<int>{1, 2, 5};
    QTest::newRow("ukps-ks") << "ukps-ks"
                             << "" << QByteArray("3") << QList<int>{};
    QTest::newRow("ukps-ab") << "ukps-ab"
                             << "" << QByteArray("4") << QList<int>{};
    QTest::newRow("ukps-ks-2") << "ukps-ks-2"
                               << "" << QByteArray("5") << QList<int>{2, 3, 7};
}

void tst_Simulator::versionsList()
{
    QFETCH(QString, variant);
    QFETCH(QString, firmware);
    QFETCH(QByteArray, majors);
    QFETCH(QList<int>, locators);
    QStringList arguments{"--variant", variant};
    if (!firmware.isEmpty())
        arguments << "--firmware" << firmware;
    Device device;
    QVERIFY(device.start(arguments));
    const QList<QByteArray> lines = device.lines("cfg");
    QCOMPARE(lines.size(), 1 + 1 + locators.size() + 1);
    QCOMPARE(lines.first(), QByteArray("Addr\tver\tEnabled\tTested"));
    QCOMPARE(lines.last(), QByteArray("OK"));

    const QList<QByteArray> monitor = lines.at(1).split('\t');
    QCOMPARE(monitor.size(), 6);
    QCOMPARE(monitor.at(0), QByteArray("UKI"));
    QVERIFY(QRegularExpression("^\\d+\\.\\d+\\.\\d+$").match(QString(monitor.at(1))).hasMatch());
    QVERIFY2(majors.contains(monitor.at(1).split('.').first()), monitor.at(1));
    if (!firmware.isEmpty())
        QCOMPARE(monitor.at(1), firmware.toLatin1());

    QSet<QChar> letters;
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QList<QByteArray> row = lines.at(i).split('\t');
        QCOMPARE(row.size(), 6);
        if (i > 1)
            QCOMPARE(row.at(0).toInt(), locators.at(i - 2));
        for (int f = 2; f < 6; ++f)
            QVERIFY2(isMask(row.at(f)), lines.at(i));
        for (int c = 0; c < 16; ++c)
            letters.insert(ctLetter(row, c));
    }
    if (!locators.isEmpty()) {
        QCOMPARE(letters.size(), 5);
    }
}

void tst_Simulator::settings_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("uki-kiranto") << "uki-kiranto" << QByteArray("Flags") << QByteArray("2750");
    QTest::newRow("ukps-ks") << "ukps-ks" << QByteArray("MbAddr") << QByteArray("11");
    QTest::newRow("ukps-ab") << "ukps-ab" << QByteArray("MbAddr") << QByteArray("12");
    QTest::newRow("ukps-ks-2") << "ukps-ks-2" << QByteArray("IDischMin") << QByteArray("-50");
}

void tst_Simulator::settings()
{
    QFETCH(QString, variant);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    Device device;
    QVERIFY(device.start({"--variant", variant}));
    const QVector<Range> &ranges = variant == "uki-kiranto" ? ukiRanges : ukpsRanges;
    QCOMPARE(ranges.size(), variant == "uki-kiranto" ? 23 : 63);
    const QList<QByteArray> lines = device.lines("get_cfg");
    QCOMPARE(lines.size(), ranges.size() + 1);
    QCOMPARE(lines.last(), QByteArray("OK"));
    for (int i = 0; i < ranges.size(); ++i) {
        const QList<QByteArray> fields = lines.at(i).split('\t');
        QCOMPARE(fields.size(), 2);
        QCOMPARE(fields.at(0), QByteArray(ranges.at(i).key));
        bool ok = false;
        const qint64 v = fields.at(1).toLongLong(&ok);
        QVERIFY2(ok && v >= ranges.at(i).min && v <= ranges.at(i).max, lines.at(i));
    }
    QCOMPARE(settingValue(lines, key), value);
}

void tst_Simulator::customChannels_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QList<int>>("addresses");
    QTest::newRow("uki-kiranto") << "uki-kiranto" << QList<int>{0, 1, 2, 5};
    QTest::newRow("ukps-ks") << "ukps-ks" << QList<int>{0};
    QTest::newRow("ukps-ks-2") << "ukps-ks-2" << QList<int>{0, 2, 3, 7};
}

void tst_Simulator::customChannels()
{
    QFETCH(QString, variant);
    QFETCH(QList<int>, addresses);
    Device device;
    QVERIFY(device.start({"--variant", variant}));
    const QList<QByteArray> lines = device.lines("get_cust");
    QCOMPARE(lines.first(), QByteArray("address\tchannel\tr_loc\tlower\tupper"));
    QCOMPARE(lines.last(), QByteArray("OK"));
    QCOMPARE(lines.size(), 2 + 16 * addresses.size());
    int off = 0;
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QList<QByteArray> f = lines.at(i).split('\t');
        QCOMPARE(f.at(0).toInt(), addresses.at((i - 1) / 16));
        QCOMPARE(f.at(1).toInt(), (i - 1) % 16 + 1);
        if (f.size() == 3) {
            QCOMPARE(f.at(2), QByteArray("OFF"));
            ++off;
            continue;
        }
        QCOMPARE(f.size(), 5);
        QVERIFY2(f.at(2).toInt() >= 1 && f.at(2).toInt() <= 999, lines.at(i));
        for (int b = 3; b < 5; ++b)
            QVERIFY2(f.at(b).toInt() <= 75 && f.at(b).toInt() % 5 == 0, lines.at(i));
    }
    QVERIFY(off > 0);
    QVERIFY(off < 16 * addresses.size());
    QCOMPARE(findRow(lines, "0\t1\t"), QByteArray("0\t1\t101\t0\t45"));
    QCOMPARE(findRow(lines, "0\t2\t"), QByteArray("0\t2\tOFF"));
}

void tst_Simulator::corrections_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<int>("units");
    QTest::newRow("uki-kiranto") << "uki-kiranto" << 4;
    QTest::newRow("ukps-ab") << "ukps-ab" << 1;
    QTest::newRow("ukps-ks-2") << "ukps-ks-2" << 4;
}

void tst_Simulator::corrections()
{
    QFETCH(QString, variant);
    QFETCH(int, units);
    Device device;
    QVERIFY(device.start({"--variant", variant}));
    const QList<QByteArray> lines = device.lines("corr");
    QCOMPARE(lines.first(), QByteArray("address\tchannel\tgain*100\t phase*10"));
    QCOMPARE(lines.last(), QByteArray("OK"));
    QCOMPARE(lines.size(), 2 + 16 * units);
    bool negative = false;
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QList<QByteArray> f = lines.at(i).split('\t');
        QCOMPARE(f.size(), 4);
        QCOMPARE(f.at(1).toInt(), (i - 1) % 16 + 1);
        QVERIFY(f.at(2).toInt() >= 1 && f.at(2).toInt() <= 99900);
        bool ok = false;
        negative |= f.at(3).toInt(&ok) < 0;
        QVERIFY(ok);
    }
    QVERIFY(negative);
    QCOMPARE(findRow(lines, "0\t3\t"), QByteArray("0\t3\t101\t-3"));
}

void tst_Simulator::archive_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("version");
    QTest::newRow("uki-kiranto default size") << "uki-kiranto" << 0 << QByteArray("9\t6\t43");
    QTest::newRow("ukps-ab 60 events") << "ukps-ab" << 60 << QByteArray("4\t1\t8");
    QTest::newRow("ukps-ks-2 120 events") << "ukps-ks-2" << 120 << QByteArray("5\t0\t12");
}

void tst_Simulator::archive()
{
    QFETCH(QString, variant);
    QFETCH(int, size);
    QFETCH(QByteArray, version);
    QStringList arguments{"--variant", variant};
    if (size > 0)
        arguments << "--archive-size" << QString::number(size);
    else
        size = 500;
    Device device;
    QVERIFY(device.start(arguments));
    const QList<QByteArray> lines = device.lines("dump");
    QCOMPARE(lines.first(),
             QByteArray("Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5"
                        "\tValue-6\tValue-7\tValue-8"));
    QCOMPARE(lines.last(), QByteArray("OK"));
    QCOMPARE(lines.size(), size + 2);

    QSet<QString> seen;
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QByteArray &line = lines.at(i);
        const QList<QByteArray> f = line.split('\t');
        QVERIFY2(f.size() >= 4, line);
        QCOMPARE(f.at(0).toInt(), i);
        QVERIFY2(QDate::fromString(QString(f.at(1)), "dd.MM.yy").isValid(), line);
        QVERIFY2(QTime::fromString(QString(f.at(2)), "hh:mm:ss").isValid(), line);
        const QString type = QString::fromLatin1(f.at(3));
        QVERIFY2(eventIdentifiers.contains(type), line);
        seen.insert(type);
        if (type == "ET_EVENT_IMS_CT_FAULT" || type == "ET_EVENT_IMS_CTLOC_FAULT") {
            QCOMPARE(f.size(), 8);
            for (int v = 4; v < 8; ++v)
                QVERIFY2(isMask(f.at(v)), line);
            continue;
        }
        QCOMPARE(f.size(), 12);
        const int numbers = type == "ET_FEED_PARAM" ? 10 : 12;
        for (int v = 4; v < numbers; ++v) {
            bool ok = false;
            QVERIFY2(f.at(v).toUInt(&ok) <= 65535 && ok, line);
        }
        if (type == "ET_FEED_PARAM") {
            QVERIFY2(QDate::fromString(QString(f.at(10)), "dd.MM.yy").isValid(), line);
            QVERIFY2(QTime::fromString(QString(f.at(11)), "hh:mm:ss").isValid(), line);
        }
        if (type == "ET_EVENT_BRWIRE_ON" || type == "ET_EVENT_DISCH_ON"
            || type == "ET_EVENT_BRWIRE_OFF" || type == "ET_EVENT_DISCH_OFF") {
            QVERIFY2(f.at(4).toUInt() > 65000, line);
        }
        if (type == "ET_EVENT_IMS_POW_ON")
            QVERIFY2(line.contains("\t" + version + "\t"), line);
    }
    QCOMPARE(seen.size(), std::min(size, int(eventIdentifiers.size())));
}

void tst_Simulator::statistics_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("answered");
    QTest::newRow("level 0 first") << QByteArray("srch_stats_0_0_3_0") << true;
    QTest::newRow("level 0 last") << QByteArray("srch_stats_0_5_15_7") << true;
    QTest::newRow("level 0 past the end") << QByteArray("srch_stats_0_0_3_8") << false;
    QTest::newRow("level 1 monitor last") << QByteArray("srch_stats_1_0_2_15") << true;
    QTest::newRow("level 1 monitor past the end") << QByteArray("srch_stats_1_0_2_16") << false;
    QTest::newRow("level 1 locator last") << QByteArray("srch_stats_1_5_2_79") << true;
    QTest::newRow("level 1 locator past the end") << QByteArray("srch_stats_1_5_2_80") << false;
    QTest::newRow("level 2") << QByteArray("srch_stats_2_0_0_0") << false;
    QTest::newRow("channel 16") << QByteArray("srch_stats_0_1_16_0") << false;
    QTest::newRow("no such locator") << QByteArray("srch_stats_1_7_0_0") << false;
    QTest::newRow("five parts") << QByteArray("srch_stats_1_0_0") << false;
}

void tst_Simulator::statistics()
{
    QFETCH(QByteArray, command);
    QFETCH(bool, answered);
    Device device;
    QVERIFY(device.start({}));
    const QByteArray reply = device.exchange(command).bytes;
    if (!answered) {
        QCOMPARE(reply, QByteArray("Unrecognize\r\n"));
        return;
    }
    QVERIFY2(reply.endsWith("\r\nOK\r\n"), reply);
    const QList<QByteArray> f = reply.left(reply.indexOf('\r')).split('\t');
    QCOMPARE(f.size(), 3);
    for (const QByteArray &value : f) {
        bool ok = false;
        value.toDouble(&ok);
        QVERIFY2(ok, reply);
    }
}

void tst_Simulator::statisticsDeterministic()
{
    auto channelRun = [](Device &device, const QByteArray &key) {
        QList<QByteArray> replies;
        for (int i = 0; i < 16; ++i)
            replies << device.exchange("srch_stats_1_0_" + key + "_" + QByteArray::number(i)).bytes;
        return replies;
    };
    Device device;
    QVERIFY(device.start({}));
    const QList<QByteArray> first = channelRun(device, "4");
    QCOMPARE(device.exchange("srch_stats_1_0_4_3").bytes, first.at(3));
    int above = 0;
    for (const QByteArray &reply : first) {
        if (reply.split('\t').value(2).split('\r').first().toDouble() > 999.9)
            ++above;
    }
    QVERIFY(above > 0);
    QVERIFY(above < 16);
    QVERIFY(channelRun(device, "5") != first);

    Device again;
    QVERIFY(again.start({}));
    QCOMPARE(channelRun(again, "4"), first);
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

void tst_Simulator::settingsPendingUntilSaved()
{
    Device device;
    QVERIFY(device.start({"--variant", "ukps-ks"}));
    QCOMPARE(device.exchange("set_cfg_IDischMin_-10").bytes, QByteArray("OK\r\n"));
    QCOMPARE(device.exchange("set_cfg_Urbrk_99999").bytes, QByteArray("OK\r\n"));
    QCOMPARE(settingValue(device.lines("get_cfg"), "IDischMin"), QByteArray("-50"));
    QCOMPARE(device.exchange("set_cfg_save_1").bytes, QByteArray("OK\r\n"));
    const QList<QByteArray> lines = device.lines("get_cfg");
    QCOMPARE(settingValue(lines, "IDischMin"), QByteArray("-10"));
    QCOMPARE(settingValue(lines, "Urbrk"), QByteArray("99999"));
    QCOMPARE(lines.size(), 64);
}

void tst_Simulator::customChannelWrite_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("switch on") << QByteArray("set_cust_5_2_10_45_200") << QByteArray("OK\r\n")
                               << QByteArray("5\t2\t200\t10\t45");
    QTest::newRow("rloc 0 switches off") << QByteArray("set_cust_0_1_10_45_0")
                                         << QByteArray("OK\r\n") << QByteArray("0\t1\tOFF");
    QTest::newRow("bound not a step of 5")
            << QByteArray("set_cust_5_2_12_45_200") << QByteArray("Unrecognize\r\n")
            << QByteArray("5\t2\tOFF");
    QTest::newRow("bound above 75") << QByteArray("set_cust_5_2_10_80_200")
                                    << QByteArray("Unrecognize\r\n") << QByteArray("5\t2\tOFF");
    QTest::newRow("rloc above 999") << QByteArray("set_cust_5_2_10_45_1000")
                                    << QByteArray("Unrecognize\r\n") << QByteArray("5\t2\tOFF");
    QTest::newRow("channel 0") << QByteArray("set_cust_5_0_10_45_200")
                               << QByteArray("Unrecognize\r\n") << QByteArray("5\t2\tOFF");
    QTest::newRow("no such locator") << QByteArray("set_cust_9_2_10_45_200")
                                     << QByteArray("Unrecognize\r\n") << QByteArray("5\t2\tOFF");
}

void tst_Simulator::customChannelWrite()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, row);
    Device device;
    QVERIFY(device.start({}));
    QCOMPARE(device.exchange(command).bytes, reply);
    const QList<QByteArray> lines = device.lines("get_cust");
    QCOMPARE(findRow(lines, row.left(row.indexOf('\t', 2) + 1)), row);
    QCOMPARE(lines.size(), 66);
}

void tst_Simulator::correctionWrite_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("negative phase as 65536 + value")
            << QByteArray("set_corr_1_3_150_65511") << QByteArray("OK\r\n")
            << QByteArray("1\t3\t150\t-25");
    QTest::newRow("phase -0.1") << QByteArray("set_corr_1_3_100_65535") << QByteArray("OK\r\n")
                                << QByteArray("1\t3\t100\t-1");
    QTest::newRow("positive phase") << QByteArray("set_corr_5_16_99900_3600")
                                    << QByteArray("OK\r\n") << QByteArray("5\t16\t99900\t3600");
    QTest::newRow("signed phase refused")
            << QByteArray("set_corr_1_3_100_-25") << QByteArray("Unrecognize\r\n")
            << QByteArray("1\t3\t102\t-13");
    QTest::newRow("phase above 16 bits")
            << QByteArray("set_corr_1_3_100_65536") << QByteArray("Unrecognize\r\n")
            << QByteArray("1\t3\t102\t-13");
    QTest::newRow("gain 0") << QByteArray("set_corr_1_3_0_0") << QByteArray("Unrecognize\r\n")
                            << QByteArray("1\t3\t102\t-13");
    QTest::newRow("channel 17") << QByteArray("set_corr_1_17_100_0")
                                << QByteArray("Unrecognize\r\n") << QByteArray("1\t3\t102\t-13");
}

void tst_Simulator::correctionWrite()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, row);
    Device device;
    QVERIFY(device.start({}));
    QCOMPARE(device.exchange(command).bytes, reply);
    const QList<QByteArray> lines = device.lines("corr");
    QCOMPARE(findRow(lines, row.left(row.indexOf('\t', 2) + 1)), row);
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
