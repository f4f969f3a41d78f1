#include "front_end_fixture.h"
#include "il_constants.h"
#include "il_statements.h"

#include <set>

namespace {

class IL_ALLOC_TEST : public FrontEnd {
protected:
  // A routine with a body of its own; its region is current afterwards.
  a_routine* make_routine_with_body() {
    int32_t saved;
    switch_to_file_scope_region(&saved);
    a_routine* routine = alloc_routine();
    routine->type = make_routine_type_full(void_type());
    new_function_scope(take_next_scope_number(), routine, 0);
    return routine;
  }
};

TEST_F(IL_ALLOC_TEST, PrefixTellsThePlacement) {
  a_type* type = alloc_type(tk_struct);
  EXPECT_TRUE(is_file_scope_entry(type));
  EXPECT_EQ(orphan_link_of(type), nullptr);
  a_routine* routine = make_routine_with_body();
  EXPECT_TRUE(is_file_scope_entry(routine));
  EXPECT_FALSE(is_file_scope_entry(alloc_label()));
  EXPECT_FALSE(is_file_scope_entry(alloc_variable(sc_auto)));
  EXPECT_TRUE(is_file_scope_entry(alloc_variable(sc_extern)));
  EXPECT_FALSE(
      is_file_scope_entry(alloc_list_entry_for_class_full(&alloc_label()->source_corresp)));
  EXPECT_TRUE(is_file_scope_entry(alloc_list_entry_for_class_full(&type->source_corresp)));
  EXPECT_TRUE(is_file_scope_entry(alloc_decl_position_supplement(true)));
  EXPECT_FALSE(is_file_scope_entry(alloc_decl_position_supplement(false)));
}

TEST_F(IL_ALLOC_TEST, SecondaryUnitHasALongerPrefix) {
  is_primary_translation_unit = 0;
  compute_il_prefix_size();
  mem_manage_trans_unit_init();
  EXPECT_EQ(file_scope_region_number, 2);
  char* first = static_cast<char*>(alloc_il(8));
  char* second = static_cast<char*>(alloc_il(8));
  EXPECT_EQ(second - first, 32);
  EXPECT_TRUE(il_entry_prefix_of(static_cast<void*>(second)).secondary_trans_unit_entry);
  EXPECT_EQ(trans_unit_corresp_link_of(second), nullptr);
  // The primary form for one allocation, in the primary unit's region.
  char* primary_head = mem_region_table[1]->alloc_position;
  char* primary = static_cast<char*>(alloc_primary_file_scope_il(8));
  EXPECT_EQ(primary, primary_head + 16);
  EXPECT_FALSE(il_entry_prefix_of(static_cast<void*>(primary)).secondary_trans_unit_entry);
  char* third = static_cast<char*>(alloc_il(8));
  EXPECT_EQ(third - second, 32);
}

TEST_F(IL_ALLOC_TEST, InitialStates) {
  a_variable* variable = alloc_variable(sc_static);
  EXPECT_TRUE(variable->holds_asm_name);
  EXPECT_FALSE(variable->source_corresp.needed);
  EXPECT_EQ(variable->source_corresp.name_hash_index, -1);
  keep_unneeded_statics = 1;
  EXPECT_TRUE(alloc_variable(sc_static)->source_corresp.needed);
  EXPECT_FALSE(alloc_variable(sc_extern)->source_corresp.needed);
  EXPECT_TRUE(alloc_label()->was_reachable);
  EXPECT_EQ(alloc_routine()->virtual_function_index, 65535);
  EXPECT_EQ(alloc_scope(sk_block, 7)->scope_stack_depth, -1);
  a_type* type = alloc_type(tk_struct);
  EXPECT_TRUE(type->is_incomplete);
  EXPECT_EQ(type->alignment, 1u);
  EXPECT_EQ(class_supplement_of(type)->max_member_alignment, 65535);
  EXPECT_EQ(class_supplement_of(type)->virtual_function_info_offset, -3);
  set_type_kind(type, tk_error);
  EXPECT_FALSE(type->is_incomplete);
  EXPECT_EQ(type->size, 1u);
}

TEST_F(IL_ALLOC_TEST, StringCopiesGoWhereTheRegionSays) {
  make_routine_with_body();
  char* region_0_head = mem_region_table[0]->alloc_position;
  EXPECT_EQ(copy_string_to_region(0, "zero"), region_0_head);
  char* entry = copy_string_to_region(1, "one");
  EXPECT_TRUE(is_file_scope_entry(entry));
  char* function_head = mem_region_table[curr_il_region_number]->alloc_position;
  char* general = copy_string_of_length_to_region(curr_il_region_number, "two and more", 3);
  EXPECT_STREQ(general, "two");
  EXPECT_EQ(mem_region_table[curr_il_region_number]->alloc_position, function_head);
  free_general(general, 4); // fails for memory that isn't remembered
}

TEST_F(IL_ALLOC_TEST, LocalConstantsAreReused) {
  a_constant* first = local_constant();
  clear_constant(first, con_integer);
  il_entry_prefix_of(first).keep_in_il = 1;
  a_constant* pointer = first;
  release_local_constant(&pointer);
  EXPECT_EQ(pointer, nullptr);
  EXPECT_EQ(local_constant(), first);
  EXPECT_FALSE(il_entry_prefix_of(first).keep_in_il);
  // In a function the lasting record is another one.
  make_routine_with_body();
  clear_constant(first, con_integer);
  first->type = integer_type(ik_int);
  pointer = first;
  a_constant* lasting = move_local_constant_to_il(&pointer);
  EXPECT_NE(lasting, first);
  EXPECT_FALSE(is_file_scope_entry(lasting));
  EXPECT_EQ(local_constant(), first);
}

TEST_F(IL_ALLOC_TEST, TemplateArgumentsAreReused) {
  a_template_arg* first = alloc_template_arg(tak_type);
  first->next = alloc_template_arg(tak_type);
  a_template_arg* second = first->next;
  first->is_explicit = 1;
  free_template_arg_list(first);
  EXPECT_EQ(alloc_template_arg(tak_constant), first);
  EXPECT_FALSE(first->is_explicit);
  EXPECT_EQ(alloc_template_arg(tak_constant), second);
}

// --- Regions and function bodies.

TEST_F(IL_ALLOC_TEST, RegionsAreSavedAndRestored) {
  int32_t saved;
  switch_to_file_scope_region(&saved);
  EXPECT_EQ(saved, 0);
  a_routine* routine = make_routine_with_body();
  EXPECT_TRUE(routine->owns_region);
  switch_to_file_scope_region(&saved);
  EXPECT_EQ(saved, routine->region_number);
  switch_back_to_original_region(saved);
  EXPECT_EQ(curr_il_region_number, routine->region_number);
}

TEST_F(IL_ALLOC_TEST, ASharedRegionLivesUntilItsLastBodyIsCleared) {
  a_routine* outer = make_routine_with_body();
  int32_t region = outer->region_number;
  a_routine* inner = alloc_routine();
  inner->type = make_routine_type_full(void_type());
  a_scope* inner_scope = new_function_scope(take_next_scope_number(), inner, region);
  EXPECT_FALSE(inner->owns_region);
  a_scope* outer_scope = scope_for_routine(outer);
  EXPECT_EQ(il_header.region_scope_table[region], inner_scope);
  EXPECT_EQ(inner_scope->next, outer_scope);
  clear_function_body(outer_scope);
  EXPECT_EQ(scope_for_routine(outer), nullptr);
  EXPECT_EQ(scope_for_routine(inner), inner_scope);
  clear_function_body(inner_scope);
  EXPECT_EQ(mem_region_table[region], nullptr);
  EXPECT_EQ(scope_for_routine(inner), nullptr);
}

TEST_F(IL_ALLOC_TEST, AFreedRegionLeavesNoStaleScope) {
  a_routine* routine = make_routine_with_body();
  a_scope* scope = scope_for_routine(routine);
  // A local class: a file-scope entry that is tied to its block by a reference.
  a_type* local_class = alloc_type(tk_struct);
  innermost_function_scope = scope;
  set_parent_scope(&local_class->source_corresp, iek_type, scope);
  EXPECT_EQ(local_class->source_corresp.parent_scope, nullptr);
  EXPECT_TRUE(local_class->source_corresp.has_local_scope_ref);
  EXPECT_EQ(local_class->source_corresp.enclosing_routine, routine);
  EXPECT_EQ(f_get_parent_scope_of(&local_class->source_corresp, iek_type), scope);
  // Being entered again leaves one reference.
  set_parent_scope(&local_class->source_corresp, iek_type, scope);
  EXPECT_EQ(scope->local_scope_refs->next, nullptr);
  innermost_function_scope = nullptr;
  free_memory_region(routine->region_number);
  EXPECT_EQ(scope_for_routine(routine), nullptr);
  EXPECT_EQ(f_get_parent_scope_of(&local_class->source_corresp, iek_type), nullptr);
}

TEST_F(IL_ALLOC_TEST, NamespaceAliasesShareTheScope) {
  a_namespace* real = alloc_namespace();
  real->variant.scope = alloc_scope(sk_namespace, 5);
  a_namespace* alias = alloc_namespace();
  alias->is_alias = 1;
  alias->variant.aliased = real;
  EXPECT_EQ(scope_of_namespace(alias), real->variant.scope);
}

TEST_F(IL_ALLOC_TEST, MainIsAFunctionOfNoClassAndNoNamespace) {
  a_routine* routine = alloc_routine();
  EXPECT_FALSE(is_main_function(routine));
  routine->source_corresp.name = "main";
  EXPECT_TRUE(is_main_function(routine));
  routine->source_corresp.parent_scope = alloc_scope(sk_namespace, 5);
  EXPECT_FALSE(is_main_function(routine));
  routine->source_corresp.parent_scope = nullptr;
  routine->source_corresp.is_class_member = 1;
  EXPECT_FALSE(is_main_function(routine));
}

TEST_F(IL_ALLOC_TEST, TemporariesPrecedeNamedVariables) {
  a_scope* scope = il_header.primary_scope;
  a_variable* named = alloc_variable(sc_none);
  named->source_corresp.name = "x";
  scope->variables = named;
  a_variable* first = alloc_temporary_variable(integer_type(ik_int), false);
  EXPECT_EQ(first->storage_kind, sc_static);
  a_variable* second = alloc_temporary_variable(integer_type(ik_int), true);
  add_temporary_to_front_of_variables_list(first, scope);
  add_temporary_to_front_of_variables_list(second, scope);
  EXPECT_EQ(scope->variables, first);
  EXPECT_EQ(first->next, second);
  EXPECT_EQ(second->next, named);
}

// --- Walks.

std::multiset<void*> visited_entries;

void count_entry(void* entry, an_il_entry_kind) {
  visited_entries.insert(entry);
}

TEST_F(IL_ALLOC_TEST, EachWalkVisitsEachEntryOnce) {
  // struct node { struct node *next; } *list;
  a_type* node = alloc_type(tk_struct);
  a_field* field = alloc_field(make_pointer_type(node));
  node->variant.class_struct_union.fields = field;
  a_variable* list = alloc_variable(sc_none);
  list->type = field->type;
  il_header.primary_scope->types = node;
  il_header.primary_scope->variables = list;
  an_il_walk_callbacks callbacks = {};
  callbacks.entry = count_entry;
  for (int walk = 0; walk < 3; walk++) {
    visited_entries.clear();
    walk_file_scope_il(callbacks, false);
    for (void* entry :
         {static_cast<void*>(node), static_cast<void*>(field), static_cast<void*>(field->type),
          static_cast<void*>(list), static_cast<void*>(il_header.primary_scope)})
      EXPECT_EQ(visited_entries.count(entry), 1u);
  }
}

TEST_F(IL_ALLOC_TEST, ALongChainIsWalkedWithoutRecursion) {
  a_type* type = integer_type(ik_int);
  for (int i = 0; i < 200000; i++)
    type = make_pointer_type(type);
  visited_entries.clear();
  an_il_walk_callbacks callbacks = {};
  callbacks.entry = count_entry;
  walk_il_subtree(type, iek_type, callbacks);
  EXPECT_GT(visited_entries.size(), 200000u);
}

TEST_F(IL_ALLOC_TEST, FunctionWalksLeaveFileScopeEntriesAsOrphans) {
  a_routine* routine = make_routine_with_body();
  a_scope* scope = scope_for_routine(routine);
  a_variable* local = alloc_variable(sc_auto);
  local->type = make_pointer_type(integer_type(ik_int));
  scope->local_variables = local;
  a_variable* second = alloc_variable(sc_auto);
  second->type = local->type;
  local->next = second;
  visited_entries.clear();
  an_il_walk_callbacks callbacks = {};
  callbacks.entry = count_entry;
  walk_routine_scope_il(routine->region_number, callbacks, false);
  EXPECT_EQ(visited_entries.count(local), 1u);
  EXPECT_EQ(visited_entries.count(local->type), 0u);
  EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].head, local->type);
  EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].tail, local->type);
}

