#include <algorithm>
#include <cerrno>
#include <climits>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

#include "if_file_fixture.h"
#include "sighandler.h"

namespace {

class IfWrite : public IfFile {
protected:
  // The encoding of one field.
  template <class Write> std::string encoding(Write write) {
    size_t start = contents().size();
    write();
    file->i_flush('x');
    return records(start).at(0).body;
  }
  std::string uint(unsigned long value) {
    return encoding([&] { file->i_write_uint(value); });
  }
  std::string sint(long value) {
    return encoding([&] { file->i_write_sint(value); });
  }
};

TEST_F(IfWrite, EmptyUnit) {
  file->if_write_comment(";\tkrtparse a.c ");
  EXPECT_FALSE(close());
  EXPECT_EQ(contents(),
            bytes(0x08, 0x2A, 0x21, 0x3C, 0x69, 0x63, 0x6F, 0x64, 0x65, 0x3E, 0x0A, 0x00, 0xB9,
                  0xFF, 0x4C, 0x04, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x3F, 0, 0, 0,
                  0x61, 0x2E, 0x63, 0x00, 0, 0, 0, 0, 0x2F, 0x10, 0x3B, 0x09, 0x6B, 0x72, 0x74,
                  0x70, 0x61, 0x72, 0x73, 0x65, 0x20, 0x61, 0x2E, 0x63, 0x20, 0x00, 0xFF, 0xFF));
}

TEST_F(IfWrite, Leb128) {
  EXPECT_EQ(uint(0), bytes(0));
  EXPECT_EQ(uint(127), bytes(0x7F));
  EXPECT_EQ(uint(128), bytes(0x80, 0x01));
  EXPECT_EQ(uint(300), bytes(0xAC, 0x02));
  EXPECT_EQ(uint(ULONG_MAX), bytes(0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01));

  EXPECT_EQ(sint(0), bytes(0));
  EXPECT_EQ(sint(-1), bytes(0x7F));
  EXPECT_EQ(sint(63), bytes(0x3F));
  EXPECT_EQ(sint(64), bytes(0xC0, 0x00));
  EXPECT_EQ(sint(-64), bytes(0x40));
  EXPECT_EQ(sint(-65), bytes(0xBF, 0x7F));
  EXPECT_EQ(sint(LONG_MAX), bytes(0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00));
  EXPECT_EQ(sint(LONG_MIN), bytes(0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x7F));
}

TEST_F(IfWrite, FixedWidthsAndStrings) {
  EXPECT_EQ(encoding([&] { file->i_write_i8(-2); }), bytes(0xFE));
  EXPECT_EQ(encoding([&] { file->i_write_i16(-32768); }), bytes(0x00, 0x80));
  EXPECT_EQ(encoding([&] { file->i_write_i16(65535); }), bytes(0xFF, 0xFF));
  EXPECT_EQ(encoding([&] { file->i_write_i32(-2); }), bytes(0xFE, 0xFF, 0xFF, 0xFF));
  EXPECT_EQ(encoding([&] { file->i_write_string("ab", 0); }), bytes('a', 'b', 0));
  EXPECT_EQ(encoding([&] { file->i_write_string("a\0b", 3); }), bytes('a', 0, 'b'));
  EXPECT_EQ(encoding([&] { file->i_write_string(nullptr, 0); }), bytes(0));
}

TEST_F(IfWrite, HardStopsRemoveTheFile) {
  EXPECT_EXIT(ON_STDERR(file->i_write_i16(65536)), testing::ExitedWithCode(1),
              "^>> Value exceeds size of short\n$");
  EXPECT_NE(access(name, F_OK), 0);
  EXPECT_EXIT(ON_STDERR(file->i_write_i16(-32769)), testing::ExitedWithCode(1),
              "^>> Value exceeds size of short\n$");
}

TEST_F(IfWrite, LengthsAroundOneByteAndOneBuffer) {
  // A record's body and its length share the buffer; both must survive its
  // growth at every position.
  std::vector<RECORD> expected;
  for (size_t length : {1, 127, 128, 32766, 32767, 32768, 32769, 65535, 65536, 200000}) {
    std::string text(length - 1, 'c');
    file->if_write_comment(text.c_str());
    expected.push_back({iftag_comment, text + '\0'});
  }
  EXPECT_EQ(records(), expected);
  EXPECT_EQ(written().substr(132, 3), bytes(iftag_comment, 0x80, 0x01));
}

TEST_F(IfWrite, ByteWiseGrowth) {
  for (int i = 0; i < 70000; i++)
    file->i_write_i8(i);
  file->i_flush('x');
  std::string body = records().at(0).body;
  ASSERT_EQ(body.size(), 70000u);
  for (int i = 0; i < 70000; i++)
    ASSERT_EQ(body[i], static_cast<char>(i)) << i;
}

TEST_F(IfWrite, FileNames) {
  EXPECT_EQ(file->i_get_file_name(0), nullptr);
  EXPECT_EQ(file->i_get_file_id("x.h"), 0u);
  // Past two growths of the table.
  for (unsigned i = 1; i <= 45; i++)
    EXPECT_EQ(file->i_enter_file_name(("f" + std::to_string(i)).c_str()), i);
  std::string again = "f7";
  EXPECT_EQ(file->i_enter_file_name(again.c_str()), 7u);
  EXPECT_EQ(file->i_enter_file_name(file->i_get_file_name(20)), 20u);
  EXPECT_STREQ(file->i_get_file_name(45), "f45");
  EXPECT_EQ(file->i_get_file_name(46), nullptr);

  EXPECT_EQ(encoding([&] { file->i_write_psn(nullptr); }), bytes(0));
  PSN psn = {"f3", 300, 9};
  EXPECT_EQ(encoding([&] { file->i_write_psn(&psn); }), bytes(3, 0xAC, 0x02, 9));
  psn.file = nullptr;
  EXPECT_EQ(encoding([&] { file->i_write_psn(&psn); }), bytes(46, 0xAC, 0x02, 9));
  EXPECT_STREQ(file->i_get_file_name(46), "NO_FILE");
}

TEST_F(IfWrite, TypeReferences) {
  TYPE* int_type = types.integers[TYPE::ikind_int];
  TYPE* long_type = types.integers[TYPE::ikind_long];
  TYPE* short_type = types.integers[TYPE::ikind_short];
  short_type->equiv = long_type;
  long_type->equiv = int_type;
  EXPECT_EQ(encoding([&] { file->i_write_typeref(nullptr); }), bytes(0));
  EXPECT_EQ(encoding([&] { file->i_write_typeref(short_type); }), bytes(int_type->uid));
  EXPECT_TRUE(int_type->referenced);
  EXPECT_FALSE(short_type->referenced);
  EXPECT_FALSE(long_type->referenced);
}

TEST_F(IfWrite, LevelsAndTables) {
  SYMTAB function, global, param, local, inner, second;
  file->if_enter_global(&global);
  file->if_enter_global(&function);
  EXPECT_EQ(function.id, 1);
  file->if_write_begin_func(&function, nullptr);
  EXPECT_EQ(function.sym_location(), header_size);
  file->if_enter_local(&param);
  file->if_write_end_args(nullptr);
  file->if_enter_local(&local);
  file->if_write_end_locals(nullptr);
  file->if_write_control(iftag_begin_block, nullptr);
  file->if_enter_local(&inner);
  file->if_write_end_block(nullptr);
  EXPECT_EQ(file->if_level(), 2);
  file->if_write_end_func(nullptr);
  EXPECT_EQ(file->if_level(), 0);
  EXPECT_EQ(function.sym_level(), 0);
  EXPECT_EQ(std::pair(param.id, param.sym_level()), std::pair(0, 1));
  EXPECT_EQ(std::pair(local.id, local.sym_level()), std::pair(1, 2));
  EXPECT_EQ(std::pair(inner.id, inner.sym_level()), std::pair(2, 3));

  // The next function numbers its locals afresh.
  file->if_write_begin_func(&global, nullptr);
  file->if_enter_local(&second);
  EXPECT_EQ(std::pair(second.id, second.sym_level()), std::pair(0, 1));

  std::string none = bytes(0);
  EXPECT_EQ(records(), (std::vector<RECORD>{{iftag_begin_func, bytes(0, 1)},
                                            {iftag_end_args, none},
                                            {iftag_end_locals, none},
                                            {iftag_begin_block, none},
                                            {iftag_end_block, none},
                                            {iftag_end_func, none},
                                            {iftag_begin_func, bytes(0, 0)}}));
}

TEST_F(IfWrite, SymbolAndPragmas) {
  SYMTAB symbol;
  symbol.name = "v";
  symbol.size = 300;
  symbol.value = -1;
  symbol.storage_class = ifsc_static;
  symbol.cqual = 0x0102;
  symbol.type = types.integers[TYPE::ikind_int];
  symbol.align = 32;
  symbol.location = 129;
  symbol.option_set = 2;
  symbol.set_psn({nullptr, 4, 5});
  symbol.definition_state = 3;
  symbol.add_pragma(ifpk_DATA_SECTION, {".s", ""});
  symbol.add_pragma(ifpk_QL_WEAK);
  file->if_write_symbol(&symbol);
  std::string expected =
      bytes('v', 0, 0xAC, 0x02) + std::string(9, '\xFF') +
      bytes(0x01, 3, 0x02, 0x01, symbol.type->uid, 0, 32, 2, 0x81, 0x01, 2, 1, 4, 5, 3);
  EXPECT_EQ(records(),
            (std::vector<RECORD>{
                {'#', expected}, {'^', bytes(83, 0)}, {'^', bytes(2, 2, '.', 's', 0, 0)}}));
  EXPECT_EQ(symbol.find_pragma(ifpk_DATA_SECTION)->strings.at(0), ".s");
  EXPECT_EQ(symbol.find_pragma(ifpk_RETAIN), nullptr);
}

TEST(Pragma, Names) {
  EXPECT_STREQ(PRAGMA(ifpk_COMDAT_GROUP).name(), "COMDAT GROUP");
  EXPECT_STREQ(PRAGMA(128).name(), "NOINLINE");
  EXPECT_STREQ(PRAGMA(129).name(), "unknown");
}

TEST_F(IfWrite, SectionsAndHeader) {
  SYMTAB a, b;
  a.name = "a";
  a.type = types.integers[TYPE::ikind_int];
  a.set_psn({"a.c", 1, 5});
  b.name = "b";
  b.type = types.integers[TYPE::ikind_int];
  file->if_enter_global(&a);
  file->if_enter_global(&b);
  const char* words[] = {"-x", nullptr};
  file->if_enter_option_set(7, 2, const_cast<char**>(words));
  file->if_enter_option_set(OPTION_SET{8, {"-y"}});
  file->if_write_assembly(" nop", nullptr);
  file->if_set_flags(if_flag_not_embeddable);
  file->if_write_init(&b);
  file->if_write_init(&a);
  EXPECT_FALSE(close());

  // The body section with its end, then the initialisers.
  uint32_t init = word_at(20);
  EXPECT_EQ(init, header_size + 2 + 6 + 1);
  EXPECT_EQ(b.sym_location(), init);
  EXPECT_EQ(a.sym_location(), init + 3);
  std::vector<RECORD> all = records(init);
  EXPECT_EQ(all[0], (RECORD{'i', bytes(1)}));
  EXPECT_EQ(all[1], (RECORD{'i', bytes(0)}));
  EXPECT_EQ(all[2].tag, iftag_eof);

  uint32_t options = word_at(16);
  EXPECT_EQ(options, init + 7);
  all = records(options);
  EXPECT_EQ(all[0], (RECORD{'o', bytes(7, 2, '-', 'x', 0, 0)}));
  EXPECT_EQ(all[1], (RECORD{'o', bytes(8, 1, '-', 'y', 0)}));
  EXPECT_EQ(all[2].tag, iftag_eof);

  // The type's record is in the file although only the table of globals, which
  // comes later, refers to it.
  all = records(word_at(24));
  auto type = std::find_if(all.begin(), all.end(), [&](const RECORD& record) {
    return record.tag == 't' && record.body.substr(0, 2) == bytes(a.type->uid, iftc_int);
  });
  auto end = std::find_if(all.begin(), all.end(),
                          [](const RECORD& record) { return record.tag == iftag_eof; });
  EXPECT_LT(type, end);

  all = records(word_at(28));
  EXPECT_EQ(all[0], (RECORD{'~', bytes('a', '.', 'c', 0)}));
  EXPECT_EQ(all[1].tag, iftag_eof);

  all = records(word_at(32));
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0].body.substr(0, 2), bytes('a', 0));
  EXPECT_EQ(all[1].body.substr(0, 2), bytes('b', 0));
  EXPECT_EQ(all[2].tag, iftag_eof);
  EXPECT_EQ(word_at(40), 1u);
}

