#pragma once

#include <QByteArray>
#include <QVector>

#include <cstdint>

namespace Sim {

enum class Variant { UkpsKs, UkpsAb, UkpsKs2, UkiKiranto };

// "ukps-ks", "ukps-ab", "ukps-ks-2", "uki-kiranto".
QByteArray variantKey(Variant variant);
// Parses a variant key; false for anything else.
bool variantFromKey(const QByteArray &key, Variant *variant);

// One settings key with the value the device leaves its factory with.
struct SettingDef
{
    const char *key;
    int32_t value;
};

// The device's settings keys in the order it prints them, with their stored values.
// 23 keys for the insulation monitor, 63 for the UKPS family.
QVector<SettingDef> settingsTable(Variant variant);

// One row of the versions list: the monitor itself (address 0) or a locator.
struct UnitDef
{
    int address;
    QByteArray version;
    // Four 16-channel masks as the device prints them, channel 1 first.
    QByteArray enabled;
    QByteArray tested;
    QByteArray ctStateA;
    QByteArray ctStateB;
};

// The monitor first, then its locators in ascending address order.
QVector<UnitDef> unitsTable(Variant variant);

// Event codes of the archive with the identifiers the dump prints.
struct EventDef
{
    int code;
    const char *identifier;
};

const QVector<EventDef> &eventTable();

} // namespace Sim
