// The library's input and output (C99 7.19).

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ifrun_native.h"

// -- printf --------------------------------------------------------------------

namespace {

// Walks a format and takes an argument for each conversion.
class a_format {
public:
  a_format(a_memory& target, std::string_view source, an_argument_list list)
      : memory(target), format(source), arguments(list) {}
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
  std::string_view format;
  an_argument_list arguments;
  size_t position = 0;
  size_t written = 0; // before this conversion
};

} // namespace

std::string a_format::result() {
  std::string out;
  while (position < format.size()) {
    char c = format[position++];
    written = out.size();
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
    throw a_run_error{"a field of " + std::to_string(width) + " characters"};
}

int64_t a_format::number() {
  if (peek() == '*') {
    ++position;
    return static_cast<int64_t>(arguments.take(k_s32));
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

// Length modifiers as the target's sizes have them: long is a word. What is
// smaller than int is passed as one.
static a_scalar_kind argument_kind(std::string_view length) {
  if (length == "hh")
    return k_s8;
  if (length == "h")
    return k_s16;
  return length == "ll" || length == "j" || length == "q" ? k_s64 : k_s32;
}

std::string a_format::integer(char letter, const std::string& flags, int64_t width,
                              int64_t precision, a_scalar_kind kind) {
  bool is_signed = letter == 'd' || letter == 'i';
  uint64_t passed = arguments.take(size_of_kind(kind) < 4 ? k_s32 : kind);
  uint64_t value = wrap_to_kind(passed, static_cast<uint8_t>(is_signed ? kind : kind & ~1));
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
  double value = double_of(arguments.take(k_f64));
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
  while (peek() != '\0' && std::strchr("hljztLq", peek()) != nullptr)
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
    return padded(std::string(1, static_cast<char>(arguments.take(k_s32))), left, width);
  case 's': {
    uint64_t limit = precision < 0 ? UINT64_MAX : static_cast<uint64_t>(precision);
    return padded(memory.text(arguments.take(k_data_pointer), limit), left, width);
  }
  case 'n':
    memory.store(arguments.take(k_data_pointer), argument_kind(length), written);
    return {};
  case 'p': {
    char digits[20];
    std::snprintf(digits, sizeof digits, "0x%llx",
                  static_cast<unsigned long long>(arguments.take(k_data_pointer)));
    return padded(digits, left, width);
  }
  default:
    throw a_run_error{std::string("unsupported conversion %") + letter};
  }
}

std::string formatted(a_memory& memory, std::string_view format, an_argument_list arguments) {
  return a_format(memory, format, arguments).result();
}

// -- Streams -------------------------------------------------------------------

// The standard streams' handles are the addresses of blocks that say which.
static constexpr uint32_t stream_mark = 0x53747265;
static constexpr uint32_t stream_block_size = 8;

static FILE* standard_stream(uint64_t number) {
  return number == 0 ? stdin : number == 1 ? stdout : stderr;
}

static FILE* stream_of(a_machine& machine, uint64_t handle) {
  auto opened = machine.streams.find(static_cast<uint32_t>(handle));
  if (opened != machine.streams.end())
    return opened->second;
  if (machine.memory.load(handle, k_u32) != stream_mark)
    throw a_run_error{"not a stream"};
  return standard_stream(machine.memory.load(handle + 4, k_u32));
}

static FILE* stream(a_machine& machine, const a_native_call& call, size_t number) {
  return stream_of(machine, pointer(call, number));
}

static uint32_t make_stream(a_memory* memory, uint64_t number) {
  uint32_t block = memory->add_static(stream_block_size);
  memory->store(block, k_u32, stream_mark);
  memory->store(block + 4, k_u32, number);
  return block;
}

// The classes of characters as newlib's <ctype.h> looks them up, the end of a
// file first.
static uint32_t make_ctype_table(a_memory* memory) {
  uint32_t table = memory->add_static(257);
  for (int c = 0; c < 128; c++) {
    bool is_upper = c >= 'A' && c <= 'Z', is_lower = c >= 'a' && c <= 'z';
    bool is_digit = c >= '0' && c <= '9', is_hex = (c | 32) >= 'a' && (c | 32) <= 'f';
    bool is_space = (c >= 9 && c <= 13) || c == ' ', is_control = c < 32 || c == 127;
    bool is_other = !is_upper && !is_lower && !is_digit && !is_control && c != ' ';
    int flags = is_upper << 0 | is_lower << 1 | is_digit << 2 | is_space << 3 | is_other << 4 |
                is_control << 5 | is_hex << 6 | (c == ' ') << 7;
    memory->store(table + 1 + static_cast<uint32_t>(c), k_u8, static_cast<uint64_t>(flags));
  }
  return table;
}

// newlib's state of a thread: errno and the standard streams stand first.
static uint32_t make_reentrancy_state(a_memory* memory) {
  static constexpr uint32_t state_size = 2048;
  uint32_t state = memory->add_static(state_size);
  for (uint32_t number = 0; number < 3; number++)
    memory->store(state + 4 + 4 * number, k_data_pointer, make_stream(memory, number));
  return state;
}

static uint32_t make_pointer(a_memory* memory, uint64_t target) {
  uint32_t address = memory->add_static(4);
  memory->store(address, k_data_pointer, target);
  return address;
}

uint32_t make_native_variable(a_memory* memory, std::string_view name) {
  static constexpr std::string_view streams[] = {"stdin", "stdout", "stderr"};
  for (size_t number = 0; number < 3; number++) {
    if (name == streams[number])
      return make_pointer(memory, make_stream(memory, number));
  }
  if (name == "_impure_ptr" || name == "_global_impure_ptr")
    return make_pointer(memory, make_reentrancy_state(memory));
  if (name == "_ctype_")
    return make_ctype_table(memory);
  return name == "errno" || name == "environ" ? make_pointer(memory, 0) : 0;
}

uint64_t native_ctype_table(a_machine& machine, const a_native_call&) {
  if (machine.ctype_address == 0)
    machine.ctype_address = make_ctype_table(&machine.memory);
  return machine.ctype_address;
}

// -- Output --------------------------------------------------------------------

static uint64_t write_text(FILE* file, std::string_view content) {
  std::fwrite(content.data(), 1, content.size(), file);
  return content.size();
}

// Stores as much of the text as `size` has room for; gives the whole length.
static uint64_t store_text(a_machine& machine, uint64_t to, uint64_t size,
                           std::string_view content) {
  if (size != 0) {
    uint64_t stored = std::min<uint64_t>(content.size(), size - 1);
    uint8_t* target = machine.memory.at(to, stored + 1);
    std::memcpy(target, content.data(), stored);
    target[stored] = 0;
  }
  return content.size();
}

// The text of the format in argument `number` and the arguments behind it, or
// the va_list behind it.
static std::string format_of(a_machine& machine, const a_native_call& call, size_t number) {
  return formatted(machine.memory, text(machine, call, number), an_argument_list(call, number + 1));
}
static std::string format_of_list(a_machine& machine, const a_native_call& call, size_t number) {
  return formatted(machine.memory, text(machine, call, number),
                   an_argument_list(machine.memory, pointer(call, number + 1)));
}

uint64_t native_printf(a_machine& machine, const a_native_call& call) {
  return write_text(stdout, format_of(machine, call, 0));
}
uint64_t native_fprintf(a_machine& machine, const a_native_call& call) {
  return write_text(stream(machine, call, 0), format_of(machine, call, 1));
}
uint64_t native_sprintf(a_machine& machine, const a_native_call& call) {
  return store_text(machine, pointer(call, 0), UINT64_MAX, format_of(machine, call, 1));
}
uint64_t native_snprintf(a_machine& machine, const a_native_call& call) {
  return store_text(machine, pointer(call, 0), word(call, 1), format_of(machine, call, 2));
}
uint64_t native_vprintf(a_machine& machine, const a_native_call& call) {
  return write_text(stdout, format_of_list(machine, call, 0));
}
uint64_t native_vfprintf(a_machine& machine, const a_native_call& call) {
  return write_text(stream(machine, call, 0), format_of_list(machine, call, 1));
}
uint64_t native_vsprintf(a_machine& machine, const a_native_call& call) {
  return store_text(machine, pointer(call, 0), UINT64_MAX, format_of_list(machine, call, 1));
}
uint64_t native_vsnprintf(a_machine& machine, const a_native_call& call) {
  return store_text(machine, pointer(call, 0), word(call, 1), format_of_list(machine, call, 2));
}

uint64_t native_puts(a_machine& machine, const a_native_call& call) {
  uint64_t length = write_text(stdout, text(machine, call, 0));
  std::putchar('\n');
  return length + 1;
}

uint64_t native_fputs(a_machine& machine, const a_native_call& call) {
  return write_text(stream(machine, call, 1), text(machine, call, 0));
}

uint64_t native_putchar(a_machine&, const a_native_call& call) {
  return whole(std::putchar(static_cast<int>(call.value(0, k_u8))));
}

uint64_t native_fputc(a_machine& machine, const a_native_call& call) {
  return whole(std::fputc(static_cast<int>(call.value(0, k_u8)), stream(machine, call, 1)));
}

uint64_t native_fwrite(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 1), total = size * word(call, 2);
  if (total == 0)
    return 0;
  return std::fwrite(machine.memory.at(pointer(call, 0), total), 1, total,
                     stream(machine, call, 3)) /
         size;
}

uint64_t native_perror(a_machine& machine, const a_native_call& call) {
  int number = static_cast<int>(machine.memory.load(native_errno(machine, call), k_s32));
  std::fprintf(stderr, "%s: %s\n", std::string(text(machine, call, 0)).c_str(),
               std::strerror(number));
  return 0;
}

// -- Input ---------------------------------------------------------------------

uint64_t native_getchar(a_machine&, const a_native_call&) {
  return whole(std::getchar());
}
uint64_t native_fgetc(a_machine& machine, const a_native_call& call) {
  return whole(std::fgetc(stream(machine, call, 0)));
}
uint64_t native_ungetc(a_machine& machine, const a_native_call& call) {
  return whole(std::ungetc(int_value(call, 0), stream(machine, call, 1)));
}

uint64_t native_fgets(a_machine& machine, const a_native_call& call) {
  FILE* file = stream(machine, call, 2);
  int64_t room = int_value(call, 1);
  std::string line;
  while (static_cast<int64_t>(line.size()) + 1 < room) {
    int c = std::fgetc(file);
    if (c == EOF)
      break;
    line += static_cast<char>(c);
    if (c == '\n')
      break;
  }
  if (line.empty())
    return 0;
  store_text(machine, pointer(call, 0), line.size() + 1, line);
  return pointer(call, 0);
}

uint64_t native_fread(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 1), total = size * word(call, 2);
  if (total == 0)
    return 0;
  return std::fread(machine.memory.at(pointer(call, 0), total), 1, total,
                    stream(machine, call, 3)) /
         size;
}

