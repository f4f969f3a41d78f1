// Expansion of macros: the arguments of an invocation, their own expansion, and
// the text that takes the invocation's place (C99 6.10.3).

#include <cstring>
#include <string>
#include <vector>

#include "error.h"
#include "macro_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pch.h"
#include "pragma.h"
#include "symbol_ref.h"

int macro_depth;
int num_macro_invocations_in_process;
a_boolean in_macro_arg_list;
a_boolean comma_is_from_argument;
a_boolean comma_is_magic;
a_boolean choose_raw_or_expanded_arg;
a_boolean empty_variadic_macro_seen;
char* delete_source_from_loc;

// -- The text buffer --------------------------------------------------------------------

// Generated text never moves: the buffer grows by further chunks, and is given
// back as a whole when the next line begins.
static constexpr size_t first_text_chunk_size = 4000;
static constexpr size_t max_macro_text = size_t{1} << 27;
// What one logical line may cost, in bytes: the memory that its expansions hold,
// records, text and arguments, and all text read and made on the way, with a
// share for each expansion.
static constexpr size_t max_expansion_memory = size_t{1} << 26;
static constexpr size_t max_expansion_work = size_t{1} << 28;
static constexpr size_t work_of_expansion = 256;

struct a_text_chunk {
  char* data;
  size_t size;
};
static std::vector<a_text_chunk> text_chunks;
static size_t curr_text_chunk;
static size_t used_in_text_chunk;
static size_t total_text_size;
static size_t used_expansion_memory;
static size_t expansion_work;

static a_text_chunk new_text_chunk(size_t size) {
  if (size > max_macro_text - total_text_size)
    catastrophe(ec_requested_size_too_large);
  total_text_size += size;
  return {static_cast<char*>(alloc_general(size)), size};
}

// Goes to a chunk with room for `length` bytes.
static void extend_macro_text_buffer(size_t length) {
  size_t next = text_chunks.empty() ? 0 : curr_text_chunk + 1;
  if (next == text_chunks.size() || text_chunks[next].size < length) {
    size_t size =
        text_chunks.empty() ? first_text_chunk_size : text_chunks[curr_text_chunk].size * 2;
    text_chunks.insert(text_chunks.begin() + static_cast<ptrdiff_t>(next),
                       new_text_chunk(length > size ? length : size));
  }
  curr_text_chunk = next;
  used_in_text_chunk = 0;
}

char* alloc_macro_text(size_t length) {
  if (text_chunks.empty() || text_chunks[curr_text_chunk].size - used_in_text_chunk < length)
    extend_macro_text_buffer(length);
  char* text = text_chunks[curr_text_chunk].data + used_in_text_chunk;
  used_in_text_chunk += length;
  return text;
}

void reset_macro_text_buffer() {
  curr_text_chunk = 0;
  used_in_text_chunk = 0;
  used_expansion_memory = 0;
  expansion_work = 0;
}

a_macro_text_mark mark_macro_text() {
  return {curr_text_chunk, used_in_text_chunk, used_expansion_memory};
}

void release_macro_text(const a_macro_text_mark& mark) {
  curr_text_chunk = mark.chunk;
  used_in_text_chunk = mark.used;
  used_expansion_memory = mark.expansion_memory;
}

// Macros that name one another several times expand without end in effect:
// neither memory nor patience is to run out.
static void count_expansion(size_t memory, size_t work) {
  used_expansion_memory += memory;
  expansion_work += work;
  if (expansion_work > max_expansion_work || used_expansion_memory > max_expansion_memory)
    catastrophe(ec_requested_size_too_large);
}

// -- Scanner state ---------------------------------------------------------------------------

a_macro_state::a_macro_state()
    : saved_delete_from(delete_source_from_loc), saved_fetch_pp_tokens(fetch_pp_tokens),
      saved_expand_macros(expand_macros), saved_in_macro_arg_list(in_macro_arg_list),
      saved_concatenation(do_string_literal_concatenation), saved_exp_header_name(exp_header_name),
      saved_exp_system_header_name(exp_system_header_name),
      saved_exp_digit_sequence(exp_digit_sequence), saved_line_end_action(line_end_action),
      saved_white_space(kind_of_white_space_skipped) {
  ++macro_depth;
  exp_header_name = exp_system_header_name = exp_digit_sequence = 0;
}

