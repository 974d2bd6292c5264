#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>

// One device of the versions list: the insulation monitor itself (address 0) or a locator.
// Masks hold bit i for channel i + 1.
struct LocatorRecord
{
    quint32 address = 0;
    QString version;
    quint16 enabledMask = 0;
    quint16 testedMask = 0;
    quint16 ctStateMaskA = 0;
    quint16 ctStateMaskB = 0;
    bool isMonitor = false;
};

// Read-only table of the monitor and its locators from the "cfg" reply.
class Locators : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column {
        AddressColumn,
        VersionColumn,
        EnabledColumn,
        TestedColumn,
        CtStateColumn,
        ColumnCount
    };

    // Lines as the device sends them, header included; bad lines go to the debug log.
    explicit Locators(const QStringList &lines = {}, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section,
                        Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    int size() const { return m_records.size(); }
    int count() const { return m_records.size(); }
    // A default record for a row outside the table.
    LocatorRecord locatorAt(int row) const;

private:
    void parseLine(const QString &line);

    QVector<LocatorRecord> m_records;
};
