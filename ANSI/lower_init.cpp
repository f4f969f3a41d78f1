#include "lower_init.h"

#include <vector>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_c99.h"
#include "lower_complex.h"
#include "lower_context.h"
#include "lower_il.h"
#include "lower_insert.h"
#include "lower_vla.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

namespace {

// One step from an object to a part of it: a field, or an array element.
struct an_init_step {
  a_field* field; // null: an element
  uint64_t index;
};

// The walk over an aggregate, and where it stands in the object.
struct an_init_walk {
  a_variable* variable;
  std::vector<an_init_step> path;
  std::vector<an_expr_node*> assignments; // in order
};

// ---- The place of a part ----

an_expr_node* part_lvalue(const an_init_walk& walk) {
  an_expr_node* object = var_lvalue_expr(walk.variable);
  for (const an_init_step& step : walk.path)
    object = step.field != nullptr ? field_lvalue_selection_expr(object, step.field)
                                   : element_lvalue_expr(object, static_cast<int64_t>(step.index));
  return object;
}

// ---- The elements of an aggregate ----

// Calls `action(element, step)` for each element with its place in the
// aggregate.
template <class Action> void for_each_element(a_constant* aggregate, Action action) {
  a_type* type = f_skip_typerefs(aggregate->type);
  bool is_array = type->kind == tk_array;
  uint64_t index = 0;
  a_field* field =
      is_array ? nullptr : next_initializable_field(type->variant.class_struct_union.fields);
  for (a_constant* item = aggregate->value.aggregate.first; item != nullptr; item = item->next) {
    if (item->kind == con_designator) {
      field = item->value.designator.designated.field;
      continue;
    }
    action(item, an_init_step{field, index});
    index += item->kind == con_repeat ? item->value.repeat.count : 1;
    if (!is_array)
      field = next_initializable_field(field->next);
  }
}

bool holds_run_time_value(const a_constant* constant) {
  return constant->kind == con_dynamic_init ||
         (constant->kind == con_aggregate && constant->value.aggregate.has_dynamic_init);
}

// Assigns the values that are known at run time only.
void assign_values(a_constant* aggregate, an_init_walk& walk) {
  check_stack_limit();
  for_each_element(aggregate, [&](a_constant* item, const an_init_step& step) {
    if (!holds_run_time_value(item))
      return;
    walk.path.push_back(step);
    if (item->kind == con_aggregate) {
      assign_values(item, walk);
    } else {
      an_expr_node* value = item->value.dynamic_init->variant.expr;
      lower_c99_expr(value);
      walk.assignments.push_back(make_assignment_expr(part_lvalue(walk), eok_assign, value));
    }
    walk.path.pop_back();
  });
}

// Replaces the values that are known at run time only by zeros. Says whether
// the object has parts without such a value, which must be set beforehand.
bool clear_run_time_values(a_constant* aggregate) {
  check_stack_limit();
  bool has_other_parts = false;
  uint64_t count = 0;
  for_each_element(aggregate, [&](a_constant* item, const an_init_step&) {
    count++;
    if (item->kind == con_dynamic_init) {
      a_constant* next = item->next;
      make_value_initialized_constant(item->type, item);
      lower_c99_constant(item, nullptr);
      item->next = next;
    } else {
      has_other_parts |= !holds_run_time_value(item) || clear_run_time_values(item);
    }
  });
  aggregate->value.aggregate.has_dynamic_init = false;
  aggregate->contains_nonconstant = false;
  a_type* type = f_skip_typerefs(aggregate->type);
  if (type->kind == tk_array)
    return has_other_parts || count < num_array_elements(type);
  uint64_t fields = 0;
  for (a_field* field = next_initializable_field(type->variant.class_struct_union.fields);
       field != nullptr; field = next_initializable_field(field->next))
    fields++;
  return has_other_parts || (type->kind != tk_union && count < fields);
}

// The assignments of the run-time values of an aggregate, which then holds
// constants only. *is_complete: the assignments set the whole object.
std::vector<an_expr_node*> take_run_time_values(a_dynamic_init* init, bool* is_complete) {
  an_init_walk walk = {init->variable, {}, {}};
  // The aggregate keeps its values until the assignments are made of them.
  assign_values(init->variant.constant, walk);
  *is_complete = !clear_run_time_values(init->variant.constant);
  init->contains_nonconstant = false;
  return walk.assignments;
}

// ---- Compound literals ----

an_expr_node* assignment_of_value(a_variable* variable, an_expr_node* value) {
  return make_assignment_expr(var_lvalue_expr(variable),
                              is_array_type(variable->type) ? eok_array_assign : eok_assign, value);
}

an_expr_node* constant_value(a_constant* value) {
  bool is_scalar = value->kind != con_aggregate && value->kind != con_string;
  return is_scalar ? alloc_node_for_allocated_constant(value) : static_copy_of(value);
}

void add_stmk_init_for_temp_init(a_variable* variable, a_dynamic_init* init) {
  a_statement* statement = alloc_statement(stmk_init);
  statement->position = code_pos_for_lowering;
  statement->variant.dynamic_init = init;
  variable->init_kind = initk_dynamic;
  variable->initializer.dynamic = init;
  a_statement** link = &pending_stmk_init_statements;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = statement;
}

// The assignments that give the object its value where the expression stands.
std::vector<an_expr_node*> assignments_of(a_dynamic_init* init) {
  if (init->kind == dik_expr)
    return {assignment_of_value(init->variable, init->variant.expr)};
  bool is_complete = false;
  std::vector<an_expr_node*> assignments;
  if (init->kind == dik_nonconstant_aggregate)
    assignments = take_run_time_values(init, &is_complete);
  if (!is_complete)
    assignments.insert(assignments.begin(),
                       assignment_of_value(init->variable, constant_value(init->variant.constant)));
  return assignments;
}

} // namespace

