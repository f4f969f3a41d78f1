// Observers of the output stage. A check that wants to see every expression,
// initialiser and function as the intermediate file is written registers a
// factory; the generator calls the observers at fixed points.

#ifndef IL_HOOKS_H
#define IL_HOOKS_H

#include <memory>
#include <vector>

#include "il_statements.h"

// What an initialisation holds: a constant or a dynamic initialisation, as the
// an_init_kind beside it tells.
union an_initializer {
  a_constant* constant;
  a_dynamic_init* dynamic;
  void* generic;
};

// An observer. All operations do nothing here.
class IL_HOOKS {
public:
  virtual void expression(an_expr_node* expr);
  virtual void variable_initialization(a_variable* variable, unsigned char kind,
                                       const an_initializer* initializer);
  virtual void dynamic_variable_initialization(a_dynamic_init* init);
  virtual void routine_definition(a_routine* routine);
  virtual void end_routine_definition(a_routine* routine);
  virtual void function_call(an_expr_node* call);
  virtual ~IL_HOOKS() = default;

  // The function being written; null outside of functions.
  void set_routine(a_routine* routine) {
    current_routine = routine;
  }
  // Where to report something about an expression: its position or that of the
  // first operand that has one, else error_position.
  const a_source_position* expression_position(const an_expr_node* expr) const;

protected:
  a_routine* current_routine = nullptr;
};

// The observers of a run, called in order of registration.
class IL_HOOKS_CONTAINER {
public:
  void push_back(IL_HOOKS* hook);
  void expression(an_expr_node* expr) {
    for (const auto& hook : hooks)
      hook->expression(expr);
  }
  void variable_initialization(a_variable* variable, unsigned char kind,
                               const an_initializer* initializer);
  void dynamic_variable_initialization(a_dynamic_init* init);
  void routine_definition(a_routine* routine);
  void end_routine_definition(a_routine* routine);
  virtual void function_call(an_expr_node* call);
  virtual ~IL_HOOKS_CONTAINER() = default;

private:
  std::vector<std::unique_ptr<IL_HOOKS>> hooks;
};

// Makes observers. A factory is a static object, which its constructor
// registers.
class IL_HOOKS_FACTORY {
public:
  // A new observer, or null when it has nothing to do in this run.
  virtual IL_HOOKS* instantiate() = 0;
  virtual ~IL_HOOKS_FACTORY() = default;

  // A container with the observers of all factories.
  static IL_HOOKS_CONTAINER* instantiate_il_hooks();

protected:
  IL_HOOKS_FACTORY();

private:
  static std::vector<IL_HOOKS_FACTORY*>* factories;
};

// A function that every function calls when it is entered or left.
struct HOOK_DESCRIPTOR {
  const char* name;
  a_routine* routine;
  uint8_t pass_name;    // its argument is the name of the calling function
  uint8_t pass_address; // its argument is the address of the calling function
  a_type* parameter_type;
};

// Null: no hook.
extern HOOK_DESCRIPTOR* entry_hook_descriptor;
extern HOOK_DESCRIPTOR* exit_hook_descriptor;

// The codes of the hooks among the predeclared routines.
inline constexpr unsigned short entry_hook_code = 3869;
inline constexpr unsigned short exit_hook_code = 3870;

// Sets the type of the parameter by what is passed: none, a pointer to const
// char, or a pointer to a function without parameters that returns nothing.
void get_hook_parameter_types(HOOK_DESCRIPTOR* hook);

// Asks for a hook, as options do: by its name, error 1364 for a name that is no
// identifier, or by what is passed to it: "name", "address" or "none", error
// 1365 for another text. Either may be null.
void enable_hook(unsigned short code, const char* name, const char* parameter);

// Whether a routine is the entry or the exit hook.
bool is_hook_function(const a_routine* routine);
// Has every function of the primary unit call the hooks that were asked for: at its
// start, and before each return, once its value is known. Runs on the lowered IL,
// just before it is written.
void add_hook_calls_to_il();

#endif
