// Walks over expressions, statements, constants and dynamic initialisations,
// and the questions that are answered by a walk. The walk keeps its own stack
// of what is still to be visited: a sum of ten thousand terms nests as deep.

#include "class_decl.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_expr_int.h"
#include "il_statements.h"
#include "mode_words.h"
#include "types.h"

#include <vector>

namespace {

enum a_walk_step : uint8_t {
  ws_expr,
  ws_expr_list,
  ws_leave_expr,
  ws_statement,
  ws_statement_list,
  ws_constant,
  ws_constant_list,
  ws_dynamic_init
};

struct a_pending_step {
  a_walk_step step;
  void* entry;
};

// The stacks of all walks in progress, the innermost on top: walks nest when a
// callback starts another.
std::vector<a_pending_step> pending_steps;

class a_walk {
public:
  explicit a_walk(an_expr_or_stmt_traversal_block* traversal_block)
      : block(traversal_block), base(pending_steps.size()) {}
  ~a_walk() {
    pending_steps.resize(base);
  }
  void run(a_walk_step step, void* entry);

private:
  void later(a_walk_step step, void* entry) {
    if (entry != nullptr)
      pending_steps.push_back({step, entry});
  }
  void do_step(const a_pending_step& work);
  void visit_expr(an_expr_node* node);
  void visit_statement(a_statement* statement);
  void visit_constant(a_constant* constant);
  void visit_dynamic_init(a_dynamic_init* init);
  void parts_of_expr(an_expr_node* node);
  void parts_of_template_param(const a_template_param_value& value);
  void parts_of_statement(a_statement* statement);
  void initializer_of(a_variable* variable);
  void parts_of_loop(a_statement* statement);
  void parts_of_asm(an_asm_entry* entry);