a_macro_state::~a_macro_state() {
  --macro_depth;
  delete_source_from_loc = saved_delete_from.loc;
  fetch_pp_tokens = saved_fetch_pp_tokens;
  expand_macros = saved_expand_macros;
  in_macro_arg_list = saved_in_macro_arg_list;
  do_string_literal_concatenation = saved_concatenation;
  exp_header_name = saved_exp_header_name;
  exp_system_header_name = saved_exp_system_header_name;
  exp_digit_sequence = saved_exp_digit_sequence;
  line_end_action = saved_line_end_action;
  kind_of_white_space_skipped = saved_white_space;
}

void fetch_unexpanded_pp_tokens() {
  fetch_pp_tokens = 1;
  expand_macros = 0;
  do_string_literal_concatenation = 0;
}

bool macro_is_being_expanded(const a_symbol* symbol) {
  bool found = false;
  int num_levels = 0;
  for (const a_source_line_modif* text = curr_text_modif; text != nullptr; text = text->parent) {
    ++num_levels;
    found = found || text->macro == symbol;
    if (found && (!pcc_preprocessing_mode || num_levels >= max_old_style_levels))
      return true;
  }
  expansion_work += static_cast<size_t>(num_levels);
  return false;
}

// -- Arguments -----------------------------------------------------------------------------------

// A text that grows; the records that hold them are recycled with their space.
struct a_growing_text {
  char* start;
  size_t length;
  size_t capacity;
};

struct a_macro_arg {
  a_macro_arg* next;
  a_growing_text raw;      // as spelled
  a_growing_text expanded; // when an expansion was needed
  bool has_identifier;     // otherwise both are the same
  bool is_expanded;
  bool ends_with_comma; // stands for a variadic argument that isn't there
};

static a_macro_arg* avail_macro_args;

static constexpr size_t raw_arg_size = 400;
static constexpr size_t expanded_arg_size = 800;

static void make_room(a_growing_text* text, size_t length) {
  if (text->capacity - text->length >= length)
    return;
  size_t capacity = text->capacity;
  while (capacity - text->length < length)
    capacity *= 2;
  if (capacity > max_expansion_memory)
    catastrophe(ec_requested_size_too_large);
  text->start = realloc_buffer(text->start, text->capacity, capacity);
  text->capacity = capacity;
}

static void append_to_text(a_growing_text* text, const char* bytes, size_t length) {
  make_room(text, length + 2);
  memcpy(text->start + text->length, bytes, length);
  text->length += length;
}

static void append_marker(a_growing_text* text, a_macro_text_marker marker) {
  const char bytes[2] = {0, marker};
  append_to_text(text, bytes, 2);
}

static a_macro_arg* alloc_macro_arg() {
  a_macro_arg* arg = avail_macro_args;
  if (arg != nullptr) {
    avail_macro_args = arg->next;
  } else {
    arg = static_cast<a_macro_arg*>(alloc_general(sizeof *arg));
    arg->raw = {alloc_resizable_buffer(raw_arg_size + 1), 0, raw_arg_size + 1};
    arg->expanded = {alloc_resizable_buffer(expanded_arg_size + 1), 0, expanded_arg_size + 1};
  }
  arg->next = nullptr;
  arg->raw.length = arg->expanded.length = 0;
  arg->has_identifier = arg->is_expanded = arg->ends_with_comma = false;
  return arg;
}

// The arguments of an invocation; the first ones are also at hand by number.
struct an_arg_list {
  an_arg_list() : first(nullptr), last(nullptr), count(0), counted_memory(0) {}
  ~an_arg_list();
  an_arg_list(const an_arg_list&) = delete;
  an_arg_list& operator=(const an_arg_list&) = delete;
  a_macro_arg* append();
  // Counts a finished text of an argument among what the line costs.
  void count_text(const a_growing_text& text);
  a_macro_arg* at(uint32_t number) const; // from 1
  a_macro_arg* first;
  a_macro_arg* last;
  uint32_t count;
  size_t counted_memory; // of their texts
  static constexpr uint32_t num_direct = 51;
  a_macro_arg* direct[num_direct];
};

