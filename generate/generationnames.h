#pragma once

#include <QString>
#include <QStringList>

namespace IPCPRI {
namespace Generate {

// The core's type name: its folder under "temp", its synthesis name and
// the value of its protocol option.
extern const QString CoreTypeName;
extern const QString TempFolder;

extern const QString TopDefineFile;
extern const QString CoreDefineFile;
extern const QString SettingsFile;
extern const QString RegisterFile;

// The core's fixed sources in the package's data folder: the top level,
// which reads the define files, and the engine all cores share. They are
// named to the synthesis step in this order.
extern const QString TopLevelSource;
extern const QString EngineSource;
extern const QStringList CoreSources;

// A core's own top level, beside its define files: its module name + ".v".
extern const QString CoreTopLevelSuffix;

// base + "/temp/cpri": where a core's generated files go.
QString coreOutputDir(const QString &base);

} // namespace Generate
} // namespace IPCPRI
