#include "files/csvfiles.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "support.h"

#include <QtTest>

namespace {

using F = CsvFiles;
const QDateTime stamp(QDate(2026, 3, 7), QTime(9, 5, 41));
const QByteArray ukps = "0\r\n-----\r\nУКПС КИРАНТО-КС\r\n--------------\r\n";
const QByteArray ukps2 = "2\r\n-----\r\nУКПС КИРАНТО-КС-2\r\n--------------\r\n";
const QByteArray uki = "3\r\n-----\r\nУКИ КИРАНТО\r\n--------------\r\n";
const QStringList dump = {"Item\tDate\tTime\tType\tValue-1",
                          "1\t05.04.20\t21:38:00\tET_EVENT_IMS_POW_ON\t6\t9\t6\t35\t0\t0\t0\t0",
                          "примечание: Ёмкость"};
const QStringList settings = {"AddrUki\t5", "OK"};
const QStringList versions = {"UKI\t9.6.43", "OK"};
const QStringList corrections = {"address\tchannel\tgain*100\t phase*10", "1\t3\t100\t-25"};
const QStringList custom = {"address\tchannel\tr_loc\tlower\tupper", "5\t2\t200\t12\t47"};

} // namespace

class tst_CsvFiles : public QObject
{
    Q_OBJECT
private slots:
    void namesAndMessages();
    void fileBytes_data();
    void fileBytes();
    void loadedFile_data();
    void loadedFile();
    void saveAll_data();
    void saveAll();
};

void tst_CsvFiles::namesAndMessages()
{
    QStringList names{F::saveAllFileName("/d", stamp, "config"),
                      F::correctionsFileName("/d", stamp),
                      F::customChannelsFileName("/d", stamp)};
    for (int variant : {0, 1, 2, 3})
        names << F::archiveFileName("/d", stamp, variant).remove("2026-03-07_09-05")
              << F::settingsFileName("/d", stamp, variant).remove("2026-03-07_09-05");
    for (const char *typed : {"/d/a", "/d/S.Csv", "/d/s.csv.bak", "/d/scsv"})
        names << F::withCsvExtension(typed);
    QCOMPARE(names.join(' ').remove("/d/").remove("2026-03-07,09-05-"),
             "config.csv corrections.csv custom.csv ukps_-archive.csv ukps_-config.csv "
             "ukb_-archive.csv ukb_-config.csv ukps2_-archive.csv ukps2_-config.csv "
             "uki_-archive.csv uki_-config.csv a.csv S.Csv s.csv.bak.csv scsv.csv");

    QTemporaryDir dir;
    const QString path = dir.filePath("page.csv");
    TestSupport::MessageCapture capture;
    QCOMPARE(F::savePage(path, "3\r\n-").text, QString("[[OK]]Файл записан"));
    QCOMPARE(capture.messages(), QStringList{"Данные записаны в файл : " + path});
    QCOMPARE(F::savePage(path + "/x", "x").text, "[[ERR]]Ошибка записи в файл " + path + "/x.");
    QStringList lines;
    QVERIFY(F::readLines(path, F::Kind::Settings, lines) && lines == QStringList({"3", "-"}));
    QVERIFY(!F::readLines(path + "/x", F::Kind::Archive, lines));
    QCOMPARE(F::readFailedMessage(path).text, "[[ERR]]Ошибка чтения файла " + path + ".");
}

void tst_CsvFiles::fileBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    // clang-format off
    Q_INIT_RESOURCE(translations);
    QTranslator english; // a translated interface must not change what goes into files
    QVERIFY(english.load(":/tr/translation_en.qm")
            && QCoreApplication::installTranslator(&english));
    const QByteArray d = dump.join("\r\n").toUtf8();
    const QByteArray s = "AddrUki\t5\r\nOK";
    const QByteArray v = "\r\n--------------------\r\nUKI\t9.6.43\r\nOK";
    QTest::newRow("archive page uki") << F::archiveFile(3, dump.join('\n')) << uki + d;
    QTest::newRow("settings page ukps-ks-2") << F::settingsFile(2, settings, versions) << ukps2 + s + v;
    QTest::newRow("settings page ukps-ks") << F::settingsFile(0, settings, versions) << ukps + s;
    QTest::newRow("settings page uki, no versions") << F::settingsFile(3, settings, {}) << uki + s;
    QTest::newRow("corrections") << F::correctionsFile(CtCorrections(
            corrections)) << QByteArray("address\tchannel\tgain*100\t phase*10\r\n1\t3\t100\t-25");
    QTest::newRow("custom") << F::customChannelsFile(CustomChannels(
            custom)) << QByteArray("address\tchannel\tr_loc\tlower\tupper\r\n5\t2\t200\t10\t45");
    // clang-format on
}

