#include "app/programsettings.h"

#include <QJsonDocument>
#include <QtTest>

class tst_ProgramSettings : public QObject
{
    Q_OBJECT

private slots:
    void fromJson_data();
    void fromJson();
    void toJson_data();
    void toJson();
    void roundTrip();
    void variantTable_data();
    void variantTable();
};

static QJsonObject parse(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

void tst_ProgramSettings::fromJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("variantBefore");
    QTest::addColumn<QString>("port");
    QTest::addColumn<int>("variant");

    QTest::newRow("port trimmed, ukps-ab")
            << QByteArray(R"({"connection": {"port": "  ttyUSB0 \t", "variant": "ukps-ab"}})") << 0
            << "ttyUSB0" << 1;
    QTest::newRow("no port, key in capitals keeps variant 0")
            << QByteArray(R"({"connection": {"variant": "UKPS-AB"}})") << 0 << "" << 0;
    QTest::newRow("unknown key keeps the earlier variant, not the default")
            << QByteArray(R"({"connection": {"port": "COM3", "variant": "ukps"}})") << 3 << "COM3"
            << 3;
    QTest::newRow("variant key with blanks")
            << QByteArray(R"({"connection": {"variant": " uki-kiranto "}})") << 0 << "" << 3;
    QTest::newRow("ukps-ks-2 is not taken for ukps-ks")
            << QByteArray(R"({"connection": {"variant": "ukps-ks-2"}})") << 0 << "" << 2;
    QTest::newRow("ukps-ks") << QByteArray(R"({"connection": {"variant": "ukps-ks"}})") << 3 << ""
                             << 0;
    QTest::newRow("connection not an object")
            << QByteArray(R"({"connection": "ttyS0"})") << 2 << "" << 2;
    QTest::newRow("empty document") << QByteArray("{}") << 1 << "" << 1;
    QTest::newRow("malformed document") << QByteArray("{\"connection\": ") << 0 << "" << 0;
    QTest::newRow("variant not a string")
            << QByteArray(R"({"connection": {"port": "ttyS1", "variant": 3}})") << 0 << "ttyS1"
            << 0;
}

void tst_ProgramSettings::fromJson()
{
    QFETCH(QByteArray, json);
    QFETCH(int, variantBefore);
    QFETCH(QString, port);
    QFETCH(int, variant);

    ProgramSettings settings;
    settings.port = QStringLiteral("stale");
    settings.variant = variantBefore;
    settings.fromJson(parse(json));
    QCOMPARE(settings.port, port);
    QCOMPARE(settings.variant, variant);
}

void tst_ProgramSettings::toJson_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("fresh object")
            << "ttyUSB0" << 3 << QByteArray("{}")
            << QByteArray(R"({"connection":{"port":"ttyUSB0","variant":"uki-kiranto"}})");
    QTest::newRow("unknown variant leaves the stored key")
            << "" << 7 << QByteArray(R"({"connection":{"variant":"ukps-ab"}})")
            << QByteArray(R"({"connection":{"port":"","variant":"ukps-ab"}})");
    QTest::newRow("unknown variant on a fresh object writes the port only")
            << "COM1" << -1 << QByteArray("{}") << QByteArray(R"({"connection":{"port":"COM1"}})");
    QTest::newRow("other members of connection and of the document stay")
            << "COM2" << 2 << QByteArray(R"({"a":1,"connection":{"baud":9600}})")
            << QByteArray(
                       R"({"a":1,"connection":{"baud":9600,"port":"COM2","variant":"ukps-ks-2"}})");
}

void tst_ProgramSettings::toJson()
{
    QFETCH(QString, port);
    QFETCH(int, variant);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, expected);

    ProgramSettings settings;
    settings.port = port;
    settings.variant = variant;
    QJsonObject object = parse(before);
    settings.toJson(object);
    QCOMPARE(QJsonDocument(object).toJson(QJsonDocument::Compact), expected);
}

void tst_ProgramSettings::roundTrip()
{
    for (int variant = DeviceVariant::UkpsKs; variant <= DeviceVariant::UkiKiranto; ++variant) {
        ProgramSettings written;
        written.port = QStringLiteral("/dev/ttyACM0");
        written.variant = variant;
        QJsonObject object;
        written.toJson(object);

        ProgramSettings read;
        read.fromJson(parse(QJsonDocument(object).toJson(QJsonDocument::Indented)));
        QCOMPARE(read.port, written.port);
        QCOMPARE(read.variant, variant);
    }
}

void tst_ProgramSettings::variantTable_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("displayName");
    QTest::addColumn<bool>("hasLocators");

    QTest::newRow("0") << 0 << "ukps-ks"
                       << "УКПС КИРАНТО-КС" << false;
    QTest::newRow("1") << 1 << "ukps-ab"
                       << "УКБ КИРАНТО-АБ" << false;
    QTest::newRow("2") << 2 << "ukps-ks-2"
                       << "УКПС КИРАНТО-КС-2" << true;
    QTest::newRow("3") << 3 << "uki-kiranto"
                       << "УКИ КИРАНТО" << true;
    QTest::newRow("4 unknown") << 4 << ""
                               << "Неизвестное устройство" << false;
    QTest::newRow("-1 unknown") << -1 << ""
                                << "Неизвестное устройство" << false;
}

void tst_ProgramSettings::variantTable()
{
    QFETCH(int, variant);
    QFETCH(QString, key);
    QFETCH(QString, displayName);
    QFETCH(bool, hasLocators);

    QCOMPARE(DeviceVariant::key(variant), key);
    QCOMPARE(DeviceVariant::displayName(variant), displayName);
    QCOMPARE(ProgramSettings::displayName(variant), displayName);
    QCOMPARE(DeviceVariant::hasLocators(variant), hasLocators);
}

QTEST_GUILESS_MAIN(tst_ProgramSettings)
#include "tst_programsettings.moc"
