// The casts of C++: casts to references, the named casts (C++11 5.2.7, 5.2.9
// to 5.2.11) and the functional form (5.2.3).

#include "decl_inits.h"
#include "declarator.h"
#include "expr_int.h"
#include "il.h"
#include "il_statements.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"

// ---- Casts to references ----

// The result of the cast is an lvalue, or an xvalue for an rvalue reference to
// an object.
static void set_category_of_reference_cast(const a_type* type, an_expr_node* node) {
  bool is_lvalue = is_lvalue_reference_type(type) || is_function_type(node->type);
  node->is_lvalue = is_lvalue;
  node->is_xvalue = !is_lvalue;
}

static an_expr_node* glvalue_cast_node(a_type* referenced, an_expr_node* node) {
  node->next = nullptr;
  return make_lvalue_operator_node(eok_glvalue_cast, referenced, node);
}

// Up and down a hierarchy, where the relation is known and unambiguous; null
// otherwise.
static an_expr_node* related_class_cast(a_type* referenced, an_expr_node* node) {
  a_base_class* base_class = find_base_class_of(node->type, referenced);
  if (base_class)
    return base_class->is_ambiguous
               ? nullptr
               : glvalue_cast_node(referenced, add_base_class_casts(node, base_class));
  base_class = find_base_class_of(referenced, node->type);
  bool is_reachable = base_class && !base_class->is_ambiguous && !base_class->is_virtual;
  return is_reachable ? add_derived_class_casts(node, referenced) : nullptr;
}

static bool removes_qualifiers(const a_type* from, const a_type* to) {
  constexpr a_type_qualifier_set counted = tq_const | tq_volatile;
  return (get_type_qualifiers(from) & ~get_type_qualifiers(to) & counted) != 0;
}

static void report_lost_qualifiers(an_operand* operand, const char* name) {
  if (expr_error_should_be_issued())
    pos_st_error(ec_cannot_cast_away_const, &operand->position, name);
  conv_to_error_operand(operand);
}

static an_expr_node* reference_cast_node(a_type* referenced, a_reference_cast_form form,
                                         an_expr_node* node) {
  if (cast_identical_types(node->type, referenced))
    return glvalue_cast_node(referenced, node);
  an_expr_node* cast = nullptr;
  if (form != rcf_reinterpret_cast && form != rcf_const_cast)
    cast = related_class_cast(referenced, node);
  if (!cast && (form == rcf_explicit_cast || form == rcf_reinterpret_cast)) {
    cast = glvalue_cast_node(referenced, node);
    cast->variant.operation.is_reinterpret_cast = true;
  }
  return cast;
}

static bool can_refer_to_operand(const a_type* type, const an_operand* operand) {
  if (operand->kind != ok_expression)
    return false;
  if (is_lvalue_reference_type(type))
    return is_a_cplusplus_lvalue(operand) && !bit_field_of_node(operand->variant.expr, false);
  return is_glvalue_operand(operand) || operand->state == os_function_designator;
}

void cast_operand_for_reference_cast(a_type* type, an_operand* operand, a_reference_cast_form form,
                                     const a_source_position* position) {
  if (is_error_operand(operand))
    return;
  a_type* referenced = type_pointed_to(type);
  if (operand->kind == ok_indefinite_function) {
    cast_overloaded_function(type, operand);
    return;
  }
  if (!can_refer_to_operand(type, operand)) {
    error_in_operand(form == rcf_const_cast && is_rvalue_reference_type(type)
                         ? ec_bad_rvalue_ref_const_cast_operand
                         : ec_bad_cast,
                     operand);
    return;
  }
  if (form == rcf_static_cast && removes_qualifiers(operand->type, referenced)) {
    report_lost_qualifiers(operand, "static_cast");
    return;
  }
  an_operand saved = *operand;
  an_expr_node* node = reference_cast_node(referenced, form, operand->variant.expr);
  if (!node) {
    error_in_operand(form == rcf_const_cast ? ec_bad_const_cast : ec_bad_cast, operand);
    return;
  }
  node->position = *position;
  set_category_of_reference_cast(type, node);
  make_glvalue_expression_operand(node, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// ---- static_cast ----

static void do_static_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  if (is_class_struct_union_type(operand->type) &&
      convert_operand_by_conversion_function(operand, type, true))
    return;
  do_operand_transformations(operand, ot_keep_overload_set);
  if (is_error_operand(operand))
    return;
  if (operand->kind == ok_indefinite_function) {
    cast_overloaded_function(type, operand);
  } else if (static_cast_conversion_possible(operand->type, type, constant_of_operand(operand))) {
    if (!is_class_struct_union_type(type))
      cast_operand_full(type, operand, position, false);
  } else if (cast_removes_qualifiers(operand->type, type)) {
    report_lost_qualifiers(operand, "static_cast");
  } else {
    error_in_operand(ec_bad_cast, operand);
  }
}

// ---- reinterpret_cast ----

static void do_reinterpret_cast(a_type* type, an_operand* operand,
                                const a_source_position* position) {
  do_operand_transformations(operand, ot_keep_overload_set);
  if (is_error_operand(operand))
    return;
  if (operand->kind == ok_indefinite_function) {
    cast_overloaded_function(type, operand);
    return;
  }
  if (!reinterpret_cast_conversion_possible(operand->type, type)) {
    error_in_operand(ec_bad_cast, operand);
    return;
  }
  if (cast_removes_qualifiers(operand->type, type)) {
    report_lost_qualifiers(operand, "reinterpret_cast");
    return;
  }
  bool is_same_integer =
      is_integral_or_enum_type(type) && cast_identical_types(type, operand->type);
  if (is_same_integer && strict_ansi_mode && std_version < 201103)
    expr_pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_reinterpret_cast, position);
  if (is_pointer_type(operand->type) && !is_pointer_type(type))
    force_operand_to_constant_if_possible(operand);
  cast_operand_full(type, operand, position, false);
}

