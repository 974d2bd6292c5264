#include "settings/ukiconfigeditor.h"
#include "settings/ukisettings.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QtTest>

Q_DECLARE_METATYPE(UkiSettings::Field)

// Set KIRANTO_SHOTS to a folder to keep pictures of what the tests show.
static void keepShot(QWidget *widget, const QString &name)
{
    const QString dir = qEnvironmentVariable("KIRANTO_SHOTS");
    if (!dir.isEmpty())
        widget->grab().save(dir + "/" + name + ".png");
}

static QStringList itemsOf(const QComboBox *combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

// What a field widget shows: the index of a combo, the value of a spin box or slider.
static int shown(const QWidget *widget)
{
    if (auto combo = qobject_cast<const QComboBox *>(widget))
        return combo->currentIndex();
    if (auto spin = qobject_cast<const QSpinBox *>(widget))
        return spin->value();
    if (auto slider = qobject_cast<const QSlider *>(widget))
        return slider->value();
    return INT_MIN;
}

static void setShown(QWidget *widget, int value)
{
    if (auto combo = qobject_cast<QComboBox *>(widget))
        combo->setCurrentIndex(value);
    else if (auto spin = qobject_cast<QSpinBox *>(widget))
        spin->setValue(value);
    else if (auto slider = qobject_cast<QSlider *>(widget))
        slider->setValue(value);
}

// A record every widget shows exactly, so that it comes back unchanged.
static UkiSettings exactRecord()
{
    UkiSettings record;
    record.setValue(UkiSettings::Flags, 0x2);
    return record;
}

static UkiSettings readBack(const UkiConfigEditor &editor, UkiSettings record = UkiSettings())
{
    editor.settings(record);
    return record;
}

class tst_UkiConfigEditor : public QObject
{
    Q_OBJECT
private slots:
    void groups_data();
    void groups();
    void labels_data();
    void labels();
    void comboItems_data();
    void comboItems();
    void spinRanges_data();
    void spinRanges();
    void sliderRanges_data();
    void sliderRanges();
    void freshEditorShowsDefaults();
    void conversion_data();
    void conversion();
    void filterTypedOffStep();
    void optionBitCombos_data();
    void optionBitCombos();
    void flagsRebuilt_data();
    void flagsRebuilt();
    void carriedBitsComeFromLastLoaded();
    void defaultRecordIsModified();
    void modifiedByEachField_data();
    void modifiedByEachField();
    void multiMonitorInputSelected();
    void analogInputKeepsModeInput();
    void x9Arrangement_data();
    void x9Arrangement();
    void numberOfMonitorsItem_data();
    void numberOfMonitorsItem();
    void firmwareVersion_data();
    void firmwareVersion();
    void picture();
};

void tst_UkiConfigEditor::groups_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    const auto row = [](const char *name, const char *title) {
        QTest::newRow(name) << name << title;
    };
    row("groupBox_3", "Уставки по сопротивлению");
    row("groupBox_7", "Уставки по напряжению");
    row("groupBox_8", "Дисплей УКИ");
    row("groupBox_9", "Уставки по ёмкости");
    row("groupBox", "MODBUS");
    row("groupBox_4", "Дискретный вход");
    row("groupBox_2", "Уставки по времени");
    row("groupBox_6", "Опции");
    row("groupBox_5", "Настройки CAN");
}

void tst_UkiConfigEditor::groups()
{
    QFETCH(QString, name);
    QFETCH(QString, title);
    UkiConfigEditor editor;
    QCOMPARE(editor.objectName(), QString("UkiConfigEditor"));
    auto group = editor.findChild<QGroupBox *>(name);
    QVERIFY(group);
    QCOMPARE(group->title(), title);
}

