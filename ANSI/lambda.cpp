#include "lambda.h"

#include "attribute.h"
#include "class_decl_int.h"
#include "decl_inits.h"
#include "declarator_int.h"
#include "decls.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "layout.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "types.h"

#include <cstring>
#include <unordered_map>

// ---- The lambdas around the current place ----

static a_routine* routine_at_depth(int depth) {
  return depth >= 0 ? scope_stack[depth].routine : nullptr;
}

static a_lambda* lambda_of_routine(const a_routine* routine) {
  if (!routine || !routine->is_lambda_body)
    return nullptr;
  return class_supplement_of(class_of_member(&routine->source_corresp))->lambda;
}

// The depth of the function around the one at the depth; -1 for none.
static int depth_of_function_around(int depth) {
  do
    --depth;
  while (depth >= 0 && scope_stack[depth].kind != sk_function);
  return depth;
}

bool in_lambda_body() {
  return lambda_of_routine(routine_at_depth(depth_innermost_function_scope)) != nullptr;
}

// ---- The closure class ----

static a_type* make_closure_type(a_lambda* lambda) {
  a_symbol_locator locator;
  make_unnamed_locator(&locator, &lambda->position);
  int depth = depth_scope_stack;
  while (scope_stack[depth].kind == sk_function_prototype)
    --depth;
  a_type* type = make_class_type(tk_class, symk_class_or_struct, &locator, depth);
  a_class_type_supplement* supplement = class_supplement_of(type);
  supplement->is_lambda_closure = true;
  supplement->is_unfinished = true;
  supplement->lambda = lambda;
  type->variant.class_struct_union.is_being_defined = true;
  return type;
}

static a_field* add_closure_field(a_lambda* lambda, a_type* type) {
  auto& info = lambda->closure_type->variant.class_struct_union;
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  a_field* field = alloc_field(type);
  field->source_corresp.position = lambda->position;
  field->source_corresp.is_unnamed = true;
  field->is_compiler_generated = true;
  set_parent_scope(&field->source_corresp, iek_field,
                   class_supplement_of(lambda->closure_type)->scope);
  a_field** link = &info.fields;
  while (*link)
    link = &(*link)->next;
  *link = field;
  switch_back_to_original_region(saved_region);
  return field;
}

// ---- Captures ----

static a_lambda_capture* add_capture(a_lambda* lambda, const a_source_position* position) {
  a_lambda_capture* capture = alloc_lambda_capture();
  a_lambda_capture** link = &lambda->captures;
  while (*link)
    link = &(*link)->next;
  *link = capture;
  capture->position = *position;
  return capture;
}

// What a body reaches through captures: a variable of a function, or the member
// of a closure that an init-capture names.
namespace {
struct an_outer_object {
  a_symbol* symbol;
  int depth; // of the function whose variable, or of the body whose closure's member it is
};
} // namespace

static a_type* type_of_object(const a_symbol* symbol) {
  return symbol->kind == symk_field ? symbol->variant.field->type : symbol->variant.variable->type;
}

static bool is_capture_of(const a_lambda_capture* capture, const a_symbol* symbol) {
  return symbol->kind == symk_field ? capture->init_capture_field == symbol->variant.field
                                    : capture->variable == symbol->variant.variable;
}

static a_lambda_capture* find_capture(const a_lambda* lambda, const a_symbol* symbol) {
  for (a_lambda_capture* capture = lambda->captures; capture; capture = capture->next)
    if (is_capture_of(capture, symbol))
      return capture;
  return nullptr;
}

static a_lambda_capture* find_capture_of_this(const a_lambda* lambda) {
  for (a_lambda_capture* capture = lambda->captures; capture; capture = capture->next)
    if (capture->is_this)
      return capture;
  return nullptr;
}

// The depth of the function whose variable the symbol is.
static int scope_depth_for_capture(const a_symbol* symbol) {
  a_scope_stack_entry* entry;
  int depth = scope_depth_of_symbol(symbol, &entry);
  while (depth >= 0 && scope_stack[depth].kind != sk_function)
    --depth;
  return depth;
}

// The depth of the body whose closure has the member.
static int depth_of_closure_body(const a_field* field) {
  const a_type* closure_type = class_of_member(&field->source_corresp);
  int depth = depth_innermost_function_scope;
  for (; depth >= 0; depth = depth_of_function_around(depth)) {
    const a_lambda* lambda = lambda_of_routine(routine_at_depth(depth));
    if (lambda && lambda->closure_type == closure_type)
      break;
  }
  return depth;
}

static a_type* type_of_capture_field(a_type* type, bool is_by_reference) {
  bool is_function = is_reference_type(type) && is_function_type(type_pointed_to(type));
  if (is_function) // which is captured as the reference that it is
    return type;
  if (is_reference_type(type))
    type = type_pointed_to(type);
  return is_by_reference ? make_reference_type(type) : type;
}

