// The members of structs and unions: their declarations, bit-fields, and the
// members of anonymous structs and unions.

#include "class_decl_int.h"

#include "attribute.h"
#include "const_ints.h"
#include "declarator.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "target.h"
#include "types.h"

// The greatest width that a bit-field may be declared with.
static constexpr int max_declared_bit_size = 0xffff;

// ---- Bit-fields (C99 6.7.2.1 p3, p4) ----

static bool is_int_or_bool(const a_type* type) {
  if (is_enum_type(type))
    return false;
  an_integer_kind kind = int_kind_of(type);
  return is_bool_type(type) || kind == ik_int || kind == ik_unsigned_int;
}

static bool is_explicitly_signed(const a_type* type) {
  return skip_typerefs(type)->variant.integer.explicitly_signed;
}

static bool is_plain_signed(const a_type* type) {
  return !is_enum_type(type) && !is_bool_type(type) && is_signed_integral_type(type);
}

static bool check_bit_field_type(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (!is_integral_or_enum_type(type)) {
    pos_error(ec_bad_bit_field_type, position);
    return false;
  }
  if (is_incomplete_type(type)) { // an enum that is only declared
    pos_error(ec_incomplete_type_not_allowed, position);
    return false;
  }
  if (get_type_qualifiers(type) & tq_atomic) {
    pos_error(ec_c11_atomic_bit_field, position);
    return false;
  }
  if (in_C_mode() && strict_ansi_mode && !is_int_or_bool(type))
    pos_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_bit_field_type, position);
  return true;
}

// MISRA-C:2004 6.4 and 6.5; a plain int's sign is the implementation's choice.
static void check_bit_field_rules(const a_field* field, const a_source_position* position) {
  const a_type* type = field->type;
  bool is_int = !is_enum_type(type) && !is_bool_type(type) &&
                (int_kind_of(type) == ik_unsigned_int ||
                 (int_kind_of(type) == ik_int && is_explicitly_signed(type)));
  if (!is_int)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_6_4, position);
  if (field->bit_size == 1 && is_plain_signed(type))
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_6_5, position);
}

// Whether the enumerator's value fits the width, of which a bit is the sign's.
static bool fits_bit_field(const a_constant* enumerator, int bits, bool is_signed) {
  int value_bits = bits - is_signed;
  uint64_t value = enumerator->value.int_value;
  if (cmplit_integer_constant(enumerator, 0) < 0)
    value = ~value;
  return value_bits >= 64 || value >> value_bits == 0;
}

// A field of an enum without negative values is unsigned.
static void check_enum_bit_field(const a_field* field, const a_source_position* position) {
  bool is_signed = !targ_nonnegative_enum_bit_field_is_unsigned;
  a_constant* first = first_enumerator_of_enum(field->type);
  for (a_constant* e = first; e; e = e->next)
    is_signed |= cmplit_integer_constant(e, 0) < 0;
  if (is_signed && targ_enum_bit_fields_are_always_unsigned)
    pos_warning(ec_unsigned_enum_bit_field_with_signed_enumerator, position);
  for (a_constant* e = first; e; e = e->next)
    if (!fits_bit_field(e, field->bit_size, is_signed)) {
      pos_warning(ec_enum_bit_field_too_small, position);
      return;
    }
}

static int bits_of_type(const a_type* type) {
  bool counts_values = is_bool_type(type) && in_C_mode();
  return counts_values ? 1 : static_cast<int>(size_of_type(type)) * targ_char_bit;
}

// The width that counts; the written one goes to declared_bit_size when it
// exceeds the type's. Such bits pad the field.
static void set_bit_field_width(a_field* field, const a_constant* width,
                                const a_source_position* position) {
  int type_bits = bits_of_type(field->type);
  bool is_named = field->source_corresp.name != nullptr;
  field->bit_size = static_cast<uint8_t>(type_bits);
  if (cmplit_integer_constant(width, 0) < 0 ||
      cmplit_integer_constant(width, max_declared_bit_size) > 0) {
    pos_error(ec_bad_bit_field_size, position);
  } else if (cmplit_integer_constant(width, 0) == 0 && is_named) {
    pos_error(ec_zero_length_bit_field_must_be_unnamed, position);
  } else if (cmplit_integer_constant(width, type_bits) > 0) {
    bool is_refused = in_C_mode() && strict_ansi_mode;
    pos_diagnostic(is_refused ? strict_ansi_error_severity : es_warning, ec_extra_bits_ignored,
                   position);
    field->declared_bit_size = static_cast<uint32_t>(width->value.int_value);
  } else {
    field->bit_size = static_cast<uint8_t>(width->value.int_value);
  }
  if (field->bit_size == 1 && is_named && is_plain_signed(field->type))
    pos_remark(ec_signed_one_bit_field, position);
}

