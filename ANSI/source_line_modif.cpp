// The records of what differs in the line buffer from the physical text, and
// the positions of places in it.

#include "source_line_int.h"

#include "host_envir.h"
#include "macro.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"

#include <algorithm>
#include <vector>

static constexpr size_t num_modif_chains = 7993;

an_orig_line_modif* orig_line_modif_list;
an_orig_line_modif* end_orig_line_modif_list;
a_source_line_modif* source_line_modif_list;
a_source_line_modif* line_start_source_line_modif;
uint32_t sequence_id_for_source_line_modifs;

static an_orig_line_modif* avail_orig_line_modifs;
static a_source_line_modif* avail_source_line_modifs;
static a_source_line_modif* modif_chains[num_modif_chains];

static bool is_in_line_buffer(const char* location) {
  return location >= curr_source_line && location <= after_end_of_curr_source_line;
}

// -- Columns -------------------------------------------------------------------------------

// How far the changes against the physical text have been followed for the last
// position, since places are mostly asked for from left to right.
static struct {
  an_orig_line_modif* last_modif; // null: none
  const char* location;           // up to which modifications have been followed
  const char* line_start;         // of the physical line
  uint32_t seq;
  long correction; // in columns
} followed;

namespace {
struct a_logical_char_info {
  uint32_t offset;      // of a character of several bytes, in the line
  uint32_t extra_bytes; // of it and those before it, beyond one each
};
} // namespace

// The multibyte characters found so far, and up to where.
static std::vector<a_logical_char_info> logical_char_info;
static size_t logical_chars_known_to;

static void forget_positions() {
  followed = {nullptr, curr_source_line, curr_source_line, curr_seq_number, 0};
}

static void find_multibyte_chars(size_t offset) {
  const char* p = curr_source_line + logical_chars_known_to;
  const char* end = curr_source_line + offset;
  while (p < end) {
    if (static_cast<unsigned char>(*p) < 0x80) {
      p++;
      continue;
    }
    uint32_t extra = static_cast<uint32_t>(utf8_char_length(p) - 1);
    if (extra != 0) {
      uint32_t before = logical_char_info.empty() ? 0 : logical_char_info.back().extra_bytes;
      logical_char_info.push_back({static_cast<uint32_t>(p - curr_source_line), before + extra});
    }
    p += extra + 1;
  }
  logical_chars_known_to =
      std::max(logical_chars_known_to, static_cast<size_t>(p - curr_source_line));
}

// The bytes of multibyte characters that begin before `location`, beyond one
// for each character.
static long extra_bytes_before(const char* location) {
  if (!multibyte_chars_in_source_enabled)
    return 0;
  size_t offset = static_cast<size_t>(location - curr_source_line);
  if (offset > logical_chars_known_to)
    find_multibyte_chars(offset);
  auto next = std::partition_point(
      logical_char_info.begin(), logical_char_info.end(),
      [offset](const a_logical_char_info& info) { return info.offset < offset; });
  return next == logical_char_info.begin() ? 0 : next[-1].extra_bytes;
}

static void follow_orig_line_modif(an_orig_line_modif* modif) {
  followed.last_modif = modif;
  switch (modif->kind) {
  case olm_trigraph:
    followed.correction += 2;
    break;
  case olm_nul:
    followed.correction -= 1;
    break;
  case olm_splice:
  case olm_newline:
    followed.line_start = modif->location;
    followed.seq = modif->extra;
    followed.correction = 0;
    break;
  }
}

// A new physical line begins at the place of its record; other records change
// the columns of what stands behind theirs.
static bool modif_counts_at(const an_orig_line_modif* modif, const char* location) {
  bool begins_line = modif->kind == olm_splice || modif->kind == olm_newline;
  return begins_line ? location >= modif->location : location > modif->location;
}

// A column as a position can hold it.
static uint16_t shown_column(long column) {
  return static_cast<uint16_t>(std::clamp(column, 1L, static_cast<long>(UINT16_MAX)));
}

static void position_in_line_buffer(const char* location, a_source_position* position) {
  if (location < followed.location)
    forget_positions();
  for (;;) {
    an_orig_line_modif* next =
        followed.last_modif != nullptr ? followed.last_modif->next : orig_line_modif_list;
    if (next == nullptr || !modif_counts_at(next, location))
      break;
    follow_orig_line_modif(next);
  }
  followed.location = location;
  long column = (location - followed.line_start) + 1 + followed.correction -
                (extra_bytes_before(location) - extra_bytes_before(followed.line_start));
  *position = {followed.seq, shown_column(column), 0};
}

