// The device simulator seen from the far end of its line: the commands it refuses as the device
// does, its pacing, state and refused arguments (its transcript is what every end-to-end suite
// reads the wire from). Its faults are checked by the suites that run the tool against them; what
// its replies say is checked by the parsers that read them.

#include "support.h"

#include <QSerialPort>
#include <QtTest>

// Drives one shared simulator.
class tst_Simulator : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    TestSupport::Simulator m_sim{m_dir.path()};
    QSerialPort m_port;
    // Of the last exchange: milliseconds from the command to its last byte.
    qint64 m_lastMs = -1;

    // (Re)starts the simulator and opens this end of its line.
    bool restart()
    {
        m_port.close();
        m_port.setPortName(m_sim.link());
        return m_sim.start({"--archive-size", "200"}) && m_port.open(QIODevice::ReadWrite);
    }
    // Writes the command bare and collects until 150 ms of silence or limitMs.
    QByteArray exchange(const QByteArray &command, int limitMs = 1000)
    {
        QByteArray bytes;
        QElapsedTimer clock;
        clock.start();
        m_port.write(command);
        while (clock.elapsed() < limitMs && m_port.waitForReadyRead(150)) {
            m_lastMs = clock.elapsed();
            bytes += m_port.readAll();
        }
        return bytes;
    }
    static void row(const char *name, const char *rowText)
    {
        QTest::newRow(name) << QString(rowText);
    }

private slots:
    void initTestCase() { QVERIFY(restart()); }
    // Refused as the device refuses it, and nothing changed.
    void refused_data()
    {
        QTest::addColumn<QString>("rowText");
        row("terminator appended", "get_cfg\r\n");
        row("upper case", "CFG");
        row("key case differs", "set_cfg_Lang_1");
        row("key of another variant", "set_cfg_Urbrk_1");
        row("value beyond 32 bits", "set_cfg_Tcust_2147483648");
        row("save 0", "set_cfg_save_0");
    }
    void refused()
    {
        QFETCH(QString, rowText);
        const QByteArray before = exchange("get_cfg");
        QCOMPARE(exchange(rowText.toLatin1()), QByteArray("Unrecognize\r\n"));
        QCOMPARE(exchange("get_cfg"), before);
    }

    // The one timing asserted: the average over the archive dump, 10 % either side of 115200 baud.
    void pacing()
    {
        const QByteArray dump = exchange("dump", 20000);
        QVERIFY(dump.size() > 10000 && dump.endsWith("OK\r\n"));
        const double rate = dump.size() * 1000.0 / m_lastMs;
        QVERIFY2(rate > 11520 * 0.9 && rate < 11520 * 1.1, QByteArray::number(rate));
    }

    // Saved settings, custom channels and corrections outlive the process.
    void stateAcrossRestarts()
    {
        const QByteArray commands("set_cfg_RisoM3s1_77 set_cfg_save_1 set_cust_2_5_15_60_333 "
                                  "set_corr_5_7_123_65436 set_cfg_RisoM3s2_11");
        for (const QByteArray &command : commands.split(' '))
            QCOMPARE(exchange(command), QByteArray("OK\r\n"));
        auto state = [&] {
            return exchange("get_cust") + exchange("corr") + exchange("get_cfg");
        };
        const QByteArray kept = state();
        QVERIFY(kept.contains("RisoM3s1\t77\r\n") && kept.contains("2\t5\t333\t15\t60"));
        QVERIFY(restart());
        QCOMPARE(state(), kept);
    }

    void badArguments_data()
    {
        QTest::addColumn<QString>("rowText");
        row("state of another variant", "--variant ukps-ab");
        row("unknown variant", "--variant uki");
        row("unknown fault", "--fault sparkle:cfg");
        row("latency too long", "--latency 10001");
        row("archive size negative", "--archive-size -1");
    }
    void badArguments()
    {
        QFETCH(QString, rowText);
        TestSupport::Simulator sim(m_dir.path());
        QVERIFY(!sim.start(rowText.split(' ')));
        QCOMPARE(sim.exitCode(), 2);
        QVERIFY(!QFileInfo(sim.link()).isSymLink());
    }
};

QTEST_GUILESS_MAIN(tst_Simulator)
#include "tst_simulator.moc"
