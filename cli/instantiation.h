#pragma once

#include <config/configkeys.h>

#include <QString>
#include <QStringList>

namespace CpriHost {

// The name as a Verilog identifier: unchanged when it is a legal one,
// escaped ("\name ") otherwise.
QString verilogIdentifier(const QString &name);

// The prefix of a template's wires unless the user names one: the core's
// file name and "_", so that the templates of a project's cores can share
// one module.
QString defaultWirePrefix(const IPCPRI::ConfigMap &record);

// Verilog text that instantiates the configured module: a wire of the
// port's width named prefix + port name for every port, then the instance
// named after the core's file with one named connection per port.
QString instantiationTemplate(const IPCPRI::ConfigMap &record, const QString &prefix);

// The names that template declares in the module it is pasted into: the
// instance's, then every wire's.
QStringList templateNames(const IPCPRI::ConfigMap &record, const QString &prefix);

} // namespace CpriHost
