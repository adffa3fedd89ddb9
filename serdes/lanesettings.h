#pragma once

#include "../config/configkeys.h"

#include <QString>
#include <QStringList>

namespace IPCPRI {
namespace Serdes {

// What the setting lines of one lane are made of. Texts are taken as the
// dialog shows them or the record stores them; the builder lower-cases
// the PLL and the modes and drops the unit of the line rate.
struct LaneSettingsInput
{
    QString pll;             // "QPLL0", "QPLL1", "CPLL"
    QString loopback;        // "OFF", "LB_NES", ...
    int rateIndex = 0;       // index of the highest enabled rate, -1 for none
    QString placement64b66b; // "SerDes" or "Fabric"
    QString lineRate;        // "9.83040Gbps"
    QString differentialSwing;
    QString ffeMode;
    int ffeCm = 0;
    int ffeC1 = 0;
    QString ffeC0;
    QString sdThreshold;
    QString equalizationMode;
    int att = 0;
    int boost = 0;
    bool inKnownFamily = false; // the part belongs to one of the two device families
};

// A line coding: how many data bits travel in how many line bits.
struct LineCoding
{
    QString name; // "8B/10B", "64B/66B"
    int dataBits;
    int lineBits;
};

// The coding of the rate at a rate index: 8B/10B up to 9.8304 Gbps, 64B/66B
// for the rates after it in the list.
const LineCoding &lineCoding(int rateIndex);

// The inputs as generation reads them from a stored record.
LaneSettingsInput laneInputFromRecord(const ConfigMap &record, const QString &partName);

// Appends the lane's setting lines (23, 24 or 25 of them) in their fixed order.
void appendLaneSettings(QStringList &settings, const QString &lanePrefix, const QString &quadPrefix,
                        const LaneSettingsInput &input);

} // namespace Serdes
} // namespace IPCPRI
