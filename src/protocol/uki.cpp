#include "uki.h"

#include "link/seriallink.h"
#include "link/serialtask.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"

#include <QDebug>
#include <QThread>

namespace {

// Time-outs of every exchange, in milliseconds: silence that ends a reply, and silence before
// the first reply byte after which the device counts as mute.
constexpr qint64 kIdleTimeoutMs = 30;
constexpr qint64 kAnswerTimeoutMs = 50;

struct ReadCommand
{
    uint32_t flag;
    const char *command;
};

// The fixed order of the read commands, whatever the order of the bits.
constexpr ReadCommand kReadCommands[] = {
        {Uki::ReadSettings, "get_cfg"},
        {Uki::ReadIdentification, "cfg"},
        {Uki::ReadCustomChannels, "get_cust"},
        {Uki::ReadCorrections, "corr"},
        {Uki::ReadArchive, "dump"},
};

} // namespace

Uki::Uki(QObject *parent)
    : QObject(parent)
    , m_customChannels(std::make_shared<CustomChannels>())
    , m_locators(std::make_shared<Locators>())
{
    qRegisterMetaType<SerialTask *>("SerialTask*");
}

Uki::~Uki()
{
    if (m_thread) {
        disconnect(m_thread, nullptr, this, nullptr);
        m_thread->quit();
        m_thread->wait();
        delete m_thread;
    }
    delete m_pendingTask;
}

QStringList *Uki::linesOf(uint32_t flag)
{
    switch (flag) {
    case ReadSettings:
        return &m_getCfgLines;
    case ReadIdentification:
        return &m_cfgLines;
    case ReadCustomChannels:
        return &m_custLines;
    case ReadCorrections:
        return &m_corrLines;
    case ReadArchive:
        return &m_dumpLines;
    }
    return nullptr;
}

bool Uki::readData(uint32_t flags)
{
    m_flags = flags;
    if (flags == 0) {
        qDebug("Ukps::readData() : empty flags");
        return false;
    }
    auto program = std::make_shared<UkiProgram>();
    program->type = UkiProgram::ReadData;
    for (const ReadCommand &read : kReadCommands) {
        if (flags & read.flag) {
            linesOf(read.flag)->clear();
            program->addCommand(QLatin1String(read.command));
        }
    }
    return startProgram(program);
}

bool Uki::readStats(uint address, uint channel, uint level)
{
    int blocks = 8;
    if (level != 0) {
        blocks = m_settings.value(UkiSettings::Tcust) * 5 / 2;
        const int cap = address == 0 ? 16 : 80;
        if (blocks <= 0 || blocks > cap)
            blocks = cap;
    }
    auto program = std::make_shared<UkiProgram>();
    program->type = UkiProgram::ReadStatistics;
    // Level comes first on the wire, though it comes last here.
    for (int i = 0; i < blocks; ++i) {
        program->addCommand(QStringLiteral("srch_stats_%1_%2_%3_%4")
                                    .arg(level)
                                    .arg(address)
                                    .arg(channel)
                                    .arg(i));
    }
    return startProgram(program);
}

bool Uki::writeCustomChannel(uint address, uint channel, uint low, uint high, uint rloc)
{
    auto program = std::make_shared<UkiProgram>();
    program->type = UkiProgram::Write;
    program->addCommand(QStringLiteral("set_cust_%1_%2_%3_%4_%5")
                                .arg(address)
                                .arg(channel)
                                .arg(low)
                                .arg(high)
                                .arg(rloc));
    return startProgram(program);
}

bool Uki::writeCorrections(std::shared_ptr<CtCorrections> corrections)
{
    auto program = std::make_shared<UkiProgram>();
    program->type = UkiProgram::Write;
    for (int row = 0; corrections && row < corrections->rowCount(); ++row) {
        const CtCorrection correction = corrections->rowAt(row);
        if (!correction.isModified())
            continue;
        // The phase travels as an unsigned 16-bit number: -25 goes out as 65511.
        program->addCommand(QStringLiteral("set_corr_%1_%2_%3_%4")
                                    .arg(correction.address)
                                    .arg(correction.channel + 1)
                                    .arg(correction.gain)
                                    .arg(quint16(correction.phase)));
        // Marked as written at once, whether or not the device then accepts it.
        corrections->markSaved(row);
    }
    return startProgram(program);
}

