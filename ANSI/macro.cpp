// Definitions of macros: #define, the coded replacement list, and the macros of
// the command line.

#include "macro.h"

#include <cstring>
#include <string>
#include <vector>

#include "cmd_line.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "macro_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "preproc.h"
#include "symbol_ref.h"
#include "trans_unit.h"

const char* curr_cmd_line_or_predef_macro_def;
a_boolean processing_predefined_macro;

// -- Looking up -------------------------------------------------------------------

a_macro_def* macro_def_of(const a_symbol* symbol) {
  return symbol->variant.macro;
}

static bool is_operator_macro(a_builtin_macro_kind kind) {
  return kind == bmk_defined || kind == bmk_pragma_operator || kind == bmk_ms_pragma_operator;
}

a_symbol* find_defined_macro(const a_symbol_header* header) {
  a_symbol* symbol = find_macro_symbol(header);
  return symbol != nullptr && !is_operator_macro(symbol->variant.macro->builtin_kind) ? symbol
                                                                                      : nullptr;
}

bool is_valid_identifier(const char* text, size_t length) {
  if (length == 0 || (text[0] >= '0' && text[0] <= '9'))
    return false;
  for (size_t i = 0; i < length; ++i)
    if (!is_id_char[static_cast<unsigned char>(text[i])])
      return false;
  return true;
}

void clear_macro_def(a_macro_def* def) {
  *def = {};
}

// -- Building a coded list ------------------------------------------------------------

namespace {

// A coded list in the making.
class a_body_builder {
public:
  void add_text(const char* text, size_t length);
  // An element other than text.
  void add(a_macro_body_code code, uint32_t value);
  bool empty() const {
    return bytes.empty();
  }
  // The last element, when it is a parameter's expansion, is taken as spelled.
  void make_last_param_raw();
  // Text that follows is an element of its own, so that it stays apart from
  // the last one.
  void end_element() {
    element_is_open = false;
  }
  // The bytes with their end, in the region of lasting data.
  uint8_t* store() const;
  const std::vector<uint8_t>& coded() const {
    return bytes;
  }

private:
  void put_header(a_macro_body_code code, uint32_t value);
  static constexpr size_t max_text = (1u << 24) - 1;
  std::vector<uint8_t> bytes;
  size_t last_element = 0;
  bool element_is_open = false; // text extends the last element
};

} // namespace

void a_body_builder::put_header(a_macro_body_code code, uint32_t value) {
  last_element = bytes.size();
  element_is_open = code == mbc_text;
  bytes.push_back(code);
  bytes.push_back(static_cast<uint8_t>(value));
  bytes.push_back(static_cast<uint8_t>(value >> 8));
  bytes.push_back(static_cast<uint8_t>(value >> 16));
}

void a_body_builder::add(a_macro_body_code code, uint32_t value) {
  put_header(code, value);
}

void a_body_builder::add_text(const char* text, size_t length) {
  while (length != 0) {
    size_t old_length = element_is_open ? bytes.size() - last_element - 4 : 0;
    if (!element_is_open || old_length == max_text) {
      put_header(mbc_text, 0);
      old_length = 0;
    }
    size_t part = length < max_text - old_length ? length : max_text - old_length;
    bytes.insert(bytes.end(), text, text + part);
    size_t new_length = old_length + part;
    bytes[last_element + 1] = static_cast<uint8_t>(new_length);
    bytes[last_element + 2] = static_cast<uint8_t>(new_length >> 8);
    bytes[last_element + 3] = static_cast<uint8_t>(new_length >> 16);
    text += part;
    length -= part;
  }
}

void a_body_builder::make_last_param_raw() {
  if (!bytes.empty() && bytes[last_element] == mbc_expanded_param)
    bytes[last_element] = mbc_raw_param;
}

uint8_t* a_body_builder::store() const {
  uint8_t* body =
      static_cast<uint8_t*>(alloc_in_region(file_scope_region_number, bytes.size() + 1));
  if (!bytes.empty())
    memcpy(body, bytes.data(), bytes.size());
  body[bytes.size()] = mbc_end;
  return body;
}

