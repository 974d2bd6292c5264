// The protocol engine end to end: Uki with its real serial link against kiranto-sim on a
// pseudo-terminal, plus the statistics parser and the canned replies it is built on.

#include "app/programsettings.h"
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

// Drives one engine against the simulator and records what it emits, in order: "start",
// logs (the link path as '#'), "done:1", "read:1:31", "write:0", "stats:1:5:2:1".
class tst_Uki : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void program_data();
    void program();
    void refused();
    void corrections();
    void lateReply();
    void parseStatistics_data();
    void parseStatistics();
    void cannedReply_data();
    void cannedReply();

private:
    void startSimulator(const QString &variant);
    void setFaults(const QString &rule);
    // Runs a request to its end; a run expected to succeed is repeated (twice at most) when a
    // loaded machine made the device miss the 50 ms answer time-out.
    bool run(const std::function<bool()> &request, bool expectOk = true);
    QStringList trace() const;

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
    connect(uki, &Uki::programStart, this, [this] { m_events << "start"; });
    connect(uki, &Uki::logMessage, this, [this](const QString &m) { m_events << m; });
    connect(uki, &Uki::progress, this, [this](int a, int t) {
        m_events << QString("progress:%1/%2").arg(a).arg(t);
    });
    connect(uki, &Uki::programDone, this, [this](bool ok) {
        m_events << QString("done:%1").arg(ok);
    });
    connect(uki, &Uki::configReadDone, this, [this](bool ok, uint32_t flags) {
        m_events << QString("read:%1:%2").arg(ok).arg(flags);
    });
    connect(uki, &Uki::configWriteDone, this, [this](bool ok) {
        m_events << QString("write:%1").arg(ok);
    });
    connect(uki, &Uki::statsReadDone, this, [this](bool ok, uint a, uint c, uint l) {
        m_events << QString("stats:%1:%2:%3:%4").arg(ok).arg(a).arg(c).arg(l);
    });
}

void tst_Uki::startSimulator(const QString &variant)
{
    setFaults(QString());
    ProgramSettings::instance().port = m_sim->link();
    if (m_sim->isRunning() && variant == m_variant)
        return;
    m_sim->stop();
    QFile::remove(m_sim->statePath());
    m_variant = variant;
    QVERIFY(m_sim->start({"--variant",
                          variant,
                          "--archive-size",
                          "20",
                          "--fault-file",
                          m_dir.filePath("faults")}));
    ProgramSettings::instance().port = m_sim->link();
}

// The simulator re-reads the rules when the file changes; the comment grows so that a rewrite
// within one tick is noticed.
void tst_Uki::setFaults(const QString &rule)
{
    QVERIFY(TestSupport::writeFile(m_dir.filePath("faults"),
                                   '#' + QByteArray(++m_faultVersion, '.') + '\n' + rule.toLatin1()
                                           + '\n'));
}

bool tst_Uki::run(const std::function<bool()> &request, bool expectOk)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_events.clear();
        m_mark = m_sim->receivedCommands().size();
        QSignalSpy done(m_uki.get(), &Uki::programDone);
        if (!request() || !done.wait(60000) || m_uki->isBusy())
            return false;
        if (!expectOk || m_events.contains("done:1") || m_events.filter("Нет ответа").isEmpty())
            return true;
        qWarning("a time-out nobody asked for (a busy machine): the run is repeated");
        QTest::qWait(500);
    }
    return true;
}

QStringList tst_Uki::trace() const
{
    QStringList kept;
    for (QString event : m_events) {
        if (!event.startsWith("Отработали") && !event.startsWith("rxData ")
            && !event.startsWith("progress:") && !event.startsWith("line : "))
            kept << event.replace(m_sim->link(), "#");
    }
    return kept;
}

