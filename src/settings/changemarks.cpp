#include "settings/changemarks.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QRegularExpression>
#include <QSlider>
#include <QSpinBox>

namespace {

QHash<QString, QString> valuesByKey(const QStringList &lines)
{
    QHash<QString, QString> values;
    for (const QString &line : lines)
        values.insert(line.section(QLatin1Char('\t'), 0, 0), line.section(QLatin1Char('\t'), 1));
    return values;
}

} // namespace

ChangeMarks::ChangeMarks(QWidget *form, const QVector<Field> &fields, LinesSource currentLines)
    : QObject(form)
    , m_fields(fields)
    , m_currentLines(std::move(currentLines))
{
    const QList<QLabel *> labels = form->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (label->buddy())
            m_labels.insert(label->buddy(), label);
    }
    const auto refresh = [this] {
        update();
    };
    for (const Field &field : qAsConst(m_fields)) {
        if (auto spin = qobject_cast<QSpinBox *>(field.widget))
            connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), this, refresh);
        else if (auto real = qobject_cast<QDoubleSpinBox *>(field.widget))
            connect(real, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, refresh);
        else if (auto combo = qobject_cast<QComboBox *>(field.widget))
            connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, refresh);
        else if (auto slider = qobject_cast<QSlider *>(field.widget))
            connect(slider, &QSlider::valueChanged, this, refresh);
    }
}

void ChangeMarks::resetBaseline()
{
    m_baseline = m_currentLines();
    update(true);
}

QStringList ChangeMarks::changedKeys() const
{
    const QHash<QString, QString> before = valuesByKey(m_baseline);
    QStringList keys;
    for (const QString &line : m_currentLines()) {
        const QString key = line.section(QLatin1Char('\t'), 0, 0);
        if (before.value(key) != line.section(QLatin1Char('\t'), 1))
            keys << key;
    }
    return keys;
}

QString ChangeMarks::labelFor(const QString &key) const
{
    QStringList texts;
    for (const Field &field : m_fields) {
        const QLabel *label = m_labels.value(field.widget);
        if (field.key == key && label)
            texts << label->text().remove(QRegularExpression(QStringLiteral(":$")));
    }
    return texts.join(QStringLiteral(", "));
}

void ChangeMarks::update(bool force)
{
    const QHash<QString, QString> before = valuesByKey(m_baseline);
    const QHash<QString, QString> now = valuesByKey(m_currentLines());
    for (const Field &field : qAsConst(m_fields)) {
        const QString was = before.value(field.key);
        const QString is = now.value(field.key);
        const bool marked = field.mask ? ((was.toInt() ^ is.toInt()) & field.mask) != 0 : was != is;
        setMarked(field.widget, marked);
        setMarked(m_labels.value(field.widget), marked);
    }
    int count = 0;
    for (auto it = now.cbegin(); it != now.cend(); ++it)
        count += before.value(it.key()) != it.value() ? 1 : 0;
    if (count != m_count || force) {
        m_count = count;
        emit countChanged(count);
    }
}

void ChangeMarks::setMarked(QWidget *widget, bool marked)
{
    if (!widget || widget->font().bold() == marked)
        return;
    QFont font = widget->font();
    font.setBold(marked);
    widget->setFont(font);
}
