// Memory regions. All data that outlives a single parsing routine is bumped
// out of numbered regions; a region is a list of large blocks and is freed as
// a whole. Beside regions this module offers general memory that is remembered
// until the end of the compilation, resizable buffers and growing texts.

#ifndef MEM_MANAGE_H
#define MEM_MANAGE_H

#include "basics.h"

#include <cstring>

// The header that starts every block of a region.
struct a_mem_block {
  a_mem_block* next;    // in the region's list or in the free list
  char* first_byte;     // directly behind the header
  char* alloc_position; // next free byte
  char* end;            // one past the last byte of the block
  uint64_t total_size;  // of the system allocation that this header starts; 0 for
                        // a block split off from inside another
  uint8_t trimmed;      // the tail was given back: the region grows by small blocks
  uint8_t mapped;       // the system allocation is part of the mapped file
  uint8_t in_area;      // cut from an area of the system's memory, which stays whole
};
static_assert(sizeof(a_mem_block) == 48);

struct a_mem_alloc_history_entry {
  void* address;
  uint64_t size;
};
static_assert(sizeof(a_mem_alloc_history_entry) == 16);

// A growing string of bytes. The record is remembered general memory and is
// never returned; a module keeps one and resets it for each use.
struct a_text_buffer {
  a_text_buffer* next; // the buffer made before this one
  uint64_t allocated_size;
  uint64_t used_size;
  uint64_t increment; // growth comes in multiples of it; doubles with each
  char* data;
};

inline constexpr uint64_t mem_block_size = 0x10000;
inline constexpr uint64_t small_mem_block_size = 2048;
inline constexpr uint64_t smallest_tail_worth_keeping = 2208;
inline constexpr uint64_t mem_table_increment = 2048;
inline constexpr int32_t max_region_number = 0x7fffffff;

// Region 0: front-end data that isn't IL. Stands, as an argument, for memory
// from the general allocator: general_memory.
inline constexpr int32_t front_end_region = 0;
inline constexpr int32_t general_memory = -1;

extern int32_t file_scope_region_number; // 1 for the primary translation unit
extern int32_t highest_used_region_number;
extern a_mem_block** mem_region_table; // the head block of each region
extern uint64_t size_of_mem_region_table;
extern uint64_t* index_for_il_file; // where each region was written; 0: not yet
extern int32_t highest_used_function_def_number;
extern uint64_t size_of_function_def_table;

// The memory-mapped blocks, for the precompiled header writer. A compilation
// that makes the same allocations gets them at the same addresses.
extern a_mem_alloc_history_entry* mem_alloc_history;
extern uint64_t size_of_mem_alloc_history;
extern uint64_t num_of_mem_alloc_history_entries;
extern uint64_t mem_alloc_history_entries_used;

// Returns a block of at least `size` usable bytes that heads the region's list.
a_mem_block* alloc_mem_block(int32_t region, uint64_t size, bool small_block);
// Takes `size` bytes, a multiple of the page size, from the mapped temporary file.
a_mem_block* alloc_new_mem_block(uint64_t size);

// Make the region empty; the first also gives it a block of `size` bytes or more.
void init_memory_region(int32_t region, uint64_t size);
void init_memory_region_without_initial_allocation(int32_t region);
// Takes the next region number and gives it a block.
int32_t new_memory_region();
int32_t new_function_def_number();
void ensure_mem_region_table_space(int32_t region);
void ensure_function_def_table_space(int32_t number);

void* alloc_in_new_mem_block(int32_t region, uint64_t size);

// Allocates `size` bytes, aligned to 8, in the region; the memory isn't
// cleared. Never fails: a compilation out of memory ends with a catastrophe.
inline void* alloc_in_region(int32_t region, uint64_t size) {
  a_mem_block* block = mem_region_table[region];
  size = (size + 7) & ~uint64_t{7};
  // A block is never filled to its last 8 bytes.
  if (block == nullptr || (uint64_t)(block->end - block->alloc_position) < size + 8)
    return alloc_in_new_mem_block(region, size);
  char* result = block->alloc_position;
  block->alloc_position += size;
  return result;
}

void* alloc_general_or_in_region(int32_t region, uint64_t size);

// A zeroed record that isn't IL and lasts until the end of the compilation.
template <typename T> T* alloc_front_end_record() {
  void* memory = alloc_in_region(front_end_region, sizeof(T));
  memset(memory, 0, sizeof(T));
  return static_cast<T*>(memory);
}

// Gives the unused tail of the head block to the free list.
void trim_memory_region(int32_t region);
// Releases all memory of the region. The number isn't used again.
void free_memory_region(int32_t region);
// A function or a unit is finished: its region grows no more, or little. The
// region of a file scope that nothing holds back is written to the IL file.
void check_for_done_with_memory_region(int32_t region);
// All function bodies are finished: writes the regions of the primary unit's.
void check_for_done_with_all_function_memory_regions();

// Notes a mapped block of a precompiled header; unmaps all mapped blocks.
void record_mapped_mem_block(void* address, uint64_t size);
void free_mapped_mem_blocks();

// General memory, remembered until free_all_memory.
void* alloc_general(uint64_t size);
void free_general(void* p, uint64_t size);
char* alloc_resizable_buffer(uint64_t size);
// `p` is null or comes from one of these three functions.
char* realloc_buffer(char* p, uint64_t old_size, uint64_t new_size);
// The same, with the bytes from `old_size` on cleared.
char* grow_zeroed_buffer(char* p, uint64_t old_size, uint64_t new_size);

a_text_buffer* alloc_text_buffer(uint64_t size);
// Makes room for `size` bytes in all.
void expand_text_buffer(a_text_buffer* buffer, uint64_t size);
// Makes `p`, a position inside the used bytes, the end of the text.
void set_buffer_position(a_text_buffer* buffer, char* p);
// Drops one trailing zero byte.
void remove_null_terminator_from_text_buffer(a_text_buffer* buffer);

inline void reset_text_buffer(a_text_buffer* buffer) {
  buffer->used_size = 0;
}

inline void add_to_text_buffer(a_text_buffer* buffer, const char* text, uint64_t length) {
  if (length == 0)
    return;
  if (buffer->used_size + length > buffer->allocated_size)
    expand_text_buffer(buffer, buffer->used_size + length);
  memcpy(buffer->data + buffer->used_size, text, length);
  buffer->used_size += length;
}

inline void add_1_char_to_text_buffer(a_text_buffer* buffer, char ch) {
  add_to_text_buffer(buffer, &ch, 1);
}

// Adds the string without its terminator.
inline void f_add_string_to_text_buffer(a_text_buffer* buffer, const char* string) {
  add_to_text_buffer(buffer, string, strlen(string));
}

// Releases all regions, the free list and all remembered memory, at the end of
// the compilation.
void free_all_memory();

void mem_manage_early_init();
void mem_manage_one_time_init();
void mem_manage_init();
void mem_manage_trans_unit_init();

#endif
