// The statistics page: its channel table built from the locators and custom channels, the
// rewriting of edited cells, the check boxes and buttons, and end to end with the device
// simulator on a pseudo-terminal: statistics reads and channel writes as the device sees them.

#include "app/application.h"
#include "app/programsettings.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "models/spinboxdelegate.h"
#include "protocol/searchstatistics.h"
#include "protocol/uki.h"
#include "stats/statgraph.h"
#include "stats/statgraphwidget.h"
#include "stats/statscale.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

// Waits are generous: the machine is shared and a locator's statistics take 80 exchanges.
constexpr int kStartMs = 15000;
constexpr int kRunMs = 60000;
// On a loaded machine the simulator can stall past the engine's 30 ms silence and cut a reply
// short, which fails that run; device runs are therefore tried up to three times.
constexpr int kTries = 3;

const QString kNoPort = "/nonexistent/ttyKIRANTO";

// The device simulator with its transcript of what reached the device.
class Simulator
{
public:
    ~Simulator()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(kStartMs)) {
            m_process.kill();
            m_process.waitForFinished(kStartMs);
        }
    }

    bool start()
    {
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty() || !m_dir.isValid())
            return false;
        m_process.setProgram(program);
        m_process.setArguments({"--link",
                                link(),
                                "--log",
                                m_dir.filePath("transcript.log"),
                                "--archive-size",
                                "20",
                                "--exit-with-parent"});
        m_process.start();
        if (!m_process.waitForStarted(kStartMs))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kStartMs))
                return false;
        }
        return m_process.readLine().trimmed() == link().toLocal8Bit();
    }

    QString link() const { return m_dir.filePath("ttyKIRANTO"); }

    // Commands the device received since mark().
    QStringList commands() const
    {
        QFile file(m_dir.filePath("transcript.log"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QStringList commands;
        for (const QByteArray &line : file.readAll().split('\n')) {
            const QString event = QString::fromLatin1(line).section(' ', 1);
            if (event.startsWith("cmd "))
                commands << event.mid(4);
        }
        return commands.mid(m_mark);
    }

    void mark()
    {
        m_mark = 0;
        m_mark = commands().size();
    }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    int m_mark = 0;
};

std::shared_ptr<Locators> twoDevices()
{
    return std::make_shared<Locators>(QStringList{
            "Addr\tver\tEnabled\tTested",
            "UKI\t9.6.43\t1111111111111111\t1111111111111111\t1111111111111111\t0000000000000000",
            "5\t5.2.0\t1111111111111111\t1111111111111111\t1111111111111111\t0000000000000000",
    });
}

std::shared_ptr<CustomChannels> someChannels()
{
    return std::make_shared<CustomChannels>(QStringList{
            "address\tchannel\tr_loc\tlower\tupper",
            "0\t1\tOFF",
            "0\t2\t200\t10\t45",
            "5\t16\t150\t12\t47",
    });
}

QStringList statsCommands(uint address, uint channel, int count)
{
    QStringList commands;
    for (int i = 0; i < count; ++i)
        commands << QString("srch_stats_1_%1_%2_%3").arg(address).arg(channel).arg(i);
    return commands;
}

// The engine's protocol log of the current test, shown when it fails.
QStringList engineLog;

// The page with its engine and handles on its form.
class Page
{
public:
    Page()
        : page(&uki)
    {
        engineLog.clear();
        QObject::connect(&uki, &Uki::logMessage, [](const QString &line) { engineLog << line; });
        table = page.findChild<QTableWidget *>("tableChannels");
        dump = page.findChild<QTableWidget *>("tableDump");
        page.resize(1100, 600);
    }

    QCheckBox *checkBox(int row) const
    {
        QWidget *cell = table->cellWidget(row, 0);
        return cell ? cell->findChild<QCheckBox *>() : nullptr;
    }
    QString cellStyle(int row) const { return table->cellWidget(row, 0)->styleSheet(); }
    QToolButton *button(int row, const char *name) const
    {
        QWidget *cell = table->cellWidget(row, 5);
        return cell ? cell->findChild<QToolButton *>(name) : nullptr;
    }
    QStringList settings(int row) const
    {
        return {table->item(row, 2)->text(),
                table->item(row, 3)->text(),
                table->item(row, 4)->text()};
    }
    bool editable(int row, int column) const
    {
        return table->item(row, column)->flags().testFlag(Qt::ItemIsEditable);
    }
    template<typename T>
    T *child(const char *name) const
    {
        return page.findChild<T *>(name);
    }

    Uki uki;
    StatGraphWidget page;
    QTableWidget *table = nullptr;
    QTableWidget *dump = nullptr;
};

} // namespace

