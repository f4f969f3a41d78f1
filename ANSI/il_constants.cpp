#include "il_constants.h"

#include "float_pt.h"
#include "host_envir.h"
#include "il.h"
#include "il_alloc.h"
#include "il_expr.h"
#include "il_expr_int.h"
#include "il_statements.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "stack_limit.h"
#include "symbol_tbl.h"
#include "target.h"
#include "trans_unit.h"
#include "types.h"

#include <cstring>

namespace {

// Both prime.
constexpr uint32_t file_table_size = 2039;
constexpr uint32_t function_table_size = 31;

constexpr a_float_value positive_zero = {{}, zero_exponent, 0, {}};

// The shared constants of file scope, chained through `next` in each bucket.
a_constant** shareable_constants_table;
// The last one given. No two literals of a run have the same, in whichever
// units they are: units meet in one intermediate language.
uint64_t string_literal_sequence_number;

} // namespace

// ---- Allocation and initial states ----

a_constant* alloc_constant(a_constant_kind kind) {
  a_constant* constant = static_cast<a_constant*>(alloc_il_in_current_region(sizeof(a_constant)));
  clear_constant(constant, kind);
  return constant;
}

a_constant* fs_constant(a_constant_kind kind) {
  int32_t saved_region;
  switch_to_file_scope_region(&saved_region);
  a_constant* constant = alloc_constant(kind);
  switch_back_to_original_region(saved_region);
  return constant;
}

void clear_constant(a_constant* constant, a_constant_kind kind) {
  memset(static_cast<void*>(constant), 0, sizeof *constant);
  init_source_correspondence(&constant->source_corresp);
  set_constant_kind(constant, kind);
}

void set_constant_kind(a_constant* constant, a_constant_kind kind) {
  memset(static_cast<void*>(&constant->value), 0, sizeof constant->value);
  constant->kind = kind;
  switch (kind) {
  case con_string:
    constant->value.string.string_extra = -1;
    break;
  case con_float:
  case con_imaginary:
    constant->value.float_value = positive_zero;
    break;
  case con_complex:
    constant->value.complex_value = alloc_complex_value();
    break;
  default:
    break;
  }
}

void set_template_param_constant_kind(a_constant* constant, a_template_param_constant_kind kind) {
  memset(static_cast<void*>(&constant->value), 0, sizeof constant->value);
  constant->value.template_param.param_kind = kind;
}

void set_error_constant(a_constant* constant) {
  clear_constant(constant, con_error);
  constant->type = error_type();
}

a_complex_value* alloc_complex_value() {
  a_complex_value* value =
      static_cast<a_complex_value*>(alloc_il_in_current_region(sizeof(a_complex_value)));
  value->real = positive_zero;
  value->imaginary = positive_zero;
  return value;
}

a_subobject_path* alloc_subobject_path() {
  void* memory = alloc_il_in_current_region(sizeof(a_subobject_path));
  memset(memory, 0, sizeof(a_subobject_path));
  return static_cast<a_subobject_path*>(memory);
}

// ---- Copies ----

void copy_constant(const a_constant* source, a_constant* target) {
  if (source == target)
    return;
  *target = *source;
  target->next = nullptr;
}

static a_subobject_path* copy_subobject_path(const a_subobject_path* path) {
  a_subobject_path* first = nullptr;
  a_subobject_path** link = &first;
  for (; path != nullptr; path = path->next) {
    a_subobject_path* step = alloc_subobject_path();
    *step = *path;
    step->next = nullptr;
    *link = step;
    link = &step->next;
  }
  return first;
}

static a_constant* copy_of_part(const a_constant* part) {
  if (part == nullptr)
    return nullptr;
  a_constant* copy = alloc_constant(con_error);
  copy_constant_full(part, copy);
  return copy;
}

static void copy_elements(a_constant* aggregate) {
  const a_constant* element = aggregate->value.aggregate.first;
  a_constant** link = &aggregate->value.aggregate.first;
  aggregate->value.aggregate.last = nullptr;
  *link = nullptr;
  for (; element != nullptr; element = element->next) {
    a_constant* copy = copy_of_part(element);
    *link = copy;
    link = &copy->next;
    aggregate->value.aggregate.last = copy;
  }
}

