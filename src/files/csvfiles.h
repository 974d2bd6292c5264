#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

class CtCorrections;
class CustomChannels;
class QDateTime;

// A text for the popup and how long it stays, in milliseconds.
struct CsvMessage
{
    QString text;
    int milliseconds = 3000;
};

// A loaded settings file cut into its two blocks.
struct CsvSettingsFile
{
    // The settings lines only: the header lines of a page file are not part of them.
    QStringList settingsLines;
    // The lines after the "--------------------" line; empty when the file has none.
    QStringList versionLines;
    // Position of the "--------------------" line among the file's lines; -1 when absent.
    int separatorIndex = -1;
};

// The CSV files of the program: default names, the bytes of each kind of file, an atomic
// writer, the save-all operation and the reading of files back into device text lines.
// Files are "\r\n"-separated lines. Everything is UTF-8 except the data block of an archive
// page file, which is written in the system's local 8-bit encoding.
class CsvFiles
{
    Q_DECLARE_TR_FUNCTIONS(CsvFiles)
public:
    // Which file is being loaded; selects the decoding and the log texts. Table stands for the
    // corrections and custom channels files.
    enum class Kind { Settings, Archive, Table };

    // "ukps", "ukb", "ukps2", "uki"; empty for an unknown variant.
    static QString prefix(int variant);

    // Default paths in dataFolder, stamped with the given local date and time.
    // "<stamp>-config.csv" / "<stamp>-archive.csv", stamp "yyyy-MM-dd,hh-mm".
    static QString saveAllFileName(const QString &dataFolder,
                                   const QDateTime &stamp,
                                   const QString &key);
    // "<prefix>_<stamp>-archive.csv", stamp "yyyy-MM-dd_hh-mm".
    static QString archiveFileName(const QString &dataFolder, const QDateTime &stamp, int variant);
    // "<prefix>_<stamp>-config.csv", stamp "yyyy-MM-dd_hh-mm".
    static QString settingsFileName(const QString &dataFolder, const QDateTime &stamp, int variant);
    // "<stamp>-corrections.csv", stamp "yyyy-MM-dd,hh-mm".
    static QString correctionsFileName(const QString &dataFolder, const QDateTime &stamp);
    // "<stamp>-custom.csv", stamp "yyyy-MM-dd,hh-mm".
    static QString customChannelsFileName(const QString &dataFolder, const QDateTime &stamp);

    // Appends ".csv" unless the name already ends with it in any letter case.
    static QString withCsvExtension(const QString &name);

    // The header of a page file: variant digit, "\r\n-----\r\n", display name,
    // "\r\n--------------\r\n"; UTF-8.
    static QByteArray pageHeader(int variant);
    // Header, then the archive view's text split at "\n" and joined with "\r\n" in the local
    // 8-bit encoding (QString::toLocal8Bit(): the locale's codec on Qt 5, the system code page
    // on Windows and UTF-8 elsewhere on Qt 6).
    static QByteArray archiveFile(int variant, const QString &archiveText);
    // Header, the settings lines, and for a variant with locators a non-empty versions list
    // after "\r\n--------------------\r\n"; UTF-8.
    static QByteArray settingsFile(int variant,
                                   const QStringList &settingsLines,
                                   const QStringList &versionLines);
    // The table's text form, UTF-8.
    static QByteArray correctionsFile(const CtCorrections &corrections);
    static QByteArray customChannelsFile(const CustomChannels &channels);
    // The save-all "config" part: the settings lines, and for a variant with locators a
    // non-empty versions list after the twenty-hyphen separator; UTF-8, no header.
    static QByteArray saveAllConfig(int variant,
                                    const QStringList &settingsLines,
                                    const QStringList &versionLines);
    // The save-all "archive" part: the dump lines; UTF-8, no header.
    static QByteArray saveAllArchive(const QStringList &archiveLines);

    // Replaces fileName with bytes as a whole: the new content goes to a temporary file that
    // takes the name only when everything was written, so a failed save leaves any previous
    // file untouched. On failure returns false and sets errorString when given.
    static bool writeFile(const QString &fileName,
                          const QByteArray &bytes,
                          QString *errorString = nullptr);

    // Save-all: the "config" part, then (only if that did not fail) the "archive" part, each
    // "<stamp>-<key>.csv" in dataFolder; an empty block writes nothing. Returns the popup text.
    static CsvMessage saveAll(const QString &dataFolder,
                              const QDateTime &stamp,
                              int variant,
                              const QStringList &settingsLines,
                              const QStringList &archiveLines,
                              const QStringList &versionLines);

    // Per-page save: writes bytes to fileName; on success logs "Данные записаны в файл : %1".
    // Returns "[[OK]]Файл записан" or "[[ERR]]Ошибка записи в файл %1.".
    static CsvMessage savePage(const QString &fileName, const QByteArray &bytes);

    // The lines of a file without their line ends ("\r\n" or "\n"); a line end at the very
    // end does not make an empty last line. A page archive file has its four header lines
    // decoded as UTF-8 and the rest with the local 8-bit encoding it was written in; any
    // other file is UTF-8 throughout.
    static bool readLines(const QString &fileName,
                          Kind kind,
                          QStringList &lines,
                          QString *errorString = nullptr);
    static QStringList decodeLines(const QByteArray &bytes, Kind kind);
    // "[[OK]]Файл прочитан" / "[[ERR]]Ошибка чтения файла %1.".
    static CsvMessage readOkMessage();
    static CsvMessage readFailedMessage(const QString &fileName);
    // Shown when the statistics page asks for a file before a settings file was opened.
    static CsvMessage settingsFileFirstMessage();

    // True when the lines start with the four header lines of a page file.
    static bool hasPageHeader(const QStringList &lines);
    // The device variant named by a file's first line: split at spaces, the first part read as
    // a decimal number; 0 when it is not one. No range check.
    static int variantFromFile(const QString &firstLine);
    // variantFromFile() of the first line with the debug log "Variant : %1" and
    // "Archive.kirantoVariant : %1" (Archive) or "config.kirantoVariant : %1".
    static int takeVariantFromFile(const QStringList &lines, Kind kind);
    // Cuts a settings file at the line "--------------------" (debug log "index : %1" and
    // "versionLines : %1") and drops the page header lines from the settings block.
    static CsvSettingsFile splitSettingsFile(const QStringList &lines);
};
