#pragma once

#include "protocol/uki.h"

#include <QObject>
#include <QStringList>

#include <functional>

// One device on one port for a command-line run: each request runs to its end before the call
// returns, and what went wrong is kept as the engine logged it.
class DeviceSession final : public QObject
{
    Q_OBJECT
public:
    // variant: a fixed device variant, or -1 to take it from the firmware version that
    // identify() reads.
    DeviceSession(const QString &port, int variant, bool showProgress);

    Uki &uki() { return m_uki; }
    int variant() const { return m_variant; }
    // The engine's error lines of the last failed request, "" after a success.
    QString error() const { return m_errors.join(QLatin1String("; ")); }

    // Runs a request of the engine to its end; false when it could not start or failed.
    bool run(const std::function<bool(Uki &)> &request);
    // Reads "cfg" together with extra read flags, and settles the variant.
    bool identify(uint32_t extraFlags = 0);
    // The settings lines the device holds, as its settings record writes them.
    QStringList settingsLines() const;
    // The device's settings record with lines put over it, as its write commands.
    QStringList writeCommands(const QStringList &lines) const;

private:
    Uki m_uki;
    int m_variant = -1;
    bool m_showProgress = false;
    QStringList m_errors;
};