void tst_UkiConfigEditor::labels_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("labelName");

    const auto row = [](const char *group,
                        const char *field,
                        const char *text,
                        const char *toolTip = "",
                        const char *labelName = "") {
        QTest::newRow(field) << group << field << text << toolTip << labelName;
    };
    row("groupBox_3", "sbRisoM3s1", "Rуст1", "Предупредительный порог сопротивления изоляции");
    row("groupBox_3", "sbRisoM3s2", "Rуст2", "Аварийный порог сопротивления изоляции");
    row("groupBox_3", "sbRisoLoc", "Rлок", "Порог сопротивления изоляции при поиске");
    row("groupBox_7", "sbUrelay", "Перекос");
    row("groupBox_7", "sbUminus", "U(-)", "", "label_24");
    row("groupBox_8", "sliderBright", "Яркость");
    row("groupBox_8", "sliderContrast", "Контраст");
    row("groupBox_8", "cbLang", "Язык интерфейса");
    row("groupBox_9", "sbCapSopt", "Емкость СОПТ");
    row("groupBox", "sbMbAddr", "Адрес");
    row("groupBox", "cbMbBaud", "Скорость");
    row("groupBox", "cbMbParity", "Чётность");
    row("groupBox_4", "sbRiso420", "Rмакс", "", "label_4");
    row("groupBox_4", "cbIoutEn", "Выход 4-20мА", "", "label_9");
    row("groupBox_4", "cbModeInput", "Назначение", "", "label_28");
    row("groupBox_2", "cbTimeMto", "Тк.и.");
    row("groupBox_2", "cbTimeM3s", "Тк.п.");
    row("groupBox_2", "cbTcust", "Тиск");
    row("groupBox_6", "cbGSearch", "Групп. поиск");
    row("groupBox_6", "cbModeDef", "Режим работы по умолчанию");
    row("groupBox_6", "cbAutoRan", "Авто-уст");
    row("groupBox_6", "cbMulti", "Мульти-УКИ");
    row("groupBox_6", "cbRisoMethod", "Метод контроля:");
    row("groupBox_6", "cbTbridge", "Т-мост");
    row("groupBox_6", "cbDisMax", "Перекос");
    row("groupBox_6", "cbRequEn", "Rобщ");
    row("groupBox_6", "cbX9", "X9", "", "label_30");
    row("groupBox_6", "sbFilter", "Сглаживание контроля", "", "label_29");
    row("groupBox_5", "sbNumUki", "Число УКИ");
    row("groupBox_5", "sbAddrUki", "Адрес УКИ");
}

// Each field sits in its group and is named by a label of its own.
void tst_UkiConfigEditor::labels()
{
    QFETCH(QString, group);
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    QFETCH(QString, labelName);
    UkiConfigEditor editor;
    auto box = editor.findChild<QGroupBox *>(group);
    QVERIFY(box);
    auto widget = box->findChild<QWidget *>(field);
    QVERIFY2(widget, qPrintable(field));

    QLabel *label = nullptr;
    const QList<QLabel *> labels = box->findChildren<QLabel *>();
    for (QLabel *candidate : labels) {
        if (candidate->buddy() == widget)
            label = candidate;
    }
    QVERIFY2(label, "no label with this field as buddy");
    QCOMPARE(label->text(), text);
    QCOMPARE(label->toolTip(), toolTip);
    QVERIFY(label->alignment() & Qt::AlignRight);
    if (!labelName.isEmpty())
        QCOMPARE(label->objectName(), labelName);
}

void tst_UkiConfigEditor::comboItems_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("items");
    // Items separated by '|'.
    const auto row = [](const char *name, const QString &items) {
        QTest::newRow(name) << name << items.split('|');
    };
    row("cbTimeMto", "АВТ|00:20|00:30|00:40|00:50|01:00");
    row("cbTcust", "ОТКЛ|00:10|00:20|00:30|00:40|00:50|01:00|01:10|01:20|01:30|01:40|01:50|02:00");
    row("cbTimeM3s", "Непрерывно|5 мин|10 мин|20 мин|30 мин|60 мин");
    row("cbMbBaud", "1200|2400|4800|9600|19200|38400|57600|115200");
    row("cbMbParity", "Нет контроля|Чётная|Нечётная");
    row("cbModeDef", "АВТ.|ОТКЛ.|ПОИСК|ИЗМ.R|ИЗМ.C|ЛОК.");
    row("cbTbridge", "ОТКЛ|ВКЛ.Н|ВКЛ.В");
    row("cbLang", "Русский|Английский");
    row("cbModeInput", "ОТКЛ|Режим локатора|Т-мост ОТКЛ");
    row("cbGSearch", "ОТКЛ|ВКЛ");
    row("cbRisoMethod", "1|2");
    row("cbIoutEn", "ОТКЛ|ВКЛ");
    row("cbRequEn", "ОТКЛ|ВКЛ");
    row("cbAutoRan", "Rуст1|Rуст2");
    row("cbDisMax", "Псопт|Пмакс");
    row("cbMulti", "ОТКЛ|ВКЛ");
    row("cbX9", "Дискр. вх.|4-20 мА");
}

