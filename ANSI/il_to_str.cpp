#include "il_to_str.h"

#include "il.h"
#include "il_constants.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

#include <cinttypes>
#include <cstdio>

namespace {

a_text_buffer* type_text_buffer; // of type_as_string
constexpr uint64_t type_text_buffer_size = 1024;

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

bool shows_as_suffix(const a_type* type, const an_il_to_str_control* control) {
  a_type_qualifier_set ignored = tq_none;
  a_type_kind kind = skip_invisible_typerefs(type, control, &ignored)->kind;
  return kind == tk_array || kind == tk_routine;
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
  form_entity_name(&type->source_corresp, iek_type, control);
  const a_template_arg* args = class_supplement_of(type)->template_args;
  if (args != nullptr)
    form_template_args(args, control);
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
  case tk_typeref:
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

const a_type* pointer_like_target(const a_type* type) {
  return type->kind == tk_pointer ? type->variant.pointer.referenced_type
                                  : type->variant.ptr_to_member.member_type;
}

bool is_pointer_like(const a_type* type) {
  return type->kind == tk_pointer || type->kind == tk_ptr_to_member;
}

void form_param_list(const a_routine_type_supplement& supplement, an_il_to_str_control* control) {
  add(control, "(");
  const char* separator = "";
  for (const a_param_type* param = supplement.param_types; param != nullptr; param = param->next) {
    add(control, separator);
    form_type(param->type, control);
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
}

void form_array_bound(const an_array_type_variant& array, an_il_to_str_control* control) {
  add(control, "[");
  if (array.is_vla || array.bound_is_expr || array.bound_is_star || array.bound_is_constant) {
    add(control, "*");
  } else if (array.bound.number_of_elements != 0 || array.flexible_not_allowed) {
    char digits[24];
    snprintf(digits, sizeof digits, "%" PRIu64, array.bound.number_of_elements);
    add(control, digits);
  }
  add(control, "]");
}

} // namespace

void init_il_to_str_control(an_il_to_str_control* control, a_text_buffer* buffer) {
  control->buffer = buffer;
  control->cplusplus_spelling = in_cplusplus_mode();
  control->bool_is_keyword = in_cplusplus_mode();
  control->look_through_typedefs = false;
  control->use_source_names = true;
}

void form_type_qualifiers(a_type_qualifier_set qualifiers, an_il_to_str_control* control) {
  add_qualifiers(qualifiers, control, true);
}

void form_type_first_part(const a_type* type, an_il_to_str_control* control) {
  a_type_qualifier_set qualifiers = tq_none;
  type = skip_invisible_typerefs(type, control, &qualifiers);
  if (is_pointer_like(type)) {
    const a_type* target = pointer_like_target(type);
    form_type_first_part(target, control);
    add_declarator_separator(control);
    if (shows_as_suffix(target, control))
      add(control, "(");
    form_pointer_operator(type, qualifiers, control);
  } else if (type->kind == tk_array) {
    form_type_first_part(type->variant.array.element_type, control);
  } else if (type->kind == tk_routine) {
    if (type->variant.routine.return_type != nullptr)
      form_type_first_part(type->variant.routine.return_type, control);
  } else {
    form_type_qualifiers(qualifiers, control);
    form_specifier(type, control);
  }
}

void form_type_second_part(const a_type* type, an_il_to_str_control* control) {
  a_type_qualifier_set ignored = tq_none;
  type = skip_invisible_typerefs(type, control, &ignored);
  if (is_pointer_like(type)) {
    const a_type* target = pointer_like_target(type);
    if (shows_as_suffix(target, control))
      add(control, ")");
    form_type_second_part(target, control);
  } else if (type->kind == tk_array) {
    form_array_bound(type->variant.array, control);
    form_type_second_part(type->variant.array.element_type, control);
  } else if (type->kind == tk_routine) {
    form_param_list(*type->variant.routine.routine_supplement, control);
    if (type->variant.routine.return_type != nullptr)
      form_type_second_part(type->variant.routine.return_type, control);
  }
}

void form_type(const a_type* type, an_il_to_str_control* control) {
  form_type_first_part(type, control);
  if (shows_as_suffix(type, control))
    add_declarator_separator(control);
  form_type_second_part(type, control);
}

void form_declaration(const a_type* type, const char* name, an_il_to_str_control* control) {
  form_type_first_part(type, control);
  add_declarator_separator(control);
  add(control, name);
  form_type_second_part(type, control);
}

void form_template_args(const a_template_arg* args, an_il_to_str_control* control) {
  add(control, "<");
  const char* separator = "";
  for (; args != nullptr; args = args->next) {
    if (args->kind == tak_start_of_pack)
      continue;
    add(control, separator);
    separator = ", ";
    char digits[24];
    if (args->kind == tak_type && args->value.type != nullptr) {
      form_type(args->value.type, control);
    } else if (args->is_number) {
      snprintf(digits, sizeof digits, "%" PRIu64, args->value.number);
      add(control, digits);
    } else if (args->kind == tak_constant && args->value.constant != nullptr) {
      form_constant(args->value.constant, control);
    } else {
      add(control, "<expression>");
    }
  }
  add(control, last_char(control) == '>' ? " >" : ">");
}

void form_entity_name(const a_source_correspondence* source_corresp, an_il_entry_kind kind,
                      an_il_to_str_control* control) {
  const a_scope* parent = source_corresp->parent_scope;
  if (control->cplusplus_spelling && parent != nullptr && kind != iek_label) {
    if (parent->kind == sk_class)
      form_type(parent->assoc.type, control);
    else if (parent->kind == sk_namespace)
      form_entity_name(&parent->assoc.namespace_entry->source_corresp, iek_namespace, control);
    if (parent->kind == sk_class || parent->kind == sk_namespace)
      add(control, "::");
  }
  const char* name = visible_name(source_corresp, control);
  add(control, name != nullptr ? name : "<unnamed>");
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