an_arg_list::~an_arg_list() {
  if (first == nullptr)
    return;
  last->next = avail_macro_args;
  avail_macro_args = first;
  used_expansion_memory -= counted_memory;
}

void an_arg_list::count_text(const a_growing_text& text) {
  counted_memory += text.length;
  count_expansion(text.length, text.length);
}

a_macro_arg* an_arg_list::append() {
  a_macro_arg* arg = alloc_macro_arg();
  if (last != nullptr)
    last->next = arg;
  else
    first = arg;
  last = arg;
  if (count < num_direct)
    direct[count] = arg;
  ++count;
  return arg;
}

a_macro_arg* an_arg_list::at(uint32_t number) const {
  if (number <= num_direct)
    return direct[number - 1];
  a_macro_arg* arg = direct[num_direct - 1];
  for (uint32_t i = num_direct; i < number; ++i)
    arg = arg->next;
  return arg;
}

// Characters that are always a token of their own.
static constexpr struct a_lone_char_table {
  constexpr a_lone_char_table() : is_lone() {
    for (char c : {' ', '(', ')', ',', ';', '[', ']', '{', '}'})
      is_lone[static_cast<unsigned char>(c)] = true;
  }
  bool is_lone[256];
} lone_chars;

bool may_join(char last, char next) {
  return !lone_chars.is_lone[static_cast<unsigned char>(last)] &&
         !lone_chars.is_lone[static_cast<unsigned char>(next)];
}

// Appends the current token's spelling: behind a blank where white space stood,
// behind a separator where it doesn't adjoin the token before, and with its
// mark if it is inert for good.
static void append_curr_token(a_growing_text* text, const char** end_of_previous) {
  if (text->length != 0) {
    if ((kind_of_white_space_skipped & ws_real) != 0)
      append_to_text(text, " ", 1);
    else if (start_of_curr_token != *end_of_previous && !pcc_preprocessing_mode &&
             may_join(text->start[text->length - 1], *start_of_curr_token))
      append_marker(text, mtm_separator);
  }
  if (curr_token_is_inert_macro)
    append_marker(text, mtm_inert);
  append_to_text(text, start_of_curr_token, len_of_curr_token);
  *end_of_previous = start_of_curr_token + len_of_curr_token;
}

static void end_text(a_growing_text* text) {
  append_marker(text, mtm_end_of_text);
  text->length -= 2;
}

// A token that is none is noted in passing; its spelling counts.
static void remark_on_error_token() {
  if (curr_token == tok_error && err_code_for_error_token != 0)
    pos_remark(err_code_for_error_token, &pos_curr_token);
}

// -- Looking for the argument list
// -------------------------------------------------------------------

// The name is no invocation after all, and further lines were read to find out:
// it becomes the text at the start of the line that was read last.
static void move_name_to_start_of_line(const a_symbol* symbol, const a_source_position& position) {
  size_t length = symbol->header->length;
  char* text = alloc_macro_text(length + 2);
  memcpy(text, symbol->header->identifier, length);
  text[length] = 0;
  text[length + 1] = mtm_end_of_text;
  curr_text_modif = nullptr;
  a_source_line_modif* modif = add_text_modif(nullptr, 0, text, text + length);
  modif->position = position;
  modif->position_is_fixed = 1;
  curr_text_modif = modif;
  start_of_curr_token = text;
  curr_char_loc = text + length;
}

