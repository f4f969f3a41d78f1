// Directives that change the file: #include and #line (C99 6.10.2, 6.10.4).

#include <cstring>
#include <string>

#include "error.h"
#include "host_envir.h"
#include "macro_int.h"
#include "mem_manage.h"
#include "misra.h"
#include "mode_words.h"
#include "pch.h"
#include "pp_output.h"
#include "preproc_int.h"
#include "source_file.h"

// -- Header names --------------------------------------------------------------------------

// A header name put together from tokens.
static std::string assembled_header_name;

// At `<` from an expansion: the tokens up to `>` make the name, with a blank
// where white space stood.
static bool assemble_header_name() {
  assembled_header_name = "<";
  exp_header_name = exp_system_header_name = 0;
  for (get_token(); curr_token != tok_gt; get_token()) {
    if (curr_token == tok_newline || curr_token == tok_end_of_source)
      return false;
    if (kind_of_white_space_skipped != ws_none)
      assembled_header_name += ' ';
    assembled_header_name.append(start_of_curr_token, len_of_curr_token);
  }
  if (kind_of_white_space_skipped != ws_none)
    assembled_header_name += ' ';
  assembled_header_name += '>';
  curr_token = tok_header_name;
  start_of_curr_token = assembled_header_name.data();
  len_of_curr_token = assembled_header_name.size();
  end_of_curr_token = start_of_curr_token + len_of_curr_token - 1;
  return len_of_curr_token > 2;
}

bool get_header_name() {
  skip_white_space();
  exp_system_header_name = *curr_char_loc == '<';
  exp_header_name = 1;
  a_boolean saved_expand_macros = expand_macros;
  expand_macros = 1;
  get_token();
  bool is_found = curr_token == tok_header_name;
  if (curr_token == tok_lt)
    is_found = assemble_header_name();
  expand_macros = saved_expand_macros;
  exp_header_name = exp_system_header_name = 0;
  // No file can have a name with a NUL in it.
  return is_found && memchr(start_of_curr_token, '\0', len_of_curr_token) == nullptr;
}

// One escape of a file name, behind its backslash.
static char escaped_file_name_char(const char** location) {
  const char* p = *location;
  if (*p >= '0' && *p <= '7') {
    int value = 0;
    for (int i = 0; i < 3 && *p >= '0' && *p <= '7'; ++i)
      value = value * 8 + (*p++ - '0');
    *location = p;
    return static_cast<char>(value);
  }
  *location = p + 1;
  return *p == 'n' ? '\n' : *p;
}

const char* extract_header_name(bool process_escapes, size_t* length) {
  static std::string name;
  name.clear();
  const char* p = start_of_curr_token + 1;
  while (p < end_of_curr_token) {
    if (*p == '\\' && process_escapes && p + 1 < end_of_curr_token) {
      ++p;
      name += escaped_file_name_char(&p);
    } else {
      name += *p++;
    }
  }
  *length = name.size();
  return name.c_str();
}

const char* check_for_include_alias() {
  return nullptr;
}

// -- #include ---------------------------------------------------------------------------------

void proc_include(bool from_next_directory) {
  // An argument list that is being read can't go on in another file.
  if (is_inside_argument_list()) {
    pos_error(ec_bad_use_of_sharp, &pos_curr_token);
    some_error_in_curr_directive = 1;
    return;
  }
  if (check_misra_c_2004 && any_tokens_fetched_from_curr_input_file)
    pos_diagnostic(misra_advisory_severity, ec_misra_c_2004_19_1, &pos_curr_token);
  if (from_next_directory && processing_primary_source_file()) {
    pos_warning(ec_include_next_in_primary_source_file, &pos_curr_token);
    from_next_directory = false;
  }
  if (!get_header_name()) {
    error_position = pos_curr_token;
    if (check_misra_c_2004)
      catastrophe(ec_misra_c_2004_19_3);
    catastrophe(ec_exp_file_name);
  }
  an_include_request request = {};
  request.use_search_path = true;
  request.is_include = true;
  request.is_angle_bracket = *start_of_curr_token == '<';
  request.from_next_directory = from_next_directory;
  size_t length;
  const char* alias = check_for_include_alias();
  std::string name = alias != nullptr ? alias : extract_header_name(false, &length);
  a_source_position name_position = pos_curr_token;
  check_for_end_of_directive();
  no_token_separators_in_this_line_of_pp_output = 1;
  error_position = name_position;
  open_file_and_push_input_stack(name.c_str(), request);
}

