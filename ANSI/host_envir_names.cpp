// File names inside the front end.

#include "host_envir.h"

#include "il_alloc.h"
#include "mem_manage.h"
#include "target.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <string>

static constexpr uint64_t normalize_buffer_size = 128;
static constexpr uint64_t name_buffer_size = 256;

static bool is_standard_stream(const char* name) {
  return name[0] == '-' && name[1] == '\0';
}

// The buffer of a function, made at its first use.
static a_text_buffer* ready_buffer(a_text_buffer** buffer, uint64_t size) {
  if (*buffer == nullptr)
    *buffer = alloc_text_buffer(size);
  reset_text_buffer(*buffer);
  return *buffer;
}

static void terminate_text_buffer(a_text_buffer* buffer) {
  add_1_char_to_text_buffer(buffer, '\0');
}

// The last byte `c` that is a whole character of the name, or null.
static const char* last_char_in_name(const char* name, char c) {
  const char* last = nullptr;
  for (; *name != '\0'; name += utf8_char_length(name))
    if (*name == c)
      last = name;
  return last;
}

const char* start_of_file_name(const char* name) {
  if (is_standard_stream(name))
    return name;
  const char* slash = last_char_in_name(name, '/');
  return slash != nullptr ? slash + 1 : name;
}

const char* suffix_of(const char* name) {
  const char* end = name + strlen(name);
  const char* dot = last_char_in_name(start_of_file_name(name), '.');
  return dot != nullptr && !is_standard_stream(name) ? dot : end;
}

