// Sizes and alignments of types, the work that waits for the completion of a
// type, and the types that promotions and arithmetic conversions give.

#include "types.h"

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "mode_words.h"
#include "pch.h"
#include "stack_limit.h"
#include "target.h"
#include "trans_unit.h"
#include "types_int.h"

#include <algorithm>
#include <cstring>

// --- Sizes.

uint32_t explicit_alignment_of_type(const a_type* type) {
  for (;; type = type->variant.typeref.referenced_type) {
    if (type->has_explicit_alignment)
      return type->alignment;
    if (type->kind != tk_typeref)
      return 0;
  }
}

uint32_t f_alignment_of_type(const a_type* type) {
  for (;;) {
    if (type->kind == tk_typeref && !type->has_explicit_alignment)
      type = type->variant.typeref.referenced_type;
    else if (type->kind == tk_array && type->is_incomplete && !type->has_explicit_alignment)
      type = type->variant.array.element_type;
    else
      return type->alignment;
  }
}

uint64_t size_of_type(const a_type* type) {
  return f_skip_typerefs(type)->size;
}

namespace {

void set_integer_type_size(a_type* type) {
  uint32_t natural_alignment;
  get_integer_size_and_alignment(type->variant.integer.int_kind, &type->size, &natural_alignment,
                                 &type->precision);
  if (type->variant.integer.is_bool)
    type->precision = 1;
  if (!type->has_explicit_alignment) {
    type->alignment = natural_alignment;
  } else if (type->alignment < natural_alignment) {
    if (!gpp_mode || clang_mode)
      pos_error(ec_invalid_alignment_reducing_attr, &type->source_corresp.position);
    type->alignment = natural_alignment;
  }
}

} // namespace

void set_type_size(a_type* type) {
  if (type->size != 0)
    return;
  switch (type->kind) {
  case tk_error:
  case tk_template_param:
  case tk_unknown:
    type->size = 1;
    break;
  case tk_integer:
    set_integer_type_size(type);
    break;
  case tk_float:
  case tk_imaginary:
    get_float_size_and_alignment(type->variant.float_kind, &type->size, &type->alignment);
    break;
  case tk_complex:
    get_float_size_and_alignment(type->variant.float_kind, &type->size, &type->alignment);
    type->size *= 2;
    break;
  case tk_pointer:
    type->size = size_of_pointer_to(type->variant.pointer.referenced_type, &type->alignment);
    break;
  case tk_nullptr:
    type->size = size_of_pointer_to(nullptr, &type->alignment);
    break;
  case tk_array:
    set_array_type_size(type, false);
    break;
  case tk_ptr_to_member: {
    bool is_function = is_function_type(type->variant.ptr_to_member.member_type);
    type->size = static_cast<uint64_t>(is_function ? targ_sizeof_ptr_to_member_function
                                                   : targ_sizeof_ptr_to_data_member);
    type->alignment = static_cast<uint32_t>(is_function ? targ_alignof_ptr_to_member_function
                                                        : targ_alignof_ptr_to_data_member);
    break;
  }
  case tk_typeref:
    set_type_size(type->variant.typeref.referenced_type);
    break;
  case tk_void:
  case tk_routine:
  case tk_class: // given by the layout of the class
  case tk_struct:
  case tk_union:
    break;
  }
}

bool array_has_no_bound(const a_type* array) {
  return is_incomplete_array_type(array);
}

namespace {

// Below all array levels, but a level whose size is known ends the walk: then
// the levels below are complete.
a_type* incomplete_bottom_of_array(const a_type* array) {
  a_type* element = f_skip_typerefs(array->variant.array.element_type);
  while (element->kind == tk_array && element->is_incomplete)
    element = f_skip_typerefs(element->variant.array.element_type);
  return element;
}

} // namespace

