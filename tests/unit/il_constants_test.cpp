#include "il_expr_fixture.h"

#include <vector>

namespace {

class IlConstants : public IL_EXPR_TEST {
protected:
  a_constant address_of(a_variable* base, int64_t offset) {
    a_constant constant;
    set_variable_address_constant(base, &constant, false);
    constant.value.address.offset = offset;
    return constant;
  }

  a_constant typeid_of(a_type* type) {
    a_constant constant;
    make_typeid_constant(type, &constant);
    return constant;
  }

  a_constant floating(a_constant_kind kind, uint16_t word, int exponent) {
    a_constant constant;
    clear_constant(&constant, kind);
    constant.type = kind == con_float ? float_type(fk_double) : imaginary_type(fk_double);
    constant.value.float_value.mantissa[0] = word;
    constant.value.float_value.exponent = exponent;
    return constant;
  }

  // The constant whose name the symbol is, as an enum declares it.
  a_constant* named_constant(const char* name, int64_t value) {
    a_constant* constant = fs_constant(con_integer);
    a_symbol* symbol = enter(symk_constant, name, 0);
    constant->type = integer_type(ik_int);
    constant->value.int_value = static_cast<uint64_t>(value);
    symbol->variant.constant = constant;
    set_source_corresp(&constant->source_corresp, symbol);
    return constant;
  }

  // A pointer to the member, converted along the path; each has its own record
  // of it.
  a_constant member_through(a_field* member, std::initializer_list<a_base_class*> path) {
    a_constant constant;
    clear_constant(&constant, con_ptr_to_member);
    constant.value.ptr_to_member.member.field = member;
    a_derivation_step** link = &constant.value.ptr_to_member.base_class_path;
    for (a_base_class* base : path) {
      *link = alloc_derivation_step();
      (*link)->base_class = base;
      link = &(*link)->next;
    }
    return constant;
  }

  // A call of an unknown function with one template argument of its own.
  a_constant unknown_function(a_template_arg_kind kind, a_type* type, int64_t value) {
    a_constant constant;
    clear_constant(&constant, con_template_param);
    set_template_param_constant_kind(&constant, tpck_unknown_function);
    a_template_arg* arg = alloc_template_arg(kind);
    constant.value.template_param.param_expr.template_args = arg;
    if (kind == tak_type) {
      arg->value.type = type;
    } else {
      a_constant number = integer(value);
      arg->value.constant = alloc_unshared_constant(&number);
    }
    return constant;
  }