  an_expr_or_stmt_traversal_block* block;
  size_t base;
};

void a_walk::run(a_walk_step step, void* entry) {
  later(step, entry);
  while (pending_steps.size() > base && !block->terminate) {
    const a_pending_step work = pending_steps.back();
    pending_steps.pop_back();
    do_step(work);
  }
}

void a_walk::do_step(const a_pending_step& work) {
  switch (work.step) {
  case ws_expr_list: {
    an_expr_node* node = static_cast<an_expr_node*>(work.entry);
    later(ws_expr_list, node->next);
    visit_expr(node);
    break;
  }
  case ws_expr:
    visit_expr(static_cast<an_expr_node*>(work.entry));
    break;
  case ws_leave_expr:
    block->process_expr_after(static_cast<an_expr_node*>(work.entry), block);
    break;
  case ws_statement_list: {
    a_statement* statement = static_cast<a_statement*>(work.entry);
    later(ws_statement_list, statement->next);
    visit_statement(statement);
    break;
  }
  case ws_statement:
    visit_statement(static_cast<a_statement*>(work.entry));
    break;
  case ws_constant_list: {
    a_constant* constant = static_cast<a_constant*>(work.entry);
    later(ws_constant_list, constant->next);
    visit_constant(constant);
    break;
  }
  case ws_constant:
    visit_constant(static_cast<a_constant*>(work.entry));
    break;
  case ws_dynamic_init:
    visit_dynamic_init(static_cast<a_dynamic_init*>(work.entry));
    break;
  }
}

// Calls the caller's function; false when what the entry holds is to be passed
// over.
template <typename T>
bool process(void (*callback)(T*, an_expr_or_stmt_traversal_block*), T* entry,
             an_expr_or_stmt_traversal_block* block) {
  if (callback == nullptr)
    return true;
  block->suppress_subtree = false;
  callback(entry, block);
  const bool goes_on = !block->suppress_subtree && !block->terminate;
  block->suppress_subtree = false;
  return goes_on;
}

// The steps of the parts are pushed last part first.

void a_walk::visit_expr(an_expr_node* node) {
  if (!process(block->process_expr, node, block))
    return;
  if (block->process_expr_after != nullptr)
    later(ws_leave_expr, node);
  parts_of_expr(node);
}

void a_walk::parts_of_expr(an_expr_node* node) {
  switch (node->kind) {
  case expr_constant:
    later(ws_constant, node->variant.constant.ptr);
    return;
  case expr_temp_init:
  case expr_reuse_value:
    later(ws_dynamic_init, node->variant.dynamic_init);
    return;
  case expr_lambda:
    later(ws_dynamic_init, node->variant.lambda.dynamic_init);
    return;
  case expr_throw:
    if (node->variant.throw_info != nullptr)
      later(ws_dynamic_init, node->variant.throw_info->dynamic_init);
    return;
  case expr_statement:
    later(ws_statement, node->variant.statement);
    return;
  case expr_new_delete:
    later(ws_dynamic_init, node->variant.new_delete->delete_dynamic_init);
    later(ws_dynamic_init, node->variant.new_delete->dynamic_init);
    break;
  case expr_condition:
    later(ws_dynamic_init, node->variant.condition->dynamic_init);
    break;
  case expr_sizeof_like:
  case expr_alignof_like:
  case expr_typeid_like:
    if (block->skip_unevaluated)
      return;
    break;
  default:
    break;
  }
  const an_operand_list_heads lists = operand_lists_of_node(node);
  for (int i = lists.count; i-- > 0;)
    later(ws_expr_list, *lists.heads[i]);
}

void a_walk::parts_of_template_param(const a_template_param_value& value) {
  switch (value.param_kind) {
  case tpck_expression:
    later(ws_expr, value.param_data.expr);
    break;
  case tpck_cast:
  case tpck_implicit_cast:
  case tpck_unknown_function:
    later(ws_constant, value.param_data.constant);
    break;
  case tpck_sizeof:
  case tpck_alignof:
  case tpck_uuidof:
  case tpck_typeid:
  case tpck_noexcept:
    if (!block->skip_unevaluated)
      later(ws_expr, value.param_expr.expr);
    break;
  default:
    break;
  }
}

void a_walk::visit_constant(a_constant* constant) {
  if (!process(block->process_constant, constant, block))
    return;
  if (block->follow_source_exprs)
    later(ws_expr, constant->source_expr);
  switch (constant->kind) {
  case con_address:
    if (constant->value.address.base_kind == abk_constant ||
        constant->value.address.base_kind == abk_temporary)
      later(ws_constant, constant->value.address.base.constant);
    break;
  case con_address_difference:
    later(ws_constant, constant->value.address_difference.subtrahend);
    later(ws_constant, constant->value.address_difference.minuend);
    break;
  case con_dynamic_init:
    later(ws_dynamic_init, constant->value.dynamic_init);
    break;
  case con_aggregate:
    later(ws_constant_list, constant->value.aggregate.first);
    break;
  case con_repeat:
    later(ws_constant, constant->value.repeat.element);
    break;
  case con_template_param:
    parts_of_template_param(constant->value.template_param);
    break;
  case con_designator:
    if (!constant->value.designator.is_field)
      later(ws_constant, constant->value.designator.designated.index);
    break;
  default:
    break;
  }
}

void a_walk::visit_dynamic_init(a_dynamic_init* init) {
  if (!process(block->process_dynamic_init, init, block))
    return;
  switch (init->kind) {
  case dik_none:
  case dik_zero:
    break;
  case dik_constant:
  case dik_nonconstant_aggregate:
    later(ws_constant, init->variant.constant);
    break;
  case dik_expr:
  case dik_class_expr:
  case dik_bitwise_copy:
    later(ws_expr, init->variant.expr);
    break;
  case dik_constructor:
    later(ws_expr_list, init->variant.constructor.args);
    break;
  }
}

void a_walk::visit_statement(a_statement* statement) {
  if (!process(block->process_statement, statement, block))
    return;
  parts_of_statement(statement);
  if (statement->kind != stmk_for && statement->kind != stmk_do)
    later(ws_expr, statement->expr);
  later(ws_statement_list, statement->pre_statement);
}

// Of the variables that a range-based loop declares without statements.
void a_walk::initializer_of(a_variable* variable) {
  if (variable == nullptr)
    return;
  if (variable->init_kind == initk_constant)
    later(ws_constant, variable->initializer.constant);
  else if (variable->init_kind == initk_dynamic)
    later(ws_dynamic_init, variable->initializer.dynamic);
}

void a_walk::parts_of_loop(a_statement* statement) {
  if (statement->kind == stmk_do) {
    later(ws_expr, statement->expr);
    later(ws_statement, statement->variant.loop.body);
    return;
  }
  if (statement->kind == stmk_range_for) {
    a_range_based_for_supplement* range = statement->variant.loop.extra.range_for_supplement;
    later(ws_statement, statement->variant.loop.body);
    initializer_of(range->next_variable);
    later(ws_expr, range->increment_expr);
    later(ws_expr, range->condition_expr);
    initializer_of(range->end_variable);
    initializer_of(range->begin_variable);
    initializer_of(range->range_variable);
    return;
  }
  a_for_loop_supplement* loop = statement->variant.loop.extra.for_supplement;
  later(ws_expr, loop->increment_expr);
  later(ws_statement_list, loop->pre_increment_statement);
  later(ws_statement, statement->variant.loop.body);
  later(ws_expr, statement->expr);
  later(ws_statement_list, loop->pre_condition_statement);
  later(ws_statement_list, loop->init_statement);
}

void a_walk::parts_of_asm(an_asm_entry* entry) {
  std::vector<an_expr_node*> operands;
  for (an_asm_operand* operand = entry->operands; operand != nullptr; operand = operand->next)
    operands.push_back(operand->expr);
  for (size_t i = operands.size(); i-- > 0;)
    later(ws_expr, operands[i]);
}

void a_walk::parts_of_statement(a_statement* statement) {
  switch (statement->kind) {
  case stmk_if:
    later(ws_statement, statement->variant.if_stmt.else_statement);
    later(ws_statement, statement->variant.if_stmt.then_statement);
    break;
  case stmk_while:
  case stmk_case:
  case stmk_switch:
    later(ws_statement, statement->variant.loop.body);
    break;
  case stmk_do:
  case stmk_for:
  case stmk_range_for:
    parts_of_loop(statement);
    break;
  case stmk_return:
  case stmk_stmt_expr_value:
    later(ws_dynamic_init, statement->variant.return_init);
    break;
  case stmk_block:
    later(ws_statement_list, statement->variant.block.first_statement);
    break;
  case stmk_init:
    later(ws_dynamic_init, statement->variant.dynamic_init);
    break;
  case stmk_asm:
    parts_of_asm(statement->variant.asm_entry);
    break;
  case stmk_try: {
    std::vector<a_handler*> handlers;
    for (a_handler* h = statement->variant.try_supplement->handlers; h != nullptr; h = h->next)
      handlers.push_back(h);
    for (size_t i = handlers.size(); i-- > 0;) {
      later(ws_statement, handlers[i]->body);
      later(ws_dynamic_init, handlers[i]->parameter_init);
    }
    later(ws_statement, statement->variant.try_supplement->try_block);
    break;
  }
  case stmk_set_vla_size:
    if (statement->variant.vla_dimension != nullptr)
      later(ws_expr, statement->variant.vla_dimension->size_expr);
    break;
  default:
    break;
  }
}

} // namespace

