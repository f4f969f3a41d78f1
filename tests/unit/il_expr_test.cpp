#include "il_expr_fixture.h"
#include "mode_words.h"

#include <map>

namespace {

class IlExpr : public IL_EXPR_TEST {};

TEST_F(IlExpr, IntegersAreCutToTheirKind) {
  struct {
    int64_t value;
    an_integer_kind kind;
    uint64_t expected;
  } cases[] = {
      {0x1ff, ik_unsigned_char, 0xff},    {0x80, ik_signed_char, 0xffffffffffffff80u},
      {-1, ik_unsigned_short, 0xffff},    {0x18000, ik_short, 0xffffffffffff8000u},
      {-1, ik_unsigned_int, 0xffffffffu}, {0x80000000, ik_int, 0xffffffff80000000u},
      {-1, ik_unsigned_long_long, ~0ull},
  };
  for (const auto& c : cases) {
    a_constant constant = integer(c.value, c.kind);
    EXPECT_EQ(constant.value.int_value, c.expected) << c.value << " of kind " << int{c.kind};
  }
  a_constant top = integer(INT64_MIN, ik_unsigned_long_long);
  a_constant same = integer(INT64_MIN, ik_unsigned_long_long);
  EXPECT_TRUE(eq_constants(&top, &same));
  EXPECT_EQ(hash_constant(&top), hash_constant(&same));
  EXPECT_FALSE(is_zero_constant(&top));
}

TEST_F(IlExpr, ZeroesOfAllTypes) {
  a_type* types[] = {integer_type(ik_char), float_type(fk_double), complex_type(fk_float),
                     imaginary_type(fk_float), void_star_type()};
  for (a_type* type : types) {
    a_constant zero;
    make_zero_of_proper_type(type, &zero);
    EXPECT_EQ(zero.type, type);
    EXPECT_TRUE(is_zero_constant(&zero)) << int{type->kind};
  }
  a_constant negative;
  make_zero_of_proper_type(float_type(fk_double), &negative);
  negative.value.float_value.sign = 1;
  EXPECT_FALSE(is_zero_constant(&negative));
  a_constant array;
  make_value_initialized_constant(make_array_type(integer_type(ik_int), 3), &array);
  EXPECT_EQ(array.kind, con_aggregate);
  EXPECT_TRUE(is_zero_constant(&array));
  a_constant error;
  make_zero_of_proper_type(error_type(), &error);
  EXPECT_TRUE(is_error_constant(&error));
}

TEST_F(IlExpr, EqualConstantsShareARecord) {
  a_constant five = integer(5);
  a_constant* shared = alloc_shareable_constant(&five);
  for (int i = 0; i < 3000; ++i) {
    a_constant other = integer(i + 100);
    alloc_shareable_constant(&other);
  }
  EXPECT_EQ(alloc_shareable_constant(&five), shared);
  a_constant long_five = integer(5, ik_long);
  EXPECT_NE(alloc_shareable_constant(&long_five), shared);
  // What was written differently stays apart.
  a_constant letter = integer(5);
  letter.is_character_literal = true;
  EXPECT_NE(alloc_shareable_constant(&letter), shared);
  // A backing expression belongs to one use.
  a_constant computed = integer(5);
  computed.source_expr = number(5);
  a_constant* own = alloc_shareable_constant(&computed);
  EXPECT_NE(own, shared);
  EXPECT_EQ(own->source_expr, computed.source_expr);
  EXPECT_EQ(number(5)->variant.constant.ptr, shared);
}

TEST_F(IlExpr, StringsAreSharedOnlyWhenAllowed) {
  a_constant first = string("text");
  char copy_of_text[] = "text";
  a_constant second = string(copy_of_text);
  string_literals_shared = 1;
  EXPECT_EQ(alloc_shareable_constant(&first), alloc_shareable_constant(&second));
  string_literals_shared = 0;
  f_assign_string_literal_sequence_number(&first);
  f_assign_string_literal_sequence_number(&second);
  EXPECT_NE(first.value.string.sequence_number, second.value.string.sequence_number);
  a_constant* shared_first = alloc_shareable_constant(&first);
  a_constant* shared_second = alloc_shareable_constant(&second);
  EXPECT_NE(shared_first, shared_second);
  EXPECT_FALSE(compare_constants(shared_first, shared_second, ccf_for_sharing));
  EXPECT_TRUE(eq_constants(shared_first, shared_second));
  a_constant address1, address2;
  set_constant_address_constant(shared_first, &address1);
  set_constant_address_constant(shared_second, &address2);
  EXPECT_FALSE(eq_constants(&address1, &address2));
}

TEST_F(IlExpr, LocalAddressesStayOutOfTheFileTable) {
  a_routine* routine = enter_function("f");
  push_function_scope(routine);
  a_variable* local = enter_variable("local", sc_auto, 1)->variant.variable;
  local->source_corresp.symbol->referenced = true;
  a_constant address;
  set_variable_address_constant(local, &address, true);
  EXPECT_TRUE(local->address_taken);
  EXPECT_TRUE(has_non_file_scope_ref(&address));
  a_constant* shared = alloc_shareable_constant(&address);
  EXPECT_EQ(alloc_shareable_constant(&address), shared);
  EXPECT_FALSE(is_file_scope_entry(shared));
  // A value that knows nothing of the function is shared by all functions.
  a_constant seven = integer(7);
  a_constant* file_wide = alloc_shareable_constant(&seven);
  EXPECT_TRUE(is_file_scope_entry(file_wide));
  pop_scope();
  EXPECT_EQ(alloc_shareable_constant(&seven), file_wide);
}

TEST_F(IlExpr, AggregatesPassUpWhatTheirElementsNeed) {
  a_constant* inner = alloc_constant(con_aggregate);
  a_constant* outer = alloc_constant(con_aggregate);
  a_constant* plain = alloc_constant(con_integer);
  add_constant_to_aggregate(plain, inner);
  EXPECT_FALSE(inner->value.aggregate.has_dynamic_init);
  a_constant* dynamic = alloc_constant(con_dynamic_init);
  dynamic->value.dynamic_init = alloc_dynamic_init(dik_zero);
  add_constant_to_aggregate(dynamic, inner);
  EXPECT_TRUE(inner->value.aggregate.has_dynamic_init);
  add_constant_to_aggregate(inner, outer);
  EXPECT_TRUE(outer->value.aggregate.has_dynamic_init);
  EXPECT_EQ(inner->value.aggregate.first, plain);
  EXPECT_EQ(inner->value.aggregate.last, dynamic);

  a_constant copy;
  copy_constant_full(outer, &copy);
  a_constant* copied_inner = copy.value.aggregate.first;
  ASSERT_NE(copied_inner, inner);
  EXPECT_NE(copied_inner->value.aggregate.first, plain);
  EXPECT_NE(copied_inner->value.aggregate.last->value.dynamic_init, dynamic->value.dynamic_init);
  EXPECT_EQ(copied_inner->value.aggregate.last->next, nullptr);
  a_dynamic_init* init = alloc_dynamic_init(dik_none);
  set_dynamic_init_constant(init, outer);
  EXPECT_EQ(init->kind, dik_nonconstant_aggregate);
}

TEST_F(IlExpr, StringInitializerBecomesItsCharacters) {
  a_constant constant = string("a\xe9");
  explode_string_initializer(&constant);
  ASSERT_EQ(constant.kind, con_aggregate);
  const a_constant* element = constant.value.aggregate.first;
  EXPECT_EQ(element->value.int_value, uint64_t{'a'});
  element = element->next;
  EXPECT_EQ(element->type, array_element_type(constant.type));
  EXPECT_EQ(static_cast<unsigned char>(element->value.int_value), 0xe9u);
  element = element->next;
  EXPECT_EQ(element->value.int_value, 0u);
  EXPECT_EQ(element->next, nullptr);
  // char a[2] = "ab" leaves no room for the terminator.
  a_constant tight = string("ab");
  tight.type = make_array_type(integer_type(ik_char), 2);
  explode_string_initializer(&tight);
  EXPECT_EQ(tight.value.aggregate.first->next, tight.value.aggregate.last);
}

TEST_F(IlExpr, OperationKinds) {
  a_type* int_type = integer_type(ik_int);
  a_type* double_type = float_type(fk_double);
  a_type* complex = complex_type(fk_double);
  a_type* imaginary = imaginary_type(fk_double);
  EXPECT_EQ(binary_operation_type_kind(eok_land, double_type, double_type), tk_integer);
  EXPECT_EQ(binary_operation_type_kind(eok_comma, int_type, int_type), tk_unknown);
  EXPECT_EQ(binary_operation_type_kind(eok_eq, int_type, int_type), tk_integer);
  EXPECT_EQ(binary_operation_type_kind(eok_eq, void_star_type(), int_type), tk_pointer);
  EXPECT_EQ(binary_operation_type_kind(eok_add, complex, double_type), tk_complex);
  EXPECT_EQ(binary_operation_type_kind(eok_add, imaginary, imaginary), tk_float);
  EXPECT_EQ(binary_operation_type_kind(eok_multiply, imaginary, imaginary), tk_imaginary);
  EXPECT_EQ(binary_operation_type_kind(eok_add, error_type(), int_type), tk_error);

  // Operands of different kinds, in either order.
  a_type* parameter = alloc_type(tk_template_param);
  a_type* member = alloc_type(tk_ptr_to_member);
  a_type* null = alloc_type(tk_nullptr);
  struct {
    an_expr_operator_kind op;
    a_type* type1;
    a_type* type2;
    a_type_kind expected;
  } mixed[] = {
      {eok_add, parameter, void_star_type(), tk_template_param},
      {eok_add, unknown_type(), int_type, tk_template_param},
      {eok_eq, void_star_type(), null, tk_pointer},
      {eok_eq, member, null, tk_ptr_to_member},
      {eok_add, complex, imaginary, tk_complex},
      {eok_add, double_type, imaginary, tk_float},
      {eok_multiply, double_type, imaginary, tk_imaginary},
      {eok_eq, null, int_type, tk_nullptr},
      {eok_add, int_type, double_type, tk_unknown},
      {eok_question, alloc_type(tk_union), int_type, tk_unknown},
      {eok_question, alloc_type(tk_class), alloc_type(tk_union), tk_struct},
  };
  for (const auto& m : mixed) {
    EXPECT_EQ(binary_operation_type_kind(m.op, m.type1, m.type2), m.expected);
    EXPECT_EQ(binary_operation_type_kind(m.op, m.type2, m.type1), m.expected);
  }

  a_variable* c = variable("c");
  c->type = integer_type(ik_char);
  a_variable* d = variable("d");
  d->type = double_type;
  // c += d computes in double; the comparison of doubles is one of doubles
  // though its result is an int.
  an_expr_node* assign =
      make_assignment_expr(var_lvalue_expr(c), eok_add_assign, var_rvalue_expr(d));
  EXPECT_EQ(assign->variant.operation.operation_kind, tk_float);
  EXPECT_EQ(assign->type, c->type);
  an_expr_node* compare = binary(eok_lt, var_rvalue_expr(d), var_rvalue_expr(d));
  EXPECT_EQ(compare->variant.operation.operation_kind, tk_float);
  EXPECT_EQ(compare->type->kind, tk_integer);
  an_expr_node* cast = add_cast(var_rvalue_expr(d), int_type);
  EXPECT_EQ(cast->variant.operation.operation_kind, tk_unknown);
  EXPECT_EQ(add_cast(number(1), integer_type(ik_long))->variant.operation.operation_kind,
            tk_integer);
}

// The kind of each operator on a double and an int, with a long as its result.
TEST_F(IlExpr, KindsOfAllOperators) {
  std::map<int, a_type_kind> expected;
  const auto expect = [&](a_type_kind kind, std::initializer_list<int> ops) {
    for (int op : ops)
      expected[op] = kind;
  };
  expect(tk_pointer, {0, 1, 2, 3, 4, 10, 11, 12, 13, 18, 50, 51, 52, 83, 84, 91});
  expect(tk_unknown, {5, 6, 7, 8, 58, 59, 60, 61, 62, 63});
  expect(tk_struct, {9});
  expect(tk_array, {21});
  expect(tk_integer, {24, 86, 87});
  expect(tk_imaginary, {44, 45});
  expect(tk_complex, {46, 47, 48, 49});
  expect(tk_float, {16, 17, 20, 29, 53, 54, 72});             // the first operand's
  expect(tk_float, {73, 74, 75, 76, 77, 78, 79, 80, 81, 82}); // in which it computes
  expect(tk_error, {117});
  an_expr_node* first = var_rvalue_expr(variable("d", float_type(fk_double)));
  first->next = number(1);
  for (int op = 0; op < num_expr_operator_kinds; ++op) {
    const a_type_kind kind = expected.count(op) != 0 ? expected[op] : tk_integer;
    EXPECT_EQ(
        operation_type_kind(static_cast<an_expr_operator_kind>(op), integer_type(ik_long), first),
        kind)
        << op;
  }
}

TEST_F(IlExpr, AddressesAndIndirectionsCancel) {
  a_variable* x = variable("x");
  an_expr_node* address = var_addr_expr(x);
  EXPECT_TRUE(is_operation_node(address, eok_address_of));
  EXPECT_TRUE(x->address_taken);
  EXPECT_EQ(type_pointed_to(address->type), x->type);
  an_expr_node* pointer = var_rvalue_expr(variable("p"));
  pointer->type = make_pointer_type(integer_type(ik_int));
  an_expr_node* object = add_indirection_to_node(pointer);
  EXPECT_TRUE(object->is_lvalue);
  EXPECT_EQ(add_address_of_to_node(object), pointer);
  // A written `*` is kept, as `&*p` was.
  object = add_indirection_to_node(pointer);
  object->variant.operation.is_implicit = false;
  EXPECT_TRUE(is_operation_node(add_address_of_to_node(object), eok_address_of));
  an_expr_node* error = error_node();
  EXPECT_EQ(add_address_of_to_node(error), error);
  EXPECT_EQ(add_cast(error, integer_type(ik_int)), error);
}

TEST_F(IlExpr, CommaAndUnusedResults) {
  a_variable* x = variable("x");
  an_expr_node* comma = make_comma_node(number(1), var_lvalue_expr(x));
  EXPECT_TRUE(comma->is_lvalue);
  EXPECT_TRUE(comma->variant.operation.operands->result_not_used);
  EXPECT_FALSE(make_comma_node(var_lvalue_expr(x), number(1))->is_lvalue);
  an_expr_node* only = number(2);
  EXPECT_EQ(make_comma_node_if_necessary(nullptr, only), only);

  an_expr_node* condition = number(1);
  an_expr_node* second = number(2);
  an_expr_node* third = number(3);
  condition->next = second;
  second->next = third;
  an_expr_node* question = make_operator_node(eok_question, integer_type(ik_int), condition);
  set_expr_result_not_used(make_comma_node(number(0), add_cast(question, void_type())));
  EXPECT_FALSE(condition->result_not_used);
  EXPECT_TRUE(second->result_not_used);
  EXPECT_TRUE(third->result_not_used);
}

TEST_F(IlExpr, OverwritingKeepsThePlaceInTheTree) {
  an_expr_node* target = number(1);
  an_expr_node* sibling = number(2);
  target->next = sibling;
  target->result_not_used = true;
  target->kept_in_overwrite = true;
  an_expr_node* source = binary(eok_add, number(3), number(4));
  overwrite_node(target, source);
  EXPECT_TRUE(is_operation_node(target, eok_add));
  EXPECT_EQ(target->next, sibling);
  EXPECT_TRUE(target->result_not_used);
  EXPECT_TRUE(target->kept_in_overwrite);
  overwrite_node(target, target);
  EXPECT_EQ(target->next, sibling);
}

TEST_F(IlExpr, LongSumsDoNotExhaustTheStack) {
  a_variable* x = variable("x");
  a_variable* y = variable("y");
  constexpr int terms = 200000;
  an_expr_node* sum = sum_of(terms, x);
  an_expr_node* copy = copy_expr_tree(sum, cef_none);
  EXPECT_NE(copy->variant.operation.operands, sum->variant.operation.operands);
  EXPECT_TRUE(compare_expressions(sum, copy, 0));
  an_expr_node* innermost = copy;
  while (innermost->kind == expr_operation)
    innermost = innermost->variant.operation.operands;
  innermost->variant.variable.ptr = y;
  EXPECT_FALSE(compare_expressions(sum, copy, 0));
  EXPECT_FALSE(node_has_side_effects(sum));
  EXPECT_FALSE(is_invariant_expr(sum));
  EXPECT_FALSE(expr_contains_error(sum));

  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  int visited = 0;
  block.data = &visited;
  block.process_expr = [](an_expr_node*, an_expr_or_stmt_traversal_block* b) {
    ++*static_cast<int*>(b->data);
  };
  traverse_expr(sum, &block);
  EXPECT_EQ(visited, 2 * terms - 1);

  // The same depth on the right, and in statements.
  an_expr_node* comma = number(0);
  for (int i = 0; i < terms; ++i)
    comma = make_comma_node(number(1), comma);
  set_expr_result_not_used(comma);
  EXPECT_TRUE(compare_expressions(comma, copy_expr_tree(comma, cef_none), 0));
  a_statement* chain = alloc_statement(stmk_null);
  for (int i = 0; i < terms; ++i) {
    a_statement* if_statement = alloc_statement(stmk_if);
    if_statement->expr = number(1);
    if_statement->variant.if_stmt.then_statement = alloc_statement(stmk_null);
    if_statement->variant.if_stmt.else_statement = chain;
    chain = if_statement;
  }
  visited = 0;
  traverse_statement(chain, &block);
  EXPECT_EQ(visited, terms);
}

TEST_F(IlExpr, TraversalGoesInSourceOrder) {
  // for (i; c; n) body, then return: condition, body, increment.
  a_statement* loop = alloc_statement(stmk_for);
  loop->variant.loop.extra.for_supplement->init_statement = alloc_expr_statement(number(1));
  loop->expr = number(2);
  loop->variant.loop.body = alloc_expr_statement(binary(eok_add, number(3), number(4)));
  loop->variant.loop.extra.for_supplement->increment_expr = number(5);
  loop->next = alloc_expr_statement(number(6));
  a_statement* do_statement = alloc_statement(stmk_do);
  do_statement->variant.loop.body = alloc_expr_statement(number(7));
  do_statement->expr = number(8);
  loop->next->next = do_statement;
  a_statement* block_statement = alloc_statement(stmk_block);
  block_statement->variant.block.first_statement = loop;

  std::string order;
  an_expr_or_stmt_traversal_block block;
  clear_expr_or_stmt_traversal_block(&block);
  block.data = &order;
  block.process_constant = [](a_constant* constant, an_expr_or_stmt_traversal_block* b) {
    *static_cast<std::string*>(b->data) += std::to_string(constant->value.int_value);
  };
  block.process_expr_after = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    if (node->kind == expr_operation)
      *static_cast<std::string*>(b->data) += '+';
  };
  traverse_statement(block_statement, &block);
  EXPECT_EQ(order, "1234+5678");

