// Class and aggregate layout. A cursor of bytes and bits moves over the class;
// bit-fields stay in their container, other fields begin at an aligned byte.

#include "layout.h"

#include <algorithm>

#include "const_ints.h"
#include "error.h"
#include "il_constants.h"
#include "layout_int.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

// The kind of the attributes that ask for an alignment.
static constexpr uint8_t alignment_attribute_kind = 3;

// ---- The cursor ----

a_class_type_supplement* supplement_of_class(const a_type* class_type) {
  return class_type->variant.class_struct_union.class_supplement;
}

bool is_union(const a_layout_cursor* cursor) {
  return cursor->class_type->kind == tk_union;
}

uint32_t pack_alignment_of(const a_type* class_type) {
  return supplement_of_class(class_type)->pack_alignment;
}

void report_too_large(a_layout_cursor* cursor) {
  if (cursor->too_large_reported)
    return;
  cursor->too_large_reported = true;
  pos_error(in_cplusplus_mode() ? ec_class_too_large : ec_struct_too_large,
            &cursor->class_type->source_corresp.position);
}

bool move_to(a_layout_cursor* cursor, uint64_t offset) {
  if (offset > targ_max_class_object_size || offset < cursor->offset) {
    report_too_large(cursor);
    return false;
  }
  cursor->offset = offset;
  cursor->bit_offset = 0;
  return true;
}

void round_up_to_byte(a_layout_cursor* cursor) {
  if (cursor->bit_offset != 0)
    move_to(cursor, cursor->offset + 1);
}

bool align_cursor(a_layout_cursor* cursor, uint64_t alignment) {
  round_up_to_byte(cursor);
  return move_to(cursor, align_up(cursor->offset, alignment));
}

void advance_bits(a_layout_cursor* cursor, uint64_t bits) {
  uint64_t total = cursor->bit_offset + bits;
  if (move_to(cursor, cursor->offset + total / targ_char_bit))
    cursor->bit_offset = total % targ_char_bit;
}

void raise_class_alignment(a_layout_cursor* cursor, uint64_t alignment) {
  cursor->class_alignment = std::max(cursor->class_alignment, alignment);
}

// ---- Alignment ----

// With dual alignments a built-in type has an alignment of its own as a member.
static uint32_t builtin_field_alignment(const a_type* type) {
  if (type->kind == tk_integer) {
    switch (type->variant.integer.int_kind) {
    case ik_short:
    case ik_unsigned_short:
      return targ_short_field_alignment;
    case ik_int:
    case ik_unsigned_int:
      return targ_int_field_alignment;
    case ik_long:
    case ik_unsigned_long:
      return targ_long_field_alignment;
    case ik_long_long:
    case ik_unsigned_long_long:
      return targ_long_long_field_alignment;
    default:
      return 1;
    }
  }
  switch (type->variant.float_kind) {
  case fk_float:
    return targ_float_field_alignment;
  case fk_double:
    return targ_double_field_alignment;
  case fk_long_double:
    return targ_long_double_field_alignment;
  case fk_float80:
    return targ_float80_field_alignment;
  case fk_float128:
    return targ_float128_field_alignment;
  }
  return type->alignment;
}

uint32_t field_alignment_for(const a_type* type) {
  if (!targ_dual_alignments_for_builtin_types)
    return f_alignment_of_type(type);
  const a_type* element = skip_typerefs(skip_array_types(type));
  if (element->kind == tk_integer || element->kind == tk_float)
    return builtin_field_alignment(element);
  return f_alignment_of_type(element);
}

static const a_type* class_of_field(const a_field* field) {
  const a_scope* scope = field->source_corresp.parent_scope;
  return scope && scope->kind == sk_class ? scope->assoc.type : nullptr;
}

static bool is_packed_class(const a_type* class_type) {
  return class_type && class_type->variant.class_struct_union.is_packed;
}

bool is_packed_field(const a_field* field) {
  return field->is_packed || (is_packed_class(class_of_field(field)) && !field->is_unpacked);
}

// The class below the arrays of a member's type, if the g++ rule leaves its
// alignment to it: packing the members of a class doesn't reach into one that
// isn't POD.
static const a_type* non_pod_class_of_member(const a_field* field) {
  if (!gpp_mode || gnu_version < 30400 || field->is_packed)
    return nullptr;
  const a_type* element = skip_typerefs(skip_array_types(field->type));
  bool is_class = is_class_struct_union_kind(element->kind);
  return is_class && !supplement_of_class(element)->is_pod ? element : nullptr;
}

