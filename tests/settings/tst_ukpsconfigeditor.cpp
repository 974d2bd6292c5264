#include "settings/ukpsconfigeditor.h"
#include "settings/ukpssettings.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

using Field = UkpsSettings::Field;
Q_DECLARE_METATYPE(UkpsSettings::Field)

// Set KIRANTO_SHOTS to a folder to keep pictures of the form's pages.
static void keepShot(QWidget *widget, const QString &name)
{
    const QString dir = qEnvironmentVariable("KIRANTO_SHOTS");
    if (!dir.isEmpty())
        widget->grab().save(dir + "/" + name + ".png");
}

// What the user sees in a field: the spin box text with its suffix, the combo text, the slider
// position.
static QString shownText(QWidget *widget)
{
    if (auto spin = qobject_cast<QAbstractSpinBox *>(widget))
        return spin->text();
    if (auto combo = qobject_cast<QComboBox *>(widget))
        return combo->currentText();
    if (auto slider = qobject_cast<QSlider *>(widget))
        return QString::number(slider->value());
    return QString();
}

static QLabel *labelOf(QWidget *editor, QWidget *field)
{
    const QList<QLabel *> labels = editor->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (label->buddy() == field)
            return label;
    }
    return nullptr;
}

// Visible on its own tab page (the group boxes in between count, the tab switching does not).
static bool shownOnPage(QWidget *widget)
{
    QWidget *page = widget;
    while (page && !qobject_cast<QStackedWidget *>(page->parentWidget()))
        page = page->parentWidget();
    return page && widget->isVisibleTo(page);
}

static QStringList tabTitles(QWidget *editor)
{
    auto tabs = editor->findChild<QTabWidget *>("tabWidget");
    QStringList titles;
    for (int i = 0; i < tabs->count(); ++i)
        titles << tabs->tabText(i);
    return titles;
}

static QStringList items(QComboBox *combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts << combo->itemText(i);
    return texts;
}

class tst_UkpsConfigEditor : public QObject
{
    Q_OBJECT
private slots:
    void fieldRanges_data();
    void fieldRanges();
    void relayCombos_data();
    void relayCombos();
    void conversion_data();
    void conversion();
    void tenthsGrid_data();
    void tenthsGrid();
    void flags_data();
    void flags();
    void untouchedFields_data();
    void untouchedFields();
    void defaultRecord();
    void isModified_data();
    void isModified();
    void firmwareVersion_data();
    void firmwareVersion();
    void variant_data();
    void variant();
    void sameVariantChangesNothing();
    void modeDefWithAuto();
    void parseVersion_data();
    void parseVersion();
    void pictures();
};

void tst_UkpsConfigEditor::fieldRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("step");
    QTest::addColumn<QString>("suffix");

    auto row = [](const char *name, double lo, double hi, double step, const QString &suffix) {
        QTest::newRow(name) << QString(name) << lo << hi << step << suffix;
    };
    row("sbRisoM3s1", 1, 999, 1, " кОм");
    row("sbRisoM3s2", 1, 999, 1, " кОм");
    row("sbRisoLoc", 10, 990, 10, " кОм");
    row("sbCstart", 0, 900, 10, "");
    row("sbUrelay", 1, 300, 1, " В");
    row("sbUminus", 1, 300, 1, " В");
    row("sbU_max", 0, 300, 1, " В");
    row("sbU_min", 0, 300, 1, " В");
    row("sbI_discharge_min", -1000, -10, 1, " мА");
    row("sbI_charge_min", 10, 1000, 1, " мА");
    row("sbNumElemAb", 1, 130, 1, "");
    row("sbDeltaSym", 0.1, 10.0, 0.1, " В");
    row("sbOverTemp", 20, 70, 1, " °C");
    row("sbFallTemp", -20, 20, 1, " °C");
    row("sbOver_dly", 1, 120, 1, " сек");
    row("sbFall_dly", 1, 120, 1, " сек");
    row("sbUnsch_dly", 1, 600, 1, " сек");
    row("sbBrwire_dly", 1, 600, 1, " сек");
    row("sbDisch_dly", 1, 600, 1, " сек");
    row("sbRippleU_dly", 1, 120, 1, " сек");
    row("sbRippleI_dly", 1, 120, 1, " сек");
    row("sbOverTail", 10, 60, 1, " В");
    row("sbFallTail", 5, 40, 1, " В");
    row("sbUripple", 1.0, 30.0, 0.5, " %");
    row("sbIripple", 1.0, 200.0, 0.5, " %");
    row("sbUbr", 0, 30000, 10, " мв");
    row("sbMbAddr", 1, 247, 1, "");
    row("sliderBright", 1, 1000, 1, "");
    row("sliderContrast", 1, 100, 1, "");
}

