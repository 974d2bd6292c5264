#include "app/programsettings.h"
#include "models/archivedata.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"
#include "ui/csvfiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

// "УКИ КИРАНТО" and "УКПС КИРАНТО-КС" as UTF-8 bytes.
const QByteArray ukiNameUtf8 = QByteArray::fromHex(
        "D0A3 D09A D098 20 D09A D098 D0A0 D090 D09D D0A2 D09E");
const QByteArray ukpsKsNameUtf8 = QByteArray::fromHex(
        "D0A3 D09A D09F D0A1 20 D09A D098 D0A0 D090 D09D D0A2 D09E 2D D09A D0A1");

const QDateTime stamp(QDate(2026, 3, 7), QTime(9, 5, 41));

const QStringList dumpLines = {
        "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6\tValue-"
        "7\tValue-8",
        "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0",
        "3\t05.04.20\t18:11:11\tET_GENERAL_RESISTANCE\t101\t112\t999\t227\t23\t204\t181\t0",
        "4\t05.04.20\t17:42:46\tET_FEED_PARAM\t177\t0\t667\t5\t16\t0\t05.04.20\t17:41:50",
        "5\t05.04.20\t17:41:50\tET_SODC_PARAM\t0\t1260\t0\t0\t0\t0\t0\t0",
        "6\t06.04.20\t08:00:00\tET_EVENT_IMS_CT_"
        "FAULT\t1111000000000000\t0000000000000000\t1111000000000000\t1111000000000000",
        "OK",
};

const QStringList versionLines = {
        "Addr\tver\tEnabled\tTested\tCtA\tCtB",
        "UKI\t9.6.43\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000",
        "5\t5.1.2\t1111000000000000\t1010000000000000\t1111000000000000\t0100000000000000",
        "12\t5.1.3\t1111111111111111\t1111111111111111\t0000000011111111\t0000000000000001",
        "OK",
};

QByteArray readAll(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool writeAll(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QStringList ukiSettingsLines()
{
    UkiSettings settings;
    settings.setValue(UkiSettings::AddrUki, 5);
    settings.setValue(UkiSettings::RisoLoc, 120);
    settings.setValue(UkiSettings::Flags, 0x2012);
    settings.setValue(UkiSettings::Lang, 1);
    settings.setValue(UkiSettings::Averaging, 3);
    return settings.toLines();
}

QStringList ukpsSettingsLines()
{
    UkpsSettings settings;
    settings.setValue(UkpsSettings::TimeMto, 34);
    settings.setValue(UkpsSettings::IDischMin, -50);
    settings.setValue(UkpsSettings::FallTemp, -15);
    settings.setValue(UkpsSettings::NumShunt, 14);
    settings.setValue(UkpsSettings::FRisoN, 5);
    return settings.toLines();
}

void compareEvents(const QVector<ArchiveEvent> &actual, const QVector<ArchiveEvent> &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        QCOMPARE(actual[i].item, expected[i].item);
        QCOMPARE(actual[i].time, expected[i].time);
        QCOMPARE(actual[i].type, expected[i].type);
        QVERIFY(actual[i].values == expected[i].values);
    }
}

void compareLocators(const Locators &actual, const Locators &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        const LocatorRecord a = actual.locatorAt(i);
        const LocatorRecord e = expected.locatorAt(i);
        QCOMPARE(a.address, e.address);
        QCOMPARE(a.version, e.version);
        QCOMPARE(a.enabledMask, e.enabledMask);
        QCOMPARE(a.testedMask, e.testedMask);
        QCOMPARE(a.ctStateMaskA, e.ctStateMaskA);
        QCOMPARE(a.ctStateMaskB, e.ctStateMaskB);
        QCOMPARE(a.isMonitor, e.isMonitor);
    }
}

} // namespace

class tst_CsvFiles : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void defaultNames_data();
    void defaultNames();
    void csvExtension_data();
    void csvExtension();

    void pageFileBytes_data();
    void pageFileBytes();
    void tableFileBytes();
    void pageHeaderIgnoresInterfaceLanguage();
    void saveAllConfigBytes_data();
    void saveAllConfigBytes();

    void decodeLines_data();
    void decodeLines();
    void variantFromFile_data();
    void variantFromFile();
    void variantTakenAndLogged_data();
    void variantTakenAndLogged();
    void splitLogsIndexAndCount();

    void archiveRoundTrip_data();
    void archiveRoundTrip();
    void settingsRoundTrip_data();
    void settingsRoundTrip();
    void correctionsRoundTrip();
    void customChannelsRoundTrip();

    void saveAll_data();
    void saveAll();
    void saveAllSameMinuteOverwrites();
    void saveAllStopsBeforeArchive();
    void saveAllUnwritableFolder();

    void savePageMessages();
    void writeUnderRegularFileFails();
    void failedWriteKeepsGoodFile();
    void unreadableFile();

