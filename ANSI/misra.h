// The checks of the MISRA-C:2004 rules.

#ifndef MISRA_H
#define MISRA_H

#include "basics.h"

// How a rule's severity is set: by the option for required rules, never (it is
// an error), or by the option for advisory ones.
enum a_misra_rule_kind : uint8_t {
  mrk_none = 0,
  mrk_required = 1,
  mrk_fixed = 2,
  mrk_advisory = 3
};

// The grid: rules 1 to 20, subrules 1 to 17.
inline constexpr int misra_last_rule = 20;
inline constexpr int misra_last_subrule = 17;

// The diagnostic of a rule, 0 when there is no such rule; `variant` asks for the
// second form of the message. `severity` and `kind` tell how it is reported.
an_error_code misra_rule_code(int rule, int subrule, an_error_severity* severity,
                              a_misra_rule_kind* kind, bool variant);

// Switches checks on, and the rules that the list names on or off. `position`
// is null for the command line. `is_reset` brings back the severities from
// before. `*is_bad` is set for a list with a bad item, whose other items take
// effect.
void process_check_misra(const char* list, const a_source_position* position, a_boolean* is_bad,
                         bool from_command_line, bool is_reset);

// Gives all rules of a kind that are on a severity: "error", "warning",
// "remark", or none for any other text.
void process_misra_severity(a_misra_rule_kind kind, const char* text,
                            const a_source_position* position);

// Rule 19.2: the characters of a header name, whose delimiters don't count. The
// report goes to the current error position.
void misra_check_header_name(const char* text, size_t length, char closing_delimiter);

// How many levels of pointers the type has, arrays of arrays counting as one
// level. Arrays of known bound count only with `count_all_arrays`.
int misra_get_pointer_depth(const a_type* type, bool count_all_arrays);

// Reports what only the whole unit can show.
void misra_wrapup();

void misra_early_init();
void misra_one_time_init();

#endif
