// The statistics graph: channel entries, shared colours, the R range it paints with, the points'
// hints and the order in which the series are drawn. Painted offscreen into images.

#include "protocol/searchstatistics.h"
#include "stats/statgraph.h"
#include "stats/statscale.h"

#include <QImage>
#include <QMouseEvent>
#include <QToolTip>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

std::shared_ptr<SearchStatistics> record(quint32 address,
                                         quint32 channel,
                                         const QVector<double> &values)
{
    auto statistics = std::make_shared<SearchStatistics>();
    statistics->address = address;
    statistics->channel = channel;
    statistics->level = 1;
    for (int i = 0; i < values.size(); ++i) {
        StatPoint point;
        point.value1 = i;
        point.value2 = -i;
        point.value3 = values.at(i);
        statistics->points.append(point);
    }
    statistics->sortedPoints = statistics->points;
    std::sort(statistics->sortedPoints.begin(),
              statistics->sortedPoints.end(),
              [](const StatPoint &a, const StatPoint &b) { return a.value3 < b.value3; });
    return statistics;
}

// A graph that draws from its own store.
class Fixture
{
public:
    Fixture()
    {
        graph.setStatisticsLookup([this](uint address, uint channel, uint level) {
            return store.find(address, channel, level);
        });
        graph.resize(640, 400);
    }

    void add(quint32 address, quint32 channel, const QVector<double> &values, bool shown = true)
    {
        store.insert(record(address, channel, values));
        StatChannel &entry = graph.entry(address, channel);
        entry.setShown(shown);
        graph.assignColor(address, channel);
    }

    QImage paint()
    {
        QImage image(graph.size(), QImage::Format_ARGB32);
        image.fill(Qt::gray);
        graph.render(&image);
        return image;
    }

    QPointF pointAt(int position, double value) const
    {
        const QRect plot = graph.plotRect();
        const QRectF area(plot.topLeft(), plot.bottomRight());
        return QPointF(StatScale::x(position, area), graph.scale().y(value, area));
    }

    StatisticsStore store;
    StatGraph graph;
};

int countColor(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                ++count;
        }
    }
    return count;
}

class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

} // namespace

class tst_StatGraph : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void entryIsInsertedEmpty();
    void entrySetters_data();
    void entrySetters();
    void loadTakesTheDeviceValues();
    void colorsComeFromTheSharedPaletteAndStay();
    void paletteWrapsForMoreThan87Channels();
    void rangeOfTheShownChannels_data();
    void rangeOfTheShownChannels();
    void emptyGraphDrawsFrameAndAxesOnly();
    void pointHints_data();
    void pointHints();
    void tooltipUnderTheMouse();
    void seriesAreDrawnInKeyOrder();
    void setSortedRepaintsOnlyOnChange();
    void clearForgetsEveryChannel();
};

void tst_StatGraph::init()
{
    StatPalette::reset();
}

void tst_StatGraph::entryIsInsertedEmpty()
{
    StatGraph graph;
    const StatChannel &entry = graph.entry(7, 3);
    QVERIFY(!entry.shown());
    QVERIFY(!entry.changed());
    QCOMPARE(entry.lower(), 0u);
    QCOMPARE(entry.upper(), 0u);
    QCOMPARE(entry.rLoc(), 0u);
    QVERIFY(entry.color().isEmpty());

    graph.entry(5, 0);
    graph.entry(0, 3);
    graph.entry(0, 1);
    graph.entry(7, 3);
    QVector<StatGraph::Key> keys;
    for (const auto &item : graph.channels())
        keys.append(item.first);
    QCOMPARE(keys, (QVector<StatGraph::Key>{{0, 1}, {0, 3}, {5, 0}, {7, 3}}));
}

