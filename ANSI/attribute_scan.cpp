// Reading of attribute specifiers: [[...]] (C++11 7.6.1), __attribute__((...)),
// __declspec(...) and alignas.

#include <cstring>
#include <string>

#include "attribute_int.h"
#include "declarator.h"
#include "error.h"
#include "expr.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "trans_unit.h"
#include "types.h"

a_source_position end_position_of_attributes;
uint32_t last_token_number_of_attributes;

// A list that was handed back; the flag tells an empty one from none.
static an_attribute* unscanned_attributes;
static a_boolean attributes_were_unscanned;

// The forms in which each kind has been used in the list being read, as bits.
static uint8_t forms_used_of_kind[num_attribute_kinds];

namespace {

// One bracketed list while it is read.
struct a_list_scan {
  uint8_t form;
  a_token_kind closing;
  const char* using_namespace; // null: no prefix
  uint8_t using_flags;         // of the prefix's namespace
  an_attribute_group* group;
  an_attribute* first;
  an_attribute** link;
};

// One item of an argument format.
struct an_argument_item {
  char kind[3];
  bool optional;
  bool repeats;
};

} // namespace

// ---- Names ----

static bool is_name_token() {
  return curr_token == tok_identifier || is_keyword_token(curr_token);
}

// The token's text as an attribute's name.
static const char* name_of_token() {
  if (curr_token == tok_identifier)
    return locator_for_curr_id.header->identifier;
  if (curr_token == tok_gnu_restrict)
    return token_names[tok_restrict];
  return curr_token == tok_alignas && in_C_mode() ? "_Alignas" : token_names[curr_token];
}

static const char* keep_text(const char* text, size_t length) {
  return copy_string_of_length_to_region(file_scope_region_number, text, length);
}

static const char* keep_text(const char* text) {
  return keep_text(text, strlen(text));
}

// ---- Arguments ----

// The next item of a format's list, at *text, which moves behind it and its
// comma.
static an_argument_item next_argument_item(const char** text) {
  an_argument_item item = {};
  const char* at = *text;
  size_t length = 0;
  for (; *at != ',' && *at != ')'; ++at) {
    if (*at == '?')
      item.optional = true;
    else if (*at == '+')
      item.repeats = true;
    else
      item.kind[length++] = *at;
  }
  *text = *at == ',' ? at + 1 : at;
  return item;
}

static int number_of_required_items(const char* format) {
  int count = 0;
  while (*format != ')') {
    an_argument_item item = next_argument_item(&format);
    count += !item.optional && item.kind[0] != '*';
  }
  return count;
}

static bool closes_or_ends(a_token_kind token) {
  return token == tok_rparen || token == tok_rbracket || token == tok_rbrace ||
         token == tok_end_of_source;
}

// Any balanced tokens up to the closing parenthesis.
static bool scan_token_argument(an_attribute_arg* arg) {
  static const a_token_set_array no_tokens = {};
  a_token_cache cache;
  clear_token_cache(&cache, false);
  while (!closes_or_ends(curr_token))
    cache_token_stream_full(&cache, &no_tokens, ctsf_stop_at_unbalanced);
  arg->value.tokens = cache.first;
  if (curr_token == tok_rparen)
    return true;
  pos_error(ec_unbalanced_attribute_argument, &pos_curr_token);
  arg->value.tokens = nullptr;
  discard_token_cache(&cache);
  return false;
}

static bool scan_constant_argument(an_attribute_arg* arg) {
  a_source_position position = pos_curr_token;
  a_constant constant;
  arg->arg_kind = aak_constant;
  add_stop_token(tok_comma);
  scan_integral_constant_expression(&constant);
  remove_stop_token(tok_comma);
  if (constant.kind == con_error)
    return false;
  if (constant.kind != con_integer && constant.kind != con_template_param) {
    pos_error(ec_exp_int_constant, &position);
    return false;
  }
  arg->value.constant = alloc_shareable_constant(&constant);
  return true;
}

static bool scan_type_argument(an_attribute_arg* arg) {
  arg->arg_kind = aak_type;
  arg->value.type = type_name();
  return !is_error_type(arg->value.type);
}

static bool scan_name_argument(an_attribute_arg* arg) {
  arg->arg_kind = aak_name;
  if (!is_name_token()) {
    syntax_error(ec_exp_identifier);
    return false;
  }
  arg->value.text = keep_text(name_of_token());
  get_token();
  return true;
}

