// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=C99
// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=GNU
// RUN: %krtparse --c99 --display_error_number -D=FAULTS --i_output_file=%t.if %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefix=FAULT --implicit-check-not=error < %t.out
// Which inline functions the unit defines for others (C99 6.7.4 p6; in the
// older GNU meaning all but `extern inline`), and what the inline definition of
// a function with external linkage may not use (p3).

static int internal;
static int internal_function(void) { return internal; }
int *anchor(void) { internal_function(); return &internal; }

// C99-NOT: begin_func plain
// GNU: begin_func plain
inline int plain(void) { return 1; }
// C99: begin_func with_extern
// GNU-NOT: begin_func with_extern
extern inline int with_extern(void) { static int calls; return calls++ + internal; }
// C99: begin_func later_plain
// GNU: begin_func later_plain
inline int later_plain(void) { static int calls; return calls++ + internal_function(); }
int later_plain(void);
// C99: begin_func earlier_extern
// GNU: begin_func earlier_extern
extern int earlier_extern(void);
inline int earlier_extern(void) { return 4; }
// C99: symbol

#ifdef FAULTS
inline int uses_variable(void) {
  // FAULT: line [[#@LINE+1]]: error #1085-D: an entity with internal linkage
  return internal;
}
inline int uses_function(void) {
  // FAULT: line [[#@LINE+1]]: error #1085-D: an entity with internal linkage
  return internal_function() + sizeof internal;
}
inline int keeps_state(void) {
  static const int table[] = {1, 2};
  // FAULT: line [[#@LINE+1]]: error #1084-D: a variable with static storage
  static int calls;
  return table[calls++];
}
static inline int is_internal(void) { static int calls; return internal + calls++; }
int call(void) { return is_internal(); }
// FAULT: 3 errors detected
#endif
