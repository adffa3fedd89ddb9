#include "generationnames.h"

namespace IPCPRI {
namespace Generate {

QString coreOutputDir(const QString &base)
{
    return base + QLatin1Char('/') + TempFolder + QLatin1Char('/') + CoreTypeName;
}

} // namespace Generate
} // namespace IPCPRI

// The texts the header names, defined once.
const QString IPCPRI::Generate::CoreTypeName = QStringLiteral("cpri");
const QString IPCPRI::Generate::TempFolder = QStringLiteral("temp");
const QString IPCPRI::Generate::TopDefineFile = QStringLiteral("top_define.vh");
const QString IPCPRI::Generate::CoreDefineFile = QStringLiteral("cpri_defines.vh");
const QString IPCPRI::Generate::SettingsFile = QStringLiteral("cpri.ini");
const QString IPCPRI::Generate::RegisterFile = QStringLiteral("cpri.csr");
const QString IPCPRI::Generate::TopLevelSource = QStringLiteral("cpri_top.v");
const QString IPCPRI::Generate::EngineSource = QStringLiteral("cpri_core_encryption.v");
const QStringList IPCPRI::Generate::CoreSources = {TopLevelSource, EngineSource};
const QString IPCPRI::Generate::CoreTopLevelSuffix = QStringLiteral(".v");
