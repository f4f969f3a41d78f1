#include "il_fixture.h"
#include "source_file.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

// What the callbacks of a walk saw, in order. Entries show by the names that a
// test gave them, others by the numbers of their kinds.
std::vector<std::string> events;
std::map<const void*, std::string> names_of_entries;
std::multiset<void*> visited_entries;

std::string shown(const void* entry, an_il_entry_kind kind) {
  auto found = names_of_entries.find(entry);
  return found != names_of_entries.end() ? found->second : "#" + std::to_string(kind);
}

void note_entry(void* entry, an_il_entry_kind kind) {
  events.push_back("." + shown(entry, kind));
}
void* note_pointer(void* pointer, an_il_entry_kind kind) {
  events.push_back(">" + shown(pointer, kind));
  return pointer;
}
void* note_list(void* pointer, an_il_entry_kind kind) {
  events.push_back("+" + shown(pointer, kind));
  return pointer;
}
const char* note_text(const char* text, an_il_entry_kind, uint64_t length) {
  events.push_back("'" + std::string(text, length - 1) + "'");
  return text;
}
void count_entry(void* entry, an_il_entry_kind) {
  visited_entries.insert(entry);
}

constexpr an_il_walk_callbacks note_all = {note_entry, note_text, note_pointer, note_list, nullptr};
constexpr an_il_walk_callbacks count_all = {count_entry, nullptr, nullptr, nullptr, nullptr};

class IL_WALK_TEST : public IL_TEST {
protected:
  void SetUp() override {
    IL_TEST::SetUp();
    events.clear();
    visited_entries.clear();
    names_of_entries.clear();
  }

  template <class T> T* named(const char* name, T* entry) {
    names_of_entries[entry] = name;
    return entry;
  }

  static std::string joined_events() {
    std::string text;
    for (const std::string& event : events)
      text += event + " ";
    return text;
  }
};

TEST_F(IL_WALK_TEST, FieldsAreWalkedInOrderEachEntryBeforeTheNext) {
  named("file", il_header.primary_scope);
  a_type* node = named("node", file_struct("node"));
  a_type* kind = named("kind", alloc_type(tk_float));
  named("key", add_field(node, "key", kind));
  a_type* pointer = named("pointer", alloc_type(tk_pointer));
  pointer->variant.pointer.referenced_type = node;
  named("next", add_field(node, "next", pointer));
  named("info", class_supplement_of(node));
  a_variable* first = named("first", file_variable("first", sc_none));
  first->type = pointer;
  named("second", file_variable("second", sc_none))->type = kind;
  il_header.il_version = "v";
  walk_file_scope_il(note_all, false);
  // The header leads to the file scope, that to its types and variables. A type
  // that was seen already is only pointed at.
  EXPECT_EQ(joined_events(), ">file "
                             "+node 'node' "
                             "+key 'key' >kind .kind .key "
                             "+next 'next' >pointer >node .pointer .next "
                             ">info .info .node "
                             "+first 'first' >pointer .first "
                             "+second 'second' >kind .second "
                             ".file 'v' ");
}

TEST_F(IL_WALK_TEST, StatementsAreWalkedInOrder) {
  a_routine* routine = named("f", function("f", sc_none));
  a_scope* scope = named("body", scope_for_routine(routine));
  switch_il_region(routine->region_number);
  a_variable* x = named("x", alloc_variable(sc_auto));
  scope->local_variables = x;
  x->source_corresp.parent_scope = scope;
  a_statement* block = named("block", scope->assoc_statement);
  a_statement* branch = named("if", alloc_statement(stmk_if));
  branch->parent = block;
  branch->expr = named("test", alloc_expr_node(expr_variable));
  branch->expr->variant.variable.ptr = x;
  branch->variant.if_stmt.then_statement = named("then", alloc_statement(stmk_null));
  branch->variant.if_stmt.else_statement = named("else", alloc_statement(stmk_null));
  append(&block->variant.block.first_statement, branch);
  a_statement* last = named("last", alloc_statement(stmk_null));
  last->parent = block;
  append(&block->variant.block.first_statement, last);
  named("info", block->variant.block.block_supplement);
  walk_routine_scope_il(routine->region_number, note_all, false);
  // The scope is an element of the list of its region; the routine it belongs
  // to is no part of it.
  EXPECT_EQ(joined_events(), "+body >f >block "
                             "+if >block >test >x >body .x .test >then .then >else .else .if "
                             "+last >block .last "
                             ">info .info .block "
                             "+x .body ");
}

