#include "fuzztargets.h"
#include "support.h"

#include <QtTest>

#include <time.h>

using Entry = void (*)(const uint8_t *, size_t);
Q_DECLARE_METATYPE(Entry)

// Every seed of the fuzz corpora, and every input a fuzzer once found failing, fed to the same
// target body. A body aborts when a check fails, so passing means: no crash, all checks held.
class tst_FuzzRegressions : public QObject
{
    Q_OBJECT
private slots:
    void inputs_data();
    void inputs();
};

void tst_FuzzRegressions::inputs_data()
{
    // The zone the fuzzers run in: local times with daylight saving in the device's years.
    qputenv("TZ", "Europe/Moscow");
    tzset();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QTest::addColumn<Entry>("body");
    QTest::addColumn<QByteArray>("input");
    const QMap<QString, Entry> bodies = {{"ukisettings", fuzzUkiSettings},
                                         {"ukisettingsjson", fuzzUkiSettingsJson},
                                         {"ukpssettings", fuzzUkpsSettings},
                                         {"archivedata", fuzzArchiveData},
                                         {"ctcorrections", fuzzCtCorrections},
                                         {"locators", fuzzLocators},
                                         {"customchannels", fuzzCustomChannels},
                                         {"searchstatistics", fuzzSearchStatistics},
                                         {"cannedreply", fuzzCannedReply},
                                         {"programsettings", fuzzProgramSettings},
                                         {"csvfiles", fuzzCsvFiles}};
    const QDir root(TestSupport::sourceDir() + "/fuzz/corpus");
    for (auto it = bodies.cbegin(); it != bodies.cend(); ++it) {
        const QDir dir(root.filePath(it.key()));
        const QStringList files = dir.entryList(QDir::Files, QDir::Name);
        QVERIFY2(!files.isEmpty(), qPrintable("no seeds for " + it.key()));
        for (const QString &name : files)
            QTest::addRow("%s/%s", qPrintable(it.key()), qPrintable(name))
                    << it.value() << TestSupport::readFile(dir.filePath(name));
    }
    // A key twice in one object: Qt's parser drops the first value; settings still load and save.
    QTest::newRow("config.json with a key twice")
            << Entry(fuzzProgramSettings)
            << QByteArray("{\"connection\": {\"port\": \" ttyS1 \", \"variant\": \"ukps-ab\"}, "
                          "\"x\": {\"port\": \"a\"}, \"x\": [1, 2]}");
    QTest::newRow("settings object with a key twice")
            << Entry(fuzzUkiSettingsJson)
            << QByteArray("{\"a\":{\"b\":\"c\"},\"a\":1,\"Bright\":7}");
    // A clock time in the hour repeated when the clocks go back (Moscow, 26.10.2008) took the
    // first or the second occurrence depending on the date converted before it.
    QTest::newRow("archive time in the repeated autumn hour")
            << Entry(fuzzArchiveData)
            << QByteArray("2\t26.10.08\t02:30:00\tE\n"
                          "9\t01.01.00\t00:00:00\t\xff\n"
                          "2\t26.10.08\t02:30:00\tET_GENERAL_RESISTANCE\t\t\t\t\t\t\t\t2");
    QTest::newRow("archive search stamp in the repeated autumn hour")
            << Entry(fuzzArchiveData)
            << QByteArray("1\t01.07.08\t12:00:00\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0\n"
                          "2\t26.10.08\t02:40:00\tET_FEED_PARAM\t1\t2\t3\t4\t5\t6\t"
                          "26.10.08\t02:30:00\n"
                          "3\t01.01.09\t12:00:00\tET_SODC_PARAM\t0\t0\t0\t0\t0\t0\t0\t0\n"
                          "4\t26.10.08\t02:40:00\tET_FEED_PARAM\t1\t2\t3\t4\t5\t6\t"
                          "26.10.08\t02:30:00");
    // Byte order marks at the start of a line: the loader drops one each time it reads the line.
    QTest::newRow("settings file line of two byte order marks")
            << Entry(fuzzCsvFiles) << QByteArray("\n\xef\xbb\xbf\xef\xbb\xbf");
}

void tst_FuzzRegressions::inputs()
{
    QFETCH(Entry, body);
    QFETCH(QByteArray, input);
    body(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
}

QTEST_GUILESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
