// The interpreter of the intermediate file. A program (ifrun_load.cpp) is a
// file that was laid out in the simulated memory (ifrun_memory.cpp); its
// functions are compiled to a compact stack code when they are first called
// (ifrun_compile*.cpp), which the machine runs (ifrun_exec.cpp). Functions
// that the file doesn't define come from a small library (ifrun_native.cpp).
//
// Data stand in memory as on the target: little-endian, sizes and offsets from
// the type records. On the evaluation stack a whole scalar is its value, sign-
// or zero-extended to 64 bits as its type tells; a floating one is the bits of
// the double that it equals; a structure or an array is its address. A pointer
// to a function is the function's number, from 1.

#ifndef IFRUN_INT_H
#define IFRUN_INT_H

#include <bit>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ifread.h"
#include "ifrun.h"

// Exit statuses of ifrun itself.
inline constexpr int ifrun_status_steps = 124;
inline constexpr int ifrun_status_error = 125;
inline constexpr int ifrun_status_abort = 134;

// Ends the run with a message. `place` tells the function, the line and the
// record, once they are known.
struct a_run_error {
  std::string message;
  int status = ifrun_status_error;
  std::string place = {};
};

// Ends the run as the program wishes; at once: without what atexit was given.
struct a_program_exit {
  int status;
  bool at_once = false;
};

// -- Scalars -------------------------------------------------------------------

// Bit 0: signed; bits 1 and 2: the binary logarithm of the size in bytes; bit
// 4: a floating value.
enum a_scalar_kind : uint8_t {
  k_u8,
  k_s8,
  k_u16,
  k_s16,
  k_u32,
  k_s32,
  k_u64,
  k_s64,
  k_f32 = 0x14,
  k_f64 = 0x16
};

inline constexpr a_scalar_kind k_data_pointer = k_u32;
inline constexpr a_scalar_kind k_function_pointer = k_u16;

inline constexpr unsigned size_of_kind(uint8_t kind) {
  return 1u << (kind >> 1 & 3);
}

inline constexpr bool is_floating_kind(uint8_t kind) {
  return kind >= k_f32;
}

inline double double_of(uint64_t value) {
  return std::bit_cast<double>(value);
}
inline uint64_t bits_of(double value) {
  return std::bit_cast<uint64_t>(value);
}
// Rounded to the precision of a floating kind.
inline uint64_t round_to_kind(double value, uint8_t kind) {
  return bits_of(kind == k_f32 ? static_cast<double>(static_cast<float>(value)) : value);
}
// A value of the kind `from`, converted (C99 6.3.1.4, 6.3.1.5). A floating one
// becomes an int on the way to smaller types, and a long long on the way to an
// unsigned int; one that doesn't fit becomes the smallest of these.
uint64_t convert_value(uint64_t value, uint8_t from, uint8_t to);

// The value as a scalar of the kind, which is whole, has it.
inline uint64_t wrap_to_kind(uint64_t value, uint8_t kind) {
  unsigned shift = 64 - 8 * size_of_kind(kind);
  value <<= shift;
  return kind & 1 ? static_cast<uint64_t>(static_cast<int64_t>(value) >> shift) : value >> shift;
}

// How values of a type are held.
struct a_value_type {
  a_scalar_kind kind = k_s64;
  bool is_bool = false; // a conversion to it tests for 0
};

inline bool is_aggregate(const an_if_type* type) {
  return type != nullptr && (type->stripped()->is_csu() || type->stripped()->kind == iftk_array);
}
inline bool is_function(const an_if_type* type) {
  return type != nullptr && type->stripped()->kind == iftk_function;
}
inline uint64_t byte_size(const an_if_type* type) {
  return type->size / 8;
}

// The bytes that hold a bit field of `width` bits from bit `bit` on.
inline unsigned bytes_of_bits(unsigned bit, unsigned width) {
  return (bit + width + 7) / 8;
}

// -- Memory --------------------------------------------------------------------

