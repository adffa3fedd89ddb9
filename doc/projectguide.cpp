// The guide's section from a project file to one compiled design. The
// command-line host really runs the walkthrough on a copy of the example
// project, and the section quotes what it writes, the scratch folder written
// PROJECT and the package folder PACKAGE.

#include "projectguide.h"

#include "calculateguide.h"
#include "guidehtml.h"

#include <commandline.h>
#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <config/speedrules.h>
#include <dialog/fieldrules.h>
#include <generate/generationnames.h>
#include <instantiation.h>
#include <project.h>
#include <recordfile.h>
#include <serdes/resourcenames.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

using namespace IPCPRI;
namespace Key = Config::Key;
namespace Field = CpriHost::ProjectField;

namespace Guide {

namespace {

const QString ProjectPlaceholder = QStringLiteral("PROJECT");
const QString PackagePlaceholder = QStringLiteral("PACKAGE");
const QString HostName = QStringLiteral("cpri-host");
// The module the walkthrough pastes the templates into, and its file.
const QString BoardModule = QStringLiteral("board");
// How many lines of the templates the walkthrough quotes, at their start
// and at the first instance.
constexpr int TemplateHeadLines = 4;
constexpr int InstanceLines = 3;

// How a run of the host ended: its exit code (-1 when it did not finish)
// and what it wrote to standard error.
struct HostRun
{
    int exitCode = -1;
    QString errors;
};

// Runs the host in a folder; searchPath, when given, is the PATH it sees.
HostRun runHost(const QString &program, const QStringList &arguments, const QString &folder,
                const QString &searchPath)
{
    QProcess host;
    host.setWorkingDirectory(folder);
    if (!searchPath.isNull()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PATH"), searchPath);
        host.setProcessEnvironment(environment);
    }
    host.start(program, arguments);
    const bool finished = host.waitForFinished(120000) && host.exitStatus() == QProcess::NormalExit;
    return {finished ? host.exitCode() : -1, QString::fromLocal8Bit(host.readAllStandardError())};
}

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A command line of the host as the user types it.
QString hostCommand(const QStringList &arguments)
{
    return (QStringList{HostName} + arguments).join(QLatin1Char(' '));
}

// A copy of the example project in a scratch folder, the walkthrough's
// commands run there, and what they wrote as the guide shows it.
class Walk
{
public:
    explicit Walk(const ProjectExample &example) : example(example) {}

    // Copies the project file's folder (its JSON files) into the scratch folder.
    bool copyProject(QString &error)
    {
        const QDir from = QFileInfo(example.projectFile).absoluteDir();
        const QStringList names = from.entryList({QStringLiteral("*.json")}, QDir::Files);
        for (const QString &name : names) {
            if (!scratch.isValid() || !QFile::copy(from.filePath(name), path(name))) {
                error = QStringLiteral("cannot copy %1 to a scratch folder").arg(name);
                return false;
            }
        }
        if (!names.contains(projectName()))
            error = QStringLiteral("there is no project file %1").arg(example.projectFile);
        return error.isEmpty();
    }
    QString projectName() const { return QFileInfo(example.projectFile).fileName(); }
    QString path(const QString &relative) const { return scratch.filePath(relative); }
    QJsonObject project() const
    {
        return QJsonDocument::fromJson(readText(path(projectName())).toUtf8()).object();
    }
    QString workDir() const
    {
        return project().value(Field::WorkDir).toString(Field::DefaultWorkDir);
    }
    // The text with the scratch and package folders as their placeholders.
    QString shown(QString text) const
    {
        return text.replace(QDir(scratch.path()).absolutePath(), ProjectPlaceholder)
            .replace(QDir(example.packageDir).absolutePath(), PackagePlaceholder);
    }
    // Runs the host on the copy, on the PATH searchPath when one is given;
    // false with the reason unless it exits with expectedExit.
    bool run(const QStringList &arguments, int expectedExit, HostRun &result, QString &error,
             const QString &searchPath = QString()) const
    {
        result = runHost(example.hostProgram, arguments, scratch.path(), searchPath);
        if (result.exitCode == expectedExit)
            return true;
        error = QStringLiteral("%1 exited with %2, not %3: %4")
                    .arg(hostCommand(arguments))
                    .arg(result.exitCode)
                    .arg(expectedExit)
                    .arg(result.errors.trimmed());
        return false;
    }

