// The bounds of arrays of variable length (C99 6.7.5.2): each gets a variable that
// holds its value from the declaration on.

#include <vector>

#include "declarator_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lexical.h"
#include "mem_manage.h"
#include "scope_stk.h"
#include "statements.h"
#include "target.h"
#include "types.h"

// Those of the declarators and type names that were read last.
static std::vector<a_vla_dimension*> waiting_dimensions;

// ---- Dimensions ----

static a_variable* make_size_variable() {
  a_type* type = integer_type(static_cast<an_integer_kind>(targ_size_t_int_kind));
  a_variable* variable = alloc_temporary_variable(type, false);
  variable->is_vla_size_variable = true;
  variable->is_defined = true;
  add_to_variables_list(variable, depth_innermost_function_scope);
  mark_as_needed(variable, iek_variable);
  return variable;
}

static void add_to_vla_dimensions_list(a_vla_dimension* dimension, a_scope_stack_entry* entry) {
  a_scope_pointers_block* tails = &entry->pointers;
  (tails->last_vla_dimension ? tails->last_vla_dimension->next : entry->il_scope->vla_dimensions) =
      dimension;
  tails->last_vla_dimension = dimension;
}

static a_vla_dimension* make_dimension(a_type* array, an_expr_node* size,
                                       const a_source_position* position) {
  a_scope_stack_entry* entry = &scope_stack[depth_innermost_function_scope];
  a_vla_dimension* dimension = alloc_vla_dimension(array);
  dimension->size_expr = size;
  dimension->position = *position;
  dimension->size_variable = make_size_variable();
  array->variant.array.has_vla_dimension = true;
  array->variant.array.bound.vla_dimension = dimension;
  add_to_vla_dimensions_list(dimension, entry);
  entry->routine->has_vla = true;
  il_header.has_vla = 1;
  return dimension;
}

a_vla_dimension* make_vla_dimension(a_type* array, an_expr_node* size,
                                    const a_source_position* position) {
  a_vla_dimension* dimension = make_dimension(array, size, position);
  waiting_dimensions.push_back(dimension);
  return dimension;
}

size_t num_waiting_vla_dimensions() {
  return waiting_dimensions.size();
}

// The types are made from the inside, while the bounds are evaluated as they are
// written.
void add_vla_size_statements(size_t mark) {
  while (waiting_dimensions.size() > mark) {
    a_vla_dimension* dimension = waiting_dimensions.back();
    waiting_dimensions.pop_back();
    set_vla_size_statement(dimension, &dimension->position);
  }
}

void forget_vla_dimensions(size_t mark) {
  if (waiting_dimensions.size() > mark)
    waiting_dimensions.resize(mark);
}

// ---- Storage ----

void check_storage_of_vla(a_decl_parse_state* state, const a_source_position* position) {
  bool has_vla = depth_innermost_function_scope >= 0 &&
                 scope_stack[depth_innermost_function_scope].routine->has_vla;
  const bool is_static = state->storage_class == sc_static;
  if (!has_vla || (!is_static && state->storage_class != sc_extern))
    return;
  // A static pointer may lead to such an array, a name with linkage may not.
  if (is_vla_type(state->declared_type))
    pos_error(ec_vla_is_not_auto, position);
  else if (!is_static && is_variably_modified_type(state->declared_type))
    pos_error(ec_vla_not_allowed, position);
  else
    return;
  state->declared_type = error_type();
}

// ---- Bounds of parameters ----

static a_vla_fixup* vla_fixups;

void add_vla_fixup_entry(a_type* array, a_token_cache* bound, const a_source_position* position) {
  auto* fixup = static_cast<a_vla_fixup*>(alloc_in_region(front_end_region, sizeof(a_vla_fixup)));
  *fixup = {vla_fixups, array, bound, *position};
  vla_fixups = fixup;
}

a_vla_fixup* take_vla_fixups() {
  a_vla_fixup* list = vla_fixups;
  vla_fixups = nullptr;
  return list;
}

// The tokens of the bound are read again; a fault was reported at the first time.
static void fix_bound(const a_vla_fixup* fixup) {
  append_cached_token(
      fixup->bound, build_cached_token(tok_rbracket, curr_token_sequence_number, &fixup->position));
  push_stop_token_stack();
  add_stop_token(tok_rbracket);
  rescan_cached_tokens(fixup->bound);
  a_constant constant;
  an_expr_node* size;
  if (scan_array_bound_expression(&constant, &size))
    size = alloc_node_for_constant(&constant);
  while (curr_token != tok_rbracket && curr_token != tok_end_of_source)
    get_token();
  get_token();
  pop_stop_token_stack();
  if (is_error_type(size->type))
    return;
  a_vla_dimension* dimension = make_dimension(fixup->array, size, &fixup->position);
  dimension->is_param = true;
}

static bool has_star(const a_type* type) {
  for (type = skip_typerefs(type); type->kind == tk_array;
       type = skip_typerefs(type->variant.array.element_type))
    if (type->variant.array.bound_is_star)
      return true;
  return false;
}

void fix_vla_bounds_of_parameter(a_param_id* param) {
  if (has_star(param->declared_type)) {
    pos_error(ec_vla_with_unspecified_bound_not_allowed, &param->position);
    param->type = error_type();
    return;
  }
  for (const a_vla_fixup* fixup = param->vla_fixups; fixup; fixup = fixup->next)
    fix_bound(fixup);
  param->vla_fixups = nullptr;
}
