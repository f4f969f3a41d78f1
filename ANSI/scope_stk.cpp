// Pushing scopes, and questions about the stack.

#include "scope_stk.h"

#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lexical.h"
#include "lookup.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk_int.h"
#include "symbol_tbl.h"
#include "trans_unit.h"
#include "types.h"

#include <cstring>
#include <vector>

a_scope_stack_entry* scope_stack;
int32_t size_scope_stack;
int32_t depth_scope_stack = -1;
int32_t depth_of_initial_lookup_scope;
int32_t decl_scope_level;
int32_t depth_innermost_function_scope;
a_scope* innermost_function_scope;
int32_t depth_innermost_instantiation_scope;
int32_t depth_template_declaration_scope;
int32_t curr_deferred_access_scope;
a_boolean inside_local_class;
int32_t non_local_class_fixup_depth;
int32_t depth_innermost_namespace_scope;
int32_t depth_of_innermost_scope_that_affects_access_control;
int32_t num_classes_on_scope_stack;
a_pack_expansion_context* pack_expansion_stack;

namespace {

constexpr int32_t scope_stack_increment = 30;

constexpr unsigned kind_bit(a_scope_kind kind) {
  return 1u << kind;
}

constexpr bool is_among(a_scope_kind kind, unsigned kinds) {
  return (kind_bit(kind) & kinds) != 0;
}

// Kinds that take a fresh number even when one is passed in.
constexpr unsigned kinds_with_fresh_number =
    kind_bit(sk_namespace) | kind_bit(sk_class) | kind_bit(sk_top_level_declaration) |
    kind_bit(sk_pragma_rescan) | kind_bit(sk_deferred_rescan) | kind_bit(sk_enum);
// Kinds that take the number of what they open again.
constexpr unsigned kinds_with_number_of_reopened =
    kind_bit(sk_file) | kind_bit(sk_namespace_extension) | kind_bit(sk_namespace_reactivation) |
    kind_bit(sk_class_reactivation) | kind_bit(sk_template_instantiation);
// Kinds whose IL goes to the file-scope region.
constexpr unsigned kinds_in_file_scope_region =
    kind_bit(sk_file) | kind_bit(sk_function_prototype) | kind_bit(sk_namespace) |
    kind_bit(sk_namespace_extension) | kind_bit(sk_class) | kind_bit(sk_template_instantiation) |
    kind_bit(sk_top_level_declaration) | kind_bit(sk_enum);
// Kinds that are a context but no place for declarations.
constexpr unsigned kinds_without_declarations =
    kind_bit(sk_template_declaration) | kind_bit(sk_template_instantiation) |
    kind_bit(sk_top_level_declaration) | kind_bit(sk_pragma_rescan) | kind_bit(sk_deferred_rescan);
// Kinds in which the lifetime in force is that of the file scope.
constexpr unsigned kinds_outside_lifetimes =
    kind_bit(sk_function_prototype) | kind_bit(sk_class) | kind_bit(sk_class_reactivation) |
    kind_bit(sk_template_instantiation) | kind_bit(sk_pragma_rescan) | kind_bit(sk_function);
// Kinds that are a lifetime of their own.
constexpr unsigned kinds_with_lifetime =
    kind_bit(sk_block) | kind_bit(sk_condition) | kind_bit(sk_function);
constexpr unsigned kinds_of_namespaces = kind_bit(sk_file) | kind_bit(sk_namespace) |
                                         kind_bit(sk_namespace_extension) |
                                         kind_bit(sk_namespace_reactivation);
constexpr unsigned kinds_of_classes = kind_bit(sk_class) | kind_bit(sk_class_reactivation);

} // namespace

// ---- Queries ----

a_scope_pointers_block* pointers_block_of_entry(a_scope_stack_entry* entry) {
  return entry->pointers_block_override != nullptr ? entry->pointers_block_override
                                                   : &entry->pointers;
}

int scope_depth_of_number(int32_t scope_number) {
  if (scope_number < 0)
    return -1;
  int depth = depth_scope_stack;
  while (depth >= 0 && scope_stack[depth].number != scope_number)
    --depth;
  return depth;
}

int scope_depth_of_symbol(const a_symbol* symbol, a_scope_stack_entry** entry) {
  int depth = scope_depth_of_number(symbol->scope_number);
  if (entry != nullptr)
    *entry = depth < 0 ? nullptr : &scope_stack[depth];
  return depth;
}

