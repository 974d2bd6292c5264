#pragma once

#include <QDialog>

namespace Ui {
class AboutDialog;
}

// The about box: logo, program name and version, description and the maker's lines.
class AboutDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AboutDialog(QWidget *parent = nullptr);
    ~AboutDialog() override;

private:
    Ui::AboutDialog *ui = nullptr;
};
