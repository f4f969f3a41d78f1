// Declarations of variables: linkage, redeclaration, tentative definitions
// (C99 6.2.2, 6.9.2).

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "statements.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "target.h"
#include "types.h"

namespace {

// What one declaration of a variable asks for, and what it found.
struct a_variable_declaration {
  a_symbol_locator* locator;
  a_decl_parse_state* state;
  unsigned flags;
  a_storage_kind storage;
  an_id_linkage_kind linkage_wanted;
  int depth;
  a_symbol* match;         // an earlier declaration of the entity, or null
  bool is_hidden_by_local; // the match is out of sight here
};

} // namespace

// ---- Linkage ----

// C++11 3.5 p3: a constant has internal linkage unless it says `extern`.
static bool is_internal_constant(const a_decl_parse_state* state) {
  a_type* type = state->declared_type;
  while (is_array_type(type))
    type = array_element_type(type);
  return in_cplusplus_mode() && state->storage_class_before_declarator == sc_none &&
         is_const_qualified_type(type) && !is_volatile_qualified_type(type);
}

static an_id_linkage_kind linkage_of_declaration(const a_decl_parse_state* state) {
  if (state->storage_class == sc_extern)
    return idl_external;
  if (is_in_function())
    return idl_none;
  return state->storage_class == sc_static || is_internal_constant(state) ? idl_internal
                                                                          : idl_external;
}

static bool is_variable_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_variable || symbol->kind == symk_extern_variable ||
         symbol->kind == symk_static_data_member;
}

// Without `static` a declaration takes the linkage of an earlier one that is
// visible (C99 6.2.2 p4).
static void take_linkage_of_match(a_variable_declaration* decl) {
  if (!decl->match || decl->linkage_wanted == idl_none || decl->storage == sc_static ||
      decl->is_hidden_by_local)
    return;
  an_id_linkage_kind linkage =
      static_cast<an_id_linkage_kind>(decl->match->variant.variable->source_corresp.linkage);
  if (linkage == idl_none || linkage == decl->linkage_wanted)
    return;
  decl->linkage_wanted = linkage;
  if (linkage == idl_internal && !is_in_function() && check_misra_c_2004)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_8_11, &decl->locator->position);
}

// ---- The match ----

// A match that can't be joined is reported, and the declaration goes its own
// way with a symbol that nobody finds.
static void check_match(a_variable_declaration* decl) {
  a_symbol* match = decl->match;
  if (!match)
    return;
  bool same_scope = match->scope_number == scope_stack[decl->depth].number;
  if (same_scope && decl->linkage_wanted == idl_none && is_variable_symbol(match)) {
    pos_st_error(ec_id_already_declared, &decl->locator->position,
                 decl->locator->header->identifier);
  } else if (!is_variable_symbol(match) ||
             match->variant.variable->source_corresp.linkage == idl_none) {
    report_incompatible_redeclaration(&decl->locator->position, match);
  } else if (in_cplusplus_mode() && (decl->flags & dvf_definition) &&
             match->variant.variable->is_defined) {
    // C++ has one definition only (C++11 3.2 p1).
    pos_sy_error(ec_already_defined, &decl->locator->position, match);
    match->is_error = true;
  } else {
    return;
  }
  set_to_error_locator(decl->locator);
  decl->match = nullptr;
}

// `T C::x;` defines the static member that the class declared (C++11 9.4.2 p2).
static void find_static_data_member(a_variable_declaration* decl) {
  a_decl_parse_state* state = decl->state;
  if (state->storage_class_before_declarator == sc_static ||
      state->storage_class_before_declarator == sc_extern)
    pos_error(ec_storage_class_not_allowed, &state->storage_class_position);
  decl->match = find_data_member_declaration(decl->locator, (decl->flags & dvf_definition) != 0);
}

static void find_match(a_variable_declaration* decl) {
  bool is_definition = (decl->flags & dvf_definition) != 0;
  if (decl->locator->is_template_id) {
    pos_error(ec_explicit_template_args_not_allowed, &decl->locator->position);
    set_to_error_locator(decl->locator);
  } else if (decl->locator->is_class_qualified && !decl->locator->is_error_locator) {
    find_static_data_member(decl);
  } else if (decl->locator->is_qualified) {
    decl->match = find_qualified_declaration(decl->locator, is_definition);
  } else {
    decl->is_hidden_by_local =
        decl->linkage_wanted != idl_none && is_hidden_by_local(decl->locator);
    decl->match = forget_predeclared_function(
        find_linked_declaration(decl->locator, decl->linkage_wanted != idl_none));
  }
}

static a_symbol* new_symbol(a_variable_declaration* decl) {
  bool check = true;
  decl->locator->symbol = nullptr;
  return enter_symbol(symk_variable, decl->locator, decl->depth, &check);
}

// ---- Redeclaration ----

static bool is_repaired_by_old_compilers(a_type* new_type, a_type* old_type) {
  return gcc_mode && gnu_version < 30000 &&
         f_types_are_compatible(new_type, old_type,
                                tcf_error_matches | tcf_allow_unknown_bound |
                                    tcf_ignore_top_qualifiers);
}

