// The include search path, the search along it, and the history of included
// files with their guards.

#include "source_file_int.h"

#include "error.h"
#include "il_alloc.h"
#include "lookup.h"
#include "macro.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "trans_unit.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

static constexpr uint32_t num_history_buckets = 1024;
static constexpr uint64_t name_buffer_size = 256;

a_directory_name_entry* incl_search_path;
a_directory_name_entry* end_incl_search_path;
a_directory_name_entry* sys_incl_search_path;
a_file_name_list_entry* preinclude_file_list;
a_file_name_list_entry* macro_preinclude_file_list;

// The marker `-I-` was given.
static a_boolean sys_incl_search_path_is_marked;

const char* copy_of_file_name(const char* name) {
  size_t size = strlen(name) + 1;
  return static_cast<char*>(memcpy(alloc_primary_file_scope_il(size), name, size));
}

// -- The search path -----------------------------------------------------------------------

void add_to_file_name_list(a_file_name_list_entry** list, const char* name) {
  auto* entry = static_cast<a_file_name_list_entry*>(alloc_general(sizeof(a_file_name_list_entry)));
  *entry = {name, nullptr};
  while (*list != nullptr)
    list = &(*list)->next;
  *list = entry;
}

static a_directory_name_entry* new_directory_name_entry(const char* name, bool is_system) {
  auto* entry = static_cast<a_directory_name_entry*>(alloc_general(sizeof(a_directory_name_entry)));
  *entry = {name, nullptr, is_system, false};
  return entry;
}

void add_to_include_search_path(const char* name, bool is_system) {
  a_directory_name_entry* entry = new_directory_name_entry(name, is_system);
  if (end_incl_search_path == nullptr)
    incl_search_path = entry;
  else
    end_incl_search_path->next = entry;
  end_incl_search_path = entry;
  if (sys_incl_search_path == nullptr && (is_system || sys_incl_search_path_is_marked))
    sys_incl_search_path = entry;
}

void mark_start_of_sys_incl_search_path() {
  sys_incl_search_path_is_marked = 1;
  sys_incl_search_path = nullptr;
}

static bool is_system_directory_of_path(const char* name) {
  for (auto* entry = incl_search_path; entry != nullptr; entry = entry->next)
    if (entry->is_system && compare_dir_names(entry->name, name, false) == 0)
      return true;
  return false;
}

static bool is_mentioned_before(const a_directory_name_entry* entry) {
  for (auto* earlier = incl_search_path; earlier != entry; earlier = earlier->next)
    if (!earlier->is_current_directory_slot &&
        compare_dir_names(earlier->name, entry->name, false) == 0)
      return true;
  return false;
}

static bool is_duplicate_directory(const a_directory_name_entry* entry) {
  if (entry->is_current_directory_slot || entry == sys_incl_search_path)
    return false;
  return is_mentioned_before(entry) ||
         (!entry->is_system && is_system_directory_of_path(entry->name));
}

void remove_duplicate_include_directories() {
  a_directory_name_entry** link = &incl_search_path;
  end_incl_search_path = nullptr;
  while (*link != nullptr) {
    if (is_duplicate_directory(*link)) {
      *link = (*link)->next;
    } else {
      end_incl_search_path = *link;
      link = &(*link)->next;
    }
  }
}

void put_current_directory_slot_on_incl_search_path(const char* directory) {
  a_directory_name_entry* slot = new_directory_name_entry(directory, false);
  slot->is_current_directory_slot = true;
  slot->next = incl_search_path;
  incl_search_path = slot;
  if (end_incl_search_path == nullptr)
    end_incl_search_path = slot;
}

static bool path_has_current_directory_slot() {
  return incl_search_path != nullptr && incl_search_path->is_current_directory_slot;
}

void push_current_directory(const char* directory) {
  if (!path_has_current_directory_slot())
    return;
  if (stack_referenced_include_directories)
    put_current_directory_slot_on_incl_search_path(directory);
  else
    incl_search_path->name = directory;
}

void pop_current_directory(const char* directory) {
  if (!path_has_current_directory_slot())
    return;
  a_directory_name_entry* below = incl_search_path->next;
  if (stack_referenced_include_directories && below != nullptr && below->is_current_directory_slot)
    incl_search_path = below;
  else
    incl_search_path->name = directory;
}

