#include "statgraphwidget.h"
#include "ui_statgraphwidget.h"

#include "models/customchannels.h"
#include "models/locators.h"
#include "models/spinboxdelegate.h"
#include "protocol/safewrite.h"
#include "protocol/searchstatistics.h"
#include "protocol/uki.h"
#include "stats/statgraph.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QSignalBlocker>
#include <QTableWidgetItem>
#include <QTimer>
#include <QToolButton>
#include <QtDebug>

#include <algorithm>

namespace {

enum Column {
    ShowColumn,
    NameColumn,
    RLocColumn,
    LowerColumn,
    UpperColumn,
    ButtonsColumn,
};

constexpr int kChannels = 16;
constexpr uint kUnitsPerStep = 5; // bounds travel in units, the entries keep steps of 5
const char kRefreshButton[] = "refreshButton";
const char kSaveButton[] = "saveButton";

const Qt::ItemFlags kEditable = Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
const Qt::ItemFlags kReadOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;

QToolButton *rowButton(QWidget *parent, const char *name, const QString &icon, const QString &tip)
{
    auto button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(icon));
    button->setToolTip(tip);
    button->setAutoRaise(true);
    button->setIconSize(QSize(16, 16));
    return button;
}

} // namespace

StatGraphWidget::StatGraphWidget(Uki *uki, SafeWrite *writer, QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::StatGraphWidget)
    , m_uki(uki)
    , m_writer(writer)
{
    ui->setupUi(this);

    m_graph = new StatGraph(ui->graphPlace);
    ui->graphPlace->layout()->addWidget(m_graph);
    m_graph->setStatisticsLookup([uki](uint address, uint channel, uint level) {
        return uki->statistics(address, channel, level);
    });

    m_rLocDelegate = new SpinBoxDelegate(0, int(StatChannel::maxRLoc), 1, this);
    m_lowerDelegate = new SpinBoxDelegate(0, int(StatChannel::maxSteps * kUnitsPerStep), 5, this);
    m_upperDelegate = new SpinBoxDelegate(0, int(StatChannel::maxSteps * kUnitsPerStep), 5, this);

    ui->splitter->setStretchFactor(0, 0);
    ui->splitter->setStretchFactor(1, 1);
    ui->tableDump->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    // Rows as high as a line of text and the 16-pixel row buttons allow.
    ui->tableChannels->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    ui->tableChannels->verticalHeader()->setDefaultSectionSize(
            std::max(ui->tableChannels->fontMetrics().height() + 8, 24));

    connect(ui->tableChannels, &QTableWidget::cellChanged, this, &StatGraphWidget::treeCellChanged);
    connect(ui->tableChannels,
            &QTableWidget::currentCellChanged,
            this,
            [this](int row, int, int previousRow) {
                if (row != previousRow)
                    fillDump();
            });
    connect(this, &StatGraphWidget::setButtonsEnabled, this, &StatGraphWidget::buttonsEnabled);

    connect(ui->tbSearchStatisticsViewAsGraph, &QToolButton::clicked, this, [this] {
        ui->pages->setCurrentWidget(ui->pageGraph);
    });
    connect(ui->tbSearchStatisticsViewAsDump, &QToolButton::clicked, this, [this] {
        ui->pages->setCurrentWidget(ui->pageDump);
    });
    connect(ui->tbWriteAllChannels, &QToolButton::clicked, this, [this] {
        for (const Key &key : qAsConst(m_rows)) {
            if (m_graph->entry(key.first, key.second).changed())
                submit({Job::Write, key});
        }
    });
    connect(ui->tbLoadChannelsFromFile,
            &QToolButton::clicked,
            this,
            &StatGraphWidget::loadChannelsFromFile);
    connect(ui->tbSaveChannelsToFile,
            &QToolButton::clicked,
            this,
            &StatGraphWidget::saveChannelsToFile);
    connect(ui->cbSortData, &QCheckBox::toggled, m_graph, &StatGraph::setSorted);

    connect(m_uki, &Uki::programStart, this, [this] {
        m_engineRunning = true;
        emit setButtonsEnabled(false);
    });
    connect(m_uki, &Uki::programDone, this, [this] {
        m_engineRunning = false;
        // A stopped run, or one that lost its port, takes the page's queued reads and writes
        // with it.
        if (m_uki->wasCancelled() || m_uki->wasDisconnected())
            m_queue.clear();
        emit setButtonsEnabled(true);
    });
    connect(m_uki, &Uki::statsReadDone, this, &StatGraphWidget::updateStatistics);
    connect(m_uki, &Uki::statsReadDone, this, [this] {
        if (m_running && m_current.type == Job::Read)
            finishJob();
    });
    connect(m_writer, &SafeWrite::finished, this, &StatGraphWidget::channelWritten);
}

