// String literals that initialise arrays of characters (C99 6.7.8 p14, p15).

#include "decl_inits_int.h"
#include "il.h"
#include "il_alloc.h"
#include "mode_words.h"
#include "target.h"
#include "types.h"

static uint64_t size_of_literal_character(const a_constant* literal) {
  return static_cast<uint64_t>(character_size[literal->string_char_kind]);
}

// Whether a string can initialise an array of the type at all.
static bool may_be_string_type(const a_type* array) {
  const a_type* element = skip_typerefs(array_element_type(array));
  return element->kind == tk_integer && !is_enum_type(element) && !is_bool_type(element);
}

static const a_type* type_of_literal_character(const a_constant* literal) {
  return skip_typerefs(array_element_type(literal->type));
}

// In C the integer type of the size is what counts, in C++ the type itself.
static bool literal_fits_element(const a_constant* literal, const a_type* element) {
  const a_type* bare = skip_typerefs(element);
  if (literal->string_char_kind == sck_ordinary)
    return is_character_type(bare);
  if (in_cplusplus_mode())
    return type_of_literal_character(literal) == bare;
  return !is_character_type(bare) && bare->size == size_of_literal_character(literal);
}

static bool has_known_bound(const a_type* array) {
  return !is_incomplete_array_type(array);
}

bool check_string_constant_initializer_full(const a_type* array, const a_constant* literal,
                                            bool* too_long) {
  *too_long = false;
  if (!may_be_string_type(array) || !literal_fits_element(literal, array_element_type(array)))
    return false;
  uint64_t length = literal->value.string.length / size_of_literal_character(literal);
  if (has_known_bound(array)) {
    // In C the terminator alone may be left out.
    uint64_t bound = num_array_elements(skip_typerefs(array));
    *too_long = bound < length && !(in_C_mode() && bound + 1 == length);
  }
  return true;
}

const a_constant* whole_array_init_possible(const an_init_component* component, const a_type* array,
                                            bool* is_parenthesized) {
  const a_constant* literal;
  bool too_long;
  if (component->kind == ick_braced_list) {
    component = component->variant.braced.first;
    if (!component || component->next)
      return nullptr;
  }
  *is_parenthesized = component->parenthesized;
  return is_string_literal_component(component, &literal) &&
                 check_string_constant_initializer_full(array, literal, &too_long)
             ? literal
             : nullptr;
}

a_constant* string_initializer(const a_constant* literal, a_type** type,
                               const a_source_position* position) {
  a_type* array = skip_typerefs(*type);
  uint64_t char_size = size_of_literal_character(literal);
  uint64_t length = literal->value.string.length / char_size; // the terminator counts
  bool too_long = false;
  check_string_constant_initializer_full(array, literal, &too_long);
  if (too_long)
    pos_diagnostic(in_C_mode() ? es_warning : es_error, ec_excess_characters_in_literal_ignored,
                   position);
  a_constant* constant = alloc_unshared_constant(literal);
  constant->is_string_initializer = true;
  if (!has_known_bound(array))
    *type = make_array_type(array_element_type(array), length);
  else if (num_array_elements(array) < length)
    constant->value.string.length = num_array_elements(array) * char_size;
  constant->type = *type;
  return constant;
}
