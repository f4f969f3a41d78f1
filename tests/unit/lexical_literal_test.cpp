// Literals: raw strings, user-defined ones, joining, encodings, and the number
// of every fault.

#include "scan_fixture.h"

#include <functional>

class LiteralTest : public ScanTest {
protected:
  const a_constant& constant(const std::string& text) {
    open(text + "\n");
    get_token();
    return const_for_curr_token;
  }

  std::string bytes(const std::string& text) {
    const a_string_value& value = constant(text).value.string;
    return std::string(value.text, value.length);
  }

  // The text of a narrow string without its terminator.
  std::string narrow(const std::string& text) {
    std::string value = bytes(text);
    value.pop_back();
    return value;
  }
};

struct a_literal_fault {
  const char* text;
  unsigned errors;
  unsigned warnings;
  const char* message;
};

static void check_fault(LiteralTest* test, const a_literal_fault& fault,
                        const std::function<void()>& scan,
                        const std::function<bool(const char*)>& was_reported) {
  SCOPED_TRACE(fault.text);
  (void)test;
  total_errors = total_warnings = 0;
  scan();
  EXPECT_EQ(total_errors, fault.errors);
  EXPECT_EQ(total_warnings, fault.warnings);
  EXPECT_TRUE(was_reported(fault.message));
}

TEST_F(LiteralTest, FaultsOfNumbersAndCharacters) {
  uliterals_enabled = utf8_char_literals_enabled = 1;
  const a_literal_fault faults[] = {
      {"089", 1, 0, "invalid octal digit"},
      {"0b12", 1, 0, "invalid binary number"},
      {"0xg", 1, 0, "invalid hexadecimal number"},
      {"1lul", 1, 0, "invalid suffix on integral constant"},
      {"1LLL", 1, 0, "invalid suffix on integral constant"},
      {"1x", 1, 0, "extra text after expected end of number"},
      {"1.5q", 1, 0, "extra text after expected end of number"},
      {"0x1.8", 1, 0, "invalid floating constant"},
      {"0x1p", 1, 0, "invalid floating constant"},
      {"1e", 1, 0, "invalid floating constant"},
      {"99999999999999999999", 1, 0, "integer constant is too large"},
      {"9223372036854775808", 0, 1, "given unsigned long long type (nonstandard)"},
      {"'abcdef'", 0, 1, "too many characters in character constant"},
      {"L'ab'", 0, 1, "too many characters in character constant"},
      {"u8'\\u00e9'", 1, 0, "a UTF-8 character literal holds one byte only"},
      {"'\\400'", 1, 0, "character value is out of range"},
      {"u'\\x10000'", 1, 0, "character value is out of range"},
      {"'\\xg'", 1, 0, "invalid hexadecimal number"},
      {"'\\x123456789'", 1, 0, "character value is out of range"},
      {"L'\\x123456789'", 1, 0, "character value is out of range"},
      {"12uab", 1, 0, "invalid suffix on integral constant"},
      {"12ab", 1, 0, "extra text after expected end of number"},
      {"'\\z'", 0, 1, "unrecognized character escape sequence"},
      {"'\\u12'", 1, 0, "incorrectly formed universal character name"},
      {"'\\ud800'", 1, 0, "a universal character name must designate a valid code point"},
      {"'\\U00110000'", 1, 0, "a universal character name must designate a valid code point"},
      {"a\\u2028", 1, 0, "this universal character is not allowed in an identifier"},
      {"a\\uD800", 1, 0, "a universal character name must designate a valid code point"},
      {"L\"x\" u\"y\"", 1, 0, "narrow and wide string literals cannot be concatenated"},
      {"u8\"x\" L\"y\"", 1, 0, "narrow and wide string literals cannot be concatenated"},
  };
  for (const a_literal_fault& fault : faults)
    check_fault(
        this, fault, [&] { kinds(std::string(fault.text) + "\n"); },
        [&](const char* text) { return was_reported(text); });
}

