#include "fieldrules.h"

#include "../config/configkeys.h"

namespace IPCPRI {
namespace FieldRules {

namespace {

namespace Key = Config::Key;

// The ranges the fields keep.
constexpr int ConfigClockMinimum = 1;
constexpr int ConfigClockMaximum = 150;
constexpr qulonglong ScramblerSeedMaximum = 0x7FFFFFFF;
constexpr qulonglong EthernetPointerMinimum = 0x14;
constexpr qulonglong EthernetPointerMaximum = 0x3F;
constexpr qulonglong HdlcRateMaximum = 0x7;

QString initial(const QString &key)
{
    return Config::initialValue(key).toString();
}

QString hexInRange(const QString &text, qulonglong low, qulonglong high, const QString &fallback,
                   bool *converted)
{
    bool ok = false;
    const qulonglong value = text.toULongLong(&ok, 16);
    if (converted)
        *converted = ok;
    return ok && value >= low && value <= high ? text : fallback;
}

QString decimalRange(double low, double high)
{
    return QStringLiteral("%1 to %2").arg(low).arg(high);
}

QString hexRange(qulonglong low, qulonglong high)
{
    return QStringLiteral("%1 to %2")
        .arg(QString::number(low, 16).toUpper(), QString::number(high, 16).toUpper());
}

} // namespace

QString configClock(const QString &text)
{
    if (text.isEmpty())
        return initial(Key::ConfigClkPeriod);
    const int value = text.toInt(); // a text that does not convert counts as 0
    return value >= ConfigClockMinimum && value <= ConfigClockMaximum
               ? text
               : initial(Key::ConfigClkPeriod);
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
    return hexInRange(text, 0, ScramblerSeedMaximum, initial(Key::ScramblerSeed), converted);
}

QString ethernetPointer(const QString &text, bool *converted)
{
    return hexInRange(text, EthernetPointerMinimum, EthernetPointerMaximum,
                      initial(Key::EthernetPointer), converted);
}

QString hdlcRate(const QString &text)
{
    return hexInRange(text, 0, HdlcRateMaximum, initial(Key::HdlcRate), nullptr);
}

const QVector<TextRule> &textRules()
{
    static const QVector<TextRule> rules = {
        {Key::ConfigClkPeriod, configClock, decimalRange(ConfigClockMinimum, ConfigClockMaximum)},
        {Key::RefClkFrequency, referenceFrequency, decimalRange(MinReferenceMHz, MaxReferenceMHz)},
        {Key::ScramblerSeed, [](const QString &t) { return scramblerSeed(t, nullptr); },
         hexRange(0, ScramblerSeedMaximum)},
        {Key::EthernetPointer, [](const QString &t) { return ethernetPointer(t, nullptr); },
         hexRange(EthernetPointerMinimum, EthernetPointerMaximum)},
        {Key::HdlcRate, hdlcRate, hexRange(0, HdlcRateMaximum)},
    };
    return rules;
}

int ffeC0(int cm, int c1)
{
    return FfeTapSum - cm - c1;
}

bool ffeC0Accepted(int c0)
{
    return c0 > FfeMinimumC0;
}

int autoAttenuation()
{
    return Config::initialValue(Key::Att).toInt();
}

int autoBoost()
{
    return Config::initialValue(Key::Boost).toInt();
}

} // namespace FieldRules
} // namespace IPCPRI
