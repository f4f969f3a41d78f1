// Virtual functions: which functions of the bases a function overrides, the
// final overriders, and the places in the table of virtual functions (C++11
// 10.3, 10.4; Itanium C++ ABI 2.5).

#include "class_decl_int.h"

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "types.h"

#include <algorithm>
#include <vector>

// The greatest number of virtual functions of a class.
static constexpr int max_virtual_functions = 65534;

static a_class_symbol_supplement* info_of(const a_type* class_type) {
  return class_symbol_supplement_of(class_type);
}

static a_routine* first_member_function(const a_type* class_type) {
  const a_scope* scope = class_supplement_of(class_type)->scope;
  return scope ? scope->routines : nullptr;
}

static a_base_class* first_base(const a_type* class_type) {
  return class_supplement_of(class_type)->base_classes;
}

static a_type* class_of_routine(const a_routine* routine) {
  return class_of_member(&routine->source_corresp);
}

// ---- What a function overrides ----

// The functions that the class itself declares under the name of a function.
static a_symbol* functions_like(const a_type* class_type, const a_symbol* symbol) {
  const a_class_symbol_supplement* info = info_of(class_type);
  if (!info)
    return nullptr;
  switch (symbol->variant.routine->special_kind) {
  case rsk_constructor:
    return nullptr;
  case rsk_destructor:
    return info->destructor;
  case rsk_conversion:
    return info->conversion_functions;
  default:
    break;
  }
  if (!info->pointers_block || !info->pointers_block->symbols)
    return nullptr;
  const a_hash_table_entry* entry = hash_find(info->pointers_block->symbols, symbol->header, false);
  for (a_symbol* s = entry ? entry->first : nullptr; s; s = s->next_in_table_list)
    if (s->kind == symk_member_function || s->kind == symk_overloaded_function)
      return s;
  return nullptr;
}

// A destructor overrides that of the base, a conversion function one to the same
// type; others have the same name and parameters (C++11 10.3 p2, p6).
static bool overrides(const a_routine* routine, const a_routine* of_base) {
  if (!of_base->is_virtual)
    return false;
  if (routine->special_kind == rsk_destructor)
    return true;
  if (routine->special_kind == rsk_conversion &&
      !identical_types(return_type_of(routine->type), return_type_of(of_base->type)))
    return false;
  return is_same_member_function(routine->type, of_base->type);
}

static a_routine* overridden_function(const a_type* base_type, const a_symbol* symbol) {
  a_symbol* functions = functions_like(base_type, symbol);
  const a_routine* routine = symbol->variant.routine;
  if (!functions)
    return nullptr;
  if (functions->kind == symk_member_function)
    return overrides(routine, functions->variant.routine) ? functions->variant.routine : nullptr;
  for (a_symbol* s = functions->variant.overload_list; s; s = s->next_homonym)
    if (s->kind == symk_member_function && overrides(routine, s->variant.routine))
      return s->variant.routine;
  return nullptr;
}

// ---- Return types (C++11 10.3 p7) ----

static bool are_both_pointers_or_references(a_type* a, a_type* b) {
  if (is_pointer_type(a) && is_pointer_type(b))
    return !is_reference_type(a) && !is_reference_type(b);
  return is_reference_type(a) && is_reference_type(b) &&
         is_rvalue_reference_type(a) == is_rvalue_reference_type(b);
}

static bool is_covariant(a_type* type, a_type* of_base) {
  if (!are_both_pointers_or_references(type, of_base) ||
      get_type_qualifiers(type) != get_type_qualifiers(of_base))
    return false;
  a_type* target = type_pointed_to(type);
  a_type* base_target = type_pointed_to(of_base);
  if (!is_class_struct_union_type(target) || !is_class_struct_union_type(base_target) ||
      (get_type_qualifiers(target) & ~get_type_qualifiers(base_target)) != tq_none)
    return false;
  const a_type* target_class = skip_typerefs(target);
  if (target_class == skip_typerefs(base_target))
    return true;
  if (target_class->is_incomplete && !target_class->variant.class_struct_union.is_being_defined)
    return false;
  const a_base_class* base = find_base_class_of(target_class, base_target);
  return base && !base->is_ambiguous && have_access_to_base_class(base);
}

