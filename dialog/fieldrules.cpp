#include "fieldrules.h"

namespace IPCPRI {
namespace FieldRules {

namespace {

QString inRange(const QString &text, qulonglong value, qulonglong low, qulonglong high,
                const QString &fallback)
{
    return value >= low && value <= high ? text : fallback;
}

QString hexInRange(const QString &text, qulonglong low, qulonglong high,
                   const QString &fallback, bool *converted)
{
    bool ok = false;
    const qulonglong value = text.toULongLong(&ok, 16);
    if (converted)
        *converted = ok;
    return ok ? inRange(text, value, low, high, fallback) : fallback;
}

} // namespace

QString configClock(const QString &text)
{
    if (text.isEmpty())
        return DefaultConfigClock;
    const int value = text.toInt(); // a text that does not convert counts as 0
    return value >= 1 && value <= 150 ? text : DefaultConfigClock;
}

QString referenceFrequency(const QString &text)
{
    if (text.isEmpty())
        return DefaultReferenceFrequency;
    const double value = text.toDouble();
    return value >= 50.0 && value <= 500.0 ? text : DefaultReferenceFrequency;
}

QString scramblerSeed(const QString &text, bool *converted)
{
    return hexInRange(text, 0x0, 0x7FFFFFFF, DefaultScramblerSeed, converted);
}

QString ethernetPointer(const QString &text, bool *converted)
{
    return hexInRange(text, 0x14, 0x3F, DefaultEthernetPointer, converted);
}

QString hdlcRate(const QString &text)
{
    return hexInRange(text, 0x0, 0x7, DefaultHdlcRate, nullptr);
}

int ffeC0(int cm, int c1)
{
    return FfeTapSum - cm - c1;
}

} // namespace FieldRules
} // namespace IPCPRI
