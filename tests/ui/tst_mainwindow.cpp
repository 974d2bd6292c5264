// The main window end to end: the real window, offscreen, talking to kiranto-sim on a
// pseudo-terminal, with its configuration in a scratch folder.

#include "app/application.h"
#include "app/programsettings.h"
#include "models/archivefilterproxy.h"
#include "models/doublespinboxdelegate.h"
#include "models/locators.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "ui/aboutdialog.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"
#include "ui/popupmessage.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QGroupBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QProgressBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <memory>

namespace {

QStringList g_log;
QtMessageHandler g_previous = nullptr;

void captureMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    g_log.append(message);
    if (type >= QtWarningMsg && !message.contains(QLatin1String("propagateSizeHints")))
        g_previous(type, context, message);
}

// kiranto-sim on its own pseudo-terminal, stopped when the object goes.
class Simulator
{
public:
    ~Simulator() { stop(); }

    bool start(const QString &folder, const QStringList &arguments)
    {
        m_link = folder + QStringLiteral("/ttySIM");
        QFile::remove(m_link);
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty())
            return false;
        m_process.setProgram(program);
        m_process.setArguments(QStringList{"--link", m_link, "--exit-with-parent"} + arguments);
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

    QString link() const { return m_link; }

private:
    QProcess m_process;
    QString m_link;
};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

QStringList comboItems(const QComboBox *combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items.append(combo->itemText(i));
    return items;
}

QStringList tabTitles(const QTabWidget *tabs)
{
    QStringList titles;
    for (int i = 0; i < tabs->count(); ++i)
        titles.append(tabs->tabText(i));
    return titles;
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void initialState();
    void styleSheet();
    void loadConfig_data();
    void loadConfig();
    void saveConfigWritesOneObject();
    void saveConfigFailureIsLogged();

    void connectAndReadSettings_data();
    void connectAndReadSettings();
    void unknownVersionKeepsConfiguredVariant();
    void silentDeviceWorksOffline();
    void readArchive();
    void readArchiveWithoutDevice();
    void writeSettings_data();
    void writeSettings();
    void correctionsArrive();
    void buttonsAndProgressDuringRun();
    void connectAndReadInOneRun();
    void readCorrectionsOfUkps2();
    void anotherDeviceTakesTheLocatorPagesAway();
    void statisticsMessages();
    void aboutDialog();

private:
    template<typename T>
    T *child(const char *name) const
    {
        T *widget = m_window->findChild<T *>(QLatin1String(name));
        if (!widget)
            qWarning("no child %s", name);
        return widget;
    }
    QString popupText() const { return m_window->findChild<PopupMessage *>()->label()->text(); }
    QString configPath() const { return m_dir.path() + QStringLiteral("/config/config.json"); }
    QString logged(const QString &start) const;
    bool connectThroughDialog(const QString &link, bool mustSucceed = true);
    bool clickUntilSuccess(const char *button,
                           bool write = false,
                           const std::function<void()> &whileRunning = {});
    bool clickAndWaitForRead(const char *button) { return clickUntilSuccess(button); }
    void startWindow(const QStringList &simulatorArguments);

    QTemporaryDir m_dir;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Simulator> m_simulator;
    QList<QVariant> m_report; // arguments of the engine's last report
};

void tst_MainWindow::initTestCase()
{
    QVERIFY(m_dir.isValid());
    Application::initResources();
    Application::setFolders({m_dir.path() + QStringLiteral("/config"),
                             m_dir.path() + QStringLiteral("/logs"),
                             m_dir.path() + QStringLiteral("/data")});
    qRegisterMetaType<uint32_t>("uint32_t");
    g_previous = qInstallMessageHandler(captureMessage);
}

void tst_MainWindow::init()
{
    g_log.clear();
    ProgramSettings::instance() = ProgramSettings();
    QFile::remove(configPath());
    QFile::remove(m_dir.path() + QStringLiteral("/config/style.qss"));
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_simulator.reset();
}

QString tst_MainWindow::logged(const QString &start) const
{
    for (const QString &line : qAsConst(g_log)) {
        if (line.startsWith(start))
            return line;
    }
    return QString();
}

// Runs that should succeed are tried up to three times: on a busy machine a reply can miss the
// link's 50 ms answer time-out, which fails the run as a silent device would.
constexpr int attempts = 3;

