// What follows from the options once all of them are known.

#include "cmd_line_int.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il_hooks.h"
#include "macro.h"
#include "source_file.h"
#include "target.h"

#include <cstring>
#include <string>

namespace {

// Options that one language alone has, and what is said in the other. The
// negative forms count too. --rtti isn't among them: C takes it without effect.
enum a_language_of_option : uint8_t { cplusplus_only, c_only };
const struct {
  an_option_code code;
  a_language_of_option language;
  an_error_code error;
} language_rows[] = {
    {oc_anachronisms, cplusplus_only, ec_cl_anachronism_option_only_in_cplusplus},
    {oc_vtbl, cplusplus_only, ec_cl_vtbl_option_only_in_cplusplus},
    {oc_instantiate, cplusplus_only, ec_cl_instantiation_option_only_in_cplusplus},
    {oc_auto_instantiation, cplusplus_only, ec_cl_auto_instantiation_option_only_in_cplusplus},
    {oc_exceptions, cplusplus_only, ec_cl_exceptions_option_only_in_cplusplus},
    {oc_array_new_and_delete, cplusplus_only, ec_cl_array_new_and_delete_option_only_in_cplusplus},
    {oc_explicit, cplusplus_only, ec_cl_explicit_option_only_in_cplusplus},
    {oc_namespaces, cplusplus_only, ec_cl_namespaces_option_only_in_cplusplus},
    {oc_wchar_t_keyword, cplusplus_only, ec_cl_wchar_t_option_only_in_cplusplus},
    {oc_bool, cplusplus_only, ec_cl_bool_option_only_in_cplusplus},
    {oc_special_subscript_cost, cplusplus_only,
     ec_cl_special_subscript_cost_option_only_in_cplusplus},
    {oc_typename, cplusplus_only, ec_cl_typename_option_only_in_cplusplus},
    {oc_implicit_typename, cplusplus_only, ec_cl_implicit_typename_option_only_in_cplusplus},
    {oc_for_init, cplusplus_only, ec_cl_old_for_init_option_only_in_cplusplus},
    {oc_for_init_diff_warning, cplusplus_only,
     ec_cl_for_init_diff_warning_option_only_in_cplusplus},
    {oc_guiding_decls, cplusplus_only, ec_cl_guiding_decls_option_only_in_cplusplus},
    {oc_old_specializations, cplusplus_only, ec_cl_old_specializations_option_only_in_cplusplus},
    {oc_implicit_extern_c_type_conversion, cplusplus_only,
     ec_cl_impl_extern_c_conv_option_only_in_cplusplus},
    {oc_extern_inline, cplusplus_only, ec_cl_extern_inline_option_only_in_cplusplus},
    {oc_embedded_cplusplus, cplusplus_only, ec_cl_embedded_cplusplus_option_only_in_cplusplus},
    {oc_enum_overloading, cplusplus_only, ec_cl_enum_overloading_option_only_in_cplusplus},
    {oc_nonstd_qualifier_deduction, cplusplus_only,
     ec_cl_nonstandard_qualifier_deduction_option_only_in_cplusplus},
    {oc_nonstd_using_decl, cplusplus_only, ec_cl_nonstd_using_decl_option_only_in_cplusplus},
    {oc_class_name_injection, cplusplus_only, ec_cl_class_name_injection_option_only_in_cplusplus},
    {oc_arg_dep_lookup, cplusplus_only, ec_cl_arg_dependent_lookup_option_only_in_cplusplus},
    {oc_friend_injection, cplusplus_only, ec_cl_friend_injection_option_only_in_cplusplus},
    {oc_dep_name, cplusplus_only, ec_cl_dep_name_option_only_in_cplusplus},
    {oc_parse_templates, cplusplus_only, ec_cl_parse_nonclass_templates_option_only_in_cplusplus},
    {oc_ignore_std, cplusplus_only, ec_cl_ignore_std_option_only_in_cplusplus},
    {oc_tiebreaker, cplusplus_only, ec_cl_late_tiebreaker_option_only_in_cplusplus},
    {oc_pending_instantiations, cplusplus_only,
     ec_cl_pending_instantiations_option_only_in_cplusplus},
    {oc_auto_type, cplusplus_only, ec_cl_auto_type_option_only_in_cplusplus},
    {oc_auto_storage, cplusplus_only, ec_cl_auto_storage_option_only_in_cplusplus},
    {oc_max_depth_constexpr_call, cplusplus_only, ec_cl_max_constexpr_option_only_in_cplusplus},
    {oc_max_cost_constexpr_call, cplusplus_only, ec_cl_max_constexpr_option_only_in_cplusplus},
    {oc_unrestricted_unions, cplusplus_only, ec_cl_unrestricted_unions_option_only_in_cplusplus},
    {oc_vla, c_only, ec_cl_vla_option_only_in_C},
    {oc_designators, c_only, ec_cl_designators_option_only_in_C},
    {oc_extended_designators, c_only, ec_cl_extended_designators_option_only_in_C},
    {oc_compound_literals, c_only, ec_cl_compound_literals_option_only_in_C},
    {oc_gcc89_inlining, c_only, ec_cl_gnu_c89_inlining_option_only_in_C},
    {oc_func_prototype_tags, c_only, ec_cl_func_prototype_tags_option_only_in_C},
};

// A setting that a standard or a mode brings, unless its own option spoke.
struct a_default {
  a_boolean* word;
  a_boolean value;
  an_option_code code; // oc_count: no option speaks for it
};

bool option_spoke(const a_default& row) {
  return row.code != oc_count && option_seen[row.code];
}

template <size_t count> void apply(const a_default (&defaults)[count]) {
  for (const a_default& row : defaults)
    if (!option_spoke(row))
      *row.word = row.value;
}

// The features of a standard: on where it holds, off where an older one does.
template <size_t count> void set_features(const a_default (&features)[count], bool standard_holds) {
  for (const a_default& row : features)
    if (!option_spoke(row))
      *row.word = standard_holds;
}

const a_default c99_features[] = {
    {&vla_enabled, 1, oc_vla},
    {&allow_decl_after_stmt, 1, oc_count},
    {&restrict_keyword_enabled, 1, oc_restrict},
    {&designators_allowed, 1, oc_designators},
    {&compound_literals_allowed, 1, oc_compound_literals},
    {&variadic_macros_allowed, 1, oc_variadic_macros},
    {&alternative_tokens_allowed, 1, oc_alternative_tokens},
    {&pragma_operator_allowed, 1, oc_count},
    {&end_of_line_comments_allowed, 1, oc_count},
    {&universal_character_names_allowed, 1, oc_count},
    {&va_copy_macro_allowed, 1, oc_count},
    {&long_long_is_standard, 1, oc_long_long},
    {&long_long_promotion_allowed, 1, oc_count},
    {&c99_complex_enabled, 1, oc_count},
    {&hex_floating_point_constants_allowed, 1, oc_count},
    {&mixed_string_concat_enabled, 1, oc_count},
    {&flexible_array_members_allowed, 1, oc_count},
    {&std_c99_inlining, 1, oc_gcc89_inlining},
    {&c99_bool_is_keyword, 1, oc_count},
};

const a_default c11_features[] = {
    {&static_assert_enabled, 1, oc_count},
    {&allow_c11_anonymous_unions, 1, oc_count},
    {&alignas_enabled, 1, oc_count},
    {&alignof_enabled, 1, oc_count},
    {&std_thread_local_storage_specifier_enabled, 1, oc_count},
    {&uliterals_enabled, 1, oc_uliterals},
};

// The settings of C++ that are off in C. Most of their options are refused
// there.
const a_default cplusplus_words[] = {
    {&exceptions_enabled, 0, oc_count},
    {&rtti_enabled, 0, oc_count},
    {&namespaces_enabled, 0, oc_count},
    {&implicit_using_std, 0, oc_count},
    {&bool_is_keyword, 0, oc_count},
    {&wchar_t_is_keyword, 0, oc_count},
    {&explicit_keyword_enabled, 0, oc_count},
    {&typename_enabled, 0, oc_count},
    {&implicit_typename_enabled, 0, oc_count},
    {&export_keyword_enabled, 0, oc_count},
    {&array_new_and_delete_enabled, 0, oc_count},
    {&arg_dependent_lookup_enabled, 0, oc_count},
    {&class_name_injection_enabled, 0, oc_count},
    {&friend_class_injection_enabled, 0, oc_count},
    {&string_literals_are_const, 0, oc_const_string_literals},
    {&extern_inline_allowed, 0, oc_count},
    {&operator_overloading_on_enums_enabled, 0, oc_count},
    {&auto_type_specifier_enabled, 0, oc_count},
    {&allow_anachronisms, 0, oc_count},
    {&allow_nonconst_ref_anachronism, 0, oc_nonconst_ref_anachronism},
    {&type_traits_helpers_enabled, 0, oc_type_traits_helpers},
    {&user_defined_literals_enabled, 0, oc_user_defined_literals},
    {&raw_string_literals_enabled, 0, oc_count},
};

const a_default cpp11_features[] = {
    {&lambdas_enabled, 1, oc_count},
    {&rvalue_references_enabled, 1, oc_count},
    {&decltype_enabled, 1, oc_count},
    {&nullptr_enabled, 1, oc_count},
    {&variadic_templates_enabled, 1, oc_count},
    {&trailing_return_types_enabled, 1, oc_count},
    {&list_init_enabled, 1, oc_count},
    {&noexcept_enabled, 1, oc_count},
    {&constexpr_enabled, 1, oc_count},
    {&deleted_functions_enabled, 1, oc_count},
    {&field_initializers_enabled, 1, oc_count},
    {&local_types_as_template_args_enabled, 1, oc_count},
    {&cpp11_sfinae_enabled, 1, oc_count},
    {&static_assert_enabled, 1, oc_count},
    {&alignas_enabled, 1, oc_count},
    {&alignof_enabled, 1, oc_count},
    {&std_attributes_enabled, 1, oc_count},
    {&char16_t_and_char32_t_are_keywords, 1, oc_count},
    {&raw_string_literals_enabled, 1, oc_count},
    {&std_thread_local_storage_specifier_enabled, 1, oc_count},
    {&auto_type_specifier_enabled, 1, oc_auto_type},
    {&uliterals_enabled, 1, oc_uliterals},
    {&user_defined_literals_enabled, 1, oc_user_defined_literals},
    {&delegating_constructors_enabled, 1, oc_delegating_constructors},
    {&unrestricted_unions_enabled, 1, oc_unrestricted_unions},
    {&implicit_noexcept_enabled, 1, oc_implicit_noexcept},
    {&variadic_macros_allowed, 1, oc_variadic_macros},
    {&pragma_operator_allowed, 1, oc_count},
    {&mixed_string_concat_enabled, 1, oc_count},
    {&long_long_is_standard, 1, oc_long_long},
    {&long_long_promotion_allowed, 1, oc_count},
};

const a_default cpp14_features[] = {
    {&digit_separators_enabled, 1, oc_digit_separators},
    {&relaxed_constexpr_enabled, 1, oc_count},
};

// The cfront levels bring back what the language later dropped.
const a_default cfront_defaults[] = {
    {&allow_anachronisms, 1, oc_anachronisms},
    {&allow_nonconst_ref_anachronism, 1, oc_nonconst_ref_anachronism},
    {&long_lifetime_temps, 1, oc_lifetime_temps},
    {&implicit_typename_enabled, 1, oc_implicit_typename},
    {&friend_class_injection_enabled, 1, oc_friend_injection},
    {&use_new_for_init_scoping, 0, oc_for_init},
    {&guiding_decls_allowed, 1, oc_guiding_decls},
    {&old_specializations_allowed, 1, oc_old_specializations},
};

const a_default gnu_defaults[] = {
    {&allow_decl_after_stmt, 1, oc_count},
    {&designators_allowed, 1, oc_designators},
    {&extended_designators_allowed, 1, oc_extended_designators},
    {&compound_literals_allowed, 1, oc_compound_literals},
    {&variadic_macros_allowed, 1, oc_variadic_macros},
    {&extended_variadic_macros_allowed, 1, oc_extended_variadic_macros},
    {&pragma_operator_allowed, 1, oc_count},
    {&allow_dollar_in_id_chars, 1, oc_dollar},
    {&gnu_restrict_keyword_enabled, 1, oc_count},
    {&gnu_attributes_enabled, 1, oc_count},
    {&flexible_array_members_allowed, 1, oc_count},
    {&end_of_line_comments_allowed, 1, oc_count},
    {&alternative_tokens_allowed, 1, oc_alternative_tokens},
    {&trigraphs_allowed, 1, oc_trigraphs},
    {&long_long_is_standard, 1, oc_long_long},
    {&pass_stdarg_references_to_generated_code, 0, oc_count},
    {&va_arg_returns_lvalue, 0, oc_count},
};

bool has_suffix(const char* name, const char* suffix) {
  return strcmp(suffix_of(name), suffix) == 0;
}

// Without an option that chooses the dialect, the source's suffix does.
void choose_default_dialect() {
  static const an_option_code dialect_options[] = {oc_c,   oc_cplusplus, oc_old_c,      oc_c89,
                                                   oc_c99, oc_c11,       oc_cplusplus03};
  for (an_option_code code : dialect_options)
    if (option_seen[code])
      return;
  if (option_seen[oc_gpp] && gpp_mode && !gcc_mode)
    C_dialect = cd_cplusplus;
  else if (option_seen[oc_gcc] && gcc_mode)
    C_dialect = cd_ansi_c;
  else if (primary_source_file_name != nullptr && has_suffix(primary_source_file_name, ".c"))
    C_dialect = cd_ansi_c;
}

bool mode_excludes_gnu() {
  return strict_ansi_mode || C_dialect == cd_k_and_r || SVR4_C_mode;
}

void check_mode_combinations() {
  bool k_and_r = C_dialect == cd_k_and_r;
  if (strict_ansi_mode && (k_and_r || pcc_preprocessing_mode))
    command_line_error(ec_cl_strict_mode_incompatible_with_pcc);
  if (strict_ansi_mode && (cfront_2_1_mode || cfront_3_0_mode))
    command_line_error(ec_cl_strict_mode_incompatible_with_cfront);
  if (strict_ansi_mode && option_seen[oc_anachronisms] && allow_anachronisms)
    command_line_error(ec_cl_strict_mode_incompatible_with_anachronisms);
  if (strict_ansi_mode && long_preserving_rules)
    command_line_error(ec_cl_strict_mode_incompatible_with_long_preserving);
  if (strict_ansi_mode && ignore_std)
    command_line_error(ec_cl_strict_mode_incompatible_with_ignore_std);
  if (SVR4_C_mode && C_dialect != cd_ansi_c)
    command_line_error(ec_cl_SVR4_C_option_only_in_ansi_C);
  if (SVR4_C_mode && strict_ansi_mode)
    command_line_error(ec_cl_strict_mode_incompatible_with_SVR4);
  bool gnu_option = gcc_mode || gpp_mode || clang_mode;
  bool wrong_language = (gcc_mode && in_cplusplus_mode()) || (gpp_mode && in_C_mode());
  if (gnu_option && (mode_excludes_gnu() || wrong_language || (gcc_mode && gpp_mode)))
    command_line_error(ec_cl_incompatible_language_modes);
}

// GNU C and C++ are the default, except where a mode excludes them.
void settle_gnu_mode() {
  bool settled = option_seen[in_C_mode() ? oc_gcc : oc_gpp];
  gnu_mode = gcc_mode || gpp_mode || clang_mode || (!settled && !mode_excludes_gnu());
  if (gnu_mode) {
    gcc_mode = in_C_mode();
    gpp_mode = in_cplusplus_mode();
  }
  if (emulate_unsafe_gnu_abi_bugs)
    emulate_gnu_abi_bugs = 1;
  if (report_gnu_extensions && !gnu_mode)
    command_line_error(ec_cl_report_gnu_extensions_requires_gnu_mode);
  if (nonstd_gnu_keywords_enabled && !gnu_mode)
    command_line_error(ec_cl_nonstd_gnu_keywords_requires_gnu_mode);
  if (short_enums && !gnu_mode)
    command_line_error(ec_cl_short_enums_requires_gcc_mode);
}

void check_instantiation_mode() {
  if (instantiation_mode != im_local)
    return;
  if (option_seen[oc_auto_instantiation] && automatic_instantiation_mode)
    command_line_error(ec_cl_tim_local_conflicts_with_auto_instantiation);
  automatic_instantiation_mode = 0;
}

void choose_default_standard() {
  constexpr int gnu_version_of_c11 = 50000;
  constexpr int gnu_version_of_cpp14 = 60000;
  if (C_dialect == cd_k_and_r)
    std_version = 199000;
  else if (std_version != 0)
    return;
  else if (C_dialect == cd_ansi_c)
    std_version = gcc_mode && gnu_version >= gnu_version_of_c11 ? 201112 : 199000;
  else
    std_version = gpp_mode && gnu_version >= gnu_version_of_cpp14 ? 201402 : 199711;
}

void check_options_of_other_language() {
  for (const auto& row : language_rows)
    if (option_seen[row.code] && (row.language == cplusplus_only) == in_C_mode())
      command_line_error(row.error);
}

void derive_c_settings() {
  apply(cplusplus_words);
  set_features(c99_features, std_version >= 199901);
  set_features(c11_features, std_version >= 201112);
}

void set_cpp11_features(bool standard_holds) {
  set_features(cpp11_features, standard_holds);
}

void derive_cplusplus_settings() {
  if (cfront_2_1_mode || cfront_3_0_mode) {
    apply(cfront_defaults);
    anachronism_error_severity = allow_anachronisms ? es_warning : es_error;
  }
  set_cpp11_features(std_version >= 201103);
  set_features(cpp14_features, std_version >= 201402);
  if (relaxed_constexpr)
    relaxed_constexpr_enabled = 1;
  if (!option_seen[oc_restrict])
    restrict_keyword_enabled = 0;
  if (implicit_noexcept_enabled && !noexcept_enabled)
    command_line_error(ec_cl_implicit_noexcept_requires_noexcept_support);
  if (!auto_type_specifier_enabled && !auto_storage_class_specifier_enabled)
    command_line_error(ec_cl_auto_cannot_be_disabled);
}

void set_gnu_mode_defaults() {
  constexpr int least_gnu_version_of_clang = 40800;
  if (clang_mode && !option_seen[oc_gnu_version] && gnu_version < least_gnu_version_of_clang)
    gnu_version = least_gnu_version_of_clang;
  apply(gnu_defaults);
}

// The system headers that belong to the tool, below its base directory.
void add_default_include_search_path() {
  if (*znt_base_directory == '\0')
    return;
  static std::string name; // the search path keeps a pointer into it
  name = combine_dir_and_file_name(znt_base_directory, "include", nullptr);
  add_to_include_search_path(name.c_str(), true);
}

void derive_preprocessing_modes() {
  if (!do_preprocessing_only)
    return;
  pp_output_file_needed = 1;
  if (option_seen[oc_no_line_commands])
    gen_line_info_in_pp_output = 0;
  if (option_seen[oc_no_preproc_only]) {
    do_preprocessing_only = 0;
    return;
  }
  suppress_back_end = 1;
  suppress_il_file_write = 1;
  // Warnings would mix with the list.
  bool is_list = list_makefile_dependencies || list_included_files;
  if (is_list && error_threshold == es_warning)
    error_threshold = es_discretionary_error;
}

// A run that was asked for what no module makes stops before it leaves a file
// that isn't what it seems.
void refuse_what_is_not_made() {
  if (create_precompiled_header && (use_precompiled_header || automatic_pch_processing))
    refuse_run("--create_pch is incompatible with --use_pch and --pch");
  if (do_preprocessing_only)
    return;
  if (in_cplusplus_mode() && !suppress_back_end)
    refuse_run("this version makes no code of C++; use --c for a C source, or --no_code_gen");
  if (create_precompiled_header)
    refuse_run("this version makes no precompiled headers");
}

FILE* open_listing(const char* name, an_error_code kind) {
  return open_output_file_with_error_handling(name, false, false, report_as_command_line_error,
                                              kind);
}

void open_listing_files() {
  if (raw_listing_file_name != nullptr)
    f_raw_listing = open_listing(raw_listing_file_name, fk_raw_listing);
  if (xref_file_name != nullptr)
    f_xref_info = open_listing(xref_file_name, fk_xref);
  if (error_output_file_name != nullptr)
    f_error = open_listing(error_output_file_name, fk_error_output);
}

void set_predef_macro_modes() {
  bool gnu = gnu_mode && !clang_mode;
  set_predef_macro_mode("gnu", gnu);
  set_predef_macro_mode("gcc", gnu && gcc_mode);
  set_predef_macro_mode("gpp", gnu && gpp_mode);
  set_predef_macro_mode("clang", clang_mode);
  set_predef_macro_mode("clang_c", clang_mode && in_C_mode());
  set_predef_macro_mode("clang_cpp", clang_mode && in_cplusplus_mode());
  set_predef_macro_mode("gnu_or_clang", gnu_mode || clang_mode);
  set_predef_macro_mode("microsoft", false);
  set_predef_macro_mode("strict", strict_ansi_mode);
  set_predef_macro_mode("cpp", in_cplusplus_mode());
  set_predef_macro_mode("all", true);
}

} // namespace

void derive_settings() {
  constexpr int gnu_version_of_unique_directories = 30300;
  choose_default_dialect();
  check_mode_combinations();
  settle_gnu_mode();
  check_instantiation_mode();
  choose_default_standard();
  check_options_of_other_language();
  if (in_C_mode())
    derive_c_settings();
  else
    derive_cplusplus_settings();
  if (gnu_mode)
    set_gnu_mode_defaults();
  add_default_include_search_path();
  remove_duplicate_include_dirs = gcc_mode && gnu_version >= gnu_version_of_unique_directories;
  if (remove_duplicate_include_dirs)
    remove_duplicate_include_directories();
  const char* source = get_src_file_name();
  if (put_dir_of_each_opened_source_file_on_incl_search_path)
    put_current_directory_slot_on_incl_search_path(f_directory_of(source, true));
  derive_preprocessing_modes();
  refuse_what_is_not_made();
  open_listing_files();
  set_predef_macro_modes();
  TRG_check_cmd_options();
}
