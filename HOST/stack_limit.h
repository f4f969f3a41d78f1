// The depth of recursion. Parsing and the walks over what was parsed recurse
// with the nesting of the source, so a hostile source could exhaust the
// machine stack. Each recursive function calls check_stack_limit on entry; it
// measures the stack itself, so no construct needs a counter of its own.

#ifndef STACK_LIMIT_H
#define STACK_LIMIT_H

#include <cstdint>

// The lowest address that the stack may grow down to.
extern uintptr_t lowest_stack_address;

// Called in main's frame.
void init_stack_limit();

// Ends the compilation: the program is too complicated.
[[noreturn]] void stack_limit_exceeded();

inline void check_stack_limit() {
  if (reinterpret_cast<uintptr_t>(__builtin_frame_address(0)) < lowest_stack_address)
    stack_limit_exceeded();
}

#endif
