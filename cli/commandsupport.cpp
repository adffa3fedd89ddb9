#include "commandsupport.h"

#include "jsonoutput.h"
#include "pluginhost.h"
#include "recordfile.h"
#include "recordrules.h"

#include <config/configkeys.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDir>

#include <memory>

namespace CpriHost {

namespace {

// Lets the registry know what the other cores of the project hold.
bool occupyOtherCores(PluginHost &host, const QStringList &records, QString &error)
{
    for (const QString &path : records) {
        QMap<QString, QVariant> record;
        if (!RecordFile::read(path, record, error))
            return false;
        std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(record));
        IPSERDESIP::Conflict conflict;
        if (!registry()->occupy(*resources, &conflict)) {
            error = QStringLiteral("%1: %2").arg(path, conflict.message);
            return false;
        }
    }
    return true;
}

} // namespace

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

DEV::DeviceDb *devices()
{
    return Core::IdeCore::deviceDataBase();
}

int fail(const QString &message, int code)
{
    warn(message);
    return code;
}

bool findDevice(const QString &id, DEV::DeviceArg &device, QString &error)
{
    device = devices()->findDevice(id);
    if (device.isNull())
        error = QStringLiteral("unknown device \"%1\" (see: cpri-host devices)").arg(id);
    return !device.isNull();
}

bool deviceOfRecord(const QMap<QString, QVariant> &record, DEV::DeviceArg &device, QString &error)
{
    const QString &key = IPCPRI::Config::Key::TargetDevice;
    return !record.contains(key) || findDevice(record.value(key).toString(), device, error);
}

QString recordProblem(PluginHost &host, const QMap<QString, QVariant> &record)
{
    return RecordRules(*host.protocol(), host.descriptor()).problem(record);
}

bool readShared(const QString &assignment, QString &key, int &value, QString &error)
{
    bool ok = false;
    key = assignment.section(QLatin1Char('='), 0, 0);
    value = assignment.section(QLatin1Char('='), 1).toInt(&ok);
    const QString problem = ok ? IPSERDESIP::serdes::quadBiasProblem(key, value)
                               : QStringLiteral("it takes KEY=INTEGER");
    if (!problem.isEmpty())
        error = QStringLiteral("--shared %1: %2").arg(assignment, problem);
    return problem.isEmpty();
}

QString workDirectory(const Options &options)
{
    return QDir(options.workDir.isEmpty() ? QDir::currentPath() : options.workDir).absolutePath();
}

bool prepareProject(PluginHost &host, const Options &options, const DEV::DeviceArg &device,
                    QString &error)
{
    registry()->reset();
    registry()->setDevice(device);
    registry()->setWorkingDir(workDirectory(options));
    for (const QString &assignment : options.shared) {
        QString key;
        int value = 0;
        if (!readShared(assignment, key, value, error))
            return false;
        registry()->claimQuadBias(key, value, QString());
    }
    return occupyOtherCores(host, options.occupied, error);
}

bool checkJob(PluginHost &host, const Options &options, Job &job, QString &error)
{
    if (!deviceOfRecord(job.record, job.device, error)
        || !prepareProject(host, options, job.device, error))
        return false;
    const QString problem = recordProblem(host, job.record);
    if (!problem.isEmpty())
        error = QStringLiteral("%1: %2").arg(job.path, problem);
    return problem.isEmpty();
}

bool readCheckedRecord(PluginHost &host, const Options &options, Job &job, QString &error)
{
    job.path = options.arguments.value(0);
    return RecordFile::read(job.path, job.record, error) && checkJob(host, options, job, error);
}

} // namespace CpriHost
