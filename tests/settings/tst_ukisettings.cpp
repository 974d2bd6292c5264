#include "settings/ukisettings.h"

#include <QJsonObject>
#include <QtTest>

#include <climits>

using Changes = QVector<QPair<int, int>>;
Q_DECLARE_METATYPE(UkiSettings)

namespace {

// The monitor's documented keys, ranges and defaults, kept here independently of the record.
struct Expected
{
    const char *key;
    int minimum;
    int maximum;
    int defaultValue;
};

// clang-format off
const Expected expected[] = {
    {"AddrUki", 0, 31, 0},
    {"NumUki", 0, 32, 1},
    {"RisoM3s1", 1, 999, 40},
    {"RisoM3s2", 1, 999, 20},
    {"RisoLoc", 10, 990, 80},
    {"TimeMto", 0, 60, 20},
    {"Tcust", 0, 120, 0},
    {"TimeM3s", 0, 5, 0},
    {"Riso420", 2, 999, 200},
    {"Flags", 0, INT_MAX, 130},
    {"Urelay", 1, 300, 250},
    {"Uminus", 0, 300, 135},
    {"MbAddr", 1, 247, 1},
    {"MbBaud", 0, 7, 3},
    {"MbParity", 0, 2, 0},
    {"CapSopt", 0, 900, 0},
    {"ModeDef", 0, 5, 0},
    {"Bright", 0, 1000, 500},
    {"Contrast", 0, 100, 30},
    {"Tbridge", 0, 2, 0},
    {"lang", 0, 1, 0},
    {"Averaging", 0, 50, 10},
    {"ModeInput", 0, 2, 0},
};
// clang-format on

QStringList messages;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg)
        messages.append(message);
}

// The record each parse starts from: two fields that text naming no number turns to 0 are not 0.
UkiSettings parseBase()
{
    UkiSettings settings;
    settings.setValue(UkiSettings::ModeDef, 3);
    settings.setValue(UkiSettings::Tcust, 10);
    return settings;
}

UkiSettings changed(const Changes &changes)
{
    UkiSettings settings = parseBase();
    for (const auto &change : changes)
        settings.setValue(UkiSettings::Field(change.first), change.second);
    return settings;
}

// Every field differs from its default and stays within its accepted range.
UkiSettings nonDefault()
{
    UkiSettings settings;
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        const qint32 value = UkiSettings::defaultValue(field) == UkiSettings::maximum(field)
                                     ? UkiSettings::minimum(field)
                                     : UkiSettings::maximum(field);
        settings.setValue(field, value);
    }
    return settings;
}

QString badValue(const QString &key, int value)
{
    return QStringLiteral("got bad value for %1 : %2!").arg(key).arg(value);
}

} // namespace

class tst_UkiSettings : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void table();
    void parse_data();
    void parse();
    void rangeEdges_data();
    void rangeEdges();
    void emptyListLeavesRecord();
    void olderNamedValueForm();
    void defaultLines();
    void roundTrip_data();
    void roundTrip();
    void writeCommands();
    void jsonFallbacks();
    void jsonRoundTrip();

private:
    QtMessageHandler m_previousHandler = nullptr;
};

void tst_UkiSettings::init()
{
    messages.clear();
    m_previousHandler = qInstallMessageHandler(collect);
}

void tst_UkiSettings::cleanup()
{
    qInstallMessageHandler(m_previousHandler);
}

void tst_UkiSettings::table()
{
    QCOMPARE(UkiSettings::FieldCount, 23);
    const UkiSettings settings;
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        QCOMPARE(UkiSettings::key(field), QLatin1String(expected[i].key));
        QCOMPARE(UkiSettings::minimum(field), expected[i].minimum);
        QCOMPARE(UkiSettings::maximum(field), expected[i].maximum);
        QCOMPARE(UkiSettings::defaultValue(field), expected[i].defaultValue);
        QCOMPARE(settings.value(field), expected[i].defaultValue);
    }
}

