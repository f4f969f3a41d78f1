// The macros whose expansion is computed at each use: places, counters, the
// operators of #if, and the pragma operators.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

#include "attribute.h"
#include "error.h"
#include "host_envir.h"
#include "lexical.h"
#include "macro_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "preproc.h"
#include "preproc_int.h"
#include "source_file.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "trans_unit.h"

a_symbol* line_macro_symbol;
a_symbol* file_macro_symbol;
a_symbol* base_file_macro_symbol;
a_symbol* defined_macro_symbol;

static uint32_t macro_counter;

// -- Places -------------------------------------------------------------------------

// The line in which the outermost invocation begins: of a spliced line the
// first, but behind a comment or an invocation over several lines the one in
// which that ends.
static uint32_t seq_of_line() {
  a_source_position position;
  position_of_loc(start_of_curr_token, &position);
  if (position.seq != 0 && position.seq < curr_seq_number)
    return position.seq;
  uint32_t seq = curr_seq_number;
  for (const an_orig_line_modif* modif = orig_line_modif_list; modif != nullptr;
       modif = modif->next)
    if (modif->kind == olm_newline && modif->extra <= position.seq)
      seq = modif->extra;
  return seq;
}

static std::string line_text() {
  uint32_t line = 0;
  conv_seq_to_file_and_line(seq_of_line(), nullptr, nullptr, &line, nullptr);
  return std::to_string(line);
}

// A file name as a string literal; as part of a header name it isn't escaped.
static std::string quoted_file_name(const char* name) {
  static a_text_buffer* buffer = alloc_text_buffer(200);
  reset_text_buffer(buffer);
  bool escape = !exp_header_name;
  write_file_name_to_text_buffer(name, buffer, escape, escape);
  return '"' + std::string(buffer->data, buffer->used_size) + '"';
}

static std::string file_text() {
  const char* name = "";
  conv_seq_to_file_and_line(curr_seq_number, &name, nullptr, nullptr, nullptr);
  return quoted_file_name(name);
}

static std::string base_file_text() {
  const a_source_file* file = eff_primary_source_file();
  return quoted_file_name(file != nullptr ? file->file_name : "");
}

static std::string timestamp_text() {
  const char* full_name = nullptr;
  conv_seq_to_file_and_line(curr_seq_number, nullptr, &full_name, nullptr, nullptr);
  const char* time =
      full_name != nullptr ? get_file_modification_time_string(full_name, true) : nullptr;
  return '"' + std::string(time != nullptr ? time : "<unknown>") + '"';
}

static std::string stdc_text() {
  bool is_zero = in_system_header || (!strict_ansi_mode && stdc_zero_in_nonstrict_mode);
  return is_zero ? "0" : "1";
}

// -- Operands of the operators -------------------------------------------------------------

static void operand_error(an_error_code code) {
  pos_error(code, &pos_curr_token);
  some_error_in_curr_directive = 1;
}

static bool scan_defined_operand(const a_source_position& position) {
  bool comes_from_macro = curr_text_modif != nullptr;
  get_token();
  bool has_paren = curr_token == tok_lparen;
  if (has_paren)
    get_token();
  if (curr_token != tok_identifier) {
    misra_check_defined_operator(false, position);
    operand_error(ec_exp_identifier);
    return false;
  }
  a_symbol* symbol = find_defined_macro(header_of_curr_identifier());
  if (symbol != nullptr)
    record_symbol_reference(srk_reference, symbol, &pos_curr_token, true);
  bool is_closed = !has_paren || get_token() == tok_rparen;
  misra_check_defined_operator(is_closed && !comes_from_macro, position);
  if (!is_closed)
    operand_error(ec_exp_rparen);
  return symbol != nullptr;
}

// Whether the next token is an opening parenthesis; the scanner stands at it
// then.
static bool paren_follows() {
  a_saved_line_loc behind_name(curr_char_loc);
  a_source_line_modif* text = curr_text_modif;
  uint32_t mark = sequence_id_for_source_line_modifs;
  if (line_end_action == lea_read_next)
    line_end_action = lea_append;
  if (skip_to_token() && *curr_char_loc == '(')
    return true;
  discard_text_modifs_since(mark);
  curr_char_loc = behind_name.loc;
  curr_text_modif = text;
  return false;
}

static bool required_closing_paren() {
  if (get_token() == tok_rparen)
    return true;
  operand_error(ec_exp_rparen);
  return false;
}

