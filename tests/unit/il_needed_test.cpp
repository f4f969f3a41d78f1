#include "il_fixture.h"

namespace {

class IL_NEEDED_TEST : public IL_TEST {
protected:
  static void finish() {
    set_needed_flags_at_end_of_file_scope(il_header.primary_scope);
    mark_to_keep_in_il(il_header.primary_scope, iek_scope);
    eliminate_bodies_of_unneeded_functions();
    eliminate_unneeded_il_entries(il_header.primary_scope);
  }
};

TEST_F(IL_NEEDED_TEST, WhatAnExternalFunctionLeadsToIsEmitted) {
  a_variable* used = file_variable("used", sc_static);
  a_variable* unused = file_variable("unused", sc_static);
  a_variable* external = file_variable("external", sc_none);
  a_variable* declared = file_variable("declared", sc_extern);
  a_routine* helper = function("helper", sc_static);
  use_in_body(helper, variable_use, used);
  a_routine* dead = function("dead", sc_static);
  use_in_body(dead, variable_use, unused);
  int32_t dead_region = dead->region_number;
  a_routine* entry = function("entry", sc_none);
  use_in_body(entry, routine_use, helper);
  finish();
  EXPECT_TRUE(used->source_corresp.needed);
  EXPECT_TRUE(external->source_corresp.needed);
  EXPECT_TRUE(helper->source_corresp.needed);
  EXPECT_TRUE(entry->source_corresp.needed);
  EXPECT_FALSE(unused->source_corresp.needed);
  EXPECT_FALSE(declared->source_corresp.needed);
  EXPECT_FALSE(dead->source_corresp.needed);
  EXPECT_NE(scope_for_routine(helper), nullptr);
  EXPECT_EQ(scope_for_routine(dead), nullptr);
  EXPECT_EQ(mem_region_table[dead_region], nullptr);
  a_scope* scope = il_header.primary_scope;
  EXPECT_TRUE(is_listed(scope->variables, used));
  EXPECT_FALSE(is_listed(scope->variables, unused));
  EXPECT_FALSE(is_listed(scope->routines, dead));
}

TEST_F(IL_NEEDED_TEST, AnEarlyMarkCoversWhatIsAddedLater) {
  a_variable* table = file_variable("table", sc_static);
  mark_as_needed(table, iek_variable);
  a_variable* target = file_variable("target", sc_static);
  a_constant* address = fs_constant(con_address);
  set_variable_address_constant(target, address, true);
  table->init_kind = initk_constant;
  table->initializer.constant = address;
  finish();
  EXPECT_TRUE(target->source_corresp.needed);
}

TEST_F(IL_NEEDED_TEST, ABodyEmitsItsOwnVariablesAndWhatItUses) {
  a_routine* entry = function("entry", sc_none);
  a_scope* body = scope_for_routine(entry);
  auto block_variable = [&](const char* name, a_storage_kind storage_kind) {
    a_variable* variable = alloc_variable(storage_kind);
    variable->source_corresp.name = name;
    variable->type = integer_type(ik_int);
    append(&body->variables, variable);
    return variable;
  };
  a_variable* target = file_variable("target", sc_static);
  a_variable* local_static = block_variable("local_static", sc_static);
  local_static->init_kind = initk_constant;
  local_static->initializer.constant = fs_constant(con_address);
  set_variable_address_constant(target, local_static->initializer.constant, true);
  a_variable* used = block_variable("used", sc_extern);
  use_in_body(entry, variable_use, used);
  a_variable* declared = block_variable("declared", sc_extern);
  a_routine* declared_routine = alloc_routine();
  declared_routine->type = make_routine_type_full(void_type());
  append(&il_header.primary_scope->routines, declared_routine);
  a_type* declared_type = file_struct("declared_type");
  // The declarations are statements of the body.
  switch_il_region(entry->region_number);
  a_statement* declarations = alloc_statement(stmk_decl);
  for (a_variable* variable : {local_static, used, declared})
    append(&declarations->variant.declarations, alloc_il_entity_list_entry(iek_variable, variable));
  append(&declarations->variant.declarations,
         alloc_il_entity_list_entry(iek_routine, declared_routine));
  append(&declarations->variant.declarations, alloc_il_entity_list_entry(iek_type, declared_type));
  append(&body->assoc_statement->variant.block.first_statement, declarations);
  to_file_scope();
  finish();
  EXPECT_TRUE(local_static->source_corresp.needed);
  EXPECT_TRUE(target->source_corresp.needed);
  EXPECT_TRUE(used->source_corresp.needed);
  EXPECT_FALSE(declared->source_corresp.needed);
  EXPECT_FALSE(is_listed(il_header.primary_scope->routines, declared_routine));
  EXPECT_FALSE(is_listed(il_header.primary_scope->types, declared_type));
}

TEST_F(IL_NEEDED_TEST, TypesStayOnlyWithTheirUsers) {
  a_type* used = file_struct("used");
  a_type* unused = file_struct("unused");
  file_variable("x", sc_none)->type = make_pointer_type(used);
  finish();
  EXPECT_TRUE(is_listed(il_header.primary_scope->types, used));
  EXPECT_TRUE(used->keep_definition_in_il);
  EXPECT_FALSE(is_listed(il_header.primary_scope->types, unused));
}

TEST_F(IL_NEEDED_TEST, InlineFunctionsAreEmittedByTheRulesOfTheLanguage) {
  a_routine* plain = function("plain", sc_none);
  plain->is_inline = 1;
  a_routine* external = function("external", sc_none);
  external->is_inline = external->has_external_declaration = 1;
  finish();
  EXPECT_FALSE(plain->source_corresp.needed);
  EXPECT_TRUE(external->source_corresp.needed);
}

TEST_F(IL_NEEDED_TEST, MainIsNotedWithItsFirstDefinitionAndForgottenWithIt) {
  a_routine* main_routine = function("main", sc_none);
  EXPECT_EQ(il_header.main_routine, main_routine);
  function("main", sc_none);
  EXPECT_EQ(il_header.main_routine, main_routine);
  // Without linkage nobody outside calls it.
  main_routine->source_corresp.linkage = idl_internal;
  finish();
  EXPECT_EQ(il_header.main_routine, nullptr);
}

TEST_F(IL_NEEDED_TEST, NamespacesAreGoneThroughAndAliasesAreNot) {
  a_scope* file_scope = il_header.primary_scope;
  auto add_namespace = [](a_scope* scope) {
    a_namespace* entry = alloc_namespace();
    entry->variant.scope = alloc_scope(sk_namespace, take_next_scope_number());
    entry->variant.scope->assoc.namespace_entry = entry;
    append(&scope->namespaces, entry);
    return entry;
  };
  a_namespace* real = add_namespace(file_scope);
  a_namespace* inner = add_namespace(real->variant.scope);
  a_namespace* alias = alloc_namespace();
  alias->is_alias = 1;
  alias->variant.aliased = real; // a loop for those who would follow it
  append(&inner->variant.scope->namespaces, alias);
  a_variable* unused = alloc_variable(sc_static);
  inner->variant.scope->variables = unused;
  a_variable* exported = alloc_variable(sc_none);
  exported->source_corresp.linkage = idl_external;
  unused->next = exported;
  finish();
  EXPECT_EQ(inner->variant.scope->variables, exported);
  EXPECT_TRUE(exported->source_corresp.needed);
}

TEST_F(IL_NEEDED_TEST, SecondaryEntitiesStayWithTheirUsers) {
  a_variable* used = file_variable("used", sc_none);
  a_variable* unused = file_variable("unused", sc_static);
  a_variable* unused_2 = file_variable("unused_2", sc_static);
  for (a_variable* variable : {unused, used, unused_2})
    append(&il_header.secondary_entities, alloc_il_entity_list_entry(iek_variable, variable));
  finish();
  ASSERT_NE(il_header.secondary_entities, nullptr);
  EXPECT_EQ(il_header.secondary_entities->entity, used);
  EXPECT_EQ(il_header.secondary_entities->next, nullptr);
}

TEST_F(IL_NEEDED_TEST, UnneededTypesStayWhenThatIsAskedFor) {
  keep_unneeded_types = 1;
  a_type* unused = file_struct("unused");
  a_variable* variable = file_variable("variable", sc_static);
  finish();
  EXPECT_TRUE(is_listed(il_header.primary_scope->types, unused));
  EXPECT_FALSE(is_listed(il_header.primary_scope->variables, variable));
}

TEST_F(IL_NEEDED_TEST, WhatADiscardedBodyDeclaredForOthersStays) {
  a_routine* dead = function("dead", sc_static);
  a_scope* body = scope_for_routine(dead);
  switch_il_region(dead->region_number);
  a_scope* block = alloc_scope(sk_block, take_next_scope_number());
  block->parent = body;
  body->first_nested = block;
  int32_t block_number = block->scope_number;
  to_file_scope();
  a_type* used = alloc_type(tk_struct);
  a_type* unused = alloc_type(tk_struct);
  used->next = unused;
  block->types = used;
  innermost_function_scope = body;
  set_parent_scope(&used->source_corresp, iek_type, block);
  innermost_function_scope = nullptr;
  a_variable* counter = alloc_variable(sc_static);
  counter->type = integer_type(ik_int);
  body->variables = counter;
  file_variable("x", sc_none)->type = used;
  finish();
  ASSERT_EQ(scope_for_routine(dead), nullptr);
  a_scope_orphaned_list* list = il_header.scope_orphaned_lists;
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->next, nullptr); // nothing of the outer scope is needed
  EXPECT_EQ(list->routine, dead);
  EXPECT_EQ(list->scope_number, block_number);
  EXPECT_EQ(list->types, used);
  EXPECT_EQ(used->next, nullptr);
  EXPECT_EQ(f_get_parent_scope_of(&used->source_corresp, iek_type), nullptr);
}

