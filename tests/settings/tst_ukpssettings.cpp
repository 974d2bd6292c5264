#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"

#include <QtTest>

#include <climits>

using Changes = QVector<QPair<int, int>>;
Q_DECLARE_METATYPE(UkpsSettings)

namespace {

// The documented fields of the network and battery monitors in storage order, kept here
// independently of the record; reserved words have no key.
struct Expected
{
    const char *key;
    int minimum;
    int maximum;
    int defaultValue;
};

// clang-format off
const Expected expected[] = {
    {"AddrUki", 0, 31, 0},        {"NumUki", 0, 32, 1},        {"RisoM3s1", 1, 999, 40},
    {"RisoM3s2", 1, 999, 20},     {"RisoLoc", 10, 990, 80},    {"TimeMto", 24, 44, 24},
    {"Tcust", 0, 120, 0},         {"TimeM3s", 0, 5, 0},        {"Riso420", 2, 999, 200},
    {"Flags", 0, INT_MAX, 130},   {"Urelay", 1, 300, 250},     {"MbAddr", 1, 247, 1},
    {"MbBaud", 0, 7, 3},          {"MbParity", 0, 2, 0},       {"CapSopt", 0, 60, 0},
    {"ModeDef", 0, 5, 0},         {"Bright", 0, 1000, 500},    {"Contrast", 0, 100, 30},
    {"Tbridge", 0, 2, 0},         {"lang", 0, 1, 0},
    {"", 0, 0, 0},                {"", 0, 0, 0},               {"", 0, 0, 1065353216},
    {"FRiso1", 0, 5, 1},          {"FRiso2", 0, 5, 1},         {"FUdis", 0, 5, 1},
    {"FUminus", 0, 5, 1},         {"FFail", 0, 5, 0},          {"FBrwire", 0, 5, 2},
    {"FDisch", 0, 5, 2},          {"FOver", 0, 5, 3},          {"FFall", 0, 5, 3},
    {"FRippleU", 0, 5, 3},        {"FRippleI", 0, 5, 2},       {"FSymmetry", 0, 5, 4},
    {"FOverTemp", 0, 5, 5},       {"FFallTemp", 0, 5, 5},      {"FOverTail", 0, 5, 4},
    {"FFallTail", 0, 5, 4},       {"FRisoP", 0, 5, 0},         {"FRisoN", 0, 5, 0},
    {"Cstart", 0, 1, 0},          {"NumShunt", 1, 14, 1},      {"UMin", 0, 300, 100},
    {"UMax", 0, 300, 250},        {"IDischMin", -9999, -2, -10}, {"IChargeMin", 10, 9999, 10},
    {"Uripple", 10, 300, 40},     {"Iripple", 10, 2000, 40},   {"NumElemAb", 1, 120, 104},
    {"DeltaSym", 1, 100, 20},     {"OverTemp", 20, 100, 100},  {"FallTemp", -20, 20, 10},
    {"OverTail", 10, 60, 50},     {"FallTail", 5, 40, 20},     {"OverDly", 1, 120, 4},
    {"FallDly", 1, 120, 4},       {"BrwireDly", 1, 600, 600},  {"DischDly", 1, 600, 600},
    {"RippleUDly", 1, 120, 4},    {"RippleIDly", 1, 120, 4},   {"TempDly", 1, 120, 4},
    {"FUnsch", 0, 5, 2},          {"UnschDly", 0, 120, 600},   {"Uminus", 0, 135, 135},
    {"Urbrk", 0, 30000, 0},
};
// clang-format on

QStringList messages;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg)
        messages.append(message);
}

UkpsSettings changed(const Changes &changes)
{
    UkpsSettings settings;
    for (const auto &change : changes)
        settings.setValue(UkpsSettings::Field(change.first), change.second);
    return settings;
}

bool isReserved(int field)
{
    return field >= UkpsSettings::Reserved1 && field <= UkpsSettings::Reserved3;
}

