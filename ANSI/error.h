// The diagnostic engine: every message of the front end is issued here by its
// catalogue number, with typed arguments. The engine applies the severity
// overrides, filters repeats, keeps the counts that decide the exit status and
// writes the message, its notes, its instantiation context and its source line.

#ifndef ERROR_H
#define ERROR_H

#include <cstdio>

#include "basics.h"
#include "error_codes.h"

struct a_source_text;
struct an_il_to_str_control;
struct an_open_file_result;

// Notes collected before the diagnostic that they explain exists.
struct a_diag_list {
  a_diagnostic* head;
  a_diagnostic* tail;
};

// The position of diagnostics that name none; it follows the current token.
extern a_source_position error_position;

// -- Settings and counts ------------------------------------------------------

// Diagnostics below this severity are dropped.
extern an_error_severity error_threshold;
// The compilation stops when this number of errors is reached.
extern unsigned long error_limit;
// The greatest number of instantiation contexts shown; 0 is no limit.
extern unsigned long context_limit;
// One line a message, without the source line.
extern a_boolean brief_diagnostics;
extern a_boolean do_not_wrap_diagnostics;
extern a_boolean display_error_number;
extern a_boolean display_error_context_on_catastrophe;
extern a_boolean display_template_typedefs_in_diagnostics;
extern a_boolean warning_as_error_mode;

// The severities of whole classes of diagnostics, set by options.
extern an_error_severity strict_ansi_error_severity;
extern an_error_severity strict_ansi_discretionary_severity;
extern an_error_severity anachronism_error_severity;
extern an_error_severity misra_required_severity;
extern an_error_severity misra_advisory_severity;

// Diagnostics written so far; the exit status rests on them.
extern unsigned long total_errors;
extern unsigned long total_warnings;
extern unsigned long total_remarks;
extern unsigned long total_catastrophes;

// -- Diagnostics by number ----------------------------------------------------
//
// The name tells the arguments after the code, in order: `pos` the position
// (`pos2` a further position argument), `st`/`str` strings, `ty`/`type` types,
// `sy`/`sym` symbols. Members without `pos` are placed at error_position. A
// null string or symbol adds no argument. The suffix is the severity; the
// `_diagnostic` members take it as their first argument. A catastrophe, and any
// other diagnostic of severity es_catastrophe or above, does not return.

void diagnostic(an_error_severity severity, an_error_code code);
void pos_diagnostic(an_error_severity severity, an_error_code code,
                    const a_source_position* position);
void pos_st_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const char* string);
void pos_ty_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const a_type* type);
void pos_ty2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_type* type, const a_type* type2);
void pos_sy_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const a_symbol* symbol);
void pos2_diagnostic(an_error_severity severity, an_error_code code,
                     const a_source_position* position, const a_source_position* position2);
void pos2_ty_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_source_position* position2,
                        const a_type* type);
void pos2_sy_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_source_position* position2,
                        const a_symbol* symbol);
void pos_sy_ty2_diagnostic(an_error_severity severity, an_error_code code,
                           const a_source_position* position, const a_symbol* symbol,
                           const a_type* type, const a_type* type2);
void pos_sy2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_symbol* symbol,
                        const a_symbol* symbol2);
void sym_diagnostic(an_error_severity severity, an_error_code code, const a_symbol* symbol);
void pos_syty_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const a_symbol* symbol,
                         const a_type* type);
void pos_stsy_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const char* string,
                         const a_symbol* symbol);
void pos_stty_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const char* string, const a_type* type);
void pos_st2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const char* string, const char* string2);
void pos_stty2_diagnostic(an_error_severity severity, an_error_code code,
                          const a_source_position* position, const char* string, const a_type* type,
                          const a_type* type2);
void pos_st2ty_diagnostic(an_error_severity severity, an_error_code code,
                          const a_source_position* position, const char* string,
                          const char* string2, const a_type* type);
void pos_st2_sy_diagnostic(an_error_severity severity, an_error_code code,
                           const a_source_position* position, const char* string,
                           const char* string2, const a_symbol* symbol);
void pos_st3_sy2_diagnostic(an_error_severity severity, an_error_code code,
                            const a_source_position* position, const char* string,
                            const char* string2, const char* string3, const a_symbol* symbol,
                            const a_symbol* symbol2);

