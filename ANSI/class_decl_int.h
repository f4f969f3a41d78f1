// What the files of the class_decl module share.

#ifndef CLASS_DECL_INT_H
#define CLASS_DECL_INT_H

#include "class_decl.h"
#include "declarator.h"
#include "il_types.h"
#include "lexical.h"

#include <unordered_map>

// ---- Bases (class_decl_base.cpp) ----

// At the `:` behind the name of a class: the list of its bases, each with the
// ways that lead to it.
void scan_base_clause(a_type* class_type);
a_type* class_of_base(const a_base_class* base);
// Whether the token is an access specifier, and which.
bool access_of_token(a_token_kind token, an_access_specifier* access);
// That of the members before any label, and of bases without a specifier.
an_access_specifier default_access_of(const a_type* class_type);

// ---- Members ----

// The member declarations, up to the `}` that ends the class.
void member_declaration_list(a_type* class_type);

// What stands between the declarator and the body of a member function.
struct a_virt_specifiers {
  bool is_override;
  bool is_final;
  bool is_pure;
  a_source_position override_position;
  a_source_position final_position;
  a_source_position pure_position;
};

// ---- Fields (class_decl_field.cpp) ----

a_field* make_named_field(a_type* class_type, a_type* type, a_symbol_locator* locator);
a_field* make_unnamed_field(a_type* class_type, a_type* type, const a_source_position* position);
// Behind the declarator: the width of a bit-field, and the checks of the type.
void finish_field(a_type* class_type, a_field* field);
// At the `:`.
void scan_bit_field_width(a_field* field);
// Notes in the class that a member of the type is const or volatile.
void note_qualified_field(a_type* class_type, a_type* field_type);
// What C++ asks of a field beyond C.
void check_field_of_cplusplus(a_type* class_type, a_field* field, const a_decl_parse_state* state);
// At the `=` or `{` behind a field's declarator.
void field_initializer_in_class(a_type* class_type, a_field* field);

// ---- Anonymous members (class_decl_anon.cpp) ----

// A member declaration that ends behind its specifiers: an anonymous member, or
// nothing, unless it defines a type.
a_field* member_without_declarator(a_type* class_type, const a_decl_parse_state* state);

// Reports what no anonymous union may have as a member.
void check_anonymous_union_symbols(const a_type* union_type);

// ---- Member functions (class_decl_function.cpp) ----

// Reads `override`, `final` and the pure specifier.
void scan_virt_specifiers(a_virt_specifiers* virt);
// Declares the function in the class that is being defined; the symbol goes to
// the state. A function that is declared already is reported, and gets a
// routine that nobody finds.
a_routine* decl_member_function(a_type* class_type, a_decl_parse_state* state,
                                a_symbol_locator* locator, const a_func_info_block* func_info,
                                const a_virt_specifiers* virt);
// `= default` and `= delete`.
void scan_function_definition_word(a_routine* routine, a_decl_parse_state* state);
// At the body of a function declared just before: it waits for the end of the
// class. The token behind the body is current afterwards.
void function_body_in_class(a_routine* routine, a_type* class_type, a_decl_parse_state* state,
                            const a_symbol_locator* locator, const a_func_info_block* func_info);
// Enters a member function in the open class and in the lists of its kind,
// which the locator tells, without any check. The type is made that of a member
// of the class.
a_symbol* enter_member_function(a_type* class_type, a_symbol_locator* locator, a_type* type,
                                a_storage_kind storage);
// The names of special functions, as declarators have them.
void make_constructor_locator(const a_type* class_type, a_symbol_locator* locator);
void make_destructor_locator(const a_type* class_type, a_symbol_locator* locator);
void make_operator_locator(unsigned operator_kind, const a_source_position* position,
                           a_symbol_locator* locator);

// The linkage that members of the class have.
an_id_linkage_kind linkage_of_member(const a_type* class_type);
// The constructors, destructor or conversion functions of the class, as the
// locator tells; null for none.
a_symbol* functions_of_name(a_type* class_type, const a_symbol_locator* locator);
// Whether two member functions have the same parameters, qualifiers included.
bool is_same_member_function(a_type* a, a_type* b);
// The function of a set that a declaration with the type declares again.
a_symbol* member_function_redecl_sym(a_symbol* functions, a_type* type,
                                     const a_symbol_locator* locator);
// Of a set with functions that a using-declaration just brought in, those give way
// that the class declares by itself (C++11 7.3.3 p15).
void remove_functions_hidden_by_class(a_symbol* functions);