void conv_line_loc_to_source_pos(const char* location, a_source_position* position) {
  a_source_line_modif* modif =
      is_in_line_buffer(location) ? nullptr : assoc_source_line_modif(location);
  if (modif == nullptr) {
    position_in_line_buffer(is_in_line_buffer(location) ? location : curr_source_line, position);
    return;
  }
  if (modif->position_is_fixed) {
    *position = modif->position;
    position->column = shown_column(position->column + (location - modif->text_start));
    return;
  }
  while (modif->position.seq == 0 && parent_source_line_modif(modif) != nullptr)
    modif = parent_source_line_modif(modif);
  *position = modif->position;
  if (position->seq == 0)
    position_in_line_buffer(is_in_line_buffer(modif->location) ? modif->location : curr_source_line,
                            position);
  pos_of_macro_invocation = *position;
}

// -- Changes against the physical text ----------------------------------------------------------

an_orig_line_modif* add_orig_line_modif(char* location, an_orig_line_modif_kind kind,
                                        uint32_t extra) {
  an_orig_line_modif* modif = avail_orig_line_modifs;
  if (modif != nullptr)
    avail_orig_line_modifs = modif->next;
  else
    modif = static_cast<an_orig_line_modif*>(
        alloc_in_region(front_end_region, sizeof(an_orig_line_modif)));
  *modif = {nullptr, location, kind, extra};
  if (end_orig_line_modif_list == nullptr)
    orig_line_modif_list = modif;
  else
    end_orig_line_modif_list->next = modif;
  end_orig_line_modif_list = modif;
  return modif;
}

void free_orig_line_modifs() {
  if (end_orig_line_modif_list != nullptr) {
    end_orig_line_modif_list->next = avail_orig_line_modifs;
    avail_orig_line_modifs = orig_line_modif_list;
  }
  orig_line_modif_list = end_orig_line_modif_list = nullptr;
  logical_char_info.clear();
  logical_chars_known_to = 0;
  forget_positions();
}

static bool ends_with_trigraph_at(const char* location) {
  const an_orig_line_modif* last = end_orig_line_modif_list;
  return last != nullptr && last->kind == olm_trigraph && last->location == location;
}

void add_splice_modif(char* location, uint32_t next_seq) {
  if (!ends_with_trigraph_at(location)) {
    add_orig_line_modif(location, olm_splice, next_seq);
    return;
  }
  end_orig_line_modif_list->kind = olm_splice;
  end_orig_line_modif_list->extra = next_seq;
  forget_positions();
}

static void free_orig_line_modif(an_orig_line_modif* modif) {
  modif->next = avail_orig_line_modifs;
  avail_orig_line_modifs = modif;
}

void remove_trigraph_modif_at(const char* location) {
  if (!ends_with_trigraph_at(location))
    return;
  an_orig_line_modif* trigraph = end_orig_line_modif_list;
  an_orig_line_modif* before = nullptr;
  for (auto* modif = orig_line_modif_list; modif != trigraph; modif = modif->next)
    before = modif;
  (before != nullptr ? before->next : orig_line_modif_list) = nullptr;
  end_orig_line_modif_list = before;
  free_orig_line_modif(trigraph);
  forget_positions();
}

// The next marker of a newline or NUL in a text.
static char* next_marker(char* p) {
  while (*p != '\0')
    ++p;
  return p;
}

void restore_orig_line_modifs(char* start, const char* end, char* new_end) {
  an_orig_line_modif** link = &orig_line_modif_list;
  an_orig_line_modif* before = nullptr;
  ptrdiff_t distance = new_end - end;
  char* p = start;
  while (an_orig_line_modif* modif = *link) {
    if (modif->location >= end) {
      modif->location += distance;
    } else if (modif->location >= start && modif->kind == olm_trigraph) {
      *link = modif->next;
      free_orig_line_modif(modif);
      continue;
    } else if (modif->location >= start) {
      // Each of the others stands for one marker, in their order.
      char* marker = next_marker(p);
      p = marker + 2;
      bool is_nul = modif->kind == olm_nul;
      modif->kind = is_nul ? olm_nul : olm_newline;
      modif->location = is_nul ? marker : p;
    }
    before = modif;
    link = &modif->next;
  }
  end_orig_line_modif_list = before;
  logical_char_info.clear();
  logical_chars_known_to = 0;
  forget_positions();
}

// -- Replaced text ----------------------------------------------------------------------

static a_source_line_modif** modif_chain(const char* location) {
  return &modif_chains[reinterpret_cast<uintptr_t>(location) / 8 % num_modif_chains];
}

static void link_modif_in_chain(a_source_line_modif* modif) {
  a_source_line_modif** chain = modif_chain(modif->location);
  modif->hash_next = *chain;
  *chain = modif;
}

