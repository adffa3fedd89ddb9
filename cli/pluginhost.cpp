#include "pluginhost.h"

#include <config/descriptorkeys.h>

#include <ipcore/ipcorefunctions.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/protocolpackage.h>

#include <QCoreApplication>
#include <QFileInfo>

namespace CpriHost {

PluginHost::PluginHost(const QString &pluginPath) : m_loader(pluginPath), m_path(pluginPath) {}

PluginHost::~PluginHost()
{
    // The protocol object's code lives in the plug-in: delete it first.
    m_protocol.reset();
}

bool PluginHost::load()
{
    QObject *root = m_loader.instance();
    if (!root) {
        m_error = QStringLiteral("cannot load plug-in %1: %2").arg(m_path, m_loader.errorString());
        return false;
    }
    auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(root);
    if (!package) {
        m_error = QStringLiteral("%1 is no protocol package").arg(m_loader.fileName());
        return false;
    }
    m_packageDir = QFileInfo(m_loader.fileName()).absolutePath();
    m_descriptor =
        IPCore::processIPInfoSpec(m_packageDir + QLatin1Char('/') + IPCPRI::Descriptor::FileName);
    package->packageDir = m_packageDir;
    const QList<IPSERDESIP::BaseProtocol *> protocols = package->protocols();
    if (protocols.isEmpty()) {
        m_error =
            QStringLiteral("the package in %1 offers no protocol (is its descriptor readable?)")
                .arg(m_packageDir);
        return false;
    }
    m_protocol.reset(protocols.first());
    for (int i = 1; i < protocols.size(); ++i)
        delete protocols.at(i);
    return true;
}

QString PluginHost::defaultPluginPath()
{
    return QCoreApplication::applicationDirPath()
           + QStringLiteral("/../lib/ipcores/cpri/libcpri.so");
}

} // namespace CpriHost
