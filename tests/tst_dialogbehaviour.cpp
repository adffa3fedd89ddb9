// What the dialog does while the user edits it: speed rules, field rules,
// clocking controls and the port figure.

#include "dialogfixture.h"

namespace {

const char *const Rates[] = {"speedEnable06144", "speedEnable12288", "speedEnable24576",
                             "speedEnable3072", "speedEnable49152", "speedEnable6144",
                             "speedEnable98304", "speedEnable811008", "speedEnable101376",
                             "speedEnable1216512"};
const char *const Classes[] = {"speedSel3072", "speedSel6144", "speedSel98304", "speedSel101376",
                               "speedSel1216512"};

// The symbol's ports by group, in drawing order.
const QMap<QString, QString> PortGroups = {
    {"clocks", "tx_arst_i rx_arst_i cfg_arst_i tx_rst_i rx_rst_i cfg_rst_i tx_clk_i rx_clk_i "
               "cfg_clk_i aux_tx_slot_last_o"},
    {"narrow", "aux_tx_slot_num_o[5:0] aux_rx_slot_num_o[5:0]"},
    {"wide", "aux_tx_slot_num_o[6:0] aux_rx_slot_num_o[6:0]"},
    {"d16", "iq_tx_req_o[1:0] iq_tx_data_i[15:0] iq_rx_mask_o[1:0] iq_rx_data_o[15:0] "
            "rx_data_o[15:0] vendor_tx_req_o[4:0] vendor_tx_data_i[39:0] "
            "vendor_rx_data_mask_o[4:0] vendor_rx_data_o[39:0]"},
    {"d32", "iq_tx_req_o[3:0] iq_tx_data_i[31:0] iq_rx_mask_o[3:0] iq_rx_data_o[31:0] "
            "rx_data_o[31:0] vendor_tx_req_o[9:0] vendor_tx_data_i[79:0] "
            "vendor_rx_data_mask_o[9:0] vendor_rx_data_o[79:0]"},
    {"d64", "iq_tx_req_o[7:0] iq_tx_data_i[63:0] iq_rx_mask_o[7:0] iq_rx_data_o[63:0] "
            "rx_data_o[63:0] vendor_tx_req_o[15:0] vendor_tx_data_i[127:0] "
            "vendor_rx_data_mask_o[15:0] vendor_rx_data_o[127:0]"},
    {"frame", "aux_tx_hf_num_o[7:0] aux_tx_bf_num_o[7:0] aux_tx_node_bfn_o[11:0] "
              "aux_rx_bf_first_w_o aux_rx_slot_last_o aux_rx_bf_num_o[7:0] aux_rx_hf_num_o[7:0] "
              "tx_bfn_strobe_i tx_bfn_i[11:0] rx_bfn_strobe_o rx_bfn_o[11:0] iq_rx_valid_o "
              "hdlc_tx_req_o hdlc_tx_data_i hdlc_rx_data_valid_o hdlc_rx_data_o"},
    {"rtv", "up10g_rt_tx_req_o[7:0] up10g_rt_tx_data_i[63:0] up10g_rt_rx_data_o[63:0] "
            "up10g_rt_rx_mask_o[7:0] up10g_rt_rx_valid_o"},
    {"mii", "mii_tx_clk_i mii_tx_arst_i mii_tx_rst_i mii_tx_en_i mii_tx_er_i mii_tx_data_i[3:0] "
            "tx_buffer_full_o mii_rx_clk_i mii_rx_arst_i mii_rx_rst_i mii_rx_en_o "
            "mii_rx_data_o[3:0] mii_rx_er_o"},
    {"gmii", "gmii_tx_clk_i gmii_tx_arst_i gmii_tx_rst_i gmii_tx_en_i gmii_tx_er_i "
             "gmii_tx_data_i[7:0] gmii_tx_buffer_full_o gmii_rx_clk_i gmii_rx_arst_i "
             "gmii_rx_rst_i gmii_rx_data_o[7:0] gmii_rx_en_o gmii_rx_er_o"},
    {"control", "z130_0_tx_rai_i z130_0_tx_sdi_i z130_0_tx_los_i z130_0_tx_lof_i los_i cfg_sel_i "
                "cfg_wr_i cfg_ena_i cfg_addr_i[11:0] cfg_wdata_i[31:0] serq_rstn_i "
                "serq_user_rx_clk_i serq_user_tx_clk_i"},
    {"status", "z130_0_rx_reset_o z130_0_rx_rai_o z130_0_rx_sdi_o z130_0_rx_los_o z130_0_rx_lof_o "
               "local_los_o local_lof_o hfnsync_o speed_sel_o[3:0] tx_delay_o[7:0] rx_delay_o[7:0] "
               "cfg_rdy_o cfg_rdata_o[31:0] serq_pcs_tx_rst_i serq_pcs_rx_rst_i serq_align_link_o "
               "serq_k_lock_o serq_pll_ok_o serq_pll_ck_ref_o serq_pma_rx_lock_o serq_rx_pcs_clk_o "
               "serq_tx_pcs_clk_o vendor_rx_data_valid_o serq_rx_fifo_rdusewd_o[4:0] "
               "serq_tx_fifo_wrusewd_o[4:0]"},
    {"loopback", "loopback_en_i loopback_mode_i[1:0]"},
    {"swing", "tx_diff_en_i tx_diff_swing_i[3:0]"},
    {"ffe", "tx_ffe_manual_en_i tx_ffe_cm_i[4:0] tx_ffe_c1_i[4:0]"},
    {"eq", "rx_eq_manual_en_i rx_eq_att_i[3:0] rx_eq_boost_i[3:0]"},
    {"bias", "rx_quad_bias_en_i rx_quad_bias_i[3:0]"},
    {"ppg", "tx_prbs_test_en_i tx_prbs_sel_i[2:0] tx_prbs_insert_err_i"},
    {"ppc", "rx_prbs_test_en_i rx_prbs_sel_i[2:0] rx_prbs_err_clr_i rx_prbs_err_cnt_o[7:0]"},
    {"drpclk", "user_drp_clk_o"},
    {"drp", "user_drp_addr_i[23:0] user_drp_wren_i user_drp_wrdata_i[31:0] user_drp_strb_i[31:0] "
            "user_drp_rden_i user_drp_ready_o user_drp_rdvld_o user_drp_rddata_o[31:0] "
            "user_drp_resp_o"},
};

// "1" for each enabled box, "0" for each disabled one.
QString enabledOf(QObject *d, const char *const (&names)[10])
{
    QString flags;
    for (const char *name : names)
        flags += w(d, name)->isEnabled() ? '1' : '0';
    return flags;
}

QStringList checkedOf(QObject *d)
{
    QStringList checked;
    for (const char *name : Classes)
        if (w<QAbstractButton>(d, name)->isChecked())
            checked << name;
    for (const char *name : Rates)
        if (w<QAbstractButton>(d, name)->isChecked())
            checked << name;
    return checked;
}

} // namespace

