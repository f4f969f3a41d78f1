#include "host_envir.h"

#include "il.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"
#include "source_test_util.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// The words of a command file with the given text.
std::vector<std::string> words_of(const char* text) {
  FILE* file = fmemopen(const_cast<char*>(text), strlen(text), "r");
  std::vector<std::string> words;
  while (char* word = fnextopt(file)) {
    words.push_back(word);
    free(word);
  }
  fclose(file);
  return words;
}

using Words = std::vector<std::string>;

TEST(CommandFile, WordsEndAtWhiteSpace) {
  EXPECT_EQ(words_of("  -a\tb\n\nc"), (Words{"-a", "b", "c"}));
  EXPECT_EQ(words_of(" \n"), Words{});
  std::string long_word(1000, 'x');
  EXPECT_EQ(words_of(long_word.c_str()), Words{long_word});
}

TEST(CommandFile, Comments) {
  EXPECT_EQ(words_of("-Dx=1;comment here\ny"), (Words{"-Dx=1", "y"}));
  EXPECT_EQ(words_of("a/* x\ny **/b c"), (Words{"ab", "c"}));
  EXPECT_EQ(words_of("# all of it\nfile#rest\n-Dx=#3 -I#d"), (Words{"file", "-Dx=#3", "-I#d"}));
  EXPECT_EQ(words_of("a/b -c/"), (Words{"a/b", "-c/"}));
}

TEST(CommandFile, QuotesAndBackslashes) {
  EXPECT_EQ(words_of("-D\"a b\nc\"d"), (Words{"-Da b\ncd"}));
  EXPECT_EQ(words_of("\"x\\\"y\\\\z\\n\" \"\" e"), (Words{"x\"y\\z\\n", "", "e"}));
  EXPECT_EQ(words_of("a\\ b \\\"c \\;d"), (Words{"a b", "\"c", ";d"}));
  EXPECT_EQ(words_of("\"a;b#c/*d*/\""), (Words{"a;b#c/*d*/"}));
}

TEST(CommandFileDeathTest, UnterminatedConstructs) {
  EXPECT_EXIT(words_of("a /* b"), testing::ExitedWithCode(255),
              ">> Unterminated comment in command file; aborting!\n");
  EXPECT_EXIT(words_of("x \"ab\tc\nd"), testing::ExitedWithCode(255),
              ">> Unterminated quote in command file; aborting\n   Quote starts at "
              "\"ab\\\\tc\\\\nd\n");
}

TEST(FileNames, SplitCutsParts) {
  std::string part(600, 'x');
  const char* directory;
  const char* base;
  const char* extension;
  fn_split((part + "/" + part + "." + part).c_str(), &directory, &base, &extension);
  EXPECT_EQ(strlen(directory), 499u);
  EXPECT_EQ(strlen(base), 499u);
  EXPECT_EQ(strlen(extension), 499u);
  fn_split("a.b/c", &directory, &base, &extension);
  EXPECT_STREQ(directory, "a.b/");
  EXPECT_STREQ(base, "c");
  EXPECT_STREQ(extension, "");
}

std::string taken(char* text) {
  std::string result = text;
  free(text);
  return result;
}

TEST(FileNames, BuildAndExtensions) {
  EXPECT_EQ(taken(fn_build(nullptr, "d", "b", "c")), "d/b.c");
  EXPECT_EQ(taken(fn_build(nullptr, "d/", "b", ".c")), "d/b.c");
  EXPECT_EQ(taken(fn_build(nullptr, nullptr, "b", "")), "b");
  EXPECT_EQ(taken(fn_addext("a.b/c", "x", false)), "a.b/c.x");
  EXPECT_EQ(taken(fn_addext("c.d", ".x", false)), "c.d");
  EXPECT_EQ(taken(fn_addext("c.d", ".x", true)), "c.x");
  EXPECT_EQ(taken(fn_addext("c.d", "", true)), "c");
  EXPECT_EQ(taken(fn_delext("a.b/c")), "a.b/c");
}

TEST(FileNames, TemporaryNameFollowsTheDirectory) {
  unsetenv("TMPDIR");
  std::string name = taken(fn_tmpnam(nullptr, testing::TempDir().c_str(), nullptr));
  EXPECT_EQ(name.rfind(testing::TempDir() + "QL", 0), 0u) << name;
  EXPECT_TRUE(fn_exists(name.c_str()));
  EXPECT_TRUE(fn_samefile(name.c_str(), name.c_str()));
  EXPECT_TRUE(fn_delete(name.c_str()));
  EXPECT_FALSE(fn_samefile(name.c_str(), name.c_str()));
}

