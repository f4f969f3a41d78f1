// User-defined literals: their suffixes and the literal operators that they
// call (C++11 2.14.8, 13.5.8).

#include <cstring>
#include <string>

#include "error.h"
#include "il_alloc.h"
#include "lexical_literal_int.h"
#include "lookup.h"
#include "mode_words.h"
#include "types.h"

a_symbol_header* ud_lit_suffix_for_curr_token;

// -- Suffixes -------------------------------------------------------------------------

static bool begins_identifier(char* p) {
  size_t length;
  return (is_plain_id_char(*p) && !is_digit(*p)) || f_is_identifier_char(p, true, &length, nullptr);
}

// Whether a character that is no part of an identifier, but looks like one,
// stands at `p`.
static bool is_stray_identifier_char(const char* p) {
  return static_cast<unsigned char>(*p) >= 0x80 ||
         (*p == '\\' && universal_character_names_allowed && (p[1] == 'u' || p[1] == 'U'));
}

// A bad character directly behind a literal or in its suffix.
static char* skip_stray_characters(char* p) {
  report_token_error(ec_bad_user_defined_suffix, p);
  while (is_plain_id_char(*p) || is_stray_identifier_char(p))
    p += *p == '\\' ? 2 : 1;
  return p;
}

static char* end_of_suffix(char* p) {
  size_t length;
  for (;;) {
    if (is_plain_id_char(*p))
      ++p;
    else if (f_is_identifier_char(p, false, &length, nullptr))
      p += length;
    else
      return p;
  }
}

// A macro's name behind a literal may be meant as the macro, as it was before
// literals had suffixes.
static bool is_preempted_by_macro(const a_symbol_header* suffix) {
  if (!macro_preempts_udl_suffix || !suffix->is_macro)
    return false;
  report_token_diagnostic(es_warning, ec_macro_not_udl_suffix, curr_char_loc);
  return true;
}

bool scan_ud_suffix(a_symbol_header** suffix) {
  if (!user_defined_literals_enabled || in_pp_if_expression)
    return false;
  char* start = curr_char_loc;
  if (!begins_identifier(start)) {
    if (is_stray_identifier_char(start) && !fetch_pp_tokens)
      curr_char_loc = skip_stray_characters(start);
    return false;
  }
  char* end = end_of_suffix(start);
  a_symbol_header* header = header_of_identifier(start, end);
  bool is_number = is_digit(*start_of_curr_token) || *start_of_curr_token == '.';
  if (!is_number && is_preempted_by_macro(header))
    return false;
  curr_char_loc = end;
  if (fetch_pp_tokens)
    return true;
  if (is_stray_identifier_char(end))
    curr_char_loc = skip_stray_characters(end);
  *suffix = header;
  return true;
}

// -- Literal operators ------------------------------------------------------------------

a_symbol_header* literal_operator_header(const a_symbol_header* suffix) {
  std::string name = std::string("operator \"\"") + suffix->identifier;
  a_symbol_locator locator = cleared_locator;
  return find_symbol_header(name.c_str(), name.size(), &locator);
}

static const a_param_type* params_of_operator(const a_symbol* symbol) {
  if (symbol->kind != symk_routine)
    return nullptr;
  const a_type* type = skip_typerefs(symbol->variant.routine->type);
  return type->variant.routine.routine_supplement->param_types;
}

static bool is_pointer_to_const(const a_type* type, const a_type* element) {
  if (!is_pointer_type(type))
    return false;
  a_type* pointed_to = type_pointed_to(type);
  return (get_type_qualifiers(pointed_to) & tq_const) != 0 &&
         identical_types(skip_typerefs(pointed_to), const_cast<a_type*>(element));
}

// Whether the operator takes the value of the current literal itself.
static bool takes_cooked_literal(const a_symbol* symbol) {
  const a_param_type* param = params_of_operator(symbol);
  if (param == nullptr)
    return false;
  if (const_for_curr_token.kind == con_string) {
    a_type* element =
        char_type_of_kind(static_cast<a_string_char_kind>(const_for_curr_token.string_char_kind));
    return param->next != nullptr && is_pointer_to_const(param->type, element);
  }
  return param->next == nullptr && identical_types(param->type, const_for_curr_token.type);
}

// Whether the operator takes the spelling of a number.
static bool takes_raw_literal(const a_symbol* symbol) {
  const a_param_type* param = params_of_operator(symbol);
  return param != nullptr && param->next == nullptr &&
         is_pointer_to_const(param->type, char_type_of_kind(sck_ordinary));
}

static a_symbol* operator_that(bool (*takes)(const a_symbol*), a_symbol* found) {
  bool is_set = found->kind == symk_overloaded_function;
  for (a_symbol* symbol = is_set ? found->variant.overload_list : found; symbol != nullptr;
       symbol = is_set ? symbol->next_homonym : nullptr)
    if (takes(symbol))
      return symbol;
  return nullptr;
}

static bool literal_is_number() {
  return const_for_curr_token.kind == con_float ||
         (const_for_curr_token.kind == con_integer && !const_for_curr_token.is_character_literal);
}

a_symbol* find_literal_operator(const a_symbol_header* suffix, a_type** type) {
  a_symbol_locator locator = cleared_locator;
  locator.header = literal_operator_header(suffix);
  locator.position = pos_curr_token;
  locator.is_literal_operator_name = 1;
  *type = nullptr;
  a_symbol* found = normal_id_lookup(&locator, ilo_none);
  if (found == nullptr)
    return nullptr;
  a_symbol* symbol = operator_that(takes_cooked_literal, found);
  if (symbol == nullptr && literal_is_number())
    symbol = operator_that(takes_raw_literal, found);
  if (symbol != nullptr)
    *type = params_of_operator(symbol)->type;
  return symbol;
}

// -- The token --------------------------------------------------------------------------

static void set_spelling_constant(const std::string& spelling) {
  size_t length = spelling.size() + 1;
  char* text = alloc_text_of_string_literal(length);
  memcpy(text, spelling.c_str(), length);
  clear_constant(&const_with_curr_tok_spelling, con_string);
  const_with_curr_tok_spelling.value.string.length = length;
  const_with_curr_tok_spelling.value.string.text = text;
  const_with_curr_tok_spelling.type = string_literal_type(sck_ordinary, length);
}

// Integers go to their operators in the widest type.
static void widen_integer() {
  if (const_for_curr_token.kind == con_integer)
    set_unsigned_integer_constant(&const_for_curr_token, const_for_curr_token.value.int_value,
                                  ik_unsigned_long_long);
}

a_token_kind finish_ud_literal(a_symbol_header* suffix, const std::string& spelling) {
  if (spelling.empty()) {
    copy_constant(&const_for_curr_token, &const_with_curr_tok_spelling);
  } else {
    set_spelling_constant(spelling);
    widen_integer();
  }
  ud_lit_suffix_for_curr_token = suffix;
  ud_lit_op_sym_for_curr_token = find_literal_operator(suffix, &ud_lit_type_for_curr_token);
  if (ud_lit_op_sym_for_curr_token == nullptr) {
    a_source_position position;
    position_of_loc(curr_char_loc - 1, &position);
    pos_st_error(ec_literal_operator_not_found, &position, suffix->identifier);
  }
  return tok_ud_literal;
}
