// The names of operator functions, and the search for the function that an
// operator or a call means. Operator functions, conversion functions and
// templates are no candidates: what needs one of them is refused.

#include "overload.h"

#include "class_decl.h"
#include "decl_inits.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "templates.h"

#include <string>

// ---- Names of operator functions ----

const char* const opname_names[num_opnames] = {
    "",
#define OPNAME(number, enumerator, token, text, unary_op, binary_op) text,
#include "opnames.def"
#undef OPNAME
};

constinit const std::array<an_opname_kind, num_token_kinds> opname_kind_for_token = [] {
  std::array<an_opname_kind, num_token_kinds> kinds = {};
#define OPNAME(number, enumerator, token, text, unary_op, binary_op) kinds[token] = enumerator;
#include "opnames.def"
#undef OPNAME
  kinds[tok_error] = opn_none;
  return kinds;
}();

namespace {

struct an_opname_operators {
  an_expr_operator_kind unary, binary;
};

constexpr an_opname_operators opname_operators[num_opnames] = {
    {eok_last, eok_last},
#define OPNAME(number, enumerator, token, text, unary_op, binary_op) {unary_op, binary_op},
#include "opnames.def"
#undef OPNAME
};

} // namespace

an_expr_operator_kind operator_for_opname_kind(an_opname_kind kind, bool is_unary) {
  return is_unary ? opname_operators[kind].unary : opname_operators[kind].binary;
}

a_symbol_header* header_of_operator(an_opname_kind kind) {
  if (a_symbol_header* header = opname_symbol_header(kind))
    return header;
  std::string name = std::string("operator ") + opname_names[kind];
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(name.c_str(), name.size(), &locator);
  header->is_operator_name = true;
  set_opname_symbol_header(kind, header);
  return header;
}

bool any_opname_function_symbol(an_opname_kind kind) {
  const a_symbol_header* header = opname_symbol_header(kind);
  return header && (header->first_symbol || header->first_inactive_symbol);
}

a_symbol* opname_member_function_symbol(a_type* class_type, an_opname_kind kind) {
  a_symbol_header* header = opname_symbol_header(kind);
  if (!header)
    return nullptr;
  a_symbol_locator locator = cleared_locator;
  locator.header = header;
  locator.is_operator_name = true;
  locator.operator_kind = kind;
  return class_qualified_id_lookup(&locator, skip_typerefs(class_type), ilo_none);
}

// ---- Operators ----

bool is_overloadable_type(const a_type* type) {
  if (is_enum_type(type))
    return operator_overloading_on_enums_enabled;
  return is_class_struct_union_type(type) || is_template_param_type(type);
}

bool is_overloadable_first_operand_type(const a_type* type) {
  return is_overloadable_type(type);
}

static bool is_dependent_operand(const an_operand* operand) {
  return operand->kind == ok_indefinite_function ? false
                                                 : is_template_dependent_type(operand->type);
}

static bool drop_operands(an_operand* first, an_operand* second, an_operand* result) {
  operand_will_not_be_used_because_of_error(first);
  if (second)
    operand_will_not_be_used_because_of_error(second);
  make_error_operand(result);
  return true;
}

// Objects of classes have these without a declaration.
static bool is_builtin_for_classes(const an_operator_search* search, bool is_unary) {
  return search->kind == opn_assign || search->kind == opn_comma || search->kind == opn_question ||
         (search->kind == opn_ampersand && is_unary);
}

static std::string text_of_type(const a_type* type) {
  size_t length;
  const char* text = format_type_string(type, &length);
  return std::string(text, length);
}

static void report_no_operator(const an_operator_search* search, const an_operand* first,
                               const an_operand* second) {
  if (!expr_error_should_be_issued())
    return;
  constexpr an_error_code text_operand_types = 743;
  const char* name = opname_names[search->kind];
  std::string types = text_of_type(first->type);
  if (second)
    types = types + " " + name + " " + text_of_type(second->type);
  else
    types = std::string(name) + " " + types;
  a_diagnostic* diag =
      pos_st_start_error(ec_no_matching_operator_function, &search->position, name);
  copy_str_add_diag_info(diag, text_operand_types, types.c_str());
  end_diagnostic(diag);
}

// ---- Operator functions (C++11 13.3.1.2) ----

namespace {

// The function that an operator means, and what it is called with: the first
// operand is the object of a member.
struct an_operator_choice {
  a_routine* routine;
  an_init_component* arguments;
  bool is_member;
};

} // namespace

static bool is_overloadable_operand(const an_operand* operand) {
  return operand->kind != ok_indefinite_function && is_overloadable_type(operand->type);
}