TEST_F(IL_NEEDED_TEST, ListsOfADeeplyNestedBodyAreMadeWithoutRecursion) {
  a_routine* routine = function("f", sc_none);
  a_scope* scope = scope_for_routine(routine);
  a_scope* function_scope = scope;
  a_type* innermost = alloc_type(tk_struct);
  switch_il_region(routine->region_number);
  for (int depth = 0; depth < 200000; depth++) {
    a_scope* block = alloc_scope(sk_block, depth + 100);
    block->parent = scope;
    scope->first_nested = block;
    scope = block;
  }
  scope->types = innermost;
  to_file_scope();
  add_scope_orphaned_il_lists(function_scope);
  ASSERT_NE(il_header.scope_orphaned_lists, nullptr);
  EXPECT_EQ(il_header.scope_orphaned_lists->types, innermost);
  EXPECT_EQ(scope->types, nullptr);
  EXPECT_TRUE(scope->moved_to_orphaned_lists);
  EXPECT_FALSE(function_scope->moved_to_orphaned_lists);
}

TEST_F(IL_NEEDED_TEST, OrphansAndMacrosAreKept) {
  a_routine* kept = function("kept", sc_none);
  a_routine* gone = function("gone", sc_static);
  a_scope_orphaned_list* list = alloc_scope_orphaned_list_header();
  list->routine = kept;
  list->types = alloc_type(tk_struct);
  list->namespaces = alloc_namespace();
  list->next = alloc_scope_orphaned_list_header();
  list->next->routine = gone;
  list->next->types = alloc_type(tk_struct);
  il_header.scope_orphaned_lists = list;
  il_header.macros = alloc_macro();
  a_type* orphan = alloc_type(tk_pointer);
  f_possibly_add_orphaned_file_scope_il_entry(orphan, iek_type, nullptr);
  a_type* type_of_gone = list->next->types;
  finish();
  EXPECT_TRUE(il_entry_prefix_of(list->types).keep_in_il);
  EXPECT_TRUE(il_entry_prefix_of(list->namespaces).keep_in_il);
  EXPECT_FALSE(il_entry_prefix_of(type_of_gone).keep_in_il);
  EXPECT_TRUE(il_entry_prefix_of(il_header.macros).keep_in_il);
  EXPECT_TRUE(il_entry_prefix_of(orphan).keep_in_il);
  EXPECT_EQ(il_header.scope_orphaned_lists, list);
  EXPECT_EQ(list->next, nullptr);
}

