// What attributes do to types: to function types, wherever a declaration leads
// to one, and to the types of a width.

#include <cstring>
#include <iterator>

#include "attribute_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

// ---- The type of an entity ----

static a_type** type_link_of_entity(void* entity, an_il_entry_kind kind) {
  switch (kind) {
  case iek_routine:
    return &static_cast<a_routine*>(entity)->type;
  case iek_variable:
    return &static_cast<a_variable*>(entity)->type;
  case iek_field:
    return &static_cast<a_field*>(entity)->type;
  case iek_param_type:
    return &static_cast<a_param_type*>(entity)->type;
  default: {
    a_type* type = static_cast<a_type*>(entity);
    return type->kind == tk_typeref ? &type->variant.typeref.referenced_type : nullptr;
  }
  }
}

// The function type that the type is or, through pointers and arrays, leads
// to; null for none.
static a_type* function_type_reached(a_type* type) {
  for (;;) {
    type = skip_typerefs(type);
    if (type->kind == tk_routine)
      return type;
    if (type->kind == tk_pointer)
      type = type->variant.pointer.referenced_type;
    else if (type->kind == tk_array)
      type = type->variant.array.element_type;
    else
      return nullptr;
  }
}

static a_type* function_type_of_entity(void* entity, an_il_entry_kind kind) {
  a_type** link = type_link_of_entity(entity, kind);
  return link == nullptr ? nullptr : function_type_reached(*link);
}

typedef void a_routine_type_change(a_routine_type_supplement* supplement);

// The type with a changed copy of the function type that it leads to.
static a_type* with_changed_function_type(a_type* type, a_routine_type_change* change) {
  check_stack_limit();
  a_type* bare = skip_typerefs(type);
  a_type* result;
  if (bare->kind == tk_routine) {
    result = copy_routine_type_with_param_types(bare);
    change(result->variant.routine.routine_supplement);
  } else if (bare->kind == tk_pointer) {
    result = make_pointer_type_of_same_kind(
        bare, with_changed_function_type(bare->variant.pointer.referenced_type, change));
  } else {
    result = copy_array_type_replacing_element_type(
        bare, with_changed_function_type(bare->variant.array.element_type, change));
  }
  return type_plus_qualifiers_from_second_type(result, type);
}

// A function's own type is changed where it stands, since its parameters' records
// are known to its declaration.
static bool change_function_type(an_attribute* attribute, void* entity, an_il_entry_kind kind,
                                 a_routine_type_change* change) {
  a_type** link = type_link_of_entity(entity, kind);
  a_type* type = link == nullptr ? static_cast<a_type*>(entity) : *link;
  if (is_error_type(type))
    return false;
  if (link == nullptr || function_type_reached(type) == nullptr) {
    pos_stty_error(ec_attr_requires_func_type, &attribute->position,
                   attribute_display_name(attribute), type);
    attribute->kind = attrk_dropped;
    return false;
  }
  if (kind == iek_routine && type->kind == tk_routine)
    change(type->variant.routine.routine_supplement);
  else
    *link = with_changed_function_type(type, change);
  return true;
}

// ---- Properties of functions ----

// C++11 7.6.3 p1: the first declaration must say it.
static bool comes_too_late(const an_attribute* attribute, const void* entity,
                           an_il_entry_kind kind) {
  return attaching_to_redeclaration && attribute->form == af_std && kind == iek_routine &&
         !static_cast<const a_routine*>(entity)->no_return;
}

void* noreturn_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (comes_too_late(attribute, entity, kind)) {
    drop_attribute(es_error, ec_attr_must_also_appear_in_first_declaration, attribute);
    return entity;
  }
  bool changed =
      change_function_type(attribute, entity, kind, [](a_routine_type_supplement* supplement) {
        supplement->does_not_return = true;
      });
  if (changed && kind == iek_routine)
    static_cast<a_routine*>(entity)->no_return = true;
  return entity;
}

// `volatile` and `const` on a variable that is no function pointer say nothing.
void* const_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  change_function_type(attribute, entity, kind, [](a_routine_type_supplement* supplement) {
    supplement->is_const_function = true;
  });
  return entity;
}

void* pure_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  change_function_type(attribute, entity, kind,
                       [](a_routine_type_supplement* supplement) { supplement->is_pure = true; });
  return entity;
}

// ---- Calling conventions ----

enum a_calling_convention : uint16_t { cc_cdecl = 1, cc_fastcall = 2, cc_stdcall = 3 };

static a_calling_convention convention_of_kind(uint8_t kind) {
  return kind == attrk_cdecl ? cc_cdecl : kind == attrk_fastcall ? cc_fastcall : cc_stdcall;
}

template <a_calling_convention convention>
static void set_convention(a_routine_type_supplement* supplement) {
  supplement->calling_convention_flags = convention;
}

