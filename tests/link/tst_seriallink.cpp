#include "link/seriallink.h"
#include "link/serialtask.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QElapsedTimer>
#include <QMutex>
#include <QScopeGuard>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <QtTest>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <memory>
#include <vector>

namespace {

// Time-outs the engine passes with every command.
constexpr qint64 kIdleMs = 30;
constexpr qint64 kAnswerMs = 50;
// Generous waits for events that should come within a few tens of milliseconds.
constexpr int kWaitMs = 5000;

struct Chunk
{
    int gapMs; // silence before this chunk (the first one: after the command has arrived)
    QByteArray bytes;
};
using Script = QList<Chunk>;

// A device at the master side of a pseudo-terminal: records every byte the link writes and
// answers a known command with a scripted reply, chunk by chunk.
class FakeDevice : public QObject
{
public:
    FakeDevice()
    {
        char name[256] = {};
        if (::openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0)
            return;
        termios raw{};
        ::tcgetattr(m_slave, &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(m_slave, TCSANOW, &raw);
        ::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK);
        m_slavePath = QString::fromLocal8Bit(name);
        m_notifier = new QSocketNotifier(m_master, QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &FakeDevice::readCommand);
    }
    ~FakeDevice() override
    {
        hangUp();
        // Kept open until now so that the master side never sees the line without a slave.
        if (m_slave >= 0)
            ::close(m_slave);
    }

    bool isOpen() const { return m_master >= 0; }
    QString slavePath() const { return m_slavePath; }
    QByteArray wire() const { return m_wire; }
    int chunksInFlight() const { return m_inFlight; }

    // Answer `command` (once it has arrived in full) with `script`.
    void answer(const QByteArray &command, const Script &script)
    {
        m_scripts.insert(command, script);
    }
    // Close the master side `delayMs` after the chunk `index` has been written.
    void hangUpAfterChunk(int index, int delayMs)
    {
        m_hangUpAfter = index;
        m_hangUpDelayMs = delayMs;
    }
    // What the wire held when each command's first reply chunk went out.
    QByteArray wireWhenAnswered(const QByteArray &command) const
    {
        return m_wireAtAnswer.value(command);
    }

    // The far end disappears: the master side of the pseudo-terminal closes.
    void hangUp()
    {
        delete m_notifier;
        m_notifier = nullptr;
        if (m_master >= 0)
            ::close(m_master);
        m_master = -1;
    }

private:
    void readCommand()
    {
        char buffer[256];
        for (;;) {
            const ssize_t count = ::read(m_master, buffer, sizeof buffer);
            if (count <= 0)
                break;
            m_wire.append(buffer, int(count));
            m_pending.append(buffer, int(count));
        }
        for (auto it = m_scripts.cbegin(); it != m_scripts.cend(); ++it) {
            if (m_pending.endsWith(it.key())) {
                m_pending.clear();
                sendChunk(it.key(), it.value(), 0);
                return;
            }
        }
    }

    void sendChunk(const QByteArray &command, const Script &script, int index)
    {
        if (index >= script.size())
            return;
        ++m_inFlight;
        QTimer::singleShot(script.at(index).gapMs, Qt::PreciseTimer, this, [=] {
            --m_inFlight;
            if (m_master < 0)
                return;
            if (index == 0)
                m_wireAtAnswer.insert(command, m_wire);
            const QByteArray &bytes = script.at(index).bytes;
            QCOMPARE(::write(m_master, bytes.constData(), size_t(bytes.size())),
                     ssize_t(bytes.size()));
            if (index == m_hangUpAfter) {
                QTimer::singleShot(m_hangUpDelayMs, this, [this] { hangUp(); });
                return;
            }
            sendChunk(command, script, index + 1);
        });
    }

