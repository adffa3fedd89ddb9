#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace IPSERDESIP {
namespace Internal {

// What one kind of transceiver PLL can do: its VCO range, its feedback (N),
// reference (M) and output (D) dividers. The line rate it produces is
// rateFactor * VCO / D; the VCO runs at reference * N / M.
struct PllType
{
    QString name; // "qpll0", "qpll1", "cpll"
    double vcoMinGHz;
    double vcoMaxGHz;
    QVector<int> n;
    QVector<int> m;
    QVector<int> d;
    double rateFactor;
};

struct PllSetting
{
    int m = 0;
    int n = 0;
    int d = 0;
    double vcoGHz = 0.0;
};

// The PLL kinds of a quad and its lanes: "qpll0", "qpll1", "cpll".
const QVector<PllType> &pllTypes();
// By setting-line name ("qpll0") or by the last part of a PLL key ("QPLL0").
const PllType *pllType(const QString &name);

// Reference clock frequencies in MHz that boards commonly carry for the
// transceivers, lowest first: what the generator suggests when a reference
// cannot make a line rate.
const QVector<double> &commonReferencesMHz();

// The VCO a PLL would run at to produce the rate, if it can at all.
std::optional<double> vcoForRate(const PllType &type, double rateGbps);
// Whether a PLL already running at vcoGHz produces the rate with some D.
bool producesRate(const PllType &type, double vcoGHz, double rateGbps);
// Divider values that produce the rate from the reference clock.
std::optional<PllSetting> findSetting(const PllType &type, double refMHz, double rateGbps);

} // namespace Internal
} // namespace IPSERDESIP
