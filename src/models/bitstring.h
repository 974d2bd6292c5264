#pragma once

#include <QString>

// 16-channel masks as the device writes them: 16 characters '0'/'1', the first one for channel 1.
namespace BitString {

// Bit i is set when character i is '1'; a text shorter than 16 characters reads as 0 and
// characters after the sixteenth are ignored.
quint16 parse(const QString &text);
// Always 16 characters, bit 0 first.
QString format(quint16 mask);
// One letter per channel, bit 0 first, grouped by four: "XXXX XXXX XXXX XXXX".
// X: channel off; И: not tested; и: first CT state bit clear; З: second CT state bit set; О: fine.
QString ctState(quint16 enabled, quint16 tested, quint16 ctStateA, quint16 ctStateB);

} // namespace BitString
