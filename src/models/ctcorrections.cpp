#include "ctcorrections.h"

#include <QFont>

#include <cmath>
#include <limits>

namespace {

const char correctionsHeader[] = "address\tchannel\tgain*100\t phase*10";

bool parseLine(const QString &line, CtCorrection &row)
{
    const QStringList fields = line.trimmed().split(QLatin1Char('\t'));
    // Three fields pass the device's own count test but carry no phase: refused as well.
    if (fields.size() < 4)
        return false;
    bool ok = false;
    const uint address = fields.at(0).toUInt(&ok);
    if (!ok || address > 254)
        return false;
    const uint channel = fields.at(1).toUInt(&ok);
    if (!ok || channel < 1 || channel > 16)
        return false;
    const uint gain = fields.at(2).toUInt(&ok);
    if (!ok || gain < 1 || gain > 99900)
        return false;
    const int phase = fields.at(3).toInt(&ok);
    if (!ok)
        return false;
    row.address = address;
    row.channel = channel - 1;
    row.gain = gain;
    row.phase = phase;
    row.savedGain = gain;
    row.savedPhase = phase;
    return true;
}

template<typename T>
T truncated(double value)
{
    const double whole = std::trunc(value);
    if (!(whole > double(std::numeric_limits<T>::min())))
        return std::numeric_limits<T>::min();
    if (!(whole < double(std::numeric_limits<T>::max())))
        return std::numeric_limits<T>::max();
    return T(whole);
}

} // namespace

CtCorrections::CtCorrections(const QStringList &lines, QObject *parent)
    : QAbstractTableModel(parent)
{
    for (const QString &line : lines) {
        CtCorrection row;
        if (parseLine(line, row))
            m_rows.append(row);
    }
}

int CtCorrections::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int CtCorrections::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CtCorrections::data(const QModelIndex &index, int role) const
{
    if (!isValidCell(index))
        return {};
    const CtCorrection &row = m_rows.at(index.row());
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        switch (index.column()) {
        case AddressColumn:
            return row.address;
        case ChannelColumn:
            return row.channel + 1;
        case GainColumn:
            return row.gain / 100.0;
        case PhaseColumn:
            return row.phase / 10.0;
        }
    } else if (role == Qt::FontRole && row.isModified()) {
        QFont font;
        font.setWeight(QFont::Bold);
        return font;
    }
    return {};
}

bool CtCorrections::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !isValidCell(index))
        return false;
    bool ok = false;
    const double real = value.toDouble(&ok);
    if (!ok)
        return false;
    CtCorrection &row = m_rows[index.row()];
    if (index.column() == GainColumn)
        row.gain = truncated<quint32>(real * 100);
    else if (index.column() == PhaseColumn)
        row.phase = truncated<qint32>(real * 10);
    else
        return false;
    emitRowChanged(index.row());
    return true;
}

QVariant CtCorrections::headerData(int section, Qt::Orientation orientation, int role) const
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
    case GainColumn:
        return tr("Коэфф. усиления");
    case PhaseColumn:
        return tr("Сдвиг фазы");
    }
    return {};
}

Qt::ItemFlags CtCorrections::flags(const QModelIndex &index) const
{
    Qt::ItemFlags result = QAbstractTableModel::flags(index);
    if (index.isValid() && (index.column() == GainColumn || index.column() == PhaseColumn))
        result |= Qt::ItemIsEditable;
    return result;
}

QStringList CtCorrections::toText() const
{
    QStringList lines;
    lines.reserve(m_rows.size() + 1);
    lines.append(QLatin1String(correctionsHeader));
    for (const CtCorrection &row : m_rows) {
        lines.append(QStringLiteral("%1\t%2\t%3\t%4")
                             .arg(row.address)
                             .arg(row.channel + 1)
                             .arg(row.gain)
                             .arg(row.phase));
    }
    return lines;
}

CtCorrection CtCorrections::rowAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row) : CtCorrection();
}

bool CtCorrections::findRow(quint32 address, quint32 channel, CtCorrection &out) const
{
    for (const CtCorrection &row : m_rows) {
        if (row.address == address && row.channel == channel) {
            out = row;
            return true;
        }
    }
    return false;
}

bool CtCorrections::isModified(int row) const
{
    return row >= 0 && row < m_rows.size() && m_rows.at(row).isModified();
}

void CtCorrections::markSaved(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    CtCorrection &record = m_rows[row];
    record.savedGain = record.gain;
    record.savedPhase = record.phase;
    emitRowChanged(row);
}

void CtCorrections::markDifferences(const CtCorrections &other)
{
    for (int i = 0; i < m_rows.size(); ++i) {
        CtCorrection &row = m_rows[i];
        CtCorrection theirs;
        if (other.findRow(row.address, row.channel, theirs) && theirs.gain == row.gain
            && theirs.phase == row.phase)
            continue;
        row.savedGain = 0;
        row.savedPhase = 0;
        emitRowChanged(i);
    }
}

int CtCorrections::takeValues(const CtCorrections &other)
{
    int taken = 0;
    for (int i = 0; i < m_rows.size(); ++i) {
        CtCorrection &row = m_rows[i];
        CtCorrection theirs;
        if (!other.findRow(row.address, row.channel, theirs)
            || (theirs.gain == row.gain && theirs.phase == row.phase))
            continue;
        row.gain = theirs.gain;
        row.phase = theirs.phase;
        ++taken;
        emitRowChanged(i);
    }
    return taken;
}

bool CtCorrections::isValidCell(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this && index.row() < m_rows.size()
           && index.column() < ColumnCount;
}

void CtCorrections::emitRowChanged(int row)
{
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}
