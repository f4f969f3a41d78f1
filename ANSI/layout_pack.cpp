// The state of #pragma pack: the member alignment in force, and the stack of
// alignments that were put aside.

#include <string>

#include "const_ints.h"
#include "error.h"
#include "layout_int.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "pch.h"
#include "pragma.h"
#include "scope_stk.h"
#include "target.h"
#include "trans_unit.h"

// A saved alignment; the records lie in region 0.
struct a_pack_entry {
  a_pack_entry* next;
  const char* name; // null: none was given
  int32_t value;
};

// The member alignment that #pragma pack has set; 0: none.
static int32_t curr_max_member_alignment;
static a_pack_entry* pack_stack;
static a_pack_entry* avail_pack_entries;

static const a_pch_saved_variable pch_saved_variables[] = {
    {&curr_max_member_alignment, sizeof curr_max_member_alignment, false},
    {&pack_stack, sizeof pack_stack, false},
    {&avail_pack_entries, sizeof avail_pack_entries, false},
    {nullptr, 0, false}};

// ---- The stack ----

static void push_pack_entry(const char* name) {
  a_pack_entry* entry = avail_pack_entries;
  if (entry)
    avail_pack_entries = entry->next;
  else
    entry = static_cast<a_pack_entry*>(alloc_in_region(front_end_region, sizeof(a_pack_entry)));
  *entry = {pack_stack, name, curr_max_member_alignment};
  pack_stack = entry;
}

static void drop_pack_entry() {
  a_pack_entry* entry = pack_stack;
  pack_stack = entry->next;
  entry->next = avail_pack_entries;
  avail_pack_entries = entry;
}

static void pop_pack_entry() {
  curr_max_member_alignment = pack_stack->value;
  drop_pack_entry();
}

// Names of identifiers are kept once, so that equal ones have one address.
static bool is_on_pack_stack(const char* name) {
  const a_pack_entry* entry = pack_stack;
  while (entry && entry->name != name)
    entry = entry->next;
  return entry != nullptr;
}

// ---- What layout asks ----

uint16_t current_max_alignment_for_class_members() {
  return static_cast<uint16_t>(curr_max_member_alignment);
}

uint16_t current_pack_pragma_value() {
  return static_cast<uint16_t>(curr_max_member_alignment);
}

bool check_pack_alignment_value(const a_constant* value, uint16_t* out) {
  if (cmplit_integer_constant(value, targ_minimum_pack_alignment) < 0 ||
      cmplit_integer_constant(value, targ_maximum_pack_alignment) > 0)
    return false;
  uint64_t alignment = value->value.int_value;
  if ((alignment & (alignment - 1)) != 0)
    return false;
  *out = static_cast<uint16_t>(alignment);
  return true;
}

static bool in_class_template_definition() {
  const a_scope_stack_entry* entry = &scope_stack[depth_scope_stack];
  return entry->kind == sk_class && entry->is_template_declaration;
}

void reset_pack_alignment_state(uint16_t value, a_pack_alignment_state* save) {
  *save = {curr_max_member_alignment, pack_stack, !in_class_template_definition()};
  if (!save->is_saved)
    return;
  curr_max_member_alignment = value;
  pack_stack = nullptr;
}

void restore_pack_alignment_state(const a_pack_alignment_state* save) {
  if (!save->is_saved)
    return;
  while (pack_stack)
    drop_pack_entry();
  curr_max_member_alignment = save->max_member_alignment;
  pack_stack = save->stack;
}

// ---- #pragma pack ----

namespace {

enum a_pack_action : uint8_t { pack_set, pack_push, pack_pop, pack_show };

struct a_pack_request {
  a_pack_action action;
  const char* name; // of push and pop; null: none
  bool has_value;
  uint16_t value; // 0: no limit
  a_source_position name_position;
};

} // namespace

static an_error_severity gnu_warning_severity() {
  return gnu_mode ? es_warning : es_error;
}

static const char* name_of_curr_token() {
  return locator_for_curr_id.header->identifier;
}

// The number at the current token. One that is no alignment stands for no limit.
static bool scan_pack_value(a_pack_request* request) {
  if (curr_token != tok_integer) {
    pos_error(ec_exp_int_constant, &pos_curr_token);
    return false;
  }
  bool is_gnu_zero = gnu_mode && cmplit_integer_constant(&const_for_curr_token, 0) == 0;
  if (!check_pack_alignment_value(&const_for_curr_token, &request->value) && !is_gnu_zero)
    pos_error(ec_bad_pack_alignment, &pos_curr_token);
  request->has_value = true;
  get_token();
  return true;
}

// Behind push or pop: `, name`, `, n`, or both.
static bool scan_push_or_pop_operands(a_pack_request* request) {
  if (curr_token != tok_comma)
    return true;
  get_token();
  if (curr_token == tok_identifier) {
    request->name = name_of_curr_token();
    request->name_position = pos_curr_token;
    get_token();
    if (curr_token != tok_comma)
      return true;
    get_token();
  }
  return scan_pack_value(request);
}

