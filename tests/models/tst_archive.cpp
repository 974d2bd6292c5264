#include "models/archivedata.h"
#include "models/archivefilterproxy.h"
#include "support.h"

#include <QAbstractItemModelTester>
#include <QtTest>

#include <time.h>

namespace {

const QString header = "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-"
                       "6\tValue-7\tValue-8";

void setTimeZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
    tzset();
}

// "TYPE TYPE:v1 v2:..." -> one line per type, values padded with 0 to Value-8.
QStringList eventLines(const QString &types, const QString &values)
{
    QStringList lines;
    for (const QString &type : types.split(' ')) {
        QStringList fields = QStringList{"7", "05.04.20", "12:00:00", type}
                             + values.split(' ', Qt::SkipEmptyParts);
        while (fields.size() < 12)
            fields << "0";
        lines << fields.join('\t');
    }
    return lines;
}

// The event codes of each filter class, "first-last" for a run.
QList<uint> classCodes(int filterClass)
{
    const QString classes = "1-46 48 128 129,1,11,10,16 17 18 46,21-26 29 32 34-45,"
                            "2-9 12-15 19 20 27 28 48,31";
    QList<uint> codes;
    for (const QString &run : classes.split(',').value(filterClass).split(' ', Qt::SkipEmptyParts))
        for (uint code = run.section('-', 0, 0).toUInt(); code <= run.section('-', -1).toUInt();
             ++code)
            codes << code;
    return codes;
}

QStringList everyType()
{
    QStringList lines{header};
    for (const EventTypeInfo &info : ArchiveData::eventTypes())
        lines << QString("%1\t05.04.20\t12:00:00\t%2\t1111111111111111\t0\t0\t0\t0\t0\t0\t0")
                         .arg(info.code)
                         .arg(info.identifier);
    return lines;
}

} // namespace

// Event archive dumps read into a table, and the archive filter on top of it.
class tst_Archive : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { setTimeZone("Europe/Moscow"); }
    void rows_data();
    void rows();
    void dataText_data();
    void dataText();
    void values_data();
    void values();
    void times_data();
    void times();
    void typeCode();
    void filter_data();
    void filter();
};

void tst_Archive::rows_data()
{
    QTest::addColumn<QStringList>("dump");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("log");
    // clang-format off
    const QString i1 = "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0";
    const QString i3 = "3\t05.04.20\t18:11:11\tET_GENERAL_RESISTANCE\t101\t112\t999\t227\t23\t204\t181\t0";
    const QString i4 = "4\t05.04.20\t17:42:46\tET_FEED_PARAM\t177\t0\t667\t5\t16\t0\t05.04.20\t17:41:50";
    const QString sodc = "5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0";
    const QString ct7 = "6\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t1\t0\t1";
    const QString bad7 = "2\t05.04.20\t21:38:00", unknown = "8\t05.04.20\t21:38:00\tET_UNKNOWN\t1\t2\t3\t4\t5\t6\t7\t8";
    const QString r1 = "1|05.04.2020 21:38:00|Включение питания и версия ПО|Версия прошивки: 9.6.35";
    const QString r3 = "3|05.04.2020 18:11:11|Запись с замерами сопротивления (периодическая)|Rобщ = 101кОм, R+/- = 112/999кОм; Uаб = 227В, U+/- = 23/204В";
    const QString r4 = "4|05.04.2020 17:42:46|Результаты поиска|Адрес: 5, канал: 16: Rизо = 177кОм, C = 0.0мкФ I = 667мкА";
    const QString r5 = "5|05.04.2020 17:41:50|Ёмкость сети|С = 0.0мкФ, I = 1260мкА";
    const QString bad = "bad line in archve dump: ";
    QTest::newRow("dump in order, search result C in tenths") << QStringList{header, i1, i3, i4} << QStringList{r1, r3, r4} << QStringList();
    QTest::newRow("11 fields refused, 12 and 13 taken") << QStringList{sodc, sodc + "\t0", sodc + "\t0\t9"} << QStringList{r5, r5} << QStringList{bad + sodc};
    QTest::newRow("CT fault needs 8 fields") << QStringList{ct7, ct7 + "\t1"} << QStringList{"6|05.04.2020 10:00:00|Неисправность ТТ|Адрес: УКИ, ТТ: XXXX XXXX XXXX XXXX"} << QStringList{bad + ct7};
    QTest::newRow("bad lines skipped, unknown type silent, blanks trimmed") << QStringList{"3 uki-kiranto", bad7, "", i1 + "\r", unknown, "  " + i3} << QStringList{r1, r3} << QStringList{bad + "3 uki-kiranto", bad + bad7, bad};
    QTest::newRow("non-numeric item 0, bad time shows the epoch") << QStringList{"x" + i1.mid(1), "-5\t5.4.20" + i1.mid(10)} << QStringList{"0" + r1.mid(1), "-5|01.01.1970 03:00:00" + r1.mid(21)} << QStringList();
    // clang-format on
}

