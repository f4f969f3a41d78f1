// The scanner: kinds, values and positions of tokens, and the streams of saved
// tokens.

#include "float_pt.h"
#include "scan_fixture.h"

typedef std::vector<a_token_kind> a_kind_list;

class LexicalTest : public ScanTest {
protected:
  // The one constant of a text.
  const a_constant& constant(const std::string& text) {
    open(text + "\n");
    get_token();
    return const_for_curr_token;
  }

  an_integer_kind int_kind(const std::string& text) {
    return constant(text).type->variant.integer.int_kind;
  }

  std::string string_value(const std::string& text) {
    const a_string_value& value = constant(text).value.string;
    return std::string(value.text, value.length);
  }
};

TEST_F(LexicalTest, PunctuationTakesTheLongestMatch) {
  EXPECT_EQ(kinds("a+++b--->c<<=>>=...<= > ==!=&&=||^=%=/=\n"), (a_kind_list{tok_identifier,
                                                                             tok_plus_plus,
                                                                             tok_plus,
                                                                             tok_identifier,
                                                                             tok_minus_minus,
                                                                             tok_arrow,
                                                                             tok_identifier,
                                                                             tok_shift_left_assign,
                                                                             tok_shift_right_assign,
                                                                             tok_ellipsis,
                                                                             tok_le,
                                                                             tok_gt,
                                                                             tok_eq,
                                                                             tok_ne,
                                                                             tok_and_and,
                                                                             tok_assign,
                                                                             tok_or_or,
                                                                             tok_excl_or_assign,
                                                                             tok_remainder_assign,
                                                                             tok_divide_assign}));
  EXPECT_EQ(kinds("a::b .* ->* ..\n"),
            (a_kind_list{tok_identifier, tok_colon, tok_colon, tok_identifier, tok_period, tok_star,
                         tok_arrow, tok_star, tok_period, tok_period}));
}

TEST_F(LexicalTest, AlternativeTokens) {
  EXPECT_EQ(kinds("<: :> <% %>\n%:define X 1\nX\n"),
            (a_kind_list{tok_lbracket, tok_rbracket, tok_lbrace, tok_rbrace, tok_integer}));
  alternative_tokens_allowed = 0;
  EXPECT_EQ(kinds("<:\n"), (a_kind_list{tok_lt, tok_colon}));
}

TEST_F(LexicalTest, KeywordsFollowTheDialect) {
  EXPECT_EQ(
      kinds("int inline restrict _Generic bool asm\n"),
      (a_kind_list{tok_int, tok_inline, tok_restrict, tok_identifier, tok_identifier, tok_asm}));
}

TEST_F(LexicalTest, TypesOfIntegerConstants) {
  EXPECT_EQ(int_kind("2147483647"), ik_int);
  EXPECT_EQ(int_kind("2147483648"), ik_long_long);
  EXPECT_EQ(int_kind("0x80000000"), ik_unsigned_int);
  EXPECT_EQ(int_kind("1l"), ik_long);
  EXPECT_EQ(int_kind("1LU"), ik_unsigned_long);
  EXPECT_EQ(int_kind("1uLL"), ik_unsigned_long_long);
  EXPECT_EQ(int_kind("0xFFFFFFFFFFFFFFFF"), ik_unsigned_long_long);
  EXPECT_EQ(int_kind("9223372036854775807"), ik_long_long);
  EXPECT_EQ(total_warnings, 0u);
  EXPECT_EQ(int_kind("9223372036854775808"), ik_unsigned_long_long);
  EXPECT_EQ(total_warnings, 1u);
  set_C_modes(199000);
  EXPECT_EQ(int_kind("2147483648"), ik_unsigned_long);
}

TEST_F(LexicalTest, ValuesOfIntegerConstants) {
  EXPECT_EQ(constant("0755").value.int_value, 493u);
  EXPECT_EQ(constant("0xDeadBeef").value.int_value, 0xDEADBEEFu);
  EXPECT_EQ(constant("0b101").value.int_value, 5u);
  EXPECT_EQ(constant("18446744073709551615u").value.int_value, UINT64_MAX);
  EXPECT_EQ(total_errors, 0u);
  constant("18446744073709551616");
  EXPECT_TRUE(was_reported("integer constant is too large"));
  constant("089");
  constant("0x");
  constant("12abc");
  constant("1ulu");
  EXPECT_EQ(total_errors, 5u);
  EXPECT_TRUE(was_reported("extra text after expected end of number"));
  EXPECT_TRUE(was_reported("invalid suffix on integral constant"));
}

