// The initialisations at the start of a constructor (C++11 12.6.2): those that
// its list gives and those that it leaves to the classes; and the destructions
// at the end of a destructor (12.4 p8).

#include "class_decl_int.h"
#include "decl_inits.h"
#include "error.h"
#include "expr_int.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "lookup.h"
#include "mode_words.h"
#include "overload.h"
#include "scope_stk.h"
#include "types.h"

#include <algorithm>
#include <vector>

namespace {

// The initialisers of one constructor.
struct a_ctor_init_list {
  a_routine* constructor;
  a_type* class_type;
  std::vector<a_constructor_init*> written; // in the order of the text
  a_constructor_init* delegation;           // to another constructor, or null
  bool any_error;                           // a name meant nothing
};

// What one initialiser names.
struct a_mem_init_target {
  a_base_class* base; // or null
  a_field* field;     // or null
  a_type* type;       // of the subobject; null after an error
  bool is_delegation;
  a_source_position position;
};

} // namespace

// ---- What is named ----

static a_base_class* base_named(const a_type* class_type, const a_type* named) {
  for (a_base_class* base = class_supplement_of(class_type)->base_classes; base; base = base->next)
    if ((base->is_direct || base->is_virtual) && skip_typerefs(base->type) == named)
      return base;
  return nullptr;
}

static void set_target_type(const a_ctor_init_list* list, a_type* type, a_mem_init_target* target) {
  a_type* named = skip_typerefs(type);
  if (named == list->class_type) {
    target->is_delegation = true;
    target->type = named;
  } else {
    target->base = base_named(list->class_type, named);
    target->type = target->base ? target->base->type : nullptr;
  }
}

static bool is_own_field(const a_ctor_init_list* list, const a_field* field) {
  if (class_of_member(&field->source_corresp) == list->class_type)
    return true;
  return field->is_anonymous_union_member && anonymous_field_around(field, list->class_type);
}

// The name is sought in the class first, so that a parameter hides no member.
static a_symbol* symbol_of_mem_initializer_id(const a_ctor_init_list* list) {
  if (next_token() != tok_colon_colon && !locator_for_curr_id.is_generalized &&
      curr_token == tok_identifier) {
    a_symbol_locator locator = locator_for_curr_id;
    a_symbol* symbol = class_qualified_id_lookup(&locator, list->class_type, ilo_none);
    if (symbol)
      return fundamental_symbol_of(symbol);
  }
  a_symbol* symbol = coalesce_and_lookup_generalized_identifier(ilo_none);
  return symbol ? fundamental_symbol_of(symbol) : nullptr;
}

// At the name of a member or a base, which is read.
static void scan_mem_initializer_id(a_ctor_init_list* list, a_mem_init_target* target) {
  a_symbol* symbol = symbol_of_mem_initializer_id(list);
  const char* name = locator_for_curr_id.header ? locator_for_curr_id.header->identifier : "";
  bool is_error = locator_for_curr_id.is_error_locator;
  if (symbol && locator_for_curr_id.is_constructor_name)
    set_target_type(list, locator_for_curr_id.qualifier.class_type, target);
  else if (symbol && symbol->kind == symk_field && is_own_field(list, symbol->variant.field))
    target->field = symbol->variant.field;
  else if (symbol && (symbol->kind == symk_type || is_tag_symbol_kind(symbol->kind)))
    set_target_type(list, symbol->variant.type, target);
  if (target->field)
    target->type = target->field->type;
  if (!target->type && !is_error)
    pos_stty_error(ec_not_a_field_or_base_class, &target->position, name, list->class_type);
  get_token();
}

// `: (args)` was once the initialiser of the only base.
static void name_only_base(const a_ctor_init_list* list, a_mem_init_target* target) {
  a_base_class* base = class_supplement_of(list->class_type)->base_classes;
  if (!allow_anachronisms || !base || (base->next && base->next->is_direct)) {
    pos_error(ec_missing_base_class_or_member_name, &target->position);
    return;
  }
  pos_warning(ec_base_class_init_anachronism, &target->position);
  target->base = base;
  target->type = base->type;
}

