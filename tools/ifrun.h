// The reference interpreter of intermediate files.

#ifndef IFRUN_H
#define IFRUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "ifread.h"

// Runs a file's main with the words as argv; its output goes to the standard
// output. Gives main's exit status (0 to 255); when the run fails, it writes a
// message to the standard error and gives 125, or 124 after `max_steps` steps.
int run_program(const an_if_file& file, const std::vector<std::string>& words,
                uint64_t max_steps = UINT64_MAX);

#endif
