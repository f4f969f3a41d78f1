// The machine: runs compiled functions.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "ifrun_int.h"

void a_machine::fail(std::string message, int status) const {
  throw a_run_error{std::move(message), status};
}

// -- Calls ---------------------------------------------------------------------

a_function* a_machine::callee(uint64_t id) {
  if (id == 0 || id > program.functions.size())
    memory.at(id, UINT64_MAX); // a bad address
  return &program.function_of(static_cast<uint32_t>(id));
}

// Makes a frame behind the current one and stores the arguments in it. `top`
// is the uppermost value of the caller's that stays.
void a_machine::enter(a_function* function, const std::vector<an_argument>& arguments,
                      const uint64_t* values, uint32_t result_address, uint64_t* top) {
  if (!function->compiled) {
    if (function->source == nullptr)
      fail("undefined function " + std::string(function->name));
    compile_function(&program, function);
  }
  uint64_t base = frames.empty() ? memory.stack_begin() : frames.back().top;
  uint64_t end = base + function->frame_size;
  size_t named = function->parameters.size();
  size_t stored = function->has_ellipsis ? arguments.size() : std::min(named, arguments.size());
  for (size_t i = named; i < stored; i++)
    end += in_slots(arguments[i].size);
  if (end + 8 > memory.stack_end())
    fail("stack overflow");
  uint64_t next_variable = base + function->frame_size;
  for (size_t i = 0; i < stored; i++) {
    const an_argument& argument = arguments[i];
    uint64_t target = next_variable, size = argument.size;
    uint8_t kind = argument.type.kind;
    if (i < named) {
      const a_parameter& parameter = function->parameters[i];
      if (parameter.is_aggregate != argument.by_copy)
        fail("argument " + std::to_string(i + 1) + " of " + std::string(function->name) +
             " doesn't fit the parameter");
      target = base + parameter.offset;
      size = std::min(size, parameter.size);
      kind = parameter.kind;
    } else {
      next_variable += in_slots(size);
    }
    if (argument.by_copy)
      std::memmove(memory.at(target, size), memory.at(values[i], size), size);
    else
      memory.store(target, kind, values[i]);
  }
  frames.push_back({function, function->code.data(), static_cast<uint32_t>(base),
                    static_cast<uint32_t>((end + 7) & ~uint64_t{7}), result_address, next_serial++,
                    top});
  running = function;
}

uint64_t a_machine::call_native(a_function* function, const a_call_site& site,
                                const uint64_t* values, uint32_t result_address) {
  native_name = function->name;
  uint64_t result =
      function->native(*this, {function->name, values, site.arguments, result_address});
  native_name = {};
  return is_floating_kind(site.result.kind) ? result : wrap_to_kind(result, site.result.kind);
}

uint64_t a_machine::call(a_function* function, const std::vector<uint64_t>& arguments) {
  static constexpr size_t evaluation_stack_size = 1 << 20;
  static constexpr unsigned deepest_nesting = 200;
  std::vector<an_argument> shapes(arguments.size(), {{k_u32}, 4, false});
  if (function->native != nullptr)
    return function->native(*this, {function->name, arguments.data(), shapes});
  if (evaluation_stack.empty()) {
    evaluation_stack.resize(evaluation_stack_size);
    values_in_use = evaluation_stack.data();
  }
  if (nesting == deepest_nesting)
    fail("stack overflow");
  a_function* caller = running;
  uint64_t* caller_values = values_in_use;
  std::string_view caller_native = std::exchange(native_name, {});
  unsigned outer_nesting = nesting++;
  enter(function, shapes, arguments.data(), 0, values_in_use);
  uint64_t result = run();
  nesting = outer_nesting;
  native_name = caller_native;
  values_in_use = caller_values;
  running = caller;
  return result;
}

uint32_t a_machine::allocate_in_frame(uint64_t size) {
  a_frame& frame = frames.back();
  if (size > memory.stack_size || frame.top + size + 32 > memory.stack_end())
    fail("stack overflow");
  uint32_t address = (frame.top + 15) & ~15u;
  frame.top = static_cast<uint32_t>((address + size + 7) & ~uint64_t{7});
  return address;
}

uint32_t a_machine::allocate_array(uint32_t place, uint64_t size) {
  auto& [serial, address] = arrays[place];
  if (serial == frames.back().serial)
    frames.back().top = address;
  serial = frames.back().serial;
  address = allocate_in_frame(size);
  return address;
}

