// CPRI link core, top level.
//
// The generator writes "top_define.vh" and "cpri_defines.vh" beside this
// file; they name the module and choose the lane, line rates, Ethernet
// interface and start-up values of the core.
`timescale 1ns / 1ps
`include "top_define.vh"
`include "cpri_defines.vh"

`ifdef LINE_RATE_3GBPS_AND_UNDER
  `define CPRI_DATA_WIDTH 16
`elsif LINE_RATE_6GBPS_AND_UNDER
  `define CPRI_DATA_WIDTH 32
`else
  `define CPRI_DATA_WIDTH 64
`endif

`ifdef LINE_RATE_10GBPS_AND_UNDER
  `define CPRI_SLOT_WIDTH 7
`elsif LINE_RATE_12GBPS_AND_UNDER
  `define CPRI_SLOT_WIDTH 7
`else
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

module `module_name (
    input  wire                          tx_clk_i,
    input  wire                          rx_clk_i,
    input  wire                          cfg_clk_i,
    input  wire                          tx_rst_i,
    input  wire                          rx_rst_i,
    input  wire                          cfg_rst_i,
    input  wire [`CPRI_DATA_WIDTH-1:0]   iq_tx_data_i,
    output wire [`CPRI_DATA_WIDTH-1:0]   iq_rx_data_o,
    output wire [`CPRI_SLOT_WIDTH-1:0]   aux_tx_slot_num_o,
    output wire [3:0]                    speed_sel_o,
    output wire                          hfnsync_o
);
    cpri_core #(
        .LANE_NUM       (`CPRI_LANE),
        .DATA_WIDTH     (`CPRI_DATA_WIDTH),
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
        .iq_tx_data_i      (iq_tx_data_i),
        .iq_rx_data_o      (iq_rx_data_o),
        .aux_tx_slot_num_o (aux_tx_slot_num_o),
        .speed_sel_o       (speed_sel_o),
        .hfnsync_o         (hfnsync_o)
    );
endmodule
