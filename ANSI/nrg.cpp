#include "nrg.h"

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

} // namespace

an_error_severity nrg_severity = es_suppressed;

an_error_code nrg_offset_to_error_code(int rule, int subrule, an_error_severity* severity,
                                       bool variant) {
  for (const a_rule_row& row : rule_rows) {
    if (row.rule != rule || row.subrule != subrule)
      continue;
    *severity = row.severity_set_by_option ? nrg_severity : es_suppressed;
    return variant ? row.variant_code : row.code;
  }
  return 0;
}

void nrg_wrapup() {
  // No finding waits for the end of the unit.
}
