#include "app/log.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

int foreignCalls = 0;

void foreignHandler(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++foreignCalls;
}

} // namespace

class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fileName_data();
    void fileName();
    void entryLine_data();
    void entryLine();
    void unknownTypeWritesTimeOnly();
    void fatalEntryCarriesOrigin();
    void fatalMessageAborts();
    void fatalChild();
    void messagesAreAppended();
    void midnightStartsNewFile();
    void multiLineMessageUnchanged();
    void unwritableFolderLosesMessages();
    void previousHandlerIsNotCalled();

private:
    QByteArray fileContent(const QDate &date) const;

    QTemporaryDir m_dir;
    QtMessageHandler m_testHandler = nullptr;
    QString m_folder;
    QDateTime m_now{QDate(2026, 11, 14), QTime(10, 42, 7, 215)};
};

void tst_Log::init()
{
    QVERIFY(m_dir.isValid());
    m_folder = m_dir.path();
    m_now = QDateTime(QDate(2026, 11, 14), QTime(10, 42, 7, 215));
    Log::setClock([this] { return m_now; });
    m_testHandler = qInstallMessageHandler(nullptr);
    Log::install([this] { return m_folder; });
}

void tst_Log::cleanup()
{
    qInstallMessageHandler(m_testHandler);
    Log::setClock({});
    QDir dir(m_dir.path());
    const QStringList files = dir.entryList(QDir::Files);
    for (const QString &file : files)
        dir.remove(file);
}

QByteArray tst_Log::fileContent(const QDate &date) const
{
    QFile file(QDir(m_dir.path()).filePath(Log::fileName(date)));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray("<missing>");
    return file.readAll();
}

void tst_Log::fileName_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two-digit month and day")
            << QDate(2026, 11, 14) << "KIRANTO-Link-2026-11-14.log";
    QTest::newRow("leading zeros") << QDate(2027, 1, 5) << "KIRANTO-Link-2027-01-05.log";
}

void tst_Log::fileName()
{
    QFETCH(QDate, date);
    QFETCH(QString, expected);
    QCOMPARE(Log::fileName(date), expected);
}

void tst_Log::entryLine_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("debug") << int(QtDebugMsg) << "Ставим команду в очередь: cfg"
                           << QByteArray("10:42:07:215 - [DEBUG]: Ставим команду в очередь: cfg\n");
    QTest::newRow("info") << int(QtInfoMsg) << "------- Starting log -------"
                          << QByteArray("10:42:07:215 - [INFO]: ------- Starting log -------\n");
    QTest::newRow("warning") << int(QtWarningMsg) << "port busy"
                             << QByteArray("10:42:07:215 - [WARNING]: port busy\n");
    QTest::newRow("critical")
            << int(QtCriticalMsg) << "MainWindow::saveConfig() - ошибка записи в файл config.json."
            << QByteArray("10:42:07:215 - [CRITICAL]: MainWindow::saveConfig() - ошибка записи в "
                          "файл config.json.\n");
    QTest::newRow("quotes kept as written")
            << int(QtInfoMsg) << "\"quoted\"" << QByteArray("10:42:07:215 - [INFO]: \"quoted\"\n");
}

void tst_Log::entryLine()
{
    QFETCH(int, type);
    QFETCH(QString, message);
    QFETCH(QByteArray, expected);

    switch (type) {
    case QtDebugMsg:
        qDebug().noquote() << message;
        break;
    case QtInfoMsg:
        qInfo().noquote() << message;
        break;
    case QtWarningMsg:
        qWarning().noquote() << message;
        break;
    case QtCriticalMsg:
        qCritical().noquote() << message;
        break;
    }
    QCOMPARE(fileContent(m_now.date()), expected);
}

void tst_Log::unknownTypeWritesTimeOnly()
{
    Log::messageHandler(QtMsgType(42), QMessageLogContext(), QStringLiteral("not written"));
    QCOMPARE(fileContent(m_now.date()), QByteArray("10:42:07:215 - \n"));
}

