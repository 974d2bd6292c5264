// The protocol engine end to end: Uki with its real serial link, talking to the device simulator
// over a pseudo-terminal. The simulator's transcript shows what reached the device.

#include "app/programsettings.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "protocol/uki.h"
#include "settings/ukisettings.h"
#include "support.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

// Waits are generous: the machine is shared and a run of 80 commands takes seconds.
constexpr int kRunMs = 60000;

// The device's transcript since a mark and its fault rules, on the shared simulator.
class Device
{
public:
    explicit Device(const QString &folder)
        : sim(folder)
    {}

    bool start(const QStringList &arguments)
    {
        m_mark = 0;
        return sim.start(QStringList{"--archive-size", "20", "--fault-file", faultPath()}
                         + arguments);
    }
    QString link() const { return sim.link(); }
    QString faultPath() const { return QFileInfo(sim.statePath()).path() + "/faults"; }

    // Replaces the fault rules; the simulator re-reads them before its next command. A
    // comment that grows changes the size, so that a rewrite within one tick is noticed.
    void setFaults(const QStringList &rules)
    {
        QByteArray text = '#' + QByteArray(++m_faultVersion, '.') + '\n';
        for (const QString &rule : rules)
            text += rule.toLatin1() + '\n';
        QVERIFY(TestSupport::writeFile(faultPath(), text));
    }

    QStringList transcript() const
    {
        QStringList lines;
        for (const QByteArray &line : TestSupport::readFile(sim.transcriptPath()).split('\n')) {
            if (!line.isEmpty())
                lines << QString::fromLatin1(line);
        }
        return lines;
    }
    void mark() { m_mark = transcript().size(); }
    // Events since mark() without their time stamps: "cmd get_cfg", "reply-start", ...
    QStringList eventsSinceMark() const
    {
        QStringList events;
        for (const QString &line : transcript().mid(m_mark))
            events << line.section(' ', 1);
        return events;
    }
    QStringList commandsSinceMark() const
    {
        return eventsSinceMark()
                .filter(QRegularExpression("^cmd "))
                .replaceInStrings(QRegularExpression("^cmd "), QString());
    }
    // Waits until `count` events beginning with `event` have come since mark().
    bool waitForEvent(const QString &event, int count = 1)
    {
        QElapsedTimer clock;
        clock.start();
        while (eventsSinceMark().filter(QRegularExpression("^" + event)).size() < count) {
            if (clock.elapsed() > kRunMs)
                return false;
            QTest::qWait(20);
        }
        return true;
    }

    TestSupport::Simulator sim;

private:
    int m_mark = 0;
    int m_faultVersion = 0;
};

// Everything the engine emits, in order: "start", "log:<text>", "progress:2/5", "done:1",
// "read:1:31", "write:0", "stats:1:5:2:1".
class Recorder
{
public:
    explicit Recorder(Uki *uki)
    {
        QObject::connect(uki, &Uki::programStart, [this] { events << "start"; });
        QObject::connect(uki, &Uki::logMessage, [this](const QString &m) { events << "log:" + m; });
        QObject::connect(uki, &Uki::progress, [this](int answered, int total) {
            events << QString("progress:%1/%2").arg(answered).arg(total);
        });
        QObject::connect(
                uki, &Uki::programDone, [this](bool ok) { events << QString("done:%1").arg(ok); });
        QObject::connect(uki, &Uki::configReadDone, [this](bool ok, uint32_t flags) {
            events << QString("read:%1:%2").arg(ok).arg(flags);
        });
        QObject::connect(uki, &Uki::configWriteDone, [this](bool ok) {
            events << QString("write:%1").arg(ok);
        });
        QObject::connect(uki, &Uki::statsReadDone, [this](bool ok, uint a, uint c, uint l) {
            events << QString("stats:%1:%2:%3:%4").arg(ok).arg(a).arg(c).arg(l);
        });
    }

    QStringList logs() const
    {
        QStringList lines;
        for (const QString &event : events) {
            if (event.startsWith("log:"))
                lines << event.mid(4);
        }
        return lines;
    }

    QStringList progress() const { return events.filter(QRegularExpression("^progress:")); }

    QStringList events;
};

QStringList statsCommands(uint address, uint channel, uint level, int count)
{
    QStringList commands;
    for (int i = 0; i < count; ++i)
        commands << QString("srch_stats_%1_%2_%3_%4").arg(level).arg(address).arg(channel).arg(i);
    return commands;
}

QStringList progressUpTo(int total)
{
    QStringList steps;
    for (int i = 0; i <= total; ++i)
        steps << QString("progress:%1/%2").arg(i).arg(total);
    return steps;
}

