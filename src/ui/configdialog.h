#pragma once

#include <QDialog>

class ProgramSettings;

namespace Ui {
class ConfigDialog;
}

// The program settings dialog: the serial port and, passed through unseen, the device variant.
class ConfigDialog : public QDialog
{
    Q_OBJECT
public:
    explicit ConfigDialog(QWidget *parent = nullptr);
    ~ConfigDialog() override;

    // Call before showing the dialog.
    void setSettings(const ProgramSettings &settings);
    // Call after the dialog was accepted; the variant comes back as 0, 1 or 2 only.
    void getSettings(ProgramSettings &settings) const;

private:
    Ui::ConfigDialog *ui = nullptr;
};
