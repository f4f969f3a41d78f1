#include "lower_il.h"

#include "mode_words.h"

bool il_lowering_needed() {
  return !suppress_il_lowering;
}

void lower_functions_waiting_for_module_id() {
  // No function waits.
}

void finish_function_processing_for_function_def(int, bool) {
  // No body is delayed.
}

void lower_function_scope(a_routine*, a_scope*) {
  // Functions of C need no rewriting yet.
}

void lower_file_scope() {
  // C needs no rewriting at file scope yet.
}

void clear_parent_information() {
  // Entities of C have no parent.
}

void il_lower_one_time_init() {
  // Registers the variables kept for each unit.
}

void il_lower_init() {
  // Clears the lowering state.
}

void il_lower_trans_unit_init() {
  // Clears the position of new code.
}
