#include "lower_il.h"

#include "error.h"
#include "il_entities.h"
#include "lower_c99.h"
#include "lower_stmt_expr.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "type_pkg.h"

a_boolean il_lowering_underway;
a_source_position code_pos_for_lowering;

bool il_lowering_needed() {
  return in_cplusplus_mode() && !suppress_il_lowering && total_errors == 0;
}

void lower_functions_waiting_for_module_id() {
  // No function waits.
}

void finish_function_processing_for_function_def(int, bool) {
  // No body is delayed.
}

static void lower_region(int32_t region) {
  if (c99_il_lowering_needed())
    lower_c99_il_memory_region(region);
}

void lower_function_scope(a_routine* routine, a_scope*) {
  lower_region(routine->region_number);
}

void lower_file_scope() {
  lower_region(file_scope_region_number);
}

void clear_parent_information() {
  // Entities of C have no parent.
}

void il_lower_one_time_init() {
  // No variable of this module is kept for each unit.
}

void il_lower_init() {
  il_lowering_underway = 0;
}

void il_lower_trans_unit_init() {
  code_pos_for_lowering = null_source_position;
  any_statement_expressions = false;
  if (type_pkg == nullptr)
    init_tp();
}
