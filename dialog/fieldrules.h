#pragma once

#include <QString>

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


// The FFE main tap: 40 less the pre- and post-cursor taps; it must stay above 20.
inline constexpr int FfeTapSum = 40;
inline constexpr int FfeMinimumC0 = 20;
int ffeC0(int cm, int c1);

// The quad receiver bias when neither the project nor the dialog has one.
inline constexpr int DefaultBias = 7;

} // namespace FieldRules
} // namespace IPCPRI