void* calling_convention_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  if (targ_supports_x86_64) {
    drop_attribute(es_warning, ec_attribute_not_supported_in_x86_64, attribute);
    return entity;
  }
  a_calling_convention convention = convention_of_kind(attribute->kind);
  const a_type* type = function_type_of_entity(entity, kind);
  uint16_t old = type == nullptr
                     ? default_calling_convention
                     : type->variant.routine.routine_supplement->calling_convention_flags;
  if (old != default_calling_convention && old != convention) {
    pos_error(ec_conflicting_calling_conventions, &attribute->position);
    attribute->kind = attrk_dropped;
    return entity;
  }
  change_function_type(attribute, entity, kind,
                       convention == cc_cdecl      ? set_convention<cc_cdecl>
                       : convention == cc_fastcall ? set_convention<cc_fastcall>
                                                   : set_convention<cc_stdcall>);
  return entity;
}

// ---- Format strings ----

static bool is_format_function_name(const char* name) {
  static const char* const names[] = {"printf",     "scanf",     "strftime",     "strfmon",
                                      "gnu_printf", "gnu_scanf", "gnu_strftime", "gnu_strfmon"};
  size_t length = strlen(name);
  name = bare_attribute_name(name, &length);
  for (const char* known : names)
    if (strlen(known) == length && memcmp(known, name, length) == 0)
      return true;
  return false;
}

static const a_param_type* parameter_at(const a_type* routine_type, int64_t number) {
  const a_param_type* param = routine_type->variant.routine.routine_supplement->param_types;
  while (param != nullptr && --number > 0)
    param = param->next;
  return param;
}

static int64_t number_of_parameters(const a_type* routine_type) {
  int64_t count = 0;
  for (const a_param_type* param = routine_type->variant.routine.routine_supplement->param_types;
       param != nullptr; param = param->next)
    ++count;
  return count;
}

static bool is_string_parameter(const a_param_type* param) {
  a_type* type = skip_typerefs(param->type);
  if (type->kind == tk_error)
    return true;
  return type->kind == tk_pointer && is_character_type(type->variant.pointer.referenced_type);
}

// Arguments are counted from 1, with that for `this`. 0, or the number of the
// fault of the argument that should be the format.
static an_error_code fault_of_format_parameter(const a_type* routine_type, int64_t number) {
  const a_routine_type_supplement& supplement = *routine_type->variant.routine.routine_supplement;
  if (!supplement.prototyped)
    return 0;
  if (supplement.this_class != nullptr)
    --number;
  const a_param_type* param = number >= 1 ? parameter_at(routine_type, number) : nullptr;
  if (param == nullptr)
    return ec_fmt_arg_does_not_exist;
  return is_string_parameter(param) ? 0 : ec_fmt_arg_is_not_string;
}

// The number of the first argument to be checked; 0 where they arrive as a
// va_list.
static an_error_code fault_of_first_argument(const a_type* routine_type, int64_t number) {
  const a_routine_type_supplement& supplement = *routine_type->variant.routine.routine_supplement;
  if (number == 0 || !supplement.prototyped)
    return 0;
  if (!supplement.has_ellipsis)
    return ec_format_rout_not_varargs;
  int64_t implicit = supplement.this_class != nullptr;
  return number == number_of_parameters(routine_type) + implicit + 1
             ? 0
             : static_cast<an_error_code>(ec_subst_arg_is_not_variable);
}

static a_type* required_function_type(an_attribute* attribute, void* entity,
                                      an_il_entry_kind kind) {
  a_type* type = function_type_of_entity(entity, kind);
  if (type != nullptr)
    return type;
  a_type** link = type_link_of_entity(entity, kind);
  a_type* declared = link == nullptr ? static_cast<a_type*>(entity) : *link;
  if (!is_error_type(declared))
    pos_stty_error(ec_attr_requires_func_type, &attribute->position,
                   attribute_display_name(attribute), declared);
  attribute->kind = attrk_dropped;
  return nullptr;
}

static void drop_for_fault(an_attribute* attribute, an_error_code code) {
  if (code == 0)
    return;
  pos_error(code, &attribute->position);
  attribute->kind = attrk_dropped;
}

// Calls are checked where the arguments to be checked follow the format.
static void mark_format_function(a_type* type, const char* name, int64_t format, int64_t first) {
  a_routine_type_supplement* supplement = type->variant.routine.routine_supplement;
  if (!supplement->has_ellipsis || first != format + 1)
    return;
  supplement->is_printf_like = strstr(name, "printf") != nullptr;
  supplement->is_scanf_like = strstr(name, "scanf") != nullptr;
}

