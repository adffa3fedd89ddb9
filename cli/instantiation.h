#pragma once

#include <config/configkeys.h>

#include <QString>

namespace CpriHost {

// The name as a Verilog identifier: unchanged when it is a legal one,
// escaped ("\name ") otherwise.
QString verilogIdentifier(const QString &name);

// Verilog text that instantiates the configured module: a wire of the
// port's width for every port, then the instance named after the core's
// file with one named connection per port.
QString instantiationTemplate(const IPCPRI::ConfigMap &record);

} // namespace CpriHost
