// Whether attributes may stand where they do, and their attachment.

#include <cstring>

#include "attribute_int.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_statements.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "types.h"

// ---- Kinds of entities ----

a_boolean attaching_to_redeclaration;

static bool is_declared_type_location(const an_attribute* attribute) {
  return attribute->location == al_specifiers || attribute->location == al_declarator ||
         attribute->location == al_name;
}

static bool type_matches_letter(char letter, const an_attribute* attribute, const a_type* type) {
  switch (letter) {
  case 'c':
    return is_class_struct_union_kind(type->kind);
  case 'e':
    return type->kind == tk_integer && type->variant.integer.is_enum;
  case 't':
  case 'T':
    return is_declared_type_location(attribute);
  default:
    return false;
  }
}

static bool is_parameter_entity(const void* entity, an_il_entry_kind kind) {
  return kind == iek_param_type ||
         (kind == iek_variable && static_cast<const a_variable*>(entity)->is_parameter);
}

static bool entity_matches_letter(char letter, const an_attribute* attribute, const void* entity,
                                  an_il_entry_kind kind) {
  if (letter == 'p' || letter == 'v')
    return (letter == 'p') == is_parameter_entity(entity, kind) &&
           (kind == iek_variable || kind == iek_param_type);
  switch (kind) {
  case iek_routine:
    return letter == 'r';
  case iek_field:
    return letter == 'd';
  case iek_type:
    return type_matches_letter(letter, attribute, static_cast<const a_type*>(entity));
  case iek_constant:
    return letter == 'E';
  case iek_label:
    return letter == 'l';
  case iek_namespace:
    return letter == 'n';
  case iek_statement:
    return letter == 's';
  case iek_using_decl:
    return letter == 'u';
  default:
    return false;
  }
}

// ---- Conditions ----

namespace {

// A condition that an entity must meet or must not, with the number of the
// message for each violation.
struct a_target_condition {
  char letter;
  an_error_code disallowed;
  an_error_code required;
  bool (*holds)(const void* entity, an_il_entry_kind kind);
};

} // namespace

static bool is_automatic(const void* entity, an_il_entry_kind kind) {
  return kind == iek_variable && static_cast<const a_variable*>(entity)->storage_kind == sc_auto;
}

static bool is_handler_parameter(const void* entity, an_il_entry_kind kind) {
  return kind == iek_variable && static_cast<const a_variable*>(entity)->is_handler_parameter;
}

static bool is_local(const void* entity, an_il_entry_kind kind) {
  return kind == iek_variable &&
         static_cast<const a_variable*>(entity)->source_corresp.local_to_function;
}

static bool is_register(const void* entity, an_il_entry_kind kind) {
  return kind == iek_variable &&
         static_cast<const a_variable*>(entity)->storage_kind == sc_register;
}

static bool has_external_linkage(const void* entity, an_il_entry_kind kind) {
  if (kind == iek_variable)
    return static_cast<const a_variable*>(entity)->source_corresp.linkage == idl_external;
  return kind == iek_routine &&
         static_cast<const a_routine*>(entity)->source_corresp.linkage == idl_external;
}

static bool is_inline(const void* entity, an_il_entry_kind kind) {
  return kind == iek_routine && static_cast<const a_routine*>(entity)->is_inline;
}

static bool is_member(const void* entity, an_il_entry_kind kind) {
  return kind == iek_routine &&
         static_cast<const a_routine*>(entity)->source_corresp.is_class_member;
}

static bool is_pure_virtual(const void* entity, an_il_entry_kind kind) {
  return kind == iek_routine && static_cast<const a_routine*>(entity)->is_pure;
}

static bool is_virtual(const void* entity, an_il_entry_kind kind) {
  return kind == iek_routine && static_cast<const a_routine*>(entity)->is_virtual;
}

static bool is_bit_field(const void* entity, an_il_entry_kind kind) {
  return kind == iek_field && static_cast<const a_field*>(entity)->is_bit_field;
}

