// Special member functions (C++11 12): which a class declares by itself, and
// which of them are trivial, deleted or constexpr.

#include "class_decl_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "types.h"

// ---- What a routine is ----

static const a_param_type* first_param(const a_type* routine_type) {
  return is_error_type(routine_type) ? nullptr : param_types_of(skip_typerefs(routine_type));
}

static bool has_default_from(const a_param_type* param) {
  return !param || param->has_default_arg || param->is_parameter_pack;
}

// Whether the type is a reference to the class, or, for an assignment operator,
// the class itself; *qualifiers are those of the class.
static bool is_reference_to_class(a_type* type, const a_type* class_type, bool is_rvalue,
                                  a_type_qualifier_set* qualifiers) {
  if (is_rvalue ? !is_rvalue_reference_type(type) : !is_lvalue_reference_type(type))
    return false;
  a_type* object = type_pointed_to(type);
  *qualifiers = get_type_qualifiers(object) & tq_cv;
  return skip_typerefs(object) == class_type;
}

static a_type* class_of_routine(const a_routine* routine) {
  return class_of_member(&routine->source_corresp);
}

bool is_default_constructor(const a_routine* routine) {
  return routine->special_kind == rsk_constructor && !is_error_type(routine->type) &&
         !routine->is_template_function && has_default_from(first_param(routine->type));
}

static bool is_constructor_from_class(const a_routine* routine, bool is_rvalue,
                                      a_type_qualifier_set* qualifiers) {
  const a_param_type* param = first_param(routine->type);
  return routine->special_kind == rsk_constructor && !routine->is_template_function && param &&
         has_default_from(param->next) &&
         is_reference_to_class(param->type, class_of_routine(routine), is_rvalue, qualifiers);
}

bool is_copy_constructor(const a_routine* routine, a_type_qualifier_set* qualifiers) {
  return is_constructor_from_class(routine, false, qualifiers);
}

bool routine_is_move_constructor(const a_routine* routine) {
  a_type_qualifier_set qualifiers;
  return is_constructor_from_class(routine, true, &qualifiers);
}

bool is_copy_assignment_operator_type(const a_type* type, const a_type* class_type,
                                      a_type_qualifier_set* qualifiers) {
  const a_param_type* param = first_param(type);
  if (!param || param->next)
    return false;
  *qualifiers = tq_const; // a value takes any object
  return skip_typerefs(param->type) == class_type ||
         is_reference_to_class(param->type, class_type, false, qualifiers);
}

static bool is_assignment_operator(const a_routine* routine) {
  return routine->special_kind == rsk_operator &&
         routine->special_data.operator_kind == opn_assign && !routine->is_template_function &&
         !routine->is_static_member;
}

bool is_assignment_operator_for_copy(const a_routine* routine, a_type_qualifier_set* qualifiers) {
  return is_assignment_operator(routine) &&
         is_copy_assignment_operator_type(routine->type, class_of_routine(routine), qualifiers);
}

bool routine_is_move_assignment_operator(const a_routine* routine) {
  a_type_qualifier_set qualifiers;
  const a_param_type* param = first_param(routine->type);
  return is_assignment_operator(routine) && param && !param->next &&
         is_reference_to_class(param->type, class_of_routine(routine), true, &qualifiers);
}

// Whether the routine is one of the kind, and for objects with which qualifiers.
static bool is_special_member(const a_routine* routine, a_special_member_kind kind,
                              a_type_qualifier_set* qualifiers) {
  *qualifiers = tq_none;
  switch (kind) {
  case smk_default_constructor:
    return is_default_constructor(routine);
  case smk_copy_constructor:
    return is_copy_constructor(routine, qualifiers);
  case smk_move_constructor:
    return routine_is_move_constructor(routine);
  case smk_copy_assignment:
    return is_assignment_operator_for_copy(routine, qualifiers);
  case smk_move_assignment:
    return routine_is_move_assignment_operator(routine);
  default:
    return routine->special_kind == rsk_destructor;
  }
}

// ---- The members of a class ----

static bool is_constructor_kind(a_special_member_kind kind) {
  return kind <= smk_move_constructor;
}

static void add_routines_of_symbol(const a_symbol* symbol, std::vector<a_routine*>* routines) {
  if (!symbol)
    return;
  if (symbol->kind == symk_overloaded_function) {
    for (a_symbol* s = symbol->variant.overload_list; s; s = s->next_homonym)
      add_routines_of_symbol(fundamental_symbol_of(s), routines);
  } else if (symbol->kind == symk_member_function) {
    routines->push_back(symbol->variant.routine);
  }
}

