// The bodies in a class that a qualified name defines are read like any other,
// when the outermost open class is complete.
// RUN: %krtparse --c++ -n --display_error_number %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not='error #' < %t.err

struct outer {
  struct inner;
  struct middle {
    struct innermost;
  };
  struct middle::innermost {
    int get() { return later(); }
    // CHECK-DAG: line [[#@LINE+1]]: error #20: identifier "unknown" is undefined
    int fault() { return unknown; }
  };
  static int later();
};
struct outer::inner {
  int get(int n = later()) { return n; }
  // CHECK-DAG: line [[#@LINE+1]]: error #20: identifier "unknown_too" is undefined
  int fault() { return unknown_too; }
};
namespace space {
struct inside;
int known();
}
struct space::inside {
  int get() { return known(); }
  // CHECK-DAG: line [[#@LINE+1]]: error #20: identifier "not_known" is undefined
  int fault() { return not_known; }
};
