#include "app/application.h"
#include "models/archivedata.h"
#include "models/bitstring.h"

#include <QFile>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// One <message> of the .ts file.
struct TsMessage
{
    QString context;
    QString source;
    QString comment;
    QString translation;
    QString type; // the translation's type attribute: empty when finished
};

QVector<TsMessage> readTs(const QString &path, QString *error)
{
    QVector<TsMessage> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    TsMessage message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            messages << message;
            continue;
        }
        if (!xml.isStartElement())
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("message")) {
            message = TsMessage();
            message.context = context;
        } else if (name == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (name == QLatin1String("comment")) {
            message.comment = xml.readElementText();
        } else if (name == QLatin1String("translation")) {
            message.type = xml.attributes().value(QLatin1String("type")).toString();
            message.translation = xml.readElementText();
        }
    }
    if (xml.hasError())
        *error = xml.errorString();
    return messages;
}

// What a translation must carry over from its source: arguments (%1, %L2, the progress bar's
// %v and %m), the "%%NAME%%" markers of the about text, popup prefixes anywhere in the text,
// line breaks and HTML tags.
QStringList fixedParts(const QString &text)
{
    static const QRegularExpression parts(QStringLiteral(
            R"(%%[A-Z]+%%|%L?[0-9]+|%[vm]\b|\[\[(?:OK|ERR|WARN|INFO)\]\]|\n|<[^<>]+>)"));
    QStringList found;
    auto it = parts.globalMatch(text);
    while (it.hasNext())
        found << it.next().captured();
    return found;
}

QString prefixOf(const QString &text)
{
    static const QRegularExpression prefix(QStringLiteral(R"(^\[\[(?:OK|ERR|WARN|INFO)\]\])"));
    return prefix.match(text).captured();
}

} // namespace

Q_DECLARE_METATYPE(TsMessage)

// The English translation compiled into the program, against the .ts file it is built from.
class tst_Translation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void knownTexts_data();
    void knownTexts();
    void everyMessage_data();
    void everyMessage();
    void archiveTypesRoundTrip();
    void ctStateLetters();

private:
    QTranslator m_translator;
    QVector<TsMessage> m_messages;
};

void tst_Translation::initTestCase()
{
    Application::initResources();
    QVERIFY(m_translator.load(QStringLiteral(":/tr/translation_en.qm")));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));

    QString error;
    m_messages = readTs(QStringLiteral(KIRANTO_TRANSLATION_TS), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(m_messages.size() > 400);
}

void tst_Translation::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&m_translator);
}

void tst_Translation::knownTexts_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("english");

    QTest::newRow("popup keeps its prefix") << "MainWindow"
                                            << "[[OK]]Подключено устройство: %1"
                                            << "[[OK]]Device connected: %1";
    QTest::newRow("offline popup") << "MainWindow"
                                   << "[[ERR]]Устройство не подключено: Автономная работа"
                                   << "[[ERR]]Device not connected: working offline";
    QTest::newRow("tab title") << "MainWindow"
                               << "Коррекция ТТ"
                               << "CT correction";
    QTest::newRow("progress bar format") << "MainWindow"
                                         << "Команд выполнено: %v из %m"
                                         << "Commands done: %v of %m";
    QTest::newRow("archive type") << "ArchiveData"
                                  << "Выключение питания"
                                  << "Power off";
    QTest::newRow("archive type, battery") << "ArchiveData"
                                           << "Обрыв АБ"
                                           << "Battery circuit break";
    QTest::newRow("same text, other context") << "UkpsConfigEditor"
                                              << "Обрыв АБ"
                                              << "Battery break";
    QTest::newRow("archive type cleared") << "ArchiveData"
                                          << "пропало: Разряд АБ"
                                          << "cleared: Battery discharge";
    QTest::newRow("archive data with units") << "ArchiveData"
                                             << "С = %1мкФ, I = %2мкА"
                                             << "C = %1 µF, I = %2 µA";
    QTest::newRow("device key kept") << "ArchiveData"
                                     << "ET_DEBUG"
                                     << "ET_DEBUG";
    QTest::newRow("spin box suffix") << "UkiConfigEditor"
                                     << " кОм"
                                     << " kΩ";
    QTest::newRow("variant name") << "DeviceVariant"
                                  << "УКИ КИРАНТО"
                                  << "KIRANTO IMD";
    QTest::newRow("source in no context stays") << "NoSuchContext"
                                                << "Выключение питания"
                                                << "Выключение питания";
}

void tst_Translation::knownTexts()
{
    QFETCH(QString, context);
    QFETCH(QString, source);
    QFETCH(QString, english);

    QCOMPARE(QCoreApplication::translate(context.toUtf8().constData(), source.toUtf8().constData()),
             english);
}

void tst_Translation::everyMessage_data()
{
    QTest::addColumn<TsMessage>("message");
    for (const TsMessage &message : qAsConst(m_messages)) {
        const QString name = QStringLiteral("%1: %2").arg(message.context, message.source.left(60));
        QTest::newRow(name.toUtf8().constData()) << message;
    }
}

void tst_Translation::everyMessage()
{
    QFETCH(TsMessage, message);

    QVERIFY2(message.type.isEmpty(), qPrintable(message.type));
    QVERIFY(!message.translation.isEmpty());
    QCOMPARE(prefixOf(message.translation), prefixOf(message.source));
    QStringList expected = fixedParts(message.source);
    QStringList actual = fixedParts(message.translation);
    expected.sort();
    actual.sort();
    QCOMPARE(actual, expected);

    // The compiled translation is the one in the .ts file.
    QCOMPARE(QCoreApplication::translate(
                     message.context.toUtf8().constData(),
                     message.source.toUtf8().constData(),
                     message.comment.isEmpty() ? nullptr : message.comment.toUtf8().constData()),
             message.translation);
}

// The archive filter maps the shown type text back to its code: the English texts must stay
// as distinct as the Russian ones, the three power-off codes sharing one text.
void tst_Translation::archiveTypesRoundTrip()
{
    int translated = 0;
    for (const EventTypeInfo &info : ArchiveData::eventTypes()) {
        const QString text = ArchiveData::eventTypeText(info.code);
        const quint32 expected = (info.code == ET_EVENT_IMS_POW_OFF_
                                  || info.code == ET_EVENT_IMS_POW_ON_)
                                         ? quint32(ET_EVENT_IMS_POW_OFF)
                                         : info.code;
        QVERIFY2(ArchiveData::eventTypeCode(text) == expected, qPrintable(text));
        if (text != QString::fromUtf8(info.text))
            ++translated;
    }
    QCOMPARE(ArchiveData::eventTypeText(ET_EVENT_IMS_POW_OFF), QStringLiteral("Power off"));
    QCOMPARE(ArchiveData::eventTypeText(ET_EVENT_IMS_POW_ON_), QStringLiteral("Power off"));
    // All but ET_DEBUG and ET_FEED_COMPLEX are Russian in the source.
    QCOMPARE(translated, ArchiveData::eventTypes().size() - 2);
}

void tst_Translation::ctStateLetters()
{
    // Channel 1 off, 2 not tested, 3 first CT bit clear, 4 second CT bit set, 5 fine.
    const QString state = BitString::ctState(0b11110, 0b11100, 0b11000, 0b01000);
    QCOMPARE(state, QStringLiteral("XTtS OXXX XXXX XXXX"));
}

QTEST_GUILESS_MAIN(tst_Translation)
#include "tst_translation.moc"