void tst_UkiSettings::parse_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<Changes>("changes");
    QTest::addColumn<QStringList>("log");

    QTest::newRow("AddrUki 32 refused")
            << QStringList{"AddrUki\t32"} << Changes{} << QStringList{badValue("AddrUki", 32)};
    QTest::newRow("AddrUki 31 accepted")
            << QStringList{"AddrUki\t31"} << Changes{{UkiSettings::AddrUki, 31}} << QStringList{};
    QTest::newRow("NumUki 32 accepted")
            << QStringList{"NumUki\t32"} << Changes{{UkiSettings::NumUki, 32}} << QStringList{};
    QTest::newRow("NumUki 33 refused")
            << QStringList{"NumUki\t33"} << Changes{} << QStringList{badValue("NumUki", 33)};
    QTest::newRow("RisoLoc 5 refused")
            << QStringList{"RisoLoc\t5"} << Changes{} << QStringList{badValue("RisoLoc", 5)};
    QTest::newRow("RisoLoc 995 refused")
            << QStringList{"RisoLoc\t995"} << Changes{} << QStringList{badValue("RisoLoc", 995)};
    QTest::newRow("TimeMto 80 from the form refused")
            << QStringList{"TimeMto\t80"} << Changes{} << QStringList{badValue("TimeMto", 80)};
    QTest::newRow("TimeMto 40 accepted")
            << QStringList{"TimeMto\t40"} << Changes{{UkiSettings::TimeMto, 40}} << QStringList{};
    QTest::newRow("ModeInput 3 from the form refused")
            << QStringList{"ModeInput\t3"} << Changes{} << QStringList{badValue("ModeInput", 3)};
    QTest::newRow("Flags -1 refused")
            << QStringList{"Flags\t-1"} << Changes{} << QStringList{badValue("Flags", -1)};
    QTest::newRow("Flags 2147483647 accepted")
            << QStringList{"Flags\t2147483647"} << Changes{{UkiSettings::Flags, INT_MAX}}
            << QStringList{};
    QTest::newRow("Flags beyond 32 bits reads as 0")
            << QStringList{"Flags\t2147483648"} << Changes{{UkiSettings::Flags, 0}}
            << QStringList{};
    QTest::newRow("addruki unknown") << QStringList{"addruki\t3"} << Changes{}
                                     << QStringList{"Bad string uki: \"addruki"};
    QTest::newRow("Lang unknown") << QStringList{"Lang\t1"} << Changes{}
                                  << QStringList{"Bad string uki: \"Lang"};
    QTest::newRow("lang accepted")
            << QStringList{"lang\t1"} << Changes{{UkiSettings::Lang, 1}} << QStringList{};
    QTest::newRow("blanks around both parts")
            << QStringList{" Bright \t 700 "} << Changes{{UkiSettings::Bright, 700}}
            << QStringList{};
    QTest::newRow("blanks inside the key") << QStringList{"Riso  Loc\t100"} << Changes{}
                                           << QStringList{"Bad string uki: \"Riso Loc"};
    QTest::newRow("third part ignored") << QStringList{"Urelay\t100\tanything"}
                                        << Changes{{UkiSettings::Urelay, 100}} << QStringList{};
    QTest::newRow("no tab") << QStringList{"RisoLoc 200"} << Changes{}
                            << QStringList{"Bad line in UKI config : RisoLoc 200"};
    QTest::newRow("empty line") << QStringList{""} << Changes{}
                                << QStringList{"Bad line in UKI config : "};
    QTest::newRow("trailing tab trimmed away")
            << QStringList{"Bright\t"} << Changes{}
            << QStringList{"Bad line in UKI config : Bright"};
    QTest::newRow("empty key") << QStringList{"x \t5"} << Changes{}
                               << QStringList{"Bad string uki: \"x"};
    QTest::newRow("name instead of number reads as 0")
            << QStringList{"ModeDef\twmAuto"} << Changes{{UkiSettings::ModeDef, 0}}
            << QStringList{};
    QTest::newRow("name instead of number, 0 out of range")
            << QStringList{"RisoM3s1\tabc"} << Changes{} << QStringList{badValue("RisoM3s1", 0)};
    QTest::newRow("hexadecimal reads as 0")
            << QStringList{"Tcust\t0x10"} << Changes{{UkiSettings::Tcust, 0}} << QStringList{};
    QTest::newRow("later line wins") << QStringList{"Tcust\t10", "Tcust\t120"}
                                     << Changes{{UkiSettings::Tcust, 120}} << QStringList{};
    QTest::newRow("bad lines do not stop parsing")
            << QStringList{"junk", "CapSopt\t901", "CapSopt\t900", "Tbridge\t2"}
            << Changes{{UkiSettings::CapSopt, 900}, {UkiSettings::Tbridge, 2}}
            << QStringList{"Bad line in UKI config : junk", badValue("CapSopt", 901)};
}

