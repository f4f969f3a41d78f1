// Constant folding: calls of builtin functions.

#include <cstring>

#include "const_ints.h"
#include "error.h"
#include "float_pt.h"
#include "folding_int.h"
#include "host_envir.h"
#include "mode_words.h"
#include "sys_predef.h"
#include "target.h"
#include "types.h"

// A call on its way to a value.
struct a_builtin_call {
  a_type* type; // of the result
  an_expr_node* args;
  an_expr_node* call;
  a_constant* result;
  an_error_code* error_code;
};

// ---- Arguments and results ----

static const a_constant* constant_of_node(const an_expr_node* node) {
  return node && node->kind == expr_constant ? node->variant.constant.ptr : nullptr;
}

static const a_constant* integer_argument(const an_expr_node* node) {
  const a_constant* constant = constant_of_node(node);
  bool is_integer =
      constant && constant->kind == con_integer && is_integral_or_enum_type(constant->type);
  return is_integer ? constant : nullptr;
}

static const a_constant* real_argument(const an_expr_node* node) {
  const a_constant* constant = constant_of_node(node);
  return constant && constant->kind == con_float ? constant : nullptr;
}

static int number_of_arguments(const a_builtin_call* call) {
  int count = 0;
  for (const an_expr_node* arg = call->args; arg; arg = arg->next)
    ++count;
  return count;
}

static bool give_integer(uint64_t value, a_builtin_call* call) {
  if (!is_integral_or_enum_type(call->type))
    return false;
  clear_constant(call->result, con_integer);
  call->result->type = call->type;
  call->result->value.int_value = truncate_integer_value(value, int_kind_of(call->type));
  return true;
}

static bool give_float(const a_float_value& value, a_builtin_call* call) {
  if (!is_real_floating_type(call->type))
    return false;
  clear_constant(call->result, con_float);
  call->result->type = call->type;
  call->result->value.float_value = value;
  return true;
}

static bool fail(an_error_code code, a_builtin_call* call) {
  *call->error_code = code;
  return false;
}

// ---- Integers ----

static bool fold_abs(a_builtin_call* call) {
  const a_constant* argument = integer_argument(call->args);
  if (!argument)
    return false;
  bool is_signed = int_constant_is_signed(argument), overflow = false;
  uint64_t value = argument->value.int_value;
  if (cmplit_integer_constant(argument, 0) < 0)
    negate_integer_value(&value, is_signed, &overflow);
  return !overflow && in_range_for_integer_kind(value, is_signed, int_kind_of(call->type)) &&
         give_integer(value, call);
}

// The bits of an integer argument, which has `width` of them.
static bool bits_of_argument(const a_builtin_call* call, uint64_t* bits, int* width) {
  const a_constant* argument = integer_argument(call->args);
  if (!argument)
    return false;
  *width = static_cast<int>(size_of_type(argument->type)) * targ_char_bit;
  *bits = argument->value.int_value & make_integer_value_mask(*width);
  return true;
}

static bool bit_is_set(uint64_t bits, int number) {
  return (bits >> number & 1) != 0;
}

static bool fold_clz(a_builtin_call* call) {
  uint64_t bits;
  int width, count = 0;
  if (!bits_of_argument(call, &bits, &width))
    return false;
  while (count < width && !bit_is_set(bits, width - 1 - count))
    ++count;
  return give_integer(static_cast<uint64_t>(count), call);
}

static int trailing_zeros(uint64_t bits, int width) {
  int count = 0;
  while (count < width && !bit_is_set(bits, count))
    ++count;
  return count;
}

static bool fold_ctz(a_builtin_call* call) {
  uint64_t bits;
  int width;
  return bits_of_argument(call, &bits, &width) &&
         give_integer(static_cast<uint64_t>(trailing_zeros(bits, width)), call);
}

static bool fold_ffs(a_builtin_call* call) {
  uint64_t bits;
  int width;
  if (!bits_of_argument(call, &bits, &width))
    return false;
  int position = bits == 0 ? 0 : trailing_zeros(bits, width) + 1;
  return give_integer(static_cast<uint64_t>(position), call);
}

static int number_of_ones(uint64_t bits, int width) {
  int count = 0;
  for (int i = 0; i < width; ++i)
    count += bit_is_set(bits, i);
  return count;
}

static bool fold_popcount(a_builtin_call* call) {
  uint64_t bits;
  int width;
  return bits_of_argument(call, &bits, &width) &&
         give_integer(static_cast<uint64_t>(number_of_ones(bits, width)), call);
}

static bool fold_parity(a_builtin_call* call) {
  uint64_t bits;
  int width;
  return bits_of_argument(call, &bits, &width) &&
         give_integer(static_cast<uint64_t>(number_of_ones(bits, width) % 2), call);
}

// ---- Floating values ----

