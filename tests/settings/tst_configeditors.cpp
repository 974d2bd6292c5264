#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"

#include <QtTest>

namespace {

template<class Record>
typename Record::Field fieldOf(const QString &key)
{
    for (int i = 0; i < Record::FieldCount; ++i)
        if (Record::key(typename Record::Field(i)) == key)
            return typename Record::Field(i);
    qFatal("no key %s", qPrintable(key));
}

// What the user sees in a field: a spin box's text with its suffix, a combo's item, a
// slider's position.
QString shown(const QWidget *widget)
{
    if (auto spin = qobject_cast<const QAbstractSpinBox *>(widget))
        return spin->text();
    if (auto combo = qobject_cast<const QComboBox *>(widget))
        return combo->currentText();
    return QString::number(qobject_cast<const QSlider *>(widget)->value());
}

// Puts what a user would enter into a field: a number, or a list item by its index.
void enter(QWidget *field, const QString &input)
{
    if (auto real = qobject_cast<QDoubleSpinBox *>(field))
        real->setValue(input.toDouble());
    else if (auto spin = qobject_cast<QSpinBox *>(field))
        spin->setValue(input.toInt());
    else if (auto combo = qobject_cast<QComboBox *>(field))
        combo->setCurrentIndex(input.toInt());
    else
        qobject_cast<QSlider *>(field)->setValue(input.toInt());
}

// Loads "Key=value ..." over the monitor's base record, lets the user put a value into one field,
// and gives what the field shows, the commands that differ from the loaded record's, and
// whether the editor counts itself modified.
template<class Editor, class Record>
QString run(const QString &stored, const QString &widget, const QString &input)
{
    Editor editor;
    Record record;
    for (const QString &pair : stored.split(' ', Qt::SkipEmptyParts))
        record.setValue(fieldOf<Record>(pair.section('=', 0, 0)),
                        pair.section('=', 1).toInt(nullptr, 0));
    editor.setSettings(record);
    QWidget *field = editor.template findChild<QWidget *>(widget);
    if (!field)
        return "no widget " + widget;
    if (!input.isEmpty())
        enter(field, input);
    Record back = record;
    editor.settings(back);
    const QStringList before = record.writeCommands();
    QStringList changed;
    for (const QString &command : back.writeCommands())
        if (!before.contains(command))
            changed << command;
    return shown(field) + '|' + changed.join(' ') + (editor.isModified() ? "|modified" : "");
}

// The widgets that depend on the UKPS variant.
const char *const all = "cbModeDef cbTbridge cbRequEn cbDisMax cbFOverTail cbFFallTail sbRisoLoc "
                        "sbUminus sbCstart cbFUminus cbFRP cbFRN";
const QString ks2 = "cbModeDef cbTbridge cbRequEn cbDisMax sbRisoLoc sbUminus sbCstart cbFUminus "
                    "cbFRP cbFRN";

} // namespace

class tst_ConfigEditors : public QObject
{
    Q_OBJECT

private slots:
    void conversion_data();
    void conversion();
    void tenths();
    void keptFields();
    void firmwareVersion_data();
    void firmwareVersion();
    void ukpsVariant_data();
    void ukpsVariant();
    void changeMarks_data();
    void changeMarks();
};

