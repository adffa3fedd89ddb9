#pragma once

#include <QString>
#include <QVector>

namespace IPSERDESIP {
namespace Internal {

// A reference-clock input of the transceivers under its three names.
struct RefClock
{
    QString displayName;   // as cores offer it, "Q0 REFCLK0"
    QString routingName;   // in routes and resource records, "Q0_REFCLK0"
    QString serdesName;    // in the registry and setting lines, "q0_refclk0"
    int quad;              // home quad; -1 for a clock that reaches every quad
    bool reachesNeighbour; // also feeds the other quad
};

const QVector<RefClock> &refClocks();
const RefClock *refClockByDisplayName(const QString &name);
const RefClock *refClockByRoutingName(const QString &name);
const RefClock *refClockBySerdesName(const QString &name);
bool reachesQuad(const RefClock &clock, int quad);

} // namespace Internal
} // namespace IPSERDESIP
