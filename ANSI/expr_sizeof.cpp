// The operators that look at an operand without evaluating it: sizeof and
// _Alignof (C99 6.5.3.4, C11 6.5.3.4), __builtin_offsetof and its like.

#include "const_ints.h"
#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "layout.h"
#include "mode_words.h"
#include "target.h"

// ---- Operands that aren't evaluated ----

static a_type* scan_parenthesized_type(an_operand* operand, const a_source_position* start) {
  add_stop_token(tok_rparen);
  a_type* type = scan_type_for_sizeof();
  remove_stop_token(tok_rparen);
  make_error_operand(operand);
  set_operand_range(operand, start, &end_pos_curr_token);
  required_token(tok_rparen, ec_exp_rparen);
  return in_cplusplus_mode() && is_reference_type(type) ? type_pointed_to(type) : type;
}

// `sizeof (type){...}` is that of the object, or of a part of it.
static a_type* scan_compound_literal_operand(a_type* type, const a_source_position* start,
                                             an_operand* operand) {
  scan_compound_literal(type, start, operand);
  scan_operators(operand, lev_unary, 0);
  eliminate_unusual_operand_kinds(operand);
  return operand->type;
}

static a_type* scan_type_or_expression(an_operand* operand, bool* is_type) {
  uint32_t flags = 0;
  *is_type = false;
  if (curr_token == tok_lparen) {
    a_source_position start = pos_curr_token;
    get_token();
    if (is_decl_not_expr(dst_expr_context)) {
      a_type* type = scan_parenthesized_type(operand, &start);
      *is_type = curr_token != tok_lbrace;
      return *is_type ? type : scan_compound_literal_operand(type, &start, operand);
    }
    flags = sef_opening_paren_taken;
  }
  scan_expr(operand, nullptr, lev_unary, flags);
  eliminate_unusual_operand_kinds(operand);
  return operand->type;
}

// The operand is what stands in the parentheses, and no more.
static a_type* scan_type_or_parenthesized(an_operand* operand, bool* is_type) {
  a_source_position start = pos_curr_token;
  required_token(tok_lparen, ec_exp_lparen);
  *is_type = is_decl_not_expr(dst_expr_context);
  if (*is_type)
    return scan_parenthesized_type(operand, &start);
  add_stop_token(tok_rparen);
  scan_expr(operand, nullptr, lev_none, 0);
  remove_stop_token(tok_rparen);
  operand->end_position = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  eliminate_unusual_operand_kinds(operand);
  return operand->type;
}

static a_type* scan_unevaluated(a_type* (*scan)(an_operand*, bool*), an_operand* operand,
                                bool* is_type) {
  an_expr_stack_entry entry;
  push_nested_expr_stack(ek_unevaluated, &entry);
  entry.flags.keep_side_effects = true;
  a_type* type = scan(operand, is_type);
  pop_expr_stack();
  return type;
}

a_type* scan_unevaluated_parenthesized(an_operand* operand, bool* is_type) {
  return scan_unevaluated(scan_type_or_parenthesized, operand, is_type);
}

a_type* scan_unevaluated_operand(an_operand* operand, bool* is_type) {
  return scan_unevaluated(scan_type_or_expression, operand, is_type);
}

void make_size_operand(uint64_t size, an_operand* result) {
  a_constant constant;
  clear_constant(&constant, con_integer);
  set_unsigned_integer_constant(&constant, size,
                                static_cast<an_integer_kind>(targ_size_t_int_kind));
  make_constant_operand(&constant, result);
}

// ---- sizeof ----

static void check_sizeof_operand(a_type** type, const an_operand* operand, bool is_type) {
  an_error_code code = 0;
  if (is_error_type(*type))
    return;
  if (!is_type && operand->kind == ok_expression && bit_field_of_node(operand->variant.expr, false))
    code = ec_sizeof_bit_field;
  else if (is_function_type(*type))
    code = gnu_mode ? 0 : ec_sizeof_function;
  else if (is_incomplete_type(*type) && !(gnu_mode && is_void_type(*type)))
    code = ec_incomplete_type_not_allowed;
  if (code == 0)
    return;
  expr_pos_error(code, &operand->position);
  *type = error_type();
}

