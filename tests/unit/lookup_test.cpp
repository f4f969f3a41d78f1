// Lookup in C++: classes, bases, namespaces and functions built by hand.

#include "front_end_fixture.h"

#include <algorithm>
#include <vector>

namespace {

class Lookup : public FrontEnd {
protected:
  void SetUp() override {
    start(cd_cplusplus);
  }

  // ---- Classes ----

  struct a_base_spec {
    a_type* type;
    an_access_specifier access = as_public;
    bool is_virtual = false;
  };

  a_type* open_class(const char* name, const std::vector<a_base_spec>& bases = {}) {
    const int depth = decl_scope_level;
    a_symbol* tag = enter(symk_class_or_struct, name);
    a_type* type = alloc_type(tk_class);
    tag->variant.type = type;
    set_source_corresp(&type->source_corresp, tag);
    if (scope_stack[depth].kind == sk_class)
      set_class_membership(tag, &type->source_corresp, scope_stack[depth].assoc_type);
    else if (scope_stack[depth].il_scope != nullptr)
      set_parent_scope(&type->source_corresp, iek_type, scope_stack[depth].il_scope);
    a_base_class** link = &class_supplement_of(type)->base_classes;
    for (const a_base_spec& spec : bases) {
      a_base_class* base = alloc_base_class(spec.type);
      base->derived_class = type;
      base->access = spec.access;
      base->is_direct = true;
      base->is_virtual = spec.is_virtual;
      *link = base;
      link = &base->next;
    }
    push_class_scope(type);
    return type;
  }

  void close_class(a_type* type) {
    pop_scope();
    type->is_incomplete = false;
    type->variant.class_struct_union.is_complete_definition = true;
  }

  a_symbol* add_member(a_symbol_kind kind, const char* name,
                       an_access_specifier access = as_public) {
    a_type* type = scope_stack[decl_scope_level].assoc_type;
    a_symbol* symbol = enter(kind, name);
    a_source_correspondence* corresp = nullptr;
    if (kind == symk_field) {
      symbol->variant.field = alloc_field(integer_type(ik_int));
      corresp = &symbol->variant.field->source_corresp;
    } else if (kind == symk_member_function) {
      symbol->variant.routine = alloc_routine();
      symbol->variant.routine->type = make_routine_type(integer_type(ik_int));
      corresp = &symbol->variant.routine->source_corresp;
    } else if (kind == symk_static_data_member) {
      symbol->variant.variable = alloc_variable(sc_static);
      corresp = &symbol->variant.variable->source_corresp;
    }
    set_source_corresp(corresp, symbol);
    set_class_membership(symbol, corresp, type);
    corresp->access = access;
    return symbol;
  }

  // A class with the fields of the names given.
  a_type* make_class(const char* name, const std::vector<a_base_spec>& bases = {},
                     const std::vector<const char*>& fields = {},
                     an_access_specifier access = as_public) {
    a_type* type = open_class(name, bases);
    for (const char* field : fields)
      add_member(symk_field, field, access);
    close_class(type);
    return type;
  }

  a_symbol* find_member(a_type* type, const char* name, uint32_t options = ilo_none) {
    locator = locator_for(name);
    return class_qualified_id_lookup(&locator, type, options);
  }

  a_type* class_of(const a_symbol* symbol) {
    return symbol == nullptr ? nullptr : symbol->parent.class_type;
  }

  // ---- Namespaces and functions ----

  a_namespace* open_namespace(const char* name, bool is_inline = false) {
    const int depth = decl_scope_level;
    a_symbol* symbol = enter(symk_namespace, name);
    a_namespace* n = alloc_namespace();
    n->is_inline = is_inline;
    symbol->variant.namespace_entry = n;
    set_source_corresp(&n->source_corresp, symbol);
    if (scope_stack[depth].namespace_entry != nullptr)
      set_namespace_membership(symbol, &n->source_corresp, scope_stack[depth].namespace_entry);
    add_to_namespaces_list(n, depth);
    push_namespace_scope(n);
    return n;
  }

