// What the lowering of complex values and the bodies of its routines share.

#ifndef LOWER_COMPLEX_INT_H
#define LOWER_COMPLEX_INT_H

#include "il_types.h"
#include "lower_complex.h"

// The routines come in families, one for each float kind.
enum a_complex_family : uint8_t {
  cf_negate,
  cf_conjugate,
  cf_add,
  cf_subtract,
  cf_multiply,
  cf_divide,
  cf_eq,
  cf_ne,
  cf_cfloat_to,
  cf_cdouble_to,
  cf_clong_double_to,
  cf_imag_to_complex,
  cf_real_to_complex,
  cf_complex_to_imag,
  cf_complex_to_real,
  num_complex_families
};

// What the body of a routine does.
enum a_complex_operation : uint8_t {
  cop_none = 0,
  cop_negate = 1,
  cop_conjugate = 2,
  cop_add = 3,
  cop_subtract = 4,
  cop_multiply = 5,
  cop_divide = 6,
  cop_eq = 7,
  cop_ne = 8,
  cop_complex_to_complex = 9,
  cop_imag_to_complex = 10,
  cop_real_to_complex = 11,
  cop_complex_to_imag = 12,
  cop_complex_to_real = 13
};

struct a_complex_routine_descr {
  a_complex_family family;
  a_float_kind float_kind;
  a_complex_operation operation;
  const char* name;
};

inline constexpr a_complex_routine_descr complex_routine_descrs[] = {
#define COMPLEX_ROUTINE(family, float_kind, operation, name) {family, float_kind, operation, name},
#include "complex_routines.def"
#undef COMPLEX_ROUTINE
};

// The routines that the unit calls; null: not called yet.
extern a_routine* complex_routines[num_complex_families][num_float_kinds];

#endif
