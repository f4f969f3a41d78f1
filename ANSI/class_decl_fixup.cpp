// What a class delays until the outermost class is complete (C++11 9.2 p2):
// default arguments, exception specifications, field initialisers and function
// bodies. Their tokens are cached where they stand and scanned with the scope
// of the class open again.

#include "class_decl_int.h"
#include "declarator_int.h"
#include "decls.h"
#include "def_arg.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_expr.h"
#include "il_statements.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_tbl.h"
#include "types.h"

#include <new>

namespace {

template <typename T> struct a_queue {
  T* first;
  T* last;
};

template <typename T> void append(a_queue<T>* queue, T* entry) {
  entry->next = nullptr;
  if (queue->last)
    queue->last->next = entry;
  else
    queue->first = entry;
  queue->last = entry;
}

template <typename T> T* alloc_fixup() {
  return new (alloc_in_region(0, sizeof(T))) T();
}

} // namespace

// The delayed work of the classes that are defined in one scope. The entry of
// that scope has it while any waits.
struct a_class_fixup_queue {
  a_class_fixup_queue* outer; // the queues in use, innermost first
  a_queue<a_class_list_entry> classes;
  a_queue<a_routine_fixup> routines;
  a_queue<a_def_arg_expr_fixup> def_args;
  a_queue<an_exception_spec_fixup> exception_specs;
  a_queue<a_field_initializer_fixup> field_initializers;
  a_queue<an_exception_spec_check> exception_spec_checks;
  bool is_being_processed;
};

static a_class_fixup_queue* queues_in_use;

// ---- The queue ----

// Such a scope may be open only for the definition of a class by a qualified
// name, and be closed before what the class delays is read.
static bool is_reopened(a_scope_kind kind) {
  return kind == sk_class_reactivation || kind == sk_namespace_reactivation ||
         kind == sk_namespace_extension;
}

// The scope in which the outermost of the classes being defined here stands.
static int depth_around_open_classes(bool* class_is_open) {
  int depth = depth_scope_stack;
  *class_is_open = false;
  for (;; --depth) {
    a_scope_kind kind = scope_stack[depth].kind;
    if (kind == sk_class)
      *class_is_open = true;
    else if (kind != sk_template_declaration && kind != sk_function_prototype && !is_reopened(kind))
      return depth;
  }
}

bool is_in_open_class() {
  int depth = depth_scope_stack;
  while (scope_stack[depth].kind == sk_function_prototype)
    --depth;
  return scope_stack[depth].kind == sk_class;
}

static a_class_fixup_queue* curr_queue() {
  bool class_is_open;
  a_scope_stack_entry* entry = &scope_stack[depth_around_open_classes(&class_is_open)];
  if (!entry->class_fixups) {
    entry->class_fixups = alloc_fixup<a_class_fixup_queue>();
    entry->class_fixups->outer = queues_in_use;
    queues_in_use = entry->class_fixups;
  }
  return entry->class_fixups;
}

void add_class_to_fixup_list(a_type* class_type) {
  a_class_list_entry* entry = alloc_fixup<a_class_list_entry>();
  entry->class_type = class_type;
  append(&curr_queue()->classes, entry);
}

void add_routine_fixup(a_routine* routine, const a_func_info_block* func_info, a_type* class_type,
                       uint8_t flags) {
  a_routine_fixup* fixup = alloc_fixup<a_routine_fixup>();
  fixup->routine = routine;
  fixup->func_info = *func_info;
  record_lint_argsused_and_varargs_state(&fixup->func_info);
  fixup->class_type = class_type;
  fixup->flags = flags;
  if (curr_token != tok_lbrace)
    fixup->flags |= rff_has_initializers;
  clear_token_cache(&fixup->body, false);
  if (!cache_function_body(&fixup->body)) {
    discard_token_cache(&fixup->body);
    return;
  }
  terminate_token_cache(&fixup->body);
  get_token();
  append(&curr_queue()->routines, fixup);
}

static bool has_deferred_tokens(const an_exception_specification* specification) {
  return specification && specification->deferred_tokens;
}

static a_type* innermost_open_class() {
  int depth = depth_scope_stack;
  while (scope_stack[depth].kind != sk_class)
    --depth;
  return scope_stack[depth].assoc_type;
}

void add_declarator_fixups(a_type* routine_type, const a_func_info_block* func_info) {
  a_prototype_context context = {};
  context.routine_type = routine_type;
  context.first_symbol = func_info->first_prototype_symbol;
  context.scope_number = func_info->prototype_scope_number;
  for (a_param_id* param = func_info->param_id_list; param; param = param->next) {
    if (!param->default_arg)
      continue;
    context.class_type = innermost_open_class();
    a_def_arg_expr_fixup* fixup = alloc_fixup<a_def_arg_expr_fixup>();
    fixup->param = param->param_type;
    fixup->expression = *param->default_arg;
    fixup->position = fixup->expression.first->pos;
    fixup->context = context;
    param->default_arg = nullptr;
    append(&curr_queue()->def_args, fixup);
  }
  an_exception_specification* specification =
      routine_type->variant.routine.routine_supplement->exception_specification;
  if (!has_deferred_tokens(specification))
    return;
  context.class_type = innermost_open_class();
  an_exception_spec_fixup* fixup = alloc_fixup<an_exception_spec_fixup>();
  fixup->specification = specification;
  fixup->context = context;
  append(&curr_queue()->exception_specs, fixup);
}

