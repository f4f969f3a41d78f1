// Token caches: tokens kept for later, and the two streams of saved tokens that
// get_token reads before fresh text: the rescan list, read once, and caches that
// stay intact while they are read.

#include <cstring>
#include <vector>

#include "error.h"
#include "il_alloc.h"
#include "lexical_int.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pragma.h"

static a_cached_token* avail_cached_tokens;
static a_token_cache* avail_token_caches;
static a_reusable_cache_stack_entry* avail_reusable_cache_entries;
static a_cached_token* rescan_token_list;

a_reusable_cache_stack_entry* curr_reusable_cache;

void update_initial_get_token_tests_needed() {
  any_initial_get_token_tests_needed = rescan_token_list != nullptr ||
                                       curr_reusable_cache != nullptr ||
                                       curr_token_pragmas != nullptr;
}

// -- Records -------------------------------------------------------------------------

static a_cached_token* alloc_cached_token(a_token_kind kind, a_cached_token_extra_kind extra_kind) {
  a_cached_token* token = avail_cached_tokens;
  if (token != nullptr)
    avail_cached_tokens = token->next;
  else
    token = static_cast<a_cached_token*>(
        alloc_in_region(file_scope_region_number, sizeof(a_cached_token)));
  token->next = nullptr;
  token->pos = token->end_pos = null_source_position;
  token->kind = kind;
  token->extra_kind = extra_kind;
  token->sequence_number = token->last_sequence_number = 0;
  token->handle = nullptr;
  token->variant.constant = nullptr;
  return token;
}

static a_constant* alloc_cached_constant(const a_constant* value) {
  a_constant* constant = local_constant();
  copy_constant(value, constant);
  return constant;
}

static void free_cached_token(a_cached_token* token) {
  if (token->extra_kind == ctk_constant) {
    release_local_constant(&token->variant.constant);
  } else if (token->extra_kind == ctk_ud_literal) {
    release_local_constant(&token->variant.ud_literal.constant);
    release_local_constant(&token->variant.ud_literal.spelled_constant);
  } else if (token->extra_kind == ctk_pragma) {
    free_pending_pragma_list(token->variant.pragmas);
  }
  token->next = avail_cached_tokens;
  avail_cached_tokens = token;
}

static void free_cached_token_list(a_cached_token* token) {
  while (token != nullptr) {
    a_cached_token* next = token->next;
    free_cached_token(token);
    token = next;
  }
}

void clear_token_cache(a_token_cache* cache, bool reusable) {
  *cache = {nullptr, nullptr, nullptr, reusable};
}

a_token_cache* alloc_token_cache() {
  a_token_cache* cache = avail_token_caches;
  if (cache != nullptr)
    avail_token_caches = cache->next;
  else
    cache = static_cast<a_token_cache*>(alloc_in_region(file_scope_region_number, sizeof *cache));
  clear_token_cache(cache, false);
  return cache;
}

// The innermost reader of a cache, or null.
static a_reusable_cache_stack_entry* reader_of_cache(const a_token_cache* cache) {
  a_reusable_cache_stack_entry* entry = curr_reusable_cache;
  while (entry != nullptr && entry->cache != cache)
    entry = entry->next;
  return entry;
}

void free_token_cache(a_token_cache* cache) {
  a_reusable_cache_stack_entry* outermost = nullptr;
  for (a_reusable_cache_stack_entry* entry = curr_reusable_cache; entry != nullptr;
       entry = entry->next)
    if (entry->cache == cache)
      outermost = entry;
  if (outermost != nullptr) {
    outermost->free_when_done = true;
    return;
  }
  discard_token_cache(cache);
  cache->next = avail_token_caches;
  avail_token_caches = cache;
}

void discard_token_cache(a_token_cache* cache) {
  free_cached_token_list(cache->first);
  cache->first = cache->last = nullptr;
}

void append_cached_token(a_token_cache* cache, a_cached_token* token) {
  token->next = nullptr;
  if (cache->last != nullptr)
    cache->last->next = token;
  else
    cache->first = token;
  cache->last = token;
  if (cache->is_reusable)
    token->handle = token;
}

