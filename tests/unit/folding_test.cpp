// Constant folding against arithmetic of the host: integers of every kind
// against 128-bit integers, floating values against the hardware.

#include "folding.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <random>

#include "const_ints.h"
#include "error.h"
#include "float_pt.h"
#include "front_end_fixture.h"

namespace {

typedef __int128 wide;

class Folding : public FrontEnd {
protected:
  void SetUp() override {
    FrontEnd::SetUp();
    const_ints_init();
    folding_init();
    float_pt_init();
  }

  a_constant integer(int kind, uint64_t word) {
    a_constant constant;
    clear_constant(&constant, con_integer);
    constant.type = integer_type(kind);
    constant.value.int_value = truncate_integer_value(word, kind);
    return constant;
  }

  // In code, where no constant is required.
  a_fold_context in_code() {
    return {false, true, &position, false, false};
  }

  a_source_position position = {};
  std::mt19937_64 random{20261124};
};

// ---- Integers ----

wide value_of(const a_constant& constant) {
  uint64_t word = constant.value.int_value;
  return int_constant_is_signed(&constant) ? static_cast<wide>(static_cast<int64_t>(word))
                                           : static_cast<wide>(word);
}

wide wrapped(wide value, int kind) {
  int bits = precision_of_int_kind(kind);
  unsigned __int128 modulus = static_cast<unsigned __int128>(1) << bits;
  unsigned __int128 low = static_cast<unsigned __int128>(value) & (modulus - 1);
  if (int_kind_is_signed(kind) && (low >> (bits - 1) & 1))
    return static_cast<wide>(low) - static_cast<wide>(modulus);
  return static_cast<wide>(low);
}

bool is_shift(an_expr_operator_kind op) {
  return op == eok_shift_left || op == eok_shift_right;
}

struct exact_result {
  wide value;
  bool exists;  // false: no value at all
  bool reports; // a message is due
};

exact_result exact(an_expr_operator_kind op, wide a, wide b, int kind) {
  int bits = precision_of_int_kind(kind);
  switch (op) {
  case eok_add:
    return {a + b, true, false};
  case eok_subtract:
    return {a - b, true, false};
  case eok_multiply:
    // Unsigned products need 128 bits without a sign; all wrap alike.
    return {
        static_cast<wide>(static_cast<unsigned __int128>(a) * static_cast<unsigned __int128>(b)),
        true, false};
  case eok_divide:
    return b == 0 ? exact_result{0, false, true} : exact_result{a / b, true, false};
  case eok_remainder:
    return b == 0 ? exact_result{0, false, true} : exact_result{a % b, true, false};
  case eok_bit_and:
    return {a & b, true, false};
  case eok_bit_or:
    return {a | b, true, false};
  case eok_bit_xor:
    return {a ^ b, true, false};
  case eok_gnu_min:
    return {a < b ? a : b, true, false};
  case eok_gnu_max:
    return {a > b ? a : b, true, false};
  case eok_shift_left:
    if (b < 0 || b >= bits)
      return {0, true, true};
    return {static_cast<wide>(static_cast<unsigned __int128>(a) << static_cast<int>(b)), true,
            false};
  case eok_shift_right:
    if (b < 0 || b >= bits)
      return {a < 0 ? -1 : 0, true, true};
    return {a >> static_cast<int>(b), true, false};
  case eok_eq:
    return {a == b, true, false};
  case eok_ne:
    return {a != b, true, false};
  case eok_gt:
    return {a > b, true, false};
  case eok_lt:
    return {a < b, true, false};
  case eok_ge:
    return {a >= b, true, false};
  case eok_le:
    return {a <= b, true, false};
  case eok_land:
    return {a && b, true, false};
  default:
    return {a || b, true, false};
  }
}

const an_expr_operator_kind integer_operators[] = {
    eok_add,     eok_subtract, eok_multiply, eok_divide, eok_remainder,  eok_bit_and,    eok_bit_or,
    eok_bit_xor, eok_gnu_min,  eok_gnu_max,  eok_eq,     eok_ne,         eok_gt,         eok_lt,
    eok_ge,      eok_le,       eok_land,     eok_lor,    eok_shift_left, eok_shift_right};

bool gives_truth(an_expr_operator_kind op) {
  return (op >= eok_eq && op <= eok_le) || op == eok_land || op == eok_lor;
}

// The borders of the kind and its neighbourhood are as likely as all else.
uint64_t random_word(std::mt19937_64& random, int kind) {
  uint64_t borders[] = {0, min_integer_value_of_kind[kind], max_integer_value_of_kind[kind]};
  uint64_t near = borders[random() % 3] + random() % 5 - 2;
  return random() % 2 ? near : random() >> random() % 64;
}

TEST_F(Folding, IntegerOperatorsAgreeWithExactArithmetic) {
  for (int round = 0; round < 4000; ++round)
    for (int kind = 0; kind < num_integer_kinds; ++kind) {
      a_constant left = integer(kind, random_word(random, kind));
      a_constant right = integer(kind, random_word(random, kind));
      for (an_expr_operator_kind op : integer_operators) {
        a_constant count = is_shift(op) ? integer(ik_int, random() % 80 - 8) : right;
        a_constant result;
        a_fold_context context = in_code();
        auto before = total_warnings;
        clear_constant(&result, con_error);
        int result_kind = gives_truth(op) ? static_cast<int>(ik_int) : kind;
        binary_operation(op, &left, &count, integer_type(result_kind), &result, &context);
        exact_result expected = exact(op, value_of(left), value_of(count), kind);
        ASSERT_EQ(context.not_folded, !expected.exists)
            << op << " " << kind << " " << left.value.int_value;
        if (!expected.exists)
          continue;
        wide value = wrapped(expected.value, result_kind);
        ASSERT_TRUE(value_of(result) == value)
            << op << " " << kind << " " << left.value.int_value << " " << count.value.int_value;
        bool overflows = int_kind_is_signed(kind) && !is_shift(op) && value != expected.value;
        ASSERT_EQ(total_warnings != before, expected.reports || overflows)
            << op << " " << kind << " " << left.value.int_value << " " << count.value.int_value;
      }
    }
}

TEST_F(Folding, UnaryOperatorsAndConversionsAgreeWithExactArithmetic) {
  for (int round = 0; round < 4000; ++round)
    for (int kind = 0; kind < num_integer_kinds; ++kind) {
      a_constant operand = integer(kind, random_word(random, kind)), result;
      wide value = value_of(operand);
      a_fold_context context = in_code();
      clear_constant(&result, con_error);
      unary_operation(eok_negate, &operand, operand.type, &result, &context);
      ASSERT_TRUE(value_of(result) == wrapped(-value, kind)) << operand.value.int_value;
      unary_operation(eok_complement, &operand, operand.type, &result, &context);
      ASSERT_TRUE(value_of(result) == wrapped(~value, kind)) << operand.value.int_value;
      unary_operation(eok_not, &operand, integer_type(ik_int), &result, &context);
      ASSERT_TRUE(value_of(result) == (value == 0));
      for (int target = 0; target < num_integer_kinds; ++target) {
        result = operand;
        ASSERT_TRUE(type_change_constant(&result, integer_type(target)));
        ASSERT_TRUE(value_of(result) == wrapped(value, target)) << kind << " to " << target;
      }
    }
}

// ---- Floating values ----

// What the hardware does with one type; the simulation has no other say in it.
template <class REAL, class BITS> struct hardware {
  static a_float_value simulated(REAL value) {
    char text[64];
    a_float_value result;
    bool failed;
    if (std::isnan(value)) {
      make_fp_nan(&result);
    } else if (std::isinf(value)) {
      make_fp_infinity(value < 0, &result);
    } else {
      snprintf(text, sizeof text, "%a", static_cast<double>(value));
      fp_string_to_float(kind(), text, &result, &failed);
    }
    return result;
  }
  static constexpr int kind() {
    return sizeof(REAL) == 4 ? fk_float : fk_double;
  }
  // The value's bits are uniform, or those of a short number, so that exact
  // results, ties and the borders all occur.
  static REAL random_value(std::mt19937_64& random) {
    switch (random() % 4) {
    case 0:
      return std::bit_cast<REAL>(static_cast<BITS>(random()));
    case 1:
      return static_cast<REAL>(static_cast<int64_t>(random()) >> random() % 60);
    case 2: { // a denormal, or the smallest normal values
      BITS low = static_cast<BITS>(random()) >> (1 + random() % (sizeof(BITS) * 8 - 2));
      return std::bit_cast<REAL>(low);
    }
    default:
      return static_cast<REAL>(std::ldexp(1.0 + static_cast<double>(random() % 16) / 16,
                                          static_cast<int>(random() % 40) - 20));
    }
  }
};

template <class REAL> bool same_value(REAL expected, const a_float_value& value) {
  if (std::isnan(expected))
    return fp_is_nan(&value);
  double folded = fetch_host_fp_value(&value);
  return std::bit_cast<uint64_t>(static_cast<double>(expected)) == std::bit_cast<uint64_t>(folded);
}

a_constant floating(int kind, const a_float_value& value) {
  a_constant constant;
  clear_constant(&constant, con_float);
  constant.type = float_type(kind);
  constant.value.float_value = value;
  return constant;
}

template <class REAL> REAL computed(an_expr_operator_kind op, REAL a, REAL b) {
  switch (op) {
  case eok_add:
    return a + b;
  case eok_subtract:
    return a - b;
  case eok_multiply:
    return a * b;
  default:
    return a / b;
  }
}

template <class REAL, class BITS> void compare_arithmetic(std::mt19937_64& random) {
  typedef hardware<REAL, BITS> machine;
  const an_expr_operator_kind operators[] = {eok_add, eok_subtract, eok_multiply, eok_divide};
  a_source_position position = {};
  for (int round = 0; round < 60000; ++round) {
    volatile REAL x = machine::random_value(random), y = machine::random_value(random);
    a_constant left = floating(machine::kind(), machine::simulated(x));
    a_constant right = floating(machine::kind(), machine::simulated(y));
    ASSERT_TRUE(same_value<REAL>(x, left.value.float_value)) << x;
    for (an_expr_operator_kind op : operators) {
      REAL expected = computed<REAL>(op, x, y);
      a_constant result;
      a_fold_context context = {false, true, &position, false, false};
      clear_constant(&result, con_error);
      binary_operation(op, &left, &right, left.type, &result, &context);
      ASSERT_TRUE(same_value(expected, result.value.float_value)) << op << " " << x << " " << y;
      bool operands_are_finite = std::isfinite(x) && std::isfinite(y);
      bool by_zero = op == eok_divide && y == 0;
      if (operands_are_finite && !by_zero && !std::isfinite(expected)) {
        ASSERT_TRUE(context.not_folded) << op << " " << x << " " << y;
      } else if (operands_are_finite && std::isnormal(expected)) {
        ASSERT_FALSE(context.not_folded) << op << " " << x << " " << y;
      }
    }
    const bool order[] = {x == y, x != y, x > y, x < y, x >= y, x <= y};
    for (int i = 0; i < 6; ++i) {
      a_constant result;
      a_fold_context context = {false, true, &position, false, false};
      binary_operation(static_cast<an_expr_operator_kind>(eok_eq + i), &left, &right,
                       integer_type(ik_int), &result, &context);
      ASSERT_EQ(result.value.int_value, uint64_t{order[i]}) << i << " " << x << " " << y;
    }
  }
}

TEST_F(Folding, FloatArithmeticAgreesWithTheHardware) {
  compare_arithmetic<float, uint32_t>(random);
}

TEST_F(Folding, DoubleArithmeticAgreesWithTheHardware) {
  compare_arithmetic<double, uint64_t>(random);
}

// Integers and doubles round once to float, not by way of a double.
TEST_F(Folding, ConversionsAgreeWithTheHardware) {
  for (int round = 0; round < 60000; ++round) {
    volatile uint64_t word = random() >> random() % 64;
    a_constant signed_value = integer(ik_long_long, word);
    a_constant unsigned_value = integer(ik_unsigned_long_long, word);
    for (int kind : {fk_float, fk_double}) {
      a_constant from_signed = signed_value, from_unsigned = unsigned_value;
      ASSERT_TRUE(type_change_constant(&from_signed, float_type(kind)));
      ASSERT_TRUE(type_change_constant(&from_unsigned, float_type(kind)));
      volatile int64_t as_signed = static_cast<int64_t>(word);
      if (kind == fk_float) {
        ASSERT_TRUE(same_value(static_cast<float>(as_signed), from_signed.value.float_value));
        ASSERT_TRUE(same_value(static_cast<float>(word), from_unsigned.value.float_value)) << word;
      } else {
        ASSERT_TRUE(same_value(static_cast<double>(as_signed), from_signed.value.float_value));
        ASSERT_TRUE(same_value(static_cast<double>(word), from_unsigned.value.float_value));
      }
    }
    volatile double wide_value = hardware<double, uint64_t>::random_value(random);
    a_constant narrowed = floating(fk_double, hardware<double, uint64_t>::simulated(wide_value));
    ASSERT_TRUE(type_change_constant(&narrowed, float_type(fk_float)));
    ASSERT_TRUE(same_value(static_cast<float>(wide_value), narrowed.value.float_value))
        << wide_value;
  }
}

TEST_F(Folding, FloatsBecomeIntegersTruncatedWhereTheyFit) {
  for (int round = 0; round < 20000; ++round) {
    double value = hardware<double, uint64_t>::random_value(random);
    double truncated = std::trunc(value);
    for (int kind = 0; kind < num_integer_kinds; ++kind) {
      a_constant constant = floating(fk_double, hardware<double, uint64_t>::simulated(value));
      a_fold_context context = in_code();
      type_change_constant_full(&constant, integer_type(kind), true, &context);
      double least = static_cast<double>(static_cast<wide>(
          int_kind_is_signed(kind)
              ? static_cast<wide>(static_cast<int64_t>(min_integer_value_of_kind[kind]))
              : 0));
      double beyond = std::ldexp(1.0, precision_of_int_kind(kind) - int_kind_is_signed(kind));
      bool fits = truncated >= least && truncated < beyond;
      ASSERT_EQ(context.not_folded, !fits) << value << " " << kind;
      if (fits) {
        ASSERT_TRUE(value_of(constant) == static_cast<wide>(truncated)) << value << " " << kind;
      }
    }
  }
}

// ---- Complex values ----

TEST_F(Folding, PartsOfComplexValuesAreComputedInOrder) {
  auto value = [](double x) { return hardware<double, uint64_t>::simulated(x); };
  auto complex = [&](double real, double imaginary) {
    a_constant constant;
    clear_constant(&constant, con_complex);
    constant.type = complex_type(fk_double);
    *constant.value.complex_value = {value(real), value(imaginary)};
    return constant;
  };
  auto imaginary = [&](double x) {
    a_constant constant;
    clear_constant(&constant, con_imaginary);
    constant.type = imaginary_type(fk_double);
    constant.value.float_value = value(x);
    return constant;
  };
  a_constant z = complex(1, 2), w = complex(3, -4), i = imaginary(2),
             r = floating(fk_double, value(5));
  struct {
    an_expr_operator_kind op;
    const a_constant *left, *right;
    double real, imaginary;
  } const cases[] = {
      {eok_add, &z, &w, 4, -2},
      {eok_subtract, &z, &w, -2, 6},
      {eok_multiply, &z, &w, 11, 2},
      {eok_divide, &z, &w, -0.2, 0.4},
      {eok_real_plus_imag, &r, &i, 5, 2},
      {eok_imag_minus_real, &i, &r, -5, 2},
      {eok_add, &z, &r, 6, 2},
      {eok_subtract, &i, &z, -1, 0},
      {eok_multiply, &i, &i, -4, 0},
      {eok_divide, &r, &i, 0, -2.5},
  };
  for (const auto& c : cases) {
    a_constant result;
    a_fold_context context = in_code();
    binary_operation(c.op, c.left, c.right, complex_type(fk_double), &result, &context);
    ASSERT_FALSE(context.not_folded) << c.op;
    EXPECT_EQ(fetch_host_fp_value(&result.value.complex_value->real), c.real) << c.op;
    EXPECT_EQ(fetch_host_fp_value(&result.value.complex_value->imaginary), c.imaginary) << c.op;
  }
}

// ---- Builtin functions ----

class BuiltinFolding : public Folding {
protected:
  void SetUp() override {
    Folding::SetUp();
    gcc_mode = gnu_mode = 1;
    gnu_version = 40800;
  }

