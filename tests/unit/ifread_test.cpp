#include "ifread.h"

#include <gtest/gtest.h>

#include <random>

#include "if_sample.h"

namespace {

PSN at(unsigned line, unsigned column) {
  return {"sample.c", line, column};
}

// A file with a bit of everything: options, pragmas, assembly, a function with
// parameters, blocks, labels, calls and a switch, and initialisers.
std::string sample_bytes() {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  I_FILE* out = sample.writer;
  TYPE* integer = types.integers[TYPE::ikind_int];
  TYPE* csu = types.mk_struct("S", 64, 32, true, 0, false, false, false);
  fkMDATA* first = csu->add_mdata(new fkMDATA("a", integer, ack_public, 0, 0, false, nullptr));
  PSN member_position = at(2, 7);
  csu->add_mdata(new fkMDATA("b", types.mk_ptr(csu), ack_public, 32, 5, true, &member_position));
  types.type_frozen(csu);
  TYPE* function_type = types.mk_func(integer, false, true, true, cck_default, 0, 0);
  function_type->add_param(new fkPARAM(types.mk_ptr(csu), pk_parameter, ""));
  types.type_frozen(function_type);
  TYPE* enumeration = types.mk_enum("E", integer, 32, 8, false);
  enumeration->add_etor(new fkETOR(-5, "minus", nullptr));
  types.type_frozen(enumeration);

  out->if_write_comment(";\tsample ");
  out->if_enter_option_set({0, {"--one", "two words"}});
  out->if_enter_option_set({7, {}});
  PRAGMA file_pragma(ifpk_OPT_OVERRIDE, {"a", ""});
  out->if_write_pragma(&file_pragma);
  PSN position = at(1, 1);
  out->if_write_assembly(" nop", &position);

  SYMTAB* function = sample.global("f", function_type);
  SYMTAB* data = sample.global("data", csu, ifsc_static);
  data->set_psn(position);
  data->add_pragma(ifpk_DATA_SECTION, {".fast"});
  data->add_pragma(ifpk_RETAIN);
  data->cpp_type = types.mk_typedef("S_t", false, csu, 64, 32, false);
  data->definition_state = 2;
  SYMTAB* color = sample.global("color", enumeration, ifsc_extern);
  color->value = -2;

  position = at(5, 9);
  out->if_write_begin_func(function, &position);
  SYMTAB* param = sample.local("p", types.mk_ptr(csu), ifsc_last_param);
  out->if_write_end_args(nullptr);
  SYMTAB* local = sample.symbol("i", integer, ifsc_temp);
  local->add_pragma(ifpk_UNUSED);
  out->if_enter_local(local);
  out->if_write_symbol(local);
  out->if_write_end_locals(nullptr);
  out->if_write_begin_block(&position);
  SYMTAB* inner = sample.local("i", integer);
  out->if_write_end_locals(&position);
  // i = p->a + -1
  out->if_write_expr(nullptr, &position);
  sample.node(ifop_ASG, integer);
  sample.name(inner);
  sample.node(ifop_PLUS, integer);
  sample.node(ifop_STREF, integer);
  sample.name(param);
  sample.field(integer, csu, first);
  sample.node(ifop_ICON, integer, static_cast<uint64_t>(-1));
  out->if_write_end_block(&position);
  out->if_write_label(3);
  out->if_write_expr(nullptr, nullptr);
  sample.node(ifop_CBRANCH, types.void_type);
  sample.name(local);
  sample.node(ifop_LABEL, types.void_type, 3);
  // return f(p, "x", 2)
  out->if_write_expr(nullptr, &position);
  sample.node(ifop_RETURN, integer);
  sample.name(function);
  sample.node(ifop_CALL, integer, 2);
  sample.name(function);
  sample.node(ifop_COMMA, types.void_type);
  sample.node(ifop_COMMA, types.void_type);
  sample.name(param);
  sample.text_node(ifop_SCON, types.mk_ptr(types.mk_int(TYPE::ikind_signed_char, false)), "x\0y",
                   4);
  sample.node(ifop_LCON, types.integers[TYPE::ikind_unsigned_long_long], UINT64_MAX);
  out->if_write_end_func(&position);

  out->if_write_init(data);
  sample.node(ifop_LCON, integer, static_cast<uint64_t>(-7));
  sample.node(ifop_UAND, types.mk_ptr(csu));
  sample.name(data);
  sample.node(ifop_SKIP, integer, 5);
  sample.text_node(ifop_FCON, types.floats[TYPE::fkind_float], "1.5");
  sample.node(ifop_ENDINIT, types.void_type);
  return sample.bytes();
}

// The message about a file that is damaged.
std::string complaint(std::string bytes) {
  an_if_file file;
  an_if_error error;
  if (if_read_bytes(std::move(bytes), &file, &error))
    return "";
  return error.message;
}

// The message about a file whose function body `write` writes.
template <class Write> std::string complaint_about_body(Write write) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* function_type = types.mk_func(types.void_type, false, true, false, cck_default, 0, 0);
  types.type_frozen(function_type);
  SYMTAB* function = sample.global("f", function_type);
  sample.writer->if_write_begin_func(function, nullptr);
  sample.writer->if_write_end_args(nullptr);
  sample.writer->if_write_end_locals(nullptr);
  write(sample, *sample.writer, types);
  sample.writer->if_write_end_func(nullptr);
  return complaint(sample.bytes());
}

} // namespace