class TestDialogBehaviour : public QObject
{
    Q_OBJECT

private slots:
    void speedRules_data();
    void speedRules();
    void fieldRules_data();
    void fieldRules();
    void tapsAndEqualization_data();
    void tapsAndEqualization();
    void biasDefaultsToRegistryThenDialogThenSeven();
    void portFigure_data();
    void portFigure();
    void pllList_data();
    void pllList();
    void clockingFollowsTheRegistry();
};

void TestDialogBehaviour::speedRules_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("enabled"); // rate boxes 0.6144 ... 12.16512
    QTest::addColumn<QString>("checked");
    QTest::addColumn<QString>("lineRate");
    QTest::addColumn<QString>("shown"); // "r": Real Time Vendor enabled, "e": 64B/66B group
    const auto row = [](const char *device, const char *steps, const char *enabled,
                        const char *checked, const char *lineRate, const char *shown) {
        QTest::addRow("%s %s", device, steps) << device << steps << enabled << checked << lineRate << shown;
    };
    row("DVA-1-C2I1", "", "0111111111", "", "0Gbps", "");
    row("DVA-1-C2I1", "speedEnable1216512", "0111111111", "speedEnable1216512", "12.16512Gbps", "re");
    row("DVA-1-C2I1", "speedEnable101376", "0111111111", "speedEnable101376", "10.13760Gbps", "re");
    row("DVA-1-C2I1", "speedEnable1216512;speedEnable811008", "0111111111", "speedEnable811008",
        "8.11008Gbps", "e");
    row("DVA-1-C2I1", "speedEnable811008;speedEnable811008", "0111111111", "speedEnable811008",
        "8.11008Gbps", "e");
    row("DVA-1-C2I1", "speedEnable24576;speedSel3072", "0111000000", "speedSel3072 speedEnable24576",
        "2.45760Gbps", "");
    row("DVA-1-C2I1", "speedEnable49152;speedSel3072", "0111000000", "speedSel3072 speedEnable12288",
        "4.91520Gbps", "");
    row("DVA-1-C2I1", "speedEnable811008;speedSel6144", "0111110000", "speedSel6144 speedEnable12288",
        "8.11008Gbps", "");
    row("DVA-1-C2I1", "speedEnable101376;speedSel98304", "0111111000",
        "speedSel98304 speedEnable12288", "10.13760Gbps", "");
    row("DVA-1-C2I1", "speedEnable1216512;speedSel101376", "0111111110",
        "speedSel101376 speedEnable12288", "12.16512Gbps", "");
    row("DVA-1-C2I1", "speedSel3072;speedSel1216512", "0111111111", "speedSel1216512", "0Gbps", "");
    row("DVA-1-C2I1", "speedSel6144;speedSel101376", "0111111110", "speedSel101376", "0Gbps", "");
    row("DVA-1-C2I1", "speedSel3072;speedSel98304;speedEnable98304", "0111111000",
        "speedSel98304 speedEnable98304", "9.83040Gbps", "");
    row("DVB-4-C1", "", "0111111100", "", "0Gbps", "");
    row("DVB-4-C1", "speedEnable811008;speedSel1216512", "0111111100",
        "speedSel1216512 speedEnable811008", "8.11008Gbps", "e");
    row("DVB-4-C1", "speedSel6144;speedSel101376", "0111111100", "speedSel101376", "0Gbps", "");
    row("DVC-1-C2I1", "speedEnable3072", "0111111111", "speedEnable3072", "3.07200Gbps", "e");
    row("DVC-2-I2", "speedEnable1216512", "0111111100", "", "0Gbps", "e");
}

