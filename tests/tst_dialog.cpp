// The dialog as the user first sees it, new or loaded, and while the user
// edits it. Each case is named after what it checks (see Case).

#include "dialogfixture.h"

#include <QMetaMethod>

namespace {

// What a user or the collect step depends on once the dialog is prepared
// for a DVA-1 device: the look (see look()) of each named widget.
// clang-format off
const QString InitialLook =
    "tabWidget CPRI Core Configuration|PHY Configuration|AFE Configuration|"
    "Optional Ports Configuration;createPathLabel ~/cpri_0;fileNameEdit cpri_0;"
    "moduleNameEdit cpri_top;languageCombo Verilog|VHDL@Verilog;"
    "synthesisToolCombo Built-in|Third-party@Built-in;speedSel3072 3.072G and Under;"
    "speedSel6144 6.144G and Under;speedSel98304 9.8304G and Under;"
    "speedSel101376 10.1376G and Under;speedSel1216512 12.16512G and Under;"
    "speedEnable06144 0.6144Gbps-;speedEnable12288 1.2288Gbps;speedEnable24576 2.4576Gbps;"
    "speedEnable3072 3.072Gbps;speedEnable49152 4.9152Gbps;speedEnable6144 6.144Gbps;"
    "speedEnable98304 9.8304Gbps;speedEnable811008 8.11008Gbps;speedEnable101376 10.1376Gbps;"
    "speedEnable1216512 12.16512Gbps;Master Master*-;Slave Slave-;MII MII*;GMII GMII;"
    "FixedConfigEnable Fixed Config Enable;ConfigClkPeriod 50;RealTimeVendor Real Time Vendor -;"
    "ProtocolVersion1 1*;ProtocolVersion2 2;EthernetPointer 14;HDLCRate 2;ScramblerSeed 00000000;"
    "HDLCByte 0-;HDLCMask 0000-;ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane0;"
    "LoopbackMode OFF|LB_NES|LB_FES|LB_ENC@OFF;lineRate 0Gbps-;"
    "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK0;"
    "refClkFreq 122.880;PLL_Selection QPLL0|QPLL1|CPLL@QPLL0;"
    "groupBoxEncodingAndDecoding Encoding and Decoding-^;"
    "comboBox64B_66B_Mode SerDes|Fabric@SerDes-;Calculate Calculate;"
    "differeSwingComboBox 180mV|228mV|276mV|324mV|372mV|420mV|468mV|516mV|564mV|612mV|660mV|708mV|"
    "756mV|804mV|852mV|900mV@900mV;ffeModeCombox Auto|Manual@Auto;cmSpinBox 0..19=0-;"
    "IPCPRI__afe_config/label (0~19)-;c0Lael 40;IPCPRI__afe_config/label_3 (21~40);"
    "c1SpinBox 0..19=0-;IPCPRI__afe_config/label_2 (0~19)-;"
    "sdThresholdComboBox 25mV|50mV|75mV|100mV|125mV|150mV|175mV|200mV@100mV;"
    "equalizationModeCombox Auto|Manual@Auto;attSpinBox 0..10=7-;"
    "IPCPRI__afe_config/label_14 (0~10)-;boostSpinBox 0..15=9-;IPCPRI__afe_config/label_15 (0~15)-;"
    "biasSpinBox 0..15=7;IPCPRI__afe_config/label_16 (0~15);checkBoxLoopBackPorts Loopback Ports;"
    "checkBoxDRPPort DRP Ports;IPCPRI__opt_config/groupBox TX Ports ^;"
    "checkBoxPPGP PRBS Pattern Generator Ports;checkBoxDifferSwingPorts Differential Swing Ports;"
    "checkBoxFFEPorts FFE Ports;IPCPRI__opt_config/groupBox_2 RX Ports ^;"
    "checkBoxPPCP PRBS Pattern Checker Ports;checkBoxEqualizationPorts Equalization Ports;"
    "checkBoxBIASPorts BIAS Ports;biasFlag 0;freeLanes Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3 (4);"
    "figure clocks frame mii control status;rates -+++++++++;classes +++++";
// clang-format on

// A record holding only its version loads these defaults.
// clang-format off
const Case Initial[] = {
    Case("new core").sees(InitialLook),
    Case("version only").saved("version=1.0").sees(
        QString(InitialLook).replace(";EthernetPointer 14;", ";EthernetPointer 00;")
            .replace(";HDLCRate 2;", ";HDLCRate 0;")
            .replace(";lineRate 0Gbps-;", ";lineRate 4.9152-;")),
};
// clang-format on

const char *const Dvb = "DVB-4-C1", *const Dvc = "DVC-1-C2I1";

// Lanes from the registry, the device's reference clocks, the PLLs, the
// source's frequency and the quad's bias.
// clang-format off
const Case Devices[] = {
    Case("DVB lanes, clocks and bias").on(Dvb).given("data:Q0_BIAS:3").sees(
        "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q1 Lane0|Q1 Lane1|Q1 Lane2|Q1 Lane3@"
        "Q0 Lane0;PLL_Selection QPLL0|QPLL1|CPLL@QPLL0;refClkFreq 122.880;biasSpinBox 0..15=3;"
        "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK@Q0 REFCLK0"),
    Case("no free lane, fixed clock").on(Dvc).given("ref:Q0 REFCLK0:100:1;full").sees(
        "ChannelSel @;PLL_Selection CPLL@CPLL;refClkFreq 100-;biasSpinBox 0..15=7;biasFlag 0;"
        "freeLanes  (0);refClkSource Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1@Q0 REFCLK0"),
};
// clang-format on

// Any version but "1.0" is refused with a box, and no widget changes.
Case refused(const char *name, const QString &version)
{
    return Case(name)
        .saved(version + ";GMII=true")
        .sees("opened no;GMII GMII")
        .boxes(
            "Error: This version of specified IP Config file is incompatible with current IP Core "
            "Generator.");
}
// clang-format off
const Case Versions[] = {
    refused("empty", "version="), refused("1.00", "version=1.00"), refused("1", "version=1"),
    refused("2.0", "version=2.0"), refused("trailing blank", "version=1.0 "),
    refused("missing", ""),
    Case("1.0").saved("version=1.0;GMII=true").sees("opened yes;GMII GMII*"),
};
// clang-format on

// Loading sets checked states without clicks: the slots on toggles and on
// index and text changes run, the speed rules and rate reading do not; the
// bias decision is taken after the lane change that resets it.
// clang-format off
const Case Loading[] = {
    Case("boxes, lists and fields").given("data:Q0_BIAS:12")
        .saved("version=1.0;3.072G_and_Under=true;10.1376Gbps=true;GMII=true;Real_Time_Vendor=true;"
               "Slave=true;Initial_Protocol_Version2=true;Channel_Selection=Q0 Lane2;"
               "PLL_Selection=QPLL1;Reference_CLK_Source=Q0 REFCLK1;Reference_CLK_Frequency=153.6;"
               "FFEMODE=Manual;FFE_CM=3;FFE_C1=5;FFE_C0=33;Equalization_Mode=Manual;ATT=2;"
               "ifChangedAllOfBias=true")
        .sees("classes *++++;rates -+++++++*+;lineRate 4.9152-;RealTimeVendor Real Time Vendor *;"
              "groupBoxEncodingAndDecoding Encoding and Decoding;Slave Slave*-;ProtocolVersion1 1;"
              "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane2;"
              "PLL_Selection QPLL0|QPLL1|CPLL@QPLL1;refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|"
              "Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK1;refClkFreq 153.6;cmSpinBox 0..19=3;"
              "c0Lael 33;attSpinBox 0..10=2;biasSpinBox 0..15=12;biasFlag 1;"
              "figure clocks narrow d16 frame rtv gmii control status"),
    Case("disabled rate checked").saved("version=1.0;0.6144Gbps=true").sees("rates #+++++++++;lineRate 4.9152-"),
};
// clang-format on

// Class and rate boxes form exclusive groups. A class change that
// withdraws the checked rate moves the check to 1.2288 Gbps without a
// click, so the line rate waits for the next click.
// clang-format off
const Case SpeedRules[] = {
    Case("nothing chosen").sees("rates -+++++++++;classes +++++;lineRate 0Gbps-"),
    Case("rate sets line rate").does("speedEnable1216512").sees("rates -++++++++*;lineRate 12.16512Gbps-"),
    Case("rates exclusive").does("speedEnable1216512;speedEnable811008").sees("rates -++++++*++;lineRate 8.11008Gbps-"),
    Case("3G class keeps 2.4G").does("speedEnable24576;speedSel3072").sees("rates -+*+------;classes *++++;lineRate 2.45760Gbps-"),
    Case("3G class moves 4.9G").does("speedEnable49152;speedSel3072").sees("rates -*++------;classes *++++;lineRate 4.91520Gbps-"),
    Case("6G class moves 8.1G").does("speedEnable811008;speedSel6144").sees("rates -*++++----;classes +*+++;lineRate 8.11008Gbps-"),
    Case("9.8G class moves 10G").does("speedEnable101376;speedSel98304").sees("rates -*+++++---;classes ++*++;lineRate 10.13760Gbps-"),
    Case("10G class moves 12G").does("speedEnable1216512;speedSel101376").sees("rates -*+++++++-;classes +++*+;lineRate 12.16512Gbps-"),
    Case("classes exclusive").does("speedSel3072;speedSel1216512").sees("rates -+++++++++;classes ++++*"),
    Case("10G class after 6G").does("speedSel6144;speedSel101376").sees("rates -++++++++-;classes +++*+"),
    Case("C1 grade to 8.1G").on(Dvb).sees("rates -+++++++--"),
    Case("C1 grade 12G class").on(Dvb).does("speedEnable811008;speedSel1216512").sees("rates -++++++*--;classes ++++*"),
    Case("C1 grade 10G after 6G").on(Dvb).does("speedSel6144;speedSel101376").sees("rates -+++++++--;classes +++*+"),
    Case("disabled rate ignores clicks").on("DVC-2-I2").does("speedEnable1216512").sees("rates -+++++++--;lineRate 0Gbps-"),
};
// clang-format on

// Real Time Vendor needs 10.1376 or 12.16512 Gbps; the 64B/66B group
// needs 8.11008 Gbps or more on a listed device and stays on any other.
const QString Rtv = "RealTimeVendor Real Time Vendor ",
              Enc = ";groupBoxEncodingAndDecoding Encoding and Decoding";
// clang-format off
const Case RateOptions[] = {
    Case("12G both").does("speedEnable1216512").sees(Rtv + Enc),
    Case("10G both").does("speedEnable101376").sees(Rtv + Enc),
    Case("8.1G 64B/66B only").does("speedEnable1216512;speedEnable811008").sees(Rtv + '-' + Enc),
    Case("class withdraws 10G").does("speedEnable101376;speedSel98304").sees(Rtv + '-' + Enc + "-^"),
    Case("2.4G neither").does("speedEnable811008;speedEnable24576").sees(Rtv + '-' + Enc + "-^"),
    Case("unlisted device 3G").on(Dvc).does("speedEnable3072").sees(Rtv + '-' + Enc),
    Case("unlisted device 12G").on(Dvc).does("speedEnable1216512").sees(Rtv + Enc),
};
// clang-format on

// What a field keeps of what the user types once the user leaves it.
Case keeps(const QString &field, const QString &typed, const QString &kept)
{
    return Case(field + " '" + typed + "' -> " + kept)
        .does(field + '=' + typed)
        .sees(field + ' ' + kept);
}
// Hexadecimal fields are read as shown, with their blanks as "0".
const QString Period = "ConfigClkPeriod", Freq = "refClkFreq", Seed = "ScramblerSeed",
              Pointer = "EthernetPointer", Hdlc = "HDLCRate";
// clang-format off
const Case FieldRules[] = {
    keeps(Period, "0", "50"), keeps(Period, "151", "50"), keeps(Period, "150", "150"),
    keeps(Period, "1", "1"), keeps(Period, "", "50"), keeps(Period, "1500", "150"),
    keeps(Period, "7a", "7"), keeps(Freq, "50", "50"), keeps(Freq, "500", "500"),
    keeps(Freq, "49.99", "122.880"), keeps(Freq, "500.5", "122.880"), keeps(Freq, "", "122.880"),
    keeps(Freq, "1000", "100"), keeps(Freq, "100.123456789", "100.12345678"),
    keeps(Seed, "1F", "1F000000"), keeps(Seed, "80000000", "00000000"),
    keeps(Seed, "7FFFFFFF", "7FFFFFFF"), keeps(Pointer, "13", "14"), keeps(Pointer, "3F", "3F"),
    keeps(Pointer, "40", "14"), keeps(Pointer, "3", "30"), keeps(Hdlc, "7", "7"),
    keeps(Hdlc, "8", "2"), keeps(Hdlc, "0", "0"),
};
// clang-format on

// C0 is 40 less both taps and must stay above 20; "Auto" modes fix the
// taps at 0 and the equalizer at ATT 7, BOOST 9, and lock the fields
// with their range labels.
const QString Afe = "IPCPRI__afe_config/";
// clang-format off
const Case Taps[] = {
    Case("C0 of 21").does("ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10").sees("c0Lael 21;cmSpinBox 0..19=9;c1SpinBox 0..19=10"),
    Case("C0 of 20 warns").does("ffeModeCombox=Manual;cmSpinBox=10;c1SpinBox=10").sees("c0Lael 20").boxes(Msg::C0),
    Case("Auto FFE resets taps")
        .does("ffeModeCombox=Manual;c1SpinBox=19;cmSpinBox=19;ffeModeCombox=Auto")
        .sees("c0Lael 40;cmSpinBox 0..19=0-;c1SpinBox 0..19=0-;" + Afe + "label (0~19)-;" + Afe
              + "label_2 (0~19)-")
        .boxes(Msg::C0),
    Case("manual equalizer").does("equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12")
        .sees("attSpinBox 0..10=3;boostSpinBox 0..15=12;" + Afe + "label_14 (0~10);" + Afe
              + "label_15 (0~15)"),
    Case("Auto equalizer resets").does("equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12;"
              "equalizationModeCombox=Auto")
        .sees("attSpinBox 0..10=7-;boostSpinBox 0..15=9-;" + Afe + "label_14 (0~10)-;" + Afe
              + "label_15 (0~15)-"),
};
// clang-format on

// The quad's bias: the registry's value, else the one accepted in this
// dialog for the quad, else 7; a new lane needs a new decision.
const QString Q00 = Msg::bias("Q0 Lane1, Q0 Lane2, Q0 Lane3", 11) + '|' + Msg::Succeed,
              Q10 = Msg::bias("Q1 Lane1, Q1 Lane2, Q1 Lane3", 5) + '|' + Msg::Succeed;
// clang-format off
const Case BiasDefaults[] = {
    Case("same quad keeps accepted").on(Dvc).given("data:Q1_BIAS:12")
        .does("speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q0 Lane1")
        .sees("biasSpinBox 0..15=11;biasFlag 0").boxes(Q00),
    Case("registry's on another quad").on(Dvc).given("data:Q1_BIAS:12")
        .does("speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q1 Lane0")
        .sees("biasSpinBox 0..15=12;biasFlag 0").boxes(Q00),
    Case("registry's over accepted").on(Dvc).given("data:Q1_BIAS:12")
        .does("speedEnable98304;ChannelSel=Q1 Lane0;biasSpinBox=5;Calculate;ChannelSel=Q1 Lane1")
        .sees("biasSpinBox 0..15=12").boxes(Q10),
    Case("accepted without registry's").on(Dvc)
        .does("speedEnable98304;ChannelSel=Q1 Lane0;biasSpinBox=5;Calculate;ChannelSel=Q1 Lane1")
        .sees("biasSpinBox 0..15=5").boxes(Q10),
    Case("undecided is 7").does("biasSpinBox=5;ChannelSel=Q0 Lane1").sees("biasSpinBox 0..15=7"),
};
// clang-format on

// The symbol's port groups (see PortGroups); the hidden port boxes are
// set only by loading a record.
const QString Base = "figure clocks frame mii control status",
              Wide = "figure clocks wide d64 frame mii control status", Load = "version=1.0;";
Case loads(const char *name, const QString &keys, const QString &groups)
{
    return Case(name).saved(Load + keys).sees(Base + groups);
}
// clang-format off
const Case Figure[] = {
    Case("base").sees(Base),
    Case("3G 16 bits").does("speedSel3072").sees("figure clocks narrow d16 frame mii control status"),
    Case("6G 32 bits").does("speedSel6144").sees("figure clocks narrow d32 frame mii control status"),
    Case("9.8G 64 bits").does("speedSel98304").sees("figure clocks narrow d64 frame mii control status"),
    Case("10G wide").does("speedSel101376").sees(Wide),
    Case("12G wide").does("speedSel1216512").sees(Wide),
    Case("GMII").does("GMII").sees("figure clocks frame gmii control status"),
    Case("RTV").does("speedSel1216512;speedEnable101376;RealTimeVendor").sees("figure clocks wide d64 frame rtv mii control status"),
    // The 12.16512 Gbps box refreshes nothing: its withdrawal shows at the next refresh.
    Case("12G box refreshes nothing")
        .does("speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304")
        .sees("figure clocks wide d64 frame rtv mii control status"),
    Case("next refresh drops RTV").does("speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304;speedSel1216512").sees(Wide),
    Case("loopback").does("checkBoxLoopBackPorts").sees(Base + " loopback drpclk"),
    Case("DRP").does("checkBoxDRPPort").sees(Base + " drpclk drp"),
    loads("swing", "Differential_Swing_Ports=true", " swing drpclk"),
    loads("FFE", "FFE_Ports=true", " ffe drpclk"),
    loads("equalization", "Equalization_Ports=true", " eq drpclk"),
    loads("bias", "BIAS_Ports=true", " bias drpclk"),
    loads("PRBS generator", "PRBS_Pattern_Generator_Ports=true", " ppg drpclk"),
    loads("PRBS checker", "PRBS_Pattern_Checker_Ports=true", " ppc drpclk"),
    loads("every option",
          "Loopback_Ports=true;DRP_Ports=true;Differential_Swing_Ports=true;FFE_Ports=true;"
          "Equalization_Ports=true;BIAS_Ports=true;PRBS_Pattern_Generator_Ports=true;"
          "PRBS_Pattern_Checker_Ports=true",
          " loopback swing ffe eq bias ppg ppc drpclk drp"),
};
// clang-format on

// Free QPLLs of the lane's quad, then those other cores set up (here for
// 9.8304 Gbps) that produce the line rate, each once, and "CPLL" last.
const QString Q0Both = "pll:Q0_QPLL0:9.8304;pll:Q0_QPLL1:9.8304";
// clang-format off
const Case Plls[] = {
    Case("all free").on(Dvc).does("speedEnable98304").sees("PLL_Selection QPLL0|QPLL1|CPLL@QPLL0"),
    Case("taken at another rate").on(Dvc).given("pll:Q0_QPLL1:9.8304").does("speedEnable6144").sees("PLL_Selection QPLL0|CPLL@QPLL0"),
    Case("taken ones that make it").on(Dvc).given(Q0Both).does("speedEnable49152").sees("PLL_Selection QPLL0|QPLL1|CPLL@QPLL0"),
    Case("no QPLL makes it").on(Dvc).given(Q0Both).does("speedEnable6144").sees("PLL_Selection CPLL@CPLL"),
    Case("other quad free").on(Dvc).given(Q0Both).does("speedEnable6144;ChannelSel=Q1 Lane2").sees("PLL_Selection QPLL0|QPLL1|CPLL@QPLL0"),
    Case("Q1 QPLL0 taken").on(Dvc).given("pll:Q1_QPLL0:9.8304").does("speedEnable6144;ChannelSel=Q1 Lane0").sees("PLL_Selection QPLL1|CPLL@QPLL1"),
    Case("Q1 QPLL0 shared").on(Dvc).given("pll:Q1_QPLL0:9.8304")
        .does("speedEnable98304;ChannelSel=Q1 Lane3").sees("PLL_Selection QPLL0|QPLL1|CPLL@QPLL0"),
};
// clang-format on

// The reference frequency follows the source: editable "122.880" while no
// other core fixed one, else the fixed one, locked. Refreshing the lanes
// by name appends them to the list and empties the PLL list.
// clang-format off
const Case Clocking[] = {
    Case("fixed frequency locked").given("ref:Q0 REFCLK1:245.76:1").does("refClkSource=Q0 REFCLK1;refClkFreq=300").sees("refClkFreq 245.76-"),
    Case("lanes refreshed by name").does("updateLaneConect()")
        .sees("ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@"
              "Q0 Lane0;PLL_Selection @;freeLanes Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3 (4)"),
};
// clang-format on

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

private slots:
    // Slots 0 to 18, in that order; only accept is public.
    void slotTable()
    {
        const QMetaObject &meta = cpridlg::staticMetaObject;
        QStringList seen;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod m = meta.method(i);
            seen << QString("%1 %2 %3 %4")
                        .arg(m.methodType() == QMetaMethod::Slot ? "slot" : "other",
                             m.access() == QMetaMethod::Public ? "public" : "private", m.typeName(),
                             m.methodSignature());
        }
        QCOMPARE(meta.className(), "IPCPRI::cpridlg");
        QCOMPARE(seen.join(';').replace("slot private void ", "").replace("slot private ", ""),
                 "slot public void accept();refreshFigure();updatedRefClkFreq();updatePLLSel();"
                 "updateLaneConect();int checkSpeedEnable();updateRealTimeVendor();"
                 "updateEncodingAndDecoding();checkClkPeriod();checkRefClkFreq();"
                 "bool onButtonCalculateClicked(bool);bool onButtonCalculateClicked();"
                 "checkLineEditInPut();updatedSpeedEnable();bool calculateFFE_C0();"
                 "onFFEModeChanged();onEqualizationModeChanged();resetFlagforBias();"
                 "updateBiasDefaultValue()");
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void initialLook_data() { rows(Initial); }
    void initialLook() { check(Initial); }
    void devices_data() { rows(Devices); }
    void devices() { check(Devices); }
    void versions_data() { rows(Versions); }
    void versions() { check(Versions); }
    void loading_data() { rows(Loading); }
    void loading() { check(Loading); }
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

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
