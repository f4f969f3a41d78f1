// Declarators and type names. A declarator is read into a list of derivations
// in the order in which they bind to the name; the type is built from the other
// end, around the specifiers' type.

#include "declarator.h"

#include <algorithm>
#include <vector>

#include "attribute.h"
#include "const_ints.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

namespace {

// One pointer, array or function of a declarator.
struct a_derivation {
  a_type_kind kind;
  a_type_qualifier_set qualifiers; // of a pointer; of an array in a parameter
  a_source_position position;
  bool bound_is_known;
  bool has_static_bound;
  bool is_bad;
  uint64_t bound;
  a_type* routine_type; // complete but for its return type
};

} // namespace

// The derivations of all declarators being read, as a stack.
static std::vector<a_derivation> derivations;

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

// ---- Building the type (C99 6.7.5.1 to 6.7.5.3) ----

bool check_return_type(a_type* type, const a_source_position* position) {
  if (is_function_type(type)) {
    pos_error(ec_function_returning_function, position);
    return false;
  }
  if (is_array_type(type)) {
    pos_error(ec_function_returning_array, position);
    return false;
  }
  return true;
}

static bool check_element_type(a_type* type, const a_source_position* position) {
  if (is_function_type(type)) {
    pos_error(ec_array_of_function, position);
    return false;
  }
  if (is_void_type(type)) {
    pos_error(ec_array_of_void, position);
    return false;
  }
  if (is_incomplete_array_type(type)) {
    pos_error(ec_flexible_array_member_not_allowed, position);
    return false;
  }
  if (is_incomplete_type(type)) {
    if (gnu_mode || strict_ansi_mode) {
      pos_error(ec_incomplete_type_not_allowed, position);
      return false;
    }
    pos_warning(ec_array_of_incomplete_type, position);
  }
  return true;
}

static a_type* apply_pointer(const a_derivation* derivation, a_type* type) {
  a_type* pointer = make_pointer_type(type);
  a_type_qualifier_set qualifiers = derivation->qualifiers;
  if ((qualifiers & tq_restrict) && !restrict_qualifier_is_allowed(pointer, &derivation->position))
    qualifiers &= ~tq_restrict;
  return make_qualified_type(pointer, qualifiers);
}

static a_type* apply_array(const a_derivation* derivation, a_type* type) {
  if (derivation->is_bad || !check_element_type(type, &derivation->position))
    return error_type();
  error_position = derivation->position;
  a_type* array = derivation->bound_is_known ? make_array_type(type, derivation->bound)
                                             : make_incomplete_array_type(type);
  if (array->kind == tk_array) {
    array->variant.array.has_static_bound = derivation->has_static_bound;
    array->variant.array.bound_qualifiers = derivation->qualifiers & 0x1f;
  }
  return array;
}

static a_type* apply_function(const a_derivation* derivation, a_type* type) {
  if (!check_return_type(type, &derivation->position))
    return error_type();
  derivation->routine_type->variant.routine.return_type = type;
  set_routine_calling_method_flag(derivation->routine_type);
  return derivation->routine_type;
}

static a_type* apply_derivation(const a_derivation* derivation, a_type* type) {
  if (is_error_type(type))
    return type;
  switch (derivation->kind) {
  case tk_pointer:
    return apply_pointer(derivation, type);
  case tk_array:
    return apply_array(derivation, type);
  default:
    return apply_function(derivation, type);
  }
}

// ---- Pointers ----

// Pushed from the last star to the first: the last binds to the name first.
static void pointer_declarator(a_decl_parse_state* state) {
  std::vector<a_derivation> pointers;
  while (curr_token == tok_star) {
    a_derivation pointer = {};
    pointer.kind = tk_pointer;
    pointer.position = pos_curr_token;
    get_token();
    pointer.qualifiers = collect_type_qualifiers(nullptr);
    while (is_attribute_start(al_specifiers)) {
      append_attributes(&state->attributes_after, scan_attributes(al_specifiers));
      pointer.qualifiers |= collect_type_qualifiers(nullptr);
    }
    pointers.push_back(pointer);
  }
  derivations.insert(derivations.end(), pointers.rbegin(), pointers.rend());
}

// ---- Arrays ----

static void set_bound(a_derivation* array, const a_constant* constant,
                      const a_source_position* position) {
  if (constant->kind != con_integer) {
    array->is_bad = true;
    return;
  }
  int order = cmplit_integer_constant(constant, 0);
  if (order < 0 || (order == 0 && !gnu_mode)) {
    pos_error(ec_array_size_must_be_positive, position);
    array->is_bad = true;
    return;
  }
  if (order == 0 && report_gnu_extensions)
    pos_warning(ec_zero_length_array_is_gnu_extension, position);
  array->bound_is_known = true;
  array->bound = constant->value.int_value;
}

static void scan_bound(a_derivation* array) {
  a_source_position position = pos_curr_token;
  a_constant constant;
  an_expr_node* expr;
  if (scan_array_bound_expression(&constant, &expr)) {
    set_bound(array, &constant, &position);
  } else {
    // An array of variable length has no form yet that could be written.
    pos_error(ec_vla_not_allowed, &position);
    array->is_bad = true;
  }
}

