#pragma once

#include "devicetables.h"

#include <QByteArray>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>

namespace Sim {

// The device behind the line: its tables, its settings (committed and pending copies) and the
// answer to every command. Knows nothing of timing; the line decides when bytes go out.
class SimDevice
{
public:
    SimDevice(Variant variant, int archiveSize, const QByteArray &firmware);

    // Restores the committed settings, custom channels and corrections from a state file
    // written by an earlier run. A missing file is not an error; false (with a message) when
    // the file exists but is not a state of this variant.
    bool loadState(const QString &path, QString *error);
    // Every later change is written to this file.
    void setStatePath(const QString &path) { m_statePath = path; }

    // The complete reply to one command, "\r\n" line ends, "OK\r\n" last;
    // "Unrecognize\r\n" for a command the device refuses.
    QByteArray reply(const QByteArray &command);

    Variant variant() const { return m_variant; }

private:
    struct CustomChannel
    {
        bool on = false;
        int rLoc = 0;
        int lower = 0;
        int upper = 0;
    };
    struct Correction
    {
        int gain = 100;
        int phase = 0;
    };
    using ChannelKey = QPair<int, int>; // address, channel 1..16

    QByteArray versionsList() const;
    QByteArray settingsText() const;
    QByteArray customText() const;
    QByteArray correctionsText() const;
    QByteArray statistics(const QByteArray &command) const;
    QByteArray setSetting(const QByteArray &command);
    QByteArray setCustom(const QByteArray &command);
    QByteArray setCorrection(const QByteArray &command);
    bool hasAddress(int address) const;
    void buildArchive(int size);
    void saveState() const;

    Variant m_variant;
    QVector<UnitDef> m_units;
    QVector<QByteArray> m_keys;
    QVector<int32_t> m_committed;
    QVector<int32_t> m_pending;
    QMap<ChannelKey, CustomChannel> m_custom;
    QMap<ChannelKey, Correction> m_corrections;
    QByteArray m_archive;
    QString m_statePath;
};

} // namespace Sim
