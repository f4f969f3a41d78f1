// RUN: %krtparse --display_error_number --remarks %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// The constraints of statements, one function each.

int cases(int n) {
  switch (n) {
  case 3:
    return 1;
  case 1:
    n++;
    break;
  // CHECK: line [[#@LINE+1]]: error #1851: case label value has already appeared in this switch at line 7
  case 3:
  default:
  // CHECK: line [[#@LINE+1]]: error #125: default label has already appeared in this switch
  default:;
  }
  switch (n) {
  case 10:
  case 30:
    return 0;
  // In the middle of a list that is kept by value.
  case 20:
  // CHECK: line [[#@LINE+1]]: error #1851: case label value has already appeared in this switch at line 20
  case 30:;
  }
  return 2;
}

// A range reaches over entries between it and another.
void ranges(int n) {
  switch (n) {
  case 1 ... 100:
  // CHECK: line [[#@LINE+1]]: error #1851: case label value has already appeared in this switch at line 33
  case 5:
  // CHECK: line [[#@LINE+1]]: error #1851: case label value has already appeared in this switch at line 33
  case 7:
  case 101:
  // CHECK: line [[#@LINE+1]]: error #1851: case label value has already appeared in this switch at line 33
  case -5 ... 1:
  case 200:;
  }
}

void condition_without_parenthesis(int n) {
  // CHECK: line [[#@LINE+1]]: error #126: expected a "("
  while ) n = 1;
  // CHECK-NOT: line [[#@LINE-1]]
  if (n) n = 2; else n = 3;
}

void local_labels(void) {
  // CHECK: line [[#@LINE+1]]: error #102: "a" has already been declared in the current scope
  __label__ a, b, a;
  // CHECK: line [[#@LINE+1]]: error #102: "b" has already been declared in the current scope
  __label__ b;
a:
b:
  {
    __label__ a;
    goto a;
  a:;
  }
}

void outside(void) {
  // CHECK: line [[#@LINE+1]]: error #117: a break statement may only be used within a loop or switch
  break;
  // CHECK: line [[#@LINE+1]]: error #116: a continue statement may only be used within a loop
  continue;
  // CHECK: line [[#@LINE+1]]: error #122: a case label may only be used within a switch
  case 3:
  // CHECK: line [[#@LINE+1]]: error #123: a default label may only be used within a switch
  default:;
  switch (1) {
    // CHECK: line [[#@LINE+1]]: error #116: a continue statement may only be used within a loop
    continue;
  }
}

void bodies(int a) {
  // CHECK: line [[#@LINE+2]]: error #527: a dependent statement may not be a declaration
  if (a)
    int x;
  // CHECK: line [[#@LINE+1]]: error #1148: a declaration cannot have a label
  here: int y;
  // CHECK: line [[#@LINE+1]]: error #113: expected "while"
  do a++; until(a);
  // CHECK: line [[#@LINE+2]]: warning #128-D: expected a statement
  if (a)
}

void labels(void) {
again:;
  // CHECK: line [[#@LINE+1]]: error #249: label "again" has already been defined
again:
  // CHECK: line [[#@LINE+1]]: error #115: label "nowhere" was referenced but not defined
  goto nowhere;
}

// The same name is another label in another function.
void labels2(void) { goto again; again:; }

void valueless(void) {
  return 1; // evaluated and dropped, as in GNU C
}

int missing(int a) {
  if (a)
    // CHECK: line [[#@LINE+1]]: {{.*}}#118{{.*}}: non-void function "missing" {{.*}}should return a value
    return;
  else
    return 1;
}

// Reached only when the condition fails: a remark.
int falls_off(int a) {
  if (a)
    return 1;
  // CHECK: line [[#@LINE+1]]: remark #994-D: missing return statement at end of non-void function "falls_off"
}

// CHECK-NOT: #994
int never_falls_off(int a) {
  if (a)
    return 1;
  else
    return 2;
}
int loops_forever(void) { for (;;) ; }