enum Request { ReadAll, ReadStats, WriteSettings };

// The helpers verify; a failure there ends the test function too.
#define START_SIMULATOR(...) \
    do { \
        startSimulator(__VA_ARGS__); \
        if (QTest::currentTestFailed()) \
            return; \
    } while (false)
#define RUN_OK(...) \
    do { \
        runOk(__VA_ARGS__); \
        if (QTest::currentTestFailed()) \
            return; \
    } while (false)
#define RUN(...) \
    do { \
        run(__VA_ARGS__); \
        if (QTest::currentTestFailed()) \
            return; \
    } while (false)

} // namespace

Q_DECLARE_METATYPE(Request)

class tst_Uki : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void readData_data();
    void readData();
    void signalOrder_data();
    void signalOrder();
    void refusedEmptyFlags();
    void refusedWhileRunning();
    void refusedWhileClosing();
    void failedRun_data();
    void failedRun();
    void readStats_data();
    void readStats();
    void readStatsTwiceKeepsSecond();
    void writeCorrections();
    void writeCorrectionsUnchanged();
    void writeSettingsRecord();
    void writeCommands_data();
    void writeCommands();
    void writeCustomChannel_data();
    void writeCustomChannel();
    void lateReplyAfterTimeout();
    void replyCutByGap_data();
    void replyCutByGap();
    void garbageIsOneReply();

private:
    // Starts the simulator unless it runs with these arguments already; clears its faults.
    // `fresh` restarts it with the device's settings as delivered.
    void startSimulator(const QStringList &arguments = {}, bool fresh = false);
    // Starts a request and waits until the engine reports its end.
    void run(const std::function<bool()> &request);
    // The same for a run that should succeed. On a loaded machine a process may sleep past the
    // 50 ms answer time-out; such a run is repeated (at most twice) once the device is quiet.
    void runOk(const std::function<bool()> &request);

    QTemporaryDir m_dir;
    std::unique_ptr<Device> m_sim;
    QStringList m_simArguments;
    std::unique_ptr<Uki> m_uki;
    std::unique_ptr<Recorder> m_recorder;
};

void tst_Uki::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_sim = std::make_unique<Device>(m_dir.path());
}

void tst_Uki::init()
{
    m_uki = std::make_unique<Uki>();
    m_recorder = std::make_unique<Recorder>(m_uki.get());
}

void tst_Uki::cleanup()
{
    if (QTest::currentTestFailed() && m_sim) {
        qWarning().noquote() << "transcript of the last run:\n"
                                        + m_sim->eventsSinceMark().join('\n');
        qWarning().noquote() << "engine events of the last run:\n" + m_recorder->events.join('\n');
    }
    m_recorder.reset();
    m_uki.reset();
}

void tst_Uki::startSimulator(const QStringList &arguments, bool fresh)
{
    ProgramSettings::instance().port = m_sim->link();
    m_sim->setFaults({});
    if (!fresh && m_sim->sim.isRunning() && arguments == m_simArguments)
        return;
    m_sim->sim.stop();
    QFile::remove(m_sim->sim.statePath());
    m_simArguments = arguments;
    QVERIFY2(m_sim->start(arguments), "kiranto-sim did not start (is KIRANTO_SIM set?)");
}

void tst_Uki::run(const std::function<bool()> &request)
{
    m_recorder->events.clear();
    m_sim->mark();
    QSignalSpy done(m_uki.get(), &Uki::programDone);
    QVERIFY(request());
    QVERIFY(done.wait(kRunMs));
    QVERIFY(!m_uki->isBusy());
}

void tst_Uki::runOk(const std::function<bool()> &request)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        run(request);
        if (QTest::currentTestFailed() || m_recorder->events.contains("done:1")
            || m_recorder->logs().filter("Нет ответа на команду ").isEmpty()) {
            return;
        }
        qWarning("a time-out nobody asked for (a busy machine): the run is repeated");
        QVERIFY(m_sim->waitForEvent("reply-end", m_sim->commandsSinceMark().size()));
        QTest::qWait(200);
    }
}

void tst_Uki::readData_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<uint>("flags");
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QString>("version");
    QTest::addColumn<int>("locators");

    const QStringList all{"get_cfg", "cfg", "get_cust", "corr", "dump"};
    QTest::newRow("uki-kiranto, every block") << "uki-kiranto" << 31u << all << "9.6.43" << 4;
    QTest::newRow("archive before corrections in bit order")
            << "uki-kiranto" << 20u << QStringList{"corr", "dump"} << "" << 0;
    QTest::newRow("ukps-ks-2, every block") << "ukps-ks-2" << 31u << all << "5.0.12" << 3;
}

