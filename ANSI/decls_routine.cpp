// Declarations of functions (C99 6.7.5.3, C++11 8.3.5): redeclaration,
// overloading, and which definitions of inline functions others may use.

#include "attribute.h"
#include "class_decl.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lambda.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

namespace {

// What one declaration of a function asks for, and what it found.
struct a_routine_declaration {
  a_symbol_locator* locator;
  a_decl_parse_state* state;
  unsigned flags;
  bool is_definition;
  a_symbol* match;         // an earlier declaration of the function, or null
  a_symbol* neighbour;     // of the scope: a function, or a set, to stand beside; or null
  bool is_hidden_by_local; // the match is out of sight here
};

} // namespace

a_routine* make_routine(a_type* type, a_storage_kind storage, int depth) {
  a_routine* routine = alloc_routine();
  routine->type = type;
  routine->storage_kind = storage;
  add_to_routines_list(routine, depth);
  return routine;
}

static bool is_routine_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_routine || symbol->kind == symk_extern_routine ||
         symbol->kind == symk_member_function;
}

static a_name_linkage_kind name_linkage_of(a_type* type) {
  return is_function_type(type)
             ? static_cast<a_name_linkage_kind>(
                   skip_typerefs(type)->variant.routine.routine_supplement->name_linkage)
             : nlk_none;
}

// ---- The type (C99 6.2.7) ----

static bool routine_types_are_compatible(a_type* new_type, a_type* old_type) {
  if (in_C_mode())
    return redeclaration_types_are_compatible(new_type, old_type);
  return f_types_are_compatible(new_type, old_type, tcf_error_matches | tcf_ignore_linkage);
}

static an_exception_specification*& exception_spec_of(a_type* type) {
  return skip_typerefs(type)->variant.routine.routine_supplement->exception_specification;
}

// The type of a definition knows its parameters; but a prototype that is
// already known goes on telling calls what to convert to.
static void reconcile_routine_types(a_routine* routine, a_type* new_type, bool is_definition) {
  a_type* old_type = routine->type;
  if (is_error_type(new_type) || is_error_type(old_type))
    return;
  if (!is_definition && routine->has_body)
    return;
  routine->type = composite_type(new_type, old_type);
  an_exception_specification* implied = exception_spec_of(old_type);
  if (routine->exception_spec_is_implicit && !exception_spec_of(routine->type))
    exception_spec_of(routine->type) = implied;
}

static bool is_unprototyped_redeclaration(a_type* new_type, a_type* old_type) {
  return gcc_mode && is_function_type(new_type) && is_function_type(old_type) &&
         !routine_type_is_prototyped(new_type) && routine_type_is_prototyped(old_type);
}

static void report_incompatible_types(a_routine_declaration* decl, a_routine* routine) {
  a_type* new_type = decl->state->declared_type;
  const a_source_position* position = &decl->locator->position;
  if (is_unprototyped_redeclaration(new_type, routine->type) &&
      types_are_compatible(return_type_of(new_type), return_type_of(routine->type))) {
    pos_sy_warning(ec_prototype_lost, position, decl->match);
    if (!routine->has_body)
      routine->type = new_type;
    return;
  }
  report_incompatible_redeclaration(position, decl->match);
  if (decl->is_definition || !routine->has_body)
    routine->type = new_type;
}

// C++11 7.5 p5: a later declaration without a linkage specification keeps the
// linkage of the first. So does one that is in conflict with it.
static void reconcile_name_linkage(a_routine_declaration* decl, a_routine* routine) {
  a_type* new_type = decl->state->declared_type;
  if (in_C_mode() || is_error_type(new_type) || is_error_type(routine->type) ||
      name_linkage_of(new_type) == name_linkage_of(routine->type))
    return;
  if (decl->state->parse_flags.has_linkage_specification ||
      name_linkage_of(new_type) != nlk_cplusplus)
    pos_sy_error(ec_decl_incompatible_with_previous_use, &decl->locator->position, decl->match);
  if (is_function_type(new_type))
    skip_typerefs(new_type)->variant.routine.routine_supplement->name_linkage =
        name_linkage_of(routine->type);
}

// ---- Default arguments (C++11 8.3.6) ----

static a_param_type* param_types_of(a_type* type) {
  return is_function_type(type)
             ? skip_typerefs(type)->variant.routine.routine_supplement->param_types
             : nullptr;
}

