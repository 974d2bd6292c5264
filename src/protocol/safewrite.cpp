#include "safewrite.h"

#include "app/programsettings.h"
#include "files/csvfiles.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "protocol/uki.h"
#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QTimer>

namespace {

// Mismatches named in the popup; the log has all of them.
constexpr int kShownMismatches = 3;
// Steps of a channel's bounds on the wire: the device keeps steps, the command carries units.
constexpr uint kUnitsPerStep = 5;

// The device's settings reply as its settings record writes it.
QStringList settingsLines(int variant, const QStringList &reply)
{
    if (variant == DeviceVariant::UkiKiranto) {
        UkiSettings record;
        record.fromLines(reply);
        return record.toLines();
    }
    UkpsSettings record;
    record.fromLines(reply);
    return record.toLines();
}

// Settings lines as "KEY" -> "value".
QMap<QString, QString> settingsValues(const QStringList &lines)
{
    QMap<QString, QString> values;
    for (const QString &line : lines)
        values.insert(line.section(QLatin1Char('\t'), 0, 0), line.section(QLatin1Char('\t'), 1));
    return values;
}

QString correctionKey(uint address, uint channel)
{
    return QStringLiteral("corr_%1_%2").arg(address).arg(channel);
}

QString channelKey(uint address, uint channel)
{
    return QStringLiteral("cust_%1_%2").arg(address).arg(channel);
}

} // namespace

QStringList SafeWriteResult::mismatchTexts() const
{
    QStringList texts;
    for (const Mismatch &mismatch : mismatches)
        texts << tr("%1 (записано %2, прочитано %3)")
                         .arg(mismatch.key, mismatch.written, mismatch.read);
    return texts;
}

QString SafeWriteResult::message() const
{
    const QString backup = tr("Резервная копия: %1").arg(QDir::toNativeSeparators(backupFolder));
    switch (outcome) {
    case Verified:
        return tr("[[OK]]Записано и проверено: %1 из %1").arg(checked) + QLatin1Char('\n') + backup;
    case Cancelled:
        return tr("[[WARN]]Операция прервана");
    case BackupFailed:
        return tr("[[ERR]]Резервная копия не сохранена, запись не выполнена: %1")
                .arg(fileError.isEmpty() ? deviceError : fileError);
    case CheckFailed:
        return tr("[[ERR]]Проверка записи не выполнена: %1").arg(deviceError) + QLatin1Char('\n')
               + backup;
    case NotTaken:
        break;
    }
    QStringList lines;
    if (!deviceError.isEmpty())
        lines << tr("[[ERR]]Ошибка записи: %1").arg(deviceError);
    if (!mismatches.isEmpty()) {
        QString shown = mismatchTexts().mid(0, kShownMismatches).join(QLatin1String(", "));
        if (mismatches.size() > kShownMismatches)
            shown += QChar(0x2026);
        lines << (lines.isEmpty() ? QStringLiteral("[[ERR]]") : QString())
                         + tr("Устройство не приняло: %1").arg(shown);
    }
    lines << backup;
    return lines.join(QLatin1Char('\n'));
}

SafeWrite::SafeWrite(Uki *uki, QObject *parent)
    : QObject(parent)
    , m_uki(uki)
{
    qRegisterMetaType<SafeWriteResult>();
    connect(m_uki, &Uki::configReadDone, this, &SafeWrite::readDone);
    connect(m_uki, &Uki::configWriteDone, this, &SafeWrite::writeDone);
}

bool SafeWrite::writeSettings(const QStringList &commands)
{
    if (isBusy())
        return false;
    m_commands = commands;
    return begin(Kind::Settings);
}

bool SafeWrite::writeCorrections(std::shared_ptr<CtCorrections> corrections)
{
    bool modified = false;
    for (int row = 0; corrections && row < corrections->rowCount(); ++row)
        modified = modified || corrections->isModified(row);
    if (!modified || isBusy())
        return false;
    m_corrections = std::move(corrections);
    return begin(Kind::Corrections);
}

bool SafeWrite::writeChannel(uint address, uint channel, uint low, uint high, uint rloc)
{
    if (isBusy())
        return false;
    const uint values[] = {address, channel, low, high, rloc};
    std::copy(std::begin(values), std::end(values), m_channel);
    return begin(Kind::Channel);
}

