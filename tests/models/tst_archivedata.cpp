#include "models/archivedata.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

#include <time.h>

namespace {

const QString header = "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-"
                       "6\tValue-7\tValue-8";
const QString item1 = "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0";
const QString item3
        = "3\t05.04.20\t18:11:11\tET_GENERAL_RESISTANCE\t101\t112\t999\t227\t23\t204\t181\t0";
const QString item4
        = "4\t05.04.20\t17:42:46\tET_FEED_PARAM\t177\t0\t667\t5\t16\t0\t05.04.20\t17:41:50";

QStringList debugMessages;

void collectDebug(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg)
        debugMessages.append(message);
}

// One event line of the given type with numeric values Value-1 ... Value-8.
QString eventLine(const QString &type, const QList<int> &values)
{
    QStringList fields{"7", "05.04.20", "12:00:00", type};
    for (int value : values)
        fields << QString::number(value);
    while (fields.size() < 12)
        fields << "0";
    return fields.join('\t');
}

qint64 utc(int year, int month, int day, int h, int m, int s)
{
    return QDateTime(QDate(year, month, day), QTime(h, m, s), Qt::UTC).toSecsSinceEpoch();
}

void setTimeZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
    tzset();
}

} // namespace

class tst_ArchiveData : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void dataText_data();
    void dataText();
    void typeTexts();
    void typeCode_data();
    void typeCode();
    void lines_data();
    void lines();
    void values();
    void feedParamSecondStamp();
    void dates_data();
    void dates();
    void datesAcrossDaylightSaving();
    void columns();
    void rawColumns();
    void setLinesResets();
    void modelTester();

private:
    QtMessageHandler m_previousHandler = nullptr;
};

void tst_ArchiveData::initTestCase()
{
    // Moscow has kept UTC+3 all year since 2014.
    setTimeZone("Europe/Moscow");
}

void tst_ArchiveData::init()
{
    debugMessages.clear();
    m_previousHandler = qInstallMessageHandler(collectDebug);
}

void tst_ArchiveData::cleanup()
{
    qInstallMessageHandler(m_previousHandler);
}

