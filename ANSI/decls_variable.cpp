// Declarations of variables: linkage, redeclaration, tentative definitions
// (C99 6.2.2, 6.9.2).

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "statements.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

namespace {

// What one declaration of a variable asks for, and what it found.
struct a_variable_declaration {
  a_symbol_locator* locator;
  a_decl_parse_state* state;
  unsigned flags;
  a_storage_kind storage;
  an_id_linkage_kind linkage;
  int depth;
  a_symbol* match; // an earlier declaration of the entity, or null
};

} // namespace

static an_id_linkage_kind linkage_wanted(a_storage_kind storage) {
  if (storage == sc_extern)
    return idl_external;
  if (is_in_function())
    return idl_none;
  return storage == sc_static ? idl_internal : idl_external;
}

static bool is_variable_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_variable || symbol->kind == symk_extern_variable;
}

// A match that can't be joined is reported, and the declaration goes its own
// way with a symbol that nobody finds.
static void check_match(a_variable_declaration* decl) {
  a_symbol* match = decl->match;
  if (!match)
    return;
  bool same_scope = match->scope_number == scope_stack[decl->depth].number;
  if (same_scope && decl->linkage == idl_none && is_variable_symbol(match)) {
    pos_st_error(ec_id_already_declared, &decl->locator->position,
                 decl->locator->header->identifier);
  } else if (!is_variable_symbol(match) ||
             match->variant.variable->source_corresp.linkage == idl_none) {
    report_incompatible_redeclaration(&decl->locator->position, match);
  } else {
    return;
  }
  set_to_error_locator(decl->locator);
  decl->match = nullptr;
}

static a_symbol* new_symbol(a_variable_declaration* decl) {
  bool check = true;
  decl->locator->symbol = nullptr;
  return enter_symbol(symk_variable, decl->locator, decl->depth, &check);
}

static void set_variable_facts(a_variable* variable, const a_variable_declaration* decl) {
  variable->source_corresp.linkage = decl->linkage;
  variable->source_corresp.local_to_function = is_in_function() && decl->linkage == idl_none;
  variable->is_variably_modified = is_variably_modified_type(variable->type);
}

static a_variable* new_variable(a_variable_declaration* decl, a_symbol* symbol) {
  // An entity of a block's extern declaration belongs to the file scope.
  int depth = decl->linkage == idl_none ? decl->depth : 0;
  a_variable* variable = make_variable(decl->state->declared_type, decl->storage, depth);
  symbol->variant.variable = variable;
  set_source_corresp_with_scope_depth(&variable->source_corresp, symbol, depth);
  set_variable_facts(variable, decl);
  return variable;
}

// ---- Redeclaration ----

static void reconcile_types(a_variable_declaration* decl, a_variable* variable) {
  a_type* new_type = decl->state->declared_type;
  if (redeclaration_types_are_compatible(new_type, variable->type)) {
    if (!is_error_type(new_type) && !is_error_type(variable->type))
      variable->type = composite_type(new_type, variable->type);
    decl->state->declared_type = variable->type;
    return;
  }
  report_incompatible_redeclaration(&decl->locator->position, decl->match);
  decl->state->declared_type = error_type();
}

// C99 6.2.2 p7. An `extern` takes the linkage of an earlier declaration, but
// of a visible one only (p4).
static void reconcile_linkage(a_variable_declaration* decl, a_variable* variable) {
  bool was_static = variable->source_corresp.linkage == idl_internal;
  bool wants_static = decl->linkage == idl_internal;
  if (was_static == wants_static ||
      (was_static && decl->storage == sc_extern && !is_hidden_by_local(decl->locator)))
    return;
  pos_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_warning, ec_linkage_conflict,
                 &decl->locator->position);
  // `extern int x; static int x;` ends static, `int x; static int x;` external.
  if (variable->storage_kind != sc_none && decl->storage != sc_none) {
    variable->source_corresp.linkage = idl_internal;
    variable->storage_kind = sc_static;
  } else {
    variable->source_corresp.linkage = idl_external;
    if (variable->storage_kind != sc_extern)
      variable->storage_kind = sc_none;
  }
}

// Lists hold variables in the order of their definitions.
static void define_again(a_variable_declaration* decl, a_variable* variable) {
  bool is_tentative = decl->flags & dvf_tentative;
  if (is_tentative && variable->is_defined && !variable->is_tentative)
    return;
  if (!is_tentative || !variable->is_defined) {
    remove_from_variables_list(variable, 0);
    add_to_variables_list(variable, 0);
  }
  variable->is_defined = true;
  variable->is_tentative = is_tentative;
  variable->source_corresp.position = decl->locator->position;
  if (variable->storage_kind == sc_extern)
    variable->storage_kind = sc_none;
}

static void redeclare(a_variable_declaration* decl) {
  a_variable* variable = decl->match->variant.variable;
  reconcile_types(decl, variable);
  reconcile_linkage(decl, variable);
  if (decl->flags & dvf_definition)
    define_again(decl, variable);
  if (decl->match->scope_number == scope_stack[decl->depth].number &&
      decl->match->kind == symk_variable) {
    decl->state->symbol = decl->match;
    return;
  }
  decl->state->symbol = new_symbol(decl);
  decl->state->symbol->variant.variable = variable;
}

static void declare_new(a_variable_declaration* decl) {
  a_symbol* symbol = new_symbol(decl);
  a_variable* variable = new_variable(decl, symbol);
  variable->is_defined = (decl->flags & dvf_definition) != 0;
  variable->is_tentative = (decl->flags & dvf_tentative) != 0;
  decl->state->symbol = symbol;
  // Later declarations must agree, though the block's name is out of sight.
  if (decl->linkage == idl_external && is_in_function() && !decl->locator->is_error_locator) {
    a_symbol* extern_symbol = enter_extern_symbol(symk_extern_variable, decl->locator);
    extern_symbol->variant.variable = variable;
  }
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
}

void decl_variable(a_symbol_locator* locator, a_decl_parse_state* state, unsigned flags) {
  a_variable_declaration decl = {};
  decl.locator = locator;
  decl.state = state;
  decl.flags = flags;
  decl.storage = state->storage_class;
  decl.linkage = linkage_wanted(decl.storage);
  decl.depth = decl_scope_level;
  decl.match =
      forget_predeclared_function(find_linked_declaration(locator, decl.linkage != idl_none));
  check_match(&decl);
  if (decl.match)
    redeclare(&decl);
  else
    declare_new(&decl);
  a_symbol* symbol = state->symbol;
  attach_decl_attributes(state, false);
  bool defines = (flags & dvf_definition) && !(flags & dvf_tentative);
  if (flags & dvf_definition)
    symbol->defined = true;
  record_symbol_declaration(defines ? srk_definition : srk_declaration, symbol, &locator->position,
                            nullptr);
  if (is_in_function())
    note_local_variable(&decl);
}