// ---- Traversal ----

void clear_expr_or_stmt_traversal_block(an_expr_or_stmt_traversal_block* block) {
  *block = {};
}

void traverse_expr(an_expr_node* node, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_expr, node);
}

void traverse_expr_list(an_expr_node* list, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_expr_list, list);
}

void traverse_constant(a_constant* constant, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_constant, constant);
}

void traverse_constant_list(a_constant* list, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_constant_list, list);
}

void traverse_dynamic_init(a_dynamic_init* init, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_dynamic_init, init);
}

void traverse_statement(a_statement* statement, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_statement, statement);
}

void traverse_statement_list(a_statement* list, an_expr_or_stmt_traversal_block* block) {
  a_walk(block).run(ws_statement_list, list);
}

// ---- Questions about whole trees ----

static void answer_yes(an_expr_or_stmt_traversal_block* block) {
  block->found = true;
  block->terminate = true;
}

// The routine that a call calls by name; null for a call through a pointer.
static a_routine* called_routine(const an_expr_node* call) {
  const an_expr_node* function = call->variant.operation.operands;
  return function->kind == expr_routine ? function->variant.routine.ptr : nullptr;
}

static bool call_has_side_effects(const an_expr_node* call) {
  const a_routine* routine = called_routine(call);
  return routine == nullptr || !routine->no_side_effects;
}

static bool has_own_side_effects(const an_expr_node* node) {
  if (node->is_volatile_access)
    return true;
  switch (node->kind) {
  case expr_operation: {
    const an_expr_operator_kind op = node->variant.operation.op;
    if (is_call_operator(op))
      return call_has_side_effects(node);
    return is_assignment_operator(op) || is_increment_operator(op);
  }
  case expr_new_delete:
  case expr_throw:
  case expr_vla_dealloc:
  case expr_condition:
    return true;
  default:
    return false;
  }
}

static bool dynamic_init_has_own_side_effects(const a_dynamic_init* init) {
  return init->kind == dik_constructor || init->destructor != nullptr;
}

static bool statement_has_own_side_effects(const a_statement* statement) {
  switch (statement->kind) {
  case stmk_expr:
  case stmk_if:
  case stmk_block:
  case stmk_null:
  case stmk_decl:
  case stmk_init:
  case stmk_stmt_expr_value:
    return false;
  default:
    // Jumps, loops that may not end, code that nobody knows.
    return true;
  }
}

static void set_side_effect_callbacks(an_expr_or_stmt_traversal_block* block) {
  clear_expr_or_stmt_traversal_block(block);
  block->skip_unevaluated = true;
  block->process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    if (has_own_side_effects(node))
      answer_yes(b);
  };
  block->process_dynamic_init = [](a_dynamic_init* init, an_expr_or_stmt_traversal_block* b) {
    if (dynamic_init_has_own_side_effects(init))
      answer_yes(b);
  };
  block->process_statement = [](a_statement* statement, an_expr_or_stmt_traversal_block* b) {
    if (statement_has_own_side_effects(statement))
      answer_yes(b);
  };
}

