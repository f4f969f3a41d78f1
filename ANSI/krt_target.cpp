// What this processor can do with a call of an intrinsic function.

#include "krt_target.h"

#include "error.h"
#include "il.h"
#include "il_constants.h"
#include "il_entities.h"
#include "il_expr.h"
#include "mode_words.h"
#include "types.h"

#include <string>

TARGET* target = new KRT_TARGET;

namespace {

// Codes of builtin functions.
constexpr int64_t code_symval = 3868;
constexpr int64_t code_xin = 3872, code_sxchg = 3877;
constexpr int64_t code_delay_cycles = 3884;

const a_routine* callee_of(const an_expr_node* call) {
  const an_expr_node* callee = call->variant.operation.operands;
  while (is_operation_node(callee, eok_address_of))
    callee = callee->variant.operation.operands;
  return callee->variant.routine.ptr;
}

an_expr_node* argument_of(const an_expr_node* call, int n) {
  an_expr_node* argument = call->variant.operation.operands->next;
  while (--n > 0 && argument != nullptr)
    argument = argument->next;
  return argument;
}

const a_source_position* position_of_argument(const an_expr_node* call,
                                              const an_expr_node* argument) {
  return argument != nullptr && argument->position.seq != 0 ? &argument->position : &call->position;
}

const a_constant* integer_constant_of(const an_expr_node* argument) {
  if (argument == nullptr || argument->kind != expr_constant)
    return nullptr;
  const a_constant* constant = argument->variant.constant.ptr;
  return constant->kind == con_integer ? constant : nullptr;
}

} // namespace

bool check_ucst(const an_expr_node* call, int n, uint64_t max, uint64_t multiple) {
  const an_expr_node* argument = argument_of(call, n);
  const a_source_position* position = position_of_argument(call, argument);
  const a_constant* constant = integer_constant_of(argument);
  if (constant == nullptr) {
    pos_error(ec_exp_int_constant, position);
    return false;
  }
  if (constant->value.int_value > max) {
    pos_error(ec_integer_too_large, position);
    return false;
  }
  if (constant->value.int_value % multiple != 0) {
    pos_st_error(ec_integer_not_multiple, position, std::to_string(multiple).c_str());
    return false;
  }
  return true;
}

bool issue_error_for_non_immediate_arg(const an_expr_node* call, const an_expr_node* argument) {
  if (integer_constant_of(argument) != nullptr)
    return true;
  pos_error(ec_exp_int_constant, position_of_argument(call, argument));
  return false;
}

// ---- _symval ----

static bool names_a_symbol(const an_expr_node* argument) {
  for (; argument != nullptr; argument = argument->variant.operation.operands) {
    if (is_operation_node(argument, eok_array_to_pointer))
      return true;
    if (!is_operation_node(argument, eok_cast) && !is_operation_node(argument, eok_address_of))
      break;
  }
  if (argument == nullptr)
    return false;
  if (argument->kind == expr_constant) {
    const a_constant* constant = argument->variant.constant.ptr;
    const an_address_value& address = constant->value.address;
    return constant->kind == con_address && address.offset == 0 &&
           (address.base_kind == abk_routine || address.base_kind == abk_variable);
  }
  return argument->kind == expr_variable || argument->kind == expr_routine;
}

bool TARGET::ok_to_dump_as_builtin(an_expr_node* call, a_scope*) {
  if (callee_of(call)->special_data.builtin_code != code_symval ||
      names_a_symbol(argument_of(call, 1)))
    return true;
  pos_error(ec_symval_bad_arg, &call->position);
  return false;
}

// ---- Transfers between memory and the registers of another device ----

constexpr uint64_t max_transfer_size = 45; // bytes, exclusive
constexpr uint64_t num_registers = 32;
constexpr uint64_t stack_pointer = 2;

// The size in bytes of the object whose address an argument is.
static uint64_t transferred_size(const a_type* object) {
  if (gcc_mode && (is_void_type(object) || is_function_type(object)))
    return 1;
  return size_of_type(object);
}

static void report_large_object(const an_expr_node* call, const a_type* object, uint64_t size) {
  const std::string digits = std::to_string(size);
  pos_st2ty_error(ec_krt_intrinsic_param_too_big, &call->position,
                  callee_of(call)->source_corresp.name, digits.c_str(), object);
}

static void check_registers(const an_expr_node* call, uint64_t base, uint64_t size) {
  const uint64_t last = base + size / 4;
  const a_constant* remap = integer_constant_of(argument_of(call, 3));
  if (last >= num_registers)
    pos_st2_error(ec_krt_xfer_reg_out_of_range, &call->position, std::to_string(base).c_str(),
                  std::to_string(size).c_str());
  if (last > stack_pointer && base <= stack_pointer && remap != nullptr &&
      remap->value.int_value == 0)
    pos_error(ec_krt_xfer_cannot_use_sp, &call->position);
}

// The arguments are the device, the first register, whether registers are
// remapped, and the object.
static void check_transfer(const an_expr_node* call) {
  constexpr uint64_t max_device = 255;
  const an_expr_node* object = argument_of(call, 4);
  uint64_t size = 0;
  if (object != nullptr && is_pointer_type(object->type)) {
    const a_type* type = type_pointed_to(object->type);
    size = transferred_size(type);
    if (size >= max_transfer_size)
      report_large_object(call, type, size);
  }
  check_ucst(call, 1, max_device, 1);
  issue_error_for_non_immediate_arg(call, argument_of(call, 3));
  if (check_ucst(call, 2, num_registers - 1, 1))
    check_registers(call, integer_constant_of(argument_of(call, 2))->value.int_value, size);
}

bool KRT_TARGET::ok_to_dump_as_builtin(an_expr_node* call, a_scope* function) {
  constexpr uint64_t max_delay = 0xFFFFFFFF;
  const int64_t code = callee_of(call)->special_data.builtin_code;
  if (code >= code_xin && code <= code_sxchg) {
    check_transfer(call);
    return true;
  }
  if (code == code_delay_cycles)
    return check_ucst(call, 1, max_delay, 1);
  return TARGET::ok_to_dump_as_builtin(call, function);
}