// Behind the name of a function-like macro. True when a parenthesis follows, at
// which the scanner stands then; otherwise all is as it was.
static bool check_for_macro_arg_list(const a_symbol* symbol, const a_source_position& position) {
  if (*curr_char_loc == '(')
    return true;
  a_saved_line_loc behind_name(curr_char_loc);
  a_source_line_modif* text = curr_text_modif;
  uint32_t mark = sequence_id_for_source_line_modifs;
  unsigned saved_lines_read = num_lines_read_ahead;
  num_lines_read_ahead = 0;
  if (line_end_action == lea_read_next)
    line_end_action = lea_look_ahead;
  bool found = skip_to_token() && *curr_char_loc == '(';
  unsigned lines_read = num_lines_read_ahead;
  num_lines_read_ahead = saved_lines_read;
  if (found)
    return true;
  discard_text_modifs_since(mark);
  if (lines_read != 0) {
    move_name_to_start_of_line(symbol, position);
  } else {
    curr_char_loc = behind_name.loc;
    curr_text_modif = text;
  }
  return false;
}

// -- Reading the arguments
// ---------------------------------------------------------------------------

static bool comma_ends_argument(const a_macro_def* def, uint32_t arg_number) {
  if (comma_is_from_argument)
    return false;
  return !def->is_variadic || arg_number < def->num_params;
}

// At the opening parenthesis: reads to behind the closing one.
static void collect_macro_args(const a_macro_def* def, const a_source_position& position,
                               an_arg_list* args) {
  ++curr_char_loc;
  fetch_unexpanded_pp_tokens();
  in_macro_arg_list = 1;
  line_end_action = lea_append;
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  int depth = 0;
  a_macro_arg* arg = args->append();
  const char* end_of_previous = nullptr;
  for (;;) {
    comma_is_from_argument = 0;
    get_token();
    if (curr_token == tok_end_of_source || curr_token == tok_newline) {
      pos_error(ec_exp_rparen, &position);
      break;
    }
    if (curr_token == tok_lparen) {
      ++depth;
    } else if (curr_token == tok_rparen) {
      if (depth == 0)
        break;
      --depth;
    } else if (curr_token == tok_comma && depth == 0 && comma_ends_argument(def, args->count)) {
      end_text(&arg->raw);
      args->count_text(arg->raw);
      arg = args->append();
      continue;
    } else if (curr_token == tok_identifier) {
      arg->has_identifier = true;
    }
    remark_on_error_token();
    append_curr_token(&arg->raw, &end_of_previous);
  }
  end_text(&arg->raw);
  args->count_text(arg->raw);
  comma_is_from_argument = 0;
  remove_stop_token(tok_rparen);
  remove_stop_token(tok_comma);
}

static bool empty_arguments_are_unknown() {
  if (!strict_ansi_mode)
    return false;
  return in_cplusplus_mode() ? std_version < 201103 && !implicit_microsoft_cpp11_mode
                             : std_version < 199901;
}

// Makes the number of arguments that of the parameters.
static void check_number_of_args(a_symbol* symbol, const a_macro_def* def,
                                 const a_source_position& position, an_arg_list* args) {
  uint32_t count = args->count;
  if (def->num_params == 0 && count == 1 && args->first->raw.length == 0)
    return;
  an_error_severity severity =
      SVR4_C_mode || pcc_preprocessing_mode ? es_warning : es_discretionary_error;
  if (count > def->num_params) {
    pos_sy_diagnostic(severity, ec_too_many_macro_args, &position, symbol);
  } else if (count < def->num_params) {
    bool only_variadic_missing = def->is_variadic && count + 1 == def->num_params;
    if (!only_variadic_missing)
      pos_sy_diagnostic(severity, ec_too_few_macro_args, &position, symbol);
    else if (!extended_variadic_macros_allowed)
      pos_sy_warning(ec_too_few_macro_args, &position, symbol);
  }
  if (empty_arguments_are_unknown())
    for (a_macro_arg* arg = args->first; arg != nullptr; arg = arg->next)
      if (arg->raw.length == 0) {
        pos_warning(ec_empty_macro_argument, &position);
        break;
      }
  for (a_macro_arg* arg = args->first; arg != nullptr && check_misra_c_2004; arg = arg->next)
    if (arg->raw.length == 0 || count < def->num_params) {
      misra_check_missing_macro_argument(position);
      break;
    }
  bool no_variadic_arg =
      def->is_variadic && (count < def->num_params ||
                           (def->num_params == 1 && count == 1 && args->first->raw.length == 0));
  while (args->count < def->num_params)
    end_text(&args->append()->raw);
  if (no_variadic_arg)
    args->at(def->num_params)->ends_with_comma = true;
}