void tst_UkpsConfigEditor::fieldRanges()
{
    QFETCH(QString, name);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, step);
    QFETCH(QString, suffix);
    UkpsConfigEditor editor;
    QWidget *widget = editor.findChild<QWidget *>(name);
    QVERIFY(widget);
    QVERIFY2(labelOf(&editor, widget), "every field has a label");
    if (auto spin = qobject_cast<QSpinBox *>(widget)) {
        QCOMPARE(spin->minimum(), int(minimum));
        QCOMPARE(spin->maximum(), int(maximum));
        QCOMPARE(spin->singleStep(), int(step));
        QCOMPARE(spin->suffix(), suffix);
    } else if (auto dspin = qobject_cast<QDoubleSpinBox *>(widget)) {
        QCOMPARE(dspin->decimals(), 1);
        QCOMPARE(dspin->minimum(), minimum);
        QCOMPARE(dspin->maximum(), maximum);
        QCOMPARE(dspin->singleStep(), step);
        QCOMPARE(dspin->suffix(), suffix);
    } else if (auto slider = qobject_cast<QSlider *>(widget)) {
        QCOMPARE(slider->minimum(), int(minimum));
        QCOMPARE(slider->maximum(), int(maximum));
    } else {
        QFAIL("not a number field");
    }
}

void tst_UkpsConfigEditor::relayCombos_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label");
    for (const char *name : {"cbFOver",
                             "cbFFall",
                             "cbFRippleU",
                             "cbFRippleI",
                             "cbFSymmetry",
                             "cbFOverTail",
                             "cbFFallTail",
                             "cbFOverTemp",
                             "cbFFallTemp",
                             "cbFFail",
                             "cbFRiso1",
                             "cbFRiso2",
                             "cbFUdis",
                             "cbFUminus",
                             "cbFUnsch",
                             "cbFBrwire",
                             "cbFDisch",
                             "cbFRP",
                             "cbFRN"}) {
        QTest::newRow(name) << QString(name) << QString();
    }
}

void tst_UkpsConfigEditor::relayCombos()
{
    QFETCH(QString, name);
    UkpsConfigEditor editor;
    auto combo = editor.findChild<QComboBox *>(name);
    QVERIFY(combo);
    QCOMPARE(items(combo), QStringList({"----", "Реле 1", "Реле 2", "Реле 3", "Реле 4", "Реле 5"}));
    QLabel *label = labelOf(&editor, combo);
    QVERIFY(label);
    QVERIFY(!label->text().isEmpty());
    QVERIFY2(label->toolTip().size() > label->text().size(), "the full name is the tool tip");
}

