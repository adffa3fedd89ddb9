// Collecting, accepting and calculating: what the OK and Calculate
// buttons make of what the user entered.

#include "dialogfixture.h"

#include <plugin/cpri.h>

using IPCPRI::cpri;

namespace {

const QString Rate98304 = "speedSel98304;speedEnable98304;", Q00 = "Q0 Lane1, Q0 Lane2, Q0 Lane3",
              Q10 = "Q1 Lane1, Q1 Lane2, Q1 Lane3", Saved = "version=1.0;ifChangedAllOfBias=false;",
              Refused = "accepted no;shared ", Kept = "accepted yes;record:ifChangedAllOfBias ";
const char *const Dva = "DVA-1-C2I1", *const Dvb = "DVB-4-C1", *const Dvc = "DVC-1-C2I1";

// OK checks, in this order: file name, existing folder, module name, free
// lane, a rate, a class, C0, then calculates; an accepted dialog records
// the bias decision and publishes an accepted bias for its quad.
const Case Ok[] = {
    {"fileNameEdit=;moduleNameEdit=;okButton", Refused, "Error: The file name*", Dva, "full"},
    {Rate98304 + "okButton", Refused, "Question: The folder*", Dva, "folder", "", false},
    {Rate98304 + "okButton", Kept + "true;shared Q0_BIAS=#7", "Question: The folder*|" + Msg::bias(Q00, 7), Dva,
     "folder"},
    {Rate98304 + "Calculate;okButton", Kept + "true;shared Q0_BIAS=#7", Msg::bias(Q00, 7) + '|' + Msg::Succeed},
    {Rate98304 + "okButton", Kept + "false;shared ", "", Dva, "folder", Saved + "file=cpri_0"},
    {"moduleNameEdit=1a;okButton", Refused, "Error: The module name*", Dva, "full"},
    {"okButton", Refused, "Error: No available lanes", Dva, "full"},
    {"okButton", Refused, "Error: Please Enable Speed"},
    {"speedSel3072;okButton", Refused, "Error: Please Enable Speed"},
    {"speedEnable3072;okButton", Refused, "Error: Please Select Speed Selection"},
    {Rate98304 + "ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10;cmSpinBox=10;okButton", Refused + ";c0Lael 20",
     Msg::C0 + '|' + Msg::C0},
    {Rate98304 + "ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN;okButton", Refused,
     Msg::bias(Q10, 7) + '|' + Msg::RefClock, Dvb},
    {Rate98304 + "okButton", Refused, "", Dva, "nodir"},
    {Rate98304 + "PLL_Selection=CPLL;okButton", Refused,
     Msg::bias(Q00, 7) + "|Failure: CPLL cannot generate 9.8304 Gbps from a 122.88 MHz reference clock\n*"},
    {Rate98304 + "okButton", Refused, Msg::RefClock, Dvc, "ref:Q0 REFCLK0:122.88:1",
     Saved + "Reference_CLK_Frequency=153.6"},
    {Rate98304 + "ChannelSel=Q1 Lane1;biasSpinBox=9;okButton", Kept + "true;shared Q1_BIAS=#9",
     Msg::bias("Q1 Lane0, Q1 Lane2, Q1 Lane3", 9), Dvc},
    {Rate98304 + "okButton", Kept + "false;shared ", Msg::bias(Q00, 7), Dva, "", "", false},
    {Rate98304 + "biasSpinBox=4;okButton", Kept + "true;shared Q0_BIAS=#4", "", Dva, "",
     "version=1.0;ifChangedAllOfBias=true"},
    {Rate98304 + "okButton", Kept + "false;shared ", "", Dva, "", Saved},
    {Rate98304 + "okButton", Kept + "false;shared ", Msg::bias(Q00, 7), Dva, "", "version=1.0", false},
    {Rate98304 + "ChannelSel=Q1 Lane3;okButton", Kept + "true;shared Q1_BIAS=#12",
     Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane2", 12), Dvc, "data:Q1_BIAS:12"},
};

// Calculate: the bias question once per lane, then the reference clock
// (in use at another frequency, or out of the lane's reach), then the
// generator; the bias lines handed to it, and the route's clock freed.
const Case Calculate[] = {
    {Rate98304 + "Calculate;Calculate;ChannelSel=Q0 Lane1;Calculate;Calculate", "biasLines q0_rx_eq_bias 7;sourceMHz 0",
     QStringList{Msg::bias(Q00, 7), Msg::Succeed, Msg::Succeed, Msg::bias("Q0 Lane0, Q0 Lane2, Q0 Lane3", 7),
                 Msg::Succeed, Msg::Succeed}.join('|')},
    {"speedEnable98304;ChannelSel=Q1 Lane2;biasSpinBox=5;Calculate;Calculate", "biasLines ;sourceMHz 0",
     Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane3", 5) + '|' + Msg::Succeed + '|' + Msg::Succeed, Dvc, "", "", false},
    {"speedEnable98304;onButtonCalculateClicked()", "biasLines q0_rx_eq_bias 7;route FormStringToREFSPtr(q0_refclk0) "
     "checkAccess(q0_refclk0, Q0_LANE0_RX) checkAccess(q0_refclk0, Q0_LANE0_TX) "
     "checkRoute([Q0_LANE0], [Q0_QPLL0], [Q0_REFCLK0], [122.880]) resetLane(Q0_LANE0, false)",
     Msg::bias(Q00, 7) + '|' + Msg::Succeed},
    {"speedEnable98304;Calculate", "sourceMHz 122.88", Msg::Succeed, Dvc, "ref:Q0 REFCLK0:122.88:1",
     Saved + "Reference_CLK_Frequency=122.880"},
    {"speedEnable98304;Calculate", "sourceMHz 122.88", Msg::RefClock, Dvc, "ref:Q0 REFCLK0:122.88:1",
     Saved + "Reference_CLK_Frequency=153.6"},
    {"speedEnable98304;Calculate", "sourceMHz 0", Msg::Succeed, Dvc, "ref:Q0 REFCLK0:122.88:0",
     Saved + "Reference_CLK_Frequency=153.6"},
    {"speedEnable98304;ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN;Calculate",
     "biasLines q1_rx_eq_bias 7;route FormStringToREFSPtr(q0_gpio) checkAccess(q0_gpio, Q1_LANE0_RX)",
     Msg::bias(Q10, 7) + '|' + Msg::RefClock, Dvb},
    {"Calculate", "biasLines ", Msg::bias(Q00, 7) + "|Failure: No line rate is set", Dva, "", "", false},
    // A rate the PLL cannot make from the reference: why, and what would.
    {"speedSel101376;speedEnable101376;PLL_Selection=CPLL;Calculate", "biasLines ", Msg::bias(Q00, 7) + "|Failure: "
     "CPLL cannot generate 10.1376 Gbps from a 122.88 MHz reference clock\nCPLL VCO range: 2 to 6.25 GHz; 10.1376 Gbps "
     "needs a VCO of 5.0688 GHz, which no divider setting reaches from 122.88 MHz\nThese PLL kinds generate 10.1376 Gbps "
     "from 122.88 MHz: QPLL0 (VCO 10.1376 GHz), QPLL1 (VCO 10.1376 GHz)\nCPLL generates 10.1376 Gbps from none of the "
     "common reference clocks (61.44, 76.8, 100, 122.88, 125, 153.6, 156.25, 184.32, 200, 245.76, 250, 307.2, 312.5, "
     "368.64, 491.52 MHz)", Dva, "", "", false},
    // An empty PLL choice: the reference generator's own error lines.
    {"speedEnable98304;updateLaneConect();Calculate", "biasLines ",
     Msg::bias(Q00, 7) + "|Failure: Malformed setting line \"q0_ln0_pll_sel \"\nNo lane selects a PLL", Dva, "", "",
     false},
    {"Calculate", "", "", Dva, "full", "version=1.0;Reference_CLK_Source=none"},
    {"speedEnable98304;Calculate", "route FormStringToREFSPtr(q0_refclk0)", "", Dva, "nodir"},
};

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
        s.act("languageCombo=VHDL;synthesisToolCombo=Third-party;fileNameEdit=cpri_7;moduleNameEdit=cpri_x;"
              "speedSel1216512;speedEnable101376;ConfigClkPeriod=125;GMII;ProtocolVersion2;ScramblerSeed=12345678;"
              "HDLCRate=5;EthernetPointer=2A;FixedConfigEnable;RealTimeVendor;ChannelSel=Q0 Lane2;"
              "refClkSource=Q0 REFCLK1;refClkFreq=153.6;PLL_Selection=QPLL1;LoopbackMode=LB_FES;"
              "comboBox64B_66B_Mode=Fabric;differeSwingComboBox=420mV;ffeModeCombox=Manual;cmSpinBox=3;c1SpinBox=5;"
              "sdThresholdComboBox=150mV;equalizationModeCombox=Manual;attSpinBox=4;boostSpinBox=12;biasSpinBox=11;"
              "checkBoxLoopBackPorts;checkBoxDRPPort;okButton");
        QCOMPARE(s.seen(), QStringList{Msg::bias("Q0 Lane0, Q0 Lane1, Q0 Lane3", 11)});
        QStringList expected = split(
            "target_device=DVA-1-C2I1;type=com.ipgen.serdes.cpri;version=1.0;Synthesis_tool=Third-party;LANG=#1;"
            "file=cpri_7;module=cpri_x;3.072G_and_Under=false;6.144G_and_Under=false;9.8304G_and_Under=false;"
            "10.1376G_and_Under=false;12.16512G_and_Under=true;0.6144Gbps=false;1.2288Gbps=false;2.4576Gbps=false;"
            "3.072Gbps=false;4.9152Gbps=false;6.144Gbps=false;9.8304Gbps=false;8.11008Gbps=false;"
            "10.1376Gbps=true;12.16512Gbps=false;Config_Clk_Period=125;MII=false;GMII=true;"
            "Initial_Protocol_Version1=false;Initial_Protocol_Version2=true;Initial_Scrambler_Seed=12345678;"
            "Initial_HDLC_Rate=5;Initial_HDLC_Byte=0;Initial_HDLC_Mask=0000;Initial_Ethernet_Pointer=2A;"
            "Fixed_Config_Enable=true;Real_Time_Vendor=true;Master=false;Slave=false;Channel_Selection=Q0 Lane2;"
            "Line_Rate=10.13760Gbps;Reference_CLK_Source=Q0 REFCLK1;Reference_CLK_Frequency=153.6;"
            "PLL_Selection=QPLL1;Loopback_Mode=LB_FES;64B_66B_Mode=Fabric;highest_SpeedIndex=#9;"
            "speedEnables_Record=001000000000;DIFFERENTIAL_SWING=420mV;FFEMODE=Manual;FFE_CM=#3;FFE_C1=#5;"
            "FFE_C0=32;SD_THRESHOLD=150mV;Equalization_Mode=Manual;ATT=#4;BOOST=#12;Loopback_Ports=true;"
            "DRP_Ports=true;PRBS_Pattern_Generator_Ports=false;Differential_Swing_Ports=false;FFE_Ports=false;"
            "PRBS_Pattern_Checker_Ports=false;Equalization_Ports=false;BIAS_Ports=false;ifChangedAllOfBias=true");
        expected.sort();
        QCOMPARE(show(s.record), expected);
        QCOMPARE(s.see("accepted") + ";" + s.see("shared"), "accepted yes;shared Q0_BIAS=#11");
        Record saved = s.record;
        for (const char *key : {"PRBS_Pattern_Generator_Ports", "Differential_Swing_Ports", "FFE_Ports",
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
        Session s("DVA-1-C2I1", "", "", false);
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
        QCOMPARE(probe.routes(), QList<QStringList>({{"Q0_LANE0"}, {"Q0_QPLL0"}, {"Q0_REFCLK0"}, {"122.880"}}));
        QCOMPARE(probe.settings().filter(QRegularExpression("_freq |_reset_en ")),
                 QStringList({"q0_refclk0_freq 122.88", "q0_global_reset_en true"}));
        QVERIFY(QFileInfo(s.work.path() + "/cpri_0/temp/cpri/cpri.csr").isFile());
    }

    // The protocol object runs one dialog per request and returns its
    // record only when the user accepts.
    void createAndEditFlows()
    {
        Session p("DVA-1-C2I1", "", "", false);
        cpri protocol(CPRI_PACKAGE_DIR);
        QVERIFY(protocol.loadDescriptor());
        QStringList firstLook;
        const auto handle = [&](const QString &steps) {
            p.user.setDialogHandler([&firstLook, steps](QDialog *dialog) {
                firstLook << look(w(dialog, "speedSel3072"));
                act(dialog, steps);
                if (dialog->isVisible())
                    dialog->reject(); // the steps left it open
            });
        };
        handle("speedSel3072;Calculate;cancelButton");
        QVERIFY(protocol.createConfig("cpri_0", p.device).isEmpty());
        QVERIFY(!protocol.configuration().isEmpty()); // the calculation wrote it
        handle("fileNameEdit=cpri_1;" + Rate98304 + "okButton");
        const Record made = protocol.createConfig("cpri_1", p.device);
        QVERIFY(!made.isEmpty());
        QCOMPARE(made, protocol.configuration());
        QCOMPARE(firstLook, QStringList({"3.072G and Under", "3.072G and Under"}));
        QVERIFY(protocol.editConfig(parse("version=1.00")).isEmpty());
        QCOMPARE(firstLook.size(), 2); // the refused record was never shown
    }
};

QTEST_MAIN(TestDialogAccept)
#include "tst_dialogaccept.moc"
