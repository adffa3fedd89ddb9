// cpri-host project: several cores placed on one device in order, as the
// project of the design environment holds them.

#include "project.h"

#include "commands.h"
#include "jsonoutput.h"
#include "pluginhost.h"
#include "recordfile.h"
#include "recordrules.h"

#include <config/configkeys.h>
#include <serdes/resourcenames.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

#include <memory>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
using IPSERDESIP::Conflict;

// Keys of the project file and of its core entries.
namespace Field {
const QString Device = QStringLiteral("device");
const QString WorkDir = QStringLiteral("workdir");
const QString Shared = QStringLiteral("shared");
const QString Cores = QStringLiteral("cores");
const QString Record = QStringLiteral("record");
const QString QuadBias = QStringLiteral("quadBias");
} // namespace Field

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

QString conflictKind(Conflict::Kind kind)
{
    switch (kind) {
    case Conflict::Lane:
        return QStringLiteral("lane");
    case Conflict::Pll:
        return QStringLiteral("pll");
    case Conflict::ReferenceClock:
        return QStringLiteral("refclock");
    case Conflict::QuadBias:
        return QStringLiteral("bias");
    case Conflict::Unknown:
        return QStringLiteral("unknown");
    case Conflict::None:
        break;
    }
    return QString();
}

// The project file's folder resolves the paths the file names.
QString resolved(const QString &projectPath, const QString &path)
{
    return QDir(QFileInfo(projectPath).absolutePath()).absoluteFilePath(path);
}

bool readObject(const QString &path, QJsonObject &object, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    QJsonParseError parse;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parse);
    if (parse.error != QJsonParseError::NoError || !doc.isObject()) {
        error = QStringLiteral("%1: a project must be a JSON object").arg(path);
        return false;
    }
    object = doc.object();
    return true;
}

} // namespace

bool Project::read(PluginHost &host, const QString &path, QString &error)
{
    QJsonObject object;
    if (!readObject(path, object, error))
        return false;
    const QString deviceId = object.value(Field::Device).toString();
    device = ::Core::IdeCore::deviceDataBase()->findDevice(deviceId);
    if (device.isNull()) {
        error = QStringLiteral("%1: unknown device \"%2\" (see: cpri-host devices)").arg(path, deviceId);
        return false;
    }
    workDir = resolved(path, object.value(Field::WorkDir).toString(QStringLiteral(".")));
    const QJsonObject sharedValues = object.value(Field::Shared).toObject();
    for (auto it = sharedValues.constBegin(); it != sharedValues.constEnd(); ++it) {
        if (!it.value().isDouble() || it.value().toDouble() != it.value().toInt()) {
            error = QStringLiteral("%1: the shared value \"%2\" must be an integer").arg(path, it.key());
            return false;
        }
        shared.insert(it.key(), it.value().toInt());
    }
    const QJsonArray entries = object.value(Field::Cores).toArray();
    if (entries.isEmpty()) {
        error = QStringLiteral("%1: \"cores\" must list the project's cores").arg(path);
        return false;
    }
    prepare();
    for (int i = 0; i < entries.size(); ++i) {
        if (!readCore(host, path, entries.at(i), i + 1, error))
            return false;
    }
    return true;
}

// A core is a record file's path, a record, or an object with "record" (a
// path or a record) and the "quadBias" its dialog published for its quad.
bool Project::readCore(PluginHost &host, const QString &projectPath, const QJsonValue &entry,
                       int number, QString &error)
{
    Core core;
    core.label = QStringLiteral("core %1").arg(number);
    QJsonValue record = entry;
    if (entry.isObject() && entry.toObject().contains(Field::Record)) {
        record = entry.toObject().value(Field::Record);
        const QJsonValue bias = entry.toObject().value(Field::QuadBias);
        if (!bias.isUndefined()) {
            if (!bias.isDouble() || bias.toDouble() != bias.toInt()) {
                error = QStringLiteral("%1: the quadBias of %2 must be an integer")
                            .arg(projectPath, core.label);
                return false;
            }
            core.quadBias = bias.toInt();
        }
    }
    bool read = false;
    if (record.isString()) {
        core.source = record.toString();
        read = RecordFile::read(resolved(projectPath, core.source), core.record, error);
    } else if (record.isObject()) {
        core.source = projectPath;
        read = RecordFile::parse(QJsonDocument(record.toObject()).toJson(), core.source,
                                 core.record, error);
    } else {
        error = QStringLiteral("%1: %2 must be a record or the path of one").arg(projectPath, core.label);
    }
    if (!read)
        return false;
    // Every core works on the project's device.
    const QString id = core.record.value(Key::TargetDevice).toString();
    if (core.record.contains(Key::TargetDevice) && id != device.id()) {
        error = QStringLiteral("%1: its device \"%2\" is not the project's \"%3\"")
                    .arg(core.source, id, device.id());
        return false;
    }
    core.record.insert(Key::TargetDevice, device.id());
    const QString problem = RecordRules(*host.protocol(), host.descriptor()).problem(core.record);
    if (!problem.isEmpty()) {
        error = QStringLiteral("%1: %2").arg(core.source, problem);
        return false;
    }
    cores << core;
    return true;
}

void Project::prepare() const
{
    registry()->reset();
    registry()->setDevice(device);
    registry()->setWorkingDir(QDir(workDir).absolutePath());
    for (auto it = shared.cbegin(); it != shared.cend(); ++it)
        registry()->setData(it.key(), it.value());
}

