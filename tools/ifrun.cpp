// ifrun: runs the program in an intermediate file.

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "ifrun.h"

static int usage() {
  std::fputs("usage: ifrun [OPTION...] FILE.if [argument...]\n"
             "Runs the program in an intermediate file.\n\n"
             "  --max-steps=N   end the run after N steps, with status 124\n"
             "  --heap=MIB      room for the heap, 256 MiB without it, at most 2048\n"
             "  --stack=MIB     room for the stack, 8 MiB without it, at most 512\n"
             "  --trace         show each statement and call on the standard error\n",
             stderr);
  return 125;
}

// The number behind an option's name; 0 for anything but a number from 1 to
// `largest`.
static uint64_t number_of(std::string_view text, uint64_t largest) {
  uint64_t number = 0;
  auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  bool fits = result.ec == std::errc() && result.ptr == text.data() + text.size();
  return fits && number <= largest ? number : 0;
}

// Takes an option; false for a word that is none.
static bool take_option(std::string_view word, a_run_limits* limits) {
  size_t equals = word.find('=');
  std::string_view name = word.substr(0, equals);
  if (word == "--trace") {
    limits->trace = true;
    return true;
  }
  if (equals == std::string_view::npos)
    return false;
  std::string_view value = word.substr(equals + 1);
  if (name == "--max-steps")
    return (limits->max_steps = number_of(value, UINT64_MAX)) != 0;
  if (name == "--heap")
    return (limits->heap_bytes = static_cast<uint32_t>(number_of(value, 2048) << 20)) != 0;
  if (name == "--stack")
    return (limits->stack_bytes = static_cast<uint32_t>(number_of(value, 512) << 20)) != 0;
  return false;
}

int main(int argc, char** argv) {
  a_run_limits limits;
  int next = 1;
  for (; next < argc && argv[next][0] == '-'; next++) {
    if (!take_option(argv[next], &limits))
      return usage();
  }
  if (next >= argc)
    return usage();
  an_if_file file;
  an_if_error error;
  if (!if_read_file(argv[next], &file, &error)) {
    std::fprintf(stderr, "ifrun: %s: offset %llu: %s\n", argv[next],
                 static_cast<unsigned long long>(error.offset), error.message.c_str());
    return 125;
  }
  return run_program(file, {argv + next, argv + argc}, limits);
}