void tst_StatGraph::entrySetters_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<uint>("input");
    QTest::addColumn<uint>("stored");
    QTest::addColumn<bool>("changed");

    // The entry starts as the device reported it: RLoc 200, bounds 2 and 9 steps (10 and 45).
    QTest::newRow("lower within range") << "lower" << 7u << 7u << true;
    QTest::newRow("lower above 15 steps is capped") << "lower" << 16u << 15u << true;
    QTest::newRow("lower unchanged") << "lower" << 2u << 2u << false;
    QTest::newRow("upper above 15 steps is capped") << "upper" << 40u << 15u << true;
    QTest::newRow("upper unchanged") << "upper" << 9u << 9u << false;
    QTest::newRow("upper to zero") << "upper" << 0u << 0u << true;
    QTest::newRow("rloc within range") << "rloc" << 999u << 999u << true;
    QTest::newRow("rloc above 999 is capped") << "rloc" << 1500u << 999u << true;
    QTest::newRow("rloc unchanged") << "rloc" << 200u << 200u << false;
    QTest::newRow("rloc zero switches off") << "rloc" << 0u << 0u << true;
}

void tst_StatGraph::entrySetters()
{
    QFETCH(QString, field);
    QFETCH(uint, input);
    QFETCH(uint, stored);
    QFETCH(bool, changed);

    StatChannel entry;
    entry.load(200, 2, 9);
    if (field == "lower") {
        entry.setLower(input);
        QCOMPARE(entry.lower(), stored);
    } else if (field == "upper") {
        entry.setUpper(input);
        QCOMPARE(entry.upper(), stored);
    } else {
        entry.setRLoc(input);
        QCOMPARE(entry.rLoc(), stored);
    }
    QCOMPARE(entry.changed(), changed);
}

void tst_StatGraph::loadTakesTheDeviceValues()
{
    StatChannel entry;
    entry.load(150, 2, 9);
    entry.setUpper(15);
    QVERIFY(entry.changed());
    // A cap that leaves the stored value as it is is no change either.
    entry.setChanged(false);
    entry.setUpper(20);
    QVERIFY(!entry.changed());

    entry.setChanged(true);
    entry.load(1200, 30, 3);
    QVERIFY(!entry.changed());
    QCOMPARE(entry.rLoc(), 999u);
    QCOMPARE(entry.lower(), 15u);
    QCOMPARE(entry.upper(), 3u);
}

void tst_StatGraph::colorsComeFromTheSharedPaletteAndStay()
{
    StatGraph graph;
    QCOMPARE(graph.assignColor(5, 2), QString("#f5361a"));
    QCOMPARE(graph.entry(5, 2).color(), QString("#f5361a"));
    // An entry keeps its colour; asking again does not use up a colour.
    QCOMPARE(graph.assignColor(5, 2), QString("#f5361a"));
    QCOMPARE(graph.assignColor(0, 0), QString("#3f78f6"));
    // The counter is the process's, shared with anything else that asks.
    QCOMPARE(StatPalette::next(), QString("#447723"));
    QCOMPARE(graph.assignColor(0, 1), QString("#28c4cf"));
    QCOMPARE(graph.assignColor(5, 2), QString("#f5361a"));
}

void tst_StatGraph::paletteWrapsForMoreThan87Channels()
{
    StatGraph graph;
    QStringList colors;
    for (quint32 address = 0; address < 6; ++address) {
        for (quint32 channel = 0; channel < 16; ++channel)
            colors << graph.assignColor(address, channel);
    }
    QCOMPARE(colors.size(), 96);
    QCOMPARE(colors.at(86), QString("#ea83e3"));
    QCOMPARE(colors.mid(87), colors.mid(0, 9));
    QCOMPARE(QSet<QString>(colors.cbegin(), colors.cend()).size(), 87);
}

