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

// Changes made in the form, as the write program gives them: the commands that differ from
// those of the record last given to the editor.
template<class Record>
QStringList changedCommands(const Record &loaded, const Record &back)
{
    QStringList commands;
    const QStringList before = loaded.writeCommands();
    for (const QString &command : back.writeCommands())
        if (!before.contains(command))
            commands << command;
    return commands;
}

// One editor with its record type, driven from a row.
struct Run
{
    QString shown;
    QStringList changed; // write commands that differ from the loaded record's
    bool modified = false;
};

template<class Editor, class Record>
Run run(const QMap<QString, qint32> &stored,
        const QString &widget,
        const std::function<void(QWidget *)> &edit)
{
    Editor editor;
    Record record;
    for (auto it = stored.begin(); it != stored.end(); ++it)
        record.setValue(fieldOf<Record>(it.key()), it.value());
    editor.setSettings(record);
    QWidget *field = editor.template findChild<QWidget *>(widget);
    Run result;
    if (!field)
        return {"no widget " + widget, {}, false};
    if (edit)
        edit(field);
    result.shown = shown(field);
    Record back = record;
    editor.settings(back);
    result.changed = changedCommands(record, back);
    result.modified = editor.isModified();
    return result;
}

// Flags that survive the form unchanged on each monitor, so one row changes one command.
const QMap<QString, qint32> ukiBase{{"Flags", 0}};
const QMap<QString, qint32> ukpsBase{{"Flags", 0x80}, {"UnschDly", 5}, {"OverTemp", 70}};

} // namespace

using Stored = QMap<QString, qint32>;
using Edit = std::function<void(QWidget *)>;
Q_DECLARE_METATYPE(Edit)

class tst_ConfigEditors : public QObject
{
    Q_OBJECT

private slots:
    void conversion_data();
    void conversion();
    void tenths_data();
    void tenths();
    void keptFields();
    void ukiInputArrangement_data();
    void ukiInputArrangement();
    void firmwareVersion_data();
    void firmwareVersion();
    void ukpsVariant_data();
    void ukpsVariant();
};

