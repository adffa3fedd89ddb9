#pragma once

#include "../config/configkeys.h"

#include <QStringList>

namespace IPCPRI {
namespace Generate {

// Lines of "top_define.vh": the name of the generated top module.
QStringList topDefines(const ConfigMap &record);

// Lines of "cpri_defines.vh": lane, optional ports, line rates, timing,
// Ethernet, protocol, HDLC, vendor-specific, role and PLL choices.
QStringList coreDefines(const ConfigMap &record);

// The name of every define the two files may hold ("module_name",
// "LANE_NUM", ...), each once, in file order.
QStringList defineNames();

} // namespace Generate
} // namespace IPCPRI