static an_init_component* component_of_operand(const an_operand* operand) {
  an_init_component* component = alloc_init_component(ick_expression);
  component->variant.operand = *operand;
  return component;
}

// The operands from `first` on; a postfix operator has a 0 behind its own.
static an_init_component* make_operator_arguments(const an_operator_search* search,
                                                  const an_operand* first,
                                                  const an_operand* second) {
  an_init_component* list = nullptr;
  an_init_component** link = &list;
  for (const an_operand* operand : {first, second})
    if (operand) {
      *link = component_of_operand(operand);
      link = &(*link)->next;
    }
  if (search->is_postfix) {
    *link = alloc_init_component(ick_expression);
    make_integer_constant_operand(0, ik_int, &(*link)->variant.operand);
  }
  return list;
}

static a_routine* choose_member_operator(const an_operator_search* search, an_operand* first,
                                         const an_init_component* arguments) {
  a_type* class_type = first->type;
  if (!is_class_struct_union_type(class_type) || is_incomplete_type(class_type))
    return nullptr;
  a_symbol* symbol = opname_member_function_symbol(class_type, search->kind);
  std::vector<a_routine*> routines;
  bool is_ambiguous;
  if (symbol)
    add_routines_of_set(symbol, &routines);
  return select_routine(routines, arguments, make_node_from_operand(first), false, true,
                        &is_ambiguous);
}

static a_routine* choose_free_operator(const an_operator_search* search, const an_operand* first,
                                       const an_operand* second,
                                       const an_init_component* arguments) {
  a_symbol_header* header = opname_symbol_header(search->kind);
  std::vector<a_type*> types = {first->type};
  std::vector<a_routine*> routines;
  bool is_ambiguous;
  if (!header || search->must_be_member)
    return nullptr;
  if (second)
    types.push_back(second->type);
  a_symbol_locator locator = cleared_locator;
  locator.header = header;
  locator.is_operator_name = true;
  locator.operator_kind = search->kind;
  a_symbol* symbol = normal_id_lookup(&locator, ilo_none);
  if (symbol && symbol->is_class_member)
    symbol = nullptr;
  symbol = argument_dependent_lookup(symbol, &locator, types);
  if (symbol)
    add_routines_of_set(symbol, &routines);
  return select_routine(routines, arguments, nullptr, false, true, &is_ambiguous);
}

static an_operator_choice choose_operator_function(const an_operator_search* search,
                                                   an_operand* first, const an_operand* second) {
  an_operator_choice choice = {};
  if (!any_opname_function_symbol(search->kind))
    return choice;
  choice.arguments = make_operator_arguments(search, second, nullptr);
  choice.routine = choose_member_operator(search, first, choice.arguments);
  choice.is_member = choice.routine != nullptr;
  if (choice.is_member)
    return choice;
  free_init_component_list(choice.arguments);
  choice.arguments = make_operator_arguments(search, first, second);
  choice.routine = choose_free_operator(search, first, second, choice.arguments);
  return choice;
}

// A trivial assignment copies the object as a whole.
static bool is_builtin_assignment(const a_routine* routine) {
  a_type_qualifier_set qualifiers;
  return routine->is_trivial && !routine->is_deleted &&
         (is_assignment_operator_for_copy(routine, &qualifiers) ||
          routine_is_move_assignment_operator(routine));
}

static void call_operator_function(const an_operator_search* search, an_operator_choice* choice,
                                   an_operand* first, an_operand* result) {
  an_operand object = *first;
  check_use_of_routine(choice->routine, class_of_member(&choice->routine->source_corresp),
                       &search->position);
  call_known_routine(choice->routine, choice->is_member ? &object : nullptr, choice->arguments,
                     &search->position, result);
  free_init_component_list(choice->arguments);
}

// The types that the operator works on by itself.
static uint32_t types_for_builtin_operator(an_opname_kind kind, bool is_unary) {
  switch (operator_for_opname_kind(kind, is_unary)) {
  case eok_indirect:
    return bts_pointer;
  case eok_complement:
  case eok_remainder:
  case eok_shift_left:
  case eok_shift_right:
  case eok_bit_and:
  case eok_bit_or:
  case eok_bit_xor:
    return bts_integral | bts_enum;
  case eok_multiply:
  case eok_divide:
  case eok_negate:
    return bts_integral | bts_floating | bts_enum;
  default:
    return bts_scalar;
  }
}