void cache_field_initializer(a_field* field, a_type* class_type) {
  static const a_token_set_array at_end = [] {
    a_token_set_array set = {};
    set.member[tok_comma] = set.member[tok_semicolon] = set.member[tok_rbrace] = true;
    return set;
  }();
  a_field_initializer_fixup* fixup = alloc_fixup<a_field_initializer_fixup>();
  fixup->field = field;
  fixup->class_type = class_type;
  clear_token_cache(&fixup->initializer, false);
  field->has_default_init = true;
  field->default_init_range.start = pos_curr_token;
  cache_token_stream_full(&fixup->initializer, &at_end, ctsf_template_argument);
  terminate_token_cache(&fixup->initializer);
  append(&curr_queue()->field_initializers, fixup);
}

void add_exception_spec_check(a_routine* overrider, a_routine* overridden) {
  an_exception_spec_check* check = alloc_fixup<an_exception_spec_check>();
  check->overrider = overrider;
  check->overridden = overridden;
  append(&curr_queue()->exception_spec_checks, check);
}

a_def_arg_expr_fixup* find_def_arg_fixup(const a_param_type* param) {
  for (a_class_fixup_queue* queue = queues_in_use; queue; queue = queue->outer)
    for (a_def_arg_expr_fixup* fixup = queue->def_args.first; fixup; fixup = fixup->next)
      if (fixup->param == param && !fixup->is_scanned)
        return fixup;
  return nullptr;
}

// ---- Rescanning ----

void begin_delayed_scan(a_token_cache* cache) {
  push_stop_token_stack();
  rescan_cached_tokens(cache);
}

void end_delayed_scan(an_error_code code) {
  if (curr_token != tok_end_of_source && code != 0)
    pos_error(code, &pos_curr_token);
  while (curr_token != tok_end_of_source)
    get_token();
  get_token();
  pop_stop_token_stack();
}

// Opens the class and, behind it, the prototype with its parameters.
void push_prototype_context(const a_prototype_context* context) {
  push_class_and_template_reactivation_scope(context->class_type);
  push_scope(sk_function_prototype, context->scope_number, context->routine_type, nullptr);
  a_symbol* next;
  for (a_symbol* symbol = context->first_symbol; symbol; symbol = next) {
    next = symbol->next_in_scope;
    if (!symbol->not_in_lookup)
      reenter_symbol(symbol, depth_scope_stack, true);
  }
}

void pop_prototype_context() {
  pop_scope();
  pop_class_reactivation_scope();
}

// ---- Default arguments and exception specifications ----

// The object of the function, which its exception specification may name; null
// for a static function and for a friend.
static a_variable* this_of_function(const a_prototype_context* context) {
  const a_routine_type_supplement* supplement =
      context->routine_type->variant.routine.routine_supplement;
  return supplement->this_class
             ? make_this_of_class(context->class_type, supplement->this_qualifiers)
             : nullptr;
}

static void scan_exception_spec_fixup(an_exception_spec_fixup* fixup) {
  a_token_cache* tokens = fixup->specification->deferred_tokens;
  if (!tokens)
    return;
  fixup->specification->deferred_tokens = nullptr;
  push_prototype_context(&fixup->context);
  a_variable* saved_this =
      set_this_of_class(fixup->context.class_type, this_of_function(&fixup->context));
  begin_delayed_scan(tokens);
  scan_noexcept_condition(fixup->specification);
  end_delayed_scan(ec_exp_rparen);
  set_this_of_class(fixup->context.class_type, saved_this);
  pop_prototype_context();
}

// A parameter behind one with a default argument has one too (C++11 8.3.6 p4).
static void check_param_behind_default_arg(const a_def_arg_expr_fixup* fixup) {
  a_param_type* param = fixup->param->next;
  if (!param || param->has_default_arg || param->is_parameter_pack)
    return;
  pos_error(ec_default_arg_not_at_end, &fixup->position);
  for (; param; param = param->next) {
    param->has_default_arg = true;
    param->default_arg_is_deferred = false;
    param->default_arg_expr = fs_error_node();
  }
}

