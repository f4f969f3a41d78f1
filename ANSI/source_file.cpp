// The stack of files being read, the files that #line makes, and the guards of
// included files.

#include "source_file_int.h"

#include "cfe.h"
#include "error.h"
#include "il_alloc.h"
#include "il_to_if.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pp_output.h"
#include "preproc.h"
#include "source_line.h"
#include "trans_unit.h"

#include <cstring>

static constexpr int input_stack_increment = 30;
// With this many files on the stack the text of the one below is given back.
static constexpr int max_open_source_texts = 8;
// Earlier readings of a file on the stack that one more may join.
static constexpr int max_recursive_readings = 9;

an_input_stack_entry* curr_ise;
int depth_input_stack = -1;
a_boolean at_end_of_source_file;
a_boolean any_tokens_fetched_from_curr_input_file;
a_boolean actual_include_was_suppressed;
a_unicode_source_kind_tag curr_file_unicode_source_kind;
a_boolean in_system_header;

static an_input_stack_entry* input_stack;
static int size_of_input_stack;

// The preinclude files that are still to be entered.
static a_file_name_list_entry* next_macro_preinclude_file;
static a_file_name_list_entry* next_preinclude_file;
static a_boolean preinclude_files_were_started;

an_input_stack_entry* input_stack_entry(int depth) {
  return &input_stack[depth];
}

bool processing_primary_source_file() {
  return curr_ise != nullptr && curr_ise->source_file->is_primary_source_file;
}

bool in_included_file() {
  return curr_ise != nullptr && curr_ise->is_include_file;
}

uint32_t next_line_of_current_file() {
  return curr_ise->lines_read + 1;
}

uint32_t next_physical_line_of_current_file() {
  return curr_ise->lines_since_start + 1;
}

// -- Entries of the stack ------------------------------------------------------------------

static void set_top_of_input_stack(int depth) {
  depth_input_stack = depth;
  curr_ise = depth < 0 ? nullptr : &input_stack[depth];
  curr_file_unicode_source_kind = curr_ise != nullptr ? curr_ise->text.unicode_kind : usk_none;
  in_system_header = curr_ise != nullptr && curr_ise->current_source_file->is_system_header;
}

static an_input_stack_entry* new_input_stack_entry() {
  int depth = depth_input_stack + 1;
  if (depth == size_of_input_stack) {
    uint64_t old_size = static_cast<uint64_t>(size_of_input_stack) * sizeof(an_input_stack_entry);
    size_of_input_stack += input_stack_increment;
    uint64_t new_size = static_cast<uint64_t>(size_of_input_stack) * sizeof(an_input_stack_entry);
    input_stack = reinterpret_cast<an_input_stack_entry*>(
        realloc_buffer(reinterpret_cast<char*>(input_stack), old_size, new_size));
    curr_ise = depth_input_stack < 0 ? nullptr : &input_stack[depth_input_stack];
  }
  input_stack[depth] = {};
  return &input_stack[depth];
}

// Gives the text of the current file back; standard input can't be read twice.
static void give_text_back(an_input_stack_entry* entry) {
  if (strcmp(entry->full_name, "-") == 0)
    return;
  entry->saved_offset = static_cast<size_t>(entry->cursor - entry->text.start);
  close_source_file(&entry->text);
}

static void get_text_again(an_input_stack_entry* entry) {
  if (entry->text.storage != nullptr)
    return;
  reopen_source_file(entry->full_name, entry->text.unicode_kind, &entry->text);
  size_t size = static_cast<size_t>(entry->text.end - entry->text.start);
  if (entry->saved_offset > size) {
    an_open_file_result result = {off_not_found, 0};
    file_open_error(es_catastrophe, fk_source, entry->full_name, &result);
  }
  entry->cursor = entry->text.start + entry->saved_offset;
}

// -- Entering a file ------------------------------------------------------------------------------

// How many entries of the stack read the file.
static int count_readings(const a_found_file* found) {
  int count = 0;
  for (int depth = 0; depth <= depth_input_stack; depth++) {
    const an_input_stack_entry* entry = &input_stack[depth];
    if (!entry->is_cloned &&
        (same_unique_file_ids(&entry->text.unique_id, &found->text.unique_id) ||
         strcmp(entry->full_name, found->full_name) == 0))
      count++;
  }
  return count;
}

