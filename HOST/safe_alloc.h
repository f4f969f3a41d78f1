// Checked heap allocation for code that lives outside the front end's memory
// regions. When memory runs out: "ERROR: out of memory" on standard error and
// exit status 1.

#ifndef SAFE_ALLOC_H
#define SAFE_ALLOC_H

#include <cstddef>

void* safemalloc(size_t size);
// A null pointer allocates.
void* saferealloc(void* pointer, size_t size);
void* safecalloc(size_t count, size_t size);

#endif