class tst_StatGraphWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void tableRows_data();
    void tableRows();
    void rowWidgets();
    void cellRewrite_data();
    void cellRewrite();
    void spinBoxEditsGoThroughTheSameRules();
    void editEnablesOnlyThatRowsSaveButton();
    void failedWriteKeepsTheChannelUnsaved();
    void untickKeepsTheColourForTheNextTick();
    void viewButtonsSortingAndFileButtons();

    void tickReadsStatisticsFromTheDevice();
    void ticksDuringAReadAreReadInTurn();
    void saveButtonWritesTheChannel();
    void writeAllWritesEveryChangedChannel();
    void tickWhileTheEngineRunsElsewhereIsRefused();

private:
    bool connectSimulator(Page &page);
    // Makes a device request until the engine reports success, at most kTries times; the
    // simulator's transcript then holds the last attempt only.
    bool retry(QSignalSpy &outcome, const std::function<void()> &request);

    std::unique_ptr<Simulator> m_sim;
};

void tst_StatGraphWidget::initTestCase()
{
    Application::initResources();
    qRegisterMetaType<uint32_t>("uint32_t");
}

void tst_StatGraphWidget::init()
{
    StatPalette::reset();
    m_sim.reset();
    ProgramSettings::instance().port = kNoPort;
}

void tst_StatGraphWidget::cleanup()
{
    if (QTest::currentTestFailed())
        qWarning().noquote() << "engine log:\n" + engineLog.join('\n');
}

void tst_StatGraphWidget::tableRows_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("boundsEditable");

    QTest::newRow("monitor channel reported OFF")
            << 0 << "УКИ : 1" << QStringList{"OFF", "", ""} << false;
    QTest::newRow("monitor channel with settings")
            << 1 << "УКИ : 2" << QStringList{"200", "10", "45"} << true;
    QTest::newRow("channel missing from the reply is OFF")
            << 2 << "УКИ : 3" << QStringList{"OFF", "", ""} << false;
    QTest::newRow("last monitor channel")
            << 15 << "УКИ : 16" << QStringList{"OFF", "", ""} << false;
    QTest::newRow("first locator channel")
            << 16 << "Лок 5 : 1" << QStringList{"OFF", "", ""} << false;
    QTest::newRow("bounds shown in steps of 5")
            << 31 << "Лок 5 : 16" << QStringList{"150", "10", "45"} << true;
}

void tst_StatGraphWidget::tableRows()
{
    QFETCH(int, row);
    QFETCH(QString, label);
    QFETCH(QStringList, settings);
    QFETCH(bool, boundsEditable);

    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    QCOMPARE(page.table->rowCount(), 32);
    QCOMPARE(page.table->item(row, 1)->text(), label);
    QVERIFY(!page.editable(row, 1));
    QCOMPARE(page.settings(row), settings);
    QVERIFY(page.editable(row, 2));
    QCOMPARE(page.editable(row, 3), boundsEditable);
    QCOMPARE(page.editable(row, 4), boundsEditable);
    QVERIFY(page.table->item(row, 3)->flags().testFlag(Qt::ItemIsEnabled));
    QVERIFY(page.table->item(row, 3)->flags().testFlag(Qt::ItemIsSelectable));
}

