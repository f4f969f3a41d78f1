// Names of several tokens: a qualified name is folded into one identifier token,
// with what it means in the locator (C++11 3.4.3).

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical_int.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "types.h"

// -- Qualifiers -------------------------------------------------------------------------

// Where the next component of a qualified name is looked up.
enum a_name_place_kind : uint8_t { npk_anywhere, npk_global, npk_namespace, npk_class, npk_enum };

struct a_name_place {
  a_name_place_kind kind;
  a_type* type;
  a_namespace* namespace_entry;
};

static a_symbol* look_up_in_place(const a_name_place& place, a_symbol_locator* locator,
                                  uint32_t options) {
  switch (place.kind) {
  case npk_global:
    return file_scope_id_lookup(il_header.primary_scope, locator, options);
  case npk_namespace:
    return namespace_qualified_id_lookup(locator, place.namespace_entry, options);
  case npk_class:
    return class_qualified_id_lookup(locator, place.type, options);
  case npk_enum:
    return enum_qualified_id_lookup(locator, place.type);
  default:
    return normal_id_lookup(locator, options);
  }
}

// The place that a name before `::` stands for; false for a name that is no
// class, namespace or enumeration.
static bool place_of_qualifier(const a_symbol* symbol, a_name_place* place) {
  if (symbol->kind == symk_namespace) {
    *place = {npk_namespace, nullptr, symbol->variant.namespace_entry};
    return true;
  }
  if (symbol->kind != symk_type && !is_tag_symbol_kind(symbol->kind))
    return false;
  a_type* type = skip_typerefs(symbol->variant.type);
  if (is_class_struct_union_type(type)) {
    *place = {npk_class, type, nullptr};
    return true;
  }
  if (!is_enum_type(type) || !enum_qualifiers_enabled)
    return false;
  *place = {npk_enum, type, nullptr};
  return true;
}

// Marks the locator of the last component with the place it was looked up in.
static void set_qualifier_of_locator(a_symbol_locator* locator, const a_name_place& place) {
  locator->is_qualified = 1;
  locator->is_generalized = 1;
  locator->is_global_qualified = place.kind == npk_global;
  locator->is_class_qualified = place.kind == npk_class;
  locator->is_enum_qualified = place.kind == npk_enum;
  if (place.kind == npk_namespace)
    locator->qualifier.namespace_entry = place.namespace_entry;
  else
    locator->qualifier.class_type = place.type;
}

static void report_bad_qualifier(const a_name_place& place, a_symbol_locator* locator) {
  if (look_up_in_place(place, locator, ilo_none) == nullptr)
    reference_to_invalid_name(locator);
  else
    pos_error(ec_id_must_be_class_or_namespace_name, &pos_curr_token);
}

static void skip_qualifier() {
  get_token();
  get_token();
}

// At a name before `::`: advances to behind the `::`. False, after a message,
// for a name that can't stand there.
static bool scan_qualifier(a_name_place* place) {
  a_symbol_locator locator = locator_for_curr_id;
  a_symbol* symbol = look_up_in_place(*place, &locator, ilo_followed_by_colons);
  set_qualifier_of_locator(&locator, *place);
  bool is_known = symbol != nullptr && place_of_qualifier(symbol, place);
  if (is_known)
    check_access_to_name(&locator, &pos_curr_token);
  if (!is_known) {
    locator = locator_for_curr_id;
    report_bad_qualifier(*place, &locator);
  }
  skip_qualifier();
  return is_known;
}

// At the start of a qualified name, or of what precedes the `*` in `C::*`:
// advances to behind the last `::`. False after a message.
static bool scan_qualifiers(a_name_place* place) {
  bool is_good = true;
  *place = {npk_anywhere, nullptr, nullptr};
  if (loop_token(tok_colon_colon))
    place->kind = npk_global;
  while (curr_token == tok_identifier && next_token() == tok_colon_colon) {
    if (is_good)
      is_good = scan_qualifier(place);
    else
      skip_qualifier();
  }
  return is_good;
}

a_type* scan_class_of_ptr_to_member() {
  a_source_position position = pos_curr_token;
  a_name_place place;
  bool is_good = scan_qualifiers(&place);
  get_token();
  if (is_good && place.kind == npk_class)
    return place.type;
  if (is_good)
    pos_error(ec_id_must_be_class_or_namespace_name, &position);
  return nullptr;
}

// -- Folding ------------------------------------------------------------------------------

bool f_is_generalized_identifier_start() {
  if (curr_token == tok_identifier)
    return true;
  if (!in_cplusplus_mode())
    return false;
  if (curr_token == tok_operator)
    return true;
  if (curr_token != tok_colon_colon)
    return false;
  a_token_kind next = next_token();
  return next == tok_identifier || next == tok_operator;
}

