// The global mode words: the settings of a run that every module reads. The
// command line sets them and derives one from another; see cmd_line.h.

#ifndef MODE_WORDS_H
#define MODE_WORDS_H

#include "basics.h"

// The values of C_dialect.
enum a_C_dialect { cd_ansi_c = 0, cd_k_and_r = 1, cd_cplusplus = 2 };

// The values of instantiation_mode.
enum an_instantiation_mode { im_none = 0, im_all = 1, im_used = 2, im_local = 3 };

#define MODE_WORD(name, start) extern a_boolean name;
#include "mode_words.def"
#undef MODE_WORD

// File names of the run. Each is null until an option or a default sets it.
extern const char* primary_source_file_name;
extern const char* object_file_name;
extern const char* il_file_name;
extern const char* i_file_name;
extern const char* pp_file_name;
extern const char* ah_file_name;
extern const char* pch_output_file_name;
extern const char* pch_input_file_name;
extern const char* pch_dir_name;
extern const char* ii_file_name;
extern const char* template_info_file_name;
extern const char* definition_list_file_name;

// What --advice:performance asked for, null without it.
extern const char* advice_performance;

// The suffixes tried for an included name that has none, each behind a colon.
extern const char* include_file_suffixes;

// The argument vector of main.
extern int sys_argc;
extern char** sys_argv;

inline bool in_C_mode() {
  return C_dialect != cd_cplusplus;
}

inline bool in_cplusplus_mode() {
  return C_dialect == cd_cplusplus;
}

// Gives every mode word and name its start value.
void reset_mode_words();

#endif