void tst_Uki::program_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("request"); // "read flags", "stats address channel level Tcust",
                                          // "cust address channel low high rloc", "write cmd..."
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("wire");
    QTest::addColumn<QString>("trace");    // '*' at the end: the rest of the line may vary
    QTest::addColumn<QString>("blocks");   // read: lines per block, first lines, version, rows
    QTest::addColumn<QString>("readBack"); // "flags:line" found after a read

    const auto stats = [](int a, int c, int l, int n) {
        QStringList commands;
        for (int i = 0; i < n; ++i)
            commands << QString("srch_stats_%1_%2_%3_%4").arg(l).arg(a).arg(c).arg(i);
        return commands.join(' ');
    };
    const QString ok = "start|Порт #: открыт.|";
    const QString closed = "Порт #: закрыт.|done:";
    const QString all = "get_cfg cfg get_cust corr dump";
    QTest::newRow("uki-kiranto, every block, fixed order")
            << "uki-kiranto"
            << "read 31"
            << "" << all
            << ok
                       + "Результаты:|_locators_|word[0] = UKI : word[1] = 9.6.43|word[0] = 1 : "
                         "word[1] = 5.1.4|word[0] = 2 : word[1] = 5.1.4|word[0] = 5 : word[1] = "
                         "5.2.0|"
                       + closed + "1|read:1:31"
            << "24:AddrUki…OK|6:Addr…OK|66:address…OK|66:address…OK|22:Item…OK|9.6.43|4 "
               "locators|64 channels"
            << "";
    QTest::newRow("archive and corrections, not in bit order")
            << "uki-kiranto"
            << "read 20"
            << ""
            << "corr dump" << ok + "Результаты:|" + closed + "1|read:1:20"
            << ""
            << "";
    QTest::newRow("statistics, monitor level 0: eight blocks")
            << "uki-kiranto"
            << "stats 0 3 0 10"
            << "" << stats(0, 3, 0, 8) << ok + "Результаты:|" + closed + "1|stats:1:0:3:0"
            << ""
            << "";
    QTest::newRow("statistics, locator with Tcust 10: 25 blocks")
            << "uki-kiranto"
            << "stats 5 2 1 10"
            << "" << stats(5, 2, 1, 25) << ok + "Результаты:|" + closed + "1|stats:1:5:2:1"
            << ""
            << "";
    QTest::newRow("statistics, locator with Tcust 0: the cap of 80")
            << "uki-kiranto"
            << "stats 1 0 1 0"
            << "" << stats(1, 0, 1, 80) << ok + "Результаты:|" + closed + "1|stats:1:1:0:1"
            << ""
            << "";
    QTest::newRow("statistics, monitor with Tcust 10: the cap of 16")
            << "uki-kiranto"
            << "stats 0 2 1 10"
            << "" << stats(0, 2, 1, 16) << ok + "Результаты:|" + closed + "1|stats:1:0:2:1"
            << ""
            << "";
    QTest::newRow("settings written and saved, negative value")
            << "uki-kiranto"
            << "write set_cfg_Uminus_-10 set_cfg_save_1"
            << ""
            << "set_cfg_Uminus_-10 set_cfg_save_1" << ok + "Результаты:|" + closed + "1|write:1"
            << ""
            << "1:Uminus\t-10";
    QTest::newRow("a setting not saved stays pending")
            << "uki-kiranto"
            << "write set_cfg_Bright_321"
            << ""
            << "set_cfg_Bright_321" << ok + "Результаты:|" + closed + "1|write:1"
            << ""
            << "1:Bright\t700";
    QTest::newRow("custom channel switched on")
            << "uki-kiranto"
            << "cust 1 2 10 40 250"
            << ""
            << "set_cust_1_2_10_40_250" << ok + "Результаты:|" + closed + "1|write:1"
            << ""
            << "8:1\t2\t250\t10\t40";
    QTest::newRow("custom channel switched off")
            << "uki-kiranto"
            << "cust 0 1 0 0 0"
            << ""
            << "set_cust_0_1_0_0_0" << ok + "Результаты:|" + closed + "1|write:1"
            << ""
            << "8:0\t1\tOFF";
    QTest::newRow("no reply to corr")
            << "uki-kiranto"
            << "read 31"
            << "silence:corr"
            << "get_cfg cfg get_cust corr"
            << ok + "Нет ответа на команду corr|" + closed + "0|read:0:31"
            << "24:AddrUki…OK|6:Addr…OK|66:address…OK|0:…|0:…|9.6.43|4 locators|64 channels"
            << "";
    QTest::newRow("get_cust refused")
            << "uki-kiranto"
            << "read 31"
            << "reject:get_cust"
            << "get_cfg cfg get_cust"
            << ok + "Ошибка при выполнении команды get_cust|" + closed + "0|read:0:31"
            << "24:AddrUki…OK|6:Addr…OK|0:…|0:…|0:…|9.6.43|4 locators|64 channels"
            << "";
    QTest::newRow("statistics block 3 unanswered")
            << "uki-kiranto"
            << "stats 5 2 1 10"
            << "silence:srch_stats_1_5_2_3" << stats(5, 2, 1, 4)
            << ok + "Нет ответа на команду srch_stats_1_5_2_3|" + closed + "0|stats:0:0:2:1"
            << ""
            << "";
    QTest::newRow("unknown setting refused")
            << "uki-kiranto"
            << "write set_cfg_Bright_500 set_cfg_Bogus_1 set_cfg_save_1"
            << ""
            << "set_cfg_Bright_500 set_cfg_Bogus_1"
            << ok + "Ошибка при выполнении команды set_cfg_Bogus_1|" + closed + "0|write:0"
            << ""
            << "";
    QTest::newRow("reply cut by a gap: first half taken, run goes on")
            << "uki-kiranto"
            << "read 9"
            << "gap:get_cfg"
            << "get_cfg get_cust" << ok + "Результаты:|" + closed + "1|read:1:9"
            << "12:AddrUki…Uminus\t-10|6:Addr…OK|78:MbAddr…OK|0:…|0:…|9.6.43|4 locators|64 channels"
            << "";
    QTest::newRow("noise is a reply") << "uki-kiranto"
                                      << "read 1"
                                      << "garbage:get_cfg"
                                      << "get_cfg" << ok + "Результаты:|" + closed + "1|read:1:1"
                                      << ""
                                      << "";
    QTest::newRow("line hung up in cfg")
            << "uki-kiranto"
            << "read 31"
            << "hangup:cfg"
            << "get_cfg cfg" << ok + "Порт #: Ошибка: *|" + closed + "0|read:0:31"
            << ""
            << "";
    QTest::newRow("no such port")
            << ""
            << "read 31"
            << ""
            << ""
            << "start|Порт #/../ttyMissing: Ошибка: Ошибка открытия порта #/../ttyMissing : *|Порт "
               "#/../ttyMissing: закрыт.|done:0|read:0:31"
            << ""
            << "";
    QTest::newRow("ukps-ks-2, every block")
            << "ukps-ks-2"
            << "read 31"
            << "" << all
            << ok
                       + "Результаты:|_locators_|word[0] = UKI : word[1] = 5.0.12|word[0] = 2 : "
                         "word[1] = 2.3.7|word[0] = 3 : word[1] = 2.3.7|word[0] = 7 : word[1] = "
                         "2.4.1|"
                       + closed + "1|read:1:31"
            << "64:AddrUki…OK|6:Addr…OK|66:address…OK|66:address…OK|22:Item…OK|5.0.12|3 "
               "locators|64 channels"
            << "";
}

