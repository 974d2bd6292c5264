#include "fuzzinput.h"
#include "fuzztargets.h"

#include "settings/ukisettings.h"

#include <QJsonDocument>

namespace {

// What every record must satisfy, whatever text it was read from.
void checkRecord(const UkiSettings &settings)
{
    const QStringList lines = settings.toLines();
    Fuzz::check(lines.size() == UkiSettings::FieldCount, "toLines: not one line per field");
    // Read back into a fresh record, the lines give every value within its accepted range and
    // leave the others at their defaults (the JSON form is not range-checked).
    UkiSettings expected;
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        const qint32 value = settings.value(field);
        if (value >= UkiSettings::minimum(field) && value <= UkiSettings::maximum(field))
            expected.setValue(field, value);
    }
    UkiSettings again;
    again.fromLines(lines);
    Fuzz::check(again == expected, "toLines read back gives another record");

    const QStringList commands = settings.writeCommands();
    Fuzz::check(commands.size() == UkiSettings::FieldCount + 1, "writeCommands: wrong count");
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        const QString command = QLatin1String("set_cfg_") + UkiSettings::key(field)
                                + QLatin1Char('_') + QString::number(settings.value(field));
        Fuzz::check(commands.at(i) == command, "writeCommands: wrong command");
    }
    Fuzz::check(commands.last() == QLatin1String("set_cfg_save_1"), "writeCommands: no save");

    Fuzz::check(UkiSettings::fromJson(settings.toJson()) == settings,
                "JSON form read back gives another record");
}

} // namespace

void fuzzUkiSettings(const uint8_t *data, size_t size)
{
    UkiSettings settings;
    settings.fromLines(Fuzz::replyLines(data, size));
    for (int i = 0; i < UkiSettings::FieldCount; ++i) {
        const auto field = UkiSettings::Field(i);
        const qint32 value = settings.value(field);
        Fuzz::check(value == UkiSettings::defaultValue(field)
                            || (value >= UkiSettings::minimum(field)
                                && value <= UkiSettings::maximum(field)),
                    "fromLines stored a value outside the accepted range");
    }
    checkRecord(settings);
}

void fuzzUkiSettingsJson(const uint8_t *data, size_t size)
{
    const QJsonDocument document = QJsonDocument::fromJson(
            QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size)));
    const UkiSettings settings = UkiSettings::fromJson(document.object());
    checkRecord(settings);
}
