// Lowering of complex and imaginary values (C99 6.2.5, Annex G). The target has
// neither: a complex value becomes a struct of its two parts and each operation
// the call of a small routine that the unit gets a body for; an imaginary value
// becomes its floating value.

#ifndef LOWER_COMPLEX_H
#define LOWER_COMPLEX_H

#include "basics.h"

// The struct for complex values of a float kind: the field "_Vals", an array of
// two. Null for a kind that the target lacks.
a_type* lowered_complex_type(int float_kind);
// The field "_Vals" of a complex type, or of its lowered type.
a_field* vals_field(a_type* type);
// An element of an array that is an lvalue.
an_expr_node* element_lvalue_expr(an_expr_node* array, int64_t index);

// Whether the node or one of its operands has such a value.
bool takes_part_in_complex_arithmetic(const an_expr_node* node);
// Forgets the constants of the region that was lowered before.
void begin_complex_lowering_of_region();
// Lowers one node whose operands are lowered, if complex or imaginary values
// take part.
void lower_c99_complex_node(an_expr_node* node);
// The test of a lowered complex value against zero.
an_expr_node* complex_ne_0(an_expr_node* value);
// Turns complex values in a constant, at any depth, into aggregates and
// imaginary ones into floating ones.
void lower_c99_complex_constant(a_constant* constant);
// Gives the routines that the unit calls their bodies.
void define_c99_complex_routines();
// Turns the complex and imaginary types into the lowered ones. Nothing may be
// analysed or lowered after it.
void lower_c99_nonreal_float_types();

void lower_complex_one_time_init();
void lower_complex_trans_unit_init();

#endif
