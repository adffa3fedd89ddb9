#include "portfigure.h"

#include <QStringList>

namespace IPCPRI {

namespace {

using Choices = FigureChoices;

// The port names of the fixed groups, built when the figure is first drawn.
struct PortNames
{
    QStringList clocksAndResets;
    QStringList narrowSlots;
    QStringList wideSlots;
    QStringList dataPath16;
    QStringList dataPath32;
    QStringList dataPath64;
    QStringList frameAndHdlc;
    QStringList realTimeVendorPorts;
    QStringList miiPorts;
    QStringList gmiiPorts;
    QStringList controlAndConfig;
    QStringList statusPorts;
    QStringList drpPorts;
    QString drpClock;
};

const PortNames &portNames()
{
    // clang-format off
    static const PortNames names = {
        // Clocks and resets
        {
            QStringLiteral("tx_arst_i"), QStringLiteral("rx_arst_i"), QStringLiteral("cfg_arst_i"),
            QStringLiteral("tx_rst_i"),  QStringLiteral("rx_rst_i"),  QStringLiteral("cfg_rst_i"),
            QStringLiteral("tx_clk_i"),  QStringLiteral("rx_clk_i"),  QStringLiteral("cfg_clk_i"),
            QStringLiteral("aux_tx_slot_last_o"),
        },
        // Slot numbers of the narrow data paths
        {QStringLiteral("aux_tx_slot_num_o[5:0]"),
         QStringLiteral("aux_rx_slot_num_o[5:0]")},
        // Slot numbers of the wide data path
        {QStringLiteral("aux_tx_slot_num_o[6:0]"),
         QStringLiteral("aux_rx_slot_num_o[6:0]")},
        // The nine data-path ports by data width: 16 bits of IQ data
        {
            QStringLiteral("iq_tx_req_o[1:0]"),         QStringLiteral("iq_tx_data_i[15:0]"),
            QStringLiteral("iq_rx_mask_o[1:0]"),        QStringLiteral("iq_rx_data_o[15:0]"),
            QStringLiteral("rx_data_o[15:0]"),          QStringLiteral("vendor_tx_req_o[4:0]"),
            QStringLiteral("vendor_tx_data_i[39:0]"),   QStringLiteral("vendor_rx_data_mask_o[4:0]"),
            QStringLiteral("vendor_rx_data_o[39:0]"),
        },
        // 32 bits
        {
            QStringLiteral("iq_tx_req_o[3:0]"),         QStringLiteral("iq_tx_data_i[31:0]"),
            QStringLiteral("iq_rx_mask_o[3:0]"),        QStringLiteral("iq_rx_data_o[31:0]"),
            QStringLiteral("rx_data_o[31:0]"),          QStringLiteral("vendor_tx_req_o[9:0]"),
            QStringLiteral("vendor_tx_data_i[79:0]"),   QStringLiteral("vendor_rx_data_mask_o[9:0]"),
            QStringLiteral("vendor_rx_data_o[79:0]"),
        },
        // 64 bits
        {
            QStringLiteral("iq_tx_req_o[7:0]"),         QStringLiteral("iq_tx_data_i[63:0]"),
            QStringLiteral("iq_rx_mask_o[7:0]"),        QStringLiteral("iq_rx_data_o[63:0]"),
            QStringLiteral("rx_data_o[63:0]"),          QStringLiteral("vendor_tx_req_o[15:0]"),
            QStringLiteral("vendor_tx_data_i[127:0]"),  QStringLiteral("vendor_rx_data_mask_o[15:0]"),
            QStringLiteral("vendor_rx_data_o[127:0]"),
        },
        // Frame and HDLC
        {
            QStringLiteral("aux_tx_hf_num_o[7:0]"), QStringLiteral("aux_tx_bf_num_o[7:0]"),
            QStringLiteral("aux_tx_node_bfn_o[11:0]"), QStringLiteral("aux_rx_bf_first_w_o"),
            QStringLiteral("aux_rx_slot_last_o"), QStringLiteral("aux_rx_bf_num_o[7:0]"),
            QStringLiteral("aux_rx_hf_num_o[7:0]"), QStringLiteral("tx_bfn_strobe_i"),
            QStringLiteral("tx_bfn_i[11:0]"), QStringLiteral("rx_bfn_strobe_o"),
            QStringLiteral("rx_bfn_o[11:0]"), QStringLiteral("iq_rx_valid_o"),
            QStringLiteral("hdlc_tx_req_o"), QStringLiteral("hdlc_tx_data_i"),
            QStringLiteral("hdlc_rx_data_valid_o"), QStringLiteral("hdlc_rx_data_o"),
        },
        // Real-time vendor data
        {
            QStringLiteral("up10g_rt_tx_req_o[7:0]"), QStringLiteral("up10g_rt_tx_data_i[63:0]"),
            QStringLiteral("up10g_rt_rx_data_o[63:0]"), QStringLiteral("up10g_rt_rx_mask_o[7:0]"),
            QStringLiteral("up10g_rt_rx_valid_o"),
        },
        // MII Ethernet
        {
            QStringLiteral("mii_tx_clk_i"), QStringLiteral("mii_tx_arst_i"), QStringLiteral("mii_tx_rst_i"),
            QStringLiteral("mii_tx_en_i"), QStringLiteral("mii_tx_er_i"), QStringLiteral("mii_tx_data_i[3:0]"),
            QStringLiteral("tx_buffer_full_o"), QStringLiteral("mii_rx_clk_i"), QStringLiteral("mii_rx_arst_i"),
            QStringLiteral("mii_rx_rst_i"), QStringLiteral("mii_rx_en_o"), QStringLiteral("mii_rx_data_o[3:0]"),
            QStringLiteral("mii_rx_er_o"),
        },
        // GMII Ethernet
        {
            QStringLiteral("gmii_tx_clk_i"), QStringLiteral("gmii_tx_arst_i"),
            QStringLiteral("gmii_tx_rst_i"), QStringLiteral("gmii_tx_en_i"),
            QStringLiteral("gmii_tx_er_i"), QStringLiteral("gmii_tx_data_i[7:0]"),
            QStringLiteral("gmii_tx_buffer_full_o"), QStringLiteral("gmii_rx_clk_i"),
            QStringLiteral("gmii_rx_arst_i"), QStringLiteral("gmii_rx_rst_i"),
            QStringLiteral("gmii_rx_data_o[7:0]"), QStringLiteral("gmii_rx_en_o"),
            QStringLiteral("gmii_rx_er_o"),
        },
        // Control words, configuration bus and transceiver inputs
        {
            QStringLiteral("z130_0_tx_rai_i"), QStringLiteral("z130_0_tx_sdi_i"),
            QStringLiteral("z130_0_tx_los_i"), QStringLiteral("z130_0_tx_lof_i"),
            QStringLiteral("los_i"), QStringLiteral("cfg_sel_i"), QStringLiteral("cfg_wr_i"),
            QStringLiteral("cfg_ena_i"), QStringLiteral("cfg_addr_i[11:0]"),
            QStringLiteral("cfg_wdata_i[31:0]"), QStringLiteral("serq_rstn_i"),
            QStringLiteral("serq_user_rx_clk_i"), QStringLiteral("serq_user_tx_clk_i"),
        },
        // Status, delays and transceiver status
        {
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
        },
        // Dynamic reconfiguration port
        {
            QStringLiteral("user_drp_addr_i[23:0]"), QStringLiteral("user_drp_wren_i"),
            QStringLiteral("user_drp_wrdata_i[31:0]"), QStringLiteral("user_drp_strb_i[31:0]"),
            QStringLiteral("user_drp_rden_i"), QStringLiteral("user_drp_ready_o"),
            QStringLiteral("user_drp_rdvld_o"), QStringLiteral("user_drp_rddata_o[31:0]"),
            QStringLiteral("user_drp_resp_o"),
        },
            // Dynamic reconfiguration clock
        QStringLiteral("user_drp_clk_o"),
    };
    // clang-format on
    return names;
}

struct OptionalGroup
{
    QString title;
    bool Choices::*flag;
    QStringList ports;
};

// The optional-port groups in drawing order.
const QVector<OptionalGroup> &optionalGroups()
{
    // clang-format off
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
    // clang-format on
    return groups;
}

QStringList dataPathPorts(Choices::DataPath path)
{
    const PortNames &n = portNames();
    switch (path) {
    case Choices::DataPath::Narrow3072:
        return n.narrowSlots + n.dataPath16;
    case Choices::DataPath::Narrow6144:
        return n.narrowSlots + n.dataPath32;
    case Choices::DataPath::Narrow98304:
        return n.narrowSlots + n.dataPath64;
    case Choices::DataPath::Wide:
        return n.wideSlots + n.dataPath64;
    case Choices::DataPath::None:
        break;
    }
    return {};
}

bool anyOptionalPort(const Choices &c)
{
    return c.loopbackPorts || c.drpPorts || c.ffePorts || c.prbsGeneratorPorts
           || c.differentialSwingPorts || c.prbsCheckerPorts || c.equalizationPorts || c.biasPorts;
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
    const PortNames &n = portNames();
    QVector<PortGroup> groups = {
        always(QStringLiteral("Clocks and resets"), n.clocksAndResets),
        {QStringLiteral("Data path"), [](const Choices &c) { return dataPathPorts(c.dataPath); }},
        always(QStringLiteral("Frame and HDLC"), n.frameAndHdlc),
        when(QStringLiteral("Real-time vendor data"), &Choices::realTimeVendor,
             n.realTimeVendorPorts),
        when(QStringLiteral("MII Ethernet"), &Choices::mii, n.miiPorts),
        when(QStringLiteral("GMII Ethernet"), &Choices::gmii, n.gmiiPorts),
        always(QStringLiteral("Control words, configuration bus and transceiver inputs"),
               n.controlAndConfig),
        always(QStringLiteral("Status, delays and transceiver status"), n.statusPorts),
    };
    for (const OptionalGroup &group : optionalGroups())
        groups << when(group.title + QStringLiteral(" ports"), group.flag, group.ports);
    groups << PortGroup{
        QStringLiteral("Dynamic reconfiguration clock"), [clock = n.drpClock](const Choices &c) {
            return anyOptionalPort(c) ? QStringList{clock} : QStringList();
        }} << when(QStringLiteral("Dynamic reconfiguration port"), &Choices::drpPorts, n.drpPorts);
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
