#include "archivedata.h"

#include "models/bitstring.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>

namespace {

// Codes in the order in which the type lookup tries them (first match wins).
constexpr quint32 lookupOrder[] = {
        1,  10, 11, 16, 17, 18, 2,  19, 20, 3,  21, 4,  22, 5,   23,  6,  24,
        7,  25, 8,  26, 9,  27, 12, 28, 13, 29, 14, 30, 15, 31,  32,  33, 34,
        35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 48, 46, 128, 129,
};

constexpr int maxFields = 12;

// Lookup tables, built once on first use with the display texts as translated at that time.
struct TypeTables
{
    QHash<QString, quint32> codes; // identifier or display text: first code in lookup order
    QHash<quint32, QString> texts; // translated display text by code
};

const TypeTables &typeTables()
{
    static const TypeTables tables = [] {
        TypeTables t;
        QHash<quint32, EventTypeInfo> byCode;
        for (const EventTypeInfo &info : ArchiveData::eventTypes()) {
            byCode.insert(info.code, info);
            t.texts.insert(info.code, QCoreApplication::translate("ArchiveData", info.text));
        }
        for (quint32 code : lookupOrder) {
            for (const QString &name :
                 {QString::fromLatin1(byCode.value(code).identifier), t.texts.value(code)}) {
                if (!t.codes.contains(name))
                    t.codes.insert(name, code);
            }
        }
        return t;
    }();
    return tables;
}

bool twoDigits(QStringView text, int pos, int &value)
{
    const ushort hi = text.at(pos).unicode();
    const ushort lo = text.at(pos + 1).unicode();
    if (hi < '0' || hi > '9' || lo < '0' || lo > '9')
        return false;
    value = (hi - '0') * 10 + (lo - '0');
    return true;
}

// The value of a field of 1 to 9 plain digits, which cannot overflow; anything else is left to
// QStringView's own conversion, so the result is always the same as toUInt()/toInt().
bool plainDigits(QStringView text, quint32 &value)
{
    const int size = text.size();
    if (size < 1 || size > 9)
        return false;
    quint32 number = 0;
    for (const QChar c : text) {
        const ushort digit = c.unicode() - ushort('0');
        if (digit > 9)
            return false;
        number = number * 10 + digit;
    }
    value = number;
    return true;
}

quint32 toUInt(QStringView text)
{
    quint32 value = 0;
    return plainDigits(text, value) ? value : text.toUInt();
}

qint32 toInt(QStringView text)
{
    quint32 value = 0;
    return plainDigits(text, value) ? qint32(value) : text.toInt();
}

QString tenths(quint16 value)
{
    return QString::number(value / 10.0, 'f', 1);
}

// Where the clocks go back a local time occurs twice, and the C library picks one of the two by
// what it converted last. Take the first occurrence, so that a dump line always gives one time.
qint64 firstOccurrence(const QDateTime &local)
{
    const qint64 seconds = local.toSecsSinceEpoch();
    const qint64 clock = QDateTime(local.date(), local.time(), Qt::UTC).toSecsSinceEpoch();
    qint64 first = seconds;
    for (const qint64 probe : {seconds - 86400, seconds + 86400}) {
        const qint64 candidate = clock - QDateTime::fromSecsSinceEpoch(probe).offsetFromUtc();
        const QDateTime other = QDateTime::fromSecsSinceEpoch(candidate);
        if (candidate < first && other.date() == local.date() && other.time() == local.time())
            first = candidate;
    }
    return first;
}

} // namespace

ArchiveData::ArchiveData(const QStringList &lines, QObject *parent)
    : QAbstractTableModel(parent)
{
    parseLines(lines);
}

void ArchiveData::setLines(const QStringList &lines)
{
    beginResetModel();
    m_events.clear();
    parseLines(lines);
    endResetModel();
}

ArchiveEvent ArchiveData::eventAt(int row) const
{
    if (row < 0 || row >= m_events.size())
        return {};
    return m_events.at(row);
}

