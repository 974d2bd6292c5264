#include "devicesession.h"

#include "app/programsettings.h"
#include "files/csvfiles.h"
#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "models/valuecomparison.h"
#include "protocol/safewrite.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMap>
#include <QTranslator>

#include <cstdio>
#include <unistd.h>

namespace {

enum Status { Ok = 0, Differences = 1, Usage = 2, DeviceError = 3, FileError = 4 };

// The texts of the command-line program.
class Cli
{
    Q_DECLARE_TR_FUNCTIONS(Cli)
};

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
}

int fail(Status status, const QString &message)
{
    print(stderr, QStringLiteral("kiranto-cli: %1").arg(message));
    return status;
}

bool isCorrectionsFile(const QStringList &lines)
{
    return lines.value(0).startsWith(QLatin1String("address\tchannel\tgain"));
}

class Program
{
public:
    Program(const QCommandLineParser &parser, DeviceSession &device)
        : m_parser(parser)
        , m_device(device)
    {}

    int identify();
    int read(const QString &folder, const QStringList &what);
    int backup(const QString &folder);
    int compare(const QString &fileName);
    int writeSettings(const QString &fileName);
    int stats(uint address, uint channel, uint level);

private:
    bool json() const { return m_parser.isSet(QStringLiteral("json")); }
    int deviceFailed() const
    {
        return fail(
                DeviceError,
                Cli::tr("устройство на %1: %2").arg(m_device.uki().portName(), m_device.error()));
    }
    // Identifies the device with its settings, then reads a settings or corrections file; a
    // settings page file must name the device's variant.
    int loadFile(const QString &fileName, QStringList &lines);
    // One line per key that differs, "KEY\tdevice\tfile" ("-" for a missing side), in key
    // order.
    int report(const ValueComparison::Entries &device, const ValueComparison::Entries &file);

    const QCommandLineParser &m_parser;
    DeviceSession &m_device;
};

int Program::identify()
{
    if (!m_device.identify())
        return deviceFailed();
    const int variant = m_device.variant();
    const Locators locators(m_device.uki().cfgLines());
    QJsonArray rows;
    QStringList table;
    if (DeviceVariant::hasLocators(variant)) {
        for (int row = -1; row < locators.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < locators.columnCount(); ++column)
                cells << (row < 0 ? locators.headerData(column, Qt::Horizontal).toString()
                                  : locators.index(row, column).data().toString());
            table << cells.join(QLatin1Char('\t'));
            if (row >= 0)
                rows.append(QJsonObject{{QStringLiteral("address"), cells.value(0)},
                                        {QStringLiteral("firmware"), cells.value(1)},
                                        {QStringLiteral("channels"), cells.value(2)},
                                        {QStringLiteral("tested"), cells.value(3)},
                                        {QStringLiteral("ct"), cells.value(4)}});
        }
    }
    if (json()) {
        const QJsonObject object{{QStringLiteral("variant"), DeviceVariant::key(variant)},
                                 {QStringLiteral("name"), DeviceVariant::displayName(variant)},
                                 {QStringLiteral("firmware"), m_device.uki().ukiVersion()},
                                 {QStringLiteral("locators"), rows}};
        print(stdout, QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
        return Ok;
    }
    print(stdout,
          Cli::tr("Устройство: %1 (%2)")
                  .arg(DeviceVariant::displayName(variant), DeviceVariant::key(variant)));
    print(stdout, Cli::tr("Версия ПО: %1").arg(m_device.uki().ukiVersion()));
    for (const QString &line : qAsConst(table))
        print(stdout, line);
    return Ok;
}

