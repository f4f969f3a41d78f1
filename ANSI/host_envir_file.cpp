// Opening and closing files, temporary files, file identity and mapped memory.

#include "host_envir.h"
#include "host_envir_int.h"

#include "error.h"
#include "mem_manage.h"
#include "mode_words.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr uint64_t line_buffer_size = 1024;

// -- Examining files -----------------------------------------------------------------

static bool examine_file(const char* name, struct stat* info) {
  return stat(file_name_in_external_encoding(name), info) == 0;
}

bool is_regular_file(const char* name) {
  struct stat info;
  return examine_file(name, &info) && S_ISREG(info.st_mode);
}

bool is_directory(const char* name) {
  struct stat info;
  return examine_file(name, &info) && S_ISDIR(info.st_mode);
}

bool get_file_modification_time(const char* name, time_t* time) {
  struct stat info;
  *time = 0;
  if (!examine_file(name, &info))
    return false;
  *time = info.st_mtime;
  return S_ISREG(info.st_mode);
}

const char* get_file_modification_time_string(const char* name, bool cut_newline) {
  time_t modification_time;
  if (!get_file_modification_time(name, &modification_time))
    return nullptr;
  char* text = ctime(&modification_time);
  if (text != nullptr && cut_newline)
    text[strcspn(text, "\n")] = '\0';
  return text;
}

void clear_unique_file_id(a_unique_file_id* id) {
  *id = {0, 0};
}

bool get_unique_id_for_file(const char* name, a_unique_file_id* id) {
  struct stat info;
  clear_unique_file_id(id);
  if (!examine_file(name, &info))
    return false;
  *id = {info.st_dev, info.st_ino};
  return true;
}

bool same_unique_file_ids(const a_unique_file_id* a, const a_unique_file_id* b) {
  return a->device == b->device && a->serial == b->serial && (a->device != 0 || a->serial != 0);
}

uint32_t hash_unique_file_id(const a_unique_file_id* id) {
  return static_cast<uint32_t>(id->device) + static_cast<uint32_t>(id->serial);
}

// -- Opening and closing ----------------------------------------------------------------

void clear_open_file_result(an_open_file_result* result) {
  *result = {0, 0};
}

void set_open_file_result(an_open_file_result* result, int error_number) {
  if (error_number == ENOENT || error_number == ENOTDIR)
    *result = {off_not_found, 0};
  else if (error_number == EISDIR)
    *result = {off_directory, 0};
  else
    *result = {off_other_error, static_cast<uint16_t>(error_number)};
}

FILE* fopen_with_result(const char* name, const char* mode, an_open_file_result* result) {
  clear_open_file_result(result);
  FILE* file = fopen(file_name_in_external_encoding(name), mode);
  if (file == nullptr)
    set_open_file_result(result, errno);
  return file;
}

FILE* open_input_file(const char* name, bool binary, an_open_file_result* result) {
  // A directory opens for reading and only fails at the first read; a device
  // may never end.
  struct stat info;
  clear_open_file_result(result);
  if (examine_file(name, &info)) {
    if (S_ISDIR(info.st_mode))
      result->flags = off_directory;
    else if (S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode))
      result->flags = off_not_a_regular_file;
  }
  if (result->flags != 0)
    return nullptr;
  return fopen_with_result(name, binary ? "rb" : "r", result);
}

// A link to the source file is the source file too.
bool okay_as_output_file(const char* name) {
  if (primary_source_file_name == nullptr)
    return true;
  a_unique_file_id output;
  a_unique_file_id source;
  get_unique_id_for_file(name, &output);
  get_unique_id_for_file(primary_source_file_name, &source);
  return f_compare_file_names(name, primary_source_file_name, false, false) != 0 &&
         !same_unique_file_ids(&output, &source);
}

FILE* open_output_file(const char* name, bool binary, bool update, an_open_file_result* result) {
  if (!okay_as_output_file(name)) {
    *result = {off_invalid_name, 0};
    return nullptr;
  }
  const char* mode = binary ? (update ? "w+b" : "wb") : (update ? "w+" : "w");
  return fopen_with_result(name, mode, result);
}

bool close_output_file(FILE* file, int* error_number) {
  errno = 0;
  bool failed = fflush(file) != 0 || ferror(file) != 0;
  *error_number = errno;
  if (file != stdout && fclose(file) != 0 && !failed) {
    failed = true;
    *error_number = errno;
  }
  return failed;
}

void delete_file(const char* name) {
  if (remove(file_name_in_external_encoding(name)) != 0)
    pos_str2_catastrophe(ec_file_delete_error_reason, &null_source_position, name, strerror(errno));
}

FILE* open_temp_file(bool binary) {
  char* name = fn_tmpnam(nullptr, nullptr, nullptr);
  FILE* file = fopen(name, binary ? "w+b" : "w+");
  unlink(name);
  if (file == nullptr)
    str_catastrophe(ec_cannot_open_temp_file_reason, name);
  free(name);
  return file;
}

