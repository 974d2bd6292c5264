#pragma once

#include <QObject>
#include <QPoint>
#include <QSize>
#include <QString>

#include <functional>

class QLabel;
class QWidget;

// A transient, coloured message label shown over the main window for a given time.
// A leading "[[OK]]", "[[ERR]]", "[[WARN]]" or "[[INFO]]" in the text picks the colour.
class PopupMessage : public QObject
{
    Q_OBJECT
public:
    // The label becomes a child of window; the popup itself is owned by window too.
    explicit PopupMessage(QWidget *window);

    QLabel *label() const { return m_label; }

    // Milliseconds since the epoch; the wall clock unless replaced (tests).
    void setClock(std::function<qint64()> clock);

    // Called by the 1000 ms timer: hides the label once its deadline has passed.
    void expireIfDue();

    // The class name for the style sheet and the text with its prefix removed.
    struct Parsed
    {
        QString className;
        QString text;
    };
    static Parsed parse(const QString &message);

    // Top-left corner of the label: centred across, its middle at two thirds down.
    static QPoint placement(const QSize &window, const QSize &label);

public slots:
    void show(const QString &message, int milliseconds);
    void show(const QString &message);
    void cancel();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QWidget *m_window = nullptr;
    QLabel *m_label = nullptr;
    int m_timerId = 0;
    qint64 m_deadline = 0; // ms since the epoch; 0 while nothing is shown
    std::function<qint64()> m_clock;
};
