// Constants of the intermediate language: every value known at compile time,
// from a literal to an aggregate initialiser, and the values that wait for a
// template argument.

#ifndef IL_CONSTANTS_H
#define IL_CONSTANTS_H

#include "basics.h"
#include "fpsmath.h"
#include "il_entities.h"
#include "il_types.h"

enum a_constant_kind : uint8_t {
  con_error = 0,
  con_integer = 1,
  con_string = 2,
  con_float = 3,
  con_complex = 4,
  con_imaginary = 5,
  con_address = 6,
  con_ptr_to_member = 7,
  con_address_difference = 8,
  con_dynamic_init = 9,
  con_aggregate = 10,
  con_repeat = 11,
  con_template_param = 12,
  con_designator = 13
};
inline constexpr int num_constant_kinds = 14;

// What the base of an address constant is.
enum an_address_base_kind : uint8_t {
  abk_routine = 0,
  abk_variable = 1,
  abk_constant = 2,  // a string literal
  abk_temporary = 3, // an unnamed object holding a constant
  abk_uuid = 4,      // of a type
  abk_typeid = 5,    // of a type
  abk_label = 6
};

// What a value that depends on template parameters is made from.
enum a_template_param_constant_kind : uint8_t {
  tpck_invalid = 0,
  tpck_expression = 1,
  tpck_param_ref = 2,
  tpck_proxy_nontype = 3,
  tpck_cast = 4,
  tpck_implicit_cast = 5,
  tpck_sizeof = 6,
  tpck_alignof = 7,
  tpck_uuidof = 8,
  tpck_typeid = 9,
  tpck_noexcept = 10,
  tpck_unknown_function = 11,
  tpck_type = 12
};

// Character kinds of a string or character constant.
enum a_string_char_kind : uint8_t {
  sck_ordinary = 0,
  sck_wide = 1,
  sck_char16 = 2,
  sck_char32 = 3
};

// A value in the format of the simulated arithmetic.
using a_float_value = simul_fval;

struct a_complex_value {
  a_float_value real;
  a_float_value imaginary;
};

// One step of the way from an object to a subobject, outermost first.
struct a_subobject_path {
  a_subobject_path* next;
  an_il_entry_kind kind; // of the entity stepped through: 8 a field, 37 a base class,
                         // 6 an array type, whose element number is `index`
  union {
    a_field* field;
    a_base_class* base_class;
    a_type* array_type;
  } step;
  uint64_t index;
};

struct a_string_value {
  uint64_t length; // in bytes, the terminator included
  const char* text;
  uint64_t sequence_number; // 0: the literal may share its storage with equal ones
  int32_t string_extra;     // -1 at start
};

struct an_address_value {
  an_address_base_kind base_kind;
  union {
    void* entry; // whichever it is
    a_routine* routine;
    a_variable* variable;
    a_constant* constant;
    a_type* type;
    a_label* label;
  } base;
  int64_t offset; // in bytes
  a_subobject_path* subobject_path;
};

struct a_ptr_to_member_value {
  a_derivation_step* base_class_path;
  a_name_reference* name_reference;
  uint8_t cast_to_base : 1;
  uint8_t is_routine : 1; // the member is a routine
  union {
    a_field* field; // null, and not a routine: the null pointer to member
    a_routine* routine;
  } member;
};

// The difference of two addresses, kept until both are known.
struct an_address_difference_value {
  a_constant* minuend;
  a_constant* subtrahend;
};

struct an_aggregate_value {
  a_constant* first;
  a_constant* last;
  uint8_t has_dynamic_init : 1; // some element, at any depth, is a con_dynamic_init
};

struct a_repeat_value {
  a_constant* element;
  uint64_t count;
  uint8_t is_multidimensional : 1;
};