void tst_ArchiveData::dataText_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("text");

    const auto each = [](const QStringList &types, const QList<int> &values) {
        QStringList lines;
        for (const QString &type : types)
            lines << eventLine(type, values);
        return lines;
    };

    QTest::newRow("item 3: resistance record")
            << QStringList{item3} << "Rобщ = 101кОм, R+/- = 112/999кОм; Uаб = 227В, U+/- = 23/204В";
    QTest::newRow("item 4: search result, C in tenths")
            << QStringList{item4} << "Адрес: 5, канал: 16: Rизо = 177кОм, C = 0.0мкФ I = 667мкА";
    QTest::newRow("item 1: firmware version") << QStringList{item1} << "Версия прошивки: 9.6.35";
    QTest::newRow("network capacitance")
            << QStringList{"5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0\t0"}
            << "С = 0.0мкФ, I = 1260мкА";
    QTest::newRow("network capacitance 123.4")
            << QStringList{eventLine("ET_SODC_PARAM", {1234, 5})} << "С = 123.4мкФ, I = 5мкА";
    QTest::newRow("insulation alarms") << each({"ET_EVENT_RES_REDUCTION",
                                                "ET_EVENT_RES_REDUCTION_CRIT",
                                                "ET_EVENT_DISBALANCE_VOLTAGE",
                                                "ET_EVENT_UMINIMUM_VOLTAGE"},
                                               {10, 20, 30, 40, 50, 60})
                                       << "Rобщ = 10кОм, R+/- = 20/30кОм; U+/- = 40/50В";
    QTest::newRow("addresses") << each({"ET_EVENT_IMS_LOC_DUP_ADDR",
                                        "ET_EVENT_IMS_LOC_LOST",
                                        "ET_EVENT_IMS_UKI_LOST",
                                        "ET_EVENT_IMS_UKI_ADCONF",
                                        "ET_EVENT_IMS_UKI_ADOUT"},
                                       {12, 99})
                               << "Адрес: 12";
    QTest::newRow("monitor CT fault, 8 fields")
            << QStringList{"8\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t0011000000000000\t"
                           "0001000000000000\t1111000000000000\t0111000000000000"}
            << "Адрес: УКИ, ТТ: ИиОЗ XXXX XXXX XXXX";
    // Address from Value-1 (the first mask) and the tested mask from Value-5 (always 0): every
    // enabled channel, taken from the fourth mask, reads "И".
    QTest::newRow("locator CT fault keeps its mismatch")
            << QStringList{"9\t05.04.20\t10:00:00\tET_EVENT_IMS_CTLOC_FAULT\t1010000000000000\t"
                           "1111111111111111\t0000000000000000\t1111111100000000"}
            << "Адрес: 5, ТТ: ИИИИ ИИИИ XXXX XXXX";
    QTest::newRow("battery current") << each({"ET_EVENT_BRWIRE_ON",
                                              "ET_EVENT_DISCH_ON",
                                              "ET_EVENT_BRWIRE_OFF",
                                              "ET_EVENT_DISCH_OFF"},
                                             {150})
                                     << "I = 150 мА";
    QTest::newRow("battery current 65535 is -1")
            << QStringList{eventLine("ET_EVENT_DISCH_ON", {65535})} << "I = -1 мА";
    QTest::newRow("battery voltage") << each(
            {"ET_EVENT_OVER_ON", "ET_EVENT_FALL_ON", "ET_EVENT_OVER_OFF", "ET_EVENT_FALL_OFF"},
            {2205}) << "U АБ = 220.5 в";
    QTest::newRow("voltage ripple")
            << each({"ET_EVENT_RIPPLEU_ON", "ET_EVENT_RIPPLEU_OFF"}, {15}) << "Пульс. U = 1.5%";
    QTest::newRow("current ripple")
            << each({"ET_EVENT_RIPPLEI_ON", "ET_EVENT_RIPPLEI_OFF"}, {100}) << "Пульс. I = 10.0%";
    QTest::newRow("asymmetry") << each({"ET_EVENT_SYMMETRY_ON", "ET_EVENT_SYMMETRY_OFF"}, {12})
                               << "Асимметрия = 12 в";
    QTest::newRow("temperature") << each({"ET_EVENT_OVER_T_ON",
                                          "ET_EVENT_FALL_T_ON",
                                          "ET_EVENT_OVER_T_OFF",
                                          "ET_EVENT_FALL_T_OFF"},
                                         {215})
                                 << "T = 21.5°";
    QTest::newRow("temperature is unsigned")
            << QStringList{eventLine("ET_EVENT_FALL_T_ON", {65535})} << "T = 6553.5°";
    QTest::newRow("tail voltage") << each({"ET_EVENT_OVER_Tail_ON",
                                           "ET_EVENT_FALL_Tail_ON",
                                           "ET_EVENT_OVER_Tail_OFF",
                                           "ET_EVENT_FALL_Tail_OFF"},
                                          {48})
                                  << "Uх.э. = 48 в";
    QTest::newRow("empty data") << each({"ET_EVENT_IMS_LOC_ADOUT",
                                         "ET_EVENT_IMS_CT_OVER",
                                         "ET_EVENT_IMS_LOC_ADSAME",
                                         "ET_EVENT_IMS_POW_OFF",
                                         "ET_EVENT_IMS_UKI_NOMULTI",
                                         "ET_DEBUG",
                                         "ET_FEED_COMPLEX"},
                                        {1, 2, 3})
                                << "";
    QTest::newRow("dash") << each({"ET_EVENT_IMS_POW_OFF_",
                                   "ET_EVENT_IMS_POW_ON_",
                                   "ET_EVENT_NO_TMOST",
                                   "ET_EVENT_FAIL_ON",
                                   "ET_EVENT_FAIL_OFF"},
                                  {1, 2, 3})
                          << "-";
}

