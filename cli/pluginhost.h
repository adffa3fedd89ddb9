#pragma once

#include <QMap>
#include <QPluginLoader>
#include <QVariant>
#include <QString>

#include <memory>

namespace IPSERDESIP {
class BaseProtocol;
}

namespace CpriHost {

// Loads an IP-core plug-in the way the IP-core generator does: through
// Qt's plug-in loader, cast to the protocol-package interface, with the
// plug-in's folder as package directory.
class PluginHost
{
public:
    explicit PluginHost(const QString &pluginPath);
    ~PluginHost();

    // False with errorString() set when the plug-in cannot be used.
    bool load();
    QString errorString() const { return m_error; }
    QString packageDir() const { return m_packageDir; }
    // The core's descriptor as the package folder holds it.
    QMap<QString, QVariant> descriptor() const { return m_descriptor; }
    IPSERDESIP::BaseProtocol *protocol() const { return m_protocol.get(); }

    // The plug-in path used when none is given: beside this program's
    // installation, in lib/ipcores/cpri.
    static QString defaultPluginPath();

private:
    QPluginLoader m_loader;
    QString m_path; // as given: the loader knows no file that is not there
    QString m_packageDir;
    QString m_error;
    QMap<QString, QVariant> m_descriptor;
    std::unique_ptr<IPSERDESIP::BaseProtocol> m_protocol;
};

} // namespace CpriHost