  a_namespace* make_namespace(const char* name, const std::vector<const char*>& variables) {
    a_namespace* n = open_namespace(name);
    for (const char* variable : variables)
      declare_variable(variable);
    pop_namespace_scope();
    return n;
  }

  a_symbol* join_scope(a_symbol* symbol, a_source_correspondence* corresp) {
    set_source_corresp(corresp, symbol);
    a_scope_stack_entry* entry = &scope_stack[decl_scope_level];
    if (entry->namespace_entry != nullptr)
      set_namespace_membership(symbol, corresp, entry->namespace_entry);
    return symbol;
  }

  a_symbol* declare_variable(const char* name) {
    a_symbol* symbol = enter(symk_variable, name);
    symbol->variant.variable = alloc_variable(sc_extern);
    symbol->referenced = true;
    return join_scope(symbol, &symbol->variant.variable->source_corresp);
  }

  // One more function of the name in the current scope.
  a_symbol* declare_function(const char* name) {
    a_symbol_locator at = locator_for(name);
    a_symbol* previous = curr_scope_id_lookup(&at, ilo_none);
    at.symbol = nullptr;
    a_symbol* symbol = enter_overloaded_symbol(symk_routine, previous, &at, decl_scope_level);
    symbol->variant.routine = alloc_routine();
    symbol->variant.routine->type = make_routine_type(integer_type(ik_int));
    symbol->variant.routine->source_corresp.linkage = idl_external;
    return join_scope(symbol, &symbol->variant.routine->source_corresp);
  }

  a_symbol* find(const char* name, uint32_t options = ilo_none) {
    locator = locator_for(name);
    return normal_id_lookup(&locator, options);
  }

  a_symbol* find_in(a_namespace* n, const char* name, uint32_t options = ilo_none) {
    locator = locator_for(name);
    return namespace_qualified_id_lookup(&locator, n, options);
  }

  void use_namespace(a_namespace* n) {
    enter_using_directive(n, decl_scope_level, &null_source_position);
  }

  static std::vector<a_symbol*> functions_of(a_symbol* symbol) {
    std::vector<a_symbol*> functions;
    if (symbol == nullptr)
      return functions;
    if (symbol->kind != symk_overloaded_function)
      return {symbol};
    for (a_symbol* s = symbol->variant.overload_list; s != nullptr; s = s->next_homonym)
      functions.push_back(fundamental_symbol_of(s));
    return functions;
  }

