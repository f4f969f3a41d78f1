#include "mem_manage.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_write.h"
#include "mode_words.h"
#include "pch.h"
#include "trans_unit.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <sys/mman.h>

int32_t file_scope_region_number;
int32_t highest_used_region_number;
a_mem_block** mem_region_table;
uint64_t size_of_mem_region_table;
uint64_t* index_for_il_file;
int32_t highest_used_function_def_number;
uint64_t size_of_function_def_table;
a_mem_alloc_history_entry* mem_alloc_history;
uint64_t size_of_mem_alloc_history;
uint64_t num_of_mem_alloc_history_entries;
uint64_t mem_alloc_history_entries_used;

namespace {

// Memory that is remembered so that it can be released at the end.
struct a_remembered_allocation {
  a_remembered_allocation* next;
  void* address; // null once it has been freed
  uint64_t size;
};

constexpr int num_static_records = 1024;
a_remembered_allocation static_records[num_static_records];
int static_records_used;
a_remembered_allocation* general_allocations;
a_remembered_allocation* resizable_buffers;
a_text_buffer* text_buffers;

a_mem_block* free_blocks;

// Blocks are cut from areas that the system is asked to back with huge pages:
// page by page, a sixth of a long run would go by in faults.
constexpr uint64_t huge_page_size = 0x200000;
constexpr uint64_t first_area_size = huge_page_size;
constexpr uint64_t further_area_size = 16 * huge_page_size;
a_remembered_allocation* areas;
char* area_position; // what is left of the last one
char* area_end;

bool coalescing_is_on = true;

// The mapped temporary file: its length so far, and the number of its bytes in
// use.
bool mapped_file_is_open;
uint64_t mapped_file_offset;

constexpr uint64_t history_increment = 500;

// Given back when memory runs out: the report of that needs some itself.
constexpr uint64_t reserve_size = 0x40000;
void* reserve;

[[noreturn]] void out_of_memory() {
  if (reserve == nullptr)
    term_compilation(es_catastrophe); // not even the report can be made
  free(reserve);
  reserve = nullptr;
  catastrophe(ec_out_of_memory);
}

void* checked_malloc(uint64_t size) {
  void* p = malloc(size == 0 ? 1 : size);
  if (p == nullptr)
    out_of_memory();
  return p;
}

void* checked_realloc(void* p, uint64_t size) {
  p = realloc(p, size == 0 ? 1 : size);
  if (p == nullptr)
    out_of_memory();
  return p;
}

void remember(a_remembered_allocation** list, void* address, uint64_t size) {
  a_remembered_allocation* record;
  if (static_records_used < num_static_records)
    record = &static_records[static_records_used++];
  else
    record = static_cast<a_remembered_allocation*>(checked_malloc(sizeof(a_remembered_allocation)));
  record->next = *list;
  record->address = address;
  record->size = size;
  *list = record;
}

a_remembered_allocation* find_record(a_remembered_allocation* list, const void* address) {
  while (list != nullptr && list->address != address)
    list = list->next;
  if (list == nullptr)
    internal_error("unknown general allocation");
  return list;
}

void release_remembered(a_remembered_allocation** list) {
  while (a_remembered_allocation* record = *list) {
    *list = record->next;
    free(record->address);
    bool is_static = record >= static_records && record < static_records + num_static_records;
    if (!is_static)
      free(record);
  }
}

char* address_of(a_mem_block* block) {
  return reinterpret_cast<char*>(block);
}

// The header starts a system allocation, and nothing has been split off it.
bool is_whole_allocation(a_mem_block* block) {
  return !block->mapped && !block->in_area && block->total_size != 0 &&
         block->total_size == static_cast<uint64_t>(block->end - address_of(block));
}

bool directly_precedes(a_mem_block* lower, a_mem_block* upper) {
  return lower->end == address_of(upper) && upper->total_size == 0;
}

void push_free_block(a_mem_block* block) {
  block->next = free_blocks;
  free_blocks = block;
}

// Takes back a block that no region uses any more, and joins it to its free
// neighbours. The joined block is returned to the system once it spans the
// system allocation that it comes from.
void free_mem_block(a_mem_block* block) {
  if (!coalescing_is_on) {
    push_free_block(block);
    return;
  }
  if (is_whole_allocation(block)) {
    free(block);
    return;
  }
  a_mem_block** link = &free_blocks;
  while (a_mem_block* other = *link) {
    bool other_is_lower = directly_precedes(other, block);
    if (!other_is_lower && !directly_precedes(block, other)) {
      link = &other->next;
      continue;
    }
    *link = other->next;
    if (other_is_lower)
      std::swap(block, other);
    block->end = other->end;
    if (is_whole_allocation(block)) {
      free(block);
      return;
    }
  }
  push_free_block(block);
}

void free_block_list(a_mem_block* block) {
  while (block != nullptr) {
    a_mem_block* next = block->next;
    free_mem_block(block);
    block = next;
  }
}

a_mem_block* take_free_block(uint64_t need, bool small_block) {
  for (a_mem_block** link = &free_blocks; *link != nullptr; link = &(*link)->next) {
    a_mem_block* block = *link;
    uint64_t capacity = static_cast<uint64_t>(block->end - block->first_byte) + sizeof(a_mem_block);
    // A region that was trimmed must not swallow a large block.
    if (capacity < need || (small_block && capacity > small_mem_block_size))
      continue;
    *link = block->next;
    return block;
  }
  return nullptr;
}

// Cuts a block's memory off the current area, which is replaced when it is too
// short; null for a block that is better allocated alone.
void* cut_from_area(uint64_t size) {
  if (size > first_area_size / 4)
    return nullptr;
  if (size > static_cast<uint64_t>(area_end - area_position)) {
    // A short run touches the first area only: it isn't worth a huge page.
    uint64_t area_size = areas == nullptr ? first_area_size : further_area_size;
    area_position = static_cast<char*>(aligned_alloc(huge_page_size, area_size));
    if (area_position == nullptr) {
      area_end = nullptr;
      return nullptr;
    }
    area_end = area_position + area_size;
    if (areas != nullptr)
      madvise(area_position, area_size, MADV_HUGEPAGE); // a wish only
    remember(&areas, area_position, area_size);
  }
  char* result = area_position;
  area_position += size;
  return result;
}

void set_up_block(a_mem_block* block, uint64_t size, uint64_t total_size, bool is_mapped) {
  block->first_byte = address_of(block) + sizeof(a_mem_block);
  block->end = address_of(block) + size;
  block->total_size = total_size;
  block->mapped = is_mapped;
  block->in_area = false;
}

a_mem_block* new_mem_block(uint64_t size) {
  a_mem_block* block;
  if (precompiled_header_processing_required) {
    size = do_page_alignment(size);
    block = alloc_new_mem_block(size);
    set_up_block(block, size, size, true);
    return block;
  }
  block = static_cast<a_mem_block*>(cut_from_area(size));
  bool in_area = block != nullptr;
  if (!in_area)
    block = static_cast<a_mem_block*>(checked_malloc(size));
  set_up_block(block, size, size, false);
  block->in_area = in_area;
  return block;
}

template <class T> void grow_table(T** table, uint64_t old_length, uint64_t new_length) {
  *table = reinterpret_cast<T*>(grow_zeroed_buffer(reinterpret_cast<char*>(*table),
                                                   old_length * sizeof(T), new_length * sizeof(T)));
}

// Removes the blocks that lie inside the system allocation of another block;
// what is left may be freed.
void drop_split_blocks(a_mem_block** link) {
  while (*link != nullptr) {
    if ((*link)->total_size == 0)
      *link = (*link)->next;
    else
      link = &(*link)->next;
  }
}

void free_whole_blocks(a_mem_block* block) {
  while (block != nullptr) {
    a_mem_block* next = block->next;
    if (!block->mapped && !block->in_area)
      free(block);
    block = next;
  }
}

// All split blocks are dropped from all lists before any block is freed: a
// split block's header lies in memory that another list frees.
void release_all_blocks() {
  for (int32_t region = 0; region <= highest_used_region_number; region++)
    drop_split_blocks(&mem_region_table[region]);
  drop_split_blocks(&free_blocks);
  for (int32_t region = 0; region <= highest_used_region_number; region++) {
    free_whole_blocks(mem_region_table[region]);
    mem_region_table[region] = nullptr;
  }
  free_whole_blocks(free_blocks);
  free_blocks = nullptr;
  release_remembered(&areas);
  area_position = area_end = nullptr;
}

} // namespace

