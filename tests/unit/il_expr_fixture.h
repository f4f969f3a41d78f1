// Short makers of constants, variables and expressions for tests of the
// intermediate language.

#ifndef IL_EXPR_FIXTURE_H
#define IL_EXPR_FIXTURE_H

#include "front_end_fixture.h"

class IL_EXPR_TEST : public FrontEnd {
protected:
  a_constant integer(int64_t value, an_integer_kind kind = ik_int) {
    a_constant constant;
    set_integer_constant(&constant, value, kind);
    return constant;
  }

  a_constant string(const char* text) {
    a_constant constant;
    clear_constant(&constant, con_string);
    constant.type = string_type(strlen(text) + 1);
    constant.value.string.length = strlen(text) + 1;
    constant.value.string.text = text;
    return constant;
  }

  a_variable* variable(const char* name) {
    return enter_variable(name, sc_extern, 0)->variant.variable;
  }

  a_variable* variable(const char* name, a_type* type) {
    a_variable* result = variable(name);
    result->type = type;
    return result;
  }

  a_field* field(const char* name, a_type* type) {
    a_field* result = alloc_field(type);
    result->source_corresp.name = name;
    return result;
  }

  a_type* struct_type(const char* name) {
    a_type* type = alloc_type(tk_struct);
    type->source_corresp.name = name;
    return type;
  }

  an_expr_node* number(int64_t value) {
    return node_for_integer_constant(value, ik_int);
  }

  an_expr_node* binary(an_expr_operator_kind op, an_expr_node* left, an_expr_node* right) {
    left->next = right;
    return make_operator_node(op, integer_type(ik_int), left);
  }

  an_expr_node* unary(an_expr_operator_kind op, an_expr_node* operand) {
    return make_operator_node(op, operand->type, operand);
  }

  an_expr_node* conditional(an_expr_node* condition, an_expr_node* second, an_expr_node* third) {
    condition->next = second;
    second->next = third;
    return make_operator_node(eok_question, second->type, condition);
  }

  // a + a + ... , nested to the left.
  an_expr_node* sum_of(int terms, a_variable* term) {
    an_expr_node* sum = var_rvalue_expr(term);
    for (int i = 1; i < terms; ++i)
      sum = binary(eok_add, sum, var_rvalue_expr(term));
    return sum;
  }
};

#endif
