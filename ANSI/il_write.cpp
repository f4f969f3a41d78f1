#include "il_write.h"

#include "error.h"
#include "mode_words.h"

FILE* f_il;

void start_il_file() {
  // The heading is written together with the first region.
}

void finish_il_file() {
  // The regions of the unit have been written as they were finished.
}

void cancel_il_file() {
  if (f_il == nullptr)
    return;
  fclose(f_il);
  f_il = nullptr;
  remove(il_file_name);
}

void close_il_output_file() {
  close_output_file_with_error_handling(&f_il, fk_il_output);
}

void il_write_early_init() {
  f_il = nullptr;
}
