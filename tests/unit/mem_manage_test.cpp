#include "front_end_fixture.h"

#include <chrono>
#include <cstdlib>
#include <vector>

namespace {

class MEM_MANAGE_TEST : public FrontEnd {
protected:
  // Bytes left in the head block.
  static uint64_t room(int32_t region) {
    const a_mem_block* head = mem_region_table[region];
    return static_cast<uint64_t>(head->end - head->alloc_position);
  }

  static uint64_t capacity(int32_t region) {
    const a_mem_block* head = mem_region_table[region];
    return static_cast<uint64_t>(head->end - head->first_byte);
  }
};

TEST_F(MEM_MANAGE_TEST, NewRegionHasOneEmptyBlock) {
  int32_t region = new_memory_region();
  EXPECT_EQ(region, highest_used_region_number);
  const a_mem_block* head = mem_region_table[region];
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(head->next, nullptr);
  EXPECT_EQ(head->alloc_position, head->first_byte);
  EXPECT_EQ(head->total_size, 65536u);
  EXPECT_EQ(capacity(region), 65536u - sizeof(a_mem_block));
}

TEST_F(MEM_MANAGE_TEST, AllocationRoundsToEightAndKeepsEightBytesFree) {
  int32_t region = new_memory_region();
  char* first = static_cast<char*>(alloc_in_region(region, 1));
  EXPECT_EQ(static_cast<char*>(alloc_in_region(region, 9)), first + 8);
  EXPECT_EQ(static_cast<char*>(alloc_in_region(region, 0)), first + 24);
  a_mem_block* head = mem_region_table[region];
  alloc_in_region(region, room(region) - 8);
  EXPECT_EQ(mem_region_table[region], head);
  EXPECT_EQ(room(region), 8u);
  alloc_in_region(region, 0); // still fits: it asks for the 8 free bytes only
  EXPECT_EQ(mem_region_table[region], head);
  alloc_in_region(region, 1);
  EXPECT_NE(mem_region_table[region], head);
}

TEST_F(MEM_MANAGE_TEST, LargeRequestGetsABlockOfItsSize) {
  int32_t region = new_memory_region();
  uint64_t size = 100001;
  alloc_in_region(region, size);
  EXPECT_EQ(mem_region_table[region]->total_size, 100008 + 8 + sizeof(a_mem_block));
  EXPECT_EQ(room(region), 8u);
}

TEST_F(MEM_MANAGE_TEST, OverflowWithASmallTailKeepsItAndMarksTheHead) {
  int32_t region = new_memory_region();
  a_mem_block* head = mem_region_table[region];
  alloc_in_region(region, room(region) - 2200);
  char* end = head->end;
  alloc_in_region(region, 4000);
  EXPECT_EQ(head->end, end);
  EXPECT_TRUE(head->trimmed);
  EXPECT_EQ(mem_region_table[region]->total_size, 65536u);
}

TEST_F(MEM_MANAGE_TEST, TrimmedRegionGrowsBySmallBlocks) {
  int32_t donor = new_memory_region();
  int32_t region = new_memory_region();
  alloc_in_region(donor, 8);
  trim_memory_region(donor); // leaves a large free block
  alloc_in_region(region, 8);
  trim_memory_region(region);
  EXPECT_EQ(room(region), 0u);
  alloc_in_region(region, 16);
  EXPECT_EQ(mem_region_table[region]->total_size, 2048u);
  // A region that wasn't trimmed takes the large one.
  int32_t other = new_memory_region();
  EXPECT_EQ(mem_region_table[other]->total_size, 0u);
}

TEST_F(MEM_MANAGE_TEST, TailsOfOneAllocationMergeAndGoBack) {
  int32_t first = new_memory_region();
  a_mem_block* whole = mem_region_table[first];
  alloc_in_region(first, 8);
  char* end = whole->end;
  trim_memory_region(first);
  // The tail becomes the block of the next region, and is split once more.
  int32_t second = new_memory_region();
  a_mem_block* tail = mem_region_table[second];
  ASSERT_EQ(reinterpret_cast<char*>(tail), whole->end);
  alloc_in_region(second, 8);
  trim_memory_region(second);
  free_memory_region(second);
  // Both parts of the tail are one free block again.
  int32_t third = new_memory_region();
  EXPECT_EQ(mem_region_table[third], tail);
  EXPECT_EQ(tail->end, end);
  free_memory_region(third);
  free_memory_region(first); // spans the whole allocation: returned to the system
  int32_t fourth = new_memory_region();
  EXPECT_EQ(mem_region_table[fourth]->total_size, 65536u);
}

TEST_F(MEM_MANAGE_TEST, FreeingARegionWithoutMemoryClearsTheTables) {
  int32_t region = new_memory_region();
  free_memory_region(region);
  free_memory_region(region);
  EXPECT_EQ(mem_region_table[region], nullptr);
  EXPECT_EQ(il_header.region_scope_table[region], nullptr);
}

TEST_F(MEM_MANAGE_TEST, TablesGrowWithZeroedEntries) {
  ensure_mem_region_table_space(5000);
  EXPECT_EQ(size_of_mem_region_table, 7048u);
  for (uint64_t i = 4000; i < size_of_mem_region_table; i++) {
    ASSERT_EQ(mem_region_table[i], nullptr);
    ASSERT_EQ(il_header.region_scope_table[i], nullptr);
    ASSERT_EQ(index_for_il_file[i], 0u);
  }
  int32_t number = new_function_def_number();
  EXPECT_EQ(number, 1);
  EXPECT_EQ(il_header.function_def_table[number].scope, nullptr);
  EXPECT_EQ(size_of_function_def_table, 2049u);
}

// Memory that is mapped from a file, as it is while a precompiled header may be
// made or used; no front end beside it.
class MAPPED_MEMORY_TEST : public MEM_MANAGE_TEST {
protected:
  void SetUp() override {
    MEM_MANAGE_TEST::SetUp();
    start_mapped_memory();
  }