// A declaration adds to the default arguments of those before it and repeats
// none (p4).
static void merge_default_args(a_routine_declaration* decl, a_routine* routine) {
  a_param_type* param = param_types_of(decl->state->declared_type);
  for (a_param_type* old = param_types_of(routine->type); old && param;
       old = old->next, param = param->next) {
    if (param->has_default_arg && old->has_default_arg) {
      pos_error(ec_default_arg_already_defined, &decl->locator->position);
    } else if (old->has_default_arg) {
      param->has_default_arg = true;
      param->default_arg_is_deferred = old->default_arg_is_deferred;
      param->default_arg_expr = old->default_arg_expr;
    }
  }
}

// C++11 8.3.6 p4: a friend with default arguments has one declaration only.
static void check_redeclared_friend(const a_routine_declaration* decl) {
  const a_routine* friend_routine =
      decl->match && decl->match->kind == symk_routine ? decl->match->variant.routine : nullptr;
  if (!friend_routine || is_error_type(friend_routine->type))
    return;
  bool is_friend = decl->state->modifiers.friend_seen;
  const a_type* type = is_friend && decl->is_definition       ? decl->state->declared_type
                       : friend_routine->is_friend_definition ? friend_routine->type
                                                              : nullptr;
  const a_param_type* param = type ? param_types_of(skip_typerefs(type)) : nullptr;
  while (param && !param->has_default_arg)
    param = param->next;
  if (!param)
    return;
  if (is_friend)
    pos_error(ec_friend_with_def_arg_must_be_only_decl, &decl->locator->position);
  else
    pos_sy_error(ec_redeclaration_of_friend_with_default_args, &decl->locator->position,
                 decl->match);
}

static void check_default_args(const a_routine_declaration* decl) {
  bool has_default = false;
  for (const a_param_type* param = param_types_of(decl->state->declared_type); param;
       param = param->next) {
    if (has_default && !param->has_default_arg && !param->is_parameter_pack) {
      pos_error(ec_default_arg_not_at_end, &decl->locator->position);
      return;
    }
    has_default = param->has_default_arg;
  }
}

// ---- The linkage (C99 6.2.2 p5, p7) ----

// A function is declared as with `extern`, which takes the linkage of a visible
// declaration only. One that isn't defined yet may still become `static`.
static void reconcile_storage(a_routine_declaration* decl, a_routine* routine) {
  if (decl->match->is_class_member)
    return;
  bool was_static = routine->source_corresp.linkage == idl_internal;
  bool wants_static = decl->state->storage_class == sc_static;
  if (was_static && !wants_static && !decl->is_hidden_by_local) {
    if (check_misra_c_2004 && !is_in_function())
      pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_11, &decl->locator->position);
    return;
  }
  if (was_static == wants_static)
    return;
  report_linkage_conflict(&decl->locator->position);
  if (wants_static && routine->storage_kind == sc_extern) {
    routine->source_corresp.linkage = idl_internal;
    routine->storage_kind = sc_static;
  }
}

// ---- Matches ----

static bool is_same_function(a_type* new_type, const a_symbol* symbol) {
  a_type* old_type = symbol->variant.routine->type;
  if (is_error_type(new_type) || is_error_type(old_type))
    return true;
  return param_types_are_compatible_full(skip_typerefs(new_type), skip_typerefs(old_type),
                                         tcf_error_matches | tcf_distinct_enums, nullptr);
}

// The function of a set that the declaration declares again, by its parameters
// (C++11 13.1).
a_symbol* select_overload(a_type* type, a_symbol* symbol) {
  if (symbol->kind != symk_overloaded_function)
    return is_routine_symbol(symbol) && is_same_function(type, symbol) ? symbol : nullptr;
  for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym) {
    a_symbol* function = fundamental_symbol_of(s);
    if (is_routine_symbol(function) && is_same_function(type, function))
      return function;
  }
  return nullptr;
}

static bool has_function_of_c(a_symbol* symbol) {
  if (symbol->kind != symk_overloaded_function)
    return is_routine_symbol(symbol) && name_linkage_of(symbol->variant.routine->type) == nlk_c;
  for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
    if (has_function_of_c(fundamental_symbol_of(s)))
      return true;
  return false;
}