TEST(Encodings, Utf8) {
  char buffer[4];
  for (uint32_t value : {0x41u, 0xE9u, 0x7FFu, 0x800u, 0xFFFFu, 0x10000u, 0x10FFFFu}) {
    char text[8] = {};
    int length = unicode_to_utf8(value, text);
    uint32_t decoded;
    a_boolean invalid;
    EXPECT_EQ(mbc_to_wide_char(text, &decoded, &invalid, false), length);
    EXPECT_EQ(decoded, value);
    EXPECT_EQ(invalid, 0);
  }
  EXPECT_EQ(unicode_to_utf8(0x20AC, buffer), 3);
  EXPECT_EQ(std::string(buffer, 3), "\xE2\x82\xAC");
  EXPECT_EQ(utf8_char_length("\x80\x80z"), 2);
  EXPECT_EQ(utf8_char_length("\xC3(z"), 1);
  EXPECT_EQ(utf8_char_length("\xE2\x82zz"), 2);
  EXPECT_EQ(utf8_char_length("\xFF\x80\x80\x80\x80z"), 5);
  uint32_t value;
  a_boolean invalid;
  EXPECT_EQ(mbc_to_wide_char("\xE2\x82z", &value, &invalid, false), 2);
  EXPECT_EQ(invalid, 1);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(mbc_to_wide_char("\xE9", &value, nullptr, true), 1);
  EXPECT_EQ(value, 0xE9u);
}

TEST(Encodings, Utf16Units) {
  uint16_t units[2];
  EXPECT_EQ(ucn_to_utf16(0xFFFF, units), 1);
  EXPECT_EQ(ucn_to_utf16(0x1F600, units), 2);
  EXPECT_EQ(units[0], 0xD83D);
  EXPECT_EQ(units[1], 0xDE00);
  EXPECT_EQ(ucn_to_utf16(0x110000, units), 0);
}

TEST(Identity, Crc) {
  EXPECT_EQ(crc_32("abc", 0), 0x352441C2u);
  EXPECT_EQ(crc_32("", 17), 17u);
  EXPECT_EQ(crc_32("bc", crc_32("a", 0)), 0x352441C2u);
}

class FrontEndNames : public testing::Test {
protected:
  void SetUp() override {
    start_front_end_for_tests();
  }
};

TEST_F(FrontEndNames, PartsOfANameInTheFrontEnd) {
  EXPECT_STREQ(start_of_file_name("a/b.c"), "b.c");
  EXPECT_STREQ(start_of_file_name("-"), "-");
  EXPECT_STREQ(suffix_of("a.b/c"), "");
  EXPECT_STREQ(suffix_of("a.b/c.d.e"), ".e");
  EXPECT_STREQ(suffix_of("-"), "");
  EXPECT_STREQ(derived_name("x/y.tab.c", ".if"), "y.tab.if");
  EXPECT_STREQ(f_directory_of("a/b/c.h", true), "a/b/");
  EXPECT_EQ(f_directory_of("a/b/c.h", true), f_directory_of("a/b/d.h", true));
}

TEST_F(FrontEndNames, JoiningAndNormalizing) {
  EXPECT_STREQ(normalize_file_name("/a//b/./c/../d"), "/a/b/d");
  EXPECT_STREQ(normalize_file_name("/a/../../b"), "/b");
  current_directory_name = "/w/x";
  EXPECT_STREQ(normalize_file_name("../y.c"), "/w/y.c");
  EXPECT_STREQ(combine_dir_and_file_name("d/", "f.h", nullptr), "d/f.h");
  EXPECT_STREQ(combine_dir_and_file_name("d", "f.h", nullptr), "d/f.h");
  EXPECT_EQ(f_compare_file_names("y.c", "/w/./x/y.c", false, false), 0);
  EXPECT_EQ(f_compare_file_names("\"y.c\"", "<./y.c>", true, false), 0);
  EXPECT_NE(f_compare_file_names("y.c", "z/y.c", false, false), 0);
  EXPECT_EQ(f_compare_file_names("D/y.c", "d/y.c", false, true), 0);
  EXPECT_NE(f_compare_file_names("Y.c", "y.c", false, true), 0);
  current_directory_name = "/";
  EXPECT_EQ(f_compare_file_names("d/y.c", "/d/y.c", false, false), 0);
}

