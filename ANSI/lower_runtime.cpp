#include "lower_runtime.h"

#include <cstring>

#include "il.h"
#include "il_alloc.h"
#include "il_expr.h"
#include "types.h"

// With a type, only a routine that has it.
static a_routine* find_routine_of_file_scope(const char* name, a_type* routine_type) {
  for (a_routine* routine = il_header.primary_scope->routines; routine != nullptr;
       routine = routine->next)
    if (routine->source_corresp.name != nullptr &&
        strcmp(routine->source_corresp.name, name) == 0 &&
        (routine_type == nullptr || identical_types(routine->type, routine_type)))
      return routine;
  return nullptr;
}

static a_routine* make_external_routine(const char* name, a_type* routine_type) {
  a_routine* routine = alloc_routine();
  routine->source_corresp.name = name;
  routine->source_corresp.linkage = idl_external;
  routine->storage_kind = sc_extern;
  routine->is_compiler_generated = true;
  routine->type = routine_type;
  add_to_routines_list(routine, 0);
  return routine;
}

a_routine* make_rout_entry(const char* name, a_type* routine_type) {
  a_routine* routine = find_routine_of_file_scope(name, nullptr);
  return routine != nullptr ? routine : make_external_routine(name, routine_type);
}

// The program may have declared the name as something else.
a_routine* make_prototyped_runtime_routine(const char* name, a_routine** slot, a_type* return_type,
                                           a_type* param1, a_type* param2) {
  if (*slot != nullptr)
    return *slot;
  a_type* type = make_routine_type_full(return_type, param1, param2);
  *slot = find_routine_of_file_scope(name, type);
  if (*slot == nullptr)
    *slot = make_external_routine(name, type);
  return *slot;
}

an_expr_node* make_call_node(a_routine* routine, an_expr_node* arguments) {
  mark_as_needed(routine, iek_routine);
  routine->called = true;
  an_expr_node* callee = function_rvalue_expr(routine);
  callee->next = arguments;
  return make_operator_node(eok_call, return_type_of(routine->type), callee);
}

an_expr_node* f_make_prototyped_runtime_call(const char* name, a_routine** slot,
                                             a_type* return_type, an_expr_node* arguments) {
  a_type* param1 = arguments != nullptr ? make_unqualified_type(arguments->type) : nullptr;
  bool has_second = arguments != nullptr && arguments->next != nullptr;
  a_type* param2 = has_second ? make_unqualified_type(arguments->next->type) : nullptr;
  return make_call_node(make_prototyped_runtime_routine(name, slot, return_type, param1, param2),
                        arguments);
}
