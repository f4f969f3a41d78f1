// The entry points of the diagnostic engine, named by their arguments: each
// creates a diagnostic, adds its arguments in order and issues it.

#include <cerrno>
#include <cstring>

#include "cfe.h"
#include "error_int.h"
#include "lexical.h"

namespace {

template <class... Arguments>
a_diagnostic* open_diagnostic(an_error_severity severity, an_error_code code,
                              const a_source_position* position, Arguments... arguments) {
  a_diagnostic* diag = create_diagnostic(severity, code, position);
  (add_argument(diag, arguments), ...);
  return diag;
}

template <class... Arguments>
void report(an_error_severity severity, an_error_code code, const a_source_position* position,
            Arguments... arguments) {
  issue_diagnostic(open_diagnostic(severity, code, position, arguments...));
}

template <class... Arguments>
[[noreturn]] void report_catastrophe(an_error_severity severity, an_error_code code,
                                     const a_source_position* position, Arguments... arguments) {
  report(severity, code, position, arguments...);
  exit_compilation(es_internal_error);
}

void report_with_optional_types(an_error_severity severity, an_error_code code,
                                const a_source_position* position, const a_type* type,
                                const a_type* type2) {
  if (text_takes_arguments(error_text(code))) {
    report(severity, code, position, type, type2);
  } else {
    report(severity, code, position);
  }
}

// Creates a note; a null list has it issued at once.
template <class... Arguments>
void report_note(an_error_code code, const a_source_position* position, a_diag_list* list,
                 Arguments... arguments) {
  a_diagnostic* note = open_diagnostic(es_note, code, position, arguments...);
  if (list) {
    append_diagnostic(list, note);
  } else {
    issue_diagnostic(note);
  }
}

// The place of diagnostics about the command line.
constexpr a_source_position command_line_position = {0, 1, 0};

} // namespace

void diagnostic(an_error_severity severity, an_error_code code) {
  report(severity, code, &error_position);
}

void pos_diagnostic(an_error_severity severity, an_error_code code,
                    const a_source_position* position) {
  report(severity, code, position);
}

void pos_st_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const char* string) {
  report(severity, code, position, string);
}

void pos_ty_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const a_type* type) {
  report(severity, code, position, type);
}

void pos_ty2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_type* type,
                        const a_type* type2) {
  report(severity, code, position, type, type2);
}

void pos_sy_diagnostic(an_error_severity severity, an_error_code code,
                       const a_source_position* position, const a_symbol* symbol) {
  report(severity, code, position, symbol);
}

void pos2_diagnostic(an_error_severity severity, an_error_code code,
                     const a_source_position* position, const a_source_position* position2) {
  report(severity, code, position, position2);
}

void pos2_ty_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_source_position* position2,
                        const a_type* type) {
  report(severity, code, position, position2, type);
}

void pos2_sy_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_source_position* position2,
                        const a_symbol* symbol) {
  report(severity, code, position, position2, symbol);
}

void pos_sy_ty2_diagnostic(an_error_severity severity, an_error_code code,
                           const a_source_position* position, const a_symbol* symbol,
                           const a_type* type, const a_type* type2) {
  report(severity, code, position, symbol, type, type2);
}

void pos_sy2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const a_symbol* symbol,
                        const a_symbol* symbol2) {
  report(severity, code, position, symbol, symbol2);
}

void sym_diagnostic(an_error_severity severity, an_error_code code, const a_symbol* symbol) {
  report(severity, code, &error_position, symbol);
}

void pos_syty_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const a_symbol* symbol,
                         const a_type* type) {
  report(severity, code, position, symbol, type);
}

void pos_stsy_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const char* string,
                         const a_symbol* symbol) {
  report(severity, code, position, string, symbol);
}

void pos_stty_diagnostic(an_error_severity severity, an_error_code code,
                         const a_source_position* position, const char* string,
                         const a_type* type) {
  report(severity, code, position, string, type);
}

void pos_st2_diagnostic(an_error_severity severity, an_error_code code,
                        const a_source_position* position, const char* string,
                        const char* string2) {
  report(severity, code, position, string, string2);
}

void pos_stty2_diagnostic(an_error_severity severity, an_error_code code,
                          const a_source_position* position, const char* string, const a_type* type,
                          const a_type* type2) {
  report(severity, code, position, string, type, type2);
}

