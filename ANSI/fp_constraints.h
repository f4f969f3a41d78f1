// The check that a program keeps to the floating-point formats that its
// environment supports.

#ifndef FP_CONSTRAINTS_H
#define FP_CONSTRAINTS_H

#include "il_hooks.h"

// Watches the output of a run whose legal_float_precision excludes formats, and
// reports every operation, call and function that uses one of them.
class FP_OPERATION_CONSTRAINTS : public IL_HOOKS {
public:
  void expression(an_expr_node* expr) override;
  void dynamic_variable_initialization(a_dynamic_init* init) override;
  void routine_definition(a_routine* routine) override;
  // True for any type that isn't floating.
  virtual bool float_type_allowed(a_type* type);
  virtual void issue_floating_point_diag(const a_source_position* position);

private:
  bool operands_allowed(an_expr_node* expr);
  bool call_allowed(an_expr_node* call);
};

class FP_OPERATION_CONSTRAINTS_FACTORY : public IL_HOOKS_FACTORY {
public:
  IL_HOOKS* instantiate() override;
};

#endif