void tst_StatGraphWidget::rowWidgets()
{
    Page page;
    page.page.updateChannels(); // the engine has read nothing yet
    QCOMPARE(page.table->rowCount(), 0);

    QAbstractItemModelTester tester(page.table->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    page.page.showChannels(twoDevices(), nullptr);
    QCOMPARE(page.table->rowCount(), 32);
    QCOMPARE(page.settings(20), (QStringList{"OFF", "", ""}));

    QCheckBox *box = page.checkBox(20);
    QVERIFY(box);
    QVERIFY(!box->isChecked());
    QCOMPARE(box->toolTip(), QString("Показывать на графике"));
    QCOMPARE(page.cellStyle(20), QString());

    QToolButton *refresh = page.button(20, "refreshButton");
    QToolButton *save = page.button(20, "saveButton");
    QVERIFY(refresh && save);
    QCOMPARE(refresh->toolTip(), QString("Обновить данные по каналу"));
    QCOMPARE(save->toolTip(), QString("Записать настройки канала в УКИ"));
    QVERIFY(!refresh->icon().isNull());
    QVERIFY(!save->icon().isNull());
    QVERIFY(refresh->isEnabled());
    QVERIFY(!save->isEnabled());

    // Cell editors: RLoc 0..999 by 1, bounds 0..75 by 5.
    const QVector<QVector<int>> limits{{2, 999, 1}, {3, 75, 5}, {4, 75, 5}};
    for (const QVector<int> &limit : limits) {
        auto delegate = qobject_cast<SpinBoxDelegate *>(
                page.table->itemDelegateForColumn(limit.at(0)));
        QVERIFY(delegate);
        std::unique_ptr<QWidget> editor(delegate->createEditor(
                page.table->viewport(), QStyleOptionViewItem(), page.table->model()->index(1, 2)));
        auto spinBox = qobject_cast<QSpinBox *>(editor.get());
        QVERIFY(spinBox);
        QCOMPARE(spinBox->minimum(), 0);
        QCOMPARE(spinBox->maximum(), limit.at(1));
        QCOMPARE(spinBox->singleStep(), limit.at(2));
    }
}

void tst_StatGraphWidget::cellRewrite_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("boundsEditable");
    QTest::addColumn<bool>("changed");

    // Row 1 is "УКИ : 2" with RLoc 200 and bounds 10 and 45; row 0 is "УКИ : 1", OFF.
    QTest::newRow("lower 12 becomes 10, as stored")
            << 1 << 3 << "12" << QStringList{"200", "10", "45"} << true << false;
    QTest::newRow("lower 17 becomes 15")
            << 1 << 3 << "17" << QStringList{"200", "15", "45"} << true << true;
    QTest::newRow("upper 80 is capped at 75")
            << 1 << 4 << "80" << QStringList{"200", "10", "75"} << true << true;
    QTest::newRow("upper not a number keeps the stored bound")
            << 1 << 4 << "abc" << QStringList{"200", "10", "45"} << true << false;
    QTest::newRow("rloc 1500 becomes 999")
            << 1 << 2 << "1500" << QStringList{"999", "10", "45"} << true << true;
    QTest::newRow("rloc 0 turns the channel OFF")
            << 1 << 2 << "0" << QStringList{"OFF", "", ""} << false << true;
    QTest::newRow("rloc not a number keeps the stored value")
            << 1 << 2 << "x1" << QStringList{"200", "10", "45"} << true << false;
    QTest::newRow("rloc on an OFF channel sets it with zero bounds")
            << 0 << 2 << "300" << QStringList{"300", "0", "0"} << true << true;
    QTest::newRow("text on an OFF channel keeps it OFF")
            << 0 << 2 << "off" << QStringList{"OFF", "", ""} << false << false;
    QTest::newRow("the label column stores nothing")
            << 1 << 1 << "УКИ : 9" << QStringList{"200", "10", "45"} << true << false;
}

