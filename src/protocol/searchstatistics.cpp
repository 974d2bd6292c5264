#include "searchstatistics.h"

#include "ukiprogram.h"

#include <QDebug>

#include <algorithm>

static bool readUnsigned(const QString &text, quint32 *value)
{
    bool ok = false;
    *value = text.toUInt(&ok, 10);
    return ok;
}

bool SearchStatistics::parse(const UkiProgram &program)
{
    points.clear();
    sortedPoints.clear();

    if (program.commands.isEmpty()) {
        qDebug("empty \"read statistics\" program");
        return false;
    }

    // "srch_stats_LEVEL_ADDRESS_CHANNEL_INDEX"
    const QStringList first = program.commands.first().command.split(QLatin1Char('_'));
    if (first.size() != 6 || !readUnsigned(first.at(2), &level)
        || !readUnsigned(first.at(3), &address) || !readUnsigned(first.at(4), &channel)) {
        qDebug("cannot get program parameters for \"read statistics\" program");
        return false;
    }

    points.reserve(program.commands.size());
    for (const UkiCommand &command : program.commands) {
        const QStringList parts = command.command.split(QLatin1Char('_'));
        if (parts.size() != 6) {
            qDebug("bad command in \"read statistics\" program");
            return false;
        }
        quint32 index = 0;
        if (!readUnsigned(parts.at(5), &index) || index != quint32(points.size())) {
            qDebug("wrong index sequence in \"read statistics\" program");
            return false;
        }
        const QStringList items = command.response.value(0).split(QLatin1Char('\t'));
        if (items.size() != 3) {
            qDebug("bad response items count in \"read statistics\" program");
            return false;
        }
        // An item that is not a number reads as 0, deliberately unchecked.
        StatPoint point{items.at(0).toDouble(), items.at(1).toDouble(), items.at(2).toDouble()};
        if (point.value3 > 999.9)
            point.value3 = 999.9;
        points.append(point);
    }

    sortedPoints = points;
    std::sort(sortedPoints.begin(), sortedPoints.end(), [](const StatPoint &a, const StatPoint &b) {
        return a.value3 < b.value3;
    });
    return true;
}

std::pair<double, double> SearchStatistics::valueRange() const
{
    const auto [minimum, maximum] = std::minmax_element(
            points.cbegin(), points.cend(), [](const StatPoint &a, const StatPoint &b) {
                return a.value3 < b.value3;
            });
    return {minimum->value3, maximum->value3};
}

void StatisticsStore::insert(const std::shared_ptr<SearchStatistics> &statistics)
{
    m_records[Key(statistics->address, statistics->channel, statistics->level)] = statistics;
}

std::shared_ptr<SearchStatistics> StatisticsStore::find(quint32 address,
                                                        quint32 channel,
                                                        quint32 level) const
{
    const auto it = m_records.find(Key(address, channel, level));
    return it == m_records.end() ? nullptr : it->second;
}
