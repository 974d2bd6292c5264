#pragma once

#include <QLatin1String>
#include <QStringList>

#include <array>

// The settings of the network and battery monitors: 63 keyed fields and three reserved words,
// each the raw signed 32-bit number the device keeps.
class UkpsSettings
{
public:
    // One enumerator per integer, in storage order (the order of the editor's comparison). The
    // text lines and write commands follow this order too, except that FRisoP and FRisoN come
    // right after FRippleI. The reserved words have no key and never appear in text or commands.
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
        MbAddr,
        MbBaud,
        MbParity,
        CapSopt,
        ModeDef,
        Bright,
        Contrast,
        Tbridge,
        Lang,
        Reserved1,
        Reserved2,
        Reserved3,
        FRiso1,
        FRiso2,
        FUdis,
        FUminus,
        FFail,
        FBrwire,
        FDisch,
        FOver,
        FFall,
        FRippleU,
        FRippleI,
        FSymmetry,
        FOverTemp,
        FFallTemp,
        FOverTail,
        FFallTail,
        FRisoP,
        FRisoN,
        Cstart,
        NumShunt,
        UMin,
        UMax,
        IDischMin,
        IChargeMin,
        Uripple,
        Iripple,
        NumElemAb,
        DeltaSym,
        OverTemp,
        FallTemp,
        OverTail,
        FallTail,
        OverDly,
        FallDly,
        BrwireDly,
        DischDly,
        RippleUDly,
        RippleIDly,
        TempDly,
        FUnsch,
        UnschDly,
        Uminus,
        Urbrk,
    };
    static constexpr int FieldCount = Urbrk + 1;
    using Values = std::array<qint32, FieldCount>;

    // The device's key ("AddrUki", ..., "lang", ...); empty for the reserved words.
    static QLatin1String key(Field field);
    // The range accepted from text, both ends inclusive.
    static qint32 minimum(Field field);
    static qint32 maximum(Field field);
    static qint32 defaultValue(Field field);

    qint32 value(Field field) const { return m_values[field]; }
    void setValue(Field field, qint32 value) { m_values[field] = value; }
    // All 66 integers in storage order, reserved words included.
    const Values &values() const { return m_values; }

    // Reads settings lines (without line ends) in place; keys that do not occur keep their
    // values. Every line, bad lines, unknown keys and out-of-range values go to the debug log.
    // True when at least one value was taken from the text.
    bool fromLines(const QStringList &lines);
    // 63 lines "key\tvalue" in text order.
    QStringList toLines() const;
    // 63 "set_cfg_key_value" commands in text order, then "set_cfg_save_1". No range check.
    QStringList writeCommands() const;

    friend bool operator==(const UkpsSettings &a, const UkpsSettings &b)
    {
        return a.m_values == b.m_values;
    }
    friend bool operator!=(const UkpsSettings &a, const UkpsSettings &b) { return !(a == b); }

private:
    static Values defaultValues();

    Values m_values = defaultValues();
};
