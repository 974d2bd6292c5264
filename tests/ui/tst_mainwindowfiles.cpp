// The main window's files end to end: the real window, offscreen, its file dialogs replaced by
// a name given by the test, data read from kiranto-sim on a pseudo-terminal where a device is
// needed, and every file loaded back into a fresh window that has no device.

#include "app/application.h"
#include "app/programsettings.h"
#include "models/archivefilterproxy.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukisettings.h"
#include "ui/csvfiles.h"
#include "ui/mainwindow.h"
#include "ui/popupmessage.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace {

// kiranto-sim on its own pseudo-terminal, stopped when the object goes.
class Simulator
{
public:
    ~Simulator()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    bool start(const QString &folder, const QStringList &arguments)
    {
        m_link = folder + QStringLiteral("/ttySIM");
        const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
        if (program.isEmpty())
            return false;
        m_process.setProgram(program);
        m_process.setArguments(QStringList{"--link", m_link, "--exit-with-parent"} + arguments);
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(5000))
                return false;
        }
        return m_process.readLine().trimmed() == m_link.toLocal8Bit();
    }

    QString link() const { return m_link; }

private:
    QProcess m_process;
    QString m_link;
};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
           && file.write(content) == content.size();
}

// Every cell of a model as display text, one string per row.
QStringList modelRows(const QAbstractItemModel *model)
{
    QStringList rows;
    for (int row = 0; model && row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells << model->index(row, column).data().toString();
        rows << cells.join('|');
    }
    return rows;
}

const QStringList dumpLines = {
        "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6\tValue-"
        "7\tValue-8",
        "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0",
        "3\t05.04.20\t18:11:11\tET_GENERAL_RESISTANCE\t101\t112\t999\t227\t23\t204\t181\t0",
        "5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0\t0",
        "OK",
};

// Keeps the output readable: the window logs every reply line at debug level.
QtMessageHandler g_previous = nullptr;

void quietMessages(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type >= QtWarningMsg && !message.contains(QLatin1String("propagateSizeHints")))
        g_previous(type, context, message);
}

// Runs that should succeed are tried up to three times: on a busy machine a reply can miss the
// link's 50 ms answer time-out, which fails the run as a silent device would.
constexpr int attempts = 3;

} // namespace

class tst_MainWindowFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void saveAllNothingRead();
    void saveAllAfterDeviceRead();
    void fileNameExtension_data();
    void fileNameExtension();
    void cancelledDialogWritesNothing();
    void archiveFileSetsVariant_data();
    void archiveFileSetsVariant();
    void unreadableFile_data();
    void unreadableFile();
    void channelsNeedSettingsFirst();
    void pagesSavedAndLoadedBack();

private:
    template<typename T>
    T *child(const char *name) const
    {
        T *widget = m_window->findChild<T *>(QLatin1String(name));
        if (!widget)
            qWarning("no child %s", name);
        return widget;
    }
    QString popupText() const { return m_window->findChild<PopupMessage *>()->label()->text(); }
    QString dataPath(const QString &name) const { return m_dir->filePath("data/" + name); }
    QStringList dataFiles() const
    {
        return QDir(m_dir->filePath("data")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void newWindow();
    // Every file dialog answers with this name (empty: cancelled) and records its title.
    void answerDialogs(const QString &name);
    bool clickUntilSuccess(const char *button);
    bool readEverything();
    QStringList channelRows() const;
    QStringList editorLines() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Simulator> m_simulator;
    QStringList m_titles;       // titles of the dialogs asked for
    QStringList m_defaultNames; // their default names
};

void tst_MainWindowFiles::initTestCase()
{
    Application::initResources();
    qRegisterMetaType<uint32_t>("uint32_t");
    g_previous = qInstallMessageHandler(quietMessages);
}

void tst_MainWindowFiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    Application::setFolders(
            {m_dir->filePath("config"), m_dir->filePath("logs"), m_dir->filePath("data")});
    ProgramSettings::instance() = ProgramSettings();
    m_titles.clear();
    m_defaultNames.clear();
}

void tst_MainWindowFiles::cleanup()
{
    m_window.reset();
    m_simulator.reset();
    m_dir.reset();
}

