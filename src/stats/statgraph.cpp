#include "statgraph.h"

#include "protocol/searchstatistics.h"

#include <QColor>
#include <QFontMetrics>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QToolTip>

#include <algorithm>

void StatChannel::setLower(quint32 steps)
{
    steps = std::min(steps, maxSteps);
    if (steps != m_lower) {
        m_lower = steps;
        m_changed = true;
    }
}

void StatChannel::setUpper(quint32 steps)
{
    steps = std::min(steps, maxSteps);
    if (steps != m_upper) {
        m_upper = steps;
        m_changed = true;
    }
}

void StatChannel::setRLoc(quint32 rLoc)
{
    rLoc = std::min(rLoc, maxRLoc);
    if (rLoc != m_rLoc) {
        m_rLoc = rLoc;
        m_changed = true;
    }
}

void StatChannel::load(quint32 rLoc, quint32 lowerSteps, quint32 upperSteps)
{
    m_rLoc = std::min(rLoc, maxRLoc);
    m_lower = std::min(lowerSteps, maxSteps);
    m_upper = std::min(upperSteps, maxSteps);
    m_changed = false;
}

namespace {

constexpr int kTickLength = 4;
constexpr qreal kLinePen = 1.2;
constexpr qreal kDotPen = 4.0;
constexpr qreal kHitHalf = 4.0; // half the side of a point's hit rectangle

// A 1-pixel line on whole coordinates, kept sharp under antialiasing.
QPointF px(qreal x, qreal y)
{
    return QPointF(x + 0.5, y + 0.5);
}

} // namespace

StatGraph::StatGraph(QWidget *parent)
    : QWidget(parent)
    , m_font(QStringLiteral("Arial"), 10)
{
    m_font.setStyleHint(QFont::Monospace);
    setMouseTracking(true);
    setMinimumSize(200, 120);
    const QFontMetrics metrics(m_font);
    m_geometry = StatGeometry::forSize(
            size(), metrics.horizontalAdvance(QStringLiteral("-9999-")), metrics.height());
}

StatChannel &StatGraph::entry(quint32 address, quint32 channel)
{
    return m_channels[Key(address, channel)];
}

QString StatGraph::assignColor(quint32 address, quint32 channel)
{
    StatChannel &channelEntry = entry(address, channel);
    if (channelEntry.color().isEmpty())
        channelEntry.setColor(StatPalette::next());
    return channelEntry.color();
}

const StatGraph::Hit *StatGraph::hitAt(const QPoint &pos) const
{
    // The latest drawn point lies on top.
    for (auto it = m_hits.crbegin(); it != m_hits.crend(); ++it) {
        if (it->rect.contains(pos))
            return &*it;
    }
    return nullptr;
}

QString StatGraph::hintAt(const QPoint &pos) const
{
    const Hit *hit = hitAt(pos);
    return hit ? hit->hint : QString();
}

void StatGraph::clear()
{
    m_channels.clear();
    update();
}

void StatGraph::setSorted(bool value)
{
    if (value == m_sorted)
        return;
    m_sorted = value;
    update();
}

void StatGraph::resizeEvent(QResizeEvent *event)
{
    const QFontMetrics metrics(m_font);
    m_geometry = StatGeometry::forSize(
            event->size(), metrics.horizontalAdvance(QStringLiteral("-9999-")), metrics.height());
    QWidget::resizeEvent(event);
}

std::shared_ptr<SearchStatistics> StatGraph::statisticsOf(const Key &key) const
{
    if (!m_lookup)
        return nullptr;
    return m_lookup(key.first, key.second, level);
}

StatScale StatGraph::computeScale() const
{
    double minimum = 999.0;
    double maximum = 0.0;
    for (const auto &[key, channel] : m_channels) {
        if (!channel.shown())
            continue;
        const std::shared_ptr<SearchStatistics> statistics = statisticsOf(key);
        if (!statistics || statistics->points.isEmpty())
            continue;
        const std::pair<double, double> range = statistics->valueRange();
        minimum = std::min(minimum, range.first);
        maximum = std::max(maximum, range.second);
    }
    return StatScale(minimum,
                     maximum,
                     m_geometry.plot.bottom() - m_geometry.plot.top(),
                     QFontMetrics(m_font).height());
}