static void copy_template_param_parts(a_template_param_value* value) {
  switch (value->param_kind) {
  case tpck_expression:
    value->param_data.expr = copy_expr_tree(value->param_data.expr, cef_copy_dynamic_inits);
    break;
  case tpck_cast:
  case tpck_implicit_cast:
  case tpck_unknown_function:
    value->param_data.constant = copy_of_part(value->param_data.constant);
    break;
  case tpck_sizeof:
  case tpck_alignof:
  case tpck_uuidof:
  case tpck_typeid:
  case tpck_noexcept:
    value->param_expr.expr = copy_expr_tree(value->param_expr.expr, cef_copy_dynamic_inits);
    break;
  default:
    break;
  }
}

void copy_constant_full(const a_constant* source, a_constant* target) {
  check_stack_limit();
  copy_constant(source, target);
  switch (target->kind) {
  case con_complex: {
    a_complex_value* pair = alloc_complex_value();
    *pair = *source->value.complex_value;
    target->value.complex_value = pair;
    break;
  }
  case con_address:
    target->value.address.subobject_path =
        copy_subobject_path(source->value.address.subobject_path);
    if (target->value.address.base_kind == abk_temporary)
      target->value.address.base.constant = copy_of_part(source->value.address.base.constant);
    break;
  case con_address_difference:
    target->value.address_difference.minuend =
        copy_of_part(source->value.address_difference.minuend);
    target->value.address_difference.subtrahend =
        copy_of_part(source->value.address_difference.subtrahend);
    break;
  case con_dynamic_init:
    target->value.dynamic_init = copy_dynamic_init(source->value.dynamic_init);
    break;
  case con_aggregate:
    copy_elements(target);
    break;
  case con_repeat:
    target->value.repeat.element = copy_of_part(source->value.repeat.element);
    break;
  case con_template_param:
    copy_template_param_parts(&target->value.template_param);
    break;
  case con_designator:
    if (!target->value.designator.is_field)
      target->value.designator.designated.index =
          copy_of_part(source->value.designator.designated.index);
    break;
  default:
    break;
  }
}

a_constant* alloc_unshared_constant(const a_constant* constant) {
  return alloc_unshared_constant_full(constant, false, false);
}

a_constant* alloc_unshared_constant_full(const a_constant* constant, bool keep_lowering_flag,
                                         bool no_deep_copy) {
  a_constant* copy = alloc_constant(con_error);
  if (no_deep_copy)
    copy_constant(constant, copy);
  else
    copy_constant_full(constant, copy);
  break_constant_source_corresp(copy);
  if (keep_lowering_flag)
    il_entry_prefix_of(copy).il_lowering_flag = il_entry_prefix_of(constant).il_lowering_flag;
  fix_memory_region_problems_in_copied_constant(copy);
  return copy;
}

// ---- Sharing ----

static bool is_string_or_its_address(const a_constant* constant) {
  return constant->kind == con_string ||
         (constant->kind == con_address && constant->value.address.base_kind == abk_constant);
}

// Whether the value holds parts that belong to one use of it.
static bool owns_parts(const a_constant* constant) {
  switch (constant->kind) {
  case con_address:
    return constant->value.address.subobject_path != nullptr;
  case con_ptr_to_member:
    return constant->value.ptr_to_member.name_reference != nullptr;
  case con_dynamic_init:
  case con_aggregate:
  case con_repeat:
  case con_template_param:
  case con_designator:
    return true;
  default:
    return false;
  }
}

// A backing expression belongs to one use of the value; the number of a string
// literal already tells it apart.
static bool keeps_source_expr(const a_constant* constant) {
  return constant->source_expr != nullptr &&
         !(constant->kind == con_string && constant->value.string.sequence_number != 0);
}

static bool needs_own_record(const a_constant* constant) {
  const a_source_correspondence& head = constant->source_corresp;
  if (head.symbol == nullptr && (keeps_source_expr(constant) || head.name_reference != nullptr))
    return true;
  return !in_front_end || owns_parts(constant);
}

bool constant_is_shareable(const a_constant* constant) {
  if (needs_own_record(constant))
    return false;
  if (constant->source_corresp.symbol != nullptr && !constant->shareable_name)
    return false;
  return string_literals_shared || !is_string_or_its_address(constant);
}