    int m_master = -1;
    int m_slave = -1;
    QString m_slavePath;
    QSocketNotifier *m_notifier = nullptr;
    QByteArray m_wire;
    QByteArray m_pending;
    QHash<QByteArray, Script> m_scripts;
    QHash<QByteArray, QByteArray> m_wireAtAnswer;
    int m_inFlight = 0;
    int m_hangUpAfter = -1;
    int m_hangUpDelayMs = 0;
};

// The link in a worker thread of its own, wired up the way the protocol engine does it, with
// everything it reports collected in the test's thread.
class LinkRun : public QObject
{
    Q_OBJECT
public:
    explicit LinkRun(const QString &portName)
    {
        m_thread = new QThread;
        m_link = new SerialLink(portName);
        m_link->moveToThread(m_thread);
        connect(m_thread, &QThread::started, m_link, &SerialLink::start);
        connect(m_thread, &QThread::finished, m_link, &QObject::deleteLater);
        connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
        connect(this, &LinkRun::runTask, m_link, &SerialLink::runTask);
        // Direct: counts the passes of the worker's event loop, a measure of busy-waiting that
        // does not depend on how loaded the machine is.
        connect(
                m_thread,
                &QThread::started,
                m_thread,
                [this] {
                    connect(
                            QAbstractEventDispatcher::instance(),
                            &QAbstractEventDispatcher::aboutToBlock,
                            QAbstractEventDispatcher::instance(),
                            [this] { ++m_workerLoopPasses; },
                            Qt::DirectConnection);
                },
                Qt::DirectConnection);
        // Direct: records the thread the link dies in.
        QThread *const worker = m_thread;
        connect(
                m_link,
                &QObject::destroyed,
                m_link,
                [this, worker] {
                    m_destroyedInWorker = QThread::currentThread() == worker;
                    m_destroyed = true;
                },
                Qt::DirectConnection);
        connect(m_link, &SerialLink::connected, this, [this] { ++connectedCount; });
        connect(m_link, &SerialLink::error, this, [this](const QString &err) { errors << err; });
        connect(m_link, &SerialLink::logMessage, this, [this](const QString &m) { log << m; });
        connect(m_link, &SerialLink::taskDone, this, [this](SerialTask *task) {
            acquireTask(task);
            done << task;
        });
        m_thread->start();
    }
    ~LinkRun() override { stop(); }

    // Quits the worker thread and waits for it; the link is deleted in that thread.
    void stop()
    {
        if (!m_thread)
            return;
        m_thread->quit();
        QVERIFY(m_thread->wait(kWaitMs));
        m_thread = nullptr;
        QVERIFY(m_destroyed);
        QVERIFY(m_destroyedInWorker);
    }

    SerialTask *send(const QString &command, qint64 idleMs = kIdleMs, qint64 answerMs = kAnswerMs)
    {
        m_tasks.push_back(std::make_unique<SerialTask>(command, idleMs, answerMs));
        releaseTask(m_tasks.back().get());
        emit runTask(m_tasks.back().get());
        return m_tasks.back().get();
    }

    int workerLoopPasses() const { return m_workerLoopPasses; }

    // Holds the worker thread up, as a loaded machine may.
    void stallWorker(int ms)
    {
        QMetaObject::invokeMethod(m_link, [ms] { QThread::msleep(ulong(ms)); });
    }

    QStringList linesStartingWith(const QString &prefix) const
    {
        QStringList lines;
        for (const QString &line : log) {
            if (line.startsWith(prefix))
                lines << line;
        }
        return lines;
    }

    int connectedCount = 0;
    QStringList errors;
    QStringList log;
    QList<SerialTask *> done;

signals:
    void runTask(SerialTask *task);

private:
    QThread *m_thread = nullptr;
    SerialLink *m_link = nullptr;
    // The tasks stay ours: the link only holds them between runTask and taskDone.
    std::vector<std::unique_ptr<SerialTask>> m_tasks;
    std::atomic<bool> m_destroyed{false};
    std::atomic<bool> m_destroyedInWorker{false};
    std::atomic<int> m_workerLoopPasses{0};
};

QString completionLine(const SerialTask *task)
{
    return QStringLiteral("Отработали команду: %1, результат: %2. Время выполнения %3 мс")
            .arg(task->command,
                 task->status == 1 ? QStringLiteral("Success") : QStringLiteral("Timeout"),
                 QString::number(task->finishedAt - task->sentAt));
}

// How many descriptors of this process have `path` open (a hung-up pseudo-terminal shows as
// "path (deleted)").
int openDescriptors(const QString &path)
{
    int count = 0;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QString &fd : fds.entryList(QDir::Files | QDir::System)) {
        char target[512] = {};
        const QByteArray link = fds.filePath(fd).toLocal8Bit();
        if (::readlink(link.constData(), target, sizeof target - 1) <= 0)
            continue;
        const QString text = QString::fromLocal8Bit(target);
        if (text == path || text == path + QStringLiteral(" (deleted)"))
            ++count;
    }
    return count;
}

