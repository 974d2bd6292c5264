// The main window end to end: the real window, offscreen, talking to kiranto-sim, with its
// folders in a scratch installation and its file dialogs answered by the test.

#include "app/application.h"
#include "app/programsettings.h"
#include "models/archivefilterproxy.h"
#include "protocol/safewrite.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "ui/comparedialog.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"

#include "support.h"

using namespace TestSupport;

namespace {

// Runs that must succeed are tried again: on a loaded machine a reply can miss the link's 50 ms
// answer time-out, which fails the run as a silent device would.
constexpr int kAttempts = 3;
const char *const kKeys[] = {"ukps-ks", "ukps-ab", "ukps-ks-2", "uki-kiranto"};
const QString kDeviceButtons = QStringLiteral(
        "tbConnect tbReadConfig tbWriteConfig tbReadArchive tbWriteCorrections");
const QString kSettingsFirst = QStringLiteral(
        "[[Error]]Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)");

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void device_data();
    void device();
    void firstWriteInEnglish();
    void files();

private:
    template<typename T = QWidget>
    T *child(const char *name) const
    {
        return m_window->findChild<T *>(QLatin1String(name));
    }
    // A scratch installation for `variant`, and kiranto-sim started with `arguments` on `state`.
    bool startDevice(const QStringList &arguments, int variant, const QByteArray &state = {});
    void newWindow();
    // Clicks until the engine reports success (or `mustSucceed` is false); m_sent holds the
    // commands the device received in the last attempt. "tbEdit_Connect" accepts the settings
    // dialog with the simulator's port.
    bool run(const char *button, bool write = false, bool mustSucceed = true);
    void click(const char *button) { child<QToolButton>(button)->click(); }
    // Clicks with the file dialogs answering `file`; m_asked counts the questions.
    void click(const char *button, const QString &file)
    {
        m_window->setFileNameAsker([this, file](bool, const QString &, const QString &) {
            ++m_asked;
            return file;
        });
        click(button);
    }
    QStringList rows(const char *view) const { return modelRows(child<QTableView>(view)->model()); }
    // The names among `buttons` of those enabled.
    QString enabled(const QString &buttons) const
    {
        QStringList on;
        for (const QString &name : buttons.split(' '))
            if (child(qPrintable(name))->isEnabled())
                on.append(name);
        return on.join(' ');
    }
    QStringList filterItems() const
    {
        return modelRows(child<QComboBox>("cbArchiveFilter")->model());
    }

    std::unique_ptr<ScratchInstall> m_install;
    std::unique_ptr<Simulator> m_sim;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<MessageCapture> m_log;
    QTranslator m_translator;
    QStringList m_sent;
    QList<QVariant> m_report;
    int m_asked = 0;
};

void tst_MainWindow::initTestCase()
{
    Application::initResources();
    qRegisterMetaType<uint32_t>("uint32_t");
    // After QTest has put in its own handler.
    m_log = std::make_unique<MessageCapture>();
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_sim.reset();
    m_install.reset();
    QCoreApplication::removeTranslator(&m_translator);
}

bool tst_MainWindow::startDevice(const QStringList &arguments, int variant, const QByteArray &state)
{
    m_install = std::make_unique<ScratchInstall>(QString(), variant);
    m_sim = std::make_unique<Simulator>(m_install->path());
    return (state.isEmpty() || writeFile(m_sim->statePath(), state)) && m_sim->start(arguments);
}

void tst_MainWindow::newWindow()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

bool tst_MainWindow::run(const char *button, bool write, bool mustSucceed)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const int before = m_sim ? m_sim->receivedCommands().size() : 0;
        QSignalSpy read(m_window->uki(), &Uki::configReadDone);
        QSignalSpy written(m_window->findChild<SafeWrite *>(), &SafeWrite::finished);
        QSignalSpy &done = write ? written : read;
        if (qstrcmp(button, "tbEdit_Connect") == 0)
            QTimer::singleShot(0, this, [this] {
                auto *dialog = qobject_cast<ConfigDialog *>(QApplication::activeModalWidget());
                dialog->findChild<QComboBox *>("cbComPort")->setEditText(m_sim->link());
                dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
            });
        click(button);
        if (done.isEmpty() && !done.wait(15000))
            return false;
        m_report = done.first();
        if (write)
            m_report = {m_report.at(0).value<SafeWriteResult>().outcome
                        == SafeWriteResult::Verified};
        m_sent = m_sim ? m_sim->receivedCommands().mid(before) : QStringList();
        if (!mustSucceed || m_report.at(0).toBool())
            return true;
    }
    return false;
}

