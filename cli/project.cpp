// A project of several cores on one device, read from and written back to
// its project file.

#include "project.h"

#include "commandsupport.h"
#include "instantiation.h"
#include "jsonoutput.h"
#include "pluginhost.h"
#include "recordfile.h"

#include <config/configkeys.h>
#include <serdes/resourcenames.h>

#include <ipserdes/baseprotocol.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <memory>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
using IPCPRI::Serdes::QuadBias;
using IPSERDESIP::Conflict;

namespace Field = ProjectField;

// What two cores of a project may not share: the refusal's kind, and why.
namespace NameKind {
const QString File = QStringLiteral("file");
const QString Module = QStringLiteral("module");
const QString Wire = QStringLiteral("name");
const QMap<QString, QString> &messages()
{
    static const QMap<QString, QString> texts = {
        {File, QStringLiteral("the folder \"%1\" is written by %2")},
        {Module, QStringLiteral("the module name \"%1\" is taken by %2")},
        {Wire, QStringLiteral("the name \"%1\" in its template is declared by the template of %2")},
    };
    return texts;
}
} // namespace NameKind

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

bool isInteger(const QJsonValue &value)
{
    return value.isDouble() && value.toDouble() == value.toInt();
}

// The bias of the quad a record's lane is on; null for a record without a lane.
const QuadBias *quadBiasOf(const QMap<QString, QVariant> &record)
{
    const QString lane = record.value(Key::ChannelSelection).toString();
    return IPCPRI::Serdes::laneByDisplayName(lane) ? IPCPRI::Serdes::quadOfLane(lane) : nullptr;
}

// The bias of its quad, when a record applies its bias to the whole quad.
const QuadBias *claimedQuadBias(const QMap<QString, QVariant> &record)
{
    return record.value(Key::ChangedAllOfBias).toBool() ? quadBiasOf(record) : nullptr;
}

} // namespace

bool Project::read(PluginHost &host, const QString &path, QString &error)
{
    QJsonObject object;
    if (!readObject(path, object, error))
        return false;
    m_path = path;
    m_file = object;
    if (!findDevice(object.value(Field::Device).toString(), device, error)) {
        error = QStringLiteral("%1: %2").arg(path, error);
        return false;
    }
    workDir = resolved(path, object.value(Field::WorkDir).toString(Field::DefaultWorkDir));
    if (!readShared(object, error))
        return false;
    const QJsonArray entries = object.value(Field::Cores).toArray();
    if (entries.isEmpty()) {
        error = QStringLiteral("%1: \"%2\" must list the project's cores").arg(path, Field::Cores);
        return false;
    }
    // Each record is checked in a project that holds the device and the
    // shared values alone; placing the cores comes after.
    prepare();
    for (int i = 0; i < entries.size(); ++i) {
        if (!readCore(host, entries.at(i), i + 1, error))
            return false;
    }
    return true;
}

// The shared values are quad biases, as the dialog's bias box offers them.
bool Project::readShared(const QJsonObject &object, QString &error)
{
    const QJsonObject values = object.value(Field::Shared).toObject();
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        const int value = it.value().toInt();
        const QString problem = isInteger(it.value())
                                    ? IPSERDESIP::serdes::quadBiasProblem(it.key(), value)
                                    : QStringLiteral("it must be an integer");
        if (!problem.isEmpty()) {
            error =
                QStringLiteral("%1: the shared value \"%2\": %3").arg(m_path, it.key(), problem);
            return false;
        }
        shared.insert(it.key(), it.value().toInt());
    }
    return true;
}

// A core is a record file's path, a record, or an object with "record" (a
// path or a record) and the "quadBias" its dialog published for its quad.
bool Project::readCore(PluginHost &host, const QJsonValue &entry, int number, QString &error)
{
    Core core;
    core.label = QStringLiteral("core %1").arg(number);
    QJsonValue record = entry;
    if (entry.isObject() && entry.toObject().contains(Field::Record)) {
        record = entry.toObject().value(Field::Record);
        const QJsonValue bias = entry.toObject().value(Field::QuadBias);
        if (!bias.isUndefined() && !isInteger(bias)) {
            error = QStringLiteral("%1: the %2 of %3 must be an integer")
                        .arg(m_path, Field::QuadBias, core.label);
            return false;
        }
        if (!bias.isUndefined())
            core.quadBias = bias.toInt();
    }
    if (!readRecord(record, core, error))
        return false;
    // Every core works on the project's device.
    const QString id = core.record.value(Key::TargetDevice).toString();
    if (core.record.contains(Key::TargetDevice) && id != device.id()) {
        error = QStringLiteral("%1: its device \"%2\" is not the project's \"%3\"")
                    .arg(core.source, id, device.id());
        return false;
    }
    core.record.insert(Key::TargetDevice, device.id());
    const QString problem = recordProblem(host, core.record);
    if (!problem.isEmpty()) {
        error = QStringLiteral("%1: %2").arg(core.source, problem);
        return false;
    }
    if (!checkBias(core, error))
        return false;
    cores << core;
    return true;
}

bool Project::readRecord(const QJsonValue &value, Core &core, QString &error)
{
    if (value.isString()) {
        core.source = value.toString();
        core.recordPath = resolved(m_path, core.source);
        return RecordFile::read(core.recordPath, core.record, error);
    }
    if (value.isObject()) {
        core.source = m_path;
        return RecordFile::parse(QJsonDocument(value.toObject()).toJson(), core.source, core.record,
                                 error);
    }
    error = QStringLiteral("%1: %2 must be a record or the path of one").arg(m_path, core.label);
    return false;
}