private:
    QTemporaryDir m_dir;
};

void tst_CsvFiles::init()
{
    QVERIFY(m_dir.isValid());
    for (const QString &name :
         QDir(m_dir.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFileInfo info(QDir(m_dir.path()).filePath(name));
        if (info.isDir())
            QDir(info.filePath()).removeRecursively();
        else
            QFile::remove(info.filePath());
    }
}

void tst_CsvFiles::cleanup()
{
    QTextCodec::setCodecForLocale(nullptr);
    ProgramSettings::instance().variant = DeviceVariant::UkpsKs;
}

void tst_CsvFiles::defaultNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    const QString dir = "/data";
    QTest::newRow("save-all settings") << CsvFiles::saveAllFileName(dir, stamp, "config")
                                       << "/data/2026-03-07,09-05-config.csv";
    QTest::newRow("save-all archive") << CsvFiles::saveAllFileName(dir, stamp, "archive")
                                      << "/data/2026-03-07,09-05-archive.csv";
    QTest::newRow("archive ukps-ks") << CsvFiles::archiveFileName(dir, stamp, DeviceVariant::UkpsKs)
                                     << "/data/ukps_2026-03-07_09-05-archive.csv";
    QTest::newRow("archive ukps-ab") << CsvFiles::archiveFileName(dir, stamp, DeviceVariant::UkpsAb)
                                     << "/data/ukb_2026-03-07_09-05-archive.csv";
    QTest::newRow("settings ukps-ks-2")
            << CsvFiles::settingsFileName(dir, stamp, DeviceVariant::UkpsKs2)
            << "/data/ukps2_2026-03-07_09-05-config.csv";
    QTest::newRow("settings uki-kiranto")
            << CsvFiles::settingsFileName(dir, stamp, DeviceVariant::UkiKiranto)
            << "/data/uki_2026-03-07_09-05-config.csv";
    QTest::newRow("settings of a variant from a strange file")
            << CsvFiles::settingsFileName(dir, stamp, 7) << "/data/_2026-03-07_09-05-config.csv";
    QTest::newRow("corrections") << CsvFiles::correctionsFileName(dir, stamp)
                                 << "/data/2026-03-07,09-05-corrections.csv";
    QTest::newRow("custom channels")
            << CsvFiles::customChannelsFileName(dir, stamp) << "/data/2026-03-07,09-05-custom.csv";
    QTest::newRow("folder with trailing slash") << CsvFiles::correctionsFileName("/data/", stamp)
                                                << "/data/2026-03-07,09-05-corrections.csv";
}

void tst_CsvFiles::defaultNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(name, expected);
}

void tst_CsvFiles::csvExtension_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no extension") << "/d/site-7"
                                  << "/d/site-7.csv";
    QTest::newRow("lower case") << "/d/site.csv"
                                << "/d/site.csv";
    QTest::newRow("capitals kept") << "/d/SITE.CSV"
                                   << "/d/SITE.CSV";
    QTest::newRow("mixed case kept") << "/d/site.Csv"
                                     << "/d/site.Csv";
    QTest::newRow("other extension") << "/d/site.txt"
                                     << "/d/site.txt.csv";
    QTest::newRow("csv not at the end") << "/d/site.csv.bak"
                                        << "/d/site.csv.bak.csv";
    QTest::newRow("csv without dot") << "/d/sitecsv"
                                     << "/d/sitecsv.csv";
}

void tst_CsvFiles::csvExtension()
{
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    QCOMPARE(CsvFiles::withCsvExtension(typed), expected);
}