static void reconcile_types(a_variable_declaration* decl, a_variable* variable) {
  a_type* new_type = decl->state->declared_type;
  bool is_repaired = false;
  if (!redeclaration_types_are_compatible(new_type, variable->type)) {
    is_repaired = is_repaired_by_old_compilers(new_type, variable->type);
    pos_sy_diagnostic(is_repaired ? es_warning : es_error, ec_not_compatible_with_previous_decl,
                      &decl->locator->position, decl->match);
    if (!is_repaired) {
      if (decl->match->defined)
        decl->state->declared_type = error_type();
      else
        variable->type = new_type;
      return;
    }
    new_type =
        type_plus_qualifiers_from_second_type(make_unqualified_type(new_type), variable->type);
  }
  if (!is_error_type(new_type) && !is_error_type(variable->type))
    variable->type = composite_type(new_type, variable->type);
  decl->state->declared_type = variable->type;
}

// C99 6.2.2 p7.
static void reconcile_linkage(a_variable_declaration* decl, a_variable* variable) {
  if (variable->is_static_data_member)
    return;
  bool was_static = variable->source_corresp.linkage == idl_internal;
  bool wants_static = decl->linkage_wanted == idl_internal;
  if (was_static == wants_static)
    return;
  report_linkage_conflict(&decl->locator->position);
  // `extern int x; static int x;` ends static, `int x; static int x;` external.
  if (variable->storage_kind != sc_none && decl->storage != sc_none) {
    variable->source_corresp.linkage = idl_internal;
    variable->storage_kind = sc_static;
  } else {
    variable->source_corresp.linkage = idl_external;
    variable->storage_kind = sc_none;
  }
}

// In C a tentative definition behind an initialised one defines nothing; the
// initialiser reports a second initialised one.
static void check_repeated_definition(a_variable_declaration* decl, const a_variable* variable) {
  if ((decl->flags & dvf_tentative) && variable->is_defined &&
      (variable->init_kind != initk_none || !variable->is_tentative))
    decl->flags &= ~(dvf_definition | dvf_tentative);
}

// Lists hold variables in the order of their definitions.
static void move_to_end_of_list(a_variable* variable, const a_symbol* match) {
  int depth = depth_of_linked_entities();
  int pushed = push_scopes_of_member(match);
  if (pushed != 0)
    depth = depth_scope_stack;
  remove_from_variables_list(variable, depth);
  add_to_variables_list(variable, depth);
  pop_scopes_of_member(pushed);
}

static void define_again(a_variable_declaration* decl, a_variable* variable) {
  bool is_tentative = decl->flags & dvf_tentative;
  if (!is_tentative || !variable->is_defined)
    move_to_end_of_list(variable, decl->match);
  variable->is_defined = true;
  variable->is_tentative = is_tentative;
  variable->source_corresp.position = decl->locator->position;
  if (variable->storage_kind == sc_extern)
    variable->storage_kind = variable->source_corresp.linkage == idl_internal ? sc_static : sc_none;
}

static void redeclare(a_variable_declaration* decl) {
  a_variable* variable = decl->match->variant.variable;
  reconcile_types(decl, variable);
  reconcile_linkage(decl, variable);
  check_repeated_definition(decl, variable);
  if (decl->flags & dvf_definition)
    define_again(decl, variable);
  bool is_own_symbol =
      decl->match->kind != symk_extern_variable &&
      (decl->match->scope_number == scope_stack[decl->depth].number || !is_in_function());
  if (is_own_symbol) {
    decl->state->symbol = decl->match;
    return;
  }
  decl->state->symbol = new_symbol(decl);
  decl->state->symbol->variant.variable = variable;
  decl->state->symbol->is_local_extern = is_in_function();
}

// ---- New variables ----

static void set_variable_facts(a_variable* variable, const a_variable_declaration* decl) {
  an_id_linkage_kind linkage = decl->linkage_wanted;
  if (linkage == idl_external && is_in_unnamed_namespace())
    linkage = idl_internal; // C++11 3.5 p4
  variable->source_corresp.linkage = linkage;
  variable->source_corresp.local_to_function = is_in_function() && linkage == idl_none;
  variable->is_variably_modified = is_variably_modified_type(variable->type);
}

static a_variable* new_variable(a_variable_declaration* decl, a_symbol* symbol) {
  // An entity of a block's extern declaration belongs to the file scope.
  int depth = decl->linkage_wanted == idl_none ? decl->depth : depth_of_linked_entities();
  a_storage_kind storage =
      decl->linkage_wanted == idl_internal && decl->storage == sc_none ? sc_static : decl->storage;
  a_variable* variable = make_variable(decl->state->declared_type, storage, depth);
  symbol->variant.variable = variable;
  set_source_corresp_with_scope_depth(&variable->source_corresp, symbol, depth);
  set_variable_facts(variable, decl);
  return variable;
}

