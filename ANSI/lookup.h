// Lookup: which declaration a name means at a place of the program.

#ifndef LOOKUP_H
#define LOOKUP_H

#include "basics.h"
#include "symbol_tbl.h"

// Options of the lookups, a bit mask.
enum an_id_lookup_option : uint32_t {
  ilo_none = 0,
  ilo_followed_by_colons = 1u << 0, // names that can qualify
  ilo_tag = 1u << 1,                // an elaborated type specifier
  ilo_ignore_using_directives = 1u << 3,
  ilo_template_declarator = 1u << 5,
  ilo_accept_projections = 1u << 6,
  ilo_exclude_block_scopes = 1u << 7,
  ilo_namespaces_only = 1u << 9,
  ilo_classes_only = 1u << 11,
  ilo_class_templates_only = 1u << 13,
  ilo_template_name = 1u << 14,
  ilo_skip_template_params = 1u << 15,
  ilo_ignore_instantiation_scopes = 1u << 17,
  ilo_skip_template_declaration_scopes = 1u << 18,
  ilo_no_dependent_processing = 1u << 20,
  ilo_friend_declaration = 1u << 21
};

// Each stores what it finds in the locator and returns the real symbol, a
// projection having been followed to what it stands for; null for none. An
// error locator finds nothing. A locator that holds a symbol is taken as it is.
// When declarations of different entities are found, the first is the result
// and the locator's is_ambiguous is set; report_ambiguous_name says so.

// The scope at decl_scope_level alone.
a_symbol* curr_scope_id_lookup(a_symbol_locator* locator, uint32_t options);
// An unqualified name along the scope stack (C99 6.2.1).
a_symbol* normal_id_lookup(a_symbol_locator* locator, uint32_t options);
a_symbol* class_qualified_id_lookup(a_symbol_locator* locator, a_type* class_type,
                                    uint32_t options);
a_symbol* namespace_qualified_id_lookup(a_symbol_locator* locator, a_namespace* namespace_entry,
                                        uint32_t options);
a_symbol* enum_qualified_id_lookup(a_symbol_locator* locator, a_type* enum_type);
a_symbol* file_scope_id_lookup(a_scope* scope, a_symbol_locator* locator, uint32_t options);
// The tag that `struct x`, `union x` or `enum x` means; with
// `current_scope_only` the one that a definition would complete. The caller
// compares the kind.
a_symbol* curr_tag_symbol(a_symbol_locator* locator, bool current_scope_only);
a_symbol* find_label_symbol(const a_symbol_header* header);
a_symbol* find_macro_symbol(const a_symbol_header* header);
a_symbol* find_keyword_symbol(const a_symbol_header* header);
// The block-extern symbol of a name, which a later declaration must agree with.
a_symbol* find_extern_symbol(const a_symbol_header* header);

// Reports once a name that no declaration accounts for, or more than one, and
// makes the locator an error locator.
void reference_to_invalid_name(a_symbol_locator* locator);
void report_ambiguous_name(a_symbol_locator* locator);

// ---- Base classes (C++11 10.2) ----

// Makes the symbol that shows a member of a base class in a class: `member` as
// the table of the base class has it, `derivation` the way to it.
a_symbol* make_projection_symbol(a_symbol* member, a_type* class_type, a_base_class* base_class,
                                 a_derivation_step* derivation);
// Whether one class is a base of the other, directly or not.
bool is_derived_class(const a_type* derived, const a_type* base);

// ---- Access (C++11 11) ----

// Whether the member, as a lookup in the class found it (a projection tells
// the way), may be named at the current place. `object_class` is the class of
// the object expression, null for none.
bool have_access_to_symbol(a_symbol* symbol, a_type* naming_class, a_type* object_class);
// The same for a function chosen among those that a lookup found.
bool have_access_to_routine(const a_symbol* functions, const a_routine* routine,
                            a_type* naming_class, a_type* object_class);
// Whether a public member of the base would be accessible (C++11 11.2 p4).
bool have_access_to_base_class(const a_base_class* base);
// Reports a lack of access or, while checks are deferred, notes the use.
void check_access_to_symbol(a_symbol* symbol, a_type* naming_class, a_type* object_class,
                            const a_source_position* position);
// The same for what the lookup of a name found, in the class of the qualifier or
// in the class whose member it is.
void check_access_to_name(const a_symbol_locator* locator, const a_source_position* position);
void record_access_error(a_symbol* symbol, a_type* naming_class, a_type* object_class,
                         const a_source_position* position);
// The names in a declaration have the access of what it declares, which is
// known only behind them: failures are kept in the scope entry until then.
void defer_access_checks(int depth);
// Judges the failures kept in the entry again, from the current place and as
// names in the declaration of the symbol, null for none, and reports those that
// remain (C++11 11 p6); or forgets them.
void perform_deferred_access_checks_at_depth(int depth, const a_symbol* declared);
void discard_deferred_access_checks_at_depth(int depth);

// ---- Using-directives and using-declarations (C++11 7.3.3, 7.3.4) ----

// Makes the names of a namespace visible from the scope at a depth on.
a_using_decl* enter_using_directive(a_namespace* nominated, int depth,
                                    const a_source_position* position);
// What a namespace that is opened again says itself.
void activate_using_directives_of_scope(a_scope* scope, int depth);
// Takes back the directives of the scope at the top of the stack.
void deactivate_using_directives();
// When the unit of the scopes up to the depth becomes current or another does:
// the directives act or rest. Declarations after `decl_seq` are not seen; 0
// for no limit.
void set_active_using_list_scope_depths(int depth, bool unit_is_current, uint32_t decl_seq);
// Declares in the scope at a depth what the locator names elsewhere: `named`,
// as a lookup found it. Null when an entity of the scope is in its way.
a_symbol* enter_using_declaration(a_symbol* named, a_symbol_locator* locator, int depth);

// ---- Argument-dependent lookup (C++11 3.4.2) ----

// The functions that a call of an unqualified name considers: those that
// `symbol`, the result of ordinary lookup or null, stands for, and those in the
// namespaces of the arguments. The result may be an overload set of its own.
a_symbol* argument_dependent_lookup(a_symbol* symbol, a_symbol_locator* locator,
                                    const std::vector<a_type*>& argument_types);
// Settles, when a class is complete, in which namespaces operators and
// functions for its objects are sought.
void determine_operator_lookup_namespaces(a_type* class_type);

void lookup_one_time_init();
void lookup_init();

#endif
