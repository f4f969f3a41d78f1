// Conversions of objects of classes by conversion functions (C++11 12.3.2): which
// function converts to a type, and its call.

#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "lambda.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "types.h"

#include <algorithm>

namespace {

// How well the result of a conversion function serves; lower is better.
constexpr int no_conversion = 3;

struct a_conversion {
  a_routine* routine;
  a_type_qualifier_set added_qualifiers; // by the binding of the object
  int rank;                              // of the standard conversion behind it
};

// What the object is converted to: a type, or any type of a set.
struct a_conversion_target {
  a_type* type; // null: the set counts
  uint32_t builtin_types;
  bool needs_lvalue; // a reference is to be bound
};

} // namespace

// ---- The functions ----

static a_type* result_of_conversion(const a_routine* routine) {
  a_type* type = return_type_of(routine->type);
  return make_unqualified_type(is_reference_type(type) ? type_pointed_to(type) : type);
}

static void add_conversions_of_class(const a_type* class_type, std::vector<a_routine*>* routines) {
  const size_t of_derived = routines->size();
  for (const a_routine_list_entry* entry = class_supplement_of(class_type)->conversions; entry;
       entry = entry->next) {
    a_routine* routine = entry->routine;
    if (routine->is_template_function || is_error_type(routine->type))
      continue;
    bool is_hidden =
        std::any_of(routines->begin(), routines->begin() + static_cast<ptrdiff_t>(of_derived),
                    [routine](const a_routine* other) {
                      return other == routine || identical_types(return_type_of(other->type),
                                                                 return_type_of(routine->type));
                    });
    if (!is_hidden)
      routines->push_back(routine);
  }
}

// Those of the class and of its bases; one to the same type hides that of a base.
static std::vector<a_routine*> conversions_of(const a_type* class_type) {
  std::vector<a_routine*> routines;
  class_type = skip_typerefs(class_type);
  add_conversions_of_class(class_type, &routines);
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next)
    add_conversions_of_class(skip_typerefs(base->type), &routines);
  return routines;
}

bool has_conversion_functions(const a_type* type) {
  return is_class_struct_union_type(type) && !conversions_of(type).empty();
}

a_symbol* conversion_functions_to(const a_type* class_type, const a_type* type) {
  std::vector<a_symbol*> symbols;
  for (a_routine* routine : conversions_of(class_type))
    if (identical_types(return_type_of(routine->type), const_cast<a_type*>(type)))
      symbols.push_back(routine->source_corresp.symbol);
  if (symbols.empty())
    return nullptr;
  return symbols.size() == 1 ? symbols.front() : make_overload_set_of(symbols);
}

// ---- The choice (C++11 13.3.1.5, 13.3.3 p1) ----

static int rank_of_standard_conversion(a_type* source, a_type* target) {
  a_std_conv_descr descr;
  target = make_unqualified_type(target);
  if (identical_types(source, target))
    return 0;
  if (is_class_struct_union_type(source) || is_class_struct_union_type(target))
    return is_class_struct_union_type(source) && is_class_struct_union_type(target) &&
                   find_base_class_of(skip_typerefs(source), skip_typerefs(target))
               ? 2
               : no_conversion;
  bool is_promotion =
      is_integral_or_enum_type(source)
          ? identical_types(type_after_integral_promotion(source), target)
          : is_floating_type(source) && identical_types(default_argument_promotion(source), target);
  if (is_promotion)
    return 1;
  return impl_conversion_possible(source, false, nullptr, target, &descr) ? 2 : no_conversion;
}

static bool is_in_builtin_type_set(const a_type* type, uint32_t set) {
  if (is_enum_type(type))
    return (set & (is_scoped_enum_type(type) ? bts_scoped_enum : bts_enum)) != 0;
  if (is_integral_or_enum_type(type))
    return (set & bts_integral) != 0;
  if (is_arithmetic_or_enum_type(type))
    return (set & bts_floating) != 0;
  if (is_pointer_type(type))
    return (set & (bts_pointer | bts_pointer_to_object | bts_pointer_to_function)) != 0;
  return is_scalar_type(type) && (set & bts_ptr_to_member) != 0;
}

static int rank_of_result(const a_routine* routine, const a_conversion_target* target) {
  a_type* result = result_of_conversion(routine);
  if (target->needs_lvalue) {
    a_type* type = return_type_of(routine->type);
    bool binds =
        is_lvalue_reference_type(type) && (get_type_qualifiers(type_pointed_to(type)) & tq_cv &
                                           ~get_type_qualifiers(target->type)) == 0;
    int rank = rank_of_standard_conversion(result, target->type);
    return binds && (rank == 0 || is_class_struct_union_type(result)) ? rank : no_conversion;
  }
  if (!target->type)
    return is_in_builtin_type_set(result, target->builtin_types) ? 0 : no_conversion;
  return rank_of_standard_conversion(result, target->type);
}

