#include "source_file.h"

#include "source_test_util.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

class SourceFiles : public testing::Test {
protected:
  void SetUp() override {
    start_front_end_for_tests();
    multibyte_chars_in_source_enabled = 0;
    trigraphs_allowed = 1;
    gnu_mode = 1;
    incl_search_path = end_incl_search_path = sys_incl_search_path = nullptr;
    source_file_early_init();
    directory = testing::TempDir() + "source_files." + std::to_string(getpid()) + "/";
    std::filesystem::create_directories(directory);
    error_threshold = es_error; // no warnings on the terminal
  }

  void TearDown() override {
    source_file_reset();
    release_fetched_source_text();
    std::filesystem::remove_all(directory);
  }

  std::string write(const std::string& name, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(directory + name).parent_path());
    std::ofstream(directory + name, std::ios::binary) << text;
    return directory + name;
  }

  // Enters a file as the primary one.
  void open(const std::string& text) {
    ASSERT_TRUE(open_file_and_push_input_stack(write("main.c", text).c_str(), {}));
  }

  bool include(const std::string& name, bool angle_bracket = false, bool next = false) {
    an_include_request request = {};
    request.use_search_path = true;
    request.is_include = true;
    request.is_angle_bracket = angle_bracket;
    request.from_next_directory = next;
    return open_file_and_push_input_stack(name.c_str(), request);
  }

  std::string directory;
};

// The line in the buffer, without its end marker.
std::string line_text() {
  return std::string(curr_source_line, after_end_of_curr_source_line - 2);
}

std::vector<std::string> rest_of_lines() {
  std::vector<std::string> lines;
  while (!read_logical_source_line(true, false))
    lines.push_back(line_text());
  return lines;
}

// The position of the first occurrence of `text` in the line, as "seq:column".
std::string position_of(const std::string& text) {
  size_t offset = line_text().find(text);
  if (offset == std::string::npos)
    return "none";
  a_source_position position;
  conv_line_loc_to_source_pos(curr_source_line + offset, &position);
  return std::to_string(position.seq) + ":" + std::to_string(position.column);
}

// Where a reader would look for a sequence number.
std::string place_of(uint32_t seq, bool physical = false) {
  uint32_t line;
  a_boolean at_end;
  const a_source_file* file = source_file_for_seq(seq, &line, &at_end, physical);
  if (file == nullptr)
    return "none";
  std::string place = start_of_file_name(file->file_name);
  place += ":" + std::to_string(line);
  return at_end ? place + " end" : place;
}

std::string utf16(const std::u16string& text, bool big_endian) {
  std::string bytes;
  for (char16_t unit : text) {
    char high = static_cast<char>(unit >> 8);
    char low = static_cast<char>(unit);
    bytes += big_endian ? high : low;
    bytes += big_endian ? low : high;
  }
  return bytes;
}

using Lines = std::vector<std::string>;

TEST_F(SourceFiles, LinesLoseNewlinesAndCarriageReturns) {
  open("one\r\n\n\r\r\n  two\rx\nlast");
  EXPECT_EQ(rest_of_lines(), (Lines{"one", "", "", "  two\rx", "last"}));
  EXPECT_EQ(curr_ise, nullptr);
  EXPECT_TRUE(read_logical_source_line(true, false));
}

TEST_F(SourceFiles, ByteOrderMarks) {
  std::u16string text = u"\xFEFFz\xE9\x20AC\xD83D\xDE00;\n\xDC00q\xD800\n\xD800";
  Lines expected = {"z\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80;", "?q?", "?"};
  for (bool big_endian : {false, true}) {
    open(utf16(text, big_endian) + (big_endian ? "" : "x"));
    EXPECT_EQ(curr_file_unicode_source_kind, big_endian ? usk_utf16_be : usk_utf16_le);
    EXPECT_EQ(multibyte_chars_in_source_enabled, 1);
    EXPECT_EQ(rest_of_lines(), expected);
    source_file_reset();
  }
  open("\xEF\xBB\xBF"
       "a\n");
  EXPECT_EQ(curr_file_unicode_source_kind, usk_utf8);
  EXPECT_EQ(rest_of_lines(), Lines{"a"});
}

