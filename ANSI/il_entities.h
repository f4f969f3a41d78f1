// The records of the intermediate language that are neither types nor
// expressions nor statements: the header of the IL, the common head of named
// entities, scopes, variables, routines, fields, and the smaller records that
// hang from them. Entries are made by the alloc_ functions of il_alloc.h, live
// in memory regions and are never freed one by one. They hold no addresses of
// code or of static objects, because a precompiled header stores them raw.

#ifndef IL_ENTITIES_H
#define IL_ENTITIES_H

#include "basics.h"
#include "il_entry_kinds.h"

struct a_scope_pointers_block;
struct a_template_decl;
struct PRAGMA;
class SYMTAB;
struct FIELD_REF;

// ---------------------------------------------------------------------------
// The common head of named entities.

enum an_id_linkage_kind : uint8_t {
  idl_none = 0,
  idl_internal = 1,
  idl_external = 2,
  idl_unknown = 3 // not decided yet
};

enum an_access_specifier : uint8_t { as_public = 0, as_protected = 1, as_private = 2 };

// What the uses seen so far say about a variable that the back end may drop.
enum a_reference_state : uint8_t {
  ref_state_none = 0,
  ref_state_used = 1,
  // A file-scope static with a constant initializer that nothing had
  // referenced when its declaration ended.
  ref_state_unreferenced_static = 2
};

struct a_source_correspondence {
  a_symbol* symbol;        // cleared when the IL is written out
  const char* name;        // after name lowering the external name
  const char* source_name; // as written, kept when name_is_lowered is set
  a_trans_unit_corresp* trans_unit_corresp;
  a_scope* parent_scope;        // null if has_local_scope_ref is set
  a_routine* enclosing_routine; // for entities declared in a function
  a_source_position position;
  a_decl_position_supplement* decl_position_supplement;
  a_name_reference* name_reference;
  uint32_t access : 2; // an_access_specifier, for class members
  uint32_t referenced : 1;
  uint32_t needed : 1;  // the entity must be emitted
  uint32_t linkage : 2; // an_id_linkage_kind
  uint32_t has_associated_pragma : 1;
  uint32_t local_to_function : 1;
  uint32_t has_local_scope_ref : 1;
  uint32_t is_class_member : 1; // parent_scope is a class scope
  uint32_t name_is_lowered : 1;
  uint32_t is_externalized : 1; // the _ZB form of the name was used
  uint32_t is_global_name : 1;
  uint32_t is_unnamed : 1;
  uint32_t name_is_generated : 1;
  uint32_t name_is_truncated : 1;
  uint32_t reference_state : 8; // a_reference_state
  uint32_t name_needs_final_cut : 1;
  uint32_t in_substitution_table : 1;
  uint32_t abi_tags_done : 1;
  uint32_t unused_flags : 5;
  an_attribute* attributes;
  uint64_t external_name_id;
  void* template_entity; // template record or instance data
  int32_t name_hash_index;
};

// ---------------------------------------------------------------------------
// The header of the IL.

struct a_function_def_table_entry {
  a_scope* scope;
  int32_t region_number;
};
static_assert(sizeof(a_function_def_table_entry) == 16);

struct an_il_header {
  a_source_file* source_files;
  a_scope* primary_scope;
  a_routine* main_routine;
  const char* il_version;
  const char* compilation_time;
  uint8_t plain_char_is_signed;
  a_scope** region_scope_table; // per region number
  a_function_def_table_entry* function_def_table;
  a_scope_orphaned_list* scope_orphaned_lists;
  a_boolean language_is_not_cplusplus;
  uint32_t std_version;
  uint8_t is_k_and_r;
  uint8_t enum_type_is_integral;
  uint32_t default_max_member_alignment;
  a_macro* macros;
  uint8_t gcc_mode;
  uint8_t gpp_mode;
  uint8_t clang_mode;
  uint64_t gnu_version;
  uint64_t clang_version;
  uint16_t short_enums;
  uint8_t has_ucn_names;
  uint8_t has_vla;
  uint8_t has_templates;
  uint8_t prototype_instantiations_in_il;
  uint8_t all_nonclass_prototypes_in_il;
  uint8_t is_cplusplus;
  an_il_entity_list_entry* secondary_entities;
  a_seq_number_lookup_entry* seq_lookup_entries;
  uint64_t num_seq_lookup_entries;
  int32_t target_configuration_index;
  uint8_t file_scope_is_lowered; // by the lowering of C++
  uint64_t reserved;             // keeps the size that stored headers have
};
static_assert(sizeof(an_il_header) == 168);