int decl_level_of_tags() {
  int depth = decl_scope_level;
  if (in_C_mode()) {
    while (depth > 0 && (scope_stack[depth].kind == sk_class || scope_stack[depth].kind == sk_enum))
      --depth;
  }
  return depth;
}

a_scope* get_innermost_function_scope() {
  return innermost_function_scope;
}

int32_t get_depth_innermost_function_scope() {
  return depth_innermost_function_scope;
}

a_scope_pointers_block* get_pointers_block_for_scope(a_scope* scope) {
  if (scope->kind == sk_namespace)
    return f_skip_namespace_aliases(scope->assoc.namespace_entry)->pointers_block;
  if (scope->kind == sk_class) {
    a_class_symbol_supplement* info = class_symbol_supplement_of(scope->assoc.type);
    if (info != nullptr)
      return info->pointers_block;
  }
  if (scope->scope_stack_depth >= 0 && scope->scope_stack_depth <= depth_scope_stack)
    return pointers_block_of_entry(&scope_stack[scope->scope_stack_depth]);
  if (scope->kind == sk_file && curr_translation_unit != nullptr)
    return curr_translation_unit->scope_pointers;
  return nullptr;
}

// ---- The scopes of the IL ----

// Sets the parent of a scope. A file-scope entry may not point into the region
// of a function, so a reference in that region stands for such a parent.
static void set_parent_of_scope(a_scope* scope, a_scope* parent) {
  scope->parent = parent;
  if (parent == nullptr || !is_file_scope_entry(scope) || is_file_scope_entry(parent))
    return;
  make_local_scope_ref(parent, scope, iek_scope, innermost_function_scope);
  scope->parent = nullptr;
}

// Appends a block to the scopes nested in its parent.
static void add_to_nested_scopes(a_scope* scope, a_scope* parent, a_scope_stack_entry* entry) {
  a_scope_pointers_block* block = pointers_block_of_entry(entry);
  if (block->last_nested_scope != nullptr)
    block->last_nested_scope->next = scope;
  else
    parent->first_nested = scope;
  block->last_nested_scope = scope;
}

static a_scope* make_scope_in_region(a_scope_kind kind, int32_t number, int32_t region) {
  const int32_t saved_region = curr_il_region_number;
  switch_il_region(region);
  a_scope* scope = alloc_scope(kind, number);
  switch_il_region(saved_region);
  return scope;
}

// The nearest scope of the IL at or around a depth, made if there is none yet.
static a_scope* il_scope_at_depth(int64_t depth) {
  for (; depth > 0; depth = scope_stack[depth].parent_depth) {
    a_scope* scope = ensure_il_scope_exists(&scope_stack[depth]);
    if (scope != nullptr)
      return scope;
  }
  return depth < 0 ? nullptr : scope_stack[depth].il_scope;
}

// The prototypes of a parameter's declarator stand behind that of the function.
static void add_behind_prototype(a_scope* scope, a_scope* outer) {
  while (outer->next != nullptr)
    outer = outer->next;
  outer->next = scope;
}

static void make_prototype_scope(a_scope_stack_entry* entry) {
  a_scope* parent = il_scope_at_depth(entry->parent_depth);
  a_scope* scope =
      make_scope_in_region(sk_function_prototype, entry->number, file_scope_region_number);
  set_parent_of_scope(scope, parent);
  if (parent != nullptr && parent->kind == sk_function_prototype)
    add_behind_prototype(scope, parent);
  entry->il_scope = scope;
  if (entry->assoc_type == nullptr)
    return;
  scope->assoc.type = entry->assoc_type;
  a_type* routine_type = skip_typerefs(entry->assoc_type);
  if (routine_type->kind == tk_routine)
    routine_type->variant.routine.routine_supplement->prototype_scope = scope;
}

static void make_block_scope(a_scope_stack_entry* entry) {
  a_scope* parent = il_scope_at_depth(entry->parent_depth);
  a_scope* scope = make_scope_in_region(entry->kind, entry->number, entry->region_number);
  scope->parent = parent;
  if (parent != nullptr)
    add_to_nested_scopes(scope, parent, &scope_stack[entry->parent_depth]);
  entry->il_scope = scope;
  if (entry->object_lifetime != nullptr)
    bind_object_lifetime(entry->object_lifetime, iek_scope, scope);
}

