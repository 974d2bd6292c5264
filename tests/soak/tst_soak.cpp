// Soak: thousands of programs in a row through the real engine and serial link, against the
// device simulator on a pseudo-terminal, in one process. Every run must give back its worker
// thread, its link with port and timer, and its memory.

#include "app/programsettings.h"
#include "protocol/uki.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <functional>

// Qt's object hooks, the table that object-inspection tools fill in (QtCore exports it; the
// private header is not needed for two entries). Index 3 is called by every QObject constructor,
// index 4 by every QObject destructor, in whatever thread the object lives.
extern quintptr Q_CORE_EXPORT qtHookData[];

namespace {

constexpr int kHookDataSize = 1;
constexpr int kAddObjectHook = 3;
constexpr int kRemoveObjectHook = 4;

std::atomic<int> liveObjects{0};
quintptr previousAddHook = 0;
quintptr previousRemoveHook = 0;

using ObjectHook = void (*)(QObject *);

void objectAdded(QObject *object)
{
    liveObjects.fetch_add(1, std::memory_order_relaxed);
    if (previousAddHook)
        reinterpret_cast<ObjectHook>(previousAddHook)(object);
}

void objectRemoved(QObject *object)
{
    liveObjects.fetch_sub(1, std::memory_order_relaxed);
    if (previousRemoveHook)
        reinterpret_cast<ObjectHook>(previousRemoveHook)(object);
}

// Installed before main(), so that every QObject of the process is counted from its birth.
bool installObjectHooks()
{
    if (qtHookData[kHookDataSize] <= quintptr(kRemoveObjectHook))
        return false;
    previousAddHook = qtHookData[kAddObjectHook];
    previousRemoveHook = qtHookData[kRemoveObjectHook];
    qtHookData[kAddObjectHook] = reinterpret_cast<quintptr>(&objectAdded);
    qtHookData[kRemoveObjectHook] = reinterpret_cast<quintptr>(&objectRemoved);
    return true;
}

const bool objectHooksInstalled = installObjectHooks();

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizers keep freed memory in quarantine and shadow it: RSS says nothing about leaks
// there, and LeakSanitizer does that job instead.
constexpr bool kRssMeaningful = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kRssMeaningful = false;
#else
constexpr bool kRssMeaningful = true;
#endif
#else
constexpr bool kRssMeaningful = true;
#endif

constexpr int kDefaultPrograms = 200;
// Waits are generous: the machine may be shared and slow.
constexpr int kStartMs = 15000;
constexpr int kRunMs = 60000;
constexpr int kSettleMs = 10000;

// Programs in the soak; KIRANTO_SOAK_PROGRAMS sets another count (the TSan run takes 2000).
int programCount()
{
    bool ok = false;
    const int count = qEnvironmentVariableIntValue("KIRANTO_SOAK_PROGRAMS", &ok);
    return ok && count > 0 ? count : kDefaultPrograms;
}

// Resident set size in KiB, from /proc/self/status.
qint64 rssKiB()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Operating-system threads of this process.
int osThreads()
{
    return int(QDir(QStringLiteral("/proc/self/task"))
                       .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                       .size());
}

// Runs the event loop until the condition holds or the time is up.
bool settle(const std::function<bool()> &condition, int timeoutMs = kSettleMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QTest::qSleep(1);
    }
    return true;
}

// The device simulator process on a pseudo-terminal.
class Simulator
{
public:
    ~Simulator() { stop(); }

    bool start(const QStringList &arguments)
    {
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty() || !m_dir.isValid())
            return false;
        m_process.setProgram(program);
        m_process.setArguments(QStringList{"--link", link(), "--exit-with-parent"} + arguments);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (!m_process.waitForStarted(kStartMs))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kStartMs))
                return false;
        }
        return m_process.readLine().trimmed() == link().toLocal8Bit();
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(kStartMs)) {
            m_process.kill();
            m_process.waitForFinished(kStartMs);
        }
    }

    QString link() const { return m_dir.filePath(QStringLiteral("ttyKIRANTO")); }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
};

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void manyPrograms();
    void hangupMidReply();
    void portMissing();
};