static bool directory_is_system(const a_directory_name_entry* directory) {
  if (directory != nullptr && !directory->is_current_directory_slot)
    return directory->is_system;
  return in_system_header != 0;
}

static void note_file_in_listings(const char* name, const an_include_request& request) {
  if (list_makefile_dependencies)
    write_dependency_line(name);
  if (list_included_files && request.is_include)
    write_include_trace_line(name, depth_input_stack);
}

static void write_line_info(char mark) {
  gen_pp_line_info(true);
  gen_rlisting_line_info(mark);
}

// The record of the reading that begins.
static a_source_file* start_source_file(const char* name, const a_found_file* found,
                                        const an_include_request& request, bool is_system) {
  a_source_file_start start = {};
  start.file_name = found->full_name;
  start.full_name = found->full_name;
  start.name_as_written = copy_of_file_name(name);
  start.first_line = 1;
  start.is_include_file = request.is_include;
  start.is_angle_bracket_include = request.is_angle_bracket;
  start.is_preinclude = request.is_preinclude;
  start.is_macro_preinclude = request.is_macro_preinclude;
  start.is_system_header = is_system;
  return record_start_of_source_file(start,
                                     curr_ise != nullptr ? curr_ise->current_source_file : nullptr);
}

static void push_input_stack(const char* name, a_found_file* found,
                             const an_include_request& request) {
  int readings = count_readings(found);
  if (readings > max_recursive_readings)
    str_catastrophe(ec_include_recursion, found->full_name);
  if (curr_ise == nullptr)
    i_set_trans_unit_name(found->full_name);
  flush_pp_output_of_curr_line();
  bool is_system = directory_is_system(found->search_path_entry);
  a_source_file* file = start_source_file(name, found, request, is_system);
  if (depth_input_stack + 1 >= max_open_source_texts)
    give_text_back(curr_ise);
  an_input_stack_entry* entry = new_input_stack_entry();
  entry->text = found->text;
  entry->cursor = entry->text.start;
  entry->file_name = found->full_name;
  entry->full_name = found->full_name;
  entry->directory = f_directory_of(found->full_name, true);
  entry->search_path_entry = found->search_path_entry;
  entry->source_file = file;
  entry->current_source_file = file;
  entry->pp_if_stack_depth = base_pp_if_stack_depth;
  entry->next_index_line = static_cast<uint32_t>(initialize_file_index(file));
  entry->is_include_file = request.is_include;
  entry->is_system_directory = is_system;
  entry->is_recursive = readings > 0;
  entry->saved_any_tokens_fetched = any_tokens_fetched_from_curr_input_file != 0;
  entry->is_preinclude = request.is_preinclude;
  entry->stop_at_end_of_file = request.is_macro_preinclude;
  if (request.is_include)
    entry->include_history = find_include_history(found->full_name, true);
  any_tokens_fetched_from_curr_input_file = 0;
  base_pp_if_stack_depth = pp_if_stack_depth;
  set_top_of_input_stack(depth_input_stack + 1);
  if (request.is_include && !request.is_preinclude)
    push_current_directory(entry->directory);
  write_line_info(request.is_include ? '1' : ' ');
  note_file_in_listings(found->full_name, request);
}

// A file that isn't there need not stop a run that only preprocesses.
static an_error_severity missing_file_severity(const an_include_request& request) {
  if (request.is_preinclude || !request.is_include)
    return es_command_line_error;
  bool is_soft = do_preprocessing_only && !(gnu_mode && !generate_pp_output);
  return is_soft ? es_discretionary_error : es_catastrophe;
}

bool open_file_and_push_input_stack(const char* name, const an_include_request& request) {
  a_found_file found;
  an_open_file_result result;
  if (!open_file_for_input(name, request, &found, &result)) {
    file_open_error(missing_file_severity(request), fk_source, name, &result);
    return false;
  }
  if (found.was_suppressed) {
    actual_include_was_suppressed = 1;
    if (list_included_files)
      write_include_trace_line(found.full_name, depth_input_stack + 1);
    return false;
  }
  push_input_stack(name, &found, request);
  return true;
}