static bool scan_string_argument(an_attribute_arg* arg, bool must_be_narrow) {
  arg->arg_kind = aak_string;
  if (curr_token != tok_string || const_for_curr_token.kind != con_string) {
    syntax_error(ec_exp_string_literal);
    return false;
  }
  const auto& string = const_for_curr_token.value.string;
  bool is_bad = must_be_narrow && const_for_curr_token.string_char_kind != sck_ordinary;
  if (is_bad)
    pos_error(ec_target_string_must_be_narrow, &pos_curr_token);
  else
    arg->value.text = keep_text(string.text, string.length == 0 ? 0 : string.length - 1);
  get_token();
  return !is_bad;
}

static bool scan_expression_argument(an_attribute_arg* arg) {
  arg->arg_kind = aak_expression;
  add_stop_token(tok_comma);
  arg->value.expr = scan_boolean_controlling_expression();
  remove_stop_token(tok_comma);
  return true;
}

static bool scan_argument(const an_argument_item* item, an_attribute_arg* arg) {
  check_stack_limit(); // a type may have attributes with types
  if (item->kind[0] == '*')
    return scan_token_argument(arg);
  if (item->kind[0] == 'n')
    return scan_name_argument(arg);
  if (item->kind[0] == 's')
    return scan_string_argument(arg, item->kind[1] == 'n');
  if (item->kind[0] == 'X')
    return scan_expression_argument(arg);
  bool may_be_type = item->kind[0] == 't' || item->kind[1] == 't';
  if (may_be_type && (item->kind[0] == 't' || is_type_start(dst_expr_context)))
    return scan_type_argument(arg);
  return scan_constant_argument(arg);
}

// Whether an item that may be missing is there.
static bool item_is_present(const an_argument_item* item) {
  if (curr_token == tok_rparen)
    return false;
  return !item->optional || item->kind[0] != 's' || curr_token == tok_string;
}

// The items of a list, up to the `)`. False after an error.
static bool scan_argument_items(an_attribute* attribute, const char* format) {
  an_attribute_arg** link = &attribute->arguments;
  int missing = number_of_required_items(format);
  bool any_comma = true;
  while (*format != ')' && any_comma) {
    const char* start = format;
    an_argument_item item = next_argument_item(&format);
    if (!item_is_present(&item))
      continue;
    an_attribute_arg* arg = alloc_attribute_arg();
    arg->position = pos_curr_token;
    arg->token_kind = static_cast<uint16_t>(curr_token);
    if (!scan_argument(&item, arg))
      return false;
    arg->end_position = curr_construct_end_position;
    *link = arg;
    link = &arg->next;
    --missing;
    any_comma = loop_token(tok_comma);
    if (any_comma && item.repeats)
      format = start;
  }
  if (missing > 0) {
    attribute_diagnostic(es_error, ec_missing_attribute_arguments, attribute);
    return false;
  }
  return true;
}

// The tokens in the parentheses are passed over.
static bool skip_arguments() {
  an_attribute_arg scratch = {};
  bool is_balanced = scan_token_argument(&scratch);
  a_token_cache tokens = {};
  tokens.first = scratch.value.tokens;
  for (a_cached_token* token = tokens.first; token != nullptr; token = token->next)
    tokens.last = token;
  discard_token_cache(&tokens);
  return is_balanced;
}

static bool scan_arguments_in_parentheses(an_attribute* attribute, const char* format,
                                          bool list_is_optional) {
  if (*format == '\0') {
    attribute_diagnostic(es_error, ec_arguments_provided_for_attribute, attribute);
    skip_arguments();
    return false;
  }
  const char* first = ++format;
  an_argument_item item = next_argument_item(&first);
  if (curr_token != tok_rparen || item.kind[0] == '*')
    return scan_argument_items(attribute, format);
  if (!list_is_optional && !item.optional) {
    attribute_diagnostic(es_error, ec_invalid_empty_attribute_arg_list, attribute);
    return false;
  }
  return true;
}

// The commas of the list of attributes stop the skipping too.
static void flush_to_end_of_arguments() {
  for (;;) {
    flush_to_closing_paren();
    if (curr_token != tok_comma)
      return;
    get_token();
  }
}