// ---------------------------------------------------------------------------
// Scopes.

// The kinds of scopes that the IL keeps. The values between are kinds of scope
// stack entries that make no IL scope.
enum a_scope_kind : uint8_t {
  sk_file = 0,
  sk_function_prototype = 1,
  sk_block = 2, // also the block of a handler
  sk_namespace = 3,
  sk_namespace_extension = 4,
  sk_namespace_reactivation = 5,
  sk_class = 6,
  sk_class_reactivation = 7,
  sk_template_declaration = 8,
  sk_template_instantiation = 9,
  sk_top_level_declaration = 10,
  sk_pragma_rescan = 11,
  sk_deferred_rescan = 12,
  sk_condition = 13,
  sk_enum = 14,
  sk_function = 15
};

struct a_scope {
  a_scope* next; // siblings; also the double list of region_scope_table
  a_scope* prev;
  a_scope* parent;
  int32_t scope_number;
  a_scope_kind kind;
  uint8_t is_template_prototype : 1;
  uint8_t writing_held_back : 1;
  uint8_t moved_to_orphaned_lists : 1;
  uint8_t is_lowered : 1;
  union {
    a_type* type; // prototype, class and enum scopes
    a_namespace* namespace_entry;
    a_routine* routine; // function scopes
  } assoc;
  a_variable* parameters;         // function scope only, in order
  a_constructor_init* ctor_inits; // function scope only
  an_object_lifetime* first_lifetime;
  a_variable* this_variable;
  a_variable* return_variable;
  a_statement* assoc_statement;
  an_object_lifetime* object_lifetime;
  a_constant* constants;
  a_type* types;
  a_variable* variables;       // static duration; at file scope all
  a_variable* local_variables; // automatic storage
  a_label* labels;
  a_routine* routines;
  an_asm_entry* asm_entries;
  a_scope* first_nested;
  a_namespace* namespaces;
  a_using_decl* using_decls;
  a_dynamic_init* dynamic_inits;
  a_local_static_variable_init* local_static_inits;
  a_vla_dimension* vla_dimensions;
  a_local_expr_node_ref* local_expr_refs;
  a_local_scope_ref* local_scope_refs;
  a_pragma* pragmas;
  int32_t scope_stack_depth; // -1 when not on the scope stack
  void* pragma_group;        // list head used by the back end
  a_template* templates;
};

// Stands for the parent scope of a file-scope entity declared in a function;
// lives in the function's region.
struct a_local_scope_ref {
  a_local_scope_ref* next;
  a_scope* scope;
  an_il_entry_kind entity_kind;
  void* entity;
};

// What a local expression reference stands for.
enum a_local_expr_ref_kind : uint8_t {
  lek_type_1 = 1,
  lek_constant_backing_expr = 2,
  lek_constant_param_expr = 3,
  lek_type_dimension = 4,
  lek_type_dimension_2 = 5,
  lek_type_typeref_expr = 6,
  lek_field = 7
};

// Stands for an expression of a file-scope entity that lives in a function.
struct a_local_expr_node_ref {
  a_local_expr_node_ref* next;
  a_local_expr_ref_kind kind;
  union {
    a_type* type;
    a_constant* constant;
    a_field* field;
    void* entity;
  } owner;
  an_expr_node* expr;
};

// Local entities kept outside a discarded function body.
struct a_scope_orphaned_list {
  a_scope_orphaned_list* next;
  a_routine* routine;
  int32_t scope_number;
  a_type* types;
  a_variable* variables;
  a_namespace* namespaces;
};

// The generic list node.
struct an_il_entity_list_entry {
  an_il_entity_list_entry* next;
  an_il_entry_kind entity_kind;
  void* entity;
};

// ---------------------------------------------------------------------------
// Variables.

