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

// The core's fixed sources, named to the synthesis step in this order.
inline const QStringList CoreSources = {QStringLiteral("cpri_top.v"),
                                        QStringLiteral("cpri_core_encryption.v")};

// base + "/temp/cpri": where a core's generated files go.
QString coreOutputDir(const QString &base);

} // namespace Generate
} // namespace IPCPRI