void tst_ArchiveData::dataText()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, text);
    ArchiveData archive(lines);
    QCOMPARE(archive.rowCount(), lines.size());
    for (int row = 0; row < archive.rowCount(); ++row) {
        QCOMPARE(archive.data(archive.index(row, ArchiveData::ColumnData)).toString(), text);
        QCOMPARE(ArchiveData::eventDataText(archive.eventAt(row)), text);
    }
}

void tst_ArchiveData::typeTexts()
{
    QCOMPARE(ArchiveData::eventTypes().size(), 49);
    QCOMPARE(ArchiveData::eventTypeText(13), QString("Выключение питания"));
    QCOMPARE(ArchiveData::eventTypeText(14), QString("Выключение питания"));
    QCOMPARE(ArchiveData::eventTypeText(27), QString("Выключение питания"));
    QCOMPARE(ArchiveData::eventTypeText(32), QString("Повышение напряжения \"хвоста\""));
    QCOMPARE(ArchiveData::eventTypeText(38), QString("пропало: Снижение напряжения \"хвоста\""));
    QCOMPARE(ArchiveData::eventTypeText(15), QString("Адрес анешнего локатора такой же как у УКИ"));
    QCOMPARE(ArchiveData::eventTypeText(129), QString("ET_FEED_COMPLEX"));
    QCOMPARE(ArchiveData::eventTypeText(47), QString("-"));
    QCOMPARE(ArchiveData::eventTypeText(0), QString("-"));

    ArchiveData archive({item3});
    QCOMPARE(archive.data(archive.index(0, ArchiveData::ColumnType)).toString(),
             QString("Запись с замерами сопротивления (периодическая)"));
}

void tst_ArchiveData::typeCode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<uint>("code");
    QTest::newRow("shared text gives 27") << "Выключение питания" << 27u;
    QTest::newRow("unknown identifier") << "ET_UNKNOWN" << 0u;
    QTest::newRow("identifier of 13") << "ET_EVENT_IMS_POW_OFF_" << 13u;
    QTest::newRow("identifier of 14") << "ET_EVENT_IMS_POW_ON_" << 14u;
    QTest::newRow("display text") << "Ёмкость сети" << 10u;
    QTest::newRow("text with quotes") << "пропало: Повышение напряжения \"хвоста\"" << 37u;
    QTest::newRow("identifier equal to its text") << "ET_DEBUG" << 128u;
    QTest::newRow("case-sensitive") << "et_sodc_param" << 0u;
    QTest::newRow("no trimming") << "ET_SODC_PARAM " << 0u;
    QTest::newRow("empty") << "" << 0u;
}

void tst_ArchiveData::typeCode()
{
    QFETCH(QString, text);
    QFETCH(uint, code);
    QCOMPARE(ArchiveData::eventTypeCode(text), code);
}

