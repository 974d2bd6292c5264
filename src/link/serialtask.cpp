#include "serialtask.h"

#include <QDateTime>

SerialTask::SerialTask(QString text, qint64 idleMs, qint64 answerMs)
    : command(std::move(text))
    , idleTimeoutMs(idleMs)
    , answerTimeoutMs(answerMs)
    , lastActivityAt(QDateTime::currentMSecsSinceEpoch())
{}
