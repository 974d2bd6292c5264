// The device simulator seen from the far end of its line: its faults, refusals, pacing, state
// and refused arguments (its transcript is what every end-to-end suite reads the wire from). What its replies say is checked by the parsers that read them.

#include "support.h"

#include <QSerialPort>
#include <QtTest>

// Drives one shared simulator that takes its faults from a rule file.
class tst_Simulator : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    TestSupport::Simulator m_sim{m_dir.path()};
    QSerialPort m_port;
    // Of the last exchange: milliseconds after the command was written; the far end hung up.
    qint64 m_firstMs = -1, m_lastMs = -1, m_maxGapMs = 0;
    bool m_gone = false;

    void rules(const QByteArray &text) { TestSupport::writeFile(m_dir.filePath("rules"), text); }
    // (Re)starts the simulator and opens this end of its line.
    bool restart()
    {
        m_port.close();
        m_port.setPortName(m_sim.link());
        return m_sim.start({"--fault-file", m_dir.filePath("rules"), "--archive-size", "200"})
               && m_port.open(QIODevice::ReadWrite);
    }
    // Writes the command bare and collects until 150 ms of silence, the line's end or limitMs.
    QByteArray exchange(const QByteArray &command, int limitMs = 1000)
    {
        QByteArray bytes;
        m_port.clearError();
        QElapsedTimer clock;
        clock.start();
        m_port.write(command);
        for (m_firstMs = -1, m_maxGapMs = 0;
             clock.elapsed() < limitMs && m_port.waitForReadyRead(150);) {
            const qint64 now = clock.elapsed();
            m_maxGapMs = m_firstMs < 0 ? 0 : std::max(m_maxGapMs, now - m_lastMs);
            m_firstMs = m_firstMs < 0 ? now : m_firstMs;
            m_lastMs = now;
            bytes += m_port.readAll();
        }
        m_gone = m_port.error() != QSerialPort::NoError
                 && m_port.error() != QSerialPort::TimeoutError;
        return bytes;
    }
    static void row(const char *name, const char *rowText)
    {
        QTest::newRow(name) << QString(rowText);
    }

private slots:
    void initTestCase() { QVERIFY(restart()); }
    void faults_data()
    {
        QTest::addColumn<QString>("rowText"); // rules|command|outcome
        row("hangup: half, then gone", "hangup|get_cfg|cut hangup");
        row("silence: no effect", "silence|set_cust_5_2_10_45_200|silent");
        row("reject: no effect", "reject|set_cust_5_4_10_45_200|refused");
        row("garbage: no effect", "garbage|set_cust_5_6_10_45_200|noise");
        row("slow: acts", "slow|set_cust_5_3_10_45_200|normal late changed");
        row("gap inside a reply", "gap|get_cfg|normal gap");
        row("flood until the next command", "flood|cfg|repeated endless");
        row("first rule wins", "# first\nsilence:get\nreject|get_cfg|silent");
        row("refused: terminator appended", "|get_cfg\r\n|refused");
        row("refused: upper case", "|CFG|refused");
        row("refused: key case differs", "|set_cfg_Lang_1|refused");
        row("refused: key of another variant", "|set_cfg_Urbrk_1|refused");
        row("refused: value beyond 32 bits", "|set_cfg_Tcust_2147483648|refused");
        row("refused: save 0", "|set_cfg_save_0|refused");
    }
    void faults()
    {
        QFETCH(QString, rowText);
        const QStringList fields = rowText.split('|');
        const QByteArray command = fields.at(1).toLatin1();
        const QByteArray before = command.startsWith("set_") ? exchange("get_cust") : QByteArray();
        rules(fields.at(0).toLatin1());
        const QByteArray bytes = exchange(command);
        const QStringList extras{
                m_firstMs >= 75 ? "late" : "",
                // A reply that never ends is no place to look for a pause: a loaded machine
                // makes its own.
                m_maxGapMs >= 45 && m_lastMs <= 800 ? "gap" : "",
                m_lastMs > 800 ? "endless" : "",
                m_gone && m_sim.exitCode() == 0 && !QFileInfo(m_sim.link()).isSymLink() ? "hangup"
                                                                                        : ""};
        rules("");
        QVERIFY(!m_gone || restart());
        // Also takes up what a flood sends until the next command.
        const bool changed = !exchange("get_cust").endsWith(before);
        const QByteArray normal = exchange(command);
        const char *kind = bytes.isEmpty()                              ? "silent"
                           : bytes == "Unrecognize\r\n"                 ? "refused"
                           : bytes == normal                            ? "normal"
                           : bytes.startsWith(normal + normal + normal) ? "repeated"
                           : normal.startsWith(bytes)                   ? "cut"
                           : bytes.size() == 96 && bytes.contains('\0') ? "noise"
                                                                        : "other";
        QCOMPARE((QStringList{kind} + extras << (changed ? "changed" : "")).join(' ').simplified(),
                 fields.at(2));
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
