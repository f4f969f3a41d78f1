// Shared by the files of constant folding.

#ifndef FOLDING_INT_H
#define FOLDING_INT_H

#include "folding.h"
#include "il_constants.h"

// A problem met while folding: a catalogue number, 0 for none, and how bad it
// is before the place is considered.
struct a_fold_problem {
  an_error_code code;
  an_error_severity severity;
};

// Settles what a problem means at the fold's place: a message, an error
// constant, or an operation that stays for run time.
void report_fold_problem(const a_fold_problem* problem, a_constant* result,
                         a_fold_context* context);
an_error_severity integer_overflow_severity();

// The bytes that a step of pointer arithmetic moves; 0 when it isn't known.
uint64_t pointer_step(a_type* pointer_type);
void fold_pointer_arithmetic(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context);
void do_pdiff(const a_constant* left, const a_constant* right, a_type* result_type,
              a_constant* result, a_fold_context* context);
void fold_address_comparison(an_expr_operator_kind op, const a_constant* left,
                             const a_constant* right, a_type* result_type, a_constant* result,
                             a_fold_context* context);

#endif