// GNU C gives void and functions the size 1.
static uint64_t sizeof_type(const a_type* type) {
  return is_void_type(type) || is_function_type(type) ? 1 : size_of_type(type);
}

// `sizeof...(pack)`, at the `...` (C++11 5.3.3 p5). No template with a pack can
// be declared yet, so that the name is none of one.
static void scan_sizeof_pack(an_operand* result) {
  a_source_position position = pos_curr_token;
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  expr_pos_error(ec_sizeof_pack_in_non_variadic_context, &position);
  if (curr_token == tok_identifier)
    get_token();
  else
    expr_pos_error(ec_exp_identifier, &pos_curr_token);
  make_error_operand(result);
  result->end_position = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

// The operand of such a type is evaluated (C99 6.5.3.4 p2).
static void make_vla_size_operand(a_type* type, bool is_type, an_operand* result) {
  an_expr_node* size = type_only_expr(type);
  size->type = integer_type(static_cast<an_integer_kind>(targ_size_t_int_kind));
  size->position = result->position;
  an_expr_node* operand = is_type ? nullptr : make_node_from_operand(result);
  if (operand && node_has_side_effects(operand)) {
    if (operand->is_lvalue) // an array has no value
      operand = add_address_of_to_node(operand);
    set_expr_result_not_used(operand);
    size = make_comma_node(operand, size);
  }
  make_expression_operand(size, result);
}

static void scan_sizeof_operand(an_operand* result) {
  bool is_type;
  a_type* type = scan_unevaluated_operand(result, &is_type);
  misra_check_sizeof_operand(result);
  check_sizeof_operand(&type, result, is_type);
  a_source_position end = result->end_position;
  if (is_error_type(type))
    make_error_operand(result);
  else if (is_vla_type(type))
    make_vla_size_operand(type, is_type, result);
  else
    make_size_operand(sizeof_type(type), result);
  result->end_position = end;
}

void scan_sizeof(an_operand* result) {
  a_source_position position = pos_curr_token;
  get_token();
  if (variadic_templates_enabled && curr_token == tok_ellipsis)
    scan_sizeof_pack(result);
  else
    scan_sizeof_operand(result);
  a_source_position end = result->end_position;
  set_operator_positions(result, &position, &position, &end);
}

// ---- _Alignof ----

// An object or a field may be aligned otherwise than its type.
static uint64_t alignment_of_operand(const an_operand* operand, const a_type* type) {
  uint64_t own_alignment = 0;
  if (operand->kind == ok_expression) {
    const an_expr_node* node = operand->variant.expr;
    if (node->kind == expr_variable)
      own_alignment = node->variant.variable.ptr->alignment;
    else if (a_field* field = field_of_selection(node))
      own_alignment = alignment_of_field_full(field, false);
  }
  return own_alignment != 0 ? own_alignment : f_alignment_of_type(skip_array_types(type));
}

static an_error_code fault_of_alignof_type(const a_type* type) {
  if (is_void_type(type) || is_function_type(type)) {
    if (gnu_mode)
      return 0;
    return is_function_type(type) ? ec_function_type_not_allowed : ec_alignof_incomplete_type;
  }
  return is_incomplete_type(skip_array_types(type)) ? ec_alignof_incomplete_type : 0;
}

static void make_alignment_operand(a_type* type, bool is_type, an_operand* result) {
  an_error_code code = is_error_type(type) ? 0 : fault_of_alignof_type(type);
  if (code == 0 && !is_type && result->kind == ok_expression &&
      bit_field_of_node(result->variant.expr, false))
    code = ec_sizeof_bit_field;
  if (code != 0)
    expr_pos_error(code, &result->position);
  if (code != 0 || is_error_type(type))
    make_error_operand(result);
  else if (is_void_type(type) || is_function_type(type))
    make_size_operand(1, result);
  else
    make_size_operand(alignment_of_operand(result, type), result);
}

void scan_alignof(an_operand* result) {
  a_source_position position = pos_curr_token;
  bool is_standard = curr_token == tok_alignof;
  bool is_type;
  get_token();
  a_type* type = scan_unevaluated_operand(result, &is_type);
  a_source_position end = result->end_position;
  if (is_standard && !is_type && strict_ansi_mode && !is_error_type(type))
    expr_pos_diagnostic(strict_ansi_discretionary_severity, ec_std_alignof_with_expr_arg,
                        &position);
  make_alignment_operand(type, is_type, result);
  set_operator_positions(result, &position, &position, &end);
}

// ---- __builtin_offsetof ----

// The layout of such a class is the compiler's own affair (C++11 18.2 p4).
static bool is_non_pod_class(const a_type* type) {
  const a_class_type_supplement* info = class_supplement_of(type);
  return info->base_classes || info->has_user_constructor || info->has_user_destructor ||
         skip_typerefs(type)->variant.class_struct_union.has_virtual_functions;
}

// The designator is walked as selections and subscripts on an object at
// address 0.
static void select_designated_field(an_operand* object) {
  if (!is_class_struct_union_type(object->type)) {
    error_in_operand(in_C_mode() ? ec_expr_not_struct_or_union : ec_expr_not_class, object);
    return;
  }
  select_named_field(object, false);
}

static void scan_offsetof_designator(an_operand* object) {
  select_designated_field(object);
  while (!is_error_operand(object) && (curr_token == tok_period || curr_token == tok_lbracket)) {
    if (curr_token == tok_lbracket) {
      scan_offsetof_subscript(object);
    } else {
      get_token();
      select_designated_field(object);
    }
  }
}

static void make_offset_operand(an_operand* object, an_operand* result,
                                const a_source_position* position) {
  a_constant address;
  if (is_error_operand(object)) {
    make_error_operand(result);
    return;
  }
  if (bit_field_of_node(object->variant.expr, false)) {
    error_and_make_error_operand(ec_offsetof_bit_field, position, result);
    return;
  }
  if (!constant_glvalue_address(object->variant.expr, &address) || address.kind != con_integer) {
    error_and_make_error_operand(ec_nonconstant_offsetof, position, result);
    return;
  }
  make_size_operand(address.value.int_value, result);
}

void scan_builtin_offsetof(an_operand* result) {
  a_source_position position = pos_curr_token;
  an_operand object;
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  a_source_position type_position = pos_curr_token;
  a_type* type = type_name();
  remove_stop_token(tok_comma);
  bool has_class = is_class_struct_union_type(type) && !is_incomplete_type(type);
  if (has_class && in_cplusplus_mode() && is_non_pod_class(type))
    expr_pos_warning(ec_offset_in_non_POD_nonstandard, &type_position);
  if (!has_class && !is_error_type(type))
    expr_pos_error(is_class_struct_union_type(type) ? ec_incomplete_type_not_allowed
                                                    : ec_exp_class_type,
                   &type_position);
  if (required_token(tok_comma, ec_exp_comma) && has_class) {
    make_dummy_lvalue_operand(type, &object);
    scan_offsetof_designator(&object);
    make_offset_operand(&object, result, &position);
  } else {
    flush_to_closing_paren();
    make_error_operand(result);
  }
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  set_operator_positions(result, &position, &position, &end);
}

// ---- __builtin_types_compatible_p ----

void scan_types_compatible(an_operand* result) {
  a_source_position position = pos_curr_token;
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  a_type* first = type_name();
  remove_stop_token(tok_comma);
  a_type* second = required_token(tok_comma, ec_exp_comma) ? type_name() : error_type();
  remove_stop_token(tok_rparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (is_error_type(first) || is_error_type(second))
    make_error_operand(result);
  else
    make_integer_constant_operand(
        types_are_compatible(make_unqualified_type(first), make_unqualified_type(second)), ik_int,
        result);
  set_operator_positions(result, &position, &position, &end);
}
