// The library functions that programs find without defining them: how they are
// found, and those that don't deal with text or files.

#include "ifrun_native.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdlib>
#include <cstring>

uint64_t a_native_call::value(size_t number, a_scalar_kind kind) const {
  if (number >= arguments.size())
    throw a_run_error{"argument " + std::to_string(number + 1) + " is missing"};
  if (arguments[number].by_copy)
    throw a_run_error{"argument " + std::to_string(number + 1) + " is a structure"};
  uint8_t from = arguments[number].type.kind;
  if (is_floating_kind(from) || is_floating_kind(kind))
    return from == kind ? values[number] : convert_value(values[number], from, kind);
  return wrap_to_kind(values[number], kind);
}

uint64_t an_argument_list::take(a_scalar_kind kind) {
  if (call != nullptr)
    return call->value(next++, kind);
  uint64_t slot = address;
  address += in_slots(size_of_kind(kind));
  return memory->load(slot, kind);
}

a_native find_native(std::string_view name) {
  static const std::unordered_map<std::string_view, a_native> natives = {
#define NATIVE(name, function) {#name, function},
#include "ifrun_natives.def"
  };
  static constexpr std::string_view builtin_prefix = "__builtin_";
  auto found = natives.find(name);
  if (found != natives.end())
    return found->second;
  if (a_native math = find_math_native(name))
    return math;
  if (a_native complex = find_complex_native(name))
    return complex;
  if (name.starts_with(builtin_prefix))
    return find_native(name.substr(builtin_prefix.size()));
  return nullptr;
}

uint64_t native_nothing(a_machine&, const a_native_call&) {
  return 0;
}

// -- The heap ------------------------------------------------------------------

uint64_t native_malloc(a_machine& machine, const a_native_call& call) {
  return machine.memory.allocate(word(call, 0));
}

uint64_t native_calloc(a_machine& machine, const a_native_call& call) {
  uint64_t size = word(call, 0) * word(call, 1);
  uint32_t address = machine.memory.allocate(size);
  if (address != 0)
    std::memset(machine.memory.at(address, size), 0, size);
  return address;
}

uint64_t native_realloc(a_machine& machine, const a_native_call& call) {
  return machine.memory.reallocate(static_cast<uint32_t>(pointer(call, 0)), word(call, 1));
}

uint64_t native_free(a_machine& machine, const a_native_call& call) {
  machine.memory.release(static_cast<uint32_t>(pointer(call, 0)));
  return 0;
}

// All blocks are aligned to 16, which is as much as any type asks for.
uint64_t native_aligned_alloc(a_machine& machine, const a_native_call& call) {
  return machine.memory.allocate(word(call, 1));
}

uint64_t native_malloc_usable_size(a_machine& machine, const a_native_call& call) {
  uint64_t address = pointer(call, 0);
  return address == 0 ? 0 : machine.memory.live_size(static_cast<uint32_t>(address));
}

uint64_t native_alloca(a_machine& machine, const a_native_call& call) {
  return machine.allocate_in_frame(word(call, 0));
}

// The room of a variable length array goes to the pointer. A declaration that
// is executed again gives back what it had.
uint64_t native_vla_alloc(a_machine& machine, const a_native_call& call) {
  auto place = static_cast<uint32_t>(pointer(call, 0));
  machine.memory.store(place, k_data_pointer, machine.allocate_array(place, word(call, 1)));
  return 0;
}

uint64_t native_vla_dealloc(a_machine& machine, const a_native_call& call) {
  machine.release_array(static_cast<uint32_t>(pointer(call, 0)));
  return 0;
}

// -- The end -------------------------------------------------------------------

uint64_t native_exit(a_machine&, const a_native_call& call) {
  throw a_program_exit{static_cast<int>(call.value(0, k_u8))};
}

uint64_t native_exit_at_once(a_machine&, const a_native_call& call) {
  throw a_program_exit{static_cast<int>(call.value(0, k_u8)), true};
}

uint64_t native_abort(a_machine&, const a_native_call&) {
  throw a_run_error{"the program was aborted", ifrun_status_abort};
}

uint64_t native_raise(a_machine& machine, const a_native_call& call) {
  return native_abort(machine, call);
}

uint64_t native_assert_func(a_machine& machine, const a_native_call& call) {
  throw a_run_error{"assertion \"" + std::string(text(machine, call, 3)) + "\" failed at " +
                        std::string(text(machine, call, 0)) + ":" +
                        std::to_string(int_value(call, 1)),
                    ifrun_status_abort};
}

