// Shared by the files of expression analysis.

#ifndef EXPR_INT_H
#define EXPR_INT_H

#include "error.h"
#include "expr.h"
#include "folding.h"
#include "lexical.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "types.h"

// ---- Levels of precedence. scan_expr is told the level of the operator to
// ---- the left; 0 for a whole expression.

enum an_expr_level : uint8_t {
  lev_none = 0,
  lev_comma = 1,
  lev_assignment = 2,
  lev_question = 3,
  lev_lor = 4,
  lev_land = 5,
  lev_bit_or = 6,
  lev_bit_xor = 7,
  lev_bit_and = 8,
  lev_min_max = 9,
  lev_equality = 10,
  lev_relational = 11,
  lev_shift = 12,
  lev_additive = 13,
  lev_multiplicative = 14,
  lev_ptr_to_member = 15,
  lev_cast = 16,
  lev_unary = 17,
  lev_postfix = 18
};
// Of an operator behind its left operand; lev_none for any other token.
int level_of_token(a_token_kind token);

// ---- The expression stack (expr_stack.cpp) ----

// A constant-expression kind is in force.
inline bool in_constant_expr_kind() {
  return expr_stack->kind < ek_normal;
}

inline bool value_is_evaluated() {
  return expr_stack->flags.value_is_evaluated;
}

// Passes on what the context of an enclosing entry means for a new one.
void transfer_context_from_enclosing_expr_stack_entry(bool full, const an_expr_stack_entry* from,
                                                      an_expr_stack_entry* to);

// A full expression: its own entry, with no enclosing one.
struct a_full_expression {
  an_expr_stack_entry entry;
  an_expr_stack_entry* saved_expr_stack;
  size_t waiting_vla_dimensions;
};
void begin_full_expression(an_expression_kind kind, a_full_expression* full);
void end_full_expression(a_full_expression* full, const an_operand* operand);

an_expr_rescan_info_entry* alloc_expr_rescan_info_entry();
// An entry for a part of an expression.
void push_nested_expr_stack(an_expression_kind kind, an_expr_stack_entry* entry);

// ---- References (expr_stack.cpp) ----

a_ref_entry* make_ref_entry(uint32_t kind, a_symbol* symbol, const a_source_position* position);
// Reclassifies the references of an operand.
void change_ref_kinds(a_ref_entry* entries, uint32_t kind);
void change_unmarked_ref_kinds(a_ref_entry* entries, uint32_t kind);
// Commits the references of the current expression but those that `kept`
// holds; they go in front of `saved`.
void flush_ref_entries(const an_operand* kept, a_ref_entry* saved);
// Commits all of them: a sequence point.
void flush_operand_ref_entries(an_operand* operand);
void operand_will_not_be_used_because_of_error(an_operand* operand);

// ---- Diagnostics (expr_stack.cpp); all are silent where errors are suppressed.

void expr_pos_error(an_error_code code, const a_source_position* position);
void expr_pos_warning(an_error_code code, const a_source_position* position);
void expr_pos_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position);
bool expr_diagnostic_should_be_issued(an_error_severity severity, an_error_code code,
                                      const a_source_position* position);
void expr_syntax_error(an_error_code code);
// What a program may not use yet, by its name.
void refuse_construct(const char* construct, const a_source_position* position);
// The error is reported and the operand becomes one.
void error_in_operand(an_error_code code, an_operand* operand);
void type2_error_in_operand(an_error_code code, an_operand* operand, a_type* type1, a_type* type2);
void error_and_make_error_operand(an_error_code code, const a_source_position* position,
                                  an_operand* operand);

// ---- Formats (expr_format.cpp) ----

// Compares the arguments of a function that is like printf or scanf with its
// last named parameter, the format; faults are warnings. `call_end` is where a
// missing argument is reported.
void check_format_arguments(const a_type* function_type, an_expr_node* arguments,
                            const a_source_position* call_end);

// ---- Operands (expr_operand.cpp) ----