static void refuse_match(a_routine_declaration* decl) {
  set_to_error_locator(decl->locator);
  decl->match = decl->neighbour = nullptr;
}

// In C++ the parameters tell whether the function found is meant.
static void choose_overload(a_routine_declaration* decl) {
  a_symbol* found = decl->match;
  if (!is_function_symbol_kind(found->kind) && found->kind != symk_extern_routine)
    return;
  bool is_of_scope = found->scope_number == scope_stack[decl_scope_level].number;
  decl->match = select_overload(decl->state->declared_type, found);
  if (!decl->match) {
    decl->neighbour = is_of_scope ? found : nullptr;
    // C++11 7.5 p6: functions of C with one name are one function.
    if (name_linkage_of(decl->state->declared_type) == nlk_c && has_function_of_c(found))
      pos_sy_error(ec_overloaded_function_linkage, &decl->locator->position, found);
  } else if (!is_error_type(decl->state->declared_type) &&
             !is_error_type(decl->match->variant.routine->type) &&
             !identical_types(return_type_of(decl->state->declared_type),
                              return_type_of(decl->match->variant.routine->type))) {
    pos_error(ec_return_type_cannot_distinguish_functions, &decl->locator->position);
    refuse_match(decl);
  }
}

// A function of C in another namespace is the same function.
static void find_function_of_c(a_routine_declaration* decl) {
  if (in_C_mode() || decl->match || decl->locator->is_error_locator ||
      name_linkage_of(decl->state->declared_type) != nlk_c)
    return;
  const a_symbol_header* header = decl->locator->header;
  for (a_symbol* chain : {header->first_symbol, header->first_inactive_symbol})
    for (a_symbol* symbol = chain; symbol; symbol = symbol->next_homonym)
      if (symbol->kind == symk_routine && !symbol->is_class_member &&
          name_linkage_of(symbol->variant.routine->type) == nlk_c &&
          is_same_function(decl->state->declared_type, symbol)) {
        decl->match = symbol;
        return;
      }
}

// A predeclared function gives way to a static one, and with a message to one
// of another type.
static void check_builtin(a_routine_declaration* decl) {
  if (!decl->match || !is_predeclared_function(decl->match))
    return;
  bool is_hidden =
      !routine_types_are_compatible(decl->state->declared_type, decl->match->variant.routine->type);
  if (is_hidden)
    pos_sy_remark(ec_builtin_function_hidden, &decl->locator->position, decl->match);
  if (is_hidden || decl->state->storage_class == sc_static)
    decl->match = forget_predeclared_function(decl->match);
}

// In the older GNU meaning the body of an `extern inline` function is there to
// be inlined only, and a full definition may follow.
static bool may_be_defined_again(a_routine* routine) {
  if (!gnu_mode || (std_c99_inlining && !routine->is_gnu_inline) || !routine->is_inline ||
      routine->has_external_declaration)
    return false;
  a_scope* body = scope_for_routine_or_null(routine);
  if (!body)
    return false;
  clear_function_body(body);
  routine->has_body = false;
  routine->defined = false;
  return true;
}

// A friend's body may still wait for the end of the class.
static bool has_definition(const a_symbol* symbol) {
  const a_routine* routine = symbol->variant.routine;
  return routine->has_body || (routine->is_friend_definition && symbol->defined);
}

// A name that means something else here, or a function defined twice: the
// declaration goes its own way with a symbol that nobody finds.
static void check_match(a_routine_declaration* decl) {
  const a_source_position* position = &decl->locator->position;
  if (!decl->match)
    return;
  if (!is_routine_symbol(decl->match)) {
    report_incompatible_redeclaration(position, decl->match);
    refuse_match(decl);
  } else if (decl->is_definition && has_definition(decl->match) &&
             !may_be_defined_again(decl->match->variant.routine)) {
    pos_sy_error(ec_function_redefinition, position, decl->match);
    refuse_match(decl);
  }
}

// What a member says in its class only (C++11 9.4.1 p1).
static void check_words_of_outside_definition(const a_routine_declaration* decl) {
  a_decl_parse_state* state = decl->state;
  if (state->storage_class == sc_none)
    return;
  pos_error(state->storage_class == sc_static ? ec_static_not_allowed
                                              : ec_storage_class_not_allowed,
            &state->storage_class_position);
  state->storage_class = sc_none;
}