a_scope* ensure_il_scope_exists(a_scope_stack_entry* entry) {
  if (entry->il_scope != nullptr)
    return entry->il_scope;
  if (entry->kind == sk_function_prototype)
    make_prototype_scope(entry);
  else if (entry->kind == sk_block || entry->kind == sk_condition)
    make_block_scope(entry);
  else
    return nullptr;
  if (entry->il_scope->scope_stack_depth < 0)
    entry->il_scope->scope_stack_depth = static_cast<int32_t>(entry - scope_stack);
  return entry->il_scope;
}

// ---- The steps of a push ----

static void make_room_for_entry() {
  if (depth_scope_stack + 1 < size_scope_stack)
    return;
  const int32_t new_size = size_scope_stack + scope_stack_increment;
  char* bytes = realloc_buffer(reinterpret_cast<char*>(scope_stack),
                               uint64_t(size_scope_stack) * sizeof(a_scope_stack_entry),
                               uint64_t(new_size) * sizeof(a_scope_stack_entry));
  scope_stack = reinterpret_cast<a_scope_stack_entry*>(bytes);
  size_scope_stack = new_size;
}

static int32_t number_of_reopened(a_scope_kind kind, const a_type* assoc_type,
                                  const a_push_scope_context* context) {
  switch (kind) {
  case sk_file:
    return file_scope_number;
  case sk_namespace_extension:
  case sk_namespace_reactivation:
    return scope_of_namespace(context->namespace_entry)->scope_number;
  case sk_class_reactivation: {
    a_class_symbol_supplement* info = class_symbol_supplement_of(assoc_type);
    return info == nullptr ? -1 : info->scope_number;
  }
  default:
    return -1;
  }
}

static int32_t number_for_push(a_scope_kind kind, int32_t number, const a_type* assoc_type,
                               const a_push_scope_context* context) {
  if (number != -1)
    return is_among(kind, kinds_with_fresh_number) ? take_next_scope_number() : number;
  if (is_among(kind, kinds_with_number_of_reopened))
    return number_of_reopened(kind, assoc_type, context);
  return take_next_scope_number();
}

static void save_context(a_scope_stack_entry* entry) {
  entry->region_at_push = curr_il_region_number;
  entry->saved_decl_scope_level = decl_scope_level;
  entry->saved_depth_template_declaration_scope = depth_template_declaration_scope;
  entry->saved_depth_innermost_instantiation_scope = depth_innermost_instantiation_scope;
  entry->saved_pos_curr_token = pos_curr_token;
  entry->saved_depth_innermost_function_scope = depth_innermost_function_scope;
  entry->saved_depth_affecting_access_control =
      depth_of_innermost_scope_that_affects_access_control;
  entry->saved_curr_deferred_access_scope = curr_deferred_access_scope;
  entry->saved_expr_stack = expr_stack;
  entry->saved_curr_object_lifetime = curr_object_lifetime;
  entry->saved_depth_innermost_namespace_scope = depth_innermost_namespace_scope;
  entry->saved_depth_of_initial_lookup_scope = depth_of_initial_lookup_scope;
  entry->saved_curr_pack_expansion_stack = pack_expansion_stack;
  entry->fp_contract_state = static_cast<unsigned>(curr_fp_contract_state);
  entry->fenv_access_state = static_cast<unsigned>(curr_fenv_access_state);
  entry->cx_limited_range_state = static_cast<unsigned>(curr_cx_limited_range_state);
}

// The function whose region a member of a local class shares, so that both
// die together; null for any other routine.
static a_routine* function_around_local_class(const a_routine* routine) {
  a_type* class_type = class_of_member(&routine->source_corresp);
  while (class_type != nullptr) {
    a_scope* scope = f_get_parent_scope_of(&class_type->source_corresp, iek_type);
    while (scope != nullptr && (scope->kind == sk_block || scope->kind == sk_condition))
      scope = scope->parent;
    if (scope == nullptr)
      return nullptr;
    if (scope->kind == sk_function)
      return scope->scope_stack_depth >= 0 ? scope->assoc.routine : nullptr;
    class_type = scope->kind == sk_class ? scope->assoc.type : nullptr;
  }
  return nullptr;
}