a_mem_block* alloc_mem_block(int32_t region, uint64_t size, bool small_block) {
  uint64_t need = size + sizeof(a_mem_block);
  a_mem_block* block = take_free_block(need, small_block);
  if (block == nullptr) {
    uint64_t minimum = small_block ? small_mem_block_size : mem_block_size;
    block = new_mem_block((std::max(need, minimum) + 7) & ~uint64_t{7});
  }
  block->alloc_position = block->first_byte;
  block->trimmed = 0;
  block->next = mem_region_table[region];
  mem_region_table[region] = block;
  return block;
}

a_mem_block* alloc_new_mem_block(uint64_t size) {
  if (!mapped_file_is_open) {
    open_mapped_il_temp_file();
    mapped_file_is_open = true;
    mapped_file_offset = 0;
  }
  void* address = map_file_region(size, mapped_file_offset);
  if (address == nullptr)
    catastrophe(ec_unable_to_get_mapped_memory);
  mapped_file_offset += size;
  record_mapped_mem_block(address, size);
  return static_cast<a_mem_block*>(address);
}

void init_memory_region_without_initial_allocation(int32_t region) {
  ensure_mem_region_table_space(region);
  mem_region_table[region] = nullptr;
  il_header.region_scope_table[region] = nullptr;
  highest_used_region_number = std::max(highest_used_region_number, region);
}