// A named constant is its own shared record; null while the name stands for
// another value, such as an enumerator whose type is still open.
static a_constant* shared_constant_of_symbol(const a_constant* constant) {
  const a_symbol* symbol = constant->source_corresp.symbol;
  if (symbol->kind != symk_constant)
    return nullptr;
  a_constant* named = symbol->variant.constant;
  return named != nullptr && compare_constants(named, constant, ccf_for_sharing) ? named : nullptr;
}

static a_constant** new_table(int32_t region, uint32_t size) {
  void* memory = alloc_in_region(region, size * sizeof(a_constant*));
  memset(memory, 0, size * sizeof(a_constant*));
  return static_cast<a_constant**>(memory);
}

static bool is_in_function_region() {
  return curr_il_region_number != file_scope_region_number && depth_innermost_function_scope >= 0;
}

static a_constant** bucket_for_constant(const a_constant* constant, bool is_local) {
  const uint64_t hash = hash_constant(constant);
  if (!is_local) {
    if (shareable_constants_table == nullptr)
      shareable_constants_table = new_table(front_end_region, file_table_size);
    return &shareable_constants_table[hash % file_table_size];
  }
  a_scope_stack_entry* function = &scope_stack[depth_innermost_function_scope];
  if (function->function_shareable_constants == nullptr)
    function->function_shareable_constants =
        new_table(function->region_number, function_table_size);
  return &function->function_shareable_constants[hash % function_table_size];
}

static a_constant* find_in_bucket(a_constant** bucket, const a_constant* constant) {
  for (a_constant** link = bucket; *link != nullptr; link = &(*link)->next) {
    a_constant* candidate = *link;
    if (!compare_constants(candidate, constant, ccf_for_sharing))
      continue;
    *link = candidate->next;
    candidate->next = *bucket;
    *bucket = candidate;
    return candidate;
  }
  return nullptr;
}

static a_constant* add_to_bucket(a_constant** bucket, const a_constant* constant, bool is_local) {
  int32_t saved_region = 0;
  if (!is_local)
    switch_to_file_scope_region(&saved_region);
  a_constant* shared = alloc_constant(con_error);
  copy_constant_full(constant, shared);
  switch_back_to_original_region(saved_region);
  shared->source_corresp.name_reference = nullptr;
  shared->source_expr = nullptr;
  fix_memory_region_problems_in_copied_constant(shared);
  shared->next = *bucket;
  *bucket = shared;
  return shared;
}

static a_constant* alloc_own_record(const a_constant* constant) {
  a_constant* copy = alloc_unshared_constant(constant);
  if (!keeps_source_expr(constant))
    copy->source_expr = nullptr;
  return copy;
}

a_constant* alloc_shareable_constant(const a_constant* constant) {
  if (!constant_is_shareable(constant))
    return alloc_own_record(constant);
  if (constant->source_corresp.symbol != nullptr) {
    a_constant* named = shared_constant_of_symbol(constant);
    return named != nullptr ? named : alloc_own_record(constant);
  }
  const bool has_local_ref = has_non_file_scope_ref(constant);
  const bool is_local = has_local_ref && is_in_function_region();
  if (has_local_ref && !is_local)
    return alloc_own_record(constant);
  a_constant** bucket = bucket_for_constant(constant, is_local);
  a_constant* shared = find_in_bucket(bucket, constant);
  return shared != nullptr ? shared : add_to_bucket(bucket, constant, is_local);
}

void empty_shareable_constants_table() {
  shareable_constants_table = nullptr;
}

void empty_func_shareable_constants_table() {
  if (depth_innermost_function_scope >= 0)
    scope_stack[depth_innermost_function_scope].function_shareable_constants = nullptr;
}

void f_assign_string_literal_sequence_number(a_constant* constant) {
  constant->value.string.sequence_number = ++string_literal_sequence_number;
}

// ---- Values ----

// Cuts a value to the width of an integer kind, in two's complement.
static uint64_t cut_to_int_kind(uint64_t value, an_integer_kind int_kind) {
  const int precision = precision_of_int_kind(int_kind);
  if (precision >= 64)
    return value;
  const uint64_t mask = (uint64_t{1} << precision) - 1;
  const uint64_t sign = uint64_t{1} << (precision - 1);
  value &= mask;
  if (int_kind_is_signed(int_kind) && (value & sign) != 0)
    value |= ~mask;
  return value;
}

