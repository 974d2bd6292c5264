#pragma once

#include <QSortFilterProxyModel>
#include <QStringList>

// Shows one class of archive events (see ArchiveData) between the archive model and its view.
class ArchiveFilterProxy final : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    // 0 everything, 1 resistance records, 2 search results, 3 capacitance, 4 insulation alarms,
    // 5 battery alarms, 6 diagnostic events, 7 temperature alarm; above 7 nothing passes.
    enum FilterClass : quint32 {
        All = 0,
        Resistance,
        Search,
        Capacitance,
        InsulationAlarms,
        BatteryAlarms,
        Diagnostics,
        Temperature,
    };

    explicit ArchiveFilterProxy(QObject *parent = nullptr);

    quint32 filterClass() const { return m_filterClass; }
    void setFilterClass(quint32 filterClass);
    // Index of cbArchiveFilter: mapped to a class for the variant given with it. A later change
    // of variant leaves the stored class alone.
    void setFilterIndex(int variant, int index);

    // The items of cbArchiveFilter for a device variant, "Всё" first; only "Всё" for an unknown one.
    static QStringList filterItems(int variant);
    // Class behind a combo index for a variant; 0 for index 0, an index outside the list or an
    // unknown variant.
    static quint32 classForIndex(int variant, int index);
    static bool classAccepts(quint32 filterClass, quint32 eventType);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    quint32 m_filterClass = All;
};