bool node_has_side_effects(an_expr_node* node) {
  an_expr_or_stmt_traversal_block block;
  set_side_effect_callbacks(&block);
  traverse_expr(node, &block);
  return block.found;
}

bool dynamic_init_has_side_effects(a_dynamic_init* init) {
  an_expr_or_stmt_traversal_block block;
  set_side_effect_callbacks(&block);
  traverse_dynamic_init(init, &block);
  return block.found;
}

// Whether a node reads memory that something else may write.
static bool reads_changing_memory(const an_expr_node* node) {
  if (node->is_lvalue)
    return false;
  switch (node->kind) {
  case expr_variable:
    return !is_reference_type(node->variant.variable.ptr->type) &&
           !is_const_qualified_type(node->variant.variable.ptr->type);
  case expr_operation:
    switch (node->variant.operation.op) {
    case eok_indirect:
    case eok_ref_indirect:
    case eok_subscript:
    case eok_dot_field:
    case eok_arrow_field:
    case eok_dot_base_field:
    case eok_arrow_base_field:
    case eok_dot_ptr_to_member:
    case eok_arrow_ptr_to_member:
      return !is_function_type(node->type);
    default:
      return is_call_operator(node->variant.operation.op);
    }
  case expr_temp_init:
  case expr_reuse_value:
  case expr_statement:
  case expr_lambda:
    return true;
  default:
    return false;
  }
}

bool is_invariant_expr(an_expr_node* node) {
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.skip_unevaluated = true;
  block.process_expr = [](an_expr_node* n, an_expr_or_stmt_traversal_block* b) {
    if (has_own_side_effects(n) || reads_changing_memory(n))
      answer_yes(b);
  };
  traverse_expr(node, &block);
  return !block.found;
}

static bool routine_type_might_throw(const a_type* type) {
  type = skip_typerefs(type);
  if (type->kind == tk_pointer)
    type = skip_typerefs(type_pointed_to(type));
  if (type->kind != tk_routine)
    return true;
  static const an_exception_specification throws_nothing = {};
  return exception_spec_is_less_restrictive(
      type->variant.routine.routine_supplement->exception_specification, &throws_nothing);
}

static bool routine_might_throw(a_routine* routine) {
  if (is_error_type(routine->type))
    return true;
  resolve_indeterminate_exception_specification(routine);
  return routine_type_might_throw(routine->type);
}

static bool might_throw_itself(const an_expr_node* node) {
  switch (node->kind) {
  case expr_operation: {
    if (!is_call_operator(node->variant.operation.op))
      return false;
    a_routine* routine = called_routine(node);
    return routine != nullptr ? routine_might_throw(routine)
                              : routine_type_might_throw(node->variant.operation.operands->type);
  }
  case expr_throw:
  case expr_new_delete:
    return true;
  default:
    return false;
  }
}

static bool dynamic_init_might_throw_itself(const a_dynamic_init* init) {
  if (init->kind == dik_constructor && routine_might_throw(init->variant.constructor.routine))
    return true;
  return init->destructor != nullptr && routine_might_throw(init->destructor);
}

static void set_throw_callbacks(an_expr_or_stmt_traversal_block* block) {
  clear_expr_or_stmt_traversal_block(block);
  block->skip_unevaluated = true;
  block->process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    if (might_throw_itself(node))
      answer_yes(b);
  };
  block->process_dynamic_init = [](a_dynamic_init* init, an_expr_or_stmt_traversal_block* b) {
    if (dynamic_init_might_throw_itself(init))
      answer_yes(b);
  };
}

bool expr_might_throw(an_expr_node* node) {
  if (!exceptions_enabled)
    return false;
  an_expr_or_stmt_traversal_block block;
  set_throw_callbacks(&block);
  traverse_expr(node, &block);
  return block.found;
}

bool dynamic_init_might_throw(a_dynamic_init* init) {
  if (!exceptions_enabled)
    return false;
  an_expr_or_stmt_traversal_block block;
  set_throw_callbacks(&block);
  traverse_dynamic_init(init, &block);
  return block.found;
}

bool expr_contains_error(an_expr_node* node) {
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.process_expr = [](an_expr_node* n, an_expr_or_stmt_traversal_block* b) {
    if (is_error_node(n))
      answer_yes(b);
  };
  block.process_constant = [](a_constant* constant, an_expr_or_stmt_traversal_block* b) {
    if (is_error_constant(constant))
      answer_yes(b);
  };
  traverse_expr(node, &block);
  return block.found;
}