bool Uki::writeCommands(QStringList commands)
{
    auto program = std::make_shared<UkiProgram>();
    program->type = UkiProgram::Write;
    for (const QString &command : qAsConst(commands))
        program->addCommand(command);
    return startProgram(program);
}

bool Uki::startProgram(const std::shared_ptr<UkiProgram> &program)
{
    if (m_thread) {
        qDebug("Ukps::startProgram() called when not idle!");
        stopLink();
        return false;
    }
    if (m_program) {
        qDebug("Ukps::startProgram() called when another program active!");
        return false;
    }
    emit programStart();
    m_cancelled = false;
    m_disconnected = false;
    m_lastError.clear();
    m_program = program;
    m_answered = 0;
    emit progress(0, int(program->commands.size()));
    openLink();
    return true;
}

void Uki::openLink()
{
    m_thread = new QThread;
    auto link = new SerialLink(m_portName);
    link->moveToThread(m_thread);

    connect(m_thread, &QThread::finished, this, &Uki::threadFinished);
    connect(link, &SerialLink::connected, this, &Uki::linkConnected);
    connect(link, &SerialLink::error, this, &Uki::linkError);
    connect(link, &SerialLink::disconnected, this, &Uki::linkDisconnected);
    connect(link, &SerialLink::logMessage, this, &Uki::logMessage);
    connect(link, &SerialLink::taskDone, this, &Uki::taskDone);
    connect(link, &SerialLink::received, this, &Uki::received);
    connect(this, &Uki::runTask, link, &SerialLink::runTask);
    connect(m_thread, &QThread::started, link, &SerialLink::start);
    connect(m_thread, &QThread::finished, link, &QObject::deleteLater);
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);

    m_thread->start(QThread::InheritPriority);
}

void Uki::cancel()
{
    if (!m_program || !m_thread)
        return;
    m_cancelled = true;
    const QString command = m_pendingTask ? m_pendingTask->command : QString();
    emit logMessage(command.isEmpty()
                            ? QStringLiteral("Операция прервана.")
                            : QStringLiteral("Операция прервана на команде %1").arg(command));
    stopLink();
}

void Uki::stopLink()
{
    if (!m_thread)
        return;
    m_thread->quit();
    m_thread->wait();
    m_thread = nullptr;
}

void Uki::sendCommand(int index)
{
    m_pendingTask = new SerialTask(
            m_program->commands.at(index).command, kIdleTimeoutMs, kAnswerTimeoutMs);
    releaseTask(m_pendingTask);
    emit runTask(m_pendingTask);
}

void Uki::linkConnected()
{
    emit logMessage(QStringLiteral("Порт %1: открыт.").arg(m_portName));
    if (!m_program) {
        qDebug("Ukps::linkConnected() called but no active program");
        stopLink();
        return;
    }
    if (m_program->commands.isEmpty()) {
        qDebug("Ukps::linkConnected() : empty active program");
        stopLink();
        return;
    }
    sendCommand(0);
}

void Uki::linkError(QString err)
{
    m_lastError = QStringLiteral("Порт %1: Ошибка: %2.").arg(m_portName, err);
    emit logMessage(m_lastError);
    stopLink();
}

void Uki::linkDisconnected()
{
    m_disconnected = true;
    m_lastError = QStringLiteral("Порт %1 отключён.").arg(m_portName);
    emit logMessage(m_lastError);
    stopLink();
}

