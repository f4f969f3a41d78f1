// The library's functions for bytes, strings and characters (C99 7.4, 7.21) and
// the numbers in strings (7.20.1).

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "ifrun_native.h"

// -- Bytes ---------------------------------------------------------------------

static void move_bytes(a_machine& machine, uint64_t to, uint64_t from, uint64_t size) {
  if (size != 0)
    std::memmove(machine.memory.at(to, size), machine.memory.at(from, size), size);
}

uint64_t native_memmove(a_machine& machine, const a_native_call& call) {
  move_bytes(machine, pointer(call, 0), pointer(call, 1), word(call, 2));
  return pointer(call, 0);
}

uint64_t native_mempcpy(a_machine& machine, const a_native_call& call) {
  return native_memmove(machine, call) + word(call, 2);
}

uint64_t native_bcopy(a_machine& machine, const a_native_call& call) {
  move_bytes(machine, pointer(call, 1), pointer(call, 0), word(call, 2));
  return 0;
}

static uint64_t fill(a_machine& machine, uint64_t to, uint64_t byte, uint64_t size) {
  if (size != 0)
    std::memset(machine.memory.at(to, size), static_cast<int>(byte), size);
  return to;
}

uint64_t native_memset(a_machine& machine, const a_native_call& call) {
  return fill(machine, pointer(call, 0), call.value(1, k_u8), word(call, 2));
}

uint64_t native_bzero(a_machine& machine, const a_native_call& call) {
  return fill(machine, pointer(call, 0), 0, word(call, 1));
}

static uint64_t sign(int order) {
  return whole((order > 0) - (order < 0));
}

uint64_t native_memcmp(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 2);
  if (size == 0)
    return 0;
  return sign(std::memcmp(machine.memory.at(pointer(call, 0), size),
                          machine.memory.at(pointer(call, 1), size), size));
}

// Bytes behind the one that is found needn't be there.
uint64_t native_memchr(a_machine& machine, const a_native_call& call) {
  uint64_t address = pointer(call, 0);
  for (uint64_t i = 0; i < word(call, 2); i++) {
    if (*machine.memory.at(address + i, 1) == call.value(1, k_u8))
      return address + i;
  }
  return 0;
}

// -- Strings -------------------------------------------------------------------

uint64_t native_strlen(a_machine& machine, const a_native_call& call) {
  return text(machine, call, 0).size();
}

uint64_t native_strnlen(a_machine& machine, const a_native_call& call) {
  return machine.memory.text(pointer(call, 0), word(call, 1)).size();
}

// The text of an argument, at most as long as argument `limit_number` tells.
static std::string_view limited(a_machine& machine, const a_native_call& call, size_t number,
                                size_t limit_number) {
  return machine.memory.text(pointer(call, number), word(call, limit_number));
}

