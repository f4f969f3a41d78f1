#include "ifrun.h"

#include <gtest/gtest.h>

#include "if_sample.h"

namespace {

// A file whose functions are written node by node, in prefix order.
class a_sample_program : public SampleFile {
public:
  TYPE* integer = types.integers[TYPE::ikind_int];
  TYPE* character = types.mk_int(TYPE::ikind_unsigned_char, false);
  TYPE* text = types.mk_ptr(character);

  TYPE* function_type(TYPE* result, const std::vector<TYPE*>& params, bool ellipsis = false) {
    TYPE* made = types.mk_func(result, false, true, ellipsis, cck_default, 0, 0);
    for (TYPE* param : params)
      made->add_param(new fkPARAM(param, pk_parameter, ""));
    types.type_frozen(made);
    return made;
  }
  TYPE* array_type(TYPE* element, uint32_t count) {
    TYPE* made = types.mk_array(element, false, count, 8, true);
    types.type_frozen(made);
    return made;
  }
  void begin(SYMTAB* function) {
    writer->if_write_begin_func(function, nullptr);
  }
  void end_args() {
    writer->if_write_end_args(nullptr);
  }
  void end_locals() {
    writer->if_write_end_locals(nullptr);
  }
  void end() {
    writer->if_write_end_func(nullptr);
  }
  void expr() {
    writer->if_write_expr(nullptr, nullptr);
  }
  void icon(int value) {
    node(ifop_ICON, integer, static_cast<uint64_t>(value));
  }
  void returns(SYMTAB* function) {
    expr();
    node(ifop_RETURN, integer);
    name(function);
  }
  void jump(uint32_t label) {
    node(ifop_LABEL, types.void_type, label);
  }
  SYMTAB* main_function() {
    return global("main", function_type(integer, {}));
  }
};

struct a_result {
  int status;
  std::string out, err;
};

a_result run(SampleFile* sample, uint64_t max_steps = 100000) {
  an_if_file file;
  an_if_error error;
  EXPECT_TRUE(if_read_bytes(sample->bytes(), &file, &error)) << error.message;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  a_run_limits limits;
  limits.max_steps = max_steps;
  int status = run_program(file, {"sample"}, limits);
  return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

// The message without the place of the record.
std::string fault(const a_result& result) {
  return result.err.substr(0, result.err.find(", record expr at offset "));
}

// A main whose only statement `write` writes.
template <class Write> a_result run_statement(Write write) {
  a_sample_program sample;
  SYMTAB* function = sample.main_function();
  sample.begin(function);
  sample.end_args();
  sample.end_locals();
  sample.expr();
  write(sample);
  sample.end();
  return run(&sample);
}

} // namespace

// int fib(int n) { return n < 2 ? n : fib(n - 1) + fib(n - 2); }
TEST(Ifrun, CallsRecursively) {
  a_sample_program sample;
  SYMTAB* fib = sample.global("fib", sample.function_type(sample.integer, {sample.integer}));
  SYMTAB* main_symbol = sample.main_function();
  sample.begin(fib);
  SYMTAB* n = sample.local("n", sample.integer, ifsc_param);
  sample.end_args();
  sample.end_locals();
  sample.returns(fib);
  sample.node(ifop_QUEST, sample.integer);
  sample.node(ifop_LT, sample.integer);
  sample.name(n);
  sample.icon(2);
  sample.node(ifop_COLON, sample.integer);
  sample.name(n);
  sample.node(ifop_PLUS, sample.integer);
  for (int less : {1, 2}) {
    sample.node(ifop_CALL, sample.integer);
    sample.name(fib);
    sample.node(ifop_MINUS, sample.integer);
    sample.name(n);
    sample.icon(less);
  }
  sample.end();
  sample.begin(main_symbol);
  sample.end_args();
  sample.end_locals();
  sample.returns(main_symbol);
  sample.node(ifop_CALL, sample.integer);
  sample.name(fib);
  sample.icon(12);
  sample.end();
  EXPECT_EQ(run(&sample).status, 144);
}

// An array of structures with bit fields and an initialised union, walked by a
// pointer whose steps count bytes and whose indices count bits.
TEST(Ifrun, WalksInitializedData) {
  a_sample_program sample;
  TYPE* csu = sample.types.mk_struct("S", 64, 8, true, 0, false, false, false);
  TYPE* choice = sample.types.mk_union("U", 32, 8, true, 0, false, false, false);
  fkMDATA* word =
      choice->add_mdata(new fkMDATA("word", sample.integer, ack_public, 0, 0, false, nullptr));
  fkMDATA* byte =
      choice->add_mdata(new fkMDATA("byte", sample.character, ack_public, 0, 0, false, nullptr));
  sample.types.type_frozen(choice);
  csu->add_mdata(new fkMDATA("low", sample.integer, ack_public, 0, 3, true, nullptr));
  fkMDATA* high =
      csu->add_mdata(new fkMDATA("high", sample.integer, ack_public, 3, 7, true, nullptr));
  fkMDATA* u = csu->add_mdata(new fkMDATA("u", choice, ack_public, 32, 0, false, nullptr));
  sample.types.type_frozen(csu);
  TYPE* array = sample.array_type(csu, 3);
  TYPE* pointer = sample.types.mk_ptr(csu);
  SYMTAB* data = sample.global("data", array);
  SYMTAB* format = sample.global("format", sample.text);
  TYPE* printf_type = sample.function_type(sample.integer, {sample.text}, true);
  SYMTAB* print = sample.global("printf", printf_type, ifsc_extern);
  SYMTAB* main_symbol = sample.main_function();

  // int main() { S* p = data; p++; return printf(format, p->high, (p + 1)->u.word,
  //              (p - 1)->u.byte); }
  sample.begin(main_symbol);
  sample.end_args();
  SYMTAB* p = sample.local("p", pointer);
  sample.end_locals();
  sample.expr();
  sample.node(ifop_ASG, pointer);
  sample.name(p);
  sample.node(ifop_UAND, pointer);
  sample.name(data);
  sample.expr();
  sample.node(ifop_PLUSPLUS, pointer);
  sample.name(p);
  sample.icon(8);
  sample.returns(main_symbol);
  sample.node(ifop_CALL, sample.integer, 4);
  sample.name(print);
  for (int i = 0; i < 3; i++)
    sample.node(ifop_COMMA, sample.types.void_type);
  sample.name(format);
  sample.node(ifop_STREF, sample.integer);
  sample.name(p);
  sample.field(sample.integer, csu, high);
  auto member_at = [&](unsigned opcode, TYPE* type, fkMDATA* member) {
    sample.node(ifop_STDOT, type);
    sample.node(ifop_STREF, choice);
    sample.node(opcode, pointer);
    sample.name(p);
    sample.node(ifop_PMCONV, sample.integer);
    sample.icon(1);
    sample.icon(64);
    sample.field(choice, csu, u);
    sample.field(type, choice, member);
  };
  member_at(ifop_PLUS, sample.integer, word);
  member_at(ifop_MINUS, sample.character, byte);
  sample.end();

  sample.writer->if_write_init(data);
  sample.node(ifop_SKIP, sample.integer, 2);
  sample.field(sample.character, choice, byte);
  sample.node(ifop_LCON, sample.character, 250);
  sample.node(ifop_LCON, sample.integer, 1);
  sample.node(ifop_LCON, sample.integer, static_cast<uint64_t>(-5));
  sample.node(ifop_SKIP, sample.integer, 3);
  sample.field(sample.integer, choice, word);
  sample.node(ifop_LCON, sample.integer, 70000);
  sample.node(ifop_ENDINIT, sample.types.void_type);
  sample.writer->if_write_init(format);
  sample.text_node(ifop_SCON, sample.text, "[%3d|%+d|%-5u|%%]\n", 19);
  sample.node(ifop_ENDINIT, sample.types.void_type);
  a_result result = run(&sample);
  EXPECT_EQ(result.out, "[ -5|+70000|250  |%]\n");
  EXPECT_EQ(result.status, 21);
  EXPECT_EQ(result.err, "");
}

TEST(Ifrun, StopsAtFaults) {
  a_result null = run_statement([](a_sample_program& sample) {
    sample.node(ifop_UMULT, sample.integer);
    sample.node(ifop_PCONV, sample.types.mk_ptr(sample.integer));
    sample.icon(16);
  });
  EXPECT_EQ(fault(null), "ifrun: bad address 0x00000010 in function main");
  EXPECT_EQ(null.status, 125);

  a_result zero = run_statement([](a_sample_program& sample) {
    sample.node(ifop_MOD, sample.integer);
    sample.icon(1);
    sample.icon(0);
  });
  EXPECT_EQ(fault(zero), "ifrun: division by zero in function main");

  a_result node = run_statement([](a_sample_program& sample) {
    sample.node(ifop_RECIP, sample.integer);
    sample.icon(1);
  });
  EXPECT_EQ(fault(node), "ifrun: unsupported node RECIP in function main");
  EXPECT_EQ(node.status, 125);

  a_result wide = run_statement([](a_sample_program& sample) {
    sample.node(ifop_SCONV, sample.types.mk_fltpt(TYPE::fkind_long_double, 96, 8));
    sample.icon(1);
  });
  EXPECT_EQ(fault(wide),
            "ifrun: values of the type long double are not supported in function main");

  a_result indirect = run_statement([](a_sample_program& sample) {
    sample.node(ifop_UCALL, sample.integer);
    sample.icon(77);
  });
  EXPECT_EQ(fault(indirect), "ifrun: bad address 0x0000004d in function main");
}

TEST(Ifrun, EndsAtTheStepLimit) {
  a_sample_program endless;
  SYMTAB* function = endless.main_function();
  endless.begin(function);
  endless.end_args();
  endless.end_locals();
  endless.writer->if_write_label(0);
  endless.expr();
  endless.node(ifop_BRANCH, endless.types.void_type);
  endless.jump(0);
  endless.end();
  a_result result = run(&endless, 5000);
  EXPECT_EQ(fault(result), "ifrun: step limit reached in function main");
  EXPECT_EQ(result.status, 124);
}

TEST(Ifrun, EndsAtTheStackLimit) {
  a_sample_program deep;
  SYMTAB* function = deep.main_function();
  deep.begin(function);
  deep.end_args();
  deep.local("buffer", deep.array_type(deep.character, 4096));
  deep.end_locals();
  deep.returns(function);
  deep.node(ifop_UCALL, deep.integer);
  deep.name(function);
  deep.end();
  EXPECT_EQ(fault(run(&deep)), "ifrun: stack overflow in function main");
}

// A chain of 50,000 operators is compiled and run; one beyond the limit is
// refused.
TEST(Ifrun, NestsDeeply) {
  for (int depth : {50000, 200000}) {
    a_sample_program sample;
    SYMTAB* function = sample.main_function();
    sample.begin(function);
    sample.end_args();
    sample.end_locals();
    sample.returns(function);
    for (int i = 0; i < depth; i++)
      sample.node(ifop_PLUS, sample.integer);
    for (int i = 0; i <= depth; i++)
      sample.icon(1);
    sample.end();
    a_result result = run(&sample, 1000000);
    if (depth == 50000)
      EXPECT_EQ(result.status, 50001 % 256);
    else
      EXPECT_EQ(fault(result), "ifrun: an expression is nested too deeply in function main");
  }
}
