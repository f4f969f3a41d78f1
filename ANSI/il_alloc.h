// The typed allocators of the intermediate language. Every entry is preceded
// by a prefix word with its flags; entries of file scope have link words in
// front of it. Each alloc_ function returns a record in its initial state.
//
// Placements: "file scope" is the file-scope region of the translation unit.
// "current" is the current region: file scope when that is the file-scope
// region, else the region of the function being processed.

#ifndef IL_ALLOC_H
#define IL_ALLOC_H

#include "il_entities.h"
#include "il_types.h"
#include "mem_manage.h"

// The prefix word of an entry, in bit order.
struct an_il_entry_prefix {
  uint8_t file_scope_entry : 1;
  uint8_t secondary_trans_unit_entry : 1;
  uint8_t visited_flag : 1;
  uint8_t il_lowering_flag : 1;
  uint8_t keep_in_il : 1;
  uint8_t unused[7];
};
static_assert(sizeof(an_il_entry_prefix) == 8);

inline an_il_entry_prefix& il_entry_prefix_of(void* entry) {
  return static_cast<an_il_entry_prefix*>(entry)[-1];
}

inline const an_il_entry_prefix& il_entry_prefix_of(const void* entry) {
  return static_cast<const an_il_entry_prefix*>(entry)[-1];
}

inline bool is_file_scope_entry(const void* entry) {
  return il_entry_prefix_of(entry).file_scope_entry;
}

// Link of the list of orphaned entries of one kind; file-scope entries only.
inline void*& orphan_link_of(void* file_scope_entry) {
  return static_cast<void**>(file_scope_entry)[-2];
}

// Ties an entry to its counterpart in another translation unit; entries of
// secondary units only.
inline void*& trans_unit_corresp_link_of(void* secondary_unit_entry) {
  return static_cast<void**>(secondary_unit_entry)[-3];
}

// The value that il_lowering_flag starts with: 1 during a lowering pass.
extern uint8_t initial_value_for_il_lowering_flag;

// Sets the prefix size of file-scope entries from is_primary_translation_unit,
// at each change of translation unit.
void compute_il_prefix_size();

// --- Raw entries.

void* alloc_il(uint64_t size);                    // file scope
void* alloc_primary_file_scope_il(uint64_t size); // region 1, primary prefix
void* alloc_il_in_current_region(uint64_t size);  // current
// Placed like the owner: file scope for none, else the region of the owner's
// kind, of the owner's translation unit.
void* alloc_il_like_owner(uint64_t size, const a_source_correspondence* owner);
char* alloc_text_of_string_literal(uint64_t size); // file scope

// Copies of strings. Region 0: that region; the file-scope region: an entry;
// any other region: remembered general memory.
char* copy_string_to_region(int32_t region, const char* string);
char* copy_string_of_length_to_region(int32_t region, const char* string, uint64_t length);

// --- File scope.

a_scope_orphaned_list* alloc_scope_orphaned_list_header();
a_param_type* alloc_param_type(a_type* type);
a_derivation_step* alloc_derivation_step();
a_base_class_derivation* alloc_base_class_derivation();
a_vcall_offset_entry* alloc_vcall_offset_entry();
an_overriding_virtual_function* alloc_overriding_virtual_function();
a_template_arg* alloc_template_arg(a_template_arg_kind kind);
// Returns a list of arguments for reuse by alloc_template_arg.
void free_template_arg_list(a_template_arg* list);
a_base_class* alloc_base_class(a_type* type);
a_class_list_entry* alloc_list_entry_for_class();
a_routine_list_entry* alloc_list_entry_for_routine();
a_type* alloc_type(a_type_kind kind);
a_variable_template_info* alloc_variable_template_info();
a_field* alloc_field(a_type* type);
an_exception_specification* alloc_exception_specification();
an_exception_specification_type* alloc_exception_specification_type();
a_routine* alloc_routine();
a_routine_gnu_supplement* alloc_gnu_supplement_for_routine();
a_namespace* alloc_namespace();
a_template_param* alloc_template_parameter();
a_template_decl* alloc_template_decl();
a_template* alloc_template();
a_macro* alloc_macro();
a_name_qualifier* alloc_name_qualifier();
a_name_reference* alloc_name_reference();
an_attribute* alloc_attribute();
an_attribute_arg* alloc_attribute_arg();
an_attribute_group* alloc_attribute_group();

// Makes the record an entry of the kind with the kind's initial state; the
// type's head and its common fields are set only by clear_type.
void set_type_kind(a_type* type, a_type_kind kind);
void clear_type(a_type* type, a_type_kind kind);
// Restores the state of a class with no definition.
void clear_class_type_definition_fields(a_type* type);

// Region 1, primary prefix. See source_file.h.
a_source_file* alloc_source_file();
a_seq_number_lookup_entry* alloc_seq_number_lookup_entry();

// --- Current.

an_asm_entry* alloc_asm_entry();
an_asm_operand* alloc_asm_operand();
a_named_register* alloc_named_register_list();
a_label_list_entry* alloc_label_list();
a_label* alloc_label();
a_local_expr_node_ref* alloc_local_expr_node_ref();
a_constructor_init* alloc_ctor_init();
a_using_decl* alloc_using_decl();
a_scope* alloc_scope(a_scope_kind kind, int32_t scope_number);
a_local_scope_ref* alloc_local_scope_ref();
an_element_position* alloc_element_position();
a_lambda* alloc_lambda();
a_lambda_capture* alloc_lambda_capture();
an_il_entity_list_entry* alloc_il_entity_list_entry(an_il_entry_kind kind, void* entity);

// --- Other placements.

// File scope when the argument is set, else current.
a_decl_position_supplement* alloc_decl_position_supplement(bool at_file_scope);
// File scope for the kinds of static duration, else current.
a_variable* alloc_variable(a_storage_kind storage_kind);
a_class_list_entry* alloc_list_entry_for_class_full(const a_source_correspondence* owner);
a_based_type_list_member* alloc_based_type_list_member(a_based_type_kind derivation,
                                                       const a_source_correspondence* owner);
// Placed like the owner, or in the current region without one; with the kind
// and the place of its record in the intermediate file.
a_pragma* alloc_pragma(uint8_t kind, const a_source_correspondence* owner);

// --- Constants that serve as temporaries.

// A reused or new file-scope record, whose fields aren't set.
a_constant* local_constant();
// Takes the constant back, and nulls the pointer.
void release_local_constant(a_constant** constant);
// Turns a temporary constant into a lasting one, and nulls the pointer.
a_constant* move_local_constant_to_il(a_constant** constant);
void empty_available_local_constants();

void il_alloc_one_time_init();
void il_alloc_init();
void il_alloc_trans_unit_init();

#endif
