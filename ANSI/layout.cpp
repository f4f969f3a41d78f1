// Class and aggregate layout. A cursor of bytes and bits moves over the class;
// bit-fields stay in their container, other fields begin at an aligned byte.

#include "layout.h"

#include <algorithm>

#include "error.h"
#include "il_types.h"
#include "mode_words.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

// The member alignment that #pragma pack has set; 0: none.
static int curr_max_member_alignment;

namespace {

struct a_layout_cursor {
  a_type* class_type;
  uint64_t offset;     // bytes
  uint64_t bit_offset; // 0 to targ_char_bit - 1, below offset
  uint64_t class_alignment;
  bool too_large_reported;
  // The farthest end of a union's fields.
  uint64_t largest_offset;
  uint64_t largest_bit_offset;
  // Where the declared containers of the bit-fields end, in bytes.
  uint64_t container_end;
};

// The container of a bit-field: how far it reaches and where it may begin.
struct a_container {
  uint64_t size;      // bytes
  uint64_t alignment; // bytes
};

} // namespace

static uint64_t align_up(uint64_t value, uint64_t alignment) {
  return (value + alignment - 1) / alignment * alignment;
}

static bool is_union(const a_layout_cursor* cursor) {
  return cursor->class_type->kind == tk_union;
}

static uint16_t pack_alignment_of(const a_type* class_type) {
  return class_type->variant.class_struct_union.class_supplement->pack_alignment;
}

static void report_too_large(a_layout_cursor* cursor) {
  if (cursor->too_large_reported)
    return;
  cursor->too_large_reported = true;
  pos_error(in_cplusplus_mode() ? ec_class_too_large : ec_struct_too_large,
            &cursor->class_type->source_corresp.position);
}

// Moves the cursor to a byte offset; a place beyond the greatest object is
// refused and leaves the cursor where it was.
static bool move_to(a_layout_cursor* cursor, uint64_t offset) {
  if (offset > targ_max_class_object_size || offset < cursor->offset) {
    report_too_large(cursor);
    return false;
  }
  cursor->offset = offset;
  cursor->bit_offset = 0;
  return true;
}

static void round_up_to_byte(a_layout_cursor* cursor) {
  if (cursor->bit_offset != 0)
    move_to(cursor, cursor->offset + 1);
}

static bool align_cursor(a_layout_cursor* cursor, uint64_t alignment) {
  round_up_to_byte(cursor);
  return move_to(cursor, align_up(cursor->offset, alignment));
}

static void advance_bits(a_layout_cursor* cursor, uint64_t bits) {
  uint64_t total = cursor->bit_offset + bits;
  if (move_to(cursor, cursor->offset + total / targ_char_bit))
    cursor->bit_offset = total % targ_char_bit;
}

static void raise_class_alignment(a_layout_cursor* cursor, uint64_t alignment) {
  cursor->class_alignment = std::max(cursor->class_alignment, alignment);
}

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

uint32_t alignment_of_field_full(a_field* field, bool for_bit_field) {
  a_type* class_type =
      field->source_corresp.parent_scope ? field->source_corresp.parent_scope->assoc.type : nullptr;
  bool class_is_packed = class_type && class_type->variant.class_struct_union.is_packed;
  bool old_gnu_bit_field = gnu_mode && gnu_version < 30400 && for_bit_field;
  uint32_t natural =
      old_gnu_bit_field ? f_alignment_of_type(field->type) : field_alignment_for(field->type);
  if (field->declared_alignment != 0) {
    if (gnu_mode && field->declared_alignment < natural && !field->is_packed && !class_is_packed) {
      pos_warning(ec_alignment_reduction_ignored, &field->source_corresp.position);
      field->declared_alignment = natural;
    }
    return field->declared_alignment;
  }
  if (field->is_packed || old_gnu_bit_field)
    return 1;
  uint32_t pack = class_type ? pack_alignment_of(class_type) : 0;
  return pack != 0 ? std::min(pack, natural) : natural;
}

// ---- Bit-fields ----

bool get_container_offset_for_field(uint64_t container_bits, uint64_t alignment_bits,
                                    uint64_t bit_start, uint64_t bit_size, uint64_t* offset) {
  uint64_t last = bit_start + bit_size - 1;
  uint64_t end = align_up(last + 1, alignment_bits);
  *offset = end > container_bits ? end - container_bits : 0;
  return *offset <= bit_start;
}