void tst_UkpsConfigEditor::conversion_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("readBack");

    auto row = [](const char *tag,
                  Field field,
                  int stored,
                  const char *widget,
                  const QString &shown,
                  int readBack) {
        QTest::newRow(tag) << field << stored << QString(widget) << shown << readBack;
    };
    row("RisoM3s1", UkpsSettings::RisoM3s1, 40, "sbRisoM3s1", "40 кОм", 40);
    row("RisoM3s2", UkpsSettings::RisoM3s2, 999, "sbRisoM3s2", "999 кОм", 999);
    row("RisoLoc", UkpsSettings::RisoLoc, 80, "sbRisoLoc", "80 кОм", 80);
    row("TimeMto 24", UkpsSettings::TimeMto, 24, "cbTimeMto", "00:24", 24);
    row("TimeMto 34", UkpsSettings::TimeMto, 34, "cbTimeMto", "00:34", 34);
    row("TimeMto 14", UkpsSettings::TimeMto, 14, "cbTimeMto", "00:14", 14);
    row("TimeMto 44 reads back as 14", UkpsSettings::TimeMto, 44, "cbTimeMto", "00:14", 14);
    row("TimeM3s", UkpsSettings::TimeM3s, 5, "cbTimeM3s", "60 мин", 5);
    row("Urelay", UkpsSettings::Urelay, 250, "sbUrelay", "250 В", 250);
    row("MbAddr", UkpsSettings::MbAddr, 247, "sbMbAddr", "247", 247);
    row("MbBaud", UkpsSettings::MbBaud, 7, "cbMbBaud", "115200", 7);
    row("MbParity", UkpsSettings::MbParity, 2, "cbMbParity", "Нечётная", 2);
    row("ModeDef", UkpsSettings::ModeDef, 2, "cbModeDef", "АБ", 2);
    row("Bright", UkpsSettings::Bright, 700, "sliderBright", "700", 700);
    row("Contrast", UkpsSettings::Contrast, 30, "sliderContrast", "30", 30);
    row("Tbridge", UkpsSettings::Tbridge, 2, "cbTbridge", "ВКЛ.В", 2);
    row("lang", UkpsSettings::Lang, 1, "cbLang", "Английский", 1);
    row("FRiso1", UkpsSettings::FRiso1, 0, "cbFRiso1", "----", 0);
    row("FRiso2", UkpsSettings::FRiso2, 5, "cbFRiso2", "Реле 5", 5);
    row("FUdis", UkpsSettings::FUdis, 2, "cbFUdis", "Реле 2", 2);
    row("FUminus", UkpsSettings::FUminus, 3, "cbFUminus", "Реле 3", 3);
    row("FFail", UkpsSettings::FFail, 4, "cbFFail", "Реле 4", 4);
    row("FBrwire", UkpsSettings::FBrwire, 1, "cbFBrwire", "Реле 1", 1);
    row("FDisch", UkpsSettings::FDisch, 5, "cbFDisch", "Реле 5", 5);
    row("FOver", UkpsSettings::FOver, 4, "cbFOver", "Реле 4", 4);
    row("FFall", UkpsSettings::FFall, 1, "cbFFall", "Реле 1", 1);
    row("FRippleU", UkpsSettings::FRippleU, 5, "cbFRippleU", "Реле 5", 5);
    row("FRippleI", UkpsSettings::FRippleI, 4, "cbFRippleI", "Реле 4", 4);
    row("FSymmetry", UkpsSettings::FSymmetry, 1, "cbFSymmetry", "Реле 1", 1);
    row("FOverTemp", UkpsSettings::FOverTemp, 2, "cbFOverTemp", "Реле 2", 2);
    row("FFallTemp", UkpsSettings::FFallTemp, 3, "cbFFallTemp", "Реле 3", 3);
    row("FOverTail", UkpsSettings::FOverTail, 1, "cbFOverTail", "Реле 1", 1);
    row("FFallTail", UkpsSettings::FFallTail, 5, "cbFFallTail", "Реле 5", 5);
    row("FRisoP", UkpsSettings::FRisoP, 3, "cbFRP", "Реле 3", 3);
    row("FRisoN", UkpsSettings::FRisoN, 4, "cbFRN", "Реле 4", 4);
    row("Cstart", UkpsSettings::Cstart, 1, "sbCstart", "1", 1);
    row("NumShunt 1", UkpsSettings::NumShunt, 1, "cbNumShunt", "75мв, 20А", 1);
    row("NumShunt 14", UkpsSettings::NumShunt, 14, "cbNumShunt", "75мв, 2000А", 14);
    row("UMin", UkpsSettings::UMin, 100, "sbU_min", "100 В", 100);
    row("UMax", UkpsSettings::UMax, 250, "sbU_max", "250 В", 250);
    row("IDischMin", UkpsSettings::IDischMin, -10, "sbI_discharge_min", "-10 мА", -10);
    row("IDischMin lowest", UkpsSettings::IDischMin, -1000, "sbI_discharge_min", "-1000 мА", -1000);
    row("IChargeMin", UkpsSettings::IChargeMin, 10, "sbI_charge_min", "10 мА", 10);
    row("Uripple 2.5 %", UkpsSettings::Uripple, 25, "sbUripple", "2.5 %", 25);
    row("Uripple 30.0 %", UkpsSettings::Uripple, 300, "sbUripple", "30.0 %", 300);
    row("Iripple 2.3 %", UkpsSettings::Iripple, 23, "sbIripple", "2.3 %", 23);
    row("Iripple 200.0 %", UkpsSettings::Iripple, 2000, "sbIripple", "200.0 %", 2000);
    row("NumElemAb", UkpsSettings::NumElemAb, 104, "sbNumElemAb", "104", 104);
    row("DeltaSym 2.0 V", UkpsSettings::DeltaSym, 20, "sbDeltaSym", "2.0 В", 20);
    row("DeltaSym 0.1 V", UkpsSettings::DeltaSym, 1, "sbDeltaSym", "0.1 В", 1);
    row("OverTemp", UkpsSettings::OverTemp, 45, "sbOverTemp", "45 °C", 45);
    row("OverTemp 100 held at the form's 70",
        UkpsSettings::OverTemp,
        100,
        "sbOverTemp",
        "70 °C",
        70);
    row("FallTemp", UkpsSettings::FallTemp, -20, "sbFallTemp", "-20 °C", -20);
    row("OverTail", UkpsSettings::OverTail, 50, "sbOverTail", "50 В", 50);
    row("FallTail", UkpsSettings::FallTail, 20, "sbFallTail", "20 В", 20);
    row("OverDly", UkpsSettings::OverDly, 4, "sbOver_dly", "4 сек", 4);
    row("FallDly", UkpsSettings::FallDly, 120, "sbFall_dly", "120 сек", 120);
    row("BrwireDly", UkpsSettings::BrwireDly, 600, "sbBrwire_dly", "600 сек", 600);
    row("DischDly", UkpsSettings::DischDly, 300, "sbDisch_dly", "300 сек", 300);
    row("RippleUDly", UkpsSettings::RippleUDly, 7, "sbRippleU_dly", "7 сек", 7);
    row("RippleIDly", UkpsSettings::RippleIDly, 8, "sbRippleI_dly", "8 сек", 8);
    row("FUnsch", UkpsSettings::FUnsch, 2, "cbFUnsch", "Реле 2", 2);
    row("UnschDly 600", UkpsSettings::UnschDly, 600, "sbUnsch_dly", "600 сек", 600);
    row("UnschDly 0 held at the form's 1", UkpsSettings::UnschDly, 0, "sbUnsch_dly", "1 сек", 1);
    row("Uminus", UkpsSettings::Uminus, 135, "sbUminus", "135 В", 135);
    row("Urbrk", UkpsSettings::Urbrk, 30000, "sbUbr", "30000 мв", 30000);
}