// -- Preincluded files ------------------------------------------------------------------

// The next name of the list; null at its end.
static const char* take_next_name(a_file_name_list_entry** next) {
  if (*next == nullptr)
    return nullptr;
  const char* name = (*next)->name;
  *next = (*next)->next;
  return name;
}

bool push_next_preinclude_file() {
  if (!preinclude_files_were_started) {
    preinclude_files_were_started = 1;
    next_macro_preinclude_file = macro_preinclude_file_list;
    next_preinclude_file = preinclude_file_list;
    push_current_directory("");
  }
  an_include_request request = {};
  request.use_search_path = true;
  request.is_include = true;
  request.is_preinclude = true;
  const char* name = take_next_name(&next_macro_preinclude_file);
  request.is_macro_preinclude = name != nullptr;
  while (name != nullptr || (name = take_next_name(&next_preinclude_file)) != nullptr) {
    if (open_file_and_push_input_stack(name, request))
      return true;
    name = nullptr;
    request.is_macro_preinclude = false;
  }
  pop_current_directory(curr_ise->directory);
  return false;
}

// -- Leaving a file ---------------------------------------------------------------------

static void settle_include_guard(const an_input_stack_entry* entry) {
  if (!entry->is_include_file)
    return;
  bool no_token_outside = !any_tokens_fetched_from_curr_input_file;
  if (entry->guard_state != igs_unguarded && entry->guard_state != igs_inside && no_token_outside)
    entry->include_history->is_guarded = 1;
  if (check_misra_c_2004 && entry->guard_state == igs_start && no_token_outside)
    pos_diagnostic(misra_required_severity, ec_misra_c_2004_19_15, &error_position);
}

static void check_conditionals_of_file(const an_input_stack_entry* entry) {
  if (!entry->is_include_file || !conditionals_may_span_files())
    verify_that_all_pp_ifs_were_closed();
  base_pp_if_stack_depth = entry->pp_if_stack_depth;
}

// What stands in the slot of the search path while the file is read: for a
// preinclude file that is the working directory.
static const char* directory_for_search(const an_input_stack_entry* entry) {
  return entry->is_preinclude ? "" : entry->directory;
}

static void remove_top_of_input_stack() {
  set_top_of_input_stack(depth_input_stack - 1);
  if (curr_ise != nullptr)
    get_text_again(curr_ise);
}

void pop_input_stack() {
  while (curr_ise->is_cloned)
    pop_cloned_input_stack_entry(curr_ise[-1].lines_read + 1);
  an_input_stack_entry* entry = curr_ise;
  settle_include_guard(entry);
  check_conditionals_of_file(entry);
  if (entry->current_source_file != entry->source_file)
    record_end_of_source_file(entry->current_source_file);
  record_end_of_source_file(entry->source_file);
  flush_pp_output_of_curr_line();
  close_source_file(&entry->text);
  any_tokens_fetched_from_curr_input_file = entry->saved_any_tokens_fetched;
  bool was_preinclude = entry->is_preinclude;
  bool was_include = entry->is_include_file;
  remove_top_of_input_stack();
  if (curr_ise == nullptr)
    return;
  record_resumption_of_source_file(curr_ise->current_source_file, next_line_of_current_file(),
                                   curr_ise->source_file, next_physical_line_of_current_file());
  if (was_include && !was_preinclude)
    pop_current_directory(directory_for_search(curr_ise));
  write_line_info('2');
  if (was_preinclude)
    push_next_preinclude_file();
}

// -- #line ------------------------------------------------------------------------------

void renumber_current_input_file(uint32_t line) {
  record_resumption_of_source_file(curr_ise->current_source_file, line, curr_ise->source_file,
                                   next_physical_line_of_current_file());
  curr_ise->lines_read = line - 1;
}

// Makes a record for the lines that follow, in the place of the clone in force.
static void start_clone(const char* name, uint32_t line, bool is_system, a_source_file* parent) {
  a_source_file_start start = {};
  start.file_name = copy_of_file_name(name);
  start.name_as_written = start.file_name;
  start.first_line = line;
  start.physical_file = curr_ise->source_file;
  start.first_physical_line = next_physical_line_of_current_file();
  start.is_include_file = curr_ise->is_include_file;
  start.is_system_header = is_system;
  curr_ise->current_source_file = record_start_of_source_file(start, parent);
  curr_ise->file_name = start.file_name;
  curr_ise->lines_read = line - 1;
  in_system_header = is_system;
}