a_cached_token* build_cached_token(a_token_kind kind, a_token_sequence_number sequence,
                                   const a_source_position* position) {
  a_cached_token* token = alloc_cached_token(kind, ctk_plain);
  token->pos = token->end_pos = *position;
  token->sequence_number = token->last_sequence_number = sequence;
  return token;
}

void terminate_token_cache(a_token_cache* cache) {
  append_cached_token(
      cache, build_cached_token(tok_end_of_source, curr_token_sequence_number, &pos_curr_token));
}

// -- Saving the current token ------------------------------------------------------------

static bool is_literal_kind(a_token_kind kind) {
  return kind == tok_float_constant || kind == tok_integer || kind == tok_char_constant ||
         kind == tok_string || kind == tok_fixed_point_constant || kind == tok_true ||
         kind == tok_false;
}

static bool is_identifier_like_kind(a_token_kind kind) {
  return kind == tok_identifier || kind == tok_ptr_to_member || kind == tok_decltype_construct;
}

// Keeps the spelling of a preprocessing token.
static void copy_spelling(a_cached_token* token) {
  char* text = static_cast<char*>(alloc_in_region(file_scope_region_number, len_of_curr_token + 1));
  memcpy(text, start_of_curr_token, len_of_curr_token);
  text[len_of_curr_token] = 0;
  token->variant.pp_token.start = text;
  token->variant.pp_token.end = text + len_of_curr_token - 1;
}

static a_cached_token* cached_copy_of_curr_token() {
  a_cached_token* token = alloc_cached_token(curr_token, ctk_plain);
  token->pos = pos_curr_token;
  token->end_pos = end_pos_curr_token;
  token->sequence_number = curr_token_sequence_number;
  token->last_sequence_number = last_token_sequence_number_of_token;
  token->handle = curr_cached_token_handle;
  if (fetch_pp_tokens && start_of_curr_token != nullptr && curr_token != tok_end_of_source &&
      curr_token != tok_newline) {
    token->extra_kind = ctk_pp_token;
    copy_spelling(token);
  } else if (is_identifier_like_kind(curr_token)) {
    token->extra_kind = ctk_identifier;
    token->variant.locator = locator_for_curr_id;
  } else if (is_literal_kind(curr_token)) {
    token->extra_kind = ctk_constant;
    token->variant.constant = alloc_cached_constant(&const_for_curr_token);
  } else if (curr_token == tok_ud_literal) {
    token->extra_kind = ctk_ud_literal;
    token->variant.ud_literal = {alloc_cached_constant(&const_for_curr_token),
                                 alloc_cached_constant(&const_with_curr_tok_spelling),
                                 ud_lit_op_sym_for_curr_token, ud_lit_suffix_for_curr_token,
                                 ud_lit_type_for_curr_token};
  } else if (curr_token == tok_ms_asm) {
    token->extra_kind = ctk_asm;
    token->variant.asm_string = curr_token_asm_string;
  }
  return token;
}

static a_cached_token* pragma_token(a_pending_pragma* pragmas) {
  a_cached_token* token = alloc_cached_token(tok_error, ctk_pragma);
  token->pos = token->end_pos = pos_curr_token;
  token->sequence_number = token->last_sequence_number = curr_token_sequence_number;
  token->variant.pragmas = pragmas;
  return token;
}

// Gives the pragmas that wait at the current token a place in the cache.
static void cache_curr_token_pragmas(a_token_cache* cache) {
  if (curr_token_pragmas == nullptr)
    return;
  append_cached_token(cache, pragma_token(curr_token_pragmas));
  curr_token_pragmas = nullptr;
  update_initial_get_token_tests_needed();
}

void cache_curr_token(a_token_cache* cache) {
  cache_curr_token_pragmas(cache);
  append_cached_token(cache, cached_copy_of_curr_token());
}

// -- Caches as lists ------------------------------------------------------------------------

static a_cached_token* copy_cached_token(const a_cached_token* token) {
  a_cached_token* copy = alloc_cached_token(token->kind, token->extra_kind);
  a_cached_token* next_available = copy->next;
  *copy = *token;
  copy->next = next_available;
  if (token->extra_kind == ctk_constant) {
    copy->variant.constant = alloc_cached_constant(token->variant.constant);
  } else if (token->extra_kind == ctk_ud_literal) {
    copy->variant.ud_literal.constant = alloc_cached_constant(token->variant.ud_literal.constant);
    copy->variant.ud_literal.spelled_constant =
        alloc_cached_constant(token->variant.ud_literal.spelled_constant);
  } else if (token->extra_kind == ctk_pragma) {
    copy->variant.pragmas = make_copy_of_pragma_list(token->variant.pragmas);
  }
  return copy;
}