// Whether more than the current token belongs to the name.
static bool at_qualified_name() {
  if (!in_cplusplus_mode() || curr_token == tok_operator || !f_is_generalized_identifier_start() ||
      (curr_token == tok_identifier && locator_for_curr_id.is_generalized))
    return false;
  return curr_token == tok_colon_colon || next_token() == tok_colon_colon;
}

static const a_class_symbol_supplement* class_of_place(const a_name_place& place) {
  return place.kind == npk_class ? class_symbol_supplement_of(place.type) : nullptr;
}

// Behind the last `::`: a name of several tokens becomes one.
static void fold_last_component(const a_name_place& place) {
  if (curr_token == tok_operator)
    fold_operator_name();
  else if (curr_token == tok_compl && class_of_place(place) != nullptr)
    fold_destructor_name(place.type);
}

// `C::C` in front of a parenthesis names the constructor (C++11 3.4.3.1 p2).
static bool names_constructor(const a_name_place& place, uint32_t options) {
  return options == ilo_none && class_of_place(place) != nullptr &&
         place.type->source_corresp.symbol->header == locator_for_curr_id.header &&
         next_token() == tok_lparen;
}

static a_symbol* look_up_last_component(const a_name_place& place, uint32_t options) {
  a_symbol_locator* locator = &locator_for_curr_id;
  const a_class_symbol_supplement* info = class_of_place(place);
  if (info == nullptr || locator->is_error_locator)
    return look_up_in_place(place, locator, options);
  if (names_constructor(place, options))
    locator->is_constructor_name = true;
  if (locator->is_constructor_name)
    locator->symbol = info->constructor;
  else if (locator->is_destructor_name)
    locator->symbol = info->destructor;
  else if (locator->is_conversion_name)
    locator->symbol = conversion_functions_to(place.type, locator->conversion_type);
  else
    return look_up_in_place(place, locator, options);
  return locator->symbol;
}

static a_symbol* coalesce_operator_name(uint32_t options) {
  fold_operator_name();
  return normal_id_lookup(&locator_for_curr_id, options);
}

a_symbol* coalesce_and_lookup_qualified_name(uint32_t options) {
  if (curr_token == tok_operator && in_cplusplus_mode())
    return coalesce_operator_name(options);
  if (!at_qualified_name())
    return nullptr;
  a_source_position start = pos_curr_token;
  a_token_sequence_number number = curr_token_sequence_number;
  a_name_place place;
  bool is_good = scan_qualifiers(&place);
  fold_last_component(place);
  if (curr_token != tok_identifier) {
    pos_error(ec_exp_identifier, &pos_curr_token);
    unget_token();
    curr_token = tok_identifier;
    clear_locator(&locator_for_curr_id, &start);
    is_good = false;
  }
  pos_curr_token = error_position = start;
  curr_token_sequence_number = number;
  a_symbol* symbol = nullptr;
  if (is_good)
    symbol = look_up_last_component(place, options);
  else
    set_to_error_locator(&locator_for_curr_id);
  set_qualifier_of_locator(&locator_for_curr_id, place);
  return symbol;
}

a_symbol* coalesce_and_lookup_generalized_identifier(uint32_t options) {
  if (at_qualified_name() || (in_cplusplus_mode() && curr_token == tok_operator))
    return coalesce_and_lookup_qualified_name(options);
  if (curr_token != tok_identifier || locator_for_curr_id.is_error_locator)
    return nullptr;
  if (locator_for_curr_id.is_generalized)
    return locator_for_curr_id.symbol ? fundamental_symbol_of(locator_for_curr_id.symbol) : nullptr;
  return normal_id_lookup(&locator_for_curr_id, options);
}

// -- Names as they were written -------------------------------------------------------------

static a_name_qualifier* make_qualifier(const a_symbol_locator* locator) {
  if (locator->qualifier.entry == nullptr)
    return nullptr;
  a_name_qualifier* qualifier = alloc_name_qualifier();
  bool is_type = locator->is_class_qualified || locator->is_enum_qualified;
  qualifier->kind = is_type ? iek_type : iek_namespace;
  qualifier->variant.generic = locator->qualifier.entry;
  qualifier->position = locator->position;
  return qualifier;
}

a_name_reference* make_name_reference_from_locator(const a_symbol_locator* locator,
                                                   const a_source_range* range) {
  if (!locator->is_qualified && !locator->is_template_id)
    return nullptr;
  a_name_reference* reference = alloc_name_reference();
  reference->qualifiers = make_qualifier(locator);
  reference->template_args = locator->template_args;
  reference->has_explicit_args = locator->is_template_id;
  reference->has_template_keyword = locator->template_keyword_used;
  reference->is_global = locator->is_global_qualified;
  reference->range = *range;
  return reference;
}

a_name_reference* make_name_reference() {
  a_source_range range = {pos_curr_token, end_pos_curr_token};
  return make_name_reference_from_locator(&locator_for_curr_id, &range);
}
