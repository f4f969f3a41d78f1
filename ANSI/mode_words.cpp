#include "mode_words.h"

#define MODE_WORD(name, start) a_boolean name = start;
#include "mode_words.def"
#undef MODE_WORD

const char* primary_source_file_name;
const char* object_file_name;
const char* il_file_name;
const char* i_file_name;
const char* pp_file_name;
const char* ah_file_name;
const char* pch_output_file_name;
const char* pch_input_file_name;
const char* pch_dir_name;
const char* ii_file_name;
const char* template_info_file_name;
const char* definition_list_file_name;
const char* advice_performance;
const char* include_file_suffixes = "::hpp";
int sys_argc;
char** sys_argv;

void reset_mode_words() {
#define MODE_WORD(name, start) name = start;
#include "mode_words.def"
#undef MODE_WORD
  primary_source_file_name = object_file_name = nullptr;
  il_file_name = i_file_name = pp_file_name = ah_file_name = nullptr;
  pch_output_file_name = pch_input_file_name = pch_dir_name = nullptr;
  ii_file_name = template_info_file_name = definition_list_file_name = nullptr;
  advice_performance = nullptr;
  include_file_suffixes = "::hpp";
}