  // A subtree can be passed over, and a walk can end early.
  order.clear();
  block.process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    b->suppress_subtree = node->kind == expr_operation;
  };
  traverse_statement(block_statement, &block);
  EXPECT_EQ(order, "125678");
  order.clear();
  block.process_expr = [](an_expr_node* node, an_expr_or_stmt_traversal_block* b) {
    b->terminate = node->kind == expr_operation;
  };
  traverse_statement(block_statement, &block);
  EXPECT_EQ(order, "12");
}

TEST_F(IlExpr, SideEffectsAndInvariance) {
  a_variable* x = variable("x");
  EXPECT_TRUE(is_invariant_expr(binary(eok_add, number(1), var_addr_expr(x))));
  EXPECT_FALSE(is_invariant_expr(var_rvalue_expr(x)));
  an_expr_node* assign = make_assignment_expr(var_lvalue_expr(x), eok_assign, number(1));
  EXPECT_TRUE(node_has_side_effects(binary(eok_add, number(1), assign)));
  a_variable* v = variable("v");
  v->type = make_qualified_type(v->type, tq_volatile);
  EXPECT_TRUE(node_has_side_effects(var_rvalue_expr(v)));
  // The operand of sizeof is not evaluated.
  an_expr_node* size = alloc_expr_node(expr_sizeof_like);
  size->variant.sizeof_like.operand.expr = assign;
  EXPECT_FALSE(node_has_side_effects(size));
  an_expr_node* call =
      make_operator_node(eok_call, integer_type(ik_int), function_rvalue_expr(enter_function("g")));
  EXPECT_TRUE(node_has_side_effects(call));
  EXPECT_TRUE(expr_contains_error(binary(eok_add, number(1), error_node())));
}