bool tst_MainWindow::connectThroughDialog(const QString &link, bool mustSucceed)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        bool typed = false;
        std::function<void()> drive = [&] {
            auto *dialog = qobject_cast<ConfigDialog *>(QApplication::activeModalWidget());
            if (!dialog) {
                QTimer::singleShot(10, drive);
                return;
            }
            auto *port = dialog->findChild<QComboBox *>(QStringLiteral("cbComPort"));
            port->setEditText(link);
            typed = true;
            dialog->accept();
        };
        QTimer::singleShot(0, drive);
        QSignalSpy done(m_window->uki(), &Uki::configReadDone);
        child<QToolButton>("tbEdit_Connect")->click();
        if (!typed || !done.wait(15000))
            return false;
        m_report = done.first();
        if (!mustSucceed || m_report.at(0).toBool())
            return true;
    }
    return false;
}

bool tst_MainWindow::clickUntilSuccess(const char *button,
                                       bool write,
                                       const std::function<void()> &whileRunning)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        QSignalSpy read(m_window->uki(), &Uki::configReadDone);
        QSignalSpy written(m_window->uki(), &Uki::configWriteDone);
        QSignalSpy &done = write ? written : read;
        child<QToolButton>(button)->click();
        if (whileRunning)
            whileRunning();
        if (!done.wait(15000))
            return false;
        m_report = done.first();
        if (m_report.at(0).toBool())
            return true;
    }
    return false;
}

void tst_MainWindow::startWindow(const QStringList &simulatorArguments)
{
    m_simulator = std::make_unique<Simulator>();
    QVERIFY(m_simulator->start(m_dir.path(), simulatorArguments));
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void tst_MainWindow::form()
{
    MainWindow window;
    const auto *tabs = window.findChild<QTabWidget *>(QStringLiteral("ukiDataPages"));
    QVERIFY(tabs);
    QCOMPARE(tabTitles(tabs), (QStringList{"Настройки", "Архив"}));
    // The two removed pages still belong to the form.
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("pageCorrections")));
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("pageSearchStatistics")));

    struct Expected
    {
        const char *name;
        const char *text;
        const char *toolTip;
    };
    const Expected buttons[] = {
            {"tbEdit_Connect", "Подключить", "Выбор порта для подлючения"},
            {"tbAbout", nullptr, "О программе"},
            {"tbConnect", "Прочитать всё. (F5)", "Прочитать настройки и архив из УКПС (F5)"},
            {"tbSaveData", "Сохранить всё (F2)", "Сохранить настройки и архив в файлы csv..."},
            {"tbOptions", nullptr, "Настройки программы"},
            {"tbConfigViewAsForm", "Редактор", "В виде формы для редактирования"},
            {"tbConfigViewAsDump", "Дамп", "В текстовом виде"},
            {"tbArchivesViewAsTable", "Таблица", "В виде таблицы"},
            {"tbArchivesViewAsDump", "Дамп", "В исходном виде"},
            {"tbCorrectionsViewAsTable", "Таблица", "В виде таблицы"},
            {"tbCorrectionsViewAsDump", "Дамп", "В исходном виде"},
            {"tbReadConfig", nullptr, "Прочитать настройки"},
            {"tbWriteConfig", nullptr, "Записать настройки"},
            {"tbLoadConfigFromFile", nullptr, "Прочитать настройки из файла..."},
            {"tbSaveConfigToFile", nullptr, "Сохранить настройки в файл..."},
            {"tbReadArchive", nullptr, "Прочитать архив"},
            {"tbLoadArchiveFromFile", nullptr, "Загрузить архив из файла..."},
            {"tbSaveArchiveToFile", nullptr, "Сохранить архив в файл..."},
            {"tbWriteCorrections", nullptr, "Записать коррекции ТТ в УКИ"},
            {"tbLoadCorrectionsFromFile", nullptr, "Загрузить коррекции ТТ из файла..."},
            {"tbSaveCorrectionsToFile", nullptr, "Сохранить коррекции ТТ в файл..."},
    };
    for (const Expected &expected : buttons) {
        auto *button = window.findChild<QToolButton *>(QLatin1String(expected.name));
        QVERIFY2(button, expected.name);
        if (expected.text)
            QCOMPARE(button->text(), QString::fromUtf8(expected.text));
        QCOMPARE(button->toolTip(), QString::fromUtf8(expected.toolTip));
        QVERIFY2(!button->icon().isNull(), expected.name);
    }
    QCOMPARE(window.findChild<QToolButton *>(QStringLiteral("tbConnect"))->shortcut(),
             QKeySequence(Qt::Key_F5));
    QCOMPARE(window.findChild<QToolButton *>(QStringLiteral("tbSaveData"))->shortcut(),
             QKeySequence(Qt::Key_F2));

    const QPair<const char *, const char *> actions[] = {
            {"actionExit", "Выход"},
            {"actionAbout", "О программе"},
            {"actionLoadConfigFromFile", "Загрузить конфигурацию..."},
            {"actionEditProperties", "Настройки..."},
            {"actionSetSerial", "Задать серийный номер датчика..."},
            {"actionSetDepth", "Задать глубину..."},
            {"actionViewFullscreen", "Во весь экран"},
    };
    for (const auto &action : actions) {
        auto *found = window.findChild<QAction *>(QLatin1String(action.first));
        QVERIFY2(found, action.first);
        QCOMPARE(found->text(), QString::fromUtf8(action.second));
    }
    QVERIFY(window.findChild<QAction *>(QStringLiteral("action")));
    QVERIFY(window.findChild<QAction *>(QStringLiteral("action_2")));

    for (const char *name : {"label_6", "label_8", "label_10"})
        QCOMPARE(window.findChild<QLabel *>(QLatin1String(name))->text(), QStringLiteral("Вид:"));
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("label_9"))->text(),
             QStringLiteral("Фильтр:"));
    QCOMPARE(window.findChild<QGroupBox *>(QStringLiteral("groupBox"))->title(),
             QStringLiteral("Конфигурация ИМС"));

    // View buttons: one of each pair is down at a time.
    auto *form = window.findChild<QToolButton *>(QStringLiteral("tbCorrectionsViewAsTable"));
    auto *dump = window.findChild<QToolButton *>(QStringLiteral("tbCorrectionsViewAsDump"));
    QVERIFY(form->isChecked());
    dump->click();
    QVERIFY(dump->isChecked());
    QVERIFY(!form->isChecked());
    QCOMPARE(window.findChild<QStackedWidget *>(QStringLiteral("stackedWidgetCorrections"))
                     ->currentWidget()
                     ->objectName(),
             QStringLiteral("pageCorrectionsDump"));
}

