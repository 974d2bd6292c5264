#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"
#include "support.h"

#include <QtTest>

#include <climits>

namespace {

// Keys in text order with accepted range and default, written down apart from the records.
const char *const ukiKeys
        = "AddrUki 0 31 0,NumUki 0 32 1,RisoM3s1 1 999 40,RisoM3s2 1 999 20,RisoLoc 10 990 80,"
          "TimeMto 0 60 20,Tcust 0 120 0,TimeM3s 0 5 0,Riso420 2 999 200,Flags 0 2147483647 130,"
          "Urelay 1 300 250,Uminus 0 300 135,MbAddr 1 247 1,MbBaud 0 7 3,MbParity 0 2 0,"
          "CapSopt 0 900 0,ModeDef 0 5 0,Bright 0 1000 500,Contrast 0 100 30,Tbridge 0 2 0,"
          "lang 0 1 0,Averaging 0 50 10,ModeInput 0 2 0";
const char *const ukpsKeys
        = "AddrUki 0 31 0,NumUki 0 32 1,RisoM3s1 1 999 40,RisoM3s2 1 999 20,RisoLoc 10 990 80,"
          "TimeMto 24 44 24,Tcust 0 120 0,TimeM3s 0 5 0,Riso420 2 999 200,Flags 0 2147483647 130,"
          "Urelay 1 300 250,MbAddr 1 247 1,MbBaud 0 7 3,MbParity 0 2 0,CapSopt 0 60 0,"
          "ModeDef 0 5 0,Bright 0 1000 500,Contrast 0 100 30,Tbridge 0 2 0,lang 0 1 0,"
          "FRiso1 0 5 1,FRiso2 0 5 1,FUdis 0 5 1,FUminus 0 5 1,FFail 0 5 0,FBrwire 0 5 2,"
          "FDisch 0 5 2,FOver 0 5 3,FFall 0 5 3,FRippleU 0 5 3,FRippleI 0 5 2,FRisoP 0 5 0,"
          "FRisoN 0 5 0,FSymmetry 0 5 4,FOverTemp 0 5 5,FFallTemp 0 5 5,FOverTail 0 5 4,"
          "FFallTail 0 5 4,Cstart 0 1 0,NumShunt 1 14 1,UMin 0 300 100,UMax 0 300 250,"
          "IDischMin -9999 -2 -10,IChargeMin 10 9999 10,Uripple 10 300 40,Iripple 10 2000 40,"
          "NumElemAb 1 120 104,DeltaSym 1 100 20,OverTemp 20 100 100,FallTemp -20 20 10,"
          "OverTail 10 60 50,FallTail 5 40 20,OverDly 1 120 4,FallDly 1 120 4,"
          "BrwireDly 1 600 600,DischDly 1 600 600,RippleUDly 1 120 4,RippleIDly 1 120 4,"
          "TempDly 1 120 4,FUnsch 0 5 2,UnschDly 0 120 600,Uminus 0 135 135,Urbrk 0 30000 0";

struct Key
{
    QString key;
    qint64 minimum = 0;
    qint64 maximum = 0;
    qint64 defaultValue = 0;
};

QVector<Key> keysOf(const QString &type)
{
    QVector<Key> keys;
    for (const QString &entry :
         QString::fromLatin1(type == "uki" ? ukiKeys : ukpsKeys).split(',')) {
        const QStringList p = entry.split(' ');
        keys.append({p[0], p[1].toLongLong(), p[2].toLongLong(), p[3].toLongLong()});
    }
    return keys;
}

// Each key at a value other than its default, inside its range.
QStringList nonDefaultLines(const QString &type)
{
    QStringList lines;
    for (const Key &k : keysOf(type))
        lines << QStringLiteral("%1\t%2").arg(k.key).arg(k.defaultValue == k.maximum ? k.minimum
                                                                                     : k.maximum);
    return lines;
}

// The monitor's parser as a whole: starts from the default record unless lines are given.
struct Parsed
{
    QStringList lines;    // toLines() afterwards
    QStringList commands; // writeCommands() afterwards
    QStringList log;      // what fromLines() logged
    bool taken = true;    // UkpsSettings::fromLines() result; always true for the monitor
};

template<class Record>
Parsed parse(const QStringList &start, const QStringList &lines)
{
    Record record;
    if (!start.isEmpty())
        record.fromLines(start);
    TestSupport::MessageCapture capture;
    bool taken = true;
    if constexpr (std::is_same_v<Record, UkpsSettings>)
        taken = record.fromLines(lines);
    else
        record.fromLines(lines);
    return {record.toLines(), record.writeCommands(), capture.messages(), taken};
}

Parsed parseAs(const QString &type, const QStringList &start, const QStringList &lines)
{
    return type == "uki" ? parse<UkiSettings>(start, lines) : parse<UkpsSettings>(start, lines);
}

// The default text with some keys changed.
QStringList defaultsWith(const QString &type, const QMap<QString, QString> &changes)
{
    QStringList lines;
    for (const Key &k : keysOf(type))
        lines << k.key + '\t' + changes.value(k.key, QString::number(k.defaultValue));
    return lines;
}

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void everyKey_data();
    void everyKey();
    void text();
    void parse_data();
    void parse();
    void ukiJson();
};