void tst_UkiConfigEditor::comboItems()
{
    QFETCH(QString, name);
    QFETCH(QStringList, items);
    UkiConfigEditor editor;
    auto combo = editor.findChild<QComboBox *>(name);
    QVERIFY(combo);
    QCOMPARE(itemsOf(combo), items);
}

void tst_UkiConfigEditor::spinRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("sbAddrUki") << "sbAddrUki" << 0 << 31 << 1 << "";
    QTest::newRow("sbNumUki") << "sbNumUki" << 1 << 32 << 1 << "";
    QTest::newRow("sbRisoM3s1") << "sbRisoM3s1" << 1 << 999 << 1 << " кОм";
    QTest::newRow("sbRisoM3s2") << "sbRisoM3s2" << 1 << 999 << 1 << " кОм";
    QTest::newRow("sbRisoLoc") << "sbRisoLoc" << 10 << 990 << 10 << " кОм";
    QTest::newRow("sbRiso420") << "sbRiso420" << 0 << 999 << 1 << " кОм";
    QTest::newRow("sbUrelay") << "sbUrelay" << 1 << 300 << 1 << " в";
    QTest::newRow("sbUminus") << "sbUminus" << 1 << 300 << 1 << " в";
    QTest::newRow("sbMbAddr, spin box default") << "sbMbAddr" << 0 << 99 << 1 << "";
    QTest::newRow("sbCapSopt") << "sbCapSopt" << 0 << 900 << 10 << " мкФ";
    QTest::newRow("sbFilter in percent") << "sbFilter" << 0 << 50 << 5 << "%";
}

void tst_UkiConfigEditor::spinRanges()
{
    QFETCH(QString, name);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, step);
    QFETCH(QString, suffix);
    UkiConfigEditor editor;
    auto spin = editor.findChild<QSpinBox *>(name);
    QVERIFY(spin);
    QCOMPARE(spin->minimum(), minimum);
    QCOMPARE(spin->maximum(), maximum);
    QCOMPARE(spin->singleStep(), step);
    QCOMPARE(spin->suffix(), suffix);
}

void tst_UkiConfigEditor::sliderRanges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::newRow("sliderBright") << "sliderBright" << 1 << 1000;
    QTest::newRow("sliderContrast") << "sliderContrast" << 1 << 100;
}

void tst_UkiConfigEditor::sliderRanges()
{
    QFETCH(QString, name);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    UkiConfigEditor editor;
    auto slider = editor.findChild<QSlider *>(name);
    QVERIFY(slider);
    QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(slider->minimum(), minimum);
    QCOMPARE(slider->maximum(), maximum);
}

// Before anything is loaded the form holds the default record (less the bits it cannot show).
void tst_UkiConfigEditor::freshEditorShowsDefaults()
{
    UkiConfigEditor editor;
    QCOMPARE(readBack(editor).values(), exactRecord().values());
    QCOMPARE(editor.findChild<QComboBox *>("cbTimeMto")->currentText(), QString("00:20"));
    QCOMPARE(editor.findChild<QSpinBox *>("sbFilter")->value(), 50);
}

