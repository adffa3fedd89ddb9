#include "clocking.h"

#include "resourcenames.h"

#include <ipserdes/refsource.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

namespace IPCPRI {
namespace Serdes {

namespace {

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

} // namespace

QStringList offeredPlls(const QString &laneDisplayName, double rateGbps)
{
    // Both quads' running PLLs are asked first, whichever quad the lane is on.
    const QStringList producing[] = {registry()->checkPLLforQuad0(rateGbps),
                                     registry()->checkPLLforQuad1(rateGbps)};
    QStringList plls;
    if (const QuadBias *quad = quadOfLane(laneDisplayName)) {
        const int index = int(quad - quadBiases().constData());
        for (const QString &pll : {Qpll0, Qpll1}) {
            if (!registry()->checkPllEnable(qpllKey(quad->quadName, pll)))
                plls << pll;
            if (producing[index].contains(pll) && !plls.contains(pll))
                plls << pll;
        }
    }
    return plls << Cpll;
}

bool refClockUsedAtOtherFrequency(const QString &refDisplayName, const QString &frequencyText)
{
    const IPSERDESIP::REF_SOURCE *used =
        registry()->FormStringToREFSPtr(IPSERDESIP::refsrcOptTransforSerdesName(refDisplayName));
    // A text that is no number reads as 0.0; a frequency that is no number
    // (NaN) never equals anything.
    const double frequency = frequencyText.toDouble();
    return used && used->userCount > 0 && !(frequency == used->frequency);
}

bool refClockReachesLane(const QString &refDisplayName, const QString &laneDisplayName)
{
    const QString source = IPSERDESIP::refsrcOptTransforSerdesName(refDisplayName);
    return registry()->checkAccess(source, laneAccessName(laneDisplayName, true))
           && registry()->checkAccess(source, laneAccessName(laneDisplayName, false));
}

} // namespace Serdes
} // namespace IPCPRI
