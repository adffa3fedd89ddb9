// Collecting, accepting and calculating: what the OK and Calculate
// buttons do with what the user entered.

#include "dialogfixture.h"

#include <plugin/cpri.h>

#include <QPushButton>

using IPCPRI::cpri;

namespace {

// A record as "key=value" lines: ints as "#n", bools as true/false.
QStringList show(const Record &r)
{
    QStringList lines;
    for (auto it = r.cbegin(); it != r.cend(); ++it) {
        const QVariant &v = it.value();
        lines << it.key() + QLatin1Char('=')
                     + (v.type() == QVariant::Int ? QLatin1Char('#') + v.toString() : v.toString());
    }
    return lines;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QStringList registryShow()
{
    QStringList lines = show(registry()->globalData());
    return lines.replaceInStrings(QLatin1String("=#"), QLatin1String("="));
}

// Each expected box matches exactly, or by its start when it ends in "*".
void compareBoxes(const QStringList &seen, const QString &expected)
{
    const QStringList want = expected.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QCOMPARE(seen.size(), want.size());
    for (int i = 0; i < want.size(); ++i) {
        if (want[i].endsWith(QLatin1Char('*')))
            QVERIFY2(seen[i].startsWith(want[i].chopped(1)), qPrintable(seen[i]));
        else
            QCOMPARE(seen[i], want[i]);
    }
}

const QString Dva = QStringLiteral("DVA-1-C2I1"), Dvb = QStringLiteral("DVB-4-C1"),
              Dvc = QStringLiteral("DVC-1-C2I1");
const QString Q0Lane1 = Msg::bias(QStringLiteral("Q0 Lane1, Q0 Lane2, Q0 Lane3"), 7);
const QString Q1Lane0 = Msg::bias(QStringLiteral("Q1 Lane1, Q1 Lane2, Q1 Lane3"), 7);
const QString Rate98304 = QStringLiteral("speedSel98304;speedEnable98304");

} // namespace

class TestDialogAccept : public QObject
{
    Q_OBJECT

private slots:
    void everyKeyComesFromItsOwnWidget();
    void editingAndAcceptingKeepsTheRecord();
    void okRunsItsChecksInOrder_data();
    void okRunsItsChecksInOrder();
    void calculate_data();
    void calculate();
    void calculationRebuildsItsListsAndReleasesTheRoute();
    void createAndEditFlows();
};

// Every widget away from its default, accepted through OK.
void TestDialogAccept::everyKeyComesFromItsOwnWidget()
{
    Project p;
    auto d = p.create();
    Boxes boxes;
    act(d.get(), "languageCombo=VHDL;synthesisToolCombo=Third-party;fileNameEdit=cpri_7;"
                 "moduleNameEdit=cpri_x;speedSel1216512;speedEnable101376;ConfigClkPeriod=125;GMII;"
                 "ProtocolVersion2;ScramblerSeed=12345678;HDLCRate=5;EthernetPointer=2A;"
                 "FixedConfigEnable;RealTimeVendor;ChannelSel=Q0 Lane2;refClkSource=Q0 REFCLK1;"
                 "refClkFreq=153.6;PLL_Selection=QPLL1;LoopbackMode=LB_FES;"
                 "comboBox64B_66B_Mode=Fabric;differeSwingComboBox=420mV;ffeModeCombox=Manual;"
                 "cmSpinBox=3;c1SpinBox=5;sdThresholdComboBox=150mV;"
                 "equalizationModeCombox=Manual;attSpinBox=4;boostSpinBox=12;biasSpinBox=11;"
                 "checkBoxLoopBackPorts;checkBoxDRPPort;okButton");
    QCOMPARE(boxes.seen(), QStringList{Msg::bias(QStringLiteral("Q0 Lane0, Q0 Lane1, Q0 Lane3"), 11)});
    QCOMPARE(d->result(), int(QDialog::Accepted));
    QCOMPARE(show(p.record), sorted({
        "target_device=DVA-1-C2I1", "type=com.ipgen.serdes.cpri", "version=1.0",
        "Synthesis_tool=Third-party", "LANG=#1", "file=cpri_7", "module=cpri_x",
        "3.072G_and_Under=false", "6.144G_and_Under=false", "9.8304G_and_Under=false",
        "10.1376G_and_Under=false", "12.16512G_and_Under=true", "0.6144Gbps=false",
        "1.2288Gbps=false", "2.4576Gbps=false", "3.072Gbps=false", "4.9152Gbps=false",
        "6.144Gbps=false", "9.8304Gbps=false", "8.11008Gbps=false", "10.1376Gbps=true",
        "12.16512Gbps=false", "Config_Clk_Period=125", "MII=false", "GMII=true",
        "Initial_Protocol_Version1=false", "Initial_Protocol_Version2=true",
        "Initial_Scrambler_Seed=12345678", "Initial_HDLC_Rate=5", "Initial_HDLC_Byte=0",
        "Initial_HDLC_Mask=0000", "Initial_Ethernet_Pointer=2A", "Fixed_Config_Enable=true",
        "Real_Time_Vendor=true", "Master=false", "Slave=false", "Channel_Selection=Q0 Lane2",
        "Line_Rate=10.13760Gbps", "Reference_CLK_Source=Q0 REFCLK1",
        "Reference_CLK_Frequency=153.6", "PLL_Selection=QPLL1", "Loopback_Mode=LB_FES",
        "64B_66B_Mode=Fabric", "highest_SpeedIndex=#9", "speedEnables_Record=001000000000",
        "DIFFERENTIAL_SWING=420mV", "FFEMODE=Manual", "FFE_CM=#3", "FFE_C1=#5", "FFE_C0=32",
        "SD_THRESHOLD=150mV", "Equalization_Mode=Manual", "ATT=#4", "BOOST=#12",
        "Loopback_Ports=true", "DRP_Ports=true", "PRBS_Pattern_Generator_Ports=false",
        "Differential_Swing_Ports=false", "FFE_Ports=false", "PRBS_Pattern_Checker_Ports=false",
        "Equalization_Ports=false", "BIAS_Ports=false", "ifChangedAllOfBias=true"}));
    QCOMPARE(registryShow(), QStringList{"Q0_BIAS=11"});
}

// A record with every key away from its default comes back unchanged.
void TestDialogAccept::editingAndAcceptingKeepsTheRecord()
{
    Project p;
    auto d = p.create();
    Boxes boxes(QMessageBox::No);
    act(d.get(), "speedSel1216512;speedEnable101376;GMII;ProtocolVersion2;ChannelSel=Q0 Lane3;"
                 "refClkSource=Q0 REFCLK1;refClkFreq=153.6;PLL_Selection=QPLL1;"
                 "ffeModeCombox=Manual;cmSpinBox=3;c1SpinBox=5;equalizationModeCombox=Manual;"
                 "attSpinBox=4;RealTimeVendor;checkBoxLoopBackPorts;okButton");
    Record saved = p.record;
    for (const char *key : {"PRBS_Pattern_Generator_Ports", "Differential_Swing_Ports",
                            "FFE_Ports", "PRBS_Pattern_Checker_Ports", "Equalization_Ports",
                            "BIAS_Ports", "ifChangedAllOfBias"})
        saved.insert(QString::fromLatin1(key), true);
    saved.insert(QStringLiteral("Initial_HDLC_Byte"), QStringLiteral("A"));
    saved.insert(QStringLiteral("Initial_HDLC_Mask"), QStringLiteral("BEEF"));
    p.prepare({QStringLiteral("folder")}); // an opened core reuses its folder unasked
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    boxes.driver.setDialogHandler([](QDialog *dialog) { act(dialog, "okButton"); });
    const Record edited = protocol.editConfig(saved);
    QCOMPARE(show(edited), show(saved));
    QCOMPARE(boxes.seen().size(), 1); // the first dialog's question only
}

void TestDialogAccept::okRunsItsChecksInOrder_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("boxes");
    QTest::addColumn<QString>("bias"); // ifChangedAllOfBias of an accepted record
    QTest::addColumn<QStringList>("shared");
    const QString none;
    const auto row = [](const char *name) { return &QTest::newRow(name); };
    *row("file first") << Dva << "full" << none << "fileNameEdit=;moduleNameEdit=" << true
                       << "Error: The file name*" << none << QStringList();
    *row("folder kept") << Dva << "folder" << none << Rate98304 << false << "Question: The folder*"
                        << none << QStringList();
    *row("folder reused") << Dva << "folder" << none << Rate98304 << true
                          << "Question: The folder*|" + Q0Lane1 << "true" << QStringList{"Q0_BIAS=7"};
    *row("module name") << Dva << "full" << none << "moduleNameEdit=1a" << true
                        << "Error: The module name*" << none << QStringList();
    *row("no lane first") << Dva << "full" << none << none << true << "Error: No available lanes"
                          << none << QStringList();
    *row("no rate first") << Dva << none << none << none << true << "Error: Please Enable Speed"
                          << none << QStringList();
    *row("class only") << Dva << none << none << "speedSel3072" << true
                       << "Error: Please Enable Speed" << none << QStringList();
    *row("rate only") << Dva << none << none << "speedEnable3072" << true
                      << "Error: Please Select Speed Selection" << none << QStringList();
    *row("C0 of 20") << Dva << none << none
                     << Rate98304 + ";ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10;cmSpinBox=10"
                     << true << Msg::C0 + "|" + Msg::C0 << none << QStringList();
    *row("clock unreachable") << Dvb << none << none
                              << Rate98304 + ";ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN" << true
                              << Q1Lane0 + "|" + Msg::RefClock << none << QStringList();
    *row("no folder made") << Dva << "nodir" << none << Rate98304 << true << none << none
                           << QStringList();
    *row("quad 1 bias") << Dvc << none << none << Rate98304 + ";ChannelSel=Q1 Lane1;biasSpinBox=9"
                        << true << Msg::bias("Q1 Lane0, Q1 Lane2, Q1 Lane3", 9) << "true"
                        << QStringList{"Q1_BIAS=9"};
    *row("bias declined") << Dva << none << none << Rate98304 << false << Q0Lane1 << "false"
                          << QStringList();
    *row("saved yes") << Dva << none << "version=1.0;ifChangedAllOfBias=true"
                      << Rate98304 + ";biasSpinBox=4" << true << none << "true"
                      << QStringList{"Q0_BIAS=4"};
    *row("saved no") << Dva << none << "version=1.0;ifChangedAllOfBias=false" << Rate98304 << true
                     << none << "false" << QStringList();
    *row("saved undecided") << Dva << none << "version=1.0" << Rate98304 << false
                            << Msg::bias("Q0 Lane1, Q0 Lane2, Q0 Lane3", 7) << "false" << QStringList();
    *row("registry bias kept") << Dvc << "data:Q1_BIAS:12" << none
                               << Rate98304 + ";ChannelSel=Q1 Lane3" << true
                               << Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane2", 12) << "true"
                               << QStringList{"Q1_BIAS=12"};
}

