// The reader of the intermediate file. It takes a file whole into memory,
// checks it from end to end and offers its contents as plain records: sections,
// options, files, types, symbols, functions with their statements, expression
// trees and initialisers. Records refer to one another by pointers, which live
// as long as the an_if_file. Texts are views of the file's bytes.
//
// Everything that a record refers to is resolved and checked: in a file that
// was read, every type, symbol, member and label that is mentioned exists, and
// every operator has its operands. Sizes, alignments and bit offsets are in
// bits.

#ifndef IFREAD_H
#define IFREAD_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "if_tags.h"

struct an_if_function;
struct an_if_initializer;
struct an_if_type;

// What is wrong with a file, and where: a byte offset from its start.
struct an_if_error {
  uint64_t offset = 0;
  std::string message;
};

// A source position; file 0 is no position.
struct an_if_position {
  uint32_t file = 0;
  uint32_t line = 0;
  uint32_t column = 0;

  bool known() const {
    return file != 0;
  }
};

// A record as it stands in the file.
struct an_if_record {
  uint8_t tag;
  uint64_t offset; // of the tag
  uint64_t body_offset;
  std::string_view body;
};

// A field of a record that is read by its shape alone (see if_tags.def).
struct an_if_field {
  char letter;
  uint64_t number = 0; // sign-extended for signed fields; a type's or file's id
  std::string_view text;
  an_if_position position;
};

struct an_if_pragma {
  uint32_t kind = 0; // an_if_pragma_kind
  std::vector<std::string_view> strings;
};

struct an_if_option_set {
  uint32_t id;
  std::vector<std::string_view> strings;
};

// -- Types ---------------------------------------------------------------------

enum an_if_type_kind : uint8_t {
  iftk_void,
  iftk_integral,
  iftk_floating,
  iftk_fixed_point,
  iftk_complex,
  iftk_pointer,
  iftk_reference,
  iftk_qualified,
  iftk_typedef,
  iftk_array,
  iftk_ptr_to_member,
  iftk_function,
  iftk_enum,
  iftk_class,
  iftk_struct,
  iftk_union
};

enum an_if_access : uint8_t { ifa_public, ifa_protected, ifa_private };

// A parameter of a function, or an argument of the template that a class is
// an instance of: kind 0 a parameter, 1 a type, 2 a value, 3 a template.
struct an_if_param {
  const an_if_type* type;
  uint32_t kind;
  std::string_view text;
};

struct an_if_enumerator {
  std::string_view name;
  int64_t value;
  an_if_position position;
};

struct an_if_member {
  uint32_t number; // from 1; what a FIELD node says
  std::string_view name;
  const an_if_type* type;
  uint8_t access;
  int64_t bit_offset; // in the object
  uint8_t extra;
  uint32_t bit_width; // of a bit field
  bool is_bitfield;
  bool flags[2];
  an_if_position position;
};

struct an_if_base_class {
  const an_if_type* type;
  int64_t offset;
  uint8_t access;
  bool is_virtual;
};

struct an_if_access_declaration {
  uint32_t number;
  uint8_t kind;
};

struct an_if_friend_function {
  std::string_view name;
  const an_if_type* type;
};

struct an_if_static_member {
  std::string_view name;
  const an_if_type* type;
  uint8_t access;
};

struct an_if_member_function {
  std::string_view name;
  const an_if_type* type;
  uint8_t access;
  int64_t virtual_index;
  bool flags[4];
};

// A type. Fields that a kind doesn't have are 0, null or empty.
struct an_if_type {
  uint32_t id = 0;
  an_if_type_kind kind = iftk_void;
  uint8_t code = 0; // an_if_type_code: tells the integers and floats apart
  uint64_t size = 0;
  uint32_t align = 0;
  uint64_t offset = 0; // of the record in the file

