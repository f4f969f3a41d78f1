// The types of C++, built by hand: members, templates, exception
// specifications, conversions in a hierarchy, and their texts.

#include "pch.h"
#include "types_fixture.h"

#include <algorithm>
#include <vector>

namespace {

class CPLUSPLUS_TYPES : public TYPES_TEST {
protected:
  void SetUp() override {
    start(cd_cplusplus);
  }

  static a_type* make_class(const char* name) {
    a_type* type = named(alloc_type(tk_class), name);
    complete(type, 4);
    return type;
  }

  static a_base_class* add_base(a_type* derived, a_type* base) {
    a_base_class* entry = alloc_base_class(base);
    entry->derived_class = derived;
    entry->is_direct = 1;
    a_base_class*& list = class_supplement_of(derived)->base_classes;
    entry->next = list;
    list = entry;
    return entry;
  }

  static a_type* member_function(a_type* class_type, a_type_qualifier_set qualifiers) {
    a_type* type = make_routine_type_full(int_(), char_());
    type->variant.routine.routine_supplement->this_class = class_type;
    type->variant.routine.routine_supplement->this_qualifiers = qualifiers & 0xff;
    return type;
  }

  static a_type* template_param(const char* name, uint32_t depth, uint32_t position) {
    a_type* type = named(alloc_type(tk_template_param), name);
    auto& supplement = *type->variant.template_param.template_param_supplement;
    supplement.depth = depth;
    supplement.position = position;
    return type;
  }

  static a_template_arg* type_arg(a_type* type, a_template_arg* next = nullptr) {
    a_template_arg* arg = alloc_template_arg(tak_type);
    arg->value.type = type;
    arg->next = next;
    return arg;
  }

  static a_template_arg* constant_arg(a_constant* constant) {
    a_template_arg* arg = alloc_template_arg(tak_constant);
    arg->value.constant = constant;
    return arg;
  }

  static a_type* instance(a_template* templ, const char* name, a_template_arg* args) {
    a_type* type = make_class(name);
    class_supplement_of(type)->assoc_template = templ;
    class_supplement_of(type)->template_args = args;
    return type;
  }

  static a_constant* integer(int64_t value, a_type* type) {
    a_constant* constant = fs_constant(con_integer);
    constant->type = type;
    constant->value.int_value = static_cast<uint64_t>(value);
    return constant;
  }

  static an_exception_specification* throws(std::initializer_list<a_type*> types) {
    an_exception_specification* spec = alloc_exception_specification();
    an_exception_specification_type** link = &spec->types;
    for (a_type* type : types) {
      *link = alloc_exception_specification_type();
      (*link)->type = type;
      link = &(*link)->next;
    }
    return spec;
  }

