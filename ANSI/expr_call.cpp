// Function calls (C99 6.5.2.2).

#include "decl_inits.h"
#include "decls.h"
#include "expr_operator.h"
#include "il.h"
#include "lambda.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "sys_predef.h"
#include "templates.h"

#include <algorithm>
#include <vector>

// ---- Implicit declarations (C89 3.3.2.2) ----

static an_error_severity implicit_declaration_severity() {
  if (std_version < 199901)
    return es_remark;
  return strict_ansi_mode ? strict_ansi_error_severity : es_warning;
}

// A MISRA rule that is checked has a message of its own for it.
static void report_implicit_declaration(const a_symbol_locator* locator) {
  an_error_code code = ec_implicit_func_decl;
  an_error_severity severity = implicit_declaration_severity();
  if (check_misra_c_2004 &&
      misra_c_2004_generate_diagnostic(ec_misra_c_2004_8_1_n, misra_required_severity)) {
    code = ec_misra_c_2004_8_1_n;
    severity = misra_required_severity;
  }
  if (expr_diagnostic_should_be_issued(severity, code, &locator->position))
    pos_st_diagnostic(severity, code, &locator->position, locator->header->identifier);
}

static void declare_implicitly(an_operand* operand) {
  a_symbol_locator locator = cleared_locator;
  locator.header = operand->symbol->header;
  locator.position = operand->name_position;
  report_implicit_declaration(&locator);
  a_source_position start = operand->position, end = operand->end_position;
  a_symbol* symbol = decl_default_function(&locator);
  if (symbol && symbol->kind == symk_routine)
    make_function_designator_operand(symbol->variant.routine,
                                     make_ref_entry(srk_reference, symbol, &start), operand);
  else
    make_error_operand(operand);
  set_operand_range(operand, &start, &end);
}

static bool may_be_declared_implicitly() {
  return in_C_mode() && expr_stack->kind != ek_pp;
}

// ---- The function ----

static bool is_direct_call(const an_operand* function) {
  return function->kind == ok_expression && function->variant.expr->kind == expr_routine;
}

// The routine type that the operand designates; null after an error.
static a_type* check_call_function_pointer_operand(an_operand* function) {
  do_operand_transformations(function, ot_all);
  if (is_error_operand(function))
    return nullptr;
  if (!is_pointer_type(function->type) || !is_function_type(type_pointed_to(function->type))) {
    error_in_operand(ec_expr_not_ptr_to_function, function);
    return nullptr;
  }
  // A call of the function takes no address.
  change_ref_kinds(function->ref_entries,
                   is_direct_call(function) ? srk_reference : srk_value_read);
  return skip_typerefs(type_pointed_to(function->type));
}

// The same for an operand with or without an object, which a pointer to member
// needs.
static a_type* type_of_called_function(an_operand* function, bool has_selector) {
  if (!has_selector || !is_ptr_to_member_type(function->type))
    return check_call_function_pointer_operand(function);
  do_operand_transformations(function, ot_all);
  change_ref_kinds(function->ref_entries, srk_value_read);
  return skip_typerefs(pm_member_type(function->type));
}

static void declare_undefined_function(an_operand* function) {
  if (function->kind != ok_undefined_symbol ||
      (in_cplusplus_mode() && arg_dependent_lookup_enabled))
    return;
  if (may_be_declared_implicitly())
    declare_implicitly(function);
  else
    finish_undefined_symbol_operand(function);
}

static a_routine* routine_of_call(const an_operand* function) {
  if (!is_direct_call(function))
    return nullptr;
  return function->variant.expr->variant.routine.ptr;
}

// ---- Arguments ----

static an_init_component* scan_call_argument() {
  if (curr_token == tok_lbrace && list_init_enabled)
    return scan_init_component();
  an_init_component* component = alloc_init_component(ick_expression);
  scan_expr(&component->variant.operand, nullptr, lev_none, sef_no_comma);
  return component;
}

// Behind the `(`; the `)` is read.
static an_init_component* scan_call_argument_list(a_source_position* closing_position,
                                                  a_source_position* end) {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  add_stop_token(tok_rparen);
  expr_stack->flags.decltype_top_level = false;
  ++expr_stack->template_arg_paren_depth;
  if (curr_token != tok_rparen) {
    add_stop_token(tok_comma);
    do {
      *link = scan_call_argument();
      link = &(*link)->next;
    } while (loop_token(tok_comma));
    remove_stop_token(tok_comma);
  }
  --expr_stack->template_arg_paren_depth;
  remove_stop_token(tok_rparen);
  *closing_position = pos_curr_token;
  *end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
  return list;
}

// ---- The call ----