  // The type that this one is made of: pointee, referenced type, qualified or
  // aliased type, element, return type, underlying type, part.
  const an_if_type* target = nullptr;
  const an_if_type* member_class = nullptr; // of a pointer to member
  std::string_view name;                    // of a typedef, enum, class, struct, union
  uint32_t count = 0;                       // elements of an array
  uint8_t qualifiers = 0;                   // of a qualified type: 1 const, 2 volatile, ...
  uint8_t fixed_point_kind = 0;
  uint8_t cc_kind = 0; // how a function is called
  uint32_t csu_integer = 0;
  bool explicit_sign = false; // a char type without it is plain char
  bool is_bool = false;
  bool boolean_int = false; // an integer that stands for a bool
  bool fixed_point_flag = false;
  bool has_ellipsis = false;
  bool prototyped = false;
  bool is_cpp = false;
  bool is_complete = false;
  bool is_lowered = false;
  bool is_vector = false; // of an array, or a structure that wraps one
  an_if_position position;

  std::vector<an_if_param> params;
  std::vector<an_if_enumerator> enumerators;
  std::vector<an_if_base_class> base_classes;
  std::vector<an_if_access_declaration> access_declarations;
  std::vector<an_if_friend_function> friend_functions;
  std::vector<const an_if_type*> friend_classes;
  std::vector<const an_if_type*> nested_types;
  std::deque<an_if_member> members; // a FIELD node points at one
  std::vector<an_if_static_member> static_members;
  std::vector<an_if_member_function> member_functions;

  bool is_csu() const {
    return kind >= iftk_class;
  }
  // The type below typedefs and qualifiers.
  const an_if_type* stripped() const;
  // Whether values are signed: as the type package says, true for the signed
  // integers and all floats; looks through typedefs, qualifiers, enums and
  // arrays.
  bool is_signed() const;
};

// -- Symbols -------------------------------------------------------------------

struct an_if_symbol {
  // The pair that finds the symbol: level 0 and the index in the globals, or
  // the nesting level and the index in the locals of the function.
  uint32_t level = 0;
  uint32_t id = 0;
  std::string_view name;
  uint64_t size = 0;
  int64_t value = 0;         // a label's id
  uint8_t storage_class = 0; // an_if_symbol_class
  uint16_t qualifier_bits = 0;
  const an_if_type* type = nullptr;        // may be null
  const an_if_type* source_type = nullptr; // may be null
  uint64_t align = 0;
  uint64_t location = 0; // offset of the function or initialiser in the file
  uint32_t option_set = 0;
  an_if_position position;
  uint8_t definition_state = 0;
  std::vector<an_if_pragma> pragmas;
  uint64_t offset = 0;

  // Of a global symbol, when it is defined here.
  const an_if_function* function = nullptr;
  const an_if_initializer* initializer = nullptr;
};

// -- Expressions ---------------------------------------------------------------

// A node of an expression tree. The nodes of a tree stand one behind the other
// in prefix order, so a node's first operand is the node behind it.
struct an_if_node {
  uint8_t opcode = 0; // an_if_opcode
  uint8_t operand_count = 0;
  uint32_t span = 1;                // nodes of the whole subtree
  const an_if_type* type = nullptr; // may be null
  // LABEL: the label; ICON, LCON: the value, sign-extended when the type is
  // signed; SWITCH, SKIP: the count; CALL: the number of variable arguments;
  // VREG, DDNODE, EPVAL: the number.
  uint64_t integer = 0;
  uint32_t eh_entry = 0;                  // CALL, UCALL
  std::string_view text;                  // SCON, FCON, LCON, and calls by name
  const an_if_symbol* symbol = nullptr;   // NAME
  const an_if_member* member = nullptr;   // FIELD
  const an_if_type* member_csu = nullptr; // FIELD
  uint64_t offset = 0;

  // Operand `number`, from 0; there must be as many.
  const an_if_node* operand(unsigned number) const {
    const an_if_node* node = this + 1;
    while (number-- != 0)
      node += node->span;
    return node;
  }
};

// -- Functions and initialisers ------------------------------------------------