void tst_Soak::initTestCase()
{
    QVERIFY2(objectHooksInstalled, "this Qt has no object hooks to count QObjects with");
    // The engine's parse diagnostics, thousands of them, would crowd out the figures.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    if (qEnvironmentVariableIsEmpty("KIRANTO_SIM"))
        QSKIP("KIRANTO_SIM is not set: the soak needs the device simulator (run it through ctest)");
}

void tst_Soak::manyPrograms()
{
    Simulator sim;
    QVERIFY2(sim.start({"--archive-size", "20"}), "kiranto-sim did not start");
    ProgramSettings::instance().port = sim.link();

    Uki uki;
    int done = 0;
    int succeeded = 0;
    connect(&uki, &Uki::programDone, [&](bool ok) {
        ++done;
        succeeded += ok ? 1 : 0;
    });
    const QStringList writes{"set_cfg_TimeM3s_2", "set_cfg_RisoLoc_120", "set_cfg_save_1"};
    auto request = [&](int i) {
        if (i % 20 == 19)
            return uki.readStats(0, uint(i / 20 % 16), 0);
        if (i % 10 == 4)
            return uki.writeCommands(writes);
        if (i % 4 == 1)
            return uki.readData(Uki::ReadSettings);
        return uki.readData(Uki::ReadIdentification);
    };

    const int programs = programCount();
    // Memory is measured against the state after the warm-up, when caches and pools are full.
    const int warmUpPrograms = std::min(200, programs / 2);
    const int startThreads = osThreads();
    const qint64 startRss = rssKiB();
    int objects = liveObjects.load();
    int threads = startThreads;
    qint64 warmRss = 0;
    int commands = 0;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < programs; ++i) {
        QVERIFY2(request(i), qPrintable(QStringLiteral("program %1 was refused").arg(i)));
        commands += i % 20 == 19 ? 8 : i % 10 == 4 ? writes.size() : 1;
        QVERIFY2(settle([&] { return done == i + 1; }, kRunMs),
                 qPrintable(QStringLiteral("program %1 did not end").arg(i)));
        QVERIFY2(settle([&] { return !uki.isBusy(); }),
                 qPrintable(QStringLiteral("engine still busy after program %1").arg(i)));
        // The first run creates what Qt keeps for good (the serial-port and socket-notifier
        // machinery); from then on every run must leave exactly as many QObjects as it found.
        if (i == 0) {
            QTest::qWait(200);
            objects = liveObjects.load();
            threads = osThreads();
        }
        QVERIFY2(settle([&] { return liveObjects.load() == objects; }),
                 qPrintable(QStringLiteral("program %1 left %2 QObject(s) behind (thread, link, "
                                           "port or timer)")
                                    .arg(i)
                                    .arg(liveObjects.load() - objects)));
        QVERIFY2(settle([&] { return osThreads() == threads; }),
                 qPrintable(QStringLiteral("program %1 left %2 thread(s) running")
                                    .arg(i)
                                    .arg(osThreads() - threads)));
        if (i + 1 == warmUpPrograms)
            warmRss = rssKiB();
    }
    const qint64 endRss = rssKiB();
    const int endThreads = osThreads();

    qInfo("%d programs (%d commands) in %.1f s, %d succeeded, %d failed (time-outs on a busy "
          "machine count here)",
          programs,
          commands,
          double(clock.elapsed()) / 1000.0,
          succeeded,
          programs - succeeded);
    qInfo("RSS: %lld KiB at start, %lld KiB after %d programs, %lld KiB at the end (%+lld KiB)",
          startRss,
          warmRss,
          warmUpPrograms,
          endRss,
          endRss - warmRss);
    qInfo("OS threads: %d before the first program, %d at the end; QObjects alive between runs: %d",
          startThreads,
          endThreads,
          objects);

    QVERIFY2(succeeded > 0, "no program succeeded: is the simulator answering?");
    QCOMPARE(endThreads, startThreads);
    if (kRssMeaningful) {
        const qint64 limit = warmRss + warmRss / 5 + 8 * 1024;
        QVERIFY2(endRss <= limit,
                 qPrintable(QStringLiteral("RSS grew from %1 KiB to %2 KiB (limit %3 KiB)")
                                    .arg(warmRss)
                                    .arg(endRss)
                                    .arg(limit)));
    } else {
        qInfo("sanitizer build: RSS is printed, not checked; LeakSanitizer checks at exit");
    }
}

