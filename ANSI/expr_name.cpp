// Names as operands (C99 6.5.1 p2, C++11 5.1.1): their lookup, and what each
// kind of symbol stands for.

#include "class_decl.h"
#include "declarator.h"
#include "expr_int.h"
#include "il.h"
#include "lambda.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "sys_predef.h"
#include "types.h"

// ---- Objects and functions ----

static void parameter_of_prototype(a_symbol* symbol, an_operand* result) {
  const a_param_id* param = symbol->supplement.param_id;
  a_source_position position = pos_curr_token;
  bool is_undeclared = param && !param->type; // so far, one of the old style
  if (!expr_stack->flags.unevaluated_operand || is_undeclared) {
    error_and_make_error_operand(ec_param_not_allowed, &position, result);
  } else if (!param || is_error_type(param->type)) {
    make_error_operand(result);
  } else {
    make_dummy_lvalue_operand(param->type, result);
    result->ref_entries = make_ref_entry(srk_reference, symbol, &position);
  }
}

// A name of a function that the file inlines may matter to its definition
// elsewhere (C99 6.7.4 p3).
static void check_reference_from_inline(const a_source_correspondence* corresp) {
  if (!std_c99_inlining || corresp->linkage != idl_internal || depth_innermost_function_scope < 0 ||
      !expr_stack->flags.references_count)
    return;
  a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
  if (routine && routine->is_inline)
    check_c99_inline_definition(routine, &pos_curr_token, false);
}

// Whether a variable is one of a function around the class or the function at
// hand, whose object can't be reached from there (C++11 9.8 p1), or is named in
// a default argument (8.3.6 p7). What lambdas reach by captures is none.
static bool is_out_of_reach(const a_symbol* symbol) {
  a_variable* variable = symbol->variant.variable;
  if (symbol->kind != symk_variable || variable->storage_kind < sc_auto ||
      expr_stack->flags.unevaluated_operand || is_constant_variable(variable) ||
      variable->is_constexpr)
    return false;
  if (expr_stack->flags.in_default_argument)
    return true;
  int depth = scope_depth_of_symbol(symbol, nullptr);
  while (depth >= 0 && ++depth <= depth_scope_stack) {
    const a_scope_stack_entry* entry = &scope_stack[depth];
    bool is_class = entry->kind == sk_class || entry->kind == sk_class_reactivation;
    if (is_class && !class_supplement_of(entry->assoc_type)->is_lambda_closure)
      return true;
  }
  return false;
}

static void variable_operand(a_symbol* symbol, an_operand* result) {
  a_variable* variable = symbol->variant.variable;
  // The value of a parameter isn't known where a default argument is written.
  if (variable->is_parameter && expr_stack->flags.in_default_argument &&
      !expr_stack->flags.unevaluated_operand) {
    error_and_make_error_operand(ec_param_not_allowed, &pos_curr_token, result);
    return;
  }
  if (in_cplusplus_mode() && make_captured_variable_operand(symbol, result))
    return;
  if (in_cplusplus_mode() && is_out_of_reach(symbol)) {
    error_and_make_error_operand(ec_ref_to_nested_function_var, &pos_curr_token, result);
    return;
  }
  a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &pos_curr_token);
  check_reference_from_inline(&variable->source_corresp);
  make_lvalue_variable_operand(variable, ref, result);
  result->flags.names_variable = true;
}

static void routine_operand(a_symbol* symbol, an_operand* result) {
  a_routine* routine = symbol->variant.routine;
  if (is_error_type(routine->type)) {
    make_error_operand(result);
    return;
  }
  a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &pos_curr_token);
  check_reference_from_inline(&routine->source_corresp);
  make_function_designator_operand(routine, ref, result);
}

// ---- Members of classes ----

void scan_this(an_operand* result) {
  if (!make_this_pointer_operand(result))
    error_and_make_error_operand(ec_this_used_incorrectly, &pos_curr_token, result);
  get_token();
}

