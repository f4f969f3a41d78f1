// The layer between the compiler and its host: file names, opening and closing
// files, file identity, timers, name encodings, mapped memory, the module
// identifier, and the settings that hold before the command line is read.
//
// Inside, file names are UTF-8; each is recoded on its way to and from the
// system. `/` separates components, a leading `/` makes a name absolute, and
// "-" is a standard stream, which has no directory and no suffix.

#ifndef HOST_ENVIR_H
#define HOST_ENVIR_H

#include "basics.h"
#include "cmd_file.h"
#include "filename.h"
#include "safe_alloc.h"

#include <cstdio>
#include <sys/types.h>

// -- Start-up values -----------------------------------------------------------

// The directory the process was started in or moved to, in internal encoding.
extern const char* current_directory_name;
// The value of ZNT_BASE, or the empty string.
extern const char* znt_base_directory;
extern a_boolean host_little_endian;

// -- File names ------------------------------------------------------------------
//
// Results stand in a buffer of the function that is valid until its next call,
// unless said otherwise.

// The text behind the last `/`; the name itself for "-".
const char* start_of_file_name(const char* name);
// From the last `.` of the final component; the end of the string without one.
const char* suffix_of(const char* name);
// The directory part with its final `/`, interned for good in general memory
// or in the IL's.
const char* f_directory_of(const char* name, bool in_general_memory);
// The base name of `name` with another suffix and no directory; lives for good.
const char* derived_name(const char* name, const char* suffix);
bool is_absolute_file_name(const char* name);
// An absolute name without `.`, `..` and repeated slashes.
const char* normalize_file_name(const char* name);
// Adds a component to a path; the result in `buffer` is terminated.
void append_to_path_name(a_text_buffer* buffer, const char* name);
// A null `buffer` stands for a shared one.
const char* combine_dir_and_file_name(const char* directory, const char* name,
                                      a_text_buffer* buffer);
// Replaces the suffix of the name in `buffer`, in place.
void replace_file_name_suffix(const char* suffix, a_text_buffer* buffer);
// 0 when both name the same file by their text. With `strip_delimiters` the
// first and last characters of both are left aside; `ignore_case` is for the
// directories only.
int f_compare_file_names(const char* name1, const char* name2, bool strip_delimiters,
                         bool ignore_case);
// 0 when both directories are the same by their normalized names.
int compare_dir_names(const char* directory1, const char* directory2, bool ignore_case);
// A name for messages, directives and listings: quotes and backslashes, and
// bytes that don't print, can be escaped.
void write_file_name_to_text_buffer(const char* name, a_text_buffer* buffer, bool escape_quotes,
                                    bool escape_nonprinting);
const char* format_file_name(const char* name);
void write_file_name(const char* name, FILE* file, bool escape_quotes, bool escape_nonprinting);
// A name for a dependency line: blanks are escaped.
const char* makefile_format_file_name(const char* name);
// Between UTF-8 inside and the system's single bytes; a name that needs no
// change is returned itself, any other lives for good.
const char* file_name_in_external_encoding(const char* name);
const char* file_name_in_internal_encoding(const char* name);

// -- Opening and closing files -----------------------------------------------------

enum an_open_file_flag : uint16_t {
  off_not_found = 1,
  off_other_error = 2,
  off_not_a_regular_file = 4,
  off_directory = 8,
  off_invalid_name = 16
};

struct an_open_file_result {
  uint16_t flags;        // bits of an_open_file_flag; 0 is success
  uint16_t error_number; // errno for off_other_error
};

void clear_open_file_result(an_open_file_result* result);
// Null with the reason in `result` when the file can't be opened.
FILE* fopen_with_result(const char* name, const char* mode, an_open_file_result* result);
FILE* open_input_file(const char* name, bool binary, an_open_file_result* result);
// Refuses the name of the primary source file as invalid.
FILE* open_output_file(const char* name, bool binary, bool update, an_open_file_result* result);
bool okay_as_output_file(const char* name);
// Flushes, tests and closes; standard output stays open. True, with errno in
// `error_number`, if anything failed.
bool close_output_file(FILE* file, int* error_number);
// A catastrophe when the file can't be removed.
void delete_file(const char* name);
// A file without a name that lives as long as the stream; a catastrophe when
// there's none to be had.
FILE* open_temp_file(bool binary);
void close_temp_file(FILE* file);
bool is_regular_file(const char* name);
bool is_directory(const char* name);
// True for a regular file; 0 and false for one that can't be examined.
bool get_file_modification_time(const char* name, time_t* time);
// As ctime writes it, or null if it isn't a regular file.
const char* get_file_modification_time_string(const char* name, bool cut_newline);
// One line without its newline and trailing blanks; null at the end.
const char* read_line_from_file(FILE* file);
// The names in `directory` (null: the current one) with the given suffix, dot
// included: the first call opens, null ends the list.
const char* get_file_name_from_dir(bool first, const char* directory, const char* suffix);
// Moves to another directory; false if that fails.
bool change_directory(const char* name);

