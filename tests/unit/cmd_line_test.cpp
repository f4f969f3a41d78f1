// What options and their derivation leave in the mode words.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "cmd_line_int.h"
#include "error.h"
#include "host_envir.h"
#include "il_to_if.h"
#include "macro.h"
#include "mem_manage.h"
#include "misra.h"
#include "nrg.h"
#include "source_file.h"
#include "target.h"

namespace {

class CmdLine : public testing::Test {
protected:
  // Reads `options` and the source "a.c" as a fresh process would.
  void read(std::vector<std::string> options, const char* source = "a.c") {
    static bool started;
    if (!started)
      mem_manage_early_init();
    started = true;
    host_envir_early_init();
    target_early_init();
    cmd_line_early_init();
    error_early_init();
    misra_early_init();
    words = std::move(options);
    words.insert(words.begin(), "krtparse");
    words.push_back(source);
    argv.clear();
    for (std::string& word : words)
      argv.push_back(word.data());
    argv.push_back(nullptr);
    proc_command_line(static_cast<int>(words.size()), argv.data());
  }

  std::vector<std::string> words; // settings point into them
  std::vector<char*> argv;
};

// The words that a mode brings, by name.
#define WORD(name)                                                                                 \
  { #name, &name }
const std::vector<std::pair<const char*, a_boolean*>> c_features = {
    WORD(vla_enabled),
    WORD(restrict_keyword_enabled),
    WORD(designators_allowed),
    WORD(compound_literals_allowed),
    WORD(variadic_macros_allowed),
    WORD(alternative_tokens_allowed),
    WORD(pragma_operator_allowed),
    WORD(end_of_line_comments_allowed),
    WORD(universal_character_names_allowed),
    WORD(va_copy_macro_allowed),
    WORD(long_long_is_standard),
    WORD(long_long_promotion_allowed),
    WORD(c99_complex_enabled),
    WORD(hex_floating_point_constants_allowed),
    WORD(mixed_string_concat_enabled),
    WORD(std_c99_inlining),
    WORD(c99_bool_is_keyword),
    WORD(static_assert_enabled),
    WORD(allow_c11_anonymous_unions),
    WORD(alignas_enabled),
    WORD(alignof_enabled),
    WORD(std_thread_local_storage_specifier_enabled),
    WORD(uliterals_enabled),
    WORD(extended_designators_allowed),
    WORD(extended_variadic_macros_allowed),
    WORD(allow_dollar_in_id_chars),
    WORD(gnu_restrict_keyword_enabled),
    WORD(trigraphs_allowed),
    WORD(flexible_array_members_allowed),
    WORD(exceptions_enabled),
    WORD(rtti_enabled),
    WORD(namespaces_enabled),
    WORD(bool_is_keyword),
    WORD(wchar_t_is_keyword),
    WORD(explicit_keyword_enabled),
    WORD(arg_dependent_lookup_enabled),
    WORD(string_literals_are_const),
};

const std::set<std::string> c99_words = {"vla_enabled",
                                         "restrict_keyword_enabled",
                                         "designators_allowed",
                                         "compound_literals_allowed",
                                         "variadic_macros_allowed",
                                         "alternative_tokens_allowed",
                                         "pragma_operator_allowed",
                                         "end_of_line_comments_allowed",
                                         "universal_character_names_allowed",
                                         "va_copy_macro_allowed",
                                         "long_long_is_standard",
                                         "long_long_promotion_allowed",
                                         "c99_complex_enabled",
                                         "hex_floating_point_constants_allowed",
                                         "mixed_string_concat_enabled",
                                         "std_c99_inlining",
                                         "c99_bool_is_keyword",
                                         "flexible_array_members_allowed"};
const std::set<std::string> c11_words = {"static_assert_enabled",
                                         "allow_c11_anonymous_unions",
                                         "alignas_enabled",
                                         "alignof_enabled",
                                         "std_thread_local_storage_specifier_enabled",
                                         "uliterals_enabled"};
const std::set<std::string> gnu_words = {"designators_allowed",
                                         "extended_designators_allowed",
                                         "compound_literals_allowed",
                                         "variadic_macros_allowed",
                                         "extended_variadic_macros_allowed",
                                         "pragma_operator_allowed",
                                         "allow_dollar_in_id_chars",
                                         "gnu_restrict_keyword_enabled",
                                         "flexible_array_members_allowed",
                                         "end_of_line_comments_allowed",
                                         "alternative_tokens_allowed",
                                         "long_long_is_standard"};

std::set<std::string> features_that_are_on() {
  std::set<std::string> on;
  for (const auto& [name, word] : c_features)
    if (*word)
      on.insert(name);
  return on;
}

std::set<std::string> joined(std::initializer_list<std::set<std::string>> sets) {
  std::set<std::string> all = {"trigraphs_allowed"};
  for (const std::set<std::string>& set : sets)
    all.insert(set.begin(), set.end());
  return all;
}

} // namespace

TEST_F(CmdLine, FeaturesOfCByStandardAndMode) {
  const struct {
    std::vector<std::string> options;
    int standard;
    std::set<std::string> features;
  } rows[] = {
      {{"--c89", "--no_gcc"}, 199000, joined({})},
      {{"--strict"}, 199000, joined({})},
      {{"--old_c"}, 199000, joined({})},
      {{"--svr4"}, 199000, joined({})},
      {{}, 199000, joined({gnu_words})},
      {{"--gcc", "--gnu_version=49999"}, 199000, joined({gnu_words})},
      {{"--gnu_version=50000"}, 201112, joined({c99_words, c11_words, gnu_words})},
      {{"--gnu_version=50000", "--no_gcc"}, 199000, joined({})},
      {{"--c99", "--no_c99"}, 199000, joined({gnu_words})},
      {{"--strict", "--c99"}, 199901, joined({c99_words})},
      {{"--c99"}, 199901, joined({c99_words, gnu_words})},
      {{"--c11", "--strict_warnings"}, 201112, joined({c99_words, c11_words})},
      {{"--clang", "--c11"}, 201112, joined({c99_words, c11_words, gnu_words})},
  };
  for (const auto& row : rows) {
    read(row.options);
    SCOPED_TRACE(testing::PrintToString(row.options));
    EXPECT_EQ(std_version, row.standard);
    EXPECT_EQ(features_that_are_on(), row.features);
  }
}

// An option beats every default, on either side of what brings the default.
TEST_F(CmdLine, ExplicitOptionsBeatDefaults) {
  const struct {
    const char* option;
    a_boolean* word;
    int value;
  } rows[] = {
      {"--no_trigraphs", &trigraphs_allowed, 0},
      {"--no_vla", &vla_enabled, 0},
      {"--no_restrict", &restrict_keyword_enabled, 0},
      {"--no_designators", &designators_allowed, 0},
      {"--no_extended_designators", &extended_designators_allowed, 0},
      {"--no_compound_literals", &compound_literals_allowed, 0},
      {"--no_variadic_macros", &variadic_macros_allowed, 0},
      {"--no_extended_variadic_macros", &extended_variadic_macros_allowed, 0},
      {"--no_alternative_tokens", &alternative_tokens_allowed, 0},
      {"--no_uliterals", &uliterals_enabled, 0},
      {"--gcc89_inlining", &gcc89_inlining, 1},
      {"--const_string_literals", &string_literals_are_const, 1},
      {"--user_defined_literals", &user_defined_literals_enabled, 1},
      {"--digit_separators", &digit_separators_enabled, 1},
  };
  for (const auto& row : rows)
    for (bool option_first : {true, false}) {
      SCOPED_TRACE(row.option);
      std::vector<std::string> options = {"--c11", "--gcc"};
      options.insert(option_first ? options.begin() : options.end(), row.option);
      read(options);
      EXPECT_EQ(*row.word, row.value);
    }
  read({"--restrict", "--c89", "--strict"});
  EXPECT_EQ(restrict_keyword_enabled, 1);
  read({"--uliterals"});
  EXPECT_EQ(uliterals_enabled, 1);
}

TEST_F(CmdLine, FeaturesOfCplusplusByStandardAndMode) {
  const struct {
    std::vector<std::string> options;
    int standard;
    bool cpp11, cpp14, old;
  } rows[] = {
      {{}, 199711, false, false, false},
      {{"--gnu_version=59999"}, 199711, false, false, false},
      {{"--gnu_version=60000"}, 201402, true, true, false},
      {{"--gnu_version=60000", "--no_g++"}, 199711, false, false, false},
      {{"--gnu_version=60000", "--c++03"}, 199711, false, false, false},
      {{"--cfront_2.1"}, 199711, false, false, true},
      {{"--cfront_3.0"}, 199711, false, false, true},
  };
  for (auto row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.options));
    row.options.push_back("-E");
    read(row.options, "a.cpp");
    EXPECT_EQ(std_version, row.standard);
    for (a_boolean word : {lambdas_enabled, rvalue_references_enabled, decltype_enabled,
                           nullptr_enabled, variadic_templates_enabled, constexpr_enabled,
                           raw_string_literals_enabled, auto_type_specifier_enabled})
      EXPECT_EQ(word, row.cpp11);
    EXPECT_EQ(digit_separators_enabled, row.cpp14);
    EXPECT_EQ(allow_anachronisms, row.old);
    EXPECT_EQ(long_lifetime_temps, row.old);
    EXPECT_EQ(use_new_for_init_scoping, !row.old);
    EXPECT_EQ(restrict_keyword_enabled, 0);
    EXPECT_EQ(bool_is_keyword, 1);
    EXPECT_EQ(rtti_enabled, 1);
  }
  read({"--gnu_version=60000", "--no_auto_type", "--no_delegating_constructors", "-E"}, "a.cpp");
  EXPECT_EQ(auto_type_specifier_enabled, 0);
  EXPECT_EQ(delegating_constructors_enabled, 0);
  EXPECT_TRUE(
      cmd_line_option_inhibits_gnu_cpp11_extension_warning(ec_delegating_constructor_is_cpp11));
  EXPECT_FALSE(cmd_line_option_inhibits_gnu_cpp11_extension_warning(ec_lambdas_is_cpp11));
  read({"--cfront_2.1", "--no_anachronisms", "--short_lifetime_temps", "-E"}, "a.cpp");
  EXPECT_EQ(allow_anachronisms, 0);
  EXPECT_EQ(long_lifetime_temps, 0);
  EXPECT_EQ(anachronism_error_severity, es_error);
}