void tst_MainWindow::initialState()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(child<QToolBar>("toolBar")->isHidden());
    QVERIFY(child<QWidget>("menuMainBar")->isHidden());
    QVERIFY(!child<QToolBar>("toolBar_2")->isHidden());
    for (const char *name : {"label_6",
                             "label_8",
                             "tbConfigViewAsForm",
                             "tbConfigViewAsDump",
                             "tbArchivesViewAsTable",
                             "tbArchivesViewAsDump",
                             "groupBox"})
        QVERIFY2(child<QWidget>(name)->isHidden(), name);
    for (const char *name : {"tbSaveData",
                             "tbReadConfig",
                             "tbWriteConfig",
                             "tbSaveConfigToFile",
                             "tbReadArchive",
                             "tbSaveArchiveToFile"})
        QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
    for (const char *name : {"tbEdit_Connect",
                             "tbAbout",
                             "tbConnect",
                             "tbLoadConfigFromFile",
                             "tbLoadArchiveFromFile",
                             "tbWriteCorrections",
                             "tbLoadCorrectionsFromFile"})
        QVERIFY2(child<QWidget>(name)->isEnabled(), name);
    QCOMPARE(child<QComboBox>("cbArchiveFilter")->count(), 0);
    QCOMPARE(child<QStackedWidget>("pagesUkiConfig")->currentIndex(), 0);
    QVERIFY(child<QProgressBar>("progressProgram")->isHidden());
    QVERIFY(m_window->uki());
    QVERIFY(!QFile::exists(configPath()));
}

void tst_MainWindow::styleSheet()
{
    QFile builtIn(QStringLiteral(":/style/default.qss"));
    QVERIFY(builtIn.open(QIODevice::ReadOnly));
    const QString defaultStyle = QString::fromUtf8(builtIn.readAll());
    QVERIFY(!defaultStyle.isEmpty());
    const QString stylePath = m_dir.path() + QStringLiteral("/config/style.qss");

    {
        MainWindow window;
        QCOMPARE(window.styleSheet(), defaultStyle);
    }
    writeFile(stylePath, QByteArray());
    {
        MainWindow window;
        QVERIFY(window.styleSheet().isEmpty());
    }
    // A user file replaces the built-in one; its bytes are taken as Latin-1.
    writeFile(stylePath, "QToolBar { background: red; } /* \xe9 */");
    {
        MainWindow window;
        QCOMPARE(window.styleSheet(), QStringLiteral("QToolBar { background: red; } /* é */"));
    }
}

