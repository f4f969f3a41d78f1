// The symbol table: names interned once, and for each declaration a symbol
// that ties the name to its entity in a scope. Symbols live in general memory
// for the time of analysis; they are no part of the intermediate language.

#ifndef SYMBOL_TBL_H
#define SYMBOL_TBL_H

#include "basics.h"
#include "function_pointers.h"
#include "il_entities.h"

#include <vector>

// ---- Records ----

enum a_symbol_kind : uint8_t {
  symk_keyword = 0,
  symk_macro = 1,
  symk_constant = 2, // an enumerator
  symk_type = 3,     // a typedef
  symk_class_or_struct = 4,
  symk_union = 5,
  symk_enum = 6,
  symk_variable = 7,
  symk_field = 8,
  symk_static_data_member = 9,
  symk_member_function = 10,
  symk_routine = 11,
  symk_label = 12,
  symk_undefined = 13,
  symk_extern_variable = 14, // of a block-scope extern declaration
  symk_extern_routine = 15,
  symk_projection = 16, // a member of a base class, seen in a class
  symk_overloaded_function = 17,
  symk_parameter = 18, // of the identifier list of an old-style function
  symk_class_template = 19,
  symk_function_template = 20,
  symk_variable_template = 21,
  symk_namespace = 22,
  symk_namespace_projection = 23
};
inline constexpr int num_symbol_kinds = 24;

// Name spaces of identifiers (C99 6.2.3). In C++ tags and members share the
// ordinary one.
enum a_name_space : uint8_t {
  ns_label = 0,
  ns_tag = 1,
  ns_ordinary = 2,
  ns_macro = 3,
  ns_keyword = 4,
  ns_block_extern = 5,
  ns_member = 6
};

// One per distinct spelling; never freed.
struct a_symbol_header {
  a_symbol_header* next_in_bucket;
  const char* identifier; // NUL-terminated
  uint64_t length;
  uint32_t hash; // the whole value, also the key hash of per-scope tables
  // The symbols visible along the scope stack, innermost first: the name chain.
  a_symbol* first_symbol;
  // Symbols of scopes that are closed and may be opened again.
  a_symbol* first_inactive_symbol;
  // Symbols hidden from ordinary entry.
  a_symbol* first_pending_symbol;
  // The keyword and macro symbols of the name are on first_symbol; these bits
  // spare the search for the names that have none.
  uint16_t is_keyword : 1;
  uint16_t is_macro : 1;
  uint16_t is_protected_macro : 1;  // a predefined macro that must stay as it is
  uint16_t is_conditional_word : 1; // a word that is a keyword in some contexts only
  uint16_t is_poisoned : 1;
  uint16_t is_builtin_name : 1; // a builtin function of this name waits to be loaded
  uint16_t is_operator_name : 1;
  uint16_t unused_flags : 9;
  uint16_t builtin_index; // row of the builtin function when is_builtin_name
};

// How a member of a base class is seen in a class: as the result of a lookup,
// kept for the next one, or by a using-declaration.
struct a_projection_descr {
  a_symbol* fundamental_symbol;  // the member itself
  a_symbol* member_symbol;       // as the base class has it: may be a projection
  a_base_class* base_class;      // the last step: the class that has the member
  a_derivation_step* derivation; // from a direct base on
  uint8_t is_using_decl : 1;
  uint8_t is_ambiguous : 1; // other members were found too
  uint8_t access : 2;       // an_access_specifier of a using-declaration
};

struct a_namespace_list_entry {
  a_namespace_list_entry* next;
  a_namespace* namespace_entry; // null: the file scope
};

struct a_class_symbol_supplement {
  a_scope_pointers_block* pointers_block;
  a_symbol* class_template;
  a_symbol* conversion_functions;
  a_symbol* constructor;
  a_symbol* destructor;
  a_symbol* assignment_operator;
  a_symbol* nested_class_list;
  a_scope* scope;
  int32_t scope_number;
  uint32_t instantiation_sequence_number;
  // The namespaces that a call with an argument of the class looks in, once the
  // class is complete; null before.
  a_namespace_list_entry* operator_lookup_namespaces;
};

struct an_enum_symbol_supplement {
  a_scope_pointers_block* pointers_block;
  a_scope* scope;
  int32_t scope_number;
};

