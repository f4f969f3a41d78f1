// The macros that exist before the first line of source: those of the table,
// of the predefined macro file, of the date and of the command line.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_str.h"
#include "il_types.h"
#include "lookup.h"
#include "macro_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "target.h"

// -- Values ---------------------------------------------------------------------------

static std::string decimal(int value) {
  return std::to_string(value);
}

static std::string int_kind_text(int kind) {
  return int_kind_name(kind);
}

// Of a number such as 40800, as a string literal: "4.8.0".
static std::string quoted_version(int version) {
  return '"' + decimal(version / 10000) + '.' + decimal(version / 100 % 100) + '.' +
         decimal(version % 100) + '"';
}

static std::string c_standard_version() {
  if (std_version >= 201112)
    return "201112L";
  return std_version >= 199901 ? "199901L" : "199409L";
}

static std::string cplusplus_version() {
  if (std_version >= 201402)
    return "201402L";
  return std_version >= 201103 ? "201103L" : "199711L";
}

// -- Entering -----------------------------------------------------------------------------

// A coded list of one text.
static uint8_t* body_of_text(const char* text) {
  size_t length = strlen(text);
  uint8_t* body = static_cast<uint8_t*>(alloc_in_region(file_scope_region_number, length + 5));
  if (length == 0) {
    body[0] = mbc_end;
    return body;
  }
  body[0] = mbc_text;
  body[1] = static_cast<uint8_t>(length);
  body[2] = static_cast<uint8_t>(length >> 8);
  body[3] = static_cast<uint8_t>(length >> 16);
  memcpy(body + 4, text, length);
  body[length + 4] = mbc_end;
  return body;
}

static bool bodies_are_equal(const uint8_t* a, const uint8_t* b) {
  if (a == nullptr || b == nullptr)
    return false;
  while (*a == *b && *a != mbc_end) {
    size_t length = 4;
    if (*a == mbc_text)
      length += a[1] | static_cast<size_t>(a[2]) << 8 | static_cast<size_t>(a[3]) << 16;
    if (memcmp(a, b, length) != 0)
      return false;
    a += length;
    b += length;
  }
  return *a == *b;
}

static a_macro* il_macro_of_predef(const char* name, const char* value, bool is_function_like) {
  std::string text = std::string(name) + (is_function_like ? "() " : " ") + value;
  a_macro* macro = alloc_macro();
  macro->text = copy_string_of_length_to_region(file_scope_region_number, text.data(), text.size());
  macro->is_predefined = 1;
  macro->is_function_like = is_function_like;
  add_to_macros_list(macro);
  return macro;
}

void enter_predef_macro(const char* value, const char* name, bool is_protected,
                        bool is_function_like) {
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(name, 0, &locator);
  uint8_t* body = body_of_text(value);
  a_symbol* symbol = find_macro_symbol(header);
  if (symbol != nullptr) {
    if (!bodies_are_equal(symbol->variant.macro->body, body))
      str_catastrophe(ec_bad_predef_macro_redef, name);
    return;
  }
  a_macro_def* def =
      static_cast<a_macro_def*>(alloc_in_region(file_scope_region_number, sizeof(a_macro_def)));
  clear_macro_def(def);
  def->is_object_like = !is_function_like;
  def->is_protected = is_protected;
  def->is_predefined = 1;
  def->body = body;
  def->il_macro = il_macro_of_predef(name, value, is_function_like);
  enter_macro_symbol(header, def, &null_source_position);
}

// -- The date ---------------------------------------------------------------------------------

// The time of the build, when the environment asks for a reproducible one.
static std::string reproducible_time_string(const char* time_string) {
  const char* epoch = getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr || *epoch == '\0')
    return time_string;
  char* end;
  time_t seconds = static_cast<time_t>(strtoll(epoch, &end, 10));
  const struct tm* utc = *end == '\0' ? gmtime(&seconds) : nullptr;
  return utc != nullptr ? asctime(utc) : time_string;
}

static void set_string_macro(const char* name, const std::string& text) {
  std::string value = '"' + text + '"';
  a_symbol_locator locator = cleared_locator;
  a_symbol* symbol = find_macro_symbol(find_symbol_header(name, 0, &locator));
  if (symbol == nullptr)
    enter_predef_macro(value.c_str(), name, true, false);
  else
    symbol->variant.macro->body = body_of_text(value.c_str());
}

// The layout is "Mon Jan  2 15:04:05 2006".
void set_date_and_time_macros(const char* given_time_string) {
  std::string time_string = reproducible_time_string(given_time_string);
  if (time_string.size() < 24)
    return;
  std::string date = time_string.substr(4, 7) + time_string.substr(20, 4);
  if (date[4] == '0')
    date[4] = ' ';
  set_string_macro("__DATE__", date);
  set_string_macro("__TIME__", time_string.substr(11, 8));
}

void fixup_predefined_macros(const char* time_string) {
  set_date_and_time_macros(time_string);
}

// -- The predefined macro file ------------------------------------------------------------------

// Texts of the catalogue that have no tag.
static constexpr an_error_code text_missing_flag = 1804;
static constexpr an_error_code text_missing_mode = 1805;
static constexpr an_error_code text_missing_name = 1806;
static constexpr an_error_code text_invalid_flag = 1807;
static constexpr an_error_code text_line = 1766;