void set_array_type_size(a_type* type, bool quiet) {
  an_array_type_variant& array = type->variant.array;
  a_type* bottom = incomplete_bottom_of_array(type);
  uint32_t explicit_alignment = type->has_explicit_alignment ? type->alignment : 1;
  if (bottom->is_incomplete && (is_class_struct_union_kind(bottom->kind) || is_enum_type(bottom))) {
    add_to_dependent_type_fixup_list(bottom, dtfk_array_size, type);
    type->is_incomplete = 1;
    type->size = 0;
    type->alignment = explicit_alignment;
    return;
  }
  a_type* element = f_skip_typerefs(array.element_type);
  if (element->kind != tk_array) // the size of an array was set when it was made
    set_type_size(element);
  bool has_number = !array.bound_is_constant && !array.bound_is_expr && !array.is_vla;
  // The size of an array of variable length is computed when the program runs.
  uint64_t bound = has_number ? array.bound.number_of_elements : array.is_vla ? 0 : 1;
  uint32_t element_alignment = f_alignment_of_type(array.element_type);
  type->is_incomplete =
      element->is_incomplete || (bound == 0 && !array.flexible_not_allowed && !array.is_vla);
  if (element->size != 0 && element->size < element_alignment && !quiet)
    pos_error(ec_array_element_align_greater_than_size, &error_position);
  if (element->size != 0 && bound > targ_size_t_max / element->size) {
    if (!quiet)
      pos_error(ec_array_size_too_large, &error_position);
    set_type_kind(type, tk_error);
    return;
  }
  type->size = bound * element->size;
  type->alignment = std::max(element_alignment, explicit_alignment);
}

// --- Work that waits for the completion of a type.

namespace {

struct a_dependent_type_fixup {
  a_dependent_type_fixup* next;
  a_type* incomplete_type;
  a_dependent_type_fixup_kind kind;
  union {
    a_type* type;
    a_param_type* param;
    void* generic;
  } entity;
};

// In the order in which the work came: an array's elements before the array.
struct a_fixup_list {
  a_dependent_type_fixup* first;
  a_dependent_type_fixup* last;
};

// The lists by a hash of the incomplete type's address, which a precompiled
// header keeps. The records lie in region 0.
constexpr size_t num_fixup_lists = 256;
a_fixup_list fixup_lists[num_fixup_lists];
a_dependent_type_fixup* avail_fixups;

const a_pch_saved_variable pch_saved_variables[] = {{fixup_lists, sizeof fixup_lists, false},
                                                    {&avail_fixups, sizeof avail_fixups, false},
                                                    {nullptr, 0, false}};

a_fixup_list* fixup_list_of(const a_type* incomplete_type) {
  uintptr_t address = reinterpret_cast<uintptr_t>(incomplete_type);
  return &fixup_lists[(address / alignof(a_type) * 2654435761U >> 12) % num_fixup_lists];
}

void append_fixup(a_fixup_list* list, a_dependent_type_fixup* fixup) {
  fixup->next = nullptr;
  (list->first == nullptr ? list->first : list->last->next) = fixup;
  list->last = fixup;
}

void do_fixup(const a_dependent_type_fixup& fixup) {
  switch (fixup.kind) {
  case dtfk_array_size:
    if (fixup.entity.type->kind == tk_array) // an error may have come between
      set_array_type_size(fixup.entity.type, false);
    break;
  case dtfk_arg_transfer_method:
    set_arg_transfer_method_flag(fixup.entity.param);
    break;
  case dtfk_calling_method:
    if (fixup.entity.type->kind == tk_routine)
      set_routine_calling_method_flag(fixup.entity.type);
    break;
  }
}

} // namespace

void add_to_dependent_type_fixup_list(a_type* incomplete_type, a_dependent_type_fixup_kind kind,
                                      void* entity) {
  a_dependent_type_fixup* fixup = avail_fixups;
  if (fixup != nullptr)
    avail_fixups = fixup->next;
  else
    fixup = static_cast<a_dependent_type_fixup*>(
        alloc_in_region(front_end_region, sizeof(a_dependent_type_fixup)));
  fixup->incomplete_type = incomplete_type;
  fixup->kind = kind;
  fixup->entity.generic = entity;
  append_fixup(fixup_list_of(incomplete_type), fixup);
}

