// Range-based for statements (C++11 6.5.4). The statement means what a loop
// over iterators would mean in its place, and that loop is what is parsed: the
// tokens of the parts that aren't written are made here, with the names that
// the standard gives the variables.

#include <initializer_list>

#include "decls.h"
#include "error.h"
#include "expr.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "statements_int.h"
#include "symbol_tbl.h"
#include "types.h"

static constexpr const char* range_name = "__range";
static constexpr const char* begin_name = "__begin";
static constexpr const char* end_name = "__end";

namespace {

// A token by its kind, or an identifier by its name.
struct a_made_token {
  a_made_token(a_token_kind token_kind) : kind(token_kind) {}
  a_made_token(const char* identifier) : kind(tok_identifier), name(identifier) {}
  a_token_kind kind;
  const char* name = nullptr;
};

} // namespace

static a_cached_token* make_token(const a_made_token& made, const a_source_position* position) {
  a_cached_token* token = build_cached_token(made.kind, curr_token_sequence_number, position);
  if (made.name) {
    token->extra_kind = ctk_identifier;
    clear_locator(&token->variant.locator, position);
    find_symbol_header(made.name, 0, &token->variant.locator);
    token->variant.locator.position = *position;
  }
  return token;
}

static void append_tokens(std::initializer_list<a_made_token> tokens,
                          const a_source_position* position, a_token_cache* cache) {
  for (const a_made_token& made : tokens)
    append_cached_token(cache, make_token(made, position));
}

// In front of the current token.
static void insert_tokens(std::initializer_list<a_made_token> tokens,
                          const a_source_position* position) {
  a_token_cache cache;
  clear_token_cache(&cache, false);
  append_tokens(tokens, position, &cache);
  rescan_cached_tokens(&cache);
}

// ---- Parts that aren't written ----

static void open_loop_scope(a_scope** scope, const a_source_position* position) {
  push_block_scope(nullptr);
  flow_open_block(bf_none, position);
  *scope = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
}

static void close_loop_scope() {
  flow_close_block();
  pop_scope();
}

// It is nobody else's business whether it is used.
static a_variable* made_variable(a_variable* variable) {
  variable->is_compiler_generated = true;
  variable->is_used = true;
  return variable;
}

static bool has_member(a_type* class_type, const char* name) {
  a_symbol_locator locator = cleared_locator;
  find_symbol_header(name, 0, &locator);
  return class_qualified_id_lookup(&locator, class_type, ilo_none) != nullptr;
}

static bool has_function(const char* name) {
  a_symbol_locator locator = cleared_locator;
  find_symbol_header(name, 0, &locator);
  return normal_id_lookup(&locator, ilo_none) != nullptr;
}

// p1: an array's own bounds, or what `begin` and `end` return.
static void insert_bound(a_type* range_type, bool is_begin, const a_source_position* position) {
  const char* name = is_begin ? "begin" : "end";
  if (is_array_type(range_type) && is_begin)
    insert_tokens({range_name}, position);
  else if (is_array_type(range_type))
    insert_tokens({range_name, tok_plus, tok_sizeof, tok_lparen, range_name, tok_rparen, tok_divide,
                   tok_sizeof, tok_lparen, tok_star, range_name, tok_rparen},
                  position);
  else if (is_class_struct_union_type(range_type) &&
           (has_member(range_type, "begin") || has_member(range_type, "end")))
    insert_tokens({range_name, tok_period, name, tok_lparen, tok_rparen}, position);
  else
    insert_tokens({name, tok_lparen, range_name, tok_rparen}, position);
}

static a_variable* scan_bound(a_type* range_type, bool is_begin,
                              const a_source_position* position) {
  insert_bound(range_type, is_begin, position);
  insert_tokens({tok_auto, is_begin ? begin_name : end_name, tok_assign}, position);
  return made_variable(loop_variable_declaration());
}