uint64_t native_atexit(a_machine& machine, const a_native_call& call) {
  machine.exit_functions.push_back(static_cast<uint32_t>(call.value(0, k_function_pointer)));
  return 0;
}

uint64_t native_setjmp(a_machine& machine, const a_native_call& call) {
  machine.save_context(static_cast<uint32_t>(pointer(call, 0)), call.values);
  return 0;
}

uint64_t native_longjmp(a_machine& machine, const a_native_call& call) {
  uint64_t value = call.arguments.size() > 1 ? call.value(1, k_s32) : 1;
  machine.restore_context(static_cast<uint32_t>(pointer(call, 0)), value != 0 ? value : 1);
}

// -- Numbers -------------------------------------------------------------------

uint64_t native_abs(a_machine&, const a_native_call& call) {
  uint64_t number = call.value(0, k_s32);
  return static_cast<int64_t>(number) < 0 ? 0 - number : number;
}

uint64_t native_llabs(a_machine&, const a_native_call& call) {
  uint64_t number = call.value(0, k_s64);
  return static_cast<int64_t>(number) < 0 ? 0 - number : number;
}

// The result is a structure of the quotient and the remainder.
static uint64_t quotient_and_remainder(a_machine& machine, const a_native_call& call,
                                       a_scalar_kind kind) {
  auto left = static_cast<int64_t>(call.value(0, kind));
  auto right = static_cast<int64_t>(call.value(1, kind));
  if (right == 0)
    throw a_run_error{"division by zero"};
  bool overflows = right == -1;
  machine.memory.store(call.result_address, kind,
                       overflows ? 0 - whole(left) : whole(left / right));
  machine.memory.store(call.result_address + size_of_kind(kind), kind,
                       overflows ? 0 : whole(left % right));
  return call.result_address;
}

uint64_t native_div(a_machine& machine, const a_native_call& call) {
  return quotient_and_remainder(machine, call, k_s32);
}

uint64_t native_lldiv(a_machine& machine, const a_native_call& call) {
  return quotient_and_remainder(machine, call, k_s64);
}

// The generator that the C standard shows (C99 7.20.2.2), with more bits.
static uint64_t random_state = 1;

uint64_t native_rand(a_machine&, const a_native_call&) {
  random_state = random_state * 6364136223846793005u + 1442695040888963407u;
  return random_state >> 33;
}

uint64_t native_srand(a_machine&, const a_native_call& call) {
  random_state = word(call, 0);
  return 0;
}

static uint32_t low_word(const a_native_call& call) {
  return static_cast<uint32_t>(word(call, 0));
}

uint64_t native_clz(a_machine&, const a_native_call& call) {
  return whole(std::countl_zero(low_word(call)));
}
uint64_t native_clzll(a_machine&, const a_native_call& call) {
  return whole(std::countl_zero(call.value(0, k_u64)));
}
uint64_t native_ctz(a_machine&, const a_native_call& call) {
  return whole(std::countr_zero(low_word(call)));
}
uint64_t native_ctzll(a_machine&, const a_native_call& call) {
  return whole(std::countr_zero(call.value(0, k_u64)));
}
uint64_t native_ffs(a_machine&, const a_native_call& call) {
  return low_word(call) == 0 ? 0 : whole(std::countr_zero(low_word(call)) + 1);
}
uint64_t native_ffsll(a_machine&, const a_native_call& call) {
  uint64_t bits = call.value(0, k_u64);
  return bits == 0 ? 0 : whole(std::countr_zero(bits) + 1);
}
uint64_t native_popcount(a_machine&, const a_native_call& call) {
  return whole(std::popcount(low_word(call)));
}
uint64_t native_popcountll(a_machine&, const a_native_call& call) {
  return whole(std::popcount(call.value(0, k_u64)));
}
uint64_t native_parity(a_machine&, const a_native_call& call) {
  return whole(std::popcount(low_word(call)) & 1);
}
uint64_t native_parityll(a_machine&, const a_native_call& call) {
  return whole(std::popcount(call.value(0, k_u64)) & 1);
}
// The bits behind the sign that equal it.
uint64_t native_clrsb(a_machine&, const a_native_call& call) {
  uint32_t bits = low_word(call);
  return whole(std::countl_zero(bits >> 31 != 0 ? ~bits : bits) - 1);
}
uint64_t native_clrsbll(a_machine&, const a_native_call& call) {
  uint64_t bits = call.value(0, k_u64);
  return whole(std::countl_zero(bits >> 63 != 0 ? ~bits : bits) - 1);
}
uint64_t native_bswap16(a_machine&, const a_native_call& call) {
  return __builtin_bswap16(static_cast<uint16_t>(word(call, 0)));
}
uint64_t native_bswap32(a_machine&, const a_native_call& call) {
  return __builtin_bswap32(low_word(call));
}
uint64_t native_bswap64(a_machine&, const a_native_call& call) {
  return __builtin_bswap64(call.value(0, k_u64));
}