static a_scope* open_function_scope(int32_t number, a_routine* routine,
                                    const a_push_scope_context* context) {
  if (context->flags & psf_reactivate) {
    const a_function_def_table_entry& def =
        il_header.function_def_table[routine->function_def_number];
    switch_il_region(def.region_number);
    return def.scope;
  }
  a_routine* outer = function_around_local_class(routine);
  return new_function_scope(number, routine, outer == nullptr ? 0 : outer->region_number);
}

static a_scope* open_namespace_scope(int32_t number, a_namespace* namespace_entry) {
  a_scope* scope = alloc_scope(sk_namespace, number);
  scope->assoc.namespace_entry = namespace_entry;
  namespace_entry->variant.scope = scope;
  return scope;
}

static a_scope* open_class_scope(int32_t number, a_type* class_type) {
  a_scope* scope = alloc_scope(sk_class, number);
  scope->assoc.type = class_type;
  class_supplement_of(class_type)->scope = scope;
  a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info != nullptr) {
    info->scope = scope;
    info->scope_number = number;
  }
  return scope;
}

static a_scope* open_enum_scope(int32_t number, a_type* enum_type) {
  a_scope* scope = alloc_scope(sk_enum, number);
  scope->assoc.type = enum_type;
  an_enum_symbol_supplement* info = enum_symbol_supplement_of(enum_type);
  if (info != nullptr) {
    info->scope = scope;
    info->scope_number = number;
  }
  return scope;
}

static a_scope* scope_of_file() {
  a_scope* scope = il_header.region_scope_table[file_scope_region_number];
  return scope != nullptr ? scope : new_file_scope(file_scope_number);
}

// Makes the entry's region current and gives it the scope that its kind has
// from the start.
static void open_il_scope(a_scope_stack_entry* entry, const a_push_scope_context* context) {
  if (is_among(entry->kind, kinds_in_file_scope_region))
    switch_il_region(file_scope_region_number);
  switch (entry->kind) {
  case sk_file:
    entry->il_scope = scope_of_file();
    break;
  case sk_namespace:
    entry->il_scope = open_namespace_scope(entry->number, context->namespace_entry);
    break;
  case sk_namespace_extension:
  case sk_namespace_reactivation:
    entry->il_scope = scope_of_namespace(context->namespace_entry);
    break;
  case sk_class:
    entry->il_scope = open_class_scope(entry->number, entry->assoc_type);
    break;
  case sk_class_reactivation:
    entry->il_scope = class_supplement_of(entry->assoc_type)->scope;
    break;
  case sk_enum:
    entry->il_scope = open_enum_scope(entry->number, entry->assoc_type);
    break;
  case sk_template_declaration:
    if (prototype_instantiations_in_il && !(context->flags & psf_no_template_scope))
      entry->il_scope = alloc_scope(sk_template_declaration, entry->number);
    break;
  case sk_function:
    entry->il_scope = open_function_scope(entry->number, entry->routine, context);
    break;
  default:
    entry->il_scope = context->il_scope;
    break;
  }
  entry->region_number = curr_il_region_number;
}

// Classes, enums, namespaces and the file scope have lists that outlive the
// entry.
static a_scope_pointers_block* lasting_block_for_entry(const a_scope_stack_entry* entry) {
  a_scope_pointers_block** slot = nullptr;
  if (is_among(entry->kind, kinds_of_classes)) {
    a_class_symbol_supplement* info = class_symbol_supplement_of(entry->assoc_type);
    slot = info == nullptr ? nullptr : &info->pointers_block;
  } else if (entry->kind == sk_enum) {
    an_enum_symbol_supplement* info = enum_symbol_supplement_of(entry->assoc_type);
    slot = info == nullptr ? nullptr : &info->pointers_block;
  } else if (entry->kind == sk_file) {
    return curr_translation_unit == nullptr ? nullptr : curr_translation_unit->scope_pointers;
  } else if (is_among(entry->kind, kinds_of_namespaces)) {
    slot = &f_skip_namespace_aliases(entry->namespace_entry)->pointers_block;
  }
  if (slot == nullptr)
    return nullptr;
  if (*slot == nullptr)
    *slot = alloc_front_end_record<a_scope_pointers_block>();
  return *slot;
}