void tst_Uki::readData()
{
    QFETCH(QString, variant);
    QFETCH(uint, flags);
    QFETCH(QStringList, commands);
    QFETCH(QString, version);
    QFETCH(int, locators);

    START_SIMULATOR({"--variant", variant});
    const std::shared_ptr<Locators> oldLocators = m_uki->locators();
    const std::shared_ptr<CustomChannels> oldCustom = m_uki->customChannels();
    RUN_OK([&] { return m_uki->readData(flags); });

    QCOMPARE(m_sim->commandsSinceMark(), commands);
    QCOMPARE(m_recorder->events.last(), QString("read:1:%1").arg(flags));
    QCOMPARE(m_recorder->progress(), progressUpTo(commands.size()));

    struct Block
    {
        uint flag;
        const QStringList &lines;
        const char *header;
    };
    const Block blocks[] = {
            {Uki::ReadSettings, m_uki->getCfgLines(), "AddrUki\t"},
            {Uki::ReadIdentification, m_uki->cfgLines(), "Addr\tver\tEnabled\tTested"},
            {Uki::ReadCustomChannels, m_uki->custLines(), "address\tchannel\tr_loc\tlower\tupper"},
            {Uki::ReadCorrections, m_uki->corrLines(), "address\tchannel\tgain*100\t phase*10"},
            {Uki::ReadArchive, m_uki->dumpLines(), "Item\tDate\tTime\tType\tValue-1"},
    };
    for (const Block &block : blocks) {
        if (!(flags & block.flag)) {
            QVERIFY2(block.lines.isEmpty(), block.header);
            continue;
        }
        QVERIFY2(block.lines.size() > 2, block.header);
        QVERIFY2(block.lines.first().startsWith(block.header), qPrintable(block.lines.first()));
        // The closing line reaches every consumer.
        QCOMPARE(block.lines.last(), QString("OK"));
    }

    QCOMPARE(m_uki->ukiVersion(), version);
    if (flags & Uki::ReadIdentification) {
        QVERIFY(m_uki->locators() != oldLocators);
        // The versions list of a UKPS device holds no row for the monitor itself.
        QCOMPARE(m_uki->locators()->rowCount(), locators);
        QVERIFY(m_recorder->logs().contains("_locators_"));
    } else {
        QCOMPARE(m_uki->locators(), oldLocators);
    }
    if (flags & Uki::ReadCustomChannels) {
        QVERIFY(m_uki->customChannels() != oldCustom);
        QCOMPARE(m_uki->customChannels()->rowCount(), m_uki->custLines().size() - 2);
    } else {
        QCOMPARE(m_uki->customChannels(), oldCustom);
    }
    if (flags & Uki::ReadSettings && variant == "uki-kiranto")
        QCOMPARE(m_uki->getCfgLines().size(), UkiSettings::FieldCount + 1);
}

void tst_Uki::signalOrder_data()
{
    QTest::addColumn<int>("request");
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("commands");

    QTest::newRow("read data") << 0 << QStringList() << "read:1:3" << 2;
    QTest::newRow("write") << 1 << QStringList() << "write:1" << 2;
    QTest::newRow("read statistics") << 2 << QStringList() << "stats:1:1:4:0" << 8;
    QTest::newRow("read data, no reply") << 0 << QStringList{"silence:cfg"} << "read:0:3" << -1;
    QTest::newRow("write refused") << 1 << QStringList{"reject"} << "write:0" << -1;
    QTest::newRow("statistics refused")
            << 2 << QStringList{"reject:srch_stats_0_1_4_5"} << "stats:0:0:0:0" << -1;
}

void tst_Uki::signalOrder()
{
    QFETCH(int, request);
    QFETCH(QStringList, faults);
    QFETCH(QString, typed);
    QFETCH(int, commands);

    START_SIMULATOR();
    m_sim->setFaults(faults);
    RUN([&] {
        switch (request) {
        case 0:
            return m_uki->readData(3);
        case 1:
            return m_uki->writeCommands({"set_cfg_Bright_600", "set_cfg_save_1"});
        default:
            return m_uki->readStats(1, 4, 0);
        }
    });

    const QStringList &events = m_recorder->events;
    const QString link = m_sim->link();
    QCOMPARE(events.first(), QString("start"));
    QCOMPARE(events.at(1).left(11), QString("progress:0/"));
    QCOMPARE(events.at(2), "log:" + QString("Порт %1: открыт.").arg(link));
    // The link is closed before the outcome is told, and the general outcome comes first.
    QCOMPARE(events.mid(events.size() - 3),
             QStringList({"log:" + QString("Порт %1: закрыт.").arg(link),
                          "done:" + typed.section(':', 1, 1),
                          typed}));
    QCOMPARE(events.count("start"), 1);
    QCOMPARE(events.filter(QRegularExpression("^done:")).size(), 1);
    if (commands >= 0) {
        QCOMPARE(m_recorder->progress(), progressUpTo(commands));
        QVERIFY(m_recorder->logs().contains("Результаты:"));
    } else {
        QVERIFY(!m_recorder->logs().contains("Результаты:"));
    }
}