qint64 processCpuMs()
{
    timespec ts{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

// Takes over the messages written by any thread while alive and keeps the critical ones.
class MessageCatcher
{
public:
    MessageCatcher()
    {
        s_self = this;
        m_previous = qInstallMessageHandler(&MessageCatcher::handle);
    }
    ~MessageCatcher()
    {
        qInstallMessageHandler(m_previous);
        s_self = nullptr;
    }
    QStringList criticals() const
    {
        QMutexLocker lock(&m_mutex);
        return m_criticals;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        QMutexLocker lock(&s_self->m_mutex);
        if (type == QtCriticalMsg)
            s_self->m_criticals << text;
    }

    static MessageCatcher *s_self;
    QtMessageHandler m_previous = nullptr;
    mutable QMutex m_mutex;
    QStringList m_criticals;
};
MessageCatcher *MessageCatcher::s_self = nullptr;

} // namespace

Q_DECLARE_METATYPE(Script)

class TestSerialLink : public QObject
{
    Q_OBJECT
private slots:
    void reply_data();
    void reply();
    void queuedTasksRunInOrder();
    void portThatCannotOpen();
    void hangUpMidReply();
    void replyWaitingWhileWorkerStalled();
    void replyLimit_data();
    void replyLimit();
};

void TestSerialLink::reply_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<Script>("script");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("unexpected");

    const QByteArray cfg = "get_cfg";
    QTest::newRow("one chunk") << QString::fromLatin1(cfg) << Script{{0, "AddrUki\t1\r\nOK\r\n"}}
                               << QByteArray("AddrUki\t1\r\nOK\r\n") << 1 << QStringList();
    QTest::newRow("chunks 10 ms apart are one reply")
            << QStringLiteral("srch_stats_1_0_3_79")
            << Script{{0, "12\t"}, {10, "34\t56\r\n"}, {10, "OK"}, {10, "\r\n"}}
            << QByteArray("12\t34\t56\r\nOK\r\n") << 1 << QStringList();
    QTest::newRow("NUL bytes inside a reply are kept")
            << QStringLiteral("dump") << Script{{0, QByteArray("1\t\0\t2\r\n", 7)}, {10, "OK\r\n"}}
            << QByteArray("1\t\0\t2\r\nOK\r\n", 11) << 1 << QStringList();
    QTest::newRow("negative value and high Latin-1 bytes")
            << QStringLiteral("set_cfg_IDischMin_-10") << Script{{0, "\xe9\xff\r\nOK\r\n"}}
            << QByteArray("\xe9\xff\r\nOK\r\n") << 1 << QStringList();
    QTest::newRow("gap of 150 ms ends the reply, the rest is unexpected up to its NUL")
            << QStringLiteral("cfg") << Script{{0, "Addr\r\n"}, {150, QByteArray("late\0tail", 9)}}
            << QByteArray("Addr\r\n") << 1
            << QStringList{QStringLiteral("Неожиданные данные на приёме: late")};
    QTest::newRow("silence is a timeout")
            << QStringLiteral("corr") << Script() << QByteArray() << 2 << QStringList();
    QTest::newRow("an answer 150 ms late is a timeout and unexpected")
            << QStringLiteral("get_cust") << Script{{150, "address\r\nOK\r\n"}} << QByteArray() << 2
            << QStringList{QStringLiteral("Неожиданные данные на приёме: address\r\nOK\r\n")};
}

