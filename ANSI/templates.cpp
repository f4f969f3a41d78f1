#include "templates.h"

void template_and_inline_function_wrapup() {
  // No instance waits while no template was declared.
}

void remove_unneeded_instantiations() {
  // No instance exists while no template was declared.
}

void clear_instantiation_required_on_unneeded_entities() {
  // No entity bears a mark while no template was declared.
}

void update_auto_instantiation_flags() {
  // No instance exists while no template was declared.
}

void update_inline_function_flags() {
  // No inline function waits for its definition.
}

void wrapup_auto_instantiation_information() {
  // No template information file is open.
}

void templates_one_time_init() {
  // No variable of this module is kept for each unit.
}

void templates_init() {
  // Nothing of this module lives on from an earlier run.
}

void templates_trans_unit_init() {
  // Nothing of this module lives on from an earlier unit.
}