void tst_Uki::refusedEmptyFlags()
{
    START_SIMULATOR();
    m_sim->mark();
    QTest::ignoreMessage(QtDebugMsg, "Ukps::readData() : empty flags");
    QVERIFY(!m_uki->readData(0));
    QVERIFY(!m_uki->isBusy());
    QTest::qWait(300);
    QVERIFY(m_recorder->events.isEmpty());
    QVERIFY(m_sim->eventsSinceMark().isEmpty());
}

void tst_Uki::refusedWhileRunning()
{
    // A long archive keeps the first program busy for about a second.
    START_SIMULATOR({"--archive-size", "300"});
    m_sim->mark();
    QSignalSpy done(m_uki.get(), &Uki::programDone);
    QVERIFY(m_uki->readData(Uki::ReadArchive));
    QVERIFY(m_sim->waitForEvent("reply-start"));

    // A request while the link exists is dropped and also ends the run in progress.
    QTest::ignoreMessage(QtDebugMsg, "Ukps::startProgram() called when not idle!");
    QVERIFY(!m_uki->readStats(0, 0, 0));
    QVERIFY(done.wait(kRunMs));
    QCOMPARE(m_recorder->events.last(), QString("read:0:4"));
    QCOMPARE(m_recorder->events.count("start"), 1);
    QTest::qWait(300);
    QCOMPARE(m_sim->commandsSinceMark(), QStringList{"dump"});
    QVERIFY(m_uki->dumpLines().isEmpty());
}

void tst_Uki::refusedWhileClosing()
{
    START_SIMULATOR();
    // The program is still active while its outcome is told.
    QList<bool> accepted;
    connect(m_uki.get(), &Uki::programDone, this, [&] {
        accepted << m_uki->readData(Uki::ReadIdentification);
    });
    QTest::ignoreMessage(QtDebugMsg, "Ukps::startProgram() called when another program active!");
    RUN([&] { return m_uki->readData(Uki::ReadSettings); });
    QCOMPARE(accepted, QList<bool>{false});
    // The refused request took its flags, but the outcome names those of the run that ended.
    QCOMPARE(m_recorder->events.last(), QString("read:1:1"));
    QTest::qWait(300);
    QCOMPARE(m_recorder->events.count("start"), 1);
    QCOMPARE(m_sim->commandsSinceMark(), QStringList{"get_cfg"});
    QVERIFY(!m_uki->isBusy());
}

void tst_Uki::failedRun_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<bool>("portMissing");
    QTest::addColumn<QString>("log");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("writes");

    const QStringList readAll{"get_cfg", "cfg", "get_cust", "corr", "dump"};
    QTest::newRow("no reply to corr")
            << ReadAll << QStringList{"silence:corr"} << false << "Нет ответа на команду corr"
            << QStringList(readAll.mid(0, 4)) << "read:0:31" << QStringList();
    QTest::newRow("get_cust refused")
            << ReadAll << QStringList{"reject:get_cust"} << false
            << "Ошибка при выполнении команды get_cust" << QStringList(readAll.mid(0, 3))
            << "read:0:31" << QStringList();
    QTest::newRow("line hung up in cfg") << ReadAll << QStringList{"hangup:cfg"} << false
                                         << "Порт %1: Ошибка: " << QStringList(readAll.mid(0, 2))
                                         << "read:0:31" << QStringList();
    QTest::newRow("no such port") << ReadAll << QStringList() << true
                                  << "Порт %1: Ошибка: Ошибка открытия порта %1 : " << QStringList()
                                  << "read:0:31" << QStringList();
    QTest::newRow("statistics block 3 unanswered")
            << ReadStats << QStringList{"silence:srch_stats_1_5_2_3"} << false
            << "Нет ответа на команду srch_stats_1_5_2_3" << statsCommands(5, 2, 1, 4)
            << "stats:0:1:0:1" << QStringList();
    QTest::newRow("unknown setting refused")
            << WriteSettings << QStringList() << false
            << "Ошибка при выполнении команды set_cfg_Bogus_1"
            << QStringList{"set_cfg_Bright_500", "set_cfg_Bogus_1"} << "write:0"
            << QStringList{"set_cfg_Bright_500", "set_cfg_Bogus_1", "set_cfg_save_1"};
    QTest::newRow("save unanswered")
            << WriteSettings << QStringList{"silence:set_cfg_save"} << false
            << "Нет ответа на команду set_cfg_save_1"
            << QStringList{"set_cfg_Bright_500", "set_cfg_save_1"} << "write:0"
            << QStringList{"set_cfg_Bright_500", "set_cfg_save_1"};
}

