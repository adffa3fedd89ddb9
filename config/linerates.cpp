#include "linerates.h"

#include "configkeys.h"

namespace IPCPRI {
namespace Config {

const QVector<RateRow> &rateRows()
{
    using O = OfferedOn;
    static const QVector<RateRow> rows = {
        {0.6144, Key::Rate06144, true, O::NoDevice},
        {1.2288, Key::Rate12288, true, O::EveryGrade},
        {2.4576, Key::Rate24576, true, O::EveryGrade},
        {3.072, Key::Rate3072, true, O::EveryGrade},
        {4.9152, Key::Rate49152, true, O::EveryGrade},
        {6.144, Key::Rate6144, true, O::EveryGrade},
        {9.8304, Key::Rate98304, true, O::EveryGrade},
        {0.0, QString(), true, O::NoDevice},
        {8.11008, Key::Rate811008, true, O::EveryGrade},
        {10.1376, Key::Rate101376, true, O::TopGrade},
        {12.16512, Key::Rate1216512, true, O::TopGrade},
        {0.0, QString(), false, O::NoDevice},
    };
    return rows;
}

QString lineRateText(double gbps)
{
    return QString::number(gbps, 'f', 5) + GbpsUnit;
}

QString withoutUnit(QString lineRate)
{
    return lineRate.remove(GbpsUnit);
}

} // namespace Config
} // namespace IPCPRI

// The texts the header names, defined once.
const QString IPCPRI::Config::GbpsUnit = QStringLiteral("Gbps");
