// The main window against a misbehaving line: every fault of kiranto-sim with every kind of
// device run (a line that goes away in the middle of an archive read among them), a port
// another process holds and a port that does not exist. Each run must end with the right message, the device buttons
// back as they were, the data read before kept, and nothing left running.

#include "app/application.h"
#include "app/programsettings.h"
#include "link/seriallink.h"
#include "models/locators.h"
#include "protocol/searchstatistics.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukisettings.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"
#include "ui/popupmessage.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QMutex>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSerialPort>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <memory>

namespace {

// Four times the longest reply of the simulated device (its 60-event archive), and reached by
// a flooding device in under two seconds at 115200 baud: the shorter the flood, the less
// likely a loaded machine stalls the device for 30 ms inside it, which would end the reply.
constexpr qint64 kReplyLimit = 16 * 1024;
// Generous: the longest run here, a flood up to the limit, takes under two seconds.
constexpr int kRunWaitMs = 30000;
constexpr int kAttempts = 3;
// Four runs read the data a fault run must keep: each of them gets more chances.
constexpr int kBaselineAttempts = 5;
// Reply lines of the simulated monitor, the closing "OK" included: 23 settings; header and 60
// events of the archive.
constexpr int kSettingsLines = 24;
constexpr int kArchiveLines = 62;

QMutex g_logMutex;
QStringList g_log;
QtMessageHandler g_previous = nullptr;

// Every message of every thread: the window writes the protocol log through qDebug().
void captureMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    {
        QMutexLocker lock(&g_logMutex);
        g_log.append(message);
    }
    if (type >= QtWarningMsg && !message.contains(QLatin1String("propagateSizeHints")))
        g_previous(type, context, message);
}

QStringList takeLog()
{
    QMutexLocker lock(&g_logMutex);
    QStringList lines;
    lines.swap(g_log);
    return lines;
}

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

enum Kind { Read, Archive, Write, Statistics };

// What the window holds once a run has ended, compared with what it held before.
enum Outcome {
    Kept,          // everything read before is still there
    SettingsCut,   // the settings text ends at the gap; editor values kept
    GarbageBlocks, // every block is the noise: the tables built from them are empty
    ArchiveCut,    // the archive ends at the gap
    ArchiveNoise,  // the archive is the noise: no event in the table
};

// kiranto-sim on its own pseudo-terminal, with its fault rules in a file it re-reads and a
// transcript that tells when it has finished sending.
class Simulator
{
public:
    ~Simulator() { stop(); }

    bool start(const QString &link, const QString &faultFile, const QString &transcript)
    {
        stop();
        m_link = link;
        m_transcript = transcript;
        QFile::remove(m_link);
        QFile::remove(m_transcript);
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty())
            return false;
        m_process.setProgram(program);
        m_process.setArguments({"--link",
                                m_link,
                                "--exit-with-parent",
                                "--variant",
                                "uki-kiranto",
                                "--archive-size",
                                "60",
                                "--log",
                                m_transcript,
                                "--fault-file",
                                faultFile});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(5000))
                return false;
        }
        return m_process.readLine().trimmed() == m_link.toLocal8Bit();
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    bool isRunning() const { return m_process.state() == QProcess::Running; }

    // Waits until every reply begun has been sent in full and nothing has happened for a while:
    // a reply the link gave up on may still be on its way, and would run into the next command.
    bool waitQuiet(int timeoutMs = 5000) const
    {
        QElapsedTimer total;
        total.start();
        QElapsedTimer unchanged;
        unchanged.start();
        QByteArray seen;
        while (isRunning() && total.elapsed() < timeoutMs) {
            QFile file(m_transcript);
            const QByteArray now = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            if (now != seen) {
                seen = now;
                unchanged.restart();
            } else if (unchanged.elapsed() >= 150
                       && seen.count("reply-start") == seen.count("reply-end")) {
                return true;
            }
            QTest::qWait(20);
        }
        return !isRunning();
    }

private:
    QProcess m_process;
    QString m_link;
    QString m_transcript;
};

qint64 processCpuMs()
{
    timespec ts{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task"))
            .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
            .size();
}

// Descriptors of this process open on `device` (a pseudo-terminal's /dev/pts/N).
int openDescriptors(const QString &device)
{
    int count = 0;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QString &fd : fds.entryList(QDir::Files | QDir::System)) {
        const QString target = QFile::symLinkTarget(fds.filePath(fd));
        count += target == device || target == device + QStringLiteral(" (deleted)");
    }
    return count;
}

