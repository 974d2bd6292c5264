#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <functional>

class QLabel;
class QWidget;

// Marks in bold, with their labels, the fields of a settings form whose values differ from the
// baseline (the form's settings lines when it was last given a record), and counts the keys
// that differ. The changes are always worked out from the lines, so nothing can drift.
class ChangeMarks final : public QObject
{
    Q_OBJECT
public:
    // A field of the form and the key it edits; mask selects the bits of the value that the
    // field shows, 0 the whole value.
    struct Field
    {
        QString key;
        QWidget *widget = nullptr;
        qint32 mask = 0;
    };
    // The form's settings lines "key\tvalue" as they would be written now.
    using LinesSource = std::function<QStringList()>;

    // Watches the fields' spin boxes, sliders and combos; the form owns this object.
    ChangeMarks(QWidget *form, const QVector<Field> &fields, LinesSource currentLines);

    // The current lines become the baseline, which clears every mark; the count is signalled
    // even when it stays the same.
    void resetBaseline();
    // The keys whose values differ from the baseline, in the order of the lines.
    QStringList changedKeys() const;
    // The texts of the labels of the key's fields, joined by ", "; empty when none.
    QString labelFor(const QString &key) const;

signals:
    void countChanged(int count);

private:
    void update(bool force = false);
    static void setMarked(QWidget *widget, bool marked);

    QVector<Field> m_fields;
    QHash<QWidget *, QLabel *> m_labels;
    LinesSource m_currentLines;
    QStringList m_baseline;
    int m_count = 0;
};