void tst_UkiSettings::parse()
{
    QFETCH(QStringList, lines);
    QFETCH(Changes, changes);
    QFETCH(QStringList, log);

    UkiSettings settings = parseBase();
    settings.fromLines(lines);
    QCOMPARE(settings.toLines(), changed(changes).toLines());
    QCOMPARE(messages, log);
}

void tst_UkiSettings::rangeEdges_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("accepted");
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const Expected &e = expected[i];
        QTest::addRow("%s %d lowest", e.key, e.minimum) << i << e.minimum << true;
        QTest::addRow("%s %d below", e.key, e.minimum - 1) << i << e.minimum - 1 << false;
        QTest::addRow("%s %d highest", e.key, e.maximum) << i << e.maximum << true;
        if (e.maximum < INT_MAX)
            QTest::addRow("%s %d above", e.key, e.maximum + 1) << i << e.maximum + 1 << false;
    }
}

void tst_UkiSettings::rangeEdges()
{
    QFETCH(int, field);
    QFETCH(int, value);
    QFETCH(bool, accepted);

    const QString key = QLatin1String(expected[field].key);
    // A start value that differs from the one offered, so a stored value always shows.
    const int before = value ^ 1;
    UkiSettings settings;
    settings.setValue(UkiSettings::Field(field), before);
    settings.fromLines({key + QLatin1Char('\t') + QString::number(value)});
    QCOMPARE(settings.value(UkiSettings::Field(field)), accepted ? value : before);
    QCOMPARE(messages, accepted ? QStringList{} : QStringList{badValue(key, value)});
}

void tst_UkiSettings::emptyListLeavesRecord()
{
    UkiSettings settings = nonDefault();
    settings.fromLines({});
    QCOMPARE(settings, nonDefault());
    QVERIFY(messages.isEmpty());
}

void tst_UkiSettings::olderNamedValueForm()
{
    const QStringList reply = {"RS485_addr\t1",
                               "AddrUki\t0",
                               "RS485_baud\t9600",
                               "NumUki\t1",
                               "Tmost\tOFF",
                               "RisoLoc\t200",
                               "Riso4-20\t200",
                               "Urelay\t13",
                               "CapSopt\t0",
                               "TimeM3s\t0",
                               "ModeDef\twmAuto"};
    UkiSettings settings = nonDefault();
    settings.fromLines(reply);

    UkiSettings wanted = nonDefault();
    wanted.setValue(UkiSettings::AddrUki, 0);
    wanted.setValue(UkiSettings::NumUki, 1);
    wanted.setValue(UkiSettings::RisoLoc, 200);
    wanted.setValue(UkiSettings::Urelay, 13);
    wanted.setValue(UkiSettings::CapSopt, 0);
    wanted.setValue(UkiSettings::TimeM3s, 0);
    wanted.setValue(UkiSettings::ModeDef, 0);
    QCOMPARE(settings.toLines(), wanted.toLines());
    QCOMPARE(messages,
             (QStringList{"Bad string uki: \"RS485_addr",
                          "Bad string uki: \"RS485_baud",
                          "Bad string uki: \"Tmost",
                          "Bad string uki: \"Riso4-20"}));
}

void tst_UkiSettings::defaultLines()
{
    const QString text = UkiSettings().toLines().join(QLatin1Char('\n'));
    QCOMPARE(text,
             QStringLiteral("AddrUki\t0\nNumUki\t1\nRisoM3s1\t40\nRisoM3s2\t20\nRisoLoc\t80\n"
                            "TimeMto\t20\nTcust\t0\nTimeM3s\t0\nRiso420\t200\nFlags\t130\n"
                            "Urelay\t250\nUminus\t135\nMbAddr\t1\nMbBaud\t3\nMbParity\t0\n"
                            "CapSopt\t0\nModeDef\t0\nBright\t500\nContrast\t30\nTbridge\t0\n"
                            "lang\t0\nAveraging\t10\nModeInput\t0"));
}

