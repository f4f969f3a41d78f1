// Namespaces, using-directives and using-declarations (C++11 7.3), linkage
// specifications (7.5).

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "statements.h"
#include "symbol_ref.h"
#include "types.h"

#include <cstring>

static bool is_at_namespace_scope() {
  const a_scope_kind kind = scope_stack[decl_scope_level].kind;
  return kind == sk_file || (kind >= sk_namespace && kind <= sk_namespace_reactivation);
}

// ---- Blocks of declarations ----

// At the `{`; the `}` is read.
static void scan_declaration_block() {
  get_token();
  push_stop_token_stack();
  add_stop_token(tok_rbrace);
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source)
    declaration(true, false, true, false, nullptr, nullptr);
  pop_stop_token_stack();
}

static void end_declaration_block(a_decl_parse_state* state) {
  state->parse_flags.is_function_definition = true; // no `;` follows
  required_token(tok_rbrace, ec_exp_rbrace);
}

// ---- Namespace definitions (C++11 7.3.1) ----

a_namespace* make_namespace(a_symbol* symbol, bool is_inline) {
  a_namespace* entry = alloc_namespace();
  entry->is_inline = is_inline;
  symbol->variant.namespace_entry = entry;
  set_source_corresp_with_scope_depth(&entry->source_corresp, symbol, decl_scope_level);
  entry->source_corresp.linkage = idl_external;
  add_to_namespaces_list(entry, decl_scope_level);
  return entry;
}

// The names of an unnamed or inline namespace also stand in the one around it
// (C++11 7.3.1 p8, 7.3.1.1 p1).
static void enter_implied_directive(a_namespace* entry) {
  const int depth = depth_scope_stack - 1;
  if (entry->is_inline || entry->source_corresp.is_unnamed)
    enter_using_directive(entry, depth, &entry->source_corresp.position);
}

static void open_new_namespace(a_symbol* symbol, bool is_inline) {
  a_namespace* entry = make_namespace(symbol, is_inline);
  entry->source_corresp.is_unnamed = symbol->not_in_lookup && !symbol->is_error;
  if (entry->source_corresp.is_unnamed)
    entry->source_corresp.linkage = idl_internal;
  record_symbol_declaration(srk_definition, symbol, &symbol->position, nullptr);
  push_namespace_scope(entry);
  enter_implied_directive(entry);
}

static void reopen_namespace(a_symbol* symbol, bool is_inline, const a_source_position* position) {
  a_namespace* entry = symbol->variant.namespace_entry;
  if (is_inline && !entry->is_inline)
    pos_error(ec_prev_ns_not_inline, position);
  record_symbol_declaration(srk_definition, symbol, position, nullptr);
  f_push_namespace_extension_scope(entry);
}

static a_symbol* unnamed_namespace_of_scope() {
  const a_scope* scope = scope_stack[decl_scope_level].il_scope;
  for (const a_namespace* n = scope->namespaces; n; n = n->next)
    if (n->source_corresp.is_unnamed)
      return n->source_corresp.symbol;
  return nullptr;
}

static void open_unnamed_namespace(bool is_inline) {
  a_symbol* symbol = unnamed_namespace_of_scope();
  if (symbol) {
    reopen_namespace(symbol, is_inline, &pos_curr_token);
    return;
  }
  a_symbol_locator locator;
  make_unnamed_locator(&locator, &pos_curr_token);
  symbol = make_symbol(symk_namespace, &locator);
  symbol->scope_number = scope_stack[decl_scope_level].number;
  open_new_namespace(symbol, is_inline);
}

// At the name of a namespace, which becomes the current scope.
static void open_named_namespace(bool is_inline) {
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  locator.symbol = nullptr;
  a_symbol* symbol = curr_scope_id_lookup(&locator, ilo_none);
  if (symbol && symbol->kind == symk_namespace && !symbol->variant.namespace_entry->is_alias) {
    reopen_namespace(symbol, is_inline, &locator.position);
    return;
  }
  if (symbol) {
    pos_st_error(ec_id_already_declared, &locator.position, locator.header->identifier);
    set_to_error_locator(&locator);
  }
  locator.symbol = nullptr;
  symbol = enter_symbol(symk_namespace, &locator, decl_scope_level, nullptr);
  symbol->is_error = locator.is_error_locator;
  open_new_namespace(symbol, is_inline);
}

// `a::b::c` opens each in the one before (C++17 10.3.1 p10).
static int open_nested_namespaces(bool is_inline) {
  if (next_token() == tok_colon_colon) {
    if (is_inline)
      pos_error(ec_inline_on_nested_namespace, &pos_curr_token);
    if (std_version < 201703)
      pos_st_diagnostic(gnu_mode ? es_warning : es_discretionary_error,
                        ec_feature_not_allowed_in_current_mode, &pos_curr_token,
                        "nested namespace");
    is_inline = false;
  }
  int number = 1;
  open_named_namespace(is_inline);
  while (loop_token(tok_colon_colon)) {
    bool inner_is_inline = std_version >= 202002 && loop_token(tok_inline);
    if (!required_token_no_advance(tok_identifier, ec_exp_identifier))
      break;
    open_named_namespace(inner_is_inline);
    ++number;
  }
  return number;
}