// Outside of its class a member is defined, and not declared (C++11 9.3 p2).
static void check_member_redeclaration(a_routine_declaration* decl) {
  if (!decl->match)
    return;
  const a_routine* routine = decl->match->variant.routine;
  if (!decl->state->modifiers.friend_seen &&
      (is_in_function() || !is_declared_within_current_scope(decl->match))) {
    pos_sy_error(decl->is_definition ? ec_bad_scope_for_definition : ec_bad_scope_for_redeclaration,
                 &decl->locator->position, decl->match);
    refuse_match(decl);
  } else if (!decl->is_definition && !decl->state->modifiers.friend_seen) {
    pos_sy_diagnostic(gnu_mode && !strict_ansi_mode ? es_warning : es_discretionary_error,
                      ec_member_function_redecl_outside_class, &decl->locator->position,
                      decl->match);
  } else if (decl->is_definition && routine->is_compiler_generated) {
    pos_sy_error(ec_definition_of_implicitly_declared_function, &decl->locator->position,
                 decl->match);
    refuse_match(decl);
  } else if (decl->is_definition && decl->match->defined) {
    pos_sy_error(ec_function_redefinition, &decl->locator->position, decl->match);
    refuse_match(decl);
  }
}

static void find_match(a_routine_declaration* decl) {
  if (decl->locator->is_class_qualified && !decl->locator->is_error_locator) {
    check_words_of_outside_definition(decl);
    decl->match = find_member_function_declaration(decl->locator, decl->state->declared_type);
    check_member_redeclaration(decl);
  } else if (decl->locator->is_template_id) {
    pos_error(ec_explicit_template_args_not_allowed, &decl->locator->position);
    set_to_error_locator(decl->locator);
  } else if (decl->locator->is_qualified) {
    decl->match = find_qualified_declaration(decl->locator, decl->is_definition);
    if (decl->match && in_cplusplus_mode()) {
      a_symbol* named = decl->match;
      choose_overload(decl);
      decl->neighbour = nullptr;
      if (!decl->match && !decl->locator->is_error_locator) {
        report_incompatible_redeclaration(&decl->locator->position, named);
        set_to_error_locator(decl->locator);
      }
    }
  } else {
    decl->is_hidden_by_local = is_hidden_by_local(decl->locator);
    if (!decl->is_definition) // the builtin stays what its declaration says again
      load_builtin_function(decl->locator->header);
    decl->match = find_linked_declaration(decl->locator, true);
    if (decl->match && in_cplusplus_mode())
      choose_overload(decl);
    find_function_of_c(decl);
  }
  check_builtin(decl);
  check_match(decl);
}

// ---- The entity ----

// Whether the declaration is the first of the name in its scope.
static bool has_symbol_of_scope(const a_routine_declaration* decl) {
  const a_symbol* match = decl->match;
  if (!match || match->kind == symk_extern_routine)
    return false;
  if (match->kind == symk_member_function)
    return true;
  return match->scope_number == scope_stack[decl_scope_level].number ||
         (decl->locator->qualifier.entry && !is_in_function());
}

static a_symbol* symbol_of_declaration(a_routine_declaration* decl) {
  if (has_symbol_of_scope(decl))
    return decl->match;
  bool check = true;
  decl->locator->symbol = nullptr;
  if (decl->neighbour) {
    a_symbol* symbol =
        enter_overloaded_symbol(symk_routine, decl->neighbour, decl->locator, decl_scope_level);
    symbol->decl_seq = decl_seq_counter++;
    return symbol;
  }
  return enter_symbol(symk_routine, decl->locator, decl_scope_level, &check);
}

static a_routine* new_routine(a_symbol* symbol, const a_symbol_locator* locator,
                              a_decl_parse_state* state) {
  bool is_static = state->storage_class == sc_static;
  int depth = depth_of_linked_entities();
  a_routine* routine = make_routine(state->declared_type, is_static ? sc_static : sc_extern, depth);
  symbol->variant.routine = routine;
  set_source_corresp_with_scope_depth(&routine->source_corresp, symbol, depth);
  routine->source_corresp.linkage =
      is_static || is_in_unnamed_namespace() ? idl_internal : idl_external;
  if (locator->is_operator_name) {
    set_routine_special_kind(routine, rsk_operator);
    routine->special_data.operator_kind = static_cast<uint8_t>(locator->operator_kind);
  } else if (locator->is_literal_operator_name) {
    set_routine_special_kind(routine, rsk_literal_operator);
  }
  return routine;
}

