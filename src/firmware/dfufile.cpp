#include "dfufile.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <array>
#include <limits>

namespace {

constexpr char FileSignature[] = "DfuSe";
constexpr char TargetSignature[] = "Target";
constexpr char SuffixSignature[] = "UFD";
constexpr quint8 FileVersion = 0x01;
constexpr quint32 TargetNamed = 1;
constexpr quint64 Max32 = std::numeric_limits<quint32>::max();
// Largest QByteArray Qt 5 can allocate, with room for its header.
constexpr quint64 MaxInMemory = std::numeric_limits<int>::max() - 64;
// Bytes collected before each write to the file.
constexpr int WriteBlockSize = 1 << 20;

const std::array<quint32, 256> &crcTable()
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t{};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int bit = 0; bit < 8; ++bit)
                c = (c & 1) ? (c >> 1) ^ 0xEDB88320u : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    return table;
}

quint32 crcUpdate(quint32 crc, const char *data, qint64 size)
{
    const auto &table = crcTable();
    for (qint64 i = 0; i < size; ++i)
        crc = table[(crc ^ static_cast<quint8>(data[i])) & 0xFF] ^ (crc >> 8);
    return crc;
}

void setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

QString hex32(quint32 value)
{
    return QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper();
}

quint64 targetSize(const DfuTarget &target)
{
    quint64 size = 0;
    for (const DfuChunk &chunk : target.chunks)
        size += DfuFile::ChunkHeaderSize + quint64(chunk.data.size());
    return size;
}

quint64 imageSize(const QVector<DfuTarget> &targets)
{
    quint64 size = DfuFile::PrefixSize;
    for (const DfuTarget &target : targets)
        size += DfuFile::TargetPrefixSize + targetSize(target);
    return size;
}

// Collects the file piece by piece, keeping the CRC of everything passed so far.
template<typename Sink>
class Encoder
{
public:
    explicit Encoder(Sink sink)
        : m_sink(sink)
    {}

    bool bytes(const char *data, qint64 size)
    {
        m_crc = crcUpdate(m_crc, data, size);
        return m_sink(data, size);
    }
    bool u8(quint8 value) { return bytes(reinterpret_cast<const char *>(&value), 1); }
    bool u16(quint16 value)
    {
        char le[2];
        qToLittleEndian(value, le);
        return bytes(le, sizeof le);
    }
    bool u32(quint32 value)
    {
        char le[4];
        qToLittleEndian(value, le);
        return bytes(le, sizeof le);
    }
    quint32 crc() const { return m_crc; }

private:
    Sink m_sink;
    quint32 m_crc = 0xFFFFFFFF;
};

// Expects contents that validate() accepted. Returns false as soon as the sink does.
template<typename Sink>
bool encode(const DfuFile &file, Sink sink)
{
    Encoder<Sink> out(sink);
    bool ok = out.bytes(FileSignature, 5) && out.u8(FileVersion)
              && out.u32(quint32(imageSize(file.targets())))
              && out.u8(quint8(file.targets().size()));
    for (const DfuTarget &target : file.targets()) {
        QByteArray name = target.name.toUtf8();
        name.append(DfuFile::NameFieldSize - name.size(), '\0');
        ok = ok && out.bytes(TargetSignature, 6) && out.u8(quint8(target.alternateSetting))
             && out.u32(TargetNamed) && out.bytes(name.constData(), name.size())
             && out.u32(quint32(targetSize(target))) && out.u32(quint32(target.chunks.size()));
        for (const DfuChunk &chunk : target.chunks) {
            ok = ok && out.u32(chunk.address) && out.u32(quint32(chunk.data.size()))
                 && out.bytes(chunk.data.constData(), chunk.data.size());
        }
    }
    ok = ok && out.u16(file.deviceVersion()) && out.u16(file.productId())
         && out.u16(file.vendorId()) && out.u16(DfuFile::DfuVersion)
         && out.bytes(SuffixSignature, 3) && out.u8(DfuFile::SuffixSize);
    return ok && out.u32(out.crc());
}

// Reads little-endian fields from a byte array; the caller checks left() before each take.
class Decoder
{
public:
    Decoder(const QByteArray &bytes, int end)
        : m_data(bytes.constData())
        , m_end(end)
    {}

    int pos() const { return m_pos; }
    int left() const { return m_end - m_pos; }
    const char *take(int size)
    {
        const char *p = m_data + m_pos;
        m_pos += size;
        return p;
    }
    quint8 u8() { return quint8(*take(1)); }
    quint32 u32() { return qFromLittleEndian<quint32>(take(4)); }

private:
    const char *m_data;
    int m_pos = 0;
    int m_end;
};

} // namespace