  // One aggregate in another, `depth` times, round a number.
  a_constant* nested_aggregate(int depth, int64_t value) {
    a_constant* constant = alloc_constant(con_integer);
    *constant = integer(value);
    for (int i = 0; i < depth; ++i) {
      a_constant* aggregate = alloc_constant(con_aggregate);
      add_constant_to_aggregate(constant, aggregate);
      constant = aggregate;
    }
    return constant;
  }
};

TEST_F(IlConstants, EveryKindStartsEmpty) {
  for (int kind = 0; kind < num_constant_kinds; ++kind) {
    a_constant constant;
    memset(static_cast<void*>(&constant), 0x5a, sizeof constant);
    clear_constant(&constant, static_cast<a_constant_kind>(kind));
    EXPECT_EQ(constant.kind, kind);
    EXPECT_EQ(constant.next, nullptr);
    EXPECT_EQ(constant.type, nullptr);
    EXPECT_EQ(constant.source_expr, nullptr);
    EXPECT_EQ(constant.source_corresp.symbol, nullptr);
    EXPECT_EQ(constant.position, null_source_position);
    EXPECT_EQ(constant.constant_flags, 0);
    EXPECT_FALSE(constant.is_pointer_value || constant.shareable_name || constant.has_designator);
    // A kind that is set over another one is as empty.
    a_constant other;
    clear_constant(&other, con_string);
    memset(static_cast<void*>(&other.value), 0x5a, sizeof other.value);
    set_constant_kind(&other, static_cast<a_constant_kind>(kind));
    EXPECT_TRUE(compare_constants(&constant, &other, 0)) << kind;
  }
  a_constant text;
  clear_constant(&text, con_string);
  EXPECT_EQ(text.value.string.string_extra, -1);
  EXPECT_EQ(text.value.string.sequence_number, 0u);
}

TEST_F(IlConstants, WhatIsSharedAndWhatIsNot) {
  a_constant aggregate, repeat, dependent, member, named_member, path, designator, dynamic;
  clear_constant(&aggregate, con_aggregate);
  clear_constant(&repeat, con_repeat);
  clear_constant(&dependent, con_template_param);
  clear_constant(&designator, con_designator);
  clear_constant(&dynamic, con_dynamic_init);
  a_constant five = integer(5);
  repeat.value.repeat.element = &five;
  designator.value.designator.is_text_or_index = true;
  designator.value.designator.designated.index = &five;
  dynamic.value.dynamic_init = alloc_dynamic_init(dik_zero);
  clear_constant(&member, con_ptr_to_member);
  named_member = member;
  named_member.value.ptr_to_member.name_reference = alloc_name_reference();
  a_variable* x = variable("x");
  path = address_of(x, 4);
  path.value.address.subobject_path = alloc_subobject_path();
  a_constant with_reference = integer(5);
  with_reference.source_corresp.name_reference = alloc_name_reference();
  a_constant with_expr = integer(5);
  with_expr.source_expr = number(5);
  struct {
    const char* what;
    a_constant constant;
    bool is_shared;
  } cases[] = {
      {"integer", integer(5), true},
      {"float", floating(con_float, 0x8000, 1), true},
      {"imaginary", floating(con_imaginary, 0x8000, 1), true},
      {"address", address_of(x, 4), true},
      {"address with a path", path, false},
      {"pointer to member", member, true},
      {"pointer to member by a name", named_member, false},
      {"aggregate", aggregate, false},
      {"repeat", repeat, false},
      {"dependent", dependent, false},
      {"designator", designator, false},
      {"dynamic", dynamic, false},
      {"by a qualified name", with_reference, false},
      {"with an expression", with_expr, false},
  };
  for (auto& c : cases) {
    EXPECT_EQ(constant_is_shareable(&c.constant), c.is_shared) << c.what;
    EXPECT_EQ(alloc_shareable_constant(&c.constant) == alloc_shareable_constant(&c.constant),
              c.is_shared)
        << c.what;
  }
  // Nothing is shared behind the front end.
  in_front_end = 0;
  for (auto& c : cases)
    EXPECT_NE(alloc_shareable_constant(&c.constant), alloc_shareable_constant(&c.constant));
  in_front_end = 1;
}

TEST_F(IlConstants, NumberedStringsDropTheirExpression) {
  for (a_boolean shared : {0, 1}) {
    string_literals_shared = shared;
    a_constant literal = string("text");
    literal.source_expr = number(1);
    EXPECT_NE(alloc_shareable_constant(&literal)->source_expr, nullptr);
    f_assign_string_literal_sequence_number(&literal);
    a_constant* first = alloc_shareable_constant(&literal);
    EXPECT_EQ(first->source_expr, nullptr);
    EXPECT_EQ(alloc_shareable_constant(&literal) == first, shared != 0);
  }
}

TEST_F(IlConstants, NumbersOfStringsAreUniqueInTheRun) {
  a_constant first = string("text"), second = first;
  f_assign_string_literal_sequence_number(&first);
  il_constants_trans_unit_init(); // the next unit
  f_assign_string_literal_sequence_number(&second);
  EXPECT_NE(first.value.string.sequence_number, second.value.string.sequence_number);
  EXPECT_FALSE(compare_constants(&first, &second, ccf_for_sharing));
}

TEST_F(IlConstants, NamesShareTheirOwnRecord) {
  a_constant* named = named_constant("red", 3);
  a_constant use;
  copy_constant(named, &use);
  // Without leave, each use has a record.
  a_constant* own = alloc_shareable_constant(&use);
  EXPECT_NE(own, named);
  EXPECT_NE(alloc_shareable_constant(&use), own);
  use.shareable_name = named->shareable_name = true;
  EXPECT_EQ(alloc_shareable_constant(&use), named);
  // The name of a value that changed is no longer it.
  named->value.int_value = 4;
  a_constant* stale = alloc_shareable_constant(&use);
  EXPECT_NE(stale, named);
  EXPECT_EQ(stale->value.int_value, 3u);
  a_constant* backed = add_backing_expression_for_named_constant(named);
  ASSERT_NE(backed->source_expr, nullptr);
  EXPECT_EQ(backed->source_expr->variant.constant.ptr, named);
  EXPECT_EQ(add_backing_expression_for_named_constant(backed), backed);
}

TEST_F(IlConstants, SharedRecordsOutliveTheFunction) {
  push_function_scope(enter_function("f"));
  a_constant complex;
  make_zero_of_proper_type(complex_type(fk_double), &complex);
  EXPECT_FALSE(is_file_scope_entry(complex.value.complex_value));
  a_constant* shared = alloc_shareable_constant(&complex);
  EXPECT_TRUE(is_file_scope_entry(shared));
  EXPECT_TRUE(is_file_scope_entry(shared->value.complex_value));
  pop_scope();
  EXPECT_TRUE(eq_constants(shared, alloc_shareable_constant(shared)));
  empty_shareable_constants_table();
  EXPECT_NE(alloc_shareable_constant(shared), shared);
}

TEST_F(IlConstants, EqualValuesHashAlike) {
  a_type* int_type = integer_type(ik_int);
  a_type* alias = alloc_type(tk_typeref);
  alias->source_corresp.name = "alias";
  alias->variant.typeref.referenced_type = int_type;
  a_variable* x = variable("x");
  a_variable* y = variable("y");
  a_constant wide_string = string("ab");
  wide_string.string_char_kind = sck_wide;
  a_constant negative = floating(con_float, 0x8000, 1);
  negative.value.float_value.sign = 1;
  a_field* member = field("m", int_type);
  a_base_class bases[2] = {};
  struct {
    const char* what;
    a_constant a, b;
    bool equal;
  } cases[] = {
      {"integers", integer(7), integer(7), true},
      {"high words", integer(1ll << 40, ik_long_long), integer(1ll << 41, ik_long_long), false},
      {"signedness", integer(-1, ik_long_long), integer(-1, ik_unsigned_long_long), false},
      {"strings", string("ab"), string("ab"), true},
      {"length", string("ab"), string("abc"), false},
      {"kinds of characters", string("ab"), wide_string, false},
      {"floats", floating(con_float, 0xc000, 4), floating(con_float, 0xc000, 4), true},
      {"exponents", floating(con_float, 0xc000, 4), floating(con_float, 0xc000, 5), false},
      {"signs", floating(con_float, 0x8000, 1), negative, false},
      {"kinds", floating(con_float, 0x8000, 1), floating(con_imaginary, 0x8000, 1), false},
      {"addresses", address_of(x, 8), address_of(x, 8), true},
      {"offsets", address_of(x, 8), address_of(x, 9), false},
      {"bases", address_of(x, 8), address_of(y, 8), false},
      {"typeids by other names", typeid_of(int_type), typeid_of(alias), true},
      {"typeids", typeid_of(int_type), typeid_of(integer_type(ik_long)), false},
      {"aggregates", *nested_aggregate(3, 5), *nested_aggregate(3, 5), true},
      {"elements", *nested_aggregate(3, 5), *nested_aggregate(3, 6), false},
      {"depths", *nested_aggregate(3, 5), *nested_aggregate(4, 5), false},
      {"paths", member_through(member, {bases, bases + 1}),
       member_through(member, {bases, bases + 1}), true},
      {"other paths", member_through(member, {bases}), member_through(member, {bases + 1}), false},
      {"longer paths", member_through(member, {bases}), member_through(member, {bases, bases + 1}),
       false},
      {"type arguments", unknown_function(tak_type, int_type, 0),
       unknown_function(tak_type, alias, 0), true},
      {"other types", unknown_function(tak_type, int_type, 0),
       unknown_function(tak_type, integer_type(ik_long), 0), false},
      {"values", unknown_function(tak_constant, nullptr, 1),
       unknown_function(tak_constant, nullptr, 1), true},
      {"other values", unknown_function(tak_constant, nullptr, 1),
       unknown_function(tak_constant, nullptr, 2), false},
      {"kinds of arguments", unknown_function(tak_constant, nullptr, 1),
       unknown_function(tak_type, int_type, 0), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(eq_constants(&c.a, &c.b), c.equal) << c.what;
    if (c.equal) {
      EXPECT_EQ(hash_constant(&c.a), hash_constant(&c.b)) << c.what;
    }
  }
  a_constant top = integer(INT64_MIN, ik_unsigned_long_long);
  EXPECT_EQ(hash_constant(&top), uint64_t{1} << 63);
  // The hash of a string starts from its number.
  a_constant text = string("");
  text.value.string.sequence_number = 7;
  EXPECT_EQ(hash_constant(&text), 107u * 33);
  a_constant short_seven = integer(7, ik_short);
  a_constant seven = integer(7);
  EXPECT_FALSE(eq_constants(&seven, &short_seven));
  EXPECT_TRUE(compare_constants(&seven, &short_seven, ccf_ignore_types));
}

TEST_F(IlConstants, CopiesInDepthShareNoParts) {
  a_constant five = integer(5);
  a_constant complex, temporary, difference, repeat, designator, cast, expression, path;
  make_zero_of_proper_type(complex_type(fk_double), &complex);
  set_temporary_address_constant(alloc_unshared_constant(&five), &temporary);
  clear_constant(&difference, con_address_difference);
  difference.value.address_difference.minuend = alloc_unshared_constant(&five);
  difference.value.address_difference.subtrahend = alloc_unshared_constant(&five);
  clear_constant(&repeat, con_repeat);
  repeat.value.repeat.element = alloc_unshared_constant(&five);
  repeat.value.repeat.count = 3;
  clear_constant(&designator, con_designator);
  designator.value.designator.is_text_or_index = true;
  designator.value.designator.designated.index = alloc_unshared_constant(&five);
  clear_constant(&cast, con_template_param);
  set_template_param_constant_kind(&cast, tpck_cast);
  cast.value.template_param.param_data.constant = alloc_unshared_constant(&five);
  clear_constant(&expression, con_template_param);
  set_template_param_constant_kind(&expression, tpck_sizeof);
  expression.value.template_param.param_expr.expr = number(5);
  path = address_of(variable("x"), 0);
  path.value.address.subobject_path = alloc_subobject_path();
  path.value.address.subobject_path->next = alloc_subobject_path();
  const a_constant* sources[] = {&complex,    &temporary, &difference, &repeat,
                                 &designator, &cast,      &expression, &path};
  // The pointers in the value, of which those to owned parts must differ.
  const auto part_of = [](const a_constant& constant) -> const void* {
    switch (constant.kind) {
    case con_complex:
      return constant.value.complex_value;
    case con_address:
      return constant.value.address.base_kind == abk_temporary
                 ? static_cast<const void*>(constant.value.address.base.constant)
                 : constant.value.address.subobject_path;
    case con_address_difference:
      return constant.value.address_difference.subtrahend;
    case con_repeat:
      return constant.value.repeat.element;
    case con_designator:
      return constant.value.designator.designated.index;
    default:
      return constant.value.template_param.param_kind == tpck_cast
                 ? static_cast<const void*>(constant.value.template_param.param_data.constant)
                 : constant.value.template_param.param_expr.expr;
    }
  };
  for (const a_constant* source : sources) {
    a_constant shallow, deep;
    copy_constant(source, &shallow);
    copy_constant_full(source, &deep);
    EXPECT_EQ(part_of(shallow), part_of(*source)) << int{source->kind};
    EXPECT_NE(part_of(deep), part_of(*source)) << int{source->kind};
    EXPECT_EQ(alloc_unshared_constant_full(source, false, true)->kind, source->kind);
    // Another temporary is another object.
    EXPECT_EQ(eq_constants(source, &deep), source != &temporary) << int{source->kind};
  }
}

TEST_F(IlConstants, CopiesKeepTheLoweringMarkOnRequest) {
  a_constant* lowered = alloc_constant(con_integer);
  il_entry_prefix_of(lowered).il_lowering_flag = 1;
  const auto flag_of = [](const a_constant* constant) -> int {
    return il_entry_prefix_of(constant).il_lowering_flag;
  };
  EXPECT_EQ(flag_of(alloc_unshared_constant_full(lowered, true, false)), 1);
  EXPECT_EQ(flag_of(alloc_unshared_constant_full(lowered, false, false)), 0);
}

TEST_F(IlConstants, NestedAggregatesAreBoundedByTheStackAlone) {
  a_constant* deep = nested_aggregate(5000, 0);
  a_constant copy;
  copy_constant_full(deep, &copy);
  EXPECT_TRUE(eq_constants(deep, &copy));
  EXPECT_EQ(hash_constant(deep), hash_constant(&copy));
  EXPECT_TRUE(is_zero_constant(deep));
  EXPECT_FALSE(has_non_file_scope_ref(deep));
}

TEST_F(IlConstants, ListsAreCombinedInOrder) {
  a_constant* first = alloc_constant(con_integer);
  first->next = alloc_constant(con_integer);
  a_constant* second = alloc_constant(con_integer);
  EXPECT_EQ(combine_initializer_constants(nullptr, second), second);
  EXPECT_EQ(combine_initializer_constants(first, second), first);
  EXPECT_EQ(first->next->next, second);
}

TEST_F(IlConstants, AddressesHavePointerTypesAndMarkTheirEntities) {
  a_routine* routine = enter_function("f");
  a_variable* x = variable("x");
  a_label* label = alloc_label();
  a_constant constant;
  set_routine_address_constant(routine, &constant, false);
  EXPECT_FALSE(routine->address_taken);
  set_routine_address_constant(routine, &constant, true);
  EXPECT_TRUE(routine->address_taken);
  EXPECT_EQ(type_pointed_to(constant.type), routine->type);
  set_variable_address_constant(x, &constant, false);
  EXPECT_FALSE(x->address_taken);
  EXPECT_EQ(constant.value.address.base_kind, abk_variable);
  EXPECT_EQ(type_pointed_to(constant.type), x->type);
  set_label_address_constant(label, &constant);
  EXPECT_TRUE(label->address_taken);
  EXPECT_EQ(constant.type, void_star_type());
  EXPECT_EQ(constant.value.address.base_kind, abk_label);
}

} // namespace
