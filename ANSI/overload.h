// The choice of the function that a call or an operator means (C++11 13), and
// the arguments of a call of a known function (C99 6.5.2.2).

#ifndef OVERLOAD_H
#define OVERLOAD_H

#include "expr_operand.h"
#include "lexical.h"
#include "types.h"

#include <array>
#include <vector>

// ---- Names of operator functions ----

enum an_opname_kind : uint8_t {
  opn_none = 0,
#define OPNAME(number, enumerator, token, text, unary_op, binary_op) enumerator = number,
#include "opnames.def"
#undef OPNAME
  num_opnames
};

// The spelling behind `operator`.
extern const char* const opname_names[num_opnames];
// opn_none for a token that names no operator function.
extern const std::array<an_opname_kind, num_token_kinds> opname_kind_for_token;
// The operator on arithmetic operands; eok_last for none.
an_expr_operator_kind operator_for_opname_kind(an_opname_kind kind, bool is_unary);

// The header under which the functions of an operator are declared.
a_symbol_header* header_of_operator(an_opname_kind kind);
// Whether any operator function of the kind is declared at all.
bool any_opname_function_symbol(an_opname_kind kind);
// The operator functions that are members of the class; null for none.
a_symbol* opname_member_function_symbol(a_type* class_type, an_opname_kind kind);

// ---- Operators ----

// Whether an operand of the type may give an operator a meaning of its own.
bool is_overloadable_type(const a_type* type);
bool is_overloadable_first_operand_type(const a_type* type);

// What the search for an operator function is told.
struct an_operator_search {
  an_opname_kind kind;
  bool is_postfix;       // of ++ and --
  bool must_be_member;   // = [] () ->
  bool no_builtin_first; // the builtin operators are no candidates
  a_source_position position;
  a_token_sequence_number sequence_number;
};

// Looks for an operator function for the operands; the second is null for a
// unary operator. True: the result is made, be it a call or an error.
// Otherwise the builtin operator applies to the operands, which the search may
// have converted to what it works on.
bool check_for_operator_overloading(const an_operator_search* search, an_operand* first,
                                    an_operand* second, an_operand* result);

// ---- Conversions that functions of a class make ----

// A conversion of a value: by a constructor or a conversion function, which may
// be null, and a standard one.
struct a_conv_descr {
  a_std_conv_descr std_conv;
  a_routine* routine;
  a_type* class_type;
};

// Bits of the sets of builtin types that a class may convert to.
enum a_builtin_type_set : uint32_t {
  bts_integral = 1,
  bts_floating = 2,
  bts_pointer = 4,
  bts_pointer_to_object = 8,
  bts_pointer_to_function = 16,
  bts_ptr_to_member = 32,
  bts_any = 64,
  bts_enum = 128,
  bts_scoped_enum = 512,
  bts_ptrdiff = 1024,
  bts_converted_constant = 2048,
  bts_nullptr = 16384
};
inline constexpr uint32_t bts_arithmetic = 67;
inline constexpr uint32_t bts_integral_or_enum = 193;
inline constexpr uint32_t bts_scalar = 231;

// Whether the class or a base of it has conversion functions.
bool has_conversion_functions(const a_type* type);
// Those to the very type; null for none.
a_symbol* conversion_functions_to(const a_type* class_type, const a_type* type);
// Whether a conversion function that isn't explicit leads to the type.
bool conversion_function_converts(const an_operand* operand, a_type* type);
// Converts an object of a class by one of its conversion functions (C++11 12.3.2): to
// the value of a type; to what a reference of the type binds to; to what converts to
// bool, where explicit functions count too; to the one type of the set of builtin
// types that they lead to. False, with nothing reported: there is none.
bool convert_operand_by_conversion_function(an_operand* operand, a_type* type, bool is_explicit);
bool convert_operand_for_reference(an_operand* operand, a_type* type);
bool convert_operand_to_bool(an_operand* operand);
bool try_to_convert_class_operand_to_builtin_type(an_operand* operand, uint32_t builtin_types);
// Whether one of the last two operands of `?:` converts to the other's type
// (C++11 5.16 p3).
bool conditional_operator_conversion_possible(const an_operand* source, const an_operand* target);
void user_convert_operand(an_operand* operand, a_type* type);

