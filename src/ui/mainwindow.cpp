#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include "app/application.h"
#include "app/programsettings.h"
#include "models/archivedata.h"
#include "models/archivefilterproxy.h"
#include "models/ctcorrections.h"
#include "models/doublespinboxdelegate.h"
#include "models/locators.h"
#include "protocol/safewrite.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "stats/statgraphwidget.h"
#include "ui/aboutdialog.h"
#include "ui/configdialog.h"
#include "ui/popupmessage.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProgressBar>
#include <QSaveFile>
#include <QtDebug>

namespace {

// Display times of the popup, in milliseconds.
constexpr int WhileWorking = 30000;
constexpr int Offline = 2000;
constexpr int Done = 3000;
constexpr int Written = 1000;
constexpr int Verdict = 8000;

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , ui(new Ui::MainWindow)
{
    ui->setupUi(this);
    ui->toolBar->hide();
    ui->menuMainBar->hide();
    // A fresh window shows the settings and archive pages only; the other two come back when a
    // device with locators is connected.
    ui->ukiDataPages->removeTab(3);
    ui->ukiDataPages->removeTab(2);

    m_popup = new PopupMessage(this);
    // Applied before the editors and the statistics page are built: a widget created under a
    // styled parent takes the style as it is constructed, while a finished tree restyled at the
    // end sends every combo box a style change that makes it build its drop-down list at once.
    setStyleSheet(readStyleSheet());
    loadConfig();
    createEngine();
    createPages();
    connectButtons();
    setInitialState();
}

MainWindow::~MainWindow()
{
    delete ui;
}

QString MainWindow::readStyleSheet()
{
    QFile file(Application::configFilePath(QStringLiteral("style.qss")));
    if (file.open(QIODevice::ReadOnly))
        return QString::fromLatin1(file.readAll());
    QFile builtIn(QStringLiteral(":/style/default.qss"));
    if (builtIn.open(QIODevice::ReadOnly))
        return QString::fromUtf8(builtIn.readAll());
    return QString();
}

void MainWindow::loadConfig()
{
    QFile file(Application::configFilePath(QStringLiteral("config.json")));
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll()
                                                              : QByteArrayLiteral("{}");
    ProgramSettings::instance().fromJson(QJsonDocument::fromJson(content).object());
}

void MainWindow::saveConfig()
{
    // Written to a temporary file and renamed over config.json: a failed write leaves the old
    // file whole.
    QSaveFile file(Application::configFilePath(QStringLiteral("config.json")));
    const auto fail = [&file] {
        qCritical().noquote() << QStringLiteral(
                                         "MainWindow::saveConfig() - ошибка записи в файл %1.")
                                         .arg(file.fileName());
    };
    if (!file.open(QIODevice::WriteOnly)) {
        fail();
        return;
    }
    QJsonObject root;
    ProgramSettings::instance().toJson(root);
    file.write(QJsonDocument(root).toJson(QJsonDocument::Indented));
    if (!file.commit())
        fail();
}

void MainWindow::createEngine()
{
    m_uki = new Uki(this);
    m_uki->setPortName(ProgramSettings::instance().port);
    connect(m_uki, &Uki::logMessage, this, &MainWindow::logMessage);
    connect(m_uki, &Uki::configReadDone, this, &MainWindow::configReadDone);
    connect(m_uki, &Uki::statsReadDone, this, &MainWindow::statsReadDone);
    // Created after the window's own connections: the window sees each engine report first,
    // while the guarded write still counts as running.
    m_safeWrite = new SafeWrite(m_uki, this);
    prepareWrite();
    connect(m_uki, &Uki::programStart, this, [this] {
        if (!m_safeWrite->isRunning())
            runStarted();
    });
    connect(m_uki, &Uki::programDone, this, [this] {
        if (!m_safeWrite->isRunning())
            runEnded();
    });
    connect(m_safeWrite, &SafeWrite::logMessage, this, &MainWindow::logMessage);
    connect(m_safeWrite, &SafeWrite::started, this, &MainWindow::runStarted);
    connect(m_safeWrite, &SafeWrite::finished, this, &MainWindow::writeVerified);
    connect(ui->tbStop, &QToolButton::clicked, this, [this] {
        if (m_safeWrite->isRunning())
            m_safeWrite->cancel();
        else
            m_uki->cancel();
    });
    connect(m_uki, &Uki::progress, this, &MainWindow::showProgress);
    connect(m_uki, &Uki::received, this, [this](qint64 bytes, int lines, qint64 elapsedMs) {
        // Only a one-command run (the busy bar, such as the archive) shows its reply as it
        // grows; a longer run counts its commands instead.
        if (m_progress->maximum() != 0)
            return;
        const double kib = bytes / 1024.0;
        statusBar()->showMessage(
                tr("Принято строк: %1, %2 КБ, %3 КБ/с")
                        .arg(lines)
                        .arg(kib, 0, 'f', 1)
                        .arg(elapsedMs > 0 ? kib * 1000.0 / elapsedMs : 0.0, 0, 'f', 1));
    });

    // While a program runs the device buttons are off; afterwards each gets back the state it
    // had, so that a failed run does not unlock buttons that need a settings read first.
    connect(this, &MainWindow::setButtonsEnabled, this, [this](bool enabled) {
        const QList<QToolButton *> buttons{ui->tbConnect,
                                           ui->tbReadConfig,
                                           ui->tbWriteConfig,
                                           ui->tbReadArchive,
                                           ui->tbReadCorrections,
                                           ui->tbWriteCorrections};
        for (QToolButton *button : buttons) {
            if (!enabled) {
                button->setProperty("enabledBeforeRun", button->isEnabled());
                button->setEnabled(false);
            } else {
                const QVariant before = button->property("enabledBeforeRun");
                button->setEnabled(before.isValid() ? before.toBool() : true);
            }
        }
    });

    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("progressProgram"));
    m_progress->setFormat(tr("Команд выполнено: %v из %m"));
    m_progress->setMaximumWidth(260);
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);
}

