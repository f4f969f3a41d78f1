// The processor's shape, the conditions of builtin names, and visibilities.

#include "target.h"

#include <gtest/gtest.h>

#include "builtin_condition.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "types.h"

namespace {

class Target : public testing::Test {
protected:
  void SetUp() override {
    target_early_init();
    target_one_time_init();
    mem_manage_early_init();
    builtin_condition_one_time_init();
  }
  void TearDown() override {
    gnu_mode = clang_mode = 0;
    gnu_version = clang_version = 0;
    C_dialect = cd_cplusplus;
    import_undef = 0;
    target_early_init();
  }
};

TEST_F(Target, ShapeOfTheProcessor) {
  EXPECT_EQ(targ_sizeof_long, targ_sizeof_int);
  EXPECT_EQ(targ_sizeof_long_double, targ_sizeof_double);
  EXPECT_EQ(targ_sizeof_wchar_t, 4);
  EXPECT_EQ(targ_sizeof_char16_t, 2);
  EXPECT_EQ(targ_sizeof_char32_t, 4);
  const int sizes[] = {1, 4, 2, 4};
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(character_size[i], sizes[i]);
  EXPECT_EQ(targ_sizeof_largest_integer, 8);
  EXPECT_EQ(find_target_configuration("any"), -1);
}

TEST_F(Target, InitialisationFollowsTheDialect) {
  targ_max_class_object_size = 0;
  targ_delta_int_kind = ik_short;
  C_dialect = cd_k_and_r;
  target_init();
  EXPECT_EQ(plain_char_int_kind, ik_unsigned_char);
  EXPECT_FALSE(string_literals_shared);
  EXPECT_EQ(targ_max_class_object_size, targ_size_t_max);
  EXPECT_EQ(targ_max_base_class_offset, 0x7fffu);
  targ_has_signed_chars = 1;
  target_init();
  EXPECT_EQ(plain_char_int_kind, ik_signed_char);
  C_dialect = cd_ansi_c;
  target_init();
  EXPECT_EQ(plain_char_int_kind, ik_char);
  EXPECT_TRUE(string_literals_shared);
}

TEST_F(Target, Conditions) {
  struct a_row {
    const char* text;
    bool gnu, gnu_cpp, clang, plain;
  };
  // GNU C 4.8, GNU C++ 4.8, clang C 3.4, no GNU mode.
  const a_row rows[] = {
      {"QL", true, true, true, true},
      {"QLX", false, false, false, false},
      {nullptr, true, true, true, false},
      {"gx", true, true, false, false},
      {"gc", true, false, false, false},
      {"g+", false, true, false, false},
      {"Lx", false, false, true, false},
      {"mx", false, false, false, false},
      {"gx8", false, false, false, false},
      {"gx4", true, true, false, false},
      {"gx(40800-)", true, true, false, false},
      {"gx(-40799)", false, false, false, false},
      {"gx(30000-40800)", true, true, false, false},
      {"gx(40801-)Lx(-30400)", false, false, true, false},
      {"Sgc[text]g+(50000-)", true, false, false, false},
      {"gx(40801-)[one]Lx(30401-)[two]", false, false, false, false},
      {"", false, false, false, false},
      {"g", false, false, false, false},
  };
  const auto mode = [&](int gnu, int clang, int dialect, bool a_row::*expected) {
    gnu_mode = gnu;
    clang_mode = clang;
    gnu_version = 40800;
    clang_version = 30400;
    C_dialect = dialect;
    builtin_condition_one_time_init();
    for (const a_row& row : rows)
      for (int i = 0; i < 2; ++i) // the second time from the table
        EXPECT_EQ(builtin_condition_holds(row.text), row.*expected)
            << (row.text == nullptr ? "none" : row.text) << " " << gnu << clang << dialect;
  };
  mode(1, 0, cd_ansi_c, &a_row::gnu);
  mode(1, 0, cd_cplusplus, &a_row::gnu_cpp);
  mode(1, 1, cd_ansi_c, &a_row::clang);
  mode(0, 0, cd_ansi_c, &a_row::plain);
}

TEST_F(Target, Visibilities) {
  const char* const names[] = {"default", "protected", "hidden", "internal", "extern"};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(string_to_symbol_visibility(names[i]), i + 1);
    EXPECT_STREQ(symbol_visibility_to_string(i + 1), names[i]);
  }
  EXPECT_EQ(string_to_symbol_visibility("other"), 0);
  EXPECT_EQ(symbol_visibility_to_string(0), nullptr);
  EXPECT_EQ(symbol_visibility_to_string(6), nullptr);
  targ_sym_default_visibility = 3;
  EXPECT_EQ(canonical_symbol_visibility(0, 0, true, 0), 3);
  EXPECT_EQ(canonical_symbol_visibility(1, 0, true, 0), 5);
  EXPECT_EQ(canonical_symbol_visibility(2, 0, true, 0), 2);
  EXPECT_EQ(canonical_symbol_visibility(3, 0, true, 0), 5);
  import_undef = 1;
  EXPECT_EQ(canonical_symbol_visibility(0, 0, false, 0), 5);
  EXPECT_EQ(canonical_symbol_visibility(0, 0, true, 0), 3);
}

} // namespace
