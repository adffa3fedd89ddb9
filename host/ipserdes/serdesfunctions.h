#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace IPSERDESIP {

// The routing name of a reference clock ("Q0 REFCLK0" -> "Q0_REFCLK0",
// "Q0 REFIN" -> "Q0_REFIN", "MCLK" -> "MCLK"); empty for an unknown name.
IPHOST_EXPORT QString FromRefOptionToRef(const QString &refDisplayName);

// The SERDES name of a reference clock ("Q0 REFCLK0" -> "q0_refclk0",
// "Q0 REFIN1" -> "q0_gpio1", "MCLK" -> "mclk"); empty for an unknown name.
IPHOST_EXPORT QString refsrcOptTransforSerdesName(const QString &refDisplayName);

// Runs the host's synthesis of a core and blocks until it ends. Every
// named source must exist in the descriptor's "ipcore.dir.data" folder.
// Yosys reads them with the define files the core generated last (the
// folder of the last file IPCore::generateFile wrote), elaborates and
// synthesises the record's "module" and the message gets its netlist
// statistics (wires, wire bits, cells, cells by type). A failing run gives
// Yosys's errors and false, and so does a host without Yosys on the PATH.
IPHOST_EXPORT bool waitForRunSyntheSis(const DEV::DeviceArg &device,
                                       const QMap<QString, QVariant> &config,
                                       const QMap<QString, QVariant> &ipInfo,
                                       const QStringList &sources, const QString &coreName,
                                       QString &message, QObject *context);

} // namespace IPSERDESIP
