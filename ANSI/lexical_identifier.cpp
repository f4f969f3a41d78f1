// Identifiers: their characters, macros, keywords and, in #if, their value.

#include <cstdio>
#include <cstring>
#include <string>

#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "lexical_int.h"
#include "lookup.h"
#include "macro_int.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

a_symbol_header* va_args_header;

// -- Universal character names (C11 6.4.3 and annex D) -----------------------------

struct a_code_point_range {
  uint32_t first;
  uint32_t last;
};

static const a_code_point_range identifier_ranges[] = {
    {0x00A8, 0x00A8},   {0x00AA, 0x00AA},   {0x00AD, 0x00AD},   {0x00AF, 0x00AF},
    {0x00B2, 0x00B5},   {0x00B7, 0x00BA},   {0x00BC, 0x00BE},   {0x00C0, 0x00D6},
    {0x00D8, 0x00F6},   {0x00F8, 0x00FF},   {0x0100, 0x167F},   {0x1681, 0x180D},
    {0x180F, 0x1FFF},   {0x200B, 0x200D},   {0x202A, 0x202E},   {0x203F, 0x2040},
    {0x2054, 0x2054},   {0x2060, 0x206F},   {0x2070, 0x218F},   {0x2460, 0x24FF},
    {0x2776, 0x2793},   {0x2C00, 0x2DFF},   {0x2E80, 0x2FFF},   {0x3004, 0x3007},
    {0x3021, 0x302F},   {0x3031, 0x303F},   {0x3040, 0xD7FF},   {0xF900, 0xFD3D},
    {0xFD40, 0xFDCF},   {0xFDF0, 0xFE44},   {0xFE47, 0xFFFD},   {0x10000, 0x1FFFD},
    {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD}, {0x40000, 0x4FFFD}, {0x50000, 0x5FFFD},
    {0x60000, 0x6FFFD}, {0x70000, 0x7FFFD}, {0x80000, 0x8FFFD}, {0x90000, 0x9FFFD},
    {0xA0000, 0xAFFFD}, {0xB0000, 0xBFFFD}, {0xC0000, 0xCFFFD}, {0xD0000, 0xDFFFD},
    {0xE0000, 0xEFFFD}};

static const a_code_point_range not_initial_ranges[] = {
    {0x0300, 0x036F}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0xFE20, 0xFE2F}};

template <size_t size>
static bool is_in_ranges(const a_code_point_range (&ranges)[size], uint32_t code_point) {
  for (const a_code_point_range& range : ranges)
    if (code_point >= range.first && code_point <= range.last)
      return true;
  return false;
}