void tst_UkiSettings::roundTrip_data()
{
    QTest::addColumn<UkiSettings>("settings");
    QTest::newRow("default") << UkiSettings();
    QTest::newRow("every field changed") << nonDefault();
    UkiSettings lowest;
    for (int i = 0; i < UkiSettings::FieldCount; ++i)
        lowest.setValue(UkiSettings::Field(i), expected[i].minimum);
    QTest::newRow("every field at its lowest") << lowest;
}

void tst_UkiSettings::roundTrip()
{
    QFETCH(UkiSettings, settings);
    const QStringList lines = settings.toLines();
    QCOMPARE(lines.size(), 23);

    // Parse into a record that differs everywhere, so every field must come from the text.
    UkiSettings parsed;
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        parsed.setValue(field, settings.value(field) ^ 1);
    }
    parsed.fromLines(lines);
    QCOMPARE(parsed, settings);
    QVERIFY(messages.isEmpty());
}

void tst_UkiSettings::writeCommands()
{
    const QStringList defaults = UkiSettings().writeCommands();
    QCOMPARE(defaults.size(), 24);
    QCOMPARE(defaults.first(), QStringLiteral("set_cfg_AddrUki_0"));
    QCOMPARE(defaults.at(9), QStringLiteral("set_cfg_Flags_130"));
    QCOMPARE(defaults.at(20), QStringLiteral("set_cfg_lang_0"));
    QCOMPARE(defaults.at(22), QStringLiteral("set_cfg_ModeInput_0"));
    QCOMPARE(defaults.last(), QStringLiteral("set_cfg_save_1"));

    // Whatever the record holds goes out unchecked.
    UkiSettings settings = nonDefault();
    settings.setValue(UkiSettings::ModeInput, 3);
    settings.setValue(UkiSettings::TimeMto, 80);
    const QStringList commands = settings.writeCommands();
    QCOMPARE(commands.size(), 24);
    QCOMPARE(commands.at(0), QStringLiteral("set_cfg_AddrUki_31"));
    QCOMPARE(commands.at(5), QStringLiteral("set_cfg_TimeMto_80"));
    QCOMPARE(commands.at(22), QStringLiteral("set_cfg_ModeInput_3"));
    QCOMPARE(commands.at(23), QStringLiteral("set_cfg_save_1"));
}

void tst_UkiSettings::jsonFallbacks()
{
    const UkiSettings settings = UkiSettings::fromJson(QJsonObject());
    const int fallbacks[] = {0, 1, 40, 20, 80, 20, 0,   0,  200, 130, 250, 135,
                             1, 3, 0,  0,  0,  0,  500, 30, 0,   0,   50};
    for (int i = 0; i < UkiSettings::FieldCount; ++i)
        QCOMPARE(settings.value(UkiSettings::Field(i)), fallbacks[i]);

    QJsonObject object;
    object.insert(QStringLiteral("Bright"), 700);
    object.insert(QStringLiteral("Contrast"), QStringLiteral("not a number"));
    object.insert(QStringLiteral("addruki"), 5);
    const UkiSettings partial = UkiSettings::fromJson(object);
    QCOMPARE(partial.value(UkiSettings::Bright), 700);
    QCOMPARE(partial.value(UkiSettings::Contrast), 500);
    QCOMPARE(partial.value(UkiSettings::AddrUki), 0);
}

void tst_UkiSettings::jsonRoundTrip()
{
    const UkiSettings settings = nonDefault();
    const QJsonObject object = settings.toJson();
    QCOMPARE(object.size(), 23);
    QCOMPARE(object.value(QStringLiteral("lang")).toInt(-1), 1);
    QCOMPARE(object.value(QStringLiteral("Flags")).toInt(), INT_MAX);
    QCOMPARE(UkiSettings::fromJson(object), settings);
}

QTEST_GUILESS_MAIN(tst_UkiSettings)
#include "tst_ukisettings.moc"
