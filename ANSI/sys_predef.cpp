// The builtin functions: their names, and their declarations on demand.

#include "sys_predef.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_entities.h"
#include "il_types.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

namespace {

struct a_builtin_function {
  const char* name;
  const char* type; // as a declaration without its name
  int64_t code;
};

const a_builtin_function builtin_functions[] = {
#define BUILTIN_FUNCTION(name, type, code) {name, type, code},
#include "builtin_functions.def"
#undef BUILTIN_FUNCTION
};
constexpr uint16_t num_builtin_functions = sizeof builtin_functions / sizeof builtin_functions[0];

// -- Types --------------------------------------------------------------------------

a_type* pointer_to_const(a_type* type) {
  return make_pointer_type(make_qualified_type(type, tq_const));
}

struct a_named_type {
  const char* text;
  a_type* (*make)();
};

// The types that those of the functions are made of; a blank counts only between
// two words.
const a_named_type named_types[] = {
    {"void", [] { return void_type(); }},
    {"int", [] { return integer_type(ik_int); }},
    {"long", [] { return integer_type(ik_long); }},
    {"unsigned", [] { return integer_type(ik_unsigned_int); }},
    {"__znt_size_type__", [] { return integer_type(targ_size_t_int_kind); }},
    {"float", [] { return float_type(fk_float); }},
    {"double", [] { return float_type(fk_double); }},
    {"long double", [] { return float_type(fk_long_double); }},
    {"void*", [] { return make_pointer_type(void_type()); }},
    {"const void*", [] { return pointer_to_const(void_type()); }},
    {"const char*", [] { return pointer_to_const(integer_type(plain_char_int_kind)); }},
};

a_type* type_of_text(std::string text) {
  size_t blank = text.find(" *");
  if (blank != std::string::npos)
    text.erase(blank, 1);
  if (!text.empty() && text.back() == ' ')
    text.pop_back();
  for (const a_named_type& type : named_types)
    if (text == type.text)
      return type.make();
  internal_error("type_of_text: unknown type");
}

// `return type (parameter types)`.
a_type* routine_type_of_text(const char* text) {
  const char* open = strchr(text, '(');
  a_type* type = make_routine_type_full(type_of_text(std::string(text, open)));
  std::string params(open + 1, strchr(open, ')'));
  if (params == "void")
    return type;
  if (params == "...") {
    type->variant.routine.routine_supplement->has_ellipsis = 1;
    return type;
  }
  for (size_t start = 0; start < params.size();) {
    size_t comma = std::min(params.find(',', start), params.size());
    add_param_type(type, type_of_text(params.substr(start, comma - start)));
    start = comma + 1;
  }
  return type;
}

// -- Declarations -------------------------------------------------------------------

// Declares a function that the program didn't: no rule is checked on it.
a_symbol* make_predeclared_function_symbol(const char* name, const char* type, int64_t code) {
  a_boolean saved_check_misra = check_misra_c_2004;
  a_boolean saved_check_nrg = check_nrg;
  int32_t saved_region, saved_level = decl_scope_level;
  check_misra_c_2004 = check_nrg = 0;
  switch_to_file_scope_region(&saved_region);
  decl_scope_level = 0;
  push_name_linkage(nlk_c);
  a_symbol* symbol = full_enter_symbol(name, strlen(name), symk_routine, &null_source_position, 0);
  a_routine* routine = make_routine(routine_type_of_text(type), sc_extern, 0);
  routine->special_data.builtin_code = code;
  symbol->variant.routine = routine;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, 0);
  routine->source_corresp.linkage = idl_external;
  pop_name_linkage();
  decl_scope_level = saved_level;
  switch_back_to_original_region(saved_region);
  check_misra_c_2004 = saved_check_misra;
  check_nrg = saved_check_nrg;
  return symbol;
}

} // namespace

a_symbol* load_builtin_function(a_symbol_header* header) {
  if (!header->is_builtin_name)
    return nullptr;
  const a_builtin_function& function = builtin_functions[header->builtin_index];
  header->is_builtin_name = 0;
  return make_predeclared_function_symbol(function.name, function.type, function.code);
}

bool builtin_function_is_enabled(const char* name) {
  if (!builtin_functions_enabled)
    return false;
  for (const a_builtin_function& function : builtin_functions)
    if (strcmp(name, function.name) == 0)
      return true;
  return false;
}

void enter_system_specific_predeclared_symbols() {
  if (is_primary_translation_unit)
    for (uint16_t i = 0; i < num_builtin_functions; ++i) {
      const char* name = builtin_functions[i].name;
      a_symbol_locator locator = cleared_locator;
      a_symbol_header* header = find_symbol_header(name, strlen(name), &locator);
      header->is_builtin_name = 1;
      header->builtin_index = i;
      if (preload_builtin_functions)
        load_builtin_function(header);
    }
  builtin_functions_enabled = 1;
}

void sys_predef_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
