// Time per generated core against writing the same bytes to the same
// files directly, to show what generation adds over plain file output.
//
//   bench_generate [records]   (default 2000)

#include "../tests/testrecords.h"

#include <config/configkeys.h>
#include <plugin/cpri.h>

#include <ipserdes/serdes.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>

using IPCPRI::ConfigMap;
namespace Key = IPCPRI::Config::Key;

namespace {

const char *const Lanes[] = {"Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q0 Lane3",
                             "Q1 Lane0", "Q1 Lane1", "Q1 Lane2", "Q1 Lane3"};

// A spread of records: every lane, PLL and speed class, some ports.
ConfigMap record(int i)
{
    ConfigMap r = TestRecords::initial();
    r.insert(Key::TargetDevice, i % 2 ? QStringLiteral("DVA-2-I2") : QStringLiteral("DVC-1-C2I1"));
    r.insert(Key::File, QStringLiteral("core%1").arg(i % 16));
    r.insert(Key::Module, QStringLiteral("cpri_top_%1").arg(i));
    r.insert(Key::ChannelSelection, QString::fromLatin1(Lanes[i % 8]));
    const QString plls[] = {QStringLiteral("QPLL0"), QStringLiteral("QPLL1"), QStringLiteral("CPLL")};
    r.insert(Key::PllSelection, plls[i % 3]);
    r.insert(Key::SpeedSel1216512, true);
    r.insert(Key::HighestSpeedIndex, i % 11);
    r.insert(Key::LineRate, QStringLiteral("12.16512Gbps"));
    r.insert(Key::DrpPorts, i % 4 == 0);
    r.insert(Key::ChangedAllOfBias, i % 5 == 0);
    return r;
}

struct Output
{
    QString path;
    QByteArray bytes;
};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 2000;
    QTemporaryDir work;
    IPSERDESIP::serdes::instance()->setWorkingDir(work.path());
    IPCPRI::cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    if (!protocol.loadDescriptor()) {
        std::fprintf(stderr, "cannot read the package in %s\n", CPRI_PACKAGE_DIR);
        return 1;
    }

    QVector<ConfigMap> records;
    for (int i = 0; i < count; ++i)
        records << record(i);

    // Generation, and what it wrote for the plain run to write again.
    QVector<Output> outputs;
    QElapsedTimer timer;
    timer.start();
    for (const ConfigMap &r : qAsConst(records)) {
        QStringList settings, files, options;
        QString message;
        if (!protocol.generate(r, settings, files, options, message, false)) {
            std::fprintf(stderr, "generation failed\n");
            return 1;
        }
    }
    const qint64 generateNs = timer.nsecsElapsed();

    for (const ConfigMap &r : qAsConst(records)) {
        const QString dir = work.path() + QLatin1Char('/') + r.value(Key::File).toString()
                            + QStringLiteral("/temp/cpri/");
        for (const char *name : {"top_define.vh", "cpri_defines.vh", "cpri.ini"}) {
            const QString path = dir + QString::fromLatin1(name);
            outputs.append({path, readAll(path)});
        }
    }
    timer.restart();
    for (const Output &out : qAsConst(outputs)) {
        QFile file(out.path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(out.bytes) < 0)
            return 1;
    }
    const qint64 plainNs = timer.nsecsElapsed();

    const double perGenerate = generateNs / 1000.0 / count;
    const double perPlain = plainNs / 1000.0 / count;
    std::printf("records:                  %d\n", count);
    std::printf("generate:                 %.1f us per record\n", perGenerate);
    std::printf("plain writes, same bytes: %.1f us per record\n", perPlain);
    std::printf("ratio:                    %.2fx (goal: under 2x)\n", perGenerate / perPlain);
    return 0;
}