// ---- The choice of a function (overload_select.cpp) ----

// The routine among them that takes the arguments best; null for none, or for
// several that are as good. The selector is the object of a call or null; with
// `by_constructor` arguments may be converted by constructors.
a_routine* select_routine(const std::vector<a_routine*>& routines,
                          const an_init_component* arg_list, const an_expr_node* selector,
                          bool selector_is_pointer, bool by_constructor, bool* is_ambiguous);
// The routines that a symbol stands for; templates are left out.
void add_routines_of_set(a_symbol* symbol, std::vector<a_routine*>* routines);
// The constructor that initialises an object of the class with the arguments,
// which are converted for it in *arguments; null after an error. A copy
// initialisation takes no explicit constructor (C++11 13.3.1.3).
a_routine* select_constructor(a_type* class_type, an_init_component* arg_list, bool is_copy_init,
                              const a_source_position* position, an_expr_node** arguments);
// The initialisation by a constructor, with the destruction that it asks for.
a_dynamic_init* make_constructor_init(a_type* class_type, a_routine* constructor,
                                      an_expr_node* arguments);
// A new object of the class, made by a constructor from the arguments.
void make_class_temporary(a_type* class_type, an_init_component* arg_list,
                          const a_source_position* position, an_operand* result);
// The same with the operand alone as argument, which it replaces.
void construct_object_of_operand(an_operand* operand, a_type* class_type);
// Makes an object of the class of an operand by a constructor that isn't
// explicit (C++11 12.3.1); false, with nothing reported, when none takes it.
bool convert_operand_by_constructor(an_operand* operand, a_type* class_type);
// A call of a function that is chosen already; the object is null for none.
void call_known_routine(a_routine* routine, an_operand* object, an_init_component* arg_list,
                        const a_source_position* position, an_operand* result);
// Reports a function that is deleted or out of reach, and notes the call.
void check_use_of_routine(a_routine* routine, a_type* naming_class,
                          const a_source_position* position);
// The same for the destructor of objects of the type, or of arrays of them.
void check_use_of_destructor(a_type* type, const a_source_position* position);

// ---- Calls ----

// The routine that the call of an overload set means, with the arguments
// converted for it in *arguments; null after an error, which is reported.
a_routine* select_and_prepare_to_call_overloaded_function(an_operand* function,
                                                          an_operand* selector,
                                                          an_init_component* arg_list,
                                                          bool allow_argument_dependent_lookup,
                                                          an_expr_node** arguments);

// Whether a member function may be called for the object, else after a message.
bool selector_match_with_this_param(const an_operand* selector, const a_routine* routine);
// The same for a function of which only the type is known.
bool selector_match_with_type(const an_operand* selector, const a_type* type);
// Gives a designator or a set of member functions the object for which it is
// called: the node behind the designator's, or the set's own.
void bind_member_function_operand_to_selector(an_operand* function, an_operand* selector,
                                              bool selector_is_pointer);

// Takes the object of a bound function away from it; false when there is none.
bool take_selector_of_function(an_operand* function, an_operand* selector);

// The state of one call's argument list.
struct an_arg_check_block {
  a_type* function_type; // null: the arguments go unchecked
  a_routine* routine;    // null when only its type is known
  a_param_type* param;   // of the next argument
  bool is_prototyped;
  bool is_old_style_definition; // whose parameters' types are known
  bool has_ellipsis;
  bool is_excess_reported;
  bool any_error;
  unsigned num_required;
  a_source_position position; // of the `)`
};
void start_call_argument_processing(a_type* function_type, a_routine* routine,
                                    an_arg_check_block* block);
// Converts the arguments to the types of the parameters; their nodes, chained.
an_expr_node* process_call_argument_list(an_init_component* arg_list, an_arg_check_block* block);

// As if by assignment, to the type of an object or of a parameter; `code`
// reports a type that doesn't convert, and the operand becomes an error.
void prep_assignment_operand(an_operand* operand, a_type* type, an_error_code code,
                             const a_source_position* position);
void prep_argument_operand(an_operand* operand, const a_param_type* param, an_error_code code);

#endif
