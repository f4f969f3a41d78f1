#include "il_to_str.h"

#include "error.h"
#include "il.h"
#include "il_constants.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

#include <cinttypes>
#include <cstdio>
#include <vector>

namespace {

a_text_buffer* type_text_buffer; // of type_as_string
constexpr uint64_t type_text_buffer_size = 1024;

// Behind so many bytes of text a type shows as an ellipsis: a few lines of
// typedefs that use one another several times stand for more text than there is
// memory.
constexpr uint64_t max_text_of_types = 65536;

const char* const int_kind_names[num_integer_kinds] = {
    "char",         "signed char", "unsigned char", "short",     "unsigned short",    "int",
    "unsigned int", "long",        "unsigned long", "long long", "unsigned long long"};

const char* const float_kind_names[num_float_kinds] = {"float", "double", "long double",
                                                       "__float80", "__float128"};

struct a_qualifier_name {
  a_type_qualifier_set qualifier;
  const char* c_name;
  const char* cplusplus_name;
};

const a_qualifier_name qualifier_names[] = {
    {tq_const, "const", "const"},
    {tq_volatile, "volatile", "volatile"},
    {tq_restrict, "restrict", "__restrict"},
    {tq_atomic, "_Atomic", "_Atomic"},
    {tq_nullable, "_Nullable", "_Nullable"},
    {tq_nonnull, "_Nonnull", "_Nonnull"},
    {tq_null_unspecified, "_Null_unspecified", "_Null_unspecified"},
    {tq_far, "__far", "__far"}};

void add(an_il_to_str_control* control, const char* text) {
  f_add_string_to_text_buffer(control->buffer, text);
}

char last_char(const an_il_to_str_control* control) {
  uint64_t size = control->buffer->used_size;
  return size == 0 ? '\0' : control->buffer->data[size - 1];
}

// A blank between a specifier or a qualifier and the declarator; none behind
// an operator of the declarator.
void add_declarator_separator(an_il_to_str_control* control) {
  switch (last_char(control)) {
  case '\0':
  case ' ':
  case '*':
  case '&':
  case '(':
    break;
  default:
    add(control, " ");
  }
}

// Passes the typerefs that don't show, and collects their qualifiers.
const a_type* skip_invisible_typerefs(const a_type* type, const an_il_to_str_control* control,
                                      a_type_qualifier_set* qualifiers) {
  while (type->kind == tk_typeref &&
         (control->look_through_typedefs || !typeref_is_typedef(type))) {
    *qualifiers |= type->variant.typeref.typeref_qualifiers & tq_all_qualifiers;
    type = type->variant.typeref.referenced_type;
  }
  return type;
}

// A pointer, array or function level of a declarator.
struct a_declarator_level {
  const a_type* type;
  a_type_qualifier_set qualifiers; // of a pointer itself
};

bool is_pointer_like(const a_type* type) {
  return type->kind == tk_pointer || type->kind == tk_ptr_to_member;
}

bool is_suffix(const a_type* type) {
  return type->kind == tk_array || type->kind == tk_routine;
}

// The levels of a declarator from the outermost on, and what is below them.
struct a_declarator {
  std::vector<a_declarator_level> levels;
  const a_type* specifier; // null: a function with no return type
  a_type_qualifier_set specifier_qualifiers;

