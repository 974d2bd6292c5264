#include "protocol/cannedreply.h"

#include <QtTest>

class tst_CannedReply : public QObject
{
    Q_OBJECT
private slots:
    void statistics_data();
    void statistics();
    void blocks_data();
    void blocks();
};

void tst_CannedReply::statistics_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("reply");
    QTest::newRow("monitor channel 0, first row") << "srch_stats_1_0_0_0"
                                                  << "0.21018\t-0.2733\t220";
    QTest::newRow("monitor channel 0, fourth row") << "srch_stats_1_0_0_3"
                                                   << "0.20899\t-0.27377\t219";
    QTest::newRow("monitor channel 0, last row") << "srch_stats_1_0_0_15"
                                                 << "0.20945\t-0.27374\t220";
    QTest::newRow("monitor channel 2 adds 6") << "srch_stats_1_0_2_0"
                                              << "0.21018\t-0.2733\t45";
    QTest::newRow("monitor channel 2, fourth row of the other table") << "srch_stats_1_0_2_3"
                                                                      << "0.20899\t-0.27377\t44";
    QTest::newRow("locator 5, first row") << "srch_stats_1_5_0_0"
                                          << "0.20669\t-0.37097\t177";
    QTest::newRow("locator 5, last row, channel 1") << "srch_stats_1_5_1_79"
                                                    << "0.20328\t-0.37352\t180";
    QTest::newRow("monitor index 16") << "srch_stats_1_0_0_16"
                                      << "";
    QTest::newRow("level 2") << "srch_stats_2_0_0_0"
                             << "";
    QTest::newRow("unknown address") << "srch_stats_1_7_0_0"
                                     << "";
    QTest::newRow("locator index 80") << "srch_stats_1_5_0_80"
                                      << "";
    QTest::newRow("five parts") << "srch_stats_1_0_0"
                                << "";
}

void tst_CannedReply::statistics()
{
    QFETCH(QString, command);
    QFETCH(QString, reply);
    QCOMPARE(cannedReply(command), reply);
}

void tst_CannedReply::blocks_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::newRow("versions list") << "cfg" << -1 << "Addr\tver\tEnabled\tTested"
                                   << "5\t5.0\t0000000000001111\t0000000000001111";
    QTest::newRow("older settings form") << "sets" << -1 << "AddrUki\t0"
                                         << "Riso4-20\t200";
    QTest::newRow("archive dump") << "dump" << 2620
                                  << "Item\tDate\tTime\tType\tValue-1\tValue-2\tValue-3\tValue-"
                                     "4\tValue-5\tValue-6\tValue-7\tValue-8"
                                  << "";
    QTest::newRow("custom channels") << "get_cust" << -1 << "address\tchannel\tr_loc\tlower\tupper"
                                     << "5\t16\tOFF";
}

void tst_CannedReply::blocks()
{
    QFETCH(QString, command);
    QFETCH(int, bytes);
    QFETCH(QString, first);
    QFETCH(QString, last);
    const QString reply = cannedReply(command);
    if (bytes >= 0)
        QCOMPARE(reply.toLatin1().size(), bytes);
    const QStringList lines = reply.trimmed().split(QRegularExpression("\r?\n"));
    QCOMPARE(lines.first(), first);
    if (!last.isEmpty())
        QCOMPARE(lines.last(), last);
    QVERIFY(!lines.contains("OK"));
    if (command == "sets")
        QCOMPARE(lines.size(), 22);
    if (command == "get_cust")
        QCOMPARE(lines.size(), 33);
}

QTEST_GUILESS_MAIN(tst_CannedReply)
#include "tst_cannedreply.moc"