// -- Files ---------------------------------------------------------------------

// Enters a stream of the host's; null stays null.
static uint64_t opened(a_machine& machine, FILE* file) {
  uint32_t handle = file != nullptr ? machine.memory.allocate(stream_block_size) : 0;
  if (handle != 0)
    machine.streams[handle] = file;
  return handle;
}

uint64_t native_fopen(a_machine& machine, const a_native_call& call) {
  std::string name(text(machine, call, 0)), mode(text(machine, call, 1));
  return opened(machine, std::fopen(name.c_str(), mode.c_str()));
}

uint64_t native_tmpfile(a_machine& machine, const a_native_call&) {
  return opened(machine, std::tmpfile());
}

// A standard stream is directed to the host's file, and keeps its handle.
uint64_t native_freopen(a_machine& machine, const a_native_call& call) {
  std::string name(text(machine, call, 0)), mode(text(machine, call, 1));
  FILE* file = std::freopen(name.c_str(), mode.c_str(), stream(machine, call, 2));
  return file != nullptr ? pointer(call, 2) : 0;
}

uint64_t native_fclose(a_machine& machine, const a_native_call& call) {
  int status = std::fclose(stream(machine, call, 0));
  machine.streams.erase(static_cast<uint32_t>(pointer(call, 0)));
  return whole(status);
}

