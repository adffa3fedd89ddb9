// The commands that read: the core's descriptor, guide and devices, and
// what a record occupies, its ports and its instantiation template.

#include "commands.h"

#include "commandsupport.h"
#include "instantiation.h"
#include "jsonoutput.h"
#include "pluginhost.h"
#include "recordfile.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <dialog/coreports.h>

#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/message.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTextStream>

#include <memory>

namespace CpriHost {

namespace {

QJsonObject resourcesToJson(const IPSERDESIP::Message &m)
{
    return QJsonObject{
        {QStringLiteral("coreName"), m.coreName},
        {QStringLiteral("instanceName"), m.instanceName},
        {QStringLiteral("fileValue"), m.fileValue},
        {QStringLiteral("moduleValue"), m.moduleValue},
        {QStringLiteral("pllList"), toArray(m.pllList)},
        {QStringLiteral("refClockList"), toArray(m.refClockList)},
        {QStringLiteral("refFreqList"), toArray(m.refFreqList)},
        {QStringLiteral("laneList"), toArray(m.laneList)},
        {QStringLiteral("lineRates"), toArray(m.lineRates)},
        {QStringLiteral("auxList1"), toArray(m.auxList1)},
        {QStringLiteral("auxList2"), toArray(m.auxList2)},
    };
}

QMap<QString, QVariant> descriptor(const PluginHost &host)
{
    return IPCore::processIPInfoSpec(host.packageDir() + QLatin1Char('/')
                                     + IPCPRI::Descriptor::FileName);
}

// A template's wires are named prefix + port: printable characters, no blank.
bool prefixAllowed(const QString &prefix)
{
    for (QChar c : prefix) {
        if (c.unicode() <= ' ' || c.unicode() > '~')
            return false;
    }
    return true;
}

} // namespace

int runInfo(PluginHost &host)
{
    IPSERDESIP::BaseProtocol *protocol = host.protocol();
    print(QJsonDocument(QJsonObject{
        {QStringLiteral("id"), protocol->id()},
        {QStringLiteral("name"), protocol->name()},
        {QStringLiteral("version"), protocol->version()},
        {QStringLiteral("category"), toArray(protocol->category())},
        {QStringLiteral("summary"), protocol->summary()},
        {QStringLiteral("packageDir"), host.packageDir()},
        {QStringLiteral("descriptor"), QJsonObject::fromVariantMap(descriptor(host))},
    }));
    return Success;
}

int runGuide(PluginHost &host)
{
    const QString help = descriptor(host).value(IPCPRI::Descriptor::Help).toString();
    const QString path = QDir(host.packageDir()).filePath(help);
    if (help.isEmpty() || !QFileInfo(path).isFile())
        return fail(QStringLiteral("the user guide %1 is missing").arg(path), Failed);
    QTextStream(stdout) << QDir::cleanPath(path) << '\n';
    return Success;
}

int runDevices(PluginHost &host)
{
    QJsonArray list;
    for (const DEV::DeviceArg &device : devices()->devices()) {
        list.append(QJsonObject{
            {QStringLiteral("id"), device.id()},
            {QStringLiteral("part"), device.device()},
            {QStringLiteral("grade"), device.condition()},
            {QStringLiteral("lanes"), toArray(device.lanes())},
            {QStringLiteral("supported"), host.protocol()->isDeviceSupported(device)},
        });
    }
    print(QJsonDocument(list));
    return Success;
}

int runResources(PluginHost &host, const Options &options)
{
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(job.record));
    print(QJsonDocument(resourcesToJson(*resources)));
    return Success;
}

int runPorts(PluginHost &host, const Options &options)
{
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    QJsonArray ports;
    for (const IPCPRI::CorePort &port : IPCPRI::corePorts(job.record)) {
        const bool output = port.direction == IPCPRI::CorePort::Output;
        const QString direction = output ? QStringLiteral("output") : QStringLiteral("input");
        ports.append(QJsonObject{
            {QStringLiteral("name"), port.name},
            {QStringLiteral("direction"), direction},
            {QStringLiteral("width"), port.width},
        });
    }
    print(QJsonDocument(ports));
    return Success;
}

int runTemplate(PluginHost &host, const Options &options)
{
    if (!prefixAllowed(options.prefix))
        return fail(QStringLiteral("--prefix \"%1\" must be printable characters without "
                                   "blanks")
                        .arg(options.prefix));
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    const QString text = instantiationTemplate(
        job.record, options.prefixGiven ? options.prefix : defaultWirePrefix(job.record));
    if (options.outFile.isEmpty()) {
        QTextStream(stdout) << text;
        return Success;
    }
    QSaveFile file(options.outFile);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        return fail(QStringLiteral("cannot write %1: %2").arg(options.outFile, file.errorString()),
                    Failed);
    return Success;
}

} // namespace CpriHost
