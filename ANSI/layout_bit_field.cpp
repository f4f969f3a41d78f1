// The layout of bit-fields: a bit-field lies in a container, by default its
// declared type, and is never split across it.

#include <algorithm>

#include "error.h"
#include "layout_int.h"
#include "mode_words.h"
#include "target.h"
#include "type_pkg.h"
#include "types.h"

namespace {

// The container of a bit-field: how far it reaches and where it may begin.
struct a_container {
  uint64_t size;      // bytes
  uint64_t alignment; // bytes
};

} // namespace

// The rules of the GNU compilers before 3.4 knew no packing of bit-fields.
static constexpr int first_packed_union_gnu_version = 30300;

// The widest access, from the byte in which a bit-field begins.
static constexpr uint64_t max_access_bits = 64;

static bool fits_in_open_container(const a_layout_cursor* cursor, const a_container* container,
                                   uint64_t width) {
  uint64_t used = cursor->offset % container->alignment;
  return container->size > used &&
         (container->size - used) * targ_char_bit - cursor->bit_offset >= width;
}

// ---- Containers ----

static a_container container_of_kind(int kind) {
  a_type* type = integer_type(kind);
  return {type->size, field_alignment_for(type)};
}

static const int container_kinds[] = {ik_short, ik_int, ik_long, ik_long_long};

