// The table of callback pointers. A record that a precompiled header may hold
// names a function by its index here, never by its address.

#ifndef FUNCTION_POINTERS_H
#define FUNCTION_POINTERS_H

#include <cstdint>

enum a_function_pointer_index : uint8_t {
  fpi_none = 0,
  fpi_hash_symbol_header_lookup_entry = 14,
  fpi_compare_symbol_header_lookup_entry = 15,
  fpi_once_pragma = 16,
  fpi_gcc_pragma = 17,
  fpi_push_macro_pragma = 18,
  fpi_pop_macro_pragma = 19,
  fpi_diag_pragma = 20,
  fpi_diag_push_pragma = 21,
  fpi_diag_pop_pragma = 22,
  fpi_hdrstop_or_no_pch_pragma = 23,
  fpi_stdc_pragma = 24,
  fpi_pack_pragma = 25,
  fpi_redefine_extname_pragma = 26,
  fpi_record_arg_pragma = 27,
  fpi_process_cpp_pragma = 28,
  fpi_pragma_misra_action = 29,
  fpi_pragma_nrg_action = 30,
  fpi_process_nrg_port_config = 31,
  fpi_process_set_section_pragma = 32,
  fpi_always_inline_pragma = 33,
  fpi_last = 33
};

// To be cast to the type that the index stands for before the call.
typedef void (*a_generic_function)();
extern const a_generic_function function_pointers[fpi_last + 1];

#endif