void tst_MainWindow::device_data()
{
    // The simulator's arguments after "--variant" | the variant the window has, as configured and
    // then as identified | the firmware version | the commands of a settings read.
    QTest::addColumn<QString>("row");
    QTest::newRow("ukps-ks") << "ukps-ks|0|3.2.17|get_cfg";
    QTest::newRow("ukps-ab") << "ukps-ab|1|4.1.8|get_cfg";
    QTest::newRow("ukps-ks-2") << "ukps-ks-2|2|5.0.12|get_cfg";
    QTest::newRow("uki-kiranto") << "uki-kiranto|3|9.6.43|get_cfg cfg get_cust corr";
    QTest::newRow("unknown version keeps ukps-ab") << "ukps-ks --firmware 6.1.0|1|6.1.0|get_cfg";
}

// One device of each variant: connect through the dialog, read settings and archive, write;
// then the device goes away.
void tst_MainWindow::device()
{
    QFETCH(QString, row);
    const QStringList field = row.split('|');
    const int variant = field.at(1).toInt();
    const QString version = field.at(2);
    const bool monitor = variant == 3;
    const bool locators = variant >= 2;
    const QString name = DeviceVariant::displayName(variant);

    QVERIFY(startDevice(QStringList{"--archive-size", "7", "--variant"} + field.at(0).split(' '),
                        variant));
    newWindow();
    m_log->clear();
    QVERIFY(run("tbEdit_Connect"));
    QCOMPARE(m_sent, QStringList{"cfg"});
    QCOMPARE(ProgramSettings::instance().variant, variant);
    QCOMPARE(popup(m_window.get()), "[[Ok]]Подключено устройство: " + name);
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(),
             QStringLiteral("<html><head/><body><p align=\"center\"><span "
                            "style=\"font-weight:600;\">%1</span><br>Версия ПО - <span "
                            "style=\"font-weight:600;\">%2</span></p></body></html>")
                     .arg(name, version));
    QCOMPARE(filterItems(), ArchiveFilterProxy::filterItems(variant));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), locators ? 4 : 2);
    QCOMPARE(enabled("tbReadConfig tbWriteConfig"), "tbReadConfig");

    // Settings: the device buttons are off while the run lasts, on again after it.
    connect(m_window->uki(), &Uki::programStart, this, [this] {
        QCOMPARE(enabled(kDeviceButtons), QString());
    });
    QVERIFY(run("tbReadConfig"));
    QCOMPARE(m_sent.join(' '), field.at(3));
    QCOMPARE(enabled(kDeviceButtons + " tbSaveConfigToFile tbSaveArchiveToFile"),
             kDeviceButtons + " tbSaveConfigToFile");
    QCOMPARE(child<QPlainTextEdit>("plainTextUkiConfig")->toPlainText(),
             m_window->uki()->getCfgLines().join('\n'));
    QCOMPARE(child<QLabel>("labelStatus")->text(), "Данные из " + name);
    QVERIFY(m_log->messages().contains(monitor ? QStringLiteral("Читаем конфигурацию УКИ...")
                                               : QStringLiteral("Читаем конфигурацию УКПС...")));
    QCOMPARE(child("groupBox")->isHidden(), !locators);
    QWidget *editor = monitor ? static_cast<QWidget *>(m_window->findChild<UkiConfigEditor *>())
                              : m_window->findChild<UkpsConfigEditor *>();
    QVERIFY(editor->isVisible());
    auto *threshold = editor->findChild<QSpinBox *>(QStringLiteral("sbRisoM3s1"));
    QCOMPARE(threshold->value(), monitor ? 60 : 50);
    QCOMPARE(QJsonDocument::fromJson(readFile(m_install->configFolder() + "/config.json")).object(),
             (QJsonObject{{"connection",
                           QJsonObject{{"port", m_sim->link()}, {"variant", kKeys[variant]}}}}));

    // Archive: one "dump", the events in the table.
    QVERIFY(run("tbReadArchive"));
    QCOMPARE(m_sent, QStringList{"dump"});
    QCOMPARE(rows("tableArchive").size(), 7);

    // Write: the changed field goes out as its own command, and the device keeps it.
    // A failed attempt leaves the form showing what the device holds: each attempt edits anew.
    bool verified = false;
    for (int attempt = 0; attempt < kAttempts && !verified; ++attempt) {
        threshold->setValue(75);
        QVERIFY(run("tbWriteConfig", true, false));
        verified = m_report.at(0).toBool();
    }
    QVERIFY(verified);
    QVERIFY2(m_sent.contains("set_cfg_RisoM3s1_75"), qPrintable(m_sent.join(' ')));

    // CT corrections of a locator device without a monitor: read by their own button.
    if (locators && !monitor) {
        QVERIFY(run("tbReadCorrections"));
        QCOMPARE(m_sent, QStringList{"corr"});
        QCOMPARE(rows("tableCorrections").size(), 64);
    }
    if (monitor) {
        // Statistics of one channel: the message the user sees.
        QSignalSpy stats(m_window->uki(), &Uki::statsReadDone);
        for (int attempt = 0;
             attempt < kAttempts && (stats.isEmpty() || !stats.last().at(0).toBool());
             ++attempt)
            QVERIFY(m_window->uki()->readStats(0, 0, 1) && stats.wait(15000));
        QVERIFY(stats.last().at(0).toBool());
        QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Статистика прочитана!"));
        // Channels belong to a settings file, even with a device's versions list at hand.
        m_asked = 0;
        click("tbLoadChannelsFromFile", m_install->dataFolder() + "/channels.csv");
        QCOMPARE(popup(m_window.get()), kSettingsFirst);
        QCOMPARE(m_asked, 0);
    }

    // The device goes away: a run fails, what identification set stays.
    m_sim->stop();
    QVERIFY(run("tbReadArchive", false, false) && !m_report.at(0).toBool());
    QVERIFY(child("tbSaveArchiveToFile")->isEnabled());
    QCOMPARE(filterItems(), ArchiveFilterProxy::filterItems(variant));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), locators ? 4 : 2);
    // A failed reconnect leaves no settings to save, so no header-only file.
    QVERIFY(run("tbEdit_Connect", false, false) && !m_report.at(0).toBool());
    const QString path = m_install->dataFolder() + "/after-reconnect.csv";
    click("tbSaveConfigToFile", path);
    QVERIFY2(!QFileInfo::exists(path) || readFile(path).contains("RisoM3s1"),
             readFile(path).constData());
}