  bool level_is_suffix(size_t index) const {
    return index < levels.size() && is_suffix(levels[index].type);
  }
};

a_declarator analyse_declarator(const a_type* type, const an_il_to_str_control* control) {
  a_declarator result = {};
  while (type != nullptr) {
    a_type_qualifier_set qualifiers = tq_none;
    type = skip_invisible_typerefs(type, control, &qualifiers);
    if (!is_pointer_like(type) && !is_suffix(type)) {
      result.specifier = type;
      result.specifier_qualifiers = qualifiers;
      break;
    }
    result.levels.push_back({type, qualifiers});
    type = f_underlying_type_of_derived_type(type);
  }
  return result;
}

bool is_full(const an_il_to_str_control* control) {
  return control->buffer->used_size > max_text_of_types;
}

const char* visible_name(const a_source_correspondence* source_corresp,
                         const an_il_to_str_control* control) {
  if (source_corresp->is_unnamed)
    return nullptr;
  bool use_source_name = control->use_source_names && source_corresp->name_is_lowered;
  return use_source_name ? source_corresp->source_name : source_corresp->name;
}

// --- Specifiers.

void form_integer_specifier(const a_type* type, an_il_to_str_control* control) {
  const an_integer_type_variant& integer = type->variant.integer;
  if (integer.is_enum) {
    if (!control->cplusplus_spelling)
      add(control, "enum ");
    form_entity_name(&type->source_corresp, iek_type, control);
  } else if (integer.is_bool) {
    add(control, control->bool_is_keyword ? "bool" : "_Bool");
  } else if (integer.is_wchar_t) {
    add(control, "wchar_t");
  } else if (integer.is_char16_t) {
    add(control, "char16_t");
  } else if (integer.is_char32_t) {
    add(control, "char32_t");
  } else {
    add(control, int_kind_name(integer.int_kind));
  }
}

const char* class_tag(a_type_kind kind) {
  switch (kind) {
  case tk_union:
    return "union ";
  case tk_class:
    return "class ";
  default:
    return "struct ";
  }
}

void form_class_specifier(const a_type* type, an_il_to_str_control* control) {
  if (!control->cplusplus_spelling)
    add(control, class_tag(type->kind));
  const a_type* proxied = class_supplement_of(type)->proxy_of;
  form_entity_name(proxied != nullptr ? &proxied->source_corresp : &type->source_corresp, iek_type,
                   control);
}

void form_template_param_specifier(const a_type* type, an_il_to_str_control* control) {
  switch (type->variant.template_param.template_param_supplement->placeholder) {
  case plk_auto:
    add(control, "auto");
    break;
  case plk_decltype_auto:
    add(control, "decltype(auto)");
    break;
  default:
    form_entity_name(&type->source_corresp, iek_type, control);
  }
}

void form_specifier(const a_type* type, an_il_to_str_control* control) {
  switch (type->kind) {
  case tk_error:
    add(control, "<error-type>");
    break;
  case tk_void:
    add(control, "void");
    break;
  case tk_integer:
    form_integer_specifier(type, control);
    break;
  case tk_float:
    add(control, float_kind_name(type->variant.float_kind));
    break;
  case tk_imaginary:
    add(control, float_kind_name(type->variant.float_kind));
    add(control, " _Imaginary");
    break;
  case tk_complex:
    add(control, float_kind_name(type->variant.float_kind));
    add(control, " _Complex");
    break;
  case tk_class:
  case tk_struct:
  case tk_union:
    form_class_specifier(type, control);
    break;
  case tk_typeref: // a typedef
    form_entity_name(&type->source_corresp, iek_type, control);
    break;
  case tk_template_param:
    form_template_param_specifier(type, control);
    break;
  case tk_nullptr:
    add(control, control->cplusplus_spelling ? "std::nullptr_t" : "nullptr_t");
    break;
  default:
    add(control, "<unknown-type>");
  }
}

// --- Declarators.

void add_qualifiers(a_type_qualifier_set qualifiers, an_il_to_str_control* control,
                    bool blank_follows) {
  bool is_first = true;
  for (const a_qualifier_name& entry : qualifier_names) {
    if (!(qualifiers & entry.qualifier))
      continue;
    if (!is_first && !blank_follows)
      add(control, " ");
    add(control, control->cplusplus_spelling ? entry.cplusplus_name : entry.c_name);
    if (blank_follows)
      add(control, " ");
    is_first = false;
  }
}

const char* pointer_operator(const a_pointer_type_variant& pointer) {
  if (!pointer.is_reference)
    return "*";
  return pointer.is_rvalue_reference ? "&&" : "&";
}

void form_pointer_operator(const a_type* type, a_type_qualifier_set qualifiers,
                           an_il_to_str_control* control) {
  if (type->kind == tk_ptr_to_member) {
    form_type(type->variant.ptr_to_member.class_type, control);
    add(control, "::*");
  } else {
    add(control, pointer_operator(type->variant.pointer));
  }
  add_qualifiers(qualifiers, control, false);
}

// C++ 15.4; a specification that waits for its use isn't shown.
void form_exception_specification(const an_exception_specification* spec,
                                  an_il_to_str_control* control) {
  if (spec == nullptr || spec->is_indeterminate || !control->cplusplus_spelling)
    return;
  if (spec->is_noexcept) {
    add(control, " noexcept");
    if (spec->noexcept_constant != nullptr) {
      add(control, "(");
      form_constant(spec->noexcept_constant, control);
      add(control, ")");
    }
    return;
  }
  add(control, " throw(");
  const char* separator = spec->is_any ? "..." : "";
  add(control, separator);
  for (auto* entry = spec->types; entry != nullptr; entry = entry->next) {
    add(control, separator);
    form_type(entry->type, control);
    separator = ", ";
  }
  add(control, ")");
}

void form_param_list(const a_routine_type_supplement& supplement, an_il_to_str_control* control) {
  add(control, "(");
  const char* separator = "";
  for (const a_param_type* param = supplement.param_types; param != nullptr; param = param->next) {
    add(control, separator);
    form_type(param->type, control);
    if (param->is_parameter_pack)
      add(control, "...");
    separator = ", ";
  }
  if (supplement.has_ellipsis) {
    add(control, separator);
    add(control, "...");
  } else if (supplement.prototyped && supplement.param_types == nullptr &&
             !control->cplusplus_spelling) {
    add(control, "void");
  }
  add(control, ")");
  if (supplement.this_qualifiers != tq_none) {
    add(control, " ");
    add_qualifiers(supplement.this_qualifiers, control, false);
  }
  if (supplement.has_lvalue_ref_qualifier)
    add(control, " &");
  if (supplement.has_rvalue_ref_qualifier)
    add(control, " &&");
  form_exception_specification(supplement.exception_specification, control);
}

void form_number(uint64_t number, an_il_to_str_control* control) {
  char digits[24];
  snprintf(digits, sizeof digits, "%" PRIu64, number);
  add(control, digits);
}

void form_array_bound(const an_array_type_variant& array, an_il_to_str_control* control) {
  add(control, "[");
  if (array.bound_is_constant)
    form_constant(array.bound.dependent_constant, control);
  else if (array.is_vla || array.bound_is_expr || array.bound_is_star)
    add(control, "*");
  else if (array.bound.number_of_elements != 0 || array.flexible_not_allowed)
    form_number(array.bound.number_of_elements, control);
  add(control, "]");
}

} // namespace

