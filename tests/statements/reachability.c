// RUN: %krtparse --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='#112' < %t.err
// Each dead region is reported once, and only where control really can't come.

int f(void);

int endless(void) {
  while (1)
    f();
  // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
  f();
  f();
  return 0;
}

int left_by_break(void) {
  for (;;) {
    if (f())
      break;
  }
  f();
  return 0;
}

int left_by_goto(void) {
  for (;;)
    goto out;
out:
  return f();
}

int behind_jumps(int a) {
  switch (a) {
    // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
    f();
  case 1:
    return 1;
    // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
    f();
  case 2:
    break;
  }
  f();
  do
    continue;
  while (f());
  f();
  return 3;
  // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
  return 4;
}

int all_ways_return(int a) {
  switch (a) {
  case 1:
    return 1;
  default:
    return 2;
  }
  // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
  f();
}

int one_way_leaves(int a) {
  switch (a) {
  case 1:
    return 1;
  default:
    break;
  }
  return f();
}

int both_branches(int a) {
  if (a)
    return 1;
  else
    goto end;
  // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
  f();
end:
  return 0;
}
