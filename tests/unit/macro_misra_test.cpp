// The MISRA-C:2004 rules about the definitions of macros: each row is a
// definition and the rules that it breaks. And the rule about `defined`.

#include "scan_fixture.h"

#include "mode_words.h"

class MacroMisraTest : public ScanTest {
protected:
  void TearDown() override {
    check_misra_c_2004 = 0;
    ScanTest::TearDown();
  }

  std::string broken_rules(const std::string& definition) {
    return rules_broken_by("#define " + definition + "\n");
  }

  std::string rules_broken_by(const std::string& source) {
    check_misra_c_2004 = 1;
    fclose(diagnostics);
    f_error = diagnostics = tmpfile();
    expand(source);
    std::string text = messages();
    std::string rules;
    for (size_t at = 0; (at = text.find("MISRA-C:2004 ", at)) != std::string::npos;) {
      at += 13;
      rules += (rules.empty() ? "" : " ") + text.substr(at, text.find('/', at) - at);
    }
    return rules;
  }
};

TEST_F(MacroMisraTest, FormsOfReplacementLists) {
  const char* const allowed[] = {"M",
                                 "M 1",
                                 "M 'c'",
                                 "M \"a\"",
                                 "M \"a\" \"b\"",
                                 "M (a + (b))",
                                 "M { 1, 2 }",
                                 "M static const",
                                 "M do { a; } while (0)"};
  for (const char* definition : allowed)
    EXPECT_EQ(broken_rules(definition), "") << definition;
  const char* const refused[] = {
      "M a",   "M (a) + (b)",           "M -1",        "M { a } { b }", "M if (a)",
      "M 1 2", "M do { a; } while (1)", "M do { a; }", "M static int"};
  for (const char* definition : refused)
    EXPECT_EQ(broken_rules(definition), "19.4") << definition;
}

TEST_F(MacroMisraTest, ParametersAndOperators) {
  EXPECT_EQ(broken_rules("M(a) ((a) + 1)"), "19.7");
  EXPECT_EQ(broken_rules("M(a) (a + 1)"), "19.7 19.10");
  EXPECT_EQ(broken_rules("M(a) (1 + a)"), "19.7 19.10");
  EXPECT_EQ(broken_rules("M(a) (#a)"), "19.7 19.13");
  EXPECT_EQ(broken_rules("M(a, b) (a ## b)"), "19.7 19.13");
  EXPECT_EQ(broken_rules("M(a, b) (a ## b ## 1)"), "19.7 19.12 19.13");
}

TEST_F(MacroMisraTest, FormsOfDefined) {
  EXPECT_EQ(rules_broken_by("#if defined A || defined(B) || !defined ( C )\n#endif\n"), "");
  EXPECT_EQ(rules_broken_by("#if defined\n#endif\n"), "19.14");
  EXPECT_EQ(rules_broken_by("#if defined(A\n#endif\n"), "19.14");
  EXPECT_EQ(rules_broken_by("#define HAS (defined A)\n#if HAS\n#endif\n"), "19.14");
}
