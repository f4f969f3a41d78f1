// The options that print something about the tool.

#include "cmd_line_int.h"

#include "cfe.h"
#include "target.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <string>

namespace {

const char* const tool_name = "KRT EABI C/C++ Parser";
const char* const tool_version = "2.3.2";
constexpr int build_number = 1;

std::string upper_case(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(toupper(c)); });
  return text;
}

// The settings of the build as lines of C, by name.
typedef std::map<std::string, std::string> a_configuration;

void add_number(a_configuration* lines, const std::string& name, long long value) {
  (*lines)[name] = "#define " + name + " " + std::to_string(value);
}

void add_text(a_configuration* lines, const std::string& name, const char* text) {
  (*lines)[name] = "#define " + name + " " + text;
}

void add_undefined(a_configuration* lines, const std::string& name) {
  (*lines)[name] = "/*      " + name + " not defined */";
}

a_configuration configuration() {
  a_configuration lines;
#define MODE_WORD(name, start) add_number(&lines, "DEFAULT_" + upper_case(#name), start);
#include "mode_words.def"
#undef MODE_WORD
#define TARG(name, type, value, form)                                                              \
  add_number(&lines, upper_case(#name), static_cast<long long>(value));
#define TARG_SETTING(name, value) add_number(&lines, "DEFAULT_" + upper_case(#name), value);
#include "target.def"
#undef TARG
#undef TARG_SETTING
#define CONFIG_NUMBER(name, value) add_number(&lines, #name, value);
#define CONFIG_TEXT(name, text) add_text(&lines, #name, text);
#define CONFIG_UNDEFINED(name) add_undefined(&lines, #name);
#include "cmd_line_config.def"
#undef CONFIG_NUMBER
#undef CONFIG_TEXT
#undef CONFIG_UNDEFINED
  return lines;
}

} // namespace

void print_banner(FILE* stream) {
  fprintf(stream, "%s v%s\n", tool_name, tool_version);
}

void do_zntversion(const an_option&, const char*) {
  fprintf(f_error, "Zanthe Systems C/C++ Front End, version %s (%s)\n", front_end_version,
          __DATE__);
}

void do_toolversion(const an_option&, const char*) {
  print_banner(stdout);
  printf("Build Number %d\n", build_number);
  exit(0);
}

void do_help(const an_option&, const char*) {
  printf("Usage: %s [-options] filename\n\n", sys_argv[0]);
  puts("This tool is designed to be invoked by the compiler.");
  exit(0);
}

void do_dump_configuration(const an_option&, const char*) {
  fprintf(f_error, "/* Configuration data for Zanthe Systems C/C++ Front End */\n");
  fprintf(f_error, "/* Version %s, built on %s */\n", front_end_version, __DATE__);
  for (const auto& [name, line] : configuration())
    fprintf(f_error, "%s\n", line.c_str());
}

void do_dump_legacy_as_target(const an_option&, const char* argument) {
  dump_legacy_config_as_target_config(argument);
}