// The first compilers compared what pointers lead to less closely.
static bool is_tolerated_difference(a_type* type, a_type* of_base) {
  return (cfront_2_1_mode || cfront_3_0_mode) && is_pointer_type(type) && is_pointer_type(of_base);
}

static void check_return_type_of_overrider(const a_symbol* symbol, const a_routine* overridden) {
  a_type* type = symbol->variant.routine->type;
  if (symbol->variant.routine->special_kind == rsk_destructor || is_error_type(type) ||
      is_error_type(overridden->type))
    return;
  type = return_type_of(type);
  a_type* of_base = return_type_of(overridden->type);
  if (is_error_type(type) || is_error_type(of_base) || identical_types(type, of_base) ||
      is_covariant(type, of_base))
    return;
  bool is_tolerated = is_tolerated_difference(type, of_base);
  pos_syty_diagnostic(is_tolerated ? es_warning : es_error,
                      is_tolerated ? ec_different_return_type_on_virtual_function_override
                                   : ec_bad_return_type_on_virtual_function_override,
                      &symbol->position, overridden->source_corresp.symbol, of_base);
}

// ---- The records of final overriders ----

// Appends at `link`, where the list ends.
static void add_overrider(an_overriding_virtual_function** link, a_base_class* base,
                          a_routine* overridden, a_routine* overrider, a_base_class* where) {
  an_overriding_virtual_function* record = alloc_overriding_virtual_function();
  record->overridden = overridden;
  record->overrider = overrider;
  record->base_class = base;
  record->adjustment_base = where;
  record->virtual_function_index = overridden->virtual_function_index;
  *link = record;
}

// Whether the place where one overrider stands is a base of the other's: then
// the other is the final one of the two. What isn't virtual occurs on one way.
static bool dominates(const a_base_class* winner, const a_base_class* loser) {
  return winner && loser && is_derived_class(winner->type, loser->type) &&
         (loser->is_virtual || !loser->is_ambiguous);
}

static bool congruent_paths(const an_overriding_virtual_function* record,
                            const a_routine* overrider, const a_base_class* where) {
  return record->overrider == overrider && record->adjustment_base == where;
}

// A virtual base that is reached by several ways has an overrider on each; one
// that another hides is left out.
static void merge_overrider(a_base_class* base, a_routine* overridden, a_routine* overrider,
                            a_base_class* where) {
  bool is_hidden = false;
  an_overriding_virtual_function** link = &base->overriding_functions;
  while (an_overriding_virtual_function* record = *link) {
    if (record->overridden == overridden && dominates(where, record->adjustment_base)) {
      *link = record->next;
      continue;
    }
    is_hidden |= record->overridden == overridden && (congruent_paths(record, overrider, where) ||
                                                      dominates(record->adjustment_base, where));
    link = &record->next;
  }
  if (!is_hidden)
    add_overrider(link, base, overridden, overrider, where);
}

namespace {

// The overriders that one way brings to a base: the first way to it has nothing
// to be merged with.
class an_overrider_list {
public:
  explicit an_overrider_list(a_base_class* for_base)
      : base(for_base),
        link(for_base->overriding_functions ? nullptr : &for_base->overriding_functions) {}

  void add(a_routine* overridden, a_routine* overrider, a_base_class* where) {
    if (!link) {
      merge_overrider(base, overridden, overrider, where);
      return;
    }
    add_overrider(link, base, overridden, overrider, where);
    link = &(*link)->next;
  }

private:
  a_base_class* base;
  an_overriding_virtual_function** link; // the end of the list; null: to be merged
};

} // namespace

