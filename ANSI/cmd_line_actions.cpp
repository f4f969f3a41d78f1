// The actions of the options that do more than set a word.

#include "cmd_line_int.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il_hooks.h"
#include "misra.h"
#include "nrg.h"
#include "source_file.h"
#include "target.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>

namespace {

// The index of `text` among the words, or -1.
int index_of_word(const char* text, const char* const* words, int count) {
  for (int i = 0; i < count; i++)
    if (strcmp(text, words[i]) == 0)
      return i;
  return -1;
}

// The listings of a preprocessing run exclude one another.
void clear_listing_flags() {
  generate_pp_output = 0;
  list_makefile_dependencies = 0;
  list_included_files = 0;
  list_macro_definitions = 0;
  list_macros = 0;
}

void choose_listing(a_boolean* listing) {
  clear_listing_flags();
  do_preprocessing_only = 1;
  *listing = 1;
}

void choose_standard(a_C_dialect dialect, int standard) {
  choose_dialect(dialect);
  std_version = standard;
}

bool is_decimal(const char* text) {
  return *text != '\0' && text[strspn(text, "0123456789")] == '\0';
}

// A version such as 40800 for 4.8.0.
int version_argument(const char* argument) {
  constexpr size_t max_version_digits = 6;
  if (!is_decimal(argument) || strlen(argument) > max_version_digits)
    str_command_line_error(ec_cl_invalid_gnu_version, argument);
  return static_cast<int>(option_number(argument, INT_MAX));
}

// A power of two that doesn't exceed the greatest packing alignment, or 0.
int alignment_argument(const char* argument) {
  unsigned long value = option_number(argument, INT_MAX);
  bool is_power_of_two = value != 0 && (value & (value - 1)) == 0;
  return is_power_of_two && value <= static_cast<unsigned long>(targ_maximum_pack_alignment)
             ? static_cast<int>(value)
             : 0;
}

const struct {
  const char* name;
  a_boolean* word;
} named_flags[] = {
    {"suppress_inline_corresp_check", &suppress_inline_corresp_check},
    {"allow_anon_types_in_anon_unions", &allow_anon_types_in_anon_unions},
    {"emulate_gnu_abi_bugs", &emulate_gnu_abi_bugs},
    {"emulate_unsafe_gnu_abi_bugs", &emulate_unsafe_gnu_abi_bugs},
    {"warn_about_tail_padding_use", &warn_about_tail_padding_use},
    {"reuse_tail_padding", &reuse_tail_padding},
    {"packing_applies_to_base_classes", &packing_applies_to_base_classes},
    {"stack_referenced_include_directories", &stack_referenced_include_directories},
    {"use_nonstd_partial_ordering", &use_nonstd_partial_ordering},
    {"no_checking_pragmas", &no_checking_pragmas},
    {"warn_on_try_statement", &warn_on_try_statement},
    {"terse_range_based_for_enabled", &terse_range_based_for_enabled},
    {"relaxed_constexpr", &relaxed_constexpr},
    {"constexpr_implies_const", &constexpr_implies_const},
    {"mangle_had_been_implicitly_const", &mangle_had_been_implicitly_const},
    {"suppress_deferral_on_partial_spec_members", &suppress_deferral_on_partial_spec_members},
    {"no_very_expensive_checking", &no_very_expensive_checking},
    {"diag_override_does_not_affect_sfinae", &diag_override_does_not_affect_sfinae},
    {"preload_builtin_functions", &preload_builtin_functions},
    {"lazy_field_initializers", &lazy_field_initializers},
};

// One item of a list of diagnostics: a number or a tag.
void set_severity_of_item(const char* item, an_error_severity severity) {
  if (*item >= '0' && *item <= '9') {
    long number = static_cast<long>(option_number(item, LONG_MAX));
    if (set_severity_for_error_number(number, severity, nullptr, true))
      str_command_line_error(ec_cl_invalid_number, item);
  } else if (*item == '\0')
    str_command_line_error(ec_cl_invalid_number, item);
  else if (set_severity_for_error_tag(item, severity, nullptr, true))
    str_command_line_error(ec_cl_invalid_error_tag, item);
}

} // namespace

void do_nothing(const an_option&, const char*) {
  // The derivation asks whether the option was seen.
}

// -- Language -------------------------------------------------------------------

void do_strict(const an_option& option, const char*) {
  strict_ansi_mode = 1;
  strict_ansi_error_severity = option.value ? es_error : es_warning;
  strict_ansi_discretionary_severity = option.value ? es_discretionary_error : es_warning;
  error_threshold = std::min(error_threshold, strict_ansi_error_severity);
}

