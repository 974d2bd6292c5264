#include "fuzztargets.h"
#include "support.h"

#include <QtTest>

#include <time.h>

using Entry = void (*)(const uint8_t *, size_t);
Q_DECLARE_METATYPE(Entry)

// Every file of the fuzz corpora (the seeds, and the inputs a fuzzer once found failing), fed
// to the same target body. A body aborts when a check fails, so passing means: no crash, all checks held.
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
}

void tst_FuzzRegressions::inputs()
{
    QFETCH(Entry, body);
    QFETCH(QByteArray, input);
    body(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
}

QTEST_GUILESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
