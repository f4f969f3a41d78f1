// Access to class members (C++11 11): what may be named where, and the checks
// that wait until a declaration's name is known.

#include "error.h"
#include "il.h"
#include "lookup_int.h"
#include "mem_manage.h"
#include "types.h"

#include <algorithm>

// A use that had no access where it stood.
struct an_access_check {
  an_access_check* next;
  a_symbol* symbol;
  a_type* naming_class;
  a_type* object_class;
  a_source_position position;
};

namespace {

// The classes and functions whose members and friends the current place is in.
struct an_access_context {
  std::vector<a_type*> classes; // innermost first
  std::vector<a_routine*> routines;
};

// The access of a member as a member of a derived class: one that is private
// in a base is no member for the purposes of access.
constexpr int as_none = as_private + 1;

an_access_check* avail_access_checks;

// What the declaration declares whose names are judged; else null.
const a_symbol* declared_symbol;

} // namespace

// ---- Where the name stands ----

static void add_class_and_those_around(a_type* class_type, std::vector<a_type*>* classes) {
  while (class_type != nullptr) {
    class_type = f_skip_typerefs(class_type);
    if (std::find(classes->begin(), classes->end(), class_type) != classes->end())
      return;
    classes->push_back(class_type);
    class_type = class_of_member(&class_type->source_corresp);
  }
}

static void add_routine(a_routine* routine, an_access_context* context) {
  context->routines.push_back(routine);
  add_class_and_those_around(class_of_member(&routine->source_corresp), &context->classes);
}

static void add_declared_entity(const a_symbol* symbol, an_access_context* context) {
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  if (symbol->kind == symk_routine || symbol->kind == symk_member_function)
    add_routine(symbol->variant.routine, context);
  else if (corresp != nullptr)
    add_class_and_those_around(class_of_member(corresp), &context->classes);
}

// A member of a nested class has the access of the class around it (C++11
// 11.7), a local class that of its function (11.8).
static an_access_context current_access_context() {
  an_access_context context;
  if (declared_symbol != nullptr)
    add_declared_entity(declared_symbol, &context);
  for (int64_t depth = depth_scope_stack; depth >= 0; depth = scope_stack[depth].parent_depth) {
    const a_scope_stack_entry* entry = &scope_stack[depth];
    if (entry->kind == sk_class || entry->kind == sk_class_reactivation) {
      add_class_and_those_around(entry->assoc_type, &context.classes);
    } else if (entry->kind == sk_function && entry->routine != nullptr) {
      add_routine(entry->routine, &context);
    }
  }
  return context;
}

static bool is_friend_class(const a_class_type_supplement* supplement, const a_type* class_type) {
  for (const a_class_list_entry* f = supplement->friends; f != nullptr; f = f->next)
    if (f_skip_typerefs(f->class_type) == class_type)
      return true;
  return false;
}

static bool is_friend_routine(const a_class_type_supplement* supplement, const a_routine* routine) {
  for (const a_routine_list_entry* f = supplement->friend_routines; f != nullptr; f = f->next)
    if (f->routine == routine)
      return true;
  return false;
}

static bool is_member_or_friend(const an_access_context& context, const a_type* class_type) {
  const a_class_type_supplement* supplement = class_supplement_of(class_type);
  for (const a_type* c : context.classes)
    if (c == class_type || is_friend_class(supplement, c))
      return true;
  for (const a_routine* routine : context.routines)
    if (is_friend_routine(supplement, routine))
      return true;
  return false;
}

// The classes of which the place is in a member or friend function.
static std::vector<const a_type*> classes_with_access(const an_access_context& context) {
  std::vector<const a_type*> classes(context.classes.begin(), context.classes.end());
  for (const a_routine* routine : context.routines)
    for (const a_class_list_entry* c = routine->friend_classes; c != nullptr; c = c->next)
      classes.push_back(f_skip_typerefs(c->class_type));
  return classes;
}

