#include "front_end_fixture.h"

namespace {

class SymbolTable : public FrontEnd {};

uint32_t running_hash(const char* text) {
  uint32_t hash = 0;
  for (const char* p = text; *p != '\0'; ++p)
    hash = symbol_hash_step(hash, *p);
  return hash;
}

TEST_F(SymbolTable, HashSamplesNineCharactersOfLongNames) {
  EXPECT_EQ(hash_of_symbol_text("ab", 2), uint32_t{'b'} + uint32_t{'a'} * 73u);
  // The middle of ten characters is at 4 to 6: 3 is not looked at.
  EXPECT_EQ(hash_of_symbol_text("abcdefghij", 10), hash_of_symbol_text("abcXefghij", 10));
  for (int sampled : {0, 1, 2, 4, 5, 6, 7, 8, 9}) {
    std::string changed = "abcdefghij";
    changed[static_cast<size_t>(sampled)] = 'X';
    EXPECT_NE(hash_of_symbol_text("abcdefghij", 10), hash_of_symbol_text(changed.c_str(), 10))
        << sampled;
  }
  // Bytes are signed characters.
  EXPECT_EQ(hash_of_symbol_text("\xff", 1), 0xffffffffu);
  for (const char* name : {"a", "main", "nine_char", "ten_chars_", "a_name_of_many_characters"})
    EXPECT_EQ(finish_symbol_hash(running_hash(name), name, strlen(name)),
              hash_of_symbol_text(name, strlen(name)));
}

TEST_F(SymbolTable, InternsEachSpellingOnce) {
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header("counter_xx", 7, &locator);
  EXPECT_STREQ(header->identifier, "counter");
  EXPECT_EQ(header->length, 7u);
  EXPECT_EQ(find_symbol_header("counter", 0, &locator), header);
  EXPECT_EQ(locator.header, header);
  EXPECT_EQ(find_symbol("counter", 0, &locator), nullptr);
  // Two names in one bucket, told apart by an unsampled character, survive the
  // moves to the front.
  a_symbol_header* first = find_symbol_header("abcdefghij", 10, &locator);
  a_symbol_header* second = find_symbol_header("abcXefghij", 10, &locator);
  ASSERT_NE(first, second);
  EXPECT_EQ(first->hash, second->hash);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(find_symbol_header("abcdefghij", 10, &locator), first);
    EXPECT_EQ(find_symbol_header("abcXefghij", 10, &locator), second);
  }
  for (int i = 0; i < 50000; ++i)
    find_symbol_header(("n" + std::to_string(i)).c_str(), 0, &locator);
  EXPECT_EQ(find_symbol_header("abcdefghij", 10, &locator), first);
}

TEST_F(SymbolTable, NameSpacesOfCAreApart) {
  a_symbol* tag = enter(symk_class_or_struct, "s");
  a_symbol* variable = enter(symk_variable, "s");
  a_symbol* field = enter(symk_field, "s");
  a_symbol* label = enter(symk_label, "s");
  EXPECT_EQ(look_up("s"), variable);
  EXPECT_EQ(look_up("s", ilo_tag), tag);
  EXPECT_EQ(look_up_here("s"), variable);
  EXPECT_EQ(look_up_here("s", ilo_tag), tag);
  a_symbol_header* header = variable->header;
  EXPECT_EQ(find_label_symbol(header), label);
  EXPECT_EQ(find_macro_symbol(header), nullptr);
  remove_symbol(variable);
  EXPECT_EQ(look_up("s"), nullptr);
  EXPECT_EQ(look_up_here("s"), nullptr);
  EXPECT_EQ(look_up("s", ilo_tag), tag);
  EXPECT_NE(field, nullptr);
}

TEST_F(SymbolTable, TagsOfCplusplusGiveWayToOtherNames) {
  restart_in_cplusplus();
  for (bool tag_first : {true, false}) {
    const char* name = tag_first ? "s" : "t";
    a_symbol* tag = nullptr;
    if (tag_first)
      tag = enter(symk_class_or_struct, name);
    a_symbol* routine = enter(symk_routine, name);
    if (!tag_first)
      tag = enter(symk_class_or_struct, name);
    EXPECT_EQ(look_up(name), routine);
    EXPECT_EQ(look_up(name, ilo_tag), tag);
    EXPECT_EQ(look_up_here(name), routine);
    EXPECT_EQ(look_up_here(name, ilo_tag), tag);
  }
}

