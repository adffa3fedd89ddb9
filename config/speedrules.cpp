#include "speedrules.h"

#include "configkeys.h"

namespace IPCPRI {
namespace Config {

SpeedState speedState(const QVector<bool> &on)
{
    SpeedState state;
    const QVector<RateRow> &rows = rateRows();
    for (int i = 0; i < rows.size(); ++i) {
        const bool enabled = !rows.at(i).reserved() && on.value(i);
        state.mask.prepend(enabled ? QLatin1Char('1') : QLatin1Char('0'));
        if (rows.at(i).inRateList)
            state.rates << (enabled ? rows.at(i).gbps : 0.0);
    }
    for (int i = 0; i < state.rates.size(); ++i) {
        if (state.rates.at(i) > state.highest) {
            state.highest = state.rates.at(i);
            state.highestIndex = i;
        }
    }
    return state;
}

bool rateOfferedAtStart(int rateIndex, const QString &grade)
{
    switch (rateRows().at(rateIndex).offeredOn) {
    case OfferedOn::EveryGrade:
        return true;
    case OfferedOn::TopGrade:
        return grade == TopGrade;
    case OfferedOn::NoDevice:
        break;
    }
    return false;
}

const QVector<int> &coded64b66bRates()
{
    static const QVector<int> rates = {Rate811008Index, Rate101376Index, Rate1216512Index};
    return rates;
}

const QVector<int> &realTimeVendorRates()
{
    static const QVector<int> rates = {Rate101376Index, Rate1216512Index};
    return rates;
}

const QVector<SpeedClass> &speedClasses()
{
    static const QVector<SpeedClass> classes = {
        {Key::SpeedSel3072,
         {Rate12288Index, Rate24576Index, Rate3072Index},
         {Rate49152Index, Rate6144Index, Rate98304Index, Rate811008Index, Rate101376Index,
          Rate1216512Index},
         {},
         {Rate1216512Index, Rate101376Index, Rate98304Index, Rate811008Index, Rate6144Index,
          Rate49152Index},
         false},
        {Key::SpeedSel6144,
         {Rate12288Index, Rate24576Index, Rate3072Index, Rate49152Index, Rate6144Index},
         {Rate98304Index, Rate811008Index, Rate101376Index, Rate1216512Index},
         {},
         {Rate1216512Index, Rate101376Index, Rate98304Index, Rate811008Index},
         false},
        {Key::SpeedSel98304,
         {Rate12288Index, Rate24576Index, Rate3072Index, Rate49152Index, Rate6144Index,
          Rate98304Index},
         {Rate811008Index, Rate101376Index, Rate1216512Index},
         {},
         {Rate1216512Index, Rate101376Index, Rate811008Index},
         true},
        {Key::SpeedSel101376,
         {Rate12288Index, Rate24576Index, Rate3072Index, Rate49152Index, Rate6144Index,
          Rate811008Index, Rate98304Index},
         {Rate1216512Index},
         {Rate101376Index},
         {Rate1216512Index},
         true},
        {Key::SpeedSel1216512,
         {Rate12288Index, Rate24576Index, Rate3072Index, Rate49152Index, Rate6144Index,
          Rate811008Index, Rate98304Index},
         {},
         {Rate101376Index, Rate1216512Index},
         {},
         true},
    };
    return classes;
}

} // namespace Config
} // namespace IPCPRI

// The texts the header names, defined once.
const QString IPCPRI::Config::TopGrade = QStringLiteral("C2/I1");
