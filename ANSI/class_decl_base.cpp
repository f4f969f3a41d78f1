// Base clauses (C++11 10): the bases that a class names, all classes that it
// thereby has as bases, and what they say of the class.

#include "class_decl_int.h"

#include "attribute.h"
#include "decl_spec_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "lookup.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "symbol_ref.h"
#include "templates.h"
#include "types.h"

#include <algorithm>
#include <unordered_map>

namespace {

// A class with more base subobjects than this keeps only so many of each class
// as tell that it is ambiguous.
constexpr int max_base_records = 4096;
// Of the ways to a virtual base so many are kept.
constexpr int max_derivations = 256;

// What stands in front of the name of a base.
struct a_base_specifier {
  bool is_virtual;
  bool has_access;
  an_access_specifier access;
  an_attribute* attributes;
  a_source_position position;
  a_source_position virtual_position;
};

struct a_base_list {
  a_type* class_type;
  a_base_class* last;
  int count;
  std::unordered_map<const a_type*, int> records_of; // nonvirtual ones of each class
};

} // namespace

a_type* class_of_base(const a_base_class* base) {
  return skip_typerefs(base->type);
}

// ---- The specifiers ----

bool access_of_token(a_token_kind token, an_access_specifier* access) {
  switch (token) {
  case tok_public:
    *access = as_public;
    return true;
  case tok_protected:
    *access = as_protected;
    return true;
  case tok_private:
    *access = as_private;
    return true;
  default:
    return false;
  }
}

an_access_specifier default_access_of(const a_type* class_type) {
  return class_type->kind == tk_class ? as_private : as_public;
}

// Attributes, `virtual` and the access may stand in any order.
static void scan_base_specifier(const a_type* class_type, a_base_specifier* base) {
  *base = {};
  base->access = default_access_of(class_type);
  for (;; get_token()) {
    an_access_specifier access;
    append_attributes(&base->attributes, scan_attributes(al_base_class));
    if (curr_token == tok_virtual) {
      if (base->is_virtual)
        pos_error(ec_dupl_decl_specifier, &pos_curr_token);
      base->is_virtual = true;
      base->virtual_position = pos_curr_token;
    } else if (access_of_token(curr_token, &access)) {
      if (base->has_access)
        pos_error(ec_access_already_specified, &pos_curr_token);
      base->has_access = true;
      base->access = access;
    } else {
      break;
    }
  }
  base->position = pos_curr_token;
}

// ---- The name ----

// Before the standard a nested class was known outside of its class too.
static a_symbol* nested_class_of_name(const a_symbol_locator* locator) {
  if (!allow_anachronisms || locator->is_qualified || locator->is_error_locator)
    return nullptr;
  a_symbol* symbol = locator->header->first_inactive_symbol;
  while (symbol && !(symbol->kind == symk_class_or_struct && symbol->is_class_member &&
                     !symbol->is_injected_class_name))
    symbol = symbol->next_homonym;
  if (symbol)
    pos_warning(ec_nested_class_anachronism, &locator->position);
  return symbol;
}

// At a name; the type that it means, or null after a message. Other names than
// those of types are passed by (C++11 10 p2).
static a_type* scan_base_name() {
  if (curr_token == tok_decltype) {
    a_base_type_code base;
    a_decl_parse_state state;
    clear_decl_parse_state(&state);
    return scan_decltype(&base, &state);
  }
  if (!f_is_generalized_identifier_start() || curr_token == tok_operator) {
    syntax_error(ec_not_a_class_or_struct_name);
    return nullptr;
  }
  a_symbol* symbol = coalesce_and_lookup_generalized_identifier(ilo_classes_only);
  a_symbol_locator locator = locator_for_curr_id;
  get_token();
  if (locator.is_error_locator)
    return nullptr;
  if (!symbol)
    symbol = nested_class_of_name(&locator);
  if (!symbol) {
    pos_error(ec_not_a_class_or_struct_name, &locator.position);
    return nullptr;
  }
  if (locator.is_ambiguous) {
    report_ambiguous_name(&locator);
    return nullptr;
  }
  check_access_to_name(&locator, &locator.position);
  record_symbol_reference(srk_reference | srk_type, symbol, &locator.position, true);
  return symbol->variant.type;
}

