// IL types as the intermediate file has them.

#include <deque>

#include "const_ints.h"
#include "error.h"
#include "il.h"
#include "il_to_if_int.h"
#include "lower_complex.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "symbol_tbl.h"
#include "target.h"

bool scalar_csu(const a_type* type) {
  if (!scalar_replacement || !is_class_struct_union_type(type))
    return false;
  const a_type* csu = f_skip_typerefs(type);
  const a_field* field = csu->variant.class_struct_union.fields;
  if (field == nullptr || field->next != nullptr || field->is_bit_field)
    return false;
  const a_type* member = f_skip_typerefs(field->type);
  return is_arithmetic_or_enum_type(member) && member->size == csu->size &&
         member->alignment == csu->alignment;
}

ACCESS_KIND access_type(unsigned char access) {
  switch (access) {
  case as_protected:
    return ack_protected;
  case as_private:
    return ack_private;
  default:
    return ack_public;
  }
}

bool ignore_type_in_back_end(const a_type* type) {
  switch (type->kind) {
  case tk_error:
  case tk_template_param:
  case tk_unknown:
    return true;
  default:
    return is_class_struct_union_kind(type->kind) &&
           (type->variant.class_struct_union.is_nonreal ||
            type->variant.class_struct_union.is_prototype_instantiation);
  }
}