uint32_t alignment_of_field_full(a_field* field, bool for_bit_field) {
  const a_type* class_type = class_of_field(field);
  bool old_gnu_bit_field = gnu_mode && gnu_version < 30400 && for_bit_field;
  uint32_t natural =
      old_gnu_bit_field ? f_alignment_of_type(field->type) : field_alignment_for(field->type);
  bool is_packed = is_packed_field(field);
  if (field->declared_alignment != 0) {
    if (gnu_mode && field->declared_alignment < natural && !is_packed) {
      pos_warning(ec_alignment_reduction_ignored, &field->source_corresp.position);
      field->declared_alignment = natural;
    }
    return field->declared_alignment;
  }
  uint32_t pack = class_type ? pack_alignment_of(class_type) : 0;
  bool is_capped = pack != 0 && pack < natural;
  const a_type* non_pod = is_capped ? non_pod_class_of_member(field) : nullptr;
  if (non_pod) {
    if (!for_bit_field)
      pos_ty_warning(ec_no_packing_of_non_POD_field, &field->source_corresp.position, non_pod);
    return is_packed_class(class_type) ? 1 : natural;
  }
  if (is_packed || old_gnu_bit_field)
    return 1;
  return is_capped ? pack : natural;
}

// ---- Fields ----

static a_symbol* unnamed_field_symbol(const a_field* field) {
  a_symbol_locator locator;
  make_unnamed_locator(&locator, &field->source_corresp.position);
  a_symbol* symbol = make_symbol(symk_field, &locator);
  symbol->variant.field = const_cast<a_field*>(field);
  return symbol;
}

const a_symbol* symbol_of_field(const a_field* field) {
  const a_symbol* symbol = field->source_corresp.symbol;
  return symbol ? symbol : unnamed_field_symbol(field);
}

static void lay_out_plain_field(a_layout_cursor* cursor, a_field* field) {
  close_container(cursor);
  uint64_t alignment = alignment_of_field_full(field, false);
  align_cursor(cursor, alignment);
  raise_class_alignment(cursor, alignment);
  if (in_cplusplus_mode())
    avoid_empty_subobjects(cursor, field, alignment);
  field->offset = cursor->offset;
  field->bit_offset = 0;
  note_use_of_tail_padding(cursor, field);
  if (is_incomplete_array_type(field->type)) // a flexible array member
    return;
  uint64_t size = align_up(size_of_type(field->type), f_alignment_of_type(field->type));
  if (size > targ_max_class_object_size)
    report_too_large(cursor);
  else
    move_to(cursor, cursor->offset + size);
}

static void keep_largest_end(a_layout_cursor* cursor) {
  if (cursor->offset > cursor->largest_offset ||
      (cursor->offset == cursor->largest_offset &&
       cursor->bit_offset > cursor->largest_bit_offset)) {
    cursor->largest_offset = cursor->offset;
    cursor->largest_bit_offset = cursor->bit_offset;
  }
}

static void lay_out_field(a_layout_cursor* cursor, a_field* field) {
  if (is_union(cursor)) {
    close_container(cursor);
    keep_largest_end(cursor);
    cursor->offset = cursor->bit_offset = 0;
  }
  if (is_error_type(field->type)) {
    field->is_error = true;
    field->offset = 0;
    return;
  }
  set_type_size(skip_typerefs(field->type));
  if (field->is_bit_field)
    lay_out_bit_field(cursor, field);
  else
    lay_out_plain_field(cursor, field);
  if (is_union(cursor))
    keep_largest_end(cursor);
}

static void lay_out_fields_of_access(a_layout_cursor* cursor, bool all_accesses,
                                     an_access_specifier access) {
  a_field* field = cursor->class_type->variant.class_struct_union.fields;
  for (; field; field = field->next)
    if (all_accesses || field->source_corresp.access == access)
      lay_out_field(cursor, field);
}

static void lay_out_fields(a_layout_cursor* cursor) {
  if (targ_field_alloc_sequence_equals_decl_sequence) {
    lay_out_fields_of_access(cursor, true, as_public);
    return;
  }
  for (an_access_specifier access : {as_public, as_protected, as_private})
    lay_out_fields_of_access(cursor, false, access);
}

// ---- The class ----

static const a_source_position* position_of_alignment(const a_type* class_type) {
  for (const an_attribute* attribute = class_type->source_corresp.attributes; attribute;
       attribute = attribute->next)
    if (attribute->kind == alignment_attribute_kind)
      return &attribute->position;
  return &class_type->source_corresp.position;
}

// An alignment that an attribute asked for can only raise the class's own.
static void apply_declared_alignment(a_layout_cursor* cursor) {
  a_type* class_type = cursor->class_type;
  if (!class_type->has_explicit_alignment)
    return;
  if (class_type->alignment >= cursor->class_alignment)
    cursor->class_alignment = class_type->alignment;
  else if (!gnu_mode)
    pos_error(ec_invalid_alignment_reducing_attr, position_of_alignment(class_type));
  else if (!class_type->variant.class_struct_union.is_packed)
    pos_warning(ec_alignment_reduction_ignored, position_of_alignment(class_type));
}

