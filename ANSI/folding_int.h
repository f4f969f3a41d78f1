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
// An integer constant of the type at the fold's place; its value is 0.
void start_result(a_type* type, a_constant* result, const a_fold_context* context);
// Whether a comparison holds of operands in this order: -1, 0 or 1.
bool relation_holds(an_expr_operator_kind op, int order);

// Floating constants (folding_float.cpp). Both operands are floating ones.
bool is_floating_constant(const a_constant* constant);
int float_kind_of(const a_type* floating_type);
void fold_float_arithmetic(an_expr_operator_kind op, const a_constant* left,
                           const a_constant* right, a_type* result_type, a_constant* result,
                           a_fold_context* context);
void fold_float_comparison(an_expr_operator_kind op, const a_constant* left,
                           const a_constant* right, a_type* result_type, a_constant* result,
                           const a_fold_context* context);
void fold_float_unary(an_expr_operator_kind op, const a_constant* operand, a_type* result_type,
                      a_constant* result, a_fold_context* context);
bool float_constant_is_true(const a_constant* constant);
// In place; `warn` for an implicit conversion, which says when it isn't exact.
void conv_float_to_float(a_constant* constant, a_type* type, a_fold_problem* problem);
void conv_integer_to_float(a_constant* constant, a_type* type, bool warn, a_fold_problem* problem);
void conv_float_to_integer(a_constant* constant, a_type* type, bool is_explicit,
                           a_fold_problem* problem);

// An address held as an integer of its size.
bool is_integer_valued_address(const a_constant* constant);

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
