#include "pllmodel_p.h"

#include <algorithm>
#include <cmath>

namespace IPSERDESIP {
namespace Internal {

namespace {

constexpr double relativeTolerance = 1e-9;

bool nearlyEqual(double a, double b)
{
    return std::fabs(a - b) <= relativeTolerance * std::max(std::fabs(a), std::fabs(b));
}

QVector<int> range(int first, int last)
{
    QVector<int> values;
    for (int v = first; v <= last; ++v)
        values << v;
    return values;
}

QVector<PllType> buildPllTypes()
{
    // The channel PLL multiplies with two cascaded dividers (4 or 5, then 1 to 5).
    QVector<int> cpllN;
    for (int n1 : {4, 5}) {
        for (int n2 = 1; n2 <= 5; ++n2)
            cpllN << n1 * n2;
    }
    return {
        {QStringLiteral("qpll0"), 9.8, 16.375, range(16, 200), range(1, 4), {1, 2, 4, 8, 16}, 1.0},
        {QStringLiteral("qpll1"), 8.0, 13.0, range(16, 200), range(1, 4), {1, 2, 4, 8, 16}, 1.0},
        {QStringLiteral("cpll"), 2.0, 6.25, cpllN, {1, 2}, {1, 2, 4, 8}, 2.0},
    };
}

} // namespace

const QVector<PllType> &pllTypes()
{
    static const QVector<PllType> types = buildPllTypes();
    return types;
}

const PllType *pllType(const QString &name)
{
    const QString wanted = name.toLower();
    for (const PllType &type : pllTypes()) {
        if (type.name == wanted)
            return &type;
    }
    return nullptr;
}

const QVector<double> &commonReferencesMHz()
{
    static const QVector<double> frequencies = {61.44, 76.8,   100.0,  122.88, 125.0,
                                                153.6, 156.25, 184.32, 200.0,  245.76,
                                                250.0, 307.2,  312.5,  368.64, 491.52};
    return frequencies;
}

std::optional<double> vcoForRate(const PllType &type, double rateGbps)
{
    if (!(rateGbps > 0.0))
        return std::nullopt;
    for (int d : type.d) {
        const double vco = rateGbps * d / type.rateFactor;
        if (vco >= type.vcoMinGHz && vco <= type.vcoMaxGHz)
            return vco;
    }
    return std::nullopt;
}

bool producesRate(const PllType &type, double vcoGHz, double rateGbps)
{
    for (int d : type.d) {
        if (nearlyEqual(type.rateFactor * vcoGHz / d, rateGbps))
            return true;
    }
    return false;
}

std::optional<PllSetting> findSetting(const PllType &type, double refMHz, double rateGbps)
{
    if (!(refMHz > 0.0) || !(rateGbps > 0.0))
        return std::nullopt;
    for (int d : type.d) {
        const double vco = rateGbps * d / type.rateFactor;
        if (vco < type.vcoMinGHz || vco > type.vcoMaxGHz)
            continue;
        for (int m : type.m) {
            const double n = vco * 1000.0 * m / refMHz;
            const int rounded = int(std::lround(n));
            if (nearlyEqual(n, rounded) && type.n.contains(rounded))
                return PllSetting{m, rounded, d, vco};
        }
    }
    return std::nullopt;
}

} // namespace Internal
} // namespace IPSERDESIP