void tst_Archive::rows()
{
    QFETCH(QStringList, dump);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, log);
    TestSupport::MessageCapture capture;
    ArchiveData archive(QStringList{"x"});
    QAbstractItemModelTester tester(&archive,
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    capture.clear();
    archive.setLines(dump);
    QCOMPARE(capture.messages(), log);
    QCOMPARE(TestSupport::modelRows(&archive), rows);
    QStringList headers;
    for (int section = 0; section < 4; ++section)
        headers << archive.headerData(section, Qt::Horizontal).toString();
    QCOMPARE(headers, QStringList({"#", "Дата/время", "Тип события", "Данные"}));
}

void tst_Archive::dataText_data()
{
    QTest::addColumn<QString>("row");
    // clang-format off
    for (const char *row : {
            "ET_SODC_PARAM:1234 5:С = 123.4мкФ, I = 5мкА",
            "ET_EVENT_RES_REDUCTION ET_EVENT_RES_REDUCTION_CRIT ET_EVENT_DISBALANCE_VOLTAGE ET_EVENT_UMINIMUM_VOLTAGE:10 20 30 40 50 60:Rобщ = 10кОм, R+/- = 20/30кОм; U+/- = 40/50В",
            "ET_EVENT_IMS_LOC_DUP_ADDR ET_EVENT_IMS_LOC_LOST ET_EVENT_IMS_UKI_LOST ET_EVENT_IMS_UKI_ADCONF ET_EVENT_IMS_UKI_ADOUT:12 99:Адрес: 12",
            "ET_EVENT_IMS_CT_FAULT:0011000000000000 0001000000000000 1111000000000000 0111000000000000:Адрес: УКИ, ТТ: ИиОЗ XXXX XXXX XXXX",
            "ET_EVENT_IMS_CTLOC_FAULT:1010000000000000 1111111111111111 0000000000000000 1111111100000000:Адрес: 5, ТТ: ИИИИ ИИИИ XXXX XXXX",
            "ET_EVENT_BRWIRE_ON ET_EVENT_DISCH_ON ET_EVENT_BRWIRE_OFF ET_EVENT_DISCH_OFF:150:I = 150 мА",
            "ET_EVENT_DISCH_ON:65535:I = -1 мА",
            "ET_EVENT_OVER_ON ET_EVENT_FALL_ON ET_EVENT_OVER_OFF ET_EVENT_FALL_OFF:2205:U АБ = 220.5 в",
            "ET_EVENT_RIPPLEU_ON ET_EVENT_RIPPLEU_OFF:15:Пульс. U = 1.5%",
            "ET_EVENT_RIPPLEI_ON ET_EVENT_RIPPLEI_OFF:100:Пульс. I = 10.0%",
            "ET_EVENT_SYMMETRY_ON ET_EVENT_SYMMETRY_OFF:12:Асимметрия = 12 в",
            "ET_EVENT_OVER_T_ON ET_EVENT_FALL_T_ON ET_EVENT_OVER_T_OFF ET_EVENT_FALL_T_OFF:215:T = 21.5°",
            "ET_EVENT_FALL_T_ON:65535:T = 6553.5°",
            "ET_EVENT_OVER_Tail_ON ET_EVENT_FALL_Tail_ON ET_EVENT_OVER_Tail_OFF ET_EVENT_FALL_Tail_OFF:48:Uх.э. = 48 в",
            "ET_EVENT_IMS_LOC_ADOUT ET_EVENT_IMS_CT_OVER ET_EVENT_IMS_LOC_ADSAME ET_EVENT_IMS_POW_OFF ET_EVENT_IMS_UKI_NOMULTI ET_DEBUG ET_FEED_COMPLEX:1 2 3:",
            "ET_EVENT_IMS_POW_OFF_ ET_EVENT_IMS_POW_ON_ ET_EVENT_NO_TMOST ET_EVENT_FAIL_ON ET_EVENT_FAIL_OFF:1 2 3:-"})
        QTest::newRow(QString(row).section(':', 0, 0).left(40).toLatin1()) << QString(row);
    // clang-format on
}

