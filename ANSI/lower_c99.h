// Lowering of C: designated initialisers become positional, conversions to
// _Bool and conditions become comparisons, initialisers of automatic
// aggregates become assignments.

#ifndef LOWER_C99_H
#define LOWER_C99_H

#include "basics.h"

// Whether the unit is C that may hold what must be lowered.
bool c99_il_lowering_needed();
// Lowers the scopes of a memory region: a function, or the file scope.
void lower_c99_il_memory_region(int32_t region);

void lower_c99_statement(a_statement* statement);
// An expression, and one that isn't part of another one; null for none.
void lower_c99_expr(an_expr_node* expr);
void lower_c99_full_expr(an_expr_node* expr);
// A constant value: its designators, and the complex values in it. `init`, when
// it isn't null, is the dynamic initialisation that owns the constant.
void lower_c99_constant(a_constant* constant, a_dynamic_init* init);

void lower_c99_one_time_init();
void lower_c99_init();
void lower_c99_trans_unit_init();

#endif