TEST_F(LexicalTest, DigitSeparators) {
  digit_separators_enabled = 1;
  EXPECT_EQ(constant("1'000'000").value.int_value, 1000000u);
  EXPECT_EQ(total_errors, 0u);
  constant("1' ");
  EXPECT_TRUE(was_reported("digit separator cannot appear here"));
  digit_separators_enabled = 0;
  EXPECT_EQ(kinds("1'000'\n"), (a_kind_list{tok_integer, tok_char_constant}));
  EXPECT_TRUE(was_reported("digit separators not enabled"));
}

TEST_F(LexicalTest, FloatConstants) {
  EXPECT_EQ(kinds("1.5 .5f 1e10 0x1.8p3 1.L\n"), a_kind_list(5, tok_float_constant));
  const a_constant& value = constant("0x1.8p3");
  EXPECT_EQ(value.kind, con_float);
  EXPECT_EQ(fetch_host_fp_value(&value.value.float_value), 12.0);
  EXPECT_EQ(total_errors, 0u);
  constant("1e+");
  EXPECT_TRUE(was_reported("invalid floating constant"));
  constant("1e9999");
  EXPECT_TRUE(was_reported("floating constant is out of range"));
  kinds("0x1.\n");
  EXPECT_EQ(total_errors, 3u);
}

TEST_F(LexicalTest, CharacterConstants) {
  EXPECT_EQ(constant("'a'").value.int_value, 97u);
  EXPECT_EQ(int_kind("'a'"), ik_int);
  EXPECT_EQ(constant("'\\n'").value.int_value, 10u);
  EXPECT_EQ(constant("'\\''").value.int_value, 39u);
  EXPECT_EQ(constant("'\\101'").value.int_value, 65u);
  EXPECT_EQ(constant("'\\x41'").value.int_value, 65u);
  EXPECT_EQ(constant("'ab'").value.int_value, 0x6162u);
  EXPECT_EQ(constant("L'\\x1234'").value.int_value, 0x1234u);
  EXPECT_EQ(total_errors, 0u);
  constant("''");
  EXPECT_TRUE(was_reported("quoted string should contain at least one character"));
  constant("'abcde'");
  EXPECT_TRUE(was_reported("too many characters in character constant"));
  constant("'\\x1ff'");
  EXPECT_TRUE(was_reported("character value is out of range"));
  constant("'\\q'");
  EXPECT_TRUE(was_reported("unrecognized character escape sequence"));
  constant("'a");
  EXPECT_TRUE(was_reported("missing closing quote"));
}

TEST_F(LexicalTest, StringsAreJoined) {
  EXPECT_EQ(string_value("\"a\\tb\" \"\\x1\"\n \"23\" x"), std::string("a\tb\x01"
                                                                       "23\0",
                                                                       7));
  EXPECT_EQ(string_value("L\"a\" \"b\""), std::string("a\0\0\0b\0\0\0\0\0\0\0", 12));
  EXPECT_EQ(string_value("\"a\" L\"b\""), std::string("a\0\0\0b\0\0\0\0\0\0\0", 12));
  EXPECT_EQ(kinds("#define S \"m\"\n\"a\" S \"b\" x \"c\" ;\n\"d\"\n#define T\nT \"e\"\ny\n"),
            (a_kind_list{tok_string, tok_identifier, tok_string, tok_semicolon, tok_string,
                         tok_identifier}));
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(LexicalTest, TokenBehindStringsIsWhole) {
  open("\"a\"\n\"b\"\n  foo(7)\n");
  get_token();
  EXPECT_EQ(pos_curr_token.seq, 1u);
  EXPECT_EQ(end_pos_curr_token.seq, 2u);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("foo"));
  EXPECT_EQ(pos_curr_token.seq, 3u);
  EXPECT_EQ(pos_curr_token.column, 3);
  EXPECT_EQ(get_token(), tok_lparen);
}

TEST_F(LexicalTest, UniversalCharacterNames) {
  open("a\\u00e9b \\u0300x\n");
  get_token();
  EXPECT_STREQ(locator_for_curr_id.header->identifier, "a\\u00E9b");
  get_token();
  EXPECT_TRUE(was_reported("this universal character cannot begin an identifier"));
  EXPECT_EQ(string_value("\"\\u00e9\""), std::string("\xc3\xa9\0", 3));
}