void tst_Uki::failedRun()
{
    QFETCH(Request, request);
    QFETCH(QStringList, faults);
    QFETCH(bool, portMissing);
    QFETCH(QString, log);
    QFETCH(QStringList, sent);
    QFETCH(QString, typed);
    QFETCH(QStringList, writes);

    // Models from earlier good runs; a fresh device, as a hung-up line leaves the last one unsure.
    START_SIMULATOR({}, true);
    RUN_OK([&] { return m_uki->readData(31); });
    QCOMPARE(m_recorder->events.last(), QString("read:1:31"));
    UkiSettings settings;
    settings.setValue(UkiSettings::Tcust, 4);
    m_uki->setSettings(settings);
    RUN_OK([&] { return m_uki->readStats(1, 0, 1); });
    QCOMPARE(m_recorder->events.last(), QString("stats:1:1:0:1"));
    const auto locators = m_uki->locators();
    const auto custom = m_uki->customChannels();
    const auto statistics = m_uki->statistics(1, 0, 1);
    const QString version = m_uki->ukiVersion();
    const QStringList before[] = {m_uki->getCfgLines(),
                                  m_uki->cfgLines(),
                                  m_uki->custLines(),
                                  m_uki->corrLines(),
                                  m_uki->dumpLines()};
    QVERIFY(statistics);

    m_sim->setFaults(faults);
    if (portMissing)
        ProgramSettings::instance().port = m_dir.filePath("ttyMissing");
    const QString port = ProgramSettings::instance().port;
    RUN([&] {
        switch (request) {
        case ReadAll:
            return m_uki->readData(31);
        case ReadStats:
            settings.setValue(UkiSettings::Tcust, 10);
            m_uki->setSettings(settings);
            return m_uki->readStats(5, 2, 1);
        case WriteSettings:
            break;
        }
        return m_uki->writeCommands(writes);
    });

    const QString expected = QString(log).replace("%1", port);
    const QStringList logs = m_recorder->logs();
    QVERIFY2(std::any_of(logs.begin(),
                         logs.end(),
                         [&](const QString &line) { return line.startsWith(expected); }),
             qPrintable(logs.join('\n')));
    QCOMPARE(m_recorder->events.last(), typed);
    QCOMPARE(m_recorder->events.at(m_recorder->events.size() - 2), QString("done:0"));
    QVERIFY(!logs.contains("Результаты:"));
    QCOMPARE(m_sim->commandsSinceMark(), sent);

    QCOMPARE(m_uki->locators(), locators);
    QCOMPARE(m_uki->customChannels(), custom);
    QCOMPARE(m_uki->statistics(1, 0, 1), statistics);
    QVERIFY(!m_uki->statistics(5, 2, 1));
    QCOMPARE(m_uki->ukiVersion(), version);

    const QStringList after[] = {m_uki->getCfgLines(),
                                 m_uki->cfgLines(),
                                 m_uki->custLines(),
                                 m_uki->corrLines(),
                                 m_uki->dumpLines()};
    const QStringList readAll{"get_cfg", "cfg", "get_cust", "corr", "dump"};
    for (int i = 0; i < readAll.size(); ++i) {
        if (request != ReadAll) {
            QCOMPARE(after[i], before[i]);
            continue;
        }
        // Answered commands keep their new lines; the rest were emptied at the start.
        const bool answered = sent.mid(0, sent.size() - 1).contains(readAll.at(i));
        if (answered)
            QCOMPARE(after[i], before[i]);
        else
            QVERIFY2(after[i].isEmpty(), qPrintable(readAll.at(i)));
    }
}

void tst_Uki::readStats_data()
{
    QTest::addColumn<uint>("address");
    QTest::addColumn<uint>("channel");
    QTest::addColumn<uint>("level");
    QTest::addColumn<int>("tcust");
    QTest::addColumn<int>("count");

    QTest::newRow("level 0: eight blocks") << 0u << 3u << 0u << 10 << 8;
    QTest::newRow("locator, Tcust 10") << 5u << 2u << 1u << 10 << 25;
    QTest::newRow("locator, Tcust 120: capped") << 5u << 2u << 1u << 120 << 80;
    QTest::newRow("locator, Tcust 0: the cap") << 1u << 0u << 1u << 0 << 80;
    QTest::newRow("monitor, Tcust 10: capped at 16") << 0u << 2u << 1u << 10 << 16;
}

