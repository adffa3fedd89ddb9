// Generation: the lines a record gives, the files and lists it fills, what
// happens when something is in the way, and the define files compiled by
// Icarus Verilog with the shipped core.

#include "testrecords.h"
#include "testsupport.h"

#include <generate/definefiles.h>
#include <generate/synthesisoptions.h>
#include <plugin/cpri.h>
#include <serdes/lanesettings.h>

#include <ipserdes/serdes.h>

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace TestRecords;
using IPCPRI::ConfigMap;
namespace Config = IPCPRI::Config;
namespace Serdes = IPCPRI::Serdes;

namespace {

// What generation makes of a record, with the lines of lane q0_ln1 on the
// part that "target_device" names.
QStringList generated(const ConfigMap &r)
{
    namespace Gen = IPCPRI::Generate;
    QStringList all = Gen::topDefines(r) + Gen::coreDefines(r) + Gen::synthesisOptions(r);
    Serdes::appendLaneSettings(
        all, "q0_ln1", "q0",
        Serdes::laneInputFromRecord(r, r.value(Config::Key::TargetDevice).toString()));
    return all + Gen::referenceClockLines(r) + Gen::quadBiasLines(r);
}

// Compiled after the core, so its defines hold: prints what the core receives.
// Compiled after the top level: it says which define the top level left
// behind, then reads the define files itself.
QByteArray testbench()
{
    QByteArray left;
    for (const QString &name : IPCPRI::Generate::defineNames())
        left += "`ifdef " + name.toUtf8() + "\n  initial $display(\"left " + name.toUtf8()
                + "\");\n`endif\n";
    return "module tb;\n" + left + R"(  my_cpri dut();
`include "cpri_defines.vh"
  initial $display("%0d %0d %0d %b %0d %h %h %h %h %0.2f", dut.core.LANE_NUM, dut.core.DATA_WIDTH,
    dut.core.SLOT_WIDTH, dut.core.LINE_RATE_MASK, dut.core.LINE_RATE_INIT, dut.core.SCRAMBLER_SEED,
    dut.core.PROTOCOL_VER, dut.core.HDLC_RATE, dut.core.ETH_POINTER, `CFG_CLK_PERIOD);
endmodule
)";
}

// What generation of away() writes: its core defines, its synthesis options, and its
// settings: the caller's line, the lines of lane q1_ln3 ("~") on DVB-1, its reference
// clock, the registry's reset line, then the quad bias.
const QStringList AwayDefines = lines(
    "~LANE_NUM 7|~LOOPBACK_PORT_EN|~DRP_PORT_EN|~TX_FFE_PORT_EN|~TX_PRBS_PORT_EN|~TX_DIFF_PORT_EN|"
    "~RX_PRBS_PORT_EN|~RX_EQ_PORT_EN|~RX_BIAS_PORT_EN|~EXT_PORT_EN|~LINE_RATE_3GBPS_AND_UNDER|"
    "~LINE_RATE_6GBPS_AND_UNDER|~LINE_RATE_9GBPS_AND_UNDER_64B|~LINE_RATE_10GBPS_AND_UNDER|"
    "~LINE_RATE_12GBPS_AND_UNDER|~LINE_RATE_MASK 12'b011101111111|~LINE_RATE_INIT 10|"
    "~CFG_CLK_PERIOD 6.67|~ETH_GMII|~PROTOCOL_VER 8'h2|~SCRAMBLER_SEED 31'h7FFFFFFF|"
    "~HDLC_RATE 8'h7|~ETH_POINTER 6'h3F|~FIXED_CFG_FOR_TIMING|~HDLC_USER_BYTE 4'hf|"
    "~HDLC_USER_MASK 16'hFFFF|~REAL_TIME_VENDOR_UP10G|~MASTER_ENABLE 1|~CPLL_SEL",
    "`define ");