StatGraphWidget::~StatGraphWidget()
{
    delete ui;
}

void StatGraphWidget::updateChannels()
{
    showChannels(m_uki->locators(), m_uki->customChannels());
}

void StatGraphWidget::showChannels(const std::shared_ptr<Locators> &locators,
                                   const std::shared_ptr<CustomChannels> &customChannels)
{
    QTableWidget *table = ui->tableChannels;
    const QSignalBlocker blocker(table);
    table->clearContents();
    const int devices = locators ? locators->size() : 0;
    table->setRowCount(devices * kChannels);
    table->setItemDelegateForColumn(RLocColumn, m_rLocDelegate);
    table->setItemDelegateForColumn(LowerColumn, m_lowerDelegate);
    table->setItemDelegateForColumn(UpperColumn, m_upperDelegate);

    m_rows.clear();
    for (int device = 0; device < devices; ++device) {
        const LocatorRecord record = locators->locatorAt(device);
        const uint address = record.isMonitor ? 0 : record.address;
        const QString name = record.isMonitor ? tr("УКИ") : tr("Лок %1").arg(address);
        for (uint channel = 0; channel < kChannels; ++channel) {
            const Key key(address, channel);
            CustomChannel custom;
            if (customChannels && customChannels->findChannel(address, channel, custom)
                && custom.enabled) {
                m_graph->entry(address, channel).load(custom.rLoc, custom.lower, custom.upper);
            } else {
                m_graph->entry(address, channel).load(0, 0, 0);
            }
            m_rows.append(key);
            fillRow(m_rows.size() - 1, key, name);
        }
    }

    table->resizeColumnsToContents();
    table->updateGeometry();
    // The first table gets the width of its columns, the graph the rest; later tables only
    // widen it, so that a width the user chose stays.
    const QList<int> sizes = ui->splitter->sizes();
    const int wanted = table->sizeHint().width();
    if (devices > 0 && sizes.size() == 2 && sizes.at(0) + sizes.at(1) > wanted
        && (!m_tableFitted || sizes.at(0) < wanted)) {
        ui->splitter->setSizes({wanted, sizes.at(0) + sizes.at(1) - wanted});
        m_tableFitted = true;
    }
    emit setButtonsEnabled(true);
    m_graph->update();
}

void StatGraphWidget::fillRow(int row, const Key &key, const QString &device)
{
    QTableWidget *table = ui->tableChannels;
    StatChannel &entry = m_graph->entry(key.first, key.second);

    auto showCell = new QWidget;
    showCell->setAttribute(Qt::WA_StyledBackground);
    auto showLayout = new QHBoxLayout(showCell);
    showLayout->setContentsMargins(6, 0, 6, 0);
    auto checkBox = new QCheckBox(showCell);
    checkBox->setToolTip(tr("Показывать на графике"));
    showLayout->addWidget(checkBox, 0, Qt::AlignCenter);
    if (entry.shown()) {
        checkBox->setChecked(true);
        showCell->setStyleSheet(QStringLiteral("background-color: %1")
                                        .arg(m_graph->assignColor(key.first, key.second)));
    }
    table->setCellWidget(row, ShowColumn, showCell);
    connect(checkBox, &QCheckBox::toggled, this, [this, key, showCell](bool checked) {
        channelToggled(key, showCell, checked);
    });

    auto name = new QTableWidgetItem(QStringLiteral("%1 : %2").arg(device).arg(key.second + 1));
    name->setFlags(kReadOnly);
    table->setItem(row, NameColumn, name);
    setSettingsCells(row, key);

    auto buttonsCell = new QWidget;
    // Compact buttons, so that a row is no taller than its text.
    buttonsCell->setStyleSheet(QStringLiteral("QToolButton { padding: 1px; }"));
    auto buttonsLayout = new QHBoxLayout(buttonsCell);
    buttonsLayout->setContentsMargins(2, 0, 2, 0);
    buttonsLayout->setSpacing(2);
    QToolButton *refresh = rowButton(buttonsCell,
                                     kRefreshButton,
                                     QStringLiteral(":/icons/refresh.svg"),
                                     tr("Обновить данные по каналу"));
    QToolButton *save = rowButton(buttonsCell,
                                  kSaveButton,
                                  QStringLiteral(":/icons/checkmark.svg"),
                                  tr("Записать настройки канала в УКИ"));
    save->setEnabled(entry.changed() && !m_engineRunning);
    refresh->setEnabled(!m_engineRunning);
    buttonsLayout->addWidget(refresh);
    buttonsLayout->addWidget(save);
    table->setCellWidget(row, ButtonsColumn, buttonsCell);
    connect(refresh, &QToolButton::clicked, this, [this, key] { submit({Job::Read, key}); });
    connect(save, &QToolButton::clicked, this, [this, key] { submit({Job::Write, key}); });
}