TEST(IfRead, EmptyUnit) {
  SampleFile sample;
  std::string bytes = sample.bytes();
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(bytes, &file, &error)) << error.message;
  EXPECT_EQ(file.unit_name, "sample.c");
  EXPECT_EQ(file.version, -71);
  EXPECT_EQ(file.processor, 1100);
  EXPECT_TRUE(file.body.empty());
  EXPECT_TRUE(file.globals.empty());
  EXPECT_EQ(file.sections[ifs_types].offset, 0u);
}

TEST(IfRead, TablesComeBack) {
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample_bytes(), &file, &error)) << error.offset << error.message;
  ASSERT_EQ(file.option_sets.size(), 2u);
  EXPECT_EQ(file.option_sets[0].strings[1], "two words");
  EXPECT_EQ(file.option_sets[1].id, 7u);
  ASSERT_EQ(file.file_names.size(), 2u);
  EXPECT_EQ(file.file_names[1], "sample.c");

  ASSERT_EQ(file.globals.size(), 3u);
  const an_if_symbol* data = file.find_global("data");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->storage_class, ifsc_static);
  EXPECT_EQ(if_type_text(data->type), "struct S");
  EXPECT_EQ(if_type_text(data->source_type), "S_t");
  EXPECT_EQ(data->size, 64u);
  EXPECT_EQ(data->definition_state, 2);
  EXPECT_EQ(data->position.line, 1u);
  ASSERT_EQ(data->pragmas.size(), 2u); // newest first
  EXPECT_EQ(data->pragmas[0].kind, uint32_t{ifpk_RETAIN});
  EXPECT_EQ(data->pragmas[1].strings.at(0), ".fast");
  EXPECT_EQ(file.find_global("color")->value, -2);
  EXPECT_EQ(file.find_global("nothing"), nullptr);

  const an_if_type* csu = data->type;
  ASSERT_EQ(csu->members.size(), 2u);
  EXPECT_EQ(csu->members[1].name, "b");
  EXPECT_EQ(csu->members[1].type->target, csu);
  EXPECT_EQ(csu->members[1].bit_offset, 32);
  EXPECT_EQ(csu->members[1].bit_width, 5u);
  EXPECT_TRUE(csu->members[1].is_bitfield);
  EXPECT_EQ(csu->members[1].position.column, 7u);
  const an_if_type* enumeration = file.find_global("color")->type;
  EXPECT_EQ(enumeration->enumerators.at(0).value, -5);
  EXPECT_TRUE(enumeration->is_signed());
  const an_if_type* function_type = file.find_global("f")->type;
  EXPECT_TRUE(function_type->has_ellipsis);
  EXPECT_EQ(if_type_text(function_type), "int(struct S*, ...)");
}

