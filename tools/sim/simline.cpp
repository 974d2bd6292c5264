#include "simline.h"

#include "simdevice.h"
#include "transcript.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

namespace Sim {

namespace {

constexpr int64_t msNs = 1000000;
constexpr int64_t commandSilenceNs = 5 * msNs;
constexpr int64_t slowFirstByteNs = 80 * msNs;
constexpr int64_t gapNs = 60 * msNs;
constexpr int64_t hangupDrainNs = 20 * msNs;
// 115200 baud, 8N1: ten bit times per byte.
constexpr int64_t bytesPerSecond = 11520;
constexpr int chunkBytes = 16;
// A writer woken late (a busy machine) sends what the line would have carried meanwhile, up to
// this much; further behind it starts afresh instead of bursting.
constexpr int64_t maxLagNs = 100 * msNs;

volatile sig_atomic_t stopSignal = 0;

void onStopSignal(int signal)
{
    stopSignal = signal;
}

int64_t nowNs()
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return int64_t(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

int64_t lineTimeNs(int64_t bytes)
{
    return bytes * 1000000000 / bytesPerSecond;
}

void sleepNs(int64_t ns)
{
    timespec ts{time_t(ns / 1000000000), long(ns % 1000000000)};
    while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
    }
}

// Line noise: a fixed run of bytes with NULs, control characters and bytes above 0x7f.
QByteArray garbage()
{
    QByteArray bytes;
    uint32_t state = 0x2545f491u;
    for (int i = 0; i < 96; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes += i % 7 == 0 ? '\0' : char(state >> 24);
    }
    return bytes;
}

} // namespace

void installStopSignals()
{
    struct sigaction action
    {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    sigset_t blocked;
    sigemptyset(&blocked);
    for (int s : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(s, &action, nullptr);
        sigaddset(&blocked, s);
    }
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGPIPE, SIG_IGN);
}

SimLine::SimLine(SimDevice &device, FaultPlan &faults, Transcript &transcript)
    : m_device(device)
    , m_faults(faults)
    , m_transcript(transcript)
{}

SimLine::~SimLine()
{
    removeLink();
    if (m_slave >= 0)
        ::close(m_slave);
    if (m_master >= 0)
        ::close(m_master);
}

bool SimLine::open(const QString &linkPath, QString *error)
{
    m_master = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        *error = QStringLiteral("cannot create a pseudo-terminal: %1")
                         .arg(QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    fcntl(m_master, F_SETFL, fcntl(m_master, F_GETFL) | O_NONBLOCK);
    fcntl(m_master, F_SETFD, FD_CLOEXEC);
    m_slaveName = ptsname(m_master);
    m_slave = ::open(m_slaveName.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_slave < 0) {
        *error = QStringLiteral("cannot open %1: %2")
                         .arg(QString::fromLatin1(m_slaveName),
                              QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    termios tio{};
    tcgetattr(m_slave, &tio);
    cfmakeraw(&tio);
    cfsetispeed(&tio, B115200);
    cfsetospeed(&tio, B115200);
    tio.c_cflag |= CLOCAL | CREAD;
    tcsetattr(m_slave, TCSANOW, &tio);

    const QByteArray link = QFile::encodeName(linkPath);
    struct stat st
    {};
    if (lstat(link.constData(), &st) == 0) {
        if (!S_ISLNK(st.st_mode)) {
            *error = QStringLiteral("%1 exists and is not a symbolic link").arg(linkPath);
            return false;
        }
        ::unlink(link.constData());
    }
    if (symlink(m_slaveName.constData(), link.constData()) != 0) {
        *error = QStringLiteral("cannot create the link %1: %2")
                         .arg(linkPath, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    m_linkPath = linkPath;
    return true;
}

void SimLine::removeLink()
{
    if (m_linkPath.isEmpty())
        return;
    // Only our own link: a newer simulator may have taken the path over.
    const QByteArray link = QFile::encodeName(m_linkPath);
    char target[4096];
    const ssize_t n = readlink(link.constData(), target, sizeof(target) - 1);
    if (n > 0 && QByteArray(target, int(n)) == m_slaveName)
        ::unlink(link.constData());
    m_linkPath.clear();
}

int SimLine::serve()
{
    sigset_t waitMask;
    sigprocmask(SIG_BLOCK, nullptr, &waitMask);
    for (int s : {SIGINT, SIGTERM, SIGHUP})
        sigdelset(&waitMask, s);

    while (stopSignal == 0) {
        int64_t now = nowNs();
        if (!m_rx.isEmpty() && now - m_lastRx >= commandSilenceNs) {
            m_commands.append(m_rx);
            m_rx.clear();
            if (m_job.active && m_job.flood)
                endJob();
        }
        if (!m_job.active && !m_commands.isEmpty()) {
            startCommand(m_commands.takeFirst(), now);
            continue;
        }
        if (m_job.active && !m_waitWritable && now >= m_job.nextDue) {
            switch (pump(now)) {
            case PumpResult::Continue:
                break;
            case PumpResult::HungUp:
                return 0;
            case PumpResult::Failed:
                return 1;
            }
            continue;
        }

        int64_t deadline = -1;
        if (!m_rx.isEmpty())
            deadline = m_lastRx + commandSilenceNs;
        if (m_job.active && !m_waitWritable && (deadline < 0 || m_job.nextDue < deadline))
            deadline = m_job.nextDue;
        timespec timeout{};
        if (deadline >= 0) {
            const int64_t wait = std::max<int64_t>(0, deadline - now);
            timeout.tv_sec = time_t(wait / 1000000000);
            timeout.tv_nsec = long(wait % 1000000000);
        }
        pollfd fd{m_master, short(POLLIN | (m_waitWritable ? POLLOUT : 0)), 0};
        const int ready = ppoll(&fd, 1, deadline >= 0 ? &timeout : nullptr, &waitMask);
        if (ready < 0) {
            if (errno == EINTR)
                continue;
            qWarning("kiranto-sim: poll failed: %s", strerror(errno));
            return 1;
        }
        now = nowNs();
        if (fd.revents & POLLIN)
            readInput(now);
        if ((fd.revents & POLLOUT) && m_waitWritable) {
            // The far end stalled the line: carry on at the line rate from now.
            m_waitWritable = false;
            m_job.nextDue = std::max(m_job.nextDue, now);
        }
        if (fd.revents & (POLLHUP | POLLERR)) {
            // Cannot happen while the slave is held open; never spin on it.
            sleepNs(10 * msNs);
        }
    }
    if (m_job.active)
        endJob();
    m_transcript.write("stop signal " + QByteArray::number(int(stopSignal)));
    removeLink();
    return 0;
}

void SimLine::readInput(int64_t now)
{
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(m_master, buffer, sizeof(buffer));
        if (n > 0) {
            m_rx.append(buffer, int(n));
            m_lastRx = now;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        break;
    }
}

void SimLine::startCommand(const QByteArray &command, int64_t now)
{
    m_transcript.command(command);
    const Fault fault = m_faults.faultFor(command);
    if (fault != Fault::None)
        m_transcript.write("fault " + FaultPlan::name(fault));

    QByteArray reply;
    switch (fault) {
    case Fault::Silence:
        return;
    case Fault::Reject:
        reply = "Unrecognize\r\n";
        break;
    case Fault::Garbage:
        reply = garbage();
        break;
    default:
        reply = m_device.reply(command);
        break;
    }

    m_job = Job();
    m_job.active = true;
    m_job.bytes = reply;
    m_job.nextDue = now + (fault == Fault::Slow ? slowFirstByteNs : m_latencyNs);
    const int half = std::max(1, int(reply.size() / 2));
    if (fault == Fault::Gap) {
        // At the end of the line that crosses the middle, or mid-line for a one-line reply.
        const int lineEnd = reply.indexOf('\n', half - 1) + 1;
        m_job.gapAt = lineEnd > 0 && lineEnd < reply.size() ? lineEnd : half;
    }
    if (fault == Fault::Hangup)
        m_job.hangupAt = half;
    m_job.flood = fault == Fault::Flood;
}

SimLine::PumpResult SimLine::pump(int64_t now)
{
    Job &job = m_job;
    const int64_t lagBytes = (now - job.nextDue) * bytesPerSecond / 1000000000;
    int chunk = int(std::min<int64_t>(chunkBytes + lagBytes, job.bytes.size() - job.sent));
    if (job.gapAt > job.sent)
        chunk = std::min(chunk, job.gapAt - job.sent);
    if (job.hangupAt > job.sent)
        chunk = std::min(chunk, job.hangupAt - job.sent);
    if (!job.started) {
        m_transcript.write("reply-start");
        job.started = true;
    }
    const ssize_t n = ::write(m_master, job.bytes.constData() + job.sent, size_t(chunk));
    if (n < 0) {
        if (errno == EAGAIN || errno == EINTR) {
            m_waitWritable = errno == EAGAIN;
            return PumpResult::Continue;
        }
        qWarning("kiranto-sim: write failed: %s", strerror(errno));
        return PumpResult::Failed;
    }
    job.sent += int(n);
    job.total += n;
    job.nextDue += lineTimeNs(n);
    if (now - job.nextDue > maxLagNs)
        job.nextDue = now;
    if (job.sent == job.gapAt) {
        job.gapAt = -1;
        job.nextDue = std::max(job.nextDue, now + gapNs);
    }
    if (job.sent == job.hangupAt) {
        // Let the far end take the bytes already sent, then drop the line for good.
        sleepNs(std::max<int64_t>(hangupDrainNs, job.nextDue - now));
        m_transcript.write("reply-end " + QByteArray::number(qint64(job.total)));
        hangUp();
        return PumpResult::HungUp;
    }
    if (job.sent == job.bytes.size()) {
        if (job.flood && !job.bytes.isEmpty())
            job.sent = 0;
        else
            endJob();
    }
    return PumpResult::Continue;
}

void SimLine::endJob()
{
    if (m_job.started)
        m_transcript.write("reply-end " + QByteArray::number(qint64(m_job.total)));
    m_job = Job();
    m_waitWritable = false;
}

void SimLine::hangUp()
{
    ::close(m_slave);
    m_slave = -1;
    ::close(m_master);
    m_master = -1;
    m_transcript.write("hangup");
    removeLink();
}

} // namespace Sim