bool operator==(const DfuChunk &a, const DfuChunk &b)
{
    return a.address == b.address && a.data == b.data;
}

bool operator==(const DfuTarget &a, const DfuTarget &b)
{
    return a.name == b.name && a.alternateSetting == b.alternateSetting && a.chunks == b.chunks;
}

bool operator==(const DfuFile &a, const DfuFile &b)
{
    return a.vendorId() == b.vendorId() && a.productId() == b.productId()
           && a.deviceVersion() == b.deviceVersion() && a.targets() == b.targets();
}

DfuFile::DfuFile(quint16 vendorId, quint16 productId, quint16 deviceVersion)
    : m_vendorId(vendorId)
    , m_productId(productId)
    , m_deviceVersion(deviceVersion)
{}

int DfuFile::addTarget(const QString &name, int alternateSetting)
{
    DfuTarget target;
    target.name = name;
    target.alternateSetting = alternateSetting;
    m_targets.append(target);
    return m_targets.size() - 1;
}

void DfuFile::addChunk(int target, quint32 address, const QByteArray &data)
{
    Q_ASSERT(target >= 0 && target < m_targets.size());
    m_targets[target].chunks.append(DfuChunk{address, data});
}

quint32 DfuFile::crc32(const QByteArray &data)
{
    return crcUpdate(0xFFFFFFFF, data.constData(), data.size());
}

bool DfuFile::validate(QString *error) const
{
    if (m_targets.size() > MaxTargets) {
        setError(error,
                 tr("В файле %1 целей, допускается не более %2.")
                         .arg(m_targets.size())
                         .arg(MaxTargets));
        return false;
    }
    for (const DfuTarget &target : m_targets) {
        if (target.alternateSetting < 0 || target.alternateSetting > 255) {
            setError(error,
                     tr("Альтернативная настройка цели «%1» вне диапазона 0..255: %2.")
                             .arg(target.name)
                             .arg(target.alternateSetting));
            return false;
        }
        const QByteArray name = target.name.toUtf8();
        if (name.size() > MaxNameBytes) {
            setError(error,
                     tr("Имя цели «%1» занимает %2 байт, допускается не более %3.")
                             .arg(target.name)
                             .arg(name.size())
                             .arg(MaxNameBytes));
            return false;
        }
        if (name.contains('\0')) {
            setError(error, tr("Имя цели «%1» содержит нулевой символ.").arg(target.name));
            return false;
        }
        for (const DfuChunk &chunk : target.chunks) {
            if (quint64(chunk.address) + quint64(chunk.data.size()) > Max32 + 1) {
                setError(error,
                         tr("Блок цели «%1» по адресу 0x%2 (%3 байт) выходит за 4 ГиБ "
                            "адресного пространства.")
                                 .arg(target.name, hex32(chunk.address))
                                 .arg(chunk.data.size()));
                return false;
            }
        }
        if (targetSize(target) > Max32) {
            setError(error, tr("Размер цели «%1» превышает 4 ГиБ.").arg(target.name));
            return false;
        }
    }
    if (imageSize(m_targets) > Max32) {
        setError(error, tr("Размер файла превышает 4 ГиБ."));
        return false;
    }
    return true;
}

bool DfuFile::toBytes(QByteArray *bytes, QString *error) const
{
    if (!validate(error))
        return false;
    const quint64 total = imageSize(m_targets) + SuffixSize;
    if (total > MaxInMemory) {
        setError(error, tr("Файл в %1 байт слишком велик для сборки в памяти.").arg(total));
        return false;
    }
    QByteArray out;
    out.reserve(int(total));
    encode(*this, [&out](const char *data, qint64 size) {
        out.append(data, int(size));
        return true;
    });
    *bytes = out;
    return true;
}

bool DfuFile::write(const QString &path, QString *error) const
{
    if (!validate(error))
        return false;
    // Unbuffered, and written in a loop: Qt 5's own write buffer would hide a full disk from
    // commit(), and a short write only tells its reason on the next attempt.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        setError(error, tr("Не удалось записать файл %1: %2.").arg(path, file.errorString()));
        return false;
    }
    QByteArray pending;
    const auto writePending = [&file, &pending] {
        const char *data = pending.constData();
        qint64 left = pending.size();
        while (left > 0) {
            const qint64 written = file.write(data, left);
            if (written <= 0)
                return false;
            data += written;
            left -= written;
        }
        pending.clear();
        return true;
    };
    const bool encoded = encode(*this, [&pending, &writePending](const char *data, qint64 size) {
        pending.append(data, int(size));
        return pending.size() < WriteBlockSize || writePending();
    });
    if (!encoded || !writePending() || !file.commit()) {
        setError(error, tr("Не удалось записать файл %1: %2.").arg(path, file.errorString()));
        return false;
    }
    return true;
}