    const ProjectExample &example;
    QTemporaryDir scratch;
};

// What each field of a project file holds, and its value when it is left out.
struct FieldText
{
    QString holds;
    QString absent;
};

QMap<QString, FieldText> fieldTexts()
{
    QStringList biasKeys;
    for (const Serdes::QuadBias &quad : Serdes::quadBiases())
        biasKeys << quad.registryKey;
    const QString biasRange = QStringLiteral("0 to %1").arg(FieldRules::BiasMaximum);
    return {
        {Field::Device,
         {QStringLiteral("The identifier of the device every core works on (%1 lists them). A "
                         "core's %2, when its record names one, must be the same.")
              .arg(code(hostCommand({QStringLiteral("devices")})), code(Key::TargetDevice)),
          QStringLiteral("none: a project names its device")}},
        {Field::WorkDir,
         {QStringLiteral("The working directory, relative to the project file's folder: each "
                         "core's files go to %1, and %2 and %3 to the working directory itself. "
                         "%4 on the command line overrides it.")
              .arg(code(Generate::coreOutputDir(CoreFolder)), code(CpriHost::SourcesFile),
                   code(CpriHost::TemplatesFile), code(QStringLiteral("--workdir DIR"))),
          code(Field::DefaultWorkDir) + QStringLiteral(", the project file's folder")}},
        {Field::Shared,
         {QStringLiteral("The values the cores share: the bias of a quad, as %1, each %2. The "
                         "cores that claim a quad's bias must agree with its shared value.")
              .arg(codes(biasKeys), biasRange),
          QStringLiteral("none: the cores that claim a quad's bias give it")}},
        {Field::Cores,
         {QStringLiteral("The cores, in the order they were added and are placed. Each is the "
                         "path of a record file (relative to the project file's folder), a "
                         "record itself, or an object with %1 and %2.")
              .arg(code(Field::Record), code(Field::QuadBias)),
          QStringLiteral("none: a project has at least one core")}},
        {Field::Record,
         {QStringLiteral("In a core object: the core's record, a path or the record itself."),
          QStringLiteral("none")}},
        {Field::QuadBias,
         {QStringLiteral("In a core object: the bias, %1, that the core's dialog applied to its "
                         "whole quad. Only a core whose record has %2 true claims its quad's "
                         "bias and may give one.")
              .arg(biasRange, code(Key::ChangedAllOfBias)),
          QStringLiteral("the bias the project holds for the quad: its shared value, or an "
                         "earlier core's; a core that claims the bias with neither is "
                         "refused")}},
    };
}

QString fieldsPart(const Walk &walk, QString &error)
{
    const QMap<QString, FieldText> texts = fieldTexts();
    QString rows;
    for (const QString &field : Field::All) {
        if (!texts.contains(field)) {
            error = QStringLiteral("the guide says nothing of the project field \"%1\"").arg(field);
            return QString();
        }
        rows += row({code(field), texts.value(field).holds, texts.value(field).absent});
    }
    return QStringLiteral("<h3>The project file</h3>\n<p>A project of several cores on one "
                          "device is a JSON object of these fields:</p>\n")
           + table(
               {QStringLiteral("Field"), QStringLiteral("Holds"), QStringLiteral("When left out")},
               rows, QStringLiteral("project-fields"))
           + QStringLiteral("<p>The example project %1, %2 cores on one device:</p>\n")
                 .arg(code(walk.example.projectFile.section(QLatin1Char('/'), -3)))
                 .arg(walk.project().value(Field::Cores).toArray().size())
           + pre({readText(walk.path(walk.projectName())).trimmed()},
                 QStringLiteral("data-file=\"%1\"").arg(walk.projectName()));
}

// The records of the project's cores, in order: a path, a record, or either under "record".
QVector<QMap<QString, QVariant>> coreRecords(const Walk &walk)
{
    QVector<QMap<QString, QVariant>> records;
    for (const QJsonValue &entry : walk.project().value(Field::Cores).toArray()) {
        const QJsonValue value = entry.toObject().value(Field::Record).isUndefined()
                                     ? entry
                                     : entry.toObject().value(Field::Record);
        QMap<QString, QVariant> record;
        QString error;
        if (value.isString())
            CpriHost::RecordFile::read(walk.path(value.toString()), record, error);
        else
            CpriHost::RecordFile::parse(QJsonDocument(value.toObject()).toJson(), QString(), record,
                                        error);
        records << record;
    }
    return records;
}

QString speedClassOf(const QMap<QString, QVariant> &record)
{
    for (const Config::SpeedClass &c : Config::speedClasses()) {
        if (record.value(c.key).toBool())
            return c.key;
    }
    return QString();
}

QString placementTable(const Walk &walk)
{
    QString rows;
    int number = 0;
    for (const QMap<QString, QVariant> &record : coreRecords(walk)) {
        rows += row({QString::number(++number), code(record.value(Key::File).toString()),
                     code(record.value(Key::Module).toString()), code(speedClassOf(record)),
                     esc(record.value(Key::ChannelSelection).toString()),
                     esc(record.value(Key::PllSelection).toString()),
                     esc(QStringLiteral("%1 at %2 MHz")
                             .arg(record.value(Key::RefClkSource).toString(),
                                  record.value(Key::RefClkFrequency).toString()))});
    }
    return table({QStringLiteral("Core"), QStringLiteral("File"), QStringLiteral("Module"),
                  QStringLiteral("Speed class"), QStringLiteral("Lane"), QStringLiteral("PLL"),
                  QStringLiteral("Reference clock")},
                 rows);
}

QString placePart(const Walk &walk, QString &error)
{
    const QStringList place{QStringLiteral("project"), walk.projectName()};
    HostRun result;
    if (!walk.run(place, CpriHost::Success, result, error))
        return QString();
    const QMap<QString, QVariant> first = coreRecords(walk).value(0);
    const QString folder = Generate::coreOutputDir(
        walk.path(walk.workDir() + QLatin1Char('/') + first.value(Key::File).toString()));
    QStringList files;
    for (const QString &name : QDir(folder).entryList(QDir::Files))
        files << walk.shown(QDir(folder).filePath(name));
    return QStringLiteral("<h3>1. Place and generate</h3>\n<p>In the project file's folder, "
                          "%1 below (here a copy of the example):</p>\n")
               .arg(code(ProjectPlaceholder))
           + pre({hostCommand(place)}, QStringLiteral("class=\"shell\""))
           + QStringLiteral("<p>places the cores on the device in order, each taking its lane, "
                            "its PLL (one PLL serves several cores at one VCO from one reference "
                            "clock) and its reference clock, and the bias of its quad when it "
                            "claims it:</p>\n")
           + placementTable(walk)
           + QStringLiteral("<p>A core whose lane, PLL, reference clock, quad bias, file "
                            "(folder) or module an earlier core holds is refused: a line on "
                            "standard error names the earlier core, nothing is written for the "
                            "refused core, and the exit is %1. The cores that fit are generated "
                            "as %2 does; the first core's folder holds:</p>\n")
                 .arg(CpriHost::Failed)
                 .arg(code(hostCommand({QStringLiteral("generate")})))
           + pre(files);
}

// The first lines of the templates and the first instance.
QStringList templateExcerpts(const QString &templates)
{
    const QStringList lines = templates.split(QLatin1Char('\n'));
    int instance = 0;
    while (instance < lines.size() && !lines.at(instance).endsWith(QStringLiteral(" (")))
        ++instance;
    return {lines.mid(0, TemplateHeadLines).join(QLatin1Char('\n')),
            lines.mid(instance, InstanceLines).join(QLatin1Char('\n'))};
}

// The timescale line of the core's top level in the package.
QString timescaleLine(const QString &packageDir)
{
    const QString top =
        QStringList{packageDir, Descriptor::DataFolder, Generate::TopLevelSource}.join(
            QLatin1Char('/'));
    for (const QString &line : readText(top).split(QLatin1Char('\n'))) {
        if (line.startsWith(QStringLiteral("`timescale")))
            return line.trimmed();
    }
    return QString();
}

// A module with the cores' timescale that includes the templates.
QString boardText(const QString &packageDir)
{
    return QStringLiteral("%1\nmodule %2;\n/* verilator lint_off UNUSED */\n"
                          "/* verilator lint_off UNDRIVEN */\n`include \"%3\"\nendmodule")
        .arg(timescaleLine(packageDir), BoardModule, CpriHost::TemplatesFile);
}

QString designFilesPart(const Walk &walk)
{
    const QString sources = walk.workDir() + QLatin1Char('/') + CpriHost::SourcesFile;
    const QString templates = walk.workDir() + QLatin1Char('/') + CpriHost::TemplatesFile;
    const QStringList excerpts = templateExcerpts(readText(walk.path(templates)));
    const QMap<QString, QVariant> first = coreRecords(walk).value(0);
    return QStringLiteral("<h3>2. The file list %1</h3>\n<p>In the working directory, %1 "
                          "lists every source the generated cores need, each once, one path a "
                          "line, in compile order: first %2, the engine all cores share, then "
                          "each core's own top level %3 from its folder. That top level holds "
                          "its define files in place of their includes and undefines all it "
                          "defines at its end, so the cores compile together in one "
                          "compilation unit in any order, with no include path. %4 stands for "
                          "the core's package folder, whose doc folder holds this guide:</p>\n")
               .arg(code(CpriHost::SourcesFile), code(Generate::EngineSource),
                    code(QStringLiteral("<module>") + Generate::CoreTopLevelSuffix),
                    code(PackagePlaceholder))
           + pre({walk.shown(readText(walk.path(sources))).trimmed()},
                 QStringLiteral("data-file=\"%1\"").arg(sources))
           + QStringLiteral("<h3>3. The templates %1</h3>\n<p>%1 holds the instance of every "
                            "generated core, ready to paste or include into one module: a wire "
                            "for each port, named with the core's prefix, its file name and "
                            "<code>_</code> (%2 for the first core), and the instance named "
                            "after the file. It begins:</p>\n")
                 .arg(code(CpriHost::TemplatesFile), code(CpriHost::defaultWirePrefix(first)))
           + pre({excerpts.value(0)}, QStringLiteral("data-file=\"%1\"").arg(templates))
           + QStringLiteral("<p>and the first instance begins:</p>\n")
           + pre({excerpts.value(1)}, QStringLiteral("data-file=\"%1\"").arg(templates))
           + QStringLiteral("<p>%1 prints one core's template with wires of another prefix. "
                            "A module for the walkthrough, %2 in %3, with the cores' timescale; "
                            "its wires are not connected yet, so it turns off Verilator's "
                            "warnings about unused and undriven signals, which your design "
                            "does not need:</p>\n")
                 .arg(code(hostCommand({QStringLiteral("template"),
                                        first.value(Key::File).toString() + QStringLiteral(".json"),
                                        QStringLiteral("--prefix"), QStringLiteral("a_")})),
                      code(BoardModule + QStringLiteral(".v")), code(ProjectPlaceholder))
           + pre({boardText(walk.example.packageDir)}, QStringLiteral("id=\"board-v\""));
}

QString toolsPart(const Walk &walk)
{
    const QString dir = walk.workDir();
    const QString list = dir + QLatin1Char('/') + CpriHost::SourcesFile;
    const QString board = BoardModule + QStringLiteral(".v");
    const QStringList commands = {
        QStringLiteral("iverilog -g2005 -Wall -I %1 -f %2 -s %3 -o %1/%3.vvp %4")
            .arg(dir, list, BoardModule, board),
        QStringLiteral("verilator --lint-only -Wall -I%1 -f %2 --top-module %3 %4")
            .arg(dir, list, BoardModule, board),
        QStringLiteral("yosys -p \"read_verilog -I%1 $(tr '\\n' ' ' < %2) %4; synth -top %3\"")
            .arg(dir, list, BoardModule, board),
    };
    return QStringLiteral("<h3>4. Compile, lint and synthesise</h3>\n<p>In %1, Icarus Verilog "
                          "compiles the design, Verilator lints it and Yosys synthesises it, "
                          "each from the file list (Yosys takes the list on its command "
                          "line):</p>\n")
               .arg(code(ProjectPlaceholder))
           + pre(commands, QStringLiteral("class=\"shell\""))
           + QStringLiteral("<p>None of them warns: each instance's ports have the widths of "
                            "its own speed class, as %1 lists them.</p>\n")
                 .arg(code(hostCommand({QStringLiteral("ports"), QStringLiteral("RECORD.json")})));
}

QString synthesisPart(const Walk &walk, QString &error)
{
    const QStringList synthesize{QStringLiteral("project"), walk.projectName(),
                                 QStringLiteral("--synthesize")};
    // A copy of its own, on a PATH without Yosys: the host refuses.
    Walk bare(walk.example);
    HostRun result;
    if (!bare.copyProject(error)
        || !bare.run(synthesize, CpriHost::Failed, result, error, QStringLiteral("/nonexistent")))
        return QString();
    return QStringLiteral("<h3>5. Synthesis by the host</h3>\n")
           + pre({hostCommand(synthesize)}, QStringLiteral("class=\"shell\""))
           + QStringLiteral("<p>also runs the host's synthesis step (Yosys) on each placed "
                            "core after generating it, and the report gives each core's cell "
                            "and wire statistics. A core that fails synthesis is not written, "
                            "and without Yosys on the PATH no core is:</p>\n")
           + pre({bare.shown(result.errors).trimmed()});
}

} // namespace

QString projectSection(const ProjectExample &example, QString &error)
{
    Walk walk(example);
    const QString fields = walk.copyProject(error) ? fieldsPart(walk, error) : QString();
    const QString place = fields.isEmpty() ? QString() : placePart(walk, error);
    const QString synthesis = place.isEmpty() ? QString() : synthesisPart(walk, error);
    if (synthesis.isEmpty())
        return QString();
    const QString dialog =
        hostCommand({QStringLiteral("dialog"), QStringLiteral("--project"), walk.projectName(),
                     QStringLiteral("--core"), QStringLiteral("1")});
    return QStringLiteral("<h2 id=\"project\">From a project file to one design</h2>\n<p>A "
                          "design with several cores on one device starts from a project file. "
                          "%1 places its cores, generates them and writes the files that put "
                          "them into one design; its dialog edits one core at a time.</p>\n")
               .arg(code(HostName))
           + fields + place + designFilesPart(walk) + toolsPart(walk) + synthesis
           + dialogSection(dialog, example.record, walk.path(QString()));
}

} // namespace Guide
