#include "models/customchannels.h"

#include <QAbstractItemModelTester>
#include <QtTest>

namespace {
QStringList messages;

void captureMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages.append(text);
}

const QString header = "address\tchannel\tr_loc\tlower\tupper";

QStringList cells(const CustomChannels &model, int row)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column) {
        const QVariant value = model.data(model.index(row, column));
        texts.append(value.isValid() ? value.toString() : QString("<none>"));
    }
    return texts;
}
} // namespace

class tst_CustomChannels : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void refused_data();
    void refused();
    void displayTypes();
    void headers();
    void textRoundTrip();
    void findChannel();
    void modelTester();
};

void tst_CustomChannels::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QString>("text");

    QTest::newRow("OFF") << "0\t1\tOFF" << QStringList{"0", "1", "OFF", "<none>", "<none>"}
                         << "0\t1\tOFF";
    QTest::newRow("OFF with fields after it")
            << "3\t16\tOFF\t10\t20" << QStringList{"3", "16", "OFF", "<none>", "<none>"}
            << "3\t16\tOFF";
    QTest::newRow("enabled") << "5\t2\t200\t10\t45" << QStringList{"5", "2", "200", "10", "45"}
                             << "5\t2\t200\t10\t45";
    QTest::newRow("bounds quantised to steps of 5")
            << "5\t2\t200\t12\t47" << QStringList{"5", "2", "200", "10", "45"}
            << "5\t2\t200\t10\t45";
    QTest::newRow("limits") << "254\t16\t999\t79\t0" << QStringList{"254", "16", "999", "75", "0"}
                            << "254\t16\t999\t75\t0";
    QTest::newRow("rLoc 1, bounds below one step")
            << "1\t1\t1\t4\t4" << QStringList{"1", "1", "1", "0", "0"} << "1\t1\t1\t0\t0";
    QTest::newRow("extra fields ignored")
            << "5\t2\t200\t10\t45\tjunk" << QStringList{"5", "2", "200", "10", "45"}
            << "5\t2\t200\t10\t45";
    QTest::newRow("surrounding white space trimmed")
            << " 7\t3\tOFF\r\n"
            << QStringList{"7", "3", "OFF", "<none>", "<none>"} << "7\t3\tOFF";
}

void tst_CustomChannels::parse()
{
    QFETCH(QString, line);
    QFETCH(QStringList, shown);
    QFETCH(QString, text);

    const CustomChannels model({header, line, "OK"});
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.columnCount(), 5);
    QCOMPARE(cells(model, 0), shown);
    QCOMPARE(model.toText(), QStringList({header, text}));
}

void tst_CustomChannels::refused_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("header") << header;
    QTest::newRow("OK line") << "OK";
    QTest::newRow("empty") << "";
    QTest::newRow("rLoc 0") << "5\t2\t0\t10\t45";
    QTest::newRow("rLoc 1000") << "5\t2\t1000\t10\t45";
    QTest::newRow("lower 80") << "5\t2\t200\t80\t45";
    QTest::newRow("upper 80") << "5\t2\t200\t10\t80";
    QTest::newRow("address 255") << "255\t1\tOFF";
    QTest::newRow("channel 0") << "5\t0\tOFF";
    QTest::newRow("channel 17") << "5\t17\t200\t10\t45";
    QTest::newRow("lower-case off") << "5\t2\toff";
    QTest::newRow("lower-case off with bounds") << "5\t2\toff\t10\t45";
    QTest::newRow("two fields") << "5\t2";
    QTest::newRow("enabled with three fields") << "5\t2\t200";
    QTest::newRow("enabled with four fields") << "5\t2\t200\t10";
    QTest::newRow("negative bound") << "5\t2\t200\t-5\t45";
    QTest::newRow("empty bound") << "5\t2\t200\t\t45";
    QTest::newRow("address not a number") << "L5\t2\tOFF";
}

