#include "firmware/dfufile.h"
#include "firmware/dfuselftest.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

QByteArray zeros(int count)
{
    return QByteArray(count, '\0');
}

QByteArray sequence(int size)
{
    QByteArray data(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        data[i] = char(i);
    return data;
}

// One target "Internal Flash" at alternate setting 0: 16 bytes 00..0F at 0x08000000 and "abc"
// at 0x08004000; device 0x0200, product 0xDF11, vendor 0x0483.
DfuFile twoChunkFile()
{
    DfuFile file(0x0483, 0xDF11, 0x0200);
    const int t = file.addTarget("Internal Flash", 0);
    file.addChunk(t, 0x08000000, sequence(16));
    file.addChunk(t, 0x08004000, "abc");
    return file;
}

DfuFile emptyChunkFile()
{
    DfuFile file(0x1234, 0x5678, 0x9ABC);
    file.addChunk(file.addTarget("A", 5), 0x12345678, QByteArray());
    return file;
}

DfuFile threeTargetFile()
{
    DfuFile file(0x0483, 0xDF11, 0x2200);
    const int flash = file.addTarget("Internal Flash", 0);
    file.addChunk(flash, 0x08000000, sequence(2048));
    file.addChunk(flash, 0x08010000, QByteArray(5000, '\xA5'));
    const int options = file.addTarget("Option Bytes", 1);
    file.addChunk(options, 0x1FFFC000, hex("aa55ff00"));
    const int info = file.addTarget("Калибровка", 3);
    file.addChunk(info, 0x1FFF7800, QByteArray());
    file.addChunk(info, 0x1FFF7A00, "KIRANTO");
    return file;
}

QByteArray bytesOf(const DfuFile &file)
{
    QByteArray bytes;
    QString error;
    if (!file.toBytes(&bytes, &error))
        qWarning() << "toBytes failed:" << error;
    return bytes;
}

// Stores the CRC of a modified file so that only the intended damage remains.
void fixCrc(QByteArray *bytes)
{
    qToLittleEndian(DfuFile::crc32(bytes->left(bytes->size() - 4)),
                    bytes->data() + bytes->size() - 4);
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

struct ToolRun
{
    int exitCode = -1;
    QString output;
};

ToolRun runTool(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    ToolRun run;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.output = QString::fromUtf8(process.readAll());
    return run;
}

enum class Failure {
    MissingFolder,
    UnderRegularFile,
    ReadOnlyFolder,
    SystemFolder,
    FileSizeLimit,
    Unencodable
};

#ifdef Q_OS_UNIX
// Caps the size of files this process may write, as a full disk would; restores on destruction.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_saved;
        limit.rlim_cur = bytes;
        m_active = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    bool active() const { return m_active; }

private:
    rlimit m_saved{};
    void (*m_oldHandler)(int) = nullptr;
    bool m_active = false;
};
#endif

} // namespace

Q_DECLARE_METATYPE(DfuFile)
Q_DECLARE_METATYPE(Failure)

class TestDfuFile : public QObject
{
    Q_OBJECT

private slots:
    void crc32_data();
    void crc32();
    void emptyChunkLayout();
    void twoChunkLayout_data();
    void twoChunkLayout();
    void refusesUnencodable_data();
    void refusesUnencodable();
    void readsBack_data();
    void readsBack();
    void readRefusesDamage_data();
    void readRefusesDamage();
    void dfuSuffixAccepts_data();
    void dfuSuffixAccepts();
    void dfuSuffixRejectsCorrupted_data();
    void dfuSuffixRejectsCorrupted();
    void dfusePackExtracts_data();
    void dfusePackExtracts();
    void failedWriteLeavesNoFile_data();
    void failedWriteLeavesNoFile();
    void failedWriteKeepsExistingFile_data();
    void failedWriteKeepsExistingFile();
    void selfTest();
    void selfTestReportsFailure();

private:
    bool prepareFailure(Failure failure, const QString &folder, QString *path, DfuFile *file);
};