void tst_CsvFiles::pageFileBytes_data()
{
    QTest::addColumn<QByteArray>("localCodec");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray ukiHeader = "3\r\n-----\r\n" + ukiNameUtf8 + "\r\n--------------\r\n";
    const QByteArray ukpsHeader = "0\r\n-----\r\n" + ukpsKsNameUtf8 + "\r\n--------------\r\n";

    // The archive text "1\tабв\n2\tЁ" in the local encoding.
    QTest::newRow("archive, local CP1251")
            << QByteArray("CP1251") << "archive" << 3
            << ukiHeader + QByteArray::fromHex("31 09 E0 E1 E2 0D 0A 32 09 A8");
    QTest::newRow("archive, local UTF-8")
            << QByteArray("UTF-8") << "archive" << 3
            << ukiHeader + QByteArray::fromHex("31 09 D0B0 D0B1 D0B2 0D 0A 32 09 D081");
    QTest::newRow("archive, UKPS header")
            << QByteArray("UTF-8") << "archive" << 0
            << ukpsHeader + QByteArray::fromHex("31 09 D0B0 D0B1 D0B2 0D 0A 32 09 D081");

    // Settings are UTF-8 whatever the locale.
    QTest::newRow("settings uki-kiranto with versions list")
            << QByteArray("CP1251") << "settings" << 3
            << ukiHeader
                       + "AddrUki\t0\r\nNumUki\t1\r\n--------------------\r\nUKI\t9.6.43\r\n5\t5.1";
    QTest::newRow("settings ukps-ks-2 with versions list")
            << QByteArray("UTF-8") << "settings" << 2
            << "2\r\n-----\r\n" + DeviceVariant::displayName(2).toUtf8()
                       + "\r\n--------------\r\nAddrUki\t0\r\nNumUki\t1\r\n--------------------\r\n"
                         "UKI\t9.6.43\r\n5\t5.1";
    QTest::newRow("settings ukps-ks: no versions list")
            << QByteArray("UTF-8") << "settings" << 0 << ukpsHeader + "AddrUki\t0\r\nNumUki\t1";
    QTest::newRow("settings uki-kiranto, versions list empty")
            << QByteArray("UTF-8") << "settings-no-versions" << 3
            << ukiHeader + "AddrUki\t0\r\nNumUki\t1";
}

void tst_CsvFiles::pageFileBytes()
{
    QFETCH(QByteArray, localCodec);
    QFETCH(QString, kind);
    QFETCH(int, variant);
    QFETCH(QByteArray, expected);

    QTextCodec *codec = QTextCodec::codecForName(localCodec);
    QVERIFY(codec);
    QTextCodec::setCodecForLocale(codec);

    const QStringList settings = {"AddrUki\t0", "NumUki\t1"};
    QByteArray bytes;
    if (kind == "archive")
        bytes = CsvFiles::archiveFile(variant, QString::fromUtf8("1\tабв\n2\tЁ"));
    else if (kind == "settings")
        bytes = CsvFiles::settingsFile(variant, settings, {"UKI\t9.6.43", "5\t5.1"});
    else
        bytes = CsvFiles::settingsFile(variant, settings, {});
    QCOMPARE(bytes, expected);
}

void tst_CsvFiles::tableFileBytes()
{
    const CtCorrections corrections(
            {"address\tchannel\tgain*100\t phase*10", "1\t3\t100\t-25", "7\t16\t99900\t3600"});
    QCOMPARE(CsvFiles::correctionsFile(corrections),
             QByteArray("address\tchannel\tgain*100\t "
                        "phase*10\r\n1\t3\t100\t-25\r\n7\t16\t99900\t3600"));

    const CustomChannels channels(
            {"address\tchannel\tr_loc\tlower\tupper", "0\t1\tOFF", "5\t2\t200\t12\t47"});
    QCOMPARE(CsvFiles::customChannelsFile(channels),
             QByteArray("address\tchannel\tr_loc\tlower\tupper\r\n0\t1\tOFF\r\n5\t2\t200\t10\t45"));
}

void tst_CsvFiles::saveAllConfigBytes_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("versions");
    QTest::addColumn<QByteArray>("expected");

    const QStringList versions = {"UKI\t9.6.43", "OK"};
    QTest::newRow("ukps-ks ignores versions") << 0 << versions << QByteArray("A\t1\r\nB\t2");
    QTest::newRow("ukps-ab ignores versions") << 1 << versions << QByteArray("A\t1\r\nB\t2");
    QTest::newRow("ukps-ks-2 appends versions")
            << 2 << versions
            << QByteArray("A\t1\r\nB\t2\r\n--------------------\r\nUKI\t9.6.43\r\nOK");
    QTest::newRow("uki-kiranto appends versions")
            << 3 << versions
            << QByteArray("A\t1\r\nB\t2\r\n--------------------\r\nUKI\t9.6.43\r\nOK");
    QTest::newRow("uki-kiranto without versions")
            << 3 << QStringList() << QByteArray("A\t1\r\nB\t2");
}

void tst_CsvFiles::saveAllConfigBytes()
{
    QFETCH(int, variant);
    QFETCH(QStringList, versions);
    QFETCH(QByteArray, expected);
    QCOMPARE(CsvFiles::saveAllConfig(variant, {"A\t1", "B\t2"}, versions), expected);
    QCOMPARE(CsvFiles::saveAllArchive({"Item\tDate", "1\t2"}), QByteArray("Item\tDate\r\n1\t2"));
}