void do_dialect_old_c(const an_option&, const char*) {
  choose_dialect(cd_k_and_r);
  strict_ansi_mode = 0;
  strict_ansi_error_severity = es_warning;
  strict_ansi_discretionary_severity = es_warning;
}

void do_dialect_c(const an_option&, const char*) {
  choose_dialect(cd_ansi_c);
}

void do_dialect_cplusplus(const an_option&, const char*) {
  choose_dialect(cd_cplusplus);
}

void do_standard_c89(const an_option&, const char*) {
  choose_standard(cd_ansi_c, 199000);
}

void do_standard_c99(const an_option& option, const char*) {
  choose_standard(cd_ansi_c, option.value ? 199901 : 199000);
}

void do_standard_c11(const an_option&, const char*) {
  choose_standard(cd_ansi_c, 201112);
}

void do_standard_cplusplus03(const an_option&, const char*) {
  choose_standard(cd_cplusplus, 199711);
}

void do_anachronisms(const an_option& option, const char*) {
  allow_anachronisms = option.value;
  anachronism_error_severity = option.value ? es_warning : es_error;
}

void do_cfront_2_1(const an_option&, const char*) {
  cfront_2_1_mode = 1;
  cfront_3_0_mode = 0;
}

void do_cfront_3_0(const an_option&, const char*) {
  cfront_2_1_mode = 0;
  cfront_3_0_mode = 1;
}

void do_gcc(const an_option& option, const char*) {
  gcc_mode = option.value;
}

void do_gpp(const an_option& option, const char*) {
  gpp_mode = option.value;
}

void do_clang(const an_option& option, const char*) {
  clang_mode = option.value;
}

void do_gnu_version(const an_option&, const char* argument) {
  gnu_version = version_argument(argument);
}

void do_clang_version(const an_option&, const char* argument) {
  clang_version = version_argument(argument);
}

void do_instantiate(const an_option&, const char* argument) {
  static const char* const modes[] = {"none", "all", "used", "local"};
  instantiation_mode = index_of_word(argument, modes, 4);
  if (instantiation_mode < 0)
    str_command_line_error(ec_cl_invalid_instantiation_mode, argument);
}

void do_set_flag(const an_option& option, const char* argument) {
  for (const auto& flag : named_flags) {
    if (strcmp(flag.name, argument) != 0)
      continue;
    *flag.word = option.value;
    return;
  }
  str_command_line_error(ec_cl_invalid_flag_name, argument);
}

void do_unicode_source_kind(const an_option&, const char* argument) {
  static const char* const kinds[] = {"", "UTF-8", "UTF-16LE", "UTF-16BE", "UTF-16"};
  constexpr int utf_16_of_host = 4;
  int kind = index_of_word(argument, kinds, 5);
  if (kind <= 0)
    str_command_line_error(ec_cl_unrecognized_unicode_source_kind, argument);
  default_unicode_source_kind = kind == utf_16_of_host ? (host_little_endian ? 2 : 3) : kind;
}

// -- What the run does -------------------------------------------------------------

void do_preprocess(const an_option& option, const char*) {
  choose_listing(&generate_pp_output);
  if (option.value)
    gen_line_info_in_pp_output = 1;
}

void do_comments(const an_option&, const char*) {
  choose_listing(&generate_pp_output);
  keep_comments_in_pp_output = 1;
}

void do_dependencies(const an_option&, const char*) {
  choose_listing(&list_makefile_dependencies);
}

void do_trace_includes(const an_option&, const char*) {
  choose_listing(&list_included_files);
}

void do_list_macros(const an_option&, const char*) {
  choose_listing(&list_macro_definitions);
}

void do_preproc_macros(const an_option&, const char*) {
  choose_listing(&list_macros);
}

void do_no_code_gen(const an_option&, const char*) {
  suppress_back_end = 1;
  suppress_il_file_write = 1;
  suppress_il_lowering = 1;
}

void do_no_il_lowering(const an_option&, const char*) {
  suppress_il_lowering = 1;
  suppress_back_end = 1;
}

// -- Source text ---------------------------------------------------------------------

void do_define_macro(const an_option& option, const char* argument) {
  add_to_def_undef_list(argument, !option.value);
}

void do_include_directory(const an_option& option, const char* argument) {
  if (strcmp(argument, "-") == 0) {
    put_dir_of_each_opened_source_file_on_incl_search_path = 0;
    mark_start_of_sys_incl_search_path();
    return;
  }
  add_to_include_search_path(file_name_in_internal_encoding(argument), option.value != 0);
}

void do_preinclude(const an_option&, const char* argument) {
  add_to_file_name_list(&preinclude_file_list, file_name_in_internal_encoding(argument));
}

void do_preinclude_macros(const an_option&, const char* argument) {
  add_to_file_name_list(&macro_preinclude_file_list, file_name_in_internal_encoding(argument));
}

