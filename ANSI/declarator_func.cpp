// Function declarators: prototypes and identifier lists (C99 6.7.5.3), and what
// C++ adds behind the parentheses (C++11 8.3.5, 15.4).

#include "attribute.h"
#include "class_decl_int.h"
#include "const_ints.h"
#include "declarator_int.h"
#include "def_arg.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

void clear_func_info(a_func_info_block* func_info) {
  *func_info = a_func_info_block();
  func_info->prototype_scope_number = -1;
}

static a_param_id* alloc_param_id() {
  a_param_id* entry = static_cast<a_param_id*>(alloc_in_region(0, sizeof *entry));
  *entry = a_param_id();
  return entry;
}

void add_to_param_id_list(a_param_id* entry, a_func_info_block* func_info) {
  if (func_info->last_param_id)
    func_info->last_param_id->next = entry;
  else
    func_info->param_id_list = entry;
  func_info->last_param_id = entry;
}

// ---- Parameters ----

a_type* adjust_parameter_type(a_type* type) {
  return type_after_parameter_adjustment(type);
}

void check_and_adjust_parameter_type(a_decl_parse_state* state, const a_source_position* position) {
  if (is_void_type(state->declared_type)) {
    pos_error(ec_void_param_not_allowed, position);
    state->declared_type = error_type();
  }
  state->declared_type = adjust_parameter_type(state->declared_type);
}

static void enter_parameter_symbol(a_param_id* param, a_symbol_locator* locator) {
  locator->symbol = nullptr;
  if (curr_scope_id_lookup(locator, ilo_none)) {
    pos_error(ec_dupl_param_name, &locator->position);
    set_to_error_locator(locator);
  }
  locator->symbol = nullptr;
  param->symbol = enter_symbol(symk_parameter, locator, depth_scope_stack, nullptr);
  param->symbol->supplement.param_id = param;
  record_symbol_declaration(srk_declaration, param->symbol, &locator->position, nullptr);
}

// C99 6.7.5.3 p15: the qualifiers of a parameter are no part of the function's
// type.
static a_param_type* make_parameter_type_of(const a_param_id* param) {
  a_type* type =
      remove_qualifiers_from_param_types ? make_unqualified_type(param->type) : param->type;
  a_param_type* param_type = make_param_type(type);
  param_type->declared_type = param->declared_type;
  param_type->param_qualifiers = get_type_qualifiers(param->type) & 0xff;
  param_type->is_register = param->is_register;
  if (param->symbol)
    param_type->name = param->symbol->header->identifier;
  return param_type;
}

// `(void)`, also by another name: void is the type of one parameter only, which
// has no name (C99 6.7.5.3 p10).
static bool is_empty_parameter_list(const a_decl_parse_state* state,
                                    const a_symbol_locator* locator) {
  if (!is_void_type(state->declared_type) || curr_token != tok_rparen || !locator->is_unnamed ||
      state->storage_class != sc_none)
    return false;
  if (get_type_qualifiers(state->declared_type) != tq_none)
    pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_qualified_void_param_list,
                   &state->specifiers_position);
  return true;
}

// Null for the void of an empty list, which only the first parameter can be.
static a_param_id* parameter_declaration(bool is_first) {
  a_decl_parse_state state;
  a_symbol_locator locator;
  a_func_info_block inner;
  clear_decl_parse_state(&state);
  clear_func_info(&inner);
  unsigned options = dso_storage_class | dso_type_specifiers | dso_parameter;
  // The lone void isn't a basic type that a typedef should name.
  if (curr_token == tok_void)
    options |= dso_skip_misra_basic_type_check;
  decl_specifiers(options, &state);
  if (in_cplusplus_mode() && state.decl_flags.defines_tag)
    pos_error(ec_type_def_not_allowed_in_func_type_decl, &state.specifiers_position);
  take_vla_fixups(); // those of a declarator that went wrong
  declarator(do_name_optional | do_parameter, &state, nullptr, &locator, &inner);
  append_attributes(&state.attributes_after, scan_gnu_attribute_groups(al_declarator));
  discard_end_of_parse_actions(&state);
  if (is_first && is_empty_parameter_list(&state, &locator))
    return nullptr;
  a_param_id* param = alloc_param_id();
  param->position = state.declarator_position;
  param->declared_type = state.declared_type;
  check_and_adjust_parameter_type(&state, &state.specifiers_position);
  param->type = state.declared_type;
  param->vla_fixups = take_vla_fixups();
  param->storage_class = state.storage_class;
  param->is_register = state.storage_class == sc_register;
  if (!locator.is_unnamed && !locator.is_error_locator)
    enter_parameter_symbol(param, &locator);
  param->param_type = make_parameter_type_of(param);
  attach_declarator_attributes(&state, param->param_type, iek_param_type);
  if (curr_token == tok_assign)
    scan_default_argument(param);
  return param;
}

