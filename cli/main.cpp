// cpri-host: a command-line IP-core generator host for the CPRI core.
// It loads the plug-in through Qt's plug-in loader, exactly as the
// design environment does, and runs the core's operations on records
// stored as JSON.

#include "commands.h"
#include "pluginhost.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>
#include <QTextStream>

#include <memory>

using namespace CpriHost;

namespace {

const char Description[] =
    "Runs the CPRI core's plug-in as the IP-core generator does.\n"
    "\n"
    "Commands:\n"
    "  info                          the core's descriptor\n"
    "  guide                         the path of the core's user guide\n"
    "  devices                       the device library, with the lanes of each device\n"
    "  generate RECORD.json... --workdir DIR [--synthesize]\n"
    "                                writes each record's core files to DIR/<file>/temp/cpri/\n"
    "                                and prints its settings and synthesis options: one JSON\n"
    "                                object for one record, an array of them (each with its\n"
    "                                \"record\") for several. Every record is checked first\n"
    "                                against what the core's dialog would write; a core's\n"
    "                                files are replaced together, or not at all\n"
    "  resources RECORD.json         the transceiver resources the record occupies\n"
    "  ports RECORD.json             the configured core's ports in order, each with its\n"
    "                                direction and width\n"
    "  template RECORD.json [--out FILE]\n"
    "                                Verilog that instantiates the configured core, with a\n"
    "                                wire for each port\n"
    "  project PROJECT.json [--workdir DIR]\n"
    "                                places the project's cores on its device in order,\n"
    "                                reports each conflict (lane, PLL, reference clock,\n"
    "                                quad BIAS or folder, and the earlier core holding it)\n"
    "                                and generates the cores that fit\n"
    "  dialog [--device ID] [--edit RECORD.json] [--out RECORD.json]\n"
    "         [--accept] [--screenshot DIR]\n"
    "                                runs the core's dialog and prints the accepted record\n"
    "\n"
    "A record is a JSON object of text, boolean and integer values. Results are\n"
    "printed as JSON; problems go to standard error with a non-zero exit.";

struct Parsed
{
    Options options;
    QString pluginPath;
};

// Parses the command line; returns an exit code when the program should
// stop right away (help, or a usage error).
int parse(const QStringList &arguments, Parsed &parsed)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(Description));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption workDir(QStringLiteral("workdir"),
                                     QStringLiteral("The project's working directory."),
                                     QStringLiteral("DIR"));
    const QCommandLineOption synthesize(QStringLiteral("synthesize"),
                                        QStringLiteral("Run the synthesis step after generating."));
    const QCommandLineOption device(QStringLiteral("device"),
                                    QStringLiteral("The project's device (see: devices)."),
                                    QStringLiteral("ID"));
    const QCommandLineOption edit(QStringLiteral("edit"),
                                  QStringLiteral("Open the dialog on a stored record."),
                                  QStringLiteral("RECORD.json"));
    const QCommandLineOption out(QStringLiteral("out"),
                                 QStringLiteral("Also write the accepted record (dialog), or write the "
                                                "template (template), to a file."),
                                 QStringLiteral("FILE"));
    const QCommandLineOption accept(QStringLiteral("accept"),
                                    QStringLiteral("Press OK at once; message boxes are answered Yes."));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Render the dialog and each tab to PNG files, offscreen."),
        QStringLiteral("DIR"));
    const QCommandLineOption occupy(QStringLiteral("occupy"),
                                    QStringLiteral("A record of another core of the project, whose "
                                                   "resources are taken (repeatable)."),
                                    QStringLiteral("RECORD.json"));
    const QCommandLineOption shared(QStringLiteral("shared"),
                                    QStringLiteral("A value shared by the project's cores, such as "
                                                   "Q0_BIAS=12 (repeatable)."),
                                    QStringLiteral("KEY=INTEGER"));
    const QCommandLineOption plugin(QStringLiteral("plugin"),
                                    QStringLiteral("The plug-in to load."),
                                    QStringLiteral("PATH"), PluginHost::defaultPluginPath());
    parser.addOptions({workDir, synthesize, device, edit, out, accept, screenshot, occupy, shared,
                       plugin});
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("info, guide, devices, generate, resources, ports, "
                                                "template, dialog or project"));

    if (!parser.parse(arguments)) {
        QTextStream(stderr) << "cpri-host: " << parser.errorText() << '\n';
        return BadInput;
    }
    if (parser.isSet(help)) {
        QTextStream(stdout) << parser.helpText();
        return Success;
    }
    QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        QTextStream(stderr) << "cpri-host: no command given (try --help)\n";
        return BadInput;
    }
    Options &o = parsed.options;
    o.command = positional.takeFirst();
    o.arguments = positional;
    o.workDir = parser.value(workDir);
    o.device = parser.value(device);
    o.editRecord = parser.value(edit);
    o.outRecord = parser.value(out);
    o.screenshotDir = parser.value(screenshot);
    o.occupied = parser.values(occupy);
    o.shared = parser.values(shared);
    o.synthesize = parser.isSet(synthesize);
    o.accept = parser.isSet(accept);
    parsed.pluginPath = parser.value(plugin);
    return -1;
}

