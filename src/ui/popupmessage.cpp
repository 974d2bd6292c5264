#include "popupmessage.h"

#include <QDateTime>
#include <QLabel>
#include <QStyle>
#include <QTimerEvent>
#include <QVariant>

#include <utility>

namespace {

struct Prefix
{
    const char *text;
    const char *className;
};

// Tried in this order; the first one the message starts with wins.
const Prefix prefixes[] = {
        {"[[INFO]]", "Info"},
        {"[[WARN]]", "Warning"},
        {"[[ERR]]", "Error"},
        {"[[OK]]", "Ok"},
};

const char styleSheet[] = "QLabel {  font-weight: bold;  font-size: 20px;  padding: 10px 15px;  "
                          "border: 2px solid;  border-radius: 10px;}"
                          "[class=Info] {  background-color: rgba(255, 255, 153, 200);  "
                          "border-color: orange;}"
                          "[class=Warning] {  background-color: rgba(255, 200, 55, 200);  "
                          "border-color: orange;}"
                          "[class=Ok] {  background-color: rgba(204, 255, 153, 200);  "
                          "border-color: green;}"
                          "[class=Error] {  background-color: rgba(255, 153, 153, 200);  "
                          "border-color: red;}";

} // namespace

PopupMessage::PopupMessage(QWidget *window)
    : QObject(window)
    , m_window(window)
    , m_label(new QLabel(window))
    , m_clock(&QDateTime::currentMSecsSinceEpoch)
{
    m_label->setText(QString());
    m_label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_label->setWordWrap(true);
    m_label->setStyleSheet(QLatin1String(styleSheet));
    m_label->hide();
    m_timerId = startTimer(1000, Qt::CoarseTimer);
}

void PopupMessage::setClock(std::function<qint64()> clock)
{
    m_clock = std::move(clock);
}

PopupMessage::Parsed PopupMessage::parse(const QString &message)
{
    for (const Prefix &prefix : prefixes) {
        const QString text = QLatin1String(prefix.text);
        if (message.startsWith(text)) {
            // Every occurrence goes, not only the leading one.
            return {QLatin1String(prefix.className), QString(message).remove(text)};
        }
    }
    return {QStringLiteral("Info"), message};
}

QPoint PopupMessage::placement(const QSize &window, const QSize &label)
{
    return QPoint((window.width() - label.width()) / 2,
                  (2 * window.height()) / 3 - label.height() / 2);
}

void PopupMessage::show(const QString &message, int milliseconds)
{
    const Parsed parsed = parse(message);

    m_deadline = 0;
    m_label->hide();
    m_deadline = m_clock() + milliseconds;

    m_label->setProperty("class", parsed.className);
    m_label->style()->unpolish(m_label);
    m_label->style()->polish(m_label);

    m_label->setText(parsed.text);
    m_label->adjustSize();
    m_label->move(placement(m_window->size(), m_label->size()));
    m_label->raise();
    m_label->show();
}

void PopupMessage::show(const QString &message)
{
    show(message, 3000);
}

void PopupMessage::cancel()
{
    m_deadline = 0;
    m_label->hide();
}

void PopupMessage::expireIfDue()
{
    if (m_deadline != 0 && m_deadline < m_clock()) {
        m_deadline = 0;
        m_label->hide();
    }
}

void PopupMessage::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timerId)
        expireIfDue();
    else
        QObject::timerEvent(event);
}