void close_temp_file(FILE* file) {
  fclose(file);
}

// -- Reading --------------------------------------------------------------------------------

// Moves the end of a line back over its trailing blanks; a line of nothing but
// blanks keeps one.
static void cut_trailing_blanks(a_text_buffer* buffer) {
  if (buffer->used_size == 0 || buffer->data[buffer->used_size - 1] != ' ')
    return;
  add_1_char_to_text_buffer(buffer, '\0');
  const char* end = buffer->data + 1;
  for (const char* p = buffer->data; *p != '\0';) {
    bool is_blank = *p == ' ';
    p += utf8_char_length(p);
    if (!is_blank)
      end = p;
  }
  buffer->used_size = static_cast<uint64_t>(end - buffer->data);
}

const char* read_line_from_file(FILE* file) {
  static a_text_buffer* buffer;
  if (buffer == nullptr)
    buffer = alloc_text_buffer(line_buffer_size);
  reset_text_buffer(buffer);
  int c = getc(file);
  if (c == EOF)
    return nullptr;
  for (; c != EOF && c != '\n'; c = getc(file))
    add_1_char_to_text_buffer(buffer, static_cast<char>(c));
  cut_trailing_blanks(buffer);
  add_1_char_to_text_buffer(buffer, '\0');
  return buffer->data;
}

const char* get_file_name_from_dir(bool first, const char* directory, const char* suffix) {
  static DIR* open_directory;
  if (first) {
    if (open_directory != nullptr)
      closedir(open_directory);
    open_directory =
        opendir(directory != nullptr ? file_name_in_external_encoding(directory) : ".");
  }
  if (open_directory == nullptr)
    return nullptr;
  while (dirent* entry = readdir(open_directory)) {
    const char* name = file_name_in_internal_encoding(entry->d_name);
    if (strcmp(suffix_of(name), suffix) == 0)
      return name;
  }
  closedir(open_directory);
  open_directory = nullptr;
  return nullptr;
}

bool change_directory(const char* name) {
  if (chdir(file_name_in_external_encoding(name)) != 0)
    return false;
  set_current_directory_name();
  return true;
}

// -- Mapped memory ------------------------------------------------------------------------------

static FILE* mapped_temp_file;

size_t get_page_size() {
  return static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

size_t do_page_alignment(size_t value) {
  size_t page = get_page_size();
  return (value + page - 1) / page * page;
}

bool seek_to_page_alignment(FILE* file) {
  long offset = ftell(file);
  return offset >= 0 &&
         fseek(file, static_cast<long>(do_page_alignment(static_cast<size_t>(offset))), SEEK_SET) ==
             0;
}

void open_mapped_il_temp_file() {
  if (mapped_temp_file != nullptr)
    close_temp_file(mapped_temp_file);
  mapped_temp_file = open_temp_file(true);
}

// Makes the file reach to `size` bytes.
static bool extend_mapped_temp_file(size_t size) {
  return fseek(mapped_temp_file, static_cast<long>(size), SEEK_SET) == 0 &&
         putc('\0', mapped_temp_file) != EOF && fflush(mapped_temp_file) == 0;
}

// Stored memory holds addresses, so each run must have the parts of the file at
// the same ones: far from where programs, libraries and stacks are placed. If
// the place is taken, the system chooses another, which only a run that wants
// stored memory minds.
static void* map_mapped_temp_file(size_t size, size_t offset) {
  constexpr uintptr_t start_of_mapped_file = 0x2000'0000'0000;
  void* wanted = reinterpret_cast<void*>(start_of_mapped_file + offset);
  const int protection = PROT_READ | PROT_WRITE;
  const int file = fileno(mapped_temp_file);
  const off_t file_offset = static_cast<off_t>(offset);
  void* address =
      mmap(wanted, size, protection, MAP_PRIVATE | MAP_FIXED_NOREPLACE, file, file_offset);
  if (address == MAP_FAILED)
    address = mmap(nullptr, size, protection, MAP_PRIVATE, file, file_offset);
  return address;
}

void* map_file_region(size_t size, size_t offset) {
  if (mapped_temp_file == nullptr || !extend_mapped_temp_file(offset + size))
    return nullptr;
  void* address = map_mapped_temp_file(size, offset);
  return address == MAP_FAILED ? nullptr : address;
}

void map_input_file_to_region(FILE* file, size_t offset, size_t size, void* address,
                              const char* name) {
  void* mapped = mmap(address, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, fileno(file),
                      static_cast<off_t>(offset));
  if (mapped == MAP_FAILED) {
    int error_number = errno;
    error_position = null_source_position;
    str_errno_catastrophe(ec_unable_to_get_mapped_memory_reason, name, error_number);
  }
}

void unmap_memory(void* address, size_t size) {
  munmap(address, size);
}