void tst_CsvFiles::decodeLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("archive");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("empty file") << QByteArray() << false << QStringList();
    QTest::newRow("CR LF") << QByteArray("a\r\nb") << false << QStringList{"a", "b"};
    QTest::newRow("bare LF") << QByteArray("a\nb") << false << QStringList{"a", "b"};
    QTest::newRow("final line end") << QByteArray("a\r\nb\r\n") << false << QStringList{"a", "b"};
    QTest::newRow("empty lines kept")
            << QByteArray("a\r\n\r\nb") << false << QStringList{"a", "", "b"};
    QTest::newRow("byte order mark dropped") << QByteArray("\xEF\xBB\xBF"
                                                           "3\r\nx")
                                             << false << QStringList{"3", "x"};
    QTest::newRow("settings are UTF-8")
            << QByteArray::fromHex("D0B0 0D0A E0") << false
            << QStringList{QString::fromUtf8("а"), QString(QChar::ReplacementCharacter)};
    QTest::newRow("archive body in the local encoding")
            << "3\r\n-----\r\n" + ukiNameUtf8 + "\r\n--------------\r\n"
                       + QByteArray::fromHex("E0 E1")
            << true
            << QStringList{"3",
                           "-----",
                           QString::fromUtf8("УКИ КИРАНТО"),
                           "--------------",
                           QString::fromUtf8("аб")};
    QTest::newRow("archive without header is UTF-8")
            << QByteArray::fromHex("D0B0 0D0A D0B1") << true
            << QStringList{QString::fromUtf8("а"), QString::fromUtf8("б")};
}

void tst_CsvFiles::decodeLines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, archive);
    QFETCH(QStringList, expected);

    QTextCodec::setCodecForLocale(QTextCodec::codecForName("CP1251"));
    QCOMPARE(CsvFiles::decodeLines(bytes,
                                   archive ? CsvFiles::Kind::Archive : CsvFiles::Kind::Settings),
             expected);
}

void tst_CsvFiles::variantFromFile_data()
{
    QTest::addColumn<QString>("firstLine");
    QTest::addColumn<int>("variant");

    QTest::newRow("insulation monitor") << "3" << 3;
    QTest::newRow("ukps-ks-2") << "2" << 2;
    QTest::newRow("blanks around") << "  1   " << 1;
    QTest::newRow("words after the number") << "3 УКИ" << 3;
    QTest::newRow("no range check") << "17" << 17;
    QTest::newRow("negative") << "-1" << -1;
    QTest::newRow("bare dump header") << "Item\tDate\tTime\tType\tValue-1" << 0;
    QTest::newRow("bare dump line") << "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON" << 0;
    QTest::newRow("settings line") << "AddrUki\t0" << 0;
    QTest::newRow("not decimal") << "0x3" << 0;
    QTest::newRow("empty") << "" << 0;
}

void tst_CsvFiles::variantFromFile()
{
    QFETCH(QString, firstLine);
    QFETCH(int, variant);
    QCOMPARE(CsvFiles::variantFromFile(firstLine), variant);
}

void tst_CsvFiles::variantTakenAndLogged_data()
{
    QTest::addColumn<bool>("archive");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("variant");

    QTest::newRow("archive file of a UKI")
            << true << QStringList{"3", "-----", "УКИ КИРАНТО", "--------------", "x"} << 3;
    QTest::newRow("bare dump switches to ukps-ks") << true << dumpLines << 0;
    QTest::newRow("settings file of a ukps-ab")
            << false << QStringList{"1", "-----", "УКБ КИРАНТО-АБ", "--------------"} << 1;
    QTest::newRow("empty file") << false << QStringList() << 0;
}

void tst_CsvFiles::variantTakenAndLogged()
{
    QFETCH(bool, archive);
    QFETCH(QStringList, lines);
    QFETCH(int, variant);

    ProgramSettings::instance().variant = variant == 3 ? 1 : 3;
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Variant : " + lines.value(0)));
    QTest::ignoreMessage(QtDebugMsg,
                         qPrintable(QString(archive ? "Archive.kirantoVariant : %1"
                                                    : "config.kirantoVariant : %1")
                                            .arg(variant)));
    QCOMPARE(CsvFiles::takeVariantFromFile(
                     lines, archive ? CsvFiles::Kind::Archive : CsvFiles::Kind::Settings),
             variant);
    QCOMPARE(ProgramSettings::instance().variant, variant);
}