// Behind the attribute's name. A fault drops the attribute.
static void scan_attribute_arguments(an_attribute* attribute, const char* format) {
  bool list_is_optional = *format == '?';
  if (list_is_optional)
    ++format;
  if (curr_token != tok_lparen) {
    if (*format == '\0' || list_is_optional)
      return;
    syntax_error(ec_exp_lparen);
    attribute->kind = attrk_dropped;
    return;
  }
  get_token();
  add_stop_token(tok_rparen);
  if (!scan_arguments_in_parentheses(attribute, format, list_is_optional)) {
    attribute->kind = attrk_dropped;
    flush_to_end_of_arguments();
  }
  remove_stop_token(tok_rparen);
  attribute->end_position = end_pos_curr_token;
  if (!required_token(tok_rparen, ec_exp_rparen))
    attribute->kind = attrk_dropped;
}

// ---- One attribute ----

static an_attribute* add_attribute(a_list_scan* scan, uint8_t kind) {
  an_attribute* attribute = alloc_attribute();
  attribute->kind = kind;
  attribute->form = scan->form;
  attribute->group = scan->group;
  attribute->position = pos_curr_token;
  attribute->end_position = end_pos_curr_token;
  *scan->link = attribute;
  scan->link = &attribute->next;
  return attribute;
}

// The length of the given name counts, so that a beginning of a known name
// passes.
static bool is_known_namespace(const char* name, size_t length) {
  return strncmp(name, "gnu", length) == 0 || strncmp(name, "QL", length) == 0;
}

static uint8_t check_attribute_namespace(const char* name, const a_source_position* position) {
  if (!is_known_namespace(name, strlen(name))) {
    pos_st_warning(ec_attribute_namespace_unrecognized, position, name);
    return atf_unknown_namespace;
  }
  return strcmp(name, "gnu") == 0 ? atf_gnu_namespace : 0;
}

// `namespace::`, behind which the attribute's name must stand. False after an
// error.
static bool scan_attribute_namespace(const a_list_scan* scan, an_attribute* attribute) {
  const char* name = name_of_token();
  a_source_position position = pos_curr_token;
  if (scan->form == af_std && next_token() == tok_colon_colon) {
    if (scan->using_namespace != nullptr)
      pos_error(ec_namespace_not_allowed, &position);
    else
      attribute->flags |= check_attribute_namespace(name, &position);
    attribute->namespace_name = keep_text(name);
    get_token();
    get_token();
    if (!is_name_token()) {
      syntax_error(ec_exp_identifier);
      return false;
    }
  } else if (scan->using_namespace != nullptr) {
    attribute->namespace_name = scan->using_namespace;
    attribute->flags |= atf_using_prefix | scan->using_flags;
  }
  // [[gnu::name]] is __attribute__((name)).
  if ((attribute->flags & atf_gnu_namespace) && gnu_mode && gnu_version >= 40800)
    attribute->form = af_gnu;
  return true;
}

static const an_attribute_row* find_row_of_written_name(const an_attribute* attribute,
                                                        const char* name) {
  size_t length = strlen(name);
  if (attribute->form <= af_gnu)
    name = bare_attribute_name(name, &length);
  return find_attribute_row(name, length, attribute->form, attribute->namespace_name);
}

static void report_unknown_attribute(an_attribute* attribute) {
  an_error_severity severity = es_warning;
  if (attribute->flags & atf_unknown_namespace)
    severity = es_remark;
  else if (attribute->form == af_declspec)
    severity = es_discretionary_error;
  drop_attribute(severity, ec_unrecognized_attribute, attribute);
}

// The same kind in the same form before in the list.
static void check_repeated_attribute(an_attribute* attribute, const an_attribute_row* row) {
  uint8_t bit = static_cast<uint8_t>(1u << attribute->form);
  if (!(forms_used_of_kind[row->kind] & bit)) {
    forms_used_of_kind[row->kind] |= bit;
    return;
  }
  bool is_error = row->forms[0] == '1';
  pos_diagnostic(is_error ? es_error : es_remark, ec_attr_twice_in_group, &attribute->position);
  if (is_error)
    attribute->kind = attrk_dropped;
}

