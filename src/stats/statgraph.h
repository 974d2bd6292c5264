#pragma once

#include "stats/statscale.h"

#include <QFont>
#include <QRect>
#include <QString>
#include <QVector>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <utility>

class SearchStatistics;

// One channel of the statistics page: drawn or not, its custom settings as last read or edited,
// whether they were edited since, and its colour on the graph.
class StatChannel
{
public:
    static constexpr quint32 maxSteps = 15; // bounds are kept in steps of 5 units: 0..75
    static constexpr quint32 maxRLoc = 999;

    bool shown() const { return m_shown; }
    void setShown(bool shown) { m_shown = shown; }

    // Settings edited and not yet written to the device.
    bool changed() const { return m_changed; }
    void setChanged(bool changed) { m_changed = changed; }

    // Bounds in steps of 5 units. The setters cap at maxSteps and set changed only when the
    // stored value really changes.
    quint32 lower() const { return m_lower; }
    void setLower(quint32 steps);
    quint32 upper() const { return m_upper; }
    void setUpper(quint32 steps);

    // The local threshold; 0 means the channel has no custom settings ("OFF").
    quint32 rLoc() const { return m_rLoc; }
    void setRLoc(quint32 rLoc);

    // Takes the device's settings (capped like the setters) and clears changed.
    void load(quint32 rLoc, quint32 lowerSteps, quint32 upperSteps);

    // "#rrggbb", empty until the graph assigns one.
    QString color() const { return m_color; }
    void setColor(const QString &color) { m_color = color; }

private:
    bool m_shown = false;
    bool m_changed = false;
    quint32 m_lower = 0;
    quint32 m_upper = 0;
    quint32 m_rLoc = 0;
    QString m_color;
};

// Draws the level-1 fault-search statistics of the shown channels: one coloured polyline with
// square dots per channel, measurement number along T, resistance along R. It keeps the channel
// entries of the statistics page and looks the records up when it paints.
class StatGraph : public QWidget
{
    Q_OBJECT
public:
    using Key = std::pair<quint32, quint32>; // (address, channel 0..15)
    using Channels = std::map<Key, StatChannel>;
    // Where the records come from: the engine's store in the program.
    using Lookup = std::function<std::shared_ptr<SearchStatistics>(
            uint address, uint channel, uint level)>;

    static constexpr uint level = 1; // the only statistics level drawn

    explicit StatGraph(QWidget *parent = nullptr);

    void setStatisticsLookup(const Lookup &lookup) { m_lookup = lookup; }

    // The entry of (address, channel); an absent one is inserted empty.
    StatChannel &entry(quint32 address, quint32 channel);
    const Channels &channels() const { return m_channels; }

    // The entry's colour; an entry without one takes the next colour of the shared palette and
    // keeps it from then on.
    QString assignColor(quint32 address, quint32 channel);

    bool isSorted() const { return m_sorted; }
    QFont graphFont() const { return m_font; }
    QRect plotRect() const { return m_geometry.plot; }
    // The R axis of the latest paint.
    const StatScale &scale() const { return m_scale; }
    // The hint of the point drawn under pos by the latest paint, or an empty text.
    QString hintAt(const QPoint &pos) const;

public slots:
    void clear();
    void setSorted(bool value);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    struct Hit
    {
        QRectF rect;
        QString hint;
    };

    const Hit *hitAt(const QPoint &pos) const;
    std::shared_ptr<SearchStatistics> statisticsOf(const Key &key) const;
    StatScale computeScale() const;
    void drawAxes(QPainter &painter) const;
    void drawSeries(QPainter &painter);

    Channels m_channels;
    Lookup m_lookup;
    QFont m_font;
    StatGeometry m_geometry;
    StatScale m_scale{999.0, 0.0, 0, 0};
    bool m_sorted = false;
    QVector<Hit> m_hits;
};