// Class and rate boxes are exclusive groups; a class change that withdraws
// the checked rate moves the check to 1.2288 Gbps without a click, so the
// line rate waits for the next click.
void TestDialogBehaviour::speedRules()
{
    QFETCH(QString, device);
    QFETCH(QString, steps);
    Project p(device);
    auto d = p.create();
    act(d.get(), steps);
    QTEST(enabledOf(d.get(), Rates), "enabled");
    QTEST(checkedOf(d.get()).join(' '), "checked");
    QTEST(w<QLineEdit>(d.get(), "lineRate")->text(), "lineRate");
    QString shown;
    if (w(d.get(), "RealTimeVendor")->isEnabled())
        shown += 'r';
    auto *encoding = w(d.get(), "groupBoxEncodingAndDecoding");
    if (!encoding->isHidden() && encoding->isEnabled())
        shown += 'e';
    QTEST(shown, "shown");
}

void TestDialogBehaviour::fieldRules_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    const char *const rows[][3] = {
        {"ConfigClkPeriod", "0", "50"},       {"ConfigClkPeriod", "151", "50"},
        {"ConfigClkPeriod", "150", "150"},    {"ConfigClkPeriod", "1", "1"},
        {"ConfigClkPeriod", "", "50"},        {"ConfigClkPeriod", "1500", "150"},
        {"ConfigClkPeriod", "7a", "7"},       {"refClkFreq", "50", "50"},
        {"refClkFreq", "500", "500"},         {"refClkFreq", "49.99", "122.880"},
        {"refClkFreq", "500.5", "122.880"},   {"refClkFreq", "", "122.880"},
        {"refClkFreq", "1000", "100"},        {"refClkFreq", "100.123456789", "100.12345678"},
        {"ScramblerSeed", "1F", "1F000000"},  {"ScramblerSeed", "80000000", "00000000"},
        {"ScramblerSeed", "7FFFFFFF", "7FFFFFFF"}, {"EthernetPointer", "13", "14"},
        {"EthernetPointer", "3F", "3F"},      {"EthernetPointer", "40", "14"},
        {"EthernetPointer", "3", "30"},       {"HDLCRate", "7", "7"},
        {"HDLCRate", "8", "2"},               {"HDLCRate", "0", "0"},
    };
    for (const auto &r : rows)
        QTest::addRow("%s \"%s\"", r[0], r[1]) << r[0] << r[1] << r[2];
}

