#include "ui/popupmessage.h"

#include <QLabel>
#include <QWidget>
#include <QtTest>

class tst_PopupMessage : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void parse_data();
    void parse();
    void placement_data();
    void placement();
    void okMessageShown();
    void labelPlacedOverWindow_data();
    void labelPlacedOverWindow();
    void colourFollowsClass_data();
    void colourFollowsClass();
    void expiry_data();
    void expiry();
    void zeroTimeHiddenByTimer();
    void cancelHidesAtOnce();
    void newMessageReplacesOld();

private:
    QWidget *m_window = nullptr;
    PopupMessage *m_popup = nullptr;
    qint64 m_now = 1000000;
};

void tst_PopupMessage::init()
{
    m_window = new QWidget;
    m_window->resize(800, 600);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    m_popup = new PopupMessage(m_window);
    m_now = 1000000;
    m_popup->setClock([this] { return m_now; });
}

void tst_PopupMessage::cleanup()
{
    delete m_window;
    m_window = nullptr;
    m_popup = nullptr;
}

void tst_PopupMessage::parse_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("text");
    QTest::newRow("ok") << "[[OK]]Файл записан"
                        << "Ok"
                        << "Файл записан";
    QTest::newRow("error") << "[[ERR]]Устройство не подключено"
                           << "Error"
                           << "Устройство не подключено";
    QTest::newRow("warning") << "[[WARN]]Нет данных"
                             << "Warning"
                             << "Нет данных";
    QTest::newRow("info") << "[[INFO]]Подключаемся..."
                          << "Info"
                          << "Подключаемся...";
    QTest::newRow("no prefix") << "Просто текст"
                               << "Info"
                               << "Просто текст";
    QTest::newRow("empty") << ""
                           << "Info"
                           << "";
    QTest::newRow("prefix only") << "[[OK]]"
                                 << "Ok"
                                 << "";
    QTest::newRow("prefix not at start") << "Файл [[OK]]записан"
                                         << "Info"
                                         << "Файл [[OK]]записан";
    QTest::newRow("lower case is no prefix") << "[[ok]]Файл"
                                             << "Info"
                                             << "[[ok]]Файл";
    QTest::newRow("every occurrence removed") << "[[ERR]]Порт[[ERR]] занят[[ERR]]"
                                              << "Error"
                                              << "Порт занят";
    QTest::newRow("other prefix inside kept") << "[[WARN]]Внимание [[OK]]"
                                              << "Warning"
                                              << "Внимание [[OK]]";
    QTest::newRow("info tried before ok") << "[[INFO]][[OK]]Готово"
                                          << "Info"
                                          << "[[OK]]Готово";
    QTest::newRow("leading blank is no prefix") << " [[OK]]Готово"
                                                << "Info"
                                                << " [[OK]]Готово";
}

void tst_PopupMessage::parse()
{
    QFETCH(QString, message);
    QFETCH(QString, className);
    QFETCH(QString, text);
    const PopupMessage::Parsed parsed = PopupMessage::parse(message);
    QCOMPARE(parsed.className, className);
    QCOMPARE(parsed.text, text);
}

void tst_PopupMessage::placement_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QPoint>("topLeft");
    QTest::newRow("even sizes") << QSize(800, 600) << QSize(200, 50) << QPoint(300, 375);
    QTest::newRow("odd sizes round down") << QSize(801, 601) << QSize(200, 51) << QPoint(300, 375);
    QTest::newRow("two thirds of odd height") << QSize(100, 100) << QSize(10, 10) << QPoint(45, 61);
    QTest::newRow("label as wide as window") << QSize(300, 90) << QSize(300, 40) << QPoint(0, 40);
    QTest::newRow("label wider than window") << QSize(300, 90) << QSize(304, 40) << QPoint(-2, 40);
}

void tst_PopupMessage::placement()
{
    QFETCH(QSize, window);
    QFETCH(QSize, label);
    QFETCH(QPoint, topLeft);
    QCOMPARE(PopupMessage::placement(window, label), topLeft);
}

void tst_PopupMessage::okMessageShown()
{
    QLabel *label = m_popup->label();
    QVERIFY(label->isHidden());
    QVERIFY(label->text().isEmpty());
    QCOMPARE(label->parentWidget(), m_window);

    m_popup->show(QStringLiteral("[[OK]]Файл записан"));
    QVERIFY(label->isVisible());
    QCOMPARE(label->text(), QString("Файл записан"));
    QCOMPARE(label->property("class").toString(), QString("Ok"));

    m_popup->show(QStringLiteral("Порт COM3: открыт."));
    QCOMPARE(label->text(), QString("Порт COM3: открыт."));
    QCOMPARE(label->property("class").toString(), QString("Info"));
}

void tst_PopupMessage::labelPlacedOverWindow_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QString>("message");
    QTest::newRow("wide window, short text") << QSize(1001, 701) << "[[OK]]Файл записан";
    QTest::newRow("narrow window, long text")
            << QSize(240, 333)
            << "[[ERR]]Устройство не подключено: Автономная работа с файлами без прибора";
}