inline bool is_error_operand(const an_operand* operand) {
  return operand->kind == ok_error;
}

inline bool is_glvalue_operand(const an_operand* operand) {
  return operand->state == os_glvalue || operand->state == os_lhsref_glvalue;
}

inline const a_constant* constant_of_operand(const an_operand* operand) {
  return operand->kind == ok_constant ? &operand->variant.constant : nullptr;
}

inline bool is_constant_operand(const an_operand* operand) {
  return operand->kind == ok_constant;
}

void clear_operand(an_operand_kind kind, an_operand* operand);
void set_glvalue_operand_state(an_operand* operand);
void make_error_operand(an_operand* operand);
void conv_to_error_operand(an_operand* operand);
void normalize_error_operand(an_operand* operand);
void make_constant_operand(const a_constant* constant, an_operand* operand);
void make_expression_operand(an_expr_node* expr, an_operand* operand);
void make_glvalue_expression_operand(an_expr_node* expr, an_operand* operand);
void make_lvalue_or_rvalue_expression_operand(an_expr_node* expr, an_operand* operand);
void make_lvalue_variable_operand(a_variable* variable, a_ref_entry* ref, an_operand* operand);
void make_function_designator_operand(a_routine* routine, a_ref_entry* ref, an_operand* operand);
void make_lhsref_expression_operand(an_expr_node* expr, an_operand* operand);
void make_indefinite_function_operand(a_symbol* symbol, an_operand* operand);
void make_sym_for_member_operand(a_symbol* symbol, an_operand* operand);
void make_braced_init_list_operand(an_init_component* component, an_operand* operand);
void make_undefined_symbol_operand(const a_symbol_locator* locator, an_operand* operand);
void make_sym_constant_operand(a_symbol* symbol, an_operand* operand);
void make_string_constant_operand(const a_constant* constant, an_operand* operand);
void make_integer_constant_operand(int64_t value, int int_kind, an_operand* operand);
// An lvalue of the type that names no object; for operands never evaluated.
void make_dummy_lvalue_operand(a_type* type, an_operand* operand);
// The new form of an operand keeps what the old one held beside its value.
void restore_operand_details(an_operand* operand, const an_operand* saved);
void restore_operand_details_incl_ref(an_operand* operand, const an_operand* saved);
// Of a cast: with the references, and the record for a rescan when the
// expression is still the same.
void restore_operand_details_for_cast(an_operand* operand, const an_operand* saved);
// What is known of the name alone.
void restore_operand_id_details(an_operand* operand, const an_operand* saved);
void restore_operand_form_of_name_reference(an_operand* operand, const an_operand* saved);
// A second operand of the same value: its expression is a copy.
void clone_operand(const an_operand* source, an_operand* target);
bool is_an_xvalue(const an_operand* operand);
bool is_a_cplusplus_lvalue(const an_operand* operand);
void set_operand_range(an_operand* operand, const a_source_position* start,
                       const a_source_position* end);
// Positions of an operator's result; the node takes the operator's.
void set_operator_positions(an_operand* result, const a_source_position* start,
                            const a_source_position* operator_position,
                            const a_source_position* end);
void rule_out_expr_kinds(uint8_t bits, an_operand* operand);

// ---- Conversions (expr_conv.cpp) ----

