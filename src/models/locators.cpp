#include "locators.h"

#include "models/bitstring.h"

#include <QDebug>

namespace {

const char locatorsHeader[] = "Addr\tver\tEnabled\tTested";
// Monitors with an older firmware report a list this table cannot use.
const uint minimumMonitorVersion = 8;

uint majorVersion(const QString &version)
{
    const QStringList parts = version.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    return parts.isEmpty() ? 0 : parts.first().toUInt();
}

} // namespace

Locators::Locators(const QStringList &lines, QObject *parent)
    : QAbstractTableModel(parent)
{
    for (const QString &line : lines)
        parseLine(line);
}

void Locators::parseLine(const QString &line)
{
    if (line.startsWith(QLatin1String(locatorsHeader)))
        return;
    const QStringList fields = line.trimmed().split(QLatin1Char('\t'));
    if (fields.size() != 6) {
        qDebug().noquote() << QStringLiteral("_Bad line in UKI versions list: ") + line;
        return;
    }
    LocatorRecord record;
    record.isMonitor = fields.at(0) == QLatin1String("UKI");
    record.version = fields.at(1);
    if (record.isMonitor) {
        if (majorVersion(record.version) < minimumMonitorVersion)
            return;
    } else {
        bool ok = false;
        record.address = fields.at(0).toUInt(&ok);
        if (!ok) {
            qDebug().noquote() << QStringLiteral("Bad address in UKI versions list: ") + line;
            return;
        }
    }
    record.enabledMask = BitString::parse(fields.at(2));
    record.testedMask = BitString::parse(fields.at(3));
    record.ctStateMaskA = BitString::parse(fields.at(4));
    record.ctStateMaskB = BitString::parse(fields.at(5));
    m_records.append(record);
}

int Locators::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_records.size();
}

int Locators::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant Locators::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.model() != this
        || index.row() >= m_records.size())
        return {};
    const LocatorRecord &record = m_records.at(index.row());
    switch (index.column()) {
    case AddressColumn:
        return record.isMonitor ? tr("УКИ") : QStringLiteral("%1").arg(record.address);
    case VersionColumn:
        return record.version;
    case EnabledColumn:
        return BitString::format(record.enabledMask);
    case TestedColumn:
        return BitString::format(record.testedMask);
    case CtStateColumn:
        return BitString::ctState(
                record.enabledMask, record.testedMask, record.ctStateMaskA, record.ctStateMaskB);
    }
    return {};
}

QVariant Locators::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case AddressColumn:
        return tr("Адрес");
    case VersionColumn:
        return tr("Версия ПО");
    case EnabledColumn:
        return tr("Маска каналов");
    case TestedColumn:
        return tr("Маска тестирования");
    case CtStateColumn:
        return tr("Состояние ТТ");
    }
    return {};
}

LocatorRecord Locators::locatorAt(int row) const
{
    return row >= 0 && row < m_records.size() ? m_records.at(row) : LocatorRecord();
}