// -- Scanning a definition -----------------------------------------------------------------

namespace {

struct a_definition {
  a_symbol_header* header;
  a_source_position position;
  a_macro_def def;
  a_body_builder body;
  std::string text; // the definition as a listing shows it
};

} // namespace

static void definition_error(an_error_code code) {
  pos_error(code, &pos_curr_token);
  some_error_in_curr_directive = 1;
}

static bool curr_token_has_spelling(const char* text, size_t length) {
  return len_of_curr_token == length && memcmp(start_of_curr_token, text, length) == 0;
}

static bool curr_token_is_va_args() {
  return variadic_macros_allowed && curr_token == tok_identifier &&
         curr_token_has_spelling("__VA_ARGS__", 11);
}

// The header of the current identifier, which the scanner doesn't look up in a
// directive.
a_symbol_header* header_of_curr_identifier() {
  size_t length = len_of_curr_token;
  const char* text = make_canonical_identifier(start_of_curr_token, &length);
  return find_symbol_header(text, length, &locator_for_curr_id);
}

static bool scan_macro_name_of_definition(a_definition* definition) {
  scanning_macro_name = 1;
  get_token();
  scanning_macro_name = 0;
  if (curr_token != tok_identifier) {
    syntax_error(ec_exp_identifier);
    some_error_in_curr_directive = 1;
    return false;
  }
  if (curr_token_is_va_args()) {
    definition_error(ec_VA_ARGS_not_allowed);
    return false;
  }
  definition->position = pos_curr_token;
  definition->header = header_of_curr_identifier();
  definition->text.assign(definition->header->identifier, definition->header->length);
  return true;
}

static a_macro_param* find_param(const a_macro_def& def, const char* name, size_t length,
                                 uint32_t* number) {
  *number = 1;
  for (a_macro_param* param = def.params; param != nullptr; param = param->next, ++*number)
    if (param->length == length && memcmp(param->name, name, length) == 0)
      return param;
  return nullptr;
}

static void append_param(a_macro_def* def, const char* name, size_t length) {
  a_macro_param* param =
      static_cast<a_macro_param*>(alloc_in_region(file_scope_region_number, sizeof(a_macro_param)));
  char* text = static_cast<char*>(alloc_in_region(file_scope_region_number, length + 1));
  memcpy(text, name, length);
  text[length] = 0;
  *param = {text, nullptr, static_cast<uint32_t>(length), 0, 0};
  a_macro_param** link = &def->params;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = param;
  ++def->num_params;
}

// At a name of the parameter list; false after a fault.
static bool scan_param(a_definition* definition) {
  uint32_t number;
  if (curr_token_is_va_args()) {
    definition_error(ec_VA_ARGS_not_allowed);
    return false;
  }
  if (find_param(definition->def, start_of_curr_token, len_of_curr_token, &number) != nullptr) {
    definition_error(ec_duplicate_macro_param_name);
    return false;
  }
  append_param(&definition->def, start_of_curr_token, len_of_curr_token);
  definition->text.append(start_of_curr_token, len_of_curr_token);
  get_token();
  if (curr_token == tok_ellipsis && extended_variadic_macros_allowed) {
    definition->def.is_variadic = 1;
    definition->text += "...";
    get_token();
  }
  return true;
}

// At the opening parenthesis. Ends with the closing one as the current token.
static bool scan_param_list(a_definition* definition) {
  definition->text += '(';
  get_token();
  get_token();
  while (curr_token != tok_rparen) {
    if (curr_token == tok_ellipsis && variadic_macros_allowed) {
      append_param(&definition->def, "__VA_ARGS__", 11);
      definition->def.is_variadic = 1;
      definition->text += "...";
      get_token();
    } else if (curr_token == tok_identifier) {
      if (!scan_param(definition))
        return false;
    } else {
      definition_error(ec_exp_identifier);
      return false;
    }
    if (curr_token == tok_rparen)
      break;
    if (definition->def.is_variadic || curr_token != tok_comma) {
      definition_error(ec_exp_rparen);
      return false;
    }
    definition->text += ',';
    get_token();
    if (curr_token == tok_rparen) {
      definition_error(ec_exp_identifier);
      return false;
    }
  }
  definition->text += ')';
  return true;
}