void tst_ArchiveData::lines_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QList<int>>("items");
    QTest::addColumn<QStringList>("badLines");

    const QString sodc12 = "5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0\t0";
    const QString sodc11 = "5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0";
    const QString ct8 = "6\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t1111000000000000\t"
                        "0\t1111000000000000\t1111000000000000";
    const QString ct7 = "6\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t1111000000000000\t"
                        "0\t1111000000000000";
    const QString three = "2\t05.04.20\t21:38:00";
    const QString unknown = "8\t05.04.20\t21:38:00\tET_UNKNOWN\t1\t2\t3\t4\t5\t6\t7\t8";

    QTest::newRow("header only") << QStringList{header} << QList<int>{} << QStringList{};
    QTest::newRow("dump in order")
            << QStringList{header, item1, item3, item4} << QList<int>{1, 3, 4} << QStringList{};
    QTest::newRow("12 fields accepted") << QStringList{sodc12} << QList<int>{5} << QStringList{};
    QTest::newRow("11 fields refused")
            << QStringList{sodc11} << QList<int>{} << QStringList{sodc11};
    QTest::newRow("13 fields accepted")
            << QStringList{sodc12 + "\t9"} << QList<int>{5} << QStringList{};
    QTest::newRow("CT fault needs only 8") << QStringList{ct8} << QList<int>{6} << QStringList{};
    QTest::newRow("CT fault with 7 refused")
            << QStringList{ct7} << QList<int>{} << QStringList{ct7};
    QTest::newRow("fewer than 4 fields")
            << QStringList{three} << QList<int>{} << QStringList{three};
    QTest::newRow("empty line") << QStringList{""} << QList<int>{} << QStringList{""};
    QTest::newRow("unknown type dropped silently")
            << QStringList{unknown} << QList<int>{} << QStringList{};
    QTest::newRow("bad line does not stop the rest")
            << QStringList{header, item1, three, item3} << QList<int>{1, 3} << QStringList{three};
    QTest::newRow("trailing CR and blanks trimmed")
            << QStringList{item1 + "\r", "  " + item3} << QList<int>{1, 3} << QStringList{};
    QTest::newRow("non-numeric item reads 0")
            << QStringList{"x" + item3.mid(1), "-5" + item3.mid(1)} << QList<int>{0, -5}
            << QStringList{};
    QTest::newRow("saved file header lines are bad lines")
            << QStringList{"3 uki-kiranto", header, item1} << QList<int>{1}
            << QStringList{"3 uki-kiranto"};
}

void tst_ArchiveData::lines()
{
    QFETCH(QStringList, lines);
    QFETCH(QList<int>, items);
    QFETCH(QStringList, badLines);
    ArchiveData archive(lines);
    QList<int> got;
    for (const ArchiveEvent &event : archive.events())
        got << event.item;
    QCOMPARE(got, items);
    QStringList expected;
    for (const QString &line : badLines)
        expected << "bad line in archve dump: " + line;
    QCOMPARE(debugMessages, expected);
}

void tst_ArchiveData::values()
{
    ArchiveData archive({"1\t05.04.20\t12:00:00\tET_GENERAL_RESISTANCE\t70000\tabc\t-1\t65535\t"
                         "\t1.5\t65536\t42"});
    QCOMPARE(archive.rowCount(), 1);
    const std::array<quint16, 8> expected{4464, 0, 0, 65535, 0, 0, 0, 42};
    QCOMPARE(archive.eventAt(0).values, expected);

    ArchiveData wide({"1\t05.04.20\t12:00:00\tET_GENERAL_RESISTANCE\t4294967296\t0000070000\t007\t"
                      "4294967295\t99999999999\t+12\t0\t0"});
    const std::array<quint16, 8> cut{0, 4464, 7, 65535, 0, 12, 0, 0};
    QCOMPARE(wide.eventAt(0).values, cut);

    ArchiveData ct({"6\t05.04.20\t10:00:00\tET_EVENT_IMS_CT_FAULT\t1000000000000001\t"
                    "01\t0100000000000000\t0010000000000000\t1111111111111111"});
    const std::array<quint16, 8> masks{0x8001, 0, 0x0002, 0x0004, 0, 0, 0, 0};
    QCOMPARE(ct.eventAt(0).values, masks);
}

void tst_ArchiveData::feedParamSecondStamp()
{
    ArchiveData archive({item4});
    const ArchiveEvent event = archive.eventAt(0);
    const quint32 second = quint32(event.values[6]) | (quint32(event.values[7]) << 16);
    QCOMPARE(qint64(second), utc(2020, 4, 5, 14, 41, 50));
    QCOMPARE(qint64(event.time), utc(2020, 4, 5, 14, 42, 46));

    ArchiveData bad(
            {"4\t05.04.20\t17:42:46\tET_FEED_PARAM\t177\t0\t667\t5\t16\t0\t5.4.20\t17:41:50"});
    QCOMPARE(bad.eventAt(0).values[6], quint16(0));
    QCOMPARE(bad.eventAt(0).values[7], quint16(0));
}

