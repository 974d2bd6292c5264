#pragma once

#include <QRect>
#include <QString>
#include <QVector>

// Where the statistics graph draws: the outer frame and the plot rectangle, in pixels.
struct StatGeometry
{
    QRect frame;
    QRect plot;

    // size: the widget; labelWidth: width of "-9999-" in the graph font; lineHeight: its line height.
    static StatGeometry forSize(const QSize &size, int labelWidth, int lineHeight);
};

// The two axes of the statistics graph: resistance R vertically, measurement number T horizontally.
class StatScale
{
public:
    static constexpr int positions = 80; // measurement positions 0..79 along T

    // minimum/maximum: the extremes of value3 over the shown channels, or the start values
    // 999.0/0.0 when no channel has points. plotHeight and lineHeight in pixels.
    StatScale(double minimum, double maximum, int plotHeight, int lineHeight);

    int lower() const { return m_lower; }
    int upper() const { return m_upper; }
    int step() const { return m_step; }
    // The values of the R ticks: lower, lower + step, ... up to upper.
    QVector<int> ticks() const;

    // Pixel height of a value within [lower, upper] in the given plot rectangle.
    double y(double value, const QRectF &plot) const;
    // Pixel position of measurement i (0..79) in the given plot rectangle.
    static double x(double position, const QRectF &plot);

    // T ticks stand at positions 0, 10, ... 70 and read position * 4 / 10.
    static QVector<int> timeTicks();
    static int timeLabel(int position) { return position * 4 / 10; }

private:
    int m_lower = 0;
    int m_upper = 50;
    int m_step = 10;
};

// The 87 colours of the statistics page, handed out round-robin by one process-wide counter so
// that the channel table and the graph agree.
namespace StatPalette {
constexpr int size = 87;
QString color(int index);
// The next colour of the process-wide sequence ("#rrggbb"), wrapping after the 87th.
QString next();
// Starts the sequence again at the first colour (tests only).
void reset();
} // namespace StatPalette
