// Shared by the files of the declaration specifiers.

#ifndef DECL_SPEC_INT_H
#define DECL_SPEC_INT_H

#include "decl_spec.h"

enum a_base_type_code : uint8_t {
  btc_none,
  btc_void,
  btc_char,
  btc_wchar_t,
  btc_char16_t,
  btc_char32_t,
  btc_bool,
  btc_int,
  btc_float,
  btc_double,
  btc_named, // a typedef name, or the type of a typeof
  btc_class,
  btc_enum,
  btc_auto,
  btc_decltype_auto,
  btc_unknown, // a constructor has no type
  btc_error
};

enum a_size_code : uint8_t { szc_none, szc_short, szc_long, szc_long_long };
enum a_sign_code : uint8_t { sgc_none, sgc_signed, sgc_unsigned };
enum a_complex_code : uint8_t { cxc_none, cxc_complex, cxc_imaginary };

// What the type words met so far add up to.
struct a_specifier_accumulator {
  a_base_type_code base;
  a_size_code size;
  a_sign_code sign;
  a_complex_code complex;
  a_type* type; // from btc_named on
};

inline bool any_size_or_sign(const a_specifier_accumulator* acc) {
  return acc->size != szc_none || acc->sign != sgc_none;
}
inline bool any_type_word(const a_specifier_accumulator* acc) {
  return acc->base != btc_none || acc->complex != cxc_none || any_size_or_sign(acc);
}

// A GNU compiler of before the version is imitated.
bool is_gnu_before(int version);

// After an error among the specifiers those that follow are still read.
void note_specifier_error(a_decl_parse_state* state);
// The same with its report.
void specifier_error(an_error_code code, const a_source_position* position,
                     a_decl_parse_state* state);
// The words don't go together: reported once, and the type is an error.
void bad_combination(a_specifier_accumulator* acc, a_decl_parse_state* state);

// ---- Storage classes and function specifiers (decl_spec_storage.cpp) ----

bool is_storage_class_token(a_token_kind token);
bool is_thread_storage_token(a_token_kind token);
bool is_function_specifier(a_token_kind token);
bool is_modifier_token(a_token_kind token);
void scan_storage_class(unsigned options, const a_specifier_accumulator* acc,
                        a_decl_parse_state* state);
void scan_thread_storage(unsigned options, a_decl_parse_state* state);
void scan_function_specifier(unsigned options, a_decl_parse_state* state);
void scan_modifier(unsigned options, a_decl_parse_state* state);
// What only the whole of the specifiers can show.
void check_storage_of_specifiers(unsigned options, a_decl_parse_state* state);

// ---- Qualifiers (decl_spec_qualifier.cpp) ----

bool is_qualifier_token(a_token_kind token);
// At a qualifier.
void scan_qualifier(a_type_qualifier_set* qualifiers, a_decl_parse_state* state);
// The type with the qualifiers of the specifiers that it can take.
a_type* apply_specifier_qualifiers(a_type* type, a_decl_parse_state* state);

// ---- The type (decl_spec_type.cpp) ----

// Of a token that is a base type by itself; btc_none for any other.
a_base_type_code base_of_token(a_token_kind token);
// The type of the words (C99 6.7.2 p2), after their combination was checked.
a_type* type_of_words(unsigned options, a_specifier_accumulator* acc, a_decl_parse_state* state);
// `typeof ( ... )`, `decltype ( ... )`, at the keyword.
a_type* scan_typeof(a_decl_parse_state* state);
a_type* scan_decltype(a_base_type_code* base, a_decl_parse_state* state);

// What the type of an expression says that isn't evaluated.
struct an_unevaluated_operand {
  a_type* type;          // before any conversion
  a_type* decltype_type; // as decltype has it
  bool is_lvalue;
};
void scan_operand_for_its_type(an_unevaluated_operand* out, bool stops_at_comma);

// Whether a type specifier begins with the token, other than a name.
bool is_type_keyword(a_token_kind token);

// Whether the current identifier is an undeclared name where what follows can
// only be a declarator.
bool is_misspelled_type(unsigned options);

#endif