void tst_MainWindow::loadConfig_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("variantBefore");
    QTest::addColumn<QString>("port");
    QTest::addColumn<int>("variant");

    QTest::newRow("padded port, ukps-ab")
            << QByteArray(R"({"connection": {"port": "  /dev/ttyUSB0 ", "variant": "ukps-ab"}})")
            << 0 << "/dev/ttyUSB0" << 1;
    QTest::newRow("no port, variant in capitals keeps the default")
            << QByteArray(R"({"connection": {"variant": "UKI-KIRANTO"}})") << 0 << "" << 0;
    QTest::newRow("unknown variant keeps what the record held")
            << QByteArray(R"({"connection": {"port": "COM3", "variant": "ukps"}})") << 2 << "COM3"
            << 2;
    QTest::newRow("uki-kiranto") << QByteArray(R"({"connection": {"variant": "uki-kiranto"}})") << 0
                                 << "" << 3;
    QTest::newRow("malformed") << QByteArray("{\"connection\": ") << 0 << "" << 0;
    QTest::newRow("missing file") << QByteArray() << 0 << "" << 0;
}

void tst_MainWindow::loadConfig()
{
    QFETCH(QByteArray, content);
    QFETCH(int, variantBefore);
    QFETCH(QString, port);
    QFETCH(int, variant);

    if (!content.isNull())
        writeFile(configPath(), content);
    ProgramSettings::instance().variant = variantBefore;
    MainWindow window;
    QCOMPARE(ProgramSettings::instance().port, port);
    QCOMPARE(ProgramSettings::instance().variant, variant);
    QCOMPARE(readAll(configPath()), content.isNull() ? QByteArray() : content);
}

void tst_MainWindow::saveConfigWritesOneObject()
{
    writeFile(configPath(),
              R"({"connection": {"port": "COM1", "variant": "ukps-ks", "baud": 9600}, "x": 1})");
    MainWindow window;
    ProgramSettings::instance().port = QStringLiteral("/dev/ttyS4");
    ProgramSettings::instance().variant = DeviceVariant::UkpsKs2;
    window.saveConfig();

    const QByteArray saved = readAll(configPath());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(saved, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    const QJsonObject expected{
            {"connection", QJsonObject{{"port", "/dev/ttyS4"}, {"variant", "ukps-ks-2"}}}};
    QCOMPARE(document.object(), expected);
    QCOMPARE(saved, QJsonDocument(expected).toJson(QJsonDocument::Indented));
}

void tst_MainWindow::saveConfigFailureIsLogged()
{
    MainWindow window;
    QFile::remove(configPath());
    QVERIFY(QDir().mkpath(configPath())); // a folder where the file should go
    window.saveConfig();
    const QString expected = QStringLiteral("MainWindow::saveConfig() - ошибка записи в файл %1.")
                                     .arg(configPath());
    QVERIFY2(g_log.contains(expected), qPrintable(g_log.join('\n')));
    QVERIFY(QDir().rmdir(configPath()));
}

void tst_MainWindow::connectAndReadSettings_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("monitor");

    QTest::newRow("ukps-ks") << "ukps-ks" << 0 << "3.2.17" << false;
    QTest::newRow("ukps-ab") << "ukps-ab" << 1 << "" << false;
    QTest::newRow("ukps-ks-2") << "ukps-ks-2" << 2 << "5.0.12" << false;
    QTest::newRow("uki-kiranto") << "uki-kiranto" << 3 << "9.6.43" << true;
}

