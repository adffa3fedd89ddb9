// cpri-host generate: each record's core written as one set of files, the
// plug-in's own and the ones the command-line host adds beside them.

#include "commands.h"

#include "commandsupport.h"
#include "jsonoutput.h"
#include "pluginhost.h"
#include "recordfile.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <dialog/dialogtexts.h>
#include <generate/generationnames.h>
#include <generate/toplevel.h>

#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/generator.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <memory>
#include <numeric>
#include <vector>

namespace CpriHost {

namespace {

namespace Key = IPCPRI::Config::Key;
namespace Gen = IPCPRI::Generate;

QString generationFailure(bool synthesize, const QString &synthesisMessage)
{
    if (synthesize && !synthesisMessage.isEmpty())
        return synthesisMessage;
    const QString error = IPCore::lastError();
    return error.isEmpty() ? QStringLiteral("generation failed") : error;
}

QStringList readLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringList();
    QString text = QString::fromUtf8(file.readAll());
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.split(QLatin1Char('\n'));
}

// Top levels of the core's earlier modules leave the set.
bool removeOldTopLevels(IPCore::OutputSet &set, const QString &own)
{
    const QFileInfoList files =
        QDir(set.folder()).entryInfoList({QLatin1Char('*') + Gen::CoreTopLevelSuffix}, QDir::Files);
    for (const QFileInfo &file : files) {
        if (file.fileName() != own && Gen::isCoreTopLevel(readLines(file.filePath()).value(0))
            && !set.remove(file.filePath()))
            return false;
    }
    return true;
}

// The core's own top level: the package's, reading the core's define lines.
bool writeTopLevel(PluginHost &host, IPCore::OutputSet &set, const QMap<QString, QVariant> &record,
                   QString &error)
{
    const QString source =
        QStringList{host.packageDir(), IPCPRI::Descriptor::DataFolder, Gen::TopLevelSource}.join(
            QLatin1Char('/'));
    const QStringList lines = Gen::coreTopLevel(readLines(source), record);
    if (lines.isEmpty()) {
        error = QStringLiteral("%1 does not include %2 and %3 once each")
                    .arg(source, Gen::TopDefineFile, Gen::CoreDefineFile);
        return false;
    }
    const QString name = record.value(Key::Module).toString() + Gen::CoreTopLevelSuffix;
    const QString path = set.folder() + QLatin1Char('/') + name;
    if (!removeOldTopLevels(set, name) || !IPCore::generateFile(path, lines, nullptr, QString())) {
        error = IPCore::lastError();
        return false;
    }
    return true;
}

// The register file, as the dialog's Calculate writes it from the same lines.
bool writeRegisterFile(IPCore::OutputSet &set, const QStringList &settings, QString &error,
                       int &code)
{
    IPSERDESIP::generator generator;
    if (generator.generate(settings,
                           set.writePath(set.folder() + QLatin1Char('/') + Gen::RegisterFile),
                           QStringList()))
        return true;
    const QStringList errors = generator.getErrStringList();
    // Without error lines the rate is out of the reference clock's reach: a bad record.
    code = errors.isEmpty() ? BadInput : Failed;
    error =
        errors.isEmpty() ? IPCPRI::Texts::LineRateUnreachable : errors.join(QStringLiteral("; "));
    return false;
}

// Two records of one run must not write the same folder.
bool filesDiffer(const QVector<Job> &jobs, QString &error)
{
    for (int i = 0; i < jobs.size(); ++i) {
        for (int j = 0; j < i; ++j) {
            const QString file = jobs.at(i).record.value(Key::File).toString();
            if (file == jobs.at(j).record.value(Key::File).toString()) {
                error = QStringLiteral("%1 and %2 both write the core \"%3\"")
                            .arg(jobs.at(j).path, jobs.at(i).path, file);
                return false;
            }
        }
    }
    return true;
}

// The protocol object keeps the device it first generated for, as a
// project's cores share one: the records of a run must name one device.
bool oneDevice(const QVector<Job> &jobs, QString &error)
{
    for (const Job &job : jobs) {
        if (job.device.id() != jobs.first().device.id()) {
            error = QStringLiteral("%1 and %2 name different devices; generate each device's "
                                   "cores in a run of their own")
                        .arg(jobs.first().path, job.path);
            return false;
        }
    }
    return true;
}

// Runs lock their cores' folders in the order of the file names, so that two
// runs sharing cores never wait for each other in a circle.
QVector<int> lockOrder(const QVector<Job> &jobs)
{
    QVector<int> order(jobs.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        return jobs.at(a).record.value(Key::File).toString()
               < jobs.at(b).record.value(Key::File).toString();
    });
    return order;
}

