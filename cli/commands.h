#pragma once

#include "commandline.h"

#include <QJsonObject>
#include <QMap>
#include <QStringList>
#include <QVariant>

namespace IPCore {
class OutputSet;
}

namespace CpriHost {

class PluginHost;

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

// Generates a record that passed its checks into the output set the caller
// opened for it: the plug-in's files, then the core's own top level and its
// register file. False with the reason and the exit code when it fails.
bool generateCore(PluginHost &host, IPCore::OutputSet &set, const QMap<QString, QVariant> &record,
                  bool synthesize, QJsonObject &result, QString &error, int &code);

} // namespace CpriHost
