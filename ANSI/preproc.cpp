// Preprocessing directives.

#include "preproc.h"

int pp_if_stack_depth = -1;
int base_pp_if_stack_depth = -1;

void preproc_one_time_init() {}

void preproc_trans_unit_init() {
  fetch_pp_tokens = 0;
  expand_macros = 1;
  do_string_literal_concatenation = 1;
  in_pp_if_expression = 0;
  pp_if_stack_depth = -1;
  base_pp_if_stack_depth = -1;
}

void preproc_init() {}