void tst_Uki::program()
{
    QFETCH(QString, variant);
    QFETCH(QString, request);
    QFETCH(QString, fault);
    QFETCH(QString, wire);
    QFETCH(QString, trace);
    QFETCH(QString, blocks);
    QFETCH(QString, readBack);

    startSimulator(variant.isEmpty() ? m_variant : variant);
    if (variant.isEmpty())
        ProgramSettings::instance().port = m_sim->link() + "/../ttyMissing";
    setFaults(fault);
    const QStringList words = request.split(' ');
    const auto number = [&](int i) {
        return words.value(i).toUInt();
    };
    QVERIFY(run(
            [&] {
                if (words[0] == "read")
                    return m_uki->readData(number(1));
                if (words[0] == "cust")
                    return m_uki->writeCustomChannel(
                            number(1), number(2), number(3), number(4), number(5));
                if (words[0] == "write")
                    return m_uki->writeCommands(words.mid(1));
                UkiSettings settings;
                settings.setValue(UkiSettings::Tcust, int(number(4)));
                m_uki->setSettings(settings);
                return m_uki->readStats(number(1), number(2), number(3));
            },
            fault.isEmpty() && !variant.isEmpty()));
    QCOMPARE(m_sim->receivedCommands().mid(m_mark).join(' '), wire);
    const QStringList expected = trace.split('|'), got = this->trace();
    QCOMPARE(got.size(), expected.size());
    for (int i = 0; i < got.size(); ++i) {
        if (!expected[i].endsWith('*') || !got[i].startsWith(expected[i].chopped(1)))
            QCOMPARE(got[i], expected[i]);
    }
    if (words[0] == "stats" && got.last().startsWith("stats:1")) {
        const auto s = m_uki->statistics(number(1), number(2), number(3));
        QVERIFY(s);
        QCOMPARE(s->points.size(), wire.count(' ') + 1);
    }
    QString digest;
    for (const QStringList *lines : {&m_uki->getCfgLines(),
                                     &m_uki->cfgLines(),
                                     &m_uki->custLines(),
                                     &m_uki->corrLines(),
                                     &m_uki->dumpLines()})
        digest += QString("%1:%2…%3|")
                          .arg(lines->size())
                          .arg(lines->value(0).section('\t', 0, 0),
                               lines->value(lines->size() - 1));
    digest += m_uki->ukiVersion()
              + QString("|%1 locators|%2 channels")
                        .arg(m_uki->locators() ? m_uki->locators()->rowCount() : -1)
                        .arg(m_uki->customChannels() ? m_uki->customChannels()->rowCount() : -1);
    if (!blocks.isEmpty())
        QCOMPARE(digest, blocks);
    if (!readBack.isEmpty()) {
        QVERIFY(run([&] { return m_uki->readData(readBack.section(':', 0, 0).toUInt()); }));
        const QStringList lines = readBack.startsWith("1:") ? m_uki->getCfgLines()
                                                            : m_uki->custLines();
        QVERIFY2(lines.contains(readBack.section(':', 1)), qPrintable(lines.join('\n')));
    }
    if (fault.startsWith("hangup"))
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
    QVERIFY(run([&] { return m_uki->readData(Uki::ReadSettings); }));
    disconnect(connection);
    QCOMPARE(accepted, QList<bool>{false});
    QVERIFY(messages.contains("Ukps::startProgram() called when another program active!"));
    QCOMPARE(trace().join('|'),
             "start|Порт #: открыт.|Результаты:|Порт #: закрыт.|done:1|read:1:1");

    // A request while a link exists is dropped and ends the run in progress.
    setFaults("flood:dump");
    QVERIFY(run(
            [&] {
                const bool started = m_uki->readData(Uki::ReadArchive);
                while (started && m_sim->receivedCommands().size() == m_mark)
                    QTest::qWait(10);
                return started && !m_uki->readStats(0, 0, 0);
            },
            false));
    QVERIFY(messages.contains("Ukps::startProgram() called when not idle!"));
    QCOMPARE(trace().join('|'), "start|Порт #: открыт.|Порт #: закрыт.|done:0|read:0:4");
    QCOMPARE(m_sim->receivedCommands().mid(m_mark), QStringList{"dump"});
    QVERIFY(m_uki->dumpLines().isEmpty());
    m_sim->stop(); // still flooding
}

