#pragma once

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// The transceiver resources one core instance occupies, as a core reports
// them for a stored configuration. Lanes, PLLs and reference clocks are
// named as the registry names them (lane keys, PLL keys, routing names).
class Message
{
public:
    Message() = default;

    QString coreName;
    QString instanceName;
    QString fileValue;
    QString moduleValue;
    QStringList pllList;
    QStringList refClockList;
    QStringList refFreqList;
    QStringList laneList;
    QStringList lineRates;
    QStringList auxList1;
    QStringList auxList2;
};

} // namespace IPSERDESIP