// The records of loops, dependences and memory banks.
TEST_F(IfWrite, LoopRecords) {
  SYMTAB symbol;
  symbol.id = 130;
  symbol.level = 2;
  TYPE* type = types.integers[TYPE::ikind_int];
  DD_ENTRY entries[] = {{1, -1}, {2, 3}};
  file->if_write_loop(1, 2, 3, 4, 300, -1);
  file->if_write_inloop(1, &symbol, 5);
  file->if_write_inloop(1, nullptr, 5);
  file->if_write_ldspec_induct(1, 2, -3, type, &symbol);
  file->if_write_ldspec_rand(1, 2, 3, type, nullptr);
  file->if_write_ldspec_region(1, 128);
  file->if_write_mbank(1, 2, 3, 4, 5);
  file->if_write_dep_edge(1, 2, 3);
  file->if_write_dep_vector(1, 9, 2, entries);
  file->if_write_func_info(6);
  EXPECT_EQ(records(), (std::vector<RECORD>{
                           {'&', bytes(1, 2, 3, 4, 0xAC, 0x02, 0xFF, 0xFF)},
                           {'|', bytes(1, 2, 0x82, 0x01, 5)},
                           {'|', bytes(1, 0x7F, 0x7F, 5)},
                           {'l', bytes(1, 0, 2, 0x7D, type->uid, 2, 0x82, 0x01)},
                           {'l', bytes(1, 1, 2, 3, type->uid, 0x7F, 0)},
                           {'l', bytes(1, 2, 0x80, 0x01)},
                           {'-', bytes(1, 2, 3, 4, 5)},
                           {':', bytes(1, 2, 3)},
                           {';', bytes(1, 9, 2, 1, 0xFF, 2, 3)},
                           {'@', bytes(6)},
                       }));
}