void copy_tokens_from_cache(const a_token_cache* cache, a_token_sequence_number first,
                            a_token_sequence_number last, bool with_end_of_source,
                            a_token_cache* target) {
  for (const a_cached_token* token = cache->first; token != nullptr; token = token->next)
    if (token->sequence_number >= first && token->sequence_number <= last)
      append_cached_token(target, copy_cached_token(token));
  if (with_end_of_source)
    terminate_token_cache(target);
}

bool split_token_cache(a_token_cache* from, a_token_cache* to, a_token_sequence_number sequence,
                       bool before, bool quiet, bool keep_reader) {
  a_cached_token* previous = nullptr;
  a_cached_token* token = from->first;
  while (token != nullptr && token->sequence_number < sequence) {
    previous = token;
    token = token->next;
  }
  if (token == nullptr || token->sequence_number != sequence) {
    if (!quiet)
      internal_error("split_token_cache: no such token");
    return false;
  }
  if (!before) {
    previous = token;
    token = token->next;
  }
  a_token_cache rest = {nullptr, token, token != nullptr ? from->last : nullptr, false};
  from->last = previous;
  if (previous != nullptr)
    previous->next = nullptr;
  else
    from->first = nullptr;
  a_reusable_cache_stack_entry* reader = reader_of_cache(from);
  if (keep_reader && reader != nullptr)
    reader->cache = to;
  move_cached_tokens(&rest, to);
  return true;
}

void move_cached_tokens(a_token_cache* from, a_token_cache* to) {
  if (from->first == nullptr)
    return;
  if (to->last != nullptr)
    to->last->next = from->first;
  else
    to->first = from->first;
  to->last = from->last;
  from->first = from->last = nullptr;
  if (to->is_reusable)
    adjust_token_handles(to);
}

void remove_token_from_cache(a_token_cache* cache, a_cached_token* token) {
  a_cached_token* previous = nullptr;
  for (a_cached_token* p = cache->first; p != token; p = p->next)
    previous = p;
  if (previous != nullptr)
    previous->next = token->next;
  else
    cache->first = token->next;
  if (cache->last == token)
    cache->last = previous;
  free_cached_token(token);
}

void adjust_token_handles(a_token_cache* cache) {
  for (a_cached_token* token = cache->first; token != nullptr; token = token->next)
    token->handle = token;
}

// -- Reading saved tokens -----------------------------------------------------------------------

static void append_curr_token_pragmas(a_pending_pragma* pragmas) {
  a_pending_pragma** link = &curr_token_pragmas;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = pragmas;
}

// Makes a saved token the current one.
static void load_cached_token(const a_cached_token* token) {
  curr_token = token->kind;
  pos_curr_token = error_position = token->pos;
  end_pos_curr_token = token->end_pos;
  curr_token_sequence_number = token->sequence_number;
  last_token_sequence_number_of_token = token->last_sequence_number;
  curr_cached_token_handle = token->handle;
  start_of_curr_token = end_of_curr_token = nullptr;
  len_of_curr_token = 0;
  kind_of_white_space_skipped = ws_none;
  curr_token_is_inert_macro = curr_token_is_temporarily_inert_macro = 0;
  curr_token_is_undefined_pp_identifier = 0;
  switch (token->extra_kind) {
  case ctk_identifier:
    locator_for_curr_id = token->variant.locator;
    break;
  case ctk_constant:
    copy_constant(token->variant.constant, &const_for_curr_token);
    break;
  case ctk_pp_token:
    start_of_curr_token = token->variant.pp_token.start;
    end_of_curr_token = token->variant.pp_token.end;
    len_of_curr_token = static_cast<size_t>(end_of_curr_token - start_of_curr_token + 1);
    break;
  case ctk_asm:
    curr_token_asm_string = token->variant.asm_string;
    break;
  case ctk_ud_literal:
    copy_constant(token->variant.ud_literal.constant, &const_for_curr_token);
    copy_constant(token->variant.ud_literal.spelled_constant, &const_with_curr_tok_spelling);
    ud_lit_suffix_for_curr_token = token->variant.ud_literal.suffix;
    // Operators declared since then count too.
    ud_lit_op_sym_for_curr_token =
        find_literal_operator(ud_lit_suffix_for_curr_token, &ud_lit_type_for_curr_token);
    break;
  default:
    break;
  }
}