static void scan_target(a_ctor_init_list* list, a_mem_init_target* target) {
  *target = {};
  target->position = pos_curr_token;
  if (curr_token == tok_lparen)
    name_only_base(list, target);
  else if (f_is_generalized_identifier_start())
    scan_mem_initializer_id(list, target);
  else if (curr_token == tok_decltype)
    set_target_type(list, type_name(), target);
  else
    syntax_error(ec_missing_base_class_or_member_name);
  list->any_error |= !target->type;
}

// ---- The arguments ----

// Behind the `(`; the `)` is read.
static an_init_component* scan_arguments() {
  an_init_component* first = nullptr;
  an_init_component** link = &first;
  add_stop_token(tok_rparen);
  while (curr_token != tok_rparen && curr_token != tok_end_of_source) {
    *link = scan_init_component();
    link = &(*link)->next;
    if (!loop_token(tok_comma))
      break;
  }
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
  return first;
}

static a_dynamic_init* make_zero_init(a_type* type) {
  if (is_reference_type(type)) {
    pos_error(ec_default_init_of_reference, &pos_curr_token);
    return make_error_constant_dynamic_init();
  }
  return alloc_dynamic_init(dik_zero);
}

a_dynamic_init* repeat_for_elements(a_type* type, a_dynamic_init* init) {
  if (!is_array_type(type))
    return init;
  a_constant* element = alloc_constant(con_dynamic_init);
  element->type = skip_array_types(type);
  element->value.dynamic_init = init;
  init->is_array_element_init = true;
  a_constant* repeat = alloc_constant(con_repeat);
  repeat->type = element->type;
  repeat->value.repeat.element = element;
  repeat->value.repeat.count =
      size_of_type(type) / std::max<uint64_t>(1, size_of_type(element->type));
  a_constant* array = alloc_constant(con_aggregate);
  array->type = type;
  array->value.aggregate.first = array->value.aggregate.last = repeat;
  array->value.aggregate.has_dynamic_init = true;
  a_dynamic_init* whole = alloc_dynamic_init(dik_nonconstant_aggregate);
  whole->variant.constant = array;
  whole->contains_nonconstant = true;
  return whole;
}

static a_dynamic_init* init_class_by_constructor(a_type* type, an_init_component* arguments,
                                                 const a_source_position* position) {
  an_expr_node* nodes;
  a_type* class_type = skip_typerefs(skip_array_types(type));
  a_routine* constructor = select_constructor(class_type, arguments, false, position, &nodes);
  if (!constructor)
    return make_error_constant_dynamic_init();
  return repeat_for_elements(type, make_constructor_init(class_type, constructor, nodes));
}

static a_dynamic_init* parenthesized_init(a_type* type, an_init_component** arguments,
                                          const a_source_position* position) {
  if (is_array_type(type) && *arguments) {
    pos_error(ec_array_member_initialization, position);
    return make_error_constant_dynamic_init();
  }
  if (is_class_struct_union_type(skip_array_types(type))) {
    a_dynamic_init* init = init_class_by_constructor(type, *arguments, position);
    if (init->kind == dik_constructor && !*arguments)
      init->variant.constructor.value_init = true;
    return init;
  }
  return *arguments ? initialize_subobject(type, arguments) : make_zero_init(type);
}

// By the default constructor; null when that does nothing.
static a_dynamic_init* implicit_class_init(a_type* type, const a_source_position* position) {
  a_type* class_type = skip_typerefs(skip_array_types(type));
  a_routine* constructor = special_member_of_class(class_type, smk_default_constructor, 0);
  if (!constructor || !constructor->is_trivial || constructor->is_deleted)
    return init_class_by_constructor(type, nullptr, position);
  check_use_of_routine(constructor, class_type, position);
  return nullptr;
}

a_dynamic_init* default_constructor_init(a_type* type, const a_source_position* position) {
  a_full_expression full;
  an_operand dummy;
  begin_full_expression(ek_normal, &full);
  a_dynamic_init* init = implicit_class_init(type, position);
  if (init)
    wrap_up_dynamic_init_full_expression(init);
  make_error_operand(&dummy);
  end_full_expression(&full, &dummy);
  return init;
}

