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
  rff_friend = 1,           // defined in the class, but no member
  rff_template_member = 2,  // the body stays with the template
  rff_has_initializers = 4, // the cache begins at `:` or `try`
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

// A default argument that was met inside a class.
struct a_def_arg_expr_fixup {
  a_def_arg_expr_fixup* next;
  a_param_type* param;
  a_token_cache expression;
};

// Caches the body at the current token (`{`, `:` or `try`) and queues it on the
// scope of the class; the token behind the body is current afterwards.
void add_routine_fixup(a_routine* routine, const a_func_info_block* func_info, a_type* class_type,
                       uint8_t flags);
// Queues the class on the outermost class scope: its default arguments, field
// initialisers and bodies are scanned when that one closes.
void add_class_to_fixup_list(a_type* class_type);

// ---- Special member functions (C++11 12) ----

// Declares the implicit members of a class whose bases and members are known
// and settles which special members are trivial or deleted.
void declare_special_members(a_type* class_type);

#endif
