// Checked heap allocation.

#include "safe_alloc.h"

#include <cstdio>
#include <cstdlib>

static void* checked(void* pointer) {
  if (pointer == nullptr) {
    fputs("ERROR: out of memory\n", stderr);
    exit(1);
  }
  return pointer;
}

// A request for nothing is served with one byte, so that null always means
// that memory ran out.
void* safemalloc(size_t size) {
  return checked(malloc(size != 0 ? size : 1));
}

void* saferealloc(void* pointer, size_t size) {
  return checked(realloc(pointer, size != 0 ? size : 1));
}

void* safecalloc(size_t count, size_t size) {
  return count == 0 || size == 0 ? safecalloc(1, 1) : checked(calloc(count, size));
}
