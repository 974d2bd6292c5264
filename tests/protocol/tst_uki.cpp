// The protocol engine end to end: Uki with its real serial link against kiranto-sim on a
// pseudo-terminal, plus the statistics parser and the canned replies.

#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "protocol/cannedreply.h"
#include "protocol/searchstatistics.h"
#include "protocol/uki.h"
#include "protocol/ukiprogram.h"
#include "settings/ukisettings.h"
#include "support.h"

#include <QtTest>

#include <memory>

// One engine against one simulator; m_events holds what the engine emitted, in order: "start",
// log lines, "progress:1/2", "done:1", "read:1:31", "write:0", "stats:1:5:2:1".
class tst_Uki : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void program_data();
    void program();
    void refused();
    void parseStatistics_data();
    void parseStatistics();
    void cannedReply_data();
    void cannedReply();

private:
    void startSimulator(const QString &variant, const QString &fault = QString());
    // Runs a request to its end; a run expected to succeed is repeated (twice at most) only when
    // a loaded machine made the device miss the 50 ms answer time-out.
    bool run(const std::function<bool()> &request, bool expectOk = true);
    // The events without progress, exchange and raw reply lines; the link path as '#'.
    QString trace() const;
    QString wire() const { return m_sim->receivedCommands().mid(m_mark).join(' '); }

    QTemporaryDir m_dir;
    std::unique_ptr<TestSupport::Simulator> m_sim;
    QString m_variant;
    int m_faultVersion = 0;
    int m_mark = 0;
    std::unique_ptr<Uki> m_uki;
    QStringList m_events;
};

void tst_Uki::initTestCase()
{
    m_sim = std::make_unique<TestSupport::Simulator>(m_dir.path());
    m_uki = std::make_unique<Uki>();
    Uki *uki = m_uki.get();
    const auto add = [this](const QString &event) {
        m_events << event;
    };
    connect(uki, &Uki::programStart, this, [=] { add("start"); });
    connect(uki, &Uki::logMessage, this, add);
    connect(uki, &Uki::progress, this, [=](int a, int t) {
        add(QString("progress:%1/%2").arg(a).arg(t));
    });
    connect(uki, &Uki::programDone, this, [=](bool ok) { add(QString("done:%1").arg(ok)); });
    connect(uki, &Uki::received, this, [=](qint64 bytes, int lines, qint64 ms) {
        add(QString("received:%1:%2:%3").arg(bytes).arg(lines).arg(ms));
    });
    connect(uki, &Uki::configReadDone, this, [=](bool ok, uint32_t f) {
        add(QString("read:%1:%2").arg(ok).arg(f));
    });
    connect(uki, &Uki::configWriteDone, this, [=](bool ok) { add(QString("write:%1").arg(ok)); });
    connect(uki, &Uki::statsReadDone, this, [=](bool ok, uint a, uint c, uint l) {
        add(QString("stats:%1:%2:%3:%4").arg(ok).arg(a).arg(c).arg(l));
    });
}

void tst_Uki::startSimulator(const QString &variant, const QString &fault)
{
    // The simulator re-reads its rules when the file changes; the comment grows so that a
    // rewrite within one tick is noticed.
    const QByteArray rules = '#' + QByteArray(++m_faultVersion, '.') + '\n' + fault.toLatin1();
    QVERIFY(TestSupport::writeFile(m_dir.filePath("faults"), rules + '\n'));
    if (!m_sim->isRunning() || variant != m_variant) {
        m_sim->stop();
        QFile::remove(m_sim->statePath());
        m_variant = variant;
        QVERIFY(m_sim->start({"--variant",
                              variant,
                              "--archive-size",
                              "20",
                              "--fault-file",
                              m_dir.filePath("faults")}));
    }
    m_uki->setPortName(m_sim->link());
}