void pos_st2ty_diagnostic(an_error_severity severity, an_error_code code,
                          const a_source_position* position, const char* string,
                          const char* string2, const a_type* type) {
  report(severity, code, position, string, string2, type);
}

void pos_st2_sy_diagnostic(an_error_severity severity, an_error_code code,
                           const a_source_position* position, const char* string,
                           const char* string2, const a_symbol* symbol) {
  report(severity, code, position, string, string2, symbol);
}

void pos_st3_sy2_diagnostic(an_error_severity severity, an_error_code code,
                            const a_source_position* position, const char* string,
                            const char* string2, const char* string3, const a_symbol* symbol,
                            const a_symbol* symbol2) {
  report(severity, code, position, string, string2, string3, symbol, symbol2);
}

void pos_remark(an_error_code code, const a_source_position* position) {
  report(es_remark, code, position);
}

void pos_st_remark(an_error_code code, const a_source_position* position, const char* string) {
  report(es_remark, code, position, string);
}

void str_remark(an_error_code code, const char* string) {
  report(es_remark, code, &error_position, string);
}

void pos_ty_remark(an_error_code code, const a_source_position* position, const a_type* type) {
  report(es_remark, code, position, type);
}

void pos_sy_remark(an_error_code code, const a_source_position* position, const a_symbol* symbol) {
  report(es_remark, code, position, symbol);
}

void sym_remark(an_error_code code, const a_symbol* symbol) {
  report(es_remark, code, &error_position, symbol);
}

void pos_stsy_remark(an_error_code code, const a_source_position* position, const char* string,
                     const a_symbol* symbol) {
  report(es_remark, code, position, string, symbol);
}

void pos_warning(an_error_code code, const a_source_position* position) {
  report(es_warning, code, position);
}

void pos_st_warning(an_error_code code, const a_source_position* position, const char* string) {
  report(es_warning, code, position, string);
}

void str_warning(an_error_code code, const char* string) {
  report(es_warning, code, &error_position, string);
}

void pos_ty_warning(an_error_code code, const a_source_position* position, const a_type* type) {
  report(es_warning, code, position, type);
}

void pos_ty2_warning(an_error_code code, const a_source_position* position, const a_type* type,
                     const a_type* type2) {
  report(es_warning, code, position, type, type2);
}

void pos_opt_ty2_warning(an_error_code code, const a_source_position* position, const a_type* type,
                         const a_type* type2) {
  report_with_optional_types(es_warning, code, position, type, type2);
}

void type_warning(an_error_code code, const a_type* type) {
  report(es_warning, code, &error_position, type);
}

void pos_syty_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                      const a_type* type) {
  report(es_warning, code, position, symbol, type);
}

void pos_sy_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol) {
  report(es_warning, code, position, symbol);
}

void pos_sy2_warning(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                     const a_symbol* symbol2) {
  report(es_warning, code, position, symbol, symbol2);
}

void sym_warning(an_error_code code, const a_symbol* symbol) {
  report(es_warning, code, &error_position, symbol);
}

void pos_stsy_warning(an_error_code code, const a_source_position* position, const char* string,
                      const a_symbol* symbol) {
  report(es_warning, code, position, string, symbol);
}

void pos_stty_warning(an_error_code code, const a_source_position* position, const char* string,
                      const a_type* type) {
  report(es_warning, code, position, string, type);
}

void pos_ststst_warning(an_error_code code, const a_source_position* position, const char* string,
                        const char* string2, const char* string3) {
  report(es_warning, code, position, string, string2, string3);
}

void pos_error(an_error_code code, const a_source_position* position) {
  report(es_error, code, position);
}

void pos_st_error(an_error_code code, const a_source_position* position, const char* string) {
  report(es_error, code, position, string);
}

void pos_st2_error(an_error_code code, const a_source_position* position, const char* string,
                   const char* string2) {
  report(es_error, code, position, string, string2);
}

void pos_st2ty_error(an_error_code code, const a_source_position* position, const char* string,
                     const char* string2, const a_type* type) {
  report(es_error, code, position, string, string2, type);
}

void pos_stty_error(an_error_code code, const a_source_position* position, const char* string,
                    const a_type* type) {
  report(es_error, code, position, string, type);
}

