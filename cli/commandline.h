#pragma once

#include <QString>
#include <QStringList>

namespace CpriHost {

class PluginHost;

enum ExitCode { Success = 0, Failed = 1, BadInput = 2 };

// What the command line asked for, parsed.
struct Options
{
    QString command;
    QStringList arguments; // positional arguments after the command
    QString workDir;       // empty: the current folder (a project's own for project)
    QString device;
    QString editRecord;
    QString outFile; // --out: the dialog's record, or the template
    QString screenshotDir;
    QString prefix; // --prefix of the template's wires
    bool prefixGiven = false;
    QString project; // --project and --core: a core of a project
    QString core;
    QStringList occupied; // records of other cores of the project
    QStringList shared;   // registry values, KEY=INTEGER
    bool synthesize = false;
    bool accept = false;
};

// The command line of cpri-host: a table of commands, each with the
// arguments and the options it takes, from which parsing, the refusals and
// the usage text all come.
class CommandLine
{
public:
    using Runner = int (*)(PluginHost &, const Options &);

    // Parses the arguments (the program's name first). -1 when the command
    // is to run; otherwise the exit code, after the usage text or one line
    // on standard error.
    int parse(const QStringList &arguments);

    const Options &options() const { return m_options; }
    QString pluginPath() const { return m_pluginPath; }
    // The command's runner; null before a successful parse.
    Runner runner() const { return m_runner; }

private:
    int check();

    Options m_options;
    QString m_pluginPath;
    QStringList m_given; // the options given, by name
    Runner m_runner = nullptr;
};

} // namespace CpriHost