// The functions among which that of the kind is.
static std::vector<a_routine*> routines_of_kind(const a_type* class_type,
                                                a_special_member_kind kind) {
  std::vector<a_routine*> routines;
  const a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (!info)
    return routines;
  add_routines_of_symbol(is_constructor_kind(kind) ? info->constructor
                         : kind == smk_destructor  ? info->destructor
                                                   : info->assignment_operator,
                         &routines);
  return routines;
}

// The one that fits the qualifiers of the source best; null for none, or after
// two that fit alike.
static a_routine* best_special_member(const a_type* class_type, a_special_member_kind kind,
                                      a_type_qualifier_set source, bool* is_ambiguous) {
  a_routine* best = nullptr;
  a_type_qualifier_set best_qualifiers = tq_cv;
  *is_ambiguous = false;
  for (a_routine* routine : routines_of_kind(class_type, kind)) {
    a_type_qualifier_set qualifiers;
    if (!is_special_member(routine, kind, &qualifiers) || (source & ~qualifiers) != 0)
      continue;
    *is_ambiguous = best && qualifiers == best_qualifiers;
    if (best && (qualifiers & ~best_qualifiers) != 0)
      continue;
    best = routine;
    best_qualifiers = qualifiers;
  }
  return *is_ambiguous ? nullptr : best;
}

a_routine* special_member_of_class(a_type* class_type, a_special_member_kind kind,
                                   a_type_qualifier_set source) {
  bool is_ambiguous;
  class_type = skip_typerefs(class_type);
  a_routine* routine = best_special_member(class_type, kind, source, &is_ambiguous);
  if (routine || is_ambiguous)
    return routine;
  // What can't be moved is copied; a temporary binds to a reference to const.
  if (kind == smk_move_constructor)
    return best_special_member(class_type, smk_copy_constructor, source | tq_const, &is_ambiguous);
  if (kind == smk_move_assignment)
    return best_special_member(class_type, smk_copy_assignment, source | tq_const, &is_ambiguous);
  return nullptr;
}

static bool declares_special_member(const a_type* class_type, a_special_member_kind kind) {
  a_type_qualifier_set qualifiers;
  for (const a_routine* routine : routines_of_kind(class_type, kind))
    if (is_special_member(routine, kind, &qualifiers))
      return true;
  return false;
}

// ---- The analysis ----

namespace {

// What the implicit form of a special member would be.
struct an_implicit_member {
  a_type* class_type;
  a_special_member_kind kind;
  bool is_trivial;
  bool is_deleted;
  bool takes_const; // of a copy: all bases and members can be copied from const
  bool is_constexpr;
};

} // namespace

static bool is_copy_kind(a_special_member_kind kind) {
  return kind == smk_copy_constructor || kind == smk_copy_assignment;
}

static bool is_assignment_kind(a_special_member_kind kind) {
  return kind == smk_copy_assignment || kind == smk_move_assignment;
}

static bool is_usable(a_routine* routine) {
  if (!routine || routine->is_deleted)
    return false;
  a_symbol* symbol = routine->source_corresp.symbol;
  return !symbol || have_access_to_symbol(symbol, class_of_routine(routine), nullptr);
}

bool is_copyable_class(a_type* class_type) {
  a_type_qualifier_set qualifiers = get_type_qualifiers(class_type) & tq_cv;
  return is_usable(special_member_of_class(class_type, smk_copy_constructor, qualifiers));
}

// What a base or a member of class type adds. `qualifiers` are those of the
// member; a variant member must be trivial.
static void consider_class(an_implicit_member* member, a_type* class_type,
                           a_type_qualifier_set qualifiers, bool is_variant, bool is_mutable) {
  bool is_copy = is_copy_kind(member->kind);
  if (member->kind == smk_default_constructor || member->kind == smk_destructor)
    qualifiers = tq_none; // those serve const objects as well
  a_routine* routine = special_member_of_class(class_type, member->kind,
                                               is_copy ? qualifiers | tq_const : qualifiers);
  member->takes_const &= routine || !is_copy;
  // Of a const object a mutable member isn't const.
  if (is_copy && (!routine || is_mutable)) {
    routine = special_member_of_class(class_type, member->kind, qualifiers);
  }
  if (!is_usable(routine)) {
    member->is_deleted = true;
    return;
  }
  member->is_trivial &= routine->is_trivial;
  member->is_deleted |= is_variant && !routine->is_trivial;
  member->is_constexpr &= routine->is_constexpr;
  // A constructor may have to take back what it has built.
  if (is_constructor_kind(member->kind) &&
      !is_usable(special_member_of_class(class_type, smk_destructor, tq_none)))
    member->is_deleted = true;
}

