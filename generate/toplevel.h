#pragma once

#include "../config/configkeys.h"

#include <QStringList>

namespace IPCPRI {
namespace Generate {

// The package's top level as the package ships it: the source's lines and
// then an `undef line for every define the source makes and every define
// the two define files may hold, so that nothing they define outlives the
// top level and the next core of a compilation starts afresh.
QStringList closedTopLevel(const QStringList &source);

// A core's own top level, made from the package's: the two include lines
// are replaced by the lines of the files they name, so that it reads its
// own defines whatever the include path. Empty when the package's top level
// lacks either include line.
QStringList coreTopLevel(const QStringList &packageTopLevel, const ConfigMap &record);

// Whether a file's first line is that of a core's own top level.
bool isCoreTopLevel(const QString &firstLine);

} // namespace Generate
} // namespace IPCPRI