bool tst_Uki::run(const std::function<bool()> &request, bool expectOk)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_events.clear();
        m_mark = m_sim->receivedCommands().size();
        QSignalSpy done(m_uki.get(), &Uki::programDone);
        if (!request() || !done.wait(60000) || m_uki->isBusy())
            return false;
        if (!expectOk || m_events.contains("done:1")
            || m_events.filter("Нет ответа на команду").isEmpty())
            return true;
        qWarning("a failure nobody asked for (a busy machine): the run is repeated");
        QTest::qWait(500);
    }
    return true;
}

QString tst_Uki::trace() const
{
    QStringList kept;
    for (QString event : m_events) {
        if (!QRegularExpression("^(Отработали|rxData |progress:|received:|line : )")
                     .match(event)
                     .hasMatch())
            kept << event.replace(m_sim->link(), "#");
    }
    return kept.join('|');
}

void tst_Uki::program_data()
{
    // variant; request; fault; wire ("x*N": x0 .. xN-1); trace ('*': the rest may vary);
    // blocks (lines, first field, last line of each list; version; rows).
    // Requests: "read flags", "stats address channel level Tcust", "cust address channel low high
    // rloc", "write command...", "corr row:g|p:value..." (changes to the device's corrections).
    QTest::addColumn<QString>("row");
    const auto row = [](const char *name, const QString &text) {
        QTest::newRow(name) << text;
    };
    // clang-format off
    row("uki-kiranto, every block, fixed order", "uki-kiranto;read 31;;get_cfg cfg get_cust corr dump;start|Порт #: открыт.|Результаты:|_locators_|word[0] = UKI : word[1] = 9.6.43|word[0] = 1 : word[1] = 5.1.4|word[0] = 2 : word[1] = 5.1.4|word[0] = 5 : word[1] = 5.2.0|Порт #: закрыт.|done:1|read:1:31;24:AddrUki…OK|6:Addr…OK|66:address…OK|66:address…OK|22:Item…OK|9.6.43|4 locators|64 channels");
    row("statistics, level 0: eight blocks", "uki-kiranto;stats 0 3 0 10;;srch_stats_0_0_3_*8;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|stats:1:0:3:0;");
    row("statistics, locator, Tcust 10: 25 blocks", "uki-kiranto;stats 5 2 1 10;;srch_stats_1_5_2_*25;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|stats:1:5:2:1;");
    row("statistics read again: the new record replaces", "uki-kiranto;stats 5 2 1 4;;srch_stats_1_5_2_*10;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|stats:1:5:2:1;");
    row("statistics, locator, Tcust 0: the cap of 80", "uki-kiranto;stats 1 0 1 0;;srch_stats_1_1_0_*80;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|stats:1:1:0:1;");
    row("statistics, monitor, Tcust 10: the cap of 16", "uki-kiranto;stats 0 2 1 10;;srch_stats_1_0_2_*16;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|stats:1:0:2:1;");
    row("settings written and saved, negative value", "uki-kiranto;write set_cfg_Uminus_-10 set_cfg_save_1;;set_cfg_Uminus_-10 set_cfg_save_1;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|write:1;");
    row("custom channel switched on", "uki-kiranto;cust 1 2 10 40 250;;set_cust_1_2_10_40_250;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|write:1;");
    row("custom channel switched off", "uki-kiranto;cust 0 1 0 0 0;;set_cust_0_1_0_0_0;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|write:1;");
    row("corrections unchanged: an empty program fails", "uki-kiranto;corr;;;start|Порт #: открыт.|Порт #: закрыт.|done:0|write:0;");
    row("corrections: changed rows only, phase as unsigned 16 bits", "uki-kiranto;corr 0:g:1.25 17:p:-2.5 40:p:12.3;;set_corr_0_1_125_65535 set_corr_1_2_101_65511 set_corr_2_9_99_123;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|write:1;");
    row("no reply to corr", "uki-kiranto;read 31;silence:corr;get_cfg cfg get_cust corr;start|Порт #: открыт.|Нет ответа на команду corr|Порт #: закрыт.|done:0|read:0:31;24:AddrUki…OK|6:Addr…OK|66:address…OK|0:…|0:…|9.6.43|4 locators|64 channels");
    row("get_cust refused", "uki-kiranto;read 31;reject:get_cust;get_cfg cfg get_cust;start|Порт #: открыт.|Ошибка при выполнении команды get_cust|Порт #: закрыт.|done:0|read:0:31;24:AddrUki…OK|6:Addr…OK|0:…|0:…|0:…|9.6.43|4 locators|64 channels");
    row("statistics block 3 unanswered: the key of the last success", "uki-kiranto;stats 5 2 1 10;silence:srch_stats_1_5_2_3;srch_stats_1_5_2_*4;start|Порт #: открыт.|Нет ответа на команду srch_stats_1_5_2_3|Порт #: закрыт.|done:0|stats:0:0:2:1;");
    row("unknown setting refused", "uki-kiranto;write set_cfg_Bright_500 set_cfg_Bogus_1 set_cfg_save_1;;set_cfg_Bright_500 set_cfg_Bogus_1;start|Порт #: открыт.|Ошибка при выполнении команды set_cfg_Bogus_1|Порт #: закрыт.|done:0|write:0;");
    row("reply cut by a gap: the rest lands in the next reply", "uki-kiranto;read 9;gap:get_cfg;get_cfg get_cust;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|read:1:9;12:AddrUki…Uminus\t-10|6:Addr…OK|78:MbAddr…OK|0:…|0:…|9.6.43|4 locators|64 channels");
    row("noise is a reply", "uki-kiranto;read 1;garbage:get_cfg;get_cfg;start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|read:1:1;");
    row("an answer after 80 ms is no answer", "uki-kiranto;read 3;slow:cfg;get_cfg cfg;start|Порт #: открыт.|Нет ответа на команду cfg|Порт #: закрыт.|done:0|read:0:3;24:AddrUki…OK|0:…|*|9.6.43|4 locators|64 channels");
    row("after a late answer the next run reads the versions list whole", "uki-kiranto;read 3;;get_cfg cfg;start|Порт #: открыт.*|Результаты:|_locators_|word[0] = UKI : word[1] = 9.6.43|word[0] = 1 : word[1] = 5.1.4|word[0] = 2 : word[1] = 5.1.4|word[0] = 5 : word[1] = 5.2.0|Порт #: закрыт.|done:1|read:1:3;*|6:Addr…OK|*|9.6.43|4 locators|64 channels");
    row("line hung up in cfg: the port is gone by name", "uki-kiranto;read 31;hangup:cfg;get_cfg cfg;start|Порт #: открыт.|Порт # отключён.|Порт #: закрыт.|done:0|read:0:31;24:AddrUki…OK|0:…|0:…|0:…|0:…|9.6.43|4 locators|64 channels");
    row("no such port", ";read 31;;;start|Порт #/../ttyMissing: Ошибка: Ошибка открытия порта #/../ttyMissing : *|Порт #/../ttyMissing: закрыт.|done:0|read:0:31;");
    row("ukps-ks-2, every block", "ukps-ks-2;read 31;;get_cfg cfg get_cust corr dump;start|Порт #: открыт.|Результаты:|_locators_|word[0] = UKI : word[1] = 5.0.12|word[0] = 2 : word[1] = 2.3.7|word[0] = 3 : word[1] = 2.3.7|word[0] = 7 : word[1] = 2.4.1|Порт #: закрыт.|done:1|read:1:31;64:AddrUki…OK|6:Addr…OK|66:address…OK|66:address…OK|22:Item…OK|5.0.12|3 locators|64 channels");
    // clang-format on
}

