#include "nrg.h"

#include "error.h"
#include "mode_words.h"
#include "rule_list.h"

#include <cstring>

an_error_severity nrg_severity = es_lower_remark;

namespace {

struct a_rule_row {
  int rule;
  int subrule;
  an_error_code code;
  an_error_code variant_code;
  bool severity_set_by_option;
};

const a_rule_row rule_rows[] = {
    {1, 1, 1526, 0, true},      // no use of a low power mode
    {2, 1, 1527, 0, true},      // software delay loop
    {3, 1, 1528, 0, true},      // flag polling
    {4, 1, 1529, 0, true},      // uninitialised port
    {5, 1, 1530, 0, false},     // divide or modulo
    {5, 2, 1531, 0, true},      // floating point
    {5, 3, 1532, 0, true},      // formatted output
    {5, 4, 2623, 0, false},     // assignment to a narrow type
    {6, 1, 1533, 0, false},     // multiplication without a multiplier
    {6, 2, 2592, 0, false},     // 32-bit multiplier
    {6, 3, 2633, 0, false},     // unused accelerator
    {7, 1, 1534, 0, true},      // global used within one function
    {8, 1, 1535, 1536, false},  // variable that never changes
    {9, 1, 1537, 0, false},     // large parameter by value
    {10, 1, 1538, 0, false},    // call in an interrupt routine
    {11, 1, 1539, 0, false},    // high bits compared in a loop
    {11, 2, 1540, 0, false},    // high bits assigned in a loop
    {12, 1, 1541, 1542, true},  // long memcpy
    {12, 2, 1543, 0, true},     // loop that copies
    {13, 1, 1544, 0, false},    // loop that counts up
    {14, 1, 1545, 2553, false}, // signed index
    {15, 1, 1546, 0, false},    // bit-fields assigned in a row
};

an_error_severity severity_of_row(const a_rule_row& row) {
  return row.severity_set_by_option ? nrg_severity : es_suppressed;
}

struct a_rule_change {
  const a_source_position* position;
  bool from_command_line;
  bool is_reset;
};

void set_row_severity(const a_rule_row& row, an_error_severity severity,
                      const a_source_position* position, bool from_command_line) {
  set_severity_for_error_number(row.code, severity, position, from_command_line);
  if (row.variant_code != 0)
    set_severity_for_error_number(row.variant_code, severity, position, from_command_line);
}

bool item_holds(const a_rule_item& item, const a_rule_row& row) {
  if (item.kind != rik_numbers)
    return true;
  return row.rule >= item.first_rule && row.rule <= item.last_rule &&
         (!item.has_subrules ||
          (row.subrule >= item.first_subrule && row.subrule <= item.last_subrule));
}

bool obey_item(const a_rule_item& item, void* data) {
  const auto& change = *static_cast<const a_rule_change*>(data);
  if (item.kind == rik_required || item.kind == rik_advisory)
    return false;
  if (change.is_reset && (item.is_negated || item.kind == rik_none))
    return false;
  bool enable = (item.kind == rik_none) == item.is_negated;
  for (const a_rule_row& row : rule_rows) {
    if (!item_holds(item, row))
      continue;
    an_error_severity severity = es_suppressed;
    if (enable)
      severity = change.is_reset ? es_none : severity_of_row(row);
    set_row_severity(row, severity, change.position, change.from_command_line);
  }
  return true;
}

} // namespace

an_error_code nrg_offset_to_error_code(int rule, int subrule, an_error_severity* severity,
                                       bool variant) {
  for (const a_rule_row& row : rule_rows) {
    if (row.rule != rule || row.subrule != subrule)
      continue;
    *severity = severity_of_row(row);
    return variant ? row.variant_code : row.code;
  }
  return 0;
}

void process_check_nrg(const char* list, a_boolean* is_bad, const a_source_position* position,
                       bool from_command_line, bool is_reset) {
  check_nrg = 1;
  a_rule_change change = {position, from_command_line, is_reset};
  if (!obey_rule_list(list, obey_item, &change))
    *is_bad = 1;
}

void process_nrg_severity(const char* text, const a_source_position* position) {
  nrg_severity = es_suppressed;
  if (strcmp(text, "error") == 0)
    nrg_severity = es_discretionary_error;
  else if (strcmp(text, "warning") == 0)
    nrg_severity = es_warning;
  else if (strcmp(text, "remark") == 0)
    nrg_severity = es_lower_remark;
  for (const a_rule_row& row : rule_rows)
    if (!treat_as_none(row.code))
      set_row_severity(row, nrg_severity, position, true);
}

void process_nrg_standalone_mode(const char* text) {
  nrg_standalone = 1;
  nrg_standalone_iar = strcmp(text, "iar") == 0;
  nrg_standalone_gcc = strcmp(text, "gcc") == 0;
}

void nrg_wrapup() {
  // No finding waits for the end of the unit.
}