int ArchiveData::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_events.size();
}

int ArchiveData::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QModelIndex ArchiveData::rawIndex(int row, int column) const
{
    if (row < 0 || row >= m_events.size() || column < 0 || column > LastRawColumn)
        return {};
    return createIndex(row, column);
}

QVariant ArchiveData::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    const int row = index.row();
    const int column = index.column();
    if (row < 0 || column < 0 || row >= m_events.size())
        return {};
    const ArchiveEvent &event = m_events.at(row);
    switch (column) {
    case ColumnItem:
        return event.item;
    case ColumnTime:
        return QDateTime::fromSecsSinceEpoch(event.time)
                .toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    case ColumnType:
        return eventTypeText(event);
    case ColumnData:
        return eventDataText(event);
    default:
        break;
    }
    // Column c shows Value-(c - 2): Value-1 has no column of its own.
    if (column <= LastRawColumn)
        return uint(event.values[std::size_t(column - 3)]);
    return {};
}

QVariant ArchiveData::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case ColumnItem:
        return tr("#");
    case ColumnTime:
        return tr("Дата/время");
    case ColumnType:
        return tr("Тип события");
    case ColumnData:
        return tr("Данные");
    default:
        break;
    }
    if (section >= FirstRawColumn)
        return QStringLiteral("%1").arg(section - 3);
    return {};
}