void tst_CustomChannels::refused()
{
    QFETCH(QString, line);

    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureMessage);
    const CustomChannels model({line});
    qInstallMessageHandler(previous);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(messages, QStringList()); // dropped without a word
}

void tst_CustomChannels::displayTypes()
{
    const CustomChannels model({header, "5\t2\t200\t10\t45", "0\t1\tOFF"});
    QCOMPARE(model.data(model.index(0, 0)), QVariant(5u));
    QCOMPARE(model.data(model.index(0, 1)), QVariant(2u));
    QCOMPARE(model.data(model.index(0, 2)), QVariant(200u));
    QCOMPARE(model.data(model.index(0, 3)), QVariant(10u));
    QCOMPARE(model.data(model.index(0, 4)), QVariant(45u));
    QCOMPARE(model.data(model.index(1, 2)), QVariant(QString("OFF")));
    QVERIFY(!model.data(model.index(0, 0), Qt::EditRole).isValid());
    QVERIFY(!model.data(model.index(0, 5)).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
    QVERIFY(!(model.flags(model.index(0, 2)) & Qt::ItemIsEditable));
}

void tst_CustomChannels::headers()
{
    const CustomChannels model;
    const QStringList headers = {"Адрес", "Канал", "RLoc", "Нижний порог", "Верхний порог"};
    for (int section = 0; section < headers.size(); ++section)
        QCOMPARE(model.headerData(section, Qt::Horizontal).toString(), headers.at(section));
    QVERIFY(!model.headerData(5, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

void tst_CustomChannels::textRoundTrip()
{
    const QStringList reply = {header,
                               "0\t1\tOFF",
                               "0\t2\t150\t5\t75",
                               "5\t2\t200\t12\t47",
                               "5\t2\t300\t10\t45", // a repeated channel stays a row of its own
                               "5\t3\t0\t10\t45",
                               "254\t16\t999\t0\t79",
                               "OK"};
    const CustomChannels model(reply);
    QCOMPARE(model.rowCount(), 5);
    const QStringList text = model.toText();
    QCOMPARE(text,
             QStringList({header,
                          "0\t1\tOFF",
                          "0\t2\t150\t5\t75",
                          "5\t2\t200\t10\t45",
                          "5\t2\t300\t10\t45",
                          "254\t16\t999\t0\t75"}));

    const CustomChannels copy(text);
    QCOMPARE(copy.rowCount(), model.rowCount());
    QCOMPARE(copy.toText(), text);
    for (int row = 0; row < model.rowCount(); ++row)
        QCOMPARE(cells(copy, row), cells(model, row));

    QCOMPARE(CustomChannels().toText(), QStringList{header});
}

void tst_CustomChannels::findChannel()
{
    const CustomChannels model({header, "0\t1\tOFF", "5\t2\t200\t12\t47", "5\t2\t300\t10\t45"});
    CustomChannel channel;
    QVERIFY(model.findChannel(5, 1, channel));
    QCOMPARE(channel.rLoc, 200u); // the first of two
    QCOMPARE(channel.lower, 2u);
    QCOMPARE(channel.upper, 9u);
    QVERIFY(channel.enabled);

    QVERIFY(model.findChannel(0, 0, channel));
    QVERIFY(!channel.enabled);
    QCOMPARE(channel.rLoc, 0u);
    QCOMPARE(channel.lower, 0u);
    QCOMPARE(channel.upper, 0u);

    QVERIFY(!model.findChannel(5, 2, channel));
    QVERIFY(!model.findChannel(0, 1, channel));
}

void tst_CustomChannels::modelTester()
{
    CustomChannels model({header, "0\t1\tOFF", "5\t2\t200\t10\t45", "OK"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    CustomChannels onlyOk({"OK"});
    QAbstractItemModelTester emptyTester(&onlyOk,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(onlyOk.rowCount(), 0);
}

QTEST_GUILESS_MAIN(tst_CustomChannels)
#include "tst_customchannels.moc"