void tst_ConfigEditors::conversion_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<Stored>("stored");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QString>("shownText");
    QTest::addColumn<QStringList>("changed");
    const auto value = [](double v) {
        return Edit([v](QWidget *w) {
            if (auto d = qobject_cast<QDoubleSpinBox *>(w))
                d->setValue(v);
            else if (auto s = qobject_cast<QSpinBox *>(w))
                s->setValue(int(v));
            else if (auto c = qobject_cast<QComboBox *>(w))
                c->setCurrentIndex(int(v));
            else
                qobject_cast<QSlider *>(w)->setValue(int(v));
        });
    };
    const auto uki = [&](const char *name,
                         Stored stored,
                         const char *widget,
                         const Edit &edit,
                         const QString &text,
                         const QStringList &changed) {
        for (auto it = ukiBase.begin(); it != ukiBase.end(); ++it)
            if (!stored.contains(it.key()))
                stored.insert(it.key(), it.value());
        QTest::newRow(name) << "uki" << stored << widget << edit << text << changed;
    };
    const auto ukps = [&](const char *name,
                          Stored stored,
                          const char *widget,
                          const Edit &edit,
                          const QString &text,
                          const QStringList &changed) {
        for (auto it = ukpsBase.begin(); it != ukpsBase.end(); ++it)
            if (!stored.contains(it.key()))
                stored.insert(it.key(), it.value());
        QTest::newRow(name) << "ukps" << stored << widget << edit << text << changed;
    };
    uki("uki TimeMto 30 shows 00:20, back 20",
        {{"TimeMto", 30}},
        "cbTimeMto",
        {},
        "00:20",
        {"set_cfg_TimeMto_20"});
    uki("uki TimeMto 100 is 01:00", {{"TimeMto", 100}}, "cbTimeMto", {}, "01:00", {});
    uki("uki user picks 00:40", {}, "cbTimeMto", value(3), "00:40", {"set_cfg_TimeMto_60"});
    uki("uki Tcust 15 shows 00:10", {{"Tcust", 15}}, "cbTcust", {}, "00:10", {"set_cfg_Tcust_10"});
    uki("uki user picks Tcust 02:00", {}, "cbTcust", value(12), "02:00", {"set_cfg_Tcust_120"});
    uki("uki Averaging 7 is 35 %", {{"Averaging", 7}}, "sbFilter", {}, "35%", {});
    uki("uki user sets 45 %", {}, "sbFilter", value(45), "45%", {"set_cfg_Averaging_9"});
    uki("uki RisoLoc 990", {{"RisoLoc", 990}}, "sbRisoLoc", {}, "990 кОм", {});
    uki("uki NumUki 0 raised to 1", {{"NumUki", 0}}, "sbNumUki", {}, "1", {"set_cfg_NumUki_1"});
    uki("uki MbAddr 247 cut to 99", {{"MbAddr", 247}}, "sbMbAddr", {}, "99", {"set_cfg_MbAddr_99"});
    uki("uki Bright 0 raised to 1", {{"Bright", 0}}, "sliderBright", {}, "1", {"set_cfg_Bright_1"});
    uki("uki user sets Contrast 77",
        {},
        "sliderContrast",
        value(77),
        "77",
        {"set_cfg_Contrast_77"});
    uki("uki Uminus kept", {{"Uminus", 120}}, "sbUminus", {}, "120 в", {});
    uki("uki Flags 130 loses bit 7", {{"Flags", 130}}, "cbGSearch", {}, "ВКЛ", {"set_cfg_Flags_2"});
    uki("uki Flags combos and carried bits",
        {{"Flags", 0x3FFF}},
        "cbX9",
        {},
        "4-20 мА",
        {"set_cfg_Flags_15934"});
    uki("uki user turns Rобщ on", {}, "cbRequEn", value(1), "ВКЛ", {"set_cfg_Flags_32"});
    uki("uki user turns Мульти-УКИ on", {}, "cbMulti", value(1), "ВКЛ", {"set_cfg_Flags_2048"});
    uki("uki NumUki 2 offers Мульти-УКИ ОТКЛ",
        {{"NumUki", 2}, {"ModeInput", 3}},
        "cbModeInput",
        {},
        "Мульти-УКИ ОТКЛ",
        {});
    uki("uki user picks ModeDef 5", {}, "cbModeDef", value(5), "", {"set_cfg_ModeDef_5"});
    ukps("ukps Uripple 25 is 2.5", {{"Uripple", 25}}, "sbUripple", {}, "2.5 %", {});
    ukps("ukps user sets Iripple 12.3",
         {},
         "sbIripple",
         value(12.3),
         "12.3 %",
         {"set_cfg_Iripple_123"});
    ukps("ukps user sets DeltaSym 0.7",
         {},
         "sbDeltaSym",
         value(0.7),
         "0.7 В",
         {"set_cfg_DeltaSym_7"});
    ukps("ukps NumShunt 14", {{"NumShunt", 14}}, "cbNumShunt", {}, "75мв, 2000А", {});
    ukps("ukps user picks shunt 2", {}, "cbNumShunt", value(1), "", {"set_cfg_NumShunt_2"});
    ukps("ukps TimeMto 34 is index 2", {{"TimeMto", 34}}, "cbTimeMto", {}, "", {});
    ukps("ukps TimeMto 44 reads back 14",
         {{"TimeMto", 44}},
         "cbTimeMto",
         {},
         "",
         {"set_cfg_TimeMto_14"});
    ukps("ukps Flags 130 loses bit 1",
         {{"Flags", 130}},
         "cbTail",
         {},
         "ВКЛ",
         {"set_cfg_Flags_128"});
    ukps("ukps Flags combos and carried bits",
         {{"Flags", 0x7FF}},
         "cbDisMax",
         {},
         "Пмакс",
         {"set_cfg_Flags_1528"});
    ukps("ukps user turns Симметр on", {}, "cbSimmetr", value(1), "ВКЛ", {"set_cfg_Flags_192"});
    ukps("ukps user sets FallTemp -20", {}, "sbFallTemp", value(-20), "", {"set_cfg_FallTemp_-20"});
    ukps("ukps user sets relay FRisoN", {}, "cbFRN", value(3), "", {"set_cfg_FRisoN_3"});
    ukps("ukps user sets UnschDly 60", {}, "sbUnsch_dly", value(60), "", {"set_cfg_UnschDly_60"});
    ukps("ukps AddrUki kept from the record",
         {{"AddrUki", 7}},
         "sbRisoM3s1",
         value(99),
         "",
         {"set_cfg_RisoM3s1_99"});
}

// The value shown after loading a record (and after a user's change), and the commands that
// writing the form back would send.
void tst_ConfigEditors::conversion()
{
    QFETCH(QString, type);
    QFETCH(Stored, stored);
    QFETCH(QString, widget);
    QFETCH(Edit, edit);
    QFETCH(QString, shownText);
    QFETCH(QStringList, changed);
    const Run r = type == "uki" ? run<UkiConfigEditor, UkiSettings>(stored, widget, edit)
                                : run<UkpsConfigEditor, UkpsSettings>(stored, widget, edit);
    if (!shownText.isEmpty())
        QCOMPARE(r.shown, shownText);
    QCOMPARE(r.changed.join(" "), changed.join(" "));
    QCOMPARE(r.modified, !changed.isEmpty());
}

