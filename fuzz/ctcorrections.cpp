#include "fuzzinput.h"
#include "fuzztargets.h"

#include "models/ctcorrections.h"

namespace {

bool sameRow(const CtCorrection &a, const CtCorrection &b)
{
    return a.address == b.address && a.channel == b.channel && a.gain == b.gain
           && a.phase == b.phase;
}

} // namespace

void fuzzCtCorrections(const uint8_t *data, size_t size)
{
    const QStringList lines = Fuzz::replyLines(data, size);
    CtCorrections model(lines);
    Fuzz::check(model.rowCount() <= lines.size(), "more rows than lines");
    Fuzz::touchModel(model);
    for (int row = 0; row < model.rowCount(); ++row) {
        const CtCorrection record = model.rowAt(row);
        Fuzz::check(record.address <= 254 && record.channel <= 15 && record.gain >= 1
                            && record.gain <= 99900,
                    "a row outside the accepted ranges was kept");
        Fuzz::check(!model.isModified(row), "a row read from text is modified");
    }

    const QStringList text = model.toText();
    Fuzz::check(text.size() == model.rowCount() + 1, "toText: not a header and one line per row");
    const CtCorrections again(text);
    Fuzz::check(again.rowCount() == model.rowCount(), "toText read back: other row count");
    for (int row = 0; row < model.rowCount(); ++row)
        Fuzz::check(sameRow(again.rowAt(row), model.rowAt(row)), "toText read back: other row");

    // Edit every cell with the value it shows, as a committed editor would.
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
            const QModelIndex index = model.index(row, column);
            const bool editable = model.flags(index) & Qt::ItemIsEditable;
            Fuzz::check(model.setData(index, model.data(index, Qt::EditRole)) == editable,
                        "setData and flags disagree");
        }
    }
    const CtCorrections empty;
    model.markDifferences(empty);
    model.markDifferences(again);
    Fuzz::touchModel(model);
    for (int row = -1; row <= model.rowCount(); ++row)
        model.markSaved(row);
    for (int row = 0; row < model.rowCount(); ++row)
        Fuzz::check(!model.isModified(row), "markSaved leaves a row modified");
}