TEST_F(LiteralTest, EscapedCharactersStandForThemselves) {
  multibyte_chars_in_source_enabled = null_chars_allowed_in_source = 1;
  EXPECT_EQ(narrow("\"\\\xc3\xa9\\q\""), "\xc3\xa9q");
  EXPECT_EQ(narrow(std::string("\"\\\0x\"", 5)), std::string("\0x", 2));
  EXPECT_EQ(total_errors, 0u);
  EXPECT_EQ(total_warnings, 3u);
}

TEST_F(LiteralTest, SeparatorsStandBetweenDigits) {
  digit_separators_enabled = 1;
  for (const char* good : {"1'0.0'1e1'0", "0x1'fp1'0", "0b1'0", "0'7", ".5'0"}) {
    SCOPED_TRACE(good);
    kinds(std::string(good) + "\n");
    EXPECT_EQ(total_errors, 0u);
  }
  for (const char* bad : {"1' ", "1''0", "0x'1", "0b'1", "1.'5", "1e'5", "1'u", "08'"}) {
    SCOPED_TRACE(bad);
    total_errors = 0;
    EXPECT_EQ(kinds(std::string(bad) + "\n").size(), 1u);
    EXPECT_NE(total_errors, 0u);
  }
  EXPECT_EQ(constant("0x'1'2").value.int_value, 0x12u);
}

TEST_F(LiteralTest, MisraChecksOfLiterals) {
  const struct {
    const char* text;
    unsigned reports;
  } cases[] = {{"0 00u 0x17 17 '\\0' '\\n'", 1},
               {"017 '\\12' '\\00' \"\\7\"", 4},
               {"'\\q'", 1},
               {"'\\x7'", 0}};
  check_misra_c_2004 = 1;
  an_error_severity saved_severity = misra_required_severity;
  misra_required_severity = es_warning;
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    total_warnings = 0;
    kinds(std::string(test.text) + "\n");
    EXPECT_EQ(total_warnings, test.reports);
  }
  kinds("#define f(x) x\nf(1\n#undef g\n)\n");
  EXPECT_TRUE(was_reported("tokens that look like preprocessing directives"));
  misra_required_severity = saved_severity;
  check_misra_c_2004 = 0;
}

TEST_F(LiteralTest, HexadecimalFloatsBeforeTheyWereAllowed) {
  set_cplusplus_modes(199711);
  strict_ansi_mode = 1;
  strict_ansi_error_severity = es_error;
  kinds("0x1p\n");
  EXPECT_EQ(total_errors, 1u);
  EXPECT_TRUE(was_reported("hexadecimal floating-point constants are not allowed"));
  strict_ansi_mode = 0;
  kinds("0x1p\n");
  EXPECT_TRUE(was_reported("invalid floating constant"));
}

TEST_F(LiteralTest, ConstantsInConditions) {
  const char* text = "#if 0xFFFFFFFF > -1 && 0xFFFFFFFFFFFFFFFF > 0 && -1 > 0u\nyes\n#endif\n";
  EXPECT_EQ(expand(text), "yes");
  EXPECT_EQ(expand("#if 0x8000000000000000 - 1 > 0\nyes\n#endif\n"), "yes");
  uliterals_enabled = 1;
  EXPECT_EQ(expand("#if u'a' - 98 > 0 && U'a' - 98 > 0 && 'a' - 98 < 0\nyes\n#endif\n"), "yes");
  EXPECT_EQ(expand("#if '\\377' < 0 && L'\\xffffffff' > 0\nyes\n#endif\n"),
            plain_char_int_kind == ik_signed_char ? "yes" : "");
  set_C_modes(199000);
  EXPECT_EQ(expand("#if 0xFFFFFFFF > -1 || L'\\xffffffff' < 0\nyes\n#else\nno\n#endif\n"), "no");
  set_cplusplus_modes(201103);
  EXPECT_EQ(expand("#if 'a'_x\n#endif\n"), "");
  EXPECT_NE(total_errors, 0u);
}