static bool has_named_field_with_width(const a_type* class_type) {
  for (const a_field* field = class_type->variant.class_struct_union.fields; field;
       field = field->next)
    if (field->source_corresp.name && !(field->is_bit_field && field->bit_size == 0))
      return true;
  return false;
}

// GNU C has structs without members that have no size, GNU C++ those whose
// members are arrays without elements.
static bool may_have_no_size(const a_type* class_type) {
  if (in_C_mode())
    return gcc_mode;
  return gpp_mode && (has_named_field_with_width(class_type) ||
                      class_type->variant.class_struct_union.has_nonempty_base);
}

static uint64_t final_size(a_layout_cursor* cursor) {
  uint64_t size = align_up(cursor->offset, cursor->class_alignment);
  uint64_t unshared_end = std::max(cursor->offset + cursor->padding_used, cursor->padded_end);
  uint64_t unshared_size = align_up(unshared_end, cursor->class_alignment);
  if (targ_reuse_tail_padding && warn_about_tail_padding_use && size != unshared_size)
    pos_warning(ec_size_affected_by_tail_padding, &cursor->class_type->source_corresp.position);
  size = std::max(size, cursor->container_end);
  if (size > targ_max_class_object_size) {
    report_too_large(cursor);
    size = cursor->offset;
  }
  if (size == 0 && !may_have_no_size(cursor->class_type))
    size = 1;
  return gnu_mode ? size : std::max(size, cursor->class_alignment);
}

// Whether the first field's form can stand for the whole union.
static bool check_first_field(const a_field* first, const a_source_position* position) {
  if (!first)
    pos_warning(ec_union_cannot_be_transparent, position);
  else if (first->is_bit_field)
    pos_warning(ec_transparent_union_cannot_have_bit_field_first, position);
  else if (is_floating_type(first->type))
    pos_warning(ec_transparent_union_cannot_have_floating_first_field, position);
  else
    return true;
  return false;
}

void check_transparent_union(a_type* union_type, const a_source_position* position) {
  auto& info = union_type->variant.class_struct_union;
  const a_field* first = info.fields;
  if (!check_first_field(first, position)) {
    info.is_transparent_union = false;
    return;
  }
  for (const a_field* field = first->next; field && info.is_transparent_union; field = field->next)
    if (size_of_type(field->type) > size_of_type(first->type)) {
      pos_sy_warning(ec_union_cannot_be_transparent_sym, position, symbol_of_field(field));
      info.is_transparent_union = false;
    }
}

static void store_nonvirtual_size(a_layout_cursor* cursor) {
  a_class_type_supplement* supplement = supplement_of_class(cursor->class_type);
  supplement->nonvirtual_size = std::max(cursor->offset, cursor->farthest_end);
  supplement->nonvirtual_alignment = static_cast<uint16_t>(cursor->class_alignment);
}

void do_class_layout(a_type* class_type) {
  auto& info = class_type->variant.class_struct_union;
  if (!info.layout_pending)
    return;
  a_layout_cursor cursor = {};
  cursor.class_type = class_type;
  cursor.class_alignment = targ_minimum_struct_alignment;
  if (in_cplusplus_mode())
    lay_out_nonvirtual_bases(&cursor);
  lay_out_fields(&cursor);
  close_container(&cursor);
  if (is_union(&cursor)) {
    keep_largest_end(&cursor);
    cursor.offset = cursor.largest_offset;
    cursor.bit_offset = cursor.largest_bit_offset;
  }
  round_up_to_byte(&cursor);
  store_nonvirtual_size(&cursor);
  if (in_cplusplus_mode()) {
    lay_out_virtual_bases(&cursor);
    finish_bases(&cursor);
  }
  apply_declared_alignment(&cursor);
  class_type->alignment = static_cast<uint32_t>(cursor.class_alignment);
  class_type->size = final_size(&cursor);
  info.layout_pending = false;
  if (info.is_transparent_union)
    check_transparent_union(class_type, &class_type->source_corresp.position);
}

bool is_empty_class_type(const a_type* type) {
  const a_type* bare = skip_typerefs(type);
  return is_class_struct_union_kind(bare->kind) && bare->variant.class_struct_union.is_empty;
}

void layout_one_time_init() {
  register_pack_state();
}

void layout_init() {
  init_pack_state(true);
}

void layout_trans_unit_init() {
  init_pack_state(false);
}

bool enum_bit_field_is_signed(const a_type* enum_type) {
  bool is_signed = !targ_nonnegative_enum_bit_field_is_unsigned;
  for (a_constant* e = first_enumerator_of_enum(enum_type); e; e = e->next)
    is_signed |= cmplit_integer_constant(e, 0) < 0;
  return is_signed;
}