static bool is_definition(const void* entity, an_il_entry_kind kind) {
  if (kind != iek_type)
    return false;
  const a_type* type = static_cast<const a_type*>(entity);
  return is_class_struct_union_kind(type->kind) &&
         (type->variant.class_struct_union.is_being_defined ||
          type->variant.class_struct_union.is_complete_definition);
}

static const a_target_condition target_conditions[] = {
    {'a', ec_attr_disallows_automatic_storage, ec_attr_requires_automatic_storage, is_automatic},
    {'h', ec_attr_disallows_handler_param, ec_attr_requires_handler_param, is_handler_parameter},
    {'l', ec_attribute_does_not_apply_to_local_variable, ec_attr_requires_local_variable, is_local},
    {'r', ec_attr_disallows_register_storage, ec_attr_requires_register_storage, is_register},
    {'x', ec_attr_disallows_external_linkage, ec_attribute_requires_external_linkage,
     has_external_linkage},
    {'i', ec_attr_disallows_inline, ec_attr_requires_inline, is_inline},
    {'m', ec_attr_disallows_member_function, ec_attr_requires_member_function, is_member},
    {'p', ec_attr_disallows_pure_virtual_function, ec_attr_requires_pure_virtual_function,
     is_pure_virtual},
    {'v', ec_attr_disallows_virtual_function, ec_attr_requires_virtual_function, is_virtual},
    {'b', ec_attr_disallows_bit_field, ec_attr_requires_bit_field, is_bit_field},
    {'d', ec_attr_disallows_definition, ec_attr_requires_definition, is_definition},
};

// The number of the message for the condition `sign` `letter`; 0 when it holds.
static an_error_code violation_of(char sign, char letter, const void* entity,
                                  an_il_entry_kind kind) {
  for (const a_target_condition& condition : target_conditions) {
    if (condition.letter != letter)
      continue;
    bool holds = condition.holds(entity, kind);
    if (holds == (sign == '+'))
      return 0;
    return holds ? condition.disallowed : condition.required;
  }
  return 0;
}

// `text` stands behind the letter of the alternative.
static bool check_conditions(const char* text, an_attribute* attribute, const void* entity,
                             an_il_entry_kind kind) {
  size_t length = strcspn(text, "|");
  bool is_error = length > 0 && text[length - 1] == '!';
  for (size_t i = 1; i + 1 < length; i += 2) {
    an_error_code code = violation_of(text[i], text[i + 1], entity, kind);
    if (code != 0) {
      drop_attribute(is_error ? es_error : es_warning, code, attribute);
      return false;
    }
  }
  return true;
}

// ---- The test ----

static void report_no_match(an_attribute* attribute, an_il_entry_kind kind) {
  bool is_mild =
      (attribute->flags & atf_gnu_namespace) ||
      (kind == iek_type && attribute->form == af_declspec && attribute->location == al_specifiers);
  report_bad_attribute_target(is_mild ? es_warning : es_error, attribute);
}

bool check_attribute_target(an_attribute* attribute, void* entity, an_il_entry_kind kind) {
  const char* text = attribute_kind_rows[attribute->kind].applies_to;
  if (*text == '\0')
    return true;
  for (; *text != '\0'; text += *text == '|') {
    bool is_ignored = *text == 'W';
    if (is_ignored)
      ++text;
    if (entity_matches_letter(*text, attribute, entity, kind)) {
      if (!is_ignored)
        return check_conditions(text + 1, attribute, entity, kind);
      report_bad_attribute_target(es_warning, attribute);
      return false;
    }
    text += strcspn(text, "|");
  }
  report_no_match(attribute, kind);
  return false;
}

// ---- Attachment ----

void* attach_attributes(an_attribute* list, void* entity, an_il_entry_kind kind) {
  an_attribute** link = get_attribute_link(entity, kind);
  if (list == nullptr)
    return entity;
  if (link != nullptr)
    append_attributes(link, list);
  for (an_attribute* attribute = list; attribute != nullptr; attribute = attribute->next) {
    if ((attribute->flags & atf_held) && !is_declared_type_location(attribute))
      continue;
    if (attribute->kind <= attrk_using_prefix || !check_attribute_target(attribute, entity, kind))
      continue;
    an_attribute_action* action = attribute_kind_rows[attribute->kind].action;
    if (action != nullptr)
      entity = action(attribute, entity, kind);
  }
  return entity;
}