// The storage kinds of variables and, up to sc_static, of routines. The
// numbers are also those of storage class specifiers; 4 there is `typedef`,
// which never reaches a variable. Kinds below sc_auto have static duration.
enum a_storage_kind : uint8_t {
  sc_none = 0, // a definition at file scope
  sc_extern = 1,
  sc_static = 2,
  sc_auto = 3,
  sc_typedef = 4,
  sc_register = 5
};

enum an_init_kind : uint8_t {
  initk_none = 0,
  initk_constant = 1,
  initk_dynamic = 2,
  initk_zero = 3,        // per-lifetime temporary, zero fill
  initk_local_static = 4 // a local static variable init record holds it
};

// What gave an entity its section.
enum a_section_origin : uint8_t {
  so_declaration = 0, // a pragma or an attribute that names the entity
  so_default = 2      // a default for all definitions in its part of the unit
};

// The section of a routine or of a variable of static duration.
struct a_section_info {
  a_section_origin origin;
  const char* text;
  a_source_position position; // of what gave it
};

struct a_variable {
  a_source_correspondence source_corresp;
  a_variable* next;
  a_type* type;
  a_param_type* param_type; // for a parameter
  a_storage_kind storage_kind;
  a_type* declared_type_info;
  uint16_t alignment; // bytes; 0 none declared
  union {
    const char* text; // with holds_asm_name
    int64_t register_number;
  } asm_name;
  a_routine* template_parent;
  uint64_t address_taken : 1;
  uint64_t is_implicit : 1; // an old-style parameter never declared
  uint64_t address_taken_of_register : 1;
  uint64_t is_used : 1;
  uint64_t is_this_parameter : 1;
  uint64_t is_handler_parameter : 1;
  uint64_t is_weak : 1;
  uint64_t holds_asm_name : 1; // set at creation
  uint64_t is_constexpr : 1;
  uint64_t is_thread_local : 1;
  uint64_t is_parameter : 1;
  uint64_t is_tentative : 1;
  uint64_t is_defined : 1;
  uint64_t is_variably_modified : 1;
  uint64_t not_in_back_end : 2; // either bit keeps it out of the file
  uint64_t is_temporary : 1;
  uint64_t is_compiler_generated : 1;
  uint64_t extern_template_instance : 1;
  uint64_t is_static_data_member : 1;
  uint64_t defined_elsewhere : 1;
  uint64_t is_template_instance : 1;
  uint64_t has_flexible_array_init : 1;
  uint64_t value_is_modified : 1;
  uint64_t is_pack_element : 1;
  uint64_t is_parameter_pack : 1;
  uint64_t is_lambda_capture : 1;
  uint64_t needs_destruction : 1;
  uint64_t has_fs_dynamic_init : 1;
  uint64_t is_enclosing_range_variable : 1;
  uint64_t is_named_return_value : 1;
  uint64_t is_inline_comdat : 1;
  uint64_t is_common : 1;
  uint64_t is_nocommon : 1;
  uint64_t has_explicit_init : 1;
  uint64_t is_anonymous_union_object : 1;
  uint64_t was_specialized : 1;
  uint64_t is_prototype_instantiation : 1;
  uint64_t definition_needed : 1;
  uint64_t is_vla_size_variable : 1;
  uint64_t name_in_own_text : 1; // external name in a text of its own
  uint64_t is_vla : 1;           // an array of variable length
  uint64_t unused_flags : 14;
  uint64_t flag_padding : 8;
  an_init_kind init_kind;
  union {
    a_constant* constant;
    a_dynamic_init* dynamic;
    void* generic;
  } initializer;
  a_source_range initializer_range;
  an_il_entity_list_entry* decl_entities;
  a_variable_template_info* template_info;
  a_variable* alias_of;
  const char* comdat_name;
  a_variable* next_same_name;
  a_named_register* named_register;
  a_section_info* section_info;
  uint32_t decl_modifiers; // target modifiers of the declaration
  SYMTAB* file_symbol;     // set while the intermediate file is written
  // The variable before it in its list, when it was entered; a hint that spares
  // the search when a definition moves the variable.
  a_variable* previous;
};

// Alias, redeclaration and section texts share this shape: a register, section
// or symbol given by name or by number.
enum a_named_register_kind : uint8_t { nrk_number = 0, nrk_text = 1 };

