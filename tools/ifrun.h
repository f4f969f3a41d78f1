// The reference interpreter of intermediate files.

#ifndef IFRUN_H
#define IFRUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "ifread.h"

// What a run may use, and what it shows.
struct a_run_limits {
  uint64_t max_steps = UINT64_MAX;
  uint32_t heap_bytes = 256u << 20;
  uint32_t stack_bytes = 8u << 20;
  bool trace = false; // statements, calls and results on the standard error
};

// Runs a file's main with the words as argv; its output goes to the standard
// output. Gives main's exit status (0 to 255); when the run fails, it writes a
// message to the standard error and gives 125, or 124 after `max_steps` steps.
int run_program(const an_if_file& file, const std::vector<std::string>& words,
                const a_run_limits& limits = {});

#endif