TEST(IfRead, FunctionsComeBack) {
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample_bytes(), &file, &error)) << error.offset << error.message;
  ASSERT_EQ(file.body.size(), 4u);
  EXPECT_EQ(file.body[0].text, ";\tsample ");
  EXPECT_EQ(file.body[1].pragma.strings.size(), 2u);
  EXPECT_EQ(file.body[2].text, " nop");
  const an_if_function* function = file.body[3].function;
  ASSERT_NE(function, nullptr);
  EXPECT_EQ(file.find_global("f")->function, function);
  EXPECT_EQ(function->symbol->name, "f");
  EXPECT_EQ(function->begin.column, 9u);
  EXPECT_EQ(function->parameter_count, 1u);
  ASSERT_EQ(function->locals.size(), 3u);
  EXPECT_EQ(function->locals[0].level, 1u);
  EXPECT_EQ(function->locals[1].level, 2u);
  EXPECT_EQ(function->locals[1].pragmas.size(), 1u);
  EXPECT_EQ(function->locals[2].level, 3u);
  EXPECT_EQ(function->statements[function->labels.at(3)].tag, iftag_label);

  std::vector<const an_if_node*> trees;
  for (const an_if_statement& statement : function->statements) {
    if (statement.tag == iftag_expr)
      trees.push_back(statement.expr);
  }
  ASSERT_EQ(trees.size(), 3u);
  const an_if_node* assignment = trees[0];
  EXPECT_EQ(assignment->opcode, ifop_ASG);
  EXPECT_EQ(assignment->span, 7u);
  EXPECT_EQ(assignment->operand(0)->symbol, &function->locals[2]);
  const an_if_node* sum = assignment->operand(1);
  EXPECT_EQ(sum->operand(0)->operand(1)->member->name, "a");
  EXPECT_EQ(static_cast<int64_t>(sum->operand(1)->integer), -1);
  const an_if_node* call = trees[2]->operand(1);
  EXPECT_EQ(call->integer, 2u);
  EXPECT_EQ(call->operand(0)->symbol->name, "f");
  const an_if_node* last_two = call->operand(1)->operand(0);
  EXPECT_EQ(last_two->operand(1)->text, std::string_view("x\0y", 4));
  EXPECT_EQ(call->operand(1)->operand(1)->integer, UINT64_MAX);
}

TEST(IfRead, InitializersComeBack) {
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample_bytes(), &file, &error)) << error.offset << error.message;
  const an_if_initializer* initializer = file.find_global("data")->initializer;
  ASSERT_NE(initializer, nullptr);
  ASSERT_EQ(initializer->values.size(), 4u);
  EXPECT_EQ(static_cast<int64_t>(initializer->values[0]->integer), -7);
  EXPECT_EQ(initializer->values[1]->operand(0)->symbol->name, "data");
  EXPECT_EQ(initializer->values[2]->integer, 5u);
  EXPECT_EQ(initializer->values[3]->text, "1.5");
}

// The tables that the compiler itself doesn't fill: writer, shapes and reader
// agree on their fields.
TEST(IfRead, RareRecordsComeBack) {
  SampleFile sample;
  I_FILE* out = sample.writer;
  TYPE* integer = sample.types.integers[TYPE::ikind_int];
  SYMTAB* symbol = sample.global("s", integer);
  DD_ENTRY entries[] = {{1, 2}, {3, 4}};
  I_CATCH_ENTRY catches[] = {{"A", 300, true}, {"B", 0, false}};
  EHT_ENTRY table[2] = {{1, eht_catch, 0, 2, {}}, {2, eht_cleanup, 1, 0, {}}};
  table[0].u.catches = catches;
  NODE cleanup(ifop_NOP, sample.types.void_type);
  table[1].u.expr = &cleanup;
  out->if_write_loop(1, 2, 3, 4, 500, -6);
  out->if_write_inloop(1, nullptr, 9);
  out->if_write_inloop(1, symbol, 9);
  out->if_write_ldspec_induct(1, 2, -3, integer, symbol);
  out->if_write_ldspec_rand(1, 2, 3, integer, nullptr);
  out->if_write_ldspec_region(1, 200);
  out->if_write_mbank(1, 2, 3, 4, 5);
  out->if_write_dep_edge(1, 2, 3);
  out->if_write_dep_vector(1, 2, 2, entries);
  out->if_write_func_info(77);
  out->if_write_func_eht(table, 2);
  out->if_write_source("other.c");
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample.bytes(), &file, &error)) << error.offset << error.message;

  typedef std::pair<int, std::vector<int64_t>> Row;
  std::vector<Row> rows;
  for (const an_if_statement& statement : file.body) {
    std::vector<int64_t> numbers;
    for (const an_if_field& field : statement.fields) {
      if (field.letter != 'z')
        numbers.push_back(static_cast<int64_t>(field.number));
    }
    rows.emplace_back(statement.tag, numbers);
  }
  int64_t type = integer->uid;
  EXPECT_EQ(rows, (std::vector<Row>{{iftag_loop, {1, 2, 3, 4, 500, -6}},
                                    {iftag_inloop, {1, -1, -1, 9}},
                                    {iftag_inloop, {1, 0, 0, 9}},
                                    {iftag_ldspec, {1, 0, 2, -3, type, 0, 0}},
                                    {iftag_ldspec, {1, 1, 2, 3, type, -1, 0}},
                                    {iftag_ldspec, {1, 2, 200}},
                                    {iftag_mbank, {1, 2, 3, 4, 5}},
                                    {iftag_dep_edge, {1, 2, 3}},
                                    {iftag_dep_vector, {1, 2, 2, 1, 2, 3, 4}},
                                    {iftag_func_info, {77}},
                                    {iftag_eht_hdr, {2}},
                                    {iftag_eht_entry, {1, 2, 0, 2}},
                                    {iftag_eht_catch_entry, {300, 1, 0, 0}},
                                    {iftag_eht_entry, {2, 1, 1, 0}},
                                    {iftag_expr, {}},
                                    {iftag_file_name, {}}}));
  EXPECT_EQ(file.body[14].expr->opcode, ifop_NOP);
  EXPECT_EQ(file.body[15].text, "other.c");
  EXPECT_EQ(file.body[12].fields[0].text, "A");
}