void Uki::taskDone(SerialTask *task)
{
    acquireTask(task);
    const QString command = task->command;
    QString reply = task->reply;
    if (task == m_pendingTask)
        m_pendingTask = nullptr;
    delete task;

    // A reply that was already on its way when the link was stopped (after a port error):
    // the run is over and its outcome must not change.
    if (!m_thread && m_program)
        return;
    if (!m_program) {
        qDebug("Ukps::taskDone() called but no active program");
        stopLink();
        return;
    }
    // Repeated commands in one program all match the first of them.
    int index = -1;
    for (int i = 0; i < m_program->commands.size(); ++i) {
        if (m_program->commands.at(i).command == command) {
            index = i;
            break;
        }
    }
    if (index < 0) {
        qDebug().noquote() << QLatin1String("Ukps::taskDone(): unknown task: ") + command;
        stopLink();
        return;
    }
    if (reply.isEmpty()) {
        m_lastError = QStringLiteral("Нет ответа на команду %1").arg(command);
        emit logMessage(m_lastError);
        stopLink();
        return;
    }
    if (reply.startsWith(QLatin1String("Unrecognize"))) {
        m_lastError = QStringLiteral("Ошибка при выполнении команды %1").arg(command);
        emit logMessage(m_lastError);
        stopLink();
        return;
    }

    reply.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    emit logMessage(QStringLiteral("rxData %1").arg(reply));
    // The closing "OK" line stays in the list: every consumer gets it as one more line.
    UkiCommand &answered = m_program->commands[index];
    answered.response = reply.trimmed().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (m_program->type == UkiProgram::ReadData) {
        for (const ReadCommand &read : kReadCommands) {
            if (command == QLatin1String(read.command))
                *linesOf(read.flag) = answered.response;
        }
    }
    emit progress(++m_answered, int(m_program->commands.size()));

    if (index + 1 < m_program->commands.size()) {
        sendCommand(index + 1);
        return;
    }
    emit logMessage(QStringLiteral("Результаты:"));
    switch (m_program->type) {
    case UkiProgram::Write:
        m_program->success = true;
        break;
    case UkiProgram::ReadData:
        readDataResult();
        break;
    case UkiProgram::ReadStatistics:
        readStatisticsResult();
        break;
    }
    stopLink();
}

void Uki::readDataResult()
{
    uint32_t collected = 0;
    for (const UkiCommand &command : qAsConst(m_program->commands)) {
        for (const ReadCommand &read : kReadCommands) {
            if (command.command == QLatin1String(read.command)) {
                *linesOf(read.flag) = command.response;
                collected |= read.flag;
            }
        }
    }
    m_program->success = collected == m_flags;
    if (!m_program->success)
        return;

    if ((m_flags & ReadIdentification) && !m_cfgLines.isEmpty()) {
        m_locators = std::make_shared<Locators>(m_cfgLines);
        emit logMessage(QStringLiteral("_locators_"));
    }
    if (m_flags & ReadIdentification) {
        for (const QString &line : qAsConst(m_cfgLines)) {
            if (line.startsWith(QLatin1String("Addr\tver\tEnabled\tTested")))
                continue;
            const QString trimmed = line.trimmed();
            const QStringList words = trimmed.split(QLatin1Char('\t'));
            emit logMessage(QStringLiteral("line : %1").arg(trimmed));
            if (words.size() != 6) {
                // The closing "OK" line always lands here.
                qDebug().noquote() << QLatin1String("Bad line in UKI versions list: ") + trimmed;
                continue;
            }
            emit logMessage(
                    QStringLiteral("word[0] = %1 : word[1] = %2").arg(words.at(0), words.at(1)));
            if (words.at(0) == QLatin1String("UKI"))
                m_ukiVersion = words.at(1);
        }
    }
    if (m_flags & ReadCustomChannels)
        m_customChannels = std::make_shared<CustomChannels>(m_custLines);
}

void Uki::readStatisticsResult()
{
    auto statistics = std::make_shared<SearchStatistics>();
    if (!statistics->parse(*m_program))
        return;
    m_program->success = true;
    m_statsAddress = statistics->address;
    m_statsChannel = statistics->channel;
    m_statsLevel = statistics->level;
    m_statistics.insert(statistics);
}

void Uki::threadFinished()
{
    // Every task the link returned before its thread ended has been received by now; one it
    // still held when it was stopped is never coming back.
    delete m_pendingTask;
    m_pendingTask = nullptr;
    emit logMessage(QStringLiteral("Порт %1: закрыт.").arg(m_portName));
    // The program stays active until its outcome has been told, so a request made by a receiver
    // is refused instead of starting a run whose flags would be reported here.
    const bool success = m_program && m_program->success;
    const uint32_t flags = m_flags;
    emit programDone(success);
    switch (m_program ? m_program->type : -1) {
    case UkiProgram::ReadData:
        emit configReadDone(success, flags);
        break;
    case UkiProgram::Write:
        emit configWriteDone(success);
        break;
    case UkiProgram::ReadStatistics:
        emit statsReadDone(success, m_statsAddress, m_statsChannel, m_statsLevel);
        break;
    }
    m_program.reset();
}