int Program::read(const QString &folder, const QStringList &what)
{
    const bool all = what.contains(QLatin1String("all"));
    const auto wanted = [&](const char *name) {
        return all || what.contains(QLatin1String(name));
    };
    if (!m_device.identify(Uki::ReadSettings))
        return deviceFailed();
    const int variant = m_device.variant();
    const bool locators = DeviceVariant::hasLocators(variant);
    const uint32_t flags = (wanted("archive") ? uint32_t(Uki::ReadArchive) : 0u)
                           | (locators && wanted("corrections") ? uint32_t(Uki::ReadCorrections)
                                                                : 0u)
                           | (locators && wanted("channels") ? uint32_t(Uki::ReadCustomChannels)
                                                             : 0u);
    if (flags && !m_device.run([flags](Uki &uki) { return uki.readData(flags); }))
        return deviceFailed();

    const Uki &uki = m_device.uki();
    const QDateTime now = QDateTime::currentDateTime();
    QList<QPair<QString, QByteArray>> files;
    if (wanted("settings"))
        files.append({CsvFiles::settingsFileName(folder, now, variant),
                      CsvFiles::settingsFile(variant, m_device.settingsLines(), uki.cfgLines())});
    if (flags & Uki::ReadArchive)
        files.append({CsvFiles::archiveFileName(folder, now, variant),
                      CsvFiles::archiveFile(variant, uki.dumpLines().join(QLatin1Char('\n')))});
    if (flags & Uki::ReadCorrections)
        files.append({CsvFiles::correctionsFileName(folder, now),
                      CsvFiles::correctionsFile(CtCorrections(uki.corrLines()))});
    if (flags & Uki::ReadCustomChannels)
        files.append({CsvFiles::customChannelsFileName(folder, now),
                      CsvFiles::customChannelsFile(CustomChannels(uki.custLines()))});
    if (!QDir().mkpath(folder))
        return fail(FileError, Cli::tr("не удалось создать папку %1").arg(folder));
    QJsonArray written;
    for (const auto &file : qAsConst(files)) {
        QString error;
        if (!CsvFiles::writeFile(file.first, file.second, &error))
            return fail(FileError, Cli::tr("ошибка записи в файл %1: %2").arg(file.first, error));
        written.append(file.first);
        if (!json())
            print(stdout, file.first);
    }
    if (json())
        print(stdout,
              QString::fromUtf8(QJsonDocument(QJsonObject{{QStringLiteral("files"), written}})
                                        .toJson(QJsonDocument::Compact)));
    return Ok;
}

int Program::backup(const QString &folder)
{
    if (!m_device.identify())
        return deviceFailed();
    const QString dated = QStringLiteral("%1/%2_%3")
                                  .arg(folder,
                                       CsvFiles::prefix(m_device.variant()),
                                       QDateTime::currentDateTime().toString(
                                               QStringLiteral("yyyy-MM-dd_hh-mm-ss")));
    return read(dated, {QStringLiteral("all")});
}

int Program::loadFile(const QString &fileName, QStringList &lines)
{
    if (!m_device.identify(Uki::ReadSettings))
        return deviceFailed();
    QString error;
    if (!CsvFiles::readLines(fileName, CsvFiles::Kind::Settings, lines, &error))
        return fail(FileError, Cli::tr("не удалось прочитать файл %1: %2").arg(fileName, error));
    if (isCorrectionsFile(lines) || !CsvFiles::hasPageHeader(lines))
        return Ok;
    const int fileVariant = CsvFiles::variantFromFile(lines.value(0));
    if (fileVariant != m_device.variant())
        return fail(FileError,
                    Cli::tr("файл %1 для устройства %2, а подключено %3")
                            .arg(fileName,
                                 DeviceVariant::displayName(fileVariant),
                                 DeviceVariant::displayName(m_device.variant())));
    return Ok;
}

int Program::report(const ValueComparison::Entries &device, const ValueComparison::Entries &file)
{
    ValueComparison comparison;
    comparison.compare(ValueComparison::sortedByKey(device), ValueComparison::sortedByKey(file));
    QJsonArray differences;
    for (int i = 0; i < comparison.rowCount(); ++i) {
        const ValueComparison::Row row = comparison.row(i);
        if (row.state == ValueComparison::State::Equal)
            continue;
        const QString held = row.state == ValueComparison::State::OnlyFile ? QStringLiteral("-")
                                                                           : row.current;
        const QString wanted = row.state == ValueComparison::State::OnlyCurrent
                                       ? QStringLiteral("-")
                                       : row.file;
        differences.append(QJsonObject{{QStringLiteral("key"), row.key},
                                       {QStringLiteral("device"), held},
                                       {QStringLiteral("file"), wanted}});
        if (!json())
            print(stdout, QStringList{row.key, held, wanted}.join(QLatin1Char('\t')));
    }
    if (json())
        print(stdout,
              QString::fromUtf8(
                      QJsonDocument(QJsonObject{{QStringLiteral("differences"), differences}})
                              .toJson(QJsonDocument::Compact)));
    return differences.isEmpty() ? Ok : Differences;
}

int Program::compare(const QString &fileName)
{
    QStringList lines;
    if (const int status = loadFile(fileName, lines))
        return status;
    if (isCorrectionsFile(lines)) {
        if (!m_device.run([](Uki &uki) { return uki.readData(Uki::ReadCorrections); }))
            return deviceFailed();
        return report(ValueComparison::correctionEntries(m_device.uki().corrLines()),
                      ValueComparison::correctionEntries(lines));
    }
    return report(
            ValueComparison::settingsEntries(m_device.settingsLines()),
            ValueComparison::settingsEntries(CsvFiles::splitSettingsFile(lines).settingsLines));
}