void tst_Uki::program()
{
    QFETCH(QString, row);
    const QStringList f = row.split(';');
    const QStringList words = f[1].split(' ', Qt::SkipEmptyParts);
    const auto number = [&](int i) {
        return words.value(i).toUInt();
    };
    startSimulator(f[0].isEmpty() ? m_variant : f[0], f[2]);
    if (f[0].isEmpty())
        m_uki->setPortName(m_sim->link() + "/../ttyMissing");
    std::shared_ptr<CtCorrections> corrections;
    if (words[0] == "corr") {
        QVERIFY(run([&] { return m_uki->readData(Uki::ReadCorrections); }));
        corrections = std::make_shared<CtCorrections>(m_uki->corrLines());
        for (const QString &change : words.mid(1)) {
            const auto column = change.section(':', 1, 1) == "g" ? CtCorrections::GainColumn
                                                                 : CtCorrections::PhaseColumn;
            QVERIFY(corrections->setData(
                    corrections->index(change.section(':', 0, 0).toInt(), column),
                    change.section(':', 2).toDouble()));
        }
    }
    QVERIFY(run(
            [&] {
                if (words[0] == "read")
                    return m_uki->readData(number(1));
                if (words[0] == "cust")
                    return m_uki->writeCustomChannel(
                            number(1), number(2), number(3), number(4), number(5));
                if (words[0] == "write")
                    return m_uki->writeCommands(words.mid(1));
                if (corrections)
                    return m_uki->writeCorrections(corrections);
                UkiSettings settings;
                settings.setValue(UkiSettings::Tcust, int(number(4)));
                m_uki->setSettings(settings);
                return m_uki->readStats(number(1), number(2), number(3));
            },
            f[4].contains("done:1")));

    QStringList expectedWire;
    for (const QString &command : f[3].split(' ', Qt::SkipEmptyParts)) {
        for (int i = 0; i < command.section('*', 1).toInt(); ++i)
            expectedWire << command.section('*', 0, 0) + QString::number(i);
        if (!command.contains('*'))
            expectedWire << command;
    }
    QCOMPARE(wire(), expectedWire.join(' '));
    // '*' in an expectation stands for any text.
    QVERIFY2(TestSupport::matches(f[4], trace()), qPrintable(trace()));
    // Whatever '*' stands for, a run is ended by a port error only where one is expected.
    QVERIFY2(f[4].contains("Ошибка: ") || m_events.filter("Ошибка: ").isEmpty(),
             qPrintable(trace()));
    if (m_events.contains("done:1")) {
        QCOMPARE(m_events.filter("progress:").last(),
                 QString("progress:%1/%1").arg(expectedWire.size()));
        QCOMPARE(m_events.filter("progress:").size(), expectedWire.size() + 1);
    }
    // The dump's progress while it arrives: the first chunk at once, then at most ten a second,
    // never more than the reply holds.
    if (words[0] == "read" && (number(1) & Uki::ReadArchive) && m_events.contains("done:1")) {
        const QString dump = m_uki->dumpLines().join("\r\n");
        const QStringList updates = m_events.filter("received:");
        QVERIFY(!updates.isEmpty());
        const QStringList last = updates.last().split(':');
        QVERIFY2(last[1].toInt() <= dump.size() + 2 && last[2].toInt() <= m_uki->dumpLines().size(),
                 qPrintable(updates.join(' ')));
        QVERIFY(updates.size() <= last[3].toInt() / 100 + int(expectedWire.size()));
    }
    if (corrections) {
        for (int r = 0; r < corrections->rowCount(); ++r)
            QVERIFY(!corrections->isModified(r)); // marked as written at once
    }
    if (words[0] == "stats" && m_events.contains("done:1")) {
        const auto s = m_uki->statistics(number(1), number(2), number(3));
        QCOMPARE(s ? s->points.size() : -1, expectedWire.size());
    }
    QString blocks;
    for (const QStringList *l : {&m_uki->getCfgLines(),
                                 &m_uki->cfgLines(),
                                 &m_uki->custLines(),
                                 &m_uki->corrLines(),
                                 &m_uki->dumpLines()})
        blocks += QString("%1:%2…%3|")
                          .arg(l->size())
                          .arg(l->value(0).section('\t', 0, 0), l->value(l->size() - 1));
    blocks += QString("%1|%2 locators|%3 channels")
                      .arg(m_uki->ukiVersion())
                      .arg(m_uki->locators() ? m_uki->locators()->rowCount() : -1)
                      .arg(m_uki->customChannels() ? m_uki->customChannels()->rowCount() : -1);
    QVERIFY2(f[5].isEmpty() || TestSupport::matches(f[5], blocks), qPrintable(blocks));
    if (f[2].startsWith("hangup"))
        m_sim->stop();
}

