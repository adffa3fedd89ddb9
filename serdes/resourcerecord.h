#pragma once

#include "../config/configkeys.h"

namespace IPSERDESIP {
class Message;
}

namespace IPCPRI {
namespace Serdes {

// A new record of the resources a stored configuration occupies, in the
// registry's names. The caller owns it.
IPSERDESIP::Message *resourceRecord(const QString &coreName, const ConfigMap &record);

} // namespace Serdes
} // namespace IPCPRI
