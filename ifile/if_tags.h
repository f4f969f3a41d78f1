// Names for the numbers of the intermediate file, from the table in
// if_tags.def. The writer and the readers of the file share them.

#ifndef IF_TAGS_H
#define IF_TAGS_H

#include <cstdint>

// Record tags: the first byte of a record.
enum an_if_tag : uint8_t {
#define IF_TAG(tag, name, shape) iftag_##name = tag,
#include "if_tags.def"
  iftag_eof = 255 // ends a section; a bare byte, without length and body
};

// Codes of type records.
enum an_if_type_code : uint8_t {
#define IF_TYPE_CODE(code, name, shape) iftc_##name = code,
#include "if_tags.def"
};

// Ids of the lists of a type.
enum an_if_list_id : uint8_t {
#define IF_LIST(id, name, element_code) ifl_##name = id,
#include "if_tags.def"
};

// Operand forms of expression nodes.
enum an_if_form : uint8_t {
#define IF_FORM(name, shape) iff_##name,
#include "if_tags.def"
};

// Opcodes of expression nodes. The node tables have if_opcode_limit rows.
enum an_if_opcode : uint32_t {
#define IF_NODE(opcode, name, operands, form) ifop_##name = opcode,
#include "if_tags.def"
};
inline constexpr unsigned if_opcode_limit = 201;

// Classes of symbols.
enum an_if_symbol_class : uint8_t {
#define IF_SYMBOL_CLASS(value, name) ifsc_##name = value,
#include "if_tags.def"
};

// Kinds of pragmas.
enum an_if_pragma_kind : uint8_t {
#define IF_PRAGMA(kind, name, text) ifpk_##name = kind,
#include "if_tags.def"
};

// The file header: what it says of itself, and the bit of its flags word.
inline constexpr char if_magic[] = "!<icode>\n";
inline constexpr int if_version = -71;
inline constexpr int if_flag_not_embeddable = 1; // holds what can't be embedded

#endif
