// Private to the compiler of the interpreter: one function, or one expression,
// on its way from nodes to code.

#ifndef IFRUN_COMPILE_H
#define IFRUN_COMPILE_H

#include "ifrun_int.h"

// Where an lvalue lies, its address being on the evaluation stack.
struct a_place {
  a_value_type type;
  uint8_t bit = 0;    // of a bit field: its first bit in the byte
  uint32_t width = 0; // of a bit field; 0: no bit field
};

// A case of a switch whose label isn't placed yet.
struct a_case_label {
  size_t table;
  size_t number;
  bool is_default;
  uint32_t label;
};

class a_compiler {
public:
  a_compiler(a_program* target_program, a_function* target)
      : program(*target_program), function(*target) {}
  void whole_function();
  void whole_expression(const an_if_node* node, const an_if_type* type);
  const an_if_statement* current_statement() const {
    return current;
  }

private:
  [[noreturn]] void refuse(const std::string& what) const;
  [[noreturn]] void refuse_node(const an_if_node* node) const;

  // Code (ifrun_compile.cpp).
  an_instruction& emit(an_operation op, uint8_t kind = 0, uint32_t operand = 0);
  void constant(uint64_t value);
  uint32_t here(); // the next instruction, as the target of a jump
  size_t jump(an_operation op);
  void jump_to_label(an_operation op, const an_if_node* label);
  // The last instruction, if it is `op` and nothing jumps behind it.
  an_instruction* last(an_operation op);
  void add_offset(uint64_t bytes);
  void convert(a_value_type from, a_value_type to);
  // Whether the value isn't zero, as a value that a jump can test.
  void test(a_value_type type);
  void load(const a_place& place);
  void store(const a_place& place);
  void discard();

  // Functions and statements (ifrun_compile.cpp).
  void lay_out_frame();
  uint32_t frame_room(uint64_t bytes);
  void statement(const an_if_statement& statement);
  void expression_statement(const an_if_node* node);
  void branch_if_false(const an_if_node* node);
  void return_value(const an_if_node* node);
  void switch_table(const an_if_node* node);

  // Expressions (ifrun_compile_expr.cpp). The type is the one of the value
  // that then is on the stack.
  a_value_type value(const an_if_node* node);
  a_value_type value_of_operator(const an_if_node* node);
  void value_as(const an_if_node* node, a_value_type type);
  void discarded_value(const an_if_node* node);
  a_value_type name(const an_if_node* node);
  a_value_type string(const an_if_node* node);
  a_value_type float_constant(const an_if_node* node);
  // The form that an operation has for values of the kind.
  an_operation operation_of_kind(an_operation op, uint8_t kind) const;
  a_value_type arithmetic(const an_if_node* node, an_operation op);
  a_value_type shift(const an_if_node* node, an_operation op);
  a_value_type unary(const an_if_node* node, an_operation op);
  a_value_type comparison(const an_if_node* node, an_operation op, bool is_signed);
  a_value_type float_comparison(const an_if_node* node, an_operation op, bool negated);
  a_value_type short_circuit(const an_if_node* node);
  a_value_type conditional(const an_if_node* node);
  a_value_type conversion(const an_if_node* node);
  a_value_type scaled_index(const an_if_node* node);
  a_value_type address_difference(const an_if_node* node);
  a_value_type from_place(const an_if_node* node);
  a_value_type address_of(const an_if_node* node);

  // Assignments and calls (ifrun_compile_assign.cpp).
  a_value_type assignment(const an_if_node* node);
  a_value_type compound_assignment(const an_if_node* node, an_operation op);
  a_value_type post_increment(const an_if_node* node);
  a_value_type memory_copy(const an_if_node* node);
  a_value_type call(const an_if_node* node);
  an_argument argument(const an_if_node* node);

  // The place that an lvalue, or the object of an aggregate value, has.
  a_place place(const an_if_node* node);
  a_place member_place(const an_if_node* node);
  void variable_address(const an_if_node* node);
  const uint32_t* function_id(const an_if_node* node) const;

  a_program& program;
  a_function& function;
  const an_if_statement* current = nullptr;
  uint32_t barrier = 0; // instructions before this one stay as they are
  unsigned depth = 0;
  std::unordered_map<uint32_t, uint32_t> label_targets;     // by label
  std::vector<std::pair<size_t, uint32_t>> jumps_to_labels; // instruction, label
  std::vector<a_case_label> cases_to_labels;
  std::unordered_map<const an_if_symbol*, uint32_t> offsets;    // of locals
  std::unordered_map<const an_if_node*, uint32_t> result_rooms; // of calls
};

// The elements of a chain of COMMA nodes, in order.
std::vector<const an_if_node*> comma_list(const an_if_node* node);

#endif
