#include "cmd_line.h"

#include "cmd_line_int.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "mem_manage.h"
#include "pch.h"
#include "target.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iterator>
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

#define SETS(word_name) &(word_name), nullptr, nullptr
#define NAMES(word_name) nullptr, &(word_name), nullptr
#define DOES(name) nullptr, nullptr, do_##name
#define OPTION(code, name, short_name, takes, value, enabled, pch, effect)                         \
  {code, name, short_name, value, takes, enabled, sizeof(name) - 1, pch, effect},
const an_option options[] = {
#include "cmd_line_options.def"
};
#undef OPTION
#undef SETS
#undef NAMES
#undef DOES

// The table is the interface of the tool: no row comes or goes unnoticed.
static_assert(std::size(options) == number_of_options);

a_def_undef* last_def_undef;
bool dialect_was_set;

// Where the words come from: the command file while it is open, then the
// argument vector.
struct a_word_source {
  int count;
  const char* const* words;
  int next_arg_index;
};
a_word_source argument_vector;
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
  else if (option.file_name != nullptr)
    *option.file_name = file_name_in_internal_encoding(argument);
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

void close_command_file() {
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
  a_word_source& source = argument_vector;
  return source.next_arg_index < source.count ? source.words[source.next_arg_index++] : nullptr;
}

void process_options(bool finish) {
  while (const char* word = next_word()) {
    bool is_source_file = word[0] != '-' || word[1] == '\0';
    if (is_source_file) {
      primary_source_file_name = file_name_in_internal_encoding(word);
      break;
    }
    if (word[1] == '-')
      process_long_option(word);
    else
      process_short_options(word);
  }
  close_command_file();
  if (finish)
    derive_settings();
}

void process_option_word(const char* word) {
  a_word_source outer = argument_vector;
  argument_vector = {1, &word, 0};
  process_options(false);
  argument_vector = outer;
}

void refuse_argument(const an_option& option, const char* argument) {
  std::string word = std::string("--") + option.name + "=" + argument;
  str_command_line_error(ec_cl_invalid_option, word.c_str());
}

void refuse_run(const char* text) {
  constexpr an_error_code ec_plain_command_line_text = 3016;
  str_command_line_error(ec_plain_command_line_text, text);
}

const char* get_src_file_name() {
  if (primary_source_file_name == nullptr)
    command_line_error(ec_cl_missing_source_file_name);
  return primary_source_file_name;
}

bool cmd_line_option_inhibits_gnu_cpp11_extension_warning(an_error_code code) {
  return code == ec_delegating_constructor_is_cpp11 && option_seen[oc_delegating_constructors];
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
  memset(option_seen, 0, sizeof option_seen);
  dialect_was_set = false;
  defs_from_cmd_line = last_def_undef = nullptr;
  raw_listing_file_name = xref_file_name = error_output_file_name = nullptr;
  opt_overrides.clear();
  for (auto* words : {&shell_opts, &ansi_opts, &opt_opts, &cg_opts})
    words->clear();
}

void proc_command_line(int argc, char** argv) {
  sys_argc = argc;
  sys_argv = argv;
  argument_vector = {argc, argv, 1};
  set_start_severities();
  strict_ansi_mode = 0;
  strict_ansi_error_severity = es_warning;
  strict_ansi_discretionary_severity = es_warning;
  process_options(true);
}