// Every opcode, with operands as its row tells.
TEST(IfRead, AllOpcodesComeBack) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* integer = types.integers[TYPE::ikind_int];
  TYPE* csu = types.mk_struct("S", 32, 32, true, 0, false, false, false);
  fkMDATA* member = csu->add_mdata(new fkMDATA("a", integer, ack_public, 0, 0, false, nullptr));
  types.type_frozen(csu);
  SYMTAB* symbol = sample.global("s", integer);
  static const struct {
    uint32_t opcode;
    unsigned operands;
    an_if_form form;
  } rows[] = {
#define IF_NODE(opcode, name, operands, form) {opcode, operands, iff_##form},
#include "if_tags.def"
  };
  for (const auto& row : rows) {
    sample.writer->if_write_expr(nullptr, nullptr);
    switch (row.form) {
    case iff_name:
      sample.name(symbol);
      break;
    case iff_field:
      sample.field(integer, csu, member);
      break;
    case iff_scon:
      sample.text_node(row.opcode, integer, "", 0);
      break;
    case iff_fcon:
    case iff_icall:
      sample.text_node(row.opcode, integer, "text");
      break;
    default:
      sample.node(row.opcode, row.form == iff_none ? nullptr : integer, 5);
      break;
    }
    for (unsigned i = 0; i < row.operands && row.opcode != ifop_SKIP; i++)
      sample.node(ifop_NOP, nullptr);
  }
  std::string bytes = sample.bytes();
  // Labels stand in functions only, so the check of labels has no say here.
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(bytes, &file, &error)) << error.offset << error.message;
  ASSERT_EQ(file.body.size(), std::size(rows));
  for (size_t i = 0; i < std::size(rows); i++) {
    EXPECT_EQ(file.body[i].expr->opcode, rows[i].opcode);
    EXPECT_EQ(file.body[i].expr->span, 1 + (rows[i].opcode == ifop_SKIP ? 0 : rows[i].operands));
  }
}

TEST(IfRead, DeepTreesNeedNoDeepStack) {
  SampleFile sample;
  TYPE* integer = sample.types.integers[TYPE::ikind_int];
  sample.writer->if_write_expr(nullptr, nullptr);
  for (int i = 0; i < 300000; i++)
    sample.node(ifop_UMINUS, integer);
  sample.node(ifop_ICON, integer, 1);
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample.bytes(), &file, &error)) << error.message;
  EXPECT_EQ(file.body[0].expr->span, 300001u);
}

// -- Damaged files -------------------------------------------------------------

TEST(IfReadDamage, Truncation) {
  std::string bytes = sample_bytes();
  for (size_t length = 0; length < bytes.size(); length++) {
    an_if_file file;
    an_if_error error;
    ASSERT_FALSE(if_read_bytes(bytes.substr(0, length), &file, &error)) << length;
    EXPECT_LE(error.offset, length);
    EXPECT_FALSE(error.message.empty());
  }
  EXPECT_EQ(complaint(bytes + '\0'), "the file goes on behind its last section");
}