TEST_F(IlExpr, CallsMightThrowWhatTheirTypesAllow) {
  a_boolean saved = exceptions_enabled;
  exceptions_enabled = 1;
  a_constant condition = integer(0);
  an_exception_specification nothing = {}, noexcept_spec = {}, noexcept_false = {}, listing = {},
                             anything = {};
  an_exception_specification_type listed = {};
  listed.type = integer_type(ik_int);
  listing.types = &listed;
  anything.is_any = true;
  noexcept_spec.is_noexcept = noexcept_false.is_noexcept = true;
  noexcept_false.noexcept_constant = &condition;
  struct {
    an_exception_specification* spec;
    bool might_throw;
  } cases[] = {{nullptr, true},         {&nothing, false}, {&noexcept_spec, false},
               {&noexcept_false, true}, {&listing, true},  {&anything, true}};
  for (const auto& c : cases) {
    a_routine* routine = alloc_routine();
    routine->type = make_routine_type(integer_type(ik_int));
    routine->type->variant.routine.routine_supplement->exception_specification = c.spec;
    an_expr_node* call =
        make_operator_node(eok_call, integer_type(ik_int), function_rvalue_expr(routine));
    EXPECT_EQ(expr_might_throw(binary(eok_add, number(1), call)), c.might_throw);
    a_dynamic_init* init = alloc_dynamic_init(dik_none);
    init->destructor = routine;
    EXPECT_EQ(dynamic_init_might_throw(init), c.might_throw);
  }
  an_expr_node* rethrow = alloc_expr_node(expr_throw);
  EXPECT_TRUE(expr_might_throw(rethrow));
  exceptions_enabled = 0;
  EXPECT_FALSE(expr_might_throw(rethrow));
  exceptions_enabled = saved;
}

