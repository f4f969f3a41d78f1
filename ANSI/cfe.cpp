#include "cfe.h"

#include "ah_back_end.h"
#include "attribute.h"
#include "builtin_condition.h"
#include "class_decl.h"
#include "cmd_line.h"
#include "const_ints.h"
#include "decl_inits.h"
#include "decl_spec.h"
#include "decls.h"
#include "def_arg.h"
#include "error.h"
#include "expr.h"
#include "extasm.h"
#include "float_pt.h"
#include "folding.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_if.h"
#include "il_to_str.h"
#include "il_walk.h"
#include "il_write.h"
#include "interpret.h"
#include "lambda.h"
#include "layout.h"
#include "lexical.h"
#include "lookup.h"
#include "lower_c99.h"
#include "lower_il.h"
#include "lower_name.h"
#include "lower_vla.h"
#include "macro.h"
#include "mem_manage.h"
#include "misra.h"
#include "mode_words.h"
#include "nrg.h"
#include "pch.h"
#include "pragma.h"
#include "preproc.h"
#include "scope_stk.h"
#include "sighandler.h"
#include "source_file.h"
#include "source_line.h"
#include "stack_limit.h"
#include "statements.h"
#include "symbol_ref.h"
#include "symbol_tbl.h"
#include "sys_predef.h"
#include "target.h"
#include "templates.h"
#include "trans_copy.h"
#include "trans_corresp.h"
#include "trans_unit.h"
#include "types.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>

char compilation_time_stamp[32];

