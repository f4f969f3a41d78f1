// The text of a source file: reading it whole, its encoding, and finding a
// line of it again.

#include "host_envir_int.h"
#include "source_file_int.h"

#include "error.h"
#include "mode_words.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// Sequence numbers and offsets in a line have 32 bits.
static constexpr size_t max_source_size = 0x7FFFFFFF;
static constexpr size_t first_read_size = 0x10000;
// From this size on a file is mapped: its pages cost more than the reading.
static constexpr size_t min_mapped_size = 0x100000;

static char* resize_text(char* storage, size_t size) {
  char* resized = static_cast<char*>(realloc(storage, size));
  if (resized == nullptr)
    catastrophe(ec_out_of_memory);
  return resized;
}

// Reads all of a descriptor into `storage`. `size_hint` is the expected size.
// Returns 0 or the errno of the failure.
static int read_whole_file(int descriptor, size_t size_hint, char** storage, size_t* size) {
  size_t capacity = size_hint + 1;
  *storage = resize_text(nullptr, capacity);
  *size = 0;
  for (;;) {
    if (*size == capacity) {
      capacity = capacity < first_read_size ? first_read_size : capacity * 2;
      *storage = resize_text(*storage, capacity);
    }
    ssize_t count = read(descriptor, *storage + *size, capacity - *size);
    if (count == 0)
      return 0;
    if (count < 0) {
      if (errno != EINTR)
        return errno;
      continue;
    }
    *size += static_cast<size_t>(count);
    if (*size > max_source_size)
      return EFBIG;
  }
}

// -- Encodings -------------------------------------------------------------------------

// The kind that a byte order mark names; its length, 0 without one.
static a_unicode_source_kind_tag unicode_kind_of(const char* text, size_t size,
                                                 size_t* mark_length) {
  *mark_length = 0;
  if (!check_for_byte_order_mark)
    return static_cast<a_unicode_source_kind_tag>(default_unicode_source_kind);
  if (size >= 3 && memcmp(text, "\xEF\xBB\xBF", 3) == 0) {
    *mark_length = 3;
    return usk_utf8;
  }
  if (size >= 2 && memcmp(text, "\xFF\xFE", 2) == 0) {
    *mark_length = 2;
    return usk_utf16_le;
  }
  if (size >= 2 && memcmp(text, "\xFE\xFF", 2) == 0) {
    *mark_length = 2;
    return usk_utf16_be;
  }
  return static_cast<a_unicode_source_kind_tag>(default_unicode_source_kind);
}

static uint32_t utf16_unit(const char* p, bool big_endian) {
  uint32_t first = static_cast<unsigned char>(p[0]);
  uint32_t second = static_cast<unsigned char>(p[1]);
  return big_endian ? first << 8 | second : second << 8 | first;
}

// Rewrites UTF-16 as UTF-8. A surrogate without its partner reads as "?"; an
// odd last byte is no character.
static void convert_utf16_to_utf8(a_source_text* text) {
  bool big_endian = text->unicode_kind == usk_utf16_be;
  size_t units = static_cast<size_t>(text->end - text->start) / 2;
  char* converted = resize_text(nullptr, units * 3 + 1);
  char* out = converted;
  const char* p = text->start;
  const char* end = p + units * 2;
  while (p < end) {
    uint32_t value = utf16_unit(p, big_endian);
    p += 2;
    if (value >= 0xD800 && value < 0xE000) {
      uint32_t low = value < 0xDC00 && p < end ? utf16_unit(p, big_endian) : 0;
      if (low >= 0xDC00 && low < 0xE000) {
        value = 0x10000 + ((value & 0x3FF) << 10) + (low & 0x3FF);
        p += 2;
      } else {
        value = '?';
      }
    }
    out += unicode_to_utf8(value, out);
  }
  close_source_file(text);
  text->storage = converted;
  text->start = converted;
  text->end = out;
}

// Each byte of a word set to the same value.
static constexpr uint64_t in_all_bytes(unsigned char c) {
  return 0x0101010101010101u * c;
}

// Not 0 if a byte of the word is 0.
static uint64_t zero_bytes(uint64_t word) {
  return (word - in_all_bytes(1)) & ~word & in_all_bytes(0x80);
}

const char* find_trigraph(const char* p, const char* end) {
  while ((p = static_cast<const char*>(memchr(p, '?', static_cast<size_t>(end - p))))) {
    if (p + 2 < end && p[1] == '?' && strchr("=/'()!<>-", p[2]) != nullptr)
      return p;
    p++;
  }
  return nullptr;
}

// What the reader of lines need not look for in this file: one pass, a word at
// a time.
static void note_rare_characters(a_source_text* text) {
  uint64_t bits = 0;
  uint64_t nuls = 0;
  auto note = [&](uint64_t word) {
    bits |= word;
    nuls |= zero_bytes(word);
  };
  const char* p = text->start;
  uint64_t word;
  for (; text->end - p >= static_cast<ptrdiff_t>(sizeof word); p += sizeof word) {
    memcpy(&word, p, sizeof word);
    note(word);
  }
  for (; p < text->end; p++) {
    word = in_all_bytes(' ');
    memcpy(&word, p, 1);
    note(word);
  }
  text->may_hold_nul = nuls != 0;
  text->is_ascii = (bits & in_all_bytes(0x80)) == 0;
  text->next_trigraph = find_trigraph(text->start, text->end);
}