TEST_F(IlExpr, ThrownValuesAreCompared) {
  const auto throw_of = [this](int64_t value, a_type* type) {
    an_expr_node* node = alloc_expr_node(expr_throw);
    node->type = void_type();
    node->variant.throw_info = alloc_throw_supplement();
    node->variant.throw_info->type = type;
    node->variant.throw_info->dynamic_init = alloc_dynamic_init(dik_expr);
    node->variant.throw_info->dynamic_init->variant.expr = number(value);
    return node;
  };
  a_type* int_type = integer_type(ik_int);
  an_expr_node* one = throw_of(1, int_type);
  an_expr_node* rethrow = alloc_expr_node(expr_throw);
  rethrow->type = void_type();
  EXPECT_TRUE(compare_expressions(one, throw_of(1, int_type), 0));
  EXPECT_FALSE(compare_expressions(one, throw_of(2, int_type), 0));
  EXPECT_FALSE(compare_expressions(one, throw_of(1, integer_type(ik_long)), 0));
  EXPECT_FALSE(compare_expressions(one, rethrow, 0));
}

TEST_F(IlExpr, TheTableOfOperators) {
  const auto is_one_of = [](int op, std::initializer_list<std::pair<int, int>> ranges) {
    for (auto [low, high] : ranges) {
      if (op >= low && op <= high)
        return true;
    }
    return false;
  };
  for (int value = 0; value < num_expr_operator_kinds; ++value) {
    const an_expr_operator_kind op = static_cast<an_expr_operator_kind>(value);
    const an_operator_description& description = description_of_operator(op);
    const bool is_reserved = is_one_of(value, {{1, 2},
                                               {10, 13},
                                               {17, 19},
                                               {24, 24},
                                               {30, 31},
                                               {64, 69},
                                               {88, 89},
                                               {92, 92},
                                               {97, 98},
                                               {109, 114},
                                               {117, 117}});
    EXPECT_EQ(description.form == of_none, is_reserved) << value;
    EXPECT_EQ(description.precedence == prec_none, is_reserved) << value;
    EXPECT_EQ(is_compound_assignment_operator(op), is_one_of(value, {{73, 84}})) << value;
    EXPECT_EQ(is_operator_returning_bool(op),
              is_one_of(value, {{20, 20}, {29, 29}, {58, 63}, {86, 87}}))
        << value;
    an_expr_node cast = {};
    cast.kind = expr_operation;
    cast.variant.operation.op = op;
    EXPECT_EQ(is_cast_operation_node(&cast), is_one_of(value, {{5, 5}, {9, 9}, {13, 13}, {17, 17}}))
        << value;
    // What changes its operand in place needs an lvalue.
    if (is_assignment_operator(op) || is_increment_operator(op)) {
      EXPECT_TRUE(operator_takes_lvalue_op1(op)) << value;
    }
    EXPECT_EQ(operator_takes_lvalue_op2(op), op == eok_array_assign) << value;
  }
  EXPECT_TRUE(operator_takes_lvalue_op1(eok_address_of));
  EXPECT_TRUE(operator_takes_lvalue_op1(eok_dot_field));
  EXPECT_FALSE(operator_takes_lvalue_op1(eok_arrow_field));
  EXPECT_FALSE(operator_takes_lvalue_op1(eok_indirect));
}

