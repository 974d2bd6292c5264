#include "app/application.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

namespace {

QStringList captured;

void capture(QtMsgType, const QMessageLogContext &, const QString &message)
{
    captured << message;
}

} // namespace

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void layout_data();
    void layout();
    void foldersCreatedAtFirstUse();
    void translation_data();
    void translation();
    void builtInResources_data();
    void builtInResources();
};

void tst_Application::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Marvolet"));
    QCoreApplication::setApplicationName(QStringLiteral("KIRANTO-Link"));
    QStandardPaths::setTestModeEnabled(true);
    Application::initResources();
}

void tst_Application::layout_data()
{
    QTest::addColumn<QString>("beside");
    QTest::addColumn<bool>("portable");
    QTest::newRow("config folder beside the executable") << "config/" << true;
    QTest::newRow("nothing beside the executable") << "" << false;
    QTest::newRow("a file named config is not a folder") << "config" << false;
    QTest::newRow("Config in other letter case") << "Config/" << false;
}

void tst_Application::layout()
{
    QFETCH(QString, beside);
    QFETCH(bool, portable);

    QTemporaryDir exe;
    QVERIFY(exe.isValid());
    const QDir dir(exe.path());
    if (beside.endsWith(QLatin1Char('/'))) {
        QVERIFY(dir.mkdir(beside.chopped(1)));
    } else if (!beside.isEmpty()) {
        QFile file(dir.filePath(beside));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QStringList before = dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);

    const Application::Folders folders = Application::chooseFolders(exe.path());
    if (portable) {
        QCOMPARE(folders.config, exe.path() + QStringLiteral("/config"));
        QCOMPARE(folders.log, exe.path() + QStringLiteral("/logs"));
        QCOMPARE(folders.data, exe.path() + QStringLiteral("/data"));
    } else {
        const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
        const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QVERIFY(config.endsWith(QStringLiteral("/Marvolet/KIRANTO-Link")));
        QVERIFY(data.endsWith(QStringLiteral("/Marvolet/KIRANTO-Link")));
        QCOMPARE(folders.config, config);
        QCOMPARE(folders.log, data + QStringLiteral("/logs"));
        QCOMPARE(folders.data, data + QStringLiteral("/data"));
    }
    // Choosing creates nothing.
    QCOMPARE(dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    QVERIFY(!QFileInfo::exists(folders.log));
    QVERIFY(!QFileInfo::exists(folders.data));
}

void tst_Application::foldersCreatedAtFirstUse()
{
    QTemporaryDir root;
    QVERIFY(root.isValid());
    const Application::Folders folders{root.filePath(QStringLiteral("exe/config")),
                                       root.filePath(QStringLiteral("exe/logs")),
                                       root.filePath(QStringLiteral("user/share/data"))};
    Application::setFolders(folders);
    QVERIFY(!QFileInfo::exists(root.filePath(QStringLiteral("exe"))));
    QVERIFY(!QFileInfo::exists(root.filePath(QStringLiteral("user"))));

    QCOMPARE(Application::logFolder(), folders.log);
    QVERIFY(QFileInfo(folders.log).isDir());
    QVERIFY(!QFileInfo::exists(folders.config));
    QVERIFY(!QFileInfo::exists(folders.data));

    QCOMPARE(Application::configFilePath(QStringLiteral("config.json")),
             folders.config + QStringLiteral("/config.json"));
    QVERIFY(QFileInfo(folders.config).isDir());

    QCOMPARE(Application::dataFolder(), folders.data);
    QVERIFY(QFileInfo(folders.data).isDir());

    // A folder removed while the program runs comes back at the next call.
    QVERIFY(QDir(folders.log).removeRecursively());
    QCOMPARE(Application::logFolder(), folders.log);
    QVERIFY(QFileInfo(folders.log).isDir());
    QCOMPARE(Application::configFolder(), folders.config);
}

void tst_Application::translation_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("cancel");

    QTest::newRow("ru_RU") << "ru_RU"
                           << "Loading russian translation."
                           << "Отменить";
    QTest::newRow("en_US") << "en_US"
                           << "Loading english translation. true"
                           << "Cancel";
    QTest::newRow("ru_UA") << "ru_UA"
                           << "Loading english translation. true"
                           << "Cancel";
    QTest::newRow("bare ru") << "ru"
                             << "Loading english translation. true"
                             << "Cancel";
    QTest::newRow("ru_ru in small letters") << "ru_ru"
                                            << "Loading english translation. true"
                                            << "Cancel";
    QTest::newRow("C") << "C"
                       << "Loading english translation. true"
                       << "Cancel";
}

void tst_Application::translation()
{
    QFETCH(QString, locale);
    QFETCH(QString, entry);
    QFETCH(QString, cancel);

    QTranslator translator;
    captured.clear();
    const QtMessageHandler testHandler = qInstallMessageHandler(capture);
    const bool loaded = Application::installTranslation(&translator, locale);
    qInstallMessageHandler(testHandler);

    QVERIFY(loaded);
    QCOMPARE(captured, QStringList{entry});
    // Installed: Qt's own dialog texts follow the translation.
    QCOMPARE(QCoreApplication::translate("QProgressDialog", "Cancel"), cancel);
    QVERIFY(QCoreApplication::removeTranslator(&translator));
}

void tst_Application::builtInResources_data()
{
    QTest::addColumn<QString>("path");
    const char *const paths[] = {
            ":/icons/graph_down.svg",   ":/icons/sheet.svg",
            ":/icons/upload.svg",       ":/icons/opened_folder.svg",
            ":/icons/save.svg",         ":/icons/refresh.svg",
            ":/icons/checkmark.svg",    ":/icons/connect.svg",
            ":/icons/info.svg",         ":/icons/download.svg",
            ":/icons/edit.svg",         ":/icons/text.svg",
            ":/icons/table.svg",        ":/icons/settings.svg",
            ":/icons/kiranto-link.svg", ":/logo.png",
            ":/style/default.qss",      ":/tr/qtbase_ru.qm",
            ":/tr/translation_en.qm",
    };
    for (const char *path : paths)
        QTest::newRow(path) << QString::fromLatin1(path);
}

void tst_Application::builtInResources()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
    QVERIFY(file.size() > 0);
    if (path.endsWith(QLatin1String(".svg"))) {
        QSvgRenderer icon(path);
        QVERIFY(icon.isValid());
        QCOMPARE(icon.viewBox(), QRect(0, 0, 24, 24));
    } else if (path.endsWith(QLatin1String(".png"))) {
        QCOMPARE(QImage(path).size(), QSize(200, 80));
    }
}

QTEST_MAIN(tst_Application)
#include "tst_application.moc"
