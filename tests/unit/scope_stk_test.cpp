#include "front_end_fixture.h"
#include "pragma.h"
#include "symbol_ref.h"

namespace {

class ScopeStack : public FrontEnd {
protected:
  void open_function(const char* name) {
    routine = enter_function(name);
    push_function_scope(routine);
    function_scope = innermost_function_scope;
  }

  a_routine* routine = nullptr;
  a_scope* function_scope = nullptr;
};

TEST_F(ScopeStack, FunctionHasARegionUntilItIsClosed) {
  const int32_t file_region = curr_il_region_number;
  EXPECT_EQ(file_region, file_scope_region_number);
  open_function("f");
  EXPECT_EQ(depth_innermost_function_scope, 1);
  EXPECT_EQ(decl_scope_level, 1);
  EXPECT_NE(curr_il_region_number, file_region);
  EXPECT_EQ(curr_il_region_number, routine->region_number);
  EXPECT_EQ(function_scope->parent, il_header.primary_scope);
  EXPECT_EQ(function_scope->scope_stack_depth, 1);
  EXPECT_FALSE(routine->defined);
  pop_scope();
  EXPECT_TRUE(routine->defined);
  EXPECT_EQ(function_scope->scope_stack_depth, -1);
  EXPECT_EQ(curr_il_region_number, file_region);
  EXPECT_EQ(innermost_function_scope, nullptr);
  EXPECT_EQ(depth_innermost_function_scope, -1);
  EXPECT_EQ(scope_for_routine(routine), function_scope);
}

TEST_F(ScopeStack, BlocksGetAnIlScopeOnDemandOuterFirst) {
  open_function("f");
  push_block_scope(nullptr);
  pop_scope();
  EXPECT_EQ(function_scope->first_nested, nullptr);

  push_block_scope(nullptr);
  push_block_scope(nullptr);
  push_block_scope(nullptr);
  a_scope* inner = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(ensure_il_scope_exists(&scope_stack[depth_scope_stack]), inner);
  a_scope* outer = function_scope->first_nested;
  ASSERT_NE(outer, nullptr);
  EXPECT_EQ(outer->parent, function_scope);
  EXPECT_EQ(outer->first_nested->first_nested, inner);
  EXPECT_FALSE(is_file_scope_entry(inner));
  pop_scope();
  push_block_scope(nullptr);
  a_scope* sibling = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  EXPECT_EQ(inner->next, sibling);
  EXPECT_EQ(sibling->parent, inner->parent);
  pop_scope();
  pop_scope();
  pop_scope();
  pop_scope();
  EXPECT_EQ(inner->scope_stack_depth, -1);
}

TEST_F(ScopeStack, DeepNestingMovesTheStack) {
  open_function("f");
  a_symbol* parameter = enter_variable("p", sc_auto, 1);
  parameter->referenced = true;
  for (int i = 0; i < 500; ++i)
    push_block_scope(nullptr);
  EXPECT_EQ(depth_scope_stack, 501);
  EXPECT_EQ(scope_depth_of_symbol(parameter, nullptr), 1);
  EXPECT_EQ(scope_stack[300].parent_depth, 299);
  a_scope* scope = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  int levels = 0;
  for (; scope != function_scope; scope = scope->parent)
    ++levels;
  EXPECT_EQ(levels, 500);
  EXPECT_EQ(look_up("p"), parameter);
  for (int i = 0; i < 501; ++i)
    pop_scope();
  EXPECT_EQ(depth_scope_stack, 0);
  EXPECT_EQ(decl_scope_level, 0);
}

TEST_F(ScopeStack, TagInAPrototypeBelongsToItsScope) {
  open_function("f");
  a_type* routine_type = make_routine_type(integer_type(ik_int));
  push_block_scope(nullptr);
  push_scope(sk_function_prototype, -1, routine_type, nullptr);
  EXPECT_EQ(curr_il_region_number, file_scope_region_number);
  a_scope* prototype = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  EXPECT_EQ(prototype->kind, sk_function_prototype);
  EXPECT_TRUE(is_file_scope_entry(prototype));
  EXPECT_EQ(routine_type->variant.routine.routine_supplement->prototype_scope, prototype);
  // The block around it lies in the function's region.
  EXPECT_EQ(prototype->parent, nullptr);
  EXPECT_EQ(find_local_scope(prototype, iek_scope, routine), function_scope->first_nested);
  pop_scope();
  EXPECT_EQ(curr_il_region_number, routine->region_number);
}

TEST_F(ScopeStack, NamesGoWithTheirScope) {
  open_function("f");
  a_scope_pointers_block block;
  push_block_scope(&block);
  a_scope* scope = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  a_symbol* x = enter_variable("x", sc_auto, depth_scope_stack);
  x->referenced = true;
  const int32_t number = scope_stack[depth_scope_stack].number;
  pop_scope();
  EXPECT_EQ(look_up("x"), nullptr);
  push_block_reactivation_scope(scope, &block);
  EXPECT_EQ(scope_stack[depth_scope_stack].number, number);
  EXPECT_EQ(look_up("x"), x);
  EXPECT_EQ(look_up_here("x"), x);
  pop_scope();
  EXPECT_EQ(look_up("x"), nullptr);
}

TEST_F(ScopeStack, ReportsWhatWasNotUsed) {
  open_function("f");
  enter_variable("never_named", sc_auto, 1);
  a_symbol* set = enter_variable("only_set", sc_auto, 1);
  set->referenced = true;
  mark_variable_value_set(set);
  a_symbol* used = enter_variable("well_used", sc_auto, 1);
  used->referenced = true;
  mark_variable_value_set(used);
  mark_variable_value_used(used);
  a_symbol* label = enter(symk_label, "lost", 1);
  label->variant.label = alloc_label();
  label->referenced = true;
  set_source_corresp(&label->variant.label->source_corresp, label);
  pop_scope();
  EXPECT_EQ(total_warnings, 2u);
  EXPECT_EQ(total_errors, 1u);
  const std::string text = messages();
  EXPECT_NE(text.find("never_named"), std::string::npos);
  EXPECT_NE(text.find("only_set"), std::string::npos);
  EXPECT_NE(text.find("lost"), std::string::npos);
  EXPECT_EQ(text.find("well_used"), std::string::npos);
}

TEST_F(ScopeStack, FileScopeJudgesStaticsOnce) {
  a_routine* unused = enter_function("unused_static");
  unused->source_corresp.linkage = idl_internal;
  unused->defined = true;
  a_routine* missing = enter_function("missing_static");
  missing->source_corresp.linkage = idl_internal;
  missing->source_corresp.referenced = true;
  enter_function("called_elsewhere");
  pop_scope();
  EXPECT_EQ(total_warnings, 1u);
  EXPECT_EQ(total_errors, 1u);
  push_file_scope(true);
  pop_scope();
  EXPECT_EQ(total_warnings, 1u);
  EXPECT_EQ(total_errors, 1u);
}

TEST_F(ScopeStack, InlineDefinitionsAreJudgedAtTheEnd) {
  a_routine* inline_definition = enter_function("f");
  inline_definition->is_inline = true;
  inline_definition->defined = true;
  a_routine* made_extern = enter_function("g");
  made_extern->is_inline = true;
  made_extern->defined = true;
  const a_source_position position = {1, 5, 0};
  check_c99_inline_definition(inline_definition, &position, true);
  check_c99_inline_definition(made_extern, &position, false);
  // A later declaration makes it an external definition.
  made_extern->has_external_declaration = true;
  pop_scope();
  EXPECT_EQ(total_errors, 1u);
  EXPECT_NE(messages().find("static storage duration"), std::string::npos);
}

TEST_F(ScopeStack, ForInitNamesAreRemembered) {
  for_init_diff_warning = 1;
  a_symbol* outer = enter_variable("i", sc_extern, 0);
  open_function("f");
  push_for_init_scope(nullptr);
  a_symbol* inner = enter_variable("i", sc_auto, depth_scope_stack);
  inner->referenced = true;
  EXPECT_EQ(look_up("i"), inner);
  pop_scope();
  EXPECT_EQ(look_up("i"), outer);
  const a_source_position position = {1, 1, 0};
  report_for_init_difference(outer, &position);
  EXPECT_EQ(total_warnings, 1u);
  pop_scope();
  report_for_init_difference(outer, &position);
  EXPECT_EQ(total_warnings, 1u);
}

TEST_F(ScopeStack, NamespaceKeepsItsNumberAndItsNames) {
  restart_in_cplusplus();
  a_symbol* symbol = enter(symk_namespace, "n");
  a_namespace* n = alloc_namespace();
  symbol->variant.namespace_entry = n;
  set_source_corresp(&n->source_corresp, symbol);
  push_namespace_scope(n);
  const int32_t number = scope_stack[depth_scope_stack].number;
  a_symbol* first = enter(symk_class_or_struct, "first");
  pop_namespace_scope();
  EXPECT_EQ(look_up("first"), nullptr);
  f_push_namespace_extension_scope(n);
  EXPECT_EQ(scope_stack[depth_scope_stack].number, number);
  EXPECT_EQ(look_up("first"), first);
  a_symbol* second = enter(symk_class_or_struct, "second");
  EXPECT_EQ(second->header->first_symbol, nullptr);
  EXPECT_EQ(second->header->first_inactive_symbol, second);
  EXPECT_EQ(look_up("second"), second);
  pop_namespace_scope();
  EXPECT_EQ(look_up("second"), nullptr);
  a_symbol_locator locator = locator_for("second");
  EXPECT_EQ(namespace_qualified_id_lookup(&locator, n, ilo_none), second);
}

TEST_F(ScopeStack, LocalClassSharesTheRegionOfItsFunction) {
  restart_in_cplusplus();
  open_function("f");
  a_symbol* tag = enter(symk_class_or_struct, "local");
  a_type* type = alloc_type(tk_struct);
  tag->variant.type = type;
  set_source_corresp(&type->source_corresp, tag);
  set_parent_scope(&type->source_corresp, iek_type, innermost_function_scope);
  push_class_scope(type);
  EXPECT_TRUE(inside_local_class);
  EXPECT_EQ(num_classes_on_scope_stack, 1);
  a_symbol* name = enter(symk_member_function, "member");
  a_routine* member = alloc_routine();
  member->type = make_routine_type(integer_type(ik_int));
  name->variant.routine = member;
  set_source_corresp(&member->source_corresp, name);
  set_class_membership(name, &member->source_corresp, type);
  push_function_scope(member);
  EXPECT_EQ(member->region_number, routine->region_number);
  EXPECT_FALSE(member->owns_region);
  EXPECT_FALSE(inside_local_class);
  pop_scope();
  EXPECT_TRUE(inside_local_class);
  pop_scope();
  EXPECT_EQ(num_classes_on_scope_stack, 0);
  EXPECT_EQ(innermost_function_scope, function_scope);
  pop_scope();
}

TEST_F(ScopeStack, ClassesAreOpenedAgainInTheirScopes) {
  restart_in_cplusplus();
  a_symbol* space = enter(symk_namespace, "n");
  a_namespace* n = alloc_namespace();
  space->variant.namespace_entry = n;
  set_source_corresp(&n->source_corresp, space);
  push_namespace_scope(n);
  a_symbol* in_namespace = enter(symk_class_or_struct, "in_namespace");
  a_type* types[2];
  for (a_type*& type : types) {
    a_symbol* tag = enter(symk_class_or_struct, &type == types ? "Outer" : "Inner");
    type = alloc_type(tk_class);
    tag->variant.type = type;
    set_source_corresp(&type->source_corresp, tag);
    if (&type == types)
      set_namespace_membership(tag, &type->source_corresp, n);
    else
      set_class_membership(tag, &type->source_corresp, types[0]);
    push_class_scope(type);
  }
  a_symbol* member = enter(symk_class_or_struct, "member");
  pop_scope();
  pop_scope();
  const int32_t number = scope_of_namespace(n)->scope_number;
  pop_namespace_scope();

  // From a function, whose names are out of sight.
  open_function("f");
  enter_variable("local", sc_auto, depth_scope_stack)->referenced = true;
  push_class_and_template_reactivation_scope(types[1]);
  EXPECT_EQ(depth_scope_stack, 4);
  EXPECT_EQ(num_classes_on_scope_stack, 2);
  EXPECT_EQ(depth_innermost_function_scope, -1);
  EXPECT_EQ(scope_of_namespace(n)->scope_stack_depth, 2);
  EXPECT_EQ(scope_stack[2].number, number);
  EXPECT_EQ(look_up("member"), member);
  EXPECT_EQ(look_up_here("member"), member);
  EXPECT_EQ(look_up("in_namespace"), in_namespace);
  // Inside, only what isn't open is opened; the namespace stays open behind it.
  push_class_and_template_reactivation_scope(types[1]);
  EXPECT_EQ(depth_scope_stack, 5);
  pop_class_reactivation_scope();
  EXPECT_EQ(depth_scope_stack, 4);
  EXPECT_EQ(class_supplement_of(types[1])->scope->scope_stack_depth, 4);
  pop_class_reactivation_scope();
  EXPECT_EQ(depth_scope_stack, 1);
  EXPECT_EQ(innermost_function_scope, function_scope);
  EXPECT_EQ(look_up("member"), nullptr);
  pop_scope();
}

TEST_F(ScopeStack, TemplateScopesReportUnexpandedPacks) {
  restart_in_cplusplus();
  push_scope(sk_template_declaration, -1, nullptr, nullptr);
  a_symbol* pack = enter(symk_type, "Types", depth_scope_stack);
  const a_source_position position = {1, 9, 0};
  record_unexpanded_pack(pack, &position);
  forget_unexpanded_packs();
  record_unexpanded_pack(pack, &position);
  pop_scope();
  EXPECT_EQ(total_errors, 1u);
  EXPECT_NE(messages().find("parameter pack \"Types\" was referenced but not expanded"),
            std::string::npos);
}

TEST_F(ScopeStack, PragmasEndWithTheirScope) {
  restart_in_cplusplus();
  pragma_init();
  a_pragma_kind_description of_construct = {};
  of_construct.binding = pragma_binds_to_construct;
  of_construct.misplaced_severity = es_warning;
  open_function("f");
  push_block_scope(nullptr);
  a_scope_stack_entry* entry = &scope_stack[depth_scope_stack];
  entry->construct_pragmas = alloc_pending_pragma(&of_construct);
  pop_scope();
  EXPECT_EQ(total_warnings, 1u);
  EXPECT_NE(messages().find("may not be used here"), std::string::npos);
  EXPECT_EQ(messages().find("INTERNAL ERROR"), std::string::npos);
  scope_stack[depth_scope_stack].pending_pragmas = alloc_pending_pragma(&of_construct);
  pop_scope();
  EXPECT_NE(messages().find("INTERNAL ERROR!  Cannot process pragma!\n"), std::string::npos);
}

TEST_F(ScopeStack, PrototypesOfParametersFollowTheFunctions) {
  a_type* outer_type = make_routine_type(integer_type(ik_int));
  a_type* inner_type = make_routine_type(integer_type(ik_int));
  push_scope(sk_function_prototype, -1, outer_type, nullptr);
  push_scope(sk_function_prototype, -1, inner_type, nullptr);
  a_scope* inner = ensure_il_scope_exists(&scope_stack[depth_scope_stack]);
  a_scope* outer = outer_type->variant.routine.routine_supplement->prototype_scope;
  ASSERT_NE(outer, nullptr);
  EXPECT_EQ(outer->next, inner);
  EXPECT_EQ(inner->parent, outer);
  EXPECT_EQ(outer->parent, il_header.primary_scope);
  pop_scope();
  pop_scope();
}

TEST_F(ScopeStack, LinkageOfNewFunctionTypesNests) {
  const uint8_t at_start = default_routine_name_linkage;
  push_name_linkage(nlk_c);
  push_name_linkage(nlk_cplusplus);
  EXPECT_EQ(default_routine_name_linkage, nlk_cplusplus);
  pop_name_linkage();
  EXPECT_EQ(default_routine_name_linkage, nlk_c);
  pop_name_linkage();
  EXPECT_EQ(default_routine_name_linkage, at_start);
}

} // namespace
