// kiranto-cli as an engineer's script runs it: a process against kiranto-sim, its output, its
// exit status and the files it leaves.

#include "files/csvfiles.h"
#include "models/archivedata.h"
#include "models/customchannels.h"
#include "protocol/uki.h"
#include "support.h"

#include <QtTest>

using namespace TestSupport;

namespace {

struct Outcome
{
    int status = -1;
    QString out;
    QStringList errors;
};

// The rows of the table the tool builds from a block.
template<typename Model>
QStringList rowsOf(const QStringList &block)
{
    return modelRows(std::make_unique<Model>(block).get());
}

} // namespace

class tst_Cli : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    std::unique_ptr<Simulator> m_sim;

    bool startDevice(const QString &variant, const QString &fault = {})
    {
        m_sim = std::make_unique<Simulator>(m_dir.path());
        QFile::remove(m_sim->statePath());
        QStringList arguments{"--variant", variant, "--archive-size", "9"};
        if (!fault.isEmpty())
            arguments << "--fault" << fault;
        return m_sim->start(arguments);
    }
    Outcome cli(const QStringList &arguments) const
    {
        QProcess process;
        process.start(binaryPath("KIRANTO_CLI"), QStringList{"--port", m_sim->link()} + arguments);
        Outcome outcome;
        if (!process.waitForFinished(60000))
            return outcome;
        outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        outcome.out = QString::fromUtf8(process.readAllStandardOutput());
        outcome.errors = QString::fromUtf8(process.readAllStandardError())
                                 .split('\n', Qt::SkipEmptyParts);
        return outcome;
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }

private slots:
    void commands_data();
    void commands();
    void filesOpenInTheTool_data();
    void filesOpenInTheTool();
    void writeSettings();
};

void tst_Cli::commands_data()
{
    QTest::addColumn<QString>("row");
    // variant[,fault] | arguments ('%' the scratch folder) | status | stdout (a line of it, or
    // "") | stderr: its one line begins with this ("" none); no file is left in "%/out".
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString(text);
    };
    row("identify, locators",
        "uki-kiranto|identify|0|5\t5.2.0\t1111111111111111\t1111111111111111\tOOOO OOOO OOOO "
        "SSSS|");
    row("identify, no locators",
        "ukps-ks|identify --json|0|{\"firmware\":\"3.2.17\",\"locators\":[],\"name\":\"UKPS "
        "KIRANTO-KS\",\"variant\":\"ukps-ks\"}|");
    row("variant named", "ukps-ks|--variant ukps-ab identify|0|Device: UKB KIRANTO-AB (ukps-ab)|");
    row("stats, Tcust 0 of the monitor: 16 blocks", "uki-kiranto|stats 0 2|0|15\t*|");
    row("compare: a changed key", "uki-kiranto|compare %/uki-changed.csv|1|RisoM3s1\t60\t77|");
    row("compare: corrections", "uki-kiranto|compare %/corrections.csv|1|0\t1\t99\t-1\t150\t-25|");
    row("unknown command", "uki-kiranto|frobnicate|2||kiranto-cli: unknown command \"frobnicate\"");
    row("unknown option",
        "uki-kiranto|read --out %/out --fast|2||kiranto-cli: Unknown option 'fast'.");
    row("missing file", "uki-kiranto|compare %/none.csv|4||kiranto-cli: no such file");
    row("file of another variant", "uki-kiranto|write-settings %/ukps.csv|4||kiranto-cli: file");
    row("silent device",
        "uki-kiranto,silence|read --out %/out|3||kiranto-cli: device on *: Нет ответа на команду "
        "get_cfg");
    row("archive cut by a hangup",
        "uki-kiranto,hangup:dump|read --what archive --out %/out|3||kiranto-cli: device on");
}

void tst_Cli::commands()
{
    QFETCH(QString, row);
    const QStringList field = row.split('|');
    QVERIFY(startDevice(field[0].section(',', 0, 0), field[0].section(',', 1)));
    QVERIFY(writeFile(path("uki-changed.csv"),
                      "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\nRisoM3s1\t77\r\n"));
    QVERIFY(writeFile(path("ukps.csv"),
                      "0\r\n-----\r\nУКПС КИРАНТО-КС\r\n--------------\r\nAddrUki\t1"));
    QVERIFY(writeFile(path("corrections.csv"),
                      "address\tchannel\tgain*100\t phase*10\r\n0\t1\t150\t-25"));
    QDir(path("out")).removeRecursively();
    const Outcome outcome = cli(QString(field[1]).replace('%', m_dir.path()).split(' '));
    QCOMPARE(outcome.status, field[2].toInt());
    QVERIFY2(field[3].isEmpty() || matches("*\n" + field[3] + "\n*", '\n' + outcome.out),
             qPrintable(outcome.out));
    QCOMPARE(outcome.errors.size(), field[4].isEmpty() ? 0 : 1);
    QVERIFY2(field[4].isEmpty() || matches(field[4] + '*', outcome.errors.value(0)),
             qPrintable(outcome.errors.join('\n')));
    QCOMPARE(QDir(path("out")).entryList(QDir::Files), QStringList());
}