// Where the search for <...> begins.
static a_directory_name_entry* start_of_angle_bracket_search() {
  if (sys_incl_search_path_is_marked)
    return sys_incl_search_path;
  a_directory_name_entry* entry = incl_search_path;
  while (entry != nullptr && entry->is_current_directory_slot)
    entry = entry->next;
  return entry;
}

static a_directory_name_entry* start_of_search(const an_include_request& request) {
  if (request.from_next_directory && curr_ise != nullptr && curr_ise->search_path_entry != nullptr)
    return curr_ise->search_path_entry->next;
  return request.is_angle_bracket ? start_of_angle_bracket_search() : incl_search_path;
}

// -- The search ------------------------------------------------------------------------------

// The results of former searches: from a directory, the working directory and a
// name to the path of the file, or null for a file that isn't there.
static std::unordered_map<std::string, const char*>& search_results() {
  static std::unordered_map<std::string, const char*> results;
  return results;
}

static std::string search_key(const char* directory, const char* name) {
  std::string key = directory;
  key.push_back('\0');
  key += current_directory_name;
  key.push_back('\0');
  key += name;
  return key;
}

// The suffixes that stand in include_file_suffixes, each behind a colon.
static const std::vector<std::string>& include_suffixes() {
  static std::vector<std::string> suffixes;
  static const char* parsed_text;
  if (parsed_text != include_file_suffixes) {
    parsed_text = include_file_suffixes;
    suffixes.clear();
    std::string text = parsed_text;
    for (size_t start = 0; start <= text.size();) {
      size_t end = std::min(text.find(':', start), text.size());
      std::string suffix = text.substr(start, end - start);
      if (std::find(suffixes.begin(), suffixes.end(), suffix) == suffixes.end())
        suffixes.push_back(suffix);
      start = end + 1;
    }
  }
  return suffixes;
}

// Opens the file, unless it is an included one that its guard excludes.
static bool open_found_file(const char* full_name, bool is_include, a_found_file* found,
                            an_open_file_result* result) {
  found->full_name = full_name;
  found->was_suppressed = is_include && suppress_subsequent_include_of_file(full_name);
  return found->was_suppressed || open_source_file(full_name, &found->text, result);
}

// A file called "-" is no standard input when it's searched for.
static const char* path_in_directory(const char* directory, const char* name) {
  if (directory[0] == '\0' && strcmp(name, "-") != 0)
    return name;
  return combine_dir_and_file_name(directory[0] == '\0' ? "." : directory, name, nullptr);
}

// Looks for the name in one directory.
static bool search_directory(a_directory_name_entry* directory, const char* name, bool is_include,
                             a_found_file* found) {
  auto [place, is_new] = search_results().try_emplace(search_key(directory->name, name), nullptr);
  if (!is_new && place->second == nullptr)
    return false;
  const char* full_name = place->second;
  if (is_new)
    full_name = copy_of_file_name(path_in_directory(directory->name, name));
  an_open_file_result result;
  if (!open_found_file(full_name, is_include, found, &result))
    return false;
  place->second = full_name;
  found->search_path_entry = directory;
  return true;
}

// Looks in one directory for the name with each suffix it may have.
static bool search_directory_with_suffixes(a_directory_name_entry* directory, const char* name,
                                           bool is_include, a_found_file* found) {
  if (*suffix_of(name) != '\0' || !is_include)
    return search_directory(directory, name, is_include, found);
  static a_text_buffer* buffer;
  if (buffer == nullptr)
    buffer = alloc_text_buffer(name_buffer_size);
  for (const std::string& suffix : include_suffixes()) {
    reset_text_buffer(buffer);
    add_to_text_buffer(buffer, name, strlen(name) + 1);
    replace_file_name_suffix(suffix.c_str(), buffer);
    if (search_directory(directory, buffer->data, is_include, found))
      return true;
  }
  return false;
}

bool open_file_for_input(const char* name, const an_include_request& request, a_found_file* found,
                         an_open_file_result* result) {
  *found = {};
  clear_open_file_result(result);
  if (!request.use_search_path || is_absolute_file_name(name))
    return open_found_file(copy_of_file_name(name), request.is_include, found, result);
  a_directory_name_entry* directory = start_of_search(request);
  if (directory == nullptr && !request.from_next_directory)
    str_catastrophe(ec_empty_include_search_path, name);
  for (; directory != nullptr; directory = directory->next)
    if (search_directory_with_suffixes(directory, name, request.is_include, found))
      return true;
  result->flags = off_not_found;
  return false;
}