void TestSerialLink::reply()
{
    QFETCH(QString, command);
    QFETCH(Script, script);
    QFETCH(QByteArray, reply);
    QFETCH(int, status);
    QFETCH(QStringList, unexpected);

    FakeDevice device;
    QVERIFY(device.isOpen());
    device.answer(command.toLatin1(), script);
    LinkRun run(device.slavePath());
    QTRY_COMPARE_WITH_TIMEOUT(run.connectedCount, 1, kWaitMs);

    SerialTask *task = run.send(command);
    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 1, kWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(device.chunksInFlight(), 0, kWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(
            run.linesStartingWith(QStringLiteral("Неожиданные")), unexpected, kWaitMs);
    run.stop();

    QCOMPARE(run.done.first(), task);
    // The command goes out as its bare characters, no line terminator.
    QCOMPARE(device.wire(), command.toLatin1());
    QCOMPARE(task->reply, QString::fromLatin1(reply.constData(), reply.size()));
    QCOMPARE(task->status, status);
    QCOMPARE(task->done.available(), 1);
    QVERIFY(task->sentAt > 0);
    QVERIFY(task->finishedAt - task->lastActivityAt > (reply.isEmpty() ? kAnswerMs : kIdleMs));
    if (reply.isEmpty()) {
        QCOMPARE(task->firstByteAt, 0);
    } else {
        QVERIFY(task->firstByteAt >= task->sentAt);
        QVERIFY(task->lastActivityAt >= task->firstByteAt);
    }
    QCOMPARE(run.log.count(completionLine(task)), 1);
    QVERIFY(run.errors.isEmpty());
}

void TestSerialLink::queuedTasksRunInOrder()
{
    FakeDevice device;
    QVERIFY(device.isOpen());
    // Answered 20 ms late, well inside the answer time-out: the queued commands must still be
    // held back then.
    device.answer("cmd_one", Script{{20, "one\r\n"}, {10, "OK\r\n"}});
    device.answer("cmd_three", Script{{0, "three\r\nOK\r\n"}});
    LinkRun run(device.slavePath());
    QTRY_COMPARE_WITH_TIMEOUT(run.connectedCount, 1, kWaitMs);

    QList<SerialTask *> tasks;
    for (const char *command : {"cmd_one", "cmd_two", "cmd_three"})
        tasks << run.send(QString::fromLatin1(command));
    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 3, kWaitMs);
    run.stop();

    QCOMPARE(run.done, tasks);
    QCOMPARE(device.wire(), QByteArray("cmd_onecmd_twocmd_three"));
    QCOMPARE(device.wireWhenAnswered("cmd_one"), QByteArray("cmd_one"));
    QCOMPARE(tasks.at(0)->reply, QStringLiteral("one\r\nOK\r\n"));
    QCOMPARE(tasks.at(1)->reply, QString());
    QCOMPARE(tasks.at(2)->reply, QStringLiteral("three\r\nOK\r\n"));
    QCOMPARE(tasks.at(0)->status, 1);
    QCOMPARE(tasks.at(1)->status, 2);
    QCOMPARE(tasks.at(2)->status, 1);
    for (int i = 1; i < tasks.size(); ++i)
        QVERIFY(tasks.at(i)->sentAt >= tasks.at(i - 1)->finishedAt);

    const QStringList expected{
            QStringLiteral("Ставим команду в очередь: cmd_two"),
            QStringLiteral("Ставим команду в очередь: cmd_three"),
            completionLine(tasks.at(0)),
            completionLine(tasks.at(1)),
            completionLine(tasks.at(2)),
    };
    QCOMPARE(run.log, expected);
    QVERIFY(completionLine(tasks.at(1)).contains(QStringLiteral("результат: Timeout.")));
    QVERIFY(completionLine(tasks.at(2)).contains(QStringLiteral("результат: Success.")));
    QVERIFY(run.errors.isEmpty());
}

void TestSerialLink::portThatCannotOpen()
{
    const QString name = QStringLiteral("/nonexistent/kiranto-tty");
    MessageCatcher messages;
    LinkRun run(name);
    QTRY_COMPARE_WITH_TIMEOUT(run.errors.size(), 1, kWaitMs);
    const QString prefix = QStringLiteral("Ошибка открытия порта %1 : ").arg(name);
    QVERIFY2(run.errors.first().startsWith(prefix), qPrintable(run.errors.first()));
    QVERIFY(run.errors.first().size() > prefix.size() + 1);
    QVERIFY(run.errors.first().endsWith(QLatin1Char('.')));

    // Handed over anyway: the write fails and the task ends by its time-out.
    SerialTask *task = run.send(QStringLiteral("get_cfg"));
    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 1, kWaitMs);
    run.stop();

    QCOMPARE(run.connectedCount, 0);
    QCOMPARE(run.errors.size(), 1);
    QCOMPARE(task->status, 2);
    QVERIFY(messages.criticals().contains(QStringLiteral("write error: -1")));
    QCOMPARE(run.log, QStringList{completionLine(task)});
}