void TestDfuFile::crc32_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<quint32>("crc");

    // Values are the bitwise NOT of zlib's crc32 of the same bytes.
    QTest::newRow("check string") << QByteArray("123456789") << 0x340BC6D9u;
    QTest::newRow("nothing") << QByteArray() << 0xFFFFFFFFu;
    QTest::newRow("one zero byte") << zeros(1) << 0x2DFD1072u;
    QTest::newRow("letter a") << QByteArray("a") << 0x174841BCu;
    QTest::newRow("bytes 00..FF") << sequence(256) << 0xD6FA738Cu;
    QTest::newRow("four FF bytes") << hex("ffffffff") << 0x00000000u;
}

void TestDfuFile::crc32()
{
    QFETCH(QByteArray, data);
    QFETCH(quint32, crc);
    QCOMPARE(DfuFile::crc32(data), crc);
}

void TestDfuFile::emptyChunkLayout()
{
    const QByteArray expected = QByteArray("DfuSe") + hex("01") + hex("25010000") + hex("01")
                                + QByteArray("Target") + hex("05") + hex("01000000")
                                + QByteArray("A") + zeros(254) + hex("08000000") + hex("01000000")
                                + hex("78563412") + hex("00000000") + hex("bc9a") + hex("7856")
                                + hex("3412") + hex("1a01") + QByteArray("UFD") + hex("10")
                                + hex("cb6ebecb");
    QCOMPARE(expected.size(), 309);

    QByteArray bytes;
    QString error;
    QVERIFY2(emptyChunkFile().toBytes(&bytes, &error), qPrintable(error));
    QCOMPARE(bytes.toHex(), expected.toHex());
}

void TestDfuFile::twoChunkLayout_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("field");

    QTest::newRow("DfuSe signature") << 0 << QByteArray("DfuSe");
    QTest::newRow("format version") << 5 << hex("01");
    QTest::newRow("image size 320") << 6 << hex("40010000");
    QTest::newRow("target count") << 10 << hex("01");
    QTest::newRow("Target signature") << 11 << QByteArray("Target");
    QTest::newRow("alternate setting") << 17 << hex("00");
    QTest::newRow("named flag") << 18 << hex("01000000");
    QTest::newRow("name and NUL padding") << 22 << QByteArray("Internal Flash") + zeros(255 - 14);
    QTest::newRow("target size 35") << 277 << hex("23000000");
    QTest::newRow("chunk count") << 281 << hex("02000000");
    QTest::newRow("chunk 1 address") << 285 << hex("00000008");
    QTest::newRow("chunk 1 size") << 289 << hex("10000000");
    QTest::newRow("chunk 1 data") << 293 << sequence(16);
    QTest::newRow("chunk 2 address") << 309 << hex("00400008");
    QTest::newRow("chunk 2 size") << 313 << hex("03000000");
    QTest::newRow("chunk 2 data") << 317 << QByteArray("abc");
    QTest::newRow("bcdDevice") << 320 << hex("0002");
    QTest::newRow("idProduct") << 322 << hex("11df");
    QTest::newRow("idVendor") << 324 << hex("8304");
    QTest::newRow("bcdDFU") << 326 << hex("1a01");
    QTest::newRow("UFD signature") << 328 << QByteArray("UFD");
    QTest::newRow("suffix length") << 331 << hex("10");
    QTest::newRow("CRC") << 332 << hex("c2cf690e");
}

void TestDfuFile::twoChunkLayout()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, field);

    const QByteArray bytes = bytesOf(twoChunkFile());
    QCOMPARE(bytes.size(), 336);
    QCOMPARE(bytes.mid(offset, field.size()).toHex(), field.toHex());
}

