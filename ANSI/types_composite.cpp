// The type of an entity that was declared more than once (C99 6.2.7 p3).

#include "types.h"

#include "mode_words.h"
#include "stack_limit.h"
#include "types_int.h"

#include <map>
#include <utility>

void copy_gnu_type_properties(a_type* to, const a_type* from) {
  from = f_skip_typerefs(from);
  if (to->kind == tk_array && from->has_explicit_alignment && !to->has_explicit_alignment) {
    to->has_explicit_alignment = 1;
    to->alignment = from->alignment;
  } else if (to->kind == tk_routine && from->kind == tk_routine) {
    a_routine_type_supplement& target = *to->variant.routine.routine_supplement;
    const a_routine_type_supplement& source = *from->variant.routine.routine_supplement;
    target.does_not_return |= source.does_not_return;
    target.is_pure |= source.is_pure;
    target.is_const_function |= source.is_const_function;
    target.is_printf_like |= source.is_printf_like;
    target.is_scanf_like |= source.is_scanf_like;
    if (target.calling_convention_flags == default_calling_convention)
      target.calling_convention_flags = source.calling_convention_flags;
  }
}

namespace {

// Whether the copy of properties would change the type.
bool lacks_gnu_properties(const a_type* to, const a_type* from) {
  if (to->kind == tk_array)
    return from->has_explicit_alignment && !to->has_explicit_alignment;
  if (to->kind != tk_routine || from->kind != tk_routine)
    return false;
  const a_routine_type_supplement& target = *to->variant.routine.routine_supplement;
  const a_routine_type_supplement& source = *from->variant.routine.routine_supplement;
  return (source.does_not_return && !target.does_not_return) ||
         (source.is_pure && !target.is_pure) ||
         (source.is_const_function && !target.is_const_function) ||
         (target.calling_convention_flags == default_calling_convention &&
          source.calling_convention_flags != default_calling_convention);
}

// A pragma tells of the format in every mode.
bool lacks_format(const a_type* to, const a_type* from) {
  if (to->kind != tk_routine || from->kind != tk_routine)
    return false;
  const a_routine_type_supplement& target = *to->variant.routine.routine_supplement;
  const a_routine_type_supplement& source = *from->variant.routine.routine_supplement;
  return (source.is_printf_like && !target.is_printf_like) ||
         (source.is_scanf_like && !target.is_scanf_like);
}

a_type* with_gnu_properties(a_type* type, const a_type* from) {
  a_type* bare = f_skip_typerefs(type);
  from = f_skip_typerefs(from);
  if (!(gnu_mode && lacks_gnu_properties(bare, from)) && !lacks_format(bare, from))
    return type;
  a_type* copy =
      bare->kind == tk_routine ? copy_routine_type_with_param_types(bare) : copy_type(bare);
  copy_gnu_type_properties(copy, from);
  return copy;
}

a_type* composite_pointer(a_type* a, a_type* b) {
  a_type* referenced = a->variant.pointer.referenced_type;
  a_type* composite = composite_type(referenced, b->variant.pointer.referenced_type);
  if (composite == referenced || is_error_type(composite))
    return composite == referenced ? a : composite;
  return make_pointer_type_of_same_kind(a, composite);
}

// Qualifiers of a parameter itself are its declaration's own (C99 6.7.5.3 p15).
a_type* composite_param_type(a_type* a, a_type* b) {
  return composite_type(a, make_unqualified_type(b));
}

bool takes_default_arg(const a_param_type* a, const a_param_type* b) {
  return a->default_arg_expr == nullptr && b->default_arg_expr != nullptr;
}

// Whether the second of two parameter lists adds anything to the first.
bool second_list_adds_something(const a_param_type* a, const a_param_type* b) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next)
    if (takes_default_arg(a, b) || composite_param_type(a->type, b->type) != a->type)
      return true;
  return false;
}

a_param_type* composite_param_list(const a_param_type* a, const a_param_type* b) {
  a_param_type* head = copy_param_type_list(a);
  for (a_param_type* param = head; param != nullptr && b != nullptr;
       param = param->next, b = b->next) {
    param->type = composite_param_type(param->type, b->type);
    if (takes_default_arg(param, b)) {
      param->default_arg_expr = b->default_arg_expr;
      param->has_default_arg = 1;
    }
  }
  return head;
}

a_type* composite_return_type(a_type* a, a_type* b) {
  return a == nullptr || b == nullptr ? a : composite_type(a, b);
}