// A preprocessing token has no place in a parse: it is passed over, with a
// message at the next token.
static bool is_out_of_place(const a_cached_token* token) {
  return token->extra_kind == ctk_pp_token && !fetch_pp_tokens;
}

static void report_tokens_passed_over(bool* passed_over) {
  if (*passed_over)
    pos_error(ec_end_of_flush, &pos_curr_token);
  *passed_over = false;
}

// Takes the first token of the rescan list, and its record ends. False for an
// empty list, or for a placeholder.
static bool get_token_from_rescan_list(bool* passed_over) {
  while (rescan_token_list != nullptr && rescan_token_list->extra_kind != ctk_placeholder) {
    a_cached_token* token = rescan_token_list;
    rescan_token_list = token->next;
    bool is_token = true;
    if (token->extra_kind == ctk_pragma) {
      append_curr_token_pragmas(token->variant.pragmas);
      token->variant.pragmas = nullptr;
      is_token = false;
    } else if (is_out_of_place(token)) {
      *passed_over = true;
      is_token = false;
    } else {
      load_cached_token(token);
    }
    free_cached_token(token);
    if (is_token) {
      report_tokens_passed_over(passed_over);
      return true;
    }
  }
  return false;
}

static void pop_reusable_cache() {
  a_reusable_cache_stack_entry* entry = curr_reusable_cache;
  curr_reusable_cache = entry->next;
  rescan_token_list = entry->saved_rescan_list;
  if (entry->free_when_done)
    free_tokens_from_reusable_cache(entry);
  entry->next = avail_reusable_cache_entries;
  avail_reusable_cache_entries = entry;
}

// Takes the next token of the innermost open cache, which stays. False when its
// end is reached; it is closed then, unless a pack expansion will go back in it.
static bool get_token_from_reusable_cache(bool* passed_over) {
  a_reusable_cache_stack_entry* entry = curr_reusable_cache;
  while (entry->next_token != nullptr) {
    a_cached_token* token = entry->next_token;
    entry->next_token = token->next;
    ++entry->fetch_count;
    if (token->extra_kind == ctk_pragma) {
      append_curr_token_pragmas(make_copy_of_pragma_list(token->variant.pragmas));
    } else if (is_out_of_place(token)) {
      *passed_over = true;
    } else {
      load_cached_token(token);
      curr_cached_token_handle = token;
      report_tokens_passed_over(passed_over);
      return true;
    }
  }
  if (entry->variadic_rescan_count == 0)
    pop_reusable_cache();
  return false;
}

bool get_saved_token() {
  if (curr_token_pragmas != nullptr && !in_preprocessing_directive && !fetch_pp_tokens)
    process_curr_token_pragmas();
  bool passed_over = false;
  bool found = false;
  for (;;) {
    found = get_token_from_rescan_list(&passed_over);
    if (found || rescan_token_list != nullptr || curr_reusable_cache == nullptr)
      break;
    a_reusable_cache_stack_entry* entry = curr_reusable_cache;
    found = get_token_from_reusable_cache(&passed_over);
    if (found || curr_reusable_cache == entry)
      break;
  }
  update_initial_get_token_tests_needed();
  return found;
}

// -- Starting to read
// ------------------------------------------------------------------------------

// Puts the tokens of a cache in front of what is to be read.
static void push_on_rescan_list(a_token_cache* cache) {
  if (cache->first == nullptr)
    return;
  cache->last->next = rescan_token_list;
  rescan_token_list = cache->first;
  cache->first = cache->last = nullptr;
  any_initial_get_token_tests_needed = 1;
}

void unget_token() {
  a_token_cache cache;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  push_on_rescan_list(&cache);
}