TEST_F(LexicalTest, CommentsAreWhiteSpace) {
  EXPECT_EQ(kinds("a/**/b// c \\\n d\n/*\n*/#define X 1\nX /* X\n */ X\n"),
            (a_kind_list{tok_identifier, tok_identifier, tok_integer, tok_integer}));
  EXPECT_EQ(total_errors, 0u);
  kinds("a /* /* */\n");
  EXPECT_TRUE(was_reported("nested comment is not allowed"));
  kinds("x\n  /* y\n");
  EXPECT_TRUE(was_reported("line 2: error"));
  EXPECT_TRUE(was_reported("comment unclosed at end of file"));
  set_C_modes(199000);
  EXPECT_EQ(kinds("a //**/ b\n"), (a_kind_list{tok_identifier, tok_divide, tok_identifier}));
}

TEST_F(LexicalTest, PositionsCountPhysicalLines) {
  open("ab\\\ncd e\\\n  f\n?\?= g\n");
  get_token();
  EXPECT_EQ(len_of_curr_token, 4u);
  EXPECT_EQ(pos_curr_token.seq, 1u);
  get_token();
  EXPECT_EQ(pos_curr_token.seq, 2u);
  EXPECT_EQ(pos_curr_token.column, 4);
  get_token();
  EXPECT_EQ(pos_curr_token.seq, 3u);
  EXPECT_EQ(pos_curr_token.column, 3);
}

TEST_F(LexicalTest, UnrecognizedTokens) {
  EXPECT_EQ(kinds("a @ ` # b\n"),
            (a_kind_list{tok_identifier, tok_error, tok_error, tok_error, tok_identifier}));
  EXPECT_TRUE(was_reported("unrecognized token"));
  EXPECT_TRUE(was_reported("\"#\" not expected here"));
}

TEST_F(LexicalTest, NextTokenConsumesNothing) {
  open("a b /* c */\n( 1 x\n");
  get_token();
  EXPECT_EQ(next_token(), tok_identifier);
  EXPECT_TRUE(curr_token_is_identifier_string("a"));
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("b"));
  a_token_kind second;
  EXPECT_TRUE(next_two_tokens(tok_lparen, &second));
  EXPECT_EQ(second, tok_integer);
  EXPECT_TRUE(curr_token_is_identifier_string("b"));
  get_token();
  get_token();
  EXPECT_EQ(const_for_curr_token.value.int_value, 1u);
  EXPECT_EQ(next_token(), tok_identifier);
  get_token();
  EXPECT_EQ(next_token(), tok_end_of_source);
}

TEST_F(LexicalTest, UngetTokenGivesTheSameTokenBack) {
  open("x 5\n");
  get_token();
  a_source_position position = pos_curr_token;
  a_token_sequence_number number = curr_token_sequence_number;
  unget_token();
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("x"));
  EXPECT_TRUE(pos_curr_token == position);
  EXPECT_EQ(curr_token_sequence_number, number);
  EXPECT_EQ(start_of_curr_token, nullptr);
  EXPECT_EQ(get_token(), tok_integer);
}

TEST_F(LexicalTest, RescannedTokensComeFirstAndTheCurrentOneAgain) {
  open("a 1 \"s\" z\n");
  a_token_cache cache;
  clear_token_cache(&cache, false);
  for (get_token(); curr_token != tok_string; get_token())
    cache_curr_token(&cache);
  rescan_cached_tokens(&cache);
  EXPECT_TRUE(curr_token_is_identifier_string("a"));
  EXPECT_EQ(pos_curr_token.column, 1);
  EXPECT_EQ(get_token(), tok_integer);
  EXPECT_EQ(const_for_curr_token.value.int_value, 1u);
  EXPECT_EQ(get_token(), tok_string);
  EXPECT_STREQ(const_for_curr_token.value.string.text, "s");
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("z"));
  EXPECT_EQ(get_token(), tok_end_of_source);
}

TEST_F(LexicalTest, ReusableCachesAreReplayed) {
  open("{ x + 1 ; } end\n");
  a_token_cache* cache = alloc_token_cache();
  clear_token_cache(cache, true);
  get_token();
  EXPECT_TRUE(cache_function_body(cache));
  terminate_token_cache(cache);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("end"));
  for (int pass = 0; pass < 3; ++pass) {
    rescan_reusable_cache(cache);
    a_kind_list read;
    for (; curr_token != tok_end_of_source; get_token())
      read.push_back(curr_token);
    EXPECT_EQ(read, (a_kind_list{tok_lbrace, tok_identifier, tok_plus, tok_integer, tok_semicolon,
                                 tok_rbrace}));
    get_token();
    EXPECT_TRUE(curr_token_is_identifier_string("end"));
  }
  free_token_cache(cache);
}

