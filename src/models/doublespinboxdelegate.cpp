#include "doublespinboxdelegate.h"

#include <QDoubleSpinBox>

DoubleSpinBoxDelegate::DoubleSpinBoxDelegate(
        double minimum, double maximum, double step, int decimals, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_step(step)
    , m_decimals(decimals)
{}

QWidget *DoubleSpinBoxDelegate::createEditor(QWidget *parent,
                                             const QStyleOptionViewItem &,
                                             const QModelIndex &) const
{
    auto editor = new QDoubleSpinBox(parent);
    editor->setFrame(false);
    // Decimals first: the limits are rounded to the current number of decimals.
    editor->setDecimals(m_decimals);
    editor->setMinimum(m_minimum);
    editor->setMaximum(m_maximum);
    editor->setSingleStep(m_step);
    return editor;
}

void DoubleSpinBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto spinBox = qobject_cast<QDoubleSpinBox *>(editor);
    if (!spinBox)
        return;
    spinBox->setValue(index.model()->data(index, Qt::EditRole).toDouble());
}

void DoubleSpinBoxDelegate::setModelData(QWidget *editor,
                                         QAbstractItemModel *model,
                                         const QModelIndex &index) const
{
    auto spinBox = qobject_cast<QDoubleSpinBox *>(editor);
    if (!spinBox)
        return;
    spinBox->interpretText();
    model->setData(index, spinBox->value(), Qt::EditRole);
}

void DoubleSpinBoxDelegate::updateEditorGeometry(QWidget *editor,
                                                 const QStyleOptionViewItem &option,
                                                 const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

QString DoubleSpinBoxDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    if (value.userType() == QMetaType::Double)
        return locale.toString(value.toDouble(), 'f', m_decimals);
    return QStyledItemDelegate::displayText(value, locale);
}
