// The dialog shell and its forms as the user first sees them, for a new
// core and for a loaded one, and the loading of saved records.

#include "dialogfixture.h"

#include <QMetaMethod>
#include <QTabWidget>

namespace {

// What a user or the collect step depends on after the dialog is
// prepared for a DVA-1 device: the look of each named widget (see look()),
// and where a record holding only its version loads something else.
const struct
{
    const char *name, *created, *loaded;
} InitialLook[] = {
    {"coreLabel", "CPRI (Common Public Radio Interface) Link Core", nullptr},
    {"fileNameEdit", "cpri_0", nullptr},
    {"moduleNameEdit", "cpri_top", nullptr},
    {"languageCombo", "Verilog|VHDL@Verilog", nullptr},
    {"synthesisToolCombo", "Built-in|Third-party@Built-in", nullptr},
    {"speedSel3072", "3.072G and Under", nullptr},
    {"speedSel6144", "6.144G and Under", nullptr},
    {"speedSel98304", "9.8304G and Under", nullptr},
    {"speedSel101376", "10.1376G and Under", nullptr},
    {"speedSel1216512", "12.16512G and Under", nullptr},
    {"speedEnable06144", "0.6144Gbps-", nullptr},
    {"speedEnable12288", "1.2288Gbps", nullptr},
    {"speedEnable24576", "2.4576Gbps", nullptr},
    {"speedEnable3072", "3.072Gbps", nullptr},
    {"speedEnable49152", "4.9152Gbps", nullptr},
    {"speedEnable6144", "6.144Gbps", nullptr},
    {"speedEnable98304", "9.8304Gbps", nullptr},
    {"speedEnable811008", "8.11008Gbps", nullptr},
    {"speedEnable101376", "10.1376Gbps", nullptr},
    {"speedEnable1216512", "12.16512Gbps", nullptr},
    {"Master", "Master*-", nullptr},
    {"Slave", "Slave-", nullptr},
    {"MII", "MII*", nullptr},
    {"GMII", "GMII", nullptr},
    {"FixedConfigEnable", "Fixed Config Enable", nullptr},
    {"ConfigClkPeriod", "50", nullptr},
    {"RealTimeVendor", "Real Time Vendor -", nullptr},
    {"ProtocolVersion1", "1*", nullptr},
    {"ProtocolVersion2", "2", nullptr},
    {"EthernetPointer", "14", "00"},
    {"HDLCRate", "2", "0"},
    {"ScramblerSeed", "00000000", nullptr},
    {"HDLCByte", "0-", nullptr},
    {"HDLCMask", "0000-", nullptr},
    {"ChannelSel", "Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane0", nullptr},
    {"LoopbackMode", "OFF|LB_NES|LB_FES|LB_ENC@OFF", nullptr},
    {"lineRate", "0Gbps-", "4.9152-"},
    {"refClkSource", "Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK0", nullptr},
    {"refClkFreq", "122.880", nullptr},
    {"PLL_Selection", "QPLL0|QPLL1|CPLL@QPLL0", nullptr},
    {"groupBoxEncodingAndDecoding", "Encoding and Decoding-^", nullptr},
    {"comboBox64B_66B_Mode", "SerDes|Fabric@SerDes-", nullptr},
    {"Calculate", "Calculate", nullptr},
    {"differeSwingComboBox", "180mV|228mV|276mV|324mV|372mV|420mV|468mV|516mV|564mV|612mV|"
                             "660mV|708mV|756mV|804mV|852mV|900mV@900mV", nullptr},
    {"ffeModeCombox", "Auto|Manual@Auto", nullptr},
    {"cmSpinBox", "0..19=0-", nullptr},
    {"IPCPRI__afe_config/label", "(0~19)-", nullptr},
    {"c0Lael", "40", nullptr},
    {"IPCPRI__afe_config/label_3", "(21~40)", nullptr},
    {"c1SpinBox", "0..19=0-", nullptr},
    {"IPCPRI__afe_config/label_2", "(0~19)-", nullptr},
    {"sdThresholdComboBox", "25mV|50mV|75mV|100mV|125mV|150mV|175mV|200mV@100mV", nullptr},
    {"equalizationModeCombox", "Auto|Manual@Auto", nullptr},
    {"attSpinBox", "0..10=7-", nullptr},
    {"IPCPRI__afe_config/label_14", "(0~10)-", nullptr},
    {"boostSpinBox", "0..15=9-", nullptr},
    {"IPCPRI__afe_config/label_15", "(0~15)-", nullptr},
    {"biasSpinBox", "0..15=7", nullptr},
    {"checkBoxLoopBackPorts", "Loopback Ports", nullptr},
    {"checkBoxDRPPort", "DRP Ports", nullptr},
    {"IPCPRI__opt_config/groupBox", "TX Ports ^", nullptr},
    {"checkBoxPPGP", "PRBS Pattern Generator Ports", nullptr},
    {"checkBoxDifferSwingPorts", "Differential Swing Ports", nullptr},
    {"checkBoxFFEPorts", "FFE Ports", nullptr},
    {"IPCPRI__opt_config/groupBox_2", "RX Ports ^", nullptr},
    {"checkBoxPPCP", "PRBS Pattern Checker Ports", nullptr},
    {"checkBoxEqualizationPorts", "Equalization Ports", nullptr},
    {"checkBoxBIASPorts", "BIAS Ports", nullptr},
};

QStringList looks(QObject *d, const QStringList &names)
{
    QStringList list;
    for (const QString &name : names)
        list << name + QLatin1Char(' ') + look(w(d, name));
    return list;
}

QStringList pinNames(const cpridlg &d)
{
    QStringList names;
    for (const Utils::PinFigure &pin : d.figurePins())
        names << pin.name;
    return names;
}

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

private slots:
    void slotTable();
    void initialLook_data();
    void initialLook();
    void preparedForTheDevice_data();
    void preparedForTheDevice();
    void onlyVersionOneLoads_data();
    void onlyVersionOneLoads();
    void loadingRunsTheWiredSlotsOnly();
};