void tst_MainWindowFiles::newWindow()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void tst_MainWindowFiles::answerDialogs(const QString &name)
{
    m_window->setFileNameAsker([this, name](bool, const QString &title, const QString &suggested) {
        m_titles << title;
        m_defaultNames << suggested;
        return name;
    });
}

bool tst_MainWindowFiles::clickUntilSuccess(const char *button)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        QSignalSpy done(m_window->uki(), &Uki::configReadDone);
        child<QToolButton>(button)->click();
        if (!done.wait(15000))
            return false;
        if (done.first().at(0).toBool())
            return true;
    }
    return false;
}

// Identification, settings, custom channels and corrections, then the archive of the monitor.
bool tst_MainWindowFiles::readEverything()
{
    m_simulator = std::make_unique<Simulator>();
    if (!m_simulator->start(m_dir->path(), {"--variant", "uki-kiranto", "--archive-size", "12"}))
        return false;
    QJsonObject connection{{"port", m_simulator->link()}, {"variant", "uki-kiranto"}};
    QDir().mkpath(m_dir->filePath("config"));
    if (!writeAll(m_dir->filePath("config/config.json"),
                  QJsonDocument(QJsonObject{{"connection", connection}}).toJson()))
        return false;
    newWindow();
    return clickUntilSuccess("tbConnect") && clickUntilSuccess("tbReadConfig")
           && clickUntilSuccess("tbReadArchive");
}

QStringList tst_MainWindowFiles::channelRows() const
{
    const auto *table = m_window->findChild<QTableWidget *>("tableChannels");
    QStringList rows;
    for (int row = 0; table && row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 1; column <= 4; ++column)
            cells << (table->item(row, column) ? table->item(row, column)->text() : QString());
        rows << cells.join('|');
    }
    return rows;
}

// The fields of the monitor's form that are shown.
static QStringList shownFields(const QWidget *editor)
{
    QStringList names;
    for (const QWidget *field : editor->findChildren<QWidget *>()) {
        if (!field->objectName().isEmpty() && field->isVisibleTo(editor))
            names << field->objectName();
    }
    names.sort();
    return names;
}

QStringList tst_MainWindowFiles::editorLines() const
{
    UkiSettings record;
    m_window->findChild<UkiConfigEditor *>()->settings(record);
    return record.toLines();
}

void tst_MainWindowFiles::saveAllNothingRead()
{
    newWindow();
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "saveData"));
    QCOMPARE(popupText(), QString("Нечего сохранять!"));
    QCOMPARE(dataFiles(), QStringList());
}

void tst_MainWindowFiles::saveAllAfterDeviceRead()
{
    QVERIFY(readEverything());
    auto *saveAll = child<QToolButton>("tbSaveData");
    QVERIFY(saveAll->isEnabled());
    saveAll->click();
    QCOMPARE(popupText(), QString("Успешно сохранены:\n *Настройки УКПС\n *Архив"));

    const QStringList files = dataFiles();
    QCOMPARE(files.size(), 2);
    const QRegularExpression stamp("^\\d{4}-\\d\\d-\\d\\d,\\d\\d-\\d\\d-");
    QVERIFY2(stamp.match(files.at(0)).hasMatch() && files.at(0).endsWith("-archive.csv"),
             qPrintable(files.at(0)));
    QVERIFY2(stamp.match(files.at(1)).hasMatch() && files.at(1).endsWith("-config.csv"),
             qPrintable(files.at(1)));
    const Uki *uki = m_window->uki();
    QCOMPARE(readAll(dataPath(files.at(0))), uki->dumpLines().join("\r\n").toUtf8());
    QCOMPARE(readAll(dataPath(files.at(1))),
             (uki->getCfgLines().join("\r\n") + "\r\n--------------------\r\n"
              + uki->cfgLines().join("\r\n"))
                     .toUtf8());

    // A folder in the way of the settings file stops save-all before the archive: the archive
    // file already there (for this minute and the next) keeps its bytes.
    const QString blocked = m_dir->filePath("blocked");
    QVERIFY(QDir().mkpath(blocked));
    const QDateTime now = QDateTime::currentDateTime();
    for (const QDateTime &when : {now, now.addSecs(60)}) {
        QVERIFY(QDir().mkpath(CsvFiles::saveAllFileName(blocked, when, "config")));
        QVERIFY(writeAll(CsvFiles::saveAllFileName(blocked, when, "archive"), "earlier visit"));
    }
    Application::setFolders({m_dir->filePath("config"), m_dir->filePath("logs"), blocked});
    saveAll->click();
    QVERIFY2(popupText().startsWith("Не удалось сохранить Настройки УКПС: ошибка записи в файл "
                                    + QDir::toNativeSeparators(blocked)),
             qPrintable(popupText()));
    for (const QDateTime &when : {now, now.addSecs(60)})
        QCOMPARE(readAll(CsvFiles::saveAllFileName(blocked, when, "archive")),
                 QByteArray("earlier visit"));

    // A folder that takes no new files, whoever runs the test.
    if (QFileInfo("/proc").isDir()) {
        Application::setFolders({m_dir->filePath("config"), m_dir->filePath("logs"), "/proc"});
        saveAll->click();
        QVERIFY2(popupText().startsWith(
                         "Не удалось сохранить Настройки УКПС: ошибка записи в файл /proc/"),
                 qPrintable(popupText()));
    }
    // The first files are still there, untouched.
    QCOMPARE(dataFiles(), files);
    QCOMPARE(readAll(dataPath(files.at(0))), uki->dumpLines().join("\r\n").toUtf8());
}