// An array is captured element by element (C++11 5.1.2 p21).
static a_dynamic_init* init_of_captured_array(a_type* type, an_operand* value) {
  a_dynamic_init* init = alloc_dynamic_init(dik_bitwise_copy);
  init->variant.expr = make_node_from_operand(value);
  a_type* element = skip_array_types(type);
  a_routine* constructor = is_class_struct_union_type(element)
                               ? special_member_of_class(element, smk_copy_constructor,
                                                         get_type_qualifiers(element) & tq_cv)
                               : nullptr;
  return constructor && !constructor->is_trivial
             ? repeat_for_elements(type, make_constructor_init(skip_typerefs(element), constructor,
                                                               init->variant.expr))
             : init;
}

// Whether the value of a variable can be copied into the closure.
static bool check_copy_of_captured_value(const a_symbol* symbol, a_type* type,
                                         const a_source_position* position) {
  a_type* element = skip_array_types(type);
  if (!is_class_struct_union_type(element) || is_copyable_class(element))
    return true;
  pos_syty_error(ec_captured_var_type_not_copyable, position, symbol, type);
  return false;
}

static void set_capture_initializer(a_lambda_capture* capture, an_operand* value) {
  if (is_array_type(capture->field->type)) {
    capture->initializer = init_of_captured_array(capture->field->type, value);
    return;
  }
  prep_initializer_operand(value, capture->field->type, ec_bad_initializer_type);
  capture->initializer = alloc_dynamic_init(
      is_class_struct_union_type(capture->field->type) ? dik_class_expr : dik_expr);
  capture->initializer->variant.expr = make_node_from_operand(value);
}

// The capture of the object with the value, which an error operand may stand for.
static a_lambda_capture* capture_object(a_lambda* lambda, a_symbol* symbol, bool is_by_reference,
                                        const a_source_position* position, an_operand* value) {
  a_lambda_capture* capture = add_capture(lambda, position);
  bool is_error = is_error_operand(value);
  if (symbol->kind == symk_field)
    capture->init_capture_field = symbol->variant.field;
  else
    capture->variable = symbol->variant.variable;
  capture->is_by_reference = is_by_reference;
  a_type* type = is_by_reference && !is_error ? value->type : type_of_object(symbol);
  capture->field = add_closure_field(lambda, type_of_capture_field(type, is_by_reference));
  if (is_error ||
      (!is_by_reference && !check_copy_of_captured_value(symbol, capture->field->type, position)))
    capture->initializer = make_error_constant_dynamic_init();
  else
    set_capture_initializer(capture, value);
  return capture;
}

static bool make_object_operand(const an_outer_object* object, int depth, an_operand* result);

// The capture of an object by the lambda whose body is at the depth; made now
// when the default allows it.
static a_lambda_capture* lambda_capture_for_object(const an_outer_object* object,
                                                   int lambda_depth) {
  a_lambda* lambda = lambda_of_routine(routine_at_depth(lambda_depth));
  a_lambda_capture* capture = find_capture(lambda, object->symbol);
  an_operand value;
  if (capture)
    return capture;
  if (lambda->capture_default == lcd_none) {
    bool is_enclosing = lambda_depth != depth_innermost_function_scope;
    if (expr_error_should_be_issued())
      pos_sy_error(is_enclosing ? ec_no_implicit_capture_on_enclosing_lambda
                                : ec_not_captured_local_var_in_lambda,
                   &pos_curr_token, object->symbol);
    return nullptr;
  }
  if (!make_object_operand(object, depth_of_function_around(lambda_depth), &value))
    return nullptr;
  capture = capture_object(lambda, object->symbol, lambda->capture_default == lcd_by_reference,
                           &pos_curr_token, &value);
  capture->is_implicit = true;
  return capture;
}

static void select_closure_field(a_field* field, int lambda_depth, an_operand* result) {
  a_variable* closure = scope_stack[lambda_depth].il_scope->this_variable;
  make_expression_operand(var_rvalue_expr(closure), result);
  select_field(result, field, true);
}

// The object as the function at the depth sees it: its own, or a capture.
static bool make_object_operand(const an_outer_object* object, int depth, an_operand* result) {
  a_symbol* symbol = object->symbol;
  if (depth <= object->depth) {
    if (symbol->kind == symk_field)
      select_closure_field(symbol->variant.field, object->depth, result);
    else
      make_lvalue_variable_operand(symbol->variant.variable, nullptr, result);
    return true;
  }
  if (!lambda_of_routine(routine_at_depth(depth))) {
    if (expr_error_should_be_issued())
      pos_sy_error(ec_captured_local_var_not_in_innermost_function, &pos_curr_token, symbol);
    return false;
  }
  a_lambda_capture* capture = lambda_capture_for_object(object, depth);
  if (!capture)
    return false;
  select_closure_field(capture->field, depth, result);
  return true;
}

static void make_referenced_object_operand(const an_outer_object* object, an_operand* result) {
  a_ref_entry* ref = make_ref_entry(srk_reference, object->symbol, &pos_curr_token);
  if (make_object_operand(object, depth_innermost_function_scope, result))
    result->ref_entries = ref;
  else
    make_error_operand(result);
}