void TestDfuFile::refusesUnencodable_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QString>("reason"); // empty: the file must encode

    const auto named = [](const QString &name) {
        DfuFile file;
        file.addChunk(file.addTarget(name, 0), 0x08000000, "x");
        return file;
    };
    QTest::newRow("name of 254 bytes") << named(QString(254, 'n')) << QString();
    QTest::newRow("name of 255 bytes") << named(QString(255, 'n')) << QString("255 байт");
    QTest::newRow("name of 128 Cyrillic letters")
            << named(QString(128, QChar(0x0416))) << QString("256 байт");
    QTest::newRow("name with NUL")
            << named(QString("Flash") + QChar(0) + "B") << QString("нулевой символ");

    const auto targets = [](int count) {
        DfuFile file;
        for (int i = 0; i < count; ++i)
            file.addTarget(QString::number(i), i % 256);
        return file;
    };
    QTest::newRow("255 targets") << targets(255) << QString();
    QTest::newRow("256 targets") << targets(256) << QString("не более 255");

    const auto alternate = [](int setting) {
        DfuFile file;
        file.addTarget("Flash", setting);
        return file;
    };
    QTest::newRow("alternate setting 255") << alternate(255) << QString();
    QTest::newRow("alternate setting 256") << alternate(256) << QString("0..255: 256");
    QTest::newRow("alternate setting -1") << alternate(-1) << QString("0..255: -1");

    const auto at = [](quint32 address, int size) {
        DfuFile file;
        file.addChunk(file.addTarget("Flash", 0), address, QByteArray(size, '\x11'));
        return file;
    };
    QTest::newRow("chunk ending at 4 GiB") << at(0xFFFFFFF0, 16) << QString();
    QTest::newRow("chunk past 4 GiB") << at(0xFFFFFFF0, 17) << QString("0xFFFFFFF0");

    // Shared, never touched: the sizes are refused before any byte is copied.
    const QByteArray gib(0x40000001, Qt::Uninitialized);
    DfuFile bigTarget;
    const int t = bigTarget.addTarget("Big", 0);
    for (int i = 0; i < 4; ++i)
        bigTarget.addChunk(t, 0, gib);
    QTest::newRow("target over 4 GiB") << bigTarget << QString("цели «Big» превышает 4 ГиБ");
    DfuFile bigFile;
    for (int i = 0; i < 2; ++i) {
        const int half = bigFile.addTarget("Half", i);
        bigFile.addChunk(half, 0, gib);
        bigFile.addChunk(half, 0, gib);
    }
    QTest::newRow("file over 4 GiB") << bigFile << QString("файла превышает 4 ГиБ");
}

void TestDfuFile::refusesUnencodable()
{
    QFETCH(DfuFile, file);
    QFETCH(QString, reason);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath("out.dfu");
    QByteArray bytes;
    QString buildError;
    QString writeError;
    const bool built = file.toBytes(&bytes, &buildError);
    const bool written = file.write(path, &writeError);
    if (reason.isEmpty()) {
        QVERIFY2(built, qPrintable(buildError));
        QVERIFY2(written, qPrintable(writeError));
        QCOMPARE(readFile(path), bytes);
        return;
    }
    QVERIFY(!built);
    QVERIFY(!written);
    QVERIFY2(buildError.contains(reason), qPrintable(buildError));
    QCOMPARE(writeError, buildError);
    QVERIFY(bytes.isEmpty());
    QCOMPARE(entries(dir.path()), QStringList());
}

void TestDfuFile::readsBack_data()
{
    QTest::addColumn<DfuFile>("file");

    QTest::newRow("no targets") << DfuFile(1, 2, 3);
    QTest::newRow("empty chunk") << emptyChunkFile();
    QTest::newRow("two chunks") << twoChunkFile();
    QTest::newRow("three targets") << threeTargetFile();
}

void TestDfuFile::readsBack()
{
    QFETCH(DfuFile, file);

    DfuFile read;
    QString error;
    QVERIFY2(DfuFile::fromBytes(bytesOf(file), &read, &error), qPrintable(error));
    QVERIFY(read == file);
}

