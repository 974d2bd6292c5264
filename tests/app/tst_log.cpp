#include "app/log.h"
#include "support.h"

#include <QtTest>

using TestSupport::readFile;

// The daily log file: the entry line of each level, appending, midnight, fatal, failures.
class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_folder = m_dir.path();
        m_now = QDateTime(QDate(2026, 11, 4), QTime(9, 42, 7, 5));
        Log::setClock([this] { return m_now; });
        m_testHandler = qInstallMessageHandler(nullptr);
        Log::install([this] { return m_folder; });
    }
    void cleanup() { qInstallMessageHandler(m_testHandler); }
    void entries_data();
    void entries();
    void midnightAndUnwritableFolder();
    void fatalEntry();

private:
    QByteArray log(const QString &date) const
    {
        return readFile(m_dir.filePath("KIRANTO-Link-" + date + ".log"));
    }

    QTemporaryDir m_dir;
    QString m_folder;
    QDateTime m_now;
    QtMessageHandler m_testHandler = nullptr;
};

void tst_Log::entries_data()
{
    QTest::addColumn<QString>("row"); // type|message|entry line
    // clang-format off
    QTest::newRow("info") << "4|------- Starting log -------|[INFO]: ------- Starting log -------";
    QTest::newRow("critical") << "2|ошибка записи в файл config.json.|[CRITICAL]: ошибка записи в файл config.json.";
    QTest::newRow("several lines unchanged") << "0|Addr\tver\r\nUKI\t9.1\nOK|[DEBUG]: Addr\tver\r\nUKI\t9.1\nOK";
    QTest::newRow("unknown type: time only") << "42|not written|";
    // clang-format on
}

// Appended after an earlier run's line, then a second message 5 ms later.
void tst_Log::entries()
{
    QFETCH(QString, row);
    const QStringList f = row.split('|');
    QVERIFY(TestSupport::writeFile(m_dir.filePath("KIRANTO-Link-2026-11-04.log"), "earlier\n"));
    Log::messageHandler(QtMsgType(f[0].toInt()), QMessageLogContext(), f[1]);
    m_now = m_now.addMSecs(5);
    qInfo("second");
    QCOMPARE(log("2026-11-04"),
             "earlier\n09:42:07:005 - " + f[2].toUtf8() + "\n09:42:07:010 - [INFO]: second\n");
}

// Messages either side of midnight go to their own days' files; an unwritable folder loses them.
void tst_Log::midnightAndUnwritableFolder()
{
    m_now = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59, 999));
    qWarning("before");
    m_now = m_now.addMSecs(1);
    qDebug("after");
    QCOMPARE(log("2026-12-31"), QByteArray("23:59:59:999 - [WARNING]: before\n"));
    QCOMPARE(log("2027-01-01"), QByteArray("00:00:00:000 - [DEBUG]: after\n"));

    QVERIFY(TestSupport::writeFile(m_dir.filePath("blocker"), "x"));
    m_folder = m_dir.filePath("blocker/logs");
    qWarning("lost");
    QVERIFY(!QFileInfo::exists(m_folder));
    m_folder = m_dir.path();
    qInfo("written again");
    QCOMPARE(log("2027-01-01"),
             QByteArray("00:00:00:000 - [DEBUG]: after\n00:00:00:000 - [INFO]: written again\n"));
}

void tst_Log::fatalEntry()
{
    const QMessageLogContext context("uki.cpp", 57, "void Uki::start()", "default");
    QCOMPARE(Log::entry(QtFatalMsg, context, QStringLiteral("no port"), QTime(0, 0, 0, 7)),
             QStringLiteral("00:00:00:007 - [FATAL]: no port(uki.cpp, 57, void Uki::start())"));
}

QTEST_GUILESS_MAIN(tst_Log)
#include "tst_log.moc"
