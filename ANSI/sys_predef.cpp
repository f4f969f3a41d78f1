// What exists before the first source line: types, the builtin functions by
// their names, declared on demand, and the intrinsic functions of the processor.

#include "sys_predef.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "builtin_condition.h"
#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_entities.h"
#include "il_hooks.h"
#include "il_types.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

namespace {

struct a_builtin_function {
  const char* name;
  const char* condition; // null: that of all compilers
  const char* type;      // as a declaration without its name
  int64_t code;
  const char* library; // the function that a call of it calls, or null
  bool returns;
};

const a_builtin_function builtin_user_table[] = {
#define BUILTIN_FUNCTION(name, condition, type, code) {name, condition, type, code, nullptr, true},
#define BUILTIN_OF_LIBRARY(name, condition, type, code, library)                                   \
  {name, condition, type, code, library, true},
#include "builtin_functions.def"
#undef BUILTIN_OF_LIBRARY
#undef BUILTIN_FUNCTION
#define BUILTIN_FORM(name, code) {name, nullptr, "int (...)", code, nullptr, true},
#define LIBRARY_BUILTIN(name, library, type)                                                       \
  {name, nullptr, type, bc_library_function, library, true},
#define LIBRARY_ENDING(name, library, type)                                                        \
  {name, nullptr, type, bc_library_function, library, false},
#include "library_builtins.def"
#undef LIBRARY_ENDING
#undef LIBRARY_BUILTIN
#undef BUILTIN_FORM
    {nullptr, nullptr, nullptr, 0, nullptr, true}};

struct a_target_builtin {
  const char* name;
  int64_t code;
  const char* type;
  bool in_std;
  int min_version; // of the processor
  bool impure;
};

const a_target_builtin target_builtins[] = {
#define TARGET_BUILTIN(name, code, type, in_std, min_version, impure)                              \
  {name, code, type, in_std, min_version, impure},
#include "target_builtins.def"
#undef TARGET_BUILTIN
};

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
    {"long long", [] { return integer_type(ik_long_long); }},
    {"unsigned", [] { return integer_type(ik_unsigned_int); }},
    {"unsigned short", [] { return integer_type(ik_unsigned_short); }},
    {"unsigned long", [] { return integer_type(ik_unsigned_long); }},
    {"unsigned long long", [] { return integer_type(ik_unsigned_long_long); }},
    {"__znt_size_type__", [] { return integer_type(targ_size_t_int_kind); }},
    {"float", [] { return float_type(fk_float); }},
    {"double", [] { return float_type(fk_double); }},
    {"long double", [] { return float_type(fk_long_double); }},
    {"float _Complex", [] { return complex_type(fk_float); }},
    {"double _Complex", [] { return complex_type(fk_double); }},
    {"long double _Complex", [] { return complex_type(fk_long_double); }},
    {"float*", [] { return make_pointer_type(float_type(fk_float)); }},
    {"double*", [] { return make_pointer_type(float_type(fk_double)); }},
    {"va", [] { return builtin_va_list_type; }},
    {"void*", [] { return make_pointer_type(void_type()); }},
    {"const void*", [] { return pointer_to_const(void_type()); }},
    {"char*", [] { return make_pointer_type(integer_type(plain_char_int_kind)); }},
    {"const char*", [] { return pointer_to_const(integer_type(plain_char_int_kind)); }},
    {"wildcard&", [] { return make_reference_type(ql_wildcard_type()); }},
};
constexpr size_t num_named_types = sizeof named_types / sizeof named_types[0];

// The types of the unit that were asked for, one a row of named_types.
a_type** builtin_type_table;

a_type* type_of_text(std::string text) {
  size_t blank = text.find(" *");
  if (blank != std::string::npos)
    text.erase(blank, 1);
  if (!text.empty() && text.back() == ' ')
    text.pop_back();
  for (size_t i = 0; i < num_named_types; ++i) {
    if (text != named_types[i].text)
      continue;
    if (builtin_type_table[i] == nullptr)
      builtin_type_table[i] = named_types[i].make();
    return builtin_type_table[i];
  }
  internal_error("type_of_text: unknown type");
}

