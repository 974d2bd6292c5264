#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QVector>

// One run of firmware bytes loaded at a device address.
struct DfuChunk
{
    quint32 address = 0;
    QByteArray data;
};

bool operator==(const DfuChunk &a, const DfuChunk &b);
inline bool operator!=(const DfuChunk &a, const DfuChunk &b)
{
    return !(a == b);
}

// A named memory of the device, selected by its USB alternate setting.
struct DfuTarget
{
    QString name;             // stored as UTF-8, at most DfuFile::MaxNameBytes bytes
    int alternateSetting = 0; // 0..255
    QVector<DfuChunk> chunks;
};

bool operator==(const DfuTarget &a, const DfuTarget &b);
inline bool operator!=(const DfuTarget &a, const DfuTarget &b)
{
    return !(a == b);
}

// A DfuSe firmware file: named targets of address/bytes chunks, closed by a DFU suffix with the
// USB ids and a CRC-32. All multi-byte fields are little-endian.
class DfuFile
{
    Q_DECLARE_TR_FUNCTIONS(DfuFile)

public:
    static constexpr int PrefixSize = 11;
    static constexpr int TargetPrefixSize = 274;
    static constexpr int ChunkHeaderSize = 8;
    static constexpr int SuffixSize = 16;
    static constexpr int NameFieldSize = 255;
    static constexpr int MaxNameBytes = NameFieldSize - 1; // one NUL always ends the name
    static constexpr int MaxTargets = 255;
    static constexpr quint16 DfuVersion = 0x011A;

    DfuFile() = default;
    DfuFile(quint16 vendorId, quint16 productId, quint16 deviceVersion);

    quint16 vendorId() const { return m_vendorId; }
    quint16 productId() const { return m_productId; }
    quint16 deviceVersion() const { return m_deviceVersion; } // bcdDevice
    void setVendorId(quint16 id) { m_vendorId = id; }
    void setProductId(quint16 id) { m_productId = id; }
    void setDeviceVersion(quint16 bcd) { m_deviceVersion = bcd; }

    // Returns the index of the new target, for addChunk().
    int addTarget(const QString &name, int alternateSetting);
    void addChunk(int target, quint32 address, const QByteArray &data);
    const QVector<DfuTarget> &targets() const { return m_targets; }

    // Both return false with a user-readable reason in *error (if given) when the contents
    // cannot be encoded; write() also when the file cannot be written. A failed write()
    // leaves any existing file at path as it was.
    bool toBytes(QByteArray *bytes, QString *error = nullptr) const;
    bool write(const QString &path, QString *error = nullptr) const;

    // Parse a whole file, checking every size, signature and the CRC.
    static bool fromBytes(const QByteArray &bytes, DfuFile *file, QString *error = nullptr);
    static bool read(const QString &path, DfuFile *file, QString *error = nullptr);

    // CRC-32 as the DFU suffix stores it: reflected polynomial 0xEDB88320, initial value
    // 0xFFFFFFFF, no final xor (the bitwise NOT of the usual zlib CRC-32).
    static quint32 crc32(const QByteArray &data);

private:
    bool validate(QString *error) const;

    quint16 m_vendorId = 0;
    quint16 m_productId = 0;
    quint16 m_deviceVersion = 0;
    QVector<DfuTarget> m_targets;
};

bool operator==(const DfuFile &a, const DfuFile &b);
inline bool operator!=(const DfuFile &a, const DfuFile &b)
{
    return !(a == b);
}