static bool curr_token_is_param(const a_macro_def& def) {
  uint32_t number;
  return curr_token == tok_identifier &&
         find_param(def, start_of_curr_token, len_of_curr_token, &number) != nullptr;
}

// Behind `#` in a function-like macro: a parameter has to follow.
static bool scan_stringized_param(a_definition* definition, bool has_blank) {
  a_macro_body_code code = mbc_stringize;
  if (*curr_char_loc == '@') {
    code = mbc_charize;
    ++curr_char_loc;
  }
  get_token();
  misra_check_macro_token(true);
  uint32_t number;
  if (curr_token != tok_identifier ||
      find_param(definition->def, start_of_curr_token, len_of_curr_token, &number) == nullptr) {
    definition_error(ec_exp_macro_param);
    return false;
  }
  if (has_blank)
    definition->body.add_text(" ", 1);
  definition->body.add(code, number);
  definition->text += code == mbc_charize ? "#@" : "#";
  definition->text.append(start_of_curr_token, len_of_curr_token);
  return true;
}

// In old-style mode a parameter's name also counts inside a literal.
static void add_old_style_literal(a_definition* definition) {
  const char* end = start_of_curr_token + len_of_curr_token;
  for (const char* p = start_of_curr_token; p < end;) {
    const char* start = p++;
    bool is_name = is_id_char[static_cast<unsigned char>(*start)];
    while (is_name && p < end && is_id_char[static_cast<unsigned char>(*p)])
      ++p;
    size_t length = static_cast<size_t>(p - start);
    uint32_t number;
    if (is_name && find_param(definition->def, start, length, &number) != nullptr)
      definition->body.add(mbc_raw_param, number);
    else
      definition->body.add_text(start, length);
  }
}

// The current token as an element of the list.
static void add_token_to_body(a_definition* definition, bool is_pasted) {
  uint32_t number;
  if (curr_token == tok_identifier &&
      find_param(definition->def, start_of_curr_token, len_of_curr_token, &number) != nullptr)
    definition->body.add(is_pasted || pcc_preprocessing_mode ? mbc_raw_param : mbc_expanded_param,
                         number);
  else if (pcc_preprocessing_mode && (*start_of_curr_token == '"' || *start_of_curr_token == '\''))
    add_old_style_literal(definition);
  else
    definition->body.add_text(start_of_curr_token, len_of_curr_token);
  // What follows the right operand of ## isn't part of the pasted token.
  if (is_pasted)
    definition->body.end_element();
}

// The traditional spelling of ##: an empty comment between two tokens.
static bool skip_pasting_comment() {
  if (!SVR4_C_mode || strncmp(curr_char_loc, "/**/", 4) != 0)
    return false;
  char next = curr_char_loc[4];
  if (next == '\0' || next == ' ' || next == '\t')
    return false;
  pos_warning(ec_svr4_token_pasting_comment, &pos_curr_token);
  curr_char_loc += 4;
  return true;
}

// Puts ## behind the last element; false when there is none.
static bool add_paste_operator(a_definition* definition, bool is_pasted) {
  if (definition->body.empty()) {
    definition_error(ec_paste_cannot_be_first);
    return false;
  }
  if (definition->text.back() != ' ')
    definition->text += ' ';
  definition->text += "##";
  definition->body.make_last_param_raw();
  if (!is_pasted)
    definition->body.add(mbc_paste, 0);
  return true;
}

