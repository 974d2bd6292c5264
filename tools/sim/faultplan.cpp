#include "faultplan.h"

#include <QFile>
#include <QFileInfo>

namespace Sim {

namespace {

struct ModeName
{
    Fault fault;
    const char *name;
};

const ModeName modes[] = {
        {Fault::Silence, "silence"},
        {Fault::Reject, "reject"},
        {Fault::Slow, "slow"},
        {Fault::Gap, "gap"},
        {Fault::Garbage, "garbage"},
        {Fault::Hangup, "hangup"},
        {Fault::Flood, "flood"},
};

} // namespace

bool FaultPlan::parseRule(const QByteArray &ruleText, Rule *rule)
{
    const int colon = ruleText.indexOf(':');
    const QByteArray mode = colon < 0 ? ruleText : ruleText.left(colon);
    for (const ModeName &m : modes) {
        if (mode == m.name) {
            rule->fault = m.fault;
            rule->prefix = colon < 0 ? QByteArray() : ruleText.mid(colon + 1);
            return true;
        }
    }
    return false;
}

bool FaultPlan::addRule(const QByteArray &ruleText)
{
    Rule rule;
    if (!parseRule(ruleText, &rule))
        return false;
    m_rules.append(rule);
    return true;
}

void FaultPlan::reloadFile()
{
    if (m_file.isEmpty())
        return;
    const QFileInfo info(m_file);
    const QDateTime stamp = info.exists() ? info.lastModified() : QDateTime();
    const qint64 size = info.exists() ? info.size() : -1;
    if (stamp == m_fileStamp && size == m_fileSize)
        return;
    m_fileStamp = stamp;
    m_fileSize = size;
    m_fileRules.clear();
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &raw : lines) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        Rule rule;
        if (parseRule(line, &rule))
            m_fileRules.append(rule);
        else
            qWarning("kiranto-sim: unknown fault rule \"%s\" in %s",
                     line.constData(),
                     qPrintable(m_file));
    }
}

Fault FaultPlan::faultFor(const QByteArray &command)
{
    reloadFile();
    for (const QVector<Rule> *rules : {&m_rules, &m_fileRules}) {
        for (const Rule &rule : *rules) {
            if (command.startsWith(rule.prefix))
                return rule.fault;
        }
    }
    return Fault::None;
}

QByteArray FaultPlan::name(Fault fault)
{
    for (const ModeName &m : modes) {
        if (m.fault == fault)
            return m.name;
    }
    return "none";
}

const char *FaultPlan::modeList()
{
    return "silence, reject, slow, gap, garbage, hangup, flood";
}

} // namespace Sim
