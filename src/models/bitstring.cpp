#include "bitstring.h"

#include <QCoreApplication>

namespace BitString {

quint16 parse(const QString &text)
{
    if (text.size() < 16)
        return 0;
    quint16 mask = 0;
    for (int i = 0; i < 16; ++i) {
        if (text.at(i) == QLatin1Char('1'))
            mask |= quint16(1u << i);
    }
    return mask;
}

QString format(quint16 mask)
{
    QString text(16, QLatin1Char('0'));
    for (int i = 0; i < 16; ++i) {
        if (mask & (1u << i))
            text[i] = QLatin1Char('1');
    }
    return text;
}

QString ctState(quint16 enabled, quint16 tested, quint16 ctStateA, quint16 ctStateB)
{
    QString text;
    text.reserve(19);
    for (int i = 0; i < 16; ++i) {
        const quint16 bit = quint16(1u << i);
        const char *letter = "О";
        if (!(enabled & bit))
            letter = QT_TRANSLATE_NOOP("Locators", "X");
        else if (!(tested & bit))
            letter = QT_TRANSLATE_NOOP("Locators", "И");
        else if (!(ctStateA & bit))
            letter = QT_TRANSLATE_NOOP("Locators", "и");
        else if (ctStateB & bit)
            letter = QT_TRANSLATE_NOOP("Locators", "З");
        else
            letter = QT_TRANSLATE_NOOP("Locators", "О");
        text += QCoreApplication::translate("Locators", letter);
        if (i == 3 || i == 7 || i == 11)
            text += QLatin1Char(' ');
    }
    return text;
}

} // namespace BitString