void TestDialog::slotTable()
{
    const QStringList table = {
        "accept()", "refreshFigure()", "updatedRefClkFreq()", "updatePLLSel()", "updateLaneConect()",
        "int checkSpeedEnable()", "updateRealTimeVendor()", "updateEncodingAndDecoding()",
        "checkClkPeriod()", "checkRefClkFreq()", "bool onButtonCalculateClicked(bool)",
        "bool onButtonCalculateClicked()", "checkLineEditInPut()", "updatedSpeedEnable()",
        "bool calculateFFE_C0()", "onFFEModeChanged()", "onEqualizationModeChanged()",
        "resetFlagforBias()", "updateBiasDefaultValue()"};
    const QMetaObject &meta = cpridlg::staticMetaObject;
    QCOMPARE(meta.className(), "IPCPRI::cpridlg");
    QStringList seen;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod m = meta.method(i);
        QCOMPARE(m.methodType(), QMetaMethod::Slot);
        QCOMPARE(m.access(), i == meta.methodOffset() ? QMetaMethod::Public : QMetaMethod::Private);
        const QString result = QString::fromLatin1(m.typeName());
        seen << (result == "void" ? QString() : result + ' ') + m.methodSignature();
    }
    QCOMPARE(seen, table);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestDialog::initialLook_data()
{
    QTest::addColumn<bool>("opened");
    QTest::newRow("created") << false;
    QTest::newRow("opened from a version alone") << true;
}

void TestDialog::initialLook()
{
    QFETCH(bool, opened);
    Project p;
    auto d = opened ? p.open(parse("version=1.0")) : p.create();
    QStringList names, want;
    for (const auto &row : InitialLook) {
        names << row.name;
        want << QString(row.name) + ' ' + (opened && row.loaded ? row.loaded : row.created);
    }
    QCOMPARE(looks(d.get(), names), want);
    auto *tabs = w<QTabWidget>(d.get(), "tabWidget");
    QCOMPARE(tabs->count(), 4);
    QCOMPARE(QStringList({tabs->tabText(0), tabs->tabText(1), tabs->tabText(2), tabs->tabText(3)}),
             QStringList({"CPRI Core Configuration", "PHY Configuration", "AFE Configuration",
                          "Optional Ports Configuration"}));
    QCOMPARE(w<QLabel>(d.get(), "createPathLabel")->text(), p.work.path() + "/cpri_0");
    QCOMPARE(Probe(d.get()).biasFlag(), 0);
}

void TestDialog::preparedForTheDevice_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QStringList>("expected");
    const QString q0 = "Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3", q1 = "|Q1 Lane0|Q1 Lane1|Q1 Lane2|Q1 Lane3",
                  plls = "PLL_Selection QPLL0|QPLL1|CPLL@QPLL0";
    QTest::newRow("first family") << "DVA-1-C2I1" << ""
        << QStringList{"ChannelSel " + q0 + "@Q0 Lane0", plls, "refClkFreq 122.880", "biasSpinBox 0..15=7",
                       "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK0"};
    QTest::newRow("second family") << "DVB-4-C1" << "data:Q0_BIAS:3"
        << QStringList{"ChannelSel " + q0 + q1 + "@Q0 Lane0", plls, "refClkFreq 122.880",
                       "biasSpinBox 0..15=3", "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFIN|MCLK@Q0 REFCLK0"};
    QTest::newRow("other device") << "DVC-1-C2I1" << "ref:Q0 REFCLK0:100:1;full"
        << QStringList{"ChannelSel @", "PLL_Selection CPLL@CPLL", "refClkFreq 100-", "biasSpinBox 0..15=7",
                       "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q1 REFCLK0|Q1 REFCLK1@Q0 REFCLK0"};
}

