// RUN: %krtparse --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,GNU < %t.err
// RUN: %krtparse --display_error_number --c99 --no_gcc %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,ANSI < %t.err
// RUN: %krtparse --display_error_number --c99 --strict %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --check-prefixes=CHECK,STRICT < %t.err
// Faults of members: anonymous ones, bit-fields, arrays of unknown bound.

struct anonymous {
  int a;
  // ANSI: line [[#@LINE+2]]: warning #622-D: an unnamed field of this kind is nonstandard
  // STRICT: line [[#@LINE+1]]: error #622-D: an unnamed field of this kind is nonstandard
  struct { int b; };
  // GNU: line [[#@LINE+3]]: warning #623-D: an unnamed member of this kind is nonstandard
  // ANSI: line [[#@LINE+2]]: warning #623-D
  // STRICT: line [[#@LINE+1]]: error #623-D
  struct tagged { int c; };
  // CHECK: line [[#@LINE+1]]: warning #65-D: declaration does not declare anything
  struct tagged;
};
struct same_names {
  int a;
  // GNU: line [[#@LINE+3]]: warning #1297-D: this anonymous union/struct field is hidden by field "a"
  // ANSI: line [[#@LINE+2]]: error #102: "a" has already been declared in the current scope
  // STRICT: line [[#@LINE+1]]: error #102: "a" has already been declared in the current scope
  union { char a; int b; };
};
// CHECK: line [[#@LINE+1]]: error #137: struct "anonymous" has no field "c"
int not_a_member(struct anonymous *p) { return p->b + p->c; }

enum sign { LESS = -1, MORE = 1 };
enum many { LAST = 9 };
typedef enum many many_name;
struct bit_fields {
  // GNU: line [[#@LINE+3]]: warning #1013-D: the bit field has more bits than its type; the extra bits are ignored
  // ANSI: line [[#@LINE+2]]: warning #1013-D
  // STRICT: line [[#@LINE+1]]: error #1013:
  int wide : 33;
  // CHECK: line [[#@LINE+1]]: error #106: invalid size for bit field
  int negative : -1;
  // CHECK: line [[#@LINE+1]]: error #107: invalid type for a bit field
  double real : 3;
  // CHECK: line [[#@LINE+1]]: error #108: zero-length bit field must be unnamed
  int zero : 0;
  // CHECK: line [[#@LINE+1]]: warning #231-D: the bit field is too small to hold all values of its enumeration type
  enum many small : 3;
  enum many enough : 4;
  many_name named : 4;
  // CHECK: line [[#@LINE+1]]: warning #231-D
  enum sign one : 1;
  enum sign two : 2;
  // CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
  enum unknown incomplete : 3;
};

struct flexible { int n; char rest[]; };
// ANSI: line [[#@LINE+2]]: error #71: incomplete type is not allowed
// STRICT: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct alone { char rest[]; };
// CHECK: line [[#@LINE+1]]: error #71: incomplete type is not allowed
struct first { char rest[]; int n; };
// ANSI: line [[#@LINE+2]]: error #1083: type containing an unknown-size array is not allowed
// STRICT: line [[#@LINE+1]]: error #1083: type containing an unknown-size array is not allowed
struct holder { int n; struct flexible f; };
union choice { int n; struct flexible f; };