void tst_ArchiveData::dates_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::addColumn<qint64>("seconds");
    QTest::newRow("two-digit year is 20xx") << "05.04.20"
                                            << "21:38:00" << utc(2020, 4, 5, 18, 38, 0);
    QTest::newRow("year 00") << "01.01.00"
                             << "00:00:00" << utc(1999, 12, 31, 21, 0, 0);
    QTest::newRow("year 99") << "31.12.99"
                             << "23:59:59" << utc(2099, 12, 31, 20, 59, 59);
    QTest::newRow("leap day 2004") << "29.02.04"
                                   << "12:00:00" << utc(2004, 2, 29, 9, 0, 0);
    // Read as 1900 first, which has no 29 February.
    QTest::newRow("29.02.00 unreadable") << "29.02.00"
                                         << "12:00:00" << qint64(0);
    QTest::newRow("date not 8 chars") << "5.4.20"
                                      << "21:38:00" << qint64(0);
    QTest::newRow("time not 8 chars") << "05.04.20"
                                      << "1:38:00" << qint64(0);
    QTest::newRow("four-digit year") << "05.04.2020"
                                     << "21:38:00" << qint64(0);
    QTest::newRow("day 32") << "32.01.20"
                            << "10:00:00" << qint64(0);
    QTest::newRow("month 13") << "01.13.20"
                              << "10:00:00" << qint64(0);
    QTest::newRow("hour 24") << "05.04.20"
                             << "24:00:00" << qint64(0);
    QTest::newRow("second 60") << "05.04.20"
                               << "23:59:60" << qint64(0);
    QTest::newRow("slashes") << "05/04/20"
                             << "21:38:00" << qint64(0);
    QTest::newRow("letters") << "ab.cd.ef"
                             << "gh:ij:kl" << qint64(0);
}

void tst_ArchiveData::dates()
{
    QFETCH(QString, date);
    QFETCH(QString, time);
    QFETCH(qint64, seconds);
    QCOMPARE(qint64(ArchiveData::timeFromText(date, time)), seconds);
    ArchiveData archive(
            {QString("1\t%1\t%2\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0").arg(date, time)});
    QCOMPARE(archive.rowCount(), 1);
    QCOMPARE(qint64(archive.eventAt(0).time), seconds);
}

// The table is built day by day; days with a clock change must still match QDateTime exactly.
void tst_ArchiveData::datesAcrossDaylightSaving()
{
    setTimeZone("Europe/Berlin");
    QStringList lines;
    QStringList dates;
    for (const QDate &day : {QDate(2021, 3, 27),
                             QDate(2021, 3, 28),
                             QDate(2021, 3, 29),
                             QDate(2021, 10, 30),
                             QDate(2021, 10, 31),
                             QDate(2021, 11, 1)}) {
        for (int second = 0; second < 86400; second += 7 * 60 + 13) {
            const QString date = day.toString("dd.MM.yy");
            const QString time = QTime(0, 0).addSecs(second).toString("hh:mm:ss");
            lines << QString("%1\t%2\t%3\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0")
                             .arg(lines.size())
                             .arg(date, time);
            dates << date + ' ' + time;
        }
    }
    ArchiveData archive(lines);
    QCOMPARE(archive.rowCount(), lines.size());
    // The zone took effect: 27.03 00:00 to 29.03 00:00 is two days less the lost hour.
    const int perDay = lines.size() / 6;
    QCOMPARE(archive.eventAt(2 * perDay).time - archive.eventAt(0).time, 2 * 86400u - 3600u);
    for (int row = 0; row < archive.rowCount(); ++row) {
        const QStringList parts = dates.at(row).split(' ');
        const QDateTime expected = QDateTime::fromString(dates.at(row), "dd.MM.yy hh:mm:ss")
                                           .addYears(100);
        qint64 reference = expected.isValid() ? expected.toSecsSinceEpoch() : 0;
        // In the hour the clocks go back: the first of the two occurrences.
        if (expected.isValid()
            && QDateTime::fromSecsSinceEpoch(reference - 3600).time() == expected.time())
            reference -= 3600;
        QCOMPARE(qint64(archive.eventAt(row).time), reference);
        QCOMPARE(qint64(ArchiveData::timeFromText(parts.at(0), parts.at(1))), reference);
    }
    setTimeZone("Europe/Moscow");
}

