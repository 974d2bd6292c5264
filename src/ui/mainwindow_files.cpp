// The file workflows of the main window: save-all, and saving and loading each page as a CSV
// file so that the engineer can go on working without the device.

#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include "app/application.h"
#include "app/programsettings.h"
#include "files/csvfiles.h"
#include "models/archivedata.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "models/valuecomparison.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "stats/statgraphwidget.h"
#include "ui/comparedialog.h"
#include "ui/popupmessage.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>

namespace {

// The header lines of a page file: variant, "-----", display name, "--------------".
constexpr int PageHeaderLines = 4;

QString shownName(const QString &fileName)
{
    return QDir::toNativeSeparators(fileName);
}

} // namespace

// Asks for a file to open and reads its lines; false when the dialog was cancelled or the file
// could not be read (the read error is shown).
bool MainWindow::openFileLines(const QString &title,
                               CsvFiles::Kind kind,
                               QString &name,
                               QStringList &lines)
{
    name = askFileName(false, title, Application::dataFolder());
    if (name.isEmpty())
        return false;
    if (!CsvFiles::readLines(name, kind, lines)) {
        showMessage(CsvFiles::readFailedMessage(name));
        return false;
    }
    return true;
}

QString MainWindow::askFileName(bool save, const QString &title, const QString &defaultName)
{
    if (m_fileNameAsker)
        return m_fileNameAsker(save, title, defaultName);
    const QString filter = tr("Файлы csv (*.csv)");
    return save ? QFileDialog::getSaveFileName(this, title, defaultName, filter)
                : QFileDialog::getOpenFileName(this, title, defaultName, filter);
}

void MainWindow::showMessage(const CsvMessage &message)
{
    m_popup->show(message.text, message.milliseconds);
}

void MainWindow::deviceDataRead(bool success, uint32_t flags)
{
    if (!success)
        return;
    ui->tbSaveData->setEnabled(true);
    // A new versions list came from the device: it replaces the one of a loaded settings file.
    if (flags & Uki::ReadIdentification) {
        m_settingsFromFile = false;
        m_fileVersionLines.clear();
    }
}

void MainWindow::saveData()
{
    showMessage(CsvFiles::saveAll(Application::dataFolder(),
                                  QDateTime::currentDateTime(),
                                  ProgramSettings::instance().variant,
                                  m_uki->getCfgLines(),
                                  m_uki->dumpLines(),
                                  m_uki->cfgLines()));
}

QStringList MainWindow::editedSettingsLines() const
{
    if (!m_ukiConfigEditor->isHidden()) {
        UkiSettings record = m_ukiSettings;
        m_ukiConfigEditor->settings(record);
        return record.toLines();
    }
    if (!m_ukpsConfigEditor->isHidden()) {
        UkpsSettings record = m_ukpsSettings;
        m_ukpsConfigEditor->settings(record);
        return record.toLines();
    }
    return {};
}

QString MainWindow::settingsLabel(const QString &key) const
{
    if (!m_ukiConfigEditor->isHidden())
        return m_ukiConfigEditor->labelFor(key);
    if (!m_ukpsConfigEditor->isHidden())
        return m_ukpsConfigEditor->labelFor(key);
    return {};
}

void MainWindow::showChangedCount()
{
    int count = 0;
    if (!m_ukiConfigEditor->isHidden())
        count = m_ukiConfigEditor->changedCount();
    else if (!m_ukpsConfigEditor->isHidden())
        count = m_ukpsConfigEditor->changedCount();
    // Without an editor on the page there is nothing to compare a file with.
    const bool shown = !m_ukiConfigEditor->isHidden() || !m_ukpsConfigEditor->isHidden();
    ui->labelConfigChanges->setText(tr("Изменено: %1").arg(count));
    ui->labelConfigChanges->setVisible(shown);
    ui->tbCompareConfigWithFile->setEnabled(shown);
}

void MainWindow::compareConfigWithFile()
{
    QString name;
    QStringList lines;
    if (!openFileLines(tr("Сравнение настроек с файлом"), CsvFiles::Kind::Settings, name, lines))
        return;
    const QStringList fileLines = CsvFiles::splitSettingsFile(lines).settingsLines;
    const ValueComparison::Entries current = ValueComparison::settingsEntries(
            editedSettingsLines());
    const ValueComparison::Entries file = ValueComparison::settingsEntries(fileLines);
    QHash<QString, QString> labels;
    for (const auto &entry : current + file)
        labels.insert(entry.first, settingsLabel(entry.first));
    auto *comparison = new ValueComparison;
    comparison->compare(current, file, labels);

    auto *dialog = new CompareDialog(comparison, name, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, fileLines] {
        if (!m_ukiConfigEditor->isHidden())
            m_ukiConfigEditor->takeLines(fileLines);
        else if (!m_ukpsConfigEditor->isHidden())
            m_ukpsConfigEditor->takeLines(fileLines);
        m_popup->show(tr("[[INFO]]Значения из файла в редакторе; в устройство ничего не записано"),
                      3000);
    });
    dialog->open();
}

