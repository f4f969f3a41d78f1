// The processor's answers to the output stage, and the checks of the arguments
// of intrinsic functions.

#ifndef KRT_TARGET_H
#define KRT_TARGET_H

#include "basics.h"

// Questions of the output stage whose answers depend on the processor.
class TARGET {
public:
  virtual ~TARGET() = default;
  // Whether a call of a builtin function stays one. No: a diagnostic was given.
  virtual bool ok_to_dump_as_builtin(an_expr_node* call, a_scope* function) = 0;
};

class KRT_TARGET : public TARGET {
public:
  bool ok_to_dump_as_builtin(an_expr_node* call, a_scope* function) override;
};

// Made before main runs.
extern TARGET* target;

// Checks of argument n of a call, counted from 1; a diagnostic tells what fails.
// Here: an integer constant of at most `max` that is a multiple of `multiple`.
bool check_ucst(const an_expr_node* call, int n, uint64_t max, uint64_t multiple);
bool issue_error_for_non_immediate_arg(const an_expr_node* call, const an_expr_node* argument);

#endif
