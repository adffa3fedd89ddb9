#include "serdesfunctions.h"

#include "namerules.h"
#include "recordkeys.h"
#include "../ipcore/ipcorefunctions.h"
#include "refclocks_p.h"
#include "../ipcore/outputset_p.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace IPSERDESIP {

using namespace Internal;

QString FromRefOptionToRef(const QString &refDisplayName)
{
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    return clock ? clock->routingName : QString();
}

QString refsrcOptTransforSerdesName(const QString &refDisplayName)
{
    const RefClock *clock = refClockByDisplayName(refDisplayName);
    return clock ? clock->serdesName : QString();
}

namespace {

// How long a synthesis run may take before it is given up.
constexpr int SynthesisTimeoutMs = 120000;

// Yosys's statistics lines that describe the synthesised netlist: wires,
// wire bits, cells and the cells by type.
QStringList statistics(const QString &log)
{
    const QStringList lines = log.split(QLatin1Char('\n'));
    int first = -1;
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).trimmed().startsWith(QLatin1String("Number of wires:")))
            first = i;
    }
    QStringList kept;
    for (int i = first; first >= 0 && i < lines.size() && !lines.at(i).trimmed().isEmpty(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (!line.startsWith(QLatin1String("Number of"))
            || line.startsWith(QLatin1String("Number of wire"))
            || line.startsWith(QLatin1String("Number of cells")))
            kept << line.simplified();
    }
    return kept;
}

// Yosys's error lines, or the end of its log when it names none.
QString errors(const QString &log)
{
    const QStringList lines = log.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QStringList found;
    for (const QString &line : lines) {
        if (line.contains(QLatin1String("ERROR:")))
            found << line.trimmed();
    }
    return (found.isEmpty() ? lines.mid(lines.size() - 3) : found).join(QStringLiteral("; "));
}

QString quoted(const QString &path)
{
    return QLatin1Char('"') + path + QLatin1Char('"');
}

// Runs Yosys with the script in folder; false with the reason when it
// does not finish or fails.
bool runYosys(const QString &yosys, const QString &folder, const QString &script, QString &log,
              QString &reason)
{
    QProcess run;
    run.setWorkingDirectory(folder);
    run.setProcessChannelMode(QProcess::MergedChannels);
    run.start(yosys, {QStringLiteral("-p"), script});
    if (!run.waitForFinished(SynthesisTimeoutMs)) {
        reason =
            run.error() == QProcess::Timedout
                ? QStringLiteral("Yosys did not finish within %1 s").arg(SynthesisTimeoutMs / 1000)
                : run.errorString();
        run.kill();
        run.waitForFinished();
        return false;
    }
    log = QString::fromLocal8Bit(run.readAll());
    if (run.exitStatus() == QProcess::NormalExit && run.exitCode() == 0)
        return true;
    reason = errors(log);
    return false;
}

} // namespace

bool waitForRunSyntheSis(const DEV::DeviceArg &device, const QMap<QString, QVariant> &config,
                         const QMap<QString, QVariant> &ipInfo, const QStringList &sources,
                         const QString &coreName, QString &message, QObject *context)
{
    Q_UNUSED(context)
    const auto failed = [&](const QString &reason) {
        message = QStringLiteral("Synthesis of %1 failed: %2").arg(coreName, reason);
        return false;
    };
    const QDir dataDir(ipInfo.value(QStringLiteral("ipcore.dir.data")).toString());
    QStringList missing;
    QStringList paths;
    for (const QString &source : sources) {
        const QFileInfo file(dataDir.filePath(source));
        paths << quoted(file.absoluteFilePath());
        if (!file.isFile())
            missing << source;
    }
    if (!missing.isEmpty())
        return failed(QStringLiteral("%1 not found in %2")
                          .arg(missing.join(QStringLiteral(", ")), dataDir.path()));
    const QString yosys = QStandardPaths::findExecutable(QStringLiteral("yosys"));
    if (yosys.isEmpty())
        return failed(QStringLiteral("Yosys is not on the PATH (no synthesis tool in this host)"));
    // The define files the core generated last, or their staging folder while
    // an output set writes them.
    const QStringList written = IPCore::writtenFiles();
    const QString folder = written.isEmpty() ? QString() : QFileInfo(written.last()).path();
    if (folder.isEmpty() || !QFileInfo(IPCore::Internal::stagedFolder(folder)).isDir())
        return failed(QStringLiteral("the core has generated no files"));
    const QString top = config.value(RecordKey::Module).toString();
    const QString topProblem = NameRules::moduleNameProblem(top);
    if (!topProblem.isEmpty())
        return failed(topProblem);
    // Yosys takes no quoted include folder: it runs in the define folder.
    const QString script =
        QStringLiteral("read_verilog -I. %1; hierarchy -check -top %2; synth -top %2; stat")
            .arg(paths.join(QLatin1Char(' ')), top);
    QString log, reason;
    if (!runYosys(yosys, IPCore::Internal::stagedFolder(folder), script, log, reason))
        return failed(reason);
    const QString deviceName = device.isNull() ? QStringLiteral("no device") : device.id();
    message = QStringLiteral("Synthesis of %1 (%2) for %3 with Yosys:\n%4")
                  .arg(coreName, top, deviceName, statistics(log).join(QLatin1Char('\n')));
    return true;
}

} // namespace IPSERDESIP