static bool is_class_with_constructors(const a_type* type) {
  return is_class_struct_union_type(type) && !class_supplement_of(type)->is_aggregate;
}

static a_dynamic_init* braced_init(a_type* type, an_init_component** list,
                                   const a_source_position* position) {
  a_dynamic_init* init =
      is_class_with_constructors(type)
          ? init_class_by_constructor(type, (*list)->variant.braced.first, position)
          : initialize_subobject(type, list);
  init->is_list_init = true;
  return init;
}

// At the `(` or `{` behind the name. Null for a subobject that isn't known.
static a_dynamic_init* scan_mem_initializer_value(const a_mem_init_target* target) {
  a_full_expression full;
  an_operand dummy;
  a_dynamic_init* init = nullptr;
  bool is_braced = curr_token == tok_lbrace;
  begin_full_expression(ek_normal, &full);
  if (!is_braced)
    get_token();
  an_init_component* arguments = is_braced ? scan_init_component() : scan_arguments();
  a_type* type = target->type;
  if (type && !is_error_type(type)) {
    init = is_braced ? braced_init(type, &arguments, &target->position)
                     : parenthesized_init(type, &arguments, &target->position);
    wrap_up_dynamic_init_full_expression(init);
  }
  free_init_component_list(arguments);
  make_error_operand(&dummy);
  end_full_expression(&full, &dummy);
  return init;
}

// ---- The list ----

static a_constructor_init* make_ctor_init(a_base_class* base, a_field* field) {
  a_constructor_init* init = alloc_ctor_init();
  init->kind = field ? iek_field : iek_base_class;
  if (field) {
    init->variant.field = field;
  } else {
    init->variant.base_class = base;
    init->is_virtual_base = base && base->is_virtual;
  }
  return init;
}

static const a_field* variant_union_of(const a_field* field, const a_type* class_type) {
  return field->is_anonymous_union_member ? anonymous_field_around(field, class_type) : nullptr;
}

// A second initialiser of a subobject, or of another member of a union.
static bool is_initialized_already(const a_ctor_init_list* list, const a_mem_init_target* target) {
  bool in_union = list->class_type->kind == tk_union;
  for (const a_constructor_init* init : list->written) {
    if (init->kind == iek_base_class) {
      if (target->base != init->variant.base_class)
        continue;
      pos_ty_error(ec_base_class_already_initialized, &target->position, target->type);
      return true;
    }
    if (!target->field)
      continue;
    if (target->field == init->variant.field) {
      pos_sy_error(ec_member_already_initialized, &target->position,
                   target->field->source_corresp.symbol);
      return true;
    }
    const a_field* around = variant_union_of(target->field, list->class_type);
    bool is_variant = around && around == variant_union_of(init->variant.field, list->class_type) &&
                      is_union_type(around->type);
    if (in_union || is_variant) {
      pos_error(ec_union_already_initialized, &target->position);
      return true;
    }
  }
  return false;
}

// The constructor to which another one, whose initialisers are read, delegates.
static const a_routine* delegation_target(const a_routine* constructor) {
  const a_scope* scope = scope_for_routine_or_null(constructor);
  const a_constructor_init* init = scope ? scope->ctor_inits : nullptr;
  return init && init->is_delegating && init->initializer->kind == dik_constructor
             ? init->initializer->variant.constructor.routine
             : nullptr;
}

// Reported at the constructor that closes the circle, which then stays open (C++11
// 12.6.2 p6).
static void check_for_delegation_loop(const a_routine* constructor,
                                      a_constructor_init* delegation) {
  const a_routine* last = delegation->initializer->variant.constructor.routine;
  while (last && last != constructor)
    last = delegation_target(last);
  if (!last)
    return;
  pos_error(ec_delegation_loop, &constructor->source_corresp.position);
  delegation->initializer = make_error_constant_dynamic_init();
}