// At the name. False after a syntax error.
static bool scan_attribute(a_list_scan* scan) {
  if (curr_token == tok_comma || curr_token == scan->closing) {
    add_attribute(scan, attrk_empty);
    return true;
  }
  if (!is_name_token()) {
    syntax_error(ec_exp_identifier);
    return false;
  }
  an_attribute* attribute = add_attribute(scan, attrk_dropped);
  if (!scan_attribute_namespace(scan, attribute))
    return false;
  const char* name = name_of_token();
  const an_attribute_row* row = find_row_of_written_name(attribute, name);
  attribute->name = keep_text(row != nullptr ? row->name : name);
  attribute->end_position = end_pos_curr_token;
  get_token();
  if (row == nullptr) {
    report_unknown_attribute(attribute);
    if (loop_token(tok_lparen)) {
      add_stop_token(tok_rparen);
      skip_arguments();
      remove_stop_token(tok_rparen);
      required_token(tok_rparen, ec_exp_rparen);
    }
    return true;
  }
  attribute->kind = row->kind;
  scan_attribute_arguments(attribute, row->arguments);
  if (attribute->kind != attrk_dropped)
    check_repeated_attribute(attribute, row);
  return true;
}

// ---- Lists ----

static void scan_attribute_list(a_list_scan* scan) {
  add_stop_token(scan->closing);
  add_stop_token(tok_comma);
  for (;;) {
    bool is_good = scan_attribute(scan);
    // Between those of a __declspec no comma is needed.
    bool more = loop_token(tok_comma) || (is_good && scan->form == af_declspec &&
                                          (is_name_token() || curr_token == tok_string));
    if (!more)
      break;
  }
  remove_stop_token(tok_comma);
  remove_stop_token(scan->closing);
  memset(forms_used_of_kind, 0, sizeof forms_used_of_kind);
}

static a_list_scan start_group(uint8_t form, a_token_kind closing) {
  a_list_scan scan = {};
  scan.form = form;
  scan.closing = closing;
  scan.group = alloc_attribute_group();
  scan.group->position = pos_curr_token;
  return scan;
}

// At the last token of the group.
static void end_group(a_list_scan* scan) {
  scan->group->end_position = end_pos_curr_token;
  end_position_of_attributes = end_pos_curr_token;
  curr_construct_end_position = end_pos_curr_token;
  last_token_number_of_attributes = curr_token_sequence_number;
}

static void require_last_token(a_list_scan* scan, a_token_kind kind, an_error_code code) {
  if (!required_token_no_advance(kind, code) && curr_token != kind)
    return;
  end_group(scan);
  get_token();
}

// `using namespace-name:`
static void scan_using_prefix(a_list_scan* scan) {
  get_token();
  if (!is_name_token()) {
    syntax_error(ec_exp_identifier);
    return;
  }
  an_attribute* prefix = add_attribute(scan, attrk_using_prefix);
  scan->using_namespace = prefix->namespace_name = keep_text(name_of_token());
  scan->using_flags = check_attribute_namespace(scan->using_namespace, &pos_curr_token);
  prefix->flags = static_cast<uint8_t>(scan->using_flags | atf_using_prefix);
  get_token();
  required_token(tok_colon, ec_exp_colon);
}

// The list and the two tokens that close its group, the first of which was
// made a stop token.
static an_attribute* scan_rest_of_group(a_list_scan* scan, a_token_kind closer,
                                        an_error_code code) {
  scan_attribute_list(scan);
  required_token(closer, code);
  remove_stop_token(closer);
  require_last_token(scan, closer, code);
  return scan->first;
}

// At the first bracket.
static an_attribute* scan_std_group() {
  a_list_scan scan = start_group(af_std, tok_rbracket);
  scan.link = &scan.first;
  if (gpp_mode && (in_C_mode() || std_version < 201103))
    pos_diagnostic(es_note, ec_std_attributes_is_cpp11, &pos_curr_token);
  get_token();
  get_token();
  add_stop_token(tok_rbracket);
  if (curr_token == tok_using && using_attribute_namespaces_enabled)
    scan_using_prefix(&scan);
  return scan_rest_of_group(&scan, tok_rbracket, ec_exp_rbracket);
}