void str_error(an_error_code code, const char* string) {
  report(es_error, code, &error_position, string);
}

void pos_ty_error(an_error_code code, const a_source_position* position, const a_type* type) {
  report(es_error, code, position, type);
}

void pos_ty2_error(an_error_code code, const a_source_position* position, const a_type* type,
                   const a_type* type2) {
  report(es_error, code, position, type, type2);
}

void pos_ty_str_error(an_error_code code, const a_source_position* position, const a_type* type,
                      const char* string) {
  report(es_error, code, position, type, string);
}

void pos_opt_ty2_error(an_error_code code, const a_source_position* position, const a_type* type,
                       const a_type* type2) {
  report_with_optional_types(es_error, code, position, type, type2);
}

void type_error(an_error_code code, const a_type* type) {
  report(es_error, code, &error_position, type);
}

void pos_stsy_error(an_error_code code, const a_source_position* position, const char* string,
                    const a_symbol* symbol) {
  report(es_error, code, position, string, symbol);
}

void pos_sy_error(an_error_code code, const a_source_position* position, const a_symbol* symbol) {
  report(es_error, code, position, symbol);
}

void pos_sy2_error(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                   const a_symbol* symbol2) {
  report(es_error, code, position, symbol, symbol2);
}

void pos_syty_error(an_error_code code, const a_source_position* position, const a_symbol* symbol,
                    const a_type* type) {
  report(es_error, code, position, symbol, type);
}

void sym_error(an_error_code code, const a_symbol* symbol) {
  report(es_error, code, &error_position, symbol);
}

void catastrophe(an_error_code code) {
  report_catastrophe(es_catastrophe, code, &error_position);
}

void str_catastrophe(an_error_code code, const char* string) {
  report_catastrophe(es_catastrophe, code, &error_position, string);
}

void pos_st_catastrophe(an_error_code code, const a_source_position* position, const char* string) {
  report_catastrophe(es_catastrophe, code, position, string);
}

void pos_str2_catastrophe(an_error_code code, const a_source_position* position, const char* string,
                          const char* string2) {
  report_catastrophe(es_catastrophe, code, position, string, string2);
}

void str_errno_catastrophe(an_error_code code, const char* string, int errno_value) {
  report_catastrophe(es_catastrophe, code, &error_position, string, strerror(errno_value));
}

a_diagnostic* pos_start_diagnostic(an_error_severity severity, an_error_code code,
                                   const a_source_position* position) {
  return open_diagnostic(severity, code, position);
}

a_diagnostic* pos_ty_start_diagnostic(an_error_severity severity, an_error_code code,
                                      const a_source_position* position, const a_type* type) {
  return open_diagnostic(severity, code, position, type);
}

a_diagnostic* pos_sy_start_diagnostic(an_error_severity severity, an_error_code code,
                                      const a_source_position* position, const a_symbol* symbol) {
  return open_diagnostic(severity, code, position, symbol);
}

a_diagnostic* pos_start_error(an_error_code code, const a_source_position* position) {
  return open_diagnostic(es_error, code, position);
}

a_diagnostic* pos_st_start_error(an_error_code code, const a_source_position* position,
                                 const char* string) {
  return open_diagnostic(es_error, code, position, string);
}

a_diagnostic* pos_ty_start_error(an_error_code code, const a_source_position* position,
                                 const a_type* type) {
  return open_diagnostic(es_error, code, position, type);
}

a_diagnostic* pos_ty2_start_error(an_error_code code, const a_source_position* position,
                                  const a_type* type, const a_type* type2) {
  return open_diagnostic(es_error, code, position, type, type2);
}

a_diagnostic* pos_sy_start_error(an_error_code code, const a_source_position* position,
                                 const a_symbol* symbol) {
  return open_diagnostic(es_error, code, position, symbol);
}

a_diagnostic* pos_stsy_start_error(an_error_code code, const a_source_position* position,
                                   const char* string, const a_symbol* symbol) {
  return open_diagnostic(es_error, code, position, string, symbol);
}

void command_line_error(an_error_code code) {
  report_catastrophe(es_command_line_error, code, &command_line_position);
}

void str_command_line_error(an_error_code code, const char* string) {
  report_catastrophe(es_command_line_error, code, &command_line_position, string);
}