// --- What a unit emits.

class IL_NEEDED_TEST : public IL_ALLOC_TEST {
protected:
  template <class T> static void append(T** link, T* entity) {
    while (*link != nullptr)
      link = &(*link)->next;
    *link = entity;
  }

  a_variable* file_variable(const char* name, a_storage_kind storage_kind) {
    a_variable* variable = alloc_variable(storage_kind);
    variable->type = integer_type(ik_int);
    variable->source_corresp.name = name;
    variable->source_corresp.linkage = storage_kind == sc_static ? idl_internal : idl_external;
    append(&il_header.primary_scope->variables, variable);
    return variable;
  }

  // A function whose body is an empty block.
  a_routine* function(const char* name, a_storage_kind storage_kind) {
    a_routine* routine = make_routine_with_body();
    routine->source_corresp.name = name;
    routine->storage_kind = storage_kind;
    routine->source_corresp.linkage = storage_kind == sc_static ? idl_internal : idl_external;
    a_scope* scope = scope_for_routine(routine);
    scope->assoc_statement = alloc_statement(stmk_block);
    set_routine_defined(routine);
    append(&il_header.primary_scope->routines, routine);
    int32_t saved;
    switch_to_file_scope_region(&saved);
    return routine;
  }

  void use_in_body(a_routine* routine, an_expr_node* (*make)(void*), void* entity) {
    switch_il_region(routine->region_number);
    a_statement* block = scope_for_routine(routine)->assoc_statement;
    append(&block->variant.block.first_statement, alloc_expr_statement(make(entity)));
    int32_t saved;
    switch_to_file_scope_region(&saved);
  }