static void set_up_text(a_source_text* text, size_t size) {
  size_t mark_length;
  text->unicode_kind = unicode_kind_of(text->storage, size, &mark_length);
  text->start = text->storage + mark_length;
  text->end = text->storage + size;
  if (text->unicode_kind >= usk_utf16_le)
    convert_utf16_to_utf8(text);
  if (text->unicode_kind != usk_none)
    multibyte_chars_in_source_enabled = 1;
  note_rare_characters(text);
}

// -- Opening ------------------------------------------------------------------------------

// A descriptor of a regular file, or of standard input for "-"; -1 with the
// reason in `result`.
static int open_source_descriptor(const char* name, struct stat* info,
                                  an_open_file_result* result) {
  clear_open_file_result(result);
  if (strcmp(name, "-") == 0)
    return fstat(STDIN_FILENO, info) == 0 ? dup(STDIN_FILENO) : -1;
  // Without O_NONBLOCK the opening of a pipe would wait for a writer.
  int descriptor = open(file_name_in_external_encoding(name), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0 || fstat(descriptor, info) != 0) {
    set_open_file_result(result, errno);
    return descriptor;
  }
  if (S_ISDIR(info->st_mode))
    result->flags = off_directory;
  else if (!S_ISREG(info->st_mode))
    result->flags = off_not_a_regular_file;
  return descriptor;
}

// Fills in storage and size. Returns 0 or the errno of the failure.
static int load_text(int descriptor, const struct stat& info, a_source_text* text, size_t* size) {
  size_t file_size = S_ISREG(info.st_mode) ? static_cast<size_t>(info.st_size) : first_read_size;
  if (file_size > max_source_size)
    return EFBIG;
  if (S_ISREG(info.st_mode) && file_size >= min_mapped_size) {
    void* mapped = mmap(nullptr, file_size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
    if (mapped != MAP_FAILED) {
      text->storage = static_cast<char*>(mapped);
      text->mapped_size = *size = file_size;
      return 0;
    }
  }
  return read_whole_file(descriptor, file_size, &text->storage, size);
}

bool open_source_file(const char* name, a_source_text* text, an_open_file_result* result) {
  struct stat info = {};
  int descriptor = open_source_descriptor(name, &info, result);
  if (descriptor < 0 && result->flags == 0)
    set_open_file_result(result, errno);
  *text = {};
  if (result->flags == 0) {
    size_t size = 0;
    int error_number = load_text(descriptor, info, text, &size);
    if (error_number != 0)
      set_open_file_result(result, error_number);
    else
      set_up_text(text, size);
    text->unique_id = {info.st_dev, info.st_ino};
  }
  if (descriptor >= 0)
    close(descriptor);
  if (result->flags != 0)
    close_source_file(text);
  return result->flags == 0;
}

void close_source_file(a_source_text* text) {
  if (text->mapped_size != 0)
    munmap(text->storage, text->mapped_size);
  else
    free(text->storage);
  text->storage = nullptr;
  text->mapped_size = 0;
  text->start = text->end = nullptr;
}

void reopen_source_file(const char* name, a_unicode_source_kind_tag kind, a_source_text* text) {
  an_open_file_result result;
  if (!open_source_file(name, text, &result))
    file_open_error(es_catastrophe, fk_source, name, &result);
  if (text->unicode_kind != kind) {
    result = {off_other_error, EILSEQ};
    file_open_error(es_catastrophe, fk_source, name, &result);
  }
}

// -- Finding a line again --------------------------------------------------------------------

// The text that the last fetch read.
static a_source_text fetched_text;
static const char* fetched_name;

void release_fetched_source_text() {
  close_source_file(&fetched_text);
  fetched_name = nullptr;
}

// The text of a file record: that of the input stack while the file is read,
// else one read again and kept.
static const a_source_text* text_of_source_file(const a_source_file* file) {
  for (int depth = depth_input_stack; depth >= 0; depth--) {
    const an_input_stack_entry* entry = input_stack_entry(depth);
    if (entry->source_file == file && entry->text.storage != nullptr)
      return &entry->text;
  }
  if (file->full_name == nullptr || strcmp(file->full_name, "-") == 0)
    return nullptr;
  if (fetched_name == nullptr || strcmp(fetched_name, file->full_name) != 0) {
    release_fetched_source_text();
    an_open_file_result result;
    if (!open_source_file(file->full_name, &fetched_text, &result))
      return nullptr;
    fetched_name = file->full_name;
  }
  return &fetched_text;
}

bool fetch_physical_source_line(const a_source_file* file, uint32_t line, uint32_t from_line,
                                size_t from_offset, const char** start, size_t* length) {
  const a_source_text* text = text_of_source_file(file);
  if (text == nullptr || from_line == 0 || from_line > line ||
      from_offset > static_cast<size_t>(text->end - text->start))
    return false;
  const char* p = text->start + from_offset;
  for (; from_line < line; from_line++) {
    p = static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(text->end - p)));
    if (p == nullptr)
      return false;
    p++;
  }
  if (p == text->end)
    return false;
  const char* end = static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(text->end - p)));
  if (end == nullptr)
    end = text->end;
  while (end > p && end[-1] == '\r')
    end--;
  *start = p;
  *length = static_cast<size_t>(end - p);
  return true;
}