// Expands an argument as if it were the rest of the file (C99 6.10.3.1).
static void expand_macro_arg(a_macro_arg* arg, const a_source_position& position) {
  arg->is_expanded = true;
  uint32_t modif_mark = sequence_id_for_source_line_modifs;
  a_macro_text_mark text_mark = mark_macro_text();
  {
    a_text_scan scan(arg->raw.start, arg->raw.start + arg->raw.length, position);
    fetch_pp_tokens = 1;
    expand_macros = 1;
    do_string_literal_concatenation = 0;
    in_macro_arg_list = 0;
    delete_source_from_loc = nullptr;
    const char* end_of_previous = nullptr;
    while (get_token() != tok_end_of_source)
      append_curr_token(&arg->expanded, &end_of_previous);
    discard_text_modifs_since(modif_mark);
  }
  release_macro_text(text_mark);
  end_text(&arg->expanded);
}

static const a_growing_text& expanded_text_of(const a_macro_arg* arg) {
  return arg->is_expanded ? arg->expanded : arg->raw;
}

static void expand_args_that_need_it(const a_macro_def* def, an_arg_list* args,
                                     const a_source_position& position) {
  a_macro_param* param = def->params;
  for (a_macro_arg* arg = args->first; arg != nullptr && param != nullptr;
       arg = arg->next, param = param->next)
    if (param->is_referenced_expanded && arg->has_identifier) {
      expand_macro_arg(arg, position);
      args->count_text(arg->expanded);
    }
}

// -- The replacement text
// ----------------------------------------------------------------------------

// Where two pasted operands meet in a text.
struct a_concatenation_record {
  a_concatenation_record* next;
  const char* location;
};

static a_concatenation_record* avail_concatenation_records;

static void add_concatenation_record(a_concatenation_record** list, const char* location) {
  a_concatenation_record* record = avail_concatenation_records;
  if (record != nullptr)
    avail_concatenation_records = record->next;
  else
    record = static_cast<a_concatenation_record*>(alloc_general(sizeof *record));
  *record = {*list, location};
  *list = record;
}

void report_failed_concatenation(a_source_line_modif* modif, const char* location) {
  a_concatenation_record* head = static_cast<a_concatenation_record*>(modif->concatenation_records);
  a_concatenation_record** link = &head;
  while (*link != nullptr && (*link)->location != location)
    link = &(*link)->next;
  if (*link == nullptr)
    return;
  a_concatenation_record* record = *link;
  *link = record->next;
  modif->concatenation_records = head;
  record->next = avail_concatenation_records;
  avail_concatenation_records = record;
  std::string spelling(start_of_curr_token, len_of_curr_token);
  pos_stsy_warning(ec_concat_yields_invalid_token, &pos_curr_token, spelling.c_str(), modif->macro);
}

// Walks a coded replacement list.
struct a_body_element {
  uint8_t code;
  uint32_t value;
  const char* text; // mbc_text
  const uint8_t* next;
};

static a_body_element body_element(const uint8_t* p) {
  a_body_element element = {*p, 0, nullptr, p};
  if (*p == mbc_end)
    return element;
  element.value = p[1] | static_cast<uint32_t>(p[2]) << 8 | static_cast<uint32_t>(p[3]) << 16;
  element.text = reinterpret_cast<const char*>(p + 4);
  element.next = p + 4 + (*p == mbc_text ? element.value : 0);
  return element;
}

// An upper bound of the length of the expansion. Each element may bring two
// separators.
static size_t measure_replacement(const a_macro_def* def, const an_arg_list& args) {
  size_t length = 8;
  for (a_body_element element = body_element(def->body); element.code != mbc_end;
       element = body_element(element.next)) {
    length += 4;
    switch (element.code) {
    case mbc_text:
      length += element.value;
      break;
    case mbc_raw_param:
      length += args.at(element.value)->raw.length;
      break;
    case mbc_stringize:
    case mbc_charize:
      length += 4 * args.at(element.value)->raw.length + 2;
      break;
    case mbc_expanded_param:
      length += expanded_text_of(args.at(element.value)).length;
      break;
    default:
      break;
    }
  }
  return length;
}