static bool check_type_of_result(a_type* type, bool may_be_incomplete,
                                 const a_source_position* position) {
  if (!is_incomplete_type(type) || is_void_type(type) || may_be_incomplete)
    return true;
  if (expr_error_should_be_issued())
    pos_ty_error(ec_incomplete_function_return_type, position, type);
  return false;
}

static void make_function_call(an_expr_operator_kind op, an_expr_node* operands, bool is_virtual,
                               a_type* return_type, an_operand* result) {
  an_expr_node* call = make_operator_node(op, return_type, operands);
  call->variant.operation.is_virtual_call = is_virtual;
  make_expression_operand(call, result);
  normalize_error_operand(result);
  // A function that returns a reference gives the object.
  if (in_cplusplus_mode())
    add_reference_indirection(result);
}

// The value that a call of a builtin function has before run time.
static void fold_gnu_call_if_possible(const a_routine* routine, an_expr_node* arguments,
                                      an_operand* result) {
  if (!is_gnu_builtin_function(routine) || result->kind != ok_expression)
    return;
  an_expr_node* call = result->variant.expr;
  a_constant constant;
  an_error_code code;
  clear_constant(&constant, con_error);
  bool is_folded =
      fold_gnu_builtin_function_call_if_possible(routine, arguments, call, &constant, &code);
  if (code != 0)
    expr_pos_error(code, &call->position);
  if (is_folded)
    make_constant_operand(&constant, result);
}

// The object as the function's `this` has it: of the class that declares the
// function.
static an_expr_node* object_of_member_call(an_operand* selector, const a_type* class_type) {
  an_expr_node* node = make_node_from_operand(selector);
  a_type* object_type =
      selector->flags.selector_is_pointer ? type_pointed_to(node->type) : node->type;
  a_base_class* base = class_type && skip_typerefs(object_type) != class_type
                           ? find_base_class_of(skip_typerefs(object_type), class_type)
                           : nullptr;
  return base ? add_base_class_casts(node, base) : node;
}

// The operands of a call: the function, the object, the arguments. The selector
// is null for a function without one.
static an_expr_node* make_call_operands(an_operand* function, an_operand* selector,
                                        const a_routine* routine, an_expr_node* arguments) {
  an_expr_node* callee = make_node_from_operand(function);
  callee->next = arguments;
  if (selector) {
    const a_type* class_type =
        routine ? class_of_member(&routine->source_corresp) : pm_class_type(callee->type);
    an_expr_node* object = object_of_member_call(selector, skip_typerefs(class_type));
    object->next = arguments;
    callee->next = object;
  }
  return callee;
}

static an_expr_operator_kind operator_of_call(const an_operand* selector,
                                              const a_routine* routine) {
  if (!selector)
    return eok_call;
  if (!routine)
    return selector->flags.selector_is_pointer ? eok_arrow_ptr_to_member_call
                                               : eok_dot_ptr_to_member_call;
  return selector->flags.selector_is_pointer ? eok_arrow_member_call : eok_dot_member_call;
}

static void assemble_function_call(an_operand* function, an_operand* selector,
                                   a_type* function_type, an_expr_node* arguments,
                                   const a_source_position* position, an_operand* result) {
  a_type* return_type = return_type_of(function_type);
  a_routine* routine = routine_of_call(function);
  bool is_virtual = selector && routine && routine->is_virtual && !function->flags.qualified_name;
  if (routine && expr_stack->flags.references_count)
    routine->called = true;
  an_expr_node* operands = make_call_operands(function, selector, routine, arguments);
  make_function_call(operator_of_call(selector, routine), operands, is_virtual,
                     in_cplusplus_mode() && is_reference_type(return_type)
                         ? return_type
                         : prvalue_type(return_type),
                     result);
  if (result->kind == ok_expression)
    result->variant.expr->position = *position;
  if (!selector)
    fold_gnu_call_if_possible(routine, arguments, result);
  if (!is_constant_operand(result))
    rule_out_expr_kinds(rule_out_constant, result);
}

// ---- The object of a member function ----

static bool has_static_member(a_symbol* set) {
  std::vector<a_routine*> routines;
  add_routines_of_set(set, &routines);
  return std::any_of(routines.begin(), routines.end(),
                     [](const a_routine* routine) { return routine->is_static_member; });
}

// A member function named alone is called for `this` (C++11 9.3.1 p3). In a lambda
// without it the set may mean a static one.
static void bind_to_this(an_operand* function) {
  bool is_member =
      function->kind == ok_sym_for_member && function->symbol->kind == symk_member_function;
  bool is_set = function->kind == ok_indefinite_function && function->symbol->is_class_member;
  an_operand saved = *function, object;
  if (is_set && !may_capture_this() && has_static_member(function->symbol))
    return;
  if (function->flags.bound_function || !(is_member || is_set) ||
      !make_this_for_member(skip_typerefs(function->symbol->parent.class_type), &object))
    return;
  if (is_member) {
    make_function_designator_operand(saved.symbol->variant.routine, saved.ref_entries, function);
    restore_operand_details_incl_ref(function, &saved);
    function->flags.qualified_name = saved.flags.qualified_name;
  }
  bind_member_function_operand_to_selector(function, &object, true);
}

