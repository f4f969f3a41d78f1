// The tree of source files, and the way from a sequence number to a file and
// a line.

#include "source_file_int.h"

#include "il.h"
#include "il_alloc.h"
#include "trans_unit.h"

#include <algorithm>
#include <vector>

uint32_t seq_number_last_read;
uint32_t curr_seq_number;

// The stretches in the order of their sequence numbers. Those that a
// precompiled header brings are taken over at the next lookup.
static std::vector<a_seq_number_lookup_entry*> sorted_stretches;
// The index of the last answer.
static size_t cached_stretch;

int compare_source_positions(const a_source_position& a, const a_source_position& b) {
  if (a.seq != b.seq)
    return a.seq < b.seq ? -1 : 1;
  if (a.column != b.column)
    return a.column < b.column ? -1 : 1;
  return 0;
}

// -- Recording -------------------------------------------------------------------------

static void take_over_stretches() {
  if (sorted_stretches.size() != il_header.num_seq_lookup_entries)
    rebuild_seq_number_lookup();
}

void rebuild_seq_number_lookup() {
  constexpr size_t minimum_capacity = 1024;
  sorted_stretches.clear();
  sorted_stretches.reserve(std::max<size_t>(il_header.num_seq_lookup_entries, minimum_capacity));
  cached_stretch = 0;
  for (auto* entry = il_header.seq_lookup_entries; entry != nullptr; entry = entry->next)
    sorted_stretches.push_back(entry);
}

// Ends the stretch in force, if one is, at the last line read.
static void close_last_stretch() {
  take_over_stretches();
  if (!sorted_stretches.empty() && sorted_stretches.back()->last_seq == seq_lookup_open)
    sorted_stretches.back()->last_seq = seq_number_last_read;
}

void record_resumption_of_source_file(a_source_file* file, uint32_t line,
                                      a_source_file* physical_file, uint32_t physical_line) {
  close_last_stretch();
  a_seq_number_lookup_entry* entry = alloc_seq_number_lookup_entry();
  *entry = {nullptr,      seq_number_last_read + 1, seq_lookup_open, line, file, physical_line,
            physical_file};
  if (sorted_stretches.empty())
    il_header.seq_lookup_entries = entry;
  else
    sorted_stretches.back()->next = entry;
  sorted_stretches.push_back(entry);
  il_header.num_seq_lookup_entries = sorted_stretches.size();
}

static void link_primary_source_file(a_source_file* file) {
  a_source_file** link = &il_header.source_files;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = file;
}

static void link_child_source_file(a_source_file* parent, a_source_file* file) {
  if (parent->last_child == nullptr)
    parent->first_child = file;
  else
    parent->last_child->next = file;
  parent->last_child = file;
}

a_source_file* record_start_of_source_file(const a_source_file_start& start,
                                           a_source_file* parent) {
  a_source_file* file = alloc_source_file();
  *file = {};
  file->file_name = start.file_name;
  file->full_name = start.full_name;
  file->name_as_written = start.name_as_written;
  file->first_seq = seq_number_last_read + 1;
  file->last_seq = seq_lookup_open;
  file->first_line = start.first_line;
  file->is_include_file = start.is_include_file;
  file->is_angle_bracket_include = start.is_angle_bracket_include;
  file->is_preinclude = start.is_preinclude;
  file->is_macro_preinclude = start.is_macro_preinclude;
  file->is_system_header = start.is_system_header;
  file->is_primary_source_file = parent == nullptr;
  if (parent == nullptr)
    link_primary_source_file(file);
  else
    link_child_source_file(parent, file);
  bool is_clone = start.full_name == nullptr;
  record_resumption_of_source_file(file, start.first_line, is_clone ? start.physical_file : file,
                                   is_clone ? start.first_physical_line : 1);
  return file;
}

void record_end_of_source_file(a_source_file* file) {
  file->last_seq = seq_number_last_read;
  close_last_stretch();
}

// -- Lookup ------------------------------------------------------------------------------

static bool starts_after(uint32_t seq, const a_seq_number_lookup_entry* entry) {
  return seq < entry->first_seq;
}