void f_rescan_cached_tokens(a_token_cache* cache, bool keep_curr_token) {
  if (keep_curr_token)
    unget_token();
  push_on_rescan_list(cache);
  get_token();
}

void rescan_cached_tokens(a_token_cache* cache) {
  f_rescan_cached_tokens(cache, true);
}

void rescan_copy_of_cache(a_token_cache* cache) {
  a_token_cache copy;
  a_token_cache rest = {};
  clear_token_cache(&copy, false);
  a_cached_token* next;
  for (a_cached_token* token = cache->first; token != nullptr; token = next) {
    next = token->next;
    token->next = nullptr;
    bool is_pragma = token->extra_kind == ctk_pragma;
    append_cached_token(&copy, is_pragma ? token : copy_cached_token(token));
    if (!is_pragma)
      append_cached_token(&rest, token);
  }
  cache->first = rest.first;
  cache->last = rest.last;
  rescan_cached_tokens(&copy);
}

void rescan_reusable_cache(a_token_cache* cache) {
  unget_token();
  a_reusable_cache_stack_entry* entry = avail_reusable_cache_entries;
  if (entry != nullptr)
    avail_reusable_cache_entries = entry->next;
  else
    entry = static_cast<a_reusable_cache_stack_entry*>(
        alloc_in_region(file_scope_region_number, sizeof *entry));
  *entry = {curr_reusable_cache, rescan_token_list, cache->first, cache, *cache, 0, 0, false};
  rescan_token_list = nullptr;
  curr_reusable_cache = entry;
  any_initial_get_token_tests_needed = 1;
  get_token();
}

void free_tokens_from_reusable_cache(a_reusable_cache_stack_entry* entry) {
  discard_token_cache(entry->cache);
  entry->cache->next = avail_token_caches;
  avail_token_caches = entry->cache;
}

void update_reusable_cache_rescan_location(a_cached_token* token) {
  curr_reusable_cache->next_token = token->next;
}

void increment_variadic_rescans_for_reusable_cache() {
  if (curr_reusable_cache != nullptr)
    ++curr_reusable_cache->variadic_rescan_count;
}

void decrement_variadic_rescans_for_reusable_cache() {
  if (curr_reusable_cache != nullptr)
    --curr_reusable_cache->variadic_rescan_count;
}

// -- Looking ahead
// ---------------------------------------------------------------------------------------

// The saved token that will be read next, pragmas passed; null when that is
// fresh text.
static const a_cached_token* next_saved_token() {
  const a_cached_token* token = rescan_token_list;
  while (token != nullptr && token->extra_kind == ctk_pragma)
    token = token->next;
  if (token != nullptr || rescan_token_list != nullptr || curr_reusable_cache == nullptr)
    return token;
  token = curr_reusable_cache->next_token;
  while (token != nullptr && token->extra_kind == ctk_pragma)
    token = token->next;
  return token;
}

static bool is_readable_ahead(const a_cached_token* token) {
  return token != nullptr && token->extra_kind != ctk_placeholder && !is_out_of_place(token);
}

static void describe_next_token(a_token_kind kind, a_token_sequence_number number,
                                a_symbol_header* token_header, a_token_sequence_number* sequence,
                                a_symbol_header** header) {
  if (sequence != nullptr)
    *sequence = number;
  if (header != nullptr)
    *header = kind == tok_identifier ? token_header : nullptr;
}

a_token_kind next_token_full(a_token_sequence_number* sequence, a_symbol_header** header) {
  if (in_preprocessing_directive && curr_token == tok_newline) {
    describe_next_token(tok_newline, curr_token_sequence_number, nullptr, sequence, header);
    return tok_newline;
  }
  const a_cached_token* saved = next_saved_token();
  if (is_readable_ahead(saved)) {
    a_symbol_header* saved_header =
        saved->extra_kind == ctk_identifier ? saved->variant.locator.header : nullptr;
    describe_next_token(saved->kind, saved->sequence_number, saved_header, sequence, header);
    return saved->kind;
  }
  a_token_cache cache;
  clear_token_cache(&cache, false);
  push_lexical_state_stack();
  cache_curr_token(&cache);
  a_token_kind kind = get_token();
  describe_next_token(kind, curr_token_sequence_number, locator_for_curr_id.header, sequence,
                      header);
  rescan_cached_tokens(&cache);
  pop_lexical_state_stack();
  return kind;
}