bool is_constant_variable(a_variable* variable) {
  if (is_reference_type(variable->type) && variable->is_constexpr)
    return true;
  return is_const_qualified_type(variable->type) && is_integral_or_enum_type(variable->type) &&
         initializer_constant(variable, nullptr) != nullptr;
}

bool make_captured_variable_operand(a_symbol* symbol, an_operand* result) {
  a_variable* variable = symbol->variant.variable;
  if (!in_lambda_body() || symbol->kind != symk_variable || variable->storage_kind < sc_auto ||
      expr_stack->flags.unevaluated_operand || is_constant_variable(variable))
    return false;
  an_outer_object object = {symbol, scope_depth_for_capture(symbol)};
  if (object.depth < 0 || object.depth >= depth_innermost_function_scope)
    return false;
  make_referenced_object_operand(&object, result);
  return true;
}

bool make_init_capture_operand(a_symbol* symbol, an_operand* result) {
  an_outer_object object = {symbol, depth_of_closure_body(symbol->variant.field)};
  if (object.depth < 0 || expr_stack->flags.unevaluated_operand)
    return false;
  make_referenced_object_operand(&object, result);
  return true;
}

// ---- `this` ----

static bool make_this_at_depth(int64_t depth, an_operand* result);

static a_lambda_capture* capture_this_value(a_lambda* lambda, const a_source_position* position,
                                            an_operand* value) {
  a_lambda_capture* capture = add_capture(lambda, position);
  capture->is_this = true;
  capture->field = add_closure_field(lambda, value->type);
  capture->field->is_captured_this = true;
  set_capture_initializer(capture, value);
  return capture;
}

// The capture by the lambda whose body is at the depth; null after a message.
static a_lambda_capture* lambda_capture_for_this(a_lambda* lambda, int64_t lambda_depth) {
  a_lambda_capture* capture = find_capture_of_this(lambda);
  an_operand value;
  if (capture)
    return capture;
  if (lambda->capture_default == lcd_none) {
    expr_pos_error(ec_not_captured_this_in_lambda, &pos_curr_token);
    return nullptr;
  }
  if (!make_this_at_depth(scope_stack[lambda_depth].parent_depth, &value)) {
    expr_pos_error(ec_this_used_incorrectly, &pos_curr_token);
    return nullptr;
  }
  if (is_error_operand(&value))
    return nullptr;
  capture = capture_this_value(lambda, &pos_curr_token, &value);
  capture->is_implicit = true;
  return capture;
}

static void make_captured_this_operand(a_lambda* lambda, int depth, an_operand* result) {
  a_lambda_capture* capture = lambda_capture_for_this(lambda, depth);
  if (!capture) {
    make_error_operand(result);
    return;
  }
  select_closure_field(capture->field, depth, result);
  do_operand_transformations(result, ot_all);
}

// `this` as the scope at the depth sees it: of a member function, or of the class
// whose field initialiser or declarator is read. Where nothing is evaluated no
// lambda has to capture it.
static bool make_this_at_depth(int64_t depth, an_operand* result) {
  a_variable* variable = nullptr;
  for (; depth >= 0 && !variable; depth = scope_stack[depth].parent_depth) {
    const a_scope_stack_entry* entry = &scope_stack[depth];
    bool is_class = entry->kind == sk_class || entry->kind == sk_class_reactivation;
    a_lambda* lambda = entry->kind == sk_function ? lambda_of_routine(entry->routine) : nullptr;
    if (lambda && !expr_stack->flags.unevaluated_operand) {
      make_captured_this_operand(lambda, static_cast<int>(depth), result);
      return true;
    }
    if (lambda || (is_class && class_supplement_of(entry->assoc_type)->is_lambda_closure))
      continue;
    if (entry->kind == sk_function)
      variable = entry->il_scope ? entry->il_scope->this_variable : nullptr;
    else if (is_class)
      variable = class_supplement_of(entry->assoc_type)->scope->this_variable;
    if (entry->kind == sk_function || is_class)
      break;
  }
  if (!variable)
    return false;
  make_expression_operand(var_rvalue_expr(variable), result);
  return true;
}

bool may_capture_this() {
  const a_lambda* lambda = lambda_of_routine(routine_at_depth(depth_innermost_function_scope));
  return !lambda || lambda->capture_default != lcd_none || find_capture_of_this(lambda);
}

bool make_this_pointer_operand(an_operand* result) {
  return make_this_at_depth(depth_scope_stack, result);
}

// ---- The capture list ----

static void check_capture_mode(const a_lambda* lambda, bool is_by_reference,
                               const a_source_position* position) {
  if (lambda->capture_default == (is_by_reference ? lcd_by_reference : lcd_by_copy))
    pos_diagnostic(es_discretionary_error, ec_capture_mode_matches_default, position);
}