void init_il_to_str_control(an_il_to_str_control* control, a_text_buffer* buffer) {
  control->buffer = buffer;
  control->cplusplus_spelling = in_cplusplus_mode();
  control->bool_is_keyword = in_cplusplus_mode();
  control->look_through_typedefs = false;
  control->use_source_names = true;
  control->fully_qualified = false;
}

void form_type_qualifiers(a_type_qualifier_set qualifiers, an_il_to_str_control* control) {
  add_qualifiers(qualifiers, control, true);
}

void form_type_first_part(const a_type* type, an_il_to_str_control* control) {
  check_stack_limit();
  a_declarator declarator = analyse_declarator(type, control);
  if (declarator.specifier != nullptr) {
    form_type_qualifiers(declarator.specifier_qualifiers, control);
    form_specifier(declarator.specifier, control);
  }
  for (size_t i = declarator.levels.size(); i-- > 0;) {
    const a_declarator_level& level = declarator.levels[i];
    if (!is_pointer_like(level.type))
      continue;
    add_declarator_separator(control);
    if (declarator.level_is_suffix(i + 1))
      add(control, "(");
    form_pointer_operator(level.type, level.qualifiers, control);
  }
}

void form_type_second_part(const a_type* type, an_il_to_str_control* control) {
  a_declarator declarator = analyse_declarator(type, control);
  for (size_t i = 0; i < declarator.levels.size(); ++i) {
    const a_type* level = declarator.levels[i].type;
    if (level->kind == tk_array)
      form_array_bound(level->variant.array, control);
    else if (level->kind == tk_routine)
      form_param_list(*level->variant.routine.routine_supplement, control);
    else if (declarator.level_is_suffix(i + 1))
      add(control, ")");
  }
}

void form_type(const a_type* type, an_il_to_str_control* control) {
  if (is_full(control)) {
    add(control, "...");
    return;
  }
  form_type_first_part(type, control);
  a_type_qualifier_set ignored = tq_none;
  if (is_suffix(skip_invisible_typerefs(type, control, &ignored)))
    add_declarator_separator(control);
  form_type_second_part(type, control);
}

void form_declaration(const a_type* type, const char* name, an_il_to_str_control* control) {
  form_type_first_part(type, control);
  add_declarator_separator(control);
  add(control, name);
  form_type_second_part(type, control);
}

// --- Template arguments and parameters.

