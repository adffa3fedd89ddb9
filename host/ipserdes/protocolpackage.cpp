#include "protocolpackage.h"

namespace IPSERDESIP {

ProtocolPackage::ProtocolPackage() = default;
ProtocolPackage::~ProtocolPackage() = default;

} // namespace IPSERDESIP
