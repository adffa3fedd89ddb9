// The plug-in outside its dialog: loaded as a host loads it, the lines and
// files it generates (compiled by Icarus Verilog with the shipped core), its
// resource record, its dialog flows and the tables behind them.

#include "testrecords.h"

#include <config/descriptorkeys.h>
#include <config/speedrules.h>
#include <generate/definefiles.h>
#include <generate/synthesisoptions.h>
#include <modaldriver.h>
#include <plugin/cpri.h>
#include <serdes/lanesettings.h>
#include <serdes/resourcenames.h>

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipserdes/message.h>
#include <ipserdes/protocolpackage.h>
#include <ipserdes/serdes.h>

#include <QDialog>
#include <QDir>
#include <QJsonObject>
#include <QPluginLoader>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace TestRecords;
using IPCPRI::ConfigMap;
namespace Config = IPCPRI::Config;
namespace Serdes = IPCPRI::Serdes;

namespace {

// The lines of a file; in the data files, lines starting with "#" are comments.
QStringList fileLines(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll()).split(u("\n"), Qt::SkipEmptyParts)
        .filter(QRegularExpression(u("^[^#]")));
}

// What generation makes of a record, with the lines of lane q0_ln1 on the
// part that "target_device" names.
QStringList generated(const ConfigMap &r)
{
    namespace Gen = IPCPRI::Generate;
    QStringList all = Gen::topDefines(r) + Gen::coreDefines(r) + Gen::synthesisOptions(r);
    Serdes::appendLaneSettings(all, u("q0_ln1"), u("q0"), Serdes::laneInputFromRecord(
                                   r, r.value(Config::Key::TargetDevice).toString()));
    return all + Gen::referenceClockLines(r) + Gen::quadBiasLines(r);
}

// The output of a program, or what went wrong.
QString run(const char *program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u(program), arguments);
    const bool ok = process.waitForFinished(60000) && process.exitCode() == 0;
    const QString output = QString::fromUtf8(process.readAll()).trimmed();
    return ok ? output : u(program) + u(" failed: ") + output + process.errorString();
}

// Compiled after the core, so its defines hold: prints what the core receives.
// Compiled after the top level: it says which define the top level left
// behind, then reads the define files itself.
QByteArray testbench()
{
    QByteArray left;
    for (const QString &name : IPCPRI::Generate::defineNames())
        left += "`ifdef " + name.toUtf8() + "\n  initial $display(\"left " + name.toUtf8() + "\");\n`endif\n";
    return "module tb;\n" + left + R"(  my_cpri dut();
`include "cpri_defines.vh"
  initial $display("%0d %0d %0d %b %0d %h %h %h %h %0.2f", dut.core.LANE_NUM, dut.core.DATA_WIDTH,
    dut.core.SLOT_WIDTH, dut.core.LINE_RATE_MASK, dut.core.LINE_RATE_INIT, dut.core.SCRAMBLER_SEED,
    dut.core.PROTOCOL_VER, dut.core.HDLC_RATE, dut.core.ETH_POINTER, `CFG_CLK_PERIOD);
endmodule
)";
}

// The plug-in's root object with its package folder set; the folder gets a
// descriptor of the given text unless that is null.
IPSERDESIP::ProtocolPackage *package(QPluginLoader &loader, const QString &dir,
                                     const QByteArray &descriptor = QByteArray())
{
    QFile file(dir + u("/cpri.ipspec"));
    if (!descriptor.isNull() && file.open(QIODevice::WriteOnly))
        file.write(descriptor);
    auto *root = qobject_cast<IPSERDESIP::ProtocolPackage *>(loader.instance());
    root->packageDir = dir;
    return root;
}

} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

    QTemporaryDir work;
    std::unique_ptr<IPCPRI::cpri> protocol;
    QStringList settings, options;
    QString message;

    bool generate(const ConfigMap &record, bool synthesis = false)
    {
        QStringList ignored;
        return protocol->generate(record, settings, ignored, options, message, synthesis);
    }
    QString out(const char *f = "") const { return work.path() + u("/ip1/temp/cpri/") + u(f); }
    // What generation of away() leaves in the settings: the caller's line, the lines of its
    // lane on its part, its reference clock, the registry's reset line, then the quad bias.
    static QStringList awaySettings()
    {
        QStringList expected = lines("caller line");
        Serdes::appendLaneSettings(expected, u("q1_ln3"), u("q1"),
                                   Serdes::laneInputFromRecord(away(), u("DVB-1")));
        return expected + lines("mclk_freq 156.25|q1_global_reset_en true|q1_rx_eq_bias 12");
    }