struct a_named_register {
  a_named_register* next;
  a_named_register_kind kind;
  union {
    const char* text;
    int64_t number;
  } value;
};

struct a_variable_template_info {
  a_template* assoc_template;
  a_template_arg* template_args;
  a_variable* prototype;
  a_template_arg* partial_args;
};

// ---------------------------------------------------------------------------
// Routines.

enum a_routine_special_kind : uint8_t {
  rsk_ordinary = 0,
  rsk_constructor = 1,
  rsk_destructor = 2,
  rsk_conversion = 3,
  rsk_operator = 4,
  rsk_literal_operator = 5,
  rsk_forwarding = 6
};

inline constexpr uint16_t no_virtual_function_index = 65535;

struct a_routine {
  a_source_correspondence source_corresp;
  a_routine* next;
  a_type* type; // a routine type, possibly behind typerefs
  int32_t function_def_number;
  int32_t region_number;
  a_storage_kind storage_kind; // 3 other
  a_routine_special_kind special_kind;
  union {
    int64_t builtin_code; // rsk_ordinary
    struct {              // rsk_constructor, rsk_destructor
      a_routine_list_entry* related;
      a_routine* complete_form;
    } ctor;
    a_type* conversion_target; // rsk_conversion
    uint8_t operator_kind;     // rsk_operator: an operator name kind
    const char* literal_suffix;
    a_routine* forwarded_routine; // rsk_forwarding
    uint64_t words[2];
  } special_data;
  // The first flag word. The back end refers to many of these by bit.
  uint64_t address_taken : 1;
  uint64_t is_inline : 1;
  uint64_t defined : 1;
  uint64_t is_static_member : 1;
  uint64_t called : 1;
  uint64_t owns_region : 1;
  uint64_t definition_needed : 1;
  uint64_t keep_definition_in_il : 1;
  uint64_t is_virtual : 1;
  uint64_t is_pure : 1;
  uint64_t detached_redeclaration : 1;
  uint64_t is_compiler_generated : 1;
  uint64_t is_constexpr : 1;
  uint64_t is_user_provided : 1;
  uint64_t no_return : 1;
  uint64_t is_defaulted : 1;
  uint64_t is_deleted : 1;
  uint64_t is_explicit : 1;
  uint64_t is_trivial : 1;
  uint64_t is_friend_definition : 1;
  uint64_t is_template_instance : 1;
  uint64_t is_specialized : 1;
  uint64_t is_prototype_instantiation : 1;
  uint64_t is_constexpr_usable : 1;
  uint64_t is_template_function : 1;
  uint64_t is_member_const_variant : 1;
  uint64_t is_final : 1;
  uint64_t extern_template_instance : 1;
  uint64_t is_override : 1;
  uint64_t has_deducible_return_type : 1;
  uint64_t is_lambda_body : 1;
  uint64_t no_inline : 1;
  uint64_t is_naked : 1;
  uint64_t in_init_array : 1;
  uint64_t impure : 1;
  uint64_t no_side_effects : 1;
  uint64_t is_weak : 1;
  uint64_t real_call : 1;
  uint64_t is_main : 1;
  uint64_t is_exception_handler : 1;
  uint64_t is_used : 1;
  uint64_t is_inline_comdat : 1;
  uint64_t is_gnu_inline : 1;
  uint64_t uses_setjmp : 1;
  uint64_t returns_unique_pointer : 1;
  uint64_t uses_varargs : 1;
  uint64_t uses_alloca : 1;
  uint64_t always_inline : 1;
  uint64_t is_lowered : 1;
  uint64_t body_lowering_waits : 1;
  uint64_t has_local_statics : 1;
  uint64_t has_local_class : 1;
  uint64_t is_ctor_of_vbase_class : 1;
  uint64_t is_inheriting_ctor : 1;
  uint64_t is_initializer_list_ctor : 1;
  uint64_t is_implicitly_declared : 1;
  uint64_t is_internal_runtime : 1;
  uint64_t is_deprecated : 1;
  uint64_t inline_candidate : 1;
  uint64_t has_vla : 1;
  uint64_t has_goto_into_scope : 1;
  uint64_t has_nested_function_address : 1;
  uint64_t is_init_routine : 1;
  uint64_t defined_elsewhere : 1;
  // The second flag word.
  uint32_t ctor_kind : 3; // complete, base or other form
  uint32_t is_instantiation_required : 1;
  uint32_t in_definition_list : 1;
  uint32_t in_template_info : 1;
  uint32_t body_may_be_needed : 1;
  uint32_t is_address_constant_used : 1;
  uint32_t no_virtual_override : 1;
  uint32_t is_hidden_friend : 1;
  uint32_t is_comdat_definition : 1; // the file's definition state 2
  uint32_t has_body : 1;
  uint32_t is_ramfunc : 1;
  uint32_t exception_spec_is_implicit : 1;
  // Of an inline function in C: its definition is an external one.
  uint32_t has_external_declaration : 1;
  uint32_t unused_flags : 17;
  a_class_list_entry* friend_classes;
  a_template_arg* template_args;
  a_template* assoc_template;
  a_routine_gnu_supplement* gnu_supplement;
  a_routine* prev_overload_root;
  a_routine* definition_of;
  a_routine* wrapper_of;
  a_section_info* section_info;
  a_using_decl* using_decl;
  uint16_t virtual_function_index; // no_virtual_function_index: none
  uint32_t alignment;              // bytes; 0 none declared
  uint32_t decl_modifiers;         // target modifiers of the declaration
  SYMTAB* file_symbol;             // set while the intermediate file is written
};

