// Type traits (C++11 20.9): questions about types that a keyword asks. What a
// class declares of special members is known from its supplement; a conversion
// is judged by trying it, with errors suppressed.

#include "class_decl.h"
#include "declarator.h"
#include "expr_operator.h"
#include "il.h"
#include "lookup.h"
#include "mode_words.h"

#include <vector>

// ---- Classes ----

static a_type* class_of(a_type* type) {
  a_type* element = skip_array_types(type);
  return is_class_struct_union_type(element) ? f_skip_typerefs(element) : nullptr;
}

static bool declares_special_members(a_type* type) {
  a_type* class_type = class_of(type);
  if (!class_type)
    return false;
  const a_class_type_supplement* info = class_supplement_of(class_type);
  return info->has_user_constructor || info->has_user_destructor || info->has_virtual_bases ||
         class_type->variant.class_struct_union.has_virtual_functions;
}

static bool is_value_type(const a_type* type) {
  return !is_void_type(type) && !is_function_type(type);
}

static bool has_user_destructor(a_type* type) {
  a_type* class_type = class_of(type);
  return class_type && class_supplement_of(class_type)->has_user_destructor;
}

static bool has_trivial_destructor(a_type* type) {
  a_type* class_type = class_of(type);
  return is_value_type(type) && !(class_type && class_supplement_of(class_type)->needs_destructor);
}

// The member that serves for the class; null for none, and for one that is deleted.
static a_routine* usable_member(const a_type* class_type, a_special_member_kind kind) {
  a_routine* routine = special_member_of_class(const_cast<a_type*>(class_type), kind, tq_none);
  return routine && !routine->is_deleted ? routine : nullptr;
}

static bool has_virtual_destructor(a_type* type) {
  a_type* class_type = class_of(type);
  const a_routine* destructor = class_type ? class_supplement_of(class_type)->destructor : nullptr;
  return destructor && destructor->is_virtual;
}

static bool has_assign(a_type* type) {
  a_type* class_type = class_of(type);
  return class_type && !is_const_qualified_type(type) &&
         usable_member(class_type, smk_copy_assignment);
}

static bool has_copy(a_type* type) {
  a_type* class_type = class_of(type);
  return class_type && usable_member(class_type, smk_copy_constructor);
}

static bool has_nothrow_assign(a_type* type) {
  return is_value_type(type) && !is_reference_type(type) && !is_const_qualified_type(type) &&
         !declares_special_members(type);
}

static bool has_nothrow_constructor(a_type* type) {
  return is_value_type(type) && !is_reference_type(type) && !declares_special_members(type);
}

static bool has_nothrow_copy(a_type* type) {
  return is_value_type(type) && (is_reference_type(type) || !declares_special_members(type));
}

// ---- What is trivial, as the completion of the class has found it ----

static bool has_trivial_member(a_type* type, a_special_member_kind kind) {
  a_type* class_type = class_of(type);
  const a_routine* routine = class_type ? usable_member(class_type, kind) : nullptr;
  return class_type ? routine && routine->is_trivial : is_value_type(type);
}

static bool has_trivial_assign(a_type* type) {
  return !is_reference_type(type) && !is_const_qualified_type(type) &&
         has_trivial_member(type, smk_copy_assignment);
}

static bool has_trivial_move_assign(a_type* type) {
  return !is_reference_type(type) && !is_const_qualified_type(type) &&
         has_trivial_member(type, smk_move_assignment);
}

static bool has_trivial_constructor(a_type* type) {
  return !is_reference_type(type) && has_trivial_member(type, smk_default_constructor);
}

static bool has_trivial_copy(a_type* type) {
  return has_trivial_member(type, smk_copy_constructor);
}

static bool has_trivial_move_constructor(a_type* type) {
  return has_trivial_member(type, smk_move_constructor);
}

static bool is_abstract(a_type* type) {
  return is_class_struct_union_type(type) && class_of(type)->variant.class_struct_union.is_abstract;
}

static bool is_class(a_type* type) {
  return is_class_struct_type(type);
}

static bool is_union(a_type* type) {
  return is_union_type(type);
}

static bool is_enum(a_type* type) {
  return is_enum_type(type);
}

static bool is_empty(a_type* type) {
  return is_class_struct_type(type) && class_of(type)->variant.class_struct_union.is_empty;
}

static bool is_polymorphic(a_type* type) {
  return is_class_struct_type(type) && is_polymorphic_class_type(type);
}