  static an_expr_node* variable_use(void* variable) {
    return var_lvalue_expr(static_cast<a_variable*>(variable));
  }
  static an_expr_node* routine_use(void* routine) {
    return function_lvalue_expr(static_cast<a_routine*>(routine));
  }

  static void finish() {
    set_needed_flags_at_end_of_file_scope(il_header.primary_scope);
    mark_to_keep_in_il(il_header.primary_scope, iek_scope);
    eliminate_bodies_of_unneeded_functions();
    eliminate_unneeded_il_entries(il_header.primary_scope);
  }

  template <class T> static bool is_listed(T* head, T* entity) {
    while (head != nullptr && head != entity)
      head = head->next;
    return head != nullptr;
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

TEST_F(IL_NEEDED_TEST, TypesStayOnlyWithTheirUsers) {
  auto file_struct = [](const char* name) {
    a_type* type = alloc_type(tk_struct);
    type->source_corresp.name = name;
    append(&il_header.primary_scope->types, type);
    return type;
  };
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
  a_routine* c99_external = function("c99_external", sc_extern);
  c99_external->is_inline = 1;
  a_routine* gnu_external = function("gnu_external", sc_none);
  gnu_external->is_inline = gnu_external->is_gnu_inline = 1;
  a_routine* gnu_extern_inline = function("gnu_extern_inline", sc_extern);
  gnu_extern_inline->is_inline = gnu_extern_inline->is_gnu_inline = 1;
  finish();
  EXPECT_FALSE(plain->source_corresp.needed);
  EXPECT_TRUE(c99_external->source_corresp.needed);
  EXPECT_TRUE(gnu_external->source_corresp.needed);
  EXPECT_FALSE(gnu_extern_inline->source_corresp.needed);
}

} // namespace