struct a_routine_gnu_supplement {
  const char* alias_target; // external name of the routine aliased
  a_routine* alias_routine;
  const char* asm_name;
  const char* comdat_name;
  uint8_t visibility;
  uint8_t has_explicit_visibility : 1;
  uint8_t is_weakref : 1;
  int32_t constructor_priority; // -1: none
  int32_t destructor_priority;
};

// ---------------------------------------------------------------------------
// Fields, parameters, labels, namespaces.

struct a_field {
  a_source_correspondence source_corresp;
  a_field* next; // in declaration order
  a_type* type;
  uint64_t offset;    // bytes from the start of the class
  uint8_t bit_offset; // bits below offset
  uint8_t bit_size;   // the width that counts
  uint16_t is_bit_field : 1;
  uint16_t is_anonymous_union_member : 1;
  uint16_t is_mutable : 1;
  uint16_t is_packed : 1;
  uint16_t is_error : 1;
  uint16_t has_default_init : 1;
  uint16_t default_init_is_scanned : 1;
  uint16_t is_captured_this : 1;
  uint16_t is_compiler_generated : 1;
  uint16_t is_vptr : 1;
  uint16_t is_flexible_array : 1;
  uint16_t has_local_expr_ref : 1;
  uint16_t address_taken : 1;
  uint16_t is_unpacked : 1;
  uint32_t declared_bit_size;  // as written when above the type's size, or 0
  uint32_t declared_alignment; // bytes, from an attribute; 0 none
  a_dynamic_init* default_init;
  an_il_entity_list_entry* attributes_list;
  a_constant* constant_value;
  a_source_range default_init_range;
  const FIELD_REF* file_member; // set while the intermediate file is written
};

struct a_param_type {
  a_param_type* next;
  a_type* type;
  a_type* declared_type; // before adjustment
  const char* name;
  uint32_t param_number; // from 1
  an_expr_node* default_arg_expr;
  uint32_t has_default_arg : 1;
  uint32_t default_arg_is_deferred : 1;
  uint32_t passed_via_copy_constructor : 1;
  uint32_t is_parameter_pack : 1;
  uint32_t is_pack_element : 1;
  uint32_t type_is_dependent : 1;
  uint32_t is_register : 1;
  uint32_t is_unused : 1;
  uint32_t has_error : 1;
  uint32_t param_qualifiers : 8; // top-level qualifiers of the declared type
  an_il_entity_list_entry* decl_entities;
  a_decl_position_supplement* decl_position_supplement;
  an_attribute* attributes;
};