static std::string lowered(std::string_view original) {
  std::string result(original);
  for (char& c : result)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

uint64_t native_strcmp(a_machine& machine, const a_native_call& call) {
  return sign(text(machine, call, 0).compare(text(machine, call, 1)));
}

uint64_t native_strncmp(a_machine& machine, const a_native_call& call) {
  return sign(limited(machine, call, 0, 2).compare(limited(machine, call, 1, 2)));
}

uint64_t native_strcasecmp(a_machine& machine, const a_native_call& call) {
  return sign(lowered(text(machine, call, 0)).compare(lowered(text(machine, call, 1))));
}

uint64_t native_strncasecmp(a_machine& machine, const a_native_call& call) {
  return sign(lowered(limited(machine, call, 0, 2)).compare(lowered(limited(machine, call, 1, 2))));
}

// Copies text and its NUL; gives the NUL's address.
static uint64_t copy_text(a_machine& machine, uint64_t to, std::string_view content) {
  uint8_t* target = machine.memory.at(to, content.size() + 1);
  std::memmove(target, content.data(), content.size());
  target[content.size()] = 0;
  return to + content.size();
}

uint64_t native_strcpy(a_machine& machine, const a_native_call& call) {
  copy_text(machine, pointer(call, 0), text(machine, call, 1));
  return pointer(call, 0);
}

uint64_t native_stpcpy(a_machine& machine, const a_native_call& call) {
  return copy_text(machine, pointer(call, 0), text(machine, call, 1));
}

// Fills up with NULs; gives the address of the first.
uint64_t native_stpncpy(a_machine& machine, const a_native_call& call) {
  std::string_view content = limited(machine, call, 1, 2);
  uint64_t to = pointer(call, 0), size = word(call, 2);
  move_bytes(machine, to, pointer(call, 1), content.size());
  fill(machine, to + content.size(), 0, size - content.size());
  return to + content.size();
}

uint64_t native_strncpy(a_machine& machine, const a_native_call& call) {
  native_stpncpy(machine, call);
  return pointer(call, 0);
}

uint64_t native_strcat(a_machine& machine, const a_native_call& call) {
  copy_text(machine, pointer(call, 0) + text(machine, call, 0).size(), text(machine, call, 1));
  return pointer(call, 0);
}

uint64_t native_strncat(a_machine& machine, const a_native_call& call) {
  copy_text(machine, pointer(call, 0) + text(machine, call, 0).size(),
            limited(machine, call, 1, 2));
  return pointer(call, 0);
}

// The address of a place in argument 0, or null.
static uint64_t place_in_text(const a_native_call& call, size_t found) {
  return found == std::string_view::npos ? 0 : pointer(call, 0) + found;
}

uint64_t native_strchr(a_machine& machine, const a_native_call& call) {
  std::string_view searched = text(machine, call, 0);
  char wanted = static_cast<char>(call.value(1, k_u8));
  return place_in_text(call, wanted == '\0' ? searched.size() : searched.find(wanted));
}

uint64_t native_strrchr(a_machine& machine, const a_native_call& call) {
  std::string_view searched = text(machine, call, 0);
  char wanted = static_cast<char>(call.value(1, k_u8));
  return place_in_text(call, wanted == '\0' ? searched.size() : searched.rfind(wanted));
}

uint64_t native_strstr(a_machine& machine, const a_native_call& call) {
  return place_in_text(call, text(machine, call, 0).find(text(machine, call, 1)));
}

uint64_t native_strpbrk(a_machine& machine, const a_native_call& call) {
  return place_in_text(call, text(machine, call, 0).find_first_of(text(machine, call, 1)));
}

uint64_t native_strspn(a_machine& machine, const a_native_call& call) {
  std::string_view searched = text(machine, call, 0);
  return std::min(searched.size(), searched.find_first_not_of(text(machine, call, 1)));
}

uint64_t native_strcspn(a_machine& machine, const a_native_call& call) {
  std::string_view searched = text(machine, call, 0);
  return std::min(searched.size(), searched.find_first_of(text(machine, call, 1)));
}

// The next word from `from` on; `*rest` is where the search goes on.
static uint64_t next_token(a_machine& machine, uint64_t from, std::string_view separators,
                           uint64_t* rest) {
  *rest = from;
  if (from == 0)
    return 0;
  std::string_view content = machine.memory.text(from);
  size_t start = std::min(content.size(), content.find_first_not_of(separators));
  *rest = 0;
  if (start == content.size())
    return 0;
  size_t end = content.find_first_of(separators, start);
  if (end != std::string_view::npos) {
    *machine.memory.at(from + end, 1) = 0;
    *rest = from + end + 1;
  }
  return from + start;
}

uint64_t native_strtok(a_machine& machine, const a_native_call& call) {
  static uint64_t saved = 0;
  uint64_t from = pointer(call, 0) != 0 ? pointer(call, 0) : saved;
  return next_token(machine, from, text(machine, call, 1), &saved);
}

uint64_t native_strtok_r(a_machine& machine, const a_native_call& call) {
  uint64_t place = pointer(call, 2), rest = 0;
  uint64_t from =
      pointer(call, 0) != 0 ? pointer(call, 0) : machine.memory.load(place, k_data_pointer);
  uint64_t token = next_token(machine, from, text(machine, call, 1), &rest);
  machine.memory.store(place, k_data_pointer, rest);
  return token;
}

static uint64_t duplicate(a_machine& machine, std::string_view content) {
  uint32_t address = machine.memory.allocate(content.size() + 1);
  if (address != 0)
    copy_text(machine, address, content);
  return address;
}

uint64_t native_strdup(a_machine& machine, const a_native_call& call) {
  return duplicate(machine, text(machine, call, 0));
}

uint64_t native_strndup(a_machine& machine, const a_native_call& call) {
  return duplicate(machine, limited(machine, call, 0, 1));
}

uint64_t native_strerror(a_machine& machine, const a_native_call& call) {
  return machine.memory.add_text(std::strerror(int_value(call, 0)));
}

// -- Characters ----------------------------------------------------------------

using a_character_function = int (*)(int);

// The end of a file, -1, is of no class and stays as it is.
template <a_character_function Function> static uint64_t classified(const a_native_call& call) {
  int c = int_value(call, 0);
  return c >= 0 && c < 256 && Function(c) != 0;
}

uint64_t native_isalnum(a_machine&, const a_native_call& call) {
  return classified<std::isalnum>(call);
}
uint64_t native_isalpha(a_machine&, const a_native_call& call) {
  return classified<std::isalpha>(call);
}
uint64_t native_isblank(a_machine&, const a_native_call& call) {
  return classified<std::isblank>(call);
}
uint64_t native_iscntrl(a_machine&, const a_native_call& call) {
  return classified<std::iscntrl>(call);
}
uint64_t native_isdigit(a_machine&, const a_native_call& call) {
  return classified<std::isdigit>(call);
}
uint64_t native_isgraph(a_machine&, const a_native_call& call) {
  return classified<std::isgraph>(call);
}
uint64_t native_islower(a_machine&, const a_native_call& call) {
  return classified<std::islower>(call);
}
uint64_t native_isprint(a_machine&, const a_native_call& call) {
  return classified<std::isprint>(call);
}
uint64_t native_ispunct(a_machine&, const a_native_call& call) {
  return classified<std::ispunct>(call);
}
uint64_t native_isspace(a_machine&, const a_native_call& call) {
  return classified<std::isspace>(call);
}
uint64_t native_isupper(a_machine&, const a_native_call& call) {
  return classified<std::isupper>(call);
}
uint64_t native_isxdigit(a_machine&, const a_native_call& call) {
  return classified<std::isxdigit>(call);
}
uint64_t native_isascii(a_machine&, const a_native_call& call) {
  return word(call, 0) < 128;
}

uint64_t native_tolower(a_machine&, const a_native_call& call) {
  int c = int_value(call, 0);
  return whole(c >= 0 && c < 256 ? std::tolower(c) : c);
}
uint64_t native_toupper(a_machine&, const a_native_call& call) {
  int c = int_value(call, 0);
  return whole(c >= 0 && c < 256 ? std::toupper(c) : c);
}

// -- Numbers in strings --------------------------------------------------------

// Runs a host function on argument 0 and stores where it stopped in argument 1,
// if the call has one that isn't null; then errno, when the host sets it.
template <typename Function>
static auto converted(a_machine& machine, const a_native_call& call, Function function) {
  std::string content(text(machine, call, 0));
  char* stop = nullptr;
  errno = 0;
  auto result = function(content.c_str(), &stop);
  if (call.arguments.size() > 1 && pointer(call, 1) != 0)
    machine.memory.store(pointer(call, 1), k_data_pointer,
                         pointer(call, 0) + static_cast<uint64_t>(stop - content.c_str()));
  if (errno != 0)
    machine.memory.store(native_errno(machine, call), k_s32, whole(errno));
  return result;
}

static int base_of(const a_native_call& call) {
  return call.arguments.size() > 2 ? int_value(call, 2) : 10;
}

static int64_t signed_number(a_machine& machine, const a_native_call& call) {
  return converted(machine, call, [&call](const char* from, char** stop) {
    return static_cast<int64_t>(std::strtoll(from, stop, base_of(call)));
  });
}

static uint64_t range_error(a_machine& machine, const a_native_call& call, int64_t result) {
  machine.memory.store(native_errno(machine, call), k_s32, ERANGE);
  return whole(result);
}

uint64_t native_strtol(a_machine& machine, const a_native_call& call) {
  int64_t number = signed_number(machine, call);
  if (number > INT32_MAX)
    return range_error(machine, call, INT32_MAX);
  if (number < INT32_MIN)
    return range_error(machine, call, INT32_MIN);
  return whole(number);
}

uint64_t native_strtoul(a_machine& machine, const a_native_call& call) {
  int64_t number = signed_number(machine, call);
  if (number > int64_t{UINT32_MAX} || number < -int64_t{UINT32_MAX})
    return range_error(machine, call, UINT32_MAX);
  return whole(number);
}

uint64_t native_strtoll(a_machine& machine, const a_native_call& call) {
  return whole(signed_number(machine, call));
}

uint64_t native_strtoull(a_machine& machine, const a_native_call& call) {
  return converted(machine, call, [&call](const char* from, char** stop) {
    return static_cast<uint64_t>(std::strtoull(from, stop, base_of(call)));
  });
}

uint64_t native_atoi(a_machine& machine, const a_native_call& call) {
  return whole(signed_number(machine, call));
}

uint64_t native_atoll(a_machine& machine, const a_native_call& call) {
  return whole(signed_number(machine, call));
}

static double real_number(const char* from, char** stop) {
  return std::strtod(from, stop);
}

uint64_t native_strtod(a_machine& machine, const a_native_call& call) {
  return bits_of(converted(machine, call, real_number));
}

uint64_t native_strtof(a_machine& machine, const a_native_call& call) {
  return bits_of(converted(machine, call, [](const char* from, char** stop) {
    return static_cast<double>(std::strtof(from, stop));
  }));
}

uint64_t native_atof(a_machine& machine, const a_native_call& call) {
  return bits_of(converted(machine, call, real_number));
}