void init_memory_region(int32_t region, uint64_t size) {
  init_memory_region_without_initial_allocation(region);
  alloc_mem_block(region, size, false);
}

int32_t new_memory_region() {
  if (highest_used_region_number == max_region_number)
    catastrophe(ec_program_too_large);
  int32_t region = highest_used_region_number + 1;
  init_memory_region(region, 0);
  return region;
}

int32_t new_function_def_number() {
  if (highest_used_function_def_number == max_region_number)
    catastrophe(ec_program_too_large);
  int32_t number = ++highest_used_function_def_number;
  ensure_function_def_table_space(number);
  return number;
}

void ensure_mem_region_table_space(int32_t region) {
  if (static_cast<uint64_t>(region) < size_of_mem_region_table)
    return;
  uint64_t new_size = static_cast<uint64_t>(region) + mem_table_increment;
  grow_table(&mem_region_table, size_of_mem_region_table, new_size);
  grow_table(&il_header.region_scope_table, size_of_mem_region_table, new_size);
  grow_table(&index_for_il_file, size_of_mem_region_table, new_size);
  size_of_mem_region_table = new_size;
}

void ensure_function_def_table_space(int32_t number) {
  if (static_cast<uint64_t>(number) < size_of_function_def_table)
    return;
  uint64_t new_size = static_cast<uint64_t>(number) + mem_table_increment;
  grow_table(&il_header.function_def_table, size_of_function_def_table, new_size);
  size_of_function_def_table = new_size;
}

void* alloc_in_new_mem_block(int32_t region, uint64_t size) {
  a_mem_block* head = mem_region_table[region];
  bool small_block = head != nullptr && head->trimmed;
  if (head != nullptr && !small_block)
    trim_memory_region(region);
  a_mem_block* block = alloc_mem_block(region, size + 8, small_block);
  char* result = block->alloc_position;
  block->alloc_position += size;
  return result;
}

void* alloc_general_or_in_region(int32_t region, uint64_t size) {
  return region == general_memory ? alloc_general(size) : alloc_in_region(region, size);
}

