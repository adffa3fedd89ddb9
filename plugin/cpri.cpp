#include "cpri.h"

#include "../config/descriptorkeys.h"
#include "../dialog/cpridlg.h"
#include "../generate/definefiles.h"
#include "../generate/generationnames.h"
#include "../generate/synthesisoptions.h"
#include "../serdes/lanesettings.h"
#include "../serdes/resourcenames.h"
#include "../serdes/resourcerecord.h"

#include <core/idecore.h>
#include <core/viewmanager.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>
#include <ipserdes/serdesfunctions.h>

namespace IPCPRI {

namespace Key = Config::Key;

cpri::cpri(const QString &packageDir) : packageDir(packageDir) {}

cpri::~cpri() = default;

ConfigMap cpri::createConfig(const QString &name, const DEV::DeviceArg &device)
{
    cpridlg dialog(ipInfo, &config, Core::ViewManager::dialogParent());
    dialog.setCreating(name, device);
    if (dialog.exec() == QDialog::Accepted)
        return config;
    return ConfigMap();
}

ConfigMap cpri::editConfig(const ConfigMap &savedConfig)
{
    cpridlg dialog(ipInfo, &config, Core::ViewManager::dialogParent());
    if (!dialog.setOpening(savedConfig))
        return ConfigMap();
    if (dialog.exec() == QDialog::Accepted)
        return config;
    return ConfigMap();
}

IPSERDESIP::Message *cpri::checkResources(const ConfigMap &record)
{
    return Serdes::resourceRecord(name(), record);
}

void cpri::fillTargetDevice(const ConfigMap &record)
{
    if (!targetDevice.isNull())
        return;
    targetDevice =
        Core::IdeCore::deviceDataBase()->findDevice(record.value(Key::TargetDevice).toString());
}

bool cpri::generate(const ConfigMap &record, QStringList &serdesSettings, QStringList &projectFiles,
                    QStringList &synthesisOptions, QString &synthesisMessage, bool runSynthesis)
{
    Q_UNUSED(projectFiles)
    fillTargetDevice(record);
    if (record.isEmpty())
        return false;
    config = record;
    serdesSettings << Generate::settingLines(config, targetDevice.device());
    IPSERDESIP::serdes::instance()->setGlobalResetEnableParam(serdesSettings);
    synthesisOptions << Generate::synthesisOptions(record);
    serdesSettings << Generate::quadBiasLines(record);
    if (!writeFiles(record, serdesSettings))
        return false;
    if (!runSynthesis)
        return true;
    return IPSERDESIP::waitForRunSyntheSis(targetDevice, record, ipInfo, Generate::CoreSources,
                                           Generate::CoreTypeName, synthesisMessage, this);
}

bool cpri::writeFiles(const ConfigMap &record, const QStringList &serdesSettings)
{
    const QStringList topDefines = Generate::topDefines(record);
    const QStringList coreDefines = Generate::coreDefines(record);
    const QString outputDir =
        Generate::coreOutputDir(IPSERDESIP::serdes::instance()->workingDir() + QLatin1Char('/')
                                + record.value(Key::File).toString());
    if (!IPCore::makeDirs(outputDir, ipInfo.value(Descriptor::Name).toString()))
        return false;
    const QList<QPair<QString, const QStringList *>> files = {
        {Generate::TopDefineFile, &topDefines},
        {Generate::CoreDefineFile, &coreDefines},
        {Generate::SettingsFile, &serdesSettings},
    };
    for (const auto &file : files) {
        if (!IPCore::generateFile(outputDir + QLatin1Char('/') + file.first, *file.second,
                                  Core::ViewManager::dialogParent(), QString()))
            return false;
    }
    return true;
}

void cpri::appendLaneSettings(QStringList &serdesSettings, const QString &lanePrefix,
                              const QString &quadPrefix)
{
    Serdes::appendLaneSettings(serdesSettings, lanePrefix, quadPrefix,
                               Serdes::laneInputFromRecord(config, targetDevice.device()));
}

bool cpri::loadDescriptor()
{
    ipInfo = IPCore::processIPInfoSpec(packageDir + QLatin1Char('/') + Descriptor::FileName);
    if (!IPCore::checkCommonInfo(ipInfo))
        return false;
    ipInfo.insert(Descriptor::DataDir, packageDir + QLatin1Char('/') + Descriptor::DataFolder);
    return true;
}

QString cpri::version()
{
    return ipInfo.value(Descriptor::Version).toString();
}

QString cpri::id()
{
    return ipInfo.value(Descriptor::Id).toString();
}

QString cpri::name()
{
    return ipInfo.value(Descriptor::Name).toString();
}

QStringList cpri::category()
{
    return ipInfo.value(Descriptor::Category).toStringList();
}

QString cpri::summary()
{
    return ipInfo.value(Descriptor::Summary).toString();
}

bool cpri::isDeviceSupported(const DEV::DeviceArg &device)
{
    const QStringList supported = ipInfo.value(Descriptor::SupportedDevices).toStringList();
    const QStringList unsupported = ipInfo.value(Descriptor::UnsupportedDevices).toStringList();
    return IPCore::isSupported(device, unsupported, supported);
}

} // namespace IPCPRI