namespace {

uint64_t bits(uint64_t bytes) {
  return bytes * targ_char_bit;
}

uint32_t align_bits(const a_type* type) {
  return type->alignment * targ_char_bit;
}

// Null for a type that was declared without a name: the package invents one.
const char* declared_type_name(a_type* type) {
  bool is_unnamed = type->source_corresp.name == nullptr || type->source_corresp.is_unnamed;
  return is_unnamed ? nullptr : sym_name(&type->source_corresp, 0);
}

void set_type_position(TYPE* type, const a_source_correspondence& entity) {
  if (entity.position.seq == 0)
    return;
  PSN psn = psn_of(entity.position);
  type->set_psn(&psn);
}

TYPE* qualified(TYPE* type, a_type_qualifier_set qualifiers) {
  if (qualifiers & tq_const)
    type = type_pkg->mk_qual(type, qf_const);
  if (qualifiers & tq_volatile)
    type = type_pkg->mk_qual(type, qf_volatile);
  if (qualifiers & tq_restrict)
    type = type_pkg->mk_qual(type, qf_restrict);
  return type;
}

// ---- Integers ----

TYPE* plain_integer(an_integer_kind kind) {
  static const TYPE::IKIND words[num_integer_kinds] = {
      TYPE::ikind_unsigned_char, // plain char has a type of its own
      TYPE::ikind_signed_char,   TYPE::ikind_unsigned_char,
      TYPE::ikind_short,         TYPE::ikind_unsigned_short,
      TYPE::ikind_int,           TYPE::ikind_unsigned,
      TYPE::ikind_long,          TYPE::ikind_unsigned_long,
      TYPE::ikind_long_long,     TYPE::ikind_unsigned_long_long};
  if (kind == ik_char)
    return type_pkg->mk_int(
        targ_has_signed_chars ? TYPE::ikind_signed_char : TYPE::ikind_unsigned_char, false);
  return type_pkg->integers[words[kind]];
}

void add_enumerator(TYPE* type, a_constant* enumerator) {
  PSN psn = psn_of(enumerator->source_corresp.position);
  type->add_etor(new fkETOR(static_cast<int64_t>(enumerator->value.int_value),
                            sym_name(&enumerator->source_corresp, 0), &psn));
}

TYPE* enum_type(a_type* type) {
  TYPE* result =
      type_pkg->mk_enum(declared_type_name(type), plain_integer(type->variant.integer.int_kind),
                        bits(type->size), align_bits(type), in_cplusplus_mode());
  set_type_position(result, type->source_corresp);
  for (a_constant* constant = first_enumerator_of_enum(type); constant != nullptr;
       constant = constant->next)
    add_enumerator(result, constant);
  type_pkg->type_frozen(result);
  return result;
}

TYPE* integer_file_type(a_type* type, int mode) {
  const an_integer_type_variant& variant = type->variant.integer;
  if (variant.is_enum)
    return enum_type(type);
  if (mode == tpm_source && variant.is_bool)
    return type_pkg->integers[TYPE::ikind_bool];
  if (mode == tpm_source && variant.is_wchar_t)
    return type_pkg->integers[TYPE::ikind_wchar_t];
  TYPE* result = plain_integer(variant.int_kind);
  return variant.is_bool ? type_pkg->mk_boolean_int(result) : result;
}

// ---- Derived types ----

uint64_t size_of_pointer_to(const a_type* pointee) {
  constexpr uint64_t function_pointer_size = 16, data_pointer_size = 32;
  return is_function_type(pointee) ? function_pointer_size : data_pointer_size;
}

TYPE* pointer_file_type(a_type* type, int mode) {
  a_type* pointee = type->variant.pointer.referenced_type;
  TYPE* target = tp_type(pointee, mode);
  if (target == nullptr)
    return nullptr;
  uint64_t size = size_of_pointer_to(pointee);
  if (type->variant.pointer.is_reference && mode == tpm_source)
    return type_pkg->mk_ref(target, size, align_bits(type));
  return type_pkg->mk_ptr(target, size, align_bits(type));
}

TYPE* routine_file_type(a_type* type, int mode) {
  const a_routine_type_supplement& supplement = *type->variant.routine.routine_supplement;
  TYPE* return_type = tp_type(type->variant.routine.return_type, mode);
  CC_KIND convention = supplement.calling_convention_flags == 1 ? cck_alternate : cck_default;
  TYPE* result = type_pkg->mk_func(return_type, in_cplusplus_mode(), supplement.prototyped,
                                   supplement.has_ellipsis, convention, 0, 0);
  for (const a_param_type* param = supplement.param_types; param != nullptr; param = param->next) {
    a_type* declared =
        supplement.prototyped ? param->type : default_argument_promotion(param->type);
    TYPE* param_type = qualified(tp_type(declared, mode), param->param_qualifiers);
    result->add_param(new fkPARAM(param_type, pk_parameter, ""));
  }
  type_pkg->type_frozen(result);
  return result;
}

TYPE* array_file_type(a_type* type, int mode) {
  uint64_t count = num_array_elements(type);
  TYPE* element = tp_type(type->variant.array.element_type, mode);
  TYPE* result = type_pkg->mk_array(element, in_cplusplus_mode(), static_cast<uint32_t>(count),
                                    bits(type->size), align_bits(type), count != 0);
  type_pkg->type_frozen(result);
  return result;
}

TYPE* typeref_file_type(a_type* type, int mode) {
  const a_typeref_type_variant& variant = type->variant.typeref;
  TYPE* base = tp_type(variant.referenced_type, mode);
  if (base == nullptr)
    return nullptr;
  base = qualified(base, variant.typeref_qualifiers);
  if (!typeref_is_typedef(type))
    return base;
  uint32_t alignment = type->has_explicit_alignment ? align_bits(type) : base->align;
  TYPE* result = type_pkg->mk_typedef(sym_name(&type->source_corresp, 0), in_cplusplus_mode(), base,
                                      base->size, alignment, type->is_generated);
  if (result->psn == nullptr)
    set_type_position(result, type->source_corresp);
  return result;
}

TYPE* ptr_to_member_file_type(a_type* type, int mode) {
  a_type* member_type = type->variant.ptr_to_member.member_type;
  TYPE* member = tp_type(member_type, mode);
  TYPE* csu = tp_type(type->variant.ptr_to_member.class_type, mode);
  return type_pkg->mk_ptm(member, csu, size_of_pointer_to(member_type), align_bits(type));
}

// ---- Classes ----

// A vector of the target is written as a struct around one array.
void check_struct_vector(const a_type* type) {
  const a_field* field = type->variant.class_struct_union.fields;
  bool is_valid = field != nullptr && field->next == nullptr && is_array_type(field->type);
  if (is_valid) {
    uint64_t count = num_array_elements(f_skip_typerefs(field->type));
    is_valid = count != 0 && (count & (count - 1)) == 0 && bits(type->alignment) % 64 == 0;
  }
  if (!is_valid)
    pos_st_error(ec_bad_vect, &type->source_corresp.position, type->source_corresp.name);
}

std::deque<FIELD_REF> field_refs;

void add_field(TYPE* csu, a_field* field, int mode) {
  int64_t offset = static_cast<int64_t>(bits(field->offset)) + field->bit_offset;
  PSN psn = psn_of(field->source_corresp.position);
  typed_entity_position = field->source_corresp.position;
  fkMDATA* member = csu->add_mdata(
      new fkMDATA(sym_name(&field->source_corresp, 0), tp_type(field->type, mode),
                  access_type(field->source_corresp.access), offset,
                  field->is_bit_field ? field->bit_size : 0, field->is_bit_field, &psn));
  if (mode != tpm_lowered)
    return;
  field_refs.push_back({csu, member});
  field->file_member = &field_refs.back();
}

// ---- What only the class as written has ----

void add_scope_members(TYPE* csu, const a_scope* scope) {
  for (a_variable* member = scope->variables; member != nullptr; member = member->next)
    csu->add_sdata(new fkSDATA(tp_type(member->type, tpm_source),
                               sym_name(&member->source_corresp, 0),
                               access_type(member->source_corresp.access)));
  for (a_routine* member = scope->routines; member != nullptr; member = member->next) {
    constexpr int not_virtual = -1;
    int index = member->virtual_function_index == no_virtual_function_index
                    ? not_virtual
                    : member->virtual_function_index;
    csu->add_mfunc(new fkMFUNC(tp_type(member->type, tpm_source), routine_name(member).c_str(),
                               access_type(member->source_corresp.access), index));
  }
}

void add_base_classes(TYPE* csu, const a_base_class* base) {
  for (; base != nullptr; base = base->next)
    if (base->is_direct)
      csu->add_bclass(new fkBCLASS(tp_type(base->type, tpm_source),
                                   static_cast<int32_t>(bits(base->offset)),
                                   access_type(base->access), base->is_virtual));
}

void add_friends(TYPE* csu, const a_class_type_supplement& supplement) {
  for (const a_routine_list_entry* entry = supplement.friend_routines; entry != nullptr;
       entry = entry->next)
    csu->add_ffriend(new fkFFRIEND(routine_name(entry->routine).c_str(),
                                   tp_type(entry->routine->type, tpm_source)));
  for (const a_class_list_entry* entry = supplement.friends; entry != nullptr; entry = entry->next)
    csu->add_cfriend(new fkTYPE_ELEM(tp_type(entry->class_type, tpm_source)));
}

void add_template_args(TYPE* csu, const a_template_arg* arg) {
  for (; arg != nullptr; arg = arg->next)
    if (arg->kind == tak_type)
      csu->add_param(new fkPARAM(tp_type(arg->value.type, tpm_source), pk_type_argument, ""));
    else if (arg->kind == tak_constant)
      csu->add_param(new fkPARAM(tp_type(arg->value.constant->type, tpm_source), pk_value_argument,
                                 arg->value.constant->kind == con_integer
                                     ? str_for_integer_constant(arg->value.constant)
                                     : ""));
    else if (arg->kind == tak_template)
      csu->add_param(new fkPARAM(type_pkg->void_type, pk_template_argument,
                                 arg->value.template_symbol->header->identifier));
}

void add_source_lists(TYPE* csu, const a_class_type_supplement& supplement) {
  if (supplement.scope != nullptr)
    add_scope_members(csu, supplement.scope);
  add_base_classes(csu, supplement.base_classes);
  add_friends(csu, supplement);
  add_template_args(csu, supplement.template_args);
}

TYPE* make_csu(a_type* type) {
  const a_class_type_variant& variant = type->variant.class_struct_union;
  const char* name = declared_type_name(type);
  bool is_complete = !type->is_incomplete;
  if (variant.is_struct_vector)
    check_struct_vector(type);
  auto make = type->kind == tk_class    ? &TYPE_PKG::mk_class
              : type->kind == tk_struct ? &TYPE_PKG::mk_struct
                                        : &TYPE_PKG::mk_union;
  return (type_pkg->*make)(name, bits(type->size), align_bits(type), is_complete, 0,
                           type->is_generated, variant.is_struct_vector, in_cplusplus_mode());
}

TYPE* csu_file_type(a_type* type, int mode) {
  if (mode == tpm_lowered && scalar_csu(type))
    return tp_type(type->variant.class_struct_union.fields->type, mode);
  TYPE* result = make_csu(type);
  set_type_position(result, type->source_corresp);
  // Known from here on, so that a pointer to the class inside itself finds it.
  (mode == tpm_lowered ? type->lowered_file_type : type->source_file_type) = result;
  if (type->is_incomplete)
    return result;
  for (a_field* field = next_initializable_field(type->variant.class_struct_union.fields);
       field != nullptr; field = next_initializable_field(field->next))
    add_field(result, field, mode);
  const a_class_type_supplement* supplement = type->variant.class_struct_union.class_supplement;
  if (mode == tpm_source && supplement != nullptr)
    add_source_lists(result, *supplement);
  type_pkg->type_frozen(result);
  return result;
}

// The file isn't kept, so any type will do. A type has no place of its own: the
// message stands where the entity is declared that has it.
TYPE* refused_file_type(const char* what) {
  refuse_float_values(&typed_entity_position, what);
  return type_pkg->floats[fk_double];
}

TYPE* new_file_type(a_type* type, int mode) {
  switch (type->kind) {
  case tk_void:
  case tk_unknown: // any object, to which a parameter refers
    return type_pkg->void_type;
  case tk_integer:
    return integer_file_type(type, mode);
  case tk_float:
    if (type->variant.float_kind > fk_long_double)
      return refused_file_type("extended floating point");
    return type_pkg->floats[type->variant.float_kind];
  case tk_imaginary:
    if (mode == tpm_source)
      return tp_type(float_type(type->variant.float_kind), mode);
    return refused_file_type("complex arithmetic");
  case tk_complex:
    if (mode == tpm_source)
      return tp_type(lowered_complex_type(type->variant.float_kind), mode);
    return refused_file_type("complex arithmetic");
  case tk_pointer:
    return pointer_file_type(type, mode);
  case tk_routine:
    return routine_file_type(type, mode);
  case tk_array:
    return array_file_type(type, mode);
  case tk_class:
  case tk_struct:
  case tk_union:
    return csu_file_type(type, mode);
  case tk_typeref:
    return typeref_file_type(type, mode);
  case tk_ptr_to_member:
    return ptr_to_member_file_type(type, mode);
  case tk_nullptr:
    return tp_type(void_star_type(), mode);
  default:
    return nullptr;
  }
}

} // namespace

TYPE* tp_type(a_type* type, int mode) {
  check_stack_limit();
  if (TYPE* known = mode == tpm_lowered ? type->lowered_file_type : type->source_file_type)
    return known;
  TYPE* result = new_file_type(type, mode);
  (mode == tpm_lowered ? type->lowered_file_type : type->source_file_type) = result;
  return result;
}