// A text in the making, in space that was measured before.
struct a_replacement {
  char* start;
  char* end;
  char* operand; // where the left operand of a ## behind it would begin
  a_concatenation_record* concatenations;
  // What follows begins another token.
  bool separator_is_due;
};

static void put_separator(a_replacement* out) {
  *out->end++ = 0;
  *out->end++ = mtm_separator;
}

// Puts text behind what is there, and keeps the two apart where that is due.
static void put_text(a_replacement* out, const char* text, size_t length) {
  if (length == 0)
    return;
  if (out->separator_is_due && may_join(out->end[-1], *text))
    put_separator(out);
  out->separator_is_due = false;
  memcpy(out->end, text, length);
  out->end += length;
}

// The # operator (C99 6.10.3.2): markers go, and quotes and backslashes inside
// literals get a backslash.
static void put_stringized(a_replacement* out, const a_growing_text& text, char quote) {
  put_text(out, &quote, 1);
  char in_literal = 0;
  const char* end = text.start + text.length;
  for (const char* p = text.start; p < end; ++p) {
    if (*p == 0) {
      ++p;
      if (*p == mtm_nul_character)
        put_text(out, "\\000", 4);
      else if (*p == mtm_newline) // of a raw string
        put_text(out, "\\n", 2);
      continue;
    }
    bool is_quote = *p == '"' || *p == '\'';
    if (*p == quote || (*p == '\\' && in_literal != 0))
      *out->end++ = '\\';
    if (*p == '\\' && in_literal != 0 && p + 1 < end && p[1] != 0) {
      *out->end++ = *p++;
      if (*p == quote || *p == '\\')
        *out->end++ = '\\';
    } else if (is_quote && (in_literal == 0 || in_literal == *p)) {
      in_literal = in_literal == 0 ? *p : 0;
    }
    *out->end++ = *p;
  }
  *out->end++ = quote;
}

// A name that a pasting uses up makes a new token, which isn't inert.
static bool is_inert_mark(const char* p) {
  return p[0] == 0 && (p[1] == mtm_inert || p[1] == mtm_temporarily_inert);
}

static void remove_mark(a_replacement* out, char* mark) {
  memmove(mark, mark + 2, static_cast<size_t>(out->end - mark - 2));
  out->end -= 2;
}

// Whether the ## before an element joins a comma to a variadic argument
// (`, ## __VA_ARGS__`): the comma goes with an absent argument, and stays as it
// is before a present one.
static bool is_variadic_comma(const a_replacement& out, const a_macro_def* def,
                              const a_body_element& right) {
  return extended_variadic_macros_allowed && def->is_variadic && right.code == mbc_raw_param &&
         right.value == def->num_params && out.end > out.start && out.end[-1] == ',';
}

static void remove_variadic_comma(a_replacement* out) {
  --out->end;
  while (out->end > out->start && out->end[-1] == ' ')
    --out->end;
}

// In old-style mode an argument may land inside a literal, where marks have no
// place.
static void put_old_style_argument(a_replacement* out, const a_growing_text& text) {
  const char* end = text.start + text.length;
  for (const char* p = text.start; p < end; ++p)
    if (*p == 0 && p[1] != mtm_nul_character)
      ++p;
    else
      *out->end++ = *p;
}

static void put_element(a_replacement* out, const a_body_element& element,
                        const an_arg_list& args) {
  if (element.code == mbc_text) {
    put_text(out, element.text, element.value);
    return;
  }
  const a_macro_arg* arg = args.at(element.value);
  switch (element.code) {
  case mbc_raw_param:
    if (pcc_preprocessing_mode)
      put_old_style_argument(out, arg->raw);
    else
      put_text(out, arg->raw.start, arg->raw.length);
    break;
  case mbc_stringize:
    put_stringized(out, arg->raw, '"');
    break;
  case mbc_charize:
    put_stringized(out, arg->raw, '\'');
    break;
  default:
    put_text(out, expanded_text_of(arg).start, expanded_text_of(arg).length);
    break;
  }
}