TEST_F(CmdLine, DialectAndGnuModeFollowOptionsAndSuffix) {
  const struct {
    std::vector<std::string> options;
    const char* source;
    int dialect;
    bool gnu, gcc, gpp, clang;
  } rows[] = {
      {{}, "a.c", cd_ansi_c, true, true, false, false},
      {{}, "a.cc", cd_cplusplus, true, false, true, false},
      {{"--gcc"}, "a.x", cd_ansi_c, true, true, false, false},
      {{"--g++"}, "a.c", cd_cplusplus, true, false, true, false},
      {{"--no_gcc"}, "a.c", cd_ansi_c, false, false, false, false},
      {{"--no_g++"}, "a.c", cd_ansi_c, true, true, false, false},
      {{"--no_g++"}, "a.cc", cd_cplusplus, false, false, false, false},
      {{"--clang"}, "a.c", cd_ansi_c, true, true, false, true},
      {{"--clang", "--no_gcc"}, "a.c", cd_ansi_c, true, true, false, true},
      {{"--clang", "--no_clang"}, "a.cc", cd_cplusplus, true, false, true, false},
      {{"--strict"}, "a.c", cd_ansi_c, false, false, false, false},
      {{"--old_c"}, "a.c", cd_k_and_r, false, false, false, false},
      {{"--strict", "--old_c"}, "a.c", cd_k_and_r, false, false, false, false},
      {{"--svr4"}, "a.c", cd_ansi_c, false, false, false, false},
      {{"--c++03", "--strict"}, "a.c", cd_cplusplus, false, false, false, false},
  };
  for (auto row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.options));
    row.options.push_back("-E");
    read(row.options, row.source);
    EXPECT_EQ(C_dialect, row.dialect);
    EXPECT_EQ(gnu_mode, row.gnu);
    EXPECT_EQ(gcc_mode, row.gcc);
    EXPECT_EQ(gpp_mode, row.gpp);
    EXPECT_EQ(clang_mode, row.clang);
  }
  read({"--clang", "--c"});
  EXPECT_EQ(gnu_version, 40800);
  read({"--clang", "--gnu_version=30000"});
  EXPECT_EQ(gnu_version, 30000);
}

