#pragma once

#include <QString>

namespace IPSERDESIP {

// The keys of a core's stored configuration that the host itself reads.
namespace RecordKey {
inline const QString TargetDevice = QStringLiteral("target_device");
inline const QString File = QStringLiteral("file");
inline const QString Module = QStringLiteral("module");
} // namespace RecordKey

} // namespace IPSERDESIP