// Every keyed field differs from its default and stays within its accepted range; the reserved
// words keep their defaults.
UkpsSettings nonDefault()
{
    UkpsSettings settings;
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        if (isReserved(i))
            continue;
        const auto field = UkpsSettings::Field(i);
        const qint32 value = UkpsSettings::defaultValue(field) == UkpsSettings::maximum(field)
                                     ? UkpsSettings::minimum(field)
                                     : UkpsSettings::maximum(field);
        settings.setValue(field, value);
    }
    return settings;
}

// What the debug log receives for one line: every line is echoed as received, then what went
// wrong with it, if anything.
QString echo(const QString &line)
{
    return QStringLiteral("Line in UKI config : %1").arg(line);
}

QString badValue(const QString &key, int value)
{
    return QStringLiteral("got bad value for %1 : %2!").arg(key).arg(value);
}

QString badString(const QString &key)
{
    return QStringLiteral("Bad string ukps: \"%1").arg(key);
}

QString badLine(const QString &line)
{
    return QStringLiteral("Bad line in UKI config : %1").arg(line);
}

} // namespace

class tst_UkpsSettings : public QObject
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
    void insulationMonitorText();
    void nothingTaken_data();
    void nothingTaken();
    void defaultLines();
    void roundTrip_data();
    void roundTrip();
    void reservedWords();
    void writeCommands();

private:
    QtMessageHandler m_previousHandler = nullptr;
};

void tst_UkpsSettings::init()
{
    messages.clear();
    m_previousHandler = qInstallMessageHandler(collect);
}

void tst_UkpsSettings::cleanup()
{
    qInstallMessageHandler(m_previousHandler);
}

void tst_UkpsSettings::table()
{
    QCOMPARE(UkpsSettings::FieldCount, 66);
    const UkpsSettings settings;
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        const auto field = UkpsSettings::Field(i);
        QCOMPARE(UkpsSettings::key(field), QLatin1String(expected[i].key));
        QCOMPARE(settings.value(field), expected[i].defaultValue);
        QCOMPARE(UkpsSettings::defaultValue(field), expected[i].defaultValue);
        if (isReserved(i))
            continue;
        QCOMPARE(UkpsSettings::minimum(field), expected[i].minimum);
        QCOMPARE(UkpsSettings::maximum(field), expected[i].maximum);
    }
}

void tst_UkpsSettings::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<Changes>("changes");
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("IDischMin -1 refused")
            << "IDischMin\t-1" << Changes{} << QStringList{badValue("IDischMin", -1)};
    QTest::newRow("IDischMin -10 accepted")
            << "IDischMin\t-10" << Changes{{UkpsSettings::IDischMin, -10}} << QStringList{};
    QTest::newRow("IDischMin -9999 accepted")
            << "IDischMin\t-9999" << Changes{{UkpsSettings::IDischMin, -9999}} << QStringList{};
    QTest::newRow("IDischMin 0 from non-number refused")
            << "IDischMin\tlow" << Changes{} << QStringList{badValue("IDischMin", 0)};
    QTest::newRow("FallTemp -20 accepted")
            << "FallTemp\t-20" << Changes{{UkpsSettings::FallTemp, -20}} << QStringList{};
    QTest::newRow("FallTemp -21 refused")
            << "FallTemp\t-21" << Changes{} << QStringList{badValue("FallTemp", -21)};
    QTest::newRow("NumShunt 0 refused")
            << "NumShunt\t0" << Changes{} << QStringList{badValue("NumShunt", 0)};
    QTest::newRow("NumShunt 15 refused")
            << "NumShunt\t15" << Changes{} << QStringList{badValue("NumShunt", 15)};
    QTest::newRow("NumShunt 14 accepted")
            << "NumShunt\t14" << Changes{{UkpsSettings::NumShunt, 14}} << QStringList{};
    QTest::newRow("TimeMto 14 from the form refused")
            << "TimeMto\t14" << Changes{} << QStringList{badValue("TimeMto", 14)};
    QTest::newRow("TimeMto 44 accepted")
            << "TimeMto\t44" << Changes{{UkpsSettings::TimeMto, 44}} << QStringList{};
    QTest::newRow("UnschDly 600 default refused")
            << "UnschDly\t600" << Changes{} << QStringList{badValue("UnschDly", 600)};
    QTest::newRow("Uminus 136 refused")
            << "Uminus\t136" << Changes{} << QStringList{badValue("Uminus", 136)};
    QTest::newRow("Uripple 25 accepted")
            << "Uripple\t25" << Changes{{UkpsSettings::Uripple, 25}} << QStringList{};
    QTest::newRow("FRisoP accepted")
            << "FRisoP\t5" << Changes{{UkpsSettings::FRisoP, 5}} << QStringList{};
    QTest::newRow("FRisoN 6 refused")
            << "FRisoN\t6" << Changes{} << QStringList{badValue("FRisoN", 6)};
    QTest::newRow("Averaging unknown")
            << "Averaging\t10" << Changes{} << QStringList{badString("Averaging")};
    QTest::newRow("Lang unknown") << "Lang\t1" << Changes{} << QStringList{badString("Lang")};
    QTest::newRow("lang accepted")
            << "lang\t1" << Changes{{UkpsSettings::Lang, 1}} << QStringList{};
    QTest::newRow("blanks around both parts")
            << " Bright \t 700 " << Changes{{UkpsSettings::Bright, 700}} << QStringList{};
    QTest::newRow("third part ignored")
            << "Urbrk\t30000\tmV" << Changes{{UkpsSettings::Urbrk, 30000}} << QStringList{};
    QTest::newRow("no tab") << "Urbrk 100" << Changes{} << QStringList{badLine("Urbrk 100")};
}