// Objects of classes among the operands become what the builtin operator works on;
// false where one can't.
static bool convert_operands_for_builtin(const an_operator_search* search, an_operand* first,
                                         an_operand* second) {
  uint32_t types = types_for_builtin_operator(search->kind, !second);
  if (search->kind == opn_call || search->kind == opn_arrow || search->kind == opn_arrow_star)
    return false;
  if (search->kind == opn_subscript)
    types = is_integral_or_enum_type(first->type) || is_integral_or_enum_type(second->type)
                ? bts_pointer
                : bts_integral | bts_enum;
  bool is_logical =
      search->kind == opn_not || search->kind == opn_and_and || search->kind == opn_or_or;
  for (an_operand* operand : {first, second}) {
    if (!operand || !is_class_struct_union_type(operand->type))
      continue;
    bool converts = is_logical ? convert_operand_to_bool(operand)
                               : try_to_convert_class_operand_to_builtin_type(operand, types);
    if (!converts)
      return false;
  }
  return true;
}

// No function fits: the builtin operator may, unless an object of a class is an
// operand that no conversion function converts.
static bool operator_without_function(const an_operator_search* search, an_operand* first,
                                      an_operand* second, an_operand* result) {
  bool with_class = is_class_struct_union_type(first->type) ||
                    (second && is_class_struct_union_type(second->type));
  if (!with_class || (is_builtin_for_classes(search, !second) && search->kind != opn_assign))
    return false;
  if (search->kind == opn_assign && (in_C_mode() || !is_class_struct_union_type(first->type)))
    return false;
  if (search->kind != opn_assign && convert_operands_for_builtin(search, first, second)) {
    bool is_good = !is_error_operand(first) && !(second && is_error_operand(second));
    return is_good ? false : drop_operands(first, second, result);
  }
  report_no_operator(search, first, second);
  return drop_operands(first, second, result);
}

bool check_for_operator_overloading(const an_operator_search* search, an_operand* first,
                                    an_operand* second, an_operand* result) {
  if (is_error_operand(first) || (second && is_error_operand(second)))
    return drop_operands(first, second, result);
  if (is_dependent_operand(first) || (second && is_dependent_operand(second))) {
    if (second)
      template_binary_operation(operator_for_opname_kind(search->kind, false), first, second,
                                &search->position, result);
    else
      template_unary_operation(operator_for_opname_kind(search->kind, true), first,
                               &search->position, result);
    return true;
  }
  if (!is_overloadable_operand(first) && !(second && is_overloadable_operand(second)))
    return false;
  an_operator_choice choice = choose_operator_function(search, first, second);
  if (choice.routine && is_builtin_assignment(choice.routine)) {
    free_init_component_list(choice.arguments);
    return false;
  }
  if (choice.routine) {
    call_operator_function(search, &choice, first, result);
    return true;
  }
  free_init_component_list(choice.arguments);
  return operator_without_function(search, first, second, result);
}

// ---- Conversions that functions of a class make ----

// A class converts to its bases, and by its conversion functions.
bool conditional_operator_conversion_possible(const an_operand* source, const an_operand* target) {
  if (!is_class_struct_union_type(source->type))
    return false;
  a_type* type = prvalue_type(target->type);
  if (is_class_struct_union_type(type) &&
      find_base_class_of(f_skip_typerefs(source->type), f_skip_typerefs(type)))
    return true;
  return !is_void_type(type) && conversion_function_converts(source, type);
}

void user_convert_operand(an_operand* operand, a_type* type) {
  type = prvalue_type(type);
  if (is_class_struct_union_type(type))
    construct_object_of_operand(operand, type);
  else
    convert_operand_by_conversion_function(operand, type, false);
}

// ---- Calls ----

static void report_no_function_of_set(const an_operand* function, bool is_ambiguous) {
  if (expr_error_should_be_issued())
    pos_sy_error(is_ambiguous ? ec_ambiguous_overloaded_function : ec_no_matching_function,
                 &function->position, function->symbol);
}

// The functions of the set; false when a template is among them.
static bool routines_of_operand(const an_operand* function, std::vector<a_routine*>* routines) {
  a_symbol* symbol = function->symbol;
  if (!symbol || symbol->kind == symk_function_template ||
      (symbol->kind == symk_overloaded_function && overload_set_contains_template(symbol)))
    return false;
  add_routines_of_set(symbol, routines);
  return true;
}

static a_routine* select_function_of_operand(const an_operand* function, const an_operand* selector,
                                             const an_init_component* arg_list) {
  std::vector<a_routine*> routines;
  bool is_ambiguous;
  if (!routines_of_operand(function, &routines)) {
    refuse_construct("template", &function->position);
    return nullptr;
  }
  const an_expr_node* object = selector ? selector->variant.expr : nullptr;
  a_routine* routine =
      select_routine(routines, arg_list, object, selector && selector->flags.selector_is_pointer,
                     true, &is_ambiguous);
  if (!routine)
    report_no_function_of_set(function, is_ambiguous);
  return routine;
}