private slots:
    void init()
    {
        IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
        registry->reset();
        QVERIFY(QDir(work.path()).removeRecursively() && QDir().mkpath(work.path()));
        registry->setWorkingDir(work.path());
        registry->setData(u("Q0_BIAS"), 3);
        registry->setData(u("Q1_BIAS"), 12);
        protocol = std::make_unique<IPCPRI::cpri>(u(CPRI_PACKAGE_DIR));
        QVERIFY(protocol->loadDescriptor());
        settings = lines("caller line");
        options = lines("-caller option");
        message = u("untouched");
    }

    void rootObject()
    {
        QPluginLoader loader(u(CPRI_PLUGIN_PATH));
        const QJsonObject meta = loader.metaData();
        QCOMPARE(meta.value(u("IID")).toString(), u("IPCPRI.cpripackage/1.0"));
        QCOMPARE(meta.value(u("className")).toString(), u("cpripackage"));
        QVERIFY(meta.value(u("MetaData")).toObject().isEmpty() && !loader.isLoaded());
        QObject *root = loader.instance();
        QVERIFY(root == loader.instance() && !root->qt_metacast(nullptr));
        QCOMPARE(root->metaObject()->className(), "IPCPRI::cpripackage");
        for (const char *name : {"IPCPRI::cpripackage", IPSERDESIP_ProtocolPackage_iid, "QObject"})
            QCOMPARE(root->qt_metacast(name), static_cast<void *>(root));
        QCOMPARE(root->qt_metacast("IPCPRI::cpri"), nullptr);
        delete root;
        QVERIFY(loader.instance() && loader.instance() == loader.instance());
        QPluginLoader installed(qEnvironmentVariable("CPRI_STAGED_PLUGIN"));
        auto both = package(loader, u(CPRI_PACKAGE_DIR))->protocols();
        both += package(installed, QFileInfo(installed.fileName()).path())->protocols();
        QVERIFY(both.size() == 2 && both.first() != both.last() && !both.first()->parent());
        // No meta-object of its own: the protocol object reports its base's class.
        QCOMPARE(both.first()->metaObject()->className(), "IPSERDESIP::BaseProtocol");
        qDeleteAll(both);
    }

    // Descriptor text -> id|name|version|categories|summary|part P supported, or no protocol.
    void protocolsReadTheDescriptor()
    {
        const QByteArray ok = "ipcore.id = i\nipcore.name = n\nipcore.version = 2\n";
        const QList<QPair<QByteArray, const char *>> rows = {
            {QByteArray(), "none"}, {"ipcore.id=x\nnot a line\n", "none"}, {"ipcore.id=x", "none"},
            {ok + "ipcore.category += a\nipcore.category += b\nipcore.doc.summary = s\n"
                  "ipcore.dir.data = /else\nipcore.device.supported += P\n", "i|n|2|a,b|s|true"},
            {ok, "i|n|2|||true"},
            {ok + "ipcore.device.supported+=P\nipcore.device.unsupported+=P\n", "i|n|2|||false"},
        };
        for (const auto &row : rows) {
            QTemporaryDir dir;
            QPluginLoader loader(u(CPRI_PLUGIN_PATH));
            const auto protocols = package(loader, dir.path(), row.first)->protocols();
            QString answers = u("none");
            for (IPSERDESIP::BaseProtocol *p : protocols) {
                answers = QStringList({p->id(), p->name(), p->version(), p->category().join(u(",")),
                                       p->summary(), QVariant(p->isDeviceSupported(DEV::DeviceArg(
                                           u("id"), u("P"), u("C")))).toString()}).join(u("|"));
                QCOMPARE(static_cast<IPCPRI::cpri *>(p)->descriptor().value(
                             IPCPRI::Descriptor::DataDir).toString(), dir.path() + u("/data"));
            }
            QCOMPARE(answers, u(row.second));
            qDeleteAll(protocols);
        }
    }

    // Rows of changes.txt: the first gives the whole output of a base record,
    // each later one the lines that its changes to the base add.
    void recordChanges()
    {
        const QStringList rows = fileLines(u(CPRI_SOURCE_DIR "/tests/changes.txt")).join(u("\n"))
                                     .replace(u("=>\n|"), u("=> ")).replace(u("\n|"), u("|"))
                                     .split(u("\n"));
        const ConfigMap base = with(ConfigMap(), rows.first().section(u(" =>"), 0, 0));
        QStringList before;
        for (const QString &row : rows) {
            QStringList added;
            for (const QString &line : generated(with(before.isEmpty() ? ConfigMap() : base,
                                                      row.section(u(" =>"), 0, 0))))
                if (!before.contains(line))
                    added << line;
            QVERIFY2(added == lines(row.section(u("=> "), 1)),
                     qPrintable(row + u("\ngives ") + added.join(u("|"))));
            before = generated(base);
        }
    }

    void laneForms()
    {
        for (int number = 0; number < 8; ++number) {
            const QString q = QString::number(number / 4), l = QString::number(number % 4);
            const QString name = u("Q%1 Lane%2").arg(q, l);
            const Serdes::Lane *lane = Serdes::laneByDisplayName(name);
            QVERIFY(lane);
            const auto pll = [lane](const char *p) {
                return Serdes::pllKey(*lane, u(p)).value_or(u("-"));
            };
            QCOMPARE(QStringList({lane->key, lane->prefix, lane->quadName, lane->quadPrefix,
                                  lane->cpllKey, Serdes::laneAccessName(name, true),
                                  Serdes::laneAccessName(name, false), pll("QPLL0"), pll("QPLL1"),
                                  pll("CPLL"), pll("qpll0"), pll(""),
                                  generated(with({}, u("Channel_Selection=") + name)).at(1)}),
                     lines(u("Q%1_LANE%2|q%1_ln%2|Q%1|q%1|Q%1_CPLL%2|Q%1_LANE%2_RX|Q%1_LANE%2_TX|"
                             "Q%1_QPLL0|Q%1_QPLL1|Q%1_CPLL%2|-|-|`define LANE_NUM %3")
                               .arg(q, l).arg(number)));
        }
        for (const char *name : {"", "q0 lane0", "Q0Lane0", "Q2 Lane0", "Q0_LANE0"})
            QVERIFY2(!Serdes::laneByDisplayName(u(name)), name);
        const QStringList others = lines("Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1");
        QCOMPARE(Serdes::offeredRefClocks(u("DVA-2")),
                 lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1"));
        QCOMPARE(Serdes::offeredRefClocks(u("DVB-6")),
                 lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK"));
        QCOMPARE(Serdes::offeredRefClocks(u("DVC-1")) + Serdes::offeredRefClocks(u("dva-1")),
                 others + others);
    }

    // Rate rows whose box is enabled and checked -> mask, highest rate index, line rate.
    void speedState()
    {
        for (const QString &row : lines(
                 "-> 000000000000 -1 0.00000Gbps|0 -> 000000000001 0 0.61440Gbps|"
                 "8 -> 000100000000 8 8.11008Gbps|10 -> 010000000000 10 12.16512Gbps|"
                 "6 8 -> 000101000000 6 9.83040Gbps|"
                 "0 1 2 3 4 5 6 7 8 9 10 11 -> 011101111111 10 12.16512Gbps")) {
            const QString on = row.section(u("->"), 0, 0);
            QVector<bool> boxes(12);
            for (const QString &index : on.split(u(" "), Qt::SkipEmptyParts))
                boxes[index.toInt()] = true;
            const Config::SpeedState state = Config::speedState(boxes);
            QCOMPARE(QStringList({on + u("->"), state.mask, QString::number(state.highestIndex),
                                  Config::lineRateText(state.highest)}).join(u(" ")), row);
            QCOMPARE(state.rates.size(), 11);
        }
        QStringList classes; // those that withdraw rates before moving a check to 1.2288 Gbps
        for (const Config::SpeedClass &c : Config::speedClasses())
            classes << c.key + (c.disableBeforeMove && !c.moveCheckFrom.isEmpty() ? u(" first")
                                                                                   : u(""));
        QCOMPARE(classes, lines("3.072G_and_Under|6.144G_and_Under|9.8304G_and_Under first|"
                                "10.1376G_and_Under first|12.16512G_and_Under"));
    }

    void initialValues()
    {
        const ConfigMap expected = with(ConfigMap(),
            "version=1.0; LANG=0; 3.072G_and_Under=false; 0.6144Gbps=false; Config_Clk_Period=50;"
            "MII=true; GMII=false; Initial_Protocol_Version1=true; Initial_Scrambler_Seed=00000000;"
            "Initial_HDLC_Rate=2; Initial_HDLC_Byte=0; Initial_HDLC_Mask=0000;"
            "Initial_Ethernet_Pointer=14; Line_Rate=0.00000Gbps; Reference_CLK_Source=Q0 REFCLK0;"
            "Reference_CLK_Frequency=122.880; PLL_Selection=QPLL0; Loopback_Mode=OFF;"
            "64B_66B_Mode=SerDes; highest_SpeedIndex=-1; speedEnables_Record=000000000000");
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QVERIFY2(Config::initialValue(it.key()) == it.value(), qPrintable(it.key()));
        QCOMPARE(Config::loopbackModes(), lines("OFF|LB_NES|LB_FES|LB_ENC"));
        QVERIFY(!Config::keySpec(u("Line_rate")));
    }

    // The files hold what the builders give for the record; the lists are appended to.
    void generatesTheFiles()
    {
        namespace Gen = IPCPRI::Generate;
        QVERIFY(generate(away()) && message == u("untouched")); // no synthesis asked for
        QCOMPARE(fileLines(out("top_define.vh")), lines("`define module_name my_cpri"));
        QCOMPARE(fileLines(out("cpri_defines.vh")), Gen::coreDefines(away()));
        QVERIFY(fileLines(out("cpri.ini")) == settings && settings == awaySettings());
        QCOMPARE(options, lines("-caller option") + Gen::synthesisOptions(away()));
        QCOMPARE(protocol->configuration(), away());
    }

    void targetDeviceIsFilledOnce()
    {
        QVERIFY(!generate(ConfigMap()) && protocol->device().isNull());
        QVERIFY(settings + options == lines("caller line|-caller option"));
        QVERIFY(QDir(work.path()).isEmpty());
        QVERIFY(generate(with(away(), "target_device=DVC-1-C2I1")) && !generate(ConfigMap()));
        QVERIFY(generate(away())); // on DVB-1 the lane would get other encoding lines
        QCOMPARE(protocol->device().id(), u("DVC-1-C2I1"));
        QCOMPARE(settings.count(u("q1_ln3_8b10b_encode disable")), 2);
    }

    // What is in the way -> the files written. Only with nothing in the way does generation
    // succeed and run synthesis; the lists are filled in every case.
    void generationSteps()
    {
        for (const QString &row : lines("temp ->|top_define.vh ->|cpri_defines.vh -> top_define.vh|"
                                        "cpri.ini -> top_define.vh cpri_defines.vh|"
                                        "data -> top_define.vh cpri_defines.vh cpri.ini|"
                                        "none -> top_define.vh cpri_defines.vh cpri.ini")) {
            init();
            const QString failing = row.section(u(" "), 0, 0);
            QTemporaryDir bare; // a package without its data folder
            const QString file = u("/cpri.ipspec"), blocker = work.path() + u("/ip1/temp");
            QVERIFY(QDir().mkpath(work.path() + u("/ip1"))
                    && QFile::copy(u(CPRI_PACKAGE_DIR) + file, bare.path() + file));
            QVERIFY(failing == u("temp") ? QFile(blocker).open(QIODevice::WriteOnly)
                                         : QDir().mkpath(out() + failing));
            if (failing == u("data"))
                protocol = std::make_unique<IPCPRI::cpri>(bare.path());
            QVERIFY(protocol->loadDescriptor());
            QCOMPARE(generate(away(), true), failing == u("none"));
            QVERIFY(settings == awaySettings() && options.size() == 20);
            QString written = failing + u(" ->");
            for (const char *name : {"top_define.vh", "cpri_defines.vh", "cpri.ini"})
                written += QFileInfo(out(name)).isFile() ? u(" ") + u(name) : QString();
            QCOMPARE(written, row);
            QCOMPARE(message == u("untouched"), failing != u("data") && failing != u("none"));
        }
        // The reference host synthesises the record's module for the device with Yosys.
        QVERIFY2(message.contains(u("cpri (my_cpri) for DVB-1-C2I1 with Yosys:\nNumber of wires: ")),
                 qPrintable(message));
    }

    // The core compiles with the define files and receives the configured values.
    void definesCompileWithTheCore()
    {
        namespace Gen = IPCPRI::Generate;
        QVERIFY2(QFileInfo(u(IVERILOG_PATH)).isExecutable()
                     && QFileInfo(u(VVP_PATH)).isExecutable(),
                 "Icarus Verilog (iverilog and vvp) is needed: install it and configure again");
        const QList<QPair<ConfigMap, QString>> rows = { // any period for a zero clock
            {away(), u("7 16 6 011101111111 10 7fffffff 02 07 3f 6.67")},
            {with(initial(), "file=ip1; module=my_cpri; Config_Clk_Period=0"),
             u("0 64 6 000000000000 -1 00000000 01 02 14 ")},
        };
        const QString core = u(CPRI_PACKAGE_DIR "/data/");
        for (const auto &row : rows) {
            QFile bench(out("tb.v"));
            QVERIFY(generate(row.first) && bench.open(QIODevice::WriteOnly));
            bench.write(testbench());
            bench.close();
            const QStringList files = {core + u("cpri_top.v"), core + u("cpri_core_encryption.v")};
            QCOMPARE(run(IVERILOG_PATH, QStringList{u("-I"), out(), u("-o"), out("sim")} + files
                                            + QStringList{bench.fileName()}), QString());
            const QString shown = run(VVP_PATH, {out("sim")});
            QCOMPARE(shown.left(row.second.size()), row.second);
            QVERIFY2(!shown.contains(u("left ")), qPrintable(shown));
        }
        // Every define the files hold is one the top level closes.
        for (const ConfigMap &r : {away(), initial(), with(away(), "Master=false; MII=true; PLL_Selection=QPLL1")}) {
            for (const QString &line : Gen::topDefines(r) + Gen::coreDefines(r))
                QVERIFY2(Gen::defineNames().contains(line.section(u(" "), 1, 1)), qPrintable(line));
        }
    }

    // Changes to an empty record -> its resource record: core|instance|file|module, then the
    // PLLs, clocks, frequencies, lanes, rates and the two unused lists, each quoted.
    void resourceRecord()
    {
        QVERIFY(generate(away()));
        for (const QString &row : fileLines(u(CPRI_SOURCE_DIR "/tests/resources.txt"))) {
            const QString changes = row.section(u(" =>"), 0, 0);
            std::unique_ptr<IPSERDESIP::Message> m(protocol->checkResources(with({}, changes)));
            QString fields = changes + u(" => ") + m->coreName + u("|") + m->instanceName + u("|")
                             + m->fileValue + u("|") + m->moduleValue;
            for (const QStringList &list : {m->pllList, m->refClockList, m->refFreqList,
                                            m->laneList, m->lineRates, m->auxList1, m->auxList2})
                fields += u("|") + (list.isEmpty() ? u("") : u("'") + list.join(u("','")) + u("'"));
            QCOMPARE(fields, row);
        }
        QCOMPARE(protocol->configuration(), away());
    }

    void dialogFlows()
    {
        QVERIFY(generate(away())); // leaves a record in the protocol object
        const DEV::DeviceArg device = Core::IdeCore::deviceDataBase()->findDevice(u("DVA-1-C2I1"));
        IPSERDESIP::serdes::instance()->setDevice(device);
        int shown = 0;
        CpriHost::ModalDriver driver;
        driver.setDialogHandler([&shown](QDialog *dialog) {
            for (const char *box : {"speedSel98304", "speedEnable98304"}) // a class and a rate
                QMetaObject::invokeMethod(dialog->findChild<QObject *>(u(box)), "click");
            ++shown == 3 ? dialog->accept() : dialog->reject();
            if (dialog->isVisible())
                dialog->reject();
        });
        driver.start();
        QVERIFY(protocol->createConfig(u("cpri_0"), device).isEmpty());
        QCOMPARE(protocol->configuration(), away()); // neither cleared nor collected
        QVERIFY(protocol->editConfig(with(initial(), "target_device=DVA-1-C2I1")).isEmpty());
        QVERIFY(protocol->editConfig(with(initial(), "version=1.1")).isEmpty()); // never shown
        const ConfigMap created = protocol->createConfig(u("cpri_0"), device);
        QVERIFY(created == protocol->configuration() && shown == 3);
        QCOMPARE(created.value(u("target_device")).toString(), u("DVA-1-C2I1"));
    }
};

QTEST_MAIN(TestPlugin)
#include "tst_plugin.moc"
