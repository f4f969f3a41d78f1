// Expression nodes of the intermediate file, and the table of their opcodes.
// A node's record comes before the records of its operands; the tree's shape
// follows from the opcodes' fixed numbers of operands.

#ifndef IF_NODES_H
#define IF_NODES_H

#include <cstdint>

#include "if_tags.h"

class TYPE;
class I_SYMTAB;
struct fkMDATA;

// A reference to a data member: what the value of a FIELD node points at.
struct FIELD_REF {
  TYPE* csu;      // the class
  fkMDATA* mdata; // its member
};

// An expression node as the writer of the file sees it. The queries answer for
// the opcodes they name only.
class BASE_NODE {
public:
  uint32_t opcode; // an_if_opcode
  TYPE* type;
  BASE_NODE* child = nullptr; // first operand
  BASE_NODE* next = nullptr;  // next sibling

  BASE_NODE(uint32_t node_opcode, TYPE* node_type) : opcode(node_opcode), type(node_type) {}

  virtual I_SYMTAB* name_symbol() const = 0;
  virtual int field_kind() const = 0;
  virtual fkMDATA* field_mval() const = 0;
  virtual TYPE* field_csu() const = 0;
  virtual uint32_t icon_uvalue() const = 0;
  virtual int32_t icon_svalue() const = 0;
  virtual const char* lcon_value() const = 0; // decimal text, valid until the next call
  virtual const char* fcon_value() const = 0;
  virtual const char* scon_value() const = 0;
  virtual uint32_t scon_length() const = 0;
  virtual uint32_t label_id() const = 0;
  virtual int32_t vreg_id() const = 0;
  virtual uint32_t skip_count() const = 0;
  virtual uint32_t case_count() const = 0;
  virtual uint32_t ddnode_id() const = 0;
  virtual uint32_t ddnode_locale() const = 0;
  virtual int ddnode_flags() const = 0;
  virtual uint32_t call_num_vargs() const = 0;
  virtual const char* icall_name() const = 0;
  virtual uint32_t eh_entry_id() const = 0;
  virtual uint32_t get_edge_profile_value() const = 0;
  virtual void set_edge_profile_value(uint32_t profile) = 0;
  virtual void mk_name(I_SYMTAB* symbol) = 0;
  virtual void mk_field(int kind, fkMDATA* mdata, TYPE* csu) = 0;
  virtual void mk_icon(int64_t constant) = 0;
  virtual void mk_lcon(const char* text) = 0;
  virtual void mk_fcon(const char* text) = 0;
  virtual void mk_scon(const char* text, uint32_t text_length) = 0;
  virtual void mk_label(uint32_t id) = 0;
  virtual void mk_vreg(int32_t id) = 0;
  virtual void mk_skip(uint32_t count) = 0;
  virtual void mk_switch(uint32_t cases) = 0;
  virtual void mk_ddnode(uint32_t id, uint32_t locale, int flags) = 0;
  virtual void mk_call(uint32_t num_vargs, uint32_t eh_id) = 0;
  virtual void mk_ucall(uint32_t eh_id) = 0;
  virtual void mk_icall(const char* name) = 0;
  virtual ~BASE_NODE() = default;
};

// The generator's node. It is filled through its members, so the mk_
// operations, which serve readers that build nodes through the interface, do
// nothing; the queries of virtual registers, dependence nodes and profiles
// have constant answers.
class NODE final : public BASE_NODE {
public:
  union {
    I_SYMTAB* symbol;       // NAME
    const FIELD_REF* field; // FIELD
    uint64_t integer;       // ICON, LCON, and all labels and counts
    const char* text;       // FCON, SCON, and the calls by name
  } value;
  uint32_t length = 0; // of an SCON's text, in bytes
  uint32_t eh_entry = 0;

  NODE(uint32_t node_opcode, TYPE* node_type) : BASE_NODE(node_opcode, node_type) {
    value.integer = 0;
  }

  I_SYMTAB* name_symbol() const override;
  int field_kind() const override;
  fkMDATA* field_mval() const override;
  TYPE* field_csu() const override;
  uint32_t icon_uvalue() const override;
  int32_t icon_svalue() const override;
  const char* lcon_value() const override;
  const char* fcon_value() const override;
  const char* scon_value() const override;
  uint32_t scon_length() const override;
  uint32_t label_id() const override;
  int32_t vreg_id() const override;
  uint32_t skip_count() const override;
  uint32_t case_count() const override;
  uint32_t ddnode_id() const override;
  uint32_t ddnode_locale() const override;
  int ddnode_flags() const override;
  uint32_t call_num_vargs() const override;
  const char* icall_name() const override;
  uint32_t eh_entry_id() const override;
  uint32_t get_edge_profile_value() const override;
  void set_edge_profile_value(uint32_t profile) override;
  void mk_name(I_SYMTAB* symbol) override;
  void mk_field(int kind, fkMDATA* mdata, TYPE* csu) override;
  void mk_icon(int64_t constant) override;
  void mk_lcon(const char* text) override;
  void mk_fcon(const char* text) override;
  void mk_scon(const char* text, uint32_t text_length) override;
  void mk_label(uint32_t id) override;
  void mk_vreg(int32_t id) override;
  void mk_skip(uint32_t count) override;
  void mk_switch(uint32_t cases) override;
  void mk_ddnode(uint32_t id, uint32_t locale, int flags) override;
  void mk_call(uint32_t num_vargs, uint32_t eh_id) override;
  void mk_ucall(uint32_t eh_id) override;
  void mk_icall(const char* name) override;
};

// A node without operands and value, owned by the caller.
NODE* new_node(uint32_t opcode, TYPE* type);

// One row of the opcode table. Rows of numbers that are no opcodes have a null
// name.
struct IF_NODE_INFO {
  uint32_t opcode;
  const char* name;
  unsigned operands;
};
extern IF_NODE_INFO if_node_info[if_opcode_limit];

// Fills the table; only the first call does anything.
void if_node_table_init();
// Adds a row. An opcode beyond the table stops the tool.
void if_enter_node(uint32_t opcode, const char* name, unsigned operands);

#endif