static bool is_direct_base(const a_type* class_type, const a_type* base_type) {
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next)
    if (base->is_direct && class_of_base(base) == base_type)
      return true;
  return false;
}

// Whether the type can be a base of the class; reports why not.
static bool check_base_type(const a_type* class_type, a_type* type,
                            const a_source_position* position) {
  if (is_error_type(type))
    return false;
  if (!is_class_struct_union_type(type)) {
    pos_error(ec_not_a_class_or_struct_name, position);
    return false;
  }
  if (is_union_type(type)) {
    pos_error(ec_bad_base_class, position);
    return false;
  }
  if (class_supplement_of(type)->is_final) {
    pos_ty_error(ec_final_base_class, position, type);
    return false;
  }
  if (is_incomplete_type(type))
    f_instantiate_template_class(type);
  if (is_incomplete_type(type)) {
    if (type->variant.class_struct_union.is_being_defined)
      pos_ty_error(ec_unfinished_base_class, position, type);
    else
      pos_error(ec_incomplete_type_not_allowed, position);
    return false;
  }
  if (is_direct_base(class_type, type)) {
    pos_error(ec_dupl_base_class_name, position);
    return false;
  }
  return true;
}

static void check_embedded_inheritance(const a_base_specifier* specifier, const a_base_list* list) {
  if (embedded_cplusplus_mode && (specifier->is_virtual || list->last))
    pos_diagnostic(es_discretionary_error, ec_multiple_inheritance_in_embedded_cplusplus,
                   &specifier->position);
}

// ---- The list of all bases ----

static a_base_class* append_base(a_base_list* list, a_type* type) {
  a_base_class* base = alloc_base_class(type);
  base->derived_class = list->class_type;
  if (list->last)
    list->last->next = base;
  else
    class_supplement_of(list->class_type)->base_classes = base;
  list->last = base;
  ++list->count;
  return base;
}

static void add_derivation(a_base_class* base, a_derivation_step* path, int access) {
  a_base_class_derivation* derivation = alloc_base_class_derivation();
  derivation->path = path;
  derivation->access = static_cast<unsigned>(access) & 3;
  derivation->is_direct = !path->next;
  derivation->is_preferred = !base->derivations;
  a_base_class_derivation** link = &base->derivations;
  int count = 0;
  for (; *link && count < max_derivations; ++count)
    link = &(*link)->next;
  if (!*link)
    *link = derivation;
}

static a_derivation_step* make_step(a_base_class* base, a_derivation_step* next) {
  a_derivation_step* step = alloc_derivation_step();
  step->base_class = base;
  step->next = next;
  return step;
}

// Of a way through two classes: what is private in a base is out of reach.
static int combined_access(int outer, int inner) {
  return inner == as_private ? int{as_private} : std::max(outer, inner);
}

static a_base_class* virtual_record(const a_type* class_type, const a_type* base_type) {
  a_base_class* base = class_supplement_of(class_type)->base_classes;
  while (base && !(base->is_virtual && class_of_base(base) == base_type))
    base = base->next;
  return base;
}

// The record in the class for a base of one of its direct bases; null when
// there are enough of its kind.
static a_base_class* record_for_indirect_base(a_base_list* list, const a_base_class* inner) {
  const a_type* type = class_of_base(inner);
  if (inner->is_virtual) {
    if (a_base_class* shared = virtual_record(list->class_type, type))
      return shared;
  } else if (++list->records_of[type] > 2 && list->count >= max_base_records) {
    return nullptr;
  }
  a_base_class* base = append_base(list, inner->type);
  base->is_virtual = inner->is_virtual;
  base->access = inner->access;
  base->position = list->class_type->source_corresp.position;
  return base;
}

// A class of which there are several subobjects, or one that is virtual and one
// that isn't.
static void mark_ambiguous_bases(a_type* class_type) {
  std::unordered_map<const a_type*, int> counts;
  a_base_class* first = class_supplement_of(class_type)->base_classes;
  for (const a_base_class* base = first; base; base = base->next)
    ++counts[class_of_base(base)];
  for (a_base_class* base = first; base; base = base->next)
    base->is_ambiguous = counts[class_of_base(base)] > 1;
}