static void unlink_modif_from_chain(a_source_line_modif* modif) {
  if (modif->location == nullptr)
    return;
  a_source_line_modif** link = modif_chain(modif->location);
  while (*link != modif)
    link = &(*link)->hash_next;
  *link = modif->hash_next;
}

static void unlink_modif_from_list(a_source_line_modif* modif) {
  a_source_line_modif** link = &source_line_modif_list;
  while (*link != modif)
    link = &(*link)->next;
  *link = modif->next;
}

static void recycle_modif(a_source_line_modif* modif) {
  modif->next = avail_source_line_modifs;
  avail_source_line_modifs = modif;
}

a_source_line_modif* add_source_line_modif(char* location, size_t length, char* text_start,
                                           char* text_end) {
  a_source_line_modif* modif = avail_source_line_modifs;
  if (modif != nullptr)
    avail_source_line_modifs = modif->next;
  else
    modif = static_cast<a_source_line_modif*>(
        alloc_in_region(front_end_region, sizeof(a_source_line_modif)));
  *modif = {};
  modif->location = location;
  modif->length = length;
  modif->text_start = text_start;
  modif->text_end = text_end;
  modif->sequence_id = ++sequence_id_for_source_line_modifs;
  modif->next = source_line_modif_list;
  source_line_modif_list = modif;
  if (location == nullptr) {
    line_start_source_line_modif = modif;
  } else {
    modif->saved_char = *location;
    *location = '\n';
    link_modif_in_chain(modif);
  }
  return modif;
}

void remove_source_line_modif(a_source_line_modif* modif) {
  unlink_modif_from_chain(modif);
  unlink_modif_from_list(modif);
  if (modif->location != nullptr)
    *modif->location = modif->saved_char;
  else if (line_start_source_line_modif == modif)
    line_start_source_line_modif = nullptr;
  recycle_modif(modif);
}

a_source_line_modif* source_line_modif_at(const char* location) {
  a_source_line_modif* modif = *modif_chain(location);
  while (modif != nullptr && modif->location != location)
    modif = modif->hash_next;
  return modif;
}

a_source_line_modif* assoc_source_line_modif(const char* location) {
  a_source_line_modif** link = &source_line_modif_list;
  for (; *link != nullptr; link = &(*link)->next) {
    a_source_line_modif* modif = *link;
    if (location < modif->text_start || location > modif->text_end)
      continue;
    if (!modif->stays_in_place) {
      *link = modif->next;
      modif->next = source_line_modif_list;
      source_line_modif_list = modif;
    }
    return modif;
  }
  return nullptr;
}

a_source_line_modif* parent_source_line_modif(a_source_line_modif* modif) {
  if (!modif->parent_is_valid) {
    bool has_parent = modif->location != nullptr && !is_in_line_buffer(modif->location);
    modif->parent = has_parent ? assoc_source_line_modif(modif->location) : nullptr;
    modif->parent_is_valid = 1;
  }
  return modif->parent;
}

// Whether an expansion in process still reads the text. Its place in the line,
// if it has one, is the start of the next line.
static bool keep_modif_for_next_line(a_source_line_modif* modif) {
  if (num_macro_invocations_in_process == 0)
    return false;
  if (modif->location == nullptr || !is_in_line_buffer(modif->location))
    return true;
  if (!modif->is_macro_expansion)
    return false;
  unlink_modif_from_chain(modif);
  modif->location = nullptr;
  return true;
}

void free_source_line_modifs() {
  a_source_line_modif** link = &source_line_modif_list;
  while (*link != nullptr) {
    a_source_line_modif* modif = *link;
    if (keep_modif_for_next_line(modif)) {
      link = &modif->next;
    } else {
      unlink_modif_from_chain(modif);
      if (line_start_source_line_modif == modif)
        line_start_source_line_modif = nullptr;
      *link = modif->next;
      recycle_modif(modif);
    }
  }
}

// The chains are keyed by the place, so a moved line needs them made anew.
void adjust_source_line_modifs(const a_moved_buffer& moved) {
  for (auto* modif = orig_line_modif_list; modif != nullptr; modif = modif->next)
    modif->location = moved_pointer(moved, modif->location);
  for (auto* modif = source_line_modif_list; modif != nullptr; modif = modif->next)
    unlink_modif_from_chain(modif);
  for (auto* modif = source_line_modif_list; modif != nullptr; modif = modif->next) {
    modif->text_start = moved_pointer(moved, modif->text_start);
    modif->text_end = moved_pointer(moved, modif->text_end);
    if (modif->location == nullptr)
      continue;
    modif->location = moved_pointer(moved, modif->location);
    link_modif_in_chain(modif);
  }
  forget_positions();
}

void clear_source_line_modif_free_lists() {
  avail_orig_line_modifs = nullptr;
  avail_source_line_modifs = nullptr;
}
