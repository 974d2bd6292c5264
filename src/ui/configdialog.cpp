#include "configdialog.h"
#include "ui_configdialog.h"

#include "app/programsettings.h"

#include <QSerialPortInfo>
#include <QTimer>

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

    fillPorts(QSerialPortInfo::availablePorts());
    // Adapters plugged in or pulled out while the dialog is open show up within a second.
    auto *poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, [this] {
        const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
        if (portNames(ports) != m_present)
            fillPorts(ports);
    });
    poll->start(1000);
}

QStringList ConfigDialog::portNames(const QList<QSerialPortInfo> &ports)
{
    QStringList names;
    for (const QSerialPortInfo &port : ports)
        names << port.portName();
    return names;
}

void ConfigDialog::fillPorts(const QList<QSerialPortInfo> &ports)
{
    const QString typed = ui->cbComPort->currentText();
    m_present = portNames(ports);
    ui->cbComPort->clear();
    for (const QSerialPortInfo &port : ports) {
        QStringList about{port.description(), port.manufacturer(), port.serialNumber()};
        about.removeAll(QString());
        ui->cbComPort->addItem(port.portName());
        ui->cbComPort->setItemData(
                ui->cbComPort->count() - 1, about.join(QLatin1String(", ")), Qt::ToolTipRole);
    }
    if (!m_missing.isEmpty() && !m_present.contains(m_missing))
        ui->cbComPort->insertItem(qMin(1, ui->cbComPort->count()), m_missing + missingMarker());
    // What the user typed or chose stays; a port that came back loses its marker.
    const QString kept = typed == m_missing + missingMarker() && m_present.contains(m_missing)
                                 ? m_missing
                                 : typed;
    const int index = ui->cbComPort->findText(kept, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        ui->cbComPort->setCurrentIndex(index);
    else
        ui->cbComPort->setEditText(kept);
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
            m_missing = settings.port;
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