void set_integer_constant(a_constant* constant, int64_t value, an_integer_kind int_kind) {
  set_unsigned_integer_constant(constant, static_cast<uint64_t>(value), int_kind);
}

void set_unsigned_integer_constant(a_constant* constant, uint64_t value, an_integer_kind int_kind) {
  clear_constant(constant, con_integer);
  constant->type = integer_type(int_kind);
  constant->value.int_value = cut_to_int_kind(value, int_kind);
}

void make_zero_of_proper_type(a_type* type, a_constant* constant) {
  switch (type_kind(type)) {
  case tk_integer:
  case tk_nullptr:
    clear_constant(constant, con_integer);
    break;
  case tk_pointer:
    clear_constant(constant, con_integer);
    constant->is_pointer_value = true;
    break;
  case tk_float:
    clear_constant(constant, con_float);
    break;
  case tk_imaginary:
    clear_constant(constant, con_imaginary);
    break;
  case tk_complex:
    clear_constant(constant, con_complex);
    break;
  case tk_ptr_to_member:
    clear_constant(constant, con_ptr_to_member);
    break;
  default:
    set_error_constant(constant);
    return;
  }
  constant->type = type;
}

void make_value_initialized_constant(a_type* type, a_constant* constant) {
  const a_type_kind kind = type_kind(type);
  if (kind != tk_array && !is_class_struct_union_kind(kind)) {
    make_zero_of_proper_type(type, constant);
    return;
  }
  // Elements that an aggregate does not list are zero.
  clear_constant(constant, con_aggregate);
  constant->type = type;
}

static bool holds_dynamic_init(const a_constant* constant) {
  switch (constant->kind) {
  case con_dynamic_init:
    return true;
  case con_aggregate:
    return constant->value.aggregate.has_dynamic_init;
  case con_repeat:
    return constant->value.repeat.element != nullptr &&
           holds_dynamic_init(constant->value.repeat.element);
  default:
    return false;
  }
}

a_constant* repeated_constant(a_constant* element, uint64_t count) {
  if (count == 1)
    return element;
  a_constant* repeat = alloc_constant(con_repeat);
  repeat->type = element->type;
  repeat->value.repeat.element = element;
  repeat->value.repeat.count = count;
  return repeat;
}

void add_constant_to_aggregate(a_constant* element, a_constant* aggregate) {
  an_aggregate_value& value = aggregate->value.aggregate;
  element->next = nullptr;
  if (value.last != nullptr)
    value.last->next = element;
  else
    value.first = element;
  value.last = element;
  if (holds_dynamic_init(element))
    value.has_dynamic_init = true;
  const bool repeats = element->kind == con_repeat;
  const a_constant* single = repeats ? element->value.repeat.element : element;
  if (element->kind == con_designator || single->has_designator)
    aggregate->has_designator = true;
  if (element->contains_nonconstant)
    aggregate->contains_nonconstant = true;
}

void explode_string_initializer(a_constant* constant) {
  const a_string_value string = constant->value.string;
  const int char_size = character_size[constant->string_char_kind];
  a_type* element_type = array_element_type(constant->type);
  const an_integer_kind int_kind = int_kind_of(element_type);
  uint64_t count = string.length / static_cast<uint64_t>(char_size);
  const uint64_t bound = num_array_elements(skip_typerefs(constant->type));
  // The terminator has no place in an array of just the other characters.
  if (bound != 0 && bound < count)
    count = bound;
  set_constant_kind(constant, con_aggregate);
  for (uint64_t i = 0; i < count; ++i) {
    a_constant* element = alloc_constant(con_integer);
    const char* bytes = string.text + i * static_cast<uint64_t>(char_size);
    set_unsigned_integer_constant(element, extract_character_from_string(bytes, char_size),
                                  int_kind);
    element->type = element_type;
    add_constant_to_aggregate(element, constant);
  }
}

a_constant* combine_initializer_constants(a_constant* first, a_constant* second) {
  if (first == nullptr)
    return second;
  a_constant* last = first;
  while (last->next != nullptr)
    last = last->next;
  last->next = second;
  return first;
}