TEST_F(LiteralTest, RawStringsStandAsWritten) {
  set_cplusplus_modes(201103);
  const struct {
    const char* text;
    std::string value;
  } cases[] = {
      {"R\"(a\\n\"b)\"", "a\\n\"b"},
      {"R\"()\"", ""},
      {"R\"x())\")x\"", "))\""},
      {"R\"(a\nb)\"", "a\nb"},
      {"R\"(a\n\n\nb\\\n)\"", "a\n\n\nb\\\n"},
      {"R\"(a\\\n\\\nb)\"", "a\\\n\\\nb"},
      {"R\"(?\?= ?\?!)\"", "?\?= ?\?!"},
      {"R\"?\?=(x)?\?=\"", "x"},
      {"R\"(x)\\\n\")\"", "x)\\\n\""},
      {"R\"()a\n)aa)\"", ")a\n)aa"},
      {"R\"1234567890123456(y)1234567890123456\"", "y"},
      {"R\"a?\?(x)a?\?\"", "x"},
      {"R\"(?\?)\"", "?\?"},
      {"R\"(\\\n?\?=\\\n)\"", "\\\n?\?=\\\n"},
      {"R\"[#]<%>'(z)[#]<%>'\"", "z"},
      {"R\"(a)\" \"\\t\" R\"(\\t)\"", "a\t\\t"},
      {"u8R\"(\\)\"", "\\"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    EXPECT_EQ(narrow(test.text), test.value);
    EXPECT_EQ(get_token(), tok_end_of_source);
  }
  null_chars_allowed_in_source = 1;
  EXPECT_EQ(narrow(std::string("R\"(a\0?\?=\n\0b)\"", 14)), std::string("a\0?\?=\n\0b", 8));
  EXPECT_EQ(bytes("uR\"(a\n)\""), std::string("a\0\n\0\0\0", 6));
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(LiteralTest, TokensBehindRawStringsKeepTheirPlaces) {
  set_cplusplus_modes(201103);
  open("x R\"(a\n?\?=\\\nb)\" y ?\?= \\\n z\n");
  get_token();
  get_token();
  EXPECT_EQ(pos_curr_token.seq, 1u);
  EXPECT_EQ(pos_curr_token.column, 3);
  EXPECT_EQ(end_pos_curr_token.seq, 3u);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("y"));
  EXPECT_EQ(pos_curr_token.seq, 3u);
  EXPECT_EQ(pos_curr_token.column, 5);
  get_token();
  EXPECT_EQ(pos_curr_token.column, 7);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("z"));
  EXPECT_EQ(pos_curr_token.seq, 4u);
  EXPECT_EQ(pos_curr_token.column, 2);
}

