#include "archivefilterproxy.h"

#include "app/programsettings.h"
#include "models/archivedata.h"

#include <QCoreApplication>
#include <QVector>

namespace {

struct FilterItem
{
    const char *text;
    quint32 filterClass;
};

const FilterItem capacitance = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Ёмкость"),
                                ArchiveFilterProxy::Capacitance};
const FilterItem insulation = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Аварии КИ"),
                               ArchiveFilterProxy::InsulationAlarms};
const FilterItem battery = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Аварии АБ"),
                            ArchiveFilterProxy::BatteryAlarms};
const FilterItem diagnostics = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Диагн. события"),
                                ArchiveFilterProxy::Diagnostics};
const FilterItem temperature = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Авария темп."),
                                ArchiveFilterProxy::Temperature};
const FilterItem search = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Поиск"),
                           ArchiveFilterProxy::Search};
const FilterItem control = {QT_TRANSLATE_NOOP("ArchiveFilterProxy", "Контроль"),
                            ArchiveFilterProxy::Resistance};

// Combo items after "Всё" for each variant.
QVector<FilterItem> variantItems(int variant)
{
    switch (variant) {
    case DeviceVariant::UkpsKs:
        return {capacitance, insulation, battery, diagnostics, temperature};
    case DeviceVariant::UkpsAb:
        return {battery, diagnostics, temperature};
    case DeviceVariant::UkpsKs2:
        return {search, capacitance, insulation, battery, diagnostics, temperature};
    case DeviceVariant::UkiKiranto:
        return {control, search, capacitance, insulation, diagnostics};
    default:
        return {};
    }
}

} // namespace

ArchiveFilterProxy::ArchiveFilterProxy(QObject *parent)
    : QSortFilterProxyModel(parent)
{}

void ArchiveFilterProxy::setFilterClass(quint32 filterClass)
{
    m_filterClass = filterClass;
    invalidateFilter();
}

void ArchiveFilterProxy::setFilterIndex(int variant, int index)
{
    setFilterClass(classForIndex(variant, index));
}

QStringList ArchiveFilterProxy::filterItems(int variant)
{
    QStringList items{tr("Всё")};
    for (const FilterItem &item : variantItems(variant))
        items.append(QCoreApplication::translate("ArchiveFilterProxy", item.text));
    return items;
}

quint32 ArchiveFilterProxy::classForIndex(int variant, int index)
{
    const QVector<FilterItem> items = variantItems(variant);
    if (index < 1 || index > items.size())
        return All;
    return items.at(index - 1).filterClass;
}

bool ArchiveFilterProxy::classAccepts(quint32 filterClass, quint32 eventType)
{
    switch (filterClass) {
    case All:
        return true;
    case Resistance:
        return eventType == 1;
    case Search:
        return eventType == 11;
    case Capacitance:
        return eventType == 10;
    case InsulationAlarms:
        return eventType == 16 || eventType == 17 || eventType == 18 || eventType == 46;
    case BatteryAlarms:
        // Leaves out 27, 28, 30, 31 and 33 but takes 35 and 36: the device's own grouping.
        return (eventType >= 21 && eventType <= 26) || eventType == 29 || eventType == 32
               || (eventType >= 34 && eventType <= 45);
    case Diagnostics:
        return (eventType >= 2 && eventType <= 9) || eventType == 12 || eventType == 13
               || eventType == 14 || eventType == 15 || eventType == 19 || eventType == 20
               || eventType == 27 || eventType == 28 || eventType == 48;
    case Temperature:
        return eventType == 31;
    default:
        return false;
    }
}

bool ArchiveFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_filterClass == All)
        return true;
    // Through the shown type text: 13, 14 and 27 share one text and all count as 27.
    const QModelIndex index = sourceModel()->index(
            sourceRow, ArchiveData::ColumnType, sourceParent);
    const quint32 eventType = ArchiveData::eventTypeCode(index.data(Qt::DisplayRole).toString());
    return classAccepts(m_filterClass, eventType);
}
