// Private to the library of the interpreter: how its functions take their
// arguments, and their names.

#ifndef IFRUN_NATIVE_H
#define IFRUN_NATIVE_H

#include <cstdio>

#include "ifrun_int.h"

inline uint64_t pointer(const a_native_call& call, size_t number) {
  return call.value(number, k_data_pointer);
}
inline uint64_t word(const a_native_call& call, size_t number) {
  return call.value(number, k_u32);
}
inline int int_value(const a_native_call& call, size_t number) {
  return static_cast<int>(call.value(number, k_s32));
}
inline std::string_view text(a_machine& machine, const a_native_call& call, size_t number) {
  return machine.memory.text(pointer(call, number));
}
// A whole number as a result.
inline uint64_t whole(int64_t number) {
  return static_cast<uint64_t>(number);
}

// The arguments of a call from `number` on, or those of a va_list.
class an_argument_list {
public:
  an_argument_list(const a_native_call& source, size_t number) : call(&source), next(number) {}
  an_argument_list(a_memory& source, uint64_t slots) : memory(&source), address(slots) {}
  uint64_t take(a_scalar_kind kind);

private:
  const a_native_call* call = nullptr;
  size_t next = 0;
  a_memory* memory = nullptr;
  uint64_t address = 0;
};

// printf's output for a format (C99 7.19.6.1).
std::string formatted(a_memory& memory, std::string_view format, an_argument_list arguments);

// Where scanf reads; -1 is the end.
class a_character_source {
public:
  explicit a_character_source(std::string_view content) : content_text(content) {}
  explicit a_character_source(FILE* stream) : file(stream) {}
  int get();
  void unget(int c);
  int64_t taken() const {
    return count;
  }

private:
  std::string_view content_text;
  FILE* file = nullptr;
  int64_t count = 0;
};

// scanf (C99 7.19.6.2): what was assigned, or -1 at the end of the input.
int scanned(a_memory& memory, a_character_source source, std::string_view format,
            an_argument_list arguments);

// The function of a row when `name` is the row's, the one for float when it is
// that name with the suffix f; otherwise null.
a_native native_with_suffix(std::string_view name, std::string_view row_name, a_native function,
                            a_native short_function);

// The functions. Those with one name more stand twice in the table.
#define NATIVE(name, function) uint64_t function(a_machine&, const a_native_call&);
#include "ifrun_natives.def"

#endif
