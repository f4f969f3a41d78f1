// new and delete (C++11 5.3.4, 5.3.5). The node names no allocation function:
// storage is that of the library.

#include "class_decl.h"
#include "const_ints.h"
#include "decl_inits.h"
#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mode_words.h"

// ---- Parts of both ----

static bool skip_global_qualifier() {
  bool is_global = curr_token == tok_colon_colon;
  if (is_global)
    get_token();
  return is_global;
}

static an_expr_node* make_new_delete_node(a_new_delete_supplement* supplement, a_type* type) {
  an_expr_node* node = alloc_expr_node(expr_new_delete);
  node->type = type;
  node->variant.new_delete = supplement;
  return node;
}

static a_type* class_of_element(a_type* type) {
  a_type* element = skip_array_types(type);
  return is_class_struct_union_type(element) ? f_skip_typerefs(element) : nullptr;
}

static bool is_abstract_class(const a_type* class_type) {
  return class_type && class_type->variant.class_struct_union.is_abstract;
}

// ---- The type behind new ----

struct a_new_expression {
  a_source_position start;
  a_source_position end;
  a_type* type; // of the object; of an array, that of its elements
  a_new_delete_supplement* supplement;
  an_expr_node* array_count; // null: no array
  bool any_error;
};

// `[count]`: the first bound may be any integer (p6).
static void scan_first_bound(a_new_expression* info) {
  an_operand count;
  get_token();
  add_stop_token(tok_rbracket);
  scan_expr(&count, nullptr, lev_none, 0);
  remove_stop_token(tok_rbracket);
  do_operand_transformations(&count, ot_all);
  if (check_integral_or_enum_operand(&count)) {
    const a_constant* constant = constant_of_operand(&count);
    if (constant && constant->kind == con_integer && cmplit_integer_constant(constant, 0) < 0)
      error_in_operand(ec_new_array_size_must_be_nonnegative, &count);
    else
      promote_operand(&count);
  }
  info->any_error |= is_error_operand(&count);
  info->array_count = make_node_from_operand(&count);
  required_token(tok_rbracket, ec_exp_rbracket);
}

static a_type* scan_further_bounds(a_type* type) {
  if (curr_token != tok_lbracket)
    return type;
  check_stack_limit();
  a_constant bound;
  get_token();
  add_stop_token(tok_rbracket);
  scan_integral_constant_expression(&bound);
  remove_stop_token(tok_rbracket);
  required_token(tok_rbracket, ec_exp_rbracket);
  a_type* element = scan_further_bounds(type);
  return bound.kind == con_integer ? make_array_type(element, bound.value.int_value) : error_type();
}

static void scan_new_type_id(a_new_expression* info) {
  info->type = new_type_name();
  if (curr_token != tok_lbracket)
    return;
  scan_first_bound(info);
  info->type = scan_further_bounds(info->type);
}

static void scan_parenthesized_new_type(a_new_expression* info) {
  add_stop_token(tok_rparen);
  info->type = type_name();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  if (!is_array_type(info->type))
    return;
  info->array_count = node_for_unsigned_constant(num_array_elements(info->type),
                                                 static_cast<an_integer_kind>(ik_unsigned_int));
  info->type = array_element_type(f_skip_typerefs(info->type));
}

// Placement arguments or the type, both in parentheses.
static void scan_placement_and_type(a_new_expression* info) {
  if (curr_token != tok_lparen) {
    scan_new_type_id(info);
    return;
  }
  get_token();
  if (is_type_start(dst_expr_context)) {
    scan_parenthesized_new_type(info);
    return;
  }
  an_operand placement;
  add_stop_token(tok_rparen);
  scan_expr(&placement, nullptr, lev_none, 0);
  remove_stop_token(tok_rparen);
  do_operand_transformations(&placement, ot_all);
  info->any_error |= is_error_operand(&placement);
  info->supplement->has_placement = true;
  info->supplement->placement_expr = make_node_from_operand(&placement);
  required_token(tok_rparen, ec_exp_rparen);
  if (curr_token == tok_lparen) {
    get_token();
    scan_parenthesized_new_type(info);
  } else {
    scan_new_type_id(info);
  }
}

