#include "application.h"

#include "app/log.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

namespace {

Application::Folders s_folders;

QString created(const QString &path)
{
    QDir().mkpath(path);
    return path;
}

} // namespace

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("KIRANTO-Link"));
    setApplicationVersion(QStringLiteral("1.00"));
    setApplicationDisplayName(QStringLiteral("KIRANTO-Link"));
    setOrganizationName(QStringLiteral("Marvolet"));
    initResources();
    setWindowIcon(QIcon(QStringLiteral(":/icons/kiranto-link.svg")));

    setFolders(chooseFolders(applicationDirPath()));

    Log::install(&Application::logFolder);
    qInfo() << "------- Starting log -------";

    m_translator = new QTranslator(this);
    installTranslation(m_translator, QLocale::system().name());

    // QDebug puts one blank between the pieces: "KIRANTO-Link , version  1.00".
    qInfo().noquote() << applicationName() << QStringLiteral(", version ") << applicationVersion();
}

QString Application::configFolder()
{
    return created(s_folders.config);
}

QString Application::logFolder()
{
    return created(s_folders.log);
}

QString Application::dataFolder()
{
    return created(s_folders.data);
}

QString Application::configFilePath(const QString &name)
{
    return QStringLiteral("%1/%2").arg(configFolder(), name);
}

Application::Folders Application::chooseFolders(const QString &executableFolder)
{
    const QDir exe(executableFolder);
    if (QFileInfo(exe.filePath(QStringLiteral("config"))).isDir()) {
        return {exe.filePath(QStringLiteral("config")),
                exe.filePath(QStringLiteral("logs")),
                exe.filePath(QStringLiteral("data"))};
    }
    const QDir appData(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return {QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation),
            appData.filePath(QStringLiteral("logs")),
            appData.filePath(QStringLiteral("data"))};
}

void Application::setFolders(const Folders &folders)
{
    s_folders = folders;
}

bool Application::installTranslation(QTranslator *translator, const QString &localeName)
{
    bool loaded = false;
    if (localeName == QLatin1String("ru_RU")) {
        qInfo() << "Loading russian translation.";
        loaded = translator->load(QStringLiteral(":/tr/qtbase_ru.qm"));
    } else {
        loaded = translator->load(QStringLiteral(":/tr/translation_en.qm"));
        qInfo() << "Loading english translation." << loaded;
    }
    QCoreApplication::installTranslator(translator);
    return loaded;
}

void Application::initResources()
{
    Q_INIT_RESOURCE(resources);
    Q_INIT_RESOURCE(translations);
}