// What a field keeps of an entry once the user leaves it; hexadecimal
// fields are read as shown, with their blanks as "0".
void TestDialogBehaviour::fieldRules()
{
    QFETCH(QString, field);
    QFETCH(QString, typed);
    Project p;
    auto d = p.create();
    act(d.get(), field + '=' + typed);
    QTEST(w<QLineEdit>(d.get(), field)->displayText(), "kept");
}

void TestDialogBehaviour::tapsAndEqualization_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("shown"); // c0, cm, its range, c1, its range, att, its range, boost, its range
    QTest::addColumn<int>("warnings");
    const auto row = [](const char *steps, const char *shown, int warnings) {
        QTest::newRow(steps) << steps << shown << warnings;
    };
    row("ffeModeCombox=Manual", "40 0..19=0 (0~19) 0..19=0 (0~19) 0..10=7- (0~10)- 0..15=9- (0~15)-", 0);
    row("ffeModeCombox=Manual;cmSpinBox=9;c1SpinBox=10",
        "21 0..19=9 (0~19) 0..19=10 (0~19) 0..10=7- (0~10)- 0..15=9- (0~15)-", 0);
    row("ffeModeCombox=Manual;cmSpinBox=10;c1SpinBox=10",
        "20 0..19=10 (0~19) 0..19=10 (0~19) 0..10=7- (0~10)- 0..15=9- (0~15)-", 1);
    row("ffeModeCombox=Manual;c1SpinBox=19;cmSpinBox=19;ffeModeCombox=Auto",
        "40 0..19=0- (0~19)- 0..19=0- (0~19)- 0..10=7- (0~10)- 0..15=9- (0~15)-", 1);
    row("equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12",
        "40 0..19=0- (0~19)- 0..19=0- (0~19)- 0..10=3 (0~10) 0..15=12 (0~15)", 0);
    row("equalizationModeCombox=Manual;attSpinBox=3;boostSpinBox=12;equalizationModeCombox=Auto",
        "40 0..19=0- (0~19)- 0..19=0- (0~19)- 0..10=7- (0~10)- 0..15=9- (0~15)-", 0);
}

// C0 is 40 less both taps and must stay above 20; "Auto" modes fix the
// taps at 0 and the equalizer at ATT 7, BOOST 9, and lock the fields.
void TestDialogBehaviour::tapsAndEqualization()
{
    QFETCH(QString, steps);
    Project p;
    auto d = p.create();
    Boxes user;
    act(d.get(), steps);
    QStringList shown;
    for (const char *name : {"c0Lael", "cmSpinBox", "label", "c1SpinBox", "label_2", "attSpinBox",
                             "label_14", "boostSpinBox", "label_15"})
        shown << look(w(d.get(), QStringLiteral("IPCPRI__afe_config/") + name));
    QTEST(shown.join(' '), "shown");
    QFETCH(int, warnings);
    QCOMPARE(user.seen(), QStringList(QVector<QString>(warnings, Msg::C0).toList()));
}

