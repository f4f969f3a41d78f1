// Names of types: typedef declarations (C99 6.7.7) and alias declarations
// (C++11 7.1.3).

#include "attribute.h"
#include "decls_int.h"
#include "error.h"
#include "expr.h"
#include "il.h"
#include "lexical.h"
#include "lookup.h"
#include "mode_words.h"
#include "pragma.h"
#include "scope_stk.h"
#include "statements.h"
#include "symbol_ref.h"
#include "sys_predef.h"
#include "types.h"

// C11 6.7 p3 and C++ permit the repetition.
static void report_repeated_typedef(const a_source_position* position) {
  if (in_cplusplus_mode())
    return;
  bool is_permitted = std_version >= 201112 || gnu_mode;
  pos_diagnostic(is_permitted ? es_remark : tolerated_breach_severity(), ec_duplicate_typedef,
                 position);
}

static a_type* type_of_name(const a_symbol* symbol) {
  return symbol->kind == symk_type || is_tag_symbol_kind(symbol->kind) ? symbol->variant.type
                                                                       : nullptr;
}

static void redeclare_typedef(a_symbol* previous, a_symbol_locator* locator,
                              a_decl_parse_state* state) {
  a_type* old_type = type_of_name(previous);
  a_type* new_type = state->declared_type;
  const a_source_position* position = &locator->position;
  state->symbol = previous;
  if (!old_type)
    report_incompatible_redeclaration(position, previous);
  else if (is_error_type(new_type) || is_error_type(old_type))
    return;
  else if (identical_types(old_type, new_type))
    report_repeated_typedef(position);
  else
    pos_error(types_are_compatible(old_type, new_type) ? ec_similar_typedef : ec_duplicate_typedef,
              position);
}

// What the scope declares. In C++ `typedef struct s {...} s;` names the class
// again (C++11 7.1.3 p3); in C a tag is in another name space.
static a_symbol* previous_declaration(a_symbol_locator* locator) {
  locator->symbol = nullptr;
  a_symbol* symbol = forget_predeclared_function(curr_scope_id_lookup(locator, ilo_none));
  locator->symbol = nullptr;
  return symbol;
}

static void enter_type_name(a_symbol_locator* locator, a_decl_parse_state* state) {
  bool check = true;
  a_type* type = make_typedef_type(state->declared_type);
  a_symbol* symbol = enter_symbol(symk_type, locator, decl_scope_level, &check);
  symbol->variant.type = type;
  set_source_corresp_with_scope_depth(&type->source_corresp, symbol, decl_scope_level);
  add_to_types_list(type, decl_scope_level);
  record_symbol_declaration(srk_definition, symbol, &locator->position, nullptr);
  update_decl_pos_info(&type->source_corresp, state);
  record_entity_in_decl_stmt_if_needed(symbol);
  state->symbol = symbol;
}

void decl_typedef(a_symbol_locator* locator, a_decl_parse_state* state) {
  if (locator->is_qualified || locator->is_template_id) {
    pos_error(locator->is_template_id ? ec_explicit_template_args_not_allowed
                                      : ec_qualified_name_not_allowed,
              &locator->position);
    set_to_error_locator(locator);
  }
  if (state->asm_name)
    pos_error(ec_asm_name_in_typedef, &state->asm_name_position);
  a_symbol* previous = previous_declaration(locator);
  if (previous)
    redeclare_typedef(previous, locator, state);
  else
    enter_type_name(locator, state);
  attach_decl_attributes(state, false);
  process_curr_construct_pragmas(state->symbol, nullptr);
}

// `using name = type;`, at the name; the `;` is left.
void alias_declaration() {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  a_symbol_locator locator = locator_for_curr_id;
  locator.symbol = nullptr;
  get_token();
  get_token();
  state.declared_type = type_name();
  state.end_position = curr_construct_end_position;
  decl_typedef(&locator, &state);
}