static void add_delegation(a_ctor_init_list* list, const a_mem_init_target* target,
                           a_dynamic_init* value) {
  if (!delegating_constructors_enabled)
    pos_warning(ec_delegating_constructor_is_cpp11, &target->position);
  list->delegation = alloc_ctor_init();
  list->delegation->kind = iek_base_class;
  list->delegation->is_delegating = true;
  list->delegation->initializer = value;
  list->delegation->position = target->position;
  if (value->kind == dik_constructor)
    check_for_delegation_loop(list->constructor, list->delegation);
}

static void scan_mem_initializer(a_ctor_init_list* list) {
  a_mem_init_target target;
  scan_target(list, &target);
  if (curr_token != tok_lparen && (curr_token != tok_lbrace || !list_init_enabled)) {
    syntax_error(ec_exp_lparen);
    return;
  }
  a_dynamic_init* value = scan_mem_initializer_value(&target);
  if (target.field && curr_token == tok_ellipsis)
    pos_error(ec_pack_expansion_for_field_mem_init, &pos_curr_token);
  loop_token(tok_ellipsis);
  if (!value || is_initialized_already(list, &target))
    return;
  if (target.is_delegation) {
    add_delegation(list, &target, value);
    return;
  }
  a_constructor_init* init = make_ctor_init(target.base, target.field);
  init->initializer = value;
  init->position = target.position;
  init->end_position = curr_construct_end_position;
  list->written.push_back(init);
}

// At the `:`; the `{` is left.
static void scan_list(a_ctor_init_list* list) {
  a_source_position start = pos_curr_token;
  add_stop_token(tok_lbrace);
  add_stop_token(tok_comma);
  do {
    get_token();
    scan_mem_initializer(list);
  } while (curr_token == tok_comma);
  remove_stop_token(tok_comma);
  remove_stop_token(tok_lbrace);
  if (list->delegation && !list->written.empty())
    pos_error(ec_delegation_init_and_mem_init, &start);
}

// ---- The order (C++11 12.6.2 p10) ----

static const a_symbol* symbol_of_init(const a_constructor_init* init) {
  return init->kind == iek_field
             ? init->variant.field->source_corresp.symbol
             : skip_typerefs(init->variant.base_class->type)->source_corresp.symbol;
}

// The place of a subobject among those that the constructor initialises.
static unsigned rank_of_init(const a_type* class_type, const a_constructor_init* init) {
  unsigned rank = 0;
  for (bool is_virtual : {true, false})
    for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
         base = base->next, ++rank)
      if (init->kind == iek_base_class && base == init->variant.base_class &&
          static_cast<bool>(base->is_virtual) == is_virtual)
        return rank;
  const a_field* wanted = init->variant.field;
  if (const a_field* around = variant_union_of(wanted, class_type))
    wanted = around;
  for (const a_field* f = class_type->variant.class_struct_union.fields; f != wanted && f;
       f = f->next)
    ++rank;
  return rank;
}

static void check_order(const a_ctor_init_list* list) {
  for (size_t i = 1; i < list->written.size(); ++i) {
    const a_constructor_init* before = list->written[i - 1];
    const a_constructor_init* after = list->written[i];
    if (rank_of_init(list->class_type, after) >= rank_of_init(list->class_type, before))
      continue;
    pos_sy2_warning(ec_out_of_order_ctor_init, &after->position, symbol_of_init(after),
                    symbol_of_init(before));
  }
}

// ---- Constexpr constructors (C++11 7.1.5 p4) ----

// The constructor of a base or member that one of the class calls.
static const a_routine* constructor_called(const a_dynamic_init* init) {
  if (init->kind == dik_constructor)
    return init->variant.constructor.routine;
  return nullptr;
}

// A trivial one in the list stands for zero.
static void check_constexpr_init(const a_ctor_init_list* list, const a_constructor_init* init) {
  const a_routine* called = init->initializer ? constructor_called(init->initializer) : nullptr;
  if (!list->constructor->is_constexpr || !called || called->is_constexpr || called->is_trivial)
    return;
  pos_sy_error(ec_nonconstexpr_mem_init_ctor_for_constexpr_ctor, &init->position,
               called->source_corresp.symbol);
}

