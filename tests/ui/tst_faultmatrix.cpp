// The main window against a misbehaving line: one run per fault of kiranto-sim, and a port that
// cannot be opened. Each run must end with the right message and log lines, the device buttons
// as they were, the data read before kept, and nothing left running.

#include "app/programsettings.h"
#include "link/seriallink.h"
#include "models/locators.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukisettings.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"

#include "support.h"

#include <time.h>

using namespace TestSupport;

namespace {

// Reached by a flooding device in well under two seconds at 115200 baud.
constexpr qint64 kReplyLimit = 16 * 1024;
constexpr int kAttempts = 3;
constexpr int kArchiveEvents = 20;

const char *const kDeviceButtons[] = {
        "tbConnect", "tbReadConfig", "tbWriteConfig", "tbReadArchive", "tbWriteCorrections"};

// A pattern ending in '*' matches the lines that begin with the rest of it.
int countMatches(const QStringList &lines, const QString &pattern)
{
    const bool prefix = pattern.endsWith(QLatin1Char('*'));
    const QString text = prefix ? pattern.chopped(1) : pattern;
    int count = 0;
    for (const QString &line : lines)
        count += prefix ? line.startsWith(text) : line == text;
    return count;
}

int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task"))
            .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
            .size();
}

qint64 processCpuMs()
{
    timespec ts{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

enum Outcome { Kept, ArchiveCut, NoiseBlocks };

} // namespace

Q_DECLARE_METATYPE(Outcome)

class tst_FaultMatrix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void fault_data();
    void fault();

private:
    // What the user has in front of them, to compare before and after a run.
    struct Data
    {
        QStringList editor, locators, archive, corrections;
        QList<bool> buttons;
    };
    template<typename T = QWidget>
    T *child(const char *name) const
    {
        return m_window->findChild<T *>(QLatin1String(name));
    }
    void setFault(const QByteArray &rule);
    bool waitQuiet() const;
    void establishBaseline();
    // Runs `what` (a button, "stats" or "connect:<port>") and waits for the engine's report.
    bool start(const QString &what, QList<QVariant> *report);
    Data snapshot() const;

    std::unique_ptr<ScratchInstall> m_install;
    std::unique_ptr<Simulator> m_sim;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<MessageCapture> m_log;
    bool m_baselineValid = false;
};

