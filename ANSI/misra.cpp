#include "misra.h"

#include "error.h"
#include "mode_words.h"
#include "rule_list.h"

#include <cstring>
#include <string_view>

namespace {

struct a_rule_row {
  int rule;
  int subrule;
  a_misra_rule_kind kind;
  an_error_code code;
  an_error_code variant_code; // 0: the same
};

const a_rule_row rule_rows[] = {
#define MISRA_RULE(rule, subrule, kind, code, variant_code)                                        \
  {rule, subrule, kind, code, variant_code},
#include "misra_rules.def"
#undef MISRA_RULE
};

an_error_severity severity_of_kind(a_misra_rule_kind kind) {
  if (kind == mrk_fixed)
    return es_error;
  return kind == mrk_required ? misra_required_severity : misra_advisory_severity;
}

// Which rules change, and how.
struct a_rule_change {
  const a_source_position* position;
  bool from_command_line;
  bool is_reset;
};

struct a_rule_block {
  int first_rule;
  int last_rule;
  int first_subrule;
  int last_subrule;
  bool required;
  bool advisory;
};

constexpr a_rule_block whole_grid = {0, misra_last_rule, 0, misra_last_subrule, true, true};

bool block_holds(const a_rule_block& block, const a_rule_row& row) {
  bool is_of_kind = row.kind == mrk_advisory ? block.advisory : block.required;
  return is_of_kind && row.rule >= block.first_rule && row.rule <= block.last_rule &&
         row.subrule >= block.first_subrule && row.subrule <= block.last_subrule;
}

void set_rule_severity(const a_rule_row& row, an_error_severity severity,
                       const a_source_position* position, bool from_command_line) {
  set_severity_for_error_number(row.code, severity, position, from_command_line);
  if (row.variant_code != 0)
    set_severity_for_error_number(row.variant_code, severity, position, from_command_line);
}

void misra_c_2004_set_rules(const a_rule_block& block, bool enable, const a_rule_change& change) {
  for (const a_rule_row& row : rule_rows) {
    if (!block_holds(block, row))
      continue;
    an_error_severity severity = es_suppressed;
    if (enable)
      severity = change.is_reset ? es_none : severity_of_kind(row.kind);
    set_rule_severity(row, severity, change.position, change.from_command_line);
  }
}

a_rule_block block_of_item(const a_rule_item& item) {
  a_rule_block block = whole_grid;
  if (item.kind == rik_required)
    block.advisory = false;
  if (item.kind == rik_advisory)
    block.required = false;
  if (item.kind != rik_numbers)
    return block;
  block.first_rule = item.first_rule;
  block.last_rule = item.last_rule;
  if (item.has_subrules) {
    block.first_subrule = item.first_subrule;
    block.last_subrule = item.last_subrule;
  }
  return block;
}

bool obey_item(const a_rule_item& item, void* data) {
  const auto& change = *static_cast<const a_rule_change*>(data);
  if (change.is_reset && (item.is_negated || item.kind == rik_none))
    return false;
  bool enable = (item.kind == rik_none) == item.is_negated;
  misra_c_2004_set_rules(block_of_item(item), enable, change);
  return true;
}

} // namespace

an_error_code misra_rule_code(int rule, int subrule, an_error_severity* severity,
                              a_misra_rule_kind* kind, bool variant) {
  for (const a_rule_row& row : rule_rows) {
    if (row.rule != rule || row.subrule != subrule)
      continue;
    *kind = row.kind;
    *severity = severity_of_kind(row.kind);
    return variant && row.variant_code != 0 ? row.variant_code : row.code;
  }
  return 0;
}

void process_check_misra(const char* list, const a_source_position* position, a_boolean* is_bad,
                         bool from_command_line, bool is_reset) {
  check_misra_c_2004 = 1;
  a_rule_change change = {position, from_command_line, is_reset};
  if (!obey_rule_list(list, obey_item, &change))
    *is_bad = 1;
}

void process_misra_severity(a_misra_rule_kind kind, const char* text,
                            const a_source_position* position) {
  an_error_severity severity = es_suppressed;
  if (strcmp(text, "error") == 0)
    severity = es_discretionary_error;
  else if (strcmp(text, "warning") == 0)
    severity = es_warning;
  else if (strcmp(text, "remark") == 0)
    severity = es_remark;
  (kind == mrk_required ? misra_required_severity : misra_advisory_severity) = severity;
  for (const a_rule_row& row : rule_rows)
    if (row.kind == kind && !treat_as_none(row.code))
      set_rule_severity(row, severity, position, true);
}

void misra_check_header_name(const char* text, size_t length, char closing_delimiter) {
  // The behaviour of these isn't defined (C90 6.1.7).
  std::string_view name(text, length);
  const char* bad_characters = closing_delimiter == '>' ? "\"'\\" : "'\\";
  if (name.find_first_of(bad_characters) != name.npos || name.find("/*") != name.npos)
    pos_diagnostic(misra_advisory_severity, ec_misra_c_2004_19_2, &error_position);
}

void misra_wrapup() {
  // No finding waits for the end of the unit.
}

void misra_early_init() {
  misra_c_2004_set_rules(whole_grid, false, {nullptr, true, false});
}

void misra_one_time_init() {
  // No variable of this module is kept for each unit.
}
