// #pragma NRG_PORT_CONFIG(port, OUT = {value, bits}, ...): how ports are set up
// outside of the unit, which the advice can't see.

#include <cctype>

#include "const_ints.h"
#include "error.h"
#include "lexical.h"
#include "nrg.h"
#include "pragma_int.h"

a_port_reference arm_port_references[num_nrg_ports];

void clear_port_references() {
  for (a_port_reference& reference : arm_port_references)
    reference = {};
}

static bool bad_config() {
  pos_error(ec_bad_pragma_format, &pos_curr_token);
  return false;
}

static bool required_here(a_token_kind kind) {
  return loop_token(kind) || bad_config();
}

// The number of a lettered port; -1 for no such letter.
static int port_of_letter(const char* name) {
  constexpr int code_of_port_0 = 'A' - 12;
  int letter = toupper(static_cast<unsigned char>(name[0]));
  return letter >= 'A' && letter <= 'K' && name[1] == '\0' ? letter - code_of_port_0 : -1;
}

static bool scan_port(int* port) {
  int64_t number = -1;
  bool overflow = false;
  if (curr_token == tok_identifier)
    number = port_of_letter(locator_for_curr_id.header->identifier);
  else if (curr_token == tok_integer)
    number = value_of_integer_constant(&const_for_curr_token, &overflow);
  if (overflow || number < 0 || number >= num_nrg_ports)
    return bad_config();
  *port = static_cast<int>(number);
  get_token();
  return true;
}

static bool scan_register(a_port_register* which) {
  static const struct {
    const char* name;
    a_port_register which;
  } rows[] = {{"OUT", port_out}, {"DIR", port_dir}, {"SEL1", port_sel1}, {"SEL2", port_sel2}};
  for (const auto& row : rows)
    if (curr_token_is_identifier_string(row.name)) {
      *which = row.which;
      get_token();
      return true;
    }
  return bad_config();
}

// `OUT = {value, bits}`
static bool scan_register_setting(a_port_reference* reference) {
  a_port_register which;
  uint64_t value, bits;
  if (!scan_register(&which) || !required_here(tok_assign) || !required_here(tok_lbrace) ||
      !scan_icon(&value) || !required_here(tok_comma) || !scan_icon(&bits) ||
      !required_here(tok_rbrace))
    return false;
  reference->registers[which] = {static_cast<int32_t>(value), static_cast<int32_t>(bits / 8)};
  return true;
}

static bool scan_port_config() {
  int port;
  if (!required_here(tok_lparen) || !scan_port(&port))
    return false;
  a_port_reference reference = arm_port_references[port];
  reference.is_referenced = 1;
  while (loop_token(tok_comma))
    if (!scan_register_setting(&reference))
      return false;
  if (!required_here(tok_rparen))
    return false;
  arm_port_references[port] = reference;
  return true;
}

void process_nrg_port_config(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  begin_rescan_of_pragma_tokens(pragma);
  bool is_good = scan_port_config();
  wrapup_rescan_of_pragma_tokens(!is_good);
}