void tst_MainWindow::connectAndReadSettings()
{
    QFETCH(QString, key);
    QFETCH(int, variant);
    QFETCH(QString, version);
    QFETCH(bool, monitor);

    startWindow({"--variant", key});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    if (version.isEmpty())
        version = m_window->uki()->ukiVersion();
    const QString name = DeviceVariant::displayName(variant);
    const bool locators = DeviceVariant::hasLocators(variant);

    // Identification.
    QCOMPARE(m_window->uki()->ukiVersion(), version);
    QCOMPARE(ProgramSettings::instance().variant, variant);
    QCOMPARE(ProgramSettings::instance().port, m_simulator->link());
    QCOMPARE(popupText(), QStringLiteral("Подключено устройство: %1").arg(name));
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(),
             QStringLiteral("<html><head/><body><p align=\"center\"><span "
                            "style=\"font-weight:600;\">%1</span><br>Версия ПО - <span "
                            "style=\"font-weight:600;\">%2</span></p></body></html>")
                     .arg(name, version));
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")),
             ArchiveFilterProxy::filterItems(variant));
    const QStringList tabs = locators ? QStringList{"Настройки",
                                                    "Архив",
                                                    "Коррекция ТТ",
                                                    "Настройка ИК"}
                                      : QStringList{"Настройки", "Архив"};
    QCOMPARE(tabTitles(child<QTabWidget>("ukiDataPages")), tabs);
    QVERIFY(child<QWidget>("groupBox")->isHidden());
    QVERIFY(child<QWidget>("tbReadConfig")->isEnabled());
    QVERIFY(child<QWidget>("tbReadArchive")->isEnabled());
    QVERIFY(!child<QWidget>("tbWriteConfig")->isEnabled());
    QVERIFY(!child<QWidget>("tbSaveConfigToFile")->isEnabled());
    QCOMPARE(child<QTableView>("tableLocators")->model() != nullptr, locators);
    if (locators) {
        QCOMPARE(child<QTableView>("tableLocators")->model(),
                 static_cast<QAbstractItemModel *>(m_window->uki()->locators().get()));
        QVERIFY(g_log.contains(
                QStringLiteral("locators->size(): %1").arg(m_window->uki()->locators()->size())));
    }
    QVERIFY(g_log.contains(QStringLiteral("Connecting...")));
    QVERIFY(g_log.contains(QStringLiteral("Подключаемся...")));
    QVERIFY(g_log.contains(QStringLiteral("_version__")));
    QCOMPARE(logged(QStringLiteral("r_version : ")), QStringLiteral("r_version : ") + version);
    QCOMPARE(logged(QStringLiteral("Подключено устройство: ")),
             QStringLiteral("Подключено устройство: ") + name);
    // Identification alone does not write the configuration.
    QVERIFY(!QFile::exists(configPath()));

    // Settings.
    g_log.clear();
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QCOMPARE(logged(QStringLiteral("kod_versionRes : ")),
             QStringLiteral("kod_versionRes : %1").arg(version.section('.', 0, 0)));
    QVERIFY(g_log.contains(monitor ? QStringLiteral("Читаем конфигурацию УКИ...")
                                   : QStringLiteral("Читаем конфигурацию УКПС...")));
    const QString text = child<QPlainTextEdit>("plainTextUkiConfig")->toPlainText();
    QCOMPARE(text, m_window->uki()->getCfgLines().join('\n'));
    QVERIFY(text.contains(monitor ? QStringLiteral("RisoM3s1\t60")
                                  : QStringLiteral("RisoM3s1\t50")));
    QCOMPARE(child<QLabel>("labelStatus")->text(), QStringLiteral("Данные из %1").arg(name));
    QCOMPARE(popupText(), QStringLiteral("Конфигурация успешно загружена"));
    QVERIFY(g_log.contains(QStringLiteral("Конфигурация успешно загружена: %1").arg(name)));
    QCOMPARE(child<QWidget>("groupBox")->isHidden(), !locators);
    for (const char *button :
         {"tbReadConfig", "tbWriteConfig", "tbSaveConfigToFile", "tbReadArchive"})
        QVERIFY2(child<QWidget>(button)->isEnabled(), button);
    QVERIFY(!child<QWidget>("tbSaveArchiveToFile")->isEnabled());
    auto *ukiEditor = m_window->findChild<UkiConfigEditor *>();
    auto *ukpsEditor = m_window->findChild<UkpsConfigEditor *>();
    QCOMPARE(ukiEditor->isHidden(), !monitor);
    QCOMPARE(ukpsEditor->isHidden(), monitor);
    QWidget *editor = monitor ? static_cast<QWidget *>(ukiEditor) : ukpsEditor;
    QCOMPARE(editor->findChild<QSpinBox *>(QStringLiteral("sbRisoM3s1"))->value(),
             monitor ? 60 : 50);
    if (monitor) {
        QCOMPARE(m_window->uki()->settings().value(UkiSettings::RisoM3s1), 60);
        QVERIFY(!m_window->uki()->corrLines().isEmpty());
        QVERIFY(!m_window->uki()->custLines().isEmpty());
    } else {
        QVERIFY(m_window->uki()->corrLines().isEmpty());
    }

    // The configuration now holds the port and the detected variant.
    const QJsonObject saved = QJsonDocument::fromJson(readAll(configPath())).object();
    QCOMPARE(saved,
             (QJsonObject{{"connection",
                           QJsonObject{{"port", m_simulator->link()}, {"variant", key}}}}));
}

