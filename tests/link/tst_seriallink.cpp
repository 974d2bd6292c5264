#include "link/seriallink.h"
#include "link/serialtask.h"

#include <QScopeGuard>
#include <QThread>
#include <QtTest>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <memory>
#include <vector>

namespace {

struct Chunk
{
    int gapMs; // silence before this chunk; the first one counts from the command's arrival
    QByteArray bytes;
};
using Script = QList<Chunk>;

} // namespace

Q_DECLARE_METATYPE(Script)

class tst_SerialLink : public QObject
{
    Q_OBJECT
signals:
    void runTask(SerialTask *task);
private slots:
    void exchange_data();
    void exchange();
};

void tst_SerialLink::exchange_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<Script>("script"); // answers the first command
    // time-out ms (0: 30/50); stall ms after the commands, or before them (negative) while the
    // first chunk arrives as the late tail of an earlier reply; hang-up chunk; reply limit
    QTest::addColumn<QList<int>>("setup");
    QTest::addColumn<QStringList>("replies"); // "status:reply" per command
    QTest::addColumn<QStringList>("log");     // time of each exchange as '#'
    QTest::addColumn<QString>("error");       // the one error, "disconnected", or none

    const auto done = [](const char *command, bool ok) {
        return QStringLiteral("Отработали команду: %1, результат: %2. Время выполнения # мс")
                .arg(QLatin1String(command), ok ? "Success" : "Timeout");
    };
    const QList<int> plain{0, 0, -1, 0};
    Script kib4, kib8;
    for (int i = 0; i < 8; ++i)
        (i < 4 ? kib4 : kib8) << Chunk{5, QByteArray(1024, 'x')};
    kib8 = kib4 + kib8;
    const QString nul(QChar(0));
    // clang-format off
    QTest::newRow("chunks 10 ms apart are one reply, NULs and Latin-1 kept") << QStringList{"set_cfg_IDischMin_-10"} << Script{{0, QByteArray("1\t\0\xe9", 4)}, {10, "\xff\r\nOK"}, {10, "\r\n"}} << plain << QStringList{"1:1\t" + nul + QStringLiteral("\u00e9\u00ff\r\nOK\r\n")} << QStringList{done("set_cfg_IDischMin_-10", true)} << "";
    QTest::newRow("a gap of 150 ms ends the reply, the rest is unexpected up to its NUL") << QStringList{"cfg"} << Script{{0, "Addr\r\n"}, {150, QByteArray("late\0tail", 9)}} << plain << QStringList{"1:Addr\r\n"} << QStringList{done("cfg", true), "Неожиданные данные на приёме: late"} << "";
    QTest::newRow("queued commands wait for the first reply, silence is a time-out") << QStringList{"cmd_one", "cmd_two"} << Script{{20, "one\r\n"}, {10, "OK\r\n"}} << plain << QStringList{"1:one\r\nOK\r\n", "2:"} << QStringList{"Ставим команду в очередь: cmd_two", done("cmd_one", true), done("cmd_two", false)} << "";
    QTest::newRow("a reply waiting while the worker is held up is not silence") << QStringList{"get_cfg"} << Script{{20, "AddrUki\t1\r\nOK\r\n"}} << QList<int>{0, 200, -1, 0} << QStringList{"1:AddrUki\t1\r\nOK\r\n"} << QStringList{done("get_cfg", true)} << "";
    QTest::newRow("late bytes read in after the next command cleared them are no port error") << QStringList{"get_cfg"} << Script{{0, "OK\r\n"}, {0, "AddrUki\t1\r\nOK\r\n"}} << QList<int>{0, -100, -1, 0} << QStringList{"1:AddrUki\t1\r\nOK\r\n"} << QStringList{done("get_cfg", true)} << "";
    QTest::newRow("a hang-up mid-reply: the port is gone, the bytes before it are the reply") << QStringList{"dump"} << Script{{0, "1\t01.01.2026"}, {10, "\t12:00:00"}} << QList<int>{1000, 0, 1, 0} << QStringList{"1:1\t01.01.2026\t12:00:00"} << QStringList{done("dump", true)} << "disconnected";
    QTest::newRow("a reply of exactly the limit is kept") << QStringList{"dump"} << kib4 << QList<int>{0, 0, -1, 4096} << QStringList{"1:" + QString(4096, 'x')} << QStringList{done("dump", true)} << "";
    QTest::newRow("a flood past the limit is one port error") << QStringList{"dump"} << kib8 << QList<int>{0, 0, -1, 4096} << QStringList{"1:" + QString(5120, 'x')} << QStringList{done("dump", true)} << "Ответ превысил 4096 байт без паузы.";
    // clang-format on
}