void tst_UkiConfigEditor::conversion_data()
{
    QTest::addColumn<UkiSettings::Field>("field");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("shownValue");
    QTest::addColumn<int>("back");

    QTest::newRow("TimeMto 0 is АВТ") << UkiSettings::TimeMto << "cbTimeMto" << 0 << 0 << 0;
    QTest::newRow("TimeMto 20 is 00:20") << UkiSettings::TimeMto << "cbTimeMto" << 20 << 1 << 20;
    QTest::newRow("TimeMto 30 falls to 00:20")
            << UkiSettings::TimeMto << "cbTimeMto" << 30 << 1 << 20;
    QTest::newRow("TimeMto 40 is 00:30") << UkiSettings::TimeMto << "cbTimeMto" << 40 << 2 << 40;
    QTest::newRow("TimeMto 60 is 00:40") << UkiSettings::TimeMto << "cbTimeMto" << 60 << 3 << 60;
    QTest::newRow("TimeMto 80 is 00:50") << UkiSettings::TimeMto << "cbTimeMto" << 80 << 4 << 80;
    QTest::newRow("TimeMto 100 is 01:00") << UkiSettings::TimeMto << "cbTimeMto" << 100 << 5 << 100;
    QTest::newRow("Tcust 0 is ОТКЛ") << UkiSettings::Tcust << "cbTcust" << 0 << 0 << 0;
    QTest::newRow("Tcust 10 is 00:10") << UkiSettings::Tcust << "cbTcust" << 10 << 1 << 10;
    QTest::newRow("Tcust 15 falls to 00:10") << UkiSettings::Tcust << "cbTcust" << 15 << 1 << 10;
    QTest::newRow("Tcust 120 is 02:00") << UkiSettings::Tcust << "cbTcust" << 120 << 12 << 120;
    QTest::newRow("Averaging 0") << UkiSettings::Averaging << "sbFilter" << 0 << 0 << 0;
    QTest::newRow("Averaging 7 is 35 %") << UkiSettings::Averaging << "sbFilter" << 7 << 35 << 7;
    QTest::newRow("Averaging 10 is 50 %") << UkiSettings::Averaging << "sbFilter" << 10 << 50 << 10;
    QTest::newRow("Averaging 50 clamped to 50 %")
            << UkiSettings::Averaging << "sbFilter" << 50 << 50 << 10;
    QTest::newRow("TimeM3s 5") << UkiSettings::TimeM3s << "cbTimeM3s" << 5 << 5 << 5;
    QTest::newRow("MbBaud 7") << UkiSettings::MbBaud << "cbMbBaud" << 7 << 7 << 7;
    QTest::newRow("MbParity 2") << UkiSettings::MbParity << "cbMbParity" << 2 << 2 << 2;
    QTest::newRow("ModeDef 5") << UkiSettings::ModeDef << "cbModeDef" << 5 << 5 << 5;
    QTest::newRow("Tbridge 2") << UkiSettings::Tbridge << "cbTbridge" << 2 << 2 << 2;
    QTest::newRow("lang 1") << UkiSettings::Lang << "cbLang" << 1 << 1 << 1;
    QTest::newRow("ModeInput 2") << UkiSettings::ModeInput << "cbModeInput" << 2 << 2 << 2;
    QTest::newRow("AddrUki 31") << UkiSettings::AddrUki << "sbAddrUki" << 31 << 31 << 31;
    QTest::newRow("NumUki 32") << UkiSettings::NumUki << "sbNumUki" << 32 << 32 << 32;
    QTest::newRow("NumUki 0 raised to 1") << UkiSettings::NumUki << "sbNumUki" << 0 << 1 << 1;
    QTest::newRow("RisoM3s1 999") << UkiSettings::RisoM3s1 << "sbRisoM3s1" << 999 << 999 << 999;
    QTest::newRow("RisoM3s2 1") << UkiSettings::RisoM3s2 << "sbRisoM3s2" << 1 << 1 << 1;
    QTest::newRow("RisoLoc 990") << UkiSettings::RisoLoc << "sbRisoLoc" << 990 << 990 << 990;
    QTest::newRow("Riso420 2") << UkiSettings::Riso420 << "sbRiso420" << 2 << 2 << 2;
    QTest::newRow("Urelay 300") << UkiSettings::Urelay << "sbUrelay" << 300 << 300 << 300;
    QTest::newRow("Uminus 0 raised to 1") << UkiSettings::Uminus << "sbUminus" << 0 << 1 << 1;
    QTest::newRow("MbAddr 99") << UkiSettings::MbAddr << "sbMbAddr" << 99 << 99 << 99;
    QTest::newRow("MbAddr 247 cut to 99") << UkiSettings::MbAddr << "sbMbAddr" << 247 << 99 << 99;
    QTest::newRow("CapSopt 900") << UkiSettings::CapSopt << "sbCapSopt" << 900 << 900 << 900;
    QTest::newRow("Bright 1000") << UkiSettings::Bright << "sliderBright" << 1000 << 1000 << 1000;
    QTest::newRow("Bright 0 raised to 1") << UkiSettings::Bright << "sliderBright" << 0 << 1 << 1;
    QTest::newRow("Contrast 100") << UkiSettings::Contrast << "sliderContrast" << 100 << 100 << 100;
}