static void add_own_functions_of_base(a_base_class* direct) {
  an_overrider_list list(direct);
  for (a_routine* routine = first_member_function(class_of_base(direct)); routine;
       routine = routine->next)
    if (routine->is_virtual)
      list.add(routine, routine, direct);
}

void copy_overriding_functions(a_base_class* direct, const a_base_correspondence& corresponding) {
  add_own_functions_of_base(direct);
  for (const a_base_class* inner = first_base(class_of_base(direct)); inner; inner = inner->next) {
    a_base_class* base = corresp_base_class(corresponding, inner);
    if (!base)
      continue;
    an_overrider_list list(base);
    for (const an_overriding_virtual_function* r = inner->overriding_functions; r; r = r->next) {
      a_base_class* where =
          r->adjustment_base ? corresp_base_class(corresponding, r->adjustment_base) : direct;
      list.add(r->overridden, r->overrider, where);
    }
  }
}

a_base_class* corresp_base_class(const a_base_correspondence& corresponding,
                                 const a_base_class* inner) {
  auto found = corresponding.find(inner);
  return found == corresponding.end() ? nullptr : found->second;
}

// The function of the class is now the overrider, in each subobject.
static void replace_overriders(a_base_class* base, const a_routine* overridden,
                               a_routine* overrider) {
  bool is_replaced = false;
  an_overriding_virtual_function** link = &base->overriding_functions;
  while (an_overriding_virtual_function* record = *link) {
    if (record->overridden == overridden) {
      if (is_replaced) {
        *link = record->next;
        continue;
      }
      is_replaced = true;
      record->overrider = overrider;
      record->adjustment_base = nullptr;
      record->needs_return_adjustment =
          overrider->special_kind != rsk_destructor && is_function_type(overrider->type) &&
          is_function_type(overridden->type) &&
          !identical_types(return_type_of(overrider->type), return_type_of(overridden->type));
    }
    link = &record->next;
  }
}

// ---- A function that is declared ----

static void check_overrider(const a_symbol* symbol, const a_routine* overridden) {
  if (overridden->is_final)
    pos_sy_error(ec_override_of_final_function, &symbol->position,
                 overridden->source_corresp.symbol);
  check_return_type_of_overrider(symbol, overridden);
}

bool note_overridden_functions(a_type* class_type, const a_symbol* symbol) {
  a_routine* routine = symbol->variant.routine;
  bool found = false;
  std::vector<const a_routine*> seen;
  for (a_base_class* base = first_base(class_type); base; base = base->next) {
    a_routine* overridden = overridden_function(class_of_base(base), symbol);
    if (!overridden)
      continue;
    replace_overriders(base, overridden, routine);
    found = true;
    bool is_new = std::find(seen.begin(), seen.end(), overridden) == seen.end();
    if (!is_new)
      continue;
    seen.push_back(overridden);
    check_overrider(symbol, overridden);
    add_exception_spec_check(routine, overridden);
  }
  return found;
}

static bool may_be_virtual(const a_type* class_type, const a_routine* routine) {
  return class_type->kind != tk_union && !routine->is_static_member &&
         routine->special_kind != rsk_constructor && is_function_type(routine->type);
}

static void set_virtual(a_type* class_type, a_routine* routine) {
  routine->is_virtual = true;
  class_type->variant.class_struct_union.has_virtual_functions = true;
  class_type->variant.class_struct_union.is_polymorphic = true;
  class_supplement_of(class_type)->needs_constructor = true;
}

static bool has_deduced_return_type(const a_routine* routine) {
  const a_type* type = skip_typerefs(return_type_of(routine->type));
  return type->kind == tk_template_param &&
         type->variant.template_param.template_param_supplement->placeholder != plk_none;
}

