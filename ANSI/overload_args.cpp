// The arguments of a call of a known function (C99 6.5.2.2, C++11 5.2.2).

#include "decl_inits.h"
#include "def_arg.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "mode_words.h"
#include "overload.h"

void prep_assignment_operand(an_operand* operand, a_type* type, an_error_code code,
                             const a_source_position* position) {
  prep_conversion_operand(operand, type, code, position);
}

// Some intrinsic functions take an object of any type by reference.
static bool is_wildcard_reference(const a_type* type) {
  return is_reference_type(type) && is_unknown_type(type_pointed_to(type));
}

void prep_argument_operand(an_operand* operand, const a_param_type* param, an_error_code code) {
  a_source_position position = operand->position;
  if (is_wildcard_reference(param->type)) {
    make_address_operand(operand, &position);
    return;
  }
  if (!conv_to_transparent_union(param->type, operand))
    prep_conversion_operand(operand, param->type, code, &position);
}

// ---- The block ----

void start_call_argument_processing(a_type* function_type, a_routine* routine,
                                    an_arg_check_block* block) {
  *block = {};
  block->function_type = function_type;
  block->routine = routine;
  if (!function_type)
    return;
  block->param = param_types_of(function_type);
  block->is_prototyped = routine_type_is_prototyped(function_type);
  block->has_ellipsis = routine_type_has_ellipsis(function_type);
  block->is_old_style_definition =
      !block->is_prototyped &&
      function_type->variant.routine.routine_supplement->old_style_definition;
  for (const a_param_type* param = block->param; param && !param->has_default_arg;
       param = param->next)
    ++block->num_required;
}

static a_param_type* take_param(an_arg_check_block* block) {
  a_param_type* param = block->param;
  if (param)
    block->param = param->next;
  return param;
}

// ---- One argument ----

// A definition in the old style tells the types of its parameters, which the
// promoted arguments must have (C99 6.5.2.2 p6).
static bool matches_old_style_param(a_type* type, a_type* param_type) {
  if (f_types_are_compatible(type, param_type, tcf_ignore_top_qualifiers))
    return true;
  if (is_pointer_type(type) && is_pointer_type(param_type))
    return true;
  return is_integral_or_enum_type(type) && is_integral_or_enum_type(param_type) &&
         size_of_type(type) == size_of_type(param_type);
}

static void check_old_style_argument(an_operand* argument, const a_param_type* param) {
  a_type* param_type = default_argument_promotion(param->type);
  arg_default_promote_operand(argument, true);
  if (is_error_operand(argument) || is_error_type(param_type) ||
      matches_old_style_param(argument->type, param_type))
    return;
  if (expr_diagnostic_should_be_issued(es_warning, ec_old_style_incompatible_param,
                                       &argument->position))
    pos_ty2_warning(ec_old_style_incompatible_param, &argument->position, argument->type,
                    param_type);
}

static void report_too_many_arguments(an_arg_check_block* block,
                                      const a_source_position* position) {
  an_error_severity severity = block->is_prototyped ? es_error : es_warning;
  if (!block->is_excess_reported)
    expr_pos_diagnostic(severity, ec_too_many_arguments, position);
  block->is_excess_reported = true;
  if (severity == es_error)
    block->any_error = true;
}

static bool takes_no_more_arguments(const an_arg_check_block* block) {
  return (block->is_prototyped && !block->has_ellipsis) || block->is_old_style_definition;
}

static void process_call_argument(an_operand* argument, an_arg_check_block* block) {
  const a_param_type* param = take_param(block);
  if (!block->function_type || is_error_operand(argument)) {
    do_operand_transformations(argument, ot_all);
  } else if (param && block->is_prototyped) {
    prep_argument_operand(argument, param, ec_incompatible_param);
  } else if (param && block->is_old_style_definition) {
    check_old_style_argument(argument, param);
  } else {
    if (takes_no_more_arguments(block))
      report_too_many_arguments(block, &argument->position);
    arg_default_promote_operand(argument, true);
  }
  if (!is_error_operand(argument) && is_void_type(argument->type))
    error_in_operand(ec_incomplete_type_not_allowed, argument);
  if (is_error_operand(argument))
    block->any_error = true;
}

// A list initialises the parameter (C++11 8.5.4 p1): its object takes its
// place. False behind a message where there is no parameter.
static bool convert_braced_argument(an_init_component* component, an_arg_check_block* block) {
  a_source_position start = component->variant.braced.start_position;
  a_source_position end = component->variant.braced.end_position;
  if (!block->param) {
    expr_pos_error(ec_braced_list_passed_to_ellipsis, &start);
    block->any_error = true;
    return false;
  }
  an_init_component* list = alloc_init_component(ick_braced_list);
  list->variant.braced = component->variant.braced;
  component->kind = ick_expression;
  make_list_operand(list, take_param(block)->type, false, &start, &component->variant.operand);
  set_operand_range(&component->variant.operand, &start, &end);
  block->any_error |= is_error_operand(&component->variant.operand);
  return true;
}

// ---- The list ----

// The arguments that are left out, where the parameters have a default for them
// (C++11 8.3.6 p9).
static void add_default_arguments(an_arg_check_block* block, an_expr_node** link) {
  for (; block->param && block->param->has_default_arg; take_param(block)) {
    an_expr_node* value = default_arg_expr_of_param(block->param, &block->position);
    block->any_error |= is_error_node(value);
    *link = copy_expr_tree(value, cef_copy_dynamic_inits);
    (*link)->next = nullptr;
    link = &(*link)->next;
  }
}

static void check_missing_arguments(an_arg_check_block* block) {
  if (!block->param || !(block->is_prototyped || block->is_old_style_definition))
    return;
  expr_pos_diagnostic(block->is_prototyped ? es_error : es_warning, ec_too_few_arguments,
                      &block->position);
  block->any_error |= block->is_prototyped;
}

an_expr_node* process_call_argument_list(an_init_component* arg_list, an_arg_check_block* block) {
  an_expr_node* first = nullptr;
  an_expr_node** link = &first;
  for (an_init_component* component = arg_list; component; component = component->next) {
    if (component->kind == ick_expression)
      process_call_argument(&component->variant.operand, block);
    else if (!convert_braced_argument(component, block))
      continue;
    *link = make_node_from_operand(&component->variant.operand);
    (*link)->next = nullptr;
    link = &(*link)->next;
  }
  add_default_arguments(block, link);
  check_missing_arguments(block);
  if (block->has_ellipsis && !block->any_error)
    check_format_arguments(block->function_type, first, &block->position);
  return first;
}
