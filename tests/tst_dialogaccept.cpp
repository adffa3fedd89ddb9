// Collecting, accepting and calculating: what the OK and Calculate
// buttons make of what the user entered.

#include "dialogfixture.h"

#include <plugin/cpri.h>

using IPCPRI::cpri;

namespace {

const QString Rate98304 = "speedSel98304;speedEnable98304;", Q00 = "Q0 Lane1, Q0 Lane2, Q0 Lane3",
              Q10 = "Q1 Lane1, Q1 Lane2, Q1 Lane3", Saved = "version=1.0;ifChangedAllOfBias=false;";
const char *const Dvb = "DVB-4-C1", *const Dvc = "DVC-1-C2I1";
const auto No = QMessageBox::No;

// OK after the steps is refused: the dialog stays open, the registry holds no bias.
Case refused(const char *name, const QString &steps)
{
    return Case(name).does(steps + "okButton").sees("accepted no;shared ");
}
// OK after the steps accepts; the record keeps whether the quad's bias was
// applied, and the registry then holds the bias applied ("Q0_BIAS=#7"), if any.
Case accepted(const char *name, const QString &steps, const QString &shared = QString())
{
    return Case(name)
        .does(steps + "okButton")
        .sees(QString("accepted yes;record:ifChangedAllOfBias %1;shared %2")
                  .arg(shared.isEmpty() ? "false" : "true", shared));
}

// OK checks, in this order: file name, existing folder, module name, free
// lane, a rate, a class, C0, then calculates; an accepted dialog records
// the bias decision and publishes an accepted bias for its quad.
// clang-format off
const Case Ok[] = {
    refused("file name first", "fileNameEdit=;moduleNameEdit=;").given("full").boxes("Error: The file name*"),
    refused("folder kept on No", Rate98304).given("folder").answering(No).boxes("Question: The folder*"),
    accepted("folder replaced on Yes", Rate98304, "Q0_BIAS=#7").given("folder").boxes("Question: The folder*|" + Msg::bias(Q00, 7)),
    accepted("bias decided by Calculate", Rate98304 + "Calculate;", "Q0_BIAS=#7").boxes(Msg::bias(Q00, 7) + '|' + Msg::Succeed),
    accepted("own folder not asked", Rate98304).given("folder").saved(Saved + "file=cpri_0"),
    refused("module name before lane", "moduleNameEdit=1a;").given("full").boxes("Error: The module name*"),
    refused("no free lane", "").given("full").boxes("Error: No available lanes"),
    refused("no rate", "").boxes("Error: Please Enable Speed"),
    refused("class without rate", "speedSel3072;").boxes("Error: Please Enable Speed"),
    refused("rate without class", "speedEnable3072;").boxes("Error: Please Select Speed Selection"),
    refused("C0 of 20", Rate98304 + "ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10;cmSpinBox=10;")
        .sees("accepted no;shared ;c0Lael 20").boxes(Msg::C0 + '|' + Msg::C0),
    refused("clock out of reach", Rate98304 + "ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN;").on(Dvb).boxes(Msg::bias(Q10, 7) + '|' + Msg::RefClock),
    refused("working folder a file", Rate98304).given("nodir"),
    refused("PLL cannot make rate", Rate98304 + "PLL_Selection=CPLL;")
        .boxes(Msg::bias(Q00, 7) + "|Failure: CPLL cannot generate 9.8304 Gbps from a 122.88 MHz "
                                   "reference clock\n*"),
    refused("clock used at other frequency", Rate98304).on(Dvc).given("ref:Q0 REFCLK0:122.88:1")
        .saved(Saved + "Reference_CLK_Frequency=153.6").boxes(Msg::RefClock),
    accepted("bias published for Q1", Rate98304 + "ChannelSel=Q1 Lane1;biasSpinBox=9;",
             "Q1_BIAS=#9").on(Dvc).boxes(Msg::bias("Q1 Lane0, Q1 Lane2, Q1 Lane3", 9)),
    accepted("bias declined", Rate98304).answering(No).boxes(Msg::bias(Q00, 7)),
    accepted("saved decision applies", Rate98304 + "biasSpinBox=4;", "Q0_BIAS=#4").saved("version=1.0;ifChangedAllOfBias=true"),
    accepted("saved refusal not asked", Rate98304).saved(Saved),
    accepted("opened undecided asks", Rate98304).saved("version=1.0").answering(No).boxes(Msg::bias(Q00, 7)),
    accepted("registry's bias published", Rate98304 + "ChannelSel=Q1 Lane3;", "Q1_BIAS=#12")
        .on(Dvc).given("data:Q1_BIAS:12").boxes(Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane2", 12)),
};
// clang-format on

// Calculate: the bias question once per lane, then the reference clock
// (in use at another frequency, or out of the lane's reach), then the
// generator; the bias lines handed to it, and the route's clock freed.
// clang-format off
const Case Calculate[] = {
    Case("bias asked once per lane")
        .does(Rate98304 + "Calculate;Calculate;ChannelSel=Q0 Lane1;Calculate;Calculate")
        .sees("biasLines q0_rx_eq_bias 7;sourceMHz 0")
        .boxes(QStringList{Msg::bias(Q00, 7), Msg::Succeed, Msg::Succeed,
                           Msg::bias("Q0 Lane0, Q0 Lane2, Q0 Lane3", 7), Msg::Succeed, Msg::Succeed}
                   .join('|')),
    Case("declined bias no line").on(Dvc).answering(No)
        .does("speedEnable98304;ChannelSel=Q1 Lane2;biasSpinBox=5;Calculate;Calculate")
        .sees("biasLines ;sourceMHz 0")
        .boxes(Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane3", 5) + '|' + Msg::Succeed + '|'
               + Msg::Succeed),
    Case("route asked in order").does("speedEnable98304;onButtonCalculateClicked()")
        .sees("biasLines q0_rx_eq_bias 7;route FormStringToREFSPtr(q0_refclk0) "
              "checkAccess(q0_refclk0, Q0_LANE0_RX) checkAccess(q0_refclk0, Q0_LANE0_TX) "
              "checkRoute([Q0_LANE0], [Q0_QPLL0], [Q0_REFCLK0], [122.880]) "
              "resetLane(Q0_LANE0, false)")
        .boxes(Msg::bias(Q00, 7) + '|' + Msg::Succeed),
    Case("clock used at same frequency").on(Dvc).given("ref:Q0 REFCLK0:122.88:1")
        .saved(Saved + "Reference_CLK_Frequency=122.880").does("speedEnable98304;Calculate")
        .sees("sourceMHz 122.88").boxes(Msg::Succeed),
    Case("clock used at other frequency").on(Dvc).given("ref:Q0 REFCLK0:122.88:1")
        .saved(Saved + "Reference_CLK_Frequency=153.6").does("speedEnable98304;Calculate")
        .sees("sourceMHz 122.88").boxes(Msg::RefClock),
    Case("clock fixed for no user").on(Dvc).given("ref:Q0 REFCLK0:122.88:0")
        .saved(Saved + "Reference_CLK_Frequency=153.6").does("speedEnable98304;Calculate")
        .sees("sourceMHz 0").boxes(Msg::Succeed),
    Case("clock out of reach").on(Dvb)
        .does("speedEnable98304;ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN;Calculate")
        .sees("biasLines q1_rx_eq_bias 7;route FormStringToREFSPtr(q0_gpio) "
              "checkAccess(q0_gpio, Q1_LANE0_RX)")
        .boxes(Msg::bias(Q10, 7) + '|' + Msg::RefClock),
    Case("no line rate").answering(No).does("Calculate").sees("biasLines ").boxes(Msg::bias(Q00, 7) + "|Failure: No line rate is set"),
    // A rate the PLL cannot make from the reference: why, and what would.
    Case("PLL cannot make rate").answering(No)
        .does("speedSel101376;speedEnable101376;PLL_Selection=CPLL;Calculate").sees("biasLines ")
        .boxes(Msg::bias(Q00, 7) + "|Failure: CPLL cannot generate 10.1376 Gbps from a 122.88 MHz "
               "reference clock\nCPLL VCO range: 2 to 6.25 GHz; 10.1376 Gbps needs a VCO of "
               "5.0688 GHz, which no divider setting reaches from 122.88 MHz\nThese PLL kinds "
               "generate 10.1376 Gbps from 122.88 MHz: QPLL0 (VCO 10.1376 GHz), QPLL1 (VCO 10.1376 "
               "GHz)\nCPLL generates 10.1376 Gbps from none of the common reference clocks (61.44, "
               "76.8, 100, 122.88, 125, 153.6, 156.25, 184.32, 200, 245.76, 250, 307.2, 312.5, "
               "368.64, 491.52 MHz)"),
    // An empty PLL choice: the reference generator's own error lines.
    Case("no PLL chosen").answering(No).does("speedEnable98304;updateLaneConect();Calculate")
        .sees("biasLines ").boxes(Msg::bias(Q00, 7) + "|Failure: Malformed setting line "
                                  "\"q0_ln0_pll_sel \"\nNo lane selects a PLL"),
    Case("no lane").given("full").saved("version=1.0;Reference_CLK_Source=none").does("Calculate"),
    Case("working folder a file").given("nodir").does("speedEnable98304;Calculate").sees("route FormStringToREFSPtr(q0_refclk0)"),
};
// clang-format on

} // namespace

class TestDialogAccept : public QObject
{
    Q_OBJECT

private slots:
    // Every widget away from its default, accepted through OK; editing that
    // record and accepting it again gives it back unchanged.
    void everyKeyComesFromItsOwnWidgetAndLoadsBack()
    {
        Session s;
        s.act("languageCombo=VHDL;synthesisToolCombo=Third-party;fileNameEdit=cpri_7;"
              "moduleNameEdit=cpri_x;speedSel1216512;speedEnable101376;ConfigClkPeriod=125;GMII;"
              "ProtocolVersion2;ScramblerSeed=12345678;HDLCRate=5;EthernetPointer=2A;"
              "FixedConfigEnable;RealTimeVendor;ChannelSel=Q0 Lane2;refClkSource=Q0 REFCLK1;"
              "refClkFreq=153.6;PLL_Selection=QPLL1;LoopbackMode=LB_FES;"
              "comboBox64B_66B_Mode=Fabric;differeSwingComboBox=420mV;ffeModeCombox=Manual;"
              "cmSpinBox=3;c1SpinBox=5;sdThresholdComboBox=150mV;equalizationModeCombox=Manual;"
              "attSpinBox=4;boostSpinBox=12;biasSpinBox=11;checkBoxLoopBackPorts;checkBoxDRPPort;"
              "okButton");
        QCOMPARE(s.seen(), QStringList{Msg::bias("Q0 Lane0, Q0 Lane1, Q0 Lane3", 11)});
        QStringList expected = split(
            "target_device=DVA-1-C2I1;type=com.ipgen.serdes.cpri;version=1.0;"
            "Synthesis_tool=Third-party;LANG=#1;file=cpri_7;module=cpri_x;3.072G_and_Under=false;"
            "6.144G_and_Under=false;9.8304G_and_Under=false;10.1376G_and_Under=false;"
            "12.16512G_and_Under=true;0.6144Gbps=false;1.2288Gbps=false;2.4576Gbps=false;"
            "3.072Gbps=false;4.9152Gbps=false;6.144Gbps=false;9.8304Gbps=false;8.11008Gbps=false;"
            "10.1376Gbps=true;12.16512Gbps=false;Config_Clk_Period=125;MII=false;GMII=true;"
            "Initial_Protocol_Version1=false;Initial_Protocol_Version2=true;"
            "Initial_Scrambler_Seed=12345678;Initial_HDLC_Rate=5;Initial_HDLC_Byte=0;"
            "Initial_HDLC_Mask=0000;Initial_Ethernet_Pointer=2A;Fixed_Config_Enable=true;"
            "Real_Time_Vendor=true;Master=false;Slave=false;Channel_Selection=Q0 Lane2;"
            "Line_Rate=10.13760Gbps;Reference_CLK_Source=Q0 REFCLK1;Reference_CLK_Frequency=153.6;"
            "PLL_Selection=QPLL1;Loopback_Mode=LB_FES;64B_66B_Mode=Fabric;highest_SpeedIndex=#9;"
            "speedEnables_Record=001000000000;DIFFERENTIAL_SWING=420mV;FFEMODE=Manual;FFE_CM=#3;"
            "FFE_C1=#5;FFE_C0=32;SD_THRESHOLD=150mV;Equalization_Mode=Manual;ATT=#4;BOOST=#12;"
            "Loopback_Ports=true;DRP_Ports=true;PRBS_Pattern_Generator_Ports=false;"
            "Differential_Swing_Ports=false;FFE_Ports=false;PRBS_Pattern_Checker_Ports=false;"
            "Equalization_Ports=false;BIAS_Ports=false;ifChangedAllOfBias=true");
        expected.sort();
        QCOMPARE(show(s.record), expected);
        QCOMPARE(s.see("accepted") + ";" + s.see("shared"), "accepted yes;shared Q0_BIAS=#11");
        Record saved = s.record;
        for (const char *key :
             {"PRBS_Pattern_Generator_Ports", "Differential_Swing_Ports", "FFE_Ports",
              "PRBS_Pattern_Checker_Ports", "Equalization_Ports", "BIAS_Ports"})
            saved.insert(key, true);
        saved.insert(parse("Initial_HDLC_Byte=A;Initial_HDLC_Mask=BEEF"));
        cpri protocol(CPRI_PACKAGE_DIR);
        QVERIFY(protocol.loadDescriptor());
        s.user.setDialogHandler([](QDialog *dialog) { act(dialog, "okButton"); });
        QCOMPARE(show(protocol.editConfig(saved)), show(saved));
        QCOMPARE(s.seen().size(), 1); // no second question, no question about the folder
    }

