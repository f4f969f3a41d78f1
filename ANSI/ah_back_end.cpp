// Assembly headers: the declarations of a C header as assembler text. Macros
// become .define directives, structs and unions blocks of .bits and .tag
// directives, enums .enum blocks, and what is external a .global directive.
// What the assembler can't express is left out with a warning.

#include "ah_back_end.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <map>
#include <string>
#include <unordered_map>

#include "cfe.h"
#include "const_ints.h"
#include "decode.h"
#include "error.h"
#include "host_envir.h"
#include "if_util.h"
#include "il.h"
#include "il_constants.h"
#include "il_to_if.h"
#include "mode_words.h"
#include "pragma.h"
#include "sys_predef.h"
#include "target.h"
#include "types.h"

namespace {

constexpr size_t narrowest_label_column = 10;
constexpr size_t longest_comment = 255, longest_source_name = 255;

FILE* ah_file;
int write_errno; // of the first write that failed; 0: none has
size_t label_width;
int lines_since_width_change;

// The numbers by which nameless types are known.
std::unordered_map<const a_type*, unsigned long> nameless_types;

// ---- Text ----

__attribute__((format(printf, 1, 2))) std::string formatted(const char* format, ...) {
  va_list args, args_again;
  va_start(args, format);
  va_copy(args_again, args);
  std::string text(vsnprintf(nullptr, 0, format, args), '\0');
  vsnprintf(text.data(), text.size() + 1, format, args_again);
  va_end(args_again);
  va_end(args);
  return text;
}

// A failure is told once; what follows is written all the same.
void put_text(const std::string& text) {
  if (fwrite(text.data(), 1, text.size(), ah_file) == text.size() || write_errno != 0)
    return;
  write_errno = errno;
  fprintf(stderr, "Error: failed to write intermediate file '%s': %s\n", ah_file_name,
          strerror(write_errno));
}

// The column of the labels follows a long label at once, and falls back step
// by step.
void adjust_label_width(size_t length) {
  constexpr size_t room_behind_label = 5;
  constexpr int lines_before_narrowing = 31;
  if (length > label_width) {
    label_width = length + room_behind_label;
    lines_since_width_change = 0;
  }
  if (label_width > narrowest_label_column && lines_since_width_change >= lines_before_narrowing) {
    label_width = std::max(narrowest_label_column, label_width * 4 / 5);
    lines_since_width_change = 0;
  }
}

void put_line(const std::string& label, const std::string& directive,
              const std::string& comment = "") {
  adjust_label_width(label.size());
  put_text(formatted("%-*s %-20s %s%s\n", static_cast<int>(label_width), label.c_str(),
                     directive.c_str(), comment.empty() ? "" : "; ", comment.c_str()));
  lines_since_width_change++;
}

void put_warning(const char* what, const std::string& name, const char* consequence) {
  if (!asm_header_suppress_warnings)
    put_text(formatted("; ASM HEADER WARNING - %s '%s' %s\n", what, name.c_str(), consequence));
}

// ---- Names ----

// A local entity without internal linkage has no name that another file could
// mean.
bool name_is_absent(const a_source_correspondence& entity) {
  return (entity.linkage == idl_none || entity.linkage == idl_external) &&
         entity.local_to_function && !entity.is_class_member && !entity.name_is_lowered;
}

std::string name_of_entity(const a_source_correspondence& entity) {
  return entity.name == nullptr || name_is_absent(entity) ? "" : entity.name;
}

std::string name_of_type(const a_type* type) {
  const a_source_correspondence& entity = type->source_corresp;
  if (entity.name != nullptr && !entity.is_unnamed)
    return name_of_entity(entity);
  auto [entry, is_new] = nameless_types.try_emplace(type, nameless_types.size() + 1);
  return formatted("__T%lu", entry->second);
}

const char* integer_type_text(const an_integer_type_variant& integer) {
  static const char* const texts[num_integer_kinds] = {
      "char ",         "signed char ", "unsigned char ", "short ",     "unsigned short ",    "int ",
      "unsigned int ", "long ",        "unsigned long ", "long long ", "unsigned long long "};
  return integer.is_enum && integer.int_kind == ik_int ? "enum " : texts[integer.int_kind];
}

std::string tagged_type_text(const char* tag, const a_type* type) {
  std::string name = name_of_type(type);
  return name.empty() ? formatted("%s ", tag) : formatted("%s %s ", tag, name.c_str());
}

// The type as a comment shows it, with a blank behind words.
std::string type_text(const a_type* type) {
  static const char* const float_texts[] = {"float ", "double ", "long double "};
  type = f_skip_typerefs(type);
  switch (type->kind) {
  case tk_void:
    return "void ";
  case tk_integer:
    return integer_type_text(type->variant.integer);
  case tk_float:
    return type->variant.float_kind <= fk_long_double ? float_texts[type->variant.float_kind]
                                                      : "general";
  case tk_pointer:
    return type->variant.pointer.is_reference ? "ref*" : "*";
  case tk_routine:
    return "function ";
  case tk_array:
    return "array ";
  case tk_class:
    return tagged_type_text("class", type);
  case tk_struct:
    return tagged_type_text("struct", type);
  case tk_union:
    return tagged_type_text("union", type);
  default:
    return "general";
  }
}

// ---- Pragmas ----

void warn_of_pragma(const a_pragma* pragma) {
  const char* name = pragma->pragma_object != nullptr
                         ? pragma->pragma_object->name()
                         : pragma_name(static_cast<a_pragma_kind_tag>(pragma->kind));
  put_warning("pragma", name, "not supported");
  if (asm_header_stdio_warnings)
    pos_st_warning(ec_ah_pragma_ignored, &pragma->position, name);
}

void warn_of_pragmas_of(const a_source_correspondence& entity) {
  if (!entity.has_associated_pragma)
    return;
  for (const a_pragma* pragma = il_header.primary_scope->pragmas; pragma != nullptr;
       pragma = pragma->next)
    if (pragma->entity == &entity && !pragma->is_disabled)
      warn_of_pragma(pragma);
}

// ---- Macros ----

struct a_macro_text {
  std::string name;
  std::string value;
};

// The parts of a definition as a listing shows it.
a_macro_text parts_of_macro(const char* text) {
  text += strspn(text, " ");
  size_t length = strcspn(text, " ");
  const char* value = text + length;
  return {std::string(text, length), value + strspn(value, " ")};
}

void warn_of_macro(const a_macro* macro, const std::string& name, const char* what,
                   an_error_code code) {
  put_warning(what, name, "not supported");
  if (asm_header_stdio_warnings)
    pos_st_warning(code, &macro->source_corresp.position, name.c_str());
}

// Whether a value has quotes and isn't wholly one quoted string.
bool is_complex_string(const std::string& value) {
  if (value.find('"') == std::string::npos)
    return false;
  if (value[0] != '"')
    return true;
  size_t end = 1;
  while (end < value.size() && value[end] != '"')
    end += value[end] == '\\' ? 2 : 1;
  return end != value.size() - 1;
}

// Quotes are doubled in a string of the assembler; it pastes without an operator.
std::string assembler_form(const std::string& value) {
  std::string result;
  for (size_t i = 0; i < value.size(); i++) {
    if (value.compare(i, 2, "##") == 0) {
      result.erase(result.find_last_not_of(' ') + 1);
      i = std::min(value.find_first_not_of(' ', i + 2), value.size()) - 1;
      continue;
    }
    result.append(value[i] == '"' ? 2 : 1, value[i]);
  }
  return result;
}

void put_macros() {
  std::map<std::string, std::string> values;
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next) {
    a_macro_text parts = parts_of_macro(macro->text);
    if (macro->is_undef)
      values.erase(parts.value); // the text is "#undef NAME"
    else if (parts.name.find('(') != std::string::npos)
      warn_of_macro(macro, parts.name, "function-like macro", ec_ah_function_macro);
    else if (is_complex_string(parts.value))
      warn_of_macro(macro, parts.name, "complex string macro", ec_ah_string_macro);
    else if (!parts.name.empty())
      values[parts.name] = assembler_form(parts.value);
  }
  for (const auto& [name, value] : values)
    put_line("", ".define \"" + (value.empty() ? "1" : value) + "\"," + name);
}

