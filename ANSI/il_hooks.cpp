#include "il_hooks.h"

#include "error.h"
#include "fp_constraints.h"
#include "mem_manage.h"
#include "target.h"
#include "types.h"

#include <cctype>
#include <cstring>
#include <new>

void IL_HOOKS::expression(an_expr_node*) {}

void IL_HOOKS::variable_initialization(a_variable*, unsigned char, const an_initializer*) {}

void IL_HOOKS::dynamic_variable_initialization(a_dynamic_init*) {}

void IL_HOOKS::routine_definition(a_routine*) {}

void IL_HOOKS::end_routine_definition(a_routine*) {}

void IL_HOOKS::function_call(an_expr_node*) {}

const a_source_position* IL_HOOKS::expression_position(const an_expr_node* expr) const {
  for (; expr != nullptr; expr = expr->variant.operation.operands) {
    if (expr->position.seq != 0)
      return &expr->position;
    if (expr->range.start.seq != 0)
      return &expr->range.start;
    if (expr->kind != expr_operation)
      break;
  }
  return &error_position;
}

void IL_HOOKS_CONTAINER::push_back(IL_HOOKS* hook) {
  hooks.emplace_back(hook);
}

void IL_HOOKS_CONTAINER::variable_initialization(a_variable* variable, unsigned char kind,
                                                 const an_initializer* initializer) {
  for (const auto& hook : hooks)
    hook->variable_initialization(variable, kind, initializer);
}

void IL_HOOKS_CONTAINER::dynamic_variable_initialization(a_dynamic_init* init) {
  for (const auto& hook : hooks)
    hook->dynamic_variable_initialization(init);
}

void IL_HOOKS_CONTAINER::routine_definition(a_routine* routine) {
  for (const auto& hook : hooks) {
    hook->set_routine(routine);
    hook->routine_definition(routine);
  }
}

void IL_HOOKS_CONTAINER::end_routine_definition(a_routine* routine) {
  for (const auto& hook : hooks) {
    hook->end_routine_definition(routine);
    hook->set_routine(nullptr);
  }
}

void IL_HOOKS_CONTAINER::function_call(an_expr_node* call) {
  for (const auto& hook : hooks)
    hook->function_call(call);
}

// Made by the first factory: the order of static objects of several files isn't
// known.
std::vector<IL_HOOKS_FACTORY*>* IL_HOOKS_FACTORY::factories;

IL_HOOKS_FACTORY::IL_HOOKS_FACTORY() {
  if (factories == nullptr)
    factories = new std::vector<IL_HOOKS_FACTORY*>;
  factories->push_back(this);
}

// The factories of the product; in a file of their own no reference would bring
// them into the program.
static FP_OPERATION_CONSTRAINTS_FACTORY fp_operation_constraints_factory;

IL_HOOKS_CONTAINER* IL_HOOKS_FACTORY::instantiate_il_hooks() {
  auto* container = new IL_HOOKS_CONTAINER;
  if (factories == nullptr)
    return container;
  for (IL_HOOKS_FACTORY* factory : *factories)
    if (IL_HOOKS* hook = factory->instantiate())
      container->push_back(hook);
  return container;
}

HOOK_DESCRIPTOR* entry_hook_descriptor;
HOOK_DESCRIPTOR* exit_hook_descriptor;

static bool is_hook_name(const char* name) {
  if (*name == '\0' || isdigit(static_cast<unsigned char>(*name)))
    return false;
  for (; *name != '\0'; name++)
    if (!isalnum(static_cast<unsigned char>(*name)) && *name != '_' && *name != '$')
      return false;
  return true;
}

static void set_hook_parameter(HOOK_DESCRIPTOR* hook, const char* parameter) {
  if (strcmp(parameter, "name") == 0)
    hook->pass_name = 1;
  else if (strcmp(parameter, "address") == 0)
    hook->pass_address = 1;
  else if (strcmp(parameter, "none") != 0)
    str_command_line_error(ec_cl_invalid_hook_parm, parameter);
}

void enable_hook(unsigned short code, const char* name, const char* parameter) {
  bool is_entry = code == entry_hook_code;
  HOOK_DESCRIPTOR*& hook = is_entry ? entry_hook_descriptor : exit_hook_descriptor;
  if (hook == nullptr)
    hook = new (alloc_general(sizeof(HOOK_DESCRIPTOR))) HOOK_DESCRIPTOR{};
  if (name != nullptr) {
    if (!is_hook_name(name))
      str_command_line_error(ec_cl_invalid_hook_name, name);
    hook->name = name;
  } else if (hook->name == nullptr) {
    hook->name = is_entry ? "__entry_hook" : "__exit_hook";
  }
  if (parameter != nullptr)
    set_hook_parameter(hook, parameter);
}

void get_hook_parameter_types(HOOK_DESCRIPTOR* hook) {
  if (hook->pass_name)
    hook->parameter_type =
        make_pointer_type(make_qualified_type(integer_type(plain_char_int_kind), tq_const));
  else if (hook->pass_address)
    hook->parameter_type = make_pointer_type(make_routine_type_full(void_type()));
  else
    hook->parameter_type = nullptr;
}
