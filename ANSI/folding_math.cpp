#include "folding_math.h"

#include <cstring>
#include <string_view>
#include <unordered_map>

#include "il.h"
#include "il_expr.h"
#include "lookup.h"
#include "mode_words.h"
#include "stack_limit.h"
#include "symbol_ref.h"
#include "symbol_tbl.h"
#include "target.h"
#include "types.h"

// ---- The names ----

using a_name_map = std::unordered_map<std::string_view, const char*>;

static a_name_map make_name_map() {
  a_name_map map;
#define MATH_FUNCTION(name) map[#name] = #name "f";
#define MATH_FUNCTION_WFU(name, fast)                                                              \
  if (const char* wfu_name = targ_wfu_support ? fast : #name "f")                                  \
    map[#name] = wfu_name;
#include "math_functions.def"
#undef MATH_FUNCTION
#undef MATH_FUNCTION_WFU
  return map;
}

const char* MATH_FUNCTIONS_MAP::lookup_function(const char* name) {
  static const a_name_map map = make_name_map();
  auto entry = map.find(name);
  return entry == map.end() ? nullptr : entry->second;
}

// ---- What may be replaced ----

static bool is_of_kind(const a_type* type, a_float_kind kind) {
  type = f_skip_typerefs(type);
  return type->kind == tk_float && type->variant.float_kind == kind;
}

static a_symbol* declared_routine(const char* name) {
  a_symbol_locator locator = cleared_locator;
  find_symbol_header(name, strlen(name), &locator);
  a_symbol* symbol = file_scope_id_lookup(il_header.primary_scope, &locator, ilo_none);
  return symbol && symbol->kind == symk_routine ? symbol : nullptr;
}

static bool return_types_agree(a_type* old_type, a_type* new_type, const a_type* used_as) {
  return types_are_compatible(old_type, new_type) ||
         (is_of_kind(old_type, fk_double) && is_of_kind(new_type, fk_float) &&
          is_of_kind(used_as, fk_float));
}

// The float that the argument was before an implicit cast made it a double.
static an_expr_node* widened_float(an_expr_node* argument) {
  if (argument->kind != expr_operation || argument->variant.operation.op != eok_cast ||
      !argument->variant.operation.is_implicit)
    return nullptr;
  an_expr_node* operand = argument->variant.operation.operands;
  return is_of_kind(operand->type, fk_float) ? operand : nullptr;
}

// The argument as the new parameter takes it; null when it doesn't.
static an_expr_node* replaced_argument(an_expr_node* argument, a_type* old_param,
                                       a_type* new_param) {
  if (types_are_compatible(old_param, new_param))
    return argument;
  return is_of_kind(old_param, fk_double) && is_of_kind(new_param, fk_float)
             ? widened_float(argument)
             : nullptr;
}

// Copies of the arguments for the new function; false when one doesn't fit.
static bool replaced_arguments(an_expr_node* args, a_param_type* old_param, a_param_type* new_param,
                               an_expr_node** result) {
  an_expr_node** link = result;
  *link = nullptr;
  while (args && old_param && new_param) {
    an_expr_node* argument = replaced_argument(args, old_param->type, new_param->type);
    if (!argument)
      return false;
    *link = copy_expr_tree(argument, cef_none);
    (*link)->next = nullptr;
    link = &(*link)->next;
    args = args->next;
    old_param = old_param->next;
    new_param = new_param->next;
  }
  return !args && !old_param && !new_param;
}

static void replace_call(an_expr_node* call, const a_type* used_as) {
  an_expr_node* callee = call->variant.operation.operands;
  if (callee->kind != expr_routine)
    return;
  a_routine* old_routine = callee->variant.routine.ptr;
  bool is_library = old_routine->source_corresp.linkage == idl_external &&
                    old_routine->source_corresp.name && !old_routine->defined;
  const char* name =
      is_library ? MATH_FUNCTIONS_MAP::lookup_function(old_routine->source_corresp.name) : nullptr;
  a_symbol* symbol = name ? declared_routine(name) : nullptr;
  if (!symbol)
    return;
  a_routine* new_routine = symbol->variant.routine;
  a_type *old_type = skip_typerefs(old_routine->type), *new_type = skip_typerefs(new_routine->type);
  an_expr_node* args;
  if (!return_types_agree(return_type_of(old_type), return_type_of(new_type), used_as) ||
      !replaced_arguments(callee->next, param_types_of(old_type), param_types_of(new_type), &args))
    return;
  record_symbol_reference(srk_reference, symbol, &call->position, true);
  new_routine->called = true;
  an_expr_node* new_callee = function_rvalue_expr(new_routine);
  new_callee->position = callee->position;
  new_callee->range = callee->range;
  new_callee->next = args;
  call->variant.operation.operands = new_callee;
  call->type = return_type_of(new_type);
}

// ---- The walk ----

static void replace_in_tree(an_expr_node* node, const a_type* used_as) {
  check_stack_limit();
  if (node->kind != expr_operation)
    return;
  const a_type* operand_use = node->variant.operation.op == eok_cast ? node->type : nullptr;
  for (an_expr_node* operand = node->variant.operation.operands; operand; operand = operand->next)
    replace_in_tree(operand, operand_use ? operand_use : operand->type);
  if (node->variant.operation.op == eok_call)
    replace_call(node, used_as);
}

void replace_math_funcs(an_expr_node* expr, a_type* type) {
  if (relaxed_fp && in_C_mode() && targ_sizeof_float != targ_sizeof_double)
    replace_in_tree(expr, type);
}
