// The driver of IL lowering: the rewriting of the constructs of the language
// to those that the output stage can write, region by region.

#ifndef LOWER_IL_H
#define LOWER_IL_H

#include "basics.h"
#include "lower_context.h"
#include "source_file.h"

// On while any lowering runs.
extern a_boolean il_lowering_underway;
// The position of what lowering makes.
extern a_source_position code_pos_for_lowering;

// Whether the lowering of C++ runs.
bool il_lowering_needed();
// Whether the file scope of a C++ unit has been lowered.
bool cpp_il_lowering_occured();

// A pass over one region. Analysis and lowering take turns, so that a pass leaves
// all that it changes as it was.
struct a_lowering_pass {
  a_saved_context saved;
  a_context context;
  a_scope* function_scope;
  a_source_position error_position;
  a_boolean was_underway;
  uint8_t flag; // that entries started with
};
void begin_lowering_pass(a_lowering_pass* pass, int32_t region, a_scope* scope);
void end_lowering_pass(const a_lowering_pass* pass);

// Lowers the functions that waited for the module id.
void lower_functions_waiting_for_module_id();

// Lowers a function whose body was delayed.
void finish_function_processing_for_function_def(int function_number, bool first_pass);

// Lowers a function whose body is complete.
void lower_function_scope(a_routine* routine, a_scope* scope);

// Lowers the file scope.
void lower_file_scope();

// Drops the parent relation of lowered entities.
void clear_parent_information();

void il_lower_one_time_init();
void il_lower_init();
void il_lower_trans_unit_init();

#endif