void MainWindow::compareCorrectionsWithFile()
{
    if (!m_corrections) {
        m_popup->show(tr("[[WARN]]Нечего сравнивать: коррекции ТТ не прочитаны"), 3000);
        return;
    }
    QString name;
    QStringList lines;
    if (!openFileLines(tr("Сравнение коррекций ТТ с файлом"), CsvFiles::Kind::Table, name, lines))
        return;
    auto file = std::make_shared<CtCorrections>(lines);
    const QLocale locale = ui->tableCorrections->locale();
    const ValueComparison::Entries current = ValueComparison::shownCorrectionEntries(*m_corrections,
                                                                                     locale);
    const ValueComparison::Entries fileEntries = ValueComparison::shownCorrectionEntries(*file,
                                                                                         locale);
    QHash<QString, QString> labels;
    for (const auto &entry : current + fileEntries)
        labels.insert(entry.first,
                      tr("Адрес %1, канал %2")
                              .arg(entry.first.section(QLatin1Char('/'), 0, 0),
                                   entry.first.section(QLatin1Char('/'), 1)));
    auto *comparison = new ValueComparison;
    comparison->compare(current, fileEntries, labels);

    auto *dialog = new CompareDialog(comparison, name, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, file] {
        m_corrections->takeValues(*file);
        m_popup->show(tr("[[INFO]]Значения из файла в редакторе; в устройство ничего не записано"),
                      3000);
    });
    dialog->open();
}

void MainWindow::saveConfigToFile()
{
    const int variant = ProgramSettings::instance().variant;
    const QString name = askFileName(true,
                                     tr("Сохранение конфигурации в файл"),
                                     CsvFiles::settingsFileName(Application::dataFolder(),
                                                                QDateTime::currentDateTime(),
                                                                variant));
    if (name.isEmpty())
        return;
    const QStringList versionLines = m_settingsFromFile ? m_fileVersionLines : m_uki->cfgLines();
    showMessage(CsvFiles::savePage(
            CsvFiles::withCsvExtension(name),
            CsvFiles::settingsFile(variant, editedSettingsLines(), versionLines)));
}

void MainWindow::loadConfigFromFile()
{
    QString name;
    QStringList lines;
    if (!openFileLines(
                tr("Загрузка конфигурации УКИ из файла"), CsvFiles::Kind::Settings, name, lines))
        return;
    const int variant = CsvFiles::takeVariantFromFile(lines, CsvFiles::Kind::Settings);
    ProgramSettings::instance().variant = variant;
    const CsvSettingsFile file = CsvFiles::splitSettingsFile(lines);

    // The monitor's firmware version, when the file carries a versions list: the UKPS form
    // adapts to it as after a device read.
    auto locators = std::make_shared<Locators>(file.versionLines);
    QString firmware;
    for (int row = 0; row < locators->size(); ++row) {
        if (locators->locatorAt(row).isMonitor)
            firmware = locators->locatorAt(row).version;
    }

    ui->plainTextUkiConfig->setPlainText(file.settingsLines.join(QLatin1Char('\n')));
    if (variant == DeviceVariant::UkiKiranto) {
        m_ukpsConfigEditor->hide();
        m_ukiConfigEditor->show();
        UkiSettings record;
        record.fromLines(file.settingsLines);
        m_ukiSettings = record;
        m_ukiConfigEditor->setSettings(m_ukiSettings);
        m_uki->setSettings(m_ukiSettings);
    } else {
        m_ukiConfigEditor->hide();
        m_ukpsConfigEditor->show();
        if (!firmware.isEmpty())
            m_ukpsConfigEditor->applyFirmwareVersion(firmware);
        UkpsSettings record;
        if (record.fromLines(file.settingsLines)) {
            m_ukpsSettings = record;
            m_ukpsConfigEditor->setSettings(m_ukpsSettings);
        }
    }
    applyVariant();

    m_fileVersionLines = file.versionLines;
    m_settingsFromFile = true;
    m_settingsFileOpened = true;
    const bool withLocators = DeviceVariant::hasLocators(variant);
    if (withLocators) {
        ui->tableLocators->setModel(nullptr);
        m_locators = locators;
        m_uki->setLocators(m_locators);
        ui->tableLocators->setModel(m_locators.get());
        ui->tableLocators->resizeColumnsToContents();
        m_statGraphWidget->updateChannels();
    }
    showLocatorPages(withLocators);

    ui->labelStatus->setText(tr("Данные из файла %1").arg(shownName(name)));
    ui->tbSaveConfigToFile->setEnabled(true);
    showMessage(CsvFiles::readOkMessage());
}

