#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>
#include <QStringView>
#include <QVector>

#include <array>

// Event type codes as the device numbers them in its archive.
enum EventType : quint32 {
    ET_NONE = 0,
    ET_GENERAL_RESISTANCE = 1,
    ET_EVENT_IMS_LOC_DUP_ADDR = 2,
    ET_EVENT_IMS_CT_FAULT = 3,
    ET_EVENT_IMS_CTLOC_FAULT = 4,
    ET_EVENT_IMS_LOC_LOST = 5,
    ET_EVENT_IMS_UKI_LOST = 6,
    ET_EVENT_IMS_UKI_ADCONF = 7,
    ET_EVENT_IMS_UKI_ADOUT = 8,
    ET_EVENT_IMS_LOC_ADOUT = 9,
    ET_SODC_PARAM = 10,
    ET_FEED_PARAM = 11,
    ET_EVENT_IMS_CT_OVER = 12,
    ET_EVENT_IMS_POW_OFF_ = 13,
    ET_EVENT_IMS_POW_ON_ = 14,
    ET_EVENT_IMS_LOC_ADSAME = 15,
    ET_EVENT_RES_REDUCTION = 16,
    ET_EVENT_RES_REDUCTION_CRIT = 17,
    ET_EVENT_DISBALANCE_VOLTAGE = 18,
    ET_EVENT_NO_TMOST = 19,
    ET_EVENT_FAIL_ON = 20,
    ET_EVENT_BRWIRE_ON = 21,
    ET_EVENT_DISCH_ON = 22,
    ET_EVENT_OVER_ON = 23,
    ET_EVENT_FALL_ON = 24,
    ET_EVENT_RIPPLEU_ON = 25,
    ET_EVENT_RIPPLEI_ON = 26,
    ET_EVENT_IMS_POW_OFF = 27,
    ET_EVENT_IMS_POW_ON = 28,
    ET_EVENT_SYMMETRY_ON = 29,
    ET_EVENT_OVER_T_ON = 30,
    ET_EVENT_FALL_T_ON = 31,
    ET_EVENT_OVER_Tail_ON = 32,
    ET_EVENT_FALL_Tail_ON = 33,
    ET_EVENT_SYMMETRY_OFF = 34,
    ET_EVENT_OVER_T_OFF = 35,
    ET_EVENT_FALL_T_OFF = 36,
    ET_EVENT_OVER_Tail_OFF = 37,
    ET_EVENT_FALL_Tail_OFF = 38,
    ET_EVENT_FAIL_OFF = 39,
    ET_EVENT_BRWIRE_OFF = 40,
    ET_EVENT_DISCH_OFF = 41,
    ET_EVENT_OVER_OFF = 42,
    ET_EVENT_FALL_OFF = 43,
    ET_EVENT_RIPPLEU_OFF = 44,
    ET_EVENT_RIPPLEI_OFF = 45,
    ET_EVENT_UMINIMUM_VOLTAGE = 46,
    ET_EVENT_IMS_UKI_NOMULTI = 48,
    ET_DEBUG = 128,
    ET_FEED_COMPLEX = 129,
};

// One row of the event type table: code, identifier in the dump, untranslated display text.
struct EventTypeInfo
{
    quint32 code;
    const char *identifier;
    const char *text;
};

// One event of the device archive, as read from one dump line.
struct ArchiveEvent
{
    qint32 item = 0;
    // Seconds since 1970-01-01 00:00 UTC, from the dump's local date and time; 0 if unreadable.
    quint32 time = 0;
    quint32 type = ET_NONE;
    // Value-1 ... Value-8. For ET_FEED_PARAM Value-7/Value-8 are the low/high 16 bits of a
    // second time stamp (same rule as time).
    std::array<quint16, 8> values{};
};

// The device's event archive dump as a read-only table: "#", date/time, type text, data text.
// Columns 4..10 are not shown but answer with the raw Value-(column - 2).
class ArchiveData final : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { ColumnItem = 0, ColumnTime, ColumnType, ColumnData, ColumnCount };
    static constexpr int FirstRawColumn = 4;
    static constexpr int LastRawColumn = 10;

    // Parses the dump lines (header line included) at once.
    explicit ArchiveData(const QStringList &lines, QObject *parent = nullptr);

    // Empties the table and parses a new dump, as one model reset.
    void setLines(const QStringList &lines);

    const QVector<ArchiveEvent> &events() const { return m_events; }
    // A copy of the event at row; an all-zero event for a row outside the table.
    ArchiveEvent eventAt(int row) const;

    // An index for the hidden raw columns 4..10 as well, which index() refuses; invalid for a row
    // outside the table or a column outside 0..10.
    QModelIndex rawIndex(int row, int column) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section,
                        Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // The event type table in code order (code 47 has no entry).
    static const QVector<EventTypeInfo> &eventTypes();
    // Code for an identifier or a display text; 0 when unknown. Texts shared by several codes
    // give the first in lookup order ("Выключение питания" gives 27). The display texts are
    // translated once, on first use: install the translator before.
    static quint32 eventTypeCode(const QString &text);
    static QString eventTypeText(quint32 code);
    static QString eventTypeText(const ArchiveEvent &event) { return eventTypeText(event.type); }
    static QString eventDataText(const ArchiveEvent &event);

    // A dump date "dd.MM.yy" and time "hh:mm:ss" read as local time, years 2000-2099;
    // seconds since 1970-01-01 00:00 UTC, or 0 when they cannot be read.
    static quint32 timeFromText(const QString &date, const QString &time);

private:
    struct Day
    {
        bool uniform = false; // one UTC offset all day: time = start + seconds of the day
        qint64 start = 0;
    };

    void parseLines(const QStringList &lines);
    bool parseLine(const QString &line, ArchiveEvent &event);
    quint32 cachedTime(QStringView date, QStringView time);

    QVector<ArchiveEvent> m_events;
    QHash<quint32, Day> m_days; // by yymmdd of the dump date, during one parse
};
