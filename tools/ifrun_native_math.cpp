// The functions of <math.h> (C99 7.12). The host's do the work: its formats are
// the target's.

#include <cmath>
#include <limits>

#include "ifrun_native.h"

namespace {

using a_function_of_one = double (*)(double);
using a_function_of_two = double (*)(double, double);

template <a_function_of_one Function> uint64_t one(a_machine&, const a_native_call& call) {
  return bits_of(Function(call.floating(0)));
}

template <a_function_of_two Function> uint64_t two(a_machine&, const a_native_call& call) {
  return bits_of(Function(call.floating(0), call.floating(1)));
}

// The result of the function with the suffix f is a float.
template <a_function_of_one Function> uint64_t short_one(a_machine&, const a_native_call& call) {
  return round_to_kind(Function(call.floating(0)), k_f32);
}

template <a_function_of_two Function> uint64_t short_two(a_machine&, const a_native_call& call) {
  return round_to_kind(Function(call.floating(0), call.floating(1)), k_f32);
}

} // namespace

uint64_t native_ldexp(a_machine&, const a_native_call& call) {
  return bits_of(std::ldexp(call.floating(0), int_value(call, 1)));
}

uint64_t native_ldexpf(a_machine&, const a_native_call& call) {
  return round_to_kind(std::ldexp(call.floating(0), int_value(call, 1)), k_f32);
}

uint64_t native_frexp(a_machine& machine, const a_native_call& call) {
  int exponent = 0;
  double fraction = std::frexp(call.floating(0), &exponent);
  machine.memory.store(pointer(call, 1), k_s32, whole(exponent));
  return bits_of(fraction);
}

static uint64_t split(a_machine& machine, const a_native_call& call, a_scalar_kind kind) {
  double integral = 0;
  double fraction = std::modf(call.floating(0), &integral);
  machine.memory.store(pointer(call, 1), kind, bits_of(integral));
  return bits_of(fraction);
}
uint64_t native_modf(a_machine& machine, const a_native_call& call) {
  return split(machine, call, k_f64);
}
uint64_t native_modff(a_machine& machine, const a_native_call& call) {
  return split(machine, call, k_f32);
}

uint64_t native_nan(a_machine&, const a_native_call&) {
  return bits_of(std::numeric_limits<double>::quiet_NaN());
}
uint64_t native_inf(a_machine&, const a_native_call&) {
  return bits_of(std::numeric_limits<double>::infinity());
}

// -- To whole numbers ----------------------------------------------------------

uint64_t native_lrint(a_machine&, const a_native_call& call) {
  return convert_value(bits_of(std::nearbyint(call.floating(0))), k_f64, k_s64);
}
uint64_t native_lround(a_machine&, const a_native_call& call) {
  return convert_value(bits_of(std::round(call.floating(0))), k_f64, k_s64);
}
uint64_t native_ilogb(a_machine&, const a_native_call& call) {
  return whole(std::ilogb(call.floating(0)));
}

// -- Classes and comparisons ---------------------------------------------------

uint64_t native_isnan(a_machine&, const a_native_call& call) {
  return std::isnan(call.floating(0));
}
uint64_t native_isinf(a_machine&, const a_native_call& call) {
  double number = call.floating(0);
  return std::isinf(number) ? whole(number < 0 ? -1 : 1) : 0;
}
uint64_t native_finite(a_machine&, const a_native_call& call) {
  return std::isfinite(call.floating(0));
}
uint64_t native_isnormal(a_machine&, const a_native_call& call) {
  return std::isnormal(call.floating(0));
}
uint64_t native_signbit(a_machine&, const a_native_call& call) {
  return std::signbit(call.floating(0));
}

// By newlib's numbers: 0 a NaN, 1 infinite, 2 zero, 3 subnormal, 4 normal.
static uint64_t class_number(double number, bool is_normal) {
  if (std::isnan(number))
    return 0;
  if (std::isinf(number))
    return 1;
  return number == 0 ? 2 : is_normal ? 4 : 3;
}
uint64_t native_fpclassify(a_machine&, const a_native_call& call) {
  return class_number(call.floating(0), std::isnormal(call.floating(0)));
}
uint64_t native_fpclassifyf(a_machine&, const a_native_call& call) {
  return class_number(call.floating(0), std::isnormal(static_cast<float>(call.floating(0))));
}

