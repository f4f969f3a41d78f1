// RUN: %krtparse --gcc -n --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// Where a statement expression may not stand, and what may not lead into one.

// CHECK: line [[#@LINE+1]]: error #28:
int outside[({ 3; })];
// CHECK: line [[#@LINE+1]]: error #1242: a statement expression is only allowed in a function
int global = ({ 3; });

void places(int n) {
  // CHECK: line [[#@LINE+1]]: error #28:
  static int constant = ({ 3; });
  switch (n) {
  // CHECK: line [[#@LINE+1]]: error #28:
  case ({ 1; }):
    break;
  }
  // CHECK: line [[#@LINE+1]]: error #515:
  n = ({ ; });
  // CHECK: line [[#@LINE+1]]: error #515:
  n = ({ if (n) n; });
  n = ({ labelled: n; });
}

void jumps(int n) {
  // CHECK: line [[#@LINE+1]]: error #1303: transfer of control into a statement expression is not allowed
  goto forward;
  n = ({ forward: 1; });
  n = ({ backward: 1; });
  // CHECK: line [[#@LINE+1]]: error #1303:
  goto backward;
  switch (n) {
  case 1:
    // CHECK: line [[#@LINE+1]]: error #1303:
    n = ({ case 2: 3; });
  }
  n = ({ inside: if (n) goto inside; if (n > 1) goto out; 3; });
out:;
}

void local_labels(int n) {
  { __label__ here, there; if (n) goto here; here: there:; }
  { __label__ here; here: if (n) goto here; }
  // CHECK: line [[#@LINE+1]]: error #115: label "nowhere" was referenced but not defined
  { __label__ nowhere; if (n) goto nowhere; }
}
