// The choice among functions by what their parameters take (C++11 13.3.2,
// 13.3.3): each argument is matched with each parameter, and the function that
// is better for one argument and worse for none is meant.

#include "class_decl.h"
#include "decl_inits.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"

#include <algorithm>

namespace {

// How an argument matches a parameter; lower is better.
enum a_match_rank : uint8_t {
  mr_exact = 0,
  mr_promotion = 1,
  mr_conversion = 2,
  mr_user_conversion = 4,
  mr_ellipsis = 5,
  mr_none = 7
};

struct an_arg_match {
  a_match_rank rank;
  a_type_qualifier_set added_qualifiers; // by the binding of a reference
  bool binds_rvalue_to_lvalue_reference;
};

struct a_candidate {
  a_routine* routine;
  std::vector<an_arg_match> matches; // of the object first, for a member function
};

} // namespace

// ---- One argument ----

static an_arg_match match_of_rank(a_match_rank rank) {
  return {rank, tq_none, false};
}

static an_arg_match match_value(const an_operand* argument, a_type* type, bool by_constructor);

static bool is_same_or_base(a_type* type, a_type* base, a_match_rank* rank) {
  a_type* from = make_unqualified_type(type);
  a_type* to = make_unqualified_type(base);
  *rank = mr_exact;
  if (identical_types(from, to))
    return true;
  *rank = mr_conversion;
  return is_class_struct_union_type(from) && is_class_struct_union_type(to) &&
         find_base_class_of(skip_typerefs(from), skip_typerefs(to)) != nullptr;
}

// C++11 8.5.3 p5: a reference to an lvalue binds to lvalues, one to const and
// one to an rvalue also to what is converted.
static an_arg_match match_reference(const an_operand* argument, a_type* type, bool by_constructor) {
  a_type* object = type_pointed_to(type);
  bool is_rvalue_reference = is_rvalue_reference_type(type);
  bool is_lvalue = is_glvalue_operand(argument) && !is_an_xvalue(argument);
  a_type_qualifier_set wanted = get_type_qualifiers(object) & tq_cv;
  a_type_qualifier_set given = get_type_qualifiers(argument->type) & tq_cv;
  a_match_rank rank;
  if (is_function_type(object) || is_function_type(argument->type))
    return match_of_rank(identical_types(object, argument->type) ? mr_exact : mr_none);
  if (is_same_or_base(argument->type, object, &rank)) {
    bool binds = is_rvalue_reference ? !is_lvalue : is_lvalue || wanted == tq_const;
    if (!binds || (given & ~wanted) != 0)
      return match_of_rank(mr_none);
    return {rank, wanted & ~given, !is_rvalue_reference && !is_lvalue};
  }
  if (!is_rvalue_reference && wanted != tq_const)
    return match_of_rank(mr_none);
  an_arg_match match = match_value(argument, make_unqualified_type(object), by_constructor);
  match.binds_rvalue_to_lvalue_reference = !is_rvalue_reference;
  return match;
}

static bool is_promotion(const an_operand* argument, a_type* type) {
  if (is_integral_or_enum_type(argument->type))
    return identical_types(operand_type_after_integral_promotion(argument), type);
  return is_floating_type(argument->type) &&
         identical_types(default_argument_promotion(argument->type), type);
}

static bool constructor_converts(const an_operand* argument, a_type* class_type);

static an_arg_match match_class(const an_operand* argument, a_type* type, bool by_constructor) {
  a_match_rank rank;
  if (is_class_struct_union_type(argument->type) && is_same_or_base(argument->type, type, &rank))
    return match_of_rank(rank);
  bool converts = by_constructor && (constructor_converts(argument, type) ||
                                     conversion_function_converts(argument, type));
  return match_of_rank(converts ? mr_user_conversion : mr_none);
}

static an_arg_match match_value(const an_operand* argument, a_type* type, bool by_constructor) {
  a_std_conv_descr descr;
  if (is_class_struct_union_type(type))
    return match_class(argument, skip_typerefs(type), by_constructor);
  if (is_class_struct_union_type(argument->type))
    return match_of_rank(by_constructor && conversion_function_converts(argument, type)
                             ? mr_user_conversion
                             : mr_none);
  a_type* source = make_unqualified_type(argument->type);
  if (is_array_type(source) || is_function_type(source))
    source = type_after_parameter_adjustment(source);
  type = make_unqualified_type(type);
  if (deprecated_literal_conversion_possible(argument, type))
    return match_of_rank(mr_conversion);
  if (identical_types(source, type))
    return match_of_rank(mr_exact);
  if (is_promotion(argument, type))
    return match_of_rank(mr_promotion);
  bool converts = impl_conversion_possible(source, is_glvalue_operand(argument),
                                           constant_of_operand(argument), type, &descr);
  if (!converts)
    return match_of_rank(mr_none);
  bool only_qualifies = descr.is_qualification_adjustment && !descr.is_derived_to_base &&
                        !descr.is_to_void_pointer && !descr.is_boolean_conversion;
  return match_of_rank(only_qualifies ? mr_exact : mr_conversion);
}