// A token other than ##; false after a fault.
static bool scan_replacement_token(a_definition* definition, bool has_blank, bool is_pasted) {
  if (curr_token == tok_sharp && !definition->def.is_object_like)
    return scan_stringized_param(definition, has_blank);
  if (curr_token_is_va_args() && !definition->def.is_variadic) {
    definition_error(ec_VA_ARGS_not_allowed);
    return false;
  }
  if (curr_token == tok_error && err_code_for_error_token != 0)
    pos_remark(err_code_for_error_token, &pos_curr_token);
  if (has_blank)
    definition->body.add_text(" ", 1);
  add_token_to_body(definition, is_pasted);
  definition->text.append(start_of_curr_token, len_of_curr_token);
  return true;
}

// The tokens up to the end of the line, as a coded list; false after a fault.
static bool scan_replacement_list(a_definition* definition) {
  bool is_pasted = false; // ## precedes
  while (curr_token != tok_newline && curr_token != tok_end_of_source) {
    // In old-style mode a comment alone joins its neighbours.
    bool white_space = (kind_of_white_space_skipped & ws_real) != 0;
    misra_check_macro_token(curr_token_is_param(definition->def));
    if (curr_token == tok_sharp_sharp) {
      if (!add_paste_operator(definition, is_pasted))
        return false;
      is_pasted = true;
    } else {
      if ((white_space || is_pasted) && definition->text.back() != ' ')
        definition->text += ' ';
      bool has_blank = white_space && !definition->body.empty() && !is_pasted;
      if (!scan_replacement_token(definition, has_blank, is_pasted))
        return false;
      is_pasted = skip_pasting_comment() && add_paste_operator(definition, false);
    }
    get_token();
  }
  if (is_pasted) {
    definition_error(ec_paste_cannot_be_last);
    return false;
  }
  return true;
}

// Behind ## an operand of a parameter is used as spelled, and before it too: the
// flags follow the finished list.
static void set_param_reference_flags(a_definition* definition) {
  for (a_macro_param* param = definition->def.params; param != nullptr; param = param->next)
    param->is_referenced_expanded = param->is_referenced_raw = 0;
  const std::vector<uint8_t>& coded = definition->body.coded();
  for (size_t i = 0; i < coded.size();) {
    uint32_t value = coded[i + 1] | static_cast<uint32_t>(coded[i + 2]) << 8 |
                     static_cast<uint32_t>(coded[i + 3]) << 16;
    uint8_t code = coded[i];
    i += 4 + (code == mbc_text ? value : 0);
    if (code == mbc_text || code == mbc_paste)
      continue;
    a_macro_param* param = definition->def.params;
    while (--value != 0)
      param = param->next;
    if (code == mbc_expanded_param)
      param->is_referenced_expanded = 1;
    else
      param->is_referenced_raw = 1;
  }
}

// -- Entering a definition --------------------------------------------------------------------

static bool compare_macro_bodies(const uint8_t* old_body, const std::vector<uint8_t>& new_body) {
  if (old_body == nullptr)
    return false;
  for (size_t i = 0; i < new_body.size(); ++i)
    if (old_body[i] != new_body[i])
      return false;
  return old_body[new_body.size()] == mbc_end;
}

static bool is_same_definition(const a_macro_def* old_def, const a_definition& definition) {
  const a_macro_def& def = definition.def;
  if (old_def->is_object_like != def.is_object_like || old_def->is_variadic != def.is_variadic ||
      old_def->num_params != def.num_params)
    return false;
  const a_macro_param* old_param = old_def->params;
  for (const a_macro_param* param = def.params; param != nullptr;
       param = param->next, old_param = old_param->next)
    if (strcmp(param->name, old_param->name) != 0)
      return false;
  return compare_macro_bodies(old_def->body, definition.body.coded());
}

