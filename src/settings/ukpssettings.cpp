#include "settings/ukpssettings.h"

#include "settings/settingstext.h"

#include <algorithm>
#include <climits>
#include <iterator>

namespace {

struct UkpsField
{
    // Null for a reserved word.
    const char *key;
    // 1-based position in the text and the write program; 0 for a reserved word.
    int textPosition;
    qint32 minimum;
    qint32 maximum;
    qint32 defaultValue;
};

// In the order of UkpsSettings::Field: key, text position, accepted minimum and maximum, default.
// clang-format off
constexpr UkpsField ukpsFields[] = {
    {"AddrUki",     1,       0,       31,          0},
    {"NumUki",      2,       0,       32,          1},
    {"RisoM3s1",    3,       1,      999,         40},
    {"RisoM3s2",    4,       1,      999,         20},
    {"RisoLoc",     5,      10,      990,         80},
    {"TimeMto",     6,      24,       44,         24},
    {"Tcust",       7,       0,      120,          0},
    {"TimeM3s",     8,       0,        5,          0},
    {"Riso420",     9,       2,      999,        200},
    {"Flags",      10,       0,  INT_MAX,        130},
    {"Urelay",     11,       1,      300,        250},
    {"MbAddr",     12,       1,      247,          1},
    {"MbBaud",     13,       0,        7,          3},
    {"MbParity",   14,       0,        2,          0},
    {"CapSopt",    15,       0,       60,          0},
    {"ModeDef",    16,       0,        5,          0},
    {"Bright",     17,       0,     1000,        500},
    {"Contrast",   18,       0,      100,         30},
    {"Tbridge",    19,       0,        2,          0},
    {"lang",       20,       0,        1,          0},
    {nullptr,       0, INT_MIN,  INT_MAX,          0},
    {nullptr,       0, INT_MIN,  INT_MAX,          0},
    {nullptr,       0, INT_MIN,  INT_MAX, 1065353216},
    {"FRiso1",     21,       0,        5,          1},
    {"FRiso2",     22,       0,        5,          1},
    {"FUdis",      23,       0,        5,          1},
    {"FUminus",    24,       0,        5,          1},
    {"FFail",      25,       0,        5,          0},
    {"FBrwire",    26,       0,        5,          2},
    {"FDisch",     27,       0,        5,          2},
    {"FOver",      28,       0,        5,          3},
    {"FFall",      29,       0,        5,          3},
    {"FRippleU",   30,       0,        5,          3},
    {"FRippleI",   31,       0,        5,          2},
    {"FSymmetry",  34,       0,        5,          4},
    {"FOverTemp",  35,       0,        5,          5},
    {"FFallTemp",  36,       0,        5,          5},
    {"FOverTail",  37,       0,        5,          4},
    {"FFallTail",  38,       0,        5,          4},
    {"FRisoP",     32,       0,        5,          0},
    {"FRisoN",     33,       0,        5,          0},
    {"Cstart",     39,       0,        1,          0},
    {"NumShunt",   40,       1,       14,          1},
    {"UMin",       41,       0,      300,        100},
    {"UMax",       42,       0,      300,        250},
    {"IDischMin",  43,   -9999,       -2,        -10},
    {"IChargeMin", 44,      10,     9999,         10},
    {"Uripple",    45,      10,      300,         40},
    {"Iripple",    46,      10,     2000,         40},
    {"NumElemAb",  47,       1,      120,        104},
    {"DeltaSym",   48,       1,      100,         20},
    {"OverTemp",   49,      20,      100,        100},
    {"FallTemp",   50,     -20,       20,         10},
    {"OverTail",   51,      10,       60,         50},
    {"FallTail",   52,       5,       40,         20},
    {"OverDly",    53,       1,      120,          4},
    {"FallDly",    54,       1,      120,          4},
    {"BrwireDly",  55,       1,      600,        600},
    {"DischDly",   56,       1,      600,        600},
    {"RippleUDly", 57,       1,      120,          4},
    {"RippleIDly", 58,       1,      120,          4},
    {"TempDly",    59,       1,      120,          4},
    {"FUnsch",     60,       0,        5,          2},
    {"UnschDly",   61,       0,      120,        600},
    {"Uminus",     62,       0,      135,        135},
    {"Urbrk",      63,       0,    30000,          0},
};
// clang-format on
static_assert(std::size(ukpsFields) == UkpsSettings::FieldCount, "one row per field");

// The keyed fields in text order.
const QVector<SettingsText::Field> &ukpsTextFields()
{
    static const QVector<SettingsText::Field> text = [] {
        QVector<int> order;
        for (int i = 0; i < UkpsSettings::FieldCount; ++i) {
            if (ukpsFields[i].key)
                order.append(i);
        }
        std::sort(order.begin(), order.end(), [](int a, int b) {
            return ukpsFields[a].textPosition < ukpsFields[b].textPosition;
        });
        QVector<SettingsText::Field> result;
        for (int i : order)
            result.append({QLatin1String(ukpsFields[i].key),
                           ukpsFields[i].minimum,
                           ukpsFields[i].maximum,
                           i});
        return result;
    }();
    return text;
}

} // namespace

QLatin1String UkpsSettings::key(Field field)
{
    return QLatin1String(ukpsFields[field].key);
}

qint32 UkpsSettings::minimum(Field field)
{
    return ukpsFields[field].minimum;
}

qint32 UkpsSettings::maximum(Field field)
{
    return ukpsFields[field].maximum;
}

qint32 UkpsSettings::defaultValue(Field field)
{
    return ukpsFields[field].defaultValue;
}

bool UkpsSettings::fromLines(const QStringList &lines)
{
    return SettingsText::parseLines(lines,
                                    ukpsTextFields(),
                                    m_values.data(),
                                    QLatin1String("Bad string ukps: \""),
                                    true)
           > 0;
}

QStringList UkpsSettings::toLines() const
{
    return SettingsText::renderLines(ukpsTextFields(), m_values.data());
}

QStringList UkpsSettings::writeCommands() const
{
    return SettingsText::writeCommands(ukpsTextFields(), m_values.data());
}

UkpsSettings::Values UkpsSettings::defaultValues()
{
    Values values{};
    for (int i = 0; i < FieldCount; ++i)
        values[i] = ukpsFields[i].defaultValue;
    return values;
}
