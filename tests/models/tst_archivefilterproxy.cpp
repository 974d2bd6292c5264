#include "app/programsettings.h"
#include "models/archivedata.h"
#include "models/archivefilterproxy.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QtTest>

#include <algorithm>

using Codes = QList<uint>;

namespace {

Codes range(uint first, uint last)
{
    Codes codes;
    for (uint code = first; code <= last; ++code)
        codes << code;
    return codes;
}

Codes allCodes()
{
    Codes codes = range(1, 46);
    codes << 48 << 128 << 129;
    return codes;
}

// The codes each filter class lets through.
Codes classCodes(int filterClass)
{
    switch (filterClass) {
    case 0:
        return allCodes();
    case 1:
        return {1};
    case 2:
        return {11};
    case 3:
        return {10};
    case 4:
        return {16, 17, 18, 46};
    case 5:
        return range(21, 26) + Codes{29, 32} + range(34, 45);
    case 6:
        return range(2, 9) + Codes{12, 13, 14, 15, 19, 20, 27, 28, 48};
    case 7:
        return {31};
    default:
        return {};
    }
}

// An archive with one event of every known type, in code order.
QStringList everyType()
{
    QStringList lines{"Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6"
                      "\tValue-7\tValue-8"};
    for (const EventTypeInfo &info : ArchiveData::eventTypes()) {
        lines << QString("%1\t05.04.20\t12:00:00\t%2\t1111111111111111\t0\t0\t0\t0\t0\t0\t0")
                         .arg(info.code)
                         .arg(info.identifier);
    }
    return lines;
}

Codes visibleCodes(const ArchiveFilterProxy &proxy, const ArchiveData &archive)
{
    Codes codes;
    for (int row = 0; row < proxy.rowCount(); ++row)
        codes << archive.eventAt(proxy.mapToSource(proxy.index(row, 0)).row()).type;
    std::sort(codes.begin(), codes.end());
    return codes;
}

} // namespace

class tst_ArchiveFilterProxy : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void filterItems_data();
    void filterItems();
    void filterIndex_data();
    void filterIndex();
    void classesAboveSeven();
    void irregularMembers();
    void unknownTypeText();
    void variantSwitchKeepsClass();
    void modelTester();
};

void tst_ArchiveFilterProxy::init()
{
    ProgramSettings::instance().variant = DeviceVariant::UkpsKs;
}

void tst_ArchiveFilterProxy::filterItems_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("ukps-ks") << 0
                             << QStringList{"Всё",
                                            "Ёмкость",
                                            "Аварии КИ",
                                            "Аварии АБ",
                                            "Диагн. события",
                                            "Авария темп."};
    QTest::newRow("ukps-ab") << 1
                             << QStringList{"Всё", "Аварии АБ", "Диагн. события", "Авария темп."};
    QTest::newRow("ukps-ks-2") << 2
                               << QStringList{"Всё",
                                              "Поиск",
                                              "Ёмкость",
                                              "Аварии КИ",
                                              "Аварии АБ",
                                              "Диагн. события",
                                              "Авария темп."};
    QTest::newRow("uki-kiranto")
            << 3
            << QStringList{"Всё", "Контроль", "Поиск", "Ёмкость", "Аварии КИ", "Диагн. события"};
    QTest::newRow("unknown variant") << 4 << QStringList{"Всё"};
}

void tst_ArchiveFilterProxy::filterItems()
{
    QFETCH(int, variant);
    QFETCH(QStringList, items);
    QCOMPARE(ArchiveFilterProxy::filterItems(variant), items);
}

void tst_ArchiveFilterProxy::filterIndex_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("filterClass");

    const QList<QList<int>> classes{
            {0, 3, 4, 5, 6, 7},
            {0, 5, 6, 7},
            {0, 2, 3, 4, 5, 6, 7},
            {0, 1, 2, 3, 4, 6},
    };
    for (int variant = 0; variant < classes.size(); ++variant) {
        const QStringList items = ArchiveFilterProxy::filterItems(variant);
        for (int index = 0; index < classes.at(variant).size(); ++index) {
            QTest::addRow(
                    "%s: %s", qPrintable(DeviceVariant::key(variant)), qPrintable(items.at(index)))
                    << variant << index << classes.at(variant).at(index);
        }
        QTest::addRow("%s: past the list", qPrintable(DeviceVariant::key(variant)))
                << variant << classes.at(variant).size() << 0;
        QTest::addRow("%s: index -1", qPrintable(DeviceVariant::key(variant)))
                << variant << -1 << 0;
    }
    QTest::newRow("unknown variant, index 1") << 7 << 1 << 0;
    QTest::newRow("negative variant, index 3") << -1 << 3 << 0;
}