void tst_Uki::readStats()
{
    QFETCH(uint, address);
    QFETCH(uint, channel);
    QFETCH(uint, level);
    QFETCH(int, tcust);
    QFETCH(int, count);

    START_SIMULATOR();
    UkiSettings settings;
    settings.setValue(UkiSettings::Tcust, tcust);
    m_uki->setSettings(settings);
    RUN_OK([&] { return m_uki->readStats(address, channel, level); });

    QCOMPARE(m_sim->commandsSinceMark(), statsCommands(address, channel, level, count));
    QCOMPARE(m_recorder->events.last(),
             QString("stats:1:%1:%2:%3").arg(address).arg(channel).arg(level));
    QCOMPARE(m_recorder->progress(), progressUpTo(count));
    const auto statistics = m_uki->statistics(address, channel, level);
    QVERIFY(statistics);
    QCOMPARE(statistics->points.size(), count);
    QCOMPARE(statistics->sortedPoints.size(), count);
    // The device reports more than 999.9 for every seventh block from the fourth on.
    QCOMPARE(statistics->points.at(3).value3, 999.9);
    QCOMPARE(m_uki->statsAddress(), address);
    QCOMPARE(m_uki->statsChannel(), channel);
    QCOMPARE(m_uki->statsLevel(), level);
}

void tst_Uki::readStatsTwiceKeepsSecond()
{
    START_SIMULATOR();
    UkiSettings settings;
    settings.setValue(UkiSettings::Tcust, 10);
    m_uki->setSettings(settings);
    RUN_OK([&] { return m_uki->readStats(5, 2, 1); });
    const auto first = m_uki->statistics(5, 2, 1);
    QVERIFY(first);
    QCOMPARE(first->points.size(), 25);

    settings.setValue(UkiSettings::Tcust, 4);
    m_uki->setSettings(settings);
    RUN_OK([&] { return m_uki->readStats(5, 2, 1); });
    QCOMPARE(m_sim->commandsSinceMark().size(), 10);
    const auto second = m_uki->statistics(5, 2, 1);
    QVERIFY(second);
    QVERIFY(second != first);
    QCOMPARE(second->points.size(), 10);
}

void tst_Uki::writeCorrections()
{
    START_SIMULATOR({}, true);
    RUN_OK([&] { return m_uki->readData(Uki::ReadCorrections); });
    auto corrections = std::make_shared<CtCorrections>(m_uki->corrLines());
    QCOMPARE(corrections->rowCount(), 64);
    QCOMPARE(corrections->rowAt(0).phase, -1);

    // Row 0 is address 0, channel 1; row 17 is address 1, channel 2.
    QVERIFY(corrections->setData(corrections->index(0, CtCorrections::GainColumn), 1.25));
    QVERIFY(corrections->setData(corrections->index(17, CtCorrections::PhaseColumn), -2.5));
    QVERIFY(corrections->setData(corrections->index(40, CtCorrections::PhaseColumn), 12.3));
    RUN([&] { return m_uki->writeCorrections(corrections); });

    // The phase travels as an unsigned 16-bit number.
    QCOMPARE(m_sim->commandsSinceMark(),
             QStringList(
                     {"set_corr_0_1_125_65535", "set_corr_1_2_101_65511", "set_corr_2_9_99_123"}));
    QCOMPARE(m_recorder->events.last(), QString("write:1"));
    for (int row = 0; row < corrections->rowCount(); ++row)
        QVERIFY(!corrections->isModified(row));

    RUN_OK([&] { return m_uki->readData(Uki::ReadCorrections); });
    const QStringList lines = m_uki->corrLines();
    QVERIFY(lines.contains("0\t1\t125\t-1"));
    QVERIFY(lines.contains("1\t2\t101\t-25"));
    QVERIFY(lines.contains("2\t9\t99\t123"));
    QVERIFY(lines.contains("0\t2\t100\t2"));
}

void tst_Uki::writeCorrectionsUnchanged()
{
    START_SIMULATOR();
    RUN_OK([&] { return m_uki->readData(Uki::ReadCorrections); });
    auto corrections = std::make_shared<CtCorrections>(m_uki->corrLines());

    QTest::ignoreMessage(QtDebugMsg, "Ukps::linkConnected() : empty active program");
    RUN([&] { return m_uki->writeCorrections(corrections); });
    QVERIFY(m_sim->commandsSinceMark().isEmpty());
    const QString link = m_sim->link();
    QCOMPARE(m_recorder->events,
             QStringList({"start",
                          "progress:0/0",
                          "log:" + QString("Порт %1: открыт.").arg(link),
                          "log:" + QString("Порт %1: закрыт.").arg(link),
                          "done:0",
                          "write:0"}));
}

