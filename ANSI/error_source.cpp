// The source line under a diagnostic: from the line buffer for the line being
// scanned, otherwise read again from its file through the file index.

#include <algorithm>
#include <cstring>
#include <vector>

#include "error_int.h"
#include "lexical.h"
#include "mode_words.h"
#include "source_file.h"
#include "source_line.h"

// Bookmarks into one file: lines and their byte offsets. When all slots are in
// use they thin out evenly and the distance between them grows, so that a file
// of any length costs the same.
struct a_file_index {
  static constexpr int num_slots = 10;
  static constexpr unsigned long first_step = 100;

  const a_source_file* file;
  int count;
  unsigned long lines[num_slots];
  long offsets[num_slots];
  unsigned long step;
};

namespace {

// Most recently used first.
std::vector<a_file_index> file_index_list;

// Moves the record of a file to the front; null if there is none.
a_file_index* find_file_index(const a_source_file* file) {
  auto entry = std::find_if(file_index_list.begin(), file_index_list.end(),
                            [file](const a_file_index& index) { return index.file == file; });
  if (entry == file_index_list.end()) {
    return nullptr;
  }
  std::rotate(file_index_list.begin(), entry, entry + 1);
  return &file_index_list.front();
}

// The slot whose removal keeps the bookmarks evenly spread: the first that lies
// closer to the start than an even distance puts it.
int slot_to_remove(const a_file_index& index) {
  constexpr int middle = a_file_index::num_slots / 2;
  unsigned long even_distance = index.lines[middle] / middle;
  int slot = 0;
  while (slot < middle && index.lines[slot] >= (slot + 1) * even_distance) {
    ++slot;
  }
  return slot;
}

void remove_slot(a_file_index* index, int slot) {
  for (; slot < a_file_index::num_slots - 1; ++slot) {
    index->lines[slot] = index->lines[slot + 1];
    index->offsets[slot] = index->offsets[slot + 1];
  }
  --index->count;
}

// The one-entry memory of fetch_source_line_for_seq.
uint32_t fetched_seq;
bool fetched_is_valid;
bool fetched_success;
std::string fetched_line;

bool read_source_line(uint32_t seq, std::string& line) {
  a_source_file* file = nullptr;
  uint32_t number = 0;
  a_boolean at_end = false;
  conv_seq_to_physical_file_and_line(seq, &file, &number, &at_end);
  if (!file || number == 0 || at_end || !file->full_name || strcmp(file->full_name, "-") == 0) {
    return false;
  }
  const a_file_index* index = find_file_index(file);
  if (!index) {
    return false;
  }
  unsigned long from_line = 1;
  long from_offset = 0;
  for (int slot = 0; slot < index->count && index->lines[slot] <= number; ++slot) {
    from_line = index->lines[slot];
    from_offset = index->offsets[slot];
  }
  const char* start;
  size_t length;
  if (!fetch_physical_source_line(file, number, from_line, from_offset, &start, &length)) {
    return false;
  }
  line.assign(start, length);
  std::replace(line.begin(), line.end(), '\0', ' ');
  return true;
}

// The text of one physical line out of the line buffer: from behind the splice
// that begins it to the next one.
class a_line_replay {
public:
  explicit a_line_replay(uint32_t wanted_seq) : wanted(wanted_seq), seq(curr_seq_number) {}

  // True, with the line in `text`, when the logical line holds the wanted one.
  bool replay(std::string& text) {
    const an_orig_line_modif* modif = orig_line_modif_list;
    for (const char* p = curr_source_line;; ++p) {
      for (; modif && modif->location == p; modif = modif->next) {
        undo(modif, text);
      }
      if (*p != '\0') {
        add(*p == '\n' ? saved_character(p) : *p, text);
        continue;
      }
      ++p; // at the marker behind the NUL
      if (*p == lm_end_of_line) {
        return found || seq == wanted;
      }
      if (*p == lm_nul_character) {
        add(' ', text);
      }
    }
  }

private:
  // The character that a macro expansion's marker hides.
  static char saved_character(const char* location) {
    const a_source_line_modif* modif = source_line_modif_at(location);
    return modif ? modif->saved_char : ' ';
  }