static bool is_nonstatic_member(const a_routine* routine) {
  return routine && !routine->is_static_member &&
         skip_typerefs(routine->type)->variant.routine.routine_supplement->this_class;
}

// Whether the function and the object go together; a static member function
// leaves the object alone.
static bool check_selector_of_call(const an_operand* function, an_operand* selector,
                                   bool* has_selector) {
  const a_routine* routine = routine_of_call(function);
  if (is_ptr_to_member_type(function->type))
    return selector_match_with_type(selector, pm_member_type(function->type));
  if (!is_nonstatic_member(routine)) {
    *has_selector = false;
    return true;
  }
  if (*has_selector)
    return selector_match_with_this_param(selector, routine);
  expr_pos_error(ec_member_ref_requires_object, &function->position);
  return false;
}

// The functions that the name means, null for none, with those that the arguments
// bring in (C++11 3.4.2).
static a_symbol* functions_with_those_of_arguments(a_symbol* functions, const an_operand* function,
                                                   a_symbol_header* header,
                                                   const an_init_component* arg_list) {
  std::vector<a_type*> types;
  a_symbol_locator locator = cleared_locator;
  locator.header = header;
  locator.position = function->name_position;
  for (; arg_list; arg_list = arg_list->next)
    if (arg_list->kind == ick_expression && !is_error_operand(&arg_list->variant.operand))
      types.push_back(arg_list->variant.operand.type);
  return argument_dependent_lookup(functions, &locator, types);
}

static void become_set_of_functions(an_operand* function, a_symbol* symbol) {
  an_operand saved = *function;
  make_indefinite_function_operand(symbol, function);
  restore_operand_details_incl_ref(function, &saved);
}

// False, after a message, when the name means no function.
static bool look_up_by_arguments(an_operand* function, const an_init_component* arg_list) {
  bool is_undefined = function->kind == ok_undefined_symbol;
  a_symbol* symbol = functions_with_those_of_arguments(
      is_undefined ? nullptr : function->symbol, function, function->symbol->header, arg_list);
  if (!symbol) {
    finish_undefined_symbol_operand(function);
    return false;
  }
  become_set_of_functions(function, symbol);
  return true;
}

// Whether the operand is the bare name of a function that is no member.
static bool is_name_of_function(const an_operand* function) {
  const a_routine* routine = routine_of_call(function);
  return in_cplusplus_mode() && arg_dependent_lookup_enabled && routine &&
         function->state == os_function_designator && !function->flags.qualified_name &&
         !function->flags.parenthesized && !class_of_member(&routine->source_corresp) &&
         function->ref_entries;
}

// Beside the one function that is named the arguments may bring in others.
static bool arguments_add_functions(an_operand* function, const an_init_component* arg_list) {
  a_symbol* named = function->ref_entries->symbol;
  if (!named || !is_function_symbol_kind(fundamental_symbol_of(named)->kind))
    return false;
  a_symbol* symbol = functions_with_those_of_arguments(named, function, named->header, arg_list);
  if (symbol == named)
    return false;
  become_set_of_functions(function, symbol);
  return true;
}

// The set is resolved when the arguments are known.
static a_type* resolve_overloaded_call(an_operand* function, an_operand* selector,
                                       an_init_component* arg_list, an_arg_check_block* block,
                                       an_expr_node** arguments) {
  bool by_arguments = arg_dependent_lookup_enabled && !function->flags.qualified_name && !selector;
  if (by_arguments && !look_up_by_arguments(function, arg_list)) {
    block->any_error = true;
    return nullptr;
  }
  a_routine* routine = select_and_prepare_to_call_overloaded_function(function, selector, arg_list,
                                                                      by_arguments, arguments);
  block->any_error = !routine;
  return routine ? check_call_function_pointer_operand(function) : nullptr;
}

static bool is_foldable_builtin(const a_routine* routine) {
  bool has_special_syntax;
  return routine && is_foldable_gnu_builtin_function(routine, &has_special_syntax);
}

// In a constant expression a call is refused unless it has folded.
static bool is_refused_call(const an_operand* result, const a_source_position* position) {
  if (!expr_stack->flags.strict_constant && expr_stack->kind != ek_pp)
    return false;
  if (is_constant_operand(result) || is_error_operand(result))
    return false;
  expr_pos_error(ec_bad_constant_function_call, position);
  return true;
}