void tst_Uki::corrections()
{
    startSimulator("uki-kiranto");
    QVERIFY(run([&] { return m_uki->readData(Uki::ReadCorrections); }));
    auto corrections = std::make_shared<CtCorrections>(m_uki->corrLines());
    // Nothing changed: an empty program, which fails.
    QVERIFY(run([&] { return m_uki->writeCorrections(corrections); }, false));
    QCOMPARE(trace().join('|'), "start|Порт #: открыт.|Порт #: закрыт.|done:0|write:0");

    QVERIFY(corrections->setData(corrections->index(0, CtCorrections::GainColumn), 1.25));
    QVERIFY(corrections->setData(corrections->index(17, CtCorrections::PhaseColumn), -2.5));
    QVERIFY(corrections->setData(corrections->index(40, CtCorrections::PhaseColumn), 12.3));
    QVERIFY(run([&] { return m_uki->writeCorrections(corrections); }));
    // The phase travels as an unsigned 16-bit number; written rows count as saved at once.
    QCOMPARE(m_sim->receivedCommands().mid(m_mark).join(' '),
             "set_corr_0_1_125_65535 set_corr_1_2_101_65511 set_corr_2_9_99_123");
    QCOMPARE(m_events.last(), "write:1");
    for (int row = 0; row < corrections->rowCount(); ++row)
        QVERIFY(!corrections->isModified(row));
    QVERIFY(run([&] { return m_uki->readData(Uki::ReadCorrections); }));
    const QStringList lines = m_uki->corrLines();
    QCOMPARE(lines.mid(1, 2) + lines.mid(18, 1) + lines.mid(41, 1),
             QStringList({"0\t1\t125\t-1", "0\t2\t100\t2", "1\t2\t101\t-25", "2\t9\t99\t123"}));
}

