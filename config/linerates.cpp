#include "linerates.h"

#include "configkeys.h"

namespace IPCPRI {
namespace Config {

const QVector<RateRow> &rateRows()
{
    static const QVector<RateRow> rows = {
        {0.6144, Key::Rate06144, true},   {1.2288, Key::Rate12288, true},
        {2.4576, Key::Rate24576, true},   {3.072, Key::Rate3072, true},
        {4.9152, Key::Rate49152, true},   {6.144, Key::Rate6144, true},
        {9.8304, Key::Rate98304, true},   {0.0, QString(), true},
        {8.11008, Key::Rate811008, true}, {10.1376, Key::Rate101376, true},
        {12.16512, Key::Rate1216512, true}, {0.0, QString(), false},
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
