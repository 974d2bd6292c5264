#include "fuzzinput.h"
#include "fuzztargets.h"

#include "app/programsettings.h"

#include <QJsonDocument>

// The input is the content of config.json, loaded and saved the way the main window does.
void fuzzProgramSettings(const uint8_t *data, size_t size)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(
            QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size)), &error);
    QJsonObject object = document.object();

    ProgramSettings loaded;
    loaded.variant = int(size % 7) - 1;
    const int before = loaded.variant;
    loaded.fromJson(object);
    Fuzz::check(loaded.port == loaded.port.trimmed(), "port keeps blanks around it");
    Fuzz::check(loaded.variant == before
                        || (loaded.variant >= DeviceVariant::UkpsKs
                            && loaded.variant <= DeviceVariant::UkiKiranto),
                "variant outside the known ones");
    Fuzz::consume(ProgramSettings::displayName(loaded.variant));
    Fuzz::consume(DeviceVariant::key(loaded.variant));

    loaded.toJson(object);
    Fuzz::consume(QString::fromUtf8(QJsonDocument(object).toJson()));

    QJsonObject saved;
    loaded.toJson(saved);
    const QByteArray text = QJsonDocument(saved).toJson(QJsonDocument::Indented);
    ProgramSettings reloaded;
    reloaded.variant = loaded.variant;
    reloaded.fromJson(QJsonDocument::fromJson(text).object());
    Fuzz::check(reloaded.port == loaded.port, "saved port reads back as another");
    Fuzz::check(reloaded.variant == loaded.variant, "saved variant reads back as another");
    Fuzz::check(saved.size() == 1, "the saved file holds more than the connection object");
}