// Under ignore_std what stands in namespace std is declared around it.
static bool is_ignored_std() {
  return ignore_std && decl_scope_level == 0 && curr_token == tok_identifier &&
         strcmp(locator_for_curr_id.header->identifier, "std") == 0;
}

static void namespace_definition(a_decl_parse_state* state, an_attribute* attributes,
                                 bool is_inline) {
  int number = 0;
  if (is_ignored_std())
    get_token();
  else if (curr_token == tok_identifier)
    number = open_nested_namespaces(is_inline);
  else if (curr_token == tok_lbrace || is_attribute_start(al_namespace)) {
    open_unnamed_namespace(is_inline);
    number = 1;
  }
  append_attributes(&attributes, scan_attributes(al_namespace));
  if (number > 0)
    attach_attributes(attributes, scope_stack[depth_scope_stack].il_scope->assoc.namespace_entry,
                      iek_namespace);
  if (curr_token == tok_lbrace) {
    scan_declaration_block();
  } else {
    syntax_error(number == 0 ? ec_missing_namespace_name : ec_exp_lbrace);
    flush_tokens();
  }
  bool has_body = curr_token == tok_rbrace;
  for (; number > 0; --number)
    pop_scope();
  if (has_body)
    end_declaration_block(state);
}

// ---- Names of namespaces ----

// The namespace that a name, qualified or not, means; null behind a message.
// The name is read.
static a_namespace* scan_namespace_name() {
  if (!f_is_generalized_identifier_start()) {
    syntax_error(ec_missing_namespace_name);
    return nullptr;
  }
  a_symbol* symbol = coalesce_and_lookup_generalized_identifier(ilo_namespaces_only);
  a_symbol_locator locator = locator_for_curr_id;
  a_source_position position = pos_curr_token;
  get_token();
  if (symbol && symbol->kind == symk_namespace) {
    record_symbol_reference(srk_reference, symbol, &position, true);
    return f_skip_namespace_aliases(symbol->variant.namespace_entry);
  }
  if (symbol)
    pos_error(ec_id_must_be_class_or_namespace_name, &position);
  else
    reference_to_invalid_name(&locator);
  return nullptr;
}

// `namespace a = n;`, at the name (C++11 7.3.2).
static void namespace_alias_definition() {
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  get_token();
  a_namespace* aliased = scan_namespace_name();
  if (!aliased)
    return;
  locator.symbol = nullptr;
  a_symbol* previous = curr_scope_id_lookup(&locator, ilo_none);
  if (previous) {
    bool is_same = previous->kind == symk_namespace &&
                   f_skip_namespace_aliases(previous->variant.namespace_entry) == aliased;
    if (!is_same)
      pos_st_error(ec_id_already_declared, &locator.position, locator.header->identifier);
    return;
  }
  locator.symbol = nullptr;
  a_symbol* symbol = enter_symbol(symk_namespace, &locator, decl_scope_level, nullptr);
  a_namespace* alias = make_namespace(symbol, false);
  alias->is_alias = true;
  alias->variant.aliased = aliased;
  record_symbol_declaration(srk_declaration, symbol, &locator.position, nullptr);
}

static void namespace_declaration(a_decl_parse_state* state) {
  a_source_position position = pos_curr_token;
  bool is_inline = loop_token(tok_inline);
  get_token();
  an_attribute* attributes = scan_attributes(al_namespace);
  bool is_alias = curr_token == tok_identifier && next_token() == tok_assign;
  if (is_alias) {
    if (is_inline)
      pos_error(ec_inline_on_alias, &position);
    namespace_alias_definition();
  } else if (!is_at_namespace_scope()) {
    pos_error(ec_namespace_def_not_allowed, &position);
    while (curr_token != tok_lbrace && curr_token != tok_semicolon &&
           curr_token != tok_end_of_source)
      get_token();
    if (curr_token == tok_lbrace) {
      flush_until_matching_token_full(false);
      state->parse_flags.is_function_definition = true;
    }
  } else {
    namespace_definition(state, attributes, is_inline);
  }
}

// ---- using ----

// C++11 7.3.4, behind `using`.
static void using_directive() {
  a_source_position position = pos_curr_token;
  get_token();
  if (ignore_std && curr_token == tok_identifier &&
      strcmp(locator_for_curr_id.header->identifier, "std") == 0) {
    get_token();
    return;
  }
  a_namespace* nominated = scan_namespace_name();
  an_attribute* attributes = scan_attributes(al_using_directive);
  if (nominated)
    attach_attributes(attributes, enter_using_directive(nominated, decl_scope_level, &position),
                      iek_using_decl);
}

