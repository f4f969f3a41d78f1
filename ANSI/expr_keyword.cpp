// Expressions that a keyword begins: values with a name of their own, the parts
// of complex values, and questions about types and places.

#include "const_ints.h"
#include "declarator.h"
#include "expr_operator.h"
#include "float_pt.h"
#include "il.h"
#include "mode_words.h"
#include "target.h"

// ---- Operands in parentheses ----

static void begin_parenthesized(a_token_kind separator) {
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  if (separator != tok_error)
    add_stop_token(separator);
}

static void end_parenthesized(a_token_kind separator, a_source_position* end) {
  if (separator != tok_error)
    remove_stop_token(separator);
  remove_stop_token(tok_rparen);
  *end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

static void scan_assignment_expr(an_operand* operand) {
  scan_expr(operand, nullptr, lev_none, sef_no_comma);
  finish_undefined_symbol_operand(operand);
}

// ---- Values of <math.h> and <complex.h> ----

static void make_float_operand(const a_float_value* value, a_constant_kind kind, a_type* type,
                               an_operand* result) {
  a_constant constant;
  clear_constant(&constant, kind);
  constant.type = type;
  constant.value.float_value = *value;
  make_constant_operand(&constant, result);
}

static void make_nan_operand(an_operand* result) {
  a_float_value value;
  make_fp_nan(&value);
  make_float_operand(&value, con_float, float_type(fk_float), result);
}

static void make_infinity_operand(an_operand* result) {
  a_float_value value;
  make_fp_infinity(false, &value);
  make_float_operand(&value, con_float, float_type(fk_float), result);
}

static void make_imaginary_unit_operand(an_operand* result) {
  a_float_value value;
  bool failed;
  fp_host_large_integer_to_float(fk_float, 1, &value, &failed);
  make_float_operand(&value, con_imaginary, imaginary_type(fk_float), result);
}

static void scan_named_value(an_operand* result) {
  if (curr_token == tok_nan)
    make_nan_operand(result);
  else if (curr_token == tok_infinity)
    make_infinity_operand(result);
  else
    make_imaginary_unit_operand(result);
  get_token();
}

// ---- __real and __imag ----

// The constant; what the operand does is done first.
static void constant_behind_operand(const a_constant* value, an_operand* operand) {
  if (operand->kind != ok_expression || !node_has_side_effects(operand->variant.expr)) {
    make_constant_operand(value, operand);
    return;
  }
  an_expr_node* evaluated = make_node_from_operand(operand);
  evaluated->next = alloc_node_for_constant(value);
  make_expression_operand(make_operator_node(eok_comma, value->type, evaluated), operand);
}

// Of a real value, the value, which may be an object, and zero.
static void part_of_real_value(bool is_real, an_operand* operand,
                               const a_source_position* position) {
  expr_pos_warning(ec_real_and_imag_applied_to_real_value, position);
  if (is_real)
    return;
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  a_constant zero;
  an_operand saved = *operand;
  clear_constant(&zero, con_integer);
  make_zero_of_proper_type(prvalue_type(operand->type), &zero);
  constant_behind_operand(&zero, operand);
  restore_operand_details(operand, &saved);
}

static void part_of_complex_constant(bool is_real, an_operand* operand) {
  const a_complex_value* value = operand->variant.constant.value.complex_value;
  a_float_value part = is_real ? value->real : value->imaginary;
  an_operand saved = *operand;
  make_float_operand(&part, con_float, float_type(skip_typerefs(operand->type)->variant.float_kind),
                     operand);
  restore_operand_details(operand, &saved);
}

static void part_of_complex_value(bool is_real, an_operand* operand) {
  if (is_constant_operand(operand)) {
    part_of_complex_constant(is_real, operand);
    return;
  }
  an_operand saved = *operand;
  a_type* bare = skip_typerefs(operand->type);
  a_type* type =
      make_qualified_type(float_type(bare->variant.float_kind), get_type_qualifiers(operand->type));
  an_expr_operator_kind op = is_real ? eok_real_part : eok_imag_part;
  an_expr_node* object = make_node_from_operand(operand);
  object->next = nullptr;
  an_expr_node* node = operand->state == os_glvalue ? make_lvalue_operator_node(op, type, object)
                                                    : make_operator_node(op, type, object);
  make_lvalue_or_rvalue_expression_operand(node, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

static void scan_part_of_complex(an_operand* result) {
  a_source_position position = pos_curr_token;
  bool is_real = curr_token == tok_real;
  get_token();
  scan_expr(result, nullptr, lev_unary, 0);
  a_source_position end = result->end_position;
  do_operand_transformations(result, ot_keep_glvalue);
  if (is_imaginary_type(result->type))
    cast_operand(complex_type(skip_typerefs(result->type)->variant.float_kind), result, true);
  if (is_complex_type(result->type))
    part_of_complex_value(is_real, result);
  else if (gnu_mode && is_arithmetic_or_enum_type(result->type))
    part_of_real_value(is_real, result, &position);
  else
    error_in_operand(ec_real_and_imag_require_complex_argument, result);
  set_operator_positions(result, &position, &position, &end);
}

// ---- __builtin_complex (C11 7.3.9.3) ----

static bool check_part_of_complex(an_operand* part) {
  do_operand_transformations(part, ot_all);
  if (!is_error_operand(part) && !is_real_floating_type(part->type))
    error_in_operand(ec_operand_must_be_real_floating_value, part);
  return !is_error_operand(part);
}

static void make_complex_operand(an_operand* real, an_operand* imaginary, an_operand* result) {
  a_type* type = complex_type(skip_typerefs(real->type)->variant.float_kind);
  if (is_constant_operand(real) && is_constant_operand(imaginary)) {
    a_constant constant;
    clear_constant(&constant, con_complex);
    constant.type = type;
    constant.value.complex_value = alloc_complex_value();
    constant.value.complex_value->real = real->variant.constant.value.float_value;
    constant.value.complex_value->imaginary = imaginary->variant.constant.value.float_value;
    make_constant_operand(&constant, result);
    return;
  }
  an_expr_node* first = make_node_from_operand(real);
  first->next = make_node_from_operand(imaginary);
  first->next->next = nullptr;
  make_expression_operand(make_operator_node(eok_real_plus_imag, type, first), result);
}

static void scan_builtin_complex(an_operand* result) {
  a_source_position position = pos_curr_token, end;
  an_operand real, imaginary;
  begin_parenthesized(tok_comma);
  scan_assignment_expr(&real);
  if (required_token(tok_comma, ec_exp_comma))
    scan_assignment_expr(&imaginary);
  else
    make_error_operand(&imaginary);
  end_parenthesized(tok_comma, &end);
  bool good = check_part_of_complex(&real);
  good &= check_part_of_complex(&imaginary);
  if (good && !identical_types(prvalue_type(real.type), prvalue_type(imaginary.type))) {
    error_in_operand(ec_incompatible_builtin_complex_types, &imaginary);
    good = false;
  }
  if (good)
    make_complex_operand(&real, &imaginary, result);
  else
    make_error_result(&real, &imaginary, result);
  set_operator_positions(result, &position, &position, &end);
}

// ---- Addresses ----

// `__intaddr__(object)`: the address of a place as an integer constant.
static void make_integer_of_address(an_operand* operand) {
  a_constant address;
  bool is_place = operand->state == os_glvalue && operand->kind == ok_expression;
  bool is_known = is_place ? constant_glvalue_address(operand->variant.expr, &address)
                           : operand_constant_value(operand, &address);
  if (!is_known || !is_pointer_type(address.type) ||
      !type_change_constant(&address, integer_type(targ_size_t_int_kind))) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_operand saved = *operand;
  make_constant_operand(&address, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

static void scan_intaddr(an_operand* result) {
  a_source_position position = pos_curr_token, end;
  begin_parenthesized(tok_error);
  scan_expr(result, nullptr, lev_none, 0);
  end_parenthesized(tok_error, &end);
  do_operand_transformations(result, ot_keep_glvalue);
  change_unmarked_ref_kinds(result->ref_entries, srk_address_taken);
  if (!is_error_operand(result))
    make_integer_of_address(result);
  set_operator_positions(result, &position, &position, &end);
}

// Takes no notice of operator functions.
static void scan_builtin_addressof(an_operand* result) {
  a_source_position position = pos_curr_token, end;
  begin_parenthesized(tok_error);
  scan_assignment_expr(result);
  end_parenthesized(tok_error, &end);
  take_address_of_operand(result, &position);
  set_operator_positions(result, &position, &position, &end);
}

// ---- Segments ----

// The linker knows the bounds of a segment; here they are 0.
static void scan_segment_operator(an_operand* result) {
  a_source_position position = pos_curr_token;
  bool is_type;
  get_token();
  scan_unevaluated_operand(result, &is_type);
  a_source_position end = result->end_position;
  bool is_bad = !is_type && is_error_operand(result);
  if (!is_bad)
    make_size_operand(0, result);
  set_operator_positions(result, &position, &position, &end);
}

// ---- Variable arguments ----

static bool is_parameter_operand(const an_operand* operand) {
  return operand->kind == ok_expression && operand->state == os_glvalue &&
         operand->variant.expr->kind == expr_variable &&
         operand->variant.expr->variant.variable.ptr->is_parameter;
}

// A smaller argument doesn't reach the end of its slot on the stack.
static bool fills_slot(const a_type* type) {
  constexpr uint64_t slot = 4; // bytes
  return is_error_type(type) || size_of_type(type) >= slot;
}

bool take_address_of_parameter(an_operand* operand) {
  if (is_error_operand(operand))
    return false;
  if (in_constant_expr_kind() || !is_parameter_operand(operand) || !fills_slot(operand->type)) {
    error_in_operand(ec_bad_va_parmadr, operand);
    return false;
  }
  an_operand saved = *operand;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  an_expr_node* address = make_operator_node(eok_param_address, make_pointer_type(operand->type),
                                             operand->variant.expr);
  make_expression_operand(address, operand);
  restore_operand_details_incl_ref(operand, &saved);
  return true;
}

static void scan_va_parmadr(an_operand* result) {
  a_source_position position = pos_curr_token, end;
  begin_parenthesized(tok_error);
  scan_expr(result, nullptr, lev_comma, 0);
  finish_undefined_symbol_operand(result);
  end_parenthesized(tok_error, &end);
  take_address_of_parameter(result);
  set_operator_positions(result, &position, &position, &end);
}

// How an argument of the type is passed: `__va_argref(type)` by reference,
// `__va_argcsu(type)` as a class, structure or union.
static void scan_va_type_question(an_operand* result) {
  a_source_position position = pos_curr_token;
  bool asks_reference = curr_token == tok_va_argref, is_type;
  get_token();
  const a_type* type = scan_unevaluated_parenthesized(result, &is_type);
  a_source_position end = result->end_position;
  if (is_error_type(type))
    make_error_operand(result);
  else
    make_integer_constant_operand(asks_reference ? is_passed_by_ref_type(type)
                                                 : is_class_struct_union_type(type),
                                  ik_int, result);
  set_operator_positions(result, &position, &position, &end);
}

// ---- The table ----

struct a_keyword_form {
  a_token_kind token;
  void (*scan)(an_operand* result);
};

static constexpr a_keyword_form keyword_forms[] = {
    // clang-format off
    {tok_nan, scan_named_value},
    {tok_infinity, scan_named_value},
    {tok_i_constant, scan_named_value},
    {tok_real, scan_part_of_complex},
    {tok_imag, scan_part_of_complex},
    {tok_builtin_complex, scan_builtin_complex},
    {tok_intaddr, scan_intaddr},
    {tok_builtin_addressof, scan_builtin_addressof},
    {tok_segment_begin, scan_segment_operator},
    {tok_segment_end, scan_segment_operator},
    {tok_segment_size, scan_segment_operator},
    {tok_memory_of, scan_segment_operator},
    {tok_va_argref, scan_va_type_question},
    {tok_va_argcsu, scan_va_type_question},
    {tok_va_parmadr, scan_va_parmadr},
    {tok_builtin_offsetof, scan_builtin_offsetof},
    {tok_builtin_types_compatible_p, scan_types_compatible},
    {tok_generic, scan_generic_selection},
    {tok_type_generic, scan_type_generic_call},
    {tok_noexcept, scan_noexcept},
    {tok_typeid, scan_typeid},
    {tok_throw, scan_throw},
    {tok_new, scan_new},
    {tok_delete, scan_delete},
    // clang-format on
};

bool scan_keyword_form(an_operand* result) {
  if (scan_type_trait(result))
    return true;
  for (const a_keyword_form& form : keyword_forms)
    if (form.token == curr_token) {
      form.scan(result);
      return true;
    }
  return false;
}
