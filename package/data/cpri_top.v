// CPRI link core, top level.
//
// The generator writes "top_define.vh" and "cpri_defines.vh" beside this
// file; they name the module and choose the lane, line rates, Ethernet
// interface, optional ports and start-up values of the core. The ports are
// those of the core's symbol, in its order; each optional group appears
// under the define that chooses it. The package's copy ends with an undef
// line for every define above and in the define files, which the build
// adds.
`timescale 1ns / 1ps
`include "top_define.vh"
`include "cpri_defines.vh"

// The data path of the first speed class chosen: IQ data bits, vendor-
// specific bytes and slot-number bits. Without a class the core has no
// data-path ports, and its engine runs at the widest data path.
`ifdef LINE_RATE_3GBPS_AND_UNDER
  `define CPRI_DATA_PATH
  `define CPRI_IQ_WIDTH 16
  `define CPRI_VENDOR_BYTES 5
  `define CPRI_SLOT_WIDTH 6
`elsif LINE_RATE_6GBPS_AND_UNDER
  `define CPRI_DATA_PATH
  `define CPRI_IQ_WIDTH 32
  `define CPRI_VENDOR_BYTES 10
  `define CPRI_SLOT_WIDTH 6
`elsif LINE_RATE_9GBPS_AND_UNDER_64B
  `define CPRI_DATA_PATH
  `define CPRI_IQ_WIDTH 64
  `define CPRI_VENDOR_BYTES 16
  `define CPRI_SLOT_WIDTH 6
`elsif LINE_RATE_10GBPS_AND_UNDER
  `define CPRI_DATA_PATH
  `define CPRI_IQ_WIDTH 64
  `define CPRI_VENDOR_BYTES 16
  `define CPRI_SLOT_WIDTH 7
`elsif LINE_RATE_12GBPS_AND_UNDER
  `define CPRI_DATA_PATH
  `define CPRI_IQ_WIDTH 64
  `define CPRI_VENDOR_BYTES 16
  `define CPRI_SLOT_WIDTH 7
`else
  `define CPRI_IQ_WIDTH 64
  `define CPRI_SLOT_WIDTH 6
`endif

`ifdef LANE_NUM
  `define CPRI_LANE `LANE_NUM
`else
  `define CPRI_LANE 0
`endif

`ifdef PROTOCOL_VER
  `define CPRI_PROTOCOL_VER `PROTOCOL_VER
`else
  `define CPRI_PROTOCOL_VER 8'h1
`endif

