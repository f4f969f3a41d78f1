// Shared by the files of operators: the common parts of their routines.

#ifndef EXPR_OPERATOR_H
#define EXPR_OPERATOR_H

#include "expr_int.h"
#include "overload.h"

// An operator's token, read or still to be read.
struct an_operator_place {
  a_token_kind token;
  a_source_position position;
  a_token_sequence_number sequence_number;
};

inline an_operator_place place_of_curr_token() {
  return {curr_token, pos_curr_token, curr_token_sequence_number};
}

// In C++ whether an operator function was looked for and made the result, be it
// an error. Otherwise the builtin operator applies. The right operand is null
// for a unary operator, whose result may stand in its operand.
bool operator_is_overloaded(const an_operator_place* place, an_operand* left, an_operand* right,
                            an_operand* result);
bool postfix_operator_is_overloaded(const an_operator_place* place, an_operand* operand,
                                    an_operand* result);

// Operators that C takes in no constant expression; reports where one is due.
bool is_refused_in_constant(const a_source_position* position);

// A fold at the place of an operator.
a_fold_context fold_context_of_operator(const a_source_position* position);

// Both operands are dropped, and the result is an error.
void make_error_result(an_operand* left, an_operand* right, an_operand* result);

// ---- Comparisons (expr_compare.cpp) ----

// Relational and equality operators, with their operands transformed.
void comparison_operation(a_token_kind token, an_operand* left, an_operand* right,
                          const a_source_position* position, an_operand* result);
// For C++: the operators on scoped enumerations take two of one type.
bool check_binary_scoped_enum_operation(an_operand* left, an_operand* right,
                                        const a_source_position* position);
a_type* check_compatibility_of_nullptr_operands(an_operand* left, an_operand* right,
                                                const a_source_position* position);
a_type* check_ptr_to_member_operands_for_compatibility(an_operand* left, an_operand* right,
                                                       const a_source_position* position);

// ---- Rules of MISRA-C:2004 (expr_misra.cpp) ----

void misra_check_pointer_arithmetic(const a_source_position* position);
void misra_check_equality_operands(const an_operand* left, const an_operand* right,
                                   const a_source_position* position);
void misra_check_bitwise_operand(const an_operand* operand);
void misra_check_unary_minus(const an_operand* operand);
void misra_check_logical_operands(an_expr_operator_kind op, const an_operand* left,
                                  const an_operand* right);
void misra_check_sizeof_operand(const an_operand* operand);
void misra_check_comma(const a_source_position* position);
void misra_check_pointer_assignment(const an_operand* left, const an_operand* right,
                                    const a_source_position* position);

// ---- Operands that aren't evaluated (expr_sizeof.cpp) ----

// A type in parentheses or an expression, as sizeof takes it; the type, and the
// operand of an expression.
a_type* scan_unevaluated_operand(an_operand* operand, bool* is_type);
// The same, always in parentheses.
a_type* scan_unevaluated_parenthesized(an_operand* operand, bool* is_type);
// A constant of type size_t.
void make_size_operand(uint64_t size, an_operand* result);

// ---- Selections (expr_select.cpp) ----

// The member whose name is the current token; the operand, of class type or a
// pointer to one, becomes the selection.
void select_named_field(an_operand* operand, bool is_arrow);
// `[` of an offset, where no operator function may serve.
void scan_offsetof_subscript(an_operand* operand);
void scan_ptr_to_member_operator(an_operand* operand);

// ---- Keyword forms ----

// The forms that a keyword begins; false for a keyword that begins none.
bool scan_keyword_form(an_operand* result);
void scan_type_generic_call(an_operand* result);
void scan_new(an_operand* result);
void scan_delete(an_operand* result);
void scan_throw(an_operand* result);
void scan_typeid(an_operand* result);
void scan_noexcept(an_operand* result);
// False when the token is no type trait.
bool scan_type_trait(an_operand* result);
// The name of a trait by its number; null for none.
const char* builtin_operation_name(int number);
// `__va_parmadr(p)` is where the caller has put the parameter: the arguments of an
// ellipsis follow there. `&p` may be a copy of it. False behind a message.
bool take_address_of_parameter(an_operand* operand);
// Builtin functions with a syntax of their own, at the `(` behind the name.
// False: an ordinary call.
bool scan_special_builtin_call(an_operand* function);

// ---- Variable arguments, behind the `(` of their builtin function (expr_va.cpp) ----

void scan_va_start(an_operand* function, an_operand* result);
void scan_va_arg(an_operand* function, an_operand* result);
void scan_va_end(an_operand* function, an_operand* result);
void scan_va_copy(an_operand* function, an_operand* result);

#endif