TEST_F(FrontEndNames, Writing) {
  EXPECT_STREQ(makefile_format_file_name("a b"), "a\\\\ b");
  a_text_buffer* buffer = alloc_text_buffer(8);
  write_file_name_to_text_buffer("a\"b\\c\nd\001\xC3\xA9", buffer, true, true);
  EXPECT_EQ(std::string(buffer->data, buffer->used_size), "a\\\"b\\\\c\\nd\\001\\303\\251");
  EXPECT_STREQ(format_file_name("a\"b\xC3\xA9"), "a\"b\xC3\xA9");
}

TEST_F(FrontEndNames, RecodingKeepsTheBytesOfTheSystem) {
  const char* name = "na\xEFve\xC3\xA9";
  const char* internal = file_name_in_internal_encoding(name);
  EXPECT_STREQ(internal, "na\xC3\xAFve\xC3\x83\xC2\xA9");
  EXPECT_STREQ(file_name_in_external_encoding(internal), name);
  EXPECT_STREQ(file_name_in_external_encoding("\xE2\x82\xAC\xFF"), "??");
  EXPECT_EQ(file_name_in_internal_encoding("plain"), std::string("plain"));
}

TEST_F(FrontEndNames, OutputNeverReplacesTheSource) {
  std::string name = testing::TempDir() + "okay.c";
  fclose(fopen(name.c_str(), "w"));
  std::string link = testing::TempDir() + "okay_link.c";
  remove(link.c_str());
  ASSERT_EQ(symlink(name.c_str(), link.c_str()), 0);
  primary_source_file_name = name.c_str();
  an_open_file_result result;
  EXPECT_EQ(open_output_file(name.c_str(), true, false, &result), nullptr);
  EXPECT_EQ(result.flags, off_invalid_name);
  EXPECT_FALSE(okay_as_output_file(link.c_str()));
  EXPECT_TRUE(okay_as_output_file("okay.if"));
  EXPECT_EQ(open_input_file(testing::TempDir().c_str(), false, &result), nullptr);
  EXPECT_EQ(result.flags, off_directory);
  EXPECT_EQ(open_input_file("no/such/file", false, &result), nullptr);
  EXPECT_EQ(result.flags, off_not_found);
  primary_source_file_name = nullptr;
}

TEST_F(FrontEndNames, LinesLoseTrailingBlanks) {
  char text[] = "one  \n \n\ntw o\r\n   last";
  FILE* file = fmemopen(text, strlen(text), "r");
  for (const char* expected : {"one", " ", "", "tw o\r", "   last"})
    EXPECT_STREQ(read_line_from_file(file), expected);
  EXPECT_EQ(read_line_from_file(file), nullptr);
  fclose(file);
}

TEST_F(FrontEndNames, ModuleId) {
  a_source_file source = {};
  source.file_name = "dir/x.c";
  il_header.source_files = &source;
  host_envir_trans_unit_init();
  EXPECT_EQ(get_module_id(), nullptr);
  il_header.source_files = &source;
  EXPECT_STREQ(make_module_id("t"), "_3_x_c_t");
  EXPECT_STREQ(make_module_id("other"), "_3_x_c_t");
  host_envir_trans_unit_init();
  il_header.source_files = &source;
  char expected[40];
  snprintf(expected, sizeof expected, "_3_x_c_%08lx",
           static_cast<unsigned long>(crc_32("long enough", 0)));
  EXPECT_STREQ(make_module_id("long enough"), expected);
  il_header.source_files = nullptr;
}

TEST(Numbers, Strtoul) {
  a_boolean error;
  EXPECT_EQ(strtoul_interface("0x1F", &error), 31u);
  EXPECT_EQ(error, 0);
  for (const char* text : {"", "12x", "99999999999999999999999"}) {
    strtoul_interface(text, &error);
    EXPECT_EQ(error, 1) << text;
  }
}

TEST(Strings, WithoutRegardToCase) {
  EXPECT_EQ(strcaseicmp("AbC", "aBc"), 0);
  EXPECT_LT(strcaseicmp("ab", "ABC"), 0);
  EXPECT_EQ(strcaseincmp("abX", "ABy", 2), 0);
  EXPECT_STREQ(strcaseistr("one TWO", "two"), "TWO");
  EXPECT_EQ(strcaseistr("one", "two"), nullptr);
}

} // namespace
