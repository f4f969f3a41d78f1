// Measures of types that the rules ask for.

#include "misra.h"
#include "types.h"

#include <algorithm>

// Arrays of arrays count once.
static int depth_of_array(const a_type** type, bool is_counted) {
  const a_type* array = skip_typerefs(*type);
  const a_type* element = array;
  while (is_array_type(element))
    element = array_element_type(element);
  *type = element;
  return is_counted || num_array_elements(array) == 0 ? 1 : 0;
}

int misra_get_pointer_depth(const a_type* type, bool count_all_arrays) {
  int depth = 0;
  for (;;) {
    type = skip_typerefs(type);
    if (type->kind == tk_pointer) {
      ++depth;
      type = type_pointed_to(type);
    } else if (type->kind == tk_array) {
      depth += depth_of_array(&type, count_all_arrays);
    } else if (type->kind == tk_routine) {
      // A function's own depth or its result's, whichever is the larger.
      const a_type* result = return_type_of(type);
      return std::max(depth, result ? misra_get_pointer_depth(result, count_all_arrays) : 0);
    } else {
      return depth;
    }
  }
}
