#include <climits>
#include <map>
#include <memory>

#include "if_file_fixture.h"

namespace {

class IfNodes : public IfFile {
protected:
  // The body of a node's record behind opcode and type.
  std::string operand(NODE& node) {
    size_t start = contents().size();
    file->if_write_expr_node(&node);
    RECORD record = records(start).at(0);
    EXPECT_EQ(record.tag, 'e');
    EXPECT_EQ(static_cast<unsigned char>(record.body.at(0)), node.opcode);
    EXPECT_EQ(static_cast<unsigned char>(record.body.at(1)), node.type ? node.type->uid : 0);
    return record.body.substr(2);
  }
  std::string integer(uint32_t opcode, TYPE* type, uint64_t value) {
    NODE node(opcode, type);
    node.value.integer = value;
    return operand(node);
  }
  std::string text(uint32_t opcode, const char* value, uint32_t length = 0) {
    NODE node(opcode, types.pointer_to_void);
    node.value.text = value;
    node.length = length;
    return operand(node);
  }

  TYPE* int_type = types.integers[TYPE::ikind_int];
  TYPE* unsigned_type = types.integers[TYPE::ikind_unsigned];
};

TEST(IfNodeTable, Rows) {
  if_node_table_init();
  if_node_table_init();
  std::map<unsigned, int> rows;
  int used = 0;
  for (unsigned opcode = 0; opcode < if_opcode_limit; opcode++) {
    if (if_node_info[opcode].name == nullptr)
      continue;
    EXPECT_EQ(if_node_info[opcode].opcode, opcode);
    rows[if_node_info[opcode].operands]++;
    used++;
  }
  EXPECT_EQ(used, 116);
  EXPECT_EQ(rows.size(), 3u); // no opcode has more than two operands
  EXPECT_STREQ(if_node_info[163].name, "VREG");
  EXPECT_STREQ(if_node_info[ifop_UMCALL].name, "UMCALL");
  EXPECT_EQ(if_node_info[ifop_QUEST].operands, 2u);
  EXPECT_EQ(if_node_info[28].name, nullptr);
  EXPECT_EXIT(ON_STDERR(if_enter_node(201, "BEYOND", 0)), testing::ExitedWithCode(1),
              "^\nINTERNAL ERROR: Invalid opcode, aborting\n$");
}

TEST_F(IfNodes, IntegerConstants) {
  EXPECT_EQ(integer(ifop_ICON, unsigned_type, 0xFFFFFFFF), bytes(0xFF, 0xFF, 0xFF, 0xFF, 0x0F));
  EXPECT_EQ(integer(ifop_ICON, int_type, 0xFFFFFFFF), bytes(0x7F));
  // The low 32 bits count.
  EXPECT_EQ(integer(ifop_ICON, int_type, 0x100000040), bytes(0xC0, 0x00));
  EXPECT_EQ(integer(ifop_ICON, nullptr, 200), bytes(0xC8, 0x01));

  auto lcon = [&](TYPE::IKIND ikind, uint64_t value) {
    std::string body = integer(ifop_LCON, types.integers[ikind], value);
    EXPECT_EQ(body.back(), '\0');
    return body.substr(0, body.size() - 1);
  };
  EXPECT_EQ(lcon(TYPE::ikind_long_long, static_cast<uint64_t>(INT64_MIN)), "-9223372036854775808");
  EXPECT_EQ(lcon(TYPE::ikind_unsigned_long_long, UINT64_MAX), "18446744073709551615");
  EXPECT_EQ(lcon(TYPE::ikind_int, 0), "0");
}

TEST_F(IfNodes, Texts) {
  EXPECT_EQ(text(ifop_SCON, "a\0b", 4), bytes(4, 'a', 0, 'b', 0));
  // A length of 0 stores up to the NUL.
  EXPECT_EQ(text(ifop_SCON, "", 0), bytes(0, 0));
  EXPECT_EQ(text(ifop_FCON, "1.0", 3), bytes('1', '.', '0', 0));
  for (uint32_t opcode : {ifop_ICALL, ifop_UICALL, ifop_MCALL, ifop_UMCALL})
    EXPECT_EQ(text(opcode, "f"), bytes('f', 0));
}

TEST_F(IfNodes, CountsAndCalls) {
  for (uint32_t opcode : {ifop_LABEL, ifop_SWITCH, ifop_SKIP})
    EXPECT_EQ(integer(opcode, types.void_type, 300), bytes(0xAC, 0x02));
  NODE call(ifop_CALL, int_type);
  call.value.integer = 2;
  call.eh_entry = 128;
  EXPECT_EQ(operand(call), bytes(2, 0x80, 0x01));
  call.opcode = ifop_UCALL;
  EXPECT_EQ(operand(call), bytes(0x80, 0x01));
  EXPECT_EQ(integer(ifop_VREG, int_type, 5), bytes(0));
  EXPECT_EQ(integer(ifop_DDNODE, int_type, 5), bytes(0, 0, 0));
  EXPECT_EQ(integer(ifop_EPVAL, int_type, 5), bytes(0xFF, 0xFF, 0xFF, 0xFF, 0x0F));
  EXPECT_EQ(integer(ifop_PLUS, int_type, 5), "");
  // No row of the table; not even an operand.
  EXPECT_EQ(integer(255, int_type, 5), "");
}

TEST_F(IfNodes, Names) {
  SYMTAB symbol;
  symbol.name = "lost";
  NODE node(ifop_NAME, int_type);
  node.value.symbol = &symbol;
  symbol.id = 130;
  symbol.level = 2;
  EXPECT_EQ(operand(node), bytes(2, 0x82, 0x01));

  symbol.id = -1;
  EXPECT_EXIT(ON_STDERR(file->if_write_expr_node(&node)), testing::ExitedWithCode(1),
              "^>> Symbol lost is not in the symbol table\n$");
}

TEST_F(IfNodes, Fields) {
  TYPE* csu = types.mk_struct("s", 64, 32, true, 0, false, false, false);
  csu->add_mdata(new fkMDATA("a", int_type, ack_public, 0, 0, false, nullptr));
  fkMDATA* second = csu->add_mdata(new fkMDATA("b", int_type, ack_public, 32, 0, false, nullptr));
  types.type_frozen(csu);
  FIELD_REF reference = {csu, second};
  NODE node(ifop_FIELD, int_type);
  node.value.field = &reference;
  EXPECT_EQ(operand(node), bytes(1, 2, csu->uid));
  EXPECT_TRUE(csu->referenced);
}

TEST_F(IfNodes, TreeInPrefixOrder) {
  // (a + b) - a
  SYMTAB a, b;
  file->if_enter_global(&a);
  file->if_enter_global(&b);
  std::unique_ptr<NODE> minus(new_node(ifop_MINUS, int_type));
  NODE plus(ifop_PLUS, int_type);
  NODE name_a(ifop_NAME, int_type), name_b(ifop_NAME, int_type), last(ifop_NAME, int_type);
  name_a.value.symbol = last.value.symbol = &a;
  name_b.value.symbol = &b;
  minus->child = &plus;
  plus.child = &name_a;
  name_a.next = &name_b;
  plus.next = &last;
  PSN psn = {"a.c", 3, 1};
  file->if_write_expr(minus.get(), &psn);
  unsigned id = int_type->uid;
  EXPECT_EQ(records(), (std::vector<RECORD>{{'.', bytes(1, 3, 1)},
                                            {'e', bytes(ifop_MINUS, id)},
                                            {'e', bytes(ifop_PLUS, id)},
                                            {'e', bytes(ifop_NAME, id, 0, 0)},
                                            {'e', bytes(ifop_NAME, id, 0, 1)},
                                            {'e', bytes(ifop_NAME, id, 0, 0)}}));
}

} // namespace
