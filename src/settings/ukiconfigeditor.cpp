#include "settings/ukiconfigeditor.h"
#include "ui_ukiconfigeditor.h"

#include "settings/changemarks.h"

#include <QVector>

namespace {

// Option bits of "Flags" that have a combo of their own (index = bit value).
constexpr qint32 GroupSearchBit = 0x2;
constexpr qint32 RisoMethodBit = 0x4;
constexpr qint32 CurrentOutputBit = 0x10;
constexpr qint32 TotalResistanceBit = 0x20;
constexpr qint32 AutoThresholdBit = 0x200;
constexpr qint32 ImbalanceMaxBit = 0x400;
constexpr qint32 MultiMonitorBit = 0x800;
constexpr qint32 X9AnalogInputBit = 0x2000;
// Bits the form does not show but carries over from the record last shown.
constexpr qint32 CarriedBits = 0x8 | 0x1000;

// Times of the lists: one item of "TimeMto" is 20 units, one of "Tcust" 10.
constexpr qint32 TimeMtoStep = 20;
constexpr qint32 TcustStep = 10;
// "Averaging" is kept in steps of 5 % and shown in percent.
constexpr qint32 AveragingPercent = 5;

// The item of cbModeInput that exists only with several monitors on the bus.
constexpr int MultiMonitorInputItem = 3;

struct OptionBit
{
    QComboBox *combo;
    qint32 bit;
};

// The option bits of "Flags" that have a combo (index = bit value).
QVector<OptionBit> optionBits(const Ui::UkiConfigEditor &ui)
{
    return {
            {ui.cbGSearch, GroupSearchBit},
            {ui.cbRisoMethod, RisoMethodBit},
            {ui.cbIoutEn, CurrentOutputBit},
            {ui.cbRequEn, TotalResistanceBit},
            {ui.cbAutoRan, AutoThresholdBit},
            {ui.cbDisMax, ImbalanceMaxBit},
            {ui.cbMulti, MultiMonitorBit},
            {ui.cbX9, X9AnalogInputBit},
    };
}

// Every field of the form with the key it edits.
QVector<ChangeMarks::Field> markedFields(const Ui::UkiConfigEditor &ui)
{
    const auto key = [](UkiSettings::Field field) {
        return QString(UkiSettings::key(field));
    };
    QVector<ChangeMarks::Field> fields{
            {key(UkiSettings::AddrUki), ui.sbAddrUki},
            {key(UkiSettings::NumUki), ui.sbNumUki},
            {key(UkiSettings::RisoM3s1), ui.sbRisoM3s1},
            {key(UkiSettings::RisoM3s2), ui.sbRisoM3s2},
            {key(UkiSettings::RisoLoc), ui.sbRisoLoc},
            {key(UkiSettings::TimeMto), ui.cbTimeMto},
            {key(UkiSettings::Tcust), ui.cbTcust},
            {key(UkiSettings::TimeM3s), ui.cbTimeM3s},
            {key(UkiSettings::Riso420), ui.sbRiso420},
            {key(UkiSettings::Urelay), ui.sbUrelay},
            {key(UkiSettings::Uminus), ui.sbUminus},
            {key(UkiSettings::MbAddr), ui.sbMbAddr},
            {key(UkiSettings::MbBaud), ui.cbMbBaud},
            {key(UkiSettings::MbParity), ui.cbMbParity},
            {key(UkiSettings::CapSopt), ui.sbCapSopt},
            {key(UkiSettings::ModeDef), ui.cbModeDef},
            {key(UkiSettings::Bright), ui.sliderBright},
            {key(UkiSettings::Contrast), ui.sliderContrast},
            {key(UkiSettings::Tbridge), ui.cbTbridge},
            {key(UkiSettings::Lang), ui.cbLang},
            {key(UkiSettings::Averaging), ui.sbFilter},
            {key(UkiSettings::ModeInput), ui.cbModeInput},
    };
    for (const OptionBit &option : optionBits(ui))
        fields.append({key(UkiSettings::Flags), option.combo, option.bit});
    return fields;
}

QVector<uint> versionNumbers(const QString &version)
{
    QVector<uint> numbers;
    const QStringList parts = version.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    for (const QString &part : parts)
        numbers.append(part.toUInt());
    return numbers;
}

} // namespace