void tst_UkpsSettings::parse()
{
    QFETCH(QString, line);
    QFETCH(Changes, changes);
    QFETCH(QStringList, problems);

    UkpsSettings settings;
    QCOMPARE(settings.fromLines({line}), !changes.isEmpty());
    QCOMPARE(settings.toLines(), changed(changes).toLines());
    QCOMPARE(messages, QStringList{echo(line)} + problems);
}

void tst_UkpsSettings::rangeEdges_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("accepted");
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        if (isReserved(i))
            continue;
        const Expected &e = expected[i];
        QTest::addRow("%s %d lowest", e.key, e.minimum) << i << e.minimum << true;
        QTest::addRow("%s %d below", e.key, e.minimum - 1) << i << e.minimum - 1 << false;
        QTest::addRow("%s %d highest", e.key, e.maximum) << i << e.maximum << true;
        if (e.maximum < INT_MAX)
            QTest::addRow("%s %d above", e.key, e.maximum + 1) << i << e.maximum + 1 << false;
    }
}

void tst_UkpsSettings::rangeEdges()
{
    QFETCH(int, field);
    QFETCH(int, value);
    QFETCH(bool, accepted);

    const QString key = QLatin1String(expected[field].key);
    const QString line = key + QLatin1Char('\t') + QString::number(value);
    // A start value that differs from the one offered, so a stored value always shows.
    const int before = value ^ 1;
    UkpsSettings settings;
    settings.setValue(UkpsSettings::Field(field), before);
    QCOMPARE(settings.fromLines({line}), accepted);
    QCOMPARE(settings.value(UkpsSettings::Field(field)), accepted ? value : before);
    QStringList log{echo(line)};
    if (!accepted)
        log.append(badValue(key, value));
    QCOMPARE(messages, log);
}

void tst_UkpsSettings::insulationMonitorText()
{
    UkiSettings uki;
    uki.setValue(UkiSettings::RisoM3s1, 55);
    uki.setValue(UkiSettings::TimeMto, 20);
    uki.setValue(UkiSettings::CapSopt, 100);
    uki.setValue(UkiSettings::Urelay, 120);
    uki.setValue(UkiSettings::Bright, 900);
    const QStringList lines = uki.toLines();

    UkpsSettings settings;
    QVERIFY(settings.fromLines(lines));

    // Keys both monitors know are taken unless the value is outside this monitor's range.
    UkpsSettings wanted;
    wanted.setValue(UkpsSettings::RisoM3s1, 55);
    wanted.setValue(UkpsSettings::Urelay, 120);
    wanted.setValue(UkpsSettings::Bright, 900);
    QCOMPARE(settings, wanted);

    QStringList log;
    for (const QString &line : lines) {
        log.append(echo(line));
        if (line.startsWith(QLatin1String("TimeMto")))
            log.append(badValue("TimeMto", 20));
        else if (line.startsWith(QLatin1String("CapSopt")))
            log.append(badValue("CapSopt", 100));
        else if (line.startsWith(QLatin1String("Averaging")))
            log.append(badString("Averaging"));
        else if (line.startsWith(QLatin1String("ModeInput")))
            log.append(badString("ModeInput"));
    }
    QCOMPARE(messages, log);
}

