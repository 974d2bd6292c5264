#include "fuzzinput.h"
#include "fuzztargets.h"

#include "models/customchannels.h"

namespace {

bool sameChannel(const CustomChannel &a, const CustomChannel &b)
{
    return a.address == b.address && a.channel == b.channel && a.rLoc == b.rLoc
           && a.lower == b.lower && a.upper == b.upper && a.enabled == b.enabled;
}

QVector<CustomChannel> records(const CustomChannels &model)
{
    QVector<CustomChannel> result;
    for (int row = 0; row < model.rowCount(); ++row) {
        CustomChannel record;
        record.address = model.data(model.index(row, CustomChannels::AddressColumn)).toUInt();
        record.channel = model.data(model.index(row, CustomChannels::ChannelColumn)).toUInt() - 1;
        const QVariant rLoc = model.data(model.index(row, CustomChannels::RLocColumn));
        record.enabled = rLoc != QVariant(QStringLiteral("OFF"));
        if (record.enabled) {
            record.rLoc = rLoc.toUInt();
            record.lower = model.data(model.index(row, CustomChannels::LowerColumn)).toUInt() / 5;
            record.upper = model.data(model.index(row, CustomChannels::UpperColumn)).toUInt() / 5;
        }
        result.append(record);
    }
    return result;
}

} // namespace

void fuzzCustomChannels(const uint8_t *data, size_t size)
{
    const QStringList lines = Fuzz::replyLines(data, size);
    const CustomChannels model(lines);
    Fuzz::check(model.rowCount() <= lines.size(), "more rows than lines");
    Fuzz::touchModel(model);

    const QVector<CustomChannel> rows = records(model);
    for (const CustomChannel &row : rows) {
        Fuzz::check(row.address <= 254 && row.channel <= 15, "address or channel out of range");
        if (row.enabled) {
            Fuzz::check(row.rLoc >= 1 && row.rLoc <= 999 && row.lower <= 15 && row.upper <= 15,
                        "rLoc or a bound out of range");
        }
        CustomChannel found;
        Fuzz::check(model.findChannel(row.address, row.channel, found),
                    "findChannel misses a row of the table");
    }

    const QStringList text = model.toText();
    Fuzz::check(text.size() == model.rowCount() + 1, "toText: not a header and one line per row");
    const CustomChannels again(text);
    const QVector<CustomChannel> rowsAgain = records(again);
    Fuzz::check(rowsAgain.size() == rows.size(), "toText read back: other row count");
    for (int i = 0; i < rows.size(); ++i)
        Fuzz::check(sameChannel(rowsAgain.at(i), rows.at(i)), "toText read back: other row");
}
