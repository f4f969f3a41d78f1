// Templates and their instances.

#ifndef TEMPLATES_H
#define TEMPLATES_H

#include "basics.h"

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

void templates_one_time_init();
void templates_init();
void templates_trans_unit_init();

#endif