void MainWindow::runStarted()
{
    emit setButtonsEnabled(false);
    ui->tbStop->setEnabled(true);
}

void MainWindow::runEnded()
{
    emit setButtonsEnabled(true);
    ui->tbStop->setEnabled(false);
    m_progress->hide();
    statusBar()->clearMessage();
}

void MainWindow::createPages()
{
    m_ukpsConfigEditor = new UkpsConfigEditor(ui->ukiConfigEditorPlace);
    m_ukiConfigEditor = new UkiConfigEditor(ui->ukiConfigEditorPlace);
    ui->ukiConfigEditorPlace->layout()->addWidget(m_ukpsConfigEditor);
    ui->ukiConfigEditorPlace->layout()->addWidget(m_ukiConfigEditor);
    connect(m_ukpsConfigEditor,
            &UkpsConfigEditor::changedCountChanged,
            this,
            &MainWindow::showChangedCount);
    connect(m_ukiConfigEditor,
            &UkiConfigEditor::changedCountChanged,
            this,
            &MainWindow::showChangedCount);

    m_statGraphWidget = new StatGraphWidget(m_uki, m_safeWrite, ui->searchStatGraphPlace);
    ui->searchStatGraphPlace->layout()->addWidget(m_statGraphWidget);

    m_archive = new ArchiveData(QStringList(), this);
    m_archiveFilter = new ArchiveFilterProxy(this);
    m_archiveFilter->setSourceModel(m_archive);
    ui->tableArchive->setModel(m_archiveFilter);
    connect(ui->cbArchiveFilter,
            QOverload<int>::of(&QComboBox::currentIndexChanged),
            m_archiveFilter,
            [filter = m_archiveFilter](int index) {
                filter->setFilterIndex(ProgramSettings::instance().variant, index);
            });

    ui->tableCorrections->setItemDelegateForColumn(
            CtCorrections::GainColumn, new DoubleSpinBoxDelegate(0.01, 999.0, 0.01, 2, this));
    ui->tableCorrections->setItemDelegateForColumn(
            CtCorrections::PhaseColumn, new DoubleSpinBoxDelegate(-360.0, 360.0, 0.1, 1, this));
}