void do_incl_suffixes(const an_option&, const char* argument) {
  include_file_suffixes = argument;
}

// -- Diagnostics -----------------------------------------------------------------------

void do_error_limit(const an_option&, const char* argument) {
  error_limit = option_number(argument, ULONG_MAX);
  if (error_limit == 0)
    str_command_line_error(ec_cl_invalid_error_limit, argument);
}

void do_context_limit(const an_option&, const char* argument) {
  context_limit = option_number(argument, ULONG_MAX);
}

void do_threshold(const an_option& option, const char*) {
  error_threshold = static_cast<an_error_severity>(option.value);
}

void do_diag_severity(const an_option& option, const char* argument) {
  std::string list(argument);
  for (size_t start = 0; start <= list.size();) {
    size_t end = std::min(list.find(',', start), list.size());
    set_severity_of_item(list.substr(start, end - start).c_str(),
                         static_cast<an_error_severity>(option.value));
    start = end + 1;
  }
}

void do_buffer_diagnostics(const an_option&, const char*) {
  static char buffer[256];
  setvbuf(stderr, buffer, _IOLBF, sizeof buffer);
}

// -- Rule checks ---------------------------------------------------------------------------

void do_check_misra(const an_option& option, const char* argument) {
  a_boolean is_bad = 0;
  process_check_misra(argument, nullptr, &is_bad, true, false);
  if (is_bad)
    str_command_line_error(ec_misra_invalid_rules, option.name);
}

void do_misra_severity(const an_option& option, const char* argument) {
  process_misra_severity(static_cast<a_misra_rule_kind>(option.value), argument, nullptr);
}

void do_advice_power(const an_option& option, const char* argument) {
  a_boolean is_bad = 0;
  process_check_nrg(argument, &is_bad, nullptr, true, false);
  if (is_bad)
    str_command_line_error(ec_nrg_invalid_rules, option.name);
  if (error_threshold >= es_warning)
    error_threshold = es_lower_remark;
}

void do_advice_power_severity(const an_option&, const char* argument) {
  process_nrg_severity(argument, nullptr);
}

void do_nrg_standalone_mode(const an_option&, const char* argument) {
  process_nrg_standalone_mode(argument);
}

void do_advice_performance(const an_option&, const char* argument) {
  advice_performance = argument;
}

// -- Precompiled headers -------------------------------------------------------------------

void do_create_pch(const an_option&, const char* argument) {
  create_precompiled_header = 1;
  precompiled_header_processing_required = 1;
  pch_output_file_name = file_name_in_internal_encoding(argument);
}

void do_use_pch(const an_option&, const char* argument) {
  use_precompiled_header = 1;
  precompiled_header_processing_required = 1;
  pch_input_file_name = file_name_in_internal_encoding(argument);
}

void do_automatic_pch(const an_option&, const char*) {
  automatic_pch_processing = 1;
  precompiled_header_processing_required = 1;
}

void do_pch_dir(const an_option&, const char* argument) {
  pch_dir_name = file_name_in_internal_encoding(argument);
  if (!is_directory(pch_dir_name))
    str_command_line_error(ec_cl_invalid_pch_directory, argument);
}

// -- Other outputs -------------------------------------------------------------------------

void do_asmheaders(const an_option&, const char*) {
  asm_header_mode = 1;
  remove_unneeded_entities = 0;
}

namespace {
// The codes of the two hooks by the value of their options.
const unsigned short hook_codes[] = {exit_hook_code, entry_hook_code};
} // namespace

void do_hook(const an_option& option, const char* argument) {
  enable_hook(hook_codes[option.value], argument, nullptr);
}

void do_hook_parm(const an_option& option, const char* argument) {
  enable_hook(hook_codes[option.value], nullptr, argument);
}

// -- The processor --------------------------------------------------------------------------

void do_pack_alignment(const an_option&, const char* argument) {
  pack_alignment = alignment_argument(argument);
  if (pack_alignment == 0)
    command_line_error(ec_bad_pack_alignment);
}

void do_align_structs(const an_option&, const char* argument) {
  int alignment = is_decimal(argument) ? alignment_argument(argument) : 0;
  if (alignment == 0)
    str_command_line_error(ec_cl_invalid_align_structs, argument);
  targ_minimum_struct_alignment = alignment;
  targ_top_structaln = alignment;
}

void do_size_speed_goal(const an_option& option, const char* argument) {
  static const char* const goals[] = {"high_risk_performance", "medium_risk_performance",
                                      "low_risk_performance",  "low_risk_size",
                                      "medium_risk_size",      "high_risk_size"};
  int goal = index_of_word(argument, goals, 6);
  if (goal < 0)
    refuse_argument(option, argument);
  targ_size_speed_goal = goal;
}

