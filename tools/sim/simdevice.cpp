#include "simdevice.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <limits>

namespace Sim {

namespace {

const QByteArray crlf("\r\n");
const QByteArray okLine("OK\r\n");
const QByteArray refused("Unrecognize\r\n");

// Deterministic 64-bit mixer: the same key always gives the same value.
uint64_t mix(uint64_t x)
{
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

uint64_t mix(uint64_t a, uint64_t b, uint64_t c = 0, uint64_t d = 0)
{
    return mix(mix(mix(mix(a) ^ b) ^ c) ^ d);
}

// A decimal of digits only, at most `max`.
bool parseUnsigned(const QByteArray &text, qint64 max, qint64 *value)
{
    if (text.isEmpty() || text.size() > 10)
        return false;
    qint64 v = 0;
    for (char c : text) {
        if (c < '0' || c > '9')
            return false;
        v = v * 10 + (c - '0');
    }
    if (v > max)
        return false;
    *value = v;
    return true;
}

// A decimal with an optional leading minus that fits a signed 32-bit integer.
bool parseInt32(const QByteArray &text, int32_t *value)
{
    const bool negative = text.startsWith('-');
    qint64 magnitude = 0;
    const qint64 limit = negative ? qint64(std::numeric_limits<int32_t>::max()) + 1
                                  : qint64(std::numeric_limits<int32_t>::max());
    if (!parseUnsigned(negative ? text.mid(1) : text, limit, &magnitude))
        return false;
    *value = int32_t(negative ? -magnitude : magnitude);
    return true;
}

QByteArray num(qint64 value)
{
    return QByteArray::number(value);
}

QByteArray joinLine(const QVector<QByteArray> &fields)
{
    QByteArray line;
    for (int i = 0; i < fields.size(); ++i) {
        if (i > 0)
            line += '\t';
        line += fields.at(i);
    }
    return line + crlf;
}

} // namespace

SimDevice::SimDevice(Variant variant, int archiveSize, const QByteArray &firmware)
    : m_variant(variant)
    , m_units(unitsTable(variant))
{
    if (!firmware.isEmpty())
        m_units[0].version = firmware;
    for (const SettingDef &def : settingsTable(variant)) {
        m_keys.append(def.key);
        m_committed.append(def.value);
    }
    m_pending = m_committed;
    for (const UnitDef &unit : qAsConst(m_units)) {
        const int a = unit.address;
        for (int c = 1; c <= 16; ++c) {
            CustomChannel custom;
            if (c % 3 == 1) {
                custom.on = true;
                custom.rLoc = 100 + 10 * a + c;
                custom.lower = 5 * ((c - 1) / 3);
                custom.upper = custom.lower + 45;
            }
            m_custom.insert({a, c}, custom);
            Correction correction;
            correction.gain = 98 + (a + c) % 5;
            correction.phase = (c % 2 ? -1 : 1) * (10 * a + c);
            m_corrections.insert({a, c}, correction);
        }
    }
    buildArchive(archiveSize);
}

QByteArray SimDevice::reply(const QByteArray &command)
{
    if (command == "cfg")
        return versionsList();
    if (command == "get_cfg")
        return settingsText();
    if (command == "get_cust")
        return customText();
    if (command == "corr")
        return correctionsText();
    if (command == "dump")
        return m_archive;
    if (command.startsWith("srch_stats_"))
        return statistics(command);
    if (command == "set_cfg_save_1") {
        m_committed = m_pending;
        saveState();
        return okLine;
    }
    if (command.startsWith("set_cfg_"))
        return setSetting(command);
    if (command.startsWith("set_cust_"))
        return setCustom(command);
    if (command.startsWith("set_corr_"))
        return setCorrection(command);
    return refused;
}

QByteArray SimDevice::versionsList() const
{
    QByteArray text("Addr\tver\tEnabled\tTested\r\n");
    for (const UnitDef &unit : m_units) {
        text += joinLine({unit.address == 0 ? QByteArray("UKI") : num(unit.address),
                          unit.version,
                          unit.enabled,
                          unit.tested,
                          unit.ctStateA,
                          unit.ctStateB});
    }
    return text + okLine;
}

QByteArray SimDevice::settingsText() const
{
    QByteArray text;
    for (int i = 0; i < m_keys.size(); ++i)
        text += joinLine({m_keys.at(i), num(m_committed.at(i))});
    return text + okLine;
}

QByteArray SimDevice::customText() const
{
    QByteArray text("address\tchannel\tr_loc\tlower\tupper\r\n");
    for (auto it = m_custom.cbegin(); it != m_custom.cend(); ++it) {
        const CustomChannel &custom = it.value();
        if (custom.on) {
            text += joinLine({num(it.key().first),
                              num(it.key().second),
                              num(custom.rLoc),
                              num(custom.lower),
                              num(custom.upper)});
        } else {
            text += joinLine({num(it.key().first), num(it.key().second), "OFF"});
        }
    }
    return text + okLine;
}

QByteArray SimDevice::correctionsText() const
{
    QByteArray text("address\tchannel\tgain*100\t phase*10\r\n");
    for (auto it = m_corrections.cbegin(); it != m_corrections.cend(); ++it) {
        text += joinLine({num(it.key().first),
                          num(it.key().second),
                          num(it.value().gain),
                          num(it.value().phase)});
    }
    return text + okLine;
}

bool SimDevice::hasAddress(int address) const
{
    for (const UnitDef &unit : m_units) {
        if (unit.address == address)
            return true;
    }
    return false;
}

// srch_stats_LEVEL_ADDRESS_CHANNEL_INDEX, channel 0-based. Level 0 holds 8 measurements,
// level 1 holds 16 for the monitor and 80 for a locator.
QByteArray SimDevice::statistics(const QByteArray &command) const
{
    const QList<QByteArray> parts = command.split('_');
    qint64 level = 0;
    qint64 address = 0;
    qint64 channel = 0;
    qint64 index = 0;
    if (parts.size() != 6 || !parseUnsigned(parts.at(2), 1, &level)
        || !parseUnsigned(parts.at(3), 254, &address) || !parseUnsigned(parts.at(4), 15, &channel)
        || !parseUnsigned(parts.at(5), 79, &index) || !hasAddress(int(address))) {
        return refused;
    }
    const qint64 limit = level == 0 ? 7 : address == 0 ? 15 : 79;
    if (index > limit)
        return refused;

    const uint64_t channelHash = mix(uint64_t(level), uint64_t(address), uint64_t(channel));
    const uint64_t h = mix(channelHash, uint64_t(index));
    const double v1 = double(20000 + h % 1500) / 100000.0;
    const double v2 = -double(27000 + (h >> 16) % 1500) / 100000.0;
    double v3 = 0;
    if (index % 7 == 3)
        v3 = 1000.0 + double((h >> 32) % 5000) / 10.0;
    else
        v3 = double(20 + channelHash % 400) + double((h >> 24) % 50) / 10.0;
    return QByteArray::number(v1, 'g', 6) + '\t' + QByteArray::number(v2, 'g', 6) + '\t'
           + QByteArray::number(v3, 'g', 6) + crlf + okLine;
}

// set_cfg_KEY_VALUE: any integer for a key of this device; committed by set_cfg_save_1.
QByteArray SimDevice::setSetting(const QByteArray &command)
{
    const QByteArray rest = command.mid(int(qstrlen("set_cfg_")));
    const int split = rest.lastIndexOf('_');
    if (split <= 0)
        return refused;
    const int i = m_keys.indexOf(rest.left(split));
    int32_t value = 0;
    if (i < 0 || !parseInt32(rest.mid(split + 1), &value))
        return refused;
    m_pending[i] = value;
    return okLine;
}

// set_cust_ADDRESS_CHANNEL_LOWER_UPPER_RLOC; bounds 0..75 in steps of 5, RLOC 0 switches off.
QByteArray SimDevice::setCustom(const QByteArray &command)
{
    const QList<QByteArray> parts = command.split('_');
    qint64 address = 0;
    qint64 channel = 0;
    qint64 lower = 0;
    qint64 upper = 0;
    qint64 rLoc = 0;
    if (parts.size() != 7 || !parseUnsigned(parts.at(2), 254, &address)
        || !parseUnsigned(parts.at(3), 16, &channel) || channel < 1
        || !parseUnsigned(parts.at(4), 75, &lower) || lower % 5 != 0
        || !parseUnsigned(parts.at(5), 75, &upper) || upper % 5 != 0
        || !parseUnsigned(parts.at(6), 999, &rLoc) || !hasAddress(int(address))) {
        return refused;
    }
    CustomChannel custom;
    if (rLoc != 0) {
        custom.on = true;
        custom.rLoc = int(rLoc);
        custom.lower = int(lower);
        custom.upper = int(upper);
    }
    m_custom.insert({int(address), int(channel)}, custom);
    saveState();
    return okLine;
}

// set_corr_ADDRESS_CHANNEL_GAIN_PHASE; the phase arrives as an unsigned 16-bit number.
QByteArray SimDevice::setCorrection(const QByteArray &command)
{
    const QList<QByteArray> parts = command.split('_');
    qint64 address = 0;
    qint64 channel = 0;
    qint64 gain = 0;
    qint64 phase = 0;
    if (parts.size() != 6 || !parseUnsigned(parts.at(2), 254, &address)
        || !parseUnsigned(parts.at(3), 16, &channel) || channel < 1
        || !parseUnsigned(parts.at(4), 99900, &gain) || gain < 1
        || !parseUnsigned(parts.at(5), 65535, &phase) || !hasAddress(int(address))) {
        return refused;
    }
    Correction correction;
    correction.gain = int(gain);
    correction.phase = int(int16_t(uint16_t(phase)));
    m_corrections.insert({int(address), int(channel)}, correction);
    saveState();
    return okLine;
}

// Newest event first, as the device keeps its ring. The first events run once through every
// event code; after that every third event is another code and the rest are periodic
// measurements.
void SimDevice::buildArchive(int size)
{
    const QVector<EventDef> &events = eventTable();
    const QList<QByteArray> version = m_units.at(0).version.split('.');
    QVector<int> locators;
    for (const UnitDef &unit : qAsConst(m_units)) {
        if (unit.address != 0)
            locators.append(unit.address);
    }
    if (locators.isEmpty())
        locators.append(1);
    const UnitDef &monitor = m_units.at(0);
    const UnitDef &locator = m_units.size() > 1 ? m_units.at(1) : m_units.at(0);

    QDateTime when(QDate(2025, 3, 14), QTime(16, 45, 12), Qt::UTC);
    m_archive = "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-4\tValue-5\tValue-6"
                "\tValue-7\tValue-8\r\n";
    for (int i = 0; i < size; ++i) {
        const uint64_t h = mix(uint64_t(i), 0x4b49u);
        int code = 1;
        if (i < events.size())
            code = events.at(i).code;
        else if (i % 3 == 0)
            code = events.at((i / 3) % events.size()).code;
        const char *identifier = "";
        for (const EventDef &def : events) {
            if (def.code == code)
                identifier = def.identifier;
        }
        auto n = [h](int shift, int base, int span) {
            return num(base + qint64((h >> shift) % uint64_t(span)));
        };
        const QByteArray locatorAddress = num(locators.at(int(h % uint64_t(locators.size()))));
        QVector<QByteArray> values;
        switch (code) {
        case 1: {
            const int rPlus = 100 + int((h >> 8) % 900);
            const int rMinus = 100 + int((h >> 20) % 900);
            const int uab = 215 + int((h >> 32) % 20);
            const int uPlus = uab / 2 + int((h >> 40) % 15);
            values = {num(rPlus * rMinus / (rPlus + rMinus)),
                      num(rPlus),
                      num(rMinus),
                      num(uab),
                      num(uPlus),
                      num(uab - uPlus),
                      n(48, 150, 100),
                      "0"};
            break;
        }
        case 16:
        case 17:
        case 18:
        case 46: {
            const int rPlus = 10 + int((h >> 8) % 60);
            const int rMinus = 200 + int((h >> 20) % 700);
            values = {num(rPlus * rMinus / (rPlus + rMinus)),
                      num(rPlus),
                      num(rMinus),
                      n(32, 60, 60),
                      n(40, 120, 60),
                      "0",
                      "0",
                      "0"};
            break;
        }
        case 2:
        case 5:
            values = {locatorAddress, "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 6:
        case 7:
        case 8:
            values = {n(8, 1, 31), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 9:
            values = {"250", "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 3:
            // Bit-string events carry four masks and nothing else: 8 fields in all.
            values = {"1111011100000000", monitor.ctStateB, monitor.enabled, monitor.tested};
            break;
        case 4:
            values = {locator.ctStateA, locator.ctStateB, locator.enabled, locator.tested};
            break;
        case 10:
            values = {n(8, 20, 400), n(20, 200, 2000), "0", "0", "0", "0", "0", "0"};
            break;
        case 11: {
            const QDateTime started = when.addSecs(-30 - qint64((h >> 40) % 90));
            values = {n(8, 5, 300),
                      n(20, 0, 300),
                      n(32, 100, 900),
                      locatorAddress,
                      n(44, 1, 16),
                      "0",
                      started.toString(QStringLiteral("dd.MM.yy")).toLatin1(),
                      started.toString(QStringLiteral("hh:mm:ss")).toLatin1()};
            break;
        }
        case 21:
        case 22:
        case 40:
        case 41:
            // Negative currents travel as 16-bit two's complement.
            values = {n(8, 65536 - 200, 200), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 23:
        case 24:
        case 42:
        case 43:
            values = {n(8, 2150, 300), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 25:
        case 26:
        case 44:
        case 45:
            values = {n(8, 10, 90), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 28:
            values = {n(8, 1, 7),
                      version.value(0, "0"),
                      version.value(1, "0"),
                      version.value(2, "0"),
                      "0",
                      "0",
                      "0",
                      "0"};
            break;
        case 29:
        case 34:
            values = {n(8, 3, 18), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 30:
        case 35:
            values = {n(8, 400, 150), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 31:
        case 36:
            values = {n(8, 0, 120), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 32:
        case 33:
        case 37:
        case 38:
            values = {n(8, 5, 60), "0", "0", "0", "0", "0", "0", "0"};
            break;
        case 128:
        case 129:
            values = {n(8, 0, 65536), n(24, 0, 65536), n(40, 0, 65536), "0", "0", "0", "0", "0"};
            break;
        default:
            values = {"0", "0", "0", "0", "0", "0", "0", "0"};
            break;
        }
        QVector<QByteArray> fields = {num(i + 1),
                                      when.toString(QStringLiteral("dd.MM.yy")).toLatin1(),
                                      when.toString(QStringLiteral("hh:mm:ss")).toLatin1(),
                                      identifier};
        fields += values;
        m_archive += joinLine(fields);
        when = when.addSecs(-300 - qint64(h % 3300));
    }
    m_archive += okLine;
}

bool SimDevice::loadState(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject()) {
        *error = QStringLiteral("%1 is not a state file: %2").arg(path, parseError.errorString());
        return false;
    }
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("variant")).toString().toLatin1() != variantKey(m_variant)) {
        *error = QStringLiteral("%1 holds the state of variant \"%2\"")
                         .arg(path, root.value(QStringLiteral("variant")).toString());
        return false;
    }
    const QJsonObject settings = root.value(QStringLiteral("settings")).toObject();
    for (int i = 0; i < m_keys.size(); ++i) {
        const QJsonValue value = settings.value(QString::fromLatin1(m_keys.at(i)));
        if (value.isDouble())
            m_committed[i] = int32_t(value.toInt());
    }
    m_pending = m_committed;
    const QJsonArray custom = root.value(QStringLiteral("custom")).toArray();
    for (const QJsonValue &row : custom) {
        const QJsonArray r = row.toArray();
        const ChannelKey key(r.at(0).toInt(), r.at(1).toInt());
        if (!m_custom.contains(key))
            continue;
        CustomChannel channel;
        if (r.size() == 5) {
            channel.on = true;
            channel.rLoc = r.at(2).toInt();
            channel.lower = r.at(3).toInt();
            channel.upper = r.at(4).toInt();
        }
        m_custom.insert(key, channel);
    }
    const QJsonArray corrections = root.value(QStringLiteral("corrections")).toArray();
    for (const QJsonValue &row : corrections) {
        const QJsonArray r = row.toArray();
        const ChannelKey key(r.at(0).toInt(), r.at(1).toInt());
        if (r.size() != 4 || !m_corrections.contains(key))
            continue;
        m_corrections.insert(key, {r.at(2).toInt(), r.at(3).toInt()});
    }
    return true;
}

// One JSON object: the committed settings by key, custom channels as [address, channel] for
// an OFF channel or [address, channel, rloc, lower, upper], corrections as
// [address, channel, gain*100, phase*10].
void SimDevice::saveState() const
{
    if (m_statePath.isEmpty())
        return;
    QJsonObject settings;
    for (int i = 0; i < m_keys.size(); ++i)
        settings.insert(QString::fromLatin1(m_keys.at(i)), m_committed.at(i));
    QJsonArray custom;
    for (auto it = m_custom.cbegin(); it != m_custom.cend(); ++it) {
        QJsonArray row{it.key().first, it.key().second};
        if (it.value().on) {
            row.append(it.value().rLoc);
            row.append(it.value().lower);
            row.append(it.value().upper);
        }
        custom.append(row);
    }
    QJsonArray corrections;
    for (auto it = m_corrections.cbegin(); it != m_corrections.cend(); ++it) {
        corrections.append(
                QJsonArray{it.key().first, it.key().second, it.value().gain, it.value().phase});
    }
    QJsonObject root;
    root.insert(QStringLiteral("variant"), QString::fromLatin1(variantKey(m_variant)));
    root.insert(QStringLiteral("settings"), settings);
    root.insert(QStringLiteral("custom"), custom);
    root.insert(QStringLiteral("corrections"), corrections);
    QSaveFile file(m_statePath);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(root).toJson());
        if (file.commit())
            return;
    }
    qWarning("kiranto-sim: cannot write state file %s", qPrintable(m_statePath));
}

} // namespace Sim