void tst_UkpsConfigEditor::conversion()
{
    QFETCH(Field, field);
    QFETCH(int, stored);
    QFETCH(QString, widget);
    QFETCH(QString, shown);
    QFETCH(int, readBack);

    UkpsConfigEditor editor;
    UkpsSettings record;
    record.setValue(field, stored);
    editor.setSettings(record);
    QWidget *w = editor.findChild<QWidget *>(widget);
    QVERIFY(w);
    QCOMPARE(shownText(w), shown);

    UkpsSettings target;
    editor.settings(target);
    QCOMPARE(target.value(field), readBack);
}

void tst_UkpsConfigEditor::tenthsGrid_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::newRow("Uripple") << UkpsSettings::Uripple << "sbUripple" << 10 << 300;
    QTest::newRow("Iripple") << UkpsSettings::Iripple << "sbIripple" << 10 << 2000;
    QTest::newRow("DeltaSym") << UkpsSettings::DeltaSym << "sbDeltaSym" << 1 << 100;
}

// Every value the one-decimal spin box can show comes back as its tenths, whether it was
// loaded or entered; 2.3 must give 23, not 22.
void tst_UkpsConfigEditor::tenthsGrid()
{
    QFETCH(Field, field);
    QFETCH(QString, widget);
    QFETCH(int, lowest);
    QFETCH(int, highest);

    UkpsConfigEditor editor;
    auto spin = editor.findChild<QDoubleSpinBox *>(widget);
    QVERIFY(spin);
    UkpsSettings record;
    UkpsSettings target;
    for (int tenths = lowest; tenths <= highest; ++tenths) {
        record.setValue(field, tenths);
        editor.setSettings(record);
        editor.settings(target);
        QCOMPARE(target.value(field), tenths);

        spin->setValue(tenths * 0.1);
        editor.settings(target);
        QCOMPARE(target.value(field), tenths);

        const QString typed = QString::number(tenths / 10) + "." + QString::number(tenths % 10);
        spin->setValue(tenths == highest ? lowest * 0.1 : highest * 0.1);
        spin->clear();
        QTest::keyClicks(spin, typed);
        spin->interpretText();
        QCOMPARE(spin->cleanText(), typed);
        editor.settings(target);
        QCOMPARE(target.value(field), tenths);
    }
}

