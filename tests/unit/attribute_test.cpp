// The table of attributes by form and version, and the forms that no option
// turns on.

#include "scan_fixture.h"

#include "attribute_int.h"

#include <cstring>

namespace {

struct a_row_case {
  int std_version, gnu_version;
  bool is_cplusplus, is_clang;
  const char* name;
  uint8_t form;
  const char* namespace_name;
  bool is_found;
};

} // namespace

class AttributeTest : public ScanTest {
protected:
  void SetUp() override {
    ScanTest::SetUp();
    static bool started;
    if (!started)
      attribute_one_time_init();
    started = true;
    attribute_init();
  }

  // The attributes of the text as "name", with "!" for a dropped one.
  std::string read(const std::string& text) {
    open(text + "\n");
    push_stop_token_stack();
    get_token();
    std::string result;
    for (const an_attribute* a = scan_attributes(al_specifiers); a != nullptr; a = a->next)
      result +=
          std::string(a->name == nullptr ? "" : a->name) + (a->kind == attrk_dropped ? "! " : " ");
    result += token_names[curr_token];
    pop_stop_token_stack();
    return result;
  }
};

TEST_F(AttributeTest, RowsHoldForTheirFormLanguageAndVersion) {
  const a_row_case cases[] = {
      {201103, 40800, true, false, "deprecated", af_std, nullptr, false},
      {201402, 40800, true, false, "deprecated", af_std, nullptr, true},
      {201402, 40800, false, false, "deprecated", af_std, nullptr, false},
      {201402, 40800, true, false, "deprecated", af_std, "QL", false},
      {201402, 40800, true, false, "unroll", af_std, "QL", true},
      {201402, 40800, true, false, "unroll", af_std, nullptr, false},
      {199901, 30099, false, false, "deprecated", af_gnu, nullptr, false},
      {199901, 30100, false, false, "deprecated", af_gnu, nullptr, true},
      {199901, 40800, false, false, "transparent_union", af_gnu, nullptr, true},
      {199901, 40800, true, false, "transparent_union", af_gnu, nullptr, false},
      {199901, 40800, false, false, "init_priority", af_gnu, nullptr, false},
      {201402, 40800, true, false, "nodiscard", af_std, nullptr, false},
      {201701, 40800, true, false, "nodiscard", af_std, nullptr, true},
      {199901, 40800, false, false, "enable_if", af_gnu, nullptr, false},
      {199901, 40800, false, true, "enable_if", af_gnu, nullptr, true},
      {199901, 40800, false, false, "dllexport", af_declspec, nullptr, true},
      {199901, 40800, false, false, "dllexport", af_gnu, nullptr, false},
      {199901, 40800, false, false, "nonnull", af_gnu, nullptr, false},
      {199901, 40800, false, false, "pack", af_gnu, nullptr, false},
  };
  for (const a_row_case& c : cases) {
    C_dialect = c.is_cplusplus ? cd_cplusplus : cd_ansi_c;
    std_version = c.std_version;
    gnu_version = c.gnu_version;
    clang_mode = c.is_clang;
    clang_version = 30500;
    EXPECT_EQ(find_attribute_row(c.name, strlen(c.name), c.form, c.namespace_name) != nullptr,
              c.is_found)
        << c.name << " in form " << int{c.form} << ", " << c.std_version << ", " << c.gnu_version;
  }
}

TEST_F(AttributeTest, DeclspecsNeedNoCommas) {
  ms_declspec_attributes_enabled = 1;
  EXPECT_EQ(read("__declspec(dllexport notshared, dllimport) int"),
            "dllexport notshared dllimport int");
  EXPECT_EQ(total_errors, 0u);
  EXPECT_EQ(read("__declspec(nowhere(1) dllexport) int"), "nowhere! dllexport int");
  EXPECT_EQ(total_errors, 1u);
  ms_declspec_attributes_enabled = 0;
}

TEST_F(AttributeTest, PrefixHoldsForTheWholeList) {
  set_cplusplus_modes(201103);
  std_attributes_enabled = using_attribute_namespaces_enabled = 1;
  EXPECT_EQ(read("[[using QL: unroll(2), unknown]] int"), " unroll unknown! int");
  EXPECT_EQ(total_errors, 0u);
  EXPECT_EQ(read("[[using QL: QL::unroll(2)]] int"), " unroll int");
  EXPECT_EQ(total_errors, 1u);
  std_attributes_enabled = using_attribute_namespaces_enabled = 0;
}

TEST_F(AttributeTest, HandedBackListComesFirst) {
  set_C_modes(199901);
  gnu_mode = gnu_attributes_enabled = 1;
  lexical_one_time_init();
  open("__attribute__((packed)) __attribute__((unused)) int\n");
  push_stop_token_stack();
  get_token();
  an_attribute* list = scan_attributes(al_statement);
  unscan_attributes(list);
  EXPECT_EQ(scan_attributes(al_specifiers), list);
  EXPECT_EQ(list->location, al_specifiers);
  EXPECT_EQ(scan_attributes(al_specifiers), nullptr);
  EXPECT_EQ(curr_token, tok_int);
  pop_stop_token_stack();
  gnu_mode = gnu_attributes_enabled = 0;
}