// Whether the open container at the cursor still has room for the width.
static bool fits_in_open_container(const a_layout_cursor* cursor, const a_container* container,
                                   uint64_t width) {
  uint64_t used = cursor->offset % container->alignment;
  return container->size > used &&
         (container->size - used) * targ_char_bit - cursor->bit_offset >= width &&
         (container->size - used) * targ_char_bit > cursor->bit_offset;
}

static a_container container_of_kind(int kind) {
  a_type* type = integer_type(kind);
  return {type->size, field_alignment_for(type)};
}

static const int container_kinds[] = {ik_short, ik_int, ik_long, ik_long_long};

// A field wider than its type lies in the integer type that holds the width
// as it was written.
static a_container container_of_oversize_field(const a_field* field) {
  for (int kind : container_kinds)
    if (static_cast<uint32_t>(precision_of_int_kind(kind)) >= field->declared_bit_size)
      return container_of_kind(kind);
  return container_of_kind(ik_long_long);
}

// The smallest container that holds the field at the cursor.
static a_container smallest_container(const a_layout_cursor* cursor, uint64_t width) {
  if (cursor->bit_offset + width <= static_cast<uint64_t>(targ_char_bit))
    return {1, 1};
  for (int kind : {ik_short, ik_int, ik_long}) {
    a_container candidate = container_of_kind(kind);
    if (candidate.size * targ_char_bit <= static_cast<uint64_t>(targ_max_bit_field_size) &&
        fits_in_open_container(cursor, &candidate, width))
      return candidate;
  }
  uint64_t bytes = (width + targ_char_bit - 1) / targ_char_bit;
  if (bytes <= 1)
    return {1, 1};
  for (int kind : container_kinds) {
    a_container candidate = container_of_kind(kind);
    if (candidate.size >= bytes)
      return candidate;
  }
  return {bytes, 1};
}

static a_container container_of_bit_field(const a_layout_cursor* cursor, a_field* field) {
  if (targ_bit_field_container_size < 0) {
    uint64_t alignment = alignment_of_field_full(field, false);
    return {size_of_type(field->type), alignment};
  }
  if (targ_bit_field_container_size == 0)
    return smallest_container(cursor, field->bit_size);
  uint64_t size = targ_bit_field_container_size;
  for (int kind : container_kinds) {
    a_container candidate = container_of_kind(kind);
    if (candidate.size == size && !field->is_packed)
      return candidate;
  }
  return {size, 1};
}

static a_container container_of_zero_width_field(a_field* field) {
  int alignment = targ_zero_width_bit_field_alignment;
  if (alignment > 0)
    return {1, static_cast<uint64_t>(alignment)};
  return {1, alignment == 0 ? 1 : alignment_of_field_full(field, true)};
}

static void adjust_container_alignment(const a_layout_cursor* cursor, const a_field* field,
                                       a_container* container) {
  uint64_t declared = field->declared_alignment;
  if (declared > container->alignment)
    container->alignment = declared;
  uint64_t pack = pack_alignment_of(cursor->class_type);
  if (targ_user_control_of_struct_packing_affects_bit_fields && pack != 0)
    container->alignment = std::min(container->alignment, pack);
}

static bool bit_field_affects_alignment(const a_layout_cursor* cursor, const a_field* field) {
  if (field->bit_size == 0)
    return targ_zero_width_bit_field_affects_struct_alignment;
  if (!field->source_corresp.name && !targ_unnamed_bit_field_affects_struct_alignment)
    return false;
  return !is_union(cursor) || targ_bit_field_affects_union_alignment;
}

static void place_bit_field(a_layout_cursor* cursor, a_field* field) {
  a_container container;
  bool is_oversize = field->declared_bit_size != 0;
  if (field->bit_size == 0) {
    container = container_of_zero_width_field(field);
  } else if (is_oversize) {
    container = container_of_oversize_field(field);
    align_cursor(cursor, container.alignment);
  } else {
    container = container_of_bit_field(cursor, field);
  }
  adjust_container_alignment(cursor, field, &container);
  if (field->bit_size == 0 || field->declared_alignment != 0 ||
      (!is_oversize && !fits_in_open_container(cursor, &container, field->bit_size)))
    align_cursor(cursor, container.alignment);
  if (bit_field_affects_alignment(cursor, field))
    raise_class_alignment(cursor, container.alignment);
}

