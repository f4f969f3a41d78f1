// Expansion of macros: the order of replacement, hiding, and the operators. The
// examples of the C standard (C99 6.10.3.5) stand as token sequences.

#include "scan_fixture.h"

class MacroTest : public ScanTest {};

TEST_F(MacroTest, StandardExample3) {
  const char* definitions = "#define x 3\n"
                            "#define f(a) f(x * (a))\n"
                            "#undef x\n"
                            "#define x 2\n"
                            "#define g f\n"
                            "#define z z[0]\n"
                            "#define h g(~\n"
                            "#define m(a) a(w)\n"
                            "#define w 0,1\n"
                            "#define t(a) a\n"
                            "#define p() int\n"
                            "#define q(x) x\n"
                            "#define r(x,y) x ## y\n"
                            "#define str(x) # x\n";
  EXPECT_EQ(
      expand_with_spacing(std::string(definitions) + "f(y+1) + f(f(z)) % t(t(g)(0) + t)(1);\n"),
      "f(2 * (y+1)) + f(2 * (f(2 * (z[0])))) % f(2 * (0)) + t(1);");
  EXPECT_EQ(expand(std::string(definitions) + "g(x+(3,4)-w) | h 5) & m\n\t(f)^m(m);\n"),
            "f ( 2 * ( 2 + ( 3 , 4 ) - 0 , 1 ) ) | f ( 2 * ( ~ 5 ) ) & f ( 2 * ( 0 , 1 ) ) ^ m ( "
            "0 , 1 ) ;");
  EXPECT_EQ(expand(std::string(definitions) + "p() i[q()] = { q(1), r(2,3), r(4,), r(,5), r(,) };\n"
                                              "char c[2][6] = { str(hello), str() };\n"),
            "int i [ ] = { 1 , 23 , 4 , 5 , } ; char c [ 2 ] [ 6 ] = { \"hello\" , \"\" } ;");
}

TEST_F(MacroTest, StandardExample4StringsAndPasting) {
  const char* definitions = "#define str(s) # s\n"
                            "#define xstr(s) str(s)\n"
                            "#define debug(s, t) printf(\"x\" # s \"= %d, x\" # t \"= %s\", \\\n"
                            "               x ## s, x ## t)\n"
                            "#define INCFILE(n) vers ## n\n"
                            "#define glue(a, b) a ## b\n"
                            "#define xglue(a, b) glue(a, b)\n"
                            "#define HIGHLOW \"hello\"\n"
                            "#define LOW LOW \", world\"\n";
  EXPECT_EQ(expand(std::string(definitions) + "debug(1, 2);\n"),
            "printf ( \"x\" \"1\" \"= %d, x\" \"2\" \"= %s\" , x1 , x2 ) ;");
  EXPECT_EQ(expand(std::string(definitions) +
                   "fputs(str(strncmp(\"abc\\0d\", \"abc\", '\\4') // this goes away\n"
                   "== 0) str(: @\\n), s);\n"),
            "fputs ( \"strncmp(\\\"abc\\\\0d\\\", \\\"abc\\\", '\\\\4') == 0\" \": @\\n\" , s ) ;");
  EXPECT_EQ(
      expand(std::string(definitions) + "xstr(INCFILE(2).h)\nglue(HIGH, LOW);\nxglue(HIGH, LOW)\n"),
      "\"vers2.h\" \"hello\" ; \"hello\" \", world\"");
}

TEST_F(MacroTest, StandardExample5Placemarkers) {
  EXPECT_EQ(expand("#define t(x,y,z) x ## y ## z\n"
                   "int j[] = { t(1,2,3), t(,4,5), t(6,,7), t(8,9,),\n"
                   "t(10,,), t(,11,), t(,,12), t(,,) };\n"),
            "int j [ ] = { 123 , 45 , 67 , 89 , 10 , 11 , 12 , } ;");
}

TEST_F(MacroTest, StandardExample2HashHashFromArgument) {
  EXPECT_EQ(expand("#define hash_hash # ## #\n"
                   "#define mkstr(a) # a\n"
                   "#define in_between(a) mkstr(a)\n"
                   "#define join(c, d) in_between(c hash_hash d)\n"
                   "char p[] = join(x, y);\n"),
            "char p [ ] = \"x ## y\" ;");
}

