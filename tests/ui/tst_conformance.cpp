// The main window against kiranto-sim where a device is needed: log texts in an English
// interface, the settings save after a failed reconnect, the statistics page's channel file
// guard, and the ModeDef of a first ukps-ks-2 read written straight back. Also the benchmark's
// summary line for scripts.

#include "support.h"

#include "app/application.h"
#include "protocol/uki.h"
#include "stats/statgraphwidget.h"
#include "ui/mainwindow.h"

#include <QDialog>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

using namespace TestSupport;

namespace {

// A reply can miss the link's answer time on a busy machine; successful runs get three tries.
constexpr int attempts = 3;
const QString settingsFirst
        = "[[Error]]Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)";

} // namespace

class tst_Conformance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void logTextsStayRussian_data();
    void logTextsStayRussian();
    void settingsSaveAfterFailedReconnect_data();
    void settingsSaveAfterFailedReconnect();
    void channelsNeedSettingsFile_data();
    void channelsNeedSettingsFile();
    void firstReadWritesModeDefBack_data();
    void firstReadWritesModeDefBack();
    void benchArchiveSummaryLine();

private:
    // Starts kiranto-sim as deviceVariant (with ModeDef when >= 0) and a window configured for
    // configVariant on its link.
    bool startDevice(const QString &deviceVariant, const QString &configVariant, int modeDef = -1);
    bool clickUntilRead(const char *button);
    QToolButton *button(const char *name) const
    {
        return m_window->findChild<QToolButton *>(QLatin1String(name));
    }

    std::unique_ptr<ScratchInstall> m_install;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<MainWindow> m_window;
    QTranslator m_translator;
};

void tst_Conformance::initTestCase()
{
    Application::initResources();
    qRegisterMetaType<uint32_t>("uint32_t");
}

void tst_Conformance::cleanup()
{
    m_window.reset();
    m_simulator.reset();
    m_install.reset();
    QCoreApplication::removeTranslator(&m_translator);
}

bool tst_Conformance::startDevice(const QString &deviceVariant,
                                  const QString &configVariant,
                                  int modeDef)
{
    m_install = std::make_unique<ScratchInstall>();
    m_simulator = std::make_unique<Simulator>(m_install->path());
    if (modeDef >= 0) {
        const QJsonObject state{{"variant", deviceVariant},
                                {"settings", QJsonObject{{"ModeDef", modeDef}}}};
        if (!writeFile(m_simulator->statePath(), QJsonDocument(state).toJson()))
            return false;
    }
    if (!m_simulator->start({"--variant", deviceVariant}))
        return false;
    const QJsonObject connection{{"port", m_simulator->link()}, {"variant", configVariant}};
    QDir().mkpath(m_install->configFolder());
    if (!writeFile(m_install->configFolder() + "/config.json",
                   QJsonDocument(QJsonObject{{"connection", connection}}).toJson()))
        return false;
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    return true;
}

bool tst_Conformance::clickUntilRead(const char *name)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        QSignalSpy done(m_window->uki(), &Uki::configReadDone);
        button(name)->click();
        if (!done.wait(15000))
            return false;
        if (done.first().at(0).toBool())
            return true;
    }
    return false;
}

void tst_Conformance::logTextsStayRussian_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("port opened") << "Порт %1: открыт.";
    QTest::newRow("connecting") << "Подключаемся...";
    QTest::newRow("device connected") << "Подключено устройство: УКПС КИРАНТО-КС-2";
    QTest::newRow("reading settings") << "Читаем конфигурацию УКПС...";
    QTest::newRow("settings read") << "Конфигурация успешно загружена: УКПС КИРАНТО-КС-2";
    QTest::newRow("command queued") << "Ставим команду в очередь: get_cfg";
}

void tst_Conformance::logTextsStayRussian()
{
    QFETCH(QString, line);
    QVERIFY(Application::installTranslation(&m_translator, QStringLiteral("en_US")));
    MessageCapture capture;
    QVERIFY(startDevice("ukps-ks-2", "ukps-ks-2"));
    QVERIFY(clickUntilRead("tbConnect"));
    QVERIFY(clickUntilRead("tbReadConfig"));
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Configuration loaded"));
    QVERIFY2(capture.contains(line.arg(m_simulator->link())), qPrintable(line));
    for (const QString &message : capture.messages())
        QVERIFY2(!message.startsWith("Port ") && !message.startsWith("Device connected"),
                 qPrintable(message));
}

void tst_Conformance::settingsSaveAfterFailedReconnect_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("settingsKey");
    QTest::newRow("ukps-ks-2 editor") << "ukps-ks-2"
                                      << "RisoM3s1";
    QTest::newRow("insulation monitor editor") << "uki-kiranto"
                                               << "RisoM3s1";
}