static void check_virt_specifiers(a_routine* routine, const a_virt_specifiers* virt,
                                  bool overrides_any) {
  if (virt->is_override) {
    routine->is_override = true;
    if (!overrides_any)
      pos_error(ec_override_member_does_not_override, &virt->override_position);
  }
  if (virt->is_final) {
    routine->is_final = true;
    if (!routine->is_virtual)
      pos_error(ec_final_modifier_requires_virtual_function, &virt->final_position);
    else if (virt->is_pure)
      pos_error(ec_pure_final_virtual, &virt->final_position);
  }
  if (virt->is_pure && !routine->is_virtual)
    pos_error(ec_pure_specifier_on_nonvirtual_function, &virt->pure_position);
  else
    routine->is_pure = virt->is_pure;
}

void check_virtual_function(a_type* class_type, a_symbol* symbol, const a_decl_parse_state* state,
                            const a_virt_specifiers* virt) {
  a_routine* routine = symbol->variant.routine;
  bool overrides_any = false;
  if (may_be_virtual(class_type, routine)) {
    overrides_any = note_overridden_functions(class_type, symbol);
    if (overrides_any && routine->is_constexpr && !state->modifiers.virtual_seen)
      pos_error(ec_constexpr_virtual_combination, &symbol->position);
    if (overrides_any || state->modifiers.virtual_seen)
      set_virtual(class_type, routine);
    if (routine->is_virtual && has_deduced_return_type(routine))
      pos_error(ec_virtual_function_cannot_have_deduced_return_type, &symbol->position);
  } else if (is_function_type(routine->type) && routine->special_kind != rsk_constructor &&
             routine->is_static_member && !state->modifiers.virtual_seen) {
    // C++11 9.4.1 p2.
    for (const a_base_class* base = first_base(class_type); base; base = base->next)
      if (overridden_function(class_of_base(base), symbol)) {
        pos_error(ec_virtual_static_not_allowed, &symbol->position);
        break;
      }
  }
  check_virt_specifiers(routine, virt, overrides_any);
}

// ---- Numbering ----

// The place that the function has in the table of the primary base already.
static uint16_t inherited_index(const a_type* class_type, const a_symbol* symbol) {
  const a_base_class* primary = class_supplement_of(class_type)->primary_base;
  while (primary) {
    const a_routine* overridden = overridden_function(class_of_base(primary), symbol);
    if (overridden && overridden->virtual_function_index != no_virtual_function_index)
      return overridden->virtual_function_index;
    primary = class_supplement_of(class_of_base(primary))->primary_base;
  }
  return no_virtual_function_index;
}

static int count_of_primary_base(const a_type* class_type) {
  const a_base_class* primary = class_supplement_of(class_type)->primary_base;
  return primary ? class_supplement_of(class_of_base(primary))->virtual_function_count : 0;
}

// A destructor takes two places: of the complete object, and the one that also
// frees the storage.
static void number_virtual_functions(a_type* class_type) {
  int count = count_of_primary_base(class_type);
  for (a_routine* routine = first_member_function(class_type); routine; routine = routine->next) {
    if (!routine->is_virtual || !routine->source_corresp.symbol)
      continue;
    routine->virtual_function_index = inherited_index(class_type, routine->source_corresp.symbol);
    if (routine->virtual_function_index != no_virtual_function_index)
      continue;
    routine->virtual_function_index = static_cast<uint16_t>(count);
    count += routine->special_kind == rsk_destructor ? 2 : 1;
    if (count >= max_virtual_functions &&
        !class_type->variant.class_struct_union.is_template_class) {
      pos_error(ec_too_many_virtual_functions, &routine->source_corresp.position);
      count = 0;
    }
  }
  class_supplement_of(class_type)->virtual_function_count = static_cast<uint16_t>(count);
}

// ---- Final overriders ----

// The compilers of the first years let the nearer of two overriders win.
static bool is_tolerated_ambiguity(const an_overriding_virtual_function* a,
                                   const an_overriding_virtual_function* b) {
  if (!cfront_2_1_mode && !cfront_3_0_mode)
    return false;
  auto depth_of = [](const a_base_class* base) {
    int depth = 0;
    for (const a_derivation_step* s = base && base->derivations ? base->derivations->path : nullptr;
         s; s = s->next)
      ++depth;
    return depth;
  };
  int difference = depth_of(a->adjustment_base) - depth_of(b->adjustment_base);
  return difference == 1 || difference == -1;
}