// Whatever the bytes, reading ends well or with a message, and what was read
// can be walked.
TEST(IfReadDamage, ChangedBytes) {
  std::string bytes = sample_bytes();
  std::mt19937 random(20110401);
  auto try_bytes = [](const std::string& changed) {
    an_if_file file;
    an_if_error error;
    if (!if_read_bytes(changed, &file, &error)) {
      EXPECT_LE(error.offset, changed.size());
      for (const an_if_section& section : file.sections) {
        std::vector<an_if_field> fields;
        for (const an_if_record& record : section.records)
          if_decode_record(record, &fields, &error);
      }
      return;
    }
    for (const an_if_type& type : file.types)
      if_type_text(&type);
    for (const an_if_node& node : file.nodes) {
      for (unsigned i = 0; i < node.operand_count; i++)
        EXPECT_LE(node.operand(i) + node.operand(i)->span, &node + node.span);
    }
  };
  for (size_t offset = 0; offset < bytes.size(); offset++) {
    for (uint8_t value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      std::string changed = bytes;
      changed[offset] = static_cast<char>(value);
      try_bytes(changed);
    }
  }
  for (int round = 0; round < 5000; round++) {
    std::string changed = bytes;
    for (unsigned flips = 1 + random() % 4; flips != 0; flips--)
      changed[random() % changed.size()] ^= static_cast<char>(1u << random() % 8);
    try_bytes(changed);
  }
}

TEST(IfReadDamage, HeaderIsChecked) {
  std::string bytes = sample_bytes();
  EXPECT_EQ(complaint("# not this"), "not an intermediate file");
  std::string changed = bytes;
  changed[3] = 'I';
  EXPECT_EQ(complaint(changed), "not an intermediate file");
  changed = bytes;
  changed[12] = '\xBA';
  EXPECT_EQ(complaint(changed), "the file has version -70, not -71");
  changed = bytes;
  changed[16]++; // the options' offset
  EXPECT_NE(complaint(changed).find("section options begins at"), std::string::npos);
}

TEST(IfReadDamage, BodiesThatMakeNoSense) {
  auto expression = [](I_FILE& out) { out.if_write_expr(nullptr, nullptr); };
  EXPECT_EQ(complaint_about_body([](SampleFile&, I_FILE&, TYPE_PKG&) {}), "");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              expression(out);
              sample.node(ifop_PLUS, types.void_type);
              sample.node(ifop_NOP, types.void_type);
            }),
            "the operator lacks operands");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              expression(out);
              sample.node(ifop_NOP, types.void_type);
              sample.node(ifop_NOP, types.void_type);
            }),
            "a second tree in an expression");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE&, TYPE_PKG& types) {
              sample.node(ifop_NOP, types.void_type);
            }),
            "an expression node outside of expressions");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              expression(out);
              sample.node(255, types.void_type);
            }),
            "unknown opcode 255");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              expression(out);
              sample.node(ifop_BRANCH, types.void_type);
              sample.node(ifop_LABEL, types.void_type, 4);
            }),
            "label 4 is not defined");
  EXPECT_EQ(complaint_about_body([&](SampleFile&, I_FILE& out, TYPE_PKG&) {
              out.if_write_label(1);
              out.if_write_label(1);
            }),
            "label 1 is defined twice");
  EXPECT_EQ(complaint_about_body(
                [&](SampleFile&, I_FILE& out, TYPE_PKG&) { out.if_write_begin_block(nullptr); }),
            "the function ends within a block");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              SYMTAB* local = sample.local("i", types.integers[TYPE::ikind_int]);
              local->level = 3;
              expression(out);
              sample.name(local);
            }),
            "local symbol 0 has level 2, not 3");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE& out, TYPE_PKG& types) {
              SYMTAB* local = sample.symbol("i", types.integers[TYPE::ikind_int], ifsc_auto);
              local->prag_num = 1; // and yet no pragma
              out.if_enter_local(local);
              out.if_write_symbol(local);
            }),
            "a pragma of the symbol before is missing");
  EXPECT_EQ(complaint_about_body([&](SampleFile& sample, I_FILE&, TYPE_PKG& types) {
              // A type that was never registered has no id.
              TYPE* loose = types.mk_array(types.void_type, false, 0, 8, false);
              sample.global("g", types.mk_ptr(loose));
              sample.types.type_frozen(loose);
              loose->uid = 0;
            }),
            "a type without a number");
}