UkiConfigEditor::UkiConfigEditor(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::UkiConfigEditor)
{
    ui->setupUi(this);
    // Smoothing goes in whole steps of 5 %: a value typed in between falls to the step below,
    // which is also what the record would get.
    connect(ui->sbFilter, &QSpinBox::editingFinished, this, [filter = ui->sbFilter] {
        filter->setValue(filter->value() / AveragingPercent * AveragingPercent);
    });
    m_marks = new ChangeMarks(this, markedFields(*ui), [this] {
        UkiSettings shown = m_lastLoaded;
        settings(shown);
        return shown.toLines();
    });
    connect(m_marks, &ChangeMarks::countChanged, this, &UkiConfigEditor::changedCountChanged);
    setSettings(m_lastLoaded);
}

UkiConfigEditor::~UkiConfigEditor()
{
    delete ui;
}

void UkiConfigEditor::setSettings(const UkiSettings &record)
{
    m_lastLoaded = record;
    showRecord(record);
    m_marks->resetBaseline();
}

void UkiConfigEditor::takeLines(const QStringList &lines)
{
    UkiSettings record = m_lastLoaded;
    settings(record);
    record.fromLines(lines);
    showRecord(record);
}

int UkiConfigEditor::changedCount() const
{
    return m_marks->changedKeys().size();
}

QString UkiConfigEditor::labelFor(const QString &key) const
{
    return m_marks->labelFor(key);
}

void UkiConfigEditor::showRecord(const UkiSettings &record)
{
    ui->sbAddrUki->setValue(record.value(UkiSettings::AddrUki));
    // Before cbModeInput: the number of monitors decides whether its fourth item exists.
    ui->sbNumUki->setValue(record.value(UkiSettings::NumUki));
    ui->sbRisoM3s1->setValue(record.value(UkiSettings::RisoM3s1));
    ui->sbRisoM3s2->setValue(record.value(UkiSettings::RisoM3s2));
    ui->sbRisoLoc->setValue(record.value(UkiSettings::RisoLoc));
    ui->cbTimeMto->setCurrentIndex(record.value(UkiSettings::TimeMto) / TimeMtoStep);
    ui->cbTcust->setCurrentIndex(record.value(UkiSettings::Tcust) / TcustStep);
    ui->cbTimeM3s->setCurrentIndex(record.value(UkiSettings::TimeM3s));
    ui->sbRiso420->setValue(record.value(UkiSettings::Riso420));

    const qint32 flags = record.value(UkiSettings::Flags);
    ui->cbGSearch->setCurrentIndex(flags & GroupSearchBit ? 1 : 0);
    ui->cbRisoMethod->setCurrentIndex(flags & RisoMethodBit ? 1 : 0);
    ui->cbIoutEn->setCurrentIndex(flags & CurrentOutputBit ? 1 : 0);
    ui->cbRequEn->setCurrentIndex(flags & TotalResistanceBit ? 1 : 0);
    ui->cbAutoRan->setCurrentIndex(flags & AutoThresholdBit ? 1 : 0);
    ui->cbDisMax->setCurrentIndex(flags & ImbalanceMaxBit ? 1 : 0);
    ui->cbMulti->setCurrentIndex(flags & MultiMonitorBit ? 1 : 0);
    const bool analogInput = flags & X9AnalogInputBit;
    ui->cbX9->setCurrentIndex(analogInput ? 1 : 0);

    ui->sbUrelay->setValue(record.value(UkiSettings::Urelay));
    ui->sbUminus->setValue(record.value(UkiSettings::Uminus));
    ui->sbMbAddr->setValue(record.value(UkiSettings::MbAddr));
    ui->cbMbBaud->setCurrentIndex(record.value(UkiSettings::MbBaud));
    ui->cbMbParity->setCurrentIndex(record.value(UkiSettings::MbParity));
    ui->sbCapSopt->setValue(record.value(UkiSettings::CapSopt));
    ui->cbModeDef->setCurrentIndex(record.value(UkiSettings::ModeDef));
    ui->sliderBright->setValue(record.value(UkiSettings::Bright));
    ui->sliderContrast->setValue(record.value(UkiSettings::Contrast));
    ui->cbTbridge->setCurrentIndex(record.value(UkiSettings::Tbridge));
    ui->cbLang->setCurrentIndex(record.value(UkiSettings::Lang));
    ui->sbFilter->setValue(record.value(UkiSettings::Averaging) * AveragingPercent);

    showX9Arrangement(analogInput);
    // On the 4-20 mA input the discrete input's function is not shown and not changed.
    if (!analogInput)
        ui->cbModeInput->setCurrentIndex(record.value(UkiSettings::ModeInput));
}