QStringList modelCells(const QAbstractItemModel *model)
{
    QStringList cells;
    if (!model)
        return cells;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList line;
        for (int column = 0; column < model->columnCount(); ++column)
            line << model->index(row, column).data().toString();
        cells << line.join(QLatin1Char('\t'));
    }
    return cells;
}

QStringList pointsOf(const std::shared_ptr<SearchStatistics> &statistics)
{
    QStringList points;
    if (!statistics)
        return points;
    for (const StatPoint &point : statistics->points)
        points << QStringLiteral("%1 %2 %3").arg(point.value1).arg(point.value2).arg(point.value3);
    return points;
}

// The device buttons, which a run disables and then gives back the state they had.
const char *const kDeviceButtons[] = {"tbConnect",
                                      "tbReadConfig",
                                      "tbWriteConfig",
                                      "tbReadArchive",
                                      "tbReadCorrections",
                                      "tbWriteCorrections"};

// Holds a port open the way the tool does, in a process of its own, until its input closes.
int holdPort(const char *path)
{
    QSerialPort port(QString::fromLocal8Bit(path));
    if (!port.open(QIODevice::ReadWrite)) {
        std::printf("failed: %s\n", qPrintable(port.errorString()));
        return 1;
    }
    std::printf("held\n");
    std::fflush(stdout);
    char buffer[64];
    while (::read(STDIN_FILENO, buffer, sizeof buffer) > 0) {
    }
    return 0;
}

} // namespace

Q_DECLARE_METATYPE(Kind)
Q_DECLARE_METATYPE(Outcome)

class tst_FaultMatrix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void matrix_data();
    void matrix();
    void portCannotBeOpened_data();
    void portCannotBeOpened();

private:
    // What the user has in front of them, to compare before and after a run.
    struct Data
    {
        QStringList editor;
        QStringList locators;
        QStringList archive;
        QStringList corrections;
        QStringList statistics;
        QMap<QString, bool> buttons;
    };

    template<typename T>
    T *child(const char *name) const
    {
        T *widget = m_window->findChild<T *>(QLatin1String(name));
        if (!widget)
            qWarning("no child %s", name);
        return widget;
    }
    QString link() const { return m_dir.path() + QStringLiteral("/ttySIM"); }
    QString faultFile() const { return m_dir.path() + QStringLiteral("/faults"); }
    void setFault(const QByteArray &rule);
    void startSimulator();
    void establishBaseline();
    bool runUntilSuccess(const std::function<bool(QList<QVariant> *)> &run,
                         const std::function<bool()> &complete = {});
    bool clickAndWait(const char *button, bool write, QList<QVariant> *report);
    bool readStats(QList<QVariant> *report);
    bool connectThroughDialog(const QString &port, QList<QVariant> *report);
    Data snapshot() const;
    UkiConfigEditor *editor() const { return m_window->findChild<UkiConfigEditor *>(); }
    QSpinBox *thresholdBox() const
    {
        return editor()->findChild<QSpinBox *>(QStringLiteral("sbRisoM3s1"));
    }
    void verifyPopup(const QString &message);
    void verifyNothingLeftRunning(int threadsBefore, const QString &device = QString());

    QTemporaryDir m_dir;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Simulator> m_simulator;
    // False once a run may have changed the window's data or the device's state.
    bool m_baselineValid = false;
    int m_simulatorStarts = 0;
    bool m_deviceWritten = false;   // a write went through since the device started
    QStringList m_baselineSettings; // get_cfg lines of the baseline read
};

void tst_FaultMatrix::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(!qEnvironmentVariableIsEmpty("KIRANTO_SIM"));
    Application::initResources();
    Application::setFolders({m_dir.path() + QStringLiteral("/config"),
                             m_dir.path() + QStringLiteral("/logs"),
                             m_dir.path() + QStringLiteral("/data")});
    qRegisterMetaType<uint32_t>("uint32_t");
    SerialLink::setReplyLimit(kReplyLimit);
    g_previous = qInstallMessageHandler(captureMessage);
    setFault(QByteArray());
}