void tst_ConfigEditors::conversion_data()
{
    QTest::addColumn<QString>("row");
    // monitor | stored | field | user input | shown | changed commands [| modified]
    const QStringList rows = {
            "uki|TimeMto=30|cbTimeMto||00:20|set_cfg_TimeMto_20|modified",
            "uki|TimeMto=100|cbTimeMto||01:00|",
            "uki||cbTimeMto|3|00:40|set_cfg_TimeMto_60|modified",
            "uki|Tcust=15|cbTcust||00:10|set_cfg_Tcust_10|modified",
            "uki||cbTcust|12|02:00|set_cfg_Tcust_120|modified",
            "uki|Averaging=7|sbFilter||35%|",
            "uki||sbFilter|45|45%|set_cfg_Averaging_9|modified",
            "uki|RisoLoc=990|sbRisoLoc||990 кОм|",
            "uki|NumUki=0|sbNumUki||1|set_cfg_NumUki_1|modified",
            "uki|MbAddr=247|sbMbAddr||99|set_cfg_MbAddr_99|modified",
            "uki|Bright=0|sliderBright||1|set_cfg_Bright_1|modified",
            "uki||sliderContrast|77|77|set_cfg_Contrast_77|modified",
            "uki|Uminus=120|sbUminus||120 в|",
            "uki||cbModeDef|5|ЛОК.|set_cfg_ModeDef_5|modified",
            "uki|Flags=130|cbGSearch||ВКЛ|set_cfg_Flags_2|modified",
            "uki|Flags=0x3FFF|cbX9||4-20 мА|set_cfg_Flags_15934|modified",
            "uki||cbRequEn|1|ВКЛ|set_cfg_Flags_32|modified",
            "uki||cbMulti|1|ВКЛ|set_cfg_Flags_2048|modified",
            "uki|NumUki=2 ModeInput=3|cbModeInput||Мульти-УКИ ОТКЛ|",
            "ukps||sbIripple|12.3|12.3 %|set_cfg_Iripple_123|modified",
            "ukps|NumShunt=14|cbNumShunt||75мв, 2000А|",
            "ukps||cbNumShunt|1|75мв, 30А|set_cfg_NumShunt_2|modified",
            "ukps|TimeMto=34|cbTimeMto||00:34|",
            "ukps|TimeMto=44|cbTimeMto||00:14|set_cfg_TimeMto_14|modified",
            "ukps|Flags=130|cbTail||ВКЛ|set_cfg_Flags_128|modified",
            "ukps|Flags=0x7FF|cbDisMax||Пмакс|set_cfg_Flags_1528|modified",
            "ukps||cbSimmetr|1|ВКЛ|set_cfg_Flags_192|modified",
            "ukps||sbFallTemp|-20|-20 °C|set_cfg_FallTemp_-20|modified",
            "ukps||cbFRN|3|Реле 3|set_cfg_FRisoN_3|modified",
            "ukps||sbUnsch_dly|60|60 сек|set_cfg_UnschDly_60|modified",
            "ukps|AddrUki=7|sbRisoM3s1|99|99 кОм|set_cfg_RisoM3s1_99|modified",
    };
    for (const QString &row : rows)
        QTest::newRow(qPrintable(row.section('|', 0, 4))) << row;
}

// The value shown after loading a record (and after a user's change), and the commands that
// writing the form back would send.
void tst_ConfigEditors::conversion()
{
    QFETCH(QString, row);
    const QStringList p = row.split('|');
    // Base records whose Flags and out-of-form defaults survive the form, so a row changes one command.
    const QString result = p[0] == "uki"
                                   ? run<UkiConfigEditor, UkiSettings>(
                                           "Flags=0 " + p[1], p[2], p[3])
                                   : run<UkpsConfigEditor, UkpsSettings>(
                                           "Flags=0x80 UnschDly=5 OverTemp=70 " + p[1], p[2], p[3]);
    QCOMPARE(result, QStringList(p.mid(4)).join('|'));
}

// Every tenth the form can hold is stored as ten times the value, cut toward zero.
void tst_ConfigEditors::tenths()
{
    UkpsConfigEditor editor;
    UkpsSettings record;
    for (const QString key : {"Uripple", "Iripple", "DeltaSym"}) {
        auto spin = editor.findChild<QDoubleSpinBox *>("sb" + key);
        for (int tenths = qRound(spin->minimum() * 10); tenths <= qRound(spin->maximum() * 10);
             ++tenths) {
            record.setValue(fieldOf<UkpsSettings>(key), tenths);
            editor.setSettings(record);
            UkpsSettings back;
            editor.settings(back);
            QCOMPARE(QString::number(spin->value()) + ' '
                             + QString::number(back.value(fieldOf<UkpsSettings>(key))),
                     QString::number(tenths / 10.0) + ' ' + QString::number(tenths));
        }
    }
}

