// The settings and counts of the diagnostic engine, the catalogue, and the
// severity of each number: call site, override table, source ranges.

#include "error.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "cmd_line.h"
#include "error_int.h"
#include "mode_words.h"

a_source_position error_position;

an_error_severity error_threshold;
unsigned long error_limit;
unsigned long context_limit;
a_boolean brief_diagnostics;
a_boolean do_not_wrap_diagnostics;
a_boolean display_error_number;
a_boolean display_error_context_on_catastrophe;
a_boolean display_template_typedefs_in_diagnostics;
a_boolean warning_as_error_mode;

an_error_severity strict_ansi_error_severity;
an_error_severity strict_ansi_discretionary_severity;
an_error_severity anachronism_error_severity;
an_error_severity misra_required_severity;
an_error_severity misra_advisory_severity;

unsigned long total_errors;
unsigned long total_warnings;
unsigned long total_remarks;
unsigned long total_catastrophes;

namespace {

// One stretch of the source from which on a number has a severity. The first
// record of a list has the null position and the severity of the options, so
// that the text before the first pragma keeps it.
struct a_severity_range {
  a_severity_range* next;
  a_source_position position;
  an_error_severity severity;
};

typedef std::array<an_error_severity, error_table_size> a_severity_table;

a_severity_table error_severity_override; // es_none: the call site's severity
a_severity_table error_severity_default;  // what the options established
std::array<uint8_t, error_table_size> error_once_flag;
std::array<uint8_t, error_table_size> error_issued_flag;
std::array<a_severity_range*, error_table_size> error_severity_ranges_head;
std::array<a_severity_range*, error_table_size> error_severity_ranges_tail;

// The override table as it was at each open #pragma diag_push.
std::vector<a_severity_table> pushed_severities;

struct a_catalogue_row {
  int number;
  const char* text;
};

struct a_tag_row {
  const char* tag;
  int number;
};

constexpr a_catalogue_row catalogue_rows[] = {
#define DIAG(number, tag, text) {number, text},
#define TEXT(number, text) {number, text},
#include "error_catalogue.def"
#undef DIAG
#undef TEXT
};

constexpr a_tag_row catalogue_tags[] = {
#define DIAG(number, tag, text) {#tag, number},
#define TEXT(number, text)
#include "error_catalogue.def"
#undef DIAG
#undef TEXT
};

constexpr std::array<const char*, error_table_size> make_text_table() {
  std::array<const char*, error_table_size> table{};
  for (const a_catalogue_row& row : catalogue_rows) {
    table[row.number] = row.text;
  }
  return table;
}

constexpr std::array<const char*, error_table_size> error_text_table = make_text_table();

bool tag_is_before(const a_tag_row& a, const a_tag_row& b) {
  return strcmp(a.tag, b.tag) < 0;
}

// The tags in the order of strcmp, made at the first look-up.
const std::vector<a_tag_row>& sorted_tags() {
  static const std::vector<a_tag_row> tags = [] {
    std::vector<a_tag_row> result(std::begin(catalogue_tags), std::end(catalogue_tags));
    std::sort(result.begin(), result.end(), tag_is_before);
    return result;
  }();
  return tags;
}

bool is_before(const a_source_position& a, const a_source_position& b) {
  return a.seq != b.seq ? a.seq < b.seq : a.column < b.column;
}

void append_severity_range(an_error_code code, const a_source_position& position,
                           an_error_severity severity) {
  a_severity_range* range = new a_severity_range{nullptr, position, severity};
  if (error_severity_ranges_tail[code]) {
    error_severity_ranges_tail[code]->next = range;
  } else {
    error_severity_ranges_head[code] = range;
  }
  error_severity_ranges_tail[code] = range;
}

// The record of the number's range list that holds at the position.
const a_severity_range* find_severity_range(an_error_code code, const a_source_position& position) {
  const a_severity_range* found = nullptr;
  for (const a_severity_range* range = error_severity_ranges_head[code];
       range && !is_before(position, range->position); range = range->next) {
    found = range;
  }
  return found;
}

void clear_severity_ranges() {
  for (a_severity_range*& head : error_severity_ranges_head) {
    while (a_severity_range* range = head) {
      head = range->next;
      delete range;
    }
  }
  error_severity_ranges_tail.fill(nullptr);
}

an_error_severity as_error_if_warning(an_error_severity severity) {
  return severity == es_warning && warning_as_error_mode ? es_discretionary_error : severity;
}

// The severity of the call site and the override table alone.
an_error_severity overridden_severity(an_error_code code, an_error_severity severity) {
  if (severity >= es_error) {
    return severity;
  }
  an_error_severity override_value = error_severity_override[code];
  return override_value == es_none ? severity : override_value;
}

} // namespace

const char* error_text(an_error_code code) {
  return code >= 0 && code < error_table_size ? error_text_table[code] : nullptr;
}

an_error_code error_number_for_tag(const char* tag) {
  const std::vector<a_tag_row>& tags = sorted_tags();
  auto row = std::lower_bound(tags.begin(), tags.end(), a_tag_row{tag, 0}, tag_is_before);
  return row != tags.end() && strcmp(row->tag, tag) == 0 ? row->number : -1;
}

