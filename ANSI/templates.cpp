#include "templates.h"

#include "expr_int.h"

void template_and_inline_function_wrapup() {
  // No instance waits while no template was declared.
}

void remove_unneeded_instantiations() {
  // No instance exists while no template was declared.
}

void clear_instantiation_required_on_unneeded_entities() {
  // No entity bears a mark while no template was declared.
}

void update_auto_instantiation_flags() {
  // No instance exists while no template was declared.
}

void update_inline_function_flags() {
  // No inline function waits for its definition.
}

void wrapup_auto_instantiation_information() {
  // No template information file is open.
}

// A program can't declare templates yet.
static void refuse_dependent_operation(const a_source_position* position, an_operand* result) {
  refuse_construct("template", position);
  make_error_operand(result);
}

void template_unary_operation(an_expr_operator_kind, an_operand*, const a_source_position* position,
                              an_operand* result) {
  refuse_dependent_operation(position, result);
}

void template_binary_operation(an_expr_operator_kind, an_operand*, an_operand*,
                               const a_source_position* position, an_operand* result) {
  refuse_dependent_operation(position, result);
}

void template_question_operation(an_operand*, an_operand*, an_operand*,
                                 const a_source_position* position, an_operand* result) {
  refuse_dependent_operation(position, result);
}

void f_instantiate_template_class(a_type*) {
  // No instance of a template waits for its definition.
}

void templates_one_time_init() {
  // No variable of this module is kept for each unit.
}

void templates_init() {
  // Nothing of this module lives on from an earlier run.
}

void templates_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
