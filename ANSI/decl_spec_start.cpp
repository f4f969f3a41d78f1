// Whether a token begins a type, a declaration or an expression. In C the first
// token tells; C++ has statements that only a look ahead can classify (C++11
// 6.8, 8.2).

#include "decl_spec_int.h"

#include "attribute.h"
#include "error.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "types.h"

// ---- Type names ----

a_symbol* curr_type_symbol() {
  if (!f_is_generalized_identifier_start() || locator_for_curr_id.is_error_locator)
    return nullptr;
  a_symbol* symbol = in_cplusplus_mode() ? coalesce_and_lookup_generalized_identifier(ilo_none)
                                         : normal_id_lookup(&locator_for_curr_id, ilo_none);
  if (symbol &&
      (symbol->kind == symk_type || (in_cplusplus_mode() && is_tag_symbol_kind(symbol->kind))))
    return symbol;
  if (!locator_for_curr_id.is_generalized)
    locator_for_curr_id.symbol = nullptr;
  return nullptr;
}

// Types that can also be converted to, in C++: `int(x)`.
static bool is_simple_type_keyword(a_token_kind token) {
  switch (token) {
  case tok_char:
  case tok_double:
  case tok_float:
  case tok_int:
  case tok_long:
  case tok_short:
  case tok_signed:
  case tok_unsigned:
  case tok_void:
  case tok_c99_bool:
  case tok_bool:
  case tok_wchar_t:
  case tok_char16_t:
  case tok_char32_t:
  case tok_decltype:
  case tok_typeof:
  case tok_znt_size_type:
  case tok_znt_ptrdiff_type:
  case tok_znt_bool_type:
    return true;
  default:
    return false;
  }
}

bool is_type_keyword(a_token_kind token) {
  switch (token) {
  case tok_enum:
  case tok_struct:
  case tok_union:
  case tok_class:
  case tok_complex:
  case tok_imaginary:
  case tok_auto_type:
  case tok_typename:
  case tok_underlying_type:
  case tok_znt_vector_type:
    return true;
  default:
    return is_simple_type_keyword(token);
  }
}

bool is_type_start(unsigned options) {
  if (is_type_keyword(curr_token)) {
    // `int{1}` is an expression.
    bool is_conversion = (options & dst_expr_context) && list_init_enabled &&
                         is_simple_type_keyword(curr_token) && next_token() == tok_lbrace;
    return !is_conversion;
  }
  return is_qualifier_token(curr_token) || is_function_specifier(curr_token) ||
         is_modifier_token(curr_token) || curr_token == tok_atomic ||
         is_attribute_start(al_specifiers) || curr_type_symbol() != nullptr;
}

// ---- Declarations ----

// An undeclared name in front of what can only be a declarator is a misspelled
// type; the declaration road reports it once.
bool is_misspelled_type(unsigned options) {
  if (curr_token != tok_identifier || locator_for_curr_id.is_error_locator ||
      locator_for_curr_id.is_qualified)
    return false;
  if (normal_id_lookup(&locator_for_curr_id, ilo_none))
    return false;
  a_token_kind next = next_token();
  if (next == tok_identifier || next == tok_operator)
    return true;
  return !(options & dst_expr_context) &&
         (next == tok_star || (in_cplusplus_mode() && next == tok_ampersand) ||
          (rvalue_references_enabled && next == tok_and_and));
}

bool is_decl_start(unsigned options) {
  switch (curr_token) {
  case tok_auto:
    return auto_storage_class_specifier_enabled || auto_type_specifier_enabled;
  case tok_declspec:
  case tok_alignas:
  case tok_static_assert:
  case tok_using:
  case tok_namespace:
    return true;
  default:
    break;
  }
  if (is_storage_class_token(curr_token) || is_thread_storage_token(curr_token) ||
      is_type_start(options & dst_expr_context))
    return true;
  return (options & dst_guess_misspelled_type) && is_misspelled_type(options);
}

// ---- Looking ahead ----