int Program::writeSettings(const QString &fileName)
{
    QStringList lines;
    if (const int status = loadFile(fileName, lines))
        return status;
    if (isCorrectionsFile(lines))
        return fail(FileError, Cli::tr("%1 - файл коррекций, а не настроек").arg(fileName));
    const QStringList commands = m_device.writeCommands(
            CsvFiles::splitSettingsFile(lines).settingsLines);
    if (m_parser.isSet(QStringLiteral("dry-run"))) {
        for (const QString &command : commands)
            print(stdout, command);
        return Ok;
    }
    const QString backupFolder = m_parser.value(QStringLiteral("backup"));
    SafeWrite writer(&m_device.uki());
    writer.setBackupRoot(backupFolder.isEmpty() ? QStringLiteral(".") : backupFolder);
    writer.setVariant(m_device.variant());
    SafeWriteResult result;
    QEventLoop loop;
    QObject::connect(&writer, &SafeWrite::finished, &loop, [&](const SafeWriteResult &done) {
        result = done;
        loop.quit();
    });
    if (!writer.writeSettings(commands))
        return fail(DeviceError, Cli::tr("устройство занято"));
    loop.exec();
    if (!result.backupFolder.isEmpty())
        print(stderr, Cli::tr("Резервная копия: %1").arg(result.backupFolder));
    switch (result.outcome) {
    case SafeWriteResult::Verified:
        print(stdout, Cli::tr("Записано и проверено: %1 из %1").arg(result.checked));
        return Ok;
    case SafeWriteResult::BackupFailed:
        if (!result.fileError.isEmpty())
            return fail(FileError, result.fileError);
        return fail(
                DeviceError,
                Cli::tr("устройство на %1: %2").arg(m_device.uki().portName(), result.deviceError));
    case SafeWriteResult::NotTaken:
        if (!result.deviceError.isEmpty())
            print(stderr, QStringLiteral("kiranto-cli: %1").arg(result.deviceError));
        for (const QString &line : result.mismatchTexts())
            print(stderr, Cli::tr("kiranto-cli: устройство не приняло: %1").arg(line));
        return DeviceError;
    case SafeWriteResult::CheckFailed:
    case SafeWriteResult::Cancelled:
        break;
    }
    return fail(DeviceError,
                Cli::tr("устройство на %1: %2").arg(m_device.uki().portName(), result.deviceError));
}