static bool is_final(a_type* type) {
  return is_class_struct_union_type(type) &&
         class_of(type)->variant.class_struct_union.is_declared_final;
}

static bool is_trivially_copyable(a_type* type) {
  a_type* class_type = class_of(type);
  return is_value_type(type) && !is_reference_type(type) &&
         (!class_type || class_supplement_of(class_type)->is_trivially_copyable);
}

static bool is_trivial(a_type* type) {
  a_type* class_type = class_of(type);
  return is_trivially_copyable(type) &&
         (!class_type || !class_supplement_of(class_type)->needs_constructor);
}

static bool is_standard_layout(a_type* type);

static const a_field* first_field(const a_type* class_type) {
  return class_type->variant.class_struct_union.fields;
}

// All fields have one access and standard layout; the first isn't of a base's class.
static bool has_standard_layout_fields(const a_type* class_type) {
  const a_field* first = first_field(class_type);
  for (const a_field* field = first; field; field = field->next)
    if (field->source_corresp.access != first->source_corresp.access ||
        !is_standard_layout(field->type))
      return false;
  const a_type* of_first = first ? class_of(first->type) : nullptr;
  return !of_first || !find_base_class_of(class_type, const_cast<a_type*>(of_first));
}

// C++11 9 p7: one class alone, of itself and its bases, has fields.
static bool has_standard_layout_bases(const a_type* class_type) {
  int classes_with_fields = first_field(class_type) != nullptr;
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next) {
    if (base->is_virtual || !is_standard_layout(base->type))
      return false;
    classes_with_fields += first_field(class_of(base->type)) != nullptr;
  }
  return classes_with_fields <= 1;
}

static bool is_standard_layout(a_type* type) {
  check_stack_limit();
  if (!is_value_type(type) || is_reference_type(type))
    return false;
  const a_type* class_type = class_of(type);
  return !class_type ||
         (!class_type->variant.class_struct_union.has_virtual_functions &&
          has_standard_layout_fields(class_type) && has_standard_layout_bases(class_type));
}

static bool is_pod(a_type* type) {
  return is_trivial(type) && is_standard_layout(type);
}

static bool is_literal(a_type* type) {
  a_type* class_type = class_of(type);
  return is_reference_type(type) ||
         (is_value_type(type) && (!class_type || class_supplement_of(class_type)->is_literal));
}

static bool is_base_of(a_type* base, a_type* derived) {
  if (!is_class_struct_type(base) || !is_class_struct_type(derived))
    return false;
  a_type* base_class = f_skip_typerefs(base);
  a_type* derived_class = f_skip_typerefs(derived);
  return base_class == derived_class || find_base_class_of(derived_class, base_class);
}

// ---- Conversions that are tried ----

static void begin_trial(an_expr_stack_entry* entry) {
  push_nested_expr_stack(ek_unevaluated, entry);
  entry->flags.suppress_errors = true;
}

static bool end_trial(const an_expr_stack_entry* entry, const an_operand* operand) {
  bool succeeded = !entry->flags.error_suppressed && !is_error_operand(operand);
  pop_expr_stack();
  return succeeded;
}

static void make_operand_of_type(a_type* type, an_operand* operand) {
  bool is_lvalue = is_lvalue_reference_type(type);
  a_type* object_type = is_reference_type(type) ? type_pointed_to(type) : type;
  make_dummy_lvalue_operand(object_type, operand);
  if (!is_lvalue && is_class_struct_union_type(object_type))
    operand->state = os_prvalue;
}

static bool conversion_succeeds(a_type* from, a_type* to) {
  an_expr_stack_entry entry;
  an_operand operand;
  begin_trial(&entry);
  make_operand_of_type(from, &operand);
  a_type* target = is_reference_type(to) ? type_pointed_to(to) : to;
  prep_initializer_operand(&operand, target, ec_bad_initializer_type);
  return end_trial(&entry, &operand);
}

static bool compute_is_convertible(a_type* from, a_type* to) {
  if (is_void_type(from) || is_void_type(to))
    return is_void_type(from) && is_void_type(to);
  if (is_function_type(to) || is_array_type(to))
    return false;
  return conversion_succeeds(from, to);
}

static bool compute_is_destructible(a_type* type) {
  a_type* class_type = is_reference_type(type) ? nullptr : class_of(type);
  return is_reference_type(type) ||
         (is_value_type(type) && (!class_type || usable_member(class_type, smk_destructor)));
}

