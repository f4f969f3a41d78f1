// Relaxed floating-point arithmetic: calls of library functions of double whose
// value is wanted as a float become calls of their counterparts of float.

#ifndef FOLDING_MATH_H
#define FOLDING_MATH_H

#include "basics.h"

// Replaces such calls in a finished full expression, whose value is used as
// `type`. Does nothing without relaxed_fp, in C++, and where float and double
// have one size.
void replace_math_funcs(an_expr_node* expr, a_type* type);

// The names of the counterparts.
class MATH_FUNCTIONS_MAP {
public:
  // Null for a function that has none.
  static const char* lookup_function(const char* name);
};

#endif