void tst_Cli::filesOpenInTheTool_data()
{
    // The folder and its files, every digit as '#'.
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("names");
    QTest::newRow("uki-kiranto") << "uki-kiranto"
                                 << "uki_####-##-##_##-##-##: ####-##-##,##-##-corrections.csv "
                                    "####-##-##,##-##-custom.csv uki_####-##-##_##-##-archive.csv "
                                    "uki_####-##-##_##-##-config.csv";
    QTest::newRow("ukps-ab") << "ukps-ab"
                             << "ukb_####-##-##_##-##-##: ukb_####-##-##_##-##-archive.csv "
                                "ukb_####-##-##_##-##-config.csv";
}

// "backup" leaves the tool's own files, and they give the tables of the device's own blocks.
void tst_Cli::filesOpenInTheTool()
{
    QFETCH(QString, variant);
    QFETCH(QString, names);
    QVERIFY(startDevice(variant));
    QDir(path("backups")).removeRecursively();
    const Outcome outcome = cli({"backup", "--out", path("backups")});
    QCOMPARE(outcome.status, 0);
    const QStringList folders = QDir(path("backups")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(folders.size(), 1);
    const QString folder = path("backups/" + folders.at(0));
    const QStringList files = QDir(folder).entryList(QDir::Files, QDir::Name);
    QCOMPARE(
            QString(folders.at(0) + ": " + files.join(' ')).replace(QRegularExpression("\\d"), "#"),
            names);
    QCOMPARE(outcome.out.split('\n', Qt::SkipEmptyParts).size(), files.size());

    // The same blocks as the engine reads them; the settings and corrections as the tool's own
    // compare finds them.
    Uki uki;
    uki.setPortName(m_sim->link());
    QSignalSpy done(&uki, &Uki::programDone);
    QVERIFY(uki.readData(31) && done.wait(30000) && done.at(0).at(0).toBool());
    for (const QString &file : files) {
        const QString name = folder + '/' + file;
        if (file.endsWith("archive.csv"))
            QCOMPARE(rowsOf<ArchiveData>(
                             CsvFiles::decodeLines(readFile(name), CsvFiles::Kind::Archive)),
                     rowsOf<ArchiveData>(uki.dumpLines()));
        else if (file.endsWith("custom.csv"))
            QCOMPARE(rowsOf<CustomChannels>(
                             CsvFiles::decodeLines(readFile(name), CsvFiles::Kind::Table)),
                     rowsOf<CustomChannels>(uki.custLines()));
        else
            QCOMPARE(cli({"compare", name}).status, 0);
    }
}

// Backed up first, written, read back: the verdict, the backup holding the values before, and a
// key the device refuses named.
void tst_Cli::writeSettings()
{
    QVERIFY(startDevice("uki-kiranto"));
    const QByteArray file
            = "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\nRisoM3s1\t77\r\nRisoM3s2\t33\r\n";
    QVERIFY(writeFile(path("new.csv"), file));
    Outcome outcome = cli({"write-settings", path("new.csv"), "--dry-run"});
    QCOMPARE(outcome.status, 0);
    QStringList commands = outcome.out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(commands.size(), 24);
    QCOMPARE(commands.mid(2, 2), (QStringList{"set_cfg_RisoM3s1_77", "set_cfg_RisoM3s2_33"}));
    QCOMPARE(commands.last(), "set_cfg_save_1");
    QCOMPARE(m_sim->receivedCommands().filter("set_"), QStringList());

    QDir(path("bk")).removeRecursively();
    outcome = cli({"write-settings", path("new.csv"), "--backup", path("bk")});
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.out.endsWith("Written and verified: 23 of 23\n"), qPrintable(outcome.out));
    QCOMPARE(m_sim->receivedCommands().filter("set_"), commands);
    const QStringList backups = QDir(path("bk")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const QString folder = path("bk/" + backups.value(0));
    const QByteArray saved = readFile(folder + '/' + QDir(folder).entryList({"*config*"}).value(0));
    QVERIFY2(saved.contains("\nRisoM3s1\t60\r\nRisoM3s2\t30\r\n"), saved.constData());

    QVERIFY(startDevice("uki-kiranto", "reject:set_cfg_RisoM3s2"));
    outcome = cli({"write-settings", path("new.csv"), "--backup", path("bk")});
    QCOMPARE(outcome.status, 3);
    // The refusal ends the program before "save": the key written before it is not kept either.
    QCOMPARE(outcome.errors.mid(1),
             (QStringList{
                     "kiranto-cli: Ошибка при выполнении команды set_cfg_RisoM3s2_33",
                     "kiranto-cli: not taken by the device: RisoM3s1 (written 77, read back 60)",
                     "kiranto-cli: not taken by the device: RisoM3s2 (written 33, read back 30)"}));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
