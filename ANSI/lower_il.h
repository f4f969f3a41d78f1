// The driver of IL lowering.

#ifndef LOWER_IL_H
#define LOWER_IL_H

#include "basics.h"

// Whether lowering runs at all.
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