void tst_Settings::everyKey_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("key");
    QTest::addColumn<qint64>("value");
    QTest::addColumn<bool>("accepted");
    for (const QString type : {"uki", "ukps"}) {
        for (const Key &k : keysOf(type)) {
            const QByteArray name = (type + ' ' + k.key).toLatin1();
            QTest::addRow("%s %lld lowest", name.data(), k.minimum)
                    << type << k.key << k.minimum << true;
            QTest::addRow("%s %lld below", name.data(), k.minimum - 1)
                    << type << k.key << k.minimum - 1 << false;
            QTest::addRow("%s %lld highest", name.data(), k.maximum)
                    << type << k.key << k.maximum << true;
            if (k.maximum < INT_MAX)
                QTest::addRow("%s %lld above", name.data(), k.maximum + 1)
                        << type << k.key << k.maximum + 1 << false;
        }
    }
}

void tst_Settings::everyKey()
{
    QFETCH(QString, type);
    QFETCH(QString, key);
    QFETCH(qint64, value);
    QFETCH(bool, accepted);
    // Start from a text where this key holds another accepted value.
    QStringList start = nonDefaultLines(type);
    const QVector<Key> keys = keysOf(type);
    int index = 0;
    while (keys[index].key != key)
        ++index;
    const Key &k = keys[index];
    start[index] = key + '\t' + QString::number(value <= k.minimum ? k.maximum : k.minimum);
    QStringList wanted = start;
    const QString line = key + '\t' + QString::number(value);
    if (accepted)
        wanted[index] = line;
    const Parsed parsed = parseAs(type, start, {line});
    QCOMPARE(parsed.lines, wanted);
}

// The text and the write program of a record with every key changed.
void tst_Settings::text()
{
    for (const QString type : {"uki", "ukps"}) {
        const QStringList lines = nonDefaultLines(type);
        const Parsed parsed = parseAs(type, lines, {});
        QCOMPARE(parsed.lines, lines);
        QStringList commands;
        for (const QString &line : lines)
            commands << "set_cfg_" + QString(line).replace('\t', '_');
        commands << "set_cfg_save_1";
        QCOMPARE(parsed.commands, commands);
    }
}

void tst_Settings::parse_data()
{
    QTest::addColumn<QString>("row");
    // monitor | lines (";" between) | changed keys | log other than the UKPS echo | taken
    // clang-format off
    const QStringList rows = {
            "uki|addruki\t3;Lang\t1||Bad string uki: \"addruki;Bad string uki: \"Lang|1",
            "uki|Flags\t2147483648|Flags=0||1",
            "uki| Bright \t 700 |Bright=700||1",
            "uki|Riso  Loc\t100||Bad string uki: \"Riso Loc|1",
            "uki|Urelay\t100\tanything|Urelay=100||1",
            "uki|RisoLoc 200;;Bright\t||Bad line in UKI config : RisoLoc 200;Bad line in UKI config : ;Bad line in UKI config : Bright|1",
            "uki|ModeDef\twmAuto;Bright\t0x10;RisoM3s1\tabc|ModeDef=0 Bright=0|got bad value for RisoM3s1 : 0!|1",
            "uki|junk;Tcust\t10;CapSopt\t901;Tcust\t120|Tcust=120|Bad line in UKI config : junk;got bad value for CapSopt : 901!|1",
            "uki|RS485_addr\t1;Tmost\tOFF;Urelay\t13|Urelay=13|Bad string uki: \"RS485_addr;Bad string uki: \"Tmost|1",
            "ukps|" + UkiSettings().toLines().join(';') + "||got bad value for TimeMto : 20!;Bad string ukps: \"Averaging;Bad string ukps: \"ModeInput|1",
            "ukps|;OK;NumShunt\t0;Averaging\t1||Bad line in UKI config : ;Bad line in UKI config : OK;got bad value for NumShunt : 0!;Bad string ukps: \"Averaging|0",
            "ukps| Uripple \t 25\tx|Uripple=25||1",
            "ukps|Lang\t1||Bad string ukps: \"Lang|0",
    };
    // clang-format on
    for (const QString &row : rows)
        QTest::newRow(qPrintable(row.left(40))) << row;
}

void tst_Settings::parse()
{
    QFETCH(QString, row);
    const QStringList p = row.split('|');
    const QString type = p[0];
    const QStringList lines = p[1].split(';');
    QMap<QString, QString> changes;
    for (const QString &pair : p[2].split(' ', Qt::SkipEmptyParts))
        changes.insert(pair.section('=', 0, 0), pair.section('=', 1));
    const Parsed parsed = parseAs(type, {}, lines);
    QCOMPARE(parsed.lines, defaultsWith(type, changes));
    QStringList log;
    for (const QString &m : parsed.log)
        if (!m.startsWith("Line in UKI config : "))
            log << m;
    QCOMPARE(log.join(';'), p[3]);
    QCOMPARE(parsed.taken, p[4] == "1");
    if (type == "ukps")
        QCOMPARE(parsed.log.size() - log.size(), lines.size());
}

// The monitor's object form: missing members take their own fall-backs.
void tst_Settings::ukiJson()
{
    QJsonObject partial{{"Bright", 700}, {"Contrast", "not a number"}, {"addruki", 5}};
    QCOMPARE(UkiSettings::fromJson(partial).toLines(),
             defaultsWith("uki",
                          {{"Bright", "700"},
                           {"Contrast", "500"},
                           {"Tbridge", "30"},
                           {"Averaging", "0"},
                           {"ModeInput", "50"}}));
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