void tst_StatGraphWidget::cellRewrite()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, text);
    QFETCH(QStringList, settings);
    QFETCH(bool, boundsEditable);
    QFETCH(bool, changed);

    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    QSignalSpy cells(page.table, &QTableWidget::cellChanged);
    QSignalSpy buttons(&page.page, &StatGraphWidget::setButtonsEnabled);

    page.table->item(row, column)->setText(text);
    // The rewrite itself does not come back as another change.
    QCOMPARE(cells.count(), 1);
    QCOMPARE(buttons.count(), 1);
    QCOMPARE(buttons.at(0).at(0).toBool(), true);
    QCOMPARE(page.settings(row), settings);
    QCOMPARE(page.editable(row, 3), boundsEditable);
    QCOMPARE(page.editable(row, 4), boundsEditable);
    QCOMPARE(page.page.graph()->entry(0, quint32(row)).changed(), changed);
    QCOMPARE(page.button(row, "saveButton")->isEnabled(), changed);
}

void tst_StatGraphWidget::spinBoxEditsGoThroughTheSameRules()
{
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    const QModelIndex upper = page.table->model()->index(31, 4);
    auto delegate = qobject_cast<QStyledItemDelegate *>(page.table->itemDelegateForColumn(4));
    std::unique_ptr<QWidget> editor(
            delegate->createEditor(page.table->viewport(), QStyleOptionViewItem(), upper));
    delegate->setEditorData(editor.get(), upper);
    auto spinBox = qobject_cast<QSpinBox *>(editor.get());
    QCOMPARE(spinBox->value(), 45);
    spinBox->setValue(60);
    delegate->setModelData(editor.get(), page.table->model(), upper);

    QCOMPARE(page.settings(31), (QStringList{"150", "10", "60"}));
    QCOMPARE(page.page.graph()->entry(5, 15).upper(), 12u);
    QVERIFY(page.page.graph()->entry(5, 15).changed());
    QVERIFY(page.button(31, "saveButton")->isEnabled());
}

void tst_StatGraphWidget::editEnablesOnlyThatRowsSaveButton()
{
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    page.table->item(31, 3)->setText("20");
    for (int row = 0; row < page.table->rowCount(); ++row) {
        QCOMPARE(page.button(row, "saveButton")->isEnabled(), row == 31);
        QVERIFY(page.button(row, "refreshButton")->isEnabled());
    }

    // The page's own enabled state: off disables everything, on brings back the changed row.
    emit page.page.setButtonsEnabled(false);
    QVERIFY(!page.button(31, "saveButton")->isEnabled());
    QVERIFY(!page.button(31, "refreshButton")->isEnabled());
    emit page.page.setButtonsEnabled(true);
    QVERIFY(page.button(31, "saveButton")->isEnabled());
    QVERIFY(!page.button(30, "saveButton")->isEnabled());
    QVERIFY(page.button(30, "refreshButton")->isEnabled());

    // A new table from the device drops the unsaved edit.
    page.page.showChannels(twoDevices(), someChannels());
    QVERIFY(!page.page.graph()->entry(5, 15).changed());
    QVERIFY(!page.button(31, "saveButton")->isEnabled());
    QCOMPARE(page.settings(31), (QStringList{"150", "10", "45"}));
}

void tst_StatGraphWidget::failedWriteKeepsTheChannelUnsaved()
{
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    page.table->item(1, 4)->setText("50");
    QSignalSpy written(&page.uki, &Uki::configWriteDone);
    QSignalSpy bounds(&page.page, &StatGraphWidget::setChannelBounds);

    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 0; Канал: 2;");
    page.button(1, "saveButton")->click();
    // Sent: the channel counts as written and the buttons wait for the engine.
    QVERIFY(!page.page.graph()->entry(0, 1).changed());
    QVERIFY(!page.button(1, "saveButton")->isEnabled());
    QVERIFY(!page.button(1, "refreshButton")->isEnabled());
    QCOMPARE(bounds.count(), 1);
    QCOMPARE(bounds.at(0), (QList<QVariant>{0u, 1u, 10u, 50u}));

    QTest::ignoreMessage(QtInfoMsg, "Канал не записан: Адрес: 0; Канал: 2;");
    QVERIFY(written.wait(kRunMs));
    QCOMPARE(written.at(0).at(0).toBool(), false);
    QVERIFY(page.page.graph()->entry(0, 1).changed());
    QVERIFY(page.button(1, "saveButton")->isEnabled());
    QVERIFY(page.button(1, "refreshButton")->isEnabled());
}

