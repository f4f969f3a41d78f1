// How diagnostics show symbols and types.

#include "error_int.h"
#include "il_to_str.h"
#include "il_types.h"
#include "mem_manage.h"
#include "scope_stk.h"
#include "source_file.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

namespace {

constexpr uint64_t type_buffer_size = 1024;

// The buffer of the type printer.
a_text_buffer* type_buffer;

// Readies the type printer, with an empty buffer.
void start_type_text(an_il_to_str_control* control) {
  if (!type_buffer) {
    type_buffer = alloc_text_buffer(type_buffer_size);
  }
  reset_text_buffer(type_buffer);
  init_il_to_str_control(control, type_buffer);
  control->look_through_typedefs = display_template_typedefs_in_diagnostics;
}

std::string type_text() {
  return std::string(type_buffer->data, type_buffer->used_size);
}

an_error_code tag_kind_word(const a_symbol* symbol) {
  return symbol->variant.type->kind == tk_class ? vc_class : vc_struct;
}

an_error_code variable_kind_word(const a_symbol* symbol) {
  const a_variable* variable = symbol->variant.variable;
  if (!variable) {
    return vc_variable;
  }
  if (variable->is_handler_parameter) {
    return vc_handler_parameter;
  }
  return variable->is_parameter ? vc_parameter : vc_variable;
}

// The word that tells what kind of thing a symbol is; 0 for none.
an_error_code kind_word(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_keyword:
    return vc_keyword;
  case symk_macro:
    return vc_macro;
  case symk_constant:
    return symbol->is_template_param ? vc_nontype : vc_constant;
  case symk_type:
    return symbol->is_template_param ? vc_template_parameter : vc_type;
  case symk_class_or_struct:
    return tag_kind_word(symbol);
  case symk_union:
    return vc_union;
  case symk_enum:
    return vc_enum;
  case symk_variable:
  case symk_extern_variable:
    return variable_kind_word(symbol);
  case symk_field:
    return vc_field;
  case symk_static_data_member:
    return vc_member;
  case symk_member_function:
  case symk_routine:
  case symk_extern_routine:
    return vc_function;
  case symk_label:
    return vc_label;
  case symk_overloaded_function:
    return vc_overloaded_function;
  case symk_parameter:
    return vc_parameter;
  case symk_class_template:
    return symbol->is_template_param ? vc_template_template_parameter : vc_class_template;
  case symk_function_template:
    return vc_function_template;
  case symk_variable_template:
    return vc_variable_template;
  case symk_namespace:
    return vc_namespace;
  case symk_undefined:
  case symk_projection:
  case symk_namespace_projection:
    break;
  }
  return 0;
}

bool is_routine_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_routine || symbol->kind == symk_member_function ||
         symbol->kind == symk_extern_routine;
}

// The parameters of a class, function or variable template; null for none.
const a_template_param* template_params_of(const a_symbol* symbol) {
  if (symbol->is_template_param) {
    return nullptr;
  }
  switch (symbol->kind) {
  case symk_class_template:
  case symk_function_template:
  case symk_variable_template: {
    const auto* entry = static_cast<const a_template*>(symbol->extra.il_entry);
    return entry && entry->decl ? entry->decl->params : nullptr;
  }
  default:
    return nullptr;
  }
}

// The name as it stands between the quotes.
std::string quoted_name(const a_symbol* symbol, const a_diag_argument_format& format) {
  an_il_to_str_control control;
  start_type_text(&control);
  control.fully_qualified = format.fully_qualified;
  form_symbol_name(symbol, &control);
  if (const a_template_param* params = template_params_of(symbol)) {
    form_template_params(params, &control);
  }
  std::string name = type_text();
  bool with_type = format.with_signature || format.type_only;
  const a_routine* routine = symbol->variant.routine;
  if (!with_type || !is_routine_symbol(symbol) || !routine || !routine->type) {
    return name;
  }
  start_type_text(&control);
  form_declaration(routine->type, name.c_str(), &control);
  return type_text();
}

// Whether the list holds more than one argument; what begins a pack is none.
bool has_several_arguments(const a_template_arg* args) {
  int count = 0;
  for (; args; args = args->next) {
    count += args->kind != tak_start_of_pack;
  }
  return count > 1;
}

// The template arguments on which the instantiation at a scope depth rests.
void add_template_arguments(int scope_index, std::string& text) {
  const a_template_arg* args = scope_stack[scope_index].template_args;
  if (!args) {
    return;
  }
  text += ' ';
  text += error_text(has_several_arguments(args) ? vc_based_on_arguments : vc_based_on_argument);
  text += ' ';
  an_il_to_str_control control;
  start_type_text(&control);
  form_template_args(args, &control);
  text += type_text();
}

void add_declaration_place(const a_symbol* symbol, uint32_t reference_seq, std::string& text) {
  bool is_generated = is_routine_symbol(symbol) && symbol->variant.routine &&
                      symbol->variant.routine->is_compiler_generated;
  if (is_generated) {
    text += error_text(vc_declared_implicitly);
  } else if (symbol->position.seq != 0) {
    add_position_to_text(text, symbol->position, reference_seq, error_text(vc_declared), ")",
                         error_text(vc_at_end_of_source_in_parentheses));
  }
}

void add_translation_unit(const a_symbol* symbol, std::string& text) {
  const a_translation_unit* unit = trans_unit_for_symbol(symbol);
  if (!unit || unit == translation_units || !unit->primary_source_file) {
    return;
  }
  text += " (";
  text += error_text(vc_from_translation_unit);
  text += '"';
  text += unit->primary_source_file->file_name;
  text += "\")";
}

} // namespace

void form_symbol_name(const a_symbol* symbol, an_il_to_str_control* control) {
  an_il_entry_kind kind;
  void* entry = il_entry_for_symbol(symbol, &kind);
  const a_source_correspondence* corresp =
      entry ? source_corresp_entry_for_symbol(symbol) : nullptr;
  if (corresp) {
    form_entity_name(corresp, kind, control);
  } else if (symbol->header) {
    f_add_string_to_text_buffer(control->buffer, symbol->header->identifier);
  }
}

void add_type_to_text(const a_type* type, std::string& text) {
  an_il_to_str_control control;
  start_type_text(&control);
  form_type(type, &control);
  text += '"' + type_text() + '"';
}

void add_symbol_to_text(const a_symbol* symbol, const a_diag_argument_format& format,
                        int scope_index, uint32_t reference_seq, std::string& text) {
  symbol = fundamental_symbol_of(const_cast<a_symbol*>(symbol));
  bool is_signature = format.with_signature && is_routine_symbol(symbol);
  an_error_code word = kind_word(symbol);
  if (word != 0 && !format.omit_kind_word && !format.show_template_args && !is_signature) {
    text += error_text(word);
    text += ' ';
  }
  text += '"' + quoted_name(symbol, format) + '"';
  if (format.show_template_args && scope_index >= 0) {
    add_template_arguments(scope_index, text);
  }
  if (format.show_declared_at) {
    add_declaration_place(symbol, reference_seq, text);
  }
  if (format.show_translation_unit) {
    add_translation_unit(symbol, text);
  }
}

void forget_type_buffer() {
  type_buffer = nullptr;
}

const char* format_type_string(const a_type* type, size_t* out_length) {
  an_il_to_str_control control;
  start_type_text(&control);
  form_type(type, &control);
  *out_length = type_buffer->used_size;
  add_1_char_to_text_buffer(type_buffer, '\0');
  return type_buffer->data;
}
