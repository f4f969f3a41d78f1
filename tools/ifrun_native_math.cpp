// The functions of <math.h> (C99 7.12). The host's do the work: its formats are
// the target's.

#include <cmath>

#include "ifrun_int.h"

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

uint64_t native_ldexp(a_machine&, const a_native_call& call) {
  return bits_of(std::ldexp(call.floating(0), static_cast<int>(call.value(1, k_s32))));
}

uint64_t native_frexp(a_machine& machine, const a_native_call& call) {
  int exponent = 0;
  double fraction = std::frexp(call.floating(0), &exponent);
  machine.memory.store(call.value(1, k_data_pointer), k_s32, static_cast<uint64_t>(exponent));
  return bits_of(fraction);
}

uint64_t native_modf(a_machine& machine, const a_native_call& call) {
  double whole = 0;
  double fraction = std::modf(call.floating(0), &whole);
  machine.memory.store(call.value(1, k_data_pointer), k_f64, bits_of(whole));
  return bits_of(fraction);
}

} // namespace

a_native find_math_native(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    a_native function;
    a_native short_function; // of the name with the suffix f, or null
  } natives[] = {
      {"acos", one<std::acos>, short_one<std::acos>},
      {"asin", one<std::asin>, short_one<std::asin>},
      {"atan", one<std::atan>, short_one<std::atan>},
      {"atan2", two<std::atan2>, short_two<std::atan2>},
      {"cbrt", one<std::cbrt>, short_one<std::cbrt>},
      {"ceil", one<std::ceil>, short_one<std::ceil>},
      {"copysign", two<std::copysign>, short_two<std::copysign>},
      {"cos", one<std::cos>, short_one<std::cos>},
      {"cosh", one<std::cosh>, short_one<std::cosh>},
      {"exp", one<std::exp>, short_one<std::exp>},
      {"fabs", one<std::fabs>, short_one<std::fabs>},
      {"floor", one<std::floor>, short_one<std::floor>},
      {"fmax", two<std::fmax>, short_two<std::fmax>},
      {"fmin", two<std::fmin>, short_two<std::fmin>},
      {"fmod", two<std::fmod>, short_two<std::fmod>},
      {"frexp", native_frexp, nullptr},
      {"hypot", two<std::hypot>, short_two<std::hypot>},
      {"ldexp", native_ldexp, nullptr},
      {"log", one<std::log>, short_one<std::log>},
      {"log10", one<std::log10>, short_one<std::log10>},
      {"modf", native_modf, nullptr},
      {"pow", two<std::pow>, short_two<std::pow>},
      {"rint", one<std::rint>, short_one<std::rint>},
      {"round", one<std::round>, short_one<std::round>},
      {"sin", one<std::sin>, short_one<std::sin>},
      {"sinh", one<std::sinh>, short_one<std::sinh>},
      {"sqrt", one<std::sqrt>, short_one<std::sqrt>},
      {"tan", one<std::tan>, short_one<std::tan>},
      {"tanh", one<std::tanh>, short_one<std::tanh>},
      {"trunc", one<std::trunc>, short_one<std::trunc>},
  };
  for (const auto& row : natives) {
    if (name == row.name)
      return row.function;
    if (name.size() == row.name.size() + 1 && name.starts_with(row.name) && name.back() == 'f')
      return row.short_function;
  }
  return nullptr;
}