// The simulated memory: an unmapped null page, the static data, the stack, and
// the heap, which grows at the end. Host addresses stay good: the host reserves
// the room for all of it at once.
class a_memory {
public:
  static constexpr uint32_t null_page_size = 0x1000;

  explicit a_memory(const a_run_limits& limits);
  a_memory(const a_memory&) = delete;
  a_memory& operator=(const a_memory&) = delete;
  ~a_memory();

  // The host address of `size` bytes; throws for a bad address.
  uint8_t* at(uint64_t address, uint64_t size) {
    uint64_t index = address - null_page_size;
    if (size > used || index > used - size)
      bad_address(address);
    return bytes + index;
  }
  uint64_t load(uint64_t address, uint8_t kind);
  void store(uint64_t address, uint8_t kind, uint64_t value);
  // Bit fields: `width` bits from bit `bit`, 0 the lowest, of the byte on.
  uint64_t load_bits(uint64_t address, unsigned bit, unsigned width, bool is_signed);
  void store_bits(uint64_t address, unsigned bit, unsigned width, uint64_t value);
  // The text at an address, up to its NUL or `limit` bytes.
  std::string_view text(uint64_t address, uint64_t limit = UINT64_MAX);

  // Static data, zero; before the stack is made.
  uint32_t add_static(uint64_t size);
  // Text that is in memory once, with a NUL behind it. Goes to the heap once
  // the stack is made.
  uint32_t add_text(std::string_view content);
  void make_stack();
  uint32_t stack_begin() const {
    return stack_start;
  }
  uint32_t stack_end() const {
    return stack_start + stack_size;
  }
  const uint32_t stack_size;

  // The heap. Its bookkeeping lies outside of the simulated memory.
  uint32_t allocate(uint64_t size); // 0 when there is no room
  void release(uint32_t address);
  // The size that was asked for; a bad address is refused.
  uint64_t live_size(uint32_t address) const;
  uint32_t reallocate(uint32_t address, uint64_t size);

private:
  [[noreturn]] static void bad_address(uint64_t address);
  uint32_t end() const {
    return null_page_size + static_cast<uint32_t>(used);
  }
  static constexpr uint64_t data_limit = 256u << 20;

  const uint64_t heap_limit;
  const uint64_t reserved;
  uint8_t* bytes;
  uint64_t used = 0;
  uint32_t stack_start = 0;
  uint64_t heap_used = 0;
  std::unordered_map<uint32_t, uint64_t> live;            // sizes of what is allocated
  std::map<uint64_t, std::vector<uint32_t>> free_by_size; // rounded sizes
  std::unordered_map<std::string, uint32_t> texts;
};

// -- Code ----------------------------------------------------------------------

enum an_operation : uint16_t {
  op_const,     // push value
  op_local,     // push the address of the frame's byte `operand`
  op_load,      // address -> value of the kind
  op_load_s32,  // the same for the kind s32
  op_load_u8,   // the same for the kind u8
  op_load_word, // load from the frame's byte `operand`, kind s32
  op_load_local,
  op_store, // address, value -> value
  op_store_pop,
  op_load_bits, // bit, operand: the width; kind: the signedness
  op_store_bits,
  op_post_add,      // address, step -> the value before the step was added;
  op_post_add_bits, // value: whether the place is a bool
  op_post_add_float,
  op_copy,         // target, source -> target; operand: bytes
  op_copy_counted, // target, source, bytes -> target
  op_wrap,
  op_wrap_below, // wraps the value below the uppermost
  op_convert,    // from the kind `bit` to `kind`, one of them floating
  op_to_bool,
  op_float_to_bool,
  op_add,
  op_sub,
  op_mul,
  op_div,
  op_mod,
  op_shl,
  op_shr,
  op_and,
  op_or,
  op_xor,
  op_neg,
  op_complement,
  op_not,
  op_abs,
  op_eq,
  op_ne,
  op_lt,
  op_le,
  op_gt,
  op_ge,
  op_ult,
  op_ule,
  op_ugt,
  op_uge,
  op_float_add,
  op_float_sub,
  op_float_mul,
  op_float_div,
  op_float_neg,
  op_float_abs,
  op_float_sqrt,
  op_float_eq,
  op_float_ne, // false of values without an order
  op_float_lt,
  op_float_le,
  op_float_gt,
  op_float_ge,
  op_float_ordered,
  op_jump, // operand: the instruction
  op_jump_false,
  op_jump_true,
  op_dup,
  op_over, // pushes the value below the uppermost again
  op_swap,
  op_pop,
  op_call,          // operand: the call site; arguments -> result
  op_call_indirect, // the function's number lies below the arguments
  op_return,        // value; operand: bytes of a structure, else 0
  op_return_nothing,
  op_switch, // operand: the table
  op_trace   // shows the statement, when the run is traced
};