// The module takes the name the configuration gives it. The engine behind
// this stand-in leaves most inputs unread.
/* verilator lint_off DECLFILENAME */
/* verilator lint_off UNUSED */
module `module_name (
    // Clocks and resets
      input  wire                            tx_arst_i
    , input  wire                            rx_arst_i
    , input  wire                            cfg_arst_i
    , input  wire                            tx_rst_i
    , input  wire                            rx_rst_i
    , input  wire                            cfg_rst_i
    , input  wire                            tx_clk_i
    , input  wire                            rx_clk_i
    , input  wire                            cfg_clk_i
    , output wire                            aux_tx_slot_last_o
`ifdef CPRI_DATA_PATH
    // Slot numbers and data path of the speed class
    , output wire [`CPRI_SLOT_WIDTH-1:0]     aux_tx_slot_num_o
    , output wire [`CPRI_SLOT_WIDTH-1:0]     aux_rx_slot_num_o
    , output wire [`CPRI_IQ_WIDTH/8-1:0]     iq_tx_req_o
    , input  wire [`CPRI_IQ_WIDTH-1:0]       iq_tx_data_i
    , output wire [`CPRI_IQ_WIDTH/8-1:0]     iq_rx_mask_o
    , output wire [`CPRI_IQ_WIDTH-1:0]       iq_rx_data_o
    , output wire [`CPRI_IQ_WIDTH-1:0]       rx_data_o
    , output wire [`CPRI_VENDOR_BYTES-1:0]   vendor_tx_req_o
    , input  wire [`CPRI_VENDOR_BYTES*8-1:0] vendor_tx_data_i
    , output wire [`CPRI_VENDOR_BYTES-1:0]   vendor_rx_data_mask_o
    , output wire [`CPRI_VENDOR_BYTES*8-1:0] vendor_rx_data_o
`endif
    // Frame and HDLC
    , output wire [7:0]                      aux_tx_hf_num_o
    , output wire [7:0]                      aux_tx_bf_num_o
    , output wire [11:0]                     aux_tx_node_bfn_o
    , output wire                            aux_rx_bf_first_w_o
    , output wire                            aux_rx_slot_last_o
    , output wire [7:0]                      aux_rx_bf_num_o
    , output wire [7:0]                      aux_rx_hf_num_o
    , input  wire                            tx_bfn_strobe_i
    , input  wire [11:0]                     tx_bfn_i
    , output wire                            rx_bfn_strobe_o
    , output wire [11:0]                     rx_bfn_o
    , output wire                            iq_rx_valid_o
    , output wire                            hdlc_tx_req_o
    , input  wire                            hdlc_tx_data_i
    , output wire                            hdlc_rx_data_valid_o
    , output wire                            hdlc_rx_data_o
`ifdef REAL_TIME_VENDOR_UP10G
    // Real-time vendor data
    , output wire [7:0]                      up10g_rt_tx_req_o
    , input  wire [63:0]                     up10g_rt_tx_data_i
    , output wire [63:0]                     up10g_rt_rx_data_o
    , output wire [7:0]                      up10g_rt_rx_mask_o
    , output wire                            up10g_rt_rx_valid_o
`endif
`ifdef ETH_MII
    // MII Ethernet
    , input  wire                            mii_tx_clk_i
    , input  wire                            mii_tx_arst_i
    , input  wire                            mii_tx_rst_i
    , input  wire                            mii_tx_en_i
    , input  wire                            mii_tx_er_i
    , input  wire [3:0]                      mii_tx_data_i
    , output wire                            tx_buffer_full_o
    , input  wire                            mii_rx_clk_i
    , input  wire                            mii_rx_arst_i
    , input  wire                            mii_rx_rst_i
    , output wire                            mii_rx_en_o
    , output wire [3:0]                      mii_rx_data_o
    , output wire                            mii_rx_er_o
`elsif ETH_GMII
    // GMII Ethernet
    , input  wire                            gmii_tx_clk_i
    , input  wire                            gmii_tx_arst_i
    , input  wire                            gmii_tx_rst_i
    , input  wire                            gmii_tx_en_i
    , input  wire                            gmii_tx_er_i
    , input  wire [7:0]                      gmii_tx_data_i
    , output wire                            gmii_tx_buffer_full_o
    , input  wire                            gmii_rx_clk_i
    , input  wire                            gmii_rx_arst_i
    , input  wire                            gmii_rx_rst_i
    , output wire [7:0]                      gmii_rx_data_o
    , output wire                            gmii_rx_en_o
    , output wire                            gmii_rx_er_o
`endif
    // Control words, configuration bus and transceiver inputs
    , input  wire                            z130_0_tx_rai_i
    , input  wire                            z130_0_tx_sdi_i
    , input  wire                            z130_0_tx_los_i
    , input  wire                            z130_0_tx_lof_i
    , input  wire                            los_i
    , input  wire                            cfg_sel_i
    , input  wire                            cfg_wr_i
    , input  wire                            cfg_ena_i
    , input  wire [11:0]                     cfg_addr_i
    , input  wire [31:0]                     cfg_wdata_i
    , input  wire                            serq_rstn_i
    , input  wire                            serq_user_rx_clk_i
    , input  wire                            serq_user_tx_clk_i
    // Status, delays and transceiver status
    , output wire                            z130_0_rx_reset_o
    , output wire                            z130_0_rx_rai_o
    , output wire                            z130_0_rx_sdi_o
    , output wire                            z130_0_rx_los_o
    , output wire                            z130_0_rx_lof_o
    , output wire                            local_los_o
    , output wire                            local_lof_o
    , output wire                            hfnsync_o
    , output wire [3:0]                      speed_sel_o
    , output wire [7:0]                      tx_delay_o
    , output wire [7:0]                      rx_delay_o
    , output wire                            cfg_rdy_o
    , output wire [31:0]                     cfg_rdata_o
    , input  wire                            serq_pcs_tx_rst_i
    , input  wire                            serq_pcs_rx_rst_i
    , output wire                            serq_align_link_o
    , output wire                            serq_k_lock_o
    , output wire                            serq_pll_ok_o
    , output wire                            serq_pll_ck_ref_o
    , output wire                            serq_pma_rx_lock_o
    , output wire                            serq_rx_pcs_clk_o
    , output wire                            serq_tx_pcs_clk_o
    , output wire                            vendor_rx_data_valid_o
    , output wire [4:0]                      serq_rx_fifo_rdusewd_o
    , output wire [4:0]                      serq_tx_fifo_wrusewd_o
`ifdef LOOPBACK_PORT_EN
    // Loopback
    , input  wire                            loopback_en_i
    , input  wire [1:0]                      loopback_mode_i
`endif
`ifdef TX_DIFF_PORT_EN
    // Differential swing
    , input  wire                            tx_diff_en_i
    , input  wire [3:0]                      tx_diff_swing_i
`endif
`ifdef TX_FFE_PORT_EN
    // Transmit FFE taps
    , input  wire                            tx_ffe_manual_en_i
    , input  wire [4:0]                      tx_ffe_cm_i
    , input  wire [4:0]                      tx_ffe_c1_i
`endif
`ifdef RX_EQ_PORT_EN
    // Receive equalization
    , input  wire                            rx_eq_manual_en_i
    , input  wire [3:0]                      rx_eq_att_i
    , input  wire [3:0]                      rx_eq_boost_i
`endif
`ifdef RX_BIAS_PORT_EN
    // Receive quad BIAS
    , input  wire                            rx_quad_bias_en_i
    , input  wire [3:0]                      rx_quad_bias_i
`endif
`ifdef TX_PRBS_PORT_EN
    // PRBS generator
    , input  wire                            tx_prbs_test_en_i
    , input  wire [2:0]                      tx_prbs_sel_i
    , input  wire                            tx_prbs_insert_err_i
`endif
`ifdef RX_PRBS_PORT_EN
    // PRBS checker
    , input  wire                            rx_prbs_test_en_i
    , input  wire [2:0]                      rx_prbs_sel_i
    , input  wire                            rx_prbs_err_clr_i
    , output wire [7:0]                      rx_prbs_err_cnt_o
`endif
`ifdef EXT_PORT_EN
    // Dynamic reconfiguration clock, with any optional port
    , output wire                            user_drp_clk_o
`endif
`ifdef DRP_PORT_EN
    // Dynamic reconfiguration port
    , input  wire [23:0]                     user_drp_addr_i
    , input  wire                            user_drp_wren_i
    , input  wire [31:0]                     user_drp_wrdata_i
    , input  wire [31:0]                     user_drp_strb_i
    , input  wire                            user_drp_rden_i
    , output wire                            user_drp_ready_o
    , output wire                            user_drp_rdvld_o
    , output wire [31:0]                     user_drp_rddata_o
    , output wire                            user_drp_resp_o
`endif
);
/* verilator lint_on UNUSED */
    // Outputs the engine does not drive are held low.
    assign aux_tx_slot_last_o = 1'b0;
`ifdef CPRI_DATA_PATH
    assign aux_rx_slot_num_o = {`CPRI_SLOT_WIDTH{1'b0}};
    assign iq_tx_req_o = {`CPRI_IQ_WIDTH/8{1'b0}};
    assign iq_rx_mask_o = {`CPRI_IQ_WIDTH/8{1'b0}};
    assign rx_data_o = {`CPRI_IQ_WIDTH{1'b0}};
    assign vendor_tx_req_o = {`CPRI_VENDOR_BYTES{1'b0}};
    assign vendor_rx_data_mask_o = {`CPRI_VENDOR_BYTES{1'b0}};
    assign vendor_rx_data_o = {`CPRI_VENDOR_BYTES*8{1'b0}};
`endif
    assign aux_tx_hf_num_o = 8'd0;
    assign aux_tx_bf_num_o = 8'd0;
    assign aux_tx_node_bfn_o = 12'd0;
    assign aux_rx_bf_first_w_o = 1'b0;
    assign aux_rx_slot_last_o = 1'b0;
    assign aux_rx_bf_num_o = 8'd0;
    assign aux_rx_hf_num_o = 8'd0;
    assign rx_bfn_strobe_o = 1'b0;
    assign rx_bfn_o = 12'd0;
    assign iq_rx_valid_o = 1'b0;
    assign hdlc_tx_req_o = 1'b0;
    assign hdlc_rx_data_valid_o = 1'b0;
    assign hdlc_rx_data_o = 1'b0;
`ifdef REAL_TIME_VENDOR_UP10G
    assign up10g_rt_tx_req_o = 8'd0;
    assign up10g_rt_rx_data_o = 64'd0;
    assign up10g_rt_rx_mask_o = 8'd0;
    assign up10g_rt_rx_valid_o = 1'b0;
`endif
`ifdef ETH_MII
    assign tx_buffer_full_o = 1'b0;
    assign mii_rx_en_o = 1'b0;
    assign mii_rx_data_o = 4'd0;
    assign mii_rx_er_o = 1'b0;
`elsif ETH_GMII
    assign gmii_tx_buffer_full_o = 1'b0;
    assign gmii_rx_data_o = 8'd0;
    assign gmii_rx_en_o = 1'b0;
    assign gmii_rx_er_o = 1'b0;
`endif
    assign z130_0_rx_reset_o = 1'b0;
    assign z130_0_rx_rai_o = 1'b0;
    assign z130_0_rx_sdi_o = 1'b0;
    assign z130_0_rx_los_o = 1'b0;
    assign z130_0_rx_lof_o = 1'b0;
    assign local_los_o = 1'b0;
    assign local_lof_o = 1'b0;
    assign tx_delay_o = 8'd0;
    assign rx_delay_o = 8'd0;
    assign cfg_rdy_o = 1'b0;
    assign cfg_rdata_o = 32'd0;
    assign serq_align_link_o = 1'b0;
    assign serq_k_lock_o = 1'b0;
    assign serq_pll_ok_o = 1'b0;
    assign serq_pll_ck_ref_o = 1'b0;
    assign serq_pma_rx_lock_o = 1'b0;
    assign serq_rx_pcs_clk_o = 1'b0;
    assign serq_tx_pcs_clk_o = 1'b0;
    assign vendor_rx_data_valid_o = 1'b0;
    assign serq_rx_fifo_rdusewd_o = 5'd0;
    assign serq_tx_fifo_wrusewd_o = 5'd0;
`ifdef RX_PRBS_PORT_EN
    assign rx_prbs_err_cnt_o = 8'd0;
`endif
`ifdef EXT_PORT_EN
    assign user_drp_clk_o = 1'b0;
`endif
`ifdef DRP_PORT_EN
    assign user_drp_ready_o = 1'b0;
    assign user_drp_rdvld_o = 1'b0;
    assign user_drp_rddata_o = 32'd0;
    assign user_drp_resp_o = 1'b0;
`endif

`ifndef CPRI_DATA_PATH
    wire [`CPRI_IQ_WIDTH-1:0]   unused_iq_rx_data;
    wire [`CPRI_SLOT_WIDTH-1:0] unused_tx_slot_num;
`endif

    cpri_core #(
        .LANE_NUM       (`CPRI_LANE),
        .DATA_WIDTH     (`CPRI_IQ_WIDTH),
        .SLOT_WIDTH     (`CPRI_SLOT_WIDTH),
        .LINE_RATE_MASK (`LINE_RATE_MASK),
        .LINE_RATE_INIT (`LINE_RATE_INIT),
        .SCRAMBLER_SEED (`SCRAMBLER_SEED),
        .PROTOCOL_VER   (`CPRI_PROTOCOL_VER),
        .HDLC_RATE      (`HDLC_RATE),
        .ETH_POINTER    (`ETH_POINTER)
    ) core (
        .tx_clk_i          (tx_clk_i),
        .rx_clk_i          (rx_clk_i),
        .cfg_clk_i         (cfg_clk_i),
        .tx_rst_i          (tx_rst_i),
        .rx_rst_i          (rx_rst_i),
        .cfg_rst_i         (cfg_rst_i),
`ifdef CPRI_DATA_PATH
        .iq_tx_data_i      (iq_tx_data_i),
        .iq_rx_data_o      (iq_rx_data_o),
        .aux_tx_slot_num_o (aux_tx_slot_num_o),
`else
        .iq_tx_data_i      ({`CPRI_IQ_WIDTH{1'b0}}),
        .iq_rx_data_o      (unused_iq_rx_data),
        .aux_tx_slot_num_o (unused_tx_slot_num),
`endif
        .speed_sel_o       (speed_sel_o),
        .hfnsync_o         (hfnsync_o)
    );
endmodule