bool header_can_be_found(const char* name, bool is_angle_bracket, bool from_next_directory) {
  an_include_request request = {};
  request.use_search_path = true;
  request.is_include = true;
  request.is_angle_bracket = is_angle_bracket;
  request.from_next_directory = from_next_directory;
  if (!is_absolute_file_name(name) && start_of_search(request) == nullptr)
    return false;
  a_found_file found;
  an_open_file_result result;
  bool is_found = open_file_for_input(name, request, &found, &result);
  close_source_file(&found.text);
  return is_found;
}

// -- The history of included files ---------------------------------------------------------------

// Per translation unit: the records by name and by unique id.
static an_include_file_history** history_by_name;
static an_include_file_history** history_by_id;

static an_include_file_history** new_history_table() {
  size_t size = num_history_buckets * sizeof(an_include_file_history*);
  return static_cast<an_include_file_history**>(
      memset(alloc_in_region(front_end_region, size), 0, size));
}

static an_include_file_history** name_bucket(const char* name) {
  uint32_t hash = 5381;
  for (; *name != '\0'; name++)
    hash = hash * 33 + static_cast<unsigned char>(*name);
  return &history_by_name[hash % num_history_buckets];
}

static an_include_file_history** id_bucket(const a_unique_file_id* id) {
  return &history_by_id[hash_unique_file_id(id) % num_history_buckets];
}

static an_include_file_history* find_history_by_id(const a_unique_file_id* id) {
  an_include_file_history* history = *id_bucket(id);
  while (history != nullptr && !same_unique_file_ids(&history->unique_id, id))
    history = history->next_by_id;
  return history;
}

static an_include_file_history* new_history(const char* full_name, const a_unique_file_id* id) {
  auto* history = static_cast<an_include_file_history*>(
      alloc_in_region(front_end_region, sizeof(an_include_file_history)));
  *history = {};
  history->file_name = full_name;
  history->unique_id = *id;
  an_include_file_history** bucket = name_bucket(full_name);
  history->next = *bucket;
  *bucket = history;
  bucket = id_bucket(id);
  history->next_by_id = *bucket;
  *bucket = history;
  return history;
}

an_include_file_history* find_include_history(const char* full_name, bool create) {
  for (auto* history = *name_bucket(full_name); history != nullptr; history = history->next)
    if (strcmp(history->file_name, full_name) == 0)
      return history;
  a_unique_file_id id;
  if (!get_unique_id_for_file(full_name, &id))
    return create ? new_history(full_name, &id) : nullptr;
  an_include_file_history* history = find_history_by_id(&id);
  return history == nullptr && create ? new_history(full_name, &id) : history;
}

static bool macro_is_defined(const char* name) {
  a_symbol_locator locator;
  a_symbol_header* header = find_symbol_header(name, strlen(name), &locator);
  return find_defined_macro(header) != nullptr;
}

bool suppress_subsequent_include_of_file(const char* full_name) {
  const an_include_file_history* history = find_include_history(full_name, false);
  if (history == nullptr)
    return false;
  if (history->is_pragma_once)
    return true;
  if (!history->is_guarded || history->guard_macro_name == nullptr)
    return false;
  return macro_is_defined(history->guard_macro_name) == history->guard_tests_not_defined;
}

// -- Initialisation ---------------------------------------------------------------------

void source_file_early_init() {
  incl_search_path = nullptr;
  end_incl_search_path = nullptr;
  sys_incl_search_path = nullptr;
  sys_incl_search_path_is_marked = 0;
  preinclude_file_list = nullptr;
  macro_preinclude_file_list = nullptr;
}

void source_file_search_one_time_init() {
  f_register_trans_unit_variable(&history_by_name, sizeof history_by_name, 0);
  f_register_trans_unit_variable(&history_by_id, sizeof history_by_id, 0);
}

void source_file_search_reset() {
  search_results().clear();
  history_by_name = new_history_table();
  history_by_id = new_history_table();
}