void tst_UkpsConfigEditor::flags_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("switchedOn");
    QTest::addColumn<int>("readBack");
    QTest::newRow("default 130 loses bit 1") << 130 << QStringList{"cbTail"} << 128;
    QTest::newRow("none") << 0 << QStringList() << 0;
    QTest::newRow("bit 5 Rобщ") << 0x20 << QStringList{"cbRequEn"} << 0x20;
    QTest::newRow("bit 6 symmetry") << 0x40 << QStringList{"cbSimmetr"} << 0x40;
    QTest::newRow("bit 8 temperature") << 0x100 << QStringList{"cbTemperature"} << 0x100;
    QTest::newRow("bit 10 Пмакс") << 0x400 << QStringList{"cbDisMax"} << 0x400;
    QTest::newRow("bits 3 and 4 kept") << 0x18 << QStringList() << 0x18;
    QTest::newRow("all bits")
            << 0x7fffffff
            << QStringList{"cbRequEn", "cbSimmetr", "cbTail", "cbTemperature", "cbDisMax"} << 0x5f8;
}

void tst_UkpsConfigEditor::flags()
{
    QFETCH(int, stored);
    QFETCH(QStringList, switchedOn);
    QFETCH(int, readBack);

    UkpsConfigEditor editor;
    UkpsSettings record;
    record.setValue(UkpsSettings::Flags, stored);
    editor.setSettings(record);
    for (const char *name : {"cbRequEn", "cbSimmetr", "cbTail", "cbTemperature", "cbDisMax"}) {
        auto combo = editor.findChild<QComboBox *>(name);
        QVERIFY(combo);
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->currentIndex(), switchedOn.contains(name) ? 1 : 0);
    }
    QCOMPARE(editor.findChild<QComboBox *>("cbDisMax")->currentText(),
             switchedOn.contains("cbDisMax") ? QString("Пмакс") : QString("Псопт"));

    UkpsSettings target;
    target.setValue(UkpsSettings::Flags, 0x7fffffff);
    editor.settings(target);
    QCOMPARE(target.value(UkpsSettings::Flags), readBack);
}

void tst_UkpsConfigEditor::untouchedFields_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<int>("shownValue");
    QTest::addColumn<int>("targetValue");
    QTest::addColumn<int>("expected");
    QTest::newRow("AddrUki from the record shown") << UkpsSettings::AddrUki << 31 << 7 << 31;
    QTest::newRow("NumUki from the record shown") << UkpsSettings::NumUki << 32 << 3 << 32;
    QTest::newRow("Tcust kept") << UkpsSettings::Tcust << 120 << 50 << 50;
    QTest::newRow("Riso420 kept") << UkpsSettings::Riso420 << 999 << 2 << 2;
    QTest::newRow("CapSopt kept") << UkpsSettings::CapSopt << 60 << 11 << 11;
    QTest::newRow("TempDly kept") << UkpsSettings::TempDly << 120 << 9 << 9;
    QTest::newRow("reserved 1 kept") << UkpsSettings::Reserved1 << 5 << -1 << -1;
    QTest::newRow("reserved 2 kept") << UkpsSettings::Reserved2 << 6 << 77 << 77;
    QTest::newRow("reserved 3 kept") << UkpsSettings::Reserved3 << 1065353216 << 0 << 0;
}

