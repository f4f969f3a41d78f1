// Encodings of characters, comparisons without regard to case, numbers, and
// the cyclic redundancy code of module identifiers.

#include "host_envir.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cstring>

static bool is_continuation_byte(char c) {
  return (c & 0xC0) == 0x80;
}

// The length that the first byte of a well-formed sequence promises; 0 for a
// byte that starts none.
static int promised_length(unsigned char first) {
  if (first < 0x80)
    return 1;
  if ((first & 0xE0) == 0xC0)
    return 2;
  if ((first & 0xF0) == 0xE0)
    return 3;
  return (first & 0xF8) == 0xF0 ? 4 : 0;
}

// The length of the character at `text`, and whether it is well formed.
static int measure_utf8_char(const char* text, bool* well_formed) {
  int promised = promised_length(static_cast<unsigned char>(text[0]));
  int length = 1;
  while (length < promised && is_continuation_byte(text[length]))
    length++;
  *well_formed = promised != 0 && length == promised;
  if (!*well_formed)
    while (is_continuation_byte(text[length]))
      length++;
  return length;
}

int utf8_char_length(const char* text) {
  bool well_formed;
  return measure_utf8_char(text, &well_formed);
}

int mbc_to_wide_char(const char* text, uint32_t* value, a_boolean* invalid, bool single_byte) {
  unsigned char first = static_cast<unsigned char>(text[0]);
  if (invalid != nullptr)
    *invalid = 0;
  if (single_byte || first < 0x80) {
    *value = first;
    return 1;
  }
  bool well_formed;
  int length = measure_utf8_char(text, &well_formed);
  *value = 0;
  if (!well_formed) {
    if (invalid != nullptr)
      *invalid = 1;
    return length;
  }
  *value = first & (0xFFu >> (length + 1));
  for (int i = 1; i < length; i++)
    *value = *value << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
  return length;
}

int unicode_to_utf8(uint32_t value, char* buffer) {
  int length = value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
  if (length == 1) {
    buffer[0] = static_cast<char>(value);
    return 1;
  }
  for (int i = length - 1; i > 0; i--) {
    buffer[i] = static_cast<char>(0x80 | (value & 0x3F));
    value >>= 6;
  }
  static const unsigned char lead[] = {0xC0, 0xE0, 0xF0};
  buffer[0] = static_cast<char>(lead[length - 2] | value);
  return length;
}

int ucn_to_utf16(uint32_t value, uint16_t* units) {
  if (value > 0x10FFFF)
    return 0;
  if (value < 0x10000) {
    units[0] = static_cast<uint16_t>(value);
    return 1;
  }
  value -= 0x10000;
  units[0] = static_cast<uint16_t>(0xD800 | value >> 10);
  units[1] = static_cast<uint16_t>(0xDC00 | (value & 0x3FF));
  return 2;
}

void set_multibyte_locale() {
  setlocale(LC_CTYPE, "");
}

// Bit by bit with the reflected polynomial: identifiers are made once a run,
// a table wouldn't pay.
uint32_t crc_32(const char* text, uint32_t seed) {
  uint32_t crc = seed ^ 0xFFFFFFFFu;
  for (; *text != '\0'; text++) {
    crc ^= static_cast<unsigned char>(*text);
    for (int bit = 0; bit < 8; bit++)
      crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0);
  }
  return crc ^ 0xFFFFFFFFu;
}

unsigned long strtoul_interface(const char* text, a_boolean* error) {
  char* end;
  errno = 0;
  unsigned long value = strtoul(text, &end, 0);
  bool out_of_range = (errno == ERANGE || errno == EINVAL) && (value == 0 || value == ULONG_MAX);
  *error = *text == '\0' || *end != '\0' || out_of_range;
  return value;
}

int smemcmp(const void* a, const void* b, size_t count) {
  return count == 0 ? 0 : memcmp(a, b, count);
}

static int lower(char c) {
  return tolower(static_cast<unsigned char>(c));
}

int strcaseicmp(const char* a, const char* b) {
  while (*a != '\0' && lower(*a) == lower(*b)) {
    a++;
    b++;
  }
  return lower(*a) - lower(*b);
}

int strcaseincmp(const char* a, const char* b, size_t count) {
  for (; count != 0; count--, a++, b++)
    if (*a == '\0' || lower(*a) != lower(*b))
      return lower(*a) - lower(*b);
  return 0;
}

const char* strcaseistr(const char* text, const char* part) {
  size_t length = strlen(part);
  for (;; text++) {
    if (strcaseincmp(text, part, length) == 0)
      return text;
    if (*text == '\0')
      return nullptr;
  }
}