void tst_UkpsSettings::nothingTaken_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("empty list") << QStringList{};
    QTest::newRow("only unknown keys") << QStringList{"Averaging\t10", "ModeInput\t0"};
    QTest::newRow("only refused values") << QStringList{"NumShunt\t0", "TimeMto\t20"};
    QTest::newRow("only bad lines") << QStringList{"", "OK", "Unrecognize"};
}

void tst_UkpsSettings::nothingTaken()
{
    QFETCH(QStringList, lines);
    UkpsSettings settings = nonDefault();
    QVERIFY(!settings.fromLines(lines));
    QCOMPARE(settings, nonDefault());
    QCOMPARE(messages.size(), lines.size() * 2);
}

void tst_UkpsSettings::defaultLines()
{
    const QString text = UkpsSettings().toLines().join(QLatin1Char('\n'));
    QCOMPARE(text,
             QStringLiteral("AddrUki\t0\nNumUki\t1\nRisoM3s1\t40\nRisoM3s2\t20\nRisoLoc\t80\n"
                            "TimeMto\t24\nTcust\t0\nTimeM3s\t0\nRiso420\t200\nFlags\t130\n"
                            "Urelay\t250\nMbAddr\t1\nMbBaud\t3\nMbParity\t0\nCapSopt\t0\n"
                            "ModeDef\t0\nBright\t500\nContrast\t30\nTbridge\t0\nlang\t0\n"
                            "FRiso1\t1\nFRiso2\t1\nFUdis\t1\nFUminus\t1\nFFail\t0\nFBrwire\t2\n"
                            "FDisch\t2\nFOver\t3\nFFall\t3\nFRippleU\t3\nFRippleI\t2\n"
                            "FRisoP\t0\nFRisoN\t0\nFSymmetry\t4\nFOverTemp\t5\nFFallTemp\t5\n"
                            "FOverTail\t4\nFFallTail\t4\nCstart\t0\nNumShunt\t1\nUMin\t100\n"
                            "UMax\t250\nIDischMin\t-10\nIChargeMin\t10\nUripple\t40\n"
                            "Iripple\t40\nNumElemAb\t104\nDeltaSym\t20\nOverTemp\t100\n"
                            "FallTemp\t10\nOverTail\t50\nFallTail\t20\nOverDly\t4\nFallDly\t4\n"
                            "BrwireDly\t600\nDischDly\t600\nRippleUDly\t4\nRippleIDly\t4\n"
                            "TempDly\t4\nFUnsch\t2\nUnschDly\t600\nUminus\t135\nUrbrk\t0"));
}

void tst_UkpsSettings::roundTrip_data()
{
    QTest::addColumn<UkpsSettings>("settings");
    QTest::addColumn<QStringList>("problems");
    // The default UnschDly (600) lies outside the accepted range: it does not survive the text.
    QTest::newRow("default") << UkpsSettings() << QStringList{badValue("UnschDly", 600)};
    QTest::newRow("every keyed field changed") << nonDefault() << QStringList{};
    UkpsSettings lowest;
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        if (!isReserved(i))
            lowest.setValue(UkpsSettings::Field(i), expected[i].minimum);
    }
    QTest::newRow("every keyed field at its lowest") << lowest << QStringList{};
}

