// The main window end to end: the real window, offscreen, talking to kiranto-sim, with its
// folders in a scratch installation and its file dialogs answered by the test.

#include "app/programsettings.h"
#include "models/archivefilterproxy.h"
#include "models/locators.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"

#include "support.h"

using namespace TestSupport;

namespace {

// Runs that must succeed are tried again: on a loaded machine a reply can miss the link's 50 ms
// answer time-out, which fails the run as a silent device would.
constexpr int kAttempts = 3;

QStringList comboItems(const QComboBox *combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items.append(combo->itemText(i));
    return items;
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void styleSheet_data();
    void styleSheet();
    void device_data();
    void device();
    void unknownVersionKeepsVariant();
    void offline();
    void files();

private:
    template<typename T = QWidget>
    T *child(const char *name) const
    {
        return m_window->findChild<T *>(QLatin1String(name));
    }
    void newWindow();
    // Clicks until the engine reports success (or `mustSucceed` is false); m_sent holds the
    // commands the device received in the last attempt.
    bool run(const char *button, bool write = false, bool mustSucceed = true);
    bool connectThroughDialog(bool mustSucceed = true);
    void answerDialogs(const QString &name);
    QStringList rows(const char *view) const { return modelRows(child<QTableView>(view)->model()); }

    std::unique_ptr<ScratchInstall> m_install;
    std::unique_ptr<Simulator> m_sim;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<MessageCapture> m_log;
    QStringList m_sent;
    QList<QVariant> m_report;
};

void tst_MainWindow::initTestCase()
{
    qRegisterMetaType<uint32_t>("uint32_t");
    // After QTest has put in its own handler.
    m_log = std::make_unique<MessageCapture>();
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_sim.reset();
    m_install.reset();
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
        QSignalSpy written(m_window->uki(), &Uki::configWriteDone);
        QSignalSpy &done = write ? written : read;
        child<QToolButton>(button)->click();
        if (done.isEmpty() && !done.wait(15000))
            return false;
        m_report = done.first();
        m_sent = m_sim ? m_sim->receivedCommands().mid(before) : QStringList();
        if (!mustSucceed || m_report.at(0).toBool())
            return true;
    }
    return false;
}

bool tst_MainWindow::connectThroughDialog(bool mustSucceed)
{
    std::function<void()> drive = [&] {
        auto *dialog = qobject_cast<ConfigDialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(10, drive);
            return;
        }
        dialog->findChild<QComboBox *>(QStringLiteral("cbComPort"))->setEditText(m_sim->link());
        dialog->accept();
    };
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        QTimer::singleShot(0, drive);
        if (!run("tbEdit_Connect", false, false))
            return false;
        if (!mustSucceed || m_report.at(0).toBool())
            return true;
    }
    return false;
}

void tst_MainWindow::answerDialogs(const QString &name)
{
    m_window->setFileNameAsker([name](bool, const QString &, const QString &) { return name; });
}

void tst_MainWindow::styleSheet_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("style");
    QTest::newRow("no file: built-in") << QByteArray() << QString();
    QTest::newRow("empty file: none") << QByteArray("") << "";
    QTest::newRow("user file, Latin-1")
            << QByteArray("QLabel { color: red; } /* \xe9 */") << "QLabel { color: red; } /* é */";
}

void tst_MainWindow::styleSheet()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, style);
    m_install = std::make_unique<ScratchInstall>();
    if (!file.isNull())
        QVERIFY(writeFile(m_install->configFolder() + "/style.qss", file));
    if (style.isNull())
        style = QString::fromUtf8(readFile(":/style/default.qss"));
    newWindow();
    QCOMPARE(m_window->styleSheet(), style);
    // A fresh window shows the settings and archive pages only, and nothing to read or save.
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), 2);
    for (const char *name : {"tbSaveData",
                             "tbReadConfig",
                             "tbWriteConfig",
                             "tbSaveConfigToFile",
                             "tbReadArchive",
                             "tbSaveArchiveToFile"})
        QVERIFY2(!child(name)->isEnabled(), name);
    QVERIFY(child("tbLoadArchiveFromFile")->isEnabled());
}

void tst_MainWindow::device_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QStringList>("readCommands");
    QTest::addColumn<QString>("written");

    QTest::newRow("ukps-ks") << "ukps-ks" << 0 << "3.2.17" << QStringList{"get_cfg"}
                             << "set_cfg_RisoM3s1_75";
    QTest::newRow("ukps-ab") << "ukps-ab" << 1 << "4.1.8" << QStringList{"get_cfg"}
                             << "set_cfg_RisoM3s1_75";
    QTest::newRow("ukps-ks-2") << "ukps-ks-2" << 2 << "5.0.12" << QStringList{"get_cfg"}
                               << "set_cfg_RisoM3s1_75";
    QTest::newRow("uki-kiranto") << "uki-kiranto" << 3 << "9.6.43"
                                 << QStringList{"get_cfg", "cfg", "get_cust", "corr"}
                                 << "set_cfg_RisoM3s1_75";
}

