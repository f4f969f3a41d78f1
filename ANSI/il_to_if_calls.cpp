// Calls: of functions, and of the builtins that the next pass knows.

#include <cstring>

#include "error.h"
#include "il_to_if_int.h"
#include "krt_target.h"
#include "mode_words.h"
#include "sys_predef.h"
#include "target.h"

namespace {

constexpr int64_t first_target_builtin = 3851, last_target_builtin = 3884;

// The builtins with a node of their own.
struct a_builtin_opcode {
  int64_t code;
  an_if_opcode opcode;
};

constexpr a_builtin_opcode builtin_opcodes[] = {
    {159, ifop_ABS},      // __builtin_abs
    {3461, ifop_ABS},     // __builtin_labs
    {3515, ifop_MEMCPY},  // __builtin_memcpy
    {3851, ifop_ABS},     // abs
    {3852, ifop_ABS},     // labs
    {3856, ifop_ASSERT},  // _assert
    {3857, ifop_NASSERT}, // _nassert
    {3859, ifop_SQRT},    // __sqrtf
    {3864, ifop_MEMCPY},  // memcpy
};
constexpr int64_t code_expect = 475;
constexpr int64_t code_frame_address = 520, code_return_address = 3591;

a_routine* called_routine(const an_expr_node* call) {
  const an_expr_node* callee = call->variant.operation.operands;
  while (is_operation_node(callee, eok_address_of))
    callee = callee->variant.operation.operands;
  return callee->kind == expr_routine ? callee->variant.routine.ptr : nullptr;
}

bool is_target_builtin(int64_t code) {
  return code >= first_target_builtin && code <= last_target_builtin;
}

const a_type* callee_type(const an_expr_node* callee) {
  const a_type* type = f_skip_typerefs(callee->type);
  return type->kind == tk_pointer ? f_skip_typerefs(type_pointed_to(type)) : type;
}

size_t list_length(const an_expr_node* list) {
  size_t count = 0;
  for (; list != nullptr; list = list->next)
    count++;
  return count;
}

bool has_attribute(const a_param_type* param, const char* name) {
  for (const an_attribute* a = param == nullptr ? nullptr : param->attributes; a != nullptr;
       a = a->next)
    if (a->kind != 0 && a->name != nullptr && strcmp(a->name, name) == 0)
      return true;
  return false;
}

// ---- Builtins ----

// An argument of a builtin that reads or writes memory: the object goes, not
// its address.
an_expr_node* gen_memory_argument_prefix(an_expr_node* argument, const a_param_type* param) {
  bool is_pointer = is_pointer_type(argument->type);
  if (has_attribute(param, "memwrite") && is_pointer)
    gen_node(ifop_ARGREF, argument->type);
  if ((has_attribute(param, "memread") || has_attribute(param, "memwrite")) && is_pointer) {
    gen_node(ifop_UMULT, type_pointed_to(argument->type));
  } else if (param != nullptr && is_reference_type(param->type)) {
    gen_node(ifop_ARGREF, argument->type);
    if (is_operation_node(argument, eok_address_of))
      return argument->variant.operation.operands;
    if (is_pointer)
      gen_node(ifop_UMULT, type_pointed_to(argument->type));
  }
  return argument;
}

void gen_pure_argument_prefix(const an_expr_node* argument, a_param_type* param) {
  for (an_attribute* a = param == nullptr ? nullptr : param->attributes; a != nullptr;
       a = a->next) {
    if (a->kind == 0 || a->name == nullptr || strcmp(a->name, "memwrite") != 0)
      continue;
    pos_st_error(ec_wrong_entity_for_attribute, &a->position, a->name);
    a->kind = 0;
  }
  if (has_attribute(param, "memread") && is_pointer_type(argument->type))
    gen_node(ifop_UMULT, type_pointed_to(argument->type));
  if (is_class_object(argument->type) && is_struct_vector_type(argument->type))
    gen_node(ifop_STARG, argument->type);
}

void gen_builtin_arguments(const a_routine* routine, an_expr_node* arguments) {
  size_t count = list_length(arguments);
  gen_void_nodes(ifop_COMMA, count == 0 ? 0 : count - 1);
  a_param_type* param = param_types_of(f_skip_typerefs(routine->type));
  for (an_expr_node* argument = arguments; argument != nullptr; argument = argument->next) {
    an_expr_node* value = argument;
    if (routine->impure)
      value = gen_memory_argument_prefix(argument, param);
    else
      gen_pure_argument_prefix(argument, param);
    gen_expr(value);
    param = param == nullptr ? nullptr : param->next;
  }
}

void gen_node_of_builtin(const a_routine* routine, const an_expr_node* call, an_if_opcode opcode) {
  gen_node(opcode, call->type);
  gen_builtin_arguments(routine, call->variant.operation.operands->next);
}

// A builtin that the next pass knows by its name.
void gen_call_by_name(const a_routine* routine, const an_expr_node* call) {
  const a_source_correspondence& head = routine->source_corresp;
  const char* name = TRG_fname_transform(head.name_is_lowered ? head.source_name : head.name);
  bool has_arguments = call->variant.operation.operands->next != nullptr;
  an_if_opcode opcode = routine->impure ? has_arguments ? ifop_MCALL : ifop_UMCALL
                        : has_arguments ? ifop_ICALL
                                        : ifop_UICALL;
  NODE node(opcode, tp_type(call->type, tpm_lowered));
  node.value.text = name;
  node.length = static_cast<uint32_t>(strlen(name));
  gen_file->if_write_expr_node(&node);
  gen_builtin_arguments(routine, call->variant.operation.operands->next);
}

// __builtin_frame_address and its like have no value on this processor: the
// argument is evaluated, and the result is 0.
void gen_zero_behind(an_expr_node* argument) {
  an_expr_node* copy = copy_node(argument);
  copy->next = nullptr;
  gen_expr(make_comma_node(copy, node_for_integer_constant(0, ik_int)));
}

// A function called by its name needs no address.
void gen_callee(a_routine* routine, an_expr_node* callee) {
  if (routine == nullptr)
    return gen_expr(callee);
  hooks->expression(callee);
  gen_name(routine->type, referenced_routine_symbol(routine));
}

// A builtin that is called as a function, with the arguments of a builtin.
void gen_real_call(a_routine* routine, const an_expr_node* call) {
  an_expr_node* callee = call->variant.operation.operands;
  gen_node(callee->next == nullptr ? ifop_UCALL : ifop_CALL, call->type);
  gen_callee(routine, callee);
  gen_builtin_arguments(routine, callee->next);
}

// Whether an ordinary call of the builtin calls a function of the library, which
// its row names.
bool is_builtin_of_library(const a_routine* routine) {
  return routine->gnu_supplement != nullptr && routine->gnu_supplement->asm_name != nullptr;
}

// True when the call was written.
bool gen_builtin_call(a_routine* routine, an_expr_node* call) {
  int64_t code = builtin_code_of(routine);
  an_expr_node* arguments = call->variant.operation.operands->next;
  for (const a_builtin_opcode& row : builtin_opcodes) {
    if (row.code != code)
      continue;
    gen_node_of_builtin(routine, call, row.opcode);
    return true;
  }
  if (is_target_builtin(code)) {
    if (routine->real_call)
      gen_real_call(routine, call);
    else
      gen_call_by_name(routine, call);
    return true;
  }
  switch (code) {
  case code_expect:
    gen_expr(arguments);
    break;
  case code_frame_address:
  case code_return_address:
    gen_zero_behind(arguments);
    break;
  default:
    if (is_builtin_of_library(routine))
      return false;
    pos_st_error(ec_gcc_builtin_not_supported, &call->position, routine->source_corresp.name);
    break;
  }
  return true;
}

// ---- Pointers of word-mode functions ----

// Whether a function that works in word mode is called from byte mode: its
// pointers count words.
bool counts_words(const a_routine* routine) {
  if (!targ_byte_mode || routine == nullptr || !routine->source_corresp.has_associated_pragma)
    return false;
  for (const a_pragma* pragma : assoc_pragmas(routine))
    if (pragma->tool_kind == ifpk_WORD_MODE_FUNC)
      return true;
  return false;
}

bool is_shifted_pointer(const a_type* type) {
  return is_pointer_type(type) && !is_pointer_to_function_type(type);
}

// The shift of a pointer, which follows, by the count behind it.
void gen_pointer_shift(an_if_opcode opcode, a_type* pointer) {
  a_type* integer = integer_type_of_pointer(type_pointed_to(pointer));
  gen_conversion_if_needed(integer, pointer);
  gen_node(opcode, integer);
  gen_conversion_if_needed(pointer, integer);
}

void gen_shift_count() {
  gen_lcon(integer_type(ik_int), 1);
}

// ---- Ordinary calls ----

// The number of arguments from the last named one on, when the function takes
// a variable number.
uint32_t variable_argument_count(const a_type* function, size_t arguments) {
  size_t params = 0;
  if (!function->variant.routine.routine_supplement->has_ellipsis)
    return 0;
  for (const a_param_type* param = param_types_of(function); param != nullptr; param = param->next)
    params++;
  return params == 0 || arguments + 1 < params ? 0 : static_cast<uint32_t>(arguments - params + 1);
}

void gen_argument_value(an_expr_node* argument) {
  if (!is_operation_node(argument, eok_cast))
    return gen_expr(argument);
  an_expr_node* operand = argument->variant.operation.operands;
  check_int_portability(operand, argument->type);
  if (!identical_types(operand->type, argument->type))
    gen_node(type_kind(argument->type) == tk_pointer ? ifop_PCONV : ifop_ACONV, argument->type);
  gen_expr(operand);
}

void gen_argument(an_expr_node* argument, bool callee_counts_words) {
  bool is_by_ref = is_passed_by_ref_type(argument->type);
  a_type* passed_type = is_by_ref ? make_pointer_type(argument->type) : argument->type;
  bool is_shifted = callee_counts_words && is_shifted_pointer(passed_type);
  if (is_shifted)
    gen_pointer_shift(ifop_SRL, passed_type);
  if (is_by_ref)
    gen_node(ifop_ARGREF, passed_type);
  else if (is_class_object(argument->type))
    gen_node(ifop_STARG, argument->type);
  gen_argument_value(argument);
  if (is_shifted)
    gen_shift_count();
}

void gen_ordinary_call(a_routine* routine, an_expr_node* call) {
  an_expr_node* callee = call->variant.operation.operands;
  an_expr_node* arguments = callee->next;
  size_t count = list_length(arguments);
  bool callee_counts_words = counts_words(routine);
  bool is_shifted = callee_counts_words && is_shifted_pointer(call->type);
  if (is_shifted)
    gen_pointer_shift(ifop_SLL, call->type);
  NODE node(arguments == nullptr ? ifop_UCALL : ifop_CALL, tp_type(call->type, tpm_lowered));
  if (arguments != nullptr)
    node.value.integer = variable_argument_count(callee_type(callee), count);
  gen_file->if_write_expr_node(&node);
  gen_callee(routine, callee);
  gen_void_nodes(ifop_COMMA, count == 0 ? 0 : count - 1);
  for (an_expr_node* argument = arguments; argument != nullptr; argument = argument->next)
    gen_argument(argument, callee_counts_words);
  if (is_shifted)
    gen_shift_count();
  hooks->function_call(call);
}

} // namespace

void gen_call(an_expr_node* call) {
  a_routine* routine = called_routine(call);
  // Nothing unwinds through main.
  if (routine != nullptr && gen_function_scope != nullptr &&
      routine->source_corresp.name != nullptr && strcmp(routine->source_corresp.name, "main") == 0)
    gen_function_scope->assoc.routine->file_symbol->add_pragma(ifpk_FUNC_EXCEPTIONS_NOUNWIND);
  if (is_gnu_builtin_function(routine) && !target->ok_to_dump_as_builtin(call, gen_function_scope))
    routine->special_data.builtin_code = 0;
  if (is_gnu_builtin_function(routine) && gen_builtin_call(routine, call))
    return;
  gen_ordinary_call(routine, call);
}
