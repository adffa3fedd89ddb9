#include "generationnames.h"

namespace IPCPRI {
namespace Generate {

QString coreOutputDir(const QString &base)
{
    return base + QLatin1Char('/') + TempFolder + QLatin1Char('/') + CoreTypeName;
}

} // namespace Generate
} // namespace IPCPRI