void tst_ArchiveFilterProxy::filterIndex()
{
    QFETCH(int, variant);
    QFETCH(int, index);
    QFETCH(int, filterClass);
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&archive);
    ProgramSettings::instance().variant = variant;
    proxy.setFilterIndex(index);
    QCOMPARE(int(proxy.filterClass()), filterClass);
    QCOMPARE(visibleCodes(proxy, archive), classCodes(filterClass));
}

void tst_ArchiveFilterProxy::classesAboveSeven()
{
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&archive);
    for (quint32 filterClass : {8u, 100u, 0xffffffffu}) {
        proxy.setFilterClass(filterClass);
        QCOMPARE(proxy.rowCount(), 0);
    }
    proxy.setFilterClass(0);
    QCOMPARE(proxy.rowCount(), archive.rowCount());
}

void tst_ArchiveFilterProxy::irregularMembers()
{
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&archive);

    proxy.setFilterClass(ArchiveFilterProxy::BatteryAlarms);
    Codes codes = visibleCodes(proxy, archive);
    QVERIFY(!codes.contains(33));
    QVERIFY(codes.contains(32));
    QVERIFY(codes.contains(37));

    // "Авария темп." on a UKPS: only the falling temperature alarm.
    ProgramSettings::instance().variant = DeviceVariant::UkpsKs;
    proxy.setFilterIndex(5);
    QCOMPARE(visibleCodes(proxy, archive), Codes{31});
}

// Rows are judged by the shown type text: an unknown text passes only "Всё", and the text
// that 13, 14 and 27 share counts as diagnostics whatever the code.
void tst_ArchiveFilterProxy::unknownTypeText()
{
    QStandardItemModel source(0, 4);
    for (const QString &text :
         QStringList{"Что-то новое", "Выключение питания", "ET_EVENT_IMS_POW_OFF_"}) {
        QList<QStandardItem *> row;
        for (int column = 0; column < 4; ++column)
            row << new QStandardItem(column == 2 ? text : QString());
        source.appendRow(row);
    }
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&source);
    QCOMPARE(proxy.rowCount(), 3);
    proxy.setFilterClass(ArchiveFilterProxy::Diagnostics);
    QCOMPARE(proxy.rowCount(), 2);
    QCOMPARE(proxy.index(0, 2).data().toString(), QString("Выключение питания"));
    proxy.setFilterClass(ArchiveFilterProxy::BatteryAlarms);
    QCOMPARE(proxy.rowCount(), 0);
}

void tst_ArchiveFilterProxy::variantSwitchKeepsClass()
{
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&archive);
    ProgramSettings::instance().variant = DeviceVariant::UkiKiranto;
    proxy.setFilterIndex(1);
    QCOMPARE(visibleCodes(proxy, archive), Codes{1});

    ProgramSettings::instance().variant = DeviceVariant::UkpsKs;
    QCOMPARE(int(proxy.filterClass()), 1);
    QCOMPARE(visibleCodes(proxy, archive), Codes{1});

    proxy.setFilterIndex(1);
    QCOMPARE(visibleCodes(proxy, archive), Codes{10});
}

void tst_ArchiveFilterProxy::modelTester()
{
    ArchiveData archive(everyType());
    ArchiveFilterProxy proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.setSourceModel(&archive);
    for (quint32 filterClass = 0; filterClass <= 8; ++filterClass)
        proxy.setFilterClass(filterClass);
    proxy.sort(1, Qt::DescendingOrder);
    archive.setLines(everyType().mid(0, 20));
    proxy.setFilterClass(0);
}

QTEST_GUILESS_MAIN(tst_ArchiveFilterProxy)
#include "tst_archivefilterproxy.moc"
