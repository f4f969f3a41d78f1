#include "front_end_fixture.h"

#include <vector>

namespace {

class IL_SCOPE_TEST : public FrontEnd {
protected:
  // Opens the body of a function and a block in it.
  a_routine* open_function_with_block() {
    a_routine* routine = enter_function("f");
    push_function_scope(routine);
    push_block_scope(nullptr);
    return routine;
  }

  static a_type* new_struct() {
    return alloc_type(tk_struct);
  }
};

TEST_F(IL_SCOPE_TEST, ABlockExternIsAFileScopeEntryOfItsBlock) {
  a_routine* routine = open_function_with_block();
  a_variable* variable = make_variable(integer_type(ik_int), sc_extern, depth_scope_stack);
  a_scope* block = scope_stack[depth_scope_stack].il_scope;
  ASSERT_NE(block, nullptr);
  EXPECT_TRUE(is_file_scope_entry(variable));
  EXPECT_FALSE(is_file_scope_entry(block));
  EXPECT_EQ(block->variables, variable);
  EXPECT_EQ(variable->source_corresp.parent_scope, nullptr);
  EXPECT_EQ(variable->source_corresp.enclosing_routine, routine);
  EXPECT_EQ(f_get_parent_scope_of(&variable->source_corresp, iek_variable), block);
}

TEST_F(IL_SCOPE_TEST, AutomaticVariablesHaveAListOfTheirOwn) {
  open_function_with_block();
  a_variable* first = make_variable(integer_type(ik_int), sc_auto, depth_scope_stack);
  a_variable* local_static = make_variable(integer_type(ik_int), sc_static, depth_scope_stack);
  a_variable* second = make_variable(integer_type(ik_int), sc_register, depth_scope_stack);
  a_scope* block = scope_stack[depth_scope_stack].il_scope;
  EXPECT_EQ(block->local_variables, first);
  EXPECT_EQ(first->next, second);
  EXPECT_EQ(block->variables, local_static);
  EXPECT_EQ(first->source_corresp.parent_scope, block);
  EXPECT_TRUE(first->source_corresp.local_to_function);
}

TEST_F(IL_SCOPE_TEST, RemovalRepairsTheTail) {
  a_variable* first = make_variable(integer_type(ik_int), sc_none, 0);
  a_variable* last = make_variable(integer_type(ik_int), sc_none, 0);
  remove_from_variables_list(last, 0);
  a_variable* next = make_variable(integer_type(ik_int), sc_none, 0);
  EXPECT_EQ(first->next, next);
  EXPECT_EQ(last->next, nullptr);
  // A definition of an earlier declaration goes to the end.
  remove_from_variables_list(first, 0);
  add_to_variables_list(first, 0);
  EXPECT_EQ(il_header.primary_scope->variables, next);
  EXPECT_EQ(next->next, first);
  EXPECT_EQ(first->next, nullptr);
}

TEST_F(IL_SCOPE_TEST, AnEntityWithNoDepthGoesToItsClassOrTheFile) {
  open_function_with_block();
  a_type* outer = new_struct();
  add_to_types_list(outer, -1);
  EXPECT_EQ(il_header.primary_scope->types, outer);
  int32_t saved;
  switch_to_file_scope_region(&saved);
  a_scope* class_scope = alloc_scope(sk_class, take_next_scope_number());
  class_scope->assoc.type = outer;
  switch_back_to_original_region(saved);
  a_type* member = new_struct();
  set_parent_scope(&member->source_corresp, iek_type, class_scope);
  EXPECT_EQ(class_of_member(&member->source_corresp), outer);
  add_to_types_list(member, -1);
  EXPECT_EQ(class_scope->types, member);
}

TEST_F(IL_SCOPE_TEST, ParentsAreWalkedFromTheInsideOut) {
  a_routine* routine = open_function_with_block();
  a_type* local_class = new_struct();
  add_to_types_list(local_class, depth_scope_stack);
  std::vector<void*> parents;
  auto note = [](void* entity, an_il_entry_kind, void* list) {
    static_cast<std::vector<void*>*>(list)->push_back(entity);
    return 0;
  };
  walk_parents(local_class, iek_type, note, &parents, wp_routines | wp_entity_itself);
  EXPECT_EQ(parents, (std::vector<void*>{local_class, routine}));
  parents.clear();
  walk_parents(local_class, iek_type, note, &parents, wp_classes | wp_namespaces);
  EXPECT_TRUE(parents.empty());
}

TEST_F(IL_SCOPE_TEST, MacrosStayInTheOrderOfTheirDefinition) {
  a_macro* first = alloc_macro();
  a_macro* second = alloc_macro();
  add_to_macros_list(first);
  add_to_macros_list(second);
  EXPECT_EQ(il_header.macros, first);
  EXPECT_EQ(first->next, second);
  il_header.macros = nullptr; // another unit
  a_macro* third = alloc_macro();
  add_to_macros_list(third);
  EXPECT_EQ(il_header.macros, third);
  EXPECT_EQ(second->next, nullptr);
}

} // namespace
