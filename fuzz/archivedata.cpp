#include "fuzzinput.h"
#include "fuzztargets.h"

#include "app/programsettings.h"
#include "models/archivedata.h"
#include "models/archivefilterproxy.h"

namespace {

// Lines read one by one: the time of a kept event must be what timeFromText() gives for its
// date and time fields (the model takes a faster road for well-formed dates).
void checkTimes(const QStringList &lines)
{
    const int count = qMin(lines.size(), 16);
    for (int i = 0; i < count; ++i) {
        const ArchiveData single({lines.at(i)});
        if (single.rowCount() != 1)
            continue;
        const QStringList fields = lines.at(i).trimmed().split(QLatin1Char('\t'));
        const ArchiveEvent event = single.eventAt(0);
        Fuzz::check(event.time == ArchiveData::timeFromText(fields.at(1), fields.at(2)),
                    "event time differs from timeFromText()");
        if (event.type == ET_FEED_PARAM) {
            const quint32 stamp = ArchiveData::timeFromText(fields.at(10), fields.at(11));
            Fuzz::check(event.values[6] == quint16(stamp)
                                && event.values[7] == quint16(stamp >> 16),
                        "search time stamp differs from timeFromText()");
        }
    }
}

} // namespace

void fuzzArchiveData(const uint8_t *data, size_t size)
{
    const QStringList lines = Fuzz::replyLines(data, size);
    ArchiveData model(lines);
    Fuzz::check(model.rowCount() <= lines.size(), "more events than lines");
    Fuzz::touchModel(model);

    for (int row = 0; row < model.rowCount(); ++row) {
        const ArchiveEvent event = model.eventAt(row);
        Fuzz::check(event.type != ET_NONE, "an event without a type was kept");
        Fuzz::consume(ArchiveData::eventTypeText(event));
        Fuzz::consume(ArchiveData::eventDataText(event));
        for (int column = ArchiveData::FirstRawColumn; column <= ArchiveData::LastRawColumn;
             ++column) {
            const QModelIndex index = model.rawIndex(row, column);
            Fuzz::check(index.isValid(), "rawIndex refuses a raw column");
            Fuzz::check(model.data(index).toUInt() == event.values[std::size_t(column - 3)],
                        "raw column does not show Value-(column - 2)");
        }
        Fuzz::check(!model.rawIndex(row, ArchiveData::LastRawColumn + 1).isValid(),
                    "rawIndex accepts a column past the raw ones");
    }
    Fuzz::consume(ArchiveData::eventDataText(model.eventAt(model.rowCount())));

    // Every class filters; the cells are read through one of them.
    ArchiveFilterProxy proxy;
    proxy.setSourceModel(&model);
    for (quint32 filterClass = 0; filterClass <= 8; ++filterClass) {
        proxy.setFilterClass(filterClass);
        for (int row = 0; row < proxy.rowCount(); ++row) {
            const QModelIndex source = proxy.mapToSource(proxy.index(row, 0));
            Fuzz::check(
                    ArchiveFilterProxy::classAccepts(filterClass, model.eventAt(source.row()).type),
                    "the filter passes an event of another class");
        }
    }
    ProgramSettings::instance().variant = int(size % 6) - 1;
    proxy.setFilterIndex(int(size % 9) - 1);
    proxy.sort(int(size % 5) - 1);
    Fuzz::touchModel(proxy);

    model.setLines(lines);
    Fuzz::check(proxy.rowCount() <= model.rowCount(), "the filter shows more rows than the model");
    checkTimes(lines);
}
