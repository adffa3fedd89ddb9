#pragma once

#include <QString>
#include <QVector>

namespace Guide {

// The line rates a user can choose: those some speed class offers, by
// their index in the rate list, slowest first.
QVector<int> offeredRates();

// The user clock each line rate needs under each speed class, and the
// reference clocks from which each PLL kind makes each line rate.
QString clocksSection();

} // namespace Guide
