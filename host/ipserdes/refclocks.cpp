#include "refclocks_p.h"

#include <algorithm>

namespace IPSERDESIP {
namespace Internal {

namespace {

QVector<RefClock> buildRefClocks()
{
    QVector<RefClock> clocks;
    // Dedicated clock pins, four per quad; pins 0 and 1 are shared with
    // the neighbouring quad.
    for (int quad = 0; quad < 2; ++quad) {
        for (int pin = 0; pin < 4; ++pin) {
            clocks.append({QStringLiteral("Q%1 REFCLK%2").arg(quad).arg(pin),
                           QStringLiteral("Q%1_REFCLK%2").arg(quad).arg(pin),
                           QStringLiteral("q%1_refclk%2").arg(quad).arg(pin), quad, pin < 2});
        }
    }
    // General-purpose inputs of quad 0.
    for (int pin = 0; pin < 4; ++pin) {
        clocks.append({QStringLiteral("Q0 REFIN%1").arg(pin), QStringLiteral("Q0_REFIN%1").arg(pin),
                       QStringLiteral("q0_gpio%1").arg(pin), 0, false});
    }
    clocks.append({QStringLiteral("Q0 REFIN"), QStringLiteral("Q0_REFIN"),
                   QStringLiteral("q0_gpio"), 0, false});
    // The main clock reaches every quad.
    clocks.append(
        {QStringLiteral("MCLK"), QStringLiteral("MCLK"), QStringLiteral("mclk"), -1, false});
    return clocks;
}

template<typename Field>
const RefClock *findBy(Field field, const QString &name)
{
    const QVector<RefClock> &clocks = refClocks();
    const auto it = std::find_if(clocks.cbegin(), clocks.cend(),
                                 [&](const RefClock &c) { return c.*field == name; });
    return it == clocks.cend() ? nullptr : &*it;
}

} // namespace

const QVector<RefClock> &refClocks()
{
    static const QVector<RefClock> clocks = buildRefClocks();
    return clocks;
}

const RefClock *refClockByDisplayName(const QString &name)
{
    return findBy(&RefClock::displayName, name);
}

const RefClock *refClockByRoutingName(const QString &name)
{
    return findBy(&RefClock::routingName, name);
}

const RefClock *refClockBySerdesName(const QString &name)
{
    return findBy(&RefClock::serdesName, name);
}

bool reachesQuad(const RefClock &clock, int quad)
{
    return clock.quad < 0 || clock.quad == quad || clock.reachesNeighbour;
}

} // namespace Internal
} // namespace IPSERDESIP
