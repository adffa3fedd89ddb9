#include "generator.h"

#include "pllmodel_p.h"

#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

namespace IPSERDESIP {

using namespace Internal;

namespace {

struct LaneClocking
{
    QString lanePrefix;
    QString pll;
    double rateGbps = 0.0;
    double refMHz = 0.0;
};

// The lane's PLL choice is the setting "<lane>_pll_sel".
const QLatin1String PllSelectSuffix("_pll_sel");

// A setting value as a finite number; false for anything else ("nan", "inf").
bool readNumber(const QString &value, double &number)
{
    bool ok = false;
    number = value.toDouble(&ok);
    return ok && qIsFinite(number);
}

// Reads what the divider search needs and reports every malformed line.
LaneClocking readClocking(const QStringList &settings, QStringList &errors)
{
    // Anchored at the very end: a line break inside a line makes it malformed.
    static const QRegularExpression line(QStringLiteral("\\A([a-z0-9_]+) (\\S.*)\\z"));
    LaneClocking clocking;
    for (const QString &setting : settings) {
        const QRegularExpressionMatch match = line.match(setting);
        if (!match.hasMatch()) {
            errors << QStringLiteral("Malformed setting line \"%1\"").arg(setting);
            continue;
        }
        const QString name = match.captured(1);
        const QString value = match.captured(2);
        if (name.endsWith(PllSelectSuffix)) {
            clocking.lanePrefix = name.chopped(PllSelectSuffix.size());
            clocking.pll = value;
        } else if (name.endsWith(QLatin1String("_tx_rate"))) {
            if (!readNumber(value, clocking.rateGbps))
                errors << QStringLiteral("Line rate \"%1\" of %2 is not a number").arg(value, name);
        } else if (name.endsWith(QLatin1String("_freq"))) {
            if (!readNumber(value, clocking.refMHz))
                errors << QStringLiteral("Reference frequency \"%1\" of %2 is not a number")
                              .arg(value, name);
        }
    }
    if (clocking.lanePrefix.isEmpty())
        errors << QStringLiteral("No lane selects a PLL");
    else if (!pllType(clocking.pll))
        errors
            << QStringLiteral("Unknown PLL \"%1\" for %2").arg(clocking.pll, clocking.lanePrefix);
    if (!(clocking.refMHz > 0.0))
        errors << QStringLiteral("No reference clock frequency is set");
    return clocking;
}

// Frequencies and rates as the messages write them: up to ten significant digits.
QString number(double value)
{
    return QString::number(value, 'g', 10);
}

QString kindName(const PllType &type)
{
    return type.name.toUpper();
}

// "QPLL0 (VCO 9.8304 GHz)" for each PLL kind that makes the rate from the reference.
QStringList kindsThatMake(double refMHz, double rateGbps)
{
    QStringList kinds;
    for (const PllType &type : pllTypes()) {
        if (const std::optional<PllSetting> s = findSetting(type, refMHz, rateGbps))
            kinds << QStringLiteral("%1 (VCO %2 GHz)").arg(kindName(type), number(s->vcoGHz));
    }
    return kinds;
}

// The VCOs in the PLL's range that give the rate with one of its output dividers.
QStringList vcosForRate(const PllType &type, double rateGbps)
{
    QStringList vcos;
    for (int d : type.d) {
        const double vco = rateGbps * d / type.rateFactor;
        if (vco >= type.vcoMinGHz && vco <= type.vcoMaxGHz)
            vcos << number(vco);
    }
    return vcos;
}

// Why a PLL cannot make a line rate from a reference clock, and what would.
QStringList unreachableRate(const PllType &type, double refMHz, double rateGbps)
{
    const QString pll = kindName(type), rate = number(rateGbps), ref = number(refMHz);
    QStringList lines{QStringLiteral("%1 cannot generate %2 Gbps from a %3 MHz reference clock")
                          .arg(pll, rate, ref)};
    const QString range = QStringLiteral("%1 VCO range: %2 to %3 GHz; ")
                              .arg(pll, number(type.vcoMinGHz), number(type.vcoMaxGHz));
    const QStringList vcos = vcosForRate(type, rateGbps);
    if (vcos.isEmpty())
        lines << range + QStringLiteral("no output divider brings %1 Gbps into it").arg(rate);
    else
        lines << range
                     + QStringLiteral("%1 Gbps needs a VCO of %2 GHz, which no divider setting "
                                      "reaches from %3 MHz")
                           .arg(rate, vcos.join(QStringLiteral(" or ")), ref);
    const QStringList kinds = kindsThatMake(refMHz, rateGbps);
    lines << (kinds.isEmpty()
                  ? QStringLiteral("No PLL kind generates %1 Gbps from %2 MHz").arg(rate, ref)
                  : QStringLiteral("These PLL kinds generate %1 Gbps from %2 MHz: %3")
                        .arg(rate, ref, kinds.join(QStringLiteral(", "))));
    QStringList refs, tried;
    for (double common : commonReferencesMHz()) {
        tried << number(common);
        if (findSetting(type, common, rateGbps))
            refs << number(common);
    }
    lines << (refs.isEmpty()
                  ? QStringLiteral("%1 generates %2 Gbps from none of the common reference "
                                   "clocks (%3 MHz)")
                        .arg(pll, rate, tried.join(QStringLiteral(", ")))
                  : QStringLiteral("%1 generates %2 Gbps from these common reference clocks: "
                                   "%3 MHz")
                        .arg(pll, rate, refs.join(QStringLiteral(", "))));
    return lines;
}

bool writeCsr(const QString &path, const QStringList &settings, const QStringList &extra,
              const LaneClocking &clocking, const PllSetting &pll, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        *error = file.errorString();
        return false;
    }
    QTextStream out(&file);
    out.setCodec("UTF-8");
    for (const QString &setting : settings + extra)
        out << setting << '\n';
    const QString p = clocking.lanePrefix;
    out << p << "_pll_m " << pll.m << '\n'
        << p << "_pll_n " << pll.n << '\n'
        << p << "_pll_d " << pll.d << '\n'
        << p << "_vco_ghz " << QString::number(pll.vcoGHz, 'f', 6) << '\n';
    out.flush();
    if (!file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace

generator::generator() = default;
generator::~generator() = default;

bool generator::generate(const QStringList &settings, const QString &csrPath,
                         const QStringList &extraSettings)
{
    m_errors.clear();
    const LaneClocking clocking = readClocking(settings + extraSettings, m_errors);
    if (!m_errors.isEmpty())
        return false;
    const std::optional<PllSetting> pll =
        findSetting(*pllType(clocking.pll), clocking.refMHz, clocking.rateGbps);
    if (!pll) {
        if (clocking.rateGbps > 0.0)
            m_errors = unreachableRate(*pllType(clocking.pll), clocking.refMHz, clocking.rateGbps);
        else
            m_errors << QStringLiteral("No line rate is set");
        return false;
    }
    QString error;
    if (!writeCsr(csrPath, settings, extraSettings, clocking, *pll, &error)) {
        m_errors << QStringLiteral("Cannot write %1: %2").arg(csrPath, error);
        return false;
    }
    return true;
}

QStringList generator::getErrStringList() const
{
    return m_errors;
}

QStringList generator::checkSettings(const QStringList &settings)
{
    QStringList errors;
    readClocking(settings, errors);
    return errors;
}

} // namespace IPSERDESIP
