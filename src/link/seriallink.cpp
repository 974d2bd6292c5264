#include "seriallink.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {
constexpr qint64 kReceivedPeriodMs = 100;
// Set from any thread, read by every link in its worker thread.
std::atomic<qint64> s_replyLimit{4 * 1024 * 1024};
} // namespace

void SerialLink::setReplyLimit(qint64 bytes)
{
    s_replyLimit = bytes;
}

qint64 SerialLink::replyLimit()
{
    return s_replyLimit;
}

SerialLink::SerialLink(QString portName, QObject *parent)
    : QObject(parent)
    , m_portName(std::move(portName))
{
    qRegisterMetaType<SerialTask *>("SerialTask*");
}

void SerialLink::start()
{
    delete m_port;
    m_port = new QSerialPort(m_portName, this);
    m_port->setBaudRate(QSerialPort::Baud115200, QSerialPort::AllDirections);
    m_port->setDataBits(QSerialPort::Data8);
    m_port->setParity(QSerialPort::NoParity);
    m_port->setStopBits(QSerialPort::OneStop);
    m_port->setFlowControl(QSerialPort::NoFlowControl);

    // Armed only while a task runs, for the moment its time-out would fall due: the first
    // byte's deadline after the write, the silence's after each chunk.
    delete m_timer;
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, &QTimer::timeout, this, &SerialLink::checkTimeouts);

    if (!m_port->open(QIODevice::ReadWrite)) {
        emit error(QStringLiteral("Ошибка открытия порта %1 : %2.")
                           .arg(m_portName, m_port->errorString()));
        return;
    }
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialLink::serialPortError);
    connect(m_port, &QSerialPort::readyRead, this, &SerialLink::serialPortReadyRead);
    emit connected();
}

void SerialLink::runTask(SerialTask *task)
{
    acquireTask(task);
    if (!m_current) {
        startTask(task);
        return;
    }
    emit logMessage(QStringLiteral("Ставим команду в очередь: %1").arg(task->command));
    m_queue.push_back(task);
}

void SerialLink::startTask(SerialTask *task)
{
    m_current = task;
    const QByteArray bytes = task->command.toLatin1();
    // Drop whatever an earlier exchange left on the line. The command goes out bare, without
    // any line terminator: the device takes it that way.
    m_port->clear(QSerialPort::AllDirections);
    const qint64 written = m_port->write(bytes);
    if (written != bytes.size())
        qCritical("write error: %lld", static_cast<long long>(written));
    m_port->flush();
    task->sentAt = QDateTime::currentMSecsSinceEpoch();
    task->lastActivityAt = task->sentAt;
    m_replyLines = 0;
    m_reportedAt = 0;
    m_timer->start(int(task->answerTimeoutMs));
}

void SerialLink::serialPortError(QSerialPort::SerialPortError code)
{
    // Only the zero-time poll in bytesWaiting() times out: finding nothing there is no fault.
    if (code == QSerialPort::NoError || code == QSerialPort::TimeoutError)
        return;
    if (code != QSerialPort::ReadError && code != QSerialPort::ResourceError) {
        emit error(QStringLiteral("Ошибка: %1.").arg(m_port->errorString()));
        return;
    }
    // A read notification whose bytes a clear() before the next command took away reads
    // nothing, and the port then reports a ReadError with a stale errno.
    if (portPresent()) {
        qDebug().noquote() << QStringLiteral("SerialLink: %1 on %2 ignored, the port is there")
                                      .arg(m_port->errorString(), m_portName);
        return;
    }
    // The far end is gone. The port would repeat this notification at full CPU until closed:
    // report it once and close it.
    emit disconnected();
    dropPort();
}

// The device node under the port's name still exists (a symbolic link counts by its target), or
// the system still lists a port of that name.
bool SerialLink::portPresent() const
{
    const QString node = QDir::isAbsolutePath(m_portName) ? m_portName
                                                          : QStringLiteral("/dev/") + m_portName;
    if (QFileInfo::exists(node))
        return true;
    const auto ports = QSerialPortInfo::availablePorts();
    return std::any_of(ports.begin(), ports.end(), [this](const QSerialPortInfo &info) {
        return info.portName() == m_portName || info.systemLocation() == m_portName;
    });
}