  static void start_mapped_memory() {
    free_all_memory();
    precompiled_header_processing_required = 1;
    mem_manage_early_init();
    trans_unit_early_init();
    mem_manage_one_time_init();
    mem_manage_init();
  }

  static std::vector<a_mem_alloc_history_entry> history() {
    return {mem_alloc_history, mem_alloc_history + mem_alloc_history_entries_used};
  }
};

TEST_F(MAPPED_MEMORY_TEST, BlocksArePageSizedAndNeverMerged) {
  uint64_t blocks = mem_alloc_history_entries_used;
  EXPECT_EQ(blocks, 2u);
  int32_t region = new_memory_region();
  a_mem_block* head = mem_region_table[region];
  EXPECT_EQ(head->total_size % 4096, 0u);
  memset(alloc_in_region(region, 70000), 1, 70000);
  EXPECT_EQ(mem_alloc_history_entries_used, blocks + 2);
  free_memory_region(region);
  // The freed blocks are used again; nothing went back to the system.
  int32_t next = new_memory_region();
  EXPECT_EQ(mem_alloc_history_entries_used, blocks + 2);
  EXPECT_NE(mem_region_table[next], nullptr);
}

TEST_F(MAPPED_MEMORY_TEST, EqualAllocationsHaveEqualAddresses) {
  auto allocate = [] {
    for (uint64_t size : {10u, 70000u, 200000u})
      alloc_in_region(new_memory_region(), size);
  };
  allocate();
  std::vector<a_mem_alloc_history_entry> first = history();
  start_mapped_memory();
  allocate();
  std::vector<a_mem_alloc_history_entry> second = history();
  ASSERT_EQ(first.size(), second.size());
  for (size_t i = 0; i < first.size(); i++) {
    EXPECT_EQ(first[i].address, second[i].address);
    EXPECT_EQ(first[i].size, second[i].size);
  }
}

TEST_F(MAPPED_MEMORY_TEST, TheHistoryGrowsWithItsBlocks) {
  int32_t region = new_memory_region();
  for (int i = 0; i < 600; i++)
    alloc_mem_block(region, 100, true);
  EXPECT_EQ(num_of_mem_alloc_history_entries, mem_alloc_history_entries_used);
  EXPECT_EQ(mem_alloc_history_entries_used, 603u);
  EXPECT_EQ(size_of_mem_alloc_history, 1000u);
  // Small blocks of the file are whole pages, each behind the other.
  for (uint64_t i = 4; i < mem_alloc_history_entries_used; i++)
    ASSERT_EQ(static_cast<char*>(mem_alloc_history[i - 1].address) + mem_alloc_history[i - 1].size,
              mem_alloc_history[i].address);
}

TEST_F(MAPPED_MEMORY_TEST, StoredMemoryComesBackAtItsAddresses) {
  int32_t region = new_memory_region();
  // A chain of records, each in a block of its own.
  struct a_record {
    a_record* next;
    int number;
  };
  a_record* chain = nullptr;
  for (int number = 0; number < 5; number++) {
    alloc_mem_block(region, 60000, false);
    auto* record = static_cast<a_record*>(alloc_in_region(region, sizeof(a_record)));
    *record = {chain, number};
    chain = record;
  }
  std::vector<a_mem_alloc_history_entry> blocks = history();
  FILE* file = tmpfile();
  std::vector<size_t> places;
  for (const a_mem_alloc_history_entry& block : blocks) {
    ASSERT_TRUE(seek_to_page_alignment(file));
    places.push_back(static_cast<size_t>(ftell(file)));
    ASSERT_EQ(fwrite(block.address, 1, block.size, file), block.size);
  }
  fflush(file);
  free_mapped_mem_blocks();
  EXPECT_EQ(mem_alloc_history_entries_used, 0u);
  for (size_t i = 0; i < blocks.size(); i++) {
    map_input_file_to_region(file, places[i], blocks[i].size, blocks[i].address, "stored");
    record_mapped_mem_block(blocks[i].address, blocks[i].size);
  }
  fclose(file);
  EXPECT_EQ(mem_alloc_history_entries_used, blocks.size());
  for (int number = 5; number-- > 0; chain = chain->next) {
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->number, number);
  }
  // The region goes on from where it stood.
  EXPECT_NE(alloc_in_region(region, 8), nullptr);
}

