// The shape of the processor: sizes, alignments and behaviours that layout,
// folding and output read, and the questions that depend on them.

#ifndef TARGET_H
#define TARGET_H

#include "basics.h"

// How a listing of the target's configuration shows a value.
enum a_targ_form : uint8_t { tf_value, tf_alignment, tf_int_kind, tf_float_kind, tf_mode };

// Machine modes; the target's words have mode tmk_SI, 32 bits.
enum a_type_mode_kind { tmk_none = 0, tmk_QI = 1, tmk_HI = 2, tmk_SI = 3, tmk_DI = 4 };

#define TARG(name, type, value, form) extern type name;
#define TARG_SETTING(name, value) extern int name;
#include "target.def"
#undef TARG
#undef TARG_SETTING

// The directory of auxiliary files, below the base directory.
extern const char* auxiliary_info_dir_name;

// Data pointers have four bytes, function pointers two.
inline constexpr int targ_sizeof_data_pointer = 4;
inline constexpr int targ_sizeof_function_pointer = 2;

// Sizes in bytes of the wide character types, set by target_one_time_init,
// and of all character types by kind: char, wchar_t, char16_t, char32_t.
extern int targ_sizeof_wchar_t;
extern int targ_sizeof_char16_t;
extern int targ_sizeof_char32_t;
extern int character_size[4];
extern int targ_sizeof_largest_integer;

// Set by target_init, once the dialect is known.
extern int plain_char_int_kind;
extern a_boolean string_literals_shared;
extern int targ_intmax_kind;
extern int targ_uintmax_kind;
extern a_boolean always_fold_calls_to_builtin_constant_p;

// The size of an object of an integer kind, in bytes.
int size_of_integer_kind(int kind);

// The index of a named target configuration. This family has none: always -1.
int find_target_configuration(const char* name);

// Gives every listed value its default again.
void set_target_configuration(int index);

// Writes the default configuration to f_error as the definitions of a target
// configuration called `name`.
void dump_legacy_config_as_target_config(const char* name);

// The number of a symbol visibility: "default" 1, "protected" 2, "hidden" 3,
// "internal" 4, "extern" 5, any other text 0; and the reverse, null for
// another number.
int string_to_symbol_visibility(const char* text);
const char* symbol_visibility_to_string(int value);
// The visibility of an entity by its target modifiers: bit 0 extern, bit 1
// exported. `is_defined` is off for one that another unit defines.
int canonical_symbol_visibility(uint32_t modifiers, int, bool is_defined, int);

// The visibility of an entity by modifiers of its declaration: none says any.
int modifier_to_symbol_visibility(uint32_t modifiers);

// Whether a cast between pointers loses nothing; so it is in all memory models.
bool targ_dest_of_ptr_cast_big_enough(const a_type* from, const a_type* to);

// For a change of targ_byte_mode: the types that the tool made keep their sizes.
void reset_internal_type_sizes();

// What va_list is when no declaration says: a pointer to char in the GNU modes,
// else to void.
a_type* get_default_va_list_type();

// The argument of the attribute `target`: none is known, a warning.
void validate_target_argument(const a_source_position* position);

// A variable that stands for a register: whether the symbol's name is one of
// them, and whether the variable's type and storage class are such as a register
// can have. Those that change by themselves make the variable's type volatile.
bool is_global_register_name(const char* name);
// The type that such a variable has when `type` is written.
a_type* type_of_global_register(const char* name, a_type* type);
bool TRG_is_greg_name(const a_variable* variable, const a_symbol* symbol);
bool TRG_is_greg_type(a_variable* variable, const a_symbol* symbol);
// Banks of memory: any is legal.
bool TRG_legal_membank(int bank);
int TRG_adjust_membank(int bank);

// The alignment of a whole array, in bytes, whatever its storage kind.
int TRG_top_aryaln(int storage_kind);

// The name by which the next pass knows a function.
const char* TRG_fname_transform(const char* name);

// A processor version as an option gives it: a decimal number.
int TRG_parse_versions(const char* text);

// Settles options that this processor cannot honour; it has none.
void TRG_check_cmd_options();

void target_early_init();
void target_one_time_init();
void target_init();

#endif