a_type* composite_routine(a_type* a, a_type* b) {
  const a_routine_type_supplement& first = *a->variant.routine.routine_supplement;
  const a_routine_type_supplement& second = *b->variant.routine.routine_supplement;
  a_type* return_type =
      composite_return_type(a->variant.routine.return_type, b->variant.routine.return_type);
  bool takes_prototype = !first.prototyped && second.prototyped;
  bool merges_params = first.prototyped && second.prototyped &&
                       second_list_adds_something(first.param_types, second.param_types);
  // With a prototype too, the definition takes its arguments promoted.
  bool is_old_style = first.old_style_definition || second.old_style_definition;
  if (return_type == a->variant.routine.return_type && !takes_prototype && !merges_params &&
      is_old_style == first.old_style_definition)
    return a;
  a_type* result = copy_type(a);
  result->variant.routine.return_type = return_type;
  a_routine_type_supplement& supplement = *result->variant.routine.routine_supplement;
  supplement.old_style_definition = is_old_style;
  if (takes_prototype) {
    supplement.param_types = copy_param_type_list(second.param_types);
    supplement.prototyped = 1;
    supplement.has_ellipsis = second.has_ellipsis;
  } else if (merges_params) {
    supplement.param_types = composite_param_list(first.param_types, second.param_types);
  } else {
    supplement.param_types = copy_param_type_list(first.param_types);
  }
  return result;
}

bool has_constant_number(const a_type* array) {
  const an_array_type_variant& variant = array->variant.array;
  return !variant.bound_is_constant && !variant.bound_is_expr && !variant.is_vla &&
         !variant.bound_is_star && !array_has_no_bound(array);
}

a_type* composite_array(a_type* a, a_type* b) {
  a_type* element = a->variant.array.element_type;
  a_type* composite = composite_type(element, b->variant.array.element_type);
  bool bounds_differ = has_constant_number(a) && has_constant_number(b) &&
                       num_array_elements(a) != num_array_elements(b);
  if (is_error_type(composite) || bounds_differ)
    return error_type();
  // A number says more than a variable bound, which says more than none.
  bool takes_bound = array_has_no_bound(a) ? !array_has_no_bound(b)
                                           : !has_constant_number(a) && has_constant_number(b);
  if (takes_bound)
    return composite == b->variant.array.element_type
               ? b
               : copy_array_type_replacing_element_type(b, composite);
  return composite == element ? a : copy_array_type_replacing_element_type(a, composite);
}

a_type* composite_ptr_to_member(a_type* a, a_type* b) {
  a_type* composite = composite_type(pm_member_type(a), pm_member_type(b));
  if (is_error_type(composite) ||
      !f_types_are_compatible(pm_class_type(a), pm_class_type(b), tcf_error_matches))
    return error_type();
  return composite == pm_member_type(a) ? a
                                        : ptr_to_member_type_full(composite, pm_class_type(a), 0);
}

// The composites of routine types inside the one that is being formed. Types
// that use one another twice over have far more ways to a type than types.
std::map<std::pair<a_type*, a_type*>, a_type*> nested_composites;
int routine_depth; // of the routine types being combined

a_type* composite_routine_once(a_type* a, a_type* b) {
  bool is_nested = routine_depth > 0;
  // The outermost routine type answers for those inside it. An error type in one
  // of them has been reported, and the rest of the type is kept.
  if (!is_nested && !f_types_are_compatible(a, b, tcf_error_matches | tcf_ignore_this_class))
    return error_type();
  auto found = is_nested ? nested_composites.find({a, b}) : nested_composites.end();
  if (found != nested_composites.end())
    return found->second;
  ++routine_depth;
  a_type* composite = composite_routine(a, b);
  --routine_depth;
  if (is_nested)
    nested_composites[{a, b}] = composite;
  else
    nested_composites.clear();
  return composite;
}

a_type* composite_of_bare_types(a_type* a, a_type* b) {
  switch (a->kind) {
  case tk_pointer:
    return composite_pointer(a, b);
  case tk_routine:
    return composite_routine_once(a, b);
  case tk_array:
    return composite_array(a, b);
  case tk_ptr_to_member:
    return composite_ptr_to_member(a, b);
  default:
    return f_types_are_compatible(a, b, tcf_ignore_top_qualifiers) ? a : error_type();
  }
}

} // namespace

a_type* composite_type(a_type* a, a_type* b) {
  check_stack_limit();
  if (a == b)
    return a;
  a_type* bare_a = f_skip_typerefs(a);
  a_type* bare_b = f_skip_typerefs(b);
  if (bare_a->kind == tk_error || bare_b->kind == tk_error ||
      !type_kinds_match(bare_a->kind, bare_b->kind))
    return error_type();
  a_type* composite = bare_a == bare_b ? bare_a : composite_of_bare_types(bare_a, bare_b);
  composite = with_gnu_properties(composite, b);
  // Nothing was added to the first: its typedef names are kept.
  a_type* result = composite == bare_a ? a : type_plus_qualifiers_from_second_type(composite, a);
  return type_plus_qualifiers_from_second_type(result, b);
}