void trim_memory_region(int32_t region) {
  a_mem_block* head = mem_region_table[region];
  if (head == nullptr)
    return;
  uint64_t tail_size = static_cast<uint64_t>(head->end - head->alloc_position);
  if (tail_size >= smallest_tail_worth_keeping) {
    a_mem_block* tail = reinterpret_cast<a_mem_block*>(head->alloc_position);
    set_up_block(tail, tail_size, 0, head->mapped);
    tail->alloc_position = tail->first_byte;
    tail->trimmed = 0;
    head->end = head->alloc_position;
    free_mem_block(tail);
  }
  head->trimmed = 1;
}

void free_memory_region(int32_t region) {
  free_block_list(mem_region_table[region]);
  mem_region_table[region] = nullptr;
  il_header.region_scope_table[region] = nullptr;
  if (region == file_scope_region_number)
    empty_available_local_constants();
}

namespace {

bool is_scope_of_primary_unit(const a_scope* scope) {
  return scope != nullptr && !il_entry_prefix_of(scope).secondary_trans_unit_entry;
}

// The body of the function may still be expanded or instantiated somewhere.
bool body_may_be_needed(const a_scope* function_scope) {
  const a_routine* routine = function_scope->assoc.routine;
  if (function_scope->is_template_prototype || keep_function_body_for_possible_inlining(routine))
    return true;
  const a_type* parent_class = class_of_member(&routine->source_corresp);
  if (parent_class == nullptr)
    return false;
  const a_class_type_supplement* supplement =
      parent_class->variant.class_struct_union.class_supplement;
  return supplement->is_lambda_closure && supplement->is_unfinished;
}

bool may_be_written(int32_t region) {
  const a_scope* first = il_header.region_scope_table[region];
  if (region != file_scope_region_number || header_stop_position_pending ||
      !is_scope_of_primary_unit(first) || first->writing_held_back)
    return false;
  for (const a_scope* scope = first; scope != nullptr; scope = scope->next)
    if (scope->kind == sk_function && body_may_be_needed(scope))
      return false;
  return true;
}

} // namespace

void check_for_done_with_memory_region(int32_t region) {
  if (may_be_written(region))
    write_memory_region(region);
  trim_memory_region(region);
}

void check_for_done_with_all_function_memory_regions() {
  for (int32_t region = 2; region <= highest_used_region_number; region++)
    if (mem_region_table[region] != nullptr &&
        is_scope_of_primary_unit(il_header.region_scope_table[region]))
      write_memory_region(region);
}

void record_mapped_mem_block(void* address, uint64_t size) {
  if (mem_alloc_history_entries_used == size_of_mem_alloc_history) {
    uint64_t new_size = size_of_mem_alloc_history + history_increment;
    grow_table(&mem_alloc_history, size_of_mem_alloc_history, new_size);
    size_of_mem_alloc_history = new_size;
  }
  mem_alloc_history[mem_alloc_history_entries_used] = {address, size};
  mem_alloc_history_entries_used++;
  num_of_mem_alloc_history_entries = mem_alloc_history_entries_used;
}

void free_mapped_mem_blocks() {
  for (uint64_t i = 0; i < mem_alloc_history_entries_used; i++)
    unmap_memory(mem_alloc_history[i].address, mem_alloc_history[i].size);
  mem_alloc_history_entries_used = 0;
  num_of_mem_alloc_history_entries = 0;
}

void* alloc_general(uint64_t size) {
  void* p = checked_malloc(size);
  remember(&general_allocations, p, size);
  return p;
}

void free_general(void* p, uint64_t) {
  a_remembered_allocation* record = find_record(general_allocations, p);
  record->address = nullptr;
  record->size = 0;
  free(p);
}

char* alloc_resizable_buffer(uint64_t size) {
  void* p = checked_malloc(size);
  remember(&resizable_buffers, p, size);
  return static_cast<char*>(p);
}

