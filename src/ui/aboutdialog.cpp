#include "aboutdialog.h"
#include "ui_aboutdialog.h"

#include <QCoreApplication>

AboutDialog::AboutDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::AboutDialog)
{
    ui->setupUi(this);
    connect(ui->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ui->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    const QString version = tr("версия %1").arg(QCoreApplication::applicationVersion());
    QString html = ui->textBrowser->toHtml();
    html.replace(QLatin1String("%%APPNAME%%"), tr("КИРАНТО-линк").toHtmlEscaped());
    html.replace(QLatin1String("%%VERSION%%"), version.toHtmlEscaped());
    html.replace(QLatin1String("%%APPDESCRIPTION%%"),
                 tr("Сервисная программа для устройств КИРАНТО").toHtmlEscaped());
    ui->textBrowser->setHtml(html);
}

AboutDialog::~AboutDialog()
{
    delete ui;
}
