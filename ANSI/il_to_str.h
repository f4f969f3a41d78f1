// Texts for types and entities of the intermediate language, as diagnostics
// and listings show them.

#ifndef IL_TO_STR_H
#define IL_TO_STR_H

#include "il_entities.h"
#include "il_types.h"

struct a_text_buffer;

// Settings of one printing job. The text goes to `buffer`.
struct an_il_to_str_control {
  a_text_buffer* buffer;
  // For types that print as C++ would write them: class names without a tag.
  bool cplusplus_spelling;
  // bool is spelled `_Bool` unless set.
  bool bool_is_keyword;
  // Typedef names are replaced by what they stand for.
  bool look_through_typedefs;
  // Prefer names of the written source to lowered names.
  bool use_source_names;
  // Inline namespaces are named too.
  bool fully_qualified;
};

// Sets up the control block from the language mode.
void init_il_to_str_control(an_il_to_str_control* control, a_text_buffer* buffer);

// The type with no declarator: "int (*)(char, ...)".
void form_type(const a_type* type, an_il_to_str_control* control);
// A declaration of `name` with the type: "int (*name)(char, ...)".
void form_declaration(const a_type* type, const char* name, an_il_to_str_control* control);
// The text around a declared name: what stands before it, and what follows.
void form_type_first_part(const a_type* type, an_il_to_str_control* control);
void form_type_second_part(const a_type* type, an_il_to_str_control* control);
// The qualifiers, each followed by a blank.
void form_type_qualifiers(a_type_qualifier_set qualifiers, an_il_to_str_control* control);

// The entity's name with its qualification; an unnamed entity gets a text in
// angle brackets.
void form_entity_name(const a_source_correspondence* source_corresp, an_il_entry_kind kind,
                      an_il_to_str_control* control);
// The lists in angle brackets; a parameter shows as its name, a pack with an
// ellipsis.
void form_template_params(const a_template_param* params, an_il_to_str_control* control);
void form_template_args(const a_template_arg* args, an_il_to_str_control* control);

// The value, as the source language writes it; enumerators by their names.
void form_constant(const a_constant* constant, an_il_to_str_control* control);
// The expression as it was written: without what the analysis added, with the
// parentheses that the order of the operators asks for.
void form_expression(const an_expr_node* expr, an_il_to_str_control* control);

// "char", "unsigned int" and so on; bad kinds give a text in asterisks.
const char* int_kind_name(int kind);
const char* float_kind_name(int kind);

// The type's text in a buffer that the next call overwrites.
const char* type_as_string(const a_type* type);

void il_to_str_one_time_init();
void il_to_str_init();

#endif