// The quad's bias: the registry's value, else the one accepted in this
// dialog for the quad, else 7; a new lane asks again.
void TestDialogBehaviour::biasDefaultsToRegistryThenDialogThenSeven()
{
    Project p(QStringLiteral("DVC-1-C2I1"), QStringLiteral("data:Q1_BIAS:12"));
    auto d = p.create();
    Boxes user;
    const char *const steps[][2] = {
        {"", "7"},
        {"speedEnable98304;biasSpinBox=11;Calculate;ChannelSel=Q0 Lane1", "11"},
        {"ChannelSel=Q1 Lane0", "12"},
        {"biasSpinBox=5;Calculate;ChannelSel=Q1 Lane1", "12"},
        {"ChannelSel=Q0 Lane2", "11"},
    };
    for (const auto &step : steps) {
        act(d.get(), step[0]);
        QCOMPARE(w<QSpinBox>(d.get(), "biasSpinBox")->text(), QString(step[1]));
        QCOMPARE(Probe(d.get()).biasFlag(), 0);
    }
    QCOMPARE(user.seen().filter("Question").size(), 2);
}

void TestDialogBehaviour::portFigure_data()
{
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("groups");
    const QString tail = " control status";
    const auto row = [](const QString &saved, const char *steps, const QString &groups) {
        QTest::addRow("%s %s", qPrintable(saved), steps) << saved << steps << groups;
    };
    row("", "", "clocks frame mii" + tail);
    row("", "speedSel3072", "clocks narrow d16 frame mii" + tail);
    row("", "speedSel6144", "clocks narrow d32 frame mii" + tail);
    row("", "speedSel98304", "clocks narrow d64 frame mii" + tail);
    row("", "speedSel101376", "clocks wide d64 frame mii" + tail);
    row("", "speedSel1216512", "clocks wide d64 frame mii" + tail);
    row("", "GMII", "clocks frame gmii" + tail);
    row("", "speedSel1216512;speedEnable101376;RealTimeVendor", "clocks wide d64 frame rtv mii" + tail);
    row("", "speedSel1216512;speedEnable101376;RealTimeVendor;speedEnable98304",
        "clocks wide d64 frame mii" + tail);
    // The 12.16512 Gbps box refreshes nothing: its withdrawal shows at the next refresh.
    row("", "speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304",
        "clocks wide d64 frame rtv mii" + tail);
    row("", "speedSel1216512;speedEnable1216512;RealTimeVendor;speedEnable98304;speedSel1216512",
        "clocks wide d64 frame mii" + tail);
    row("", "checkBoxLoopBackPorts", "clocks frame mii" + tail + " loopback drpclk");
    row("", "checkBoxDRPPort", "clocks frame mii" + tail + " drpclk drp");
    const char *const hidden[][2] = {{"Differential_Swing_Ports", "swing"}, {"FFE_Ports", "ffe"},
                                     {"Equalization_Ports", "eq"}, {"BIAS_Ports", "bias"},
                                     {"PRBS_Pattern_Generator_Ports", "ppg"},
                                     {"PRBS_Pattern_Checker_Ports", "ppc"}};
    QString all = "version=1.0;Loopback_Ports=true;DRP_Ports=true";
    for (const auto &h : hidden) {
        row(QString("version=1.0;") + h[0] + "=true", "", "clocks frame mii" + tail + ' ' + h[1] + " drpclk");
        all += QString(';') + h[0] + "=true";
    }
    row(all, "", "clocks frame mii" + tail + " loopback swing ffe eq bias ppg ppc drpclk drp");
}

// The names and order of the symbol's ports; "_i" ports are inputs on the
// left, "_o" ports outputs on the right, a bit range makes a bus.
void TestDialogBehaviour::portFigure()
{
    QFETCH(QString, saved);
    QFETCH(QString, steps);
    QFETCH(QString, groups);
    Project p;
    auto d = saved.isEmpty() ? p.create() : p.open(parse(saved));
    act(d.get(), steps);
    QStringList expected, names;
    for (const QString &group : groups.split(' '))
        expected << PortGroups.value(group).split(' ');
    for (const Utils::PinFigure &pin : d->figurePins()) {
        names << pin.name;
        const bool output = pin.name.section('[', 0, 0).endsWith("_o");
        QCOMPARE(pin.direction, output ? 1 : 0);
        QCOMPARE(pin.alignment, output ? Qt::AlignRight : Qt::AlignLeft);
        QCOMPARE(pin.isBus, pin.name.contains('['));
    }
    QCOMPARE(names, expected);
}

