// RUN: %krtparse --c99 -P -I%S/Inputs %s | %FileCheck %s
// RUN: %krtparse --c99 -H -I%S/Inputs %s | %FileCheck --check-prefix=TRACE %s

// A file that lies in its guard as a whole is read once.
#include "guarded.h"
#include "guarded.h"
// CHECK: guarded_text
// CHECK-NOT: guarded_text
one
#include "guard_defined.h"
#include "guard_defined.h"
// CHECK: one
// CHECK: defined_text
// CHECK-NOT: defined_text
two
#include "once.h"
#include "once.h"
// CHECK: two
// CHECK: once_text
// CHECK-NOT: once_text
three
// The forms that must not be skipped.
#include "token_before.h"
#include "token_before.h"
// CHECK: three
// CHECK: token_before
// CHECK: token_before
#include "with_else.h"
#include "with_else.h"
// CHECK: first_reading
// CHECK: later_reading
#include "two_guards.h"
#include "two_guards.h"
// CHECK: second_guard
// CHECK: second_guard
// The guard's macro decides anew each time.
#undef GUARDED_H
#include "guarded.h"
// CHECK: guarded_text

// TRACE-COUNT-3: {{^.*}}guarded.h