TEST_F(LexicalTest, FetchedTokensAreCachedOnce) {
  open("a b c d\n");
  get_token();
  begin_caching_fetched_tokens(true);
  get_token();
  next_token();
  get_token();
  a_token_cache cache;
  clear_token_cache(&cache, false);
  end_caching_fetched_tokens(&cache);
  int count = 0;
  for (const a_cached_token* token = cache.first; token != nullptr; token = token->next)
    ++count;
  EXPECT_EQ(count, 3);
  discard_token_cache(&cache);
}

TEST_F(LexicalTest, SplitAndCopyOfCaches) {
  open("a b c d\n");
  a_token_cache cache;
  clear_token_cache(&cache, false);
  a_token_sequence_number number_of_b = 0;
  while (get_token() != tok_end_of_source) {
    cache_curr_token(&cache);
    if (curr_token_is_identifier_string("b"))
      number_of_b = curr_token_sequence_number;
  }
  a_token_cache rest;
  clear_token_cache(&rest, false);
  EXPECT_TRUE(split_token_cache(&cache, &rest, number_of_b, true, true, false));
  EXPECT_STREQ(cache.last->variant.locator.header->identifier, "a");
  EXPECT_STREQ(rest.first->variant.locator.header->identifier, "b");
  a_token_cache copy;
  clear_token_cache(&copy, false);
  copy_tokens_from_cache(&rest, number_of_b, number_of_b + 2, true, &copy);
  EXPECT_EQ(copy.last->kind, tok_end_of_source);
  EXPECT_STREQ(copy.first->next->variant.locator.header->identifier, "c");
  discard_token_cache(&cache);
  discard_token_cache(&rest);
  discard_token_cache(&copy);
}

TEST_F(LexicalTest, RequiredTokensRecoverAtStopTokens) {
  open("a b ( ; ) c ; d\n");
  get_token();
  add_stop_token(tok_semicolon);
  EXPECT_FALSE(required_token(tok_comma, ec_exp_rparen));
  remove_stop_token(tok_semicolon);
  EXPECT_EQ(curr_token, tok_semicolon);
  EXPECT_TRUE(required_token(tok_semicolon, ec_exp_semicolon));
  EXPECT_TRUE(curr_token_is_identifier_string("d"));
}

TEST_F(LexicalTest, FlushingGoesToTheMatchingToken) {
  open("( a { b ) ] } c ) d\n");
  get_token();
  flush_until_matching_token_full(false);
  EXPECT_TRUE(curr_token_is_identifier_string("d"));
  open("{ ( } ) x } y\n");
  get_token();
  flush_until_matching_token_full(false);
  EXPECT_TRUE(curr_token_is_identifier_string("y"));
}

TEST_F(LexicalTest, FlushingCountsTemplateArguments) {
  for (const char* text : {"< a < b > > x\n", "< a < b >> x\n", "< ( a < b ) [ > ] > x\n"}) {
    SCOPED_TRACE(text);
    open(text);
    get_token();
    flush_until_matching_token_full(false);
    EXPECT_TRUE(curr_token_is_identifier_string("x"));
  }
}

TEST_F(LexicalTest, InsertedTextStandsBeforeTheNextToken) {
  open("#define M 9\na b\n");
  get_token();
  a_source_position position = pos_curr_token;
  insert_string_into_token_stream("M M2", 4, true, &position);
  EXPECT_TRUE(curr_token_is_identifier_string("a"));
  EXPECT_EQ(get_token(), tok_integer);
  EXPECT_EQ(get_token(), tok_identifier);
  insert_string_into_token_stream("M", 1, false, &position);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("M"));
  insert_string_into_token_stream("\"M\" int", 7, false, &position);
  EXPECT_EQ(get_token(), tok_string);
  EXPECT_STREQ(const_for_curr_token.value.string.text, "M");
  EXPECT_EQ(get_token(), tok_int);
  get_token();
  EXPECT_TRUE(curr_token_is_identifier_string("b"));
}