an_error_severity severity_at_position(an_error_code code, an_error_severity severity,
                                       const a_source_position* position) {
  if (severity >= es_error) {
    return severity;
  }
  an_error_severity result = error_severity_override[code];
  if (position && error_severity_ranges_head[code]) {
    // The list decides at its positions: es_none there is the severity of the
    // call site, whatever a later pragma has made of the table.
    result = find_severity_range(code, *position)->severity;
  }
  return as_error_if_warning(result == es_none ? severity : result);
}

void reported_error_severity(an_error_code code, an_error_severity severity,
                             an_error_severity* out) {
  *out = overridden_severity(code, severity);
}

bool is_effective_error(an_error_code code, an_error_severity severity,
                        const a_source_position* position) {
  return severity_at_position(code, severity, position) >= es_discretionary_error;
}

bool is_effective_diagnostic(an_error_code code, an_error_severity severity,
                             const a_source_position* position) {
  return severity_at_position(code, severity, position) >= error_threshold;
}

bool is_effective_sfinae_error(an_error_code code, an_error_severity severity,
                               const a_source_position* position) {
  if (diag_override_does_not_affect_sfinae) {
    return severity >= es_discretionary_error;
  }
  return is_effective_error(code, severity, position);
}

bool misra_c_2004_generate_diagnostic(an_error_code code, an_error_severity severity) {
  return overridden_severity(code, severity) != es_suppressed;
}

bool nrg_generate_diagnostic(an_error_code code, an_error_severity severity) {
  return misra_c_2004_generate_diagnostic(code, severity);
}

bool treat_as_warning(an_error_code code) {
  return error_severity_override[code] == es_warning;
}

bool treat_as_none(an_error_code code) {
  return error_severity_override[code] == es_suppressed;
}

bool set_severity_for_error_number(long number, an_error_severity severity,
                                   const a_source_position* position, bool set_default) {
  if (number < 1 || number > last_error_number) {
    return true;
  }
  an_error_code code = static_cast<an_error_code>(number);
  if (severity == es_once) {
    error_once_flag[code] = true;
    return false;
  }
  if (severity == es_none) {
    severity = error_severity_default[code];
  } else if (set_default) {
    error_severity_default[code] = severity;
  }
  error_severity_override[code] = severity;
  if (position) {
    if (!error_severity_ranges_head[code]) {
      append_severity_range(code, null_source_position, error_severity_default[code]);
    }
    append_severity_range(code, *position, severity);
  }
  return false;
}

bool set_severity_for_error_tag(const char* tag, an_error_severity severity,
                                const a_source_position* position, bool set_default) {
  an_error_code code = error_number_for_tag(tag);
  return code < 0 || set_severity_for_error_number(code, severity, position, set_default);
}

bool number_is_once_only(an_error_code code) {
  return error_once_flag[code];
}

bool number_was_issued(an_error_code code) {
  return error_issued_flag[code];
}

void note_number_issued(an_error_code code) {
  error_issued_flag[code] = true;
}

void push_severities() {
  pushed_severities.push_back(error_severity_override);
}

bool pop_severities(const a_source_position* position) {
  if (pushed_severities.empty()) {
    return false;
  }
  const a_severity_table& saved = pushed_severities.back();
  for (an_error_code code = 1; code <= last_error_number; ++code) {
    if (saved[code] != error_severity_override[code]) {
      set_severity_for_error_number(code, saved[code], position, false);
    }
  }
  pushed_severities.pop_back();
  return true;
}

void f_report_gnu_cpp11_extensions_if_needed(const a_source_position* position,
                                             an_error_code code) {
  if (!cmd_line_option_inhibits_gnu_cpp11_extension_warning(code) && !error_issued_flag[code] &&
      is_effective_diagnostic(code, es_warning, position)) {
    pos_warning(code, position);
  }
}

void error_early_init() {
  error_position = null_source_position;
  error_threshold = es_warning;
  error_limit = 100;
  context_limit = 10;
  brief_diagnostics = true;
  do_not_wrap_diagnostics = false;
  display_error_number = false;
  display_error_context_on_catastrophe = true;
  display_template_typedefs_in_diagnostics = false;
  warning_as_error_mode = false;
  strict_ansi_error_severity = es_warning;
  strict_ansi_discretionary_severity = es_warning;
  anachronism_error_severity = es_error;
  misra_required_severity = es_warning;
  misra_advisory_severity = es_warning;
  error_severity_override.fill(es_none);
  error_severity_default.fill(es_none);
  error_once_flag.fill(false);
  clear_severity_ranges();
  pushed_severities.clear();
  error_init();
}

void error_one_time_init() {}

void error_trans_unit_init() {}

void error_init() {
  total_errors = 0;
  total_warnings = 0;
  total_remarks = 0;
  total_catastrophes = 0;
  error_issued_flag.fill(false);
  clear_diagnostic_records();
  clear_issue_state();
  clear_file_index_list();
  forget_type_buffer();
}