void UkiConfigEditor::settings(UkiSettings &record) const
{
    record.setValue(UkiSettings::AddrUki, ui->sbAddrUki->value());
    record.setValue(UkiSettings::NumUki, ui->sbNumUki->value());
    record.setValue(UkiSettings::RisoM3s1, ui->sbRisoM3s1->value());
    record.setValue(UkiSettings::RisoM3s2, ui->sbRisoM3s2->value());
    record.setValue(UkiSettings::RisoLoc, ui->sbRisoLoc->value());
    record.setValue(UkiSettings::TimeMto, ui->cbTimeMto->currentIndex() * TimeMtoStep);
    record.setValue(UkiSettings::Tcust, ui->cbTcust->currentIndex() * TcustStep);
    record.setValue(UkiSettings::TimeM3s, ui->cbTimeM3s->currentIndex());
    record.setValue(UkiSettings::Riso420, ui->sbRiso420->value());

    // Rebuilt from nothing: bits without a combo are dropped (bit 7 of the default among them).
    qint32 flags = m_lastLoaded.value(UkiSettings::Flags) & CarriedBits;
    for (const OptionBit &option : optionBits(*ui)) {
        if (option.combo->currentIndex() == 1)
            flags |= option.bit;
    }
    record.setValue(UkiSettings::Flags, flags);

    record.setValue(UkiSettings::Urelay, ui->sbUrelay->value());
    record.setValue(UkiSettings::Uminus, ui->sbUminus->value());
    record.setValue(UkiSettings::MbAddr, ui->sbMbAddr->value());
    record.setValue(UkiSettings::MbBaud, ui->cbMbBaud->currentIndex());
    record.setValue(UkiSettings::MbParity, ui->cbMbParity->currentIndex());
    record.setValue(UkiSettings::CapSopt, ui->sbCapSopt->value());
    record.setValue(UkiSettings::ModeDef, ui->cbModeDef->currentIndex());
    record.setValue(UkiSettings::Bright, ui->sliderBright->value());
    record.setValue(UkiSettings::Contrast, ui->sliderContrast->value());
    record.setValue(UkiSettings::Tbridge, ui->cbTbridge->currentIndex());
    record.setValue(UkiSettings::Lang, ui->cbLang->currentIndex());
    record.setValue(UkiSettings::Averaging, ui->sbFilter->value() / AveragingPercent);
    if (ui->cbX9->currentIndex() == 0)
        record.setValue(UkiSettings::ModeInput, ui->cbModeInput->currentIndex());
}

bool UkiConfigEditor::isModified() const
{
    UkiSettings shown;
    settings(shown);
    return shown != m_lastLoaded;
}

void UkiConfigEditor::applyFirmwareVersion(const QString &version)
{
    const QVector<uint> numbers = versionNumbers(version);
    const uint major = numbers.value(0);
    const uint minor = numbers.value(1);
    const uint build = numbers.value(2);
    const bool noBuild = numbers.size() < 3;

    // Each number compared on its own, not as a version order: "10.10.10" counts as old.
    const bool show = major > 7 && minor > 5 && (build > 51 || noBuild);
    ui->sbUminus->setVisible(show);
    ui->label_24->setVisible(show);
    // Whatever the version, these stay hidden: the voltage field ends hidden with its label
    // left as the version says.
    ui->sbUminus->hide();
    ui->label_29->hide();
    ui->sbFilter->hide();
    ui->label_30->hide();
    ui->cbX9->hide();

    // Newer firmware has a single T-bridge mode.
    if (major > 7 && minor > 5 && (build > 43 || noBuild)) {
        ui->cbTbridge->removeItem(2);
        ui->cbTbridge->setItemText(1, tr("ВКЛ"));
    }
}

void UkiConfigEditor::on_cbX9_currentIndexChanged(int index)
{
    showX9Arrangement(index != 0);
}

void UkiConfigEditor::on_sbNumUki_valueChanged(int value)
{
    if (value < 2)
        ui->cbModeInput->removeItem(MultiMonitorInputItem);
    else if (ui->cbModeInput->count() == MultiMonitorInputItem)
        ui->cbModeInput->addItem(tr("Мульти-УКИ ОТКЛ"));
}

// Terminal X9 is either the discrete input or the 4-20 mA input; the group shows the one in use.
void UkiConfigEditor::showX9Arrangement(bool analogInput)
{
    ui->groupBox_4->setTitle(analogInput ? tr("4-20") : tr("Дискретный вход"));
    ui->label_9->setVisible(analogInput);
    ui->cbIoutEn->setVisible(analogInput);
    ui->label_4->setVisible(analogInput);
    ui->sbRiso420->setVisible(analogInput);
    ui->label_28->setVisible(!analogInput);
    ui->cbModeInput->setVisible(!analogInput);
}
