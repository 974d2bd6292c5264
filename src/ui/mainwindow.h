#pragma once

#include "files/csvfiles.h"
#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"

#include <QMainWindow>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

struct CsvMessage;
struct SafeWriteResult;
class ArchiveData;
class ArchiveFilterProxy;
class CtCorrections;
class Locators;
class PopupMessage;
class QProgressBar;
class SafeWrite;
class StatGraphWidget;
class Uki;
class UkiConfigEditor;
class UkpsConfigEditor;

namespace Ui {
class MainWindow;
}

// The program's only window: pages for the device settings, archive, CT corrections and
// fault-search statistics, and the workflows that talk to the device through the engine.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // config.json in the configuration folder: {"connection": {"port", "variant"}}.
    void loadConfig();
    void saveConfig();

    // The one protocol engine of the process, owned by the window.
    Uki *uki() const { return m_uki; }

    // Asks for the name of a file to save (save true) or to open; empty when cancelled.
    using FileNameAsker = std::function<QString(
            bool save, const QString &title, const QString &defaultName)>;
    // Replaces the platform's file dialogs, for tests; an empty asker restores them.
    void setFileNameAsker(FileNameAsker asker) { m_fileNameAsker = std::move(asker); }

signals:
    void setButtonsEnabled(bool enabled);

public slots:
    void logMessage(QString message);
    void configReadDone(bool success, uint32_t flags);
    void statsReadDone(bool success, uint address, uint channel, uint level);

private slots:
    void editProperties();
    void connectAndRead();
    void readConfig();
    void readArchive();
    void readCorrections();
    void writeConfig();
    void writeCorrections();
    void showAbout();
    void showProgress(int answered, int total);
    void writeVerified(const SafeWriteResult &result);

    // File workflows
    void saveData();
    void saveConfigToFile();
    void loadConfigFromFile();
    void saveArchiveToFile();
    void loadArchiveFromFile();
    void saveCorrectionsToFile();
    void loadCorrectionsFromFile();
    void saveChannelsToFile();
    void loadChannelsFromFile();
    void compareConfigWithFile();
    void compareCorrectionsWithFile();
    void deviceDataRead(bool success, uint32_t flags);

private:
    // style.qss of the configuration folder (Latin-1) if it can be read, else the built-in one.
    static QString readStyleSheet();
    void createEngine();
    // The device buttons while a run or a guarded write goes on.
    void runStarted();
    void runEnded();
    // Where the next guarded write keeps its backup, and for which variant.
    void prepareWrite();
    void createPages();
    void connectButtons();
    void setInitialState();

    void reconnect();
    // The first number of the device's version text: 3, 4, 5 UKPS family, 8 or 9 the monitor.
    uint deviceVersion() const;
    static bool isMonitorVersion(uint version) { return version == 8 || version == 9; }

    void identificationRead();
    // Shows that the engine's run was stopped by the user or lost its port, if it was; true then.
    // What the window showed before the run stays.
    bool reportInterrupted();
    void settingsRead();
    // Shared with the file workflows: the lines are a reply block as the device sends it, header
    // included.
    void showArchive(const QStringList &lines);
    void showCorrections(const QStringList &lines);
    void fillArchiveFilter(int variant);
    void applyVariant();
    void showLocatorPages(bool show);

    QString askFileName(bool save, const QString &title, const QString &defaultName);
    bool openFileLines(const QString &title,
                       CsvFiles::Kind kind,
                       QString &name,
                       QStringList &lines);
    void showMessage(const CsvMessage &message);
    // The settings as the visible editor shows them now, as settings lines.
    QStringList editedSettingsLines() const;
    // The visible editor's label of a settings key; empty without one.
    QString settingsLabel(const QString &key) const;
    // "Изменено: N" for the visible editor; hidden while no editor is shown.
    void showChangedCount();

    Ui::MainWindow *ui = nullptr;
    PopupMessage *m_popup = nullptr;
    Uki *m_uki = nullptr;
    // Every write of the window and the statistics page goes through it.
    SafeWrite *m_safeWrite = nullptr;
    UkpsConfigEditor *m_ukpsConfigEditor = nullptr;
    UkiConfigEditor *m_ukiConfigEditor = nullptr;
    StatGraphWidget *m_statGraphWidget = nullptr;
    QProgressBar *m_progress = nullptr;
    ArchiveData *m_archive = nullptr;
    ArchiveFilterProxy *m_archiveFilter = nullptr;
    std::shared_ptr<CtCorrections> m_corrections;
    std::shared_ptr<Locators> m_locators;
    UkiSettings m_ukiSettings;
    UkpsSettings m_ukpsSettings;
    FileNameAsker m_fileNameAsker;
    // The versions list of the settings file loaded last; used instead of the engine's until the
    // next identification read from a device.
    QStringList m_fileVersionLines;
    bool m_settingsFromFile = false;
    // A settings file has been loaded during this run; the statistics page's channels need one.
    bool m_settingsFileOpened = false;
};