void tst_Uki::lateReply()
{
    startSimulator("uki-kiranto");
    setFaults("slow:cfg");
    QVERIFY(run([&] { return m_uki->readData(3); }, false));
    QCOMPARE(trace().join('|'),
             "start|Порт #: открыт.|Нет ответа на команду cfg|Порт #: закрыт.|done:0|read:0:3");
    QCOMPARE(m_events.filter(QRegularExpression("^Отработали команду: cfg, результат: Timeout\\. "
                                                "Время выполнения \\d+ мс$"))
                     .size(),
             1);
    QVERIFY(m_uki->cfgLines().isEmpty());

    // The late reply waits in the line until the next run opens the port: read before the first
    // command it is unexpected data, else the first command's clearing drops it. Meeting that
    // clearing, the port may report a read error and end that run; the next one is clean.
    QTRY_VERIFY_WITH_TIMEOUT(
            TestSupport::readFile(m_sim->transcriptPath()).contains(" reply-end 340"), 10000);
    setFaults(QString());
    for (int attempt = 0; attempt < 3 && !m_events.contains("read:1:3"); ++attempt) {
        QVERIFY(run([&] { return m_uki->readData(3); }, false));
        for (const QString &line : m_events.filter("Неожиданные данные на приёме: "))
            QVERIFY2(
                    line.startsWith("Неожиданные данные на приёме: Addr\tver\tEnabled\tTested\r\n"),
                    qPrintable(line));
        QVERIFY(m_events.contains("read:1:3") || !trace().filter("Порт #: Ошибка: ").isEmpty());
        QTest::qWait(300);
    }
    QCOMPARE(m_uki->cfgLines().size(), 6);
    QCOMPARE(m_uki->cfgLines().first(), "Addr\tver\tEnabled\tTested");
}

void tst_Uki::parseStatistics_data()
{
    QTest::addColumn<QString>("commands");
    QTest::addColumn<QString>("replies"); // per command, split at '|'; lines split at '/'
    QTest::addColumn<QString>("result");
    const QString four = "bad response items count in \"read statistics\" program";
    QTest::newRow("clamped at 999.9 and sorted")
            << "srch_stats_1_5_2_0 srch_stats_1_5_2_1 srch_stats_1_5_2_2"
            << "12\t3.5\t1500/OK|1\t2\t30.5/OK|1\t2\t7/OK"
            << "1 key 1 5 2 points 12 3.5 999.9, 1 2 30.5, 1 2 7 sorted 7 30.5 999.9 range 7 "
               "999.9 ";
    QTest::newRow("only the first line; non-numbers read as 0")
            << "srch_stats_0_0_3_0"
            << "a\tb\tc/1\t2\t3"
            << "1 key 0 0 3 points 0 0 0 sorted 0 range 0 0 ";
    QTest::newRow("no commands") << ""
                                 << ""
                                 << "0 points  empty \"read statistics\" program";
    QTest::newRow("first command too short")
            << "srch_stats_1_5_2"
            << "1\t2\t3"
            << "0 points  cannot get program parameters for \"read statistics\" program";
    QTest::newRow("first command not a number")
            << "srch_stats_x_5_2_0"
            << "1\t2\t3"
            << "0 points  cannot get program parameters for \"read statistics\" program";
    QTest::newRow("later command with seven parts")
            << "srch_stats_1_5_2_0 srch_stats_1_5_2_1_9"
            << "1\t2\t3|1\t2\t3"
            << "0 points 1 2 3 bad command in \"read statistics\" program";
    QTest::newRow("gap in the index")
            << "srch_stats_1_5_2_0 srch_stats_1_5_2_2"
            << "1\t2\t3|1\t2\t3"
            << "0 points 1 2 3 wrong index sequence in \"read statistics\" program";
    QTest::newRow("not starting at zero")
            << "srch_stats_1_5_2_1"
            << "1\t2\t3"
            << "0 points  wrong index sequence in \"read statistics\" program";
    QTest::newRow("four columns") << "srch_stats_1_5_2_0"
                                  << "1\t2\t3\t4/OK"
                                  << "0 points  " + four;
    QTest::newRow("no reply lines") << "srch_stats_1_5_2_0"
                                    << ""
                                    << "0 points  " + four;
}