void tst_ConfigEditors::tenths_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("widget");
    QTest::newRow("Uripple") << "Uripple"
                             << "sbUripple";
    QTest::newRow("Iripple") << "Iripple"
                             << "sbIripple";
    QTest::newRow("DeltaSym") << "DeltaSym"
                              << "sbDeltaSym";
}

// Every tenth the form can hold is stored as ten times the value, cut toward zero.
void tst_ConfigEditors::tenths()
{
    QFETCH(QString, key);
    QFETCH(QString, widget);
    UkpsConfigEditor editor;
    auto spin = editor.findChild<QDoubleSpinBox *>(widget);
    QVERIFY(spin);
    UkpsSettings record;
    for (int tenths = qRound(spin->minimum() * 10); tenths <= qRound(spin->maximum() * 10);
         ++tenths) {
        record.setValue(fieldOf<UkpsSettings>(key), tenths);
        editor.setSettings(record);
        QCOMPARE(spin->value(), tenths / 10.0);
        UkpsSettings back;
        editor.settings(back);
        QCOMPARE(back.value(fieldOf<UkpsSettings>(key)), tenths);
    }
}

// Fields the form does not show keep what the target record held; the bus address and number
// of monitors come from the loaded record.
void tst_ConfigEditors::keptFields()
{
    UkpsConfigEditor ukps;
    UkpsSettings loaded;
    loaded.setValue(UkpsSettings::AddrUki, 5);
    loaded.setValue(UkpsSettings::NumUki, 6);
    ukps.setSettings(loaded);
    UkpsSettings target;
    for (const char *key : {"AddrUki", "NumUki", "Tcust", "Riso420", "CapSopt", "TempDly"})
        target.setValue(fieldOf<UkpsSettings>(key), 9);
    target.setValue(UkpsSettings::Reserved2, 9);
    ukps.settings(target);
    QCOMPARE(
            target.toLines().mid(0, 9).join(' '),
            QStringLiteral("AddrUki\t5 NumUki\t6 RisoM3s1\t40 RisoM3s2\t20 RisoLoc\t80 TimeMto\t24 "
                           "Tcust\t9 TimeM3s\t0 Riso420\t9"));
    QCOMPARE(target.value(UkpsSettings::CapSopt), 9);
    QCOMPARE(target.value(UkpsSettings::TempDly), 9);
    QCOMPARE(target.value(UkpsSettings::Reserved2), 9);

    UkiConfigEditor uki;
    UkiSettings analog;
    analog.setValue(UkiSettings::Flags, 0x2000);
    analog.setValue(UkiSettings::ModeInput, 2);
    uki.setSettings(analog);
    UkiSettings back;
    back.setValue(UkiSettings::ModeInput, 1);
    uki.settings(back);
    QCOMPARE(back.value(UkiSettings::ModeInput), 1);
    QCOMPARE(back.value(UkiSettings::Flags), 0x2000);
}

void tst_ConfigEditors::ukiInputArrangement_data()
{
    QTest::addColumn<int>("x9");
    QTest::addColumn<int>("numUki");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("visible");
    QTest::addColumn<int>("modeInputItems");
    QTest::newRow("discrete, one monitor") << 0 << 1 << "Дискретный вход"
                                           << "label_28 cbModeInput" << 3;
    QTest::newRow("discrete, two monitors") << 0 << 2 << "Дискретный вход"
                                            << "label_28 cbModeInput" << 4;
    QTest::newRow("4-20 mA") << 1 << 2 << "4-20"
                             << "label_9 cbIoutEn label_4 sbRiso420" << 4;
}

// The X9 input decides which half of its group is shown; the number of monitors the fourth item.
void tst_ConfigEditors::ukiInputArrangement()
{
    QFETCH(int, x9);
    QFETCH(int, numUki);
    QFETCH(QString, title);
    QFETCH(QString, visible);
    QFETCH(int, modeInputItems);
    UkiConfigEditor editor;
    editor.show();
    UkiSettings record;
    record.setValue(UkiSettings::Flags, x9 ? 0x2000 : 0);
    record.setValue(UkiSettings::NumUki, 3);
    editor.setSettings(record);
    editor.findChild<QSpinBox *>("sbNumUki")->setValue(numUki);
    QCOMPARE(editor.findChild<QGroupBox *>("groupBox_4")->title(), title);
    QStringList shownNames;
    for (const char *name :
         {"label_9", "cbIoutEn", "label_4", "sbRiso420", "label_28", "cbModeInput"})
        if (editor.findChild<QWidget *>(name)->isVisible())
            shownNames << name;
    QCOMPARE(shownNames.join(' '), visible);
    QCOMPARE(editor.findChild<QComboBox *>("cbModeInput")->count(), modeInputItems);
}