// After a failure the device and the window are in no known state: the next test starts afresh.
void tst_FaultMatrix::cleanup()
{
    setFault(QByteArray());
    if (!QTest::currentTestFailed())
        return;
    m_window.reset();
    if (m_simulator)
        m_simulator->stop();
    m_baselineValid = false;
}

void tst_FaultMatrix::cleanupTestCase()
{
    m_window.reset();
    m_simulator.reset();
    qInstallMessageHandler(g_previous);
}

void tst_FaultMatrix::setFault(const QByteArray &rule)
{
    QFile file(faultFile());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    if (!rule.isEmpty())
        file.write(rule + '\n');
}

void tst_FaultMatrix::startSimulator()
{
    if (!m_simulator)
        m_simulator = std::make_unique<Simulator>();
    const QString transcript = m_dir.path()
                               + QStringLiteral("/sim-%1.log").arg(++m_simulatorStarts);
    QVERIFY(m_simulator->start(link(), faultFile(), transcript));
    // A fresh device has its default settings again: what the window shows differs once a write
    // has gone through.
    if (m_deviceWritten)
        m_baselineValid = false;
    m_deviceWritten = false;
}

// Runs that should succeed are tried up to five times: on a busy machine a reply can miss the
// link's 50 ms answer time-out, which fails the run as a silent device would, or the device can
// stall for more than 30 ms inside a reply, which cuts it short. `complete` tells the latter.
bool tst_FaultMatrix::runUntilSuccess(const std::function<bool(QList<QVariant> *)> &run,
                                      const std::function<bool()> &complete)
{
    for (int attempt = 0; attempt < kBaselineAttempts; ++attempt) {
        QList<QVariant> report;
        if (!m_simulator->waitQuiet() || !run(&report))
            return false;
        if (report.at(0).toBool() && (!complete || complete()))
            return true;
    }
    return false;
}

bool tst_FaultMatrix::clickAndWait(const char *button, bool write, QList<QVariant> *report)
{
    QSignalSpy read(m_window->uki(), &Uki::configReadDone);
    QSignalSpy written(m_window->uki(), &Uki::configWriteDone);
    QSignalSpy &done = write ? written : read;
    auto *tool = child<QToolButton>(button);
    if (!tool || !tool->isEnabled())
        return false;
    tool->click();
    if (!done.wait(kRunWaitMs))
        return false;
    *report = done.first();
    return true;
}

bool tst_FaultMatrix::readStats(QList<QVariant> *report)
{
    QSignalSpy done(m_window->uki(), &Uki::statsReadDone);
    if (!m_window->uki()->readStats(0, 0, 0) || !done.wait(kRunWaitMs))
        return false;
    *report = done.first();
    return true;
}

bool tst_FaultMatrix::connectThroughDialog(const QString &port, QList<QVariant> *report)
{
    bool typed = false;
    std::function<void()> drive = [&] {
        auto *dialog = qobject_cast<ConfigDialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(10, drive);
            return;
        }
        dialog->findChild<QComboBox *>(QStringLiteral("cbComPort"))->setEditText(port);
        typed = true;
        dialog->accept();
    };
    QTimer::singleShot(0, drive);
    QSignalSpy done(m_window->uki(), &Uki::configReadDone);
    child<QToolButton>("tbEdit_Connect")->click();
    if (!typed || !done.wait(kRunWaitMs))
        return false;
    *report = done.first();
    return true;
}

