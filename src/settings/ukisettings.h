#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QStringList>

#include <array>

// The 23 settings of the insulation monitor, each the raw signed 32-bit number the device keeps.
class UkiSettings
{
public:
    // One enumerator per field, in the device's order (text lines, write commands, comparison).
    enum Field : int {
        AddrUki,
        NumUki,
        RisoM3s1,
        RisoM3s2,
        RisoLoc,
        TimeMto,
        Tcust,
        TimeM3s,
        Riso420,
        Flags,
        Urelay,
        Uminus,
        MbAddr,
        MbBaud,
        MbParity,
        CapSopt,
        ModeDef,
        Bright,
        Contrast,
        Tbridge,
        Lang,
        Averaging,
        ModeInput,
    };
    static constexpr int FieldCount = ModeInput + 1;
    using Values = std::array<qint32, FieldCount>;

    // The device's key ("AddrUki", ..., "lang", ...).
    static QLatin1String key(Field field);
    // The range accepted from text, both ends inclusive.
    static qint32 minimum(Field field);
    static qint32 maximum(Field field);
    static qint32 defaultValue(Field field);

    qint32 value(Field field) const { return m_values[field]; }
    void setValue(Field field, qint32 value) { m_values[field] = value; }
    const Values &values() const { return m_values; }

    // Reads settings lines (without line ends) in place; keys that do not occur keep their
    // values. Bad lines, unknown keys and out-of-range values go to the debug log only.
    void fromLines(const QStringList &lines);
    // 23 lines "key\tvalue" in field order.
    QStringList toLines() const;
    // 23 "set_cfg_key_value" commands in field order, then "set_cfg_save_1". No range check.
    QStringList writeCommands() const;

    // One integer member per key. A missing member falls back to a value of its own, which for
    // the display and input fields is not the default of the record.
    QJsonObject toJson() const;
    static UkiSettings fromJson(const QJsonObject &object);

    friend bool operator==(const UkiSettings &a, const UkiSettings &b)
    {
        return a.m_values == b.m_values;
    }
    friend bool operator!=(const UkiSettings &a, const UkiSettings &b) { return !(a == b); }

private:
    static Values defaultValues();

    Values m_values = defaultValues();
};
