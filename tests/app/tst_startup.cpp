#include "app/application.h"
#include "app/programsettings.h"
#include "support.h"

#include <QtTest>

// Start-up of the application: folder layout, translation choice, the program settings in
// config.json.
class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void folders_data();
    void folders();
    void translation();
    void settings_data();
    void settings();
    void variantNames();
};

void tst_Startup::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Marvolet"));
    QCoreApplication::setApplicationName(QStringLiteral("KIRANTO-Link"));
    QStandardPaths::setTestModeEnabled(true);
    Application::initResources();
}

void tst_Startup::folders_data()
{
    QTest::addColumn<QString>("beside");
    QTest::addColumn<bool>("portable");
    QTest::newRow("config folder beside the executable") << "config/" << true;
    QTest::newRow("a file named config") << "config" << false;
    QTest::newRow("Config in other letter case") << "Config/" << false;
}

// Choosing creates nothing; each accessor creates its own folder at first use, again after removal.
void tst_Startup::folders()
{
    QFETCH(QString, beside);
    QFETCH(bool, portable);
    QTemporaryDir exe;
    QVERIFY(beside.endsWith('/') ? QDir(exe.path()).mkdir(beside.chopped(1))
                                 : TestSupport::writeFile(exe.filePath(beside), "x"));
    const Application::Folders folders = Application::chooseFolders(exe.path());
    const QString user = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const QString root = portable ? exe.path() : user;
    const QString config = portable ? root + "/config"
                                    : QStandardPaths::writableLocation(
                                            QStandardPaths::AppConfigLocation);
    QCOMPARE(QStringList({folders.config, folders.log, folders.data}),
             QStringList({config, root + "/logs", root + "/data"}));
    QCOMPARE(QDir(exe.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
    Application::setFolders(folders);
    QCOMPARE(Application::configFilePath("config.json"), config + "/config.json");
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!QFileInfo::exists(folders.log) && !QFileInfo::exists(folders.data));
        QCOMPARE(Application::logFolder(), folders.log);
        QVERIFY(QFileInfo(folders.log).isDir() && !QFileInfo::exists(folders.data));
        QCOMPARE(Application::dataFolder(), folders.data);
        QVERIFY(QFileInfo(folders.data).isDir() && QFileInfo(folders.config).isDir());
        QVERIFY(QDir(folders.log).removeRecursively() && QDir(folders.data).removeRecursively());
    }
    if (!portable)
        QDir(user).removeRecursively();
}

// Only the exact name "ru_RU" counts as Russian; the toolkit's own texts follow the choice.
void tst_Startup::translation()
{
    QStringList seen;
    for (const char *locale : {"ru_RU", "en_US", "ru_UA", "ru", "ru_ru"}) {
        QTranslator translator;
        TestSupport::MessageCapture capture;
        QVERIFY(Application::installTranslation(&translator, locale));
        seen << capture.messages().join(';') + '|'
                        + QCoreApplication::translate("QProgressDialog", "Cancel");
        QVERIFY(QCoreApplication::removeTranslator(&translator));
    }
    const QString english = QStringLiteral("Loading english translation. true|Cancel");
    QCOMPARE(
            seen,
            QStringList(
                    {"Loading russian translation.|Отменить", english, english, english, english}));
}

void tst_Startup::settings_data()
{
    // config.json | variant before | saved by toJson over the same document after fromJson
    QTest::addColumn<QString>("row");
    // clang-format off
    QTest::newRow("port trimmed, ukps-ab") << R"({"connection":{"port":"  ttyUSB0 \t","variant":"ukps-ab"}}|0|{"connection":{"port":"ttyUSB0","variant":"ukps-ab"}})";
    QTest::newRow("no port, key in capitals keeps the variant") << R"({"connection":{"variant":"UKPS-AB"}}|0|{"connection":{"port":"","variant":"ukps-ks"}})";
    QTest::newRow("unknown key keeps the earlier variant, other members stay") << R"({"a":1,"connection":{"baud":9,"port":"COM3","variant":"ukps"}}|3|{"a":1,"connection":{"baud":9,"port":"COM3","variant":"uki-kiranto"}})";
    QTest::newRow("key with blanks, ukps-ks-2 not taken for ukps-ks") << R"({"connection":{"variant":" ukps-ks-2 "}}|0|{"connection":{"port":"","variant":"ukps-ks-2"}})";
    QTest::newRow("connection not an object") << R"({"connection":"ttyS0"}|2|{"connection":{"port":"","variant":"ukps-ks-2"}})";
    QTest::newRow("malformed, variant out of range kept and not written") << R"({"connection": |7|{"connection":{"port":""}})";
    QTest::newRow("variant not a string") << R"({"connection":{"variant":3}}|0|{"connection":{"port":"","variant":"ukps-ks"}})";
    // clang-format on
}

void tst_Startup::settings()
{
    QFETCH(QString, row);
    const QStringList f = row.split('|');
    ProgramSettings settings;
    settings.port = QStringLiteral("stale");
    settings.variant = f[1].toInt();
    QJsonObject object = QJsonDocument::fromJson(f[0].toUtf8()).object();
    settings.fromJson(object);
    settings.toJson(object);
    QCOMPARE(QJsonDocument(object).toJson(QJsonDocument::Compact), f[2].toUtf8());
}

void tst_Startup::variantNames()
{
    // '+' after the name of a variant that has locators.
    QStringList names;
    for (int variant = -1; variant <= 4; ++variant)
        names << ProgramSettings::displayName(variant)
                         + (DeviceVariant::hasLocators(variant) ? "+" : "");
    QCOMPARE(names.join('|'),
             QString("Неизвестное устройство|УКПС КИРАНТО-КС|УКБ КИРАНТО-АБ|УКПС КИРАНТО-КС-2+|"
                     "УКИ КИРАНТО+|Неизвестное устройство"));
}

QTEST_MAIN(tst_Startup)
#include "tst_startup.moc"