// An overload set, and a list in braces, fit whatever is there for them.
static bool has_no_type_of_its_own(const an_operand* argument) {
  return argument->kind == ok_indefinite_function || argument->kind == ok_error ||
         argument->kind == ok_braced_list || argument->kind == ok_undefined_symbol ||
         argument->kind == ok_sym_for_member;
}

static an_arg_match match_argument(const an_init_component* component, a_type* type,
                                   bool by_constructor) {
  if (component->kind != ick_expression)
    return match_of_rank(mr_user_conversion);
  const an_operand* argument = &component->variant.operand;
  if (has_no_type_of_its_own(argument) || is_error_type(type))
    return match_of_rank(mr_exact);
  return is_reference_type(type) ? match_reference(argument, type, by_constructor)
                                 : match_value(argument, type, by_constructor);
}

// C++11 12.3.1: a constructor that isn't explicit converts its one argument.
static bool constructor_converts(const an_operand* argument, a_type* class_type) {
  if (is_incomplete_type(class_type))
    return false;
  for (const a_routine_list_entry* entry = class_supplement_of(class_type)->constructors; entry;
       entry = entry->next) {
    const a_routine* routine = entry->routine;
    const a_param_type* param =
        is_error_type(routine->type) ? nullptr : param_types_of(skip_typerefs(routine->type));
    if (routine->is_explicit || routine->is_template_function || !param ||
        (param->next && !param->next->has_default_arg))
      continue;
    an_arg_match match = is_reference_type(param->type)
                             ? match_reference(argument, param->type, false)
                             : match_value(argument, param->type, false);
    if (match.rank != mr_none)
      return true;
  }
  return false;
}

// ---- Candidates ----

static bool takes_number_of_args(const a_routine* routine, const an_init_component* arg_list) {
  const a_type* type = skip_typerefs(routine->type);
  const a_param_type* param = param_types_of(type);
  for (; arg_list; arg_list = arg_list->next) {
    if (param)
      param = param->next;
    else if (!routine_type_has_ellipsis(type))
      return false;
  }
  return !param || param->has_default_arg;
}

// The object must have no qualifiers that the function lacks (C++11 13.3.1 p4).
static an_arg_match match_object(const a_routine* routine, const an_expr_node* selector,
                                 bool selector_is_pointer) {
  const a_routine_type_supplement* info =
      skip_typerefs(routine->type)->variant.routine.routine_supplement;
  if (!selector || !info->this_class || routine->is_static_member)
    return match_of_rank(mr_exact);
  a_type* object = selector_is_pointer ? type_pointed_to(selector->type) : selector->type;
  a_type_qualifier_set given = get_type_qualifiers(object) & tq_cv;
  a_type_qualifier_set wanted = info->this_qualifiers & tq_cv;
  bool is_rvalue = !selector_is_pointer && !selector->is_lvalue;
  if ((given & ~wanted) != 0 || (info->has_lvalue_ref_qualifier && is_rvalue) ||
      (info->has_rvalue_ref_qualifier && !is_rvalue))
    return match_of_rank(mr_none);
  return {mr_exact, wanted & ~given, false};
}

static bool make_candidate(a_routine* routine, const an_init_component* arg_list,
                           const an_expr_node* selector, bool selector_is_pointer,
                           bool by_constructor, a_candidate* candidate) {
  if (is_error_type(routine->type) || routine->is_template_function ||
      !takes_number_of_args(routine, arg_list))
    return false;
  candidate->routine = routine;
  candidate->matches.push_back(match_object(routine, selector, selector_is_pointer));
  const a_param_type* param = param_types_of(skip_typerefs(routine->type));
  for (; arg_list; arg_list = arg_list->next) {
    candidate->matches.push_back(param ? match_argument(arg_list, param->type, by_constructor)
                                       : match_of_rank(mr_ellipsis));
    if (param)
      param = param->next;
  }
  return std::none_of(candidate->matches.begin(), candidate->matches.end(),
                      [](const an_arg_match& match) { return match.rank == mr_none; });
}

