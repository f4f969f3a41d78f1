// Struct and union definitions: the specifier with its tag, and the completion
// of the type.

#include "class_decl_int.h"

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Tags (C99 6.7.2.3) ----

// A class declared in a function, or in a class that is.
static void note_local_class(a_type* type, int depth) {
  auto& info = type->variant.class_struct_union;
  bool is_member = scope_stack[depth].kind == sk_class;
  bool is_in_function = depth_innermost_function_scope >= 0 && depth > 0;
  info.is_local_class = is_in_function && !is_member;
  info.is_member_of_local_class = is_in_function && is_member;
  type->is_local_or_anonymous_class = is_in_function;
}

// The scope that `struct s *p;` declares an unknown tag in: in C++ the innermost
// one that is neither a class nor a prototype (C++11 3.3.2 p7).
static int depth_of_new_tag(bool is_declaration_of_tag) {
  int depth = decl_level_of_tags();
  if (in_cplusplus_mode() && !is_declaration_of_tag)
    while (depth > 0 && (scope_stack[depth].kind == sk_class ||
                         scope_stack[depth].kind == sk_class_reactivation ||
                         scope_stack[depth].kind == sk_function_prototype))
      --depth;
  return depth;
}

a_type* make_class_type(a_type_kind kind, a_symbol_kind symbol_kind, a_symbol_locator* locator,
                        int depth) {
  a_type* type = alloc_type(kind);
  clear_class_type_definition_fields(type);
  type->is_incomplete = true;
  note_local_class(type, depth);
  a_symbol* symbol;
  if (locator->is_unnamed)
    symbol = make_symbol(symbol_kind, locator);
  else
    symbol = enter_symbol(symbol_kind, locator, depth, nullptr);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, depth);
  type->source_corresp.is_unnamed = locator->is_unnamed;
  add_to_types_list(type, depth);
  return type;
}

static bool is_complete(const a_type* type) {
  return type->variant.class_struct_union.is_complete_definition ||
         type->variant.class_struct_union.is_being_defined;
}

static void report_unknown_qualified_tag(a_symbol_locator* locator) {
  const char* name = locator->header->identifier;
  if (locator->is_class_qualified)
    pos_stsy_error(ec_not_a_member_class, &locator->position, name,
                   skip_typerefs(locator->qualifier.class_type)->source_corresp.symbol);
  else if (locator->is_global_qualified)
    pos_st_error(ec_name_not_class_in_file_scope, &locator->position, name);
  else
    pos_stsy_error(ec_not_a_tag_member, &locator->position, name,
                   locator->qualifier.namespace_entry->source_corresp.symbol);
}

// A tag with a qualifier: it must be declared, and a definition must stand
// around the scope of the declaration (C++11 9 p1, 9.7 p3).
static a_symbol* qualified_tag_symbol(a_symbol_locator* locator, bool is_definition) {
  a_symbol* symbol = locator->symbol ? fundamental_symbol_of(locator->symbol) : nullptr;
  if (locator->is_error_locator)
    return nullptr;
  if (!symbol) {
    report_unknown_qualified_tag(locator);
    return nullptr;
  }
  check_access_to_name(locator, &locator->position);
  bool is_out_of_place =
      is_definition && (depth_innermost_function_scope >= 0 ||
                        !is_declared_within_current_scope(symbol) || locator->symbol != symbol);
  if (is_out_of_place) {
    pos_sy_error(ec_bad_qualifier_for_delayed_class_definition, &locator->position, symbol);
    return nullptr;
  }
  return symbol;
}

// `class` and `struct` are one kind of symbol; the definition says which it is.
static void set_kind_of_definition(a_type* type, a_type_kind kind) {
  if (in_cplusplus_mode() && kind != tk_union)
    type->kind = kind;
}