void update_routine_decl_modifiers(a_routine* routine, const a_decl_parse_state* state) {
  routine->decl_modifiers |= state->modifiers.mask;
  if (state->modifiers.declared_alignment > routine->alignment)
    routine->alignment = state->modifiers.declared_alignment;
  if (state->modifiers.inline_seen || state->modifiers.constexpr_seen)
    set_inline_flag(routine, true); // C++11 7.1.5 p1
  if (state->modifiers.noreturn_seen) {
    routine->no_return = true;
    if (is_function_type(routine->type))
      skip_typerefs(routine->type)->variant.routine.routine_supplement->does_not_return = true;
  }
}

// Which definitions of inline functions are external ones. One file-scope
// declaration without `inline` or with `extern` makes it so (C99 6.7.4 p6); in
// the older GNU meaning the definition alone tells, unless it is `extern inline`.
static void note_inline_definition(a_routine* routine, const a_routine_declaration* decl) {
  if ((decl->flags & drf_implicit) || is_in_function())
    return;
  const bool has_c99_meaning = std_c99_inlining && !routine->is_gnu_inline;
  const bool says_inline = decl->state->modifiers.inline_seen;
  const bool says_extern = decl->state->storage_class == sc_extern;
  if (has_c99_meaning ? !says_inline || says_extern
                      : decl->is_definition && !(says_inline && says_extern))
    routine->has_external_declaration = true;
}

// C++11 7.1.5 p1: all declarations say `constexpr`, or none.
static void check_constexpr(const a_routine_declaration* decl, const a_routine* routine) {
  if (in_C_mode() || routine->is_constexpr == decl->state->modifiers.constexpr_seen)
    return;
  pos_sy_error(routine->is_constexpr ? ec_previous_constexpr_decl_conflict
                                     : ec_previous_nonconstexpr_decl_conflict,
               &decl->locator->position, decl->match);
}

static void redeclare_routine(a_routine_declaration* decl) {
  a_routine* routine = decl->match->variant.routine;
  a_type* new_type = decl->state->declared_type;
  if (decl->match->position.seq == 0)
    decl->match->position = routine->source_corresp.position = decl->locator->position;
  reconcile_name_linkage(decl, routine);
  if (routine_types_are_compatible(new_type, routine->type)) {
    merge_default_args(decl, routine);
    reconcile_routine_types(routine, new_type, decl->is_definition);
  } else {
    report_incompatible_types(decl, routine);
  }
  reconcile_storage(decl, routine);
  check_constexpr(decl, routine);
  if (decl->state->modifiers.inline_seen && routine->called && !routine->is_inline)
    pos_sy_remark(ec_called_function_redeclared_inline, &decl->locator->position, decl->match);
}

// ---- Checks of the declaration itself ----

static void check_misra_rules(const a_routine_declaration* decl) {
  if (!check_misra_c_2004 || (decl->flags & drf_implicit))
    return;
  a_type* type = decl->state->declared_type;
  if (decl->is_definition && is_function_type(type) && !routine_type_is_prototyped(type))
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_1, &decl->locator->position);
  if (is_in_function())
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_6, &decl->locator->position);
}

static bool locator_is_operator(const a_symbol_locator* locator) {
  return locator->is_operator_name && !locator->is_error_locator;
}

// C++11 10.4 p3; the functions of a class are checked when it declares them.
static void check_abstract_types(const a_routine_declaration* decl) {
  if (in_cplusplus_mode() && !decl->locator->is_class_qualified &&
      is_function_type(decl->state->declared_type))
    check_abstract_types_of_function(decl->state->declared_type, &decl->locator->position);
}

