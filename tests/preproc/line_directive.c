// RUN: %krtparse --c99 -P %s 2>&1 | %FileCheck %s
// RUN: %krtparse --c99 -E %s 2>&1 | %FileCheck --check-prefix=LINES %s

#line 41
__LINE__
// CHECK: {{^}}41
#define TARGET 500 "other.c"
#line TARGET
__LINE__ __FILE__
// CHECK: {{^}}500 "other.c"
// LINES: # 500 "other.c"
# 60 "entered.h" 1
__FILE__ __LINE__
// CHECK: {{^}}"entered.h" 60
# 502 "other.c" 2
__FILE__ __LINE__
// CHECK: {{^}}"other.c" 502
