#include "pp_output.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "il.h"

void finish_raw_listing_file() {
  if (f_raw_listing == nullptr)
    return;
  FILE* file = f_raw_listing;
  f_raw_listing = nullptr;
  int error_number;
  if (!close_output_file(file, &error_number))
    return;
  str_catastrophe(ec_file_write_error, "raw listing");
}

void gen_pp_output_for_macro_definitions() {
  for (const a_macro* macro = il_header.macros; macro != nullptr; macro = macro->next)
    if (!macro->is_undef)
      fprintf(f_pp_output, "#define %s\n", macro->text);
}