TEST_F(MacroTest, StandardExample6Redefinition) {
  expand("#define OBJ_LIKE (1-1)\n"
         "#define OBJ_LIKE /* white space */ (1-1) /* other */\n"
         "#define FUNC_LIKE(a) ( a )\n"
         "#define FUNC_LIKE( a )( /* note the white space */ \\\n"
         "        a /* other stuff on this line */ )\n");
  EXPECT_EQ(messages(), "");
  expand("#define OBJ_LIKE (1-1)\n#define OBJ_LIKE (0)\n");
  EXPECT_TRUE(was_reported("incompatible redefinition of macro"));
}

TEST_F(MacroTest, RedefinitionComparesParametersAndSpacing) {
  expand("#define F(a) ( a )\n#define F(b) ( b )\n");
  EXPECT_EQ(total_warnings, 1u);
  expand("#define F(a) (a)\n#define F(a) ( a )\n");
  EXPECT_EQ(total_warnings, 2u);
  expand("#define E() x\n#define E x\n");
  EXPECT_EQ(total_warnings, 3u);
}

TEST_F(MacroTest, StandardExample7Variadic) {
  EXPECT_EQ(expand("#define debug(...) fprintf(stderr, __VA_ARGS__)\n"
                   "#define showlist(...) puts(#__VA_ARGS__)\n"
                   "#define report(test, ...) ((test)?puts(#test):\\\n"
                   "               printf(__VA_ARGS__))\n"
                   "debug(\"Flag\"); debug(\"X = %d\\n\", x);\n"
                   "showlist(The first, second, and third items.);\n"
                   "report(x>y, \"x is %d but y is %d\", x, y);\n"),
            "fprintf ( stderr , \"Flag\" ) ; fprintf ( stderr , \"X = %d\\n\" , x ) ; "
            "puts ( \"The first, second, and third items.\" ) ; "
            "( ( x > y ) ? puts ( \"x>y\" ) : printf ( \"x is %d but y is %d\" , x , y ) ) ;");
}

TEST_F(MacroTest, NamesInTheirOwnExpansionStay) {
  EXPECT_EQ(expand("#define f(x) f(x)\nf(1) f(f(2))\n"), "f ( 1 ) f ( f ( 2 ) )");
  EXPECT_EQ(expand("#define a b\n#define b a\na b\n"), "a b");
  // The mark holds in a later rescanning by another macro.
  EXPECT_EQ(expand("#define f(x) x f\n#define call(g) g(7)\ncall(f(1))\n"), "1 f ( 7 )");
  EXPECT_EQ(expand("#define foo foo a\n#define id(x) x\nid(id(foo))\n"), "foo a");
}

TEST_F(MacroTest, RescanningReachesPastTheExpansion) {
  EXPECT_EQ(expand("#define f(x) [x]\n#define g f\ng(1) g (2) g\n(3)\n"), "[ 1 ] [ 2 ] [ 3 ]");
  EXPECT_EQ(expand("#define LP (\n#define f(x) [x]\n#define call f LP 1)\nf LP 1) call\n"),
            "f ( 1 ) f ( 1 )");
  EXPECT_EQ(expand("#define NIL(x) x\n#define G_0(arg) NIL(G_1)(arg)\n"
                   "#define G_1(arg) NIL(arg)\nG_0(42)\n"),
            "42");
}

TEST_F(MacroTest, FunctionLikeNameWithoutArgumentsStays) {
  EXPECT_EQ(expand("#define f(x) x\nf + f\n\n\n;\nf\n"), "f + f ; f");
  // What follows the name on the next line may be a directive.
  EXPECT_EQ(expand("#define f(x) x\nf\n#define y 1\ny f\n#undef y\n(2) y\n"), "f 1 f ( 2 ) y");
  EXPECT_EQ(expand("#define f(x) [x]\na f /* c\nd */ /* e */\n\n (1) b\n"), "a [ 1 ] b");
}

TEST_F(MacroTest, TokensOfAMovedNameKeepTheirPositions) {
  open("#define f(x) x\n  f\n\n ;\n");
  get_token();
  EXPECT_EQ(curr_token, tok_identifier);
  EXPECT_EQ(pos_curr_token.seq, 2u);
  EXPECT_EQ(pos_curr_token.column, 3);
  get_token();
  EXPECT_EQ(pos_curr_token.seq, 4u);
  EXPECT_EQ(pos_curr_token.column, 2);
}

TEST_F(MacroTest, ArgumentsSpanLinesAndDirectives) {
  EXPECT_EQ(expand("#define f(x, y) <x|y>\nf(1,\n\n2) f\n(\n3\n,\n4\n)\n"), "< 1 | 2 > < 3 | 4 >");
  EXPECT_EQ(expand("#define f(x) [x]\nf(1\n#if 1\n+ 2\n#else\n+ 3\n#endif\n)\n"), "[ 1 + 2 ]");
  EXPECT_EQ(expand("#define f(x) [x]\nf(A\n#define A 5\n)\n"), "[ 5 ]");
}