a_constant* first_enumerator_of_enum(const a_type* enum_type) {
  const an_integer_type_variant& variant = f_skip_typerefs(enum_type)->variant.integer;
  if (!variant.is_scoped_enum)
    return variant.enum_data.first_enumerator;
  return variant.enum_data.scope == nullptr ? nullptr : variant.enum_data.scope->constants;
}

a_constant* add_backing_expression_for_named_constant(a_constant* constant) {
  if (constant->source_corresp.symbol == nullptr || constant->source_expr != nullptr)
    return constant;
  an_expr_node* name = alloc_node_for_allocated_constant(constant);
  a_constant* copy = alloc_unshared_constant(constant);
  copy->source_expr = name;
  return copy;
}

static void set_address(a_constant* constant, an_address_base_kind base_kind, void* base,
                        a_type* type) {
  clear_constant(constant, con_address);
  constant->type = type;
  constant->value.address.base_kind = base_kind;
  constant->value.address.base.entry = base;
}

void set_routine_address_constant(a_routine* routine, a_constant* constant, bool address_taken) {
  set_address(constant, abk_routine, routine, make_pointer_type(routine->type));
  if (address_taken)
    set_routine_address_taken(routine);
}

void set_variable_address_constant(a_variable* variable, a_constant* constant, bool address_taken) {
  set_address(constant, abk_variable, variable, make_pointer_type(variable->type));
  if (address_taken)
    set_variable_address_taken(variable);
}

void set_constant_address_constant(a_constant* base, a_constant* constant) {
  set_address(constant, abk_constant, base, make_pointer_type(base->type));
}

void set_temporary_address_constant(a_constant* base, a_constant* constant) {
  set_address(constant, abk_temporary, base, make_pointer_type(base->type));
}

void make_typeid_constant(a_type* type, a_constant* constant) {
  set_address(constant, abk_typeid, type, void_star_type());
}

void set_label_address_constant(a_label* label, a_constant* constant) {
  set_address(constant, abk_label, label, void_star_type());
  label->address_taken = true;
}

// ---- Predicates ----

bool is_error_constant(const a_constant* constant) {
  return constant->kind == con_error;
}

static bool is_positive_zero(const a_float_value& value) {
  return value.sign == 0 && value.mantissa[0] == 0 && value.exponent == zero_exponent;
}

static bool is_all_zero_text(const a_string_value& string) {
  for (uint64_t i = 0; i < string.length; ++i) {
    if (string.text[i] != '\0')
      return false;
  }
  return true;
}

bool is_zero_constant(const a_constant* constant) {
  check_stack_limit();
  switch (constant->kind) {
  case con_integer:
    return constant->value.int_value == 0;
  case con_string:
    return is_all_zero_text(constant->value.string);
  case con_float:
  case con_imaginary:
    return is_positive_zero(constant->value.float_value);
  case con_complex:
    return is_positive_zero(constant->value.complex_value->real) &&
           is_positive_zero(constant->value.complex_value->imaginary);
  case con_aggregate:
    for (const a_constant* e = constant->value.aggregate.first; e != nullptr; e = e->next) {
      if (e->kind != con_designator && !is_zero_constant(e))
        return false;
    }
    return true;
  case con_repeat:
    return is_zero_constant(constant->value.repeat.element);
  default:
    // The null pointer to member is not zero in the target's memory.
    return false;
  }
}

static bool is_local_entry(const void* entry) {
  return entry != nullptr && !is_file_scope_entry(entry);
}

static bool address_has_local_ref(const an_address_value& address) {
  switch (address.base_kind) {
  case abk_temporary:
  case abk_constant:
    return is_local_entry(address.base.entry) || has_non_file_scope_ref(address.base.constant);
  default:
    return is_local_entry(address.base.entry);
  }
}

static bool template_param_has_local_ref(const a_template_param_value& value) {
  switch (value.param_kind) {
  case tpck_expression:
    return is_local_entry(value.param_data.expr);
  case tpck_cast:
  case tpck_implicit_cast:
  case tpck_unknown_function:
    return value.param_data.constant != nullptr &&
           has_non_file_scope_ref(value.param_data.constant);
  case tpck_sizeof:
  case tpck_alignof:
  case tpck_uuidof:
  case tpck_typeid:
  case tpck_noexcept:
    return is_local_entry(value.param_expr.expr);
  default:
    return false;
  }
}