// A copy that lives for good.
static const char* kept_text(const std::string& text) {
  char* copy = static_cast<char*>(alloc_general(text.size() + 1));
  memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

// -- Interned directory names --------------------------------------------------------

namespace {
struct a_directory_list_entry {
  a_directory_list_entry* next;
  size_t length;
  char* text;
};
} // namespace

static a_directory_list_entry* general_directory_list;
static a_directory_list_entry* il_directory_list;

void clear_il_directory_list() {
  il_directory_list = nullptr;
}

static const char* interned_directory(const char* text, size_t length, bool in_general_memory) {
  a_directory_list_entry** list = in_general_memory ? &general_directory_list : &il_directory_list;
  for (a_directory_list_entry* entry = *list; entry != nullptr; entry = entry->next)
    if (entry->length == length && memcmp(entry->text, text, length) == 0)
      return entry->text;
  auto* entry = static_cast<a_directory_list_entry*>(alloc_general(sizeof(a_directory_list_entry)));
  entry->text = static_cast<char*>(in_general_memory ? alloc_general(length + 1)
                                                     : alloc_primary_file_scope_il(length + 1));
  memcpy(entry->text, text, length);
  entry->text[length] = '\0';
  entry->length = length;
  entry->next = *list;
  *list = entry;
  return entry->text;
}

const char* f_directory_of(const char* name, bool in_general_memory) {
  size_t length = static_cast<size_t>(start_of_file_name(name) - name);
  return interned_directory(name, length, in_general_memory);
}

const char* derived_name(const char* name, const char* suffix) {
  const char* base;
  fn_split(name, nullptr, &base, nullptr);
  char* built = fn_build(nullptr, nullptr, base, suffix);
  const char* result = kept_text(built);
  free(built);
  return result;
}

// -- Joining and normalizing -------------------------------------------------------------

bool is_absolute_file_name(const char* name) {
  return name[0] == '/';
}

void append_to_path_name(a_text_buffer* buffer, const char* name) {
  remove_null_terminator_from_text_buffer(buffer);
  if (buffer->used_size != 0 && buffer->data[buffer->used_size - 1] != '/')
    add_1_char_to_text_buffer(buffer, '/');
  f_add_string_to_text_buffer(buffer, name);
  terminate_text_buffer(buffer);
}

const char* combine_dir_and_file_name(const char* directory, const char* name,
                                      a_text_buffer* buffer) {
  static a_text_buffer* shared_buffer;
  if (buffer == nullptr)
    buffer = ready_buffer(&shared_buffer, name_buffer_size);
  else
    reset_text_buffer(buffer);
  f_add_string_to_text_buffer(buffer, directory);
  append_to_path_name(buffer, name);
  return buffer->data;
}

void replace_file_name_suffix(const char* suffix, a_text_buffer* buffer) {
  char* stem = fn_delext(buffer->data);
  char* name = fn_addext(stem, suffix, false);
  reset_text_buffer(buffer);
  f_add_string_to_text_buffer(buffer, name);
  terminate_text_buffer(buffer);
  free(name);
  free(stem);
}

// Takes the last component off.
static void remove_last_component(a_text_buffer* buffer) {
  uint64_t length = buffer->used_size;
  while (length > 0 && buffer->data[length - 1] != '/')
    length--;
  buffer->used_size = length > 0 ? length - 1 : 0;
}

// Adds the components of `path`, obeying `.` and `..`. `slash_before` says that
// a slash stands in front of the first.
static void add_components(a_text_buffer* buffer, const char* path, bool slash_before) {
  while (*path != '\0') {
    if (*path == '/') {
      slash_before = true;
      path++;
      continue;
    }
    size_t length = strcspn(path, "/");
    if (length == 2 && path[0] == '.' && path[1] == '.') {
      remove_last_component(buffer);
    } else if (length != 1 || path[0] != '.') {
      if (buffer->used_size != 0 || slash_before)
        add_1_char_to_text_buffer(buffer, '/');
      add_to_text_buffer(buffer, path, length);
    }
    path += length;
  }
}

const char* normalize_file_name(const char* name) {
  static a_text_buffer* shared_buffer;
  a_text_buffer* buffer = ready_buffer(&shared_buffer, normalize_buffer_size);
  bool is_absolute = is_absolute_file_name(name);
  if (!is_absolute)
    add_components(buffer, current_directory_name, false);
  // A root directory as the current one leaves the buffer empty.
  add_components(buffer, name, !is_absolute && current_directory_name[0] != '\0');
  terminate_text_buffer(buffer);
  return buffer->data;
}

// -- Comparing ---------------------------------------------------------------------------------

int compare_dir_names(const char* directory1, const char* directory2, bool ignore_case) {
  std::string first = normalize_file_name(directory1);
  const char* second = normalize_file_name(directory2);
  return ignore_case ? strcaseicmp(first.c_str(), second) : strcmp(first.c_str(), second);
}

int f_compare_file_names(const char* name1, const char* name2, bool strip_delimiters,
                         bool ignore_case) {
  std::string first = name1;
  std::string second = name2;
  if (strip_delimiters) {
    first = first.size() < 2 ? "" : first.substr(1, first.size() - 2);
    second = second.size() < 2 ? "" : second.substr(1, second.size() - 2);
  }
  const char* base1 = start_of_file_name(first.c_str());
  const char* base2 = start_of_file_name(second.c_str());
  int order = strcmp(base1, base2);
  if (order != 0)
    return order;
  first.resize(static_cast<size_t>(base1 - first.c_str()));
  second.resize(static_cast<size_t>(base2 - second.c_str()));
  return compare_dir_names(first.c_str(), second.c_str(), ignore_case);
}

// -- Writing ----------------------------------------------------------------------------

// A byte that doesn't print, as an escape of C.
static void add_escape(a_text_buffer* buffer, char c) {
  if (c == '\n') {
    f_add_string_to_text_buffer(buffer, "\\n");
    return;
  }
  unsigned value = static_cast<unsigned char>(c) & ((1u << targ_host_string_char_bit) - 1);
  const char octal[] = {'\\', static_cast<char>('0' + (value >> 6 & 7)),
                        static_cast<char>('0' + (value >> 3 & 7)),
                        static_cast<char>('0' + (value & 7))};
  add_to_text_buffer(buffer, octal, sizeof octal);
}

void write_file_name_to_text_buffer(const char* name, a_text_buffer* buffer, bool escape_quotes,
                                    bool escape_nonprinting) {
  while (*name != '\0') {
    int length = utf8_char_length(name);
    if (escape_nonprinting && !isprint(static_cast<unsigned char>(*name))) {
      add_escape(buffer, *name++);
      continue;
    }
    if (escape_quotes && (*name == '\\' || *name == '"'))
      add_1_char_to_text_buffer(buffer, '\\');
    add_to_text_buffer(buffer, name, static_cast<uint64_t>(length));
    name += length;
  }
}

// The name in a buffer that all formatting shares.
static const char* formatted_name(const char* name, bool escape_quotes, bool escape_nonprinting) {
  static a_text_buffer* shared_buffer;
  a_text_buffer* buffer = ready_buffer(&shared_buffer, name_buffer_size);
  write_file_name_to_text_buffer(name, buffer, escape_quotes, escape_nonprinting);
  terminate_text_buffer(buffer);
  return buffer->data;
}

const char* format_file_name(const char* name) {
  return formatted_name(name, false, false);
}

void write_file_name(const char* name, FILE* file, bool escape_quotes, bool escape_nonprinting) {
  fputs(formatted_name(name, escape_quotes, escape_nonprinting), file);
}

const char* makefile_format_file_name(const char* name) {
  static a_text_buffer* shared_buffer;
  a_text_buffer* buffer = ready_buffer(&shared_buffer, name_buffer_size);
  for (; *name != '\0'; name++) {
    if (*name == ' ')
      f_add_string_to_text_buffer(buffer, "\\\\");
    add_1_char_to_text_buffer(buffer, *name);
  }
  terminate_text_buffer(buffer);
  return buffer->data;
}

// -- Recoding ---------------------------------------------------------------------------

static bool is_all_ascii(const char* text) {
  for (; *text != '\0'; text++)
    if (static_cast<unsigned char>(*text) >= 0x80)
      return false;
  return true;
}

const char* file_name_in_external_encoding(const char* name) {
  if (is_all_ascii(name))
    return name;
  std::string recoded;
  while (*name != '\0') {
    uint32_t value;
    a_boolean invalid;
    name += mbc_to_wide_char(name, &value, &invalid, false);
    recoded.push_back(invalid || value >= 256 ? '?' : static_cast<char>(value));
  }
  return kept_text(recoded);
}

const char* file_name_in_internal_encoding(const char* name) {
  if (is_all_ascii(name))
    return name;
  std::string recoded;
  for (; *name != '\0'; name++) {
    char utf8[4];
    int length = unicode_to_utf8(static_cast<unsigned char>(*name), utf8);
    recoded.append(utf8, static_cast<size_t>(length));
  }
  return kept_text(recoded);
}