TEST_F(CmdLine, SeveritiesAndThreshold) {
  const struct {
    std::vector<std::string> options;
    an_error_severity error, discretionary, threshold;
  } rows[] = {
      {{}, es_warning, es_warning, es_warning},
      {{"--strict"}, es_error, es_discretionary_error, es_warning},
      {{"--strict_warnings"}, es_warning, es_warning, es_warning},
      {{"-w", "--strict"}, es_error, es_discretionary_error, es_discretionary_error},
      {{"-w", "--strict_warnings"}, es_warning, es_warning, es_warning},
      {{"-r", "--strict"}, es_error, es_discretionary_error, es_remark},
      {{"--strict", "--old_c"}, es_warning, es_warning, es_warning},
      {{"--advice:power=all"}, es_warning, es_warning, es_lower_remark},
      {{"-w", "--advice:power=1"}, es_warning, es_warning, es_lower_remark},
      {{"-r", "--advice:power=1"}, es_warning, es_warning, es_remark},
      {{"-M"}, es_warning, es_warning, es_discretionary_error},
      {{"-H"}, es_warning, es_warning, es_discretionary_error},
      {{"-Mr"}, es_warning, es_warning, es_remark},
      {{"-E"}, es_warning, es_warning, es_warning},
      {{"--list_macros"}, es_warning, es_warning, es_warning},
      {{"-M", "--no_preproc_only"}, es_warning, es_warning, es_warning},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.options));
    read(row.options);
    EXPECT_EQ(strict_ansi_error_severity, row.error);
    EXPECT_EQ(strict_ansi_discretionary_severity, row.discretionary);
    EXPECT_EQ(error_threshold, row.threshold);
  }
}

