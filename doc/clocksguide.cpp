#include "clocksguide.h"

#include "guidehtml.h"

#include <config/linerates.h>
#include <config/speedrules.h>
#include <dialog/coreports.h>
#include <dialog/fieldrules.h>
#include <ipserdes/pllmodel_p.h>
#include <serdes/lanesettings.h>

#include <algorithm>
#include <map>

using namespace IPCPRI;
using namespace IPSERDESIP::Internal;

namespace Guide {

namespace {

// The port whose width is the data width of a speed class.
const QString IqDataPort = QStringLiteral("iq_tx_data_i");

double gbps(int rateIndex)
{
    return Config::rateRows().at(rateIndex).gbps;
}

int dataWidth(const Config::SpeedClass &speedClass)
{
    for (const CorePort &port : corePorts({{speedClass.key, true}})) {
        if (port.name == IqDataPort)
            return port.width;
    }
    return 0;
}

QString userClocks()
{
    QStringList header{QStringLiteral("Line rate"), QStringLiteral("Line coding")};
    for (const Config::SpeedClass &c : Config::speedClasses())
        header << c.key + QStringLiteral(" (%1 bits)").arg(dataWidth(c));
    QString rows;
    for (int rate : offeredRates()) {
        const Serdes::LineCoding &coding = Serdes::lineCoding(rate);
        QStringList cells{code(Config::lineRateText(gbps(rate))), esc(coding.name)};
        for (const Config::SpeedClass &c : Config::speedClasses()) {
            const bool offered = c.enable.contains(rate) || c.enableOnTopGrade.contains(rate);
            const double mhz =
                gbps(rate) * 1000.0 * coding.dataBits / coding.lineBits / dataWidth(c);
            cells << (offered ? number(mhz) : QString());
        }
        rows += row(cells);
    }
    return QStringLiteral(
               "<h3>User clocks</h3>\n<p>The core's data path runs on <code>tx_clk_i</code> and "
               "<code>rx_clk_i</code>, which carry the user clock: the line rate less its line "
               "coding, spread over the speed class's data width (the width of %1). In MHz: line "
               "rate in Mbit/s &times; data bits &divide; line bits of the coding &divide; data "
               "width. A class offers only the rates that have a frequency in its column.</p>\n")
               .arg(code(IqDataPort))
           + table(header, rows, QStringLiteral("user-clocks"));
}

// The references tried, within what the dialog takes.
QVector<double> triedReferences()
{
    QVector<double> tried;
    for (double mhz : commonReferencesMHz()) {
        if (mhz >= FieldRules::MinReferenceMHz && mhz <= FieldRules::MaxReferenceMHz)
            tried << mhz;
    }
    return tried;
}

// "VCO 9.8304 GHz: 122.88, 245.76 MHz" per VCO the PLL runs at, or "none".
QString referencesCell(const PllType &type, double rateGbps)
{
    std::map<double, QStringList> byVco;
    for (double mhz : triedReferences()) {
        if (const std::optional<PllSetting> setting = findSetting(type, mhz, rateGbps))
            byVco[setting->vcoGHz] << number(mhz);
    }
    QStringList lines;
    for (const auto &vco : byVco) {
        lines << QStringLiteral("VCO %1 GHz: %2 MHz")
                     .arg(number(vco.first), vco.second.join(QStringLiteral(", ")));
    }
    return lines.isEmpty() ? QStringLiteral("none") : lines.join(QStringLiteral("<br>"));
}

QString referenceClocks()
{
    QStringList header{QStringLiteral("Line rate")}, kinds, tried;
    for (const PllType &type : pllTypes()) {
        header << type.name.toUpper();
        QStringList dividers;
        for (int d : type.d)
            dividers << QString::number(d);
        kinds << QStringLiteral("%1 runs its VCO from %2 to %3 GHz and gives VCO &times; %4 "
                                "&divide; D, D one of %5")
                     .arg(code(type.name.toUpper()), number(type.vcoMinGHz), number(type.vcoMaxGHz),
                          number(type.rateFactor), dividers.join(QStringLiteral(", ")));
    }
    for (double mhz : triedReferences())
        tried << number(mhz);
    QString rows;
    for (int rate : offeredRates()) {
        QStringList cells{code(Config::lineRateText(gbps(rate)))};
        for (const PllType &type : pllTypes())
            cells << referencesCell(type, gbps(rate));
        rows += row(cells);
    }
    return QStringLiteral(
               "<h3>Reference clocks</h3>\n<p>A PLL multiplies its reference clock up to its VCO "
               "(by N &divide; M) and divides the VCO down to the line rate: %1. The table "
               "shows, for each line rate and PLL kind, which of the common reference "
               "frequencies work and the VCO each gives; choose the crystal before opening the "
               "dialog. Tried: "
               "<span id=\"tried-references\">%2</span> MHz (the dialog takes %3 to %4 MHz). "
               "PLLs that share a quad run at one VCO from one reference.</p>\n")
               .arg(kinds.join(QStringLiteral("; ")), tried.join(QStringLiteral(", ")),
                    number(FieldRules::MinReferenceMHz), number(FieldRules::MaxReferenceMHz))
           + table(header, rows, QStringLiteral("pll-references"));
}

} // namespace

QVector<int> offeredRates()
{
    QVector<int> rates;
    for (const Config::SpeedClass &c : Config::speedClasses()) {
        for (int rate : c.enable + c.enableOnTopGrade) {
            if (!rates.contains(rate))
                rates << rate;
        }
    }
    std::sort(rates.begin(), rates.end(), [](int a, int b) { return gbps(a) < gbps(b); });
    return rates;
}

QString clocksSection()
{
    return QStringLiteral("<h2>Clocks</h2>\n") + userClocks() + referenceClocks();
}

} // namespace Guide
