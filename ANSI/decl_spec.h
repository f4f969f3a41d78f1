// Declaration specifiers (C99 6.7), and whether a token begins a type or a
// declaration. There is no feedback into the scanner: the parser looks an
// identifier up at the point where the answer matters.

#ifndef DECL_SPEC_H
#define DECL_SPEC_H

#include "basics.h"
#include "il_entities.h"
#include "il_types.h"
#include "lexical.h"

// The target's modifiers of a declaration: bits of its modifier mask, which the
// entity keeps as its decl_modifiers.
enum a_decl_modifier : uint32_t {
  dm_none = 0,
  dm_dllimport = 1u << 0,
  dm_dllexport = 1u << 1,
  dm_notshared = 1u << 2,
  dm_interrupt = 1u << 3,
  dm_nmi_interrupt = 1u << 4,
  dm_near = 1u << 5,
  dm_far = 1u << 6,
  dm_reentrant = 1u << 7,
  dm_port = 1u << 8,
  dm_shared = 1u << 9,
  dm_sharedpp = 1u << 10,
  dm_trap = 1u << 11,
  dm_cregister = 1u << 12,
  dm_global = 1u << 13,
  dm_data_mem_bank = 1u << 14,
  dm_data_align = 1u << 15,
  dm_last = 1u << 16
};
inline constexpr int num_decl_modifiers = 17;
// What messages call them, in the order of the bits.
extern const char* const decl_modifier_names[num_decl_modifiers];

// What is read among the specifiers beside the type and the storage class.
struct a_decl_modifiers_block {
  uint32_t mask; // a_decl_modifier
  a_source_position position;
  uint16_t thread_local_seen : 1;
  uint16_t inline_seen : 1;
  uint16_t noreturn_seen : 1;
  uint16_t mutable_seen : 1;
  uint16_t constexpr_seen : 1;
  uint16_t virtual_seen : 1;
  uint16_t explicit_seen : 1;
  uint16_t friend_seen : 1;
  uint16_t before_gnu_40800 : 1; // GNU C++ that knows no deferred defaults
  uint32_t declared_alignment;   // in bytes, of _Alignas; 0: none
  a_source_position inline_position;
  a_source_position noreturn_position;
  a_source_position thread_local_position;
  a_source_position mutable_position;
  a_source_position constexpr_position;
  a_source_position virtual_position;
  a_source_position explicit_position;
  a_source_position friend_position;
};

// Where the parts of one declaration stand; the entity keeps them in its
// a_decl_position_supplement.
struct a_decl_pos_block {
  a_source_range specifiers_range;
  a_source_range declarator_range;
  a_source_position name_end_position;
  a_source_position storage_class_position;
};

// Work that waits for the end of a declarator or of the whole declaration. No
// action is pending where a precompiled header may end.
typedef void (*an_end_of_parse_function)(a_decl_parse_state* state);
struct an_end_of_parse_action {
  an_end_of_parse_action* next;
  an_end_of_parse_function function;
  bool keep; // for the next declarator of the declaration
};

struct a_decl_flags {
  uint32_t type_specifier_seen : 1;
  uint32_t unused_1 : 3;
  uint32_t specifier_error : 1;
  uint32_t unused_5 : 1;
  // The specifiers were the single token void, or `typedef void;` and `typedef
  // int void;`, which old headers have.
  uint32_t is_plain_void : 1;
  uint32_t defines_tag : 1;  // a struct, union or enum was defined by them
  uint32_t declares_tag : 1; // one was named by them
  uint32_t no_type_given : 1;
  uint32_t has_auto_type : 1; // a placeholder type stands among the specifiers
  uint32_t unused : 21;
};

struct a_parse_flags {
  uint64_t is_file_scope : 1;
  uint64_t is_old_style_param : 1; // the declarator names one of the identifier list
  uint64_t is_top_level : 1;
  uint64_t has_extension_prefix : 1;
  uint64_t specifier_error : 1;
  uint64_t raised_comma : 1; // the stop tokens that the declaration has raised
  uint64_t raised_semicolon : 1;
  uint64_t raised_assign : 1;
  uint64_t raised_brace : 1;
  uint64_t has_linkage_specification : 1;
  uint64_t is_for_init : 1;
  uint64_t is_function_definition : 1; // the declaration is complete without a `;`
  uint64_t is_condition : 1;
  uint64_t is_redeclaration : 1; // of a function declared before
  uint64_t unused : 50;
};