void tst_CsvFiles::splitLogsIndexAndCount()
{
    QTest::ignoreMessage(QtDebugMsg, "index : 6");
    QTest::ignoreMessage(QtDebugMsg, "versionLines : 2");
    CsvSettingsFile file = CsvFiles::splitSettingsFile({"3",
                                                        "-----",
                                                        "УКИ КИРАНТО",
                                                        "--------------",
                                                        "AddrUki\t1",
                                                        "NumUki\t2",
                                                        "--------------------",
                                                        "UKI\t9.6.43",
                                                        "OK"});
    QCOMPARE(file.separatorIndex, 6);
    QCOMPARE(file.settingsLines, QStringList({"AddrUki\t1", "NumUki\t2"}));
    QCOMPARE(file.versionLines, QStringList({"UKI\t9.6.43", "OK"}));

    // A save-all settings file has no header and may have no versions list.
    QTest::ignoreMessage(QtDebugMsg, "index : -1");
    QTest::ignoreMessage(QtDebugMsg, "versionLines : 0");
    file = CsvFiles::splitSettingsFile({"AddrUki\t1", "NumUki\t2"});
    QCOMPARE(file.separatorIndex, -1);
    QCOMPARE(file.settingsLines, QStringList({"AddrUki\t1", "NumUki\t2"}));
    QVERIFY(file.versionLines.isEmpty());
}

void tst_CsvFiles::archiveRoundTrip_data()
{
    QTest::addColumn<QByteArray>("localCodec");
    QTest::addColumn<int>("variant");
    QTest::addColumn<bool>("saveAll");

    QTest::newRow("page file, CP1251, uki-kiranto") << QByteArray("CP1251") << 3 << false;
    QTest::newRow("page file, UTF-8, ukps-ab") << QByteArray("UTF-8") << 1 << false;
    QTest::newRow("page file, KOI8-R, ukps-ks-2") << QByteArray("KOI8-R") << 2 << false;
    QTest::newRow("save-all file, CP1251") << QByteArray("CP1251") << 0 << true;
}

void tst_CsvFiles::archiveRoundTrip()
{
    QFETCH(QByteArray, localCodec);
    QFETCH(int, variant);
    QFETCH(bool, saveAll);

    QTextCodec *codec = QTextCodec::codecForName(localCodec);
    QVERIFY(codec);
    QTextCodec::setCodecForLocale(codec);

    // A line of Cyrillic text is not an event, but must come back as it went.
    QStringList lines = dumpLines;
    lines.insert(2, QString::fromUtf8("примечание: Ёмкость"));
    const QString fileName = m_dir.filePath("archive.csv");
    const QByteArray bytes = saveAll ? CsvFiles::saveAllArchive(lines)
                                     : CsvFiles::archiveFile(variant, lines.join('\n'));
    QVERIFY(CsvFiles::writeFile(fileName, bytes));

    QStringList loaded;
    QVERIFY(CsvFiles::readLines(fileName, CsvFiles::Kind::Archive, loaded));
    if (saveAll) {
        QCOMPARE(loaded, lines);
    } else {
        QVERIFY(CsvFiles::hasPageHeader(loaded));
        QCOMPARE(CsvFiles::variantFromFile(loaded.first()), variant);
        QCOMPARE(loaded.at(2), DeviceVariant::displayName(variant));
        QCOMPARE(loaded.mid(4), lines);
    }

    // All lines go to the table; the header lines are refused by the archive parser.
    const ArchiveData original(dumpLines);
    const ArchiveData reloaded(loaded);
    QCOMPARE(original.rowCount(), 5);
    compareEvents(reloaded.events(), original.events());
}

void tst_CsvFiles::settingsRoundTrip_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<bool>("saveAll");
    QTest::addColumn<QStringList>("versions");
    QTest::addColumn<int>("expectedLocators");

    QTest::newRow("page file uki-kiranto") << 3 << false << versionLines << 3;
    QTest::newRow("page file uki-kiranto, no versions") << 3 << false << QStringList() << 0;
    QTest::newRow("page file ukps-ks-2") << 2 << false << versionLines << 3;
    QTest::newRow("page file ukps-ks") << 0 << false << versionLines << 0;
    QTest::newRow("page file ukps-ab") << 1 << false << QStringList() << 0;
    QTest::newRow("save-all uki-kiranto") << 3 << true << versionLines << 3;
    QTest::newRow("save-all ukps-ks") << 0 << true << versionLines << 0;
}

