// The library functions that programs find without defining them.

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "ifrun_int.h"

uint64_t a_native_call::value(size_t number, a_scalar_kind kind) const {
  if (number >= arguments.size())
    throw a_run_error{std::string(name) + ": argument " + std::to_string(number + 1) +
                      " is missing"};
  if (arguments[number].by_copy)
    throw a_run_error{std::string(name) + ": argument " + std::to_string(number + 1) +
                      " is a structure"};
  uint8_t from = arguments[number].type.kind;
  if (is_floating_kind(from) || is_floating_kind(kind))
    return from == kind ? values[number] : convert_value(values[number], from, kind);
  return wrap_to_kind(values[number], kind);
}

static uint64_t pointer(const a_native_call& call, size_t number) {
  return call.value(number, k_data_pointer);
}
static uint64_t word(const a_native_call& call, size_t number) {
  return call.value(number, k_u32);
}
static std::string_view text(a_machine& machine, const a_native_call& call, size_t number) {
  return machine.memory.text(pointer(call, number));
}

// -- Output --------------------------------------------------------------------

namespace {

// One printf call: walks the format and takes an argument for each conversion.
class a_format {
public:
  a_format(a_machine& target, const a_native_call& source)
      : memory(target.memory), call(source), format(text(target, source, 0)) {}
  std::string result();

private:
  char peek() const {
    return position < format.size() ? format[position] : '\0';
  }
  std::string conversion();
  // A number or an asterisk; -1 for neither.
  int64_t number();
  std::string floating(char letter, const std::string& flags, int64_t width, int64_t precision);
  std::string integer(char letter, const std::string& flags, int64_t width, int64_t precision,
                      a_scalar_kind kind);
  static void check_width(int64_t width);

  a_memory& memory;
  const a_native_call& call;
  std::string_view format;
  size_t position = 0;
  size_t next_argument = 1;
};

} // namespace

std::string a_format::result() {
  std::string out;
  while (position < format.size()) {
    char c = format[position++];
    if (c == '%')
      out += conversion();
    else
      out += c;
  }
  return out;
}

void a_format::check_width(int64_t width) {
  static constexpr int64_t widest = 1 << 20;
  if (width > widest)
    throw a_run_error{"printf: a field of " + std::to_string(width) + " characters"};
}

int64_t a_format::number() {
  if (peek() == '*') {
    ++position;
    return static_cast<int64_t>(call.value(next_argument++, k_s32));
  }
  if (peek() < '0' || peek() > '9')
    return -1;
  int64_t value = 0;
  for (; peek() >= '0' && peek() <= '9'; ++position) {
    value = value * 10 + (peek() - '0');
    check_width(value);
  }
  return value;
}

static std::string padded(std::string_view content, bool left, int64_t width) {
  std::string out(content);
  if (width > static_cast<int64_t>(out.size()))
    out.insert(left ? out.size() : 0, static_cast<size_t>(width) - out.size(), ' ');
  return out;
}

// Length modifiers as the target's sizes have them: long is a word.
static a_scalar_kind argument_kind(std::string_view length) {
  if (length == "hh")
    return k_s8;
  if (length == "h")
    return k_s16;
  return length == "ll" || length == "j" ? k_s64 : k_s32;
}

std::string a_format::integer(char letter, const std::string& flags, int64_t width,
                              int64_t precision, a_scalar_kind kind) {
  bool is_signed = letter == 'd' || letter == 'i';
  uint64_t value = wrap_to_kind(call.value(next_argument++, k_s64),
                                static_cast<uint8_t>(is_signed ? kind : kind & ~1));
  std::string host_format = "%" + flags + "*";
  if (precision >= 0)
    host_format += "." + std::to_string(precision);
  host_format += std::string("ll") + letter;
  std::string out(static_cast<size_t>(std::max(width, precision) + 64), '\0');
  int length = std::snprintf(out.data(), out.size(), host_format.c_str(), static_cast<int>(width),
                             static_cast<unsigned long long>(value));
  out.resize(static_cast<size_t>(length));
  return out;
}

std::string a_format::floating(char letter, const std::string& flags, int64_t width,
                               int64_t precision) {
  double value = call.floating(next_argument++);
  std::string host_format = "%" + flags + "*.*" + letter;
  auto print = [&](char* to, size_t room) {
    return std::snprintf(to, room, host_format.c_str(), static_cast<int>(width),
                         static_cast<int>(precision), value);
  };
  std::string out(static_cast<size_t>(print(nullptr, 0)), '\0');
  print(out.data(), out.size() + 1);
  return out;
}

std::string a_format::conversion() {
  std::string flags;
  for (; peek() != '\0' && std::strchr("-+ #0", peek()) != nullptr; ++position) {
    if (flags.find(peek()) == std::string::npos)
      flags += peek();
  }
  int64_t width = peek() == '*' || (peek() >= '0' && peek() <= '9') ? number() : 0;
  if (width < 0) {
    flags += '-';
    width = -width;
  }
  check_width(width);
  int64_t precision = -1;
  if (peek() == '.') {
    ++position;
    precision = peek() == '*' || (peek() >= '0' && peek() <= '9') ? number() : 0;
    check_width(precision);
  }
  size_t length_start = position;
  while (peek() != '\0' && std::strchr("hljztL", peek()) != nullptr)
    ++position;
  std::string_view length = format.substr(length_start, position - length_start);
  char letter = peek();
  ++position;
  bool left = flags.find('-') != std::string::npos;
  switch (letter) {
  case '%':
    return "%";
  case 'd':
  case 'i':
  case 'u':
  case 'x':
  case 'X':
  case 'o':
    return integer(letter, flags, width, precision, argument_kind(length));
  case 'e':
  case 'E':
  case 'f':
  case 'F':
  case 'g':
  case 'G':
  case 'a':
  case 'A':
    return floating(letter, flags, width, precision);
  case 'c':
    return padded(std::string(1, static_cast<char>(call.value(next_argument++, k_u8))), left,
                  width);
  case 's': {
    uint64_t limit = precision < 0 ? UINT64_MAX : static_cast<uint64_t>(precision);
    return padded(memory.text(pointer(call, next_argument++), limit), left, width);
  }
  case 'p': {
    char digits[20];
    std::snprintf(digits, sizeof digits, "0x%llx",
                  static_cast<unsigned long long>(pointer(call, next_argument++)));
    return padded(digits, left, width);
  }
  default:
    throw a_run_error{std::string(call.name) + ": unsupported conversion %" + letter};
  }
}

