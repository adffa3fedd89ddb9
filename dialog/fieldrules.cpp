#include "fieldrules.h"

#include "../config/configkeys.h"

namespace IPCPRI {
namespace FieldRules {

namespace {

namespace Key = Config::Key;

QString initial(const QString &key)
{
    return Config::initialValue(key).toString();
}

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
        return initial(Key::ConfigClkPeriod);
    const int value = text.toInt(); // a text that does not convert counts as 0
    return value >= 1 && value <= 150 ? text : initial(Key::ConfigClkPeriod);
}

QString referenceFrequency(const QString &text)
{
    if (text.isEmpty())
        return initial(Key::RefClkFrequency);
    const double value = text.toDouble();
    return value >= MinReferenceMHz && value <= MaxReferenceMHz ? text
                                                                 : initial(Key::RefClkFrequency);
}

QString scramblerSeed(const QString &text, bool *converted)
{
    return hexInRange(text, 0x0, 0x7FFFFFFF, initial(Key::ScramblerSeed), converted);
}

QString ethernetPointer(const QString &text, bool *converted)
{
    return hexInRange(text, 0x14, 0x3F, initial(Key::EthernetPointer), converted);
}

QString hdlcRate(const QString &text)
{
    return hexInRange(text, 0x0, 0x7, initial(Key::HdlcRate), nullptr);
}

int ffeC0(int cm, int c1)
{
    return FfeTapSum - cm - c1;
}

} // namespace FieldRules
} // namespace IPCPRI
