// Expressions: operands, conversions, operators and calls (C99 6.5, 6.3). One
// scanner, scan_expr, parses any expression by precedence climbing; each step
// of the language's implicit behaviour is an operation on an_operand.

#ifndef EXPR_H
#define EXPR_H

#include "decl_spec.h"
#include "expr_operand.h"

extern an_expr_stack_entry* expr_stack;
extern a_ref_entry* curr_expr_ref_entries;
// The end of the construct just scanned, as error_position is its start.
extern a_source_position curr_construct_end_position;

// ---- Entry points of the parser. Each begins at the expression's first token,
// ---- ends at the token behind it, and never returns null.

// An integral expression; of a switch.
an_expr_node* scan_integer_expression();
// A condition: of scalar type, with a boolean meaning.
an_expr_node* scan_boolean_controlling_expression();
// An expression whose value is discarded.
an_expr_node* scan_void_expression();
// The expression of a statement. `*keeps_value`: it is the last one of a
// statement expression and its value is not discarded.
an_expr_node* scan_expression_of_statement(bool is_extension, bool* keeps_value);
// An expression converted to `type` as if by assignment; `code` reports a
// type that doesn't convert.
an_expr_node* scan_typed_expression(a_type* type, an_error_code code);
// The operand of an asm statement. An output is an object that the statement
// modifies; an input that must lie in memory is an object too.
an_expr_node* scan_asm_operand_expression(bool is_output, bool needs_object);
// The value of a return statement in a function that returns `type`.
an_expr_node* scan_return_expression(a_type* type);

// Constant expressions (C99 6.6). The constant is an error constant after an
// error.
void scan_integral_constant_expression(a_constant* constant);
// One that is converted to bool, of a static assertion.
void scan_bool_constant_expression(a_constant* constant);
// The bound of an array, which must be constant.
void scan_constant_dimension_expression(a_constant* constant);
// An array bound or, with result false, an expression that isn't constant; its
// node goes to *expr.
bool scan_array_bound_expression(a_constant* constant, an_expr_node** expr);
// An argument of an attribute, which isn't evaluated.
an_expr_node* scan_expr_for_attribute();
// The value of the variable that a condition declares (C++11 6.4 p4): of a
// switch, or converted to bool.
an_expr_node* make_condition_value_expression(a_variable* variable, bool is_switch);
// The type of an expression that isn't evaluated; of typeof.
a_type* scan_typeof_operand();
// A case value, converted to the promoted type of the switch.
void scan_case_label_constant(a_type* switch_type, a_constant* constant);

// Whether an error may be issued here; in a context that suppresses errors the
// entry notes that one was due.
bool expr_error_should_be_issued();

// ---- For initialisers.

enum a_scan_expr_flag : uint32_t {
  sef_no_comma = 1,
  sef_float_literal_allowed = 2,
  sef_opening_paren_taken = 8,
  sef_keep_bound_function = 0x10,
  sef_parenthesized = 0x20,
  sef_as_extension = 0x40,
  sef_address_of_overload_allowed = 0x200,
  sef_result_is_discarded = 0x40000000,
  sef_controlling_expression = 0x80000000
};
void scan_expr(an_operand* result, an_operand* selector, int level, uint32_t flags);

// Brackets of a full expression scanned by scan_expr directly.
void push_expr_stack(an_expression_kind kind, an_expr_stack_entry* entry, bool long_lifetime,
                     bool no_lifetime);
void pop_expr_stack();
an_expr_node* make_node_from_operand(an_operand* operand);
// Ends a full expression before its entry is popped: attaches to it what lives
// as long as it does.
an_expr_node* wrap_up_full_expression(an_expr_node* node);
void wrap_up_dynamic_init_full_expression(a_dynamic_init* init);
void wrap_up_constant_full_expression(const a_constant* constant);

// Converts an operand to the type of an object that it initialises (C99
// 6.7.8 p11); `code` reports a type that doesn't convert, and the operand
// becomes an error.
void prep_initializer_operand(an_operand* operand, a_type* type, an_error_code code);
// The value of an operand as a constant. False, with nothing reported, when it
// has none.
bool operand_constant_value(an_operand* operand, a_constant* constant);
void do_operand_transformations(an_operand* operand, unsigned mask);
bool operand_is_string_literal(const an_operand* operand);

void expr_one_time_init();
void expr_init();
void expr_trans_unit_init();

#endif
