#include "app/application.h"
#include "ui/aboutdialog.h"

#include <QLabel>
#include <QTextBlock>
#include <QTextBrowser>
#include <QtTest>

class tst_AboutDialog : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void placeholdersReplaced();
    void nameInBoldTwelvePoint();
};

void tst_AboutDialog::initTestCase()
{
    QCoreApplication::setApplicationVersion("1.23");
    Application::initResources();
}

void tst_AboutDialog::placeholdersReplaced()
{
    AboutDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("О программе"));
    auto browser = dialog.findChild<QTextBrowser *>("textBrowser");
    QVERIFY(browser);
    const QString text = browser->toPlainText();
    QVERIFY2(!text.contains("%%"), qPrintable(text));
    QVERIFY(!browser->toHtml().contains("%%"));

    const QStringList paragraphs = text.split('\n', Qt::SkipEmptyParts);
    QVERIFY2(paragraphs.size() >= 4, qPrintable(text));
    QCOMPARE(paragraphs.at(0), QString("КИРАНТО-линк (версия 1.23)"));
    QCOMPARE(paragraphs.at(1), QString("Сервисная программа для устройств КИРАНТО"));
    QVERIFY(browser->toHtml().contains("href=\"mailto:"));
}

void tst_AboutDialog::nameInBoldTwelvePoint()
{
    AboutDialog dialog;
    auto browser = dialog.findChild<QTextBrowser *>("textBrowser");
    const QTextBlock first = browser->document()->firstBlock();
    QVERIFY(first.begin() != first.end());
    const QTextFragment name = first.begin().fragment();
    QCOMPARE(name.text(), QString("КИРАНТО-линк"));
    QVERIFY(name.charFormat().fontWeight() >= QFont::DemiBold);
    QCOMPARE(name.charFormat().fontPointSize(), 12.0);
}

QTEST_MAIN(tst_AboutDialog)
#include "tst_aboutdialog.moc"