// A plain integer's sign in a bit-field is up to an option.
static a_type* type_of_bit_field(a_type* type) {
  if (!targ_plain_int_bit_field_is_unsigned || !is_plain_signed(type) || is_explicitly_signed(type))
    return type;
  a_type* unsigned_type = integer_type(unsigned_int_kind_of(int_kind_of(type)));
  return make_qualified_type(unsigned_type, get_type_qualifiers(type));
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
  field->type = type_of_bit_field(field->type);
  if (width.kind == con_integer)
    set_bit_field_width(field, &width, &position);
  else
    field->bit_size = static_cast<uint8_t>(size_of_type(field->type) * targ_char_bit);
  if (is_enum_type(field->type) && field->bit_size != 0)
    check_enum_bit_field(field, &position);
  if (check_misra_c_2004 && in_C_mode())
    check_bit_field_rules(field, &field->source_corresp.position);
}

// ---- Fields ----

static void append_field(a_type* class_type, a_field* field, a_field** last) {
  if (*last)
    (*last)->next = field;
  else
    class_type->variant.class_struct_union.fields = field;
  *last = field;
}

bool holds_flexible_array(const a_type* type) {
  return is_class_struct_union_type(type) && class_supplement_of(type)->has_flexible_array;
}

// The type that a field may have, else the error type after a message. An
// array of unknown bound is left: it may turn out as the flexible last member.
static a_type* checked_field_type(a_type* type, a_type_kind class_kind,
                                  const a_source_position* position) {
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
  // C99 6.7.2.1 p2; GNU C takes it as an extension.
  if (!gnu_mode && class_kind != tk_union && holds_flexible_array(skip_array_types(type)))
    pos_error(ec_flexible_array_member_not_allowed, position);
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
  bool check_hiding = previous && previous->is_anonymous_union_member;
  if (previous && !check_hiding && !locator->is_error_locator) {
    pos_st_error(ec_id_already_declared, &locator->position, locator->header->identifier);
    set_to_error_locator(locator);
  }
  locator->symbol = nullptr;
  a_symbol* symbol = enter_symbol(symk_field, locator, depth_scope_stack, &check_hiding);
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
    field->type =
        checked_field_type(field->type, class_type->kind, &field->source_corresp.position);
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
  check_ql_type_qualifiers(state->declared_type, &locator.position, 0);
  a_field* field = make_named_field(class_type, state->declared_type, &locator);
  field->is_mutable = state->modifiers.mutable_seen;
  return field;
}

// ---- Anonymous structs and unions (C11 6.7.2.1 p13) ----

bool is_anonymous_member(const a_field* field) {
  return field->source_corresp.is_unnamed && !field->is_bit_field &&
         is_class_struct_union_type(field->type) &&
         class_supplement_of(field->type)->anonymous_union_kind == auk_field;
}

static a_type* class_of_field(const a_field* field) {
  const a_scope* scope = field->source_corresp.parent_scope;
  return scope ? scope->assoc.type : nullptr;
}

a_field* anonymous_field_around(const a_field* field, const a_type* class_type) {
  a_field* around = nullptr;
  for (;;) {
    a_type* type = class_of_field(field);
    if (!type || type == class_type)
      return around;
    const a_class_type_supplement* supplement = class_supplement_of(type);
    if (supplement->anonymous_union_kind != auk_field)
      return around;
    field = around = supplement->assoc_entity.field;
  }
}

// A name of the anonymous member becomes one of the class.
static void enter_anonymous_field(a_field* field, a_type* class_type) {
  a_symbol_locator locator;
  clear_locator(&locator, &field->source_corresp.position);
  locator.header = field->source_corresp.symbol->header;
  a_symbol* symbol = make_symbol(symk_field, &locator);
  symbol->variant.field = field;
  symbol->is_anonymous_union_member = true;
  set_class_membership(symbol, nullptr, class_type);
  bool check_hiding = true;
  add_symbol_to_symbol_table(symbol, depth_scope_stack, &check_hiding);
  field->is_anonymous_union_member = true;
}