TEST_F(MEM_MANAGE_TEST, GeneralMemoryIsRememberedBeyondTheStaticRecords) {
  for (int i = 0; i < 3000; i++) {
    void* p = alloc_general(16);
    memset(p, i, 16);
    if (i % 3 == 0)
      free_general(p, 16);
  }
  // What is left is released with everything else; the leak checker watches.
}

TEST_F(MEM_MANAGE_TEST, ResizableBuffersKeepTheirContents) {
  char* buffer = realloc_buffer(nullptr, 0, 4);
  memcpy(buffer, "abc", 4);
  buffer = realloc_buffer(buffer, 4, 1 << 20);
  EXPECT_STREQ(buffer, "abc");
  buffer[(1 << 20) - 1] = 'x';
}

TEST_F(MEM_MANAGE_TEST, TextBufferGrowsInDoublingIncrements) {
  a_text_buffer* buffer = alloc_text_buffer(10);
  f_add_string_to_text_buffer(buffer, "0123456789");
  EXPECT_EQ(buffer->allocated_size, 10u);
  add_1_char_to_text_buffer(buffer, 'x');
  EXPECT_EQ(buffer->allocated_size, 20u);
  EXPECT_EQ(buffer->increment, 20u);
  expand_text_buffer(buffer, 21);
  EXPECT_EQ(buffer->allocated_size, 40u);
  EXPECT_EQ(buffer->used_size, 11u);
  add_1_char_to_text_buffer(buffer, '\0');
  remove_null_terminator_from_text_buffer(buffer);
  remove_null_terminator_from_text_buffer(buffer); // only one is there
  EXPECT_EQ(buffer->used_size, 11u);
  set_buffer_position(buffer, buffer->data + 3);
  add_1_char_to_text_buffer(buffer, '\0');
  EXPECT_STREQ(buffer->data, "012");
}

TEST_F(MEM_MANAGE_TEST, FreedGeneralMemoryIsBlankedInItsRecord) {
  void* first = alloc_general(16);
  free_general(first, 16);
  void* second = alloc_general(16);
  free_general(second, 16); // fails if the first record still had the address
  EXPECT_NE(alloc_general_or_in_region(general_memory, 8), nullptr);
  char* in_region = static_cast<char*>(alloc_general_or_in_region(0, 8));
  EXPECT_EQ(static_cast<char*>(alloc_in_region(0, 8)), in_region + 8);
}

TEST_F(MEM_MANAGE_TEST, RegionsOfSecondaryUnitsAreNumberedOn) {
  mem_manage_trans_unit_init();
  EXPECT_EQ(file_scope_region_number, 1);
  int32_t last = new_memory_region();
  is_primary_translation_unit = 0;
  mem_manage_trans_unit_init();
  EXPECT_EQ(file_scope_region_number, last + 1);
  EXPECT_NE(mem_region_table[last + 1], nullptr);
  init_memory_region_without_initial_allocation(last + 10);
  EXPECT_EQ(highest_used_region_number, last + 10);
  EXPECT_EQ(mem_region_table[last + 10], nullptr);
  EXPECT_NE(alloc_in_region(last + 10, 8), nullptr);
  EXPECT_FALSE(mem_region_table[last + 10]->trimmed);
}

// The numbers that stand for a long run are no more in force when it ends.
void forget_numbers_at_exit() {
  atexit([] { highest_used_region_number = 1; });
}

TEST_F(MEM_MANAGE_TEST, ExhaustedNumbersEndTheCompilation) {
  const char* text = "program too large or complicated to compile";
  highest_used_region_number = max_region_number;
  expect_catastrophe(
      [] {
        forget_numbers_at_exit();
        new_memory_region();
      },
      text);
  highest_used_region_number = 1;
  highest_used_function_def_number = max_region_number;
  expect_catastrophe([] { new_function_def_number(); }, text);
  highest_used_function_def_number = 0;
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(MEM_MANAGE_TEST, ExhaustedMemoryEndsTheCompilation) {
  constexpr uint64_t too_much = uint64_t{1} << 60;
  const char* text = "out of memory";
  expect_catastrophe([] { alloc_in_region(1, too_much); }, text);
  expect_catastrophe([] { alloc_general(too_much); }, text);
  expect_catastrophe([] { realloc_buffer(alloc_resizable_buffer(8), 8, too_much); }, text);
  expect_catastrophe([] { expand_text_buffer(alloc_text_buffer(8), too_much); }, text);
  expect_catastrophe([] { ::operator delete(::operator new(too_much)); }, text);
}
#endif

TEST_F(MEM_MANAGE_TEST, AMillionAllocationsAreQuick) {
  int32_t region = new_memory_region();
  auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 1 << 20; i++)
    alloc_in_region(region, 40);
  std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(elapsed.count(), 2.0);
}

} // namespace