// `return type (parameter types)`.
a_type* routine_type_of_text(const char* text) {
  const char* open = strchr(text, '(');
  a_type* type = make_routine_type_full(type_of_text(std::string(text, open)));
  std::string params(open + 1, strchr(open, ')'));
  if (params == "void")
    return type;
  for (size_t start = 0; start < params.size();) {
    size_t comma = std::min(params.find(',', start), params.size());
    std::string param = params.substr(start, comma - start);
    if (param == "...")
      type->variant.routine.routine_supplement->has_ellipsis = 1;
    else
      add_param_type(type, type_of_text(param));
    start = comma + 1;
  }
  return type;
}

// -- Declarations -------------------------------------------------------------------

// Declarations that the program didn't make: in the file scope, whatever scope
// is open, and no rule of style is checked on them.
class A_PREDECLARATION {
public:
  A_PREDECLARATION() {
    check_misra_c_2004 = check_nrg = 0;
    switch_to_file_scope_region(&saved_region);
    decl_scope_level = 0;
    push_name_linkage(nlk_c);
  }
  ~A_PREDECLARATION() {
    pop_name_linkage();
    decl_scope_level = saved_level;
    switch_back_to_original_region(saved_region);
    check_misra_c_2004 = saved_check_misra;
    check_nrg = saved_check_nrg;
  }

private:
  a_boolean saved_check_misra = check_misra_c_2004;
  a_boolean saved_check_nrg = check_nrg;
  int32_t saved_region;
  int32_t saved_level = decl_scope_level;
};

void enter_predeclared_typedef(const char* name, a_type* aliased) {
  A_PREDECLARATION context;
  a_symbol* symbol = full_enter_symbol(name, strlen(name), symk_type, &null_source_position, 0);
  a_type* type = make_typedef_type(aliased);
  type->is_generated = 1;
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, 0);
  add_to_types_list(type, 0);
}

// In C++ too, its linkage is that of a C function.
a_symbol* make_predeclared_function_symbol(const char* name, a_type* type, int64_t code) {
  A_PREDECLARATION context;
  a_symbol* symbol = full_enter_symbol(name, strlen(name), symk_routine, &null_source_position, 0);
  type->variant.routine.routine_supplement->name_linkage = nlk_c;
  a_routine* routine = make_routine(type, sc_extern, 0);
  routine->special_data.builtin_code = code;
  symbol->variant.routine = routine;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, 0);
  routine->source_corresp.linkage = idl_external;
  return symbol;
}

// The function is known in namespace std under the same name.
void enter_in_namespace_std(const char* name, a_routine* routine) {
  push_namespace_scope(symbol_for_namespace_std->variant.namespace_entry);
  full_enter_symbol(name, strlen(name), symk_routine, &null_source_position, depth_scope_stack)
      ->variant.routine = routine;
  pop_namespace_scope();
}

void enter_target_builtins() {
  for (const a_target_builtin& builtin : target_builtins) {
    if (targ_cpu_version < builtin.min_version)
      continue;
    a_symbol* symbol = make_predeclared_function_symbol(
        builtin.name, routine_type_of_text(builtin.type), builtin.code);
    symbol->variant.routine->impure = builtin.impure;
    if (builtin.in_std && in_cplusplus_mode())
      enter_in_namespace_std(builtin.name, symbol->variant.routine);
  }
}

void enter_hook(HOOK_DESCRIPTOR* hook, int64_t code) {
  if (hook == nullptr)
    return;
  get_hook_parameter_types(hook);
  a_type* type = make_routine_type_full(void_type());
  if (hook->parameter_type != nullptr)
    add_param_type(type, hook->parameter_type);
  a_routine* routine = make_predeclared_function_symbol(hook->name, type, code)->variant.routine;
  routine->impure = routine->real_call = 1;
  hook->routine = routine;
  mark_as_needed(routine, iek_routine);
}

