#include "il_expr_fixture.h"

namespace {

class ExprText : public IL_EXPR_TEST {
protected:
  // The text that `form` writes.
  template <typename FORM> std::string written(FORM form) {
    a_text_buffer* buffer = alloc_text_buffer(64);
    an_il_to_str_control control;
    init_il_to_str_control(&control, buffer);
    form(&control);
    return std::string(buffer->data, buffer->used_size);
  }

  std::string text(const an_expr_node* expr) {
    return written([expr](an_il_to_str_control* control) { form_expression(expr, control); });
  }

  std::string text(const a_constant& constant) {
    return written(
        [&constant](an_il_to_str_control* control) { form_constant(&constant, control); });
  }

  an_expr_node* a() {
    return var_rvalue_expr(a_variable_named_a);
  }

  an_expr_node* a_lvalue() {
    return var_lvalue_expr(a_variable_named_a);
  }

  void start_variables() {
    a_variable_named_a = variable("a");
  }

  a_constant floating(a_type* type, uint16_t first_word, int exponent, bool negative) {
    a_constant constant;
    clear_constant(&constant, type->kind == tk_imaginary ? con_imaginary : con_float);
    constant.type = type;
    constant.value.float_value.mantissa[0] = first_word;
    constant.value.float_value.exponent = exponent;
    constant.value.float_value.sign = negative;
    return constant;
  }