uint64_t native_isgreater(a_machine&, const a_native_call& call) {
  return std::isgreater(call.floating(0), call.floating(1));
}
uint64_t native_isgreaterequal(a_machine&, const a_native_call& call) {
  return std::isgreaterequal(call.floating(0), call.floating(1));
}
uint64_t native_isless(a_machine&, const a_native_call& call) {
  return std::isless(call.floating(0), call.floating(1));
}
uint64_t native_islessequal(a_machine&, const a_native_call& call) {
  return std::islessequal(call.floating(0), call.floating(1));
}
uint64_t native_islessgreater(a_machine&, const a_native_call& call) {
  return std::islessgreater(call.floating(0), call.floating(1));
}
uint64_t native_isunordered(a_machine&, const a_native_call& call) {
  return std::isunordered(call.floating(0), call.floating(1));
}

a_native native_with_suffix(std::string_view name, std::string_view row_name, a_native function,
                            a_native short_function) {
  if (name == row_name)
    return function;
  // A long double is a double.
  bool has_suffix = name.size() == row_name.size() + 1 && name.starts_with(row_name);
  if (has_suffix && (name.back() == 'f' || name.back() == 'l'))
    return name.back() == 'f' ? short_function : function;
  return nullptr;
}

a_native find_math_native(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    a_native function;
    a_native short_function; // of the name with the suffix f, or null
  } natives[] = {
      {"acos", one<std::acos>, short_one<std::acos>},
      {"acosh", one<std::acosh>, short_one<std::acosh>},
      {"asin", one<std::asin>, short_one<std::asin>},
      {"asinh", one<std::asinh>, short_one<std::asinh>},
      {"atan", one<std::atan>, short_one<std::atan>},
      {"atan2", two<std::atan2>, short_two<std::atan2>},
      {"atanh", one<std::atanh>, short_one<std::atanh>},
      {"cbrt", one<std::cbrt>, short_one<std::cbrt>},
      {"ceil", one<std::ceil>, short_one<std::ceil>},
      {"copysign", two<std::copysign>, short_two<std::copysign>},
      {"cos", one<std::cos>, short_one<std::cos>},
      {"cosh", one<std::cosh>, short_one<std::cosh>},
      {"erf", one<std::erf>, short_one<std::erf>},
      {"erfc", one<std::erfc>, short_one<std::erfc>},
      {"exp", one<std::exp>, short_one<std::exp>},
      {"exp2", one<std::exp2>, short_one<std::exp2>},
      {"expm1", one<std::expm1>, short_one<std::expm1>},
      {"fabs", one<std::fabs>, short_one<std::fabs>},
      {"fdim", two<std::fdim>, short_two<std::fdim>},
      {"floor", one<std::floor>, short_one<std::floor>},
      {"fmax", two<std::fmax>, short_two<std::fmax>},
      {"fmin", two<std::fmin>, short_two<std::fmin>},
      {"fmod", two<std::fmod>, short_two<std::fmod>},
      {"hypot", two<std::hypot>, short_two<std::hypot>},
      {"lgamma", one<std::lgamma>, short_one<std::lgamma>},
      {"log", one<std::log>, short_one<std::log>},
      {"log10", one<std::log10>, short_one<std::log10>},
      {"log1p", one<std::log1p>, short_one<std::log1p>},
      {"log2", one<std::log2>, short_one<std::log2>},
      {"logb", one<std::logb>, short_one<std::logb>},
      {"nearbyint", one<std::nearbyint>, short_one<std::nearbyint>},
      {"pow", two<std::pow>, short_two<std::pow>},
      {"remainder", two<std::remainder>, short_two<std::remainder>},
      {"rint", one<std::rint>, short_one<std::rint>},
      {"round", one<std::round>, short_one<std::round>},
      {"sin", one<std::sin>, short_one<std::sin>},
      {"sinh", one<std::sinh>, short_one<std::sinh>},
      {"sqrt", one<std::sqrt>, short_one<std::sqrt>},
      {"tan", one<std::tan>, short_one<std::tan>},
      {"tanh", one<std::tanh>, short_one<std::tanh>},
      {"tgamma", one<std::tgamma>, short_one<std::tgamma>},
      {"trunc", one<std::trunc>, short_one<std::trunc>},
  };
  for (const auto& row : natives)
    if (a_native native = native_with_suffix(name, row.name, row.function, row.short_function))
      return native;
  return nullptr;
}