// A record of the file's body: what a function does, or what stands outside
// of functions. The tag tells which members hold something.
struct an_if_statement {
  uint8_t tag = 0; // an_if_tag
  uint64_t offset = 0;
  an_if_position position;                  // begin_block, end_block, end_args, end_locals,
                                            // expr, assembly
  const an_if_node* expr = nullptr;         // expr: the root; null for an empty expression
  uint32_t label = 0;                       // label
  const an_if_symbol* symbol = nullptr;     // symbol: a local that is declared here
  const an_if_function* function = nullptr; // begin_func
  std::string_view text;                    // assembly, comment, file_name
  an_if_pragma pragma;                      // pragma
  std::vector<an_if_field> fields;          // the records of other tags
};

struct an_if_function {
  const an_if_symbol* symbol = nullptr;
  an_if_position begin, end;
  // Parameters, variables of all blocks and named labels, by id. The
  // parameters come first.
  std::deque<an_if_symbol> locals;
  size_t parameter_count = 0;
  // All records between begin_func and end_func, in order.
  std::vector<an_if_statement> statements;
  // The index in `statements` of each label.
  std::unordered_map<uint32_t, size_t> labels;
  uint64_t offset = 0;
};

struct an_if_initializer {
  const an_if_symbol* symbol = nullptr;
  // The values in order, without the ENDINIT node. SKIP nodes count the
  // scalars to leave zero, FIELD nodes choose the member of a union or the one
  // that the next value is for.
  std::vector<const an_if_node*> values;
  uint64_t offset = 0;
};

// -- The file ------------------------------------------------------------------

struct an_if_section {
  const char* name;
  uint64_t offset; // 0: absent
  std::vector<an_if_record> records;
};

enum an_if_section_number {
  ifs_body,
  ifs_initializers,
  ifs_options,
  ifs_types,
  ifs_files,
  ifs_globals,
  ifs_count
};

struct an_if_file {
  std::string bytes;
  an_if_section sections[ifs_count];

  std::string_view unit_name;
  int version = 0;
  int processor = 0;
  uint32_t flags = 0;
  std::vector<an_if_option_set> option_sets;
  std::vector<std::string_view> file_names; // by id; index 0 is unused
  std::deque<an_if_type> types;             // in order of definition
  std::unordered_map<uint32_t, an_if_type*> type_by_id;
  std::deque<an_if_symbol> globals; // by id
  std::vector<an_if_node> nodes;    // all expressions
  // The records outside of functions, in order; begin_func stands for the
  // whole function.
  std::vector<an_if_statement> body;
  std::deque<an_if_function> functions;
  std::deque<an_if_initializer> initializers;

  an_if_file() = default;
  an_if_file(const an_if_file&) = delete;
  an_if_file& operator=(const an_if_file&) = delete;

  // The type of an id, or null.
  const an_if_type* find_type(uint32_t id) const;
  // The first global symbol of a name, or null.
  const an_if_symbol* find_global(std::string_view name) const;
  // The name of a position's file; empty for no position.
  std::string_view file_name(const an_if_position& position) const;
};

// Takes the bytes of a file; reads a file, or the bytes of one, into an empty
// an_if_file. False when the file can't be read or is damaged; `error` then
// tells why.
bool if_load_bytes(const char* path, std::string* bytes, an_if_error* error);
bool if_read_file(const char* path, an_if_file* file, an_if_error* error);
bool if_read_bytes(std::string bytes, an_if_file* file, an_if_error* error);

// The first half of reading: splits a file into its sections and records and
// reads the header. For a look at files whose records don't make sense.
bool if_read_records(std::string bytes, an_if_file* file, an_if_error* error);

// The fields of a record by its shape; false when they don't fit the body. A
// field whose form depends on a type is given as an unsigned number.
bool if_decode_record(const an_if_record& record, std::vector<an_if_field>* fields,
                      an_if_error* error);

// Names of numbers; null for a number that has none.
const char* if_tag_name(unsigned tag);
const char* if_opcode_name(unsigned opcode);
const char* if_type_code_name(unsigned code);
const char* if_symbol_class_name(unsigned storage_class);
const char* if_pragma_name(unsigned kind);

// A short text of a type, read from left to right: "int*", "char[4]",
// "struct S", "int(int, ...)*". "-" for null; deep types are cut short.
std::string if_type_text(const an_if_type* type);

#endif
