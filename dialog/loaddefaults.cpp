#include "loaddefaults.h"

#include "dialogtexts.h"
#include "../config/configkeys.h"

#include <QMap>

namespace IPCPRI {
namespace Loading {

namespace {

namespace Key = Config::Key;

const QMap<QString, QVariant> &exceptions()
{
    const QVariant empty(QString{});
    static const QMap<QString, QVariant> values = {
        // The form starts with Master checked, and a record without the key
        // leaves it so; the pair's buttons are disabled, so the record says
        // false either way.
        {Key::Master, true},
        // A record without a preset leaves its field empty; the mask shows zeros.
        {Key::EthernetPointer, empty},
        {Key::HdlcRate, empty},
        {Key::HdlcByte, empty},
        {Key::HdlcMask, empty},
        {Key::ScramblerSeed, empty},
        // A rate the line-rate field shows until the rate boxes are read.
        {Key::LineRate, Texts::LoadedLineRate},
        // No PLL named: the first one offered stays.
        {Key::PllSelection, empty},
    };
    return values;
}

} // namespace

QVariant missingValue(const QString &key)
{
    return exceptions().value(key, Config::initialValue(key));
}

} // namespace Loading
} // namespace IPCPRI