void tst_Uki::writeSettingsRecord()
{
    START_SIMULATOR({}, true);
    RUN_OK([&] { return m_uki->readData(Uki::ReadSettings); });
    UkiSettings settings;
    settings.fromLines(m_uki->getCfgLines());
    QCOMPARE(settings.value(UkiSettings::Bright), 700);
    settings.setValue(UkiSettings::Bright, 500);
    settings.setValue(UkiSettings::Tcust, 40);
    settings.setValue(UkiSettings::Averaging, 8);
    const QStringList commands = settings.writeCommands();
    QCOMPARE(commands.size(), UkiSettings::FieldCount + 1);

    RUN_OK([&] { return m_uki->writeCommands(commands); });
    // The transcript shows every byte received: no terminator follows a command.
    QCOMPARE(m_sim->commandsSinceMark(), commands);
    QCOMPARE(m_recorder->events.last(), QString("write:1"));

    RUN_OK([&] { return m_uki->readData(Uki::ReadSettings); });
    UkiSettings readBack;
    readBack.fromLines(m_uki->getCfgLines());
    QVERIFY(readBack == settings);
    QVERIFY(m_uki->getCfgLines().contains("Bright\t500"));
}

void tst_Uki::writeCommands_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QString>("line");

    QTest::newRow("negative value")
            << QStringList{"set_cfg_Uminus_-10", "set_cfg_save_1"} << "Uminus\t-10";
    QTest::newRow("pending until saved") << QStringList{"set_cfg_Bright_321"} << "Bright\t700";
    QTest::newRow("the last of two values")
            << QStringList{"set_cfg_Contrast_10", "set_cfg_Contrast_90", "set_cfg_save_1"}
            << "Contrast\t90";
}

void tst_Uki::writeCommands()
{
    QFETCH(QStringList, commands);
    QFETCH(QString, line);

    START_SIMULATOR({}, true);
    RUN_OK([&] { return m_uki->writeCommands(commands); });
    QCOMPARE(m_sim->commandsSinceMark(), commands);
    QCOMPARE(m_recorder->events.last(), QString("write:1"));
    QCOMPARE(m_recorder->progress(), progressUpTo(commands.size()));

    RUN_OK([&] { return m_uki->readData(Uki::ReadSettings); });
    QVERIFY2(m_uki->getCfgLines().contains(line), qPrintable(m_uki->getCfgLines().join('\n')));
}

void tst_Uki::writeCustomChannel_data()
{
    QTest::addColumn<uint>("address");
    QTest::addColumn<uint>("channel");
    QTest::addColumn<uint>("low");
    QTest::addColumn<uint>("high");
    QTest::addColumn<uint>("rloc");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("line");

    QTest::newRow("switch a channel on")
            << 1u << 2u << 10u << 40u << 250u << "set_cust_1_2_10_40_250"
            << "1\t2\t250\t10\t40";
    QTest::newRow("switch a channel off") << 0u << 1u << 0u << 0u << 0u << "set_cust_0_1_0_0_0"
                                          << "0\t1\tOFF";
    QTest::newRow("widest bounds") << 5u << 16u << 0u << 75u << 999u << "set_cust_5_16_0_75_999"
                                   << "5\t16\t999\t0\t75";
}

void tst_Uki::writeCustomChannel()
{
    QFETCH(uint, address);
    QFETCH(uint, channel);
    QFETCH(uint, low);
    QFETCH(uint, high);
    QFETCH(uint, rloc);
    QFETCH(QString, command);
    QFETCH(QString, line);

    START_SIMULATOR();
    RUN_OK([&] { return m_uki->writeCustomChannel(address, channel, low, high, rloc); });
    QCOMPARE(m_sim->commandsSinceMark(), QStringList{command});
    QCOMPARE(m_recorder->events.last(), QString("write:1"));

    RUN_OK([&] { return m_uki->readData(Uki::ReadCustomChannels); });
    QVERIFY2(m_uki->custLines().contains(line), qPrintable(m_uki->custLines().join('\n')));
    CustomChannel custom;
    QVERIFY(m_uki->customChannels()->findChannel(address, channel - 1, custom));
    QCOMPARE(custom.enabled, rloc != 0);
    QCOMPARE(custom.rLoc, rloc);
}

