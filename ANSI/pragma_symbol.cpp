// Pragmas of the target that say something of a function or of an object:
// alignment, sections, marks for the optimiser, interrupts, memory.

#include <string>

#include "cfe.h"
#include "decls.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_if.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma_int.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

// The name of a function outside of the unit.
static const char* external_name_of(const a_routine* routine) {
  const a_routine_gnu_supplement* gnu = routine->gnu_supplement;
  return gnu != nullptr && gnu->asm_name != nullptr ? gnu->asm_name : routine->source_corresp.name;
}

// ---- As if the declaration had said so ----

void update_symbol_by_symtype(a_symbol* symbol, uint32_t modifier) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  state.symbol = symbol;
  state.modifiers.mask = modifier;
  if (is_routine(symbol))
    update_routine_decl_modifiers(symbol->variant.routine, &state);
  else
    update_variable_decl_modifiers(&state);
}

// ---- DATA_ALIGN ----

// Whether the variable is one that the pragma takes; says so if not.
static bool takes_pragma_on_objects(const a_pending_pragma* pragma, const a_symbol* symbol) {
  if (in_C_mode() ? is_file_level_variable(symbol) : is_static_storage_variable(symbol))
    return true;
  pragma_symbol_fault(in_C_mode() ? ec_pragma_requires_level_zero_def
                                  : ec_pragma_requires_static_storage,
                      pragma, symbol);
  return false;
}

static int align_variable(const a_pending_pragma* pragma, a_symbol* symbol, uint64_t alignment) {
  const char* name = pragma_name(pragma->description->kind);
  const a_source_position* position = &pragma->directive_position;
  a_variable* variable = symbol->variant.variable;
  if (alignment == 0 || (alignment & (alignment - 1)) != 0) {
    pos_st_error(ec_pragma_icon_not_pow2, position, name);
  } else if (alignment < uint64_t(targ_minimum_pack_alignment) ||
             alignment > uint64_t(targ_maximum_pack_alignment)) {
    pos_st_error(ec_pragma_alignment_too_large, position, name);
  } else if (variable->decl_modifiers & dm_data_align) {
    pos_st_error(ec_bad_membank_align_use, position, variable->source_corresp.name);
  } else {
    if (variable->alignment < alignment && uint64_t(top_level_alignment(variable)) < alignment)
      variable->alignment = static_cast<uint16_t>(alignment);
    update_symbol_by_symtype(symbol, dm_data_align);
  }
  return 0;
}

int data_align_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  uint64_t alignment;
  if (!scan_comma_behind_symbol() || !scan_icon(&alignment) || !scan_end_of_pragma() ||
      !takes_pragma_on_objects(pragma, symbol))
    return 0;
  return align_variable(pragma, symbol, alignment);
}

// ---- Sections ----

static void report_section_conflict(const a_pending_pragma* pragma, const a_symbol* symbol,
                                    const a_section_info* present, const char* name) {
  pos_st2_sy_diagnostic(es_warning, ec_section_pragma_conflict, &pragma->directive_position,
                        present->text, name, symbol);
}

int data_section_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  const char* name = scan_comma_behind_symbol() ? scan_pragma_string() : nullptr;
  if (name == nullptr || !scan_end_of_pragma() || !takes_pragma_on_objects(pragma, symbol))
    return 0;
  a_variable* variable = symbol->variant.variable;
  if (!set_variable_section_specification(variable, so_declaration, name,
                                          &pragma->directive_position))
    report_section_conflict(pragma, symbol, variable->section_info, name);
  return 0;
}

int code_section_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  const char* name = scan_comma_behind_symbol() ? scan_pragma_string() : nullptr;
  if (name == nullptr || !scan_end_of_pragma())
    return 0;
  if (!is_routine(symbol))
    return pragma_symbol_fault(ec_pragma_requires_func, pragma, symbol);
  a_routine* routine = symbol->variant.routine;
  if (!set_routine_section_specification(routine, so_declaration, name,
                                         &pragma->directive_position))
    report_section_conflict(pragma, symbol, routine->section_info, name);
  return 0;
}

// ---- Marks on functions ----

int function_mark_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  if (!is_routine(symbol))
    return pragma_symbol_fault(ec_pragma_requires_func, pragma, symbol);
  make_pragma_entry(pragma, symbol, nullptr, {});
  return 0;
}

