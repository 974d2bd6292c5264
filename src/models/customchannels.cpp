#include "customchannels.h"

namespace {

const char customHeader[] = "address\tchannel\tr_loc\tlower\tupper";
// Bounds travel in units and are kept in steps of this size.
const uint boundStep = 5;
const uint maximumBound = 79;

bool parseBound(const QString &field, quint32 &steps)
{
    bool ok = false;
    const uint value = field.toUInt(&ok);
    if (!ok || value > maximumBound)
        return false;
    steps = value / boundStep;
    return true;
}

bool parseLine(const QString &line, CustomChannel &row)
{
    const QStringList fields = line.trimmed().split(QLatin1Char('\t'));
    if (fields.size() < 3)
        return false;
    bool ok = false;
    const uint address = fields.at(0).toUInt(&ok);
    if (!ok || address > 254)
        return false;
    const uint channel = fields.at(1).toUInt(&ok);
    if (!ok || channel < 1 || channel > 16)
        return false;
    row.address = address;
    row.channel = channel - 1;
    if (fields.at(2) == QLatin1String("OFF"))
        return true;
    // An enabled channel without both bounds is incomplete.
    if (fields.size() < 5)
        return false;
    row.enabled = true;
    row.rLoc = fields.at(2).toUInt(&ok);
    if (!ok || row.rLoc < 1 || row.rLoc > 999)
        return false;
    return parseBound(fields.at(3), row.lower) && parseBound(fields.at(4), row.upper);
}

} // namespace

CustomChannels::CustomChannels(const QStringList &lines, QObject *parent)
    : QAbstractTableModel(parent)
{
    for (const QString &line : lines) {
        CustomChannel row;
        if (parseLine(line, row))
            m_channels.append(row);
    }
}

int CustomChannels::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_channels.size();
}

int CustomChannels::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CustomChannels::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.model() != this
        || index.row() >= m_channels.size())
        return {};
    const CustomChannel &row = m_channels.at(index.row());
    switch (index.column()) {
    case AddressColumn:
        return row.address;
    case ChannelColumn:
        return row.channel + 1;
    case RLocColumn:
        return row.enabled ? QVariant(row.rLoc) : QVariant(QStringLiteral("OFF"));
    case LowerColumn:
        return row.enabled ? QVariant(row.lower * boundStep) : QVariant();
    case UpperColumn:
        return row.enabled ? QVariant(row.upper * boundStep) : QVariant();
    }
    return {};
}

QVariant CustomChannels::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case AddressColumn:
        return tr("Адрес");
    case ChannelColumn:
        return tr("Канал");
    case RLocColumn:
        return tr("RLoc");
    case LowerColumn:
        return tr("Нижний порог");
    case UpperColumn:
        return tr("Верхний порог");
    }
    return {};
}

QStringList CustomChannels::toText() const
{
    QStringList lines;
    lines.reserve(m_channels.size() + 1);
    lines.append(QLatin1String(customHeader));
    for (const CustomChannel &row : m_channels) {
        if (!row.enabled) {
            lines.append(QStringLiteral("%1\t%2\tOFF").arg(row.address).arg(row.channel + 1));
            continue;
        }
        lines.append(QStringLiteral("%1\t%2\t%3\t%4\t%5")
                             .arg(row.address)
                             .arg(row.channel + 1)
                             .arg(row.rLoc)
                             .arg(row.lower * boundStep)
                             .arg(row.upper * boundStep));
    }
    return lines;
}

bool CustomChannels::findChannel(quint32 address, quint32 channel, CustomChannel &out) const
{
    for (const CustomChannel &row : m_channels) {
        if (row.address == address && row.channel == channel) {
            out = row;
            return true;
        }
    }
    return false;
}