// A protected member of a class is accessible in a derived one; one that needs
// an object only in an object of that derived class (C++11 11.4).
static bool has_protected_access(const an_access_context& context, const a_type* class_type,
                                 const a_type* object_class) {
  for (const a_type* derived : classes_with_access(context)) {
    if (derived != class_type && !is_derived_class(derived, class_type))
      continue;
    if (object_class == nullptr || derived == class_type || object_class == derived ||
        is_derived_class(object_class, derived))
      return true;
  }
  return false;
}

static bool has_access(const an_access_context& context, int access, const a_type* class_type,
                       const a_type* object_class) {
  switch (access) {
  case as_public:
    return true;
  case as_protected:
    return is_member_or_friend(context, class_type) ||
           has_protected_access(context, class_type, object_class);
  case as_private:
    return is_member_or_friend(context, class_type);
  default:
    return false;
  }
}

// ---- What is named ----

static int declared_access(const a_symbol* symbol) {
  if (symbol->kind == symk_projection)
    return symbol->variant.projection->access;
  const a_source_correspondence* corresp = source_corresp_entry_for_symbol(symbol);
  return corresp == nullptr ? int{as_public} : static_cast<int>(corresp->access);
}

static bool is_remembered(const a_symbol* symbol) {
  return symbol->kind == symk_projection && !symbol->variant.projection->is_using_decl;
}

// The bases on a way, the direct one first.
static std::vector<const a_base_class*> bases_of_steps(const a_derivation_step* step) {
  std::vector<const a_base_class*> way;
  for (; step != nullptr; step = step->next)
    way.push_back(step->base_class);
  return way;
}

static std::vector<const a_base_class*> way_to_member(const a_symbol* symbol) {
  return bases_of_steps(is_remembered(symbol) ? symbol->variant.projection->derivation : nullptr);
}

// The access of the member as a member of each class on the way, the naming
// class first, the class that declares it last.
static std::vector<int> access_on_way(const std::vector<const a_base_class*>& way, int declared) {
  std::vector<int> access(way.size() + 1);
  access[way.size()] = declared;
  for (size_t i = way.size(); i-- > 0;)
    access[i] = access[i + 1] >= as_private
                    ? as_none
                    : std::max<int>(access[i + 1], static_cast<int>(way[i]->access));
  return access;
}

static bool needs_object(const a_symbol* member) {
  const a_symbol* real = fundamental_symbol_of(const_cast<a_symbol*>(member));
  if (real->kind == symk_field)
    return true;
  return (real->kind == symk_member_function || real->kind == symk_routine) &&
         real->variant.routine != nullptr && !real->variant.routine->is_static_member;
}

static const a_symbol* found_member(const a_symbol* symbol) {
  return is_remembered(symbol) ? symbol->variant.projection->member_symbol : symbol;
}

// C++11 11.2 p5: a member is accessible as a member of the naming class or, that
// class's base being accessible, as a member of the base.
static bool have_access_on_way(const std::vector<const a_base_class*>& way, int declared,
                               const a_type* class_type, const a_type* object) {
  const std::vector<int> access = access_on_way(way, declared);
  if (access[0] == as_public)
    return true;
  const an_access_context context = current_access_context();
  for (size_t i = 0;; ++i) {
    if (has_access(context, access[i], class_type, object))
      return true;
    if (i == way.size() || !has_access(context, way[i]->access, class_type, nullptr))
      return false;
    class_type = f_skip_typerefs(way[i]->type);
  }
}

// `found` tells the way to the member.
static bool have_access_to_member(const a_symbol* found, const a_symbol* member,
                                  const a_type* naming_class, a_type* object_class) {
  const a_type* object =
      object_class != nullptr && needs_object(member) ? f_skip_typerefs(object_class) : nullptr;
  return have_access_on_way(way_to_member(found), declared_access(member), naming_class, object);
}

bool have_access_to_base_class(const a_base_class* base) {
  for (const a_base_class_derivation* d = base->derivations; d != nullptr; d = d->next)
    if (have_access_on_way(bases_of_steps(d->path), as_public, base->derived_class, nullptr))
      return true;
  return false;
}

