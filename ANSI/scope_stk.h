// The scope stack: where the parser stands. Each open scope has an entry, from
// the file scope at depth 0 upward; pushing one is the only way into a nested
// context and popping it the only way out.

#ifndef SCOPE_STK_H
#define SCOPE_STK_H

#include "basics.h"
#include "il_entities.h"
#include "il_types.h"

// The tails of the lists that an open scope builds. A class, a namespace and
// the file scope have a block that lives as long as they do, so that opening
// them again finds the lists.
struct a_scope_pointers_block {
  a_symbol* first_symbol;
  a_symbol* last_symbol;
  a_constant* last_constant;
  a_type* last_type;
  a_variable* last_variable;
  a_variable* last_local_variable;
  a_variable* last_parameter;
  a_label* last_label;
  a_routine* last_routine;
  an_asm_entry* last_asm_entry;
  a_dynamic_init* last_dynamic_init;
  a_local_static_variable_init* last_local_static_init;
  a_scope* last_nested_scope;
  a_namespace* last_namespace;
  a_using_decl* last_using_decl;
  a_vla_dimension* last_vla_dimension;
  a_pragma* last_pragma;
  a_template* last_template;
  a_hash_table* symbols; // the scope's own table, null until it is needed
  a_boolean closed_once; // the scope was closed at least once
};

// A name of a for-loop's initialisation whose meaning outside it differs.
struct a_hidden_name {
  a_hidden_name* next;
  a_symbol* symbol;       // declared in the initialisation
  a_symbol* outer_symbol; // what the name means outside
};

// A parameter pack that was named outside any expansion.
struct an_unexpanded_pack {
  an_unexpanded_pack* next;
  const a_symbol* symbol;
  a_source_position position;
};

struct a_class_fixup_queue;
struct a_pack_expansion_context;
struct an_active_using_directive;
struct an_access_check;

struct a_scope_stack_entry {
  int32_t number;
  a_scope_kind kind;

  uint64_t is_local_class : 1;
  uint64_t in_for_init : 1; // the block of a C for-loop's initialisation
  uint64_t is_range_for : 1;
  uint64_t is_condition : 1;
  uint64_t is_function_try_handler : 1;
  uint64_t is_handler : 1;
  uint64_t is_template_declaration : 1;
  uint64_t is_dependent : 1;
  uint64_t is_reactivation : 1; // a function re-entered for a stored definition
  uint64_t is_prototype_instantiation : 1;
  uint64_t is_explicit_instantiation : 1;
  uint64_t is_specialization : 1;
  uint64_t is_generated_function : 1;
  uint64_t is_fresh_start : 1; // a top-level declaration without outer context
  uint64_t keep_rescan_info : 1;
  uint64_t in_class_body : 1;
  uint64_t has_statement_expression : 1;
  uint64_t uses_setjmp : 1;
  uint64_t owns_lifetime : 1;        // the push made or took up a lifetime
  uint64_t unwanted_diagnostics : 1; // no unused-entity remarks at the pop
  uint64_t fp_contract_state : 2;    // at entry, restored at the pop
  uint64_t fenv_access_state : 2;
  uint64_t cx_limited_range_state : 2;
  // The scope walk of lookups is needed here.
  uint64_t use_scope_lookup : 1;
  uint64_t pragmas_not_bound : 1;      // constructs take no pragmas here
  uint64_t no_il_generation : 1;       // pragmas leave no entry
  uint64_t pushed_for_inner_scope : 1; // to be popped together with the next entry
  // Of a class that is being defined: the access of the next member, an
  // an_access_specifier.
  uint64_t member_access : 2;
  uint64_t unused_flags : 32;