// A lambda captures variables by their names, which this object doesn't have.
static bool is_object_around_lambda(const a_symbol* member, const a_variable* object) {
  return in_lambda_body() && object->storage_kind >= sc_auto &&
         !expr_stack->flags.unevaluated_operand &&
         scope_depth_of_symbol(member, nullptr) < depth_innermost_function_scope;
}

// A member of an anonymous union that is no member of a class.
static void anonymous_object_member_operand(a_symbol* symbol, a_variable* object,
                                            an_operand* result) {
  if (is_object_around_lambda(symbol, object)) {
    error_and_make_error_operand(ec_anon_union_ref_in_lambda, &pos_curr_token, result);
    return;
  }
  a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &pos_curr_token);
  make_lvalue_variable_operand(object, ref, result);
  select_field(result, symbol->variant.field, false);
}

bool make_this_for_member(const a_type* member_class, an_operand* result) {
  if (!make_this_pointer_operand(result))
    return false;
  if (is_error_operand(result))
    return true;
  a_type* class_type = skip_typerefs(type_pointed_to(result->type));
  return class_type == member_class || find_base_class_of(class_type, member_class);
}

// The class that has the field, also within an anonymous struct or union.
static const a_type* class_with_field(const a_field* field) {
  const a_field* around = anonymous_field_around(field, nullptr);
  return class_of_member(around ? &around->source_corresp : &field->source_corresp);
}

static bool is_operand_of_address;

void note_operand_of_address() {
  is_operand_of_address = true;
}

static bool is_postfix_operator(a_token_kind token) {
  return token == tok_lbracket || token == tok_lparen || token == tok_period ||
         token == tok_arrow || token == tok_plus_plus || token == tok_minus_minus;
}

// A field named alone is one of the object of the member function. Where
// nothing is evaluated it needs no object, and no pointer to a member does.
static void field_operand(a_symbol* symbol, bool is_address, an_operand* result) {
  a_field* field = symbol->variant.field;
  if (symbol->is_anonymous_union_member && !symbol->is_class_member) {
    if (a_variable* object = anonymous_union_object_around(field)) {
      anonymous_object_member_operand(symbol, object, result);
      return;
    }
  }
  const a_type* class_type = class_of_member(&field->source_corresp);
  if (class_type && class_supplement_of(class_type)->is_lambda_closure &&
      make_init_capture_operand(symbol, result))
    return;
  if (is_address && !is_postfix_operator(next_token())) {
    make_sym_for_member_operand(symbol, result);
    return;
  }
  if (make_this_for_member(class_with_field(field), result)) {
    result->ref_entries = make_ref_entry(srk_reference, symbol, &pos_curr_token);
    select_field(result, field, true);
    return;
  }
  if (!expr_stack->flags.unevaluated_operand) {
    make_sym_for_member_operand(symbol, result);
    return;
  }
  expr_stack->flags.member_without_object_seen = true;
  expr_stack->member_without_object_position = pos_curr_token;
  make_dummy_lvalue_operand(field->type, result);
  result->ref_entries = make_ref_entry(srk_reference, symbol, &pos_curr_token);
}

static void refuse_name(const char* what, an_operand* result) {
  if (expr_error_should_be_issued())
    pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, what);
  make_error_operand(result);
}

// ---- Types ----

// A type is part of an expression as the beginning of a functional cast.
static void type_operand(a_type* type, an_operand* result) {
  a_source_position start = pos_curr_token;
  a_token_kind next = next_token();
  bool begins_cast =
      in_cplusplus_mode() && (next == tok_lparen || (next == tok_lbrace && list_init_enabled));
  if (!begins_cast) {
    error_and_make_error_operand(ec_type_identifier_not_allowed, &start, result);
    get_token();
    return;
  }
  get_token();
  scan_functional_cast(type, result, &start);
}

void scan_simple_type_cast(an_operand* result) {
  type_operand(simple_type_of_token(curr_token), result);
}

// ---- The name ----