// `( name )`; an empty name after a fault.
static std::string read_feature_name() {
  get_token();
  if (get_token() != tok_identifier) {
    pos_diagnostic(es_discretionary_error, ec_feature_test_macro_req_id, &pos_curr_token);
    return std::string();
  }
  std::string name(start_of_curr_token, len_of_curr_token);
  size_t length = name.size();
  if (length > 4 && length < 64 && name.compare(0, 2, "__") == 0 &&
      name.compare(length - 2, 2, "__") == 0)
    name = name.substr(2, length - 4);
  required_closing_paren();
  return name;
}

static bool scan_has_include(bool from_next_directory) {
  get_token();
  if (!get_header_name()) {
    pos_diagnostic(es_discretionary_error, ec_feature_test_macro_req_id, &pos_curr_token);
    return false;
  }
  bool is_angle_bracket = *start_of_curr_token == '<';
  size_t length;
  std::string name = extract_header_name(false, &length);
  a_source_position position = pos_curr_token;
  expand_macros = 0;
  required_closing_paren();
  if (from_next_directory && processing_primary_source_file()) {
    pos_warning(ec_has_include_next_in_primary_source_file, &position);
    from_next_directory = false;
  }
  if (from_next_directory && is_absolute_file_name(name.c_str())) {
    pos_warning(ec_absolute_file_name_in_has_include_next, &position);
    from_next_directory = false;
  }
  return header_can_be_found(name.c_str(), is_angle_bracket, from_next_directory);
}

// -- Features of the language ------------------------------------------------------------------

static bool is_cpp11() {
  return in_cplusplus_mode() && std_version >= 201103;
}

static bool is_cpp14() {
  return in_cplusplus_mode() && std_version >= 201402;
}

struct a_feature {
  const char* name;
  bool (*is_enabled)();
};

static const a_feature features[] = {
#define FEATURE(name, condition) {name, [] { return static_cast<bool>(condition); }},
#include "features.def"
#undef FEATURE
};

static bool feature_is_enabled(const std::string& name) {
  const a_feature* feature =
      std::lower_bound(std::begin(features), std::end(features), name,
                       [](const a_feature& row, const std::string& key) { return row.name < key; });
  if (feature != std::end(features) && name == feature->name)
    return feature->is_enabled();
  if (!type_traits_helpers_enabled)
    return false;
  for (int kind = tok_has_nothrow_assign; kind <= tok_is_trivially_assignable; ++kind)
    if (name == token_names[kind] + 2)
      return true;
  return false;
}

// -- Pragma operators
// --------------------------------------------------------------------------------

// The text of a string literal as the pragma's text (C99 6.10.9).
static std::string destringized_text() {
  const char* p = start_of_curr_token;
  const char* end = end_of_curr_token;
  while (*p != '"')
    ++p;
  std::string text;
  for (++p; p < end; ++p) {
    if (*p == '\\' && (p[1] == '\\' || p[1] == '"'))
      ++p;
    text += *p;
  }
  return text;
}

static void append_marker(std::string* text, a_macro_text_marker marker) {
  *text += '\0';
  *text += static_cast<char>(marker);
}

// Acts on the pragma that a pragma operator holds, up to the end of its text.
static a_pragma_kind_description* record_pragma_of_operator(a_builtin_macro_kind kind,
                                                            const a_source_position& position) {
  const bool is_standard = kind == bmk_pragma_operator;
  a_boolean saved_some_error = some_error_in_curr_directive;
  a_source_position name_position;
  a_pragma_kind_description* description = look_up_pragma_id(&name_position);
  some_error_in_curr_directive = 0;
  if (description != nullptr && !do_preprocessing_only &&
      !pragma_allowed_in_operators(description)) {
    pos_error(is_standard ? ec_invalid_pragma_operator : ec_invalid_microsoft_pragma_operator,
              &position);
    some_error_in_curr_directive = 1;
  } else {
    record_pragma(description, &position, &name_position, !is_standard);
  }
  end_directive_line();
  some_error_in_curr_directive = saved_some_error;
  return description;
}

// Acts on the text as a #pragma line.
static a_pragma_kind_description* run_pragma_text(std::string text, a_builtin_macro_kind kind,
                                                  const a_source_position& position) {
  append_marker(&text, mtm_newline);
  append_marker(&text, mtm_end_of_text);
  a_boolean saved_in_directive = in_preprocessing_directive;
  uint32_t mark = sequence_id_for_source_line_modifs;
  in_preprocessing_directive = 1;
  fetch_unexpanded_pp_tokens();
  a_pragma_kind_description* description;
  {
    a_text_scan scan(text.data(), text.data() + text.size() - 2, position);
    description = record_pragma_of_operator(kind, position);
    discard_text_modifs_since(mark);
  }
  in_preprocessing_directive = saved_in_directive;
  return description;
}

