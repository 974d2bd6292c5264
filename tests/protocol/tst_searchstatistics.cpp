#include "protocol/searchstatistics.h"
#include "protocol/ukiprogram.h"

#include <QtTest>

using Replies = QVector<QStringList>;

class tst_SearchStatistics : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void clampsAndSorts();
    void valueRange();
    void storeReplacesSameKey();

private:
    static UkiProgram program(const QStringList &commands, const Replies &replies);
};

UkiProgram tst_SearchStatistics::program(const QStringList &commands, const Replies &replies)
{
    UkiProgram p;
    p.type = UkiProgram::ReadStatistics;
    for (int i = 0; i < commands.size(); ++i)
        p.commands.append(UkiCommand{commands.at(i), replies.value(i)});
    return p;
}

void tst_SearchStatistics::parse_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<Replies>("replies");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("diagnostic");
    QTest::addColumn<int>("points");

    const QStringList ok{"12\t3.5\t40", "OK"};
    QTest::newRow("two points in order") << QStringList{"srch_stats_1_5_2_0", "srch_stats_1_5_2_1"}
                                         << Replies{ok, ok} << true << QString() << 2;
    QTest::newRow("no commands") << QStringList{} << Replies{} << false
                                 << "empty \"read statistics\" program" << 0;
    QTest::newRow("first command too short")
            << QStringList{"srch_stats_1_5_2"} << Replies{ok} << false
            << "cannot get program parameters for \"read statistics\" program" << 0;
    QTest::newRow("first command not a number")
            << QStringList{"srch_stats_x_5_2_0"} << Replies{ok} << false
            << "cannot get program parameters for \"read statistics\" program" << 0;
    QTest::newRow("later command with seven parts")
            << QStringList{"srch_stats_1_5_2_0", "srch_stats_1_5_2_1_9"} << Replies{ok, ok} << false
            << "bad command in \"read statistics\" program" << 1;
    QTest::newRow("gap in the index")
            << QStringList{"srch_stats_1_5_2_0", "srch_stats_1_5_2_2"} << Replies{ok, ok} << false
            << "wrong index sequence in \"read statistics\" program" << 1;
    QTest::newRow("not starting at zero")
            << QStringList{"srch_stats_1_5_2_1"} << Replies{ok} << false
            << "wrong index sequence in \"read statistics\" program" << 0;
    QTest::newRow("four columns") << QStringList{"srch_stats_1_5_2_0"}
                                  << Replies{{"1\t2\t3\t4", "OK"}} << false
                                  << "bad response items count in \"read statistics\" program" << 0;
    QTest::newRow("no reply lines")
            << QStringList{"srch_stats_1_5_2_0"} << Replies{{}} << false
            << "bad response items count in \"read statistics\" program" << 0;
    QTest::newRow("only the first line is read")
            << QStringList{"srch_stats_0_0_3_0"} << Replies{{"1\t2\t3", "garbage line"}} << true
            << QString() << 1;
    QTest::newRow("non-numbers read as zero")
            << QStringList{"srch_stats_0_0_3_0"} << Replies{{"a\tb\tc", "OK"}} << true << QString()
            << 1;
}

static QStringList messages;
static void collect(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages.append(text);
}

void tst_SearchStatistics::parse()
{
    QFETCH(QStringList, commands);
    QFETCH(Replies, replies);
    QFETCH(bool, ok);
    QFETCH(QString, diagnostic);
    QFETCH(int, points);

    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collect);
    SearchStatistics statistics;
    const bool result = statistics.parse(program(commands, replies));
    qInstallMessageHandler(previous);

    QCOMPARE(result, ok);
    QCOMPARE(statistics.points.size(), points);
    QCOMPARE(messages, diagnostic.isEmpty() ? QStringList() : QStringList{diagnostic});
    if (ok && commands.first() == "srch_stats_1_5_2_0") {
        QCOMPARE(statistics.level, 1u);
        QCOMPARE(statistics.address, 5u);
        QCOMPARE(statistics.channel, 2u);
    }
}

void tst_SearchStatistics::clampsAndSorts()
{
    SearchStatistics statistics;
    QVERIFY(statistics.parse(
            program({"srch_stats_1_0_0_0", "srch_stats_1_0_0_1", "srch_stats_1_0_0_2"},
                    {{"12\t3.5\t1500", "OK"}, {"1\t2\t30.5", "OK"}, {"1\t2\t7", "OK"}})));
    QCOMPARE(statistics.points.at(0).value1, 12.0);
    QCOMPARE(statistics.points.at(0).value2, 3.5);
    QCOMPARE(statistics.points.at(0).value3, 999.9);
    QCOMPARE(statistics.sortedPoints.size(), 3);
    QCOMPARE(statistics.sortedPoints.at(0).value3, 7.0);
    QCOMPARE(statistics.sortedPoints.at(1).value3, 30.5);
    QCOMPARE(statistics.sortedPoints.at(2).value3, 999.9);
}

void tst_SearchStatistics::valueRange()
{
    SearchStatistics statistics;
    statistics.points = {{0, 0, 40.0}, {0, 0, 12.5}, {0, 0, 300.0}};
    QCOMPARE(statistics.valueRange(), std::make_pair(12.5, 300.0));
}

void tst_SearchStatistics::storeReplacesSameKey()
{
    StatisticsStore store;
    auto first = std::make_shared<SearchStatistics>();
    first->address = 5;
    first->channel = 2;
    first->level = 1;
    auto second = std::make_shared<SearchStatistics>(*first);
    auto other = std::make_shared<SearchStatistics>(*first);
    other->level = 0;

    store.insert(first);
    store.insert(other);
    store.insert(second);
    QCOMPARE(store.size(), 2);
    QCOMPARE(store.find(5, 2, 1), second);
    QCOMPARE(store.find(5, 2, 0), other);
    QVERIFY(!store.find(5, 3, 1));
}

QTEST_GUILESS_MAIN(tst_SearchStatistics)
#include "tst_searchstatistics.moc"