// Every way to a base of the direct base becomes one of the class's.
static void add_bases_of_base(a_base_list* list, a_base_class* direct) {
  a_base_correspondence corresponding;
  for (const a_base_class* inner = class_supplement_of(class_of_base(direct))->base_classes; inner;
       inner = inner->next) {
    a_base_class* base = record_for_indirect_base(list, inner);
    if (!base)
      continue;
    corresponding[inner] = base;
    for (const a_base_class_derivation* d = inner->derivations; d; d = d->next)
      add_derivation(base, make_step(direct, d->path), combined_access(direct->access, d->access));
  }
  mark_ambiguous_bases(list->class_type);
  if (class_of_base(direct)->variant.class_struct_union.has_virtual_functions)
    copy_overriding_functions(direct, corresponding);
}

// ---- What the bases say of the class ----

static void take_flags_of_base(a_type* class_type, const a_base_class* base) {
  auto& info = class_type->variant.class_struct_union;
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  const auto& base_info = class_of_base(base)->variant.class_struct_union;
  const a_class_type_supplement* of_base = class_supplement_of(class_of_base(base));
  info.has_virtual_functions |= base_info.has_virtual_functions;
  info.is_polymorphic |= base_info.has_virtual_functions;
  info.any_const_fields |= base_info.any_const_fields;
  info.any_volatile_fields |= base_info.any_volatile_fields;
  info.is_base_check |= base_info.is_base_check;
  supplement->has_virtual_bases |= base->is_virtual || of_base->has_virtual_bases;
  supplement->needs_constructor |=
      of_base->needs_constructor || base->is_virtual || base_info.has_virtual_functions;
  supplement->needs_destructor |= of_base->needs_destructor;
}

static void add_direct_base(a_base_list* list, const a_base_specifier* specifier, a_type* type) {
  a_base_class* base = append_base(list, type);
  base->is_direct = true;
  base->is_virtual = specifier->is_virtual;
  base->access = specifier->access;
  base->position = specifier->position;
  base->attributes = specifier->attributes;
  ++list->records_of[type];
  take_flags_of_base(list->class_type, base);
}

// No base names a pack.
static void check_pack_expansion() {
  a_source_position position = pos_curr_token;
  if (loop_token(tok_ellipsis))
    pos_error(ec_expansion_contains_no_packs, &position);
}

// One item of the list.
static void base_specifier(a_base_list* list) {
  a_base_specifier specifier;
  scan_base_specifier(list->class_type, &specifier);
  check_embedded_inheritance(&specifier, list);
  a_type* type = scan_base_name();
  check_pack_expansion();
  if (!type)
    return;
  type = skip_typerefs(type);
  if (!specifier.has_access)
    pos_st_remark(ec_missing_access_specifier, &specifier.position,
                  specifier.access == as_private ? "private" : "public");
  if (!check_base_type(list->class_type, type, &specifier.position))
    return;
  add_direct_base(list, &specifier, type);
}

void scan_base_clause(a_type* class_type) {
  a_base_list list = {class_type, nullptr, 0, {}};
  if (class_type->kind == tk_union) {
    pos_error(ec_base_class_not_allowed_for_union, &pos_curr_token);
    while (curr_token != tok_lbrace && curr_token != tok_semicolon &&
           curr_token != tok_end_of_source)
      get_token();
    return;
  }
  get_token();
  add_stop_token(tok_lbrace);
  add_stop_token(tok_comma);
  do
    base_specifier(&list);
  while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
  remove_stop_token(tok_lbrace);
  std::vector<a_base_class*> direct_bases;
  for (a_base_class* base = class_supplement_of(class_type)->base_classes; base; base = base->next)
    direct_bases.push_back(base);
  for (a_base_class* base : direct_bases)
    add_derivation(base, make_step(base, nullptr), static_cast<int>(base->access));
  for (a_base_class* base : direct_bases)
    add_bases_of_base(&list, base);
}
