// The main window against a misbehaving line: one run per fault of kiranto-sim. Each run must
// end with the right message and log lines, the device buttons as they were, the data read
// before kept, and nothing left running.

#include "link/seriallink.h"
#include "models/locators.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukisettings.h"
#include "ui/mainwindow.h"

#include "support.h"

#include <ctime>

using namespace TestSupport;

namespace {

constexpr int kAttempts = 3;
constexpr int kArchiveEvents = 20;
const QString kOffline = QStringLiteral("[[Error]]Устройство не подключено: Автономная работа");

const QString kDeviceButtons = QStringLiteral(
        "tbConnect tbReadConfig tbWriteConfig tbReadArchive tbWriteCorrections tbStop");

// Each pattern matches exactly one line, '*' standing for any run of characters.
bool eachOnce(const QStringList &patterns, const QStringList &lines)
{
    return std::all_of(patterns.begin(), patterns.end(), [&lines](const QString &pattern) {
        return std::count_if(lines.begin(),
                             lines.end(),
                             [&pattern](const QString &line) { return matches(pattern, line); })
               == 1;
    });
}

} // namespace

class tst_FaultMatrix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fault_data();
    void fault();

private:
    // What the user has in front of them, to compare before and after a run: the editor's
    // settings, the tables and the device buttons.
    using Data = QMap<QString, QStringList>;
    void setFault(const QByteArray &rule);
    bool waitQuiet() const;
    void establishBaseline();
    // Runs `what` (a button or "stats") and waits for the engine's report.
    bool start(QString what, QList<QVariant> *report);
    Data snapshot() const;

    ScratchInstall m_install{QString(), 3};
    std::unique_ptr<Simulator> m_sim = std::make_unique<Simulator>(m_install.path());
    std::unique_ptr<MainWindow> m_window;
    // After QTest has put in its own message handler.
    std::unique_ptr<MessageCapture> m_log;
    bool m_baselineValid = false;
    QString m_running;
};