void tst_MainWindowFiles::fileNameExtension_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    QTest::newRow("no extension gets .csv") << "site"
                                            << "site.csv";
    QTest::newRow("capital extension kept") << "X.CSV"
                                            << "X.CSV";
    QTest::newRow("lower-case extension kept") << "site.csv"
                                               << "site.csv";
    QTest::newRow("another extension gets .csv") << "site.txt"
                                                 << "site.txt.csv";
    QTest::newRow("dot only gets csv") << "site."
                                       << "site..csv";
}

void tst_MainWindowFiles::fileNameExtension()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    newWindow();
    QDir().mkpath(m_dir->filePath("data"));
    answerDialogs(dataPath(typed));
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "saveArchiveToFile"));
    QCOMPARE(popupText(), QString("Файл записан"));
    QCOMPARE(dataFiles(), QStringList{written});
    QCOMPARE(m_titles, QStringList{"Сохранение архива событий в файл"});
    // The default name: the variant's prefix and the stamp, in the data folder.
    QVERIFY2(QRegularExpression("/data/ukps_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-archive\\.csv$")
                     .match(m_defaultNames.value(0))
                     .hasMatch(),
             qPrintable(m_defaultNames.value(0)));
}

void tst_MainWindowFiles::cancelledDialogWritesNothing()
{
    newWindow();
    answerDialogs(QString());
    const QString before = popupText();
    for (const char *slot : {"saveArchiveToFile",
                             "loadArchiveFromFile",
                             "loadConfigFromFile",
                             "loadCorrectionsFromFile"})
        QVERIFY(QMetaObject::invokeMethod(m_window.get(), slot));
    QCOMPARE(m_titles,
             (QStringList{"Сохранение архива событий в файл",
                          "Загрузка архива из файла",
                          "Загрузка конфигурации УКИ из файла",
                          "Загрузка коррекций ТТ из файла"}));
    QCOMPARE(popupText(), before);
    QCOMPARE(dataFiles(), QStringList());
}

void tst_MainWindowFiles::archiveFileSetsVariant_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("variant");
    QTest::newRow("page file of the monitor")
            << CsvFiles::archiveFile(3, dumpLines.join('\n')) << 3;
    QTest::newRow("page file of ukps-ks-2") << CsvFiles::archiveFile(2, dumpLines.join('\n')) << 2;
    QTest::newRow("bare dump without header") << dumpLines.join("\r\n").toUtf8() << 0;
}