TEST_F(LiteralTest, RawStringsInMacros) {
  set_cplusplus_modes(201103);
  EXPECT_EQ(narrow("#define I(x) x\nI(R\"(a,(\n?\?=)b)\")"), "a,(\n?\?=)b");
  EXPECT_EQ(narrow("#define Y R\"(p\\n\nq)\"\nY"), "p\\n\nq");
  EXPECT_EQ(narrow("#define S(x) #x\nS(R\"(a\nb)\")"), "R\"(a\nb)\"");
  EXPECT_EQ(expand("#define R 7\nR\"(R)\" R\n"), "R\"(R)\" 7");
  EXPECT_EQ(expand("#if 0\nR\"(\n#endif\n)\"\n#endif\nx\n"), "x");
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(LiteralTest, FaultsOfRawStrings) {
  set_cplusplus_modes(201103);
  EXPECT_EQ(narrow("R\"12345678901234567(x)\""), "12345678901234567(x)");
  EXPECT_TRUE(was_reported("raw string indicator ignored"));
  EXPECT_EQ(narrow("R\"a b(x)a b\""), "a b(x)a b");
  EXPECT_TRUE(was_reported("invalid character in raw string delimiter"));
  EXPECT_EQ(total_errors, 2u);
  EXPECT_EQ(kinds("x R\"ab(c)a\"\nd\n"), (std::vector<a_token_kind>{tok_identifier, tok_string}));
  EXPECT_TRUE(was_reported("ending delimiter for raw string not found"));
  EXPECT_EQ(total_errors, 3u);
  set_C_modes(201112);
  EXPECT_EQ(kinds("R\"(x)\"\n"), (std::vector<a_token_kind>{tok_identifier, tok_string}));
}

TEST_F(LiteralTest, EncodingsCombine) {
  multibyte_chars_in_source_enabled = uliterals_enabled = 1;
  EXPECT_EQ(bytes("u\"\xc3\xa9\\xe9\" \"x\""), std::string("\xe9\0\xe9\0x\0\0\0", 8));
  // The pieces before a wide one are converted with it.
  EXPECT_EQ(bytes("\"\xc3\xa9\\xe9\\u00e9\" u\"x\""), std::string("\xe9\0\xe9\0\xe9\0x\0\0\0", 10));
  EXPECT_EQ(bytes("\"\xf0\x9f\x98\x80\" u\"\""), std::string("\x3d\xd8\x00\xde\0\0", 6));
  EXPECT_EQ(bytes("u8\"\\u20ac\" \"y\""), std::string("\xe2\x82\xac"
                                                      "y\0",
                                                      5));
  EXPECT_EQ(total_errors, 0u);
  kinds("L\"\xff\"\n");
  EXPECT_TRUE(was_reported("invalid multibyte character sequence"));
  set_C_modes(199000);
  kinds("\"a\" L\"b\"\n");
  EXPECT_TRUE(was_reported("narrow and wide string literals cannot be concatenated"));
}

TEST_F(LiteralTest, UserDefinedLiterals) {
  set_cplusplus_modes(201103);
  EXPECT_EQ(constant("1'2").value.int_value, 1u);
  digit_separators_enabled = 1;
  EXPECT_EQ(constant("1'2_km").value.int_value, 12u);
  EXPECT_EQ(curr_token, tok_ud_literal);
  EXPECT_EQ(const_for_curr_token.type->variant.integer.int_kind, ik_unsigned_long_long);
  EXPECT_STREQ(const_with_curr_tok_spelling.value.string.text, "12");
  EXPECT_TRUE(was_reported("no literal operator \"_km\" matches"));
  EXPECT_EQ(constant("1.5_x").kind, con_float);
  EXPECT_EQ(curr_token, tok_ud_literal);
  EXPECT_EQ(const_for_curr_token.type->variant.float_kind, fk_long_double);
  EXPECT_EQ(narrow("\"a\"_s \"b\" \"c\"_s"), "abc");
  EXPECT_EQ(curr_token, tok_ud_literal);
  EXPECT_EQ(constant("'q'_c").value.int_value, 113u);
  EXPECT_EQ(curr_token, tok_ud_literal);
  EXPECT_EQ(kinds("12u 1.f 0x1uLL \"a\" _s\n"),
            (std::vector<a_token_kind>{tok_integer, tok_float_constant, tok_integer, tok_string,
                                       tok_identifier}));
  const a_literal_fault faults[] = {
      {"'ab'_c", 2, 0, "a user-defined literal may not have more than one character"},
      {"\"a\"_s \"b\"_t", 2, 0, "user-defined literal suffix does not match the earlier \"_s\""},
      {"\"a\"\\u2028", 1, 0, "non-identifier character in user-defined literal suffix"},
      {"12_a\\u2028", 2, 0, "non-identifier character in user-defined literal suffix"},
      {"#define _m 1\n\"a\"_m", 0, 1, "identifier is a macro and not a literal suffix"},
  };
  for (const a_literal_fault& fault : faults)
    check_fault(
        this, fault, [&] { kinds(std::string(fault.text) + "\n"); },
        [&](const char* text) { return was_reported(text); });
  EXPECT_EQ(expand("#define _m 1\n#define _n 2\n\"a\"_m 'b'_x 1_n\n"), "\"a\" 1 'b'_x 1_n");
  macro_preempts_udl_suffix = 0;
  EXPECT_EQ(expand("#define _m 1\n\"a\"_m\n"), "\"a\"_m");
  macro_preempts_udl_suffix = 1;
}

TEST_F(LiteralTest, CachedUserDefinedLiteralsComeBack) {
  set_cplusplus_modes(201103);
  open("\"a\"_s x\n");
  get_token();
  EXPECT_EQ(next_token(), tok_identifier);
  unget_token();
  EXPECT_EQ(get_token(), tok_ud_literal);
  EXPECT_STREQ(const_for_curr_token.value.string.text, "a");
  EXPECT_EQ(ud_lit_op_sym_for_curr_token, nullptr);
  EXPECT_EQ(total_errors, 1u);
}
