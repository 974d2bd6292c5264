#include "models/bitstring.h"

#include <QtTest>

class tst_BitString : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void formatRoundTrip();
    void ctState_data();
    void ctState();
};

void tst_BitString::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("mask");
    QTest::newRow("channels 1-8") << "1111111100000000" << 0x00ff;
    QTest::newRow("channel 16 only") << "0000000000000001" << 0x8000;
    QTest::newRow("shorter than 16 reads as 0") << "1111" << 0;
    QTest::newRow("chars after 16th ignored") << "10000000000000001111" << 0x0001;
    QTest::newRow("other chars count as 0") << "1x1?000000000000" << 0x0005;
    QTest::newRow("empty") << "" << 0;
}

void tst_BitString::parse()
{
    QFETCH(QString, text);
    QFETCH(int, mask);
    QCOMPARE(int(BitString::parse(text)), mask);
}

void tst_BitString::formatRoundTrip()
{
    for (int mask : {0, 1, 0x8000, 0x00ff, 0xa5a5, 0xffff}) {
        const QString text = BitString::format(quint16(mask));
        QCOMPARE(text.size(), 16);
        QCOMPARE(int(BitString::parse(text)), mask);
    }
    QCOMPARE(BitString::format(0x0003), QString("1100000000000000"));
}

void tst_BitString::ctState_data()
{
    QTest::addColumn<int>("enabled");
    QTest::addColumn<int>("tested");
    QTest::addColumn<int>("ctA");
    QTest::addColumn<int>("ctB");
    QTest::addColumn<QString>("text");
    QTest::newRow("monitor channels 1-8 fine")
            << 0x00ff << 0x00ff << 0x00ff << 0 << QString("ОООО ОООО XXXX XXXX");
    QTest::newRow("nothing enabled") << 0 << 0xffff << 0xffff << 0xffff
                                     << QString("XXXX XXXX XXXX XXXX");
    QTest::newRow("every letter") << 0x000f << 0x000e << 0x000c << 0x0008
                                  << QString("ИиОЗ XXXX XXXX XXXX");
}

void tst_BitString::ctState()
{
    QFETCH(int, enabled);
    QFETCH(int, tested);
    QFETCH(int, ctA);
    QFETCH(int, ctB);
    QFETCH(QString, text);
    QCOMPARE(BitString::ctState(quint16(enabled), quint16(tested), quint16(ctA), quint16(ctB)), text);
}

QTEST_GUILESS_MAIN(tst_BitString)
#include "tst_bitstring.moc"