// A window that has read everything from a healthy device: identification, settings, custom
// channels, corrections, the archive and one channel's statistics.
void tst_FaultMatrix::establishBaseline()
{
    setFault(QByteArray());
    if (!m_simulator || !m_simulator->isRunning())
        startSimulator();
    if (m_baselineValid)
        return;
    if (!m_window) {
        ProgramSettings::instance() = ProgramSettings();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
    }
    ProgramSettings::instance().port = link();
    using namespace std::placeholders;
    Uki *uki = m_window->uki();
    QVERIFY(runUntilSuccess(std::bind(&tst_FaultMatrix::clickAndWait, this, "tbConnect", false, _1),
                            [uki] { return uki->getCfgLines().size() == kSettingsLines; }));
    QVERIFY(runUntilSuccess(
            std::bind(&tst_FaultMatrix::clickAndWait, this, "tbReadConfig", false, _1), [uki] {
                return uki->getCfgLines().size() == kSettingsLines && uki->locators()->size() == 4
                       && uki->corrLines().last() == QLatin1String("OK")
                       && uki->custLines().last() == QLatin1String("OK");
            }));
    QVERIFY(runUntilSuccess(
            std::bind(&tst_FaultMatrix::clickAndWait, this, "tbReadArchive", false, _1),
            [uki] { return uki->dumpLines().size() == kArchiveLines; }));
    QVERIFY(runUntilSuccess(std::bind(&tst_FaultMatrix::readStats, this, _1)));
    m_baselineSettings = uki->getCfgLines();
    const Data data = snapshot();
    QCOMPARE(data.locators.size(), 4);
    QCOMPARE(data.archive.size(), 60);
    QVERIFY(!data.corrections.isEmpty());
    QCOMPARE(data.statistics.size(), 8);
    m_baselineValid = true;
}

tst_FaultMatrix::Data tst_FaultMatrix::snapshot() const
{
    Data data;
    UkiSettings settings;
    editor()->settings(settings);
    data.editor = settings.toLines();
    data.locators = modelCells(child<QTableView>("tableLocators")->model());
    data.archive = modelCells(child<QTableView>("tableArchive")->model());
    data.corrections = modelCells(child<QTableView>("tableCorrections")->model());
    data.statistics = pointsOf(m_window->uki()->statistics(0, 0, 0));
    for (const char *name : kDeviceButtons)
        data.buttons.insert(QLatin1String(name), child<QWidget>(name)->isEnabled());
    return data;
}

// An empty message: the popup has been taken down.
void tst_FaultMatrix::verifyPopup(const QString &message)
{
    const QLabel *label = m_window->findChild<PopupMessage *>()->label();
    if (message.isEmpty()) {
        QVERIFY(label->isHidden());
        return;
    }
    const PopupMessage::Parsed expected = PopupMessage::parse(message);
    QCOMPARE(label->text(), expected.text);
    QCOMPARE(label->property("class").toString(), expected.className);
    QVERIFY(label->isVisible());
}

// The run's thread and port are gone, and the process sleeps: a port left failing would spin a
// core. `device` is the line the run used (/dev/pts/N).
void tst_FaultMatrix::verifyNothingLeftRunning(int threadsBefore, const QString &device)
{
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), threadsBefore, 5000);
    if (!device.isEmpty())
        QCOMPARE(openDescriptors(device), 0);
    QElapsedTimer wall;
    wall.start();
    const qint64 cpuBefore = processCpuMs();
    QTest::qWait(250);
    const qint64 cpuMs = processCpuMs() - cpuBefore;
    const qint64 wallMs = wall.elapsed();
    QVERIFY2(cpuMs * 2 < wallMs,
             qPrintable(QStringLiteral("CPU %1 ms in %2 ms after the run").arg(cpuMs).arg(wallMs)));
}

