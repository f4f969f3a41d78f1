// The fields of classes: their types, and the widths of bit-fields.

#include "class_decl_int.h"

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

static void check_enum_bit_field(const a_field* field, const a_source_position* position) {
  const a_type* enum_type = skip_typerefs(field->type);
  bool is_signed = enum_bit_field_is_signed(enum_type);
  a_constant* first = first_enumerator_of_enum(enum_type);
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
void scan_bit_field_width(a_field* field) {
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

void note_qualified_field(a_type* class_type, a_type* field_type) {
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

// What the class itself has by the name; a field hides a class or an enumeration
// and what the bases have.
static a_symbol* member_before_field(a_type* class_type, const a_symbol_locator* locator) {
  a_symbol_locator in_class = *locator;
  in_class.symbol = nullptr;
  a_symbol* previous = class_qualified_id_lookup(&in_class, class_type, ilo_none);
  if (in_C_mode() || !previous)
    return previous;
  bool is_of_base = in_class.symbol->kind == symk_projection &&
                    !in_class.symbol->variant.projection->is_using_decl;
  return is_of_base || is_tag_symbol_kind(previous->kind) ? nullptr : previous;
}

a_field* make_named_field(a_type* class_type, a_type* type, a_symbol_locator* locator) {
  a_field* field = alloc_field(type);
  a_symbol* previous = member_before_field(class_type, locator);
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
  field->source_corresp.access = scope_stack[depth_scope_stack].member_access;
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  return field;
}

a_field* make_unnamed_field(a_type* class_type, a_type* type, const a_source_position* position) {
  a_field* field = alloc_field(type);
  field->source_corresp.position = *position;
  field->source_corresp.is_unnamed = true;
  field->source_corresp.access = scope_stack[depth_scope_stack].member_access;
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (supplement->scope)
    set_parent_scope(&field->source_corresp, iek_field, supplement->scope);
  return field;
}

void finish_field(a_type* class_type, a_field* field) {
  if (curr_token == tok_colon)
    scan_bit_field_width(field);
  else
    field->type =
        checked_field_type(field->type, class_type->kind, &field->source_corresp.position);
  if (!is_error_type(field->type))
    note_qualified_field(class_type, field->type);
}

// ---- Fields in C++ ----

void check_field_of_cplusplus(a_type* class_type, a_field* field, const a_decl_parse_state* state) {
  const a_source_position* position = &field->source_corresp.position;
  a_type* type = field->type;
  if (is_error_type(type))
    return;
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (is_abstract_class_type(skip_array_types(type))) {
    abstract_class_diagnostic(ec_abstract_class_object_not_allowed, skip_array_types(type),
                              position);
    field->type = error_type();
  } else if (is_reference_type(type)) {
    if (class_type->kind == tk_union)
      pos_error(ec_ref_not_allowed_in_union, position);
    if (state->modifiers.mutable_seen)
      pos_error(ec_reference_declared_mutable, &state->modifiers.mutable_position);
  } else if (state->modifiers.mutable_seen && is_const_qualified_type(type)) {
    pos_error(ec_mutable_not_allowed, &state->modifiers.mutable_position);
  }
  if (state->modifiers.constexpr_seen)
    pos_error(ec_invalid_constexpr, &state->modifiers.constexpr_position);
  supplement->has_const_or_reference_member |=
      is_reference_type(type) || is_const_qualified_type(skip_array_types(type));
}

// Whether another field of the union has an initialiser.
static bool union_has_initializer(const a_type* class_type, const a_field* except) {
  if (class_type->kind != tk_union)
    return false;
  for (const a_field* field = class_type->variant.class_struct_union.fields; field;
       field = field->next)
    if (field != except && field->has_default_init)
      return true;
  return false;
}

void field_initializer_in_class(a_type* class_type, a_field* field) {
  if (!field_initializers_enabled || field->is_bit_field) {
    pos_error(ec_bad_data_member_initialization, &pos_curr_token);
    get_token();
    flush_tokens_without_warning();
    return;
  }
  if (union_has_initializer(class_type, field))
    pos_error(ec_multiple_union_field_initializers, &pos_curr_token);
  field->has_default_init = true;
  cache_field_initializer(field, class_type);
}