// ---- Structs and unions ----

long bits(uint64_t bytes) {
  return static_cast<long>(bytes * targ_char_bit);
}

bool is_struct_or_union(const a_type* type) {
  a_type_kind kind = type_kind(type);
  return kind == tk_struct || kind == tk_union;
}

std::string field_comment(const a_field* field) {
  const a_type* type = f_skip_typerefs(field->type);
  std::string dimensions;
  for (; type->kind == tk_array; type = f_skip_typerefs(type->variant.array.element_type))
    dimensions +=
        formatted("[%lld]", static_cast<long long>(type->variant.array.bound.number_of_elements));
  uint64_t size = f_skip_typerefs(field->type)->size;
  std::string text =
      type_text(type) + name_of_entity(field->source_corresp) + dimensions +
      formatted(" - offset %ld bytes, size (%ld bytes|%ld bits)", static_cast<long>(field->offset),
                static_cast<long>(size), bits(size));
  return text.substr(0, longest_comment);
}

// Writes a field that starts at bit `start`, and returns where it ends.
long put_field(const a_field* field, long start) {
  std::string name = name_of_entity(field->source_corresp);
  if (field->is_bit_field) {
    put_line(name, formatted(".bits %d", field->bit_size),
             formatted("bit field, %d bits, %ld bit offset", field->bit_size, start));
    return start + field->bit_size;
  }
  const a_type* type = f_skip_typerefs(field->type);
  std::string directive = is_struct_or_union(type) ? ".tag " + name_of_type(type)
                                                   : formatted(".bits %ld", bits(type->size));
  put_line(name, directive, field_comment(field));
  return start + bits(type->size);
}