void tst_UkiConfigEditor::conversion()
{
    QFETCH(UkiSettings::Field, field);
    QFETCH(QString, widget);
    QFETCH(int, stored);
    QFETCH(int, shownValue);
    QFETCH(int, back);

    UkiConfigEditor editor;
    UkiSettings record = exactRecord();
    record.setValue(field, stored);
    editor.setSettings(record);
    QCOMPARE(shown(editor.findChild<QWidget *>(widget)), shownValue);

    UkiSettings expected = record;
    expected.setValue(field, back);
    QCOMPARE(readBack(editor).values(), expected.values());
    QCOMPARE(editor.isModified(), stored != back);
}

// Smoothing steps by 5 %; a value typed off the step falls to the step below.
void tst_UkiConfigEditor::filterTypedOffStep()
{
    UkiConfigEditor editor;
    auto filter = editor.findChild<QSpinBox *>("sbFilter");
    filter->setValue(35);
    filter->stepUp();
    QCOMPARE(filter->value(), 40);
    filter->selectAll();
    QTest::keyClicks(filter, "37");
    QTest::keyClick(filter, Qt::Key_Enter);
    QCOMPARE(filter->value(), 35);
    QCOMPARE(readBack(editor).value(UkiSettings::Averaging), 7);
}

void tst_UkiConfigEditor::optionBitCombos_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<int>("mask");
    QTest::newRow("bit 1 group search") << "cbGSearch" << 0x2;
    QTest::newRow("bit 2 control method") << "cbRisoMethod" << 0x4;
    QTest::newRow("bit 4 4-20 mA output") << "cbIoutEn" << 0x10;
    QTest::newRow("bit 5 total resistance") << "cbRequEn" << 0x20;
    QTest::newRow("bit 9 automatic threshold") << "cbAutoRan" << 0x200;
    QTest::newRow("bit 10 imbalance reference") << "cbDisMax" << 0x400;
    QTest::newRow("bit 11 several monitors") << "cbMulti" << 0x800;
    QTest::newRow("bit 13 terminal X9") << "cbX9" << 0x2000;
}

// Each option combo follows its own bit alone, both ways.
void tst_UkiConfigEditor::optionBitCombos()
{
    QFETCH(QString, combo);
    QFETCH(int, mask);
    UkiConfigEditor editor;
    auto box = editor.findChild<QComboBox *>(combo);
    QVERIFY(box);

    UkiSettings record;
    record.setValue(UkiSettings::Flags, mask);
    editor.setSettings(record);
    QCOMPARE(box->currentIndex(), 1);
    QCOMPARE(readBack(editor).value(UkiSettings::Flags), mask);

    record.setValue(UkiSettings::Flags, 0x7fffffff & ~mask);
    editor.setSettings(record);
    QCOMPARE(box->currentIndex(), 0);
    QCOMPARE(readBack(editor).value(UkiSettings::Flags) & mask, 0);

    record.setValue(UkiSettings::Flags, 0);
    editor.setSettings(record);
    box->setCurrentIndex(1);
    QCOMPARE(readBack(editor).value(UkiSettings::Flags), mask);
}

void tst_UkiConfigEditor::flagsRebuilt_data()
{
    QTest::addColumn<int>("loaded");
    QTest::addColumn<int>("back");
    QTest::newRow("default 130 loses bit 7") << 130 << 2;
    QTest::newRow("bit 0 cleared") << 0x1 << 0;
    QTest::newRow("bit 3 carried") << 0x8 << 0x8;
    QTest::newRow("bit 6 cleared") << 0x40 << 0;
    QTest::newRow("bit 7 cleared") << 0x80 << 0;
    QTest::newRow("bit 8 cleared") << 0x100 << 0;
    QTest::newRow("bit 12 carried") << 0x1000 << 0x1000;
    QTest::newRow("bit 14 cleared") << 0x4000 << 0;
    QTest::newRow("bit 30 cleared") << 0x40000000 << 0;
    QTest::newRow("every bit") << 0x7fffffff << 0x3e3e;
}