static bool check_new_type(a_new_expression* info) {
  a_type* class_type = class_of_element(info->type);
  an_error_code code = 0;
  if (is_error_type(info->type) || info->any_error)
    return false;
  if (is_function_type(info->type))
    code = ec_function_type_not_allowed;
  else if (is_reference_type(info->type))
    code = ec_pointer_to_reference; // the value would be one
  else if (is_incomplete_type(info->type) || is_void_type(info->type))
    code = ec_incomplete_type_not_allowed;
  if (code != 0) {
    expr_pos_error(code, &info->start);
    return false;
  }
  if (is_abstract_class(class_type)) {
    if (expr_error_should_be_issued())
      pos_ty_error(ec_abstract_class_object_not_allowed, &info->start, class_type);
    return false;
  }
  return true;
}

// ---- The initialiser ----

static void construct_new_object(a_new_expression* info, a_type* class_type,
                                 an_init_component* arg_list) {
  an_expr_node* arguments;
  a_routine* constructor =
      select_constructor(class_type, arg_list, false, &info->start, &arguments);
  if (!constructor) {
    info->any_error = true;
    return;
  }
  a_dynamic_init* init = make_constructor_init(class_type, constructor, arguments);
  init->is_result_of_new = true;
  init->variant.constructor.value_init = info->supplement->has_initializer && !arg_list;
  info->supplement->dynamic_init = init;
}

// The arguments of a constructor, if there are any; without them the default
// constructor serves, unless it does nothing.
static void scan_class_new_initializer(a_new_expression* info, a_type* class_type) {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  if (curr_token == tok_lparen) {
    info->supplement->has_initializer = true;
    get_token();
    add_stop_token(tok_rparen);
    while (curr_token != tok_rparen && curr_token != tok_end_of_source) {
      *link = scan_init_component();
      link = &(*link)->next;
      if (!loop_token(tok_comma))
        break;
    }
    remove_stop_token(tok_rparen);
    info->end = end_pos_curr_token;
    required_token(tok_rparen, ec_exp_rparen);
  }
  a_routine* plain = special_member_of_class(class_type, smk_default_constructor, tq_none);
  if (!list && plain && plain->is_trivial && !plain->is_deleted)
    check_use_of_routine(plain, class_type, &info->start);
  else
    construct_new_object(info, class_type, list);
  free_init_component_list(list);
}

// What a list in braces initialises: of an array without a known number of
// elements as many as the list has.
static a_type* type_of_new_object(const a_new_expression* info) {
  if (is_error_type(info->type) || is_function_type(info->type) || is_reference_type(info->type) ||
      is_incomplete_type(info->type) || is_void_type(info->type))
    return error_type();
  if (!info->array_count)
    return info->type;
  if (info->array_count->kind != expr_constant)
    return make_incomplete_array_type(info->type);
  return make_array_type(info->type, info->array_count->variant.constant.ptr->value.int_value);
}

// `{...}` (C++11 5.3.4 p17).
static void scan_new_list_initializer(a_new_expression* info) {
  an_operand value;
  a_source_position start = pos_curr_token;
  make_list_operand(get_braced_init_list(), type_of_new_object(info), true, &start, &value);
  info->any_error |= is_error_operand(&value);
  an_expr_node* expr = make_node_from_operand(&value);
  a_dynamic_init* init = nullptr;
  if (expr->kind == expr_temp_init) {
    init = expr->variant.dynamic_init;
    init->is_temporary = false;
  } else {
    init = alloc_dynamic_init(dik_expr);
    init->variant.expr = expr;
  }
  init->is_list_init = true;
  init->is_result_of_new = true;
  info->supplement->has_initializer = true;
  info->supplement->dynamic_init = init;
  info->end = curr_construct_end_position;
}

