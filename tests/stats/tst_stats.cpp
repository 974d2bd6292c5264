#include "models/customchannels.h"
#include "models/locators.h"
#include "protocol/safewrite.h"
#include "protocol/uki.h"
#include "stats/statgraph.h"
#include "stats/statgraphwidget.h"
#include "stats/statscale.h"
#include "support.h"

#include <QtTest>

namespace {

constexpr int kRunMs = 60000;

std::shared_ptr<Locators> twoDevices()
{
    return std::make_shared<Locators>(QStringList{
            "Addr\tver\tEnabled\tTested",
            "UKI\t9.6.43\t1111111111111111\t1111111111111111\t1111111111111111\t0000000000000000",
            "5\t5.2.0\t1111111111111111\t1111111111111111\t1111111111111111\t0000000000000000"});
}

std::shared_ptr<CustomChannels> someChannels()
{
    return std::make_shared<CustomChannels>(QStringList{"address\tchannel\tr_loc\tlower\tupper",
                                                        "0\t1\tOFF",
                                                        "0\t2\t200\t10\t45",
                                                        "5\t16\t150\t12\t47"});
}

// The page with its engine and writer, and what a row shows.
struct Page
{
    Page() { writer.setBackupRoot(backups.path()); }
    // Label, RLoc, lower, upper; "*" after a cell that can be edited; then "save" when the row's
    // save button is enabled.
    QString row(int row) const
    {
        QStringList cells;
        for (int column = 1; column <= 4; ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            cells << item->text() + (item->flags() & Qt::ItemIsEditable ? "*" : "");
        }
        if (button(row, "saveButton")->isEnabled())
            cells << "save";
        return cells.join('|');
    }
    QCheckBox *checkBox(int row) const
    {
        return table->cellWidget(row, 0)->findChild<QCheckBox *>();
    }
    QString style(int row) const { return table->cellWidget(row, 0)->styleSheet(); }
    QToolButton *button(int row, const char *name) const
    {
        return table->cellWidget(row, 5)->findChild<QToolButton *>(name);
    }
    QTemporaryDir backups;
    Uki uki;
    SafeWrite writer{&uki};
    StatGraphWidget page{&uki, &writer};
    QTableWidget *table = page.findChild<QTableWidget *>("tableChannels");
    QTableWidget *dump = page.findChild<QTableWidget *>("tableDump");
};

// Runs a device request until the engine reports success: a loaded machine can stall the
// simulator past the 30 ms silence and cut a reply short.
bool retry(QSignalSpy &outcome, const std::function<void()> &request)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        const int before = outcome.count();
        request();
        if (outcome.count() == before && !outcome.wait(kRunMs))
            return false;
        if (outcome.last().at(0).toBool())
            return true;
    }
    return false;
}

} // namespace

class tst_Stats : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_install.isValid());
        qRegisterMetaType<uint32_t>("uint32_t");
    }
    void init() { StatPalette::reset(); }
    void scale_data();
    void scale();
    void axes();
    void table_data();
    void table();
    void failedWrite();
    void device();

private:
    TestSupport::ScratchInstall m_install{"/nonexistent/ttyKIRANTO", 3};
};

void tst_Stats::scale_data()
{
    QTest::addColumn<QString>("row");
    // lowest shown, highest shown, plot height | ticks /upper
    for (const char *row :
         {"999 0 400|10 20 30 40 50 /50",
          "12 39.9 400|0 10 20 30 40 50 /50",
          "20 40 400|10 20 30 40 50 /50",
          "218 222 400|190 200 210 220 230 /230",
          "5 39 400|0 10 20 30 40 50 /50",
          "999 0 60|10 30 50 /50",
          "69.5 120 400|50 60 70 80 90 100 110 120 130 /130",
          "177 999.9 400|160 200 240 280 320 360 400 440 480 520 560 600 640 680 720 760 800 840 "
          "880 920 960 1000 /1010"})
        QTest::newRow(QString(row).section('|', 0, 0).toUtf8()) << QString(row);
}