TEST_F(CmdLine, ListingModes) {
  const struct {
    std::vector<std::string> options;
    bool only, text, lines, comments, make, includes, macros, back_end;
  } rows[] = {
      {{}, false, false, false, false, false, false, false, true},
      {{"-E"}, true, true, true, false, false, false, false, false},
      {{"-P"}, true, true, false, false, false, false, false, false},
      {{"-E", "-P"}, true, true, false, false, false, false, false, false},
      {{"-C"}, true, true, false, true, false, false, false, false},
      {{"-EC"}, true, true, true, true, false, false, false, false},
      {{"-EM"}, true, false, true, false, true, false, false, false},
      {{"-ME"}, true, true, true, false, false, false, false, false},
      {{"-MH"}, true, false, false, false, false, true, false, false},
      {{"-H", "--list_macros"}, true, false, false, false, false, false, true, false},
      {{"-E", "--no_preproc_only"}, false, true, true, false, false, false, false, true},
      {{"--no_preproc_only"}, false, false, false, false, false, false, false, true},
      {{"-n"}, false, false, false, false, false, false, false, false},
      {{"-N"}, false, false, false, false, false, false, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.options));
    read(row.options);
    EXPECT_EQ(do_preprocessing_only, row.only);
    EXPECT_EQ(generate_pp_output, row.text);
    EXPECT_EQ(gen_line_info_in_pp_output, row.lines);
    EXPECT_EQ(keep_comments_in_pp_output, row.comments);
    EXPECT_EQ(list_makefile_dependencies, row.make);
    EXPECT_EQ(list_included_files, row.includes);
    EXPECT_EQ(list_macro_definitions, row.macros);
    EXPECT_EQ(!suppress_back_end, row.back_end);
    EXPECT_EQ(suppress_il_file_write, 1);
  }
}

