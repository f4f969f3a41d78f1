// A fixture that scans a text: it starts the modules the scanner needs, as a C
// compilation does, puts the text in a file and opens it.

#ifndef SCAN_FIXTURE_H
#define SCAN_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

#include "cfe.h"
#include "cmd_line.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "macro.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"
#include "preproc.h"
#include "scope_stk.h"
#include "source_file.h"
#include "source_line.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

class ScanTest : public testing::Test {
protected:
  void SetUp() override {
    static bool started;
    if (!started)
      start_process();
    started = true;
    diagnostics = getenv("KRT_SCAN_STDERR") != nullptr ? stderr : tmpfile();
    f_error = diagnostics;
    total_errors = total_warnings = 0;
    set_C_modes(199901);
  }

  void TearDown() override {
    while (curr_ise != nullptr)
      pop_input_stack();
    fclose(diagnostics);
    f_error = stderr;
    if (!file_name.empty())
      unlink(file_name.c_str());
  }

  // The dialect; a test may change single words before it opens a text.
  void set_C_modes(int version) {
    C_dialect = cd_ansi_c;
    std_version = version;
    gnu_mode = gcc_mode = gpp_mode = clang_mode = strict_ansi_mode = 0;
    raw_string_literals_enabled = user_defined_literals_enabled = 0;
    utf8_char_literals_enabled = digit_separators_enabled = 0;
    binary_literals_allowed = universal_character_names_allowed = 1;
    multibyte_chars_in_source_enabled = allow_dollar_in_id_chars = 0;
    nullability_qualifiers_enabled = gnu_attributes_enabled = 0;
    gnu_restrict_keyword_enabled = 0;
    restrict_keyword_enabled = c99_bool_is_keyword = c99_complex_enabled = version >= 199901;
    mixed_string_concat_enabled = version >= 199901;
    alignas_enabled = alignof_enabled = static_assert_enabled = version >= 201112;
    std_thread_local_storage_specifier_enabled = version >= 201112;
    lexical_one_time_init();
    trigraphs_allowed = 1;
    alternative_tokens_allowed = version >= 199409;
    end_of_line_comments_allowed = version >= 199901;
    variadic_macros_allowed = version >= 199901;
    pragma_operator_allowed = version >= 199901;
    extended_variadic_macros_allowed = 0;
    long_long_is_standard = version >= 199901;
    hex_floating_point_constants_allowed = version >= 199901;
    uliterals_enabled = version >= 201112;
    check_concatenations = 0;
    error_threshold = es_warning;
  }

  // C++ of 199711 or 201103, as far as the scanner is concerned.
  void set_cplusplus_modes(int version) {
    set_C_modes(199901);
    C_dialect = cd_cplusplus;
    std_version = version;
    bool is_cpp11 = version >= 201103;
    hex_floating_point_constants_allowed = c99_bool_is_keyword = c99_complex_enabled = 0;
    restrict_keyword_enabled = 0;
    bool_is_keyword = wchar_t_is_keyword = rtti_enabled = namespaces_enabled = 1;
    typename_enabled = explicit_keyword_enabled = 1;
    raw_string_literals_enabled = user_defined_literals_enabled = uliterals_enabled = is_cpp11;
    decltype_enabled = nullptr_enabled = noexcept_enabled = constexpr_enabled = is_cpp11;
    alignas_enabled = alignof_enabled = static_assert_enabled = is_cpp11;
    char16_t_and_char32_t_are_keywords = is_cpp11;
    std_thread_local_storage_specifier_enabled = is_cpp11;
  }

  void open(const std::string& text) {
    file_name = "/tmp/krt_scan_" + std::to_string(getpid()) + ".c";
    FILE* file = fopen(file_name.c_str(), "w");
    fwrite(text.data(), 1, text.size(), file);
    fclose(file);
    primary_source_file_name = file_name.c_str();
    trans_unit_file_name = file_name.c_str();
    start_unit();
    an_include_request request = {};
    open_file_and_push_input_stack(file_name.c_str(), request);
    read_logical_source_line(true, false);
  }

  // The spellings of all tokens of a text, with macros expanded, a blank
  // between.
  std::string expand(const std::string& text) {
    open(text);
    fetch_pp_tokens = 1;
    std::string result;
    while (get_token() != tok_end_of_source) {
      if (!result.empty())
        result += ' ';
      result.append(start_of_curr_token, len_of_curr_token);
    }
    fetch_pp_tokens = 0;
    return result;
  }

  // The same, with a blank only where white space stood before a token.
  std::string expand_with_spacing(const std::string& text) {
    open(text);
    fetch_pp_tokens = 1;
    std::string result;
    while (get_token() != tok_end_of_source) {
      if (!result.empty() && kind_of_white_space_skipped != ws_none)
        result += ' ';
      result.append(start_of_curr_token, len_of_curr_token);
    }
    fetch_pp_tokens = 0;
    return result;
  }

  std::vector<a_token_kind> kinds(const std::string& text) {
    open(text);
    std::vector<a_token_kind> result;
    while (get_token() != tok_end_of_source)
      result.push_back(curr_token);
    return result;
  }

  // Whether a diagnostic was written that holds the text.
  bool was_reported(const std::string& text) {
    return messages().find(text) != std::string::npos;
  }

  std::string messages() {
    fflush(diagnostics);
    rewind(diagnostics);
    std::string result;
    for (int c = getc(diagnostics); c != EOF; c = getc(diagnostics))
      result += static_cast<char>(c);
    fseek(diagnostics, 0, SEEK_END);
    return result;
  }

  FILE* diagnostics = nullptr;
  std::string file_name;

private:
  static void start_process() {
    mem_manage_early_init();
    host_envir_early_init();
    target_early_init();
    cmd_line_early_init();
    error_early_init();
    depth_scope_stack = -1;
    trans_unit_early_init();
    types_early_init();
    target_one_time_init();
    host_envir_one_time_init();
    error_one_time_init();
    il_one_time_init();
    lexical_one_time_init();
    macro_one_time_init();
    mem_manage_one_time_init();
    pragma_one_time_init();
    preproc_one_time_init();
    symbol_tbl_one_time_init();
    scope_stk_one_time_init();
    trans_unit_one_time_init();
  }

  static void start_unit() {
    static bool inited;
    if (!inited) {
      error_init();
      mem_manage_init();
      host_envir_init();
      il_init();
      lexical_init();
      symbol_tbl_init();
      scope_stk_init();
      macro_init();
      pragma_init();
      preproc_init();
      target_init();
    }
    inited = true;
    is_primary_translation_unit = 1;
    mem_manage_trans_unit_init();
    host_envir_trans_unit_init();
    error_trans_unit_init();
    il_trans_unit_init();
    symbol_tbl_init();
    lexical_init();
    lexical_trans_unit_init();
    symbol_tbl_trans_unit_init();
    scope_stk_trans_unit_init();
    macro_trans_unit_init();
    preproc_trans_unit_init();
    enter_keywords();
    init_predefined_macros("Tue Nov 24 17:07:19 2026");
  }
};

#endif