static uint64_t native_printf(a_machine& machine, const a_native_call& call) {
  std::string out = a_format(machine, call).result();
  std::fwrite(out.data(), 1, out.size(), stdout);
  return out.size();
}

static uint64_t native_puts(a_machine& machine, const a_native_call& call) {
  std::string_view line = text(machine, call, 0);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::putchar('\n');
  return line.size() + 1;
}

static uint64_t native_putchar(a_machine&, const a_native_call& call) {
  uint64_t c = call.value(0, k_u8);
  std::putchar(static_cast<int>(c));
  return c;
}

// -- The heap ------------------------------------------------------------------

static uint64_t native_malloc(a_machine& machine, const a_native_call& call) {
  return machine.memory.allocate(word(call, 0));
}

static uint64_t native_calloc(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 0) * word(call, 1);
  uint32_t address = machine.memory.allocate(size);
  if (address != 0)
    std::memset(machine.memory.at(address, size), 0, size);
  return address;
}

static uint64_t native_realloc(a_machine& machine, const a_native_call& call) {
  return machine.memory.reallocate(static_cast<uint32_t>(pointer(call, 0)), word(call, 1));
}

static uint64_t native_free(a_machine& machine, const a_native_call& call) {
  machine.memory.release(static_cast<uint32_t>(pointer(call, 0)));
  return 0;
}

// -- Bytes and strings ---------------------------------------------------------

static uint64_t native_memmove(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 2);
  if (size != 0)
    std::memmove(machine.memory.at(pointer(call, 0), size),
                 machine.memory.at(pointer(call, 1), size), size);
  return pointer(call, 0);
}

static uint64_t native_memset(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 2);
  if (size != 0)
    std::memset(machine.memory.at(pointer(call, 0), size), static_cast<int>(call.value(1, k_u8)),
                size);
  return pointer(call, 0);
}

static uint64_t sign(int order) {
  return static_cast<uint64_t>(static_cast<int64_t>((order > 0) - (order < 0)));
}

static uint64_t native_memcmp(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 2);
  if (size == 0)
    return 0;
  return sign(std::memcmp(machine.memory.at(pointer(call, 0), size),
                          machine.memory.at(pointer(call, 1), size), size));
}

static uint64_t native_strlen(a_machine& machine, const a_native_call& call) {
  return text(machine, call, 0).size();
}

static uint64_t native_strcmp(a_machine& machine, const a_native_call& call) {
  return sign(text(machine, call, 0).compare(text(machine, call, 1)));
}

static uint64_t native_strncmp(a_machine& machine, const a_native_call& call) {
  uint64_t limit = word(call, 2);
  std::string_view left = machine.memory.text(pointer(call, 0), limit);
  return sign(left.compare(machine.memory.text(pointer(call, 1), limit)));
}

// Copies text and its NUL.
static void copy_text(a_machine& machine, uint64_t to, std::string_view content) {
  uint64_t size = content.size() + 1;
  std::memmove(machine.memory.at(to, size), content.data(), size);
}

static uint64_t native_strcpy(a_machine& machine, const a_native_call& call) {
  copy_text(machine, pointer(call, 0), text(machine, call, 1));
  return pointer(call, 0);
}

static uint64_t native_strcat(a_machine& machine, const a_native_call& call) {
  copy_text(machine, pointer(call, 0) + text(machine, call, 0).size(), text(machine, call, 1));
  return pointer(call, 0);
}

static uint64_t native_strchr(a_machine& machine, const a_native_call& call) {
  std::string_view searched = text(machine, call, 0);
  char wanted = static_cast<char>(call.value(1, k_u8));
  size_t found = wanted == '\0' ? searched.size() : searched.find(wanted);
  return found == std::string_view::npos ? 0 : pointer(call, 0) + found;
}

// -- The end -------------------------------------------------------------------

static uint64_t native_exit(a_machine&, const a_native_call& call) {
  throw a_program_exit{static_cast<int>(call.value(0, k_u8))};
}

static uint64_t native_abort(a_machine&, const a_native_call&) {
  throw a_run_error{"abort", ifrun_status_abort};
}

a_native find_native(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    a_native function;
  } natives[] = {
      {"printf", native_printf}, {"puts", native_puts},       {"putchar", native_putchar},
      {"malloc", native_malloc}, {"calloc", native_calloc},   {"realloc", native_realloc},
      {"free", native_free},     {"memcpy", native_memmove},  {"memmove", native_memmove},
      {"memset", native_memset}, {"memcmp", native_memcmp},   {"strlen", native_strlen},
      {"strcmp", native_strcmp}, {"strncmp", native_strncmp}, {"strcpy", native_strcpy},
      {"strcat", native_strcat}, {"strchr", native_strchr},   {"exit", native_exit},
      {"abort", native_abort},
  };
  for (const auto& row : natives) {
    if (row.name == name)
      return row.function;
  }
  return find_math_native(name);
}
