#pragma once

#include <QString>
#include <QStringList>

namespace IPCPRI {
namespace Generate {

// The core's type name: its folder under "temp", its synthesis name and
// the value of its protocol option.
inline const QString CoreTypeName = QStringLiteral("cpri");
inline const QString TempFolder = QStringLiteral("temp");

inline const QString TopDefineFile = QStringLiteral("top_define.vh");
inline const QString CoreDefineFile = QStringLiteral("cpri_defines.vh");
inline const QString SettingsFile = QStringLiteral("cpri.ini");
inline const QString RegisterFile = QStringLiteral("cpri.csr");

// The core's fixed sources in the package's data folder: the top level,
// which reads the define files, and the engine all cores share. They are
// named to the synthesis step in this order.
inline const QString TopLevelSource = QStringLiteral("cpri_top.v");
inline const QString EngineSource = QStringLiteral("cpri_core_encryption.v");
inline const QStringList CoreSources = {TopLevelSource, EngineSource};

// A core's own top level, beside its define files: its module name + ".v".
inline const QString CoreTopLevelSuffix = QStringLiteral(".v");

// base + "/temp/cpri": where a core's generated files go.
QString coreOutputDir(const QString &base);

} // namespace Generate
} // namespace IPCPRI
