#include "pragma.h"

void process_pragmas_at_end_of_source() {
  // No pragma waits.
}

void pragma_one_time_init() {
  // Registers the variables kept for each unit.
}

void pragma_init() {
  // Clears the list of pending pragmas.
}