void TestDfuFile::readRefusesDamage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");

    const QByteArray good = bytesOf(twoChunkFile());
    QByteArray flipped = good;
    flipped[300] = char(flipped[300] ^ 0x01);
    QTest::newRow("flipped data byte") << flipped << QString("контрольная сумма 0x0E69CFC2");
    QTest::newRow("truncated") << good.left(good.size() - 1) << QString("нет суффикса");
    QTest::newRow("too short") << good.left(26) << QString("короче 27 байт");

    QByteArray version = good;
    version[326] = 0x00;
    fixCrc(&version);
    QTest::newRow("bcdDFU 0x0100") << version << QString("версия DFU 0x0100");

    QByteArray image = good;
    image[6] = 0x41;
    fixCrc(&image);
    QTest::newRow("image size off by one") << image << QString("размер образа 321");

    QByteArray target = good;
    target[277] = 0x22;
    fixCrc(&target);
    QTest::newRow("target size off by one") << target << QString("цели 1");

    QByteArray signature = good;
    signature[11] = 't';
    fixCrc(&signature);
    QTest::newRow("target signature") << signature << QString("подписи Target");

    QByteArray extra = good;
    extra.insert(good.size() - 16, 'x');
    qToLittleEndian(quint32(321), extra.data() + 6);
    fixCrc(&extra);
    QTest::newRow("byte after the targets") << extra << QString("1 лишних байт");
}

void TestDfuFile::readRefusesDamage()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);

    DfuFile file;
    QString error;
    QVERIFY(!DfuFile::fromBytes(bytes, &file, &error));
    QVERIFY2(error.contains(reason), qPrintable(error));
}

void TestDfuFile::dfuSuffixAccepts_data()
{
    QTest::addColumn<DfuFile>("file");
    QTest::addColumn<QString>("ids");

    QTest::newRow("empty chunk") << emptyChunkFile()
                                 << "BCD device:\t0x9ABC\nProduct ID:\t0x5678\nVendor ID:\t0x1234";
    QTest::newRow("two chunks") << twoChunkFile()
                                << "BCD device:\t0x0200\nProduct ID:\t0xDF11\nVendor ID:\t0x0483";
    QTest::newRow("three targets")
            << threeTargetFile() << "BCD device:\t0x2200\nProduct ID:\t0xDF11\nVendor ID:\t0x0483";
}

void TestDfuFile::dfuSuffixAccepts()
{
    QFETCH(DfuFile, file);
    QFETCH(QString, ids);

    const QString tool = QStandardPaths::findExecutable("dfu-suffix");
    if (tool.isEmpty())
        QSKIP("dfu-suffix is not installed (Debian package dfu-util)");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString error;
    QVERIFY2(file.write(dir.filePath("fw.dfu"), &error), qPrintable(error));

    const ToolRun run = runTool(tool, {"--check", "fw.dfu"}, dir.path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.output));
    QVERIFY2(run.output.contains(ids), qPrintable(run.output));
    QVERIFY2(run.output.contains("BCD DFU:\t0x011A"), qPrintable(run.output));
}

void TestDfuFile::dfuSuffixRejectsCorrupted_data()
{
    QTest::addColumn<int>("offset"); // from the start; negative: from the end

    QTest::newRow("flipped prefix byte") << 0;
    QTest::newRow("flipped name byte") << 25;
    QTest::newRow("flipped data byte") << 300;
    QTest::newRow("flipped idVendor byte") << -12;
    QTest::newRow("flipped UFD byte") << -8;
    QTest::newRow("flipped CRC byte") << -1;
}