// Negative when the first match is the better one.
static int compare_matches(const an_arg_match& a, const an_arg_match& b) {
  if (a.rank != b.rank)
    return a.rank < b.rank ? -1 : 1;
  if (a.binds_rvalue_to_lvalue_reference != b.binds_rvalue_to_lvalue_reference)
    return a.binds_rvalue_to_lvalue_reference ? 1 : -1;
  if (a.added_qualifiers == b.added_qualifiers)
    return 0;
  if ((a.added_qualifiers & ~b.added_qualifiers) == 0)
    return -1;
  return (b.added_qualifiers & ~a.added_qualifiers) == 0 ? 1 : 0;
}

static bool is_better_candidate(const a_candidate& a, const a_candidate& b) {
  bool any_better = false;
  for (size_t i = 0; i < a.matches.size(); ++i) {
    int order = compare_matches(a.matches[i], b.matches[i]);
    if (order > 0)
      return false;
    any_better |= order < 0;
  }
  // A constructor goes before one with the same parameters that is inherited.
  return any_better || (b.routine->is_inheriting_ctor && !a.routine->is_inheriting_ctor);
}

static a_routine* best_of_candidates(const std::vector<a_candidate>& candidates,
                                     bool* is_ambiguous) {
  *is_ambiguous = false;
  for (const a_candidate& candidate : candidates) {
    bool is_best = std::all_of(candidates.begin(), candidates.end(), [&](const a_candidate& other) {
      return &other == &candidate || is_better_candidate(candidate, other);
    });
    if (is_best)
      return candidate.routine;
  }
  *is_ambiguous = !candidates.empty();
  return nullptr;
}

a_routine* select_routine(const std::vector<a_routine*>& routines,
                          const an_init_component* arg_list, const an_expr_node* selector,
                          bool selector_is_pointer, bool by_constructor, bool* is_ambiguous) {
  std::vector<a_candidate> candidates;
  for (a_routine* routine : routines) {
    a_candidate candidate;
    if (make_candidate(routine, arg_list, selector, selector_is_pointer, by_constructor,
                       &candidate))
      candidates.push_back(std::move(candidate));
  }
  return best_of_candidates(candidates, is_ambiguous);
}

void add_routines_of_set(a_symbol* symbol, std::vector<a_routine*>* routines) {
  symbol = fundamental_symbol_of(symbol);
  if (symbol->kind == symk_overloaded_function) {
    for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
      add_routines_of_set(s, routines);
  } else if (symbol->kind == symk_routine || symbol->kind == symk_member_function) {
    routines->push_back(symbol->variant.routine);
  }
}

// ---- Constructors ----

static std::vector<a_routine*> constructors_of(const a_type* class_type, bool allow_explicit) {
  std::vector<a_routine*> routines;
  for (const a_routine_list_entry* entry = class_supplement_of(class_type)->constructors; entry;
       entry = entry->next)
    if (allow_explicit || !entry->routine->is_explicit)
      routines.push_back(entry->routine);
  return routines;
}

static void report_no_constructor(a_type* class_type, bool is_ambiguous, bool has_args,
                                  const a_source_position* position) {
  a_symbol* symbol = class_type->source_corresp.symbol;
  a_symbol* constructor = class_symbol_supplement_of(class_type)
                              ? class_symbol_supplement_of(class_type)->constructor
                              : nullptr;
  if (!expr_error_should_be_issued())
    return;
  if (!has_args)
    pos_ty_error(is_ambiguous ? ec_ambiguous_default_constructor : ec_no_default_constructor,
                 position, class_type);
  else if (is_ambiguous)
    pos_sy_error(ec_ambiguous_overloaded_function, position, constructor ? constructor : symbol);
  else
    pos_sy_error(ec_no_matching_function, position, constructor ? constructor : symbol);
}

// What has been reported already makes no constructor fit.
static bool any_error_argument(const an_init_component* arg_list) {
  for (; arg_list; arg_list = arg_list->next)
    if (arg_list->kind == ick_expression && is_error_operand(&arg_list->variant.operand))
      return true;
  return false;
}

