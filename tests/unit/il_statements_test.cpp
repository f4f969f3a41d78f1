#include "il_expr_fixture.h"

namespace {

class IlStatements : public IL_EXPR_TEST {
protected:
  a_statement* null_statement() {
    return alloc_statement(stmk_null);
  }
};

TEST_F(IlStatements, EveryKindStartsEmptyWithItsSupplement) {
  for (int kind = 0; kind < num_statement_kinds; ++kind) {
    a_statement* statement = alloc_statement(static_cast<a_statement_kind>(kind));
    EXPECT_EQ(statement->kind, kind);
    EXPECT_EQ(statement->expr, nullptr);
    EXPECT_EQ(statement->next, nullptr);
    EXPECT_EQ(statement->parent, nullptr);
    EXPECT_EQ(statement->pre_statement, nullptr);
    EXPECT_FALSE(statement->is_generated || statement->is_unreachable);
    const bool has_supplement = kind == stmk_for || kind == stmk_range_for || kind == stmk_switch;
    const bool has_body =
        has_supplement || kind == stmk_while || kind == stmk_do || kind == stmk_case;
    if (has_body) {
      EXPECT_EQ(statement->variant.loop.body, nullptr);
      EXPECT_EQ(statement->variant.loop.extra.for_supplement != nullptr, has_supplement) << kind;
    }
  }
  EXPECT_NE(alloc_statement(stmk_block)->variant.block.block_supplement, nullptr);
  EXPECT_NE(alloc_statement(stmk_try)->variant.try_supplement, nullptr);
  // A statement that becomes another one forgets what it held.
  a_statement* statement = alloc_statement(stmk_if);
  statement->variant.if_stmt.else_statement = null_statement();
  set_statement_kind(statement, stmk_while);
  EXPECT_EQ(statement->variant.loop.extra.for_supplement, nullptr);
}

TEST_F(IlStatements, CopiesBecomeTheParentsOfTheirParts) {
  a_statement* loop = alloc_statement(stmk_for);
  a_for_loop_supplement* parts = loop->variant.loop.extra.for_supplement;
  a_statement* children[] = {
      parts->init_statement = null_statement(), parts->pre_increment_statement = null_statement(),
      parts->pre_condition_statement = null_statement(), loop->variant.loop.body = null_statement(),
      loop->pre_statement = null_statement()};
  children[0]->next = null_statement();
  a_statement* attempt = alloc_statement(stmk_try);
  a_handler* handlers[] = {alloc_handler(), alloc_handler()};
  attempt->variant.try_supplement->handlers = handlers[0];
  handlers[0]->next = handlers[1];
  for (a_handler* handler : handlers)
    handler->body = null_statement();
  attempt->variant.try_supplement->try_block = null_statement();

  a_statement* target = null_statement();
  a_statement* next = target->next = null_statement();
  target->is_generated = true;
  loop->is_unreachable = true;
  copy_statement(loop, target);
  EXPECT_EQ(target->next, next);
  EXPECT_TRUE(target->is_generated);
  EXPECT_TRUE(target->is_unreachable);
  for (const a_statement* child : children)
    EXPECT_EQ(child->parent, target);
  EXPECT_EQ(children[0]->next->parent, target);
  copy_statement(attempt, target);
  EXPECT_FALSE(target->is_unreachable);
  for (const a_handler* handler : handlers)
    EXPECT_EQ(handler->body->parent, target);
  EXPECT_EQ(attempt->variant.try_supplement->try_block->parent, target);
  copy_statement(target, target);
  EXPECT_EQ(target->next, next);
}

TEST_F(IlStatements, WhatMovesIntoABlockIsFoundThere) {
  a_statement* label_statement = alloc_statement(stmk_label);
  a_label* label = label_statement->variant.label.ptr = alloc_label();
  label->def_statement = label_statement;
  EXPECT_EQ(label->def_statement, label_statement);
  a_statement* inner = change_statement_into_block(label_statement);
  EXPECT_EQ(label->def_statement, inner);
  a_statement* jump = alloc_statement(stmk_goto);
  jump->variant.label.ptr = label;
  label->first_goto = jump;
  EXPECT_EQ(change_statement_into_block(jump), label->first_goto);
  a_statement* case_statement = alloc_statement(stmk_case);
  a_switch_case_entry* entry = alloc_switch_case_entry();
  case_statement->variant.loop.extra.switch_case_entry = entry;
  entry->statement = case_statement;
  EXPECT_EQ(change_statement_into_block(case_statement), entry->statement);
  push_function_scope(enter_function("f"));
  a_statement* block = alloc_statement(stmk_block);
  set_block_scope_handler(block, innermost_function_scope);
  EXPECT_EQ(innermost_function_scope->assoc_statement, block);
  inner = change_statement_into_block(block);
  EXPECT_EQ(innermost_function_scope->assoc_statement, inner);
  EXPECT_EQ(block->variant.block.block_supplement->scope, nullptr);
  EXPECT_TRUE(block->variant.block.block_supplement->holds_single_statement);
  pop_scope();
}

TEST_F(IlStatements, CaseEntriesAreCopiedOffTheirLists) {
  a_switch_case_entry* entry = alloc_switch_case_entry();
  entry->case_value = alloc_constant(con_integer);
  entry->next_in_source_order = entry->next_sorted = alloc_switch_case_entry();
  a_switch_case_entry* copy = copy_switch_case_entry(entry);
  EXPECT_EQ(copy->case_value, entry->case_value);
  EXPECT_EQ(copy->next_in_source_order, nullptr);
  EXPECT_EQ(copy->next_sorted, nullptr);
  a_vla_dimension* dimension = alloc_vla_dimension(integer_type(ik_int));
  a_vla_dimension* duplicate = alloc_vla_dimension(integer_type(ik_int));
  duplicate->canonical = dimension;
  EXPECT_EQ(find_vla_dimension(duplicate), dimension);
  EXPECT_EQ(find_vla_dimension(dimension), dimension);
}

TEST_F(IlStatements, TheConstantOfAnInitialisation) {
  const a_constant value = integer(5);
  a_constant* five = alloc_shareable_constant(&value);
  a_dynamic_init* of_constant = alloc_dynamic_init(dik_none);
  set_dynamic_init_constant(of_constant, five);
  EXPECT_EQ(of_constant->kind, dik_constant);
  a_dynamic_init* of_expr = alloc_dynamic_init(dik_expr);
  of_expr->variant.expr = number(5);
  // An evaluated constructor call is a temporary that holds the value.
  a_dynamic_init* of_class = alloc_dynamic_init(dik_class_expr);
  of_class->variant.expr = alloc_expr_node(expr_temp_init);
  of_class->variant.expr->variant.dynamic_init = of_constant;
  a_dynamic_init* of_sum = alloc_dynamic_init(dik_expr);
  of_sum->variant.expr = binary(eok_add, number(1), number(2));
  struct {
    a_dynamic_init* init;
    const a_constant* expected;
  } cases[] = {{of_constant, five},
               {of_expr, five},
               {of_class, five},
               {of_sum, nullptr},
               {alloc_dynamic_init(dik_zero), nullptr}};
  for (const auto& c : cases)
    EXPECT_EQ(constant_value_of_dynamic_init(c.init), c.expected);
  EXPECT_FALSE(is_error_dynamic_init(of_constant));
  EXPECT_TRUE(is_error_dynamic_init(make_error_constant_dynamic_init()));
  EXPECT_FALSE(dynamic_init_has_side_effects(of_sum));
  a_dynamic_init* of_constructor = alloc_dynamic_init(dik_constructor);
  of_constructor->variant.constructor.routine = enter_function("construct");
  of_constructor->variant.constructor.args = number(5);
  EXPECT_TRUE(dynamic_init_has_side_effects(of_constructor));
  a_constant* nonconstant = alloc_constant(con_aggregate);
  nonconstant->contains_nonconstant = true;
  set_dynamic_init_constant(of_constant, nonconstant);
  EXPECT_TRUE(of_constant->contains_nonconstant);
  // A copy has its own parts, and no place in a lifetime.
  of_constructor->lifetime = alloc_object_lifetime(olk_block);
  of_constructor->next_destruction = of_sum;
  a_dynamic_init* copy = copy_dynamic_init(of_constructor);
  EXPECT_NE(copy->variant.constructor.args, of_constructor->variant.constructor.args);
  EXPECT_EQ(copy->lifetime, nullptr);
  EXPECT_EQ(copy->next_destruction, nullptr);
}

TEST_F(IlStatements, WalksReachTheVariablesOfARangeLoop) {
  a_statement* loop = alloc_statement(stmk_range_for);
  a_range_based_for_supplement* parts = loop->variant.loop.extra.range_for_supplement;
  const char* names[] = {"range", "begin", "end", "element"};
  a_variable** places[] = {&parts->range_variable, &parts->begin_variable, &parts->end_variable,
                           &parts->next_variable};
  for (int i = 0; i < 4; ++i) {
    a_variable* declared = *places[i] = variable(names[i]);
    declared->init_kind = initk_dynamic;
    declared->initializer.dynamic = alloc_dynamic_init(dik_expr);
    declared->initializer.dynamic->variant.expr = number(i + 1);
  }
  parts->condition_expr = number(7);
  parts->increment_expr = number(8);
  loop->variant.loop.body = alloc_expr_statement(number(9));
  std::string order;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.data = &order;
  block.process_constant = [](a_constant* constant, an_expr_or_stmt_traversal_block* b) {
    *static_cast<std::string*>(b->data) += std::to_string(constant->value.int_value);
  };
  traverse_statement(loop, &block);
  EXPECT_EQ(order, "1237849");
}

TEST_F(IlStatements, StatementsKeepTheirPlaces) {
  a_statement* statement = alloc_statement(stmk_if);
  statement->variant.if_stmt.then_statement = alloc_statement(stmk_null);
  a_statement* next = alloc_statement(stmk_null);
  statement->next = next;
  statement->is_generated = true;
  a_statement* inner = change_statement_into_block(statement);
  EXPECT_EQ(statement->kind, stmk_block);
  EXPECT_EQ(statement->next, next);
  EXPECT_EQ(statement->variant.block.first_statement, inner);
  EXPECT_EQ(inner->parent, statement);
  EXPECT_EQ(inner->next, nullptr);
  EXPECT_EQ(inner->variant.if_stmt.then_statement->parent, inner);
  EXPECT_EQ(inner->variant.if_stmt.else_statement, nullptr);
}

TEST_F(IlStatements, LocalStaticsHideTheirInitializer) {
  a_routine* routine = enter_function("f");
  push_function_scope(routine);
  a_symbol* symbol = enter_variable("s", sc_static, 1);
  symbol->referenced = true;
  a_variable* s = symbol->variant.variable;
  a_constant nine = integer(9);
  a_constant* value = alloc_unshared_constant(&nine);
  a_scope* scope = innermost_function_scope;
  make_local_static_variable_init(s, nullptr, initk_constant, value, nullptr);
  EXPECT_EQ(s->init_kind, initk_local_static);
  EXPECT_EQ(initializer_constant(s, scope), value);
  EXPECT_EQ(initializer_constant(s, nullptr), value);
  // A second record follows the first; a dynamic initialisation is found alike.
  a_symbol* other = enter_variable("t", sc_static, 1);
  other->referenced = true;
  a_dynamic_init* init = alloc_dynamic_init(dik_expr);
  init->variant.expr = number(9);
  make_local_static_variable_init(other->variant.variable, routine, initk_dynamic, nullptr, init);
  an_init_kind kind;
  void* initializer;
  get_variable_initializer(other->variant.variable, nullptr, &kind, &initializer);
  EXPECT_EQ(kind, initk_dynamic);
  EXPECT_EQ(initializer, init);
  EXPECT_EQ(scope->local_static_inits->next->variable, other->variant.variable);
  pop_scope();
}

class Lifetimes : public FrontEnd {
protected:
  void SetUp() override {
    start(cd_cplusplus);
    routine = enter_function("f");
    destructor = enter_function("destroy");
    destructor->defined = true;
    push_function_scope(routine);
  }

