#include "models/locators.h"

#include <QAbstractItemModelTester>
#include <QtTest>

namespace {
QStringList messages;

void captureMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtDebugMsg)
        messages.append(text);
}

const QString header = "Addr\tver\tEnabled\tTested";
const QString monitorLine
        = "UKI\t9.6.43\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000";
const QString locatorLine
        = "5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000";

// Builds the model with the debug log captured.
QStringList parse(const QStringList &lines, int *rows)
{
    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureMessage);
    const Locators model(lines);
    qInstallMessageHandler(previous);
    *rows = model.rowCount();
    return messages;
}
} // namespace

class tst_Locators : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void refused_data();
    void refused();
    void display_data();
    void display();
    void headers();
    void wholeReply();
    void locatorAt();
    void modelTester();
};

void tst_Locators::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<uint>("address");
    QTest::addColumn<QString>("version");
    QTest::addColumn<int>("enabled");
    QTest::addColumn<int>("tested");
    QTest::addColumn<int>("ctA");
    QTest::addColumn<int>("ctB");
    QTest::addColumn<bool>("isMonitor");

    QTest::newRow("monitor 9.x") << monitorLine << 0u << "9.6.43" << 0x00ff << 0x00ff << 0x00ff << 0
                                 << true;
    QTest::newRow("monitor 8.0 is the threshold")
            << "UKI\t8.0\t0000000000000000\t0000000000000000\t0000000000000000\t0000000000000000"
            << 0u << "8.0" << 0 << 0 << 0 << 0 << true;
    QTest::newRow("monitor empty version parts skipped")
            << "UKI\t..12.1\t0000000000000000\t0000000000000000\t0000000000000000\t0000000000000000"
            << 0u << "..12.1" << 0 << 0 << 0 << 0 << true;
    QTest::newRow("locator") << locatorLine << 5u << "2.1.7" << 0x800f << 0x8007 << 0x8003 << 0x0001
                             << false;
    QTest::newRow("locator, old firmware kept")
            << "17\t1.0\t1000000000000000\t0000000000000000\t0000000000000000\t0000000000000000"
            << 17u << "1.0" << 0x0001 << 0 << 0 << 0 << false;
    QTest::newRow("short mask reads as 0")
            << "5\t5.0\t1111\t1111111111111111\t1111111111111111\t0000000000000000" << 5u << "5.0"
            << 0 << 0xffff << 0xffff << 0 << false;
    QTest::newRow("empty masks") << "6\t5.0\t\t\t\t0000000000000001" << 6u << "5.0" << 0 << 0 << 0
                                 << 0x8000 << false;
    QTest::newRow("surrounding white space trimmed")
            << " 9\t3.3\t1000000000000000\t0000000000000000\t0000000000000000\t0000000000000000\r"
            << 9u << "3.3" << 1 << 0 << 0 << 0 << false;
}

void tst_Locators::parse()
{
    QFETCH(QString, line);
    QFETCH(uint, address);
    QFETCH(QString, version);
    QFETCH(int, enabled);
    QFETCH(int, tested);
    QFETCH(int, ctA);
    QFETCH(int, ctB);
    QFETCH(bool, isMonitor);

    int rows = -1;
    QCOMPARE(::parse({header, line}, &rows), QStringList());
    QCOMPARE(rows, 1);
    const LocatorRecord record = Locators({header, line}).locatorAt(0);
    QCOMPARE(record.address, address);
    QCOMPARE(record.version, version);
    QCOMPARE(int(record.enabledMask), enabled);
    QCOMPARE(int(record.testedMask), tested);
    QCOMPARE(int(record.ctStateMaskA), ctA);
    QCOMPARE(int(record.ctStateMaskB), ctB);
    QCOMPARE(record.isMonitor, isMonitor);
}

void tst_Locators::refused_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("log");

    const auto bad = [](const QString &line) {
        return QStringList{"_Bad line in UKI versions list: " + line};
    };
    const QString fourFields = "5\t5.0\t0000000000001111\t0000000000001111";
    const QString badAddress
            = "x5\t5.0\t0000000000001111\t0000000000001111\t0000000000001111\t0000000000001111";
    const QString sevenFields = locatorLine + "\t1";

    QTest::newRow("header alone") << header << QStringList();
    QTest::newRow("header with more after it") << header + "\tCT-A\tCT-B" << QStringList();
    QTest::newRow("monitor 7.9.1 dropped silently")
            << QString(monitorLine).replace("9.6.43", "7.9.1") << QStringList();
    QTest::newRow("monitor without digits reads as 0")
            << QString(monitorLine).replace("9.6.43", "beta") << QStringList();
    QTest::newRow("monitor empty version")
            << QString(monitorLine).replace("9.6.43", "") << QStringList();
    QTest::newRow("four fields") << fourFields << bad(fourFields);
    QTest::newRow("seven fields") << sevenFields << bad(sevenFields);
    QTest::newRow("OK line") << "OK" << bad("OK");
    // Trimming eats the trailing tabs, so empty last masks leave too few fields.
    QTest::newRow("empty trailing masks") << "6\t5.0\t\t\t\t" << bad("6\t5.0\t\t\t\t");
    QTest::newRow("empty line") << "" << bad("");
    QTest::newRow("untrimmed line logged as received") << "  OK\r" << bad("  OK\r");
    QTest::newRow("bad address") << badAddress
                                 << QStringList{"Bad address in UKI versions list: " + badAddress};
    QTest::newRow("lower-case uki is an address")
            << QString(monitorLine).replace("UKI", "uki")
            << QStringList{"Bad address in UKI versions list: "
                           + QString(monitorLine).replace("UKI", "uki")};
    QTest::newRow("negative address") << QString(locatorLine).replace(0, 1, "-5")
                                      << QStringList{"Bad address in UKI versions list: "
                                                     + QString(locatorLine).replace(0, 1, "-5")};
}