void tst_UkiConfigEditor::flagsRebuilt()
{
    QFETCH(int, loaded);
    QFETCH(int, back);
    UkiConfigEditor editor;
    UkiSettings record;
    record.setValue(UkiSettings::Flags, loaded);
    editor.setSettings(record);

    UkiSettings target;
    target.setValue(UkiSettings::Flags, 0x7fffffff);
    editor.settings(target);
    QCOMPARE(target.value(UkiSettings::Flags), back);
}

// Bits 3 and 12 follow the record last shown, not the record being filled.
void tst_UkiConfigEditor::carriedBitsComeFromLastLoaded()
{
    UkiConfigEditor editor;
    UkiSettings record;
    record.setValue(UkiSettings::Flags, 0x1008);
    editor.setSettings(record);
    editor.findChild<QComboBox *>("cbMulti")->setCurrentIndex(1);

    UkiSettings target;
    target.setValue(UkiSettings::Flags, 0);
    editor.settings(target);
    QCOMPARE(target.value(UkiSettings::Flags), 0x1808);

    record.setValue(UkiSettings::Flags, 0x8);
    editor.setSettings(record);
    QCOMPARE(readBack(editor).value(UkiSettings::Flags), 0x8);
}

// The default "Flags" 130 has bit 7, which the form drops: the form counts as changed at once.
void tst_UkiConfigEditor::defaultRecordIsModified()
{
    UkiConfigEditor editor;
    QVERIFY(editor.isModified());
    editor.setSettings(UkiSettings());
    QVERIFY(editor.isModified());
    editor.setSettings(readBack(editor));
    QVERIFY(!editor.isModified());
}

void tst_UkiConfigEditor::modifiedByEachField_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("newValue");
    QTest::newRow("AddrUki") << "sbAddrUki" << 5;
    QTest::newRow("NumUki") << "sbNumUki" << 4;
    QTest::newRow("RisoM3s1") << "sbRisoM3s1" << 41;
    QTest::newRow("RisoM3s2") << "sbRisoM3s2" << 21;
    QTest::newRow("RisoLoc") << "sbRisoLoc" << 90;
    QTest::newRow("TimeMto") << "cbTimeMto" << 0;
    QTest::newRow("Tcust") << "cbTcust" << 3;
    QTest::newRow("TimeM3s") << "cbTimeM3s" << 2;
    QTest::newRow("Riso420") << "sbRiso420" << 300;
    QTest::newRow("Flags") << "cbRequEn" << 1;
    QTest::newRow("Urelay") << "sbUrelay" << 100;
    QTest::newRow("Uminus") << "sbUminus" << 100;
    QTest::newRow("MbAddr") << "sbMbAddr" << 7;
    QTest::newRow("MbBaud") << "cbMbBaud" << 7;
    QTest::newRow("MbParity") << "cbMbParity" << 1;
    QTest::newRow("CapSopt") << "sbCapSopt" << 100;
    QTest::newRow("ModeDef") << "cbModeDef" << 2;
    QTest::newRow("Bright") << "sliderBright" << 700;
    QTest::newRow("Contrast") << "sliderContrast" << 50;
    QTest::newRow("Tbridge") << "cbTbridge" << 1;
    QTest::newRow("lang") << "cbLang" << 1;
    QTest::newRow("Averaging") << "sbFilter" << 25;
    QTest::newRow("ModeInput") << "cbModeInput" << 1;
}

