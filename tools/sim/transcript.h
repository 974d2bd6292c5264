#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

namespace Sim {

// Seconds on the monotonic clock (CLOCK_MONOTONIC), the clock of the transcript.
double monotonicSeconds();

// The device-side record of the conversation, one line per event with a monotonic time stamp:
// "12.345678 cmd get_cfg", "12.346001 reply-start", "12.401234 reply-end 1234".
// Lines are flushed at once so that a reader may follow the file while the simulator runs.
class Transcript
{
public:
    Transcript() = default;
    ~Transcript();
    Transcript(const Transcript &) = delete;
    Transcript &operator=(const Transcript &) = delete;

    bool open(const QString &path);
    void write(const QByteArray &event);
    // The command as received: bytes outside printable ASCII appear as \xHH.
    void command(const QByteArray &command);

private:
    FILE *m_file = nullptr;
};

} // namespace Sim