// The default constructor of a subobject does nothing, which is too little where
// it leaves objects without a value.
static void check_uninitialized_subobject(const a_ctor_init_list* list, const a_base_class* base,
                                          a_type* type) {
  const a_routine* constructor =
      special_member_of_class(skip_array_types(type), smk_default_constructor, 0);
  if (!list->constructor->is_constexpr || !constructor || !constructor->is_trivial ||
      constructor->is_constexpr || constructor->is_deleted)
    return;
  const a_source_position* position = &list->constructor->source_corresp.position;
  if (base)
    pos_ty_error(ec_constexpr_ctor_does_not_initialize_base, position, type);
  else
    pos_ty_error(ec_missing_initializer_on_fields_with_constexpr_ctor, position, list->class_type);
}

static void check_constexpr_constructor(const a_ctor_init_list* list) {
  if (list->constructor->is_constexpr && class_supplement_of(list->class_type)->has_virtual_bases)
    pos_error(ec_constexpr_ctor_with_virtual_base, &list->constructor->source_corresp.position);
}

// ---- What the list leaves out ----

static a_constructor_init* find_written(const a_ctor_init_list* list, const a_base_class* base,
                                        const a_field* field) {
  for (a_constructor_init* init : list->written)
    if (field ? init->kind == iek_field && init->variant.field == field
              : init->kind == iek_base_class && init->variant.base_class == base)
      return init;
  return nullptr;
}

static a_dynamic_init* implicit_field_init(const a_ctor_init_list* list, a_field* field) {
  const a_source_position* position = &list->constructor->source_corresp.position;
  a_type* element = skip_array_types(field->type);
  if (field->has_default_init) {
    scan_field_initializer_if_needed(field, list->class_type);
    return field->default_init;
  }
  if (is_error_type(element) || has_no_elements(field->type) ||
      (field->source_corresp.is_unnamed && !is_anonymous_member(field)))
    return nullptr;
  if (is_class_struct_union_type(element)) {
    if (is_anonymous_member(field))
      return nullptr;
    a_dynamic_init* init = implicit_class_init(field->type, position);
    if (!init)
      check_uninitialized_subobject(list, nullptr, field->type);
    return init;
  }
  if (list->class_type->kind == tk_union)
    return nullptr;
  if (is_reference_type(element))
    pos_error(ec_default_init_of_reference, position);
  else if (is_const_qualified_type(element))
    pos_sy_error(ec_has_no_initializer_on_const, position, field->source_corresp.symbol);
  else if (list->constructor->is_constexpr)
    pos_ty_error(ec_missing_initializer_on_fields_with_constexpr_ctor, position, list->class_type);
  return nullptr;
}

// An implicit initialisation; null for none.
static a_constructor_init* make_implicit_init(const a_ctor_init_list* list, a_base_class* base,
                                              a_field* field) {
  a_full_expression full;
  an_operand dummy;
  const a_source_position* position = &list->constructor->source_corresp.position;
  begin_full_expression(ek_normal, &full);
  a_dynamic_init* value =
      field ? implicit_field_init(list, field) : implicit_class_init(base->type, position);
  if (!value && base)
    check_uninitialized_subobject(list, base, base->type);
  if (value && !(field && field->has_default_init))
    wrap_up_dynamic_init_full_expression(value);
  make_error_operand(&dummy);
  end_full_expression(&full, &dummy);
  if (!value)
    return nullptr;
  a_constructor_init* init = make_ctor_init(base, field);
  init->is_implicit = true;
  init->initializer = value;
  init->position = *position;
  return init;
}

static void append_init(const a_ctor_init_list* list, a_constructor_init* init,
                        a_constructor_init*** link) {
  if (!init)
    return;
  check_constexpr_init(list, init);
  **link = init;
  *link = &init->next;
}

// Direct bases and virtual ones. The objects that an abstract class is part of
// have virtual bases of their own (C++14 12.6.2 p8).
static bool is_built_by_class(const a_type* class_type, const a_base_class* base) {
  return base->is_virtual ? !is_abstract_class_type(class_type) : base->is_direct;
}

// A constructor may have to take back what it has built (C++11 12.6.2 p10).
static void check_destructor_of_subobject(const a_ctor_init_list* list, a_type* type) {
  check_use_of_destructor(type, &list->constructor->source_corresp.position);
}

