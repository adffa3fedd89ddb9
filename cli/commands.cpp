#include "commands.h"

#include "modaldriver.h"
#include "pluginhost.h"
#include "recordfile.h"

#include <config/configkeys.h>
#include <config/descriptorkeys.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/baseprotocol.h>
#include <ipserdes/message.h>
#include <ipserdes/serdes.h>

#include <QDialog>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTabWidget>
#include <QTextStream>

#include <memory>

namespace CpriHost {

namespace {

const QString DefaultInstanceName = QStringLiteral("cpri_0");

void print(const QJsonDocument &doc)
{
    QTextStream(stdout) << doc.toJson(QJsonDocument::Indented);
}

int fail(const QString &message, int code = BadInput)
{
    QTextStream(stderr) << "cpri-host: " << message << '\n';
    return code;
}

QJsonArray toArray(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
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

// The core's files go below the working directory: its file name must not lead elsewhere.
bool fileStaysInWorkDir(const QMap<QString, QVariant> &record, QString &error)
{
    const QString file = record.value(IPCPRI::Config::Key::File).toString();
    const bool plain = !file.contains(QLatin1Char('/')) && !file.contains(QLatin1Char('\\'))
                       && file != QLatin1String(".") && file != QLatin1String("..");
    if (!plain)
        error = QStringLiteral("the record's file name \"%1\" must be a plain name, not a path")
                    .arg(file);
    return plain;
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

QString generationFailure(const QMap<QString, QVariant> &record, bool synthesize,
                          const QString &synthesisMessage)
{
    if (record.isEmpty())
        return QStringLiteral("the record is empty: nothing to generate");
    if (synthesize && !synthesisMessage.isEmpty())
        return synthesisMessage;
    const QString error = IPCore::lastError();
    return error.isEmpty() ? QStringLiteral("generation failed") : error;
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
    QMap<QString, QVariant> record;
    DEV::DeviceArg device;
    QString error;
    if (options.workDir.isEmpty())
        return fail(QStringLiteral("generate needs --workdir DIR"));
    if (!readRecordArgument(options, record, error) || !fileStaysInWorkDir(record, error)
        || !deviceOfRecord(record, device, error) || !prepareProject(host, options, device, error))
        return fail(error);

    IPCore::clearWrittenFiles();
    QStringList settings, projectFiles, synthesisOptions;
    QString synthesisMessage;
    const bool ok = host.protocol()->generate(record, settings, projectFiles, synthesisOptions,
                                              synthesisMessage, options.synthesize);
    QJsonObject result{
        {QStringLiteral("ok"), ok},
        {QStringLiteral("serdesSettings"), toArray(settings)},
        {QStringLiteral("synthesisOptions"), toArray(synthesisOptions)},
        {QStringLiteral("files"), toArray(IPCore::writtenFiles())},
    };
    if (options.synthesize)
        result.insert(QStringLiteral("synthesisMessage"), synthesisMessage);
    print(QJsonDocument(result));
    if (!ok)
        return fail(generationFailure(record, options.synthesize, synthesisMessage), Failed);
    return Success;
}

int runResources(PluginHost &host, const Options &options)
{
    QMap<QString, QVariant> record;
    QString error;
    if (!readRecordArgument(options, record, error))
        return fail(error);
    std::unique_ptr<IPSERDESIP::Message> resources(host.protocol()->checkResources(record));
    print(QJsonDocument(resourcesToJson(*resources)));
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
    if (result.isEmpty())
        return fail(refused ? QStringLiteral("the dialog refused its settings")
                            : QStringLiteral("no record: the dialog was cancelled or refused"),
                    Failed);
    if (!options.outRecord.isEmpty() && !RecordFile::write(options.outRecord, result, error))
        return fail(error, Failed);
    print(QJsonDocument(RecordFile::toJson(result)));
    return Success;
}

} // namespace CpriHost
