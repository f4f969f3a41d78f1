// Shared by the files of attributes.

#ifndef ATTRIBUTE_INT_H
#define ATTRIBUTE_INT_H

#include "attribute.h"

inline constexpr int num_attribute_kinds = 82;

struct an_attribute_row {
  const char* name;
  const char* arguments;
  const char* forms;
  an_attribute_kind kind;
};

// What an attribute does to the entity that it is attached to; the result
// takes the entity's place.
typedef void* an_attribute_action(an_attribute* attribute, void* entity, an_il_entry_kind kind);

struct an_attribute_kind_row {
  const char* applies_to;
  an_attribute_action* action; // null: the attribute is kept only
};

extern const an_attribute_kind_row attribute_kind_rows[num_attribute_kinds];

// The first row of the name that is enabled for the form; null for none. A null
// namespace is none.
const an_attribute_row* find_attribute_row(const char* name, size_t length, uint8_t form,
                                           const char* namespace_name);

// The name without surrounding double underscores; *length, its length, is
// updated.
const char* bare_attribute_name(const char* name, size_t* length);

// Whether the attribute may stand with the entity; reports and drops it if not.
bool check_attribute_target(an_attribute* attribute, void* entity, an_il_entry_kind kind);

// The name as messages show it, with its namespace.
const char* attribute_display_name(const an_attribute* attribute);
// A message whose only argument is the name.
void attribute_diagnostic(an_error_severity severity, an_error_code code,
                          const an_attribute* attribute);
// The same, after which the attribute is dropped.
void drop_attribute(an_error_severity severity, an_error_code code, an_attribute* attribute);
void bad_attribute_argument(an_attribute* attribute);

// The value of the argument at `index`, from 0, when it is an integer; false for
// none.
bool integer_argument(const an_attribute* attribute, int index, int64_t* value);
const char* text_argument(const an_attribute* attribute, int index);

void register_attribute_variables();
void register_alias_variables();
void reset_attribute_reading();
void reset_alias_fixups();

a_source_correspondence* source_corresp_of_entity(void* entity, an_il_entry_kind kind);

// No report that nothing uses the entity will be made.
void suppress_report_of_unused(void* entity, an_il_entry_kind kind);

// The actions, named in attribute_kinds.def.
inline constexpr an_attribute_action* no_action = nullptr;
an_attribute_action abi_tag_action;
an_attribute_action alias_action;
an_attribute_action align_action;
an_attribute_action always_inline_action;
an_attribute_action base_check_action;
an_attribute_action calling_convention_action;
an_attribute_action calls_action;
an_attribute_action const_action;
an_attribute_action constructor_action;
an_attribute_action cregister_action;
an_attribute_action deprecated_action;
an_attribute_action dll_action;
an_attribute_action fallthrough_action;
an_attribute_action final_action;
an_attribute_action format_action;
an_attribute_action format_arg_action;
an_attribute_action gnu_inline_action;
an_attribute_action hiding_action;
an_attribute_action ifunc_action;
an_attribute_action init_priority_action;
an_attribute_action location_action;
an_attribute_action malloc_action;
an_attribute_action mode_action;
an_attribute_action naked_action;
an_attribute_action near_far_action;
an_attribute_action nodiscard_action;
an_attribute_action noinit_persistent_action;
an_attribute_action noinline_action;
an_attribute_action noreturn_action;
an_attribute_action override_action;
an_attribute_action packed_action;
an_attribute_action pure_action;
an_attribute_action retain_action;
an_attribute_action section_action;
an_attribute_action target_action;
an_attribute_action transparent_union_action;
an_attribute_action unpacked_action;
an_attribute_action unroll_action;
an_attribute_action unused_action;
an_attribute_action used_action;
an_attribute_action warn_unused_result_action;
an_attribute_action weak_action;

#endif
