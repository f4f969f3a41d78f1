// Using-declarations and access declarations in classes (C++11 7.3.3, C++98
// 11.3).

#include "class_decl_int.h"

#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "types.h"

static a_using_decl* list_using_decl(an_il_entry_kind kind, void* entity,
                                     const a_source_position* position, bool is_access_decl) {
  a_using_decl* decl = alloc_using_decl();
  decl->entity_kind = kind;
  decl->entity = entity;
  decl->position = *position;
  decl->is_access_decl = is_access_decl;
  decl->access = scope_stack[depth_scope_stack].member_access;
  add_to_using_decls_list(decl, depth_scope_stack);
  return decl;
}

static void list_members(a_symbol* symbol, const a_source_position* position, bool is_access_decl) {
  symbol = fundamental_symbol_of(symbol);
  if (symbol->kind == symk_overloaded_function) {
    for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
      list_members(s, position, is_access_decl);
    return;
  }
  an_il_entry_kind kind;
  if (void* entity = il_entry_for_symbol(symbol, &kind))
    list_using_decl(kind, entity, position, is_access_decl);
}

// ---- Constructors (C++11 12.9) ----

static a_base_class* direct_base_record(a_type* class_type, const a_type* base_type) {
  a_base_class* base = class_supplement_of(class_type)->base_classes;
  while (base && !(base->is_direct && class_of_base(base) == base_type))
    base = base->next;
  return base;
}

static bool inherits_already(const a_type* class_type, const a_type* base_type) {
  const a_using_decl* decl = class_supplement_of(class_type)->scope->using_decls;
  while (decl && !(decl->is_inherited_constructor && decl->entity == base_type))
    decl = decl->next;
  return decl != nullptr;
}

static void inherit_constructors(a_type* class_type, a_type* base_type, bool is_access_decl,
                                 const a_source_position* position) {
  if (is_access_decl || (std_version < 201103 && !gnu_mode)) {
    pos_error(ec_no_ctor_or_dtor_using_declaration, position);
  } else if (inherits_already(class_type, base_type)) {
    pos_sy_error(ec_duplicate_using_decl, position, base_type->source_corresp.symbol);
  } else if (!direct_base_record(class_type, base_type)) {
    pos_error(ec_inheriting_ctor_not_from_direct_base, position);
  } else {
    a_using_decl* decl = list_using_decl(iek_type, base_type, position, false);
    decl->is_inherited_constructor = true;
  }
}

// ---- One name ----

// C++11 7.3.3 p3: what is named is a member of a base.
static bool is_base_of_open_class(const a_type* class_type, const a_type* named_class,
                                  const a_source_position* position) {
  if (find_base_class_of(class_type, named_class))
    return true;
  pos_error(ec_bad_base_class, position);
  return false;
}

// Whether the name is that of the class in front of it, which a typedef may have
// given (C++11 3.4.3.1 p2).
static bool names_own_class(const a_symbol_locator* locator, const a_type* named_class) {
  const a_symbol* symbol = named_class->source_corresp.symbol;
  if (symbol && symbol->header == locator->header)
    return true;
  a_symbol_locator alias = cleared_locator;
  alias.header = locator->header;
  symbol = locator->symbol ? nullptr : normal_id_lookup(&alias, ilo_none);
  return symbol && symbol->kind == symk_type && skip_typerefs(symbol->variant.type) == named_class;
}

// The name in the locator becomes a member of the class.
static void declare_member_of_base(a_type* class_type, a_symbol_locator* locator,
                                   bool is_access_decl) {
  const a_source_position position = locator->position;
  if (locator->is_error_locator)
    return;
  if (!locator->is_class_qualified) {
    pos_error(ec_class_qualified_name_required, &position);
    return;
  }
  a_type* named_class = skip_typerefs(locator->qualifier.class_type);
  if (!is_base_of_open_class(class_type, named_class, &position))
    return;
  if (locator->is_destructor_name) {
    pos_error(ec_no_ctor_or_dtor_using_declaration, &position);
    return;
  }
  if (locator->is_constructor_name || names_own_class(locator, named_class)) {
    inherit_constructors(class_type, named_class, is_access_decl, &position);
    return;
  }
  a_symbol* named = locator->symbol;
  if (!named) {
    pos_stsy_error(ec_not_a_member, &position, locator->header->identifier,
                   named_class->source_corresp.symbol);
    return;
  }
  if (locator->is_ambiguous) {
    report_ambiguous_name(locator);
    return;
  }
  check_access_to_symbol(named, named_class, nullptr, &position);
  record_symbol_reference(srk_reference, fundamental_symbol_of(named), &position, false);
  a_symbol* entered = enter_using_declaration(named, locator, depth_scope_stack);
  if (!entered)
    return;
  list_members(named, &position, is_access_decl);
  remove_functions_hidden_by_class(entered);
}

static bool check_kind_of_class(const a_type* class_type) {
  if (class_type->kind != tk_union)
    return true;
  pos_error(ec_no_access_or_using_decl_in_union, &pos_curr_token);
  return false;
}

// ---- The declarations ----

static void using_declarator(a_type* class_type) {
  loop_token(tok_typename);
  if (!f_is_generalized_identifier_start()) {
    syntax_error(ec_exp_identifier);
    return;
  }
  coalesce_and_lookup_generalized_identifier(ilo_none);
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  declare_member_of_base(class_type, &locator, false);
}

void member_using_declaration(a_type* class_type) {
  bool is_allowed = true;
  get_token();
  if (curr_token == tok_identifier && next_token() == tok_assign) {
    scan_alias_declaration();
    return;
  }
  if (embedded_cplusplus_mode)
    pos_diagnostic(es_discretionary_error, ec_using_decl_in_embedded_cplusplus, &pos_curr_token);
  is_allowed = check_kind_of_class(class_type);
  if (!is_allowed) {
    flush_tokens_without_warning();
    return;
  }
  add_stop_token(tok_comma);
  do
    using_declarator(class_type);
  while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

bool is_access_declaration() {
  if (in_C_mode() || curr_token == tok_operator || !f_is_generalized_identifier_start())
    return false;
  bool may_be_qualified = curr_token == tok_colon_colon || next_token() == tok_colon_colon;
  if (!may_be_qualified)
    return false;
  coalesce_and_lookup_generalized_identifier(ilo_none);
  return locator_for_curr_id.is_qualified && next_token() == tok_semicolon;
}

void access_declaration(a_type* class_type) {
  a_symbol_locator locator = locator_for_curr_id;
  bool is_allowed = check_kind_of_class(class_type);
  get_token();
  if (is_allowed)
    declare_member_of_base(class_type, &locator, true);
}