void* format_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  a_type* type = required_function_type(attribute, entity, kind);
  const char* name = text_argument(attribute, 0);
  int64_t format, first;
  if (type == nullptr)
    return entity;
  if (name == nullptr || !integer_argument(attribute, 1, &format) ||
      !integer_argument(attribute, 2, &first)) {
    bad_attribute_argument(attribute);
  } else if (!is_format_function_name(name)) {
    pos_st_error(ec_unrecognized_format_function_type, &attribute->position, name);
    attribute->kind = attrk_dropped;
  } else {
    an_error_code code = fault_of_format_parameter(type, format);
    if (code == 0)
      code = fault_of_first_argument(type, first);
    drop_for_fault(attribute, code);
    if (code == 0)
      mark_format_function(type, name, format, first);
  }
  return entity;
}

void* format_arg_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  const a_type* type = required_function_type(attribute, entity, kind);
  int64_t number;
  if (type == nullptr)
    return entity;
  if (integer_argument(attribute, 0, &number))
    drop_for_fault(attribute, fault_of_format_parameter(type, number));
  else
    bad_attribute_argument(attribute);
  return entity;
}

// ---- Modes: types by their width ----

namespace {

enum a_mode_class : uint8_t { mc_integer, mc_float, mc_complex };

struct a_mode_row {
  const char* name;
  a_mode_class mode_class;
  int bits; // 0: of a pointer
};

} // namespace

static const a_mode_row mode_rows[] = {
    {"QI", mc_integer, 8},    {"HI", mc_integer, 16},     {"SI", mc_integer, 32},
    {"DI", mc_integer, 64},   {"TI", mc_integer, 128},    {"byte", mc_integer, 8},
    {"word", mc_integer, 32}, {"pointer", mc_integer, 0}, {"unwind_word", mc_integer, 0},
    {"SF", mc_float, 32},     {"DF", mc_float, 64},       {"XF", mc_float, 80},
    {"TF", mc_float, 128},    {"SC", mc_complex, 32},     {"DC", mc_complex, 64},
    {"XC", mc_complex, 80},   {"TC", mc_complex, 128},
};

static const a_mode_row* find_mode(const char* name) {
  size_t length = strlen(name);
  name = bare_attribute_name(name, &length);
  for (const a_mode_row& row : mode_rows)
    if (strlen(row.name) == length && memcmp(row.name, name, length) == 0)
      return &row;
  return nullptr;
}

static uint64_t bits_of_type(const a_type* type) {
  return size_of_type(type) * static_cast<uint64_t>(targ_char_bit);
}

// Null for none.
static a_type* integer_type_of_width(uint64_t bits, bool is_signed) {
  static const int kinds[] = {ik_signed_char, ik_short, ik_int, ik_long, ik_long_long};
  for (int kind : kinds) {
    a_type* type = integer_type(is_signed ? kind : unsigned_int_kind_of(kind));
    if (bits_of_type(type) == bits)
      return type;
  }
  return nullptr;
}

static a_type* float_type_of_width(uint64_t bits, bool is_complex) {
  for (int kind = fk_float; kind <= fk_long_double; ++kind)
    if (bits_of_type(float_type(kind)) == bits)
      return is_complex ? complex_type(kind) : float_type(kind);
  return nullptr;
}

static bool mode_suits_type(const a_mode_row* mode, const a_type* type) {
  switch (mode->mode_class) {
  case mc_integer:
    return is_integral_or_enum_type(type) || (mode->bits == 0 && is_pointer_type(type));
  case mc_float:
    return is_real_floating_type(type);
  default:
    return is_complex_type(type);
  }
}

static a_type* type_of_mode(const a_mode_row* mode, a_type* type) {
  uint64_t bits =
      mode->bits == 0 ? bits_of_type(void_star_type()) : static_cast<uint64_t>(mode->bits);
  if (bits_of_type(type) == bits && !is_enum_type(type))
    return type;
  if (mode->mode_class == mc_integer)
    return integer_type_of_width(bits, is_signed_integral_type(type));
  return float_type_of_width(bits, mode->mode_class == mc_complex);
}

static void set_enum_kind(a_type* type, const a_type* model) {
  type->variant.integer.int_kind = model->variant.integer.int_kind;
  type->size = 0;
  set_type_size(type);
}

void* mode_action(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  const char* name = text_argument(attribute, 0);
  const a_mode_row* mode = name == nullptr ? nullptr : find_mode(name);
  a_type** link = type_link_of_entity(entity, kind);
  a_type* type = link == nullptr ? static_cast<a_type*>(entity) : *link;
  if (is_error_type(type))
    return entity;
  if (mode != nullptr && !mode_suits_type(mode, type)) {
    pos_ty_error(ec_mode_incompatible_with_type, &attribute->position, type);
    attribute->kind = attrk_dropped;
    return entity;
  }
  a_type* new_type = mode == nullptr ? nullptr : type_of_mode(mode, type);
  if (new_type == nullptr)
    pos_st_error(ec_no_type_of_specified_width, &attribute->position, name);
  else if (link == nullptr)
    set_enum_kind(type, new_type);
  else if (new_type != type)
    *link = type_plus_qualifiers_from_second_type(new_type, type);
  return entity;
}
