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
        errors << QStringLiteral("Unknown PLL \"%1\" for %2").arg(clocking.pll, clocking.lanePrefix);
    if (!(clocking.refMHz > 0.0))
        errors << QStringLiteral("No reference clock frequency is set");
    return clocking;
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
    if (!pll)
        return false; // the rate is out of reach of this reference clock
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
