#pragma once

#include <QString>
#include <QVector>

#include <functional>

namespace IPCPRI {
namespace FieldRules {

// Each rule returns the text the field keeps: the entry itself when it is
// in range, otherwise the value a new core starts with.

// Configuration clock in MHz, 1..150.
QString configClock(const QString &text);
// Reference frequency in MHz, MinReferenceMHz..MaxReferenceMHz.
inline constexpr double MinReferenceMHz = 50.0;
inline constexpr double MaxReferenceMHz = 500.0;
QString referenceFrequency(const QString &text);

// Hexadecimal fields: the entry, or the default with *converted false when
// the text is no hexadecimal number at all.
QString scramblerSeed(const QString &text, bool *converted);   // 0..7FFFFFFF
QString ethernetPointer(const QString &text, bool *converted); // 14..3F
QString hdlcRate(const QString &text);                         // 0..7

// The rule of each text field the user leaves: the key the field holds,
// what it keeps of a text, and the range it keeps, as a user reads it.
struct TextRule
{
    QString key;
    std::function<QString(const QString &)> keep;
    QString range;
};
const QVector<TextRule> &textRules();

// The FFE main tap: 40 less the pre- and post-cursor taps; it must stay above 20.
inline constexpr int FfeTapSum = 40;
inline constexpr int FfeMinimumC0 = 20;
int ffeC0(int cm, int c1);
bool ffeC0Accepted(int c0);

// What the spin boxes of the AFE tab hold: the FFE taps, the receiver's
// attenuation and boost and the quad bias, each from 0.
inline constexpr int FfeTapMaximum = 19;
inline constexpr int AttenuationMaximum = 10;
inline constexpr int BoostMaximum = 15;
inline constexpr int BiasMaximum = 15;

// The values "Auto" mode holds: taps at 0, attenuation and boost at the
// values a new core starts with.
inline constexpr int AutoFfeTap = 0;
int autoAttenuation();
int autoBoost();

// The quad receiver bias when neither the project nor the dialog has one.
inline constexpr int DefaultBias = 7;

} // namespace FieldRules
} // namespace IPCPRI