void tst_Uki::parseStatistics()
{
    QFETCH(QString, commands);
    QFETCH(QString, replies);
    QFETCH(QString, result);
    UkiProgram program;
    program.type = UkiProgram::ReadStatistics;
    const QStringList texts = replies.split('|');
    for (const QString &command : commands.split(' ', Qt::SkipEmptyParts))
        program.commands.append(UkiCommand{
                command, texts.value(program.commands.size()).split('/', Qt::SkipEmptyParts)});
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
    QString got = QString::number(ok);
    if (ok)
        got += QString(" key %1 %2 %3").arg(s.level).arg(s.address).arg(s.channel);
    got += " points " + values(s.points, true)
           + (ok ? " sorted " + values(s.sortedPoints, false) : QString());
    if (ok)
        got += QString(" range %1 %2").arg(s.valueRange().first).arg(s.valueRange().second);
    QCOMPARE(got + ' ' + messages.messages().join('|'), result);
}

void tst_Uki::cannedReply_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply"); // a block as its size, line count, first and last line
    QTest::newRow("monitor channel 0, first row") << "srch_stats_1_0_0_0"
                                                  << "0.21018\t-0.2733\t220";
    QTest::newRow("monitor channel 0, fourth row") << "srch_stats_1_0_0_3"
                                                   << "0.20899\t-0.27377\t219";
    QTest::newRow("monitor channel 0, last row") << "srch_stats_1_0_0_15"
                                                 << "0.20945\t-0.27374\t220";
    QTest::newRow("monitor channel 2 adds 6 to the other table") << "srch_stats_1_0_2_3"
                                                                 << "0.20899\t-0.27377\t44";
    QTest::newRow("locator 5, first row") << "srch_stats_1_5_0_0"
                                          << "0.20669\t-0.37097\t177";
    QTest::newRow("locator 5, last row, channel 1") << "srch_stats_1_5_1_79"
                                                    << "0.20328\t-0.37352\t180";
    for (const char *none : {"srch_stats_1_0_0_16",
                             "srch_stats_2_0_0_0",
                             "srch_stats_1_7_0_0",
                             "srch_stats_1_5_0_80",
                             "srch_stats_1_0_0",
                             "get_cfg",
                             "corr",
                             "set_cfg_Bright_5",
                             "Cfg"})
        QTest::newRow(none) << none << "";
    QTest::newRow("set_cust") << "set_cust_1_2_3_4_5"
                              << "OK\r\n";
    QTest::newRow("versions list, four columns, no OK")
            << "cfg"
            << "3 lines, Addr\tver\tEnabled\tTested … 5\t5.0\t0000000000001111\t0000000000001111";
    QTest::newRow("older settings form") << "sets"
                                         << "22 lines, AddrUki\t0 … Riso4-20\t200";
    QTest::newRow("archive dump, 2620 bytes")
            << "dump"
            << "36 lines, "
               "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-"
               "6\tValue-7\tValue-8 … "
               "35\t05.04.20\t13:06:30\tET_FEED_PARAM\t190\t0\t540\t5\t15\t0\t05.04.20\t13:06:10";
    QTest::newRow("custom channels")
            << "get_cust"
            << "33 lines, address\tchannel\tr_loc\tlower\tupper … 5\t16\tOFF";
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
