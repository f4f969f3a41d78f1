// A fixture that writes an intermediate file and reads its bytes back.

#ifndef IF_FILE_FIXTURE_H
#define IF_FILE_FIXTURE_H

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "if_write.h"
#include "if_write_util.h"
#include "type_pkg.h"

struct RECORD {
  int tag;
  std::string body; // empty for the end of a section
  bool operator==(const RECORD&) const = default;
};

// Bytes from numbers.
template <class... Byte> std::string bytes(Byte... values) {
  return {static_cast<char>(values)...};
}

class IfFile : public testing::Test {
protected:
  void SetUp() override {
    int fd = mkstemp(name);
    ASSERT_GE(fd, 0);
    if_set_output_name(name);
    file = if_create(fdopen(fd, "wb+"), &types, "a.c");
    header_size = 44;
  }

  void TearDown() override {
    if (file != nullptr)
      file->if_close(false, true);
    unlink(name);
  }

  // Whether closing failed.
  bool close(bool keep_all_types = false) {
    return std::exchange(file, nullptr)->if_close(keep_all_types, false);
  }

  std::string contents() {
    if (file != nullptr)
      file->if_flush();
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  // What was written behind the header, as it stands.
  std::string written() {
    return contents().substr(header_size);
  }

  // The records from an offset of the file on.
  std::vector<RECORD> records(size_t offset) {
    std::string all = contents();
    std::vector<RECORD> result;
    while (offset < all.size()) {
      int tag = static_cast<unsigned char>(all[offset++]);
      size_t length = 0;
      for (int shift = 0; tag != iftag_eof; shift += 7) {
        unsigned char group = all.at(offset++);
        length |= static_cast<size_t>(group & 0x7F) << shift;
        if (group < 0x80)
          break;
      }
      result.push_back({tag, all.substr(offset, length)});
      offset += length;
    }
    return result;
  }

  std::vector<RECORD> records() {
    return records(header_size);
  }

  // The i32 at an offset of the file.
  uint32_t word_at(size_t offset) {
    std::string all = contents();
    uint32_t word = 0;
    for (int i = 3; i >= 0; i--)
      word = word << 8 | static_cast<unsigned char>(all.at(offset + i));
    return word;
  }

  char name[32] = "/tmp/if_test.XXXXXX";
  TYPE_PKG types;
  I_FILE* file = nullptr;
  size_t header_size = 0;
};

// A statement whose standard output is to be matched by EXPECT_EXIT.
#define ON_STDERR(statement)                                                                       \
  {                                                                                                \
    dup2(STDERR_FILENO, STDOUT_FILENO);                                                            \
    statement;                                                                                     \
  }

#endif
