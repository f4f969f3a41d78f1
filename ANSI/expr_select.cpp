// Subscripts and the selection of members (C99 6.5.2.1, 6.5.2.3; C++11 5.2.5,
// 5.5).

#include "class_decl.h"
#include "const_ints.h"
#include "expr_operator.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "templates.h"

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

// The index, behind the `[`; reads the `]`.
static void scan_index(an_operand* index, a_source_position* end) {
  add_stop_token(tok_rbracket);
  ++expr_stack->template_arg_paren_depth;
  scan_expr(index, nullptr, lev_none, 0);
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rbracket);
  *end = end_pos_curr_token;
  required_token(tok_rbracket, ec_exp_rbracket);
}

void scan_subscript(an_operand* operand) {
  check_stack_limit();
  an_operator_place place = place_of_curr_token();
  a_source_position start = operand->position, end;
  an_operand index;
  get_token();
  if (curr_token == tok_lbracket && in_cplusplus_mode() && std_attributes_enabled)
    expr_pos_error(ec_must_introduce_attribute, &place.position);
  scan_index(&index, &end);
  if (operator_is_overloaded(&place, operand, &index, operand))
    set_operator_positions(operand, &start, &place.position, &end);
  else
    do_subscript(operand, &index, &place.position, &end);
}

void scan_offsetof_subscript(an_operand* operand) {
  a_source_position position = pos_curr_token, end;
  an_operand index;
  get_token();
  scan_index(&index, &end);
  if (in_cplusplus_mode() && is_class_struct_union_type(operand->type))
    error_in_operand(ec_no_overloaded_subscript_with_offsetof, operand);
  do_subscript(operand, &index, &position, &end);
}

// ---- . and -> ----

static a_symbol* look_up_member(a_symbol_locator* locator, a_type* class_type) {
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (locator->is_destructor_name)
    return info ? info->destructor : nullptr;
  if (locator->is_conversion_name)
    return conversion_functions_to(class_type, locator->conversion_type);
  return class_qualified_id_lookup(locator, class_type, ilo_none);
}

static a_symbol* report_no_member(const a_symbol_locator* locator, const a_type* class_type) {
  if (expr_error_should_be_issued())
    pos_stsy_error(in_C_mode() ? ec_not_a_field : ec_not_a_member, &locator->position,
                   locator->header->identifier, class_type->source_corresp.symbol);
  return nullptr;
}

// The class that a qualifier names is that of the object or a base of it.
static a_symbol* scan_qualified_member(a_type* class_type, a_symbol** found) {
  a_symbol* symbol = coalesce_and_lookup_qualified_name(ilo_none);
  a_symbol_locator locator = locator_for_curr_id;
  *found = locator.symbol;
  get_token();
  if (locator.is_error_locator)
    return nullptr;
  const a_type* named = locator.is_class_qualified ? locator.qualifier.class_type : nullptr;
  if (!symbol || !named || (named != class_type && !is_derived_class(class_type, named)))
    return report_no_member(&locator, class_type);
  return symbol;
}

// What the lookup found tells the way to the member, which its access depends on.
static void check_access_to_found_member(a_symbol* found, a_symbol* member, a_type* class_type,
                                         const a_source_position* position) {
  if (!found)
    found = member;
  a_type* naming_class = found->is_class_member ? found->parent.class_type : class_type;
  check_access_to_symbol(found, naming_class ? naming_class : class_type, class_type, position);
}

static bool at_name_of_member(a_type* class_type) {
  if (in_cplusplus_mode() && curr_token == tok_operator)
    fold_operator_name();
  else if (in_cplusplus_mode() && curr_token == tok_compl && !is_error_type(class_type))
    fold_destructor_name(class_type);
  return curr_token == tok_identifier;
}