bool has_non_file_scope_ref(const a_constant* constant) {
  check_stack_limit();
  switch (constant->kind) {
  case con_address:
    return address_has_local_ref(constant->value.address);
  case con_address_difference:
    return has_non_file_scope_ref(constant->value.address_difference.minuend) ||
           has_non_file_scope_ref(constant->value.address_difference.subtrahend);
  case con_dynamic_init:
    return is_local_entry(constant->value.dynamic_init);
  case con_aggregate:
    for (const a_constant* e = constant->value.aggregate.first; e != nullptr; e = e->next) {
      if (has_non_file_scope_ref(e))
        return true;
    }
    return false;
  case con_repeat:
    return has_non_file_scope_ref(constant->value.repeat.element);
  case con_template_param:
    return template_param_has_local_ref(constant->value.template_param);
  default:
    return false;
  }
}

// ---- Comparison ----

static bool same_string_value(const a_string_value& a, const a_string_value& b, unsigned flags) {
  if ((flags & ccf_for_sharing) && a.sequence_number != b.sequence_number)
    return false;
  return a.length == b.length && (a.length == 0 || memcmp(a.text, b.text, a.length) == 0);
}

static bool same_subobject_path(const a_subobject_path* a, const a_subobject_path* b) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (a->kind != b->kind || a->step.field != b->step.field || a->index != b->index)
      return false;
  }
  return a == b;
}

static bool same_address_value(const an_address_value& a, const an_address_value& b,
                               unsigned flags) {
  if (a.base_kind != b.base_kind || a.offset != b.offset)
    return false;
  if (a.base.entry != b.base.entry) {
    switch (a.base_kind) {
    case abk_constant:
      // Literals that were not merged keep addresses of their own.
      if (!string_literals_shared || !compare_constants(a.base.constant, b.base.constant, flags))
        return false;
      break;
    case abk_uuid:
    case abk_typeid:
      if (!identical_types(a.base.type, b.base.type))
        return false;
      break;
    default:
      return false;
    }
  }
  return same_subobject_path(a.subobject_path, b.subobject_path);
}

static bool same_elements(const a_constant* a, const a_constant* b, unsigned flags) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (!compare_constants(a, b, flags))
      return false;
  }
  return a == b;
}

static bool same_part(const a_constant* a, const a_constant* b, unsigned flags) {
  return a == b || (a != nullptr && b != nullptr && compare_constants(a, b, flags));
}

static bool same_template_arg(const a_template_arg* a, const a_template_arg* b, unsigned flags) {
  if (a->kind != b->kind || a->is_number != b->is_number)
    return false;
  switch (a->kind) {
  case tak_type:
    return same_type_or_null(a->value.type, b->value.type);
  case tak_constant:
    return a->is_number ? a->value.number == b->value.number
                        : same_part(a->value.constant, b->value.constant, flags);
  case tak_template:
    return a->value.template_symbol == b->value.template_symbol;
  case tak_start_of_pack:
    return true;
  }
  return false;
}

static bool same_template_args(const a_template_arg* a, const a_template_arg* b, unsigned flags) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (!same_template_arg(a, b, flags))
      return false;
  }
  return a == b;
}

static bool same_template_param_value(const a_template_param_value& a,
                                      const a_template_param_value& b, unsigned flags) {
  if (a.param_kind != b.param_kind || a.is_type != b.is_type)
    return false;
  switch (a.param_kind) {
  case tpck_expression:
    return compare_expressions(a.param_data.expr, b.param_data.expr, flags);
  case tpck_cast:
  case tpck_implicit_cast:
    return same_part(a.param_data.constant, b.param_data.constant, flags);
  case tpck_unknown_function:
    return same_part(a.param_data.constant, b.param_data.constant, flags) &&
           same_template_args(a.param_expr.template_args, b.param_expr.template_args, flags);
  case tpck_proxy_nontype:
  case tpck_type:
    return same_type_or_null(a.param_data.type, b.param_data.type);
  case tpck_sizeof:
  case tpck_alignof:
  case tpck_uuidof:
  case tpck_typeid:
  case tpck_noexcept:
    return same_type_or_null(a.param_data.type, b.param_data.type) &&
           compare_expressions(a.param_expr.expr, b.param_expr.expr, flags);
  default:
    return a.param_data.entry == b.param_data.entry;
  }
}

