// Casts, written and implied (C99 6.5.4, 6.3), and conversions as if by
// assignment (C99 6.5.16.1).

#include "class_decl.h"
#include "const_ints.h"
#include "decl_inits.h"
#include "declarator.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "target.h"

static a_fold_context fold_context_here(const a_source_position* position) {
  return {in_constant_expr_kind(), value_is_evaluated(), position, false, false};
}

// ---- Casts between a class and its bases (C++11 4.10 p3, 5.2.9 p11) ----

// A null pointer stays one: the step to a base at an offset must not move it.
static bool may_be_null_pointer(const an_expr_node* node) {
  if (!is_pointer_type(node->type))
    return false;
  bool is_this = node->kind == expr_variable && node->variant.variable.ptr->is_this_parameter;
  return !is_this && !is_operation_node(node, eok_address_of) &&
         !is_operation_node(node, eok_array_to_pointer);
}

an_expr_node* add_base_class_casts(an_expr_node* node, a_base_class* base_class) {
  bool is_checked = may_be_null_pointer(node);
  an_expr_node* cast = base_class_selection_expr(node, base_class);
  if (cast->kind == expr_operation)
    cast->variant.operation.checked_cast = is_checked;
  return cast;
}

an_expr_node* add_derived_class_casts(an_expr_node* node, a_type* type) {
  if (is_error_node(node))
    return node;
  bool is_checked = may_be_null_pointer(node);
  node->next = nullptr;
  an_expr_node* cast = make_operator_node(eok_derived_class_cast, type, node);
  copy_node_value_category(node, cast);
  cast->variant.operation.lvalue_semantics = node->is_lvalue;
  cast->variant.operation.checked_cast = is_checked;
  return cast;
}

// ---- The conversion itself ----

// Pointers to a class and a base of it.
static an_expr_node* add_class_pointer_cast(a_type* type, an_expr_node* node) {
  a_base_class* base_class;
  bool derived_first;
  if (in_C_mode() || !f_related_class_pointers(node->type, type, &base_class, &derived_first) ||
      base_class->is_ambiguous)
    return nullptr;
  if (derived_first)
    return add_base_class_casts(node, base_class);
  return base_class->is_virtual ? nullptr : add_derived_class_casts(node, type);
}

static an_expr_node* make_cast_node(a_type* type, an_expr_node* node, bool is_implicit) {
  if (is_error_node(node))
    return node;
  const a_source_position position = node->position;
  const a_source_range range = node->range;
  an_expr_node* cast = add_class_pointer_cast(type, node);
  if (!cast) {
    node->next = nullptr;
    cast = make_operator_node(eok_cast, type, node);
  } else {
    cast->type = type;
  }
  cast->variant.operation.is_implicit = is_implicit;
  cast->position = position;
  cast->range = range;
  return cast;
}

an_expr_node* add_cast_to_node(a_type* type, an_expr_node* node) {
  if (!cast_identical_types(node->type, type))
    return make_cast_node(type, node, true);
  node->type = type;
  return node;
}

an_expr_node* cast_node(a_type* type, an_expr_node* node) {
  return make_cast_node(type, node, false);
}

static void cast_expression(a_type* type, an_operand* operand, bool is_implicit) {
  an_operand saved = *operand;
  an_expr_node* node = make_node_from_operand(operand);
  make_expression_operand(is_implicit ? add_cast_to_node(type, node) : cast_node(type, node),
                          operand);
  restore_operand_details_for_cast(operand, &saved);
}

// In a template the constant remembers what it was made from.
static void keep_source_of_cast(a_type* type, const an_operand* saved, an_operand* operand) {
  if (!expr_stack->flags.keep_rescan_info)
    return;
  an_operand source = *saved;
  an_expr_node* node = saved->variant.constant.source_expr;
  if (!node)
    node = make_node_from_operand(&source);
  operand->variant.constant.source_expr = add_cast_to_node(type, node);
}