// The symbol behind the token of a member's name; null after an error.
static a_symbol* scan_member_symbol(a_type* class_type, bool* is_qualified) {
  a_type* bare = skip_typerefs(class_type);
  a_source_position position = pos_curr_token;
  *is_qualified = in_cplusplus_mode() && curr_token == tok_identifier &&
                  next_token() == tok_colon_colon && !is_error_type(bare);
  a_symbol* symbol;
  a_symbol* found;
  if (*is_qualified) {
    symbol = scan_qualified_member(bare, &found);
    if (!symbol)
      return nullptr;
  } else {
    if (!at_name_of_member(bare)) {
      required_token_no_advance(tok_identifier,
                                in_C_mode() ? ec_exp_field_name : ec_exp_member_name);
      return nullptr;
    }
    a_symbol_locator locator = locator_for_curr_id;
    locator.symbol = nullptr;
    get_token();
    if (locator.is_error_locator || is_error_type(bare))
      return nullptr;
    symbol = look_up_member(&locator, bare);
    found = locator.symbol;
    if (!symbol || (in_C_mode() && symbol->kind != symk_field))
      return report_no_member(&locator, bare);
  }
  if (in_cplusplus_mode())
    check_access_to_found_member(found, symbol, bare, &position);
  record_symbol_reference(srk_reference, symbol, &position, expr_stack->flags.references_count);
  return fundamental_symbol_of(symbol);
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
  if (in_cplusplus_mode())
    add_reference_indirection(operand);
}

static bool is_member_of_base(const a_field* field, const a_type* class_type) {
  const a_scope* scope = field->source_corresp.parent_scope;
  return in_cplusplus_mode() && scope && scope->assoc.type != skip_typerefs(class_type);
}

static void cast_to_base_of_field(an_operand* operand, const a_field* field, bool is_arrow) {
  an_operand saved = *operand;
  a_type* class_type = skip_typerefs(is_arrow ? type_pointed_to(operand->type) : operand->type);
  a_base_class* base =
      find_base_class_of(class_type, field->source_corresp.parent_scope->assoc.type);
  if (!base)
    return;
  an_expr_node* node = add_base_class_casts(make_node_from_operand(operand), base);
  make_lvalue_or_rvalue_expression_operand(node, operand);
  restore_operand_details_incl_ref(operand, &saved);
}

void select_field(an_operand* operand, a_field* field, bool is_arrow) {
  a_type* class_type = is_arrow ? type_pointed_to(operand->type) : operand->type;
  while (a_field* around = anonymous_field_around(field, skip_typerefs(class_type))) {
    select_direct_field(operand, around, is_arrow);
    class_type = around->type;
    is_arrow = false;
  }
  if (is_member_of_base(field, class_type))
    cast_to_base_of_field(operand, field, is_arrow);
  select_direct_field(operand, field, is_arrow);
}

// The object is evaluated for nothing, and the member stands alone.
static void select_static_member(an_operand* operand, a_symbol* symbol) {
  an_operand object = *operand;
  a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &operand->position);
  make_lvalue_variable_operand(symbol->variant.variable, ref, operand);
  if (object.kind == ok_expression && node_has_side_effects(object.variant.expr)) {
    an_expr_node* member = operand->variant.expr;
    make_glvalue_expression_operand(make_comma_node(object.variant.expr, member), operand);
    operand->ref_entries = ref;
  }
  flush_operand_ref_entries(&object);
  set_operand_range(operand, &object.position, &object.end_position);
}

static void select_enumerator(an_operand* operand, a_symbol* symbol) {
  an_operand object = *operand;
  make_sym_constant_operand(symbol, operand);
  set_operand_range(operand, &object.position, &object.end_position);
}

// Member functions, of which a call that follows takes the object.
static void select_member_function(an_operand* operand, a_symbol* symbol, bool is_arrow) {
  an_operand object = *operand;
  a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &operand->position);
  if (symbol->kind == symk_member_function)
    make_function_designator_operand(symbol->variant.routine, ref, operand);
  else
    make_indefinite_function_operand(symbol, operand);
  set_operand_range(operand, &object.position, &object.end_position);
  bind_member_function_operand_to_selector(operand, &object, is_arrow);
  flush_operand_ref_entries(&object);
}