void tst_Uki::refused()
{
    startSimulator("uki-kiranto");
    TestSupport::MessageCapture messages;
    QVERIFY(!m_uki->readData(0));
    QVERIFY(messages.contains("Ukps::readData() : empty flags"));

    // While its outcome is told the program is still active.
    QList<bool> accepted;
    const auto connection = connect(m_uki.get(), &Uki::programDone, this, [&] {
        accepted << m_uki->readData(Uki::ReadIdentification);
    });
    QVERIFY(run([&] {
        accepted.clear();
        return m_uki->readData(Uki::ReadSettings);
    }));
    disconnect(connection);
    QCOMPARE(accepted, QList<bool>{false});
    QVERIFY(messages.contains("Ukps::startProgram() called when another program active!"));
    QCOMPARE(trace(), "start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|read:1:1");

    // A request while a link exists is dropped and ends the run in progress.
    startSimulator("uki-kiranto", "flood:dump");
    QVERIFY(run(
            [&] {
                const bool started = m_uki->readData(Uki::ReadArchive);
                while (started && m_sim->receivedCommands().size() == m_mark)
                    QTest::qWait(10);
                return started && !m_uki->readStats(0, 0, 0);
            },
            false));
    QVERIFY(messages.contains("Ukps::startProgram() called when not idle!"));
    QCOMPARE(trace(), "start|Порт #: открыт.|Порт #: закрыт.|done:0|read:0:4");
    QCOMPARE(wire(), "dump");
    QVERIFY(m_uki->dumpLines().isEmpty());
    m_sim->stop(); // still flooding
}

