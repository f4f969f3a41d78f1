#include "cmd_line.h"

#include "cmd_line_int.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "mem_manage.h"
#include "pch.h"
#include "target.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <new>

a_def_undef* defs_from_cmd_line;
std::vector<std::string> shell_opts;
std::vector<std::string> ansi_opts;
std::vector<std::string> opt_opts;
std::vector<std::string> cg_opts;
bool option_seen[oc_count];
const char* raw_listing_file_name;
const char* xref_file_name;
const char* error_output_file_name;

namespace {

constexpr an_error_code ec_matching_option = 978;

constexpr int pch_event_option = 1;

#define SETS(word_name) &(word_name), nullptr
#define DOES(name) nullptr, do_##name
#define OPTION(code, name, short_name, takes, value, enabled, pch, effect)                         \
  {code, name, short_name, value, takes, enabled, sizeof(name) - 1, pch, effect},
const an_option options[] = {
#include "cmd_line_options.def"
};
#undef OPTION
#undef SETS
#undef DOES

a_def_undef* last_def_undef;
bool dialect_was_set;

// Where the words come from: the command file while it is open, then the
// argument vector.
int next_arg_index;
FILE* command_file;
std::deque<std::string> words_of_command_files; // settings point into them

const char* skip_blanks(const char* word) {
  while (isspace(static_cast<unsigned char>(*word)))
    word++;
  return word;
}

const char* next_word_of_command_file() {
  char* word = fnextopt(command_file);
  if (word == nullptr) {
    fclose(command_file);
    command_file = nullptr;
    return nullptr;
  }
  words_of_command_files.emplace_back(word);
  free(word);
  return words_of_command_files.back().c_str();
}

const char* next_word() {
  const char* word = take_plain_word();
  return word == nullptr ? nullptr : skip_blanks(word);
}

[[noreturn]] void report_ambiguous_option(const char* name, size_t length) {
  static std::string abbreviation;
  abbreviation.assign(name, length);
  a_diagnostic* diag = start_command_line_error(ec_cl_ambiguous_option, abbreviation.c_str());
  for (const an_option& option : options)
    if (strncmp(option.name, name, length) == 0)
      str_add_diag_info(diag, ec_matching_option, option.name);
  end_command_line_error(diag);
}

// The option of a long name, which may be shortened to a unique prefix.
const an_option* find_long_option(const char* name, size_t length) {
  for (const an_option& option : options)
    if (option.name_length == length && memcmp(option.name, name, length) == 0)
      return &option;
  const an_option* match = nullptr;
  for (const an_option& option : options) {
    if (length == 0 || strncmp(option.name, name, length) != 0)
      continue;
    if (match != nullptr)
      report_ambiguous_option(name, length);
    match = &option;
  }
  return match;
}

const an_option* find_short_option(char name) {
  for (const an_option& option : options)
    if (option.short_name == name)
      return &option;
  return nullptr;
}

void obey(const an_option& option, const char* argument) {
  option_seen[option.code] = true;
  if (option.pch_event)
    add_command_line_pch_event(pch_event_option, option.code, option.value, argument);
  if (option.word != nullptr)
    *option.word = option.value;
  else
    option.action(option, argument);
}

void process_long_option(const char* word) {
  const char* name = word + 2;
  size_t length = strcspn(name, "=");
  const char* argument = name[length] == '=' ? name + length + 1 : nullptr;
  const an_option* option = find_long_option(name, length);
  if (option == nullptr || !option->enabled)
    str_command_line_error(ec_cl_invalid_option, word);
  if (argument != nullptr && (!option->takes_argument || *argument == '\0'))
    str_command_line_error(ec_cl_invalid_option, word);
  if (argument == nullptr && option->takes_argument) {
    argument = next_word();
    if (argument == nullptr)
      str_command_line_error(ec_cl_missing_argument, word);
  }
  obey(*option, argument);
}

// A cluster of one-letter flags; the first one with an argument takes the rest
// of the word, or the next word.
void process_short_options(const char* word) {
  for (const char* flag = word + 1; *flag != '\0'; flag++) {
    const an_option* option = find_short_option(*flag);
    if (option == nullptr || !option->enabled)
      str_command_line_error(ec_cl_invalid_option, word);
    if (!option->takes_argument) {
      obey(*option, nullptr);
      continue;
    }
    const char* argument = flag[1] != '\0' ? flag + 1 : next_word();
    if (argument == nullptr)
      str_command_line_error(ec_cl_invalid_option, word);
    obey(*option, argument);
    return;
  }
}

// Everything up to the name of the source file; what follows isn't read.
void process_options() {
  while (const char* word = next_word()) {
    if (word[0] != '-' || strcmp(word, "-") == 0) {
      primary_source_file_name = file_name_in_internal_encoding(word);
      break;
    }
    if (word[1] == '-')
      process_long_option(word);
    else
      process_short_options(word);
  }
  if (command_file != nullptr)
    fclose(command_file);
  command_file = nullptr;
}

// Diagnostics whose severity differs from that of the place that issues them.
void set_start_severities() {
  static const struct {
    an_error_code code;
    an_error_severity severity;
  } start_severities[] = {
      {ec_implicit_func_decl, es_warning},
      {ec_std_attributes_is_cpp11, es_suppressed},
      {ec_ilp64_will_narrow, es_remark},
      {ec_impl_narrowing_64_bit_int, es_suppressed},
      {ec_expl_narrowing_64_bit_int, es_suppressed},
      {ec_pointer_conversion_to_same_size_int, es_suppressed},
      {ec_microsoft_ptr_sign_extension, es_remark},
      {ec_known_comparison_with_null, es_suppressed},
  };
  for (const auto& row : start_severities)
    set_severity_for_error_number(row.code, row.severity, nullptr, true);
}

} // namespace