// ---- Virtual functions (class_decl_virtual.cpp) ----

// A member function just declared: whether it overrides virtual functions of
// the bases, and the checks of `virtual`, `override` and `final`.
void check_virtual_function(a_type* class_type, a_symbol* symbol, const a_decl_parse_state* state,
                            const a_virt_specifiers* virt);
// The function as the overrider of what it overrides; whether it does.
bool note_overridden_functions(a_type* class_type, const a_symbol* symbol);
// For each base of a direct base its record in the derived class.
typedef std::unordered_map<const a_base_class*, a_base_class*> a_base_correspondence;
a_base_class* corresp_base_class(const a_base_correspondence& corresponding,
                                 const a_base_class* inner);
// The final overriders in a direct base become those in the derived class.
void copy_overriding_functions(a_base_class* direct, const a_base_correspondence& corresponding);
// Numbers the virtual functions of a class that is laid out, and finds the final
// overriders.
void complete_virtual_functions(a_type* class_type);
// The warnings about virtual functions of the bases that members of the class hide.
void check_hidden_virtual_functions(const a_type* class_type);

// ---- Friends (class_decl_friend.cpp) ----

// `friend class C;` and `friend C;`, behind the specifiers.
void decl_friend_class(a_type* class_type, a_decl_parse_state* state);
// The class that an elaborated specifier behind `friend` names, declared where
// it isn't yet.
a_type* friend_class_type(a_type_kind kind, a_symbol_kind symbol_kind, a_symbol_locator* locator);
a_routine* decl_friend_function(a_type* class_type, a_decl_parse_state* state,
                                a_symbol_locator* locator, a_func_info_block* func_info,
                                const a_virt_specifiers* virt);

// ---- Other members ----

void decl_member_typedef(a_symbol_locator* locator, a_decl_parse_state* state);
void decl_static_data_member(a_type* class_type, a_symbol_locator* locator,
                             a_decl_parse_state* state);
// At `using` in a class; the `;` is left.
void member_using_declaration(a_type* class_type);
// Whether `B::x;` stands here, which the first C++ had for a using-declaration.
bool is_access_declaration();
void access_declaration(a_type* class_type);

// Declares a class; the symbol is that of the scope at the depth.
a_type* make_class_type(a_type_kind kind, a_symbol_kind symbol_kind, a_symbol_locator* locator,
                        int depth);
// The class has all its members: settles what it declares by itself and its
// layout. The position is that of its body.
void complete_class_type(a_type* class_type, const a_source_position* position);
// The warnings about members that wait for the end of the class.
void check_members_of_complete_class(a_type* class_type);
// The same for what waits for the virtual functions: allocation functions, and
// what hides members of the bases in a class with the attribute "base_check".
void check_complete_class(a_type* class_type);
// Once the bodies of a local class are read: all its functions must be there.
void check_functions_of_local_class(const a_type* class_type);

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

// The `noexcept(...)` of a member, whose tokens wait for the end of the class.
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

// An overrider whose exception specification is to be compared, or a defaulted
// function that has one.
struct an_exception_spec_check {
  an_exception_spec_check* next;
  a_routine* overrider;
  a_routine* overridden; // null for a defaulted function
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
// Compares the exception specifications once both are known (C++11 15.4 p5), that
// of a defaulted function with what it would be (null).
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
// At the `:` or `{` of a constructor's definition, in its scope: the list of
// initialisers (C++11 12.6.2), completed by what the classes of bases and members
// do by themselves. The `{` is left.
void ctor_initializer(a_routine* constructor, a_scope* scope);
// An array of objects that begin alike: one initialisation, repeated through all
// its bounds.
a_dynamic_init* repeat_for_elements(a_type* type, a_dynamic_init* init);
// What follows the body of a destructor: the destructions of bases and members.
void dtor_initializer(a_routine* destructor, a_scope* scope);
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
// Whether the type is an array without elements, or of unknown bound.
bool has_no_elements(const a_type* type);
// Behind `= default` or `= delete`: whether the function can be defined so.
void check_defaulted_or_deleted_function(a_routine* routine, const a_decl_parse_state* state);
// At the `default` of a definition outside of the class.
void define_defaulted_function(a_routine* routine, const a_decl_parse_state* state);
// Whether what the program wrote behind `noexcept` is what the implicit function has
// (C++11 8.4.2 p2), once field initialisers are known.
void check_exception_spec_of_defaulted_function(a_routine* routine);

#endif