void tst_UkpsConfigEditor::untouchedFields()
{
    QFETCH(Field, field);
    QFETCH(int, shownValue);
    QFETCH(int, targetValue);
    QFETCH(int, expected);

    UkpsConfigEditor editor;
    UkpsSettings shown;
    shown.setValue(field, shownValue);
    editor.setSettings(shown);
    UkpsSettings target;
    target.setValue(field, targetValue);
    editor.settings(target);
    QCOMPARE(target.value(field), expected);
}

// The default record comes back whole except Flags (bit 1 lost) and OverTemp (the form stops
// at 70).
void tst_UkpsConfigEditor::defaultRecord()
{
    UkpsConfigEditor editor;
    const UkpsSettings defaults;
    editor.setSettings(defaults);
    UkpsSettings target;
    editor.settings(target);
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        const auto field = Field(i);
        if (field == UkpsSettings::Flags || field == UkpsSettings::OverTemp)
            continue;
        QVERIFY2(target.value(field) == defaults.value(field),
                 qPrintable(QString("field %1 (%2): %3 instead of %4")
                                    .arg(i)
                                    .arg(UkpsSettings::key(field))
                                    .arg(target.value(field))
                                    .arg(defaults.value(field))));
    }
    QCOMPARE(target.value(UkpsSettings::Flags), 128);
    QCOMPARE(target.value(UkpsSettings::OverTemp), 70);
    QVERIFY(editor.isModified());
}

void tst_UkpsConfigEditor::isModified_data()
{
    QTest::addColumn<QVector<int>>("changes");
    QTest::addColumn<bool>("modified");
    // Field, value pairs applied to a default record before it is shown.
    const QVector<int> holdable{UkpsSettings::Flags, 128, UkpsSettings::OverTemp, 70};
    QTest::newRow("default record") << QVector<int>() << true;
    QTest::newRow("record the form holds") << holdable << false;
    QTest::newRow("bits 3 and 4 carried")
            << (holdable + QVector<int>{UkpsSettings::Flags, 128 | 0x18}) << false;
    QTest::newRow("other address")
            << (holdable + QVector<int>{UkpsSettings::AddrUki, 5, UkpsSettings::NumUki, 6})
            << false;
    QTest::newRow("Tcust not the default")
            << (holdable + QVector<int>{UkpsSettings::Tcust, 10}) << true;
    QTest::newRow("reserved word not the default")
            << (holdable + QVector<int>{UkpsSettings::Reserved3, 0}) << true;
    QTest::newRow("TimeMto 44") << (holdable + QVector<int>{UkpsSettings::TimeMto, 44}) << true;
}

void tst_UkpsConfigEditor::isModified()
{
    QFETCH(QVector<int>, changes);
    QFETCH(bool, modified);

    UkpsSettings record;
    for (int i = 0; i + 1 < changes.size(); i += 2)
        record.setValue(Field(changes.at(i)), changes.at(i + 1));
    UkpsConfigEditor editor;
    editor.setSettings(record);
    QCOMPARE(editor.isModified(), modified);

    if (!modified) {
        auto spin = editor.findChild<QSpinBox *>("sbUbr");
        spin->setValue(spin->value() + 10);
        QVERIFY(editor.isModified());
        spin->setValue(spin->value() - 10);
        QVERIFY(!editor.isModified());
    }
}

void tst_UkpsConfigEditor::firmwareVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("1.1.39") << "1.1.39" << true;
    QTest::newRow("1.1.38") << "1.1.38" << false;
    QTest::newRow("1.1") << "1.1" << false;
    QTest::newRow("1.2") << "1.2" << true;
    QTest::newRow("3.0.40") << "3.0.40" << true;
    QTest::newRow("3.2.0") << "3.2.0" << true;
    QTest::newRow("5.10") << "5.10" << true;
    QTest::newRow("one number") << "5" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("letters read as 0") << "x.y.z" << false;
}

