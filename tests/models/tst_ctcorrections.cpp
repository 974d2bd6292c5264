#include "models/ctcorrections.h"

#include <QAbstractItemModelTester>
#include <QFont>
#include <QSignalSpy>
#include <QtTest>

namespace {
QStringList messages;

void captureMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages.append(text);
}

const QString header = "address\tchannel\tgain*100\t phase*10";

QStringList sampleLines()
{
    return {header, "1\t3\t100\t-25", "1\t4\t250\t12", "7\t16\t99900\t0", "OK"};
}

bool isBold(const CtCorrections &model, int row, int column)
{
    const QVariant font = model.data(model.index(row, column), Qt::FontRole);
    return font.isValid() && font.value<QFont>().weight() == 75;
}

bool rowIsBold(const CtCorrections &model, int row)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (!isBold(model, row, column))
            return false;
    }
    return true;
}
} // namespace

class tst_CtCorrections : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void refused_data();
    void refused();
    void displayAndEditRoles();
    void headersAndFlags();
    void textRoundTrip();
    void truncation_data();
    void truncation();
    void setDataRefused();
    void boldWhileModified();
    void markSaved();
    void markDifferences();
    void markDifferencesAgainstEmpty();
    void rowAccess();
    void modelTester();
};

void tst_CtCorrections::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<uint>("address");
    QTest::addColumn<uint>("channel");
    QTest::addColumn<uint>("gain");
    QTest::addColumn<int>("phase");

    QTest::newRow("negative phase") << "1\t3\t100\t-25" << 1u << 2u << 100u << -25;
    QTest::newRow("address 0, channel 1") << "0\t1\t1\t0" << 0u << 0u << 1u << 0;
    QTest::newRow("address 254, channel 16")
            << "254\t16\t99900\t3600" << 254u << 15u << 99900u << 3600;
    QTest::newRow("phase has no range") << "2\t5\t100\t-99999" << 2u << 4u << 100u << -99999;
    QTest::newRow("surrounding spaces trimmed") << "  3\t2\t150\t7\r\n" << 3u << 1u << 150u << 7;
    QTest::newRow("extra fields ignored") << "3\t2\t150\t7\tx" << 3u << 1u << 150u << 7;
}

void tst_CtCorrections::parse()
{
    QFETCH(QString, line);
    QFETCH(uint, address);
    QFETCH(uint, channel);
    QFETCH(uint, gain);
    QFETCH(int, phase);

    const CtCorrections model({header, line});
    QCOMPARE(model.rowCount(), 1);
    const CtCorrection row = model.rowAt(0);
    QCOMPARE(row.address, address);
    QCOMPARE(row.channel, channel);
    QCOMPARE(row.gain, gain);
    QCOMPARE(row.phase, phase);
    QCOMPARE(row.savedGain, gain);
    QCOMPARE(row.savedPhase, phase);
    QVERIFY(!model.isModified(0));
}

void tst_CtCorrections::refused_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("header") << header;
    QTest::newRow("OK line") << "OK";
    QTest::newRow("empty") << "";
    QTest::newRow("channel 0") << "1\t0\t100\t0";
    QTest::newRow("channel 17") << "1\t17\t100\t0";
    QTest::newRow("address 255") << "255\t1\t100\t0";
    QTest::newRow("gain 0") << "1\t1\t0\t0";
    QTest::newRow("gain 99901") << "1\t1\t99901\t0";
    QTest::newRow("three fields, no phase") << "1\t1\t100";
    QTest::newRow("two fields") << "1\t1";
    QTest::newRow("empty phase field") << "1\t1\t100\t";
    QTest::newRow("phase not a number") << "1\t1\t100\tx";
    QTest::newRow("address not a number") << "a\t1\t100\t0";
    QTest::newRow("negative address") << "-1\t1\t100\t0";
    QTest::newRow("negative gain") << "1\t1\t-100\t0";
    QTest::newRow("real gain") << "1\t1\t1.5\t0";
    QTest::newRow("space separated") << "1 1 100 0";
}