void a_machine::release_array(uint32_t place) {
  auto array = arrays.find(place);
  if (array == arrays.end())
    return;
  if (array->second.first == frames.back().serial)
    frames.back().top = array->second.second;
  arrays.erase(array);
}

// -- Jumps between functions ---------------------------------------------------

// The buffer holds the context's number. One that is used again keeps it. The
// frame's values go up to `values_end`.
void a_machine::save_context(uint32_t buffer, const uint64_t* values_end) {
  uint64_t number = memory.load(buffer, k_u32);
  if (number == 0 || number > contexts.size() || contexts[number - 1].buffer != buffer) {
    contexts.emplace_back();
    number = contexts.size();
    memory.store(buffer, k_u32, number);
  }
  a_saved_context& context = contexts[number - 1];
  const a_frame& frame = frames.back();
  context.buffer = buffer;
  context.depth = frames.size();
  context.serial = frame.serial;
  context.resume = frame.resume;
  context.values.assign(frame.values + 1, const_cast<uint64_t*>(values_end));
}

void a_machine::restore_context(uint32_t buffer, uint64_t value) {
  uint64_t number = memory.load(buffer, k_u32);
  if (number == 0 || number > contexts.size())
    fail("the buffer was not set");
  const a_saved_context& context = contexts[number - 1];
  if (context.depth > frames.size() || frames[context.depth - 1].serial != context.serial)
    fail("the function to return to has ended");
  throw a_long_jump{&context, value};
}

// Runs the uppermost frame up to its return.
uint64_t a_machine::run() {
  size_t bottom = frames.size() - 1;
  unsigned own_nesting = nesting;
  const an_instruction* pc = running->code.data();
  uint64_t* top = values_in_use;
  for (;;) {
    try {
      return run_code(pc, top, bottom);
    } catch (const a_long_jump& jump) {
      const a_saved_context& context = *jump.context;
      if (context.depth <= bottom)
        throw;
      frames.resize(context.depth);
      running = frames.back().function;
      nesting = own_nesting;
      native_name = {};
      pc = context.resume;
      top = std::copy(context.values.begin(), context.values.end(), frames.back().values + 1);
      *top = wrap_to_kind(jump.value, k_s32);
    }
  }
}

// -- Messages ------------------------------------------------------------------

const an_if_statement* a_function::statement_at(const an_instruction* instruction) const {
  auto index = static_cast<uint32_t>(instruction - code.data());
  auto next =
      std::upper_bound(statement_starts.begin(), statement_starts.end(), index,
                       [](uint32_t wanted, const auto& start) { return wanted < start.first; });
  return next != statement_starts.begin() ? std::prev(next)->second : nullptr;
}

std::string place_text(const an_if_file& file, const a_function& function,
                       const an_if_statement* statement) {
  std::string text(function.name);
  if (statement == nullptr)
    return text;
  const an_if_position& position = statement->position;
  if (position.known())
    text += " at " + std::string(file.file_name(position)) + ":" + std::to_string(position.line) +
            ":" + std::to_string(position.column);
  const char* tag = if_tag_name(statement->tag);
  return text + ", record " + tag + " at offset " + std::to_string(statement->offset);
}

// Tells where the run is, and how it came there.
void a_machine::locate(a_run_error* error, const an_instruction* pc) const {
  static constexpr size_t most_callers = 8;
  if (!error->place.empty() || running == nullptr)
    return;
  if (!native_name.empty())
    error->place = std::string(native_name) + ", called by ";
  error->place += place_text(program.file, *running, running->statement_at(pc));
  size_t shown = 0;
  for (size_t i = frames.size() - 1; i-- != 0 && shown < most_callers; shown++) {
    const a_function& caller = *frames[i].function;
    error->place += "\n  called by " +
                    place_text(program.file, caller, caller.statement_at(frames[i].resume - 1));
  }
}

void a_machine::trace_statement(const an_instruction* pc) const {
  const an_if_statement* statement = running->statement_at(pc);
  std::fprintf(stderr, "%s: %s\n", place_text(program.file, *running, statement).c_str(),
               statement != nullptr ? if_opcode_name(statement->expr->opcode) : "-");
}