// Any one of the 23 fields changed in the form makes it modified; set back, it is not.
void tst_UkiConfigEditor::modifiedByEachField()
{
    QFETCH(QString, widget);
    QFETCH(int, newValue);
    UkiConfigEditor editor;
    editor.setSettings(exactRecord());
    QVERIFY(!editor.isModified());

    QWidget *field = editor.findChild<QWidget *>(widget);
    QVERIFY(field);
    const int before = shown(field);
    setShown(field, newValue);
    QCOMPARE(shown(field), newValue);
    QVERIFY(editor.isModified());
    setShown(field, before);
    QVERIFY(!editor.isModified());
}

// The fourth input function exists because the number of monitors is set first.
void tst_UkiConfigEditor::multiMonitorInputSelected()
{
    UkiConfigEditor editor;
    UkiSettings record = exactRecord();
    record.setValue(UkiSettings::NumUki, 2);
    record.setValue(UkiSettings::ModeInput, 3);
    editor.setSettings(record);
    auto modeInput = editor.findChild<QComboBox *>("cbModeInput");
    QCOMPARE(modeInput->currentIndex(), 3);
    QCOMPARE(modeInput->currentText(), QString("Мульти-УКИ ОТКЛ"));
    QCOMPARE(readBack(editor).value(UkiSettings::ModeInput), 3);
    QVERIFY(!editor.isModified());
}

// On the 4-20 mA input the input function is neither shown from nor written into the record.
void tst_UkiConfigEditor::analogInputKeepsModeInput()
{
    UkiConfigEditor editor;
    auto modeInput = editor.findChild<QComboBox *>("cbModeInput");
    UkiSettings record = exactRecord();
    record.setValue(UkiSettings::ModeInput, 1);
    editor.setSettings(record);
    QCOMPARE(modeInput->currentIndex(), 1);

    record.setValue(UkiSettings::Flags, 0x2002);
    record.setValue(UkiSettings::ModeInput, 2);
    editor.setSettings(record);
    QCOMPARE(modeInput->currentIndex(), 1);

    UkiSettings target;
    target.setValue(UkiSettings::ModeInput, 2);
    editor.settings(target);
    QCOMPARE(target.value(UkiSettings::Flags), 0x2002);
    QCOMPARE(target.value(UkiSettings::ModeInput), 2);
    // isModified fills a default record, whose ModeInput 0 differs from the loaded 2.
    QVERIFY(editor.isModified());

    editor.findChild<QComboBox *>("cbX9")->setCurrentIndex(0);
    editor.settings(target);
    QCOMPARE(target.value(UkiSettings::Flags), 0x2);
    QCOMPARE(target.value(UkiSettings::ModeInput), 1);
}

void tst_UkiConfigEditor::x9Arrangement_data()
{
    QTest::addColumn<bool>("byUser");
    QTest::addColumn<int>("x9");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("analogShown");
    QTest::newRow("loaded, discrete input") << false << 0 << "Дискретный вход" << false;
    QTest::newRow("loaded, 4-20 mA") << false << 1 << "4-20" << true;
    QTest::newRow("chosen, discrete input") << true << 0 << "Дискретный вход" << false;
    QTest::newRow("chosen, 4-20 mA") << true << 1 << "4-20" << true;
}

void tst_UkiConfigEditor::x9Arrangement()
{
    QFETCH(bool, byUser);
    QFETCH(int, x9);
    QFETCH(QString, title);
    QFETCH(bool, analogShown);
    UkiConfigEditor editor;
    UkiSettings record;
    const int x9Bit = 0x2000;
    if (byUser) {
        // Start from the other arrangement.
        record.setValue(UkiSettings::Flags, x9 ? 0 : x9Bit);
        editor.setSettings(record);
        editor.findChild<QComboBox *>("cbX9")->setCurrentIndex(x9);
    } else {
        record.setValue(UkiSettings::Flags, x9 ? x9Bit : 0);
        editor.setSettings(record);
    }

    QCOMPARE(editor.findChild<QGroupBox *>("groupBox_4")->title(), title);
    for (const char *name : {"label_9", "cbIoutEn", "label_4", "sbRiso420"})
        QCOMPARE(editor.findChild<QWidget *>(name)->isVisibleTo(&editor), analogShown);
    for (const char *name : {"label_28", "cbModeInput"})
        QCOMPARE(editor.findChild<QWidget *>(name)->isVisibleTo(&editor), !analogShown);
    keepShot(&editor, QString("x9-%1-%2").arg(x9).arg(byUser ? "chosen" : "loaded"));
}