void clone_current_input_file(const char* name, uint32_t line, bool is_system) {
  if (curr_ise->current_source_file != curr_ise->source_file)
    record_end_of_source_file(curr_ise->current_source_file);
  start_clone(name, line, is_system, curr_ise->source_file);
}

void push_cloned_input_stack_entry(const char* name, uint32_t line, bool is_system) {
  an_input_stack_entry* entry = new_input_stack_entry();
  a_source_file* parent = curr_ise->current_source_file;
  *entry = *curr_ise;
  entry->is_cloned = 1;
  entry->is_include_file = 1;
  curr_ise->text.storage = nullptr;
  set_top_of_input_stack(depth_input_stack + 1);
  start_clone(name, line, is_system, parent);
}

bool pop_cloned_input_stack_entry(uint32_t line) {
  if (curr_ise == nullptr || !curr_ise->is_cloned)
    return false;
  an_input_stack_entry* entry = curr_ise;
  an_input_stack_entry* below = entry - 1;
  record_end_of_source_file(entry->current_source_file);
  below->text = entry->text;
  below->cursor = entry->cursor;
  below->lines_since_start = entry->lines_since_start;
  below->next_index_line = entry->next_index_line;
  below->guard_state = entry->guard_state;
  below->lines_read = line - 1;
  set_top_of_input_stack(depth_input_stack - 1);
  record_resumption_of_source_file(curr_ise->current_source_file, line, curr_ise->source_file,
                                   next_physical_line_of_current_file());
  return true;
}

void mark_current_file_as_system_header(const a_source_position& position) {
  if (!curr_ise->is_include_file) {
    pos_warning(ec_pragma_gcc_system_header_in_primary_file, &position);
    return;
  }
  curr_ise->is_system_directory = 1;
  if (in_system_header)
    return;
  if (curr_ise->current_source_file != curr_ise->source_file)
    record_end_of_source_file(curr_ise->current_source_file);
  start_clone(curr_ise->file_name, next_line_of_current_file(), true, curr_ise->source_file);
}

// -- Include guards ---------------------------------------------------------------------

an_include_guard_state get_ifg_state() {
  if (curr_ise == nullptr || !curr_ise->is_include_file || curr_ise->include_history == nullptr)
    return igs_unguarded;
  if (curr_ise->guard_state < igs_unguarded && any_tokens_fetched_from_curr_input_file)
    curr_ise->guard_state = igs_unguarded;
  return curr_ise->guard_state;
}

void set_ifg_state(an_include_guard_state state) {
  if (curr_ise == nullptr)
    return;
  curr_ise->guard_state = state;
  if (state == igs_pragma_once && curr_ise->include_history != nullptr)
    curr_ise->include_history->is_pragma_once = 1;
}

void record_include_guard(const char* macro_name, size_t length, bool tests_not_defined) {
  char* name = static_cast<char*>(alloc_in_region(front_end_region, length + 1));
  memcpy(name, macro_name, length);
  name[length] = '\0';
  an_include_file_history* history = curr_ise->include_history;
  history->guard_macro_name = name;
  history->guard_tests_not_defined = tests_not_defined;
  history->guard_tests_defined = !tests_not_defined;
  curr_ise->guard_state = igs_inside;
}

// -- Initialisation ---------------------------------------------------------------------

void source_file_one_time_init() {
  source_file_search_one_time_init();
  source_line_one_time_init();
}

void source_file_init() {
  source_line_init();
}

void source_file_trans_unit_init() {
  source_file_reset();
}

void source_file_reset() {
  source_file_seq_reset(is_primary_translation_unit != 0);
  source_file_search_reset();
  while (depth_input_stack >= 0) {
    close_source_file(&curr_ise->text);
    set_top_of_input_stack(depth_input_stack - 1);
  }
  at_end_of_source_file = 0;
  any_tokens_fetched_from_curr_input_file = 0;
  actual_include_was_suppressed = 0;
  preinclude_files_were_started = 0;
  source_line_reset();
}
