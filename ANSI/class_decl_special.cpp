// Special member functions (C++11 12): which a class declares by itself, and
// which of them are trivial, deleted or constexpr.

#include "class_decl_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "types.h"

// A class that declares none of them has trivial ones.
void declare_special_members(a_type* class_type) {
  class_supplement_of(class_type)->is_trivially_copyable = true;
}

void check_defaulted_or_deleted_function(a_routine* routine, const a_decl_parse_state*) {
  if (routine->is_defaulted && routine->special_kind == rsk_ordinary)
    pos_error(ec_invalid_function_to_be_defaulted, &routine->source_corresp.position);
}

// ---- Bodies that the program doesn't write ----

// The body of a function whose effect is that of its bases and members alone.
static void define_generated_routine(a_routine* routine) {
  a_push_scope_context context = {};
  context.flags = psf_generated_function;
  routine->has_body = true;
  skip_typerefs(routine->type)->variant.routine.routine_supplement->definition = routine;
  push_scope_full(sk_function, -1, nullptr, routine, &context);
  a_scope* scope = scope_stack[depth_scope_stack].il_scope;
  declare_this_parameter(routine, scope);
  a_statement* body = alloc_statement(stmk_block);
  body->is_generated = true;
  body->variant.block.block_supplement->is_function_body = true;
  scope->assoc_statement = body;
  pop_scope();
}

static bool needs_generated_destructor(const a_type* type) {
  if (!is_class_struct_union_kind(type->kind))
    return false;
  const a_routine* destructor = class_supplement_of(type)->destructor;
  return destructor && destructor->is_virtual && destructor->is_defaulted &&
         !destructor->is_deleted && !destructor->has_body && !is_error_type(destructor->type);
}

void generate_required_virtual_destructor_bodies(a_scope* scope) {
  if (!scope)
    return;
  for (a_type* type = scope->types; type; type = type->next)
    if (needs_generated_destructor(type))
      define_generated_routine(class_supplement_of(type)->destructor);
}
