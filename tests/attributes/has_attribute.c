// RUN: %krtparse -E %s --gcc | %FileCheck %s
// __has_attribute knows what __attribute__ takes, under both names.

#define ANSWER(name) name __has_attribute(name)
// CHECK: packed 1
ANSWER(packed)
// CHECK: __aligned__ 1
ANSWER(__aligned__)
// CHECK: location 1
ANSWER(location)
// CHECK: nonnull 0
ANSWER(nonnull)
// CHECK: align 0
ANSWER(align)
// CHECK: init_priority 0
ANSWER(init_priority)
// CHECK: nowhere 0
ANSWER(nowhere)