static a_scope* parent_of_new_class_scope(const a_type* class_type) {
  const a_symbol* symbol = class_type->source_corresp.symbol;
  if (in_cplusplus_mode() && symbol != nullptr) {
    if (symbol->is_class_member)
      return class_supplement_of(symbol->parent.class_type)->scope;
    if (symbol->is_namespace_member)
      return scope_of_namespace(symbol->parent.namespace_entry);
  }
  return il_scope_at_depth(decl_scope_level);
}

static a_scope* parent_of_new_scope(const a_scope_stack_entry* entry) {
  switch (entry->kind) {
  case sk_class:
    return parent_of_new_class_scope(entry->assoc_type);
  case sk_function:
    if (in_cplusplus_mode()) {
      a_scope* parent = f_get_parent_scope_of(&entry->routine->source_corresp, iek_routine);
      return parent != nullptr ? parent : il_header.primary_scope;
    }
    return il_scope_at_depth(decl_scope_level);
  case sk_namespace: {
    int64_t depth = entry->parent_depth;
    while (depth > 0 && !is_among(scope_stack[depth].kind, kinds_of_namespaces))
      depth = scope_stack[depth].parent_depth;
    return il_scope_at_depth(depth);
  }
  default:
    return il_scope_at_depth(decl_scope_level);
  }
}

// Gives a scope just made its place in the tree of scopes.
static void link_new_scope(a_scope_stack_entry* entry, const a_push_scope_context* context) {
  constexpr unsigned kinds_made_at_push = kind_bit(sk_namespace) | kind_bit(sk_class) |
                                          kind_bit(sk_enum) | kind_bit(sk_template_declaration) |
                                          kind_bit(sk_function);
  if (!is_among(entry->kind, kinds_made_at_push) || entry->il_scope == nullptr ||
      (context->flags & psf_reactivate))
    return;
  a_scope* parent = parent_of_new_scope(entry);
  if (parent != nullptr && parent != entry->il_scope)
    set_parent_of_scope(entry->il_scope, parent);
}

// Inside a namespace or a class that isn't local there is no innermost
// function.
static bool leaves_functions(const a_scope_stack_entry* entry,
                             const a_push_scope_context* context) {
  switch (entry->kind) {
  case sk_namespace:
  case sk_namespace_extension:
  case sk_namespace_reactivation:
    return true;
  case sk_class_reactivation:
    return !entry->assoc_type->variant.class_struct_union.is_local_class;
  case sk_top_level_declaration:
    return (context->flags & psf_fresh_start) != 0;
  default:
    return false;
  }
}

static void set_depths(a_scope_stack_entry* entry, int32_t depth,
                       const a_push_scope_context* context) {
  if (context->flags & psf_fresh_start) {
    entry->parent_depth = 0;
    depth_innermost_instantiation_scope = -1;
    depth_template_declaration_scope = -1;
    curr_deferred_access_scope = -1;
    decl_scope_level = 0;
  }
  depth_of_initial_lookup_scope = depth;
  if (!is_among(entry->kind, kinds_without_declarations))
    decl_scope_level = depth;
  if (entry->kind == sk_template_declaration)
    depth_template_declaration_scope = depth;
  if (entry->kind == sk_template_instantiation)
    depth_innermost_instantiation_scope = depth;
  if (is_among(entry->kind, kinds_of_namespaces))
    depth_innermost_namespace_scope = depth;
  if (is_among(entry->kind, kinds_of_classes)) {
    ++num_classes_on_scope_stack;
    inside_local_class = depth_innermost_function_scope >= 0;
  }
  if (is_among(entry->kind, kinds_of_classes | kind_bit(sk_function)))
    depth_of_innermost_scope_that_affects_access_control = depth;
  if (entry->kind == sk_function) {
    depth_innermost_function_scope = depth;
    innermost_function_scope = entry->il_scope;
    inside_local_class = false;
  } else if (leaves_functions(entry, context)) {
    depth_innermost_function_scope = -1;
    innermost_function_scope = nullptr;
    inside_local_class = false;
  }
  entry->is_local_class = inside_local_class;
}

static void push_lifetime_of_file_scope(a_scope_stack_entry* entry) {
  a_scope* scope = entry->il_scope;
  if (scope->object_lifetime == nullptr) {
    entry->object_lifetime = push_object_lifetime(iek_scope, scope, olk_none);
    return;
  }
  entry->object_lifetime = scope->object_lifetime;
  curr_object_lifetime = scope->object_lifetime;
}

