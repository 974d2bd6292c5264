#include "devicetables.h"

namespace Sim {

QByteArray variantKey(Variant variant)
{
    switch (variant) {
    case Variant::UkpsKs:
        return "ukps-ks";
    case Variant::UkpsAb:
        return "ukps-ab";
    case Variant::UkpsKs2:
        return "ukps-ks-2";
    case Variant::UkiKiranto:
        return "uki-kiranto";
    }
    return QByteArray();
}

bool variantFromKey(const QByteArray &key, Variant *variant)
{
    for (Variant v : {Variant::UkpsKs, Variant::UkpsAb, Variant::UkpsKs2, Variant::UkiKiranto}) {
        if (variantKey(v) == key) {
            *variant = v;
            return true;
        }
    }
    return false;
}

// Insulation monitor: every value inside the accepted range and, where the range allows,
// different from the factory default of the tool's record, so that a read is told from no read.
// Flags 2750 = bits 1, 2, 3, 4, 5, 7, 9, 11.
static const SettingDef ukiSettings[] = {
        {"AddrUki", 1},   {"NumUki", 2},    {"RisoM3s1", 60}, {"RisoM3s2", 30}, {"RisoLoc", 120},
        {"TimeMto", 40},  {"Tcust", 20},    {"TimeM3s", 2},   {"Riso420", 300}, {"Flags", 2750},
        {"Urelay", 120},  {"Uminus", 100},  {"MbAddr", 17},   {"MbBaud", 5},    {"MbParity", 1},
        {"CapSopt", 250}, {"ModeDef", 0},   {"Bright", 700},  {"Contrast", 45}, {"Tbridge", 1},
        {"lang", 0},      {"Averaging", 4}, {"ModeInput", 1},
};

// UKPS family, in the order the device prints them: FRisoP and FRisoN follow FRippleI.
// Flags 1530 = bits 1, 3, 4, 5, 6, 7, 8, 10. MbAddr is set per variant.
static const SettingDef ukpsSettings[] = {
        {"AddrUki", 2},    {"NumUki", 1},     {"RisoM3s1", 50},   {"RisoM3s2", 25},
        {"RisoLoc", 100},  {"TimeMto", 34},   {"Tcust", 30},      {"TimeM3s", 1},
        {"Riso420", 250},  {"Flags", 1530},   {"Urelay", 200},    {"MbAddr", 0},
        {"MbBaud", 4},     {"MbParity", 2},   {"CapSopt", 40},    {"ModeDef", 1},
        {"Bright", 800},   {"Contrast", 50},  {"Tbridge", 2},     {"lang", 1},
        {"FRiso1", 1},     {"FRiso2", 2},     {"FUdis", 3},       {"FUminus", 4},
        {"FFail", 5},      {"FBrwire", 1},    {"FDisch", 2},      {"FOver", 3},
        {"FFall", 4},      {"FRippleU", 5},   {"FRippleI", 1},    {"FRisoP", 2},
        {"FRisoN", 3},     {"FSymmetry", 4},  {"FOverTemp", 5},   {"FFallTemp", 0},
        {"FOverTail", 1},  {"FFallTail", 2},  {"Cstart", 1},      {"NumShunt", 5},
        {"UMin", 180},     {"UMax", 240},     {"IDischMin", -50}, {"IChargeMin", 200},
        {"Uripple", 25},   {"Iripple", 150},  {"NumElemAb", 108}, {"DeltaSym", 15},
        {"OverTemp", 45},  {"FallTemp", -5},  {"OverTail", 40},   {"FallTail", 12},
        {"OverDly", 10},   {"FallDly", 12},   {"BrwireDly", 300}, {"DischDly", 450},
        {"RippleUDly", 8}, {"RippleIDly", 9}, {"TempDly", 30},    {"FUnsch", 3},
        {"UnschDly", 60},  {"Uminus", 110},   {"Urbrk", 1500},
};

QVector<SettingDef> settingsTable(Variant variant)
{
    if (variant == Variant::UkiKiranto)
        return QVector<SettingDef>(std::begin(ukiSettings), std::end(ukiSettings));
    QVector<SettingDef> table(std::begin(ukpsSettings), std::end(ukpsSettings));
    for (SettingDef &def : table) {
        if (qstrcmp(def.key, "MbAddr") == 0) {
            def.value = variant == Variant::UkpsKs ? 11 : variant == Variant::UkpsAb ? 12 : 13;
        }
    }
    return table;
}

QVector<UnitDef> unitsTable(Variant variant)
{
    // Letters of the CT state, per channel: enabled clear X, tested clear И, state A clear и,
    // state B set З, otherwise О. Together the rows of uki-kiranto and ukps-ks-2 give all five.
    switch (variant) {
    case Variant::UkpsKs:
        return {{0,
                 "3.2.17",
                 "1111111100000000",
                 "1111111100000000",
                 "1111111100000000",
                 "0000000000000000"}};
    case Variant::UkpsAb:
        return {{0,
                 "4.1.8",
                 "1111000000000000",
                 "1111000000000000",
                 "1111000000000000",
                 "0000000000000000"}};
    case Variant::UkpsKs2:
        return {
                {0,
                 "5.0.12",
                 "1111111111111111",
                 "1111111111111111",
                 "1111111111111111",
                 "0000000000000000"},
                {2,
                 "2.3.7",
                 "1111111111110000",
                 "1111111100000000",
                 "1111000011110000",
                 "1000000000000000"},
                {3,
                 "2.3.7",
                 "1111111100000000",
                 "1111111100000000",
                 "1111111100000000",
                 "0000000011111111"},
                {7,
                 "2.4.1",
                 "1111111111111111",
                 "1111111111111111",
                 "0011111111111111",
                 "0000110000000000"},
        };
    case Variant::UkiKiranto:
        break;
    }
    return {
            {0,
             "9.6.43",
             "1111111100000000",
             "1111111100000000",
             "1111111100000000",
             "0000000000000000"},
            {1,
             "5.1.4",
             "1111111111111111",
             "1111111111110000",
             "1111111100001111",
             "1100000000000000"},
            {2,
             "5.1.4",
             "1111000000000000",
             "1111000000000000",
             "1111000000000000",
             "0000000000000000"},
            {5,
             "5.2.0",
             "1111111111111111",
             "1111111111111111",
             "1111111111111111",
             "0000000000001111"},
    };
}

const QVector<EventDef> &eventTable()
{
    static const QVector<EventDef> table = {
            {1, "ET_GENERAL_RESISTANCE"},
            {2, "ET_EVENT_IMS_LOC_DUP_ADDR"},
            {3, "ET_EVENT_IMS_CT_FAULT"},
            {4, "ET_EVENT_IMS_CTLOC_FAULT"},
            {5, "ET_EVENT_IMS_LOC_LOST"},
            {6, "ET_EVENT_IMS_UKI_LOST"},
            {7, "ET_EVENT_IMS_UKI_ADCONF"},
            {8, "ET_EVENT_IMS_UKI_ADOUT"},
            {9, "ET_EVENT_IMS_LOC_ADOUT"},
            {10, "ET_SODC_PARAM"},
            {11, "ET_FEED_PARAM"},
            {12, "ET_EVENT_IMS_CT_OVER"},
            {13, "ET_EVENT_IMS_POW_OFF_"},
            {14, "ET_EVENT_IMS_POW_ON_"},
            {15, "ET_EVENT_IMS_LOC_ADSAME"},
            {16, "ET_EVENT_RES_REDUCTION"},
            {17, "ET_EVENT_RES_REDUCTION_CRIT"},
            {18, "ET_EVENT_DISBALANCE_VOLTAGE"},
            {19, "ET_EVENT_NO_TMOST"},
            {20, "ET_EVENT_FAIL_ON"},
            {21, "ET_EVENT_BRWIRE_ON"},
            {22, "ET_EVENT_DISCH_ON"},
            {23, "ET_EVENT_OVER_ON"},
            {24, "ET_EVENT_FALL_ON"},
            {25, "ET_EVENT_RIPPLEU_ON"},
            {26, "ET_EVENT_RIPPLEI_ON"},
            {27, "ET_EVENT_IMS_POW_OFF"},
            {28, "ET_EVENT_IMS_POW_ON"},
            {29, "ET_EVENT_SYMMETRY_ON"},
            {30, "ET_EVENT_OVER_T_ON"},
            {31, "ET_EVENT_FALL_T_ON"},
            {32, "ET_EVENT_OVER_Tail_ON"},
            {33, "ET_EVENT_FALL_Tail_ON"},
            {34, "ET_EVENT_SYMMETRY_OFF"},
            {35, "ET_EVENT_OVER_T_OFF"},
            {36, "ET_EVENT_FALL_T_OFF"},
            {37, "ET_EVENT_OVER_Tail_OFF"},
            {38, "ET_EVENT_FALL_Tail_OFF"},
            {39, "ET_EVENT_FAIL_OFF"},
            {40, "ET_EVENT_BRWIRE_OFF"},
            {41, "ET_EVENT_DISCH_OFF"},
            {42, "ET_EVENT_OVER_OFF"},
            {43, "ET_EVENT_FALL_OFF"},
            {44, "ET_EVENT_RIPPLEU_OFF"},
            {45, "ET_EVENT_RIPPLEI_OFF"},
            {46, "ET_EVENT_UMINIMUM_VOLTAGE"},
            {48, "ET_EVENT_IMS_UKI_NOMULTI"},
            {128, "ET_DEBUG"},
            {129, "ET_FEED_COMPLEX"},
    };
    return table;
}

} // namespace Sim