// The type that a written tag means. A definition, and a declaration of the
// tag alone, concern the current scope only.
static a_type* class_type_of_tag(a_type_kind kind, a_symbol_kind symbol_kind,
                                 a_symbol_locator* locator, bool is_definition,
                                 bool is_lone_declaration) {
  bool is_qualified = locator->is_qualified;
  a_symbol* symbol = is_qualified ? qualified_tag_symbol(locator, is_definition)
                                  : curr_tag_symbol(locator, is_definition || is_lone_declaration);
  if (!symbol && is_qualified)
    return error_type();
  if (!symbol) {
    a_type* type = make_class_type(kind, symbol_kind, locator,
                                   depth_of_new_tag(is_definition || is_lone_declaration));
    record_symbol_declaration(srk_declaration, type->source_corresp.symbol, &locator->position,
                              nullptr);
    return type;
  }
  if (symbol->kind != symbol_kind) {
    pos_sy_error(ec_tag_kind_incompatible_with_declaration, &locator->position, symbol);
    return error_type();
  }
  a_type* type = symbol->variant.type;
  if (is_definition && is_complete(type)) {
    pos_sy_error(ec_already_defined, &locator->position, symbol);
    make_unnamed_locator(locator, &locator->position);
    return make_class_type(kind, symbol_kind, locator, decl_level_of_tags());
  }
  if (is_definition || is_lone_declaration)
    symbol->is_friend_only = false;
  if (is_definition)
    set_kind_of_definition(type, kind);
  else
    record_symbol_reference(srk_reference | srk_type, symbol, &locator->position, true);
  return type;
}

// ---- Completion ----

static bool is_unbounded_field(const a_field* field) {
  return is_incomplete_array_type(field->type);
}

// A trailing array of unknown bound, in a mode that has them or lets them pass.
static bool accept_flexible_array(const a_field* field, bool is_alone) {
  const a_source_position* position = &field->source_corresp.position;
  bool is_allowed =
      flexible_array_members_allowed || gnu_mode || (in_cplusplus_mode() && !strict_ansi_mode);
  if (is_alone && !gnu_mode)
    return false;
  if (!is_allowed) {
    pos_diagnostic(strict_ansi_error_severity, ec_incomplete_type_not_allowed, position);
    return strict_ansi_error_severity < es_discretionary_error;
  }
  bool is_standard = in_C_mode() && std_version >= 199901;
  if (report_gnu_extensions && !is_standard)
    pos_warning(ec_flexible_array_is_nonstandard, position);
  return true;
}

// Only the last of several members may be an array of unknown bound (C99
// 6.7.2.1 p2). What holds one can itself be a last member only.
static void check_unbounded_fields(a_type* class_type) {
  a_field* first = class_type->variant.class_struct_union.fields;
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  for (a_field* field = first; field; field = field->next) {
    bool is_alone = field == first || class_type->kind == tk_union;
    if (holds_flexible_array(field->type)) {
      supplement->has_flexible_array |= !field->next || class_type->kind == tk_union;
    } else if (is_unbounded_field(field)) {
      if (check_misra_c_2004)
        pos_diagnostic(misra_required_severity, ec_misra_c_2004_18_1,
                       &field->source_corresp.position);
      field->is_flexible_array = !field->next && accept_flexible_array(field, is_alone);
      supplement->has_flexible_array |= field->is_flexible_array;
      if (!field->is_flexible_array) {
        if (field->next || (is_alone && !gnu_mode))
          pos_error(ec_incomplete_type_not_allowed, &field->source_corresp.position);
        field->type = error_type();
      }
    }
  }
}

static bool has_named_field(const a_type* class_type) {
  for (a_field* field = class_type->variant.class_struct_union.fields; field; field = field->next)
    if (field->source_corresp.name || is_anonymous_member(field))
      return true;
  return false;
}

// A class with data members alone is POD and an aggregate in C++ as well, if
// its members are.
static void set_flags_of_plain_class(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  bool is_pod = true;
  for (a_field* field = class_type->variant.class_struct_union.fields; field; field = field->next) {
    const a_type* element = skip_typerefs(skip_array_types(field->type));
    is_pod &= !is_reference_type(element) &&
              !(is_class_struct_union_type(element) && !class_supplement_of(element)->is_pod);
  }
  supplement->is_pod = is_pod;
  supplement->is_aggregate = true;
}

