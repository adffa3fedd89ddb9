#pragma once

#include "../config/configkeys.h"

#include <QStringList>

namespace IPCPRI {
namespace Generate {

// The synthesis option lines of a core, each "-<module><option> <value>".
QStringList synthesisOptions(const ConfigMap &record);

// A stored record's settings lines as generation starts its list: the
// lane's own lines (none for a lane outside the table), then the reference
// clock's line. The part name decides the device family.
QStringList settingLines(const ConfigMap &record, const QString &partName);

// The settings lines generation adds after the lane's own lines.
// The frequency line of the configured reference clock, if it has one.
QStringList referenceClockLines(const ConfigMap &record);
// The quad bias line(s) for the configured lane, with the registry's values.
QStringList quadBiasLines(const ConfigMap &record);

} // namespace Generate
} // namespace IPCPRI