void process_dependent_type_fixups(a_type* type) {
  // The work is taken off the list first: doing it may add more, for this type
  // too when it is still incomplete.
  a_fixup_list* list = fixup_list_of(type);
  a_fixup_list ready = {};
  a_dependent_type_fixup* fixup = list->first;
  *list = {};
  while (fixup != nullptr) {
    a_dependent_type_fixup* next = fixup->next;
    append_fixup(fixup->incomplete_type == type ? &ready : list, fixup);
    fixup = next;
  }
  while (ready.first != nullptr) {
    fixup = ready.first;
    ready.first = fixup->next;
    do_fixup(*fixup);
    fixup->next = avail_fixups;
    avail_fixups = fixup;
  }
}

void reset_dependent_type_fixups(bool also_free_list) {
  memset(fixup_lists, 0, sizeof fixup_lists);
  if (also_free_list)
    avail_fixups = nullptr;
}

void register_dependent_type_fixups() {
  f_register_trans_unit_variable(fixup_lists, sizeof fixup_lists, 0);
  register_pch_saved_variables(pch_saved_variables);
}

// --- Promotion.

namespace {

bool is_special_character_type(const a_type* type) {
  return is_wchar_t_type(type) || is_char16_t_type(type) || is_char32_t_type(type);
}

// The kind of the promoted value (C99 6.3.1.1 p2).
int promoted_int_kind(int int_kind) {
  bool is_k_and_r = C_dialect == cd_k_and_r;
  if (int_kind == ik_char)
    int_kind = targ_has_signed_chars ? ik_signed_char : ik_unsigned_char;
  switch (int_kind) {
  case ik_signed_char:
  case ik_short:
    return ik_int;
  case ik_unsigned_char:
    return is_k_and_r || targ_sizeof_int < 2 ? ik_unsigned_int : ik_int;
  case ik_unsigned_short:
    return !is_k_and_r && targ_sizeof_int > targ_sizeof_short ? ik_int : ik_unsigned_int;
  default:
    return int_kind;
  }
}

} // namespace

a_type* type_after_integral_promotion(a_type* type) {
  a_type* bare = f_skip_typerefs(type);
  if (bare->kind != tk_integer || bare->variant.integer.is_scoped_enum)
    return type;
  if (bare->variant.integer.is_bool)
    return integer_type(ik_int);
  int int_kind = bare->variant.integer.int_kind;
  bool is_special = is_special_character_type(bare) || bare->variant.integer.is_enum;
  int promoted = promoted_int_kind(int_kind);
  if (in_cplusplus_mode() && is_special && targ_sizeof_int == targ_sizeof_long) {
    if (int_kind == ik_long)
      promoted = ik_int;
    else if (int_kind == ik_unsigned_long)
      promoted = ik_unsigned_int;
  }
  if (promoted != int_kind || (in_cplusplus_mode() && is_special))
    return integer_type(promoted);
  return type;
}

a_type* type_after_bit_field_promotion(a_type* type, unsigned bit_size) {
  a_type* bare = f_skip_typerefs(type);
  if (bare->kind != tk_integer || bare->variant.integer.is_scoped_enum)
    return type;
  bool is_unsigned = !int_kind_is_signed(bare->variant.integer.int_kind);
  unsigned int_width = static_cast<unsigned>(targ_precisionof_int);
  if (bit_size > int_width)
    return type_after_integral_promotion(type);
  if (is_unsigned && bit_size == int_width)
    return integer_type(ik_unsigned_int);
  return integer_type(ik_int);
}

