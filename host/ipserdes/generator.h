#pragma once

#include "../hostglobal.h"

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// Turns a transceiver settings list into the register file of the lane
// ("*.csr"). It reads the lane's PLL choice ("<lane>_pll_sel"), line rate
// ("<lane>_tx_rate", Gbps) and the reference-clock frequency line
// ("*_freq", MHz), and finds PLL dividers that produce the rate.
//
// generate() is false, with the reasons listed by getErrStringList, when
// the list is malformed, when the file cannot be written, or when no
// divider setting produces the rate: then the lines name the PLL, its VCO
// range and the VCO the rate would need, the PLL kinds that make the rate
// from that reference clock, and the common reference clocks from which
// the chosen PLL would make it.
class IPHOST_EXPORT generator
{
public:
    generator();
    virtual ~generator();

    bool generate(const QStringList &settings, const QString &csrPath,
                  const QStringList &extraSettings);
    QStringList getErrStringList() const;

    // The problems generate() finds in a settings list before it searches
    // for dividers, one message each; none for a list it can work on. Every
    // line must be a setting name of lower-case letters, digits and "_",
    // one blank and a value; the lane's PLL must be known, and the line rate
    // and reference frequency must be finite numbers, the frequency above 0.
    static QStringList checkSettings(const QStringList &settings);

private:
    QStringList m_errors;
};

} // namespace IPSERDESIP