void tst_Uki::parseStatistics_data()
{
    // commands; replies (per command at '|', lines at '/'); result and diagnostics
    QTest::addColumn<QString>("row");
    const auto row = [](const char *name, const QString &text) {
        QTest::newRow(name) << text;
    };
    // clang-format off
    row("clamped at 999.9 and sorted", "srch_stats_1_5_2_0 srch_stats_1_5_2_1 srch_stats_1_5_2_2;12\t3.5\t1500/OK|1\t2\t30.5/OK|1\t2\t7/OK;1 key 1 5 2 points 12 3.5 999.9, 1 2 30.5, 1 2 7 sorted 7 30.5 999.9 range 7 999.9 ");
    row("only the first line; non-numbers read as 0", "srch_stats_0_0_3_0;a\tb\tc/1\t2\t3;1 key 0 0 3 points 0 0 0 sorted 0 range 0 0 ");
    row("no commands", ";;0 points  empty \"read statistics\" program");
    row("first command too short", "srch_stats_1_5_2;1\t2\t3;0 points  cannot get program parameters for \"read statistics\" program");
    row("first command not a number", "srch_stats_x_5_2_0;1\t2\t3;0 points  cannot get program parameters for \"read statistics\" program");
    row("later command with seven parts", "srch_stats_1_5_2_0 srch_stats_1_5_2_1_9;1\t2\t3|1\t2\t3;0 points 1 2 3 bad command in \"read statistics\" program");
    row("gap in the index", "srch_stats_1_5_2_0 srch_stats_1_5_2_2;1\t2\t3|1\t2\t3;0 points 1 2 3 wrong index sequence in \"read statistics\" program");
    row("not starting at zero", "srch_stats_1_5_2_1;1\t2\t3;0 points  wrong index sequence in \"read statistics\" program");
    row("four columns", "srch_stats_1_5_2_0;1\t2\t3\t4/OK;0 points  bad response items count in \"read statistics\" program");
    row("no reply lines", "srch_stats_1_5_2_0;;0 points  bad response items count in \"read statistics\" program");
    // clang-format on
}

