#include "configdialog.h"
#include "ui_configdialog.h"

#include "app/programsettings.h"

#include <QSerialPortInfo>

namespace {
QString missingMarker()
{
    return ConfigDialog::tr(" (отсутствует в системе)");
}
} // namespace

ConfigDialog::ConfigDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::ConfigDialog)
{
    ui->setupUi(this);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // The variant follows the connected device; the buttons only carry it through.
    ui->groupBox_2->hide();
    // Nothing is set on the second page yet.
    ui->tabs->setTabVisible(ui->tabs->indexOf(ui->page), false);

    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports)
        ui->cbComPort->addItem(port.portName());
}

ConfigDialog::~ConfigDialog()
{
    delete ui;
}

void ConfigDialog::setSettings(const ProgramSettings &settings)
{
    if (!settings.port.isEmpty()) {
        const int found = ui->cbComPort->findText(settings.port,
                                                  Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (found >= 0) {
            ui->cbComPort->setCurrentIndex(found);
        } else {
            // Second place on purpose; an empty list puts it first.
            const int at = qMin(1, ui->cbComPort->count());
            ui->cbComPort->insertItem(at, settings.port + missingMarker());
            ui->cbComPort->setCurrentIndex(at);
        }
    }

    switch (settings.variant) {
    case DeviceVariant::UkpsKs:
        ui->rbUkpsKs->setChecked(true);
        break;
    case DeviceVariant::UkpsAb:
        ui->rbUkpsAb->setChecked(true);
        break;
    default:
        // The insulation monitor has no button of its own here.
        ui->rbUkpsKs2->setChecked(true);
        break;
    }
}

void ConfigDialog::getSettings(ProgramSettings &settings) const
{
    settings.port = ui->cbComPort->currentText().remove(missingMarker());
    if (ui->rbUkpsKs->isChecked())
        settings.variant = DeviceVariant::UkpsKs;
    else if (ui->rbUkpsAb->isChecked())
        settings.variant = DeviceVariant::UkpsAb;
    else
        settings.variant = DeviceVariant::UkpsKs2;
}