// The R axis: range of the shown values and tick step, 16 px lines.
void tst_Stats::scale()
{
    QFETCH(QString, row);
    const QStringList in = row.section('|', 0, 0).split(' ');
    const StatScale scale(in[0].toDouble(), in[1].toDouble(), in[2].toInt(), 16);
    QStringList shown;
    for (int tick : scale.ticks())
        shown << QString::number(tick);
    QCOMPARE(shown.join(' ') + " /" + QString::number(scale.upper()), row.section('|', 1));
}

// The T axis and the mapping of values and positions into the plot.
void tst_Stats::axes()
{
    QStringList labels;
    for (int position : StatScale::timeTicks())
        labels << QString("%1:%2").arg(position).arg(StatScale::timeLabel(position));
    QCOMPARE(labels.join(' '), QString("0:0 10:4 20:8 30:12 40:16 50:20 60:24 70:28"));
    const StatScale scale(999.0, 0.0, 400, 16);
    const QRectF plot(50, 10, 790, 400);
    QCOMPARE(scale.y(10, plot), plot.bottom());
    QCOMPARE(scale.y(50, plot), plot.top());
    QCOMPARE(scale.y(30, plot), plot.top() + 200);
    QCOMPARE(StatScale::x(0, plot), plot.left());
    QCOMPARE(StatScale::x(79, plot), plot.right());
}

void tst_Stats::table_data()
{
    QTest::addColumn<QString>("row");
    // row column text (none: no edit) | row shown after the device's tables and the edit
    for (const char *row : {"0 -1|УКИ : 1|OFF*||",
                            "31 -1|Лок 5 : 16|150*|10*|45*",
                            "1 3 12|УКИ : 2|200*|10*|45*",
                            "1 3 17|УКИ : 2|200*|15*|45*|save",
                            "1 4 80|УКИ : 2|200*|10*|75*|save",
                            "1 3 90|УКИ : 2|200*|75*|45*|save",
                            "1 4 abc|УКИ : 2|200*|10*|45*",
                            "1 2 1500|УКИ : 2|999*|10*|45*|save",
                            "1 2 0|УКИ : 2|OFF*|||save",
                            "1 2 x1|УКИ : 2|200*|10*|45*",
                            "0 2 300|УКИ : 1|300*|0*|0*|save",
                            "1 1 УКИ : 9|УКИ : 9|200*|10*|45*"})
        QTest::newRow(QString(row).section('|', 0, 0).toUtf8()) << QString(row);
}

// The channel table after the device's tables, and after the user edits a cell.
void tst_Stats::table()
{
    QFETCH(QString, row);
    const QStringList in = row.section('|', 0, 0).split(' ');
    const int index = in[0].toInt();
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    if (in[1] != "-1")
        page.table->item(index, in[1].toInt())->setText(QStringList(in.mid(2)).join(' '));
    QCOMPARE(page.row(index), row.section('|', 1));
    QVERIFY(page.button(index, "refreshButton")->isEnabled());
    for (int other = 0; other < 32; ++other)
        QVERIFY(other == index || !page.button(other, "saveButton")->isEnabled());
}