void tst_MainWindow::unknownVersionKeepsConfiguredVariant()
{
    startWindow({"--variant", "ukps-ks", "--firmware", "6.1.0"});
    ProgramSettings::instance().variant = DeviceVariant::UkpsAb;
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QCOMPARE(ProgramSettings::instance().variant, int(DeviceVariant::UkpsAb));
    const QString name = DeviceVariant::displayName(DeviceVariant::UkpsAb);
    QVERIFY(child<QLabel>("label_IMS_Ver")->text().contains(name));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QCOMPARE(child<QLabel>("labelStatus")->text(), QStringLiteral("Данные из %1").arg(name));
    QCOMPARE(QJsonDocument::fromJson(readAll(configPath()))
                     .object()["connection"]
                     .toObject()["variant"]
                     .toString(),
             QStringLiteral("ukps-ab"));
}

void tst_MainWindow::silentDeviceWorksOffline()
{
    const QByteArray before = R"({"connection": {"port": "COM7", "variant": "ukps-ab"}})";
    writeFile(configPath(), before);
    startWindow({"--fault", "silence"});
    QCOMPARE(ProgramSettings::instance().port, QStringLiteral("COM7"));

    QVERIFY(connectThroughDialog(m_simulator->link(), false));
    QTRY_COMPARE_WITH_TIMEOUT(
            popupText(), QStringLiteral("Устройство не подключено: Автономная работа"), 15000);
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());
    QCOMPARE(tabTitles(child<QTabWidget>("ukiDataPages")), (QStringList{"Настройки", "Архив"}));
    QVERIFY(!child<QWidget>("tbReadConfig")->isEnabled());
    QVERIFY(!child<QWidget>("tbWriteConfig")->isEnabled());
    QVERIFY(child<QWidget>("tbConnect")->isEnabled());
    // The choice stays in memory only: config.json is as it was.
    QCOMPARE(ProgramSettings::instance().port, m_simulator->link());
    QCOMPARE(readAll(configPath()), before);
}

void tst_MainWindow::readArchive()
{
    startWindow({"--variant", "uki-kiranto", "--archive-size", "37"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QVERIFY(clickAndWaitForRead("tbReadArchive"));
    // No message of its own when done: the "reading" message is taken down.
    QCOMPARE(popupText(), QStringLiteral("Читаем архив..."));
    QVERIFY(m_window->findChild<PopupMessage *>()->label()->isHidden());
    const QAbstractItemModel *model = child<QTableView>("tableArchive")->model();
    QCOMPARE(model->rowCount(), 37);
    QCOMPARE(child<QPlainTextEdit>("plainTextArchive")->toPlainText(),
             m_window->uki()->dumpLines().join('\n'));
    QVERIFY(child<QWidget>("tbSaveArchiveToFile")->isEnabled());
    QVERIFY(!child<QWidget>("pageArchivesTable")->isHidden());

    // The filter follows the combo box: "Контроль" keeps the resistance records only.
    auto *filter = child<QComboBox>("cbArchiveFilter");
    filter->setCurrentIndex(1);
    QVERIFY(model->rowCount() < 37);
    filter->setCurrentIndex(0);
    QCOMPARE(model->rowCount(), 37);
}

void tst_MainWindow::readArchiveWithoutDevice()
{
    startWindow({"--variant", "uki-kiranto"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    m_simulator->stop();
    QSignalSpy done(m_window->uki(), &Uki::configReadDone);
    child<QToolButton>("tbReadArchive")->click();
    QVERIFY(done.wait(15000));
    QCOMPARE(done.first().at(0).toBool(), false);
    QCOMPARE(popupText(), QStringLiteral("Устройство не подключено: Автономная работа"));
    QVERIFY(child<QWidget>("tbSaveArchiveToFile")->isEnabled());
    // A failed read leaves the identification alone except for the version label.
    QCOMPARE(child<QLabel>("label_IMS_Ver")->text(), QString());
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")),
             ArchiveFilterProxy::filterItems(DeviceVariant::UkiKiranto));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), 4);
}

void tst_MainWindow::writeSettings_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("monitor");

    QTest::newRow("uki-kiranto") << "uki-kiranto"
                                 << "9.6.43" << true;
    QTest::newRow("ukps-ks") << "ukps-ks"
                             << "3.2.17" << false;
}

