// The vocabulary shared by every module of the front end: positions,
// diagnostic numbers and severities, and the names of all records.

#ifndef BASICS_H
#define BASICS_H

#include <cstddef>
#include <cstdint>

// A flag of 32 bits. Mode words and fields whose size is saved and restored
// (registered variables, precompiled headers) have this type; a local truth
// value or the result of a query is a plain bool.
typedef int a_boolean;

// A position in the source: `seq` numbers the physical input lines of all
// files in the order of reading, from 1; `column` is 1-based, in bytes.
// {0, 0} is "no position".
struct a_source_position {
  uint32_t seq;
  uint16_t column;
  uint16_t unused; // keeps the record a single 64-bit value; always 0
};
static_assert(sizeof(a_source_position) == 8);

inline constexpr a_source_position null_source_position = {0, 0, 0};

inline bool operator==(const a_source_position& a, const a_source_position& b) {
  return a.seq == b.seq && a.column == b.column;
}

struct a_source_range {
  a_source_position start;
  a_source_position end;
};

// The number of a diagnostic or of another text in the catalogue.
typedef int an_error_code;

// Severities are ordered; from es_catastrophe up a diagnostic never returns.
// es_none and es_once are requests to the override tables only: take the
// default of the number back, and report the number at most once.
enum an_error_severity : uint8_t {
  es_none = 0,
  es_once = 1,
  es_note = 2,
  es_suppressed = 3,
  es_remark = 4,
  es_lower_remark = 5,
  es_warning = 6,
  es_advice = 7,
  es_command_line_warning = 8,
  es_discretionary_error = 9,
  es_error = 10,
  es_catastrophe = 11,
  es_command_line_error = 12,
  es_internal_error = 13
};

// Names of the records, so that headers need not include one another for a
// pointer. Each is defined in the header of its topic.
struct a_base_class;
struct a_base_class_derivation;
struct a_based_type_list_member;
struct a_block_supplement;
struct a_cached_token;
struct a_candidate_function;
struct a_class_list_entry;
struct a_class_type_supplement;
struct a_condition_supplement;
struct a_constant;
struct a_constructor_init;
struct a_context;
struct a_control_flow_descr;
struct a_conv_descr;
struct a_ctws_state;
struct a_decl_modifiers_block;
struct a_decl_parse_state;
struct a_decl_pos_block;
struct a_decl_position_supplement;
struct a_def_arg_expr_fixup;
struct a_derivation_step;
struct a_diag_argument;
struct a_diag_list;
struct a_diagnostic;
struct a_directory_name_entry;
struct a_dynamic_init;
struct a_dynamic_init_dtor_fixup;
struct a_field;
struct a_file_index;
struct a_for_loop_supplement;
struct a_func_info_block;
struct a_gcc_pragma_descr;
struct a_getc_source_state;
struct a_handler;
struct a_hash_table;
struct a_interpreter_state;
struct a_label;
struct a_label_list_entry;
struct a_lambda;
struct a_lambda_capture;
struct a_lexical_state_stack_entry;
struct a_local_expr_node_ref;
struct a_local_scope_ref;
struct a_local_static_variable_init;
struct a_macro;
struct a_macro_arg;
struct a_macro_def;
struct a_macro_param;
struct a_mangling_state;
struct a_mantissa;
struct a_master_instance;
struct a_mem_block;
struct a_misra_diagnostic_report;
struct a_misra_walk_context;
struct a_misra_walk_subtree_context;
struct a_name_qualifier;
struct a_name_reference;
struct a_named_register;
struct a_namespace;
struct a_nan;
struct a_new_delete_supplement;
struct a_pack_entry;
struct a_param_id;
struct a_param_type;
struct a_pch_event;
struct a_pch_saved_variable;
struct a_pending_pragma;
struct a_pragma;
struct a_pragma_kind_description;
struct a_range_based_for_supplement;
struct a_ref_entry;
struct a_rescan_control_block;
struct a_reusable_cache_stack_entry;
struct a_routine;
struct a_routine_fixup;
struct a_routine_gnu_supplement;
struct a_routine_list_entry;
struct a_routine_type_supplement;
struct a_scope;
struct a_scope_orphaned_list;
struct a_scope_pointers_block;
struct a_scope_stack_entry;
struct a_seq_number_lookup_entry;
struct a_source_correspondence;
struct a_source_file;
struct a_source_line_modif;
struct a_statement;
struct a_std_conv_descr;
struct a_struct_stmt_stack_entry;
struct a_subobject_path;
struct a_substituted_type_list_entry;
struct a_switch_case_entry;
struct a_switch_stmt_supplement;
struct a_symbol;
struct a_symbol_header;
struct a_symbol_locator;
struct a_templ_friend_info;
struct a_template;
struct a_template_arg;
struct a_template_cache;
struct a_template_decl_info;
struct a_template_instance;
struct a_template_param;
struct a_template_param_type_supplement;
struct a_template_symbol_supplement;
struct a_text_buffer;
struct a_throw_supplement;
struct a_timer;
struct a_tmpl_decl_state;
struct a_token_cache;
struct a_trans_unit_corresp;
struct a_translation_unit;
struct a_try_supplement;
struct a_type;
struct a_typeref_type_supplement;
struct a_unique_file_id;
struct a_using_decl;
struct a_variable;
struct a_variable_reference;
struct a_variable_reference_hash;
struct a_variable_template_info;
struct a_vcall_offset_entry;
struct a_vla_dimension;
struct an_ansi_c_identifier;
struct an_arg_check_block;
struct an_arg_match_summary;
struct an_arg_operand;
struct an_asm_entry;
struct an_asm_operand;
struct an_attribute;
struct an_attribute_arg;
struct an_attribute_group;
struct an_eh_lowering_context;
struct an_element_position;
struct an_exception_specification;
struct an_exception_specification_type;
struct an_export_file;
struct an_expr_node;
struct an_expr_or_stmt_traversal_block;
struct an_expr_rescan_info_entry;
struct an_expr_stack_entry;
struct an_il_entity_list_entry;
struct an_include_file_history;
struct an_init_component;
struct an_init_pos_descr;
struct an_init_state;
struct an_initializer_cache;
struct an_input_stack_entry;
struct an_integer_type_supplement;
struct an_interp_frame;
struct an_interp_pointer;
struct an_object_lifetime;
struct an_operand;
struct an_orig_line_modif;
struct an_overload_set_traversal_block;
struct an_overriding_virtual_function;

#endif