const QVector<EventTypeInfo> &ArchiveData::eventTypes()
{
    static const QVector<EventTypeInfo> types = {
            {ET_GENERAL_RESISTANCE,
             "ET_GENERAL_RESISTANCE",
             QT_TRANSLATE_NOOP("ArchiveData", "Запись с замерами сопротивления (периодическая)")},
            {ET_EVENT_IMS_LOC_DUP_ADDR,
             "ET_EVENT_IMS_LOC_DUP_ADDR",
             QT_TRANSLATE_NOOP("ArchiveData", "Дублирование адресов локаторов")},
            {ET_EVENT_IMS_CT_FAULT,
             "ET_EVENT_IMS_CT_FAULT",
             QT_TRANSLATE_NOOP("ArchiveData", "Неисправность ТТ")},
            {ET_EVENT_IMS_CTLOC_FAULT,
             "ET_EVENT_IMS_CTLOC_FAULT",
             QT_TRANSLATE_NOOP("ArchiveData", "Неисправность ТТ в локаторе")},
            {ET_EVENT_IMS_LOC_LOST,
             "ET_EVENT_IMS_LOC_LOST",
             QT_TRANSLATE_NOOP("ArchiveData", "Потеря связи с локатором")},
            {ET_EVENT_IMS_UKI_LOST,
             "ET_EVENT_IMS_UKI_LOST",
             QT_TRANSLATE_NOOP("ArchiveData", "Потеря связи с УКИ")},
            {ET_EVENT_IMS_UKI_ADCONF,
             "ET_EVENT_IMS_UKI_ADCONF",
             QT_TRANSLATE_NOOP("ArchiveData", "Дублирование адресов УКИ")},
            {ET_EVENT_IMS_UKI_ADOUT,
             "ET_EVENT_IMS_UKI_ADOUT",
             QT_TRANSLATE_NOOP("ArchiveData", "Адрес УКИ вне допуска")},
            {ET_EVENT_IMS_LOC_ADOUT,
             "ET_EVENT_IMS_LOC_ADOUT",
             QT_TRANSLATE_NOOP("ArchiveData", "Адрес локатора вне допуска")},
            {ET_SODC_PARAM, "ET_SODC_PARAM", QT_TRANSLATE_NOOP("ArchiveData", "Ёмкость сети")},
            {ET_FEED_PARAM, "ET_FEED_PARAM", QT_TRANSLATE_NOOP("ArchiveData", "Результаты поиска")},
            {ET_EVENT_IMS_CT_OVER,
             "ET_EVENT_IMS_CT_OVER",
             QT_TRANSLATE_NOOP("ArchiveData",
                               "Неверная конфигурация (слишком много включённых локаторов)")},
            // 13 and 14 show the text of 27 on purpose.
            {ET_EVENT_IMS_POW_OFF_,
             "ET_EVENT_IMS_POW_OFF_",
             QT_TRANSLATE_NOOP("ArchiveData", "Выключение питания")},
            {ET_EVENT_IMS_POW_ON_,
             "ET_EVENT_IMS_POW_ON_",
             QT_TRANSLATE_NOOP("ArchiveData", "Выключение питания")},
            {ET_EVENT_IMS_LOC_ADSAME,
             "ET_EVENT_IMS_LOC_ADSAME",
             QT_TRANSLATE_NOOP("ArchiveData", "Адрес анешнего локатора такой же как у УКИ")},
            {ET_EVENT_RES_REDUCTION,
             "ET_EVENT_RES_REDUCTION",
             QT_TRANSLATE_NOOP("ArchiveData", "Снижение R ниже R1")},
            {ET_EVENT_RES_REDUCTION_CRIT,
             "ET_EVENT_RES_REDUCTION_CRIT",
             QT_TRANSLATE_NOOP("ArchiveData", "Снижение R ниже R2")},
            {ET_EVENT_DISBALANCE_VOLTAGE,
             "ET_EVENT_DISBALANCE_VOLTAGE",
             QT_TRANSLATE_NOOP("ArchiveData", "Перекос напряжения")},
            {ET_EVENT_NO_TMOST,
             "ET_EVENT_NO_TMOST",
             QT_TRANSLATE_NOOP("ArchiveData", "Обрыв Т-моста")},
            {ET_EVENT_FAIL_ON,
             "ET_EVENT_FAIL_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Неисправность устройства")},
            {ET_EVENT_BRWIRE_ON,
             "ET_EVENT_BRWIRE_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Обрыв АБ")},
            {ET_EVENT_DISCH_ON, "ET_EVENT_DISCH_ON", QT_TRANSLATE_NOOP("ArchiveData", "Разряд АБ")},
            {ET_EVENT_OVER_ON,
             "ET_EVENT_OVER_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Превышение напряжения АБ")},
            {ET_EVENT_FALL_ON,
             "ET_EVENT_FALL_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Снижение напряжения АБ")},
            {ET_EVENT_RIPPLEU_ON,
             "ET_EVENT_RIPPLEU_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Превышен уровень пульсаций напряжения")},
            {ET_EVENT_RIPPLEI_ON,
             "ET_EVENT_RIPPLEI_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Превышен уровень пульсаций тока")},
            {ET_EVENT_IMS_POW_OFF,
             "ET_EVENT_IMS_POW_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "Выключение питания")},
            {ET_EVENT_IMS_POW_ON,
             "ET_EVENT_IMS_POW_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Включение питания и версия ПО")},
            {ET_EVENT_SYMMETRY_ON,
             "ET_EVENT_SYMMETRY_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Нарушение симметрии АБ")},
            {ET_EVENT_OVER_T_ON,
             "ET_EVENT_OVER_T_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Повышение температуры")},
            {ET_EVENT_FALL_T_ON,
             "ET_EVENT_FALL_T_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Снижение температуры")},
            {ET_EVENT_OVER_Tail_ON,
             "ET_EVENT_OVER_Tail_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Повышение напряжения \"хвоста\"")},
            {ET_EVENT_FALL_Tail_ON,
             "ET_EVENT_FALL_Tail_ON",
             QT_TRANSLATE_NOOP("ArchiveData", "Снижение напряжения \"хвоста\"")},
            {ET_EVENT_SYMMETRY_OFF,
             "ET_EVENT_SYMMETRY_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Нарушение симметрии АБ")},
            {ET_EVENT_OVER_T_OFF,
             "ET_EVENT_OVER_T_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Повышение температуры")},
            {ET_EVENT_FALL_T_OFF,
             "ET_EVENT_FALL_T_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Снижение температуры")},
            {ET_EVENT_OVER_Tail_OFF,
             "ET_EVENT_OVER_Tail_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Повышение напряжения \"хвоста\"")},
            {ET_EVENT_FALL_Tail_OFF,
             "ET_EVENT_FALL_Tail_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Снижение напряжения \"хвоста\"")},
            {ET_EVENT_FAIL_OFF,
             "ET_EVENT_FAIL_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Неисправность устройства")},
            {ET_EVENT_BRWIRE_OFF,
             "ET_EVENT_BRWIRE_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Обрыв АБ")},
            {ET_EVENT_DISCH_OFF,
             "ET_EVENT_DISCH_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Разряд АБ")},
            {ET_EVENT_OVER_OFF,
             "ET_EVENT_OVER_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Превышение напряжения АБ")},
            {ET_EVENT_FALL_OFF,
             "ET_EVENT_FALL_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Снижение напряжения АБ")},
            {ET_EVENT_RIPPLEU_OFF,
             "ET_EVENT_RIPPLEU_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Превышен уровень пульсаций напряжения")},
            {ET_EVENT_RIPPLEI_OFF,
             "ET_EVENT_RIPPLEI_OFF",
             QT_TRANSLATE_NOOP("ArchiveData", "пропало: Превышен уровень пульсаций тока")},
            {ET_EVENT_UMINIMUM_VOLTAGE,
             "ET_EVENT_UMINIMUM_VOLTAGE",
             QT_TRANSLATE_NOOP("ArchiveData", "Превышено напряжение на отрицательном полюсе")},
            {ET_EVENT_IMS_UKI_NOMULTI,
             "ET_EVENT_IMS_UKI_NOMULTI",
             QT_TRANSLATE_NOOP("ArchiveData",
                               "У другого УКИ включена опция МультиУКИ, а у нас нет")},
            {ET_DEBUG, "ET_DEBUG", QT_TRANSLATE_NOOP("ArchiveData", "ET_DEBUG")},
            {ET_FEED_COMPLEX,
             "ET_FEED_COMPLEX",
             QT_TRANSLATE_NOOP("ArchiveData", "ET_FEED_COMPLEX")},
    };
    return types;
}