struct a_template_param_value {
  a_template_param_constant_kind param_kind;
  uint8_t is_type : 1; // the operand of a sizeof-like form is a type
  uint8_t is_pack : 1;
  uint8_t is_vla : 1;
  uint8_t is_explicit : 1;
  union {
    void* entry; // whichever it is
    a_type* type;
    a_constant* constant;
    an_expr_node* expr;
    a_template_param* param;
  } param_data;
  union {
    void* entry;
    an_expr_node* expr;
    a_template_arg* template_args;
  } param_expr;
  void* param_extra;
};

struct a_designator_value {
  uint8_t is_field : 1;         // names a field
  uint8_t is_text_or_index : 1; // a field by its text, or an array element by its index
  union {
    a_field* field;         // is_field alone
    a_constant* index;      // is_text_or_index alone
    const char* field_name; // both
  } designated;
};

struct a_constant {
  a_source_correspondence source_corresp;
  a_source_position position; // where the value was written
  // The next of a list: enumerators, elements of an aggregate, a free list, a
  // bucket of the shareable constants.
  a_constant* next;
  a_type* type;
  a_type* orig_type; // the type before a conversion, kept for display
  // The expression that produced the value, when it is kept.
  an_expr_node* source_expr;
  // Only the analysis uses these two; they are null in stored IL.
  a_template_arg* template_arg_info;
  a_symbol* ref_symbol;

  uint32_t string_char_kind : 2;
  // An address held as an integer: folding must not treat it as an integer.
  uint32_t is_pointer_value : 1;
  uint32_t is_null_literal : 1;
  uint32_t is_character_literal : 1;
  uint32_t overflow_or_wrap : 1;
  uint32_t is_boolean_literal : 1;
  uint32_t not_strict_constant : 1; // no integer constant expression (C99 6.6 p6)
  uint32_t is_unnamed_enumerator : 1;
  uint32_t is_enumerator : 1;
  uint32_t from_extension : 1; // written under __extension__
  uint32_t explicit_cast : 1;
  uint32_t implicit_cast : 1;
  uint32_t has_designator : 1; // an aggregate some element of which is designated
  uint32_t is_string_initializer : 1;
  uint32_t shareable_name : 1; // a named constant that may stand for equal values
  uint32_t braced : 1;
  uint32_t contains_nonconstant : 1;
  uint32_t has_local_expr_node_ref : 1;
  uint32_t zero_fill : 1;
  uint32_t is_function_name : 1; // the text of __func__ and its like
  uint32_t non_decimal_literal : 1;
  uint32_t unused_flags : 4;
  a_constant_kind kind;

  union {
    uint64_t int_value; // con_integer; signed or not by the type
    a_string_value string;
    a_float_value float_value; // con_float, con_imaginary
    a_complex_value* complex_value;
    an_address_value address;
    a_ptr_to_member_value ptr_to_member;
    an_address_difference_value address_difference;
    a_dynamic_init* dynamic_init;
    an_aggregate_value aggregate;
    a_repeat_value repeat;
    a_template_param_value template_param;
    a_designator_value designator;
  } value;
  uint8_t constant_flags : 3;
};

// ---- Allocation and initial states ----

// A new constant of the given kind in the current region, or (fs_) in the
// file-scope region of the translation unit.
a_constant* alloc_constant(a_constant_kind kind);
a_constant* fs_constant(a_constant_kind kind);
// Gives a record its whole initial state. `kind` is set with its empty value.
void clear_constant(a_constant* constant, a_constant_kind kind);
// Changes the kind of a constant and empties its value; the rest stays.
void set_constant_kind(a_constant* constant, a_constant_kind kind);
void set_template_param_constant_kind(a_constant* constant, a_template_param_constant_kind kind);
void set_error_constant(a_constant* constant);
a_complex_value* alloc_complex_value();
a_subobject_path* alloc_subobject_path();

// ---- Copies and sharing ----