static void separate_at(a_replacement* out, char* seam) {
  memmove(seam + 2, seam, static_cast<size_t>(out->end - seam));
  out->end += 2;
  seam[0] = 0;
  seam[1] = mtm_separator;
}

// Where a word stands behind a word they are one, whatever they were.
static bool join_words_at(a_replacement* out, char* seam) {
  char* p = seam;
  while (p < out->end && is_id_char[static_cast<unsigned char>(*p)])
    ++p;
  if (p != out->end || !is_id_char[static_cast<unsigned char>(seam[-1])])
    return false;
  p = seam;
  while (p > out->start && is_id_char[static_cast<unsigned char>(p[-1])])
    --p;
  if (p - out->start >= 2 && is_inert_mark(p - 2))
    remove_mark(out, p - 2);
  return true;
}

// At the place where the operands of ## meet: what makes no token together stays
// two tokens, and what does takes in nothing else.
static void join_at(a_replacement* out, char* seam) {
  char* left = out->operand + offset_of_last_pp_token(out->operand, seam);
  char* right = is_inert_mark(seam) ? seam + 2 : seam;
  a_pasting pasting = paste_tokens(left, seam, right, out->end);
  char* behind_right = right + pasting.right_length;
  bool takes_all = pasting.makes_token && behind_right == out->end;
  if (pasting.makes_token) {
    if (pasting.takes_more)
      separate_at(out, behind_right);
    if (right != seam)
      remove_mark(out, seam);
    if (left - out->start >= 2 && is_inert_mark(left - 2)) {
      remove_mark(out, left - 2);
      left -= 2;
      seam -= 2;
    }
  } else if (pasting.splits_right && right == seam) {
    separate_at(out, seam);
  }
  out->operand = takes_all ? left : seam;
  if (check_concatenations)
    add_concatenation_record(&out->concatenations, seam);
}

// Without text on one side, what stands on the other stays as it is.
static void put_pasted_element(a_replacement* out, const a_body_element& element,
                               const an_arg_list& args) {
  bool left_is_empty = out->separator_is_due || out->end == out->start;
  char* seam = out->end;
  put_element(out, element, args);
  if (left_is_empty)
    out->operand = seam;
  else if (out->end != seam && !pcc_preprocessing_mode && !join_words_at(out, seam))
    join_at(out, seam);
}

static void end_replacement(a_replacement* out) {
  out->end[0] = 0;
  out->end[1] = mtm_end_of_text;
}

static a_replacement build_replacement(const a_macro_def* def, const an_arg_list& args) {
  char* text = alloc_macro_text(measure_replacement(def, args));
  a_replacement out = {text, text, text, nullptr, false};
  bool is_pasted = false;
  for (a_body_element element = body_element(def->body); element.code != mbc_end;
       element = body_element(element.next)) {
    if (element.code == mbc_paste) {
      is_pasted = true;
      continue;
    }
    if (is_pasted && is_variadic_comma(out, def, element)) {
      if (args.at(element.value)->ends_with_comma)
        remove_variadic_comma(&out);
      is_pasted = false;
    }
    if (is_pasted) {
      put_pasted_element(&out, element, args);
    } else {
      out.separator_is_due = out.end != out.start && !pcc_preprocessing_mode;
      out.operand = out.end;
      put_element(&out, element, args);
    }
    is_pasted = false;
  }
  end_replacement(&out);
  return out;
}

// An object-like macro whose list is nothing but text.
static a_replacement copy_plain_body(const a_macro_def* def) {
  a_body_element element = body_element(def->body);
  size_t length = element.code == mbc_text ? element.value : 0;
  char* text = alloc_macro_text(length + 2);
  a_replacement out = {text, text, text, nullptr, false};
  put_text(&out, element.text, length);
  end_replacement(&out);
  return out;
}

static bool is_plain_body(const a_macro_def* def) {
  a_body_element element = body_element(def->body);
  return element.code == mbc_end || (element.code == mbc_text && *element.next == mbc_end);
}

// -- Invocations
// -------------------------------------------------------------------------------------

