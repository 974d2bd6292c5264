#include "app/application.h"
#include "support.h"

#include <QtTest>

// The English translation compiled into the program, against the .ts file it is built from.
class tst_Translation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyMessage_data();
    void everyMessage();
    void knownTexts();

private:
    QTranslator m_translator;
};

void tst_Translation::initTestCase()
{
    Application::initResources();
    QVERIFY(m_translator.load(QStringLiteral(":/tr/translation_en.qm")));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
}

// Rows: context, source, comment, translation and its type attribute (empty when finished).
void tst_Translation::everyMessage_data()
{
    for (const char *column : {"context", "source", "comment", "translation", "type"})
        QTest::addColumn<QString>(column);
    QFile file(TestSupport::sourceDir() + "/src/resources/translations/translation_en.ts");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QString context;
    QMap<QString, QString> m;
    while (xml.readNext() != QXmlStreamReader::Invalid && !xml.atEnd()) {
        const QString name = xml.name().toString();
        if (xml.isEndElement() && name == "message")
            QTest::addRow("%s: %s", qPrintable(context), qPrintable(m["source"].left(60)))
                    << context << m["source"] << m["comment"] << m["translation"] << m["type"];
        else if (xml.isStartElement() && name == "message")
            m.clear();
        else if (xml.isStartElement() && name == "translation")
            m["type"] = xml.attributes().value("type").toString();
        if (xml.isStartElement() && name != "message" && name != "context" && name != "TS")
            (name == "name" ? context : m[name]) = xml.readElementText();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
}

// Each message is finished, keeps its arguments, markers, leading popup prefix, line breaks and
// tags, and is the one compiled into the program.
void tst_Translation::everyMessage()
{
    QFETCH(QString, context);
    QFETCH(QString, source);
    QFETCH(QString, comment);
    QFETCH(QString, translation);
    QFETCH(QString, type);
    QCOMPARE(type, QString());
    static const QRegularExpression fixed(QStringLiteral(
            R"(%%[A-Z]+%%|%L?[0-9]+|%[vm]\b|\[\[(?:OK|ERR|WARN|INFO)\]\]|\n|<[^<>]+>)"));
    const auto parts = [](const QString &text) {
        QStringList found;
        for (auto it = fixed.globalMatch(text); it.hasNext();)
            found << it.next().captured();
        found.sort();
        if (text.startsWith("[["))
            found.prepend(text.left(text.indexOf("]]") + 2));
        return found;
    };
    QCOMPARE(parts(translation), parts(source));
    QCOMPARE(
            QCoreApplication::translate(context.toUtf8().constData(),
                                        source.toUtf8().constData(),
                                        comment.isEmpty() ? nullptr : comment.toUtf8().constData()),
            translation);
}

// A few texts a user sees, looked up the way the program does; progress texts stay Russian.
void tst_Translation::knownTexts()
{
    // context|Russian source|English
    for (const char *row : {"MainWindow|[[OK]]Подключено устройство: %1|[[OK]]Device connected: %1",
                            "MainWindow|Команд выполнено: %v из %m|Commands done: %v of %m",
                            "ArchiveData|Обрыв АБ|Battery circuit break",
                            "UkpsConfigEditor|Обрыв АБ|Battery break",
                            "ArchiveData|С = %1мкФ, I = %2мкА|C = %1 µF, I = %2 µA",
                            "UkiConfigEditor| кОм| kΩ",
                            "DeviceVariant|УКИ КИРАНТО|KIRANTO IMD"}) {
        const QStringList f = QString::fromUtf8(row).split('|');
        QCOMPARE(QCoreApplication::translate(qPrintable(f[0]), f[1].toUtf8().constData()), f[2]);
    }
}

QTEST_GUILESS_MAIN(tst_Translation)
#include "tst_translation.moc"