void tst_PopupMessage::labelPlacedOverWindow()
{
    QFETCH(QSize, window);
    QFETCH(QString, message);
    m_window->resize(window);
    m_popup->show(message, 5000);
    const QLabel *label = m_popup->label();
    QCOMPARE(label->size(), label->sizeHint());
    QCOMPARE(label->x(), (window.width() - label->width()) / 2);
    QCOMPARE(label->y(), (2 * window.height()) / 3 - label->height() / 2);
}

void tst_PopupMessage::colourFollowsClass_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QColor>("background");
    QTest::newRow("info") << "[[INFO]]Подключаемся..." << QColor(255, 255, 153);
    QTest::newRow("warning") << "[[WARN]]Нет ответа" << QColor(255, 200, 55);
    QTest::newRow("ok") << "[[OK]]Файл записан" << QColor(204, 255, 153);
    QTest::newRow("error") << "[[ERR]]Ошибка записи" << QColor(255, 153, 153);
}

void tst_PopupMessage::colourFollowsClass()
{
    QFETCH(QString, message);
    QFETCH(QColor, background);
    // Show another class first: the style must follow the new one.
    m_popup->show(QStringLiteral("[[ERR]]Ошибка"), 5000);
    m_popup->show(QStringLiteral("[[OK]]Готово"), 5000);
    m_popup->show(message, 5000);

    QLabel *label = m_popup->label();
    const QImage image = label->grab().toImage();
    // Inside the padding, left of the text and clear of the rounded border.
    const QColor seen = image.pixelColor(8, image.height() / 2);
    const QColor all[] = {QColor(255, 255, 153),
                          QColor(255, 200, 55),
                          QColor(204, 255, 153),
                          QColor(255, 153, 153)};
    auto distance = [](const QColor &a, const QColor &b) {
        return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue());
    };
    for (const QColor &other : all) {
        if (other != background)
            QVERIFY2(distance(seen, background) < distance(seen, other),
                     qPrintable(seen.name() + " is nearer to " + other.name()));
    }
}

void tst_PopupMessage::expiry_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<int>("elapsed");
    QTest::addColumn<bool>("visible");
    QTest::newRow("0 ms, same instant") << 0 << 0 << true;
    QTest::newRow("0 ms, one ms later") << 0 << 1 << false;
    QTest::newRow("0 ms, next tick") << 0 << 1000 << false;
    QTest::newRow("3000 ms, at the deadline") << 3000 << 3000 << true;
    QTest::newRow("3000 ms, past the deadline") << 3000 << 3001 << false;
    QTest::newRow("30000 ms, after 29 s") << 30000 << 29000 << true;
}

void tst_PopupMessage::expiry()
{
    QFETCH(int, milliseconds);
    QFETCH(int, elapsed);
    QFETCH(bool, visible);
    m_popup->show(QStringLiteral("[[INFO]]Читаем архив..."), milliseconds);
    m_now += elapsed;
    m_popup->expireIfDue();
    QCOMPARE(m_popup->label()->isVisible(), visible);
}

void tst_PopupMessage::zeroTimeHiddenByTimer()
{
    // The real clock and the popup's own timer; the wait is only a generous upper bound.
    m_popup->setClock(&QDateTime::currentMSecsSinceEpoch);
    m_popup->show(QStringLiteral("[[OK]]Готово"), 0);
    QVERIFY(m_popup->label()->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(m_popup->label()->isHidden(), 10000);
}

void tst_PopupMessage::cancelHidesAtOnce()
{
    m_popup->show(QStringLiteral("[[WARN]]Внимание"), 30000);
    QVERIFY(m_popup->label()->isVisible());
    m_popup->cancel();
    QVERIFY(m_popup->label()->isHidden());
    m_now += 60000;
    m_popup->expireIfDue();
    QVERIFY(m_popup->label()->isHidden());

    m_popup->show(QStringLiteral("Снова"));
    QVERIFY(m_popup->label()->isVisible());
}

void tst_PopupMessage::newMessageReplacesOld()
{
    QLabel *label = m_popup->label();
    m_popup->show(QStringLiteral("[[ERR]]Первое сообщение, довольно длинное"), 100);
    const int firstWidth = label->width();
    m_now += 50;
    m_popup->show(QStringLiteral("[[OK]]Второе"), 2000);
    QCOMPARE(label->text(), QString("Второе"));
    QCOMPARE(label->property("class").toString(), QString("Ok"));
    QVERIFY(label->width() < firstWidth);
    QCOMPARE(label->x(), (m_window->width() - label->width()) / 2);

    // The first message's time has passed, the second one's not.
    m_now += 1000;
    m_popup->expireIfDue();
    QVERIFY(label->isVisible());
    m_now += 1001;
    m_popup->expireIfDue();
    QVERIFY(label->isHidden());
    QCOMPARE(m_window->findChildren<QLabel *>().size(), 1);
}

QTEST_MAIN(tst_PopupMessage)
#include "tst_popupmessage.moc"