// Lanes from the registry, the device's reference clocks (item data is
// the index), the PLLs, the source's frequency and the quad's bias.
void TestDialog::preparedForTheDevice()
{
    QFETCH(QString, device);
    QFETCH(QString, setup);
    Project p(device, setup);
    auto d = p.create();
    QTEST(looks(d.get(), {"ChannelSel", "PLL_Selection", "refClkFreq", "biasSpinBox", "refClkSource"}),
          "expected");
    auto *sources = w<QComboBox>(d.get(), "refClkSource");
    for (int i = 0; i < sources->count(); ++i)
        QCOMPARE(sources->itemData(i), QVariant(i));
    QCOMPARE(Probe(d.get()).biasFlag(), 0);
}

void TestDialog::onlyVersionOneLoads_data()
{
    QTest::addColumn<QString>("saved");
    QTest::addColumn<bool>("loads");
    for (const char *version : {"version=", "version=1.00", "version=1", "version=2.0",
                                "version=1.0 ", "version=v1.0", ""})
        QTest::addRow("\"%s\"", version) << QString(version) << false;
    QTest::newRow("1.0") << "version=1.0" << true;
}

// Any other version is refused with a box and leaves the widgets alone.
void TestDialog::onlyVersionOneLoads()
{
    QFETCH(QString, saved);
    QFETCH(bool, loads);
    Project p;
    Boxes user(QMessageBox::Ok);
    bool opened = false;
    auto d = p.open(parse(saved + ";GMII=true"), &opened);
    QCOMPARE(opened, loads);
    QCOMPARE(user.seen(), loads ? QStringList() : QStringList{
        "Error: This version of specified IP Config file is incompatible with current IP Core Generator."});
    QCOMPARE(look(w(d.get(), "GMII")), loads ? "GMII*" : "GMII");
}

// Loading sets checked states without clicks: the slots on toggles and
// on index and text changes run, the speed rules and rate reading do not.
void TestDialog::loadingRunsTheWiredSlotsOnly()
{
    Project p(QStringLiteral("DVA-1-C2I1"), QStringLiteral("data:Q0_BIAS:12"));
    auto d = p.open(parse("version=1.0;3.072G_and_Under=true;10.1376Gbps=true;GMII=true;"
                          "Real_Time_Vendor=true;Slave=true;Initial_Protocol_Version2=true;"
                          "Channel_Selection=Q0 Lane2;PLL_Selection=QPLL1;Reference_CLK_Source=Q0 REFCLK1;"
                          "Reference_CLK_Frequency=153.6;FFEMODE=Manual;FFE_CM=3;FFE_C1=5;FFE_C0=33;"
                          "Equalization_Mode=Manual;ATT=2;ifChangedAllOfBias=true"));
    QCOMPARE(looks(d.get(), {"speedSel3072", "speedEnable101376", "speedEnable49152", "lineRate",
                             "RealTimeVendor", "groupBoxEncodingAndDecoding", "Master", "Slave",
                             "ProtocolVersion1", "ChannelSel", "PLL_Selection", "refClkSource", "refClkFreq",
                             "cmSpinBox", "c0Lael", "attSpinBox", "biasSpinBox"}),
             QStringList({"speedSel3072 3.072G and Under*", "speedEnable101376 10.1376Gbps*",
                          "speedEnable49152 4.9152Gbps", "lineRate 4.9152-",
                          "RealTimeVendor Real Time Vendor *", "groupBoxEncodingAndDecoding Encoding and Decoding",
                          "Master Master-", "Slave Slave*-", "ProtocolVersion1 1",
                          "ChannelSel Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3@Q0 Lane2",
                          "PLL_Selection QPLL0|QPLL1|CPLL@QPLL1",
                          "refClkSource Q0 REFCLK0|Q0 REFCLK1|Q0 REFCLK2|Q0 REFCLK3|Q0 REFIN0|Q0 REFIN1@Q0 REFCLK1",
                          "refClkFreq 153.6", "cmSpinBox 0..19=3", "c0Lael 33", "attSpinBox 0..10=2",
                          "biasSpinBox 0..15=12"}));
    const QStringList pins = pinNames(*d);
    for (const char *pin : {"iq_tx_data_i[15:0]", "up10g_rt_rx_valid_o", "gmii_rx_er_o"})
        QVERIFY2(pins.contains(pin), pin);
    QCOMPARE(Probe(d.get()).biasFlag(), 1); // decided after the lane change reset it
}

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
