// The command line: reads the argument vector into the mode words, and derives
// the settings of the language from the few decisions the options make.

#ifndef CMD_LINE_H
#define CMD_LINE_H

#include "basics.h"
#include "mode_words.h"

#include <cstdio>
#include <map>
#include <memory>
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

// The source file of the run; error 596 when the command line names none.
const char* get_src_file_name();

// Whether the option of a feature of C++11 was given, so that the extension
// `code` needn't be reported where an older standard holds.
bool cmd_line_option_inhibits_gnu_cpp11_extension_warning(an_error_code code);

// Writes the name of the tool and its version.
void print_banner(FILE* stream);

// -- Overrides ------------------------------------------------------------------
//
// Options of single files and functions, by a key: FILE:FUNCTION, FUNCTION,
// FILE: or FILE, where FILE is the last component of a file's name, or "-" for
// the whole unit.

struct OPT_OVERRIDE {
  uint32_t set_id = 0;                  // the set of words in the intermediate file, 0: none
  const char* front_end_word = nullptr; // an option for this tool itself
};

extern std::map<std::string, OPT_OVERRIDE> opt_overrides;

// The override of a key, null if there's none and none is to be made.
OPT_OVERRIDE* lookup_opt_override(const char* key, bool create);

// The override for the function or variable `name` that stands at `position`;
// for the whole unit when `name` is null. Null if there's none.
OPT_OVERRIDE* get_opt_override(const char* name, const a_source_position* position);

// What the options were before an override.
class OPTION_STATE {
public:
  virtual void save_state();
  virtual void restore_state();
  virtual void reset_state();
  virtual ~OPTION_STATE() = default;
};

// Obeys the override of `name` at `position`. The result, null without an
// override, belongs to the caller, who keeps it while the override holds.
std::unique_ptr<OPTION_STATE> process_opt_override(const char* name,
                                                   const a_source_position* position);

#endif