TEST_F(SymbolTable, InnerScopesHideOuterOnes) {
  a_symbol* outer = enter(symk_variable, "x");
  push_block_scope(nullptr);
  EXPECT_EQ(look_up("x"), outer);
  EXPECT_EQ(look_up_here("x"), nullptr);
  a_symbol* middle = enter(symk_variable, "x");
  push_block_scope(nullptr);
  a_symbol* inner = enter(symk_variable, "x");
  EXPECT_EQ(look_up("x"), inner);
  // A declaration for the outermost scope goes behind all of them.
  a_symbol* function = enter(symk_routine, "x", 0);
  EXPECT_EQ(look_up("x"), inner);
  pop_scope();
  EXPECT_EQ(look_up("x"), middle);
  pop_scope();
  EXPECT_EQ(look_up("x"), function);
}

TEST_F(SymbolTable, LocatorsSettleALookup) {
  a_symbol* x = enter(symk_variable, "x");
  a_symbol* y = enter(symk_variable, "y");
  a_symbol_locator locator = locator_for("x");
  EXPECT_EQ(normal_id_lookup(&locator, ilo_none), x);
  EXPECT_EQ(locator.symbol, x);
  locator.symbol = y;
  EXPECT_EQ(normal_id_lookup(&locator, ilo_none), y);
  set_to_error_locator(&locator);
  EXPECT_EQ(normal_id_lookup(&locator, ilo_none), nullptr);
  EXPECT_EQ(curr_scope_id_lookup(&locator, ilo_none), nullptr);
  // A symbol made from a bad name is usable but never found.
  a_symbol* bad = enter_symbol(symk_variable, &locator, 0, nullptr);
  EXPECT_TRUE(bad->not_in_lookup);
  EXPECT_EQ(look_up("x"), x);
  a_symbol_locator empty = cleared_locator;
  EXPECT_STREQ(make_symbol(symk_variable, &empty)->header->identifier, "<error>");
}

TEST_F(SymbolTable, UnknownNamesAreReportedOnce) {
  a_symbol_locator locator = locator_for("nowhere");
  reference_to_invalid_name(&locator);
  reference_to_invalid_name(&locator);
  EXPECT_EQ(total_errors, 1u);
  EXPECT_NE(messages().find("nowhere"), std::string::npos);
}

TEST_F(SymbolTable, UndefinedNamesGiveWayToDeclarations) {
  restart_in_cplusplus();
  for (a_symbol_kind kind : {symk_variable, symk_class_or_struct}) {
    const char* name = symbol_kind_names[kind];
    a_symbol* undefined = enter(symk_undefined, name);
    EXPECT_EQ(look_up(name), undefined);
    EXPECT_EQ(look_up_here(name), nullptr);
    a_symbol* declared = enter(kind, name);
    EXPECT_EQ(look_up(name), declared);
    EXPECT_EQ(look_up_here(name), declared);
    // The same by the table of the scope.
    a_symbol_locator locator = locator_for(name);
    EXPECT_EQ(normal_id_lookup(&locator, ilo_exclude_block_scopes), declared);
  }
}

TEST_F(SymbolTable, KeywordsAndMacrosLeadTheChain) {
  enter_keyword(98, "restrict");
  enter_keyword(99, "restrict");
  a_symbol_locator locator = locator_for("restrict");
  ASSERT_NE(find_keyword_symbol(locator.header), nullptr);
  EXPECT_EQ(find_keyword_symbol(locator.header)->variant.token_kind, 99u);
  EXPECT_EQ(look_up("restrict"), nullptr);

  push_block_scope(nullptr);
  a_symbol* local = enter(symk_variable, "m");
  locator = locator_for("m");
  a_symbol* macro = enter_macro_symbol(locator.header, nullptr, &null_source_position);
  // An outer declaration made while the macro leads the chain stays outside.
  a_symbol* global = enter(symk_routine, "m", 0);
  EXPECT_EQ(find_macro_symbol(locator.header), macro);
  EXPECT_EQ(look_up("m"), local);
  remove_macro_symbol(macro);
  EXPECT_EQ(find_macro_symbol(locator.header), nullptr);
  EXPECT_EQ(look_up("m"), local);
  pop_scope();
  EXPECT_EQ(look_up("m"), global);
}

