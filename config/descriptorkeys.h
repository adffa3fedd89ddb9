#pragma once

#include <QString>

namespace IPCPRI {
namespace Descriptor {

// Keys of the core descriptor ("cpri.ipspec") and of the map read from it.
inline const QString Id = QStringLiteral("ipcore.id");
inline const QString Name = QStringLiteral("ipcore.name");
inline const QString Version = QStringLiteral("ipcore.version");
inline const QString Category = QStringLiteral("ipcore.category");
inline const QString Summary = QStringLiteral("ipcore.doc.summary");
inline const QString Help = QStringLiteral("ipcore.doc.help");
inline const QString Label = QStringLiteral("ipcore.label");
inline const QString Module = QStringLiteral("ipcore.module");
inline const QString Target = QStringLiteral("ipcore.target");
inline const QString SupportedDevices = QStringLiteral("ipcore.device.supported");
inline const QString UnsupportedDevices = QStringLiteral("ipcore.device.unsupported");
inline const QString DataDir = QStringLiteral("ipcore.dir.data");

// The descriptor file in the package directory and the package's data folder.
inline const QString FileName = QStringLiteral("cpri.ipspec");
inline const QString DataFolder = QStringLiteral("data");

} // namespace Descriptor
} // namespace IPCPRI