// A core's quadBias is the bias of the quad its record claims, one the
// dialog's bias box offers.
bool Project::checkBias(const Core &core, QString &error) const
{
    if (!core.quadBias)
        return true;
    const QuadBias *quad = claimedQuadBias(core.record);
    const QString problem =
        quad ? IPSERDESIP::serdes::quadBiasProblem(quad->registryKey, *core.quadBias)
             : QStringLiteral("its record does not claim its quad's bias (\"%1\" is false)")
                   .arg(Key::ChangedAllOfBias);
    if (!problem.isEmpty())
        error = QStringLiteral("%1: the %2 %3 of %4: %5")
                    .arg(m_path, Field::QuadBias)
                    .arg(*core.quadBias)
                    .arg(core.label, problem);
    return problem.isEmpty();
}

void Project::prepare() const
{
    registry()->reset();
    registry()->setDevice(device);
    registry()->setWorkingDir(QDir(workDir).absolutePath());
    for (auto it = shared.cbegin(); it != shared.cend(); ++it)
        registry()->claimQuadBias(it.key(), it.value(), QString());
}

// What of an earlier core this one would declare again: its folder, its
// module, or a name its template declares in the one module the templates
// share; empty for nothing.
QString Project::conflictingName(const Core &core, const Core &earlier, QString &kind) const
{
    for (const QString &key : {Key::File, Key::Module}) {
        const QString name = core.record.value(key).toString();
        kind = key == Key::File ? NameKind::File : NameKind::Module;
        if (earlier.record.value(key).toString() == name)
            return name;
    }
    kind = NameKind::Wire;
    const auto names = [](const Core &c) {
        return templateNames(c.record, defaultWirePrefix(c.record));
    };
    const QStringList earlierNames = names(earlier);
    for (const QString &name : names(core)) {
        if (earlierNames.contains(name))
            return name;
    }
    return QString();
}

// Places the core after the earlier ones: its names, its resources, then
// the bias of its quad when its dialog applied it to the whole quad.
bool Project::place(PluginHost &host, Core &core, Conflict &conflict)
{
    for (const Core &earlier : qAsConst(cores)) {
        if (&earlier == &core)
            break;
        const QString name = earlier.placed ? conflictingName(core, earlier, core.kind) : QString();
        if (!name.isEmpty()) {
            conflict = {Conflict::None, name, earlier.instance,
                        NameKind::messages().value(core.kind).arg(name, earlier.instance)};
            return false;
        }
    }
    core.kind.clear();
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
    const QuadBias *quad = claimedQuadBias(core.record);
    if (!quad)
        return true;
    if (core.quadBias) {
        return registry()->claimQuadBias(quad->registryKey, *core.quadBias, core.instance,
                                         &conflict);
    }
    if (registry()->globalData().contains(quad->registryKey))
        return true;
    conflict = {Conflict::QuadBias, quad->registryKey, QString(),
                QStringLiteral("%1 is not set: give the core's %2 or the project's %3 %1")
                    .arg(quad->registryKey, Field::QuadBias, Field::Shared)};
    return false;
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

void Project::openCore(PluginHost &host, int index)
{
    prepare();
    for (int i = 0; i < cores.size(); ++i) {
        Conflict conflict;
        cores[i].placed = i != index && place(host, cores[i], conflict);
    }
    const Core &core = cores.at(index);
    const QuadBias *quad = claimedQuadBias(core.record);
    if (quad && core.quadBias && !registry()->globalData().contains(quad->registryKey))
        registry()->claimQuadBias(quad->registryKey, *core.quadBias, QString());
}

bool Project::writeRecord(const Core &core, const QMap<QString, QVariant> &record,
                          QJsonValue &written, QString &error) const
{
    if (core.recordPath.isEmpty()) {
        written = RecordFile::toJson(record);
        return true;
    }
    written = core.source;
    return RecordFile::write(core.recordPath, record, error);
}

bool Project::writeBack(int index, const QMap<QString, QVariant> &record, QString &error)
{
    QJsonValue written;
    if (!writeRecord(cores.at(index), record, written, error))
        return false;
    QJsonArray entries = m_file.value(Field::Cores).toArray();
    const QuadBias *quad = claimedQuadBias(record);
    entries[index] = written;
    if (quad) {
        // The dialog changed the bias of the whole quad: of every core that
        // claims it, and the project's shared value.
        const int bias = registry()->getData(quad->registryKey).toInt();
        for (int i = 0; i < cores.size(); ++i) {
            const bool claims = cores.at(i).quadBias && claimedQuadBias(cores.at(i).record) == quad;
            if (i == index || claims) {
                QJsonObject entry =
                    i == index ? QJsonObject{{Field::Record, written}} : entries.at(i).toObject();
                entry.insert(Field::QuadBias, bias);
                entries[i] = entry;
            }
        }
        QJsonObject sharedValues = m_file.value(Field::Shared).toObject();
        if (sharedValues.contains(quad->registryKey)) {
            sharedValues.insert(quad->registryKey, bias);
            m_file.insert(Field::Shared, sharedValues);
        }
    }
    m_file.insert(Field::Cores, entries);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(m_file).toJson()) < 0
        || !file.commit()) {
        error = QStringLiteral("cannot write %1: %2").arg(m_path, file.errorString());
        return false;
    }
    return true;
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
    if (!synthesisMessage.isEmpty())
        object.insert(QStringLiteral("synthesisMessage"), synthesisMessage);
    return object;
}

} // namespace CpriHost
