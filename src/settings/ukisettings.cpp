#include "settings/ukisettings.h"

#include "settings/settingstext.h"

#include <iterator>

namespace {

struct UkiField
{
    const char *key;
    qint32 minimum;
    qint32 maximum;
    qint32 defaultValue;
    // Taken by fromJson for a missing member.
    qint32 jsonFallback;
};

// In the order of UkiSettings::Field: key, accepted minimum and maximum, default, JSON fall-back.
// clang-format off
constexpr UkiField ukiFields[] = {
    {"AddrUki",      0,         31,   0,   0},
    {"NumUki",       0,         32,   1,   1},
    {"RisoM3s1",     1,        999,  40,  40},
    {"RisoM3s2",     1,        999,  20,  20},
    {"RisoLoc",     10,        990,  80,  80},
    {"TimeMto",      0,         60,  20,  20},
    {"Tcust",        0,        120,   0,   0},
    {"TimeM3s",      0,          5,   0,   0},
    {"Riso420",      2,        999, 200, 200},
    {"Flags",        0, 2147483647, 130, 130},
    {"Urelay",       1,        300, 250, 250},
    {"Uminus",       0,        300, 135, 135},
    {"MbAddr",       1,        247,   1,   1},
    {"MbBaud",       0,          7,   3,   3},
    {"MbParity",     0,          2,   0,   0},
    {"CapSopt",      0,        900,   0,   0},
    {"ModeDef",      0,          5,   0,   0},
    {"Bright",       0,       1000, 500,   0},
    {"Contrast",     0,        100,  30, 500},
    {"Tbridge",      0,          2,   0,  30},
    {"lang",         0,          1,   0,   0},
    {"Averaging",    0,         50,  10,   0},
    {"ModeInput",    0,          2,   0,  50},
};
// clang-format on
static_assert(std::size(ukiFields) == UkiSettings::FieldCount, "one row per field");

const QVector<SettingsText::Field> &ukiTextFields()
{
    static const QVector<SettingsText::Field> text = [] {
        QVector<SettingsText::Field> result;
        for (int i = 0; i < UkiSettings::FieldCount; ++i)
            result.append({QLatin1String(ukiFields[i].key),
                           ukiFields[i].minimum,
                           ukiFields[i].maximum,
                           i});
        return result;
    }();
    return text;
}

} // namespace

QLatin1String UkiSettings::key(Field field)
{
    return QLatin1String(ukiFields[field].key);
}

qint32 UkiSettings::minimum(Field field)
{
    return ukiFields[field].minimum;
}

qint32 UkiSettings::maximum(Field field)
{
    return ukiFields[field].maximum;
}

qint32 UkiSettings::defaultValue(Field field)
{
    return ukiFields[field].defaultValue;
}

void UkiSettings::fromLines(const QStringList &lines)
{
    SettingsText::parseLines(
            lines, ukiTextFields(), m_values.data(), QLatin1String("Bad string uki: \""), false);
}

QStringList UkiSettings::toLines() const
{
    return SettingsText::renderLines(ukiTextFields(), m_values.data());
}

QStringList UkiSettings::writeCommands() const
{
    return SettingsText::writeCommands(ukiTextFields(), m_values.data());
}

QJsonObject UkiSettings::toJson() const
{
    QJsonObject object;
    for (int i = 0; i < FieldCount; ++i)
        object.insert(QLatin1String(ukiFields[i].key), m_values[i]);
    return object;
}

UkiSettings UkiSettings::fromJson(const QJsonObject &object)
{
    UkiSettings settings;
    for (int i = 0; i < FieldCount; ++i)
        settings.m_values[i] = object.value(QLatin1String(ukiFields[i].key))
                                       .toInt(ukiFields[i].jsonFallback);
    return settings;
}

UkiSettings::Values UkiSettings::defaultValues()
{
    Values values{};
    for (int i = 0; i < FieldCount; ++i)
        values[i] = ukiFields[i].defaultValue;
    return values;
}
