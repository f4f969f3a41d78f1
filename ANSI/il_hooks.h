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

#endif