TEST_F(IL_WALK_TEST, EachWalkVisitsEachEntryOnce) {
  a_type* node = file_struct("node");
  a_field* field = add_field(node, "next", make_pointer_type(node));
  a_variable* list = file_variable("list", sc_none);
  list->type = field->type;
  a_macro* macro = alloc_macro();
  il_header.macros = macro;
  a_source_file* file = alloc_source_file();
  a_source_file* included = alloc_source_file();
  file->first_child = included;
  il_header.source_files = file;
  for (int walk = 0; walk < 3; walk++) {
    visited_entries.clear();
    walk_file_scope_il(count_all, false);
    for (void* entry : std::initializer_list<void*>{node, field, field->type, list, macro, file,
                                                    included, il_header.primary_scope})
      EXPECT_EQ(visited_entries.count(entry), 1u);
  }
  // Entries made between two walks are visited like the others.
  a_variable* later = file_variable("later", sc_none);
  visited_entries.clear();
  walk_file_scope_il(count_all, false);
  EXPECT_EQ(visited_entries.count(later), 1u);
  EXPECT_EQ(visited_entries.count(node), 1u);
}

// Moves pointers by a fixed distance, as one does whose memory is written for
// another place.
constexpr intptr_t distance = 0x1000;
void* moved(void* pointer, an_il_entry_kind) {
  return static_cast<char*>(pointer) + distance;
}

TEST_F(IL_WALK_TEST, PointersCanBeMappedWhileTheyAreFollowed) {
  a_type* node = file_struct("node");
  a_field* first = add_field(node, "first", make_pointer_type(node));
  a_field* second = add_field(node, "second", first->type);
  auto there = [](void* pointer) { return static_cast<char*>(pointer) + distance; };
  a_scope* scope = il_header.primary_scope;
  walk_file_scope_il({nullptr, nullptr, moved, moved, nullptr}, false);
  EXPECT_EQ(reinterpret_cast<char*>(il_header.primary_scope), there(scope));
  il_header.primary_scope = scope;
  EXPECT_EQ(reinterpret_cast<char*>(node->variant.class_struct_union.fields), there(first));
  EXPECT_EQ(reinterpret_cast<char*>(first->next), there(second));
  EXPECT_EQ(first->type, second->type); // moved once each
}

TEST_F(IL_WALK_TEST, ReferencesToLocalExpressionsAreMappedAtBothEnds) {
  a_routine* routine = make_routine_with_body();
  a_scope* scope = scope_for_routine(routine);
  struct {
    void* owner;
    a_local_expr_ref_kind kind;
    an_il_entry_kind owner_kind;
  } cases[] = {{alloc_type(tk_array), lek_type_dimension, iek_type},
               {alloc_type(tk_typeref), lek_type_typeref_expr, iek_type},
               {fs_constant(con_template_param), lek_constant_param_expr, iek_constant},
               {alloc_field(nullptr), lek_field, iek_field}};
  static std::map<void*, an_il_entry_kind> kinds_of_pointers;
  kinds_of_pointers.clear();
  for (auto& c : cases)
    make_local_expr_node_ref(c.owner, c.kind, alloc_expr_node(expr_error), scope);
  auto note_kind = [](void* pointer, an_il_entry_kind kind) {
    kinds_of_pointers[pointer] = kind;
    return pointer;
  };
  walk_routine_scope_il(routine->region_number, {count_entry, nullptr, note_kind, nullptr, nullptr},
                        false);
  for (auto& c : cases) {
    EXPECT_EQ(kinds_of_pointers[c.owner], c.owner_kind) << c.kind;
    EXPECT_EQ(visited_entries.count(c.owner), 0u); // it only refers
  }
  for (auto* ref = scope->local_expr_refs; ref != nullptr; ref = ref->next)
    EXPECT_EQ(visited_entries.count(ref->expr), 1u);
}

