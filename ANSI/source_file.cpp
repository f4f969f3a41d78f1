// The search path and the start-up of the source file module.

#include "source_file.h"

#include "source_line.h"

a_directory_name_entry* incl_search_path;
a_directory_name_entry* end_incl_search_path;
a_directory_name_entry* sys_incl_search_path;
a_file_name_list_entry* preinclude_file_list;
a_file_name_list_entry* macro_preinclude_file_list;

void source_file_early_init() {
  incl_search_path = nullptr;
  end_incl_search_path = nullptr;
  sys_incl_search_path = nullptr;
  preinclude_file_list = nullptr;
  macro_preinclude_file_list = nullptr;
}

void source_file_one_time_init() {
  source_line_one_time_init();
}

void source_file_init() {
  source_line_init();
}

void source_file_trans_unit_init() {
  source_file_reset();
}

void source_file_reset() {
  source_line_reset();
}