void enter_builtin_names() {
  for (uint16_t i = 0; builtin_user_table[i].name != nullptr; ++i) {
    const a_builtin_function& function = builtin_user_table[i];
    if (!builtin_condition_holds(function.condition))
      continue;
    a_symbol_locator locator = cleared_locator;
    a_symbol_header* header = find_symbol_header(function.name, strlen(function.name), &locator);
    header->is_builtin_name = 1;
    header->builtin_index = i;
    if (preload_builtin_functions)
      load_builtin_function(header);
  }
}

} // namespace

a_type* ql_wildcard_type() {
  return unknown_type();
}

a_symbol* load_builtin_function(a_symbol_header* header) {
  if (!header->is_builtin_name)
    return nullptr;
  const a_builtin_function& function = builtin_user_table[header->builtin_index];
  header->is_builtin_name = 0;
  A_PREDECLARATION context;
  a_type* type = routine_type_of_text(function.type);
  type->variant.routine.routine_supplement->does_not_return = !function.returns;
  a_symbol* symbol = make_predeclared_function_symbol(function.name, type, function.code);
  a_routine* routine = symbol->variant.routine;
  routine->no_return = !function.returns;
  if (function.library != nullptr) {
    routine->gnu_supplement = alloc_gnu_supplement_for_routine();
    routine->gnu_supplement->asm_name = function.library;
  }
  return symbol;
}

int64_t builtin_code_of(const a_routine* routine) {
  return routine == nullptr || routine->special_kind != rsk_ordinary
             ? 0
             : routine->special_data.builtin_code;
}

bool is_gnu_builtin_function(const a_routine* routine) {
  return builtin_code_of(routine) != 0;
}

bool builtin_function_is_enabled(const char* name) {
  if (!builtin_functions_enabled)
    return false;
  for (const a_builtin_function* row = builtin_user_table; row->name != nullptr; ++row)
    if (strcmp(name, row->name) == 0 && builtin_condition_holds(row->condition))
      return true;
  return false;
}

bool is_predeclared_function(const a_symbol* symbol) {
  if (symbol->kind != symk_routine || symbol->position.seq != 0)
    return false;
  const a_routine* routine = symbol->variant.routine;
  return is_gnu_builtin_function(routine) && !routine->real_call;
}

a_symbol* forget_predeclared_function(a_symbol* symbol) {
  if (symbol == nullptr || !is_predeclared_function(symbol))
    return symbol;
  remove_symbol(symbol);
  return nullptr;
}

void enter_system_specific_predeclared_symbols() {
  if (float80_enabled && float128_enabled) {
    enter_predeclared_typedef("__float80", float_type(fk_float80));
    enter_predeclared_typedef("__float128", float_type(fk_float128));
  }
  if (gnu_mode) {
    builtin_va_list_type = get_default_va_list_type();
    enter_predeclared_typedef("__builtin_va_list", builtin_va_list_type);
  }
  if (is_primary_translation_unit)
    enter_builtin_names();
  builtin_functions_enabled = 1;
  if (!no_intrinsics)
    enter_target_builtins();
  enter_hook(entry_hook_descriptor, entry_hook_code);
  enter_hook(exit_hook_descriptor, exit_hook_code);
}

void sys_predef_one_time_init() {
  f_register_trans_unit_variable(&builtin_type_table, sizeof builtin_type_table, 0);
  builtin_type_table = nullptr;
}

void sys_predef_trans_unit_init() {
  size_t size = num_named_types * sizeof(a_type*);
  builtin_type_table = static_cast<a_type**>(alloc_in_region(file_scope_region_number, size));
  memset(builtin_type_table, 0, size);
}