  a_scope_pointers_block* pointers_block_override; // null: the embedded block
  a_scope_pointers_block pointers;
  a_scope* il_scope; // null until one is needed
  int32_t region_number;
  int32_t region_at_push;
  a_type* assoc_type;
  a_routine* routine;
  a_namespace* namespace_entry;
  a_using_decl* using_decl_list;
  a_class_fixup_queue* class_fixups; // of the classes defined here; null: none waits
  a_hash_table* function_symbols;
  a_constant** function_shareable_constants; // buckets, null until the first
  a_variable* local_tail_variables;
  a_label* local_tail_labels;
  int32_t saved_decl_scope_level;
  int32_t saved_depth_template_declaration_scope;
  int32_t saved_depth_innermost_instantiation_scope;
  a_template_decl_info* template_decl_info;
  a_symbol* template_symbol;
  a_template_arg* template_args;
  a_template_param* template_params;
  a_source_position saved_pos_curr_token;
  int32_t saved_depth_innermost_function_scope;
  a_pending_pragma* pending_pragmas;   // run at the pop
  a_pending_pragma* construct_pragmas; // of the construct that starts
  int32_t saved_depth_affecting_access_control;
  int32_t saved_curr_deferred_access_scope;
  an_expr_stack_entry* saved_expr_stack;
  an_object_lifetime* object_lifetime;
  an_object_lifetime* saved_curr_object_lifetime;
  an_object_lifetime* free_lifetimes; // of a function: records to use again
  int32_t saved_depth_innermost_namespace_scope;
  an_active_using_directive* active_using_directives; // those that stand here
  an_active_using_directive* lookup_using_list;       // whose names appear here
  int64_t parent_depth; // of the lexically enclosing entry; -1 for the outermost
  int32_t saved_depth_of_initial_lookup_scope;
  a_pack_expansion_context* saved_curr_pack_expansion_stack;
  int32_t diagnostic_mapping_mark;
  a_hidden_name* hidden_names;
  a_hidden_name* for_scope_names;
  an_unexpanded_pack* unexpanded_packs;
  an_access_check* deferred_access_checks;
  uint32_t decl_seq_limit; // of an instantiation: what was declared later is not seen
};

// ---- Per-unit state ----

extern a_scope_stack_entry* scope_stack;
extern int32_t size_scope_stack;
extern int32_t depth_scope_stack; // the top entry; -1 when empty
extern int32_t depth_of_initial_lookup_scope;
// The entry in which declarations are placed; not the top inside a template
// parameter or a qualified declarator.
extern int32_t decl_scope_level;
extern int32_t depth_innermost_function_scope;
extern a_scope* innermost_function_scope;
extern int32_t depth_innermost_instantiation_scope;
extern int32_t depth_template_declaration_scope;
extern int32_t curr_deferred_access_scope;
extern a_boolean inside_local_class;
extern int32_t non_local_class_fixup_depth;
extern int32_t depth_innermost_namespace_scope;
extern int32_t depth_of_innermost_scope_that_affects_access_control;
extern int32_t num_classes_on_scope_stack;
extern a_pack_expansion_context* pack_expansion_stack;

// ---- Pushes ----
//
// A push may move the array: depths are kept across it, never pointers.

enum a_push_scope_flag : unsigned {
  psf_none = 0,
  psf_secondary = 1,   // file scope: of a secondary translation unit
  psf_fresh_start = 2, // top-level declaration: no outer template or instantiation
  psf_generated_function = 4,
  psf_reactivate = 8, // function: its stored scope is opened again
  psf_for_init = 16,
  psf_template_declaration = 32,
  psf_dependent = 64,
  psf_parent_given = 128,
  psf_no_template_scope = 0x200 // template declaration: without an IL scope
};

// The further context of a push. Zeroed fields mean "none".
struct a_push_scope_context {
  a_namespace* namespace_entry;
  a_scope_pointers_block* pointers_block;
  a_scope* il_scope;                   // of a scope that is opened again
  an_object_lifetime* object_lifetime; // to be taken up again
  a_template_decl_info* template_decl_info;
  a_symbol* template_symbol;
  a_template_arg* template_args;
  a_template_param* template_params;
  unsigned flags;
  uint32_t decl_seq_limit;
  // With psf_parent_given, the depth of the lexically enclosing entry.
  int32_t parent_depth;
};

// A number of -1 asks for a fresh one where the kind needs one.
void push_scope(a_scope_kind kind, int32_t number, a_type* assoc_type, a_routine* routine);
void push_scope_full(a_scope_kind kind, int32_t number, a_type* assoc_type, a_routine* routine,
                     const a_push_scope_context* context);
