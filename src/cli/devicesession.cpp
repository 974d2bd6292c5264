#include "devicesession.h"

#include "app/programsettings.h"
#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"

#include <QEventLoop>
#include <QRegularExpression>

#include <cstdio>

namespace {

// The engine's log lines that tell why a program failed.
const QRegularExpression kErrorLine(
        QStringLiteral("^(Нет ответа|Ошибка при выполнении|Порт .*: Ошибка|Порт .* отключён)"));

template<class Record>
Record parsed(const QStringList &lines)
{
    Record record;
    record.fromLines(lines);
    return record;
}

} // namespace

DeviceSession::DeviceSession(const QString &port, int variant, bool showProgress)
    : m_variant(variant)
    , m_showProgress(showProgress)
{
    m_uki.setPortName(port);
    connect(&m_uki, &Uki::logMessage, this, [this](const QString &line) {
        if (kErrorLine.match(line).hasMatch())
            m_errors.append(line);
    });
    connect(&m_uki, &Uki::progress, this, [this](int answered, int total) {
        if (m_showProgress && total > 1)
            std::fprintf(stderr, "\r%d / %d", answered, total);
    });
}

bool DeviceSession::run(const std::function<bool(Uki &)> &request)
{
    m_errors.clear();
    bool success = false;
    QEventLoop loop;
    connect(&m_uki, &Uki::programDone, &loop, [&loop, &success](bool ok) {
        success = ok;
        loop.quit();
    });
    if (!request(m_uki)) {
        m_errors.append(tr("Устройство занято"));
        return false;
    }
    loop.exec();
    if (m_showProgress)
        std::fputs("\r\033[K", stderr);
    if (!success && m_errors.isEmpty())
        m_errors.append(tr("Устройство не ответило как ожидалось"));
    return success;
}

bool DeviceSession::identify(uint32_t extraFlags)
{
    if (!run([extraFlags](Uki &uki) { return uki.readData(Uki::ReadIdentification | extraFlags); }))
        return false;
    if (m_variant < 0)
        m_variant = DeviceVariant::fromFirmware(m_uki.ukiVersion(), DeviceVariant::UkpsKs);
    if (m_variant == DeviceVariant::UkiKiranto && (extraFlags & Uki::ReadSettings))
        m_uki.setSettings(parsed<UkiSettings>(m_uki.getCfgLines()));
    return true;
}

QStringList DeviceSession::settingsLines() const
{
    if (m_variant == DeviceVariant::UkiKiranto)
        return parsed<UkiSettings>(m_uki.getCfgLines()).toLines();
    return parsed<UkpsSettings>(m_uki.getCfgLines()).toLines();
}

QStringList DeviceSession::writeCommands(const QStringList &lines) const
{
    if (m_variant == DeviceVariant::UkiKiranto) {
        UkiSettings record = parsed<UkiSettings>(m_uki.getCfgLines());
        record.fromLines(lines);
        return record.writeCommands();
    }
    UkpsSettings record = parsed<UkpsSettings>(m_uki.getCfgLines());
    record.fromLines(lines);
    return record.writeCommands();
}