TEST_F(MacroTest, StringizingKeepsSpellingAndJoinsBlanks) {
  EXPECT_EQ(expand("#define s(x) #x\ns( a   b\t/**/c ) s(\"a\\n\" '\"' '\\0')\n"),
            "\"a b c\" \"\\\"a\\\\n\\\" '\\\"' '\\\\0'\"");
  EXPECT_EQ(expand("#define s(...) #__VA_ARGS__\n#define e\ns(e,e (,) )\n"), "\"e,e (,)\"");
}

TEST_F(MacroTest, ArgumentsOfPastingAndStringizingAreNotExpanded) {
  EXPECT_EQ(expand("#define A 1\n#define c(x,y) x##y x\n#define AA two\nc(A,A)\n"), "two 1");
  EXPECT_EQ(expand("#define EMPTY\n#define c(x,y) x##y\nc(EMPTY,1) c(,) c(a,)\n"), "EMPTY1 a");
}

TEST_F(MacroTest, GnuVariadicForms) {
  extended_variadic_macros_allowed = 1;
  const char* definitions = "#define e(fmt, args...) p(fmt, ## args)\n"
                            "#define v(fmt, ...) p(fmt , ## __VA_ARGS__)\n"
                            "#define A 1\n";
  EXPECT_EQ(expand(std::string(definitions) + "e(\"x\") e(\"x\",) e(\"x\",A,2) v(f) v(f,A)\n"),
            "p ( \"x\" ) p ( \"x\" , ) p ( \"x\" , 1 , 2 ) p ( f ) p ( f , 1 )");
}

TEST_F(MacroTest, NumbersOfArgumentsAreChecked) {
  EXPECT_EQ(expand("#define f(x,y) <x y>\nf(1)\n"), "< 1 >");
  EXPECT_TRUE(was_reported("too few arguments in invocation of macro"));
  EXPECT_EQ(expand("#define f(x,y) <x y>\nf(1,2,3)\n"), "< 1 2 >");
  EXPECT_TRUE(was_reported("too many arguments in invocation of macro"));
  EXPECT_EQ(total_errors, 2u);
  EXPECT_EQ(expand("#define n() n\n#define o(x) [x]\nn() n( ) o() o( )\n"), "n n [ ] [ ]");
  EXPECT_EQ(total_errors, 2u);
}

TEST_F(MacroTest, UnterminatedCallIsReportedAtItsName) {
  expand("#define f(x) x\nint a;\n  f(1, (2)\n");
  EXPECT_TRUE(was_reported("line 3: error"));
  EXPECT_TRUE(was_reported("expected a \")\""));
}

TEST_F(MacroTest, PastedTokensAreScannedAnew) {
  EXPECT_EQ(expand("#define c(a,b) a##b\nc(+,=) c(<<,=) c(.,5) c(1,e5) c(L,'x') c(c,)(d,e)\n"),
            "+= <<= .5 1e5 L'x' c ( d , e )");
  // Two slashes begin no comment.
  EXPECT_EQ(expand("#define c(a,b) a##b\nc(/,/) x\n"), "/ / x");
  check_concatenations = 1;
  expand("#define c(a,b) a##b\nc(x,+) c(x,y) c(,+)\n");
  EXPECT_TRUE(was_reported("does not create a valid token"));
  EXPECT_EQ(total_warnings, 1u);
}

TEST_F(MacroTest, NeighboursDontFuse) {
  EXPECT_EQ(expand("#define m(x) -x\nm(-1) m(m(1)) +m(+)\n"), "- - 1 - - 1 + - +");
  EXPECT_EQ(expand("#define e\n#define i(x) x\n+i(+) x/e/y\n"), "+ + x / / y");
}

TEST_F(MacroTest, NestedArgumentsAreExpandedToALimit) {
  std::string call = "1";
  for (int i = 0; i < 600; ++i)
    call = "f(" + call + ")";
  EXPECT_EQ(expand("#define f(x) x\n" + call + "\n"), "1");
  for (int i = 0; i < 400; ++i)
    call = "f(" + call + ")";
  expand("#define f(x) x\n" + call + "\n");
  EXPECT_TRUE(was_reported("macro recursion"));
}

