#include "if_write_util.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "error.h"
#include "if_write.h"
#include "type_pkg.h"

namespace {

std::string output_name;

// Records grow by this much, which is also the stream's buffer.
constexpr size_t buffer_step = 32768;

} // namespace

void if_set_output_name(const char* name) {
  output_name = name != nullptr ? name : "";
}

void if_remove_output_file() {
  struct stat status;
  // A device that stands in for the file must not go.
  if (!output_name.empty() && stat(output_name.c_str(), &status) == 0 && S_ISREG(status.st_mode))
    unlink(output_name.c_str());
  output_name.clear();
}

void if_write_failure(int errno_value) {
  static const char file_kind[] = "generated IL output";
  if (errno_value == 0)
    str_catastrophe(ec_file_write_error, file_kind);
  pos_str2_catastrophe(ec_file_write_error_errno, &error_position, file_kind,
                       strerror(errno_value));
}

void if_stop(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vprintf(format, args);
  va_end(args);
  putchar('\n');
  fflush(stdout);
  if_remove_output_file();
  exit(1);
}

void I_FILE::set_up_buffers() {
  setvbuf(stream, nullptr, _IOFBF, buffer_step);
  grow_buffer();
}

// Makes room for one more step of the record under construction.
void I_FILE::grow_buffer() {
  size_t used = buffer_end - buffer;
  char* grown = static_cast<char*>(realloc(buffer, buffer_capacity + buffer_step));
  if (grown == nullptr)
    if_stop(">> ICODE Buffer size exceeded and realloc failed");
  buffer = grown;
  buffer_capacity += buffer_step;
  buffer_end = buffer + used;
}

void I_FILE::append(const void* bytes, size_t count) {
  while (count > buffer_capacity - (buffer_end - buffer))
    grow_buffer();
  memcpy(buffer_end, bytes, count);
  buffer_end += count;
}

void I_FILE::append_byte(unsigned char byte) {
  if (buffer_end == buffer + buffer_capacity)
    grow_buffer();
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

void I_FILE::i_write_uint(unsigned long value) {
  while (value > 0x7F) {
    append_byte(static_cast<unsigned char>(value | 0x80));
    value >>= 7;
  }
  append_byte(static_cast<unsigned char>(value));
}

void I_FILE::i_write_sint(long value) {
  // The last group's bit 6 is the sign of all that isn't written.
  while (value < -64 || value > 63) {
    append_byte(static_cast<unsigned char>(value | 0x80));
    value >>= 7;
  }
  append_byte(static_cast<unsigned char>(value & 0x7F));
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
  while (type->equiv != nullptr)
    type = type->equiv;
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
  unsigned char tag_byte = static_cast<unsigned char>(tag);
  size_t length = buffer_end - buffer;
  i_write_uint(length);
  to_stream(&tag_byte, 1);
  to_stream(buffer + length, buffer_end - buffer - length);
  to_stream(buffer, length);
  buffer_end = buffer;
}

void I_FILE::i_write_eof() {
  unsigned char tag_byte = iftag_eof;
  to_stream(&tag_byte, 1);
}

// A failed write shows at if_close; the reason is known only now.
void I_FILE::to_stream(const void* bytes, size_t count) {
  if (fwrite(bytes, 1, count, stream) != count)
    note_failure();
}
