// What the files of the class_decl module share.

#ifndef CLASS_DECL_INT_H
#define CLASS_DECL_INT_H

#include "class_decl.h"
#include "declarator.h"
#include "il_types.h"
#include "lexical.h"

// The member declarations, up to the `}` that ends the class.
void member_declaration_list(a_type* class_type);

// Whether the unnamed field is an anonymous struct or union.
bool is_anonymous_member(const a_field* field);

// Whether a struct, or a union of them, ends with an array of unknown bound.
bool holds_flexible_array(const a_type* type);

// ---- Work that waits until the outermost class is complete ----

enum a_routine_fixup_flag : uint8_t {
  rff_friend = 1,          // defined in the class, but no member
  rff_template_member = 2, // the body stays with the template
  rff_has_initializers = 4 // the cache begins at `:` or `try`
};

// A function body that was met inside a class: its tokens up to the matching
// brace, with the constructor's initialisers or `try` in front.
struct a_routine_fixup {
  a_routine_fixup* next;
  a_routine* routine;
  a_func_info_block func_info;
  a_token_cache body;
  a_type* class_type;
  uint8_t flags; // a_routine_fixup_flag
};

// Where a part of a function's declarator stood: in the class, behind the
// parameters that the prototype declares.
struct a_prototype_context {
  a_type* class_type;
  a_type* routine_type;
  a_symbol* first_symbol;
  int32_t scope_number;
};

// A default argument that was met inside a class.
struct a_def_arg_expr_fixup {
  a_def_arg_expr_fixup* next;
  a_param_type* param;
  a_token_cache expression;
  a_source_position position;
  a_prototype_context context;
  bool is_scanned;
  bool is_being_scanned;
};

// The `noexcept(...)` of a member, whose tokens the specification holds.
struct an_exception_spec_fixup {
  an_exception_spec_fixup* next;
  an_exception_specification* specification;
  a_prototype_context context;
  bool is_scanned;
};

// The initialiser of a field, from its `=` or `{` on.
struct a_field_initializer_fixup {
  a_field_initializer_fixup* next;
  a_field* field;
  a_type* class_type;
  a_token_cache initializer;
  bool is_scanned;
  bool is_being_scanned;
};

// An overrider whose exception specification is to be compared.
struct an_exception_spec_check {
  an_exception_spec_check* next;
  a_routine* overrider;
  a_routine* overridden;
};

// Whether a declarator at the current place is that of a member or a friend of a
// class that is being defined.
bool is_in_open_class();
// Caches the body at the current token (`{`, `:` or `try`) and queues it; the
// token behind the body is current afterwards.
void add_routine_fixup(a_routine* routine, const a_func_info_block* func_info, a_type* class_type,
                       uint8_t flags);
// Queues the class around the outermost class that is open: its default
// arguments, field initialisers and bodies are scanned when that one closes.
void add_class_to_fixup_list(a_type* class_type);
// Behind the parameters and the suffix of a function declarator inside a class:
// queues the default arguments and the exception specification that were cached.
void add_declarator_fixups(a_type* routine_type, const a_func_info_block* func_info);
// At the `=` or `{` behind a field's declarator (C++11 9.2 p5): caches up to the
// `,` or `;` and queues the initialiser.
void cache_field_initializer(a_field* field, a_type* class_type);
// Compares the exception specifications once both are known (C++11 15.4 p5).
void add_exception_spec_check(a_routine* overrider, a_routine* overridden);

// Scans the initialiser of the field, if it still waits.
void scan_field_initializer_if_needed(a_field* field, a_type* class_type);
// The waiting default argument of the parameter; null when none waits.
a_def_arg_expr_fixup* find_def_arg_fixup(const a_param_type* param);

// ---- The scan of delayed tokens ----

// The first token of the cache becomes the current one. The end reports `code`,
// unless it is 0, when tokens are left, and goes back to the token at hand.
void begin_delayed_scan(a_token_cache* cache);
void end_delayed_scan(an_error_code code);
// The scopes in which a part of a member's declarator stood.
void push_prototype_context(const a_prototype_context* context);
void pop_prototype_context();

void class_decl_fixup_init();

// ---- Initialisers of members (class_decl_init.cpp) ----

// At the `=` or `{` of a field's initialiser, in the scope of the class.
void scan_field_initializer(a_field* field, a_type* class_type);
// At the `:` of a constructor's definition, in its scope: the list of
// initialisers (C++11 12.6.2), in the order in which they run.
void scan_ctor_initializers(a_routine* constructor, a_scope* scope);
// What a constructor without a list initialises by itself.
void add_implicit_ctor_initializers(a_routine* constructor, a_scope* scope);
// The initialisation of a base or member by components, which are taken from the
// list; of an error constant after a message.
a_dynamic_init* initialize_subobject(a_type* type, an_init_component** list);
// Declares `this` in the scope of a nonstatic member function.
void declare_this_parameter(a_routine* routine, a_scope* scope);
// What `this` means in the class, outside of function bodies: the former meaning
// is returned. Null: nothing.
a_variable* set_this_of_class(a_type* class_type, a_variable* variable);
a_variable* make_this_of_class(a_type* class_type, a_type_qualifier_set qualifiers);

// ---- Special member functions (C++11 12) ----

// Declares the implicit members of a class whose bases and members are known
// and settles which special members are trivial or deleted.
void declare_special_members(a_type* class_type);
// Behind `= default` or `= delete`: whether the function can be defined so.
void check_defaulted_or_deleted_function(a_routine* routine, const a_decl_parse_state* state);

#endif