static void cast_constant(a_type* type, an_operand* operand, const a_source_position* position,
                          bool is_implicit) {
  a_fold_context context = fold_context_here(position);
  an_operand saved = *operand;
  type_change_constant_full(&operand->variant.constant, type, !is_implicit, &context);
  if (!context.not_folded) {
    operand->type = operand->variant.constant.type;
    if (operand->variant.constant.kind == con_error)
      conv_to_error_operand(operand);
    else
      keep_source_of_cast(type, &saved, operand);
    return;
  }
  operand->variant.constant = saved.variant.constant;
  if (in_constant_expr_kind() && value_is_evaluated())
    error_in_operand(ec_expr_not_constant, operand);
  else
    cast_expression(type, operand, is_implicit);
}

void cast_operand_to_void(an_operand* operand) {
  if (is_error_operand(operand))
    return;
  an_operand saved = *operand;
  an_expr_node* node = make_node_from_operand(operand);
  node->next = nullptr;
  an_expr_node* cast = make_operator_node(eok_cast, void_type(), node);
  cast->position = node->position;
  set_expr_result_not_used(node);
  make_expression_operand(cast, operand);
  restore_operand_details(operand, &saved);
}

void cast_operand_full(a_type* type, an_operand* operand, const a_source_position* position,
                       bool is_implicit) {
  if (is_error_operand(operand))
    return;
  type = prvalue_type(type);
  if (is_error_type(type)) {
    conv_to_error_operand(operand);
  } else if (is_void_type(type)) {
    if (!is_implicit || !is_void_type(operand->type))
      cast_operand_to_void(operand);
  } else if (operand->kind == ok_indefinite_function) {
    cast_overloaded_function(type, operand);
  } else if (is_implicit && identical_types(type, operand->type)) {
    // Nothing to see.
  } else if (is_constant_operand(operand)) {
    cast_constant(type, operand, position, is_implicit);
  } else {
    cast_expression(type, operand, is_implicit);
  }
}

void cast_operand(a_type* type, an_operand* operand, bool is_implicit) {
  a_source_position position = operand->position;
  cast_operand_full(type, operand, &position, is_implicit);
}

// The functions of an overload set are told apart by the type of a pointer or
// reference to one of them (C++11 13.4).
void cast_overloaded_function(a_type* type, an_operand* operand) {
  a_type* wanted = skip_typerefs(type);
  if (is_pointer_type(wanted) || is_reference_type(wanted))
    wanted = type_pointed_to(wanted);
  for (a_symbol* symbol = first_of_overload_set(operand->symbol); symbol;
       symbol = symbol->next_homonym) {
    a_symbol* function = fundamental_symbol_of(symbol);
    if (function->kind != symk_routine || !identical_types(function->variant.routine->type, wanted))
      continue;
    an_operand saved = *operand;
    make_function_designator_operand(function->variant.routine,
                                     make_ref_entry(srk_reference, function, &saved.position),
                                     operand);
    restore_operand_details(operand, &saved);
    if (!is_reference_type(type))
      conv_function_designator_to_ptr_to_function(operand);
    return;
  }
  report_indeterminate_function(operand);
}

// ---- As if by assignment ----