void str_command_line_warning(an_error_code code, const char* string) {
  report(es_command_line_warning, code, &command_line_position, string);
}

a_diagnostic* start_command_line_error(an_error_code code, const char* string) {
  return open_diagnostic(es_command_line_error, code, &command_line_position, string);
}

void end_command_line_error(a_diagnostic* diag) {
  issue_diagnostic(diag);
  exit_compilation(es_internal_error);
}

void misra_command_line_diagnostic(an_error_severity severity, an_error_code code,
                                   const char* string) {
  if (misra_c_2004_generate_diagnostic(code, severity)) {
    str_command_line_error(code, string);
  }
}

void internal_error(const char* text) {
  report_catastrophe(es_internal_error, vc_string, &error_position, text);
}

void embedded_cplusplus_noncompliance_diagnostic(const a_source_position* position,
                                                 an_error_code code) {
  report(es_discretionary_error, code, position);
}

void syntax_error(an_error_code code) {
  report(es_error, code, &error_position);
  flush_tokens();
}

void add_diag_info(a_diagnostic* diag, an_error_code code) {
  create_child_diagnostic(diag, dk_add_on, code);
}

void str_add_diag_info(a_diagnostic* diag, an_error_code code, const char* string) {
  add_argument(create_child_diagnostic(diag, dk_add_on, code), string);
}

void copy_str_add_diag_info(a_diagnostic* diag, an_error_code code, const char* string) {
  a_diagnostic* line = create_child_diagnostic(diag, dk_add_on, code);
  add_argument(line, string);
  own_argument_strings(line);
}

void ty_add_diag_info(a_diagnostic* diag, an_error_code code, const a_type* type) {
  add_argument(create_child_diagnostic(diag, dk_add_on, code), type);
}

void sym_add_diag_info(a_diagnostic* diag, an_error_code code, const a_symbol* symbol) {
  add_argument(create_child_diagnostic(diag, dk_add_on, code), symbol);
}

void add_diag_info_with_pos_insert(a_diagnostic* diag, an_error_code code,
                                   const a_source_position* position) {
  add_argument(create_child_diagnostic(diag, dk_add_on, code), position);
}

void end_diagnostic(a_diagnostic* diag) {
  issue_diagnostic(diag);
}

void more_info_diagnostic(an_error_code code, const a_source_position* position,
                          a_diag_list* list) {
  report_note(code, position, list);
}

void more_info_type_diagnostic(an_error_code code, const a_source_position* position,
                               const a_type* type, a_diag_list* list) {
  report_note(code, position, list, type);
}

void more_info_type2_diagnostic(an_error_code code, const a_source_position* position,
                                const a_type* type, const a_type* type2, a_diag_list* list) {
  report_note(code, position, list, type, type2);
}

void more_info_sym_diagnostic(an_error_code code, const a_source_position* position,
                              const a_symbol* symbol, a_diag_list* list) {
  report_note(code, position, list, symbol);
}

void more_info_sym_type_diagnostic(an_error_code code, const a_source_position* position,
                                   const a_symbol* symbol, const a_type* type, a_diag_list* list) {
  report_note(code, position, list, symbol, type);
}

void more_info_sym2_diagnostic(an_error_code code, const a_source_position* position,
                               const a_symbol* symbol, const a_symbol* symbol2, a_diag_list* list) {
  report_note(code, position, list, symbol, symbol2);
}

void more_info_num_diagnostic(an_error_code code, const a_source_position* position, long number,
                              a_diag_list* list) {
  report_note(code, position, list, number);
}

void more_info_num2_diagnostic(an_error_code code, const a_source_position* position, long number,
                               long number2, a_diag_list* list) {
  report_note(code, position, list, number, number2);
}

void add_more_info_list(a_diagnostic* diag, a_diag_list* list) {
  while (a_diagnostic* note = list->head) {
    list->head = note->next;
    note->parent = diag;
    append_diagnostic(&diag->more_info_list, note);
  }
  list->tail = nullptr;
}

void discard_more_info_list(a_diag_list* list) {
  while (a_diagnostic* note = list->head) {
    list->head = note->next;
    free_diagnostic(note);
  }
  list->tail = nullptr;
}
