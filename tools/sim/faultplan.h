#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

namespace Sim {

// How the line misbehaves for one command.
enum class Fault {
    None,
    Silence, // no reply at all
    Reject,  // "Unrecognize" instead of the reply
    Slow,    // first byte 80 ms after the command
    Gap,     // 60 ms of silence after the first half of the reply
    Garbage, // noise with NUL bytes instead of the reply
    Hangup,  // half of the reply, then the line is closed for good
    Flood,   // the reply repeated without end, until the next command arrives
};

// Which faults apply to which commands: rules "MODE" (every command) or "MODE:PREFIX"
// (commands beginning with PREFIX), the first matching rule wins. Rules come from the
// command line and, when given, from a file re-read whenever it changes.
class FaultPlan
{
public:
    // Adds one rule; false when MODE is not a known fault.
    bool addRule(const QByteArray &ruleText);
    // Rules read from this file follow the command-line rules; one rule a line, '#' comments.
    void setRuleFile(const QString &path) { m_file = path; }

    Fault faultFor(const QByteArray &command);

    static QByteArray name(Fault fault);
    static const char *modeList();

private:
    struct Rule
    {
        Fault fault = Fault::None;
        QByteArray prefix;
    };
    static bool parseRule(const QByteArray &ruleText, Rule *rule);
    void reloadFile();

    QVector<Rule> m_rules;
    QVector<Rule> m_fileRules;
    QString m_file;
    QDateTime m_fileStamp;
    qint64 m_fileSize = -1;
};

} // namespace Sim
