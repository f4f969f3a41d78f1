#include "expr.h"

#include "error.h"
#include "lexical.h"
#include "types.h"

an_expr_stack_entry* expr_stack;
a_ref_entry* curr_expr_ref_entries;
a_source_position curr_construct_end_position;

bool expr_error_should_be_issued() {
  if (!expr_stack || !expr_stack->flags.suppress_errors)
    return true;
  expr_stack->flags.error_suppressed = true;
  return false;
}

// ---- Literals are all that is read so far ----

void scan_expr(an_operand* result, an_operand*, int, uint32_t) {
  *result = {};
  result->position = pos_curr_token;
  if (curr_token == tok_integer || curr_token == tok_char_constant) {
    result->kind = ok_constant;
    result->state = os_prvalue;
    result->variant.constant = const_for_curr_token;
    result->type = const_for_curr_token.type;
    get_token();
    return;
  }
  result->kind = ok_error;
  result->type = error_type();
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, "expression");
  flush_tokens();
}

static an_expr_node* scan_operand_node() {
  an_operand operand;
  scan_expr(&operand, nullptr, 0, 0);
  curr_construct_end_position = operand.end_position;
  return make_node_from_operand(&operand);
}

an_expr_node* scan_integer_expression() {
  return scan_operand_node();
}

an_expr_node* scan_boolean_controlling_expression() {
  return scan_operand_node();
}

an_expr_node* scan_void_expression() {
  return scan_operand_node();
}

an_expr_node* scan_typed_expression(a_type*, an_error_code) {
  return scan_operand_node();
}

an_expr_node* scan_return_expression(a_type*) {
  return scan_operand_node();
}

void scan_integral_constant_expression(a_constant* constant) {
  an_operand operand;
  scan_expr(&operand, nullptr, 0, sef_no_comma);
  if (!operand_constant_value(&operand, constant))
    set_error_constant(constant);
}

bool scan_array_bound_expression(a_constant* constant, an_expr_node** expr) {
  scan_integral_constant_expression(constant);
  *expr = nullptr;
  return true;
}

a_type* scan_typeof_operand() {
  return scan_operand_node()->type;
}

void scan_case_label_constant(a_type*, a_constant* constant) {
  scan_integral_constant_expression(constant);
}

// ---- Operands ----

void push_expr_stack(an_expression_kind kind, an_expr_stack_entry* entry, bool, bool) {
  *entry = {};
  entry->previous = expr_stack;
  entry->kind = kind;
  expr_stack = entry;
}

void pop_expr_stack() {
  expr_stack = expr_stack->previous;
}

an_expr_node* make_node_from_operand(an_operand* operand) {
  return operand->kind == ok_constant ? alloc_node_for_constant(&operand->variant.constant)
                                      : error_node();
}

void wrap_up_full_expression(an_expr_node*) {
  // No object lives to the end of an expression in C.
}

void prep_initializer_operand(an_operand*, a_type*, an_error_code) {
  // The only operands are literals, which are left as they are.
}

bool operand_constant_value(an_operand* operand, a_constant* constant) {
  if (operand->kind != ok_constant)
    return false;
  copy_constant(&operand->variant.constant, constant);
  return true;
}

void do_operand_transformations(an_operand*, unsigned) {
  // A literal is a value already.
}

bool operand_is_string_literal(const an_operand* operand) {
  return operand->flags.string_literal;
}

void expr_one_time_init() {
  // Registers the variables kept for each unit.
}

void expr_init() {
  expr_stack = nullptr;
  curr_expr_ref_entries = nullptr;
}

void expr_trans_unit_init() {
  // Clears the state of the innermost expression.
}