int Program::stats(uint address, uint channel, uint level)
{
    if (!m_device.identify(Uki::ReadSettings))
        return deviceFailed();
    if (!m_device.run([=](Uki &uki) { return uki.readStats(address, channel, level); }))
        return deviceFailed();
    const auto record = m_device.uki().statistics(address, channel, level);
    QJsonArray points;
    for (int i = 0; record && i < record->points.size(); ++i) {
        const StatPoint &point = record->points.at(i);
        points.append(QJsonArray{point.value1, point.value2, point.value3});
        if (!json())
            print(stdout,
                  QStringLiteral("%1\t%2\t%3\t%4")
                          .arg(i)
                          .arg(point.value1, 0, 'f', 5)
                          .arg(point.value2, 0, 'f', 5)
                          .arg(point.value3, 0, 'f', 5));
    }
    if (json())
        print(stdout,
              QString::fromUtf8(QJsonDocument(QJsonObject{{QStringLiteral("points"), points}})
                                        .toJson(QJsonDocument::Compact)));
    return Ok;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kiranto-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.00"));
    Q_INIT_RESOURCE(translations);
    QTranslator translator;
    if (QLocale::system().name() != QLatin1String("ru_RU")
        && translator.load(QStringLiteral(":/tr/translation_en.qm")))
        QCoreApplication::installTranslator(&translator);
    // The engine and the parsers log every exchange: that is for the tool's log file.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type >= QtWarningMsg)
            print(stderr, text);
    });

    QCommandLineParser parser;
    parser.setApplicationDescription(Cli::tr(
            "Чтение и запись устройств КИРАНТО через последовательный порт.\n\n"
            "Команды:\n"
            "  identify                 вариант, версия ПО, локаторы с масками и состоянием ТТ\n"
            "  read --out DIR           файлы страниц в DIR (--what settings,archive,\n"
            "                           corrections,channels,all; по умолчанию all)\n"
            "  backup --out DIR         всё в датированную папку внутри DIR\n"
            "  compare FILE             устройство против файла настроек или коррекций,\n"
            "                           по строке на различие: ключ, устройство, файл\n"
            "  write-settings FILE      резервная копия (--backup DIR), запись, проверка\n"
            "  stats ADDRESS CHANNEL    точки статистики поиска (--level L, по умолчанию 1)\n\n"
            "Коды завершения: 0 - успех, 1 - есть различия, 2 - ошибка в командной строке,\n"
            "3 - ошибка устройства, 4 - ошибка файла."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
            {QStringLiteral("port"),
             Cli::tr("Последовательный порт (обязательно)."),
             QStringLiteral("PATH")},
            {QStringLiteral("variant"),
             Cli::tr("Вариант устройства: ukps-ks, ukps-ab, ukps-ks-2, uki-kiranto (по умолчанию "
                     "по версии ПО)."),
             QStringLiteral("KEY")},
            {QStringLiteral("json"), Cli::tr("Вывод в JSON.")},
            {QStringLiteral("out"), Cli::tr("Папка для файлов."), QStringLiteral("DIR")},
            {QStringLiteral("what"),
             Cli::tr("Что читать."),
             QStringLiteral("LIST"),
             QStringLiteral("all")},
            {QStringLiteral("backup"), Cli::tr("Папка резервных копий."), QStringLiteral("DIR")},
            {QStringLiteral("dry-run"), Cli::tr("Показать команды записи, не отправляя их.")},
            {QStringLiteral("level"),
             Cli::tr("Уровень статистики."),
             QStringLiteral("L"),
             QStringLiteral("1")},
    });
    parser.addPositionalArgument(QStringLiteral("command"), Cli::tr("Команда и её аргументы."));
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(Usage, parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        print(stdout, parser.helpText());
        return Ok;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        print(stdout, QStringLiteral("kiranto-cli 1.00"));
        return Ok;
    }

    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);
    const QMap<QString, int> arity{{QStringLiteral("identify"), 1},
                                   {QStringLiteral("read"), 1},
                                   {QStringLiteral("backup"), 1},
                                   {QStringLiteral("compare"), 2},
                                   {QStringLiteral("write-settings"), 2},
                                   {QStringLiteral("stats"), 3}};
    if (!arity.contains(command))
        return fail(Usage, Cli::tr("неизвестная команда \"%1\" (см. --help)").arg(command));
    if (args.size() != arity.value(command))
        return fail(Usage, Cli::tr("неверное число аргументов команды %1").arg(command));
    const QString port = parser.value(QStringLiteral("port"));
    if (port.isEmpty())
        return fail(Usage, Cli::tr("не задан порт (--port)"));
    int variant = -1;
    if (parser.isSet(QStringLiteral("variant"))) {
        variant = DeviceVariant::fromKey(parser.value(QStringLiteral("variant")));
        if (variant < 0)
            return fail(Usage,
                        Cli::tr("неизвестный вариант \"%1\"")
                                .arg(parser.value(QStringLiteral("variant"))));
    }
    const QString out = parser.value(QStringLiteral("out"));
    if ((command == QLatin1String("read") || command == QLatin1String("backup")) && out.isEmpty())
        return fail(Usage, Cli::tr("не задана папка (--out)"));
    const QStringList what = parser.value(QStringLiteral("what")).split(QLatin1Char(','));
    const QStringList kinds{QStringLiteral("settings"),
                            QStringLiteral("archive"),
                            QStringLiteral("corrections"),
                            QStringLiteral("channels"),
                            QStringLiteral("all")};
    for (const QString &kind : what) {
        if (!kinds.contains(kind))
            return fail(Usage, Cli::tr("неизвестное значение --what: \"%1\"").arg(kind));
    }
    if (command == QLatin1String("compare") || command == QLatin1String("write-settings")) {
        if (!QFileInfo(args.at(1)).isFile())
            return fail(FileError, Cli::tr("нет файла %1").arg(args.at(1)));
    }
    bool numbers = true;
    uint stat[3] = {};
    if (command == QLatin1String("stats")) {
        const QStringList texts{args.at(1), args.at(2), parser.value(QStringLiteral("level"))};
        for (int i = 0; i < 3 && numbers; ++i)
            stat[i] = texts.at(i).toUInt(&numbers);
        if (!numbers)
            return fail(Usage, Cli::tr("адрес, канал и уровень - целые числа"));
    }

    DeviceSession device(port, variant, isatty(STDERR_FILENO));
    Program program(parser, device);
    if (command == QLatin1String("identify"))
        return program.identify();
    if (command == QLatin1String("read"))
        return program.read(out, what);
    if (command == QLatin1String("backup"))
        return program.backup(out);
    if (command == QLatin1String("compare"))
        return program.compare(args.at(1));
    if (command == QLatin1String("write-settings"))
        return program.writeSettings(args.at(1));
    return program.stats(stat[0], stat[1], stat[2]);
}