// Fields the form does not show keep what the target record held; the bus address and number
// of monitors come from the loaded record.
void tst_ConfigEditors::keptFields()
{
    UkpsConfigEditor ukps;
    UkpsSettings loaded, target;
    loaded.setValue(UkpsSettings::AddrUki, 5);
    loaded.setValue(UkpsSettings::NumUki, 6);
    ukps.setSettings(loaded);
    for (const char *key : {"AddrUki", "NumUki", "Tcust", "Riso420", "CapSopt", "TempDly"})
        target.setValue(fieldOf<UkpsSettings>(key), 9);
    target.setValue(UkpsSettings::Reserved2, 9);
    ukps.settings(target);
    QCOMPARE(
            target.toLines().mid(0, 9).join(' ')
                    + QString(" %1 %2 %3")
                              .arg(target.value(UkpsSettings::CapSopt))
                              .arg(target.value(UkpsSettings::TempDly))
                              .arg(target.value(UkpsSettings::Reserved2)),
            QStringLiteral("AddrUki\t5 NumUki\t6 RisoM3s1\t40 RisoM3s2\t20 RisoLoc\t80 TimeMto\t24 "
                           "Tcust\t9 TimeM3s\t0 Riso420\t9 9 9 9"));

    UkiConfigEditor uki;
    UkiSettings analog, back;
    analog.setValue(UkiSettings::Flags, 0x2000);
    analog.setValue(UkiSettings::ModeInput, 2);
    uki.setSettings(analog);
    back.setValue(UkiSettings::ModeInput, 1);
    uki.settings(back);
    QCOMPARE(QString("%1 %2")
                     .arg(back.value(UkiSettings::ModeInput))
                     .arg(back.value(UkiSettings::Flags)),
             QString("1 8192"));
}

void tst_ConfigEditors::firmwareVersion_data()
{
    QTest::addColumn<QString>("row");
    for (const char *row : {"ukps 1.1.39 enabled",
                            "ukps 1.1.38 disabled",
                            "ukps 1.1 disabled",
                            "ukps 1.2 enabled",
                            "ukps ..1..2.. enabled",
                            "uki 8.6.52 ВКЛ|ВКЛ",
                            "uki 8.6.44 ВКЛ|ВКЛ",
                            "uki 8.6 ВКЛ|ВКЛ",
                            "uki 8.6.43 ВКЛ.Н|ВКЛ.В",
                            "uki 7.9.99 ВКЛ.Н|ВКЛ.В"})
        QTest::newRow(QString(row).section(' ', 0, 1).toUtf8()) << QString(row);
}

// The UKPS low-charge-current widgets, and the monitor's T-bridge items, follow the firmware.
void tst_ConfigEditors::firmwareVersion()
{
    QFETCH(QString, row);
    const QString version = row.section(' ', 1, 1), result = row.section(' ', 2);
    if (row.startsWith("ukps")) {
        UkpsConfigEditor editor;
        editor.applyFirmwareVersion(version);
        const bool on = editor.findChild<QWidget *>("sbUnsch_dly")->isEnabled();
        QCOMPARE(editor.findChild<QWidget *>("cbFUnsch")->isEnabled(), on);
        QCOMPARE(on ? "enabled" : "disabled", result);
        return;
    }
    UkiConfigEditor editor;
    editor.show();
    editor.applyFirmwareVersion(version);
    auto bridge = editor.findChild<QComboBox *>("cbTbridge");
    QCOMPARE(bridge->itemText(1) + '|' + bridge->itemText(bridge->count() - 1), result);
    for (const QString &name : QString("sbUminus label_29 sbFilter label_30 cbX9").split(' '))
        QVERIFY2(editor.findChild<QWidget *>(name)->isHidden(), qPrintable(name));
}

void tst_ConfigEditors::ukpsVariant_data()
{
    QTest::addColumn<QString>("row");
    // variants applied | first page | default-mode items | variant widgets shown
    const QStringList rows = {
            "|Уставки КИ|3|cbModeDef cbTbridge cbRequEn cbDisMax cbFOverTail cbFFallTail",
            "1|Уставки АБ|3|cbFOverTail cbFFallTail",
            "2|Уставки КИ|4 АВТО|" + ks2,
            "2 1 2|Уставки КИ|4 АВТО|" + ks2,
            "2 2 0|Уставки КИ|3|cbModeDef cbTbridge cbRequEn cbDisMax cbFOverTail cbFFallTail",
            "1 0|Уставки КИ|3|cbModeDef cbTbridge cbRequEn cbDisMax cbFOverTail cbFFallTail",
            "2 3|Уставки КИ|4 АВТО|" + ks2,
    };
    for (const QString &row : rows)
        QTest::newRow(qPrintable("variants " + row.section('|', 0, 0))) << row;
}

