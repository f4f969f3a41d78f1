#include "lower_context.h"

#include <vector>

#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "types.h"

// One that was made, and whether the expression at hand uses it.
struct a_temporary {
  a_variable* variable;
  bool is_in_use;
};

a_context* curr_context;

// The reusable ones of all open regions, the innermost last.
static std::vector<a_temporary> temporaries;

// ---- Contexts ----

static bool is_outermost_of_region(const a_context* context) {
  return context->parent == nullptr || context->scope->kind == sk_function;
}

void push_context(a_context* context, a_scope* scope, an_object_lifetime* lifetime) {
  *context = {curr_context, scope, lifetime, temporaries.size()};
  curr_context = context;
}

void pop_context() {
  if (is_outermost_of_region(curr_context))
    temporaries.resize(curr_context->first_temporary);
  curr_context = curr_context->parent;
}

void save_and_push_context(a_saved_context* saved, a_context* context, int32_t region,
                           a_scope* scope) {
  *saved = {curr_context, curr_object_lifetime, curr_il_region_number};
  curr_context = nullptr;
  switch_il_region(region);
  push_context(context, scope, nullptr);
}

void restore_saved_context(const a_saved_context* saved) {
  pop_context();
  curr_context = saved->context;
  curr_object_lifetime = saved->object_lifetime;
  switch_il_region(saved->region);
}

// ---- Temporaries ----

// The reusable ones of the region at hand start there.
static size_t first_temporary_of_region() {
  const a_context* context = curr_context;
  while (!is_outermost_of_region(context))
    context = context->parent;
  return context->first_temporary;
}

static a_variable* find_reusable_temporary(a_type* type) {
  for (size_t i = first_temporary_of_region(); i < temporaries.size(); i++)
    if (!temporaries[i].is_in_use && identical_types(temporaries[i].variable->type, type)) {
      temporaries[i].is_in_use = true;
      return temporaries[i].variable;
    }
  return nullptr;
}

a_variable* make_temporary_in_scope(a_type* type, a_scope* scope) {
  a_variable* variable = alloc_temporary_variable(make_unqualified_type(type), false);
  add_temporary_to_front_of_variables_list(variable, scope);
  mark_as_needed(variable, iek_variable);
  return variable;
}

a_variable* make_lowered_temporary(a_type* type) {
  return make_temporary_in_scope(type, il_header.region_scope_table[curr_il_region_number]);
}

a_variable* make_temporary(a_type* type, bool is_reusable) {
  if (!is_reusable || curr_context == nullptr)
    return make_lowered_temporary(type);
  type = make_unqualified_type(type);
  a_variable* variable = find_reusable_temporary(type);
  if (variable == nullptr) {
    variable = make_lowered_temporary(type);
    temporaries.push_back({variable, true});
  }
  return variable;
}

void end_of_full_expr_processing() {
  for (size_t i = first_temporary_of_region(); i < temporaries.size(); i++)
    temporaries[i].is_in_use = false;
}
