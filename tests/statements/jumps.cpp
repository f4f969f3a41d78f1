// RUN: %krtparse -n --exceptions --no_warnings --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.out
// Jumps past initialisations, and into try blocks and handlers (C++11 6.7 p3,
// 15 p2).

int use(int);

void forward(int n) {
  // CHECK: line [[#@LINE+2]]: error #548: transfer of control bypasses initialization of:
  // CHECK-NEXT: variable "a" (declared at line [[#@LINE+2]])
  goto in;
  int a = 1;
  { int passed = 2; use(passed); }
in:
  use(a);
  goto past_a_scope;
  for (int i = 0; i < n; i++)
    use(i);
  if (int x = n)
    use(x);
past_a_scope:
  int without;
  goto out;
out:
  // CHECK: line [[#@LINE+3]]: error #548:
  // CHECK-NEXT: variable "b" (declared at line [[#@LINE+3]])
  // CHECK-NEXT: variable "c" (declared at line [[#@LINE+4]])
  goto deep;
  int b = n;
  {
    int c = n;
  deep:
    use(b + c);
  }
}

void backward(int n) {
  int a = 1;
again:
  int b = 2;
  if (n)
    goto again; // leaves the scope of nothing that it enters
  while (int x = use(n)) {
  inner:
    use(x);
    if (n)
      goto inner;
    if (n > 2)
      continue;
    goto again;
  }
  // CHECK: line [[#@LINE+2]]: error #548:
  // CHECK-NEXT: variable "x"
  goto inner;
}

void cases(int n) {
  switch (n) {
    int first = 3;
    // CHECK: line [[#@LINE+2]]: error #548:
    // CHECK-NEXT: variable "first"
  case 1:
    use(first);
    { int block = 2; use(block); }
    // CHECK: line [[#@LINE+2]]: error #548:
    // CHECK-NEXT: variable "first"
  case 2:
    break;
  }
  switch (int y = n) {
  case 1: { int z = y; use(z); }
  case 2: use(y);
  }
}

void exceptions(int n) {
  try {
  in_try:
    if (n)
      goto in_try;
  } catch (int e) {
  in_handler:
    use(e);
  } catch (...) {
    // CHECK: line [[#@LINE+1]]: error #659: transfer of control into a try block
    goto in_try;
  }
  // CHECK: line [[#@LINE+1]]: error #550: transfer of control into an exception handler
  goto in_handler;
}