void tst_Uki::lateReplyAfterTimeout()
{
    START_SIMULATOR();
    m_sim->setFaults({"slow:cfg"});
    RUN([&] { return m_uki->readData(Uki::ReadSettings | Uki::ReadIdentification); });
    QCOMPARE(m_recorder->events.last(), QString("read:0:3"));
    const QStringList logs = m_recorder->logs();
    QVERIFY2(logs.filter(QRegularExpression("^Отработали команду: cfg, результат: Timeout\\. "
                                            "Время выполнения \\d+ мс$"))
                             .size()
                     == 1,
             qPrintable(logs.join('\n')));
    QVERIFY(logs.contains("Нет ответа на команду cfg"));
    QVERIFY(m_uki->cfgLines().isEmpty());
    QCOMPARE(m_uki->getCfgLines().size(), UkiSettings::FieldCount + 1);

    // The engine closed the line on the time-out, so the late reply waits in the line's input
    // until the next run opens the port. There it is read before the first command and logged
    // as unexpected, or dropped when the first command clears the buffers; it never becomes
    // part of a reply. When the port's read notification meets that clearing, the port
    // reports a read error of its own and that run ends; the run after it is clean.
    QVERIFY(m_sim->waitForEvent("reply-end 340"));
    m_sim->setFaults({});
    RUN([&] { return m_uki->readData(Uki::ReadSettings | Uki::ReadIdentification); });
    const QString port = m_sim->link();
    for (const QString &line : m_recorder->logs().filter("Неожиданные данные на приёме: ")) {
        QVERIFY2(line.startsWith("Неожиданные данные на приёме: Addr\tver\tEnabled\tTested\r\n"),
                 qPrintable(line));
    }
    if (m_recorder->events.last() == "read:0:3") {
        QVERIFY(!m_recorder->logs().filter("Порт " + port + ": Ошибка: ").isEmpty());
        // The device may still be answering the command written before the error.
        QVERIFY(m_sim->waitForEvent("reply-end", m_sim->commandsSinceMark().size()));
        RUN_OK([&] { return m_uki->readData(Uki::ReadSettings | Uki::ReadIdentification); });
    }
    QCOMPARE(m_recorder->events.last(), QString("read:1:3"));
    QCOMPARE(m_uki->getCfgLines().first(), QString("AddrUki\t1"));
    QCOMPARE(m_uki->getCfgLines().size(), UkiSettings::FieldCount + 1);
    QCOMPARE(m_uki->cfgLines().first(), QString("Addr\tver\tEnabled\tTested"));
    QCOMPARE(m_uki->cfgLines().size(), 6);
}

void tst_Uki::replyCutByGap_data()
{
    QTest::addColumn<uint>("flags");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("sent");

    QTest::newRow("last command") << 1u << "gap:get_cfg" << QStringList{"get_cfg"};
    QTest::newRow("mid-program") << 9u << "gap:get_cfg" << QStringList{"get_cfg", "get_cust"};
}

void tst_Uki::replyCutByGap()
{
    QFETCH(uint, flags);
    QFETCH(QString, fault);
    QFETCH(QStringList, sent);

    // A fresh device: the second half of the last cut reply may still be on its way.
    START_SIMULATOR({}, true);
    m_sim->setFaults({fault});
    RUN_OK([&] { return m_uki->readData(flags); });
    QCOMPARE(m_sim->commandsSinceMark(), sent);
    // The first half is taken as the whole reply; the run goes on and succeeds.
    QCOMPARE(m_recorder->events.last(), QString("read:1:%1").arg(flags));
    const QStringList lines = m_uki->getCfgLines();
    QVERIFY2(lines.size() >= 2 && lines.size() < UkiSettings::FieldCount,
             qPrintable(lines.join('\n')));
    QCOMPARE(lines.first(), QString("AddrUki\t1"));
    QVERIFY(!lines.contains("OK"));
    QCOMPARE(m_recorder->logs().filter("Отработали команду: get_cfg, результат: Success").size(),
             1);
    if (flags & Uki::ReadCustomChannels)
        QCOMPARE(m_uki->custLines().last(), QString("OK"));
}

void tst_Uki::garbageIsOneReply()
{
    START_SIMULATOR();
    m_sim->setFaults({"garbage:get_cfg"});
    RUN_OK([&] { return m_uki->readData(Uki::ReadSettings); });
    // Noise is still a reply: the link judges only silence.
    QCOMPARE(m_recorder->events.last(), QString("read:1:1"));
    QCOMPARE(m_recorder->logs().filter("Отработали команду: get_cfg").size(), 1);
    const QStringList rx = m_recorder->logs().filter(QRegularExpression("^rxData "));
    QCOMPARE(rx.size(), 1);
    // Every seventh byte of the 96 is a NUL, and it is kept.
    QCOMPARE(rx.first().count(QChar(0)), 14);
    QVERIFY(!m_uki->getCfgLines().isEmpty());
}

QTEST_GUILESS_MAIN(tst_Uki)
#include "tst_uki.moc"
