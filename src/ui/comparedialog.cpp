#include "ui/comparedialog.h"
#include "ui_comparedialog.h"

#include "models/valuecomparison.h"

#include <QDir>
#include <QPushButton>

CompareDialog::CompareDialog(ValueComparison *comparison, const QString &fileName, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::CompareDialog)
{
    ui->setupUi(this);
    comparison->setParent(this);
    ui->labelFile->setText(tr("Файл: %1").arg(QDir::toNativeSeparators(fileName)));
    ui->labelCounts->setText(comparison->countsText());
    ui->tableComparison->setModel(comparison);
    ui->tableComparison->resizeColumnsToContents();
    ui->pbTakeValues->setEnabled(comparison->count(ValueComparison::State::Different) > 0);
    connect(ui->pbTakeValues, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

CompareDialog::~CompareDialog()
{
    delete ui;
}