void tst_CsvFiles::settingsRoundTrip()
{
    QFETCH(int, variant);
    QFETCH(bool, saveAll);
    QFETCH(QStringList, versions);
    QFETCH(int, expectedLocators);

    const bool uki = variant == DeviceVariant::UkiKiranto;
    // The engine's block ends with the device's closing line; it travels with the lines.
    QStringList settingsLines = uki ? ukiSettingsLines() : ukpsSettingsLines();
    settingsLines << "OK";

    const QString fileName = m_dir.filePath("config.csv");
    const QByteArray bytes = saveAll ? CsvFiles::saveAllConfig(variant, settingsLines, versions)
                                     : CsvFiles::settingsFile(variant, settingsLines, versions);
    QVERIFY(CsvFiles::writeFile(fileName, bytes));

    QStringList loaded;
    QVERIFY(CsvFiles::readLines(fileName, CsvFiles::Kind::Settings, loaded));
    QCOMPARE(CsvFiles::hasPageHeader(loaded), !saveAll);
    const CsvSettingsFile file = CsvFiles::splitSettingsFile(loaded);
    QCOMPARE(file.settingsLines, settingsLines);
    QCOMPARE(file.versionLines, expectedLocators ? versions : QStringList());

    if (uki) {
        UkiSettings expected;
        expected.fromLines(settingsLines);
        QVERIFY(expected != UkiSettings());
        UkiSettings actual;
        actual.fromLines(file.settingsLines);
        QVERIFY(actual == expected);
    } else {
        UkpsSettings expected;
        expected.fromLines(settingsLines);
        QVERIFY(expected != UkpsSettings());
        UkpsSettings actual;
        actual.fromLines(file.settingsLines);
        QVERIFY(actual == expected);
    }

    const Locators reloaded(file.versionLines);
    QCOMPARE(reloaded.size(), expectedLocators);
    if (expectedLocators)
        compareLocators(reloaded, Locators(versions));
}

void tst_CsvFiles::correctionsRoundTrip()
{
    const CtCorrections original({"address\tchannel\tgain*100\t phase*10",
                                  "1\t3\t100\t-25",
                                  "1\t4\t115\t0",
                                  "254\t16\t99900\t-3600",
                                  "0\t1\t1\t7"});
    QCOMPARE(original.rowCount(), 4);
    const QString fileName = m_dir.filePath("corr.csv");
    QVERIFY(CsvFiles::writeFile(fileName, CsvFiles::correctionsFile(original)));

    QStringList loaded;
    QVERIFY(CsvFiles::readLines(fileName, CsvFiles::Kind::Table, loaded));
    const CtCorrections reloaded(loaded);
    QCOMPARE(reloaded.rowCount(), original.rowCount());
    for (int row = 0; row < original.rowCount(); ++row) {
        const CtCorrection a = reloaded.rowAt(row);
        const CtCorrection e = original.rowAt(row);
        QCOMPARE(a.address, e.address);
        QCOMPARE(a.channel, e.channel);
        QCOMPARE(a.gain, e.gain);
        QCOMPARE(a.phase, e.phase);
        QVERIFY(!reloaded.isModified(row));
    }
}

void tst_CsvFiles::customChannelsRoundTrip()
{
    const CustomChannels original({"address\tchannel\tr_loc\tlower\tupper",
                                   "0\t1\tOFF",
                                   "5\t2\t200\t12\t47",
                                   "254\t16\t999\t79\t0"});
    QCOMPARE(original.rowCount(), 3);
    const QString fileName = m_dir.filePath("custom.csv");
    QVERIFY(CsvFiles::writeFile(fileName, CsvFiles::customChannelsFile(original)));

    QStringList loaded;
    QVERIFY(CsvFiles::readLines(fileName, CsvFiles::Kind::Table, loaded));
    const CustomChannels reloaded(loaded);
    QCOMPARE(reloaded.rowCount(), original.rowCount());
    const QList<QPair<quint32, quint32>> keys = {{0, 0}, {5, 1}, {254, 15}};
    for (const auto &key : keys) {
        CustomChannel a;
        CustomChannel e;
        QVERIFY(reloaded.findChannel(key.first, key.second, a));
        QVERIFY(original.findChannel(key.first, key.second, e));
        QCOMPARE(a.rLoc, e.rLoc);
        QCOMPARE(a.lower, e.lower);
        QCOMPARE(a.upper, e.upper);
        QCOMPARE(a.enabled, e.enabled);
    }
}

void tst_CsvFiles::saveAll_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("archive");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("files");

    const QString config = "2026-03-07,09-05-config.csv";
    const QString archive = "2026-03-07,09-05-archive.csv";
    const QStringList settings = {"AddrUki\t0", "OK"};

    QTest::newRow("nothing read") << 3 << QStringList() << QStringList()
                                  << "[[WARN]]Нечего сохранять!" << QStringList();
    QTest::newRow("settings and archive")
            << 0 << settings << dumpLines << "[[OK]]Успешно сохранены:\n *Настройки УКПС\n *Архив"
            << QStringList{archive, config};
    QTest::newRow("uki-kiranto still titled УКПС")
            << 3 << settings << QStringList() << "[[OK]]Успешно сохранены:\n *Настройки УКПС"
            << QStringList{config};
    QTest::newRow("archive only") << 1 << QStringList() << dumpLines
                                  << "[[OK]]Успешно сохранены:\n *Архив" << QStringList{archive};
}