void expr_check_ambiguity_and_verify_access(a_symbol_locator* locator) {
  if (locator->is_ambiguous && expr_error_should_be_issued())
    report_ambiguous_name(locator);
  check_access_to_name(locator, &locator->position);
}

// The operand of everything but a type.
static void operand_for_symbol(a_symbol* symbol, bool is_address, an_operand* result) {
  switch (symbol->kind) {
  case symk_constant:
    make_sym_constant_operand(symbol, result);
    break;
  case symk_variable:
  case symk_static_data_member:
    variable_operand(symbol, result);
    break;
  case symk_routine:
    routine_operand(symbol, result);
    break;
  case symk_overloaded_function:
    make_indefinite_function_operand(symbol, result);
    break;
  case symk_field:
    field_operand(symbol, is_address, result);
    break;
  case symk_member_function:
    if (symbol->variant.routine->is_static_member)
      routine_operand(symbol, result);
    else
      make_sym_for_member_operand(symbol, result);
    break;
  case symk_parameter:
    parameter_of_prototype(symbol, result);
    break;
  case symk_namespace:
    error_and_make_error_operand(ec_namespace_name_not_allowed, &pos_curr_token, result);
    break;
  case symk_class_template:
  case symk_function_template:
  case symk_variable_template:
    refuse_name("template", result);
    break;
  default:
    make_error_operand(result);
    break;
  }
}

// The class or namespace that the qualifier names; null for another one.
static const a_symbol* symbol_of_qualifier(const a_symbol_locator* locator) {
  if (!locator->is_qualified || !locator->qualifier.entry)
    return nullptr;
  return locator->is_class_qualified || locator->is_enum_qualified
             ? locator->qualifier.class_type->source_corresp.symbol
             : locator->qualifier.namespace_entry->source_corresp.symbol;
}

// A name without a declaration may still be that of a function to be declared,
// unless it was sought in one place.
static void undeclared_name_operand(const a_symbol_locator* locator, an_operand* result) {
  const a_symbol* place = symbol_of_qualifier(locator);
  if (!place) {
    make_undefined_symbol_operand(locator, result);
    return;
  }
  if (expr_error_should_be_issued())
    pos_stsy_error(ec_not_a_member, &locator->position, locator->header->identifier, place);
  make_error_operand(result);
}

static void record_written_form(const a_symbol_locator* locator, an_operand* result) {
  result->flags.id_detail = locator->id_detail;
  result->flags.id_detail_2 = locator->id_detail_2;
  result->flags.qualified_name = locator->is_qualified;
  if (!locator->is_qualified || is_error_operand(result))
    return;
  a_source_range range = {result->position, result->end_position};
  const a_name_reference* reference = make_name_reference_from_locator(locator, &range);
  if (!reference)
    return;
  result->name_reference = *reference;
  result->flags.has_name_reference = true;
}

void scan_identifier(an_operand* result) {
  bool is_address = is_operand_of_address;
  is_operand_of_address = false;
  a_symbol* symbol = in_C_mode() ? normal_id_lookup(&locator_for_curr_id, ilo_none)
                                 : coalesce_and_lookup_generalized_identifier(ilo_none);
  a_symbol_locator locator = locator_for_curr_id;
  if (locator.is_error_locator) {
    make_error_operand(result);
    get_token();
    return;
  }
  if (!symbol && !locator.is_qualified)
    symbol = load_builtin_function(locator.header);
  if (!symbol) {
    undeclared_name_operand(&locator, result);
    get_token();
    return;
  }
  if (in_cplusplus_mode()) {
    expr_check_ambiguity_and_verify_access(&locator);
    symbol = fundamental_symbol_of(symbol);
  }
  if (symbol->kind == symk_type || is_tag_symbol_kind(symbol->kind)) {
    type_operand(symbol->variant.type, result);
    return;
  }
  operand_for_symbol(symbol, is_address, result);
  record_written_form(&locator, result);
  get_token();
}