// The class in which the function was looked up: that of the object, or the one
// that a qualifier names.
static a_type* naming_class_of_call(const an_operand* function, const an_operand* selector,
                                    const a_routine* routine) {
  a_type* own_class = class_of_member(&routine->source_corresp);
  if (!own_class || !selector || function->flags.qualified_name)
    return own_class;
  a_type* object_type =
      selector->flags.selector_is_pointer ? type_pointed_to(selector->type) : selector->type;
  return is_class_struct_union_type(object_type) ? skip_typerefs(object_type) : own_class;
}

a_routine* select_and_prepare_to_call_overloaded_function(an_operand* function,
                                                          an_operand* selector,
                                                          an_init_component* arg_list, bool,
                                                          an_expr_node** arguments) {
  *arguments = nullptr;
  a_routine* routine = select_function_of_operand(function, selector, arg_list);
  if (!routine) {
    conv_to_error_operand(function);
    return nullptr;
  }
  an_operand saved = *function;
  an_arg_check_block block;
  check_use_of_routine(routine, naming_class_of_call(function, selector, routine), &saved.position);
  make_function_designator_operand(routine, saved.ref_entries, function);
  restore_operand_details_incl_ref(function, &saved);
  function->flags.qualified_name = saved.flags.qualified_name;
  start_call_argument_processing(skip_typerefs(routine->type), routine, &block);
  block.position = function->end_position;
  *arguments = process_call_argument_list(arg_list, &block);
  return block.any_error ? nullptr : routine;
}

// Why the object can't be that of a function with the type; 0 if it can (C++11
// 13.3.1 p4, p5).
static an_error_code fault_of_selector(const an_operand* selector, const a_type* type) {
  const a_routine_type_supplement* info = skip_typerefs(type)->variant.routine.routine_supplement;
  bool is_pointer = selector->flags.selector_is_pointer;
  a_type* object_type = is_pointer ? type_pointed_to(selector->type) : selector->type;
  bool is_lvalue = is_pointer || is_a_cplusplus_lvalue(selector);
  if ((get_type_qualifiers(object_type) & tq_cv & ~info->this_qualifiers) != 0)
    return ec_unqual_function_with_qual_object;
  if (info->has_rvalue_ref_qualifier && is_lvalue)
    return ec_cannot_call_member_on_lvalue;
  if (info->has_lvalue_ref_qualifier && !is_lvalue && !(info->this_qualifiers & tq_const))
    return ec_cannot_call_member_on_rvalue;
  return 0;
}

bool selector_match_with_this_param(const an_operand* selector, const a_routine* routine) {
  an_error_code code = fault_of_selector(selector, routine->type);
  if (code == 0)
    return true;
  an_error_code named_code =
      code == ec_unqual_function_with_qual_object ? ec_unqual_named_function_with_qual_object
      : code == ec_cannot_call_member_on_lvalue   ? ec_cannot_call_named_member_on_lvalue
                                                  : ec_cannot_call_named_member_on_rvalue;
  if (expr_error_should_be_issued())
    pos_sy_error(named_code, &selector->position, routine->source_corresp.symbol);
  return false;
}

bool selector_match_with_type(const an_operand* selector, const a_type* type) {
  an_error_code code = fault_of_selector(selector, type);
  if (code != 0)
    expr_pos_error(code, &selector->position);
  return code == 0;
}

void bind_member_function_operand_to_selector(an_operand* function, an_operand* selector,
                                              bool selector_is_pointer) {
  an_expr_node* object = make_node_from_operand(selector);
  object->next = nullptr;
  change_ref_kinds(selector->ref_entries, srk_value_read);
  function->flags.bound_function = true;
  function->flags.selector_is_pointer = selector_is_pointer;
  if (function->kind == ok_expression)
    function->variant.expr->next = object;
  else
    function->variant.expr = object;
}

bool take_selector_of_function(an_operand* function, an_operand* selector) {
  if (!function->flags.bound_function || is_error_operand(function))
    return false;
  an_expr_node** place =
      function->kind == ok_expression ? &function->variant.expr->next : &function->variant.expr;
  an_expr_node* object = *place;
  bool is_pointer = function->flags.selector_is_pointer;
  *place = nullptr;
  function->flags.bound_function = function->flags.selector_is_pointer = false;
  make_lvalue_or_rvalue_expression_operand(object, selector);
  selector->flags.selector_is_pointer = is_pointer;
  set_operand_range(selector, &function->position, &function->end_position);
  return !is_error_operand(selector);
}