static void select_member(an_operand* operand, a_symbol* symbol, bool is_arrow) {
  switch (symbol->kind) {
  case symk_field:
    select_field(operand, symbol->variant.field, is_arrow);
    break;
  case symk_static_data_member:
    select_static_member(operand, symbol);
    break;
  case symk_constant:
    select_enumerator(operand, symbol);
    break;
  case symk_member_function:
  case symk_overloaded_function:
    select_member_function(operand, symbol, is_arrow);
    break;
  case symk_function_template:
    refuse_construct("template", &operand->position);
    conv_to_error_operand(operand);
    break;
  default:
    error_in_operand(ec_type_identifier_not_allowed, operand);
    break;
  }
}

void select_named_field(an_operand* operand, bool is_arrow) {
  bool is_good = !is_error_operand(operand);
  a_type* class_type = is_good && is_arrow ? type_pointed_to(operand->type) : operand->type;
  bool is_qualified;
  a_symbol* symbol = scan_member_symbol(class_type, &is_qualified);
  if (is_good && symbol)
    select_member(operand, symbol, is_arrow);
  else
    conv_to_error_operand(operand);
  operand->flags.qualified_name = is_qualified;
}

// The operand has a class or points to one, which is complete.
static bool check_object_of_selection(an_operand* operand, bool is_arrow) {
  a_type* type = operand->type;
  if (is_error_operand(operand))
    return false;
  if (is_arrow) {
    if (!is_pointer_type(type) || !is_class_struct_union_type(type_pointed_to(type))) {
      error_in_operand(in_C_mode() ? ec_expr_not_ptr_to_struct_or_union : ec_expr_not_ptr_to_class,
                       operand);
      return false;
    }
    type = type_pointed_to(type);
  } else if (!is_class_struct_union_type(type)) {
    error_in_operand(in_C_mode() ? ec_expr_not_struct_or_union : ec_expr_not_class, operand);
    return false;
  }
  f_instantiate_template_class(type);
  // The class being defined may be named before its end (C++11 5.2.5 p2).
  if (is_incomplete_type(type) &&
      !skip_typerefs(type)->variant.class_struct_union.is_being_defined) {
    error_in_operand(ec_incomplete_type_not_allowed, operand);
    return false;
  }
  return true;
}

// ---- The pseudo destructor (C++11 5.2.4) ----

static void replace_by_void_value(an_operand* operand, const a_source_position* end) {
  an_operand object = *operand;
  cast_operand_to_void(operand);
  set_operand_range(operand, &object.position, end);
}

static void check_pseudo_destructor_name(an_operand* operand, a_type* object_type) {
  if (curr_token != tok_identifier) {
    expr_pos_error(ec_exp_identifier, &pos_curr_token);
    conv_to_error_operand(operand);
    return;
  }
  const a_symbol* named = curr_type_symbol();
  if (!named || !identical_types(prvalue_type(named->variant.type), prvalue_type(object_type))) {
    if (expr_error_should_be_issued())
      pos_stty_error(ec_destructor_type_mismatch, &pos_curr_token,
                     locator_for_curr_id.header->identifier, object_type);
    conv_to_error_operand(operand);
  }
  get_token();
}

// `object.~type()` of a scalar, at the `~`: evaluates the object alone.
static void scan_pseudo_destructor(an_operand* operand, bool is_arrow) {
  get_token();
  check_pseudo_destructor_name(operand, is_arrow ? type_pointed_to(operand->type) : operand->type);
  required_token(tok_lparen, ec_exp_lparen);
  a_source_position end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  if (!is_error_operand(operand))
    replace_by_void_value(operand, &end);
}

static bool is_pseudo_destructor(const an_operand* operand, bool is_arrow) {
  if (in_C_mode() || curr_token != tok_compl || is_error_operand(operand))
    return false;
  if (is_arrow)
    return is_pointer_type(operand->type) && is_scalar_type(type_pointed_to(operand->type));
  return is_scalar_type(operand->type);
}