// C++11 12.1 p5, 12.8 p11, p23: members without a value of their own class.
static void consider_scalar(an_implicit_member* member, const a_field* field) {
  bool is_const = is_const_qualified_type(field->type);
  bool is_reference = is_reference_type(field->type);
  if (member->kind == smk_default_constructor) {
    member->is_deleted |= is_reference || is_const;
    member->is_constexpr = false;
  } else if (is_assignment_kind(member->kind)) {
    member->is_deleted |= is_reference || is_const;
  } else if (member->kind == smk_copy_constructor) {
    member->is_deleted |= is_rvalue_reference_type(field->type);
  }
}

// C++11 12.1 p5: a const member whose own default constructor does nothing.
static bool leaves_const_without_value(const an_implicit_member* member, a_type* class_type) {
  if (member->kind != smk_default_constructor)
    return false;
  const a_routine* constructor =
      special_member_of_class(class_type, smk_default_constructor, tq_none);
  return constructor && constructor->is_trivial &&
         next_initializable_field(skip_typerefs(class_type)->variant.class_struct_union.fields);
}

bool has_no_elements(const a_type* type) {
  const a_type* array = skip_typerefs(type);
  return array->kind == tk_array && !array->variant.array.bound_is_constant &&
         !array->variant.array.bound_is_expr && array->variant.array.bound.number_of_elements == 0;
}

static void consider_field(an_implicit_member* member, const a_field* field) {
  a_type* element = skip_array_types(field->type);
  bool is_variant = member->class_type->kind == tk_union;
  if (is_error_type(element) || has_no_elements(field->type) ||
      (field->source_corresp.is_unnamed && field->is_bit_field))
    return;
  if (member->kind == smk_default_constructor && field->has_default_init) {
    member->is_trivial = false;
    return;
  }
  if (is_class_struct_union_type(element)) {
    a_type_qualifier_set qualifiers = field->is_mutable ? tq_none : get_type_qualifiers(element);
    bool is_const = (qualifiers & tq_const) != 0;
    member->is_deleted |= is_const && (is_assignment_kind(member->kind) ||
                                       leaves_const_without_value(member, element));
    // The members of an anonymous union give it their values, if they have any.
    bool begins_itself = member->kind == smk_default_constructor && is_anonymous_member(field);
    consider_class(member, element, qualifiers & tq_cv, is_variant && !begins_itself,
                   field->is_mutable);
  } else if (!is_variant || is_reference_type(element) || is_assignment_kind(member->kind)) {
    consider_scalar(member, field);
  }
}

// Of a union that begins without a value, all members must be const to forbid
// it; a constant one needs a member with an initialiser.
static void consider_union_default(an_implicit_member* member) {
  bool all_const = true, any_init = false;
  a_field* first = member->class_type->variant.class_struct_union.fields;
  for (const a_field* field = first; field; field = field->next) {
    all_const &= is_const_qualified_type(field->type);
    any_init |= field->has_default_init;
  }
  member->is_deleted |= first && all_const && !any_init;
  member->is_constexpr &= any_init || !first;
}

static bool declares_pure_function(const a_type* class_type) {
  for (const a_routine* routine = class_supplement_of(class_type)->scope->routines; routine;
       routine = routine->next)
    if (routine->is_pure)
      return true;
  return false;
}

// `initialized_base` is one that a constructor inherited from it takes care of.
static an_implicit_member analyse_special_member(a_type* class_type, a_special_member_kind kind,
                                                 const a_type* initialized_base = nullptr) {
  an_implicit_member member = {class_type, kind, true, false, true, true};
  const auto& info = class_type->variant.class_struct_union;
  const a_class_type_supplement* supplement = class_supplement_of(class_type);
  for (const a_base_class* base = supplement->base_classes; base; base = base->next) {
    if (base->is_virtual && kind != smk_destructor)
      member.is_trivial = member.is_constexpr = false;
    // No constructor of an abstract class builds its virtual bases.
    bool is_left_out = base->is_virtual && declares_pure_function(class_type) &&
                       (is_constructor_kind(kind) || kind == smk_destructor);
    bool is_own = (base->is_direct || base->is_virtual) && !is_error_type(base->type);
    if (is_own && !is_left_out && class_of_base(base) != initialized_base)
      consider_class(&member, base->type, tq_none, false, false);
  }
  if (info.has_virtual_functions && kind != smk_destructor)
    member.is_trivial = false;
  for (const a_field* field = info.fields; field; field = field->next)
    consider_field(&member, field);
  if (class_type->kind == tk_union && kind == smk_default_constructor)
    consider_union_default(&member);
  if (kind == smk_destructor || (is_assignment_kind(kind) && !relaxed_constexpr_enabled))
    member.is_constexpr = false;
  return member;
}

