#pragma once

#include <QString>

namespace IPCPRI {
namespace FieldRules {

// Each rule returns the text the field keeps: the entry itself when it is
// in range, otherwise the field's default.

// Configuration clock in MHz, 1..150; default "50".
QString configClock(const QString &text);
// Reference frequency in MHz, 50..500; default "122.880".
QString referenceFrequency(const QString &text);

// Hexadecimal fields: the entry, or the default with *converted false when
// the text is no hexadecimal number at all.
QString scramblerSeed(const QString &text, bool *converted);   // 0..7FFFFFFF, "00000000"
QString ethernetPointer(const QString &text, bool *converted); // 14..3F, "14"
QString hdlcRate(const QString &text);                         // 0..7, "2"

inline const QString DefaultConfigClock = QStringLiteral("50");
inline const QString DefaultReferenceFrequency = QStringLiteral("122.880");
inline const QString DefaultScramblerSeed = QStringLiteral("00000000");
inline const QString DefaultEthernetPointer = QStringLiteral("14");
inline const QString DefaultHdlcRate = QStringLiteral("2");

// The FFE main tap: 40 less the pre- and post-cursor taps; it must stay above 20.
inline constexpr int FfeTapSum = 40;
inline constexpr int FfeMinimumC0 = 20;
int ffeC0(int cm, int c1);

// Default quad receiver bias and equalizer values in automatic mode.
inline constexpr int DefaultBias = 7;
inline constexpr int AutoAtt = 7;
inline constexpr int AutoBoost = 9;

} // namespace FieldRules
} // namespace IPCPRI
