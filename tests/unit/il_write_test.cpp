#include "il_fixture.h"
#include "il_write.h"
#include "pch.h"
#include "source_file.h"

#include <string>
#include <vector>

namespace {

// An IL file that is written to and read back from an unnamed file.
class IL_WRITE_TEST : public IL_TEST {
protected:
  void SetUp() override {
    IL_TEST::SetUp();
    f_il = tmpfile();
    start_il_file();
  }

  void TearDown() override {
    if (f_il != nullptr)
      fclose(f_il);
    f_il = nullptr;
    header_stop_position_pending = 0;
    IL_TEST::TearDown();
  }

  static void finish_unit() {
    check_for_done_with_all_function_memory_regions();
    check_for_done_with_memory_region(file_scope_region_number);
  }

  static void go_to(uint64_t place) {
    fseek(f_il, static_cast<long>(place), SEEK_SET);
  }

  template <class T> static T read() {
    T value;
    EXPECT_EQ(fread(&value, sizeof value, 1, f_il), 1u);
    return value;
  }

  // The blocks of a region as the file has them.
  struct a_stored_block {
    a_mem_block header;
    std::string bytes;
  };
  struct a_stored_region {
    uint64_t scope;
    std::vector<a_stored_block> blocks;

    // The stored form of an entry of the region; null if the region has none.
    template <class T> const T* find(const T* entry) const {
      const char* p = reinterpret_cast<const char*>(entry);
      for (const a_stored_block& block : blocks)
        if (p >= block.header.first_byte && p < block.header.alloc_position)
          return reinterpret_cast<const T*>(block.bytes.data() + (p - block.header.first_byte));
      return nullptr;
    }
  };