void tst_StatGraph::rangeOfTheShownChannels_data()
{
    QTest::addColumn<QVector<double>>("first");
    QTest::addColumn<bool>("firstShown");
    QTest::addColumn<QVector<double>>("second");
    QTest::addColumn<int>("lower");
    QTest::addColumn<int>("upper");

    const QVector<double> none;
    QTest::newRow("no channel shown") << none << false << none << 10 << 50;
    QTest::newRow("a hidden channel is left out")
            << QVector<double>{999.9, 120} << false << none << 10 << 50;
    QTest::newRow("a shown channel without a record is left out")
            << none << true << none << 10 << 50;
    QTest::newRow("values below 40") << QVector<double>{25, 35} << true << none << 10 << 50;
    QTest::newRow("largest value 999.9")
            << QVector<double>{177, 999.9} << true << none << 160 << 1010;
    QTest::newRow("two channels together")
            << QVector<double>{55, 60} << true << QVector<double>{200, 400} << 40 << 410;
}

void tst_StatGraph::rangeOfTheShownChannels()
{
    QFETCH(QVector<double>, first);
    QFETCH(bool, firstShown);
    QFETCH(QVector<double>, second);
    QFETCH(int, lower);
    QFETCH(int, upper);

    Fixture fixture;
    if (!first.isEmpty())
        fixture.add(0, 4, first, firstShown);
    else if (firstShown)
        fixture.graph.entry(0, 4).setShown(true);
    if (!second.isEmpty())
        fixture.add(5, 1, second);
    fixture.paint();
    QCOMPARE(fixture.graph.scale().lower(), lower);
    QCOMPARE(fixture.graph.scale().upper(), upper);
}

void tst_StatGraph::emptyGraphDrawsFrameAndAxesOnly()
{
    Fixture fixture;
    fixture.add(0, 0, {30, 31, 32}, false);
    const QImage image = fixture.paint();

    // The geometry follows the size and the graph font.
    const QFontMetrics metrics(fixture.graph.graphFont());
    const StatGeometry geometry = StatGeometry::forSize(
            QSize(640, 400), metrics.horizontalAdvance("-9999-"), metrics.height());
    QCOMPARE(fixture.graph.plotRect(), geometry.plot);
    QCOMPARE(fixture.graph.graphFont().family(), QString("Arial"));
    QCOMPARE(fixture.graph.graphFont().pointSize(), 10);
    QCOMPARE(fixture.graph.graphFont().styleHint(), QFont::Monospace);

    // White inside the black frame; the outermost column and row stay unpainted.
    QCOMPARE(image.pixelColor(0, 200), QColor(Qt::black));
    QCOMPARE(image.pixelColor(320, 0), QColor(Qt::black));
    QCOMPARE(image.pixelColor(638, 200), QColor(Qt::black));
    QCOMPARE(image.pixelColor(320, 398), QColor(Qt::black));
    const QColor window = fixture.graph.palette().color(QPalette::Window);
    QCOMPARE(image.pixelColor(639, 200), window);
    QCOMPARE(image.pixelColor(320, 399), window);
    QCOMPARE(image.pixelColor(320, 1), QColor(Qt::white));

    // Both axes in black, and not a single coloured pixel: no series.
    const QRect plot = fixture.graph.plotRect();
    QCOMPARE(image.pixelColor(plot.left(), plot.center().y()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(plot.center().x(), plot.bottom()), QColor(Qt::black));
    QCOMPARE(countColor(image, QColor(fixture.graph.entry(0, 0).color())), 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            QVERIFY2(color.red() == color.green() && color.green() == color.blue(),
                     qPrintable(QString("coloured pixel at %1,%2").arg(x).arg(y)));
        }
    }
}

void tst_StatGraph::pointHints_data()
{
    QTest::addColumn<bool>("sorted");
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("hint");

    QTest::newRow("first point") << false << 0 << 123.4 << "       123.4";
    QTest::newRow("a capped value") << false << 2 << 999.9 << "       999.9";
    QTest::newRow("one decimal, rounded") << false << 3 << 41.26 << "        41.3";
    QTest::newRow("sorted: the smallest comes first") << true << 0 << 41.26 << "        41.3";
    QTest::newRow("sorted: the largest comes last") << true << 3 << 999.9 << "       999.9";
}