struct a_predef_macro_mode {
  const char* name;
  bool is_on;
};

static a_predef_macro_mode predef_macro_modes[] = {
    {"gnu", false},          {"gcc", false},       {"gpp", false},
    {"clang", false},        {"clang_c", false},   {"clang_cpp", false},
    {"gnu_or_clang", false}, {"microsoft", false}, {"strict", false},
    {"cpp", false},          {"all", true}};

static a_predef_macro_mode* find_predef_macro_mode(const std::string& name) {
  for (a_predef_macro_mode& mode : predef_macro_modes)
    if (name == mode.name)
      return &mode;
  return nullptr;
}

void set_predef_macro_mode(const char* mode, bool on) {
  a_predef_macro_mode* entry = find_predef_macro_mode(mode);
  if (entry == nullptr)
    internal_error("set_predef_macro_mode: unknown mode");
  entry->is_on = on;
}

[[noreturn]] static void bad_predef_line(an_error_code reason, unsigned long line_number) {
  std::string text = std::string(error_text(reason)) + ", " + error_text(text_line) + " " +
                     std::to_string(line_number);
  str_catastrophe(ec_bad_predef_macro_line, text.c_str());
}

static std::string next_word(const std::string& line, size_t* place) {
  size_t start = line.find_first_not_of(" \t", *place);
  if (start == std::string::npos)
    start = line.size();
  size_t end = line.find_first_of(" \t", start);
  if (end == std::string::npos)
    end = line.size();
  *place = end;
  return line.substr(start, end - start);
}

// Whether one of the listed modes has the wanted value.
static bool modes_apply(const std::string& list, unsigned long line_number) {
  bool apply = false;
  for (size_t start = 0; start <= list.size();) {
    size_t comma = list.find(',', start);
    if (comma == std::string::npos)
      comma = list.size();
    bool wanted = start >= list.size() || list[start] != '!';
    size_t name_start = wanted ? start : start + 1;
    std::string name = list.substr(name_start, comma - name_start);
    if (name.empty())
      bad_predef_line(text_missing_mode, line_number);
    const a_predef_macro_mode* mode = find_predef_macro_mode(name);
    if (mode == nullptr)
      str_catastrophe(ec_bad_macro_mode_name, name.c_str());
    apply = apply || mode->is_on == wanted;
    start = comma + 1;
  }
  return apply;
}

static void process_predef_macro_line(const std::string& line, unsigned long line_number) {
  size_t place = 0;
  size_t start = line.find_first_not_of(" \t");
  if (start == std::string::npos || line[start] == '#')
    return;
  std::string modes = next_word(line, &place);
  std::string flag = next_word(line, &place);
  if (flag.empty())
    bad_predef_line(text_missing_flag, line_number);
  if (flag != "yes" && flag != "no")
    bad_predef_line(text_invalid_flag, line_number);
  size_t text_start = line.find_first_not_of(" \t", place);
  if (text_start == std::string::npos)
    bad_predef_line(text_missing_name, line_number);
  if (!modes_apply(modes, line_number))
    return;
  std::string text = line.substr(text_start);
  define_macro_from_text(text, a_source_position{0, 3, 0});
  size_t name_length = 0;
  while (name_length < text.size() && is_id_char[static_cast<unsigned char>(text[name_length])])
    ++name_length;
  if (name_length == 0)
    bad_predef_line(text_missing_name, line_number);
  a_symbol_locator locator = cleared_locator;
  a_symbol* symbol = find_macro_symbol(find_symbol_header(text.c_str(), name_length, &locator));
  if (symbol != nullptr)
    symbol->variant.macro->is_protected = flag == "yes";
}

static void read_predef_macro_file() {
  std::string name =
      combine_dir_and_file_name(znt_base_directory, auxiliary_info_dir_name, nullptr);
  name = combine_dir_and_file_name(name.c_str(), "predefined_macros.txt", nullptr);
  FILE* file = open_input_file_with_error_handling(name.c_str(), false, tolerate_nothing,
                                                   fk_predefined_macro);
  std::string line;
  unsigned long line_number = 0;
  processing_predefined_macro = 1;
  for (int c = getc(file); c != EOF; c = getc(file)) {
    if (c != '\n') {
      line += static_cast<char>(c);
      continue;
    }
    process_predef_macro_line(line, ++line_number);
    line.clear();
  }
  process_predef_macro_line(line, ++line_number);
  processing_predefined_macro = 0;
  fclose(file);
}

// -- All of them
// ------------------------------------------------------------------------------------

struct a_predef_macro {
  const char* name;
  std::string value;
  bool is_protected;
  bool exists;
};

void init_predefined_macros(const char* time_string) {
  enter_builtin_macros();
  const a_predef_macro predef_macros[] = {
#define PREDEF_MACRO(name, value, is_protected, condition)                                         \
  {name, value, is_protected, static_cast<bool>(condition)},
#include "predef_macros.def"
#undef PREDEF_MACRO
  };
  for (const a_predef_macro& macro : predef_macros)
    if (macro.exists)
      enter_predef_macro(macro.value.c_str(), macro.name, macro.is_protected, false);
  set_date_and_time_macros(time_string);
  if (use_predefined_macro_file)
    read_predef_macro_file();
  process_command_line_macros();
}
