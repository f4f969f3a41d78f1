// Pragmas: what each kind is and when it acts, and the records of those that
// wait for a token, a construct or the end of a scope.

#ifndef PRAGMA_H
#define PRAGMA_H

#include <string>
#include <vector>

#include "basics.h"
#include "lexical.h"
#include "scope_stk.h"

enum a_pragma_kind_tag : uint8_t {
  pk_none = 0,
  pk_printf_args = 1,
  pk_scanf_args = 2,
  pk_argsused = 3,
  pk_varargs = 4,
  pk_notreached = 5,
  pk_pack = 10,
  pk_once = 11,
  pk_hdrstop = 12,
  pk_no_pch = 13,
  pk_define_type_info = 14,
  pk_stdc = 15,
  pk_redefine_extname = 16,
  pk_gcc = 17,
  pk_diag_suppress = 18,
  pk_diag_remark = 19,
  pk_diag_warning = 20,
  pk_diag_error = 21,
  pk_diag_once = 22,
  pk_diag_default = 23,
  pk_push_macro = 24,
  pk_pop_macro = 25,
  pk_diag_push = 26,
  pk_diag_pop = 27,
  pk_interrupt = 28,
  pk_data_section = 29,
  pk_data_align = 32,
  pk_func_never_returns = 33,
  pk_func_cannot_inline = 34,
  pk_func_always_inline = 35,
  pk_func_no_global_asg = 36,
  pk_func_no_ind_asg = 37,
  pk_func_is_pure = 38,
  pk_func_is_system = 39,
  pk_near = 41,
  pk_far = 42,
  pk_func_ext_called = 51,
  pk_calls = 53,
  pk_code_section = 55,
  pk_nmi_interrupt = 58,
  pk_unroll = 63,
  pk_no_alias_clone = 64,
  pk_must_iterate = 65,
  pk_prob_iterate = 66,
  pk_func_exceptions_nounwind = 76,
  pk_loop_no_alias = 78,
  pk_parallel_loop = 79,
  pk_weak = 81,
  pk_no_hooks = 82,
  pk_hook_function = 83,
  pk_check_misra = 85,
  pk_reset_misra = 86,
  pk_check_nrg = 87,
  pk_reset_nrg = 88,
  pk_lpm_info = 89,
  pk_ports_init_info = 90,
  pk_hw_mpy32 = 91,
  pk_fox_status = 92,
  pk_function_options = 93,
  pk_retain = 94,
  pk_clink = 95,
  pk_set_code_section = 96,
  pk_set_data_section = 97,
  pk_bat_vreg = 98,
  pk_owl_reg = 99,
  pk_location = 100,
  pk_noinit = 101,
  pk_persistent = 102,
  pk_nrg_port_config = 103,
  pk_trampoline = 104,
  pk_always_inline = 105,
  pk_mma_loop = 106,
  pk_coalesce_loop = 107,
  pk_no_coalesce_loop = 108,
  pk_forceinline_small = 110,
  pk_forceinline = 111,
  pk_forceinline_recursive = 112,
  pk_noinline_small = 113,
  pk_noinline = 114,
  pk_last = 115
};

// When the action of a pragma runs.
enum a_pragma_binding : uint32_t {
  pragma_binds_to_construct = 1, // the next declaration or statement takes it
  pragma_runs_at_token = 2,
  pragma_runs_at_end_of_directive = 3,
  pragma_runs_at_end_of_scope = 4,
  pragma_runs_while_scanned = 5 // never queued
};

enum a_pragma_flag : uint16_t {
  pragma_may_precede_declaration = 0x0001,
  pragma_may_precede_statement = 0x0002,
  pragma_to_file_scope = 0x0004,
  pragma_add_to_il = 0x0008,
  pragma_keep_text = 0x0010,
  pragma_expand_macros = 0x0020,
  pragma_recognize_keywords = 0x0040,
  pragma_raw_tokens = 0x0080,
  pragma_front_end_only = 0x0100,
  pragma_is_comment = 0x0200, // told by a lint comment, never by a directive
  pragma_allowed_in_operator = 0x0800,
  pragma_header_name_operand = 0x1000
};