  an_expr_node* real(double value, int kind = fk_double) {
    a_constant constant = floating(kind, hardware<double, uint64_t>::simulated(value));
    return alloc_node_for_constant(&constant);
  }

  an_expr_node* number(int64_t value, int kind = ik_int) {
    a_constant constant = integer(kind, static_cast<uint64_t>(value));
    return alloc_node_for_constant(&constant);
  }

  an_expr_node* text(const char* bytes, uint64_t length) {
    a_constant* string = alloc_constant(con_string);
    string->type = string_literal_type(sck_ordinary, length);
    string->value.string.text = bytes;
    string->value.string.length = length;
    a_constant address;
    set_constant_address_constant(string, &address);
    address.type = make_pointer_type(integer_type(ik_char));
    return alloc_node_for_constant(&address);
  }

  an_expr_node* variable() {
    return var_rvalue_expr(enter_variable("v", sc_static, 0)->variant.variable);
  }

  // Whether the call of the function that returns `type` folds, to `result`.
  bool fold(const char* name, a_type* type, std::initializer_list<an_expr_node*> arguments) {
    a_routine* routine = enter_function(name);
    routine->type = make_routine_type(type);
    routine->special_data.builtin_code = 1;
    an_expr_node* args = nullptr;
    for (auto argument = std::rbegin(arguments); argument != std::rend(arguments); ++argument) {
      (*argument)->next = args;
      args = *argument;
    }
    an_expr_node* call = alloc_expr_node(expr_error);
    return fold_gnu_builtin_function_call_if_possible(routine, args, call, &result, &code);
  }

