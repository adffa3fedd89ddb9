#pragma once

#include "../hostglobal.h"

#include <QList>
#include <QObject>
#include <QString>

namespace IPSERDESIP {

class BaseProtocol;

// Root object of an IP-core plug-in: the host sets packageDir (the folder
// that holds the plug-in's descriptor and data) and asks for the protocol
// objects the package offers. The caller owns the returned objects.
class IPHOST_EXPORT ProtocolPackage : public QObject
{
    Q_OBJECT
public:
    ProtocolPackage();
    ~ProtocolPackage() override;

    virtual QList<BaseProtocol *> protocols() = 0;

    QString packageDir;
};

} // namespace IPSERDESIP

#define IPSERDESIP_ProtocolPackage_iid "com.ipgen.serdes.plugins.ProtocolPackage/1.0"
Q_DECLARE_INTERFACE(IPSERDESIP::ProtocolPackage, IPSERDESIP_ProtocolPackage_iid)
