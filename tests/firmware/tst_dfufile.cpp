#include "firmware/dfufile.h"
#include "firmware/dfuselftest.h"
#include "support.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using TestSupport::readFile;

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

// One target "Internal Flash" at alternate setting 0: bytes 00..0F at 0x08000000 and "abc" at
// 0x08004000; device 0x0200, product 0xDF11, vendor 0x0483.
DfuFile twoChunkFile()
{
    DfuFile file(0x0483, 0xDF11, 0x0200);
    const int t = file.addTarget("Internal Flash", 0);
    file.addChunk(t, 0x08000000, hex("000102030405060708090a0b0c0d0e0f"));
    file.addChunk(t, 0x08004000, "abc");
    return file;
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
    void refusals_data();
    void refusals();
    void failedWrite();
    void selfTest();
};

// Whole files; each is read back to the same contents.
void tst_DfuFile::bytes_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QByteArray>("expected"); // empty: only read back
    DfuFile empty(0x1234, 0x5678, 0x9ABC);
    empty.addChunk(empty.addTarget("A", 5), 0x12345678, QByteArray());
    // clang-format off
    QTest::newRow("empty chunk") << empty << "DfuSe" + hex("0125010000") + "\x01Target" + hex("0501000000") + "A" + QByteArray(254, '\0') + hex("080000000100000078563412000000") + hex("00bc9a785634121a01") + "UFD" + hex("10cb6ebecb");
    QTest::newRow("two chunks") << twoChunkFile() << "DfuSe" + hex("0140010000") + "\x01Target" + hex("0001000000") + "Internal Flash" + QByteArray(241, '\0') + hex("23000000020000000000000810000000000102030405060708090a0b0c0d0e0f") + hex("0040000803000000") + "abc" + hex("000211df83041a01") + "UFD" + hex("10c2cf690e");
    // clang-format on
    DfuFile three(0x0483, 0xDF11, 0x2200);
    three.addChunk(three.addTarget("Option Bytes", 1), 0x1FFFC000, hex("aa55ff00"));
    const int info = three.addTarget("Калибровка", 3);
    three.addChunk(info, 0x1FFF7800, QByteArray());
    three.addChunk(info, 0x1FFF7A00, "KIRANTO");
    QTest::newRow("targets with Cyrillic name") << three << QByteArray();
}

void tst_DfuFile::bytes()
{
    QFETCH(DfuFile, file);
    QFETCH(QByteArray, expected);
    QByteArray bytes;
    QVERIFY(file.toBytes(&bytes));
    if (!expected.isEmpty())
        QCOMPARE(bytes.toHex(), expected.toHex());
    DfuFile read;
    QString error;
    QVERIFY2(DfuFile::fromBytes(bytes, &read, &error), qPrintable(error));
    QVERIFY(read == file);
}