void StatGraphWidget::setSettingsCells(int row, const Key &key)
{
    QTableWidget *table = ui->tableChannels;
    const StatChannel &entry = m_graph->entry(key.first, key.second);
    const bool off = entry.rLoc() == 0;
    const QString texts[] = {
            off ? QStringLiteral("OFF") : QStringLiteral("%1").arg(entry.rLoc()),
            off ? QString() : QStringLiteral("%1").arg(entry.lower() * kUnitsPerStep),
            off ? QString() : QStringLiteral("%1").arg(entry.upper() * kUnitsPerStep),
    };
    for (int column = RLocColumn; column <= UpperColumn; ++column) {
        QTableWidgetItem *item = table->item(row, column);
        if (!item) {
            item = new QTableWidgetItem;
            table->setItem(row, column, item);
        }
        item->setText(texts[column - RLocColumn]);
        item->setFlags(off && column != RLocColumn ? kReadOnly : kEditable);
    }
}

void StatGraphWidget::channelToggled(const Key &key, QWidget *cell, bool checked)
{
    StatChannel &entry = m_graph->entry(key.first, key.second);
    entry.setShown(checked);
    if (!checked) {
        cell->setStyleSheet(QString());
        m_graph->update();
        return;
    }
    cell->setStyleSheet(QStringLiteral("background-color: %1")
                                .arg(m_graph->assignColor(key.first, key.second)));
    const std::shared_ptr<SearchStatistics> statistics = m_uki->statistics(
            key.first, key.second, StatGraph::level);
    if (statistics && !statistics->points.isEmpty())
        m_graph->update();
    else
        submit({Job::Read, key});
}

void StatGraphWidget::treeCellChanged(int row, int column)
{
    if (row >= 0 && row < m_rows.size()) {
        const Key key = m_rows.at(row);
        StatChannel &entry = m_graph->entry(key.first, key.second);
        QTableWidgetItem *item = ui->tableChannels->item(row, column);
        const QSignalBlocker blocker(ui->tableChannels);
        bool isNumber = false;
        const uint value = item ? item->text().trimmed().toUInt(&isNumber) : 0;
        switch (column) {
        case LowerColumn:
        case UpperColumn:
            if (isNumber) {
                if (column == LowerColumn)
                    entry.setLower(value / kUnitsPerStep);
                else
                    entry.setUpper(value / kUnitsPerStep);
            }
            item->setText(QStringLiteral("%1").arg(
                    (column == LowerColumn ? entry.lower() : entry.upper()) * kUnitsPerStep));
            break;
        case RLocColumn:
            if (isNumber)
                entry.setRLoc(value);
            setSettingsCells(row, key);
            break;
        default:
            break;
        }
    }
    emit setButtonsEnabled(true);
}

void StatGraphWidget::buttonsEnabled(bool enabled)
{
    const bool on = enabled && !m_engineRunning;
    for (int row = 0; row < m_rows.size(); ++row) {
        const StatChannel &entry = m_graph->entry(m_rows.at(row).first, m_rows.at(row).second);
        if (QWidget *refresh = cellButton(row, kRefreshButton))
            refresh->setEnabled(on);
        if (QWidget *save = cellButton(row, kSaveButton))
            save->setEnabled(on && entry.changed());
    }
    ui->tbWriteAllChannels->setEnabled(on);
}

QWidget *StatGraphWidget::cellButton(int row, const char *name) const
{
    QWidget *cell = ui->tableChannels->cellWidget(row, ButtonsColumn);
    return cell ? cell->findChild<QToolButton *>(QLatin1String(name)) : nullptr;
}

void StatGraphWidget::submit(const Job &job)
{
    if (m_running) {
        if (!(job == m_current) && !m_queue.contains(job))
            m_queue.append(job);
        return;
    }
    start(job);
}

