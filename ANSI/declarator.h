// Declarators (C99 6.7.5) and type names (C99 6.7.6).

#ifndef DECLARATOR_H
#define DECLARATOR_H

#include "decl_spec.h"
#include "symbol_tbl.h"

// A bound that waits for the definition of its function.
struct a_vla_fixup {
  a_vla_fixup* next;
  a_type* array;
  a_token_cache* bound; // its tokens and the `]`
  a_source_position position;
};

// One entry of an identifier list or of a prototype's parameters.
struct a_param_id {
  a_param_id* next;
  a_symbol* symbol; // null: unnamed
  a_type* declared_type;
  a_type* type; // after adjustment; null while an old-style one is undeclared
  bool is_register;
  bool is_implicit; // an old-style one that nothing declares
  a_source_position position;
  a_storage_kind storage_class;
  a_param_type* param_type;
  an_attribute* attributes; // of an old-style declaration
  a_variable* variable;
  a_token_cache* default_arg; // its tokens, while it waits for the class; else null
  a_vla_fixup* vla_fixups;    // of its arrays of variable length, the outermost first
};

// What a function declarator found.
struct a_func_info_block {
  a_param_id* param_id_list;
  a_param_id* last_param_id;
  a_symbol* first_prototype_symbol;
  int32_t prototype_scope_number; // -1: none
  bool is_old_style;
  bool is_from_typedef;       // the routine type came without a declarator
  bool has_unused_parameters; // as the comment ARGSUSED says
  a_source_position position; // of the parenthesis
};
void clear_func_info(a_func_info_block* func_info);

enum a_declarator_option : unsigned {
  do_name_required = 1,
  do_name_optional = 4, // the declarator may be abstract
  do_parameter = 8,
  do_parenthesized = 16, // inside parentheses of the declarator
  do_for_init = 32,
  do_abstract_only = 0x100,
  do_member = 0x400,
  do_vla = 0x4000,             // an array may have variable length
  do_no_object = 0x2000,       // a static member or a friend
  do_lambda = 0x1000,          // `mutable` may stand behind the parameters
  do_k_and_r_parameter = 0x800 // in the declarations behind an identifier list
};

// Whether the name is that of a constructor, a destructor or a conversion
// function.
bool names_special_function(const a_symbol_locator* locator);

// Reads one declarator around the state's type_specifier_type, or around
// `type` when it isn't null; sets state->declared_type and the locator, which
// is an error locator when no name was found.
void declarator(unsigned options, a_decl_parse_state* state, a_type* type,
                a_symbol_locator* locator, a_func_info_block* func_info);

// The declared type as a parameter has it (C99 6.7.5.3 p7, p8), the error type
// for void.
void check_and_adjust_parameter_type(a_decl_parse_state* state, const a_source_position* position);
a_type* adjust_parameter_type(a_type* type);
// ---- Arrays of variable length (declarator_vla.cpp) ----

// The bounds that were read since the list was last taken.
a_vla_fixup* take_vla_fixups();
// The bounds of a parameter's arrays where the function is defined: `[*]` stands
// in prototypes only (C99 6.7.5.2 p4), others are computed at the entry (C99 6.9.1
// p10). Its function's scope is open, with the parameters in front of it.
void fix_vla_bounds_of_parameter(a_param_id* param);
// How many dimensions of a function's types wait for the declaration, or the
// expression, that evaluates them.
size_t num_waiting_vla_dimensions();
// The dimensions behind the first `mark` become statements at the current place.
void add_vla_size_statements(size_t mark);
// An expression has read type names: lowering evaluates their dimensions in it.
void forget_vla_dimensions(size_t mark);
// C99 6.7.5.2 p2: such an array is automatic, and no type derived from one has
// linkage. A fault leaves the error type.
void check_storage_of_vla(a_decl_parse_state* state, const a_source_position* position);

// Reports a return type that is none.
bool check_return_type(a_type* type, const a_source_position* position);
void add_to_param_id_list(a_param_id* entry, a_func_info_block* func_info);

// A type name; the error type after an error.
a_type* type_name();
// The same with what else the state of the parse shows.
a_type* type_name_full(a_decl_parse_state* state);
// The type of a new expression: specifiers and pointers (C++11 5.3.4). The
// bounds of an array are left.
a_type* new_type_name();
a_type* scan_type_for_cast();
a_type* scan_type_for_sizeof();

#endif