void tst_CsvFiles::fileBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    QCOMPARE(bytes, expected);
}

void tst_CsvFiles::loadedFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("outcome");
    // clang-format off
    QTest::newRow("archive page") << uki + "1\r\n" << "Variant : 3|Archive.kirantoVariant : 3 # 5";
    QTest::newRow("archive bare dump") << QByteArray("Item\tDate\r\n1") << "Variant : Item\tDate|Archive.kirantoVariant : 0 # 2";
    QTest::newRow("settings page") << uki + "A\r\n--------------------\r\nV\r\nOK" << "Variant : 3|config.kirantoVariant : 3|index : 5|versionLines : 2 # A / V|OK";
    QTest::newRow("settings save-all") << QByteArray("A\r\nB") << "Variant : A|config.kirantoVariant : 0|index : -1|versionLines : 0 # A|B / ";
    QTest::newRow("archive mark, LF, bad UTF-8") << QByteArray("\xEF\xBB\xBF 17 x\xE0\n\nA\r\n") << "Variant :  17 x\uFFFD|Archive.kirantoVariant : 17 # 3";
    // clang-format on
}

void tst_CsvFiles::loadedFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, outcome);
    const bool archive = QString(QTest::currentDataTag()).startsWith("archive");
    const auto kind = archive ? F::Kind::Archive : F::Kind::Settings;
    const QStringList lines = F::decodeLines(content, kind);
    TestSupport::MessageCapture capture;
    const int variant = F::takeVariantFromFile(lines, kind);
    const CsvSettingsFile file = archive ? CsvSettingsFile() : F::splitSettingsFile(lines);
    const QString rest = archive ? QString::number(lines.size())
                                 : file.settingsLines.join('|') + " / "
                                           + file.versionLines.join('|');
    QCOMPARE(capture.messages().join('|') + " # " + rest, outcome);
    QVERIFY(capture.messages().at(1).endsWith(" : " + QString::number(variant)));
}

void tst_CsvFiles::saveAll_data()
{
    QTest::addColumn<QString>("outcome");
    // clang-format off
    const QString ok = "[[OK]]Успешно сохранены:\n *";
    const QString both = ok + "Настройки УКПС\n *Архив # archive.csv=I\r\nЁ # config.csv=A\r\nOK";
    const QString failed = "[[ERR]]Не удалось сохранить %1: ошибка записи в файл <dir>/%2.csv.";
    QTest::newRow("3 - -: nothing read") << "[[WARN]]Нечего сохранять!";
    QTest::newRow("3 sa -: uki-kiranto adds versions") << both + "\r\n--------------------\r\nV";
    QTest::newRow("1 s -: settings only") << ok + "Настройки УКПС # config.csv=A\r\nOK";
    QTest::newRow("0 a -: archive only") << ok + "Архив # archive.csv=I\r\nЁ";
    QTest::newRow("0 sa old: same minute overwrites") << both;
    QTest::newRow("0 sa config: config fails first") << failed.arg("Настройки УКПС", "config");
    QTest::newRow("0 sa archive: archive fails") << failed.arg("Архив", "archive") + " # config.csv=A\r\nOK";
    QTest::newRow("0 sa plain: file as folder") << "[[ERR]]Не удалось сохранить данные: не найдена папка для сохранения.";
    // clang-format on
}

void tst_CsvFiles::saveAll()
{
    QFETCH(QString, outcome);
    const QStringList words = QString(QTest::currentDataTag()).section(':', 0, 0).split(' ');
    QTemporaryDir dir;
    const QString folder = words[2] == "plain" ? QCoreApplication::applicationFilePath()
                                               : dir.path();
    for (const QString key : {"config", "archive"}) {
        const QString name = F::saveAllFileName(folder, stamp, key);
        QVERIFY(words[2] != "old" || TestSupport::writeFile(name, "old"));
        QVERIFY(words[2] != key || QDir().mkdir(name));
    }
    const QStringList s = words[1].contains('s') ? QStringList{"A", "OK"} : QStringList();
    const QStringList a = words[1].contains('a') ? QStringList{"I", "Ё"} : QStringList();
    const CsvMessage result = F::saveAll(folder, stamp.addSecs(18), words[0].toInt(), s, a, {"V"});
    QCOMPARE(result.milliseconds, 3000);
    QStringList seen{QString(result.text).replace(folder, "<dir>")};
    for (const QString &name : QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name))
        seen << name + "=" + QString::fromUtf8(TestSupport::readFile(dir.filePath(name)));
    QCOMPARE(seen.join(" # ").remove("2026-03-07,09-05-"), outcome);
}

QTEST_GUILESS_MAIN(tst_CsvFiles)
#include "tst_csvfiles.moc"
