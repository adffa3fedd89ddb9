#pragma once

#include <QString>
#include <QStringList>

namespace IPCPRI {
namespace Serdes {

// What the project's registry allows for the clocking of one lane. The
// dialog's clocking controls and the check of stored records both ask here.

// The PLLs offered for a lane at a line rate, in the order shown: for the
// lane's quad a shared PLL that no core has set up yet, or one set up at a
// VCO that gives the rate (each once); the lane's channel PLL always, last.
// With no lane only the channel PLL is offered.
QStringList offeredPlls(const QString &laneDisplayName, double rateGbps);

// Whether another core already runs the reference clock at a frequency
// other than the text's (a text that is no number matches none).
bool refClockUsedAtOtherFrequency(const QString &refDisplayName, const QString &frequencyText);

// Whether the reference clock can be routed to the lane, receive and then
// transmit direction (transmit is not asked when receive fails).
bool refClockReachesLane(const QString &refDisplayName, const QString &laneDisplayName);

} // namespace Serdes
} // namespace IPCPRI
