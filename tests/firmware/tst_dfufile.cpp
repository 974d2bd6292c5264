#include "firmware/dfufile.h"
#include "firmware/dfuselftest.h"
#include "support.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using TestSupport::readFile;

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

QByteArray sequence(int size)
{
    QByteArray data(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        data[i] = char(i);
    return data;
}

// One target "Internal Flash" at alternate setting 0: bytes 00..0F at 0x08000000 and "abc" at
// 0x08004000; device 0x0200, product 0xDF11, vendor 0x0483.
DfuFile twoChunkFile()
{
    DfuFile file(0x0483, 0xDF11, 0x0200);
    const int t = file.addTarget("Internal Flash", 0);
    file.addChunk(t, 0x08000000, sequence(16));
    file.addChunk(t, 0x08004000, "abc");
    return file;
}

DfuFile threeTargetFile()
{
    DfuFile file(0x0483, 0xDF11, 0x2200);
    const int flash = file.addTarget("Internal Flash", 0);
    file.addChunk(flash, 0x08000000, sequence(2048));
    file.addChunk(flash, 0x08010000, QByteArray(5000, '\xA5'));
    file.addChunk(file.addTarget("Option Bytes", 1), 0x1FFFC000, hex("aa55ff00"));
    const int info = file.addTarget("Калибровка", 3);
    file.addChunk(info, 0x1FFF7800, QByteArray());
    file.addChunk(info, 0x1FFF7A00, "KIRANTO");
    return file;
}

QByteArray bytesOf(const DfuFile &file)
{
    QByteArray bytes;
    file.toBytes(&bytes);
    return bytes;
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

Q_DECLARE_METATYPE(DfuFile)

// The DfuSe firmware file: bytes and CRC-32, reading back, refusals, and writes that fail.
class tst_DfuFile : public QObject
{
    Q_OBJECT

private slots:
    void bytes_data();
    void bytes();
    void refusesUnencodable_data();
    void refusesUnencodable();
    void readRefusesDamage_data();
    void readRefusesDamage();
    void failedWrite_data();
    void failedWrite();
    void selfTest();
};

// Whole files; each is read back to the same contents and accepted by dfu-suffix when installed.
void tst_DfuFile::bytes_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QByteArray>("expected"); // empty: only read back and checked
    DfuFile empty(0x1234, 0x5678, 0x9ABC);
    empty.addChunk(empty.addTarget("A", 5), 0x12345678, QByteArray());
    QTest::newRow("empty chunk") << empty
                                 << "DfuSe" + hex("0125010000") + "\x01Target" + hex("0501000000")
                                            + "A" + QByteArray(254, '\0')
                                            + hex("080000000100000078563412000000")
                                            + hex("00bc9a785634121a01") + "UFD" + hex("10cb6ebecb");
    QTest::newRow("two chunks") << twoChunkFile()
                                << "DfuSe" + hex("0140010000") + "\x01Target" + hex("0001000000")
                                           + "Internal Flash" + QByteArray(241, '\0')
                                           + hex("23000000020000000000000810000000") + sequence(16)
                                           + hex("0040000803000000") + "abc"
                                           + hex("000211df83041a01") + "UFD" + hex("10c2cf690e");
    QTest::newRow("no targets") << DfuFile(1, 2, 3) << QByteArray();
    QTest::newRow("three targets, Cyrillic name") << threeTargetFile() << QByteArray();
}

void tst_DfuFile::bytes()
{
    QFETCH(DfuFile, file);
    QFETCH(QByteArray, expected);
    QTemporaryDir dir;
    QVERIFY(file.write(dir.filePath("fw.dfu")));
    const QByteArray bytes = readFile(dir.filePath("fw.dfu"));
    if (!expected.isEmpty())
        QCOMPARE(bytes.toHex(), expected.toHex());
    DfuFile read;
    QString error;
    QVERIFY2(DfuFile::fromBytes(bytes, &read, &error), qPrintable(error));
    QVERIFY(read == file);

    const QString tool = QStandardPaths::findExecutable("dfu-suffix");
    if (tool.isEmpty())
        return;
    QProcess run;
    run.setWorkingDirectory(dir.path());
    run.start(tool, {"--check", "fw.dfu"});
    QVERIFY(run.waitForFinished(60000));
    const QString ids = QString::asprintf(
            "BCD device:\t0x%04X\nProduct ID:\t0x%04X\nVendor ID:\t0x%04X",
            file.deviceVersion(),
            file.productId(),
            file.vendorId());
    QVERIFY2(run.exitCode() == 0 && run.readAll().contains(ids.toUtf8()), qPrintable(ids));
}

void tst_DfuFile::refusesUnencodable_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QString>("reason"); // empty: the file must encode
    const auto named = [](const QString &name, int setting, quint32 address, int size) {
        DfuFile file;
        file.addChunk(file.addTarget(name, setting), address, QByteArray(size, '\x11'));
        return file;
    };
    QTest::newRow("name of 254 bytes") << named(QString(254, 'n'), 0, 0, 1) << "";
    QTest::newRow("name of 255 bytes") << named(QString(255, 'n'), 0, 0, 1) << "255 байт";
    QTest::newRow("name of 128 Cyrillic letters")
            << named(QString(128, QChar(0x416)), 0, 0, 1) << "256 байт";
    QTest::newRow("name with NUL") << named(QString("F") + QChar(0), 0, 0, 1) << "нулевой символ";
    QTest::newRow("alternate setting 255") << named("F", 255, 0, 1) << "";
    QTest::newRow("alternate setting 256") << named("F", 256, 0, 1) << "0..255: 256";
    QTest::newRow("chunk ending at 4 GiB") << named("F", 0, 0xFFFFFFF0, 16) << "";
    QTest::newRow("chunk past 4 GiB") << named("F", 0, 0xFFFFFFF0, 17) << "0xFFFFFFF0";
    DfuFile targets;
    for (int i = 0; i < 256; ++i)
        targets.addTarget(QString::number(i), i % 256);
    QTest::newRow("256 targets") << targets << "не более 255";
    const QByteArray gib(0x40000001, Qt::Uninitialized); // never touched: refused by size
    DfuFile big;
    const int t = big.addTarget("Big", 0);
    for (int i = 0; i < 4; ++i)
        big.addChunk(t, 0, gib);
    QTest::newRow("target over 4 GiB") << big << "цели «Big» превышает 4 ГиБ";
}