a_type* default_argument_promotion(a_type* type) {
  a_type* bare = f_skip_typerefs(type);
  if (bare->kind == tk_float && bare->variant.float_kind == fk_float)
    return float_type(fk_double);
  if (bare->kind == tk_imaginary && bare->variant.float_kind == fk_float)
    return imaginary_type(fk_double);
  return type_after_integral_promotion(type);
}

a_type* type_after_array_to_pointer_transformation(a_type* type) {
  if (!is_array_type(type))
    return type;
  return make_pointer_type(array_element_type(type));
}

a_type* type_after_parameter_adjustment(a_type* type) {
  if (is_function_type(type))
    return make_pointer_type(type);
  if (!is_array_type(type))
    return type;
  a_type* pointer = make_pointer_type(array_element_type(type));
  // [const n]: the qualifiers in the brackets are those of the pointer.
  return make_qualified_type(pointer, f_skip_typerefs(type)->variant.array.bound_qualifiers);
}

// --- Usual arithmetic conversions.

namespace {

struct a_float_rank {
  int mantissa_digits; // 0 for a type that isn't floating
  int float_kind;
};

a_float_rank float_rank(const a_type* type) {
  type = f_skip_typerefs(type);
  if (!is_floating_type(type))
    return {0, 0};
  return {mantissa_digits_of_float_kind(type->variant.float_kind), type->variant.float_kind};
}

int common_float_kind(const a_type* type1, const a_type* type2) {
  a_float_rank rank1 = float_rank(type1);
  a_float_rank rank2 = float_rank(type2);
  bool second_wins = rank2.mantissa_digits != rank1.mantissa_digits
                         ? rank2.mantissa_digits > rank1.mantissa_digits
                         : rank2.float_kind > rank1.float_kind;
  int float_kind = second_wins ? rank2.float_kind : rank1.float_kind;
  return C_dialect == cd_k_and_r && float_kind == fk_float ? static_cast<int>(fk_double)
                                                           : float_kind;
}

a_type* common_floating_type(const a_type* type1, const a_type* type2) {
  int float_kind = common_float_kind(type1, type2);
  auto is_real = [](const a_type* type) { return is_real_type(type); };
  if (is_real(type1) && is_real(type2))
    return float_type(float_kind);
  if (is_imaginary_type(type1) && is_imaginary_type(type2))
    return imaginary_type(float_kind);
  return complex_type(float_kind);
}

// Whether the kind is unsigned int or unsigned long in the width of the signed
// kind, which then can't hold all its values.
bool exceeds_same_width(int kind, int signed_kind) {
  return (kind == ik_unsigned_int || kind == ik_unsigned_long) &&
         precision_of_int_kind(kind) == precision_of_int_kind(signed_kind);
}

int common_int_kind(int kind1, int kind2) {
  auto either_is = [=](int kind) { return kind1 == kind || kind2 == kind; };
  auto other_than = [=](int kind) { return kind1 == kind ? kind2 : kind1; };
  if (either_is(ik_unsigned_long_long))
    return ik_unsigned_long_long;
  if (either_is(ik_long_long))
    return exceeds_same_width(other_than(ik_long_long), ik_long_long) ? ik_unsigned_long_long
                                                                      : ik_long_long;
  if (either_is(ik_unsigned_long))
    return ik_unsigned_long;
  if (either_is(ik_long)) {
    bool becomes_unsigned =
        !long_preserving_rules && exceeds_same_width(other_than(ik_long), ik_long);
    return becomes_unsigned ? ik_unsigned_long : ik_long;
  }
  return either_is(ik_unsigned_int) ? ik_unsigned_int : ik_int;
}

} // namespace

a_type* usual_arithmetic_conversions(a_type* type1, a_type* type2) {
  if (is_error_type(type1) || is_error_type(type2))
    return error_type();
  if (is_floating_type(type1) || is_floating_type(type2))
    return common_floating_type(type1, type2);
  return integer_type(common_int_kind(int_kind_of(type_after_integral_promotion(type1)),
                                      int_kind_of(type_after_integral_promotion(type2))));
}
