#pragma once

#include <QStyledItemDelegate>

// Cell editor for whole numbers: a frameless spin box with fixed limits and step.
class SpinBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit SpinBoxDelegate(int minimum, int maximum, int step, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent,
                          const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    // The typed text is interpreted first, so a value not yet confirmed is not lost.
    void setModelData(QWidget *editor,
                      QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor,
                              const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    int m_minimum = 0;
    int m_maximum = 99;
    int m_step = 1;
};
