#include "csvfiles.h"

#include "app/programsettings.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

const char lineEnd[] = "\r\n";
const char variantSeparator[] = "-----";
const char nameSeparator[] = "--------------";
const char versionsSeparator[] = "--------------------";
const char utf8Bom[] = "\xEF\xBB\xBF";
constexpr int pageHeaderLines = 4;

QString stampOf(const QDateTime &stamp)
{
    return stamp.toString(QStringLiteral("yyyy-MM-dd,hh-mm"));
}

QString pageStampOf(const QDateTime &stamp)
{
    return stamp.toString(QStringLiteral("yyyy-MM-dd_hh-mm"));
}

QString inFolder(const QString &folder, const QString &name)
{
    return QDir(folder).filePath(name);
}

QByteArray joinUtf8(const QStringList &lines)
{
    return lines.join(QLatin1String(lineEnd)).toUtf8();
}

// The settings lines, then the versions list when the variant has one and it is not empty.
QByteArray settingsBlock(int variant,
                         const QStringList &settingsLines,
                         const QStringList &versionLines)
{
    QByteArray bytes = joinUtf8(settingsLines);
    if (DeviceVariant::hasLocators(variant) && !versionLines.isEmpty()) {
        bytes += lineEnd;
        bytes += versionsSeparator;
        bytes += lineEnd;
        bytes += joinUtf8(versionLines);
    }
    return bytes;
}

// Lines without "\n" and a trailing "\r"; a final line end makes no empty last line.
QList<QByteArray> splitLines(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return {};
    QList<QByteArray> lines = bytes.split('\n');
    if (bytes.endsWith('\n'))
        lines.removeLast();
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    return lines;
}

QString nativeName(const QString &fileName)
{
    return QDir::toNativeSeparators(fileName);
}

} // namespace

QString CsvFiles::prefix(int variant)
{
    switch (variant) {
    case DeviceVariant::UkpsKs:
        return QStringLiteral("ukps");
    case DeviceVariant::UkpsAb:
        return QStringLiteral("ukb");
    case DeviceVariant::UkpsKs2:
        return QStringLiteral("ukps2");
    case DeviceVariant::UkiKiranto:
        return QStringLiteral("uki");
    default:
        return QString();
    }
}

QString CsvFiles::saveAllFileName(const QString &dataFolder,
                                  const QDateTime &stamp,
                                  const QString &key)
{
    return inFolder(dataFolder, QStringLiteral("%1-%2.csv").arg(stampOf(stamp), key));
}

QString CsvFiles::archiveFileName(const QString &dataFolder, const QDateTime &stamp, int variant)
{
    return inFolder(dataFolder,
                    QStringLiteral("%1_%2-archive.csv").arg(prefix(variant), pageStampOf(stamp)));
}

QString CsvFiles::settingsFileName(const QString &dataFolder, const QDateTime &stamp, int variant)
{
    return inFolder(dataFolder,
                    QStringLiteral("%1_%2-config.csv").arg(prefix(variant), pageStampOf(stamp)));
}

QString CsvFiles::correctionsFileName(const QString &dataFolder, const QDateTime &stamp)
{
    return inFolder(dataFolder, QStringLiteral("%1-corrections.csv").arg(stampOf(stamp)));
}

QString CsvFiles::customChannelsFileName(const QString &dataFolder, const QDateTime &stamp)
{
    return inFolder(dataFolder, QStringLiteral("%1-custom.csv").arg(stampOf(stamp)));
}

QString CsvFiles::withCsvExtension(const QString &name)
{
    if (name.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive))
        return name;
    return name + QLatin1String(".csv");
}

QByteArray CsvFiles::pageHeader(int variant)
{
    QByteArray bytes = QByteArray::number(variant);
    bytes += lineEnd;
    bytes += variantSeparator;
    bytes += lineEnd;
    bytes += DeviceVariant::nativeName(variant).toUtf8();
    bytes += lineEnd;
    bytes += nameSeparator;
    bytes += lineEnd;
    return bytes;
}

QByteArray CsvFiles::archiveFile(int variant, const QString &archiveText)
{
    // The archive text goes out in the local 8-bit encoding, not UTF-8: readers of these files
    // open them with the system's own code page.
    const QString text = archiveText.split(QLatin1Char('\n')).join(QLatin1String(lineEnd));
    return pageHeader(variant) + text.toLocal8Bit();
}

QByteArray CsvFiles::settingsFile(int variant,
                                  const QStringList &settingsLines,
                                  const QStringList &versionLines)
{
    return pageHeader(variant) + settingsBlock(variant, settingsLines, versionLines);
}

QByteArray CsvFiles::correctionsFile(const CtCorrections &corrections)
{
    return joinUtf8(corrections.toText());
}

QByteArray CsvFiles::customChannelsFile(const CustomChannels &channels)
{
    return joinUtf8(channels.toText());
}

QByteArray CsvFiles::saveAllConfig(int variant,
                                   const QStringList &settingsLines,
                                   const QStringList &versionLines)
{
    return settingsBlock(variant, settingsLines, versionLines);
}

QByteArray CsvFiles::saveAllArchive(const QStringList &archiveLines)
{
    return joinUtf8(archiveLines);
}

bool CsvFiles::writeFile(const QString &fileName, const QByteArray &bytes, QString *errorString)
{
    QSaveFile file(fileName);
    bool ok = file.open(QIODevice::WriteOnly);
    if (ok)
        ok = file.write(bytes) == bytes.size();
    if (ok)
        ok = file.commit();
    if (!ok) {
        const QString reason = file.errorString();
        file.cancelWriting();
        qDebug().noquote() << QStringLiteral("Cannot write %1: %2").arg(fileName, reason);
        if (errorString)
            *errorString = reason;
    }
    return ok;
}

