// Attributes: [[...]], __attribute__((...)), __declspec(...) and alignas. They
// are read into lists of an_attribute without being interpreted, and attached
// when the entity that they belong to is known.

#ifndef ATTRIBUTE_H
#define ATTRIBUTE_H

#include "decl_spec.h"
#include "il_entities.h"
#include "il_types.h"

enum an_attribute_form : uint8_t {
  af_std = 1,      // [[...]]
  af_gnu = 2,      // __attribute__((...))
  af_declspec = 3, // __declspec(...)
  af_alignas = 4   // alignas(...), _Alignas(...)
};

// Where in a declaration the attributes stand.
enum an_attribute_location_tag : uint8_t {
  al_none = 0,
  al_declaration_start = 1,
  al_specifiers = 2, // also within a declarator
  al_declarator = 3, // behind the declarator
  al_name = 4,       // [[...]] behind the declared name
  al_tag = 5,        // behind the keyword of a class or enum
  al_tag_end = 6,    // behind the brace that ends its definition
  al_base_class = 8,
  al_member = 9,
  al_enumerator = 10,
  al_label = 11,
  al_statement = 12,
  al_namespace = 13,
  al_using_directive = 14
};

enum an_attribute_flag : uint8_t {
  atf_held = 0x02, // its attachment waits
  atf_pack_expansion = 0x08,
  atf_gnu_namespace = 0x10,
  atf_using_prefix = 0x40, // the namespace comes from the prefix
  atf_unknown_namespace = 0x80
};

enum an_attribute_kind : uint8_t {
#define ATTRIBUTE_KIND(number, name, applies_to, action) attrk_##name = number,
#include "attribute_kinds.def"
#undef ATTRIBUTE_KIND
};

// ---- Reading.

// The last group that was read ends here.
extern a_source_position end_position_of_attributes;
extern uint32_t last_token_number_of_attributes;

// Whether attributes begin at the current token.
bool is_attribute_start(an_attribute_location_tag location);
// All attributes at the current token; null for none.
an_attribute* scan_attributes(an_attribute_location_tag location);
// The __attribute__ groups only.
an_attribute* scan_gnu_attribute_groups(an_attribute_location_tag location);
// The next scan_attributes begins with the list.
void unscan_attributes(an_attribute* list);
void skip_over_attributes();

// ---- Attaching.

// Appends the list to the entity's attributes and does what they say. Returns
// the entity, or the type that takes the place of a type.
void* attach_attributes(an_attribute* list, void* entity, an_il_entry_kind kind);
// The same for a type that a declaration names or defines.
a_type* attach_type_attributes(a_type* type, an_attribute* list);
// The type with what the attributes of a declarator or a type name say of it.
a_type* transform_type_with_gnu_attributes(a_type* type, an_attribute* list);
a_type* make_typeref_with_attributes(a_type* type, an_attribute* list);
// Of a declaration without declarators: what belongs to the type that it declares
// is attached, and the rest reported.
void attach_lone_type_attributes(a_decl_parse_state* state);
// Whether the declaration whose attributes are being attached repeats one.
extern a_boolean attaching_to_redeclaration;
// To the entity of the state's symbol go copies of the attributes of the
// specifiers, and those of the declarator.
void attach_decl_attributes(a_decl_parse_state* state, bool is_definition);
// The same for an entity that the declarator has made.
void attach_declarator_attributes(a_decl_parse_state* state, void* entity, an_il_entry_kind kind);

// ---- Lists.

// The head of an entity's list; null for a kind that has none.
an_attribute** get_attribute_link(void* entity, an_il_entry_kind kind);
an_attribute** f_last_attribute_link(an_attribute** link);
void append_attributes(an_attribute** list, an_attribute* more);
an_attribute* find_attribute_of_kind(an_attribute* list, an_attribute_kind kind);
an_attribute* copy_of_attributes_list(const an_attribute* list);
// The attributes of both, each kind once.
an_attribute* composite_attributes(an_attribute* a, an_attribute* b);
bool equivalent_attributes(const an_attribute* a, const an_attribute* b);
// Of a parameter's variable in the body of the function.
an_attribute* get_param_variable_attr_copies(const a_param_type* param_type);

// ---- Questions and messages.

// For __has_attribute; __name__ means name.
bool gnu_attribute_is_supported(const char* name);
// 2104 or, for alignas, 2830; drops the attribute.
void report_bad_attribute_target(an_error_severity severity, an_attribute* attribute);
bool packed_attribute_allowed_on_type(const a_type* type);

// ---- Names for the assembler.

// The symbol's entity has got a name for the assembler.
void record_asm_name_for_lookup(a_symbol* symbol);
// The definition of an alias waits for the end of the unit, when its target is
// known by its name for the assembler.
void add_alias_fixup(a_symbol* symbol, const char* name, const char* target_name,
                     const a_source_position* position);
void process_alias_fixup_list();

// Some entity of the unit has ABI tags.
extern a_boolean gnu_abi_tag_attribute_seen;

void attribute_one_time_init();
void attribute_init();
void attribute_trans_unit_init();

#endif
