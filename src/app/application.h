#pragma once

#include <QApplication>
#include <QString>

class QTranslator;

// The program's application object: identity, folders, log and translation.
class Application : public QApplication
{
    Q_OBJECT
public:
    // Where the program keeps its configuration, its daily logs and the user's data files.
    struct Folders
    {
        QString config;
        QString log;
        QString data;
    };

    // Names the program, fixes the folders, installs the log and the translation.
    explicit Application(int &argc, char **argv);

    // Each returns the folder's path, first creating it (with its parents) when it is missing.
    static QString configFolder();
    static QString logFolder();
    static QString dataFolder();
    // "<config folder>/<name>".
    static QString configFilePath(const QString &name);

    // A "config" folder beside the executable selects the portable layout (config, logs and
    // data beside the executable); otherwise the per-user standard locations are used.
    // Creates nothing.
    static Folders chooseFolders(const QString &executableFolder);
    // Fixes the paths that the folder accessors return.
    static void setFolders(const Folders &folders);

    // Loads the Qt texts for "ru_RU" and the English translation for any other locale name,
    // logs the choice and installs the translator whether or not loading succeeded.
    // Returns the result of loading.
    static bool installTranslation(QTranslator *translator, const QString &localeName);

    // Registers the compiled-in icons, logo, style sheet and translations; the start-up does it,
    // code that runs without an Application (tests) calls it itself.
    static void initResources();

private:
    QTranslator *m_translator = nullptr;
};
