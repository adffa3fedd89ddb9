#include "cpripackage.h"

#include "cpri.h"

#include <memory>

namespace IPCPRI {

cpripackage::cpripackage() = default;
cpripackage::~cpripackage() = default;

QList<IPSERDESIP::BaseProtocol *> cpripackage::protocols()
{
    auto protocol = std::make_unique<cpri>(packageDir);
    if (!protocol->loadDescriptor())
        return {};
    return {protocol.release()};
}

} // namespace IPCPRI