// The tokens between balanced parentheses, as text.
static bool read_parenthesized_text(std::string* text) {
  int depth = 1;
  for (;;) {
    get_token();
    if (curr_token == tok_end_of_source || curr_token == tok_newline) {
      operand_error(ec_exp_rparen);
      return false;
    }
    if (curr_token == tok_lparen)
      ++depth;
    if (curr_token == tok_rparen && --depth == 0)
      return true;
    if (kind_of_white_space_skipped != ws_none && !text->empty())
      *text += ' ';
    text->append(start_of_curr_token, len_of_curr_token);
  }
}

static bool read_pragma_operand(a_builtin_macro_kind kind, std::string* text) {
  get_token();
  if (kind == bmk_ms_pragma_operator)
    return read_parenthesized_text(text);
  if (get_token() != tok_string) {
    operand_error(ec_exp_string_literal);
    std::string skipped;
    if (curr_token != tok_rparen)
      read_parenthesized_text(&skipped);
    return false;
  }
  *text = destringized_text();
  return required_closing_paren();
}

// The text with a mark before each name, so that none is expanded as a macro.
static std::string with_inert_names(const std::string& text) {
  std::string out;
  char quote = 0;
  char before = ' ';
  for (size_t i = 0; i < text.size(); before = text[i++]) {
    char c = text[i];
    bool begins_name = is_id_char[static_cast<unsigned char>(c)] && (c < '0' || c > '9') &&
                       !is_id_char[static_cast<unsigned char>(before)];
    if (quote != 0 && c == '\\' && i + 1 < text.size())
      out += text[i++];
    else if (quote != 0 ? c == quote : c == '"' || c == '\'')
      quote = quote != 0 ? 0 : c;
    else if (quote == 0 && begins_name)
      append_marker(&out, mtm_inert);
    out += text[i];
  }
  return out;
}

// The line of preprocessed output that stands for a pragma operator. Only the
// operands that the pragma reads expanded are.
static std::string line_of_pragma(const std::string& text,
                                  const a_pragma_kind_description* description) {
  const bool expands = description != nullptr && (description->flags & pragma_expand_macros) != 0;
  std::string line;
  append_marker(&line, mtm_newline);
  line += "#pragma " + (expands ? text : with_inert_names(text));
  append_marker(&line, mtm_newline);
  return line;
}

// A pragma operator in the arguments of a macro stays for the rescanning. In
// preprocessed output it becomes a directive on a line of its own.
static bool expand_pragma_operator(a_symbol* symbol, a_builtin_macro_kind kind,
                                   const a_source_position& position) {
  if (!paren_follows()) {
    pos_error(ec_exp_lparen, &position);
    return false;
  }
  fetch_unexpanded_pp_tokens();
  in_macro_arg_list = 1;
  std::string text;
  push_lexical_state_stack();
  bool is_good = read_pragma_operand(kind, &text);
  pop_lexical_state_stack();
  in_macro_arg_list = 0;
  std::string line;
  if (is_good) {
    a_saved_line_loc start(delete_source_from_loc);
    delete_source_from_loc = nullptr;
    const a_pragma_kind_description* description = run_pragma_text(text, kind, position);
    delete_source_from_loc = start.loc;
    if (do_preprocessing_only && generate_pp_output && !is_macro_stack_pragma(description))
      line = line_of_pragma(text, description);
  }
  replace_invocation_by_string(symbol, line.data(), line.size(), position);
  return true;
}

// -- Invocations
// -------------------------------------------------------------------------------------

static bool is_feature_test(a_builtin_macro_kind kind) {
  return kind >= bmk_has_include;
}

static bool feature_test_value(a_builtin_macro_kind kind) {
  if (kind == bmk_has_include || kind == bmk_has_include_next)
    return scan_has_include(kind == bmk_has_include_next);
  std::string name = read_feature_name();
  switch (kind) {
  case bmk_has_attribute:
    return gnu_attribute_is_supported(name.c_str());
  case bmk_has_builtin:
    return builtin_function_is_enabled(name.c_str());
  default:
    return feature_is_enabled(name);
  }
}

// __has_include is an operator of #if alone under strict rules.
static bool has_include_is_misplaced(a_builtin_macro_kind kind, const a_source_position& position) {
  if (kind != bmk_has_include || in_pp_if_expression || !strict_ansi_mode || !in_cplusplus_mode() ||
      std_version <= 201700)
    return false;
  pos_diagnostic(strict_ansi_discretionary_severity, ec_has_include_not_in_if, &position);
  return true;
}

// The text of a macro that takes no operand.
static std::string text_of_plain_builtin(a_builtin_macro_kind kind) {
  switch (kind) {
  case bmk_line:
    return line_text();
  case bmk_file:
    return file_text();
  case bmk_base_file:
    return base_file_text();
  case bmk_include_level:
    return std::to_string(depth_input_stack);
  case bmk_counter:
    return std::to_string(macro_counter++);
  case bmk_timestamp:
    return timestamp_text();
  default:
    return stdc_text();
  }
}