void tst_FaultMatrix::matrix_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("popup");
    // Lines of the protocol log, each exactly once; %1 the port, %2 the run's first command.
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<int>("portErrors");
    QTest::addColumn<Outcome>("outcome");

    const QString readFailed = QStringLiteral("[[ERR]]Устройство не подключено: Автономная работа");
    const QString writeFailed = QStringLiteral("[[ERR]]Ошибка записи данных");
    const QString statsFailed = QStringLiteral("[[ERR]]Не удалось прочитать статистику поиска");
    const QString failed[] = {readFailed, readFailed, writeFailed, statsFailed};
    const char *const kinds[] = {"read", "archive", "write", "statistics"};
    const auto row = [&](const char *fault, Kind kind) -> QTestData & {
        return QTest::newRow(qPrintable(QStringLiteral("%1 / %2").arg(fault, kinds[kind])))
               << QByteArray(fault) << kind;
    };

    for (Kind kind : {Read, Archive, Write, Statistics}) {
        row("silence", kind) << false << failed[kind]
                             << QStringList{"Отработали команду: %2, результат: Timeout.*",
                                            "Нет ответа на команду %2"}
                             << 0 << Kept;
        row("reject", kind) << false << failed[kind]
                            << QStringList{"Отработали команду: %2, результат: Success.*",
                                           "Ошибка при выполнении команды %2"}
                            << 0 << Kept;
        // The first byte comes 80 ms after the command: past the 50 ms answer time-out.
        row("slow", kind) << false << failed[kind]
                          << QStringList{"Отработали команду: %2, результат: Timeout.*",
                                         "Нет ответа на команду %2"}
                          << 0 << Kept;
        // Half the line, then the line is gone: one port error ends the run.
        row("hangup", kind) << false << failed[kind] << QStringList{"Порт %1: Ошибка: Ошибка: *"}
                            << 1 << Kept;
        // The reply over and over: the link gives up at the reply limit.
        row("flood", kind) << false << failed[kind]
                           << QStringList{QStringLiteral("Порт %1: Ошибка: Ответ превысил ")
                                          + QString::number(kReplyLimit)
                                          + QStringLiteral(" байт без паузы..")}
                           << 1 << Kept;
    }

    // 60 ms of silence inside the first reply ends it after 30: the reply is cut there, and its
    // rest opens the second reply. Every command is answered, so the read and the write
    // succeed on what they got; the second statistics reply begins with the "OK" of the first,
    // no line of three columns.
    row("gap:get_cfg", Read) << true << QStringLiteral("[[OK]]Конфигурация успешно загружена")
                             << QStringList{"Результаты:"} << 0 << SettingsCut;
    row("gap:set_cfg_AddrUki", Write) << true << QStringLiteral("[[OK]]Данные отправлены")
                                      << QStringList{"Результаты:"} << 0 << Kept;
    // The archive is one command: the rest of it comes when no command waits for it. The
    // reading message is taken down, as after any archive read.
    row("gap:dump", Archive) << true << QString() << QStringList{"Результаты:"} << 0 << ArchiveCut;
    row("gap:srch_stats_0_0_0_0", Statistics)
            << false << statsFailed
            << QStringList{"Результаты:", "bad response items count in \"read statistics\" program"}
            << 0 << Kept;

    // Noise instead of every reply: not empty and not "Unrecognize", so every command counts as
    // answered. The tables built from it drop its one line; a write is taken as sent though the
    // device ignored it; the noise has one tab once trimmed, no statistics line.
    row("garbage", Read) << true << QStringLiteral("[[OK]]Конфигурация успешно загружена")
                         << QStringList{"Результаты:", "_locators_"} << 0 << GarbageBlocks;
    row("garbage", Archive) << true << QString() << QStringList{"Результаты:"} << 0 << ArchiveNoise;
    row("garbage", Write) << true << QStringLiteral("[[OK]]Данные отправлены")
                          << QStringList{"Результаты:"} << 0 << Kept;
    row("garbage", Statistics) << false << statsFailed
                               << QStringList{"Результаты:",
                                              "bad response items count in \"read statistics\" "
                                              "program"}
                               << 0 << Kept;
}