// Contents that cannot be encoded (an existing file stays), and damaged files that are refused.
void tst_DfuFile::refusals_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QByteArray>("bytes"); // non-empty: read these instead of encoding file
    QTest::addColumn<QString>("reason");   // empty: the file must encode
    const auto named = [](const QString &name, int setting, quint32 address, int size) {
        DfuFile file;
        file.addChunk(file.addTarget(name, setting), address, QByteArray(size, '\x11'));
        return file;
    };
    const auto row = [](const char *name, const DfuFile &file, const char *reason) {
        QTest::newRow(name) << file << QByteArray() << QString::fromUtf8(reason);
    };
    row("name of 254 bytes", named(QString(254, 'n'), 0, 0, 1), "");
    row("name of 255 bytes", named(QString(255, 'n'), 0, 0, 1), "255 байт");
    row("name of 128 Cyrillic letters", named(QString(128, QChar(0x416)), 0, 0, 1), "256 байт");
    row("name with NUL", named(QString("F") + QChar(0), 0, 0, 1), "нулевой символ");
    row("alternate setting 255", named("F", 255, 0, 1), "");
    row("alternate setting 256", named("F", 256, 0, 1), "0..255: 256");
    row("chunk ending at 4 GiB", named("F", 0, 0xFFFFFFF0, 16), "");
    row("chunk past 4 GiB", named("F", 0, 0xFFFFFFF0, 17), "0xFFFFFFF0");
    DfuFile targets;
    for (int i = 0; i < 256; ++i)
        targets.addTarget(QString::number(i), i);
    row("256 targets", targets, "не более 255");
    const QByteArray gib(0x40000001, Qt::Uninitialized); // never touched: refused by size
    DfuFile big;
    for (int i = 0; i < 4; ++i)
        big.addChunk(i ? 0 : big.addTarget("Big", 0), 0, gib);
    row("target over 4 GiB", big, "цели «Big» превышает 4 ГиБ");

    QByteArray good;
    QVERIFY(twoChunkFile().toBytes(&good));
    // Each change at an offset, with the CRC stored anew unless the CRC is what is checked.
    const auto damaged = [&good](int at, const QByteArray &with, bool fixCrc = true) {
        QByteArray bytes = good;
        bytes.replace(at, with.size(), with);
        if (fixCrc)
            qToLittleEndian(DfuFile::crc32(bytes.chopped(4)), bytes.data() + bytes.size() - 4);
        return bytes;
    };
    QByteArray extra = damaged(6, "\x41", false);
    extra.insert(good.size() - 16, 'x');
    qToLittleEndian(DfuFile::crc32(extra.chopped(4)), extra.data() + extra.size() - 4);
    const QList<QPair<QByteArray, QString>> damages = {
            {damaged(300, "\x01", false), "контрольная сумма 0x0E69CFC2"},
            {good.chopped(1), "нет суффикса"},
            {good.left(26), "короче 27 байт"},
            {damaged(326, QByteArray(1, '\0')), "версия DFU 0x0100"},
            {damaged(6, "\x41"), "размер образа 321"},
            {damaged(277, "\x22"), "цели 1"},
            {damaged(11, "t"), "подписи Target"},
            {extra, "1 лишних байт"}};
    for (const auto &damage : damages)
        QTest::addRow("read: %s", qPrintable(damage.second))
                << DfuFile() << damage.first << damage.second;
}

void tst_DfuFile::refusals()
{
    QFETCH(DfuFile, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    QString error;
    if (!bytes.isEmpty()) {
        QVERIFY(!DfuFile::fromBytes(bytes, &file, &error));
        QVERIFY2(error.contains(reason), qPrintable(error));
        return;
    }
    QTemporaryDir dir;
    QVERIFY(TestSupport::writeFile(dir.filePath("out.dfu"), "old"));
    QString writeError;
    const bool built = file.toBytes(&bytes, &error);
    QCOMPARE(file.write(dir.filePath("out.dfu"), &writeError), built);
    QCOMPARE(built, reason.isEmpty());
    QVERIFY2(error.contains(reason) && writeError == error, qPrintable(error));
    QCOMPARE(readFile(dir.filePath("out.dfu")), built ? bytes : QByteArray("old"));
}

// A write that runs out of room names the file and the system's reason, and leaves the old
// file as it was.
void tst_DfuFile::failedWrite()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("fw.dfu");
    QVERIFY(twoChunkFile().write(path));
    const QByteArray old = readFile(path);
    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    rlimit limit = saved;
    limit.rlim_cur = 1000;
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    QVERIFY(setrlimit(RLIMIT_FSIZE, &limit) == 0);
    QString error;
    const bool written = DfuSelfTest::sample().write(path, &error); // over the 1000-byte limit
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);
    QVERIFY(!written);
    QVERIFY2(error.startsWith("Не удалось записать файл " + path + ": ") && !error.endsWith(": ."),
             qPrintable(error));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"fw.dfu"});
    QCOMPARE(readFile(path), old);
}

// The self-test replaces an old test.dfu with the sample and leaves nothing else.
void tst_DfuFile::selfTest()
{
    QTemporaryDir dir;
    QVERIFY(TestSupport::writeFile(dir.filePath("test.dfu"), "stale contents of an older run"));
    QString error;
    QVERIFY2(DfuSelfTest::run(dir.path(), &error), qPrintable(error));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"test.dfu"});
    DfuFile read;
    QVERIFY(DfuFile::read(dir.filePath("test.dfu"), &read) && read == DfuSelfTest::sample());
    QVERIFY(!DfuSelfTest::run(dir.filePath("absent"), &error));
    QVERIFY2(error.startsWith("Самопроверка файла DFU не пройдена: Не удалось записать файл "
                              + dir.filePath("absent/test.dfu") + ": "),
             qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_DfuFile)
#include "tst_dfufile.moc"
