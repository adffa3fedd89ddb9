#include "baseprotocol.h"

namespace IPSERDESIP {

BaseProtocol::BaseProtocol() = default;
BaseProtocol::~BaseProtocol() = default;

} // namespace IPSERDESIP