a_routine* select_constructor(a_type* class_type, an_init_component* arg_list, bool is_copy_init,
                              const a_source_position* position, an_expr_node** arguments) {
  bool is_ambiguous;
  *arguments = nullptr;
  if (any_error_argument(arg_list))
    return nullptr;
  class_type = skip_typerefs(class_type);
  a_routine* routine = select_routine(constructors_of(class_type, !is_copy_init), arg_list, nullptr,
                                      false, arg_list && arg_list->next, &is_ambiguous);
  // One argument may be converted first, where no copy of it is meant.
  if (!routine && !is_ambiguous)
    routine = select_routine(constructors_of(class_type, !is_copy_init), arg_list, nullptr, false,
                             true, &is_ambiguous);
  if (!routine) {
    report_no_constructor(class_type, is_ambiguous, arg_list != nullptr, position);
    return nullptr;
  }
  check_use_of_routine(routine, class_type, position);
  an_arg_check_block block;
  start_call_argument_processing(skip_typerefs(routine->type), routine, &block);
  block.position = *position;
  *arguments = process_call_argument_list(arg_list, &block);
  return block.any_error ? nullptr : routine;
}

// A function that was found as a member of a derived class has the access that it
// has there (C++11 11.2 p5).
static void check_access_to_routine(a_routine* routine, a_type* naming_class,
                                    const a_source_position* position) {
  a_symbol* symbol = routine->source_corresp.symbol;
  naming_class = skip_typerefs(naming_class);
  if (naming_class == class_of_member(&routine->source_corresp)) {
    check_access_to_symbol(symbol, naming_class, nullptr, position);
    return;
  }
  a_symbol_locator locator = cleared_locator;
  locator.header = symbol->header;
  class_qualified_id_lookup(&locator, naming_class, ilo_none);
  if (locator.symbol &&
      !have_access_to_routine(locator.symbol, routine, naming_class, naming_class))
    record_access_error(symbol, naming_class, naming_class, position);
}

void check_use_of_routine(a_routine* routine, a_type* naming_class,
                          const a_source_position* position) {
  a_symbol* symbol = routine->source_corresp.symbol;
  if (!symbol || !expr_error_should_be_issued())
    return;
  if (routine->is_deleted)
    pos_sy_error(ec_deleted_function, position, symbol);
  else if (symbol->is_class_member)
    check_access_to_routine(routine, naming_class, position);
  if (expr_stack && expr_stack->flags.references_count)
    routine->called = true;
}

void check_use_of_destructor(a_type* type, const a_source_position* position) {
  a_type* class_type = skip_typerefs(skip_array_types(type));
  if (!is_class_struct_union_type(class_type))
    return;
  a_routine* destructor = class_supplement_of(class_type)->destructor;
  if (destructor)
    check_use_of_routine(destructor, class_type, position);
}

a_dynamic_init* make_constructor_init(a_type* class_type, a_routine* constructor,
                                      an_expr_node* arguments) {
  a_dynamic_init* init = alloc_dynamic_init(dik_constructor);
  a_routine* destructor = class_supplement_of(skip_typerefs(class_type))->destructor;
  a_type_qualifier_set qualifiers;
  init->variant.constructor.routine = constructor;
  init->variant.constructor.args = arguments;
  init->variant.constructor.is_copy = is_copy_constructor(constructor, &qualifiers);
  if (destructor && !destructor->is_trivial)
    init->destructor = destructor;
  return init;
}

// ---- Temporaries ----

void make_class_temporary(a_type* class_type, an_init_component* arg_list,
                          const a_source_position* position, an_operand* result) {
  an_expr_node* arguments;
  a_routine* constructor = select_constructor(class_type, arg_list, false, position, &arguments);
  if (!constructor) {
    make_error_operand(result);
    return;
  }
  a_dynamic_init* init = make_constructor_init(class_type, constructor, arguments);
  init->is_temporary = true;
  make_temp_init_operand(class_type, init, false, position, result);
}

void construct_object_of_operand(an_operand* operand, a_type* class_type) {
  an_operand saved = *operand;
  an_init_component* argument = alloc_init_component(ick_expression);
  argument->variant.operand = saved;
  make_class_temporary(class_type, argument, &saved.position, operand);
  check_use_of_destructor(class_type, &saved.position);
  free_init_component_list(argument);
  restore_operand_details(operand, &saved);
}

bool convert_operand_by_constructor(an_operand* operand, a_type* class_type) {
  if (is_error_operand(operand) || has_no_type_of_its_own(operand) ||
      !is_class_struct_union_type(class_type) ||
      !constructor_converts(operand, skip_typerefs(class_type)))
    return false;
  construct_object_of_operand(operand, class_type);
  return true;
}