a_statement* pending_stmk_init_statements;

an_expr_node* static_copy_of(a_constant* value) {
  a_scope* scope = il_header.region_scope_table[curr_il_region_number];
  a_variable* copy = alloc_variable(sc_static);
  copy->type = make_qualified_type(value->type, tq_const);
  copy->is_compiler_generated = true;
  copy->source_corresp.position = code_pos_for_lowering;
  copy->source_corresp.local_to_function = true;
  add_temporary_to_front_of_variables_list(copy, scope);
  make_local_static_variable_init(copy, scope->assoc.routine, initk_constant, value, nullptr);
  mark_as_needed(copy, iek_variable);
  return var_rvalue_expr(copy);
}

void lower_temp_init(an_expr_node* expr, bool in_loop) {
  a_dynamic_init* init = expr->variant.dynamic_init;
  a_variable* variable = init->variable = make_lowered_temporary(expr->type);
  bool is_lvalue = expr->is_lvalue;
  if (init->kind != dik_expr)
    lower_c99_constant(init->variant.constant, init);
  an_expr_node* dimensions = lower_vla_dimensions_in_type(expr->type);
  if (init->kind == dik_constant && !in_loop && dimensions == nullptr) {
    add_stmk_init_for_temp_init(variable, init);
    overwrite_node(expr, is_lvalue ? var_lvalue_expr(variable) : var_rvalue_expr(variable));
    return;
  }
  // `*(object = value, &object)`, which is the object again.
  an_expr_node* result = var_addr_expr(variable);
  an_insert_location location;
  set_expr_insert_location(result, &location);
  if (dimensions != nullptr)
    insert_expr(dimensions, &location);
  for (an_expr_node* assignment : assignments_of(init))
    insert_expr(assignment, &location);
  result = add_indirection_to_node(result);
  result->is_lvalue = is_lvalue;
  overwrite_node(expr, result);
}

void insert_pending_stmk_init_statements(a_statement* statement) {
  a_statement* first = pending_stmk_init_statements;
  pending_stmk_init_statements = nullptr;
  if (first != nullptr)
    insert_statements_before(statement, first);
}

void lower_nonconstant_aggregate(a_statement* statement) {
  a_statement* constant_part = change_statement_into_block(statement);
  a_dynamic_init* init = constant_part->variant.dynamic_init;
  bool is_complete = false;
  an_insert_location location;
  set_insert_location(constant_part, &location);
  for (an_expr_node* assignment : take_run_time_values(init, &is_complete))
    insert_expr_statement(assignment, &location);
  if (is_complete)
    set_statement_kind(constant_part, stmk_null);
  else
    init->kind = dik_constant;
}
