#include "stats/statscale.h"

#include <QtTest>

class tst_StatScale : public QObject
{
    Q_OBJECT
private slots:
    void range_data();
    void range();
    void tickStepGrowsOnSmallPlots();
    void mapping();
    void timeAxis();
    void geometry();
    void paletteWrapsAfter87();
};

void tst_StatScale::range_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<int>("lower");
    QTest::addColumn<int>("upper");
    QTest::newRow("no channel shown") << 999.0 << 0.0 << 10 << 50;
    QTest::newRow("all below 40") << 12.0 << 39.9 << 0 << 50;
    QTest::newRow("maximum 999.9") << 177.0 << 999.9 << 160 << 1010;
    QTest::newRow("maximum exactly 40") << 20.0 << 40.0 << 10 << 50;
    QTest::newRow("narrow band keeps a span of 40") << 218.0 << 222.0 << 190 << 230;
    QTest::newRow("minimum below 10 cuts toward zero") << 5.0 << 120.0 << 0 << 130;
    QTest::newRow("wide band") << 37.0 << 224.0 << 20 << 230;
}

void tst_StatScale::range()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(int, lower);
    QFETCH(int, upper);
    const StatScale scale(minimum, maximum, 400, 16);
    QCOMPARE(scale.lower(), lower);
    QCOMPARE(scale.upper(), upper);
    QVERIFY(scale.upper() - scale.lower() >= 40);
    QCOMPARE(scale.ticks().first(), lower);
}

void tst_StatScale::tickStepGrowsOnSmallPlots()
{
    // 0..1010 on 200 px with 16 px lines: 10 would be 2 px apart; the step grows until a tick
    // distance is larger than a line.
    const StatScale scale(0.0, 999.9, 200, 16);
    QVERIFY(scale.step() > 10);
    QCOMPARE(scale.step() % 10, 0);
    const double distance = 200.0 / (double(scale.upper() - scale.lower()) / scale.step());
    QVERIFY(distance > 16);
    const double previous = 200.0 / (double(scale.upper() - scale.lower()) / (scale.step() - 10));
    QVERIFY(previous <= 16);

    const StatScale roomy(999.0, 0.0, 400, 16);
    QCOMPARE(roomy.step(), 10);
    QCOMPARE(roomy.ticks(), (QVector<int>{10, 20, 30, 40, 50}));
}

void tst_StatScale::mapping()
{
    const StatScale scale(999.0, 0.0, 400, 16); // 10..50
    const QRectF plot(50, 10, 790, 400);
    QCOMPARE(scale.y(10, plot), plot.bottom());
    QCOMPARE(scale.y(50, plot), plot.top());
    QCOMPARE(scale.y(30, plot), plot.top() + 200);
    QCOMPARE(StatScale::x(0, plot), plot.left());
    QCOMPARE(StatScale::x(79, plot), plot.right());
}

void tst_StatScale::timeAxis()
{
    QCOMPARE(StatScale::timeTicks(), (QVector<int>{0, 10, 20, 30, 40, 50, 60, 70}));
    QVector<int> labels;
    for (int position : StatScale::timeTicks())
        labels.append(StatScale::timeLabel(position));
    QCOMPARE(labels, (QVector<int>{0, 4, 8, 12, 16, 20, 24, 28}));
}

void tst_StatScale::geometry()
{
    const StatGeometry geometry = StatGeometry::forSize(QSize(800, 500), 42, 17);
    QCOMPARE(geometry.frame, QRect(QPoint(0, 0), QPoint(798, 498)));
    QCOMPARE(geometry.plot, QRect(QPoint(42, 10), QPoint(797, 477)));
}

void tst_StatScale::paletteWrapsAfter87()
{
    StatPalette::reset();
    QCOMPARE(StatPalette::next(), QString("#f5361a"));
    QCOMPARE(StatPalette::next(), QString("#3f78f6"));
    for (int i = 2; i < 86; ++i)
        StatPalette::next();
    QCOMPARE(StatPalette::next(), QString("#ea83e3"));
    QCOMPARE(StatPalette::next(), QString("#f5361a"));
    QCOMPARE(StatPalette::color(86), QString("#ea83e3"));
}

QTEST_GUILESS_MAIN(tst_StatScale)
#include "tst_statscale.moc"
