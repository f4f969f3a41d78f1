#include "il_fixture.h"

#include <set>

namespace {

class IL_ALLOC_TEST : public IL_TEST {};

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

// Where an allocator puts its records: at file scope whatever the current
// region is, in region 1 of the primary unit, or in the current region.
enum a_placement { at_file_scope, at_primary_file_scope, in_current_region };

struct a_placement_row {
  const char* name;
  void* (*allocate)();
  a_placement placement;
};

#define ROW(call, placement)                                                                       \
  {                                                                                                \
#call, [] { return static_cast<void*>(call); }, placement                                      \
  }

const a_placement_row placement_rows[] = {
    ROW(alloc_il(1), at_file_scope),
    ROW(alloc_text_of_string_literal(1), at_file_scope),
    ROW(alloc_scope_orphaned_list_header(), at_file_scope),
    ROW(alloc_param_type(nullptr), at_file_scope),
    ROW(alloc_derivation_step(), at_file_scope),
    ROW(alloc_base_class_derivation(), at_file_scope),
    ROW(alloc_vcall_offset_entry(), at_file_scope),
    ROW(alloc_overriding_virtual_function(), at_file_scope),
    ROW(alloc_template_arg(tak_type), at_file_scope),
    ROW(alloc_base_class(nullptr), at_file_scope),
    ROW(alloc_list_entry_for_class(), at_file_scope),
    ROW(alloc_list_entry_for_routine(), at_file_scope),
    ROW(alloc_type(tk_pointer), at_file_scope),
    ROW(alloc_type(tk_integer)->variant.integer.integer_supplement, at_file_scope),
    ROW(alloc_type(tk_routine)->variant.routine.routine_supplement, at_file_scope),
    ROW(class_supplement_of(alloc_type(tk_class)), at_file_scope),
    ROW(alloc_type(tk_typeref)->variant.typeref.typeref_supplement, at_file_scope),
    ROW(alloc_variable_template_info(), at_file_scope),
    ROW(alloc_field(nullptr), at_file_scope),
    ROW(alloc_exception_specification(), at_file_scope),
    ROW(alloc_exception_specification_type(), at_file_scope),
    ROW(alloc_routine(), at_file_scope),
    ROW(alloc_gnu_supplement_for_routine(), at_file_scope),
    ROW(alloc_namespace(), at_file_scope),
    ROW(alloc_template_parameter(), at_file_scope),
    ROW(alloc_template_decl(), at_file_scope),
    ROW(alloc_template(), at_file_scope),
    ROW(alloc_macro(), at_file_scope),
    ROW(alloc_name_qualifier(), at_file_scope),
    ROW(alloc_name_reference(), at_file_scope),
    ROW(alloc_attribute(), at_file_scope),
    ROW(alloc_attribute_arg(), at_file_scope),
    ROW(alloc_attribute_group(), at_file_scope),
    ROW(alloc_decl_position_supplement(true), at_file_scope),
    ROW(alloc_variable(sc_none), at_file_scope),
    ROW(alloc_variable(sc_extern), at_file_scope),
    ROW(alloc_variable(sc_static), at_file_scope),
    ROW(fs_constant(con_integer), at_file_scope),
    ROW(local_constant(), at_file_scope),
    ROW(alloc_list_entry_for_class_full(nullptr), at_file_scope),
    ROW(alloc_based_type_list_member(btk_pointer, nullptr), at_file_scope),
    ROW(alloc_primary_file_scope_il(1), at_primary_file_scope),
    ROW(alloc_source_file(), at_primary_file_scope),
    ROW(alloc_seq_number_lookup_entry(), at_primary_file_scope),
    ROW(alloc_subobject_path(), in_current_region),
    ROW(alloc_constant(con_integer), in_current_region),
    ROW(alloc_dynamic_init(dik_none), in_current_region),
    ROW(alloc_vla_dimension(nullptr), in_current_region),
    ROW(alloc_asm_entry(), in_current_region),
    ROW(alloc_asm_operand(), in_current_region),
    ROW(alloc_named_register_list(), in_current_region),
    ROW(alloc_label_list(), in_current_region),
    ROW(alloc_label(), in_current_region),
    ROW(alloc_local_expr_node_ref(), in_current_region),
    ROW(alloc_expr_node(expr_error), in_current_region),
    ROW(alloc_switch_case_entry(), in_current_region),
    ROW(alloc_handler(), in_current_region),
    ROW(alloc_statement(stmk_null), in_current_region),
    ROW(alloc_ctor_init(), in_current_region),
    ROW(alloc_object_lifetime(olk_block), in_current_region),
    ROW(alloc_using_decl(), in_current_region),
    ROW(alloc_scope(sk_block, 9), in_current_region),
    ROW(alloc_local_scope_ref(), in_current_region),
    ROW(alloc_element_position(), in_current_region),
    ROW(alloc_lambda(), in_current_region),
    ROW(alloc_lambda_capture(), in_current_region),
    ROW(alloc_il_entity_list_entry(iek_none, nullptr), in_current_region),
    ROW(alloc_decl_position_supplement(false), in_current_region),
    ROW(alloc_variable(sc_auto), in_current_region),
    ROW(alloc_variable(sc_register), in_current_region),
    ROW(alloc_pragma(0, nullptr), in_current_region),
};
#undef ROW

bool lies_in_region(const void* entry, int32_t region) {
  const char* p = static_cast<const char*>(entry);
  for (const a_mem_block* block = mem_region_table[region]; block != nullptr; block = block->next)
    if (p >= block->first_byte && p < block->end)
      return true;
  return false;
}

void check_placements(const std::string& where) {
  for (const a_placement_row& row : placement_rows) {
    SCOPED_TRACE(where + ": " + row.name);
    bool is_local =
        row.placement == in_current_region && curr_il_region_number != file_scope_region_number;
    bool is_primary = row.placement == at_primary_file_scope || is_primary_translation_unit;
    int32_t region = is_local                                 ? curr_il_region_number
                     : row.placement == at_primary_file_scope ? 1
                                                              : file_scope_region_number;
    void* entry = row.allocate();
    EXPECT_TRUE(lies_in_region(entry, region));
    const an_il_entry_prefix& prefix = il_entry_prefix_of(entry);
    EXPECT_EQ(prefix.file_scope_entry, !is_local);
    EXPECT_EQ(prefix.secondary_trans_unit_entry, !is_primary);
    EXPECT_FALSE(prefix.visited_flag);
    EXPECT_TRUE(prefix.il_lowering_flag);
    EXPECT_FALSE(prefix.keep_in_il);
    if (is_local)
      continue;
    EXPECT_EQ(orphan_link_of(entry), nullptr);
    if (!is_primary) {
      EXPECT_EQ(trans_unit_corresp_link_of(entry), nullptr);
    }
  }
}

TEST_F(IL_ALLOC_TEST, AllocatorsPlaceTheirRecordsByTheTable) {
  initial_value_for_il_lowering_flag = 1;
  check_placements("primary file scope");
  make_routine_with_body();
  check_placements("primary function");
  is_primary_translation_unit = 0;
  compute_il_prefix_size();
  mem_manage_trans_unit_init();
  il_alloc_trans_unit_init();
  to_file_scope();
  check_placements("secondary file scope");
  make_routine_with_body();
  check_placements("secondary function");
  initial_value_for_il_lowering_flag = 0;
}

TEST_F(IL_ALLOC_TEST, RecordsFollowTheirOwners) {
  a_type* primary_owner = alloc_type(tk_struct);
  is_primary_translation_unit = 0;
  compute_il_prefix_size();
  mem_manage_trans_unit_init();
  to_file_scope();
  a_type* secondary_owner = alloc_type(tk_struct);
  make_routine_with_body();
  a_label* local_owner = alloc_label();
  struct {
    const a_source_correspondence* owner;
    int32_t region;
    bool is_secondary;
  } cases[] = {{&primary_owner->source_corresp, 1, false},
               {&secondary_owner->source_corresp, file_scope_region_number, true},
               {&local_owner->source_corresp, curr_il_region_number, true}};
  for (auto& c : cases)
    for (void* entry : std::initializer_list<void*>{
             alloc_list_entry_for_class_full(c.owner),
             alloc_based_type_list_member(btk_pointer, c.owner), alloc_pragma(0, c.owner)}) {
      EXPECT_TRUE(lies_in_region(entry, c.region));
      EXPECT_EQ(il_entry_prefix_of(entry).secondary_trans_unit_entry, c.is_secondary);
    }
  EXPECT_FALSE(is_primary_translation_unit); // as before
  char* first = static_cast<char*>(alloc_il(8));
  EXPECT_EQ(static_cast<char*>(alloc_il(8)) - first, 32);
}

TEST_F(IL_ALLOC_TEST, PragmasKnowTheirRecordInTheFile) {
  struct {
    uint8_t kind;
    uint8_t tool_kind;
    a_pragma_place placement;
  } cases[] = {{11, 0, placed_at_symbol},       {28, 12, placed_at_symbol},
               {35, 88, placed_at_symbol},      {63, 37, placed_at_statement},
               {81, 83, placed_at_symbol},      {98, 98, placed_at_file},
               {104, 115, placed_at_symbol},    {92, 118, placed_at_file},
               {112, 127, placed_at_statement}, {114, 128, placed_at_statement}};
  for (auto& c : cases) {
    a_pragma* pragma = alloc_pragma(c.kind, nullptr);
    EXPECT_EQ(pragma->kind, c.kind);
    EXPECT_EQ(pragma->tool_kind, c.tool_kind) << int{c.kind};
    EXPECT_EQ(pragma->placement, c.placement) << int{c.kind};
  }
}

TEST_F(IL_ALLOC_TEST, PragmasAreListedAndMarkTheirOwners) {
  a_type* owner = alloc_type(tk_struct);
  a_scope* class_scope = alloc_scope(sk_class, 5);
  class_scope->assoc.type = owner;
  a_type* member = alloc_type(tk_struct);
  set_parent_scope(&member->source_corresp, iek_type, class_scope);
  a_pragma* first = alloc_pragma(63, nullptr);
  a_pragma* second = alloc_pragma(63, nullptr);
  a_pragma* of_member = alloc_pragma(63, nullptr);
  add_to_pragma_list(first, il_header.primary_scope, &owner->source_corresp);
  add_to_pragma_list(second, nullptr, nullptr);
  add_to_pragma_list(of_member, nullptr, &member->source_corresp);
  EXPECT_EQ(il_header.primary_scope->pragmas, first);
  EXPECT_EQ(first->next, second);
  EXPECT_EQ(second->next, nullptr);
  EXPECT_EQ(class_scope->pragmas, of_member);
  EXPECT_TRUE(owner->source_corresp.has_associated_pragma);
  EXPECT_TRUE(member->source_corresp.has_associated_pragma);
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
  EXPECT_EQ(type->source_corresp.position.seq, 0u);
  a_routine_type_supplement* routine_info =
      alloc_type(tk_routine)->variant.routine.routine_supplement;
  EXPECT_EQ(routine_info->param_count_info, 65535);
  EXPECT_EQ(routine_info->name_linkage, default_routine_name_linkage);
  EXPECT_EQ(alloc_type(tk_typeref)->variant.typeref.typeref_supplement->index, -1);
  EXPECT_EQ(alloc_gnu_supplement_for_routine()->constructor_priority, -1);
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

TEST_F(IL_ALLOC_TEST, TemporariesOfOneUnitAreNotUsedInAnother) {
  trans_unit_init();
  enter_translation_unit(alloc_translation_unit(nullptr));
  a_translation_unit* primary = curr_translation_unit;
  a_constant* constant = local_constant();
  a_constant* pointer = constant;
  release_local_constant(&pointer);
  save_curr_translation_unit();
  is_primary_translation_unit = 0;
  compute_il_prefix_size();
  mem_manage_trans_unit_init();
  il_alloc_trans_unit_init();
  enter_translation_unit(alloc_translation_unit(nullptr));
  EXPECT_NE(local_constant(), constant);
  // The prefixes are those of the unit that is current.
  switch_translation_unit(primary);
  char* entry = static_cast<char*>(alloc_il(8));
  EXPECT_EQ(static_cast<char*>(alloc_il(8)) - entry, 24);
  EXPECT_EQ(local_constant(), constant);
  EXPECT_FALSE(il_entry_prefix_of(constant).secondary_trans_unit_entry);
}

TEST_F(IL_ALLOC_TEST, ExpressionsOfAFunctionLeaveFileScopeConstants) {
  a_routine* routine = make_routine_with_body();
  innermost_function_scope = scope_for_routine(routine);
  an_expr_node* local = alloc_expr_node(expr_error);
  a_constant* plain = fs_constant(con_integer);
  plain->source_expr = local;
  fix_memory_region_problems_in_copied_constant(plain);
  EXPECT_EQ(plain->source_expr, nullptr);
  EXPECT_FALSE(plain->has_local_expr_node_ref);
  a_constant* dependent = fs_constant(con_template_param);
  set_template_param_constant_kind(dependent, tpck_expression);
  dependent->value.template_param.param_data.expr = local;
  fix_memory_region_problems_in_copied_constant(dependent);
  EXPECT_EQ(dependent->value.template_param.param_data.expr, nullptr);
  EXPECT_TRUE(dependent->has_local_expr_node_ref);
  EXPECT_EQ(find_local_expr_node(dependent, lek_constant_param_expr, routine), local);
  EXPECT_EQ(find_local_expr_node(dependent, lek_constant_backing_expr, routine), nullptr);
  // A constant of the function itself may point there.
  a_constant* in_function = alloc_constant(con_integer);
  in_function->source_expr = local;
  fix_memory_region_problems_in_copied_constant(in_function);
  EXPECT_EQ(in_function->source_expr, local);
  innermost_function_scope = nullptr;
}

TEST_F(IL_ALLOC_TEST, CopiesAreMadeIndependentOfTheirDeclaration) {
  a_source_correspondence full;
  memset(static_cast<void*>(&full), 0xff, sizeof full);
  a_source_correspondence head = full;
  break_source_corresp(&head);
  for (const void* pointer :
       {static_cast<const void*>(head.symbol), static_cast<const void*>(head.name),
        static_cast<const void*>(head.source_name),
        static_cast<const void*>(head.trans_unit_corresp),
        static_cast<const void*>(head.parent_scope),
        static_cast<const void*>(head.decl_position_supplement),
        static_cast<const void*>(head.name_reference),
        static_cast<const void*>(head.template_entity)})
    EXPECT_EQ(pointer, nullptr);
  EXPECT_EQ(head.external_name_id, 0u);
  EXPECT_EQ(head.enclosing_routine, full.enclosing_routine);
  EXPECT_EQ(head.attributes, full.attributes);
  uint32_t flags;
  memcpy(&flags, reinterpret_cast<char*>(&head.name_reference) + sizeof(void*), sizeof flags);
  EXPECT_EQ(~flags & 0xffff, 0x3e0bu); // bits 0, 1, 3 and 9 to 13
  a_source_correspondence instance = full;
  break_instance_source_corresp(&instance);
  EXPECT_EQ(instance.name, full.name);
  EXPECT_EQ(instance.name_reference, nullptr);
  EXPECT_EQ(instance.decl_position_supplement, nullptr);
  EXPECT_FALSE(instance.needed);
  EXPECT_TRUE(instance.is_class_member);
}

TEST_F(IL_ALLOC_TEST, OnlyNamedKindsHaveTheCommonHead) {
  a_type* entry = alloc_type(tk_struct);
  std::set<int> with_head;
  for (int kind = 0; kind <= last_il_entry_kind; kind++)
    if (source_corresp_for_il_entry(entry, static_cast<an_il_entry_kind>(kind)) != nullptr)
      with_head.insert(kind);
  EXPECT_EQ(with_head, (std::set<int>{2, 6, 7, 8, 11, 12, 28, 43, 53, 54, 58}));
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

} // namespace