int definition_mark_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  if (!is_routine_definition(symbol))
    return pragma_symbol_fault(ec_pragma_requires_func_def, pragma, symbol);
  // The symbol's definition state tells that others call the function.
  if (pragma->description->kind == pk_func_ext_called)
    create_il_entry_for_pragma(pragma, symbol, nullptr);
  else
    make_pragma_entry(pragma, symbol, nullptr, {});
  return 0;
}

// ---- INTERRUPT, NMI_INTERRUPT ----

static int pragma_interrupt_backend(a_pending_pragma* pragma, a_symbol* symbol) {
  const a_source_position* position = &pragma->directive_position;
  if (!is_routine(symbol)) {
    pos_warning(ec_pragma_interrupt_requires_void, position);
    return 0;
  }
  a_type* type = skip_typerefs(symbol->variant.routine->type);
  if (is_error_type(type))
    return 0;
  if (!is_void_type(return_type_of(type))) {
    pos_error(ec_pragma_interrupt_requires_void, position);
  } else if (param_types_of(type) != nullptr) {
    pos_st_error(ec_pragma_interrupt_has_params, position, symbol->header->identifier);
  } else {
    update_symbol_by_symtype(symbol, pragma->description->kind == pk_interrupt ? dm_interrupt
                                                                               : dm_nmi_interrupt);
    make_pragma_entry(pragma, symbol, nullptr, {});
  }
  return 0;
}

int interrupt_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  return scan_end_of_pragma() ? pragma_interrupt_backend(pragma, symbol) : 0;
}

// ---- NEAR, FAR ----

int near_far_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  if ((symbol->kind != symk_variable && symbol->kind != symk_static_data_member) ||
      symbol->variant.variable == nullptr)
    return pragma_fault(ec_pragma_symbol_invalid, &pragma->directive_position);
  update_symbol_by_symtype(symbol, pragma->description->kind == pk_near ? dm_near : dm_far);
  return 0;
}

// ---- RETAIN, CLINK, WEAK ----

static bool is_object_definition(const a_symbol* symbol) {
  return (symbol->kind == symk_variable || symbol->kind == symk_static_data_member) &&
         symbol->variant.variable != nullptr && symbol->variant.variable->storage_kind != sc_extern;
}

void pragma_retain_backend(a_pending_pragma* pragma, a_symbol* symbol) {
  an_il_entry_kind kind;
  void* entity = il_entry_for_symbol(symbol, &kind);
  if (kind == iek_routine)
    static_cast<a_routine*>(entity)->is_used = true;
  else
    static_cast<a_variable*>(entity)->is_used = true;
  // At the end of its declaration it may have passed for unneeded.
  source_corresp_for_il_entry(entity, kind)->reference_state = ref_state_used;
  symbol->unused_reported = true;
  mark_as_needed(entity, kind);
  make_pragma_entry(pragma, symbol, nullptr, {});
}

int retain_clink_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  bool is_object = is_object_definition(symbol);
  if (!is_object && !is_routine_definition(symbol))
    return pragma_symbol_fault(ec_pragma_requires_func_or_obj_def, pragma, symbol);
  if (is_object && !takes_pragma_on_objects(pragma, symbol))
    return 0;
  if (pragma->description->kind == pk_retain)
    pragma_retain_backend(pragma, symbol);
  else
    make_pragma_entry(pragma, symbol, nullptr, {});
  return 0;
}

int weak_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  if (!is_file_level_variable(symbol) && !is_file_level_routine(symbol))
    return pragma_symbol_fault(ec_pragma_requires_level_zero, pragma, symbol);
  make_pragma_entry(pragma, symbol, nullptr, {});
  return 0;
}

// ---- LOCATION ----

// Addresses are as wide as a pointer to what stands there.
static bool location_fits(const a_symbol* symbol, uint64_t address) {
  const a_type* type =
      is_routine(symbol) ? symbol->variant.routine->type : symbol->variant.variable->type;
  uint32_t alignment;
  uint64_t bits = size_of_pointer_to(type, &alignment) * static_cast<uint64_t>(targ_char_bit);
  return bits >= 64 || address >> bits == 0;
}

bool pragma_location_backend(a_pending_pragma* pragma, a_symbol* symbol, uint64_t address,
                             bool is_attribute) {
  if (!location_fits(symbol, address)) {
    pos_st_warning(ec_pragma_location_value_too_large, &pragma->directive_position,
                   is_attribute ? "attribute" : "pragma");
    return false;
  }
  pragma->argument_text = lasting_text(std::to_string(address));
  make_pragma_entry(pragma, symbol, nullptr, {std::to_string(address)});
  return true;
}

