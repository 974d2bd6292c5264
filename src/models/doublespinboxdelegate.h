#pragma once

#include <QStyledItemDelegate>

// Cell editor for real values: a frameless spin box with fixed limits, step and decimals.
class DoubleSpinBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit DoubleSpinBoxDelegate(
            double minimum, double maximum, double step, int decimals, QObject *parent = nullptr);

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
    // Shows real values with the editor's decimals, so a column reads 1,00 beside 0,99.
    QString displayText(const QVariant &value, const QLocale &locale) const override;

private:
    double m_minimum = 0.0;
    double m_maximum = 0.0;
    double m_step = 1.0;
    int m_decimals = 2;
};