static void capture_this(a_lambda* lambda) {
  an_operand value;
  a_source_position position = pos_curr_token;
  if (lambda->capture_default == lcd_by_copy)
    pos_diagnostic(es_discretionary_error, ec_capture_mode_matches_default, &position);
  if (find_capture_of_this(lambda))
    pos_st_error(ec_more_than_one_capture, &position, "this");
  else if (!make_this_pointer_operand(&value))
    pos_error(ec_this_used_incorrectly, &position);
  else if (!is_error_operand(&value))
    capture_this_value(lambda, &position, &value);
  get_token();
}

static bool is_init_capture(const a_symbol* symbol) {
  return symbol->kind == symk_field && depth_of_closure_body(symbol->variant.field) >= 0;
}

static const char* name_of_capture(const a_lambda_capture* capture) {
  if (capture->variable)
    return capture->variable->source_corresp.name;
  return capture->init_capture_field ? capture->init_capture_field->source_corresp.name : nullptr;
}

static bool check_for_second_capture(const a_lambda* lambda, const char* name,
                                     const a_source_position* position) {
  for (const a_lambda_capture* capture = lambda->captures; capture; capture = capture->next) {
    const char* other = name_of_capture(capture);
    if (!other || strcmp(name, other) != 0)
      continue;
    pos_st_error(ec_more_than_one_capture, position, name);
    return false;
  }
  return true;
}

static bool check_var_for_lambda_capture(const a_symbol* symbol, const a_lambda* lambda,
                                         const a_source_position* position) {
  if (symbol->kind != symk_variable && !is_init_capture(symbol)) {
    pos_sy_error(ec_not_a_variable, position, symbol);
    return false;
  }
  if (symbol->kind == symk_variable && symbol->variant.variable->storage_kind < sc_auto) {
    pos_sy_error(ec_capture_of_static_duration_variable, position, symbol);
    return false;
  }
  if (is_variably_modified_type(type_of_object(symbol))) {
    pos_error(ec_lambda_capture_involves_variable_length_array, position);
    return false;
  }
  return check_for_second_capture(lambda, symbol->header->identifier, position);
}

// `name`, `&name`, in the scope around the lambda.
static void capture_named_variable(a_lambda* lambda, bool is_by_reference) {
  a_source_position position = pos_curr_token;
  a_symbol_locator locator = locator_for_curr_id;
  an_outer_object object = {normal_id_lookup(&locator, ilo_none), -1};
  an_operand value;
  check_capture_mode(lambda, is_by_reference, &position);
  if (!object.symbol) {
    pos_st_error(ec_undefined_identifier, &position, locator.header->identifier);
  } else if (check_var_for_lambda_capture(object.symbol, lambda, &position)) {
    object.depth = object.symbol->kind == symk_field
                       ? depth_of_closure_body(object.symbol->variant.field)
                       : scope_depth_for_capture(object.symbol);
    if (make_object_operand(&object, depth_innermost_function_scope, &value))
      value.ref_entries = make_ref_entry(srk_reference, object.symbol, &position);
    else
      make_error_operand(&value);
    capture_object(lambda, object.symbol, is_by_reference, &position, &value);
  }
  get_token();
}

// ---- Init-captures (C++14 5.1.2 p11) ----

// Behind the name: the type that `auto`, or a reference to it, would get.
static a_type* type_of_init_capture(bool is_by_reference, const a_source_position* position) {
  a_decl_parse_state state;
  clear_decl_parse_state(&state);
  a_type* declared = make_auto_type(position, false);
  return deduce_placeholder_type(is_by_reference ? make_reference_type(declared) : declared, true,
                                 &state, position);
}

// The initialiser behind the name.
static a_dynamic_init* scan_init_of_capture(a_type* type) {
  bool is_parenthesized = curr_token == tok_lparen;
  if (curr_token != tok_lbrace)
    get_token();
  if (is_parenthesized)
    add_stop_token(tok_rparen);
  an_init_component* list = scan_init_component();
  a_dynamic_init* init = initialize_subobject(type, &list);
  free_init_component_list(list);
  if (is_parenthesized) {
    remove_stop_token(tok_rparen);
    required_token(tok_rparen, ec_exp_rparen);
  }
  return init;
}

// The symbol of the member, which the body finds by name.
static void name_closure_field(a_lambda* lambda, a_field* field, a_symbol_locator* locator) {
  a_symbol* symbol = make_symbol(symk_field, locator);
  symbol->variant.field = field;
  symbol->parent.class_type = lambda->closure_type;
  symbol->is_class_member = true;
  symbol->defined = true;
  set_source_corresp(&field->source_corresp, symbol);
  set_parent_scope(&field->source_corresp, iek_field,
                   class_supplement_of(lambda->closure_type)->scope);
  field->source_corresp.access = as_private;
  field->source_corresp.is_unnamed = false;
}

