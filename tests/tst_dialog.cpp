// The dialog shell and its forms as the user first sees them, for a new
// core and for a loaded one, and the loading of saved records.

#include "dialogfixture.h"

#include <QMetaMethod>
#include <QTabWidget>

namespace {

// What a user or the collect step depends on once the dialog is prepared
// for a DVA-1 device: the look (see look()) of each named widget.
const QString InitialLook =
    "coreLabel CPRI (Common Public Radio Interface) Link Core;fileNameEdit cpri_0;moduleNameEdit cpri_top;"
    "languageCombo Verilog|VHDL@Verilog;synthesisToolCombo Built-in|Third-party@Built-in;"
    "speedSel3072 3.072G and Under;speedSel6144 6.144G and Under;speedSel98304 9.8304G and Under;"
    "speedSel101376 10.1376G and Under;speedSel1216512 12.16512G and Under;speedEnable06144 0.6144Gbps-;"
    "speedEnable12288 1.2288Gbps;speedEnable24576 2.4576Gbps;speedEnable3072 3.072Gbps;"
    "speedEnable49152 4.9152Gbps;speedEnable6144 6.144Gbps;speedEnable98304 9.8304Gbps;"
    "speedEnable811008 8.11008Gbps;speedEnable101376 10.1376Gbps;speedEnable1216512 12.16512Gbps;Master Master*-;"
    "Slave Slave-;MII MII*;GMII GMII;FixedConfigEnable Fixed Config Enable;ConfigClkPeriod 50;"
    "RealTimeVendor Real Time Vendor -;ProtocolVersion1 1*;ProtocolVersion2 2;EthernetPointer 14;HDLCRate 2;"
    "ScramblerSeed 00000000;HDLCByte 0-;HDLCMask 0000-;ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane0;"
    "LoopbackMode OFF|LB_NES|LB_FES|LB_ENC@OFF;lineRate 0Gbps-;"
    "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK0;refClkFreq 122.880;"
    "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0;groupBoxEncodingAndDecoding Encoding and Decoding-^;"
    "comboBox64B_66B_Mode SerDes|Fabric@SerDes-;Calculate Calculate;"
    "differeSwingComboBox 180mV|228mV|276mV|324mV|372mV|420mV|468mV|516mV|564mV|612mV|660mV|708mV|756mV|"
    "804mV|852mV|900mV@900mV;"
    "ffeModeCombox Auto|Manual@Auto;cmSpinBox 0..19=0-;IPCPRI__afe_config/label (0~19)-;c0Lael 40;"
    "IPCPRI__afe_config/label_3 (21~40);c1SpinBox 0..19=0-;IPCPRI__afe_config/label_2 (0~19)-;"
    "sdThresholdComboBox 25mV|50mV|75mV|100mV|125mV|150mV|175mV|200mV@100mV;"
    "equalizationModeCombox Auto|Manual@Auto;attSpinBox 0..10=7-;IPCPRI__afe_config/label_14 (0~10)-;"
    "boostSpinBox 0..15=9-;IPCPRI__afe_config/label_15 (0~15)-;biasSpinBox 0..15=7;"
    "IPCPRI__afe_config/label_16 (0~15);checkBoxLoopBackPorts Loopback Ports;checkBoxDRPPort DRP Ports;"
    "IPCPRI__opt_config/groupBox TX Ports ^;checkBoxPPGP PRBS Pattern Generator Ports;"
    "checkBoxDifferSwingPorts Differential Swing Ports;checkBoxFFEPorts FFE Ports;"
    "IPCPRI__opt_config/groupBox_2 RX Ports ^;checkBoxPPCP PRBS Pattern Checker Ports;"
    "checkBoxEqualizationPorts Equalization Ports;checkBoxBIASPorts BIAS Ports;biasFlag 0;freeLanes Q0 Lane0|Q0 Lane1|"
    "Q0 Lane2|Q0 Lane3 (4);figure clocks frame mii control status;rates -+++++++++;classes +++++";

// Where a record holding only its version loads something else.
const QMap<QString, QString> VersionOnlyLook = {
    {"EthernetPointer", "00"}, {"HDLCRate", "0"}, {"lineRate", "4.9152-"}};

// Lanes from the registry, the device's reference clocks, the PLLs, the
// source's frequency and the quad's bias.
const Case Devices[] = {
    {"", "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q1 Lane0|Q1 Lane1|Q1 Lane2|Q1 Lane3@Q0 Lane0;"
         "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0;refClkFreq 122.880;biasSpinBox 0..15=3;"
         "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK@Q0 REFCLK0", "", "DVB-4-C1", "data:Q0_BIAS:3"},
    {"", "ChannelSel @;PLL_Selection CPLL@CPLL;refClkFreq 100-;biasSpinBox 0..15=7;biasFlag 0;freeLanes  (0);"
         "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1@Q0 REFCLK0", "", "DVC-1-C2I1",
     "ref:Q0 REFCLK0:100:1;full"},
};

// Any version but "1.0" is refused with a box, and no widget changes.
const QString Refused = "Error: This version of specified IP Config file is incompatible with current IP Core Generator.";
const Case Versions[] = {
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "version=;GMII=true"},
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "version=1.00;GMII=true"},
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "version=1;GMII=true"},
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "version=2.0;GMII=true"},
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "version=1.0 ;GMII=true"},
    {"", "opened no;GMII GMII", Refused, "DVA-1-C2I1", "", "GMII=true"},
    {"", "opened yes;GMII GMII*", "", "DVA-1-C2I1", "", "version=1.0;GMII=true"},
};

