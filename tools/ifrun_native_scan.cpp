// scanf's reading by a format (C99 7.19.6.2).

#include <bitset>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include "ifrun_native.h"

int a_character_source::get() {
  int c = -1;
  if (file != nullptr)
    c = std::fgetc(file);
  else if (static_cast<size_t>(count) < content_text.size())
    c = static_cast<unsigned char>(content_text[static_cast<size_t>(count)]);
  ++count;
  return c;
}

void a_character_source::unget(int c) {
  if (file != nullptr && c >= 0)
    std::ungetc(c, file);
  --count;
}

namespace {

class a_scan {
public:
  a_scan(a_memory& target, a_character_source from, std::string_view text, an_argument_list list)
      : memory(target), source(from), format(text), arguments(list) {}
  int result();

private:
  struct a_conversion {
    bool suppressed = false;
    uint64_t width = 0; // 0: none given
    std::string_view length;
    char letter = '\0';
    std::bitset<256> members; // of a scan set
  };

  char peek() const {
    return position < format.size() ? format[position] : '\0';
  }
  a_conversion read_conversion();
  void read_scan_set(a_conversion* conversion);
  void skip_space();
  // False when the conversion fails; the scan then ends.
  bool convert(const a_conversion& conversion);
  bool characters(const a_conversion& conversion);
  bool integer(const a_conversion& conversion, int base);
  bool floating(const a_conversion& conversion);
  // The characters up to the width that `belongs` takes.
  template <typename Test> std::string taken(uint64_t width, Test belongs);
  void assign_number(const a_conversion& conversion, uint64_t value);

  a_memory& memory;
  a_character_source source;
  std::string_view format;
  an_argument_list arguments;
  size_t position = 0;
  int assigned = 0;
  bool at_end = false; // the input ended before a conversion
};

} // namespace

int a_scan::result() {
  while (position < format.size()) {
    char c = format[position++];
    if (std::isspace(static_cast<unsigned char>(c))) {
      skip_space();
      continue;
    }
    bool is_conversion = c == '%' && peek() != '%';
    if (is_conversion) {
      if (!convert(read_conversion()))
        break;
      continue;
    }
    if (c == '%') {
      ++position;
      skip_space();
    }
    int next = source.get();
    if (next != static_cast<unsigned char>(c)) {
      source.unget(next);
      at_end = next < 0;
      break;
    }
  }
  return at_end && assigned == 0 ? -1 : assigned;
}

a_scan::a_conversion a_scan::read_conversion() {
  a_conversion conversion;
  if (peek() == '*') {
    conversion.suppressed = true;
    ++position;
  }
  for (; peek() >= '0' && peek() <= '9' && conversion.width < 1000000; ++position)
    conversion.width = conversion.width * 10 + static_cast<uint64_t>(peek() - '0');
  size_t start = position;
  while (peek() != '\0' && std::strchr("hljztLq", peek()) != nullptr)
    ++position;
  conversion.length = format.substr(start, position - start);
  conversion.letter = peek();
  ++position;
  if (conversion.letter == '[')
    read_scan_set(&conversion);
  return conversion;
}

// A bracket that comes first is a member, a hyphen in the middle a range.
void a_scan::read_scan_set(a_conversion* conversion) {
  bool inverted = peek() == '^';
  position += inverted;
  for (bool is_first = true; peek() != '\0' && (is_first || peek() != ']'); is_first = false) {
    auto low = static_cast<unsigned char>(format[position++]), high = low;
    bool is_range = peek() == '-' && position + 1 < format.size() && format[position + 1] != ']';
    if (is_range) {
      high = static_cast<unsigned char>(format[position + 1]);
      position += 2;
    }
    for (int c = low; c <= high; c++)
      conversion->members.set(static_cast<size_t>(c));
  }
  ++position;
  if (inverted)
    conversion->members.flip();
}

void a_scan::skip_space() {
  int c = source.get();
  while (c >= 0 && std::isspace(c))
    c = source.get();
  source.unget(c);
}

template <typename Test> std::string a_scan::taken(uint64_t width, Test belongs) {
  std::string text;
  while (width == 0 || text.size() < width) {
    int c = source.get();
    if (c < 0 || !belongs(c, text)) {
      at_end = c < 0 && text.empty();
      source.unget(c);
      break;
    }
    text += static_cast<char>(c);
  }
  return text;
}

