`define module_name my_cpri