void tst_StatGraphWidget::untickKeepsTheColourForTheNextTick()
{
    Page page;
    page.page.showChannels(twoDevices(), someChannels());
    QSignalSpy done(&page.uki, &Uki::programDone);
    QSignalSpy requested(&page.page, &StatGraphWidget::requestStatistics);

    // Nothing read yet: each tick asks the engine (which fails here, there is no device).
    page.checkBox(17)->setChecked(true);
    QCOMPARE(page.cellStyle(17), QString("background-color: #f5361a"));
    QVERIFY(page.page.graph()->entry(5, 1).shown());
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested.at(0), (QList<QVariant>{5u, 1u}));
    QVERIFY(done.wait(kRunMs));

    page.checkBox(17)->setChecked(false);
    QCOMPARE(page.cellStyle(17), QString());
    QVERIFY(!page.page.graph()->entry(5, 1).shown());
    QCOMPARE(page.page.graph()->entry(5, 1).color(), QString("#f5361a"));

    page.checkBox(17)->setChecked(true);
    QCOMPARE(page.cellStyle(17), QString("background-color: #f5361a"));
    QVERIFY(done.wait(kRunMs));
    page.checkBox(3)->setChecked(true);
    QCOMPARE(page.cellStyle(3), QString("background-color: #3f78f6"));
    QVERIFY(done.wait(kRunMs));
    QCOMPARE(requested.count(), 3);

    // A rebuilt table keeps the ticks and their colours.
    page.page.showChannels(twoDevices(), someChannels());
    QVERIFY(page.checkBox(17)->isChecked());
    QCOMPARE(page.cellStyle(17), QString("background-color: #f5361a"));
    QVERIFY(!page.checkBox(16)->isChecked());
    QCOMPARE(page.cellStyle(16), QString());
}

void tst_StatGraphWidget::viewButtonsSortingAndFileButtons()
{
    Page page;
    auto pages = page.child<QStackedWidget>("pages");
    QCOMPARE(pages->currentWidget(), page.child<QWidget>("pageGraph"));
    QVERIFY(page.page.graph()->isVisibleTo(page.child<QWidget>("pageGraph")));

    page.child<QToolButton>("tbSearchStatisticsViewAsDump")->click();
    QCOMPARE(pages->currentWidget(), page.child<QWidget>("pageDump"));
    QCOMPARE(page.dump, page.child<QWidget>("pageDump")->findChild<QTableWidget *>());
    page.child<QToolButton>("tbSearchStatisticsViewAsGraph")->click();
    QCOMPARE(pages->currentWidget(), page.child<QWidget>("pageGraph"));

    auto sort = page.child<QCheckBox>("cbSortData");
    QVERIFY(page.child<QWidget>("pageGraph")->isAncestorOf(sort));
    sort->setChecked(true);
    QVERIFY(page.page.graph()->isSorted());
    sort->setChecked(false);
    QVERIFY(!page.page.graph()->isSorted());

    QSignalSpy load(&page.page, &StatGraphWidget::loadChannelsFromFile);
    QSignalSpy save(&page.page, &StatGraphWidget::saveChannelsToFile);
    page.child<QToolButton>("tbLoadChannelsFromFile")->click();
    QCOMPARE(load.count(), 1);
    QCOMPARE(save.count(), 0);
    page.child<QToolButton>("tbSaveChannelsToFile")->click();
    QCOMPARE(save.count(), 1);

    const QStringList icons{"tbSearchStatisticsViewAsGraph",
                            "tbSearchStatisticsViewAsDump",
                            "tbWriteAllChannels",
                            "tbLoadChannelsFromFile",
                            "tbSaveChannelsToFile"};
    for (const QString &name : icons)
        QVERIFY2(!page.child<QToolButton>(qPrintable(name))->icon().isNull(), qPrintable(name));
}

