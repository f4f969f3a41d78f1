// Shared by the files of the declarators.

#ifndef DECLARATOR_INT_H
#define DECLARATOR_INT_H

#include "declarator.h"

#include <vector>

enum a_derivation_kind : uint8_t {
  dk_pointer,
  dk_reference,
  dk_rvalue_reference,
  dk_ptr_to_member,
  dk_array,
  dk_function
};

// One pointer, array or function of a declarator.
struct a_derivation {
  a_derivation_kind kind;
  a_type_qualifier_set qualifiers; // of a pointer; of an array in a parameter
  a_source_position position;
  // An array.
  bool bound_is_known;
  bool bound_is_variable; // of a parameter's array: `[n]` or `[*]`
  bool bound_is_star;
  bool has_static_bound;
  bool is_bad;
  bool is_mutable; // of a lambda's function
  uint64_t bound;
  an_expr_node* bound_expr;    // of an array of variable length in a function, or null
  a_token_cache* bound_tokens; // of a parameter's, or null
  a_type* class_type;          // of a pointer to member
  a_type* routine_type;        // complete but for its return type
  a_type* trailing_return;     // of a function; null: none
  an_attribute* attributes;    // of a lambda's function
};

// The derivations of all declarators being read, as a stack.
extern std::vector<a_derivation> derivations;

// The type with one derivation more (C99 6.7.5.1 to 6.7.5.3); the error type
// after an error.
a_type* add_to_derived_type_list(const a_derivation* derivation, a_type* type);

// At a `*`, or in C++ a `&`, `&&` or `C::*`: pushes the derivations, from the
// last to the first, since the last binds to the name first.
void pointer_declarator(a_decl_parse_state* state);
// At the `[`: pushes the array.
void array_declarator(unsigned options, bool is_outermost);
// A bound of a parameter's array that is to be computed where the function is
// entered. The cache becomes the entry's.
void add_vla_fixup_entry(a_type* array, a_token_cache* bound, const a_source_position* position);
// The array of variable length gets the record of its bound, and the variable that
// holds its value (C99 6.7.5.2 p5). `size` is null in a prototype.
a_vla_dimension* make_vla_dimension(a_type* array, an_expr_node* size,
                                    const a_source_position* position);
// At the `(`: pushes the function; its parameters go to *func_info unless that
// is null.
void function_declarator(unsigned options, a_func_info_block* func_info);

// The condition of `noexcept(...)`, behind the `(`; the `)` is left.
void scan_noexcept_condition(an_exception_specification* specification);

// ---- `auto` (declarator_auto.cpp) ----

// The declared type with its placeholder replaced by what the initializer that
// follows asks for, or the error type after a message. Where no placeholder is
// allowed that is the message.
a_type* deduce_placeholder_type(a_type* declared, bool is_allowed, a_decl_parse_state* state,
                                const a_source_position* position);

#endif
