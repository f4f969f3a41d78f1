// RUN: %krtparse --display_error_number --check_misra=6.4,6.5,18.1 --misra_required=warning %s > %t.err 2>&1
// RUN: %FileCheck %s < %t.err
// The rules on the members of structs.

struct bits {
  unsigned int good : 1;
  signed int also_good : 2;
  // CHECK: line [[#@LINE+1]]: warning #1380{{.*}}6.4/R
  int plain : 2;
  // CHECK: line [[#@LINE+1]]: warning #1380
  unsigned char narrow : 2;
  // CHECK: line [[#@LINE+1]]: warning #1381{{.*}}6.5/R
  signed int one : 1;
};
// CHECK: line [[#@LINE+1]]: warning #1475{{.*}}18.1/R
struct flexible { unsigned int n; unsigned int rest[]; };
// CHECK-NOT: warning