bool tst_StatGraphWidget::connectSimulator(Page &page)
{
    m_sim = std::make_unique<Simulator>();
    if (!m_sim->start())
        return false;
    ProgramSettings::instance().port = m_sim->link();
    QSignalSpy read(&page.uki, &Uki::configReadDone);
    auto complete = [&page] {
        // A reply cut short by a stall may still parse: insist on the whole table.
        return page.uki.locators() && page.uki.locators()->size() == 4 && page.uki.customChannels()
               && page.uki.customChannels()->rowCount() == 64;
    };
    for (int attempt = 0; attempt < kTries && !complete(); ++attempt) {
        if (!page.uki.readData(Uki::ReadIdentification | Uki::ReadCustomChannels)
            || !read.wait(kRunMs)) {
            return false;
        }
    }
    if (!complete())
        return false;
    page.page.updateChannels();
    page.page.show();
    m_sim->mark();
    return QTest::qWaitForWindowExposed(&page.page);
}

bool tst_StatGraphWidget::retry(QSignalSpy &outcome, const std::function<void()> &request)
{
    for (int attempt = 0; attempt < kTries; ++attempt) {
        m_sim->mark();
        const int before = outcome.count();
        request();
        if (outcome.count() == before && !outcome.wait(kRunMs))
            return false;
        if (outcome.last().at(0).toBool())
            return true;
    }
    return false;
}

void tst_StatGraphWidget::tickReadsStatisticsFromTheDevice()
{
    Page page;
    QVERIFY2(connectSimulator(page), "kiranto-sim did not serve (is KIRANTO_SIM set?)");
    // The simulated monitor and its locators 1, 2 and 5, as "get_cust" reports them.
    QCOMPARE(page.table->rowCount(), 64);
    QCOMPARE(page.table->item(0, 1)->text(), QString("УКИ : 1"));
    QCOMPARE(page.settings(0), (QStringList{"101", "0", "45"}));
    QCOMPARE(page.settings(1), (QStringList{"OFF", "", ""}));
    QCOMPARE(page.table->item(63, 1)->text(), QString("Лок 5 : 16"));
    QCOMPARE(page.settings(63), (QStringList{"166", "25", "70"}));
    QCOMPARE(page.page.graph()->scale().upper(), 50);

    // The tick asks the device; should the run fail, the refresh button asks again.
    QSignalSpy stats(&page.uki, &Uki::statsReadDone);
    bool ticked = false;
    QVERIFY(retry(stats, [&] {
        if (ticked) {
            page.button(0, "refreshButton")->click();
            return;
        }
        ticked = true;
        page.checkBox(0)->setChecked(true);
        QVERIFY(!page.button(0, "refreshButton")->isEnabled());
    }));
    QCOMPARE(stats.last(), (QList<QVariant>{true, 0u, 0u, 1u}));
    QCOMPARE(m_sim->commands(), statsCommands(0, 0, 16));

    const std::shared_ptr<SearchStatistics> record = page.uki.statistics(0, 0, 1);
    QVERIFY(record);
    QCOMPARE(record->points.size(), 16);
    // Every seventh measurement of the simulator lies above 999.9 and is capped.
    QTRY_COMPARE(page.page.graph()->scale().upper(), 1010);
    QVERIFY(page.button(0, "refreshButton")->isEnabled());

    // The dump shows the latest read while no row is current.
    QCOMPARE(page.dump->rowCount(), 16);
    for (int row = 0; row < 16; ++row) {
        const StatPoint &point = record->points.at(row);
        QCOMPARE(page.dump->item(row, 0)->text(), QString("%1").arg(point.value1, 12, 'f', 5));
        QCOMPARE(page.dump->item(row, 2)->text(), QString("%1").arg(point.value3, 12, 'f', 5));
    }
    QCOMPARE(page.dump->item(3, 2)->text(), QString("   999.90000"));

    // A refresh reads the channel again; a row made current shows its own values.
    QVERIFY(retry(stats, [&] { page.button(0, "refreshButton")->click(); }));
    QCOMPARE(m_sim->commands(), statsCommands(0, 0, 16));
    page.table->setCurrentCell(5, 1);
    QCOMPARE(page.dump->rowCount(), 0);
    page.table->setCurrentCell(0, 1);
    QCOMPARE(page.dump->rowCount(), 16);
}