// ---- Implicit declarations ----

static a_type* make_special_member_type(const an_implicit_member* member) {
  a_type* class_type = member->class_type;
  a_type* source = member->takes_const && is_copy_kind(member->kind)
                       ? make_qualified_type(class_type, tq_const)
                       : class_type;
  a_type* return_type =
      is_assignment_kind(member->kind) ? make_reference_type(class_type) : void_type();
  switch (member->kind) {
  case smk_copy_constructor:
  case smk_copy_assignment:
    return make_routine_type_full(return_type, make_reference_type(source));
  case smk_move_constructor:
  case smk_move_assignment:
    return make_routine_type_full(return_type, make_rvalue_reference_type(source));
  default:
    return make_routine_type_full(return_type);
  }
}

static void make_locator_of_kind(const an_implicit_member* member, a_symbol_locator* locator) {
  if (is_constructor_kind(member->kind))
    make_constructor_locator(member->class_type, locator);
  else if (member->kind == smk_destructor)
    make_destructor_locator(member->class_type, locator);
  else
    make_operator_locator(opn_assign, &member->class_type->source_corresp.position, locator);
}

// What the analysis says of a function that the class declares by itself or
// defaults.
static void apply_analysis(a_routine* routine, const an_implicit_member* member) {
  routine->is_trivial = member->is_trivial && !routine->is_virtual;
  if (deleted_functions_enabled)
    routine->is_deleted |= member->is_deleted;
  bool is_older_gnu = gpp_mode && gnu_version < 40800;
  if (constexpr_enabled && !is_older_gnu)
    routine->is_constexpr |= member->is_constexpr && !member->is_deleted;
}

// What may be thrown is worked out when somebody asks (C++11 15.4 p14). False where
// the program says it.
static bool add_indeterminate_exception_spec(a_routine* routine) {
  a_routine_type_supplement* supplement =
      skip_typerefs(routine->type)->variant.routine.routine_supplement;
  if (supplement->exception_specification)
    return false;
  if (!exceptions_enabled || !implicit_noexcept_enabled)
    return true;
  supplement->exception_specification = alloc_exception_specification();
  supplement->exception_specification->is_indeterminate = true;
  routine->exception_spec_is_implicit = true;
  return true;
}

static void declare_implicitly(const an_implicit_member* member) {
  a_symbol_locator locator;
  make_locator_of_kind(member, &locator);
  unsigned saved_access = scope_stack[depth_scope_stack].member_access;
  scope_stack[depth_scope_stack].member_access = as_public;
  a_symbol* symbol = enter_member_function(member->class_type, &locator,
                                           make_special_member_type(member), sc_extern);
  scope_stack[depth_scope_stack].member_access = saved_access;
  a_routine* routine = symbol->variant.routine;
  routine->is_compiler_generated = true;
  routine->is_implicitly_declared = true;
  routine->is_defaulted = true;
  set_inline_flag(routine, true);
  apply_analysis(routine, member);
  add_indeterminate_exception_spec(routine);
}

// A move that the class can't have is left to the copy (C++11 12.8 p9, p20).
static bool declares_move(const a_type* class_type) {
  return rvalue_references_enabled && !declares_special_member(class_type, smk_copy_constructor) &&
         !declares_special_member(class_type, smk_move_constructor) &&
         !declares_special_member(class_type, smk_copy_assignment) &&
         !declares_special_member(class_type, smk_move_assignment) &&
         !declares_special_member(class_type, smk_destructor);
}

static void declare_unless_declared(a_type* class_type, a_special_member_kind kind,
                                    bool is_forbidden) {
  if (declares_special_member(class_type, kind))
    return;
  an_implicit_member member = analyse_special_member(class_type, kind);
  member.is_deleted |= is_forbidden;
  declare_implicitly(&member);
}