void tst_CsvFiles::saveAll()
{
    QFETCH(int, variant);
    QFETCH(QStringList, settings);
    QFETCH(QStringList, archive);
    QFETCH(QString, message);
    QFETCH(QStringList, files);

    const CsvMessage result = CsvFiles::saveAll(
            m_dir.path(), stamp, variant, settings, archive, versionLines);
    QCOMPARE(result.text, message);
    QCOMPARE(result.milliseconds, 3000);
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name), files);

    if (!settings.isEmpty()) {
        QCOMPARE(readAll(CsvFiles::saveAllFileName(m_dir.path(), stamp, "config")),
                 CsvFiles::saveAllConfig(variant, settings, versionLines));
    }
    if (!archive.isEmpty()) {
        QCOMPARE(readAll(CsvFiles::saveAllFileName(m_dir.path(), stamp, "archive")),
                 QByteArray(archive.join("\r\n").toUtf8()));
    }
}

void tst_CsvFiles::saveAllSameMinuteOverwrites()
{
    const QDateTime first(QDate(2026, 3, 7), QTime(10, 15, 2));
    const QDateTime second(QDate(2026, 3, 7), QTime(10, 15, 58));

    CsvFiles::saveAll(m_dir.path(),
                      first,
                      3,
                      {"AddrUki\t1", "NumUki\t2", "RisoLoc\t80"},
                      dumpLines,
                      versionLines);
    const CsvMessage result = CsvFiles::saveAll(
            m_dir.path(), second, 3, {"AddrUki\t4"}, dumpLines.mid(0, 2), {});
    QCOMPARE(result.text, QString("[[OK]]Успешно сохранены:\n *Настройки УКПС\n *Архив"));
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
             QStringList({"2026-03-07,10-15-archive.csv", "2026-03-07,10-15-config.csv"}));
    QCOMPARE(readAll(m_dir.filePath("2026-03-07,10-15-config.csv")), QByteArray("AddrUki\t4"));
    QCOMPARE(readAll(m_dir.filePath("2026-03-07,10-15-archive.csv")),
             QByteArray(dumpLines.mid(0, 2).join("\r\n").toUtf8()));
}

void tst_CsvFiles::saveAllStopsBeforeArchive()
{
    // A folder in the way of the settings file makes its write fail, also for root.
    const QString blocked = CsvFiles::saveAllFileName(m_dir.path(), stamp, "config");
    QVERIFY(QDir().mkdir(blocked));

    const CsvMessage result = CsvFiles::saveAll(
            m_dir.path(), stamp, 0, {"AddrUki\t0"}, dumpLines, {});
    QCOMPARE(result.text,
             QString("[[ERR]]Не удалось сохранить Настройки УКПС: ошибка записи в файл %1.")
                     .arg(QDir::toNativeSeparators(blocked)));
    QCOMPARE(result.milliseconds, 3000);
    QVERIFY(!QFile::exists(CsvFiles::saveAllFileName(m_dir.path(), stamp, "archive")));
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());

    // An empty block never touches its file, so it cannot fail.
    QCOMPARE(CsvFiles::saveAll(m_dir.path(), stamp, 0, {}, {}, {}).text,
             QString("[[WARN]]Нечего сохранять!"));
    // The archive's failure names the archive.
    QVERIFY(QDir().mkdir(CsvFiles::saveAllFileName(m_dir.path(), stamp, "archive")));
    QCOMPARE(CsvFiles::saveAll(m_dir.path(), stamp, 0, {}, dumpLines, {}).text,
             QString("[[ERR]]Не удалось сохранить Архив: ошибка записи в файл %1.")
                     .arg(QDir::toNativeSeparators(
                             CsvFiles::saveAllFileName(m_dir.path(), stamp, "archive"))));
}