static void enter_anonymous_fields(a_type* anonymous_type, a_type* class_type) {
  check_stack_limit();
  a_field* field = skip_typerefs(anonymous_type)->variant.class_struct_union.fields;
  for (; field; field = field->next) {
    if (is_anonymous_member(field))
      enter_anonymous_fields(field->type, class_type);
    else if (field->source_corresp.name && field->source_corresp.symbol)
      enter_anonymous_field(field, class_type);
  }
}

static void check_anonymous_member_mode(const a_decl_parse_state* state) {
  const a_source_position* position = &state->specifiers_position;
  if (in_C_mode()) {
    if (!allow_c11_anonymous_unions && !gnu_mode)
      pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                     ec_nonstd_unnamed_field, position);
    return;
  }
  bool is_union = is_union_type(state->type_specifier_type);
  if (!is_union && !nonstd_anonymous_unions)
    pos_error(ec_nonstd_unnamed_field, position);
  if (!skip_typerefs(state->type_specifier_type)->variant.class_struct_union.fields)
    pos_error(ec_empty_anonymous_union, position);
}

// The type of the unnamed field. Its qualifiers reach the members in C; in C++
// they are left out.
static a_type* type_of_anonymous_member(const a_decl_parse_state* state) {
  if (state->qualifiers == tq_none)
    return state->type_specifier_type;
  if (in_cplusplus_mode()) {
    pos_warning(ec_anonymous_union_qualifier_ignored, &state->specifiers_position);
    return state->type_specifier_type;
  }
  if (!allow_c11_anonymous_unions)
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_remark,
                   ec_nonstandard_anonymous_union_qualifier, &state->specifiers_position);
  return make_qualified_type(state->type_specifier_type, state->qualifiers);
}

static a_field* anonymous_member(a_type* class_type, const a_decl_parse_state* state) {
  check_anonymous_member_mode(state);
  a_field* field =
      make_unnamed_field(class_type, type_of_anonymous_member(state), &state->specifiers_position);
  a_type* type = skip_typerefs(field->type);
  a_class_type_supplement* supplement = class_supplement_of(type);
  type->variant.class_struct_union.is_anonymous_union = true;
  supplement->anonymous_union_kind = auk_field;
  supplement->assoc_entity_is_set = true;
  supplement->assoc_entity_kind = iek_field;
  supplement->assoc_entity.field = field;
  enter_anonymous_fields(type, class_type);
  note_qualified_field(class_type, field->type);
  return field;
}

// Whether the specifiers define a struct or union without a tag.
static bool defines_unnamed_class(const a_decl_parse_state* state) {
  return state->decl_flags.defines_tag && is_class_struct_union_type(state->type_specifier_type) &&
         skip_typerefs(state->type_specifier_type)->source_corresp.is_unnamed;
}

// A member declaration that ends behind its specifiers: an anonymous member, or
// nothing, unless it defines a type.
static a_field* member_without_declarator(a_type* class_type, const a_decl_parse_state* state) {
  if (is_error_type(state->type_specifier_type))
    return nullptr;
  if (defines_unnamed_class(state))
    return anonymous_member(class_type, state);
  if (!state->decl_flags.defines_tag)
    pos_warning(ec_useless_decl, &state->specifiers_position);
  else if (in_C_mode() && is_class_struct_union_type(state->type_specifier_type))
    pos_diagnostic(strict_ansi_mode ? strict_ansi_discretionary_severity : es_warning,
                   ec_nonstd_unnamed_member, &state->specifiers_position);
  return nullptr;
}

// ---- Member declarations ----

static void member_declaration(a_type* class_type, a_field** last) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  while (loop_token(tok_extension))
    state.parse_flags.has_extension_prefix = true;
  decl_specifiers(dso_type_specifiers | dso_member, &state);
  if (curr_token == tok_semicolon) {
    attach_lone_type_attributes(&state);
    if (a_field* field = member_without_declarator(class_type, &state))
      append_field(class_type, field, last);
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

void member_declaration_list(a_type* class_type) {
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
