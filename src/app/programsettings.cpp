#include "programsettings.h"

#include <QCoreApplication>

namespace DeviceVariant {

static const char *const keys[] = {"ukps-ks", "ukps-ab", "ukps-ks-2", "uki-kiranto"};
static const char *const names[] = {
        QT_TRANSLATE_NOOP("DeviceVariant", "УКПС КИРАНТО-КС"),
        QT_TRANSLATE_NOOP("DeviceVariant", "УКБ КИРАНТО-АБ"),
        QT_TRANSLATE_NOOP("DeviceVariant", "УКПС КИРАНТО-КС-2"),
        QT_TRANSLATE_NOOP("DeviceVariant", "УКИ КИРАНТО"),
};

static bool known(int variant)
{
    return variant >= UkpsKs && variant <= UkiKiranto;
}

QString key(int variant)
{
    return known(variant) ? QLatin1String(keys[variant]) : QString();
}

QString displayName(int variant)
{
    if (!known(variant))
        return QCoreApplication::translate("DeviceVariant", "Неизвестное устройство");
    return QCoreApplication::translate("DeviceVariant", names[variant]);
}

QString nativeName(int variant)
{
    return QString::fromUtf8(known(variant) ? names[variant] : "Неизвестное устройство");
}

bool hasLocators(int variant)
{
    return variant == UkpsKs2 || variant == UkiKiranto;
}

int fromKey(const QString &variantKey)
{
    for (int variant = UkpsKs; variant <= UkiKiranto; ++variant) {
        if (variantKey == QLatin1String(keys[variant]))
            return variant;
    }
    return -1;
}

int fromFirmware(const QString &version, int fallback)
{
    switch (version.section(QLatin1Char('.'), 0, 0, QString::SectionSkipEmpty).toUInt()) {
    case 3:
        return UkpsKs;
    case 4:
        return UkpsAb;
    case 5:
        return UkpsKs2;
    case 8:
    case 9:
        return UkiKiranto;
    default:
        return fallback;
    }
}

} // namespace DeviceVariant

void ProgramSettings::fromJson(const QJsonObject &object)
{
    const QJsonObject connection = object.value(QLatin1String("connection")).toObject();
    port = connection.value(QLatin1String("port")).toString().trimmed();
    // An unknown or missing key keeps the variant as it was, deliberately.
    const QString variantKey = connection.value(QLatin1String("variant")).toString().trimmed();
    const int named = DeviceVariant::fromKey(variantKey);
    if (named >= 0)
        variant = named;
}

void ProgramSettings::toJson(QJsonObject &object) const
{
    QJsonObject connection = object.value(QLatin1String("connection")).toObject();
    connection.insert(QLatin1String("port"), port);
    if (DeviceVariant::known(variant))
        connection.insert(QLatin1String("variant"), DeviceVariant::key(variant));
    object.insert(QLatin1String("connection"), connection);
}

ProgramSettings &ProgramSettings::instance()
{
    static ProgramSettings settings;
    return settings;
}