static void declare_new(a_variable_declaration* decl) {
  a_symbol* symbol = new_symbol(decl);
  a_variable* variable = new_variable(decl, symbol);
  variable->is_defined = (decl->flags & dvf_definition) != 0;
  variable->is_tentative = (decl->flags & dvf_tentative) != 0;
  decl->state->symbol = symbol;
  // Later declarations must agree, though the block's name is out of sight.
  if (decl->linkage_wanted == idl_external && is_in_function() &&
      !decl->locator->is_error_locator) {
    symbol->is_local_extern = true;
    a_symbol* extern_symbol = enter_extern_symbol(symk_extern_variable, decl->locator);
    extern_symbol->variant.variable = variable;
  }
}

// ---- What the declaration adds ----

// `register` at file scope, where no asm name says which register.
static void check_register_of_target(a_variable* variable, const a_decl_parse_state* state) {
  const a_symbol* symbol = state->symbol;
  const a_source_position* position = &state->declarator_range.start;
  if (!TRG_is_greg_name(variable, symbol))
    pos_st_error(ec_unrecognized_gregister, position, symbol->header->identifier);
  else if (!TRG_is_greg_type(variable, symbol))
    pos_error(ec_illegal_gregister_type, position);
  else
    variable->decl_modifiers |= dm_global;
}

void update_variable_decl_modifiers(a_decl_parse_state* state) {
  a_variable* variable = state->symbol->variant.variable;
  if (state->storage_class == sc_extern && state->storage_class_before_declarator == sc_register &&
      !state->asm_name)
    check_register_of_target(variable, state);
  variable->decl_modifiers |= state->modifiers.mask;
  if (state->modifiers.thread_local_seen)
    variable->is_thread_local = true;
  if (state->modifiers.declared_alignment > variable->alignment)
    variable->alignment = static_cast<uint16_t>(state->modifiers.declared_alignment);
}

// A type that depends on a value is made where its declaration is reached
// (C99 6.7.5.2 p5).
static void note_variably_modified_type(a_variable* variable, const a_source_position* position) {
  const a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
  if (!routine->has_vla || !is_variably_modified_type(variable->type))
    return;
  a_statement* statement = add_statement_at_stmt_pos(stmk_vla_decl, position);
  statement->variant.vla_decl.variable = variable;
  if (!is_vla_type(variable->type) || variable->storage_kind < sc_auto)
    return;
  if (inside_statement_expression())
    pos_error(ec_vla_in_statement_expr, position);
  variable->is_vla = true;
  variable->storage_kind = sc_auto; // its address is needed
  update_init_statement_control_flow(statement);
}

static void note_local_variable(a_variable_declaration* decl) {
  a_symbol* symbol = decl->state->symbol;
  if (decl->storage == sc_static) {
    a_routine* routine = scope_stack[depth_innermost_function_scope].routine;
    routine->has_local_statics = true;
    if (std_c99_inlining && !is_const_qualified_type(decl->state->declared_type))
      check_c99_inline_definition(routine, &decl->locator->position, true);
  }
  record_entity_in_decl_stmt_if_needed(symbol);
  note_variably_modified_type(symbol->variant.variable, &decl->locator->position);
}

// `register` at file scope names a register that the whole program shares: it
// declares, and defines no object.
static void check_global_register(a_variable_declaration* decl) {
  if (decl->storage != sc_register || is_in_function())
    return;
  decl->storage = decl->state->storage_class = sc_extern;
  // As an earlier declaration of the register had it.
  if (!decl->state->asm_name)
    decl->state->declared_type =
        type_of_global_register(decl->locator->header->identifier, decl->state->declared_type);
  decl->flags &= ~(dvf_definition | dvf_tentative);
}

void decl_variable(a_symbol_locator* locator, a_decl_parse_state* state, unsigned flags) {
  a_variable_declaration decl = {};
  decl.locator = locator;
  decl.state = state;
  decl.flags = flags;
  decl.storage = state->storage_class;
  check_global_register(&decl);
  decl.linkage_wanted = linkage_of_declaration(state);
  decl.depth = decl_scope_level;
  find_match(&decl);
  check_match(&decl);
  take_linkage_of_match(&decl);
  const bool is_redeclared = decl.match != nullptr;
  if (is_redeclared)
    redeclare(&decl);
  else
    declare_new(&decl);
  a_symbol* symbol = state->symbol;
  a_variable* variable = symbol->variant.variable;
  bool defines = (decl.flags & dvf_definition) && !(decl.flags & dvf_tentative);
  apply_asm_name_to_variable(symbol, state, is_redeclared);
  attach_decl_attributes(state, false);
  update_variable_decl_modifiers(state);
  if (decl.flags & dvf_definition) {
    symbol->defined = true;
    apply_default_section_to_variable(variable);
    if (is_volatile_qualified_type(variable->type))
      mark_as_needed(variable, iek_variable);
  }
  record_symbol_declaration(defines ? srk_definition : srk_declaration, symbol, &locator->position,
                            nullptr);
  if (!is_redeclared || (decl.flags & dvf_definition))
    update_decl_pos_info(&variable->source_corresp, state);
  process_curr_construct_pragmas(symbol, nullptr);
  if (is_in_function())
    note_local_variable(&decl);
}
