// Subscripts and the selection of members (C99 6.5.2.1, 6.5.2.3).

#include "class_decl.h"
#include "const_ints.h"
#include "expr_int.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"

// ---- [] ----

// The element of an array of known bound that a constant index names.
static void check_subscript_range(const an_operand* index, uint64_t bound) {
  const a_constant* constant = constant_of_operand(index);
  if (!constant || constant->kind != con_integer || bound == 0 || !value_is_evaluated())
    return;
  bool is_negative = cmplit_integer_constant(constant, 0) < 0;
  // One past the end is a place, if no element.
  if (is_negative || cmpulit_integer_constant(constant, bound) > 0)
    expr_pos_warning(ec_subscript_out_of_range, &index->position);
}

static uint64_t bound_of_operand(const an_operand* operand) {
  return is_array_type(operand->type) ? num_array_elements(operand->type) : 0;
}

static bool prepare_subscript_operands(an_operand* pointer, an_operand* index) {
  if (!is_pointer_type(pointer->type)) {
    error_in_operand(ec_expr_not_pointer_to_object, pointer);
    return false;
  }
  a_type* element = type_pointed_to(pointer->type);
  bool is_object = is_void_type(element) ? gnu_mode : !is_function_type(element);
  if (!is_object || (is_incomplete_type(element) && !is_void_type(element))) {
    error_in_operand(is_object ? ec_incomplete_type_not_allowed : ec_expr_not_pointer_to_object,
                     pointer);
    return false;
  }
  return check_integral_or_enum_operand(index);
}

void do_subscript(an_operand* left, an_operand* index, const a_source_position* operator_position,
                  const a_source_position* end) {
  bool is_reversed = !is_array_type(left->type) && !is_pointer_type(left->type) &&
                     (is_array_type(index->type) || is_pointer_type(index->type));
  an_operand* pointer = is_reversed ? index : left;
  an_operand* integer = is_reversed ? left : index;
  a_source_position start = left->position;
  uint64_t bound = bound_of_operand(pointer);
  do_operand_transformations(left, ot_all);
  do_operand_transformations(index, ot_all);
  if (is_error_operand(left) || is_error_operand(index) ||
      !prepare_subscript_operands(pointer, integer)) {
    make_error_operand(left);
  } else {
    check_subscript_range(integer, bound);
    promote_operand(integer);
    // The array's address goes nowhere else.
    change_ref_kinds(pointer->ref_entries, srk_value_read);
    an_expr_node* first = make_node_from_operand(left);
    first->next = make_node_from_operand(index);
    first->next->next = nullptr;
    an_expr_node* node =
        make_lvalue_operator_node(eok_subscript, type_pointed_to(pointer->type), first);
    node->variant.operation.operands_reversed = is_reversed;
    make_glvalue_expression_operand(node, left);
  }
  set_operator_positions(left, &start, operator_position, end);
}

void scan_subscript(an_operand* operand) {
  check_stack_limit();
  a_source_position position = pos_curr_token;
  an_operand index;
  get_token();
  add_stop_token(tok_rbracket);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(&index, nullptr, lev_none, 0);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rbracket);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rbracket, ec_exp_rbracket);
  do_subscript(operand, &index, &position, &end);
}

// ---- . and -> ----

a_field* scan_member_name(a_type* class_type) {
  if (curr_token != tok_identifier) {
    required_token_no_advance(tok_identifier, ec_exp_field_name);
    return nullptr;
  }
  a_symbol_locator locator = locator_for_curr_id;
  locator.symbol = nullptr;
  a_source_position position = pos_curr_token;
  get_token();
  if (locator.is_error_locator || is_error_type(class_type))
    return nullptr;
  a_type* bare = skip_typerefs(class_type);
  a_symbol* symbol = class_qualified_id_lookup(&locator, bare, ilo_none);
  if (!symbol || symbol->kind != symk_field) {
    if (expr_error_should_be_issued())
      pos_stsy_error(ec_not_a_field, &position, locator.header->identifier,
                     bare->source_corresp.symbol);
    return nullptr;
  }
  record_symbol_reference(srk_reference, symbol, &position, expr_stack->flags.references_count);
  return symbol->variant.field;
}

static void select_direct_field(an_operand* operand, a_field* field, bool is_arrow) {
  an_operand saved = *operand;
  an_expr_node* object = make_node_from_operand(operand);
  object->next = nullptr;
  an_expr_node* node;
  if (is_arrow || operand->state == os_glvalue)
    node = field_lvalue_selection_expr(object, field);
  else
    node = field_rvalue_selection_expr(object, field);
  make_lvalue_or_rvalue_expression_operand(node, operand);
  normalize_error_operand(operand);
  restore_operand_details_incl_ref(operand, &saved);
  operand->flags.parenthesized = false;
}

void select_field(an_operand* operand, a_field* field, bool is_arrow) {
  a_type* class_type = is_arrow ? type_pointed_to(operand->type) : operand->type;
  while (a_field* around = anonymous_field_around(field, skip_typerefs(class_type))) {
    select_direct_field(operand, around, is_arrow);
    class_type = around->type;
    is_arrow = false;
  }
  select_direct_field(operand, field, is_arrow);
}

// The class in which the member is looked for; null after an error.
static a_type* class_of_selection(an_operand* operand, bool is_arrow) {
  a_type* type = operand->type;
  if (is_arrow) {
    if (!is_pointer_type(type) || !is_class_struct_union_type(type_pointed_to(type))) {
      error_in_operand(in_C_mode() ? ec_expr_not_ptr_to_struct_or_union : ec_expr_not_ptr_to_class,
                       operand);
      return nullptr;
    }
    type = type_pointed_to(type);
  } else if (!is_class_struct_union_type(type)) {
    error_in_operand(in_C_mode() ? ec_expr_not_struct_or_union : ec_expr_not_class, operand);
    return nullptr;
  }
  if (is_incomplete_type(type)) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
    return nullptr;
  }
  return type;
}

void scan_field_selection(an_operand* operand) {
  bool is_arrow = curr_token == tok_arrow;
  a_source_position start = operand->position, position = pos_curr_token;
  get_token();
  a_source_position end = end_pos_curr_token;
  if (is_arrow) {
    do_operand_transformations(operand, ot_all);
    change_ref_kinds(operand->ref_entries, srk_value_read);
    operand->ref_entries = nullptr;
  } else {
    do_operand_transformations(operand, ot_keep_glvalue | ot_keep_array | ot_keep_function);
  }
  a_type* class_type = is_error_operand(operand) ? nullptr : class_of_selection(operand, is_arrow);
  a_field* field = scan_member_name(class_type ? class_type : error_type());
  if (field && class_type)
    select_field(operand, field, is_arrow);
  else
    conv_to_error_operand(operand);
  set_operator_positions(operand, &start, &position, &end);
}