// What each device variant shows: the first page, the default-mode items and the variant's widgets.
void tst_ConfigEditors::ukpsVariant()
{
    QFETCH(QString, row);
    UkpsConfigEditor editor;
    editor.show();
    for (const QString &step : row.section('|', 0, 0).split(' ', Qt::SkipEmptyParts))
        editor.applyVariant(step.toInt());
    auto tabs = editor.findChild<QTabWidget *>("tabWidget");
    auto modeDef = editor.findChild<QComboBox *>("cbModeDef");
    QStringList shown{QString(), tabs->tabText(0), QString::number(modeDef->count())};
    if (modeDef->count() == 4)
        shown.last() += ' ' + modeDef->currentText();
    QStringList names;
    for (const QString &name : QString(all).split(' '))
        if (!editor.findChild<QWidget *>(name)->isHidden())
            names << name;
    shown << names.join(' ');
    shown[0] = row.section('|', 0, 0);
    QCOMPARE(shown.join('|'), row);
    QCOMPARE(tabs->count(), row.contains("АБ") ? 3 : 4);
}

void tst_ConfigEditors::changeMarks_data()
{
    // editor # "widget=value" set by the user, "@key=value" a settings line taken from a file #
    // a key # count of changed keys|marked labels and fields, sorted|the key's label
    QTest::addColumn<QString>("row");
    // clang-format off
    for (const char *row : {
            "uki#sbRisoM3s1=77 cbLang=1#RisoM3s1#2|Rуст1 cbLang sbRisoM3s1 Язык интерфейса|Rуст1",
            "uki#cbGSearch=0#Flags#1|cbGSearch Групп. поиск|Групп. поиск, Метод контроля, Выход 4-20мА, Rобщ, Авто-уст, Перекос, Мульти-УКИ, X9",
            "uki#sbRisoM3s1=77 sbRisoM3s1=40#Tcust#0||Тиск",
            "uki#@RisoM3s2=33 @lang=1 @Unknown=1#lang#2|Rуст2 cbLang sbRisoM3s2 Язык интерфейса|Язык интерфейса",
            "ukps#sbUripple=3.1 cbFRN=2 cbTail=0#Uripple#3|Uхвост cbFRN cbTail sbUripple Пульсация U Сниж R-|Пульсация U",
            "ukps#@Tcust=30#AddrUki#0||"})
        QTest::newRow(QString(row).section('#', 0, 1).toUtf8()) << QString(row);
    // clang-format on
}

// Makes the edits "widget=value" (by the user) and "@key=value" (a line taken from a file) and
// gives the count of changed keys, the marked labels and fields, the key's label; then the same
// after the settings are given again, with the count last signalled (a reset must signal).
template<class Editor, class Record>
QString marks(const QString &edits, const QString &key)
{
    Editor form;
    QSignalSpy counted(&form, &Editor::changedCountChanged);
    QStringList taken;
    for (const QString &edit : edits.split(' ')) {
        if (edit.startsWith('@'))
            taken << edit.mid(1).replace('=', '\t');
        else
            enter(form.template findChild<QWidget *>(edit.section('=', 0, 0)),
                  edit.section('=', 1));
    }
    form.takeLines(taken);
    QStringList shown;
    for (int round = 0; round < 2; ++round) {
        QStringList names;
        for (QWidget *widget : form.template findChildren<QWidget *>()) {
            auto label = qobject_cast<QLabel *>(widget);
            if (widget->font().bold() && !widget->objectName().startsWith("qt_")
                && !widget->objectName().isEmpty())
                names << (label ? label->text() : widget->objectName());
        }
        names.sort();
        const int signalled = counted.isEmpty() ? -round : counted.last().at(0).toInt();
        shown << QString("%1|%2|%3|%4")
                         .arg(form.changedCount())
                         .arg(names.join(' '), form.labelFor(key))
                         .arg(signalled);
        form.setSettings(Record());
    }
    return shown.join(" / ");
}

// Fields changed since the settings were given are bold with their labels and counted; giving
// the settings again clears every mark.
void tst_ConfigEditors::changeMarks()
{
    QFETCH(QString, row);
    const QStringList f = row.split('#');
    const QString count = f[3].section('|', 0, 0);
    const QString key = f[2];
    const QString shown = f[0] == "uki" ? marks<UkiConfigEditor, UkiSettings>(f[1], key)
                                        : marks<UkpsConfigEditor, UkpsSettings>(f[1], key);
    QCOMPARE(shown, f[3] + '|' + count + " / 0||" + f[3].section('|', 2) + "|0");
}

QTEST_MAIN(tst_ConfigEditors)
#include "tst_configeditors.moc"