TEST_F(SourceFiles, ASurrogatePairIsOneColumn) {
  open(utf16(u"\xFEFF\xD83D\xDE00"
             u"b\xE9"
             u"c\\\n\xE9"
             u"d e\n",
             false));
  read_logical_source_line(true, false);
  EXPECT_FALSE(curr_source_line_is_plain);
  EXPECT_EQ(position_of("b"), "1:2");
  EXPECT_EQ(position_of("c"), "1:4");
  EXPECT_EQ(position_of("d"), "2:2");
  EXPECT_EQ(position_of("e"), "2:4");
}

TEST_F(SourceFiles, SplicesRestartTheColumns) {
  open("foo\\\nbar baz\\\n\\\n  qux\nnext\n");
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), "foobar baz  qux");
  EXPECT_EQ(position_of("foo"), "1:1");
  EXPECT_EQ(position_of("bar"), "2:1");
  EXPECT_EQ(position_of("baz"), "2:5");
  EXPECT_EQ(position_of("qux"), "4:3");
  EXPECT_EQ(position_of("foo"), "1:1");
  EXPECT_EQ(curr_seq_number, 1u);
  read_logical_source_line(true, false);
  EXPECT_EQ(curr_seq_number, 5u);
  EXPECT_TRUE(curr_source_line_is_plain);
  EXPECT_EQ(position_of("next"), "5:1");
}

TEST_F(SourceFiles, WhiteSpaceBehindABackslashSplicesOnlyInGnuMode) {
  open("a\\ \t\nb\n");
  EXPECT_EQ(rest_of_lines(), Lines{"ab"});
  source_file_reset();
  gnu_mode = 0;
  open("a\\ \t\nb\n");
  EXPECT_EQ(rest_of_lines(), (Lines{"a\\ \t", "b"}));
}

TEST_F(SourceFiles, TrigraphsAreReplacedBeforeSplices) {
  open("?\?=x y?\?/\nz ?\?\?! ?\?q\n");
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), "#x yz ?| ?\?q");
  EXPECT_EQ(position_of("x"), "1:4");
  EXPECT_EQ(position_of("z"), "2:1");
  EXPECT_EQ(position_of("?\?q"), "2:8");
  source_file_reset();
  trigraphs_allowed = 0;
  open("?\?=x?\?/\ny\n");
  EXPECT_EQ(rest_of_lines(), (Lines{"?\?=x?\?/", "y"}));
}

TEST_F(SourceFiles, NulBytesGetAMarker) {
  open(std::string("a\0b?\?=c\0\n", 9));
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), std::string("a\0\6b#c\0\6", 8));
  EXPECT_EQ(position_of("b"), "1:3");
  EXPECT_EQ(position_of("c"), "1:7");
}

TEST_F(SourceFiles, ASpliceAtTheEndLeavesANewlineMarker) {
  open("x\\\n");
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), std::string("x\0\2", 3));
  EXPECT_TRUE(read_logical_source_line(true, false));
}

TEST_F(SourceFiles, AppendedLinesKeepModificationsWhenTheBufferMoves) {
  std::string wide(10000, 'w');
  open("aMb\n" + wide + "\\\n" + wide + "end\n");
  read_logical_source_line(true, false);
  char replacement[] = "text\0\3";
  a_source_line_modif* modif =
      add_source_line_modif(curr_source_line + 1, 1, replacement, replacement + 4);
  modif->position = {1, 2, 0};
  EXPECT_EQ(curr_source_line[1], '\n');
  curr_char_loc = curr_source_line + 2;
  EXPECT_FALSE(read_logical_source_line(false, true));
  EXPECT_EQ(curr_char_loc, curr_source_line + 2);
  EXPECT_EQ(source_line_modif_at(curr_source_line + 1), modif);
  EXPECT_EQ(position_of("w"), "2:1");
  EXPECT_EQ(position_of("end"), "3:10001");
  a_source_position position;
  conv_line_loc_to_source_pos(replacement + 3, &position);
  EXPECT_EQ(position.column, 2);
  remove_source_line_modif(modif);
  EXPECT_EQ(curr_source_line[1], 'M');
  EXPECT_TRUE(read_logical_source_line(false, true));
}