bool DfuFile::fromBytes(const QByteArray &bytes, DfuFile *file, QString *error)
{
    const auto fail = [error](const QString &reason) {
        setError(error, tr("Файл DFU повреждён: %1.").arg(reason));
        return false;
    };
    if (bytes.size() < PrefixSize + SuffixSize)
        return fail(tr("файл короче %1 байт").arg(PrefixSize + SuffixSize));

    const char *suffix = bytes.constData() + bytes.size() - SuffixSize;
    if (QByteArray(suffix + 8, 3) != SuffixSignature || quint8(suffix[11]) != SuffixSize)
        return fail(tr("нет суффикса DFU"));
    const quint16 dfuVersion = qFromLittleEndian<quint16>(suffix + 6);
    if (dfuVersion != DfuVersion)
        return fail(tr("версия DFU 0x%1 вместо 0x011A").arg(dfuVersion, 4, 16, QLatin1Char('0')));
    const quint32 storedCrc = qFromLittleEndian<quint32>(suffix + 12);
    const quint32 crc = crcUpdate(0xFFFFFFFF, bytes.constData(), bytes.size() - 4);
    if (storedCrc != crc) {
        return fail(tr("контрольная сумма 0x%1 в файле, вычислена 0x%2")
                            .arg(hex32(storedCrc), hex32(crc)));
    }

    const int end = bytes.size() - SuffixSize;
    Decoder in(bytes, end);
    if (QByteArray(in.take(5), 5) != FileSignature)
        return fail(tr("нет подписи DfuSe"));
    const quint8 version = in.u8();
    if (version != FileVersion)
        return fail(tr("версия формата %1 вместо 1").arg(version));
    const quint32 image = in.u32();
    if (image != quint32(end))
        return fail(
                tr("размер образа %1 не равен размеру файла без суффикса %2").arg(image).arg(end));

    DfuFile result(qFromLittleEndian<quint16>(suffix + 4),
                   qFromLittleEndian<quint16>(suffix + 2),
                   qFromLittleEndian<quint16>(suffix));
    const int targetCount = in.u8();
    for (int t = 0; t < targetCount; ++t) {
        const int number = t + 1;
        if (in.left() < TargetPrefixSize)
            return fail(tr("цель %1 обрывается на заголовке").arg(number));
        if (QByteArray(in.take(6), 6) != TargetSignature)
            return fail(tr("у цели %1 нет подписи Target").arg(number));
        const int alternate = in.u8();
        const quint32 named = in.u32();
        const char *nameField = in.take(NameFieldSize);
        const int nameLength = int(qstrnlen(nameField, NameFieldSize));
        const QString name = named ? QString::fromUtf8(nameField, nameLength) : QString();
        const quint32 size = in.u32();
        const quint32 chunkCount = in.u32();
        if (size > quint32(in.left()))
            return fail(
                    tr("цель %1 размером %2 байт выходит за конец файла").arg(number).arg(size));
        const int targetEnd = in.pos() + int(size);
        const int index = result.addTarget(name, alternate);
        for (quint32 c = 0; c < chunkCount; ++c) {
            if (targetEnd - in.pos() < ChunkHeaderSize)
                return fail(tr("блок %1 цели %2 выходит за её размер").arg(c + 1).arg(number));
            const quint32 address = in.u32();
            const quint32 chunkSize = in.u32();
            if (chunkSize > quint32(targetEnd - in.pos()))
                return fail(tr("блок %1 цели %2 выходит за её размер").arg(c + 1).arg(number));
            result.addChunk(index, address, QByteArray(in.take(int(chunkSize)), int(chunkSize)));
        }
        if (in.pos() != targetEnd) {
            return fail(tr("размер цели %1 (%2 байт) не равен сумме её блоков (%3 байт)")
                                .arg(number)
                                .arg(size)
                                .arg(size - quint32(targetEnd - in.pos())));
        }
    }
    if (in.left() != 0)
        return fail(tr("после целей %1 лишних байт").arg(in.left()));

    *file = result;
    return true;
}

bool DfuFile::read(const QString &path, DfuFile *file, QString *error)
{
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        setError(error, tr("Не удалось прочитать файл %1: %2.").arg(path, in.errorString()));
        return false;
    }
    return fromBytes(in.readAll(), file, error);
}
