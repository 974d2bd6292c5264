#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>

// One CT correction of a locator channel. Gain is kept × 100, phase × 10 (degrees);
// the saved pair is what was last read from or written to the device.
struct CtCorrection
{
    quint32 address = 0;
    quint32 channel = 0; // 0..15
    quint32 gain = 0;
    qint32 phase = 0;
    quint32 savedGain = 0;
    qint32 savedPhase = 0;

    bool isModified() const { return gain != savedGain || phase != savedPhase; }
};

// Table of CT corrections from the "corr" reply; gain and phase are editable, edited rows bold.
class CtCorrections : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { AddressColumn, ChannelColumn, GainColumn, PhaseColumn, ColumnCount };

    // Lines as the device sends them, header included; lines that do not parse are dropped.
    explicit CtCorrections(const QStringList &lines = {}, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // Edit role, gain and phase columns: the real value is scaled and truncated toward zero.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section,
                        Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // The header line, then one "address\tchannel\tgain\tphase" line per row (channel 1..16).
    QStringList toText() const;

    // A zero record when the row is out of range.
    CtCorrection rowAt(int row) const;
    // First row with this address and 0-based channel.
    bool findRow(quint32 address, quint32 channel, CtCorrection &out) const;
    bool isModified(int row) const;
    // The row's current values become its saved values.
    void markSaved(int row);
    // Rows that differ from the other table (or are missing there) get zero saved values,
    // so they show as modified.
    void markDifferences(const CtCorrections &other);
    // Rows found in the other table take its gain and phase; their saved values stay, so the
    // rows that change show as edited. Rows of the other table missing here are not added.
    // Returns the number of rows changed.
    int takeValues(const CtCorrections &other);

private:
    bool isValidCell(const QModelIndex &index) const;
    void emitRowChanged(int row);

    QVector<CtCorrection> m_rows;
};