static void append_parameter(a_type* routine_type, a_param_id* param, a_func_info_block* info) {
  a_param_id* last = info->last_param_id;
  if (last) {
    last->param_type->next = param->param_type;
    param->param_type->param_number = last->param_type->param_number + 1;
  } else {
    routine_type->variant.routine.routine_supplement->param_types = param->param_type;
    param->param_type->param_number = 1;
  }
  set_arg_transfer_method_flag(param->param_type);
  add_to_param_id_list(param, info);
}

// At the `...`, the end of the list.
static void scan_ellipsis(a_type* routine_type, const a_func_info_block* info) {
  if (!info->param_id_list && in_C_mode() && strict_ansi_mode)
    pos_diagnostic(strict_ansi_error_severity, ec_nonstd_ellipsis_only_param, &pos_curr_token);
  routine_type->variant.routine.routine_supplement->has_ellipsis = true;
  get_token();
}

// What stands behind an ellipsis is read as parameters all the same.
static bool another_parameter_follows(const a_type* routine_type) {
  if (curr_token == tok_comma && routine_type->variant.routine.routine_supplement->has_ellipsis)
    pos_error(ec_exp_rparen, &pos_curr_token);
  return loop_token(tok_comma);
}

static void parameter_list(a_type* routine_type, a_func_info_block* info) {
  add_stop_token(tok_comma);
  do {
    bool is_ellipsis = curr_token == tok_ellipsis;
    if (!is_ellipsis) {
      a_param_id* param = parameter_declaration(!info->param_id_list);
      if (!param)
        break;
      append_parameter(routine_type, param, info);
      // In C++ no comma is needed before the ellipsis.
      is_ellipsis = in_cplusplus_mode() && curr_token == tok_ellipsis;
    }
    if (is_ellipsis)
      scan_ellipsis(routine_type, info);
  } while (another_parameter_follows(routine_type));
  remove_stop_token(tok_comma);
}

// ---- Identifier lists ----

static void scan_parameter_name(a_func_info_block* info) {
  if (C_dialect != cd_k_and_r && curr_type_symbol())
    pos_error(in_cplusplus_mode() ? ec_type_cannot_be_param_name : ec_typedef_cannot_be_param_name,
              &pos_curr_token);
  a_param_id* param = alloc_param_id();
  param->position = pos_curr_token;
  a_symbol_locator locator = locator_for_curr_id;
  enter_parameter_symbol(param, &locator);
  add_to_param_id_list(param, info);
  get_token();
}

