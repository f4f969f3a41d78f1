#include "symbol_ref.h"

#include "cfe.h"
#include "error.h"
#include "il.h"
#include "il_to_str.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"
#include "statements.h"
#include "types.h"

#include <cstdio>

namespace {

constexpr uint64_t xref_name_size = 256;
a_text_buffer* xref_name;

} // namespace

// ---- The cross-reference listing ----

// How the listing shows a record.
static char xref_letter(uint32_t kind) {
  const bool is_type = kind & srk_type;
  if (kind & (srk_declaration | srk_instance_declaration)) {
    if (kind & srk_definition)
      return is_type ? 'T' : 'D';
    return is_type ? 't' : 'd';
  }
  constexpr uint32_t use_bits = srk_value_read | srk_modified | srk_address_taken | srk_error;
  const uint32_t use = kind & use_bits;
  if (use & srk_error)
    return 'E';
  if (use & srk_address_taken)
    return 'A';
  if (use == (srk_value_read | srk_modified))
    return 'C';
  if (use & srk_modified)
    return 'M';
  if (use & srk_value_read)
    return 'U';
  return kind & srk_reference ? 'R' : ' ';
}

static bool is_listed_symbol(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_keyword:
  case symk_undefined:
  case symk_extern_variable:
  case symk_extern_routine:
  case symk_projection:
  case symk_overloaded_function:
  case symk_namespace_projection:
    return false;
  default:
    break;
  }
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  return symbol->position.seq != 0 && (corresp == nullptr || !corresp->is_unnamed);
}

static void write_xref_line(uint32_t kind, const a_symbol* symbol,
                            const a_source_position* position) {
  if (f_xref_info == nullptr || !is_listed_symbol(symbol) || position->seq == 0)
    return;
  an_il_to_str_control control;
  init_il_to_str_control(&control, xref_name);
  reset_text_buffer(xref_name);
  form_symbol_name(symbol, &control);
  add_1_char_to_text_buffer(xref_name, '\0');
  const char* file_name = nullptr;
  uint32_t line = 0;
  conv_seq_to_file_and_line(position->seq, &file_name, nullptr, &line, nullptr);
  fprintf(f_xref_info, "%p\t%s\t%c\t%s\t%lu\t%d\n", static_cast<const void*>(symbol),
          xref_name->data, xref_letter(kind), file_name, static_cast<unsigned long>(line),
          static_cast<int>(position->column));
}

// ---- Checks of a use ----

// The kind of `deprecated` in all forms of attributes.
static constexpr uint8_t deprecated_attribute_kind = 6;

void check_use_of_deprecated_entity(a_symbol* symbol, const a_source_position* position) {
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  if (corresp == nullptr)
    return;
  const an_attribute* attribute = corresp->attributes;
  while (attribute != nullptr && attribute->kind != deprecated_attribute_kind)
    attribute = attribute->next;
  if (attribute == nullptr)
    return;
  const an_attribute_arg* message = attribute->arguments;
  if (message != nullptr && message->arg_kind == aak_string)
    pos_stsy_warning(ec_deprecated_entity_with_custom_message, position, message->value.text,
                     symbol);
  else
    pos_sy_warning(ec_deprecated_entity, position, symbol);
}

void check_use_of_deleted_function(a_symbol* symbol, const a_source_position* position) {
  if ((symbol->kind == symk_routine || symbol->kind == symk_member_function) &&
      symbol->variant.routine != nullptr && symbol->variant.routine->is_deleted)
    pos_sy_error(ec_deleted_function, position, symbol);
}

// ---- Records ----

void record_symbol_declaration(uint32_t kind, a_symbol* symbol, const a_source_position* position,
                               a_source_correspondence*) {
  if (kind & srk_definition)
    symbol->defined = true;
  if (symbol->kind >= symk_type && symbol->kind <= symk_enum)
    kind |= srk_type;
  write_xref_line(kind | srk_declaration, symbol, position);
}

void record_symbol_reference_full(uint32_t kind, a_symbol* symbol,
                                  const a_source_position* position,
                                  a_source_correspondence* corresp, bool evaluated) {
  a_symbol* real = fundamental_symbol_of(symbol);
  if (corresp == nullptr)
    corresp = source_corresp_entry_for_symbol(real);
  real->referenced = true;
  if (corresp != nullptr) {
    corresp->referenced = true;
    corresp->reference_state = ref_state_used;
  }
  if (kind & srk_value_read)
    mark_variable_value_used(real);
  if (kind & srk_modified)
    mark_variable_value_set(real);
  if (evaluated) {
    check_use_of_deprecated_entity(real, position);
    check_use_of_deleted_function(real, position);
  }
  write_xref_line(kind | srk_reference, real, position);
}

void record_symbol_reference(uint32_t kind, a_symbol* symbol, const a_source_position* position,
                             bool evaluated) {
  record_symbol_reference_full(kind, symbol, position, nullptr, evaluated);
}

void mark_variable_value_set(a_symbol* symbol) {
  symbol->value_set = true;
}

void mark_variable_value_used(a_symbol* symbol) {
  symbol->value_used = true;
}

// ---- Use before a value is set ----

// Whether the value is the program's alone to give, as one.
static bool needs_value_of_program(const a_variable* variable) {
  bool is_automatic = variable->storage_kind == sc_auto || variable->storage_kind == sc_register;
  return is_automatic && !variable->is_parameter && !variable->is_compiler_generated &&
         !variable->is_handler_parameter &&
         !(variable->holds_asm_name && variable->asm_name.text != nullptr) &&
         variable->init_kind == initk_none && is_scalar_type(variable->type) &&
         !is_volatile_qualified_type(variable->type);
}

void note_use_of_value(uint32_t kind, a_symbol* symbol, const a_source_position* position) {
  if (symbol->may_have_value)
    return;
  bool is_modified = kind & srk_modified;
  if ((kind & srk_value_read) && !symbol->value_set && !suppress_used_before_set_warnings &&
      needs_value_of_program(symbol->variant.variable) &&
      precedes_all_values(symbol, is_modified)) {
    pos_sy_warning(ec_used_before_set, position, symbol);
    symbol->may_have_value = true; // reported
  }
  if (kind & (srk_modified | srk_address_taken))
    symbol->may_have_value = true;
}

void symbol_ref_one_time_init() {
  xref_name = alloc_text_buffer(xref_name_size);
}