void pos_remark(an_error_code code, const a_source_position* position);
void pos_st_remark(an_error_code code, const a_source_position* position, const char* string);
void str_remark(an_error_code code, const char* string);
void pos_ty_remark(an_error_code code, const a_source_position* position, const a_type* type);
void pos_sy_remark(an_error_code code, const a_source_position* position, const a_symbol* symbol);
void sym_remark(an_error_code code, const a_symbol* symbol);
void pos_stsy_remark(an_error_code code, const a_source_position* position, const char* string,
                     const a_symbol* symbol);

void pos_warning(an_error_code code, const a_source_position* position);
void pos_st_warning(an_error_code code, const a_source_position* position, const char* string);
void str_warning(an_error_code code, const char* string);
void pos_ty_warning(an_error_code code, const a_source_position* position, const a_type* type);
void pos_ty2_warning(an_error_code code, const a_source_position* position, const a_type* type,
                     const a_type* type2);
// The types are passed only when the text has a place for arguments.
void pos_opt_ty2_warning(an_error_code code, const a_source_position* position, const a_type* type,
                         const a_type* type2);
void type_warning(an_error_code code, const a_type* type);
void pos_syty_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                      const a_type* type);
void pos_sy_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol);
void pos_sy2_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                     const a_symbol* symbol2);
void sym_warning(an_error_code code, const a_symbol* symbol);
void pos_stsy_warning(an_error_code code, const a_source_position* position, const char* string,
                      const a_symbol* symbol);
void pos_stty_warning(an_error_code code, const a_source_position* position, const char* string,
                      const a_type* type);
void pos_ststst_warning(an_error_code code, const a_source_position* position, const char* string,
                        const char* string2, const char* string3);

void pos_error(an_error_code code, const a_source_position* position);
void pos_st_error(an_error_code code, const a_source_position* position, const char* string);
void pos_st2_error(an_error_code code, const a_source_position* position, const char* string,
                   const char* string2);
void pos_st2ty_error(an_error_code code, const a_source_position* position, const char* string,
                     const char* string2, const a_type* type);
void pos_stty_error(an_error_code code, const a_source_position* position, const char* string,
                    const a_type* type);
void str_error(an_error_code code, const char* string);
void pos_ty_error(an_error_code code, const a_source_position* position, const a_type* type);
void pos_ty2_error(an_error_code code, const a_source_position* position, const a_type* type,
                   const a_type* type2);
void pos_ty_str_error(an_error_code code, const a_source_position* position, const a_type* type,
                      const char* string);
// The types are passed only when the text has a place for arguments.
void pos_opt_ty2_error(an_error_code code, const a_source_position* position, const a_type* type,
                       const a_type* type2);
void type_error(an_error_code code, const a_type* type);
void pos_stsy_error(an_error_code code, const a_source_position* position, const char* string,
                    const a_symbol* symbol);
void pos_sy_error(an_error_code code, const a_source_position* position, const a_symbol* symbol);
void pos_sy2_error(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                   const a_symbol* symbol2);
void pos_syty_error(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                    const a_type* type);
void sym_error(an_error_code code, const a_symbol* symbol);

[[noreturn]] void catastrophe(an_error_code code);
[[noreturn]] void str_catastrophe(an_error_code code, const char* string);
[[noreturn]] void pos_st_catastrophe(an_error_code code, const a_source_position* position,
                                     const char* string);
[[noreturn]] void pos_str2_catastrophe(an_error_code code, const a_source_position* position,
                                       const char* string, const char* string2);
[[noreturn]] void str_errno_catastrophe(an_error_code code, const char* string, int errno_value);

a_diagnostic* pos_start_diagnostic(an_error_severity severity, an_error_code code,
                                   const a_source_position* position);
a_diagnostic* pos_ty_start_diagnostic(an_error_severity severity, an_error_code code,
                                      const a_source_position* position, const a_type* type);
a_diagnostic* pos_sy_start_diagnostic(an_error_severity severity, an_error_code code,
                                      const a_source_position* position, const a_symbol* symbol);
a_diagnostic* pos_start_error(an_error_code code, const a_source_position* position);
a_diagnostic* pos_st_start_error(an_error_code code, const a_source_position* position,
                                 const char* string);
a_diagnostic* pos_ty_start_error(an_error_code code, const a_source_position* position,
                                 const a_type* type);
a_diagnostic* pos_ty2_start_error(an_error_code code, const a_source_position* position,
                                  const a_type* type, const a_type* type2);