// One record's result as an object; several as an array, each naming its record.
void printResults(const QVector<Job> &jobs)
{
    if (jobs.size() == 1) {
        print(QJsonDocument(jobs.first().result));
        return;
    }
    QJsonArray results;
    for (const Job &job : jobs) {
        QJsonObject result = job.result;
        result.insert(QStringLiteral("record"), job.path);
        results.append(result);
    }
    print(QJsonDocument(results));
}

} // namespace

bool generateCore(PluginHost &host, IPCore::OutputSet &set, const QMap<QString, QVariant> &record,
                  bool synthesize, QJsonObject &result, QString &error, int &code)
{
    QStringList settings, projectFiles, synthesisOptions;
    QString synthesisMessage;
    code = Failed;
    if (!host.protocol()->generate(record, settings, projectFiles, synthesisOptions,
                                   synthesisMessage, synthesize)) {
        error = generationFailure(synthesize, synthesisMessage);
        return false;
    }
    // The settings must pass the check the transceiver generator makes of them.
    const QStringList problems = IPSERDESIP::generator::checkSettings(settings);
    if (!problems.isEmpty()) {
        error = problems.first();
        code = BadInput;
        return false;
    }
    if (!writeTopLevel(host, set, record, error) || !writeRegisterFile(set, settings, error, code))
        return false;
    result = QJsonObject{
        {QStringLiteral("ok"), true},
        {QStringLiteral("serdesSettings"), toArray(settings)},
        {QStringLiteral("synthesisOptions"), toArray(synthesisOptions)},
    };
    if (synthesize)
        result.insert(QStringLiteral("synthesisMessage"), synthesisMessage);
    return true;
}

int runGenerate(PluginHost &host, const Options &options)
{
    QVector<Job> jobs;
    QString error;
    for (const QString &path : options.arguments) {
        Job job{path, {}, {}, {}};
        if (!RecordFile::read(path, job.record, error) || !checkJob(host, options, job, error))
            return fail(error);
        jobs << job;
    }
    if (!filesDiffer(jobs, error) || !oneDevice(jobs, error))
        return fail(error);

    // Each core's files appear together once every record has generated
    // well; until then each set waits in its staging folder.
    std::vector<std::unique_ptr<IPCore::OutputSet>> sets(jobs.size());
    for (int i : lockOrder(jobs)) {
        Job &job = jobs[i];
        if (!prepareProject(host, options, job.device, error))
            return fail(error);
        // The set takes the folder the plug-in creates next.
        sets[size_t(i)] = std::make_unique<IPCore::OutputSet>();
        int code = Success;
        if (!generateCore(host, *sets[size_t(i)], job.record, options.synthesize, job.result, error,
                          code))
            return fail(QStringLiteral("%1: %2").arg(job.path, error), code);
    }
    for (size_t i = 0; i < sets.size(); ++i) {
        if (!sets.at(i)->commit())
            return fail(IPCore::lastError(), Failed);
        jobs[int(i)].result.insert(QStringLiteral("files"), toArray(sets.at(i)->files()));
    }
    printResults(jobs);
    return Success;
}

} // namespace CpriHost
