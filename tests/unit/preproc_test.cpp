// Directives: conditionals and their expressions, and the lines of files.

#include "scan_fixture.h"

class PreprocTest : public ScanTest {
protected:
  // Whether an #if expression is true; false also for a faulty one.
  bool truth(const std::string& expression) {
    return expand("#if " + expression + "\nyes\n#else\nno\n#endif\n") == "yes";
  }
};

TEST_F(PreprocTest, ExpressionsOfTheWidestType) {
  EXPECT_TRUE(truth("1 + 2 * 3 == 7 && (1 + 2) * 3 == 9"));
  EXPECT_TRUE(truth("-1 < 0 && -1 > 0u"));
  EXPECT_TRUE(truth("0xFFFFFFFF + 1 == 0x100000000"));
  EXPECT_TRUE(truth("~0u == 18446744073709551615u"));
  EXPECT_TRUE(truth("-9223372036854775807 - 1 < 0"));
  EXPECT_TRUE(truth("(2 || 1/0) && !(0 && 1/0) && (1 ? 2 : 1/0) == 2"));
  EXPECT_TRUE(truth("(0 ? -1 : 0u) - 1 > 0"));
  EXPECT_TRUE(truth("-8 >> 1 == -4 && 1 << 40 > 0 && 7 % 4 == 3 && -7 / 2 == -3"));
  EXPECT_TRUE(truth("'a' == 97 && '\\377' != 0 && (5 & 3 | 8 ^ 2) == 11"));
  EXPECT_TRUE(truth("1 ? 0 ? 2 : 3 : 4"));
  EXPECT_TRUE(truth("undefined_name == 0 && !int"));
  EXPECT_EQ(total_errors + total_warnings, 0u);
}

TEST_F(PreprocTest, FaultyExpressionsAreFalse) {
  struct {
    const char* expression;
    const char* message;
  } faults[] = {{"", "expected an expression"},
                {"1 +", "expected an expression"},
                {"(1", "expected a \")\""},
                {"1 / 0", "division by zero"},
                {"1 % 0", "modulo by zero"},
                {"1 = 1", "this operator is not allowed in a preprocessing expression"},
                {"1, 2", "this operator is not allowed in a preprocessing expression"},
                {"1.5", "expression must have integral type"},
                {"\"s\"", "expression must have integral type"},
                {"1 ? 2", "expected a \":\""},
                {"defined", "expected an identifier"},
                {"defined(x", "expected a \")\""},
                {"1 2", "extra text after expected end of preprocessing directive"}};
  for (const auto& fault : faults) {
    unsigned long before = total_errors;
    bool value = truth(fault.expression);
    EXPECT_EQ(value, std::string(fault.expression) == "1 2") << fault.expression;
    EXPECT_EQ(total_errors, before + 1) << fault.expression;
    EXPECT_TRUE(was_reported(fault.message)) << fault.expression;
  }
}

TEST_F(PreprocTest, DeepExpressionsEndWithAMessage) {
  EXPECT_TRUE(truth(std::string(200, '(') + "1" + std::string(200, ')')));
  EXPECT_EQ(total_errors, 0u);
  EXPECT_FALSE(truth(std::string(100000, '(') + "1" + std::string(100000, ')')));
  EXPECT_FALSE(truth(std::string(100000, '-') + "1"));
  EXPECT_EQ(total_errors, 2u);
}

TEST_F(PreprocTest, DefinedTakesItsOperandUnexpanded) {
  const std::string definitions = "#define A B\n#define D defined(A)\n#define D2 defined\n";
  EXPECT_EQ(expand(definitions + "#if defined A && defined ( A ) && !defined B && D && D2(A)\n"
                                 "yes\n#endif\n"),
            "yes");
  EXPECT_EQ(expand("#if defined(X) && X\n#elif defined __FILE__ && !defined defined\nyes\n"
                   "#endif\n"),
            "yes");
}

TEST_F(PreprocTest, GroupsAreChosen) {
  EXPECT_EQ(expand("#if 0\na\n#elif 1\nb\n#elif 1\nc\n#else\nd\n#endif\ne\n"), "b e");
  EXPECT_EQ(expand("#if 0\n#if 1\na\n#else\nb\n#endif\n#else\nc\n#endif\n"), "c");
  EXPECT_EQ(expand("#if 1\na\n#if 0\nb\n#else\nc\n#endif\n#else\nd\n#endif\n"), "a c");
  EXPECT_EQ(expand("#ifdef X\na\n#else\nb\n#endif\n#ifndef X\nc\n#endif\n"), "b c");
  EXPECT_EQ(expand("#if 1\n#elif 1/0\n#endif\n#if 0\n#elif (\n#else\n#endif\nx\n"), "x");
  EXPECT_EQ(total_errors, 1u);
}

TEST_F(PreprocTest, SkippedTextIsNotLookedAt) {
  EXPECT_EQ(expand("#if 0\ndon't \"open\n# 12 \"x\n#nonsense\n@ 09x /* #endif\n#else */ // #else\n"
                   "a # else\n#error no\n#include <none>\n#endif\nx\n"),
            "x");
  EXPECT_EQ(messages(), "");
}

TEST_F(PreprocTest, ConditionalsAreBalanced) {
  expand("#endif\n");
  EXPECT_TRUE(was_reported("the #if for this directive is missing"));
  expand("#if 1\n#else\n#else\n#endif\n");
  EXPECT_TRUE(was_reported("an #else has already appeared"));
  expand("#if 0\n#else\n#elif 1\n#endif\n");
  expand("\n#if 1\n#ifdef X\n");
  EXPECT_TRUE(was_reported("the #endif for this directive is missing"));
  EXPECT_TRUE(was_reported("line 3: error"));
  EXPECT_TRUE(was_reported("line 2: error"));
  EXPECT_EQ(total_errors, 5u);
}

TEST_F(PreprocTest, DeepConditionals) {
  std::string text;
  for (int i = 0; i < 20000; ++i)
    text += "#if 0\n";
  for (int i = 0; i < 20000; ++i)
    text += "#endif\n";
  EXPECT_EQ(expand(text + "x\n"), "x");
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(PreprocTest, ExtraTextAndOddOperands) {
  EXPECT_EQ(expand("#if 1\nx\n#else junk\n#endif junk\n#ifdef 123\ny\n#endif\n#ifdef\n#endif\n#\n"),
            "x");
  EXPECT_EQ(total_warnings, 3u);
  EXPECT_EQ(total_errors, 1u);
  expand("#nonsense\n#define\n#undef 1\n#line x\n#line 0\n#line 4294967296\n#line 3 x\n");
  EXPECT_EQ(total_errors, 8u);
}

TEST_F(PreprocTest, LineChangesWhatIsSeen) {
  EXPECT_EQ(expand("#line 100\n__LINE__\n#define N 7\n#line N \"x.h\"\n__LINE__ __FILE__\n"
                   "# 33 \"y.h\" 1\n__LINE__ __FILE__\n# 50 \"x.h\" 2\n__LINE__ __FILE__\n"),
            "100 7 \"x.h\" 33 \"y.h\" 50 \"x.h\"");
  expand("#line 200 \"z.c\"\n#warning  two  words // end\n");
  EXPECT_TRUE(was_reported("\"z.c\", line 200: warning: #warning directive: two  words // end"));
}

TEST_F(PreprocTest, CommentsAndSplicesInDirectives) {
  EXPECT_EQ(expand("#define A /* x\n y */ 1 \\\n 2 // z\n/* c */ # /* d */ define /* e\n*/ B 3\n"
                   "A B\n"),
            "1 2 3");
}