void tst_Archive::dataText()
{
    QFETCH(QString, row);
    ArchiveData archive(eventLines(row.section(':', 0, 0), row.section(':', 1, 1)));
    QStringList texts;
    for (int r = 0; r < archive.rowCount(); ++r)
        texts << archive.index(r, ArchiveData::ColumnData).data().toString();
    QCOMPARE(texts.size(), row.section(':', 0, 0).count(' ') + 1);
    texts.removeDuplicates();
    QCOMPARE(texts, QStringList{row.section(':', 2)});
}

void tst_Archive::values_data()
{
    QTest::addColumn<QString>("row"); // Value-1 .. Value-8 as received | as stored
    // clang-format off
    QTest::newRow("cut to 16 bits, bad numbers 0") << "70000\tabc\t-1\t65535\t\t1.5\t65536\t42|4464 0 0 65535 0 0 0 42";
    QTest::newRow("wide numbers") << "4294967296\t0000070000\t007\t4294967295\t99999999999\t+12\t0\t0|0 4464 7 65535 0 12 0 0";
    QTest::newRow("feed parameters: second stamp in Value-7/8") << "177\t0\t667\t5\t16\t0\t05.04.20\t17:41:50|177 0 667 5 16 0 60974 24201";
    QTest::newRow("feed parameters: bad stamp 0") << "177\t0\t667\t5\t16\t0\t5.4.20\t17:41:50|177 0 667 5 16 0 0 0";
    // clang-format on
}

void tst_Archive::values()
{
    QFETCH(QString, row);
    const QString line = row.section('|', 0, 0), values = row.section('|', 1);
    const QString type = line.contains(':') ? "ET_FEED_PARAM" : "ET_GENERAL_RESISTANCE";
    ArchiveData archive({"1\t05.04.20\t12:00:00\t" + type + "\t" + line});
    QStringList got;
    for (quint16 value : archive.eventAt(0).values)
        got << QString::number(value);
    QCOMPARE(got.join(' '), values);
    ArchiveData ct({"6\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t1000000000000001\t01\t"
                    "0100000000000000\t0010000000000000\t1111111111111111"});
    QCOMPARE(ct.eventAt(0).values, (std::array<quint16, 8>{0x8001, 0, 2, 4, 0, 0, 0, 0}));
}

void tst_Archive::times_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("utc");
    const auto row = [](const char *zone, const char *local, const char *utc) {
        QTest::addRow("%s %s", zone, local) << QByteArray(zone) << QString(local) << QString(utc);
    };
    row("Europe/Moscow", "05.04.20 21:38:00", "2020-04-05T18:38:00");
    row("Europe/Moscow", "01.01.00 00:00:00", "1999-12-31T21:00:00");
    row("Europe/Moscow", "31.12.99 23:59:59", "2099-12-31T20:59:59");
    row("Europe/Moscow", "29.02.04 12:00:00", "2004-02-29T09:00:00");
    for (const char *bad : {"29.02.00 12:00:00",
                            "5.4.20 21:38:00",
                            "32.01.20 10:00:00",
                            "05.04.20 24:00:00",
                            "05/04/20 21:38:00",
                            "ab.cd.ef gh:ij:kl"})
        row("Europe/Moscow", bad, "");
    row("Europe/Berlin", "28.03.21 01:59:59", "2021-03-28T00:59:59");
    row("Europe/Berlin", "28.03.21 03:00:00", "2021-03-28T01:00:00");
    row("Europe/Berlin", "31.10.21 02:30:00", "2021-10-31T00:30:00");
}