  void undo(const an_orig_line_modif* modif, std::string& text) {
    switch (modif->kind) {
    case olm_trigraph:
      add('?', text);
      add('?', text);
      trigraph_character = static_cast<char>(modif->extra);
      break;
    case olm_splice:
      add('\\', text);
      begin_line(modif->extra);
      break;
    case olm_newline:
      begin_line(modif->extra);
      break;
    case olm_nul:
      break;
    }
  }

  void add(char c, std::string& text) {
    if (trigraph_character != '\0') {
      c = trigraph_character;
      trigraph_character = '\0';
    }
    if (seq == wanted) {
      text += c;
    }
  }

  void begin_line(uint32_t next_seq) {
    found = found || seq == wanted;
    seq = next_seq;
  }

  uint32_t wanted;
  uint32_t seq;                   // of the physical line that the replay has reached
  bool found = false;             // the wanted line is complete
  char trigraph_character = '\0'; // stands for the next character of the buffer
};

bool line_is_being_scanned(uint32_t seq) {
  return curr_source_line && curr_ise && curr_seq_number != 0 && seq >= curr_seq_number &&
         seq <= seq_number_last_read;
}

} // namespace

void clear_file_index_list() {
  file_index_list.clear();
  forget_fetched_source_line();
}

unsigned long initialize_file_index(a_source_file* file) {
  a_file_index index{};
  index.file = file;
  index.step = a_file_index::first_step;
  file_index_list.insert(file_index_list.begin(), index);
  return a_file_index::first_step;
}

unsigned long update_file_index(a_source_file* file, unsigned long line, long offset) {
  a_file_index* index = find_file_index(file);
  if (!index) {
    return initialize_file_index(file) + line;
  }
  if (index->count == a_file_index::num_slots) {
    remove_slot(index, slot_to_remove(*index));
    index->step += a_file_index::first_step;
  }
  index->lines[index->count] = line;
  index->offsets[index->count] = offset;
  ++index->count;
  return line + index->step;
}

void forget_fetched_source_line() {
  fetched_is_valid = false;
}

bool fetch_source_line_for_seq(uint32_t seq, const std::string** line) {
  if (!fetched_is_valid || fetched_seq != seq) {
    fetched_line.clear();
    fetched_success = line_is_being_scanned(seq) ? a_line_replay(seq).replay(fetched_line)
                                                 : read_source_line(seq, fetched_line);
    fetched_seq = seq;
    fetched_is_valid = true;
  }
  *line = &fetched_line;
  return fetched_success;
}

// What stands under the part of a line in front of a column: a blank under each
// character, a tab under a tab. A column counts characters, or bytes where the
// source has no multibyte characters by the options.
static void add_caret_indent(const std::string& line, unsigned column, std::string& text) {
  size_t i = 0;
  for (unsigned at = 1; at < column; ++at) {
    bool is_inside = i < line.size();
    if (!is_inside || !is_continuation_byte(line[i])) {
      text += is_inside && line[i] == '\t' ? '\t' : ' ';
    }
    ++i;
    while (multibyte_chars_in_source_enabled && i < line.size() && is_continuation_byte(line[i])) {
      ++i;
    }
  }
}

void add_source_line_and_caret(const a_source_position& position, std::string& text) {
  const std::string* fetched;
  if (!fetch_source_line_for_seq(position.seq, &fetched)) {
    return;
  }
  std::string line = fetched->substr(0, fetched->find_last_not_of('\r') + 1);
  std::replace(line.begin(), line.end(), '\r', ' ');
  text += "  " + line + "\n  ";
  if (position.column != 0) {
    add_caret_indent(line, position.column, text);
    text += '^';
  }
  text += '\n';
}
