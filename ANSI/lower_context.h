// Where lowering works: the scopes on the way to the statement at hand, and the
// temporaries that it makes there.

#ifndef LOWER_CONTEXT_H
#define LOWER_CONTEXT_H

#include "basics.h"

struct a_context {
  a_context* parent;
  a_scope* scope;
  an_object_lifetime* object_lifetime;
  size_t first_temporary; // of those that can be reused, when it is the outermost of its region
};

// The innermost context; null while no lowering runs.
extern a_context* curr_context;

// The contexts lie on the stack of the caller.
void push_context(a_context* context, a_scope* scope, an_object_lifetime* lifetime);
void pop_context();

// What a change of region sets aside.
struct a_saved_context {
  a_context* context;
  an_object_lifetime* object_lifetime;
  int32_t region;
};
// Goes to a region, with a context of its own on the scope.
void save_and_push_context(a_saved_context* saved, a_context* context, int32_t region,
                           a_scope* scope);
void restore_saved_context(const a_saved_context* saved);

// ---- Temporaries ----

// A variable without a name for a value of the type, in the function or the file
// scope that is being lowered. One that is reusable serves another full expression
// when the one at hand has been lowered.
a_variable* make_temporary(a_type* type, bool is_reusable);
a_variable* make_temporary_in_scope(a_type* type, a_scope* scope);
// One that nobody reuses.
a_variable* make_lowered_temporary(a_type* type);
// Makes the reusable temporaries of a full expression free for the next one.
void end_of_full_expr_processing();

#endif