void tst_UkpsConfigEditor::firmwareVersion()
{
    QFETCH(QString, version);
    QFETCH(bool, enabled);

    UkpsConfigEditor editor;
    auto delay = editor.findChild<QSpinBox *>("sbUnsch_dly");
    auto relay = editor.findChild<QComboBox *>("cbFUnsch");
    QVERIFY(delay->isEnabled());
    QVERIFY(relay->isEnabled());
    // Both ways: from enabled and from disabled.
    for (const QString &before : {QString("1.2"), QString("1.1")}) {
        editor.applyFirmwareVersion(before);
        editor.applyFirmwareVersion(version);
        QCOMPARE(delay->isEnabled(), enabled);
        QCOMPARE(relay->isEnabled(), enabled);
    }
}

void tst_UkpsConfigEditor::variant_data()
{
    QTest::addColumn<QVector<int>>("steps");
    QTest::addColumn<int>("expected");
    QTest::newRow("initial form is ukps-ks") << QVector<int>() << 0;
    QTest::newRow("ukps-ks") << QVector<int>{0} << 0;
    QTest::newRow("ukps-ab") << QVector<int>{1} << 1;
    QTest::newRow("ukps-ks-2") << QVector<int>{2} << 2;
    QTest::newRow("0 2 1 2 0") << QVector<int>{0, 2, 1, 2, 0} << 0;
    QTest::newRow("0 2 1 2") << QVector<int>{0, 2, 1, 2} << 2;
    QTest::newRow("2 1") << QVector<int>{2, 1} << 1;
    QTest::newRow("2 0 2 0 2") << QVector<int>{2, 0, 2, 0, 2} << 2;
    QTest::newRow("1 0") << QVector<int>{1, 0} << 0;
    QTest::newRow("1 2 1 1") << QVector<int>{1, 2, 1, 1} << 1;
    QTest::newRow("2 2 2") << QVector<int>{2, 2, 2} << 2;
    QTest::newRow("insulation monitor ignored") << QVector<int>{2, 3} << 2;
}

void tst_UkpsConfigEditor::variant()
{
    QFETCH(QVector<int>, steps);
    QFETCH(int, expected);

    UkpsConfigEditor editor;
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    for (int step : steps)
        editor.applyVariant(step);

    const QStringList common{"Уставки АБ", "Сигнализация", "Опции"};
    QCOMPARE(tabTitles(&editor), expected == 1 ? common : QStringList{"Уставки КИ"} + common);
    auto tabs = editor.findChild<QTabWidget *>("tabWidget");
    QCOMPARE(tabs->indexOf(editor.findChild<QWidget *>("tabSettingsKI")), expected == 1 ? -1 : 0);

    const QStringList options{"cbModeDef", "cbTbridge", "cbRequEn", "cbDisMax"};
    const QStringList tail{"cbFOverTail", "cbFFallTail"};
    const QStringList secondOnly{"cbFUminus", "cbFRP", "cbFRN"};
    const QStringList insulation{"sbRisoLoc", "sbUminus", "sbCstart"};
    QStringList shown{"cbSimmetr", "cbTail", "cbTemperature", "cbFRiso1", "cbFUdis", "sbUnsch_dly"};
    QStringList hidden;
    (expected == 1 ? hidden : shown) << options;
    (expected == 2 ? hidden : shown) << tail;
    (expected == 2 ? shown : hidden) << secondOnly;
    if (expected != 1) {
        shown << "sbRisoM3s1"
              << "sbUrelay";
        (expected == 2 ? shown : hidden) << insulation;
    }
    for (const QString &name : qAsConst(shown)) {
        QWidget *field = editor.findChild<QWidget *>(name);
        QVERIFY2(field && shownOnPage(field), qPrintable(name));
        QVERIFY2(shownOnPage(labelOf(&editor, field)), qPrintable(name));
    }
    for (const QString &name : qAsConst(hidden)) {
        QWidget *field = editor.findChild<QWidget *>(name);
        QVERIFY2(field && !shownOnPage(field), qPrintable(name));
        QVERIFY2(!shownOnPage(labelOf(&editor, field)), qPrintable(name));
    }
    QCOMPARE(!editor.findChild<QGroupBox *>("groupBoxSignalTail")->isHidden(), expected != 2);

    auto modes = editor.findChild<QComboBox *>("cbModeDef");
    QStringList modeItems{"КИ+АБ", "КИ", "АБ"};
    if (expected == 2) {
        modeItems.prepend("АВТО");
        QCOMPARE(modes->currentIndex(), 0);
    }
    QCOMPARE(items(modes), modeItems);
}