bool have_access_to_symbol(a_symbol* symbol, a_type* naming_class, a_type* object_class) {
  // The functions of a set are judged when one has been chosen.
  if (!symbol->is_class_member || fundamental_symbol_of(symbol)->kind == symk_overloaded_function)
    return true;
  return have_access_to_member(symbol, found_member(symbol), f_skip_typerefs(naming_class),
                               object_class);
}

// The member of a set, or the only one, that stands for the routine.
static const a_symbol* member_for_routine(const a_symbol* functions, const a_routine* routine) {
  if (functions->kind != symk_overloaded_function)
    return functions;
  for (a_symbol* s = functions->variant.overload_list; s != nullptr; s = s->next_homonym)
    if (fundamental_symbol_of(s)->variant.routine == routine)
      return s;
  return nullptr;
}

bool have_access_to_routine(const a_symbol* functions, const a_routine* routine,
                            a_type* naming_class, a_type* object_class) {
  const a_symbol* member = member_for_routine(found_member(functions), routine);
  return member == nullptr ||
         have_access_to_member(functions, member, f_skip_typerefs(naming_class), object_class);
}

// ---- Reports, at once or later ----

static an_access_check* alloc_access_check() {
  an_access_check* check = avail_access_checks;
  if (check == nullptr)
    return alloc_front_end_record<an_access_check>();
  avail_access_checks = check->next;
  return check;
}

void record_access_error(a_symbol* symbol, a_type* naming_class, a_type* object_class,
                         const a_source_position* position) {
  if (curr_deferred_access_scope < 0) {
    pos_sy_error(ec_no_access_to_name, position, fundamental_symbol_of(symbol));
    return;
  }
  an_access_check* check = alloc_access_check();
  *check = {nullptr, symbol, naming_class, object_class, *position};
  an_access_check** link = &scope_stack[curr_deferred_access_scope].deferred_access_checks;
  while (*link != nullptr)
    link = &(*link)->next;
  *link = check;
}

void check_access_to_symbol(a_symbol* symbol, a_type* naming_class, a_type* object_class,
                            const a_source_position* position) {
  if (!have_access_to_symbol(symbol, naming_class, object_class))
    record_access_error(symbol, naming_class, object_class, position);
}

void check_access_to_name(const a_symbol_locator* locator, const a_source_position* position) {
  a_symbol* symbol = locator->symbol;
  if (symbol == nullptr || !symbol->is_class_member || locator->is_error_locator)
    return;
  a_type* naming_class =
      locator->is_class_qualified ? locator->qualifier.class_type : symbol->parent.class_type;
  check_access_to_symbol(symbol, naming_class, nullptr, position);
}

void defer_access_checks(int depth) {
  curr_deferred_access_scope = depth;
}

// Takes the checks off the entry; from then on failures go where they went
// before, in the scopes opened since too.
static an_access_check* end_deferring(int depth) {
  an_access_check* checks = scope_stack[depth].deferred_access_checks;
  scope_stack[depth].deferred_access_checks = nullptr;
  const int32_t outer = scope_stack[depth].saved_curr_deferred_access_scope;
  if (curr_deferred_access_scope == depth)
    curr_deferred_access_scope = outer;
  for (int d = depth + 1; d <= depth_scope_stack; ++d)
    if (scope_stack[d].saved_curr_deferred_access_scope == depth)
      scope_stack[d].saved_curr_deferred_access_scope = outer;
  return checks;
}

static void free_access_checks(an_access_check* checks) {
  while (checks != nullptr) {
    an_access_check* next = checks->next;
    checks->next = avail_access_checks;
    avail_access_checks = checks;
    checks = next;
  }
}

void perform_deferred_access_checks_at_depth(int depth, const a_symbol* declared) {
  declared_symbol = declared;
  an_access_check* checks = end_deferring(depth);
  for (an_access_check* check = checks; check != nullptr; check = check->next)
    check_access_to_symbol(check->symbol, check->naming_class, check->object_class,
                           &check->position);
  declared_symbol = nullptr;
  free_access_checks(checks);
}

void discard_deferred_access_checks_at_depth(int depth) {
  free_access_checks(end_deferring(depth));
}

void access_init() {
  avail_access_checks = nullptr;
  declared_symbol = nullptr;
}
