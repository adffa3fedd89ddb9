#include "commands.h"

#include "instantiation.h"
#include "jsonoutput.h"
#include "modaldriver.h"
#include "pluginhost.h"
#include "recordfile.h"
#include "recordrules.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>
#include <dialog/coreports.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipcore/outputset.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/generator.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTabWidget>
#include <QTextStream>

#include <algorithm>
#include <memory>
#include <numeric>
#include <vector>

namespace CpriHost {

namespace {

const QString DefaultInstanceName = QStringLiteral("cpri_0");

int fail(const QString &message, int code = BadInput)
{
    warn(message);
    return code;
}

IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

DEV::DeviceDb *devices()
{
    return Core::IdeCore::deviceDataBase();
}

QJsonObject resourcesToJson(const IPSERDESIP::Message &m)
{
    return QJsonObject{
        {QStringLiteral("coreName"), m.coreName},
        {QStringLiteral("instanceName"), m.instanceName},
        {QStringLiteral("fileValue"), m.fileValue},
        {QStringLiteral("moduleValue"), m.moduleValue},
        {QStringLiteral("pllList"), toArray(m.pllList)},
        {QStringLiteral("refClockList"), toArray(m.refClockList)},
        {QStringLiteral("refFreqList"), toArray(m.refFreqList)},
        {QStringLiteral("laneList"), toArray(m.laneList)},
        {QStringLiteral("lineRates"), toArray(m.lineRates)},
        {QStringLiteral("auxList1"), toArray(m.auxList1)},
        {QStringLiteral("auxList2"), toArray(m.auxList2)},
    };
}

bool readRecordArgument(const Options &options, QMap<QString, QVariant> &record, QString &error)
{
    if (options.arguments.size() != 1) {
        error = QStringLiteral("%1 needs one RECORD.json").arg(options.command);
        return false;
    }
    return RecordFile::read(options.arguments.first(), record, error);
}

// The device a record names; a record without one works on no device.
bool deviceOfRecord(const QMap<QString, QVariant> &record, DEV::DeviceArg &device, QString &error)
{
    if (!record.contains(IPCPRI::Config::Key::TargetDevice))
        return true;
    const QString id = record.value(IPCPRI::Config::Key::TargetDevice).toString();
    device = devices()->findDevice(id);
    if (device.isNull())
        error = QStringLiteral("unknown device \"%1\" (see: cpri-host devices)").arg(id);
    return !device.isNull();
}

bool applyShared(const QStringList &assignments, QString &error)
{
    for (const QString &assignment : assignments) {
        const QString key = assignment.section(QLatin1Char('='), 0, 0);
        bool ok = false;
        const int value = assignment.section(QLatin1Char('='), 1).toInt(&ok);
        if (key.isEmpty() || !assignment.contains(QLatin1Char('=')) || !ok) {
            error = QStringLiteral("--shared takes KEY=INTEGER, not \"%1\"").arg(assignment);
            return false;
        }
        registry()->setData(key, value);
    }
    return true;
}

// Lets the registry know what the other cores of the project hold.
bool occupyOtherCores(PluginHost &host, const QStringList &records, QString &error)
{
    for (const QString &path : records) {
        QMap<QString, QVariant> record;
        if (!RecordFile::read(path, record, error))
            return false;
        std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(record));
        IPSERDESIP::Conflict conflict;
        if (!registry()->occupy(*resources, &conflict)) {
            error = QStringLiteral("%1: %2").arg(path, conflict.message);
            return false;
        }
    }
    return true;
}

bool prepareProject(PluginHost &host, const Options &options, const DEV::DeviceArg &device,
                    QString &error)
{
    registry()->reset();
    registry()->setDevice(device);
    registry()->setWorkingDir(QDir(options.workDir.isEmpty() ? QDir::currentPath()
                                                              : options.workDir)
                                  .absolutePath());
    return applyShared(options.shared, error) && occupyOtherCores(host, options.occupied, error);
}

QString generationFailure(bool synthesize, const QString &synthesisMessage)
{
    if (synthesize && !synthesisMessage.isEmpty())
        return synthesisMessage;
    const QString error = IPCore::lastError();
    return error.isEmpty() ? QStringLiteral("generation failed") : error;
}

// One record of a generate run.
struct Job
{
    QString path;
    QMap<QString, QVariant> record;
    DEV::DeviceArg device;
    QJsonObject result;
};

// A record is checked on its device, against the project the options describe.
bool checkJob(PluginHost &host, const Options &options, Job &job, QString &error)
{
    if (!deviceOfRecord(job.record, job.device, error)
        || !prepareProject(host, options, job.device, error))
        return false;
    const QString problem = RecordRules(*host.protocol(), host.descriptor()).problem(job.record);
    if (!problem.isEmpty())
        error = QStringLiteral("%1: %2").arg(job.path, problem);
    return problem.isEmpty();
}

// The one record of a command, checked as generation checks it.
bool readCheckedRecord(PluginHost &host, const Options &options, Job &job, QString &error)
{
    job.path = options.arguments.value(0);
    return readRecordArgument(options, job.record, error) && checkJob(host, options, job, error);
}

// Two records of one run must not write the same folder.
bool filesDiffer(const QVector<Job> &jobs, QString &error)
{
    for (int i = 0; i < jobs.size(); ++i) {
        for (int j = 0; j < i; ++j) {
            const QString file = jobs.at(i).record.value(IPCPRI::Config::Key::File).toString();
            if (file == jobs.at(j).record.value(IPCPRI::Config::Key::File).toString()) {
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
            error = QStringLiteral("%1 and %2 name different devices; generate each device's cores in a run "
                                   "of their own").arg(jobs.first().path, job.path);
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
        return jobs.at(a).record.value(IPCPRI::Config::Key::File).toString()
               < jobs.at(b).record.value(IPCPRI::Config::Key::File).toString();
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

QStringList saveScreenshots(QDialog *dialog, const QString &dir)
{
    QStringList files;
    QDir().mkpath(dir);
    const auto save = [&](const QString &name) {
        const QString path = QDir(dir).absoluteFilePath(name);
        if (dialog->grab().save(path))
            files << path;
    };
    save(QStringLiteral("dialog.png"));
    if (auto *tabs = dialog->findChild<QTabWidget *>()) {
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            save(QStringLiteral("tab%1.png").arg(i + 1));
        }
        tabs->setCurrentIndex(0);
    }
    return files;
}

} // namespace

bool generateCore(PluginHost &host, const QMap<QString, QVariant> &record, bool synthesize,
                  QJsonObject &result, QString &error, int &code)
{
    QStringList settings, projectFiles, synthesisOptions;
    QString synthesisMessage;
    if (!host.protocol()->generate(record, settings, projectFiles, synthesisOptions,
                                   synthesisMessage, synthesize)) {
        error = generationFailure(synthesize, synthesisMessage);
        code = Failed;
        return false;
    }
    // The settings must pass the check the transceiver generator makes of them.
    const QStringList problems = IPSERDESIP::generator::checkSettings(settings);
    if (!problems.isEmpty()) {
        error = problems.first();
        code = BadInput;
        return false;
    }
    result = QJsonObject{
        {QStringLiteral("ok"), true},
        {QStringLiteral("serdesSettings"), toArray(settings)},
        {QStringLiteral("synthesisOptions"), toArray(synthesisOptions)},
    };
    if (synthesize)
        result.insert(QStringLiteral("synthesisMessage"), synthesisMessage);
    return true;
}

int runInfo(PluginHost &host)
{
    IPSERDESIP::BaseProtocol *protocol = host.protocol();
    const QMap<QString, QVariant> descriptor =
        IPCore::processIPInfoSpec(host.packageDir() + QLatin1Char('/') + IPCPRI::Descriptor::FileName);
    print(QJsonDocument(QJsonObject{
        {QStringLiteral("id"), protocol->id()},
        {QStringLiteral("name"), protocol->name()},
        {QStringLiteral("version"), protocol->version()},
        {QStringLiteral("category"), toArray(protocol->category())},
        {QStringLiteral("summary"), protocol->summary()},
        {QStringLiteral("packageDir"), host.packageDir()},
        {QStringLiteral("descriptor"), QJsonObject::fromVariantMap(descriptor)},
    }));
    return Success;
}

int runGuide(PluginHost &host)
{
    const QString help = IPCore::processIPInfoSpec(host.packageDir() + QLatin1Char('/')
                                                   + IPCPRI::Descriptor::FileName)
                             .value(IPCPRI::Descriptor::Help).toString();
    const QString path = QDir(host.packageDir()).filePath(help);
    if (help.isEmpty() || !QFileInfo(path).isFile())
        return fail(QStringLiteral("the user guide %1 is missing").arg(path), Failed);
    QTextStream(stdout) << QDir::cleanPath(path) << '\n';
    return Success;
}

int runDevices(PluginHost &host)
{
    QJsonArray list;
    for (const DEV::DeviceArg &device : devices()->devices()) {
        list.append(QJsonObject{
            {QStringLiteral("id"), device.id()},
            {QStringLiteral("part"), device.device()},
            {QStringLiteral("grade"), device.condition()},
            {QStringLiteral("lanes"), toArray(device.lanes())},
            {QStringLiteral("supported"), host.protocol()->isDeviceSupported(device)},
        });
    }
    print(QJsonDocument(list));
    return Success;
}

int runGenerate(PluginHost &host, const Options &options)
{
    if (options.workDir.isEmpty())
        return fail(QStringLiteral("generate needs --workdir DIR"));
    if (options.arguments.isEmpty())
        return fail(QStringLiteral("generate needs at least one RECORD.json"));
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
        if (!generateCore(host, job.record, options.synthesize, job.result, error, code))
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

int runResources(PluginHost &host, const Options &options)
{
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(job.record));
    print(QJsonDocument(resourcesToJson(*resources)));
    return Success;
}

int runPorts(PluginHost &host, const Options &options)
{
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    QJsonArray ports;
    for (const IPCPRI::CorePort &port : IPCPRI::corePorts(job.record)) {
        const bool output = port.direction == IPCPRI::CorePort::Output;
        ports.append(QJsonObject{
            {QStringLiteral("name"), port.name},
            {QStringLiteral("direction"), output ? QStringLiteral("output") : QStringLiteral("input")},
            {QStringLiteral("width"), port.width},
        });
    }
    print(QJsonDocument(ports));
    return Success;
}

int runTemplate(PluginHost &host, const Options &options)
{
    Job job;
    QString error;
    if (!readCheckedRecord(host, options, job, error))
        return fail(error);
    const QString text = instantiationTemplate(job.record);
    if (options.outRecord.isEmpty()) {
        QTextStream(stdout) << text;
        return Success;
    }
    QSaveFile file(options.outRecord);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        return fail(QStringLiteral("cannot write %1: %2").arg(options.outRecord, file.errorString()),
                    Failed);
    return Success;
}

int runDialog(PluginHost &host, const Options &options)
{
    QMap<QString, QVariant> saved;
    DEV::DeviceArg device = devices()->devices().value(0);
    QString error;
    if (!options.editRecord.isEmpty()
        && (!RecordFile::read(options.editRecord, saved, error)
            || !deviceOfRecord(saved, device, error)))
        return fail(error);
    if (!options.device.isEmpty()) {
        device = devices()->findDevice(options.device);
        if (device.isNull())
            return fail(QStringLiteral("unknown device \"%1\" (see: cpri-host devices)")
                            .arg(options.device));
    }
    if (!prepareProject(host, options, device, error))
        return fail(error);

    ModalDriver driver;
    QStringList screenshots;
    bool refused = false;
    driver.setAnswer(QMessageBox::Yes);
    driver.setDialogHandler([&](QDialog *dialog) {
        if (!options.screenshotDir.isEmpty()) {
            screenshots = saveScreenshots(dialog, options.screenshotDir);
            dialog->reject();
        } else if (options.accept) {
            dialog->accept();
            refused = dialog->isVisible();
            if (refused)
                dialog->reject();
        }
    });
    if (!options.screenshotDir.isEmpty() || options.accept)
        driver.start();
    const QMap<QString, QVariant> result =
        options.editRecord.isEmpty() ? host.protocol()->createConfig(DefaultInstanceName, device)
                                     : host.protocol()->editConfig(saved);
    driver.stop();
    for (const ModalDriver::SeenBox &box : driver.seenBoxes())
        QTextStream(stderr) << "cpri-host: " << box.title << ": " << box.text << '\n';

    if (!options.screenshotDir.isEmpty()) {
        print(QJsonDocument(QJsonObject{{QStringLiteral("screenshots"), toArray(screenshots)}}));
        return screenshots.isEmpty() ? fail(QStringLiteral("the dialog was not shown"), Failed)
                                     : Success;
    }
    if (result.isEmpty() && refused) {
        const QString reason = IPCore::lastError();
        return fail(QStringLiteral("the dialog refused its settings")
                        + (reason.isEmpty() ? QString() : QStringLiteral(": ") + reason),
                    Failed);
    }
    if (result.isEmpty())
        return fail(QStringLiteral("no record: the dialog was cancelled or refused"), Failed);
    if (!options.outRecord.isEmpty() && !RecordFile::write(options.outRecord, result, error))
        return fail(error, Failed);
    print(QJsonDocument(RecordFile::toJson(result)));
    return Success;
}

} // namespace CpriHost