// Each row that stores its value in a word is reached by its name.
TEST_F(CmdLine, RowsThatSetAWord) {
  std::map<std::string, int> names;
  std::set<char> letters;
  read({});
#define SETS(word_name) &(word_name)
#define NAMES(word_name) nullptr
#define DOES(action) nullptr
#define OPTION(code, name, short_name, takes, value, enabled, pch, effect)                         \
  {                                                                                                \
    EXPECT_EQ(names[name]++, 0) << name;                                                           \
    EXPECT_TRUE(short_name == 0 || letters.insert(short_name).second) << name;                     \
    if (a_boolean* word = effect) {                                                                \
      *word = -1;                                                                                  \
      process_option_word("--" name);                                                              \
      EXPECT_EQ(*word, value) << name;                                                             \
      EXPECT_TRUE(option_seen[code]) << name;                                                      \
    }                                                                                              \
  }
#include "cmd_line_options.def"
#undef OPTION
#undef SETS
#undef NAMES
#undef DOES
  EXPECT_EQ(names.size(), number_of_options);
  EXPECT_EQ(letters.size(), 34u);
}

TEST_F(CmdLine, ArgumentsReachTheirVariables) {
  read({"--mem_model:data=far",
        "--mem_model:const",
        "flat",
        "--mem_model:code=huge",
        "--size_speed_goal=high_risk_size",
        "--printf_support=minimal",
        "--float_operations_allowed=64",
        "--fp_mode=relaxed",
        "--version=3",
        "--abi=eabi",
        "--small_container_bitfield_layout",
        "--wchar_t_bits=16",
        "--visibility=hidden",
        "--dllexport_visibility=extern",
        "--align_structs=4",
        "--array_alignment=8",
        "--pending_instantiations",
        "9",
        "--c++",
        "-E"});
  EXPECT_EQ(targ_data_access_model, 2);
  EXPECT_EQ(targ_const_access_model, 6);
  EXPECT_EQ(targ_code_access_model, 7);
  EXPECT_EQ(targ_size_speed_goal, 5);
  EXPECT_EQ(printf_support, 2);
  EXPECT_EQ(legal_float_precision, 3);
  EXPECT_EQ(relaxed_fp, 1);
  EXPECT_EQ(targ_cpu_version, 3);
  EXPECT_EQ(TYPE_PKG_cpu_version, 3);
  EXPECT_EQ(is_eabi, 1);
  EXPECT_EQ(TYPE_PKG_abi, 1);
  EXPECT_EQ(targ_max_bit_field_size, 64);
  EXPECT_EQ(targ_unnamed_bit_field_affects_struct_alignment, 1);
  EXPECT_EQ(targ_bit_field_container_size, 0);
  EXPECT_EQ(targ_wchar_t_int_kind, 4);
  EXPECT_EQ(targ_sym_default_visibility, 3);
  EXPECT_EQ(targ_sym_export_visibility, 5);
  EXPECT_EQ(targ_minimum_struct_alignment, 4);
  EXPECT_EQ(targ_top_aryaln, 8);
  EXPECT_EQ(max_pending_instantiations, 9);
  EXPECT_EQ(instantiation_mode, im_used);
  EXPECT_EQ(automatic_instantiation_mode, 1);

  read({"--instantiate=local", "-E", "--set_flag=emulate_unsafe_gnu_abi_bugs",
        "--clear_flag=reuse_tail_padding"},
       "a.cpp");
  EXPECT_EQ(automatic_instantiation_mode, 0);
  EXPECT_EQ(emulate_gnu_abi_bugs, 1);
  EXPECT_EQ(reuse_tail_padding, 0);

  read({"--asmheaders", "--use_pch=p", "--pch_dir=.", "--no_pch_messages", "-n"});
  EXPECT_EQ(asm_header_mode, 1);
  EXPECT_EQ(remove_unneeded_entities, 0);
  EXPECT_EQ(precompiled_header_processing_required, 1);
  EXPECT_STREQ(pch_input_file_name, "p");
  EXPECT_STREQ(pch_dir_name, ".");
  EXPECT_EQ(suppress_pch_messages, 1);
}

