#pragma once

#include "faultplan.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>

namespace Sim {

class SimDevice;
class Transcript;

// Blocks SIGINT, SIGTERM and SIGHUP for the whole process; SimLine::serve() lets them in only
// while it waits, so a stop request always ends the loop cleanly. Call first thing in main().
void installStopSignals();

// The device's serial line: a pseudo-terminal in raw mode reached through a symbolic link.
// A command is what arrives up to 5 ms of silence; the reply goes out paced like a 115200-baud
// 8N1 line (11,520 bytes/s) in chunks of at most 16 bytes, with the fault chosen for the command.
// Single-threaded; serve() sleeps in ppoll() between chunks and while idle.
class SimLine
{
public:
    SimLine(SimDevice &device, FaultPlan &faults, Transcript &transcript);
    ~SimLine();
    SimLine(const SimLine &) = delete;
    SimLine &operator=(const SimLine &) = delete;

    // Creates the pseudo-terminal and the link to it (an old symbolic link there is replaced).
    bool open(const QString &linkPath, QString *error);
    // The pseudo-terminal's own name, such as /dev/pts/3.
    QByteArray slaveName() const { return m_slaveName; }
    // Milliseconds from the end of a command to the first reply byte.
    void setLatencyMs(int ms) { m_latencyNs = int64_t(ms) * 1000000; }

    // Serves until a stop signal or a hang-up fault; the link is removed on the way out.
    // Returns the process exit code.
    int serve();

private:
    struct Job
    {
        bool active = false;
        QByteArray bytes;
        int sent = 0;         // position in bytes
        int64_t total = 0;    // bytes written for this reply (a flood wraps around)
        int64_t nextDue = 0;  // monotonic ns at which the next chunk may go
        int gapAt = -1;       // a 60 ms pause once `sent` reaches this position
        int hangupAt = -1;    // the line is closed once `sent` reaches this position
        bool flood = false;   // start over at the end, until the next command
        bool started = false; // "reply-start" written
    };
    enum class PumpResult { Continue, HungUp, Failed };

    void startCommand(const QByteArray &command, int64_t now);
    PumpResult pump(int64_t now);
    void endJob();
    void hangUp();
    void removeLink();
    void readInput(int64_t now);

    SimDevice &m_device;
    FaultPlan &m_faults;
    Transcript &m_transcript;
    int m_master = -1;
    int m_slave = -1; // held open so that the master never sees a hang-up between sessions
    QByteArray m_slaveName;
    QString m_linkPath;
    int64_t m_latencyNs = 2000000;
    QByteArray m_rx;
    int64_t m_lastRx = 0;
    QList<QByteArray> m_commands;
    Job m_job;
    bool m_waitWritable = false;
};

} // namespace Sim