static an_error_severity c_conversion_severity() {
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// What C lets pass with a message.
static void report_doubtful_conversion(const a_std_conv_descr* descr, const an_operand* operand,
                                       a_type* type, an_error_code code,
                                       const a_source_position* position) {
  bool is_doubtful =
      descr->is_mixed_pointer || descr->is_pointer_integer_mix || descr->drops_qualifiers;
  an_error_severity severity = c_conversion_severity();
  if (!is_doubtful && !(descr->function_object_mix && strict_ansi_mode))
    return;
  if (expr_diagnostic_should_be_issued(severity, code, position))
    pos_ty2_diagnostic(severity, code, position, operand->type, type);
}

// An enumerated type takes the values of its own enumerators.
static void check_enum_mix(const an_operand* operand, a_type* type,
                           const a_source_position* position) {
  if (is_enum_type(type) && is_enum_type(operand->type) &&
      f_skip_typerefs(type) != f_skip_typerefs(operand->type))
    expr_pos_warning(ec_mixed_enum_type, position);
}

bool deprecated_literal_conversion_possible(const an_operand* operand, a_type* type) {
  if (!in_cplusplus_mode() || (strict_ansi_mode && std_version >= 201103) ||
      !operand_is_string_literal(operand) || !is_pointer_type(type))
    return false;
  a_type* pointee = skip_typerefs(type_pointed_to(type));
  return !is_const_qualified_type(type_pointed_to(type)) &&
         pointee == skip_typerefs(make_unqualified_type(array_element_type(operand->type)));
}

static void convert_literal_operand(an_operand* operand, a_type* type,
                                    const a_source_position* position) {
  if (is_character_type(type_pointed_to(type)))
    expr_pos_warning(ec_deprecated_string_conv, position);
  else if (expr_diagnostic_should_be_issued(es_warning, ec_deprecated_string_conv_gen, position))
    pos_ty_warning(ec_deprecated_string_conv_gen, position, type);
  do_operand_transformations(operand, ot_all);
  cast_operand_full(prvalue_type(type), operand, position, true);
}

void prep_conversion_operand(an_operand* operand, a_type* type, an_error_code code,
                             const a_source_position* position) {
  if (deprecated_literal_conversion_possible(operand, type)) {
    convert_literal_operand(operand, type, position);
    return;
  }
  if (is_reference_type(type)) {
    bind_reference_operand(type, operand, code, position);
    return;
  }
  if (is_class_struct_union_type(operand->type) && !is_class_struct_union_type(type) &&
      convert_operand_by_conversion_function(operand, type, false))
    return;
  do_operand_transformations(operand, ot_keep_overload_set);
  if (is_error_operand(operand))
    return;
  type = prvalue_type(type);
  if (is_error_type(type)) {
    conv_to_error_operand(operand);
    return;
  }
  if (operand->kind == ok_indefinite_function) {
    cast_overloaded_function(type, operand);
    return;
  }
  a_std_conv_descr descr;
  if (!impl_conversion_possible(operand->type, false, constant_of_operand(operand), type, &descr)) {
    if (in_cplusplus_mode() && (convert_operand_by_constructor(operand, type) ||
                                convert_operand_by_conversion_function(operand, type, false)))
      return;
    if (expr_error_should_be_issued())
      pos_ty2_error(code, position, operand->type, type);
    conv_to_error_operand(operand);
    return;
  }
  if (in_C_mode()) {
    report_doubtful_conversion(&descr, operand, type, code, position);
    check_enum_mix(operand, type, position);
  }
  if (descr.is_lossy)
    expr_pos_warning(descr.error_code, position);
  check_conversion_to_base(descr.base_class, position);
  cast_operand_full(type, operand, position, true);
}

void prep_initializer_operand(an_operand* operand, a_type* type, an_error_code code) {
  a_source_position position = operand->position;
  prep_conversion_operand(operand, type, code, &position);
}

// ---- Constants ----

void force_operand_to_constant_if_possible(an_operand* operand) {
  if (operand->kind != ok_expression || operand->state != os_prvalue ||
      (!is_pointer_type(operand->type) && !is_reference_type(operand->type)))
    return;
  a_constant constant;
  if (!constant_prvalue_pointer(operand->variant.expr, &constant))
    return;
  an_operand saved = *operand;
  make_constant_operand(&constant, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

bool operand_constant_value(an_operand* operand, a_constant* constant) {
  if (operand_is_string_literal(operand)) {
    copy_constant(operand->variant.expr->variant.constant.ptr, constant);
    return true;
  }
  force_operand_to_constant_if_possible(operand);
  if (!is_constant_operand(operand))
    return false;
  copy_constant(&operand->variant.constant, constant);
  return true;
}

// ---- Cast expressions ----

static void warn_about_pointer_size(a_type* type, const an_operand* operand,
                                    const a_source_position* position) {
  if (!is_pointer_type(operand->type) || !is_integral_or_enum_type(type) || is_bool_type(type) ||
      size_of_type(type) >= size_of_type(operand->type))
    return;
  const a_constant* constant = constant_of_operand(operand);
  bool is_address = constant && constant->kind == con_address;
  expr_pos_warning(is_address ? ec_integer_truncated : ec_pointer_conversion_loses_bits, position);
}

// A type that no value is cast to.
static bool is_bad_cast_target(const a_type* type) {
  return is_class_struct_union_type(type) || is_array_type(type) || is_function_type(type);
}

static void report_bad_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  if (!is_bad_cast_target(type)) {
    error_in_operand(ec_bad_cast, operand);
    return;
  }
  if (expr_error_should_be_issued())
    pos_ty_error(ec_cast_to_bad_type, position, type);
  conv_to_error_operand(operand);
}

// Old GNU C takes the cast of an object to its own class as the object.
static bool is_no_op_class_cast(a_type* type, const an_operand* operand) {
  return gcc_mode && gnu_version <= 39999 && is_glvalue_operand(operand) &&
         is_class_struct_union_type(type) &&
         f_skip_typerefs(type) == f_skip_typerefs(operand->type);
}

static bool is_bit_field_operand(const an_operand* operand) {
  return operand->kind == ok_expression && bit_field_of_node(operand->variant.expr, false);
}

// A cast that only looks at an object in another way.
static bool still_an_lvalue(a_type* type, const an_operand* operand) {
  if (operand->kind != ok_expression || operand->state != os_glvalue ||
      is_bit_field_operand(operand) || in_constant_expr_kind())
    return false;
  if (preserve_lvalues_with_same_type_casts && identical_types(type, operand->type))
    return true;
  return (C_dialect == cd_k_and_r || SVR4_C_mode) && is_scalar_type(type) &&
         is_scalar_type(operand->type) &&
         is_floating_type(type) == is_floating_type(operand->type) &&
         size_of_type(type) == size_of_type(operand->type);
}

static void cast_lvalue(a_type* type, an_operand* operand) {
  an_operand saved = *operand;
  an_expr_node* node = operand->variant.expr;
  node->next = nullptr;
  make_glvalue_expression_operand(make_lvalue_operator_node(eok_lvalue_cast, type, node), operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// Behind the check that the types allow it.
static void cast_operand_special(a_type* type, an_operand* operand,
                                 const a_source_position* position) {
  cast_operand_full(type, operand, position, false);
  if (!is_error_operand(operand) && !is_constant_operand(operand) && in_constant_expr_kind() &&
      value_is_evaluated() && !is_pointer_type(type))
    error_in_operand(ec_expr_not_constant, operand);
}

// Outside of functions the object of a compound literal lives for ever.
static void make_static_literal_operand(a_type* type, a_constant* value,
                                        const a_source_position* start, an_operand* result) {
  a_variable* variable = alloc_variable(sc_static);
  variable->type = type;
  variable->is_compiler_generated = true;
  variable->source_corresp.position = *start;
  variable->init_kind = initk_constant;
  variable->initializer.constant = value;
  add_to_variables_list(variable, 0);
  make_lvalue_variable_operand(variable, nullptr, result);
}

// The object of a compound literal: outside of functions one that lives for ever.
static void make_literal_operand(a_type* type, a_constant* value, a_dynamic_init* init,
                                 const a_source_position* start, an_operand* result) {
  if (depth_innermost_function_scope < 0) {
    make_static_literal_operand(type, value, start, result);
    return;
  }
  if (value) {
    init = alloc_dynamic_init(dik_constant);
    init->variant.constant = value;
  }
  make_temp_init_operand(type, init, true, start, result);
}

// ---- Values of unions, a GNU extension ----

// The member that a value of the operand's type is a value of; null for none.
static const a_field* member_of_operand_type(const a_type* union_type, const an_operand* operand) {
  a_field* field = f_skip_typerefs(union_type)->variant.class_struct_union.fields;
  for (field = next_initializable_field(field); field != nullptr;
       field = next_initializable_field(field->next))
    if (field->source_corresp.symbol != nullptr &&
        f_types_are_compatible(field->type, operand->type, tcf_ignore_top_qualifiers))
      return field;
  return nullptr;
}

// The pointer that a pointer, or a null pointer constant, converts to in silence.
static const a_field* member_for_pointer(const a_type* union_type, const an_operand* operand) {
  a_field* field = f_skip_typerefs(union_type)->variant.class_struct_union.fields;
  for (field = next_initializable_field(field); field != nullptr;
       field = next_initializable_field(field->next)) {
    a_std_conv_descr descr;
    if (field->source_corresp.symbol != nullptr && is_pointer_type(field->type) &&
        impl_pointer_conversion(operand->type, constant_of_operand(operand), field->type, false,
                                &descr))
      return field;
  }
  return nullptr;
}

static void conv_to_union(a_type* type, const a_field* member, an_operand* operand,
                          const a_source_position* position) {
  a_dynamic_init* init = nullptr;
  a_constant* value =
      union_value_of_operand(type, member, operand, depth_innermost_function_scope < 0, &init);
  if (value == nullptr && init == nullptr) {
    conv_to_error_operand(operand);
    return;
  }
  make_literal_operand(type, value, init, position, operand);
  conv_glvalue_to_prvalue(operand);
}

// A value becomes a union through the first member of its type. False when the
// target is no union, or has no such member.
static bool cast_to_union(a_type* type, an_operand* operand, const a_source_position* position) {
  if (!gcc_mode || !is_union_type(type) || is_incomplete_type(type))
    return false;
  const a_field* member = member_of_operand_type(type, operand);
  if (member != nullptr)
    conv_to_union(type, member, operand, position);
  return member != nullptr;
}

bool conv_to_transparent_union(a_type* type, an_operand* operand) {
  if (!is_transparent_union_type(type))
    return false;
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand) || is_class_struct_union_type(operand->type))
    return false;
  const a_field* member = member_of_operand_type(type, operand);
  if (member == nullptr)
    member = member_for_pointer(type, operand);
  a_source_position position = operand->position;
  if (member != nullptr)
    conv_to_union(type, member, operand, &position);
  return member != nullptr;
}

static void cast_to_value(a_type* type, an_operand* operand, const a_source_position* position) {
  a_std_conv_descr descr;
  if (is_class_struct_union_type(operand->type) &&
      convert_operand_by_conversion_function(operand, type, true))
    return;
  conv_glvalue_to_prvalue(operand);
  if (is_error_operand(operand))
    return;
  bool is_same_class = (in_cplusplus_mode() || gcc_mode) && is_class_struct_union_type(type) &&
                       cast_identical_types(type, operand->type);
  if (is_same_class || cast_to_union(type, operand, position))
    return;
  if (in_cplusplus_mode() && is_class_struct_union_type(type) && !is_incomplete_type(type) &&
      !is_abstract_class_type(type)) {
    construct_object_of_operand(operand, type);
    return;
  }
  if (is_bad_cast_target(type) ||
      !expl_conversion_possible(operand->type, constant_of_operand(operand), type, &descr)) {
    report_bad_cast(type, operand, position);
    return;
  }
  if (descr.error_code != 0 && !descr.is_lossy)
    expr_pos_warning(descr.error_code, position);
  if (is_pointer_type(operand->type) && !is_pointer_type(type))
    force_operand_to_constant_if_possible(operand);
  warn_about_pointer_size(type, operand, position);
  cast_operand_special(type, operand, position);
}

void process_explicit_cast(a_type* type, an_operand* operand, const a_source_position* position) {
  finish_bound_function_operand(operand);
  if (is_error_type(type))
    conv_to_error_operand(operand);
  if (is_void_type(type)) {
    do_void_operand_transformations(operand, false);
    cast_operand_to_void(operand);
    return;
  }
  if (is_reference_type(type)) {
    do_operand_transformations(operand, ot_keep_function | ot_keep_array | ot_keep_glvalue |
                                            ot_keep_overload_set);
    cast_operand_for_reference_cast(type, operand, rcf_explicit_cast, position);
    return;
  }
  do_operand_transformations(operand, ot_keep_glvalue | ot_keep_overload_set);
  if (is_error_operand(operand) || is_no_op_class_cast(type, operand))
    return;
  if (still_an_lvalue(type, operand))
    cast_lvalue(type, operand);
  else if (operand->kind == ok_indefinite_function)
    cast_overloaded_function(type, operand);
  else
    cast_to_value(type, operand, position);
  operand->flags.names_variable = false;
}

// C99 6.5.2.5, at the `{`.
void scan_compound_literal(a_type* type, const a_source_position* start, an_operand* result) {
  bool is_static = depth_innermost_function_scope < 0;
  a_dynamic_init* init = nullptr;
  if (in_C_mode() && strict_ansi_mode && std_version < 199901)
    expr_pos_diagnostic(strict_ansi_discretionary_severity, ec_compound_literal_is_nonstandard,
                        start);
  if (is_function_type(type) || is_void_type(type) || is_vla_type(type)) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_bad_compound_literal_type, start, type);
    type = error_type();
  }
  a_constant* value = scan_compound_literal_initializer(&type, is_static, &init);
  if (is_error_type(type) || (!value && !init) || (value && value->kind == con_error)) {
    make_error_operand(result);
    return;
  }
  make_literal_operand(type, value, init, start, result);
  set_operand_range(result, start, &curr_construct_end_position);
}

