#pragma once

#include <QString>

namespace IPCPRI {
namespace Descriptor {

// Keys of the core descriptor ("cpri.ipspec") and of the map read from it.
extern const QString Id;
extern const QString Name;
extern const QString Version;
extern const QString Category;
extern const QString Summary;
extern const QString Help;
extern const QString Label;
extern const QString Module;
extern const QString Target;
extern const QString SupportedDevices;
extern const QString UnsupportedDevices;
extern const QString DataDir;

// The descriptor file in the package directory and the package's data folder.
extern const QString FileName;
extern const QString DataFolder;

} // namespace Descriptor
} // namespace IPCPRI
