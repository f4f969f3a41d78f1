// The intermediate language as a whole: its header, the regions that new
// entries go to, the common head of named entities, the lists of a scope, the
// marking of what is needed and the removal of what is not.

#ifndef IL_H
#define IL_H

#include "il_entities.h"

struct a_scope_stack_entry;

extern an_il_header il_header;

struct an_orphaned_entry_list {
  void* head;
  void* tail;
};
extern an_orphaned_entry_list orphaned_file_scope_il_entries[last_il_entry_kind + 1];

// The region of new local entries; 0 only before the first scope.
extern int32_t curr_il_region_number;

// Entries that nobody needs may be dropped at the end of the file.
extern a_boolean okay_to_eliminate_unneeded_il_entries;

// Floating-point pragma states: 3 is the state at the start of a unit.
extern int32_t curr_fp_contract_state;
extern int32_t curr_fenv_access_state;
extern int32_t curr_cx_limited_range_state;

// The language linkage of new routine types.
extern uint8_t default_routine_name_linkage; // a_name_linkage_kind

// --- Regions.

void switch_il_region(int32_t region);
// Each saves the current region when it switches, else saves 0.
void switch_to_file_scope_region(int32_t* saved);
void switch_to_scope_region(int depth, int32_t* saved);
// Restores the region unless `saved` is 0.
void switch_back_to_original_region(int32_t saved);

a_scope* new_file_scope(int32_t scope_number);
// Makes the scope of a function definition, and a region for it when `region`
// is 0; makes that region current.
a_scope* new_function_scope(int32_t scope_number, a_routine* routine, int32_t region);

// --- The common head.

void init_source_correspondence(a_source_correspondence* source_corresp);
// The entry's head, or null for a kind that has none.
a_source_correspondence* source_corresp_for_il_entry(void* entry, an_il_entry_kind kind);
// Makes a copied record independent of the declaration it was copied from.
void break_source_corresp(a_source_correspondence* source_corresp);
void break_instance_source_corresp(a_source_correspondence* source_corresp);
void break_constant_source_corresp(a_constant* constant);
// Ties the entity to its symbol: name, position and back link.
void set_source_corresp(a_source_correspondence* source_corresp, a_symbol* symbol);

// Links the entity to its parent scope, through a local scope reference when a
// file-scope entity is declared in a function.
void set_parent_scope(a_source_correspondence* source_corresp, an_il_entry_kind kind,
                      a_scope* scope);
void clear_parent(a_source_correspondence* source_corresp, an_il_entry_kind kind);
// The parent scope; null at file scope's outside, or when the function that
// held it has been freed.
a_scope* f_get_parent_scope_of(a_source_correspondence* source_corresp, an_il_entry_kind kind);
// Replaces the links of a file-scope constant to expressions of the function
// that is being processed: the expression that it was made from is forgotten,
// the one that it stands for becomes a local expression reference.
void fix_memory_region_problems_in_copied_constant(a_constant* constant);
a_local_scope_ref* make_local_scope_ref(a_scope* scope, void* entity, an_il_entry_kind kind,
                                        a_scope* function_scope);
a_local_expr_node_ref* make_local_expr_node_ref(void* owner, a_local_expr_ref_kind kind,
                                                an_expr_node* expr, a_scope* function_scope);
// Null when the function's region has been freed.
an_expr_node* find_local_expr_node(const void* owner, a_local_expr_ref_kind kind,
                                   a_routine* routine);
a_scope* find_local_scope(const void* entity, an_il_entry_kind kind, a_routine* routine);

// The scope of the routine's body; null when there is none, or no more.
a_scope* scope_for_routine(const a_routine* routine);
a_scope* scope_for_routine_or_null(const a_routine* routine);

a_namespace* f_skip_namespace_aliases(a_namespace* namespace_entry);
a_scope* scope_of_namespace(a_namespace* namespace_entry);

// The class of a class member; null for anything else.
a_type* class_of_member(const a_source_correspondence* source_corresp);

// --- The lists of a scope. `depth` is a scope stack depth; -1 takes the scope
// from the entity.

