#include "function_pointers.h"

#include "error.h"
#include "layout.h"
#include "pragma.h"
#include "symbol_tbl.h"

namespace {

template <typename F> a_generic_function generic(F* function) {
  return reinterpret_cast<a_generic_function>(function);
}

} // namespace

const a_generic_function function_pointers[fpi_last + 1] = {
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    generic(hash_symbol_header_lookup_entry),
    generic(compare_symbol_header_lookup_entry),
    generic(once_pragma),
    generic(gcc_pragma),
    generic(push_macro_pragma),
    generic(pop_macro_pragma),
    generic(diag_pragma),
    generic(diag_push_pragma),
    generic(diag_pop_pragma),
    generic(hdrstop_or_no_pch_pragma),
    generic(stdc_pragma),
    generic(pack_pragma),
    generic(redefine_extname_pragma),
    generic(record_arg_pragma),
    generic(process_cpp_pragma),
    generic(pragma_misra_action),
    generic(pragma_nrg_action),
    generic(process_nrg_port_config),
    generic(process_set_section_pragma),
    generic(always_inline_pragma),
};