// One device of each variant: connect through the dialog, read settings and archive, write.
void tst_MainWindow::device()
{
    QFETCH(QString, key);
    QFETCH(int, variant);
    QFETCH(QString, version);
    QFETCH(QStringList, readCommands);
    QFETCH(QString, written);
    const bool monitor = variant == 3;
    const bool locators = variant >= 2;
    const QString name = DeviceVariant::displayName(variant);

    m_install = std::make_unique<ScratchInstall>(QString(), 0);
    m_sim = std::make_unique<Simulator>(m_install->path());
    QVERIFY(m_sim->start({"--variant", key, "--archive-size", "7"}));
    newWindow();
    m_log->clear();
    QVERIFY(connectThroughDialog());
    QCOMPARE(m_sent, QStringList{"cfg"});
    QCOMPARE(m_window->uki()->ukiVersion(), version);
    QCOMPARE(ProgramSettings::instance().variant, variant);
    QCOMPARE(popup(m_window.get()), "[[Ok]]Подключено устройство: " + name);
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(),
             QStringLiteral("<html><head/><body><p align=\"center\"><span "
                            "style=\"font-weight:600;\">%1</span><br>Версия ПО - <span "
                            "style=\"font-weight:600;\">%2</span></p></body></html>")
                     .arg(name, version));
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")),
             ArchiveFilterProxy::filterItems(variant));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), locators ? 4 : 2);
    for (const QString &line :
         {QStringLiteral("Connecting..."), QStringLiteral("_version__"), "r_version : " + version})
        QVERIFY2(m_log->messages().contains(line), qPrintable(line));
    QVERIFY(child("tbReadConfig")->isEnabled());
    QVERIFY(!child("tbWriteConfig")->isEnabled());
    if (locators)
        QCOMPARE(rows("tableLocators").size(), m_window->uki()->locators()->rowCount());

    // Settings: the device buttons are off while the run lasts, on again after it.
    const char *const deviceButtons[] = {
            "tbConnect", "tbReadConfig", "tbWriteConfig", "tbReadArchive", "tbWriteCorrections"};
    connect(m_window->uki(), &Uki::programStart, this, [&] {
        for (const char *button : deviceButtons)
            QVERIFY2(!child(button)->isEnabled(), button);
    });
    QVERIFY(run("tbReadConfig"));
    QCOMPARE(m_sent, readCommands);
    QCOMPARE(m_report.at(1).toUInt(), monitor ? 27u : 1u);
    for (const char *button : deviceButtons)
        QVERIFY2(child(button)->isEnabled(), button);
    QVERIFY(child("tbSaveConfigToFile")->isEnabled());
    QVERIFY(!child("tbSaveArchiveToFile")->isEnabled());
    QCOMPARE(child<QPlainTextEdit>("plainTextUkiConfig")->toPlainText(),
             m_window->uki()->getCfgLines().join('\n'));
    QCOMPARE(child<QLabel>("labelStatus")->text(), "Данные из " + name);
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Конфигурация успешно загружена"));
    QVERIFY(m_log->messages().contains(monitor ? QStringLiteral("Читаем конфигурацию УКИ...")
                                               : QStringLiteral("Читаем конфигурацию УКПС...")));
    QCOMPARE(child("groupBox")->isHidden(), !locators);
    QWidget *editor = monitor ? static_cast<QWidget *>(m_window->findChild<UkiConfigEditor *>())
                              : m_window->findChild<UkpsConfigEditor *>();
    QVERIFY(editor->isVisible());
    auto *threshold = editor->findChild<QSpinBox *>(QStringLiteral("sbRisoM3s1"));
    QCOMPARE(threshold->value(), monitor ? 60 : 50);
    QCOMPARE(QJsonDocument::fromJson(readFile(m_install->configFolder() + "/config.json")).object(),
             (QJsonObject{{"connection", QJsonObject{{"port", m_sim->link()}, {"variant", key}}}}));

    // Archive: one "dump", the events in the table.
    QVERIFY(run("tbReadArchive"));
    QCOMPARE(m_sent, QStringList{"dump"});
    QCOMPARE(rows("tableArchive").size(), 7);
    QVERIFY(child("tbSaveArchiveToFile")->isEnabled());

    // Write: the changed field goes out as its own command; the next read shows it.
    threshold->setValue(75);
    m_log->clear();
    QVERIFY(run("tbWriteConfig", true));
    QVERIFY2(m_sent.contains(written), qPrintable(m_sent.join(' ')));
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Данные отправлены"));
    QVERIFY(m_log->messages().contains("wr_version : " + version));
    threshold->setValue(10);
    QVERIFY(run("tbReadConfig"));
    QCOMPARE(threshold->value(), 75);

    if (locators) {
        // CT corrections: an edited row goes out as one command, with gain x100 and phase x10
        // as an unsigned 16-bit number.
        // A row counts as sent even when its run fails, so every attempt edits it anew.
        if (!monitor) {
            QVERIFY(run("tbReadCorrections"));
            QCOMPARE(m_sent, QStringList{"corr"});
        }
        QAbstractItemModel *corrections = child<QTableView>("tableCorrections")->model();
        bool sent = false;
        for (int attempt = 0; attempt < kAttempts && !sent; ++attempt) {
            QVERIFY(corrections->setData(corrections->index(0, 2), 1.23 + attempt));
            QVERIFY(corrections->setData(corrections->index(0, 3), -12.5));
            QVERIFY(run("tbWriteCorrections", true, false));
            sent = m_report.at(0).toBool();
            if (sent)
                QCOMPARE(m_sent,
                         QStringList{QStringLiteral("set_corr_%1_%2_%3_%4")
                                             .arg(corrections->index(0, 0).data().toInt())
                                             .arg(corrections->index(0, 1).data().toInt())
                                             .arg(123 + 100 * attempt)
                                             .arg(65536 - 125)});
        }
        QVERIFY(sent);
    }
    if (monitor) {
        // Statistics of one channel: the message the user sees.
        bool read = false;
        for (int attempt = 0; attempt < kAttempts && !read; ++attempt) {
            QSignalSpy done(m_window->uki(), &Uki::statsReadDone);
            QVERIFY(m_window->uki()->readStats(0, 0, 1));
            QVERIFY(done.wait(15000));
            read = done.first().at(0).toBool();
        }
        QVERIFY(read);
        QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Статистика прочитана!"));
    }
}