// After an error: to the end of the capture.
static void skip_capture() {
  while (curr_token != tok_comma && curr_token != tok_rbracket && curr_token != tok_semicolon &&
         curr_token != tok_rbrace && curr_token != tok_end_of_source) {
    if (curr_token == tok_lbrace || curr_token == tok_lparen || curr_token == tok_lbracket)
      flush_until_matching_token_full(false);
    else
      get_token();
  }
}

// `name = value`, `name(value)`, `name{value}`.
static void scan_init_capture(a_lambda* lambda, bool is_by_reference) {
  a_source_position position = pos_curr_token;
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  a_type* type = type_of_init_capture(is_by_reference, &position);
  a_dynamic_init* init =
      is_error_type(type) ? make_error_constant_dynamic_init() : scan_init_of_capture(type);
  if (is_error_type(type))
    skip_capture();
  if (!check_for_second_capture(lambda, locator.header->identifier, &position))
    return;
  a_lambda_capture* capture = add_capture(lambda, &position);
  capture->is_by_reference = is_by_reference;
  capture->field = capture->init_capture_field = add_closure_field(lambda, type);
  capture->initializer = init;
  name_closure_field(lambda, capture->field, &locator);
}

// In the open class: what the init-captures are called.
static void enter_init_captures(const a_lambda* lambda) {
  for (const a_lambda_capture* capture = lambda->captures; capture; capture = capture->next)
    if (capture->init_capture_field == capture->field)
      add_symbol_to_symbol_table(capture->field->source_corresp.symbol, depth_scope_stack, nullptr);
}

// ---- The list ----

static bool at_init_capture() {
  a_token_kind next = next_token();
  return next == tok_assign || next == tok_lbrace || next == tok_lparen;
}

static void scan_capture(a_lambda* lambda) {
  bool is_by_reference = loop_token(tok_ampersand);
  if (curr_token == tok_this) {
    if (is_by_reference)
      pos_error(ec_cannot_capture_this_by_reference, &pos_curr_token);
    capture_this(lambda);
  } else if (curr_token != tok_identifier) {
    pos_error(ec_exp_identifier, &pos_curr_token);
    skip_capture();
  } else if (at_init_capture() && std_version >= 201402) {
    scan_init_capture(lambda, is_by_reference);
  } else if (at_init_capture()) {
    refuse_construct("init-capture", &pos_curr_token);
    skip_capture();
  } else {
    capture_named_variable(lambda, is_by_reference);
  }
}

// True where the list ends.
static bool scan_capture_default(a_lambda* lambda) {
  if (curr_token == tok_assign) {
    lambda->capture_default = lcd_by_copy;
  } else if (curr_token == tok_ampersand &&
             (next_token() == tok_comma || next_token() == tok_rbracket)) {
    lambda->capture_default = lcd_by_reference;
  } else {
    return curr_token == tok_rbracket;
  }
  get_token();
  return !loop_token(tok_comma);
}

// At the `[`; the `]` is read.
static void scan_capture_list(a_lambda* lambda) {
  get_token();
  add_stop_token(tok_rbracket);
  add_stop_token(tok_comma);
  if (!scan_capture_default(lambda)) {
    do
      scan_capture(lambda);
    while (loop_token(tok_comma));
  }
  remove_stop_token(tok_comma);
  if (curr_token != tok_rbracket) {
    pos_error(ec_exp_rbracket, &pos_curr_token);
    flush_tokens_without_warning();
  }
  remove_stop_token(tok_rbracket);
  loop_token(tok_rbracket);
}

// The initialiser of `auto` is read twice; its closures are made once. They are
// known by the token at which they begin.
static std::unordered_map<a_token_sequence_number, a_lambda*> lambdas_of_prescan;

// ---- What a closure belongs to ----

// The field or the parameter whose initialiser is read; null in a function.
static void* initialized_entity;
// The lambdas of each field, parameter and function; of null at file scope.
static std::unordered_map<const void*, std::vector<a_lambda*>> lambdas_of_entity;

void* set_initialized_entity(void* entity) {
  void* saved = initialized_entity;
  initialized_entity = entity;
  return saved;
}

static bool have_same_parameters(const a_lambda* a, const a_lambda* b) {
  const a_param_type* p = param_types_of(skip_typerefs(a->body_routine->type));
  const a_param_type* q = param_types_of(skip_typerefs(b->body_routine->type));
  for (; p && q; p = p->next, q = q->next)
    if (!identical_types(p->type, q->type))
      return false;
  return p == q;
}

// Its place, from 1 on, among the lambdas with its parameters that belong to the
// same function or initialiser (Itanium C++ ABI 5.1.8).
static void number_lambda(a_lambda* lambda) {
  const void* entity = initialized_entity;
  if (!entity)
    entity = routine_at_depth(depth_innermost_function_scope);
  std::vector<a_lambda*>& lambdas = lambdas_of_entity[entity];
  lambda->discriminator = 1;
  for (const a_lambda* other : lambdas)
    lambda->discriminator += have_same_parameters(lambda, other);
  lambdas.push_back(lambda);
}