static void check_declaration(const a_routine_declaration* decl) {
  a_decl_parse_state* state = decl->state;
  // C99 6.8.5 p3: a function is `extern`, whatever its declaration says.
  if (state->parse_flags.is_for_init && in_C_mode() && state->storage_class == sc_none &&
      !state->decl_flags.specifier_error)
    pos_error(ec_invalid_storage_class_in_for_init, &decl->locator->position);
  if (is_function_type(state->declared_type)) {
    a_type* return_type = return_type_of(state->declared_type);
    if (is_void_type(return_type) && get_type_qualifiers(return_type) != tq_none)
      pos_diagnostic(gnu_mode ? es_warning : es_error, ec_qualified_void_return_type,
                     &decl->locator->position);
  }
  if (scope_stack[decl_scope_level].kind == sk_function_prototype)
    pos_warning(ec_decl_in_prototype_scope, &decl->locator->position);
  if (locator_is_operator(decl->locator) && !decl->locator->is_class_qualified)
    check_operator_function_params(decl->locator, state->declared_type, omk_nonmember);
  if (names_special_function(decl->locator) && !decl->locator->is_class_qualified &&
      !decl->locator->is_error_locator)
    pos_error(decl->locator->is_conversion_name ? ec_bad_conversion_function_decl
                                                : ec_bad_constructor_decl,
              &decl->locator->position);
  check_abstract_types(decl);
  check_misra_rules(decl);
}

// The routine of the declaration, with the symbol by which its scope knows it.
static a_routine* declared_routine(a_routine_declaration* decl) {
  a_symbol* symbol = symbol_of_declaration(decl);
  decl->state->symbol = symbol;
  if (decl->match) {
    a_routine* routine = decl->match->variant.routine;
    redeclare_routine(decl);
    if (symbol != decl->match) {
      symbol->variant.routine = routine;
      symbol->is_local_extern = is_in_function();
    }
    return routine;
  }
  a_routine* routine = new_routine(symbol, decl->locator, decl->state);
  if (is_in_function() && !decl->locator->is_error_locator && !(decl->flags & drf_implicit)) {
    symbol->is_local_extern = true;
    enter_extern_symbol(symk_extern_routine, decl->locator)->variant.routine = routine;
  }
  return routine;
}

void decl_routine(a_symbol_locator* locator, a_decl_parse_state* state, a_func_info_block*,
                  unsigned flags) {
  a_routine_declaration decl = {};
  decl.locator = locator;
  decl.state = state;
  decl.flags = flags;
  decl.is_definition = (flags & drf_definition) != 0;
  find_match(&decl);
  check_declaration(&decl);
  if (in_cplusplus_mode())
    check_redeclared_friend(&decl);
  const bool is_redeclared = decl.match != nullptr;
  state->parse_flags.is_redeclaration = is_redeclared;
  a_routine* routine = declared_routine(&decl);
  a_symbol* symbol = state->symbol;
  if (!state->modifiers.friend_seen)
    symbol->is_friend_only = false;
  apply_asm_name_to_routine(symbol, state, is_redeclared);
  update_routine_decl_modifiers(routine, state);
  const bool was_gnu_inline = routine->is_gnu_inline;
  attach_decl_attributes(state, decl.is_definition);
  if (is_redeclared && routine->is_gnu_inline && !was_gnu_inline)
    pos_sy_warning(ec_first_decl_not_gnu_inline, &locator->position, symbol);
  note_inline_definition(routine, &decl);
  check_default_args(&decl);
  set_parent_entity_for_closure_types(routine);
  routine->is_implicitly_declared = (flags & drf_implicit) != 0;
  if (decl.is_definition) {
    // The definition is what positions in messages and in the file point at.
    symbol->defined = true;
    symbol->position = routine->source_corresp.position = locator->position;
  }
  record_symbol_declaration(decl.is_definition ? srk_definition : srk_declaration, symbol,
                            &locator->position, nullptr);
  if (flags & drf_implicit)
    return;
  if (decl.is_definition || !is_redeclared)
    update_decl_pos_info(&routine->source_corresp, state);
  process_curr_construct_pragmas(symbol, nullptr);
}

a_symbol* decl_default_function(a_symbol_locator* locator) {
  a_decl_parse_state state;
  a_func_info_block func_info;
  int32_t saved_region, saved_level = decl_scope_level;
  clear_decl_parse_state(&state);
  clear_func_info(&func_info);
  switch_to_file_scope_region(&saved_region);
  decl_scope_level = 0;
  state.storage_class = sc_extern;
  state.declared_type = make_routine_type(integer_type(ik_int));
  decl_routine(locator, &state, &func_info, drf_declaration | drf_implicit);
  decl_scope_level = saved_level;
  switch_back_to_original_region(saved_region);
  return state.symbol;
}