void TestDfuFile::dfuSuffixRejectsCorrupted()
{
    QFETCH(int, offset);

    const QString tool = QStandardPaths::findExecutable("dfu-suffix");
    if (tool.isEmpty())
        QSKIP("dfu-suffix is not installed (Debian package dfu-util)");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QByteArray bytes = bytesOf(twoChunkFile());
    const int at = offset < 0 ? bytes.size() + offset : offset;
    bytes[at] = char(bytes[at] ^ 0x40);
    QVERIFY(writeFile(dir.filePath("bad.dfu"), bytes));

    const ToolRun run = runTool(tool, {"--check", "bad.dfu"}, dir.path());
    QVERIFY2(run.exitCode == 65, qPrintable(run.output));
}

void TestDfuFile::dfusePackExtracts_data()
{
    QTest::addColumn<DfuFile>("file");

    QTest::newRow("empty chunk") << emptyChunkFile();
    QTest::newRow("two chunks") << twoChunkFile();
    QTest::newRow("three targets") << threeTargetFile();
}

void TestDfuFile::dfusePackExtracts()
{
    QFETCH(DfuFile, file);

    const QString tool = QStandardPaths::findExecutable("dfuse-pack");
    if (tool.isEmpty())
        QSKIP("dfuse-pack is not installed (Debian package dfu-util)");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString error;
    QVERIFY2(file.write(dir.filePath("fw.dfu"), &error), qPrintable(error));

    // It dumps chunk e of target t beside the input as "<input>.target<t>.image<e>.bin".
    const ToolRun run = runTool(tool, {"-d", "fw.dfu"}, dir.path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.output));
    QVERIFY2(!run.output.contains("ERROR"), qPrintable(run.output));
    QVERIFY2(run.output.contains(QString("targets: %1").arg(file.targets().size())),
             qPrintable(run.output));
    int dumped = 0;
    for (int t = 0; t < file.targets().size(); ++t) {
        const DfuTarget &target = file.targets().at(t);
        QVERIFY2(run.output.contains(QString("alt setting: %1").arg(target.alternateSetting)),
                 qPrintable(run.output));
        for (int e = 0; e < target.chunks.size(); ++e) {
            const DfuChunk &chunk = target.chunks.at(e);
            const QString address = QString("address: 0x%1, size: %2")
                                            .arg(chunk.address, 8, 16, QChar('0'))
                                            .arg(chunk.data.size());
            QVERIFY2(run.output.contains(address), qPrintable(address));
            const QString name = QString("fw.dfu.target%1.image%2.bin").arg(t).arg(e);
            QVERIFY2(QFile::exists(dir.filePath(name)), qPrintable(name));
            QCOMPARE(readFile(dir.filePath(name)), chunk.data);
            ++dumped;
        }
    }
    QCOMPARE(entries(dir.path()).size(), 1 + dumped);
}

bool TestDfuFile::prepareFailure(Failure failure,
                                 const QString &folder,
                                 QString *path,
                                 DfuFile *file)
{
    *path = QDir(folder).filePath("fw.dfu");
    *file = threeTargetFile();
    switch (failure) {
    case Failure::MissingFolder:
        *path = QDir(folder).filePath("absent/fw.dfu");
        return true;
    case Failure::UnderRegularFile:
        *path = QDir(folder).filePath("plain/fw.dfu");
        return writeFile(QDir(folder).filePath("plain"), "text");
    case Failure::ReadOnlyFolder:
#ifdef Q_OS_UNIX
        // Has no effect for root, which writes anywhere; such rows are skipped.
        return QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner)
               && ::access(QFile::encodeName(folder).constData(), W_OK) != 0;
#else
        return false;
#endif
    case Failure::SystemFolder:
        *path = "/proc/fw.dfu";
        return QFileInfo("/proc/self").exists();
    case Failure::FileSizeLimit:
        return true;
    case Failure::Unencodable:
        file->addTarget(QString(300, 'n'), 0);
        return true;
    }
    return false;
}