TEST_F(CmdLine, MacrosKeepTheirOrder) {
  read({"-DA=1", "-U", "A", "--define_macro=A", "-UB"});
  std::string order;
  for (const a_def_undef* entry = defs_from_cmd_line; entry != nullptr; entry = entry->next)
    order += std::string(entry->is_undefine ? "-" : "+") + entry->text + " ";
  EXPECT_EQ(order, "+A=1 -A +A -B ");
}

TEST_F(CmdLine, RuleListsSetSeverities) {
  constexpr an_error_code ec_8_1 = 1383, ec_8_1_n = 1384, ec_19_14 = 1432, ec_12_6 = 1483;
  read({});
  EXPECT_TRUE(treat_as_none(ec_8_1) && treat_as_none(ec_19_14) && treat_as_none(ec_12_6));
  read({"--check_misra=required"});
  EXPECT_EQ(check_misra_c_2004, 1);
  EXPECT_TRUE(treat_as_warning(ec_8_1) && treat_as_warning(ec_8_1_n));
  EXPECT_TRUE(treat_as_none(ec_12_6));
  EXPECT_FALSE(treat_as_none(ec_19_14) || treat_as_warning(ec_19_14));
  read({"--misra_required=warning", "--misra_advisory=remark", "--check_misra=all,-8.1"});
  EXPECT_TRUE(treat_as_none(ec_8_1) && treat_as_none(ec_8_1_n));
  EXPECT_EQ(misra_advisory_severity, es_remark);
  EXPECT_FALSE(treat_as_none(ec_12_6) || treat_as_warning(ec_12_6));
  read({"--check_misra=all", "--misra_required=other"});
  EXPECT_TRUE(treat_as_none(ec_8_1));
  EXPECT_FALSE(treat_as_none(ec_19_14));

  constexpr an_error_code ec_polling = 1528, ec_division = 1530;
  read({"--advice:power=none,3-5", "--advice:power_severity=warning"});
  EXPECT_EQ(check_nrg, 1);
  EXPECT_TRUE(treat_as_warning(ec_polling) && treat_as_none(ec_division));
  EXPECT_TRUE(treat_as_none(1527));
  read({"--advice:power=all,-3.1", "--nrg_standalone_mode=iar"});
  EXPECT_TRUE(treat_as_none(ec_polling));
  EXPECT_FALSE(treat_as_none(1527));
  EXPECT_EQ(nrg_standalone + nrg_standalone_iar + nrg_standalone_gcc, 2);
}

TEST_F(CmdLine, OverridesRunOptionsWithoutDerivation) {
  read({"--embed_opts", "0", "--override_opts", "f", "1", "-x", "--c89"});
  OPT_OVERRIDE* entry = get_opt_override("f", nullptr);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->set_id, 1u);
  EXPECT_EQ(lookup_opt_override("g", false), nullptr);
  EXPECT_EQ(get_opt_override(nullptr, nullptr), nullptr);
  EXPECT_EQ(process_opt_override("g", nullptr), nullptr);
  lookup_opt_override("g", true)->front_end_word = "--c99";
  EXPECT_NE(process_opt_override("g", nullptr), nullptr);
  EXPECT_EQ(std_version, 199901);
  EXPECT_EQ(c99_complex_enabled, 0);
  lookup_opt_override("-", true)->set_id = 7;
  EXPECT_EQ(get_opt_override(nullptr, nullptr)->set_id, 7u);
}