void TestDialogAccept::okRunsItsChecksInOrder()
{
    QFETCH(QString, device);
    QFETCH(QString, setup);
    QFETCH(QString, saved);
    QFETCH(QString, steps);
    QFETCH(bool, yes);
    QFETCH(QString, bias);
    Project p(device, setup);
    auto d = saved.isEmpty() ? p.create() : p.open(parse(saved));
    Boxes user(yes ? QMessageBox::Yes : QMessageBox::No);
    act(d.get(), steps + QStringLiteral(";okButton"));
    QFETCH(QString, boxes);
    compareBoxes(user.seen(), boxes);
    QCOMPARE(d->result() == QDialog::Accepted, !bias.isEmpty());
    if (!bias.isEmpty())
        QCOMPARE(p.record.value(QStringLiteral("ifChangedAllOfBias")), QVariant(bias == "true"));
    QTEST(registryShow(), "shared");
}

void TestDialogAccept::calculate_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("boxes");
    QTest::addColumn<QStringList>("biasLines");
    const QString none, saved = QStringLiteral("version=1.0;ifChangedAllOfBias=false;"),
                  lane01 = Msg::bias(QStringLiteral("Q0 Lane0, Q0 Lane2, Q0 Lane3"), 7);
    const auto row = [](const char *name) { return &QTest::newRow(name); };
    *row("asked once per lane")
        << Dva << none << none
        << Rate98304 + ";Calculate;Calculate;ChannelSel=Q0 Lane1;Calculate" << true
        << QStringList{Q0Lane1, Msg::Succeed, Msg::Succeed, lane01, Msg::Succeed}.join('|')
        << QStringList{"q0_rx_eq_bias 7"};
    *row("declined") << Dvc << none << none
                     << "speedEnable98304;ChannelSel=Q1 Lane2;biasSpinBox=5;Calculate;Calculate"
                     << false << Msg::bias("Q1 Lane0, Q1 Lane1, Q1 Lane3", 5) + "|" + Msg::Succeed
                            + "|" + Msg::Succeed
                     << QStringList();
    *row("by name, prompting") << Dva << none << none << "speedEnable98304;onButtonCalculateClicked()"
                               << true << Q0Lane1 + "|" + Msg::Succeed
                               << QStringList{"q0_rx_eq_bias 7"};
    *row("clock in use, same") << Dvc << "ref:Q0 REFCLK0:122.88:1"
                               << saved + "Reference_CLK_Frequency=122.880"
                               << "speedEnable98304;Calculate" << true << Msg::Succeed << QStringList();
    *row("clock in use, other") << Dvc << "ref:Q0 REFCLK0:122.88:1"
                                << saved + "Reference_CLK_Frequency=153.6"
                                << "speedEnable98304;Calculate" << true << Msg::RefClock << QStringList();
    *row("clock unused") << Dvc << "ref:Q0 REFCLK0:122.88:0"
                         << saved + "Reference_CLK_Frequency=153.6" << "speedEnable98304;Calculate"
                         << true << Msg::Succeed << QStringList();
    *row("clock unreachable") << Dvb << none << none
                              << "speedEnable98304;ChannelSel=Q1 Lane0;refClkSource=Q0 REFIN;Calculate"
                              << true << Q1Lane0 + "|" + Msg::RefClock
                              << QStringList{"q1_rx_eq_bias 7"};
    *row("no rate") << Dva << none << none << "Calculate" << false << Q0Lane1 + "|" + Msg::LineRate
                    << QStringList();
    *row("generator errors") << Dva << none << none << "speedEnable98304;updateLaneConect();Calculate"
                             << false
                             << Q0Lane1 + "|Failure: Malformed setting line \"q0_ln0_pll_sel \"\n"
                                          "No lane selects a PLL"
                             << QStringList();
    *row("nothing to set") << Dva << "full" << "version=1.0;Reference_CLK_Source=none" << "Calculate"
                           << true << none << QStringList();
}

