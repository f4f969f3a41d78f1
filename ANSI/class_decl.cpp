// Struct and union definitions: the specifier with its tag, the member
// declarations, bit-fields, and the completion of the type.

#include "class_decl.h"

#include "attribute.h"
#include "const_ints.h"
#include "declarator.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "target.h"
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

// ---- Bit-fields (C99 6.7.2.1 p3, p4) ----

static bool is_int_or_bool(const a_type* type) {
  if (is_enum_type(type))
    return false;
  an_integer_kind kind = int_kind_of(type);
  return is_bool_type(type) || kind == ik_int || kind == ik_unsigned_int;
}

static bool check_bit_field_type(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (!is_integral_or_enum_type(type)) {
    pos_error(ec_bad_bit_field_type, position);
    return false;
  }
  if (in_C_mode() && strict_ansi_mode && !is_int_or_bool(type))
    pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_bit_field_type, position);
  return true;
}

// The width that counts, the written one going to declared_bit_size when it
// exceeds the type's.
static void set_bit_field_width(a_field* field, const a_constant* width,
                                const a_source_position* position) {
  int type_bits =
      is_bool_type(field->type) ? 1 : static_cast<int>(size_of_type(field->type)) * targ_char_bit;
  bool is_named = field->source_corresp.name != nullptr;
  if (cmplit_integer_constant(width, 0) < 0 ||
      (cmplit_integer_constant(width, type_bits) > 0 && in_C_mode())) {
    pos_error(ec_bad_bit_field_size, position);
    field->bit_size = static_cast<uint8_t>(type_bits);
  } else if (cmplit_integer_constant(width, 0) == 0 && is_named) {
    pos_error(ec_zero_length_bit_field_must_be_unnamed, position);
    field->bit_size = static_cast<uint8_t>(type_bits);
  } else {
    field->bit_size = static_cast<uint8_t>(width->value.int_value);
  }
  if (field->bit_size == 1 && is_named && is_signed_integral_type(field->type) &&
      !is_enum_type(field->type) && !is_bool_type(field->type))
    pos_remark(ec_signed_one_bit_field, position);
}

// At the `:`.
static void scan_bit_field_width(a_field* field) {
  get_token();
  a_source_position position = pos_curr_token;
  a_constant width;
  add_stop_token(tok_comma);
  scan_integral_constant_expression(&width);
  remove_stop_token(tok_comma);
  if (!check_bit_field_type(field->type, &field->source_corresp.position)) {
    field->type = error_type();
    return;
  }
  field->is_bit_field = true;
  if (width.kind == con_integer)
    set_bit_field_width(field, &width, &position);
  else
    field->bit_size = static_cast<uint8_t>(size_of_type(field->type) * targ_char_bit);
}

// ---- Fields ----

static void append_field(a_type* class_type, a_field* field, a_field** last) {
  if (*last)
    (*last)->next = field;
  else
    class_type->variant.class_struct_union.fields = field;
  *last = field;
}

// The type that a field may have, else the error type after a message. An
// array of unknown bound is left: it may turn out as the flexible last member.
static a_type* checked_field_type(a_type* type, const a_source_position* position) {
  if (is_function_type(type)) {
    pos_error(ec_function_type_not_allowed, position);
    return error_type();
  }
  if (is_variably_modified_type(type)) {
    pos_error(ec_field_cannot_involve_vla_type, position);
    return error_type();
  }
  if (is_incomplete_type(type) && !is_incomplete_array_type(type) && !is_error_type(type)) {
    pos_error(ec_incomplete_type_not_allowed, position);
    return error_type();
  }
  return type;
}

static void note_qualified_field(a_type* class_type, a_type* field_type) {
  auto& info = class_type->variant.class_struct_union;
  a_type* element = skip_array_types(field_type);
  a_type* bare = skip_typerefs(element);
  bool is_class = is_class_struct_union_kind(bare->kind);
  if (is_const_qualified_type(element) ||
      (is_class && bare->variant.class_struct_union.any_const_fields))
    info.any_const_fields = true;
  if (is_volatile_qualified_type(element) ||
      (is_class && bare->variant.class_struct_union.any_volatile_fields))
    info.any_volatile_fields = true;
}

static a_field* make_named_field(a_type* class_type, a_type* type, a_symbol_locator* locator) {
  a_field* field = alloc_field(type);
  a_symbol_locator in_class = *locator;
  in_class.symbol = nullptr;
  a_symbol* previous = class_qualified_id_lookup(&in_class, class_type, ilo_none);
  if (previous && !locator->is_error_locator) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    set_to_error_locator(locator);
  }
  locator->symbol = nullptr;
  a_symbol* symbol = enter_symbol(symk_field, locator, depth_scope_stack, nullptr);
  symbol->variant.field = field;
  set_source_corresp(&field->source_corresp, symbol);
  set_class_membership(symbol, &field->source_corresp, class_type);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  return field;
}

static a_field* make_unnamed_field(a_type* class_type, a_type* type,
                                   const a_source_position* position) {
  a_field* field = alloc_field(type);
  field->source_corresp.position = *position;
  field->source_corresp.is_unnamed = true;
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (supplement->scope)
    set_parent_scope(&field->source_corresp, iek_field, supplement->scope);
  return field;
}

static void finish_field(a_type* class_type, a_field* field) {
  if (curr_token == tok_colon)
    scan_bit_field_width(field);
  else
    field->type = checked_field_type(field->type, &field->source_corresp.position);
  if (!is_error_type(field->type))
    note_qualified_field(class_type, field->type);
}

