#include "serdesfunctions.h"

#include "refclocks_p.h"

#include <QDir>
#include <QFileInfo>

namespace IPSERDESIP {

using namespace Internal;

QString FromRefOptionToRef(const QString &refDisplayName)
{
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    return clock ? clock->routingName : QString();
}

QString refsrcOptTransforSerdesName(const QString &refDisplayName)
{
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    return clock ? clock->serdesName : QString();
}

bool waitForRunSyntheSis(const DEV::DeviceArg &device, const QMap<QString, QVariant> &config,
                         const QMap<QString, QVariant> &ipInfo, const QStringList &sources,
                         const QString &coreName, QString &message, QObject *context)
{
    Q_UNUSED(config)
    Q_UNUSED(context)
    const QDir dataDir(ipInfo.value(QStringLiteral("ipcore.dir.data")).toString());
    QStringList missing;
    for (const QString &source : sources) {
        if (!QFileInfo(dataDir.filePath(source)).isFile())
            missing << source;
    }
    if (!missing.isEmpty()) {
        message = QStringLiteral("Synthesis of %1 failed: %2 not found in %3")
                      .arg(coreName, missing.join(QStringLiteral(", ")), dataDir.path());
        return false;
    }
    message = QStringLiteral("Synthesis of %1 for %2: %3 ready in %4 (no synthesis tool in this host)")
                  .arg(coreName, device.isNull() ? QStringLiteral("no device") : device.id(),
                       sources.join(QStringLiteral(", ")), dataDir.path());
    return true;
}

} // namespace IPSERDESIP
