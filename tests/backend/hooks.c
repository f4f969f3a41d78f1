// Calls of hooks: at the start of each function, and before each return behind
// its value. Hooks, functions without hooks, and ends without a return call none.
// RUN: %krtparse --c99 --gcc --entry_parm=none --exit_hook=left --exit_parm=name --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %ifrun %t.if | %FileCheck %s --check-prefix=OUTPUT
// RUN: %krtparse --c99 --entry_hook=entered --entry_parm=address -DENTRY_ONLY --i_output_file=%t.if %s && %ifdump %t.if \
// RUN:   | %FileCheck %s --check-prefix=ADDRESS

int printf(const char *, ...);

#ifdef ENTRY_ONLY
int f(int n) {
  return n;
}
// ADDRESS: begin_func f
// ADDRESS: expr at {{.*}}:[[@LINE-4]]:{{.*}} (CALL:void (NAME:void(void()*) entered) (PCONV:void()* (UAND:int(int)* (NAME:int(int) f))))
// ADDRESS-NEXT: expr {{.*}} (RETURN:int (NAME:int(int) f) (NAME:int %n))
// ADDRESS: symbol entered class extern
// ADDRESS-NEXT: pragma HOOK_FUNCTION
#else

void left(const char *name) {
  printf("left %s\n", name);
}
void __entry_hook(void) {
  printf("entered\n");
}
// The hooks are known before the source, so they come first.
// CHECK: begin_func __entry_hook
// CHECK-NOT: (NAME:void(const char*) left)
// CHECK: begin_func left
// CHECK-NOT: UCALL

int value(int n) {
  printf("value %d\n", n);
  return n + 1;
}
// CHECK: begin_func value
// CHECK: (UCALL:void (NAME:void() __entry_hook))
// CHECK: {{CALL.*}}printf
// CHECK-NEXT: expr {{.*}} (ASG:int (NAME:int [[T:%[^)]*]]) (PLUS:int (NAME:int %n) (LCON:int 1)))
// CHECK-NEXT: expr {{.*}} (CALL:void (NAME:void(const char*) left) {{.*}}"value\x00"
// CHECK-NEXT: expr {{.*}} (RETURN:int (NAME:int(int) value) (NAME:int [[T]]))

int branches(int n) {
  for (;;) {
    switch (n) {
    case 1:
      return 7;
    default:
      if (n > 5)
        return value(n);
      n += 5;
    }
  }
}
// A constant needs no variable.
// CHECK: begin_func branches
// CHECK: (CALL:void (NAME:void(const char*) left) {{.*}}"branches\x00"
// CHECK-NEXT: expr {{.*}} (RETURN:int {{.*}} (LCON:int 7))

void falls_off(void) {
}
// CHECK: begin_func falls_off
// CHECK-NOT: left
// CHECK: end_func
struct pair {
  int a, b;
};
struct pair make(int n) {
  struct pair p = {n, n + 1};
  return p;
}

int main(void) {
  falls_off();
  return branches(1) + branches(2) + make(3).b - 19;
}
// OUTPUT: entered
// OUTPUT-NEXT: entered
// OUTPUT-NEXT: entered
// OUTPUT-NEXT: left branches
// OUTPUT-NEXT: entered
// OUTPUT-NEXT: entered
// OUTPUT-NEXT: value 7
// OUTPUT-NEXT: left value
// OUTPUT-NEXT: left branches
// OUTPUT-NEXT: entered
// OUTPUT-NEXT: left make
// OUTPUT-NEXT: left main
#endif