TEST_F(LexicalTest, BodiesAreCachedToTheirEnds) {
  set_cplusplus_modes(201103);
  for (const char* text :
       {"{ { } [ ] ( ) }", ": a(1), b{2, {3}} { }", ": B<(1 > 2)>{4}, N::C<int>(d)... { x; }",
        ": decltype(b)(1) { }", "try { } catch (...) { }",
        "try : a{1} { } catch (A) { { } } catch (...) { }"}) {
    SCOPED_TRACE(text);
    open(std::string(text) + " end\n");
    a_token_cache cache;
    clear_token_cache(&cache, false);
    get_token();
    EXPECT_TRUE(cache_function_body(&cache));
    EXPECT_EQ(cache.last->kind, tok_rbrace);
    get_token();
    EXPECT_TRUE(curr_token_is_identifier_string("end"));
    discard_token_cache(&cache);
  }
  for (const char* text : {": a { \n", ": a ; { }\n", "try ; { }\n", "{ ( }\n"}) {
    SCOPED_TRACE(text);
    open(text);
    a_token_cache cache;
    clear_token_cache(&cache, false);
    get_token();
    EXPECT_FALSE(cache_function_body(&cache));
    discard_token_cache(&cache);
  }
}

// A unit in which names can be declared.
class QualifiedNameTest : public ScanTest {
protected:
  void SetUp() override {
    ScanTest::SetUp();
    set_cplusplus_modes(201103);
  }

  void TearDown() override {
    depth_scope_stack = -1;
    ScanTest::TearDown();
  }

  void open_with_file_scope(const std::string& text) {
    open(text);
    il_header.primary_scope = new_file_scope(file_scope_number);
    push_file_scope(false);
  }

  a_symbol* declare(a_symbol_kind kind, const char* name) {
    a_symbol_locator locator = cleared_locator;
    find_symbol_header(name, 0, &locator);
    return enter_symbol(kind, &locator, depth_scope_stack, nullptr);
  }
};

TEST_F(QualifiedNameTest, GlobalNamesBecomeOneToken) {
  open_with_file_scope(":: x = y ;\n");
  a_symbol* x = declare(symk_variable, "x");
  get_token();
  EXPECT_TRUE(f_is_generalized_identifier_start());
  EXPECT_EQ(coalesce_and_lookup_qualified_name(ilo_none), x);
  EXPECT_EQ(curr_token, tok_identifier);
  EXPECT_EQ(pos_curr_token.column, 1);
  EXPECT_EQ(end_pos_curr_token.column, 4);
  EXPECT_TRUE(locator_for_curr_id.is_global_qualified);
  const a_name_reference* reference = make_name_reference();
  EXPECT_TRUE(reference->is_global);
  EXPECT_EQ(reference->qualifiers, nullptr);
  // A folded name stays one when it is read again.
  unget_token();
  get_token();
  EXPECT_EQ(coalesce_and_lookup_generalized_identifier(ilo_none), x);
  EXPECT_EQ(get_token(), tok_assign);
  EXPECT_FALSE(f_is_generalized_identifier_start());
  get_token();
  EXPECT_EQ(coalesce_and_lookup_qualified_name(ilo_none), nullptr);
  EXPECT_TRUE(curr_token_is_identifier_string("y"));
  EXPECT_EQ(make_name_reference(), nullptr);
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(QualifiedNameTest, NamesAreFoldedWhileTheyAreCached) {
  open_with_file_scope("y + :: x (:: x) ;\n");
  declare(symk_variable, "x");
  get_token();
  a_token_set_array stop_set = {};
  stop_set.member[tok_semicolon] = true;
  a_token_cache cache;
  clear_token_cache(&cache, false);
  cache_token_stream_coalesce_identifiers(&cache, &stop_set);
  EXPECT_EQ(curr_token, tok_semicolon);
  a_kind_list cached;
  for (const a_cached_token* token = cache.first; token != nullptr; token = token->next)
    cached.push_back(token->kind);
  EXPECT_EQ(cached, (a_kind_list{tok_identifier, tok_plus, tok_identifier, tok_lparen,
                                 tok_identifier, tok_rparen}));
  EXPECT_EQ(total_errors, 0u);
  discard_token_cache(&cache);
}

TEST_F(QualifiedNameTest, NamesThatQualifyNothingAreReported) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {{"v::w ;\n", "must be a class or namespace name"},
               {"u::w ;\n", "identifier \"u\" is undefined"},
               {"::u::w::z ;\n", "identifier \"u\" is undefined"},
               {"v:: ;\n", "expected an identifier"}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    open_with_file_scope(test.text);
    declare(symk_variable, "v");
    get_token();
    EXPECT_EQ(coalesce_and_lookup_generalized_identifier(ilo_none), nullptr);
    EXPECT_EQ(curr_token, tok_identifier);
    EXPECT_TRUE(locator_for_curr_id.is_error_locator);
    EXPECT_TRUE(was_reported(test.message));
    EXPECT_EQ(get_token(), tok_semicolon);
    depth_scope_stack = -1;
  }
}