static a_field* member_declarator(a_type* class_type, a_decl_parse_state* state) {
  a_symbol_locator locator;
  a_func_info_block func_info;
  if (curr_token == tok_colon)
    return make_unnamed_field(class_type, state->type_specifier_type, &pos_curr_token);
  clear_func_info(&func_info);
  add_stop_token(tok_colon);
  declarator(do_name_required | do_member, state, nullptr, &locator, &func_info);
  append_attributes(&state->attributes_after, scan_gnu_attribute_groups(al_declarator));
  remove_stop_token(tok_colon);
  return make_named_field(class_type, state->declared_type, &locator);
}

// A member declaration that ends behind its specifiers declares nothing,
// unless it defines a type.
static void check_declaration_without_member(const a_decl_parse_state* state) {
  if (is_error_type(state->type_specifier_type))
    return;
  bool is_unnamed_class = is_class_struct_union_type(state->type_specifier_type) &&
                          skip_typerefs(state->type_specifier_type)->source_corresp.is_unnamed;
  if (is_unnamed_class)
    pos_error(ec_nonstd_unnamed_member, &state->specifiers_position);
  else if (!state->decl_flags.defines_tag)
    pos_warning(ec_useless_decl, &state->specifiers_position);
}

static void member_declaration(a_type* class_type, a_field** last) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  decl_specifiers(dso_type_specifiers | dso_member, &state);
  if (curr_token == tok_semicolon) {
    check_declaration_without_member(&state);
    return;
  }
  add_stop_token(tok_comma);
  do {
    state.attributes_after = scan_gnu_attribute_groups(al_specifiers);
    a_field* field = member_declarator(class_type, &state);
    finish_field(class_type, field);
    append_attributes(&state.attributes_after, scan_gnu_attribute_groups(al_declarator));
    attach_declarator_attributes(&state, field, iek_field);
    append_field(class_type, field, last);
    run_end_of_parse_actions(&state, true);
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
  discard_end_of_parse_actions(&state);
}

static void member_declaration_list(a_type* class_type) {
  a_field* last = nullptr;
  add_stop_token(tok_semicolon);
  add_stop_token(tok_rbrace);
  while (curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    if (curr_token == tok_semicolon) {
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                     ec_extra_semicolon, &pos_curr_token);
      get_token();
      continue;
    }
    a_token_sequence_number start = curr_token_sequence_number;
    member_declaration(class_type, &last);
    // What can't even begin a declaration must not hold the loop.
    if (!required_token(tok_semicolon, ec_exp_semicolon) && curr_token_sequence_number == start)
      get_token();
  }
  remove_stop_token(tok_rbrace);
  remove_stop_token(tok_semicolon);
}

// ---- Completion ----

// Only the last of several members may be an array of unknown bound (C99
// 6.7.2.1 p2).
static void check_unbounded_fields(a_type* class_type) {
  a_field* first = class_type->variant.class_struct_union.fields;
  for (a_field* field = first; field; field = field->next) {
    if (!is_incomplete_array_type(field->type))
      continue;
    bool is_flexible = !field->next && field != first && class_type->kind != tk_union &&
                       (gnu_mode || std_version >= 199901 || in_cplusplus_mode());
    if (is_flexible || (gnu_mode && !field->next)) {
      field->is_flexible_array = true;
      class_supplement_of(class_type)->has_flexible_array = true;
      if (report_gnu_extensions)
        pos_warning(ec_flexible_array_is_nonstandard, &field->source_corresp.position);
    } else {
      pos_error(ec_incomplete_type_not_allowed, &field->source_corresp.position);
      field->type = error_type();
    }
  }
}

static bool has_named_field(const a_type* class_type) {
  for (a_field* field = class_type->variant.class_struct_union.fields; field; field = field->next)
    if (field->source_corresp.name)
      return true;
  return false;
}

static void complete_class_type(a_type* class_type, const a_source_position* position) {
  auto& info = class_type->variant.class_struct_union;
  check_unbounded_fields(class_type);
  if (in_C_mode() && !gcc_mode && !has_named_field(class_type) && !is_error_type(class_type))
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_no_named_fields, position);
  info.is_being_defined = false;
  info.is_complete_definition = true;
  class_type->is_incomplete = false;
  info.layout_pending = true;
  do_class_layout(class_type);
  process_dependent_type_fixups(class_type);
}

// At the `{`; the `}` is read.
static void scan_class_definition(a_type* class_type, an_attribute* attributes) {
  auto& info = class_type->variant.class_struct_union;
  a_source_position position = pos_curr_token;
  info.is_being_defined = true;
  class_supplement_of(class_type)->pack_alignment = current_max_alignment_for_class_members();
  // A type is listed where it is defined.
  if (may_be_added_to_types_list(class_type))
    move_to_end_of_types_list(class_type, decl_level_of_tags());
  get_token();
  push_class_scope(class_type);
  member_declaration_list(class_type);
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
  if (!scan_tag(&locator, &attributes))
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
    scan_class_definition(type, attributes);
  } else {
    flush_until_matching_token();
  }
  return type;
}

void check_class_linkage() {
  // The old C++ modes alone give classes a linkage.
}

void generate_required_virtual_destructor_bodies(a_scope*) {
  // No class has virtual functions while only C defines classes.
}

void class_decl_one_time_init() {
  // No variable of this module is kept for each unit.
}

void class_decl_init() {
  // Nothing of this module lives on from an earlier run.
}

void class_decl_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
