// cpri-host dialog: the core's dialog on a new core, a stored record or a
// core of a project, accepted at once, rendered to pictures or shown.

#include "commands.h"

#include "commandsupport.h"
#include "jsonoutput.h"
#include "modaldriver.h"
#include "pluginhost.h"
#include "project.h"
#include "recordfile.h"

#include <dev/devicedb.h>
#include <ipcore/ipcorefunctions.h>
#include <ipserdes/baseprotocol.h>

#include <QDialog>
#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QTabWidget>
#include <QTextStream>

namespace CpriHost {

namespace {

const QString DefaultInstanceName = QStringLiteral("cpri_0");

// What the dialog opens on: a new core on a device, a stored record, or a
// core of a project.
struct Subject
{
    DEV::DeviceArg device;
    QMap<QString, QVariant> saved; // empty for a new core
    Project project;
    int core = -1; // the project's core, from 0; -1 for none
};

// The folders the run made (the dialog's Calculate makes the core's), which
// a run that ends without a record removes.
class MadeFolders
{
public:
    ~MadeFolders()
    {
        for (const QString &folder : IPCore::createdFolders()) {
            if (!keep)
                QDir(folder).removeRecursively();
        }
    }
    bool keep = false;
};

// --project and --core go together, and the project holds what other options would give.
QString projectOptionsProblem(const Options &options)
{
    if (options.project.isEmpty() && !options.core.isEmpty())
        return QStringLiteral("--core needs --project PROJECT.json");
    if (options.project.isEmpty())
        return QString();
    if (options.core.isEmpty())
        return QStringLiteral("dialog --project needs --core N");
    const QList<QPair<bool, QString>> others = {
        {!options.editRecord.isEmpty(), QStringLiteral("edit")},
        {!options.device.isEmpty(), QStringLiteral("device")},
        {!options.occupied.isEmpty(), QStringLiteral("occupy")},
        {!options.shared.isEmpty(), QStringLiteral("shared")},
    };
    for (const auto &other : others) {
        if (other.first)
            return QStringLiteral("--%1 does not go with --project: the project holds the core's "
                                  "record, device, other cores and shared values")
                .arg(other.second);
    }
    return QString();
}

bool openProjectCore(PluginHost &host, const Options &options, Subject &subject, QString &error)
{
    Project &project = subject.project;
    if (!project.read(host, options.project, error))
        return false;
    bool number = false;
    subject.core = options.core.toInt(&number) - 1;
    if (!number || subject.core < 0 || subject.core >= project.cores.size()) {
        error = QStringLiteral("--core takes the number of a core of %1, 1 to %2, not \"%3\"")
                    .arg(options.project)
                    .arg(project.cores.size())
                    .arg(options.core);
        return false;
    }
    if (!options.workDir.isEmpty())
        project.workDir = workDirectory(options);
    project.openCore(host, subject.core);
    subject.saved = project.cores.at(subject.core).record;
    subject.device = project.device;
    return true;
}

bool openRecordOrDevice(PluginHost &host, const Options &options, Subject &subject, QString &error)
{
    subject.device = devices()->devices().value(0);
    if (!options.editRecord.isEmpty()
        && (!RecordFile::read(options.editRecord, subject.saved, error)
            || !deviceOfRecord(subject.saved, subject.device, error)))
        return false;
    if (!options.device.isEmpty() && !findDevice(options.device, subject.device, error))
        return false;
    return prepareProject(host, options, subject.device, error);
}

QStringList saveScreenshots(QDialog *dialog, const QString &dir)
{
    QStringList files;
    QDir().mkpath(dir);
    // The offscreen screen is small: the pictures show the dialog at the size it asks for.
    dialog->resize(dialog->sizeHint());
    QCoreApplication::processEvents();
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

// Runs the dialog, pressing OK or taking pictures as the options ask; the
// accepted record, or an empty one.
QMap<QString, QVariant> runDialogWindow(PluginHost &host, const Options &options,
                                        const Subject &subject, QStringList &screenshots,
                                        bool &refused)
{
    ModalDriver driver;
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
        subject.saved.isEmpty() ? host.protocol()->createConfig(DefaultInstanceName, subject.device)
                                : host.protocol()->editConfig(subject.saved);
    driver.stop();
    for (const ModalDriver::SeenBox &box : driver.seenBoxes())
        QTextStream(stderr) << "cpri-host: " << box.title << ": " << box.text << '\n';
    return result;
}

} // namespace

int runDialog(PluginHost &host, const Options &options)
{
    QString error = projectOptionsProblem(options);
    Subject subject;
    if (!error.isEmpty()
        || !(options.project.isEmpty() ? openRecordOrDevice(host, options, subject, error)
                                       : openProjectCore(host, options, subject, error)))
        return fail(error);
    MadeFolders made;
    QStringList screenshots;
    bool refused = false;
    const QMap<QString, QVariant> result =
        runDialogWindow(host, options, subject, screenshots, refused);
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
    if ((subject.core >= 0 && !subject.project.writeBack(subject.core, result, error))
        || (!options.outFile.isEmpty() && !RecordFile::write(options.outFile, result, error)))
        return fail(error, Failed);
    made.keep = true;
    print(QJsonDocument(RecordFile::toJson(result)));
    return Success;
}

} // namespace CpriHost