static a_scalar_kind target_kind(std::string_view length) {
  if (length == "hh")
    return k_s8;
  if (length == "h")
    return k_s16;
  return length == "ll" || length == "j" || length == "q" ? k_s64 : k_s32;
}

void a_scan::assign_number(const a_conversion& conversion, uint64_t value) {
  if (conversion.suppressed)
    return;
  memory.store(arguments.take(k_data_pointer), target_kind(conversion.length), value);
  ++assigned;
}

bool a_scan::characters(const a_conversion& conversion) {
  uint64_t width = conversion.letter == 'c' && conversion.width == 0 ? 1 : conversion.width;
  std::string text = taken(width, [&conversion](int c, const std::string&) {
    return conversion.letter == 'c' ||
           (conversion.letter == 's' ? !std::isspace(c)
                                     : conversion.members.test(static_cast<size_t>(c)));
  });
  if (text.empty() || (conversion.letter == 'c' && text.size() < width))
    return false;
  if (conversion.suppressed)
    return true;
  uint64_t size = text.size() + (conversion.letter != 'c');
  std::memcpy(memory.at(arguments.take(k_data_pointer), size), text.c_str(), size);
  ++assigned;
  return true;
}

bool a_scan::integer(const a_conversion& conversion, int base) {
  std::string text = taken(conversion.width, [base](int c, const std::string& before) {
    bool is_first = before.find_first_not_of("+-") == std::string::npos;
    if (c == '+' || c == '-')
      return before.empty();
    if (c == 'x' || c == 'X')
      return (base == 0 || base == 16) && (before == "0" || before == "+0" || before == "-0");
    if (is_first || base == 16)
      return base == 16 ? std::isxdigit(c) != 0 : std::isdigit(c) != 0;
    bool is_hexadecimal = base == 0 && before.find_first_of("xX") != std::string::npos;
    return is_hexadecimal ? std::isxdigit(c) != 0 : std::isdigit(c) != 0;
  });
  char* stop = nullptr;
  uint64_t value = std::strtoull(text.c_str(), &stop, base);
  if (text.empty() || stop == text.c_str())
    return false;
  assign_number(conversion, value);
  return true;
}

bool a_scan::floating(const a_conversion& conversion) {
  std::string text = taken(conversion.width, [](int c, const std::string& before) {
    bool behind_exponent = !before.empty() && std::strchr("eEpP", before.back()) != nullptr;
    if (c == '+' || c == '-')
      return before.empty() || behind_exponent;
    return std::isalnum(c) != 0 || c == '.';
  });
  char* stop = nullptr;
  double value = std::strtod(text.c_str(), &stop);
  if (text.empty() || stop == text.c_str())
    return false;
  if (!conversion.suppressed) {
    a_scalar_kind kind = conversion.length == "l" || conversion.length == "L" ? k_f64 : k_f32;
    memory.store(arguments.take(k_data_pointer), kind, bits_of(value));
    ++assigned;
  }
  return true;
}

bool a_scan::convert(const a_conversion& conversion) {
  if (std::strchr("cn[", conversion.letter) == nullptr)
    skip_space();
  switch (conversion.letter) {
  case 'd':
  case 'u':
    return integer(conversion, 10);
  case 'i':
    return integer(conversion, 0);
  case 'o':
    return integer(conversion, 8);
  case 'x':
  case 'X':
  case 'p':
    return integer(conversion, 16);
  case 'a':
  case 'e':
  case 'f':
  case 'g':
  case 'E':
  case 'F':
  case 'G':
    return floating(conversion);
  case 'c':
  case 's':
  case '[':
    return characters(conversion);
  case 'n':
    assign_number(conversion, static_cast<uint64_t>(source.taken()));
    --assigned;
    return true;
  default:
    throw a_run_error{std::string("unsupported conversion %") + conversion.letter};
  }
}

int scanned(a_memory& memory, a_character_source source, std::string_view format,
            an_argument_list arguments) {
  return a_scan(memory, source, format, arguments).result();
}