static bool fold_fabs(a_builtin_call* call) {
  const a_constant* argument = real_argument(call->args);
  if (!argument)
    return false;
  a_float_value value = argument->value.float_value;
  bool failed;
  if (fp_is_negative(&value))
    fp_negate(float_kind_of(argument->type), &value, &value, &failed);
  return give_float(value, call);
}

static bool fold_huge_val(a_builtin_call* call) {
  a_float_value value;
  if (call->args || !is_real_floating_type(call->type))
    return false;
  make_huge_fp_val(float_kind_of(call->type), &value);
  return give_float(value, call);
}

static bool fold_infinity(a_builtin_call* call) {
  a_float_value value;
  make_fp_infinity(false, &value);
  return !call->args && give_float(value, call);
}

// The bits that the text asks for have no place in the simulated format, which
// has one NaN.
static bool fold_nan(a_builtin_call* call) {
  const a_constant* literal;
  a_boolean error = 0;
  if (!call->args || !expr_is_pointer_to_string_literal(call->args, &literal) ||
      literal->string_char_kind != sck_ordinary)
    return false;
  if (literal->value.string.text[0] != '\0')
    strtoul_interface(literal->value.string.text, &error);
  a_float_value value;
  make_fp_nan(&value);
  return !error && give_float(value, call);
}

// The value of the one argument, which must be real. Null when it isn't known.
static const a_constant* classified_argument(a_builtin_call* call) {
  if (number_of_arguments(call) != 1)
    *call->error_code = ec_call_requires_one_argument;
  else if (!is_real_floating_type(call->args->type))
    *call->error_code = ec_call_requires_floating_point_argument;
  else
    return real_argument(call->args);
  return nullptr;
}

static bool fold_isfinite(a_builtin_call* call) {
  const a_constant* argument = classified_argument(call);
  return argument && give_integer(!fp_is_nan(&argument->value.float_value) &&
                                      !fp_is_infinity(&argument->value.float_value),
                                  call);
}

static bool fold_isinf(a_builtin_call* call) {
  const a_constant* argument = classified_argument(call);
  return argument && give_integer(fp_is_infinity(&argument->value.float_value), call);
}

static bool fold_isnan(a_builtin_call* call) {
  const a_constant* argument = classified_argument(call);
  return argument && give_integer(fp_is_nan(&argument->value.float_value), call);
}

static bool fold_isnormal(a_builtin_call* call) {
  const a_constant* argument = classified_argument(call);
  return argument &&
         give_integer(fp_is_normalized(float_kind_of(argument->type), &argument->value.float_value),
                      call);
}

static bool fold_signbit(a_builtin_call* call) {
  const a_constant* argument = classified_argument(call);
  return argument && !fp_is_nan(&argument->value.float_value) &&
         give_integer(fp_is_negative(&argument->value.float_value), call);
}

// ---- Powers ----

inline constexpr uint64_t greatest_folded_exponent = 255;

static bool whole_exponent(const a_constant* exponent, uint64_t* value) {
  bool failed;
  a_float_value back;
  *value = fp_to_host_large_unsigned(&exponent->value.float_value, &failed);
  if (failed || *value > greatest_folded_exponent)
    return false;
  fp_host_large_unsigned_to_float(fk_double, *value, &back, &failed);
  return f_eq(&back, &exponent->value.float_value);
}

static bool raise_to_power(const a_float_value& base, uint64_t exponent, a_float_value* result) {
  a_float_value square = base;
  bool failed, inexact;
  fp_host_large_unsigned_to_float(fk_double, 1, result, &failed);
  for (;;) {
    if (exponent & 1) {
      fp_multiply(fk_double, result, &square, result, &failed, &inexact);
      if (failed)
        return false;
    }
    exponent >>= 1;
    if (exponent == 0)
      return true;
    fp_multiply(fk_double, &square, &square, &square, &failed, &inexact);
    if (failed)
      return false;
  }
}

static bool fold_pow(a_builtin_call* call) {
  const a_constant* base = real_argument(call->args);
  const a_constant* exponent = base ? real_argument(call->args->next) : nullptr;
  uint64_t power;
  a_float_value value;
  bool overflow, underflow;
  if (!gcc_mode || gnu_version < 30400 || !exponent || !whole_exponent(exponent, &power) ||
      !is_real_floating_type(call->type) || !raise_to_power(base->value.float_value, power, &value))
    return false;
  fp_change_kind(&value, fk_double, &value, float_kind_of(call->type), &overflow, &underflow);
  return !overflow && !underflow && give_float(value, call);
}

// ---- Strings, processors and the rest ----

static bool fold_strlen(a_builtin_call* call) {
  const a_constant* literal;
  if (!in_C_mode() || !call->args || !expr_is_pointer_to_string_literal(call->args, &literal) ||
      literal->string_char_kind != sck_ordinary)
    return false;
  return give_integer(strnlen(literal->value.string.text, literal->value.string.length), call);
}

