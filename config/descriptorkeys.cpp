#include "descriptorkeys.h"

// The texts the header names, defined once.
const QString IPCPRI::Descriptor::Id = QStringLiteral("ipcore.id");
const QString IPCPRI::Descriptor::Name = QStringLiteral("ipcore.name");
const QString IPCPRI::Descriptor::Version = QStringLiteral("ipcore.version");
const QString IPCPRI::Descriptor::Category = QStringLiteral("ipcore.category");
const QString IPCPRI::Descriptor::Summary = QStringLiteral("ipcore.doc.summary");
const QString IPCPRI::Descriptor::Help = QStringLiteral("ipcore.doc.help");
const QString IPCPRI::Descriptor::Label = QStringLiteral("ipcore.label");
const QString IPCPRI::Descriptor::Module = QStringLiteral("ipcore.module");
const QString IPCPRI::Descriptor::Target = QStringLiteral("ipcore.target");
const QString IPCPRI::Descriptor::SupportedDevices = QStringLiteral("ipcore.device.supported");
const QString IPCPRI::Descriptor::UnsupportedDevices = QStringLiteral("ipcore.device.unsupported");
const QString IPCPRI::Descriptor::DataDir = QStringLiteral("ipcore.dir.data");
const QString IPCPRI::Descriptor::FileName = QStringLiteral("cpri.ipspec");
const QString IPCPRI::Descriptor::DataFolder = QStringLiteral("data");