struct an_instruction {
  an_operation op;
  uint8_t kind = 0;
  uint8_t bit = 0;
  uint32_t operand = 0;
  uint64_t value = 0;
};

// The targets of a switch by value, in ascending order.
struct a_switch_table {
  std::vector<std::pair<int64_t, uint32_t>> cases;
  uint32_t default_target = 0;
};

struct an_argument {
  a_value_type type;
  uint64_t size = 0; // bytes
  bool by_copy = false;
};

struct a_call_site {
  uint32_t function = 0; // of a direct call
  std::vector<an_argument> arguments;
  a_value_type result;
  uint32_t result_offset = 0; // where the frame has room for a structure
};

class a_machine;
struct a_native_call;
using a_native = uint64_t (*)(a_machine&, const a_native_call&);

struct a_parameter {
  uint32_t offset; // in the frame
  a_scalar_kind kind;
  uint64_t size; // bytes
  bool is_aggregate;
};

struct a_function {
  std::string_view name;
  const an_if_function* source = nullptr; // null: native or undefined
  a_native native = nullptr;
  bool compiled = false;
  bool has_ellipsis = false;
  std::vector<an_instruction> code;
  std::vector<a_call_site> call_sites;
  std::vector<a_switch_table> switches;
  std::vector<a_parameter> parameters;
  // Variable arguments stand behind the frame, where the last parameter's slot
  // ends, each in a slot of its own.
  uint32_t frame_size = 0;
  uint32_t evaluation_depth = 0;
  // The first instruction of each statement that has some.
  std::vector<std::pair<uint32_t, const an_if_statement*>> statement_starts;

  // The statement that the instruction belongs to, or null.
  const an_if_statement* statement_at(const an_instruction* instruction) const;
};

// Arguments from the last named one on stand in slots of this many bytes.
inline constexpr uint64_t slot_size = 4;
inline uint64_t in_slots(uint64_t size) {
  return (size + slot_size - 1) & ~(slot_size - 1);
}

// -- Programs ------------------------------------------------------------------

struct a_program {
  a_program(const an_if_file& source, const a_run_limits& run_limits)
      : file(source), limits(run_limits), memory(run_limits) {}
  const an_if_file& file;
  const a_run_limits& limits;
  a_memory memory;
  std::deque<a_function> functions;                    // by number - 1
  std::unordered_map<uint32_t, uint32_t> function_ids; // by global symbol
  std::unordered_map<uint32_t, uint32_t> addresses;    // of variables, by global symbol

  a_function& function_of(uint32_t id) {
    return functions[id - 1];
  }
};

// Lays out the file's data and numbers its functions.
void lay_out_program(a_program* program);
// Runs the initialisers; the stack is there.
void initialize_data(a_program* program, a_machine* machine);

// Compiles a function, or an expression, to `function`.
void compile_function(a_program* program, a_function* function);
void compile_expression(a_program* program, const an_if_node* node, const an_if_type* type,
                        a_function* function);
// How a type's values are held; refuses the types that aren't supported.
a_value_type value_type_of(const an_if_type* type);

// Where in the file a statement of the function is, as messages tell it; the
// statement may be null.
std::string place_text(const an_if_file& file, const a_function& function,
                       const an_if_statement* statement);