namespace {

// The tokens walked over, which are read again at the end.
class a_prescan {
public:
  a_prescan() {
    clear_token_cache(&cache, false);
  }
  ~a_prescan() {
    if (advanced)
      f_rescan_cached_tokens(&cache, true);
  }
  a_prescan(const a_prescan&) = delete;
  a_prescan& operator=(const a_prescan&) = delete;

  void advance() {
    cache_curr_token(&cache);
    get_token();
    advanced = true;
  }

private:
  a_token_cache cache;
  bool advanced = false;
};

constexpr int max_prescan_depth = 500;

} // namespace

// At an opening token: behind its partner. False at the end of the source.
static bool skip_balanced(a_prescan* prescan) {
  int depth = 0;
  do {
    if (curr_token == tok_lparen || curr_token == tok_lbracket || curr_token == tok_lbrace)
      ++depth;
    else if (curr_token == tok_rparen || curr_token == tok_rbracket || curr_token == tok_rbrace)
      --depth;
    else if (curr_token == tok_end_of_source || curr_token == tok_semicolon)
      return false;
    prescan->advance();
  } while (depth > 0);
  return true;
}

static void prescan_decl_modifiers(a_prescan* prescan) {
  while (is_qualifier_token(curr_token) || is_modifier_token(curr_token))
    prescan->advance();
}

// `a`, `::a::b`, and `a::*`, which makes `*is_pointer_to_member` true. False
// for no name.
static bool skip_name(a_prescan* prescan, bool* is_pointer_to_member) {
  *is_pointer_to_member = false;
  if (curr_token == tok_colon_colon)
    prescan->advance();
  for (;;) {
    if (curr_token != tok_identifier)
      return false;
    prescan->advance();
    if (curr_token != tok_colon_colon)
      return true;
    prescan->advance();
    if (curr_token == tok_star) {
      *is_pointer_to_member = true;
      return true;
    }
  }
}

static bool is_pointer_operator(a_token_kind token) {
  return token == tok_star || token == tok_ampersand || token == tok_and_and;
}

// Over a declarator; false where the tokens don't have its form.
static bool walk_declarator(a_prescan* prescan, a_declarator_prescan* out, int depth) {
  if (depth > max_prescan_depth)
    return false;
  bool is_pointer_to_member = false;
  for (;;) {
    while (is_pointer_operator(curr_token)) {
      prescan->advance();
      prescan_decl_modifiers(prescan);
    }
    if (curr_token != tok_identifier && curr_token != tok_colon_colon)
      break;
    if (!skip_name(prescan, &is_pointer_to_member))
      return false;
    if (!is_pointer_to_member) {
      out->name_seen = true;
      break;
    }
  }
  if (!out->name_seen && curr_token == tok_lparen) {
    prescan->advance();
    if (!walk_declarator(prescan, out, depth + 1) || curr_token != tok_rparen)
      return false;
    prescan->advance();
  }
  while (curr_token == tok_lbracket || curr_token == tok_lparen)
    if (!skip_balanced(prescan))
      return false;
  prescan_decl_modifiers(prescan);
  return true;
}

static void walk_whole_declarator(a_prescan* prescan, a_declarator_prescan* out) {
  *out = a_declarator_prescan();
  out->is_declarator = walk_declarator(prescan, out, 0);
  out->stop_token = curr_token;
}

void prescan_and_find_declarator(a_declarator_prescan* out) {
  a_prescan prescan;
  walk_whole_declarator(&prescan, out);
}

bool at_ptr_to_member() {
  if (!in_cplusplus_mode() || (curr_token != tok_identifier && curr_token != tok_colon_colon))
    return false;
  if (curr_token == tok_identifier && next_token() != tok_colon_colon)
    return false;
  a_prescan prescan;
  bool is_pointer_to_member;
  return skip_name(&prescan, &is_pointer_to_member) && is_pointer_to_member;
}

bool is_start_of_range_based_for() {
  if (!in_cplusplus_mode())
    return false;
  a_prescan prescan;
  int depth = 0;
  for (; curr_token != tok_end_of_source && curr_token != tok_semicolon; prescan.advance()) {
    if (curr_token == tok_lparen || curr_token == tok_lbracket || curr_token == tok_lbrace)
      ++depth;
    else if (curr_token == tok_rparen || curr_token == tok_rbracket || curr_token == tok_rbrace)
      --depth;
    if (depth < 0 || (depth == 0 && (curr_token == tok_question || curr_token == tok_assign)))
      return false;
    if (depth == 0 && curr_token == tok_colon)
      return true;
  }
  return false;
}

