#include "dfuselftest.h"

#include "firmware/dfufile.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

namespace {

// The ids of an STM32 system bootloader, which is what the devices enumerate as in DFU mode.
constexpr quint16 SampleVendor = 0x0483;
constexpr quint16 SampleProduct = 0xDF11;
constexpr quint16 SampleDevice = 0x0200;

QByteArray pattern(int size, int seed)
{
    QByteArray data(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        data[i] = char((i * 7 + seed) & 0xFF);
    return data;
}

} // namespace

DfuFile DfuSelfTest::sample()
{
    DfuFile file(SampleVendor, SampleProduct, SampleDevice);
    const int target = file.addTarget(QStringLiteral("Internal Flash"), 0);
    file.addChunk(target, 0x08000000, pattern(1024, 3));
    file.addChunk(target, 0x08004000, pattern(300, 0x5A));
    return file;
}

bool DfuSelfTest::run(const QString &folder, QString *error)
{
    const auto fail = [error](const QString &reason) {
        if (error)
            *error = tr("Самопроверка файла DFU не пройдена: %1").arg(reason);
        return false;
    };
    const DfuFile written = sample();
    const QString path = QDir(folder).filePath(fileName());
    QString reason;
    if (!written.write(path, &reason))
        return fail(reason);

    QFile in(path);
    if (!in.open(QIODevice::ReadOnly))
        return fail(tr("не удалось прочитать файл %1: %2.").arg(path, in.errorString()));
    const QByteArray bytes = in.readAll();

    QByteArray expected;
    if (!written.toBytes(&expected, &reason))
        return fail(reason);
    if (bytes.size() != expected.size())
        return fail(tr("в файле %1 байт вместо %2.").arg(bytes.size()).arg(expected.size()));
    if (!bytes.startsWith(QByteArrayLiteral("DfuSe\x01"))
        || qFromLittleEndian<quint32>(bytes.constData() + 6) != quint32(bytes.size() - 16)
        || quint8(bytes.at(10)) != 1) {
        return fail(tr("неверный префикс файла."));
    }
    const quint32 crc = qFromLittleEndian<quint32>(bytes.constData() + bytes.size() - 4);
    if (crc != DfuFile::crc32(bytes.left(bytes.size() - 4)))
        return fail(tr("неверная контрольная сумма."));

    DfuFile readBack;
    if (!DfuFile::fromBytes(bytes, &readBack, &reason))
        return fail(reason);
    if (readBack != written)
        return fail(tr("прочитанное содержимое отличается от записанного."));
    return true;
}
