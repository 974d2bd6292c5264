#include "statscale.h"

#include <algorithm>

StatGeometry StatGeometry::forSize(const QSize &size, int labelWidth, int lineHeight)
{
    const int w = size.width();
    const int h = size.height();
    StatGeometry geometry;
    geometry.frame = QRect(QPoint(0, 0), QPoint(w - 2, h - 2));
    geometry.plot = QRect(QPoint(labelWidth, lineHeight / 2 + 2),
                          QPoint(w - 3, h - 2 - lineHeight - 4));
    return geometry;
}

StatScale::StatScale(double minimum, double maximum, int plotHeight, int lineHeight)
{
    m_upper = maximum < 40 ? 50 : int(maximum + 11) / 10 * 10;
    m_lower = std::min(int(minimum - 10) / 10 * 10, m_upper - 40);

    const int span = m_upper - m_lower;
    m_step = 10;
    while (plotHeight > 0 && double(plotHeight) / (double(span) / m_step) <= lineHeight)
        m_step += 10;
}

QVector<int> StatScale::ticks() const
{
    QVector<int> values;
    for (int value = m_lower; value <= m_upper; value += m_step)
        values.append(value);
    return values;
}

double StatScale::y(double value, const QRectF &plot) const
{
    return plot.bottom() - (value - m_lower) * plot.height() / (m_upper - m_lower);
}

double StatScale::x(double position, const QRectF &plot)
{
    return plot.left() + position * plot.width() / (positions - 1);
}

QVector<int> StatScale::timeTicks()
{
    QVector<int> values;
    for (int position = 0; position < positions; position += 10)
        values.append(position);
    return values;
}

namespace StatPalette {

static const char *const colors[size] = {
        "#f5361a", "#3f78f6", "#447723", "#28c4cf", "#9add81", "#3c6752", "#b02193", "#aaac26",
        "#709ca5", "#833e7d", "#170ee3", "#23c66b", "#e905b1", "#611a5a", "#bd7ae0", "#228d0a",
        "#07c829", "#2df697", "#263b86", "#9382e8", "#3d6bb0", "#895d50", "#6243f9", "#6b0404",
        "#9f0618", "#89a046", "#33df61", "#9b1d56", "#fa921b", "#ab03d2", "#89290b", "#1abff8",
        "#bc9608", "#17b7c6", "#83aeae", "#5270b3", "#e90a59", "#278ce8", "#b456fe", "#a12b97",
        "#c5101b", "#088c58", "#75678d", "#b3213c", "#e57891", "#194a09", "#630e26", "#889ff1",
        "#aefb6c", "#74cb73", "#182c5b", "#5b7fa4", "#d812c4", "#3af465", "#cfc65d", "#44a87e",
        "#3a58e3", "#3685e2", "#af8bc8", "#065f2d", "#67ae5a", "#a04436", "#ba1244", "#17dffb",
        "#4fc318", "#cec555", "#787d9b", "#cb6db5", "#164e29", "#41ad63", "#74ba38", "#8eb261",
        "#cacda4", "#e36aa2", "#8e30b7", "#619f4e", "#49162e", "#d7427a", "#8ed8c4", "#6c73ee",
        "#e39502", "#78c8bd", "#8d903f", "#b28cc1", "#98c0bc", "#e79951", "#ea83e3",
};

static int counter = 0;

QString color(int index)
{
    return QLatin1String(colors[index % size]);
}

QString next()
{
    const QString value = color(counter);
    counter = (counter + 1) % size;
    return value;
}

void reset()
{
    counter = 0;
}

} // namespace StatPalette