// At the keyword.
static an_attribute* scan_gnu_group() {
  a_list_scan scan = start_group(af_gnu, tok_rparen);
  scan.link = &scan.first;
  if (report_gnu_extensions)
    pos_warning(ec_attribute_is_gnu_extension, &pos_curr_token);
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen) || !required_token(tok_lparen, ec_exp_lparen))
    return nullptr;
  add_stop_token(tok_rparen);
  return scan_rest_of_group(&scan, tok_rparen, ec_exp_rparen);
}

// At the keyword.
static an_attribute* scan_declspec_group() {
  a_list_scan scan = start_group(af_declspec, tok_rparen);
  scan.link = &scan.first;
  get_token();
  if (!required_token(tok_lparen, ec_exp_lparen))
    return nullptr;
  scan_attribute_list(&scan);
  require_last_token(&scan, tok_rparen, ec_exp_rparen);
  return scan.first;
}

// At the keyword (C11 6.7.5, C++11 7.6.2).
static an_attribute* scan_alignas_group() {
  a_list_scan scan = start_group(af_alignas, tok_rparen);
  scan.link = &scan.first;
  an_attribute* attribute = add_attribute(&scan, attrk_align);
  attribute->name = keep_text(name_of_token());
  get_token();
  scan_attribute_arguments(attribute, "(?ct+)");
  scan.group->end_position = end_position_of_attributes = attribute->end_position;
  curr_construct_end_position = attribute->end_position;
  last_token_number_of_attributes = curr_token_sequence_number;
  return scan.first;
}

// ---- Specifiers ----

static bool declspec_is_allowed(an_attribute_location_tag location) {
  return ms_declspec_attributes_enabled &&
         (location == al_declaration_start || location == al_specifiers || location == al_tag);
}

bool is_attribute_start(an_attribute_location_tag location) {
  switch (curr_token) {
  case tok_lbracket:
    return std_attributes_enabled && next_token() == tok_lbracket;
  case tok_attribute:
    return gnu_attributes_enabled;
  case tok_declspec:
    return declspec_is_allowed(location);
  case tok_alignas:
    return true;
  default:
    return false;
  }
}

static an_attribute* scan_group() {
  switch (curr_token) {
  case tok_lbracket:
    return scan_std_group();
  case tok_attribute:
    return scan_gnu_group();
  case tok_declspec:
    return scan_declspec_group();
  default:
    return scan_alignas_group();
  }
}

static an_attribute* take_unscanned_attributes() {
  an_attribute* list = unscanned_attributes;
  unscanned_attributes = nullptr;
  attributes_were_unscanned = 0;
  return list;
}

static void set_location(an_attribute* list, an_attribute_location_tag location) {
  for (; list != nullptr; list = list->next)
    list->location = location;
}

an_attribute* scan_attributes(an_attribute_location_tag location) {
  an_attribute* list = attributes_were_unscanned ? take_unscanned_attributes() : nullptr;
  set_location(list, location);
  while (is_attribute_start(location)) {
    an_attribute* group = scan_group();
    set_location(group, location);
    append_attributes(&list, group);
  }
  return list;
}

an_attribute* scan_gnu_attribute_groups(an_attribute_location_tag location) {
  an_attribute* list = nullptr;
  while (curr_token == tok_attribute && gnu_attributes_enabled) {
    an_attribute* group = scan_gnu_group();
    set_location(group, location);
    append_attributes(&list, group);
  }
  return list;
}

void unscan_attributes(an_attribute* list) {
  unscanned_attributes = list;
  attributes_were_unscanned = 1;
}

void skip_over_attributes() {
  while (is_attribute_start(al_declaration_start)) {
    if (curr_token == tok_lbracket) {
      a_token_cache scratch;
      clear_token_cache(&scratch, false);
      cache_std_attribute(&scratch, false);
      discard_token_cache(&scratch);
      continue;
    }
    get_token();
    if (curr_token == tok_lparen)
      flush_until_matching_token_full(false);
  }
}

// ---- State ----

void register_attribute_variables() {
  f_register_trans_unit_variable(&unscanned_attributes, sizeof unscanned_attributes, 0);
  f_register_trans_unit_variable(&attributes_were_unscanned, sizeof attributes_were_unscanned, 0);
}

void reset_attribute_reading() {
  unscanned_attributes = nullptr;
  attributes_were_unscanned = 0;
  memset(forms_used_of_kind, 0, sizeof forms_used_of_kind);
}
