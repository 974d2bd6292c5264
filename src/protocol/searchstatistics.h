#pragma once

#include <QVector>

#include <map>
#include <memory>
#include <tuple>
#include <utility>

struct UkiProgram;

// One fault-search measurement: the three columns of one "srch_stats" reply line.
struct StatPoint
{
    double value1 = 0.0;
    double value2 = 0.0;
    double value3 = 0.0; // never above 999.9
};

// The fault-search statistics of one channel at one level, read with a run of "srch_stats" commands.
class SearchStatistics
{
public:
    quint32 address = 0;
    quint32 channel = 0; // 0-based, as in the command
    quint32 level = 0;
    QVector<StatPoint> points;       // in index order
    QVector<StatPoint> sortedPoints; // by value3 ascending

    // Reads the replies of a finished statistics program; problems go to the debug log.
    bool parse(const UkiProgram &program);
    // Smallest and largest value3 of points; the record must not be empty.
    std::pair<double, double> valueRange() const;
};

// Every statistics record read so far, ordered by address, channel, level.
class StatisticsStore
{
public:
    using Key = std::tuple<quint32, quint32, quint32>;

    // Replaces a record stored under the same key.
    void insert(const std::shared_ptr<SearchStatistics> &statistics);
    // The stored record, or an empty pointer.
    std::shared_ptr<SearchStatistics> find(quint32 address, quint32 channel, quint32 level) const;
    int size() const { return int(m_records.size()); }
    void clear() { m_records.clear(); }

private:
    std::map<Key, std::shared_ptr<SearchStatistics>> m_records;
};
