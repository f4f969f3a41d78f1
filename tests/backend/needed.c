// What a unit emits: its external definitions, what they lead to, and of each
// body all of its own variables, but nothing that is only declared.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --implicit-check-not=dead --implicit-check-not=declared
// RUN: %krtparse --keep_unneeded_statics --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s --check-prefix=KEEP

int target;
static int by_initializer(void) { return 1; }
static int (*const table[])(void) = {by_initializer};
static int dead_helper(void) { return target; }
static int dead_variable = 7;

// CHECK: begin_func by_initializer
// CHECK: begin_func live
// CHECK: init table
// CHECK-NEXT: (UAND:int()* (NAME:int() by_initializer))
// CHECK: init idle$1
// CHECK-NEXT: (UAND:int* (NAME:int target))
// CHECK: symbol used_extern class extern
// KEEP: init dead_variable
int live(int i) {
  static int *idle = &target;
  extern int declared_extern;
  int declared_function(int);
  extern int used_extern;
  struct declared_struct { int member; };
  return table[i]() + used_extern;
}

// A body that goes takes along all that only it uses, a local class too.
static int dead(int dead_parameter) {
  struct dead_struct { int dead_member; } s = {1};
  static int dead_static = sizeof(struct dead_struct);
  extern int dead_extern(struct dead_struct *);
  return dead_helper() + dead_extern(&s) + dead_static + dead_parameter;
}