static void declare_move_unless_deleted(a_type* class_type, a_special_member_kind kind) {
  an_implicit_member member = analyse_special_member(class_type, kind);
  if (!member.is_deleted)
    declare_implicitly(&member);
}

static void declare_implicit_members(a_type* class_type) {
  bool is_moved = declares_special_member(class_type, smk_move_constructor) ||
                  declares_special_member(class_type, smk_move_assignment);
  bool may_move = declares_move(class_type);
  bool is_closure = class_supplement_of(class_type)->is_lambda_closure; // C++11 5.1.2 p19
  if (routines_of_kind(class_type, smk_default_constructor).empty() && !is_closure)
    declare_unless_declared(class_type, smk_default_constructor, false);
  declare_unless_declared(class_type, smk_destructor, false);
  declare_unless_declared(class_type, smk_copy_constructor, is_moved);
  declare_unless_declared(class_type, smk_copy_assignment, is_moved || is_closure);
  if (!may_move)
    return;
  declare_move_unless_deleted(class_type, smk_move_constructor);
  declare_move_unless_deleted(class_type, smk_move_assignment);
}

// ---- Inherited constructors (C++11 12.9) ----

static bool is_copy_or_move_constructor(const a_routine* routine) {
  a_type_qualifier_set qualifiers;
  return is_copy_constructor(routine, &qualifiers) || routine_is_move_constructor(routine);
}

// The type that the constructor has in the derived class; null where none is
// inherited: default, copy and move constructors stay behind (p3). One that is such
// by its default arguments alone loses those.
static a_type* type_of_inherited_constructor(const a_routine* constructor) {
  if (is_error_type(constructor->type) || constructor->is_template_function)
    return nullptr;
  a_type* type = copy_routine_type_with_param_types(skip_typerefs(constructor->type));
  a_param_type* param = param_types_of(type);
  if (param && is_copy_or_move_constructor(constructor))
    param = param->next;
  else if (!is_default_constructor(constructor))
    return type;
  if (!param)
    return nullptr;
  param->has_default_arg = param->default_arg_is_deferred = false;
  param->default_arg_expr = nullptr;
  return type;
}

static void enter_inherited_constructor(a_type* class_type, const a_routine* constructor,
                                        a_type* type, a_symbol_locator* locator) {
  unsigned saved_access = scope_stack[depth_scope_stack].member_access;
  scope_stack[depth_scope_stack].member_access = constructor->source_corresp.access;
  a_symbol* symbol = enter_member_function(class_type, locator, type, sc_extern);
  scope_stack[depth_scope_stack].member_access = saved_access;
  a_routine* routine = symbol->variant.routine;
  symbol->defined = true;
  routine->is_compiler_generated = true;
  routine->is_implicitly_declared = true;
  routine->is_inheriting_ctor = true;
  routine->is_explicit = constructor->is_explicit;
  // The other bases and the members begin by default (C++11 12.9 p8).
  an_implicit_member rest =
      analyse_special_member(class_type, smk_default_constructor, class_of_routine(constructor));
  routine->is_constexpr = constructor->is_constexpr && rest.is_constexpr;
  routine->is_deleted = constructor->is_deleted || rest.is_deleted;
  set_inline_flag(routine, true);
}

// One that the class declares by itself goes before; two bases may not give the
// same.
static void inherit_constructor(a_type* class_type, const a_routine* constructor,
                                const a_source_position* position) {
  a_symbol_locator locator;
  a_type* type = type_of_inherited_constructor(constructor);
  if (!type)
    return;
  make_constructor_locator(class_type, &locator);
  locator.position = *position;
  const a_symbol* previous = member_function_redecl_sym(
      class_symbol_supplement_of(class_type)->constructor, type, &locator);
  if (!previous)
    enter_inherited_constructor(class_type, constructor, type, &locator);
  else if (previous->variant.routine->is_inheriting_ctor)
    pos_sy_error(ec_duplicate_inheriting_constructor, position, previous);
}

static void declare_inherited_constructors(a_type* class_type) {
  const a_scope* scope = class_supplement_of(class_type)->scope;
  for (const a_using_decl* decl = scope->using_decls; decl; decl = decl->next) {
    if (!decl->is_inherited_constructor)
      continue;
    const a_type* base = static_cast<const a_type*>(decl->entity);
    for (const a_routine_list_entry* entry = class_supplement_of(base)->constructors; entry;
         entry = entry->next)
      inherit_constructor(class_type, entry->routine, &decl->position);
  }
}