static std::string value_text(uint64_t value, uint8_t kind) {
  if (is_floating_kind(kind)) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.17g", double_of(value));
    return digits;
  }
  return kind & 1 ? std::to_string(static_cast<int64_t>(value)) : std::to_string(value);
}

void a_machine::trace_call(const a_function* function, const std::vector<an_argument>& arguments,
                           const uint64_t* values) const {
  std::string text = "call " + std::string(function->name) + "(";
  for (size_t i = 0; i < arguments.size(); i++)
    text += (i != 0 ? ", " : "") + value_text(values[i], arguments[i].type.kind);
  std::fprintf(stderr, "%s)\n", text.c_str());
}

// -- Operations ----------------------------------------------------------------

static uint64_t quotient(uint64_t left, uint64_t right, uint8_t kind, bool remainder) {
  if (right == 0)
    throw a_run_error{"division by zero"};
  if (!(kind & 1))
    return remainder ? left % right : left / right;
  if (right == UINT64_MAX) // -1: the smallest number has no counterpart
    return remainder ? 0 : 0 - left;
  int64_t dividend = static_cast<int64_t>(left), divisor = static_cast<int64_t>(right);
  return static_cast<uint64_t>(remainder ? dividend % divisor : dividend / divisor);
}

// IEEE 754 7.3 for the divisor 0, which the host's language leaves open.
static double float_quotient(double left, double right) {
  if (right != 0)
    return left / right;
  if (left == 0 || std::isnan(left))
    return std::numeric_limits<double>::quiet_NaN();
  double infinity = std::numeric_limits<double>::infinity();
  return std::signbit(left) == std::signbit(right) ? infinity : -infinity;
}

// A count that is negative or too large shifts everything out.
static uint64_t shifted(uint64_t value, uint64_t count, uint8_t kind, bool left) {
  bool too_large = count >= 8 * size_of_kind(kind);
  if (left)
    return too_large ? 0 : value << count;
  if (!(kind & 1))
    return too_large ? 0 : value >> count;
  return static_cast<uint64_t>(static_cast<int64_t>(value) >> (too_large ? 63 : count));
}

uint64_t convert_value(uint64_t value, uint8_t from, uint8_t to) {
  if (!is_floating_kind(from)) {
    int64_t number = static_cast<int64_t>(value);
    if (to == k_f32) // from the whole number at once, to round once
      return bits_of(from & 1 ? static_cast<float>(number) : static_cast<float>(value));
    return bits_of(from & 1 ? static_cast<double>(number) : static_cast<double>(value));
  }
  double number = double_of(value);
  if (is_floating_kind(to))
    return round_to_kind(number, to);
  // A NaN is in no range.
  auto fits = [number](double low, double high) { return number > low && number < high; };
  bool by_int = to == k_s32 || size_of_kind(to) < 4;
  if (by_int && !fits(-0x1p31 - 1, 0x1p31))
    return wrap_to_kind(uint64_t{1} << 31, to);
  if (to == k_u64 && fits(-1, 0x1p64))
    return static_cast<uint64_t>(number);
  if (number != -0x1p63 && !fits(-0x1p63, 0x1p63))
    return wrap_to_kind(uint64_t{1} << 63, to);
  return wrap_to_kind(static_cast<uint64_t>(static_cast<int64_t>(number)), to);
}

static uint32_t switch_target(const a_switch_table& table, uint64_t value) {
  int64_t wanted = static_cast<int64_t>(value);
  auto found =
      std::lower_bound(table.cases.begin(), table.cases.end(), wanted,
                       [](const auto& entry, int64_t number) { return entry.first < number; });
  return found != table.cases.end() && found->first == wanted ? found->second
                                                              : table.default_target;
}

static uint64_t signed_less(uint64_t left, uint64_t right) {
  return static_cast<int64_t>(left) < static_cast<int64_t>(right);
}

// -- The loop ------------------------------------------------------------------