void tst_CtCorrections::refused()
{
    QFETCH(QString, line);
    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureMessage);
    const CtCorrections model({line});
    qInstallMessageHandler(previous);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(messages, QStringList()); // dropped without a word
}

void tst_CtCorrections::displayAndEditRoles()
{
    const CtCorrections model(sampleLines());
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 4);
    for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
        QCOMPARE(model.data(model.index(0, 0), role), QVariant(1u));
        QCOMPARE(model.data(model.index(0, 1), role), QVariant(3u));
        QCOMPARE(model.data(model.index(0, 2), role), QVariant(1.0));
        QCOMPARE(model.data(model.index(0, 3), role), QVariant(-2.5));
        QCOMPARE(model.data(model.index(2, 1), role), QVariant(16u));
        QCOMPARE(model.data(model.index(2, 2), role), QVariant(999.0));
    }
    QVERIFY(!model.data(model.index(0, 0), Qt::ToolTipRole).isValid());
    QVERIFY(!model.data(model.index(0, 0), Qt::FontRole).isValid());
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
}

void tst_CtCorrections::headersAndFlags()
{
    const CtCorrections model(sampleLines());
    const QStringList headers = {"Адрес", "Канал", "Коэфф. усиления", "Сдвиг фазы"};
    for (int section = 0; section < headers.size(); ++section)
        QCOMPARE(model.headerData(section, Qt::Horizontal).toString(), headers.at(section));
    QVERIFY(!model.headerData(4, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());

    QVERIFY(!(model.flags(model.index(0, 0)) & Qt::ItemIsEditable));
    QVERIFY(!(model.flags(model.index(0, 1)) & Qt::ItemIsEditable));
    QVERIFY(model.flags(model.index(0, 2)) & Qt::ItemIsEditable);
    QVERIFY(model.flags(model.index(0, 3)) & Qt::ItemIsEditable);
    QVERIFY(model.flags(model.index(0, 3)) & Qt::ItemIsEnabled);
}

void tst_CtCorrections::textRoundTrip()
{
    CtCorrections model(sampleLines());
    QVERIFY(model.setData(model.index(1, 3), -12.3));
    const QStringList text = model.toText();
    QCOMPARE(text, QStringList({header, "1\t3\t100\t-25", "1\t4\t250\t-123", "7\t16\t99900\t0"}));

    const CtCorrections copy(text);
    QCOMPARE(copy.rowCount(), model.rowCount());
    QCOMPARE(copy.toText(), text);
}

void tst_CtCorrections::truncation_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<double>("value");
    QTest::addColumn<uint>("gain");
    QTest::addColumn<int>("phase");

    // 1.15 * 100 is just below 115 in binary floating point.
    QTest::newRow("gain 1.15 stores 114") << 2 << 1.15 << 114u << -25;
    QTest::newRow("gain 999.0") << 2 << 999.0 << 99900u << -25;
    QTest::newRow("gain 0.01") << 2 << 0.01 << 1u << -25;
    QTest::newRow("gain 2.349") << 2 << 2.349 << 234u << -25;
    QTest::newRow("phase -2.55 toward zero") << 3 << -2.55 << 100u << -25;
    QTest::newRow("phase -2.59 toward zero") << 3 << -2.59 << 100u << -25;
    QTest::newRow("phase 2.59 toward zero") << 3 << 2.59 << 100u << 25;
    QTest::newRow("phase -360") << 3 << -360.0 << 100u << -3600;
    QTest::newRow("phase 360") << 3 << 360.0 << 100u << 3600;
}

void tst_CtCorrections::truncation()
{
    QFETCH(int, column);
    QFETCH(double, value);
    QFETCH(uint, gain);
    QFETCH(int, phase);

    CtCorrections model({"1\t3\t100\t-25"});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(0, column), value, Qt::EditRole));
    QCOMPARE(model.rowAt(0).gain, gain);
    QCOMPARE(model.rowAt(0).phase, phase);
    QCOMPARE(model.rowAt(0).savedGain, 100u);
    QCOMPARE(model.rowAt(0).savedPhase, -25);
    QCOMPARE(changed.count(), 1);
}