void tst_Archive::times()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, local);
    QFETCH(QString, utc);
    setTimeZone(zone);
    const QStringList parts = local.split(' ');
    const qint64 seconds = utc.isEmpty() ? 0
                                         : QDateTime::fromString(utc + 'Z', Qt::ISODate)
                                                   .toSecsSinceEpoch();
    ArchiveData archive(
            {"1\t" + parts[0] + '\t' + parts[1] + "\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0"});
    const qint64 got[] = {qint64(archive.eventAt(0).time),
                          qint64(ArchiveData::timeFromText(parts[0], parts[1]))};
    setTimeZone("Europe/Moscow");
    QCOMPARE(got[0], seconds);
    QCOMPARE(got[1], seconds);
}

void tst_Archive::typeCode()
{
    QStringList codes;
    // clang-format off
    for (const QString &text : QString("Выключение питания|ET_UNKNOWN|ET_EVENT_IMS_POW_OFF_|ET_EVENT_IMS_POW_ON_|Ёмкость сети|пропало: Повышение напряжения \"хвоста\"|ET_DEBUG|et_sodc_param|ET_SODC_PARAM |").split('|'))
        codes << QString::number(ArchiveData::eventTypeCode(text));
    QCOMPARE(codes.join(' '), QString("27 0 13 14 10 37 128 0 0 0"));
    QStringList shown;
    for (uint code : {13, 14, 27, 32, 38, 15, 129, 47, 0})
        shown << ArchiveData::eventTypeText(code);
    QCOMPARE(shown.join('|'), QString("Выключение питания|Выключение питания|Выключение питания|Повышение напряжения \"хвоста\"|пропало: Снижение напряжения \"хвоста\"|Адрес анешнего локатора такой же как у УКИ|ET_FEED_COMPLEX|-|-"));
    // clang-format on
}

void tst_Archive::filter_data()
{
    QTest::addColumn<QString>("row"); // variant|filter items|filter class of each item
    // clang-format off
    QTest::newRow("ukps-ks") << "0|Всё,Ёмкость,Аварии КИ,Аварии АБ,Диагн. события,Авария темп.|034567";
    QTest::newRow("ukps-ab") << "1|Всё,Аварии АБ,Диагн. события,Авария темп.|0567";
    QTest::newRow("ukps-ks-2") << "2|Всё,Поиск,Ёмкость,Аварии КИ,Аварии АБ,Диагн. события,Авария темп.|0234567";
    QTest::newRow("uki-kiranto") << "3|Всё,Контроль,Поиск,Ёмкость,Аварии КИ,Диагн. события|012346";
    QTest::newRow("unknown variant") << "4|Всё|0";
    QTest::newRow("negative variant") << "-1|Всё|0";
    // clang-format on
}

void tst_Archive::filter()
{
    QFETCH(QString, row);
    const int variant = row.section('|', 0, 0).toInt();
    const QString classes = row.section('|', 2);
    QCOMPARE(ArchiveFilterProxy::filterItems(variant).join(','), row.section('|', 1, 1));
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.setSourceModel(&archive);
    for (int index = -1; index <= classes.size(); ++index) {
        const int filterClass = index >= 0 && index < classes.size() ? classes[index].digitValue()
                                                                     : 0;
        proxy.setFilterIndex(variant, index);
        QList<uint> codes;
        for (int shown = 0; shown < proxy.rowCount(); ++shown)
            codes << archive.eventAt(proxy.mapToSource(proxy.index(shown, 0)).row()).type;
        std::sort(codes.begin(), codes.end());
        QCOMPARE(codes, classCodes(filterClass));
    }
    proxy.sort(1, Qt::DescendingOrder);
    archive.setLines(everyType().mid(0, 20));
    proxy.setFilterClass(0);
    QCOMPARE(proxy.rowCount(), 19);
}

QTEST_GUILESS_MAIN(tst_Archive)
#include "tst_archive.moc"
