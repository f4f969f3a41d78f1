// Private to the reader of the intermediate file: the cursor that decodes the
// fields of one record, and the state of reading a whole file.

#ifndef IFREAD_INT_H
#define IFREAD_INT_H

#include "ifread.h"

// Ends the reading.
[[noreturn]] inline void if_fail(uint64_t offset, std::string message) {
  throw an_if_error{offset, std::move(message)};
}

// Decodes the body of a record field by field. Every operation checks the
// bounds and fails at the field's offset.
class a_field_cursor {
public:
  explicit a_field_cursor(const an_if_record& record)
      : body(record.body), body_offset(record.body_offset) {}
  uint64_t offset() const {
    return body_offset + position;
  }
  bool at_end() const {
    return position == body.size();
  }
  uint8_t i8();
  bool flag();
  uint16_t i16();
  uint32_t i32();
  uint64_t uint();
  uint32_t uint32(); // a uint that must fit 32 bits
  int64_t sint();
  std::string_view string();
  std::string_view counted_string(); // a uint length and the text
  an_if_position psn();
  void strings(std::vector<std::string_view>* list); // a uint count and the texts
  // The record must end here.
  void finish() const;

private:
  std::string_view take(size_t count);

  std::string_view body;
  uint64_t body_offset;
  size_t position = 0;
};

// The shape of the fields behind a record's tag, a type record's code and an
// opcode's type (see if_tags.def); null for an unknown number.
const char* if_tag_shape(unsigned tag);
const char* if_type_code_shape(unsigned code);
const char* if_opcode_shape(unsigned opcode);

// Decodes fields by a shape and appends them; stops at the body's end.
void if_decode_shape(a_field_cursor& cursor, const char* shape, std::vector<an_if_field>* fields);
void if_decode_whole_record(const an_if_record& record, std::vector<an_if_field>* fields);

struct an_if_opcode_row {
  const char* name; // null: no opcode
  uint8_t operand_count;
  an_if_form form;
};
const an_if_opcode_row& if_opcode_row(unsigned opcode);

// What reading needs beside the file itself.
struct an_if_reader {
  explicit an_if_reader(an_if_file* target) : file(*target) {}
  an_if_file& file;

  // Types (ifread_types.cpp).
  void read_types();
  // The type of an id; 0 is null. Fails at `offset` for an unknown one.
  const an_if_type* type_of(uint32_t id, uint64_t offset) const;
  const an_if_type* optional_type(a_field_cursor& cursor) const;
  const an_if_type* required_type(a_field_cursor& cursor) const;
  an_if_position psn(a_field_cursor& cursor) const;

  // Symbols, functions and initialisers (ifread_body.cpp).
  void read_globals();
  void read_body();
  void read_initializers();

private:
  void read_type_record(const an_if_record& record);
  void define_type(const an_if_record& record, a_field_cursor& cursor, uint32_t id, uint8_t code);
  void read_csu(a_field_cursor& cursor, an_if_type* type, bool with_lists);
  void read_list_frame(a_field_cursor& cursor, an_if_type* type, uint8_t code);
  void read_list_element(a_field_cursor& cursor, an_if_type* type, uint8_t code);
  void end_of_types();

  void read_symbol(const an_if_record& record, an_if_symbol* symbol);
  void take_pragma(const an_if_record& record, std::vector<an_if_pragma>* pragmas);
  void read_statement(const an_if_record& record);
  void begin_function(const an_if_record& record);
  void end_function(const an_if_record& record);
  void follow_level(const an_if_record& record);
  void check_labels(const an_if_function& function) const;
  void add_local(const an_if_record& record, an_if_statement* statement);
  const an_if_symbol* global(uint32_t id, uint64_t offset) const;
  const an_if_symbol* named_symbol(uint32_t level_of_symbol, uint32_t id, uint64_t offset) const;

  // Expects a tree, which belongs to the last statement of `list`, if any.
  void begin_tree(std::vector<an_if_statement>* list);
  void read_node(const an_if_record& record);
  void read_operand(a_field_cursor& cursor, an_if_node* node, an_if_form form);
  void read_field_reference(a_field_cursor& cursor, an_if_node* node);
  void count_node(an_if_node* node);
  // Ends the run of nodes of an expression: the tree must be whole.
  void end_tree();

  // The lists whose frame is open, and those still to come, of the type
  // section.
  an_if_type* list_owner = nullptr;
  uint8_t list_id = 0;
  std::unordered_map<uint32_t, uint32_t> expected_lists; // bits by list id, by type

  // The function being read, and the nesting level in it.
  an_if_function* function = nullptr;
  uint32_t level = 0;
  // Pragma records that still belong to the last symbol.
  std::vector<an_if_pragma>* pragmas_of_symbol = nullptr;
  unsigned pragmas_to_come = 0;

  // The tree being read: whose it is, its first node, and for each open
  // operator the index of its node and the operands that it lacks.
  struct an_open_node {
    size_t index;
    unsigned missing;
  };
  std::vector<an_open_node> open_nodes;
  bool in_expression = false;
  size_t tree_start = 0;
  std::vector<an_if_statement>* tree_list = nullptr;
};

#endif