static void list_using_declaration(const a_symbol* symbol, const a_source_position* position) {
  an_il_entry_kind kind;
  void* entity = il_entry_for_symbol(symbol, &kind);
  if (!entity)
    return;
  a_using_decl* decl = alloc_using_decl();
  decl->entity_kind = kind;
  decl->entity = entity;
  decl->position = *position;
  add_to_using_decls_list(decl, decl_scope_level);
}

static void list_using_declarations(a_symbol* symbol, const a_source_position* position) {
  symbol = fundamental_symbol_of(symbol);
  if (symbol->kind != symk_overloaded_function) {
    list_using_declaration(symbol, position);
    return;
  }
  for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
    list_using_declaration(fundamental_symbol_of(s), position);
}

// One name of a using-declaration (C++11 7.3.3), which is read.
static void using_declarator() {
  loop_token(tok_typename);
  if (!f_is_generalized_identifier_start()) {
    syntax_error(ec_exp_identifier);
    return;
  }
  a_symbol* symbol = coalesce_and_lookup_generalized_identifier(ilo_none);
  a_symbol_locator locator = locator_for_curr_id;
  a_source_position position = pos_curr_token;
  get_token();
  if (locator.is_error_locator)
    return;
  if (!locator.is_qualified) {
    pos_error(ec_namespace_qualified_name_required, &position);
  } else if (!symbol) {
    reference_to_invalid_name(&locator);
  } else if (symbol->kind == symk_namespace) {
    pos_error(ec_namespace_name_not_allowed, &position);
  } else if (symbol->is_class_member) {
    pos_error(ec_class_qualified_name_not_allowed, &position);
  } else {
    if (locator.is_ambiguous)
      pos_sy_error(ec_ambiguous_name, &position, symbol);
    record_symbol_reference(srk_reference, symbol, &position, false);
    a_symbol* named = locator.symbol ? locator.symbol : symbol;
    if (enter_using_declaration(named, &locator, decl_scope_level))
      list_using_declarations(symbol, &position);
  }
}

static void using_declaration() {
  add_stop_token(tok_comma);
  for (;;) {
    using_declarator();
    if (curr_token != tok_comma)
      break;
    if (std_version < 201703)
      pos_st_diagnostic(gnu_mode ? es_warning : es_discretionary_error,
                        ec_feature_not_allowed_in_current_mode, &pos_curr_token, ",");
    get_token();
  }
  remove_stop_token(tok_comma);
}

void scan_alias_declaration() {
  if (std_version < 201103)
    pos_st_diagnostic(gnu_mode ? es_warning : es_discretionary_error,
                      ec_feature_not_allowed_in_current_mode, &pos_curr_token, "alias declaration");
  alias_declaration();
}

static void using_construct() {
  get_token();
  if (curr_token == tok_namespace)
    using_directive();
  else if (curr_token == tok_identifier && next_token() == tok_assign)
    scan_alias_declaration();
  else
    using_declaration();
}

// ---- Linkage specifications (C++11 7.5) ----

static a_name_linkage_kind scan_linkage_name() {
  a_name_linkage_kind kind = nlk_cplusplus;
  const char* text =
      const_for_curr_token.kind == con_string ? const_for_curr_token.value.string.text : "";
  if (strcmp(text, "C") == 0)
    kind = nlk_c;
  else if (strcmp(text, "C++") != 0)
    pos_st_error(ec_bad_linkage_specifier, &pos_curr_token, text);
  get_token();
  return kind;
}

void scan_linkage_prefix(a_decl_parse_state* state) {
  while (in_cplusplus_mode() && curr_token == tok_extern && next_token() == tok_string) {
    if (!is_at_namespace_scope())
      pos_error(ec_linkage_specifier_not_allowed, &pos_curr_token);
    get_token();
    if (state->parse_flags.has_linkage_specification)
      pop_name_linkage();
    push_name_linkage(scan_linkage_name());
    state->parse_flags.has_linkage_specification = true;
  }
}

// ---- The forms ----

// A template can't be declared yet; its declaration is passed over.
static void refuse_template(a_decl_parse_state* state) {
  pos_st_error(ec_feature_not_allowed_in_current_mode, &pos_curr_token, token_names[curr_token]);
  while (curr_token != tok_lbrace && curr_token != tok_semicolon && curr_token != tok_end_of_source)
    get_token();
  if (curr_token == tok_lbrace) {
    flush_until_matching_token_full(false);
    state->parse_flags.is_function_definition = curr_token != tok_semicolon;
  }
}

bool is_cplusplus_declaration(a_decl_parse_state* state) {
  if (!in_cplusplus_mode())
    return false;
  if (curr_token == tok_namespace || (curr_token == tok_inline && next_token() == tok_namespace)) {
    namespace_declaration(state);
  } else if (curr_token == tok_using) {
    using_construct();
  } else if (curr_token == tok_template) {
    refuse_template(state);
  } else if (curr_token == tok_lbrace && state->parse_flags.has_linkage_specification) {
    process_curr_construct_pragmas(nullptr, nullptr); // its declarations have their own
    scan_declaration_block();
    end_declaration_block(state);
  } else {
    return false;
  }
  return true;
}
