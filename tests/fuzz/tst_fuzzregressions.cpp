#include "fuzztargets.h"

#include <QDir>
#include <QtTest>

#include <time.h>

namespace {

using Entry = void (*)(const uint8_t *, size_t);

const QMap<QString, Entry> &entries()
{
    static const QMap<QString, Entry> map = {
            {"ukisettings", fuzzUkiSettings},
            {"ukisettingsjson", fuzzUkiSettingsJson},
            {"ukpssettings", fuzzUkpsSettings},
            {"archivedata", fuzzArchiveData},
            {"ctcorrections", fuzzCtCorrections},
            {"locators", fuzzLocators},
            {"customchannels", fuzzCustomChannels},
            {"searchstatistics", fuzzSearchStatistics},
            {"cannedreply", fuzzCannedReply},
            {"programsettings", fuzzProgramSettings},
            {"csvfiles", fuzzCsvFiles},
    };
    return map;
}

void quietMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

// Every seed of the fuzz corpora, and every input a fuzzer once found failing, fed to the same
// target body. A body aborts when a check fails, so passing means: no crash, all checks held.
class tst_FuzzRegressions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void corpus_data();
    void corpus();
    void found_data();
    void found();

private:
    QtMessageHandler m_previousHandler = nullptr;
};

void tst_FuzzRegressions::initTestCase()
{
    // The zone the fuzzers run in: local times with daylight saving in the device's years.
    qputenv("TZ", "Europe/Moscow");
    tzset();
    m_previousHandler = qInstallMessageHandler(quietMessages);
}

void tst_FuzzRegressions::cleanupTestCase()
{
    qInstallMessageHandler(m_previousHandler);
}

void tst_FuzzRegressions::corpus_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("input");

    const QDir root(QStringLiteral(KIRANTO_FUZZ_CORPUS));
    QVERIFY(root.exists());
    for (const QString &target : entries().keys()) {
        const QDir dir(root.filePath(target));
        const QStringList files = dir.entryList(QDir::Files, QDir::Name);
        QVERIFY2(!files.isEmpty(), qPrintable("no seeds for " + target));
        for (const QString &name : files) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QTest::addRow("%s/%s", qPrintable(target), qPrintable(name))
                    << target << file.readAll();
        }
    }
}

void tst_FuzzRegressions::corpus()
{
    QFETCH(QString, target);
    QFETCH(QByteArray, input);
    entries().value(target)(reinterpret_cast<const uint8_t *>(input.constData()),
                            size_t(input.size()));
}

void tst_FuzzRegressions::found_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("input");

    // A key twice in one object: Qt's parser drops the first value (and leaks it); the
    // settings must still load and save.
    QTest::newRow("config.json with a key twice")
            << "programsettings"
            << QByteArray("{\"connection\": {\"port\": \" ttyS1 \", \"variant\": \"ukps-ab\"}, "
                          "\"x\": {\"port\": \"a\"}, \"x\": [1, 2]}");
    QTest::newRow("settings object with a key twice")
            << "ukisettingsjson" << QByteArray("{\"a\":{\"b\":\"c\"},\"a\":1,\"Bright\":7}");
    // A clock time in the hour repeated when the clocks go back (Moscow, 26.10.2008) took the
    // first or the second occurrence depending on the date converted before it.
    QTest::newRow("archive time in the repeated autumn hour")
            << "archivedata"
            << QByteArray("2\t26.10.08\t02:30:00\tE\n"
                          "9\t01.01.00\t00:00:00\t\xff\n"
                          "2\t26.10.08\t02:30:00\tET_GENERAL_RESISTANCE\t\t\t\t\t\t\t\t2");
    QTest::newRow("archive search stamp in the repeated autumn hour")
            << "archivedata"
            << QByteArray("1\t01.07.08\t12:00:00\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0\n"
                          "2\t26.10.08\t02:40:00\tET_FEED_PARAM\t1\t2\t3\t4\t5\t6\t"
                          "26.10.08\t02:30:00\n"
                          "3\t01.01.09\t12:00:00\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0\n"
                          "4\t26.10.08\t02:40:00\tET_FEED_PARAM\t1\t2\t3\t4\t5\t6\t"
                          "26.10.08\t02:30:00");
    // Byte order marks at the start of a line: the loader drops one each time it reads the line.
    QTest::newRow("settings file line of two byte order marks")
            << "csvfiles" << QByteArray("\n\xef\xbb\xbf\xef\xbb\xbf");
}

void tst_FuzzRegressions::found()
{
    QFETCH(QString, target);
    QFETCH(QByteArray, input);
    entries().value(target)(reinterpret_cast<const uint8_t *>(input.constData()),
                            size_t(input.size()));
}

QTEST_GUILESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