void tst_MainWindowFiles::archiveFileSetsVariant()
{
    QFETCH(QByteArray, content);
    QFETCH(int, variant);
    ProgramSettings::instance().variant = DeviceVariant::UkpsAb;
    newWindow();
    const QString fileName = m_dir->filePath("site-archive.csv");
    QVERIFY(writeAll(fileName, content));
    answerDialogs(fileName);
    child<QToolButton>("tbLoadArchiveFromFile")->click();

    QCOMPARE(popupText(), QString("Файл прочитан"));
    QCOMPARE(ProgramSettings::instance().variant, variant);
    const auto *filter = child<QComboBox>("cbArchiveFilter");
    QStringList items;
    for (int i = 0; i < filter->count(); ++i)
        items << filter->itemText(i);
    QCOMPARE(items, ArchiveFilterProxy::filterItems(variant));
    // Only the three events: the header lines and "OK" are no events.
    QCOMPARE(child<QTableView>("tableArchive")->model()->rowCount(), 3);
    QCOMPARE(child<QLabel>("labelStatus")->text(),
             "Данные из файла " + QDir::toNativeSeparators(fileName));
    QVERIFY(child<QToolButton>("tbSaveArchiveToFile")->isEnabled());
}

void tst_MainWindowFiles::unreadableFile_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("settings") << "tbLoadConfigFromFile";
    QTest::newRow("archive") << "tbLoadArchiveFromFile";
    QTest::newRow("corrections") << "tbLoadCorrectionsFromFile";
}

void tst_MainWindowFiles::unreadableFile()
{
    QFETCH(QString, button);
    newWindow();
    const QString missing = m_dir->filePath("missing.csv");
    answerDialogs(missing);
    child<QToolButton>(button.toLatin1().constData())->click();
    QCOMPARE(popupText(), QString("Ошибка чтения файла %1.").arg(missing));
    QCOMPARE(ProgramSettings::instance().variant, ProgramSettings().variant);
}

void tst_MainWindowFiles::channelsNeedSettingsFirst()
{
    newWindow();
    answerDialogs(m_dir->filePath("custom.csv"));
    child<QToolButton>("tbLoadChannelsFromFile")->click();
    QCOMPARE(popupText(),
             QString("Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)"));
    QVERIFY(m_titles.isEmpty());
}

