// Components: the text of an initialiser as a tree that knows nothing of the
// type. Of a list only the first element is read at once, the others when the
// walk comes to them: a continuation stands for what is still to be read.

#include "decl_inits_int.h"
#include "expr.h"
#include "il_alloc.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "stack_limit.h"

static an_init_component* avail_init_components;

an_init_component* alloc_init_component(an_init_component_kind kind) {
  an_init_component* component = avail_init_components;
  if (component)
    avail_init_components = component->next;
  else
    component = static_cast<an_init_component*>(alloc_in_region(0, sizeof *component));
  component->next = nullptr;
  component->kind = kind;
  component->parenthesized = false;
  component->pack_expansion = false;
  component->variant.designator = {};
  return component;
}

void free_init_component_list(an_init_component* list) {
  check_stack_limit();
  while (an_init_component* component = first_init_component(&list)) {
    if (component->kind == ick_braced_list)
      free_init_component_list(component->variant.braced.first);
    list = component->next;
    component->next = avail_init_components;
    avail_init_components = component;
  }
}

a_source_position init_component_pos(const an_init_component* component) {
  switch (component->kind) {
  case ick_expression:
    return component->variant.operand.position;
  case ick_braced_list:
    return component->variant.braced.start_position;
  case ick_designator:
    return component->variant.designator.position;
  default:
    return pos_curr_token;
  }
}

a_source_position init_component_end_pos(const an_init_component* component) {
  return component->kind == ick_braced_list ? component->variant.braced.end_position
                                            : component->variant.operand.end_position;
}

bool is_error_component(const an_init_component* component) {
  return component->kind == ick_expression && component->variant.operand.kind == ok_error;
}

bool is_string_literal_component(const an_init_component* component, const a_constant** literal) {
  *literal = nullptr;
  if (component->kind != ick_expression)
    return false;
  const an_operand* operand = &component->variant.operand;
  if (!operand_is_string_literal(operand))
    return false;
  if (operand->kind == ok_constant)
    *literal = &operand->variant.constant;
  else if (operand->variant.expr->kind == expr_constant)
    *literal = operand->variant.expr->variant.constant.ptr;
  return *literal != nullptr;
}

// ---- Designators (C99 6.7.8 p1) ----

static a_constant* scan_index() {
  a_constant index;
  scan_integral_constant_expression(&index);
  return index.kind == con_integer ? alloc_unshared_constant(&index) : nullptr;
}

// `[a]`, and `[a ... b]` of the GNU dialects.
static an_init_component* scan_index_designator() {
  an_init_component* component = alloc_init_component(ick_designator);
  component->variant.designator.position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbracket);
  component->variant.designator.index = scan_index();
  if (curr_token == tok_ellipsis && extended_designators_allowed) {
    get_token();
    component->variant.designator.range_end = scan_index();
    if (!component->variant.designator.range_end)
      component->variant.designator.index = nullptr;
  }
  remove_stop_token(tok_rbracket);
  required_token(tok_rbracket, ec_exp_rbracket);
  return component;
}

// At the name.
static an_init_component* field_designator_of_name(const a_source_position* position) {
  an_init_component* component = alloc_init_component(ick_designator);
  component->variant.designator.position = *position;
  if (curr_token == tok_identifier)
    component->variant.designator.field_name = locator_for_curr_id.header;
  required_token(tok_identifier, ec_exp_identifier);
  return component;
}

static an_init_component* scan_field_designator() {
  a_source_position position = pos_curr_token;
  get_token();
  return field_designator_of_name(&position);
}

static bool at_old_field_designator() {
  return extended_designators_allowed && curr_token == tok_identifier && next_token() == tok_colon;
}

// Whether a lambda begins at the `[` of an element, and no designator: by what
// stands in the brackets or, behind a name alone, by what follows them.
static bool at_lambda() {
  if (in_C_mode() || !lambdas_enabled || curr_token != tok_lbracket)
    return false;
  a_token_kind next = next_token();
  if (next != tok_identifier)
    return next == tok_rbracket || next == tok_assign || next == tok_ampersand || next == tok_this;
  a_token_cache cache;
  a_token_set_array stop_set = {};
  stop_set.member[tok_rbracket] = stop_set.member[tok_semicolon] = true;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  get_token();
  cache_token_stream_full(&cache, &stop_set, ctsf_stop_at_unbalanced);
  bool is_closed = curr_token == tok_rbracket;
  if (is_closed) {
    cache_curr_token(&cache);
    get_token();
  }
  bool begins_body = curr_token == tok_lbrace || curr_token == tok_lparen;
  rescan_cached_tokens(&cache);
  return is_closed && begins_body;
}