void tst_FaultMatrix::initTestCase()
{
    qRegisterMetaType<uint32_t>("uint32_t");
    // Reached by a flooding device in well under two seconds at 115200 baud.
    SerialLink::setReplyLimit(16 * 1024);
    m_log = std::make_unique<MessageCapture>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void tst_FaultMatrix::setFault(const QByteArray &rule)
{
    QVERIFY(writeFile(m_install.path() + "/faults", rule.isEmpty() ? rule : rule + '\n'));
}

// Every reply begun has been sent and nothing has happened for a while: a reply the link gave up
// on may still be on its way, and would run into the next command.
bool tst_FaultMatrix::waitQuiet() const
{
    QByteArray seen;
    QElapsedTimer unchanged;
    unchanged.start();
    for (int wait = 0; wait < 500 && m_sim->isRunning(); ++wait) {
        QTest::qWait(20);
        const QByteArray now = readFile(m_sim->transcriptPath());
        if (now != seen) {
            seen = now;
            unchanged.restart();
        } else if (unchanged.elapsed() >= 150
                   && seen.count("reply-start") == seen.count("reply-end"))
            return true;
    }
    return !m_sim->isRunning();
}

bool tst_FaultMatrix::start(QString what, QList<QVariant> *report)
{
    Uki *uki = m_window->uki();
    // "stop:<run>": the user presses Esc once the device has the run's first command.
    const bool stop = what.startsWith("stop:");
    what.remove("stop:");
    const int sent = m_sim->receivedCommands().size();
    QSignalSpy read(uki, &Uki::configReadDone);
    QSignalSpy stats(uki, &Uki::statsReadDone);
    QSignalSpy *done = what == "stats" ? &stats : &read;
    if (what == "stats") {
        if (!uki->readStats(0, 0, 0))
            return false;
    } else {
        m_window->findChild<QToolButton *>(what)->click();
    }
    if (stop) {
        if (!QTest::qWaitFor([&] { return m_sim->receivedCommands().size() > sent; }, 10000))
            return false;
        // What the status bar shows once the reply has begun: "message / progress bar".
        QSignalSpy growing(uki, &Uki::received);
        if (!growing.wait(10000))
            return false;
        m_running = m_window->statusBar()->currentMessage() + " / "
                    + m_window->findChild<QProgressBar *>("progressProgram")->text();
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
    }
    if (done->isEmpty() && !done->wait(30000))
        return false;
    *report = done->first();
    return true;
}

// A window that has read identification, settings, corrections and the archive of a healthy
// device. Runs that must succeed are tried again: on a loaded machine a reply can miss the
// 50 ms answer time-out, or the device can stall 30 ms inside a reply, which cuts it short.
void tst_FaultMatrix::establishBaseline()
{
    setFault({});
    if (!m_sim->isRunning()) {
        QFile::remove(m_sim->transcriptPath());
        QVERIFY(m_sim->start(
                QString("--variant uki-kiranto --archive-size %1 --fault-file %2/faults")
                        .arg(kArchiveEvents)
                        .arg(m_install.path())
                        .split(' ')));
    }
    if (m_baselineValid)
        return;
    m_window->uki()->setPortName(m_sim->link());
    const Uki *uki = m_window->uki();
    for (const QString step : {"tbConnect", "tbReadConfig", "tbReadArchive"}) {
        bool done = false;
        for (int attempt = 0; attempt < 5 && !done; ++attempt) {
            QList<QVariant> report;
            QVERIFY(waitQuiet());
            QVERIFY(start(step, &report));
            done = report.at(0).toBool()
                   && (step != "tbReadConfig"
                       || (uki->locators()->rowCount() > 0 && uki->corrLines().endsWith("OK")))
                   && (step != "tbReadArchive" || uki->dumpLines().size() == kArchiveEvents + 2);
        }
        QVERIFY2(done, qPrintable(step));
    }
    QCOMPARE(snapshot()["tableArchive"].size(), kArchiveEvents);
    m_baselineValid = true;
}

tst_FaultMatrix::Data tst_FaultMatrix::snapshot() const
{
    UkiSettings settings;
    m_window->findChild<UkiConfigEditor *>()->settings(settings);
    Data data{{"editor", settings.toLines()}};
    for (const char *table : {"tableLocators", "tableArchive", "tableCorrections"})
        data[table] = modelRows(m_window->findChild<QTableView *>(table)->model());
    for (const QString &name : kDeviceButtons.split(' '))
        data["buttons"].append(m_window->findChild<QWidget *>(name)->isEnabled() ? name : "");
    return data;
}

void tst_FaultMatrix::fault_data()
{
    // fault rule | run: a button or "stats" | success | popup ("%o" the offline message, '*' any
    // text, "%1" the port) | lines of the protocol log, each
    // exactly once, ';' between, "%1" the port | what changes: "" nothing, "cut" the archive ends
    // early, "noise" the tables built from the blocks are empty | for a stopped run, the status
    // bar while it ran (a pattern).
    QTest::addColumn<QString>("row");
    QTest::newRow("silence: settings read fails")
            << "silence|tbReadConfig|0|%o|Нет ответа на команду get_cfg;Порт %1: закрыт.|";
    // The first byte 80 ms after the command: past the 50 ms answer time-out.
    QTest::newRow("slow: statistics fail")
            << "slow|stats|0|[[Error]]Не удалось прочитать статистику поиска|"
               "Нет ответа на команду srch_stats_0_0_0_0|";
    // 60 ms of silence in the dump ends it after 30: the events up to there are the archive.
    QTest::newRow("gap: archive cut short") << "gap:dump|tbReadArchive|1||Порт %1: закрыт.|cut";
    // Noise is an answer: every block is the noise.
    QTest::newRow("garbage: blocks are noise")
            << "garbage|tbReadConfig|1|[[Ok]]Конфигурация успешно загружена|Порт %1: закрыт.|noise";
    QTest::newRow("hangup: the port is gone, by name")
            << "hangup|tbReadArchive|0|[[Error]]Порт %1 отключён|Порт %1 отключён.;Порт %1: "
               "закрыт.|";
    QTest::newRow("flood: reply limit")
            << "flood|tbReadConfig|0|%o|Порт %1: Ошибка: Ответ превысил 16384 байт без паузы..|";
    // Stopped by the user in the middle of a long reply, and of a statistics read.
    QTest::newRow("stop: archive read")
            << "flood:dump|stop:tbReadArchive|0|[[Warning]]Операция прервана|"
               "Операция прервана на команде dump;Порт %1: закрыт.||"
               "Принято строк: \\d+, \\d+\\.\\d КБ, \\d+\\.\\d КБ/с / ";
    QTest::newRow("stop: statistics read")
            << "flood:srch_stats|stop:stats|0|[[Warning]]Операция прервана|"
               "Операция прервана на команде srch_stats_0_0_0_0;Порт %1: закрыт.|| / Команд "
               "выполнено: 0 из 8";
}

void tst_FaultMatrix::fault()
{
    QFETCH(QString, row);
    const QStringList field = row.split('|');
    const QByteArray rule = field.at(0).toUtf8();
    const QString run = field.at(1);
    const bool success = field.at(2) == "1";
    const QString popup = QString(field.at(3)).replace("%o", kOffline);
    QStringList log = field.at(4).split(';');
    const QString outcome = field.at(5);
    const QRegularExpression running('^' + field.value(6) + '$');

    QList<QVariant> report;
    QStringList lines;
    Data before;
    const auto threadCount = [] {
        return QDir(QStringLiteral("/proc/self/task")).count();
    };
    uint threadsBefore = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        establishBaseline();
        if (QTest::currentTestFailed())
            return;
        log.replaceInStrings("%1", m_sim->link());
        QVERIFY(waitQuiet());
        before = snapshot();
        setFault(rule);
        threadsBefore = threadCount();
        m_log->clear();
        QVERIFY2(start(run, &report), "the run did not end");
        lines = m_log->messages();
        setFault({});
        // The line is gone, or still repeating a reply: the device starts afresh.
        if (rule == "hangup" || rule.startsWith("flood"))
            m_sim->stop();
        // Whatever went through may have changed the window or the device.
        if (report.at(0).toBool())
            m_baselineValid = false;
        if (report.at(0).toBool() == success && eachOnce(log, lines))
            break;
    }

    QCOMPARE(report.at(0).toBool(), success);
    const QString shown = TestSupport::popup(m_window.get());
    const QString wanted = QString(popup).replace("%1", m_sim->link());
    QVERIFY2(matches(wanted, shown), qPrintable(shown));
    QVERIFY2(eachOnce(log, lines), qPrintable(log.join('\n') + "\n----\n" + lines.join('\n')));
    const Data after = snapshot();
    Data expected = before;
    if (outcome == "cut") {
        QVERIFY(!after["tableArchive"].isEmpty());
        QVERIFY(after["tableArchive"].size() < before["tableArchive"].size());
        expected["tableArchive"] = before["tableArchive"].mid(0, after["tableArchive"].size());
    } else if (outcome == "noise") {
        QCOMPARE(m_window->uki()->getCfgLines().size(), 1);
        expected["tableLocators"] = expected["tableCorrections"] = QStringList();
    }
    QCOMPARE(after, expected);
    if (run.startsWith("stop:"))
        QVERIFY2(running.match(m_running).hasMatch(), qPrintable(m_running));
    if (!success && run.startsWith("tbRead"))
        QCOMPARE(m_window->findChild<QLabel *>("label_IMS_Ver")->text(), QString());
    // The run's thread is gone and the process sleeps: a port left failing would spin a core.
    QTRY_VERIFY_WITH_TIMEOUT(threadCount() <= threadsBefore, 10000);
    QElapsedTimer wall;
    wall.start();
    const std::clock_t cpu = std::clock();
    QTest::qWait(300);
    QVERIFY((std::clock() - cpu) * 2000 / CLOCKS_PER_SEC < wall.elapsed());
}

QTEST_MAIN(tst_FaultMatrix)
#include "tst_faultmatrix.moc"