void tst_DfuFile::refusesUnencodable()
{
    QFETCH(DfuFile, file);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    QByteArray bytes;
    QString error;
    QString writeError;
    const bool built = file.toBytes(&bytes, &error);
    QCOMPARE(file.write(dir.filePath("out.dfu"), &writeError), built);
    QCOMPARE(built, reason.isEmpty());
    QVERIFY2(error.contains(reason) && writeError == error, qPrintable(error));
    QCOMPARE(readFile(dir.filePath("out.dfu")), bytes);
}

void tst_DfuFile::readRefusesDamage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const QByteArray good = bytesOf(twoChunkFile());
    // Each change at an offset, with the CRC stored anew unless the CRC is what is checked.
    const auto damaged = [&good](int at, const QByteArray &with, bool fixCrc = true) {
        QByteArray bytes = good;
        bytes.replace(at, with.size(), with);
        if (fixCrc)
            qToLittleEndian(DfuFile::crc32(bytes.chopped(4)), bytes.data() + bytes.size() - 4);
        return bytes;
    };
    QTest::newRow("flipped data byte")
            << damaged(300, "\x01", false) << "контрольная сумма 0x0E69CFC2";
    QTest::newRow("truncated") << good.chopped(1) << "нет суффикса";
    QTest::newRow("too short") << good.left(26) << "короче 27 байт";
    QTest::newRow("bcdDFU 0x0100") << damaged(326, QByteArray(1, '\0')) << "версия DFU 0x0100";
    QTest::newRow("image size off by one") << damaged(6, "\x41") << "размер образа 321";
    QTest::newRow("target size off by one") << damaged(277, "\x22") << "цели 1";
    QTest::newRow("target signature") << damaged(11, "t") << "подписи Target";
    QByteArray extra = damaged(6, "\x41", false);
    extra.insert(good.size() - 16, 'x');
    qToLittleEndian(DfuFile::crc32(extra.chopped(4)), extra.data() + extra.size() - 4);
    QTest::newRow("byte after the targets") << extra << "1 лишних байт";
}

