// ifrun: runs the program in an intermediate file.

#include <charconv>
#include <cstdio>
#include <cstring>

#include "ifrun.h"

static int usage() {
  std::fputs("usage: ifrun [--max-steps=N] FILE.if [argument...]\n", stderr);
  return 125;
}

int main(int argc, char** argv) {
  static const char steps_option[] = "--max-steps=";
  uint64_t max_steps = UINT64_MAX;
  int next = 1;
  if (next < argc && std::strncmp(argv[next], steps_option, sizeof steps_option - 1) == 0) {
    const char* text = argv[next++] + sizeof steps_option - 1;
    const char* end = text + std::strlen(text);
    auto result = std::from_chars(text, end, max_steps);
    if (result.ec != std::errc() || result.ptr != end || max_steps == 0)
      return usage();
  }
  if (next >= argc || argv[next][0] == '-')
    return usage();
  an_if_file file;
  an_if_error error;
  if (!if_read_file(argv[next], &file, &error)) {
    std::fprintf(stderr, "ifrun: %s: offset %llu: %s\n", argv[next],
                 static_cast<unsigned long long>(error.offset), error.message.c_str());
    return 125;
  }
  return run_program(file, {argv + next, argv + argc}, max_steps);
}