  a_dynamic_init* object() {
    a_dynamic_init* init = alloc_dynamic_init(dik_zero);
    init->destructor = destructor;
    init->following_lifetime = curr_object_lifetime;
    record_end_of_lifetime_destruction(init, false, true);
    return init;
  }

  // A lifetime of a full expression, opened and bound to a node.
  an_object_lifetime* open_full_expression() {
    return push_object_lifetime(iek_expr_node, alloc_expr_node(expr_error), olk_full_expr);
  }

  a_routine* routine = nullptr;
  a_routine* destructor = nullptr;
};

TEST_F(Lifetimes, BindingIsATwoWayPointer) {
  a_statement* attempt = alloc_statement(stmk_try);
  a_statement* block = alloc_statement(stmk_block);
  a_dynamic_init* init = alloc_dynamic_init(dik_zero);
  a_local_static_variable_init* record = alloc_local_static_variable_init();
  an_expr_node* node = alloc_expr_node(expr_with_lifetime);
  a_scope* scope = alloc_scope(sk_function, 99);
  a_try_supplement* try_supplement = attempt->variant.try_supplement;
  a_block_supplement* block_supplement = block->variant.block.block_supplement;
  struct {
    an_object_lifetime_kind lifetime_kind;
    an_il_entry_kind kind;
    void* entry;
    an_object_lifetime** field;
  } cases[] = {
      {olk_other, iek_expr_node, node, &node->variant.with_lifetime.object_lifetime},
      {olk_block, iek_try_supplement, try_supplement, &try_supplement->lifetime},
      {olk_block, iek_block_supplement, block_supplement, &block_supplement->object_lifetime},
      {olk_function, iek_scope, scope, &scope->first_lifetime},
      {olk_block, iek_scope, scope, &scope->object_lifetime},
      {olk_other, iek_dynamic_init, init, &init->following_lifetime},
      {olk_other, iek_local_static_variable_init, record, &record->lifetime},
  };
  for (const auto& c : cases) {
    an_object_lifetime* lifetime = alloc_object_lifetime(c.lifetime_kind);
    bind_object_lifetime(lifetime, c.kind, c.entry);
    EXPECT_EQ(lifetime->assoc_kind, c.kind);
    EXPECT_EQ(lifetime->assoc.entry, c.entry);
    EXPECT_EQ(*c.field, lifetime) << int{c.kind};
    unbind_object_lifetime(lifetime);
    EXPECT_EQ(*c.field, nullptr) << int{c.kind};
    EXPECT_EQ(lifetime->assoc.entry, nullptr);
    // A full expression's knows its place; the place doesn't lead back.
    lifetime->kind = olk_full_expr;
    bind_object_lifetime(lifetime, c.kind, c.entry);
    EXPECT_EQ(lifetime->assoc.entry, c.entry);
    EXPECT_EQ(*c.field, nullptr) << int{c.kind};
  }
}

TEST_F(Lifetimes, FullExpressionsMarkTheirParentWhileOneIsLeft) {
  an_object_lifetime* function = curr_object_lifetime;
  an_object_lifetime* kept = open_full_expression();
  EXPECT_TRUE(function->has_full_expr_child);
  object();
  EXPECT_TRUE(pop_object_lifetime());
  open_full_expression();
  EXPECT_FALSE(pop_object_lifetime());
  EXPECT_TRUE(function->has_full_expr_child);
  detach_from_object_lifetime_tree(kept);
  EXPECT_FALSE(function->has_full_expr_child);
  // One that stays in a block that does not marks the next parent.
  push_block_scope(nullptr);
  kept = open_full_expression();
  object();
  pop_object_lifetime();
  EXPECT_FALSE(function->has_full_expr_child);
  pop_scope();
  EXPECT_EQ(function->first_child, kept);
  EXPECT_TRUE(function->has_full_expr_child);
}

TEST_F(Lifetimes, ChildrenOfARemovedOneKnowWhatWasAlive) {
  a_dynamic_init* outer = object();
  push_block_scope(nullptr);
  an_object_lifetime* first = open_full_expression();
  object();
  pop_object_lifetime();
  an_object_lifetime* second = open_full_expression();
  object();
  pop_object_lifetime();
  EXPECT_EQ(first->first_destruction_at_entry, nullptr);
  pop_scope();
  an_object_lifetime* function = curr_object_lifetime;
  EXPECT_EQ(function->first_child, second);
  EXPECT_EQ(second->next_sibling, first);
  for (an_object_lifetime* child : {first, second}) {
    EXPECT_EQ(child->parent, function);
    EXPECT_EQ(child->first_destruction_at_entry, outer);
  }
}

TEST_F(Lifetimes, ConditionalOnesKeepWhatDependsOnThem) {
  push_object_lifetime(iek_none, nullptr, olk_conditional);
  EXPECT_FALSE(pop_object_lifetime());
  an_object_lifetime* conditional = push_object_lifetime(iek_none, nullptr, olk_conditional);
  open_full_expression();
  object();
  pop_object_lifetime();
  EXPECT_TRUE(pop_object_lifetime());
  EXPECT_EQ(curr_object_lifetime->first_child, conditional);
}

TEST_F(Lifetimes, DestructionsGoToTheLifetimeThatIsAskedFor) {
  an_object_lifetime* function = curr_object_lifetime;
  push_block_scope(nullptr);
  an_object_lifetime* block = curr_object_lifetime;
  push_object_lifetime(iek_none, nullptr, olk_conditional);
  an_object_lifetime* conditional = curr_object_lifetime;
  struct {
    bool to_function, to_block;
    an_object_lifetime* expected;
  } cases[] = {{false, false, conditional}, {false, true, block}, {true, true, nullptr}};
  for (const auto& c : cases) {
    a_dynamic_init* init = alloc_dynamic_init(dik_zero);
    record_end_of_lifetime_destruction(init, c.to_function, c.to_block);
    EXPECT_EQ(init->lifetime, nullptr); // nothing to destroy
    init->destructor = destructor;
    record_end_of_lifetime_destruction(init, c.to_function, c.to_block);
    an_object_lifetime* expected =
        c.expected != nullptr ? c.expected : innermost_function_scope->first_lifetime;
    EXPECT_EQ(init->lifetime, expected);
    EXPECT_EQ(expected->destructions, init);
  }
  EXPECT_EQ(innermost_function_scope->first_lifetime->kind, olk_function);
  EXPECT_NE(innermost_function_scope->first_lifetime, function);
  // A variable can be destroyed without a destructor of its own.
  a_dynamic_init* of_variable = alloc_dynamic_init(dik_zero);
  of_variable->variable = enter_variable("v", sc_extern, 0)->variant.variable;
  of_variable->variable->needs_destruction = true;
  record_end_of_lifetime_destruction(of_variable, false, false);
  EXPECT_EQ(conditional->destructions, of_variable);
  // A template has no destructions; what is lowered has them.
  depth_template_declaration_scope = 1;
  a_dynamic_init* of_template = alloc_dynamic_init(dik_zero);
  of_template->destructor = destructor;
  record_end_of_lifetime_destruction(of_template, false, false);
  EXPECT_EQ(of_template->lifetime, nullptr);
  initial_value_for_il_lowering_flag = 1;
  record_end_of_lifetime_destruction(of_template, false, false);
  EXPECT_EQ(of_template->lifetime, conditional);
  initial_value_for_il_lowering_flag = 0;
  depth_template_declaration_scope = -1;
  pop_object_lifetime();
  pop_scope();
}

TEST_F(Lifetimes, NestedOnesCleanUpWhatOutlivesThem) {
  push_block_scope(nullptr);
  an_object_lifetime* block = curr_object_lifetime;
  an_object_lifetime* nested = push_object_lifetime(iek_none, nullptr, olk_conditional);
  a_dynamic_init* temporary = alloc_dynamic_init(dik_zero);
  temporary->destructor = destructor;
  record_end_of_lifetime_destruction(temporary, false, false);
  EXPECT_FALSE(temporary->cleanup_by_nested_lifetime);
  a_dynamic_init* outliving = object();
  EXPECT_EQ(outliving->lifetime, block);
  EXPECT_TRUE(outliving->cleanup_by_nested_lifetime);
  EXPECT_EQ(outliving->source_lifetime, nested);
  EXPECT_EQ(nested->first_destruction_at_entry, outliving);
  remove_from_destruction_list(outliving);
  EXPECT_FALSE(outliving->cleanup_by_nested_lifetime);
  EXPECT_EQ(nested->first_destruction_at_entry, nullptr);
  pop_object_lifetime();
  pop_scope();
}

TEST_F(Lifetimes, ContentsArePromotedInOrder) {
  an_object_lifetime* function = curr_object_lifetime;
  a_dynamic_init* outer = object();
  an_object_lifetime* older = open_full_expression();
  object();
  pop_object_lifetime();
  an_object_lifetime* promoted = push_object_lifetime(iek_none, nullptr, olk_block);
  an_object_lifetime* inner = open_full_expression();
  object();
  pop_object_lifetime();
  a_dynamic_init* first = object();
  a_dynamic_init* second = object();
  pop_object_lifetime_full(true);
  promote_lifetime_contents_to_curr_object_lifetime(promoted);
  EXPECT_EQ(promoted->destructions, nullptr);
  EXPECT_EQ(promoted->first_child, nullptr);
  EXPECT_EQ(function->destructions, second);
  EXPECT_EQ(second->next_destruction, first);
  EXPECT_EQ(first->next_destruction, outer);
  EXPECT_EQ(first->lifetime, function);
  EXPECT_EQ(function->first_child, inner);
  EXPECT_EQ(inner->parent, function);
  EXPECT_EQ(inner->first_destruction_at_entry, outer);
  detach_from_object_lifetime_tree(promoted);
  EXPECT_EQ(inner->next_sibling, older);
}

TEST_F(Lifetimes, UselessOnesLoseTheirDestructions) {
  push_block_scope(nullptr);
  a_dynamic_init* first = object();
  a_dynamic_init* second = object();
  an_object_lifetime* child = open_full_expression();
  object();
  pop_object_lifetime();
  mark_object_lifetime_as_useless(curr_object_lifetime);
  for (const a_dynamic_init* init : {first, second}) {
    EXPECT_EQ(init->lifetime, nullptr);
    EXPECT_EQ(init->next_destruction, nullptr);
  }
  EXPECT_EQ(child->first_destruction_at_entry, nullptr);
  EXPECT_TRUE(is_useless_object_lifetime(curr_object_lifetime));
  pop_scope();
  EXPECT_EQ(curr_object_lifetime->first_child, child);
}

TEST_F(Lifetimes, DestructionsCanBePlaced) {
  push_block_scope(nullptr);
  an_object_lifetime* block = curr_object_lifetime;
  a_dynamic_init* newest = object();
  a_dynamic_init* last = alloc_dynamic_init(dik_zero);
  a_dynamic_init* middle = alloc_dynamic_init(dik_zero);
  add_to_end_of_destructions_list(last, block);
  add_to_destructions_list_following(middle, newest);
  const a_dynamic_init* expected[] = {newest, middle, last};
  const a_dynamic_init* found = block->destructions;
  for (const a_dynamic_init* init : expected) {
    EXPECT_EQ(found, init);
    EXPECT_EQ(found->lifetime, block);
    found = found->next_destruction;
  }
  EXPECT_EQ(found, nullptr);
  remove_from_destruction_list(middle);
  EXPECT_EQ(newest->next_destruction, last);
  remove_from_destruction_list(middle); // it is on no list any more
  EXPECT_EQ(newest->next_destruction, last);
  // The parts of an array are cleaned up the last one first.
  a_dynamic_init* whole = object();
  a_dynamic_init* parts[2];
  for (a_dynamic_init*& part : parts) {
    part = alloc_dynamic_init(dik_zero);
    part->destructor = destructor;
    record_partial_aggregate_cleanup_destruction(part, whole);
  }
  EXPECT_EQ(whole->partial_cleanup_next, parts[1]);
  EXPECT_EQ(parts[1]->partial_cleanup_next, parts[0]);
  EXPECT_EQ(block->destructions, parts[1]);
  pop_scope();
}

TEST_F(Lifetimes, ARepushedOneStaysWhereItIs) {
  an_object_lifetime* function = curr_object_lifetime;
  a_statement* block = alloc_statement(stmk_block);
  a_block_supplement* supplement = block->variant.block.block_supplement;
  an_object_lifetime* lifetime = push_object_lifetime(iek_block_supplement, supplement, olk_block);
  object();
  EXPECT_TRUE(pop_object_lifetime());
  a_dynamic_init* later = object();
  EXPECT_EQ(
      push_or_repush_object_lifetime(iek_block_supplement, supplement, lifetime, olk_block, true),
      lifetime);
  EXPECT_EQ(curr_object_lifetime, lifetime);
  EXPECT_EQ(function->first_child, lifetime);
  EXPECT_EQ(lifetime->next_sibling, nullptr);
  EXPECT_EQ(lifetime->first_destruction_at_entry, nullptr);
  pop_object_lifetime();
  // Out of the tree, it is linked again and begins where the parent stands.
  detach_from_object_lifetime_tree(lifetime);
  push_or_repush_object_lifetime(iek_block_supplement, supplement, lifetime, olk_block, true);
  EXPECT_EQ(lifetime->parent, function);
  EXPECT_EQ(lifetime->first_destruction_at_entry, later);
  pop_object_lifetime();
}

TEST_F(Lifetimes, UselessOnesLeaveTheTree) {
  an_object_lifetime* function = curr_object_lifetime;
  push_block_scope(nullptr);
  push_block_scope(nullptr);
  a_dynamic_init* first = object();
  a_dynamic_init* second = object();
  an_object_lifetime* inner = curr_object_lifetime;
  EXPECT_EQ(inner->destructions, second);
  EXPECT_EQ(second->next_destruction, first);
  pop_scope();
  pop_scope();
  EXPECT_EQ(curr_object_lifetime, function);
  // The middle block destroys nothing; the inner one hangs from the function.
  EXPECT_EQ(function->first_child, inner);
  EXPECT_EQ(inner->parent, function);
  EXPECT_EQ(inner->next_sibling, nullptr);
  push_block_scope(nullptr);
  pop_scope();
  EXPECT_EQ(function->first_child, inner);
}

TEST_F(Lifetimes, EntryMarksSayWhatIsAliveAlready) {
  a_dynamic_init* outer = object();
  push_block_scope(nullptr);
  EXPECT_EQ(curr_object_lifetime->first_destruction_at_entry, outer);
  object();
  an_object_lifetime* block = curr_object_lifetime;
  pop_scope();
  a_dynamic_init* later = object();
  EXPECT_EQ(curr_object_lifetime->destructions, later);
  EXPECT_EQ(later->next_destruction, outer);
  EXPECT_EQ(block->first_destruction_at_entry, outer);
  remove_from_destruction_list(outer);
  EXPECT_EQ(later->next_destruction, nullptr);
  EXPECT_EQ(block->first_destruction_at_entry, nullptr);
}

TEST_F(Lifetimes, RecordsAreUsedAgainWithinAFunction) {
  push_block_scope(nullptr);
  an_object_lifetime* first = curr_object_lifetime;
  pop_scope();
  push_block_scope(nullptr);
  EXPECT_EQ(curr_object_lifetime, first);
  EXPECT_EQ(first->destructions, nullptr);
  pop_scope();
}

TEST_F(Lifetimes, FunctionsThatDestroyNothingLeaveNoneBehind) {
  push_block_scope(nullptr);
  an_object_lifetime* block = curr_object_lifetime;
  for (bool destroys : {false, true}) {
    a_routine* member = enter_function(destroys ? "second" : "first");
    push_function_scope(member);
    a_scope* scope = innermost_function_scope;
    an_object_lifetime* lifetime = curr_object_lifetime;
    an_object_lifetime* root = lifetime->parent;
    EXPECT_NE(root, block);
    if (destroys)
      object();
    pop_scope();
    EXPECT_EQ(curr_object_lifetime, block);
    EXPECT_EQ(scope->object_lifetime, destroys ? lifetime : nullptr);
    EXPECT_EQ(root->useful_inner_function_lifetime, destroys);
  }
  pop_scope();
  // What is destroyed at the end of the whole function hangs from its lifetime.
  a_dynamic_init* init = alloc_dynamic_init(dik_zero);
  init->destructor = destructor;
  record_end_of_lifetime_destruction(init, true, false);
  a_scope* scope = innermost_function_scope;
  pop_scope();
  ASSERT_NE(scope->object_lifetime, nullptr);
  EXPECT_EQ(scope->first_lifetime->parent, scope->object_lifetime);
}

TEST_F(Lifetimes, EachUnitHasATreeOfItsOwn) {
  trans_unit_init();
  enter_translation_unit(alloc_translation_unit(nullptr));
  a_translation_unit* primary = curr_translation_unit;
  an_object_lifetime* lifetime = curr_object_lifetime;
  save_curr_translation_unit();
  enter_translation_unit(alloc_translation_unit(nullptr));
  curr_object_lifetime = nullptr;
  switch_translation_unit(primary);
  EXPECT_EQ(curr_object_lifetime, lifetime);
}

TEST_F(Lifetimes, BlockScopeMadeLaterIsBound) {
  push_block_scope(nullptr);
  object();
  an_object_lifetime* lifetime = curr_object_lifetime;
  a_scope* scope = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  EXPECT_EQ(scope->object_lifetime, lifetime);
  EXPECT_EQ(lifetime->assoc.scope, scope);
  pop_scope();
  EXPECT_EQ(scope->object_lifetime, lifetime);
}

} // namespace