void TestDialogAccept::calculate()
{
    QFETCH(QString, device);
    QFETCH(QString, setup);
    QFETCH(QString, saved);
    QFETCH(QString, steps);
    QFETCH(bool, yes);
    Project p(device, setup);
    auto d = saved.isEmpty() ? p.create() : p.open(parse(saved));
    Boxes user(yes ? QMessageBox::Yes : QMessageBox::No);
    act(d.get(), steps);
    QFETCH(QString, boxes);
    QCOMPARE(user.seen(), boxes.split('|', Qt::SkipEmptyParts));
    QTEST(Probe(d.get()).settings().filter(QStringLiteral("_rx_eq_bias")), "biasLines");
    QVERIFY(registry()->pendingRoutes().isEmpty());
    if (setup.isEmpty()) // the route's reference clock is free again
        QCOMPARE(registry()->getFreqByRefsrc(w<QComboBox>(d.get(), "refClkSource")->currentText()), 0.0);
}

// Each run rebuilds the record, the settings and the route lists, reuses
// one generator, writes the register file and frees the route again.
void TestDialogAccept::calculationRebuildsItsListsAndReleasesTheRoute()
{
    Project p;
    auto d = p.create();
    Probe probe(d.get());
    Boxes user(QMessageBox::No);
    QVERIFY(!probe.generator());
    act(d.get(), "speedEnable811008;Calculate");
    const void *generator = probe.generator();
    QVERIFY(generator);
    QVERIFY(p.record.contains(QStringLiteral("64B_66B_Mode")));
    act(d.get(), "speedEnable98304;Calculate");
    QCOMPARE(user.seen(), QStringList({Q0Lane1, Msg::Succeed, Msg::Succeed}));
    QCOMPARE(probe.generator(), generator);
    QVERIFY(!p.record.contains(QStringLiteral("64B_66B_Mode")));
    QCOMPARE(probe.routes(), QList<QStringList>({{"Q0_LANE0"}, {"Q0_QPLL0"}, {"Q0_REFCLK0"}, {"122.880"}}));
    QCOMPARE(probe.settings().filter(QRegularExpression("_freq |_reset_en ")),
             QStringList({"q0_refclk0_freq 122.88", "q0_global_reset_en true"}));
    QVERIFY(QFileInfo(p.work.path() + QStringLiteral("/cpri_0/temp/cpri/cpri.csr")).isFile());
}