namespace {

void form_template_arg(const a_template_arg* arg, an_il_to_str_control* control) {
  if (arg->is_number)
    form_number(arg->value.number, control);
  else if (arg->kind == tak_type && arg->value.type != nullptr)
    form_type(arg->value.type, control);
  else if (arg->kind == tak_constant && arg->value.constant != nullptr)
    form_constant(arg->value.constant, control);
  else if (arg->kind == tak_template && arg->value.template_symbol != nullptr)
    form_symbol_name(arg->value.template_symbol, control);
  else
    add(control, "<expression>");
}

// Two closing brackets in a row don't make one token.
void close_template_list(an_il_to_str_control* control) {
  add(control, last_char(control) == '>' ? " >" : ">");
}

const a_template_arg* template_args_of(const a_source_correspondence* source_corresp,
                                       an_il_entry_kind kind) {
  const void* entry = source_corresp;
  if (kind == iek_routine)
    return static_cast<const a_routine*>(entry)->template_args;
  if (kind == iek_variable) {
    const auto* info = static_cast<const a_variable*>(entry)->template_info;
    return info == nullptr ? nullptr : info->template_args;
  }
  if (kind != iek_type)
    return nullptr;
  const auto* type = static_cast<const a_type*>(entry);
  if (is_class_struct_union_kind(type->kind))
    return class_supplement_of(type)->template_args;
  return type->kind == tk_typeref ? type->variant.typeref.typeref_supplement->template_args
                                  : nullptr;
}

// The class, namespace or scoped enum in front of a member's name.
void form_qualifier(const a_scope* parent, an_il_to_str_control* control) {
  if (parent->kind == sk_class ||
      (parent->kind == sk_enum && is_scoped_enum_type(parent->assoc.type))) {
    form_type(parent->assoc.type, control);
    add(control, "::");
  } else if (parent->kind == sk_namespace) {
    const a_namespace* space = parent->assoc.namespace_entry;
    if (space->is_inline && !control->fully_qualified) {
      if (space->source_corresp.parent_scope != nullptr)
        form_qualifier(space->source_corresp.parent_scope, control);
      return;
    }
    form_entity_name(&space->source_corresp, iek_namespace, control);
    add(control, "::");
  }
}

} // namespace

void form_template_args(const a_template_arg* args, an_il_to_str_control* control) {
  add(control, "<");
  const char* separator = "";
  for (; args != nullptr; args = args->next) {
    if (args->kind == tak_start_of_pack)
      continue;
    add(control, separator);
    separator = ", ";
    form_template_arg(args, control);
  }
  close_template_list(control);
}

void form_template_params(const a_template_param* params, an_il_to_str_control* control) {
  add(control, "<");
  const char* separator = "";
  for (; params != nullptr; params = params->next) {
    add(control, separator);
    separator = ", ";
    form_entity_name(&params->source_corresp, iek_template_param, control);
    if (params->is_parameter_pack)
      add(control, "...");
  }
  close_template_list(control);
}

void form_entity_name(const a_source_correspondence* source_corresp, an_il_entry_kind kind,
                      an_il_to_str_control* control) {
  check_stack_limit();
  if (control->cplusplus_spelling && source_corresp->parent_scope != nullptr && kind != iek_label)
    form_qualifier(source_corresp->parent_scope, control);
  const void* entry = source_corresp;
  const auto* routine = kind == iek_routine ? static_cast<const a_routine*>(entry) : nullptr;
  const char* name = visible_name(source_corresp, control);
  if (routine != nullptr && routine->special_kind == rsk_conversion) {
    add(control, "operator ");
    form_type(routine->special_data.conversion_target, control);
  } else {
    add(control, name != nullptr ? name : "<unnamed>");
  }
  const a_template_arg* args = template_args_of(source_corresp, kind);
  if (args != nullptr)
    form_template_args(args, control);
}

const char* int_kind_name(int kind) {
  if (kind < 0 || kind >= num_integer_kinds)
    return "**BAD-INT-KIND**";
  return kind == plain_char_int_kind ? "char" : int_kind_names[kind];
}

const char* float_kind_name(int kind) {
  return kind < 0 || kind >= num_float_kinds ? "**BAD-FLOAT-KIND**" : float_kind_names[kind];
}

const char* type_as_string(const a_type* type) {
  if (type_text_buffer == nullptr)
    type_text_buffer = alloc_text_buffer(type_text_buffer_size);
  reset_text_buffer(type_text_buffer);
  an_il_to_str_control control;
  init_il_to_str_control(&control, type_text_buffer);
  form_type(type, &control);
  add_1_char_to_text_buffer(type_text_buffer, '\0');
  return type_text_buffer->data;
}

void il_to_str_one_time_init() {
  type_text_buffer = nullptr;
}

void il_to_str_init() {
  if (type_text_buffer != nullptr)
    reset_text_buffer(type_text_buffer);
}
