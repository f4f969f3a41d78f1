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
};
