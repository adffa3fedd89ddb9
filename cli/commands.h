#pragma once

#include <QStringList>

namespace CpriHost {

class PluginHost;

// What the command line asked for, parsed.
struct Options
{
    QString command;
    QStringList arguments;   // positional arguments after the command
    QString workDir;
    QString device;
    QString editRecord;
    QString outRecord;
    QString screenshotDir;
    QStringList occupied;    // records of other cores of the project
    QStringList shared;      // registry values, KEY=INTEGER
    bool synthesize = false;
    bool accept = false;
};

// Each command prints its result as JSON on standard output and returns
// the exit code; problems go to standard error as one line.
int runInfo(PluginHost &host);
int runDevices(PluginHost &host);
int runGenerate(PluginHost &host, const Options &options);
int runResources(PluginHost &host, const Options &options);
int runDialog(PluginHost &host, const Options &options);

enum ExitCode { Success = 0, Failed = 1, BadInput = 2 };

} // namespace CpriHost