TEST_F(SymbolTable, BlockExternsAreKeptApart) {
  push_block_scope(nullptr);
  a_symbol_locator locator = locator_for("e");
  a_symbol* block_extern = enter_extern_symbol(symk_extern_variable, &locator);
  EXPECT_EQ(look_up("e"), nullptr);
  EXPECT_EQ(find_extern_symbol(locator.header), block_extern);
  pop_scope();
  EXPECT_EQ(find_extern_symbol(locator.header), block_extern);
  EXPECT_EQ(symbols_with_no_scope, block_extern);
}

TEST_F(SymbolTable, OverloadSetTakesThePlaceOfItsFirstMember) {
  restart_in_cplusplus();
  a_symbol* before = enter(symk_variable, "before");
  a_symbol* f1 = enter(symk_routine, "f");
  a_symbol* after = enter(symk_variable, "after");
  a_symbol_locator locator = locator_for("f");
  a_symbol* f2 = make_symbol(symk_routine, &locator);
  a_symbol* set = add_symbol_to_overload_list(f1, f2);
  EXPECT_EQ(set->kind, symk_overloaded_function);
  EXPECT_EQ(set->decl_seq, f1->decl_seq);
  EXPECT_EQ(look_up("f"), set);
  EXPECT_EQ(look_up_here("f"), set);
  EXPECT_EQ(before->next_in_scope, set);
  EXPECT_EQ(set->next_in_scope, after);
  locator = locator_for("f");
  a_symbol* f3 = make_symbol(symk_routine, &locator);
  EXPECT_EQ(add_symbol_to_overload_list(set, f3), set);
  EXPECT_EQ(set->variant.overload_list, f1);
  EXPECT_EQ(f1->next_homonym, f2);
  EXPECT_EQ(f2->next_homonym, f3);
  remove_symbol_from_overload_set(f1, set);
  EXPECT_EQ(look_up("f"), set);
  remove_symbol(f3);
  EXPECT_EQ(look_up("f"), f2);
  EXPECT_EQ(look_up_here("f"), f2);
  EXPECT_EQ(f2->prev_in_scope, before);
}

TEST_F(SymbolTable, MembersMayNotBearTheNameOfTheirClass) {
  restart_in_cplusplus();
  a_symbol* tag = enter(symk_class_or_struct, "S");
  a_type* type = alloc_type(tk_struct);
  tag->variant.type = type;
  set_source_corresp(&type->source_corresp, tag);
  push_class_scope(type);
  a_symbol_locator locator = locator_for("S");
  bool flag = false;
  a_symbol* member = enter_symbol(symk_static_data_member, &locator, depth_scope_stack, &flag);
  EXPECT_TRUE(flag);
  EXPECT_TRUE(member->not_in_lookup);
  EXPECT_EQ(look_up("S"), tag);
  locator = locator_for("S");
  enter_symbol(symk_member_function, &locator, depth_scope_stack, &flag);
  EXPECT_EQ(total_errors, 2u);
  EXPECT_NE(messages().find("must be a constructor"), std::string::npos);
  pop_scope();
}

TEST_F(SymbolTable, FieldsAreFoundThroughTheirClass) {
  a_symbol* tag = enter(symk_class_or_struct, "point");
  a_type* type = alloc_type(tk_struct);
  tag->variant.type = type;
  set_source_corresp(&type->source_corresp, tag);
  push_class_scope(type);
  std::vector<a_symbol*> fields;
  for (int i = 0; i < 200; ++i)
    fields.push_back(enter(symk_field, ("field" + std::to_string(i)).c_str()));
  // In C a class is no scope for tags.
  EXPECT_EQ(decl_level_of_tags(), 0);
  pop_scope();
  for (int i = 0; i < 200; ++i) {
    a_symbol_locator locator = locator_for(("field" + std::to_string(i)).c_str());
    EXPECT_EQ(class_qualified_id_lookup(&locator, type, ilo_none), fields[static_cast<size_t>(i)]);
  }
  a_symbol_locator locator = locator_for("field200");
  EXPECT_EQ(class_qualified_id_lookup(&locator, type, ilo_none), nullptr);
  EXPECT_EQ(look_up("field0"), nullptr);
}