// Runs from the instruction on, until the frames are down to `bottom`. `top`
// points at the uppermost value of the evaluation stack, whose lowest place
// stays unused.
uint64_t a_machine::run_code(const an_instruction* pc, uint64_t* top, size_t bottom) try {
  const uint64_t* limit = evaluation_stack.data() + evaluation_stack.size();
  uint64_t base = frames.back().base;
  if (limit - top <= static_cast<ptrdiff_t>(running->evaluation_depth))
    fail("an expression is too large");
  uint64_t steps = steps_left;
  // A binary operation: replaces two values by one.
  auto binary = [&top](uint64_t result) { *--top = result; };
  for (;;) {
    const an_instruction& in = *pc++;
    if (steps-- == 0)
      fail("step limit reached", ifrun_status_steps);
    switch (in.op) {
    case op_const:
      *++top = in.value;
      break;
    case op_local:
      *++top = base + in.operand;
      break;
    case op_load:
      *top = memory.load(*top, in.kind);
      break;
    case op_load_s32:
      *top = memory.load(*top, k_s32);
      break;
    case op_load_u8:
      *top = *memory.at(*top, 1);
      break;
    case op_load_word:
      *++top = memory.load(base + in.operand, k_s32);
      break;
    case op_load_local:
      *++top = memory.load(base + in.operand, in.kind);
      break;
    case op_store:
      memory.store(top[-1], in.kind, *top);
      binary(*top);
      break;
    case op_store_pop:
      memory.store(top[-1], in.kind, *top);
      top -= 2;
      break;
    case op_load_bits:
      *top = memory.load_bits(*top, in.bit, in.operand, in.kind & 1);
      break;
    case op_store_bits:
      memory.store_bits(top[-1], in.bit, in.operand, *top);
      binary(memory.load_bits(top[-1], in.bit, in.operand, in.kind & 1));
      break;
    case op_post_add: {
      uint64_t old = memory.load(top[-1], in.kind), sum = old + *top;
      memory.store(top[-1], in.kind, in.value ? sum != 0 : sum);
      binary(old);
      break;
    }
    case op_post_add_bits: {
      uint64_t old = memory.load_bits(top[-1], in.bit, in.operand, in.kind & 1);
      uint64_t sum = old + *top;
      memory.store_bits(top[-1], in.bit, in.operand, in.value ? sum != 0 : sum);
      binary(old);
      break;
    }
    case op_post_add_float: {
      uint64_t old = memory.load(top[-1], in.kind);
      memory.store(top[-1], in.kind, bits_of(double_of(old) + double_of(*top)));
      binary(old);
      break;
    }
    case op_copy:
      std::memmove(memory.at(top[-1], in.operand), memory.at(*top, in.operand), in.operand);
      --top;
      break;
    case op_copy_counted:
      std::memmove(memory.at(top[-2], *top), memory.at(top[-1], *top), *top);
      top -= 2;
      break;
    case op_wrap:
      *top = wrap_to_kind(*top, in.kind);
      break;
    case op_wrap_below:
      top[-1] = wrap_to_kind(top[-1], in.kind);
      break;
    case op_convert:
      *top = convert_value(*top, in.bit, in.kind);
      break;
    case op_to_bool:
      *top = *top != 0;
      break;
    case op_float_to_bool:
      *top = double_of(*top) != 0;
      break;
    case op_add:
      binary(wrap_to_kind(top[-1] + *top, in.kind));
      break;
    case op_sub:
      binary(wrap_to_kind(top[-1] - *top, in.kind));
      break;
    case op_mul:
      binary(wrap_to_kind(top[-1] * *top, in.kind));
      break;
    case op_div:
      binary(wrap_to_kind(quotient(top[-1], *top, in.kind, false), in.kind));
      break;
    case op_mod:
      binary(wrap_to_kind(quotient(top[-1], *top, in.kind, true), in.kind));
      break;
    case op_shl:
      binary(wrap_to_kind(shifted(top[-1], *top, in.kind, true), in.kind));
      break;
    case op_shr:
      binary(shifted(top[-1], *top, in.kind, false));
      break;
    case op_and:
      binary(top[-1] & *top);
      break;
    case op_or:
      binary(top[-1] | *top);
      break;
    case op_xor:
      binary(top[-1] ^ *top);
      break;
    case op_neg:
      *top = wrap_to_kind(0 - *top, in.kind);
      break;
    case op_complement:
      *top = wrap_to_kind(~*top, in.kind);
      break;
    case op_not:
      *top = *top == 0;
      break;
    case op_abs:
      *top = wrap_to_kind(signed_less(*top, 0) ? 0 - *top : *top, in.kind);
      break;
    case op_eq:
      binary(top[-1] == *top);
      break;
    case op_ne:
      binary(top[-1] != *top);
      break;
    case op_lt:
      binary(signed_less(top[-1], *top));
      break;
    case op_le:
      binary(!signed_less(*top, top[-1]));
      break;
    case op_gt:
      binary(signed_less(*top, top[-1]));
      break;
    case op_ge:
      binary(!signed_less(top[-1], *top));
      break;
    case op_ult:
      binary(top[-1] < *top);
      break;
    case op_ule:
      binary(top[-1] <= *top);
      break;
    case op_ugt:
      binary(top[-1] > *top);
      break;
    case op_uge:
      binary(top[-1] >= *top);
      break;
    case op_float_add:
      binary(round_to_kind(double_of(top[-1]) + double_of(*top), in.kind));
      break;
    case op_float_sub:
      binary(round_to_kind(double_of(top[-1]) - double_of(*top), in.kind));
      break;
    case op_float_mul:
      binary(round_to_kind(double_of(top[-1]) * double_of(*top), in.kind));
      break;
    case op_float_div:
      binary(round_to_kind(float_quotient(double_of(top[-1]), double_of(*top)), in.kind));
      break;
    case op_float_neg:
      *top = bits_of(-double_of(*top));
      break;
    case op_float_abs:
      *top = bits_of(std::fabs(double_of(*top)));
      break;
    case op_float_sqrt:
      *top = round_to_kind(std::sqrt(double_of(*top)), in.kind);
      break;
    case op_float_eq:
      binary(double_of(top[-1]) == double_of(*top));
      break;
    case op_float_ne:
      binary(std::islessgreater(double_of(top[-1]), double_of(*top)));
      break;
    case op_float_lt:
      binary(double_of(top[-1]) < double_of(*top));
      break;
    case op_float_le:
      binary(double_of(top[-1]) <= double_of(*top));
      break;
    case op_float_gt:
      binary(double_of(top[-1]) > double_of(*top));
      break;
    case op_float_ge:
      binary(double_of(top[-1]) >= double_of(*top));
      break;
    case op_float_ordered:
      binary(!std::isunordered(double_of(top[-1]), double_of(*top)));
      break;
    case op_jump:
      pc = running->code.data() + in.operand;
      break;
    case op_jump_false:
      if (*top-- == 0)
        pc = running->code.data() + in.operand;
      break;
    case op_jump_true:
      if (*top-- != 0)
        pc = running->code.data() + in.operand;
      break;
    case op_switch:
      pc = running->code.data() + switch_target(running->switches[in.operand], *top--);
      break;
    case op_dup:
      top[1] = *top;
      ++top;
      break;
    case op_over:
      top[1] = top[-1];
      ++top;
      break;
    case op_swap:
      std::swap(top[-1], *top);
      break;
    case op_pop:
      --top;
      break;
    case op_call:
    case op_call_indirect: {
      const a_call_site& site = running->call_sites[in.operand];
      top -= site.arguments.size();
      const uint64_t* values = top + 1;
      a_function* function = callee(in.op == op_call ? site.function : *top--);
      uint32_t result_address = static_cast<uint32_t>(base + site.result_offset);
      if (program.limits.trace)
        trace_call(function, site.arguments, values);
      frames.back().resume = pc;
      if (function->native != nullptr) {
        steps_left = steps;
        values_in_use = const_cast<uint64_t*>(values) + site.arguments.size() - 1;
        *++top = call_native(function, site, values, result_address);
        steps = steps_left;
        break;
      }
      enter(function, site.arguments, values, result_address, top);
      if (limit - top <= static_cast<ptrdiff_t>(function->evaluation_depth))
        fail("stack overflow");
      pc = function->code.data();
      base = frames.back().base;
      break;
    }
    case op_return_nothing:
      *++top = 0;
      [[fallthrough]];
    case op_return: {
      uint32_t result_address = frames.back().result_address;
      if (in.operand != 0) {
        std::memmove(memory.at(result_address, in.operand), memory.at(*top, in.operand),
                     in.operand);
        *top = result_address;
      }
      if (program.limits.trace)
        std::fprintf(stderr, "return from %s\n", std::string(running->name).c_str());
      frames.pop_back();
      if (frames.size() == bottom) {
        steps_left = steps;
        return *top;
      }
      running = frames.back().function;
      pc = frames.back().resume;
      base = frames.back().base;
      break;
    }
    case op_trace:
      trace_statement(pc - 1);
      break;
    }
  }
} catch (a_run_error& error) {
  locate(&error, pc);
  throw;
}