  static an_exception_specification* noexcept_spec(a_constant* condition) {
    an_exception_specification* spec = alloc_exception_specification();
    spec->is_noexcept = 1;
    spec->noexcept_constant = condition;
    return spec;
  }
};

// --- Identity and compatibility.

TEST_F(CPLUSPLUS_TYPES, MemberFunctionsDifferInQualifiersAndClass) {
  a_type* c = make_class("c");
  a_type* d = make_class("d");
  a_type* plain = member_function(c, tq_none);
  a_type* constant = member_function(c, tq_const);
  a_type* other_class = member_function(d, tq_none);
  a_type* ref_qualified = member_function(c, tq_none);
  ref_qualified->variant.routine.routine_supplement->has_lvalue_ref_qualifier = 1;
  struct {
    a_type *a, *b;
    unsigned flags;
    bool match;
  } cases[] = {
      {plain, member_function(c, tq_none), tcf_none, true},
      {plain, constant, tcf_none, false},
      {plain, ref_qualified, tcf_none, false},
      {plain, other_class, tcf_none, false},
      {plain, other_class, tcf_ignore_this_class, true},
      // Behind a pointer the class is that of the pointer.
      {ptr_to_member_type_full(plain, c, 0), ptr_to_member_type_full(plain, d, 0), tcf_none, false},
      {ptr_to_member_type_full(plain, c, 0), ptr_to_member_type_full(plain, d, 0),
       tcf_ignore_ptr_to_member_class, true},
      {ptr_to_member_type_full(plain, c, 0), ptr_to_member_type_full(constant, c, 0), tcf_none,
       false},
      {ptr_to_member_type_full(plain, c, 0),
       ptr_to_member_type_full(member_function(c, tq_none), c, 0), tcf_none, true},
  };
  for (const auto& c2 : cases) {
    EXPECT_EQ(f_types_are_compatible(c2.a, c2.b, c2.flags), c2.match) << text(c2.a);
    EXPECT_EQ(f_identical_types(c2.a, c2.b, c2.flags), c2.match) << text(c2.b);
  }
  // Deduction may let a member of a base pass.
  add_base(d, c);
  EXPECT_FALSE(f_types_are_compatible(plain, other_class, tcf_inexact_this_class));
  inexact_ptr_to_member_deduction_enabled = 1;
  EXPECT_TRUE(f_types_are_compatible(plain, other_class, tcf_inexact_this_class));
}

TEST_F(CPLUSPLUS_TYPES, TheClassOfAPointerToMemberIsBare) {
  a_type* c = make_class("c");
  a_type* const_c = make_qualified_type(named(make_typedef_type(c), "c_t"), tq_const);
  a_type* pointer = ptr_to_member_type_full(member_function(c, tq_none), const_c, 0);
  EXPECT_EQ(pm_class_type(pointer), c);
  EXPECT_EQ(text(pointer), "int (c::*)(char) const");
  EXPECT_EQ(ptr_to_member_type_full(int_(), c, 0), ptr_to_member_type_full(int_(), const_c, 0));
  // Queries of the error type are safe.
  EXPECT_TRUE(is_error_type(pm_member_type(error_type())));
  EXPECT_TRUE(is_error_type(pm_class_type(error_type())));
}

TEST_F(CPLUSPLUS_TYPES, TemplateParametersAndInstances) {
  a_type* t = template_param("T", 1, 1);
  a_type* same = template_param("U", 1, 1);
  a_type* second = template_param("T", 1, 2);
  EXPECT_TRUE(identical_types(t, same));
  EXPECT_FALSE(identical_types(t, second));
  EXPECT_TRUE(types_are_compatible(make_pointer_type(t), make_pointer_type(same)));
  a_template* vec = alloc_template();
  a_template* redeclared = alloc_template();
  redeclared->canonical = vec;
  a_type* of_t = instance(vec, "vec", type_arg(t));
  EXPECT_TRUE(identical_types(of_t, instance(redeclared, "vec", type_arg(same))));
  EXPECT_FALSE(identical_types(of_t, instance(vec, "vec", type_arg(int_()))));
  EXPECT_FALSE(identical_types(of_t, instance(vec, "vec", type_arg(t, type_arg(t)))));
  EXPECT_FALSE(identical_types(of_t, instance(alloc_template(), "vec", type_arg(t))));
  const a_source_position nowhere = {0, 0, 0};
  EXPECT_TRUE(identical_types(make_auto_type(&nowhere, false), make_auto_type(&nowhere, false)));
  EXPECT_FALSE(identical_types(make_auto_type(&nowhere, false), make_auto_type(&nowhere, true)));
}

TEST_F(CPLUSPLUS_TYPES, DependentMembersAreComparedByNameAndClass) {
  auto member = [this](a_type* param, const char* name) {
    a_type* proxy = make_class("proxy");
    class_supplement_of(proxy)->proxy_of = param;
    a_scope* scope = alloc_scope(sk_class, 9);
    scope->assoc.type = proxy;
    a_type* type = named(alloc_type(tk_template_param), name);
    type->variant.template_param.template_param_kind = tptk_nontype_placeholder;
    type->source_corresp.parent_scope = scope;
    type->source_corresp.is_class_member = 1;
    return type;
  };
  a_type* t = template_param("T", 1, 1);
  a_type* first = member(t, "value_type");
  EXPECT_TRUE(identical_types(first, member(template_param("U", 1, 1), "value_type")));
  EXPECT_FALSE(identical_types(first, member(t, "key_type")));
  EXPECT_FALSE(identical_types(first, member(template_param("T", 2, 1), "value_type")));
  EXPECT_EQ(text(make_reference_type(first)), "T::value_type &");
}

TEST_F(CPLUSPLUS_TYPES, DependentDecltypesAreComparedByTheirExpressions) {
  auto decltype_of = [](int64_t value) {
    a_constant* constant = integer(value, int_());
    a_type* type =
        make_typeref_with_qualifiers(unknown_type(), tq_dependent_decltype | tq_decltype);
    type->variant.typeref.typeref_supplement->decltype_expr = alloc_node_for_constant(constant);
    return type;
  };
  EXPECT_TRUE(identical_types(decltype_of(1), decltype_of(1)));
  EXPECT_FALSE(identical_types(decltype_of(1), decltype_of(2)));
  EXPECT_FALSE(types_are_compatible(decltype_of(1), decltype_of(2)));
  EXPECT_FALSE(identical_types(decltype_of(1), unknown_type()));
}

TEST_F(CPLUSPLUS_TYPES, AliasTemplatesMatchStepByStep) {
  a_template* alias = alloc_template();
  auto use = [&](a_type* argument, a_type* result) {
    a_type* type = named(make_typedef_type(result), "alias");
    type->variant.typeref.typeref_supplement->assoc_template = alias;
    type->variant.typeref.typeref_supplement->template_args = type_arg(argument);
    return type;
  };
  a_type* first = use(int_(), template_param("T", 1, 1));
  a_type* second = use(int_(), template_param("T", 2, 1));
  EXPECT_FALSE(types_are_compatible(first, second));
  EXPECT_TRUE(f_types_are_compatible(first, second, tcf_template_aliases));
  EXPECT_FALSE(
      f_types_are_compatible(first, use(char_(), template_param("T", 2, 1)), tcf_template_aliases));
  EXPECT_EQ(text(first), "alias<int>");
}

TEST_F(CPLUSPLUS_TYPES, PlaceholderReturnTypesMatchTheirForm) {
  const a_source_position nowhere = {0, 0, 0};
  a_type* plain = make_routine_type_full(make_auto_type(&nowhere, false));
  a_type* with_decltype = make_routine_type_full(make_auto_type(&nowhere, true));
  auto returning = [](a_type_qualifier_set form) {
    return make_routine_type_full(make_typeref_with_qualifiers(integer_type(ik_int), form));
  };
  EXPECT_FALSE(types_are_compatible(plain, returning(tq_placeholder_1)));
  EXPECT_TRUE(f_types_are_compatible(plain, returning(tq_placeholder_1), tcf_placeholder_return));
  EXPECT_FALSE(f_types_are_compatible(plain, returning(tq_placeholder_2), tcf_placeholder_return));
  EXPECT_TRUE(
      f_types_are_compatible(returning(tq_placeholder_2), with_decltype, tcf_placeholder_return));
}

TEST_F(CPLUSPLUS_TYPES, EnableIfConditionsCountOnRequest) {
  auto routine_with = [](std::initializer_list<int64_t> conditions) {
    a_type* type = make_routine_type_full(int_(), int_());
    an_attribute** link = &type->source_corresp.attributes;
    for (int64_t condition : conditions) {
      *link = alloc_attribute();
      (*link)->kind = 14;
      (*link)->arguments = alloc_attribute_arg();
      (*link)->arguments->arg_kind = aak_constant;
      (*link)->arguments->value.constant = integer(condition, int_());
      link = &(*link)->next;
    }
    return type;
  };
  a_type* plain = routine_with({});
  a_type* one = routine_with({1});
  EXPECT_TRUE(types_are_compatible(plain, one));
  EXPECT_FALSE(f_types_are_compatible(plain, one, tcf_enable_if));
  EXPECT_TRUE(f_types_are_compatible(one, routine_with({1}), tcf_enable_if));
  EXPECT_FALSE(f_types_are_compatible(one, routine_with({2}), tcf_enable_if));
  EXPECT_FALSE(f_types_are_compatible(one, routine_with({1, 2}), tcf_enable_if));
}

TEST_F(CPLUSPLUS_TYPES, LinkageAndCallingConvention) {
  a_type* c_function = make_routine_type_full(int_());
  c_function->variant.routine.routine_supplement->name_linkage = nlk_c;
  a_type* function = make_routine_type_full(int_());
  function->variant.routine.routine_supplement->name_linkage = nlk_cplusplus;
  c_and_cpp_function_types_are_distinct = 1;
  impl_conv_between_c_and_cpp_function_ptrs_allowed = 1;
  EXPECT_FALSE(types_are_compatible(c_function, function));
  EXPECT_TRUE(f_types_are_compatible(c_function, function, tcf_ignore_linkage));
  EXPECT_TRUE(f_types_are_compatible(c_function, function, tcf_allow_c_cpp_conversion));
  a_type* other_convention = make_routine_type_full(int_());
  other_convention->variant.routine.routine_supplement->calling_convention_flags = 3;
  other_convention->variant.routine.routine_supplement->name_linkage = nlk_cplusplus;
  EXPECT_FALSE(types_are_compatible(function, other_convention));
  a_type_difference_list differences = {};
  EXPECT_TRUE(
      f_types_are_compatible_full(function, other_convention, tcf_record_convention, &differences));
  EXPECT_TRUE(differences.calling_convention_differs);
  gnu_mode = 1;
  EXPECT_TRUE(types_are_compatible(function, other_convention));
}

TEST_F(CPLUSPLUS_TYPES, ExceptionSpecifications) {
  a_type* base = make_class("base");
  a_type* derived = make_class("derived");
  add_base(derived, base);
  a_constant* zero = integer(0, bool_type());
  a_constant* one = integer(1, bool_type());
  auto* none = throws({});
  auto* any = throws({});
  any->is_any = 1;
  struct {
    an_exception_specification *a, *b;
    bool same, a_is_less_restrictive;
  } cases[] = {
      {nullptr, none, false, true},
      {none, nullptr, false, false},
      {nullptr, any, true, false},
      {noexcept_spec(zero), nullptr, true, false},
      {noexcept_spec(one), none, true, false},
      {noexcept_spec(nullptr), none, true, false},
      {throws({int_(), base}), throws({base, int_()}), true, false},
      {throws({int_()}), throws({char_()}), false, true},
      // A handler for the base catches the derived class, not the other way.
      {throws({derived}), throws({base}), false, false},
      {throws({base}), throws({derived}), false, true},
      {throws({make_pointer_type(derived)}), throws({make_pointer_type(base)}), false, false},
  };
  for (const auto& c : cases) {
    size_t index = static_cast<size_t>(&c - cases);
    EXPECT_EQ(same_exception_spec(c.a, c.b), c.same) << index;
    EXPECT_EQ(exception_spec_is_less_restrictive(c.a, c.b), c.a_is_less_restrictive) << index;
  }
}

// --- Conversions.

TEST_F(CPLUSPLUS_TYPES, PointersInAHierarchy) {
  a_type* base = make_class("base");
  a_type* derived = make_class("derived");
  a_type* virtual_base = make_class("vbase");
  a_type* stranger = make_class("stranger");
  add_base(derived, base);
  add_base(derived, virtual_base)->is_virtual = 1;
  a_type* to_base = make_pointer_type(base);
  a_type* to_derived = make_pointer_type(derived);
  a_type* to_virtual = make_pointer_type(virtual_base);
  a_std_conv_descr descr;
  auto converts = [&](a_type* source, a_type* target) {
    return impl_conversion_possible(source, false, nullptr, target, &descr);
  };
  EXPECT_TRUE(converts(to_derived, to_base));
  EXPECT_TRUE(descr.is_derived_to_base && descr.base_class->type == base);
  EXPECT_TRUE(converts(to_derived, make_ptr_to_const_type(base)));
  EXPECT_FALSE(converts(make_ptr_to_const_type(derived), to_base));
  EXPECT_TRUE(converts(to_derived, to_virtual));
  EXPECT_FALSE(converts(to_base, to_derived));
  EXPECT_FALSE(converts(make_pointer_type(stranger), to_base));
  // Downwards by a cast, but not from a virtual base.
  struct {
    a_type *source, *target;
    bool is_static, reinterprets;
  } casts[] = {
      {to_base, to_derived, true, true},
      {to_virtual, to_derived, false, true},
      {make_pointer_type(stranger), to_base, false, true},
      {make_ptr_to_const_type(base), to_derived, false, true},
      {make_ptr_to_const_type(void_type()), to_base, false, true},
      {void_star_type(), to_base, true, true},
      {base, make_reference_type(derived), true, true},
      {derived, make_reference_type(base), true, true},
      {make_qualified_type(base, tq_const), make_reference_type(base), false, true},
      {stranger, make_reference_type(base), false, true},
      {int_(), to_base, false, true},
      {to_base, int_(), false, true},
      {float_type(fk_double), to_base, false, false},
      {ptr_to_member_type_full(int_(), derived, 0), ptr_to_member_type_full(int_(), base, 0), true,
       true},
      {ptr_to_member_type_full(int_(), derived, 0),
       ptr_to_member_type_full(int_(), virtual_base, 0), false, true},
      {ptr_to_member_type_full(int_(), base, 0),
       ptr_to_member_type_full(member_function(base, 0), base, 0), false, false},
  };
  for (const auto& c : casts) {
    EXPECT_EQ(static_cast_conversion_possible(c.source, c.target, nullptr), c.is_static)
        << text(c.source) << " to " << text(c.target);
    EXPECT_EQ(reinterpret_cast_conversion_possible(c.source, c.target), c.reinterprets)
        << text(c.source) << " to " << text(c.target);
  }
  class_supplement_of(derived)->base_classes->next->is_ambiguous = 1;
  EXPECT_FALSE(converts(to_derived, to_base));
}

TEST_F(CPLUSPLUS_TYPES, PointersToMembersConvertDownwards) {
  a_type* base = make_class("base");
  a_type* derived = make_class("derived");
  a_base_class* entry = add_base(derived, base);
  a_std_conv_descr descr;
  auto converts = [&](a_type* source, a_type* target, a_constant* constant = nullptr) {
    return impl_conversion_possible(source, false, constant, target, &descr);
  };
  a_type* of_base = ptr_to_member_type_full(int_(), base, 0);
  a_type* of_derived = ptr_to_member_type_full(int_(), derived, 0);
  EXPECT_TRUE(converts(of_base, of_derived));
  EXPECT_FALSE(converts(of_derived, of_base));
  EXPECT_TRUE(converts(of_base, ptr_to_member_type_full(const_int(), derived, 0)));
  EXPECT_FALSE(converts(ptr_to_member_type_full(const_int(), base, 0), of_derived));
  EXPECT_TRUE(converts(ptr_to_member_type_full(member_function(base, tq_const), base, 0),
                       ptr_to_member_type_full(member_function(derived, tq_const), derived, 0)));
  EXPECT_FALSE(converts(ptr_to_member_type_full(member_function(base, tq_const), base, 0),
                        ptr_to_member_type_full(member_function(derived, tq_none), derived, 0)));
  EXPECT_TRUE(converts(int_(), of_base, integer(0, int_())));
  EXPECT_TRUE(descr.is_null_pointer_conversion);
  EXPECT_TRUE(converts(of_base, bool_type()));
  EXPECT_TRUE(descr.is_boolean_conversion);
  entry->is_virtual = 1;
  EXPECT_FALSE(converts(of_base, of_derived));
}

TEST_F(CPLUSPLUS_TYPES, EnumsAndNullPointers) {
  a_type* e = make_enum("e", ik_int);
  a_type* scoped = make_enum("s", ik_int);
  scoped->variant.integer.is_scoped_enum = 1;
  a_type* pointer = make_pointer_type(int_());
  struct {
    a_type *source, *target;
    a_constant* constant;
    bool possible;
  } cases[] = {
      {e, int_(), nullptr, true},
      {scoped, int_(), nullptr, false},
      {scoped, bool_type(), nullptr, false},
      {e, bool_type(), nullptr, true},
      {int_(), e, nullptr, false},
      {e, e, nullptr, true},
      {int_(), pointer, integer(0, int_()), true},
      {int_(), pointer, integer(1, int_()), false},
      {e, pointer, integer(0, e), false},
      {standard_nullptr_type(), pointer, nullptr, true},
      {int_(), standard_nullptr_type(), integer(0, int_()), true},
      {pointer, standard_nullptr_type(), nullptr, false},
      {pointer, make_reference_type(int_()), nullptr, false},
      {int_(), template_param("T", 1, 1), nullptr, true},
  };
  a_std_conv_descr descr;
  for (const auto& c : cases)
    EXPECT_EQ(impl_conversion_possible(c.source, false, c.constant, c.target, &descr), c.possible)
        << text(c.source) << " to " << text(c.target);
  cfront_2_1_mode = 1;
  EXPECT_TRUE(impl_conversion_possible(int_(), false, nullptr, e, &descr));
  EXPECT_EQ(descr.error_code, 190);
}

TEST_F(CPLUSPLUS_TYPES, ALossIsNotedOnRequest) {
  a_std_conv_descr descr;
  impl_conversion_possible(int_(), false, nullptr, char_(), &descr);
  EXPECT_FALSE(descr.is_lossy);
  lossy_conversion_warning = 1;
  struct {
    a_type *source, *target;
    a_constant* constant;
    bool lossy;
  } cases[] = {{int_(), char_(), nullptr, true},
               {int_(), char_(), integer(300, int_()), false},
               {char_(), int_(), nullptr, false},
               {int_(), float_type(fk_float), nullptr, true},
               {float_type(fk_float), float_type(fk_double), nullptr, false}};
  for (const auto& c : cases) {
    impl_conversion_possible(c.source, false, c.constant, c.target, &descr);
    EXPECT_EQ(descr.is_lossy, c.lossy) << text(c.source) << " to " << text(c.target);
  }
}

TEST_F(CPLUSPLUS_TYPES, MultilevelComposites) {
  a_type* p = make_pointer_type(make_pointer_type(int_()));
  a_type* q = make_pointer_type(make_pointer_type(const_int()));
  EXPECT_EQ(text(multilevel_composite_pointer_type(p, q)), "const int *const *");
  EXPECT_EQ(multilevel_composite_pointer_type(p, make_pointer_type(make_pointer_type(char_()))),
            nullptr);
}

// --- Walking a type.

TEST_F(CPLUSPLUS_TYPES, TheWalkEntersWhatItsFlagsSelect) {
  a_type* in_param = make_pointer_type(make_routine_type_full(void_type(), error_type()));
  a_type* with_arg = instance(alloc_template(), "t", type_arg(error_type()));
  a_type* with_base = make_class("d");
  add_base(with_base, error_type());
  a_type* with_bound = alloc_type(tk_array);
  with_bound->variant.array.element_type = int_();
  with_bound->variant.array.bound_is_constant = 1;
  with_bound->variant.array.bound.dependent_constant = integer(1, error_type());
  a_type* below = make_array_type(ptr_to_member_type_full(error_type(), make_class("c"), 0), 3);
  a_type* of_class = ptr_to_member_type_full(int_(), error_type(), 0);
  struct {
    a_type* type;
    unsigned flag; // without which the error type isn't found
  } cases[] = {{in_param, ttf_param_types},
               {with_arg, ttf_template_args},
               {with_base, ttf_base_classes},
               {with_bound, ttf_array_bounds},
               {below, ttf_none},
               {of_class, ttf_none},
               {make_pointer_type(with_arg), ttf_template_args}};
  auto is_error = [](a_type* type) { return type->kind == tk_error; };
  for (const auto& c : cases) {
    EXPECT_TRUE(traverse_type_tree(c.type, is_error, ttf_all)) << text(c.type);
    EXPECT_TRUE(traverse_type_tree(c.type, is_error, c.flag)) << text(c.type);
    EXPECT_EQ(traverse_type_tree(c.type, is_error, ttf_all & ~c.flag), c.flag == ttf_none)
        << text(c.type);
  }
  EXPECT_TRUE(is_or_contains_error_type(with_bound));
}

TEST_F(CPLUSPLUS_TYPES, AClassMayBeAnArgumentOfItsBase) {
  a_type* derived = make_class("d");
  a_type* base = instance(alloc_template(), "b", type_arg(derived));
  add_base(derived, base);
  auto never = [](a_type*) { return false; };
  EXPECT_FALSE(traverse_type_tree(derived, never, ttf_all));
  EXPECT_FALSE(is_or_contains_error_type(base));
}

TEST_F(CPLUSPLUS_TYPES, DependentTypes) {
  a_type* t = template_param("T", 1, 1);
  a_type* bound_by_sizeof = alloc_type(tk_array);
  bound_by_sizeof->variant.array.element_type = int_();
  bound_by_sizeof->variant.array.bound_is_expr = 1;
  an_expr_node* size = alloc_expr_node(expr_sizeof_like);
  size->type = size_t_type();
  size->variant.sizeof_like.is_type = 1;
  size->variant.sizeof_like.operand.type = make_pointer_type(t);
  bound_by_sizeof->variant.array.bound.expr = size;
  for (a_type* type : {t, make_pointer_type(t), make_routine_type_full(int_(), t), bound_by_sizeof,
                       instance(alloc_template(), "v", type_arg(t))})
    EXPECT_TRUE(is_template_dependent_type(type)) << text(type);
  EXPECT_FALSE(is_template_dependent_type(instance(alloc_template(), "v", type_arg(int_()))));
}

// --- Texts.

TEST_F(CPLUSPLUS_TYPES, DeclaratorsAreWrittenAsInCplusplus) {
  a_type* c = make_class("c");
  a_type* method = member_function(c, tq_const | tq_volatile);
  method->variant.routine.routine_supplement->has_rvalue_ref_qualifier = 1;
  method->variant.routine.routine_supplement->exception_specification = throws({int_(), c});
  a_type* never = make_routine_type_full(void_type());
  never->variant.routine.routine_supplement->exception_specification = noexcept_spec(nullptr);
  a_type* maybe = make_routine_type_full(void_type());
  maybe->variant.routine.routine_supplement->exception_specification =
      noexcept_spec(integer(0, bool_type()));
  a_template* vec = alloc_template();
  a_type* inner = instance(vec, "vec", type_arg(int_()));
  a_type* fixed =
      instance(alloc_template(), "arr", type_arg(char_(), constant_arg(integer(-3, int_()))));
  a_type* pack = make_routine_type_full(void_type(), template_param("Ts", 1, 1));
  param_types_of(pack)->is_parameter_pack = 1;
  a_type* e = make_enum("e", ik_int);
  a_constant* red = integer(1, e);
  red->source_corresp.name = "red";
  e->variant.integer.enum_data.first_enumerator = red;
  a_constant* letter = integer('x', char_());
  letter->is_character_literal = 1;
  auto chosen_by = [](a_constant* value) {
    return instance(alloc_template(), "t", constant_arg(value));
  };
  struct {
    a_type* type;
    const char* text;
  } cases[] = {
      {ptr_to_member_type_full(method, c, 0), "int (c::*)(char) const volatile && throw(int, c)"},
      {make_array_type(ptr_to_member_type_full(int_(), c, 0), 2), "int c::*[2]"},
      {make_reference_type(make_array_type(const_int(), 2)), "const int (&)[2]"},
      {make_rvalue_reference_type(never), "void (&&)() noexcept"},
      {maybe, "void () noexcept(false)"},
      {instance(vec, "vec", type_arg(inner)), "vec<vec<int> >"},
      {make_pointer_type(fixed), "arr<char, -3> *"},
      {pack, "void (Ts...)"},
      {chosen_by(integer(1, bool_type())), "t<true>"},
      {chosen_by(letter), "t<'x'>"},
      {chosen_by(red), "t<red>"},
      {chosen_by(integer(7, e)), "t<(e)7>"},
      {chosen_by(integer(0, standard_nullptr_type())), "t<nullptr>"},
      {make_qualified_type(make_pointer_type(int_()), tq_restrict), "int *__restrict"},
      {make_qualified_type(make_enum("e", ik_int), tq_const), "const e"},
  };
  for (const auto& entry : cases)
    EXPECT_EQ(text(entry.type), entry.text);
}

TEST_F(CPLUSPLUS_TYPES, NamesAreQualified) {
  auto space = [](const char* name, a_scope* parent, bool is_inline) {
    a_namespace* entry = alloc_namespace();
    entry->source_corresp.name = name;
    entry->source_corresp.is_unnamed = name == nullptr;
    entry->source_corresp.parent_scope = parent;
    entry->is_inline = is_inline;
    a_scope* scope = alloc_scope(sk_namespace, 5);
    scope->assoc.namespace_entry = entry;
    return scope;
  };
  a_scope* outer = space("n", nullptr, false);
  a_type* in_inline = make_class("c");
  in_inline->source_corresp.parent_scope = space("v1", outer, true);
  a_type* in_unnamed = make_class("d");
  in_unnamed->source_corresp.parent_scope = space(nullptr, outer, false);
  EXPECT_EQ(text(in_inline), "n::c");
  EXPECT_EQ(text(in_unnamed), "n::<unnamed>::d");
  EXPECT_TRUE(is_or_contains_unnamed_namespace_type(make_pointer_type(in_unnamed)));
  EXPECT_FALSE(is_or_contains_unnamed_namespace_type(make_pointer_type(in_inline)));
  a_text_buffer* buffer = alloc_text_buffer(10);
  an_il_to_str_control control;
  init_il_to_str_control(&control, buffer);
  control.fully_qualified = true;
  form_type(in_inline, &control);
  EXPECT_EQ(std::string(buffer->data, buffer->used_size), "n::v1::c");
  a_routine* conversion = alloc_routine();
  conversion->source_corresp.name = "operator";
  conversion->special_kind = rsk_conversion;
  conversion->special_data.conversion_target = make_pointer_type(int_());
  reset_text_buffer(buffer);
  form_entity_name(&conversion->source_corresp, iek_routine, &control);
  EXPECT_EQ(std::string(buffer->data, buffer->used_size), "operator int *");
}

// --- What lasts beyond a unit.

TEST_F(CPLUSPLUS_TYPES, EveryCacheIsSavedInAPrecompiledHeader) {
  std::vector<std::pair<char*, size_t>> saved;
  for (int i = 0; i < num_pch_saved_variable_tables; ++i)
    for (const a_pch_saved_variable* row = pch_saved_variable_tables[i]; row->address != nullptr;
         ++row)
      saved.push_back({static_cast<char*>(row->address), row->size});
  // A cached type is found again after the saved bytes have come back.
  a_type* before = integer_type(ik_int);
  a_type* literal = string_literal_type(sck_ordinary, 5);
  std::vector<std::string> images;
  for (const auto& [address, size] : saved)
    images.push_back(std::string(address, size));
  types_trans_unit_init();
  EXPECT_NE(integer_type(ik_int), before);
  for (size_t i = 0; i < saved.size(); ++i)
    std::copy(images[i].begin(), images[i].end(), saved[i].first);
  EXPECT_EQ(integer_type(ik_int), before);
  EXPECT_EQ(string_literal_type(sck_ordinary, 5), literal);
}

} // namespace