// A library function, or null; ifrun_native_math.cpp has those of <math.h>.
a_native find_native(std::string_view name);
a_native find_math_native(std::string_view name);
a_native find_complex_native(std::string_view name);
// Makes a variable of the library's; 0 when it has none of that name.
uint32_t make_native_variable(a_memory* memory, std::string_view name);

struct a_native_call {
  std::string_view name;
  const uint64_t* values;
  const std::vector<an_argument>& arguments;
  uint32_t result_address = 0; // room for a structure that is the result

  // The value of an argument as the kind has it.
  uint64_t value(size_t number, a_scalar_kind kind) const;
  double floating(size_t number) const {
    return double_of(value(number, k_f64));
  }
};

// A point that longjmp can go back to.
struct a_saved_context {
  uint32_t buffer = 0; // the jmp_buf
  size_t depth = 0;    // of the frames
  uint64_t serial = 0; // of the uppermost one
  const an_instruction* resume = nullptr;
  std::vector<uint64_t> values; // of its part of the evaluation stack
};

// Unwinds the host's calls up to the run that has the context's frame.
struct a_long_jump {
  const a_saved_context* context;
  uint64_t value;
};

class a_machine {
public:
  explicit a_machine(a_program* simulated)
      : program(*simulated), memory(simulated->memory), steps_left(simulated->limits.max_steps) {}

  // Calls a function with word arguments and gives its result; also from
  // within a library function.
  uint64_t call(a_function* function, const std::vector<uint64_t>& arguments);
  // The function with the number, which a pointer has.
  a_function* callee(uint64_t id);
  // Room in the frame of the function that called the library.
  uint32_t allocate_in_frame(uint64_t size);
  // The same for the array whose address is kept at `place`.
  uint32_t allocate_array(uint32_t place, uint64_t size);
  // Gives the array back, and what was allocated in the frame since.
  void release_array(uint32_t place);
  // setjmp and longjmp (C99 7.13).
  void save_context(uint32_t buffer, const uint64_t* values_end);
  [[noreturn]] void restore_context(uint32_t buffer, uint64_t value);
  // Forgets all calls, after the program's end.
  void abandon_calls() {
    frames.clear();
    running = nullptr;
    nesting = 0;
    values_in_use = evaluation_stack.data();
  }

  a_program& program;
  a_memory& memory;
  std::vector<uint32_t> exit_functions; // of atexit, by number
  uint32_t errno_address = 0;           // 0: not made yet
  uint32_t ctype_address = 0;           // of the table of characters; 0: not made yet
  std::map<uint32_t, FILE*> streams;    // that the program opened, by handle

private:
  struct a_frame {
    a_function* function;
    const an_instruction* resume;
    uint32_t base;
    uint32_t top; // the end of the frame in the stack
    uint32_t result_address;
    uint64_t serial;
    uint64_t* values; // where its part of the evaluation stack begins
  };

  void enter(a_function* function, const std::vector<an_argument>& arguments,
             const uint64_t* values, uint32_t result_address, uint64_t* top);
  uint64_t call_native(a_function* function, const a_call_site& site, const uint64_t* values,
                       uint32_t result_address);
  uint64_t run();
  uint64_t run_code(const an_instruction* pc, uint64_t* top, size_t bottom);
  void locate(a_run_error* error, const an_instruction* pc) const;
  void trace_statement(const an_instruction* pc) const;
  void trace_call(const a_function* function, const std::vector<an_argument>& arguments,
                  const uint64_t* values) const;
  [[noreturn]] void fail(std::string message, int status = ifrun_status_error) const;

  uint64_t steps_left;
  a_function* running = nullptr;
  std::string_view native_name; // of the library function that is called
  std::vector<a_frame> frames;
  uint64_t next_serial = 1;
  unsigned nesting = 0; // of runs within library functions
  std::vector<uint64_t> evaluation_stack;
  uint64_t* values_in_use = nullptr;    // the uppermost value, while the library runs
  std::deque<a_saved_context> contexts; // by number - 1
  // The arrays of variable length by the place of their address: the frame's
  // serial and the array's address.
  std::unordered_map<uint32_t, std::pair<uint64_t, uint32_t>> arrays;
};

#endif
