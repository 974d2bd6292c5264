#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QPair>
#include <QStringList>
#include <QVector>

class CtCorrections;

// Keyed values of the editor set against those of a file, one row per key: equal, different,
// or present on one side only. Values are compared as the texts given.
class ValueComparison : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { LabelColumn, KeyColumn, CurrentColumn, FileColumn, ColumnCount };
    enum class State { Equal, Different, OnlyCurrent, OnlyFile };

    // Key and value text, in the order of their side.
    using Entries = QVector<QPair<QString, QString>>;

    struct Row
    {
        QString label;
        QString key;
        QString current;
        QString file;
        State state = State::Equal;
    };

    explicit ValueComparison(QObject *parent = nullptr);

    // Rows in the order of the current side, then the keys found only in the file in the
    // file's order. A key given twice on one side counts with its last value.
    void compare(const Entries &current,
                 const Entries &file,
                 const QHash<QString, QString> &labels = {});

    Row row(int row) const { return m_rows.value(row); }
    int count(State state) const;
    // "Различаются: N, совпадают: N, только в редакторе: N, только в файле: N".
    QString countsText() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    // Display role: the texts, the label also as tool tip; font and background roles mark the
    // rows that are not equal.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section,
                        Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // Settings lines "KEY\tvalue": the key trimmed, the value the rest of the line trimmed;
    // lines without a tab are left out.
    static Entries settingsEntries(const QStringList &lines);
    // Corrections in their text form: key "address\tchannel" (channel 1..16), value
    // "gain*100\tphase*10"; lines that are not corrections are left out.
    static Entries correctionEntries(const QStringList &lines);
    // Corrections as the table shows them: key "address/channel", value "gain / phase" with
    // the table's decimals in the given locale.
    static Entries shownCorrectionEntries(const CtCorrections &table, const QLocale &locale);
    // Each key once with its last value, sorted by key.
    static Entries sortedByKey(const Entries &entries);

private:
    QVector<Row> m_rows;
};