void StatGraph::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(m_font);

    const QRect &frame = m_geometry.frame;
    painter.setPen(QPen(Qt::black, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(px(frame.left(), frame.top()), px(frame.right(), frame.bottom())));
    painter.setBrush(Qt::NoBrush);

    m_scale = computeScale();
    drawAxes(painter);
    drawSeries(painter);
}

void StatGraph::drawAxes(QPainter &painter) const
{
    const QRect &plot = m_geometry.plot;
    const QRectF area(plot.topLeft(), plot.bottomRight());
    const int lineHeight = QFontMetrics(m_font).height();
    const int left = plot.left();
    const int bottom = plot.bottom();
    const int right = plot.right();

    painter.setPen(QPen(Qt::black, 1));

    // R: the axis with its letter at the top, beside it where no tick label can reach, and a
    // labelled tick per step.
    painter.drawLine(px(left, plot.top()), px(left, bottom));
    painter.drawText(QRectF(left + kTickLength, plot.top() - lineHeight / 2.0, left, lineHeight),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("R"));
    for (const int value : m_scale.ticks()) {
        const int y = qRound(m_scale.y(value, area));
        painter.drawLine(px(left - kTickLength, y), px(left, y));
        painter.drawText(QRectF(0, y - lineHeight / 2.0, left - kTickLength - 2, lineHeight),
                         Qt::AlignRight | Qt::AlignVCenter,
                         QStringLiteral("%1").arg(value));
    }

    // T: the axis with an arrow head, its letter under the right end, ticks every 10 positions.
    painter.drawLine(px(left, bottom), px(right, bottom));
    painter.drawLine(px(right, bottom), px(right - 6, bottom - 3));
    painter.drawLine(px(right, bottom), px(right - 6, bottom + 3));
    painter.drawText(QRectF(right - 40, bottom + kTickLength, 38, lineHeight),
                     Qt::AlignRight | Qt::AlignTop,
                     QStringLiteral("T"));
    for (const int position : StatScale::timeTicks()) {
        const int x = qRound(StatScale::x(position, area));
        painter.drawLine(px(x, bottom), px(x, bottom + kTickLength));
        painter.drawText(QRectF(x - 30, bottom + kTickLength, 60, lineHeight),
                         Qt::AlignHCenter | Qt::AlignTop,
                         QStringLiteral("%1").arg(StatScale::timeLabel(position)));
    }
}

void StatGraph::drawSeries(QPainter &painter)
{
    const QRect &plot = m_geometry.plot;
    const QRectF area(plot.topLeft(), plot.bottomRight());
    m_hits.clear();

    for (const auto &[key, channel] : m_channels) {
        if (!channel.shown())
            continue;
        const std::shared_ptr<SearchStatistics> statistics = statisticsOf(key);
        if (!statistics || statistics->points.isEmpty())
            continue;
        const QVector<StatPoint> &points = m_sorted ? statistics->sortedPoints : statistics->points;
        const int count = std::min(int(points.size()), StatScale::positions);

        QPolygonF line;
        line.reserve(count);
        for (int i = 0; i < count; ++i)
            line.append(QPointF(StatScale::x(i, area), m_scale.y(points.at(i).value3, area)));

        // The polyline goes out segment by segment: stroked as one path, a zig-zag series with
        // a pen wider than a pixel takes the rasterizer tens of milliseconds. Each vertex lies
        // under its dot, so the joins do not show either way.
        QVector<QLineF> segments;
        segments.reserve(count);
        for (int i = 1; i < count; ++i)
            segments.append(QLineF(line.at(i - 1), line.at(i)));
        const QColor color(channel.color());
        painter.setPen(QPen(color, kLinePen, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawLines(segments);
        painter.setPen(QPen(color, kDotPen, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawPoints(line);

        for (int i = 0; i < count; ++i) {
            const QPointF &point = line.at(i);
            m_hits.append(
                    {QRectF(point.x() - kHitHalf, point.y() - kHitHalf, 2 * kHitHalf, 2 * kHitHalf),
                     QStringLiteral("%1").arg(points.at(i).value3, 12, 'f', 1)});
        }
    }
}

void StatGraph::mouseMoveEvent(QMouseEvent *event)
{
    if (const Hit *hit = hitAt(event->pos()))
        QToolTip::showText(event->globalPos(), hit->hint, this, hit->rect.toAlignedRect());
    QWidget::mouseMoveEvent(event);
}