// An object of a class is called by its operator().
static bool is_called_object(const an_operand* function) {
  return in_cplusplus_mode() && !is_error_operand(function) &&
         is_class_struct_union_type(function->type);
}

// The function isn't known after all.
static void restart_argument_processing(an_arg_check_block* block) {
  const a_source_position position = block->position;
  start_call_argument_processing(nullptr, nullptr, block);
  block->position = position;
}

static void scan_ordinary_call(an_operand* operand) {
  a_source_position start = operand->position, position = pos_curr_token, end;
  an_operand function = *operand, selector;
  an_arg_check_block block;
  if (in_cplusplus_mode())
    bind_to_this(&function);
  bool has_selector = take_selector_of_function(&function, &selector);
  bool is_set = function.kind == ok_indefinite_function || function.kind == ok_undefined_symbol;
  bool is_top_of_decltype = expr_stack->flags.decltype_top_level;
  an_operand named_function = function;
  bool is_named = !is_set && !has_selector && is_name_of_function(&function);
  a_type* function_type = is_set ? nullptr : type_of_called_function(&function, has_selector);
  // The call of a builtin function may have a value in a constant expression.
  bool may_fold = function_type && is_foldable_builtin(routine_of_call(&function));
  bool is_refused = (is_set || function_type) && !may_fold && is_refused_call(&function, &position);
  get_token();
  start_call_argument_processing(function_type, routine_of_call(&function), &block);
  an_init_component* arg_list = scan_call_argument_list(&block.position, &end);
  an_expr_node* arguments = nullptr;
  if (is_named && arguments_add_functions(&named_function, arg_list)) {
    function = named_function;
    is_set = true;
    restart_argument_processing(&block);
  }
  if (is_set)
    function_type = resolve_overloaded_call(&function, has_selector ? &selector : nullptr, arg_list,
                                            &block, &arguments);
  else
    arguments = process_call_argument_list(arg_list, &block);
  free_init_component_list(arg_list);
  if (!function_type || is_refused || block.any_error ||
      !check_selector_of_call(&function, &selector, &has_selector) ||
      !check_type_of_result(return_type_of(function_type), is_top_of_decltype, &start)) {
    make_error_operand(operand);
  } else {
    assemble_function_call(&function, has_selector ? &selector : nullptr, function_type, arguments,
                           &position, operand);
    if (may_fold && is_refused_call(operand, &position))
      make_error_operand(operand);
  }
  set_operator_positions(operand, &start, &position, &end);
}

void call_known_routine(a_routine* routine, an_operand* object, an_init_component* arg_list,
                        const a_source_position* position, an_operand* result) {
  an_operand function;
  an_arg_check_block block;
  make_function_designator_operand(routine, nullptr, &function);
  a_type* function_type = check_call_function_pointer_operand(&function);
  start_call_argument_processing(function_type, routine, &block);
  block.position = *position;
  an_expr_node* arguments = process_call_argument_list(arg_list, &block);
  bool has_selector = object != nullptr;
  if (!function_type || block.any_error || is_refused_call(&function, position) ||
      !check_selector_of_call(&function, object, &has_selector) ||
      !check_type_of_result(return_type_of(function_type), false, position)) {
    make_error_operand(result);
    return;
  }
  assemble_function_call(&function, has_selector ? object : nullptr, function_type, arguments,
                         position, result);
}

static a_symbol* call_operator_of_object(an_operand* operand) {
  f_instantiate_template_class(operand->type);
  return is_incomplete_type(operand->type) ? nullptr
                                           : opname_member_function_symbol(operand->type, opn_call);
}

// `object(...)`: the function is the operator() of its class (C++11 13.3.1.1.2).
static void scan_call_of_object(an_operand* operand) {
  an_operand object = *operand;
  if (a_symbol* symbol = call_operator_of_object(operand)) {
    a_ref_entry* ref = make_ref_entry(srk_reference, symbol, &object.position);
    if (symbol->kind == symk_member_function)
      make_function_designator_operand(symbol->variant.routine, ref, operand);
    else
      make_indefinite_function_operand(symbol, operand);
    set_operand_range(operand, &object.position, &object.end_position);
    bind_member_function_operand_to_selector(operand, &object, false);
    scan_ordinary_call(operand);
    return;
  }
  a_source_position position = pos_curr_token, closing_position, end;
  get_token();
  free_init_component_list(scan_call_argument_list(&closing_position, &end));
  error_in_operand(ec_expr_not_ptr_to_function, operand);
  set_operator_positions(operand, &object.position, &position, &end);
}

void scan_function_call(an_operand* operand) {
  check_stack_limit();
  declare_undefined_function(operand);
  if (is_called_object(operand))
    scan_call_of_object(operand);
  else if (!scan_special_builtin_call(operand))
    scan_ordinary_call(operand);
}