void MainWindow::saveArchiveToFile()
{
    const int variant = ProgramSettings::instance().variant;
    const QString name = askFileName(true,
                                     tr("Сохранение архива событий в файл"),
                                     CsvFiles::archiveFileName(Application::dataFolder(),
                                                               QDateTime::currentDateTime(),
                                                               variant));
    if (name.isEmpty())
        return;
    // An archive loaded from a file shows that file's header; the new file gets its own.
    QStringList lines = ui->plainTextArchive->toPlainText().split(QLatin1Char('\n'));
    if (CsvFiles::hasPageHeader(lines))
        lines = lines.mid(PageHeaderLines);
    showMessage(CsvFiles::savePage(CsvFiles::withCsvExtension(name),
                                   CsvFiles::archiveFile(variant, lines.join(QLatin1Char('\n')))));
}

void MainWindow::loadArchiveFromFile()
{
    QString name;
    QStringList lines;
    if (!openFileLines(tr("Загрузка архива из файла"), CsvFiles::Kind::Archive, name, lines))
        return;
    const int variant = CsvFiles::takeVariantFromFile(lines, CsvFiles::Kind::Archive);
    ProgramSettings::instance().variant = variant;
    // The archive parser drops the header lines as it drops any line that is not an event.
    showArchive(lines);
    ui->labelStatus->setText(tr("Данные из файла %1").arg(shownName(name)));
    fillArchiveFilter(variant);
    ui->tbSaveArchiveToFile->setEnabled(true);
    showMessage(CsvFiles::readOkMessage());
}

void MainWindow::saveCorrectionsToFile()
{
    if (!m_corrections) {
        m_popup->show(tr("[[WARN]]Нечего сохранять!"), 3000);
        return;
    }
    const QString name = askFileName(
            true,
            tr("Сохранение коррекций ТТ в файл"),
            CsvFiles::correctionsFileName(Application::dataFolder(), QDateTime::currentDateTime()));
    if (name.isEmpty())
        return;
    showMessage(CsvFiles::savePage(CsvFiles::withCsvExtension(name),
                                   CsvFiles::correctionsFile(*m_corrections)));
}

void MainWindow::loadCorrectionsFromFile()
{
    QString name;
    QStringList lines;
    if (!openFileLines(tr("Загрузка коррекций ТТ из файла"), CsvFiles::Kind::Table, name, lines))
        return;
    auto corrections = std::make_shared<CtCorrections>(lines);
    // Rows that differ from the table last read from the device show as edited, ready to be
    // written; without a device table the file's rows are taken as they are.
    if (!m_uki->corrLines().isEmpty())
        corrections->markDifferences(CtCorrections(m_uki->corrLines()));
    ui->tableCorrections->setModel(corrections.get());
    ui->tableCorrections->resizeColumnsToContents();
    m_corrections = corrections;
    ui->plainTextCorrections->setPlainText(lines.join(QLatin1Char('\n')));
    showMessage(CsvFiles::readOkMessage());
}

void MainWindow::saveChannelsToFile()
{
    const std::shared_ptr<CustomChannels> channels = m_uki->customChannels();
    if (!channels) {
        m_popup->show(tr("[[WARN]]Нечего сохранять!"), 3000);
        return;
    }
    const QString name = askFileName(
            true,
            tr("Сохранение текущей конфигурации в файл"),
            CsvFiles::customChannelsFileName(Application::dataFolder(),
                                             QDateTime::currentDateTime()));
    if (name.isEmpty())
        return;
    showMessage(CsvFiles::savePage(CsvFiles::withCsvExtension(name),
                                   CsvFiles::customChannelsFile(*channels)));
}

void MainWindow::loadChannelsFromFile()
{
    // The channels belong to the monitors of a settings file: one must have been opened first.
    if (!m_settingsFileOpened) {
        showMessage(CsvFiles::settingsFileFirstMessage());
        return;
    }
    QString name;
    QStringList lines;
    if (!openFileLines(
                tr("Загрузка конфигурации УКИ из файла"), CsvFiles::Kind::Table, name, lines))
        return;
    m_uki->setCustomChannels(std::make_shared<CustomChannels>(lines));
    m_statGraphWidget->updateChannels();
    showMessage(CsvFiles::readOkMessage());
}
