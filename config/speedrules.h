#pragma once

#include "linerates.h"

#include <QList>
#include <QString>
#include <QVector>

namespace IPCPRI {
namespace Config {

// The rates the enabled-and-checked rate boxes give.
struct SpeedState
{
    QList<double> rates; // the rate list: a rate, or 0.0 where it is not enabled
    QString mask;        // "0"/"1" per row, row 0 rightmost
    int highestIndex = NoRateIndex;
    double highest = 0.0;
};

// on[i] tells whether the rate box of rate row i is enabled and checked
// (reserved rows are never on).
SpeedState speedState(const QVector<bool> &on);

// What choosing a speed class does to the rate boxes, by rate index.
struct SpeedClass
{
    QString key;                   // record key of the class box
    QVector<int> enable;           // rates the class offers on every grade
    QVector<int> disable;          // rates it withdraws
    QVector<int> enableOnTopGrade; // rates it offers only on the top grade
    QVector<int> moveCheckFrom;    // a check on one of these moves to 1.2288 Gbps
    bool disableBeforeMove;        // the check moves after the withdrawal
};

// The five classes, in the order the dialog examines their boxes.
const QVector<SpeedClass> &speedClasses();

// The grade text of devices that run the two highest rates.
extern const QString TopGrade;

// Whether the box of a rate row is enabled when a dialog opens on a device
// of the grade, before any speed class is chosen.
bool rateOfferedAtStart(int rateIndex, const QString &grade);

// The rates coded 64B/66B: checking one offers the choice of where the
// coding runs, on the devices of the two families.
const QVector<int> &coded64b66bRates();
// The rates that carry real-time vendor data.
const QVector<int> &realTimeVendorRates();

// The rate a class change moves a withdrawn check to.
inline constexpr int FallbackRateIndex = Rate12288Index;

} // namespace Config
} // namespace IPCPRI