TEST_F(IL_WALK_TEST, FrontEndFieldsAreClearedOnRequest) {
  a_symbol* symbol = enter_variable("x", sc_none, 0);
  a_variable* variable = symbol->variant.variable;
  make_pointer_type(variable->type);
  walk_file_scope_il({}, false);
  EXPECT_EQ(variable->source_corresp.symbol, symbol);
  walk_file_scope_il({}, true);
  EXPECT_EQ(variable->source_corresp.symbol, nullptr);
  EXPECT_STREQ(variable->source_corresp.name, "x");
  EXPECT_EQ(integer_type(ik_int)->based_types, nullptr);
}

TEST_F(IL_WALK_TEST, ALongChainIsWalkedWithoutRecursion) {
  a_type* type = integer_type(ik_int);
  for (int i = 0; i < 200000; i++)
    type = make_pointer_type(type);
  walk_il_subtree(type, iek_type, count_all);
  EXPECT_GT(visited_entries.size(), 200000u);
}

// A filter that ends the visit of fields, and starts a walk of its own there.
bool filter_with_inner_walk(void* entry, an_il_entry_kind kind) {
  if (kind == iek_field)
    mark_to_keep_in_il(entry, kind);
  visited_entries.insert(entry);
  return kind == iek_field;
}

TEST_F(IL_WALK_TEST, WalksWithFiltersNest) {
  a_type* node = file_struct("node");
  a_field* field = add_field(node, "next", alloc_type(tk_float));
  a_variable* behind = file_variable("behind", sc_none);
  behind->type = field->type;
  uint8_t meaning = flag_value_meaning_visited;
  walk_file_scope_il({nullptr, nullptr, nullptr, nullptr, filter_with_inner_walk}, false);
  EXPECT_EQ(flag_value_meaning_visited, meaning);
  EXPECT_TRUE(il_entry_prefix_of(field->type).keep_in_il);
  EXPECT_FALSE(il_entry_prefix_of(node).keep_in_il);
  EXPECT_EQ(visited_entries.count(field), 1u);
  EXPECT_EQ(visited_entries.count(behind), 1u);
}

// --- Orphaned entries.

TEST_F(IL_WALK_TEST, FunctionWalksLeaveFileScopeEntriesAsOrphans) {
  a_routine* routine = make_routine_with_body();
  a_scope* scope = scope_for_routine(routine);
  a_variable* local = alloc_variable(sc_auto);
  local->type = make_pointer_type(integer_type(ik_int));
  scope->local_variables = local;
  a_variable* second = alloc_variable(sc_auto);
  second->type = local->type;
  local->next = second;
  for (int walk = 0; walk < 2; walk++) {
    visited_entries.clear();
    walk_routine_scope_il(routine->region_number, count_all, false);
    EXPECT_EQ(visited_entries.count(local), 1u);
    EXPECT_EQ(visited_entries.count(local->type), 0u);
    EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].head, local->type);
    EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].tail, local->type);
  }
  // From there the file scope leads to them.
  visited_entries.clear();
  walk_file_scope_il(count_all, false);
  EXPECT_EQ(visited_entries.count(local->type), 1u);
  EXPECT_EQ(visited_entries.count(local), 0u);
}