void TestDialogBehaviour::pllList_data()
{
    QTest::addColumn<QString>("setup"); // QPLLs other cores set up for 9.8304 Gbps
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("offered");
    const auto row = [](const char *setup, const char *steps, const char *offered) {
        QTest::addRow("%s %s", setup, steps) << setup << steps << offered;
    };
    row("", "speedEnable98304", "QPLL0 QPLL1 CPLL");
    row("pll:Q0_QPLL1:9.8304", "speedEnable6144", "QPLL0 CPLL");
    row("pll:Q0_QPLL0:9.8304;pll:Q0_QPLL1:9.8304", "speedEnable49152", "QPLL0 QPLL1 CPLL");
    row("pll:Q0_QPLL0:9.8304;pll:Q0_QPLL1:9.8304", "speedEnable6144", "CPLL");
    row("pll:Q1_QPLL0:9.8304", "speedEnable6144;ChannelSel=Q1 Lane0", "QPLL1 CPLL");
    row("pll:Q1_QPLL0:9.8304", "speedEnable98304;ChannelSel=Q1 Lane3", "QPLL0 QPLL1 CPLL");
    row("pll:Q0_QPLL0:9.8304;pll:Q0_QPLL1:9.8304", "speedEnable6144;ChannelSel=Q1 Lane2",
        "QPLL0 QPLL1 CPLL");
    row("pll:Q1_QPLL1:9.8304", "speedEnable6144;ChannelSel=Q1 Lane1;speedEnable98304",
        "QPLL0 QPLL1 CPLL");
}

// Free QPLLs of the lane's quad, then those set up for the line rate,
// each once, and "CPLL" last; rebuilt on a new lane or line rate.
void TestDialogBehaviour::pllList()
{
    QFETCH(QString, setup);
    QFETCH(QString, steps);
    Project p(QStringLiteral("DVC-1-C2I1"), setup);
    auto d = p.create();
    act(d.get(), steps);
    auto *plls = w<QComboBox>(d.get(), "PLL_Selection");
    QStringList items;
    for (int i = 0; i < plls->count(); ++i)
        items << plls->itemText(i);
    QTEST(items.join(' '), "offered");
}

// The reference frequency follows the source; the lane list is appended
// to, never cleared, when it is refreshed by name.
void TestDialogBehaviour::clockingFollowsTheRegistry()
{
    Project p(QStringLiteral("DVA-1-C2I1"), QStringLiteral("ref:Q0 REFCLK1:245.76:1"));
    auto d = p.create();
    act(d.get(), "refClkSource=Q0 REFCLK1;refClkFreq=300");
    QCOMPARE(look(w(d.get(), "refClkFreq")), "245.76-");
    act(d.get(), "refClkSource=Q0 REFCLK0");
    QCOMPARE(look(w(d.get(), "refClkFreq")), "122.880");
    registry()->occupyLane(QStringLiteral("Q0 Lane1"));
    act(d.get(), "updateLaneConect()");
    QCOMPARE(look(w(d.get(), "ChannelSel")),
             "Q0 Lane0|Q0 Lane1|Q0 Lane2|Q0 Lane3|Q0 Lane0|Q0 Lane2|Q0 Lane3@Q0 Lane0");
    QCOMPARE(look(w(d.get(), "PLL_Selection")), "@");
    Probe probe(d.get());
    QCOMPARE(probe.freeLanes(), QStringList({"Q0 Lane0", "Q0 Lane2", "Q0 Lane3"}));
    QCOMPARE(probe.freeLaneCount(), 3);
}

QTEST_MAIN(TestDialogBehaviour)
#include "tst_dialogbehaviour.moc"