// -- File identity -------------------------------------------------------------------

// Device and serial number; all zero is unknown.
struct a_unique_file_id {
  uint64_t device;
  uint64_t serial;
};

void clear_unique_file_id(a_unique_file_id* id);
// False, with a cleared id, for a file that can't be examined.
bool get_unique_id_for_file(const char* name, a_unique_file_id* id);
bool same_unique_file_ids(const a_unique_file_id* a, const a_unique_file_id* b);
uint32_t hash_unique_file_id(const a_unique_file_id* id);

// -- Mapped memory ---------------------------------------------------------------------

size_t get_page_size();
// Rounds up to a whole page.
size_t do_page_alignment(size_t value);
// Moves the stream to the next page boundary; false on failure.
bool seek_to_page_alignment(FILE* file);
// Opens the temporary file that map_file_region takes its memory from.
void open_mapped_il_temp_file();
// Memory of the temporary file, private; null on any failure.
void* map_file_region(size_t size, size_t offset);
// A private mapping of a file at a fixed address; a catastrophe if it fails.
void map_input_file_to_region(FILE* file, size_t offset, size_t size, void* address,
                              const char* name);
void unmap_memory(void* address, size_t size);

// -- Encodings ---------------------------------------------------------------------------

// The length in bytes of the UTF-8 character at `text`, never 0: a bad
// sequence is its first byte and the continuation bytes behind it.
int utf8_char_length(const char* text);
// Decodes one character and returns its length. A bad sequence has the value 0
// and sets *invalid, which may be null. With `single_byte` each byte is a
// character.
int mbc_to_wide_char(const char* text, uint32_t* value, a_boolean* invalid, bool single_byte);
// Writes 1 to 4 bytes, without a terminator, and returns their number.
int unicode_to_utf8(uint32_t value, char* buffer);
// The number of 16-bit units, 1 or 2; 0 above 0x10FFFF.
int ucn_to_utf16(uint32_t value, uint16_t* units);
// The value of the target character of `count` bytes at `bytes`.
uint64_t extract_character_from_string(const char* bytes, int count);
// Readies the host's classification of characters for source text.
void set_multibyte_locale();

// -- Identity of the translation unit ------------------------------------------------------

// The module identifier of the current unit, made at the first call: from the
// stamp given, or from the source file's time and the current directory.
const char* make_module_id(const char* stamp);
void set_module_id(const char* text);
// Null when none was made.
const char* get_module_id();
// Each byte that is not a letter or digit becomes `_`.
void change_non_id_characters(char* text);
// The CRC-32 of IEEE 802.3; crc_32(b, crc_32(a, 0)) is that of a and b joined.
uint32_t crc_32(const char* text, uint32_t seed);

// -- Times and numbers -----------------------------------------------------------------------

struct a_timer {
  int64_t cpu_milliseconds;
  int64_t wall_seconds;
};

void get_timer(a_timer* timer);
// One line on f_error: the label, CPU and elapsed seconds.
void display_time_used(const char* label, const a_timer* start, const a_timer* end);

// A number in C notation. `*error` is 1 for an empty text, text left over, and
// a value out of range.
unsigned long strtoul_interface(const char* text, a_boolean* error);
// memcmp that takes null pointers for an empty range.
int smemcmp(const void* a, const void* b, size_t count);
int strcaseicmp(const char* a, const char* b);
int strcaseincmp(const char* a, const char* b, size_t count);
// The first place of `part` in `text` without regard to case, or null.
const char* strcaseistr(const char* text, const char* part);

// -- Initialisation ------------------------------------------------------------------------------

void host_envir_early_init();
void host_envir_one_time_init();
void host_envir_init();
void host_envir_trans_unit_init();

#endif
