// Lowering of arrays of variable length: the variable becomes a pointer to room
// that the run-time library gives, sizes become products of the dimensions'
// variables, and steps over such arrays are computed in bytes.

#ifndef LOWER_VLA_H
#define LOWER_VLA_H

#include "basics.h"

#include <vector>

// Around the lowering of a function. What follows is for functions that have such
// types alone.
void begin_lowering_of_vlas(const a_routine* routine);
void end_lowering_of_vlas();
extern bool function_has_vlas;

// An expression, behind its operands.
void lower_vla_node(an_expr_node* node);
// The dimensions of a type that stands in an expression; null when there is none to
// be evaluated.
an_expr_node* lower_vla_dimensions_in_type(a_type* type);
// The bounds that the lowering of the node, a cast, a size or a compound literal, is
// going to evaluate.
std::vector<an_expr_node*> unevaluated_bounds(const an_expr_node* node);

// The evaluation of a dimension, a declaration, a jump and its target.
void lower_set_vla_size(a_statement* statement);
void lower_vla_decl(a_statement* statement);
void lower_vla_goto(a_statement* statement);
void lower_vla_label(const a_statement* statement);
// How many arrays are alive; and the end of the block of all behind the first
// `count`.
size_t num_live_vlas();
void end_block_of_vlas(size_t count);

void lower_vla_one_time_init();
void lower_vla_trans_unit_init();

#endif
