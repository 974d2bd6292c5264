#include "settings/settingstext.h"

#include <QDebug>

#include <algorithm>

namespace SettingsText {

int parseLines(const QStringList &lines,
               const QVector<Field> &fields,
               qint32 *values,
               QLatin1String unknownKeyPrefix,
               bool echoLines)
{
    int stored = 0;
    for (const QString &rawLine : lines) {
        if (echoLines)
            qDebug().noquote() << QLatin1String("Line in UKI config : ") + rawLine;

        const QString line = rawLine.trimmed();
        const QStringList parts = line.split(QLatin1Char('\t'));
        if (parts.size() < 2) {
            qDebug().noquote() << QLatin1String("Bad line in UKI config : ") + line;
            continue;
        }
        const QString key = parts.at(0).simplified();
        // Text that is no decimal number reads as 0 and is range-checked like any other value.
        const qint32 value = parts.at(1).simplified().toInt(nullptr, 10);

        const auto field = std::find_if(
                fields.cbegin(), fields.cend(), [&key](const Field &f) { return key == f.key; });
        if (field == fields.cend()) {
            qDebug().noquote() << unknownKeyPrefix + key;
            continue;
        }
        if (value < field->minimum || value > field->maximum) {
            qDebug().noquote().nospace() << "got bad value for " << key << " : " << value << "!";
            continue;
        }
        values[field->slot] = value;
        ++stored;
    }
    return stored;
}

QStringList renderLines(const QVector<Field> &fields, const qint32 *values)
{
    QStringList lines;
    lines.reserve(fields.size());
    for (const Field &field : fields)
        lines.append(QStringLiteral("%1\t%2").arg(field.key).arg(values[field.slot]));
    return lines;
}

QStringList writeCommands(const QVector<Field> &fields, const qint32 *values)
{
    QStringList commands;
    commands.reserve(fields.size() + 1);
    for (const Field &field : fields)
        commands.append(QStringLiteral("set_cfg_%1_%2").arg(field.key).arg(values[field.slot]));
    commands.append(QStringLiteral("set_cfg_save_1"));
    return commands;
}

} // namespace SettingsText