TEST_F(SourceFiles, ColumnsOfReplacedText) {
  open("abcdef\n");
  read_logical_source_line(true, false);
  char outer[] = "outer", inner[] = "inner";
  a_source_line_modif* first = add_source_line_modif(curr_source_line + 2, 1, outer, outer + 5);
  add_source_line_modif(outer + 1, 1, inner, inner + 5);
  a_source_position position;
  conv_line_loc_to_source_pos(inner + 2, &position);
  EXPECT_EQ(position.column, 3);
  first->position = {9, 7, 0};
  conv_line_loc_to_source_pos(inner + 2, &position);
  EXPECT_EQ(position.seq, 9u);
  first->position_is_fixed = 1;
  conv_line_loc_to_source_pos(outer + 4, &position);
  EXPECT_EQ(position.column, 11);
}

TEST_F(SourceFiles, SequenceNumbersRunThroughIncludedFiles) {
  put_current_directory_slot_on_incl_search_path(
      f_directory_of(write("b.h", "b1\nb2\n").c_str(), true));
  write("empty.h", "");
  open("m1\nm2\nm3\nm4\n");
  read_logical_source_line(true, false);
  ASSERT_TRUE(include("b.h"));
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), "b1");
  EXPECT_EQ(place_of(2), "b.h:1");
  read_logical_source_line(true, false);
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), "m2");
  ASSERT_TRUE(include("empty.h"));
  EXPECT_EQ(rest_of_lines(), (Lines{"m3", "m4"}));
  const char* expected[] = {"none",     "main.c:1", "b.h:1",    "b.h:2",
                            "main.c:2", "main.c:3", "main.c:4", "main.c:4 end"};
  for (uint32_t seq = 0; seq < 8; seq++) {
    EXPECT_EQ(place_of(seq), expected[seq]) << seq;
    EXPECT_EQ(place_of(seq, true), expected[seq]) << seq;
  }
  EXPECT_TRUE(seq_is_in_include_file(2));
  EXPECT_FALSE(seq_is_in_include_file(4));
  EXPECT_EQ(primary_source_file_for_seq(7)->last_seq, 6u);
}

TEST_F(SourceFiles, LineDirectivesRenameAndRenumber) {
  open("1\n2\n3\n4\n5\n6\n");
  read_logical_source_line(true, false);
  clone_current_input_file("x.h", 100, false);
  read_logical_source_line(true, false);
  EXPECT_EQ(place_of(2), "x.h:100");
  EXPECT_EQ(place_of(2, true), "main.c:2");
  renumber_current_input_file(7);
  read_logical_source_line(true, false);
  push_cloned_input_stack_entry("y.h", 1, true);
  EXPECT_TRUE(in_included_file());
  read_logical_source_line(true, false);
  EXPECT_TRUE(in_system_header);
  EXPECT_TRUE(pop_cloned_input_stack_entry(9));
  EXPECT_FALSE(pop_cloned_input_stack_entry(9));
  EXPECT_EQ(rest_of_lines(), (Lines{"5", "6"}));
  const char* expected[] = {"main.c:1", "x.h:100", "x.h:7", "y.h:1", "x.h:9", "x.h:10"};
  for (uint32_t seq = 1; seq <= 6; seq++) {
    EXPECT_EQ(place_of(seq), expected[seq - 1]);
    EXPECT_EQ(place_of(seq, true), "main.c:" + std::to_string(seq));
  }
  EXPECT_TRUE(seq_is_in_system_header(4));
  EXPECT_FALSE(seq_is_in_system_header(5));
}

TEST_F(SourceFiles, AClonedEntryEndsWithItsFile) {
  open("1\n2\n");
  read_logical_source_line(true, false);
  push_cloned_input_stack_entry("y.h", 1, false);
  EXPECT_EQ(rest_of_lines(), Lines{"2"});
  EXPECT_EQ(curr_ise, nullptr);
}