enum an_operand_transformation : unsigned {
  ot_all = 0,
  ot_keep_function = 1,
  ot_keep_array = 2,
  ot_keep_glvalue = 4,
  ot_keep_overload_set = 8,
  ot_resolution = 16,
  ot_keep_member = 32,
  ot_class_temporary = 0x80000000
};
void eliminate_unusual_operand_kinds(an_operand* operand);
void do_void_operand_transformations(an_operand* operand, bool keep_glvalue);
void conv_glvalue_to_prvalue(an_operand* operand);
void do_array_to_pointer_conversion(an_operand* operand);
void conv_function_designator_to_ptr_to_function(an_operand* operand);
void add_reference_indirection(an_operand* operand);
// The set's first member, or the symbol itself.
a_symbol* first_of_overload_set(a_symbol* symbol);
a_type* operand_type_after_integral_promotion(const an_operand* operand);
void promote_operand(an_operand* operand);
void arg_default_promote_operand(an_operand* operand, bool warn);
a_type* determine_arithmetic_conversions(const an_operand* left, const an_operand* right);
void change_binary_operand_types(a_type* type, an_operand* left, an_operand* right);
a_type* boolean_result_type();
// The type of the value of an object.
a_type* prvalue_type(a_type* type);
// The field that the node itself selects, or null.
a_field* field_of_selection(const an_expr_node* node);
// The bit-field that the expression selects, or null.
a_field* bit_field_of_node(const an_expr_node* node, bool through_operators);

// Checks of the class of an operand's type, behind its transformations. Each
// reports and makes an error of the operand.
bool check_integral_or_enum_operand(an_operand* operand);
bool check_arithmetic_or_enum_operand(an_operand* operand);
bool check_scalar_operand(an_operand* operand);
void check_boolean_controlling_expr(an_operand* operand);
bool check_modifiable_lvalue_operand(an_operand* operand);

// ---- Casts (expr_cast.cpp) ----

void cast_operand(a_type* type, an_operand* operand, bool is_implicit);
void cast_operand_full(a_type* type, an_operand* operand, const a_source_position* position,
                       bool is_implicit);
void cast_operand_to_void(an_operand* operand);
// The cast of a node: implied, which adds nothing between types that look the
// same, or written.
an_expr_node* add_cast_to_node(a_type* type, an_expr_node* node);
an_expr_node* cast_node(a_type* type, an_expr_node* node);
// From a class, or a pointer to one, to a base and back; a pointer that may be
// null is checked.
an_expr_node* add_base_class_casts(an_expr_node* node, a_base_class* base_class);
an_expr_node* add_derived_class_casts(an_expr_node* node, a_type* type);
// The member of the set that has the type, or its pointer or reference.
void cast_overloaded_function(a_type* type, an_operand* operand);
void report_indeterminate_function(an_operand* operand);
// A written cast, in C's form or the functional one.
void process_explicit_cast(a_type* type, an_operand* operand, const a_source_position* position);

enum a_reference_cast_form : uint8_t {
  rcf_explicit_cast,
  rcf_static_cast,
  rcf_const_cast,
  rcf_reinterpret_cast
};
void cast_operand_for_reference_cast(a_type* type, an_operand* operand, a_reference_cast_form form,
                                     const a_source_position* position);
// The casts of C++: at their keyword, and behind the type.
void scan_named_cast(an_operand* result);
void scan_functional_cast(a_type* type, an_operand* result, const a_source_position* start);
a_type* simple_type_of_token(a_token_kind token);
void scan_simple_type_cast(an_operand* result);
// Whether the operand is a literal for a pointer to characters that aren't const
// (C++98 4.2 p2), which C++11 took away.
bool deprecated_literal_conversion_possible(const an_operand* operand, a_type* type);
// As if by assignment (C99 6.5.16.1); `code` reports what doesn't convert.
void prep_conversion_operand(an_operand* operand, a_type* type, an_error_code code,
                             const a_source_position* position);
// Reports an implicit conversion to a base, null for none, that isn't accessible
// (C++11 4.10 p3).
void check_conversion_to_base(const a_base_class* base, const a_source_position* position);
// Makes a reference of the type to the object that the operand names; `code`
// reports a type that doesn't fit.
void bind_reference_operand(a_type* type, an_operand* operand, an_error_code code,
                            const a_source_position* position);