  a_variable* a_variable_named_a = nullptr;
};

TEST_F(ExprText, ParenthesesFollowThePrecedence) {
  start_variables();
  const auto one = [this] { return number(1); };
  const auto sum = [&] { return binary(eok_add, a(), number(1)); };
  struct {
    an_expr_node* expr;
    const char* expected;
  } cases[] = {
      {binary(eok_multiply, sum(), number(2)), "(a + 1) * 2"},
      {binary(eok_add, sum(), number(2)), "a + 1 + 2"},
      {binary(eok_subtract, a(), sum()), "a - (a + 1)"},
      {binary(eok_add, binary(eok_multiply, a(), a()), one()), "a * a + 1"},
      {binary(eok_bit_and, binary(eok_eq, a(), one()), one()), "a == 1 & 1"},
      {binary(eok_eq, binary(eok_bit_and, a(), one()), one()), "(a & 1) == 1"},
      {binary(eok_lor, binary(eok_land, a(), one()), a()), "a && 1 || a"},
      {binary(eok_land, a(), binary(eok_lor, a(), one())), "a && (a || 1)"},
      {unary(eok_negate, sum()), "-(a + 1)"},
      {unary(eok_negate, unary(eok_negate, a())), "-(-a)"},
      {unary(eok_negate, number(-5)), "-(-5)"},
      {unary(eok_complement, unary(eok_not, a())), "~!a"},
      {binary(eok_subtract, a(), number(-5)), "a - -5"},
      {binary(eok_assign, a_lvalue(), binary(eok_add_assign, a_lvalue(), one())), "a = a += 1"},
      {binary(eok_add, binary(eok_assign, a_lvalue(), one()), one()), "(a = 1) + 1"},
      {make_comma_node(a(), binary(eok_shift_left, a(), sum())), "a, a << a + 1"},
      {conditional(a(), make_comma_node(a(), one()), conditional(a(), one(), one())),
       "a ? a, 1 : a ? 1 : 1"},
      {conditional(conditional(a(), one(), one()), one(), one()), "(a ? 1 : 1) ? 1 : 1"},
      {unary(eok_post_incr, a_lvalue()), "a++"},
      {unary(eok_pre_decr, a_lvalue()), "--a"},
      {unary(eok_parens, sum()), "(a + 1)"},
      {make_operator_node(eok_binary_question, integer_type(ik_int), binary(eok_add, a(), one())),
       "a + 1 ?: "},
  };
  for (const auto& c : cases)
    EXPECT_EQ(text(c.expr), c.expected);
}

TEST_F(ExprText, WhatTheAnalysisAddedDoesNotShow) {
  start_variables();
  a_type* char_type = integer_type(ik_char);
  EXPECT_EQ(text(binary(eok_add, add_cast(a(), char_type), number(1))), "a + 1");
  an_expr_node* cast = add_cast(binary(eok_add, a(), number(1)), char_type);
  cast->variant.operation.is_implicit = false;
  EXPECT_EQ(text(cast), "(char)(a + 1)");
  an_expr_node* address = add_address_of_to_node(a_lvalue());
  EXPECT_EQ(text(address), "a");
  address->variant.operation.is_implicit = false;
  EXPECT_EQ(text(address), "&a");
  EXPECT_EQ(text(unary(eok_to_bool, a())), "a");
  EXPECT_EQ(text(add_object_lifetime_to_expr(a(), alloc_object_lifetime(olk_full_expr))), "a");
  // The parentheses are those of what does show.
  EXPECT_EQ(text(binary(eok_multiply, add_cast(binary(eok_add, a(), a()), char_type), a())),
            "(a + a) * a");
}

TEST_F(ExprText, CallsSelectionsAndOtherNodes) {
  start_variables();
  a_type* int_type = integer_type(ik_int);
  a_type* s = struct_type("s");
  a_variable* object = variable("x", s);
  a_variable* pointer = variable("p", make_pointer_type(s));
  a_field* f = field("f", int_type);
  EXPECT_EQ(text(field_lvalue_selection_expr(var_lvalue_expr(object), f)), "x.f");
  EXPECT_EQ(text(field_rvalue_selection_expr(var_rvalue_expr(pointer), f)), "p->f");
  // The members of an anonymous one are selected from the whole.
  a_field* anonymous = field("", s);
  anonymous->source_corresp.is_unnamed = true;
  EXPECT_EQ(text(field_lvalue_selection_expr(
                field_lvalue_selection_expr(var_lvalue_expr(object), anonymous), f)),
            "x.f");

  an_expr_node* callee = function_rvalue_expr(enter_function("g"));
  callee->next = make_comma_node(a(), number(1));
  callee->next->next = number(2);
  EXPECT_EQ(text(make_operator_node(eok_call, int_type, callee)), "g((a, 1), 2)");
  EXPECT_EQ(text(binary(eok_subscript, var_rvalue_expr(pointer), make_comma_node(a(), a()))),
            "p[a, a]");
  an_expr_node* object_of_call = var_lvalue_expr(object);
  object_of_call->next = field_lvalue_selection_expr(var_lvalue_expr(object), f);
  object_of_call->next->next = number(3);
  EXPECT_EQ(text(make_operator_node(eok_dot_ptr_to_member_call, int_type, object_of_call)),
            "(x.*x.f)(3)");

  an_expr_node* size = alloc_expr_node(expr_sizeof_like);
  size->variant.sizeof_like.operand.expr = binary(eok_add, a(), a());
  EXPECT_EQ(text(size), "sizeof(a + a)");
  size->variant.sizeof_like.is_type = true;
  size->variant.sizeof_like.operand.type = make_pointer_type(int_type);
  EXPECT_EQ(text(size), "sizeof(int *)");
  EXPECT_EQ(text(type_only_expr(nullptr)), "<default>");
  EXPECT_EQ(text(type_only_expr(int_type)), "int");
  EXPECT_EQ(text(error_node()), "<error>");
  an_expr_node* list = alloc_expr_node(expr_braced_list);
  list->variant.braced_list = a();
  list->variant.braced_list->next = number(1);
  EXPECT_EQ(text(list), "{a, 1}");
  an_expr_node* parameter = alloc_expr_node(expr_param_ref);
  EXPECT_EQ(text(parameter), "this");
  parameter->variant.param_ref.number = 2;
  EXPECT_EQ(text(parameter), "<parameter 2>");
  an_expr_node* deleted = alloc_expr_node(expr_new_delete);
  deleted->variant.new_delete->is_new = false;
  deleted->variant.new_delete->is_array = true;
  deleted->variant.new_delete->is_global = true;
  deleted->variant.new_delete->arg_list = var_rvalue_expr(pointer);
  EXPECT_EQ(text(deleted), "::delete[] p");
  a_dynamic_init* init = alloc_dynamic_init(dik_expr);
  init->variant.expr = a();
  an_expr_node* thrown = alloc_expr_node(expr_throw);
  EXPECT_EQ(text(thrown), "throw");
  thrown->variant.throw_info = alloc_throw_supplement();
  thrown->variant.throw_info->dynamic_init = init;
  EXPECT_EQ(text(make_comma_node(thrown, a())), "throw a, a");
}

TEST_F(ExprText, LongChainsAreWrittenWithoutRecursion) {
  start_variables();
  constexpr size_t terms = 100000;
  const std::string sum = text(sum_of(terms, a_variable_named_a));
  EXPECT_EQ(sum.size(), 4 * terms - 3);
  an_expr_node* negated = a();
  for (size_t i = 0; i < terms; ++i)
    negated = unary(eok_complement, unary(eok_not, negated));
  EXPECT_EQ(text(negated).size(), 2 * terms + 1);
}

TEST_F(ExprText, NumbersAndCharacters) {
  a_constant letter = integer('a', ik_int);
  letter.is_character_literal = true;
  a_constant quote = integer('\'', ik_int);
  quote.is_character_literal = true;
  a_constant wide = integer(0x3b1, ik_unsigned_short);
  wide.is_character_literal = true;
  wide.string_char_kind = sck_wide;
  a_constant negative_letter = integer(-1, ik_int);
  negative_letter.is_character_literal = true;
  a_constant pointer;
  make_zero_of_proper_type(void_star_type(), &pointer);
  a_constant address = pointer;
  address.value.int_value = 4096;
  a_constant zero;
  make_zero_of_proper_type(complex_type(fk_float), &zero);
  a_constant error;
  set_error_constant(&error);
  struct {
    a_constant constant;
    const char* expected;
  } cases[] = {
      {integer(-1), "-1"},
      {integer(-1, ik_unsigned_long_long), "18446744073709551615"},
      {letter, "'a'"},
      {quote, "'\\''"},
      {wide, "L'\\x3b1'"},
      {negative_letter, "'\\377'"},
      {pointer, "0"},
      {address, "(void *)4096"},
      {string("a\"b\n\x01\\"), "\"a\\\"b\\n\\001\\\\\""},
      {floating(float_type(fk_double), 0x8000, 1, false), "1.0"},
      {floating(float_type(fk_double), 0xc000, 1, true), "-1.5"},
      {floating(float_type(fk_float), 0x8000, -3, false), "0.0625"},
      {floating(float_type(fk_double), 0x8000, 200, false), "8.0346902212949514e+59"},
      {floating(float_type(fk_double), 0, 32767, true), "-infinity"},
      {floating(float_type(fk_double), 0x8000, 32767, false), "nan"},
      {floating(imaginary_type(fk_double), 0x8000, 2, false), "2.0i"},
      {zero, "(0.0+0.0i)"},
      {error, "<error-constant>"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(text(c.constant), c.expected);
}

TEST_F(ExprText, EnumeratorsAndCplusplusValues) {
  restart_in_cplusplus();
  a_type* type = alloc_type(tk_integer);
  type->source_corresp.name = "color";
  type->variant.integer.int_kind = ik_int;
  type->variant.integer.is_enum = true;
  a_constant* red = alloc_constant(con_integer);
  red->source_corresp.name = "red";
  red->value.int_value = 3;
  red->type = type;
  type->variant.integer.enum_data.first_enumerator = red;
  a_constant value = integer(3);
  value.type = type;
  EXPECT_EQ(text(value), "red");
  value.value.int_value = 4;
  EXPECT_EQ(text(value), "(color)4");
  a_constant truth = integer(1);
  truth.type = bool_type();
  EXPECT_EQ(text(truth), "true");
  a_constant pointer;
  make_zero_of_proper_type(void_star_type(), &pointer);
  EXPECT_EQ(text(pointer), "nullptr");
  // The arguments of a template are shown by the same rules.
  a_template_arg* first = alloc_template_arg(tak_constant);
  value.value.int_value = 3;
  first->value.constant = &value;
  a_constant big = integer(-1, ik_unsigned_int);
  first->next = alloc_template_arg(tak_constant);
  first->next->value.constant = &big;
  EXPECT_EQ(written([first](an_il_to_str_control* control) { form_template_args(first, control); }),
            "<red, 4294967295>");
}

TEST_F(ExprText, AddressesAndAggregates) {
  a_type* int_type = integer_type(ik_int);
  a_variable* x = variable("x", struct_type("s"));
  a_constant address;
  set_variable_address_constant(x, &address, false);
  EXPECT_EQ(text(address), "&x");
  address.value.address.offset = 4;
  EXPECT_EQ(text(address), "&x+4");
  address.value.address.offset = -4;
  EXPECT_EQ(text(address), "&x-4");
  a_subobject_path* path = alloc_subobject_path();
  path->kind = iek_field;
  path->step.field = field("f", make_array_type(int_type, 4));
  path->next = alloc_subobject_path();
  path->next->kind = iek_type;
  path->next->index = 2;
  address.value.address.subobject_path = path;
  EXPECT_EQ(text(address), "&x.f[2]");

  a_constant literal = string("ab");
  a_constant of_literal;
  set_constant_address_constant(&literal, &of_literal);
  of_literal.value.address.offset = 1;
  EXPECT_EQ(text(of_literal), "\"ab\"+1");
  a_constant function;
  set_routine_address_constant(enter_function("g"), &function, false);
  EXPECT_EQ(text(function), "&g");
  a_constant type_id;
  make_typeid_constant(int_type, &type_id);
  EXPECT_EQ(text(type_id), "typeid(int)");
  a_constant difference;
  clear_constant(&difference, con_address_difference);
  difference.value.address_difference.minuend = &function;
  difference.value.address_difference.subtrahend = &type_id;
  EXPECT_EQ(text(difference), "&g - typeid(int)");

  // { .f[2] = 1, 7 <3 times>, { 5 } }
  a_constant aggregate, inner;
  clear_constant(&aggregate, con_aggregate);
  clear_constant(&inner, con_aggregate);
  a_constant designators[2], values[3], repeat;
  for (a_constant& designator : designators)
    clear_constant(&designator, con_designator);
  designators[0].value.designator.is_field = true;
  designators[0].value.designator.designated.field = path->step.field;
  a_constant two = integer(2);
  designators[1].value.designator.is_text_or_index = true;
  designators[1].value.designator.designated.index = &two;
  values[0] = integer(1);
  values[1] = integer(7);
  values[2] = integer(5);
  clear_constant(&repeat, con_repeat);
  repeat.value.repeat.element = &values[1];
  repeat.value.repeat.count = 3;
  add_constant_to_aggregate(&designators[0], &aggregate);
  add_constant_to_aggregate(&designators[1], &aggregate);
  add_constant_to_aggregate(&values[0], &aggregate);
  add_constant_to_aggregate(&repeat, &aggregate);
  add_constant_to_aggregate(&values[2], &inner);
  add_constant_to_aggregate(&inner, &aggregate);
  EXPECT_EQ(text(aggregate), "{.f[2] = 1, 7 <3 times>, {5}}");
}

TEST_F(ExprText, ValuesThatWaitForTemplateArguments) {
  start_variables();
  a_constant operand = integer(1);
  a_constant constant;
  clear_constant(&constant, con_template_param);
  constant.type = integer_type(ik_char);
  set_template_param_constant_kind(&constant, tpck_expression);
  constant.value.template_param.param_data.expr = binary(eok_add, a(), a());
  EXPECT_EQ(text(constant), "a + a");
  struct {
    a_template_param_constant_kind kind;
    const char* expected;
  } of_constant[] = {
      {tpck_cast, "(char)1"}, {tpck_implicit_cast, "1"}, {tpck_unknown_function, "1"}};
  for (const auto& c : of_constant) {
    set_template_param_constant_kind(&constant, c.kind);
    constant.value.template_param.param_data.constant = &operand;
    EXPECT_EQ(text(constant), c.expected);
  }
  constant.value.template_param.param_expr.template_args = alloc_template_arg(tak_type);
  constant.value.template_param.param_expr.template_args->value.type = integer_type(ik_int);
  EXPECT_EQ(text(constant), "1<int>");
  struct {
    a_template_param_constant_kind kind;
    const char* of_type;
    const char* of_expr;
  } of_operand[] = {{tpck_sizeof, "sizeof(int)", "sizeof(a)"},
                    {tpck_alignof, "alignof(int)", "alignof(a)"},
                    {tpck_uuidof, "__uuidof(int)", "__uuidof(a)"},
                    {tpck_typeid, "typeid(int)", "typeid(a)"},
                    {tpck_noexcept, "noexcept(int)", "noexcept(a)"}};
  for (const auto& c : of_operand) {
    set_template_param_constant_kind(&constant, c.kind);
    constant.value.template_param.param_data.type = integer_type(ik_int);
    EXPECT_EQ(text(constant), c.of_type);
    constant.value.template_param.param_expr.expr = a();
    EXPECT_EQ(text(constant), c.of_expr);
  }
}

} // namespace