bool StatGraphWidget::start(const Job &job)
{
    const uint address = job.key.first;
    const uint channel = job.key.second;
    // A request while the engine runs is refused by it and would also end the run in progress.
    if (m_uki->isBusy() || m_writer->isRunning()) {
        if (job.type == Job::Write)
            qInfo().noquote()
                    << QStringLiteral("Устройство занято, канал не записан: Адрес: %1; Канал: %2;")
                               .arg(address)
                               .arg(channel + 1);
        else
            qInfo().noquote() << QStringLiteral(
                                         "Устройство занято, статистика не прочитана: Адрес: %1; "
                                         "Канал: %2;")
                                         .arg(address)
                                         .arg(channel + 1);
        return false;
    }

    if (job.type == Job::Read) {
        if (!m_uki->readStats(address, channel, StatGraph::level))
            return false;
        m_running = true;
        m_current = job;
        emit requestStatistics(address, channel);
        return true;
    }

    StatChannel &entry = m_graph->entry(address, channel);
    const uint lower = entry.lower() * kUnitsPerStep;
    const uint upper = entry.upper() * kUnitsPerStep;
    qInfo().noquote()
            << QStringLiteral("Запись канала: Адрес: %1; Канал: %2;").arg(address).arg(channel + 1);
    if (!m_writer->writeChannel(address, channel + 1, lower, upper, entry.rLoc()))
        return false;
    m_running = true;
    m_current = job;
    entry.setChanged(false);
    const int row = m_rows.indexOf(job.key);
    if (QWidget *save = cellButton(row, kSaveButton))
        save->setEnabled(false);
    emit setChannelBounds(address, channel, lower, upper);
    return true;
}

void StatGraphWidget::finishJob()
{
    m_running = false;
    // The engine still holds the finished program while it reports; start after it let go.
    if (!m_queue.isEmpty())
        QTimer::singleShot(0, this, &StatGraphWidget::startNext);
}

void StatGraphWidget::startNext()
{
    while (!m_running && !m_queue.isEmpty())
        start(m_queue.takeFirst());
}

void StatGraphWidget::channelWritten(const SafeWriteResult &result)
{
    if (!m_running || m_current.type != Job::Write)
        return;
    const Key &key = m_current.key;
    StatChannel &entry = m_graph->entry(key.first, key.second);
    const bool readBack = result.outcome == SafeWriteResult::Verified
                          || result.outcome == SafeWriteResult::NotTaken;
    if (readBack) {
        // The row shows what the device holds now.
        const std::shared_ptr<CustomChannels> channels = m_uki->customChannels();
        CustomChannel held;
        if (channels && channels->findChannel(key.first, key.second, held) && held.enabled)
            entry.load(held.rLoc, held.lower, held.upper);
        else
            entry.load(0, 0, 0);
        const QSignalBlocker blocker(ui->tableChannels);
        setSettingsCells(int(m_rows.indexOf(key)), key);
    }
    if (result.outcome != SafeWriteResult::Verified) {
        // Not written: unless the row shows the device again, its settings stay unsaved so the
        // user can try again.
        if (!readBack)
            entry.setChanged(true);
        qInfo().noquote() << QStringLiteral("Канал не записан: Адрес: %1; Канал: %2;")
                                     .arg(key.first)
                                     .arg(key.second + 1);
        emit setButtonsEnabled(true);
    }
    finishJob();
}

void StatGraphWidget::updateStatistics(bool)
{
    fillDump();
    m_graph->update();
}

StatGraphWidget::Key StatGraphWidget::currentKey() const
{
    const int row = ui->tableChannels->currentRow();
    if (row >= 0 && row < m_rows.size())
        return m_rows.at(row);
    return Key(m_uki->statsAddress(), m_uki->statsChannel());
}

void StatGraphWidget::fillDump()
{
    const Key key = currentKey();
    const std::shared_ptr<SearchStatistics> statistics = m_uki->statistics(
            key.first, key.second, StatGraph::level);
    QTableWidget *table = ui->tableDump;
    table->clearContents();
    table->setRowCount(statistics ? statistics->points.size() : 0);
    if (!statistics)
        return;
    for (int row = 0; row < statistics->points.size(); ++row) {
        const StatPoint &point = statistics->points.at(row);
        const double values[] = {point.value1, point.value2, point.value3};
        for (int column = 0; column < 3; ++column) {
            auto item = new QTableWidgetItem(QStringLiteral("%1").arg(values[column], 12, 'f', 5));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, column, item);
        }
    }
}
