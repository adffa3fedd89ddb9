// cpri-host: a command-line IP-core generator host for the CPRI core.
// It loads the plug-in through Qt's plug-in loader, exactly as the
// design environment does, and runs the core's operations on records
// stored as JSON.

#include "commandline.h"
#include "commands.h"
#include "jsonoutput.h"
#include "pluginhost.h"

#include <QApplication>
#include <QCoreApplication>
#include <QTextStream>

#include <memory>

using namespace CpriHost;

namespace {

int run(const CommandLine &commandLine)
{
    PluginHost host(commandLine.pluginPath());
    if (!host.load()) {
        warn(host.errorString());
        return Failed;
    }
    return commandLine.runner()(host, commandLine.options());
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
    CommandLine commandLine;
    const int early = commandLine.parse(QCoreApplication::arguments());
    if (early >= 0)
        return early;
    return run(commandLine);
}