// C99 6.7.5.3 p3: names alone.
static void identifier_list(a_func_info_block* info) {
  info->is_old_style = true;
  if (in_cplusplus_mode())
    pos_warning(ec_old_style_parameter_list, &pos_curr_token);
  add_stop_token(tok_comma);
  do {
    if (curr_token == tok_ellipsis) {
      pos_error(ec_ellipsis_not_allowed, &pos_curr_token);
      get_token();
      break;
    }
    // After a fault the list goes on behind the next comma.
    if (required_token_no_advance(tok_identifier, ec_exp_identifier) ||
        curr_token == tok_identifier)
      scan_parameter_name(info);
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// Whether the names may be parameters that are declared behind the parentheses:
// all of C, and C++ with the customs of its first years.
static bool identifier_list_is_possible() {
  return in_C_mode() || allow_anachronisms;
}

// Whether the parentheses hold a prototype, behind the `(`.
static bool is_prototype() {
  if (curr_token == tok_ellipsis && (in_cplusplus_mode() || allow_ellipsis_only_param_in_C_mode))
    return true;
  if (!identifier_list_is_possible())
    return true;
  if (curr_token != tok_identifier)
    return is_decl_start(dst_guess_misspelled_type) || C_dialect != cd_k_and_r;
  if (curr_type_symbol()) {
    if (C_dialect != cd_k_and_r)
      return true;
  } else if (C_dialect == cd_k_and_r) {
    return false;
  }
  a_token_kind next = next_token();
  return next != tok_rparen && next != tok_comma;
}

// ---- Behind the parentheses ----

static void add_exception_type(an_exception_specification* specification,
                               an_exception_specification_type** last) {
  an_exception_specification_type* entry = alloc_exception_specification_type();
  entry->position = pos_curr_token;
  entry->type = adjust_parameter_type(type_name());
  if (is_rvalue_reference_type(entry->type))
    pos_error(ec_rvalue_reference_in_exception_specification, &entry->position);
  if (loop_token(tok_ellipsis))
    entry->is_pack_expansion = true;
  for (const an_exception_specification_type* other = specification->types; other;
       other = other->next)
    if (identical_types(other->type, entry->type))
      entry->is_redundant = true;
  if (entry->is_redundant)
    pos_remark(ec_redundant_exception_specification_type, &entry->position);
  if (*last)
    (*last)->next = entry;
  else
    specification->types = entry;
  *last = entry;
}

// At the `throw`.
static void dynamic_exception_specification(an_exception_specification* specification) {
  an_exception_specification_type* last = nullptr;
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return;
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  if (loop_token(tok_ellipsis)) {
    specification->is_any = true;
  } else if (curr_token != tok_rparen) {
    do
      add_exception_type(specification, &last);
    while (loop_token(tok_comma));
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  specification->range.end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

// Behind the `(` of `noexcept(`; the `)` is left.
void scan_noexcept_condition(an_exception_specification* specification) {
  a_constant* value = fs_constant(con_integer);
  scan_integral_constant_expression(value);
  specification->is_noexcept = specification->is_noexcept_expr = true;
  specification->noexcept_constant = value;
}

// The condition may name members that are still to come.
static void cache_noexcept_condition(an_exception_specification* specification) {
  static const a_token_set_array at_end = [] {
    a_token_set_array set = {};
    set.member[tok_rparen] = true;
    return set;
  }();
  specification->deferred_tokens = alloc_token_cache();
  cache_token_stream(specification->deferred_tokens, &at_end);
  terminate_token_cache(specification->deferred_tokens);
}

// At the `noexcept`.
static void noexcept_specification(an_exception_specification* specification) {
  get_token();
  if (curr_token != tok_lparen) {
    specification->is_noexcept = true;
    return;
  }
  get_token();
  add_stop_token(tok_rparen);
  if (is_in_open_class())
    cache_noexcept_condition(specification);
  else
    scan_noexcept_condition(specification);
  remove_stop_token(tok_rparen);
  specification->range.end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

static void scan_exception_specification(a_routine_type_supplement* supplement) {
  if (curr_token != tok_throw && curr_token != tok_noexcept)
    return;
  an_exception_specification* specification = alloc_exception_specification();
  specification->range.start = pos_curr_token;
  specification->range.end = end_pos_curr_token;
  if (curr_token == tok_throw)
    dynamic_exception_specification(specification);
  else
    noexcept_specification(specification);
  supplement->exception_specification = specification;
}

static void scan_ref_qualifier(a_routine_type_supplement* supplement) {
  if (curr_token != tok_ampersand && curr_token != tok_and_and)
    return;
  if (!rvalue_references_enabled)
    pos_error(ec_ref_qualifier_not_allowed, &pos_curr_token);
  else if (curr_token == tok_ampersand)
    supplement->has_lvalue_ref_qualifier = true;
  else
    supplement->has_rvalue_ref_qualifier = true;
  get_token();
}

// At the `->`.
static void scan_trailing_return(unsigned options, a_derivation* function) {
  a_source_position position = pos_curr_token;
  get_token();
  a_type* type = type_name();
  if (options & do_parenthesized) {
    pos_error(ec_trailing_return_type_in_nested_declarator, &position);
    type = error_type();
  }
  function->trailing_return = type;
  function->routine_type->variant.routine.routine_supplement->has_trailing_return_type = true;
}

// The class whose object a declarator may name in front of its body (C++11 5.1.1
// p3): the one directly around the parameters; null for none.
static a_type* class_of_object(unsigned options) {
  const a_scope_stack_entry* around = &scope_stack[scope_stack[depth_scope_stack].parent_depth];
  bool is_class = around->kind == sk_class || around->kind == sk_class_reactivation;
  return is_class && !(options & (do_no_object | do_lambda)) ? around->assoc_type : nullptr;
}

static void scan_suffix_that_names_object(unsigned options, a_derivation* function) {
  a_routine_type_supplement* supplement =
      function->routine_type->variant.routine.routine_supplement;
  scan_exception_specification(supplement);
  if (options & do_lambda)
    function->attributes = scan_attributes(al_declarator);
  if (curr_token == tok_arrow && trailing_return_types_enabled)
    scan_trailing_return(options, function);
}

static void scan_function_suffix(unsigned options, a_derivation* function) {
  a_routine_type_supplement* supplement =
      function->routine_type->variant.routine.routine_supplement;
  function->is_mutable = (options & do_lambda) && loop_token(tok_mutable);
  supplement->this_qualifiers = collect_type_qualifiers(nullptr) & 0xff;
  scan_ref_qualifier(supplement);
  bool may_end = !(options & do_lambda); // which may have attributes next
  if (may_end && curr_token != tok_throw && curr_token != tok_noexcept && curr_token != tok_arrow)
    return;
  a_type* class_type = class_of_object(options);
  a_variable* saved = nullptr;
  if (class_type)
    saved =
        set_this_of_class(class_type, make_this_of_class(class_type, supplement->this_qualifiers));
  scan_suffix_that_names_object(options, function);
  if (class_type)
    set_this_of_class(class_type, saved);
}

// ---- The declarator ----

static void scan_parameters(a_type* routine_type, a_func_info_block* info) {
  a_routine_type_supplement* supplement = routine_type->variant.routine.routine_supplement;
  if (curr_token == tok_rparen) {
    info->is_old_style = in_C_mode();
    supplement->prototyped = !in_C_mode();
    if (check_misra_c_2004 && in_C_mode())
      pos_diagnostic(misra_required_severity, ec_misra_c_2004_16_5, &pos_curr_token);
  } else if (is_prototype()) {
    supplement->prototyped = true;
    parameter_list(routine_type, info);
  } else {
    identifier_list(info);
  }
}

void function_declarator(unsigned options, a_func_info_block* func_info) {
  a_derivation function = {};
  a_func_info_block info;
  clear_func_info(&info);
  function.kind = dk_function;
  function.position = info.position = pos_curr_token;
  function.routine_type = alloc_type(tk_routine);
  get_token();
  add_stop_token(tok_rparen);
  push_scope(sk_function_prototype, -1, function.routine_type, nullptr);
  info.prototype_scope_number = scope_stack[depth_scope_stack].number;
  scan_parameters(function.routine_type, &info);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  // What follows may still name the parameters.
  if (in_cplusplus_mode())
    scan_function_suffix(options, &function);
  info.first_prototype_symbol = scope_stack[depth_scope_stack].pointers.first_symbol;
  pop_scope();
  if (in_cplusplus_mode())
    add_declarator_fixups(function.routine_type, &info);
  derivations.push_back(function);
  if (func_info)
    *func_info = info;
  else if (info.is_old_style && info.param_id_list)
    pos_error(ec_param_id_list_needs_function_def, &function.position);
}