// A ukps-ks-2 configured as a ukps-ks, with the English interface: a write right after
// connecting sends the device's own ModeDef back; the log stays Russian.
void tst_MainWindow::firstWriteInEnglish()
{
    QVERIFY(Application::installTranslation(&m_translator, QStringLiteral("en_US")));
    QVERIFY(startDevice({"--variant", "ukps-ks-2"},
                        0,
                        R"({"variant": "ukps-ks-2", "settings": {"ModeDef": 3}})"));
    newWindow();
    m_window->uki()->setPortName(m_sim->link());
    m_log->clear();
    QVERIFY(run("tbConnect"));
    QVERIFY(run("tbWriteConfig", true));
    QCOMPARE(m_sent.filter("set_cfg_ModeDef_"), QStringList{"set_cfg_ModeDef_3"});
    QVERIFY(run("tbReadConfig"));
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Configuration loaded"));
    // Whole lines, or their beginnings where a time follows.
    const QString log = '\n' + m_log->messages().join('\n');
    for (const char *line : {"Подключаемся...",
                             "Подключено устройство: УКПС КИРАНТО-КС-2",
                             "Конфигурация успешно загружена: УКПС КИРАНТО-КС-2"})
        QVERIFY2(log.contains('\n' + QString(line)), line);
    QVERIFY(!log.contains(
            QRegularExpression("\n(Port |Device connected|Configuration loaded|Command done)")));
}