struct a_pragma_kind_description {
  a_pragma_kind_description* next;
  a_pragma_kind_tag kind;
  a_pragma_binding binding;
  uint8_t action; // index into function_pointers; 0 none
  uint16_t flags;
  an_error_severity misplaced_severity; // es_suppressed: silence
};
typedef void (*a_pragma_action)(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

extern a_pragma_kind_description* pragma_kind_descriptions;
extern a_pragma_kind_description* pragma_description_for_pragma_kind[pk_last];
const char* pragma_name(a_pragma_kind_tag kind);

// One use of a pragma.
struct a_pending_pragma {
  a_pending_pragma* next;
  a_pragma_kind_description* description;
  a_token_cache tokens;
  a_source_position name_position;
  a_source_position directive_position;
  uint8_t has_tokens : 1; // they end with the record
  uint8_t from_operator : 1;
  uint8_t immediate_done : 1;
  const char* argument_text;
  a_pragma* il_entry;
  uint16_t extra;
};

// Reads the next token, a pragma's name, and its position; null for a name that
// is no pragma.
a_pragma_kind_description* look_up_pragma_id(a_source_position* position);
// Takes up the pragma whose operands follow, or reports it as unrecognized.
// `from_operator` says that the operator __pragma holds it.
void record_pragma(a_pragma_kind_description* description,
                   const a_source_position* directive_position,
                   const a_source_position* name_position, bool from_operator);

a_pending_pragma* alloc_pending_pragma(a_pragma_kind_description* description);
inline bool pragma_allowed_in_operators(const a_pragma_kind_description* description) {
  return (description->flags & pragma_allowed_in_operator) != 0;
}
// For a lint comment: a pending pragma of the kind at the current token.
a_pending_pragma* add_curr_token_pseudo_pragma(a_pragma_kind_tag kind,
                                               const a_source_position* position);
// Whether the pragma saves or restores a macro: it acts in every run, and never
// stays in preprocessed output. The description may be null.
inline bool is_macro_stack_pragma(const a_pragma_kind_description* description) {
  return description != nullptr &&
         (description->kind == pk_push_macro || description->kind == pk_pop_macro);
}
void free_pending_pragma(a_pending_pragma* pragma);
void free_pending_pragma_list(a_pending_pragma* pragmas);
a_pending_pragma* make_copy_of_pragma_list(const a_pending_pragma* pragmas);

// At the end of a directive: the actions that don't wait for a token.
void process_immediate_pragmas();
// At a token: the pragmas that wait there.
void process_curr_token_pragmas();
// Where `#pragma STDC` may stand (C99 6.10.6): between external declarations and
// at the start of a block. Obeys those that wait at the current token.
void check_for_stdc_pragmas();
// Whether the comment NOTREACHED stood in front of the current token; it acts once.
bool take_not_reached_pragma();
// Obeys or reports the pragmas that no construct took.
void process_pragmas_at_end_of_source();

// ---- Pragmas of the next declaration or statement ----
//
// Those that wait at the first token of a construct are selected before the token
// is passed, and taken by what the construct declares or makes.

// Selects the pragmas at the current token that bind to the construct which begins
// here; the others act. Without `keep_existing`, what an earlier construct left
// behind after an error is forgotten. Whether the construct has pragmas.
bool f_select_curr_construct_pragmas(bool keep_existing);
inline bool has_construct_pragmas() {
  return scope_stack[depth_scope_stack].construct_pragmas != nullptr;
}
inline bool select_curr_construct_pragmas(bool keep_existing) {
  if (curr_token_pragmas == nullptr && !has_construct_pragmas())
    return false;
  return f_select_curr_construct_pragmas(keep_existing);
}
// Obeys the selected pragmas on the symbol or the statement, one of which may be
// null, or both where the construct has nothing to bind to.
void f_process_curr_construct_pragmas(a_symbol* symbol, a_statement* statement);
inline void process_curr_construct_pragmas(a_symbol* symbol, a_statement* statement) {
  if (has_construct_pragmas())
    f_process_curr_construct_pragmas(symbol, statement);
}
// Reports the selected pragmas as out of place.
void cannot_bind_to_curr_construct();
void discard_curr_construct_pragmas();
// Takes the selected pragmas, and adds a list to them.
a_pending_pragma* extract_curr_construct_pragmas();
void reactivate_curr_construct_pragmas(a_pending_pragma* pragmas);
// Takes the selected pragmas of one kind.
a_pending_pragma* extract_specific_pragmas(a_pragma_kind_tag kind);

// At the end of a scope: a pragma that waited for it, and those that the last
// construct of the scope left behind, which are reported.
void process_c_pragma(a_pending_pragma* pragma);
void end_of_scope_pragma_processing(a_pending_pragma* pragmas);

// Gives an entry the record that it is in the intermediate file.
void set_pragma_object(a_pragma* entry, uint8_t kind, std::vector<std::string> strings);

// ---- What attributes share with pragmas ----

// Treats the symbol of a function or an object as if its declaration had the
// target's modifier.
void update_symbol_by_symtype(a_symbol* symbol, uint32_t modifier);
// The entry of a pragma on an entity or a statement. Those that return false have
// reported why there is none.
bool pragma_location_backend(a_pending_pragma* pragma, a_symbol* symbol, uint64_t address,
                             bool is_attribute);
// With the attribute's name, or null.
bool pragma_noinit_persistent_backend(a_pending_pragma* pragma, a_symbol* symbol,
                                      const char* attribute_name);
bool create_pragma_calls(a_pending_pragma* pragma, a_symbol* symbol,
                         std::vector<std::string> names);
void pragma_unroll_backend(a_pending_pragma* pragma, a_statement* statement, uint64_t count,
                           const char* name);
// Keeps the function or object in the file, used or not, and marks it so.
void pragma_retain_backend(a_pending_pragma* pragma, a_symbol* symbol);

// The name that #pragma redefine_extname gives an external name, or null.
const char* redefined_external_name(const char* name);

// All functions that can be inlined are to be, from #pragma ALWAYS_INLINE on.
extern a_boolean always_inline_funcs;

// The actions, named by index in the kinds' descriptions.
void once_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void hdrstop_or_no_pch_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void stdc_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void push_macro_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void pop_macro_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void gcc_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void redefine_extname_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void record_arg_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void process_cpp_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void pragma_misra_action(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void pragma_nrg_action(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void process_nrg_port_config(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void process_set_section_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void always_inline_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

void pragma_one_time_init();
void pragma_init();
void pragma_trans_unit_init();

#endif
