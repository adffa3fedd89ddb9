#pragma once

#include "commandline.h"

#include <dev/devicearg.h>

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace DEV {
class DeviceDb;
}
namespace IPSERDESIP {
class serdes;
}

namespace CpriHost {

class PluginHost;

// What the commands share: the host's singletons, and the checks every
// command makes before it writes anything.

IPSERDESIP::serdes *registry();
DEV::DeviceDb *devices();

// Writes one line to standard error and returns code.
int fail(const QString &message, int code = BadInput);

// The device of that identifier; false with the reason when there is none.
bool findDevice(const QString &id, DEV::DeviceArg &device, QString &error);

// The device a record names; a record without one keeps device as it is.
bool deviceOfRecord(const QMap<QString, QVariant> &record, DEV::DeviceArg &device, QString &error);

// Why a record may not be generated in the project the registry holds: the
// core's dialog, opened on it, would change or refuse it. Empty when it
// may. Every record check goes through it.
QString recordProblem(PluginHost &host, const QMap<QString, QVariant> &record);

// A shared value as the command line gives it, KEY=INTEGER: a quad's bias
// as the dialog's bias box offers it. False with the reason when it is not.
bool readShared(const QString &assignment, QString &key, int &value, QString &error);

// The working directory: --workdir, or the current folder.
QString workDirectory(const Options &options);

// A registry for one core of a project: the device, the working directory,
// the shared values and the other cores the options name.
bool prepareProject(PluginHost &host, const Options &options, const DEV::DeviceArg &device,
                    QString &error);

// One record of a command.
struct Job
{
    QString path;
    QMap<QString, QVariant> record;
    DEV::DeviceArg device;
    QJsonObject result;
};

// A record is checked on its device, against the project the options describe.
bool checkJob(PluginHost &host, const Options &options, Job &job, QString &error);
// The one record of a command, read and checked as generation checks it.
bool readCheckedRecord(PluginHost &host, const Options &options, Job &job, QString &error);

} // namespace CpriHost
