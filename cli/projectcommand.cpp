// cpri-host project: several cores placed on one device in order and
// generated, with the files that put them into one design.

#include "commands.h"

#include "commandsupport.h"
#include "instantiation.h"
#include "jsonoutput.h"
#include "pluginhost.h"
#include "project.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <generate/generationnames.h>

#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
namespace Gen = IPCPRI::Generate;
using IPSERDESIP::Conflict;

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

// Places the cores in order; the number refused, each told on standard error.
int placeCores(PluginHost &host, Project &project)
{
    int refused = 0;
    for (Project::Core &core : project.cores) {
        Conflict conflict;
        core.placed = project.place(host, core, conflict);
        if (core.placed)
            continue;
        if (core.kind.isEmpty())
            core.kind = conflictKind(conflict.kind);
        const QString holder = project.heldBy(conflict.holder);
        core.refusal = QJsonObject{{QStringLiteral("kind"), core.kind},
                                   {QStringLiteral("resource"), conflict.resource},
                                   {QStringLiteral("heldBy"), holder},
                                   {QStringLiteral("message"), conflict.message}};
        const QString earlier =
            conflict.holder.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(holder);
        warn(QStringLiteral("%1 (%2) refused: %3%4")
                 .arg(core.label, core.source, conflict.message, earlier));
        ++refused;
    }
    return refused;
}

// Generates the placed cores, each into its own set of files; the number that fail.
int generateCores(PluginHost &host, Project &project, bool synthesize)
{
    int failed = 0;
    for (Project::Core &core : project.cores) {
        if (!core.placed)
            continue;
        IPCore::OutputSet set;
        QJsonObject result;
        QString reason;
        int code = Success;
        if (!generateCore(host, set, core.record, synthesize, result, reason, code)
            || !set.commit()) {
            if (reason.isEmpty())
                reason = IPCore::lastError();
            core.refusal = QJsonObject{{QStringLiteral("kind"), QStringLiteral("generation")},
                                       {QStringLiteral("message"), reason}};
            warn(QStringLiteral("%1 (%2) not generated: %3").arg(core.label, core.source, reason));
            ++failed;
            continue;
        }
        core.files = set.files();
        core.synthesisMessage = result.value(QStringLiteral("synthesisMessage")).toString();
    }
    return failed;
}

bool writeText(const QString &path, const QString &text, QString &error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit())
        return true;
    error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
    return false;
}

// cores.f: the engine all cores share, once, then each core's own top
// level; cores_template.v: each core's template, its wires named after its
// file. Both list the generated cores only, and are written when the
// working directory is there.
bool writeDesignFiles(const PluginHost &host, const Project &project, QString &error)
{
    const QDir dir(project.workDir);
    const QString engine = QDir::cleanPath(
        QStringList{host.packageDir(), IPCPRI::Descriptor::DataFolder, Gen::EngineSource}.join(
            QLatin1Char('/')));
    QStringList sources;
    QString templates;
    for (const Project::Core &core : project.cores) {
        if (!core.placed || !core.refusal.isEmpty())
            continue;
        if (sources.isEmpty())
            sources << engine;
        const QString top = core.record.value(Key::Module).toString() + Gen::CoreTopLevelSuffix;
        for (const QString &file : core.files) {
            if (QFileInfo(file).fileName() == top)
                sources << file;
        }
        templates += QStringLiteral("// %1 (%2)\n").arg(core.label, core.source)
                     + instantiationTemplate(core.record, defaultWirePrefix(core.record));
    }
    if (!dir.exists())
        return true;
    const QString lines =
        sources.isEmpty() ? QString() : sources.join(QLatin1Char('\n')) + QLatin1Char('\n');
    return writeText(dir.filePath(SourcesFile), lines, error)
           && writeText(dir.filePath(TemplatesFile), templates, error);
}

} // namespace

int runProject(PluginHost &host, const Options &options)
{
    Project project;
    QString error;
    if (!project.read(host, options.arguments.first(), error))
        return fail(error);
    if (!options.workDir.isEmpty())
        project.workDir = workDirectory(options);
    project.prepare();
    int refused = placeCores(host, project);
    refused += generateCores(host, project, options.synthesize);
    if (!writeDesignFiles(host, project, error))
        return fail(error, Failed);
    QJsonArray reports;
    for (const Project::Core &core : qAsConst(project.cores))
        reports.append(core.report());
    const QDir dir(project.workDir);
    print(QJsonDocument(QJsonObject{
        {QStringLiteral("device"), project.device.id()},
        {QStringLiteral("workdir"), dir.absolutePath()},
        {QStringLiteral("sources"), dir.absoluteFilePath(SourcesFile)},
        {QStringLiteral("templates"), dir.absoluteFilePath(TemplatesFile)},
        {QStringLiteral("cores"), reports},
        {QStringLiteral("refused"), refused},
    }));
    return refused ? Failed : Success;
}

} // namespace CpriHost