int location_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  uint64_t address;
  if (!is_routine_definition(symbol) && !takes_pragma_on_objects(pragma, symbol))
    return 0;
  if (scan_comma_behind_symbol() && scan_icon(&address) && scan_end_of_pragma())
    pragma_location_backend(pragma, symbol, address, false);
  return 0;
}

// ---- NOINIT, PERSISTENT ----

bool pragma_noinit_persistent_backend(a_pending_pragma* pragma, a_symbol* symbol,
                                      const char* attribute_name) {
  bool is_level_wanted = in_C_mode() && attribute_name == nullptr;
  if (is_level_wanted ? !is_file_level_variable(symbol) : !is_static_storage_variable(symbol)) {
    pos_stsy_warning(is_level_wanted ? ec_requires_level_zero_def : ec_requires_static_storage,
                     &pragma->directive_position,
                     attribute_name != nullptr ? attribute_name
                                               : pragma_name(pragma->description->kind),
                     symbol);
    return false;
  }
  make_pragma_entry(pragma, symbol, nullptr, {});
  return true;
}

int noinit_persistent_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!scan_end_of_pragma())
    return 0;
  if (is_routine_definition(symbol))
    pos_st_warning(ec_pragma_cannot_apply_to_func, &pragma->directive_position,
                   pragma_name(pragma->description->kind));
  else
    pragma_noinit_persistent_backend(pragma, symbol, nullptr);
  return 0;
}

// ---- TRAMPOLINE, CALLS ----

// At an identifier; null if the name means nothing. Reads it.
static const a_symbol* scan_symbol_operand(const char** name) {
  a_symbol_locator locator = locator_for_curr_id;
  *name = locator.header->identifier;
  const a_symbol* symbol = normal_id_lookup(&locator, ilo_none);
  get_token();
  return symbol;
}

static bool is_at_identifier(const a_pending_pragma* pragma, const a_symbol* symbol) {
  if (curr_token == tok_identifier)
    return true;
  pos_stsy_error(ec_improper_pragma_use, &pragma->directive_position,
                 pragma_name(pragma->description->kind), symbol);
  pragma_had_error = true;
  return false;
}

int trampoline_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  if (!is_file_level_routine(symbol))
    return pragma_symbol_fault(ec_pragma_requires_level_zero, pragma, symbol);
  if (!scan_comma_behind_symbol() || !is_at_identifier(pragma, symbol))
    return 0;
  const char* name;
  const a_symbol* target = scan_symbol_operand(&name);
  if (!is_routine(target)) {
    pos_st_error(ec_pragma_symbol_x_invalid, &pragma->directive_position, name);
    pragma_had_error = true;
    return 0;
  }
  if (scan_end_of_pragma()) {
    pragma->argument_text = lasting_text(external_name_of(target->variant.routine));
    make_pragma_entry(pragma, symbol, nullptr, {pragma->argument_text});
  }
  return 0;
}

bool create_pragma_calls(a_pending_pragma* pragma, a_symbol* symbol,
                         std::vector<std::string> names) {
  if (!is_file_level_routine(symbol)) {
    pragma_symbol_fault(ec_pragma_requires_level_zero, pragma, symbol);
    return false;
  }
  std::string text;
  for (const std::string& name : names)
    text.append(text.empty() ? "" : " ").append(name);
  pragma->argument_text = lasting_text(text);
  make_pragma_entry(pragma, symbol, nullptr, std::move(names));
  return true;
}

// One name of the list. False ends it without a word: a name that means nothing.
static bool scan_callee(const a_pending_pragma* pragma, std::vector<std::string>* names,
                        bool* any_bad_name) {
  const char* name;
  const a_symbol* callee = scan_symbol_operand(&name);
  if (callee == nullptr) {
    pragma_had_error = true;
    return false;
  }
  if (is_routine(callee)) {
    names->push_back(external_name_of(callee->variant.routine));
  } else {
    pos_st_error(ec_pragma_symbol_x_invalid, &pragma->directive_position, name);
    *any_bad_name = true;
  }
  return true;
}

int calls_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement*) {
  std::vector<std::string> names;
  bool any_bad_name = false;
  if (!scan_comma_behind_symbol())
    return 0;
  do {
    if (!is_at_identifier(pragma, symbol) || !scan_callee(pragma, &names, &any_bad_name))
      return 0;
  } while (loop_token(tok_comma));
  if (scan_end_of_pragma() && !any_bad_name)
    create_pragma_calls(pragma, symbol, std::move(names));
  return 0;
}
