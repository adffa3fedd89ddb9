// What checking a record against the core's dialog adds to generating it.
//
//   bench_check [processes] [records]   (default 50 processes, 2000 records)
//
// Cold: each of the processes checks one record the way cpri-host does
// before generating it, then generates it, and reports both times: the
// first check of a process against the generation it precedes. Warm: in
// this process, checks and generations of the same records alternate, as
// a batch run of many records does them.

#include "benchstats.h"

#include <recordfile.h>
#include <recordrules.h>

#include <config/configkeys.h>
#include <plugin/cpri.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipserdes/serdes.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

struct Timed
{
    double checkUs = 0;
    double generateUs = 0;
};

// Checks a record in a project of its device, then generates it; false
// when the record is refused or does not generate.
bool checkAndGenerate(IPCPRI::cpri &protocol, const IPCPRI::ConfigMap &record,
                      const QString &workDir, Timed &timed)
{
    IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
    registry->reset();
    registry->setDevice(Core::IdeCore::deviceDataBase()->findDevice(
        record.value(IPCPRI::Config::Key::TargetDevice).toString()));
    registry->setWorkingDir(workDir);
    QElapsedTimer timer;
    timer.start();
    const QString problem = CpriHost::RecordRules(protocol, protocol.descriptor()).problem(record);
    timed.checkUs = timer.nsecsElapsed() / 1000.0;
    QStringList settings, files, options;
    QString message;
    timer.start();
    const bool generated = protocol.generate(record, settings, files, options, message, false);
    timed.generateUs = timer.nsecsElapsed() / 1000.0;
    if (!problem.isEmpty())
        std::fprintf(stderr, "refused: %s\n", qPrintable(problem));
    return problem.isEmpty() && generated;
}

int once(const QString &recordPath)
{
    IPCPRI::ConfigMap record;
    QString error;
    QTemporaryDir work;
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    Timed timed;
    if (!CpriHost::RecordFile::read(recordPath, record, error) || !protocol.loadDescriptor()
        || !checkAndGenerate(protocol, record, work.path(), timed))
        return 1;
    std::printf("%f %f\n", timed.checkUs, timed.generateUs);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString record = QStringLiteral(CPRI_SOURCE_DIR "/examples/cpri_9g8304_q0lane1.json");
    if (argc > 2 && QByteArray(argv[1]) == "--once")
        return once(QString::fromLocal8Bit(argv[2]));
    const int processes = argc > 1 ? std::max(1, std::atoi(argv[1])) : 50;
    const int records = argc > 2 ? std::max(1, std::atoi(argv[2])) : 2000;

    QVector<double> coldCheck, coldGenerate;
    for (int i = 0; i < processes; ++i) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--once"), record});
        if (!child.waitForFinished(30000) || child.exitCode() != 0) {
            std::fprintf(stderr, "the child failed: %s\n",
                         child.readAllStandardError().constData());
            return 1;
        }
        const QList<QByteArray> times = child.readAllStandardOutput().trimmed().split(' ');
        coldCheck << times.value(0).toDouble();
        coldGenerate << times.value(1).toDouble();
    }

    IPCPRI::ConfigMap stored;
    QString error;
    QTemporaryDir work;
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    if (!CpriHost::RecordFile::read(record, stored, error) || !protocol.loadDescriptor())
        return 1;
    QVector<double> warmCheck, warmGenerate;
    for (int i = 0; i < records; ++i) {
        Timed timed;
        if (!checkAndGenerate(protocol, stored, work.path(), timed))
            return 1;
        warmCheck << timed.checkUs;
        warmGenerate << timed.generateUs;
    }

    const Bench::Figures cc = Bench::figures(coldCheck), cg = Bench::figures(coldGenerate);
    const Bench::Figures wc = Bench::figures(warmCheck), wg = Bench::figures(warmGenerate);
    std::printf("First record of a process (%d processes):\n", processes);
    Bench::printRow("check", cc, "us");
    Bench::printRow("generate, after the check", cg, "us");
    std::printf("  %-34s median %.1f ms  (goal: under 15 ms)\n", "what the check adds",
                cc.median / 1000.0);
    std::printf("Records of one batch run (%d records, alternating):\n", records);
    Bench::printRow("check", wc, "us");
    Bench::printRow("generate", wg, "us");
    Bench::printRatio("check / generate", wc, wg, "a batch stays one process");
    return 0;
}