void MainWindow::connectButtons()
{
    connect(ui->actionAbout, &QAction::triggered, this, &MainWindow::showAbout);
    connect(ui->tbAbout, &QToolButton::clicked, this, &MainWindow::showAbout);
    connect(ui->actionEditProperties, &QAction::triggered, this, &MainWindow::editProperties);
    connect(ui->tbEdit_Connect, &QToolButton::clicked, this, &MainWindow::editProperties);
    connect(ui->tbOptions, &QToolButton::clicked, this, &MainWindow::editProperties);
    connect(ui->actionExit, &QAction::triggered, qApp, &QCoreApplication::quit);
    connect(ui->tbConnect, &QToolButton::clicked, this, &MainWindow::connectAndRead);

    connect(ui->tbConfigViewAsForm, &QToolButton::clicked, this, [this] {
        ui->pagesUkiConfig->setCurrentWidget(ui->pageConfigForm);
    });
    connect(ui->tbConfigViewAsDump, &QToolButton::clicked, this, [this] {
        ui->pagesUkiConfig->setCurrentWidget(ui->pageConfigText);
    });
    connect(ui->tbArchivesViewAsTable, &QToolButton::clicked, this, [this] {
        ui->stackedWidgetArchives->setCurrentWidget(ui->pageArchivesTable);
    });
    connect(ui->tbArchivesViewAsDump, &QToolButton::clicked, this, [this] {
        ui->stackedWidgetArchives->setCurrentWidget(ui->pageArchivesDump);
    });
    connect(ui->tbCorrectionsViewAsTable, &QToolButton::clicked, this, [this] {
        ui->stackedWidgetCorrections->setCurrentWidget(ui->pageCorrectionsTable);
    });
    connect(ui->tbCorrectionsViewAsDump, &QToolButton::clicked, this, [this] {
        ui->stackedWidgetCorrections->setCurrentWidget(ui->pageCorrectionsDump);
    });

    connect(ui->tbReadConfig, &QToolButton::clicked, this, &MainWindow::readConfig);
    connect(ui->tbWriteConfig, &QToolButton::clicked, this, &MainWindow::writeConfig);
    connect(ui->tbReadArchive, &QToolButton::clicked, this, &MainWindow::readArchive);
    connect(ui->tbReadCorrections, &QToolButton::clicked, this, &MainWindow::readCorrections);
    connect(ui->tbWriteCorrections, &QToolButton::clicked, this, &MainWindow::writeCorrections);

    connect(ui->tbSaveData, &QToolButton::clicked, this, &MainWindow::saveData);
    connect(ui->tbLoadConfigFromFile, &QToolButton::clicked, this, &MainWindow::loadConfigFromFile);
    connect(ui->tbSaveConfigToFile, &QToolButton::clicked, this, &MainWindow::saveConfigToFile);
    connect(ui->tbLoadArchiveFromFile,
            &QToolButton::clicked,
            this,
            &MainWindow::loadArchiveFromFile);
    connect(ui->tbSaveArchiveToFile, &QToolButton::clicked, this, &MainWindow::saveArchiveToFile);
    connect(ui->tbLoadCorrectionsFromFile,
            &QToolButton::clicked,
            this,
            &MainWindow::loadCorrectionsFromFile);
    connect(ui->tbSaveCorrectionsToFile,
            &QToolButton::clicked,
            this,
            &MainWindow::saveCorrectionsToFile);
    connect(ui->tbCompareConfigWithFile,
            &QToolButton::clicked,
            this,
            &MainWindow::compareConfigWithFile);
    connect(ui->tbCompareCorrectionsWithFile,
            &QToolButton::clicked,
            this,
            &MainWindow::compareCorrectionsWithFile);
    connect(m_statGraphWidget,
            &StatGraphWidget::loadChannelsFromFile,
            this,
            &MainWindow::loadChannelsFromFile);
    connect(m_statGraphWidget,
            &StatGraphWidget::saveChannelsToFile,
            this,
            &MainWindow::saveChannelsToFile);
    connect(m_uki, &Uki::configReadDone, this, &MainWindow::deviceDataRead);
}

void MainWindow::setInitialState()
{
    ui->pagesUkiConfig->setCurrentIndex(0);
    m_ukpsConfigEditor->hide();
    m_ukiConfigEditor->hide();
    showChangedCount();
    for (QWidget *widget : {static_cast<QWidget *>(ui->label_6),
                            static_cast<QWidget *>(ui->label_8),
                            static_cast<QWidget *>(ui->tbConfigViewAsForm),
                            static_cast<QWidget *>(ui->tbConfigViewAsDump),
                            static_cast<QWidget *>(ui->lineConfig1),
                            static_cast<QWidget *>(ui->tbArchivesViewAsTable),
                            static_cast<QWidget *>(ui->tbArchivesViewAsDump),
                            static_cast<QWidget *>(ui->groupBox)})
        widget->hide();
    ui->cbArchiveFilter->clear();
    for (QToolButton *button : {ui->tbSaveData,
                                ui->tbReadConfig,
                                ui->tbWriteConfig,
                                ui->tbSaveConfigToFile,
                                ui->tbReadArchive,
                                ui->tbSaveArchiveToFile})
        button->setEnabled(false);
}