TEST_F(LexicalTest, DigraphsBeforeScopes) {
  set_cplusplus_modes(201103);
  EXPECT_EQ(kinds("a<::b <::: <::> 5%::c\n"),
            (a_kind_list{tok_identifier, tok_lt, tok_colon_colon, tok_identifier, tok_lbracket,
                         tok_colon_colon, tok_lbracket, tok_rbracket, tok_integer, tok_remainder,
                         tok_colon_colon, tok_identifier}));
  EXPECT_EQ(total_warnings, 0u);
  set_cplusplus_modes(199711);
  EXPECT_EQ(kinds("a<::b\n"),
            (a_kind_list{tok_identifier, tok_lbracket, tok_colon, tok_identifier}));
  EXPECT_TRUE(was_reported("use of alternative token \"<:\" appears to be unintended"));
  kinds("a %::b\n");
  EXPECT_TRUE(was_reported("use of alternative token \"%:\" appears to be unintended"));
  set_C_modes(201112);
  EXPECT_EQ(kinds("a<::b\n"),
            (a_kind_list{tok_identifier, tok_lbracket, tok_colon, tok_identifier}));
  EXPECT_EQ(total_warnings, 2u);
}

TEST_F(LexicalTest, LintCommentsWaitAsPragmas) {
  const struct {
    const char* text;
    a_pragma_kind_tag kind;
    unsigned extra;
  } cases[] = {{"/*ARGSUSED*/ x\n", pk_argsused, 0},
               {"// \tNOTREACHED\nx\n", pk_notreached, 0},
               {"/* VARARGS12 */ x\n", pk_varargs, 12},
               {"/* VARARGS */ x\n", pk_none, 0},
               {"/*ARGSUSEDx*/ x\n", pk_none, 0},
               {"/* see NOTREACHED */ x\n", pk_none, 0},
               {"#define f /*ARGSUSED*/ 1\n#if 0\n/*ARGSUSED*/\n#endif\nx\n", pk_none, 0}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    open(test.text);
    get_token();
    EXPECT_TRUE(curr_token_is_identifier_string("x"));
    if (test.kind == pk_none) {
      EXPECT_EQ(curr_token_pragmas, nullptr);
      continue;
    }
    ASSERT_NE(curr_token_pragmas, nullptr);
    EXPECT_EQ(curr_token_pragmas->description->kind, test.kind);
    EXPECT_EQ(curr_token_pragmas->extra, test.extra);
    get_token();
    EXPECT_EQ(curr_token_pragmas, nullptr);
  }
  kinds("#pragma ARGSUSED\nx\n");
  EXPECT_TRUE(was_reported("unrecognized #pragma"));
}

TEST_F(LexicalTest, CharactersOfIdentifiers) {
  EXPECT_EQ(kinds("\xe9\xd7\n"), (a_kind_list{tok_identifier, tok_error}));
  EXPECT_EQ(kinds("a$b\n"), (a_kind_list{tok_identifier, tok_error, tok_identifier}));
  allow_dollar_in_id_chars = multibyte_chars_in_source_enabled = 1;
  lexical_one_time_init();
  EXPECT_EQ(kinds("a$b \xc3\xa9x \xe2\x80\xa8 y\n"),
            (a_kind_list{tok_identifier, tok_identifier, tok_error, tok_identifier}));
  open("\xc3\xa9\\u00e9 z\n");
  get_token();
  EXPECT_STREQ(locator_for_curr_id.header->identifier, "\\u00E9\\u00E9");
  get_token();
  EXPECT_EQ(pos_curr_token.column, 9);
}

TEST_F(LexicalTest, StrictC89ReadsEndOfLineCommentsWithAWarning) {
  set_C_modes(199000);
  strict_ansi_mode = 1;
  EXPECT_EQ(kinds("a // b\nc // d\n"), (a_kind_list{tok_identifier, tok_identifier}));
  EXPECT_TRUE(was_reported("'//' comments are not allowed in strict C89 mode"));
  EXPECT_EQ(total_warnings, 1u);
}
