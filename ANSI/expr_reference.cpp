// The binding of references (C++11 8.5.3).

#include "expr_int.h"
#include "il.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"

// The object can be seen as one of the referenced type: it has that type, or a
// class derived from it, with no qualifier too many.
static bool is_reference_compatible(a_type* referenced, a_type* type) {
  if (same_type_with_added_qualifiers(type, referenced))
    return true;
  const a_base_class* base_class = find_base_class_of(type, referenced);
  constexpr a_type_qualifier_set counted = tq_const | tq_volatile;
  return base_class && !base_class->is_ambiguous &&
         !(get_type_qualifiers(type) & ~get_type_qualifiers(referenced) & counted);
}

static bool is_bindable_glvalue(const a_type* type, const an_operand* operand) {
  if (operand->kind != ok_expression || bit_field_of_node(operand->variant.expr, false))
    return false;
  if (is_lvalue_reference_type(type))
    return is_a_cplusplus_lvalue(operand);
  return is_an_xvalue(operand) || operand->state == os_function_designator;
}

// A reference to const, and an rvalue reference, bind to a temporary that holds
// the converted value.
static bool may_bind_to_temporary(const a_type* type) {
  if (is_rvalue_reference_type(type))
    return true;
  constexpr a_type_qualifier_set counted = tq_const | tq_volatile;
  return (get_type_qualifiers(type_pointed_to(type)) & counted) == tq_const;
}

static bool has_referenced_type(a_type* referenced, const an_operand* operand) {
  return cast_identical_types(operand->type, referenced) &&
         !(operand->kind == ok_expression && bit_field_of_node(operand->variant.expr, false));
}

static void report_bad_binding(a_type* type, an_operand* operand, an_error_code code,
                               const a_source_position* position) {
  a_type* referenced = type_pointed_to(type);
  bool is_same = has_referenced_type(referenced, operand);
  if (!expr_error_should_be_issued()) {
    // The entry has noted it.
  } else if (is_rvalue_reference_type(type) && is_same && is_a_cplusplus_lvalue(operand)) {
    pos_error(ec_rvalue_reference_bound_to_lvalue, position);
  } else if (is_same && is_a_cplusplus_lvalue(operand)) {
    pos_ty2_error(ec_qualifier_dropped_in_ref_init, position, type, operand->type);
  } else if (is_a_cplusplus_lvalue(operand)) {
    pos_ty2_error(code, position, operand->type, type);
  } else {
    pos_error(ec_bad_nonconst_ref_init, position);
  }
  conv_to_error_operand(operand);
}

void check_conversion_to_base(const a_base_class* base, const a_source_position* position) {
  if (base && !have_access_to_base_class(base) && expr_error_should_be_issued())
    pos_ty_error(ec_inaccessible_base_class, position, base->type);
}

static an_expr_node* node_of_referenced_object(a_type* referenced, an_expr_node* node,
                                               const a_source_position* position) {
  a_base_class* base_class = cast_identical_types(node->type, referenced)
                                 ? nullptr
                                 : find_base_class_of(node->type, referenced);
  check_conversion_to_base(base_class, position);
  return base_class ? add_base_class_casts(node, base_class) : node;
}

// The value becomes an object, which lives as long as the reference or the full
// expression does (C++11 12.2).
static an_expr_node* make_temporary_object(an_operand* operand) {
  an_expr_node* value = make_node_from_operand(operand);
  an_expr_node* object = value;
  if (value->kind != expr_temp_init) {
    bool is_class = is_class_struct_union_type(value->type);
    a_dynamic_init* init = alloc_dynamic_init(is_class ? dik_class_expr : dik_expr);
    init->is_temporary = true;
    init->variant.expr = value;
    object = alloc_expr_node(expr_temp_init);
    object->type = value->type;
    object->position = value->position;
    object->variant.dynamic_init = init;
  }
  object->is_lvalue = true;
  return object;
}

static void bind_to_temporary(a_type* type, an_operand* operand, an_error_code code,
                              const a_source_position* position) {
  a_type* referenced = type_pointed_to(type);
  bool is_whole_array =
      is_array_type(referenced) && cast_identical_types(referenced, operand->type);
  // An object of the class, or of one derived from it, is bound to as it is.
  bool is_bound_itself = is_class_struct_union_type(operand->type) &&
                         is_reference_compatible(referenced, operand->type);
  if (!is_whole_array && !is_bound_itself)
    prep_conversion_operand(operand, make_unqualified_type(referenced), code, position);
  if (is_error_operand(operand))
    return;
  an_operand saved = *operand;
  an_expr_node* object = make_temporary_object(operand);
  if (is_bound_itself)
    object = node_of_referenced_object(referenced, object, position);
  an_expr_node* reference = add_reference_to_to_node(object);
  reference->type = type;
  make_expression_operand(reference, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

// Whether what doesn't bind itself may be copied: an object of the very type
// that is out of reach for its qualifiers or its category may not.
static bool needs_temporary(a_type* type, const an_operand* operand) {
  return may_bind_to_temporary(type) &&
         !(has_referenced_type(type_pointed_to(type), operand) && is_a_cplusplus_lvalue(operand));
}

void bind_reference_operand(a_type* type, an_operand* operand, an_error_code code,
                            const a_source_position* position) {
  do_operand_transformations(operand, ot_keep_function | ot_keep_array | ot_keep_glvalue |
                                          ot_keep_overload_set);
  if (operand->kind == ok_indefinite_function)
    cast_overloaded_function(type, operand);
  if (is_error_operand(operand))
    return;
  a_type* referenced = type_pointed_to(type);
  if (is_class_struct_union_type(operand->type))
    convert_operand_for_reference(operand, type);
  if (is_error_operand(operand))
    return;
  if (!is_bindable_glvalue(type, operand) || !is_reference_compatible(referenced, operand->type)) {
    if (needs_temporary(type, operand)) {
      bind_to_temporary(type, operand, code, position);
      return;
    }
    report_bad_binding(type, operand, code, position);
    return;
  }
  an_operand saved = *operand;
  change_unmarked_ref_kinds(operand->ref_entries, srk_address_taken);
  an_expr_node* object = node_of_referenced_object(referenced, operand->variant.expr, position);
  an_expr_node* reference = add_reference_to_to_node(object);
  reference->type = type;
  make_expression_operand(reference, operand);
  restore_operand_details_incl_ref(operand, &saved);
}
