// Struct and union definitions: the specifier with its tag, and the completion
// of the type.

#include "class_decl_int.h"

#include "attribute.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Tags (C99 6.7.2.3) ----

static a_type* make_class_type(a_type_kind kind, a_symbol_kind symbol_kind,
                               a_symbol_locator* locator) {
  a_type* type = alloc_type(kind);
  clear_class_type_definition_fields(type);
  type->is_incomplete = true;
  int depth = decl_level_of_tags();
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

// The type that a written tag means. A definition, and a declaration of the
// tag alone, concern the current scope only.
static a_type* class_type_of_tag(a_type_kind kind, a_symbol_kind symbol_kind,
                                 a_symbol_locator* locator, bool is_definition,
                                 bool is_lone_declaration) {
  a_symbol* symbol = curr_tag_symbol(locator, is_definition || is_lone_declaration);
  if (!symbol) {
    a_type* type = make_class_type(kind, symbol_kind, locator);
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
    return make_class_type(kind, symbol_kind, locator);
  }
  if (!is_definition)
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
  bool is_allowed = flexible_array_members_allowed || gnu_mode || in_cplusplus_mode();
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

static void complete_class_type(a_type* class_type, const a_source_position* position) {
  auto& info = class_type->variant.class_struct_union;
  check_unbounded_fields(class_type);
  if (in_C_mode() && !gcc_mode && !has_named_field(class_type) && !is_error_type(class_type))
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_no_named_fields, position);
  set_flags_of_plain_class(class_type);
  info.is_being_defined = false;
  info.is_complete_definition = true;
  class_type->is_incomplete = false;
  info.layout_pending = true;
  do_class_layout(class_type);
  process_dependent_type_fixups(class_type);
}

static void record_pack_alignment(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  supplement->pack_alignment = current_max_alignment_for_class_members();
  if (supplement->pack_alignment != 0)
    supplement->max_member_alignment = supplement->pack_alignment;
}

// At the `{`; the `}` is read.
static void scan_class_definition(a_type* class_type, an_attribute* attributes,
                                  a_decl_parse_state* state) {
  auto& info = class_type->variant.class_struct_union;
  a_source_position position = pos_curr_token;
  info.is_being_defined = true;
  info.is_packed |= pack_all_structs != 0;
  // A type is listed where it is defined.
  if (may_be_added_to_types_list(class_type))
    move_to_end_of_types_list(class_type, decl_level_of_tags());
  get_token();
  // Behind the brace, so that a pragma in front of it has acted.
  record_pack_alignment(class_type);
  push_class_scope(class_type);
  member_declaration_list(class_type);
  state->end_position = end_pos_curr_token;
  required_token(tok_rbrace, ec_exp_rbrace);
  append_attributes(&attributes, scan_gnu_attribute_groups(al_tag_end));
  attach_type_attributes(class_type, attributes);
  complete_class_type(class_type, &position);
  pop_scope();
  record_symbol_declaration(srk_definition, class_type->source_corresp.symbol,
                            &class_type->source_corresp.position, nullptr);
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
  bool is_definition = curr_token == tok_lbrace;
  // `struct s;` declares a tag of this scope, unless more specifiers precede.
  bool is_lone = curr_token == tok_semicolon && !state->decl_flags.type_specifier_seen &&
                 state->storage_class == sc_none && state->qualifiers == tq_none;
  a_type* type = locator.is_unnamed
                     ? make_class_type(kind, symbol_kind, &locator)
                     : class_type_of_tag(kind, symbol_kind, &locator, is_definition, is_lone);
  state->decl_flags.declares_tag = !locator.is_unnamed;
  if (!is_definition)
    return attach_type_attributes(type, attributes);
  state->decl_flags.defines_tag = true;
  if (!is_error_type(type)) {
    scan_class_definition(type, attributes, state);
  } else {
    flush_until_matching_token();
  }
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