void scan_field_selection(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  bool is_arrow = place.token == tok_arrow;
  a_source_position start = operand->position;
  get_token();
  a_source_position end = end_pos_curr_token;
  // What operator-> gives is a pointer or has an operator-> itself (C++11 13.5.6).
  while (is_arrow && is_class_struct_union_type(operand->type) &&
         operator_is_overloaded(&place, operand, nullptr, operand)) {
  }
  if (is_arrow) {
    do_operand_transformations(operand, ot_all);
    change_ref_kinds(operand->ref_entries, srk_value_read);
    operand->ref_entries = nullptr;
  } else {
    eliminate_unusual_operand_kinds(operand);
  }
  if (is_pseudo_destructor(operand, is_arrow)) {
    scan_pseudo_destructor(operand, is_arrow);
  } else {
    if (!check_object_of_selection(operand, is_arrow))
      conv_to_error_operand(operand);
    select_named_field(operand, is_arrow);
  }
  set_operator_positions(operand, &start, &place.position, &end);
}

// ---- .* and ->* (C++11 5.5) ----

static bool check_ptr_to_member_operands(an_operand* object, an_operand* member, bool is_arrow) {
  if (is_error_operand(object) || is_error_operand(member))
    return false;
  if (!is_ptr_to_member_type(member->type)) {
    error_in_operand(ec_expr_not_ptr_to_member, member);
    return false;
  }
  if (!check_object_of_selection(object, is_arrow))
    return false;
  a_type* class_type = f_skip_typerefs(is_arrow ? type_pointed_to(object->type) : object->type);
  a_type* member_class = f_skip_typerefs(pm_class_type(member->type));
  if (class_type == member_class || find_base_class_of(class_type, member_class))
    return true;
  type2_error_in_operand(ec_incompatible_operands, object, object->type, member->type);
  return false;
}

// The function that the pointer leads to, of which a call that follows takes the
// object.
static void bind_ptr_to_member_function(an_operand* object, an_operand* member, bool is_arrow,
                                        an_operand* result) {
  make_expression_operand(make_node_from_operand(member), result);
  bind_member_function_operand_to_selector(result, object, is_arrow);
}

static void ptr_to_member_selection(an_operand* object, an_operand* member, bool is_arrow,
                                    an_operand* result) {
  if (is_function_type(pm_member_type(member->type))) {
    bind_ptr_to_member_function(object, member, is_arrow, result);
    return;
  }
  a_type* object_type = is_arrow ? type_pointed_to(object->type) : object->type;
  a_type* type = make_pm_selection_type(member->type, get_type_qualifiers(object_type));
  bool is_lvalue = is_arrow || object->state == os_glvalue;
  an_expr_node* first = make_node_from_operand(object);
  first->next = make_node_from_operand(member);
  first->next->next = nullptr;
  an_expr_operator_kind op = is_arrow ? eok_arrow_ptr_to_member : eok_dot_ptr_to_member;
  an_expr_node* node = make_lvalue_operator_node(op, type, first);
  if (!is_lvalue) {
    node->is_lvalue = false;
    node->is_xvalue = true;
  }
  make_glvalue_expression_operand(node, result);
}

void scan_ptr_to_member_operator(an_operand* operand) {
  an_operator_place place = place_of_curr_token();
  bool is_arrow = place.token == tok_arrow_star;
  an_operand object = *operand, member;
  get_token();
  scan_expr(&member, nullptr, lev_ptr_to_member, 0);
  a_source_position end = member.end_position;
  if (!is_arrow || !operator_is_overloaded(&place, &object, &member, operand)) {
    do_operand_transformations(&object, is_arrow ? ot_all : ot_keep_glvalue);
    do_operand_transformations(&member, ot_all);
    if (check_ptr_to_member_operands(&object, &member, is_arrow))
      ptr_to_member_selection(&object, &member, is_arrow, operand);
    else
      make_error_result(&object, &member, operand);
  }
  set_operator_positions(operand, &object.position, &place.position, &end);
}
