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

// Runs the host's synthesis of a core and blocks until it ends. This host
// has no synthesis tool: it checks that every named source exists in the
// descriptor's "ipcore.dir.data" folder, writes what it found into
// message, and returns whether all of them are there.
IPHOST_EXPORT bool waitForRunSyntheSis(const DEV::DeviceArg &device,
                                       const QMap<QString, QVariant> &config,
                                       const QMap<QString, QVariant> &ipInfo,
                                       const QStringList &sources, const QString &coreName,
                                       QString &message, QObject *context);

} // namespace IPSERDESIP