void MainWindow::logMessage(QString message)
{
    qDebug().noquote() << message;
}

uint MainWindow::deviceVersion() const
{
    return UkpsConfigEditor::parseVersion(m_uki->ukiVersion()).value(0);
}

void MainWindow::showAbout()
{
    AboutDialog dialog(this);
    dialog.exec();
}

void MainWindow::showProgress(int answered, int total)
{
    if (total <= 0)
        return;
    m_progress->show();
    // A single command (the archive) can take seconds: show activity rather than "0 of 1".
    if (total == 1 && answered == 0) {
        m_progress->setRange(0, 0);
        return;
    }
    m_progress->setRange(0, total);
    m_progress->setValue(answered);
}

// Device workflows

void MainWindow::editProperties()
{
    ConfigDialog dialog(this);
    dialog.setSettings(ProgramSettings::instance());
    if (dialog.exec() != QDialog::Accepted)
        return;
    dialog.getSettings(ProgramSettings::instance());
    m_uki->setPortName(ProgramSettings::instance().port);
    reconnect();
    logMessage(QStringLiteral("_version__"));
}

void MainWindow::reconnect()
{
    ui->plainTextUkiConfig->clear();
    m_ukpsConfigEditor->hide();
    m_ukiConfigEditor->hide();
    showChangedCount();
    // Nothing left to save until a settings read or a loaded file shows settings again.
    ui->tbSaveConfigToFile->setEnabled(false);
    ui->labelStatus->setText(QString());
    ui->pageArchivesTable->hide();
    ui->plainTextArchive->hide();

    logMessage(QStringLiteral("Connecting..."));
    if (m_uki->readData(Uki::ReadIdentification)) {
        logMessage(QStringLiteral("Подключаемся..."));
        m_popup->show(tr("[[INFO]]Подключаемся..."), WhileWorking);
    }
}

void MainWindow::connectAndRead()
{
    ui->plainTextUkiConfig->clear();
    if (m_uki->readData(Uki::ReadSettings | Uki::ReadIdentification)) {
        logMessage(QStringLiteral("Подключаемся..."));
        m_popup->show(tr("[[INFO]]Читаем данные..."), WhileWorking);
    }
}

void MainWindow::readConfig()
{
    ui->plainTextUkiConfig->clear();
    const uint version = deviceVersion();
    logMessage(QStringLiteral("kod_version : %1").arg(m_uki->ukiVersion()));
    logMessage(QStringLiteral("kod_versionRes : %1").arg(version));
    if (isMonitorVersion(version)) {
        if (m_uki->readData(Uki::ReadSettings | Uki::ReadIdentification | Uki::ReadCustomChannels
                            | Uki::ReadCorrections)) {
            logMessage(QStringLiteral("Читаем конфигурацию УКИ..."));
            m_popup->show(tr("[[INFO]]Читаем конфигурацию УКИ..."), WhileWorking);
        }
    } else if (m_uki->readData(Uki::ReadSettings)) {
        logMessage(QStringLiteral("Читаем конфигурацию УКПС..."));
        m_popup->show(tr("[[INFO]]Читаем конфигурацию УКПС..."), WhileWorking);
    }
}

void MainWindow::readArchive()
{
    ui->plainTextArchive->clear();
    if (m_uki->readData(Uki::ReadArchive))
        m_popup->show(tr("[[INFO]]Читаем архив..."), WhileWorking);
    ui->tbSaveArchiveToFile->setEnabled(true);
}

void MainWindow::readCorrections()
{
    if (m_uki->readData(Uki::ReadCorrections))
        m_popup->show(tr("[[INFO]]Читаем коррекции ТТ..."), WhileWorking);
}

void MainWindow::writeConfig()
{
    const uint version = deviceVersion();
    logMessage(QStringLiteral("wr_version : %1").arg(m_uki->ukiVersion()));
    logMessage(QStringLiteral("wr_versionRes : %1").arg(version));
    QStringList commands;
    if (isMonitorVersion(version)) {
        m_ukiConfigEditor->settings(m_ukiSettings);
        m_uki->setSettings(m_ukiSettings);
        commands = m_ukiSettings.writeCommands();
    } else {
        m_ukpsConfigEditor->applyFirmwareVersion(m_uki->ukiVersion());
        m_ukpsConfigEditor->settings(m_ukpsSettings);
        commands = m_ukpsSettings.writeCommands();
    }
    prepareWrite();
    m_safeWrite->writeSettings(commands);
}

