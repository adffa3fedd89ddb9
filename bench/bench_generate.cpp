// Time per generated core against writing the same bytes to the same
// files directly, in the same way generation writes them (a file beside
// the target, then renamed over it), to show what generation adds over
// plain file output. The two alternate record by record.
//
//   bench_generate [records]   (default 2000)

#include "benchstats.h"

#include <config/configkeys.h>
#include <plugin/cpri.h>

#include <ipcore/ipcorefunctions.h>
#include <ipserdes/serdes.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;

namespace {

const char *const Lanes[] = {"Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q0 Lane3",
                             "Q1 Lane0", "Q1 Lane1", "Q1 Lane2", "Q1 Lane3"};

// A spread of records: every lane, PLL and speed class, some ports.
ConfigMap record(int i)
{
    ConfigMap r;
    for (const IPCPRI::Config::KeySpec &key : IPCPRI::Config::recordKeys())
        r.insert(key.key, key.initial);
    r.insert(Key::TargetDevice, i % 2 ? QStringLiteral("DVA-2-I2") : QStringLiteral("DVC-1-C2I1"));
    r.insert(Key::File, QStringLiteral("core%1").arg(i % 16));
    r.insert(Key::Module, QStringLiteral("cpri_top_%1").arg(i));
    r.insert(Key::ChannelSelection, QString::fromLatin1(Lanes[i % 8]));
    const QString plls[] = {QStringLiteral("QPLL0"), QStringLiteral("QPLL1"),
                            QStringLiteral("CPLL")};
    r.insert(Key::PllSelection, plls[i % 3]);
    r.insert(Key::SpeedSel1216512, true);
    r.insert(Key::HighestSpeedIndex, i % 11);
    r.insert(Key::LineRate, QStringLiteral("12.16512Gbps"));
    r.insert(Key::DrpPorts, i % 4 == 0);
    r.insert(Key::ChangedAllOfBias, i % 5 == 0);
    return r;
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes bytes to a file beside path and renames it over path.
bool writeAndRename(const QString &path, const QByteArray &bytes)
{
    const QString partial = path + QStringLiteral(".bench");
    QFile file(partial);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()
        || !file.flush())
        return false;
    file.close();
    return std::rename(QFile::encodeName(partial).constData(), QFile::encodeName(path).constData())
           == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 2000;
    QTemporaryDir work;
    IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    if (!protocol.loadDescriptor()) {
        std::fprintf(stderr, "cannot read the package in %s\n", CPRI_PACKAGE_DIR);
        return 1;
    }

    QVector<double> generation, plain;
    QElapsedTimer timer;
    for (int i = 0; i < count; ++i) {
        const ConfigMap r = record(i);
        QStringList settings, files, options;
        QString message;
        IPCore::clearWrittenFiles();
        timer.start();
        const bool generated = protocol.generate(r, settings, files, options, message, false);
        generation << timer.nsecsElapsed() / 1000.0;
        const QStringList written = IPCore::writtenFiles();
        if (!generated || written.isEmpty()) {
            std::fprintf(stderr, "generation failed: %s\n", qPrintable(IPCore::lastError()));
            return 1;
        }

        // The same bytes to the same files, the same way.
        QVector<QByteArray> bytes;
        for (const QString &path : written)
            bytes << readAll(path);
        timer.start();
        for (int f = 0; f < written.size(); ++f) {
            if (!writeAndRename(written.at(f), bytes.at(f))) {
                std::fprintf(stderr, "cannot write %s\n", qPrintable(written.at(f)));
                return 1;
            }
        }
        plain << timer.nsecsElapsed() / 1000.0;
    }

    const Bench::Figures g = Bench::figures(generation), w = Bench::figures(plain);
    std::printf("Per record (%d records, alternating):\n", count);
    Bench::printRow("generate", g, "us");
    Bench::printRow("plain writes, same bytes and way", w, "us");
    Bench::printRatio("generate / plain writes", g, w, "under 2x");
    return 0;
}