// ---- const_cast ----

static bool is_object_pointer_or_member(const a_type* type) {
  if (is_pointer_type(type))
    return !is_function_type(type_pointed_to(type));
  return is_ptr_to_member_type(type) && !is_function_type(pm_member_type(type));
}

// The types differ in the qualifiers of what is pointed to, at any level.
static bool differ_in_qualifiers_only(a_type* a, a_type* b) {
  while (is_pointer_type(a) && is_pointer_type(b)) {
    a = type_pointed_to(a);
    b = type_pointed_to(b);
  }
  if (is_ptr_to_member_type(a) && is_ptr_to_member_type(b) &&
      identical_types(pm_class_type(a), pm_class_type(b))) {
    a = pm_member_type(a);
    b = pm_member_type(b);
  }
  return cast_identical_types(a, b);
}

static void do_const_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (!is_object_pointer_or_member(type))
    error_in_operand(ec_bad_const_cast_type, operand);
  else if (!differ_in_qualifiers_only(operand->type, type))
    error_in_operand(ec_bad_const_cast, operand);
  else
    cast_operand_full(type, operand, position, false);
}

// ---- dynamic_cast ----

static bool is_complete_class(const a_type* type) {
  return is_class_struct_union_type(type) && !is_incomplete_type(type);
}

static bool is_dynamic_cast_target(a_type* type) {
  if (is_reference_type(type))
    return is_complete_class(type_pointed_to(type));
  return is_pointer_type(type) &&
         (is_complete_class(type_pointed_to(type)) || is_void_type(type_pointed_to(type)));
}

// What is wrong with the operand; 0 for nothing.
static an_error_code fault_of_dynamic_cast_operand(a_type* type, const an_operand* operand) {
  if (is_pointer_type(type))
    return is_pointer_type(operand->type) && is_complete_class(type_pointed_to(operand->type))
               ? 0
               : static_cast<an_error_code>(ec_bad_ptr_dynamic_cast_operand);
  if (is_lvalue_reference_type(type))
    return is_a_cplusplus_lvalue(operand) && is_complete_class(operand->type)
               ? 0
               : static_cast<an_error_code>(ec_bad_ref_dynamic_cast_operand);
  return is_complete_class(operand->type)
             ? 0
             : static_cast<an_error_code>(ec_bad_rvalue_ref_dynamic_cast_operand);
}