TEST_F(IfWrite, ExceptionTable) {
  NODE clean_up(ifop_NOP, nullptr);
  I_CATCH_ENTRY catches[] = {{"i", 1, true}, {"", 300, false}};
  EHT_ENTRY entries[] = {
      {1, eht_catch, 0, 2, {}}, {2, eht_cleanup, 1, 0, {}}, {3, eht_cleanup, 1, 0, {}}};
  entries[0].u.catches = catches;
  entries[1].u.expr = &clean_up;
  entries[2].u.expr = nullptr;
  file->if_write_func_eht(entries, 3);
  EXPECT_EQ(records(), (std::vector<RECORD>{
                           {']', bytes(3)},
                           {'[', bytes(1, 2, 0, 2)},
                           {'?', bytes('i', 0, 1, 1, 0, 0xAC, 0x02, 0)},
                           {'[', bytes(2, 1, 1, 0)},
                           {'.', bytes(0)},
                           {'e', bytes(0, 0)},
                           {'[', bytes(3, 1, 1, 0)},
                           {'.', bytes(0)},
                       }));
}

TEST_F(IfWrite, AbandonedFileIsRemoved) {
  file->if_write_comment("c");
  EXPECT_FALSE(std::exchange(file, nullptr)->if_close(false, true));
  EXPECT_NE(access(name, F_OK), 0);
}