void tst_FaultMatrix::matrix()
{
    QFETCH(QByteArray, fault);
    QFETCH(Kind, kind);
    QFETCH(bool, success);
    QFETCH(QString, popup);
    QFETCH(QStringList, log);
    QFETCH(int, portErrors);
    QFETCH(Outcome, outcome);

    const auto expected = [&](const QString &first) {
        QStringList lines;
        for (const QString &pattern : qAsConst(log)) {
            lines << QString(pattern)
                             .replace(QLatin1String("%1"), link())
                             .replace(QLatin1String("%2"), first);
        }
        return lines;
    };
    const auto asExpected = [&](const QList<QVariant> &report,
                                const QStringList &lines,
                                const QStringList &patterns) {
        if (report.at(0).toBool() != success)
            return false;
        for (const QString &pattern : patterns) {
            if (countMatches(lines, pattern) != 1)
                return false;
        }
        return true;
    };

    // A busy machine can stall the device for more than 30 ms inside a flood, turn a run the
    // fault lets through into a time-out, or a rejection into one: such a run is tried again.
    QList<QVariant> report;
    QStringList lines;
    QStringList patterns;
    Data before;
    int threadsBefore = 0;
    QString device;
    int baselineThreshold = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        establishBaseline();
        if (QTest::currentTestFailed())
            return;
        QVERIFY(m_simulator->waitQuiet());
        baselineThreshold = thresholdBox()->value();
        if (kind == Write)
            thresholdBox()->setValue(baselineThreshold == 75 ? 70 : 75);
        before = snapshot();
        QString first = QStringLiteral("get_cfg");
        if (kind == Write) {
            UkiSettings settings;
            editor()->settings(settings);
            first = settings.writeCommands().first();
        } else if (kind == Statistics) {
            first = QStringLiteral("srch_stats_0_0_0_0");
        } else if (kind == Archive) {
            first = QStringLiteral("dump");
        }
        patterns = expected(first);

        device = QFile::symLinkTarget(link());
        setFault(fault);
        threadsBefore = threadCount();
        takeLog();
        bool ended = false;
        switch (kind) {
        case Read:
            ended = clickAndWait("tbReadConfig", false, &report);
            break;
        case Archive:
            ended = clickAndWait("tbReadArchive", false, &report);
            break;
        case Write:
            ended = clickAndWait("tbWriteConfig", true, &report);
            break;
        case Statistics:
            ended = readStats(&report);
            break;
        }
        lines = takeLog();
        setFault(QByteArray());
        QVERIFY2(ended, "the run did not end");
        // The line is gone, or still repeating a reply to a command it will never see again:
        // the device starts afresh, as after a power cycle.
        if (fault == "hangup" || fault == "flood")
            m_simulator->stop();
        // Whatever got through may have changed the window's data or the device's state: a
        // write changes the device once a command after its first (which sets the same
        // address again) has gone out.
        const bool written = kind == Write
                             && countMatches(lines, QStringLiteral("Отработали команду: *")) > 1;
        if (report.at(0).toBool() || written)
            m_baselineValid = false;
        m_deviceWritten = m_deviceWritten || written;
        if (asExpected(report, lines, patterns))
            break;
        if (kind == Write)
            thresholdBox()->setValue(baselineThreshold);
    }

    QCOMPARE(report.at(0).toBool(), success);
    verifyPopup(popup);

    for (const QString &pattern : qAsConst(patterns))
        QVERIFY2(countMatches(lines, pattern) == 1, qPrintable(pattern + '\n' + lines.join('\n')));
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: открыт.").arg(link())), 1);
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: закрыт.").arg(link())), 1);
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: Ошибка: *").arg(link())), portErrors);

    const Data after = snapshot();
    QCOMPARE(after.buttons, before.buttons);
    QCOMPARE(after.editor, before.editor);
    if (outcome != ArchiveCut && outcome != ArchiveNoise)
        QCOMPARE(after.archive, before.archive);
    switch (outcome) {
    case Kept:
        QCOMPARE(after.locators, before.locators);
        QCOMPARE(after.corrections, before.corrections);
        QCOMPARE(after.statistics, before.statistics);
        break;
    case SettingsCut: {
        // The settings text stops at the gap; what the editor shows is still whole.
        const QStringList settings = m_window->uki()->getCfgLines();
        QVERIFY(!settings.isEmpty());
        QVERIFY(settings.size() < m_baselineSettings.size() - 1);
        QCOMPARE(settings, m_baselineSettings.mid(0, settings.size()));
        QCOMPARE(child<QPlainTextEdit>("plainTextUkiConfig")->toPlainText(), settings.join('\n'));
        // The rest of the settings, ahead of the versions list, is no row of it.
        QCOMPARE(after.locators, before.locators);
        QCOMPARE(after.statistics, before.statistics);
        break;
    }
    case GarbageBlocks: {
        const QStringList noise = m_window->uki()->getCfgLines();
        QCOMPARE(noise.size(), 1);
        QCOMPARE(m_window->uki()->cfgLines(), noise);
        QCOMPARE(m_window->uki()->corrLines(), noise);
        QCOMPARE(child<QPlainTextEdit>("plainTextUkiConfig")->toPlainText(), noise.first());
        QCOMPARE(after.locators, QStringList());
        QCOMPARE(after.corrections, QStringList());
        QCOMPARE(m_window->uki()->ukiVersion(), QStringLiteral("9.6.43"));
        QCOMPARE(after.statistics, before.statistics);
        break;
    }
    case ArchiveCut:
        // The events up to the gap, shown as a whole archive.
        QVERIFY(!after.archive.isEmpty());
        QVERIFY(after.archive.size() < before.archive.size());
        QCOMPARE(after.archive, before.archive.mid(0, after.archive.size()));
        QVERIFY(!m_window->uki()->dumpLines().contains(QStringLiteral("OK")));
        QCOMPARE(after.locators, before.locators);
        break;
    case ArchiveNoise:
        QCOMPARE(m_window->uki()->dumpLines().size(), 1);
        QCOMPARE(after.archive, QStringList());
        QCOMPARE(after.locators, before.locators);
        break;
    }
    if ((kind == Read || kind == Archive) && !success) {
        // The raw view was cleared when the reading began; the failure empties the version
        // label.
        const char *view = kind == Read ? "plainTextUkiConfig" : "plainTextArchive";
        QCOMPARE(child<QPlainTextEdit>(view)->toPlainText(), QString());
        QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());
    }
    if (kind == Archive)
        QVERIFY(child<QWidget>("tbSaveArchiveToFile")->isEnabled());
    verifyNothingLeftRunning(threadsBefore, device);
    if (kind == Write)
        thresholdBox()->setValue(baselineThreshold);
}

