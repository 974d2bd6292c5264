#include "ukpsconfigeditor.h"
#include "ui_ukpsconfigeditor.h"

#include "app/programsettings.h"
#include "settings/changemarks.h"

namespace {

template<typename Widget>
struct Binding
{
    UkpsSettings::Field field;
    Widget *widget;
};

// Whole-number fields shown as they are stored.
QVector<Binding<QSpinBox>> spinBoxes(const Ui::UkpsConfigEditor &ui)
{
    return {
            {UkpsSettings::RisoM3s1, ui.sbRisoM3s1},
            {UkpsSettings::RisoM3s2, ui.sbRisoM3s2},
            {UkpsSettings::RisoLoc, ui.sbRisoLoc},
            {UkpsSettings::Urelay, ui.sbUrelay},
            {UkpsSettings::MbAddr, ui.sbMbAddr},
            {UkpsSettings::Cstart, ui.sbCstart},
            {UkpsSettings::UMin, ui.sbU_min},
            {UkpsSettings::UMax, ui.sbU_max},
            {UkpsSettings::IDischMin, ui.sbI_discharge_min},
            {UkpsSettings::IChargeMin, ui.sbI_charge_min},
            {UkpsSettings::NumElemAb, ui.sbNumElemAb},
            {UkpsSettings::OverTemp, ui.sbOverTemp},
            {UkpsSettings::FallTemp, ui.sbFallTemp},
            {UkpsSettings::OverTail, ui.sbOverTail},
            {UkpsSettings::FallTail, ui.sbFallTail},
            {UkpsSettings::OverDly, ui.sbOver_dly},
            {UkpsSettings::FallDly, ui.sbFall_dly},
            {UkpsSettings::BrwireDly, ui.sbBrwire_dly},
            {UkpsSettings::DischDly, ui.sbDisch_dly},
            {UkpsSettings::RippleUDly, ui.sbRippleU_dly},
            {UkpsSettings::RippleIDly, ui.sbRippleI_dly},
            {UkpsSettings::UnschDly, ui.sbUnsch_dly},
            {UkpsSettings::Uminus, ui.sbUminus},
            {UkpsSettings::Urbrk, ui.sbUbr},
    };
}

QVector<Binding<QSlider>> sliders(const Ui::UkpsConfigEditor &ui)
{
    return {
            {UkpsSettings::Bright, ui.sliderBright},
            {UkpsSettings::Contrast, ui.sliderContrast},
    };
}

// Fields in tenths, shown with one decimal.
QVector<Binding<QDoubleSpinBox>> tenthSpinBoxes(const Ui::UkpsConfigEditor &ui)
{
    return {
            {UkpsSettings::Uripple, ui.sbUripple},
            {UkpsSettings::Iripple, ui.sbIripple},
            {UkpsSettings::DeltaSym, ui.sbDeltaSym},
    };
}

// Lists whose index is the stored value, relay assignments included.
QVector<Binding<QComboBox>> indexCombos(const Ui::UkpsConfigEditor &ui)
{
    return {
            {UkpsSettings::TimeM3s, ui.cbTimeM3s},     {UkpsSettings::MbBaud, ui.cbMbBaud},
            {UkpsSettings::MbParity, ui.cbMbParity},   {UkpsSettings::ModeDef, ui.cbModeDef},
            {UkpsSettings::Tbridge, ui.cbTbridge},     {UkpsSettings::Lang, ui.cbLang},
            {UkpsSettings::FRiso1, ui.cbFRiso1},       {UkpsSettings::FRiso2, ui.cbFRiso2},
            {UkpsSettings::FUdis, ui.cbFUdis},         {UkpsSettings::FUminus, ui.cbFUminus},
            {UkpsSettings::FFail, ui.cbFFail},         {UkpsSettings::FBrwire, ui.cbFBrwire},
            {UkpsSettings::FDisch, ui.cbFDisch},       {UkpsSettings::FOver, ui.cbFOver},
            {UkpsSettings::FFall, ui.cbFFall},         {UkpsSettings::FRippleU, ui.cbFRippleU},
            {UkpsSettings::FRippleI, ui.cbFRippleI},   {UkpsSettings::FSymmetry, ui.cbFSymmetry},
            {UkpsSettings::FOverTemp, ui.cbFOverTemp}, {UkpsSettings::FFallTemp, ui.cbFFallTemp},
            {UkpsSettings::FOverTail, ui.cbFOverTail}, {UkpsSettings::FFallTail, ui.cbFFallTail},
            {UkpsSettings::FRisoP, ui.cbFRP},          {UkpsSettings::FRisoN, ui.cbFRN},
            {UkpsSettings::FUnsch, ui.cbFUnsch},
    };
}

struct FlagBinding
{
    int bit;
    QComboBox *widget;
};

// Option bits of Flags; the combo index is the bit value.
QVector<FlagBinding> flagCombos(const Ui::UkpsConfigEditor &ui)
{
    return {
            {5, ui.cbRequEn},
            {6, ui.cbSimmetr},
            {7, ui.cbTail},
            {8, ui.cbTemperature},
            {10, ui.cbDisMax},
    };
}

// Bits of Flags that the form does not show and carries over from the record last shown.
constexpr qint32 keptFlags = 0x8 | 0x10;

// The spin box holds its value on the one-decimal grid, so shown × 10 lies within a rounding
// error of a whole number; rounding it yields the truncated tenths of the decimal shown.
qint32 tenths(double shown)
{
    return qRound(shown * 10.0);
}

// Every field of the form with the key it edits.
QVector<ChangeMarks::Field> markedFields(const Ui::UkpsConfigEditor &ui)
{
    const auto key = [](UkpsSettings::Field field) {
        return QString(UkpsSettings::key(field));
    };
    QVector<ChangeMarks::Field> fields{
            {key(UkpsSettings::TimeMto), ui.cbTimeMto},
            {key(UkpsSettings::NumShunt), ui.cbNumShunt},
    };
    for (const auto &b : spinBoxes(ui))
        fields.append({key(b.field), b.widget});
    for (const auto &b : sliders(ui))
        fields.append({key(b.field), b.widget});
    for (const auto &b : tenthSpinBoxes(ui))
        fields.append({key(b.field), b.widget});
    for (const auto &b : indexCombos(ui))
        fields.append({key(b.field), b.widget});
    for (const auto &b : flagCombos(ui))
        fields.append({key(UkpsSettings::Flags), b.widget, qint32(1) << b.bit});
    return fields;
}

// The "АВТО" item exists only on ukps-ks-2, in front of the three common modes.
constexpr int commonModeCount = 3;

} // namespace