void MainWindow::writeCorrections()
{
    prepareWrite();
    if (!m_safeWrite->writeCorrections(m_corrections) && !m_uki->isBusy()
        && !m_safeWrite->isRunning())
        m_popup->show(tr("[[WARN]]Коррекции не изменены: записывать нечего"), Done);
}

void MainWindow::prepareWrite()
{
    // Set again before each write of the window: the statistics page writes channels with what
    // was set last.
    m_safeWrite->setBackupRoot(Application::dataFolder() + QStringLiteral("/backups"));
    m_safeWrite->setVariant(ProgramSettings::instance().variant);
}

void MainWindow::writeVerified(const SafeWriteResult &result)
{
    runEnded();
    // The editors show what the device holds now.
    const bool readBack = result.outcome == SafeWriteResult::Verified
                          || result.outcome == SafeWriteResult::NotTaken;
    if (readBack && result.block == Uki::ReadSettings)
        settingsRead();
    if (readBack && result.block == Uki::ReadCorrections)
        showCorrections(m_uki->corrLines());
    m_popup->show(result.message(), result.outcome == SafeWriteResult::Verified ? Done : Verdict);
}

bool MainWindow::reportInterrupted()
{
    if (m_uki->wasCancelled())
        m_popup->show(tr("[[WARN]]Операция прервана"), Done);
    else if (m_uki->wasDisconnected()) {
        // The device went with its port.
        ui->label_IMS_Ver->setText(QString());
        m_popup->show(tr("[[ERR]]Порт %1 отключён").arg(m_uki->portName()), Done);
    } else
        return false;
    return true;
}

void MainWindow::configReadDone(bool success, uint32_t flags)
{
    // The reads of a guarded write are its own business.
    if (m_safeWrite->isRunning())
        return;
    if (!success && reportInterrupted())
        return;
    if (!success) {
        m_popup->show(tr("[[ERR]]Устройство не подключено: Автономная работа"), Offline);
        ui->label_IMS_Ver->setText(QString());
        return;
    }
    if (flags & Uki::ReadIdentification)
        identificationRead();
    if (flags & Uki::ReadSettings)
        settingsRead();
    if (flags & Uki::ReadArchive)
        showArchive(m_uki->dumpLines());
    if (flags & Uki::ReadCorrections)
        showCorrections(m_uki->corrLines());
    // The archive and the corrections have no message of their own when they arrive: take the
    // "reading" message down instead of leaving it up for its full time.
    if (!(flags & (Uki::ReadIdentification | Uki::ReadSettings)))
        m_popup->cancel();
    // The statistics page lists the channels of the locators with their custom settings.
    if ((flags & (Uki::ReadIdentification | Uki::ReadCustomChannels))
        && DeviceVariant::hasLocators(ProgramSettings::instance().variant))
        m_statGraphWidget->updateChannels();
}

void MainWindow::identificationRead()
{
    const QString version = m_uki->ukiVersion();
    const uint number = deviceVersion();
    logMessage(QStringLiteral("r_version : %1").arg(version));
    logMessage(QStringLiteral("r_versionRes : %1").arg(number));

    // An unknown version keeps the variant chosen in the settings dialog.
    ProgramSettings &program = ProgramSettings::instance();
    program.variant = DeviceVariant::fromFirmware(version, program.variant);
    const int variant = program.variant;
    const QString name = DeviceVariant::displayName(variant);

    if (DeviceVariant::hasLocators(variant)) {
        ui->tableLocators->setModel(nullptr);
        m_locators = m_uki->locators();
        ui->tableLocators->setModel(m_locators.get());
        ui->tableLocators->resizeColumnsToContents();
        logMessage(QStringLiteral("locators->size(): %1").arg(m_locators->size()));
        logMessage(QStringLiteral("locators.get()[0].size(): %1").arg(m_locators->size()));
    }

    ui->label_IMS_Ver->setText(
            tr("<html><head/><body><p align=\"center\"><span style=\"font-weight:600;\">%1</span>"
               "<br>Версия ПО - <span style=\"font-weight:600;\">%2</span></p></body></html>")
                    .arg(name, version));

    ui->groupBox->hide();
    ui->tbReadConfig->setEnabled(true);
    ui->tbReadArchive->setEnabled(true);
    ui->tbWriteConfig->setEnabled(false);
    ui->tbSaveConfigToFile->setEnabled(false);

    fillArchiveFilter(variant);

    showLocatorPages(DeviceVariant::hasLocators(variant));

    logMessage(QStringLiteral("Подключено устройство: %1").arg(DeviceVariant::nativeName(variant)));
    m_popup->show(tr("[[OK]]Подключено устройство: %1").arg(name), Done);
}

