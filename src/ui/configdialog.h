#pragma once

#include <QDialog>
#include <QStringList>

class QSerialPortInfo;
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
    static QStringList portNames(const QList<QSerialPortInfo> &ports);
    // The ports of the system, each with its description, manufacturer and serial number as
    // its tool tip, and the configured port that is missing marked as such.
    void fillPorts(const QList<QSerialPortInfo> &ports);

    Ui::ConfigDialog *ui = nullptr;
    QStringList m_present;
    QString m_missing;
};