static bool is_better_conversion(const a_conversion& a, const a_conversion& b) {
  if (a.added_qualifiers != b.added_qualifiers)
    return (a.added_qualifiers & ~b.added_qualifiers) == 0;
  return a.rank < b.rank;
}

static std::vector<a_conversion> possible_conversions(const an_operand* operand,
                                                      const a_conversion_target* target,
                                                      bool is_explicit) {
  std::vector<a_conversion> conversions;
  a_type_qualifier_set given = get_type_qualifiers(operand->type) & tq_cv;
  for (a_routine* routine : conversions_of(operand->type)) {
    a_type_qualifier_set wanted =
        skip_typerefs(routine->type)->variant.routine.routine_supplement->this_qualifiers & tq_cv;
    int rank = rank_of_result(routine, target);
    if (rank != no_conversion && (given & ~wanted) == 0 && (is_explicit || !routine->is_explicit))
      conversions.push_back({routine, static_cast<a_type_qualifier_set>(wanted & ~given), rank});
  }
  return conversions;
}

static a_routine* best_conversion(const std::vector<a_conversion>& conversions) {
  for (const a_conversion& conversion : conversions) {
    bool is_best =
        std::all_of(conversions.begin(), conversions.end(), [&](const a_conversion& other) {
          return &other == &conversion || is_better_conversion(conversion, other);
        });
    if (is_best)
      return conversion.routine;
  }
  return nullptr;
}

// ---- The call ----

static void report_ambiguous_conversion(const an_operand* operand,
                                        const std::vector<a_conversion>& conversions,
                                        const a_conversion_target* target) {
  constexpr an_error_code text_function = 423;
  if (!expr_error_should_be_issued())
    return;
  a_diagnostic* diag = target->type
                           ? pos_ty2_start_error(ec_ambiguous_conversion_function,
                                                 &operand->position, operand->type, target->type)
                           : pos_ty_start_error(ec_ambiguous_conversion_to_builtin,
                                                &operand->position, operand->type);
  for (const a_conversion& conversion : conversions)
    sym_add_diag_info(diag, text_function, conversion.routine->source_corresp.symbol);
  end_diagnostic(diag);
}

static void call_conversion_function(an_operand* operand, a_routine* routine) {
  an_operand object = *operand;
  check_use_of_routine(routine, class_of_member(&routine->source_corresp), &object.position);
  call_known_routine(routine, &object, nullptr, &object.position, operand);
  restore_operand_details(operand, &object);
}

static bool convert_to_target(an_operand* operand, const a_conversion_target* target,
                              bool is_explicit) {
  std::vector<a_conversion> conversions = possible_conversions(operand, target, is_explicit);
  if (conversions.empty())
    return false;
  a_routine* routine = best_conversion(conversions);
  if (routine) {
    call_conversion_function(operand, routine);
  } else {
    report_ambiguous_conversion(operand, conversions, target);
    conv_to_error_operand(operand);
  }
  return true;
}

static bool may_be_converted(const an_operand* operand) {
  return in_cplusplus_mode() && !is_error_operand(operand) &&
         operand->kind != ok_indefinite_function && is_class_struct_union_type(operand->type) &&
         !is_incomplete_type(operand->type);
}

bool conversion_function_converts(const an_operand* operand, a_type* type) {
  a_conversion_target target = {type, 0, false};
  return may_be_converted(operand) && !possible_conversions(operand, &target, false).empty();
}

// Whether the class is the type, or converts to it without a function.
static bool is_class_or_base(const a_type* class_type, a_type* type) {
  return is_class_struct_union_type(type) &&
         (skip_typerefs(class_type) == skip_typerefs(type) ||
          find_base_class_of(skip_typerefs(class_type), skip_typerefs(type)));
}

bool convert_operand_by_conversion_function(an_operand* operand, a_type* type, bool is_explicit) {
  a_conversion_target target = {type, 0, false};
  if (convert_closure_to_pointer(operand, type))
    return true;
  if (!may_be_converted(operand) || is_class_or_base(operand->type, type) ||
      !convert_to_target(operand, &target, is_explicit))
    return false;
  do_operand_transformations(operand, ot_all);
  if (!is_error_operand(operand) && !is_class_struct_union_type(type))
    cast_operand(make_unqualified_type(type), operand, true);
  return true;
}

bool convert_operand_for_reference(an_operand* operand, a_type* type) {
  a_conversion_target target = {type_pointed_to(type), 0, true};
  return may_be_converted(operand) && !is_class_or_base(operand->type, target.type) &&
         convert_to_target(operand, &target, false);
}

bool convert_operand_to_bool(an_operand* operand) {
  a_conversion_target target = {bool_type(), 0, false};
  return may_be_converted(operand) && convert_to_target(operand, &target, true);
}

bool try_to_convert_class_operand_to_builtin_type(an_operand* operand, uint32_t builtin_types) {
  a_conversion_target target = {nullptr, builtin_types, false};
  return may_be_converted(operand) && convert_to_target(operand, &target, false);
}