struct a_label {
  a_source_correspondence source_corresp;
  a_label* next;
  uint16_t was_reachable : 1; // code reached the label from above
  uint16_t is_break_or_continue : 1;
  uint16_t ends_switch : 1;
  uint16_t is_used : 1;
  uint16_t address_taken : 1;
  uint16_t is_block_local : 1;
  uint16_t is_unused_attr : 1;
  a_statement* first_goto;
  a_statement* def_statement;
  SYMTAB* file_symbol; // set while the intermediate file is written
};

struct a_namespace {
  a_source_correspondence source_corresp;
  a_namespace* next;
  uint8_t is_alias : 1;
  uint8_t is_inline : 1;
  uint8_t is_std : 1;
  union {
    a_scope* scope;
    a_namespace* aliased; // with is_alias
  } variant;
  a_scope_pointers_block* pointers_block; // null in a stored IL
};

struct a_using_decl {
  a_using_decl* next;
  an_il_entry_kind entity_kind; // of what is named; iek_namespace for
                                // a using-directive
  uint8_t is_using_directive : 1;
  uint8_t is_access_decl : 1;
  uint8_t is_inherited_constructor : 1;
  uint8_t access : 2; // an_access_specifier
  void* entity;
  a_name_reference* name_reference;
  a_source_position position;
  a_scope* parent_scope;
  an_attribute* attributes;
};

struct an_exception_specification {
  uint8_t is_noexcept : 1;
  uint8_t is_noexcept_expr : 1;
  uint8_t is_indeterminate : 1; // to be worked out on demand
  uint8_t is_any : 1;           // throw(...)
  a_constant* noexcept_constant;
  an_exception_specification_type* types;
  a_source_range range;
  a_token_cache* deferred_tokens; // cleared when the IL is written out
};

struct an_exception_specification_type {
  an_exception_specification_type* next;
  a_type* type;
  a_source_position position;
  uint8_t is_redundant : 1;
  uint8_t is_pack_expansion : 1;
};

// ---------------------------------------------------------------------------
// Classes.

// One step of a derivation path: the base class entered.
struct a_derivation_step {
  a_derivation_step* next;
  a_base_class* base_class;
};

// One path by which a base class is reached from the class.
struct a_base_class_derivation {
  a_base_class_derivation* next;
  a_derivation_step* path;
  uint8_t access : 2; // an_access_specifier along the path
  uint8_t is_direct : 1;
  uint8_t is_preferred : 1;
};

struct a_base_class {
  a_base_class* next; // declaration order
  a_type* type;
  a_type* derived_class;
  uint16_t access : 2; // an_access_specifier as declared
  uint16_t is_direct : 1;
  uint16_t is_virtual : 1;
  uint16_t is_ambiguous : 1;
  uint16_t shares_virtual_function_info : 1;
  uint16_t is_pack_expansion : 1;
  uint16_t offset_is_known : 1;
  uint16_t is_empty_at_zero : 1;
  uint64_t offset; // bytes from the start of the complete class
  int64_t pointer_offset;
  a_field* pointer_field;
  a_base_class_derivation* derivations;
  an_overriding_virtual_function* overriding_functions;
  a_vcall_offset_entry* vcall_offsets;
  a_base_class* primary_base;
  a_source_position position;
  an_attribute* attributes;
};

struct a_vcall_offset_entry {
  a_vcall_offset_entry* next;
  a_routine* routine;
  int64_t offset;
  uint32_t index;
};

struct an_overriding_virtual_function {
  an_overriding_virtual_function* next;
  a_routine* overridden;
  a_routine* overrider;
  a_base_class* base_class;
  a_base_class* adjustment_base; // where the overrider's class stands
  uint16_t virtual_function_index;
  uint8_t is_ambiguous : 1;
  uint8_t needs_return_adjustment : 1;
  a_base_class* return_adjustment_base;
};

struct a_class_list_entry {
  a_class_list_entry* next;
  a_type* class_type;
};

struct a_routine_list_entry {
  a_routine_list_entry* next;
  a_routine* routine;
};

struct a_constructor_init {
  a_constructor_init* next;
  an_il_entry_kind kind; // iek_base_class or iek_field
  uint8_t is_implicit : 1;
  uint8_t is_delegating : 1;
  uint8_t is_virtual_base : 1;
  union {
    a_base_class* base_class;
    a_field* field;
  } variant;
  a_dynamic_init* initializer;
  a_source_position position;
  a_source_position end_position;
};