void tst_MainWindow::writeSettings()
{
    QFETCH(QString, key);
    QFETCH(QString, version);
    QFETCH(bool, monitor);

    startWindow({"--variant", key});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QWidget *editor = monitor ? static_cast<QWidget *>(m_window->findChild<UkiConfigEditor *>())
                              : m_window->findChild<UkpsConfigEditor *>();
    auto *threshold = editor->findChild<QSpinBox *>(QStringLiteral("sbRisoM3s1"));
    QVERIFY(threshold->value() != 75);
    threshold->setValue(75);

    g_log.clear();
    QVERIFY(clickUntilSuccess("tbWriteConfig", true));
    QCOMPARE(popupText(), QStringLiteral("Данные отправлены"));
    QCOMPARE(logged(QStringLiteral("wr_version : ")), QStringLiteral("wr_version : ") + version);
    QCOMPARE(logged(QStringLiteral("wr_versionRes : ")),
             QStringLiteral("wr_versionRes : ") + version.section('.', 0, 0));
    if (monitor)
        QCOMPARE(m_window->uki()->settings().value(UkiSettings::RisoM3s1), 75);

    // The device's next get_cfg carries the new value, and the editor shows it.
    threshold->setValue(10);
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QVERIFY(m_window->uki()->getCfgLines().contains(QStringLiteral("RisoM3s1\t75")));
    QCOMPARE(threshold->value(), 75);
}