// The protocol object runs one dialog per request and returns its record
// only when the user accepts.
void TestDialogAccept::createAndEditFlows()
{
    Project p;
    cpri protocol(QStringLiteral(CPRI_PACKAGE_DIR));
    QVERIFY(protocol.loadDescriptor());
    Boxes user(QMessageBox::No);
    QStringList firstLook;
    const auto handle = [&](const QString &steps) {
        user.driver.setDialogHandler([&firstLook, steps](QDialog *dialog) {
            firstLook << look(w(dialog, "speedSel3072"));
            act(dialog, steps);
            if (dialog->isVisible())
                dialog->reject(); // the steps left it open
        });
    };
    handle(QStringLiteral("speedSel3072;Calculate;cancelButton"));
    QVERIFY(protocol.createConfig(QStringLiteral("cpri_0"), p.device).isEmpty());
    QVERIFY(!protocol.configuration().isEmpty()); // the calculation wrote it
    handle("fileNameEdit=cpri_1;" + Rate98304 + ";okButton");
    const Record made = protocol.createConfig(QStringLiteral("cpri_1"), p.device);
    QVERIFY2(!made.isEmpty(), qPrintable(user.seen().join("\n")));
    QCOMPARE(made, protocol.configuration());
    QCOMPARE(firstLook, QStringList({"3.072G and Under", "3.072G and Under"}));
    handle(QStringLiteral("okButton"));
    QVERIFY(protocol.editConfig(parse("version=1.00")).isEmpty());
    QCOMPARE(firstLook.size(), 2); // the refused record was never shown
}

QTEST_MAIN(TestDialogAccept)
#include "tst_dialogaccept.moc"