// The index of the last stretch that doesn't begin after `seq`; stretches
// without lines are passed over. There must be one.
static size_t find_stretch(uint32_t seq) {
  size_t i = cached_stretch;
  bool cache_holds = i < sorted_stretches.size() && sorted_stretches[i]->first_seq <= seq &&
                     (i + 1 == sorted_stretches.size() || seq < sorted_stretches[i + 1]->first_seq);
  if (!cache_holds) {
    auto next =
        std::upper_bound(sorted_stretches.begin(), sorted_stretches.end(), seq, starts_after);
    cached_stretch = static_cast<size_t>(next - sorted_stretches.begin()) - 1;
  }
  return cached_stretch;
}

// The primary file whose last line is `seq`, or null.
static a_source_file* primary_source_file_that_ends_at(uint32_t seq) {
  for (a_source_file* file = il_header.source_files; file != nullptr; file = file->next)
    if (file->last_seq == seq)
      return file;
  return nullptr;
}

// The stretch of a sequence number. The number behind the last line of a
// primary file is the end of the source: that line's stretch answers for it.
static const a_seq_number_lookup_entry* stretch_of(uint32_t* seq, a_boolean* at_end) {
  take_over_stretches();
  *at_end = 0;
  if (*seq == 0 || sorted_stretches.empty() || *seq < sorted_stretches[0]->first_seq)
    return nullptr;
  const a_seq_number_lookup_entry* entry = sorted_stretches[find_stretch(*seq)];
  if (*seq <= entry->last_seq)
    return entry;
  if (primary_source_file_that_ends_at(*seq - 1) != nullptr) {
    *at_end = 1;
    --*seq;
  }
  // A primary file without any line ends before it begins.
  return *seq < entry->first_seq ? entry : sorted_stretches[find_stretch(*seq)];
}

a_source_file* source_file_for_seq(uint32_t seq, uint32_t* line, a_boolean* at_end, bool physical) {
  a_boolean is_at_end;
  const a_seq_number_lookup_entry* entry = stretch_of(&seq, &is_at_end);
  if (at_end != nullptr)
    *at_end = is_at_end;
  if (line != nullptr)
    *line = 0;
  if (entry == nullptr)
    return nullptr;
  if (line != nullptr)
    *line = (physical ? entry->first_physical_line : entry->first_line) + (seq - entry->first_seq);
  return physical ? entry->physical_file : entry->source_file;
}

void conv_seq_to_file_and_line(uint32_t seq, const char** name, const char** full_name,
                               uint32_t* line, a_boolean* at_end) {
  const a_source_file* file = source_file_for_seq(seq, line, at_end, false);
  if (name != nullptr)
    *name = file != nullptr ? file->file_name : "";
  if (full_name != nullptr) {
    const a_source_file* physical = source_file_for_seq(seq, nullptr, nullptr, true);
    *full_name = physical != nullptr ? physical->full_name : "";
  }
}

void conv_seq_to_physical_file_and_line(uint32_t seq, a_source_file** file, uint32_t* line,
                                        a_boolean* at_end) {
  *file = source_file_for_seq(seq, line, at_end, true);
}

a_source_file* primary_source_file_for_seq(uint32_t seq) {
  a_source_file* file = il_header.source_files;
  while (file != nullptr && file->last_seq < seq - 1)
    file = file->next;
  return seq == 0 ? nullptr : file;
}

bool seq_is_in_system_header(uint32_t seq) {
  const a_source_file* file = source_file_for_seq(seq, nullptr, nullptr, false);
  return file != nullptr && file->is_system_header;
}

bool seq_is_in_include_file(uint32_t seq) {
  const a_source_file* file = source_file_for_seq(seq, nullptr, nullptr, false);
  return file != nullptr && file->is_include_file;
}

a_source_file* eff_primary_source_file() {
  if (curr_translation_unit != nullptr && curr_translation_unit->primary_source_file != nullptr)
    return curr_translation_unit->primary_source_file;
  return il_header.source_files;
}

void source_file_seq_reset(bool is_primary_unit) {
  if (!is_primary_unit)
    return;
  seq_number_last_read = 0;
  curr_seq_number = 0;
  sorted_stretches.clear();
  cached_stretch = 0;
  il_header.source_files = nullptr;
  il_header.seq_lookup_entries = nullptr;
  il_header.num_seq_lookup_entries = 0;
}