// True when a definition that is there already forbids or spares the new one.
static bool old_definition_stays(a_symbol* symbol, const a_definition& definition) {
  const a_macro_def* old_def = symbol->variant.macro;
  if (is_same_definition(old_def, definition))
    return true;
  if (processing_predefined_macro)
    str_catastrophe(ec_bad_predef_macro_redef, definition.header->identifier);
  if (old_def->is_protected) {
    pos_sy_diagnostic(es_discretionary_error, ec_cannot_redef_predef_macro, &definition.position,
                      symbol);
    return true;
  }
  an_error_severity severity = strict_ansi_mode ? strict_ansi_error_severity : es_warning;
  if (curr_cmd_line_or_predef_macro_def != nullptr)
    severity = es_error;
  pos_sy_diagnostic(severity, ec_bad_macro_redef, &definition.position, symbol);
  return false;
}

static a_macro* make_il_macro(const a_definition& definition) {
  a_macro* macro = alloc_macro();
  macro->text = copy_string_of_length_to_region(file_scope_region_number, definition.text.data(),
                                                definition.text.size());
  macro->is_function_like = !definition.def.is_object_like;
  macro->is_predefined = definition.def.is_predefined;
  macro->source_corresp.position = definition.position;
  add_to_macros_list(macro);
  return macro;
}

static void enter_definition(a_definition* definition) {
  a_symbol* symbol = find_macro_symbol(definition->header);
  if (symbol != nullptr && old_definition_stays(symbol, *definition))
    return;
  a_macro_def* def =
      static_cast<a_macro_def*>(alloc_in_region(file_scope_region_number, sizeof(a_macro_def)));
  *def = definition->def;
  def->body = definition->body.store();
  def->il_macro = make_il_macro(*definition);
  if (symbol != nullptr) {
    symbol->variant.macro = def;
    symbol->position = definition->position;
  } else {
    symbol = enter_macro_symbol(definition->header, def, &definition->position);
  }
  record_symbol_declaration(srk_definition, symbol, &definition->position, nullptr);
}

// Between the name and the replacement list of a definition on the command
// line: white space, or an equals sign. False after an error.
static bool scan_command_line_separator(const a_definition& definition) {
  if (gnu_mode) {
    if (*curr_char_loc != ' ' && *curr_char_loc != '\t')
      str_command_line_warning(ec_equals_assumed_in_cmd_line_macro_def,
                               definition.header->identifier);
    return true;
  }
  if (*curr_char_loc == '=') {
    ++curr_char_loc;
    return true;
  }
  str_error(ec_bad_cmd_line_macro, curr_cmd_line_or_predef_macro_def);
  some_error_in_curr_directive = 1;
  return false;
}

void proc_define() {
  a_definition definition = {};
  if (!scan_macro_name_of_definition(&definition))
    return;
  definition.def.is_object_like = *curr_char_loc != '(';
  definition.def.is_predefined = processing_predefined_macro != 0;
  if (!definition.def.is_object_like && !scan_param_list(&definition))
    return;
  if (curr_cmd_line_or_predef_macro_def != nullptr && !processing_predefined_macro &&
      !scan_command_line_separator(definition))
    return;
  if (definition.def.is_object_like && strict_ansi_mode && is_nonstandard_character(curr_char_loc))
    pos_st_diagnostic(strict_ansi_discretionary_severity, ec_nonstd_character_at_start_of_macro_def,
                      &pos_curr_token, definition.header->identifier);
  definition.text += ' ';
  size_t head_length = definition.text.size();
  get_token();
  if (curr_token != tok_newline)
    kind_of_white_space_skipped = ws_none;
  misra_begin_macro();
  if (!scan_replacement_list(&definition))
    return;
  misra_check_macro_definition(&definition.def, definition.position);
  if (definition.text.size() == head_length)
    definition.text.pop_back();
  set_param_reference_flags(&definition);
  enter_definition(&definition);
}

void undefine_macro(a_symbol* symbol) {
  a_macro* macro = alloc_macro();
  std::string text = std::string("#undef ") + symbol->header->identifier;
  macro->text = copy_string_of_length_to_region(file_scope_region_number, text.data(), text.size());
  macro->is_undef = 1;
  macro->source_corresp.position = pos_curr_token;
  add_to_macros_list(macro);
  remove_macro_symbol(symbol);
}

