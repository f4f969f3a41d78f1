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

// Reports once a name that no declaration accounts for, and makes the locator
// an error locator.
void reference_to_invalid_name(a_symbol_locator* locator);

void lookup_one_time_init();
void lookup_init();

#endif
