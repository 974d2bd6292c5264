#include "fuzzinput.h"
#include "fuzztargets.h"

#include "protocol/searchstatistics.h"
#include "protocol/ukiprogram.h"

#include <memory>

namespace {

void checkStatistics(const UkiProgram &program)
{
    auto statistics = std::make_shared<SearchStatistics>();
    if (!statistics->parse(program)) {
        Fuzz::check(program.commands.isEmpty()
                            || statistics->points.size() < program.commands.size(),
                    "a failed read holds a point for every command");
        return;
    }
    Fuzz::check(statistics->points.size() == program.commands.size(), "not one point per command");
    Fuzz::check(statistics->sortedPoints.size() == statistics->points.size(),
                "sortedPoints and points differ in size");
    for (const StatPoint &point : statistics->points)
        Fuzz::check(!(point.value3 > 999.9), "value3 above 999.9");
    for (int i = 1; i < statistics->sortedPoints.size(); ++i) {
        Fuzz::check(!(statistics->sortedPoints.at(i).value3
                      < statistics->sortedPoints.at(i - 1).value3),
                    "sortedPoints out of order");
    }
    if (!statistics->points.isEmpty()) {
        const auto range = statistics->valueRange();
        Fuzz::check(!(range.second < range.first), "valueRange: maximum below minimum");
    }

    StatisticsStore store;
    store.insert(statistics);
    Fuzz::check(store.find(statistics->address, statistics->channel, statistics->level)
                        == statistics,
                "the store does not find the record by its key");
}

} // namespace

// Lines alternate: a command text, then the data line of its reply (the "OK" line follows it
// as on the wire). A command on the last line has an empty reply.
void fuzzSearchStatistics(const uint8_t *data, size_t size)
{
    const QStringList lines = Fuzz::replyLines(data, size);
    UkiProgram program;
    program.type = UkiProgram::ReadStatistics;
    for (int i = 0; i < lines.size(); i += 2) {
        program.addCommand(lines.at(i));
        if (i + 1 < lines.size())
            program.commands.last().response = QStringList{lines.at(i + 1), QStringLiteral("OK")};
    }
    checkStatistics(program);
}

// Exposed for the canned reply target, which runs the statistics parser on canned replies.
void fuzzStatisticsProgram(const UkiProgram &program)
{
    checkStatistics(program);
}