// The default arguments and exception specifications of the functions that the
// class declares, in their order.
static void def_arg_and_eh_spec_fixup_for_class(a_class_fixup_queue* queue, a_type* class_type) {
  for (a_def_arg_expr_fixup* fixup = queue->def_args.first; fixup; fixup = fixup->next)
    if (fixup->context.class_type == class_type && !fixup->is_scanned) {
      delayed_scan_of_default_arg_expr(fixup);
      check_param_behind_default_arg(fixup);
    }
  for (an_exception_spec_fixup* fixup = queue->exception_specs.first; fixup; fixup = fixup->next)
    if (fixup->context.class_type == class_type)
      scan_exception_spec_fixup(fixup);
}

// ---- Exception specifications of overriders (C++11 15.4 p5) ----

static const an_exception_specification* exception_spec_of(const a_routine* routine) {
  return skip_typerefs(routine->type)->variant.routine.routine_supplement->exception_specification;
}

// Without exceptions nothing works out what the class would declare.
static bool lacks_implicit_spec(const a_routine* routine) {
  bool is_worked_out = exceptions_enabled && implicit_noexcept_enabled;
  return !is_worked_out && !exception_spec_of(routine) &&
         (routine->is_defaulted || routine->special_kind == rsk_destructor);
}

static void run_exception_spec_check(const an_exception_spec_check* check) {
  const a_routine* overrider = check->overrider;
  if (!check->overridden) {
    check_exception_spec_of_defaulted_function(check->overrider);
    return;
  }
  if (is_error_type(overrider->type) || is_error_type(check->overridden->type))
    return;
  resolve_indeterminate_exception_specification(check->overrider);
  resolve_indeterminate_exception_specification(check->overridden);
  if (lacks_implicit_spec(overrider) ||
      !exception_spec_is_less_restrictive(exception_spec_of(overrider),
                                          exception_spec_of(check->overridden)))
    return;
  an_error_code code = overrider->is_compiler_generated
                           ? ec_generated_exception_spec_override_incompat
                           : ec_exception_spec_override_incompat;
  pos_sy2_error(code, &overrider->source_corresp.position, overrider->source_corresp.symbol,
                check->overridden->source_corresp.symbol);
}

// ---- Field initialisers ----

static void scan_field_initializer_fixup(a_field_initializer_fixup* fixup) {
  if (fixup->is_scanned)
    return;
  if (fixup->is_being_scanned) {
    pos_sy_error(ec_recursive_initializer_instantiation, &pos_curr_token,
                 fixup->field->source_corresp.symbol);
    return;
  }
  fixup->is_being_scanned = true;
  push_class_and_template_reactivation_scope(fixup->class_type);
  begin_delayed_scan(&fixup->initializer);
  scan_field_initializer(fixup->field, fixup->class_type);
  end_delayed_scan(is_error_dynamic_init(fixup->field->default_init) ? an_error_code{0}
                                                                     : ec_exp_semicolon);
  pop_class_reactivation_scope();
  fixup->is_scanned = true;
  fixup->field->default_init_is_scanned = true;
}

void scan_field_initializer_if_needed(a_field* field, a_type* class_type) {
  for (a_class_fixup_queue* queue = queues_in_use; queue; queue = queue->outer)
    for (auto* fixup = queue->field_initializers.first; fixup; fixup = fixup->next)
      if (fixup->field == field && fixup->class_type == class_type)
        scan_field_initializer_fixup(fixup);
}

// ---- Bodies ----

static void scan_routine_fixup(a_routine_fixup* fixup) {
  push_class_and_template_reactivation_scope(fixup->class_type);
  begin_delayed_scan(&fixup->body);
  scan_function_body(fixup->routine, &fixup->func_info);
  end_delayed_scan(0);
  pop_class_reactivation_scope();
}

// ---- The end of the outermost class ----

// What is scanned may declare classes of its own, which join the queue; bodies
// see all that the other steps find.
static void process_queue(a_class_fixup_queue* queue) {
  a_class_list_entry* next_class = queue->classes.first;
  a_field_initializer_fixup* next_field = queue->field_initializers.first;
  for (; next_class; next_class = next_class->next)
    def_arg_and_eh_spec_fixup_for_class(queue, next_class->class_type);
  for (; next_field; next_field = next_field->next)
    scan_field_initializer_fixup(next_field);
  for (auto* check = queue->exception_spec_checks.first; check; check = check->next)
    run_exception_spec_check(check);
  for (a_routine_fixup* fixup = queue->routines.first; fixup; fixup = fixup->next)
    if (!(fixup->flags & rff_template_member))
      scan_routine_fixup(fixup);
}

void process_deferred_class_fixups_and_instantiations() {
  bool class_is_open;
  int depth = depth_around_open_classes(&class_is_open);
  a_class_fixup_queue* queue = scope_stack[depth].class_fixups;
  if (!queue || queue->is_being_processed || class_is_open)
    return;
  queue->is_being_processed = true;
  process_queue(queue);
  scope_stack[depth].class_fixups = nullptr;
  a_class_fixup_queue** link = &queues_in_use;
  while (*link != queue)
    link = &(*link)->outer;
  *link = queue->outer;
}

void class_decl_fixup_init() {
  queues_in_use = nullptr;
}