void tst_Conformance::settingsSaveAfterFailedReconnect()
{
    QFETCH(QString, variant);
    QFETCH(QString, settingsKey);
    QVERIFY(startDevice(variant, variant));
    QVERIFY(clickUntilRead("tbConnect"));
    QVERIFY(clickUntilRead("tbReadConfig"));
    m_simulator->stop();

    // The settings dialog accepted as it stands: the device is gone, so the reconnect fails.
    QSignalSpy done(m_window->uki(), &Uki::configReadDone);
    QTimer::singleShot(0, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->accept();
    });
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "editProperties"));
    QVERIFY(done.count() > 0 || done.wait(15000));
    QCOMPARE(done.last().at(0).toBool(), false);

    const QString path = m_install->dataFolder() + "/after-reconnect.csv";
    m_window->setFileNameAsker([path](bool, const QString &, const QString &) { return path; });
    button("tbSaveConfigToFile")->click();
    if (QFileInfo::exists(path))
        QVERIFY2(readFile(path).contains(settingsKey.toUtf8()), readFile(path).constData());
}

void tst_Conformance::channelsNeedSettingsFile_data()
{
    QTest::addColumn<bool>("withDevice");
    QTest::addColumn<bool>("withFile");
    QTest::addColumn<QString>("shown");
    QTest::newRow("device connected, no file") << true << false << settingsFirst;
    QTest::newRow("settings file without versions list")
            << false << true << QStringLiteral("[[Ok]]Файл прочитан");
}

void tst_Conformance::channelsNeedSettingsFile()
{
    QFETCH(bool, withDevice);
    QFETCH(bool, withFile);
    QFETCH(QString, shown);
    if (withDevice) {
        QVERIFY(startDevice("uki-kiranto", "uki-kiranto"));
        QVERIFY(clickUntilRead("tbConnect"));
    } else {
        m_install = std::make_unique<ScratchInstall>();
        m_window = std::make_unique<MainWindow>();
        m_window->show();
    }
    QString name;
    if (withFile) {
        name = m_install->dataFolder() + "/uki-config.csv";
        QVERIFY(writeFile(name,
                          "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\nAddrUki\t1\r\n"
                          "RisoM3s1\t60\r\n"));
    }
    int asked = 0;
    m_window->setFileNameAsker([&asked, name](bool, const QString &, const QString &) {
        ++asked;
        return name;
    });
    if (withFile)
        button("tbLoadConfigFromFile")->click();
    const int askedBefore = asked;
    emit m_window->findChild<StatGraphWidget *>()->loadChannelsFromFile();
    QCOMPARE(popup(m_window.get()), shown);
    QCOMPARE(asked - askedBefore, shown == settingsFirst ? 0 : 1);
}

void tst_Conformance::firstReadWritesModeDefBack_data()
{
    QTest::addColumn<QString>("startedAs");
    QTest::addColumn<int>("modeDef");
    QTest::newRow("started as ukps-ks, ModeDef 1") << "ukps-ks" << 1;
    QTest::newRow("started as ukps-ks, ModeDef 3") << "ukps-ks" << 3;
    QTest::newRow("started as uki-kiranto, ModeDef 2") << "uki-kiranto" << 2;
}

void tst_Conformance::firstReadWritesModeDefBack()
{
    QFETCH(QString, startedAs);
    QFETCH(int, modeDef);
    QVERIFY(startDevice("ukps-ks-2", startedAs, modeDef));
    QVERIFY(clickUntilRead("tbConnect"));
    QSignalSpy written(m_window->uki(), &Uki::configWriteDone);
    button("tbWriteConfig")->click();
    QVERIFY(written.wait(30000));
    QVERIFY(written.first().at(0).toBool());
    const QStringList modeCommands = m_simulator->receivedCommands().filter(
            QRegularExpression("^set_cfg_ModeDef_"));
    QCOMPARE(modeCommands, QStringList{QStringLiteral("set_cfg_ModeDef_%1").arg(modeDef)});
}

void tst_Conformance::benchArchiveSummaryLine()
{
    const QString bench = QFileInfo(binaryPath("KIRANTO_LINK")).absolutePath()
                          + "/../bench/bench_archive";
    if (!QFileInfo::exists(bench))
        QSKIP("bench_archive is not built in this tree");
    QProcess process;
    process.start(bench, {});
    QVERIFY(process.waitForFinished(120000));
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput())
                                      .split('\n', Qt::SkipEmptyParts);
    QVERIFY(!lines.isEmpty());
    QVERIFY2(QRegularExpression("^archive-parse-ratio: \\d+\\.\\d\\d$")
                     .match(lines.last())
                     .hasMatch(),
             qPrintable(lines.last()));
}

QTEST_MAIN(tst_Conformance)
#include "tst_conformance.moc"
