#include "il_write.h"

#include "cfe.h"
#include "error.h"
#include "il.h"
#include "il_walk.h"
#include "mem_manage.h"
#include "mode_words.h"

#include <cerrno>
#include <vector>

FILE* f_il;

namespace {

constexpr const char* heading_format = "ZNT IL file (v%s)\f\f";

// The heading is followed by numbers that are known only at the end, and by
// the header of the IL and the lists of orphaned entries, which are complete
// when the file scope is.
constexpr long place_of_counts = 22;
constexpr long place_of_il_header = place_of_counts + 24;
constexpr uint64_t size_of_il_header = sizeof(an_il_header);
constexpr uint64_t size_of_orphaned_lists = sizeof orphaned_file_scope_il_entries;

constexpr int32_t primary_file_scope_region = 1;
constexpr int32_t end_of_regions = 0;

void write_bytes(const void* bytes, uint64_t size, a_file_kind part) {
  if (fwrite(bytes, 1, size, f_il) != size)
    file_write_error(part, errno);
}

template <class T> void write_number(T number, a_file_kind part) {
  write_bytes(&number, sizeof number, part);
}

void seek_to(long offset, int origin) {
  if (fseek(f_il, offset, origin) != 0)
    file_write_error(fk_il_position, errno);
}

uint64_t current_place() {
  return static_cast<uint64_t>(ftell(f_il));
}

void write_heading_text() {
  char heading[place_of_counts + 1];
  int length = snprintf(heading, sizeof heading, heading_format, front_end_version);
  write_bytes(heading, static_cast<uint64_t>(length) + 1, fk_il_heading);
}

void write_counts(uint64_t place_of_index) {
  write_number(highest_used_region_number, fk_il_counts);
  write_number(highest_used_function_def_number, fk_il_counts);
  write_number(place_of_index, fk_il_counts);
  write_number(index_for_il_file == nullptr ? 0 : index_for_il_file[primary_file_scope_region],
               fk_il_counts);
}

void write_il_header_and_orphaned_lists() {
  write_bytes(&il_header, size_of_il_header, fk_il_header);
  write_bytes(orphaned_file_scope_il_entries, size_of_orphaned_lists, fk_il_orphaned_lists);
}

uint64_t used_size_of(const a_mem_block* block) {
  return static_cast<uint64_t>(block->alloc_position - block->first_byte);
}

// A region whose front-end fields are cleared for as long as the object lives:
// the compilation goes on with the entries as they were.
class STORED_FORM_OF_REGION {
public:
  explicit STORED_FORM_OF_REGION(int32_t region) : blocks(mem_region_table[region]) {
    for (const a_mem_block* block = blocks; block != nullptr; block = block->next)
      saved_bytes.insert(saved_bytes.end(), block->first_byte, block->alloc_position);
    constexpr an_il_walk_callbacks no_callbacks = {};
    if (region == file_scope_region_number)
      walk_file_scope_il(no_callbacks, true);
    else
      walk_routine_scope_il(region, no_callbacks, true);
  }
  ~STORED_FORM_OF_REGION() {
    const char* bytes = saved_bytes.data();
    for (a_mem_block* block = blocks; block != nullptr; block = block->next) {
      memcpy(block->first_byte, bytes, used_size_of(block));
      bytes += used_size_of(block);
    }
  }
  STORED_FORM_OF_REGION(const STORED_FORM_OF_REGION&) = delete;
  STORED_FORM_OF_REGION& operator=(const STORED_FORM_OF_REGION&) = delete;

private:
  a_mem_block* blocks;
  std::vector<char> saved_bytes;
};

void write_blocks_of_region(int32_t region) {
  uint64_t used_size = 0;
  uint64_t total_size = 0;
  for (a_mem_block* block = mem_region_table[region]; block != nullptr; block = block->next) {
    used_size += used_size_of(block);
    total_size += used_size_of(block) + sizeof *block;
  }
  write_number(region, fk_il_region);
  write_number(total_size, fk_il_region);
  write_number(il_header.region_scope_table[region], fk_il_region);
  write_number(used_size, fk_il_region);
  for (a_mem_block* block = mem_region_table[region]; block != nullptr; block = block->next) {
    write_bytes(block, sizeof *block, fk_il_block);
    write_bytes(block->first_byte, used_size_of(block), fk_il_block_bytes);
  }
}

} // namespace

void start_il_file() {
  if (f_il == nullptr)
    return;
  write_heading_text();
  write_counts(0);
  write_il_header_and_orphaned_lists();
}

void write_memory_region(int32_t region) {
  if (f_il == nullptr || index_for_il_file[region] != 0)
    return;
  index_for_il_file[region] = current_place();
  STORED_FORM_OF_REGION stored_form(region);
  write_blocks_of_region(region);
  if (region != primary_file_scope_region)
    return;
  seek_to(place_of_il_header, SEEK_SET);
  write_il_header_and_orphaned_lists();
  seek_to(0, SEEK_END);
}

void finish_il_file() {
  if (f_il == nullptr)
    return;
  write_number(end_of_regions, fk_il_index);
  uint64_t place_of_index = current_place();
  write_bytes(index_for_il_file,
              (static_cast<uint64_t>(highest_used_region_number) + 1) * sizeof *index_for_il_file,
              fk_il_index);
  seek_to(place_of_counts, SEEK_SET);
  write_counts(place_of_index);
  seek_to(0, SEEK_END);
}

void cancel_il_file() {
  if (f_il == nullptr)
    return;
  fclose(f_il);
  f_il = nullptr;
  remove(il_file_name);
}

void close_il_output_file() {
  close_output_file_with_error_handling(&f_il, fk_il_output);
}

void il_write_early_init() {
  f_il = nullptr;
}