void tst_StatGraphWidget::ticksDuringAReadAreReadInTurn()
{
    Page page;
    QVERIFY2(connectSimulator(page), "kiranto-sim did not serve (is KIRANTO_SIM set?)");
    QSignalSpy stats(&page.uki, &Uki::statsReadDone);
    QSignalSpy requested(&page.page, &StatGraphWidget::requestStatistics);

    page.checkBox(1)->setChecked(true);
    page.checkBox(2)->setChecked(true);
    page.checkBox(1)->setChecked(false);
    page.checkBox(1)->setChecked(true); // already being read: not asked twice
    QTRY_COMPARE_WITH_TIMEOUT(stats.count(), 2, kRunMs);
    QTest::qWait(200);
    QCOMPARE(stats.count(), 2);
    QCOMPARE(requested.count(), 2);
    QCOMPARE(requested.at(0), (QList<QVariant>{0u, 1u}));
    QCOMPARE(requested.at(1), (QList<QVariant>{0u, 2u}));
    QCOMPARE(page.cellStyle(1), QString("background-color: #f5361a"));
    QCOMPARE(page.cellStyle(2), QString("background-color: #3f78f6"));

    // One run after the other: channel 2 starts once channel 1 has ended, however it ended.
    const QStringList commands = m_sim->commands();
    QVERIFY(!commands.isEmpty());
    QCOMPARE(commands.first(), QString("srch_stats_1_0_1_0"));
    const int second = commands.indexOf("srch_stats_1_0_2_0");
    QVERIFY(second > 0);
    for (int i = 0; i < commands.size(); ++i)
        QVERIFY(commands.at(i).startsWith(i < second ? "srch_stats_1_0_1_" : "srch_stats_1_0_2_"));

    // With its record in the store a tick draws at once, without asking the device.
    QVERIFY(retry(stats, [&] { page.button(2, "refreshButton")->click(); }));
    page.checkBox(2)->setChecked(false);
    const int asked = requested.count();
    page.checkBox(2)->setChecked(true);
    QTest::qWait(200);
    QCOMPARE(requested.count(), asked);
}

void tst_StatGraphWidget::saveButtonWritesTheChannel()
{
    Page page;
    QVERIFY2(connectSimulator(page), "kiranto-sim did not serve (is KIRANTO_SIM set?)");
    QSignalSpy written(&page.uki, &Uki::configWriteDone);

    // "УКИ : 2" is OFF on the device: give it RLoc 300 and bounds 10 and 40.
    page.table->item(1, 2)->setText("300");
    page.table->item(1, 3)->setText("10");
    page.table->item(1, 4)->setText("42");
    QCOMPARE(page.settings(1), (QStringList{"300", "10", "40"}));
    QVERIFY(page.button(1, "saveButton")->isEnabled());

    // A failed write leaves the save button enabled for another try.
    QVERIFY(retry(written, [&] {
        page.button(1, "saveButton")->click();
        QVERIFY(!page.button(1, "saveButton")->isEnabled());
    }));
    QCOMPARE(m_sim->commands(), QStringList{"set_cust_0_2_10_40_300"});
    QVERIFY(!page.page.graph()->entry(0, 1).changed());
    QVERIFY(!page.button(1, "saveButton")->isEnabled());

    QSignalSpy read(&page.uki, &Uki::configReadDone);
    QVERIFY(retry(read, [&] { page.uki.readData(Uki::ReadCustomChannels); }));
    QVERIFY(page.uki.custLines().contains("0\t2\t300\t10\t40"));
    page.page.updateChannels();
    QCOMPARE(page.settings(1), (QStringList{"300", "10", "40"}));
}

