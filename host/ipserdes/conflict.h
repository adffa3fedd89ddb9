#pragma once

#include <QString>

namespace IPSERDESIP {

// Why the resource registry refused to place a core, a route or a shared
// value: which resource, who holds it, and one line to show the user.
struct Conflict
{
    enum Kind {
        None,
        Lane,           // the lane is held by another core or route
        Pll,            // the PLL cannot serve the lane, or runs at a VCO or from a reference
                        // that do not fit
        ReferenceClock, // the reference runs at another frequency or does not reach the lane
        QuadBias,       // the quad's shared bias is fixed to another value
        Unknown,        // no such lane, PLL, reference clock or shared value on this device
    };

    Kind kind = None;
    QString resource; // lane key, PLL key, reference routing name or shared key ("Q0_BIAS")
    QString holder;   // instance name "file:module" of the earlier holder; empty when the
                      // project's shared values fixed it or no one holds it
    QString message;  // e.g. "lane Q0_LANE1 is held by cpri_0:cpri_top_0"
};

} // namespace IPSERDESIP