// Outside strict checking the operand of a cast to an integer in a constant
// expression may be any constant, of floating type too.
static bool takes_any_constant(const a_type* type) {
  return expr_stack->flags.strict_constant && !strict_ansi_mode && expr_stack->kind != ek_pp &&
         expr_stack->kind != ek_normal && is_integral_or_enum_type(type);
}

static void scan_any_constant(an_operand* operand) {
  an_expr_stack_entry entry;
  const an_expr_stack_entry* enclosing = expr_stack;
  push_nested_expr_stack(ek_normal, &entry);
  entry.flags.constant_context = true;
  entry.flags.value_is_evaluated = enclosing->flags.value_is_evaluated;
  entry.flags.in_template_argument_list = enclosing->flags.in_template_argument_list;
  entry.template_arg_paren_depth = enclosing->template_arg_paren_depth;
  scan_expr(operand, nullptr, lev_cast, sef_no_comma | sef_float_literal_allowed);
  do_operand_transformations(operand, ot_all);
  force_operand_to_constant_if_possible(operand);
  operand->ref_entries = nullptr;
  pop_expr_stack();
  if (operand->kind == ok_expression && value_is_evaluated())
    error_in_operand(ec_expr_not_constant, operand);
}

void scan_cast_expression(an_operand* result, const a_source_position* start) {
  check_stack_limit();
  expr_stack->flags.decltype_top_level = false;
  add_stop_token(tok_rparen);
  a_type* type = scan_type_for_cast();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (curr_token == tok_lbrace) {
    scan_compound_literal(type, start, result);
    return;
  }
  uint32_t flags = sef_no_comma | sef_float_literal_allowed;
  if (takes_any_constant(type))
    scan_any_constant(result);
  else
    scan_expr(result, nullptr, lev_cast,
              in_cplusplus_mode() ? flags | sef_keep_bound_function : flags);
  a_source_position end = result->end_position;
  process_explicit_cast(type, result, start);
  set_operator_positions(result, start, start, &end);
}