  bool gives(int64_t value, const char* name, std::initializer_list<an_expr_node*> arguments) {
    return fold(name, integer_type(ik_int), arguments) && result.kind == con_integer &&
           static_cast<int64_t>(result.value.int_value) == value;
  }

  bool gives_real(double value, const char* name, std::initializer_list<an_expr_node*> arguments) {
    return fold(name, float_type(fk_double), arguments) && result.kind == con_float &&
           same_value(value, result.value.float_value);
  }

  bool refuses(an_error_code expected, const char* name,
               std::initializer_list<an_expr_node*> arguments) {
    return !fold(name, integer_type(ik_int), arguments) && code == expected;
  }

  a_constant result;
  an_error_code code;
};

TEST_F(BuiltinFolding, BitsAreCountedInTheWidthOfTheArgument) {
  EXPECT_TRUE(gives(31, "__builtin_clz", {number(1)}));
  EXPECT_TRUE(gives(0, "__builtin_clz", {number(-1)}));
  EXPECT_TRUE(gives(32, "__builtin_clz", {number(0)}));
  EXPECT_TRUE(gives(63, "__builtin_clzll", {number(1, ik_long_long)}));
  EXPECT_TRUE(gives(3, "__builtin_ctz", {number(8)}));
  EXPECT_TRUE(gives(64, "__builtin_ctzll", {number(0, ik_long_long)}));
  EXPECT_TRUE(gives(0, "__builtin_ffs", {number(0)}));
  EXPECT_TRUE(gives(32, "__builtin_ffs", {number(INT32_MIN)}));
  EXPECT_TRUE(gives(32, "__builtin_popcount", {number(-1)}));
  EXPECT_TRUE(gives(64, "__builtin_popcountll", {number(-1, ik_long_long)}));
  EXPECT_TRUE(gives(1, "__builtin_parity", {number(7)}));
  EXPECT_TRUE(gives(5, "__builtin_abs", {number(-5)}));
  EXPECT_TRUE(refuses(0, "__builtin_abs", {number(INT32_MIN)}));
  EXPECT_TRUE(refuses(0, "__builtin_abs", {variable()}));
}

TEST_F(BuiltinFolding, FloatsAreClassified) {
  EXPECT_TRUE(gives(1, "__builtin_isnan", {real(NAN)}));
  EXPECT_TRUE(gives(0, "__builtin_isfinite", {real(NAN)}));
  EXPECT_TRUE(gives(1, "__builtin_isinf", {real(-INFINITY)}));
  EXPECT_TRUE(gives(0, "__builtin_isfinite", {real(INFINITY)}));
  EXPECT_TRUE(gives(0, "__builtin_isnormal", {real(1e-310)}));
  EXPECT_TRUE(gives(1, "__builtin_isnormal", {real(DBL_MIN)}));
  EXPECT_TRUE(gives(0, "__builtin_isnormal", {real(0)}));
  EXPECT_TRUE(gives(1, "__builtin_signbit", {real(-0.0)}));
  EXPECT_TRUE(refuses(0, "__builtin_signbit", {real(NAN)}));
  EXPECT_TRUE(refuses(ec_call_requires_one_argument, "__builtin_isnan", {real(1), real(2)}));
  EXPECT_TRUE(refuses(ec_call_requires_floating_point_argument, "__builtin_isinf", {number(1)}));
  EXPECT_TRUE(gives_real(0.0, "__builtin_fabs", {real(-0.0)}));
  EXPECT_TRUE(gives_real(INFINITY, "__builtin_inf", {}));
  EXPECT_TRUE(gives_real(NAN, "__builtin_nan", {text("", 1)}));
  EXPECT_TRUE(refuses(0, "__builtin_nan", {text("x", 2)}));
}

TEST_F(BuiltinFolding, PowersFoldUpToTheExponent255) {
  EXPECT_TRUE(gives_real(1024, "__builtin_pow", {real(2), real(10)}));
  EXPECT_TRUE(gives_real(std::ldexp(1, 255), "__builtin_pow", {real(2), real(255)}));
  EXPECT_TRUE(gives_real(1, "__builtin_pow", {real(3), real(0)}));
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(2), real(256)}));
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(2), real(300)}));
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(2), real(0.5)}));
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(2), real(-1)}));
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(1e300), real(2)}));
  gnu_version = 30300;
  EXPECT_TRUE(refuses(0, "__builtin_pow", {real(2), real(10)}));
}

