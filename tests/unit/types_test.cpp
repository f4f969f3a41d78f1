#include "types_fixture.h"

namespace {

// --- Making types.

TEST_F(TYPES_TEST, DerivedTypesAreSharedRecords) {
  EXPECT_EQ(make_pointer_type(const_int()), make_pointer_type(const_int()));
  EXPECT_NE(make_pointer_type(int_()), make_pointer_type(const_int()));
  EXPECT_NE(make_reference_type(int_()), make_rvalue_reference_type(int_()));
  EXPECT_NE(make_reference_type(int_()), make_lhsref_type(int_()));
  // The order in which qualifiers are added makes no difference.
  a_type* cv = make_qualified_type(make_qualified_type(int_(), tq_volatile), tq_const);
  EXPECT_EQ(cv, make_qualified_type(int_(), tq_const | tq_volatile));
  EXPECT_EQ(make_qualified_type(cv, tq_const), cv);
  EXPECT_EQ(make_unqualified_type(cv), int_());
}

TEST_F(TYPES_TEST, TheLastTypeFoundIsFirstInTheList) {
  a_type* pointer = make_pointer_type(char_());
  make_reference_type(char_());
  make_qualified_type(char_(), tq_const);
  make_pointer_type(char_());
  EXPECT_EQ(char_()->based_types->derived_type, pointer);
}

TEST_F(TYPES_TEST, QualifiersOfAnArrayAreThoseOfItsElements) {
  a_type* array = make_array_type(make_array_type(int_(), 3), 2);
  a_type* qualified = make_qualified_type(array, tq_const);
  EXPECT_EQ(qualified, make_qualified_type(array, tq_const));
  EXPECT_EQ(qualified->kind, tk_array);
  EXPECT_EQ(qualified->size, 24u);
  EXPECT_EQ(f_get_type_qualifiers(qualified, false), tq_const);
  EXPECT_EQ(f_get_type_qualifiers(qualified, true), tq_none);
  EXPECT_EQ(underlying_array_element_type(qualified), const_int());
  EXPECT_EQ(text(qualified), "const int [2][3]");
  EXPECT_EQ(text(make_unqualified_type(qualified)), "int [2][3]");
}

TEST_F(TYPES_TEST, OfSeveralNullabilitiesOneIsTaken) {
  a_type* pointer = make_pointer_type(int_());
  EXPECT_EQ(get_type_qualifiers(make_qualified_type(pointer, tq_nullable | tq_nonnull)),
            tq_nullable);
}

TEST_F(TYPES_TEST, SomeQualifiersAreDropped) {
  a_type* reference = make_reference_type(int_());
  EXPECT_EQ(make_qualified_type(reference, tq_const | tq_volatile), reference);
  EXPECT_EQ(get_type_qualifiers(make_qualified_type(reference, tq_const | tq_restrict)),
            tq_restrict);
  a_type* nonnull = make_qualified_type(make_pointer_type(int_()), tq_nonnull);
  EXPECT_EQ(make_qualified_type(nonnull, tq_nullable), nonnull);
  EXPECT_EQ(get_type_qualifiers(make_qualified_type(nonnull, tq_nullable | tq_const)),
            tq_nonnull | tq_const);
}

TEST_F(TYPES_TEST, ATypedefKeepsItsNameUnderQualifiers) {
  a_type* number = named(make_typedef_type(const_int()), "number");
  a_type* qualified = make_qualified_type(number, tq_volatile);
  EXPECT_EQ(text(qualified), "volatile number");
  EXPECT_EQ(get_type_qualifiers(qualified), tq_const | tq_volatile);
  EXPECT_EQ(make_qualified_type(number, tq_const), number);
  EXPECT_EQ(skip_typedefs(number), const_int());
  EXPECT_EQ(skip_typerefs_not_typedefs(qualified), number);
  EXPECT_EQ(f_skip_typerefs(qualified), int_());
}

TEST_F(TYPES_TEST, ReferencesCollapse) {
  a_type* lvalue = make_reference_type(int_());
  a_type* rvalue = make_rvalue_reference_type(int_());
  EXPECT_EQ(make_reference_to_reference(rvalue, true), rvalue);
  EXPECT_EQ(make_reference_to_reference(rvalue, false), lvalue);
  EXPECT_EQ(make_reference_to_reference(lvalue, true), lvalue);
}

// --- Sizes.

TEST_F(TYPES_TEST, SizesAreThoseOfTheTarget) {
  EXPECT_EQ(integer_type(ik_short)->size, 2u);
  EXPECT_EQ(integer_type(ik_long)->precision, 32u);
  EXPECT_EQ(complex_type(fk_long_double)->size, 2 * float_type(fk_long_double)->size);
  EXPECT_EQ(make_pointer_type(int_())->size, 4u);
  EXPECT_EQ(make_pointer_type(make_routine_type_full(void_type()))->size, 2u);
  EXPECT_EQ(error_type()->size, 1u);
  EXPECT_TRUE(void_type()->is_incomplete);
}

TEST_F(TYPES_TEST, ArrayCompleteness) {
  a_type* unbounded = make_incomplete_array_type(int_());
  EXPECT_TRUE(unbounded->is_incomplete);
  EXPECT_TRUE(is_incomplete_array_type(unbounded));
  EXPECT_TRUE(is_flexible_array_type(unbounded));
  a_type* empty = make_array_type(int_(), 0); // a GNU zero-length array
  EXPECT_FALSE(empty->is_incomplete);
  EXPECT_EQ(empty->size, 0u);
  EXPECT_FALSE(is_flexible_array_type(empty));
  gpp_mode = 1;
  EXPECT_TRUE(is_flexible_array_type(empty));
}

TEST_F(TYPES_TEST, AnArrayOfAnIncompleteClassWaitsForIt) {
  a_type* tag = make_struct("s");
  a_type* inner = make_array_type(tag, 3);
  a_type* outer = make_array_type(inner, 2);
  a_type* other = make_array_type(make_struct("t"), 2);
  EXPECT_TRUE(outer->is_incomplete);
  complete(tag, 5);
  EXPECT_EQ(inner->size, 15u);
  EXPECT_EQ(outer->size, 30u);
  EXPECT_FALSE(outer->is_incomplete);
  EXPECT_TRUE(other->is_incomplete);
}

TEST_F(TYPES_TEST, ATooLargeArrayBecomesTheErrorType) {
  a_type* largest = alloc_type(tk_array);
  largest->variant.array.element_type = int_();
  largest->variant.array.bound.number_of_elements = 0x3fffffff;
  set_array_type_size(largest, true);
  EXPECT_EQ(largest->size, 0xfffffffcu);
  a_type* too_large = alloc_type(tk_array);
  too_large->variant.array.element_type = int_();
  too_large->variant.array.bound.number_of_elements = 0x40000000;
  set_array_type_size(too_large, true);
  EXPECT_TRUE(is_error_type(too_large));
}

TEST_F(TYPES_TEST, AnAlignmentGivenToAnArrayStays) {
  a_type* aligned = named(make_typedef_type(make_array_type(int_(), 3)), "a");
  aligned->has_explicit_alignment = 1;
  aligned->alignment = 16;
  a_type* qualified = make_qualified_type(aligned, tq_const);
  EXPECT_EQ(f_alignment_of_type(qualified), 16u);
  EXPECT_EQ(make_qualified_type(aligned, tq_const), qualified);
  EXPECT_NE(make_qualified_type(f_skip_typerefs(aligned), tq_const), qualified);
  // A typeref that carries an alignment isn't looked through.
  a_type* unnamed = make_typeref_with_qualifiers(int_(), tq_none);
  unnamed->has_explicit_alignment = 1;
  unnamed->alignment = 8;
  EXPECT_EQ(f_alignment_of_type(make_qualified_type(unnamed, tq_const)), 8u);
}

TEST_F(TYPES_TEST, AnArrayThatBecameAnErrorIsLeftAlone) {
  a_type* tag = make_struct("s");
  a_type* array = make_array_type(tag, 3);
  set_type_kind(array, tk_error);
  complete(tag, 5);
  EXPECT_TRUE(is_error_type(array));
  EXPECT_EQ(array->size, 1u);
}

TEST_F(TYPES_TEST, InitialStates) {
  struct {
    a_type_kind kind;
    bool is_incomplete;
    uint64_t size;
  } cases[] = {{tk_error, false, 1},   {tk_void, true, 0},           {tk_integer, false, 0},
               {tk_float, false, 0},   {tk_imaginary, false, 0},     {tk_complex, false, 0},
               {tk_pointer, false, 0}, {tk_routine, false, 0},       {tk_array, true, 0},
               {tk_class, true, 0},    {tk_struct, true, 0},         {tk_union, true, 0},
               {tk_typeref, false, 0}, {tk_ptr_to_member, false, 0}, {tk_template_param, false, 0},
               {tk_nullptr, false, 0}, {tk_unknown, false, 0}};
  for (const auto& c : cases) {
    a_type* type = alloc_type(c.kind);
    EXPECT_EQ(type->is_incomplete, c.is_incomplete) << int(c.kind);
    EXPECT_EQ(type->size, c.size) << int(c.kind);
    EXPECT_EQ(type->alignment, 1u) << int(c.kind);
  }
  const auto& routine = *alloc_type(tk_routine)->variant.routine.routine_supplement;
  EXPECT_EQ(routine.param_count_info, 65535);
  EXPECT_EQ(routine.name_linkage, default_routine_name_linkage);
  const auto& class_info = *alloc_type(tk_union)->variant.class_struct_union.class_supplement;
  EXPECT_EQ(class_info.nonvirtual_alignment, 1);
  EXPECT_EQ(class_info.pack_alignment, 0);
  EXPECT_EQ(class_info.max_member_alignment, 65535);
  EXPECT_EQ(class_info.virtual_function_info_offset, -3);
  EXPECT_EQ(alloc_type(tk_typeref)->variant.typeref.typeref_supplement->index, -1);
  EXPECT_EQ(alloc_type(tk_integer)->variant.integer.int_kind, ik_int);
}

// --- Queries.

TEST_F(TYPES_TEST, EnumsDependOnTheLanguage) {
  a_type* e = make_enum("e", ik_int);
  EXPECT_TRUE(is_integral_or_enum_type(e));
  EXPECT_FALSE(is_integral_type(e));
  il_header.enum_type_is_integral = 1;
  EXPECT_TRUE(is_integral_type(e));
  EXPECT_TRUE(is_arithmetic_type(e));
  EXPECT_FALSE(is_character_type(make_enum("small", ik_unsigned_char)));
  restart_in_cplusplus();
  EXPECT_FALSE(is_arithmetic_type(make_enum("e", ik_int)));
}

TEST_F(TYPES_TEST, ObjectTypes) {
  a_type* tag = make_struct("s");
  EXPECT_FALSE(is_object_type(tag));
  EXPECT_FALSE(is_object_type(make_routine_type_full(void_type())));
  EXPECT_TRUE(is_void_star_type(void_star_type()));
  a_type* const_void = make_pointer_type(make_qualified_type(void_type(), tq_const));
  EXPECT_FALSE(is_void_star_type(const_void));
  EXPECT_TRUE(is_pointer_to_void_type(const_void));
  EXPECT_FALSE(is_pointer_to_object_type(const_void));
  restart_in_cplusplus();
  EXPECT_TRUE(is_object_type(make_struct("s"))); // incomplete
  EXPECT_FALSE(is_object_type(make_reference_type(integer_type(ik_int))));
}

TEST_F(TYPES_TEST, AVariableBoundShowsThroughAllLevels) {
  a_type* vla = make_array_type(int_(), 1);
  vla->variant.array.is_vla = 1;
  a_type* outer = make_array_type(vla, 4);
  EXPECT_TRUE(is_vla_type(outer));
  EXPECT_FALSE(is_vla_type(make_pointer_type(outer)));
  EXPECT_TRUE(is_variably_modified_type(make_pointer_type(outer)));
  EXPECT_FALSE(is_variably_modified_type(make_pointer_type(make_array_type(int_(), 4))));
}

// --- Promotion and arithmetic conversions.

TEST_F(TYPES_TEST, IntegralPromotion) {
  EXPECT_EQ(type_after_integral_promotion(char_()), int_());
  EXPECT_EQ(type_after_integral_promotion(integer_type(ik_unsigned_short)), int_());
  EXPECT_EQ(type_after_integral_promotion(bool_type()), int_());
  EXPECT_EQ(type_after_integral_promotion(integer_type(ik_long)), integer_type(ik_long));
  targ_sizeof_short = 4;
  EXPECT_EQ(type_after_integral_promotion(integer_type(ik_unsigned_short)),
            integer_type(ik_unsigned_int));
  EXPECT_EQ(default_argument_promotion(float_type(fk_float)), float_type(fk_double));
}

TEST_F(TYPES_TEST, OldCKeepsUnsignedness) {
  restart(cd_k_and_r);
  EXPECT_EQ(type_after_integral_promotion(integer_type(ik_unsigned_char)),
            integer_type(ik_unsigned_int));
  EXPECT_EQ(usual_arithmetic_conversions(float_type(fk_float), int_()), float_type(fk_double));
}

TEST_F(TYPES_TEST, BitFieldsPromoteByTheirWidth) {
  a_type* unsigned_int = integer_type(ik_unsigned_int);
  EXPECT_EQ(type_after_bit_field_promotion(unsigned_int, 31), int_());
  EXPECT_EQ(type_after_bit_field_promotion(unsigned_int, 32), unsigned_int);
  EXPECT_EQ(type_after_bit_field_promotion(integer_type(ik_unsigned_long_long), 33),
            integer_type(ik_unsigned_long_long));
}

TEST_F(TYPES_TEST, UsualArithmeticConversions) {
  struct {
    int kind1, kind2, result;
  } cases[] = {{ik_char, ik_short, ik_int},
               {ik_unsigned_int, ik_int, ik_unsigned_int},
               // int and long have one size here, so long can't hold the value
               {ik_long, ik_unsigned_int, ik_unsigned_long},
               {ik_long_long, ik_unsigned_long, ik_long_long},
               {ik_long_long, ik_unsigned_long_long, ik_unsigned_long_long}};
  for (const auto& c : cases) {
    EXPECT_EQ(usual_arithmetic_conversions(integer_type(c.kind1), integer_type(c.kind2)),
              integer_type(c.result));
    EXPECT_EQ(usual_arithmetic_conversions(integer_type(c.kind2), integer_type(c.kind1)),
              integer_type(c.result));
  }
  targ_precisionof_long = 64;
  EXPECT_EQ(
      usual_arithmetic_conversions(integer_type(ik_unsigned_long), integer_type(ik_long_long)),
      integer_type(ik_unsigned_long_long));
  EXPECT_EQ(usual_arithmetic_conversions(integer_type(ik_long), integer_type(ik_unsigned_int)),
            integer_type(ik_long));
}

TEST_F(TYPES_TEST, LongIsPreservedOnRequestInEveryDialect) {
  targ_precisionof_long = targ_precisionof_int;
  for (int dialect : {cd_ansi_c, cd_k_and_r}) {
    restart(dialect);
    a_type* long_ = integer_type(ik_long);
    a_type* unsigned_int = integer_type(ik_unsigned_int);
    EXPECT_EQ(usual_arithmetic_conversions(long_, unsigned_int), integer_type(ik_unsigned_long));
    long_preserving_rules = 1;
    EXPECT_EQ(usual_arithmetic_conversions(unsigned_int, long_), long_);
    EXPECT_EQ(usual_arithmetic_conversions(long_, integer_type(ik_unsigned_long)),
              integer_type(ik_unsigned_long));
  }
}

TEST_F(TYPES_TEST, FloatingConversions) {
  auto common = usual_arithmetic_conversions;
  EXPECT_EQ(common(int_(), float_type(fk_float)), float_type(fk_float));
  // Equal mantissas: the higher kind wins.
  EXPECT_EQ(common(float_type(fk_double), float_type(fk_long_double)), float_type(fk_long_double));
  EXPECT_EQ(common(complex_type(fk_float), float_type(fk_double)), complex_type(fk_double));
  EXPECT_EQ(common(imaginary_type(fk_float), imaginary_type(fk_float)), imaginary_type(fk_float));
  EXPECT_EQ(common(imaginary_type(fk_float), int_()), complex_type(fk_float));
  EXPECT_TRUE(is_error_type(common(error_type(), int_())));
}

// --- Compatibility (C99 6.2.7, 6.7.3 p9, 6.7.5).

TEST_F(TYPES_TEST, QualifiersAndNullability) {
  EXPECT_FALSE(types_are_compatible(const_int(), int_()));
  EXPECT_TRUE(f_types_are_compatible(const_int(), int_(), tcf_ignore_top_qualifiers));
  a_type* pointer = make_pointer_type(int_());
  EXPECT_TRUE(types_are_compatible(make_qualified_type(pointer, tq_nonnull), pointer));
  // The flag is for the top level only.
  EXPECT_FALSE(
      f_types_are_compatible(make_pointer_type(const_int()), pointer, tcf_ignore_top_qualifiers));
  EXPECT_TRUE(f_types_are_compatible(error_type(), const_int(), tcf_error_matches));
  EXPECT_FALSE(types_are_compatible(error_type(), const_int()));
}

TEST_F(TYPES_TEST, EnumsAndTheirIntegerTypes) {
  a_type* e = make_enum("e", ik_unsigned_int);
  a_type* f = make_enum("f", ik_unsigned_int);
  EXPECT_TRUE(types_are_compatible(e, integer_type(ik_unsigned_int)));
  EXPECT_FALSE(types_are_compatible(e, int_()));
  EXPECT_FALSE(types_are_compatible(e, f));
  EXPECT_FALSE(f_types_are_compatible(e, integer_type(ik_unsigned_int), tcf_distinct_enums));
  gcc_mode = 1;
  gnu_version = 30399;
  EXPECT_TRUE(types_are_compatible(e, f));
  restart_in_cplusplus();
  EXPECT_FALSE(types_are_compatible(make_enum("e", ik_int), integer_type(ik_int)));
}

TEST_F(TYPES_TEST, CharacterTypesAreDistinct) {
  EXPECT_FALSE(types_are_compatible(char_(), integer_type(ik_unsigned_char)));
  EXPECT_FALSE(types_are_compatible(bool_type(), integer_type(ik_unsigned_char)));
  EXPECT_TRUE(types_are_compatible(int_(), signed_integer_type(ik_int)));
}

TEST_F(TYPES_TEST, ArrayBounds) {
  a_type* unknown = make_incomplete_array_type(int_());
  a_type* three = make_array_type(int_(), 3);
  EXPECT_TRUE(types_are_compatible(unknown, three));
  EXPECT_FALSE(types_are_compatible(three, make_array_type(int_(), 4)));
  EXPECT_FALSE(types_are_compatible(make_array_type(int_(), 0), three));
  EXPECT_EQ(composite_type(unknown, three), three);
  EXPECT_EQ(composite_type(three, unknown), three);
  // Behind a pointer too.
  EXPECT_EQ(text(composite_type(make_pointer_type(unknown), make_pointer_type(three))),
            "int (*)[3]");
  a_type* vla = make_array_type(int_(), 1);
  vla->variant.array.is_vla = 1;
  vla_enabled = 1;
  EXPECT_TRUE(types_are_compatible(vla, three));
  // A number says more than a variable bound, which says more than none.
  EXPECT_EQ(composite_type(vla, three), three);
  EXPECT_EQ(composite_type(three, vla), three);
  EXPECT_EQ(composite_type(unknown, vla), vla);
  EXPECT_TRUE(is_error_type(composite_type(three, make_array_type(int_(), 4))));
}

TEST_F(TYPES_TEST, StructsAreCompatibleOnlyWithThemselves) {
  a_type* s = make_struct("s");
  EXPECT_TRUE(types_are_compatible(s, named(make_typedef_type(s), "s_t")));
  EXPECT_FALSE(types_are_compatible(s, make_struct("s")));
}

TEST_F(TYPES_TEST, PrototypesAndOldStyleFunctions) {
  a_type* old_style = old_style_routine(int_());
  EXPECT_FALSE(types_are_compatible(old_style, make_routine_type_full(int_(), char_())));
  EXPECT_FALSE(
      types_are_compatible(old_style, make_routine_type_full(int_(), float_type(fk_float))));
  EXPECT_FALSE(
      types_are_compatible(old_style, with_ellipsis(make_routine_type_full(int_(), int_()))));
  a_type* prototype = make_routine_type_full(int_(), int_());
  EXPECT_TRUE(types_are_compatible(old_style, prototype));
  EXPECT_TRUE(types_are_compatible(prototype, old_style));
  EXPECT_EQ(text(composite_type(old_style, prototype)), "int (int)");
  EXPECT_EQ(composite_type(prototype, old_style), prototype);
  EXPECT_TRUE(types_are_compatible(old_style, old_style_routine(int_())));
  // From an old-style definition the parameters are known.
  a_type* definition = old_style_routine(int_());
  add_param_type(definition, char_());
  definition->variant.routine.routine_supplement->old_style_definition = 1;
  EXPECT_TRUE(types_are_compatible(definition, prototype));
  EXPECT_FALSE(types_are_compatible(definition, make_routine_type_full(int_(), int_(), int_())));
  EXPECT_FALSE(types_are_compatible(definition, make_routine_type_full(int_())));
}

TEST_F(TYPES_TEST, ParametersOfPrototypes) {
  a_type* f = make_routine_type_full(int_(), int_());
  EXPECT_TRUE(types_are_compatible(f, make_routine_type_full(int_(), const_int())));
  EXPECT_FALSE(types_are_compatible(f, make_routine_type_full(int_(), int_(), int_())));
  EXPECT_FALSE(types_are_compatible(f, with_ellipsis(make_routine_type_full(int_(), int_()))));
  EXPECT_FALSE(types_are_compatible(f, make_routine_type_full(char_(), int_())));
  a_type* array_param = make_routine_type_full(void_type(), make_array_type(int_(), 5));
  EXPECT_EQ(text(array_param), "void (int *)");
  EXPECT_EQ(array_param->variant.routine.routine_supplement->param_types->param_number, 1u);
}

TEST_F(TYPES_TEST, CompositeOfParameterTypesKeepsTheFirst) {
  a_type* unknown = make_pointer_type(make_incomplete_array_type(int_()));
  a_type* three = make_pointer_type(make_array_type(int_(), 3));
  a_type* first = make_routine_type_full(void_type(), unknown, three);
  a_type* second = make_routine_type_full(void_type(), three, unknown);
  a_type* composite = composite_type(first, second);
  EXPECT_EQ(text(composite), "void (int (*)[3], int (*)[3])");
  EXPECT_EQ(text(first), "void (int (*)[], int (*)[3])");
  EXPECT_TRUE(is_error_type(composite_type(first, error_type())));
  EXPECT_TRUE(is_error_type(composite_type(int_(), make_pointer_type(int_()))));
}

// The error type too where the difference lies inside, but not for an error
// that was there before.
TEST_F(TYPES_TEST, RoutinesThatDifferHaveNoComposite) {
  a_type* routine = make_routine_type_full(int_(), int_(), make_pointer_type(int_()));
  a_type* others[] = {
      make_routine_type_full(char_(), int_(), make_pointer_type(int_())),
      make_routine_type_full(int_(), int_(), make_pointer_type(char_())),
      make_routine_type_full(int_(), int_()),
      with_ellipsis(make_routine_type_full(int_(), int_(), make_pointer_type(int_())))};
  for (a_type* other : others) {
    EXPECT_TRUE(is_error_type(composite_type(routine, other))) << text(other);
    EXPECT_TRUE(is_error_type(composite_type(make_pointer_type(other), make_pointer_type(routine))))
        << text(other);
  }
  a_type* erroneous = make_routine_type_full(int_(), int_(), error_type());
  EXPECT_TRUE(is_function_type(composite_type(routine, erroneous)));
}

TEST_F(TYPES_TEST, CompositesMergeDefaultsAndGnuProperties) {
  a_type* first = make_routine_type_full(void_type(), int_(), int_());
  a_type* second = make_routine_type_full(void_type(), int_(), int_());
  a_param_type* with_default = param_types_of(second)->next;
  with_default->default_arg_expr = alloc_expr_node(expr_constant);
  a_type* composite = composite_type(first, second);
  EXPECT_EQ(param_types_of(composite)->next->default_arg_expr, with_default->default_arg_expr);
  EXPECT_EQ(param_types_of(first)->next->default_arg_expr, nullptr);
  // Qualifiers of a parameter itself don't travel.
  remove_qualifiers_from_param_types = 0;
  a_type* constant_param = make_routine_type_full(void_type(), const_int(), int_());
  EXPECT_EQ(composite_type(first, constant_param), first);
  second->variant.routine.routine_supplement->does_not_return = 1;
  gnu_mode = 1;
  composite = composite_type(first, second);
  EXPECT_TRUE(composite->variant.routine.routine_supplement->does_not_return);
  EXPECT_FALSE(first->variant.routine.routine_supplement->does_not_return);
}

// Routine types that use one another twice over, level upon level.
TEST_F(TYPES_TEST, SharedPartsAreComparedOnce) {
  auto tower = [](a_type* bottom) {
    a_type* type = bottom;
    for (int level = 0; level < 60; ++level)
      type = make_pointer_type(make_routine_type_full(type, type, type));
    return type;
  };
  a_type* a = tower(make_pointer_type(make_incomplete_array_type(int_())));
  a_type* b = tower(make_pointer_type(make_array_type(int_(), 3)));
  EXPECT_TRUE(types_are_compatible(a, b));
  EXPECT_FALSE(types_are_compatible(a, tower(make_pointer_type(char_()))));
  EXPECT_TRUE(identical_types(a, tower(make_pointer_type(make_incomplete_array_type(int_())))));
  EXPECT_FALSE(identical_types(a, b));
  EXPECT_TRUE(identical_types(composite_type(a, b), b));
  EXPECT_FALSE(is_or_contains_error_type(a));
  EXPECT_LT(text(a).size(), 1000000u);
}

TEST_F(TYPES_TEST, LongChainsOfPointersAreWalkedInALoop) {
  auto chain = [](a_type* type) {
    for (int level = 0; level < 200000; ++level)
      type = make_pointer_type(type);
    return type;
  };
  a_type* to_int = chain(make_array_type(int_(), 2));
  EXPECT_TRUE(types_are_compatible(to_int, chain(make_array_type(int_(), 2))));
  EXPECT_FALSE(types_are_compatible(to_int, chain(make_array_type(char_(), 2))));
  EXPECT_FALSE(identical_types(to_int, chain(make_array_type(char_(), 2))));
  EXPECT_FALSE(is_or_contains_error_type(to_int));
  EXPECT_EQ(text(to_int).size(), strlen("int (") + 200000 + strlen(")[2]"));
}

// Each level of an array is looked at once, or this takes minutes.
TEST_F(TYPES_TEST, ManyDimensionsTakeLinearTime) {
  a_type* array = int_();
  for (int level = 0; level < 200000; ++level)
    array = make_array_type(array, 1);
  EXPECT_FALSE(is_variably_modified_type(array));
  EXPECT_TRUE(identical_types(array, make_array_type(array_element_type(array), 1)));
}

TEST_F(TYPES_TEST, ExplicitAlignmentSeparatesTypesInGnuModes) {
  a_type* aligned = make_typeref_with_qualifiers(int_(), tq_none);
  aligned->has_explicit_alignment = 1;
  aligned->alignment = 8;
  EXPECT_TRUE(types_are_compatible(aligned, int_()));
  gnu_mode = 1;
  EXPECT_FALSE(types_are_compatible(aligned, int_()));
  a_type* array = copy_array_type_replacing_element_type(make_array_type(int_(), 2), aligned);
  EXPECT_EQ(f_alignment_of_type(array), 8u);
}

// --- Conversions.

class CONVERSION_TEST : public TYPES_TEST {
protected:
  a_std_conv_descr descr;