void push_file_scope(bool is_secondary);
// The caller may keep the pointers block; it is zeroed here.
void push_block_scope(a_scope_pointers_block* block);
void push_for_init_scope(a_scope_pointers_block* block);
void push_block_scope_with_lifetime(an_object_lifetime* lifetime);
// Opens a block scope again, with its number and its symbols.
void push_block_reactivation_scope(a_scope* scope, a_scope_pointers_block* block);
void push_function_scope(a_routine* routine);
void push_function_reactivation_scope(a_routine* routine);
void push_namespace_scope(a_namespace* namespace_entry);
void f_push_namespace_extension_scope(a_namespace* namespace_entry);
void f_push_namespace_reactivation_scope(a_namespace* namespace_entry);
// A declaration's own context, from the file scope up.
void push_new_top_level_declaration();
void push_class_scope(a_type* class_type);
// Opens a class again in the scopes around it: those namespaces, classes and
// template parameters that aren't open around the current place are opened
// first. The second form takes the further context of the class's own entry.
void push_class_and_template_reactivation_scope(a_type* class_type);
void push_class_and_template_reactivation_scope_full(a_type* class_type,
                                                     const a_push_scope_context* context);

// ---- Pops ----

void pop_scope();
// With `keep_symbols` the symbols stay on the entry's lists for a reactivation.
void pop_block_scope(bool keep_symbols);
void pop_namespace_scope();
// Pops all that the push of the class opened.
void pop_class_reactivation_scope();
// Notes a pack that nothing has expanded; the end of the template reports it.
void record_unexpanded_pack(const a_symbol* symbol, const a_source_position* position);
void forget_unexpanded_packs();
// End-of-scope processing of the symbols of a scope: diagnostics of what was
// not used or not completed, and their removal from the name chains.
void wrapup_scope(a_scope* scope, a_scope_kind kind, a_scope_pointers_block* block, int depth);
// For a scope in which the names of a for-loop's initialisation ended: says
// that `symbol`, found under the new rule, used to mean the loop's variable.
void report_for_init_difference(a_symbol* symbol, const a_source_position* position);

// ---- Queries ----

a_scope* ensure_il_scope_exists(a_scope_stack_entry* entry);
a_scope_pointers_block* get_pointers_block_for_scope(a_scope* scope);
a_scope_pointers_block* pointers_block_of_entry(a_scope_stack_entry* entry);
// The depth at which the scope of a symbol is open, or -1.
int scope_depth_of_symbol(const a_symbol* symbol, a_scope_stack_entry** entry);
int scope_depth_of_number(int32_t scope_number);
// The depth at which tags and enumerators are declared: decl_scope_level but
// for C, where a class is no scope for them (C99 6.2.1).
int decl_level_of_tags();
a_scope* get_innermost_function_scope();
int32_t get_depth_innermost_function_scope();

// ---- Language linkage ----

// The context of `extern "C"` and `extern "C++"`: the linkage of the routine
// types made until the pop.
void push_name_linkage(a_name_linkage_kind kind);
void pop_name_linkage();

// ---- The end of a function ----

// Whether the body stays as it is for now: in C++, names in the lowered form
// need the module id, which the first external definition gives.
bool should_delay_lowering_on_function(const a_routine* routine, bool at_pop);
bool should_delay_finishing_of_function_body(const a_routine* routine);
// The body is complete: lowers it unless that must wait, and marks the routine
// as defined.
void routine_defined(a_routine* routine, a_scope* function_scope);
extern a_boolean function_body_processing_delayed_on_some_func_in_primary_il;

// Records a use in a function that may turn out to be an inline definition
// with external linkage (C99 6.7.4), judged when the file scope ends: of an
// entity with internal linkage or, with `defines_static`, the definition of a
// modifiable static.
void check_c99_inline_definition(a_routine* routine, const a_source_position* position,
                                 bool defines_static);

// ---- Initialisation ----

void scope_stk_one_time_init();
void scope_stk_init();
void scope_stk_trans_unit_init();

#endif
