// The names of operator functions, conversion functions and destructors: several
// tokens, folded into one identifier token (C++11 12.3.2, 12.4, 13.5, 13.5.8).

#include "declarator.h"
#include "error.h"
#include "lexical_int.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "types.h"

#include <string>

static a_symbol_header* header_of_text(const std::string& text) {
  a_symbol_locator locator = cleared_locator;
  return find_symbol_header(text.c_str(), text.size(), &locator);
}

a_symbol_header* destructor_header(const a_type* class_type) {
  const a_symbol* symbol = class_type->source_corresp.symbol;
  return header_of_text(std::string("~") + symbol->header->identifier);
}

a_symbol_header* conversion_header(const a_type* type) {
  size_t length;
  const char* text = format_type_string(type, &length);
  a_symbol_header* header = header_of_text("operator " + std::string(text, length));
  header->is_operator_name = true;
  return header;
}

// The current token becomes the whole name.
static void become_name(a_symbol_header* header, const a_source_position* start) {
  curr_token = tok_identifier;
  clear_locator(&locator_for_curr_id, start);
  locator_for_curr_id.header = header;
  pos_curr_token = *start;
}

// ---- Operators ----

// At the first token behind `operator`: the kind, with its last token current;
// opn_none where no operator stands.
static an_opname_kind scan_operator_tokens() {
  a_token_kind second;
  switch (curr_token) {
  case tok_new:
  case tok_delete: {
    bool is_new = curr_token == tok_new;
    if (next_two_tokens(tok_lbracket, &second) && second == tok_rbracket) {
      get_token();
      get_token();
      return is_new ? opn_array_new : opn_array_delete;
    }
    return is_new ? opn_new : opn_delete;
  }
  case tok_lparen:
  case tok_lbracket: {
    an_opname_kind kind = opname_kind_for_token[curr_token];
    a_token_kind closing = curr_token == tok_lparen ? tok_rparen : tok_rbracket;
    get_token();
    if (curr_token != closing) {
      pos_error(closing == tok_rparen ? ec_exp_rparen : ec_exp_rbracket, &pos_curr_token);
      unget_token();
    }
    return kind;
  }
  default:
    return opname_kind_for_token[curr_token];
  }
}

static void become_operator(an_opname_kind kind, const a_source_position* start) {
  become_name(header_of_operator(kind), start);
  locator_for_curr_id.is_operator_name = true;
  locator_for_curr_id.operator_kind = kind;
}

// `operator type`: the type ends with the last token that can belong to it.
static void become_conversion(const a_source_position* start) {
  a_type* type = new_type_name();
  unget_token();
  become_name(conversion_header(type), start);
  locator_for_curr_id.is_conversion_name = true;
  locator_for_curr_id.conversion_type = type;
}

static void become_literal_operator(const a_source_position* start) {
  const a_symbol_header* suffix = ud_lit_suffix_for_curr_token;
  if (curr_token == tok_string) {
    get_token();
    suffix = curr_token == tok_identifier ? locator_for_curr_id.header : nullptr;
  }
  if (suffix == nullptr) {
    pos_error(ec_invalid_literal_operator_id, start);
    unget_token();
    become_name(error_symbol_header(), start);
    set_to_error_locator(&locator_for_curr_id);
    return;
  }
  become_name(literal_operator_header(suffix), start);
  locator_for_curr_id.is_literal_operator_name = true;
}

// Whether a suffixed or an empty string begins the name of a literal operator.
static bool at_literal_operator() {
  return user_defined_literals_enabled &&
         (curr_token == tok_string || curr_token == tok_ud_literal);
}

void fold_operator_name() {
  const a_source_position start = pos_curr_token;
  const a_token_sequence_number number = curr_token_sequence_number;
  get_token();
  if (at_literal_operator()) {
    become_literal_operator(&start);
  } else if (an_opname_kind kind = scan_operator_tokens(); kind != opn_none) {
    become_operator(kind, &start);
  } else if (is_type_start(0)) {
    become_conversion(&start);
  } else {
    pos_error(ec_exp_operator, &pos_curr_token);
    unget_token();
    become_name(error_symbol_header(), &start);
    set_to_error_locator(&locator_for_curr_id);
  }
  locator_for_curr_id.is_generalized = true;
  curr_token_sequence_number = number;
}

// ---- Destructors ----

// The name may be that of the class or another name of its type.
static bool names_class(const a_type* class_type) {
  const a_symbol* own = class_type->source_corresp.symbol;
  if (own != nullptr && own->header == locator_for_curr_id.header)
    return true;
  a_symbol_locator locator = locator_for_curr_id;
  const a_symbol* symbol = normal_id_lookup(&locator, ilo_none);
  return symbol != nullptr && symbol->kind == symk_type &&
         skip_typerefs(symbol->variant.type) == class_type;
}

void fold_destructor_name(a_type* class_type) {
  const a_source_position start = pos_curr_token;
  const a_token_sequence_number number = curr_token_sequence_number;
  get_token();
  bool is_good = curr_token == tok_identifier;
  if (!is_good) {
    pos_error(ec_exp_identifier, &pos_curr_token);
    unget_token();
  } else if (!names_class(class_type)) {
    pos_stty_error(ec_destructor_type_mismatch, &pos_curr_token,
                   locator_for_curr_id.header->identifier, class_type);
    is_good = false;
  }
  become_name(is_good ? destructor_header(class_type) : error_symbol_header(), &start);
  if (!is_good)
    set_to_error_locator(&locator_for_curr_id);
  locator_for_curr_id.is_destructor_name = true;
  locator_for_curr_id.is_generalized = true;
  curr_token_sequence_number = number;
}