bool SafeWrite::isBusy() const
{
    return isRunning() || m_uki->isBusy();
}

bool SafeWrite::begin(Kind kind)
{
    m_kind = kind;
    m_result = SafeWriteResult();
    m_result.block = blockFlag();
    m_expected.clear();
    m_cancelled = false;
    m_step = Backup;
    // Told before the engine's own start, so that every run of the chain finds the caller ready.
    emit started();
    if (!m_uki->readData(blockFlag() | Uki::ReadIdentification)) {
        m_result.deviceError = tr("устройство занято");
        finish(SafeWriteResult::BackupFailed);
    }
    return true;
}

uint32_t SafeWrite::blockFlag() const
{
    switch (m_kind) {
    case Kind::Settings:
        return Uki::ReadSettings;
    case Kind::Corrections:
        return Uki::ReadCorrections;
    case Kind::Channel:
        return Uki::ReadCustomChannels;
    }
    return 0;
}

void SafeWrite::cancel()
{
    if (!isRunning())
        return;
    m_cancelled = true;
    m_uki->cancel();
}

void SafeWrite::readDone(bool success, uint32_t)
{
    if (m_step != Backup && m_step != ReadBack)
        return;
    if (m_cancelled || m_uki->wasCancelled()) {
        finish(SafeWriteResult::Cancelled);
        return;
    }
    if (!success) {
        if (m_result.deviceError.isEmpty())
            m_result.deviceError = m_uki->lastError();
        finish(m_step == Backup ? SafeWriteResult::BackupFailed : SafeWriteResult::CheckFailed);
        return;
    }
    if (m_step == Backup)
        saveBackup();
    else
        compare();
}

