#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>

// Custom settings of one locator channel. Bounds are kept in steps of 5 units (0..15);
// a channel the device reports as "OFF" has no settings (enabled false, the rest 0).
struct CustomChannel
{
    quint32 address = 0;
    quint32 channel = 0; // 0..15
    quint32 rLoc = 0;
    quint32 lower = 0;
    quint32 upper = 0;
    bool enabled = false;
};

// Read-only table of the per-channel settings from the "get_cust" reply.
class CustomChannels : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { AddressColumn, ChannelColumn, RLocColumn, LowerColumn, UpperColumn, ColumnCount };

    // Lines as the device sends them, header included; lines that do not parse are dropped.
    explicit CustomChannels(const QStringList &lines = {}, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section,
                        Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // The device's text form: header, then "address\tchannel\tOFF" or five decimals per row,
    // channel 1..16 and bounds in units (steps × 5).
    QStringList toText() const;

    // First record with this address and 0-based channel.
    bool findChannel(quint32 address, quint32 channel, CustomChannel &out) const;

private:
    QVector<CustomChannel> m_channels;
};
