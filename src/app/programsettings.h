#pragma once

#include <QJsonObject>
#include <QString>

// Device variants as numbered in config.json, in files and in the settings dialog.
// The number is kept as a plain int: a loaded file may carry any value.
namespace DeviceVariant {
enum : int {
    UkpsKs = 0,
    UkpsAb = 1,
    UkpsKs2 = 2,
    UkiKiranto = 3,
};

// "ukps-ks" ... "uki-kiranto"; empty for an unknown value.
QString key(int variant);
// "УКПС КИРАНТО-КС" ... "УКИ КИРАНТО"; "Неизвестное устройство" for an unknown value.
QString displayName(int variant);
// The same name untranslated: files carry it whatever the language of the interface.
QString nativeName(int variant);
// Variants that report a locators list ("ukps-ks-2", "uki-kiranto").
bool hasLocators(int variant);
// The variant of a key ("ukps-ks" ... "uki-kiranto"); -1 for any other text.
int fromKey(const QString &variantKey);
// The variant that a monitor's firmware version names by its first number (3, 4, 5, 8 or 9);
// fallback for any other.
int fromFirmware(const QString &version, int fallback);
} // namespace DeviceVariant

// The two program settings kept between runs in config.json: serial port and device variant.
class ProgramSettings
{
public:
    QString port;
    int variant = DeviceVariant::UkpsKs;

    void fromJson(const QJsonObject &object);
    void toJson(QJsonObject &object) const;
    static QString displayName(int variant) { return DeviceVariant::displayName(variant); }

    // The one record of the process, created zero-initialised on first use.
    static ProgramSettings &instance();
};