// Places the core after the earlier ones: its folder, its resources, then
// the bias of its quad when its dialog applied it to the whole quad.
bool Project::place(PluginHost &host, Core &core, Conflict &conflict)
{
    const QString file = core.record.value(Key::File).toString();
    for (const Core &earlier : qAsConst(cores)) {
        if (&earlier == &core)
            break;
        if (earlier.placed && earlier.record.value(Key::File).toString() == file) {
            conflict = {Conflict::None, file, earlier.instance,
                        QStringLiteral("the folder \"%1\" is written by %2").arg(file, earlier.instance)};
            core.kind = QStringLiteral("file");
            return false;
        }
    }
    std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(core.record));
    core.instance = resources->instanceName;
    core.resources = QStringList{resources->laneList.value(0), resources->pllList.value(0),
                                 resources->refClockList.value(0)};
    if (!registry()->occupy(*resources, &conflict))
        return false;
    if (!claimBias(core, conflict)) {
        registry()->release(core.instance);
        return false;
    }
    return true;
}

bool Project::claimBias(const Core &core, Conflict &conflict)
{
    if (!core.record.value(Key::ChangedAllOfBias).toBool())
        return true;
    const QString lane = core.record.value(Key::ChannelSelection).toString();
    for (const IPCPRI::Serdes::QuadBias &quad : IPCPRI::Serdes::quadBiases()) {
        if (!lane.startsWith(quad.quadName))
            continue;
        if (core.quadBias)
            return registry()->claimQuadBias(quad.registryKey, *core.quadBias, core.instance, &conflict);
        if (!registry()->globalData().contains(quad.registryKey)) {
            conflict = {Conflict::QuadBias, quad.registryKey, QString(),
                        QStringLiteral("%1 is not set: give the core's quadBias or the project's "
                                       "shared %1").arg(quad.registryKey)};
            return false;
        }
    }
    return true;
}

// Which earlier core holds what the conflict names.
QString Project::heldBy(const QString &instance) const
{
    for (const Core &core : cores) {
        if (core.placed && core.instance == instance)
            return core.label;
    }
    return instance.isEmpty() ? QStringLiteral("the project's shared values") : instance;
}

QJsonObject Project::Core::report() const
{
    QJsonObject object{{QStringLiteral("core"), label},
                       {QStringLiteral("source"), source},
                       {QStringLiteral("instance"), instance},
                       {QStringLiteral("lane"), resources.value(0)},
                       {QStringLiteral("pll"), resources.value(1)},
                       {QStringLiteral("refClock"), resources.value(2)}};
    if (!refusal.isEmpty())
        object.insert(QStringLiteral("refused"), refusal);
    else
        object.insert(QStringLiteral("files"), toArray(files));
    return object;
}

int runProject(PluginHost &host, const Options &options)
{
    if (options.arguments.size() != 1) {
        warn(QStringLiteral("project needs one PROJECT.json"));
        return BadInput;
    }
    Project project;
    QString error;
    if (!project.read(host, options.arguments.first(), error)) {
        warn(error);
        return BadInput;
    }
    if (!options.workDir.isEmpty())
        project.workDir = QDir(options.workDir).absolutePath();
    project.prepare();
    int refused = 0;
    for (Project::Core &core : project.cores) {
        Conflict conflict;
        core.placed = project.place(host, core, conflict);
        if (core.placed)
            continue;
        if (core.kind.isEmpty())
            core.kind = conflictKind(conflict.kind);
        core.refusal = QJsonObject{{QStringLiteral("kind"), core.kind},
                                   {QStringLiteral("resource"), conflict.resource},
                                   {QStringLiteral("heldBy"), project.heldBy(conflict.holder)},
                                   {QStringLiteral("message"), conflict.message}};
        const QString earlier = conflict.holder.isEmpty()
                                    ? QString()
                                    : QStringLiteral(" (%1)").arg(project.heldBy(conflict.holder));
        warn(QStringLiteral("%1 (%2) refused: %3%4").arg(core.label, core.source, conflict.message, earlier));
        ++refused;
    }
    // The cores that fit are generated, each into its own set of files.
    for (Project::Core &core : project.cores) {
        if (!core.placed)
            continue;
        IPCore::OutputSet set;
        QJsonObject result;
        QString reason;
        int code = Success;
        if (!generateCore(host, core.record, false, result, reason, code) || !set.commit()) {
            if (reason.isEmpty())
                reason = IPCore::lastError();
            core.refusal = QJsonObject{{QStringLiteral("kind"), QStringLiteral("generation")},
                                       {QStringLiteral("message"), reason}};
            warn(QStringLiteral("%1 (%2) not generated: %3").arg(core.label, core.source, reason));
            ++refused;
            continue;
        }
        core.files = set.files();
    }
    QJsonArray reports;
    for (const Project::Core &core : qAsConst(project.cores))
        reports.append(core.report());
    print(QJsonDocument(QJsonObject{{QStringLiteral("device"), project.device.id()},
                                    {QStringLiteral("workdir"), QDir(project.workDir).absolutePath()},
                                    {QStringLiteral("cores"), reports},
                                    {QStringLiteral("refused"), refused}}));
    return refused ? Failed : Success;
}

} // namespace CpriHost