void tst_MainWindowFiles::pagesSavedAndLoadedBack()
{
    QVERIFY(readEverything());
    QDir().mkpath(m_dir->filePath("data"));

    // Settings, with one value changed on the form and not written to the device: the file
    // keeps what the engineer sees.
    const QStringList readLines = editorLines();
    auto *spin = m_window->findChild<UkiConfigEditor *>()->findChild<QSpinBox *>("sbRisoM3s1");
    QVERIFY(spin);
    spin->setValue(spin->value() == spin->maximum() ? spin->minimum() : spin->maximum());
    const QStringList shownLines = editorLines();
    const QStringList fields = shownFields(m_window->findChild<UkiConfigEditor *>());
    QVERIFY(shownLines != readLines);
    const QStringList locatorRows = modelRows(child<QTableView>("tableLocators")->model());
    QVERIFY(!locatorRows.isEmpty());
    answerDialogs(dataPath("settings"));
    child<QToolButton>("tbSaveConfigToFile")->click();
    QCOMPARE(popupText(), QString("Файл записан"));
    QVERIFY(QFile::exists(dataPath("settings.csv")));

    // Archive.
    const QStringList archiveRows = modelRows(child<QTableView>("tableArchive")->model());
    QVERIFY(archiveRows.size() > 3);
    answerDialogs(dataPath("archive.CSV"));
    child<QToolButton>("tbSaveArchiveToFile")->click();
    QCOMPARE(popupText(), QString("Файл записан"));

    // Corrections.
    const QStringList correctionRows = modelRows(child<QTableView>("tableCorrections")->model());
    QVERIFY(correctionRows.size() > 1);
    answerDialogs(dataPath("corrections.csv"));
    child<QToolButton>("tbSaveCorrectionsToFile")->click();
    QCOMPARE(popupText(), QString("Файл записан"));

    // Custom channels of the statistics page.
    const QStringList channels = channelRows();
    QCOMPARE(channels.size(), locatorRows.size() * 16);
    answerDialogs(dataPath("custom.csv"));
    child<QToolButton>("tbSaveChannelsToFile")->click();
    QCOMPARE(popupText(), QString("Файл записан"));
    QCOMPARE(m_titles,
             (QStringList{"Сохранение конфигурации в файл",
                          "Сохранение архива событий в файл",
                          "Сохранение коррекций ТТ в файл",
                          "Сохранение текущей конфигурации в файл"}));

    // A corrections file that differs from the device in its first row: only that row is
    // marked for writing.
    QStringList changed = QString::fromUtf8(readAll(dataPath("corrections.csv"))).split("\r\n");
    QStringList cells = changed.at(1).split('\t');
    cells[2] = QString::number(cells.at(2).toInt() + 7);
    changed[1] = cells.join('\t');
    QVERIFY(writeAll(dataPath("changed.csv"), changed.join("\r\n").toUtf8()));
    answerDialogs(dataPath("changed.csv"));
    child<QToolButton>("tbLoadCorrectionsFromFile")->click();
    QCOMPARE(popupText(), QString("Файл прочитан"));
    const QAbstractItemModel *marked = child<QTableView>("tableCorrections")->model();
    QVERIFY(marked->index(0, 2).data(Qt::FontRole).value<QFont>().bold());
    QVERIFY(!marked->index(1, 2).data(Qt::FontRole).value<QFont>().bold());

    // A fresh window with no device takes everything back.
    m_window.reset();
    m_simulator.reset();
    ProgramSettings::instance() = ProgramSettings();
    QFile::remove(m_dir->filePath("config/config.json"));
    newWindow();
    QCOMPARE(ProgramSettings::instance().variant, int(DeviceVariant::UkpsKs));

    answerDialogs(dataPath("settings.csv"));
    child<QToolButton>("tbLoadConfigFromFile")->click();
    QCOMPARE(popupText(), QString("Файл прочитан"));
    QCOMPARE(ProgramSettings::instance().variant, int(DeviceVariant::UkiKiranto));
    QVERIFY(!m_window->findChild<UkiConfigEditor *>()->isHidden());
    QCOMPARE(editorLines(), shownLines);
    // The form looks as it did after the device read.
    QCOMPARE(shownFields(m_window->findChild<UkiConfigEditor *>()), fields);
    QCOMPARE(modelRows(child<QTableView>("tableLocators")->model()), locatorRows);
    QVERIFY(!child<QWidget>("groupBox")->isHidden());
    QCOMPARE(child<QLabel>("labelStatus")->text(),
             "Данные из файла " + QDir::toNativeSeparators(dataPath("settings.csv")));
    QVERIFY(child<QToolButton>("tbSaveConfigToFile")->isEnabled());
    QVERIFY(!child<QToolButton>("tbWriteConfig")->isEnabled());
    QCOMPARE(child<QTabWidget>("ukiDataPages")->count(), 4);

    answerDialogs(dataPath("archive.CSV"));
    child<QToolButton>("tbLoadArchiveFromFile")->click();
    QCOMPARE(popupText(), QString("Файл прочитан"));
    QCOMPARE(modelRows(child<QTableView>("tableArchive")->model()), archiveRows);

    answerDialogs(dataPath("corrections.csv"));
    child<QToolButton>("tbLoadCorrectionsFromFile")->click();
    QCOMPARE(modelRows(child<QTableView>("tableCorrections")->model()), correctionRows);

    answerDialogs(dataPath("custom.csv"));
    child<QToolButton>("tbLoadChannelsFromFile")->click();
    QCOMPARE(popupText(), QString("Файл прочитан"));
    QCOMPARE(channelRows(), channels);

    // Saved again offline, the settings file is the same file.
    answerDialogs(dataPath("settings-again.csv"));
    child<QToolButton>("tbSaveConfigToFile")->click();
    QCOMPARE(readAll(dataPath("settings-again.csv")), readAll(dataPath("settings.csv")));
    // And so is the archive: the loaded file's header is not written twice.
    answerDialogs(dataPath("archive-again.csv"));
    child<QToolButton>("tbSaveArchiveToFile")->click();
    QCOMPARE(readAll(dataPath("archive-again.csv")), readAll(dataPath("archive.CSV")));
}

QTEST_MAIN(tst_MainWindowFiles)
#include "tst_mainwindowfiles.moc"
