// RUN: %krtparse --c99 -P -I%S/Inputs -I%S/Inputs/inc1 -I%S/Inputs/inc2 %s | %FileCheck %s

#define QUOTED "guarded.h"
#define NAME guard_defined
#define ANGLE(x) <x.h>
#include QUOTED
// CHECK: guarded_text
#include ANGLE(NAME)
// CHECK: defined_text
#include <next.h>
// CHECK: from_inc1
// CHECK: from_inc2
%:include "once.h"
// CHECK: once_text
#if __has_include("once.h") && !__has_include(<none.h>)
has_include
#endif
// CHECK: has_include
// The argument list of a macro that ends a file isn't looked for behind it.
#include "ends_with_name.h"
(7)
// CHECK: call
// CHECK: (7)
