// The operand of __has_include may come out of a macro, with its closing
// parenthesis or without one at all: scanning goes on behind the invocation.
// RUN: %krtparse --c --preprocess --no_line_commands %s > %t.i 2> %t.err || true
// RUN: %FileCheck %s < %t.i
// RUN: %FileCheck %s --check-prefix=ERR < %t.err
#define CLOSED "operand_in_expansion.c") more
#define PAIR(a, b) a b
#if __has_include(CLOSED
closed_in_expansion
#endif
// CHECK: closed_in_expansion
PAIR(1, __has_include( PAIR(3, 4))
// CHECK: 1 0
// ERR: error: this operator requires an identifier
PAIR(5,6) after)
// CHECK: 5 6 after