void SafeWrite::saveBackup()
{
    const int variant = DeviceVariant::fromFirmware(m_uki->ukiVersion(), m_variant);
    const QDateTime now = QDateTime::currentDateTime();
    const QString stamped = QStringLiteral("%1/%2_%3")
                                    .arg(m_backupRoot,
                                         CsvFiles::prefix(variant),
                                         now.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss")));
    // Writes in the same second each keep their own folder.
    QString folder = stamped;
    for (int copy = 2; QFileInfo::exists(folder); ++copy)
        folder = QStringLiteral("%1-%2").arg(stamped).arg(copy);
    QString fileName;
    QByteArray bytes;
    switch (m_kind) {
    case Kind::Settings:
        fileName = CsvFiles::settingsFileName(folder, now, variant);
        bytes = CsvFiles::settingsFile(
                variant, settingsLines(variant, m_uki->getCfgLines()), m_uki->cfgLines());
        break;
    case Kind::Corrections:
        fileName = CsvFiles::correctionsFileName(folder, now);
        bytes = CsvFiles::correctionsFile(CtCorrections(m_uki->corrLines()));
        break;
    case Kind::Channel:
        fileName = CsvFiles::customChannelsFileName(folder, now);
        bytes = CsvFiles::customChannelsFile(CustomChannels(m_uki->custLines()));
        break;
    }
    if (!QDir().mkpath(folder)) {
        m_result.fileError = tr("не удалось создать папку %1")
                                     .arg(QDir::toNativeSeparators(folder));
        finish(SafeWriteResult::BackupFailed);
        return;
    }
    QString error;
    if (!CsvFiles::writeFile(fileName, bytes, &error)) {
        m_result.fileError = tr("ошибка записи в файл %1: %2")
                                     .arg(QDir::toNativeSeparators(fileName), error);
        finish(SafeWriteResult::BackupFailed);
        return;
    }
    m_result.backupFolder = folder;
    emit logMessage(QStringLiteral("Резервная копия: %1").arg(fileName));
    m_step = Write;
    // The engine still holds the finished read while it reports it.
    QTimer::singleShot(0, this, &SafeWrite::startWrite);
}

void SafeWrite::startWrite()
{
    if (m_cancelled) {
        finish(SafeWriteResult::Cancelled);
        return;
    }
    bool started = false;
    switch (m_kind) {
    case Kind::Settings:
        for (const QString &command : qAsConst(m_commands)) {
            // "set_cfg_KEY_VALUE"; the closing "set_cfg_save_1" is no setting.
            const QString pair = command.mid(8);
            const QString key = pair.section(QLatin1Char('_'), 0, -2);
            if (key != QLatin1String("save"))
                m_expected.append({key, pair.section(QLatin1Char('_'), -1)});
        }
        started = m_uki->writeCommands(m_commands);
        break;
    case Kind::Corrections:
        // Taken before the engine marks the rows as saved.
        for (int row = 0; row < m_corrections->rowCount(); ++row) {
            const CtCorrection correction = m_corrections->rowAt(row);
            if (correction.isModified())
                m_expected.append(
                        {correctionKey(correction.address, correction.channel + 1),
                         QStringLiteral("%1 %2").arg(correction.gain).arg(correction.phase)});
        }
        started = m_uki->writeCorrections(m_corrections);
        break;
    case Kind::Channel:
        m_expected.append(
                {channelKey(m_channel[0], m_channel[1]),
                 QStringLiteral("%1 %2 %3").arg(m_channel[2]).arg(m_channel[3]).arg(m_channel[4])});
        started = m_uki->writeCustomChannel(
                m_channel[0], m_channel[1], m_channel[2], m_channel[3], m_channel[4]);
        break;
    }
    if (!started) {
        m_result.deviceError = tr("устройство занято");
        finish(SafeWriteResult::NotTaken);
    }
}

void SafeWrite::writeDone(bool success)
{
    if (m_step != Write)
        return;
    if (m_cancelled || m_uki->wasCancelled()) {
        finish(SafeWriteResult::Cancelled);
        return;
    }
    if (!success)
        m_result.deviceError = m_uki->lastError();
    m_step = ReadBack;
    QTimer::singleShot(0, this, [this] {
        if (m_cancelled)
            finish(SafeWriteResult::Cancelled);
        else if (!m_uki->readData(blockFlag()))
            finish(SafeWriteResult::CheckFailed);
    });
}

void SafeWrite::compare()
{
    QMap<QString, QString> held;
    switch (m_kind) {
    case Kind::Settings:
        held = settingsValues(settingsLines(
                DeviceVariant::fromFirmware(m_uki->ukiVersion(), m_variant), m_uki->getCfgLines()));
        break;
    case Kind::Corrections: {
        const CtCorrections table(m_uki->corrLines());
        for (int row = 0; row < table.rowCount(); ++row) {
            const CtCorrection correction = table.rowAt(row);
            held.insert(correctionKey(correction.address, correction.channel + 1),
                        QStringLiteral("%1 %2").arg(correction.gain).arg(correction.phase));
        }
        break;
    }
    case Kind::Channel: {
        CustomChannel channel;
        if (CustomChannels(m_uki->custLines()).findChannel(m_channel[0], m_channel[1] - 1, channel))
            held.insert(channelKey(m_channel[0], m_channel[1]),
                        channel.enabled ? QStringLiteral("%1 %2 %3")
                                                  .arg(channel.lower * kUnitsPerStep)
                                                  .arg(channel.upper * kUnitsPerStep)
                                                  .arg(channel.rLoc)
                                        : QStringLiteral("OFF"));
        break;
    }
    }
    m_result.checked = m_expected.size();
    for (const auto &value : qAsConst(m_expected)) {
        const QString read = held.value(value.first, QStringLiteral("-"));
        if (read != value.second)
            m_result.mismatches.append({value.first, value.second, read});
    }
    for (const QString &text : m_result.mismatchTexts())
        emit logMessage(QStringLiteral("Устройство не приняло: %1").arg(text));
    const bool taken = m_result.mismatches.isEmpty() && m_result.deviceError.isEmpty();
    finish(taken ? SafeWriteResult::Verified : SafeWriteResult::NotTaken);
}

void SafeWrite::finish(SafeWriteResult::Outcome outcome)
{
    m_result.outcome = outcome;
    m_corrections.reset();
    emit logMessage(m_result.message());
    // Told once the engine has let go of the run that ended the chain.
    QTimer::singleShot(0, this, [this] {
        m_step = Idle;
        emit finished(m_result);
    });
}