a_source_line_modif* replace_invocation(a_symbol* symbol, char* text, char* text_end,
                                        const a_source_position& position) {
  size_t length = static_cast<size_t>(curr_char_loc - delete_source_from_loc);
  a_source_line_modif* modif = add_text_modif(delete_source_from_loc, length, text, text_end);
  modif->is_macro_expansion = 1;
  modif->macro = symbol;
  modif->position = position;
  size_t text_length = static_cast<size_t>(text_end - text);
  count_expansion(text_length + sizeof *modif, text_length + work_of_expansion);
  curr_text_modif = modif;
  curr_char_loc = text;
  return modif;
}

void replace_invocation_by_string(a_symbol* symbol, const char* text, size_t length,
                                  const a_source_position& position) {
  char* copy = alloc_macro_text(length + 2);
  memcpy(copy, text, length);
  copy[length] = 0;
  copy[length + 1] = mtm_end_of_text;
  replace_invocation(symbol, copy, copy + length, position);
}

// Expansions in arguments of arguments go only so deep; what lies deeper stays,
// with one message for the whole.
static bool is_too_deep(const a_source_position& position) {
  static bool was_reported;
  if (macro_depth == 0)
    was_reported = false;
  if (macro_depth < max_macro_depth)
    return false;
  if (!was_reported)
    pos_error(ec_macro_recursion, &position);
  was_reported = true;
  return true;
}

static a_replacement expand_function_like(a_symbol* symbol, const a_macro_def* def,
                                          const a_source_position& position) {
  an_arg_list args;
  ++num_macro_invocations_in_process;
  push_lexical_state_stack();
  collect_macro_args(def, position, &args);
  check_number_of_args(symbol, def, position, &args);
  a_saved_line_loc start(delete_source_from_loc);
  expand_args_that_need_it(def, &args, position);
  delete_source_from_loc = start.loc;
  pop_lexical_state_stack();
  --num_macro_invocations_in_process;
  return build_replacement(def, args);
}

static a_token_kind expand_user_macro(a_symbol* symbol, a_boolean* go_on) {
  const a_macro_def* def = symbol->variant.macro;
  a_source_position position;
  position_of_loc(start_of_curr_token, &position);
  bool is_recursive = macro_is_being_expanded(symbol);
  if (is_recursive && pcc_preprocessing_mode)
    pos_error(ec_macro_recursion, &position);
  if (is_recursive || is_too_deep(position)) {
    curr_token_is_inert_macro = 1;
    return tok_identifier;
  }
  a_macro_state state;
  delete_source_from_loc = start_of_curr_token;
  if (!def->is_object_like && !check_for_macro_arg_list(symbol, position)) {
    curr_token_is_temporarily_inert_macro = 1;
    return tok_identifier;
  }
  if (def->forbids_pch)
    cannot_create_pch_file = 1;
  a_replacement out;
  if (!def->is_object_like) {
    out = expand_function_like(symbol, def, position);
  } else if (is_plain_body(def)) {
    out = copy_plain_body(def);
  } else {
    an_arg_list no_args;
    out = build_replacement(def, no_args);
  }
  a_source_line_modif* modif = replace_invocation(symbol, out.start, out.end, position);
  modif->concatenation_records = out.concatenations;
  record_symbol_reference(srk_reference, symbol, &position, true);
  *go_on = 1;
  return tok_identifier;
}

a_token_kind macro_invocation(a_symbol* symbol, a_boolean* go_on) {
  bool is_builtin = symbol->variant.macro->body == nullptr;
  a_token_kind kind =
      is_builtin ? builtin_macro_invocation(symbol, go_on) : expand_user_macro(symbol, go_on);
  // Pragma operators are met on the way; without a replacement the current
  // token is the macro's name and must stay.
  if (*go_on && curr_token_pragmas != nullptr && !caching_tokens)
    process_immediate_pragmas();
  return kind;
}

void macro_expand_init() {
  macro_depth = 0;
  num_macro_invocations_in_process = 0;
  in_macro_arg_list = 0;
  delete_source_from_loc = nullptr;
  reset_macro_text_buffer();
}