TEST_F(BuiltinFolding, OtherArgumentsAreChecked) {
  EXPECT_TRUE(gives(2, "__builtin_strlen", {text("ab\0c", 5)}));
  EXPECT_TRUE(gives(1, "__atomic_always_lock_free", {number(8), number(0)}));
  EXPECT_TRUE(gives(0, "__atomic_always_lock_free", {number(16), number(0)}));
  EXPECT_TRUE(refuses(ec_first_arg_must_be_integer_constant, "__atomic_always_lock_free",
                      {variable(), number(0)}));
  EXPECT_TRUE(gives(1, "__atomic_is_lock_free", {number(4), variable()}));
  EXPECT_TRUE(refuses(0, "__atomic_is_lock_free", {number(8), variable()}));
  EXPECT_TRUE(refuses(0, "__atomic_is_lock_free", {number(3), number(0)}));
  EXPECT_TRUE(refuses(ec_call_requires_string_literal, "__builtin_cpu_is", {number(1)}));
  EXPECT_TRUE(refuses(ec_too_many_arguments, "__builtin_assume_aligned",
                      {number(0), number(8), number(0), number(0)}));
  EXPECT_TRUE(refuses(ec_3rd_arg_of_assume_aligned_must_be_integral, "__builtin_assume_aligned",
                      {number(0), number(8), real(0)}));
  EXPECT_TRUE(refuses(ec_invalid_builtin_fpclassify_args, "__builtin_fpclassify", {real(0)}));
  EXPECT_TRUE(refuses(0, "memcpy", {number(1)}));
}