uint64_t native_fflush(a_machine& machine, const a_native_call& call) {
  return whole(std::fflush(pointer(call, 0) != 0 ? stream(machine, call, 0) : nullptr));
}

uint64_t native_fseek(a_machine& machine, const a_native_call& call) {
  return whole(std::fseek(stream(machine, call, 0), int_value(call, 1), int_value(call, 2)));
}
uint64_t native_ftell(a_machine& machine, const a_native_call& call) {
  return whole(std::ftell(stream(machine, call, 0)));
}
uint64_t native_rewind(a_machine& machine, const a_native_call& call) {
  std::rewind(stream(machine, call, 0));
  return 0;
}
uint64_t native_feof(a_machine& machine, const a_native_call& call) {
  return whole(std::feof(stream(machine, call, 0)));
}
uint64_t native_ferror(a_machine& machine, const a_native_call& call) {
  return whole(std::ferror(stream(machine, call, 0)));
}
uint64_t native_clearerr(a_machine& machine, const a_native_call& call) {
  std::clearerr(stream(machine, call, 0));
  return 0;
}

uint64_t native_remove(a_machine& machine, const a_native_call& call) {
  return whole(std::remove(std::string(text(machine, call, 0)).c_str()));
}

uint64_t native_rename(a_machine& machine, const a_native_call& call) {
  std::string from(text(machine, call, 0)), to(text(machine, call, 1));
  return whole(std::rename(from.c_str(), to.c_str()));
}

// Makes the file, so that nobody else takes the name.
uint64_t native_tmpnam(a_machine& machine, const a_native_call& call) {
  char name[] = "/tmp/ifrunXXXXXX";
  int made = mkstemp(name);
  if (made < 0)
    return 0;
  if (FILE* file = fdopen(made, "w"))
    std::fclose(file);
  if (call.arguments.empty() || pointer(call, 0) == 0)
    return machine.memory.add_text(name);
  store_text(machine, pointer(call, 0), sizeof name, name);
  return pointer(call, 0);
}

// -- scanf ---------------------------------------------------------------------

uint64_t native_scanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(stdin), text(machine, call, 0),
                       an_argument_list(call, 1)));
}
uint64_t native_fscanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(stream(machine, call, 0)),
                       text(machine, call, 1), an_argument_list(call, 2)));
}
uint64_t native_sscanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(text(machine, call, 0)),
                       text(machine, call, 1), an_argument_list(call, 2)));
}
uint64_t native_vscanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(stdin), text(machine, call, 0),
                       an_argument_list(machine.memory, pointer(call, 1))));
}
uint64_t native_vfscanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(stream(machine, call, 0)),
                       text(machine, call, 1), an_argument_list(machine.memory, pointer(call, 2))));
}
uint64_t native_vsscanf(a_machine& machine, const a_native_call& call) {
  return whole(scanned(machine.memory, a_character_source(text(machine, call, 0)),
                       text(machine, call, 1), an_argument_list(machine.memory, pointer(call, 2))));
}