void tst_FaultMatrix::portCannotBeOpened_data()
{
    QTest::addColumn<bool>("held");
    QTest::addColumn<QString>("port");

    // Held by a process that opened it as the tool does: the toolkit's lock refuses a second
    // open, whoever asks.
    QTest::newRow("held by another process") << true << QString();
    QTest::newRow("path that does not exist") << false << QStringLiteral("/nonexistent/ttyKIRANTO");
}

void tst_FaultMatrix::portCannotBeOpened()
{
    QFETCH(bool, held);
    QFETCH(QString, port);

    establishBaseline();
    if (QTest::currentTestFailed())
        return;
    if (port.isEmpty())
        port = link();
    QProcess holder;
    if (held) {
        holder.setProgram(QCoreApplication::applicationFilePath());
        holder.setArguments({QStringLiteral("--hold-port"), port});
        holder.start();
        QVERIFY(holder.waitForStarted(5000));
        QVERIFY(holder.waitForReadyRead(5000));
        QCOMPARE(holder.readLine().trimmed(), QByteArray("held"));
    }
    const Data before = snapshot();
    const int threadsBefore = threadCount();
    takeLog();

    QList<QVariant> report;
    QVERIFY(connectThroughDialog(port, &report));
    const QStringList lines = takeLog();
    QCOMPARE(report.at(0).toBool(), false);
    verifyPopup(QStringLiteral("[[ERR]]Устройство не подключено: Автономная работа"));
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());

    // The opening error, once, and never an "open" line.
    const QString opening = QStringLiteral("Порт %1: Ошибка: Ошибка открытия порта %1 : *")
                                    .arg(port);
    QVERIFY2(countMatches(lines, opening) == 1, qPrintable(lines.join('\n')));
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: Ошибка: *").arg(port)), 1);
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: открыт.").arg(port)), 0);
    QCOMPARE(countMatches(lines, QStringLiteral("Порт %1: закрыт.").arg(port)), 1);
    QCOMPARE(countMatches(lines, QStringLiteral("Подключаемся...")), 1);

    const Data after = snapshot();
    QCOMPARE(after.buttons, before.buttons);
    QCOMPARE(after.editor, before.editor);
    QCOMPARE(after.locators, before.locators);
    QCOMPARE(after.archive, before.archive);
    QCOMPARE(after.corrections, before.corrections);
    QCOMPARE(after.statistics, before.statistics);
    verifyNothingLeftRunning(threadsBefore);

    // Once the port is free again, or the right one is chosen, the device answers.
    if (held) {
        holder.closeWriteChannel();
        QVERIFY(holder.waitForFinished(5000));
        QCOMPARE(holder.exitCode(), 0);
    }
    using namespace std::placeholders;
    QVERIFY(runUntilSuccess(std::bind(&tst_FaultMatrix::connectThroughDialog, this, link(), _1)));
    QCOMPARE(ProgramSettings::instance().port, link());
    // The reconnect hid the editors and the archive: read again before the next test.
    m_baselineValid = false;
}

int main(int argc, char *argv[])
{
    if (argc == 3 && qstrcmp(argv[1], "--hold-port") == 0) {
        QCoreApplication app(argc, argv);
        return holdPort(argv[2]);
    }
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_FaultMatrix test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_faultmatrix.moc"
