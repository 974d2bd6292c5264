#pragma once

#include "link/serialtask.h"

#include <QObject>
#include <QSerialPort>
#include <QString>

#include <array>
#include <deque>

class QTimer;

// The serial port to the device, run in a worker thread: writes one command at a time and
// collects its reply until the line has been silent long enough.
//
// Thread: construct in any thread, move to the worker thread and connect QThread::started to
// start(), so that start() runs there before any queued runTask(). All slots run in the worker
// thread; the port and the timer are children of the link and die with it (deleteLater on
// QThread::finished). A task is held from runTask() until taskDone(); the link never deletes a
// task, not even one it still holds when it is destroyed.
// A reply ends once the line has been silent for the task's time-out after its last byte (or
// after the write, before the first), to the millisecond: a single-shot timer falls due then.
// A ReadError or ResourceError is the port gone only when its device node is gone too (an
// adapter pulled out, a pseudo-terminal closed): disconnected() is emitted once and the port is
// closed; a current task still ends by its time-out. Otherwise it is logged and the link goes on.
// A reply that grows past the reply limit without a pause (a device repeating itself) is an
// error() and closes the port the same way.
class SerialLink : public QObject
{
    Q_OBJECT
public:
    explicit SerialLink(QString portName, QObject *parent = nullptr);

    // Bytes one reply may reach without a pause; 4 MiB unless set. A device's whole archive is
    // far smaller (2,000 events take some 145 KB). One value for every link of the process.
    static void setReplyLimit(qint64 bytes);
    static qint64 replyLimit();

signals:
    void connected();
    void error(QString err);
    void taskDone(SerialTask *task);
    void logMessage(QString message);
    // The port went away during the run (see above); it may come back under the same name.
    void disconnected();
    // The current reply so far: its bytes and line ends, and milliseconds since the command
    // went out; at most ten times a second, the first chunk at once.
    void received(qint64 bytes, int lines, qint64 elapsedMs);

public slots:
    void start();
    void runTask(SerialTask *task);

private slots:
    void serialPortError(QSerialPort::SerialPortError code);
    void serialPortReadyRead();
    void checkTimeouts();

private:
    void startTask(SerialTask *task);
    bool bytesWaiting();
    bool portPresent() const;
    void dropPort();

    QString m_portName;
    SerialTask *m_current = nullptr;
    std::deque<SerialTask *> m_queue;
    QSerialPort *m_port = nullptr;
    QTimer *m_timer = nullptr;
    std::array<char, 1024> m_rxBuffer{};
    int m_replyLines = 0;
    qint64 m_reportedAt = 0;
};