void tst_CtCorrections::setDataRefused()
{
    CtCorrections model(sampleLines());
    QVERIFY(!model.setData(model.index(0, 0), 5));
    QVERIFY(!model.setData(model.index(0, 1), 5));
    QVERIFY(!model.setData(model.index(0, 2), 5.0, Qt::DisplayRole));
    QVERIFY(!model.setData(model.index(0, 2), "abc"));
    QVERIFY(!model.setData(QModelIndex(), 5.0));
    QCOMPARE(model.toText(), CtCorrections(sampleLines()).toText());
    QVERIFY(!model.isModified(0));
}

void tst_CtCorrections::boldWhileModified()
{
    CtCorrections model(sampleLines());
    QVERIFY(model.setData(model.index(1, 2), 3.0));
    QVERIFY(model.isModified(1));
    QVERIFY(rowIsBold(model, 1));
    QVERIFY(!isBold(model, 0, 2));
    QVERIFY(!isBold(model, 2, 2));

    QVERIFY(model.setData(model.index(1, 3), 0.5));
    QVERIFY(model.setData(model.index(1, 2), 2.5));
    QVERIFY(model.isModified(1));
    QVERIFY(model.setData(model.index(1, 3), 1.2));
    QVERIFY(!model.isModified(1));
    QVERIFY(!isBold(model, 1, 0));
    QVERIFY(!isBold(model, 1, 3));
}

void tst_CtCorrections::markSaved()
{
    CtCorrections model(sampleLines());
    QVERIFY(model.setData(model.index(0, 3), 4.0));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.markSaved(0);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(0, 0));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(0, 3));
    QVERIFY(!model.isModified(0));
    QVERIFY(!isBold(model, 0, 3));
    QCOMPARE(model.rowAt(0).savedPhase, 40);

    model.markSaved(-1);
    model.markSaved(3);
    QCOMPARE(changed.count(), 1);
}

void tst_CtCorrections::markDifferences()
{
    CtCorrections model(sampleLines());
    const CtCorrections device({header, "1\t3\t100\t-25", "1\t4\t251\t12", "8\t16\t99900\t0"});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.markDifferences(device);
    QVERIFY(!model.isModified(0));
    QVERIFY(model.isModified(1)); // gain differs
    QVERIFY(model.isModified(2)); // not on the device
    QVERIFY(rowIsBold(model, 1));
    QVERIFY(rowIsBold(model, 2));
    QCOMPARE(changed.count(), 2);
    QCOMPARE(model.rowAt(1).savedGain, 0u);
    QCOMPARE(model.rowAt(1).savedPhase, 0);
    QCOMPARE(model.rowAt(1).gain, 250u);
}

void tst_CtCorrections::markDifferencesAgainstEmpty()
{
    CtCorrections model(sampleLines());
    model.markDifferences(CtCorrections());
    for (int row = 0; row < model.rowCount(); ++row)
        QVERIFY2(rowIsBold(model, row), qPrintable(QString::number(row)));
}

void tst_CtCorrections::rowAccess()
{
    const CtCorrections model(sampleLines());
    CtCorrection row;
    QVERIFY(model.findRow(7, 15, row));
    QCOMPARE(row.gain, 99900u);
    QVERIFY(!model.findRow(7, 16, row));
    QVERIFY(!model.findRow(1, 0, row));

    for (int outside : {-1, 3, 100}) {
        const CtCorrection zero = model.rowAt(outside);
        QCOMPARE(zero.address, 0u);
        QCOMPARE(zero.gain, 0u);
        QCOMPARE(zero.phase, 0);
        QVERIFY(!model.isModified(outside));
    }
}

void tst_CtCorrections::modelTester()
{
    CtCorrections model(sampleLines());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(model.setData(model.index(0, 2), 1.15));
    QVERIFY(model.setData(model.index(2, 3), -2.55));
    model.markSaved(0);
    model.markDifferences(CtCorrections());
    CtCorrections empty;
    QAbstractItemModelTester emptyTester(&empty,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
}

QTEST_GUILESS_MAIN(tst_CtCorrections)
#include "tst_ctcorrections.moc"