quint32 ArchiveData::eventTypeCode(const QString &text)
{
    return typeTables().codes.value(text, ET_NONE);
}

QString ArchiveData::eventTypeText(quint32 code)
{
    const TypeTables &tables = typeTables();
    const auto it = tables.texts.constFind(code);
    if (it != tables.texts.constEnd())
        return it.value();
    return tr("-");
}

QString ArchiveData::eventDataText(const ArchiveEvent &event)
{
    const auto &v = event.values;
    const auto n = [&v](int i) {
        return QString::number(v[std::size_t(i - 1)]);
    };
    switch (event.type) {
    case ET_GENERAL_RESISTANCE:
        return tr("Rобщ = %1кОм, R+/- = %2/%3кОм; Uаб = %4В, U+/- = %5/%6В")
                .arg(n(1), n(2), n(3), n(4), n(5), n(6));
    case ET_EVENT_RES_REDUCTION:
    case ET_EVENT_RES_REDUCTION_CRIT:
    case ET_EVENT_DISBALANCE_VOLTAGE:
    case ET_EVENT_UMINIMUM_VOLTAGE:
        return tr("Rобщ = %1кОм, R+/- = %2/%3кОм; U+/- = %4/%5В").arg(n(1), n(2), n(3), n(4), n(5));
    case ET_EVENT_IMS_LOC_DUP_ADDR:
    case ET_EVENT_IMS_LOC_LOST:
    case ET_EVENT_IMS_UKI_LOST:
    case ET_EVENT_IMS_UKI_ADCONF:
    case ET_EVENT_IMS_UKI_ADOUT:
        return tr("Адрес: %1").arg(n(1));
    case ET_EVENT_IMS_CT_FAULT:
        return tr("Адрес: УКИ, ТТ: %1").arg(BitString::ctState(v[2], v[3], v[0], v[1]));
    case ET_EVENT_IMS_CTLOC_FAULT:
        // The parser fills Value-1..4 from the four masks, yet the address is Value-1 and the
        // tested mask Value-5: every enabled channel shows "И". Both sides are kept as they are.
        return tr("Адрес: %1, ТТ: %2").arg(n(1), BitString::ctState(v[3], v[4], v[1], v[2]));
    case ET_SODC_PARAM:
        return tr("С = %1мкФ, I = %2мкА").arg(tenths(v[0]), n(2));
    case ET_FEED_PARAM:
        return tr("Адрес: %1, канал: %2: Rизо = %3кОм, C = %4мкФ I = %5мкА")
                .arg(n(4), n(5), n(1), tenths(v[1]), n(3));
    case ET_EVENT_BRWIRE_ON:
    case ET_EVENT_DISCH_ON:
    case ET_EVENT_BRWIRE_OFF:
    case ET_EVENT_DISCH_OFF:
        return tr("I = %1 мА").arg(qint16(v[0]));
    case ET_EVENT_OVER_ON:
    case ET_EVENT_FALL_ON:
    case ET_EVENT_OVER_OFF:
    case ET_EVENT_FALL_OFF:
        return tr("U АБ = %1 в").arg(tenths(v[0]));
    case ET_EVENT_RIPPLEU_ON:
    case ET_EVENT_RIPPLEU_OFF:
        return tr("Пульс. U = %1%").arg(tenths(v[0]));
    case ET_EVENT_RIPPLEI_ON:
    case ET_EVENT_RIPPLEI_OFF:
        return tr("Пульс. I = %1%").arg(tenths(v[0]));
    case ET_EVENT_IMS_POW_ON:
        return tr("Версия прошивки: %1.%2.%3").arg(n(2), n(3), n(4));
    case ET_EVENT_SYMMETRY_ON:
    case ET_EVENT_SYMMETRY_OFF:
        return tr("Асимметрия = %1 в").arg(n(1));
    case ET_EVENT_OVER_T_ON:
    case ET_EVENT_FALL_T_ON:
    case ET_EVENT_OVER_T_OFF:
    case ET_EVENT_FALL_T_OFF:
        return tr("T = %1°").arg(tenths(v[0]));
    case ET_EVENT_OVER_Tail_ON:
    case ET_EVENT_FALL_Tail_ON:
    case ET_EVENT_OVER_Tail_OFF:
    case ET_EVENT_FALL_Tail_OFF:
        return tr("Uх.э. = %1 в").arg(n(1));
    case ET_EVENT_IMS_LOC_ADOUT:
    case ET_EVENT_IMS_CT_OVER:
    case ET_EVENT_IMS_LOC_ADSAME:
    case ET_EVENT_IMS_POW_OFF:
    case ET_EVENT_IMS_UKI_NOMULTI:
    case ET_DEBUG:
    case ET_FEED_COMPLEX:
        return QString();
    default:
        return tr("-");
    }
}