void TestDfuFile::failedWriteLeavesNoFile_data()
{
    QTest::addColumn<Failure>("failure");

    QTest::newRow("missing folder") << Failure::MissingFolder;
    QTest::newRow("folder path is a file") << Failure::UnderRegularFile;
    QTest::newRow("read-only folder") << Failure::ReadOnlyFolder;
    QTest::newRow("folder no one may write") << Failure::SystemFolder;
    QTest::newRow("disk full") << Failure::FileSizeLimit;
}

void TestDfuFile::failedWriteLeavesNoFile()
{
    QFETCH(Failure, failure);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString path;
    DfuFile file;
    if (!prepareFailure(failure, dir.path(), &path, &file))
        QSKIP("this failure cannot be staged here (running as root?)");
    const QStringList before = entries(dir.path());

    QString error;
    bool written = false;
    if (failure == Failure::FileSizeLimit) {
#ifdef Q_OS_UNIX
        FileSizeLimit limit(1000);
        QVERIFY(limit.active());
        written = file.write(path, &error);
#else
        QSKIP("needs a file size limit");
#endif
    } else {
        written = file.write(path, &error);
    }
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QVERIFY(!written);
    QVERIFY2(error.startsWith(QString("Не удалось записать файл %1: ").arg(path)),
             qPrintable(error));
    QVERIFY2(error.size() > QString("Не удалось записать файл %1: .").arg(path).size(),
             qPrintable(error));
    QVERIFY(!QFileInfo::exists(path));
    QCOMPARE(entries(dir.path()), before);
}

void TestDfuFile::failedWriteKeepsExistingFile_data()
{
    QTest::addColumn<Failure>("failure");

    QTest::newRow("read-only folder") << Failure::ReadOnlyFolder;
    QTest::newRow("disk full") << Failure::FileSizeLimit;
    QTest::newRow("contents cannot be encoded") << Failure::Unencodable;
}

void TestDfuFile::failedWriteKeepsExistingFile()
{
    QFETCH(Failure, failure);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString goodPath = dir.filePath("fw.dfu");
    QString error;
    QVERIFY2(twoChunkFile().write(goodPath, &error), qPrintable(error));
    const QByteArray good = readFile(goodPath);
    QCOMPARE(good.size(), 336);

    QString path;
    DfuFile file;
    if (!prepareFailure(failure, dir.path(), &path, &file))
        QSKIP("this failure cannot be staged here (running as root?)");
    QCOMPARE(path, goodPath);

    bool written = false;
    if (failure == Failure::FileSizeLimit) {
#ifdef Q_OS_UNIX
        FileSizeLimit limit(1000);
        QVERIFY(limit.active());
        written = file.write(path, &error);
#else
        QSKIP("needs a file size limit");
#endif
    } else {
        written = file.write(path, &error);
    }
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QVERIFY(!written);
    QVERIFY(!error.isEmpty());
    QCOMPARE(readFile(goodPath), good);
    QCOMPARE(entries(dir.path()), QStringList{"fw.dfu"});
}

void TestDfuFile::selfTest()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("test.dfu"), "stale contents of an older run"));

    QString error;
    QVERIFY2(DfuSelfTest::run(dir.path(), &error), qPrintable(error));
    QVERIFY(error.isEmpty());
    QCOMPARE(entries(dir.path()), QStringList{"test.dfu"});

    DfuFile read;
    QVERIFY2(DfuFile::read(dir.filePath("test.dfu"), &read, &error), qPrintable(error));
    QVERIFY(read == DfuSelfTest::sample());
    QCOMPARE(read.targets().size(), 1);
    QCOMPARE(read.targets().at(0).chunks.size(), 2);
}

void TestDfuFile::selfTestReportsFailure()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString folder = dir.filePath("absent");

    QString error;
    QVERIFY(!DfuSelfTest::run(folder, &error));
    QVERIFY2(error.startsWith("Самопроверка файла DFU не пройдена: Не удалось записать файл"),
             qPrintable(error));
    QVERIFY2(error.contains(QDir(folder).filePath("test.dfu")), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestDfuFile)
#include "tst_dfufile.moc"