// Loading sets checked states without clicks: the slots on toggles and on
// index and text changes run, the speed rules and rate reading do not; the
// bias decision is taken after the lane change that resets it.
const Case Loading[] = {
    {"", "classes *++++;rates -+++++++*+;lineRate 4.9152-;RealTimeVendor Real Time Vendor *;"
         "groupBoxEncodingAndDecoding Encoding and Decoding;Slave Slave*-;ProtocolVersion1 1;"
         "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane2;PLL_Selection QPLL0|QPLL1|CPLL@QPLL1;"
         "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK1;refClkFreq 153.6;"
         "cmSpinBox 0..19=3;c0Lael 33;attSpinBox 0..10=2;biasSpinBox 0..15=12;biasFlag 1;"
         "figure clocks narrow d16 frame rtv gmii control status",
     "", "DVA-1-C2I1", "data:Q0_BIAS:12",
     "version=1.0;3.072G_and_Under=true;10.1376Gbps=true;GMII=true;Real_Time_Vendor=true;Slave=true;"
     "Initial_Protocol_Version2=true;Channel_Selection=Q0 Lane2;PLL_Selection=QPLL1;Reference_CLK_Source=Q0 REFCLK1;"
     "Reference_CLK_Frequency=153.6;FFEMODE=Manual;FFE_CM=3;FFE_C1=5;FFE_C0=33;Equalization_Mode=Manual;ATT=2;"
     "ifChangedAllOfBias=true"},
};

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

private slots:
    void slotTable()
    {
        const QStringList table = {
            "accept()", "refreshFigure()", "updatedRefClkFreq()", "updatePLLSel()", "updateLaneConect()",
            "int checkSpeedEnable()", "updateRealTimeVendor()", "updateEncodingAndDecoding()", "checkClkPeriod()",
            "checkRefClkFreq()", "bool onButtonCalculateClicked(bool)", "bool onButtonCalculateClicked()",
            "checkLineEditInPut()", "updatedSpeedEnable()", "bool calculateFFE_C0()", "onFFEModeChanged()",
            "onEqualizationModeChanged()", "resetFlagforBias()", "updateBiasDefaultValue()"};
        const QMetaObject &meta = cpridlg::staticMetaObject;
        QCOMPARE(meta.className(), "IPCPRI::cpridlg");
        QStringList seen;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod m = meta.method(i);
            QCOMPARE(m.methodType(), QMetaMethod::Slot);
            QCOMPARE(m.access(), i == meta.methodOffset() ? QMetaMethod::Public : QMetaMethod::Private);
            const QString result = m.typeName();
            seen << (result == "void" ? QString() : result + ' ') + m.methodSignature();
        }
        QCOMPARE(seen, table);
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void initialLook_data()
    {
        QTest::addColumn<QString>("saved");
        QTest::newRow("created") << "";
        QTest::newRow("opened from a version alone") << "version=1.0";
    }
    void initialLook()
    {
        QFETCH(QString, saved);
        Session s("DVA-1-C2I1", "", saved);
        QStringList want = split(InitialLook);
        for (QString &entry : want) {
            const QString name = entry.section(' ', 0, 0);
            if (!saved.isEmpty() && VersionOnlyLook.contains(name))
                entry = name + ' ' + VersionOnlyLook[name];
        }
        QCOMPARE(s.looks(InitialLook), want);
        auto *tabs = w<QTabWidget>(s.d.get(), "tabWidget");
        QCOMPARE(QStringList({tabs->tabText(0), tabs->tabText(1), tabs->tabText(2), tabs->tabText(3)}),
                 QStringList({"CPRI Core Configuration", "PHY Configuration", "AFE Configuration",
                              "Optional Ports Configuration"}));
        QCOMPARE(tabs->count(), 4);
        QCOMPARE(w<QLabel>(s.d.get(), "createPathLabel")->text(), s.work.path() + "/cpri_0");
    }

    void devices_data() { rows(Devices); }
    void devices() { check(Devices); }
    void versions_data() { rows(Versions); }
    void versions() { check(Versions); }
    void loading_data() { rows(Loading); }
    void loading() { check(Loading); }
};

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
