// Power advice.

#ifndef NRG_H
#define NRG_H

#include "basics.h"

// The diagnostic of a rule of the advice grid, 0 when the cell is empty. `variant`
// asks for the form with an argument. `severity` gets the severity it is reported at.
an_error_code nrg_offset_to_error_code(int rule, int subrule, an_error_severity* severity,
                                       bool variant);

// The grid: rules 1 to 15, subrules 1 to 4.
inline constexpr int nrg_last_rule = 15;
inline constexpr int nrg_last_subrule = 4;

// The severity of the rules whose severity an option sets.
extern an_error_severity nrg_severity;

// Switches advice on, and the rules that the list names on or off; as
// process_check_misra.
void process_check_nrg(const char* list, a_boolean* is_bad, const a_source_position* position,
                       bool from_command_line, bool is_reset);

// Gives all rules that are on a severity: "error", "warning", "remark", or none
// for any other text.
void process_nrg_severity(const char* text, const a_source_position* position);

// Advice for a tool chain of its own: "iar", "gcc" or another.
void process_nrg_standalone_mode(const char* text);

// What #pragma NRG_PORT_CONFIG says of a port: that the unit uses it, and what its
// registers hold from the start.
enum a_port_register : uint8_t { port_dir, port_out, port_sel1, port_sel2, num_port_registers };
struct a_port_reference {
  int32_t is_referenced;
  struct {
    int32_t value;
    int32_t num_bytes;
  } registers[num_port_registers];
};
// Ports 0 to 11, and A to K.
inline constexpr int num_nrg_ports = 23;
extern a_port_reference arm_port_references[num_nrg_ports];
void clear_port_references();

// Reports what only the whole unit can show.
void nrg_wrapup();

#endif