struct a_symbol {
  a_symbol_header* header;
  a_symbol* next_homonym; // on the header's chain, or in an overload set
  a_symbol* next_in_scope;
  a_symbol* prev_in_scope;
  a_symbol* next_in_table_list; // of this name, in the scope's own table
  int32_t scope_number;         // of the declaring scope; -1: none
  uint32_t decl_seq;
  a_source_position position;
  union {
    void* entry;                  // whichever it is; null for neither
    a_type* class_type;           // is_class_member
    a_namespace* namespace_entry; // is_namespace_member
  } parent;
  a_symbol_kind kind;
  uint32_t referenced : 1;
  uint32_t defined : 1;
  uint32_t is_hidden_union_member : 1; // of an anonymous union, hidden by another member
  uint32_t is_anonymous_union_member : 1;
  uint32_t is_class_member : 1;
  // An error or placeholder: entered in no chain.
  uint32_t not_in_lookup : 1;
  uint32_t is_namespace_member : 1;
  uint32_t hidden_from_ordinary_entry : 1; // on the pending chain
  uint32_t is_synthesized_namespace : 1;
  uint32_t visible_in_instantiations_only : 1;
  uint32_t is_injected_class_name : 1;
  uint32_t is_template_param : 1;
  uint32_t is_local_extern : 1;
  uint32_t is_friend_only : 1; // declared by a friend declaration alone
  uint32_t is_error : 1;
  uint32_t value_set : 1;   // the variable was given a value
  uint32_t value_used : 1;  // the variable's value was read
  uint32_t is_inactive : 1; // on the header's inactive chain
  uint32_t unused_reported : 1;
  // The variable may have a value by now: it was set, or its address is known.
  uint32_t may_have_value : 1;
  uint32_t unused_flags : 11;
  union {
    void* entry;         // whichever it is
    uint32_t token_kind; // symk_keyword: an a_token_kind
    a_macro_def* macro;
    a_constant* constant;
    a_type* type;
    a_variable* variable;
    a_field* field;
    a_routine* routine;
    a_label* label;
    a_projection_descr* projection;
    a_symbol* overload_list;
    a_template_symbol_supplement* template_info;
    a_namespace* namespace_entry;
    a_symbol* projected_symbol; // symk_namespace_projection
  } variant;
  union {
    void* entry;
    a_class_symbol_supplement* class_info;
    an_enum_symbol_supplement* enum_info;
    a_param_id* param_id;   // symk_parameter
    a_symbol* overload_set; // routines: the symbol of the set they are in
  } supplement;
  union {
    uint64_t word;
    uint8_t typedef_stands_for_tag; // symk_type
    void* il_entry;                 // macros and templates: their IL entry, or null
  } extra;
};

// What travels from the scanner to the parser; always copied as a whole.
struct a_symbol_locator {
  a_symbol_header* header; // null for none
  a_source_position position;
  uint32_t is_qualified : 1;        // a qualifier was written
  uint32_t is_global_qualified : 1; // `::name`
  uint32_t is_template_id : 1;
  uint32_t template_keyword_used : 1;
  uint32_t is_operator_name : 1;
  uint32_t is_conversion_name : 1;
  uint32_t is_destructor_name : 1;
  uint32_t is_constructor_name : 1;
  uint32_t is_literal_operator_name : 1;
  uint32_t is_dependent : 1;
  uint32_t is_generalized : 1; // the tokens of a qualified name were folded into one
  uint32_t id_detail : 1;
  uint32_t id_detail_2 : 1;
  // The name is bad or settled elsewhere: no lookup.
  uint32_t is_error_locator : 1;
  uint32_t is_ambiguous : 1;
  uint32_t is_unnamed : 1;
  uint32_t is_class_qualified : 1; // the qualifier is a class
  uint32_t is_using_decl : 1;
  uint32_t is_found_by_adl : 1;
  uint32_t is_enum_qualified : 1;
  uint32_t is_decltype_qualified : 1;
  uint32_t unused_flags : 11;
  uint32_t operator_kind; // of an operator name
  // The result of the last lookup: short-circuits a repeated one.
  a_symbol* symbol;
  union {
    void* entry; // whichever it is
    a_type* class_type;
    a_namespace* namespace_entry;
  } qualifier;
  a_template_arg* template_args;
  a_type* conversion_type; // of a conversion function name
  a_using_decl* using_decl;
};
static_assert(sizeof(a_symbol_locator) == 64);

extern const a_symbol_locator cleared_locator;

// An open hash table whose hash and compare functions are named by index, so
// that a saved table holds no code addresses.
struct a_hash_table_entry {
  a_hash_table_entry* next;
  const void* key;
  uint32_t hash;
  a_symbol* first; // symbol tables of scopes: the symbols of the name
  a_symbol* last;
};

struct a_hash_table {
  uint8_t hash_function_index; // a_function_pointer_index
  uint8_t compare_function_index;
  int32_t region; // -1 and -2: general memory
  uint64_t size;  // number of buckets, out of one series of primes
  uint64_t entries;
  a_hash_table_entry** buckets;
};

// ---- Per-unit state ----