void tst_SerialLink::exchange()
{
    QFETCH(QStringList, commands);
    QFETCH(Script, script);
    QFETCH(QList<int>, setup);
    QFETCH(QStringList, replies);
    QFETCH(QStringList, log);
    QFETCH(QString, error);

    const qint64 defaultLimit = SerialLink::replyLimit();
    if (setup[3])
        SerialLink::setReplyLimit(setup[3]);
    // The device is the master side of a pseudo-terminal, played from this thread.
    int master = -1, slave = -1;
    char name[256] = {};
    QCOMPARE(::openpty(&master, &slave, name, nullptr, nullptr), 0);
    termios raw{};
    ::cfmakeraw(&raw);
    ::tcsetattr(slave, TCSANOW, &raw);
    ::fcntl(master, F_SETFL, O_NONBLOCK);
    QByteArray wire;
    const auto readWire = [&] {
        char buffer[256];
        for (ssize_t n; (n = ::read(master, buffer, sizeof buffer)) > 0;)
            wire.append(buffer, int(n));
    };
    const auto restore = qScopeGuard([&] {
        SerialLink::setReplyLimit(defaultLimit);
        ::close(master), ::close(slave);
    });

    auto *thread = new QThread;
    auto *link = new SerialLink(QString::fromLocal8Bit(name));
    link->moveToThread(thread);
    connect(thread, &QThread::started, link, &SerialLink::start);
    connect(thread, &QThread::finished, link, &QObject::deleteLater);
    connect(this, &tst_SerialLink::runTask, link, &SerialLink::runTask);
    int connectedCount = 0;
    QStringList errors, messages;
    QList<SerialTask *> finished;
    connect(link, &SerialLink::connected, this, [&] { ++connectedCount; });
    connect(link, &SerialLink::error, this, [&](const QString &e) { errors << e; });
    connect(link, &SerialLink::disconnected, this, [&] { errors << "disconnected"; });
    connect(link, &SerialLink::logMessage, this, [&](const QString &m) { messages << m; });
    connect(link, &SerialLink::taskDone, this, [&](SerialTask *t) {
        acquireTask(t), finished << t;
    });
    thread->start();
    const auto stop = qScopeGuard([thread] { thread->quit(), thread->wait(), delete thread; });
    QTRY_COMPARE_WITH_TIMEOUT(connectedCount, 1, 5000);

    if (setup[1] < 0) {
        QSemaphore held;
        QMetaObject::invokeMethod(link, [&held, ms = -setup[1]] {
            held.release();
            QThread::msleep(ulong(ms));
        });
        held.acquire();
        const QByteArray late = script.takeFirst().bytes;
        QCOMPARE(::write(master, late.constData(), size_t(late.size())), ssize_t(late.size()));
    }
    std::vector<std::unique_ptr<SerialTask>> tasks;
    for (const QString &command : commands) {
        const qint64 idle = setup[0] ? setup[0] : 30, answer = setup[0] ? setup[0] : 50;
        tasks.push_back(std::make_unique<SerialTask>(command, idle, answer));
        releaseTask(tasks.back().get());
        emit runTask(tasks.back().get());
    }
    if (setup[1] > 0)
        QMetaObject::invokeMethod(link, [ms = setup[1]] { QThread::msleep(ulong(ms)); });
    QElapsedTimer clock;
    clock.start();
    while (!wire.endsWith(commands.first().toLatin1()) && clock.elapsed() < 5000)
        QThread::msleep(1), readWire();
    for (int i = 0; i < script.size(); ++i) {
        QThread::msleep(ulong(script[i].gapMs));
        const QByteArray &bytes = script[i].bytes;
        QCOMPARE(::write(master, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
        if (i == setup[2]) {
            QTest::qWait(100);
            ::close(master), ::close(slave);
            master = slave = -1;
            break;
        }
    }
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), commands.size(), 5000);
    QTRY_COMPARE_WITH_TIMEOUT(messages.size(), log.size(), 5000);
    readWire();

    // Commands go out as their bare characters, one after the other, no terminator.
    QCOMPARE(wire, commands.join(QString()).toLatin1());
    QStringList got;
    for (int i = 0; i < commands.size(); ++i) {
        const SerialTask *task = tasks[size_t(i)].get();
        QCOMPARE(finished.at(i), task);
        got << QString::number(task->status) + ':' + task->reply;
        if (i > 0)
            QVERIFY(task->sentAt >= tasks[size_t(i - 1)]->finishedAt);
        // A reply ends once its silence has lasted the time-out, not before.
        if (error.isEmpty())
            QVERIFY(task->finishedAt - task->lastActivityAt
                    >= (task->reply.isEmpty() ? task->answerTimeoutMs : task->idleTimeoutMs));
    }
    QCOMPARE(got, replies);
    QCOMPARE(messages.replaceInStrings(QRegularExpression("выполнения -?\\d+ мс$"),
                                       "выполнения # мс"),
             log);
    QCOMPARE(errors, error.isEmpty() ? QStringList() : QStringList{error});
}

QTEST_GUILESS_MAIN(tst_SerialLink)
#include "tst_seriallink.moc"