const QStringList AwayOptions = lines(
    "~protocol_module_type cpri|~Q1Lane3 true|~SpeedSelection 3.072GandUnder|"
    "~SpeedSelection 6.144GandUnder|~SpeedSelection 9.8304GandUnder|"
    "~SpeedSelection 10.1376GandUnder|~SpeedSelection 12.16512GandUnder|~EthernetSelection GMII|"
    "~RealTimeVendor true|~LoopbackPort true|~DifferentialSwingPorts true|~FFEPorts true|"
    "~EqualizationPorts true|~BiasPorts true|~PRBSPatternGeneratorPorts true|"
    "~PRBSPatternCheckerPorts true|~OptionalPortsConfiguration true|~EnableDRP true|"
    "~DRPPorts true",
    "-my_cpri");
const QStringList AwaySettings = lines(
    "caller line|~pll_sel cpll|~loopback_mode lb_fes|~enable true|q1_enable true|~tx_encode off|"
    "~rx_decode off|~word_align disable|~pma_tx_width_mode 16|~pma_rx_width_mode 16|"
    "~tx_gearbox 4|~rx_gearbox 4|~word_align_pattern k28.5|~word_align_pattern_mask 1111111111|"
    "~tx_rate 12.16512|~rx_rate 12.16512|~tx_differential_swing 228mV|~tx_ffe_mode manual|"
    "~tx_ffe_cm 4|~tx_ffe_c1 3|~tx_ffe_c0 33|~rx_sd_thsel 25mV|~rx_eq_mode manual|~rx_att 2|"
    "~rx_boost 15|mclk_freq 156.25|q1_global_reset_en true|q1_rx_eq_bias 12",
    "q1_ln3_");

} // namespace

class TestGeneration : public QObject
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
    QString out(const char *f = "") const { return work.path() + "/ip1/temp/cpri/" + QString(f); }