void tst_StatGraphWidget::writeAllWritesEveryChangedChannel()
{
    Page page;
    QVERIFY2(connectSimulator(page), "kiranto-sim did not serve (is KIRANTO_SIM set?)");
    QSignalSpy written(&page.uki, &Uki::configWriteDone);

    page.table->item(0, 4)->setText("50"); // УКИ : 1, 101 / 0 / 45
    page.table->item(63, 2)->setText("0"); // Лок 5 : 16 switched off
    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 0; Канал: 1;");
    QTest::ignoreMessage(QtInfoMsg, "Запись канала: Адрес: 5; Канал: 16;");
    QStringList commands;
    auto unsaved = [&page] {
        return int(page.page.graph()->entry(0, 0).changed())
               + int(page.page.graph()->entry(5, 15).changed());
    };
    // A channel whose write failed stays unsaved, and the next click writes only that one.
    for (int attempt = 0; attempt < kTries && unsaved() > 0; ++attempt) {
        m_sim->mark();
        const int expected = written.count() + unsaved();
        page.child<QToolButton>("tbWriteAllChannels")->click();
        QTRY_COMPARE_WITH_TIMEOUT(written.count(), expected, kRunMs);
        QTest::qWait(200);
        QCOMPARE(written.count(), expected);
        commands += m_sim->commands();
    }
    QCOMPARE(unsaved(), 0);
    QCOMPARE(commands.first(), QString("set_cust_0_1_0_50_101"));
    QVERIFY(commands.contains("set_cust_5_16_25_70_0"));
    QCOMPARE(commands.filter("set_cust_").size(), commands.size());
    QVERIFY(!page.button(0, "saveButton")->isEnabled());
    QVERIFY(!page.button(63, "saveButton")->isEnabled());

    QSignalSpy read(&page.uki, &Uki::configReadDone);
    QVERIFY(retry(read, [&] { page.uki.readData(Uki::ReadCustomChannels); }));
    QVERIFY(page.uki.custLines().contains("0\t1\t101\t0\t50"));
    QVERIFY(page.uki.custLines().contains("5\t16\tOFF"));
}

void tst_StatGraphWidget::tickWhileTheEngineRunsElsewhereIsRefused()
{
    Page page;
    QVERIFY2(connectSimulator(page), "kiranto-sim did not serve (is KIRANTO_SIM set?)");
    QSignalSpy read(&page.uki, &Uki::configReadDone);
    QSignalSpy requested(&page.page, &StatGraphWidget::requestStatistics);

    QVERIFY(page.uki.readData(Uki::ReadArchive));
    QTest::ignoreMessage(QtInfoMsg,
                         "Устройство занято, статистика не прочитана: Адрес: 0; Канал: 6;");
    page.checkBox(5)->setChecked(true);
    QCOMPARE(page.cellStyle(5), QString("background-color: #f5361a"));
    QVERIFY(read.wait(kRunMs));
    QTest::qWait(200);
    QCOMPARE(m_sim->commands(), QStringList{"dump"});
    QCOMPARE(requested.count(), 0);
    // The refused channel can be read with its refresh button.
    QVERIFY(page.button(5, "refreshButton")->isEnabled());
}

QTEST_MAIN(tst_StatGraphWidget)
#include "tst_statgraphwidget.moc"