// -- Searching and sorting -----------------------------------------------------

// Compares two elements by the program's function.
static int compared(a_machine& machine, a_function* function, uint64_t left, uint64_t right) {
  return static_cast<int>(
      static_cast<int32_t>(static_cast<uint32_t>(machine.call(function, {left, right}))));
}

// Merges the sorted runs [low, middle) and [middle, high) of `from` to `to`;
// positions in bytes.
static void merge(a_machine& machine, a_function* function, uint64_t from, uint64_t to,
                  uint64_t low, uint64_t middle, uint64_t high, uint64_t size) {
  uint64_t left = low, right = middle;
  for (uint64_t next = low; next < high; next += size) {
    bool takes_left = left < middle && (right >= high || compared(machine, function, from + left,
                                                                  from + right) <= 0);
    uint64_t& source = takes_left ? left : right;
    std::memcpy(machine.memory.at(to + next, size), machine.memory.at(from + source, size), size);
    source += size;
  }
}

// A merge sort: stable, and at ease with functions that contradict themselves.
uint64_t native_qsort(a_machine& machine, const a_native_call& call) {
  uint64_t base = pointer(call, 0), size = word(call, 2), total = word(call, 1) * size;
  a_function* function = machine.callee(call.value(3, k_function_pointer));
  if (total == 0)
    return 0;
  machine.memory.at(base, total);
  uint32_t buffer = machine.memory.allocate(total);
  if (buffer == 0)
    throw a_run_error{"the heap has no room to sort"};
  uint64_t from = base, to = buffer;
  for (uint64_t run = size; run < total; run *= 2) {
    for (uint64_t low = 0; low < total; low += 2 * run)
      merge(machine, function, from, to, low, std::min(low + run, total),
            std::min(low + 2 * run, total), size);
    std::swap(from, to);
  }
  if (from != base)
    std::memcpy(machine.memory.at(base, total), machine.memory.at(buffer, total), total);
  machine.memory.release(buffer);
  return 0;
}

uint64_t native_bsearch(a_machine& machine, const a_native_call& call) {
  uint64_t key = pointer(call, 0), base = pointer(call, 1), size = word(call, 3);
  uint64_t low = 0, high = word(call, 2);
  a_function* function = machine.callee(call.value(4, k_function_pointer));
  while (low < high) {
    uint64_t middle = low + (high - low) / 2;
    int order = compared(machine, function, key, base + middle * size);
    if (order == 0)
      return base + middle * size;
    (order < 0 ? high : low) = order < 0 ? middle : middle + 1;
  }
  return 0;
}

// -- The surroundings ----------------------------------------------------------

uint64_t native_getenv(a_machine& machine, const a_native_call& call) {
  const char* value = std::getenv(std::string(text(machine, call, 0)).c_str());
  return value != nullptr ? machine.memory.add_text(value) : 0;
}

uint64_t native_time(a_machine& machine, const a_native_call& call) {
  using namespace std::chrono;
  int64_t now = duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
  if (uint64_t target = pointer(call, 0))
    machine.memory.store(target, k_s32, whole(now));
  return whole(now);
}

// In microseconds.
uint64_t native_clock(a_machine&, const a_native_call&) {
  using namespace std::chrono;
  return whole(duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count());
}

uint64_t native_difftime(a_machine&, const a_native_call& call) {
  return bits_of(static_cast<double>(static_cast<int64_t>(call.value(0, k_s32))) -
                 static_cast<double>(static_cast<int64_t>(call.value(1, k_s32))));
}

// A word of the heap, made when it is first asked for.
uint64_t native_errno(a_machine& machine, const a_native_call&) {
  if (machine.errno_address == 0) {
    machine.errno_address = machine.memory.allocate(4);
    machine.memory.store(machine.errno_address, k_s32, 0);
  }
  return machine.errno_address;
}