int run(const Parsed &parsed)
{
    using Runner = int (*)(PluginHost &, const Options &);
    static const QMap<QString, Runner> commands = {
        {QStringLiteral("info"), [](PluginHost &h, const Options &) { return runInfo(h); }},
        {QStringLiteral("guide"), [](PluginHost &h, const Options &) { return runGuide(h); }},
        {QStringLiteral("devices"), [](PluginHost &h, const Options &) { return runDevices(h); }},
        {QStringLiteral("generate"), runGenerate},
        {QStringLiteral("resources"), runResources},
        {QStringLiteral("ports"), runPorts},
        {QStringLiteral("template"), runTemplate},
        {QStringLiteral("dialog"), runDialog},
        {QStringLiteral("project"), runProject},
    };
    const Options &o = parsed.options;
    const Runner command = commands.value(o.command);
    if (!command) {
        QTextStream(stderr) << "cpri-host: unknown command \"" << o.command << "\" (try --help)\n";
        return BadInput;
    }
    PluginHost host(parsed.pluginPath);
    if (!host.load()) {
        QTextStream(stderr) << "cpri-host: " << host.errorString() << '\n';
        return Failed;
    }
    return command(host, o);
}

// A dialog needs a display, except when nobody looks at it: screenshots
// are always rendered offscreen, and an accepted dialog is offscreen when
// there is no display.
bool prepareDisplay(const QStringList &arguments)
{
    const bool display = qEnvironmentVariableIsSet("QT_QPA_PLATFORM")
                         || qEnvironmentVariableIsSet("DISPLAY")
                         || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (arguments.contains(QStringLiteral("--screenshot"))
        || (!display && arguments.contains(QStringLiteral("--accept")))) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return true;
    }
    if (!display)
        QTextStream(stderr) << "cpri-host: the dialog needs a display (set DISPLAY, or use "
                               "--accept or --screenshot)\n";
    return display;
}

QtMessageHandler defaultHandler = nullptr;

// Notes of the platform about the environment are no news to the user.
void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.contains(QLatin1String("propagateSizeHints"))
        || message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
        return;
    defaultHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    defaultHandler = qInstallMessageHandler(messageHandler);
    const bool dialog = arguments.contains(QStringLiteral("dialog"));
    if (dialog && !prepareDisplay(arguments))
        return BadInput;
    std::unique_ptr<QCoreApplication> app(dialog ? new QApplication(argc, argv)
                                                 : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(QStringLiteral("cpri-host"));
    Parsed parsed;
    const int early = parse(QCoreApplication::arguments(), parsed);
    if (early >= 0)
        return early;
    return run(parsed);
}