void do_printf_support(const an_option&, const char* argument) {
  if (strcmp(argument, "nofloat") == 0)
    printf_support = 0;
  else
    printf_support = strcmp(argument, "minimal") == 0 ? 2 : 1;
}

// The number of a precision, or its word.
void do_float_operations_allowed(const an_option& option, const char* argument) {
  static const char* const numbers[] = {"0", "1", "2", "3"};
  static const char* const precisions[] = {"none", "all", "32", "64"};
  int precision = index_of_word(argument, numbers, 4);
  if (precision < 0)
    precision = index_of_word(argument, precisions, 4);
  if (precision < 0)
    refuse_argument(option, argument);
  legal_float_precision = precision;
}

void do_memory_model(const an_option& option, const char* argument) {
  static const char* const models[] = {"none",  "near",  "far",  "far_aggregates",
                                       "small", "large", "flat", "huge"};
  int* const words[] = {&targ_data_access_model, &targ_const_access_model, &targ_code_access_model};
  int model = index_of_word(argument, models, 8);
  if (model < 0)
    refuse_argument(option, argument);
  *words[option.value] = model;
}

void do_abi(const an_option& option, const char* argument) {
  if (strcmp(argument, "eabi") != 0)
    refuse_argument(option, argument);
  is_eabi = 1;
  TYPE_PKG_abi = 1;
  targ_max_bit_field_size = targ_char_bit * targ_sizeof_long_long;
  targ_supports_non_int_bit_field = 1;
  targ_unnamed_bit_field_affects_struct_alignment = 1;
}

// Bit fields take the smallest container that holds them.
void do_small_container_bitfield_layout(const an_option&, const char*) {
  small_container_bitfield_layout = 1;
  targ_bit_field_container_size = 0;
}

void do_processor_version(const an_option&, const char* argument) {
  option_number(argument, INT_MAX);
  targ_cpu_version = TRG_parse_versions(argument);
  TYPE_PKG_cpu_version = targ_cpu_version;
}

void do_visibility(const an_option& option, const char* argument) {
  int visibility = string_to_symbol_visibility(argument);
  if (visibility == 0)
    refuse_argument(option, argument);
  (option.value ? targ_sym_export_visibility : targ_sym_default_visibility) = visibility;
}

void do_wchar_t_bits(const an_option& option, const char* argument) {
  constexpr int unsigned_short_kind = 4;
  constexpr int unsigned_int_kind = 6;
  unsigned long bits = option_number(argument, INT_MAX);
  if (bits != 16 && bits != 32)
    refuse_argument(option, argument);
  targ_wchar_t_int_kind = bits == 16 ? unsigned_short_kind : unsigned_int_kind;
}

void do_relaxed(const an_option&, const char*) {
  relaxed_ansi_mode = 1;
  relaxed_fp = 1;
}

void do_fp_mode(const an_option& option, const char* argument) {
  static const char* const modes[] = {"strict", "relaxed"};
  relaxed_fp = index_of_word(argument, modes, 2);
  if (relaxed_fp < 0)
    refuse_argument(option, argument);
}

void do_number(const an_option& option, const char* argument) {
  int* const words[] = {&max_pending_instantiations,
                        &max_depth_constexpr_call,
                        &max_cost_constexpr_call,
                        &targ_top_aryaln,
                        &import_undef,
                        &unaligned_access_supported,
                        &keep_unneeded_types,
                        &targ_precisionof_long};
  *words[option.value] = static_cast<int>(option_number(argument, INT_MAX));
}

void do_target(const an_option&, const char* argument) {
  target_configuration_index = find_target_configuration(argument);
  if (target_configuration_index < 0)
    str_command_line_error(ec_cl_invalid_target, argument);
  set_target_configuration(target_configuration_index);
}

void do_znt_base_dir(const an_option&, const char* argument) {
  const char* name = file_name_in_internal_encoding(argument);
  if (!is_directory(name))
    str_command_line_error(ec_cl_invalid_znt_base_directory, argument);
  znt_base_directory = name;
}

// -- Further words ------------------------------------------------------------------------------

void do_command_file(const an_option&, const char* argument) {
  push_command_file(argument);
}

void do_pass_words(const an_option& option, const char* argument) {
  std::vector<std::string>* const lists[] = {&shell_opts, &ansi_opts, &opt_opts, &cg_opts};
  if (lists[option.value] == &shell_opts && !shell_opts.empty())
    command_line_error(ec_cl_duplicate_shell_opts_list);
  for (unsigned long n = option_number(argument, INT_MAX); n > 0; n--) {
    const char* word = take_plain_word();
    if (word == nullptr)
      refuse_argument(option, argument);
    lists[option.value]->push_back(word);
  }
}
