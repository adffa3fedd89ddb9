#pragma once

#include <ipserdes/protocolpackage.h>

namespace IPCPRI {

// The plug-in's root object: hands the host one CPRI protocol object per
// request, read from the package directory.
class cpripackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "IPCPRI.cpripackage/1.0")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)
public:
    cpripackage();
    ~cpripackage() override;

    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};

} // namespace IPCPRI