TEST_F(MacroTest, ManyArguments) {
  std::string params;
  std::string args;
  std::string body;
  std::string expected;
  for (int i = 0; i < 120; ++i) {
    std::string comma = i != 0 ? "," : "";
    params += comma + "p" + std::to_string(i);
    args += comma + std::to_string(i);
    body = "p" + std::to_string(i) + " " + body;
    expected = std::to_string(i) + (i != 0 ? " " : "") + expected;
  }
  EXPECT_EQ(expand("#define f(" + params + ") " + body + "\nf(" + args + ")\n"), expected);
}

TEST_F(MacroTest, FaultyDefinitionsChangeNothing) {
  EXPECT_EQ(expand("#define M 1\n#undef M\n#define M 2\n#define M() ## x\nM\n"), "2");
  EXPECT_TRUE(was_reported("\"##\" may not be first in a macro definition"));
  expand("#define M x ##\n");
  EXPECT_TRUE(was_reported("\"##\" may not be last in a macro definition"));
  expand("#define M(a,a) x\n");
  EXPECT_TRUE(was_reported("duplicate macro parameter name"));
  expand("#define M(a) #b\n");
  EXPECT_TRUE(was_reported("expected a macro parameter name"));
  expand("#define 3 x\n");
  EXPECT_TRUE(was_reported("expected an identifier"));
  expand("#define M(a x\n");
  EXPECT_EQ(total_errors, 6u);
}

TEST_F(MacroTest, VaArgsStandsOnlyInVariadicMacros) {
  expand("#define __VA_ARGS__ 1\n");
  EXPECT_EQ(total_errors, 1u);
  expand("#define f(x) __VA_ARGS__\n");
  EXPECT_EQ(total_errors, 2u);
  expand("#define f(__VA_ARGS__) 1\n");
  EXPECT_EQ(total_errors, 3u);
}

TEST_F(MacroTest, PlacesAndPredefinedMacros) {
  EXPECT_EQ(expand("__LINE__\n#define L __LINE__\n#define id(x) x\nL id(\n__LINE__) __COUNTER__ "
                   "__COUNTER__\n"),
            "1 4 4 0 1");
  EXPECT_EQ(expand("__FILE__\n#line 7 \"a\\\\b.c\"\n__FILE__ __LINE__\n"),
            '"' + file_name + "\" \"a\\\\b.c\" 7");
  EXPECT_EQ(expand("__DATE__ __TIME__ __STDC__ __STDC_VERSION__ __KRT__\n"),
            "\"Nov 24 2026\" \"17:07:19\" 1 199901L 1");
  expand("#define __STDC__ 2\n");
  EXPECT_TRUE(was_reported("is predefined; attempted redefinition ignored"));
  expand("#undef __FILE__\n");
  EXPECT_TRUE(was_reported("#undef may not be used on this predefined name"));
}

TEST_F(MacroTest, ReproducibleDate) {
  setenv("SOURCE_DATE_EPOCH", "86400", 1);
  EXPECT_EQ(expand("__DATE__ __TIME__\n"), "\"Jan  2 1970\" \"00:00:00\"");
  unsetenv("SOURCE_DATE_EPOCH");
}

TEST_F(MacroTest, CommandLineDefinitions) {
  a_def_undef value = {nullptr, "V=a  b", false};
  a_def_undef plain = {&value, "P", false};
  a_def_undef function = {&plain, "F(x)=x x", false};
  a_def_undef undefined = {&function, "P", true};
  defs_from_cmd_line = &undefined;
  EXPECT_EQ(expand("P V F(1)\n"), "1 a b 1 1");
  defs_from_cmd_line = nullptr;
}

TEST_F(MacroTest, PushAndPopMacro) {
  EXPECT_EQ(expand("#define M 1\n#pragma push_macro(\"M\")\n#undef M\n#define M 2\nM\n"
                   "#pragma pop_macro(\"M\")\nM\n"),
            "2 1");
}

TEST_F(MacroTest, PragmaOperatorIsAPragma) {
  EXPECT_EQ(kinds("#define M 1\n#define SAVE(x) _Pragma(x) int\n"
                  "SAVE(\"push_macro(\\\"M\\\")\") a;\n#undef M\n#define M 2\n"
                  "_Pragma(\"pop_macro(\\\"M\\\")\") M;\n"),
            (std::vector<a_token_kind>{tok_int, tok_identifier, tok_semicolon, tok_integer,
                                       tok_semicolon}));
  EXPECT_EQ(const_for_curr_token.value.int_value, 1u);
  kinds("_Pragma(\"no such pragma\")\n");
  EXPECT_TRUE(was_reported("unrecognized #pragma"));
}