static void append_bases(a_ctor_init_list* list, bool is_virtual, a_constructor_init*** link) {
  for (a_base_class* base = class_supplement_of(list->class_type)->base_classes; base;
       base = base->next) {
    a_constructor_init* init = find_written(list, base, nullptr);
    if (static_cast<bool>(base->is_virtual) != is_virtual || is_error_type(base->type) ||
        !(init || is_built_by_class(list->class_type, base)))
      continue;
    check_destructor_of_subobject(list, base->type);
    append_init(list, init ? init : make_implicit_init(list, base, nullptr), link);
  }
}

// The initialisers of members of an anonymous struct or union stand at its place.
static void append_variant_members(const a_ctor_init_list* list, const a_field* anonymous,
                                   a_constructor_init*** link) {
  for (a_constructor_init* init : list->written)
    if (init->kind == iek_field &&
        variant_union_of(init->variant.field, list->class_type) == anonymous)
      append_init(list, init, link);
}

static void append_fields(a_ctor_init_list* list, a_constructor_init*** link) {
  bool any_in_union = list->class_type->kind == tk_union && !list->written.empty();
  for (a_field* field = list->class_type->variant.class_struct_union.fields; field;
       field = field->next) {
    a_constructor_init* init = find_written(list, nullptr, field);
    if (is_anonymous_member(field))
      append_variant_members(list, field, link);
    else if (list->class_type->kind != tk_union)
      check_destructor_of_subobject(list, field->type);
    if (!init && !any_in_union && !list->any_error)
      init = make_implicit_init(list, nullptr, field);
    append_init(list, init, link);
  }
}

static void build_list_of_scope(a_ctor_init_list* list, a_scope* scope) {
  a_constructor_init** link = &scope->ctor_inits;
  if (list->delegation) {
    append_init(list, list->delegation, &link);
    return;
  }
  check_order(list);
  append_bases(list, true, &link);
  append_bases(list, false, &link);
  append_fields(list, &link);
}

void ctor_initializer(a_routine* constructor, a_scope* scope) {
  a_ctor_init_list list = {};
  list.constructor = constructor;
  list.class_type = class_of_member(&constructor->source_corresp);
  if (curr_token == tok_colon)
    scan_list(&list);
  if (!list.class_type || is_error_type(constructor->type))
    return;
  check_constexpr_constructor(&list);
  build_list_of_scope(&list, scope);
}

// ---- Destructors ----

static void append_destruction(a_base_class* base, a_field* field, const a_routine* destructor,
                               a_constructor_init*** link) {
  a_type* element = skip_array_types(field ? field->type : base->type);
  // What destroys a member of a union is left to the program.
  if (field && is_anonymous_member(field) && is_union_type(field->type))
    return;
  if (!is_class_struct_union_type(element))
    return;
  a_routine* routine = special_member_of_class(element, smk_destructor, tq_none);
  if (!routine || routine->is_trivial)
    return;
  check_use_of_routine(routine, skip_typerefs(element), &destructor->source_corresp.position);
  a_constructor_init* init = make_ctor_init(base, field);
  init->is_implicit = true;
  init->position = destructor->source_corresp.position;
  init->initializer = alloc_dynamic_init(dik_none);
  init->initializer->destructor = routine;
  **link = init;
  *link = &init->next;
}

void dtor_initializer(a_routine* destructor, a_scope* scope) {
  a_type* class_type = class_of_member(&destructor->source_corresp);
  a_constructor_init** link = &scope->ctor_inits;
  a_full_expression full;
  an_operand dummy;
  if (!class_type || class_type->kind == tk_union)
    return;
  begin_full_expression(ek_normal, &full);
  for (a_base_class* base = class_supplement_of(class_type)->base_classes; base; base = base->next)
    if (is_built_by_class(class_type, base))
      append_destruction(base, nullptr, destructor, &link);
  for (a_field* field = class_type->variant.class_struct_union.fields; field; field = field->next)
    append_destruction(nullptr, field, destructor, &link);
  make_error_operand(&dummy);
  end_full_expression(&full, &dummy);
}
