#include "app/application.h"
#include "app/programsettings.h"
#include "ui/aboutdialog.h"
#include "ui/configdialog.h"
#include "ui/popupmessage.h"

#include <QtTest>

// The popup over the main window, the configuration dialog and the about box.
class tst_Dialogs : public QObject
{
    Q_OBJECT
private slots:
    void popupParse_data();
    void popupParse();
    void popupPlacement();
    void popupExpiry_data();
    void popupExpiry();
    void configPort_data();
    void configPort();
    void about();
};

void tst_Dialogs::popupParse_data()
{
    QTest::addColumn<QString>("row");
    for (const char *row : {"Просто текст => Info|Просто текст",
                            " => Info|",
                            "[[OK]] => Ok|",
                            "Файл [[OK]]записан => Info|Файл [[OK]]записан",
                            "[[ok]]Файл => Info|[[ok]]Файл",
                            "[[ERR]]Порт[[ERR]] занят[[ERR]] => Error|Порт занят",
                            "[[WARN]]Внимание [[OK]] => Warning|Внимание [[OK]]",
                            "[[INFO]][[OK]]Готово => Info|[[OK]]Готово",
                            " [[OK]]Готово => Info| [[OK]]Готово"})
        QTest::newRow(row) << QString(row);
}

void tst_Dialogs::popupParse()
{
    QFETCH(QString, row);
    QWidget window;
    PopupMessage popup(&window);
    popup.show(row.section(" => ", 0, 0));
    QCOMPARE(popup.label()->property("class").toString() + '|' + popup.label()->text(),
             row.section(" => ", 1));
}

void tst_Dialogs::popupPlacement()
{
    QCOMPARE(PopupMessage::placement({800, 600}, {200, 50}), QPoint(300, 375));
    QCOMPARE(PopupMessage::placement({801, 601}, {200, 51}), QPoint(300, 375));
    QCOMPARE(PopupMessage::placement({100, 100}, {10, 10}), QPoint(45, 61));
    QCOMPARE(PopupMessage::placement({300, 90}, {300, 40}), QPoint(0, 40));
    QCOMPARE(PopupMessage::placement({300, 90}, {304, 40}), QPoint(-2, 40));
}

void tst_Dialogs::popupExpiry_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("shown");
    // "show:<ms>" shows a message, "+<ms>" lets the clock run and checks expiry, "cancel".
    // clang-format off
    QTest::newRow("3000 ms, at and past the deadline") << "show:3000 +3000 +1" << "1 1 0";
    QTest::newRow("30000 ms, after 29 s") << "show:30000 +29000" << "1 1";
    QTest::newRow("new message's time counts") << "show:100 +50 show:2000 +1000 +1001" << "1 1 1 1 0";
    QTest::newRow("cancel hides at once") << "show:30000 cancel +60000 show:100" << "1 0 0 1";
    // clang-format on
}

void tst_Dialogs::popupExpiry()
{
    QFETCH(QString, steps);
    QFETCH(QString, shown);
    QWidget window;
    window.show();
    PopupMessage popup(&window);
    qint64 now = 1000000;
    popup.setClock([&now] { return now; });
    QStringList seen;
    for (const QString &step : steps.split(' ')) {
        if (step.startsWith("show:"))
            popup.show("[[INFO]]Читаем архив...", step.mid(5).toInt());
        else if (step == "cancel")
            popup.cancel();
        else {
            now += step.toInt();
            popup.expireIfDue();
        }
        seen << QString::number(popup.label()->isVisible());
    }
    QCOMPARE(seen.join(' '), shown);
    // The real clock: the popup's own timer hides a message of 0 ms.
    popup.setClock(&QDateTime::currentMSecsSinceEpoch);
    popup.show("[[OK]]Готово", 0);
    QTRY_VERIFY_WITH_TIMEOUT(popup.label()->isHidden(), 10000);
}

void tst_Dialogs::configPort_data()
{
    // ports present | stored port and variant | items, '>' before the chosen one | given back
    QTest::addColumn<QString>("row");
    // clang-format off
    const QString m = " (отсутствует в системе)";
    QTest::newRow("present port, ukps-ks") << "ttyS0,ttyS1,ttyUSB0|ttyUSB0 0|ttyS0,ttyS1,>ttyUSB0|ttyUSB0 0";
    QTest::newRow("missing port listed second, ukps-ab") << "ttyS0,ttyS1,ttyUSB0|ttyUSB7 1|ttyS0,>ttyUSB7" + m + ",ttyS1,ttyUSB0|ttyUSB7 1";
    QTest::newRow("case-sensitive lookup, ukps-ks-2") << "ttyS0,ttyS1,ttyUSB0|TTYS0 2|ttyS0,>TTYS0" + m + ",ttyS1,ttyUSB0|TTYS0 2";
    QTest::newRow("no ports, uki-kiranto as ukps-ks-2") << "|ttyACM0 3|>ttyACM0" + m + "|ttyACM0 2";
    QTest::newRow("symlink path, unknown variant") << "ttyS0|/tmp/kiranto-sim 9|ttyS0,>/tmp/kiranto-sim" + m + "|/tmp/kiranto-sim 2";
    QTest::newRow("no port keeps first, negative variant") << "ttyS0,ttyS1,ttyUSB0| -1|>ttyS0,ttyS1,ttyUSB0|ttyS0 2";
    // clang-format on
}

void tst_Dialogs::configPort()
{
    QFETCH(QString, row);
    const QStringList f = row.split('|');
    ConfigDialog dialog;
    auto combo = dialog.findChild<QComboBox *>("cbComPort");
    combo->clear();
    combo->addItems(f[0].split(',', Qt::SkipEmptyParts));
    ProgramSettings settings;
    settings.port = f[1].section(' ', 0, 0);
    settings.variant = f[1].section(' ', 1).toInt();
    dialog.setSettings(settings);
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << (i == combo->currentIndex() ? ">" : "") + combo->itemText(i);
    QCOMPARE(items.join(','), f[2]);
    ProgramSettings out;
    out.port = "stale";
    out.variant = 42;
    dialog.getSettings(out);
    QCOMPARE(out.port + ' ' + QString::number(out.variant), f[3]);
}

void tst_Dialogs::about()
{
    QCoreApplication::setApplicationVersion("1.23");
    Application::initResources();
    AboutDialog dialog;
    auto browser = dialog.findChild<QTextBrowser *>("textBrowser");
    const QString html = browser->toHtml();
    QVERIFY2(!html.contains("%%") && html.contains("href=\"mailto:"), qPrintable(html));
    QCOMPARE(browser->toPlainText().split('\n', Qt::SkipEmptyParts).mid(0, 2).join('|'),
             QString("КИРАНТО-линк (версия 1.23)|Сервисная программа для устройств КИРАНТО"));
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
