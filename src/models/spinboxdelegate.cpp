#include "spinboxdelegate.h"

#include <QSpinBox>

SpinBoxDelegate::SpinBoxDelegate(int minimum, int maximum, int step, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_step(step)
{}

QWidget *SpinBoxDelegate::createEditor(QWidget *parent,
                                       const QStyleOptionViewItem &,
                                       const QModelIndex &) const
{
    auto editor = new QSpinBox(parent);
    editor->setFrame(false);
    editor->setMinimum(m_minimum);
    editor->setMaximum(m_maximum);
    editor->setSingleStep(m_step);
    return editor;
}

void SpinBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto spinBox = qobject_cast<QSpinBox *>(editor);
    if (!spinBox)
        return;
    spinBox->setValue(index.model()->data(index, Qt::EditRole).toInt());
}

void SpinBoxDelegate::setModelData(QWidget *editor,
                                   QAbstractItemModel *model,
                                   const QModelIndex &index) const
{
    auto spinBox = qobject_cast<QSpinBox *>(editor);
    if (!spinBox)
        return;
    spinBox->interpretText();
    model->setData(index, spinBox->value(), Qt::EditRole);
}

void SpinBoxDelegate::updateEditorGeometry(QWidget *editor,
                                           const QStyleOptionViewItem &option,
                                           const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}
