#include "lower_init.h"

#include <vector>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_c99.h"
#include "lower_il.h"
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
  a_statement* last_statement; // new statements go behind it
};

// ---- The place of a part ----

an_expr_node* element_lvalue(an_expr_node* array, uint64_t index) {
  a_type* element = array_element_type(f_skip_typerefs(array->type));
  an_expr_node* pointer =
      make_operator_node(eok_array_to_pointer, make_pointer_type(element), array);
  pointer->next = node_for_integer_constant(static_cast<int64_t>(index),
                                            static_cast<an_integer_kind>(targ_ptrdiff_t_int_kind));
  return make_lvalue_operator_node(eok_subscript, element, pointer);
}

an_expr_node* part_lvalue(const an_init_walk& walk) {
  an_expr_node* object = var_lvalue_expr(walk.variable);
  for (const an_init_step& step : walk.path)
    object = step.field != nullptr ? field_lvalue_selection_expr(object, step.field)
                                   : element_lvalue(object, step.index);
  return object;
}

void insert_statement(an_init_walk& walk, a_statement* statement) {
  statement->position = code_pos_for_lowering;
  statement->parent = walk.last_statement->parent;
  statement->next = walk.last_statement->next;
  walk.last_statement->next = statement;
  walk.last_statement = statement;
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
      lower_c99_full_expr(value);
      insert_statement(walk, make_assignment_statement(part_lvalue(walk), value));
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

} // namespace

void lower_nonconstant_aggregate(a_statement* statement) {
  a_dynamic_init* init = statement->variant.dynamic_init;
  a_statement* constant_part = change_statement_into_block(statement);
  an_init_walk walk = {init->variable, {}, constant_part};
  // The aggregate keeps its values until the assignments are made of them.
  assign_values(init->variant.constant, walk);
  if (clear_run_time_values(init->variant.constant))
    init->kind = dik_constant;
  else
    set_statement_kind(constant_part, stmk_null);
  init->contains_nonconstant = false;
}