// Stops listening to the port and closes it. The close is queued so that the port is not
// closed inside one of its own notifications.
void SerialLink::dropPort()
{
    disconnect(m_port, nullptr, this, nullptr);
    QSerialPort *port = m_port;
    QMetaObject::invokeMethod(
            port, [port] { port->close(); }, Qt::QueuedConnection);
}

void SerialLink::serialPortReadyRead()
{
    for (;;) {
        const qint64 count = m_port->read(m_rxBuffer.data(), qint64(m_rxBuffer.size()));
        if (count < 0) {
            emit error(QStringLiteral("Ошибка чтения: %1.").arg(m_port->errorString()));
            return;
        }
        if (count == 0)
            return;
        if (!m_current) {
            const auto text = QString::fromLatin1(m_rxBuffer.data(),
                                                  int(qstrnlen(m_rxBuffer.data(), uint(count))));
            emit logMessage(QStringLiteral("Неожиданные данные на приёме: %1").arg(text));
            continue;
        }
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        if (m_current->reply.isEmpty())
            m_current->firstByteAt = now;
        m_current->reply.append(QString::fromLatin1(m_rxBuffer.data(), int(count)));
        m_current->lastActivityAt = now;
        m_timer->start(int(m_current->idleTimeoutMs));
        m_replyLines += int(std::count(m_rxBuffer.data(), m_rxBuffer.data() + count, '\n'));
        if (now - m_reportedAt >= kReceivedPeriodMs) {
            m_reportedAt = now;
            emit received(m_current->reply.size(), m_replyLines, now - m_current->sentAt);
        }
        const qint64 limit = s_replyLimit;
        if (m_current->reply.size() > limit) {
            // Never silent, this reply would never end: the run is over.
            emit error(QStringLiteral("Ответ превысил %1 байт без паузы.").arg(limit));
            dropPort();
            return;
        }
    }
}

// Bytes that reached the line but are not read yet: the silence is not real when this thread
// was held up longer than the time-out with the reply already waiting in the driver. A poll of
// the port that does not block reads such bytes in now; its readyRead() reaches
// serialPortReadyRead() before it returns, which moves the task's last activity on.
bool SerialLink::bytesWaiting()
{
    if (!m_port || !m_port->isOpen())
        return false;
    if (m_port->bytesAvailable() > 0)
        return true;
    return m_port->waitForReadyRead(0);
}

void SerialLink::checkTimeouts()
{
    if (!m_current)
        return;
    SerialTask *task = m_current;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const qint64 limit = task->reply.isEmpty() ? task->answerTimeoutMs : task->idleTimeoutMs;
    const qint64 quiet = now - task->lastActivityAt;
    if (quiet < limit) {
        m_timer->start(int(limit - quiet));
        return;
    }
    // Bytes held up in the driver move the last activity on (and re-arm the timer) as they are
    // read in; the poll itself may find nothing new, so look again at the new deadline.
    if (bytesWaiting()) {
        if (!m_timer->isActive())
            m_timer->start(int(task->idleTimeoutMs));
        return;
    }
    task->finishedAt = now;
    task->status = task->reply.isEmpty() ? 2 : 1;
    task->done.release();
    emit logMessage(
            QStringLiteral("Отработали команду: %1, результат: %2. Время выполнения %3 мс")
                    .arg(task->command,
                         task->status == 1 ? QStringLiteral("Success") : QStringLiteral("Timeout"),
                         QString::number(task->finishedAt - task->sentAt)));
    releaseTask(task);
    emit taskDone(task);
    m_current = nullptr;
    if (!m_queue.empty()) {
        SerialTask *next = m_queue.front();
        m_queue.pop_front();
        startTask(next);
    }
}
