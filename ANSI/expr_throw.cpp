// Expressions of exceptions and of run-time types: throw, noexcept and typeid
// (C++11 15.1, 5.3.7, 5.2.8).

#include "expr_operator.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "symbol_tbl.h"

// ---- throw ----

static bool ends_expression(a_token_kind token) {
  return token == tok_semicolon || token == tok_rparen || token == tok_comma ||
         token == tok_colon || token == tok_rbracket || token == tok_rbrace ||
         token == tok_end_of_source;
}

static void check_exceptions_enabled(const a_source_position* position) {
  if (embedded_cplusplus_mode)
    expr_pos_error(ec_exceptions_in_embedded_cplusplus, position);
  else if (!exceptions_enabled)
    expr_pos_error(ec_no_exception_support, position);
}

// p3: of a complete type, or a pointer to one or to void.
static bool check_thrown_operand(an_operand* operand) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return false;
  a_type* type = operand->type;
  a_type* pointed_to = is_pointer_type(type) ? type_pointed_to(type) : nullptr;
  if (is_void_type(type)) {
    error_in_operand(ec_void_throw, operand);
  } else if (is_incomplete_type(type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
  } else if (pointed_to && is_incomplete_type(pointed_to) && !is_void_type(pointed_to)) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_ptr_incomplete_throw, &operand->position, pointed_to);
    conv_to_error_operand(operand);
  } else if (is_class_struct_union_type(type) &&
             skip_typerefs(type)->variant.class_struct_union.is_abstract) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_abstract_class_object_not_allowed, &operand->position, type);
    conv_to_error_operand(operand);
  }
  return !is_error_operand(operand);
}

static a_throw_supplement* make_throw_supplement(an_operand* operand) {
  a_throw_supplement* info = alloc_throw_supplement();
  info->type = prvalue_type(operand->type);
  info->dynamic_init = alloc_dynamic_init(dik_expr);
  info->dynamic_init->is_temporary = true;
  info->dynamic_init->variant.expr = make_node_from_operand(operand);
  return info;
}

void scan_throw(an_operand* result) {
  a_source_position start = pos_curr_token, end = end_pos_curr_token;
  an_operand operand;
  check_exceptions_enabled(&start);
  get_token();
  bool is_rethrow = ends_expression(curr_token);
  if (!is_rethrow) {
    scan_expr(&operand, nullptr, lev_assignment, sef_no_comma);
    end = operand.end_position;
  }
  if ((!is_rethrow && !check_thrown_operand(&operand)) || is_refused_in_constant(&start)) {
    make_error_operand(result);
  } else {
    an_expr_node* node = alloc_expr_node(expr_throw);
    node->type = void_type();
    node->variant.throw_info = is_rethrow ? nullptr : make_throw_supplement(&operand);
    make_expression_operand(node, result);
    rule_out_expr_kinds(rule_out_constant, result);
  }
  set_operator_positions(result, &start, &start, &end);
}

// ---- noexcept ----

static void make_bool_operand(bool value, an_operand* result) {
  make_integer_constant_operand(value, ik_int, result);
  cast_operand(bool_type(), result, true);
}

void scan_noexcept(an_operand* result) {
  a_source_position start = pos_curr_token;
  an_expr_stack_entry entry;
  an_operand operand;
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  push_nested_expr_stack(ek_unevaluated, &entry);
  scan_expr(&operand, nullptr, lev_none, 0);
  finish_undefined_symbol_operand(&operand);
  bool is_bad = is_error_operand(&operand);
  bool might_throw = operand.kind == ok_expression && expr_might_throw(operand.variant.expr);
  pop_expr_stack();
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (is_bad)
    make_error_operand(result);
  else
    make_bool_operand(!might_throw, result);
  set_operator_positions(result, &start, &start, &end);
}

// ---- typeid ----

// The class of <typeinfo>; null when the header wasn't included.
static a_type* type_info_class() {
  if (!symbol_for_namespace_std)
    return nullptr;
  a_symbol_locator locator = cleared_locator;
  find_symbol_header("type_info", 0, &locator);
  a_symbol* symbol = namespace_qualified_id_lookup(
      &locator, symbol_for_namespace_std->variant.namespace_entry, ilo_none);
  bool is_defined =
      symbol && symbol->kind == symk_class_or_struct && !is_incomplete_type(symbol->variant.type);
  return is_defined ? symbol->variant.type : nullptr;
}

static bool check_typeid_operand(a_type* type, const a_source_position* position) {
  an_error_code code = 0;
  if (is_error_type(type))
    return false;
  if (is_vla_type(type))
    code = ec_vla_not_allowed;
  else if (is_class_struct_union_type(type) && is_incomplete_type(type))
    code = ec_incomplete_type_not_allowed;
  if (code != 0)
    expr_pos_error(code, position);
  return code == 0;
}

// Of an object whose class is polymorphic, what it is at run time.
static bool needs_run_time_type(const an_operand* operand) {
  return operand->kind == ok_expression && operand->state == os_glvalue &&
         is_polymorphic_class_type(operand->type);
}

static void make_typeid_operand(a_type* type, a_type* info_class, an_operand* operand, bool is_type,
                                an_operand* result) {
  a_type* result_type = make_qualified_type(info_class, tq_const);
  if (!is_type && needs_run_time_type(operand)) {
    an_expr_node* node = alloc_expr_node(expr_typeid_like);
    node->type = result_type;
    node->is_lvalue = true;
    node->variant.sizeof_like.operand.expr = make_node_from_operand(operand);
    make_glvalue_expression_operand(node, result);
    return;
  }
  a_constant address;
  clear_constant(&address, con_address);
  make_typeid_constant(prvalue_type(type), &address);
  address.type = make_pointer_type(result_type);
  make_glvalue_expression_operand(add_indirection_to_node(alloc_node_for_constant(&address)),
                                  result);
}

void scan_typeid(an_operand* result) {
  a_source_position start = pos_curr_token;
  a_type* info_class = type_info_class();
  an_operand operand;
  bool is_type;
  get_token();
  if (embedded_cplusplus_mode)
    expr_pos_error(ec_rtti_in_embedded_cplusplus, &start);
  a_type* type = scan_unevaluated_parenthesized(&operand, &is_type);
  a_source_position end = operand.end_position;
  bool good = check_typeid_operand(type, &operand.position);
  if (good && !info_class) {
    expr_pos_error(ec_typeid_needs_typeinfo, &start);
    good = false;
  }
  if (good)
    make_typeid_operand(type, info_class, &operand, is_type, result);
  else
    make_error_operand(result);
  set_operator_positions(result, &start, &start, &end);
}