// Copies the record alone: parts are shared with the source.
void copy_constant(const a_constant* source, a_constant* target);
// Copies the record and everything it owns: elements, complex parts, paths
// and expressions.
void copy_constant_full(const a_constant* source, a_constant* target);
// A lasting copy in the current region that stands in no table.
a_constant* alloc_unshared_constant(const a_constant* constant);
// The constant `count` times as part of an aggregate; the constant itself for one.
a_constant* repeated_constant(a_constant* element, uint64_t count);
a_constant* alloc_unshared_constant_full(const a_constant* constant, bool keep_lowering_flag,
                                         bool no_deep_copy);
// A lasting record of the same value, one record for all equal values where
// the language permits. The result must not be chained or changed.
a_constant* alloc_shareable_constant(const a_constant* constant);
bool constant_is_shareable(const a_constant* constant);
void empty_shareable_constants_table();
// Forgets the table of the function scope at the top of the scope stack.
void empty_func_shareable_constants_table();
// Gives a string literal that must keep storage of its own its number.
void f_assign_string_literal_sequence_number(a_constant* constant);

// ---- Values ----

// The value in two's complement, cut to the width of the integer kind.
void set_integer_constant(a_constant* constant, int64_t value, an_integer_kind int_kind);
void set_unsigned_integer_constant(a_constant* constant, uint64_t value, an_integer_kind int_kind);
// The zero of an arithmetic, enum, pointer, pointer-to-member or nullptr type.
void make_zero_of_proper_type(a_type* type, a_constant* constant);
// The value of an object that is initialised by `()` or an empty list.
void make_value_initialized_constant(a_type* type, a_constant* constant);
// Appends an element; an element that needs run-time work, or that holds one
// that does, marks the aggregate.
void add_constant_to_aggregate(a_constant* element, a_constant* aggregate);
// What stands before an element of an aggregate that is out of its order.
a_constant* make_index_designator(a_type* array, uint64_t position);
a_constant* make_field_designator(a_type* class_type, a_field* field);
// Gives the elements of an aggregate, at all depths, the order of their
// positions, with zeros in the gaps; only a union keeps a designator. A later
// value for an element replaces an earlier one, but an aggregate that isn't
// `braced` goes on with it.
void put_elements_in_order(a_constant* aggregate);
// Turns a string that initialises an array into an aggregate of its
// characters.
void explode_string_initializer(a_constant* constant);
// Chains two lists of elements and returns the first of the whole.
a_constant* combine_initializer_constants(a_constant* first, a_constant* second);
// The list of an enum's enumerators, in order; null for an incomplete one.
a_constant* first_enumerator_of_enum(const a_type* enum_type);
// A copy of a named constant whose backing expression is the name.
a_constant* add_backing_expression_for_named_constant(a_constant* constant);

void set_routine_address_constant(a_routine* routine, a_constant* constant, bool address_taken);
void set_variable_address_constant(a_variable* variable, a_constant* constant, bool address_taken);
void set_constant_address_constant(a_constant* base, a_constant* constant);
void set_temporary_address_constant(a_constant* base, a_constant* constant);
void make_typeid_constant(a_type* type, a_constant* constant);
void set_label_address_constant(a_label* label, a_constant* constant);

// ---- Predicates and comparison ----

// Whether the value is a zero in every bit of meaning: integers, floats
// (negative zero is none), null pointers, aggregates of zeros.
bool is_zero_constant(const a_constant* constant);
bool is_error_constant(const a_constant* constant);
// compare_constants, flag bits.
enum a_compare_constants_flag : unsigned {
  ccf_for_sharing = 1, // types must be identical and literals keep their identity
  ccf_ignore_types = 2 // compare the values alone
};
bool compare_constants(const a_constant* a, const a_constant* b, unsigned flags);
bool eq_constants(const a_constant* a, const a_constant* b);
uint64_t hash_constant(const a_constant* constant);
// Whether the value refers, at any depth, to an entry of a function's region.
bool has_non_file_scope_ref(const a_constant* constant);

// Makes the per-unit state of this module, the table of shared constants
// among it.
void il_constants_one_time_init();
void il_constants_trans_unit_init();

#endif