// Designators and what ends them, appended to a list. Old GNU C wrote `field:`
// for `.field =`, and left out the `=` behind a single index.
static an_init_component** scan_designators(an_init_component** link) {
  if (at_old_field_designator()) {
    a_source_position position = pos_curr_token;
    *link = field_designator_of_name(&position);
    get_token();
    return &(*link)->next;
  }
  const an_init_component* first = nullptr;
  while (designators_allowed && !at_lambda() &&
         (curr_token == tok_lbracket || curr_token == tok_period)) {
    *link = curr_token == tok_lbracket ? scan_index_designator() : scan_field_designator();
    if (!first)
      first = *link;
    link = &(*link)->next;
  }
  if (!first || curr_token == tok_assign) {
    if (first)
      get_token();
    return link;
  }
  bool is_old_form =
      extended_designators_allowed && !first->next && !first->variant.designator.field_name;
  if (!is_old_form)
    required_token(tok_assign, ec_exp_assign);
  return link;
}

// ---- Lists ----

static void close_list(an_init_component* list) {
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rbrace);
  list->variant.braced.end_position = end_pos_curr_token;
  required_token(tok_rbrace, ec_exp_rbrace);
}

static bool is_partly_read(const an_init_component* component) {
  if (component->kind != ick_braced_list)
    return false;
  for (component = component->variant.braced.first; component; component = component->next)
    if (component->kind == ick_continuation)
      return true;
  return false;
}

static an_init_component* make_continuation(an_init_component* list, bool is_behind_element) {
  an_init_component* continuation = alloc_init_component(ick_continuation);
  continuation->variant.continuation.list = list;
  continuation->variant.continuation.is_behind_element = is_behind_element;
  return continuation;
}

static bool is_at_end_of_list() {
  return curr_token == tok_rbrace || curr_token == tok_end_of_source;
}

// Reads the next element of a list; a continuation behind it stands for others.
static an_init_component* scan_list_element(an_init_component* list) {
  an_init_component* first = nullptr;
  an_init_component** link = scan_designators(&first);
  *link = scan_partial_init_component();
  if (is_partly_read(*link))
    (*link)->next = make_continuation(list, true);
  else if (!loop_token(tok_comma) || is_at_end_of_list())
    close_list(list);
  else
    (*link)->next = make_continuation(list, false);
  return first;
}

an_init_component* get_continued_elem(an_init_component* continuation) {
  an_init_component* list = continuation->variant.continuation.list;
  bool is_behind_element = continuation->variant.continuation.is_behind_element;
  continuation->next = avail_init_components;
  avail_init_components = continuation;
  if (!is_behind_element || (loop_token(tok_comma) && !is_at_end_of_list()))
    return scan_list_element(list);
  close_list(list);
  return nullptr;
}

an_init_component* first_init_component(an_init_component** list) {
  if (*list && (*list)->kind == ick_continuation)
    *list = get_continued_elem(*list);
  return *list;
}

uint64_t number_of_dropped_init_components;

void drop_first_init_component(an_init_component** list) {
  an_init_component* component = *list;
  ++number_of_dropped_init_components;
  if (component->kind == ick_braced_list) {
    free_init_component_list(component->variant.braced.first);
    component->variant.braced.first = nullptr;
  }
  *list = component->next;
  component->next = nullptr;
  free_init_component_list(component);
}

an_init_component* get_braced_init_list() {
  an_init_component* list = alloc_init_component(ick_braced_list);
  list->variant.braced.start_position = pos_curr_token;
  get_token();
  add_stop_token(tok_rbrace);
  add_stop_token(tok_comma);
  if (is_at_end_of_list())
    close_list(list);
  else
    list->variant.braced.first = scan_list_element(list);
  return list;
}

// Reads a list to its end.
void complete_braced_init_list_parsing(an_init_component* list) {
  check_stack_limit();
  for (an_init_component** link = &list->variant.braced.first; first_init_component(link);
       link = &(*link)->next)
    if ((*link)->kind == ick_braced_list)
      complete_braced_init_list_parsing(*link);
}

an_init_component* get_whole_braced_init_list() {
  an_init_component* list = get_braced_init_list();
  complete_braced_init_list_parsing(list);
  return list;
}

an_init_component* scan_partial_init_component() {
  check_stack_limit();
  if (curr_token == tok_lbrace)
    return get_braced_init_list();
  an_init_component* component = alloc_init_component(ick_expression);
  component->parenthesized = curr_token == tok_lparen;
  add_stop_token(tok_comma);
  scan_expr(&component->variant.operand, nullptr, 0, sef_no_comma);
  remove_stop_token(tok_comma);
  return component;
}

an_init_component* scan_init_component() {
  an_init_component* component = scan_partial_init_component();
  if (component->kind == ick_braced_list)
    complete_braced_init_list_parsing(component);
  return component;
}

void decl_inits_one_time_init() {
  avail_init_components = nullptr;
}