// The operand may have ended in the expansion of a macro that it began with:
// what is left of that text goes with the invocation.
static void leave_texts_of_operand() {
  while (curr_text_modif != nullptr && (delete_source_from_loc < curr_text_modif->text_start ||
                                        delete_source_from_loc > curr_text_modif->text_end))
    if (!leave_macro_text())
      return;
}

static void expand_operator_of_if(a_symbol* symbol, a_builtin_macro_kind kind,
                                  const a_source_position& position) {
  fetch_unexpanded_pp_tokens();
  ++num_macro_invocations_in_process;
  push_lexical_state_stack();
  bool value = kind == bmk_defined ? scan_defined_operand(position) : feature_test_value(kind);
  pop_lexical_state_stack();
  --num_macro_invocations_in_process;
  leave_texts_of_operand();
  replace_invocation_by_string(symbol, value ? "1" : "0", 1, position);
}

a_token_kind builtin_macro_invocation(a_symbol* symbol, a_boolean* go_on) {
  a_builtin_macro_kind kind = symbol->variant.macro->builtin_kind;
  a_source_position position;
  position_of_loc(start_of_curr_token, &position);
  bool is_pragma = kind == bmk_pragma_operator || kind == bmk_ms_pragma_operator;
  if ((kind == bmk_defined && !in_pp_if_expression) || (is_pragma && macro_depth != 0) ||
      has_include_is_misplaced(kind, position))
    return tok_identifier;
  bool keep_header_modes = kind == bmk_file || kind == bmk_base_file;
  a_boolean was_exp_header_name = exp_header_name;
  a_macro_state state;
  if (keep_header_modes)
    exp_header_name = was_exp_header_name;
  delete_source_from_loc = start_of_curr_token;
  if (is_pragma) {
    if (!expand_pragma_operator(symbol, kind, position))
      return tok_identifier;
  } else if (kind == bmk_defined) {
    expand_operator_of_if(symbol, kind, position);
  } else if (is_feature_test(kind)) {
    if (!paren_follows())
      return tok_identifier;
    expand_operator_of_if(symbol, kind, position);
  } else {
    std::string text = text_of_plain_builtin(kind);
    replace_invocation_by_string(symbol, text.data(), text.size(), position);
  }
  *go_on = 1;
  return tok_identifier;
}

// -- Initialisation
// ----------------------------------------------------------------------------------

struct a_builtin_macro {
  a_builtin_macro_kind kind;
  const char* name;
  bool exists;
};

static a_symbol* enter_builtin_macro(const a_builtin_macro& builtin) {
  a_macro_def* def =
      static_cast<a_macro_def*>(alloc_in_region(file_scope_region_number, sizeof(a_macro_def)));
  clear_macro_def(def);
  def->is_object_like = 1;
  def->is_protected = 1;
  def->is_predefined = 1;
  def->builtin_kind = builtin.kind;
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(builtin.name, 0, &locator);
  return enter_macro_symbol(header, def, &null_source_position);
}

void enter_builtin_macros() {
  const a_builtin_macro builtins[] = {
#define BUILTIN_MACRO(enumerator, name, condition) {enumerator, name, static_cast<bool>(condition)},
#include "builtin_macros.def"
#undef BUILTIN_MACRO
  };
  macro_counter = 0;
  for (const a_builtin_macro& builtin : builtins) {
    if (!builtin.exists)
      continue;
    a_symbol* symbol = enter_builtin_macro(builtin);
    if (builtin.kind == bmk_line)
      line_macro_symbol = symbol;
    else if (builtin.kind == bmk_file)
      file_macro_symbol = symbol;
    else if (builtin.kind == bmk_base_file)
      base_file_macro_symbol = symbol;
    else if (builtin.kind == bmk_defined)
      defined_macro_symbol = symbol;
  }
}

void macro_one_time_init() {
  f_register_trans_unit_variable(&line_macro_symbol, sizeof line_macro_symbol, 0);
  f_register_trans_unit_variable(&file_macro_symbol, sizeof file_macro_symbol, 0);
  f_register_trans_unit_variable(&base_file_macro_symbol, sizeof base_file_macro_symbol, 0);
  f_register_trans_unit_variable(&defined_macro_symbol, sizeof defined_macro_symbol, 0);
  f_register_trans_unit_variable(&macro_counter, sizeof macro_counter, 0);
}

void macro_trans_unit_init() {
  line_macro_symbol = file_macro_symbol = base_file_macro_symbol = nullptr;
  defined_macro_symbol = nullptr;
  macro_counter = 0;
}