void tst_UkpsSettings::roundTrip()
{
    QFETCH(UkpsSettings, settings);
    QFETCH(QStringList, problems);
    const QStringList lines = settings.toLines();
    QCOMPARE(lines.size(), 63);

    // Parse into a record whose keyed fields all differ, so each must come from the text.
    UkpsSettings parsed;
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        if (!isReserved(i))
            parsed.setValue(UkpsSettings::Field(i), settings.value(UkpsSettings::Field(i)) ^ 1);
    }
    QVERIFY(parsed.fromLines(lines));
    if (problems.isEmpty()) {
        QCOMPARE(parsed, settings);
    } else {
        QCOMPARE(parsed.value(UkpsSettings::UnschDly), 601);
        parsed.setValue(UkpsSettings::UnschDly, 600);
        QCOMPARE(parsed, settings);
    }
    QStringList log;
    for (const QString &message : qAsConst(messages)) {
        if (!message.startsWith(QLatin1String("Line in UKI config : ")))
            log.append(message);
    }
    QCOMPARE(log, problems);
}

void tst_UkpsSettings::reservedWords()
{
    UkpsSettings settings;
    settings.setValue(UkpsSettings::Reserved3, 7);
    QVERIFY(settings != UkpsSettings());
    QCOMPARE(settings.values().at(22), 7);
    QCOMPARE(settings.values().size(), std::size_t(66));
    // Neither the text nor the write program carries them, and text does not reach them.
    QCOMPARE(settings.toLines(), UkpsSettings().toLines());
    QCOMPARE(settings.writeCommands(), UkpsSettings().writeCommands());
    settings.fromLines(nonDefault().toLines());
    QCOMPARE(settings.value(UkpsSettings::Reserved1), 0);
    QCOMPARE(settings.value(UkpsSettings::Reserved2), 0);
    QCOMPARE(settings.value(UkpsSettings::Reserved3), 7);
}

void tst_UkpsSettings::writeCommands()
{
    const QStringList commands = UkpsSettings().writeCommands();
    QCOMPARE(commands.size(), 64);
    QCOMPARE(commands.at(0), QStringLiteral("set_cfg_AddrUki_0"));
    QCOMPARE(commands.at(9), QStringLiteral("set_cfg_Flags_130"));
    QCOMPARE(commands.at(19), QStringLiteral("set_cfg_lang_0"));
    QCOMPARE(commands.at(20), QStringLiteral("set_cfg_FRiso1_1"));
    QCOMPARE(commands.at(30), QStringLiteral("set_cfg_FRippleI_2"));
    QCOMPARE(commands.at(31), QStringLiteral("set_cfg_FRisoP_0"));
    QCOMPARE(commands.at(32), QStringLiteral("set_cfg_FRisoN_0"));
    QCOMPARE(commands.at(33), QStringLiteral("set_cfg_FSymmetry_4"));
    QCOMPARE(commands.at(37), QStringLiteral("set_cfg_FFallTail_4"));
    QCOMPARE(commands.at(38), QStringLiteral("set_cfg_Cstart_0"));
    QCOMPARE(commands.at(42), QStringLiteral("set_cfg_IDischMin_-10"));
    QCOMPARE(commands.at(61), QStringLiteral("set_cfg_Uminus_135"));
    QCOMPARE(commands.at(62), QStringLiteral("set_cfg_Urbrk_0"));
    QCOMPARE(commands.at(63), QStringLiteral("set_cfg_save_1"));

    // Whatever the record holds goes out unchecked, in text order.
    UkpsSettings settings;
    settings.setValue(UkpsSettings::TimeMto, 14);
    settings.setValue(UkpsSettings::FallTemp, -20);
    settings.setValue(UkpsSettings::FRisoN, 5);
    const QStringList changedCommands = settings.writeCommands();
    QCOMPARE(changedCommands.at(5), QStringLiteral("set_cfg_TimeMto_14"));
    QCOMPARE(changedCommands.at(49), QStringLiteral("set_cfg_FallTemp_-20"));
    QCOMPARE(changedCommands.at(32), QStringLiteral("set_cfg_FRisoN_5"));
    QCOMPARE(changedCommands.at(60), QStringLiteral("set_cfg_UnschDly_600"));
}

QTEST_GUILESS_MAIN(tst_UkpsSettings)
#include "tst_ukpssettings.moc"
