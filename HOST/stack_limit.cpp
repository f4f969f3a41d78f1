#include "stack_limit.h"

#include <sys/resource.h>

#include "error.h"

uintptr_t lowest_stack_address;

// Room for the diagnostic that ends the run, and for functions that don't
// recurse.
static constexpr uintptr_t reserve = 1u << 20;

// What is used at the most, whatever the system allows.
static constexpr uintptr_t greatest_stack = 512u << 20;

void init_stack_limit() {
  struct rlimit limit;
  uintptr_t size = 8u << 20;
  if (getrlimit(RLIMIT_STACK, &limit) == 0)
    size = limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur > greatest_stack ? greatest_stack
                                                                              : limit.rlim_cur;
  uintptr_t here = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
  uintptr_t usable = size > 2 * reserve ? size - reserve : size / 2;
  lowest_stack_address = here > usable ? here - usable : 0;
}

void stack_limit_exceeded() {
  lowest_stack_address = 0; // the report itself may go deeper
  catastrophe(ec_program_too_large);
}