// ---- Functions that the program declares ----

static bool special_member_kind_of(const a_routine* routine, a_special_member_kind* kind) {
  a_type_qualifier_set qualifiers;
  for (int k = 0; k < num_special_member_kinds; ++k) {
    *kind = static_cast<a_special_member_kind>(k);
    if (is_special_member(routine, *kind, &qualifiers))
      return true;
  }
  return false;
}

// A copy of const objects that a base or member doesn't offer (C++11 8.4.2 p1).
static void check_const_param(a_routine* routine, const an_implicit_member* member) {
  a_type_qualifier_set qualifiers = tq_none;
  if (!is_copy_kind(member->kind) || member->takes_const ||
      !is_special_member(routine, member->kind, &qualifiers) || (qualifiers & tq_const) == 0)
    return;
  pos_error(member->kind == smk_copy_constructor
                ? ec_defaulted_copy_ctor_cannot_have_const_parameter
                : ec_defaulted_assignment_cannot_have_const_parameter,
            &routine->source_corresp.position);
}

static void settle_declared_member(a_routine* routine) {
  a_special_member_kind kind;
  if (routine->is_compiler_generated)
    return;
  routine->is_user_provided = !routine->is_defaulted && !routine->is_deleted;
  // A destructor throws no more than one that the class declares (C++11 12.4 p3).
  if (routine->special_kind == rsk_destructor && !routine->is_defaulted &&
      !is_error_type(routine->type))
    add_indeterminate_exception_spec(routine);
  if (!routine->is_defaulted || !special_member_kind_of(routine, &kind))
    return;
  an_implicit_member member = analyse_special_member(class_of_routine(routine), kind);
  check_const_param(routine, &member);
  if (routine->is_constexpr && kind == smk_default_constructor && !member.is_constexpr)
    pos_error(ec_defaulted_default_ctor_cannot_be_constexpr, &routine->source_corresp.position);
  apply_analysis(routine, &member);
  if (!add_indeterminate_exception_spec(routine))
    add_exception_spec_check(routine, nullptr);
}

static void settle_declared_members(const a_type* class_type) {
  for (a_special_member_kind kind : {smk_default_constructor, smk_copy_assignment, smk_destructor})
    for (a_routine* routine : routines_of_kind(class_type, kind))
      settle_declared_member(routine);
}

// ---- Bodies that the program doesn't write ----

// The body of a default constructor or a destructor, whose effect is that of the
// bases and members alone.
static void define_generated_routine(a_routine* routine) {
  a_push_scope_context context = {};
  context.flags = psf_generated_function;
  routine->has_body = true;
  skip_typerefs(routine->type)->variant.routine.routine_supplement->definition = routine;
  push_scope_full(sk_function, -1, nullptr, routine, &context);
  a_scope* scope = scope_stack[depth_scope_stack].il_scope;
  declare_this_parameter(routine, scope);
  if (routine->special_kind == rsk_destructor)
    dtor_initializer(routine, scope);
  else
    ctor_initializer(routine, scope);
  a_statement* body = alloc_statement(stmk_block);
  body->is_generated = true;
  body->variant.block.block_supplement->is_function_body = true;
  scope->assoc_statement = body;
  pop_scope();
}

// ---- Defaulted functions ----

static an_error_code code_for_function_not_to_be_defaulted(const a_routine* routine) {
  if (routine->special_kind == rsk_constructor)
    return ec_invalid_constructor_to_be_defaulted;
  return is_assignment_operator(routine) ? ec_invalid_assignment_operator_to_be_defaulted
                                         : ec_invalid_function_to_be_defaulted;
}

// C++11 8.4.2 p1: but for the qualifiers of what it takes.
static bool has_type_of_implicit_assignment(const a_routine* routine) {
  a_type* type = skip_typerefs(routine->type);
  a_type* return_type = return_type_of(type);
  const a_routine_type_supplement* supplement = type->variant.routine.routine_supplement;
  return is_reference_type(first_param(type)->type) && (supplement->this_qualifiers & tq_cv) == 0 &&
         is_lvalue_reference_type(return_type) &&
         identical_types(type_pointed_to(return_type), class_of_routine(routine));
}