static bool same_designator_value(const a_designator_value& a, const a_designator_value& b,
                                  unsigned flags) {
  if (a.is_field != b.is_field || a.is_text_or_index != b.is_text_or_index)
    return false;
  if (!a.is_field)
    return same_part(a.designated.index, b.designated.index, flags);
  if (a.is_text_or_index)
    return strcmp(a.designated.field_name, b.designated.field_name) == 0;
  return a.designated.field == b.designated.field;
}

// Each conversion makes its own record of the path.
static bool same_derivation_path(const a_derivation_step* a, const a_derivation_step* b) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (a->base_class != b->base_class)
      return false;
  }
  return a == b;
}

static bool same_ptr_to_member_value(const a_ptr_to_member_value& a,
                                     const a_ptr_to_member_value& b) {
  return a.is_routine == b.is_routine && a.cast_to_base == b.cast_to_base &&
         a.member.field == b.member.field &&
         same_derivation_path(a.base_class_path, b.base_class_path);
}

static bool same_value(const a_constant* a, const a_constant* b, unsigned flags) {
  switch (a->kind) {
  case con_error:
    return true;
  case con_integer:
    return a->value.int_value == b->value.int_value;
  case con_string:
    return a->string_char_kind == b->string_char_kind &&
           same_string_value(a->value.string, b->value.string, flags);
  case con_float:
  case con_imaginary:
    return fp_same_representation(&a->value.float_value, &b->value.float_value);
  case con_complex:
    return fp_same_representation(&a->value.complex_value->real, &b->value.complex_value->real) &&
           fp_same_representation(&a->value.complex_value->imaginary,
                                  &b->value.complex_value->imaginary);
  case con_address:
    return same_address_value(a->value.address, b->value.address, flags);
  case con_ptr_to_member:
    return same_ptr_to_member_value(a->value.ptr_to_member, b->value.ptr_to_member);
  case con_address_difference:
    return same_part(a->value.address_difference.minuend, b->value.address_difference.minuend,
                     flags) &&
           same_part(a->value.address_difference.subtrahend, b->value.address_difference.subtrahend,
                     flags);
  case con_dynamic_init:
    return a->value.dynamic_init == b->value.dynamic_init;
  case con_aggregate:
    return same_elements(a->value.aggregate.first, b->value.aggregate.first, flags);
  case con_repeat:
    return a->value.repeat.count == b->value.repeat.count &&
           same_part(a->value.repeat.element, b->value.repeat.element, flags);
  case con_template_param:
    return same_template_param_value(a->value.template_param, b->value.template_param, flags);
  case con_designator:
    return same_designator_value(a->value.designator, b->value.designator, flags);
  }
  return false;
}

// A type by another name would show in messages. The array types of string
// literals have no names.
static bool same_type_for_sharing(const a_constant* a, const a_constant* b) {
  return a->type == b->type || (a->kind == con_string && identical_types(a->type, b->type));
}

// What a user of a shared record could tell apart beside the value.
static bool same_in_all_but_value(const a_constant* a, const a_constant* b) {
  return same_type_for_sharing(a, b) && a->orig_type == b->orig_type &&
         a->source_corresp.symbol == b->source_corresp.symbol &&
         a->is_pointer_value == b->is_pointer_value && a->is_null_literal == b->is_null_literal &&
         a->is_character_literal == b->is_character_literal &&
         a->is_boolean_literal == b->is_boolean_literal &&
         a->non_decimal_literal == b->non_decimal_literal &&
         a->not_strict_constant == b->not_strict_constant &&
         a->overflow_or_wrap == b->overflow_or_wrap && a->explicit_cast == b->explicit_cast &&
         a->implicit_cast == b->implicit_cast && a->from_extension == b->from_extension &&
         a->string_char_kind == b->string_char_kind && a->is_function_name == b->is_function_name;
}

bool compare_constants(const a_constant* a, const a_constant* b, unsigned flags) {
  if (a == b)
    return true;
  if (a->kind != b->kind)
    return false;
  check_stack_limit();
  if (flags & ccf_for_sharing) {
    if (!same_in_all_but_value(a, b))
      return false;
  } else if (!(flags & ccf_ignore_types) && !same_type_or_null(a->type, b->type)) {
    return false;
  }
  return same_value(a, b, flags);
}