// A field wider than its type: the greatest integer type that the width fills
// (Itanium C++ ABI 2.4).
static a_container container_of_oversize_field(const a_field* field) {
  a_container container = {size_of_type(field->type), field_alignment_for(field->type)};
  for (int kind : container_kinds)
    if (field->declared_bit_size >= static_cast<uint32_t>(precision_of_int_kind(kind)))
      container = container_of_kind(kind);
  return container;
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

static a_container container_of_fixed_size(const a_field* field) {
  uint64_t size = targ_bit_field_container_size;
  for (int kind : container_kinds) {
    a_container candidate = container_of_kind(kind);
    if (candidate.size == size && !is_packed_field(field))
      return candidate;
  }
  return {size, 1};
}

static a_container container_of_declared_type(a_field* field) {
  uint64_t size = size_of_type(field->type);
  uint64_t alignment = alignment_of_field_full(field, false);
  return {emulate_gnu_abi_bugs ? std::max(size, alignment) : size, alignment};
}

static a_container container_of_zero_width_field(a_field* field) {
  int alignment = targ_zero_width_bit_field_alignment;
  if (alignment > 0)
    return {1, static_cast<uint64_t>(alignment)};
  return {1, alignment == 0 ? 1 : alignment_of_field_full(field, true)};
}

static a_container container_of_bit_field(a_layout_cursor* cursor, a_field* field) {
  if (field->bit_size == 0)
    return container_of_zero_width_field(field);
  if (field->declared_bit_size != 0) {
    a_container container = container_of_oversize_field(field);
    align_cursor(cursor, container.alignment);
    return container;
  }
  if (targ_bit_field_container_size < 0)
    return container_of_declared_type(field);
  if (targ_bit_field_container_size == 0)
    return smallest_container(cursor, field->bit_size);
  return container_of_fixed_size(field);
}

// A field's own alignment can raise that of the container, and packing lowers
// it; what the field itself asks for isn't packed.
static void adjust_container_alignment(const a_layout_cursor* cursor, const a_field* field,
                                       a_container* container) {
  if (field->declared_alignment != 0) {
    container->alignment = std::max<uint64_t>(container->alignment, field->declared_alignment);
    return;
  }
  uint64_t pack = pack_alignment_of(cursor->class_type);
  bool old_gnu_union = gnu_mode && gnu_version < first_packed_union_gnu_version &&
                       is_union(cursor) && targ_bit_field_container_size < 0;
  if (targ_user_control_of_struct_packing_affects_bit_fields && pack != 0 && !old_gnu_union)
    container->alignment = std::min(container->alignment, pack);
}

// ---- The alignment of the class ----

static bool bit_field_affects_alignment(const a_layout_cursor* cursor, const a_field* field) {
  if (is_union(cursor) && emulate_gnu_abi_bugs)
    return field->bit_size == 0;
  if (is_union(cursor) && !targ_bit_field_affects_union_alignment)
    return false;
  if (field->bit_size == 0)
    return targ_zero_width_bit_field_affects_struct_alignment;
  return field->source_corresp.name || targ_unnamed_bit_field_affects_struct_alignment;
}

static void raise_alignment_for_bit_field(a_layout_cursor* cursor, const a_field* field,
                                          uint64_t alignment) {
  if (!bit_field_affects_alignment(cursor, field))
    return;
  if (emulate_gnu_abi_bugs && field->bit_size == 0)
    alignment = std::max<uint64_t>(alignment, targ_alignof_int);
  uint64_t pack = pack_alignment_of(cursor->class_type);
  if (!targ_user_control_of_struct_packing_affects_bit_fields && pack != 0)
    alignment = std::min(alignment, pack);
  raise_class_alignment(cursor, alignment);
}

// ---- Containers with the types of their fields ----

bool compatible_ms_bit_field_container_types(const a_type* type1, const a_type* type2) {
  const a_type* bare1 = skip_typerefs(type1);
  const a_type* bare2 = skip_typerefs(type2);
  return bare1->kind == tk_integer && bare2->kind == tk_integer && bare1->size == bare2->size;
}

void close_container(a_layout_cursor* cursor) {
  if (cursor->open_container.type)
    advance_bits(cursor, cursor->open_container.bits_left);
  cursor->open_container = {};
}

// Takes the field's bits out of the open container, or opens one.
static void use_container_of_type(a_layout_cursor* cursor, const a_field* field,
                                  const a_container* container) {
  an_open_container* open = &cursor->open_container;
  bool is_shared = open->type && open->bits_left >= field->bit_size &&
                   compatible_ms_bit_field_container_types(open->type, field->type);
  if (!is_shared) {
    close_container(cursor);
    align_cursor(cursor, container->alignment);
    *open = {field->type, size_of_type(field->type) * targ_char_bit};
  }
  open->bits_left -= std::min<uint64_t>(open->bits_left, field->bit_size);
}

// ---- Placing ----

// A packed bit-field follows its neighbour at the next bit, whatever its width,
// unless a pack pragma or an alignment of its own says more.
static bool skips_alignment(const a_layout_cursor* cursor, const a_field* field) {
  if (!is_packed_field(field))
    return false;
  bool is_transparent = cursor->class_type->variant.class_struct_union.is_transparent_union;
  return (field->declared_alignment == 0 && pack_alignment_of(cursor->class_type) == 0) ||
         (is_transparent && !emulate_gnu_abi_bugs);
}

// Moves the cursor to the place of the field; returns the alignment that counts
// for the class.
static uint64_t place_bit_field(a_layout_cursor* cursor, a_field* field) {
  if (field->bit_size == 0 && targ_microsoft_bit_field_allocation)
    close_container(cursor);
  a_container container = container_of_bit_field(cursor, field);
  adjust_container_alignment(cursor, field, &container);
  if (targ_microsoft_bit_field_allocation && field->bit_size != 0)
    use_container_of_type(cursor, field, &container);
  else if (field->bit_size == 0 || field->declared_alignment != 0 ||
           !fits_in_open_container(cursor, &container, field->bit_size))
    align_cursor(cursor, container.alignment);
  return container.alignment;
}

// The class reaches at least to the end of the declared container, in which the
// field may be loaded as a whole.
static void note_declared_container(a_layout_cursor* cursor, const a_field* field,
                                    uint64_t bit_start) {
  uint64_t container_bits = size_of_type(field->type) * targ_char_bit;
  uint64_t alignment_bits = f_alignment_of_type(field->type) * targ_char_bit;
  uint64_t container_start;
  if (TYPE_PKG::get_container_offset_for_field(container_bits, alignment_bits, bit_start,
                                               field->bit_size, &container_start))
    cursor->container_end =
        std::max(cursor->container_end, (container_start + container_bits) / targ_char_bit);
}

void lay_out_bit_field(a_layout_cursor* cursor, a_field* field) {
  bool is_packed = is_packed_field(field);
  uint64_t alignment = skips_alignment(cursor, field) ? 1 : place_bit_field(cursor, field);
  raise_alignment_for_bit_field(cursor, field, alignment);
  field->offset = cursor->offset;
  field->bit_offset = static_cast<uint8_t>(cursor->bit_offset);
  if (field->bit_size != 0)
    note_use_of_tail_padding(cursor, field);
  if (is_packed && cursor->bit_offset + field->bit_size > max_access_bits)
    pos_sy_error(ec_attribute_does_not_apply, &field->source_corresp.position,
                 symbol_of_field(field));
  uint64_t start = cursor->offset * targ_char_bit + cursor->bit_offset;
  advance_bits(cursor, targ_pad_bit_fields_larger_than_base_type && field->declared_bit_size != 0
                           ? field->declared_bit_size
                           : field->bit_size);
  if (!is_packed && field->bit_size != 0)
    note_declared_container(cursor, field, start);
}