// At the `[`. Qualifiers and `static` stand in a parameter's outermost array
// alone (C99 6.7.5.2 p1).
static void array_declarator(unsigned options, bool is_outermost) {
  a_derivation array = {};
  array.kind = tk_array;
  array.position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbracket);
  a_source_position position = pos_curr_token;
  if (curr_token == tok_static) {
    array.has_static_bound = true;
    get_token();
  }
  array.qualifiers = collect_type_qualifiers(nullptr);
  if (curr_token == tok_static && !array.has_static_bound) {
    array.has_static_bound = true;
    get_token();
  }
  if ((array.has_static_bound || array.qualifiers != tq_none) &&
      !((options & do_parameter) && is_outermost)) {
    pos_error(ec_type_qualifier_not_allowed, &position);
    array.qualifiers = tq_none;
  }
  if (curr_token == tok_star && next_token() == tok_rbracket) {
    pos_error(ec_vla_with_unspecified_bound_not_allowed, &pos_curr_token);
    array.is_bad = true;
    get_token();
  } else if (curr_token != tok_rbracket) {
    scan_bound(&array);
  } else if (array.has_static_bound) {
    pos_error(ec_exp_primary_expr, &pos_curr_token);
  }
  remove_stop_token(tok_rbracket);
  required_token(tok_rbracket, ec_exp_rbracket);
  derivations.push_back(array);
}

// ---- Functions ----

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

static a_param_id* parameter_declaration() {
  a_decl_parse_state state;
  a_symbol_locator locator;
  a_func_info_block inner;
  clear_decl_parse_state(&state);
  clear_func_info(&inner);
  decl_specifiers(dso_storage_class | dso_type_specifiers | dso_parameter, &state);
  declarator(do_name_optional | do_parameter, &state, nullptr, &locator, &inner);
  append_attributes(&state.attributes_after, scan_gnu_attribute_groups(al_declarator));
  if (curr_token == tok_assign) {
    pos_error(ec_initializer_in_param, &pos_curr_token);
    flush_tokens();
  }
  a_param_id* param = alloc_param_id();
  param->position = state.declarator_position;
  param->declared_type = state.declared_type;
  check_and_adjust_parameter_type(&state, &state.specifiers_position);
  param->type = state.declared_type;
  param->storage_class = state.storage_class;
  param->is_register = state.storage_class == sc_register;
  if (!locator.is_unnamed && !locator.is_error_locator)
    enter_parameter_symbol(param, &locator);
  param->param_type = make_parameter_type_of(param);
  attach_declarator_attributes(&state, param->param_type, iek_param_type);
  discard_end_of_parse_actions(&state);
  return param;
}

