#pragma once

#include <QJsonObject>
#include <QMap>
#include <QStringList>
#include <QVariant>

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
    QString outRecord;       // --out: the dialog's record, or the template
    QString screenshotDir;
    QStringList occupied;    // records of other cores of the project
    QStringList shared;      // registry values, KEY=INTEGER
    bool synthesize = false;
    bool accept = false;
};

// Each command prints its result as JSON on standard output and returns
// the exit code; problems go to standard error as one line.
int runInfo(PluginHost &host);
// Prints the path of the core's user guide (plain text).
int runGuide(PluginHost &host);
int runDevices(PluginHost &host);
int runGenerate(PluginHost &host, const Options &options);
int runResources(PluginHost &host, const Options &options);
int runDialog(PluginHost &host, const Options &options);
int runProject(PluginHost &host, const Options &options);
// The ports of the core a checked record configures, and a template that
// instantiates it (printed, or written to --out).
int runPorts(PluginHost &host, const Options &options);
int runTemplate(PluginHost &host, const Options &options);

// Generates a record that passed its checks, into the output set the caller
// opened for it. False with the reason and the exit code when it fails.
bool generateCore(PluginHost &host, const QMap<QString, QVariant> &record, bool synthesize,
                  QJsonObject &result, QString &error, int &code);

enum ExitCode { Success = 0, Failed = 1, BadInput = 2 };

} // namespace CpriHost