void complete_class_type(a_type* class_type, const a_source_position* position) {
  auto& info = class_type->variant.class_struct_union;
  check_unbounded_fields(class_type);
  if (in_C_mode()) {
    if (!gcc_mode && !has_named_field(class_type) && !is_error_type(class_type))
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_no_named_fields, position);
    set_flags_of_plain_class(class_type);
  } else {
    check_members_of_complete_class(class_type);
    declare_special_members(class_type);
  }
  info.is_being_defined = false;
  info.is_complete_definition = true;
  class_type->is_incomplete = false;
  info.layout_pending = true;
  do_class_layout(class_type);
  if (in_cplusplus_mode()) {
    complete_virtual_functions(class_type);
    check_complete_class(class_type);
    check_hidden_virtual_functions(class_type);
  }
  process_dependent_type_fixups(class_type);
}

static void record_pack_alignment(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  supplement->pack_alignment = current_max_alignment_for_class_members();
  if (supplement->pack_alignment != 0)
    supplement->max_member_alignment = supplement->pack_alignment;
}

// ---- The definition ----

// In the class its own name is a member of it (C++11 9 p2).
static void enter_injected_class_name_symbol(a_type* class_type) {
  a_symbol* own = class_type->source_corresp.symbol;
  if (in_C_mode() || !class_name_injection_enabled || class_type->source_corresp.is_unnamed ||
      own->not_in_lookup)
    return;
  a_symbol_locator locator;
  clear_locator(&locator, &own->position);
  locator.header = own->header;
  a_symbol* symbol = make_symbol(own->kind, &locator);
  symbol->is_injected_class_name = true;
  symbol->variant.type = class_type;
  symbol->supplement = own->supplement;
  symbol->parent.class_type = class_type;
  symbol->is_class_member = true;
  symbol->defined = true;
  add_symbol_to_symbol_table(symbol, depth_scope_stack, nullptr);
}

// True, after a message, where the source ends before the class does.
static bool check_for_file_with_unterminated_type_definition() {
  if (curr_token != tok_end_of_source)
    return false;
  pos_error(ec_file_ends_with_unterminated_type_definition, &pos_curr_token);
  return true;
}

// At the `{`, its members up to the `}`, which is left.
static void scan_members(a_type* class_type) {
  push_class_scope(class_type);
  scope_stack[depth_scope_stack].member_access = default_access_of(class_type);
  enter_injected_class_name_symbol(class_type);
  if (!loop_token(tok_lbrace)) {
    pos_error(ec_missing_class_definition, &pos_curr_token);
    return;
  }
  // Behind the brace, so that a pragma in front of it has acted.
  record_pack_alignment(class_type);
  member_declaration_list(class_type);
}

// #pragma define_type_info asks for what a class has without it.
static void take_type_info_pragmas() {
  if (has_construct_pragmas())
    free_pending_pragma_list(extract_specific_pragmas(pk_define_type_info));
}