void tst_MainWindow::correctionsArrive()
{
    startWindow({"--variant", "uki-kiranto"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    auto *table = child<QTableView>("tableCorrections");
    QVERIFY(table->model());
    QCOMPARE(table->model()->rowCount(),
             m_window->uki()->corrLines().size() - 2); // header and "OK"
    QVERIFY(qobject_cast<DoubleSpinBoxDelegate *>(table->itemDelegateForColumn(2)));
    QVERIFY(qobject_cast<DoubleSpinBoxDelegate *>(table->itemDelegateForColumn(3)));
    QCOMPARE(child<QPlainTextEdit>("plainTextCorrections")->toPlainText(),
             m_window->uki()->corrLines().join('\n'));

    // An unchanged table starts an empty program, which the device cannot confirm.
    QSignalSpy written(m_window->uki(), &Uki::configWriteDone);
    child<QToolButton>("tbWriteCorrections")->click();
    QVERIFY(written.wait(15000));
    QCOMPARE(popupText(), QStringLiteral("Ошибка записи данных"));

    // An edited row goes out; a row is marked as sent even when the run fails, so each attempt
    // edits it anew.
    double gain = 0;
    bool sent = false;
    for (int attempt = 0; attempt < 3 && !sent; ++attempt) {
        gain = 1.23 + attempt / 100.0;
        QAbstractItemModel *model = table->model();
        QVERIFY(model->setData(model->index(0, 2), gain));
        QVERIFY(model->setData(model->index(0, 3), -12.5));
        QSignalSpy again(m_window->uki(), &Uki::configWriteDone);
        child<QToolButton>("tbWriteCorrections")->click();
        QVERIFY(again.wait(15000));
        sent = again.first().at(0).toBool();
    }
    QVERIFY(sent);
    QCOMPARE(popupText(), QStringLiteral("Данные отправлены"));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QCOMPARE(table->model()->index(0, 2).data().toDouble(), gain);
    QCOMPARE(table->model()->index(0, 3).data().toDouble(), -12.5);
}

void tst_MainWindow::buttonsAndProgressDuringRun()
{
    startWindow({"--variant", "uki-kiranto"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));

    const char *const deviceButtons[] = {
            "tbConnect", "tbReadConfig", "tbWriteConfig", "tbReadArchive", "tbWriteCorrections"};
    auto *progress = child<QProgressBar>("progressProgram");
    QVector<QPair<int, int>> seen;
    connect(progress, &QProgressBar::valueChanged, this, [&](int value) {
        seen.append({value, progress->maximum()});
        QVERIFY(progress->isVisible());
    });

    QVERIFY(clickUntilSuccess("tbReadConfig", false, [&] {
        seen.clear();
        for (const char *name : deviceButtons)
            QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
        // The disabled buttons cannot start a second request while the first runs.
        child<QToolButton>("tbReadArchive")->click();
        QCOMPARE(popupText(), QStringLiteral("Читаем конфигурацию УКИ..."));
    }));
    QCOMPARE(m_report.at(1).toUInt(), 27u);
    for (const char *name : deviceButtons)
        QVERIFY2(child<QWidget>(name)->isEnabled(), name);
    QVERIFY(progress->isHidden());
    // get_cfg, cfg, get_cust, corr: four commands counted one by one.
    QVERIFY(seen.size() >= 4);
    QCOMPARE(seen.last(), qMakePair(4, 4));
}

void tst_MainWindow::connectAndReadInOneRun()
{
    startWindow({"--variant", "uki-kiranto"});
    ProgramSettings::instance().port = m_simulator->link();
    // The button sits on the hidden tool row; its F5 only works while the row is shown.
    QVERIFY(clickUntilSuccess("tbConnect", false, [this] {
        QCOMPARE(popupText(), QStringLiteral("Читаем данные..."));
        QVERIFY(g_log.contains(QStringLiteral("Подключаемся...")));
    }));
    QCOMPARE(m_report.at(1).toUInt(), 3u);
    QCOMPARE(ProgramSettings::instance().variant, int(DeviceVariant::UkiKiranto));
    QCOMPARE(popupText(), QStringLiteral("Конфигурация успешно загружена"));
    QVERIFY(!m_window->findChild<UkiConfigEditor *>()->isHidden());
    QVERIFY(!child<QWidget>("groupBox")->isHidden());
    QVERIFY(child<QWidget>("tbWriteConfig")->isEnabled());
}

void tst_MainWindow::readCorrectionsOfUkps2()
{
    startWindow({"--variant", "ukps-ks-2"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    // Version 5 reads its settings alone; the corrections have their own button.
    QVERIFY(clickAndWaitForRead("tbReadConfig"));
    QVERIFY(m_window->uki()->corrLines().isEmpty());
    QCOMPARE(child<QTableView>("tableCorrections")->model(), nullptr);

    QVERIFY(clickUntilSuccess("tbReadCorrections", false, [this] {
        QCOMPARE(popupText(), QStringLiteral("Читаем коррекции ТТ..."));
    }));
    QCOMPARE(m_report.at(1).toUInt(), 16u);
    QVERIFY(child<QTableView>("tableCorrections")->model()->rowCount() > 0);
    QVERIFY(m_window->findChild<PopupMessage *>()->label()->isHidden());
}

void tst_MainWindow::anotherDeviceTakesTheLocatorPagesAway()
{
    startWindow({"--variant", "uki-kiranto"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), 4);

    m_simulator->stop();
    QVERIFY(m_simulator->start(m_dir.path(), {"--variant", "ukps-ab"}));
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QCOMPARE(ProgramSettings::instance().variant, int(DeviceVariant::UkpsAb));
    QCOMPARE(tabTitles(child<QTabWidget>("ukiDataPages")), (QStringList{"Настройки", "Архив"}));
    QCOMPARE(comboItems(child<QComboBox>("cbArchiveFilter")),
             ArchiveFilterProxy::filterItems(DeviceVariant::UkpsAb));

    m_simulator->stop();
    QVERIFY(m_simulator->start(m_dir.path(), {"--variant", "ukps-ks-2"}));
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QCOMPARE(tabTitles(child<QTabWidget>("ukiDataPages")),
             (QStringList{"Настройки", "Архив", "Коррекция ТТ", "Настройка ИК"}));
}

void tst_MainWindow::statisticsMessages()
{
    startWindow({"--variant", "uki-kiranto"});
    QVERIFY(connectThroughDialog(m_simulator->link()));
    QVERIFY(clickAndWaitForRead("tbReadConfig"));

    bool read = false;
    for (int attempt = 0; attempt < attempts && !read; ++attempt) {
        QSignalSpy done(m_window->uki(), &Uki::statsReadDone);
        QVERIFY(m_window->uki()->readStats(0, 0, 1));
        QVERIFY(done.wait(15000));
        read = done.first().at(0).toBool();
    }
    QVERIFY(read);
    QCOMPARE(popupText(), QStringLiteral("Статистика прочитана!"));

    m_simulator->stop();
    QSignalSpy failed(m_window->uki(), &Uki::statsReadDone);
    QVERIFY(m_window->uki()->readStats(0, 1, 1));
    QVERIFY(failed.wait(15000));
    QCOMPARE(failed.first().at(0).toBool(), false);
    QCOMPARE(popupText(), QStringLiteral("Не удалось прочитать статистику поиска"));
}

void tst_MainWindow::aboutDialog()
{
    MainWindow window;
    bool seen = false;
    QTimer::singleShot(0, &window, [&seen] {
        auto *dialog = qobject_cast<AboutDialog *>(QApplication::activeModalWidget());
        seen = dialog != nullptr;
        if (dialog)
            dialog->reject();
    });
    window.findChild<QToolButton *>(QStringLiteral("tbAbout"))->click();
    QVERIFY(seen);
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