static bool compute_is_constructible(a_type* type, const std::vector<a_type*>& arguments) {
  if (!is_value_type(type) || is_abstract(type))
    return false;
  if (arguments.empty())
    return !is_reference_type(type) && has_nothrow_constructor(type);
  if (arguments.size() > 1 || is_array_type(type))
    return false;
  return compute_is_convertible(arguments[0], type);
}

static bool compute_is_assignable(a_type* to, a_type* from) {
  bool is_lvalue = is_lvalue_reference_type(to);
  a_type* target = is_reference_type(to) ? type_pointed_to(to) : to;
  if ((!is_lvalue && !is_class_struct_union_type(target)) || !is_value_type(target) ||
      is_array_type(target) || is_const_qualified_type(target) || is_void_type(from))
    return false;
  return conversion_succeeds(from, target);
}

// ---- The table ----

namespace {

struct a_trait_answer {
  bool (*of_one)(a_type*) = nullptr;
  bool (*of_two)(a_type*, a_type*) = nullptr;
  bool (*of_list)(a_type*, const std::vector<a_type*>&) = nullptr;

  constexpr a_trait_answer(bool (*answer)(a_type*)) : of_one(answer) {}
  constexpr a_trait_answer(bool (*answer)(a_type*, a_type*)) : of_two(answer) {}
  constexpr a_trait_answer(bool (*answer)(a_type*, const std::vector<a_type*>&))
      : of_list(answer) {}
};

struct a_trait {
  uint8_t number;
  a_token_kind token;
  uint8_t operands;
  a_trait_answer answer;
};

constexpr a_trait traits[] = {
#define TRAIT(number, token, operands, routine) {number, token, operands, routine},
#include "type_traits.def"
#undef TRAIT
};

const a_trait* trait_of_token(a_token_kind token) {
  for (const a_trait& trait : traits)
    if (trait.token == token)
      return &trait;
  return nullptr;
}

} // namespace

const char* builtin_operation_name(int number) {
  for (const a_trait& trait : traits)
    if (trait.number == number)
      return token_names[trait.token];
  return nullptr;
}

// ---- The form ----

struct a_trait_use {
  const a_trait* trait;
  a_type* type;
  std::vector<a_type*> arguments;
  a_source_position start;
  a_source_position end;
};

static void scan_trait_types(a_trait_use* use) {
  get_token();
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  add_stop_token(tok_comma);
  use->type = type_name();
  bool needs_second = use->trait->operands == 2;
  if (needs_second && curr_token != tok_comma)
    required_token_no_advance(tok_comma, ec_exp_comma);
  while (use->trait->operands > 1 && loop_token(tok_comma)) {
    use->arguments.push_back(type_name());
    if (needs_second)
      break;
  }
  remove_stop_token(tok_comma);
  remove_stop_token(tok_rparen);
  use->end = end_pos_curr_token;
  required_token(tok_rparen, ec_exp_rparen);
}

static bool any_error_type(const a_trait_use* use) {
  if (is_error_type(use->type) || (use->trait->operands == 2 && use->arguments.empty()))
    return true;
  for (const a_type* type : use->arguments)
    if (is_error_type(type))
      return true;
  return false;
}

static bool answer_of_trait(const a_trait_use* use) {
  const a_trait_answer& answer = use->trait->answer;
  if (answer.of_one)
    return answer.of_one(use->type);
  if (answer.of_two)
    return answer.of_two(use->type, use->arguments[0]);
  return answer.of_list(use->type, use->arguments);
}

bool scan_type_trait(an_operand* result) {
  a_trait_use use = {};
  use.trait = trait_of_token(curr_token);
  if (!use.trait)
    return false;
  use.start = pos_curr_token;
  if (!type_traits_helpers_enabled && expr_error_should_be_issued())
    pos_st_error(ec_feature_not_allowed_in_current_mode, &use.start,
                 builtin_operation_name(use.trait->number));
  scan_trait_types(&use);
  if (any_error_type(&use)) {
    make_error_operand(result);
  } else {
    make_integer_constant_operand(answer_of_trait(&use), ik_int, result);
    cast_operand(type_traits_helpers_enabled ? bool_type() : boolean_result_type(), result, true);
  }
  set_operator_positions(result, &use.start, &use.start, &use.end);
  return true;
}
