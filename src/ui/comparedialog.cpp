#include "ui/comparedialog.h"
#include "ui_comparedialog.h"

#include "models/valuecomparison.h"

#include <QDir>
#include <QHeaderView>
#include <QPushButton>

namespace {

// Widest label column, in pixels.
constexpr int LabelWidth = 260;

} // namespace

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
    // The option bits share one key and list all their labels: the full text is the tool tip.
    QHeaderView *header = ui->tableComparison->horizontalHeader();
    header->resizeSection(ValueComparison::LabelColumn,
                          qMin(header->sectionSize(ValueComparison::LabelColumn), LabelWidth));
    ui->pbTakeValues->setEnabled(comparison->count(ValueComparison::State::Different) > 0);
    connect(ui->pbTakeValues, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

CompareDialog::~CompareDialog()
{
    delete ui;
}
