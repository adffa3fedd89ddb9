// Cold loading of the plug-in: each load runs in a fresh process, as a
// host's first load does, against the smallest Qt plug-in loaded the same
// way; the two alternate, process by process.
//
//   bench_pluginload [loads]   (default 200 of each)
//
// A child process (bench_pluginload --load PATH) starts the host's
// libraries and a QApplication first, so that only the plug-in itself is
// timed, and prints the nanoseconds that QPluginLoader::load took.

#include "benchstats.h"

#include <ipserdes/serdes.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPluginLoader>
#include <QProcess>

#include <cstdlib>

namespace {

int loadOnce(int argc, char *argv[], const QString &path)
{
    QApplication app(argc, argv);
    IPSERDESIP::serdes::instance(); // the host library is up before the plug-in
    QPluginLoader loader(path);
    QElapsedTimer timer;
    timer.start();
    const bool loaded = loader.load();
    const qint64 ns = timer.nsecsElapsed();
    if (!loaded) {
        std::fprintf(stderr, "%s\n", qPrintable(loader.errorString()));
        return 1;
    }
    std::printf("%lld\n", static_cast<long long>(ns));
    return 0;
}

// Microseconds of one cold load in a child process, or a negative number.
double childLoad(const QString &self, const QString &path)
{
    QProcess child;
    child.start(self, {QStringLiteral("--load"), path});
    if (!child.waitForFinished(30000) || child.exitCode() != 0)
        return -1;
    return child.readAllStandardOutput().trimmed().toLongLong() / 1000.0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 3 && qstrcmp(argv[1], "--load") == 0)
        return loadOnce(argc, argv, QString::fromLocal8Bit(argv[2]));

    QCoreApplication app(argc, argv);
    const int loads = argc > 1 ? std::max(1, std::atoi(argv[1])) : 200;
    const QString self = QCoreApplication::applicationFilePath();
    const QString plugin = QStringLiteral(CPRI_PLUGIN_PATH);
    const QString floor = QStringLiteral(FLOOR_PLUGIN_PATH);
    QVector<double> pluginLoads, floorLoads;
    for (int i = 0; i < loads; ++i) {
        const double p = childLoad(self, plugin);
        const double f = childLoad(self, floor);
        if (p < 0 || f < 0) {
            std::fprintf(stderr, "a child process could not load a plug-in\n");
            return 1;
        }
        pluginLoads << p;
        floorLoads << f;
    }
    const Bench::Figures fp = Bench::figures(pluginLoads), ff = Bench::figures(floorLoads);
    std::printf("Cold QPluginLoader::load, one process per load (%d each):\n", loads);
    Bench::printRow("libcpri.so", fp, "us");
    Bench::printRow("smallest Qt plug-in (floor)", ff, "us");
    std::printf("  libcpri.so median %.3f ms (goal: under 0.35 ms)\n", fp.median / 1000.0);
    return 0;
}