void add_to_variables_list(a_variable* variable, int depth);
void remove_from_variables_list(a_variable* variable, int depth);
void add_to_routines_list(a_routine* routine, int depth);
void remove_from_routines_list(a_routine* routine, int depth);
void add_to_types_list(a_type* type, int depth);
void move_to_end_of_types_list(a_type* type, int depth);
bool may_be_added_to_types_list(a_type* type);
void add_to_constants_list(a_constant* constant, int depth);
void add_to_labels_list(a_label* label, int depth);
void add_to_parameters_list(a_variable* parameter, int depth);
void add_to_asm_entries_list(an_asm_entry* entry, int depth);
void add_to_namespaces_list(a_namespace* namespace_entry, int depth);
void add_to_using_decls_list(a_using_decl* using_decl, int depth);
void add_to_templates_list(a_template* templ, int depth);
void add_to_macros_list(a_macro* macro);
// Without a scope, the one that lists the owner, or the file scope. The owner, if
// there is one, is marked.
void add_to_pragma_list(a_pragma* pragma, a_scope* scope, a_source_correspondence* owner);
// Moves the file-scope entities that are declared in the function to lists
// that outlive the body.
void add_scope_orphaned_il_lists(a_scope* function_scope);

a_variable* make_variable(a_type* type, a_storage_kind storage_kind, int depth);
// A variable with no name: static at file scope or when that is asked for.
a_variable* alloc_temporary_variable(a_type* type, bool static_wanted);
// Generated variables precede those with a name.
void add_temporary_to_front_of_variables_list(a_variable* variable, a_scope* scope);
a_variable* make_handler_parameter(a_type* type);

// --- Variables, routines, fields.

void set_variable_address_taken(a_variable* variable);
void set_routine_address_taken(a_routine* routine);
void set_routine_special_kind(a_routine* routine, a_routine_special_kind kind);
void set_inline_flag(a_routine* routine, bool is_inline);
void set_routine_defined(a_routine* routine);
// The wish is recorded before a body exists, and applied when one does.
void set_routine_definition_needed(a_routine* routine);
void set_routine_keep_definition_in_il(a_routine* routine);
void remark_routine_definition_needed(a_routine* routine);
void set_class_keep_definition_in_il(a_type* type);
// The first named field at or after `field`; unnamed bit-fields are skipped.
a_field* next_initializable_field(a_field* field);
// A routine called "main" that is no class member and in no namespace.
bool is_main_function(const a_routine* routine);

// --- Needed entries.

// Marks the entry to be emitted, and once the file scope has ended also all
// that it refers to.
void mark_as_needed(void* entry, an_il_entry_kind kind);
void remark_as_needed(void* entry, an_il_entry_kind kind);
void mark_as_needed_like(void* entry, an_il_entry_kind kind, const a_source_correspondence* model);
// Marks the entry, and everything it refers to, to stay in the IL.
void mark_to_keep_in_il(void* entry, an_il_entry_kind kind);
// Finds what the unit emits: its definitions with external linkage, what has
// been marked, and what these refer to.
void set_needed_flags_at_end_of_file_scope(a_scope* scope);
// A unit begins: marks made from here on are only flags.
void begin_marking_for_trans_unit();
// Unlinks the entities of the scope, and of the namespaces in it, that are not
// marked to be kept.
void eliminate_unneeded_il_entries(a_scope* scope);
// Drops the bodies of the routines whose definition nobody needs.
void eliminate_bodies_of_unneeded_functions();
// Takes the routine's body away; its region goes with the last body in it. The
// file-scope entities that were declared in it stay.
void clear_function_body(a_scope* function_scope);
void clear_variable_definition(a_variable* variable);
// Takes the lifetimes of the default arguments of a routine type, or of the one
// that the type leads to, out of the tree of lifetimes, unless that type stays.
void eliminate_default_arg_object_lifetimes(a_type* type);

// Whether the body must outlive the end of the function's processing.
bool keep_function_body_for_possible_inlining(const a_routine* routine);

// Lists an entry of file scope that no scope leads to, in the lists of its unit;
// null stands for the current one.
void f_possibly_add_orphaned_file_scope_il_entry(void* entry, an_il_entry_kind kind,
                                                 a_translation_unit* unit);

// Goes up through parents: see the flags.
enum a_walk_parents_flags : unsigned {
  wp_namespaces = 1,
  wp_classes = 2,
  wp_routines = 4,
  wp_entity_itself = 8
};
// A nonzero result of the callback ends the walk and is the walk's result.
int walk_parents(void* entity, an_il_entry_kind kind,
                 int (*callback)(void* entity, an_il_entry_kind kind, void* control_block),
                 void* control_block, unsigned flags);

// What is kept beside the IL is made anew when the IL has been read from a file.
void rebuild_structures_on_il_read();

void il_one_time_init();
void il_init();
void il_trans_unit_init();

#endif