TEST_F(IlExpr, AddressesReachTheObjectsUnderAnLvalue) {
  a_type* s = struct_type("s");
  a_field* f = field("f", make_array_type(integer_type(ik_int), 3));
  a_variable* variables[6];
  for (int i = 0; i < 6; ++i)
    variables[i] = variable(std::string(1, static_cast<char>('a' + i)).c_str(), s);
  a_variable* pointer = variable("p", make_pointer_type(s));
  // a.f[1], b ? c : d, (0, e), p->f
  an_expr_node* array = field_lvalue_selection_expr(var_lvalue_expr(variables[0]), f);
  an_expr_node* base =
      make_operator_node(eok_array_to_pointer, make_pointer_type(integer_type(ik_int)), array);
  base->next = number(1);
  mark_address_taken_in_lvalue(
      make_lvalue_operator_node(eok_subscript, integer_type(ik_int), base));
  mark_address_taken_in_lvalue(conditional(
      var_lvalue_expr(variables[1]), var_lvalue_expr(variables[2]), var_lvalue_expr(variables[3])));
  mark_address_taken_in_lvalue(make_comma_node(number(0), var_lvalue_expr(variables[4])));
  mark_address_taken_in_lvalue(field_lvalue_selection_expr(var_rvalue_expr(pointer), f));
  const bool expected[] = {true, false, true, true, true, false};
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(variables[i]->address_taken, expected[i]) << i;
  EXPECT_FALSE(pointer->address_taken);
}