extern a_symbol* symbol_for_namespace_std;
extern a_symbol* symbol_for_namespace_abi;
extern a_symbol* symbol_for_make_integer_seq;
extern a_symbol* symbol_for_std_initializer_list;
extern a_type* builtin_va_list_type;
extern a_type* type_underlying_va_list;
extern a_symbol* symbols_with_no_scope; // chained through next_in_scope
extern a_boolean file_scope_symbols_are_on_inactive_list;
extern a_symbol_header* conversion_header_list;
extern uint32_t decl_seq_counter;
extern int32_t file_scope_number;
extern a_symbol_locator locator_for_curr_id;

extern int32_t next_scope_number;

// The texts of the symbol kinds, by kind.
extern const char* const symbol_kind_names[num_symbol_kinds];
extern a_name_space name_space_for_symbol_kind[num_symbol_kinds];

inline bool is_tag_symbol_kind(a_symbol_kind kind) {
  return kind >= symk_class_or_struct && kind <= symk_enum;
}

// ---- Interning ----

// The scanner may hash a name while it reads it: one step a byte, from 0. A
// name of symbol_hash_short_length bytes or more is hashed by samples instead,
// which hash_of_long_symbol takes from the finished text; the last three bytes
// are among them, so such a name cannot be finished before its end.
inline constexpr size_t symbol_hash_short_length = 10;

inline uint32_t symbol_hash_step(uint32_t hash, char c) {
  return static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(c))) + hash * 73u;
}

inline uint32_t hash_of_long_symbol(const char* text, size_t length) {
  const size_t middle = length / 2;
  uint32_t hash = 0;
  hash = symbol_hash_step(hash, text[0]);
  hash = symbol_hash_step(hash, text[1]);
  hash = symbol_hash_step(hash, text[2]);
  hash = symbol_hash_step(hash, text[middle - 1]);
  hash = symbol_hash_step(hash, text[middle]);
  hash = symbol_hash_step(hash, text[middle + 1]);
  hash = symbol_hash_step(hash, text[length - 3]);
  hash = symbol_hash_step(hash, text[length - 2]);
  return symbol_hash_step(hash, text[length - 1]);
}

// The hash of a whole name; `running` is the value of the steps over its
// bytes, of use only for short names.
inline uint32_t finish_symbol_hash(uint32_t running, const char* text, size_t length) {
  return length < symbol_hash_short_length ? running : hash_of_long_symbol(text, length);
}

uint32_t hash_of_symbol_text(const char* text, size_t length);

// Interns the text and sets the locator's header; a length of 0 stands for
// the length of a NUL-terminated text. find_symbol returns the first symbol
// of the name chain or null. The _hashed form takes a hash that the caller
// has computed, and a length above 0.
a_symbol_header* find_symbol_header_hashed(const char* text, size_t length, uint32_t hash);
a_symbol_header* find_symbol_header(const char* text, size_t length, a_symbol_locator* locator);
a_symbol* find_symbol(const char* text, size_t length, a_symbol_locator* locator);
// The header named "<error>", for locators that have none.
a_symbol_header* error_symbol_header();
// The header of the function name of an operator, by its kind.
a_symbol_header* opname_symbol_header(int opname_kind);
void set_opname_symbol_header(int opname_kind, a_symbol_header* header);

// Locators.
void clear_locator(a_symbol_locator* locator, const a_source_position* position);
// Makes a locator with which no lookup is made and whose declarations go
// nowhere.
void set_to_error_locator(a_symbol_locator* locator);
// A locator of the symbol, as if it had been looked up at the position.
void make_locator_for_symbol(a_symbol* symbol, a_symbol_locator* locator);
// A locator of an entity without a name.
void make_unnamed_locator(a_symbol_locator* locator, const a_source_position* position);

// ---- Making and entering symbols ----

// A symbol in no scope. The locator's error flag makes it one that no lookup
// finds.
a_symbol* make_symbol(a_symbol_kind kind, a_symbol_locator* locator);
// The only writer of a symbol's kind: empties the payload.
void set_symbol_kind(a_symbol* symbol, a_symbol_kind kind);
// Makes a symbol in the scope at a depth of the scope stack; -1 means the
// class or namespace that is its parent. `in_out_flag` may be null. Going in,
// it says whether what the declaration hides is to be checked and reported;
// coming out, whether the declaration was refused.
a_symbol* enter_symbol(a_symbol_kind kind, a_symbol_locator* locator, int depth, bool* in_out_flag);
void add_symbol_to_symbol_table(a_symbol* symbol, int depth, bool* in_out_flag);
void add_symbol_to_scope_list(a_symbol* symbol, int depth, bool* refused);
// Enters a symbol by spelling, at start-up.
a_symbol* full_enter_symbol(const char* text, size_t length, a_symbol_kind kind,
                            const a_source_position* position, int depth);
