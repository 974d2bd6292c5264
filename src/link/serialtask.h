#pragma once

#include <QMetaType>
#include <QSemaphore>
#include <QString>

// One command/reply exchange with the device. Travels by pointer: the engine creates it, the
// link holds it until taskDone(), then the receiver owns and deletes it.
class SerialTask
{
public:
    // text: the command as written. Timeouts in milliseconds: idle = silence allowed once the
    // reply has started, answer = silence allowed before the first reply byte.
    SerialTask(QString text, qint64 idleMs, qint64 answerMs);

    SerialTask(const SerialTask &) = delete;
    SerialTask &operator=(const SerialTask &) = delete;

    // 0 pending, 1 success (reply bytes arrived), 2 timeout (no reply byte).
    qint32 status = 0;
    // Released once when the task finishes, for a caller that wants to block on it.
    QSemaphore done{0};
    QString command;
    // Received bytes as Latin-1, one character per byte.
    QString reply;
    qint64 idleTimeoutMs = 0;
    qint64 answerTimeoutMs = 0;
    // Wall-clock times in milliseconds since the epoch; 0 while unset.
    qint64 sentAt = 0;
    qint64 firstByteAt = 0;
    qint64 lastActivityAt = 0;
    qint64 finishedAt = 0;
};

Q_DECLARE_METATYPE(SerialTask *)

// Hand-over of a task between the engine's thread and the link's, marked for ThreadSanitizer:
// Qt 5's queued connections order the two threads through a futex the sanitizer cannot see.
// The sender calls releaseTask() just before emitting the task, the receiving slot calls
// acquireTask() first thing. Both compile to nothing in other builds.
#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void *addr);
extern "C" void __tsan_release(void *addr);
inline void releaseTask(SerialTask *task)
{
    __tsan_release(task);
}
inline void acquireTask(SerialTask *task)
{
    __tsan_acquire(task);
}
#else
inline void releaseTask(SerialTask *) {}
inline void acquireTask(SerialTask *) {}
#endif