namespace {

const char* const il_format_version = "v2.3.2";

// Power advice is silent until options raise its severities.
void suppress_power_advice() {
  for (int rule = 0; rule <= nrg_last_rule; rule++)
    for (int subrule = 0; subrule <= nrg_last_subrule; subrule++)
      for (bool variant : {false, true}) {
        an_error_severity severity;
        an_error_code code = nrg_offset_to_error_code(rule, subrule, &severity, variant);
        if (code != 0)
          set_severity_for_error_number(code, es_suppressed, nullptr, true);
      }
}

void fe_early_init() {
  mem_manage_early_init();
  host_envir_early_init();
  target_early_init();
  cmd_line_early_init();
  error_early_init();
  pch_early_init();
  il_write_early_init();
  depth_scope_stack = -1;
  trans_unit_early_init();
  types_early_init();
  set_multibyte_locale();
  misra_early_init();
  suppress_power_advice();
}

void fe_one_time_init() {
  pos_curr_token = null_source_position;
  error_position = null_source_position;
  if (multibyte_chars_in_source_enabled)
    set_multibyte_locale();
  target_one_time_init();
  host_envir_one_time_init();
  class_decl_one_time_init();
  decl_spec_one_time_init();
  decls_one_time_init();
  decl_inits_one_time_init();
  def_arg_one_time_init();
  error_one_time_init();
  expr_one_time_init();
  folding_one_time_init();
  il_to_str_one_time_init();
  il_one_time_init();
  interpret_one_time_init();
  lookup_one_time_init();
  layout_one_time_init();
  lexical_one_time_init();
  macro_one_time_init();
  mem_manage_one_time_init();
  pch_one_time_init();
  pragma_one_time_init();
  preproc_one_time_init();
  statements_one_time_init();
  symbol_ref_one_time_init();
  symbol_tbl_one_time_init();
  scope_stk_one_time_init();
  templates_one_time_init();
  trans_copy_one_time_init();
  trans_unit_one_time_init();
  corresp_one_time_init();
  il_lower_one_time_init();
  lower_c99_one_time_init();
  lower_vla_one_time_init();
  lower_name_one_time_init();
  attribute_one_time_init();
  extasm_one_time_init();
  if (check_misra_c_2004)
    misra_one_time_init();
  sys_predef_one_time_init();
  builtin_condition_one_time_init();
}

// What the IL points to must live in it.
const char* copy_to_primary_file_scope_il(const char* text) {
  size_t size = strlen(text) + 1;
  return static_cast<const char*>(memcpy(alloc_primary_file_scope_il(size), text, size));
}

void take_compilation_time_stamp() {
  time_t now = time(nullptr);
  snprintf(compilation_time_stamp, sizeof compilation_time_stamp, "%.24s", ctime(&now));
}

void init_modules() {
  error_init();
  folding_init();
  interpret_init();
  mem_manage_init();
  host_envir_init();
  if (object_file_name == nullptr)
    object_file_name = derived_name(primary_source_file_name, ".obj");
  il_to_str_init();
  il_init();
  il_walk_init();
  lexical_init();
  symbol_tbl_init();
  scope_stk_init();
  decls_init();
  decl_inits_init();
  class_decl_init();
  layout_init();
  def_arg_init();
  lambda_init();
  templates_init();
  corresp_init();
  expr_init();
  lookup_init();
  macro_init();
  statements_init();
  pch_init();
  pragma_init();
  preproc_init();
  target_init();
  const_ints_init();
  float_pt_init();
  il_lower_init();
  lower_c99_init();
  lower_name_init();
  attribute_init();
}

// What the intermediate language says about the whole run.
void fill_il_header() {
  il_header.plain_char_is_signed = targ_has_signed_chars != 0;
  il_header.language_is_not_cplusplus = in_C_mode();
  il_header.std_version = static_cast<uint32_t>(std_version);
  il_header.is_k_and_r = C_dialect == cd_k_and_r;
  il_header.enum_type_is_integral = enum_is_int != 0;
  il_header.default_max_member_alignment = static_cast<uint32_t>(pack_alignment);
  il_header.gcc_mode = gcc_mode != 0;
  il_header.gpp_mode = gpp_mode != 0;
  il_header.clang_mode = clang_mode != 0;
  il_header.gnu_version = static_cast<uint64_t>(gnu_version);
  il_header.clang_version = static_cast<uint64_t>(clang_version);
  il_header.short_enums = short_enums || small_enum;
  il_header.has_ucn_names = 0;
  il_header.has_vla = 0;
  il_header.file_scope_is_lowered = 0;
  il_header.has_templates = 0;
  il_header.prototype_instantiations_in_il = prototype_instantiations_in_il != 0;
  il_header.all_nonclass_prototypes_in_il = all_template_info_in_il != 0;
  il_header.is_cplusplus = in_cplusplus_mode();
  il_header.target_configuration_index = target_configuration_index;
}

void open_pp_output_file() {
  f_pp_output = pp_file_name == nullptr
                    ? stdout
                    : open_output_file_with_error_handling(
                          pp_file_name, false, false, report_as_command_line_error, fk_pp_output);
}

void open_il_output_file() {
  if (il_file_name == nullptr) {
    if (strcmp(primary_source_file_name, "-") == 0)
      str_command_line_error(ec_cl_il_file_must_be_specified, primary_source_file_name);
    il_file_name = derived_name(primary_source_file_name, ".cil");
  }
  f_il = open_output_file_with_error_handling(il_file_name, true, false, tolerate_nothing,
                                              fk_il_output);
}

void init_modules_for_translation_unit() {
  attribute_trans_unit_init();
  mem_manage_trans_unit_init();
  host_envir_trans_unit_init();
  error_trans_unit_init();
  folding_trans_unit_init();
  il_trans_unit_init();
  interpret_trans_unit_init();
  decls_trans_unit_init();
  decl_inits_trans_unit_init();
  lexical_trans_unit_init();
  symbol_tbl_trans_unit_init();
  scope_stk_trans_unit_init();
  templates_trans_unit_init();
  corresp_trans_unit_init();
  expr_trans_unit_init();
  statements_trans_unit_init();
  class_decl_trans_unit_init();
  layout_trans_unit_init();
  macro_trans_unit_init();
  pragma_trans_unit_init();
  preproc_trans_unit_init();
  il_lower_trans_unit_init();
  lower_c99_trans_unit_init();
  lower_vla_trans_unit_init();
  sys_predef_trans_unit_init();
}

void read_translation_unit() {
  if (do_preprocessing_only) {
    fe_init_part_2();
    cpp_driver();
    return;
  }
  if (precompiled_header_processing_required && !cannot_do_pch_processing) {
    fe_init_for_pch_prefix_scan();
    precompiled_header_processing();
  }
  fe_init_part_2();
  translation_unit();
}

[[noreturn]] void report_exception(const std::exception& exception) {
  fprintf(stderr, "Unhandled exception: %s\n\n", exception.what());
  fputs(support_message_text(), stderr);
  exit(1);
}

void print_time_since(const char* label, const a_timer& start) {
  a_timer end;
  get_timer(&end);
  display_time_used(label, &start, &end);
}

void run_back_end() {
  a_timer start;
  get_timer(&start);
  if (asm_header_mode)
    ah_back_end();
  else
    back_end();
  if (display_compilation_time)
    print_time_since("Back end time", start);
}

an_error_severity severity_of_run() {
  if (total_errors != 0)
    return es_error;
  return total_warnings != 0 ? es_warning : es_suppressed;
}

} // namespace

