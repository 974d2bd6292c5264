#pragma once

#include "protocol/searchstatistics.h"
#include "protocol/ukiprogram.h"
#include "settings/ukisettings.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <utility>

class CtCorrections;
class CustomChannels;
class Locators;
class QThread;
class SerialTask;

// The protocol engine: turns each request into a program of commands, runs it over a fresh serial
// link in a worker thread, interprets the replies and reports through its signals. One program
// runs at a time. Lives in the GUI thread.
class Uki : public QObject
{
    Q_OBJECT
public:
    explicit Uki(QObject *parent = nullptr);
    ~Uki() override;

    // Read flags of readData(); the commands always go out as get_cfg, cfg, get_cust, corr, dump.
    enum ReadFlag : uint32_t {
        ReadSettings = 1,       // "get_cfg"
        ReadIdentification = 2, // "cfg"
        ReadArchive = 4,        // "dump"
        ReadCustomChannels = 8, // "get_cust"
        ReadCorrections = 16,   // "corr"
    };

    // Reply lines of the latest read of each command, closing "OK" line included.
    const QStringList &getCfgLines() const { return m_getCfgLines; }
    const QStringList &dumpLines() const { return m_dumpLines; }
    const QStringList &cfgLines() const { return m_cfgLines; }
    const QStringList &custLines() const { return m_custLines; }
    const QStringList &corrLines() const { return m_corrLines; }

    std::shared_ptr<CustomChannels> customChannels() const { return m_customChannels; }
    std::shared_ptr<Locators> locators() const { return m_locators; }
    // Models loaded from files for offline work; the next device read replaces them.
    void setCustomChannels(std::shared_ptr<CustomChannels> channels)
    {
        m_customChannels = std::move(channels);
    }
    void setLocators(std::shared_ptr<Locators> locators) { m_locators = std::move(locators); }
    // The insulation monitor's firmware version from the versions list ("9.6.43").
    QString ukiVersion() const { return m_ukiVersion; }

    // The engine's copy of the insulation-monitor settings; its Tcust sets the statistics block count.
    const UkiSettings &settings() const { return m_settings; }
    void setSettings(const UkiSettings &settings) { m_settings = settings; }

    // Statistics read so far; an empty pointer when the key was never read successfully.
    std::shared_ptr<SearchStatistics> statistics(uint address, uint channel, uint level) const
    {
        return m_statistics.find(address, channel, level);
    }
    uint statsAddress() const { return m_statsAddress; }
    uint statsChannel() const { return m_statsChannel; }
    uint statsLevel() const { return m_statsLevel; }

    // The serial port that the next program opens: a device path or a port name.
    QString portName() const { return m_portName; }
    void setPortName(const QString &portName) { m_portName = portName; }

    // True while a program is active or its link is still closing.
    bool isBusy() const { return m_thread || m_program; }
    // True when the program last run was stopped by cancel().
    bool wasCancelled() const { return m_cancelled; }
    // True when the port of the program last run went away during it.
    bool wasDisconnected() const { return m_disconnected; }
    // Why the program last run failed, as the log told it ("Нет ответа на команду get_cfg",
    // "Ошибка при выполнении команды set_cfg_RisoM3s1_77", a port error); empty otherwise.
    QString lastError() const { return m_lastError; }

signals:
    void logMessage(QString message);
    void runTask(SerialTask *task);
    void configReadDone(bool success, uint32_t flags);
    void statsReadDone(bool success, uint address, uint channel, uint level);
    void configWriteDone(bool success);
    void programDone(bool success);
    void programStart();
    // Commands answered so far out of the program's total; (0, total) when a program starts.
    void progress(int answered, int total);
    // The reply of the running command so far (see SerialLink::received).
    void received(qint64 bytes, int lines, qint64 elapsedMs);

public slots:
    bool readData(uint32_t flags);
    bool readStats(uint address, uint channel, uint level);
    bool writeCustomChannel(uint address, uint channel, uint low, uint high, uint rloc);
    bool writeCorrections(std::shared_ptr<CtCorrections> corrections);
    bool writeCommands(QStringList commands);
    // Stops the running program at once, as a failed run: the link closes and the program ends
    // unsuccessfully; nothing that arrives afterwards is taken.
    void cancel();

private slots:
    void threadFinished();
    void linkConnected();
    void linkError(QString err);
    void linkDisconnected();
    void taskDone(SerialTask *task);

private:
    bool startProgram(const std::shared_ptr<UkiProgram> &program);
    void openLink();
    void stopLink();
    void sendCommand(int index);
    void readDataResult();
    void readStatisticsResult();
    QStringList *linesOf(uint32_t flag);

    QThread *m_thread = nullptr;
    QString m_portName;
    uint32_t m_flags = 0;
    std::shared_ptr<UkiProgram> m_program;
    std::shared_ptr<CustomChannels> m_customChannels;
    std::shared_ptr<Locators> m_locators;
    QStringList m_getCfgLines;
    QStringList m_dumpLines;
    QStringList m_cfgLines;
    QStringList m_custLines;
    QStringList m_corrLines;
    UkiSettings m_settings;
    QString m_ukiVersion;
    uint m_statsAddress = 0;
    uint m_statsChannel = 0;
    uint m_statsLevel = 0;
    StatisticsStore m_statistics;
    int m_answered = 0;
    bool m_cancelled = false;
    bool m_disconnected = false;
    QString m_lastError;
    // The task handed to the link and not yet returned; deleted here when the link was stopped
    // while holding it.
    SerialTask *m_pendingTask = nullptr;
};
