// Soak: many programs in a row through the real engine and serial link against the device
// simulator, in one process. Every run, also one cut off by a hangup or without a port, must
// give back its worker thread and its link with port and timer.

#include "protocol/uki.h"
#include "support.h"

#include <QtTest>

#include <atomic>

// Qt's object hooks (QtCore exports the table that object-inspection tools fill in): entry 3 is
// called by every QObject constructor, entry 4 by every destructor, in the object's thread.
extern quintptr Q_CORE_EXPORT qtHookData[];

namespace {

std::atomic<int> liveObjects{0};

// Installed before main(), so that every QObject of the process is counted from its birth.
const bool objectHooksInstalled = [] {
    if (qtHookData[1] <= 4 || qtHookData[3] || qtHookData[4]) // entry 1: the table's size
        return false;
    qtHookData[3] = reinterpret_cast<quintptr>(+[](QObject *) { ++liveObjects; });
    qtHookData[4] = reinterpret_cast<quintptr>(+[](QObject *) { --liveObjects; });
    return true;
}();

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT
    static int threadsNow() { return int(QDir("/proc/self/task").count()); }

private slots:
    // Of every 25 programs one is cut by a hangup in "get_cfg" (the simulator is started again)
    // and one finds no port; the others read, write and read statistics. Short writes are the
    // most of them, so that the line's pace leaves room for many programs.
    void manyPrograms()
    {
        QVERIFY2(objectHooksInstalled, "this Qt has no object hooks to count QObjects with");
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        QTemporaryDir dir;
        TestSupport::Simulator sim(dir.path());
        const QStringList arguments{"--archive-size", "20", "--fault", "hangup:get_cfg"};
        QVERIFY2(sim.start(arguments), "kiranto-sim did not start (ctest sets KIRANTO_SIM)");
        int programs = qEnvironmentVariableIntValue("KIRANTO_SOAK_PROGRAMS");
        programs = programs > 0 ? programs : 200;
        const int startThreads = threadsNow();
        int objects = 0, threads = 0, succeeded = 0, done = 0;
        bool ok = false;
        auto asFound = [&] {
            return liveObjects == objects && threadsNow() == threads;
        };
        Uki uki;
        connect(&uki, &Uki::programDone, [&](bool success) {
            ok = success;
            ++done;
        });
        for (int i = 0; i < programs; ++i) {
            const QByteArray at = "program " + QByteArray::number(i);
            uki.setPortName(i % 25 == 24 ? dir.filePath("no-tty") : sim.link());
            QVERIFY2(i % 25 == 23   ? uki.readData(Uki::ReadIdentification | Uki::ReadSettings)
                     : i % 20 == 19 ? uki.readStats(0, uint(i / 20 % 16), 0)
                     : i % 10 == 4  ? uki.readData(Uki::ReadIdentification)
                     : i % 10 == 7  ? uki.readData(Uki::ReadCorrections)
                                    : uki.writeCommands({"set_cfg_TimeM3s_2"}),
                     at + " was refused");
            QVERIFY2(QTest::qWaitFor([&] { return done == i + 1 && !uki.isBusy(); }, 60000),
                     at + " did not end");
            QVERIFY2(!ok || i % 25 < 23, at + " succeeded without a line");
            succeeded += ok ? 1 : 0;
            if (i % 25 == 23) {
                QCOMPARE(sim.exitCode(), 0);
                QVERIFY(sim.start(arguments));
            }
            // The first round creates what Qt keeps for good; from then on every run must leave
            // exactly as many QObjects and threads as it found.
            if (i == 24) {
                QTest::qWait(200);
                objects = liveObjects;
                threads = threadsNow();
            }
            QVERIFY2(i < 24 || QTest::qWaitFor(asFound, 10000),
                     at + " left QObjects or threads behind");
        }
        QVERIFY2(succeeded > programs / 2, "most programs failed: is the simulator answering?");
        QCOMPARE(threadsNow(), startThreads);
    }
};

QTEST_GUILESS_MAIN(tst_Soak)
#include "tst_soak.moc"