static void name_closures_after(const void* initialized, an_il_entry_kind kind, void* entity) {
  auto found = lambdas_of_entity.find(initialized);
  if (found == lambdas_of_entity.end())
    return;
  for (a_lambda* lambda : found->second) {
    a_class_type_supplement* supplement = class_supplement_of(lambda->closure_type);
    supplement->assoc_entity_is_set = true;
    supplement->assoc_entity_kind = kind;
    supplement->assoc_entity.generic = entity;
  }
}

void set_parent_field_for_closure_types(a_field* field) {
  name_closures_after(field, iek_field, field);
}

void set_parent_entity_for_closure_types(a_routine* routine) {
  if (lambdas_of_entity.empty() || is_error_type(routine->type))
    return;
  for (const a_param_type* p = param_types_of(skip_typerefs(routine->type)); p; p = p->next)
    name_closures_after(p, iek_routine, routine);
}

void lambda_init() {
  initialized_entity = nullptr;
  lambdas_of_entity.clear();
  lambdas_of_prescan.clear();
}

// ---- The declarator ----

// Whether a parameter is declared with `auto`, at the `(` of the parameters.
static bool prescan_lambda_parameter_clause() {
  a_token_cache cache;
  a_token_set_array stop_set = {};
  bool is_generic = false;
  stop_set.member[tok_rparen] = stop_set.member[tok_lbrace] = stop_set.member[tok_semicolon] = true;
  clear_token_cache(&cache, false);
  cache_curr_token(&cache);
  get_token();
  cache_token_stream_full(&cache, &stop_set, ctsf_stop_at_unbalanced);
  for (const a_cached_token* token = cache.first; token; token = token->next)
    is_generic |= token->kind == tok_auto;
  rescan_cached_tokens(&cache);
  return is_generic;
}

// The type of operator(); without parentheses it has no parameters.
static a_type* scan_lambda_declarator(a_lambda* lambda, a_func_info_block* func_info,
                                      an_attribute** attributes) {
  if (curr_token != tok_lparen) {
    clear_func_info(func_info);
    return make_routine_type_full(make_auto_type(&lambda->position, false));
  }
  lambda->has_parameter_clause = true;
  function_declarator(do_lambda, func_info);
  a_derivation function = derivations.back();
  derivations.pop_back();
  *attributes = function.attributes;
  if (function.routine_type->variant.routine.routine_supplement->this_qualifiers != tq_none)
    pos_error(ec_type_qualifier_on_lambda, &function.position);
  lambda->is_mutable = function.is_mutable;
  lambda->has_trailing_return_type = function.trailing_return != nullptr;
  function.routine_type->variant.routine.return_type =
      function.trailing_return ? function.trailing_return
                               : make_auto_type(&lambda->position, false);
  return function.routine_type;
}

static a_routine* declare_call_operator(a_lambda* lambda, a_type* type) {
  a_symbol_locator locator;
  make_operator_locator(opn_call, &lambda->position, &locator);
  a_routine_type_supplement* supplement = type->variant.routine.routine_supplement;
  supplement->this_qualifiers = lambda->is_mutable ? tq_none : tq_const;
  supplement->is_lambda_operator = true;
  a_symbol* symbol = enter_member_function(lambda->closure_type, &locator, type, sc_none);
  a_routine* routine = symbol->variant.routine;
  // The class was only opened again, which makes no members.
  set_class_membership(symbol, &routine->source_corresp, lambda->closure_type);
  routine->is_lambda_body = true;
  routine->has_deducible_return_type = !lambda->has_trailing_return_type;
  symbol->defined = true;
  apply_default_section_to_routine(routine);
  lambda->body_routine = routine;
  number_lambda(lambda);
  return routine;
}

// ---- The body ----

// Whether a `[` behind the token begins a lambda and no subscript.
static bool lambda_may_follow(a_token_kind kind) {
  return kind != tok_identifier && kind != tok_rparen && kind != tok_rbracket && kind != tok_this &&
         kind != tok_string;
}

// From the `[` to the closing brace of the body, or to the end.
static const a_cached_token* end_of_nested_lambda(const a_cached_token* token) {
  int depth = 0;
  while (token->next && token->kind != tok_lbrace)
    token = token->next;
  for (; token->next; token = token->next) {
    depth += token->kind == tok_lbrace;
    depth -= token->kind == tok_rbrace;
    if (depth == 0)
      break;
  }
  return token;
}

static bool returns_value(const a_token_cache* body) {
  a_token_kind before = tok_lbrace;
  for (const a_cached_token* token = body->first; token; token = token->next) {
    if (token->kind == tok_lbracket && lambda_may_follow(before))
      token = end_of_nested_lambda(token);
    if (token->kind == tok_return && token->next && token->next->kind != tok_semicolon)
      return true;
    before = token->kind;
  }
  return false;
}