quint32 ArchiveData::timeFromText(const QString &date, const QString &time)
{
    if (date.size() != 8 || time.size() != 8)
        return 0;
    QDateTime dateTime = QDateTime::fromString(QStringLiteral("%1 %2").arg(date, time),
                                               QStringLiteral("dd.MM.yy hh:mm:ss"));
    if (!dateTime.isValid())
        return 0;
    // "yy" reads as 1900-1999; the device's years are 2000-2099.
    if (dateTime.date().year() <= 1999)
        dateTime = dateTime.addYears(100);
    return quint32(firstOccurrence(dateTime));
}

// Same result as timeFromText(). Reading every line through QDateTime::fromString would
// dominate a large dump, so a well-formed date and time are computed from the start of their
// day, cached per day, as long as the day has a single UTC offset (in both the year as read
// and the year 100 later). Anything else goes the long way.
quint32 ArchiveData::cachedTime(QStringView date, QStringView time)
{
    int day = 0, month = 0, year = 0, hours = 0, minutes = 0, seconds = 0;
    if (date.size() == 8 && time.size() == 8 && twoDigits(date, 0, day)
        && date.at(2) == QLatin1Char('.') && twoDigits(date, 3, month)
        && date.at(5) == QLatin1Char('.') && twoDigits(date, 6, year) && twoDigits(time, 0, hours)
        && time.at(2) == QLatin1Char(':') && twoDigits(time, 3, minutes)
        && time.at(5) == QLatin1Char(':') && twoDigits(time, 6, seconds) && hours < 24
        && minutes < 60 && seconds < 60) {
        const quint32 key = quint32(year * 10000 + month * 100 + day);
        auto it = m_days.find(key);
        if (it == m_days.end()) {
            Day info;
            const QDate asRead(1900 + year, month, day);
            const QDate shifted = asRead.addYears(100);
            const QTime first(0, 0, 0);
            const QTime last(23, 59, 59);
            const QDateTime a0(asRead, first, Qt::LocalTime);
            const QDateTime a1(asRead, last, Qt::LocalTime);
            const QDateTime b0(shifted, first, Qt::LocalTime);
            const QDateTime b1(shifted, last, Qt::LocalTime);
            info.uniform = asRead.isValid() && a0.isValid() && a1.isValid() && b0.isValid()
                           && b1.isValid() && a0.offsetFromUtc() == a1.offsetFromUtc()
                           && b0.offsetFromUtc() == b1.offsetFromUtc();
            info.start = b0.toSecsSinceEpoch();
            it = m_days.insert(key, info);
        }
        if (it->uniform)
            return quint32(it->start + hours * 3600 + minutes * 60 + seconds);
    }
    return timeFromText(date.toString(), time.toString());
}