a_diagnostic* pos_sy_start_error(an_error_code code, const a_source_position* position,
                                 const a_symbol* symbol);
a_diagnostic* pos_stsy_start_error(an_error_code code, const a_source_position* position,
                                   const char* string, const a_symbol* symbol);

// An error at error_position, after which the rest of the construct is skipped.
void syntax_error(an_error_code code);

// Faults of the command line; the errors end the compilation.
[[noreturn]] void command_line_error(an_error_code code);
[[noreturn]] void str_command_line_error(an_error_code code, const char* string);
void str_command_line_warning(an_error_code code, const char* string);
a_diagnostic* start_command_line_error(an_error_code code, const char* string);
[[noreturn]] void end_command_line_error(a_diagnostic* diag);
// A MISRA check of the command line: an error unless the number is suppressed.
void misra_command_line_diagnostic(an_error_severity severity, an_error_code code,
                                   const char* string);

// A state that the program believes impossible; `text` says which.
[[noreturn]] void internal_error(const char* text);

void embedded_cplusplus_noncompliance_diagnostic(const a_source_position* position,
                                                 an_error_code code);
// Reports the use of a C++11 extension in a GNU mode, once a number.
void f_report_gnu_cpp11_extensions_if_needed(const a_source_position* position, an_error_code code);

// -- Diagnostics of several lines ----------------------------------------------
//
// A `_start_` member creates a diagnostic that isn't issued before
// end_diagnostic; the caller may add lines to it. Argument strings must live
// until then, unless the line is added by copy_str_add_diag_info.

void add_diag_info(a_diagnostic* diag, an_error_code code);
void str_add_diag_info(a_diagnostic* diag, an_error_code code, const char* string);
void copy_str_add_diag_info(a_diagnostic* diag, an_error_code code, const char* string);
void ty_add_diag_info(a_diagnostic* diag, an_error_code code, const a_type* type);
void sym_add_diag_info(a_diagnostic* diag, an_error_code code, const a_symbol* symbol);
void add_diag_info_with_pos_insert(a_diagnostic* diag, an_error_code code,
                                   const a_source_position* position);
// Issues an open diagnostic and ends the record's life.
void end_diagnostic(a_diagnostic* diag);

// Notes: each goes to the end of `list`, or is issued at once for a null list.
void more_info_diagnostic(an_error_code code, const a_source_position* position, a_diag_list* list);
void more_info_type_diagnostic(an_error_code code, const a_source_position* position,
                               const a_type* type, a_diag_list* list);
void more_info_type2_diagnostic(an_error_code code, const a_source_position* position,
                                const a_type* type, const a_type* type2, a_diag_list* list);
void more_info_sym_diagnostic(an_error_code code, const a_source_position* position,
                              const a_symbol* symbol, a_diag_list* list);
void more_info_sym_type_diagnostic(an_error_code code, const a_source_position* position,
                                   const a_symbol* symbol, const a_type* type, a_diag_list* list);
void more_info_sym2_diagnostic(an_error_code code, const a_source_position* position,
                               const a_symbol* symbol, const a_symbol* symbol2, a_diag_list* list);
void more_info_num_diagnostic(an_error_code code, const a_source_position* position, long number,
                              a_diag_list* list);
void more_info_num2_diagnostic(an_error_code code, const a_source_position* position, long number,
                               long number2, a_diag_list* list);
// Moves the notes of `list` into `diag`; the list is empty afterwards.
void add_more_info_list(a_diagnostic* diag, a_diag_list* list);
void discard_more_info_list(a_diag_list* list);

// -- Severities ----------------------------------------------------------------

// The greatest number of the catalogue that may be given by number.
inline constexpr an_error_code last_error_number = 3189;

// Sets the severity of a number or a tag: es_once reports it at most once,
// es_none restores the default. `set_default` makes it the default too. With a
// position, it holds for the source from there on. The first returns true for a
// number out of 1 to last_error_number, the second for an unknown tag.
bool set_severity_for_error_number(long number, an_error_severity severity,
                                   const a_source_position* position, bool set_default);
bool set_severity_for_error_tag(const char* tag, an_error_severity severity,
                                const a_source_position* position, bool set_default);

// The severity after the plain override table, without source ranges.
void reported_error_severity(an_error_code code, an_error_severity severity,
                             an_error_severity* out);