// One record for each function of the base; two different final overriders are
// an error (C++11 10.3 p2).
static void resolve_overriders(a_type* class_type, a_base_class* base) {
  std::unordered_map<const a_routine*, an_overriding_virtual_function*> first_of;
  an_overriding_virtual_function** link = &base->overriding_functions;
  while (an_overriding_virtual_function* other = *link) {
    auto [found, is_new] = first_of.emplace(other->overridden, other);
    an_overriding_virtual_function* first = found->second;
    if (is_new) {
      link = &other->next;
      continue;
    }
    bool is_conflict = !congruent_paths(first, other->overrider, other->adjustment_base);
    if (is_conflict && !first->is_ambiguous && !is_tolerated_ambiguity(first, other)) {
      first->is_ambiguous = true;
      pos_sy_diagnostic(es_discretionary_error, ec_ambiguous_virtual_function_override,
                        &class_type->source_corresp.position,
                        first->overridden->source_corresp.symbol);
    }
    *link = other->next;
  }
}

// C++11 10.4 p4.
static bool has_pure_overrider(const a_type* class_type) {
  for (const a_routine* routine = first_member_function(class_type); routine;
       routine = routine->next)
    if (routine->is_virtual && routine->is_pure)
      return true;
  for (const a_base_class* base = first_base(class_type); base; base = base->next)
    for (const an_overriding_virtual_function* record = base->overriding_functions; record;
         record = record->next)
      if (record->overrider->is_pure)
        return true;
  return false;
}

// C++11 10.3 p16: both functions are deleted, or neither is.
static void check_deleted_overriders(const a_base_class* base) {
  for (const an_overriding_virtual_function* record = base->overriding_functions; record;
       record = record->next) {
    if (record->adjustment_base || record->overrider->is_deleted == record->overridden->is_deleted)
      continue;
    pos_sy2_error(record->overrider->is_deleted ? ec_deleted_function_overrides_nondeleted_function
                                                : ec_nondeleted_function_overrides_deleted_function,
                  &record->overrider->source_corresp.position,
                  record->overrider->source_corresp.symbol,
                  record->overridden->source_corresp.symbol);
  }
}

static void add_pure_functions(a_diagnostic* diag, const a_type* class_type) {
  for (const a_routine* routine = first_member_function(class_type); routine;
       routine = routine->next)
    if (routine->is_virtual && routine->is_pure)
      sym_add_diag_info(diag, ec_pure_virtual_function, routine->source_corresp.symbol);
  std::vector<const a_routine*> seen;
  for (const a_base_class* base = first_base(class_type); base; base = base->next)
    for (const an_overriding_virtual_function* record = base->overriding_functions; record;
         record = record->next) {
      const a_routine* overrider = record->overrider;
      if (!overrider->is_pure || class_of_routine(overrider) == class_type ||
          std::find(seen.begin(), seen.end(), overrider) != seen.end())
        continue;
      seen.push_back(overrider);
      sym_add_diag_info(diag, ec_no_overrider_for_pure_virtual_function,
                        overrider->source_corresp.symbol);
    }
}

bool is_abstract_class_type(const a_type* type) {
  return is_class_struct_union_type(type) &&
         skip_typerefs(type)->variant.class_struct_union.is_abstract;
}

void abstract_class_diagnostic(an_error_code code, a_type* class_type,
                               const a_source_position* position) {
  a_diagnostic* diag = pos_ty_start_error(code, position, class_type);
  add_pure_functions(diag, skip_typerefs(class_type));
  end_diagnostic(diag);
}

// ---- Functions that hide others ----

namespace {

// What the class does with the virtual functions of one name of a base.
struct a_hiding_count {
  const a_routine* hidden; // the first that nothing overrides
  int overridden;
};

} // namespace