// The line drops in the middle of a reply: the port errors out while the link still holds the
// task. The run must end, and the task, thread and link must all go.
void tst_Soak::hangupMidReply()
{
    // Round 0 creates what Qt keeps for good; the later rounds are counted against it.
    int objects = 0;
    int threads = 0;
    // Rounds in which the link was stopped while it still held the task (the error came before
    // the task's completion line): the task is then freed by the engine, not by taskDone().
    int heldAtStop = 0;
    constexpr int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        {
            Simulator sim;
            QVERIFY2(sim.start({"--fault", "hangup:get_cfg"}), "kiranto-sim did not start");
            ProgramSettings::instance().port = sim.link();
            Uki uki;
            int done = 0;
            bool success = true;
            QStringList logs;
            connect(&uki, &Uki::programDone, [&](bool ok) {
                ++done;
                success = ok;
            });
            connect(&uki, &Uki::logMessage, [&](const QString &line) { logs << line; });
            QVERIFY(uki.readData(Uki::ReadSettings | Uki::ReadIdentification));
            QVERIFY2(settle([&] { return done == 1; }, kRunMs), "the run did not end");
            QVERIFY(settle([&] { return !uki.isBusy(); }));
            QVERIFY(!success);
            QVERIFY2(!logs.filter(QRegularExpression("^Порт .*: Ошибка: ")).isEmpty()
                             || !logs.filter("Нет ответа на команду").isEmpty(),
                     qPrintable(logs.join('\n')));
            if (logs.filter("Отработали команду: get_cfg").isEmpty())
                ++heldAtStop;
        }
        if (round == 0) {
            QTest::qWait(200);
            objects = liveObjects.load();
            threads = osThreads();
            continue;
        }
        QVERIFY2(settle([&] { return liveObjects.load() == objects; }),
                 qPrintable(QStringLiteral("round %1 left %2 QObject(s) behind")
                                    .arg(round)
                                    .arg(liveObjects.load() - objects)));
        QVERIFY(settle([&] { return osThreads() == threads; }));
    }
    qInfo("%d of %d rounds stopped the link while it held the task", heldAtStop, kRounds);
}

// The port cannot be opened: the run ends at once, with nothing left behind.
void tst_Soak::portMissing()
{
    QTemporaryDir dir;
    ProgramSettings::instance().port = dir.filePath("no-such-tty");
    int objects = 0;
    int threads = 0;
    for (int round = 0; round < 50; ++round) {
        {
            Uki uki;
            int done = 0;
            bool success = true;
            connect(&uki, &Uki::programDone, [&](bool ok) {
                ++done;
                success = ok;
            });
            QVERIFY(uki.readData(Uki::ReadSettings));
            QVERIFY(settle([&] { return done == 1 && !uki.isBusy(); }, kRunMs));
            QVERIFY(!success);
        }
        if (round == 0) {
            QTest::qWait(200);
            objects = liveObjects.load();
            threads = osThreads();
            continue;
        }
        QVERIFY(settle([&] { return liveObjects.load() == objects; }));
        QVERIFY(settle([&] { return osThreads() == threads; }));
    }
}

QTEST_GUILESS_MAIN(tst_Soak)
#include "tst_soak.moc"
