// Generation: the define, option and setting lines of a record, the files
// the protocol object writes (which Icarus Verilog compiles with the shipped
// core), the resource record, the dialog flows, and the tables behind them.

#include "testrecords.h"

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
#include <ipserdes/serdes.h>

#include <QCheckBox>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace TestRecords;
using IPCPRI::ConfigMap;
namespace Serdes = IPCPRI::Serdes;

namespace {

QStringList fileLines(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QString::fromUtf8(file.readAll()).split(u("\n"), Qt::SkipEmptyParts) : lines("none");
}

QStringList expected(const char *name) // what generation gives for away()
{
    return fileLines(u(CPRI_SOURCE_DIR "/tests/away/") + u(name));
}

// Every flag false, every value told apart.
const ConfigMap Unflagged = with(ConfigMap(),
    "module=m; Config_Clk_Period=50; highest_SpeedIndex=6; speedEnables_Record=000001000000;"
    "Initial_Scrambler_Seed=1F000000; Initial_HDLC_Rate=7; Initial_Ethernet_Pointer=3F;"
    "Initial_HDLC_Byte=a; Initial_HDLC_Mask=00aF");

QStringList generated(const ConfigMap &r)
{
    namespace Gen = IPCPRI::Generate;
    return Gen::topDefines(r) + Gen::coreDefines(r) + Gen::synthesisOptions(r)
           + Gen::referenceClockLines(r) + Gen::quadBiasLines(r);
}

QString quoted(const QStringList &list)
{
    return list.isEmpty() ? QString() : u("'") + list.join(u("','")) + u("'");
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
const char Testbench[] = R"(module tb;
  my_cpri dut();
  initial $display("%0d %0d %0d %b %0d %h %h %h %h %0.2f", dut.core.LANE_NUM, dut.core.DATA_WIDTH,
    dut.core.SLOT_WIDTH, dut.core.LINE_RATE_MASK, dut.core.LINE_RATE_INIT, dut.core.SCRAMBLER_SEED,
    dut.core.PROTOCOL_VER, dut.core.HDLC_RATE, dut.core.ETH_POINTER, `CFG_CLK_PERIOD);
endmodule
)";

// Encoding lines of a lane by device family (listed or other) and rate.
const char L8b10b[] =
    "tx_encode 8b10b|rx_decode 8b10b|word_align enable|pma_tx_width_mode 20|pma_rx_width_mode 20";
const char L64b66b[] = "tx_encode 64b66b|rx_decode 64b66b|rx_64b66b_decode_10gbaser enable|"
                       "word_align disable|pma_tx_width_mode 16|pma_rx_width_mode 16";
const char O8b10b[] = "8b10b_encode enable|8b10b_decode enable|word_align enable|pma_width_mode 20";
const char OOff[] = "8b10b_encode disable|8b10b_decode disable|word_align disable|pma_width_mode 16";

} // namespace

class TestGeneration : public QObject
{
    Q_OBJECT

    QTemporaryDir work;
    std::unique_ptr<IPCPRI::cpri> protocol;
    QStringList settings;
    QStringList options;
    QString message;

    bool generate(const ConfigMap &record, bool synthesis = false)
    {
        QStringList ignored;
        return protocol->generate(record, settings, ignored, options, message, synthesis);
    }
    QString out(const char *name = "") const { return work.path() + u("/ip1/temp/cpri/") + u(name); }
    QStringList laneLines(const QString &part, const QString &changes)
    {
        QStringList lines{u("earlier line")};
        Serdes::appendLaneSettings(lines, u("q0_ln1"), u("q0"),
                                   Serdes::laneInputFromRecord(with(ConfigMap(), changes), part));
        return lines;
    }

private slots:
    void init()
    {
        IPSERDESIP::serdes *registry = IPSERDESIP::serdes::instance();
        registry->reset();
        QDir(work.path()).removeRecursively();
        QVERIFY(QDir().mkpath(work.path()));
        registry->setWorkingDir(work.path());
        registry->setData(u("Q0_BIAS"), 3);
        registry->setData(u("Q1_BIAS"), 12);
        protocol = std::make_unique<IPCPRI::cpri>(u(CPRI_PACKAGE_DIR));
        QVERIFY(protocol->loadDescriptor());
        settings = lines("caller line");
        options = lines("-caller option");
        message = u("untouched");
    }

    void unflaggedRecord()
    {
        QCOMPARE(generated(Unflagged), lines(
            "`define module_name m|`define LINE_RATE_MASK 12'b000001000000|`define LINE_RATE_INIT 6|"
            "`define CFG_CLK_PERIOD 20.00|`define SCRAMBLER_SEED 31'h1F000000|`define HDLC_RATE 8'h7|"
            "`define ETH_POINTER 6'h3F|`define HDLC_USER_BYTE 4'ha|`define HDLC_USER_MASK 16'h00aF|"
            "-mprotocol_module_type cpri|-m true|-mRealTimeVendor false|-mLoopbackPort false|"
            "-mDifferentialSwingPorts false|-mFFEPorts false|-mEqualizationPorts false|"
            "-mBiasPorts false|-mPRBSPatternGeneratorPorts false|-mPRBSPatternCheckerPorts false|"
            "-mOptionalPortsConfiguration false|-mEnableDRP false|-mDRPPorts false"));
    }

    void recordChanges_data()
    {
        QTest::addColumn<QString>("changes");
        QTest::addColumn<QString>("added");
        for (const QString &row : fileLines(u(CPRI_SOURCE_DIR "/tests/changes.txt"))) {
            if (!row.startsWith(u("#")))
                QTest::newRow(qPrintable(row.section(u(" =>"), 0, 0)))
                    << row.section(u(" =>"), 0, 0) << row.section(u("=> "), 1);
        }
    }

    void recordChanges()
    {
        QFETCH(QString, changes);
        QFETCH(QString, added);
        const QStringList before = generated(Unflagged);
        QStringList diff;
        for (const QString &line : generated(with(Unflagged, changes)))
            if (!before.contains(line))
                diff << line;
        QCOMPARE(diff, lines(added));
    }

    void laneForms()
    {
        for (int number = 0; number < 8; ++number) {
            const QString q = QString::number(number / 4), l = QString::number(number % 4);
            const QString name = u("Q%1 Lane%2").arg(q, l);
            const Serdes::Lane *lane = Serdes::laneByDisplayName(name);
            QVERIFY(lane);
            const auto pll = [lane](const char *p) {
                return Serdes::pllKey(*lane, u(p)).value_or(u("none"));
            };
            QCOMPARE(QStringList({lane->key, lane->prefix, lane->quadName, lane->quadPrefix,
                                  lane->cpllKey, Serdes::laneAccessName(name, true),
                                  Serdes::laneAccessName(name, false), pll("QPLL0"), pll("QPLL1"),
                                  pll("CPLL"), pll("qpll0"), pll(""),
                                  generated(with(ConfigMap(), u("Channel_Selection=") + name)).at(1)}),
                     lines(u("Q%1_LANE%2|q%1_ln%2|Q%1|q%1|Q%1_CPLL%2|Q%1_LANE%2_RX|Q%1_LANE%2_TX|"
                             "Q%1_QPLL0|Q%1_QPLL1|Q%1_CPLL%2|none|none|`define LANE_NUM %3")
                               .arg(q, l, QString::number(number))));
        }
        for (const char *name : {"", "q0 lane0", "Q0Lane0", "Q2 Lane0", "Q0_LANE0"})
            QVERIFY2(!Serdes::laneByDisplayName(u(name)), name);
    }

    void offeredReferenceClocks()
    {
        const QStringList others = lines("Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1");
        QCOMPARE(Serdes::offeredRefClocks(u("DVA-2")),
                 lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1"));
        QCOMPARE(Serdes::offeredRefClocks(u("DVB-6")), lines("Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK"));
        QCOMPARE(Serdes::offeredRefClocks(u("DVC-1")), others);
        QCOMPARE(Serdes::offeredRefClocks(u("dva-1")), others);
    }

    void laneSettings_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<QString>("changes");
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<int>("gearbox");
        const auto row = [](const char *part, const char *changes, const char *coding, int gears) {
            QTest::newRow(qPrintable(u(part) + u(" ") + u(changes))) << part << changes << coding
                                                                       << gears;
        };
        row("DVB-2", "", L8b10b, 1);
        row("DVA-1", "highest_SpeedIndex=6; 64B_66B_Mode=SerDes", L8b10b, 4);
        row("DVB-5", "highest_SpeedIndex=8; 64B_66B_Mode=SerDes", L64b66b, 4);
        row("DVB-1", "highest_SpeedIndex=9", L64b66b, 4);
        row("DVA-2", "highest_SpeedIndex=10; 64B_66B_Mode=fabric", L64b66b, 4);
        row("DVA-2", "highest_SpeedIndex=5; 64B_66B_Mode=Fabric", L8b10b, 2);
        row("DVC-1", "highest_SpeedIndex=9; 64B_66B_Mode=Fabric", OOff, 4);
        row("DVC-1", "highest_SpeedIndex=4", O8b10b, 2);
        row("", "highest_SpeedIndex=-1", O8b10b, 1);
    }

    // Keys the rows leave out give their defaults or empty values.
    void laneSettings()
    {
        QFETCH(QString, part);
        QFETCH(QString, changes);
        QFETCH(QString, encoding);
        QFETCH(int, gearbox);
        QStringList expected = lines("earlier line|q0_enable true");
        for (QString s : lines("pll_sel |loopback_mode |enable true") + lines(encoding)
                             + lines("tx_gearbox %1|rx_gearbox %1|word_align_pattern k28.5|"
                                     "word_align_pattern_mask 1111111111|tx_rate |rx_rate |"
                                     "tx_differential_swing 900mV|tx_ffe_mode auto|tx_ffe_cm 0|"
                                     "tx_ffe_c1 0|tx_ffe_c0 40|rx_sd_thsel 100mV|"
                                     "rx_eq_mode auto|rx_att 7|rx_boost 9"))
            expected << u("q0_ln1_") + s.replace(u("%1"), QString::number(gearbox));
        expected.move(1, 4); // the quad's line follows the lane's own enable line
        QCOMPARE(laneLines(part, changes), expected);
        const QStringList converted = laneLines(part, u("FFE_C0=forty; Line_Rate=Gbps9.8Gbps"));
        QVERIFY(converted.contains(u("q0_ln1_tx_ffe_c0 0")));
        QVERIFY(converted.contains(u("q0_ln1_rx_rate 9.8")));
    }

    void speedState()
    {
        // Rate rows whose box is enabled and checked -> mask, highest index, line rate.
        for (const QString &row : lines("-> 000000000000 -1 0.00000Gbps|0 -> 000000000001 0 "
                "0.61440Gbps|8 -> 000100000000 8 8.11008Gbps|10 -> 010000000000 10 12.16512Gbps|"
                "6 8 -> 000101000000 6 9.83040Gbps|0 1 2 3 4 5 6 7 8 9 10 11 -> 011101111111 10 "
                "12.16512Gbps")) {
            QVector<bool> boxes(12);
            for (const QString &index : row.section(u("->"), 0, 0).split(u(" "), Qt::SkipEmptyParts))
                boxes[index.toInt()] = true;
            const IPCPRI::Config::SpeedState state = IPCPRI::Config::speedState(boxes);
            QCOMPARE(QStringList({state.mask, QString::number(state.highestIndex),
                                  IPCPRI::Config::lineRateText(state.highest)}).join(u(" ")),
                     row.section(u("-> "), 1));
            QCOMPARE(state.rates.size(), 11);
        }
    }

    // By rate index: what each class enables on every grade, disables, enables on the
    // C2/I1 grade only and moves a check away from; "first" when it disables before the move.
    void speedClasses()
    {
        QStringList table;
        for (const IPCPRI::Config::SpeedClass &c : IPCPRI::Config::speedClasses()) {
            QStringList row{c.key};
            for (QVector<int> rates : {c.enable, c.disable, c.enableOnTopGrade, c.moveCheckFrom}) {
                std::sort(rates.begin(), rates.end());
                QStringList texts;
                for (int rate : rates)
                    texts << QString::number(rate);
                row << texts.join(u(" "));
            }
            table << row.join(u("/")) + (c.disableBeforeMove && !c.moveCheckFrom.isEmpty()
                                             ? u(" first") : u(""));
        }
        QCOMPARE(table, lines("3.072G_and_Under/1 2 3/4 5 6 8 9 10//4 5 6 8 9 10|"
                              "6.144G_and_Under/1 2 3 4 5/6 8 9 10//6 8 9 10|"
                              "9.8304G_and_Under/1 2 3 4 5 6/8 9 10//8 9 10 first|"
                              "10.1376G_and_Under/1 2 3 4 5 6 8/10/9/10 first|"
                              "12.16512G_and_Under/1 2 3 4 5 6 8//9 10/"));
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
            QVERIFY2(IPCPRI::Config::initialValue(it.key()) == it.value(), qPrintable(it.key()));
        QCOMPARE(IPCPRI::Config::loopbackModes(), lines("OFF|LB_NES|LB_FES|LB_ENC"));
        QVERIFY(!IPCPRI::Config::keySpec(u("Line_rate")));
    }

    void generatesTheFilesAndLists()
    {
        QVERIFY(generate(away()));
        for (const char *name : {"top_define.vh", "cpri_defines.vh", "cpri.ini"})
            QCOMPARE(fileLines(out(name)), expected(name));
        QCOMPARE(settings, expected("cpri.ini"));
        QCOMPARE(options.size(), 20);
        QCOMPARE(options.first(), u("-caller option"));
        QCOMPARE(message, u("untouched")); // no synthesis asked for
        QCOMPARE(protocol->configuration(), away());
        QVERIFY(generate(away(), true));
        // The reference host names the device, the sources in order and the data folder.
        QVERIFY2(message.contains(u("DVB-1-C2I1: cpri_top.v, cpri_core_encryption.v ready in "
                                    CPRI_PACKAGE_DIR "/data")), qPrintable(message));
    }

    void targetDeviceIsFilledOnce()
    {
        QVERIFY(!generate(ConfigMap()));
        QVERIFY(protocol->device().isNull());
        QCOMPARE(settings + options, lines("caller line|-caller option"));
        QVERIFY(QDir(work.path()).isEmpty());
        QVERIFY(generate(with(away(), "target_device=DVC-1-C2I1")));
        QVERIFY(!generate(ConfigMap()));
        QVERIFY(generate(away())); // on DVB-1 the lane would get other encoding lines
        QCOMPARE(protocol->device().id(), u("DVC-1-C2I1"));
        QCOMPARE(settings.count(u("q1_ln3_8b10b_encode disable")), 2);
    }

    void failuresKeepWhatWasDone_data()
    {
        QTest::addColumn<QString>("failing"); // what is in the way
        QTest::addColumn<QString>("written");
        QTest::newRow("output folder") << "temp" << "";
        QTest::newRow("top_define.vh") << "top_define.vh" << "";
        QTest::newRow("cpri_defines.vh") << "cpri_defines.vh" << "top_define.vh";
        QTest::newRow("cpri.ini") << "cpri.ini" << "top_define.vh|cpri_defines.vh";
        QTest::newRow("synthesis") << "data" << "top_define.vh|cpri_defines.vh|cpri.ini";
    }

    void failuresKeepWhatWasDone()
    {
        QFETCH(QString, failing);
        QFETCH(QString, written);
        QTemporaryDir bare; // a package without its data folder
        if (failing == u("temp"))
            QVERIFY(QDir().mkpath(work.path() + u("/ip1"))
                    && QFile(work.path() + u("/ip1/temp")).open(QIODevice::WriteOnly));
        else
            QVERIFY(QDir().mkpath(out() + failing));
        if (failing == u("data")) {
            QVERIFY(QFile::copy(u(CPRI_PACKAGE_DIR "/cpri.ipspec"), bare.path() + u("/cpri.ipspec")));
            protocol = std::make_unique<IPCPRI::cpri>(bare.path());
            QVERIFY(protocol->loadDescriptor());
        }
        QVERIFY(!generate(away(), true));
        QCOMPARE(settings, expected("cpri.ini"));
        QCOMPARE(options.size(), 20);
        QCOMPARE(message == u("untouched"), failing != u("data"));
        for (const char *name : {"top_define.vh", "cpri_defines.vh", "cpri.ini"}) {
            if (failing != u(name))
                QCOMPARE(QFileInfo(out(name)).isFile(), lines(written).contains(u(name)));
        }
    }

    void definesCompileWithTheCore_data()
    {
        QTest::addColumn<ConfigMap>("record");
        QTest::addColumn<QString>("printed"); // a pattern
        const ConfigMap start = with(initial(), "file=ip1; module=my_cpri");
        QTest::newRow("changed") << away() << "7 16 7 011101111111 10 7fffffff 02 07 3f 6.67";
        QTest::newRow("initial") << start << "0 64 6 000000000000 -1 00000000 01 02 14 20.00";
        QTest::newRow("no clock") << with(start, "!Config_Clk_Period")
                                  << "0 64 6 000000000000 -1 00000000 01 02 14 [0-9.]+";
    }

    void definesCompileWithTheCore()
    {
        QFETCH(ConfigMap, record);
        QFETCH(QString, printed);
        QVERIFY2(QFileInfo(u(IVERILOG_PATH)).isExecutable() && QFileInfo(u(VVP_PATH)).isExecutable(),
                 "Icarus Verilog (iverilog and vvp) is needed: install it and configure again");
        QVERIFY(generate(record));
        QFile bench(out("tb.v"));
        QVERIFY(bench.open(QIODevice::WriteOnly) && bench.write(Testbench) > 0);
        bench.close();
        const QString data = u(CPRI_PACKAGE_DIR "/data/");
        const QString compiled = run(IVERILOG_PATH, {u("-I"), out(), u("-o"), out("sim"),
            data + u("cpri_top.v"), data + u("cpri_core_encryption.v"), bench.fileName()});
        QVERIFY2(compiled.isEmpty(), qPrintable(compiled));
        const QString output = run(VVP_PATH, {out("sim")});
        QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(printed)).match(output)
                     .hasMatch(), qPrintable(output));
    }

    void resourceRecord_data()
    {
        QTest::addColumn<QString>("changes");
        QTest::addColumn<QString>("fields"); // instance|file|module|PLLs|clocks|MHz|lanes|rates|aux
        QTest::newRow("empty") << "" << ":||||''|''||''|'0'|'0'";
        QTest::newRow("CPLL") << "file=f; module=m; Channel_Selection=Q1 Lane3; PLL_Selection=CPLL;"
            "Reference_CLK_Source=Q0 REFCLK1; Reference_CLK_Frequency=122.880; Line_Rate=12.16512Gbps"
            << "f:m|f|m|'Q1_CPLL3'|'Q0_REFCLK1'|'122.880'|'Q1_LANE3'|'12.16512'|'0'|'0'";
        QTest::newRow("QPLL1") << "Channel_Selection=Q0 Lane2; PLL_Selection=QPLL1"
                               << ":|||'Q0_QPLL1'|''|''|'Q0_LANE2'|''|'0'|'0'";
        QTest::newRow("qpll0") << "Channel_Selection=Q0 Lane0; PLL_Selection=qpll0"
                               << ":||||''|''|'Q0_LANE0'|''|'0'|'0'";
        QTest::newRow("unknown lane") << "Channel_Selection=Lane0; PLL_Selection=QPLL0"
                                      << ":||||''|''||''|'0'|'0'";
    }

    void resourceRecord()
    {
        QFETCH(QString, changes);
        QFETCH(QString, fields);
        QVERIFY(generate(away()));
        const std::unique_ptr<IPSERDESIP::Message> m(protocol->checkResources(with(ConfigMap(), changes)));
        QCOMPARE(m->coreName, u("CPRI"));
        QCOMPARE(QStringList({m->instanceName, m->fileValue, m->moduleValue, quoted(m->pllList),
                              quoted(m->refClockList), quoted(m->refFreqList), quoted(m->laneList),
                              quoted(m->lineRates), quoted(m->auxList1), quoted(m->auxList2)})
                     .join(u("|")), fields);
        QCOMPARE(protocol->configuration(), away());
    }

    void dialogFlows()
    {
        QVERIFY(generate(away())); // leaves a record in the protocol object
        const DEV::DeviceArg device = Core::IdeCore::deviceDataBase()->findDevice(u("DVA-1-C2I1"));
        IPSERDESIP::serdes::instance()->setDevice(device);
        int shown = 0;
        bool accept = false;
        CpriHost::ModalDriver driver;
        driver.setDialogHandler([&](QDialog *dialog) {
            ++shown;
            if (accept) {
                dialog->findChild<QCheckBox *>(u("speedSel98304"))->click();
                dialog->findChild<QCheckBox *>(u("speedEnable98304"))->click();
                dialog->accept();
            }
            if (dialog->isVisible())
                dialog->reject();
        });
        driver.start();
        QVERIFY(protocol->createConfig(u("cpri_0"), device).isEmpty());
        QCOMPARE(protocol->configuration(), away()); // neither cleared nor collected
        QVERIFY(protocol->editConfig(with(initial(), "target_device=DVA-1-C2I1")).isEmpty());
        QVERIFY(protocol->editConfig(with(initial(), "version=1.1")).isEmpty()); // refused
        QCOMPARE(shown, 2); // the refused record never showed the dialog
        accept = true;
        const ConfigMap created = protocol->createConfig(u("cpri_0"), device);
        QCOMPARE(created.value(u("target_device")).toString(), u("DVA-1-C2I1"));
        QCOMPARE(created, protocol->configuration());
    }
};

QTEST_MAIN(TestGeneration)
#include "tst_generation.moc"
