// The end of a unit, of the front end and of the process.

#include "cfe.h"

#include "class_decl.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_constants.h"
#include "il_statements.h"
#include "il_write.h"
#include "interpret.h"
#include "lexical.h"
#include "lower_il.h"
#include "lower_name.h"
#include "mem_manage.h"
#include "misra.h"
#include "mode_words.h"
#include "nrg.h"
#include "pp_output.h"
#include "scope_stk.h"
#include "source_file.h"
#include "templates.h"
#include "trans_copy.h"
#include "trans_corresp.h"
#include "trans_unit.h"
#include "types.h"

#include <initializer_list>

namespace {

bool old_cplusplus_mode() {
  return cfront_2_1_mode || cfront_3_0_mode;
}

bool any_errors() {
  return total_errors != 0;
}

a_translation_unit* first_secondary_unit() {
  return translation_units->next;
}

// Calls `pass` for each secondary unit, made current, and last for the primary.
void for_each_unit_primary_last(void (*pass)(a_translation_unit* unit)) {
  for (a_translation_unit* unit = first_secondary_unit(); unit != nullptr; unit = unit->next) {
    switch_translation_unit(unit);
    pass(unit);
  }
  switch_translation_unit(translation_units);
  pass(translation_units);
}

void for_each_secondary_unit(void (*pass)(a_translation_unit* unit)) {
  for (a_translation_unit* unit = first_secondary_unit(); unit != nullptr; unit = unit->next) {
    switch_translation_unit(unit);
    pass(unit);
  }
}

void list_macro_and_its_file(const a_macro* macro) {
  const char* file_name = nullptr;
  conv_seq_to_file_and_line(macro->source_corresp.position.seq, &file_name, nullptr, nullptr,
                            nullptr);
  if (macro->is_predefined)
    fprintf(f_pp_output, "%s\t/* Predefined */\n", macro->text);
  else if (file_name != nullptr)
    fprintf(f_pp_output, "%s\t/* %s */\n", macro->text, file_name);
  else
    fprintf(f_pp_output, "%s\n", macro->text);
}

void list_macros_of_unit(a_translation_unit*) {
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    list_macro_and_its_file(macro);
}

void list_all_macros() {
  list_macros_of_unit(translation_units);
  for_each_secondary_unit(list_macros_of_unit);
  switch_translation_unit(translation_units);
}

void wrap_up_scopes(a_translation_unit* unit) {
  if (old_cplusplus_mode() && !do_preprocessing_only)
    check_class_linkage();
  wrapup_scope(il_header.primary_scope, sk_file, unit->scope_pointers, depth_scope_stack);
  if (in_cplusplus_mode())
    do_based_type_fixup();
  if (il_lowering_needed())
    do_all_name_mangling();
}

void find_needed_entities(a_translation_unit*) {
  set_needed_flags_at_end_of_file_scope(il_header.primary_scope);
}

void find_kept_entities(a_translation_unit*) {
  mark_to_keep_in_il(il_header.primary_scope, iek_scope);
}

// An incomplete unit, one with errors, keeps all that it has.
void eliminate_unneeded_entities(a_translation_unit*) {
  if (any_errors())
    okay_to_eliminate_unneeded_il_entries = 0;
  else if (in_cplusplus_mode())
    clear_instantiation_required_on_unneeded_entities();
  if (!okay_to_eliminate_unneeded_il_entries)
    return;
  eliminate_bodies_of_unneeded_functions();
  eliminate_unneeded_il_entries(il_header.primary_scope);
}

void finish_delayed_functions() {
  for (bool first_pass : {true, false})
    for (int n = 1; n <= highest_used_function_def_number; n++)
      finish_function_processing_for_function_def(n, first_pass);
  function_body_processing_delayed_on_some_func_in_primary_il = 0;
}

// The last pass over a unit: its file scope is lowered and closed, and what
// nobody needs is dropped.
void finish_unit(a_translation_unit* unit) {
  lower_file_scope();
  empty_shareable_constants_table();
  if (in_cplusplus_mode())
    pop_object_lifetime();
  pop_scope();
  if (!any_errors()) {
    find_needed_entities(unit);
    find_kept_entities(unit);
    if (il_lowering_needed())
      do_final_name_mangling();
  }
  eliminate_unneeded_entities(unit);
  check_for_done_with_all_function_memory_regions();
  if (in_cplusplus_mode()) {
    if (!any_errors()) {
      update_auto_instantiation_flags();
      update_inline_function_flags();
    }
    wrapup_auto_instantiation_information();
  }
  if (il_lowering_needed())
    clear_parent_information();
  check_for_done_with_memory_region(file_scope_region_number);
}

void finish_secondary_units() {
  if (!any_errors())
    mark_secondary_trans_unit_IL_entities_used_from_primary_as_needed();
  for_each_secondary_unit(find_needed_entities);
  for_each_secondary_unit(find_kept_entities);
  for_each_secondary_unit(eliminate_unneeded_entities);
  for_each_secondary_unit(finish_unit);
  if (any_errors() || suppress_il_lowering || trans_unit_test_mode)
    return;
  copy_secondary_trans_unit_IL_to_primary();
  function_body_processing_delayed_on_some_func_in_primary_il = 1;
}

void free_regions_of_secondary_units() {
  constexpr int first_region_of_functions = 2;
  for (int region = first_region_of_functions; region <= highest_used_region_number; region++)
    if (mem_region_table[region] != nullptr)
      free_memory_region(region);
}

void close_listing_files() {
  close_output_file_with_error_handling(&f_pp_output, fk_pp_output);
  close_output_file_with_error_handling(&f_xref_info, fk_xref);
}

} // namespace

void translation_unit_wrapup() {
  if (old_cplusplus_mode() && !do_preprocessing_only)
    check_class_linkage();
  pop_scope();
  push_file_scope(true);
  if (!do_preprocessing_only)
    set_trans_unit_correspondences();
  make_module_id(nullptr);
  lower_functions_waiting_for_module_id();
  if (!is_primary_translation_unit && in_cplusplus_mode() && !do_preprocessing_only)
    set_master_instance_information();
  if (check_nrg && is_primary_translation_unit && !do_preprocessing_only)
    nrg_wrapup();
}

void fe_wrapup() {
  switch_translation_unit(translation_units);
  if (in_cplusplus_mode())
    template_and_inline_function_wrapup();
  if (list_macro_definitions)
    gen_pp_output_for_macro_definitions();
  if (list_macros && f_pp_output != nullptr)
    list_all_macros();
  for_each_unit_primary_last(wrap_up_scopes);
  release_interpreter_arenas();
  bool secondary_units_exist = first_secondary_unit() != nullptr;
  if (secondary_units_exist)
    finish_secondary_units();
  switch_translation_unit(translation_units);
  if (instantiation_mode != im_all)
    remove_unneeded_instantiations();
  if (function_body_processing_delayed_on_some_func_in_primary_il)
    finish_delayed_functions();
  finish_unit(translation_units);
  if (secondary_units_exist)
    free_regions_of_secondary_units();
  finish_il_file();
  close_listing_files();
  curr_stop_token_stack_entry = nullptr;
  clear_file_index_list();
  in_front_end = 0;
  if (check_misra_c_2004)
    misra_wrapup();
}

void fe_wrapup_part_2() {
  close_il_output_file();
  finish_raw_listing_file();
  write_signoff();
  free_all_memory();
}
