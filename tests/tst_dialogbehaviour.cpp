// What the dialog does while the user edits it: speed rules, field rules,
// clocking controls and the port figure. Each case's tag is what the
// user does (see act()), its looks what the user then sees (see see()).

#include "dialogfixture.h"

namespace {

const char *const Dvb = "DVB-4-C1", *const Dvc = "DVC-1-C2I1";

// Class and rate boxes form exclusive groups. A class change that
// withdraws the checked rate moves the check to 1.2288 Gbps without a
// click, so the line rate waits for the next click.
const Case SpeedRules[] = {
    {"", "rates -+++++++++;classes +++++;lineRate 0Gbps-"},
    {"speedEnable1216512", "rates -++++++++*;lineRate 12.16512Gbps-"},
    {"speedEnable1216512;speedEnable811008", "rates -++++++*++;lineRate 8.11008Gbps-"},
    {"speedEnable811008;speedEnable811008", "rates -++++++*++;lineRate 8.11008Gbps-"},
    {"speedEnable24576;speedSel3072", "rates -+*+------;classes *++++;lineRate 2.45760Gbps-"},
    {"speedEnable49152;speedSel3072", "rates -*++------;classes *++++;lineRate 4.91520Gbps-"},
    {"speedEnable811008;speedSel6144", "rates -*++++----;classes +*+++;lineRate 8.11008Gbps-"},
    {"speedEnable101376;speedSel98304", "rates -*+++++---;classes ++*++;lineRate 10.13760Gbps-"},
    {"speedEnable1216512;speedSel101376", "rates -*+++++++-;classes +++*+;lineRate 12.16512Gbps-"},
    {"speedSel3072;speedSel1216512", "rates -+++++++++;classes ++++*"},
    {"speedSel6144;speedSel101376", "rates -++++++++-;classes +++*+"},
    {"speedSel3072;speedSel98304;speedEnable98304", "rates -+++++*---;classes ++*++;lineRate 9.83040Gbps-"},
    {"", "rates -+++++++--", "", Dvb},
    {"speedEnable811008;speedSel1216512", "rates -++++++*--;classes ++++*", "", Dvb},
    {"speedSel6144;speedSel101376", "rates -+++++++--;classes +++*+", "", Dvb},
    {"speedEnable1216512", "rates -+++++++--;lineRate 0Gbps-", "", "DVC-2-I2"},
};

// Real Time Vendor needs 10.1376 or 12.16512 Gbps; the 64B/66B group
// needs 8.11008 Gbps or more on a listed device and stays on any other.
const QString Rtv = "RealTimeVendor Real Time Vendor ", Enc = ";groupBoxEncodingAndDecoding Encoding and Decoding";
const Case RateOptions[] = {
    {"speedEnable1216512", Rtv + Enc},
    {"speedEnable101376", Rtv + Enc},
    {"speedEnable1216512;speedEnable811008", Rtv + '-' + Enc},
    {"speedEnable101376;speedSel98304", Rtv + '-' + Enc + "-^"},
    {"speedEnable811008;speedEnable24576", Rtv + '-' + Enc + "-^"},
    {"speedEnable3072", Rtv + '-' + Enc, "", Dvc},
    {"speedEnable1216512", Rtv + Enc, "", Dvc},
};

// What a field keeps of an entry once the user leaves it; hexadecimal
// fields are read as shown, with their blanks as "0".
const Case FieldRules[] = {
    {"ConfigClkPeriod=0", "ConfigClkPeriod 50"}, {"ConfigClkPeriod=151", "ConfigClkPeriod 50"},
    {"ConfigClkPeriod=150", "ConfigClkPeriod 150"}, {"ConfigClkPeriod=1", "ConfigClkPeriod 1"},
    {"ConfigClkPeriod=", "ConfigClkPeriod 50"}, {"ConfigClkPeriod=1500", "ConfigClkPeriod 150"},
    {"ConfigClkPeriod=7a", "ConfigClkPeriod 7"}, {"refClkFreq=50", "refClkFreq 50"},
    {"refClkFreq=500", "refClkFreq 500"}, {"refClkFreq=49.99", "refClkFreq 122.880"},
    {"refClkFreq=500.5", "refClkFreq 122.880"}, {"refClkFreq=", "refClkFreq 122.880"},
    {"refClkFreq=1000", "refClkFreq 100"}, {"refClkFreq=100.123456789", "refClkFreq 100.12345678"},
    {"ScramblerSeed=1F", "ScramblerSeed 1F000000"}, {"ScramblerSeed=80000000", "ScramblerSeed 00000000"},
    {"ScramblerSeed=7FFFFFFF", "ScramblerSeed 7FFFFFFF"}, {"EthernetPointer=13", "EthernetPointer 14"},
    {"EthernetPointer=3F", "EthernetPointer 3F"}, {"EthernetPointer=40", "EthernetPointer 14"},
    {"EthernetPointer=3", "EthernetPointer 30"}, {"HDLCRate=7", "HDLCRate 7"},
    {"HDLCRate=8", "HDLCRate 2"}, {"HDLCRate=0", "HDLCRate 0"},
};

// C0 is 40 less both taps and must stay above 20; "Auto" modes fix the
// taps at 0 and the equalizer at ATT 7, BOOST 9, and lock the fields
// with their range labels.
const QString Afe = "IPCPRI__afe_config/";
const Case Taps[] = {
    {"ffeModeCombox=Manual", "cmSpinBox 0..19=0;c1SpinBox 0..19=0;" + Afe + "label (0~19);" + Afe + "label_2 (0~19)"},
    {"ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10", "c0Lael 21;cmSpinBox 0..19=9;c1SpinBox 0..19=10"},
    {"ffeModeCombox=Manual;cmSpinBox=10;c1SpinBox=10", "c0Lael 20", Msg::C0},
    {"ffeModeCombox=Manual;c1SpinBox=19;cmSpinBox=19;ffeModeCombox=Auto",
     "c0Lael 40;cmSpinBox 0..19=0-;c1SpinBox 0..19=0-;" + Afe + "label (0~19)-;" + Afe + "label_2 (0~19)-", Msg::C0},
    {"equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12",
     "attSpinBox 0..10=3;boostSpinBox 0..15=12;" + Afe + "label_14 (0~10);" + Afe + "label_15 (0~15)"},
    {"equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12;equalizationModeCombox=Auto",
     "attSpinBox 0..10=7-;boostSpinBox 0..15=9-;" + Afe + "label_14 (0~10)-;" + Afe + "label_15 (0~15)-"},
};

// The quad's bias: the registry's value, else the one accepted in this
// dialog for the quad, else 7; a new lane needs a new decision.
const QString AskQ00 = Msg::bias("Q0 Lane1, Q0 Lane2, Q0 Lane3", 11) + '|' + Msg::Succeed;
const Case BiasDefaults[] = {
    {"speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q0 Lane1", "biasSpinBox 0..15=11;biasFlag 0", AskQ00,
     Dvc, "data:Q1_BIAS:12"},
    {"speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q1 Lane0", "biasSpinBox 0..15=12;biasFlag 0", AskQ00,
     Dvc, "data:Q1_BIAS:12"},
    {"speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q1 Lane0;ChannelSel=Q0 Lane2", "biasSpinBox 0..15=11",
     AskQ00, Dvc, "data:Q1_BIAS:12"},
    {"speedEnable98304;ChannelSel=Q1 Lane0;biasSpinBox=5;Calculate;ChannelSel=Q1 Lane1", "biasSpinBox 0..15=12",
     Msg::bias("Q1 Lane1, Q1 Lane2, Q1 Lane3", 5) + '|' + Msg::Succeed, Dvc, "data:Q1_BIAS:12"},
    {"speedEnable98304;ChannelSel=Q1 Lane0;biasSpinBox=5;Calculate;ChannelSel=Q1 Lane1", "biasSpinBox 0..15=5",
     Msg::bias("Q1 Lane1, Q1 Lane2, Q1 Lane3", 5) + '|' + Msg::Succeed, Dvc},
};

// The symbol's port groups (see PortGroups); the hidden port boxes are
// set only by loading a record.
const QString Base = "figure clocks frame mii control status", Wide = "figure clocks wide d64 frame mii control status",
              Load = "version=1.0;";
const Case Figure[] = {
    {"", Base},
    {"speedSel3072", "figure clocks narrow d16 frame mii control status"},
    {"speedSel6144", "figure clocks narrow d32 frame mii control status"},
    {"speedSel98304", "figure clocks narrow d64 frame mii control status"},
    {"speedSel101376", Wide},
    {"speedSel1216512", Wide},
    {"GMII", "figure clocks frame gmii control status"},
    {"speedSel1216512;speedEnable101376;RealTimeVendor", "figure clocks wide d64 frame rtv mii control status"},
    {"speedSel1216512;speedEnable101376;RealTimeVendor;speedEnable98304", Wide},
    // The 12.16512 Gbps box refreshes nothing: its withdrawal shows at the next refresh.
    {"speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304",
     "figure clocks wide d64 frame rtv mii control status"},
    {"speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304;speedSel1216512", Wide},
    {"checkBoxLoopBackPorts", Base + " loopback drpclk"},
    {"checkBoxDRPPort", Base + " drpclk drp"},
    {"", Base + " swing drpclk", "", "DVA-1-C2I1", "", Load + "Differential_Swing_Ports=true"},
    {"", Base + " ffe drpclk", "", "DVA-1-C2I1", "", Load + "FFE_Ports=true"},
    {"", Base + " eq drpclk", "", "DVA-1-C2I1", "", Load + "Equalization_Ports=true"},
    {"", Base + " bias drpclk", "", "DVA-1-C2I1", "", Load + "BIAS_Ports=true"},
    {"", Base + " ppg drpclk", "", "DVA-1-C2I1", "", Load + "PRBS_Pattern_Generator_Ports=true"},
    {"", Base + " ppc drpclk", "", "DVA-1-C2I1", "", Load + "PRBS_Pattern_Checker_Ports=true"},
    {"", Base + " loopback swing ffe eq bias ppg ppc drpclk drp", "", "DVA-1-C2I1", "",
     Load + "Loopback_Ports=true;DRP_Ports=true;Differential_Swing_Ports=true;FFE_Ports=true;Equalization_Ports=true;"
            "BIAS_Ports=true;PRBS_Pattern_Generator_Ports=true;PRBS_Pattern_Checker_Ports=true"},
};

// Free QPLLs of the lane's quad, then those other cores set up (here for
// 9.8304 Gbps) that produce the line rate, each once, and "CPLL" last.
const QString Q0Both = "pll:Q0_QPLL0:9.8304;pll:Q0_QPLL1:9.8304";
const Case Plls[] = {
    {"speedEnable98304", "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0", "", Dvc},
    {"speedEnable6144", "PLL_Selection QPLL0|CPLL@QPLL0", "", Dvc, "pll:Q0_QPLL1:9.8304"},
    {"speedEnable49152", "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0", "", Dvc, Q0Both},
    {"speedEnable6144", "PLL_Selection CPLL@CPLL", "", Dvc, Q0Both},
    {"speedEnable6144;ChannelSel=Q1 Lane2", "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0", "", Dvc, Q0Both},
    {"speedEnable6144;ChannelSel=Q1 Lane0", "PLL_Selection QPLL1|CPLL@QPLL1", "", Dvc, "pll:Q1_QPLL0:9.8304"},
    {"speedEnable98304;ChannelSel=Q1 Lane3", "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0", "", Dvc, "pll:Q1_QPLL0:9.8304"},
    {"speedEnable6144;ChannelSel=Q1 Lane1;speedEnable98304", "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0", "", Dvc,
     "pll:Q1_QPLL1:9.8304"},
};

// The reference frequency follows the source: editable "122.880" while no
// other core fixed one, else the fixed one, locked. Refreshing the lanes
// by name appends them to the list and empties the PLL list.
const Case Clocking[] = {
    {"refClkSource=Q0 REFCLK1;refClkFreq=300", "refClkFreq 245.76-", "", "DVA-1-C2I1", "ref:Q0 REFCLK1:245.76:1"},
    {"refClkSource=Q0 REFCLK1;refClkSource=Q0 REFCLK0", "refClkFreq 122.880", "", "DVA-1-C2I1",
     "ref:Q0 REFCLK1:245.76:1"},
    {"updateLaneConect()", "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane0;"
                           "PLL_Selection @;freeLanes Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3 (4)"},
};

} // namespace

class TestDialogBehaviour : public QObject
{
    Q_OBJECT

private slots:
    void speedRules_data() { rows(SpeedRules); }
    void speedRules() { check(SpeedRules); }
    void rateOptions_data() { rows(RateOptions); }
    void rateOptions() { check(RateOptions); }
    void fieldRules_data() { rows(FieldRules); }
    void fieldRules() { check(FieldRules); }
    void taps_data() { rows(Taps); }
    void taps() { check(Taps); }
    void biasDefaults_data() { rows(BiasDefaults); }
    void biasDefaults() { check(BiasDefaults); }
    void figure_data() { rows(Figure); }
    void figure() { check(Figure); }
    void plls_data() { rows(Plls); }
    void plls() { check(Plls); }
    void clocking_data() { rows(Clocking); }
    void clocking() { check(Clocking); }
};

QTEST_MAIN(TestDialogBehaviour)
#include "tst_dialogbehaviour.moc"
