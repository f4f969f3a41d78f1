#include "if_write_util.h"

#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "if_write.h"
#include "type_pkg.h"

namespace {

// The unfinished file without links in its path. Signal handlers read it, so
// the flag is set only while the name is whole.
char output_name[PATH_MAX];
volatile sig_atomic_t output_is_unfinished = 0;

// The buffer grows by this much; the file is written in pieces of at least it.
constexpr size_t buffer_step = 32768;

// Tag and length of a record that is shorter than 128 bytes, as nearly all are.
constexpr size_t short_head_length = 2;

} // namespace

void if_set_output_name(const char* name) {
  [[maybe_unused]] static const int registered = atexit(if_remove_output_file);
  output_is_unfinished = 0;
  if (name != nullptr && realpath(name, output_name) != nullptr)
    output_is_unfinished = 1;
}

void if_remove_output_file() {
  if (!output_is_unfinished)
    return;
  output_is_unfinished = 0;
  struct stat status;
  // A device that stands in for the file must not go.
  if (lstat(output_name, &status) == 0 && S_ISREG(status.st_mode))
    unlink(output_name);
}

void if_stop(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vprintf(format, args);
  va_end(args);
  putchar('\n');
  exit(1);
}

void I_FILE::set_up_buffer() {
  // Records are gathered here: a call of the stream for each of them would cost
  // more than their contents.
  setvbuf(stream, nullptr, _IONBF, 0);
  grow_buffer();
  begin_record();
}

// Makes room for one more step.
void I_FILE::grow_buffer() {
  size_t used = buffer_end - buffer;
  char* grown = static_cast<char*>(realloc(buffer, buffer_capacity + buffer_step));
  if (grown == nullptr)
    if_stop(">> ICODE Buffer size exceeded and realloc failed");
  buffer = grown;
  buffer_capacity += buffer_step;
  buffer_end = buffer + used;
}

// The head of a record is known when its body is complete.
void I_FILE::begin_record() {
  record_start = buffer_end - buffer;
  if (record_start >= buffer_step)
    write_finished_records();
  make_room(short_head_length);
  buffer_end += short_head_length;
}

// Makes sure that `count` bytes fit behind the record.
inline void I_FILE::make_room(size_t count) {
  while (count > buffer_capacity - (buffer_end - buffer))
    grow_buffer();
}

void I_FILE::append(const void* bytes, size_t count) {
  make_room(count);
  memcpy(buffer_end, bytes, count);
  buffer_end += count;
}

void I_FILE::append_byte(unsigned char byte) {
  make_room(1);
  *buffer_end++ = static_cast<char>(byte);
}

void I_FILE::i_write_i8(int value) {
  append_byte(static_cast<unsigned char>(value));
}

void I_FILE::i_write_bool(bool value) {
  append_byte(value);
}

void I_FILE::i_write_i16(int value) {
  if (value < -32768 || value > 65535)
    if_stop(">> Value exceeds size of short");
  append_byte(static_cast<unsigned char>(value));
  append_byte(static_cast<unsigned char>(value >> 8));
}

void I_FILE::i_write_i32(int value) {
  for (int shift = 0; shift < 32; shift += 8)
    append_byte(static_cast<unsigned char>(value >> shift));
}

// The most bytes that a number of 64 bits takes in groups of 7.
static constexpr size_t max_number_length = 10;

// Stores the number at `end`, where it fits; returns the place behind it.
static char* store_uint(char* end, unsigned long value) {
  while (value > 0x7F) {
    *end++ = static_cast<char>(value | 0x80);
    value >>= 7;
  }
  *end++ = static_cast<char>(value);
  return end;
}

void I_FILE::i_write_uint(unsigned long value) {
  make_room(max_number_length);
  buffer_end = store_uint(buffer_end, value);
}

void I_FILE::i_write_sint(long value) {
  make_room(max_number_length);
  // The last group's bit 6 is the sign of all that isn't written.
  while (value < -64 || value > 63) {
    *buffer_end++ = static_cast<char>(value | 0x80);
    value >>= 7;
  }
  *buffer_end++ = static_cast<char>(value & 0x7F);
}

void I_FILE::i_write_string(const char* text, unsigned long count) {
  if (text == nullptr)
    append_byte(0);
  else
    append(text, count != 0 ? count : strlen(text) + 1);
}

void I_FILE::i_write_typeref(TYPE* type) {
  if (type == nullptr) {
    i_write_uint(0);
    return;
  }
  type = type->final_equiv();
  type->referenced = true;
  i_write_uint(type->uid);
}

void I_FILE::i_write_psn(const PSN* psn) {
  if (psn == nullptr) {
    i_write_uint(0);
    return;
  }
  i_write_uint(i_enter_file_name(psn->file != nullptr ? psn->file : if_no_file));
  i_write_uint(psn->line);
  i_write_uint(psn->column);
}

void I_FILE::i_flush(int tag) {
  size_t length = buffer_end - buffer - record_start - short_head_length;
  char head[1 + max_number_length];
  head[0] = static_cast<char>(tag);
  size_t head_length = store_uint(head + 1, length) - head;
  if (head_length > short_head_length) {
    make_room(head_length - short_head_length);
    char* body = buffer + record_start + short_head_length;
    memmove(buffer + record_start + head_length, body, length);
    buffer_end += head_length - short_head_length;
  }
  memcpy(buffer + record_start, head, head_length);
  begin_record();
}

void I_FILE::i_write_eof() {
  buffer[record_start] = static_cast<char>(iftag_eof);
  buffer_end = buffer + record_start + 1;
  begin_record();
}

// A failed write shows at if_close; the reason is known only now.
void I_FILE::write_finished_records() {
  if (fwrite(buffer, 1, record_start, stream) != record_start)
    note_failure();
  written_length += static_cast<long>(record_start);
  size_t rest = buffer_end - buffer - record_start;
  memmove(buffer, buffer + record_start, rest);
  buffer_end = buffer + rest;
  record_start = 0;
}