// A bit-field is never split across its container, but for a packed one, which
// follows its neighbour at once.
static void lay_out_bit_field(a_layout_cursor* cursor, a_field* field) {
  bool is_packed =
      field->is_packed && field->declared_alignment == 0 && curr_max_member_alignment == 0;
  if (!is_packed)
    place_bit_field(cursor, field);
  else if (bit_field_affects_alignment(cursor, field))
    raise_class_alignment(cursor, 1);
  field->offset = cursor->offset;
  field->bit_offset = static_cast<uint8_t>(cursor->bit_offset);
  if (is_packed && cursor->bit_offset + field->bit_size >= 65)
    pos_sy_error(ec_attribute_does_not_apply, &field->source_corresp.position,
                 field->source_corresp.symbol);
  uint64_t start = cursor->offset * targ_char_bit + cursor->bit_offset;
  advance_bits(cursor, targ_pad_bit_fields_larger_than_base_type && field->declared_bit_size != 0
                           ? field->declared_bit_size
                           : field->bit_size);
  uint64_t container_bits = size_of_type(field->type) * targ_char_bit, container_start;
  if (!field->is_packed && field->bit_size != 0 &&
      get_container_offset_for_field(container_bits,
                                     f_alignment_of_type(field->type) * targ_char_bit, start,
                                     field->bit_size, &container_start))
    cursor->container_end =
        std::max(cursor->container_end, (container_start + container_bits) / targ_char_bit);
}

// ---- Other fields ----

static void lay_out_plain_field(a_layout_cursor* cursor, a_field* field) {
  uint64_t alignment = alignment_of_field_full(field, false);
  align_cursor(cursor, alignment);
  raise_class_alignment(cursor, alignment);
  field->offset = cursor->offset;
  field->bit_offset = 0;
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
  if (is_union(cursor))
    cursor->offset = cursor->bit_offset = 0;
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

// ---- The class ----

// An alignment that an attribute asked for can only raise the class's own.
static void apply_declared_alignment(a_layout_cursor* cursor) {
  a_type* class_type = cursor->class_type;
  if (!class_type->has_explicit_alignment)
    return;
  if (class_type->alignment >= cursor->class_alignment)
    cursor->class_alignment = class_type->alignment;
  else if (!gnu_mode)
    pos_error(ec_invalid_alignment_reducing_attr, &class_type->source_corresp.position);
  else if (!class_type->variant.class_struct_union.is_packed)
    pos_warning(ec_alignment_reduction_ignored, &class_type->source_corresp.position);
}

static uint64_t final_size(a_layout_cursor* cursor) {
  uint64_t size = align_up(cursor->offset, cursor->class_alignment);
  size = std::max(size, cursor->container_end);
  if (size == 0 && !(gcc_mode && in_C_mode()))
    size = 1;
  // A GNU struct without members may be smaller than its alignment.
  return gnu_mode ? size : std::max(size, cursor->class_alignment);
}

void do_class_layout(a_type* class_type) {
  auto& info = class_type->variant.class_struct_union;
  if (!info.layout_pending)
    return;
  a_layout_cursor cursor = {};
  cursor.class_type = class_type;
  cursor.class_alignment = targ_minimum_struct_alignment;
  for (a_field* field = info.fields; field; field = field->next)
    lay_out_field(&cursor, field);
  if (is_union(&cursor)) {
    cursor.offset = cursor.largest_offset;
    cursor.bit_offset = cursor.largest_bit_offset;
  }
  round_up_to_byte(&cursor);
  a_class_type_supplement* supplement = info.class_supplement;
  supplement->nonvirtual_size = cursor.offset;
  supplement->nonvirtual_alignment = static_cast<uint16_t>(cursor.class_alignment);
  apply_declared_alignment(&cursor);
  class_type->alignment = static_cast<uint32_t>(cursor.class_alignment);
  class_type->size = final_size(&cursor);
  info.layout_pending = false;
}

uint16_t current_max_alignment_for_class_members() {
  return static_cast<uint16_t>(curr_max_member_alignment);
}

void layout_one_time_init() {
  f_register_trans_unit_variable(&curr_max_member_alignment, sizeof curr_max_member_alignment, 0);
}

void layout_init() {
  // Nothing of this module lives on from an earlier run.
}

void layout_trans_unit_init() {
  curr_max_member_alignment = pack_alignment;
}