// At the `{`; the `}` is read. Without a value in any return the type is void.
static void scan_lambda_body(a_routine* routine, a_func_info_block* func_info) {
  a_token_cache body;
  clear_token_cache(&body, false);
  if (!cache_token_stream_until_matching_token(&body, 0)) {
    discard_token_cache(&body);
    return;
  }
  cache_curr_token(&body);
  terminate_token_cache(&body);
  get_token();
  a_type* type = skip_typerefs(routine->type);
  if (routine->has_deducible_return_type && !returns_value(&body))
    type->variant.routine.return_type = void_type();
  an_expr_stack_entry* saved_expr_stack = expr_stack;
  void* saved_entity = set_initialized_entity(nullptr);
  expr_stack = nullptr;
  begin_delayed_scan(&body);
  scan_function_body(routine, func_info);
  end_delayed_scan(0);
  expr_stack = saved_expr_stack;
  set_initialized_entity(saved_entity);
  if (is_auto_type(type->variant.routine.return_type))
    type->variant.routine.return_type = void_type();
}

bool returns_deduced_type() {
  const a_routine* routine = routine_at_depth(depth_innermost_function_scope);
  return routine && routine->has_deducible_return_type && !is_error_type(routine->type);
}

a_type* deduce_return_type(an_operand* operand) {
  const a_routine* routine = routine_at_depth(depth_innermost_function_scope);
  a_type** return_type = &skip_typerefs(routine->type)->variant.routine.return_type;
  do_operand_transformations(operand, ot_all);
  a_type* type = is_error_operand(operand) ? error_type() : make_unqualified_type(operand->type);
  if (is_auto_type(*return_type))
    *return_type = type;
  else if (!is_error_type(type) && !is_error_type(*return_type) &&
           !identical_types(type, *return_type))
    type2_error_in_operand(ec_deduced_return_type_conflict, operand, type, *return_type);
  return *return_type;
}

// ---- The conversion to a pointer to function (p6) ----

// The conversion to a pointer to the function that stands for the body.
static void declare_conversion_to_pointer(a_lambda* lambda, const a_routine* function) {
  a_symbol_locator locator;
  a_type* pointer = make_pointer_type(function->type);
  a_type* type = make_routine_type_full(pointer);
  type->variant.routine.routine_supplement->this_qualifiers = tq_const;
  clear_locator(&locator, &lambda->position);
  locator.header = conversion_header(pointer);
  locator.is_conversion_name = true;
  locator.conversion_type = pointer;
  a_symbol* symbol = enter_member_function(lambda->closure_type, &locator, type, sc_none);
  symbol->defined = true;
  symbol->variant.routine->is_compiler_generated = true;
  set_inline_flag(symbol->variant.routine, true);
}

// A static function with the parameters of the body, which it stands for.
static void define_lambda_conversion_function(a_lambda* lambda) {
  a_symbol_locator locator;
  a_type* type = copy_routine_type_with_param_types(skip_typerefs(lambda->body_routine->type));
  a_routine_type_supplement* supplement = type->variant.routine.routine_supplement;
  supplement->this_class = nullptr;
  supplement->this_qualifiers = tq_none;
  supplement->is_lambda_operator = false;
  clear_locator(&locator, &lambda->position);
  find_symbol_header("_FUN", 0, &locator);
  a_symbol* symbol = enter_member_function(lambda->closure_type, &locator, type, sc_static);
  a_routine* routine = symbol->variant.routine;
  set_routine_special_kind(routine, rsk_forwarding);
  routine->special_data.forwarded_routine = lambda->body_routine;
  routine->is_compiler_generated = true;
  declare_conversion_to_pointer(lambda, routine);
}

static a_routine* forwarding_function(const a_type* class_type) {
  for (a_routine* routine = class_supplement_of(class_type)->scope->routines; routine;
       routine = routine->next)
    if (routine->special_kind == rsk_forwarding)
      return routine;
  return nullptr;
}

bool convert_closure_to_pointer(an_operand* operand, a_type* type) {
  if (!is_class_struct_union_type(operand->type) || !is_pointer_type(type) ||
      !class_supplement_of(operand->type)->is_lambda_closure)
    return false;
  a_routine* routine = forwarding_function(skip_typerefs(operand->type));
  if (!routine || !f_types_are_compatible(routine->type, type_pointed_to(type), tcf_none))
    return false;
  an_operand saved = *operand;
  make_expression_operand(function_rvalue_expr(routine), operand);
  restore_operand_details(operand, &saved);
  return true;
}

// ---- The closure object ----

// Its members in the order of the captures.
static a_dynamic_init* init_of_closure(const a_lambda* lambda) {
  a_constant* object = alloc_constant(con_aggregate);
  object->type = lambda->closure_type;
  for (const a_lambda_capture* capture = lambda->captures; capture; capture = capture->next) {
    a_constant* member = alloc_constant(con_dynamic_init);
    member->type = capture->field->type;
    member->value.dynamic_init = capture->initializer;
    if (object->value.aggregate.last)
      object->value.aggregate.last->next = member;
    else
      object->value.aggregate.first = member;
    object->value.aggregate.last = member;
    object->value.aggregate.has_dynamic_init = true;
  }
  a_dynamic_init* init =
      alloc_dynamic_init(lambda->captures ? dik_nonconstant_aggregate : dik_constant);
  init->variant.constant = object;
  init->contains_nonconstant = lambda->captures != nullptr;
  return init;
}