void ArchiveData::parseLines(const QStringList &lines)
{
    m_events.reserve(lines.size());
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("Item\tDate")))
            continue;
        ArchiveEvent event;
        if (parseLine(line, event) && event.type != ET_NONE)
            m_events.append(event);
    }
    m_events.squeeze();
    m_days.clear();
}

bool ArchiveData::parseLine(const QString &line, ArchiveEvent &event)
{
    const QString text = line.trimmed();
    QStringView fields[maxFields];
    int count = 0;
    for (int start = 0;;) {
        const int tab = text.indexOf(QLatin1Char('\t'), start);
        const int end = tab < 0 ? text.size() : tab;
        if (count < maxFields)
            fields[count] = QStringView(text).mid(start, end - start);
        ++count;
        if (tab < 0)
            break;
        start = tab + 1;
    }

    const auto bad = [&line] {
        qDebug().noquote() << QStringLiteral("bad line in archve dump: %1").arg(line);
        return false;
    };
    if (count < 4)
        return bad();

    event.item = toInt(fields[0]);
    event.time = cachedTime(fields[1], fields[2]);
    event.type = eventTypeCode(fields[3].toString());

    if (event.type == ET_EVENT_IMS_CT_FAULT || event.type == ET_EVENT_IMS_CTLOC_FAULT) {
        if (count < 8)
            return bad();
        for (int i = 0; i < 4; ++i)
            event.values[std::size_t(i)] = BitString::parse(fields[4 + i].toString());
        return true;
    }

    if (count < 12)
        return bad();
    for (int i = 0; i < 6; ++i)
        event.values[std::size_t(i)] = quint16(toUInt(fields[4 + i]));
    if (event.type == ET_FEED_PARAM) {
        const quint32 stamp = cachedTime(fields[10], fields[11]);
        event.values[6] = quint16(stamp & 0xffff);
        event.values[7] = quint16(stamp >> 16);
    } else {
        event.values[6] = quint16(toUInt(fields[10]));
        event.values[7] = quint16(toUInt(fields[11]));
    }
    return true;
}
