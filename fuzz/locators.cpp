#include "fuzzinput.h"
#include "fuzztargets.h"

#include "models/locators.h"

void fuzzLocators(const uint8_t *data, size_t size)
{
    const QStringList lines = Fuzz::replyLines(data, size);
    const Locators model(lines);
    Fuzz::check(model.rowCount() <= lines.size(), "more rows than lines");
    Fuzz::check(model.size() == model.rowCount() && model.count() == model.rowCount(),
                "size(), count() and rowCount() disagree");
    Fuzz::touchModel(model);
    for (int row = -1; row <= model.rowCount(); ++row) {
        const LocatorRecord record = model.locatorAt(row);
        Fuzz::consume(record.version);
        if (record.isMonitor)
            Fuzz::check(record.address == 0, "the monitor's row has an address");
    }
}