void put_fields(const a_type* type) {
  long position = 0;
  for (const a_field* field = type->variant.class_struct_union.fields; field != nullptr;
       field = field->next) {
    warn_of_pragmas_of(field->source_corresp);
    long start = bits(field->offset) + field->bit_offset;
    if (position < start)
      put_line("", formatted(".bits %ld", start - position), "padding");
    position = put_field(field, start);
  }
  if (position < bits(type->size)) {
    put_line("", formatted(".bits %ld", bits(type->size) - position), "alignment padding");
    position = bits(type->size);
  }
  put_line("", type->kind == tk_union ? ".endunion" : ".endstruct",
           formatted("final size=(%ld bytes|%ld bits)", position / targ_char_bit, position));
}

void put_struct_or_union(const a_type* type) {
  const char* tag = type->kind == tk_union ? "union" : "struct";
  warn_of_pragmas_of(type->source_corresp);
  put_text("\n");
  put_line(name_of_type(type), formatted(".%s 0,%u", tag, type->alignment),
           formatted("%s size=(%ld bytes|%ld bits), alignment=%u", tag,
                     static_cast<long>(type->size), bits(type->size), type->alignment));
  put_fields(type);
}

// ---- Enums and typedefs ----

void put_enum(const a_type* type) {
  warn_of_pragmas_of(type->source_corresp);
  put_line(name_of_type(type), ".enum");
  for (const a_constant* constant = first_enumerator_of_enum(type); constant != nullptr;
       constant = constant->next)
    put_line(name_of_entity(constant->source_corresp),
             formatted(".emember %s", str_for_integer_constant(constant)));
  put_line("", ".endenum");
}

bool is_tagged_type(const a_type* type) {
  return is_class_struct_union_type(type) || is_enum_type(type);
}

// What a typedef stands for: another typedef, or the type itself.
const a_type* aliased_type(const a_type* type) {
  do
    type = type->variant.typeref.referenced_type;
  while (type->kind == tk_typeref && !typeref_is_typedef(type));
  return type;
}

void put_typedef(const a_type* type) {
  if (type->is_generated || !typeref_is_typedef(type) || !is_tagged_type(type))
    return;
  warn_of_pragmas_of(type->source_corresp);
  put_line("", ".define " + name_of_type(aliased_type(type)) + "," + name_of_type(type));
}

