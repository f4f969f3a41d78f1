// The command line: reads the argument vector into the mode words, and derives
// the settings of the language from the few decisions the options make.

#ifndef CMD_LINE_H
#define CMD_LINE_H

#include "basics.h"
#include "mode_words.h"

#include <cstdio>
#include <string>
#include <vector>

// --define_macro and --undefine_macro, in the order given.
struct a_def_undef {
  a_def_undef* next;
  const char* text; // as given: NAME or NAME=value
  bool is_undefine;
};
extern a_def_undef* defs_from_cmd_line;
void add_to_def_undef_list(const char* text, bool is_undefine);

// Words taken as they stand for the intermediate file, by --opt_shell,
// --opt_ansi, --opt_opt and --opt_cg.
extern std::vector<std::string> shell_opts;
extern std::vector<std::string> ansi_opts;
extern std::vector<std::string> opt_opts;
extern std::vector<std::string> cg_opts;

void cmd_line_early_init();

// Reads all options and derives the settings. Ends the process for a faulty
// option, and after options that only print something.
void proc_command_line(int argc, char** argv);

// Writes the name of the tool and its version.
void print_banner(FILE* stream);

#endif