void tst_ArchiveData::columns()
{
    ArchiveData archive({header, item3});
    QCOMPARE(archive.columnCount(), 4);
    QCOMPARE(archive.data(archive.index(0, 0)), QVariant(3));
    QCOMPARE(archive.data(archive.index(0, 1)).toString(), QString("05.04.2020 18:11:11"));
    QCOMPARE(archive.data(archive.index(0, 0), Qt::EditRole), QVariant());
    QCOMPARE(archive.data(QModelIndex()), QVariant());

    const QStringList headers{"#", "Дата/время", "Тип события", "Данные"};
    for (int section = 0; section < 4; ++section)
        QCOMPARE(archive.headerData(section, Qt::Horizontal).toString(), headers.at(section));
    QCOMPARE(archive.headerData(0, Qt::Vertical), QVariant());
    QCOMPARE(archive.headerData(0, Qt::Horizontal, Qt::ToolTipRole), QVariant());
    QCOMPARE(archive.headerData(-1, Qt::Horizontal), QVariant());

    // A bad time shows the local time of the epoch.
    ArchiveData zero({"1\t5.4.20\t21:38:00\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0"});
    QCOMPARE(zero.data(zero.index(0, 1)).toString(), QString("01.01.1970 03:00:00"));
}

void tst_ArchiveData::rawColumns()
{
    ArchiveData archive(
            {"1\t05.04.20\t12:00:00\tET_GENERAL_RESISTANCE\t11\t12\t13\t14\t15\t16\t17\t18"});
    // Column c holds Value-(c - 2), under the header c - 3.
    for (int column = 4; column <= 10; ++column) {
        const QModelIndex index = archive.rawIndex(0, column);
        QVERIFY(index.isValid());
        QCOMPARE(archive.data(index).toUInt(), uint(10 + column - 2));
        QCOMPARE(archive.headerData(column, Qt::Horizontal).toString(),
                 QString::number(column - 3));
    }
    QVERIFY(!archive.rawIndex(0, 11).isValid());
    QVERIFY(!archive.rawIndex(1, 4).isValid());
    QVERIFY(!archive.index(0, 4).isValid());
    QCOMPARE(archive.data(archive.rawIndex(0, 2)).toString(), ArchiveData::eventTypeText(1));
}

void tst_ArchiveData::setLinesResets()
{
    ArchiveData archive({header, item1, item3});
    QSignalSpy reset(&archive, &QAbstractItemModel::modelReset);
    archive.setLines({header, item4});
    QCOMPARE(reset.count(), 1);
    QCOMPARE(archive.rowCount(), 1);
    QCOMPARE(archive.eventAt(0).item, 4);
    QCOMPARE(archive.eventAt(1).item, 0);
    QCOMPARE(archive.eventAt(-1).type, quint32(0));
    archive.setLines({header});
    QCOMPARE(archive.rowCount(), 0);
}

void tst_ArchiveData::modelTester()
{
    ArchiveData archive({header, item1, item3, item4});
    QAbstractItemModelTester tester(&archive,
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    archive.setLines({item4, item1});
    archive.setLines({});
}

QTEST_GUILESS_MAIN(tst_ArchiveData)
#include "tst_archivedata.moc"