void tst_FaultMatrix::initTestCase()
{
    qRegisterMetaType<uint32_t>("uint32_t");
    SerialLink::setReplyLimit(kReplyLimit);
    m_log = std::make_unique<MessageCapture>();
    m_install = std::make_unique<ScratchInstall>(QString(), 3);
    m_sim = std::make_unique<Simulator>(m_install->path());
    setFault({});
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void tst_FaultMatrix::cleanupTestCase()
{
    m_window.reset();
    m_sim.reset();
    m_log.reset();
}

void tst_FaultMatrix::setFault(const QByteArray &rule)
{
    QVERIFY(writeFile(m_install->path() + "/faults", rule.isEmpty() ? rule : rule + '\n'));
}

// Every reply begun has been sent and nothing has happened for a while: a reply the link gave up
// on may still be on its way, and would run into the next command.
bool tst_FaultMatrix::waitQuiet() const
{
    QByteArray seen;
    QElapsedTimer total, unchanged;
    total.start();
    unchanged.start();
    while (m_sim->isRunning() && total.elapsed() < 10000) {
        const QByteArray now = readFile(m_sim->transcriptPath());
        if (now != seen) {
            seen = now;
            unchanged.restart();
        } else if (unchanged.elapsed() >= 150
                   && seen.count("reply-start") == seen.count("reply-end")) {
            return true;
        }
        QTest::qWait(20);
    }
    return !m_sim->isRunning();
}

bool tst_FaultMatrix::start(const QString &what, QList<QVariant> *report)
{
    Uki *uki = m_window->uki();
    QSignalSpy read(uki, &Uki::configReadDone);
    QSignalSpy written(uki, &Uki::configWriteDone);
    QSignalSpy stats(uki, &Uki::statsReadDone);
    QSignalSpy *done = &read;
    if (what == QLatin1String("stats")) {
        done = &stats;
        if (!uki->readStats(0, 0, 0))
            return false;
    } else if (what.startsWith(QLatin1String("connect:"))) {
        QTimer::singleShot(0, this, [what] {
            auto *dialog = qobject_cast<ConfigDialog *>(QApplication::activeModalWidget());
            dialog->findChild<QComboBox *>()->setEditText(what.mid(8));
            dialog->accept();
        });
        child<QToolButton>("tbEdit_Connect")->click();
    } else {
        done = what == QLatin1String("tbWriteConfig") ? &written : &read;
        child<QToolButton>(qPrintable(what))->click();
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
        QVERIFY(m_sim->start({"--variant",
                              "uki-kiranto",
                              "--archive-size",
                              QString::number(kArchiveEvents),
                              "--fault-file",
                              m_install->path() + "/faults"}));
    }
    if (m_baselineValid)
        return;
    ProgramSettings::instance().port = m_sim->link();
    Uki *uki = m_window->uki();
    const std::pair<const char *, std::function<bool()>> steps[] = {
            {"tbConnect",
             [] {
                 return true;
             }},
            {"tbReadConfig",
             [uki] {
                 return uki->locators()->rowCount() > 0 && uki->corrLines().endsWith("OK");
             }},
            {"tbReadArchive", [uki] {
                 return uki->dumpLines().size() == kArchiveEvents + 2;
             }}};
    for (const auto &step : steps) {
        bool done = false;
        for (int attempt = 0; attempt < 5 && !done; ++attempt) {
            QList<QVariant> report;
            QVERIFY(waitQuiet());
            QVERIFY(start(QLatin1String(step.first), &report));
            done = report.at(0).toBool() && step.second();
        }
        QVERIFY2(done, step.first);
    }
    QCOMPARE(snapshot().archive.size(), kArchiveEvents);
    m_baselineValid = true;
}

tst_FaultMatrix::Data tst_FaultMatrix::snapshot() const
{
    Data data;
    UkiSettings settings;
    m_window->findChild<UkiConfigEditor *>()->settings(settings);
    data.editor = settings.toLines();
    data.locators = modelRows(child<QTableView>("tableLocators")->model());
    data.archive = modelRows(child<QTableView>("tableArchive")->model());
    data.corrections = modelRows(child<QTableView>("tableCorrections")->model());
    for (const char *name : kDeviceButtons)
        data.buttons.append(child(name)->isEnabled());
    return data;
}

void tst_FaultMatrix::fault_data()
{
    QTest::addColumn<QByteArray>("rule");
    QTest::addColumn<QString>("run");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("popup");
    // Lines of the protocol log, each exactly once; %1 the port.
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<Outcome>("outcome");

    const QString offline = QStringLiteral("[[Error]]Устройство не подключено: Автономная работа");
    QTest::newRow("silence: settings read fails")
            << QByteArray("silence") << "tbReadConfig" << false << offline
            << QStringList{"Нет ответа на команду get_cfg", "Порт %1: закрыт."} << Kept;
    QTest::newRow("reject: write fails")
            << QByteArray("reject") << "tbWriteConfig" << false << "[[Error]]Ошибка записи данных"
            << QStringList{"Ошибка при выполнении команды set_cfg_*", "Порт %1: открыт."} << Kept;
    // The first byte 80 ms after the command: past the 50 ms answer time-out.
    QTest::newRow("slow: statistics fail")
            << QByteArray("slow") << "stats" << false
            << "[[Error]]Не удалось прочитать статистику поиска"
            << QStringList{"Нет ответа на команду srch_stats_0_0_0_0"} << Kept;
    // 60 ms of silence in the dump ends it after 30: the events up to there are the archive.
    QTest::newRow("gap: archive cut short")
            << QByteArray("gap:dump") << "tbReadArchive" << true << QString()
            << QStringList{"Порт %1: закрыт."} << ArchiveCut;
    // Noise is an answer: every block is the noise, the tables built from it are empty.
    QTest::newRow("garbage: blocks are noise") << QByteArray("garbage") << "tbReadConfig" << true
                                               << "[[Ok]]Конфигурация успешно загружена"
                                               << QStringList{"Порт %1: закрыт."} << NoiseBlocks;
    QTest::newRow("hangup: port error")
            << QByteArray("hangup") << "tbReadArchive" << false << offline
            << QStringList{"Порт %1: Ошибка: *", "Порт %1: закрыт."} << Kept;
    QTest::newRow("flood: reply limit")
            << QByteArray("flood") << "tbReadConfig" << false << offline
            << QStringList{"Порт %1: Ошибка: Ответ превысил " + QString::number(kReplyLimit)
                           + " байт без паузы.."}
            << Kept;
    QTest::newRow("port that does not exist")
            << QByteArray() << "connect:/nonexistent/ttyKIRANTO" << false << offline
            << QStringList{"Порт /nonexistent/ttyKIRANTO: Ошибка: Ошибка открытия порта "
                           "/nonexistent/ttyKIRANTO : *"}
            << Kept;
}

void tst_FaultMatrix::fault()
{
    QFETCH(QByteArray, rule);
    QFETCH(QString, run);
    QFETCH(bool, success);
    QFETCH(QString, popup);
    QFETCH(QStringList, log);
    QFETCH(Outcome, outcome);

    QList<QVariant> report;
    QStringList lines;
    Data before;
    int threadsBefore = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        establishBaseline();
        if (QTest::currentTestFailed())
            return;
        const QString port = m_sim->link();
        run.replace("%1", port);
        for (QString &line : log)
            line.replace("%1", port);
        QVERIFY(waitQuiet());
        if (run == "tbWriteConfig") {
            auto *box = m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>(
                    "sbRisoM3s1");
            box->setValue(box->value() == 75 ? 70 : 75);
        }
        before = snapshot();
        setFault(rule);
        threadsBefore = threadCount();
        m_log->clear();
        QVERIFY2(start(run, &report), "the run did not end");
        lines = m_log->messages();
        setFault({});
        // The line is gone, or still repeating a reply: the device starts afresh.
        if (rule == "hangup" || rule == "flood")
            m_sim->stop();
        // Whatever went through may have changed the window or the device.
        if (report.at(0).toBool() || run == "tbWriteConfig" || run.startsWith("connect"))
            m_baselineValid = false;
        bool expected = report.at(0).toBool() == success;
        for (const QString &pattern : qAsConst(log))
            expected = expected && countMatches(lines, pattern) == 1;
        if (expected)
            break;
    }

    QCOMPARE(report.at(0).toBool(), success);
    QCOMPARE(TestSupport::popup(m_window.get()), popup);
    for (const QString &pattern : qAsConst(log))
        QVERIFY2(countMatches(lines, pattern) == 1, qPrintable(pattern + '\n' + lines.join('\n')));
    const Data after = snapshot();
    QCOMPARE(after.buttons, before.buttons);
    QCOMPARE(after.editor, before.editor);
    switch (outcome) {
    case Kept:
        QCOMPARE(after.archive, before.archive);
        QCOMPARE(after.locators, before.locators);
        QCOMPARE(after.corrections, before.corrections);
        break;
    case ArchiveCut:
        QVERIFY(!after.archive.isEmpty());
        QVERIFY(after.archive.size() < before.archive.size());
        QCOMPARE(after.archive, before.archive.mid(0, after.archive.size()));
        QCOMPARE(after.locators, before.locators);
        break;
    case NoiseBlocks:
        QCOMPARE(m_window->uki()->getCfgLines().size(), 1);
        QCOMPARE(after.locators, QStringList());
        QCOMPARE(after.corrections, QStringList());
        QCOMPARE(after.archive, before.archive);
        break;
    }
    if (!success && run.startsWith("tbRead"))
        QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());
    // The run's thread is gone and the process sleeps: a port left failing would spin a core.
    QTRY_VERIFY_WITH_TIMEOUT(threadCount() <= threadsBefore, 10000);
    QElapsedTimer wall;
    wall.start();
    const qint64 cpuBefore = processCpuMs();
    QTest::qWait(300);
    QVERIFY((processCpuMs() - cpuBefore) * 2 < wall.elapsed());
}

QTEST_MAIN(tst_FaultMatrix)
#include "tst_faultmatrix.moc"
