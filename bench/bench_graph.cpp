// Statistics graph: paint 87 shown channels of 80 measurements each offscreen, many times, and
// compare with drawing the same lines and dots with a bare QPainter. Three shapes of data:
// every channel in a narrow band, the same with a spike to 999.9 every seventh measurement (as
// the simulator answers), and values scattered over the whole range (the worst case).

#include "protocol/searchstatistics.h"
#include "stats/statgraph.h"
#include "stats/statscale.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>

namespace {

constexpr int kChannels = StatPalette::size;
constexpr int kRounds = 100;
constexpr int kPolylineRounds = 2; // the whole-polyline baseline is slow

enum class Shape { Banded, Spiked, Scattered };

struct Timing
{
    double wallMs = 0.0;
    double cpuMs = 0.0;
};

double threadCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

Timing measure(int rounds, const std::function<void()> &paint)
{
    const double cpuStart = threadCpuMs();
    QElapsedTimer clock;
    clock.start();
    for (int round = 0; round < rounds; ++round)
        paint();
    return {double(clock.nsecsElapsed()) / 1e6 / rounds, (threadCpuMs() - cpuStart) / rounds};
}

std::shared_ptr<SearchStatistics> record(quint32 address, quint32 channel, Shape shape)
{
    auto statistics = std::make_shared<SearchStatistics>();
    statistics->address = address;
    statistics->channel = channel;
    statistics->level = StatGraph::level;
    quint32 seed = address * 16 + channel + 1;
    const double band = 20.0 + double((address * 16 + channel) * 37 % 900);
    for (int i = 0; i < StatScale::positions; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const double unit = double(seed >> 8) / double(1u << 24); // 0..1
        StatPoint point;
        if (shape == Shape::Scattered)
            point.value3 = 20.0 + unit * 979.9;
        else if (shape == Shape::Spiked && i % 7 == 3)
            point.value3 = 999.9;
        else
            point.value3 = band + unit * 5.0;
        statistics->points.append(point);
    }
    statistics->sortedPoints = statistics->points;
    std::sort(statistics->sortedPoints.begin(),
              statistics->sortedPoints.end(),
              [](const StatPoint &a, const StatPoint &b) { return a.value3 < b.value3; });
    return statistics;
}

void run(const char *name, Shape shape, double *graphMs)
{
    StatisticsStore store;
    StatGraph graph;
    graph.setStatisticsLookup([&store](uint address, uint channel, uint level) {
        return store.find(address, channel, level);
    });
    graph.resize(1000, 600);
    for (int i = 0; i < kChannels; ++i) {
        const quint32 address = quint32(i / 16);
        const quint32 channel = quint32(i % 16);
        store.insert(record(address, channel, shape));
        graph.entry(address, channel).setShown(true);
        graph.assignColor(address, channel);
    }

    QImage image(graph.size(), QImage::Format_ARGB32_Premultiplied);
    graph.render(&image); // warm-up: fonts, geometry, the scale of these records
    const Timing widget = measure(kRounds, [&] { graph.render(&image); });

    // The same lines and dots, mapped once, drawn straight onto the image.
    const QRect plot = graph.plotRect();
    const QRectF area(plot.topLeft(), plot.bottomRight());
    QVector<QPolygonF> lines;
    QVector<QColor> colors;
    for (const auto &item : graph.channels()) {
        const std::shared_ptr<SearchStatistics> statistics = store.find(
                item.first.first, item.first.second, StatGraph::level);
        QPolygonF line;
        for (int i = 0; i < statistics->points.size(); ++i)
            line.append(QPointF(StatScale::x(i, area),
                                graph.scale().y(statistics->points.at(i).value3, area)));
        lines.append(line);
        colors.append(QColor(item.second.color()));
    }
    auto bare = [&](bool wholePolyline) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(image.rect(), Qt::white);
        for (int i = 0; i < lines.size(); ++i) {
            const QPolygonF &line = lines.at(i);
            painter.setPen(QPen(colors.at(i), 1.2, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
            if (wholePolyline) {
                painter.drawPolyline(line);
            } else {
                for (int k = 1; k < line.size(); ++k)
                    painter.drawLine(line.at(k - 1), line.at(k));
            }
            painter.setPen(QPen(colors.at(i), 4.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
            painter.drawPoints(line);
        }
    };
    const Timing segments = measure(kRounds, [&] { bare(false); });
    const Timing polyline = measure(kPolylineRounds, [&] { bare(true); });

    std::printf("%-10s graph %8.2f ms (cpu %8.2f) | bare segments %8.2f ms (cpu %8.2f) | "
                "bare polyline %8.2f ms (cpu %8.2f)\n",
                name,
                widget.wallMs,
                widget.cpuMs,
                segments.wallMs,
                segments.cpuMs,
                polyline.wallMs,
                polyline.cpuMs);
    if (graphMs)
        *graphMs = widget.wallMs;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    std::printf("%d channels x %d points, 1000x600, antialiased; mean of %d paints (%d for the "
                "whole polyline); wall time and this thread's CPU time\n",
                kChannels,
                StatScale::positions,
                kRounds,
                kPolylineRounds);
    double headline = 0.0;
    run("banded", Shape::Banded, nullptr);
    run("spiked", Shape::Spiked, &headline);
    run("scattered", Shape::Scattered, nullptr);
    std::printf("graph-paint-ms: %.2f\n", headline);
    return 0;
}