void enter_keyword(uint32_t token_kind, const char* text);
// A macro's symbol: on the chain of its header and in no scope. The second
// takes it off.
a_symbol* enter_macro_symbol(a_symbol_header* header, a_macro_def* macro,
                             const a_source_position* position);
void remove_macro_symbol(a_symbol* symbol);
// The symbol by which a block-scope extern is also known at file scope.
a_symbol* enter_extern_symbol(a_symbol_kind kind, a_symbol_locator* locator);
// A symbol in the scope at the top of the stack.
a_symbol* enter_local_symbol(a_symbol_kind kind, a_symbol_locator* locator, bool* in_out_flag);
a_symbol* enter_overloaded_symbol(a_symbol_kind kind, a_symbol* old_symbol,
                                  a_symbol_locator* locator, int depth);
// Makes `new_symbol` a sibling of `old_symbol`, which may be a set already;
// returns the symbol of the set.
a_symbol* add_symbol_to_overload_list(a_symbol* old_symbol, a_symbol* new_symbol);
void remove_symbol_from_overload_set(a_symbol* symbol, a_symbol* set);
// A set in no scope, for a lookup that found the functions in several: each
// stands in it through a projection.
a_symbol* make_overload_set_of(const std::vector<a_symbol*>& functions);
inline bool is_function_symbol_kind(a_symbol_kind kind) {
  return kind == symk_routine || kind == symk_member_function || kind == symk_function_template ||
         kind == symk_overloaded_function;
}
bool overload_set_contains_template(const a_symbol* set);
// Puts symbols back on the name chains when their scope is opened again.
void reenter_symbol(a_symbol* symbol, int depth, bool on_scope_list);
void reenter_block_scope_symbol(a_symbol* symbol);
a_symbol* enter_copy_of_symbol(const a_symbol* symbol, int depth);

// Makes a result of lookups findable in the table of a class alone.
void add_symbol_to_table_of_class(a_symbol* symbol, a_type* class_type);

// Takes a symbol off its header's chain.
void unlink_symbol_from_symbol_table(a_symbol* symbol);
void add_symbol_to_inactive_list(a_symbol* symbol);
void remove_symbol_from_inactive_list(a_symbol* symbol);
// Takes a symbol off its chain, its scope's list and its scope's table, or off
// the overload set that stands there for it.
void remove_symbol(a_symbol* symbol);
void remove_symbol_from_lookup_table(a_symbol* symbol, a_scope_pointers_block* block);

// ---- Symbols and entities ----

// The IL entry of a symbol, null for kinds without one, and its entry kind.
void* il_entry_for_symbol(const a_symbol* symbol, an_il_entry_kind* kind);
a_source_correspondence* source_corresp_entry_for_symbol(const a_symbol* symbol);
// set_source_corresp of il.h, with the parent scope taken from the scope stack.
void set_source_corresp_with_scope_depth(a_source_correspondence* corresp, a_symbol* symbol,
                                         int depth);
void set_class_membership(a_symbol* symbol, a_source_correspondence* corresp, a_type* class_type);
void set_namespace_membership(a_symbol* symbol, a_source_correspondence* corresp,
                              a_namespace* namespace_entry);
// What the symbol of a class or an enum knows of it; null for a type that no
// such symbol declares.
a_class_symbol_supplement* class_symbol_supplement_of(const a_type* class_type);
an_enum_symbol_supplement* enum_symbol_supplement_of(const a_type* enum_type);
// Passes from a projection to what it stands for.
a_symbol* fundamental_symbol_of(a_symbol* symbol);

// ---- Scope numbers and units ----

int32_t take_next_scope_number();
a_translation_unit* trans_unit_for_symbol(const a_symbol* symbol);
bool symbol_is_from_trans_unit(const a_symbol* symbol, const a_translation_unit* unit);
void set_trans_unit_for_scope(int32_t scope_number, a_translation_unit* unit);
// The sequence number up to which declarations are seen: inside the
// instantiation of a template that of the place that it is for.
uint32_t f_get_effective_decl_seq();

// ---- Hash tables ----

// `size` is a wish; it is rounded up in the series of sizes.
a_hash_table* alloc_hash_table(int32_t region, uint64_t size, uint8_t hash_index,
                               uint8_t compare_index);
// The entry of a key; with `create` one is made, with `first` and `last` null.
a_hash_table_entry* hash_find(a_hash_table* table, const void* key, bool create);
typedef uint32_t a_hash_function(const void* key);
typedef bool a_compare_function(const void* a, const void* b);
uint32_t hash_symbol_header_lookup_entry(const void* key);
bool compare_symbol_header_lookup_entry(const void* a, const void* b);

// ---- Initialisation ----

void symbol_tbl_one_time_init();
void symbol_tbl_init();
void symbol_tbl_trans_unit_init();

#endif