template <class Wanted> void put_types(Wanted is_wanted, void (*put)(const a_type* type)) {
  for (const a_type* type = il_header.primary_scope->types; type != nullptr; type = type->next)
    if (!ignore_type_in_back_end(type) && is_wanted(type))
      put(type);
}

void put_all_types() {
  put_types(
      [](const a_type* type) { return type->kind == tk_integer && type->variant.integer.is_enum; },
      put_enum);
  put_types([](const a_type* type) { return type->kind == tk_struct || type->kind == tk_union; },
            put_struct_or_union);
  put_types([](const a_type* type) { return type->kind == tk_typeref; }, put_typedef);
}

// ---- Functions and variables ----

void warn_of_function_definition(a_routine* routine) {
  a_source_correspondence& entity = routine->source_corresp;
  std::string name = decode_id(sym_name(&entity, 0), true).substr(0, longest_source_name);
  put_warning("function definition", name, "ignored");
  if (!asm_header_stdio_warnings)
    return;
  if (entity.symbol != nullptr)
    pos_sy_warning(ec_ah_routine_declare, &entity.position, entity.symbol);
  else
    pos_st_warning(ec_ah_routine_declare_st, &entity.position, name.c_str());
}

void put_functions() {
  for (a_routine* routine = il_header.primary_scope->routines; routine != nullptr;
       routine = routine->next) {
    if (routine->is_template_function)
      continue;
    if (routine->storage_kind != sc_extern)
      warn_of_function_definition(routine);
    else if (!is_gnu_builtin_function(routine))
      put_line("", formatted(".global %s", sym_name(&routine->source_corresp, 0)));
  }
}

void warn_of_variable_definition(a_variable* variable) {
  const char* name = sym_name(&variable->source_corresp, 0);
  put_warning("variable definition", name, "ignored");
  if (asm_header_stdio_warnings)
    pos_st_warning(ec_ah_variable_declare_st, &variable->source_corresp.position, name);
}

void put_external_variable(a_variable* variable) {
  const char* name = sym_name(&variable->source_corresp, 0);
  put_line("", formatted(".global %s", name));
  if (is_tagged_type(variable->type))
    put_line(name, ".tag " + name_of_type(f_skip_typerefs(variable->type)));
}

void put_variables() {
  for (a_variable* variable = il_header.primary_scope->variables; variable != nullptr;
       variable = variable->next) {
    if (variable->not_in_back_end || variable->is_this_parameter)
      continue;
    if (variable->storage_kind == sc_extern)
      put_external_variable(variable);
    else
      warn_of_variable_definition(variable);
  }
}

// ---- The file ----

void open_ah_file() {
  if (ah_file_name == nullptr)
    ah_file_name = derived_name(primary_source_file_name, ".ah");
  ah_file = open_output_file_with_error_handling(ah_file_name, false, false, tolerate_nothing,
                                                 fk_il_output);
  write_errno = 0;
  label_width = narrowest_label_column;
  lines_since_width_change = 0;
  nameless_types.clear();
}

void put_banner() {
  put_text("; ------------------------------------------\n"
           "; Assembly Generated from C/C++ Source Code\n"
           "; ------------------------------------------\n"
           "\n");
}

void close_ah_file() {
  int error_number;
  if (close_output_file(ah_file, &error_number))
    fprintf(stderr, "Error: failed to close intermediate file '%s': %s\n", ah_file_name,
            strerror(error_number != 0 ? error_number : write_errno));
  ah_file = nullptr;
}

} // namespace

void ah_back_end() {
  error_position = null_source_position;
  open_ah_file();
  in_front_end = 0;
  put_banner();
  for (const a_pragma* pragma = il_header.primary_scope->pragmas; pragma != nullptr;
       pragma = pragma->next)
    if (!pragma->is_disabled)
      warn_of_pragma(pragma);
  put_text("; =========== MACRO DEFINITIONS ===========\n");
  put_macros();
  put_text("\n; =========== TYPE DEFINITIONS ===========\n");
  put_all_types();
  put_text("\n; =========== EXTERNAL FUNCTIONS ===========\n");
  put_functions();
  put_text("\n; =========== EXTERNAL VARIABLES ===========\n");
  put_variables();
  close_ah_file();
}