// Everything a monitor gives, kept in files and taken back by a window without a device.
void tst_MainWindow::files()
{
    QVERIFY(startDevice({"--variant", "uki-kiranto", "--archive-size", "12"}, 3));
    const QString data = m_install->dataFolder();
    newWindow();
    m_window->uki()->setPortName(m_sim->link());
    QVERIFY(run("tbConnect"));
    QCOMPARE(m_sent, (QStringList{"get_cfg", "cfg"}));
    QVERIFY(run("tbReadConfig"));
    QVERIFY(run("tbReadArchive"));
    const Uki *uki = m_window->uki();

    // Save-all: the archive and the settings with the versions list after them (compared and
    // loaded below).
    click("tbSaveData");
    const QStringList saved = QDir(data).entryList(QDir::Files, QDir::Name);
    QVERIFY(readFile(data + '/' + saved.value(1)).endsWith(uki->cfgLines().join("\r\n").toUtf8()));

    // Per-page files, taken back below: settings as the form shows them.
    auto *threshold = m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1");
    threshold->setValue(77);
    click("tbSaveConfigToFile", data + "/settings");
    click("tbSaveArchiveToFile", data + "/archive.CSV");
    click("tbSaveCorrectionsToFile", data + "/corrections.csv");
    click("tbSaveChannelsToFile", data + "/custom.csv");
    const QStringList archive = rows("tableArchive");
    const QStringList locators = rows("tableLocators");
    const QStringList corrections = rows("tableCorrections");
    const QStringList channels = modelRows(child<QTableWidget>("tableChannels")->model());
    QCOMPARE(archive.size(), 12);

    // A fresh window without a device: the files bring back the variant and every table.
    m_window.reset();
    m_sim.reset();
    m_install->activate(QString(), 0);
    newWindow();
    // The channels need a settings file first; one without a versions list will do.
    QVERIFY(writeFile(
            data + "/bare.csv",
            "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\nAddrUki\t1\r\nRisoM3s1\t60\r\n"));
    click("tbLoadConfigFromFile", data + "/bare.csv");
    m_asked = 0;
    click("tbLoadChannelsFromFile", data + "/custom.csv");
    QCOMPARE(m_asked, 1);
    click("tbLoadConfigFromFile", data + "/settings.csv");
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Файл прочитан"));
    QCOMPARE(ProgramSettings::instance().variant, 3);
    QCOMPARE(m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1")->value(),
             77);

    // The loaded file against the device's save-all file: the changed threshold differs; its
    // value taken from the file goes into the form, marked and counted.
    click("tbCompareConfigWithFile", data + '/' + saved.at(1));
    auto *compare = m_window->findChild<CompareDialog *>();
    QVERIFY(compare && compare->isVisible());
    QCOMPARE(compare->findChild<QLabel *>("labelCounts")->text(),
             QString("Различаются: 2, совпадают: 21, только в редакторе: 0, только в файле: 0"));
    QCOMPARE(modelRows(compare->findChild<QTableView *>("tableComparison")->model())
                     .filter("RisoM3s1"),
             QStringList("Rуст1|RisoM3s1|77|60"));
    QCOMPARE(child<QLabel>("labelConfigChanges")->text(), QString("Изменено: 0"));
    compare->findChild<QPushButton *>("pbTakeValues")->click();
    QCOMPARE(m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1")->value(),
             60);
    QCOMPARE(child<QLabel>("labelConfigChanges")->text(), QString("Изменено: 1"));
    QTRY_VERIFY(!m_window->findChild<CompareDialog *>());
    QCOMPARE(rows("tableLocators"), locators);
    QCOMPARE(child<QLabel>("labelStatus")->text(), "Данные из файла " + data + "/settings.csv");
    click("tbLoadCorrectionsFromFile", data + "/corrections.csv");
    QCOMPARE(rows("tableCorrections"), corrections);
    click("tbLoadChannelsFromFile", data + "/custom.csv");
    QCOMPARE(modelRows(child<QTableWidget>("tableChannels")->model()), channels);

    // A bare dump gives variant 0; the page's archive file sets it from its first line.
    click("tbLoadArchiveFromFile", data + '/' + saved.at(0));
    QCOMPARE(ProgramSettings::instance().variant, 0);
    QCOMPARE(rows("tableArchive"), archive);
    click("tbLoadArchiveFromFile", data + "/archive.CSV");
    QCOMPARE(filterItems(), ArchiveFilterProxy::filterItems(3));
    click("tbSaveArchiveToFile", data + "/archive-again");
    QCOMPARE(readFile(data + "/archive-again.csv"), readFile(data + "/archive.CSV"));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