void tst_DfuFile::readRefusesDamage()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    DfuFile file;
    QString error;
    QVERIFY(!DfuFile::fromBytes(bytes, &file, &error));
    QVERIFY2(error.contains(reason), qPrintable(error));
}

void tst_DfuFile::failedWrite_data()
{
    QTest::addColumn<QString>("target"); // in a scratch folder that holds fw.dfu
    QTest::addColumn<QString>("staging");
    QTest::newRow("missing folder") << "absent/fw.dfu"
                                    << "";
    QTest::newRow("read-only folder, old file kept") << "fw.dfu"
                                                     << "read-only";
    QTest::newRow("disk full, old file kept") << "fw.dfu"
                                              << "limit";
    QTest::newRow("disk full, no old file") << "new.dfu"
                                            << "limit";
    QTest::newRow("unencodable, old file kept") << "fw.dfu"
                                                << "unencodable";
}

void tst_DfuFile::failedWrite()
{
    QFETCH(QString, target);
    QFETCH(QString, staging);
    QTemporaryDir dir;
    QVERIFY(twoChunkFile().write(dir.filePath("fw.dfu")));
    const QByteArray old = readFile(dir.filePath("fw.dfu"));
    const QStringList before = entries(dir.path());
    const QString path = dir.filePath(target);
    DfuFile file = threeTargetFile();
    if (staging == "unencodable")
        file.addTarget(QString(300, 'n'), 0);
    if (staging == "read-only") {
        QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner);
        if (::access(QFile::encodeName(dir.path()).constData(), W_OK) == 0)
            QSKIP("root writes into a read-only folder");
    }
    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    rlimit limit = saved;
    limit.rlim_cur = 1000;
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    QVERIFY(staging != "limit" || setrlimit(RLIMIT_FSIZE, &limit) == 0);
    QString error;
    const bool written = file.write(path, &error);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QVERIFY(!written);
    if (staging != "unencodable")
        QVERIFY2(error.startsWith("Не удалось записать файл " + path + ": ")
                         && !error.endsWith(": ") && !error.endsWith(": ."),
                 qPrintable(error));
    QCOMPARE(entries(dir.path()), before);
    QCOMPARE(readFile(dir.filePath("fw.dfu")), old);
}

void tst_DfuFile::selfTest()
{
    QTemporaryDir dir;
    QVERIFY(TestSupport::writeFile(dir.filePath("test.dfu"), "stale contents of an older run"));
    QString error;
    QVERIFY2(DfuSelfTest::run(dir.path(), &error), qPrintable(error));
    QCOMPARE(entries(dir.path()), QStringList{"test.dfu"});
    DfuFile read;
    QVERIFY(DfuFile::read(dir.filePath("test.dfu"), &read) && read == DfuSelfTest::sample());
    QCOMPARE(read.targets().value(0).chunks.size(), 2);

    QVERIFY(!DfuSelfTest::run(dir.filePath("absent"), &error));
    QCOMPARE(error.section(dir.path(), 0, 0),
             "Самопроверка файла DFU не пройдена: Не удалось записать файл ");
    QVERIFY2(error.contains(dir.filePath("absent/test.dfu") + ": "), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_DfuFile)
#include "tst_dfufile.moc"
