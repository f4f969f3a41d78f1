#include "lower_name.h"

#include <algorithm>
#include <cstring>

#include "il.h"
#include "il_alloc.h"
#include "mem_manage.h"

void rewrite_ucns_in_name(a_source_correspondence* corresp) {
  const char* name = corresp->name;
  if (!il_header.has_ucn_names || name == nullptr || corresp->name_is_lowered ||
      strchr(name, '\\') == nullptr)
    return;
  const size_t length = strlen(name);
  char* rewritten = copy_string_of_length_to_region(curr_il_region_number, name, length);
  std::replace(rewritten, rewritten + length, '\\', '_');
  corresp->source_name = name;
  corresp->name = rewritten;
  corresp->name_is_lowered = 1;
}

void init_name_linkage_constants() {
  // C has a single name linkage.
}

void do_all_name_mangling() {
  // C names stand as written.
}

void do_final_name_mangling() {
  // C names stand as written.
}

void lower_name_one_time_init() {
  // No variable of this module is kept for each unit.
}

void lower_name_init() {
  // Nothing of this module lives on from an earlier run.
}
