#pragma once

#include <QDialog>

class ValueComparison;

namespace Ui {
class CompareDialog;
}

// Shows the editor's values against a file's, row by row, with the counts; "Взять значения из
// файла" accepts the dialog, and the caller then puts the file's values into the editor.
class CompareDialog : public QDialog
{
    Q_OBJECT
public:
    // The dialog becomes the comparison's parent.
    CompareDialog(ValueComparison *comparison, const QString &fileName, QWidget *parent = nullptr);
    ~CompareDialog() override;

private:
    Ui::CompareDialog *ui = nullptr;
};