// ---- Values at addresses ----

class ValuesAtAddresses : public Folding {
protected:
  // const int v[4] = {5, [2] = 7, 9}
  a_constant address_in_array(int64_t offset) {
    a_variable* variable = enter_variable("v", sc_static, 0)->variant.variable;
    a_type* array = make_array_type(integer_type(ik_int), 4);
    a_constant* value = alloc_constant(con_aggregate);
    value->type = array;
    a_constant* designator = alloc_constant(con_designator);
    designator->value.designator.is_text_or_index = true;
    designator->value.designator.designated.index = element(2);
    add_constant_to_aggregate(element(5), value);
    add_constant_to_aggregate(designator, value);
    add_constant_to_aggregate(element(7), value);
    add_constant_to_aggregate(element(9), value);
    variable->type = make_qualified_type(array, tq_const);
    variable->init_kind = initk_constant;
    variable->initializer.constant = value;
    a_constant address;
    set_variable_address_constant(variable, &address, false);
    address.type = make_pointer_type(make_qualified_type(integer_type(ik_int), tq_const));
    address.value.address.offset = offset;
    return address;
  }

  a_constant* element(uint64_t value) {
    a_constant* constant = alloc_constant(con_integer);
    constant->type = integer_type(ik_int);
    constant->value.int_value = value;
    return constant;
  }

  bool reads(const a_constant& address, uint64_t value) {
    a_constant result;
    return constant_value_at_address(&address, &result) && result.kind == con_integer &&
           result.value.int_value == value;
  }

  bool is_refused(const a_constant& address) {
    a_constant result;
    return !constant_value_at_address(&address, &result);
  }
};

TEST_F(ValuesAtAddresses, ElementsAreFoundByTheirOffsets) {
  EXPECT_TRUE(reads(address_in_array(0), 5));
  EXPECT_TRUE(reads(address_in_array(4), 0));
  EXPECT_TRUE(reads(address_in_array(8), 7));
  EXPECT_TRUE(reads(address_in_array(12), 9));
  EXPECT_TRUE(is_refused(address_in_array(16)));
  EXPECT_TRUE(is_refused(address_in_array(2)));
  EXPECT_TRUE(is_refused(address_in_array(-4)));
  a_constant changed = address_in_array(0);
  changed.value.address.base.variable->type = make_array_type(integer_type(ik_int), 4);
  EXPECT_TRUE(is_refused(changed)); // the program may have written there
  a_constant as_short = address_in_array(0);
  as_short.type = make_pointer_type(integer_type(ik_short));
  EXPECT_TRUE(is_refused(as_short));
}

} // namespace