void tst_UkiConfigEditor::numberOfMonitorsItem_data()
{
    QTest::addColumn<QList<int>>("steps");
    QTest::addColumn<int>("items");
    QTest::newRow("one monitor") << QList<int>{1} << 3;
    QTest::newRow("two monitors") << QList<int>{2} << 4;
    QTest::newRow("two then five, added once") << QList<int>{2, 5} << 4;
    QTest::newRow("32 monitors") << QList<int>{32} << 4;
    QTest::newRow("two then one, removed") << QList<int>{2, 1} << 3;
    QTest::newRow("up, down, up") << QList<int>{3, 1, 2} << 4;
}

void tst_UkiConfigEditor::numberOfMonitorsItem()
{
    QFETCH(QList<int>, steps);
    QFETCH(int, items);
    UkiConfigEditor editor;
    auto numUki = editor.findChild<QSpinBox *>("sbNumUki");
    auto addrUki = editor.findChild<QSpinBox *>("sbAddrUki");
    auto modeInput = editor.findChild<QComboBox *>("cbModeInput");
    for (int value : steps)
        numUki->setValue(value);
    QCOMPARE(modeInput->count(), items);
    if (items == 4)
        QCOMPARE(modeInput->itemText(3), QString("Мульти-УКИ ОТКЛ"));
    // The address does not depend on the number of monitors.
    QCOMPARE(addrUki->maximum(), 31);
}

void tst_UkiConfigEditor::firmwareVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("voltageLabelShown");
    QTest::addColumn<QStringList>("tbridgeItems");
    const QStringList three{"ОТКЛ", "ВКЛ.Н", "ВКЛ.В"};
    const QStringList two{"ОТКЛ", "ВКЛ"};
    QTest::newRow("9.6.52") << "9.6.52" << true << two;
    QTest::newRow("9.6.51") << "9.6.51" << false << two;
    QTest::newRow("9.6.44") << "9.6.44" << false << two;
    QTest::newRow("9.6.43") << "9.6.43" << false << three;
    QTest::newRow("9.6 without build") << "9.6" << true << two;
    QTest::newRow("9.6.52.1") << "9.6.52.1" << true << two;
    QTest::newRow("empty parts dropped") << "9..6..52" << true << two;
    QTest::newRow("8.5.60, minor not above 5") << "8.5.60" << false << three;
    QTest::newRow("7.9.99, major not above 7") << "7.9.99" << false << three;
    QTest::newRow("10.10.10, plain comparison") << "10.10.10" << false << three;
    QTest::newRow("9, one number") << "9" << false << three;
    QTest::newRow("empty") << "" << false << three;
    QTest::newRow("build not a number") << "9.6.x" << false << three;
}

void tst_UkiConfigEditor::firmwareVersion()
{
    QFETCH(QString, version);
    QFETCH(bool, voltageLabelShown);
    QFETCH(QStringList, tbridgeItems);
    UkiConfigEditor editor;
    editor.applyFirmwareVersion(version);

    QCOMPARE(editor.findChild<QWidget *>("label_24")->isVisibleTo(&editor), voltageLabelShown);
    for (const char *name : {"sbUminus", "label_29", "sbFilter", "label_30", "cbX9"})
        QVERIFY2(!editor.findChild<QWidget *>(name)->isVisibleTo(&editor), name);
    QCOMPARE(itemsOf(editor.findChild<QComboBox *>("cbTbridge")), tbridgeItems);
}

void tst_UkiConfigEditor::picture()
{
    UkiConfigEditor editor;
    UkiSettings record = exactRecord();
    record.setValue(UkiSettings::NumUki, 2);
    record.setValue(UkiSettings::ModeInput, 3);
    editor.setSettings(record);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    const QSize minimum = editor.minimumSizeHint();
    QVERIFY(minimum.width() > 0 && minimum.width() < 1280);
    QVERIFY(minimum.height() > 0 && minimum.height() < 800);
    keepShot(&editor, "ukiconfigeditor");
}

QTEST_MAIN(tst_UkiConfigEditor)

#include "tst_ukiconfigeditor.moc"
