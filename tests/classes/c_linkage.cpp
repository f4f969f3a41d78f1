// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen %s
// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --no_implicit_extern_c_type_conversion --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s < %t.err
// Functions of C++ where a pointer of C is wanted, and what the front end itself
// declares with the linkage of C.

extern "C" {
void *memcpy(void *, const void *, __SIZE_TYPE__);
int abs(int);
typedef int (*entry)(int);
struct operations { entry open, close; };
}
struct Device {
  static int open(int);
  operations table;
  // CHECK: line [[#@LINE+1]]: error #515: a value of type "int (*)(int)" cannot be assigned to an entity of type "entry"
  Device() : table() { table.open = open; }
};
