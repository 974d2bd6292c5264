#include "fuzzinput.h"
#include "fuzztargets.h"

#include "settings/ukpssettings.h"

void fuzzUkpsSettings(const uint8_t *data, size_t size)
{
    UkpsSettings settings;
    const bool taken = settings.fromLines(Fuzz::replyLines(data, size));
    Fuzz::check(taken || settings == UkpsSettings(), "nothing taken, yet the record changed");

    int keyed = 0;
    for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
        const auto field = UkpsSettings::Field(i);
        const qint32 value = settings.value(field);
        if (UkpsSettings::key(field).size() == 0) {
            Fuzz::check(value == UkpsSettings::defaultValue(field), "a reserved word changed");
            continue;
        }
        ++keyed;
        Fuzz::check(value == UkpsSettings::defaultValue(field)
                            || (value >= UkpsSettings::minimum(field)
                                && value <= UkpsSettings::maximum(field)),
                    "fromLines stored a value outside the accepted range");
    }

    const QStringList lines = settings.toLines();
    Fuzz::check(lines.size() == keyed, "toLines: not one line per keyed field");
    UkpsSettings again;
    again.fromLines(lines);
    Fuzz::check(again == settings, "toLines read back gives another record");

    const QStringList commands = settings.writeCommands();
    Fuzz::check(commands.size() == keyed + 1, "writeCommands: wrong count");
    for (int i = 0; i < keyed; ++i) {
        Fuzz::check(commands.at(i)
                            == QLatin1String("set_cfg_")
                                       + lines.at(i).section(QLatin1Char('\t'), 0, 0)
                                       + QLatin1Char('_')
                                       + lines.at(i).section(QLatin1Char('\t'), 1, 1),
                    "writeCommands and toLines disagree");
    }
    Fuzz::check(commands.last() == QLatin1String("set_cfg_save_1"), "writeCommands: no save");
}