a_type* attach_type_attributes(a_type* type, an_attribute* list) {
  if (list == nullptr || is_error_type(type))
    return type;
  return static_cast<a_type*>(attach_attributes(list, type, iek_type));
}

a_type* make_typeref_with_attributes(a_type* type, an_attribute* list) {
  a_type* typeref = make_typeref_with_qualifiers(type, tq_attributes);
  typeref->source_corresp.is_unnamed = true;
  return attach_type_attributes(typeref, list);
}

static bool any_attribute_in_force(const an_attribute* list) {
  for (; list != nullptr; list = list->next)
    if (list->kind > attrk_using_prefix)
      return true;
  return false;
}

a_type* transform_type_with_gnu_attributes(a_type* type, an_attribute* list) {
  if (!any_attribute_in_force(list) || is_error_type(type))
    return type;
  return make_typeref_with_attributes(type, list);
}

// ---- Declarations ----

static an_attribute* attributes_of_declaration(a_decl_parse_state* state) {
  an_attribute* list = copy_of_attributes_list(state->attributes_before);
  append_attributes(&list, state->attributes_after);
  state->attributes_after = nullptr;
  return list;
}

// The attributes of a definition stand with its specifiers.
static void check_attributes_of_definition(const a_decl_parse_state* state) {
  const an_attribute* list = state->attributes_after;
  while (list != nullptr && !(list->form == af_gnu && list->location == al_declarator))
    list = list->next;
  if (list != nullptr)
    pos_error(ec_attributes_in_rout_defn, &list->position);
}

void attach_declarator_attributes(a_decl_parse_state* state, void* entity, an_il_entry_kind kind) {
  if (state->attributes_before != nullptr || state->attributes_after != nullptr)
    attach_attributes(attributes_of_declaration(state), entity, kind);
}

static bool precedes(const a_source_position* a, const a_source_position* b) {
  return a->seq != b->seq ? a->seq < b->seq : a->column < b->column;
}

void attach_decl_attributes(a_decl_parse_state* state, bool is_definition) {
  a_symbol* symbol = state->symbol;
  if (symbol == nullptr ||
      (state->attributes_before == nullptr && state->attributes_after == nullptr))
    return;
  an_il_entry_kind kind;
  void* entity = il_entry_for_symbol(symbol, &kind);
  if (is_definition && kind == iek_routine)
    check_attributes_of_definition(state);
  if (entity == nullptr)
    return;
  attaching_to_redeclaration = precedes(&symbol->position, &state->start_position);
  attach_declarator_attributes(state, entity, kind);
  attaching_to_redeclaration = 0;
}

// Splits the __declspec attributes off, which mean the type.
static an_attribute* take_declspec_attributes(an_attribute** list) {
  an_attribute* taken = nullptr;
  an_attribute** end = &taken;
  while (an_attribute* attribute = *list) {
    if (attribute->form != af_declspec) {
      list = &attribute->next;
      continue;
    }
    *list = attribute->next;
    attribute->next = nullptr;
    *end = attribute;
    end = &attribute->next;
  }
  return taken;
}

void attach_lone_type_attributes(a_decl_parse_state* state) {
  an_attribute* declspecs = take_declspec_attributes(&state->attributes_before);
  if (state->decl_flags.defines_tag || state->decl_flags.declares_tag)
    attach_type_attributes(skip_typerefs(state->type_specifier_type), declspecs);
  for (const an_attribute* attribute = state->attributes_before; attribute != nullptr;
       attribute = attribute->next) {
    if (attribute->kind <= attrk_using_prefix)
      continue;
    pos_warning(ec_unattached_attribute, &attribute->position);
    return;
  }
}