TEST_F(IfWrite, FinishedFileStays) {
  EXPECT_FALSE(close());
  if_remove_output_file();
  EXPECT_EQ(access(name, F_OK), 0);
}

TEST_F(IfWrite, NoEndOfTheRunLeavesAnUnfinishedFile) {
  auto restore = [&] { ::close(open(name, O_CREAT | O_WRONLY, 0600)); };
  EXPECT_EXIT(exit(4), testing::ExitedWithCode(4), "");
  EXPECT_NE(access(name, F_OK), 0);
  restore();
  EXPECT_EXIT(tp_die("x"), testing::ExitedWithCode(1), "TP>> internal error: x");
  EXPECT_NE(access(name, F_OK), 0);
  for (int signal_number : {SIGHUP, SIGTERM, SIGABRT}) {
    restore();
    EXPECT_EXIT(signal_init(); raise(signal_number), testing::ExitedWithCode(2), "");
    EXPECT_NE(access(name, F_OK), 0) << signal_number;
  }
}

// A link, such as one of the standard streams has in the directory of devices,
// stays; what it leads to goes.
TEST_F(IfWrite, LinkToTheFileStays) {
  std::string link = std::string(name) + ".link";
  ASSERT_EQ(symlink(name, link.c_str()), 0);
  if_set_output_name(link.c_str());
  if_remove_output_file();
  struct stat status;
  EXPECT_EQ(lstat(link.c_str(), &status), 0);
  EXPECT_NE(access(name, F_OK), 0);
  unlink(link.c_str());
}