void tst_ConfigEditors::firmwareVersion_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("result");
    QTest::newRow("ukps 1.1.39") << "ukps"
                                 << "1.1.39"
                                 << "enabled";
    QTest::newRow("ukps 1.1.38") << "ukps"
                                 << "1.1.38"
                                 << "disabled";
    QTest::newRow("ukps 1.1") << "ukps"
                              << "1.1"
                              << "disabled";
    QTest::newRow("ukps 1.2") << "ukps"
                              << "1.2"
                              << "enabled";
    QTest::newRow("ukps ..1..2..") << "ukps"
                                   << "..1..2.."
                                   << "enabled";
    QTest::newRow("uki 8.6.52") << "uki"
                                << "8.6.52"
                                << "ВКЛ|ВКЛ";
    QTest::newRow("uki 8.6.44") << "uki"
                                << "8.6.44"
                                << "ВКЛ|ВКЛ";
    QTest::newRow("uki 8.6") << "uki"
                             << "8.6"
                             << "ВКЛ|ВКЛ";
    QTest::newRow("uki 8.6.43") << "uki"
                                << "8.6.43"
                                << "ВКЛ.Н|ВКЛ.В";
    QTest::newRow("uki 7.9.99") << "uki"
                                << "7.9.99"
                                << "ВКЛ.Н|ВКЛ.В";
}

// The UKPS low-charge-current widgets, and the monitor's T-bridge items, follow the firmware.
void tst_ConfigEditors::firmwareVersion()
{
    QFETCH(QString, type);
    QFETCH(QString, version);
    QFETCH(QString, result);
    if (type == "ukps") {
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
    for (const char *name : {"sbUminus", "label_29", "sbFilter", "label_30", "cbX9"})
        QVERIFY2(editor.findChild<QWidget *>(name)->isHidden(), name);
}

void tst_ConfigEditors::ukpsVariant_data()
{
    QTest::addColumn<QVector<int>>("steps");
    QTest::addColumn<QString>("tabs");
    QTest::addColumn<QString>("modes");
    QTest::addColumn<QString>("shownWidgets");
    const QString ks = "cbModeDef cbTbridge cbRequEn cbDisMax cbFOverTail cbFFallTail";
    const QString ks2 = "cbModeDef cbTbridge cbRequEn cbDisMax sbRisoLoc sbUminus sbCstart "
                        "cbFUminus cbFRP cbFRN";
    QTest::newRow("fresh form") << QVector<int>{} << "Уставки КИ"
                                << "3 " << ks;
    QTest::newRow("ukps-ab") << QVector<int>{1} << "Уставки АБ"
                             << "3 "
                             << "cbFOverTail cbFFallTail";
    QTest::newRow("ukps-ks-2") << QVector<int>{2} << "Уставки КИ"
                               << "4 АВТО" << ks2;
    QTest::newRow("ks-2, ab, ks-2") << QVector<int>{2, 1, 2} << "Уставки КИ"
                                    << "4 АВТО" << ks2;
    QTest::newRow("ks-2, ks-2, ks") << QVector<int>{2, 2, 0} << "Уставки КИ"
                                    << "3 " << ks;
    QTest::newRow("ab, ks") << QVector<int>{1, 0} << "Уставки КИ"
                            << "3 " << ks;
    QTest::newRow("monitor variant ignored") << QVector<int>{2, 3} << "Уставки КИ"
                                             << "4 АВТО" << ks2;
}

// What each device variant shows: the first page, the default-mode items and the variant's widgets.
void tst_ConfigEditors::ukpsVariant()
{
    QFETCH(QVector<int>, steps);
    QFETCH(QString, tabs);
    QFETCH(QString, modes);
    QFETCH(QString, shownWidgets);
    UkpsConfigEditor editor;
    editor.show();
    for (int step : steps)
        editor.applyVariant(step);
    auto tabWidget = editor.findChild<QTabWidget *>("tabWidget");
    QCOMPARE(tabWidget->tabText(0), tabs);
    QCOMPARE(tabWidget->count(), tabs == "Уставки АБ" ? 3 : 4);
    auto modeDef = editor.findChild<QComboBox *>("cbModeDef");
    QCOMPARE(QString::number(modeDef->count()) + ' '
                     + (modeDef->count() == 4 ? modeDef->currentText() : ""),
             modes);
    QStringList shownNames;
    for (const char *name : {"cbModeDef",
                             "cbTbridge",
                             "cbRequEn",
                             "cbDisMax",
                             "cbFOverTail",
                             "cbFFallTail",
                             "sbRisoLoc",
                             "sbUminus",
                             "sbCstart",
                             "cbFUminus",
                             "cbFRP",
                             "cbFRN"}) {
        auto widget = editor.findChild<QWidget *>(name);
        if (!widget->isHidden())
            shownNames << name;
    }
    QCOMPARE(shownNames.join(' '), shownWidgets);
}

QTEST_MAIN(tst_ConfigEditors)
#include "tst_configeditors.moc"