static void make_closure_operand(a_lambda* lambda, an_operand* result) {
  an_expr_node* node = alloc_expr_node(expr_lambda);
  node->type = lambda->closure_type;
  node->position = lambda->position;
  node->variant.lambda.ptr = lambda;
  node->variant.lambda.dynamic_init = init_of_closure(lambda);
  make_expression_operand(node, result);
  rule_out_expr_kinds(rule_out_constant, result);
}

static bool is_prescanning_for_type;

bool set_lambda_prescan(bool is_prescanning) {
  bool saved = is_prescanning_for_type;
  is_prescanning_for_type = is_prescanning;
  return saved;
}

static a_lambda* take_prescanned_lambda() {
  auto found = lambdas_of_prescan.find(curr_token_sequence_number);
  if (found == lambdas_of_prescan.end())
    return nullptr;
  a_lambda* lambda = found->second;
  if (!is_prescanning_for_type)
    lambdas_of_prescan.erase(found);
  return lambda;
}

// The tokens of a lambda from its `[` to its `}`.
static void skip_lambda() {
  while (curr_token != tok_lbrace && curr_token != tok_end_of_source) {
    if (curr_token == tok_lbracket || curr_token == tok_lparen)
      flush_until_matching_token_full(false);
    else
      get_token();
  }
  if (curr_token == tok_lbrace)
    flush_until_matching_token_full(false);
}

static void check_place_of_lambda(const a_source_position* position) {
  if (is_prescanning_for_type)
    return;
  if (expr_stack->flags.unevaluated_operand)
    expr_pos_error(ec_bad_unevaluated_lambda, position);
  else if (in_constant_expr_kind())
    expr_pos_error(ec_bad_constant_lambda, position);
}

static a_lambda* alloc_lambda_at_file_scope() {
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  a_lambda* lambda = alloc_lambda();
  switch_back_to_original_region(saved_region);
  lambda->position = pos_curr_token;
  lambda->header_range.start = pos_curr_token;
  return lambda;
}

// Behind the capture list, in the open class; false after an error.
static bool scan_call_operator(a_lambda* lambda) {
  a_func_info_block func_info;
  if (curr_token == tok_lparen && prescan_lambda_parameter_clause()) {
    refuse_construct("generic lambda", &pos_curr_token);
    skip_lambda();
    return false;
  }
  add_stop_token(tok_lbrace);
  an_attribute* attributes = nullptr;
  a_type* type = scan_lambda_declarator(lambda, &func_info, &attributes);
  lambda->header_range.end = pos_curr_token;
  a_routine* routine = declare_call_operator(lambda, type);
  attach_attributes(attributes, routine, iek_routine);
  set_inline_flag(routine, true); // which isn't written, and is no contradiction to `noinline`
  bool has_body = curr_token == tok_lbrace;
  if (!has_body)
    syntax_error(ec_missing_lambda_body);
  remove_stop_token(tok_lbrace);
  if (!has_body) {
    if (curr_token == tok_lbrace)
      flush_until_matching_token_full(false);
    return false;
  }
  scan_lambda_body(routine, &func_info);
  if (!lambda->captures && lambda->capture_default == lcd_none)
    define_lambda_conversion_function(lambda);
  return true;
}

void scan_lambda(an_operand* result) {
  check_stack_limit();
  a_source_position start = pos_curr_token;
  if (a_lambda* done = take_prescanned_lambda()) {
    skip_lambda();
    make_closure_operand(done, result);
    result->position = start;
    return;
  }
  check_place_of_lambda(&start);
  a_token_sequence_number number = curr_token_sequence_number;
  a_lambda* lambda = alloc_lambda_at_file_scope();
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  lambda->closure_type = make_closure_type(lambda);
  switch_back_to_original_region(saved_region);
  push_class_scope(lambda->closure_type);
  pop_scope();
  bool was_prescanning = set_lambda_prescan(false);
  scan_capture_list(lambda);
  push_class_and_template_reactivation_scope(lambda->closure_type);
  enter_init_captures(lambda);
  bool is_good = scan_call_operator(lambda);
  set_lambda_prescan(was_prescanning);
  complete_class_type(lambda->closure_type, &start);
  class_supplement_of(lambda->closure_type)->is_unfinished = false;
  pop_class_reactivation_scope();
  a_source_position end = curr_construct_end_position;
  if (is_good && is_prescanning_for_type)
    lambdas_of_prescan[number] = lambda;
  if (is_good)
    make_closure_operand(lambda, result);
  else
    make_error_operand(result);
  set_operand_range(result, &start, &end);
}