// The first failure's reason survives the later, smaller ones, and a device is
// no file to remove.
TEST(IfWriteFailure, FullDevice) {
  TYPE_PKG types;
  for (size_t length : {10, 100000}) {
    if_set_output_name("/dev/full");
    I_FILE* file = if_create(fopen("/dev/full", "wb"), &types, "a.c");
    file->if_write_comment(std::string(length, 'c').c_str());
    EXPECT_TRUE(file->if_close(false, false));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(access("/dev/full", F_OK), 0);
  }
}

// The header's offsets have 32 bits.
TEST_F(IfWrite, FileTooLargeForItsHeader) {
  file->if_seek(UINT32_MAX);
  EXPECT_TRUE(close());
  EXPECT_EQ(errno, EFBIG);
  EXPECT_NE(access(name, F_OK), 0);
}

TEST(IfWriteOutput, GoesOutInLargePieces) {
  std::vector<size_t> pieces;
  cookie_io_functions_t operations = {};
  operations.write = [](void* cookie, const char*, size_t size) -> ssize_t {
    static_cast<std::vector<size_t>*>(cookie)->push_back(size);
    return static_cast<ssize_t>(size);
  };
  operations.seek = [](void*, off64_t*, int) { return 0; };
  TYPE_PKG types;
  I_FILE* file = if_create(fopencookie(&pieces, "wb", operations), &types, "a.c");
  for (int i = 0; i < 20000; i++)
    file->if_write_comment("hello world");
  EXPECT_FALSE(file->if_close(false, false));
  ASSERT_FALSE(pieces.empty());
  EXPECT_LE(pieces.size(), 10u); // nine of text and the header
  EXPECT_GE(pieces[0], 32768u);
}

// A stream that can't seek back can't get its final header.
TEST(IfWriteFailure, Pipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  TYPE_PKG types;
  I_FILE* file = if_create(fdopen(ends[1], "wb"), &types, "a.c");
  EXPECT_TRUE(file->if_close(false, false));
  EXPECT_EQ(errno, ESPIPE);
  ::close(ends[0]);
}

} // namespace