bool eq_constants(const a_constant* a, const a_constant* b) {
  return compare_constants(a, b, 0);
}

// ---- Hashing ----

static uint64_t hash_bytes(const char* bytes, uint64_t length, uint64_t hash) {
  for (uint64_t i = 0; i < length; ++i)
    hash = static_cast<unsigned char>(bytes[i]) + hash * 33;
  return hash;
}

static uint64_t hash_text(const char* text) {
  return text == nullptr ? 0 : hash_bytes(text, strlen(text), 0);
}

static uint64_t hash_name(const a_source_correspondence& head) {
  return hash_text(head.name);
}

static uint64_t hash_address(const an_address_value& address) {
  uint64_t hash = 0;
  switch (address.base_kind) {
  case abk_routine:
    hash = hash_name(address.base.routine->source_corresp);
    break;
  case abk_variable:
    hash = hash_name(address.base.variable->source_corresp);
    break;
  case abk_label:
    hash = hash_name(address.base.label->source_corresp);
    break;
  case abk_constant:
  case abk_temporary:
    hash = hash_constant(address.base.constant);
    break;
  case abk_uuid:
  case abk_typeid:
    // Identical types may have different names.
    hash = hash_name(skip_typerefs(address.base.type)->source_corresp);
    break;
  }
  return hash + static_cast<uint64_t>(address.offset) + 1000;
}

static uint64_t hash_ptr_to_member(const a_ptr_to_member_value& value) {
  if (value.member.field == nullptr)
    return 250;
  return 250 + hash_name(value.is_routine ? value.member.routine->source_corresp
                                          : value.member.field->source_corresp);
}

static uint64_t hash_of_part(const a_constant* part) {
  return part == nullptr ? 0 : hash_constant(part);
}

static uint64_t hash_elements(const an_aggregate_value& aggregate) {
  uint64_t hash = 0;
  for (const a_constant* e = aggregate.first; e != nullptr; e = e->next)
    hash = hash_constant(e) + hash * 33;
  return hash;
}

static uint64_t hash_template_param(const a_template_param_value& value) {
  switch (value.param_kind) {
  case tpck_cast:
  case tpck_implicit_cast:
  case tpck_unknown_function:
    return hash_of_part(value.param_data.constant) * 33 + value.param_kind;
  default:
    return value.param_kind;
  }
}

static uint64_t hash_designator(const a_designator_value& value) {
  if (!value.is_field)
    return hash_of_part(value.designated.index);
  return value.is_text_or_index ? hash_text(value.designated.field_name)
                                : hash_name(value.designated.field->source_corresp);
}

uint64_t hash_constant(const a_constant* constant) {
  check_stack_limit();
  switch (constant->kind) {
  case con_error:
  case con_dynamic_init:
    break;
  case con_integer:
    return constant->value.int_value;
  case con_string:
    return hash_bytes(constant->value.string.text, constant->value.string.length,
                      constant->value.string.sequence_number + 100);
  case con_float:
  case con_imaginary:
    return fp_hash(&constant->value.float_value) + 500;
  case con_complex:
    return fp_hash(&constant->value.complex_value->real) +
           fp_hash(&constant->value.complex_value->imaginary) + 250;
  case con_address:
    return hash_address(constant->value.address);
  case con_ptr_to_member:
    return hash_ptr_to_member(constant->value.ptr_to_member);
  case con_address_difference:
    return hash_of_part(constant->value.address_difference.minuend) * 33 +
           hash_of_part(constant->value.address_difference.subtrahend);
  case con_aggregate:
    return hash_elements(constant->value.aggregate);
  case con_repeat:
    return hash_of_part(constant->value.repeat.element) + constant->value.repeat.count * 33;
  case con_template_param:
    return hash_template_param(constant->value.template_param);
  case con_designator:
    return hash_designator(constant->value.designator);
  }
  return constant->kind;
}

// ---- Initialisation ----

void il_constants_one_time_init() {
  f_register_trans_unit_variable(&shareable_constants_table, sizeof shareable_constants_table, 0);
}

void il_constants_trans_unit_init() {
  shareable_constants_table = nullptr;
}