// The check is made at run time, from the object's own type.
static void build_dynamic_cast(a_type* type, an_operand* operand,
                               const a_source_position* position) {
  if (in_constant_expr_kind() && value_is_evaluated()) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_operand saved = *operand;
  an_expr_node* node = make_node_from_operand(operand);
  node->next = nullptr;
  if (is_reference_type(type)) {
    node = glvalue_cast_node(type_pointed_to(type), node);
    set_category_of_reference_cast(type, node);
  } else {
    node = make_operator_node(eok_cast, type, node);
  }
  node->variant.operation.checked_cast = true;
  node->position = *position;
  make_lvalue_or_rvalue_expression_operand(node, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

static void do_dynamic_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  bool is_reference = is_reference_type(type);
  do_operand_transformations(operand, is_reference ? ot_keep_glvalue | ot_keep_array : ot_all);
  if (is_error_operand(operand))
    return;
  an_error_code fault = is_dynamic_cast_target(type)
                            ? fault_of_dynamic_cast_operand(type, operand)
                            : static_cast<an_error_code>(ec_bad_dynamic_cast_type);
  if (fault != 0) {
    error_in_operand(fault, operand);
    return;
  }
  a_type* from = is_reference ? operand->type : type_pointed_to(operand->type);
  a_type* to = type_pointed_to(type);
  if (removes_qualifiers(from, to)) {
    report_lost_qualifiers(operand, "dynamic_cast");
  } else if (cast_identical_types(from, to) || find_base_class_of(from, to)) {
    if (is_reference)
      cast_operand_for_reference_cast(type, operand, rcf_static_cast, position);
    else
      cast_operand_full(type, operand, position, false);
  } else if (!is_polymorphic_class_type(from)) {
    error_in_operand(ec_dynamic_cast_operand_must_be_polymorphic, operand);
  } else if (!rtti_enabled) {
    error_in_operand(ec_dynamic_cast_without_rtti, operand);
  } else {
    build_dynamic_cast(type, operand, position);
  }
}

// ---- The named casts ----

// A class is made of an object of another type by its constructors.
static bool needs_constructor(const a_type* type, const an_operand* operand) {
  return is_class_struct_union_type(type) && !is_error_operand(operand) &&
         !cast_identical_types(const_cast<a_type*>(type), operand->type);
}

static void mark_cast_form(a_token_kind token, const an_operand* operand) {
  if (operand->kind != ok_expression || !is_cast_operation_node(operand->variant.expr))
    return;
  auto& operation = operand->variant.expr->variant.operation;
  operation.is_static_cast = token == tok_static_cast;
  operation.is_const_cast = token == tok_const_cast;
  operation.is_reinterpret_cast = token == tok_reinterpret_cast;
}

static void do_named_cast_to_reference(a_token_kind token, a_type* type, an_operand* operand,
                                       const a_source_position* position) {
  a_reference_cast_form form = token == tok_static_cast  ? rcf_static_cast
                               : token == tok_const_cast ? rcf_const_cast
                                                         : rcf_reinterpret_cast;
  do_operand_transformations(operand, ot_keep_function | ot_keep_array | ot_keep_glvalue |
                                          ot_keep_overload_set);
  if (token == tok_reinterpret_cast && operand->kind == ok_expression &&
      removes_qualifiers(operand->type, type_pointed_to(type)))
    report_lost_qualifiers(operand, "reinterpret_cast");
  else
    cast_operand_for_reference_cast(type, operand, form, position);
}

static void do_named_cast(a_token_kind token, a_type* type, an_operand* operand,
                          const a_source_position* position) {
  if (is_error_type(type)) {
    conv_to_error_operand(operand);
  } else if (token == tok_dynamic_cast) {
    do_dynamic_cast(type, operand, position);
  } else if (is_reference_type(type)) {
    do_named_cast_to_reference(token, type, operand, position);
  } else if (token == tok_const_cast) {
    do_const_cast(type, operand, position);
  } else if (token == tok_reinterpret_cast) {
    do_reinterpret_cast(type, operand, position);
  } else if (is_void_type(type)) {
    do_void_operand_transformations(operand, false);
    cast_operand_to_void(operand);
  } else if (needs_constructor(type, operand)) {
    construct_object_of_operand(operand, type);
  } else {
    do_static_cast(type, operand, position);
  }
  mark_cast_form(token, operand);
}

// `<type>(`; null behind a message that one of the tokens is missing.
static a_type* scan_target_of_named_cast() {
  if (!required_token(tok_lt, ec_exp_lt))
    return nullptr;
  add_stop_token(tok_gt);
  a_type* type = type_name();
  remove_stop_token(tok_gt);
  bool is_complete = required_token(tok_gt, ec_exp_gt) && required_token(tok_lparen, ec_exp_lparen);
  return is_complete ? type : nullptr;
}

void scan_named_cast(an_operand* result) {
  check_stack_limit();
  a_token_kind token = curr_token;
  a_source_position start = pos_curr_token;
  get_token();
  a_type* type = scan_target_of_named_cast();
  if (!type) {
    make_error_operand(result);
    return;
  }
  add_stop_token(tok_rparen);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(result, nullptr, lev_none, sef_float_literal_allowed);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  finish_undefined_symbol_operand(result);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  result->flags.parenthesized = false;
  do_named_cast(token, type, result, &start);
  set_operator_positions(result, &start, &start, &end);
  result->flags.names_variable = false;
}

// ---- type(expression) ----

// `T()` is a zero of its type (C++11 8.5 p8).
static void make_value_initialized_operand(a_type* type, an_operand* result) {
  a_constant zero;
  if (is_void_type(type)) {
    make_integer_constant_operand(0, ik_int, result);
    cast_operand_to_void(result);
    return;
  }
  clear_constant(&zero, con_integer);
  make_zero_of_proper_type(prvalue_type(type), &zero);
  make_constant_operand(&zero, result);
}

static bool check_type_of_functional_cast(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (is_scalar_type(type) || is_void_type(type) || is_reference_type(type) ||
      is_nullptr_type(type) || is_class_struct_union_type(type))
    return true;
  if (!expr_error_should_be_issued())
    return false;
  pos_ty_error(ec_cast_to_bad_type, position, type);
  return false;
}

static bool is_complete_class(a_type* type, const a_source_position* position) {
  bool is_complete = !is_incomplete_type(type);
  if (!is_complete)
    expr_pos_error(ec_incomplete_type_not_allowed, position);
  return is_complete;
}

// `C(arguments)`, at the `(`; the `)` is left.
static void scan_class_construction(a_type* type, an_operand* result,
                                    const a_source_position* start) {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  get_token();
  add_stop_token(tok_rparen);
  ++expr_stack->template_arg_paren_depth;
  while (curr_token != tok_rparen && curr_token != tok_end_of_source) {
    *link = scan_init_component();
    link = &(*link)->next;
    if (!loop_token(tok_comma))
      break;
  }
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  if (is_complete_class(type, start)) {
    make_class_temporary(type, list, start, result);
    check_use_of_destructor(type, start);
  } else {
    make_error_operand(result);
  }
  free_init_component_list(list);
}

// At the `(` behind the type.
static void scan_parenthesized_initializer(a_type* type, an_operand* result,
                                           const a_source_position* start) {
  if (is_class_struct_union_type(type)) {
    scan_class_construction(type, result, start);
    return;
  }
  get_token();
  if (curr_token == tok_rparen) {
    if (is_reference_type(type))
      error_and_make_error_operand(ec_exp_primary_expr, &pos_curr_token, result);
    else
      make_value_initialized_operand(type, result);
    return;
  }
  add_stop_token(tok_rparen);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(result, nullptr, lev_none, sef_no_comma | sef_float_literal_allowed);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  finish_undefined_symbol_operand(result);
  process_explicit_cast(type, result, start);
  if (result->kind == ok_expression && is_cast_operation_node(result->variant.expr))
    result->variant.expr->variant.operation.is_functional_cast = true;
}

// `T{...}`, at the `{` (C++11 5.2.3 p3).
static void scan_list_construction(a_type* type, an_operand* result,
                                   const a_source_position* start) {
  if (is_incomplete_type(type) && !is_error_type(type)) {
    expr_pos_error(ec_incomplete_type_not_allowed, start);
    type = error_type();
  }
  make_list_operand(get_braced_init_list(), type, true, start, result);
  set_operator_positions(result, start, start, &curr_construct_end_position);
  result->flags.names_variable = false;
}

void scan_functional_cast(a_type* type, an_operand* result, const a_source_position* start) {
  check_stack_limit();
  bool is_good = check_type_of_functional_cast(type, start);
  if (is_good && curr_token == tok_lbrace && !is_reference_type(type) && !is_void_type(type)) {
    scan_list_construction(type, result, start);
    return;
  }
  if (is_good && curr_token == tok_lbrace) {
    if (expr_error_should_be_issued())
      pos_st_error(ec_feature_not_allowed_in_current_mode, start, "list initialization");
    is_good = false;
  }
  if (!is_good) {
    flush_until_matching_token();
    make_error_operand(result);
    result->position = *start;
    return;
  }
  scan_parenthesized_initializer(type, result, start);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  set_operator_positions(result, start, start, &end);
  result->flags.names_variable = false;
}

// The type of a simple type specifier that is one keyword; null for another
// token.
a_type* simple_type_of_token(a_token_kind token) {
  switch (token) {
  case tok_char:
    return integer_type(ik_char);
  case tok_short:
    return integer_type(ik_short);
  case tok_int:
  case tok_signed:
    return integer_type(ik_int);
  case tok_unsigned:
    return integer_type(ik_unsigned_int);
  case tok_long:
    return integer_type(ik_long);
  case tok_float:
    return float_type(fk_float);
  case tok_double:
    return float_type(fk_double);
  case tok_void:
    return void_type();
  case tok_bool:
    return bool_type();
  case tok_wchar_t:
    return wchar_t_type();
  case tok_char16_t:
    return char16_t_type();
  case tok_char32_t:
    return char32_t_type();
  default:
    return nullptr;
  }
}
