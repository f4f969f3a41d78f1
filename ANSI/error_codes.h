// The numbers of the diagnostic catalogue by their tags: ec_exp_semicolon is 66.

#ifndef ERROR_CODES_H
#define ERROR_CODES_H

enum an_error_tag : int {
#define DIAG(number, tag, text) ec_##tag = number,
#define TEXT(number, text)
#include "error_catalogue.def"
#undef DIAG
#undef TEXT
};

// The numbers of the texts that name kinds of files, for the reports of those
// that can't be opened or written.
enum a_file_kind : int {
  fk_error_output = 1772,
  fk_pp_output = 1787,
  fk_raw_listing = 1788,
  fk_xref = 1789,
  // The parts of the IL file.
  fk_il_heading = 1790,
  fk_il_counts = 1791,
  fk_il_header = 1792,
  fk_il_orphaned_lists = 1793,
  fk_il_region = 1794,
  fk_il_block = 1795,
  fk_il_block_bytes = 1796,
  fk_il_index = 1797,
  fk_il_position = 1798,
  fk_predefined_macro = 1968,
  fk_source = 1971,
  fk_il_output = ec_il_output
};

#endif
