// The functions of <complex.h> (C99 7.3) that take a value apart. A complex
// value is a structure of its two parts.

#include <complex>

#include "ifrun_native.h"

namespace {

using a_complex = std::complex<double>;

a_complex complex_argument(a_machine& machine, const a_native_call& call, a_scalar_kind kind) {
  if (call.arguments.empty() || !call.arguments[0].by_copy)
    throw a_run_error{"argument 1 is no complex value"};
  uint64_t address = call.values[0];
  return {double_of(machine.memory.load(address, kind)),
          double_of(machine.memory.load(address + size_of_kind(kind), kind))};
}

double real_part(const a_complex& value) {
  return value.real();
}
double imaginary_part(const a_complex& value) {
  return value.imag();
}
double magnitude(const a_complex& value) {
  return std::abs(value);
}
double angle(const a_complex& value) {
  return std::arg(value);
}

template <double Function(const a_complex&), a_scalar_kind Kind>
uint64_t part(a_machine& machine, const a_native_call& call) {
  return round_to_kind(Function(complex_argument(machine, call, Kind)), Kind);
}

template <a_scalar_kind Kind> uint64_t conjugate(a_machine& machine, const a_native_call& call) {
  a_complex value = std::conj(complex_argument(machine, call, Kind));
  uint64_t result = call.result_address;
  machine.memory.store(result, Kind, round_to_kind(value.real(), Kind));
  machine.memory.store(result + size_of_kind(Kind), Kind, round_to_kind(value.imag(), Kind));
  return result;
}

} // namespace

a_native find_complex_native(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    a_native function;
    a_native short_function; // of the name with the suffix f
  } natives[] = {
      {"cabs", part<magnitude, k_f64>, part<magnitude, k_f32>},
      {"carg", part<angle, k_f64>, part<angle, k_f32>},
      {"cimag", part<imaginary_part, k_f64>, part<imaginary_part, k_f32>},
      {"conj", conjugate<k_f64>, conjugate<k_f32>},
      {"creal", part<real_part, k_f64>, part<real_part, k_f32>},
  };
  for (const auto& row : natives)
    if (a_native native = native_with_suffix(name, row.name, row.function, row.short_function))
      return native;
  return nullptr;
}