TEST_F(IL_NEEDED_TEST, DefaultArgumentsTakeTheirLifetimesAlong) {
  an_object_lifetime* root = alloc_object_lifetime(olk_block);
  curr_object_lifetime = root;
  // A routine type of one parameter, with a default argument of its own lifetime.
  auto type_with_default_arg = [] {
    a_type* type = make_routine_type_full(void_type(), integer_type(ik_int));
    an_object_lifetime* lifetime = push_object_lifetime(iek_none, nullptr, olk_other);
    an_expr_node* value = alloc_expr_node(expr_error);
    value->type = integer_type(ik_int);
    an_expr_node* operand = add_object_lifetime_to_expr(value, lifetime);
    an_expr_node* whole = make_operator_node(eok_comma, value->type, operand);
    type->variant.routine.routine_supplement->param_types->default_arg_expr = whole;
    curr_object_lifetime = lifetime->parent;
    return type;
  };
  a_routine* kept = function("kept", sc_none);
  kept->type = type_with_default_arg();
  an_object_lifetime* lifetime_of_kept = root->first_child;
  a_routine* gone = function("gone", sc_static);
  gone->type = type_with_default_arg();
  a_variable* pointer = file_variable("pointer", sc_static);
  pointer->type = make_pointer_type(type_with_default_arg());
  finish();
  EXPECT_EQ(root->first_child, lifetime_of_kept);
  EXPECT_EQ(lifetime_of_kept->next_sibling, nullptr);
  curr_object_lifetime = nullptr;
}

