// The driver of IL lowering: the rewriting of the constructs of the language
// to those that the output stage can write, region by region.

#ifndef LOWER_IL_H
#define LOWER_IL_H

#include "basics.h"

// On while any lowering runs.
extern a_boolean il_lowering_underway;
// The position of what lowering makes.
extern a_source_position code_pos_for_lowering;

// Whether the lowering of C++ runs.
bool il_lowering_needed();

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