enum a_lambda_capture_default : uint8_t { lcd_none = 0, lcd_by_copy = 1, lcd_by_reference = 2 };

struct a_lambda_capture {
  a_lambda_capture* next;
  a_variable* variable;        // null for `this` and an init-capture
  a_field* init_capture_field; // the field of an init-capture
  uint8_t is_by_reference : 1;
  uint8_t is_pack : 1;
  uint8_t is_this : 1;
  uint8_t is_implicit : 1;
  a_field* field; // made for it in the closure
  a_dynamic_init* initializer;
  a_source_position position;
};

struct a_lambda {
  a_type* closure_type;
  a_lambda_capture* captures;
  a_lambda_capture_default capture_default;
  uint8_t is_mutable : 1;
  uint8_t is_generic : 1;
  uint8_t has_parameter_clause : 1;
  uint8_t has_trailing_return_type : 1;
  a_routine* body_routine;
  a_source_range header_range;
  a_source_position position;
  uint32_t discriminator;
};

// ---------------------------------------------------------------------------
// Templates.

enum a_template_kind : uint8_t {
  templk_class = 0,
  templk_function = 1,
  templk_variable = 2,
  templk_alias = 3,
  templk_template_param = 4
};

// The template as the IL keeps it, with the text of the declaration.
struct a_template {
  a_source_correspondence source_corresp;
  a_template* next;
  a_template_kind kind;
  uint8_t is_member : 1;
  uint8_t is_definition : 1;
  uint8_t is_specialization : 1;
  uint8_t is_exported : 1;
  a_template_decl* decl;
  union {
    a_type* type;
    a_routine* routine;
    a_variable* variable;
    void* generic;
  } prototype;
  a_template* canonical; // the first declaration of the same template
  a_template* previous;  // the previous declaration
  const char* text;
  a_source_range range;
};

// One `template <...>` clause.
struct a_template_decl {
  a_template_decl* next; // the clause inside
  a_template_param* params;
  a_source_range range;
  a_scope* scope;
};

enum a_template_arg_kind : uint8_t {
  tak_type = 0,
  tak_constant = 1,
  tak_template = 2,
  tak_start_of_pack = 3
};

// A template parameter. The tokens are front end data and are cleared when the
// IL is written out.
struct a_template_param {
  a_source_correspondence source_corresp;
  a_template_param* next;
  a_symbol* symbol;
  a_template_cache* template_cache;    // tokens of a dependent declaration
  a_template_cache* default_arg_cache; // tokens of the default
  a_template_arg* default_arg_value;   // once scanned
  a_template_arg_kind kind;
  uint8_t has_default : 1;
  uint8_t default_is_dependent : 1;
  uint8_t default_scan_deferred : 1;
  uint8_t default_is_scanned : 1;
  uint8_t is_parameter_pack : 1;
  uint8_t needs_rescan : 1;
  uint8_t type_depends_on_param : 1;
  union {
    a_type* type;
    a_constant* constant;
    a_template* templ;
  } variant;
  uint32_t depth;    // nesting of the clause, from 1
  uint32_t position; // from 1
};

struct a_template_arg {
  a_template_arg* next;
  a_template_arg_kind kind;
  uint8_t is_number : 1; // value.number holds an array bound
  uint8_t is_explicit : 1;
  uint8_t is_pack_element : 1;
  uint8_t is_function_type_with_ellipsis : 1;
  union {
    a_type* type;
    a_constant* constant;
    a_symbol* template_symbol;
    uint64_t number;
  } value;
  an_operand* operand; // for a dependent constant; front end only
  a_source_position position;
};

// ---------------------------------------------------------------------------
// Names as written, and positions of declarations.

// One component of a qualified name.
struct a_name_qualifier {
  a_name_qualifier* next; // the component to the left
  an_il_entry_kind kind;  // iek_none: "::", iek_type or iek_namespace
  uint8_t has_template_keyword : 1;
  union {
    a_type* type;
    a_namespace* namespace_entry;
    void* generic;
  } variant;
  a_template_arg* template_args;
  a_source_position position;
};