// Over a simple type; false when it is more than that, which no expression
// begins with.
static bool skip_simple_type(a_prescan* prescan) {
  bool is_pointer_to_member;
  if (curr_token == tok_identifier || curr_token == tok_colon_colon)
    return skip_name(prescan, &is_pointer_to_member) && !is_pointer_to_member;
  if (!is_simple_type_keyword(curr_token))
    return false;
  bool has_operand = curr_token == tok_decltype || curr_token == tok_typeof;
  prescan->advance();
  return !has_operand || curr_token != tok_lparen || skip_balanced(prescan);
}

static bool is_type_name_context(unsigned options) {
  return !(options & (dst_statement | dst_condition | dst_parameter));
}

static bool ends_declarator(unsigned options, const a_declarator_prescan* found) {
  a_token_kind token = found->stop_token;
  if (options & dst_parameter)
    return token == tok_rparen || token == tok_comma || token == tok_assign ||
           token == tok_ellipsis;
  if (!found->name_seen)
    return false;
  if (token == tok_assign || token == tok_semicolon || (token == tok_lbrace && list_init_enabled))
    return true;
  if (options & dst_condition)
    return false; // C++11 6.4 p1: it has an initializer
  return token == tok_colon || token == tok_asm || token == tok_attribute;
}

static bool prescan_finds_declaration(unsigned options);

// Whether the parameter at hand, the first of a list, is one and no operand.
static bool is_first_parameter() {
  if (curr_token == tok_rparen || curr_token == tok_ellipsis)
    return true;
  return is_decl_start(0) && prescan_finds_declaration(dst_parameter);
}

// Behind the parameters of a type name: what goes on in an expression only
// makes the whole of it one.
static bool ends_function_type_name() {
  return curr_token == tok_rparen || curr_token == tok_noexcept || curr_token == tok_throw ||
         is_qualifier_token(curr_token);
}

// At the parenthesis behind a type, where a type name may stand: `int ()`,
// `int (*)()`, `int (T)`, unlike `int (1)`, `T(), 1` and `T() = x`.
static bool is_rest_of_type_name(a_prescan* prescan) {
  prescan->advance();
  if (is_pointer_operator(curr_token) || at_ptr_to_member()) {
    a_declarator_prescan found = {};
    return walk_declarator(prescan, &found, 0) && curr_token == tok_rparen && !found.name_seen;
  }
  if (!is_first_parameter())
    return false;
  for (int depth = 1; depth > 0; prescan->advance()) {
    if (curr_token == tok_end_of_source)
      return false;
    depth += (curr_token == tok_lparen) - (curr_token == tok_rparen);
  }
  return ends_function_type_name();
}

// At a type that is followed by a parenthesis: a declarator in parentheses, or
// the operand of a conversion.
static bool prescan_finds_declaration(unsigned options) {
  a_prescan prescan;
  if (!skip_simple_type(&prescan))
    return true;
  if (curr_token == tok_lbrace)
    return !list_init_enabled;
  if (curr_token != tok_lparen)
    return true;
  if (is_type_name_context(options))
    return is_rest_of_type_name(&prescan);
  a_declarator_prescan found = {};
  walk_whole_declarator(&prescan, &found);
  // Every part of a list has to be a declarator.
  while ((options & dst_statement) && found.is_declarator && found.name_seen &&
         found.stop_token == tok_comma) {
    prescan.advance();
    walk_whole_declarator(&prescan, &found);
  }
  return found.is_declarator && ends_declarator(options, &found);
}

bool is_decl_not_expr(unsigned options) {
  unsigned start_options =
      ((options & dst_guess_misspelled_type) | (options & dst_statement ? 1 : 0)) ^ 1;
  bool is_declaration = is_decl_start(start_options);
  if (in_C_mode())
    return is_declaration;
  return is_declaration ? prescan_finds_declaration(options) : curr_token == tok_overload;
}