// -- #pragma push_macro ---------------------------------------------------------------------------

namespace {
struct a_pushed_macro {
  a_symbol_header* header;
  a_macro_def* def; // null for a name that was no macro
};
} // namespace

static std::vector<a_pushed_macro> pushed_macros;

void push_macro_definition(const char* name, size_t length) {
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(name, length, &locator);
  a_symbol* symbol = find_macro_symbol(header);
  pushed_macros.push_back({header, symbol != nullptr ? symbol->variant.macro : nullptr});
}

void pop_macro_definition(const char* name, size_t length) {
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(name, length, &locator);
  for (size_t i = pushed_macros.size(); i-- > 0;) {
    if (pushed_macros[i].header != header)
      continue;
    a_macro_def* def = pushed_macros[i].def;
    pushed_macros.erase(pushed_macros.begin() + static_cast<ptrdiff_t>(i));
    a_symbol* symbol = find_macro_symbol(header);
    if (symbol != nullptr && def != nullptr)
      symbol->variant.macro = def;
    else if (symbol != nullptr)
      undefine_macro(symbol);
    else if (def != nullptr)
      enter_macro_symbol(header, def, &pos_curr_token);
    return;
  }
}

// -- The command line
// --------------------------------------------------------------------------------

// Scans a text as the operand of #define.
void define_macro_from_text(const std::string& text, const a_source_position& position) {
  a_boolean saved_fetch_pp_tokens = fetch_pp_tokens;
  a_boolean saved_expand_macros = expand_macros;
  std::string scanned = text;
  scanned += '\0';
  scanned += static_cast<char>(mtm_newline);
  scanned += '\0';
  scanned += static_cast<char>(mtm_end_of_text);
  in_preprocessing_directive = 1;
  fetch_pp_tokens = 1;
  expand_macros = 0;
  some_error_in_curr_directive = 0;
  {
    a_text_scan scan(scanned.data(), scanned.data() + scanned.size() - 2, position);
    scan.modif.is_macro_expansion = 0;
    proc_define();
  }
  in_preprocessing_directive = 0;
  fetch_pp_tokens = saved_fetch_pp_tokens;
  expand_macros = saved_expand_macros;
  some_error_in_curr_directive = 0;
}

static void define_macro_from_command_line(const char* given) {
  std::string text = given;
  size_t equals = text.find('=');
  if (text.find('\n') != std::string::npos)
    str_command_line_error(ec_cl_invalid_macro_definition, given);
  if (equals == std::string::npos)
    text += gnu_mode ? " 1" : "=1";
  else if (gnu_mode)
    text[equals] = ' ';
  curr_cmd_line_or_predef_macro_def = given;
  define_macro_from_text(text, a_source_position{0, 1, 0});
  curr_cmd_line_or_predef_macro_def = nullptr;
}

static void undefine_macro_from_command_line(const char* name) {
  if (!is_valid_identifier(name, strlen(name)))
    str_command_line_error(ec_cl_invalid_macro_undefinition, name);
  a_symbol_locator locator = cleared_locator;
  a_symbol* symbol = find_macro_symbol(find_symbol_header(name, 0, &locator));
  if (symbol != nullptr && !symbol->variant.macro->is_protected)
    remove_macro_symbol(symbol);
}

// In the order of the options, so that the last word counts.
void process_command_line_macros() {
  for (a_def_undef* entry = defs_from_cmd_line; entry != nullptr; entry = entry->next)
    if (entry->is_undefine)
      undefine_macro_from_command_line(entry->text);
    else
      define_macro_from_command_line(entry->text);
}

// -- Initialisation
// ----------------------------------------------------------------------------------

void macro_init() {
  num_macro_invocations_in_process = 0;
  pushed_macros.clear();
  macro_expand_init();
}