// Only C++ has objects whose lifetime ends in an action.
static void push_lifetime(a_scope_stack_entry* entry, const a_push_scope_context* context) {
  if (!in_cplusplus_mode())
    return;
  if (entry->kind == sk_file) {
    push_lifetime_of_file_scope(entry);
    return;
  }
  if (is_among(entry->kind, kinds_outside_lifetimes))
    curr_object_lifetime = scope_stack[0].object_lifetime;
  if (is_among(entry->kind, kinds_with_lifetime) && !(context->flags & psf_reactivate)) {
    entry->object_lifetime =
        push_or_repush_object_lifetime(iek_scope, entry->il_scope, context->object_lifetime,
                                       olk_block, context->object_lifetime != nullptr);
    entry->owns_lifetime = true;
  }
  if (entry->kind == sk_condition)
    ensure_il_scope_exists(entry);
}

static void set_entry_flags(a_scope_stack_entry* entry, const a_push_scope_context* context) {
  entry->in_for_init = (context->flags & psf_for_init) != 0;
  entry->is_reactivation = (context->flags & psf_reactivate) != 0;
  entry->is_generated_function = (context->flags & psf_generated_function) != 0;
  entry->is_fresh_start = (context->flags & psf_fresh_start) != 0;
  entry->is_template_declaration =
      entry->kind == sk_template_declaration || (context->flags & psf_template_declaration) != 0;
  entry->is_dependent = (context->flags & psf_dependent) != 0;
  if (depth_scope_stack >= 0)
    entry->use_scope_lookup = scope_stack[depth_scope_stack].use_scope_lookup;
}

// Only a scope with a history has directives already.
static bool is_opened_again(const a_scope_stack_entry* entry) {
  return in_cplusplus_mode() && entry->il_scope != nullptr &&
         entry->il_scope->using_decls != nullptr;
}

void push_scope_full(a_scope_kind kind, int32_t number, a_type* assoc_type, a_routine* routine,
                     const a_push_scope_context* context) {
  make_room_for_entry();
  const int32_t depth = depth_scope_stack + 1;
  a_scope_stack_entry* entry = &scope_stack[depth];
  memset(static_cast<void*>(entry), 0, sizeof *entry);
  entry->number = number_for_push(kind, number, assoc_type, context);
  entry->kind = kind;
  entry->assoc_type = assoc_type;
  entry->routine = routine;
  entry->namespace_entry = context->namespace_entry;
  entry->template_decl_info = context->template_decl_info;
  entry->template_symbol = context->template_symbol;
  entry->template_args = context->template_args;
  entry->template_params = context->template_params;
  save_context(entry);
  set_entry_flags(entry, context);
  entry->parent_depth = context->flags & psf_parent_given ? context->parent_depth : depth - 1;
  entry->decl_seq_limit = context->decl_seq_limit;
  open_il_scope(entry, context);
  entry->pointers_block_override =
      context->pointers_block != nullptr ? context->pointers_block : lasting_block_for_entry(entry);
  link_new_scope(entry, context);
  depth_scope_stack = depth;
  if (entry->il_scope != nullptr)
    entry->il_scope->scope_stack_depth = depth;
  set_depths(entry, depth, context);
  push_lifetime(entry, context);
  if (is_opened_again(entry))
    activate_using_directives_of_scope(entry->il_scope, depth);
}

// ---- The pushes ----

void push_scope(a_scope_kind kind, int32_t number, a_type* assoc_type, a_routine* routine) {
  const a_push_scope_context context = {};
  push_scope_full(kind, number, assoc_type, routine, &context);
}

void push_file_scope(bool is_secondary) {
  a_push_scope_context context = {};
  context.flags = is_secondary ? psf_secondary : psf_none;
  push_scope_full(sk_file, -1, nullptr, nullptr, &context);
}

static void push_block_with_flags(a_scope_pointers_block* block, unsigned flags) {
  if (block != nullptr)
    *block = {};
  a_push_scope_context context = {};
  context.pointers_block = block;
  context.flags = flags;
  push_scope_full(sk_block, -1, nullptr, nullptr, &context);
}