struct a_name_reference {
  a_name_qualifier* qualifiers; // innermost first
  a_template_arg* template_args;
  a_namespace* found_through; // namespace of a using-directive
  uint8_t is_global : 1;      // begins with "::"
  uint8_t has_template_keyword : 1;
  uint8_t has_explicit_args : 1;
  a_source_range range;
};

struct a_decl_position_supplement {
  a_source_range specifiers_range;
  a_source_range declarator_range;
  a_source_position name_end_position;
  a_source_range variant_range; // the initializer, or the body
  a_source_position equals_position;
  a_source_position storage_class_position;
};

// ---------------------------------------------------------------------------
// Attributes.

struct an_attribute_group {
  a_source_position position;
  a_source_position end_position;
};

struct an_attribute {
  an_attribute* next;
  uint8_t kind;     // an_attribute_kind; 0 dropped
  uint8_t form;     // 1 [[ ]], 2 __attribute__, 3 __declspec, 4 alignas
  uint8_t location; // an_attribute_location_tag
  uint8_t flags;
  const char* name;
  const char* namespace_name;
  an_attribute_arg* arguments;
  an_attribute_group* group;
  a_source_position position;
  a_source_position end_position;
  void* pack; // pack expansion record
};

enum an_attribute_arg_kind : uint8_t {
  aak_tokens = 0,
  aak_string = 1,
  aak_name = 2,
  aak_constant = 3,
  aak_type = 4,
  aak_expression = 5
};

struct an_attribute_arg {
  an_attribute_arg* next;
  uint16_t token_kind;
  an_attribute_arg_kind arg_kind;
  uint8_t is_pack_expansion : 1;
  void* pack;
  a_source_position position;
  a_source_position end_position;
  union {
    a_cached_token* tokens;
    const char* text;
    a_constant* constant;
    a_type* type;
    an_expr_node* expr;
    void* generic;
  } value;
};

// ---------------------------------------------------------------------------
// Pragmas and macros.

// Where in the intermediate file a pragma is written.
enum a_pragma_place : uint8_t {
  placed_at_symbol = 0,
  placed_at_symbol_with_operands = 1,
  placed_at_file = 2,
  placed_at_statement = 3
};

struct a_pragma {
  a_pragma* next;
  uint8_t kind; // a_pragma_kind_tag
  uint8_t is_disabled : 1;
  an_il_entry_kind entity_kind; // iek_none with no entity
  void* entity;
  a_source_position position;
  const char* argument_text;
  uint8_t stdc_name;
  uint8_t stdc_state;
  uint8_t tool_kind; // kind of the PRAGMA object, 0 none
  a_pragma_place placement;
  PRAGMA* pragma_object;
};

struct a_macro {
  a_source_correspondence source_corresp;
  a_macro* next;
  const char* text; // as for a listing: "name(params) replacement"
  uint8_t is_undef : 1;
  uint8_t is_predefined : 1;
  uint8_t is_function_like : 1;
};

// ---------------------------------------------------------------------------
// Inline assembly.

struct an_asm_entry {
  a_source_correspondence source_corresp;
  an_asm_entry* next;
  a_constant* text;
  an_asm_operand* operands; // outputs, then inputs
  a_named_register* clobbers;
  a_label_list_entry* labels;
  uint8_t is_volatile : 1;
  uint8_t is_goto : 1;
  uint8_t is_gnu_form : 1; // has operands, even if their lists are empty
  uint8_t is_basic_in_function : 1;
};

struct an_asm_operand {
  an_asm_operand* next;
  const char* name; // the optional [name]
  const char* constraint;
  an_expr_node* expr;
  uint8_t is_output : 1;
  uint8_t is_read_write : 1;
  uint8_t is_early_clobber : 1;
  uint8_t allows_memory : 1;
  uint8_t allows_register : 1;
  a_source_position position;
};

struct a_label_list_entry {
  a_label_list_entry* next;
  a_label* label;
};

// ---------------------------------------------------------------------------
// Initializer positions.

// The position of an element of a braced initializer.
struct an_element_position {
  an_element_position* next;
  a_source_range range;
  an_element_position* elements; // of a nested braced list
};

#endif