// At the `{` or, in C++, at the `:` of the base clause; the `}` is read.
static void scan_class_definition(a_type* class_type, an_attribute* attributes,
                                  a_decl_parse_state* state) {
  auto& info = class_type->variant.class_struct_union;
  a_symbol* symbol = class_type->source_corresp.symbol;
  take_type_info_pragmas();
  info.is_being_defined = true;
  info.is_packed |= pack_all_structs != 0;
  // A type is listed where it is defined.
  if (may_be_added_to_types_list(class_type))
    move_to_end_of_types_list(class_type, in_cplusplus_mode() ? -1 : decl_level_of_tags());
  // What the bases are named by has the access of the class (C++11 11 p7).
  int outer_depth = depth_scope_stack;
  if (in_cplusplus_mode())
    defer_access_checks(outer_depth);
  int pushed = push_scopes_of_member(symbol);
  if (curr_token == tok_colon)
    scan_base_clause(class_type);
  curr_deferred_access_scope = -1;
  a_source_position position = pos_curr_token;
  scan_members(class_type);
  state->end_position = end_pos_curr_token;
  if (!check_for_file_with_unterminated_type_definition() && curr_token == tok_rbrace)
    get_token();
  append_attributes(&attributes, scan_gnu_attribute_groups(al_tag_end));
  attach_type_attributes(class_type, attributes);
  complete_class_type(class_type, &position);
  perform_deferred_access_checks_at_depth(outer_depth, nullptr);
  determine_operator_lookup_namespaces(class_type);
  pop_scope();
  pop_scopes_of_member(pushed);
  record_symbol_declaration(srk_definition, symbol, &class_type->source_corresp.position, nullptr);
  if (in_cplusplus_mode()) {
    add_class_to_fixup_list(class_type);
    process_deferred_class_fixups_and_instantiations();
    check_functions_of_local_class(class_type);
  }
}

// The body of a class whose name was refused, with its bases.
static void flush_class_body() {
  while (curr_token != tok_lbrace && curr_token != tok_semicolon && curr_token != tok_end_of_source)
    get_token();
  if (curr_token == tok_lbrace)
    flush_until_matching_token();
}

// `final` behind the name of a class that is defined here (C++11 9 p3).
static bool scan_final() {
  if (in_C_mode() || curr_token != tok_identifier)
    return false;
  bool is_word = curr_token_is_identifier_string("final");
  if (!is_word && curr_token != tok_final)
    return false;
  a_token_kind next = next_token();
  if (next != tok_lbrace && next != tok_colon)
    return false;
  get_token();
  return true;
}

// Whether a definition follows the tag: in C++ it may begin with the bases. No
// bit-field has the type of a class.
static bool is_start_of_class_definition(bool is_final) {
  return curr_token == tok_lbrace || is_final || (in_cplusplus_mode() && curr_token == tok_colon);
}

static bool is_friend_declaration(const a_decl_parse_state* state) {
  return state->modifiers.friend_seen;
}

a_type* class_specifier(a_decl_parse_state* state) {
  check_stack_limit();
  a_type_kind kind = curr_token == tok_union   ? tk_union
                     : curr_token == tok_class ? tk_class
                                               : tk_struct;
  a_symbol_kind symbol_kind = kind == tk_union ? symk_union : symk_class_or_struct;
  a_symbol_locator locator;
  an_attribute* attributes;
  if (!scan_tag(&locator, &attributes, state))
    return error_type();
  bool is_final = scan_final();
  bool is_definition = is_start_of_class_definition(is_final);
  // `struct s;` declares a tag of this scope, unless more specifiers precede.
  bool is_lone = curr_token == tok_semicolon && !state->decl_flags.type_specifier_seen &&
                 state->storage_class == sc_none && state->qualifiers == tq_none;
  a_type* type;
  if (locator.is_unnamed)
    type = make_class_type(kind, symbol_kind, &locator, decl_level_of_tags());
  else if (is_friend_declaration(state) && !is_definition)
    type = friend_class_type(kind, symbol_kind, &locator);
  else
    type = class_type_of_tag(kind, symbol_kind, &locator, is_definition, is_lone);
  state->decl_flags.declares_tag = !locator.is_unnamed;
  if (!is_definition)
    return attach_type_attributes(type, attributes);
  state->decl_flags.defines_tag = true;
  if (is_error_type(type)) {
    flush_class_body();
    return type;
  }
  class_supplement_of(type)->is_final = is_final;
  type->variant.class_struct_union.is_declared_final = is_final;
  scan_class_definition(type, attributes, state);
  return type;
}

void check_class_linkage() {
  // The old C++ modes alone give classes a linkage.
}

void class_decl_one_time_init() {
  // No variable of this module is kept for each unit.
}

void class_decl_init() {
  class_decl_fixup_init();
}

void class_decl_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
