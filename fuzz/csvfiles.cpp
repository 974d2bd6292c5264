#include "fuzzinput.h"
#include "fuzztargets.h"

#include "app/programsettings.h"
#include "files/csvfiles.h"
#include "models/archivedata.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "settings/ukisettings.h"
#include "settings/ukpssettings.h"

namespace {

// What the parsers see of a block: every line is trimmed by them, and empty lines say nothing.
// The UTF-8 decoder drops a byte order mark at the start of a line, so a line loaded back has
// lost those it began with.
QStringList meaningful(const QStringList &lines)
{
    QStringList result;
    for (const QString &line : lines) {
        int start = 0;
        while (start < line.size() && line.at(start) == QChar(QChar::ByteOrderMark))
            ++start;
        const QString trimmed = line.mid(start).trimmed();
        if (!trimmed.isEmpty())
            result.append(trimmed);
    }
    return result;
}

void settingsFile(const QByteArray &bytes)
{
    const QStringList lines = CsvFiles::decodeLines(bytes, CsvFiles::Kind::Settings);
    const int variant = CsvFiles::takeVariantFromFile(lines, CsvFiles::Kind::Settings);
    Fuzz::check(variant == CsvFiles::variantFromFile(lines.value(0)),
                "the file's variant is not the one its first line names");

    const CsvSettingsFile file = CsvFiles::splitSettingsFile(lines);
    Fuzz::check(file.separatorIndex >= -1 && file.separatorIndex < lines.size(),
                "separator index outside the file");
    const int blockLines = file.settingsLines.size() + file.versionLines.size()
                           + (file.separatorIndex >= 0 ? 1 : 0);
    Fuzz::check(lines.size() - blockLines == 0 || lines.size() - blockLines == 4,
                "the two blocks and the header do not add up to the file");

    UkiSettings uki;
    uki.fromLines(file.settingsLines);
    UkpsSettings ukps;
    ukps.fromLines(file.settingsLines);
    Fuzz::touchModel(Locators(file.versionLines));

    // Saved again as a page file of each variant and loaded back, the blocks come back.
    for (int saveVariant = DeviceVariant::UkpsKs; saveVariant <= DeviceVariant::UkiKiranto;
         ++saveVariant) {
        const QByteArray saved = CsvFiles::settingsFile(
                saveVariant, file.settingsLines, file.versionLines);
        const QStringList loadedLines = CsvFiles::decodeLines(saved, CsvFiles::Kind::Settings);
        Fuzz::check(CsvFiles::hasPageHeader(loadedLines), "a saved page file has no header");
        Fuzz::check(CsvFiles::variantFromFile(loadedLines.value(0)) == saveVariant,
                    "a saved page file names another variant");
        const CsvSettingsFile loaded = CsvFiles::splitSettingsFile(loadedLines);
        Fuzz::check(meaningful(loaded.settingsLines) == meaningful(file.settingsLines),
                    "settings lines saved and loaded back differ");
        const QStringList versions = DeviceVariant::hasLocators(saveVariant)
                                             ? meaningful(file.versionLines)
                                             : QStringList();
        Fuzz::check(meaningful(loaded.versionLines) == versions,
                    "versions list saved and loaded back differs");
    }
    if (!CsvFiles::hasPageHeader(file.settingsLines)) {
        const QByteArray saved = CsvFiles::saveAllConfig(
                DeviceVariant::UkiKiranto, file.settingsLines, file.versionLines);
        const CsvSettingsFile loaded = CsvFiles::splitSettingsFile(
                CsvFiles::decodeLines(saved, CsvFiles::Kind::Settings));
        Fuzz::check(meaningful(loaded.settingsLines) == meaningful(file.settingsLines),
                    "save-all settings lines loaded back differ");
    }
}

void archiveFile(const QByteArray &bytes)
{
    const QStringList lines = CsvFiles::decodeLines(bytes, CsvFiles::Kind::Archive);
    CsvFiles::takeVariantFromFile(lines, CsvFiles::Kind::Archive);
    const ArchiveData archive(lines);
    Fuzz::touchModel(archive);

    const QStringList data = CsvFiles::hasPageHeader(lines) ? QStringList(lines.mid(4)) : lines;
    const QByteArray saved = CsvFiles::archiveFile(DeviceVariant::UkiKiranto,
                                                   data.join(QLatin1Char('\n')));
    const QStringList loaded = CsvFiles::decodeLines(saved, CsvFiles::Kind::Archive);
    Fuzz::check(CsvFiles::hasPageHeader(loaded)
                        && CsvFiles::variantFromFile(loaded.value(0)) == DeviceVariant::UkiKiranto,
                "a saved archive file lost its header");
    Fuzz::touchModel(ArchiveData(loaded));
    Fuzz::consume(QString::fromUtf8(CsvFiles::saveAllArchive(lines)));
}

void tableFile(const QByteArray &bytes)
{
    const QStringList lines = CsvFiles::decodeLines(bytes, CsvFiles::Kind::Table);

    const CtCorrections corrections(lines);
    Fuzz::touchModel(corrections);
    const CtCorrections correctionsAgain(
            CsvFiles::decodeLines(CsvFiles::correctionsFile(corrections), CsvFiles::Kind::Table));
    Fuzz::check(correctionsAgain.toText() == corrections.toText(),
                "corrections saved and loaded back differ");

    const CustomChannels channels(lines);
    Fuzz::touchModel(channels);
    const CustomChannels channelsAgain(
            CsvFiles::decodeLines(CsvFiles::customChannelsFile(channels), CsvFiles::Kind::Table));
    Fuzz::check(channelsAgain.toText() == channels.toText(),
                "custom channels saved and loaded back differ");
}

} // namespace

// The input is the content of a file chosen in a load dialog, read as each kind of file.
void fuzzCsvFiles(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data),
                                                     int(size));
    settingsFile(bytes);
    archiveFile(bytes);
    tableFile(bytes);
}