static bool scan_show_operands() {
  if (curr_token != tok_comma)
    return true;
  pos_warning(ec_pragma_pack_show_args_ignored, &pos_curr_token);
  while (curr_token != tok_rparen && curr_token != tok_end_of_source)
    get_token();
  return true;
}

static bool scan_pack_operands(a_pack_request* request) {
  static const struct {
    const char* word;
    a_pack_action action;
  } words[] = {{"push", pack_push}, {"pop", pack_pop}, {"show", pack_show}};
  if (curr_token == tok_rparen || curr_token == tok_end_of_source) {
    request->has_value = true; // of no limit
    return true;
  }
  for (const auto& row : words) {
    if (!curr_token_is_identifier_string(row.word))
      continue;
    request->action = row.action;
    request->name_position = pos_curr_token;
    get_token();
    return row.action == pack_show ? scan_show_operands() : scan_push_or_pop_operands(request);
  }
  return scan_pack_value(request);
}

// The closing parenthesis; GNU code may leave out both, but not one.
static bool scan_closing_parenthesis(bool is_open) {
  if (curr_token == tok_rparen) {
    get_token();
    return true;
  }
  if (is_open && gnu_mode) {
    pos_warning(ec_exp_rparen_and_pragma_ignored, &pos_curr_token);
    return false;
  }
  pos_diagnostic(gnu_warning_severity(), ec_exp_rparen, &pos_curr_token);
  return gnu_mode;
}

static bool scan_pack_request(a_pack_request* request) {
  bool is_open = curr_token == tok_lparen;
  if (is_open)
    get_token();
  else
    pos_diagnostic(gnu_warning_severity(), ec_exp_lparen, &error_position);
  if (!is_open && !gnu_mode)
    return false;
  return scan_pack_operands(request) && scan_closing_parenthesis(is_open);
}

static void show_pack_value(const a_source_position* position) {
  std::string text = curr_max_member_alignment != 0 ? std::to_string(curr_max_member_alignment)
                                                    : std::string("not set");
  pos_st_warning(ec_value_of_pragma_pack_show, position, text.c_str());
}

// A name that isn't on the stack leaves the stack as it is.
static void pop_pack_stack(const a_pack_request* request) {
  if (!pack_stack) {
    pos_diagnostic(gnu_warning_severity(), ec_empty_pack_alignment_stack, &request->name_position);
    return;
  }
  if (request->name && !is_on_pack_stack(request->name)) {
    pos_st_diagnostic(gnu_warning_severity(), ec_not_found_on_pack_alignment_stack,
                      &request->name_position, request->name);
    return;
  }
  while (request->name && pack_stack->name != request->name)
    drop_pack_entry();
  pop_pack_entry();
}

static void obey_pack_request(const a_pack_request* request, const a_source_position* position) {
  switch (request->action) {
  case pack_show:
    show_pack_value(position);
    return;
  case pack_push:
    push_pack_entry(request->name);
    break;
  case pack_pop:
    pop_pack_stack(request);
    break;
  case pack_set:
    break;
  }
  if (request->has_value)
    curr_max_member_alignment = request->value;
}

// The class or function around the directive, whose end ends its effect; null
// at file scope.
static const a_symbol* owner_of_pack_pragma() {
  for (int depth = depth_scope_stack; depth > 0; --depth) {
    const a_scope_stack_entry* entry = &scope_stack[depth];
    if (entry->kind == sk_class && entry->assoc_type)
      return entry->assoc_type->source_corresp.symbol;
    if (entry->kind == sk_function && entry->il_scope && entry->il_scope->assoc.routine)
      return entry->il_scope->assoc.routine->source_corresp.symbol;
  }
  return nullptr;
}

void pack_pragma(a_pending_pragma* pragma, a_symbol*, a_statement*) {
  const a_symbol* owner = owner_of_pack_pragma();
  a_pack_request request = {};
  begin_rescan_of_pragma_tokens(pragma);
  for (a_token_kind kind : {tok_rparen, tok_identifier, tok_integer})
    add_stop_token(kind);
  bool is_good = scan_pack_request(&request);
  for (a_token_kind kind : {tok_rparen, tok_identifier, tok_integer})
    remove_stop_token(kind);
  wrapup_rescan_of_pragma_tokens(!is_good);
  if (!is_good)
    return;
  int32_t value_before = curr_max_member_alignment;
  obey_pack_request(&request, &pragma->directive_position);
  if (owner && curr_max_member_alignment != value_before)
    pos_sy_remark(ec_local_pragma_pack, &pragma->directive_position, owner);
}

// ---- Initialisation ----

void register_pack_state() {
  f_register_trans_unit_variable(&curr_max_member_alignment, sizeof curr_max_member_alignment, 0);
  f_register_trans_unit_variable(&pack_stack, sizeof pack_stack, 0);
  register_pch_saved_variables(pch_saved_variables);
}

void init_pack_state(bool new_run) {
  if (new_run)
    avail_pack_entries = nullptr;
  pack_stack = nullptr;
  curr_max_member_alignment = pack_alignment;
}
