// Private to the command line modules: the option table and its actions.

#ifndef CMD_LINE_INT_H
#define CMD_LINE_INT_H

#include "cmd_line.h"

#include <cstddef>

enum an_option_code : int {
  oc_strict,
  oc_strict_warnings,
  oc_no_line_commands,
  oc_preprocess,
  oc_comments,
  oc_old_c,
  oc_dependencies,
  oc_trace_includes,
  oc_no_il_lowering,
  oc_anachronisms,
  oc_cfront_2_1,
  oc_cfront_3_0,
  oc_no_code_gen,
  oc_signed_chars,
  oc_instantiate,
  oc_auto_instantiation,
  oc_ii_file,
  oc_template_info_file,
  oc_definition_list_file,
  oc_vtbl,
  oc_dollar,
  oc_timing,
  oc_zntversion,
  oc_no_warnings,
  oc_remarks,
  oc_c,
  oc_cplusplus,
  oc_exceptions,
  oc_use_before_set_warnings,
  oc_include_directory,
  oc_define_macro,
  oc_undefine_macro,
  oc_error_limit,
  oc_list,
  oc_xref,
  oc_error_output,
  oc_diag_suppress,
  oc_diag_remark,
  oc_diag_warning,
  oc_diag_error,
  oc_diag_once,
  oc_display_error_number,
  oc_create_pch,
  oc_use_pch,
  oc_pch,
  oc_pch_messages,
  oc_pch_verbose,
  oc_pch_dir,
  oc_restrict,
  oc_lifetime_temps,
  oc_wchar_t_keyword,
  oc_pack_alignment,
  oc_alternative_tokens,
  oc_svr4,
  oc_brief_diagnostics,
  oc_nonconst_ref_anachronism,
  oc_no_preproc_only,
  oc_rtti,
  oc_building_runtime,
  oc_bool,
  oc_array_new_and_delete,
  oc_explicit,
  oc_namespaces,
  oc_using_std,
  oc_remove_unneeded_entities,
  oc_typename,
  oc_implicit_typename,
  oc_special_subscript_cost,
  oc_suppress_instantiation_flags,
  oc_old_style_preprocessing,
  oc_for_init,
  oc_for_init_diff_warning,
  oc_distinct_template_signatures,
  oc_guiding_decls,
  oc_old_specializations,
  oc_wrap_diagnostics,
  oc_implicit_extern_c_type_conversion,
  oc_long_preserving_rules,
  oc_extern_inline,
  oc_multibyte_chars,
  oc_embedded_cplusplus,
  oc_vla,
  oc_enum_overloading,
  oc_nonstd_qualifier_deduction,
  oc_tiebreaker,
  oc_preinclude,
  oc_preinclude_macros,
  oc_pending_instantiations,
  oc_const_string_literals,
  oc_class_name_injection,
  oc_arg_dep_lookup,
  oc_friend_injection,
  oc_nonstd_using_decl,
  oc_sys_include,
  oc_designators,
  oc_extended_designators,
  oc_variadic_macros,
  oc_extended_variadic_macros,
  oc_incl_suffixes,
  oc_compound_literals,
  oc_base_assign_op_is_default,
  oc_dep_name,
  oc_ignore_std,
  oc_parse_templates,
  oc_c99,
  oc_c89,
  oc_gcc,
  oc_gpp,
  oc_gnu_version,
  oc_report_gnu_extensions,
  oc_short_enums,
  oc_clang,
  oc_clang_version,
  oc_long_long,
  oc_context_limit,
  oc_set_flag,
  oc_clear_flag,
  oc_znt_base_dir,
  oc_embedded_c,
  oc_thread_local_storage,
  oc_trigraphs,
  oc_nonstd_default_arg_deduction,
  oc_stdc_zero_in_system_headers,
  oc_template_typedefs_in_diagnostics,
  oc_defer_parse_function_templates,
  oc_uliterals,
  oc_type_traits_helpers,
  oc_list_macros,
  oc_dump_configuration,
  oc_dump_legacy_as_target,
  oc_bit_field_sign,
  oc_check_concatenations,
  oc_unicode_source_kind,
  oc_auto_type,
  oc_auto_storage,
  oc_nonstd_instantiation_lookup,
  oc_gcc89_inlining,
  oc_nonstd_gnu_keywords,
  oc_tentative_definitions,
  oc_token_separators_in_pp_output,
  oc_buffer_diagnostics,
  oc_intrinsics,
  oc_loop_pragmas,
  oc_iterate_pragmas,
  oc_pack_all_structs,
  oc_ramfunc,
  oc_endian,
  oc_export_all_vtbl,
  oc_import_helper_functions,
  oc_import_undef,
  oc_visibility,
  oc_dllexport_visibility,
  oc_dsbt,
  oc_use_libc_tls,
  oc_mem_model_data,
  oc_mem_model_const,
  oc_mem_model_code,
  oc_predefine_memory_model_macros,
  oc_align_structs,
  oc_array_alignment,
  oc_neon,
  oc_long_precision_bits,
  oc_wchar_t_bits,
  oc_unaligned_access,
  oc_advice_performance,
  oc_version,
  oc_asmheaders,
  oc_suppress_ah_warnings,
  oc_stdio_ah_warnings,
  oc_entry_hook,
  oc_entry_parm,
  oc_exit_hook,
  oc_exit_parm,
  oc_size_speed_goal,
  oc_help,
  oc_embed_icode,
  oc_embed_inline_assembly,
  oc_i,
  oc_embed_opts,
  oc_override_opts,
  oc_small_enum,
  oc_keep_unneeded_types,
  oc_keep_unneeded_statics,
  oc_scalar_replacement,
  oc_abi,
  oc_small_container_bitfield_layout,
  oc_quiet_mode,
  oc_toolversion,
  oc_write_cil_file,
  oc_i_output_file,
  oc_il_output_file,
  oc_pp_output_file,
  oc_ah_output_file,
  oc_object_file,
  oc_opt_cmdfile,
  oc_opt_shell,
  oc_opt_ansi,
  oc_opt_opt,
  oc_opt_cg,
  oc_db_typerw,
  oc_enum_is_int,
  oc_relaxed,
  oc_fp_mode,
  oc_float_operations_allowed,
  oc_preproc_macros,
  oc_vencode,
  oc_emit_warnings_as_errors,
  oc_printf_support,
  oc_check_misra,
  oc_misra_required,
  oc_misra_advisory,
  oc_advice_power,
  oc_advice_power_severity,
  oc_nrg_standalone_mode,
  oc_symdebug,
  oc_cplusplus03,
  oc_func_prototype_tags,
  oc_implicit_noexcept,
  oc_unrestricted_unions,
  oc_max_depth_constexpr_call,
  oc_max_cost_constexpr_call,
  oc_delegating_constructors,
  oc_lossy_conversion_warning,
  oc_deprecated_string_conv,
  oc_user_defined_literals,
  oc_preserve_lvalues_with_same_type_casts,
  oc_nonstd_anonymous_unions,
  oc_c11,
  oc_digit_separators,
  oc_target,
  oc_utf8_char_literals,
  oc_stricter_template_checking,
  oc_count
};