void check_defaulted_or_deleted_function(a_routine* routine, const a_decl_parse_state*) {
  a_special_member_kind kind;
  const a_source_position* position = &routine->source_corresp.position;
  if (is_error_type(routine->type) || !routine->is_defaulted)
    return;
  if (!special_member_kind_of(routine, &kind)) {
    pos_error(code_for_function_not_to_be_defaulted(routine), position);
  } else if (kind == smk_copy_constructor || kind == smk_move_constructor) {
    if (first_param(routine->type)->next)
      pos_error(ec_copy_ctor_with_default_arg_cannot_be_defaulted, position);
  } else if (is_assignment_kind(kind) && !has_type_of_implicit_assignment(routine)) {
    pos_error(ec_invalid_assignment_operator_to_be_defaulted, position);
  }
}

void define_defaulted_function(a_routine* routine, const a_decl_parse_state* state) {
  a_special_member_kind kind;
  state->symbol->defined = true;
  routine->is_defaulted = true;
  check_defaulted_or_deleted_function(routine, state);
  if (is_error_type(routine->type) || !class_of_routine(routine) ||
      !special_member_kind_of(routine, &kind))
    return;
  an_implicit_member member = analyse_special_member(class_of_routine(routine), kind);
  check_const_param(routine, &member);
  if (member.is_deleted)
    pos_error(code_for_function_not_to_be_defaulted(routine), &routine->source_corresp.position);
  else if (kind == smk_default_constructor || kind == smk_destructor)
    define_generated_routine(routine);
}

// ---- Exception specifications (C++11 15.4 p14) ----

static bool routine_may_throw(a_routine* routine) {
  static const an_exception_specification throws_nothing = {};
  resolve_indeterminate_exception_specification(routine);
  return exception_spec_is_less_restrictive(
      skip_typerefs(routine->type)->variant.routine.routine_supplement->exception_specification,
      &throws_nothing);
}

static bool subobject_may_throw(a_type* type, a_special_member_kind kind) {
  a_type* element = skip_array_types(type);
  if (!is_class_struct_union_type(element))
    return false;
  a_routine* routine = special_member_of_class(element, kind, tq_none);
  return routine && !is_error_type(routine->type) && routine_may_throw(routine);
}

static bool field_may_throw(const a_field* field, a_special_member_kind kind) {
  if (kind == smk_default_constructor && field->has_default_init)
    return !field->default_init || dynamic_init_might_throw(field->default_init);
  return subobject_may_throw(field->type, kind);
}

static bool special_member_may_throw(const a_type* class_type, a_special_member_kind kind) {
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next)
    if ((base->is_direct || base->is_virtual) && subobject_may_throw(base->type, kind))
      return true;
  for (const a_field* f = class_type->variant.class_struct_union.fields; f; f = f->next)
    if (field_may_throw(f, kind))
      return true;
  return false;
}

void resolve_indeterminate_exception_specification(a_routine* routine) {
  a_special_member_kind kind;
  an_exception_specification* specification =
      skip_typerefs(routine->type)->variant.routine.routine_supplement->exception_specification;
  if (!specification || !specification->is_indeterminate)
    return;
  // Whoever asks again meanwhile gets the stricter answer.
  specification->is_indeterminate = false;
  specification->is_noexcept = true;
  if (special_member_kind_of(routine, &kind) &&
      special_member_may_throw(class_of_routine(routine), kind)) {
    specification->is_noexcept = false;
    specification->is_any = true;
  }
}

void check_exception_spec_of_defaulted_function(a_routine* routine) {
  a_special_member_kind kind;
  if (!is_error_type(routine->type) && special_member_kind_of(routine, &kind) &&
      routine_may_throw(routine) != special_member_may_throw(class_of_routine(routine), kind))
    pos_error(ec_invalid_explicit_exception_specification, &routine->source_corresp.position);
}

// ---- Flags of the class ----

static bool is_trivial_member(a_type* class_type, a_special_member_kind kind) {
  const a_routine* routine = special_member_of_class(class_type, kind, tq_none);
  return routine && routine->is_trivial && !routine->is_deleted;
}

// Whether nothing but a copy of the bytes ever copies or moves an object (C++11 9
// p6): the functions that do are trivial or deleted, but not all deleted.
static bool is_copied_trivially(a_type* class_type) {
  bool any = false;
  for (a_special_member_kind kind :
       {smk_copy_constructor, smk_move_constructor, smk_copy_assignment, smk_move_assignment}) {
    const a_routine* routine = special_member_of_class(class_type, kind, tq_none);
    if (routine && !routine->is_deleted && !routine->is_trivial)
      return false;
    any |= routine && !routine->is_deleted;
  }
  return any;
}