TEST_F(IL_WALK_TEST, WhatAScopeLeadsToIsNoOrphan) {
  auto constant = [](a_constant_kind kind) { return fs_constant(kind); };
  auto type = [](a_type_kind kind) { return alloc_type(kind); };
  struct {
    const char* what;
    void* entry;
    an_il_entry_kind kind;
    bool expected;
  } cases[] = {
      {"template parameter constant", constant(con_template_param), iek_constant, true},
      {"integer", constant(con_integer), iek_constant, false},
      {"unnamed enumerator", constant(con_integer), iek_constant, true},
      {"address", constant(con_address), iek_constant, true},
      {"named constant", constant(con_float), iek_constant, false},
      {"struct", type(tk_struct), iek_type, false},
      {"class", type(tk_class), iek_type, false},
      {"union", type(tk_union), iek_type, false},
      {"routine without parameters", type(tk_routine), iek_type, true},
      {"routine with parameters", type(tk_routine), iek_type, false},
      {"enum", type(tk_integer), iek_type, false},
      {"named template parameter", type(tk_template_param), iek_type, true},
      {"pointer", type(tk_pointer), iek_type, true},
      {"named type", type(tk_typeref), iek_type, false},
      {"member of a class", type(tk_typeref), iek_type, false},
      {"member of a namespace", type(tk_typeref), iek_type, false},
      {"complex value", alloc_complex_value(), iek_complex_value, true},
      {"template argument", alloc_template_arg(tak_type), iek_template_arg, true},
      {"name reference", alloc_name_reference(), iek_name_reference, true},
      {"attribute", alloc_attribute(), iek_attribute, true},
      {"base class", alloc_base_class(nullptr), iek_base_class, true},
      {"field", alloc_field(nullptr), iek_field, false},
      {"variable", alloc_variable(sc_extern), iek_variable, false},
  };
  a_scope* namespace_scope = alloc_scope(sk_namespace, 7);
  for (auto& c : cases) {
    std::string what = c.what;
    auto* as_type = static_cast<a_type*>(c.entry);
    if (what == "unnamed enumerator")
      static_cast<a_constant*>(c.entry)->is_unnamed_enumerator = 1;
    else if (what == "routine with parameters")
      as_type->variant.routine.routine_supplement->param_types = alloc_param_type(as_type);
    else if (what == "enum")
      as_type->variant.integer.is_enum = 1;
    else if (what == "member of a class")
      as_type->source_corresp.is_class_member = 1;
    else if (what == "member of a namespace")
      as_type->source_corresp.parent_scope = namespace_scope;
    else if (what.find("named") == 0)
      static_cast<a_source_correspondence*>(c.entry)->name = "n";
    f_possibly_add_orphaned_file_scope_il_entry(c.entry, c.kind, nullptr);
    EXPECT_EQ(orphaned_file_scope_il_entries[c.kind].tail == c.entry, c.expected) << what;
  }
}

TEST_F(IL_WALK_TEST, AllPlacementArgumentsAreReached) {
  a_routine* routine = make_routine_with_body();
  an_expr_node* allocation = alloc_expr_node(expr_new_delete);
  an_expr_node* first = alloc_expr_node(expr_error);
  an_expr_node* second = alloc_expr_node(expr_error);
  first->next = second;
  allocation->variant.new_delete->placement_expr = first;
  scope_for_routine(routine)->assoc_statement = alloc_expr_statement(allocation);
  walk_routine_scope_il(routine->region_number, count_all, false);
  EXPECT_EQ(visited_entries.count(first), 1u);
  EXPECT_EQ(visited_entries.count(second), 1u);
}

TEST_F(IL_WALK_TEST, EachUnitHasOrphansOfItsOwn) {
  trans_unit_init();
  enter_translation_unit(alloc_translation_unit(nullptr));
  a_translation_unit* primary = curr_translation_unit;
  save_curr_translation_unit();
  enter_translation_unit(alloc_translation_unit(nullptr));
  a_type* type = alloc_type(tk_pointer);
  f_possibly_add_orphaned_file_scope_il_entry(type, iek_type, primary);
  EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].head, nullptr);
  switch_translation_unit(primary);
  EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].head, type);
  // Once the front end has finished, there is one table.
  in_front_end = 0;
  a_type* last = alloc_type(tk_pointer);
  f_possibly_add_orphaned_file_scope_il_entry(last, iek_type, primary->next);
  EXPECT_EQ(orphaned_file_scope_il_entries[iek_type].tail, last);
}

} // namespace