TEST_F(SourceFiles, DeepIncludesAreReadOnWhereTheyWereLeft) {
  put_current_directory_slot_on_incl_search_path(f_directory_of((directory + "x").c_str(), true));
  for (int i = 0; i < 20; i++) {
    std::string name = std::to_string(i);
    std::u16string text = u"\xFEFF";
    for (char c : "a\xC3\n" + name + "\n")
      text += static_cast<unsigned char>(c) == 0xC3 ? u'\xE9' : static_cast<char16_t>(c);
    write("f" + name + ".h", i % 2 ? utf16(text, i % 4 == 1) : "a\n" + name + "\n");
  }
  open("m\n");
  for (int i = 0; i < 20; i++)
    ASSERT_TRUE(include("f" + std::to_string(i) + ".h") && !read_logical_source_line(true, false));
  Lines expected;
  for (int i = 19; i >= 0; i--)
    expected.push_back(std::to_string(i));
  expected.push_back("m");
  EXPECT_EQ(rest_of_lines(), expected);
}

TEST_F(SourceFiles, SearchPaths) {
  write("main/a.h", "main\n");
  write("one/a.h", "one\n");
  write("two/a.h", "two\n");
  write("two/only.h", "only\n");
  write("two/plain.hpp", "plain\n");
  std::filesystem::create_directories(directory + "one/only.h");
  std::string paths[] = {directory + "main/", directory + "one", directory + "two"};
  add_to_include_search_path(paths[1].c_str(), false);
  add_to_include_search_path(paths[2].c_str(), true);
  put_current_directory_slot_on_incl_search_path(paths[0].c_str());
  open("m\n");
  incl_search_path->name = paths[0].c_str();
  auto first_line = [] {
    read_logical_source_line(true, false);
    std::string text = line_text();
    pop_input_stack();
    return text;
  };
  ASSERT_TRUE(include("a.h"));
  EXPECT_EQ(first_line(), "main");
  incl_search_path->name = paths[0].c_str();
  ASSERT_TRUE(include("a.h", true));
  EXPECT_FALSE(in_system_header);
  EXPECT_EQ(incl_search_path->name, f_directory_of((paths[1] + "/a.h").c_str(), true));
  ASSERT_TRUE(include("a.h", false, true));
  EXPECT_TRUE(in_system_header);
  EXPECT_EQ(first_line(), "two");
  pop_input_stack();
  ASSERT_TRUE(include("only.h", true));
  EXPECT_EQ(first_line(), "only");
  ASSERT_TRUE(include("plain"));
  EXPECT_EQ(first_line(), "plain");
  EXPECT_TRUE(header_can_be_found("a.h", true, false));
  EXPECT_FALSE(header_can_be_found("b.h", true, false));
  EXPECT_FALSE(header_can_be_found("one", false, false));
}

TEST_F(SourceFiles, TheMarkerCutsUserDirectoriesOff) {
  write("one/a.h", "one\n");
  write("two/b.h", "two\n");
  std::string paths[] = {directory + "one", directory + "two"};
  add_to_include_search_path(paths[0].c_str(), false);
  mark_start_of_sys_incl_search_path();
  EXPECT_FALSE(header_can_be_found("a.h", true, false));
  add_to_include_search_path(paths[1].c_str(), false);
  EXPECT_FALSE(header_can_be_found("a.h", true, false));
  EXPECT_TRUE(header_can_be_found("b.h", true, false));
  EXPECT_TRUE(header_can_be_found("a.h", false, false));
}

TEST_F(SourceFiles, DuplicateDirectories) {
  for (const char* name : {"a", "b", "./a", "c"})
    add_to_include_search_path(name, false);
  for (const char* name : {"c/", "d"})
    add_to_include_search_path(name, true);
  remove_duplicate_include_directories();
  std::string names;
  for (auto* entry = incl_search_path; entry != nullptr; entry = entry->next)
    names += entry->name;
  EXPECT_EQ(names, "abc/d");
  EXPECT_STREQ(end_incl_search_path->name, "d");
}

