#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace IPSERDESIP {

class Message;

// One IP core as the host's generator sees it. The order of the virtual
// operations is part of the host's binary interface.
class IPHOST_EXPORT BaseProtocol : public QObject
{
    Q_OBJECT
public:
    BaseProtocol();
    ~BaseProtocol() override;

    // Runs the core's dialog for a new instance; an empty map means cancelled.
    virtual QMap<QString, QVariant> createConfig(const QString &name,
                                                 const DEV::DeviceArg &device) = 0;
    // Runs the core's dialog on a stored configuration; empty when refused or cancelled.
    virtual QMap<QString, QVariant> editConfig(const QMap<QString, QVariant> &config) = 0;
    // The resources a stored configuration occupies; the caller owns the record.
    virtual Message *checkResources(const QMap<QString, QVariant> &config) = 0;
    // Writes the core's files; projectFiles is the host's list of project
    // files, which a core may ignore.
    virtual bool generate(const QMap<QString, QVariant> &config, QStringList &serdesSettings,
                          QStringList &projectFiles, QStringList &synthesisOptions,
                          QString &synthesisMessage, bool runSynthesis) = 0;
    virtual bool loadDescriptor() = 0;
    virtual QString version() = 0;
    virtual QString id() = 0;
    virtual QString name() = 0;
    virtual QStringList category() = 0;
    virtual QString summary() = 0;
    virtual bool isDeviceSupported(const DEV::DeviceArg &device) = 0;

protected:
    DEV::DeviceArg targetDevice;
};

} // namespace IPSERDESIP