private slots:
    void init()
    {
        IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
        registry->reset();
        QVERIFY(QDir(work.path()).removeRecursively() && QDir().mkpath(work.path()));
        registry->setWorkingDir(work.path());
        registry->setData("Q0_BIAS", 3);
        registry->setData("Q1_BIAS", 12);
        protocol = std::make_unique<IPCPRI::cpri>(QString(CPRI_PACKAGE_DIR));
        QVERIFY(protocol->loadDescriptor());
        settings = lines("caller line");
        options = lines("-caller option");
        message = "untouched";
    }

    // Rows of changes.txt: the first gives the whole output of a base record,
    // each later one the lines that its changes to the base add.
    void recordChanges()
    {
        const QStringList rows = fileLines(QString(CPRI_SOURCE_DIR "/tests/changes.txt"))
                                     .join("\n")
                                     .replace("=>\n|", "=> ")
                                     .replace("\n|", "|")
                                     .split("\n");
        const ConfigMap base = with(ConfigMap(), rows.first().section(" =>", 0, 0));
        QStringList before;
        for (const QString &row : rows) {
            QStringList added;
            for (const QString &line :
                 generated(with(before.isEmpty() ? ConfigMap() : base, row.section(" =>", 0, 0))))
                if (!before.contains(line))
                    added << line;
            QVERIFY2(added == lines(row.section("=> ", 1)),
                     qPrintable(row + "\ngives " + added.join("|")));
            before = generated(base);
        }
    }

    // The files hold the record's lines; the lists are appended to.
    void generatesTheFiles()
    {
        QVERIFY(generate(away()) && message == "untouched"); // no synthesis asked for
        QCOMPARE(fileLines(out("top_define.vh")), lines("`define module_name my_cpri"));
        QCOMPARE(fileLines(out("cpri_defines.vh")), AwayDefines);
        QVERIFY(fileLines(out("cpri.ini")) == settings && settings == AwaySettings);
        QCOMPARE(options, lines("-caller option") + AwayOptions);
        QCOMPARE(protocol->configuration(), away());
    }

    void targetDeviceIsFilledOnce()
    {
        QVERIFY(!generate(ConfigMap()) && protocol->device().isNull());
        QVERIFY(settings + options == lines("caller line|-caller option"));
        QVERIFY(QDir(work.path()).isEmpty());
        QVERIFY(generate(with(away(), "target_device=DVC-1-C2I1")) && !generate(ConfigMap()));
        QVERIFY(generate(away())); // on DVB-1 the lane would get other encoding lines
        QCOMPARE(protocol->device().id(), "DVC-1-C2I1");
        QCOMPARE(settings.count("q1_ln3_8b10b_encode disable"), 2);
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
            const QString failing = row.section(" ", 0, 0);
            QTemporaryDir bare; // a package without its data folder
            const QString file = "/cpri.ipspec", blocker = work.path() + "/ip1/temp";
            QVERIFY(QDir().mkpath(work.path() + "/ip1")
                    && QFile::copy(QString(CPRI_PACKAGE_DIR) + file, bare.path() + file));
            QVERIFY(failing == "temp" ? QFile(blocker).open(QIODevice::WriteOnly)
                                      : QDir().mkpath(out() + failing));
            if (failing == "data")
                protocol = std::make_unique<IPCPRI::cpri>(bare.path());
            QVERIFY(protocol->loadDescriptor());
            QCOMPARE(generate(away(), true), failing == "none");
            QVERIFY(settings == AwaySettings && options.size() == 20);
            QString written = failing + " ->";
            for (const char *name : {"top_define.vh", "cpri_defines.vh", "cpri.ini"})
                written += QFileInfo(out(name)).isFile() ? " " + QString(name) : QString();
            QCOMPARE(written, row);
            QCOMPARE(message == "untouched", failing != "data" && failing != "none");
        }
        // The reference host synthesises the record's module for the device with Yosys.
        const QString synthesised = "cpri (my_cpri) for DVB-1-C2I1 with Yosys:\nNumber of wires: ";
        QVERIFY2(message.contains(synthesised), qPrintable(message));
    }

    // The core compiles with the define files and receives the configured values.
    void definesCompileWithTheCore()
    {
        namespace Gen = IPCPRI::Generate;
        QVERIFY2(QFileInfo(QString(IVERILOG_PATH)).isExecutable()
                     && QFileInfo(QString(VVP_PATH)).isExecutable(),
                 "Icarus Verilog (iverilog and vvp) is needed: install it and configure again");
        const QList<QPair<ConfigMap, QString>> rows = {
            // clang-format off
            // any period for a zero clock
            {away(), "7 16 6 011101111111 10 7fffffff 02 07 3f 6.67"},
            {with(initial(), "file=ip1; module=my_cpri; Config_Clk_Period=0"), "0 64 6 000000000000 -1 00000000 01 02 14 "},
            // clang-format on
        };
        const QString core = QString(CPRI_PACKAGE_DIR "/data/");
        for (const auto &row : rows) {
            QVERIFY(generate(row.first) && TestSupport::write(out("tb.v"), testbench()));
            const QStringList files = {core + "cpri_top.v", core + "cpri_core_encryption.v"};
            QCOMPARE(TestSupport::run(IVERILOG_PATH, QStringList{"-I", out(), "-o", out("sim")}
                                                         + files + QStringList{out("tb.v")})
                         .trouble(),
                     QString());
            const TestSupport::Run sim = TestSupport::run(VVP_PATH, {out("sim")});
            const QString shown = sim.exitCode == 0 ? sim.text() : sim.trouble();
            QCOMPARE(shown.left(row.second.size()), row.second);
            QVERIFY2(!shown.contains("left "), qPrintable(shown));
        }
        // Every define the files hold is one the top level closes.
        for (const ConfigMap &r :
             {away(), initial(), with(away(), "Master=false; MII=true; PLL_Selection=QPLL1")}) {
            for (const QString &line : Gen::topDefines(r) + Gen::coreDefines(r))
                QVERIFY2(Gen::defineNames().contains(line.section(" ", 1, 1)), qPrintable(line));
        }
    }
};

QTEST_MAIN(TestGeneration)
#include "tst_generation.moc"