TEST_F(IlExpr, CopiesGiveTemporariesRecordsOfTheirOwn) {
  a_dynamic_init* init = alloc_dynamic_init(dik_expr);
  init->variant.expr = number(5);
  an_expr_node* temporary = alloc_expr_node(expr_temp_init);
  temporary->variant.dynamic_init = init;
  an_expr_node* tree = binary(eok_add, temporary, number(6));
  const auto init_of = [](const an_expr_node* copy) {
    return copy->variant.operation.operands->variant.dynamic_init;
  };
  const auto constant_of = [](const an_expr_node* copy) {
    return copy->variant.operation.operands->next->variant.constant.ptr;
  };
  an_expr_node* plain = copy_expr_tree(tree, cef_none);
  EXPECT_EQ(init_of(plain), init);
  EXPECT_EQ(constant_of(plain), constant_of(tree));
  an_expr_node* full = copy_expr_tree(tree, cef_copy_dynamic_inits | cef_copy_constants);
  EXPECT_NE(init_of(full), init);
  EXPECT_NE(init_of(full)->variant.expr, init->variant.expr);
  EXPECT_NE(constant_of(full), constant_of(tree));
  EXPECT_TRUE(compare_expressions(full, tree, 0));
  init_of(full)->variant.expr = number(7);
  EXPECT_FALSE(compare_expressions(full, tree, 0));
  // A node that is copied alone keeps its operands, but no place in a list.
  temporary->next = number(1);
  an_expr_node* alone = copy_node(temporary);
  EXPECT_EQ(alone->next, nullptr);
  EXPECT_EQ(alone->variant.dynamic_init, init);
}

TEST_F(IlExpr, WalksReachDependentValues) {
  an_expr_node* node = alloc_expr_node(expr_constant);
  node->variant.constant.ptr = alloc_constant(con_template_param);
  a_constant* cast = node->variant.constant.ptr;
  set_template_param_constant_kind(cast, tpck_cast);
  cast->value.template_param.param_data.constant = alloc_constant(con_template_param);
  a_constant* size = cast->value.template_param.param_data.constant;
  set_template_param_constant_kind(size, tpck_sizeof);
  size->value.template_param.param_expr.expr = error_node();
  EXPECT_TRUE(expr_contains_error(node));
  // The operand is not evaluated.
  size->value.template_param.param_expr.expr =
      make_assignment_expr(var_lvalue_expr(variable("x")), eok_assign, number(1));
  EXPECT_FALSE(node_has_side_effects(node));
}

} // namespace