// `()`, `(value)` or a list in braces.
static void scan_new_initializer(a_new_expression* info) {
  if (curr_token == tok_lbrace && list_init_enabled) {
    scan_new_list_initializer(info);
    return;
  }
  a_type* class_type = class_of_element(info->type);
  if (class_type && !is_incomplete_type(class_type) && !is_abstract_class(class_type)) {
    scan_class_new_initializer(info, class_type);
    return;
  }
  if (curr_token != tok_lparen)
    return;
  a_source_position position = pos_curr_token;
  a_dynamic_init* init = alloc_dynamic_init(dik_zero);
  get_token();
  if (curr_token != tok_rparen) {
    an_operand value;
    add_stop_token(tok_rparen);
    scan_expr(&value, nullptr, lev_none, sef_no_comma);
    remove_stop_token(tok_rparen);
    if (!is_error_type(info->type))
      prep_initializer_operand(&value, info->type, ec_bad_initializer_type);
    info->any_error |= is_error_operand(&value);
    if (info->array_count)
      expr_pos_error(ec_initializer_not_allowed_on_array_new, &position);
    init->kind = dik_expr;
    init->variant.expr = make_node_from_operand(&value);
  }
  init->is_result_of_new = true;
  info->supplement->has_initializer = true;
  info->supplement->dynamic_init = init;
  info->end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

void scan_new(an_operand* result) {
  check_stack_limit();
  a_new_expression info = {};
  info.start = pos_curr_token;
  info.supplement = alloc_new_delete_supplement();
  info.supplement->is_new = true;
  info.supplement->is_global = skip_global_qualifier();
  get_token();
  scan_placement_and_type(&info);
  info.end = pos_curr_token;
  scan_new_initializer(&info);
  bool good = check_new_type(&info);
  if (good && is_refused_in_constant(&info.start))
    good = false;
  if (!good || info.any_error) {
    make_error_operand(result);
  } else {
    info.supplement->type = info.type;
    info.supplement->is_array = info.array_count != nullptr;
    info.supplement->arg_list = info.array_count;
    make_expression_operand(make_new_delete_node(info.supplement, make_pointer_type(info.type)),
                            result);
    rule_out_expr_kinds(rule_out_constant, result);
  }
  set_operator_positions(result, &info.start, &info.start, &info.end);
}

// ---- delete ----

// `delete []`, of old `delete [count]`.
static bool scan_array_brackets() {
  if (curr_token != tok_lbracket)
    return false;
  a_source_position position = pos_curr_token;
  get_token();
  if (curr_token != tok_rbracket) {
    an_operand count;
    add_stop_token(tok_rbracket);
    scan_expr(&count, nullptr, lev_none, 0);
    remove_stop_token(tok_rbracket);
    do_operand_transformations(&count, ot_all);
    check_integral_or_enum_operand(&count);
    expr_pos_diagnostic(allow_anachronisms ? es_warning : es_error, ec_delete_count_anachronism,
                        &position);
  }
  required_token(tok_rbracket, ec_exp_rbracket);
  return true;
}

// The object must be one whose end is known (p5).
static void check_deleted_object(an_operand* pointer, bool* is_array) {
  a_type* type = type_pointed_to(pointer->type);
  a_type* class_type = class_of_element(type);
  if (is_function_type(type)) {
    error_in_operand(ec_delete_of_function_pointer, pointer);
  } else if (is_array_type(type) && !*is_array) {
    expr_pos_diagnostic(strict_ansi_mode ? es_error : es_warning,
                        strict_ansi_mode ? ec_delete_of_array_type
                                         : ec_delete_of_array_type_nonstandard,
                        &pointer->position);
    *is_array = true;
  } else if (class_type && is_incomplete_type(class_type)) {
    if (expr_diagnostic_should_be_issued(es_warning, ec_delete_of_incomplete_class,
                                         &pointer->position))
      pos_ty_warning(ec_delete_of_incomplete_class, &pointer->position, class_type);
  } else if (class_type && class_supplement_of(class_type)->destructor) {
    check_use_of_routine(class_supplement_of(class_type)->destructor, class_type,
                         &pointer->position);
  }
}

static void check_delete_operand(an_operand* pointer, bool* is_array) {
  if (is_class_struct_union_type(pointer->type))
    try_to_convert_class_operand_to_builtin_type(pointer, bts_pointer);
  do_operand_transformations(pointer, ot_all);
  if (is_error_operand(pointer))
    return;
  if (is_pointer_type(pointer->type))
    check_deleted_object(pointer, is_array);
  else
    error_in_operand(ec_expr_not_pointer, pointer);
}

void scan_delete(an_operand* result) {
  a_source_position start = pos_curr_token;
  a_new_delete_supplement* supplement = alloc_new_delete_supplement();
  an_operand pointer;
  supplement->is_new = false;
  supplement->is_global = skip_global_qualifier();
  get_token();
  bool is_array = scan_array_brackets();
  scan_expr(&pointer, nullptr, lev_cast, 0);
  a_source_position end = pointer.end_position;
  check_delete_operand(&pointer, &is_array);
  if (is_error_operand(&pointer) || is_refused_in_constant(&start)) {
    make_error_result(&pointer, nullptr, result);
  } else {
    supplement->is_array = is_array;
    supplement->type = type_pointed_to(pointer.type);
    supplement->arg_list = make_node_from_operand(&pointer);
    make_expression_operand(make_new_delete_node(supplement, void_type()), result);
    rule_out_expr_kinds(rule_out_constant, result);
  }
  set_operator_positions(result, &start, &start, &end);
}