// Whether the range has a beginning and an end at all; says so if not.
static bool check_range(a_type* type, const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (is_array_type(type)) {
    if (!is_incomplete_type(type))
      return true;
    pos_ty_error(ec_range_based_for_incomplete_array_type, position, type);
    return false;
  }
  if (is_class_struct_union_type(type) && (has_member(type, "begin") || has_member(type, "end")))
    return true;
  for (const char* name : {"begin", "end"}) {
    if (!has_function(name)) {
      pos_st_error(ec_range_based_for_undefined_identifier, position, name);
      return false;
    }
  }
  return true;
}

// What the loop does to its iterators.
static bool check_iterators(const a_variable* begin, const a_variable* end,
                            const a_source_position* position) {
  if (is_error_type(begin->type) || is_error_type(end->type))
    return false;
  if (!identical_types(begin->type, end->type)) {
    pos_ty2_error(ec_begin_end_type_mismatch_in_range_based_for, position, begin->type, end->type);
    return false;
  }
  if (!is_class_struct_union_type(begin->type))
    return true;
  an_error_code code =
      !any_opname_function_symbol(opn_ne)          ? ec_missing_notequal_on_range_based_for_type
      : !any_opname_function_symbol(opn_plus_plus) ? ec_missing_incr_on_range_based_for_type
      : !any_opname_function_symbol(opn_star)      ? ec_missing_indirect_on_range_based_for_type
                                                   : 0;
  if (code != 0)
    pos_ty_error(code, position, begin->type);
  return code == 0;
}

static bool scan_iteration(a_range_based_for_supplement* loop, const a_source_position* position) {
  a_type* type = loop->range_variable->type;
  if (is_reference_type(type))
    type = type_pointed_to(type);
  if (!check_range(type, position))
    return false;
  loop->begin_variable = scan_bound(type, true, position);
  loop->end_variable = scan_bound(type, false, position);
  if (!check_iterators(loop->begin_variable, loop->end_variable, position))
    return false;
  insert_tokens({begin_name, tok_ne, end_name}, position);
  loop->condition_expr = scan_boolean_controlling_expression();
  insert_tokens({tok_plus_plus, begin_name}, position);
  loop->increment_expr = scan_void_expression();
  return true;
}

// ---- The statement ----

// The declaration in front of the colon waits for the range. Without one its
// variable is initialised by what has been reported, and so without a message.
static void scan_declared_variable(a_range_based_for_supplement* loop, a_token_cache* declaration,
                                   bool has_range, const a_source_position* position) {
  if (has_range) {
    append_tokens({tok_assign, tok_star, begin_name}, position, declaration);
  } else {
    loop->range_variable->type = error_type();
    append_tokens({tok_assign, range_name}, position, declaration);
  }
  rescan_cached_tokens(declaration);
  loop->next_variable = loop_variable_declaration();
}

static void cache_declaration(a_token_cache* declaration) {
  a_token_set_array stop_set = {};
  stop_set.member[tok_colon] = true;
  clear_token_cache(declaration, false);
  cache_token_stream(declaration, &stop_set);
}

void range_based_for(const a_source_position* position) {
  a_statement* construct = top_stmt_entry()->statement;
  top_stmt_entry()->kind = ssk_range_for;
  set_statement_kind(construct, stmk_range_for);
  a_range_based_for_supplement* loop = construct->variant.loop.extra.range_for_supplement;
  a_token_cache declaration;
  add_stop_token(tok_rparen);
  cache_declaration(&declaration);
  a_source_position colon = pos_curr_token;
  get_token();
  open_loop_scope(&loop->range_scope, position);
  insert_tokens({tok_auto, tok_and_and, range_name, tok_assign}, &colon);
  loop->range_variable = made_variable(loop_variable_declaration());
  open_loop_scope(&loop->iterator_scope, position);
  bool has_range = scan_iteration(loop, &colon);
  open_loop_scope(&loop->body_scope, position);
  scope_stack[depth_scope_stack].is_range_for = true;
  scan_declared_variable(loop, &declaration, has_range, &colon);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  loop_body(position);
  for (int i = 0; i < 3; i++)
    close_loop_scope();
  close_construct();
}
