#include "fuzzinput.h"
#include "fuzztargets.h"

#include "models/archivedata.h"
#include "models/archivefilterproxy.h"

namespace {

bool sameEvent(const ArchiveEvent &a, const ArchiveEvent &b)
{
    return a.item == b.item && a.time == b.time && a.type == b.type && a.values == b.values;
}

// Each line read on its own gives the event the whole dump gave for it (the model caches local
// days during one parse), and its time is what timeFromText() gives for the date and time fields
// (the model takes a faster road for well-formed dates).
void checkLineByLine(const ArchiveData &model, const QStringList &lines)
{
    if (lines.size() > 64)
        return;
    int row = 0;
    for (const QString &line : lines) {
        const ArchiveData single({line});
        if (single.rowCount() == 0)
            continue;
        Fuzz::check(single.rowCount() == 1, "one line gives more than one event");
        const ArchiveEvent event = single.eventAt(0);
        Fuzz::check(row < model.rowCount() && sameEvent(model.eventAt(row), event),
                    "a line read alone gives another event than in the whole dump");
        ++row;

        const QStringList fields = line.trimmed().split(QLatin1Char('\t'));
        Fuzz::check(event.time == ArchiveData::timeFromText(fields.at(1), fields.at(2)),
                    "event time differs from timeFromText()");
        if (event.type == ET_FEED_PARAM) {
            const quint32 stamp = ArchiveData::timeFromText(fields.at(10), fields.at(11));
            Fuzz::check(event.values[6] == quint16(stamp)
                                && event.values[7] == quint16(stamp >> 16),
                        "search time stamp differs from timeFromText()");
        }
    }
    Fuzz::check(row == model.rowCount(), "the whole dump gives events no line gives alone");
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
    proxy.setFilterIndex(int(size % 6) - 1, int(size % 9) - 1);
    proxy.sort(int(size % 5) - 1);
    Fuzz::touchModel(proxy);

    model.setLines(lines);
    Fuzz::check(proxy.rowCount() <= model.rowCount(), "the filter shows more rows than the model");
    checkLineByLine(model, lines);
}