  bool converts(a_type* source, a_type* target, const a_constant* constant = nullptr) {
    return impl_conversion_possible(source, false, constant, target, &descr);
  }

  static a_constant* integer(int64_t value, int int_kind) {
    a_constant* constant = fs_constant(con_integer);
    set_integer_constant(constant, value, static_cast<an_integer_kind>(int_kind));
    return constant;
  }
};

TEST_F(CONVERSION_TEST, PointersInC) {
  a_type* pointer = make_pointer_type(int_());
  EXPECT_TRUE(converts(pointer, make_pointer_type(const_int())));
  EXPECT_TRUE(descr.is_qualification_adjustment);
  EXPECT_TRUE(converts(make_pointer_type(const_int()), pointer));
  EXPECT_TRUE(descr.drops_qualifiers);
  EXPECT_TRUE(converts(void_star_type(), pointer));
  EXPECT_TRUE(descr.is_from_void_pointer);
  EXPECT_FALSE(descr.is_mixed_pointer);
  EXPECT_TRUE(converts(pointer, make_pointer_type(integer_type(ik_unsigned_int))));
  EXPECT_TRUE(descr.is_mixed_pointer && descr.signedness_differs);
  EXPECT_TRUE(converts(int_(), pointer));
  EXPECT_TRUE(descr.is_pointer_integer_mix);
  EXPECT_TRUE(converts(int_(), pointer, integer(0, ik_int)));
  EXPECT_TRUE(descr.is_null_pointer_conversion);
  EXPECT_TRUE(converts(pointer, int_()));
  EXPECT_TRUE(descr.is_pointer_integer_mix);
  EXPECT_FALSE(converts(float_type(fk_double), pointer));
  EXPECT_FALSE(converts(make_struct("s"), pointer));
  EXPECT_TRUE(converts(pointer, bool_type()));
  EXPECT_TRUE(descr.is_boolean_conversion);
  a_type* function_pointer = make_pointer_type(make_routine_type_full(void_type()));
  EXPECT_TRUE(converts(function_pointer, void_star_type()));
  EXPECT_TRUE(descr.function_object_mix);
}

TEST_F(CONVERSION_TEST, PointersInCplusplus) {
  restart_in_cplusplus();
  a_type* pointer = make_pointer_type(int_());
  EXPECT_FALSE(converts(void_star_type(), pointer));
  EXPECT_TRUE(converts(pointer, void_star_type()));
  EXPECT_FALSE(converts(make_pointer_type(const_int()), pointer));
  EXPECT_FALSE(converts(int_(), pointer));
  EXPECT_FALSE(converts(int_(), make_enum("e", ik_int)));
  EXPECT_TRUE(converts(standard_nullptr_type(), pointer));
}

TEST_F(CONVERSION_TEST, QualifiersBelowTheFirstLevel) {
  a_type* p = make_pointer_type(make_pointer_type(int_()));
  a_type* unsafe = make_pointer_type(make_pointer_type(const_int()));
  a_type* safe = make_pointer_type(make_qualified_type(make_pointer_type(const_int()), tq_const));
  EXPECT_FALSE(qualification_conversion_possible(p, unsafe));
  EXPECT_TRUE(qualification_conversion_possible_full(p, unsafe, true, nullptr));
  EXPECT_TRUE(qualification_conversion_possible(p, safe));
  EXPECT_TRUE(cast_removes_qualifiers(safe, p));
}

TEST_F(CONVERSION_TEST, FarAndAtomicTypes) {
  // A far pointer reaches what a near one does; an atomic type is another type.
  a_type* near_pointer = make_pointer_type(int_());
  a_type* far_pointer = make_pointer_type(make_qualified_type(int_(), tq_far));
  a_type* to_atomic = make_pointer_type(make_qualified_type(int_(), tq_atomic));
  EXPECT_TRUE(qualification_conversion_possible(near_pointer, far_pointer));
  EXPECT_FALSE(qualification_conversion_possible(far_pointer, near_pointer));
  EXPECT_TRUE(converts(far_pointer, near_pointer));
  EXPECT_TRUE(descr.drops_qualifiers);
  EXPECT_FALSE(qualification_conversion_possible(near_pointer, to_atomic));
  EXPECT_TRUE(converts(near_pointer, to_atomic));
  EXPECT_TRUE(descr.is_mixed_pointer);
  EXPECT_TRUE(converts(near_pointer, make_pointer_type(make_qualified_type(int_(), tq_nonnull))));
  EXPECT_FALSE(descr.is_mixed_pointer);
}

TEST_F(CONVERSION_TEST, StructsConvertOnlyToThemselves) {
  a_type* s = make_struct("s");
  complete(s, 4);
  a_type* t = make_struct("t");
  complete(t, 4);
  EXPECT_TRUE(converts(make_qualified_type(s, tq_const), s));
  EXPECT_FALSE(converts(s, t));
  EXPECT_FALSE(expl_conversion_possible(s, nullptr, int_(), nullptr));
  EXPECT_TRUE(expl_conversion_possible(s, nullptr, void_type(), nullptr));
  EXPECT_TRUE(
      expl_conversion_possible(make_pointer_type(s), nullptr, make_pointer_type(t), nullptr));
}

TEST_F(CONVERSION_TEST, Narrowing) {
  an_error_code code = 0;
  auto narrows = [&](a_type* source, const a_constant* constant, a_type* target) {
    return is_narrowing_conversion(source, constant, target, &code);
  };
  EXPECT_TRUE(narrows(int_(), nullptr, char_()));
  EXPECT_FALSE(narrows(int_(), integer(255, ik_int), integer_type(ik_unsigned_char)));
  EXPECT_TRUE(narrows(int_(), integer(256, ik_int), integer_type(ik_unsigned_char)));
  EXPECT_TRUE(narrows(int_(), integer(-1, ik_int), integer_type(ik_unsigned_int)));
  EXPECT_FALSE(narrows(int_(), integer(-128, ik_int), integer_type(ik_signed_char)));
  EXPECT_TRUE(narrows(int_(), integer(-129, ik_int), integer_type(ik_signed_char)));
  EXPECT_FALSE(narrows(int_(), integer(1 << 30, ik_int), float_type(fk_float)));
  EXPECT_TRUE(narrows(int_(), integer((1 << 30) + 1, ik_int), float_type(fk_float)));
  EXPECT_TRUE(narrows(float_type(fk_double), nullptr, int_()));
  a_constant* big = fs_constant(con_float);
  big->value.float_value.exponent = 129;
  EXPECT_TRUE(narrows(float_type(fk_double), big, float_type(fk_float)));
  big->value.float_value.exponent = 128;
  EXPECT_FALSE(narrows(float_type(fk_double), big, float_type(fk_float)));
  EXPECT_FALSE(narrows(float_type(fk_float), nullptr, float_type(fk_double)));
}

TEST_F(CONVERSION_TEST, NullPointerConstants) {
  a_constant* zero = integer(0, ik_long);
  EXPECT_TRUE(is_or_might_be_null_pointer_constant(zero));
  EXPECT_FALSE(is_or_might_be_null_pointer_constant(integer(1, ik_int)));
  EXPECT_FALSE(is_or_might_be_null_pointer_constant(nullptr));
  zero->type = void_star_type();
  EXPECT_TRUE(is_or_might_be_null_pointer_constant(zero));
  zero->type = make_pointer_type(char_());
  EXPECT_FALSE(is_or_might_be_null_pointer_constant(zero));
}

// --- The printer.

TEST_F(TYPES_TEST, DeclaratorsAreWrittenAsInC) {
  a_type* function = with_ellipsis(make_routine_type_full(int_(), char_()));
  a_type* returns_pointer = make_routine_type_full(make_pointer_type(function), int_());
  a_type* s = make_struct("s");
  struct {
    a_type* type;
    const char* text;
  } cases[] = {
      {make_pointer_type(function), "int (*)(char, ...)"},
      {function, "int (char, ...)"},
      {make_routine_type_full(void_type()), "void (void)"},
      {old_style_routine(void_type()), "void ()"},
      {make_pointer_type(returns_pointer), "int (*(*)(int))(char, ...)"},
      {make_array_type(make_pointer_type(function), 4), "int (*[4])(char, ...)"},
      {make_pointer_type(make_pointer_type(const_int())), "const int **"},
      {make_pointer_type(make_qualified_type(make_pointer_type(char_()), tq_const | tq_restrict)),
       "char *const restrict *"},
      {make_pointer_type(s), "struct s *"},
      {make_struct(nullptr), "struct <unnamed>"},
      {make_enum("e", ik_int), "enum e"},
      {make_incomplete_array_type(integer_type(ik_unsigned_long_long)), "unsigned long long []"},
      {bool_type(), "_Bool"},
      {complex_type(fk_double), "double _Complex"},
      {error_type(), "<error-type>"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(text(c.type), c.text);
  a_text_buffer* buffer = alloc_text_buffer(10);
  an_il_to_str_control control;
  init_il_to_str_control(&control, buffer);
  form_declaration(make_pointer_type(returns_pointer), "fp", &control);
  EXPECT_EQ(std::string(buffer->data, buffer->used_size), "int (*(*fp)(int))(char, ...)");
}

TEST_F(TYPES_TEST, TypedefsAreNamesUnlessLookedThrough) {
  a_type* byte = named(make_typedef_type(integer_type(ik_unsigned_char)), "byte");
  a_type* handler = named(make_typedef_type(make_pointer_type(make_routine_type_full(byte))), "h");
  a_type* type = make_array_type(make_qualified_type(handler, tq_const), 2);
  EXPECT_EQ(text(type), "const h [2]");
  a_text_buffer* buffer = alloc_text_buffer(10);
  an_il_to_str_control control;
  init_il_to_str_control(&control, buffer);
  control.look_through_typedefs = true;
  form_type(type, &control);
  EXPECT_EQ(std::string(buffer->data, buffer->used_size), "unsigned char (*const [2])(void)");
}

TEST_F(TYPES_TEST, CplusplusSpellings) {
  restart_in_cplusplus();
  a_type* c = named(alloc_type(tk_class), "c");
  a_type* nested = named(alloc_type(tk_struct), "inner");
  a_scope* scope = alloc_scope(sk_class, 9);
  scope->assoc.type = c;
  nested->source_corresp.parent_scope = scope;
  nested->source_corresp.is_class_member = 1;
  EXPECT_EQ(text(make_reference_type(make_qualified_type(nested, tq_const))), "const c::inner &");
  EXPECT_EQ(text(make_rvalue_reference_type(bool_type())), "bool &&");
  EXPECT_EQ(text(ptr_to_member_type_full(int_(), c, 0)), "int c::*");
  EXPECT_EQ(text(make_routine_type_full(void_type())), "void ()");
}

TEST_F(TYPES_TEST, KindNames) {
  EXPECT_STREQ(int_kind_name(ik_char), "char");
  EXPECT_STREQ(int_kind_name(ik_signed_char), "signed char");
  EXPECT_STREQ(int_kind_name(11), "**BAD-INT-KIND**");
  EXPECT_STREQ(float_kind_name(5), "**BAD-FLOAT-KIND**");
  targ_has_signed_chars = 1;
  C_dialect = cd_k_and_r;
  target_init();
  EXPECT_STREQ(int_kind_name(ik_signed_char), "char");
}

} // namespace