struct an_option;

// Obeys an option; `argument` is null for one that takes none.
typedef void an_option_action(const an_option& option, const char* argument);

struct an_option {
  an_option_code code;
  const char* name;
  char short_name; // 0: none
  uint8_t value;
  uint8_t takes_argument;
  uint8_t enabled;
  size_t name_length;
  int pch_event;          // must agree with a precompiled header
  a_boolean* word;        // gets the value, if not null
  const char** file_name; // gets the argument as a file name, if not null
  an_option_action* action;
};

inline constexpr size_t number_of_options = 318;

// By code: an option was given, so that no default overwrites it.
extern bool option_seen[oc_count];

// A decimal number from 0 to `limit`; error 576 for any other text.
unsigned long option_number(const char* text, unsigned long limit);

// The next word of the command line as it stands, null at the end.
const char* take_plain_word();

// Reads further words from a file first.
void push_command_file(const char* name);

// The dialect that --c, --c++, --old_c or a standard asks for; another one
// asked for before is error 1081.
void choose_dialect(a_C_dialect dialect);

// Obeys the words up to the name of the source file. With `finish` the settings
// that follow from the options are derived.
void process_options(bool finish);

// Obeys `word` alone, without deriving anything.
void process_option_word(const char* word);

// Command-line error 573 for an argument that the option doesn't know.
[[noreturn]] void refuse_argument(const an_option& option, const char* argument);

// Ends the run with a text of its own.
[[noreturn]] void refuse_run(const char* text);

#define SETS(word_name)
#define NAMES(word_name)
#define DOES(name) an_option_action do_##name;
#define OPTION(code, name, short_name, takes, value, enabled, pch, effect) effect
#include "cmd_line_options.def"
#undef OPTION
#undef SETS
#undef NAMES
#undef DOES

// The names of the files that are opened when all options are known.
extern const char* raw_listing_file_name;
extern const char* xref_file_name;
extern const char* error_output_file_name;

// The settings that follow from the options, from the dialect down to the
// listing files.
void derive_settings();

#endif