// `(void)`, at the void.
static bool is_void_parameter_list() {
  return curr_token == tok_void && next_token() == tok_rparen;
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

static void scan_ellipsis(a_type* routine_type) {
  routine_type->variant.routine.routine_supplement->has_ellipsis = true;
  get_token();
  if (curr_token == tok_comma)
    syntax_error(ec_exp_rparen);
}

static void parameter_list(a_type* routine_type, a_func_info_block* info) {
  if (is_void_parameter_list()) {
    get_token();
    return;
  }
  add_stop_token(tok_comma);
  do {
    if (curr_token == tok_ellipsis) {
      if (!info->param_id_list && strict_ansi_mode)
        pos_diagnostic(strict_ansi_error_severity, ec_nonstd_ellipsis_only_param, &pos_curr_token);
      scan_ellipsis(routine_type);
      break;
    }
    append_parameter(routine_type, parameter_declaration(), info);
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// C99 6.7.5.3 p3: names alone.
static void identifier_list(a_func_info_block* info) {
  info->is_old_style = true;
  add_stop_token(tok_comma);
  do {
    if (curr_token == tok_ellipsis) {
      pos_error(ec_ellipsis_not_allowed, &pos_curr_token);
      get_token();
      break;
    }
    if (!required_token_no_advance(tok_identifier, ec_exp_identifier))
      continue;
    if (curr_type_symbol() && C_dialect != cd_k_and_r)
      pos_error(ec_typedef_cannot_be_param_name, &pos_curr_token);
    a_param_id* param = alloc_param_id();
    param->position = pos_curr_token;
    a_symbol_locator locator = locator_for_curr_id;
    enter_parameter_symbol(param, &locator);
    add_to_param_id_list(param, info);
    get_token();
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// Whether the parentheses hold a prototype, behind the `(`.
static bool is_prototype() {
  if (curr_token != tok_identifier)
    return is_decl_start(dst_guess_misspelled_type) || curr_token == tok_ellipsis ||
           C_dialect != cd_k_and_r;
  if (curr_type_symbol())
    return C_dialect != cd_k_and_r;
  if (C_dialect == cd_k_and_r)
    return false;
  a_token_kind next = next_token();
  return next != tok_rparen && next != tok_comma;
}

// At the `(`.
static void function_declarator(a_func_info_block* func_info) {
  a_derivation function = {};
  a_func_info_block info;
  clear_func_info(&info);
  function.kind = tk_routine;
  function.position = pos_curr_token;
  function.routine_type = alloc_type(tk_routine);
  a_routine_type_supplement* supplement = function.routine_type->variant.routine.routine_supplement;
  get_token();
  add_stop_token(tok_rparen);
  push_scope(sk_function_prototype, -1, function.routine_type, nullptr);
  info.prototype_scope_number = scope_stack[depth_scope_stack].number;
  if (curr_token == tok_rparen) {
    info.is_old_style = true;
  } else if (is_prototype()) {
    supplement->prototyped = true;
    parameter_list(function.routine_type, &info);
  } else {
    identifier_list(&info);
  }
  info.first_prototype_symbol = scope_stack[depth_scope_stack].pointers.first_symbol;
  pop_scope();
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  derivations.push_back(function);
  if (func_info)
    *func_info = info;
  else if (info.is_old_style && info.param_id_list)
    pos_error(ec_param_id_list_needs_function_def, &function.position);
}

// ---- The declarator ----

// Whether the `(` at hand encloses a declarator and not parameters.
static bool parenthesis_encloses_declarator(unsigned options) {
  if (!(options & (do_name_optional | do_abstract_only)))
    return true;
  a_token_cache cache;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  get_token();
  bool encloses = curr_token != tok_rparen && curr_token != tok_ellipsis && !is_decl_start(0);
  f_rescan_cached_tokens(&cache, true);
  return encloses;
}

static void suffixes(unsigned options, a_func_info_block* func_info, bool is_next_to_name) {
  for (;; is_next_to_name = false) {
    if (curr_token == tok_lbracket) {
      array_declarator(options, is_next_to_name);
    } else if (curr_token == tok_lparen) {
      function_declarator(func_info);
    } else {
      return;
    }
    func_info = nullptr; // only the derivation next to the name can be a definition
  }
}

static void scan_name(unsigned options, a_symbol_locator* locator) {
  if (curr_token == tok_identifier && !(options & do_abstract_only)) {
    *locator = locator_for_curr_id;
    locator->symbol = nullptr;
    get_token();
  } else if (options & do_name_required) {
    syntax_error(ec_exp_identifier);
    clear_locator(locator, &pos_curr_token);
    set_to_error_locator(locator);
  } else {
    make_unnamed_locator(locator, &pos_curr_token);
  }
}

// Reads a declarator; its derivations are pushed, the one that binds first
// being the lowest.
static void scan_declarator(unsigned options, a_decl_parse_state* state, a_symbol_locator* locator,
                            a_func_info_block* func_info) {
  check_stack_limit();
  size_t start = derivations.size();
  pointer_declarator(state);
  size_t number_of_pointers = derivations.size() - start;
  if (curr_token == tok_lparen && parenthesis_encloses_declarator(options)) {
    get_token();
    add_stop_token(tok_rparen);
    append_attributes(&state->attributes_after, scan_attributes(al_specifiers));
    scan_declarator(options, state, locator, func_info);
    remove_stop_token(tok_rparen);
    required_token(tok_rparen, ec_exp_rparen);
  } else {
    scan_name(options, locator);
    if (curr_token == tok_lbracket)
      append_attributes(&state->attributes_after, scan_attributes(al_name));
  }
  bool is_next_to_name = derivations.size() == start + number_of_pointers;
  suffixes(options, is_next_to_name ? func_info : nullptr, is_next_to_name);
  // The pointers bind after what has been read since.
  std::rotate(derivations.begin() + static_cast<ptrdiff_t>(start),
              derivations.begin() + static_cast<ptrdiff_t>(start + number_of_pointers),
              derivations.end());
}

void declarator(unsigned options, a_decl_parse_state* state, a_type* type,
                a_symbol_locator* locator, a_func_info_block* func_info) {
  size_t base = derivations.size();
  state->declarator_position = pos_curr_token;
  scan_declarator(options, state, locator, func_info);
  state->declarator_range.start = locator->position;
  state->declarator_range.end = curr_construct_end_position;
  a_type* result = type ? type : state->type_specifier_type;
  state->base_type = result;
  while (derivations.size() > base) {
    a_derivation derivation = derivations.back();
    derivations.pop_back();
    result = apply_derivation(&derivation, result);
  }
  state->declared_type = result;
  func_info->is_from_typedef = is_function_type(result) && func_info->prototype_scope_number == -1;
}

// ---- Type names ----

a_type* type_name() {
  a_decl_parse_state state;
  a_symbol_locator locator;
  a_func_info_block func_info;
  clear_decl_parse_state(&state);
  clear_func_info(&func_info);
  decl_specifiers(dso_type_specifiers, &state);
  declarator(do_abstract_only, &state, nullptr, &locator, &func_info);
  append_attributes(&state.attributes_before, state.attributes_after);
  append_attributes(&state.attributes_before, scan_gnu_attribute_groups(al_declarator));
  discard_end_of_parse_actions(&state);
  return transform_type_with_gnu_attributes(state.declared_type, state.attributes_before);
}

a_type* scan_type_for_cast() {
  return type_name();
}

a_type* scan_type_for_sizeof() {
  return type_name();
}