void tst_MainWindow::unknownVersionKeepsVariant()
{
    m_install = std::make_unique<ScratchInstall>(QString(), 0);
    m_sim = std::make_unique<Simulator>(m_install->path());
    QVERIFY(m_sim->start({"--variant", "ukps-ks", "--firmware", "6.1.0"}));
    // The variant comes from config.json and stays the fallback for an unknown version.
    QVERIFY(writeFile(m_install->configFolder() + "/config.json",
                      R"({"connection": {"port": "COM7", "variant": "ukps-ab"}})"));
    newWindow();
    QCOMPARE(ProgramSettings::instance().port, QStringLiteral("COM7"));
    QVERIFY(connectThroughDialog());
    QCOMPARE(ProgramSettings::instance().variant, 1);
    QVERIFY(child<QLabel>("label_IMS_Ver")->text().contains(DeviceVariant::displayName(1)));
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")), ArchiveFilterProxy::filterItems(1));
}

void tst_MainWindow::offline()
{
    m_install = std::make_unique<ScratchInstall>(QString(), 3);
    m_sim = std::make_unique<Simulator>(m_install->path());
    QVERIFY(m_sim->start({"--variant", "uki-kiranto"}));
    newWindow();
    QVERIFY(connectThroughDialog());
    m_sim->stop();
    QVERIFY(run("tbReadArchive", false, false));
    QCOMPARE(m_report.at(0).toBool(), false);
    QCOMPARE(popup(m_window.get()),
             QStringLiteral("[[Error]]Устройство не подключено: Автономная работа"));
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());
    QVERIFY(child("tbSaveArchiveToFile")->isEnabled());
    // What the identification set stays.
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")), ArchiveFilterProxy::filterItems(3));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), 4);
}