void push_block_scope(a_scope_pointers_block* block) {
  push_block_with_flags(block, psf_none);
}

void push_for_init_scope(a_scope_pointers_block* block) {
  push_block_with_flags(block, psf_for_init);
}

void push_block_scope_with_lifetime(an_object_lifetime* lifetime) {
  a_push_scope_context context = {};
  context.object_lifetime = lifetime;
  push_scope_full(sk_block, -1, nullptr, nullptr, &context);
}

void push_block_reactivation_scope(a_scope* scope, a_scope_pointers_block* block) {
  a_push_scope_context context = {};
  context.pointers_block = block;
  context.il_scope = scope;
  context.flags = psf_reactivate;
  push_scope_full(sk_block, scope->scope_number, nullptr, nullptr, &context);
  if (block == nullptr)
    return;
  for (a_symbol* symbol = block->first_symbol; symbol != nullptr; symbol = symbol->next_in_scope)
    reenter_block_scope_symbol(symbol);
}

void push_function_scope(a_routine* routine) {
  push_scope(sk_function, -1, nullptr, routine);
}

void push_function_reactivation_scope(a_routine* routine) {
  a_push_scope_context context = {};
  context.flags = psf_reactivate;
  const a_function_def_table_entry& def =
      il_header.function_def_table[routine->function_def_number];
  push_scope_full(sk_function, def.scope->scope_number, nullptr, routine, &context);
}

static void push_scope_of_namespace(a_scope_kind kind, a_namespace* namespace_entry) {
  a_push_scope_context context = {};
  context.namespace_entry = f_skip_namespace_aliases(namespace_entry);
  push_scope_full(kind, -1, nullptr, nullptr, &context);
}

void push_namespace_scope(a_namespace* namespace_entry) {
  push_scope_of_namespace(sk_namespace, namespace_entry);
}

void f_push_namespace_extension_scope(a_namespace* namespace_entry) {
  push_scope_of_namespace(sk_namespace_extension, namespace_entry);
}

void f_push_namespace_reactivation_scope(a_namespace* namespace_entry) {
  push_scope_of_namespace(sk_namespace_reactivation, namespace_entry);
}

void push_new_top_level_declaration() {
  a_push_scope_context context = {};
  context.flags = psf_fresh_start;
  push_scope_full(sk_top_level_declaration, -1, nullptr, nullptr, &context);
}

void push_class_scope(a_type* class_type) {
  push_scope(sk_class, -1, class_type, nullptr);
}

// ---- Opening classes again ----

static a_scope* scope_around_class(a_type* class_type) {
  a_scope* scope = f_get_parent_scope_of(&class_type->source_corresp, iek_type);
  return scope != nullptr ? scope : il_header.primary_scope;
}

// The depth at which the scope is open around the current place, or -1.
static int32_t open_depth_of_scope(const a_scope* scope) {
  int64_t depth = depth_scope_stack;
  while (depth >= 0 && scope_stack[depth].il_scope != scope)
    depth = scope_stack[depth].parent_depth;
  return static_cast<int32_t>(depth);
}

static void push_template_params_of_class(a_type* class_type, int32_t* parent_depth) {
  const a_template* templ = class_supplement_of(class_type)->assoc_template;
  if (templ == nullptr || !class_type->variant.class_struct_union.is_prototype_instantiation)
    return;
  for (const a_template_decl* decl = templ->decl; decl != nullptr; decl = decl->next) {
    a_push_scope_context context = {};
    context.template_params = decl->params;
    context.flags = psf_parent_given | psf_no_template_scope;
    context.parent_depth = *parent_depth;
    push_scope_full(sk_template_declaration, -1, nullptr, nullptr, &context);
    scope_stack[depth_scope_stack].pushed_for_inner_scope = true;
    *parent_depth = depth_scope_stack;
    for (const a_template_param* param = decl->params; param != nullptr; param = param->next)
      if (param->symbol != nullptr)
        reenter_symbol(param->symbol, depth_scope_stack, true);
  }
}

static void reactivate_class(a_type* class_type, const a_push_scope_context* own_context,
                             int32_t* parent_depth) {
  push_template_params_of_class(class_type, parent_depth);
  a_push_scope_context context = *own_context;
  context.flags |= psf_parent_given;
  context.parent_depth = *parent_depth;
  push_scope_full(sk_class_reactivation, -1, class_type, nullptr, &context);
  *parent_depth = depth_scope_stack;
}