TEST_F(SourceFiles, PragmaOnceSkipsByNameAndByIdentity) {
  std::string name = write("once.h", "x\n");
  std::filesystem::create_symlink(name, directory + "link.h");
  put_current_directory_slot_on_incl_search_path(f_directory_of(name.c_str(), true));
  open("m\n");
  ASSERT_TRUE(include("once.h"));
  set_ifg_state(igs_pragma_once);
  pop_input_stack();
  EXPECT_FALSE(include("once.h"));
  EXPECT_TRUE(actual_include_was_suppressed);
  EXPECT_FALSE(include("link.h"));
}

TEST_F(SourceFiles, ATokenOutsideMakesAFileUnguarded) {
  put_current_directory_slot_on_incl_search_path(f_directory_of(write("g.h", "x\n").c_str(), true));
  open("m\n");
  EXPECT_EQ(get_ifg_state(), igs_unguarded);
  ASSERT_TRUE(include("g.h"));
  EXPECT_EQ(get_ifg_state(), igs_start);
  any_tokens_fetched_from_curr_input_file = 1;
  EXPECT_EQ(get_ifg_state(), igs_unguarded);
  pop_input_stack();
  EXPECT_FALSE(any_tokens_fetched_from_curr_input_file);
  an_include_file_history* history = find_include_history((directory + "g.h").c_str(), false);
  ASSERT_NE(history, nullptr);
  EXPECT_FALSE(history->is_guarded);
}

TEST_F(SourceFiles, LinesAreFoundAgain) {
  std::string text;
  for (int i = 1; i <= 3000; i++)
    text += "line " + std::to_string(i) + (i % 2 ? "\r\n" : "\n");
  open(text + "last");
  const a_source_file* file = curr_ise->source_file;
  auto fetched = [file](uint32_t line) {
    const char* start;
    size_t length;
    return fetch_physical_source_line(file, line, 1, 0, &start, &length)
               ? std::string(start, length)
               : std::string("none");
  };
  EXPECT_EQ(fetched(2999), "line 2999");
  rest_of_lines();
  EXPECT_EQ(fetched(1), "line 1");
  EXPECT_EQ(fetched(3001), "last");
  EXPECT_EQ(fetched(3002), "none");
  release_fetched_source_text();
  std::filesystem::remove(directory + "main.c");
  EXPECT_EQ(fetched(1), "none");
}

TEST_F(SourceFiles, LargeFiles) {
  std::string text;
  for (int i = 0; text.size() < 3000000; i++)
    text += "  int variable_" + std::to_string(i) + ";\n";
  open(text + "?\?(" + std::string(1, '\0') + "\xC3\xA9;\n");
  EXPECT_NE(curr_ise->text.mapped_size, 0u);
  multibyte_chars_in_source_enabled = 1;
  size_t count = 0;
  while (!read_logical_source_line(true, false) && line_text()[0] == ' ')
    count++;
  EXPECT_EQ(line_text(), std::string("[\0\6\xC3\xA9;", 6));
  EXPECT_EQ(position_of(";"), std::to_string(count + 1) + ":6");
  EXPECT_EQ(place_of(static_cast<uint32_t>(count)), "main.c:" + std::to_string(count));
  source_file_reset();
  std::string line(2000000, 'x');
  open(line + " y\n");
  read_logical_source_line(true, false);
  EXPECT_EQ(line_text(), line + " y");
  EXPECT_EQ(position_of("y"), "1:65535");
}

TEST_F(SourceFiles, FilesThatCannotBeRead) {
  a_source_text text;
  an_open_file_result result;
  EXPECT_FALSE(open_source_file((directory + "none").c_str(), &text, &result));
  EXPECT_EQ(result.flags, off_not_found);
  EXPECT_FALSE(open_source_file(directory.c_str(), &text, &result));
  EXPECT_EQ(result.flags, off_directory);
  EXPECT_FALSE(open_source_file("/dev/null", &text, &result));
  EXPECT_EQ(result.flags, off_not_a_regular_file);
  EXPECT_FALSE(open_source_file(std::string(5000, 'x').c_str(), &text, &result));
  EXPECT_EQ(result.flags, off_other_error);
  EXPECT_EQ(result.error_number, ENAMETOOLONG);
}

} // namespace