TEST_F(IL_NEEDED_TEST, BodiesOfAnotherUnitAreLeftAlone) {
  a_routine* primary = function("primary", sc_static);
  is_primary_translation_unit = 0;
  compute_il_prefix_size();
  mem_manage_trans_unit_init();
  to_file_scope();
  a_routine* secondary = function("secondary", sc_static);
  eliminate_bodies_of_unneeded_functions();
  EXPECT_NE(scope_for_routine(primary), nullptr);
  EXPECT_EQ(scope_for_routine(secondary), nullptr);
  is_primary_translation_unit = 1;
  compute_il_prefix_size();
  eliminate_bodies_of_unneeded_functions();
  EXPECT_EQ(scope_for_routine(primary), nullptr);
}

TEST_F(IL_NEEDED_TEST, AClearedBodyLeavesNoTrace) {
  a_routine* routine = function("f", sc_none);
  a_routine_type_supplement* supplement = routine->type->variant.routine.routine_supplement;
  supplement->definition = routine;
  int32_t number = routine->function_def_number;
  int32_t region = routine->region_number;
  routine->has_local_statics = routine->is_lowered = routine->has_body = 1;
  clear_function_body(scope_for_routine(routine));
  EXPECT_EQ(il_header.function_def_table[number].scope, nullptr);
  EXPECT_EQ(routine->function_def_number, 0);
  EXPECT_FALSE(routine->defined);
  EXPECT_FALSE(routine->has_local_statics);
  EXPECT_FALSE(routine->is_lowered);
  EXPECT_FALSE(routine->has_body);
  EXPECT_FALSE(routine->owns_region);
  EXPECT_EQ(supplement->definition, nullptr);
  EXPECT_EQ(mem_region_table[region], nullptr);
  EXPECT_EQ(il_header.region_scope_table[region], nullptr);
}

} // namespace