bool next_two_tokens(a_token_kind first_kind, a_token_kind* second) {
  if (next_token() != first_kind)
    return false;
  a_token_cache cache;
  clear_token_cache(&cache, false);
  push_lexical_state_stack();
  cache_curr_token(&cache);
  get_token();
  cache_curr_token(&cache);
  *second = get_token();
  rescan_cached_tokens(&cache);
  pop_lexical_state_stack();
  return true;
}

// -- Caching ahead
// -------------------------------------------------------------------------------------------

void begin_caching_fetched_tokens(bool include_curr_token) {
  a_lexical_state_stack_entry* state = lexical_state_stack;
  if (state->caching_depth++ != 0)
    return;
  clear_token_cache(&state->cached_tokens, false);
  state->first_sequence_cached = curr_token_sequence_number;
  if (include_curr_token)
    cache_curr_token(&state->cached_tokens);
}

void end_caching_fetched_tokens(a_token_cache* cache) {
  a_lexical_state_stack_entry* state = lexical_state_stack;
  if (--state->caching_depth == 0)
    move_cached_tokens(&state->cached_tokens, cache);
}

static a_token_kind closing_token_of(a_token_kind opening) {
  switch (opening) {
  case tok_lparen:
    return tok_rparen;
  case tok_lbracket:
    return tok_rbracket;
  case tok_lbrace:
    return tok_rbrace;
  default:
    return tok_error;
  }
}

static an_error_code missing_closing_token_code(a_token_kind closing) {
  switch (closing) {
  case tok_rparen:
    return ec_exp_rparen;
  case tok_rbracket:
    return ec_exp_rbracket;
  default:
    return ec_exp_rbrace;
  }
}

static bool is_closing_token(a_token_kind kind) {
  return kind == tok_rparen || kind == tok_rbracket || kind == tok_rbrace;
}

// A name that may be qualified becomes one token, when the caller wants that.
static void fold_name(unsigned flags) {
  if ((flags & ctsf_coalesce_identifiers) != 0 && f_is_generalized_identifier_start())
    coalesce_and_lookup_generalized_identifier(ilo_none);
}

bool cache_token_stream_until_matching_token(a_token_cache* cache, unsigned flags) {
  // The closing tokens that are still to come, innermost last.
  std::vector<a_token_kind> expected;
  for (;;) {
    a_token_kind closing = closing_token_of(curr_token);
    if (closing != tok_error) {
      expected.push_back(closing);
    } else if (is_closing_token(curr_token)) {
      if (curr_token != expected.back()) {
        pos_error(missing_closing_token_code(expected.back()), &pos_curr_token);
        return false;
      }
      expected.pop_back();
      if (expected.empty())
        return true;
    } else if (curr_token == tok_end_of_source || curr_token == tok_newline) {
      pos_error(missing_closing_token_code(expected.back()), &pos_curr_token);
      return false;
    }
    fold_name(flags);
    cache_curr_token(cache);
    get_token_to_be_cached();
  }
}

// The same, the partner included; the token behind it becomes the current one.
static bool cache_group(a_token_cache* cache, unsigned flags) {
  if (!cache_token_stream_until_matching_token(cache, flags))
    return false;
  cache_curr_token(cache);
  get_token_to_be_cached();
  return true;
}

void cache_std_attribute(a_token_cache* cache, bool keep) {
  a_token_cache scratch;
  clear_token_cache(&scratch, false);
  a_token_cache* target = keep ? cache : &scratch;
  cache_group(target, 0);
  discard_token_cache(&scratch);
}

// Whether a `<` behind the tokens of the cache can begin template arguments.
static bool less_than_begins_template_args(const a_token_cache* cache) {
  return cache->last != nullptr && cache->last->kind == tok_identifier;
}