void fe_init_part_1() {
  take_compilation_time_stamp();
  in_front_end = 1;
  depth_stmt_stack = -1;
  init_modules();
  if (in_cplusplus_mode() && make_all_functions_unprototyped)
    pass_stdarg_references_to_generated_code = 0;
  fill_il_header();
  if (pp_output_file_needed)
    open_pp_output_file();
  if (do_preprocessing_only)
    return;
  if (!suppress_il_file_write)
    open_il_output_file();
  start_il_file();
}

void fe_translation_unit_init() {
  pos_curr_token = null_source_position;
  error_position = null_source_position;
  init_modules_for_translation_unit();
  il_header.macros = nullptr;
  if (!is_primary_translation_unit) {
    cannot_do_pch_processing = 1;
    using_a_pch_file = 0;
  }
  enter_keywords();
  init_predefined_macros(compilation_time_stamp);
  il_header.primary_scope = new_file_scope(file_scope_number);
  push_file_scope(false);
  curr_translation_unit->unit_file_scope = il_header.primary_scope;
  enter_predeclared_entities();
  enter_system_specific_predeclared_symbols();
  if (is_primary_translation_unit) {
    init_name_linkage_constants();
  } else {
    generate_pp_output = 0;
    do_preprocessing_only = 0;
  }
}

void fe_init_part_2() {
  an_include_request request = {};
  open_file_and_push_input_stack(copy_to_primary_file_scope_il(trans_unit_file_name), request);
  curr_translation_unit->primary_source_file = curr_ise->source_file;
  if (!using_a_pch_file)
    push_next_preinclude_file();
  read_logical_source_line(true, false);
  if (is_primary_translation_unit) {
    il_header.il_version = il_format_version;
    il_header.compilation_time = copy_to_primary_file_scope_il(compilation_time_stamp);
  }
  if (using_a_pch_file) {
    fixup_predefined_macros(compilation_time_stamp);
    building_pch_prefix = 1;
  }
}

void process_translation_unit(const char* file_name, bool is_primary,
                              an_exported_template_file* exported_file) {
  if (curr_translation_unit != nullptr)
    save_curr_translation_unit();
  pos_curr_token = null_source_position;
  error_position = null_source_position;
  is_primary_translation_unit = is_primary;
  translation_unit_needed_only_for_exported_templates = exported_file != nullptr;
  trans_unit_file_name = file_name;
  compute_il_prefix_size();
  if (is_primary)
    fe_init_part_1();
  enter_translation_unit(alloc_translation_unit(exported_file));
  fe_translation_unit_init();
  curr_translation_unit->file_scope_region = file_scope_region_number;
  read_translation_unit();
  translation_unit_wrapup();
  pop_translation_unit_stack();
}

void compiler_main(int argc, char** argv) {
  install_common_handlers(primary_signal_handler, nullptr);
  sys_argc = argc;
  sys_argv = argv;
  f_error = stderr;
  a_timer start_of_run;
  a_timer start_of_front_end;
  init_stack_limit();
  try {
    fe_early_init();
    get_timer(&start_of_run);
    proc_command_line(argc, argv);
    fe_one_time_init();
    get_timer(&start_of_front_end);
  } catch (const std::exception& exception) {
    report_exception(exception);
  }
  trans_unit_init();
  try {
    process_translation_unit(primary_source_file_name, true, nullptr);
    fe_wrapup();
    if (display_compilation_time)
      print_time_since("Front end time", start_of_front_end);
    if (total_errors != 0)
      suppress_back_end = 1;
    if (!suppress_back_end)
      run_back_end();
    fe_wrapup_part_2();
  } catch (const std::exception& exception) {
    report_exception(exception);
  }
  an_error_severity severity = severity_of_run();
  if (display_compilation_time)
    print_time_since("Total compilation time", start_of_run);
  exit_compilation(severity);
}