static bool is_overridden_in(const a_base_class* base, const a_type* class_type,
                             const a_routine* routine) {
  for (const an_overriding_virtual_function* record = base->overriding_functions; record;
       record = record->next)
    if (record->overridden == routine && class_of_routine(record->overrider) == class_type)
      return true;
  return false;
}

static void count_function(const a_base_class* base, const a_type* class_type,
                           const a_routine* routine, a_hiding_count* count) {
  if (!routine->is_virtual)
    return;
  if (is_overridden_in(base, class_type, routine))
    ++count->overridden;
  else if (!count->hidden)
    count->hidden = routine;
}

static a_hiding_count count_hidden_functions(const a_base_class* base, const a_type* class_type,
                                             const a_symbol* symbol) {
  a_hiding_count count = {};
  const a_symbol* functions = functions_like(class_of_base(base), symbol);
  if (functions && functions->kind == symk_member_function)
    count_function(base, class_type, functions->variant.routine, &count);
  for (const a_symbol* s = functions && functions->kind == symk_overloaded_function
                               ? functions->variant.overload_list
                               : nullptr;
       s; s = s->next_homonym)
    if (s->kind == symk_member_function)
      count_function(base, class_type, s->variant.routine, &count);
  return count;
}

// A using-declaration shows the others.
static bool is_shown_by_using_declaration(const a_symbol* symbol) {
  const a_symbol* set = symbol->supplement.overload_set;
  for (const a_symbol* s = set ? set->variant.overload_list : nullptr; s; s = s->next_homonym)
    if (s->kind == symk_projection)
      return true;
  return false;
}

// The first function of its name stands for all of them.
static bool is_first_of_name(const a_symbol* symbol) {
  const a_symbol* set = symbol->supplement.overload_set;
  return !set || set->variant.overload_list == symbol;
}

static void check_hiding_of_name(const a_type* class_type, const a_symbol* symbol) {
  for (const a_base_class* base = first_base(class_type); base; base = base->next) {
    a_hiding_count count = count_hidden_functions(base, class_type, symbol);
    if (!count.hidden)
      continue;
    if (count.overridden > 0)
      pos_sy2_warning(ec_partial_override, &symbol->position, count.hidden->source_corresp.symbol,
                      class_type->source_corresp.symbol);
    else
      pos_sy2_warning(ec_virtual_function_decl_hidden, &symbol->position, symbol,
                      count.hidden->source_corresp.symbol);
    return;
  }
}

void check_hidden_virtual_functions(const a_type* class_type) {
  if (!class_type->variant.class_struct_union.has_virtual_functions)
    return;
  for (const a_routine* routine = first_member_function(class_type); routine;
       routine = routine->next) {
    const a_symbol* symbol = routine->source_corresp.symbol;
    bool has_name = routine->special_kind == rsk_ordinary || routine->special_kind == rsk_operator;
    if (symbol && has_name && !symbol->not_in_lookup && is_first_of_name(symbol) &&
        !is_shown_by_using_declaration(symbol))
      check_hiding_of_name(class_type, symbol);
  }
}

// ---- Completion ----

// An implicit destructor is virtual when that of a base is.
static void note_implicit_destructor(a_type* class_type) {
  a_routine* destructor = class_supplement_of(class_type)->destructor;
  if (!destructor || !destructor->source_corresp.symbol || !destructor->is_compiler_generated)
    return;
  if (note_overridden_functions(class_type, destructor->source_corresp.symbol))
    set_virtual(class_type, destructor);
}

void complete_virtual_functions(a_type* class_type) {
  auto& info = class_type->variant.class_struct_union;
  note_implicit_destructor(class_type);
  if (!info.has_virtual_functions)
    return;
  number_virtual_functions(class_type);
  for (a_base_class* base = first_base(class_type); base; base = base->next) {
    resolve_overriders(class_type, base);
    check_deleted_overriders(base);
  }
  info.is_abstract = has_pure_overrider(class_type);
}