void tst_Locators::refused()
{
    QFETCH(QString, line);
    QFETCH(QStringList, log);

    int rows = -1;
    QCOMPARE(::parse({line}, &rows), log);
    QCOMPARE(rows, 0);
}

void tst_Locators::display_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("cells");

    QTest::newRow("monitor") << monitorLine
                             << QStringList{"УКИ",
                                            "9.6.43",
                                            "1111111100000000",
                                            "1111111100000000",
                                            "ОООО ОООО XXXX XXXX"};
    QTest::newRow("locator, every CT state letter")
            << locatorLine
            << QStringList{
                       "5", "2.1.7", "1111000000000001", "1110000000000001", "ЗОиИ XXXX XXXX XXXО"};
    QTest::newRow("masks written back as 16 characters")
            << "200\t1.2.3\t10000000000000001111\t1111\t0100000000000000\t0000000000000000"
            << QStringList{"200",
                           "1.2.3",
                           "1000000000000000",
                           "0000000000000000",
                           "ИXXX XXXX XXXX XXXX"};
}

void tst_Locators::display()
{
    QFETCH(QString, line);
    QFETCH(QStringList, cells);

    const Locators model({header, line});
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.columnCount(), 5);
    for (int column = 0; column < cells.size(); ++column) {
        const QModelIndex index = model.index(0, column);
        QCOMPARE(model.data(index).toString(), cells.at(column));
        QVERIFY(!model.data(index, Qt::EditRole).isValid());
        QVERIFY(!(model.flags(index) & Qt::ItemIsEditable));
    }
}

void tst_Locators::headers()
{
    const Locators model;
    const QStringList headers = {
            "Адрес", "Версия ПО", "Маска каналов", "Маска тестирования", "Состояние ТТ"};
    for (int section = 0; section < headers.size(); ++section)
        QCOMPARE(model.headerData(section, Qt::Horizontal).toString(), headers.at(section));
    QVERIFY(!model.headerData(5, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(-1, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

void tst_Locators::wholeReply()
{
    const QString otherLocator
            = "12\t2.1.7\t1111111111111111\t1111111111111111\t1111111111111111\t0000000000000000";
    int rows = -1;
    const QStringList log = ::parse(
            {header, monitorLine, "x\t1\t2", locatorLine, otherLocator, "OK"}, &rows);
    QCOMPARE(log,
             QStringList({"_Bad line in UKI versions list: x\t1\t2",
                          "_Bad line in UKI versions list: OK"}));
    QCOMPARE(rows, 3);
    const Locators model({header, monitorLine, "x\t1\t2", locatorLine, otherLocator, "OK"});
    QCOMPARE(model.size(), 3);
    QCOMPARE(model.count(), 3);
    QCOMPARE(model.data(model.index(0, 0)).toString(), QString("УКИ"));
    QCOMPARE(model.data(model.index(1, 0)).toString(), QString("5"));
    QCOMPARE(model.data(model.index(2, 0)).toString(), QString("12"));
}

void tst_Locators::locatorAt()
{
    const Locators model({header, monitorLine, locatorLine});
    QCOMPARE(model.locatorAt(1).address, 5u);
    for (int outside : {2, 3, -1}) {
        const LocatorRecord record = model.locatorAt(outside);
        QCOMPARE(record.address, 0u);
        QVERIFY(record.version.isEmpty());
        QCOMPARE(int(record.enabledMask), 0);
        QCOMPARE(int(record.testedMask), 0);
        QCOMPARE(int(record.ctStateMaskA), 0);
        QCOMPARE(int(record.ctStateMaskB), 0);
        QVERIFY(!record.isMonitor);
    }
    QVERIFY(!model.data(model.index(0, 5)).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
}

void tst_Locators::modelTester()
{
    Locators model({header, monitorLine, locatorLine, "OK"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Locators empty({header});
    QAbstractItemModelTester emptyTester(&empty,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(empty.rowCount(), 0);
}

QTEST_GUILESS_MAIN(tst_Locators)
#include "tst_locators.moc"
