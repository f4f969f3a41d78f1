// The bodies of the routines that complex operations call. Each unit has its
// own, internal ones, which go when their calls have been replaced.

#include <cstring>

#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "lower_complex_int.h"
#include "lower_context.h"
#include "symbol_tbl.h"
#include "types.h"

namespace {

// Builds the body of one routine.
struct C99_COMPLEX_GEN {
  a_routine* routine;
  a_complex_operation operation;
  a_type* return_type;
  a_variable* a; // the parameters
  a_variable* b; // null: there is one only
  a_statement** insert_location;

  void make_parameters(a_scope* scope);
  void generate();
  void generate_c99_complex_negate();
  void generate_c99_complex_conj();
  void generate_c99_complex_add_sub();
  void generate_c99_complex_multiply();
  void generate_c99_complex_divide();
  void generate_c99_complex_compare();
  void generate_c99_complex_to_complex();
  void generate_c99_real_to_complex();
  void generate_c99_imag_to_complex();
  void generate_c99_complex_to_real();
  void generate_c99_complex_to_imag();

  void insert(a_statement* statement);
  void assign(an_expr_node* left, an_expr_node* right);
  void return_value(an_expr_node* value);
  an_expr_node* zero();
};

a_type* elem_type(a_type* type) {
  return array_element_type(vals_field(type)->type);
}

an_expr_node* vals_lvalue_expr(a_variable* variable, int index) {
  an_expr_node* vals =
      field_lvalue_selection_expr(var_lvalue_expr(variable), vals_field(variable->type));
  return element_lvalue_expr(vals, index);
}

an_expr_node* vals_rvalue_expr(a_variable* variable, int index) {
  an_expr_node* part = vals_lvalue_expr(variable, index);
  part->is_lvalue = false;
  return part;
}

an_expr_node* operation_on(an_expr_operator_kind op, an_expr_node* left, an_expr_node* right) {
  left->next = right;
  return make_operator_node(op, left->type, left);
}

// x[i] op y[j]
an_expr_node* of_parts(an_expr_operator_kind op, a_variable* x, int i, a_variable* y, int j) {
  return operation_on(op, vals_rvalue_expr(x, i), vals_rvalue_expr(y, j));
}

an_expr_node* negated_part(a_variable* variable, int index) {
  an_expr_node* part = vals_rvalue_expr(variable, index);
  return make_operator_node(eok_negate, part->type, part);
}

void C99_COMPLEX_GEN::insert(a_statement* statement) {
  statement->is_generated = true;
  *insert_location = statement;
  insert_location = &statement->next;
}

void C99_COMPLEX_GEN::assign(an_expr_node* left, an_expr_node* right) {
  insert(alloc_expr_statement(make_assignment_expr(left, eok_assign, right)));
}

void C99_COMPLEX_GEN::return_value(an_expr_node* value) {
  a_statement* statement = alloc_statement(stmk_return);
  statement->expr = value;
  insert(statement);
}

an_expr_node* C99_COMPLEX_GEN::zero() {
  a_constant constant;
  make_zero_of_proper_type(elem_type(return_type), &constant);
  return alloc_node_for_constant(&constant);
}

void C99_COMPLEX_GEN::generate_c99_complex_negate() {
  assign(vals_lvalue_expr(a, 0), negated_part(a, 0));
  assign(vals_lvalue_expr(a, 1), negated_part(a, 1));
  return_value(var_rvalue_expr(a));
}

void C99_COMPLEX_GEN::generate_c99_complex_conj() {
  assign(vals_lvalue_expr(a, 1), negated_part(a, 1));
  return_value(var_rvalue_expr(a));
}

void C99_COMPLEX_GEN::generate_c99_complex_add_sub() {
  an_expr_operator_kind op = operation == cop_add ? eok_add : eok_subtract;
  assign(vals_lvalue_expr(a, 0), of_parts(op, a, 0, b, 0));
  assign(vals_lvalue_expr(a, 1), of_parts(op, a, 1, b, 1));
  return_value(var_rvalue_expr(a));
}

void C99_COMPLEX_GEN::generate_c99_complex_multiply() {
  a_variable* t = make_lowered_temporary(return_type);
  assign(vals_lvalue_expr(t, 0), operation_on(eok_subtract, of_parts(eok_multiply, a, 0, b, 0),
                                              of_parts(eok_multiply, a, 1, b, 1)));
  assign(vals_lvalue_expr(t, 1), operation_on(eok_add, of_parts(eok_multiply, a, 0, b, 1),
                                              of_parts(eok_multiply, a, 1, b, 0)));
  return_value(var_rvalue_expr(t));
}

// The formula of the textbook: nothing is scaled against overflow.
void C99_COMPLEX_GEN::generate_c99_complex_divide() {
  a_variable* t = make_lowered_temporary(return_type);
  a_variable* d = make_lowered_temporary(elem_type(return_type));
  assign(var_lvalue_expr(d), operation_on(eok_add, of_parts(eok_multiply, b, 0, b, 0),
                                          of_parts(eok_multiply, b, 1, b, 1)));
  an_expr_node* real =
      operation_on(eok_add, of_parts(eok_multiply, a, 0, b, 0), of_parts(eok_multiply, a, 1, b, 1));
  assign(vals_lvalue_expr(t, 0), operation_on(eok_divide, real, var_rvalue_expr(d)));
  an_expr_node* imaginary = operation_on(eok_subtract, of_parts(eok_multiply, a, 1, b, 0),
                                         of_parts(eok_multiply, a, 0, b, 1));
  assign(vals_lvalue_expr(t, 1), operation_on(eok_divide, imaginary, var_rvalue_expr(d)));
  return_value(var_rvalue_expr(t));
}

an_expr_node* equality_of_parts(a_variable* x, a_variable* y, int index) {
  an_expr_node* left = vals_rvalue_expr(x, index);
  left->next = vals_rvalue_expr(y, index);
  return make_operator_node(eok_eq, integer_type(ik_int), left);
}

void C99_COMPLEX_GEN::generate_c99_complex_compare() {
  an_expr_node* result =
      operation_on(eok_land, equality_of_parts(a, b, 0), equality_of_parts(a, b, 1));
  if (operation == cop_ne)
    result = make_operator_node(eok_not, integer_type(ik_int), result);
  return_value(result);
}

void C99_COMPLEX_GEN::generate_c99_complex_to_complex() {
  a_variable* t = make_lowered_temporary(return_type);
  assign(vals_lvalue_expr(t, 0), add_cast(vals_rvalue_expr(a, 0), elem_type(return_type)));
  assign(vals_lvalue_expr(t, 1), add_cast(vals_rvalue_expr(a, 1), elem_type(return_type)));
  return_value(var_rvalue_expr(t));
}

void C99_COMPLEX_GEN::generate_c99_real_to_complex() {
  a_variable* t = make_lowered_temporary(return_type);
  assign(vals_lvalue_expr(t, 0), var_rvalue_expr(a));
  assign(vals_lvalue_expr(t, 1), zero());
  return_value(var_rvalue_expr(t));
}

void C99_COMPLEX_GEN::generate_c99_imag_to_complex() {
  a_variable* t = make_lowered_temporary(return_type);
  assign(vals_lvalue_expr(t, 0), zero());
  assign(vals_lvalue_expr(t, 1), var_rvalue_expr(a));
  return_value(var_rvalue_expr(t));
}

void C99_COMPLEX_GEN::generate_c99_complex_to_real() {
  return_value(vals_rvalue_expr(a, 0));
}

void C99_COMPLEX_GEN::generate_c99_complex_to_imag() {
  return_value(vals_rvalue_expr(a, 1));
}

a_complex_operation find_opcode(const char* name) {
  for (const a_complex_routine_descr& descr : complex_routine_descrs)
    if (strcmp(descr.name, name) == 0)
      return descr.operation;
  return cop_none;
}

a_variable* make_lowered_param_variable(a_param_type* param, const char* name) {
  a_variable* variable = alloc_variable(sc_auto);
  variable->source_corresp.name = name;
  variable->source_corresp.local_to_function = true;
  variable->type = param->type;
  variable->param_type = param;
  variable->is_parameter = true;
  variable->is_defined = true;
  variable->is_compiler_generated = true;
  mark_as_needed(variable, iek_variable);
  return variable;
}

void C99_COMPLEX_GEN::make_parameters(a_scope* scope) {
  a_param_type* params =
      f_skip_typerefs(routine->type)->variant.routine.routine_supplement->param_types;
  scope->parameters = a = make_lowered_param_variable(params, "a");
  if (params->next != nullptr)
    a->next = b = make_lowered_param_variable(params->next, "b");
}

void C99_COMPLEX_GEN::generate() {
  switch (operation) {
  case cop_none:
    break;
  case cop_negate:
    return generate_c99_complex_negate();
  case cop_conjugate:
    return generate_c99_complex_conj();
  case cop_add:
  case cop_subtract:
    return generate_c99_complex_add_sub();
  case cop_multiply:
    return generate_c99_complex_multiply();
  case cop_divide:
    return generate_c99_complex_divide();
  case cop_eq:
  case cop_ne:
    return generate_c99_complex_compare();
  case cop_complex_to_complex:
    return generate_c99_complex_to_complex();
  case cop_imag_to_complex:
    return generate_c99_imag_to_complex();
  case cop_real_to_complex:
    return generate_c99_real_to_complex();
  case cop_complex_to_imag:
    return generate_c99_complex_to_imag();
  case cop_complex_to_real:
    return generate_c99_complex_to_real();
  }
}

a_scope* make_scope_of_body(a_routine* routine) {
  a_scope* scope = new_function_scope(take_next_scope_number(), routine, 0);
  scope->parent = il_header.primary_scope;
  scope->is_lowered = true;
  f_skip_typerefs(routine->type)->variant.routine.routine_supplement->definition = routine;
  scope->assoc_statement = alloc_statement(stmk_block);
  scope->assoc_statement->is_generated = true;
  scope->assoc_statement->variant.block.block_supplement->is_function_body = true;
  scope->assoc_statement->variant.block.block_supplement->scope = scope;
  return scope;
}

void set_routine_internal(a_routine* routine) {
  set_inline_flag(routine, true);
  routine->inline_candidate = true;
  routine->is_internal_runtime = true;
  routine->storage_kind = sc_static;
  routine->source_corresp.linkage = idl_internal;
}

void define_c99_complex_routine(a_routine* routine) {
  if (routine == nullptr || routine->has_body)
    return;
  a_complex_operation operation = find_opcode(routine->source_corresp.name);
  int32_t saved_region = curr_il_region_number;
  a_scope* scope = make_scope_of_body(routine);
  switch_il_region(saved_region);
  a_saved_context saved;
  a_context context;
  save_and_push_context(&saved, &context, routine->region_number, scope);
  C99_COMPLEX_GEN body = {};
  body.routine = routine;
  body.operation = operation;
  body.return_type = return_type_of(routine->type);
  body.insert_location = &scope->assoc_statement->variant.block.first_statement;
  body.make_parameters(scope);
  body.generate();
  routine->has_body = true;
  set_routine_internal(routine);
  set_routine_defined(routine);
  restore_saved_context(&saved);
}

} // namespace

void define_c99_complex_routines() {
  for (auto& family : complex_routines)
    for (a_routine* routine : family)
      define_c99_complex_routine(routine);
}