  static a_stored_region read_region(int32_t number) {
    a_stored_region region;
    go_to(index_for_il_file[number]);
    EXPECT_EQ(read<int32_t>(), number);
    uint64_t total = read<uint64_t>();
    region.scope = read<uint64_t>();
    uint64_t used = read<uint64_t>();
    while (total != 0 && !ferror(f_il) && !feof(f_il)) {
      a_stored_block block = {read<a_mem_block>(), {}};
      block.bytes.resize(
          static_cast<size_t>(block.header.alloc_position - block.header.first_byte));
      EXPECT_EQ(fread(block.bytes.data(), 1, block.bytes.size(), f_il), block.bytes.size());
      total -= sizeof block.header + block.bytes.size();
      used -= block.bytes.size();
      region.blocks.push_back(block);
    }
    EXPECT_EQ(used, 0u);
    return region;
  }
};

TEST_F(IL_WRITE_TEST, RegionsAreStoredAsTheyStand) {
  a_symbol* symbol = enter_variable("x", sc_none, 0);
  a_variable* x = symbol->variant.variable;
  a_routine* routine = function("f", sc_none);
  use_in_body(routine, variable_use, x);
  a_scope* body = scope_for_routine(routine);
  finish_unit();
  a_stored_region file_scope = read_region(1);
  EXPECT_EQ(file_scope.scope, reinterpret_cast<uint64_t>(il_header.primary_scope));
  const a_variable* stored = file_scope.find(x);
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(stored->type, x->type);
  EXPECT_EQ(stored->source_corresp.parent_scope, il_header.primary_scope);
  // The symbol is the front end's: the file doesn't have it, the memory does.
  EXPECT_EQ(stored->source_corresp.symbol, nullptr);
  EXPECT_EQ(x->source_corresp.symbol, symbol);
  a_stored_region function_region = read_region(routine->region_number);
  EXPECT_EQ(function_region.scope, reinterpret_cast<uint64_t>(body));
  const a_scope* stored_body = function_region.find(body);
  ASSERT_NE(stored_body, nullptr);
  EXPECT_EQ(stored_body->assoc_statement, body->assoc_statement);
  EXPECT_EQ(function_region.find(x), nullptr);
}

TEST_F(IL_WRITE_TEST, ALargeRegionIsStoredBlockByBlock) {
  for (int i = 0; i < 3; i++)
    memset(alloc_in_region(1, 60000), 'a' + i, 60000);
  finish_unit();
  a_stored_region region = read_region(1);
  EXPECT_GE(region.blocks.size(), 3u);
  EXPECT_EQ(region.blocks[0].bytes.back(), 'c');
}

TEST_F(IL_WRITE_TEST, TheHeadingIsCompletedAtTheEnd) {
  a_routine* routine = function("f", sc_none);
  finish_unit();
  uint64_t end_of_regions = static_cast<uint64_t>(ftell(f_il));
  finish_il_file();
  go_to(0);
  char text[22];
  ASSERT_EQ(fread(text, 1, sizeof text, f_il), sizeof text);
  EXPECT_STREQ(text, "ZNT IL file (v4.13)\f\f");
  EXPECT_EQ(read<int32_t>(), highest_used_region_number);
  EXPECT_EQ(read<int32_t>(), 1);
  uint64_t place_of_index = read<uint64_t>();
  EXPECT_EQ(read<uint64_t>(), index_for_il_file[1]);
  EXPECT_EQ(read<an_il_header>().primary_scope, il_header.primary_scope);
  std::vector<an_orphaned_entry_list> orphaned(75);
  ASSERT_EQ(fread(orphaned.data(), 16, 75, f_il), 75u);
  EXPECT_EQ(orphaned[iek_type].head, orphaned_file_scope_il_entries[iek_type].head);
  EXPECT_EQ(static_cast<uint64_t>(ftell(f_il)), index_for_il_file[routine->region_number]);
  EXPECT_EQ(place_of_index, end_of_regions + 4);
  go_to(end_of_regions);
  EXPECT_EQ(read<int32_t>(), 0);
  for (int32_t region = 0; region <= highest_used_region_number; region++)
    EXPECT_EQ(read<uint64_t>(), index_for_il_file[region]);
  EXPECT_EQ(fgetc(f_il), EOF);
}

TEST_F(IL_WRITE_TEST, ARegionIsWrittenOnceAndOnlyWithAFileOpen) {
  finish_unit();
  uint64_t place = index_for_il_file[1];
  EXPECT_NE(place, 0u);
  fseek(f_il, 0, SEEK_END);
  long end = ftell(f_il);
  write_memory_region(1);
  EXPECT_EQ(index_for_il_file[1], place);
  EXPECT_EQ(ftell(f_il), end);
  FILE* file = f_il;
  f_il = nullptr;
  int32_t region = new_memory_region();
  write_memory_region(region);
  EXPECT_EQ(index_for_il_file[region], 0u);
  f_il = file;
}

TEST_F(IL_WRITE_TEST, WhatMayBeNeededHoldsTheFileScopeBack) {
  a_scope* scope = il_header.region_scope_table[1];
  a_routine* routine = alloc_routine();
  a_type* closure = alloc_type(tk_class);
  class_supplement_of(closure)->is_lambda_closure = 1;
  a_scope* class_scope = alloc_scope(sk_class, 5);
  class_scope->assoc.type = closure;
  a_scope* function_scope = alloc_scope(sk_function, 6);
  function_scope->assoc.routine = routine;
  scope->next = function_scope;
  auto is_held_back = [] {
    check_for_done_with_memory_region(1);
    EXPECT_TRUE(mem_region_table[1]->trimmed); // in every case
    return index_for_il_file[1] == 0;
  };
  header_stop_position_pending = 1;
  EXPECT_TRUE(is_held_back());
  header_stop_position_pending = 0;
  scope->writing_held_back = 1;
  EXPECT_TRUE(is_held_back());
  scope->writing_held_back = 0;
  function_scope->is_template_prototype = 1;
  EXPECT_TRUE(is_held_back());
  function_scope->is_template_prototype = 0;
  routine->body_may_be_needed = 1;
  EXPECT_TRUE(is_held_back());
  routine->body_may_be_needed = 0;
  set_parent_scope(&routine->source_corresp, iek_routine, class_scope);
  class_supplement_of(closure)->is_unfinished = 1;
  EXPECT_TRUE(is_held_back());
  class_supplement_of(closure)->is_unfinished = 0;
  il_entry_prefix_of(scope).secondary_trans_unit_entry = 1;
  EXPECT_TRUE(is_held_back());
  il_entry_prefix_of(scope).secondary_trans_unit_entry = 0;
  EXPECT_FALSE(is_held_back());
}

TEST_F(IL_WRITE_TEST, TheRegionOfAFunctionWaitsForTheEndOfTheUnit) {
  a_routine* routine = function("f", sc_none);
  int32_t region = routine->region_number;
  check_for_done_with_memory_region(region);
  EXPECT_EQ(index_for_il_file[region], 0u);
  EXPECT_TRUE(mem_region_table[region]->trimmed);
  int32_t freed = function("g", sc_static)->region_number;
  free_memory_region(freed);
  check_for_done_with_all_function_memory_regions();
  EXPECT_NE(index_for_il_file[region], 0u);
  EXPECT_EQ(index_for_il_file[freed], 0u);
}

TEST_F(IL_WRITE_TEST, AFaultOfTheFileEndsTheCompilation) {
  fclose(f_il);
  f_il = fopen("/dev/full", "w");
  ASSERT_NE(f_il, nullptr);
  setvbuf(f_il, nullptr, _IONBF, 0);
  expect_catastrophe([] { write_memory_region(1); }, "error while writing intermediate language");
}

TEST_F(IL_WRITE_TEST, LinesAreFoundAgainInAnIlThatWasRead) {
  a_source_file* file = alloc_source_file();
  file->file_name = "stored.c";
  il_header.source_files = file;
  auto stretch = [&](uint32_t first, uint32_t last, uint32_t line) {
    a_seq_number_lookup_entry* entry = alloc_seq_number_lookup_entry();
    *entry = {nullptr, first, last, line, file, line, file};
    return entry;
  };
  il_header.seq_lookup_entries = stretch(1, 10, 1);
  il_header.seq_lookup_entries->next = stretch(11, 20, 101);
  il_header.num_seq_lookup_entries = 2;
  rebuild_structures_on_il_read();
  uint32_t line = 0;
  EXPECT_EQ(source_file_for_seq(15, &line, nullptr, false), file);
  EXPECT_EQ(line, 105u);
  // Another IL of as many stretches.
  il_header.seq_lookup_entries = stretch(1, 10, 1);
  il_header.seq_lookup_entries->next = stretch(11, 20, 201);
  rebuild_structures_on_il_read();
  source_file_for_seq(15, &line, nullptr, false);
  EXPECT_EQ(line, 205u);
  il_header.seq_lookup_entries = nullptr;
  il_header.num_seq_lookup_entries = 0;
  rebuild_structures_on_il_read();
}

} // namespace
