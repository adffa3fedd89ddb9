// CPRI link core engine.
//
// The production engine ships encrypted; this stand-in keeps its interface
// so that a generated core elaborates in open tools. It ties every output
// to a safe idle value and reads none of its inputs.
`timescale 1ns / 1ps

/* verilator lint_off DECLFILENAME */
/* verilator lint_off UNUSED */

module cpri_core #(
    parameter integer LANE_NUM       = 0,
    parameter integer DATA_WIDTH     = 64,
    parameter integer SLOT_WIDTH     = 6,
    parameter [11:0]  LINE_RATE_MASK = 12'b0,
    parameter integer LINE_RATE_INIT = 0,
    parameter [30:0]  SCRAMBLER_SEED = 31'h0,
    parameter [7:0]   PROTOCOL_VER   = 8'h1,
    parameter [7:0]   HDLC_RATE      = 8'h2,
    parameter [5:0]   ETH_POINTER    = 6'h14
) (
    input  wire                   tx_clk_i,
    input  wire                   rx_clk_i,
    input  wire                   cfg_clk_i,
    input  wire                   tx_rst_i,
    input  wire                   rx_rst_i,
    input  wire                   cfg_rst_i,
    input  wire [DATA_WIDTH-1:0]  iq_tx_data_i,
    output wire [DATA_WIDTH-1:0]  iq_rx_data_o,
    output wire [SLOT_WIDTH-1:0]  aux_tx_slot_num_o,
    output wire [3:0]             speed_sel_o,
    output wire                   hfnsync_o
);
/* verilator lint_on UNUSED */
    assign iq_rx_data_o      = {DATA_WIDTH{1'b0}};
    assign aux_tx_slot_num_o = {SLOT_WIDTH{1'b0}};
    assign speed_sel_o       = LINE_RATE_INIT[3:0];
    assign hfnsync_o         = 1'b0;
endmodule