  a_symbol_locator locator = cleared_locator; // of the last lookup
};

TEST_F(Lookup, MembersOfBasesAreHiddenByDerivedClasses) {
  a_type* a = make_class("A", {}, {"x", "y", "z"});
  a_type* b = make_class("B", {{a}}, {"y"});
  a_type* c = make_class("C", {{b}}, {"z"});
  struct {
    const char* name;
    a_type* owner;
    int steps;
  } const cases[] = {{"x", a, 2}, {"y", b, 1}, {"z", c, 0}, {"none", nullptr, 0}};
  for (const auto& test : cases) {
    for (int round = 0; round < 2; ++round) { // the second finds what the first left
      a_symbol* found = find_member(c, test.name);
      EXPECT_EQ(class_of(found), test.owner) << test.name;
      EXPECT_FALSE(locator.is_ambiguous);
      int steps = 0;
      if (found != nullptr && locator.symbol->kind == symk_projection)
        for (a_derivation_step* s = locator.symbol->variant.projection->derivation; s != nullptr;
             s = s->next)
          ++steps;
      EXPECT_EQ(steps, test.steps) << test.name;
    }
  }
  // What a lookup keeps is no declaration of the class.
  push_class_and_template_reactivation_scope(c);
  EXPECT_EQ(look_up_here("x"), nullptr);
  EXPECT_EQ(look_up_here("z"), find_member(c, "z"));
  EXPECT_EQ(class_of(find("x")), a);
  pop_class_reactivation_scope();
  EXPECT_EQ(depth_scope_stack, 0);
}

TEST_F(Lookup, AmbiguityOverBases) {
  // The diamonds: both, one or no way to the shared base is virtual.
  a_type* top = open_class("Top");
  add_member(symk_field, "f");
  add_member(symk_static_data_member, "s");
  add_member(symk_member_function, "m");
  add_member(symk_static_data_member, "hidden");
  close_class(top);
  a_type* left = make_class("L", {{top}});
  a_type* right = make_class("R", {{top}});
  a_type* vleft = make_class("VL", {{top, as_public, true}}, {"hidden"});
  a_type* vright = make_class("VR", {{top, as_public, true}});
  a_type* vboth = make_class("VB", {{top, as_public, true}}, {"hidden"});
  a_type* other = make_class("O", {}, {"f", "s", "m", "hidden"});
  struct {
    const char* name;
    std::vector<a_base_spec> bases;
    const char* ambiguous; // of f, s, m and hidden
  } const cases[] = {
      {"D1", {{left}, {right}}, "f m"},
      {"D2", {{vleft}, {vright}}, ""}, // VL::hidden dominates Top::hidden
      {"D3", {{vright}, {vleft}}, ""},
      {"D4", {{vleft}, {vboth}}, "hidden"},
      {"D5", {{vleft}, {right}}, "f m hidden"},
      {"D6", {{left}, {other}}, "f s m hidden"},
      {"D7", {{vright}, {left}, {right}}, "f m"},
  };
  for (const auto& test : cases) {
    a_type* derived = make_class(test.name, test.bases);
    for (const char* member : {"f", "s", "m", "hidden"}) {
      EXPECT_NE(find_member(derived, member), nullptr) << test.name << member;
      const std::string padded = std::string(" ") + test.ambiguous + " ";
      EXPECT_EQ(locator.is_ambiguous,
                padded.find(std::string(" ") + member + " ") != std::string::npos)
          << test.name << "::" << member;
    }
  }
  // A declaration in the class itself settles it.
  a_type* settled = make_class("D8", {{left}, {right}}, {"f"});
  EXPECT_EQ(class_of(find_member(settled, "f")), settled);
  EXPECT_FALSE(locator.is_ambiguous);
  find_member(make_class("D9", {{settled}, {vright}}), "m");
  EXPECT_TRUE(locator.is_ambiguous);
  report_ambiguous_name(&locator);
  report_ambiguous_name(&locator);
  EXPECT_EQ(total_errors, 1u);
  EXPECT_NE(messages().find("is ambiguous"), std::string::npos);
}

TEST_F(Lookup, LongAndWideHierarchiesEnd) {
  a_type* type = make_class("Base", {}, {"member"});
  a_type* const base = type;
  for (int i = 0; i < 20000; ++i)
    type = make_class(("Chain" + std::to_string(i)).c_str(), {{type}});
  EXPECT_EQ(class_of(find_member(type, "member")), base);
  EXPECT_TRUE(is_derived_class(type, base));
  EXPECT_FALSE(is_derived_class(base, type));
  // 2 to the 40th subobjects.
  a_type* wide = base;
  for (int i = 0; i < 40; ++i) {
    const std::string n = std::to_string(i);
    a_type* l = make_class(("WL" + n).c_str(), {{wide}});
    a_type* r = make_class(("WR" + n).c_str(), {{wide}});
    wide = make_class(("W" + n).c_str(), {{l}, {r}});
  }
  EXPECT_EQ(class_of(find_member(wide, "member")), base);
  EXPECT_TRUE(locator.is_ambiguous);
}

TEST_F(Lookup, FiltersPassHiddenNames) {
  a_type* a = open_class("A");
  a_type* inner = make_class("name");
  a_symbol* tag = inner->source_corresp.symbol;
  a_symbol* function = add_member(symk_member_function, "name");
  close_class(a);
  a_type* b = make_class("B", {{a}});
  EXPECT_EQ(find_member(b, "name"), function);
  EXPECT_EQ(find_member(b, "name", ilo_tag), tag);
  EXPECT_EQ(find_member(b, "name", ilo_followed_by_colons), tag);
  EXPECT_EQ(find_member(b, "name", ilo_namespaces_only), nullptr);
  // Without `::` behind it a name of the same kind in a nearer scope counts.
  a_namespace* n = make_namespace("n", {"v"});
  push_block_scope(nullptr);
  declare_variable("n");
  EXPECT_EQ(find("n")->kind, symk_variable);
  EXPECT_EQ(find("n", ilo_followed_by_colons), n->source_corresp.symbol);
  pop_scope();
}

TEST_F(Lookup, TypedefsGiveWayToTagsOfTheirScope) {
  elab_type_lookup_finds_typedefs = 1;
  a_symbol* outer = enter(symk_class_or_struct, "t");
  push_block_scope(nullptr);
  a_symbol* alias = enter(symk_type, "t");
  alias->variant.type = integer_type(ik_int);
  EXPECT_EQ(find("t", ilo_tag), alias);
  a_symbol* tag = enter(symk_enum, "t");
  EXPECT_EQ(find("t", ilo_tag), tag);
  EXPECT_EQ(find("t"), alias);
  pop_scope();
  EXPECT_EQ(find("t", ilo_tag), outer);
}

TEST_F(Lookup, UsingDirectivesShowNamesInTheNamespaceAroundBoth) {
  a_symbol* global_x = declare_variable("x");
  a_namespace* outer = open_namespace("outer");
  a_namespace* inner = make_namespace("inner", {"x", "y"});
  a_namespace* sibling = open_namespace("sibling");
  use_namespace(inner);
  // The names appear in `outer`, nearer than the file scope.
  EXPECT_EQ(find("x"), find_in(inner, "x"));
  EXPECT_FALSE(locator.is_ambiguous);
  a_symbol* own = declare_variable("y");
  EXPECT_EQ(find("y"), own);
  pop_namespace_scope();
  // The directive ended with its scope, but not for qualified names.
  EXPECT_EQ(find("y"), nullptr);
  EXPECT_EQ(find_in(sibling, "y"), own);
  EXPECT_EQ(find_in(sibling, "x"), find_in(inner, "x"));
  f_push_namespace_extension_scope(sibling);
  EXPECT_EQ(find("x"), find_in(inner, "x"));
  pop_namespace_scope();
  pop_namespace_scope();

  // At file scope the names of `outer::inner` compete with those of the file.
  push_block_scope(nullptr);
  use_namespace(inner);
  EXPECT_EQ(find("x"), global_x);
  EXPECT_TRUE(locator.is_ambiguous);
  EXPECT_EQ(find("x", ilo_ignore_using_directives), global_x);
  EXPECT_FALSE(locator.is_ambiguous);
  push_block_scope(nullptr);
  a_symbol* local = declare_variable("x");
  EXPECT_EQ(find("x"), local);
  pop_scope();
  pop_scope();
  EXPECT_EQ(find("x"), global_x);
  EXPECT_FALSE(locator.is_ambiguous);
  EXPECT_EQ(find("y"), nullptr);
  EXPECT_EQ(find_in(outer, "x"), nullptr);
}

TEST_F(Lookup, UsingDirectivesLeadOn) {
  a_namespace* a = make_namespace("a", {"deep", "both"});
  a_namespace* b = open_namespace("b");
  use_namespace(a);
  a_symbol* both = declare_variable("both");
  pop_namespace_scope();
  use_namespace(b);
  EXPECT_EQ(find("deep"), find_in(a, "deep"));
  // Unqualified both are seen; qualified the namespace's own comes first.
  find("both");
  EXPECT_TRUE(locator.is_ambiguous);
  EXPECT_EQ(find_in(b, "both"), both);
  EXPECT_FALSE(locator.is_ambiguous);
  // A directive added later acts where its namespace was nominated before; a
  // circle ends.
  a_namespace* c = make_namespace("c", {"late"});
  f_push_namespace_extension_scope(a);
  use_namespace(c);
  use_namespace(b);
  pop_namespace_scope();
  EXPECT_EQ(find("late"), find_in(c, "late"));
  EXPECT_EQ(find_in(b, "late"), find_in(c, "late"));
  EXPECT_EQ(find_in(b, "never"), nullptr);
}

TEST_F(Lookup, DirectivesOfAnotherUnitRest) {
  a_namespace* a = make_namespace("a", {"x"});
  push_block_scope(nullptr);
  use_namespace(a);
  EXPECT_NE(find("x"), nullptr);
  set_active_using_list_scope_depths(depth_scope_stack, false, 0);
  EXPECT_EQ(find("x"), nullptr);
  set_active_using_list_scope_depths(depth_scope_stack, true, 1); // all stand behind
  EXPECT_EQ(find("x"), nullptr);
  set_active_using_list_scope_depths(depth_scope_stack, true, 0);
  EXPECT_NE(find("x"), nullptr);
  pop_scope();
}

TEST_F(Lookup, InlineNamespacesBelongToTheOneAround) {
  a_namespace* library = open_namespace("library");
  a_namespace* version = open_namespace("v1", true);
  a_symbol* f1 = declare_function("f");
  a_symbol* only = declare_variable("only");
  pop_namespace_scope();
  a_symbol* f2 = declare_function("f");
  EXPECT_EQ(find("only"), only);
  pop_namespace_scope();
  EXPECT_EQ(find_in(library, "only"), only);
  EXPECT_EQ(functions_of(find_in(library, "f")), (std::vector<a_symbol*>{f2, f1}));
  EXPECT_EQ(functions_of(find_in(version, "f")), std::vector<a_symbol*>{f1});
}

TEST_F(Lookup, DirectivesMergeFunctionsAndTellTypesApart) {
  a_namespace* a = open_namespace("a");
  a_symbol* fa = declare_function("f");
  a_symbol* fb = declare_function("f");
  a_type* type = make_class("same");
  enter(symk_type, "alias")->variant.type = type;
  a_symbol* tag = enter(symk_enum, "clash");
  pop_namespace_scope();
  a_namespace* b = open_namespace("b");
  a_symbol* fc = declare_function("f");
  enter(symk_type, "alias")->variant.type = type;
  declare_variable("clash");
  pop_namespace_scope();
  use_namespace(a);
  use_namespace(b);
  a_symbol* set = find("f");
  ASSERT_NE(set, nullptr);
  EXPECT_EQ(set->kind, symk_overloaded_function);
  EXPECT_FALSE(locator.is_ambiguous);
  std::vector<a_symbol*> functions = functions_of(set);
  EXPECT_EQ(functions.size(), 3u);
  for (a_symbol* f : {fa, fb, fc})
    EXPECT_EQ(std::count(functions.begin(), functions.end(), f), 1);
  find("alias"); // two names of one type
  EXPECT_FALSE(locator.is_ambiguous);
  find("clash"); // a tag hides nothing and is hidden by nothing elsewhere
  EXPECT_TRUE(locator.is_ambiguous);
  EXPECT_EQ(find("clash", ilo_tag), tag);
  EXPECT_FALSE(locator.is_ambiguous);
}

TEST_F(Lookup, UsingDeclarationsInNamespaces) {
  a_namespace* a = open_namespace("a");
  a_symbol* f1 = declare_function("f");
  a_symbol* variable = declare_variable("v");
  a_symbol* tag = enter(symk_class_or_struct, "v");
  set_namespace_membership(tag, nullptr, a);
  pop_namespace_scope();
  a_symbol* f2 = declare_function("f");
  a_symbol_locator at = locator_for("f");
  EXPECT_NE(enter_using_declaration(f1, &at, 0), nullptr);
  EXPECT_EQ(functions_of(find("f")), (std::vector<a_symbol*>{f2, f1}));
  // Once more says nothing new.
  at = locator_for("f");
  enter_using_declaration(f1, &at, 0);
  EXPECT_EQ(functions_of(find("f")).size(), 2u);
  // Both the variable and the tag behind it are named.
  at = locator_for("v");
  enter_using_declaration(variable, &at, 0);
  EXPECT_EQ(find("v"), variable);
  EXPECT_EQ(locator.symbol->kind, symk_namespace_projection);
  EXPECT_EQ(find("v", ilo_tag), tag);
  EXPECT_EQ(total_errors, 0u);
  // A variable in the way; an entity of this very scope.
  declare_variable("w");
  a_namespace* b = make_namespace("b", {"w"});
  at = locator_for("w");
  EXPECT_EQ(enter_using_declaration(find_in(b, "w"), &at, 0), nullptr);
  EXPECT_EQ(total_errors, 1u);
  at = locator_for("w");
  enter_using_declaration(find("w"), &at, 0);
  EXPECT_EQ(total_warnings, 1u);
}

TEST_F(Lookup, UsingDeclarationsInClasses) {
  a_type* base = open_class("B");
  a_symbol* fb = add_member(symk_member_function, "f");
  add_member(symk_member_function, "g", as_private);
  close_class(base);
  a_type* derived = open_class("D", {{base, as_private}});
  a_symbol_locator at = locator_for("f");
  find_member(base, "f");
  a_symbol* using_f = enter_using_declaration(locator.symbol, &at, depth_scope_stack);
  ASSERT_NE(using_f, nullptr);
  EXPECT_EQ(look_up_here("f"), nullptr);
  EXPECT_EQ(look_up_here("f", ilo_accept_projections), fb);
  // The repetition is an error in a class.
  at = locator_for("f");
  enter_using_declaration(fb, &at, depth_scope_stack);
  EXPECT_EQ(total_errors, 1u);
  close_class(derived);
  EXPECT_EQ(find_member(derived, "f"), fb);
  // The access is that of the using-declaration, not of the private base.
  EXPECT_TRUE(have_access_to_symbol(locator.symbol, derived, nullptr));
  find_member(derived, "g");
  EXPECT_FALSE(have_access_to_symbol(locator.symbol, derived, nullptr));
}

TEST_F(Lookup, AccessFollowsTheWayToTheMember) {
  a_type* base = open_class("Base");
  add_member(symk_field, "pub", as_public);
  add_member(symk_field, "prot", as_protected);
  add_member(symk_field, "priv", as_private);
  add_member(symk_static_data_member, "sprot", as_protected);
  close_class(base);
  a_type* by_public = make_class("ByPublic", {{base, as_public}});
  a_type* by_protected = make_class("ByProtected", {{base, as_protected}});
  a_type* by_private = make_class("ByPrivate", {{base, as_private}});
  a_type* below_private = make_class("BelowPrivate", {{by_private, as_public}});
  a_type* stranger = make_class("Stranger");
  a_type* const nowhere = nullptr;
  struct {
    a_type* from; // in whose scope the name stands
    a_type* naming;
    const char* accessible; // of pub, prot, priv and sprot
  } const cases[] = {
      {nowhere, base, "pub"},
      {stranger, base, "pub"},
      {base, base, "pub prot priv sprot"},
      {base, by_public, "pub prot priv sprot"},
      {nowhere, by_public, "pub"},
      {by_public, by_public, "pub prot sprot"},
      // C++11 11.4: a protected field only in an object of the derived class.
      {by_public, base, "pub sprot"},
      {nowhere, by_protected, ""},
      {by_protected, by_protected, "pub prot sprot"},
      {by_private, by_private, "pub prot sprot"},
      {below_private, by_private, ""},
      {below_private, below_private, ""},
  };
  for (const auto& test : cases) {
    if (test.from != nullptr)
      push_class_and_template_reactivation_scope(test.from);
    for (const char* member : {"pub", "prot", "priv", "sprot"}) {
      ASSERT_NE(find_member(test.naming, member), nullptr);
      const std::string padded = std::string(" ") + test.accessible + " ";
      EXPECT_EQ(have_access_to_symbol(locator.symbol, test.naming, test.naming),
                padded.find(std::string(" ") + member + " ") != std::string::npos)
          << (&test - cases) << " " << member;
    }
    if (test.from != nullptr)
      pop_class_reactivation_scope();
  }
}

TEST_F(Lookup, FriendsNestedAndLocalClassesHaveAccess) {
  a_type* owner = open_class("Owner");
  add_member(symk_field, "secret", as_private);
  a_type* nested = make_class("Nested");
  close_class(owner);
  a_type* friendly = make_class("Friendly");
  a_class_type_supplement* supplement = class_supplement_of(owner);
  supplement->friends = alloc_list_entry_for_class();
  supplement->friends->class_type = friendly;
  a_routine* friend_function = enter_function("friend_function");
  supplement->friend_routines = alloc_list_entry_for_routine();
  supplement->friend_routines->routine = friend_function;
  a_routine* other_function = enter_function("other_function");
  find_member(owner, "secret");
  a_symbol* secret = locator.symbol;
  for (a_type* from : {nested, friendly}) {
    push_class_and_template_reactivation_scope(from);
    EXPECT_TRUE(have_access_to_symbol(secret, owner, nullptr));
    pop_class_reactivation_scope();
  }
  for (a_routine* from : {friend_function, other_function}) {
    push_function_scope(from);
    EXPECT_EQ(have_access_to_symbol(secret, owner, nullptr), from == friend_function);
    a_type* local = open_class(from == friend_function ? "local1" : "local2");
    EXPECT_EQ(have_access_to_symbol(secret, owner, nullptr), from == friend_function);
    close_class(local);
    pop_scope();
  }
}

TEST_F(Lookup, AccessChecksWaitForTheDeclaredName) {
  a_type* owner = open_class("Owner");
  add_member(symk_static_data_member, "Type", as_private);
  close_class(owner);
  find_member(owner, "Type");
  a_symbol* type = locator.symbol;
  const a_source_position position = {1, 7, 0};
  // `Owner::Type Owner::f()` against `Owner::Type g()`.
  for (bool of_owner : {true, false}) {
    push_new_top_level_declaration();
    const int depth = depth_scope_stack;
    defer_access_checks(depth);
    check_access_to_symbol(type, owner, nullptr, &position);
    EXPECT_EQ(total_errors, 0u);
    if (of_owner)
      push_class_and_template_reactivation_scope(owner);
    perform_deferred_access_checks_at_depth(depth, nullptr);
    if (of_owner)
      pop_class_reactivation_scope();
    EXPECT_EQ(total_errors, of_owner ? 0u : 1u);
    EXPECT_EQ(curr_deferred_access_scope, -1);
    pop_scope();
  }
  EXPECT_NE(messages().find("is inaccessible"), std::string::npos);
  // Forgotten with their scope.
  push_new_top_level_declaration();
  defer_access_checks(depth_scope_stack);
  check_access_to_symbol(type, owner, nullptr, &position);
  pop_scope();
  EXPECT_EQ(total_errors, 1u);
  check_access_to_symbol(type, owner, nullptr, &position);
  EXPECT_EQ(total_errors, 2u);
}

TEST_F(Lookup, ArgumentsBringInTheirNamespaces) {
  a_namespace* base_space = open_namespace("base_space");
  a_symbol* f_base = declare_function("f");
  a_type* base = make_class("Base");
  pop_namespace_scope();
  a_namespace* space = open_namespace("space");
  a_symbol* f_space = declare_function("f");
  a_type* derived = make_class("Derived", {{base}});
  a_symbol* color_tag = enter(symk_enum, "Color");
  a_type* color = alloc_type(tk_integer);
  color->variant.integer.is_enum = true;
  color_tag->variant.type = color;
  set_source_corresp(&color->source_corresp, color_tag);
  set_parent_scope(&color->source_corresp, iek_type, scope_of_namespace(space));
  pop_namespace_scope();
  a_symbol* f_global = declare_function("f");
  a_type* pointer = make_pointer_type(derived);
  a_type* function = make_routine_type(color);
  struct {
    std::vector<a_type*> arguments;
    std::vector<a_symbol*> found;
  } const cases[] = {
      {{}, {f_global}},
      {{integer_type(ik_int)}, {f_global}},
      {{base}, {f_global, f_base}},
      {{color}, {f_global, f_space}},
      {{derived}, {f_global, f_space, f_base}},
      {{make_pointer_type(pointer)}, {f_global, f_space, f_base}},
      {{function}, {f_global, f_space}},
      {{base, color}, {f_global, f_space, f_base}},
  };
  for (bool is_settled : {false, true}) {
    if (is_settled)
      determine_operator_lookup_namespaces(derived);
    for (const auto& test : cases) {
      a_symbol* ordinary = find("f");
      std::vector<a_symbol*> found =
          functions_of(argument_dependent_lookup(ordinary, &locator, test.arguments));
      EXPECT_EQ(found.size(), test.found.size()) << (&test - cases);
      for (a_symbol* f : test.found)
        EXPECT_EQ(std::count(found.begin(), found.end(), f), 1) << (&test - cases);
      EXPECT_EQ(locator.is_found_by_adl, test.found.size() > 1);
    }
  }
  // A variable, and a function declared in a block, keep the arguments out.
  push_block_scope(nullptr);
  a_symbol* local = declare_function("f");
  EXPECT_EQ(argument_dependent_lookup(find("f"), &locator, {derived}), local);
  pop_scope();
  EXPECT_EQ(find_in(base_space, "f"), f_base);
}

TEST_F(Lookup, FriendsAreFoundThroughTheirClassOnly) {
  open_namespace("space");
  a_type* owner = make_class("Owner");
  a_type* other = make_class("Other");
  a_symbol* hidden = declare_function("hidden");
  hidden->is_friend_only = true;
  class_supplement_of(owner)->friend_routines = alloc_list_entry_for_routine();
  class_supplement_of(owner)->friend_routines->routine = hidden->variant.routine;
  EXPECT_EQ(find("hidden"), nullptr);
  EXPECT_EQ(find("hidden", ilo_friend_declaration), hidden);
  pop_namespace_scope();
  EXPECT_EQ(find("hidden"), nullptr);
  EXPECT_EQ(argument_dependent_lookup(nullptr, &locator, {owner}), hidden);
  locator = locator_for("hidden");
  EXPECT_EQ(argument_dependent_lookup(nullptr, &locator, {other}), nullptr);
}

TEST_F(Lookup, InstantiationsSeeWhatWasDeclaredBefore) {
  a_symbol* early = declare_variable("name");
  const uint32_t limit = decl_seq_counter;
  push_block_scope(nullptr);
  declare_variable("name");
  a_push_scope_context context = {};
  context.decl_seq_limit = limit;
  push_scope_full(sk_template_instantiation, -1, nullptr, nullptr, &context);
  EXPECT_EQ(f_get_effective_decl_seq(), limit);
  EXPECT_EQ(find("name"), early);
  pop_scope();
  EXPECT_NE(find("name"), early);
  pop_scope();
}

} // namespace