CsvMessage CsvFiles::saveAll(const QString &dataFolder,
                             const QDateTime &stamp,
                             int variant,
                             const QStringList &settingsLines,
                             const QStringList &archiveLines,
                             const QStringList &versionLines)
{
    if (dataFolder.isEmpty() || !QFileInfo(dataFolder).isDir())
        return {tr("[[ERR]]Не удалось сохранить данные: не найдена папка для сохранения."), 3000};

    struct Part
    {
        QString key;
        QString title;
        bool empty;
        QByteArray bytes;
    };
    // The settings title names the UKPS whatever the variant.
    const Part parts[] = {
            {QStringLiteral("config"),
             tr("Настройки УКПС"),
             settingsLines.isEmpty(),
             saveAllConfig(variant, settingsLines, versionLines)},
            {QStringLiteral("archive"),
             tr("Архив"),
             archiveLines.isEmpty(),
             saveAllArchive(archiveLines)},
    };

    QStringList written;
    for (const Part &part : parts) {
        if (part.empty)
            continue;
        const QString fileName = saveAllFileName(dataFolder, stamp, part.key);
        if (!writeFile(fileName, part.bytes)) {
            return {tr("[[ERR]]Не удалось сохранить %1: ошибка записи в файл %2.")
                            .arg(part.title, nativeName(fileName)),
                    3000};
        }
        written << part.title;
    }

    if (written.isEmpty())
        return {tr("[[WARN]]Нечего сохранять!"), 3000};
    return {tr("[[OK]]Успешно сохранены:\n *%1").arg(written.join(QLatin1String("\n *"))), 3000};
}

CsvMessage CsvFiles::savePage(const QString &fileName, const QByteArray &bytes)
{
    if (!writeFile(fileName, bytes))
        return {tr("[[ERR]]Ошибка записи в файл %1.").arg(nativeName(fileName)), 3000};
    qDebug().noquote() << QStringLiteral("Данные записаны в файл : %1").arg(nativeName(fileName));
    return {tr("[[OK]]Файл записан"), 3000};
}

bool CsvFiles::readLines(const QString &fileName,
                         Kind kind,
                         QStringList &lines,
                         QString *errorString)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        if (errorString)
            *errorString = file.errorString();
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (errorString)
            *errorString = file.errorString();
        return false;
    }
    lines = decodeLines(bytes, kind);
    return true;
}

QStringList CsvFiles::decodeLines(const QByteArray &bytes, Kind kind)
{
    // A byte order mark put in by an editor would hide the variant digit.
    const QByteArray content = bytes.startsWith(utf8Bom) ? bytes.mid(3) : bytes;
    const QList<QByteArray> raw = splitLines(content);

    // Only the data block of an archive page file is in the local 8-bit encoding; archive
    // files without the header (save-all) are UTF-8 like every other file.
    int utf8Lines = raw.size();
    if (kind == Kind::Archive && raw.size() >= pageHeaderLines && raw.at(1) == variantSeparator
        && raw.at(3) == nameSeparator) {
        utf8Lines = pageHeaderLines;
    }

    QStringList lines;
    lines.reserve(raw.size());
    for (int i = 0; i < raw.size(); ++i)
        lines << (i < utf8Lines ? QString::fromUtf8(raw.at(i)) : QString::fromLocal8Bit(raw.at(i)));
    return lines;
}

CsvMessage CsvFiles::readOkMessage()
{
    return {tr("[[OK]]Файл прочитан"), 3000};
}

CsvMessage CsvFiles::readFailedMessage(const QString &fileName)
{
    return {tr("[[ERR]]Ошибка чтения файла %1.").arg(nativeName(fileName)), 3000};
}

CsvMessage CsvFiles::settingsFileFirstMessage()
{
    return {tr("[[ERR]]Сначала необходимо открыть файл конфигурации ИМС (...uki-config.csv)"),
            3000};
}

bool CsvFiles::hasPageHeader(const QStringList &lines)
{
    return lines.size() >= pageHeaderLines && lines.at(1) == QLatin1String(variantSeparator)
           && lines.at(3) == QLatin1String(nameSeparator);
}

int CsvFiles::variantFromFile(const QString &firstLine)
{
    const QStringList parts = firstLine.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return 0;
    bool ok = false;
    const int variant = parts.first().toInt(&ok, 10);
    return ok ? variant : 0;
}

int CsvFiles::takeVariantFromFile(const QStringList &lines, Kind kind)
{
    const QString firstLine = lines.value(0);
    qDebug().noquote() << QStringLiteral("Variant : %1").arg(firstLine);
    const int variant = variantFromFile(firstLine);
    if (kind == Kind::Archive)
        qDebug().noquote() << QStringLiteral("Archive.kirantoVariant : %1").arg(variant);
    else
        qDebug().noquote() << QStringLiteral("config.kirantoVariant : %1").arg(variant);
    return variant;
}

CsvSettingsFile CsvFiles::splitSettingsFile(const QStringList &lines)
{
    CsvSettingsFile file;
    file.separatorIndex = lines.indexOf(QLatin1String(versionsSeparator));
    qDebug().noquote() << QStringLiteral("index : %1").arg(file.separatorIndex);
    if (file.separatorIndex >= 0) {
        file.settingsLines = lines.mid(0, file.separatorIndex);
        file.versionLines = lines.mid(file.separatorIndex + 1);
    } else {
        file.settingsLines = lines;
    }
    qDebug().noquote() << QStringLiteral("versionLines : %1").arg(file.versionLines.size());
    if (hasPageHeader(file.settingsLines))
        file.settingsLines = file.settingsLines.mid(pageHeaderLines);
    return file;
}
