#include "commandline.h"

#include "commands.h"
#include "jsonoutput.h"
#include "pluginhost.h"

#include <serdes/resourcenames.h>

#include <QCommandLineParser>
#include <QTextStream>
#include <QVector>

namespace CpriHost {

namespace {

// An option: its name, the value it takes (none for a switch), its line of
// help and where its values go.
struct OptionRow
{
    QString name;
    QString valueName;
    QString description;
    bool repeatable;
    void (*store)(Options &, const QStringList &values);
};

const QString PluginOption = QStringLiteral("plugin");

QString quadBiasKeys()
{
    QStringList keys;
    for (const IPCPRI::Serdes::QuadBias &quad : IPCPRI::Serdes::quadBiases())
        keys << quad.registryKey;
    return keys.join(QStringLiteral(", "));
}

const QVector<OptionRow> &optionRows()
{
    // clang-format off
    static const QVector<OptionRow> rows = {
        {QStringLiteral("workdir"), QStringLiteral("DIR"),
         QStringLiteral("The working directory, which holds the cores' folders; nothing is "
                        "written outside it (default: the current one; for a project, the one "
                        "it names)."),
         false, [](Options &o, const QStringList &v) { o.workDir = v.last(); }},
        {QStringLiteral("synthesize"), QString(),
         QStringLiteral("Run the synthesis step (Yosys) after generating each core."), false,
         [](Options &o, const QStringList &) { o.synthesize = true; }},
        {QStringLiteral("device"), QStringLiteral("ID"),
         QStringLiteral("The project's device (see: devices)."), false,
         [](Options &o, const QStringList &v) { o.device = v.last(); }},
        {QStringLiteral("edit"), QStringLiteral("RECORD.json"),
         QStringLiteral("Open the dialog on a stored record."), false,
         [](Options &o, const QStringList &v) { o.editRecord = v.last(); }},
        {QStringLiteral("project"), QStringLiteral("PROJECT.json"),
         QStringLiteral("Open the dialog on a core of a project (with --core)."), false,
         [](Options &o, const QStringList &v) { o.project = v.last(); }},
        {QStringLiteral("core"), QStringLiteral("N"),
         QStringLiteral("The project's core to open, counted from 1."), false,
         [](Options &o, const QStringList &v) { o.core = v.last(); }},
        {QStringLiteral("out"), QStringLiteral("FILE"),
         QStringLiteral("Also write the accepted record (dialog), or write the template "
                        "(template), to a file."),
         false, [](Options &o, const QStringList &v) { o.outFile = v.last(); }},
        {QStringLiteral("prefix"), QStringLiteral("P"),
         QStringLiteral("Name the template's wires P + port name (default: the record's file "
                        "name and \"_\")."),
         false,
         [](Options &o, const QStringList &v) {
             o.prefix = v.last();
             o.prefixGiven = true;
         }},
        {QStringLiteral("accept"), QString(),
         QStringLiteral("Press OK at once; message boxes are answered Yes."), false,
         [](Options &o, const QStringList &) { o.accept = true; }},
        {QStringLiteral("screenshot"), QStringLiteral("DIR"),
         QStringLiteral("Render the dialog and each tab to PNG files, offscreen."), false,
         [](Options &o, const QStringList &v) { o.screenshotDir = v.last(); }},
        {QStringLiteral("occupy"), QStringLiteral("RECORD.json"),
         QStringLiteral("A record of another core of the project, whose resources are taken "
                        "(repeatable)."),
         true, [](Options &o, const QStringList &v) { o.occupied = v; }},
        {QStringLiteral("shared"), QStringLiteral("KEY=INTEGER"),
         QStringLiteral("A value the project's cores share: the bias of a quad (%1), as the "
                        "dialog's bias box offers it (repeatable).")
             .arg(quadBiasKeys()),
         true, [](Options &o, const QStringList &v) { o.shared = v; }},
    };
    // clang-format on
    return rows;
}

// A command: the arguments it takes (at least minimum, at most maximum, -1
// for any number), the options it takes besides --plugin, and its help.
struct CommandRow
{
    QString name;
    QString arguments;
    int minimum;
    int maximum;
    QStringList options;
    QString summary;
    CommandLine::Runner run;
};

const QVector<CommandRow> &commandRows()
{
    // clang-format off
    static const QVector<CommandRow> rows = {
        {QStringLiteral("info"), QString(), 0, 0, {}, QStringLiteral("the core's descriptor"),
         [](PluginHost &h, const Options &) { return runInfo(h); }},
        {QStringLiteral("guide"), QString(), 0, 0, {},
         QStringLiteral("the path of the core's user guide"),
         [](PluginHost &h, const Options &) { return runGuide(h); }},
        {QStringLiteral("devices"), QString(), 0, 0, {},
         QStringLiteral("the device library, with the lanes of each device"),
         [](PluginHost &h, const Options &) { return runDevices(h); }},
        {QStringLiteral("generate"), QStringLiteral("RECORD.json..."), 1, -1,
         {QStringLiteral("workdir"), QStringLiteral("synthesize"), QStringLiteral("occupy"),
          QStringLiteral("shared")},
         QStringLiteral("writes each record's core files to DIR/<file>/temp/cpri/ (the define "
                        "files, cpri.ini, cpri.csr and the core's own top level <module>.v) and "
                        "prints its settings and synthesis options: one JSON object for one "
                        "record, an array of them (each with its \"record\") for several. Every "
                        "record is checked first against what the core's dialog would write; a "
                        "core's files are replaced together, or not at all"),
         runGenerate},
        {QStringLiteral("resources"), QStringLiteral("RECORD.json"), 1, 1, {},
         QStringLiteral("the transceiver resources the record occupies"), runResources},
        {QStringLiteral("ports"), QStringLiteral("RECORD.json"), 1, 1, {QStringLiteral("occupy")},
         QStringLiteral("the configured core's ports in order, each with its direction and "
                        "width"),
         runPorts},
        {QStringLiteral("template"), QStringLiteral("RECORD.json"), 1, 1,
         {QStringLiteral("out"), QStringLiteral("prefix"), QStringLiteral("occupy")},
         QStringLiteral("Verilog that instantiates the configured core, with a wire for each "
                        "port named P + the port's name, and the instance named after the "
                        "record's file"),
         runTemplate},
        {QStringLiteral("project"), QStringLiteral("PROJECT.json"), 1, 1,
         {QStringLiteral("workdir"), QStringLiteral("synthesize")},
         QStringLiteral("places the project's cores on its device in order, reports each "
                        "conflict (lane, PLL, reference clock, quad BIAS, folder or module, "
                        "and the earlier core holding it), generates the cores that fit and "
                        "writes cores.f (their sources, in compile order) and cores_template.v "
                        "(their instances) to the working directory"),
         runProject},
        {QStringLiteral("dialog"), QString(), 0, 0,
         {QStringLiteral("device"), QStringLiteral("edit"), QStringLiteral("project"),
          QStringLiteral("core"), QStringLiteral("out"), QStringLiteral("accept"),
          QStringLiteral("screenshot"), QStringLiteral("workdir"), QStringLiteral("occupy"),
          QStringLiteral("shared")},
         QStringLiteral("runs the core's dialog and prints the accepted record. On core N of a "
                        "project it holds the project's other cores and shared values, and OK "
                        "writes the core's record and its quad bias back into the project"),
         runDialog},
    };
    // clang-format on
    return rows;
}

const CommandRow *commandRow(const QString &name)
{
    for (const CommandRow &row : commandRows()) {
        if (row.name == name)
            return &row;
    }
    return nullptr;
}

const OptionRow *optionRow(const QString &name)
{
    for (const OptionRow &row : optionRows()) {
        if (row.name == name)
            return &row;
    }
    return nullptr;
}

// The words in lines of at most width characters (a longer word alone).
QStringList wrapped(const QStringList &words, int width)
{
    QStringList lines{QString()};
    for (const QString &word : words) {
        if (!lines.last().isEmpty() && lines.last().size() + 1 + word.size() > width)
            lines << QString();
        lines.last() += (lines.last().isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return lines;
}

QStringList wrapped(const QString &text, int width)
{
    return wrapped(text.split(QLatin1Char(' '), Qt::SkipEmptyParts), width);
}

// The command, its arguments and each option it takes, as the usage shows them.
QStringList usage(const CommandRow &command)
{
    QStringList words{command.name};
    if (!command.arguments.isEmpty())
        words << command.arguments;
    for (const QString &name : command.options) {
        const OptionRow *option = optionRow(name);
        const QString value =
            option->valueName.isEmpty() ? QString() : QLatin1Char(' ') + option->valueName;
        words << QStringLiteral("[--%1%2]%3")
                     .arg(name, value, option->repeatable ? QStringLiteral("...") : QString());
    }
    return words;
}

// The commands as the usage text lists them: the usage, then the summary
// from the 33rd column on.
QString commandsText()
{
    constexpr int UsageWidth = 30, LineWidth = 90;
    QString text = QStringLiteral("Commands:\n");
    for (const CommandRow &command : commandRows()) {
        const QString indent(command.name.size() + 3, QLatin1Char(' '));
        QStringList lines = wrapped(usage(command), LineWidth - indent.size());
        for (int i = 1; i < lines.size(); ++i)
            lines[i].prepend(indent);
        lines.first().prepend(QStringLiteral("  "));
        QStringList summary = wrapped(command.summary, LineWidth - UsageWidth - 2);
        if (lines.size() == 1 && lines.first().size() <= UsageWidth + 1)
            lines.first() = lines.first().leftJustified(UsageWidth + 2) + summary.takeFirst();
        for (const QString &line : qAsConst(summary))
            lines << QString(UsageWidth + 2, QLatin1Char(' ')) + line;
        text += lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    return text;
}

// Why the command line cannot run: an unknown command, a missing or extra
// argument, or an option the command does not take; empty when it can.
QString commandProblem(const CommandRow *command, const Options &options, const QStringList &given)
{
    if (!command)
        return QStringLiteral("unknown command \"%1\" (try --help)").arg(options.command);
    const int count = options.arguments.size();
    const QString what = QString(command->arguments).remove(QStringLiteral("..."));
    if (count < command->minimum)
        return QStringLiteral("%1 needs %2 %3")
            .arg(command->name,
                 command->maximum < 0 ? QStringLiteral("at least one") : QStringLiteral("one"),
                 what);
    if (command->maximum == 0 && count > 0)
        return QStringLiteral("%1 takes no arguments, not \"%2\"")
            .arg(command->name, options.arguments.first());
    if (command->maximum > 0 && count > command->maximum)
        return QStringLiteral("%1 takes one %2, not %3").arg(command->name, what).arg(count);
    for (const QString &name : given) {
        if (name != PluginOption && !command->options.contains(name))
            return QStringLiteral("%1 does not take --%2 (see --help)").arg(command->name, name);
    }
    return QString();
}

QString description()
{
    const QString notes =
        QStringLiteral("A record is a JSON object of text, boolean and integer values. Results "
                       "are printed as JSON; problems go to standard error with a non-zero exit. "
                       "The commands that write work in the current folder unless --workdir "
                       "names another (project: the folder its project file names).");
    return QStringLiteral("Runs the CPRI core's plug-in as the IP-core generator does.\n\n")
           + commandsText() + QLatin1Char('\n') + wrapped(notes, 80).join(QLatin1Char('\n'));
}

} // namespace

int CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const QCommandLineOption help = parser.addHelpOption();
    for (const OptionRow &row : optionRows())
        parser.addOption(QCommandLineOption(row.name, row.description, row.valueName));
    parser.addOption(QCommandLineOption(PluginOption, QStringLiteral("The plug-in to load."),
                                        QStringLiteral("PATH"), PluginHost::defaultPluginPath()));
    QStringList names;
    for (const CommandRow &row : commandRows())
        names << row.name;
    parser.addPositionalArgument(QStringLiteral("command"), names.join(QStringLiteral(", ")));
    if (!parser.parse(arguments)) {
        warn(parser.errorText());
        return BadInput;
    }
    if (parser.isSet(help)) {
        QTextStream(stdout) << parser.helpText();
        return Success;
    }
    m_options.arguments = parser.positionalArguments();
    if (m_options.arguments.isEmpty()) {
        warn(QStringLiteral("no command given (try --help)"));
        return BadInput;
    }
    m_options.command = m_options.arguments.takeFirst();
    m_given = parser.optionNames();
    for (const OptionRow &row : optionRows()) {
        if (parser.isSet(row.name))
            row.store(m_options, parser.values(row.name));
    }
    m_pluginPath = parser.value(PluginOption);
    return check();
}

int CommandLine::check()
{
    const CommandRow *command = commandRow(m_options.command);
    const QString problem = commandProblem(command, m_options, m_given);
    if (!problem.isEmpty()) {
        warn(problem);
        return BadInput;
    }
    m_runner = command->run;
    return -1;
}

} // namespace CpriHost
