#include "host_envir.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
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