void tst_Log::fatalEntryCarriesOrigin()
{
    // The handler aborts on a fatal message, so the entry is checked on its own.
    const QMessageLogContext context("uki.cpp", 57, "void Uki::start()", "default");
    QCOMPARE(Log::entry(QtFatalMsg, context, QStringLiteral("no port"), QTime(0, 0, 0, 7)),
             QStringLiteral("00:00:00:007 - [FATAL]: no port(uki.cpp, 57, void Uki::start())"));
}

void tst_Log::fatalMessageAborts()
{
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("KIRANTO_LOG_FATAL_FOLDER"), m_folder);
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("fatalChild")});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);

    // The handler opened the day's file; the entry may or may not have reached the disk, but
    // never with a line end.
    const QByteArray content = fileContent(m_now.date());
    QVERIFY2(content.isEmpty() || content.startsWith("10:42:07:215 - [FATAL]: boom("),
             content.constData());
    QVERIFY(!content.endsWith('\n'));
}

// Runs only as the child process of fatalMessageAborts().
void tst_Log::fatalChild()
{
    const QString folder = qEnvironmentVariable("KIRANTO_LOG_FATAL_FOLDER");
    if (folder.isEmpty())
        QSKIP("runs as a child process of fatalMessageAborts");
    m_folder = folder;
    qFatal("boom");
}

void tst_Log::messagesAreAppended()
{
    QFile old(QDir(m_folder).filePath(Log::fileName(m_now.date())));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("earlier run\n");
    old.close();

    qInfo("first");
    m_now = m_now.addMSecs(5);
    qDebug("second");
    QCOMPARE(fileContent(m_now.date()),
             QByteArray("earlier run\n"
                        "10:42:07:215 - [INFO]: first\n"
                        "10:42:07:220 - [DEBUG]: second\n"));
}

void tst_Log::midnightStartsNewFile()
{
    m_now = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59, 999));
    qInfo("before midnight");
    m_now = QDateTime(QDate(2027, 1, 1), QTime(0, 0, 0, 0));
    qInfo("after midnight");

    QCOMPARE(fileContent(QDate(2026, 12, 31)),
             QByteArray("23:59:59:999 - [INFO]: before midnight\n"));
    QCOMPARE(fileContent(QDate(2027, 1, 1)), QByteArray("00:00:00:000 - [INFO]: after midnight\n"));
}

void tst_Log::multiLineMessageUnchanged()
{
    qDebug().noquote() << QStringLiteral("Addr\tver\tEnabled\tTested\r\nUKI\t9.1.2\nOK");
    QCOMPARE(fileContent(m_now.date()),
             QByteArray("10:42:07:215 - [DEBUG]: Addr\tver\tEnabled\tTested\r\nUKI\t9.1.2\nOK\n"));
}

void tst_Log::unwritableFolderLosesMessages()
{
    // A plain file where the folder should be: nothing can be created below it.
    const QString blocker = QDir(m_dir.path()).filePath(QStringLiteral("blocker"));
    QFile file(blocker);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x");
    file.close();

    m_folder = blocker + QStringLiteral("/logs");
    qInfo("lost");
    qWarning("lost too");
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("blocker")});

    m_folder = m_dir.path();
    qInfo("written again");
    QCOMPARE(fileContent(m_now.date()), QByteArray("10:42:07:215 - [INFO]: written again\n"));
}

void tst_Log::previousHandlerIsNotCalled()
{
    qInstallMessageHandler(foreignHandler);
    foreignCalls = 0;
    Log::install([this] { return m_folder; });
    QVERIFY(Log::previousHandler() == &foreignHandler);

    qInfo("to the file only");
    qWarning("to the file only");
    QCOMPARE(foreignCalls, 0);
    QCOMPARE(fileContent(m_now.date()).count('\n'), 2);
}

QTEST_GUILESS_MAIN(tst_Log)
#include "tst_log.moc"
