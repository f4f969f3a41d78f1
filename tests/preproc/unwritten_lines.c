// RUN: %krtparse --c99 -E -I%S/Inputs %s > %t.out 2> %t.err; test $? -eq 0
// RUN: %FileCheck --match-full-lines --strict-whitespace %s < %t.out
// RUN: %FileCheck --check-prefix=ERR %s < %t.err
// What of directives and of the lines around them goes to the output.
#define f(x) [x]
/* a comment */ #define AFTER_COMMENT 1
#define OTHER 1
     //CHECK:f
f
#define Y 1
     //CHECK:f
f
#pragma passes // without its comment
     //CHECK-NEXT:#pragma passes{{ *}}
     //CHECK:f
f
#if 0
f
#endif
     //CHECK:(3)
(3)
     //CHECK:## if 0
## if 0
     //CHECK:%:%: define g
%:%: define g
#if 0
##else
not_there
#endif
     //CHECK-NOT:not_there
     //CHECK:[1]
f(
#undef Y
#define Y 2
1)
     //CHECK:2 2 2
Y Y Y
// Pragmas among arguments come before the line, or act and leave it whole.
     //CHECK:#pragma passes (a) b Y
     //CHECK:#pragma UNROLL(2)
     //CHECK-NEXT:# [[@LINE+2]] "{{.*}}"
     //CHECK-NEXT:[1 2]
f(1
#pragma passes /* but for this */ (a)  b Y
#pragma UNROLL(Y)
#pragma push_macro("Y")
2
#pragma pop_macro("Y")
)
#pragma push_macro("Y")
#define OTHER 1
#pragma pop_macro("Y")
     //CHECK-NOT:{{.*}}_macro{{.*}}
     //CHECK:#pragma once
#pragma once
     //CHECK:# 1 "{{.*}}system_header.h"
     //CHECK-NOT:{{.*}}GCC system{{.*}}
     //CHECK:in_system_header
#include "system_header.h"
     //CHECK:#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wall"
//ERR-NOT:system_header.h
//ERR:line [[@LINE+1]]: warning: #pragma GCC system_header cannot be used in the primary source file
#pragma GCC system_header
//ERR-NOT:warning
