#pragma once

#include <QString>
#include <QVector>

namespace IPCPRI {
namespace Config {

// Positions in the rate list. The list has a reserved place after
// 9.8304 Gbps, so 8.11008 Gbps follows it at index 8.
enum RateIndex {
    Rate06144Index = 0,
    Rate12288Index = 1,
    Rate24576Index = 2,
    Rate3072Index = 3,
    Rate49152Index = 4,
    Rate6144Index = 5,
    Rate98304Index = 6,
    ReservedRateIndex = 7,
    Rate811008Index = 8,
    Rate101376Index = 9,
    Rate1216512Index = 10,
    NoRateIndex = -1,
};

// Which devices offer a rate's check box when a dialog opens.
enum class OfferedOn { NoDevice, EveryGrade, TopGrade };

// One row of the rate table. A reserved row has no key and rate 0.0.
struct RateRow
{
    double gbps;
    QString key;     // record key of the rate's check box
    bool inRateList; // false only for the last reserved row, which is in the mask alone
    OfferedOn offeredOn;

    bool reserved() const { return key.isEmpty(); }
};

// The twelve rows in list order; row i is mask bit i, counted from the right.
const QVector<RateRow> &rateRows();

extern const QString GbpsUnit;

// "9.83040Gbps": the rate with five decimals and the unit.
QString lineRateText(double gbps);
// The text with every "Gbps" removed: "10.13760Gbps" -> "10.13760".
QString withoutUnit(QString lineRate);

} // namespace Config
} // namespace IPCPRI