// Everything a monitor gives, kept in files and taken back by a window without a device.
void tst_MainWindow::files()
{
    m_install = std::make_unique<ScratchInstall>(QString(), 3);
    const QString data = m_install->dataFolder();
    QVERIFY(QDir().mkpath(data));
    m_sim = std::make_unique<Simulator>(m_install->path());
    QVERIFY(m_sim->start({"--variant", "uki-kiranto", "--archive-size", "12"}));
    newWindow();
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "saveData"));
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Warning]]Нечего сохранять!"));
    QCOMPARE(QDir(data).entryList(QDir::Files), QStringList());
    ProgramSettings::instance().port = m_sim->link();
    QVERIFY(run("tbConnect"));
    QCOMPARE(m_sent, (QStringList{"get_cfg", "cfg"}));
    QVERIFY(run("tbReadConfig"));
    QVERIFY(run("tbReadArchive"));
    const Uki *uki = m_window->uki();

    // Save-all: two files of this minute, UTF-8, "\r\n" line ends, the versions list after the
    // settings.
    child<QToolButton>("tbSaveData")->click();
    QCOMPARE(popup(m_window.get()),
             QStringLiteral("[[Ok]]Успешно сохранены:\n *Настройки УКПС\n *Архив"));
    const QStringList saved = QDir(data).entryList(QDir::Files, QDir::Name);
    QCOMPARE(saved.size(), 2);
    QVERIFY(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d,\\d\\d-\\d\\d-archive\\.csv$")
                    .match(saved.at(0))
                    .hasMatch());
    QCOMPARE(saved.at(1), QString(saved.at(0)).replace("archive", "config"));
    QCOMPARE(readFile(data + '/' + saved.at(0)), uki->dumpLines().join("\r\n").toUtf8());
    QCOMPARE(readFile(data + '/' + saved.at(1)),
             (uki->getCfgLines().join("\r\n") + "\r\n--------------------\r\n"
              + uki->cfgLines().join("\r\n"))
                     .toUtf8());

    // Per-page files: settings as the form shows them, archive with its variant header.
    auto *threshold = m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1");
    threshold->setValue(77);
    answerDialogs(data + "/settings");
    child<QToolButton>("tbSaveConfigToFile")->click();
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Файл записан"));
    QVERIFY(readFile(data + "/settings.csv").contains("RisoM3s1\t77\r\n"));
    answerDialogs(data + "/archive.CSV");
    child<QToolButton>("tbSaveArchiveToFile")->click();
    QCOMPARE(readFile(data + "/archive.CSV"),
             "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\n"
                     + uki->dumpLines().join("\r\n").toUtf8());
    answerDialogs(data + "/corrections.csv");
    child<QToolButton>("tbSaveCorrectionsToFile")->click();
    // The block as the device sent it, without its closing "OK".
    QCOMPARE(readFile(data + "/corrections.csv"),
             uki->corrLines().mid(0, uki->corrLines().size() - 1).join("\r\n").toUtf8());
    answerDialogs(data + "/custom.csv");
    m_window->findChild<QToolButton *>("tbSaveChannelsToFile")->click();
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Файл записан"));
    const QStringList archive = rows("tableArchive");
    const QStringList locators = rows("tableLocators");
    const QStringList corrections = rows("tableCorrections");
    const QStringList channels = modelRows(
            m_window->findChild<QTableWidget *>("tableChannels")->model());
    QCOMPARE(archive.size(), 12);

    // A fresh window without a device: the files bring back the variant and every table.
    m_window.reset();
    m_sim.reset();
    m_install->activate(QString(), 0);
    newWindow();
    answerDialogs(data + "/custom.csv");
    m_window->findChild<QToolButton *>("tbLoadChannelsFromFile")->click();
    QCOMPARE(popup(m_window.get()),
             QStringLiteral("[[Error]]Сначала необходимо открыть файл конфигурации ИМС "
                            "(...uki-config.csv)"));
    answerDialogs(data + "/missing.csv");
    child<QToolButton>("tbLoadArchiveFromFile")->click();
    QCOMPARE(popup(m_window.get()),
             QStringLiteral("[[Error]]Ошибка чтения файла %1.").arg(data + "/missing.csv"));
    answerDialogs(data + "/settings.csv");
    child<QToolButton>("tbLoadConfigFromFile")->click();
    QCOMPARE(popup(m_window.get()), QStringLiteral("[[Ok]]Файл прочитан"));
    QCOMPARE(ProgramSettings::instance().variant, 3);
    QCOMPARE(m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1")->value(),
             77);
    QCOMPARE(rows("tableLocators"), locators);
    QCOMPARE(child<QLabel>("labelStatus")->text(), "Данные из файла " + data + "/settings.csv");
    answerDialogs(data + "/corrections.csv");
    child<QToolButton>("tbLoadCorrectionsFromFile")->click();
    QCOMPARE(rows("tableCorrections"), corrections);
    answerDialogs(data + "/custom.csv");
    m_window->findChild<QToolButton *>("tbLoadChannelsFromFile")->click();
    QCOMPARE(modelRows(m_window->findChild<QTableWidget *>("tableChannels")->model()), channels);

    // The archive file sets the variant from its first line; a bare dump gives variant 0.
    ProgramSettings::instance().variant = 1;
    answerDialogs(data + "/archive.CSV");
    child<QToolButton>("tbLoadArchiveFromFile")->click();
    QCOMPARE(ProgramSettings::instance().variant, 3);
    QCOMPARE(rows("tableArchive"), archive);
    answerDialogs(data + "/archive-again");
    child<QToolButton>("tbSaveArchiveToFile")->click();
    QCOMPARE(readFile(data + "/archive-again.csv"), readFile(data + "/archive.CSV"));
    answerDialogs(data + '/' + saved.at(0));
    child<QToolButton>("tbLoadArchiveFromFile")->click();
    QCOMPARE(ProgramSettings::instance().variant, 0);
    QCOMPARE(rows("tableArchive"), archive);
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")), ArchiveFilterProxy::filterItems(0));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
