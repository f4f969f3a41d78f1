// Helper routines that lowering calls. A helper is declared at its first use and
// kept in the slot of its user, a variable of the translation unit.

#ifndef LOWER_RUNTIME_H
#define LOWER_RUNTIME_H

#include "basics.h"

// The routine of that name at file scope, or a new external one of the type.
a_routine* make_rout_entry(const char* name, a_type* routine_type);
// The routine in the slot; an empty slot gets one with the prototype. Parameters
// that there are none of are null.
a_routine* make_prototyped_runtime_routine(const char* name, a_routine** slot, a_type* return_type,
                                           a_type* param1 = nullptr, a_type* param2 = nullptr);
// A call of a routine. The arguments are chained, and of the parameters' types.
an_expr_node* make_call_node(a_routine* routine, an_expr_node* arguments);
// A call of the routine in the slot; for an empty slot a helper is declared that
// takes one or two arguments of the types of these.
an_expr_node* f_make_prototyped_runtime_call(const char* name, a_routine** slot,
                                             a_type* return_type, an_expr_node* arguments);

#endif
