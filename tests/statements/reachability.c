// RUN: %krtparse --remarks --display_error_number --diag_suppress=179,826 %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not="#112" --implicit-check-not="#129" --implicit-check-not="#994" < %t.err
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

// A loop without a way in is reported as one; what it holds is not.
int dead_loops(int a) {
  return 0;
  // CHECK: line [[#@LINE+1]]: warning #129-D: loop is not reachable
  while (a) {
    f();
    if (a)
      break;
  }
  f();
  return 1;
  // CHECK: line [[#@LINE+1]]: warning #129-D: loop is not reachable
  do
    f();
  while (a);
}

// What stands in front of a label in a loop is reached from the label.
int entered_by_a_label(int a) {
  goto in;
  while (a) {
    f();
  in:
    a--;
  }
  f();
  switch (a)
    for (;; a--) {
      f();
    case 1:
      if (f())
        break;
    }
  return 0;
}

// One message for all ways through a dead statement.
int dead_selections(int a) {
  if (a)
    return 0;
  else
    return 1;
  if (a)
    // CHECK: line [[#@LINE+1]]: warning #112-D: statement is unreachable
    f();
  else
    f();
  switch (a) {
  case 1:
    f();
  case 2:
    f();
  }
}
