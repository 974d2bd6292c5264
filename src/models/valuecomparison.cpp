#include "models/valuecomparison.h"

#include "models/ctcorrections.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QLocale>
#include <QMap>
#include <QSet>

#include <algorithm>

namespace {

// The keys and their last values, for looking up the other side.
QHash<QString, QString> lastValues(const ValueComparison::Entries &entries)
{
    QHash<QString, QString> values;
    for (const auto &entry : entries)
        values.insert(entry.first, entry.second);
    return values;
}

} // namespace

ValueComparison::ValueComparison(QObject *parent)
    : QAbstractTableModel(parent)
{}

void ValueComparison::compare(const Entries &current,
                              const Entries &file,
                              const QHash<QString, QString> &labels)
{
    beginResetModel();
    m_rows.clear();
    const QHash<QString, QString> currentValues = lastValues(current);
    const QHash<QString, QString> fileValues = lastValues(file);
    QSet<QString> seen;
    const auto add = [&](const QString &key) {
        if (seen.contains(key))
            return;
        seen.insert(key);
        Row row;
        row.label = labels.value(key);
        row.key = key;
        row.current = currentValues.value(key);
        row.file = fileValues.value(key);
        if (!fileValues.contains(key))
            row.state = State::OnlyCurrent;
        else if (!currentValues.contains(key))
            row.state = State::OnlyFile;
        else
            row.state = row.current == row.file ? State::Equal : State::Different;
        m_rows.append(row);
    };
    for (const auto &entry : current)
        add(entry.first);
    for (const auto &entry : file)
        add(entry.first);
    endResetModel();
}

int ValueComparison::count(State state) const
{
    return int(std::count_if(m_rows.cbegin(), m_rows.cend(), [state](const Row &row) {
        return row.state == state;
    }));
}

QString ValueComparison::countsText() const
{
    return tr("Различаются: %1, совпадают: %2, только в редакторе: %3, только в файле: %4")
            .arg(count(State::Different))
            .arg(count(State::Equal))
            .arg(count(State::OnlyCurrent))
            .arg(count(State::OnlyFile));
}

int ValueComparison::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ValueComparison::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ValueComparison::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    const bool marked = row.state != State::Equal;
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case LabelColumn:
            return row.label;
        case KeyColumn:
            return row.key;
        case CurrentColumn:
            return row.current;
        case FileColumn:
            return row.file;
        }
        break;
    case Qt::ToolTipRole:
        if (index.column() == LabelColumn)
            return row.label;
        break;
    case Qt::FontRole:
        if (marked) {
            QFont font;
            font.setWeight(QFont::Bold);
            return font;
        }
        break;
    case Qt::BackgroundRole:
        if (marked)
            return QBrush(QColor(255, 236, 179));
        break;
    }
    return {};
}

QVariant ValueComparison::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case LabelColumn:
        return tr("Параметр");
    case KeyColumn:
        return tr("Ключ");
    case CurrentColumn:
        return tr("В редакторе");
    case FileColumn:
        return tr("В файле");
    }
    return {};
}

ValueComparison::Entries ValueComparison::settingsEntries(const QStringList &lines)
{
    Entries entries;
    for (const QString &line : lines) {
        if (line.contains(QLatin1Char('\t')))
            entries.append({line.section(QLatin1Char('\t'), 0, 0).trimmed(),
                            line.section(QLatin1Char('\t'), 1).trimmed()});
    }
    return entries;
}

ValueComparison::Entries ValueComparison::correctionEntries(const QStringList &lines)
{
    Entries entries;
    const QStringList text = CtCorrections(lines).toText().mid(1);
    for (const QString &line : text)
        entries.append({line.section(QLatin1Char('\t'), 0, 1), line.section(QLatin1Char('\t'), 2)});
    return entries;
}

ValueComparison::Entries ValueComparison::shownCorrectionEntries(const CtCorrections &table,
                                                                 const QLocale &locale)
{
    Entries entries;
    for (int i = 0; i < table.rowCount(); ++i) {
        const CtCorrection row = table.rowAt(i);
        entries.append({QStringLiteral("%1/%2").arg(row.address).arg(row.channel + 1),
                        QStringLiteral("%1 / %2").arg(locale.toString(row.gain / 100.0, 'f', 2),
                                                      locale.toString(row.phase / 10.0, 'f', 1))});
    }
    return entries;
}

ValueComparison::Entries ValueComparison::sortedByKey(const Entries &entries)
{
    QMap<QString, QString> sorted;
    for (const auto &entry : entries)
        sorted.insert(entry.first, entry.second);
    Entries result;
    for (auto it = sorted.cbegin(); it != sorted.cend(); ++it)
        result.append({it.key(), it.value()});
    return result;
}