// The variant is remembered: the same one again leaves the user's choices alone.
void tst_UkpsConfigEditor::sameVariantChangesNothing()
{
    UkpsConfigEditor editor;
    editor.applyVariant(2);
    auto modes = editor.findChild<QComboBox *>("cbModeDef");
    modes->setCurrentIndex(3);
    editor.applyVariant(2);
    QCOMPARE(modes->count(), 4);
    QCOMPARE(modes->currentText(), QString("АБ"));

    auto tabs = editor.findChild<QTabWidget *>("tabWidget");
    editor.applyVariant(1);
    editor.applyVariant(1);
    QCOMPARE(tabs->count(), 3);
}

// On ukps-ks-2 "АВТО" is mode 0 and the common modes move up by one.
void tst_UkpsConfigEditor::modeDefWithAuto()
{
    UkpsConfigEditor editor;
    editor.applyVariant(2);
    auto modes = editor.findChild<QComboBox *>("cbModeDef");
    UkpsSettings record;
    UkpsSettings target;
    for (int mode = 0; mode < 4; ++mode) {
        record.setValue(UkpsSettings::ModeDef, mode);
        editor.setSettings(record);
        QCOMPARE(modes->currentIndex(), mode);
        editor.settings(target);
        QCOMPARE(target.value(UkpsSettings::ModeDef), mode);
    }
    QCOMPARE(modes->currentText(), QString("АБ"));
}

void tst_UkpsConfigEditor::parseVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QVector<uint>>("numbers");
    QTest::newRow("three numbers") << "5.1.39" << QVector<uint>{5, 1, 39};
    QTest::newRow("two numbers") << "3.2" << QVector<uint>{3, 2};
    QTest::newRow("insulation monitor") << "9.6.43" << QVector<uint>{9, 6, 43};
    QTest::newRow("empty parts dropped") << ".4..12." << QVector<uint>{4, 12};
    QTest::newRow("letters read as 0") << "8.b1.7" << QVector<uint>{8, 0, 7};
    QTest::newRow("negative reads as 0") << "-3.1" << QVector<uint>{0, 1};
    QTest::newRow("blanks around a number") << " 4 .1" << QVector<uint>{4, 1};
    QTest::newRow("empty") << "" << QVector<uint>();
    QTest::newRow("only dots") << "..." << QVector<uint>();
    QTest::newRow("beyond 32 bits reads as 0") << "4294967296.1" << QVector<uint>{0, 1};
}

void tst_UkpsConfigEditor::parseVersion()
{
    QFETCH(QString, version);
    QFETCH(QVector<uint>, numbers);
    QCOMPARE(UkpsConfigEditor::parseVersion(version), numbers);
}

void tst_UkpsConfigEditor::pictures()
{
    if (qEnvironmentVariableIsEmpty("KIRANTO_SHOTS"))
        QSKIP("KIRANTO_SHOTS not set");
    for (int variant : {0, 2, 1}) {
        UkpsConfigEditor editor;
        editor.applyVariant(variant);
        editor.resize(editor.sizeHint());
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));
        auto tabs = editor.findChild<QTabWidget *>("tabWidget");
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            keepShot(&editor,
                     QString("ukps-%1-%2").arg(variant).arg(tabs->widget(i)->objectName()));
        }
    }
}

QTEST_MAIN(tst_UkpsConfigEditor)
#include "tst_ukpsconfigeditor.moc"
