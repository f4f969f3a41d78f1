#include "ah_back_end.h"

#include "cfe.h"
#include "error.h"
#include "host_envir.h"
#include "mode_words.h"

void ah_back_end() {
  if (ah_file_name == nullptr)
    ah_file_name = derived_name(primary_source_file_name, ".ah");
  FILE* stream = open_output_file_with_error_handling(ah_file_name, false, false, tolerate_nothing,
                                                      fk_il_output);
  close_output_file_with_error_handling(&stream, fk_il_output);
}
