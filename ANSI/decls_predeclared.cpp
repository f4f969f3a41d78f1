// What is declared before the first line of a C++ unit.

#include "decls_int.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

#include <cstring>
#include <string>

static a_symbol* enter_predeclared(a_symbol_kind kind, const char* name) {
  return full_enter_symbol(name, strlen(name), kind, &null_source_position, decl_scope_level);
}

// ---- Namespaces and classes ----

static a_symbol* enter_predeclared_namespace(const char* name) {
  a_symbol* symbol = enter_predeclared(symk_namespace, name);
  push_namespace_scope(make_namespace(symbol, false));
  return symbol;
}

// An incomplete class, which the library's header completes (C++11 18.7.1).
static void enter_predeclared_class(const char* name) {
  a_type* type = alloc_type(tk_class);
  clear_class_type_definition_fields(type);
  type->is_incomplete = true;
  a_symbol* symbol = enter_predeclared(symk_class_or_struct, name);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, decl_scope_level);
  add_to_types_list(type, decl_scope_level);
}

// ---- Allocation functions (C++11 3.7.4 p2) ----

static void enter_predeclared_routine(an_opname_kind kind, a_type* type) {
  a_symbol_locator locator;
  clear_locator(&locator, &null_source_position);
  locator.header = header_of_operator(kind);
  locator.is_operator_name = true;
  locator.operator_kind = kind;
  a_symbol* previous = curr_scope_id_lookup(&locator, ilo_none);
  locator.symbol = nullptr;
  a_symbol* symbol = enter_overloaded_symbol(symk_routine, previous, &locator, decl_scope_level);
  a_routine* routine = make_routine(type, sc_extern, decl_scope_level);
  symbol->variant.routine = routine;
  set_routine_special_kind(routine, rsk_operator);
  routine->special_data.operator_kind = kind;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, decl_scope_level);
  routine->source_corresp.linkage = idl_external;
}

static void enter_allocation_functions(an_opname_kind new_kind, an_opname_kind delete_kind) {
  a_type* pointer = make_pointer_type(void_type());
  enter_predeclared_routine(new_kind, make_routine_type_full(pointer, size_t_type()));
  enter_predeclared_routine(delete_kind, make_routine_type_full(void_type(), pointer));
  if (sized_deallocation_enabled)
    enter_predeclared_routine(delete_kind,
                              make_routine_type_full(void_type(), pointer, size_t_type()));
}

void enter_predeclared_entities() {
  if (!in_cplusplus_mode())
    return;
  symbol_for_namespace_std = enter_predeclared_namespace("std");
  symbol_for_namespace_std->variant.namespace_entry->is_std = true;
  enter_predeclared_class("type_info");
  pop_scope();
  symbol_for_namespace_abi = enter_predeclared_namespace("__cxxabiv1");
  pop_scope();
  enter_allocation_functions(opn_new, opn_delete);
  if (array_new_and_delete_enabled)
    enter_allocation_functions(opn_array_new, opn_array_delete);
}