// Without a device: the tick asks for statistics, the write fails and the channel stays unsaved,
// and an untick keeps the colour for the next tick.
void tst_Stats::failedWrite()
{
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    QSignalSpy done(&page.uki, &Uki::programDone);
    QSignalSpy requested(&page.page, &StatGraphWidget::requestStatistics);
    page.checkBox(17)->setChecked(true);
    QCOMPARE(page.style(17), QString("background-color: #f5361a"));
    QCOMPARE(QList<QList<QVariant>>(requested), (QList<QList<QVariant>>{{5u, 1u}}));
    QVERIFY(done.wait(kRunMs));
    page.checkBox(17)->setChecked(false);
    QCOMPARE(page.style(17), QString());
    page.checkBox(3)->setChecked(true);
    QCOMPARE(page.style(3), QString("background-color: #3f78f6"));
    QVERIFY(done.wait(kRunMs));
    page.checkBox(17)->setChecked(true);
    QCOMPARE(page.style(17), QString("background-color: #f5361a"));
    QVERIFY(done.wait(kRunMs));
    // The 87 colours go round.
    QCOMPARE(StatPalette::color(86) + StatPalette::color(87), QString("#ea83e3#f5361a"));

    page.table->item(1, 4)->setText("50");
    QSignalSpy written(&page.writer, &SafeWrite::finished);
    QSignalSpy bounds(&page.page, &StatGraphWidget::setChannelBounds);
    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 0; Канал: 2;");
    page.button(1, "saveButton")->click();
    QCOMPARE(page.row(1), QString("УКИ : 2|200*|10*|50*"));
    QCOMPARE(bounds.at(0), (QList<QVariant>{0u, 1u, 10u, 50u}));
    QTest::ignoreMessage(QtInfoMsg, "Канал не записан: Адрес: 0; Канал: 2;");
    QVERIFY(written.wait(kRunMs));
    QCOMPARE(written.at(0).at(0).value<SafeWriteResult>().outcome, SafeWriteResult::BackupFailed);
    QCOMPARE(page.row(1), QString("УКИ : 2|200*|10*|50*|save"));
}

// End to end with the simulated monitor: its channels, a statistics read and channel writes as
// the device receives them.
void tst_Stats::device()
{
    TestSupport::Simulator simulator(m_install.path());
    QVERIFY(simulator.start());
    Page page;
    page.uki.setPortName(simulator.link());
    QSignalSpy read(&page.uki, &Uki::configReadDone);
    QVERIFY(retry(read,
                  [&] { page.uki.readData(Uki::ReadIdentification | Uki::ReadCustomChannels); }));
    page.page.updateChannels();
    page.page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page.page));
    QCOMPARE(page.row(0), QString("УКИ : 1|101*|0*|45*"));
    QCOMPARE(page.row(63), QString("Лок 5 : 16|166*|25*|70*"));

    // A tick reads the channel at level 1 when the store has nothing for it.
    QSignalSpy stats(&page.uki, &Uki::statsReadDone);
    QVERIFY(retry(stats, [&] {
        if (page.checkBox(0)->isChecked())
            page.button(0, "refreshButton")->click();
        else
            page.checkBox(0)->setChecked(true);
    }));
    QCOMPARE(stats.last(), (QList<QVariant>{true, 0u, 0u, 1u}));
    QTRY_COMPARE(page.page.graph()->scale().upper(), 1010);
    QCOMPARE(page.dump->rowCount(), 16);
    QCOMPARE(TestSupport::modelRows(page.dump->model()).mid(2, 2),
             QStringList({"     0.20369|    -0.27217|   235.30000",
                          "     0.21165|    -0.28165|   999.90000"}));

    // Edited channels written by "write all".
    QSignalSpy written(&page.uki, &Uki::configWriteDone);
    page.table->item(0, 4)->setText("50");
    page.table->item(63, 2)->setText("0");
    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 0; Канал: 1;");
    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 5; Канал: 16;");
    const int mark = simulator.receivedCommands().size();
    page.page.findChild<QToolButton *>("tbWriteAllChannels")->click();
    QTRY_COMPARE_WITH_TIMEOUT(written.count(), 2, kRunMs);
    QCOMPARE(simulator.receivedCommands().mid(mark).filter("set_"),
             (QStringList{"set_cust_0_1_0_50_101", "set_cust_5_16_25_70_0"}));
    QCOMPARE(written.last().at(0).toBool(), true);
    QTRY_VERIFY_WITH_TIMEOUT(!page.writer.isRunning(), kRunMs);
}

QTEST_MAIN(tst_Stats)
#include "tst_stats.moc"