static bool fold_constant_p(a_builtin_call* call) {
  const a_constant* argument = constant_of_node(call->args);
  return argument && give_integer(1, call);
}

static bool fold_always_lock_free(a_builtin_call* call) {
  const a_constant* size = integer_argument(call->args);
  if (!size)
    return fail(ec_first_arg_must_be_integer_constant, call);
  uint64_t bytes = size->value.int_value;
  return give_integer(bytes == 1 || bytes == 2 || bytes == 4 || bytes == 8, call);
}

static bool fold_is_lock_free(a_builtin_call* call) {
  const a_constant* size = integer_argument(call->args);
  if (!size)
    return false;
  uint64_t bytes = size->value.int_value;
  bool is_free =
      bytes == 1 || bytes == 2 || bytes == 4 || (bytes == 8 && constant_of_node(call->args->next));
  return is_free && give_integer(1, call);
}

static bool check_cpu_name(a_builtin_call* call) {
  const a_constant* literal;
  bool is_literal = call->args && expr_is_pointer_to_string_literal(call->args, &literal);
  return is_literal ? false : fail(ec_call_requires_string_literal, call);
}

static bool check_assume_aligned(a_builtin_call* call) {
  int count = number_of_arguments(call);
  if (count > 3)
    return fail(ec_too_many_arguments, call);
  if (count == 3 && !is_integral_or_enum_type(call->args->next->next->type))
    return fail(ec_3rd_arg_of_assume_aligned_must_be_integral, call);
  return false;
}

static bool check_fpclassify(a_builtin_call* call) {
  const an_expr_node* last = call->args;
  if (number_of_arguments(call) != 6)
    return fail(ec_invalid_builtin_fpclassify_args, call);
  while (last->next)
    last = last->next;
  return is_real_floating_type(last->type) ? false
                                           : fail(ec_bad_final_builtin_fpclassify_arg, call);
}

// ---- The table ----

struct a_builtin_fold {
  const char* name;
  bool (*fold)(a_builtin_call* call); // false: the call stays
};

static const a_builtin_fold builtin_folds[] = {
#define BUILTIN_FOLD(name, how) {name, how},
#include "builtin_folds.def"
#undef BUILTIN_FOLD
};

static const a_routine* original_routine(const a_routine* routine) {
  while (routine->gnu_supplement && routine->gnu_supplement->alias_routine)
    routine = routine->gnu_supplement->alias_routine;
  return routine;
}

static const a_builtin_fold* fold_of_routine(const a_routine* routine) {
  routine = original_routine(routine);
  if (!is_gnu_builtin_function(routine) || !routine->source_corresp.name)
    return nullptr;
  for (const a_builtin_fold& row : builtin_folds)
    if (strcmp(row.name, routine->source_corresp.name) == 0)
      return &row;
  return nullptr;
}

// Codes of the functions whose arguments aren't scanned as those of a call.
static bool has_special_syntax(int64_t code) {
  enum { code_classify_type = 379, code_constant_p = 398, code_va_form = 3648 };
  enum { first_va_code = 3824, last_va_code = 3849 };
  return code == code_classify_type || code == code_constant_p || code == code_va_form ||
         (code >= first_va_code && code <= last_va_code);
}

bool is_foldable_gnu_builtin_function(const a_routine* routine, bool* special_syntax) {
  *special_syntax = has_special_syntax(builtin_code_of(original_routine(routine)));
  return *special_syntax || fold_of_routine(routine);
}

static bool is_dependent_argument(const an_expr_node* arg) {
  const a_constant* constant = constant_of_node(arg);
  return (constant && constant->kind == con_template_param) ||
         is_template_dependent_type(arg->type);
}

// *all_constant: the call has a value once the template arguments are known.
static bool depends_on_template_arguments(const an_expr_node* args, bool* all_constant) {
  bool is_dependent = false;
  *all_constant = true;
  for (const an_expr_node* arg = args; arg; arg = arg->next) {
    is_dependent |= is_dependent_argument(arg);
    *all_constant &= constant_of_node(arg) != nullptr;
  }
  return is_dependent;
}

bool fold_gnu_builtin_function_call_if_possible(const a_routine* routine, an_expr_node* args,
                                                an_expr_node* call, a_constant* result,
                                                an_error_code* error_code) {
  const a_builtin_fold* row = fold_of_routine(routine);
  *error_code = 0;
  if (!row)
    return false;
  a_builtin_call folded = {return_type_of(skip_typerefs(routine->type)), args, call, result,
                           error_code};
  bool all_constant;
  if (depends_on_template_arguments(args, &all_constant)) {
    if (all_constant)
      make_template_param_expr_constant(call, result);
    return all_constant;
  }
  if (!row->fold(&folded))
    return false;
  result->position = call->position;
  return true;
}
