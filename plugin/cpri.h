#pragma once

#include "../config/configkeys.h"

#include <ipserdes/baseprotocol.h>

namespace IPCPRI {

// The CPRI link core as the host's IP-core generator sees it: its
// descriptor, its dialog, its resources and its generated files.
class cpri : public IPSERDESIP::BaseProtocol
{
public:
    explicit cpri(const QString &packageDir);
    ~cpri() override;

    ConfigMap createConfig(const QString &name, const DEV::DeviceArg &device) override;
    ConfigMap editConfig(const ConfigMap &savedConfig) override;
    IPSERDESIP::Message *checkResources(const ConfigMap &record) override;
    bool generate(const ConfigMap &record, QStringList &serdesSettings, QStringList &projectFiles,
                  QStringList &synthesisOptions, QString &synthesisMessage,
                  bool runSynthesis) override;
    bool loadDescriptor() override;
    QString version() override;
    QString id() override;
    QString name() override;
    QStringList category() override;
    QString summary() override;
    bool isDeviceSupported(const DEV::DeviceArg &device) override;

    // Appends the setting lines of the configured lane, from config and targetDevice.
    void appendLaneSettings(QStringList &serdesSettings, const QString &lanePrefix,
                            const QString &quadPrefix);

    // The last configuration, and the descriptor read by loadDescriptor.
    ConfigMap configuration() const { return config; }
    QMap<QString, QVariant> descriptor() const { return ipInfo; }
    DEV::DeviceArg device() const { return targetDevice; }

private:
    void fillTargetDevice(const ConfigMap &record);
    bool writeFiles(const ConfigMap &record, const QStringList &serdesSettings);

    ConfigMap config;
    QMap<QString, QVariant> ipInfo;
    QString packageDir;
};

} // namespace IPCPRI