void MainWindow::showLocatorPages(bool show)
{
    QTabWidget *tabs = ui->ukiDataPages;
    if (show) {
        if (tabs->indexOf(ui->pageCorrections) < 0)
            tabs->insertTab(2, ui->pageCorrections, tr("Коррекция ТТ"));
        if (tabs->indexOf(ui->pageSearchStatistics) < 0)
            tabs->insertTab(3, ui->pageSearchStatistics, tr("Настройка ИК"));
        return;
    }
    for (QWidget *page : {ui->pageSearchStatistics, ui->pageCorrections}) {
        const int index = tabs->indexOf(page);
        if (index >= 0)
            tabs->removeTab(index);
    }
}

void MainWindow::settingsRead()
{
    const QStringList &lines = m_uki->getCfgLines();
    ui->plainTextUkiConfig->setPlainText(lines.join(QLatin1Char('\n')));

    if (isMonitorVersion(deviceVersion())) {
        m_ukpsConfigEditor->hide();
        m_ukiConfigEditor->show();
        m_ukiSettings.fromLines(lines);
        m_ukiConfigEditor->setSettings(m_ukiSettings);
        m_uki->setSettings(m_ukiSettings);
    } else {
        m_ukiConfigEditor->hide();
        m_ukpsConfigEditor->show();
        m_ukpsConfigEditor->applyFirmwareVersion(m_uki->ukiVersion());
        if (m_ukpsSettings.fromLines(lines))
            m_ukpsConfigEditor->setSettings(m_ukpsSettings);
    }

    const QString name = DeviceVariant::displayName(ProgramSettings::instance().variant);
    ui->labelStatus->setText(tr("Данные из %1").arg(name));
    m_popup->show(tr("[[OK]]Конфигурация успешно загружена"), Done);
    logMessage(QStringLiteral("Конфигурация успешно загружена: %1")
                       .arg(DeviceVariant::nativeName(ProgramSettings::instance().variant)));

    saveConfig();
    applyVariant();

    ui->tbReadConfig->setEnabled(true);
    ui->tbWriteConfig->setEnabled(true);
    ui->tbSaveConfigToFile->setEnabled(true);
    ui->tbReadArchive->setEnabled(true);
    ui->tbSaveArchiveToFile->setEnabled(false);
}

void MainWindow::applyVariant()
{
    const int variant = ProgramSettings::instance().variant;
    m_ukpsConfigEditor->applyVariant(variant);
    ui->groupBox->setVisible(DeviceVariant::hasLocators(variant));
}

void MainWindow::fillArchiveFilter(int variant)
{
    ui->cbArchiveFilter->clear();
    ui->cbArchiveFilter->addItems(ArchiveFilterProxy::filterItems(variant));
}

void MainWindow::showArchive(const QStringList &lines)
{
    m_archive->setLines(lines);
    ui->tableArchive->resizeColumnsToContents();
    ui->plainTextArchive->setPlainText(lines.join(QLatin1Char('\n')));
    ui->pageArchivesTable->show();
    ui->plainTextArchive->show();
}

void MainWindow::showCorrections(const QStringList &lines)
{
    auto corrections = std::make_shared<CtCorrections>(lines);
    ui->tableCorrections->setModel(corrections.get());
    ui->tableCorrections->resizeColumnsToContents();
    m_corrections = corrections;
    ui->plainTextCorrections->setPlainText(lines.join(QLatin1Char('\n')));
}

void MainWindow::statsReadDone(bool success, uint address, uint channel, uint level)
{
    Q_UNUSED(address)
    Q_UNUSED(channel)
    Q_UNUSED(level)
    if (!success && reportInterrupted())
        return;
    if (success)
        m_popup->show(tr("[[OK]]Статистика прочитана!"), Written);
    else
        m_popup->show(tr("[[ERR]]Не удалось прочитать статистику поиска"), Done);
}
