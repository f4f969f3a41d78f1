// The placeholder types of C++11, `auto` and `decltype(auto)`: what stands for
// them is read off the initializer before the entity is declared (C++11
// 7.1.6.4).

#include "decl_spec_int.h"
#include "declarator_int.h"
#include "error.h"
#include "lambda.h"
#include "lexical.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "types.h"

static a_placeholder_kind placeholder_of(const a_type* type) {
  const a_type* bare = skip_typerefs(type);
  return bare->kind == tk_template_param
             ? bare->variant.template_param.template_param_supplement->placeholder
             : plk_none;
}

// Behind the first value in parentheses or braces: there is no other. What
// encloses the value is read to its end.
static bool ends_behind_value(a_token_kind open, const a_source_position* position) {
  const a_token_kind close = open == tok_lparen ? tok_rparen : tok_rbrace;
  const bool is_alone = curr_token == close;
  if (!is_alone)
    pos_error(ec_auto_direct_list_init_requires_singleton, position);
  while (curr_token != close && curr_token != tok_semicolon && curr_token != tok_end_of_source)
    get_token();
  if (curr_token == close)
    get_token();
  return is_alone;
}

// At the `=`, or at what encloses the initializer: the type of the expression
// behind it, all of which is then read again. After an error it is not.
static bool prescan_initializer_for_auto_type_deduction(an_unevaluated_operand* operand) {
  a_token_cache cache;
  a_token_set_array stop_set = {};
  const a_token_kind open = curr_token;
  const a_source_position position = pos_curr_token;
  stop_set.member[tok_comma] = stop_set.member[tok_semicolon] = true;
  stop_set.member[tok_rparen] = true;   // of a condition
  stop_set.member[tok_rbracket] = true; // the end of a capture list
  clear_token_cache(&cache, false);
  cache_token_stream(&cache, &stop_set);
  rescan_copy_of_cache(&cache);
  get_token();
  bool was_prescanning = set_lambda_prescan(true);
  scan_operand_for_its_type(operand, true);
  set_lambda_prescan(was_prescanning);
  bool is_good = !is_error_type(operand->type);
  if (is_good && open != tok_assign)
    is_good = ends_behind_value(open, &position);
  if (is_good)
    rescan_cached_tokens(&cache);
  else
    discard_token_cache(&cache);
  return is_good;
}

// The type without some of its qualifiers.
static a_type* remove_qualifiers(a_type* type, a_type_qualifier_set removed) {
  a_type_qualifier_set kept = get_type_qualifiers(type) & tq_all_qualifiers & ~removed;
  return make_qualified_type(make_unqualified_type(type), kept);
}

// `pattern` with its placeholder replaced, so that it matches the type; null
// when none does. *deduced is what the placeholder stands for.
static a_type* match_placeholder(a_type* pattern, a_type* type, a_type** deduced) {
  check_stack_limit();
  a_type_qualifier_set qualifiers = get_type_qualifiers(pattern) & tq_all_qualifiers;
  if (placeholder_of(pattern) != plk_none) {
    *deduced = remove_qualifiers(type, qualifiers);
    return make_qualified_type(type, qualifiers);
  }
  if (type_kind(pattern) != tk_pointer || type_kind(type) != tk_pointer)
    return nullptr;
  a_type* target = match_placeholder(type_pointed_to(pattern), type_pointed_to(type), deduced);
  return target ? make_qualified_type(make_pointer_type(target), qualifiers) : nullptr;
}

// The type of a value made of the operand.
static a_type* value_type(const an_unevaluated_operand* operand) {
  a_type* type = operand->type;
  if (is_reference_type(type))
    type = type_pointed_to(type);
  if (is_function_type(type))
    return make_pointer_type(type);
  if (is_array_type(type))
    return type_after_array_to_pointer_transformation(type);
  return make_unqualified_type(type);
}

static a_type* match_operand(a_type* declared, const an_unevaluated_operand* operand,
                             a_type** deduced) {
  if (!is_reference_type(declared))
    return match_placeholder(declared, value_type(operand), deduced);
  a_type* pattern = type_pointed_to(declared);
  a_type* type = is_reference_type(operand->type) ? type_pointed_to(operand->type) : operand->type;
  a_type* target = match_placeholder(pattern, type, deduced);
  if (!target)
    return nullptr;
  // `auto&&` takes either kind of value.
  bool is_forwarding = is_rvalue_reference_type(declared) && placeholder_of(pattern) != plk_none &&
                       get_type_qualifiers(pattern) == tq_none;
  if (is_forwarding && operand->is_lvalue)
    return *deduced = make_reference_type(target);
  return make_reference_type_of_same_kind(declared, target);
}

static an_error_code rejection_of_initializer(a_placeholder_kind kind) {
  if (curr_token == tok_lparen || (curr_token == tok_lbrace && list_init_enabled))
    return 0;
  if (curr_token != tok_assign)
    return kind == plk_auto ? ec_auto_type_requires_initializer
                            : ec_decltype_auto_type_requires_initializer;
  return next_token() == tok_lbrace ? ec_auto_brace_initialization_not_allowed : 0;
}

// All declarators of a declaration agree about the type (C++11 7.1.6.4 p7).
static bool check_consistent_deduction(a_type* deduced, a_decl_parse_state* state,
                                       const a_source_position* position) {
  a_type* earlier = state->deduced_auto_type;
  state->deduced_auto_type = deduced;
  if (!earlier || identical_types(earlier, deduced))
    return true;
  pos_ty2_error(ec_inconsistent_deduction_of_auto, position, earlier, deduced);
  return false;
}

a_type* deduce_placeholder_type(a_type* declared, bool is_allowed, a_decl_parse_state* state,
                                const a_source_position* position) {
  if (is_error_type(declared))
    return declared;
  a_placeholder_kind kind = placeholder_of(find_bottom_of_type(declared));
  if (kind == plk_none) // of a function with a trailing return type
    return declared;
  an_error_code code =
      is_allowed ? rejection_of_initializer(kind) : an_error_code{ec_auto_not_allowed_here};
  if (code == 0 && kind == plk_decltype_auto && placeholder_of(declared) == plk_none)
    code = ec_modified_decltype_auto_type;
  if (code != 0) {
    pos_error(code, position);
    return error_type();
  }
  an_unevaluated_operand operand;
  if (!prescan_initializer_for_auto_type_deduction(&operand))
    return error_type();
  a_type* deduced = operand.decltype_type;
  a_type* type = kind == plk_decltype_auto ? deduced : match_operand(declared, &operand, &deduced);
  if (!type)
    pos_error(kind == plk_auto ? ec_cannot_deduce_auto_type : ec_cannot_deduce_decltype_auto_type,
              position);
  else if (check_consistent_deduction(deduced, state, position))
    return type;
  return error_type();
}
