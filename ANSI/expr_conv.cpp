// Conversions that operands undergo without being asked (C99 6.3), and the
// checks of the class of an operand's type.

#include "const_ints.h"
#include "expr_int.h"
#include "il.h"
#include "il_statements.h"
#include "mode_words.h"
#include "overload.h"
#include "target.h"

a_type* boolean_result_type() {
  return in_cplusplus_mode() ? bool_type() : integer_type(ik_int);
}

// A class keeps its qualifiers in C++ (C++11 3.10 p4).
a_type* prvalue_type(a_type* type) {
  if (in_cplusplus_mode() && is_class_struct_union_type(type))
    return type;
  return make_unqualified_type(type);
}

// ---- Arrays and functions (C99 6.3.2.1 p3, p4) ----

void do_array_to_pointer_conversion(an_operand* operand) {
  if (is_error_operand(operand) || operand->kind != ok_expression)
    return;
  an_operand saved = *operand;
  an_expr_node* node = operand->variant.expr;
  a_type* type = type_after_array_to_pointer_transformation(operand->type);
  node->next = nullptr;
  an_expr_node* pointer = make_operator_node(eok_array_to_pointer, type, node);
  pointer->variant.operation.is_implicit = true;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  make_expression_operand(pointer, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// The designator `*p` gives back p.
static an_expr_node* pointer_to_designated_function(an_expr_node* designator) {
  if (designator->kind == expr_routine)
    return function_rvalue_expr(designator->variant.routine.ptr);
  if (is_operation_node(designator, eok_indirect)) {
    an_expr_node* pointer = designator->variant.operation.operands;
    pointer->next = nullptr;
    return pointer;
  }
  return add_address_of_to_node(designator);
}

void conv_function_designator_to_ptr_to_function(an_operand* operand) {
  if (operand->state != os_function_designator || operand->kind != ok_expression)
    return;
  an_operand saved = *operand;
  an_expr_node* designator = operand->variant.expr;
  an_expr_node* pointer = pointer_to_designated_function(designator);
  pointer->position = designator->position;
  pointer->range = designator->range;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  make_expression_operand(pointer, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// ---- The value of an object (C99 6.3.2.1 p2) ----

// The value of a const variable counts as a constant: in C++ (C++11 5.19), and
// as an extension in GNU C.
static bool const_variables_count() {
  if (in_cplusplus_mode())
    return expr_stack->flags.constant_context || expr_stack->flags.const_variables_count;
  return gcc_mode && expr_stack->flags.constant_context && expr_stack->kind != ek_normal;
}

static bool is_constant_variable_type(const a_variable* variable) {
  const a_type* type = variable->type;
  if (is_volatile_qualified_type(type))
    return false;
  if (variable->is_constexpr)
    return is_scalar_type(type);
  return is_const_qualified_type(type) && is_integral_or_enum_type(type);
}

static bool constant_value_of_variable(const an_expr_node* node, a_constant* constant) {
  if (node->kind != expr_variable || !const_variables_count())
    return false;
  a_variable* variable = node->variant.variable.ptr;
  if (!is_constant_variable_type(variable))
    return false;
  const a_constant* value = initializer_constant(variable, nullptr);
  if (!value || (value->kind != con_integer && value->kind != con_float))
    return false;
  copy_constant(value, constant);
  constant->type = prvalue_type(node->type);
  constant->next = nullptr;
  return true;
}

// A member or an element of a constexpr object (C++11 5.19 p2).
static bool constant_part_of_object(an_expr_node* node, a_constant* constant) {
  a_constant address;
  if (!constexpr_enabled || node->kind != expr_operation || !const_variables_count() ||
      !is_scalar_type(node->type) || !constant_glvalue_address(node, &address) ||
      address.kind != con_address || address.value.address.base_kind != abk_variable ||
      !address.value.address.base.variable->is_constexpr)
    return false;
  address.type = make_pointer_type(node->type); // of the part
  return constant_value_at_address(&address, constant);
}

// A character of a string literal, in C++ (C++11 5.19 p2).
static bool is_element_of_literal(an_expr_node* node, const a_constant** literal, uint64_t* index) {
  a_constant address;
  if (!constexpr_enabled || !is_integral_or_enum_type(node->type) || node->kind != expr_operation ||
      !constant_glvalue_address(node, &address) || address.kind != con_address ||
      address.value.address.base_kind != abk_constant)
    return false;
  *literal = address.value.address.base.constant;
  *index = static_cast<uint64_t>(address.value.address.offset);
  return (*literal)->kind == con_string && *index < (*literal)->value.string.length &&
         size_of_type(node->type) == 1;
}

static bool constant_element_of_literal(an_expr_node* node, a_constant* constant) {
  const a_constant* literal;
  uint64_t index;
  if (!in_constant_expr_kind() || !is_element_of_literal(node, &literal, &index))
    return false;
  auto byte = static_cast<unsigned char>(literal->value.string.text[index]);
  an_integer_kind kind = int_kind_of(node->type);
  clear_constant(constant, con_integer);
  constant->type = prvalue_type(node->type);
  constant->value.int_value = truncate_integer_value(byte, kind);
  return true;
}

// A glvalue's node, read: a constant when its value is known, or the node
// itself, which becomes a value.
static an_expr_node* conv_glvalue_expr_to_prvalue(an_expr_node* node, bool* is_folded,
                                                  a_constant* constant) {
  *is_folded = constant_value_of_variable(node, constant) ||
               constant_element_of_literal(node, constant) ||
               constant_part_of_object(node, constant);
  if (*is_folded)
    return node;
  bool is_volatile = is_volatile_qualified_type(node->type);
  node->type = prvalue_type(node->type);
  node->is_lvalue = false;
  node->is_xvalue = false;
  node->is_volatile_access |= is_volatile;
  if (node->kind == expr_operation)
    node->variant.operation.lvalue_semantics = false;
  return node;
}

static void use_constant_value(const a_constant* constant, an_operand* operand) {
  an_operand saved = *operand;
  if (in_C_mode() && value_is_evaluated())
    expr_pos_warning(ec_const_var_in_C_const_expr, &operand->position);
  for (a_ref_entry* entry = operand->ref_entries; entry; entry = entry->next_for_operand)
    entry->kind |= srk_folded;
  make_constant_operand(constant, operand);
  restore_operand_details(operand, &saved);
}

void conv_glvalue_to_prvalue(an_operand* operand) {
  if (!is_glvalue_operand(operand) || operand->kind != ok_expression)
    return;
  change_unmarked_ref_kinds(operand->ref_entries, srk_value_read);
  if (is_incomplete_type(operand->type) && !is_void_type(operand->type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
    return;
  }
  bool is_folded;
  a_constant constant;
  an_expr_node* node = conv_glvalue_expr_to_prvalue(operand->variant.expr, &is_folded, &constant);
  if (is_folded) {
    use_constant_value(&constant, operand);
    return;
  }
  if (expr_stack->flags.strict_constant) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_operand saved = *operand;
  make_expression_operand(node, operand);
  restore_operand_details(operand, &saved);
  rule_out_expr_kinds(rule_out_integral_constant | rule_out_constant, operand);
}

// ---- References (C++11 8.3.2) ----

// A named reference gives an lvalue, whatever its kind (C++11 5.1.1 p8, 5.2.5 p4).
static bool is_named_reference(const an_operand* operand) {
  if (operand->kind != ok_expression)
    return true;
  const an_expr_node* node = operand->variant.expr;
  return node->kind == expr_variable ||
         (node->kind == expr_operation && (node->variant.operation.op == eok_dot_field ||
                                           node->variant.operation.op == eok_arrow_field));
}

// The operand is a reference, of which the object is wanted.
void add_reference_indirection(an_operand* operand) {
  if (is_error_operand(operand) || !is_reference_type(operand->type))
    return;
  if (expr_stack->flags.strict_constant) {
    error_in_operand(ec_expr_not_constant, operand);
    return;
  }
  an_operand saved = *operand;
  bool is_rvalue = is_rvalue_reference_type(operand->type);
  an_expr_node* object = add_ref_indirection_to_node(make_node_from_operand(operand));
  bool is_xvalue = is_rvalue && !is_function_type(object->type) && !is_named_reference(&saved);
  if (!is_error_node(object)) {
    object->is_xvalue = is_xvalue;
    object->is_lvalue = !is_xvalue;
  }
  if (is_lhsref_type(object->type))
    make_lhsref_expression_operand(object, operand);
  else
    make_glvalue_expression_operand(object, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// ---- All of them ----

void eliminate_unusual_operand_kinds(an_operand* operand) {
  do_operand_transformations(operand, ot_keep_function | ot_keep_array | ot_keep_glvalue);
}

static bool array_decays(const an_operand* operand) {
  return is_glvalue_operand(operand) || in_cplusplus_mode() || std_version > 199900 || gcc_mode;
}

a_symbol* first_of_overload_set(a_symbol* symbol) {
  return symbol->kind == symk_overloaded_function ? symbol->variant.overload_list : symbol;
}

void report_indeterminate_function(an_operand* operand) {
  if (expr_error_should_be_issued())
    pos_sy_error(ec_indeterminate_overloaded_function, &operand->position, operand->symbol);
  conv_to_error_operand(operand);
}

// A set of one function means that one.
static void resolve_indefinite_function(an_operand* operand) {
  a_symbol* symbol = first_of_overload_set(operand->symbol);
  a_symbol* function = symbol ? fundamental_symbol_of(symbol) : nullptr;
  if (!function || symbol->next_homonym || function->kind != symk_routine) {
    report_indeterminate_function(operand);
    return;
  }
  an_operand saved = *operand;
  a_ref_entry* ref = make_ref_entry(srk_reference, function, &saved.position);
  make_function_designator_operand(function->variant.routine, ref, operand);
  restore_operand_details(operand, &saved);
}

// A nonstatic member needs an object (C++11 5.1.1 p13).
static void finish_member_operand(an_operand* operand) {
  if (expr_error_should_be_issued())
    pos_error(ec_member_ref_requires_object, &operand->position);
  conv_to_error_operand(operand);
}

void do_operand_transformations(an_operand* operand, unsigned mask) {
  if (operand->kind == ok_undefined_symbol)
    finish_undefined_symbol_operand(operand);
  normalize_error_operand(operand);
  if (is_error_operand(operand))
    return;
  if (is_array_type(operand->type)) {
    if (!(mask & ot_keep_array) && array_decays(operand))
      do_array_to_pointer_conversion(operand);
  } else if (!(mask & ot_keep_glvalue)) {
    conv_glvalue_to_prvalue(operand);
  }
  if (operand->kind == ok_indefinite_function && !(mask & ot_keep_overload_set))
    resolve_indefinite_function(operand);
  if (operand->kind == ok_braced_list)
    error_in_operand(ec_braced_init_list_not_allowed, operand);
  else if (operand->kind == ok_sym_for_member && !(mask & ot_keep_member))
    finish_member_operand(operand);
  if (operand->state == os_function_designator && !(mask & ot_keep_function))
    conv_function_designator_to_ptr_to_function(operand);
}

// In C++ the value of what is discarded is read only where that is a volatile
// access by name or through a pointer (C++11 5 p11).
static bool is_read_when_discarded(const an_operand* operand) {
  bool is_old = std_version < 201103 && !gnu_mode && !implicit_microsoft_cpp11_mode;
  if (is_old || operand->kind != ok_expression || !is_glvalue_operand(operand) ||
      !is_volatile_qualified_type(operand->type))
    return false;
  const an_expr_node* node = operand->variant.expr;
  return node->kind == expr_variable ||
         (node->kind == expr_operation && node->variant.operation.op != eok_assign);
}

void do_void_operand_transformations(an_operand* operand, bool keep_glvalue) {
  unsigned mask = keep_glvalue ? ot_keep_glvalue : ot_all;
  if (in_cplusplus_mode())
    mask = is_read_when_discarded(operand) ? ot_keep_function | ot_keep_array
                                           : ot_keep_function | ot_keep_array | ot_keep_glvalue;
  do_operand_transformations(operand, mask);
}

// ---- Promotions (C99 6.3.1.1) ----

static bool passes_bit_field_on(an_expr_operator_kind op) {
  return is_assignment_operator(op) || is_increment_operator(op) || op == eok_parens;
}

a_field* field_of_selection(const an_expr_node* node) {
  if (!is_operation_node(node, eok_dot_field) && !is_operation_node(node, eok_arrow_field))
    return nullptr;
  return node->variant.operation.operands->next->variant.field.ptr;
}

a_field* bit_field_of_node(const an_expr_node* node, bool through_operators) {
  while (node->kind == expr_operation) {
    an_expr_operator_kind op = node->variant.operation.op;
    an_expr_node* first = node->variant.operation.operands;
    if (a_field* field = field_of_selection(node))
      return field->is_bit_field ? field : nullptr;
    if (!through_operators)
      return nullptr;
    if (op == eok_comma)
      node = first->next;
    else if (passes_bit_field_on(op))
      node = first;
    else
      return nullptr;
  }
  return nullptr;
}

a_type* operand_type_after_integral_promotion(const an_operand* operand) {
  if (operand->kind == ok_expression && C_dialect != cd_k_and_r) {
    a_field* field = bit_field_of_node(operand->variant.expr, true);
    if (field)
      return type_after_bit_field_promotion(operand->type, field->bit_size);
  }
  a_type* type = type_after_integral_promotion(operand->type);
  return in_C_mode() && is_enum_type(type) ? integer_type(int_kind_of(type)) : type;
}

void promote_operand(an_operand* operand) {
  if (!is_error_operand(operand) && is_integral_or_enum_type(operand->type))
    cast_operand(operand_type_after_integral_promotion(operand), operand, true);
}

void arg_default_promote_operand(an_operand* operand, bool) {
  do_operand_transformations(operand, ot_all);
  if (is_error_operand(operand))
    return;
  if (is_array_type(operand->type)) {
    bool is_reported = !gcc_mode || strict_ansi_mode;
    if (is_reported)
      expr_pos_diagnostic(es_discretionary_error, ec_bad_rvalue_array, &operand->position);
    do_array_to_pointer_conversion(operand);
  } else if (is_integral_or_enum_type(operand->type)) {
    promote_operand(operand);
  } else if (is_incomplete_type(operand->type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
  } else if (is_floating_type(operand->type)) {
    cast_operand(default_argument_promotion(operand->type), operand, true);
  }
}

// ---- Usual arithmetic conversions (C99 6.3.1.8) ----

a_type* determine_arithmetic_conversions(const an_operand* left, const an_operand* right) {
  if (is_error_operand(left) || is_error_operand(right))
    return error_type();
  return usual_arithmetic_conversions(operand_type_after_integral_promotion(left),
                                      operand_type_after_integral_promotion(right));
}

void change_binary_operand_types(a_type* type, an_operand* left, an_operand* right) {
  cast_operand(type, left, true);
  cast_operand(type, right, true);
}

// ---- Checks of the class of a type ----

static bool check_class_of_operand(bool is_good, an_error_code code, an_operand* operand) {
  if (is_error_operand(operand))
    return false;
  if (!is_good)
    error_in_operand(code, operand);
  return is_good;
}

static bool scoped_enums_exist() {
  return in_cplusplus_mode() && (std_version > 201100 || implicit_microsoft_cpp11_mode);
}

static an_error_code choose_code(an_error_code plain, an_error_code with_enum,
                                 an_error_code with_unscoped_enum) {
  if (il_header.enum_type_is_integral)
    return plain;
  return scoped_enums_exist() ? with_unscoped_enum : with_enum;
}

bool check_integral_or_enum_operand(an_operand* operand) {
  return check_class_of_operand(is_integral_or_enum_type(operand->type),
                                choose_code(ec_expr_not_integral, ec_expr_not_integral_or_enum,
                                            ec_expr_not_integral_or_unscoped_enum),
                                operand);
}

bool check_arithmetic_or_enum_operand(an_operand* operand) {
  return check_class_of_operand(is_arithmetic_or_enum_type(operand->type),
                                choose_code(ec_expr_not_arithmetic, ec_expr_not_arithmetic_or_enum,
                                            ec_expr_not_arithmetic_or_unscoped_enum),
                                operand);
}

bool check_scalar_operand(an_operand* operand) {
  return check_class_of_operand(is_scalar_type(operand->type),
                                choose_code(ec_expr_not_scalar,
                                            ec_expr_not_arithmetic_or_enum_or_pointer,
                                            ec_expr_not_arithmetic_or_unscoped_enum_or_pointer),
                                operand);
}

void check_boolean_controlling_expr(an_operand* operand) {
  if (is_class_struct_union_type(operand->type))
    convert_operand_to_bool(operand);
  do_operand_transformations(operand, ot_all);
  check_scalar_operand(operand);
}

// C99 6.3.2.1 p1.
static bool is_modifiable_type(a_type* type) {
  if (is_const_qualified_type(type) || is_array_type(type) || is_incomplete_type(type))
    return false;
  a_type* bare = skip_typerefs(type);
  return !is_class_struct_union_kind(bare->kind) || in_cplusplus_mode() ||
         !bare->variant.class_struct_union.any_const_fields;
}

bool check_modifiable_lvalue_operand(an_operand* operand) {
  if (is_error_operand(operand))
    return false;
  bool is_lvalue = operand->state == os_glvalue && !is_an_xvalue(operand);
  if (is_lvalue && is_modifiable_type(operand->type))
    return true;
  bool is_const_object = is_lvalue && is_const_qualified_type(operand->type) &&
                         !is_array_type(operand->type) && !is_incomplete_type(operand->type);
  if (gcc_mode && is_const_object) {
    expr_pos_diagnostic(es_discretionary_error, ec_expr_not_a_modifiable_lvalue,
                        &operand->position);
    return true;
  }
  error_in_operand(ec_expr_not_a_modifiable_lvalue, operand);
  return false;
}