void tst_CsvFiles::saveAllUnwritableFolder()
{
    const QString missingText
            = "[[ERR]]Не удалось сохранить данные: не найдена папка для сохранения.";
    QCOMPARE(CsvFiles::saveAll(m_dir.filePath("gone"), stamp, 0, {"A\t1"}, dumpLines, {}).text,
             missingText);
    QCOMPARE(CsvFiles::saveAll(QString(), stamp, 0, {"A\t1"}, dumpLines, {}).text, missingText);

    // A path below a regular file is no folder.
    const QString regular = m_dir.filePath("plain");
    QVERIFY(writeAll(regular, "x"));
    QCOMPARE(CsvFiles::saveAll(regular + "/data", stamp, 0, {"A\t1"}, dumpLines, {}).text,
             missingText);
    QCOMPARE(CsvFiles::saveAll(regular, stamp, 0, {"A\t1"}, dumpLines, {}).text, missingText);

    // A folder that exists but takes no new files, whoever runs the test.
    if (!QFileInfo("/proc").isDir())
        QSKIP("no /proc here");
    const CsvMessage result = CsvFiles::saveAll("/proc", stamp, 0, {"A\t1"}, dumpLines, {});
    QCOMPARE(result.text,
             QString("[[ERR]]Не удалось сохранить Настройки УКПС: ошибка записи в файл "
                     "/proc/2026-03-07,09-05-config.csv."));
}

void tst_CsvFiles::savePageMessages()
{
    const QString fileName = m_dir.filePath("page.csv");
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Данные записаны в файл : " + fileName));
    CsvMessage result = CsvFiles::savePage(fileName, "3\r\n-----");
    QCOMPARE(result.text, QString("[[OK]]Файл записан"));
    QCOMPARE(result.milliseconds, 3000);
    QCOMPARE(readAll(fileName), QByteArray("3\r\n-----"));

    const QString bad = fileName + "/below.csv";
    result = CsvFiles::savePage(bad, "x");
    QCOMPARE(result.text, QString("[[ERR]]Ошибка записи в файл %1.").arg(bad));
}

void tst_CsvFiles::writeUnderRegularFileFails()
{
    const QString regular = m_dir.filePath("plain");
    QVERIFY(writeAll(regular, "good"));
    QString reason;
    QVERIFY(!CsvFiles::writeFile(regular + "/x.csv", "new", &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(readAll(regular), QByteArray("good"));
}

void tst_CsvFiles::failedWriteKeepsGoodFile()
{
#ifdef Q_OS_UNIX
    // A file-size limit makes the save fail half-way, like a full disk, even for root.
    const QString fileName = m_dir.filePath("site.csv");
    const QByteArray good = CsvFiles::saveAllArchive(dumpLines);
    QVERIFY(CsvFiles::writeFile(fileName, good));

    rlimit saved{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 64 * 1024;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);

    QString reason;
    const bool written = CsvFiles::writeFile(fileName, QByteArray(1024 * 1024, 'x'), &reason);
    const CsvMessage message = CsvFiles::savePage(fileName, QByteArray(1024 * 1024, 'y'));

    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    QVERIFY(!written);
    QVERIFY(!reason.isEmpty());
    QCOMPARE(message.text, QString("[[ERR]]Ошибка записи в файл %1.").arg(fileName));
    QCOMPARE(readAll(fileName), good);
    // No temporary file is left beside it.
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"site.csv"}));
#else
    QSKIP("needs a file-size limit");
#endif
}

void tst_CsvFiles::unreadableFile()
{
    const QString fileName = m_dir.filePath("missing.csv");
    QStringList lines{"keep"};
    QString reason;
    QVERIFY(!CsvFiles::readLines(fileName, CsvFiles::Kind::Archive, lines, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(lines, QStringList({"keep"}));

    const CsvMessage failed = CsvFiles::readFailedMessage(fileName);
    QCOMPARE(failed.text, QString("[[ERR]]Ошибка чтения файла %1.").arg(fileName));
    QCOMPARE(failed.milliseconds, 3000);
    QCOMPARE(CsvFiles::readOkMessage().text, QString("[[OK]]Файл прочитан"));
    QCOMPARE(
            CsvFiles::settingsFileFirstMessage().text,
            QString("[[ERR]]Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)"));
}

// Translates every text, as a non-Russian interface does.
class EverythingTranslated : public QTranslator
{
public:
    QString translate(const char *, const char *, const char *, int) const override
    {
        return QStringLiteral("translated");
    }
    bool isEmpty() const override { return false; }
};

void tst_CsvFiles::pageHeaderIgnoresInterfaceLanguage()
{
    EverythingTranslated translator;
    QCoreApplication::installTranslator(&translator);
    const QByteArray header = CsvFiles::pageHeader(3);
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(header,
             QByteArray("3\r\n-----\r\n") + QString("УКИ КИРАНТО").toUtf8()
                     + QByteArray("\r\n--------------\r\n"));
}

QTEST_GUILESS_MAIN(tst_CsvFiles)
#include "tst_csvfiles.moc"