static bool has_user_provided_constructor(const a_type* class_type) {
  for (const a_routine* routine : routines_of_kind(class_type, smk_default_constructor))
    if (routine->is_user_provided)
      return true;
  return false;
}

// C++11 8.5.1 p1. Field initialisers were no obstacle before 2011, when there
// were none, and are none since 2014.
static bool is_cplusplus_aggregate(a_type* class_type) {
  const auto& info = class_type->variant.class_struct_union;
  if (class_supplement_of(class_type)->base_classes || info.has_virtual_functions ||
      has_user_provided_constructor(class_type))
    return false;
  for (const a_field* field = info.fields; field; field = field->next)
    if (field->source_corresp.access != as_public ||
        (field->has_default_init && std_version < 201402))
      return false;
  return true;
}

// C++03 9 p4, which decides on the layout of derived classes too.
static bool is_plain_old_data(a_type* class_type) {
  if (!class_supplement_of(class_type)->is_aggregate ||
      !is_trivial_member(class_type, smk_destructor) ||
      !is_trivial_member(class_type, smk_copy_assignment))
    return false;
  for (const a_field* f = class_type->variant.class_struct_union.fields; f; f = f->next) {
    const a_type* element = skip_typerefs(skip_array_types(f->type));
    if (is_reference_type(element) ||
        (is_class_struct_union_type(element) && !class_supplement_of(element)->is_pod))
      return false;
  }
  return true;
}

static void set_class_flags(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  bool has_trivial_destructor = is_trivial_member(class_type, smk_destructor);
  supplement->is_trivially_copyable = has_trivial_destructor && is_copied_trivially(class_type);
  supplement->has_implicit_copy = is_trivial_member(class_type, smk_copy_constructor);
  supplement->needs_destructor = !has_trivial_destructor;
  supplement->needs_constructor = !is_trivial_member(class_type, smk_default_constructor);
  supplement->is_aggregate = is_cplusplus_aggregate(class_type);
  supplement->is_pod = is_plain_old_data(class_type);
}

static bool is_literal_type(a_type* type) {
  a_type* element = skip_array_types(type);
  if (is_class_struct_union_type(element))
    return class_supplement_of(element)->is_literal;
  return is_scalar_type(element) || is_reference_type(element) || is_error_type(element);
}

static bool has_constexpr_constructor(const a_type* class_type) {
  a_type_qualifier_set qualifiers;
  for (const a_routine* routine : routines_of_kind(class_type, smk_default_constructor))
    if (routine->is_constexpr && !is_copy_constructor(routine, &qualifiers) &&
        !routine_is_move_constructor(routine))
      return true;
  return false;
}

// C++11 3.9 p10.
void set_literal_type_flag(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  supplement->is_literal = false;
  if (!is_trivial_member(class_type, smk_destructor) ||
      (!supplement->is_aggregate && !supplement->is_lambda_closure &&
       !has_constexpr_constructor(class_type)))
    return;
  for (const a_base_class* base = supplement->base_classes; base; base = base->next)
    if (!is_literal_type(base->type))
      return;
  for (const a_field* f = class_type->variant.class_struct_union.fields; f; f = f->next)
    if (!is_literal_type(f->type) || is_volatile_qualified_type(f->type))
      return;
  supplement->is_literal = true;
}

void declare_special_members(a_type* class_type) {
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  supplement->has_user_constructor = !routines_of_kind(class_type, smk_default_constructor).empty();
  supplement->has_user_destructor = declares_special_member(class_type, smk_destructor);
  settle_declared_members(class_type);
  declare_implicit_members(class_type);
  declare_inherited_constructors(class_type);
  set_class_flags(class_type);
  if (constexpr_enabled)
    set_literal_type_flag(class_type);
}

// ---- Virtual destructors that the program doesn't write ----

static bool needs_generated_destructor(const a_type* type) {
  if (!is_class_struct_union_kind(type->kind))
    return false;
  const a_routine* destructor = class_supplement_of(type)->destructor;
  return destructor && destructor->is_virtual && destructor->is_defaulted &&
         !destructor->is_deleted && !destructor->has_body && !is_error_type(destructor->type);
}

void generate_required_virtual_destructor_bodies(a_scope* scope) {
  if (!scope)
    return;
  for (a_type* type = scope->types; type; type = type->next)
    if (needs_generated_destructor(type))
      define_generated_routine(class_supplement_of(type)->destructor);
}