static int hex_digit_value(char c) {
  if (c >= '0' && c <= '9')
    return c - '0';
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// The digits behind \u or \U; false when there are too few.
static bool read_ucn_digits(const char* location, uint32_t* code_point) {
  int num_digits = location[1] == 'u' ? 4 : 8;
  uint32_t value = 0;
  for (int i = 0; i < num_digits; ++i) {
    int digit = hex_digit_value(location[2 + i]);
    if (digit < 0)
      return false;
    value = value * 16 + static_cast<uint32_t>(digit);
  }
  *code_point = value;
  return true;
}

// The number of what is wrong with a code point, 0 for nothing.
static an_error_code ucn_fault(uint32_t code_point, bool is_id, bool at_start) {
  if (code_point > 0x10FFFF || (code_point >= 0xD800 && code_point <= 0xDFFF))
    return ec_UCN_names_invalid_code_point;
  bool is_basic = code_point < 0xA0 && code_point != '$' && code_point != '@' && code_point != '`';
  if (is_basic)
    return ec_UCN_names_basic_char;
  if (!is_id)
    return 0;
  if (code_point == '$' && allow_dollar_in_id_chars)
    return 0;
  if (!is_in_ranges(identifier_ranges, code_point))
    return ec_invalid_identifier_UCN;
  if (at_start && is_in_ranges(not_initial_ranges, code_point))
    return ec_invalid_identifier_start_UCN;
  return 0;
}

uint32_t scan_universal_character(char** location, bool is_id, bool at_start, bool report) {
  uint32_t code_point;
  if (!read_ucn_digits(*location, &code_point)) {
    if (report)
      report_token_diagnostic(es_error, ec_malformed_universal_character, *location);
    *location += 2;
    return 0;
  }
  an_error_code fault = ucn_fault(code_point, is_id, at_start);
  if (fault != 0 && report)
    report_token_diagnostic(
        fault == ec_UCN_names_basic_char ? strict_ansi_error_severity : es_error, fault, *location);
  *location += (*location)[1] == 'u' ? 6 : 10;
  return fault == 0 || fault == ec_UCN_names_basic_char ? code_point : 0;
}

bool f_is_identifier_char(const char* location, bool at_start, size_t* length,
                          uint32_t* code_point) {
  uint32_t value = 0;
  if (*location == '\\') {
    if (!universal_character_names_allowed || (location[1] != 'u' && location[1] != 'U') ||
        !read_ucn_digits(location, &value) || ucn_fault(value, true, at_start) != 0)
      return false;
    *length = location[1] == 'u' ? 6 : 10;
  } else {
    if (static_cast<unsigned char>(*location) < 0x80 || !multibyte_chars_in_source_enabled)
      return false;
    a_boolean invalid = 0;
    int char_length = mbc_to_wide_char(location, &value, &invalid, false);
    if (invalid || ucn_fault(value, true, at_start) != 0)
      return false;
    *length = static_cast<size_t>(char_length);
  }
  if (code_point != nullptr)
    *code_point = value;
  return true;
}

bool is_nonstandard_character(const char* location) {
  unsigned char c = static_cast<unsigned char>(*location);
  return c == '$' || c == '@' || c == '`' || c >= 0x80;
}

const char* make_canonical_identifier(const char* text, size_t* length) {
  static std::string canonical;
  canonical.clear();
  const char* end = text + *length;
  while (text < end) {
    size_t char_length;
    uint32_t code_point;
    if (!is_id_char[static_cast<unsigned char>(*text)] &&
        f_is_identifier_char(text, false, &char_length, &code_point)) {
      char ucn[16];
      snprintf(ucn, sizeof ucn, code_point > 0xFFFF ? "\\U%08X" : "\\u%04X", code_point);
      il_header.has_ucn_names = 1;
      canonical += ucn;
      text += char_length;
    } else {
      canonical += *text++;
    }
  }
  *length = canonical.size();
  return canonical.c_str();
}

char* end_of_extended_identifier(char* start, char* p) {
  for (;;) {
    size_t length;
    if (is_id_char[static_cast<unsigned char>(*p)]) {
      ++p;
    } else if (f_is_identifier_char(p, p == start, &length, nullptr)) {
      p += length;
    } else if (*p == '\\' && universal_character_names_allowed && (p[1] == 'u' || p[1] == 'U')) {
      // A bad name is reported and taken as far as it goes.
      scan_universal_character(&p, true, p == start, true);
    } else {
      return p;
    }
  }
}

a_symbol_header* header_of_identifier(const char* start, const char* end) {
  a_symbol_locator locator = cleared_locator;
  size_t length = static_cast<size_t>(end - start);
  const char* p = start;
  while (p < end && is_id_char[static_cast<unsigned char>(*p)])
    ++p;
  const char* name = p == end ? start : make_canonical_identifier(start, &length);
  return find_symbol_header(name, length, &locator);
}

// -- Keywords --------------------------------------------------------------------------

// The names of operators, and true and false, also count in #if.
static bool keyword_counts_in_directives(a_token_kind kind) {
  return (!is_keyword_token(kind) && kind != tok_unimplemented) || kind == tok_true ||
         kind == tok_false;
}

// Libraries for clang may name a class like a type trait, which ends the trait.
static bool is_type_trait_as_class_name(const a_symbol* symbol) {
  return clang_mode && curr_token == tok_struct &&
         strncmp(symbol->header->identifier, "__is_", 5) == 0;
}

static void drop_keyword(a_symbol* symbol) {
  a_source_position position;
  position_of_loc(start_of_curr_token, &position);
  pos_sy_warning(ec_keyword_dropped, &position, symbol);
  symbol->variant.token_kind = tok_identifier;
}

// A word that the settings make no keyword is reported at its first use.
static void report_unimplemented_keyword(a_symbol* symbol) {
  if (symbol->referenced)
    return;
  symbol->referenced = 1;
  a_source_position position;
  position_of_loc(start_of_curr_token, &position);
  pos_st_diagnostic(strict_ansi_mode ? strict_ansi_error_severity : es_remark,
                    ec_unimplemented_keyword, &position, symbol->header->identifier);
}

a_token_kind keyword_at_this_place(const a_symbol_header* header) {
  if (fetch_pp_tokens || suppress_keyword_recognition)
    return tok_identifier;
  a_symbol* symbol = find_keyword_symbol(header);
  if (symbol == nullptr)
    return tok_identifier;
  a_token_kind kind = static_cast<a_token_kind>(symbol->variant.token_kind);
  if (in_preprocessing_directive && !recognize_keywords_in_pragma &&
      !keyword_counts_in_directives(kind))
    return tok_identifier;
  if (kind == tok_unimplemented) {
    report_unimplemented_keyword(symbol);
    return tok_identifier;
  }
  if (is_type_trait_as_class_name(symbol)) {
    drop_keyword(symbol);
    return tok_identifier;
  }
  return kind;
}

void enter_gnu_keyword(a_token_kind kind, const char* name) {
  std::string text = std::string("__") + name;
  enter_keyword(kind, text.c_str());
  enter_keyword(kind, (text + "__").c_str());
}

static bool is_entered_keyword(const char* name) {
  a_symbol_locator locator = cleared_locator;
  return find_symbol_header(name, 0, &locator)->is_keyword;
}

static void enter_keyword_once(a_token_kind kind, const char* name) {
  if (!is_entered_keyword(name))
    enter_keyword(kind, name);
}

static void enter_gnu_keyword_once(a_token_kind kind, const char* name) {
  std::string text = std::string("__") + name;
  enter_keyword_once(kind, text.c_str());
  enter_keyword_once(kind, (text + "__").c_str());
}

void enter_keywords() {
#define KEYWORD(kind, name, condition)                                                             \
  if (condition)                                                                                   \
    enter_keyword_once(kind, name);
#define GNU_KEYWORD(kind, name, condition)                                                         \
  if (condition)                                                                                   \
    enter_gnu_keyword_once(kind, name);
#include "keywords.def"
#undef KEYWORD
#undef GNU_KEYWORD
}

// -- Identifiers ----------------------------------------------------------------------------

// In #if a name that is left after expansion is 0 (C99 6.10.1p4).
static a_token_kind undefined_pp_identifier() {
  make_pp_int_constant(0);
  curr_token_is_undefined_pp_identifier = 1;
  return tok_integer;
}

static void set_bool_literal(bool value) {
  clear_constant(&const_for_curr_token, con_integer);
  set_integer_constant(&const_for_curr_token, value,
                       static_cast<an_integer_kind>(targ_bool_int_kind));
  const_for_curr_token.type = bool_type();
  const_for_curr_token.is_boolean_literal = 1;
}

static void set_identifier_locator(a_symbol_header* header) {
  locator_for_curr_id = cleared_locator;
  locator_for_curr_id.header = header;
}

static a_token_kind scan_macro_name(a_symbol_header* header) {
  a_symbol* symbol = find_macro_symbol(header);
  a_boolean go_on = 0;
  macro_invocation(symbol, &go_on);
  return go_on ? scan_again : tok_identifier;
}

static a_token_kind classify_identifier(a_symbol_header* header, an_inert_mark mark) {
  set_identifier_locator(header);
  if (header->is_macro && mark != inert_for_good && expand_macros) {
    if (scan_macro_name(header) == scan_again)
      return scan_again;
    set_identifier_locator(header);
  }
  if (header == va_args_header && !fetch_pp_tokens)
    report_token_diagnostic(es_error, ec_VA_ARGS_not_allowed, start_of_curr_token);
  if (header->is_keyword) {
    a_token_kind kind = keyword_at_this_place(header);
    if (kind != tok_identifier) {
      if (kind == tok_true || kind == tok_false) {
        if (in_pp_if_expression) {
          make_pp_int_constant(kind == tok_true);
          return tok_integer;
        }
        set_bool_literal(kind == tok_true);
      }
      return kind;
    }
  }
  if (in_pp_if_expression && !fetch_pp_tokens)
    return undefined_pp_identifier();
  return tok_identifier;
}

a_token_kind scan_identifier(char* start, an_inert_mark mark) {
  char* p = start;
  uint32_t hash = 0;
  while (is_id_char[static_cast<unsigned char>(*p)])
    hash = symbol_hash_step(hash, *p++);
  bool is_extended = *p == '\\' || static_cast<unsigned char>(*p) >= 0x80;
  if (is_extended) {
    p = end_of_extended_identifier(start, p);
    if (p == start) {
      curr_char_loc = start;
      report_token_error(ec_bad_token, start);
      ++curr_char_loc;
      return tok_error;
    }
  }
  curr_char_loc = p;
  curr_token_is_inert_macro = mark == inert_for_good;
  curr_token_is_temporarily_inert_macro = mark == inert_for_now;
  bool needs_no_lookup =
      !expand_macros && (fetch_pp_tokens || in_preprocessing_directive) && !scanning_pragma_tokens;
  // In an argument list, a name that stands in its own macro's text is inert.
  if (needs_no_lookup && !(in_macro_arg_list && curr_text_modif != nullptr)) {
    set_identifier_locator(nullptr);
    return tok_identifier;
  }
  size_t length = static_cast<size_t>(p - start);
  a_symbol_header* header;
  if (is_extended) {
    const char* canonical = make_canonical_identifier(start, &length);
    header = find_symbol_header(canonical, length, &locator_for_curr_id);
  } else {
    header = find_symbol_header_hashed(start, length, finish_symbol_hash(hash, start, length));
  }
  if (needs_no_lookup) {
    set_identifier_locator(header);
    if (header->is_macro && macro_is_being_expanded(find_macro_symbol(header)))
      curr_token_is_inert_macro = 1;
    return tok_identifier;
  }
  if (!header->is_macro && !header->is_keyword && !in_pp_if_expression &&
      header != va_args_header) {
    set_identifier_locator(header);
    return tok_identifier;
  }
  return classify_identifier(header, mark);
}

bool curr_token_is_identifier_string(const char* text) {
  if (curr_token != tok_identifier)
    return false;
  if (locator_for_curr_id.header != nullptr)
    return strcmp(locator_for_curr_id.header->identifier, text) == 0;
  return strlen(text) == len_of_curr_token &&
         memcmp(text, start_of_curr_token, len_of_curr_token) == 0;
}

bool check_context_sensitive_keyword(a_token_kind kind, const char* text) {
  if (!curr_token_is_identifier_string(text))
    return false;
  curr_token = kind;
  return true;
}

void lexical_identifier_trans_unit_init() {
  a_symbol_locator locator = cleared_locator;
  va_args_header =
      variadic_macros_allowed ? find_symbol_header("__VA_ARGS__", 0, &locator) : nullptr;
}
