// Templates and their instances.

#ifndef TEMPLATES_H
#define TEMPLATES_H

#include "il_expr.h"

// Instantiates what the unit needs and finishes the inline functions.
void template_and_inline_function_wrapup();

// Drops the bodies of instances that another unit provides.
void remove_unneeded_instantiations();

// Clears the instantiation marks of entities that are not kept.
void clear_instantiation_required_on_unneeded_entities();

// Settles the flags of the instances for the prelinker.
void update_auto_instantiation_flags();

// Settles which inline functions need a definition.
void update_inline_function_flags();

// Closes the template information file.
void wrapup_auto_instantiation_information();

// The operation of an operator whose meaning waits for the types of operands.
void template_unary_operation(an_expr_operator_kind op, an_operand* operand,
                              const a_source_position* position, an_operand* result);
void template_binary_operation(an_expr_operator_kind op, an_operand* left, an_operand* right,
                               const a_source_position* position, an_operand* result);
void template_question_operation(an_operand* condition, an_operand* second, an_operand* third,
                                 const a_source_position* position, an_operand* result);
// Completes the class that is an instance of a template, if it can be.
void f_instantiate_template_class(a_type* type);

void templates_one_time_init();
void templates_init();
void templates_trans_unit_init();

#endif