UkpsConfigEditor::UkpsConfigEditor(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::UkpsConfigEditor)
{
    ui->setupUi(this);
    m_marks = new ChangeMarks(this, markedFields(*ui), [this] {
        UkpsSettings shown = m_lastLoaded;
        settings(shown);
        return shown.toLines();
    });
    connect(m_marks, &ChangeMarks::countChanged, this, &UkpsConfigEditor::changedCountChanged);
    applyVariant(DeviceVariant::UkpsKs);
    setSettings(m_lastLoaded);
}

UkpsConfigEditor::~UkpsConfigEditor()
{
    delete ui;
}

void UkpsConfigEditor::setSettings(const UkpsSettings &settings)
{
    m_lastLoaded = settings;
    showRecord(settings);
    m_marks->resetBaseline();
}

void UkpsConfigEditor::takeLines(const QStringList &lines)
{
    UkpsSettings record = m_lastLoaded;
    settings(record);
    record.fromLines(lines);
    showRecord(record);
}

int UkpsConfigEditor::changedCount() const
{
    return m_marks->changedKeys().size();
}

QString UkpsConfigEditor::labelFor(const QString &key) const
{
    return m_marks->labelFor(key);
}

void UkpsConfigEditor::showRecord(const UkpsSettings &settings)
{
    for (const auto &b : spinBoxes(*ui))
        b.widget->setValue(settings.value(b.field));
    for (const auto &b : sliders(*ui))
        b.widget->setValue(settings.value(b.field));
    for (const auto &b : tenthSpinBoxes(*ui))
        b.widget->setValue(settings.value(b.field) / 10.0);
    for (const auto &b : indexCombos(*ui))
        b.widget->setCurrentIndex(settings.value(b.field));

    const qint32 flags = settings.value(UkpsSettings::Flags);
    for (const auto &b : flagCombos(*ui))
        b.widget->setCurrentIndex((flags >> b.bit) & 1);

    switch (settings.value(UkpsSettings::TimeMto)) {
    case 24:
        ui->cbTimeMto->setCurrentIndex(1);
        break;
    case 34:
        ui->cbTimeMto->setCurrentIndex(2);
        break;
    default:
        ui->cbTimeMto->setCurrentIndex(0);
        break;
    }
    ui->cbNumShunt->setCurrentIndex(settings.value(UkpsSettings::NumShunt) - 1);
}