void tst_StatGraph::pointHints()
{
    QFETCH(bool, sorted);
    QFETCH(int, position);
    QFETCH(double, value);
    QFETCH(QString, hint);

    Fixture fixture;
    fixture.add(0, 2, {123.4, 300.0, 999.9, 41.26});
    fixture.graph.setSorted(sorted);
    fixture.paint();
    const QPoint at = fixture.pointAt(position, value).toPoint();
    QCOMPARE(fixture.graph.hintAt(at), hint);
    QCOMPARE(fixture.graph.hintAt(at + QPoint(2, -2)), hint);
    QCOMPARE(fixture.graph.hintAt(at + QPoint(0, 30)), QString());
}

void tst_StatGraph::tooltipUnderTheMouse()
{
    Fixture fixture;
    fixture.add(1, 0, {150.0, 160.0});
    fixture.graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&fixture.graph));
    fixture.paint();
    QVERIFY(fixture.graph.hasMouseTracking());

    const QPoint at = fixture.pointAt(1, 160.0).toPoint();
    QMouseEvent move(QEvent::MouseMove,
                     at,
                     fixture.graph.mapToGlobal(at),
                     Qt::NoButton,
                     Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&fixture.graph, &move);
    QTRY_COMPARE(QToolTip::text(), QString("       160.0"));
}

void tst_StatGraph::seriesAreDrawnInKeyOrder()
{
    Fixture fixture;
    // The same points for two channels: the one with the larger key is drawn last, on top,
    // although it was added first.
    fixture.add(5, 0, {100, 200, 150});
    fixture.add(0, 3, {100, 200, 150});
    fixture.graph.entry(5, 0).setColor("#ff0000");
    fixture.graph.entry(0, 3).setColor("#0000ff");
    const QImage image = fixture.paint();
    for (int i = 0; i < 3; ++i) {
        const QPoint at = fixture.pointAt(i, QVector<double>{100, 200, 150}.at(i)).toPoint();
        QCOMPARE(image.pixelColor(at), QColor("#ff0000"));
    }
    QVERIFY(countColor(image, QColor("#0000ff")) == 0);

    fixture.graph.entry(5, 0).setShown(false);
    const QImage second = fixture.paint();
    QCOMPARE(second.pixelColor(fixture.pointAt(1, 200).toPoint()), QColor("#0000ff"));
    QCOMPARE(countColor(second, QColor("#ff0000")), 0);
}

void tst_StatGraph::setSortedRepaintsOnlyOnChange()
{
    Fixture fixture;
    fixture.graph.show();
    QVERIFY(QTest::qWaitForWindowExposed(&fixture.graph));
    PaintCounter counter;
    fixture.graph.installEventFilter(&counter);
    QTest::qWait(50);
    counter.paints = 0;

    fixture.graph.setSorted(false);
    QTest::qWait(100);
    QCOMPARE(counter.paints, 0);

    fixture.graph.setSorted(true);
    QTRY_COMPARE(counter.paints, 1);
    QVERIFY(fixture.graph.isSorted());

    fixture.graph.setSorted(true);
    QTest::qWait(100);
    QCOMPARE(counter.paints, 1);
}

void tst_StatGraph::clearForgetsEveryChannel()
{
    Fixture fixture;
    fixture.add(0, 1, {100, 120});
    fixture.add(5, 15, {300, 320});
    fixture.paint();
    QCOMPARE(fixture.graph.scale().upper(), 330);
    fixture.graph.clear();
    QVERIFY(fixture.graph.channels().empty());
    fixture.paint();
    QCOMPARE(fixture.graph.scale().upper(), 50);
}

QTEST_MAIN(tst_StatGraph)
#include "tst_statgraph.moc"