void force_operand_to_constant_if_possible(an_operand* operand);
// The value; an error constant, and an error operand, behind a message that the
// operand has none.
void extract_constant_from_operand(an_operand* operand, a_constant* constant);
// Behind the `(`, at the type of a cast or of a compound literal.
void scan_cast_expression(an_operand* result, const a_source_position* start);
// Behind the `)` of a compound literal's type, at the `{`.
void scan_compound_literal(a_type* type, const a_source_position* start, an_operand* result);
// An argument for a parameter of a transparent union, a GNU extension: it may be
// what any member of the union takes. False when it isn't, or for another type.
bool conv_to_transparent_union(a_type* type, an_operand* operand);

// ---- Operators ----

// Prefix operators and keyword forms, at their token.
void scan_primary_or_prefix(an_operand* result, uint32_t flags);
void scan_identifier(an_operand* result);
// The identifier that follows is the operand of `&`: a qualified name of a
// nonstatic member means the member and no object (C++11 5.3.1 p3).
void note_operand_of_address();
void scan_this(an_operand* result);
// False outside a nonstatic member function.
bool make_this_pointer_operand(an_operand* result);
// The same; false also where its object has no members of the class.
bool make_this_for_member(const a_type* member_class, an_operand* result);
void expr_check_ambiguity_and_verify_access(a_symbol_locator* locator);
void scan_generic_selection(an_operand* result);
void scan_address_of(an_operand* result);
void scan_indirection(an_operand* result);
void scan_unary_arithmetic(an_operand* result);
void scan_prefix_incr_decr(an_operand* result);
void scan_sizeof(an_operand* result);
void scan_alignof(an_operand* result);
void scan_builtin_offsetof(an_operand* result);
void scan_types_compatible(an_operand* result);

// The operators behind an operand that bind tighter than the level.
void scan_operators(an_operand* result, int level, uint32_t flags);
// Operators behind their left operand, which `operand` holds and which becomes
// the result; at the operator's token.
void scan_binary_operator(an_operand* operand);
void scan_logical_operator(an_operand* operand);
void scan_comma_operator(an_operand* operand);
void scan_question_operator(an_operand* operand);
void scan_assignment_operator(an_operand* operand);
void scan_postfix_incr_decr(an_operand* operand);
void scan_subscript(an_operand* operand);
void scan_field_selection(an_operand* operand);
void scan_function_call(an_operand* operand);

// The selection of a field from the object or through the pointer, by way of the
// anonymous members that hold it.
void select_field(an_operand* operand, a_field* field, bool is_arrow);
void do_subscript(an_operand* left, an_operand* index, const a_source_position* operator_position,
                  const a_source_position* end);
void do_indirection(an_operand* operand);
// The first form folds no address; it returns false when there is none, or the
// operand has become a pointer to a function.
bool make_address_operand(an_operand* operand, const a_source_position* operator_position);
void take_address_of_operand(an_operand* operand, const a_source_position* operator_position);

void do_binary_operation(an_expr_operator_kind op, an_operand* left, an_operand* right,
                         a_type* type, const a_source_position* position, an_operand* result);
// The operation of a token on arithmetic types, also of a compound assignment.
an_expr_operator_kind which_binary_operator(a_token_kind token);
an_expr_operator_kind which_assignment_operator(a_token_kind token);
void warn_about_zero_divisor(a_token_kind token, const an_operand* right,
                             const a_source_position* position);
// `full_left_type` is that of the left operand before its promotion.
void warn_about_shift_count(const an_operand* right, a_type* left_type, a_type* full_left_type);
bool check_pointer_arithmetic_operand(an_operand* operand);
// The composite of the types of two pointers that meet in an operator; null
// after an error.
a_type* check_compatibility_of_pointer_operands(an_operand* left, an_operand* right,
                                                const a_source_position* position,
                                                bool is_relational);

// What is selected by a member function's name may only be called.
void finish_bound_function_operand(an_operand* operand);
// An undefined name is reported once, and becomes an error.
void finish_undefined_symbol_operand(an_operand* operand);

// Whether the value of a node is of no use to anybody and computing it does
// nothing.
void check_for_no_effect(const an_operand* operand);

#endif
