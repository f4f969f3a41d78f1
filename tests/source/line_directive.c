// RUN: %krtparse -E --no_brief_diagnostics %s 2>&1 >/dev/null | %FileCheck %s
// A #line changes the place that a message names, not the line that it shows.
#line 100 "x.h"
#warning first
// CHECK: "x.h", line 100: warning: #warning directive: first
// CHECK-NEXT: {{^}}  #warning first
// CHECK-NEXT: {{^}}   ^
#line 7
#warning second
// CHECK: "x.h", line 7: warning: #warning directive: second
// CHECK-NEXT: {{^}}  #warning second
# 1 "included.h" 1
#warning third
# 20 "x.h" 2
#warning fourth
// CHECK: "included.h", line 1: warning: #warning directive: third
// CHECK: "x.h", line 20: warning: #warning directive: fourth
// CHECK-NEXT: {{^}}  #warning fourth