void UkpsConfigEditor::settings(UkpsSettings &target) const
{
    target.setValue(UkpsSettings::AddrUki, m_lastLoaded.value(UkpsSettings::AddrUki));
    target.setValue(UkpsSettings::NumUki, m_lastLoaded.value(UkpsSettings::NumUki));

    for (const auto &b : spinBoxes(*ui))
        target.setValue(b.field, b.widget->value());
    for (const auto &b : sliders(*ui))
        target.setValue(b.field, b.widget->value());
    for (const auto &b : tenthSpinBoxes(*ui))
        target.setValue(b.field, tenths(b.widget->value()));
    for (const auto &b : indexCombos(*ui))
        target.setValue(b.field, b.widget->currentIndex());

    // Every bit the form does not know is dropped on purpose.
    qint32 flags = m_lastLoaded.value(UkpsSettings::Flags) & keptFlags;
    for (const auto &b : flagCombos(*ui)) {
        if (b.widget->currentIndex() == 1)
            flags |= 1 << b.bit;
    }
    target.setValue(UkpsSettings::Flags, flags);

    switch (ui->cbTimeMto->currentIndex()) {
    case 1:
        target.setValue(UkpsSettings::TimeMto, 24);
        break;
    case 2:
        target.setValue(UkpsSettings::TimeMto, 34);
        break;
    default:
        target.setValue(UkpsSettings::TimeMto, 14);
        break;
    }
    target.setValue(UkpsSettings::NumShunt, ui->cbNumShunt->currentIndex() + 1);
}

bool UkpsConfigEditor::isModified() const
{
    UkpsSettings shown;
    settings(shown);
    return shown != m_lastLoaded;
}

void UkpsConfigEditor::applyFirmwareVersion(const QString &version)
{
    const QVector<uint> numbers = parseVersion(version);
    const uint second = numbers.size() > 1 ? numbers.at(1) : 0;
    const bool known = second >= 2 || (numbers.size() >= 3 && numbers.at(2) > 38);
    ui->sbUnsch_dly->setEnabled(known);
    ui->cbFUnsch->setEnabled(known);
}

void UkpsConfigEditor::applyVariant(int variant)
{
    if (variant < DeviceVariant::UkpsKs || variant > DeviceVariant::UkpsKs2)
        return;
    if (variant == m_variant)
        return;
    m_variant = variant;
    adaptToVariant(variant);
}

QVector<uint> UkpsConfigEditor::parseVersion(const QString &version)
{
    QVector<uint> numbers;
    const QStringList parts = version.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    numbers.reserve(parts.size());
    for (const QString &part : parts)
        numbers.append(part.toUInt());
    return numbers;
}

void UkpsConfigEditor::adaptToVariant(int variant)
{
    const bool batteryOnly = variant == DeviceVariant::UkpsAb;
    const bool second = variant == DeviceVariant::UkpsKs2;

    QTabWidget *tabs = ui->tabWidget;
    const int insulationPage = tabs->indexOf(ui->tabSettingsKI);
    if (batteryOnly) {
        if (insulationPage >= 0)
            tabs->removeTab(insulationPage);
    } else if (insulationPage != 0) {
        if (insulationPage > 0)
            tabs->removeTab(insulationPage);
        tabs->insertTab(0, ui->tabSettingsKI, tr("Уставки КИ"));
    }

    showRow(ui->cbModeDef, ui->labelModeDef, !batteryOnly);
    showRow(ui->cbTbridge, ui->labelTbridge, !batteryOnly);
    showRow(ui->cbRequEn, ui->labelRequEn, !batteryOnly);
    showRow(ui->cbDisMax, ui->labelDisMax, !batteryOnly);

    ui->groupBoxSignalTail->setVisible(!second);
    showRow(ui->cbFOverTail, ui->labelFOverTail, !second);
    showRow(ui->cbFFallTail, ui->labelFFallTail, !second);

    showRow(ui->sbRisoLoc, ui->labelRisoLoc, second);
    showRow(ui->sbUminus, ui->labelUminus, second);
    showRow(ui->sbCstart, ui->labelCstart, second);
    showRow(ui->cbFUminus, ui->labelFUminus, second);
    showRow(ui->cbFRP, ui->labelFRP, second);
    showRow(ui->cbFRN, ui->labelFRN, second);

    QComboBox *modes = ui->cbModeDef;
    if (second) {
        if (modes->count() == commonModeCount)
            modes->insertItem(0, tr("АВТО"));
    } else if (modes->count() == commonModeCount + 1) {
        modes->removeItem(0);
    }
    // The items moved under the current one: show the record's mode again, so that a write
    // right after a read sends back what the device holds.
    modes->setCurrentIndex(m_lastLoaded.value(UkpsSettings::ModeDef));
}

void UkpsConfigEditor::showRow(QWidget *field, QLabel *label, bool shown)
{
    field->setVisible(shown);
    label->setVisible(shown);
}