// All that is known of a declaration while it is parsed; zeroed by
// clear_decl_parse_state.
struct a_decl_parse_state {
  a_decl_flags decl_flags;
  uint32_t declarator_flags;
  a_source_position start_position;
  a_source_position specifiers_position, end_position;
  a_source_position declarator_position;
  a_source_range declarator_range;
  a_type_qualifier_set qualifiers;
  a_source_position const_position, volatile_position, restrict_position;
  a_parse_flags parse_flags;
  a_decl_modifiers_block modifiers;
  an_attribute* attributes_before;
  an_attribute* attributes_after;
  a_type* type_specifier_type;
  a_storage_kind storage_class;
  a_storage_kind storage_class_before_declarator;
  a_source_position storage_class_position;
  a_decl_pos_block positions;
  a_type* declared_type;
  a_type* base_type;
  a_symbol* symbol;            // the entity declared
  a_param_id* param_id_entry;  // the old-style parameter that is declared
  a_param_id* auto_param_list; // parameters whose type is a placeholder
  a_param_id* param_id_list;
  an_end_of_parse_action* end_of_parse_actions;
  a_type* deduced_auto_type;      // what `auto` stood for in the declarators so far, or null
  a_decl_parse_state* head_state; // of the declaration; usually the state itself
  const char* asm_name;           // of an asm name behind the declarator, or null
  a_source_position asm_name_position;
  a_decl_parse_state* next_free;
};

// Starts at the current token.
void clear_decl_parse_state(a_decl_parse_state* state);
a_decl_parse_state* alloc_decl_parse_state();
void free_decl_parse_state(a_decl_parse_state* state);

enum a_decl_specifiers_option : unsigned {
  dso_storage_class = 1,
  dso_type_specifiers = 2,
  dso_member = 4,
  dso_parameter = 8,
  dso_no_type_required = 16,
  dso_file_scope = 32,
  dso_for_init = 64,
  // The caller deals with `virtual`, `explicit` and `friend`.
  dso_class_words = 0x200,
  dso_allow_typedef_in_parameter = 0x1000,
  // `unsigned T` takes the type name T, where the dialect has it.
  dso_modified_typedef_allowed = 0x80000,
  dso_skip_misra_basic_type_check = 0x10000000
};

// Reads the specifiers into the state; type_specifier_type is never null after
// it (error_type() after an error).
void decl_specifiers(unsigned options, a_decl_parse_state* state);

// int was assumed.
void report_missing_type_specifier(an_error_code code, const a_source_position* position);

// Reads qualifiers as long as there are any; either pointer may be null.
a_type_qualifier_set collect_type_qualifiers(a_decl_parse_state* positions);
// Whether the type is one that `restrict` can qualify (C99 6.7.3 p2), else after
// a message.
bool restrict_qualifier_is_allowed(a_type* type, const a_source_position* position);
// The same for the nullability qualifiers among `bits`, of which only one may
// stand; true when they apply.
bool check_nullability_qualifiers(a_type_qualifier_set bits, a_type* type,
                                  const a_source_position* position);
// The target has no rule of its own for the qualifiers of a member.
void check_ql_type_qualifiers(a_type* type, const a_source_position* position, unsigned flags);

// The type symbol that the current identifier names, or null. A qualified name
// is folded into one token.
a_symbol* curr_type_symbol();

enum a_decl_start_option : unsigned {
  dst_expr_context = 1, // an expression may stand here too
  dst_guess_misspelled_type = 2,
  dst_condition = 4,    // of an if, a while or a for
  dst_parameter = 8,    // behind the parenthesis that follows a declared name
  dst_statement = 0x100 // where a statement begins
};
// Whether the current token begins a type.
bool is_type_start(unsigned options);
// Whether it begins a declaration.
bool is_decl_start(unsigned options);
// Whether what follows is a declaration: in a statement, in a condition, of a
// parameter, or, without any of these options, a type name behind the
// parenthesis of a cast (C++11 6.8, 8.2). No token is consumed.
bool is_decl_not_expr(unsigned options);

// What stands where a declarator may: found without parsing it.
struct a_declarator_prescan {
  bool is_declarator; // the tokens have the form of one
  bool name_seen;
  a_token_kind stop_token; // behind it
};
void prescan_and_find_declarator(a_declarator_prescan* out);
// At `C::*` in C++.
bool at_ptr_to_member();
// Whether a `:` follows the first declarator, behind the `(` of a for.
bool is_start_of_range_based_for();

// The tag of a struct, union or enum specifier, at the keyword, and the
// attributes before it: an unnamed locator when a definition follows without
// one, false after a message.
bool scan_tag(a_symbol_locator* locator, an_attribute** attributes, a_decl_parse_state* state);
// enum specifier (C99 6.7.2.2), at the keyword; error_type() after an error.
a_type* enum_specifier(a_decl_parse_state* state);

void add_end_of_parse_action(an_end_of_parse_function function, a_decl_parse_state* state,
                             bool keep);
// Runs the actions, the last one added first. With `final` set, those to be kept
// stay on the list for the next declarator of the declaration.
void run_end_of_parse_actions(a_decl_parse_state* state, bool final);
void discard_end_of_parse_actions(a_decl_parse_state* state);

void decl_spec_one_time_init();

#endif