TEST_F(SymbolTable, HashTablesGrowAndKeepTheirEntries) {
  for (int32_t region : {front_end_region, general_memory}) {
    a_hash_table* table = alloc_hash_table(region, 5, fpi_hash_symbol_header_lookup_entry,
                                           fpi_compare_symbol_header_lookup_entry);
    EXPECT_EQ(table->size, 5u);
    std::vector<a_symbol_header*> keys;
    for (int i = 0; i < 1000; ++i)
      keys.push_back(locator_for(("key" + std::to_string(i)).c_str()).header);
    for (a_symbol_header* key : keys)
      hash_find(table, key, true);
    EXPECT_EQ(table->entries, 1000u);
    EXPECT_GE(table->size, 1000u);
    for (a_symbol_header* key : keys) {
      a_hash_table_entry* entry = hash_find(table, key, false);
      ASSERT_NE(entry, nullptr);
      EXPECT_EQ(entry->key, key);
      EXPECT_EQ(hash_find(table, key, true), entry);
    }
    EXPECT_EQ(hash_find(table, locator_for("other").header, false), nullptr);
  }
}

TEST_F(SymbolTable, ScopeNumbersKnowTheirUnit) {
  a_translation_unit unit = {};
  curr_translation_unit = &unit;
  int32_t number = 0;
  for (int i = 0; i < 40000; ++i)
    number = take_next_scope_number();
  a_symbol* x = enter(symk_variable, "x");
  x->scope_number = number;
  EXPECT_TRUE(symbol_is_from_trans_unit(x, &unit));
  curr_translation_unit = nullptr;
  EXPECT_EQ(trans_unit_for_symbol(x), &unit);
}

TEST_F(SymbolTable, ParametersAreProtectedInTheOutermostBlock) {
  a_routine* routine = enter_function("f");
  push_function_scope(routine);
  a_symbol* parameter = enter_variable("p", sc_auto, depth_scope_stack);
  parameter->variant.variable->is_parameter = true;
  parameter->referenced = true;
  push_block_scope(nullptr);
  a_symbol_locator locator = locator_for("p");
  bool check = true;
  enter_symbol(symk_variable, &locator, depth_scope_stack, &check);
  EXPECT_EQ(total_warnings, 1u);
  EXPECT_NE(messages().find("declaration of \"p\" hides function parameter"), std::string::npos);
  push_block_scope(nullptr);
  locator = locator_for("p");
  check = true;
  enter_symbol(symk_variable, &locator, depth_scope_stack, &check);
  EXPECT_EQ(total_warnings, 1u);
  EXPECT_EQ(total_errors, 0u);
  pop_scope();
  pop_scope();
}

TEST_F(SymbolTable, NamesOfConditionsAreProtectedInCplusplus) {
  for (int dialect : {cd_cplusplus, cd_ansi_c}) {
    stop();
    start(dialect);
    push_function_scope(enter_function("f"));
    push_for_init_scope(nullptr);
    enter_variable("i", sc_auto, depth_scope_stack)->referenced = true;
    push_block_scope(nullptr);
    a_symbol_locator locator = locator_for("i");
    bool check = true;
    enter_symbol(symk_variable, &locator, depth_scope_stack, &check);
    EXPECT_EQ(total_errors, dialect == cd_cplusplus ? 1u : 0u);
    pop_scope();
    pop_scope();
    pop_scope();
  }
}

TEST_F(SymbolTable, AnonymousUnionMembersShareTheClass) {
  for (bool gcc : {false, true}) {
    gcc_mode = gnu_mode = gcc;
    total_errors = total_warnings = 0;
    a_symbol* tag = enter(symk_class_or_struct, gcc ? "g" : "s");
    a_type* type = alloc_type(tk_struct);
    tag->variant.type = type;
    set_source_corresp(&type->source_corresp, tag);
    push_class_scope(type);
    a_symbol* first = enter(symk_field, "m");
    first->variant.field = alloc_field(integer_type(ik_int));
    a_symbol_locator locator = locator_for("m");
    a_symbol* second = make_symbol(symk_field, &locator);
    second->is_anonymous_union_member = true;
    bool flag = true;
    add_symbol_to_symbol_table(second, depth_scope_stack, &flag);
    EXPECT_EQ(flag, !gcc);
    EXPECT_EQ(total_errors, gcc ? 0u : 1u);
    EXPECT_EQ(total_warnings, gcc ? 1u : 0u);
    pop_scope();
    locator = locator_for("m");
    EXPECT_EQ(class_qualified_id_lookup(&locator, type, ilo_none), first);
  }
}

} // namespace
