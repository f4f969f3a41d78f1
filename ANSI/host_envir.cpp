// Start-up and identity of the host environment.

#include "host_envir.h"
#include "host_envir_int.h"

#include "cfe.h"
#include "il.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"
#include "target.h"
#include "trans_unit.h"

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <unistd.h>

static constexpr size_t directory_name_growth = 256;
// A stamp and second text of this length or more become a code.
static constexpr size_t max_plain_stamp_length = 8;

const char* current_directory_name = "";
const char* znt_base_directory = "";
a_boolean host_little_endian = 1;

// -- Times ---------------------------------------------------------------------------

void get_timer(a_timer* timer) {
  timer->cpu_milliseconds = static_cast<int64_t>(static_cast<double>(clock()) * 1000.0 / 1e6);
  timer->wall_seconds = time(nullptr);
}

void display_time_used(const char* label, const a_timer* start, const a_timer* end) {
  double cpu = static_cast<double>(end->cpu_milliseconds - start->cpu_milliseconds) / 1000.0;
  double elapsed = difftime(end->wall_seconds, start->wall_seconds);
  fprintf(f_error, "%-30s %10.2f (CPU) %10.2f (elapsed)\n", label, cpu, elapsed);
}

// -- The module identifier --------------------------------------------------------------

// Of the current translation unit; null when none was made.
static char* curr_module_id;

void change_non_id_characters(char* text) {
  for (; *text != '\0'; text++)
    if (!isalnum(static_cast<unsigned char>(*text)))
      *text = '_';
}

// The name of the source file that the identifier is for: the current unit's,
// or the first one's when the front end has ended.
static const char* module_source_name() {
  const a_source_file* file = il_header.source_files;
  if (in_front_end && curr_translation_unit != nullptr &&
      curr_translation_unit->primary_source_file != nullptr)
    file = curr_translation_unit->primary_source_file;
  return file != nullptr ? file->file_name : "";
}

// The time that identifies a source file: its own, or the compilation's for one
// that is no regular file.
static std::string time_stamp_of(const char* name) {
  const char* text = get_file_modification_time_string(name, false);
  if (text == nullptr)
    text = il_header.compilation_time;
  return text != nullptr ? text : "";
}

const char* make_module_id(const char* stamp) {
  if (curr_module_id != nullptr)
    return curr_module_id;
  const char* name = module_source_name();
  std::string first = stamp != nullptr ? stamp : time_stamp_of(name);
  std::string second = stamp != nullptr ? "" : current_directory_name;
  size_t joining = second.empty() ? 0 : 1;
  if (first.size() + second.size() + joining > max_plain_stamp_length) {
    char code[16];
    uint32_t crc = crc_32(second.c_str(), crc_32(first.c_str(), 0));
    snprintf(code, sizeof code, "%08lx", static_cast<unsigned long>(crc));
    first = code;
    second.clear();
  }
  std::string base = start_of_file_name(name);
  std::string id = "_" + std::to_string(base.size()) + "_" + base + "_" + first;
  if (!second.empty())
    id += "_" + second;
  change_non_id_characters(id.data());
  set_module_id(id.c_str());
  return curr_module_id;
}

void set_module_id(const char* text) {
  size_t size = strlen(text) + 1;
  curr_module_id = static_cast<char*>(alloc_general(size));
  memcpy(curr_module_id, text, size);
}

const char* get_module_id() {
  return curr_module_id;
}

// -- Characters of the target ----------------------------------------------------------------

uint64_t extract_character_from_string(const char* bytes, int count) {
  uint64_t value = 0;
  for (int i = 0; i < count; i++) {
    int index = targ_little_endian ? count - 1 - i : i;
    value = value << targ_char_bit | static_cast<unsigned char>(bytes[index]);
  }
  return value;
}

// -- Start-up ----------------------------------------------------------------------------------

// The buffer grows as long as the name doesn't fit.
void set_current_directory_name() {
  char* buffer = nullptr;
  for (size_t size = directory_name_growth;; size += directory_name_growth) {
    buffer = static_cast<char*>(saferealloc(buffer, size));
    if (getcwd(buffer, size) != nullptr)
      break;
    if (errno != ERANGE) {
      buffer[0] = '\0';
      break;
    }
  }
  const char* name = file_name_in_internal_encoding(buffer);
  size_t size = strlen(name) + 1;
  current_directory_name = static_cast<char*>(memcpy(alloc_general(size), name, size));
  free(buffer);
}

static void handle_termination(int) {
  fputc('\n', f_error);
  term_compilation(es_catastrophe);
}

// An interrupt that the parent process ignores stays ignored. A file that
// outgrows its limit shows up as a write error.
static void install_signal_handlers() {
  struct sigaction old_action;
  if (sigaction(SIGINT, nullptr, &old_action) != 0 || old_action.sa_handler != SIG_IGN)
    signal(SIGINT, handle_termination);
  signal(SIGTERM, handle_termination);
  signal(SIGXFSZ, SIG_IGN);
}

void host_envir_early_init() {
  const char* base = getenv("ZNT_BASE");
  znt_base_directory = base != nullptr ? file_name_in_internal_encoding(base) : "";
  host_little_endian = 1;
  set_current_directory_name();
  install_signal_handlers();
  source_file_early_init();
}

void host_envir_one_time_init() {
  f_register_trans_unit_variable(&incl_search_path, sizeof incl_search_path, 0);
  f_register_trans_unit_variable(&sys_incl_search_path, sizeof sys_incl_search_path, 0);
  f_register_trans_unit_variable(&curr_module_id, sizeof curr_module_id, 0);
  source_file_one_time_init();
}

void host_envir_init() {
  clear_il_directory_list();
  source_file_init();
}

void host_envir_trans_unit_init() {
  curr_module_id = nullptr;
  source_file_trans_unit_init();
}