// The scopes around one that aren't open, innermost first.
static std::vector<a_scope*> closed_scopes_around(a_scope* scope) {
  std::vector<a_scope*> closed;
  while (scope != nullptr && scope->kind != sk_file && open_depth_of_scope(scope) < 0) {
    closed.push_back(scope);
    scope = scope->kind == sk_class ? scope_around_class(scope->assoc.type) : scope->parent;
  }
  return closed;
}

static int32_t depth_around(const std::vector<a_scope*>& closed, a_scope* innermost) {
  a_scope* open = innermost;
  if (!closed.empty()) {
    a_scope* outermost = closed.back();
    open =
        outermost->kind == sk_class ? scope_around_class(outermost->assoc.type) : outermost->parent;
  }
  const int32_t depth = open == nullptr ? 0 : open_depth_of_scope(open);
  return depth < 0 ? 0 : depth;
}

void push_class_and_template_reactivation_scope_full(a_type* class_type,
                                                     const a_push_scope_context* context) {
  class_type = skip_typerefs(class_type);
  a_scope* around = scope_around_class(class_type);
  const std::vector<a_scope*> closed = closed_scopes_around(around);
  int32_t parent_depth = depth_around(closed, around);
  const a_push_scope_context no_context = {};
  for (size_t i = closed.size(); i-- > 0;) {
    a_scope* scope = closed[i];
    if (scope->kind == sk_class) {
      reactivate_class(scope->assoc.type, &no_context, &parent_depth);
    } else if (scope->kind == sk_namespace) {
      a_push_scope_context namespace_context = {};
      namespace_context.namespace_entry = f_skip_namespace_aliases(scope->assoc.namespace_entry);
      namespace_context.flags = psf_parent_given;
      namespace_context.parent_depth = parent_depth;
      push_scope_full(sk_namespace_reactivation, -1, nullptr, nullptr, &namespace_context);
      parent_depth = depth_scope_stack;
    } else {
      continue;
    }
    scope_stack[depth_scope_stack].pushed_for_inner_scope = true;
  }
  reactivate_class(class_type, context, &parent_depth);
}

void push_class_and_template_reactivation_scope(a_type* class_type) {
  const a_push_scope_context context = {};
  push_class_and_template_reactivation_scope_full(class_type, &context);
}

// ---- Initialisation ----

template <typename T> static void register_per_unit(T& variable) {
  f_register_trans_unit_variable(&variable, sizeof variable, 0);
}

void scope_stk_one_time_init() {
  register_per_unit(scope_stack);
  register_per_unit(size_scope_stack);
  register_per_unit(depth_scope_stack);
  register_per_unit(depth_of_initial_lookup_scope);
  register_per_unit(decl_scope_level);
  register_per_unit(depth_innermost_function_scope);
  register_per_unit(innermost_function_scope);
  register_per_unit(depth_innermost_instantiation_scope);
  register_per_unit(depth_template_declaration_scope);
  register_per_unit(curr_deferred_access_scope);
  register_per_unit(inside_local_class);
  register_per_unit(non_local_class_fixup_depth);
  register_per_unit(depth_innermost_namespace_scope);
  register_per_unit(depth_of_innermost_scope_that_affects_access_control);
  register_per_unit(num_classes_on_scope_stack);
  register_per_unit(pack_expansion_stack);
}

void scope_stk_init() {
  clear_unexpanded_packs();
  clear_hidden_names();
  clear_c99_inline_uses();
  clear_name_linkages();
}

void scope_stk_trans_unit_init() {
  scope_stack = nullptr;
  size_scope_stack = 0;
  depth_scope_stack = -1;
  depth_of_initial_lookup_scope = -1;
  decl_scope_level = -1;
  depth_innermost_function_scope = -1;
  innermost_function_scope = nullptr;
  depth_innermost_instantiation_scope = -1;
  depth_template_declaration_scope = -1;
  curr_deferred_access_scope = -1;
  inside_local_class = false;
  non_local_class_fixup_depth = -1;
  depth_innermost_namespace_scope = -1;
  depth_of_innermost_scope_that_affects_access_control = -1;
  num_classes_on_scope_stack = 0;
  pack_expansion_stack = nullptr;
}