const char* take_plain_word() {
  if (command_file != nullptr)
    if (const char* word = next_word_of_command_file())
      return word;
  return next_arg_index < sys_argc ? sys_argv[next_arg_index++] : nullptr;
}

void push_command_file(const char* name) {
  if (command_file != nullptr)
    command_line_error(ec_cl_cmd_file_in_use);
  an_open_file_result result;
  command_file = open_input_file(file_name_in_internal_encoding(name), false, &result);
  if (command_file == nullptr) {
    const char* reason = open_failure_reason(result);
    std::string text =
        std::string("'") + name + "': " + (reason != nullptr ? reason : strerror(ENOENT));
    str_command_line_error(ec_cl_cannot_open_cmd_file, text.c_str());
  }
}

unsigned long option_number(const char* text, unsigned long limit) {
  unsigned long value = 0;
  const char* p = text;
  for (; isdigit(static_cast<unsigned char>(*p)); p++) {
    unsigned long digit = static_cast<unsigned long>(*p - '0');
    if (value > (limit - digit) / 10)
      str_command_line_error(ec_cl_invalid_number, text);
    value = value * 10 + digit;
  }
  if (p == text || *p != '\0')
    str_command_line_error(ec_cl_invalid_number, text);
  return value;
}

void choose_dialect(a_C_dialect dialect) {
  if (dialect_was_set && C_dialect != dialect)
    command_line_error(ec_cl_incompatible_language_modes);
  dialect_was_set = true;
  C_dialect = dialect;
}

void add_to_def_undef_list(const char* text, bool is_undefine) {
  void* memory = alloc_general(sizeof(a_def_undef));
  a_def_undef* entry = new (memory) a_def_undef{nullptr, text, is_undefine};
  if (last_def_undef == nullptr)
    defs_from_cmd_line = entry;
  else
    last_def_undef->next = entry;
  last_def_undef = entry;
}

void cmd_line_early_init() {
  reset_mode_words();
  next_arg_index = 1;
}

void proc_command_line(int argc, char** argv) {
  sys_argc = argc;
  sys_argv = argv;
  set_start_severities();
  strict_ansi_mode = 0;
  strict_ansi_error_severity = es_warning;
  strict_ansi_discretionary_severity = es_warning;
  process_options();
  derive_settings();
}