// Whether the diagnostic would count as an error.
bool is_effective_error(an_error_code code, an_error_severity severity,
                        const a_source_position* position);
// Whether the diagnostic would reach the threshold.
bool is_effective_diagnostic(an_error_code code, an_error_severity severity,
                             const a_source_position* position);
// Whether the diagnostic is a failure when it arises in a substitution.
bool is_effective_sfinae_error(an_error_code code, an_error_severity severity,
                               const a_source_position* position);
// Whether a MISRA or power advice check need be made: its number isn't suppressed.
bool misra_c_2004_generate_diagnostic(an_error_code code, an_error_severity severity);
bool nrg_generate_diagnostic(an_error_code code, an_error_severity severity);
bool treat_as_warning(an_error_code code);
bool treat_as_none(an_error_code code);

// Differences between translation units are entered once and not said again.
void record_prototype_diagnostic(an_error_code code, an_error_severity severity,
                                 const a_source_position* position);
bool find_prototype_diagnostic(an_error_code code, an_error_severity severity,
                               const a_source_position* position);

// The actions of #pragma diag_suppress, diag_remark, diag_warning, diag_error,
// diag_once and diag_default, which set the severity of the listed tags and
// numbers from their places on, and of diag_push and diag_pop, which save all
// severities and bring them back.
void diag_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void diag_push_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);
void diag_pop_pragma(a_pending_pragma* pragma, a_symbol* symbol, a_statement* statement);

// -- Texts -----------------------------------------------------------------------

// The catalogue text of a number; null for a number that is never issued.
const char* error_text(an_error_code code);
// The number of a tag, or -1.
an_error_code error_number_for_tag(const char* tag);
// A text of the catalogue as a printf format with the primary source file's
// name and `string`, on f_error, unless such messages are suppressed.
void pch_message(an_error_code code, const char* string);
// The name of a symbol as diagnostics and listings show it.
void form_symbol_name(const a_symbol* symbol, an_il_to_str_control* control);
// The text of a type outside of diagnostics; valid until the next call.
const char* format_type_string(const a_type* type, size_t* out_length);

// -- Files -----------------------------------------------------------------------

// The open functions below return a null stream for a failure of a kind that
// `tolerated` allows, and report any other as `severity` 11 (12 with
// report_as_command_line_error). `kind` is the number of the text that names
// the kind of file.
enum a_tolerated_open_result : unsigned {
  tolerate_nothing = 0,
  tolerate_not_found = 1,
  tolerate_other_error = 2,
  tolerate_not_a_regular_file = 4,
  tolerate_directory = 8,
  report_as_command_line_error = 16
};

// Why a file could not be opened; null for one that isn't there.
const char* open_failure_reason(const an_open_file_result& result);
// Reports a file that can't be opened, for the reason in `result`.
void file_open_error(an_error_severity severity, an_error_code kind, const char* name,
                     const an_open_file_result* result);
[[noreturn]] void output_file_open_error(bool is_invalid_name, an_error_code kind, const char* name,
                                         an_error_severity severity);
// A failed write to the file whose kind `kind` names; `errno_value` may be 0.
[[noreturn]] void file_write_error(an_error_code kind, int errno_value);
[[noreturn]] void named_file_write_error(const char* kind, int errno_value);
// True when the file was opened.
bool open_source_file_with_error_handling(const char* name, a_source_text* text, unsigned tolerated,
                                          an_error_code kind);
FILE* open_input_file_with_error_handling(const char* name, bool binary, unsigned tolerated,
                                          an_error_code kind);
FILE* open_output_file_with_error_handling(const char* name, bool binary, bool update,
                                           unsigned tolerated, an_error_code kind);
// Clears `*file` and closes the stream; a stream that isn't open is no error.
void close_output_file_with_error_handling(FILE** file, an_error_code kind);
FILE* fopen_with_error(const char* name, const char* mode, an_error_code kind);

// -- The file index ----------------------------------------------------------------
//
// Bookmarks into each source file, by which an earlier line is found again.

void clear_file_index_list();
// Both return the line at which update_file_index is to be called next.
unsigned long initialize_file_index(a_source_file* file);
unsigned long update_file_index(a_source_file* file, unsigned long line, long offset);

// -- Initialisation ------------------------------------------------------------------

void error_early_init();
void error_one_time_init();
void error_trans_unit_init();
void error_init();

#endif