void cache_token_stream_full(a_token_cache* cache, const a_token_set_array* stop_set,
                             unsigned flags) {
  int template_depth = 0;
  for (;;) {
    if (curr_token == tok_end_of_source || curr_token == tok_newline)
      return;
    if (template_depth == 0 && stop_set->member[curr_token])
      return;
    if ((flags & ctsf_template_argument) != 0) {
      if (curr_token == tok_lt && less_than_begins_template_args(cache))
        ++template_depth;
      else if (curr_token == tok_gt && template_depth > 0)
        --template_depth;
      else if (curr_token == tok_shift_right && template_depth > 1)
        template_depth -= 2;
    }
    if (closing_token_of(curr_token) != tok_error) {
      if (curr_token == tok_lbracket && next_token() == tok_lbracket && std_attributes_enabled) {
        cache_std_attribute(cache, true);
        continue;
      }
      if (!cache_group(cache, flags))
        return;
      continue;
    }
    if (is_closing_token(curr_token) && (flags & ctsf_stop_at_unbalanced) != 0)
      return;
    fold_name(flags);
    cache_curr_token(cache);
    get_token_to_be_cached();
  }
}

void cache_token_stream(a_token_cache* cache, const a_token_set_array* stop_set) {
  cache_token_stream_full(cache, stop_set, 0);
}

void cache_token_stream_coalesce_identifiers(a_token_cache* cache,
                                             const a_token_set_array* stop_set) {
  cache_token_stream_full(cache, stop_set, ctsf_coalesce_identifiers);
}

static bool cache_token_and_advance(a_token_cache* cache, a_token_kind kind) {
  if (curr_token != kind)
    return false;
  cache_curr_token(cache);
  get_token_to_be_cached();
  return true;
}

// At the `:` before the initializers of a constructor, any of which may stand in
// braces (C++11 12.6.2): the token behind the last becomes the current one.
static bool cache_ctor_initializers(a_token_cache* cache) {
  static const a_token_set_array at_value = [] {
    a_token_set_array set = {};
    set.member[tok_lparen] = set.member[tok_lbrace] = set.member[tok_semicolon] = true;
    return set;
  }();
  do {
    cache_curr_token(cache);
    get_token_to_be_cached();
    if (cache_token_and_advance(cache, tok_decltype) && curr_token == tok_lparen &&
        !cache_group(cache, 0))
      return false;
    cache_token_stream_full(cache, &at_value, ctsf_template_argument);
    if (curr_token != tok_lparen && curr_token != tok_lbrace) {
      pos_error(ec_exp_lparen, &pos_curr_token);
      return false;
    }
    if (!cache_group(cache, 0))
      return false;
    cache_token_and_advance(cache, tok_ellipsis);
  } while (curr_token == tok_comma);
  return true;
}

// At a `{`: caches the block but for its closing brace, which becomes the
// current token.
static bool cache_block(a_token_cache* cache) {
  if (curr_token != tok_lbrace) {
    pos_error(ec_exp_lbrace, &pos_curr_token);
    return false;
  }
  return cache_token_stream_until_matching_token(cache, 0);
}

// At the `catch` behind the closing brace that is the current token.
static bool cache_handler(a_token_cache* cache) {
  cache_curr_token(cache);
  get_token_to_be_cached();
  cache_token_and_advance(cache, tok_catch);
  return curr_token != tok_lparen || cache_group(cache, 0);
}

bool cache_function_body(a_token_cache* cache) {
  bool has_handlers = cache_token_and_advance(cache, tok_try);
  if (curr_token == tok_colon && !cache_ctor_initializers(cache))
    return false;
  if (!cache_block(cache))
    return false;
  while (has_handlers && next_token() == tok_catch)
    if (!cache_handler(cache) || !cache_block(cache))
      return false;
  cache_curr_token(cache);
  return true;
}

// -- Fresh text before saved tokens ---------------------------------------------------

a_cached_token* hide_rescan_list() {
  a_cached_token* saved = rescan_token_list;
  rescan_token_list = nullptr;
  return saved;
}

void restore_rescan_list(a_cached_token* saved) {
  rescan_token_list = saved;
  update_initial_get_token_tests_needed();
}

// -- Initialisation -----------------------------------------------------------------------

void lexical_cache_init() {
  avail_cached_tokens = nullptr;
  avail_token_caches = nullptr;
  avail_reusable_cache_entries = nullptr;
  rescan_token_list = nullptr;
  curr_reusable_cache = nullptr;
}
