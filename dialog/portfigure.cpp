#include "portfigure.h"

#include <QStringList>

namespace IPCPRI {

namespace {

using Choices = FigureChoices;

const QStringList clocksAndResets = {
    QStringLiteral("tx_arst_i"), QStringLiteral("rx_arst_i"), QStringLiteral("cfg_arst_i"),
    QStringLiteral("tx_rst_i"),  QStringLiteral("rx_rst_i"),  QStringLiteral("cfg_rst_i"),
    QStringLiteral("tx_clk_i"),  QStringLiteral("rx_clk_i"),  QStringLiteral("cfg_clk_i"),
    QStringLiteral("aux_tx_slot_last_o"),
};

const QStringList narrowSlots = {QStringLiteral("aux_tx_slot_num_o[5:0]"),
                                 QStringLiteral("aux_rx_slot_num_o[5:0]")};
const QStringList wideSlots = {QStringLiteral("aux_tx_slot_num_o[6:0]"),
                               QStringLiteral("aux_rx_slot_num_o[6:0]")};

// The nine data-path ports by data width: 16, 32 and 64 bits of IQ data.
const QStringList dataPath16 = {
    QStringLiteral("iq_tx_req_o[1:0]"),         QStringLiteral("iq_tx_data_i[15:0]"),
    QStringLiteral("iq_rx_mask_o[1:0]"),        QStringLiteral("iq_rx_data_o[15:0]"),
    QStringLiteral("rx_data_o[15:0]"),          QStringLiteral("vendor_tx_req_o[4:0]"),
    QStringLiteral("vendor_tx_data_i[39:0]"),   QStringLiteral("vendor_rx_data_mask_o[4:0]"),
    QStringLiteral("vendor_rx_data_o[39:0]"),
};
const QStringList dataPath32 = {
    QStringLiteral("iq_tx_req_o[3:0]"),         QStringLiteral("iq_tx_data_i[31:0]"),
    QStringLiteral("iq_rx_mask_o[3:0]"),        QStringLiteral("iq_rx_data_o[31:0]"),
    QStringLiteral("rx_data_o[31:0]"),          QStringLiteral("vendor_tx_req_o[9:0]"),
    QStringLiteral("vendor_tx_data_i[79:0]"),   QStringLiteral("vendor_rx_data_mask_o[9:0]"),
    QStringLiteral("vendor_rx_data_o[79:0]"),
};
const QStringList dataPath64 = {
    QStringLiteral("iq_tx_req_o[7:0]"),         QStringLiteral("iq_tx_data_i[63:0]"),
    QStringLiteral("iq_rx_mask_o[7:0]"),        QStringLiteral("iq_rx_data_o[63:0]"),
    QStringLiteral("rx_data_o[63:0]"),          QStringLiteral("vendor_tx_req_o[15:0]"),
    QStringLiteral("vendor_tx_data_i[127:0]"),  QStringLiteral("vendor_rx_data_mask_o[15:0]"),
    QStringLiteral("vendor_rx_data_o[127:0]"),
};

const QStringList frameAndHdlc = {
    QStringLiteral("aux_tx_hf_num_o[7:0]"), QStringLiteral("aux_tx_bf_num_o[7:0]"),
    QStringLiteral("aux_tx_node_bfn_o[11:0]"), QStringLiteral("aux_rx_bf_first_w_o"),
    QStringLiteral("aux_rx_slot_last_o"), QStringLiteral("aux_rx_bf_num_o[7:0]"),
    QStringLiteral("aux_rx_hf_num_o[7:0]"), QStringLiteral("tx_bfn_strobe_i"),
    QStringLiteral("tx_bfn_i[11:0]"), QStringLiteral("rx_bfn_strobe_o"),
    QStringLiteral("rx_bfn_o[11:0]"), QStringLiteral("iq_rx_valid_o"),
    QStringLiteral("hdlc_tx_req_o"), QStringLiteral("hdlc_tx_data_i"),
    QStringLiteral("hdlc_rx_data_valid_o"), QStringLiteral("hdlc_rx_data_o"),
};

const QStringList realTimeVendorPorts = {
    QStringLiteral("up10g_rt_tx_req_o[7:0]"), QStringLiteral("up10g_rt_tx_data_i[63:0]"),
    QStringLiteral("up10g_rt_rx_data_o[63:0]"), QStringLiteral("up10g_rt_rx_mask_o[7:0]"),
    QStringLiteral("up10g_rt_rx_valid_o"),
};

const QStringList miiPorts = {
    QStringLiteral("mii_tx_clk_i"), QStringLiteral("mii_tx_arst_i"), QStringLiteral("mii_tx_rst_i"),
    QStringLiteral("mii_tx_en_i"), QStringLiteral("mii_tx_er_i"), QStringLiteral("mii_tx_data_i[3:0]"),
    QStringLiteral("tx_buffer_full_o"), QStringLiteral("mii_rx_clk_i"), QStringLiteral("mii_rx_arst_i"),
    QStringLiteral("mii_rx_rst_i"), QStringLiteral("mii_rx_en_o"), QStringLiteral("mii_rx_data_o[3:0]"),
    QStringLiteral("mii_rx_er_o"),
};

const QStringList gmiiPorts = {
    QStringLiteral("gmii_tx_clk_i"), QStringLiteral("gmii_tx_arst_i"),
    QStringLiteral("gmii_tx_rst_i"), QStringLiteral("gmii_tx_en_i"),
    QStringLiteral("gmii_tx_er_i"), QStringLiteral("gmii_tx_data_i[7:0]"),
    QStringLiteral("gmii_tx_buffer_full_o"), QStringLiteral("gmii_rx_clk_i"),
    QStringLiteral("gmii_rx_arst_i"), QStringLiteral("gmii_rx_rst_i"),
    QStringLiteral("gmii_rx_data_o[7:0]"), QStringLiteral("gmii_rx_en_o"),
    QStringLiteral("gmii_rx_er_o"),
};

const QStringList controlAndConfig = {
    QStringLiteral("z130_0_tx_rai_i"), QStringLiteral("z130_0_tx_sdi_i"),
    QStringLiteral("z130_0_tx_los_i"), QStringLiteral("z130_0_tx_lof_i"),
    QStringLiteral("los_i"), QStringLiteral("cfg_sel_i"), QStringLiteral("cfg_wr_i"),
    QStringLiteral("cfg_ena_i"), QStringLiteral("cfg_addr_i[11:0]"),
    QStringLiteral("cfg_wdata_i[31:0]"), QStringLiteral("serq_rstn_i"),
    QStringLiteral("serq_user_rx_clk_i"), QStringLiteral("serq_user_tx_clk_i"),
};

const QStringList statusPorts = {
    QStringLiteral("z130_0_rx_reset_o"), QStringLiteral("z130_0_rx_rai_o"),
    QStringLiteral("z130_0_rx_sdi_o"), QStringLiteral("z130_0_rx_los_o"),
    QStringLiteral("z130_0_rx_lof_o"), QStringLiteral("local_los_o"),
    QStringLiteral("local_lof_o"), QStringLiteral("hfnsync_o"),
    QStringLiteral("speed_sel_o[3:0]"), QStringLiteral("tx_delay_o[7:0]"),
    QStringLiteral("rx_delay_o[7:0]"), QStringLiteral("cfg_rdy_o"),
    QStringLiteral("cfg_rdata_o[31:0]"), QStringLiteral("serq_pcs_tx_rst_i"),
    QStringLiteral("serq_pcs_rx_rst_i"), QStringLiteral("serq_align_link_o"),
    QStringLiteral("serq_k_lock_o"), QStringLiteral("serq_pll_ok_o"),
    QStringLiteral("serq_pll_ck_ref_o"), QStringLiteral("serq_pma_rx_lock_o"),
    QStringLiteral("serq_rx_pcs_clk_o"), QStringLiteral("serq_tx_pcs_clk_o"),
    QStringLiteral("vendor_rx_data_valid_o"), QStringLiteral("serq_rx_fifo_rdusewd_o[4:0]"),
    QStringLiteral("serq_tx_fifo_wrusewd_o[4:0]"),
};

struct OptionalGroup
{
    QString title;
    bool Choices::*flag;
    QStringList ports;
};

// The optional-port groups in drawing order.
const QVector<OptionalGroup> &optionalGroups()
{
    static const QVector<OptionalGroup> groups = {
        {QStringLiteral("Loopback"), &Choices::loopbackPorts,
         {QStringLiteral("loopback_en_i"), QStringLiteral("loopback_mode_i[1:0]")}},
        {QStringLiteral("Differential swing"), &Choices::differentialSwingPorts,
         {QStringLiteral("tx_diff_en_i"), QStringLiteral("tx_diff_swing_i[3:0]")}},
        {QStringLiteral("Transmit FFE"), &Choices::ffePorts,
         {QStringLiteral("tx_ffe_manual_en_i"), QStringLiteral("tx_ffe_cm_i[4:0]"),
          QStringLiteral("tx_ffe_c1_i[4:0]")}},
        {QStringLiteral("Receive equalization"), &Choices::equalizationPorts,
         {QStringLiteral("rx_eq_manual_en_i"), QStringLiteral("rx_eq_att_i[3:0]"),
          QStringLiteral("rx_eq_boost_i[3:0]")}},
        {QStringLiteral("Quad bias"), &Choices::biasPorts,
         {QStringLiteral("rx_quad_bias_en_i"), QStringLiteral("rx_quad_bias_i[3:0]")}},
        {QStringLiteral("PRBS pattern generator"), &Choices::prbsGeneratorPorts,
         {QStringLiteral("tx_prbs_test_en_i"), QStringLiteral("tx_prbs_sel_i[2:0]"),
          QStringLiteral("tx_prbs_insert_err_i")}},
        {QStringLiteral("PRBS pattern checker"), &Choices::prbsCheckerPorts,
         {QStringLiteral("rx_prbs_test_en_i"), QStringLiteral("rx_prbs_sel_i[2:0]"),
          QStringLiteral("rx_prbs_err_clr_i"), QStringLiteral("rx_prbs_err_cnt_o[7:0]")}},
    };
    return groups;
}

const QString drpClock = QStringLiteral("user_drp_clk_o");

const QStringList drpPorts = {
    QStringLiteral("user_drp_addr_i[23:0]"), QStringLiteral("user_drp_wren_i"),
    QStringLiteral("user_drp_wrdata_i[31:0]"), QStringLiteral("user_drp_strb_i[31:0]"),
    QStringLiteral("user_drp_rden_i"), QStringLiteral("user_drp_ready_o"),
    QStringLiteral("user_drp_rdvld_o"), QStringLiteral("user_drp_rddata_o[31:0]"),
    QStringLiteral("user_drp_resp_o"),
};

QStringList dataPathPorts(Choices::DataPath path)
{
    switch (path) {
    case Choices::DataPath::Narrow3072:
        return narrowSlots + dataPath16;
    case Choices::DataPath::Narrow6144:
        return narrowSlots + dataPath32;
    case Choices::DataPath::Narrow98304:
        return narrowSlots + dataPath64;
    case Choices::DataPath::Wide:
        return wideSlots + dataPath64;
    case Choices::DataPath::None:
        break;
    }
    return {};
}

bool anyOptionalPort(const Choices &c)
{
    return c.loopbackPorts || c.drpPorts || c.ffePorts || c.prbsGeneratorPorts
           || c.differentialSwingPorts || c.prbsCheckerPorts || c.equalizationPorts
           || c.biasPorts;
}

} // namespace

Utils::PinFigure pinFigure(const QString &name)
{
    // The name before its bit range, without copying it.
    const int range = name.indexOf(QLatin1Char('['));
    const bool output = name.leftRef(range).endsWith(QLatin1String("_o"));
    return Utils::PinFigure(name, output ? 1 : 0, range >= 0,
                            output ? Qt::AlignRight : Qt::AlignLeft);
}

namespace {

// A group that is always drawn, and one drawn when a choice is set.
PortGroup always(const QString &title, const QStringList &ports)
{
    return {title, [ports](const Choices &) { return ports; }};
}

PortGroup when(const QString &title, bool Choices::*flag, const QStringList &ports)
{
    return {title, [flag, ports](const Choices &c) { return c.*flag ? ports : QStringList(); }};
}

QVector<PortGroup> buildPortGroups()
{
    QVector<PortGroup> groups = {
        always(QStringLiteral("Clocks and resets"), clocksAndResets),
        {QStringLiteral("Data path"), [](const Choices &c) { return dataPathPorts(c.dataPath); }},
        always(QStringLiteral("Frame and HDLC"), frameAndHdlc),
        when(QStringLiteral("Real-time vendor data"), &Choices::realTimeVendor,
             realTimeVendorPorts),
        when(QStringLiteral("MII Ethernet"), &Choices::mii, miiPorts),
        when(QStringLiteral("GMII Ethernet"), &Choices::gmii, gmiiPorts),
        always(QStringLiteral("Control words, configuration bus and transceiver inputs"),
               controlAndConfig),
        always(QStringLiteral("Status, delays and transceiver status"), statusPorts),
    };
    for (const OptionalGroup &group : optionalGroups())
        groups << when(group.title + QStringLiteral(" ports"), group.flag, group.ports);
    groups << PortGroup{QStringLiteral("Dynamic reconfiguration clock"), [](const Choices &c) {
                            return anyOptionalPort(c) ? QStringList{drpClock} : QStringList();
                        }}
           << when(QStringLiteral("Dynamic reconfiguration port"), &Choices::drpPorts, drpPorts);
    return groups;
}

} // namespace

const QVector<PortGroup> &portGroups()
{
    static const QVector<PortGroup> groups = buildPortGroups();
    return groups;
}

QList<Utils::PinFigure> portFigure(const FigureChoices &choices)
{
    QStringList names;
    for (const PortGroup &group : portGroups())
        names << group.ports(choices);
    QList<Utils::PinFigure> pins;
    pins.reserve(names.size());
    for (const QString &name : qAsConst(names))
        pins << pinFigure(name);
    return pins;
}

} // namespace IPCPRI