void tst_Uki::parseStatistics()
{
    QFETCH(QString, row);
    const QStringList f = row.split(';'), replies = f[1].split('|');
    UkiProgram program;
    program.type = UkiProgram::ReadStatistics;
    for (const QString &command : f[0].split(' ', Qt::SkipEmptyParts))
        program.commands.append(UkiCommand{
                command, replies.value(program.commands.size()).split('/', Qt::SkipEmptyParts)});
    TestSupport::MessageCapture messages;
    SearchStatistics s;
    const bool ok = s.parse(program);
    const auto values = [](const QVector<StatPoint> &points, bool all) {
        QStringList text;
        for (const StatPoint &p : points)
            text << (all ? QString("%1 %2 %3").arg(p.value1).arg(p.value2).arg(p.value3)
                         : QString::number(p.value3));
        return text.join(all ? ", " : " ");
    };
    QString got = QString::number(ok)
                  + (ok ? QString(" key %1 %2 %3").arg(s.level).arg(s.address).arg(s.channel)
                        : QString());
    got += " points " + values(s.points, true);
    if (ok)
        got += " sorted " + values(s.sortedPoints, false)
               + QString(" range %1 %2").arg(s.valueRange().first).arg(s.valueRange().second);
    QCOMPARE(got + ' ' + messages.messages().join('|'), f[2]);
}

void tst_Uki::cannedReply_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply"); // a block as its line count, first and last line
    // clang-format off
    QTest::newRow("monitor channel 0, first row") << "srch_stats_1_0_0_0" << "0.21018\t-0.2733\t220";
    QTest::newRow("monitor channel 0, last row") << "srch_stats_1_0_0_15" << "0.20945\t-0.27374\t220";
    QTest::newRow("monitor channel 2 adds 6 to the other table") << "srch_stats_1_0_2_3" << "0.20899\t-0.27377\t44";
    QTest::newRow("locator 5, first row") << "srch_stats_1_5_0_0" << "0.20669\t-0.37097\t177";
    QTest::newRow("locator 5, last row, channel 1") << "srch_stats_1_5_1_79" << "0.20328\t-0.37352\t180";
    for (const char *none : {"srch_stats_1_0_0_16", "srch_stats_2_0_0_0", "srch_stats_1_7_0_0", "srch_stats_1_5_0_80", "srch_stats_1_0_0", "get_cfg", "corr", "set_cfg_Bright_5", "Cfg"})
        QTest::newRow(none) << none << "";
    QTest::newRow("set_cust") << "set_cust_1_2_3_4_5" << "OK\r\n";
    QTest::newRow("versions list, four columns, no OK") << "cfg" << "3 lines, Addr\tver\tEnabled\tTested … 5\t5.0\t0000000000001111\t0000000000001111";
    QTest::newRow("older settings form") << "sets" << "22 lines, AddrUki\t0 … Riso4-20\t200";
    QTest::newRow("archive dump, 2620 bytes") << "dump" << "36 lines, Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6\tValue-7\tValue-8 … 35\t05.04.20\t13:06:30\tET_FEED_PARAM\t190\t0\t540\t5\t15\t0\t05.04.20\t13:06:10";
    QTest::newRow("custom channels") << "get_cust" << "33 lines, address\tchannel\tr_loc\tlower\tupper … 5\t16\tOFF";
    // clang-format on
}

void tst_Uki::cannedReply()
{
    QFETCH(QString, command);
    QFETCH(QString, reply);
    QString got = ::cannedReply(command);
    if (command == "dump")
        QCOMPARE(got.toLatin1().size(), 2620);
    const QStringList lines = got.trimmed().split(QRegularExpression("\r?\n"));
    if (lines.size() > 2)
        got = QString("%1 lines, %2 … %3").arg(lines.size()).arg(lines.first(), lines.last());
    QCOMPARE(got, reply);
}

QTEST_GUILESS_MAIN(tst_Uki)
#include "tst_uki.moc"