// -- #line ------------------------------------------------------------------------------

// The number in the current token; false when it is out of range.
static bool line_number_of_token(bool zero_allowed, uint32_t* line) {
  uint64_t value = 0;
  for (const char* p = start_of_curr_token; p <= end_of_curr_token && value <= UINT32_MAX; ++p)
    value = value * 10 + static_cast<uint64_t>(*p - '0');
  if (value <= UINT32_MAX && (value != 0 || zero_allowed)) {
    *line = static_cast<uint32_t>(value);
    return true;
  }
  pos_error(ec_bad_line_number, &pos_curr_token);
  some_error_in_curr_directive = 1;
  return false;
}

// The flags behind the name of `# 33 "a.h" 1 3`.
struct a_line_flags {
  bool enters_file;
  bool returns_to_file;
  bool is_system;
};

static a_line_flags scan_line_flags() {
  a_line_flags flags = {};
  exp_digit_sequence = 1;
  while (get_token() == tok_digit_sequence) {
    if (len_of_curr_token != 1)
      continue;
    flags.enters_file = flags.enters_file || *start_of_curr_token == '1';
    flags.returns_to_file = flags.returns_to_file || *start_of_curr_token == '2';
    flags.is_system = flags.is_system || *start_of_curr_token == '3';
  }
  exp_digit_sequence = 0;
  return flags;
}

// Makes the next line number `line` of the file; null for the name in use.
static void change_line_and_file(const char* name, uint32_t line, const a_line_flags& flags) {
  bool is_same_file =
      name == nullptr || strcmp(name, curr_ise->current_source_file->file_name) == 0;
  if (flags.enters_file)
    push_cloned_input_stack_entry(name, line, flags.is_system);
  else if (is_same_file)
    renumber_current_input_file(line);
  else
    clone_current_input_file(name, line, flags.is_system);
}

static void set_line_and_file(const char* name, uint32_t line, const a_line_flags& flags) {
  bool has_returned = flags.returns_to_file && pop_cloned_input_stack_entry(line);
  if (!has_returned)
    change_line_and_file(name, line, flags);
  gen_pp_line_info(true);
  gen_rlisting_line_info(' ');
}

void proc_line(bool has_token) {
  cannot_create_pch_file = 1;
  expand_macros = !has_token;
  if (!has_token) {
    exp_digit_sequence = 1;
    get_token();
    exp_digit_sequence = 0;
    if (curr_token != tok_digit_sequence) {
      syntax_error(ec_exp_line_number);
      some_error_in_curr_directive = 1;
      return;
    }
  }
  uint32_t line;
  if (!line_number_of_token(has_token, &line))
    return;
  get_token();
  a_line_flags flags = {};
  flags.is_system = in_system_header != 0;
  if (curr_token == tok_newline) {
    set_line_and_file(nullptr, line, flags);
    return;
  }
  if (curr_token != tok_string || *start_of_curr_token != '"') {
    syntax_error(ec_exp_file_name);
    some_error_in_curr_directive = 1;
    return;
  }
  size_t length;
  std::string name = extract_header_name(!pcc_preprocessing_mode, &length);
  if (has_token)
    flags = scan_line_flags();
  else
    get_token();
  set_line_and_file(name.c_str(), line, flags);
}
