// Constant folding (C99 6.6): the value of operators on constants and of casts
// of constants, in the target's arithmetic. A fold ends in one of three ways:
// with a value, with `not_folded` (the operation stays for run time), or with
// an error constant after a message.

#ifndef FOLDING_H
#define FOLDING_H

#include "basics.h"
#include "il_constants.h"
#include "il_expr.h"

// What a fold is told of its place, and what it answers.
struct a_fold_context {
  bool in_constant_kind; // a constant is required
  bool value_evaluated;  // off in the branch not taken of a decided operator
  const a_source_position* position;
  bool not_folded;
  bool error_reported;
  // Where an error's number goes instead of being reported; null: report it.
  an_error_code* error_code_out = nullptr;
};

// On: a floating division by zero gives an infinity or a NaN without a message
// (C99 F.8.2). Strict mode turns it off.
extern a_boolean IEEE_handling_on_float_operation_exceptions;

// `left op right`, both converted as the operator asks; the result has
// `result_type`.
void binary_operation(an_expr_operator_kind op, const a_constant* left, const a_constant* right,
                      a_type* result_type, a_constant* result, a_fold_context* context);
// eok_negate, eok_unary_plus, eok_complement, eok_not, eok_conjugate,
// eok_real_part, eok_imag_part.
void unary_operation(an_expr_operator_kind op, const a_constant* operand, a_type* result_type,
                     a_constant* result, a_fold_context* context);
// Converts a constant to `type` in place, as a cast (is_explicit) or as an
// implicit conversion, which says when it changes the value.
void type_change_constant_full(a_constant* constant, a_type* type, bool is_explicit,
                               a_fold_context* context);
// The same where the value is known to be wanted and no message is due.
// False when the constant can't be converted at compile time.
bool type_change_constant(a_constant* constant, a_type* type);

// A value that depends on template parameters: a cast of another constant, and
// an expression. `operand` may be the result.
void make_template_param_cast_constant(const a_constant* operand, a_type* type, bool is_implicit,
                                       a_constant* result);
void make_template_param_expr_constant(an_expr_node* expr, a_constant* result);

// Stores a value into an integer constant of its type, which wraps. With
// `overflow` on, or a value that doesn't fit while `check_overflow` is on, the
// code and severity of integer_overflow are set.
void trunc_and_set_integer(uint64_t value, bool is_signed, a_constant* constant,
                           bool check_overflow, bool saturate, an_error_code* code,
                           an_error_severity* severity);
// The value of an integer word in a floating kind.
void conv_integer_value_to_float(uint64_t word, bool is_signed, a_float_value* value, int kind,
                                 bool* failed);
// Sets the code for a negative count, or one not below the left type's width.
// Under MISRA the width is that of the type before its promotion, and the code
// that of rule 12.8.
void check_shift_count(const a_constant* count, a_type* left_type, a_type* full_left_type,
                       an_error_code* code);
inline void check_shift_count(const a_constant* count, a_type* left_type, an_error_code* code) {
  check_shift_count(count, left_type, left_type, code);
}

// Whether the constant may stand for a null pointer (C99 6.3.2.3 p3).
bool is_null_pointer_constant(const a_constant* constant);
bool is_null_pointer_value(const a_constant* constant);
bool is_false_constant(const a_constant* constant);
// Whether a scalar constant's truth is known, and what it is.
bool constant_bool_value_known_at_compile_time(const a_constant* constant);
bool constant_bool_value(const a_constant* constant);
bool variable_has_non_null_address(const a_variable* variable);
bool routine_has_non_null_address(const a_routine* routine);

// The address constant that a prvalue of pointer type, or the place that a
// glvalue names, has before run time: an object of static duration, a
// function, a string literal, and what lies inside them. Entities count as
// address-taken unless `address_taken` is off.
bool constant_prvalue_pointer(an_expr_node* expr, a_constant* result);
bool constant_prvalue_pointer_full(an_expr_node* expr, a_constant* result, bool address_taken);
bool constant_glvalue_address(an_expr_node* expr, a_constant* result);
bool constant_is_pointer_to_string_literal(const a_constant* constant);
// *literal is the string itself.
bool expr_is_pointer_to_string_literal(an_expr_node* expr, const a_constant** literal);

// The value of a field of an aggregate constant; false when it has none before
// run time.
bool fold_field_selection(const a_constant* object, const a_field* field, a_constant* result);
// The value that lies at a constant address: in a const object with a constant
// initialiser, a string literal or a temporary constant. It has the type that
// the address points to, which need not be that of the whole object.
bool constant_value_at_address(const a_constant* address, a_constant* result);
// The same for an expression of pointer type.
bool constant_value_addressed_by_node(an_expr_node* node, a_constant* result);

// Whether calls of the routine may fold. *special_syntax: its arguments aren't
// those of an ordinary call.
bool is_foldable_gnu_builtin_function(const a_routine* routine, bool* special_syntax);
// The value of a call of a builtin function, whose arguments have been
// converted to its parameters. False: the call stays; *error_code, when it
// isn't 0, says what is wrong with it.
bool fold_gnu_builtin_function_call_if_possible(const a_routine* routine, an_expr_node* args,
                                                an_expr_node* call, a_constant* result,
                                                an_error_code* error_code);

void folding_one_time_init();
void folding_init();
void folding_trans_unit_init();

#endif