char* realloc_buffer(char* p, uint64_t, uint64_t new_size) {
  if (p == nullptr)
    return alloc_resizable_buffer(new_size);
  a_remembered_allocation* record = find_record(resizable_buffers, p);
  record->address = checked_realloc(p, new_size);
  record->size = new_size;
  return static_cast<char*>(record->address);
}

char* grow_zeroed_buffer(char* p, uint64_t old_size, uint64_t new_size) {
  if (p != nullptr) {
    p = realloc_buffer(p, old_size, new_size);
    memset(p + old_size, 0, new_size - old_size);
    return p;
  }
  // Fresh memory of the system is zero already and stays untouched until it's used.
  p = static_cast<char*>(calloc(1, new_size));
  if (p == nullptr)
    out_of_memory();
  remember(&resizable_buffers, p, new_size);
  return p;
}

a_text_buffer* alloc_text_buffer(uint64_t size) {
  auto* buffer = static_cast<a_text_buffer*>(alloc_general(sizeof(a_text_buffer)));
  *buffer = {text_buffers, size, 0, std::max<uint64_t>(size, 1), nullptr};
  buffer->data = static_cast<char*>(checked_malloc(size));
  text_buffers = buffer;
  return buffer;
}

void expand_text_buffer(a_text_buffer* buffer, uint64_t size) {
  if (size <= buffer->allocated_size)
    return;
  uint64_t increment = buffer->increment;
  uint64_t new_size = (size + increment - 1) / increment * increment;
  buffer->data = static_cast<char*>(checked_realloc(buffer->data, new_size));
  buffer->allocated_size = new_size;
  buffer->increment = increment * 2;
}

void set_buffer_position(a_text_buffer* buffer, char* p) {
  buffer->used_size = static_cast<uint64_t>(p - buffer->data);
}

void remove_null_terminator_from_text_buffer(a_text_buffer* buffer) {
  if (buffer->used_size != 0 && buffer->data[buffer->used_size - 1] == '\0')
    buffer->used_size--;
}

void free_all_memory() {
  if (mem_region_table != nullptr)
    release_all_blocks();
  free_mapped_mem_blocks();
  for (a_text_buffer* buffer = text_buffers; buffer != nullptr; buffer = buffer->next)
    free(buffer->data);
  release_remembered(&general_allocations);
  release_remembered(&resizable_buffers);
  mem_manage_early_init();
}

void mem_manage_early_init() {
  std::set_new_handler(out_of_memory); // the containers of the library too
  if (reserve == nullptr)
    reserve = malloc(reserve_size);
  static_records_used = 0;
  general_allocations = nullptr;
  resizable_buffers = nullptr;
  text_buffers = nullptr;
  free_blocks = nullptr;
  mem_region_table = nullptr;
  il_header.region_scope_table = nullptr;
  index_for_il_file = nullptr;
  size_of_mem_region_table = 0;
  il_header.function_def_table = nullptr;
  size_of_function_def_table = 0;
  highest_used_region_number = 0;
  highest_used_function_def_number = 0;
  mem_alloc_history = nullptr;
  size_of_mem_alloc_history = 0;
  num_of_mem_alloc_history_entries = 0;
  mem_alloc_history_entries_used = 0;
}

void mem_manage_one_time_init() {
  coalescing_is_on = precompiled_header_processing_required == 0;
  mapped_file_is_open = false;
  mapped_file_offset = 0;
  f_register_trans_unit_variable(&file_scope_region_number, sizeof file_scope_region_number, 0);
}

void mem_manage_init() {
  highest_used_region_number = 0;
  highest_used_function_def_number = 0;
  file_scope_region_number = 1;
  if (index_for_il_file != nullptr)
    memset(index_for_il_file, 0, size_of_mem_region_table * sizeof *index_for_il_file);
  init_memory_region(0, 0);
  init_memory_region(1, 0);
}

void mem_manage_trans_unit_init() {
  if (!is_primary_translation_unit)
    file_scope_region_number = new_memory_region();
}
