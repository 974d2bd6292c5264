#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdint>
#include <memory>

class CtCorrections;
class Uki;

// How a guarded write ended, and the popup text that tells it.
struct SafeWriteResult
{
    Q_DECLARE_TR_FUNCTIONS(SafeWriteResult)
public:
    enum Outcome {
        Verified,     // written and read back equal
        NotTaken,     // written, but the device refused a command or holds other values
        BackupFailed, // the block was not read or not saved: nothing was written
        CheckFailed,  // written, but the read-back failed
        Cancelled,    // stopped by the user
    };

    // One written value that the device does not hold.
    struct Mismatch
    {
        QString key;
        QString written;
        QString read;
    };

    Outcome outcome = Verified;
    // The read flag of the block written (Uki::ReadSettings, ReadCorrections,
    // ReadCustomChannels); the engine holds that block as last read.
    uint32_t block = 0;
    // The dated backup folder; empty when none was saved.
    QString backupFolder;
    // Values written and compared.
    int checked = 0;
    QVector<Mismatch> mismatches;
    // The engine's line for a failed run: the refused write command, or why a read failed.
    QString deviceError;
    // Why the backup could not be saved.
    QString fileError;

    // "KEY (записано X, прочитано Y)" per mismatch.
    QStringList mismatchTexts() const;
    // "[[OK]]Записано и проверено: N из N", "[[ERR]]...", "[[WARN]]Операция прервана".
    QString message() const;
};

// A write to the device between two reads: the block the write changes is read together with
// "cfg" and saved in a dated backup folder as per-page files, then written, then read again and
// compared with what was written. Nothing is written unless the backup is on disk. Drives the
// engine given to the constructor, which must outlive it; lives in the engine's thread.
class SafeWrite final : public QObject
{
    Q_OBJECT
public:
    explicit SafeWrite(Uki *uki, QObject *parent = nullptr);

    // The folder in which each backup gets its "<prefix>_yyyy-MM-dd_hh-mm-ss" folder.
    void setBackupRoot(const QString &folder) { m_backupRoot = folder; }
    // The device variant for file names and settings records when the firmware does not
    // name one.
    void setVariant(int variant) { m_variant = variant; }

    // Each returns false, and starts nothing, when the engine or a previous write is busy.
    // Settings: "set_cfg_KEY_VALUE" commands, as the settings records make them.
    bool writeSettings(const QStringList &commands);
    // The modified rows of the table, as the engine writes them; false too when none is.
    bool writeCorrections(std::shared_ptr<CtCorrections> corrections);
    // One channel (1..16), bounds in units.
    bool writeChannel(uint address, uint channel, uint low, uint high, uint rloc);

    bool isRunning() const { return m_step != Idle; }
    // Stops the chain: the engine's run is cancelled and no further step starts.
    void cancel();

signals:
    // Progress texts for the log: the backup file, each value not taken, the verdict.
    void logMessage(QString message);
    void started();
    // The engine has let go of its last run when this is told.
    void finished(const SafeWriteResult &result);

private:
    enum Step { Idle, Backup, Write, ReadBack };
    enum class Kind { Settings, Corrections, Channel };

    // A chain or another run of the engine is under way.
    bool isBusy() const;
    // Starts the chain with the block's backup read; the write's data is in place.
    bool begin(Kind kind);
    void readDone(bool success, uint32_t flags);
    void writeDone(bool success);
    void saveBackup();
    void startWrite();
    void compare();
    void finish(SafeWriteResult::Outcome outcome);
    uint32_t blockFlag() const;

    Uki *m_uki = nullptr;
    QString m_backupRoot;
    int m_variant = 0;
    Step m_step = Idle;
    Kind m_kind = Kind::Settings;
    bool m_cancelled = false;
    QStringList m_commands;
    std::shared_ptr<CtCorrections> m_corrections;
    uint m_channel[5] = {};
    // What was written, key to value, in the device's units.
    QVector<QPair<QString, QString>> m_expected;
    SafeWriteResult m_result;
};

Q_DECLARE_METATYPE(SafeWriteResult)