void TestSerialLink::hangUpMidReply()
{
    FakeDevice device;
    QVERIFY(device.isOpen());
    device.answer("dump", Script{{0, "1\t01.01.2026"}, {10, "\t12:00:00"}});
    // Time enough for the link to take both chunks before the line goes.
    device.hangUpAfterChunk(1, 100);
    LinkRun run(device.slavePath());
    QTRY_COMPARE_WITH_TIMEOUT(run.connectedCount, 1, kWaitMs);

    // The test's own descriptor and the link's port.
    QCOMPARE(openDescriptors(device.slavePath()), 2);

    // A long idle limit keeps the task current well past the hang-up.
    SerialTask *task = run.send(QStringLiteral("dump"), 1000, 1000);
    QTRY_VERIFY_WITH_TIMEOUT(!device.isOpen(), kWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(run.errors.size(), 1, kWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(openDescriptors(device.slavePath()), 1, kWaitMs);

    // Left open, the port would repeat its error at full speed and keep a core busy. A healthy
    // worker wakes for its 5 ms timer, some 60 times in 300 ms.
    QElapsedTimer wall;
    wall.start();
    const qint64 cpuBefore = processCpuMs();
    const int passesBefore = run.workerLoopPasses();
    QTest::qWait(300);
    const qint64 cpuMs = processCpuMs() - cpuBefore;
    const qint64 wallMs = wall.elapsed();
    const int passes = run.workerLoopPasses() - passesBefore;
    const QString figures = QStringLiteral("after the hang-up: CPU %1 ms in %2 ms, %3 loop passes")
                                    .arg(cpuMs)
                                    .arg(wallMs)
                                    .arg(passes);
    QVERIFY2(cpuMs * 2 < wallMs, qPrintable(figures));
    QVERIFY2(passes < 1000, qPrintable(figures));

    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 1, kWaitMs);
    run.stop();

    QCOMPARE(run.errors.size(), 1);
    QVERIFY(run.errors.first().startsWith(QStringLiteral("Ошибка: ")));
    QVERIFY(run.errors.first().endsWith(QLatin1Char('.')));
    // The bytes that came before the hang-up make it a reply.
    QCOMPARE(task->reply, QStringLiteral("1\t01.01.2026\t12:00:00"));
    QCOMPARE(task->status, 1);
    QCOMPARE(run.log, QStringList{completionLine(task)});
}

void TestSerialLink::replyWaitingWhileWorkerStalled()
{
    // The whole reply arrives while the worker thread is held up for longer than the answer
    // time-out: it is waiting in the driver, so the line was not silent and the task succeeds.
    FakeDevice device;
    QVERIFY(device.isOpen());
    device.answer("get_cfg", Script{{20, "AddrUki\t1\r\nOK\r\n"}});
    LinkRun run(device.slavePath());
    QTRY_COMPARE_WITH_TIMEOUT(run.connectedCount, 1, kWaitMs);

    SerialTask *task = run.send(QStringLiteral("get_cfg"));
    run.stallWorker(200);
    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 1, kWaitMs);
    run.stop();

    QCOMPARE(task->status, 1);
    QCOMPARE(task->reply, QStringLiteral("AddrUki\t1\r\nOK\r\n"));
    QVERIFY(run.errors.isEmpty());
}

void TestSerialLink::replyLimit_data()
{
    QTest::addColumn<int>("chunks");
    QTest::addColumn<bool>("overflows");

    // 1 KiB chunks 5 ms apart against a limit of 4 KiB: never a pause that ends the reply.
    QTest::newRow("a reply of exactly the limit is kept") << 4 << false;
    QTest::newRow("a reply that keeps coming past the limit is a port error") << 8 << true;
}

void TestSerialLink::replyLimit()
{
    QFETCH(int, chunks);
    QFETCH(bool, overflows);

    constexpr qint64 limit = 4096;
    const qint64 defaultLimit = SerialLink::replyLimit();
    QCOMPARE(defaultLimit, 4 * 1024 * 1024);
    SerialLink::setReplyLimit(limit);
    const auto restore = qScopeGuard([defaultLimit] { SerialLink::setReplyLimit(defaultLimit); });

    FakeDevice device;
    QVERIFY(device.isOpen());
    Script script;
    for (int i = 0; i < chunks; ++i)
        script.append({5, QByteArray(1024, char('a' + i))});
    device.answer("dump", script);
    LinkRun run(device.slavePath());
    QTRY_COMPARE_WITH_TIMEOUT(run.connectedCount, 1, kWaitMs);

    SerialTask *task = run.send(QStringLiteral("dump"));
    QTRY_COMPARE_WITH_TIMEOUT(run.done.size(), 1, kWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(device.chunksInFlight(), 0, kWaitMs);
    if (overflows) {
        // Reported once; the port is closed, so the task ends by its time-out.
        QCOMPARE(run.errors, QStringList{QStringLiteral("Ответ превысил 4096 байт без паузы.")});
        QTRY_COMPARE_WITH_TIMEOUT(openDescriptors(device.slavePath()), 1, kWaitMs);
        QVERIFY(task->reply.size() > limit);
        QVERIFY(task->reply.size() <= limit + 1024);
    } else {
        QVERIFY(run.errors.isEmpty());
        QCOMPARE(task->reply.size(), limit);
    }
    run.stop();
    QCOMPARE(task->status, 1);
    QCOMPARE(run.log, QStringList{completionLine(task)});
}

QTEST_GUILESS_MAIN(TestSerialLink)
#include "tst_seriallink.moc"