    void ok_data() { rows(Ok); }
    void ok() { check(Ok); }
    void calculate_data() { rows(Calculate); }
    void calculate() { check(Calculate); }

    // Each run rebuilds the record, the settings and the route lists, reuses
    // one generator and writes the register file.
    void calculationRebuildsItsLists()
    {
        Session s(Case().answering(No));
        const Probe probe{s.d.get()};
        QVERIFY(!probe.generator());
        s.act("speedEnable811008;Calculate");
        const void *generator = probe.generator();
        QVERIFY(generator);
        QVERIFY(s.record.contains("64B_66B_Mode"));
        s.act("speedEnable98304;Calculate");
        QCOMPARE(s.seen(), QStringList({Msg::bias(Q00, 7), Msg::Succeed, Msg::Succeed}));
        QCOMPARE(probe.generator(), generator);
        QVERIFY(!s.record.contains("64B_66B_Mode"));
        QCOMPARE(probe.routes(),
                 QList<QStringList>({{"Q0_LANE0"}, {"Q0_QPLL0"}, {"Q0_REFCLK0"}, {"122.880"}}));
        QCOMPARE(probe.settings().filter(QRegularExpression("_freq |_reset_en ")),
                 QStringList({"q0_refclk0_freq 122.88", "q0_global_reset_en true"}));
        QVERIFY(QFileInfo(s.work.path() + "/cpri_0/temp/cpri/cpri.csr").isFile());
    }
};

QTEST_MAIN(TestDialogAccept)
#include "tst_dialogaccept.moc"
